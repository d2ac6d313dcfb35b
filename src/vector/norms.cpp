// Norms of an array or of the difference of two (source group "ryxnorm"),
// absolute or relative, and their 32-bit scaled forms for 16-bit data.
//
// flag: exactly one of RYX_C, RYX_L1, RYX_L2, RYX_L2SQUARED, optionally with
// RYX_RELATIVE. The kernel of a kind yields, in double, the largest
// magnitude, the sum of magnitudes or the sum of squares of srcA[i] -
// srcB[i] (of srcA[i] alone when srcB is null); complex elements count by
// their magnitude. Differences are formed in the element type (16-bit ones
// in 32 bits, so they never wrap); sums of 16-bit data are exact integers.
// A relative norm is r / d with d the same kernel on srcA alone, 0 when r
// is below the smallest normal number of the result type, the largest
// finite one when d is. The root of L2 comes last.
#include <emmintrin.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/checks.h"
#include "vector/sum_scale_checks.h"

namespace ryx::stats {
namespace {

constexpr const char* kStem = "ryxnorm";

enum Kind { kC = 1, kL1 = 2, kL2 = 4, kRelative = 8, kL2Squared = 16 };

bool flagIsRight(int flag) {
  const int kind = flag & ~kRelative;
  return kind == kC || kind == kL1 || kind == kL2 || kind == kL2Squared;
}

// ---- per-element differences and magnitudes --------------------------------

// A difference in the element's own arithmetic.
inline float diff(float a, const float* b, int i) { return b ? a - b[i] : a; }
inline double diff(double a, const double* b, int i) { return b ? a - b[i] : a; }
inline SCplx diff(SCplx a, const SCplx* b, int i) { return b ? SCplx{a.re - b[i].re, a.im - b[i].im} : a; }
inline DCplx diff(DCplx a, const DCplx* b, int i) { return b ? DCplx{a.re - b[i].re, a.im - b[i].im} : a; }
inline std::int32_t diff(short a, const short* b, int i) { return b ? std::int32_t{a} - b[i] : a; }
struct Int32Pair {
  std::int32_t re, im;
};
inline Int32Pair diff(WCplx a, const WCplx* b, int i) {
  return b ? Int32Pair{std::int32_t{a.re} - b[i].re, std::int32_t{a.im} - b[i].im} : Int32Pair{a.re, a.im};
}

// Square (or sum of squares of the parts) and magnitude in double.
inline double square(double x) { return x * x; }
inline double square(SCplx x) { return square(x.re) + square(x.im); }
inline double square(DCplx x) { return square(x.re) + square(x.im); }
inline double magnitude(double x) { return std::fabs(x); }
inline double magnitude(SCplx x) { return std::sqrt(square(x)); }
inline double magnitude(DCplx x) { return std::sqrt(square(x)); }

template <class T>
double floatKernel(int kind, const T* a, const T* b, int n) {
  double r = 0.0;
  switch (kind) {
    case kC:
      for (int i = 0; i < n; ++i) r = std::fmax(r, magnitude(diff(a[i], b, i)));
      return r;
    case kL1:
      for (int i = 0; i < n; ++i) r += magnitude(diff(a[i], b, i));
      return r;
    default:
      for (int i = 0; i < n; ++i) r += square(diff(a[i], b, i));
      return r;
  }
}

// The C norm of a float array alone: four lanes with the sign bit cleared,
// a running lane maximum, then the maximum across lanes.
double floatMaxAbs(const float* a, int n) {
  const __m128 mask = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
  float acc = 0.0f;
  int i = 0;
  if (n >= 4) {
    __m128 lanes = _mm_and_ps(_mm_loadu_ps(a), mask);
    for (i = 4; i + 4 <= n; i += 4) lanes = _mm_max_ps(lanes, _mm_and_ps(_mm_loadu_ps(a + i), mask));
    alignas(16) float part[4];
    _mm_store_ps(part, lanes);
    acc = part[0];
    for (int k = 1; k < 4; ++k) acc = acc > part[k] ? acc : part[k];
  }
  for (; i < n; ++i) {
    const float x = std::fabs(a[i]);
    acc = acc > x ? acc : x;
  }
  return acc;
}

double kernel(int kind, const float* a, const float* b, int n) {
  return kind == kC && b == nullptr ? floatMaxAbs(a, n) : floatKernel(kind, a, b, n);
}
double kernel(int kind, const double* a, const double* b, int n) { return floatKernel(kind, a, b, n); }
double kernel(int kind, const SCplx* a, const SCplx* b, int n) { return floatKernel(kind, a, b, n); }
double kernel(int kind, const DCplx* a, const DCplx* b, int n) { return floatKernel(kind, a, b, n); }

// 16-bit: exact integer maxima and sums, magnitudes of complex data in
// double.
double kernel(int kind, const short* a, const short* b, int n) {
  std::uint64_t r = 0;
  for (int i = 0; i < n; ++i) {
    const std::int32_t d = diff(a[i], b, i);
    const std::uint64_t m = static_cast<std::uint64_t>(d < 0 ? -d : d);
    if (kind == kC) r = m > r ? m : r;
    else if (kind == kL1) r += m;
    else r += m * m;
  }
  return static_cast<double>(r);
}
double kernel(int kind, const WCplx* a, const WCplx* b, int n) {
  std::uint64_t squares = 0;
  double r = 0.0;
  for (int i = 0; i < n; ++i) {
    const Int32Pair d = diff(a[i], b, i);
    const std::uint64_t s = static_cast<std::uint64_t>(std::int64_t{d.re} * d.re + std::int64_t{d.im} * d.im);
    if (kind == kC) r = std::fmax(r, std::sqrt(static_cast<double>(s)));
    else if (kind == kL1) r += std::sqrt(static_cast<double>(s));
    else squares += s;
  }
  return kind == kC || kind == kL1 ? r : static_cast<double>(squares);
}

template <class T> struct ResultOf { using type = float; };
template <> struct ResultOf<double> { using type = double; };
template <> struct ResultOf<DCplx> { using type = double; };

template <class T, class R = typename ResultOf<T>::type>
R norm(const char* name, const T* a, const T* b, int n, int flag) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {a == nullptr, "srcA==0"}, {!flagIsRight(flag), "flag is wrong"}}))
    return R{0};
  const bool relative = flag & kRelative;
  if (b == nullptr && relative) return R{1};
  const int kind = flag & ~kRelative;
  double r = kernel(kind, a, b, n);
  if (relative) {
    constexpr double tiny = std::numeric_limits<R>::min(), huge = std::numeric_limits<R>::max();
    if (r < tiny) return R{0};
    const double d = kernel(kind, a, static_cast<const T*>(nullptr), n);
    if (d < tiny) return static_cast<R>(huge);
    r /= d;
  }
  if (kind == kL2) r = std::sqrt(r);
  return static_cast<R>(r);
}

// ---- 32-bit scaled norms ----------------------------------------------------

// Truncation towards zero to 32 bits as the processor's conversion does it:
// NaN and values outside the range give -2147483648.
int truncate32(double d) {
  if (!(d > -2147483649.0 && d < 2147483648.0)) return INT32_MIN;
  return static_cast<int>(d);
}

// A non-negative norm x to 32 bits; scaleMode read by single bits.
//  auto: x + 0.5 truncated when it lies in the 32-bit range (factor 0);
//        else the least f > 0 with 2^f >= |x| / 2^31, and x / 2^f + 0.5
//        truncated;
//  fixed (factor f not 0): x / 2^f, then x + 0.5 truncated, limited to the
//        32-bit range when saturating.
int ownScaleDouble(double x, int scaleMode, int* scaleFactor) {
  if (scaleMode & RYX_AUTO_SCALE) {
    const double d = x + 0.5;
    if (d >= -2147483648.0 && d <= 2147483647.0) {
      *scaleFactor = 0;
      return truncate32(d);
    }
    const double q = std::fabs(x) / 2147483648.0;
    int f = 1;
    while (std::ldexp(1.0, f) < q && f < 1100) ++f;
    *scaleFactor = f;
    return truncate32(x / std::ldexp(1.0, f) + 0.5);
  }
  if ((scaleMode & RYX_FIXED_SCALE) && *scaleFactor != 0) {
    const int f = *scaleFactor;
    if (f >= 1 && f <= 31) x /= static_cast<double>(std::uint32_t{1} << f);
    else if (f >= -31 && f <= -1) x *= static_cast<double>(std::uint32_t{1} << -f);
    else x *= std::pow(2.0, -static_cast<double>(f));
  }
  const double d = x + 0.5;
  if (scaleMode & RYX_SATURATE) {
    if (d > 2147483647.0) return INT32_MAX;
    if (d < -2147483648.0) return INT32_MIN;
  }
  return truncate32(d);
}

template <class T>
int normExt(const char* name, float (*inner)(const T*, const T*, int, int), const T* a, const T* b, int n, int flag,
            int scaleMode, int* scaleFactor) {
  if (!passScale(name, kStem, scaleMode, scaleFactor)) return 0;
  const float x = inner(a, b, n, flag);
  if (ryxGetErrStatus() < 0 && ryxError(RYX_StsBacktrace, name, "", kStem, __LINE__) != 0) return 0;
  return ownScaleDouble(x, scaleMode, scaleFactor);
}

}  // namespace
}  // namespace ryx::stats

using namespace ryx::stats;

extern "C" {

RYXAPI float ryxsNorm(const float* a, const float* b, int n, int flag) { return norm(__func__, a, b, n, flag); }
RYXAPI double ryxdNorm(const double* a, const double* b, int n, int flag) { return norm(__func__, a, b, n, flag); }
RYXAPI float ryxcNorm(const SCplx* a, const SCplx* b, int n, int flag) { return norm(__func__, a, b, n, flag); }
RYXAPI double ryxzNorm(const DCplx* a, const DCplx* b, int n, int flag) { return norm(__func__, a, b, n, flag); }
RYXAPI float ryxwNorm(const short* a, const short* b, int n, int flag) { return norm(__func__, a, b, n, flag); }
RYXAPI float ryxvNorm(const WCplx* a, const WCplx* b, int n, int flag) { return norm(__func__, a, b, n, flag); }

RYXAPI int ryxwNormExt(const short* a, const short* b, int n, int flag, int mode, int* sf) {
  return normExt(__func__, ryxwNorm, a, b, n, flag, mode, sf);
}
RYXAPI int ryxvNormExt(const WCplx* a, const WCplx* b, int n, int flag, int mode, int* sf) {
  return normExt(__func__, ryxvNorm, a, b, n, flag, mode, sf);
}

}  // extern "C"
