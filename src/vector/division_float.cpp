// Division kernels for float, double, SCplx and DCplx.
//
// Float quotients of Div2/Div3 use the reciprocal estimate r of the divisor
// refined by one Newton step, in this order: a * r * (2 - b * r). Every
// element with a non-zero divisor gets exactly this value, in the SIMD
// blocks and in the single elements alike, so the result does not depend
// on the array's alignment or length. Div1 divides 1 by val exactly once
// and multiplies, so it can differ in the last bit from Div3 with a
// constant divisor array.
#include <emmintrin.h>

#include <cfloat>
#include <cstdint>

#include "vector/division_kernels.h"

namespace ryx::div {
namespace {

template <class T>
inline T zeroRule(T x, T largest) {
  if (x == T(0)) return x;
  return x > T(0) ? largest : -largest;
}

inline float quotient(float a, float b) {
  const float r = reciprocalEstimate(b);
  return a * r * (2.0f - b * r);
}

// One element of the float Div2/Div3; true for a zero divisor.
inline bool divOne(const float* a, const float* b, float* dst, int i) {
  const float bi = b[i];
  if (bi == 0.0f) {
    dst[i] = zeroRule(a[i], FLT_MAX);
    return true;
  }
  dst[i] = quotient(a[i], bi);
  return false;
}

inline bool isZero(SCplx v) { return v.re == 0.0f && v.im == 0.0f; }
inline bool isZero(DCplx v) { return v.re == 0.0 && v.im == 0.0; }

}  // namespace

float reciprocalEstimate(float b) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(b))); }

bool divScalarS(float val, float* dst, int n) {
  if (val == 0.0f) {
    for (int i = 0; i < n; ++i) dst[i] = zeroRule(dst[i], FLT_MAX);
    return true;
  }
  const float inv = 1.0f / val;
  for (int i = 0; i < n; ++i) dst[i] = dst[i] * inv;
  return false;
}

// Top down, as the float arithmetic kernels: single elements from the top
// until the element just written starts on a 16-byte boundary, then eight
// per turn from the top, then the last 0 to 7 singly. A block whose
// divisors include a zero is done element by element.
bool divArrayS(const float* a, const float* b, float* dst, int n) {
  bool zero = false;
  int i = n;
  while (i > 0 && (reinterpret_cast<std::uintptr_t>(dst + i) & 15) != 0) zero |= divOne(a, b, dst, --i);
  const __m128 two = _mm_set1_ps(2.0f);
  const __m128 fzero = _mm_setzero_ps();
  for (; i >= 8; i -= 8) {
    const int k = i - 8;
    const __m128 b0 = _mm_loadu_ps(b + k), b1 = _mm_loadu_ps(b + k + 4);
    const int hasZero = _mm_movemask_ps(_mm_or_ps(_mm_cmpeq_ps(b0, fzero), _mm_cmpeq_ps(b1, fzero)));
    if (hasZero != 0) {
      for (int j = i - 1; j >= k; --j) zero |= divOne(a, b, dst, j);
      continue;
    }
    const __m128 a0 = _mm_loadu_ps(a + k), a1 = _mm_loadu_ps(a + k + 4);
    const __m128 r0 = _mm_rcp_ps(b0), r1 = _mm_rcp_ps(b1);
    const __m128 q0 = _mm_mul_ps(_mm_mul_ps(a0, r0), _mm_sub_ps(two, _mm_mul_ps(b0, r0)));
    const __m128 q1 = _mm_mul_ps(_mm_mul_ps(a1, r1), _mm_sub_ps(two, _mm_mul_ps(b1, r1)));
    _mm_storeu_ps(dst + k, q0);
    _mm_storeu_ps(dst + k + 4, q1);
  }
  while (i > 0) zero |= divOne(a, b, dst, --i);
  return zero;
}

bool divScalarD(double val, double* dst, int n) {
  if (val == 0.0) {
    for (int i = 0; i < n; ++i) dst[i] = zeroRule(dst[i], DBL_MAX);
    return true;
  }
  const double inv = 1.0 / val;
  for (int i = 0; i < n; ++i) dst[i] = dst[i] * inv;
  return false;
}

bool divArrayD(const double* a, const double* b, double* dst, int n) {
  bool zero = false;
  for (int i = 0; i < n; ++i) {
    const double bi = b[i];
    if (bi == 0.0) {
      dst[i] = zeroRule(a[i], DBL_MAX);
      zero = true;
    } else {
      dst[i] = a[i] / bi;
    }
  }
  return zero;
}

// Complex: m = b.re^2 + b.im^2, re = (a.re*b.re + a.im*b.im) / m,
// im = (a.im*b.re - a.re*b.im) / m. Div1 forms 1/m exactly once.
bool divScalarC(SCplx val, SCplx* dst, int n) {
  if (isZero(val)) {
    for (int i = 0; i < n; ++i) dst[i] = SCplx{0.0f, 0.0f};
    return true;
  }
  const float inv = 1.0f / (val.re * val.re + val.im * val.im);
  for (int i = 0; i < n; ++i) {
    const SCplx x = dst[i];
    dst[i] = SCplx{(x.re * val.re + x.im * val.im) * inv, (x.im * val.re - x.re * val.im) * inv};
  }
  return false;
}

// Div2/Div3 refine the estimate of 1/m by one Newton step, r * (2 - m * r),
// and multiply both numerators by it; top down.
bool divArrayC(const SCplx* a, const SCplx* b, SCplx* dst, int n) {
  bool zero = false;
  for (int i = n - 1; i >= 0; --i) {
    const SCplx x = a[i], y = b[i];
    if (isZero(y)) {
      dst[i] = SCplx{0.0f, 0.0f};
      zero = true;
      continue;
    }
    const float m = y.re * y.re + y.im * y.im;
    const float r = reciprocalEstimate(m);
    const float inv = r * (2.0f - m * r);
    dst[i] = SCplx{(x.re * y.re + x.im * y.im) * inv, (x.im * y.re - x.re * y.im) * inv};
  }
  return zero;
}

bool divScalarZ(DCplx val, DCplx* dst, int n) {
  if (isZero(val)) {
    for (int i = 0; i < n; ++i) dst[i] = DCplx{0.0, 0.0};
    return true;
  }
  const double inv = 1.0 / (val.re * val.re + val.im * val.im);
  for (int i = 0; i < n; ++i) {
    const DCplx x = dst[i];
    dst[i] = DCplx{(x.re * val.re + x.im * val.im) * inv, (x.im * val.re - x.re * val.im) * inv};
  }
  return false;
}

bool divArrayZ(const DCplx* a, const DCplx* b, DCplx* dst, int n) {
  bool zero = false;
  for (int i = n - 1; i >= 0; --i) {
    const DCplx x = a[i], y = b[i];
    if (isZero(y)) {
      dst[i] = DCplx{0.0, 0.0};
      zero = true;
      continue;
    }
    const double m = y.re * y.re + y.im * y.im;
    dst[i] = DCplx{(x.re * y.re + x.im * y.im) / m, (x.im * y.re - x.re * y.im) / m};
  }
  return zero;
}

}  // namespace ryx::div
