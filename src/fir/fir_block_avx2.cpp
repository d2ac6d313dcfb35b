// AVX2 form of the real float block kernel: eight lanes a register, four
// registers a pass. Each lane runs exactly the operations of the baseline
// four-lane kernel (two accumulators and a pending product, the taps from
// hFirst backwards), so the outputs are the same bits; only the number of
// outputs computed side by side differs. No FMA: products are rounded
// before they are added.
#include <immintrin.h>

#include "fir/fir_block_isa.h"

namespace ryx::fir::avx2 {

int blockKernelReal(const float* hFirst, int n, const float* x0, int xs, float* dst, int count) {
  int j = 0;
  for (; j + 32 <= count; j += 32) {
    const float* x = x0 + j;
    __m256 a0 = _mm256_setzero_ps(), a1 = a0, a2 = a0, a3 = a0;
    __m256 b0 = a0, b1 = a0, b2 = a0, b3 = a0;
    __m256 p0 = a0, p1 = a0, p2 = a0, p3 = a0;
    int i = 0;
    if (n & 1) {
      const __m256 t = _mm256_set1_ps(hFirst[0]);
      b0 = _mm256_mul_ps(_mm256_loadu_ps(x), t);
      b1 = _mm256_mul_ps(_mm256_loadu_ps(x + 8), t);
      b2 = _mm256_mul_ps(_mm256_loadu_ps(x + 16), t);
      b3 = _mm256_mul_ps(_mm256_loadu_ps(x + 24), t);
      i = 1;
    }
    for (; i < n; i += 2) {
      const float* xi = x + i * xs;
      const float* xn = x + (i + 1) * xs;
      const __m256 t = _mm256_set1_ps(hFirst[-i]);
      const __m256 u = _mm256_set1_ps(hFirst[-i - 1]);
      b0 = _mm256_add_ps(b0, p0);
      b1 = _mm256_add_ps(b1, p1);
      b2 = _mm256_add_ps(b2, p2);
      b3 = _mm256_add_ps(b3, p3);
      a0 = _mm256_add_ps(a0, _mm256_mul_ps(_mm256_loadu_ps(xi), t));
      a1 = _mm256_add_ps(a1, _mm256_mul_ps(_mm256_loadu_ps(xi + 8), t));
      a2 = _mm256_add_ps(a2, _mm256_mul_ps(_mm256_loadu_ps(xi + 16), t));
      a3 = _mm256_add_ps(a3, _mm256_mul_ps(_mm256_loadu_ps(xi + 24), t));
      p0 = _mm256_mul_ps(_mm256_loadu_ps(xn), u);
      p1 = _mm256_mul_ps(_mm256_loadu_ps(xn + 8), u);
      p2 = _mm256_mul_ps(_mm256_loadu_ps(xn + 16), u);
      p3 = _mm256_mul_ps(_mm256_loadu_ps(xn + 24), u);
    }
    _mm256_storeu_ps(dst + j, _mm256_add_ps(a0, _mm256_add_ps(b0, p0)));
    _mm256_storeu_ps(dst + j + 8, _mm256_add_ps(a1, _mm256_add_ps(b1, p1)));
    _mm256_storeu_ps(dst + j + 16, _mm256_add_ps(a2, _mm256_add_ps(b2, p2)));
    _mm256_storeu_ps(dst + j + 24, _mm256_add_ps(a3, _mm256_add_ps(b3, p3)));
  }
  return j;
}

}  // namespace ryx::fir::avx2
