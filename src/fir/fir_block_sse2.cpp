// Block kernels of the float FIR forms: four real outputs or two complex
// outputs per pass, each output accumulated as two partial sums and a
// pending product (see fir_arith.h for the order).
#include <cstdint>

#include <emmintrin.h>
#include <xmmintrin.h>

#include "fir/fir_arith.h"
#include "fir/fir_block_isa.h"
#include "frame/cpu_dispatch.h"

namespace ryx::fir {

namespace {

// Sixteen outputs a pass: four independent groups of four lanes share each
// broadcast tap, so the additions of different groups overlap. Every lane
// sees exactly the operations of the four-output pass below.
inline void sixteenOutputs(const float* hFirst, int n, const float* x, int xs, float* dst) {
  __m128 a0 = _mm_setzero_ps(), a1 = a0, a2 = a0, a3 = a0;
  __m128 b0 = a0, b1 = a0, b2 = a0, b3 = a0;
  __m128 p0 = a0, p1 = a0, p2 = a0, p3 = a0;
  int i = 0;
  if (n & 1) {
    const __m128 t = _mm_set1_ps(hFirst[0]);
    b0 = _mm_mul_ps(_mm_loadu_ps(x), t);
    b1 = _mm_mul_ps(_mm_loadu_ps(x + 4), t);
    b2 = _mm_mul_ps(_mm_loadu_ps(x + 8), t);
    b3 = _mm_mul_ps(_mm_loadu_ps(x + 12), t);
    i = 1;
  }
  for (; i < n; i += 2) {
    const float* xi = x + i * xs;
    const float* xn = x + (i + 1) * xs;
    const __m128 t = _mm_set1_ps(hFirst[-i]);
    const __m128 u = _mm_set1_ps(hFirst[-i - 1]);
    b0 = _mm_add_ps(b0, p0);
    b1 = _mm_add_ps(b1, p1);
    b2 = _mm_add_ps(b2, p2);
    b3 = _mm_add_ps(b3, p3);
    a0 = _mm_add_ps(a0, _mm_mul_ps(_mm_loadu_ps(xi), t));
    a1 = _mm_add_ps(a1, _mm_mul_ps(_mm_loadu_ps(xi + 4), t));
    a2 = _mm_add_ps(a2, _mm_mul_ps(_mm_loadu_ps(xi + 8), t));
    a3 = _mm_add_ps(a3, _mm_mul_ps(_mm_loadu_ps(xi + 12), t));
    p0 = _mm_mul_ps(_mm_loadu_ps(xn), u);
    p1 = _mm_mul_ps(_mm_loadu_ps(xn + 4), u);
    p2 = _mm_mul_ps(_mm_loadu_ps(xn + 8), u);
    p3 = _mm_mul_ps(_mm_loadu_ps(xn + 12), u);
  }
  _mm_storeu_ps(dst, _mm_add_ps(a0, _mm_add_ps(b0, p0)));
  _mm_storeu_ps(dst + 4, _mm_add_ps(a1, _mm_add_ps(b1, p1)));
  _mm_storeu_ps(dst + 8, _mm_add_ps(a2, _mm_add_ps(b2, p2)));
  _mm_storeu_ps(dst + 12, _mm_add_ps(a3, _mm_add_ps(b3, p3)));
}

}  // namespace

bool useAvx2() { return cpu::allows(cpu::Isa::Avx2); }

int blockKernel(const float* hFirst, int n, const float* x0, int xs, float* dst, int count) {
  int j = 0;
  if (count >= 32 && useAvx2()) j = avx2::blockKernelReal(hFirst, n, x0, xs, dst, count);
  return j + blockKernelRealSse2(hFirst, n, x0 + j, xs, dst + j, count - j);
}

int blockKernelRealSse2(const float* hFirst, int n, const float* x0, int xs, float* dst, int count) {
  int j = 0;
  for (; j + 16 <= count; j += 16) sixteenOutputs(hFirst, n, x0 + j, xs, dst + j);
  for (; j + 4 <= count; j += 4) {
    const float* x = x0 + j;
    // The read ahead of the next pass starts where this one ends.
    const std::uintptr_t ahead = reinterpret_cast<std::uintptr_t>(x) + 16 + (xs > 0 ? std::uintptr_t{4} * static_cast<unsigned>(n) : std::uintptr_t{0} - std::uintptr_t{4} * static_cast<unsigned>(n));
    _mm_prefetch(reinterpret_cast<const char*>(ahead), _MM_HINT_T0);
    __m128 a = _mm_setzero_ps();
    __m128 b = _mm_setzero_ps();
    __m128 p = _mm_setzero_ps();
    int i = 0;
    if (n & 1) {
      b = _mm_mul_ps(_mm_loadu_ps(x), _mm_set1_ps(hFirst[0]));
      i = 1;
    }
    for (; i < n; i += 2) {
      b = _mm_add_ps(b, p);
      a = _mm_add_ps(a, _mm_mul_ps(_mm_loadu_ps(x + i * xs), _mm_set1_ps(hFirst[-i])));
      p = _mm_mul_ps(_mm_loadu_ps(x + (i + 1) * xs), _mm_set1_ps(hFirst[-i - 1]));
    }
    b = _mm_add_ps(b, p);
    _mm_storeu_ps(dst + j, _mm_add_ps(a, b));
  }
  return j;
}

namespace {

// Complex products in float: c by c uses the swapped-lane form
// re = r*a + (-(u*b)), im = u*a + r*b.
inline SCplx prod(SCplx h, SCplx x) { return {x.re * h.re + -(x.im * h.im), x.im * h.re + x.re * h.im}; }
inline SCplx prod(SCplx h, float x) { return {x * h.re, x * h.im}; }
inline SCplx prod(float h, SCplx x) { return {x.re * h, x.im * h}; }

inline SCplx add(SCplx a, SCplx b) { return {a.re + b.re, a.im + b.im}; }

template <class H, class S>
int complexKernel(const H* hFirst, int n, const S* x0, int xs, SCplx* dst, int count) {
  int j = 0;
  for (; j + 2 <= count; j += 2) {
    const S* x = x0 + j;
    SCplx a0{0.0f, 0.0f}, b0{0.0f, 0.0f}, p0{0.0f, 0.0f};
    SCplx a1{0.0f, 0.0f}, b1{0.0f, 0.0f}, p1{0.0f, 0.0f};
    int i = 0;
    if (n & 1) {
      b0 = prod(hFirst[0], x[0]);
      b1 = prod(hFirst[0], x[1]);
      i = 1;
    }
    for (; i < n; i += 2) {
      const S* xi = x + i * xs;
      const S* xn = x + (i + 1) * xs;
      b0 = add(b0, p0);
      b1 = add(b1, p1);
      a0 = add(a0, prod(hFirst[-i], xi[0]));
      a1 = add(a1, prod(hFirst[-i], xi[1]));
      p0 = prod(hFirst[-i - 1], xn[0]);
      p1 = prod(hFirst[-i - 1], xn[1]);
    }
    b0 = add(b0, p0);
    b1 = add(b1, p1);
    dst[j] = add(a0, b0);
    dst[j + 1] = add(a1, b1);
  }
  return j;
}

}  // namespace

int blockKernel(const SCplx* hFirst, int n, const SCplx* x0, int xs, SCplx* dst, int count) {
  return complexKernel(hFirst, n, x0, xs, dst, count);
}
int blockKernel(const SCplx* hFirst, int n, const float* x0, int xs, SCplx* dst, int count) {
  return complexKernel(hFirst, n, x0, xs, dst, count);
}
int blockKernel(const float* hFirst, int n, const SCplx* x0, int xs, SCplx* dst, int count) {
  return complexKernel(hFirst, n, x0, xs, dst, count);
}

}  // namespace ryx::fir
