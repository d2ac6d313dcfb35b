// AVX2 forms of the float dot-product kernels: one eight-lane register holds
// the two four-lane accumulators of the SSE2 form (low half the first), so
// every product meets the same partial sums and the bits are the same.
#include <immintrin.h>

#include "vector/dot_kernels.h"
#include "vector/dot_lanes.h"

namespace ryx::dot::avx2 {

float dotF32(const float* a, const float* b, int n) {
  const int rest = n & 7;
  float total = 0.0f;
  if (n >= 8) {
    // Two turns per pass; the additions into the one accumulator keep the
    // turns' order.
    __m256 acc = _mm256_setzero_ps();
    int i = n - 8;
    for (; i - 8 >= rest; i -= 16) {
      const __m256 p0 = _mm256_mul_ps(_mm256_loadu_ps(a + i), _mm256_loadu_ps(b + i));
      const __m256 p1 = _mm256_mul_ps(_mm256_loadu_ps(a + i - 8), _mm256_loadu_ps(b + i - 8));
      acc = _mm256_add_ps(_mm256_add_ps(acc, p0), p1);
    }
    if (i >= rest) acc = _mm256_add_ps(acc, _mm256_mul_ps(_mm256_loadu_ps(a + i), _mm256_loadu_ps(b + i)));
    total = laneSum(_mm_add_ps(_mm256_castps256_ps128(acc), _mm256_extractf128_ps(acc, 1)));
  }
  _mm256_zeroupper();
  return addTail(total, a, b, rest);
}

SCplx dotC32(const SCplx* a, const SCplx* b, int n) {
  const float* pa = &a[0].re;
  const float* pb = &b[0].re;
  __m256 plain = _mm256_setzero_ps(), swapped = _mm256_setzero_ps();
  int i = 0;
  for (; i + 4 <= n; i += 4) {
    const __m256 x = _mm256_loadu_ps(pa + 2 * i), y = _mm256_loadu_ps(pb + 2 * i);
    plain = _mm256_add_ps(plain, _mm256_mul_ps(x, y));
    swapped = _mm256_add_ps(swapped, _mm256_mul_ps(x, _mm256_permute_ps(y, _MM_SHUFFLE(2, 3, 0, 1))));
  }
  const __m128 plain0 = _mm256_castps256_ps128(plain), plain1 = _mm256_extractf128_ps(plain, 1);
  const __m128 swapped0 = _mm256_castps256_ps128(swapped), swapped1 = _mm256_extractf128_ps(swapped, 1);
  _mm256_zeroupper();
  return finishComplex(plain0, swapped0, plain1, swapped1, a, b, i, n);
}

}  // namespace ryx::dot::avx2
