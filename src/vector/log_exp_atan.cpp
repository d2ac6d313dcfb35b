// Kernels of the logarithm, exponent and arctangent family.
//
// Logarithm: x = 2^e * m with m in [sqrt(1/2), sqrt(2)), s = (m-1)/(m+1),
// t = s*s, ln x = e*ln2 + 2*s + s*t*P(t). Exponent: n = round(x*log2(e)),
// r = x - n*ln2 with ln2 in two parts, e^r by a rational form in r*r, then
// scaled by 2^n. Arctangent: |x| above 1 is reduced by 1/|x|, a rational
// form in x*x, the sign restored as a bit. The float forms take quotients
// through the reciprocal estimate and one Newton step.
#include <emmintrin.h>

#include <bit>
#include <cmath>
#include <cstring>

#include "vector/elem_kernels.h"
#include "vector/lnexp_kernels.h"

namespace ryx::lnexp {
namespace {

inline std::uint32_t bitsOf(float x) { return std::bit_cast<std::uint32_t>(x); }
inline float floatOf(std::uint32_t b) { return std::bit_cast<float>(b); }
inline std::uint64_t bitsOf(double x) { return std::bit_cast<std::uint64_t>(x); }
inline double doubleOf(std::uint64_t b) { return std::bit_cast<double>(b); }

// 1/d refined from the estimate: r * (2 - d*r).
inline float reciprocal(float d) {
  const float r = _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(d)));
  return r * (2.0f - d * r);
}

// ---- Logarithm -------------------------------------------------------------

// The logarithm of a positive normal float; `extra` is an exponent offset
// for arguments that were denormal and scaled up.
float lnNormal(float x, int extra) {
  std::uint32_t b = bitsOf(x);
  int e = static_cast<int>(b >> 23) - 127 + extra;
  b = (b & 0x007fffffu) | 0x3f800000u;
  if (b > 0x3fb504f3u) {  // m above sqrt(2): halve it
    b -= 0x00800000u;
    ++e;
  }
  const float m = floatOf(b);
  const float s = (m - 1.0f) * reciprocal(m + 1.0f);
  const float t = s * s;
  const float p = 0.666666627f + t * (0.400005966f + t * (0.285253823f + t * 0.237624556f));
  return static_cast<float>(e) * 0.693147182f + 2.0f * s + s * t * p;
}

float lnScalar(float x) {
  const std::uint32_t b = bitsOf(x);
  if (b - 0x00800000u < 0x7f000000u) return lnNormal(x, 0);
  if ((b & 0x7fffffffu) == 0) return -INFINITY;
  if (b & 0x80000000u) return std::isnan(x) ? x : NAN;
  if (b >= 0x7f800000u) return x;          // +inf and NaN pass
  return lnNormal(x * 0x1p25f, -25);      // denormal
}

// Splits a positive double into e and m in [sqrt(1/2), sqrt(2)); denormals
// are scaled up first.
inline double splitDouble(double x, int& e) {
  int extra = 0;
  if (x < 0x1p-1022) {
    x *= 0x1p60;
    extra = -60;
  }
  std::uint64_t b = bitsOf(x);
  e = static_cast<int>(b >> 52) - 1023 + extra;
  b = (b & 0x000fffffffffffffull) | 0x3ff0000000000000ull;
  if (b > 0x3ff6a09e667f3bcdull) {
    b -= 0x0010000000000000ull;
    ++e;
  }
  return doubleOf(b);
}

// NaN for negative, -inf for zero, the argument for +inf and NaN; 0 when x
// is positive finite (then `special` is false).
inline double specialLog(double x, bool& special) {
  special = true;
  if (std::isnan(x)) return x;
  if (x == 0.0) return -INFINITY;
  if (x < 0.0) return NAN;
  if (std::isinf(x)) return x;
  special = false;
  return 0.0;
}

double lnDouble(double x) {
  bool special;
  const double sv = specialLog(x, special);
  if (special) return sv;
  int e;
  const double m = splitDouble(x, e);
  const double s = (m - 1.0) / (m + 1.0), t = s * s;
  const double p =
      0.6666666666666734 +
      t * (0.399999999994167 +
           t * (0.28571428742008753 +
                t * (0.22222198607186278 + t * (0.18183562745289936 + t * (0.15314087275331442 + t * 0.14795612545334175)))));
  const double de = e;
  return de * 0.6931471803691238 + (2.0 * s + (s * t * p + de * 1.9082149292705877e-10));
}

// The short polynomial in double for a float result.
float lnDoubleShort(double x) {
  bool special;
  const double sv = specialLog(x, special);
  if (special) return static_cast<float>(sv);
  int e;
  const double m = splitDouble(x, e);
  const double s = (m - 1.0) / (m + 1.0), t = s * s;
  const double p = 0.666666635059382 + t * (0.4000059794795 + t * (0.28525381498 + t * 0.2376245609));
  return static_cast<float>(e * 0.6931471805599453 + 2.000000000046727 * s + s * t * p);
}

// ---- Exponent --------------------------------------------------------------

// e^r and n for the float form: n = round(x*log2(e)) by the 1.5*2^23 trick.
inline float expReduced(float x, float& n) {
  n = (x * 1.442695022f + 12582912.0f) - 12582912.0f;
  const float r = x - n * 0.693359375f + n * 0.000212194f;
  const float a = r * r;
  const float p = r * (a + 60.0f), q = 12.0f * (a + 10.0f);
  return (q + p) * reciprocal(q - p);
}

float expScalar(float x) {
  if (std::isnan(x)) return x;
  if (std::fabs(x) < 1e-08f) return 1.0f;
  if (x > 87.336502075f) return INFINITY;
  float n;
  if (x >= -87.099998474f && x <= 87.099998474f) {
    const float e = expReduced(x, n);
    return e * floatOf(static_cast<std::uint32_t>(static_cast<int>(n) + 127) << 23);
  }
  if (x < -110.0f) return 0.0f;
  const float e = expReduced(x, n);
  return std::ldexp(e, static_cast<int>(n));  // near the limits: overflow or a denormal
}

double expDouble(double x) {
  if (std::isnan(x)) return x;
  if (x > 709.782712893384) return INFINITY;
  if (x < -746.0) return 0.0;
  if (std::fabs(x) < 1e-17) return 1.0;
  const double n = (x * 1.4426950408889634 + 6755399441055744.0) - 6755399441055744.0;
  const double r = (x - n * 0.6931471803691238) - n * 1.9082149292705877e-10;
  const double a = r * r;
  // Odd and even series: p/q approximates tanh(r/2), so (q+p)/(q-p) = e^r.
  const double p = r * (0.25 + a * (0.006943600015117929 + a * 1.6520330026827912e-05));
  const double q = 0.5 + a * (0.05555386669690012 + a * 0.0004958628849054413);
  return std::ldexp(1.0 + 2.0 * p / (q - p), static_cast<int>(n));
}

// ---- Arctangent ------------------------------------------------------------

constexpr float kHalfPiF = 1.5707963267948966f;

float atanScalar(float x) {
  const std::uint32_t b = bitsOf(x);
  const std::uint32_t sign = b & 0x80000000u;
  float a = floatOf(b & 0x7fffffffu);
  if (a >= INFINITY) return floatOf(bitsOf(kHalfPiF) | sign);
  if (std::isnan(a) || a == 0.0f) return x;
  const bool inverted = a > 1.0f;
  if (inverted) a = 1.0f / a;
  const float t = a * a, u = t * t;
  const float num = 0.16929808076717057f * t + 0.14563069811407553f * u + 0.020972123400173f * u * t +
                    1.1139321843993106e-09f;
  const float den = 0.7416239113090943f * t + 0.025449373192319054f * u * t + 0.2902606865063184f * u +
                    0.5078944990310164f;
  float r = a - a * num / den;
  if (inverted) r = kHalfPiF - r;
  return floatOf(bitsOf(r) | sign);
}

double atanDouble(double x) {
  const long double a = std::fabs(static_cast<long double>(x));
  if (std::isnan(x)) return x;
  const long double r = a > 1.0L ? 1.5707963267948966192313216916397514L - std::atan(1.0L / a) : std::atan(a);
  return std::copysign(static_cast<double>(r), x);
}

// atan2 built on the float arctangent.
float argScalar(float re, float im) {
  if (std::isnan(re) || std::isnan(im)) return re + im;
  if (re == 0.0f) return im > 0.0f ? kHalfPiF : (im < 0.0f ? -kHalfPiF : (std::signbit(re) ? std::copysign(3.14159265f, im) : im));
  float a = atanScalar(im / re);
  if (re < 0.0f) a += std::signbit(im) ? -3.14159265f : 3.14159265f;
  return a;
}

template <class S, class D, class F>
void each(const S* src, D* dst, int n, F f) {
  for (int i = 0; i < n; ++i) dst[i] = f(src[i]);
}

// The lane form for whole groups (eight lanes where allowed), the scalar
// kernel for the rest: the same bits either way.
void laned(const float* src, float* dst, int n, int (*lanes::Kernels::*kernel)(const float*, float*, int),
           float (*one)(float)) {
  const int done = ((n >= 8 ? lanes::pick() : lanes::kSse2).*kernel)(src, dst, n);
  each(src + done, dst + done, n - done, one);
}

}  // namespace

float lnOne(float x) { return lnScalar(x); }
float expOne(float x) { return expScalar(x); }
float atanOne(float x) { return atanScalar(x); }

void lnF32(const float* src, float* dst, int n) { laned(src, dst, n, &lanes::Kernels::ln, lnScalar); }
void lnF64(const double* src, double* dst, int n) { each(src, dst, n, lnDouble); }
void lnF64ToF32(const double* src, float* dst, int n) { each(src, dst, n, lnDoubleShort); }
void lgF32(const float* src, float* dst, int n) {
  lnF32(src, dst, n);
  for (int i = 0; i < n; ++i) dst[i] *= 0.434294492f;
}
void lgF64(const double* src, double* dst, int n) {
  each(src, dst, n, [](double x) { return lnDouble(x) * 0.4342944819032518; });
}
void expF32(const float* src, float* dst, int n) { laned(src, dst, n, &lanes::Kernels::exp, expScalar); }
void expF64(const double* src, double* dst, int n) { each(src, dst, n, expDouble); }
void expF32ToF64(const float* src, double* dst, int n) {
  each(src, dst, n, [](float x) { return expDouble(x); });
}
void atanF32(const float* src, float* dst, int n) {
  laned(src, dst, n, &lanes::Kernels::atan, atanScalar);
}
void atanF64(const double* src, double* dst, int n) { each(src, dst, n, atanDouble); }

void lgC32(const SCplx* src, SCplx* dst, int n) {
  for (int i = 0; i < n; ++i) {
    const SCplx x = src[i];
    const float mag = static_cast<float>(std::hypot(static_cast<double>(x.re), static_cast<double>(x.im)));
    dst[i] = {lnScalar(mag) * 0.434294492f, argScalar(x.re, x.im) * 0.4342944819032518f};
  }
}

void lgC32ToC64(const SCplx* src, DCplx* dst, int n, SCplx* const work[5]) {
  auto* mag = reinterpret_cast<double*>(work[0]);
  auto* ratio = reinterpret_cast<double*>(work[1]);
  auto* angle = reinterpret_cast<double*>(work[2]);
  auto* kind = reinterpret_cast<std::uint32_t*>(work[3]);
  for (int i = 0; i < n; i += 4) {
    const int count = n - i < 4 ? n - i : 4;
    const int width = count == 4 ? 4 : 1;
    for (int base = 0; base < count; base += width) {
      // Classified first: (-inf, -inf) for a zero or positive denormal real
      // part, (NaN, NaN) for an infinite or NaN part; others by formula.
      for (int k = 0; k < width; ++k) {
        const SCplx x = src[i + base + k];
        const std::uint32_t re = bitsOf(x.re);
        const bool wild = !std::isfinite(x.re) || !std::isfinite(x.im);
        kind[k] = re < 0x00800000u ? 1u : (wild ? 2u : 0u);
        const double dr = x.re, di = x.im;
        mag[k] = kind[k] != 0 ? 1.0 : dr * dr + di * di;
        ratio[k] = kind[k] != 0 ? 0.0 : di / dr;
      }
      elem::sqrtF64(mag, mag, width);
      lnF64(mag, mag, width);
      atanF64(ratio, angle, width);
      for (int k = 0; k < width; ++k) {
        const SCplx x = src[i + base + k];
        DCplx& out = dst[i + base + k];
        if (kind[k] == 1) out = {-INFINITY, -INFINITY};
        else if (kind[k] == 2) out = {NAN, NAN};
        else {
          double a = angle[k];
          if (x.re < 0.0f) a += x.im < 0.0f ? -3.141592653589793 : 3.141592653589793;
          out = {mag[k] * 0.4342944819032518, a * 0.4342944819032518};
        }
      }
    }
  }
}

// ---- 16 bits ---------------------------------------------------------------

void lnI16(const short* src, short* dst, int n) {
  static constexpr int kUpper[10] = {1, 4, 12, 33, 90, 244, 665, 1808, 4914, 13359};
  for (int i = 0; i < n; ++i) {
    // Pairs are read from one 32-bit word: the low half zero-extended, the
    // high half sign-extended; an odd length's last element stands alone.
    const bool lowHalf = i % 2 == 0 && i + 1 < n;
    const int x = lowHalf ? static_cast<std::uint16_t>(src[i]) : src[i];
    int r = 0;
    while (r < 10 && x > kUpper[r]) ++r;
    dst[i] = static_cast<short>(r);
  }
}

namespace {

// e^x * 2^-f in extended precision, through the power of two.
long double scaledExp(int x, int f) {
  return std::exp2(static_cast<long double>(x) * 1.4426950408889634L - f);
}

// The low 16 bits of a non-negative value's integer part (0 for infinity).
short low16(long double v) {
  if (!std::isfinite(v)) return 0;
  return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(std::fmod(std::trunc(v), 65536.0L))));
}

}  // namespace

int autoFactorExp(const short* src, int n) {
  short hi = src[0];
  for (int i = 1; i < n; ++i) hi = src[i] > hi ? src[i] : hi;
  if (std::trunc(scaledExp(hi, 0) + 0.5L) <= 32767.0L) return 0;
  return static_cast<int>(std::floor(static_cast<long double>(hi) * 1.4426950408889634L)) - 14;
}

void expI16(const short* src, short* dst, int n, bool saturate, int f) {
  // The tables of rounded values cover x from 0 to 24 (factors 0..16; to 21
  // when wrapping with factor 0) and from -12 to 12 (factors -16..-1):
  // below them 0, above them 32767 (saturating) or the truncated power's low
  // 16 bits (wrapping). Other factors compute every element and round.
  const bool small = f >= -16 && f <= 16;
  const int lo = f >= 0 ? 0 : -12;
  const int hi = f >= 0 ? (f == 0 && !saturate ? 21 : 24) : 12;
  for (int i = 0; i < n; ++i) {
    const int x = src[i];
    const long double v = scaledExp(x, f);
    const long double rounded = std::trunc(v + 0.5L);
    short r;
    if (small && x < lo) r = 0;
    else if (small && x > hi) r = saturate ? short{32767} : low16(v);
    else if (saturate) r = rounded >= 32767.0L ? short{32767} : static_cast<short>(rounded);
    else r = low16(rounded);
    dst[i] = r;
  }
}

}  // namespace ryx::lnexp
