// Float dot-product kernels on SSE2 lanes and the choice of form (see
// dot_kernels.h). Loads are unaligned, so array bases may have any
// alignment.
#include "vector/dot_kernels.h"

#include "frame/cpu_dispatch.h"
#include "vector/dot_lanes.h"

namespace ryx::dot {

namespace sse2 {

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
  return addTail(total, a, b, rest);
}

SCplx dotC32(const SCplx* a, const SCplx* b, int n) {
  const float* pa = &a[0].re;
  const float* pb = &b[0].re;
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
  return finishComplex(plain0, swapped0, plain1, swapped1, a, b, i, n);
}

}  // namespace sse2

// The wide forms pay from a few turns on.
constexpr int kWideFrom = 32;

float dotF32(const float* a, const float* b, int n) {
  if (n >= kWideFrom && cpu::allows(cpu::Isa::Avx2)) return avx2::dotF32(a, b, n);
  return sse2::dotF32(a, b, n);
}

SCplx dotC32(const SCplx* a, const SCplx* b, int n) {
  if (n >= kWideFrom && cpu::allows(cpu::Isa::Avx2)) return avx2::dotC32(a, b, n);
  return sse2::dotC32(a, b, n);
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
