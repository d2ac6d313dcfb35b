// Arithmetic shared by the FIR forms: the type combinations, the extended
// precision accumulators and the fixed-order float dot products.
//
// The order of every sum is part of the result, so each routine here spells
// its order out; none of them may be reassociated.
#pragma once

#include <algorithm>
#include <type_traits>

#include <xmmintrin.h>

#include "ryxcore.h"

namespace ryx::fir {

using ld = long double;

template <class T>
constexpr bool isCplx = std::is_same_v<T, SCplx> || std::is_same_v<T, DCplx>;

// Result type of a sample type S filtered through tap type H: complex when
// either is, in the width of the samples.
template <class S, class H>
using OutOf = std::conditional_t<isCplx<S> || isCplx<H>,
                                 std::conditional_t<std::is_same_v<S, float> || std::is_same_v<S, SCplx>, SCplx, DCplx>,
                                 S>;

// ---- Extended precision values --------------------------------------------

struct LdC {
  ld re;
  ld im;
};

inline ld ext(float v) { return v; }
inline ld ext(double v) { return v; }
inline LdC ext(SCplx v) { return {v.re, v.im}; }
inline LdC ext(DCplx v) { return {v.re, v.im}; }

inline LdC operator+(LdC a, LdC b) { return {a.re + b.re, a.im + b.im}; }
inline LdC operator-(LdC a, LdC b) { return {a.re - b.re, a.im - b.im}; }

// Products of a sample-side value x and a tap-side value h. Complex by
// complex is re = r*a - u*b, im = u*a + b*r for x = r+ui, h = a+bi.
inline ld mul(ld x, ld h) { return x * h; }
inline LdC mul(LdC x, LdC h) { return {x.re * h.re - x.im * h.im, x.im * h.re + h.im * x.re}; }
inline LdC mul(ld x, LdC h) { return {x * h.re, x * h.im}; }
inline LdC mul(LdC x, ld h) { return {x.re * h, x.im * h}; }

template <class S, class H>
using Acc = std::conditional_t<isCplx<S> || isCplx<H>, LdC, ld>;

template <class O>
inline O narrow(ld v) {
  return static_cast<O>(v);
}
template <class O>
inline O narrow(LdC v) {
  using F = decltype(O{}.re);
  return O{static_cast<F>(v.re), static_cast<F>(v.im)};
}

template <class A>
inline A zeroAcc() {
  return A{};
}

// Extended dot product, one accumulator, products taken in index order:
// sum over k < n of x[k*xs] * h[k*hs]. Every extended path of the family
// uses this order.
template <class S, class H>
inline Acc<S, H> dotExt(const S* x, int xs, const H* h, int hs, int n) {
  Acc<S, H> acc = zeroAcc<Acc<S, H>>();
  for (int k = 0; k < n; ++k) acc = acc + mul(ext(x[k * xs]), ext(h[k * hs]));
  return acc;
}

// Four dot products of the dotExt form side by side: product k of each
// goes into its own accumulator in index order, exactly as dotExt would
// sum it, but the additions of the four overlap instead of waiting on one
// adder chain. Lengths may differ; past the shortest, each runs on alone.
template <class S, class H>
inline void dotExt4(const S* const x[4], int xs, const H* const h[4], int hs, const int n[4], Acc<S, H> out[4]) {
  Acc<S, H> a0 = zeroAcc<Acc<S, H>>(), a1 = a0, a2 = a0, a3 = a0;
  const int common = std::min(std::min(n[0], n[1]), std::min(n[2], n[3]));
  const S *x0 = x[0], *x1 = x[1], *x2 = x[2], *x3 = x[3];
  const H *h0 = h[0], *h1 = h[1], *h2 = h[2], *h3 = h[3];
  for (int k = 0; k < common; ++k) {
    a0 = a0 + mul(ext(x0[k * xs]), ext(h0[k * hs]));
    a1 = a1 + mul(ext(x1[k * xs]), ext(h1[k * hs]));
    a2 = a2 + mul(ext(x2[k * xs]), ext(h2[k * hs]));
    a3 = a3 + mul(ext(x3[k * xs]), ext(h3[k * hs]));
  }
  out[0] = a0;
  out[1] = a1;
  out[2] = a2;
  out[3] = a3;
  for (int j = 0; j < 4; ++j) {
    for (int k = common; k < n[j]; ++k) out[j] = out[j] + mul(ext(x[j][k * xs]), ext(h[j][k * hs]));
  }
}

// ---- Float single-sample dot products ---------------------------------------
//
// x[k] multiplies h[k]; both arrays run forward.

// Real: the first n mod 4 products are summed one after another into lane 0
// of a four-lane accumulator; the rest go four at a time, one per lane; the
// lanes are folded as (0 + 2) + (1 + 3).
inline float dotLanes(const float* x, const float* h, int n) {
  const int head = n & 3;
  float s = 0.0f;
  if (head > 0) {
    s = x[0] * h[0];
    for (int k = 1; k < head; ++k) s += x[k] * h[k];
  }
  if (n < 4) return s;
  __m128 acc = _mm_set_ss(s);
  for (int k = head; k < n; k += 4) acc = _mm_add_ps(acc, _mm_mul_ps(_mm_loadu_ps(x + k), _mm_loadu_ps(h + k)));
  // (lane 0 + lane 2) + (lane 1 + lane 3)
  const __m128 pairs = _mm_add_ps(acc, _mm_movehl_ps(acc, acc));
  return _mm_cvtss_f32(_mm_add_ss(pairs, _mm_shuffle_ps(pairs, pairs, 1)));
}

// Complex by complex: one four-lane accumulator of the sums of r*a, u*a,
// u*b, r*b. The real part is formed as ((ra + ub) - ub) - ub: that order
// decides its last bit and is kept on purpose.
inline SCplx dotLanes(const SCplx* x, const SCplx* h, int n) {
  float ra = 0.0f, ua = 0.0f, ub = 0.0f, rb = 0.0f;
  int k = 0;
  if (n & 1) {
    ra = x[0].re * h[0].re;
    ua = x[0].im * h[0].re;
    ub = x[0].im * h[0].im;
    rb = x[0].re * h[0].im;
    k = 1;
  }
  for (; k < n; ++k) {
    ra += x[k].re * h[k].re;
    ua += x[k].im * h[k].re;
    ub += x[k].im * h[k].im;
    rb += x[k].re * h[k].im;
  }
  float re = ra + ub;
  const float im = ua + rb;
  re -= ub;
  re -= ub;
  return {re, im};
}

// Mixed real and complex: two complex partial sums, E over the first tap of
// each pair and O over the second; an odd leading tap starts E. E + O at the
// end.
inline SCplx pairProduct(float x, SCplx h) { return {x * h.re, x * h.im}; }
inline SCplx pairProduct(SCplx x, float h) { return {x.re * h, x.im * h}; }

template <class S, class H>
inline SCplx dotPairs(const S* x, const H* h, int n) {
  SCplx e{0.0f, 0.0f}, o{0.0f, 0.0f};
  int k = 0;
  if (n & 1) {
    e = pairProduct(x[0], h[0]);
    k = 1;
  }
  for (; k < n; k += 2) {
    const SCplx p0 = pairProduct(x[k], h[k]);
    const SCplx p1 = pairProduct(x[k + 1], h[k + 1]);
    e.re += p0.re;
    e.im += p0.im;
    o.re += p1.re;
    o.im += p1.im;
  }
  return {e.re + o.re, e.im + o.im};
}

inline SCplx dotLanes(const float* x, const SCplx* h, int n) { return dotPairs(x, h, n); }
inline SCplx dotLanes(const SCplx* x, const float* h, int n) { return dotPairs(x, h, n); }

// ---- Float block kernels ------------------------------------------------------
//
// Outputs j = 0 .. count-1 of a direct-form block. Product i of output j is
// hFirst[-i] * x0[j + i*xs] for i < n (taps walked backwards from hFirst,
// samples forwards when xs is +1 or backwards when -1), so the outputs of one
// pass read consecutive samples. Accumulation per output: two accumulators
// A, B and a pending product P; an odd n starts B with product 0; each pair
// does B += P, A += p(i), P = p(i+1); at the end B += P and the output is
// A + B. The real kernel covers count rounded down to 4 outputs and the
// complex ones count rounded down to 2; the caller computes the rest in
// extended precision. Returns the number of outputs written.
int blockKernel(const float* hFirst, int n, const float* x0, int xs, float* dst, int count);
int blockKernel(const SCplx* hFirst, int n, const SCplx* x0, int xs, SCplx* dst, int count);
int blockKernel(const SCplx* hFirst, int n, const float* x0, int xs, SCplx* dst, int count);
int blockKernel(const float* hFirst, int n, const SCplx* x0, int xs, SCplx* dst, int count);

}  // namespace ryx::fir
