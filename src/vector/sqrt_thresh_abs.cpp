// Entries of square, square root, threshold, inverse threshold and absolute
// value (source group "ryxvec"). The in-place form `1` takes the array as
// source and destination; both shapes check the length, then the arrays,
// then the scalar arguments, stopping at the first failure. A bad element
// found in the data (a negative root, a zero under a zero inverse
// threshold) is reported once, after the whole array has been written.
#include <source_location>

#include "frame/checks.h"
#include "vector/elem_kernels.h"

namespace ryx::elem {
namespace {

constexpr const char* kStem = "ryxvec";

template <class T>
struct Io {
  const T* src;
  T* dst;
  bool inPlace;
};
template <class T>
Io<T> one(T* vec) {
  return {vec, vec, true};
}
template <class T>
Io<T> two(const T* src, T* dst) {
  return {src, dst, false};
}

template <class T>
bool valid(const char* name, const Io<T>& io, int len) {
  if (io.inPlace) return passFirst({name, kStem}, {{len <= 0, "len<=0"}, {io.dst == nullptr, "vec==0"}});
  return passFirst({name, kStem}, {{len <= 0, "len<=0"}, {io.src == nullptr, "src==0"}, {io.dst == nullptr, "dst==0"}});
}

void reportData(const char* name, bool bad, const char* text,
                std::source_location at = std::source_location::current()) {
  if (bad) ryxError(RYX_StsBadArg, name, text, kStem, static_cast<int>(at.line()));
}

template <class T, class K>
void plain(const char* name, Io<T> io, int len, K kernel) {
  if (valid(name, io, len)) kernel(io.src, io.dst, len);
}

template <class T, class K>
void root(const char* name, Io<T> io, int len, K kernel) {
  if (valid(name, io, len)) reportData(name, kernel(io.src, io.dst, len), "Element of input vector is negative");
}

template <class T, class R, class K>
void realThresh(const char* name, Io<T> io, int len, R thresh, int relOp, K kernel) {
  if (valid(name, io, len)) kernel(io.src, io.dst, len, thresh, relOp);
}

// The SCplx and WCplx forms settle a zero threshold up front, testing relOp
// for exactly 1: then the array is cleared; otherwise it stays (in place)
// or is copied.
template <class T, class R, class K, class Z, class C>
void threshComplex(const char* name, Io<T> io, int len, R thresh, int relOp, const char* negative, K kernel,
                   Z zero, C copy) {
  if (!valid(name, io, len) || !passFirst({name, kStem}, {{thresh < 0, negative}})) return;
  if (thresh == 0) {
    if (relOp == 1) zero(io.dst, len);
    else if (!io.inPlace) copy(io.src, io.dst, len);
    return;
  }
  if (!kernel(io.src, io.dst, len, thresh, relOp)) reportNoMem({name, kStem}, "Out of memory");
}

template <class T, class R, class K>
void invThresh(const char* name, Io<T> io, int len, R thresh, const char* negative, K kernel) {
  if (!valid(name, io, len) || !passFirst({name, kStem}, {{thresh < 0, negative}})) return;
  reportData(name, kernel(io.src, io.dst, len, thresh), "zero element and zero thresh");
}

// 16-bit squares: the mode is read by bits; auto scale needs the factor.
template <class T, class K>
void sqr16(const char* name, Io<T> io, int len, int scaleMode, int* scaleFactor, K kernel) {
  if (!valid(name, io, len)) return;
  if (!passFirst({name, kStem}, {{(scaleMode & RYX_AUTO_SCALE) != 0 && scaleFactor == nullptr, "scaleFactor==0"}}))
    return;
  kernel(io.src, io.dst, len, scaleMode, scaleFactor);
}

void sqrShort(const short* src, short* dst, int n, int scaleMode, int* scaleFactor) {
  if ((scaleMode & RYX_AUTO_SCALE) != 0) {
    const int f = autoFactorSqr(src, n);
    *scaleFactor = f;
    sqrI16(src, dst, n, 0, f);  // the data fit after the shift: plain wrap
    return;
  }
  const int f = (scaleMode & RYX_FIXED_SCALE) != 0 && scaleFactor != nullptr ? *scaleFactor : 0;
  sqrI16(src, dst, n, scaleMode, f);
}

// The SCplx threshold kernel cannot fail.
bool threshSCplx(const SCplx* src, SCplx* dst, int n, float thresh, int relOp) {
  threshC32(src, dst, n, thresh, relOp);
  return true;
}

// DCplx has no zero-threshold front test: its kernel's rules give the same
// for relOp 0 and 1.
void threshDCplx(const char* name, Io<DCplx> io, int len, double thresh, int relOp) {
  if (valid(name, io, len) && passFirst({name, kStem}, {{thresh < 0.0, "thresh<0.0"}}))
    threshC64(io.src, io.dst, len, thresh, relOp);
}

}  // namespace
}  // namespace ryx::elem

using namespace ryx::elem;

extern "C" {

RYXAPI void ryxsbSqr1(float* vec, int len) { plain(__func__, one(vec), len, sqrF32); }
RYXAPI void ryxsbSqr2(const float* src, float* dst, int len) { plain(__func__, two(src, dst), len, sqrF32); }
RYXAPI void ryxdbSqr1(double* vec, int len) { plain(__func__, one(vec), len, sqrF64); }
RYXAPI void ryxdbSqr2(const double* src, double* dst, int len) { plain(__func__, two(src, dst), len, sqrF64); }
RYXAPI void ryxcbSqr1(SCplx* vec, int len) { plain(__func__, one(vec), len, sqrC32); }
RYXAPI void ryxcbSqr2(const SCplx* src, SCplx* dst, int len) { plain(__func__, two(src, dst), len, sqrC32); }
RYXAPI void ryxzbSqr1(DCplx* vec, int len) { plain(__func__, one(vec), len, sqrC64); }
RYXAPI void ryxzbSqr2(const DCplx* src, DCplx* dst, int len) { plain(__func__, two(src, dst), len, sqrC64); }
RYXAPI void ryxwbSqr1(short* vec, int len, int scaleMode, int* scaleFactor) {
  sqr16(__func__, one(vec), len, scaleMode, scaleFactor, sqrShort);
}
RYXAPI void ryxwbSqr2(const short* src, short* dst, int len, int scaleMode, int* scaleFactor) {
  sqr16(__func__, two(src, dst), len, scaleMode, scaleFactor, sqrShort);
}
RYXAPI void ryxvbSqr1(WCplx* vec, int len, int scaleMode, int* scaleFactor) {
  sqr16(__func__, one(vec), len, scaleMode, scaleFactor, sqrCI16);
}
RYXAPI void ryxvbSqr2(const WCplx* src, WCplx* dst, int len, int scaleMode, int* scaleFactor) {
  sqr16(__func__, two(src, dst), len, scaleMode, scaleFactor, sqrCI16);
}

RYXAPI void ryxsbSqrt1(float* vec, int len) { root(__func__, one(vec), len, sqrtF32); }
RYXAPI void ryxsbSqrt2(const float* src, float* dst, int len) { root(__func__, two(src, dst), len, sqrtF32); }
RYXAPI void ryxdbSqrt1(double* vec, int len) { root(__func__, one(vec), len, sqrtF64); }
RYXAPI void ryxdbSqrt2(const double* src, double* dst, int len) { root(__func__, two(src, dst), len, sqrtF64); }
RYXAPI void ryxwbSqrt1(short* vec, int len) { root(__func__, one(vec), len, sqrtI16); }
RYXAPI void ryxwbSqrt2(const short* src, short* dst, int len) { root(__func__, two(src, dst), len, sqrtI16); }
RYXAPI void ryxcbSqrt1(SCplx* vec, int len) { plain(__func__, one(vec), len, sqrtC32); }
RYXAPI void ryxcbSqrt2(const SCplx* src, SCplx* dst, int len) { plain(__func__, two(src, dst), len, sqrtC32); }
RYXAPI void ryxzbSqrt1(DCplx* vec, int len) { plain(__func__, one(vec), len, sqrtC64); }
RYXAPI void ryxzbSqrt2(const DCplx* src, DCplx* dst, int len) { plain(__func__, two(src, dst), len, sqrtC64); }
RYXAPI void ryxvbSqrt1(WCplx* vec, int len) { plain(__func__, one(vec), len, sqrtCI16); }
RYXAPI void ryxvbSqrt2(const WCplx* src, WCplx* dst, int len) { plain(__func__, two(src, dst), len, sqrtCI16); }

RYXAPI void ryxsbThresh1(float* vec, int len, float thresh, int relOp) {
  realThresh(__func__, one(vec), len, thresh, relOp, threshReal<float>);
}
RYXAPI void ryxsbThresh2(const float* src, float* dst, int len, float thresh, int relOp) {
  realThresh(__func__, two(src, dst), len, thresh, relOp, threshReal<float>);
}
RYXAPI void ryxdbThresh1(double* vec, int len, double thresh, int relOp) {
  realThresh(__func__, one(vec), len, thresh, relOp, threshReal<double>);
}
RYXAPI void ryxdbThresh2(const double* src, double* dst, int len, double thresh, int relOp) {
  realThresh(__func__, two(src, dst), len, thresh, relOp, threshReal<double>);
}
RYXAPI void ryxwbThresh1(short* vec, int len, short thresh, int relOp) {
  realThresh(__func__, one(vec), len, thresh, relOp, threshReal<short>);
}
RYXAPI void ryxwbThresh2(const short* src, short* dst, int len, short thresh, int relOp) {
  realThresh(__func__, two(src, dst), len, thresh, relOp, threshReal<short>);
}
RYXAPI void ryxcbThresh1(SCplx* vec, int len, float thresh, int relOp) {
  threshComplex(__func__, one(vec), len, thresh, relOp, "thresh<0.0f", threshSCplx, ryxcbZero, ryxcbCopy);
}
RYXAPI void ryxcbThresh2(const SCplx* src, SCplx* dst, int len, float thresh, int relOp) {
  threshComplex(__func__, two(src, dst), len, thresh, relOp, "thresh<0.0f", threshSCplx, ryxcbZero, ryxcbCopy);
}
RYXAPI void ryxvbThresh1(WCplx* vec, int len, short thresh, int relOp) {
  threshComplex(__func__, one(vec), len, thresh, relOp, "thresh<0", threshCI16, ryxvbZero, ryxvbCopy);
}
RYXAPI void ryxvbThresh2(const WCplx* src, WCplx* dst, int len, short thresh, int relOp) {
  threshComplex(__func__, two(src, dst), len, thresh, relOp, "thresh<0", threshCI16, ryxvbZero, ryxvbCopy);
}
RYXAPI void ryxzbThresh1(DCplx* vec, int len, double thresh, int relOp) {
  threshDCplx(__func__, one(vec), len, thresh, relOp);
}
RYXAPI void ryxzbThresh2(const DCplx* src, DCplx* dst, int len, double thresh, int relOp) {
  threshDCplx(__func__, two(src, dst), len, thresh, relOp);
}

RYXAPI void ryxsbInvThresh1(float* vec, int len, float thresh) {
  invThresh(__func__, one(vec), len, thresh, "thresh<0.0", invThreshF32);
}
RYXAPI void ryxsbInvThresh2(const float* src, float* dst, int len, float thresh) {
  invThresh(__func__, two(src, dst), len, thresh, "thresh<0.0", invThreshF32);
}
RYXAPI void ryxdbInvThresh1(double* vec, int len, double thresh) {
  invThresh(__func__, one(vec), len, thresh, "thresh<0.0", invThreshF64);
}
RYXAPI void ryxdbInvThresh2(const double* src, double* dst, int len, double thresh) {
  invThresh(__func__, two(src, dst), len, thresh, "thresh<0.0", invThreshF64);
}
RYXAPI void ryxcbInvThresh1(SCplx* vec, int len, float thresh) {
  invThresh(__func__, one(vec), len, thresh, "thresh<0.0f", invThreshC32);
}
RYXAPI void ryxcbInvThresh2(const SCplx* src, SCplx* dst, int len, float thresh) {
  invThresh(__func__, two(src, dst), len, thresh, "thresh<0.0f", invThreshC32);
}
RYXAPI void ryxzbInvThresh1(DCplx* vec, int len, double thresh) {
  invThresh(__func__, one(vec), len, thresh, "thresh<0.0", invThreshC64);
}
RYXAPI void ryxzbInvThresh2(const DCplx* src, DCplx* dst, int len, double thresh) {
  invThresh(__func__, two(src, dst), len, thresh, "thresh<0.0", invThreshC64);
}

RYXAPI void ryxsbAbs1(float* vec, int len) { plain(__func__, one(vec), len, absF32); }
RYXAPI void ryxsbAbs2(const float* src, float* dst, int len) { plain(__func__, two(src, dst), len, absF32); }
RYXAPI void ryxdbAbs1(double* vec, int len) { plain(__func__, one(vec), len, absF64); }
RYXAPI void ryxdbAbs2(const double* src, double* dst, int len) { plain(__func__, two(src, dst), len, absF64); }
RYXAPI void ryxwbAbs1(short* vec, int len) { plain(__func__, one(vec), len, absI16); }
RYXAPI void ryxwbAbs2(const short* src, short* dst, int len) { plain(__func__, two(src, dst), len, absI16); }

}  // extern "C"
