// Cross- and auto-correlation: the lag sums, the operation-count rule and
// the block frequency-domain method, once over the operand types.
//
// r(k) = sum_n conj(src1[n]) src2[n + k] over the n where both indices are
// valid: with a1 = max(-k, 0) and a2 = max(k, 0) that is src1[a1 + t] and
// src2[a2 + t] for t below min(len1 - a1, len2 - a2), which covers the
// negative lags (src1 moved back) and the others (src2 moved on) alike.
#pragma once

#include <algorithm>

#include "frame/checks.h"
#include "correlate/op_counts.h"
#include "correlate/freq_domain.h"

namespace ryx::corr {

template <class A, class B, class Acc, class Step>
Acc lagSum(const A* s1, long long n1, const B* s2, long long n2, long long k, Acc acc, Step step) {
  const long long a1 = k < 0 ? -k : 0, a2 = k > 0 ? k : 0;
  const long long cnt = std::min(n1 - a1, n2 - a2);
  for (long long t = 0; t < cnt; ++t) step(acc, s1[a1 + t], s2[a2 + t]);
  return acc;
}

// Element-precision sums of conj(a) b, for lags lo .. lo + lagLen - 1.
template <class A, class B, class Y>
void crossDirect(const A* s1, int n1, const B* s2, int n2, Y* dst, long long lo, long long lagLen) {
  for (long long i = 0; i < lagLen; ++i)
    dst[i] = lagSum(s1, n1, s2, n2, lo + i, zero<Y>(), [](Y& acc, A a, B b) { addTo(acc, mul(conj(a), b)); });
}

// ---- Operation counts ---------------------------------------------------------

enum class CorrShape { kReal, kMixed, kComplex };

// True when the frequency-domain cross-correlation is the cheaper: L the
// first source's length, m the number of lags.
bool crossFreqWins(CorrShape shape, long long L, long long m);
// The same for the autocorrelation (real or complex) of nLags lags.
bool autoFreqWins(bool complex, long long L, long long m);

// ---- Frequency domain -----------------------------------------------------------

template <class T, class C>
C asComplex(T v) {
  if constexpr (kComplex<T>) return v;
  else return C{v, 0};
}

// Lag sums through transforms of P = 2 up(lagLen) points, src1 in blocks of
// P/2: spectra of each block and of src2 aligned to it accumulate
// conj(X) Y; one inverse (unscaled) gives P times the lags, which `finish`
// writes to dst from the complex sums. False, with nothing written, when
// the working arrays are not available; a failed transform is reported.
template <class A, class B, class Finish>
bool corrFreq(const Site& site, const A* s1, int n1, const B* s2, int n2, long long lo, long long lagLen,
              bool freeTwiddles, Finish finish) {
  using R = Scalar<A>;
  using C = ComplexOf<R>;
  const long long P = 2 * upPow2(lagLen), half = P / 2;
  const int order = floorLog2(P);
  Scratch s;
  C* x = s.take<C>(P);
  C* y = s.take<C>(P);
  C* acc = s.take<C>(P);
  if (!s.ok()) return false;
  Fft<R>::cplx(nullptr, order, RYX_Init);
  if (failedInside(site)) return true;
  for (long long b = 0; b * half < n1; ++b) {
    const long long start = b * half;
    for (long long i = 0; i < P; ++i) {
      const long long j1 = start + i, j2 = start + lo + i;
      x[i] = i < half && j1 < n1 ? asComplex<A, C>(s1[j1]) : C{};
      y[i] = j2 >= 0 && j2 < n2 ? asComplex<B, C>(s2[j2]) : C{};
    }
    Fft<R>::cplx(x, order, RYX_Forward | RYX_OutReversed);
    Fft<R>::cplx(y, order, RYX_Forward | RYX_OutReversed);
    for (long long i = 0; i < P; ++i) addTo(acc[i], mul(conj(x[i]), y[i]));
  }
  Fft<R>::cplx(acc, order, RYX_Inverse | RYX_KeepScale | RYX_InReversed);
  if (failedInside(site)) return true;
  finish(acc, static_cast<R>(1) / static_cast<R>(P));
  if (freeTwiddles) Fft<R>::freeTwiddles();
  ryxFreeBitRevTbls();
  return true;
}

// A complex sum as the result type (the real part for real results).
template <class Y, class C>
Y fromComplex(C v) {
  if constexpr (kComplex<Y>) return v;
  else return v.re;
}

}  // namespace ryx::corr
