// Low-level IIR forms: normalisation, the speed tables and the recursions.
// Kernels here have no failure path; the entries in iirl_entries.cpp check
// first. The 16-bit forms build on these records and templates too.
//
// Stored taps, arbitrary order: b[i] at i, a[i] (i >= 1) at order+i.
// Cascade: gain at 0, then per section a1, a2, b1, b2 (all over a0 or b0).
// Delay line of a cascade: d0 of section q at 2q, d1 at 2q+1.
//
// Precision by path:
// - the plain recursions (tapForm 0 and 2, every double type, and orders
//   below the table kernels' limits) work in long double between the loads
//   and the stores; every stored delay element and output is rounded to
//   its type, and the output fed back is the rounded one;
// - the table paths of the float types (tapForm 1 from order 3, tapForm 3)
//   work in float throughout, so a block kernel and the single-sample
//   kernel of the cascade give the same bits, and the SIMD lanes give the
//   bits of the scalar operations.
#pragma once

#include "iir/iir_arith.h"

namespace ryx::iir {

using ld = long double;

enum TapForm { kArb = 0, kArbTables = 1, kBiquad = 2, kBiquadTables = 3 };

// Table kernels of the arbitrary order start here; below, the plain
// recursion runs.
constexpr int kTableMinOrder = 3;

// ---- Normalisation
// ---------------------------------------------------------------
//
// Float: the reciprocal in double rounded to float, each product in double
// rounded to float. Double: the same without rounding. Complex: the scalar
// complex quotient and product of the vector helpers.

inline float recip(float a) { return static_cast<float>(1.0 / static_cast<double>(a)); }
inline double recip(double a) { return 1.0 / a; }
inline SCplx recip(SCplx a) { return ryxcDiv(SCplx{1.0f, 0.0f}, a); }
inline DCplx recip(DCplx a) { return ryxzDiv(DCplx{1.0, 0.0}, a); }

inline float scale(float t, float f) { return static_cast<float>(static_cast<double>(t) * static_cast<double>(f)); }
inline double scale(double t, double f) { return t * f; }
inline SCplx scale(SCplx t, SCplx f) { return ryxcMpy(t, f); }
inline DCplx scale(DCplx t, DCplx f) { return ryxzMpy(t, f); }

inline bool isZero(float a) { return a == 0.0f; }
inline bool isZero(double a) { return a == 0.0; }
inline bool isZero(SCplx a) { return a.re == 0.0f && a.im == 0.0f; }
inline bool isZero(DCplx a) { return a.re == 0.0 && a.im == 0.0; }

template <class H>
H unit() {
  if constexpr (isComplex<H>) {
    return H{1, 0};
  } else {
    return H{1};
  }
}

// Differences of the cascade table rows, in the tap type's own precision.
inline float diff(float a, float b) { return a - b; }
inline double diff(double a, double b) { return a - b; }
inline SCplx diff(SCplx a, SCplx b) { return {a.re - b.re, a.im - b.im}; }
inline DCplx diff(DCplx a, DCplx b) { return {a.re - b.re, a.im - b.im}; }

// Arbitrary order, in place: b[0..order] at 0..order, a[i] moves from
// order+1+i down to order+i; the last element keeps its value.
template <class H>
void normaliseArb(H* t, int order) {
  const H f = recip(t[order + 1]);
  for (int i = 0; i <= order; ++i) t[i] = scale(t[i], f);
  for (int i = 1; i <= order; ++i) t[order + i] = scale(t[order + 1 + i], f);
}

// Index of the first zero a0 or b0 of a cascade, or -1.
template <class H>
int firstZeroLead(const H* t, int numQuads) {
  for (int q = 0; q < numQuads; ++q) {
    if (isZero(t[6 * q]) || isZero(t[6 * q + 3])) return q;
  }
  return -1;
}

// Cascade from the caller's six taps a section (src) to gain and four
// taps a section (dst); dst may be src, since each section is read whole
// before its four elements, which lie below the next section, are written.
template <class H>
void normaliseBq(const H* src, H* dst, int numQuads) {
  H gain = unit<H>();
  for (int q = 0; q < numQuads; ++q) {
    const H* s = src + 6 * q;
    const H b0 = s[0], b1 = s[1], b2 = s[2], a0 = s[3], a1 = s[4], a2 = s[5];
    const H rb = recip(b0);
    const H ra = recip(a0);
    H* o = dst + 1 + 4 * q;
    o[0] = scale(a1, ra);
    o[1] = scale(a2, ra);
    o[2] = scale(b1, rb);
    o[3] = scale(b2, rb);
    gain = scale(scale(gain, b0), ra);
  }
  dst[0] = gain;
}

// ---- Tables of the float forms
// ---------------------------------------------------------
//
// tapForm 1: the taps take (2*order+5) rounded down to a multiple of 4
// elements; behind them four rows: b[i] four times and a[i] four times
// (i from 1), then b[1..order] padded to a multiple of 4, then a[1..order].
// tapForm 3: taps and padding take 4*numQuads+4 elements; then per section
// a1, a2-b2, a2, a1-b1, then per section the same four, each twice.

inline int ceil4(int n) { return (n + 3) / 4; }
inline int arbTapSpan(int order) { return (2 * order + 5) & ~3; }
inline int arbTableCount(int order) { return arbTapSpan(order) + 8 * order + 8 * ceil4(order); }
inline int bqTableCount(int numQuads) { return 16 * numQuads + 4; }

template <class H>
struct ArbRows {
  const H* b;  // b[1..order]
  const H* a;  // a[1..order]
};

template <class H>
ArbRows<H> arbRows(const H* t, int order) {
  const H* plainB = t + arbTapSpan(order) + 8 * order;
  return {plainB, plainB + 4 * ceil4(order)};
}

template <class H>
const H* bqRows(const H* t, int numQuads) {
  return t + 4 * numQuads + 4;
}

// Fills the tables of an array already holding the normalised taps and
// zeros elsewhere.
template <class H>
void fillArbTables(H* t, int order) {
  H* fourB = t + arbTapSpan(order);
  H* fourA = fourB + 4 * order;
  H* plainB = fourA + 4 * order;
  H* plainA = plainB + 4 * ceil4(order);
  for (int i = 1; i <= order; ++i) {
    for (int k = 0; k < 4; ++k) {
      fourB[4 * (i - 1) + k] = t[i];
      fourA[4 * (i - 1) + k] = t[order + i];
    }
    plainB[i - 1] = t[i];
    plainA[i - 1] = t[order + i];
  }
}

template <class H>
void fillBqTables(H* t, int numQuads) {
  H* rows = t + 4 * numQuads + 4;
  H* twice = rows + 4 * numQuads;
  for (int q = 0; q < numQuads; ++q) {
    const H* s = t + 1 + 4 * q;
    const H a1 = s[0], a2 = s[1], b1 = s[2], b2 = s[3];
    const H row[4] = {a1, diff(a2, b2), a2, diff(a1, b1)};
    for (int k = 0; k < 4; ++k) {
      rows[4 * q + k] = row[k];
      twice[8 * q + 2 * k] = row[k];
      twice[8 * q + 2 * k + 1] = row[k];
    }
  }
}

// ---- Plain recursions (long double)
// -----------------------------------------------------

// Transposed direct form II; order 0 leaves the line alone.
template <class S, class H>
OutOf<S, H> plainArbStep(int order, const H* t, OutOf<S, H>* d, S x) {
  using O = OutOf<S, H>;
  const auto xe = lift<ld>(x);
  if (order == 0) return narrow<O>(lift<ld>(t[0]) * xe);
  const O y = narrow<O>(lift<ld>(t[0]) * xe + lift<ld>(d[0]));
  const auto ye = lift<ld>(y);
  for (int i = 1; i < order; ++i) {
    d[i - 1] = narrow<O>(lift<ld>(t[i]) * xe - lift<ld>(t[order + i]) * ye + lift<ld>(d[i]));
  }
  d[order - 1] = narrow<O>(lift<ld>(t[order]) * xe - lift<ld>(t[2 * order]) * ye);
  return y;
}

// Direct form II per section, b0 and a0 in the gain.
template <class S, class H>
OutOf<S, H> plainBqStep(int numQuads, const H* t, OutOf<S, H>* d, S x) {
  using O = OutOf<S, H>;
  auto y = lift<ld>(t[0]) * lift<ld>(x);
  for (int q = 0; q < numQuads; ++q) {
    const H* s = t + 1 + 4 * q;
    const auto d0 = lift<ld>(d[2 * q]);
    const auto d1 = lift<ld>(d[2 * q + 1]);
    const auto w = y - lift<ld>(s[0]) * d0 - lift<ld>(s[1]) * d1;
    y = w + lift<ld>(s[2]) * d0 + lift<ld>(s[3]) * d1;
    d[2 * q + 1] = d[2 * q];
    d[2 * q] = narrow<O>(w);
  }
  return narrow<O>(y);
}

// ---- Table recursions (float types, float arithmetic)
// ------------------------------------

// One sample through the arbitrary order with the plain rows:
// y = b[0]*x + d[0], then d[i-1] = (d[i] + b[i]*x) - a[i]*y, d[order] = 0.
template <class S, class H>
OutOf<S, H> tableArbStep(int order, const H* t, OutOf<S, H>* d, S x) {
  using O = OutOf<S, H>;
  using V = Work<O, float>;
  const ArbRows<H> r = arbRows(t, order);
  const auto xf = lift<float>(x);
  const O y = narrow<O>(lift<float>(t[0]) * xf + lift<float>(d[0]));
  const auto yf = lift<float>(y);
  for (int i = 1; i <= order; ++i) {
    const V di = i < order ? lift<float>(d[i]) : V{};
    d[i - 1] = narrow<O>((di + lift<float>(r.b[i - 1]) * xf) - lift<float>(r.a[i - 1]) * yf);
  }
  return y;
}

// One sample through the cascade with the rows a1, a2-b2, a2, a1-b1:
// w = (y - a1*d0) - a2*d1 and y' = (y - (a1-b1)*d0) - (a2-b2)*d1, so the
// output of a section does not wait for w.
template <class S, class H>
OutOf<S, H> tableBqStep(int numQuads, const H* t, OutOf<S, H>* d, S x) {
  using O = OutOf<S, H>;
  const H* rows = bqRows(t, numQuads);
  auto y = lift<float>(t[0]) * lift<float>(x);
  for (int q = 0; q < numQuads; ++q) {
    const H* r = rows + 4 * q;
    const auto d0 = lift<float>(d[2 * q]);
    const auto d1 = lift<float>(d[2 * q + 1]);
    const auto w = (y - lift<float>(r[0]) * d0) - lift<float>(r[2]) * d1;
    y = (y - lift<float>(r[3]) * d0) - lift<float>(r[1]) * d1;
    d[2 * q + 1] = d[2 * q];
    d[2 * q] = narrow<O>(w);
  }
  return narrow<O>(y);
}

// ---- Blocks of real floats (iir_block_sse2.cpp)
// -------------------------------------------

// The cascade with tables over n samples, bit for bit tableBqStep per
// sample. src may equal dst.
void bqBlockReal(const float* t, int numQuads, float* d, const float* src, float* dst, int n);

// The arbitrary order with tables from order 3, four samples a pass;
// returns the samples done, a multiple of four.
int arbBlockReal(const float* t, int order, float* d, const float* src, float* dst, int n);

// ---- Dispatch
// -------------------------------------------------------------------------------

template <class S, class H>
OutOf<S, H> iirlStep(const RyxIirTapState* ts, OutOf<S, H>* d, S x) {
  const H* t = static_cast<const H*>(ts->taps);
  const int order = ts->order;
  if constexpr (isFloatType<S>) {
    if (ts->tapForm == kBiquadTables) return tableBqStep<S, H>(order / 2, t, d, x);
    if (ts->tapForm == kArbTables && order >= kTableMinOrder) return tableArbStep<S, H>(order, t, d, x);
  }
  if (ts->tapForm >= kBiquad) return plainBqStep<S, H>(order / 2, t, d, x);
  return plainArbStep<S, H>(order, t, d, x);
}

template <class S, class H>
void iirlBlock(const RyxIirTapState* ts, OutOf<S, H>* d, const S* src, OutOf<S, H>* dst, int n) {
  int done = 0;
  if constexpr (std::is_same_v<S, float> && std::is_same_v<H, float>) {
    const float* t = static_cast<const float*>(ts->taps);
    if (ts->tapForm == kBiquadTables) {
      bqBlockReal(t, ts->order / 2, d, src, dst, n);
      return;
    }
    if (ts->tapForm == kArbTables && ts->order >= kTableMinOrder) done = arbBlockReal(t, ts->order, d, src, dst, n);
  }
  for (int k = done; k < n; ++k) dst[k] = iirlStep<S, H>(ts, d, src[k]);
}

}  // namespace ryx::iir
