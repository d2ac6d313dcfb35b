// Division kernels for 16-bit integers and WCplx.
//
// Quotients are formed in float and rounded to the nearest integer (ties
// to even, the processor's default conversion). Div1 multiplies by 1/val,
// divided exactly once; Div2/Div3 multiply by the reciprocal estimate of
// each divisor refined by one Newton step, r * (2 - b * r).
//
// Narrowing depends on where an element falls, and that split is part of
// the routine's behaviour: the arrays run top down in blocks (eight 16-bit
// elements, or four complex samples), and block elements narrow with
// saturation, while the lowest n % 8 (n % 4) elements, done singly at the
// end, keep the low 16 bits of the rounded quotient. So -32768 / -1 gives
// 32767 inside a block and -32768 as a single element.
#include <emmintrin.h>

#include <cstdint>

#include "vector/division_kernels.h"

namespace ryx::div {
namespace {

inline short low16(std::int32_t v) { return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(v))); }
inline short sat16(std::int32_t v) { return v > 32767 ? 32767 : (v < -32768 ? -32768 : static_cast<short>(v)); }
inline std::int32_t roundToInt(float q) { return _mm_cvtss_si32(_mm_set_ss(q)); }

inline short zeroRule(short x) { return x > 0 ? 32767 : (x < 0 ? -32768 : 0); }

inline float newtonReciprocal(float b) {
  const float r = reciprocalEstimate(b);
  return r * (2.0f - b * r);
}

// Eight 16-bit lanes to two vectors of four floats.
inline void widen(__m128i x, __m128& lo, __m128& hi) {
  lo = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(x, x), 16));
  hi = _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpackhi_epi16(x, x), 16));
}

inline __m128i narrowSaturate(__m128 lo, __m128 hi) { return _mm_packs_epi32(_mm_cvtps_epi32(lo), _mm_cvtps_epi32(hi)); }

inline __m128 newtonReciprocal(__m128 b) {
  const __m128 r = _mm_rcp_ps(b);
  return _mm_mul_ps(r, _mm_sub_ps(_mm_set1_ps(2.0f), _mm_mul_ps(b, r)));
}

struct Parts {
  float re, im;
};

// Complex quotient numerators times the reciprocal of |b|^2, in float.
inline Parts complexQuotient(WCplx x, WCplx y, float inv) {
  const float xr = x.re, xi = x.im, yr = y.re, yi = y.im;
  return {(xr * yr + xi * yi) * inv, (xi * yr - xr * yi) * inv};
}

inline float normOf(WCplx y) {
  const float yr = y.re, yi = y.im;
  return yr * yr + yi * yi;
}

}  // namespace

bool divScalarW(short val, short* dst, int n) {
  if (val == 0) {
    for (int i = 0; i < n; ++i) dst[i] = zeroRule(dst[i]);
    return true;
  }
  const float inv = 1.0f / static_cast<float>(val);
  const __m128 vinv = _mm_set1_ps(inv);
  int i = n;
  for (; i >= 8; i -= 8) {
    short* p = dst + (i - 8);
    __m128 lo, hi;
    widen(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)), lo, hi);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), narrowSaturate(_mm_mul_ps(lo, vinv), _mm_mul_ps(hi, vinv)));
  }
  while (i > 0) {
    --i;
    dst[i] = low16(roundToInt(static_cast<float>(dst[i]) * inv));
  }
  return false;
}

bool divArrayW(const short* a, const short* b, short* dst, int n) {
  bool zero = false;
  const __m128i izero = _mm_setzero_si128();
  int i = n;
  for (; i >= 8; i -= 8) {
    const int k = i - 8;
    const __m128i av = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + k));
    const __m128i bv = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + k));
    const __m128i zmask = _mm_cmpeq_epi16(bv, izero);
    __m128 alo, ahi, blo, bhi;
    widen(av, alo, ahi);
    widen(bv, blo, bhi);
    __m128i q = narrowSaturate(_mm_mul_ps(alo, newtonReciprocal(blo)), _mm_mul_ps(ahi, newtonReciprocal(bhi)));
    if (_mm_movemask_epi8(zmask) != 0) {
      zero = true;
      const __m128i rule = _mm_or_si128(_mm_and_si128(_mm_cmpgt_epi16(av, izero), _mm_set1_epi16(32767)),
                                        _mm_and_si128(_mm_cmplt_epi16(av, izero), _mm_set1_epi16(-32768)));
      q = _mm_or_si128(_mm_and_si128(zmask, rule), _mm_andnot_si128(zmask, q));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + k), q);
  }
  while (i > 0) {
    --i;
    const short x = a[i], y = b[i];
    if (y == 0) {
      dst[i] = zeroRule(x);
      zero = true;
    } else {
      dst[i] = low16(roundToInt(static_cast<float>(x) * newtonReciprocal(static_cast<float>(y))));
    }
  }
  return zero;
}

bool divScalarV(WCplx val, WCplx* dst, int n) {
  if (val.re == 0 && val.im == 0) {
    for (int i = 0; i < n; ++i) dst[i] = WCplx{0, 0};
    return true;
  }
  const float inv = 1.0f / normOf(val);
  const int singles = n % 4;
  for (int i = n - 1; i >= 0; --i) {
    const Parts q = complexQuotient(dst[i], val, inv);
    const std::int32_t re = roundToInt(q.re), im = roundToInt(q.im);
    dst[i] = i >= singles ? WCplx{sat16(re), sat16(im)} : WCplx{low16(re), low16(im)};
  }
  return false;
}

bool divArrayV(const WCplx* a, const WCplx* b, WCplx* dst, int n) {
  bool zero = false;
  const int singles = n % 4;
  for (int i = n - 1; i >= 0; --i) {
    const WCplx x = a[i], y = b[i];
    if (y.re == 0 && y.im == 0) {
      dst[i] = WCplx{0, 0};
      zero = true;
      continue;
    }
    const Parts q = complexQuotient(x, y, newtonReciprocal(normOf(y)));
    const std::int32_t re = roundToInt(q.re), im = roundToInt(q.im);
    dst[i] = i >= singles ? WCplx{sat16(re), sat16(im)} : WCplx{low16(re), low16(im)};
  }
  return zero;
}

}  // namespace ryx::div
