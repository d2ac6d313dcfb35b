// Rows of the 16-bit transforms: complex, split, real and packed forms and
// the packed spectrum products. Arrays hold N = 2^order elements (WCplx or
// short), N+2 shorts for the RCCs layout; the scale factor is one int.
#include "routine_table.h"
#include "ryxcore/transform_int16.h"

namespace hostile {
namespace {

constexpr int F = RYX_Forward, I = RYX_Inverse;
constexpr int kInt = RYX_IntCore, kFloat = RYX_FloatCore, kFast = RYX_IntCore | RYX_FastCore;
constexpr int kFft16[] = {F, I, F | kInt, I | kFloat, F | kFast, I | kFast | RYX_KeepScale, F | RYX_InReversed | kInt,
                          I | RYX_OutReversed, RYX_Init, RYX_Init | kFloat, RYX_Release, 0};

constexpr int kReal16[] = {F | RYX_RCPackOut, I | RYX_RCPermOut | kFloat, F | RYX_RCPermOut | kFast,
                           F | RYX_RCPackOut | kInt, RYX_Init, RYX_Release, 0};
constexpr int kCcs16[] = {I | RYX_RCPackIn, F | RYX_RCPermIn | kFloat, I | RYX_RCPermIn | kFast,
                          I | RYX_RCPackIn | kInt | RYX_KeepScale, RYX_Init, RYX_Release, 0};
constexpr int kPlain16[] = {F, I, F | kInt, I | kFloat, F | kFast, I | RYX_KeepScale, RYX_Init, RYX_Release, 0};

using InPlace = void (*)(short*, int, int, int, int*);
using NotInPlace = void (*)(const short*, short*, int, int, int, int*);
Row inPlace(const char* name, InPlace f, SizeFn size, const int* legal) {
  return allocating(row(name, f, out(size), order(), flags(legal), scaleMode(), out(one)));
}
Row notInPlace(const char* name, NotInPlace f, SizeFn in0, SizeFn out0, const int* legal) {
  return allocating(row(name, f, in(in0), out(out0), order(), flags(legal), scaleMode(), out(one)));
}
// Two signals: the second transform may fail after the first was written.
Row twoInPlace(const char* name, RyxStatus (*f)(short*, short*, int, int, int, int*)) {
  return partial(allocating(
      row(name, f, out(pow2plus2<2>), out(pow2plus2<2>), order(), flags(kPlain16), scaleMode(), out(one))));
}
Row twoNip(const char* name, RyxStatus (*f)(const short*, short*, const short*, short*, int, int, int, int*),
           SizeFn in0, SizeFn out0) {
  return partial(allocating(
      row(name, f, in(in0), out(out0), in(in0), out(out0), order(), flags(kPlain16), scaleMode(), out(one))));
}

const AddRows rows({
    allocating(row("ryxvFft", ryxvFft, out(pow2<1>), order(), flags(kFft16), scaleMode(), out(one))),
    // The input is copied to the output before the transform's memory is
    // fetched: a refused allocation comes after that write.
    partial(allocating(row("ryxvFftNip", ryxvFftNip, in(pow2<2>), out(pow2<2>), order(), flags(kFft16), scaleMode(),
                           out(one)))),
    allocating(row("ryxvrFft", ryxvrFft, out(pow2<2>), out(pow2<2>), order(), flags(kFft16), scaleMode(), out(one))),
    allocating(row("ryxvrFftNip", ryxvrFftNip, in(pow2<4>), in(pow2<4>), out(pow2<4>), out(pow2<4>), order(),
                   flags(kFft16), scaleMode(), out(one))),

    inPlace("ryxwRealFftl", ryxwRealFftl, pow2<1>, kReal16),
    notInPlace("ryxwRealFftlNip", ryxwRealFftlNip, pow2<2>, pow2<2>, kReal16),
    inPlace("ryxwCcsFftl", ryxwCcsFftl, pow2<1>, kCcs16),
    notInPlace("ryxwCcsFftlNip", ryxwCcsFftlNip, pow2<2>, pow2<2>, kCcs16),
    inPlace("ryxwRealFft", ryxwRealFft, pow2plus2<1>, kPlain16),
    notInPlace("ryxwRealFftNip", ryxwRealFftNip, pow2<2>, pow2plus2<2>, kPlain16),
    inPlace("ryxwCcsFft", ryxwCcsFft, pow2plus2<1>, kPlain16),
    notInPlace("ryxwCcsFftNip", ryxwCcsFftNip, pow2plus2<2>, pow2<2>, kPlain16),
    twoInPlace("ryxwReal2Fft", ryxwReal2Fft),
    twoInPlace("ryxwCcs2Fft", ryxwCcs2Fft),
    twoNip("ryxwReal2FftNip", ryxwReal2FftNip, pow2<4>, pow2plus2<4>),
    twoNip("ryxwCcs2FftNip", ryxwCcs2FftNip, pow2plus2<4>, pow2<4>),
    row("ryxwMpyRCPack2", ryxwMpyRCPack2, in(pow2<2>), out(pow2<2>), order(), scaleMode(), out(one)),
    row("ryxwMpyRCPerm2", ryxwMpyRCPerm2, in(pow2<2>), out(pow2<2>), order(), scaleMode(), out(one)),
    row("ryxwMpyRCPack3", ryxwMpyRCPack3, in(pow2<3>), in(pow2<3>), out(pow2<3>), order(), scaleMode(), out(one)),
    row("ryxwMpyRCPerm3", ryxwMpyRCPerm3, in(pow2<3>), in(pow2<3>), out(pow2<3>), order(), scaleMode(), out(one)),
});

}  // namespace
}  // namespace hostile
