// Sums (source group "ryxnorm"), means and standard deviations ("ryxvec").
//
// Float: four float lanes per strip of 32768 elements, emptied into
// extended precision (float_sums.h); results rounded once at the end.
// Double: plain sequential sums. 16-bit: exact 64-bit sums, brought to 32
// bits by the scale rule of sumTo32 (Sum), truncating division (Mean) or
// the halving rule of StdDev.
//
// Checks stop at the first failure. Routines with a value result give 0
// (ryxwStdDev -1); routines writing through a pointer leave it untouched
// and return the stored status.
#include <cmath>
#include <cstdint>

#include "frame/checks.h"
#include "vector/float_sums.h"
#include "vector/sum_scale_checks.h"

namespace ryx::stats {
namespace {

constexpr const char* kStemNorm = "ryxnorm";
constexpr const char* kStemVec = "ryxvec";

// ---- totals per element type ---------------------------------------------

inline ExtTotals floatTotals(const float* p, int n, bool squares) {
  ExtTotals t;
  laneSums(p, n, 1, squares, t);
  return t;
}
inline ExtTotals floatTotals(const SCplx* p, int n) {
  ExtTotals t;
  laneSums(&p[0].re, n, 2, false, t);
  return t;
}

inline double plainSum(const double* p, int n) {
  double s = 0.0;
  for (int i = 0; i < n; ++i) s += p[i];
  return s;
}
inline DCplx plainSum(const DCplx* p, int n) {
  DCplx s{0.0, 0.0};
  for (int i = 0; i < n; ++i) {
    s.re += p[i].re;
    s.im += p[i].im;
  }
  return s;
}

struct Exact64 {
  std::int64_t re = 0, im = 0;
};
inline std::int64_t exactSum(const short* p, int n) {
  std::int64_t s = 0;
  for (int i = 0; i < n; ++i) s += p[i];
  return s;
}
inline Exact64 exactSum(const WCplx* p, int n) {
  Exact64 s;
  for (int i = 0; i < n; ++i) {
    s.re += p[i].re;
    s.im += p[i].im;
  }
  return s;
}

// ---- 16-bit sum to 32 bits --------------------------------------------------

inline bool fits32(std::int64_t v) { return v >= INT32_MIN && v <= INT32_MAX; }
inline int low32(std::int64_t v) { return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(v))); }

// Auto scaling: the count of arithmetic right shifts that bring s to 32
// bits (shift while the upper word is not all sign, then once more if the
// lower word's sign still differs from that of s).
int autoShift(std::int64_t s) {
  int count = 0;
  while ((s >> 32) != 0 && (s >> 32) != -1) {
    s >>= 1;
    ++count;
  }
  return (low32(s) < 0) != (s < 0) ? count + 1 : count;
}

// The 64-bit sum s as a 32-bit result; scaleMode read by single bits.
//  auto: s >> autoShift(s), the count written to *scaleFactor;
//  wrap: factor f (0 without the fixed flag): negative, s << -f in 32 bits
//        (0 beyond 31); positive, s / 2^f truncated towards zero;
//  saturate: s first halved (arithmetic shift, lowering f) until it fits 32
//        bits; a remaining negative f shifts left with a limit check, a
//        positive one shifts right.
int sumTo32(std::int64_t s, int scaleMode, int* scaleFactor) {
  if (scaleMode & RYX_AUTO_SCALE) {
    *scaleFactor = autoShift(s);
    return low32(s >> *scaleFactor);
  }
  int f = (scaleMode & RYX_FIXED_SCALE) ? *scaleFactor : 0;
  if (!(scaleMode & RYX_SATURATE)) {
    if (f < 0) return f < -31 ? 0 : static_cast<int>(static_cast<std::uint32_t>(low32(s)) << -f);
    if (f > 62) return 0;  // |s| < 2^47: every further halving gives 0
    if (f > 0) return low32(s / (std::int64_t{1} << f));
    return low32(s);
  }
  while (!fits32(s)) {
    s >>= 1;
    --f;
  }
  if (f < 0) {
    if (s == 0) return 0;
    const std::int64_t limit = s > 0 ? INT32_MAX : INT32_MIN;
    if (f < -31) return static_cast<int>(limit);
    const std::int64_t v = s * (std::int64_t{1} << -f);
    return fits32(v) ? static_cast<int>(v) : static_cast<int>(limit);
  }
  return static_cast<int>(s >> (f > 63 ? 63 : f));
}

// ---- Sum --------------------------------------------------------------------

bool passSum(const char* name, const void* src, int n) {
  return passFirst({name, kStemNorm}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}});
}
template <class S>
bool passSum(const char* name, const void* src, int n, const S* sum) {
  return passFirst({name, kStemNorm}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {sum == nullptr, "sum==0"}});
}

float sSum(const char* name, const float* src, int n) {
  if (!passSum(name, src, n)) return 0.0f;
  return static_cast<float>(floatTotals(src, n, false).sum[0]);
}

double dSum(const char* name, const double* src, int n) {
  if (!passSum(name, src, n)) return 0.0;
  return plainSum(src, n);
}

RyxStatus cSum(const char* name, const SCplx* src, int n, SCplx* sum) {
  if (!passSum(name, src, n, sum)) return ryxGetErrStatus();
  const ExtTotals t = floatTotals(src, n);
  *sum = {static_cast<float>(t.sum[0]), static_cast<float>(t.sum[1])};
  return RYX_StsOk;
}

RyxStatus zSum(const char* name, const DCplx* src, int n, DCplx* sum) {
  if (!passSum(name, src, n, sum)) return ryxGetErrStatus();
  *sum = plainSum(src, n);
  return RYX_StsOk;
}

int wSum(const char* name, const short* src, int n, int scaleMode, int* scaleFactor) {
  if (!passScale(name, kStemNorm, scaleMode, scaleFactor) || !passSum(name, src, n)) return 0;
  return sumTo32(exactSum(src, n), scaleMode, scaleFactor);
}

// Both parts share one factor: under auto scaling the larger of the two
// parts' own counts.
RyxStatus vSum(const char* name, const WCplx* src, int n, ICplx* sum, int scaleMode, int* scaleFactor) {
  if (!passScale(name, kStemNorm, scaleMode, scaleFactor) || !passSum(name, src, n, sum)) return ryxGetErrStatus();
  const Exact64 s = exactSum(src, n);
  if (scaleMode & RYX_AUTO_SCALE) {
    const int a = autoShift(s.re), b = autoShift(s.im);
    const int f = a > b ? a : b;
    *scaleFactor = f;
    *sum = {low32(s.re >> f), low32(s.im >> f)};
  } else {
    *sum = {sumTo32(s.re, scaleMode, scaleFactor), sumTo32(s.im, scaleMode, scaleFactor)};
  }
  return RYX_StsOk;
}

// ---- Mean -------------------------------------------------------------------

bool passMean(const char* name, const void* vec, int len) {
  return passFirst({name, kStemVec}, {{len <= 0, "len<=0"}, {vec == nullptr, "vec==0"}});
}
template <class M>
bool passMean(const char* name, const void* vec, int len, const M* mean) {
  return passFirst({name, kStemVec}, {{len <= 0, "len<=0"}, {vec == nullptr, "vec==0"}, {mean == nullptr, "mean==0"}});
}

float sMean(const char* name, const float* vec, int len) {
  if (!passMean(name, vec, len)) return 0.0f;
  return static_cast<float>(floatTotals(vec, len, false).sum[0] / len);
}

double dMean(const char* name, const double* vec, int len) {
  if (!passMean(name, vec, len)) return 0.0;
  return plainSum(vec, len) / len;
}

// The complex means multiply by the reciprocal 1.0 / len.
RyxStatus cMean(const char* name, const SCplx* vec, int len, SCplx* mean) {
  if (!passMean(name, vec, len, mean)) return ryxGetErrStatus();
  const ExtTotals t = floatTotals(vec, len);
  const long double r = 1.0 / len;
  *mean = {static_cast<float>(t.sum[0] * r), static_cast<float>(t.sum[1] * r)};
  return RYX_StsOk;
}

RyxStatus zMean(const char* name, const DCplx* vec, int len, DCplx* mean) {
  if (!passMean(name, vec, len, mean)) return ryxGetErrStatus();
  const DCplx s = plainSum(vec, len);
  const double r = 1.0 / len;
  *mean = {s.re * r, s.im * r};
  return RYX_StsOk;
}

int wMean(const char* name, const short* vec, int len) {
  if (!passMean(name, vec, len)) return 0;
  return static_cast<int>(exactSum(vec, len) / len);
}

RyxStatus vMean(const char* name, const WCplx* vec, int len, WCplx* mean) {
  if (!passMean(name, vec, len, mean)) return ryxGetErrStatus();
  const Exact64 s = exactSum(vec, len);
  *mean = {static_cast<short>(s.re / len), static_cast<short>(s.im / len)};
  return RYX_StsOk;
}

// ---- StdDev -----------------------------------------------------------------

// Sample standard deviation in extended precision. Rounding in the sums can
// leave a tiny negative variance for nearly constant data: it counts as 0.
long double deviation(long double sum, long double squares, int len) {
  const long double var = (squares - sum * sum / len) / (len - 1);
  return var > 0.0L ? std::sqrt(var) : 0.0L;
}

bool passDev(const char* name, const void* vec, int len) {
  return passFirst({name, kStemVec}, {{len <= 0, "len<=0"}, {vec == nullptr, "vec==0"}, {len < 2, "len<2"}});
}

float sStdDev(const char* name, const float* vec, int len) {
  if (!passDev(name, vec, len)) return 0.0f;
  const ExtTotals t = floatTotals(vec, len, true);
  return static_cast<float>(deviation(t.sum[0], t.squares[0], len));
}

double dStdDev(const char* name, const double* vec, int len) {
  if (!passDev(name, vec, len)) return 0.0;
  double s = 0.0, q = 0.0;
  for (int i = 0; i < len; ++i) {
    s += vec[i];
    q += vec[i] * vec[i];
  }
  return static_cast<double>(deviation(s, q, len));
}

// The exact integer sums give v in extended precision; scaleMode read by
// bits: auto halves v until it is at most 32767 and writes the count;
// otherwise a fixed factor f doubles (-f times) or halves (f times) it, and
// saturation caps it at 32767. The truncated value is returned as a 16-bit
// value (its low 16 bits), widened.
int wStdDev(const char* name, const short* vec, int len, int scaleMode, int* scaleFactor) {
  if (!passDev(name, vec, len)) return -1;
  if (!passFirst({name, kStemVec}, {{(scaleMode & RYX_AUTO_SCALE) && scaleFactor == nullptr, "scaleFactor==0"}}))
    return 0;
  std::int64_t sum = 0, squares = 0;
  for (int i = 0; i < len; ++i) {
    sum += vec[i];
    squares += std::int64_t{vec[i]} * vec[i];
  }
  long double v = deviation(static_cast<long double>(sum), static_cast<long double>(squares), len);
  if (scaleMode & RYX_AUTO_SCALE) {
    int count = 0;
    for (; v > 32767.0L; ++count) v *= 0.5L;
    *scaleFactor = count;
  } else {
    const int f = ((scaleMode & RYX_FIXED_SCALE) && scaleFactor) ? *scaleFactor : 0;
    v = std::ldexp(v, -f);
    if ((scaleMode & RYX_SATURATE) && v > 32767.0L) v = 32767.0L;
  }
  const long double low = std::fmod(std::trunc(v), 65536.0L);
  return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::int64_t>(low)));
}

}  // namespace
}  // namespace ryx::stats

using namespace ryx::stats;

extern "C" {

RYXAPI float ryxsSum(const float* src, int n) { return sSum(__func__, src, n); }
RYXAPI double ryxdSum(const double* src, int n) { return dSum(__func__, src, n); }
RYXAPI RyxStatus ryxcSum(const SCplx* src, int n, SCplx* sum) { return cSum(__func__, src, n, sum); }
RYXAPI RyxStatus ryxzSum(const DCplx* src, int n, DCplx* sum) { return zSum(__func__, src, n, sum); }
RYXAPI int ryxwSum(const short* src, int n, int mode, int* sf) { return wSum(__func__, src, n, mode, sf); }
RYXAPI RyxStatus ryxvSum(const WCplx* src, int n, ICplx* sum, int mode, int* sf) {
  return vSum(__func__, src, n, sum, mode, sf);
}

RYXAPI float ryxsMean(const float* vec, int len) { return sMean(__func__, vec, len); }
RYXAPI double ryxdMean(const double* vec, int len) { return dMean(__func__, vec, len); }
RYXAPI RyxStatus ryxcMean(const SCplx* vec, int len, SCplx* mean) { return cMean(__func__, vec, len, mean); }
RYXAPI RyxStatus ryxzMean(const DCplx* vec, int len, DCplx* mean) { return zMean(__func__, vec, len, mean); }
RYXAPI int ryxwMean(const short* vec, int len) { return wMean(__func__, vec, len); }
RYXAPI RyxStatus ryxvMean(const WCplx* vec, int len, WCplx* mean) { return vMean(__func__, vec, len, mean); }

RYXAPI float ryxsStdDev(const float* vec, int len) { return sStdDev(__func__, vec, len); }
RYXAPI double ryxdStdDev(const double* vec, int len) { return dStdDev(__func__, vec, len); }
RYXAPI int ryxwStdDev(const short* vec, int len, int mode, int* sf) { return wStdDev(__func__, vec, len, mode, sf); }

}  // extern "C"
