// Lane folding shared by the SSE2 and AVX2 dot-product kernels. Internal
// linkage (static), so that each kernel file keeps its own copy compiled
// with its own instruction set.
#pragma once

#include <emmintrin.h>

#include "ryxcore.h"

namespace ryx::dot {

// Lanes (x0, x1, x2, x3): (x0 + x2) + (x1 + x3).
static inline float laneSum(__m128 s) {
  s = _mm_add_ps(s, _mm_movehl_ps(s, s));
  s = _mm_add_ss(s, _mm_shuffle_ps(s, s, 1));
  return _mm_cvtss_f32(s);
}

// The lowest n % 8 products after the lanes, one by one.
static inline float addTail(float total, const float* a, const float* b, int rest) {
  for (int i = 0; i < rest; ++i) total += a[i] * b[i];
  return total;
}

// Complex kernel, from element i on: at most one more pair into the first
// accumulators, the accumulators folded, then the odd element.
static inline SCplx finishComplex(__m128 plain0, __m128 swapped0, __m128 plain1, __m128 swapped1, const SCplx* a,
                                  const SCplx* b, int i, int n) {
  if (i + 2 <= n) {
    const __m128 a0 = _mm_loadu_ps(&a[i].re), b0 = _mm_loadu_ps(&b[i].re);
    plain0 = _mm_add_ps(plain0, _mm_mul_ps(a0, b0));
    swapped0 = _mm_add_ps(swapped0, _mm_mul_ps(a0, _mm_shuffle_ps(b0, b0, _MM_SHUFFLE(2, 3, 0, 1))));
    i += 2;
  }
  alignas(16) float p[4], s[4];
  _mm_store_ps(p, _mm_add_ps(plain0, plain1));
  _mm_store_ps(s, _mm_add_ps(swapped0, swapped1));
  SCplx r{(p[0] - p[1]) + (p[2] - p[3]), (s[0] + s[1]) + (s[2] + s[3])};
  if (i < n) {
    r.re += a[i].re * b[i].re - a[i].im * b[i].im;
    r.im += a[i].re * b[i].im + a[i].im * b[i].re;
  }
  return r;
}

static inline void prefetchBelow(const float* p) {
  _mm_prefetch(reinterpret_cast<const char*>(p) - 48, _MM_HINT_T0);
  _mm_prefetch(reinterpret_cast<const char*>(p) - 64, _MM_HINT_T0);
}

}  // namespace ryx::dot
