// Float dot-product kernels on SSE2 lanes (see dot_kernels.h). Loads are
// unaligned, so array bases may have any alignment.
#include "vector/dot_kernels.h"

#include <emmintrin.h>

namespace ryx::dot {
namespace {

inline void prefetchBelow(const float* p) {
  _mm_prefetch(reinterpret_cast<const char*>(p) - 48, _MM_HINT_T0);
  _mm_prefetch(reinterpret_cast<const char*>(p) - 64, _MM_HINT_T0);
}

// Lanes (x0, x1, x2, x3): (x0 + x2) + (x1 + x3).
inline float laneSum(__m128 s) {
  s = _mm_add_ps(s, _mm_movehl_ps(s, s));
  s = _mm_add_ss(s, _mm_shuffle_ps(s, s, 1));
  return _mm_cvtss_f32(s);
}

}  // namespace

float dotF32(const float* a, const float* b, int n) {
  const int rest = n & 7;
  float total = 0.0f;
  if (n >= 8) {
    __m128 acc0 = _mm_setzero_ps(), acc1 = _mm_setzero_ps();
    for (int i = n - 8; i >= rest; i -= 8) {
      prefetchBelow(a + i);
      prefetchBelow(b + i);
      acc0 = _mm_add_ps(acc0, _mm_mul_ps(_mm_loadu_ps(a + i), _mm_loadu_ps(b + i)));
      acc1 = _mm_add_ps(acc1, _mm_mul_ps(_mm_loadu_ps(a + i + 4), _mm_loadu_ps(b + i + 4)));
    }
    total = laneSum(_mm_add_ps(acc0, acc1));
  }
  for (int i = 0; i < rest; ++i) total += a[i] * b[i];
  return total;
}

SCplx dotC32(const SCplx* a, const SCplx* b, int n) {
  const float* pa = &a[0].re;
  const float* pb = &b[0].re;
  // Two pairs of accumulators, four complex per turn, so that two chains of
  // additions run side by side.
  __m128 plain0 = _mm_setzero_ps(), swapped0 = _mm_setzero_ps();
  __m128 plain1 = _mm_setzero_ps(), swapped1 = _mm_setzero_ps();
  int i = 0;
  for (; i + 4 <= n; i += 4) {
    const __m128 a0 = _mm_loadu_ps(pa + 2 * i), b0 = _mm_loadu_ps(pb + 2 * i);
    const __m128 a1 = _mm_loadu_ps(pa + 2 * i + 4), b1 = _mm_loadu_ps(pb + 2 * i + 4);
    plain0 = _mm_add_ps(plain0, _mm_mul_ps(a0, b0));
    swapped0 = _mm_add_ps(swapped0, _mm_mul_ps(a0, _mm_shuffle_ps(b0, b0, _MM_SHUFFLE(2, 3, 0, 1))));
    plain1 = _mm_add_ps(plain1, _mm_mul_ps(a1, b1));
    swapped1 = _mm_add_ps(swapped1, _mm_mul_ps(a1, _mm_shuffle_ps(b1, b1, _MM_SHUFFLE(2, 3, 0, 1))));
  }
  if (i + 2 <= n) {
    const __m128 a0 = _mm_loadu_ps(pa + 2 * i), b0 = _mm_loadu_ps(pb + 2 * i);
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

SCplx dotRealC32(const float* r, const SCplx* c, int n) {
  const float* pc = &c[0].re;
  __m128 acc0 = _mm_setzero_ps(), acc1 = _mm_setzero_ps();
  int i = 0;
  for (; i + 4 <= n; i += 4) {
    const __m128 x = _mm_loadu_ps(r + i);
    acc0 = _mm_add_ps(acc0, _mm_mul_ps(_mm_unpacklo_ps(x, x), _mm_loadu_ps(pc + 2 * i)));
    acc1 = _mm_add_ps(acc1, _mm_mul_ps(_mm_unpackhi_ps(x, x), _mm_loadu_ps(pc + 2 * i + 4)));
  }
  alignas(16) float s[4];
  _mm_store_ps(s, _mm_add_ps(acc0, acc1));
  SCplx out{s[0] + s[2], s[1] + s[3]};
  for (; i < n; ++i) {
    out.re += r[i] * c[i].re;
    out.im += r[i] * c[i].im;
  }
  return out;
}

}  // namespace ryx::dot
