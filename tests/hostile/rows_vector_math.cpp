// Rows of the elementwise functions (logarithm, exponent, arctangent,
// square, root, thresholds, absolute value) and of the reductions and dot
// products. A negative root argument and a zero under a zero inverse
// threshold are reported after the whole array was written; the 16-bit
// complex threshold and the widening complex logarithm take working memory.
#include "routine_table.h"

namespace hostile {
namespace {

constexpr const char* kNegative = "Element of input vector is negative";
constexpr const char* kZero = "zero element and zero thresh";
constexpr int kNorm[] = {RYX_C, RYX_L1, RYX_L2, RYX_L2SQUARED, RYX_C | RYX_RELATIVE, RYX_L1 | RYX_RELATIVE,
                         RYX_L2 | RYX_RELATIVE, RYX_L2SQUARED | RYX_RELATIVE, 0};

template <class T, class R>
Row ext(const char* name, R (*f)(const T*, int, int*)) {
  return row(name, f, in(arg<1>), len(), out(one));
}
template <class A, class B, class R>
Row norm(const char* name, R (*f)(const A*, const B*, int, int)) {
  return row(name, f, in(arg<2>), in(arg<2>), len(), flags(kNorm));
}
template <class A, class B, class R>
Row normExt(const char* name, R (*f)(const A*, const B*, int, int, int, int*)) {
  return row(name, f, in(arg<2>), in(arg<2>), len(), flags(kNorm), scaleMode(), out(one));
}
template <class A, class B, class V>
Row dotOut(const char* name, void (*f)(const A*, const B*, int, V*)) {
  return row(name, f, in(arg<2>), in(arg<2>), len(), out(one));
}
template <class A, class B, class V>
Row dotExtOut(const char* name, void (*f)(const A*, const B*, int, int, int*, V*)) {
  return row(name, f, in(arg<2>), in(arg<2>), len(), scaleMode(), out(one), out(one));
}

const AddRows rows({
    vec("ryxsbLn1", ryxsbLn1),
    vec("ryxsbLn2", ryxsbLn2),
    vec("ryxdbLn1", ryxdbLn1),
    vec("ryxdbLn2", ryxdbLn2),
    vec("ryxdsbLn", ryxdsbLn),
    vec("ryxsbExp1", ryxsbExp1),
    vec("ryxsbExp2", ryxsbExp2),
    vec("ryxdbExp1", ryxdbExp1),
    vec("ryxdbExp2", ryxdbExp2),
    vec("ryxsdbExp", ryxsdbExp),
    vec("ryxsbLg1", ryxsbLg1),
    vec("ryxsbLg2", ryxsbLg2),
    vec("ryxdbLg1", ryxdbLg1),
    vec("ryxdbLg2", ryxdbLg2),
    vec("ryxcbLg1", ryxcbLg1),
    vec("ryxcbLg2", ryxcbLg2),
    allocating(vec("ryxczbLg", ryxczbLg)),
    vec("ryxsbArctan1", ryxsbArctan1),
    vec("ryxsbArctan2", ryxsbArctan2),
    vec("ryxdbArctan1", ryxdbArctan1),
    vec("ryxdbArctan2", ryxdbArctan2),
    vec("ryxwbLn1", ryxwbLn1),
    vec("ryxwbLn2", ryxwbLn2),
    vec("ryxwbExp1", ryxwbExp1),
    vec("ryxwbExp2", ryxwbExp2),

    vec("ryxsbSqr1", ryxsbSqr1),
    vec("ryxsbSqr2", ryxsbSqr2),
    vec("ryxdbSqr1", ryxdbSqr1),
    vec("ryxdbSqr2", ryxdbSqr2),
    vec("ryxcbSqr1", ryxcbSqr1),
    vec("ryxcbSqr2", ryxcbSqr2),
    vec("ryxzbSqr1", ryxzbSqr1),
    vec("ryxzbSqr2", ryxzbSqr2),
    vec("ryxwbSqr1", ryxwbSqr1),
    vec("ryxwbSqr2", ryxwbSqr2),
    vec("ryxvbSqr1", ryxvbSqr1),
    vec("ryxvbSqr2", ryxvbSqr2),
    reportsLate(vec("ryxsbSqrt1", ryxsbSqrt1), kNegative),
    reportsLate(vec("ryxsbSqrt2", ryxsbSqrt2), kNegative),
    reportsLate(vec("ryxdbSqrt1", ryxdbSqrt1), kNegative),
    reportsLate(vec("ryxdbSqrt2", ryxdbSqrt2), kNegative),
    vec("ryxcbSqrt1", ryxcbSqrt1),
    vec("ryxcbSqrt2", ryxcbSqrt2),
    vec("ryxzbSqrt1", ryxzbSqrt1),
    vec("ryxzbSqrt2", ryxzbSqrt2),
    reportsLate(vec("ryxwbSqrt1", ryxwbSqrt1), kNegative),
    reportsLate(vec("ryxwbSqrt2", ryxwbSqrt2), kNegative),
    vec("ryxvbSqrt1", ryxvbSqrt1),
    vec("ryxvbSqrt2", ryxvbSqrt2),
    vec("ryxsbThresh1", ryxsbThresh1),
    vec("ryxsbThresh2", ryxsbThresh2),
    vec("ryxdbThresh1", ryxdbThresh1),
    vec("ryxdbThresh2", ryxdbThresh2),
    vec("ryxwbThresh1", ryxwbThresh1),
    vec("ryxwbThresh2", ryxwbThresh2),
    vec("ryxcbThresh1", ryxcbThresh1),
    vec("ryxcbThresh2", ryxcbThresh2),
    vec("ryxzbThresh1", ryxzbThresh1),
    vec("ryxzbThresh2", ryxzbThresh2),
    allocating(vec("ryxvbThresh1", ryxvbThresh1)),
    allocating(vec("ryxvbThresh2", ryxvbThresh2)),
    reportsLate(vec("ryxsbInvThresh1", ryxsbInvThresh1), kZero),
    reportsLate(vec("ryxsbInvThresh2", ryxsbInvThresh2), kZero),
    reportsLate(vec("ryxdbInvThresh1", ryxdbInvThresh1), kZero),
    reportsLate(vec("ryxdbInvThresh2", ryxdbInvThresh2), kZero),
    reportsLate(vec("ryxcbInvThresh1", ryxcbInvThresh1), kZero),
    reportsLate(vec("ryxcbInvThresh2", ryxcbInvThresh2), kZero),
    reportsLate(vec("ryxzbInvThresh1", ryxzbInvThresh1), kZero),
    reportsLate(vec("ryxzbInvThresh2", ryxzbInvThresh2), kZero),
    vec("ryxsbAbs1", ryxsbAbs1),
    vec("ryxsbAbs2", ryxsbAbs2),
    vec("ryxdbAbs1", ryxdbAbs1),
    vec("ryxdbAbs2", ryxdbAbs2),
    vec("ryxwbAbs1", ryxwbAbs1),
    vec("ryxwbAbs2", ryxwbAbs2),

    vec("ryxsSum", ryxsSum),
    vec("ryxdSum", ryxdSum),
    vec("ryxcSum", ryxcSum),
    vec("ryxzSum", ryxzSum),
    vec("ryxwSum", ryxwSum),
    vec("ryxvSum", ryxvSum),
    vec("ryxsMean", ryxsMean),
    vec("ryxdMean", ryxdMean),
    vec("ryxcMean", ryxcMean),
    vec("ryxzMean", ryxzMean),
    vec("ryxwMean", ryxwMean),
    vec("ryxvMean", ryxvMean),
    vec("ryxsStdDev", ryxsStdDev),
    vec("ryxdStdDev", ryxdStdDev),
    vec("ryxwStdDev", ryxwStdDev),
    vec("ryxsMax", ryxsMax),
    vec("ryxsMin", ryxsMin),
    vec("ryxdMax", ryxdMax),
    vec("ryxdMin", ryxdMin),
    vec("ryxwMax", ryxwMax),
    vec("ryxwMin", ryxwMin),
    ext("ryxsMaxExt", ryxsMaxExt),
    ext("ryxsMinExt", ryxsMinExt),
    ext("ryxdMaxExt", ryxdMaxExt),
    ext("ryxdMinExt", ryxdMinExt),
    ext("ryxwMaxExt", ryxwMaxExt),
    ext("ryxwMinExt", ryxwMinExt),
    norm("ryxsNorm", ryxsNorm),
    norm("ryxdNorm", ryxdNorm),
    norm("ryxcNorm", ryxcNorm),
    norm("ryxzNorm", ryxzNorm),
    norm("ryxwNorm", ryxwNorm),
    norm("ryxvNorm", ryxvNorm),
    normExt("ryxwNormExt", ryxwNormExt),
    normExt("ryxvNormExt", ryxvNormExt),
    vec("ryxsbNormalize", ryxsbNormalize),
    vec("ryxdbNormalize", ryxdbNormalize),
    vec("ryxcbNormalize", ryxcbNormalize),
    vec("ryxzbNormalize", ryxzbNormalize),
    vec("ryxwbNormalize", ryxwbNormalize),
    vec("ryxvbNormalize", ryxvbNormalize),

    vec("ryxsDotProd", ryxsDotProd),
    vec("ryxcDotProd", ryxcDotProd),
    vec("ryxscDotProd", ryxscDotProd),
    vec("ryxcsDotProd", ryxcsDotProd),
    dotOut("ryxcDotProdOut", ryxcDotProdOut),
    dotOut("ryxscDotProdOut", ryxscDotProdOut),
    dotOut("ryxcsDotProdOut", ryxcsDotProdOut),
    vec("ryxdDotProd", ryxdDotProd),
    vec("ryxzDotProd", ryxzDotProd),
    vec("ryxdzDotProd", ryxdzDotProd),
    vec("ryxzdDotProd", ryxzdDotProd),
    vec("ryxwDotProd", ryxwDotProd),
    vec("ryxvDotProd", ryxvDotProd),
    vec("ryxwvDotProd", ryxwvDotProd),
    vec("ryxvwDotProd", ryxvwDotProd),
    vec("ryxwDotProdExt", ryxwDotProdExt),
    vec("ryxvDotProdExt", ryxvDotProdExt),
    vec("ryxwvDotProdExt", ryxwvDotProdExt),
    vec("ryxvwDotProdExt", ryxvwDotProdExt),
    dotExtOut("ryxvDotProdExtOut", ryxvDotProdExtOut),
    dotExtOut("ryxwvDotProdExtOut", ryxwvDotProdExtOut),
    dotExtOut("ryxvwDotProdExtOut", ryxvwDotProdExtOut),
});

}  // namespace
}  // namespace hostile
