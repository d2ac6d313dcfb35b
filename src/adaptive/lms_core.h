// LMS recursion, once per shape over the type combinations. Kernels here have
// no failure path; the entries in lmsl_entries.cpp and lmsh_entries.cpp
// check first.
//
// One adaptive step, single sample or group of downFactor samples:
//   1. update: taps[i] = taps[i]*(1 - leak) + x*(e*step), x being the line
//      element off + i as it stood before the new samples, off = errDly
//      (plus base = D-1-P in the group forms). Complex taps add
//      step*e*conj(x); real samples with complex taps add x*step*e to both
//      parts. Computed in double, rounded to the tap type at the store.
//   2. the line moves up by one place (group: by D places) and the new
//      samples enter newest first;
//   3. the output is the sum of taps[i]*line[i] (group: line[base + i]) in
//      extended precision.
// Line elements beyond dlylLen are never touched: an update that would reach
// them (a line without room for errDly) takes them as zero, and the group
// move stops at the end of the line, which gives the same results as a line
// with a spare element.
#pragma once

#include <emmintrin.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "fir/fir_arith.h"
#include "frame/checks.h"
#include "frame/memory.h"

namespace ryx::lms {

using fir::ext;
using fir::isCplx;
using fir::ld;
using fir::LdC;
using fir::narrow;

// ---- Per-tap update ----------------------------------------------------------

// The error times the step, in double: real, or the two parts of a complex one.
struct ScaledErr {
  double re;
  double im;
};
inline ScaledErr scaleErr(float e, float step) { return {double(e) * double(step), 0.0}; }
inline ScaledErr scaleErr(double e, float step) { return {e * double(step), 0.0}; }
inline ScaledErr scaleErr(SCplx e, float step) { return {double(step) * e.re, double(step) * e.im}; }
inline ScaledErr scaleErr(DCplx e, float step) { return {double(step) * e.re, double(step) * e.im}; }

// t*(1 - leak) + x*(e*step) for real taps and samples; complex taps with
// real samples add x*step*e to both parts; complex taps and samples add
// step*e*conj(x).
template <class H, class S>
inline H updated(H t, double keep, S x, ScaledErr se) {
  if constexpr (!isCplx<H>) {
    return static_cast<H>(double(t) * keep + double(x) * se.re);
  } else {
    using F = decltype(H{}.re);
    if constexpr (!isCplx<S>) {
      return H{static_cast<F>(double(t.re) * keep + double(x) * se.re),
               static_cast<F>(double(t.im) * keep + double(x) * se.im)};
    } else {
      const double xr = x.re, xi = x.im;
      return H{static_cast<F>(double(t.re) * keep + (xr * se.re + xi * se.im)),
               static_cast<F>(double(t.im) * keep + (xr * se.im - xi * se.re))};
    }
  }
}

template <class S>
inline S zeroOf() {
  return S{};
}

// Step 1 over all taps, reading `line` from `off`; elements at or beyond
// `lineLen` count as zero.
template <class S, class H>
void updateTaps(H* taps, int tapsLen, const S* line, int lineLen, int off, float leak, ScaledErr se) {
  const double keep = 1.0 - double(leak);
  const int reach = std::clamp(lineLen - off, 0, tapsLen);
  const S* x = line + off;
  for (int i = 0; i < reach; ++i) taps[i] = updated(taps[i], keep, x[i], se);
  for (int i = reach; i < tapsLen; ++i) taps[i] = updated(taps[i], keep, zeroOf<S>(), se);
}

// ---- Output sums ---------------------------------------------------------------

// Extended sums. Real taps and samples: a lone first tap for an odd count,
// then the taps in pairs over two sums (even and odd places), added at the
// end; two independent sums keep the x87 adder busy. With complex values the
// x87 stack has no room for a second pair of sums: one accumulator, taps from
// 0 upward.
template <class S, class H>
inline H dotOut(const S* x, const H* h, int n) {
  if constexpr (isCplx<S> || isCplx<H>) {
    return narrow<H>(fir::dotExt(x, 1, h, 1, n));
  } else {
    ld even = 0, odd = 0;
    int i = 0;
    if (n & 1) {
      even = ld(x[0]) * ld(h[0]);
      i = 1;
    }
    for (; i < n; i += 2) {
      even += ld(x[i]) * ld(h[i]);
      odd += ld(x[i + 1]) * ld(h[i + 1]);
    }
    return static_cast<H>(even + odd);
  }
}

// The complex float single-sample form with the caller's error: both
// running sums are rounded to float after each pair of taps (a lone last tap
// counting as a pair). The other complex float forms use dotOut.
inline SCplx dotPairs(const SCplx* x, const SCplx* h, int n) {
  float re = 0.0f, im = 0.0f;
  for (int i = 0; i < n; i += 2) {
    LdC acc{re, im};
    const int end = std::min(i + 2, n);
    for (int k = i; k < end; ++k) acc = acc + fir::mul(ext(x[k]), ext(h[k]));
    re = static_cast<float>(acc.re);
    im = static_cast<float>(acc.im);
  }
  return SCplx{re, im};
}

// ---- Update and sum in one pass ------------------------------------------------------

// The update and the output sum of one step in one pass over the taps, the
// line moved afterwards: tap i is updated from the line as it stands
// (element off + i, zero from lineLen on) and then multiplied by the element
// the line holds at base + i once the D new samples (time order) are in.
// Those are new samples for the first P + 1 taps (P = D-1-base) and old
// element i - P - 1 beyond. Each tap is thus updated and summed before the
// next, and its update overlaps the extended additions of the taps before
// it; the values, and the order of the additions, are those of the update
// loop followed by dotOut.
template <class S, class H>
struct FusedTaps {
  H* taps;
  const S* line;  // the line from base on
  const S* samples;
  int reach, off, D, newCount;  // newCount = D - base
  bool adapt;
  double keep;
  ScaledErr se;
  // Updates tap i and returns the line element it meets in the sum.
  S operator()(int i) const {
    if (adapt) taps[i] = updated(taps[i], keep, i < reach ? line[off + i] : zeroOf<S>(), se);
    return i < newCount ? samples[newCount - 1 - i] : line[i - D];
  }
};

// Eight real taps updated on double lanes: t*keep + x*se, rounded to the
// tap type at the store, as updated() does one by one.
inline void updateBlock(float* h, const float* x, double keep, double se) {
  const __m128d k = _mm_set1_pd(keep), e = _mm_set1_pd(se);
  for (int j = 0; j < 8; j += 4) {
    const __m128 t = _mm_loadu_ps(h + j), v = _mm_loadu_ps(x + j);
    const __m128d lo = _mm_add_pd(_mm_mul_pd(_mm_cvtps_pd(t), k), _mm_mul_pd(_mm_cvtps_pd(v), e));
    const __m128d hi =
        _mm_add_pd(_mm_mul_pd(_mm_cvtps_pd(_mm_movehl_ps(t, t)), k), _mm_mul_pd(_mm_cvtps_pd(_mm_movehl_ps(v, v)), e));
    _mm_storeu_ps(h + j, _mm_movelh_ps(_mm_cvtpd_ps(lo), _mm_cvtpd_ps(hi)));
  }
}
inline void updateBlock(double* h, const double* x, double keep, double se) {
  const __m128d k = _mm_set1_pd(keep), e = _mm_set1_pd(se);
  for (int j = 0; j < 8; j += 2)
    _mm_storeu_pd(h + j, _mm_add_pd(_mm_mul_pd(_mm_loadu_pd(h + j), k), _mm_mul_pd(_mm_loadu_pd(x + j), e)));
}

// Real taps and samples only (complex taps leave the update loop and the
// sum apart: their update is too heavy to hide under the sum). The lone
// first tap of an odd count and the taps that meet new samples go one by
// one, then blocks of eight: the block's update (on double lanes) comes
// first, then its four pairs of extended additions, so that
// the next block's update overlaps them.
template <class S, class H>
H fusedSum(int n, const FusedTaps<S, H>& tap) {
  static_assert(!isCplx<S> && !isCplx<H>);
  H* h = tap.taps;
  const S* x = tap.line + tap.off;  // the update's elements
  const S* y = tap.line - tap.D;    // the sum's elements from newCount on
  ld even = 0, odd = 0;
  int i = 0;
  if (n & 1) {
    const S x0 = tap(0);
    even = ld(x0) * ld(h[0]);
    i = 1;
  }
  auto pair = [&](int k) {
    const S x0 = tap(k), x1 = tap(k + 1);
    even += ld(x0) * ld(h[k]);
    odd += ld(x1) * ld(h[k + 1]);
  };
  for (; i < n && i < tap.newCount; i += 2) pair(i);
  const int blocksEnd = std::min(n, tap.reach);
  for (; i + 8 <= blocksEnd; i += 8) {
    if (tap.adapt) updateBlock(h + i, x + i, tap.keep, tap.se.re);
    for (int k = i; k < i + 8; k += 2) {
      even += ld(y[k]) * ld(h[k]);
      odd += ld(y[k + 1]) * ld(h[k + 1]);
    }
  }
  for (; i < n; i += 2) pair(i);
  return static_cast<H>(even + odd);
}

// ---- Line movement ---------------------------------------------------------------

// Single sample: all dlylLen - 1 elements move up by one.
template <class S>
inline void pushOne(S* line, int dlylLen, S sample) {
  ownMemmove(line + 1, line, (dlylLen - 1) * static_cast<int>(sizeof(S)));
  line[0] = sample;
}

// Group: tapsLen + errDly elements move up by D, within the line, and the D
// samples (time order) enter newest first.
template <class S>
inline void pushGroup(S* line, int dlylLen, int moved, int D, const S* samples) {
  const int count = std::min(moved, dlylLen - D);
  if (count > 0) ownMemmove(line + D, line, count * static_cast<int>(sizeof(S)));
  for (int k = 0; k < D && k < dlylLen; ++k) line[k] = samples[D - 1 - k];
}

// ---- Whole steps -----------------------------------------------------------------

// Which rule decides whether the taps adapt.
enum class Adapt {
  positive,  // step above 0
  bits,      // any step whose bits are not zero (the float single-sample form)
  always,    // the desired-signal forms: step 0 still leaks
};

inline bool adapts(Adapt rule, float step) {
  switch (rule) {
    case Adapt::positive:
      return step > 0.0f;
    case Adapt::bits: {
      std::uint32_t b;
      std::memcpy(&b, &step, sizeof b);
      return b != 0;
    }
    case Adapt::always:
      break;
  }
  return true;
}

// One step of D samples in one pass (FusedTaps), then the line's move.
template <class S, class H>
H stepFused(RyxLmsTapState* ts, RyxLmsDlyState* ds, const S* samples, int D, int base, H err, Adapt rule) {
  const S* line = static_cast<const S*>(ds->dlyl);
  const int off = base + ts->errDly;
  const FusedTaps<S, H> tap{static_cast<H*>(ts->taps),
                            line + base,
                            samples,
                            std::clamp(ds->dlylLen - off, 0, ts->tapsLen),
                            ts->errDly,
                            D,
                            D - base,
                            adapts(rule, ts->step),
                            1.0 - double(ts->leak),
                            scaleErr(err, ts->step)};
  return fusedSum(ts->tapsLen, tap);
}

// One sample: update, move, store, sum (by `dot`).
template <class S, class H, class Dot = H (*)(const S*, const H*, int)>
H stepOne(RyxLmsTapState* ts, RyxLmsDlyState* ds, S sample, H err, Adapt rule, Dot dot = dotOut<S, H>) {
  H* taps = static_cast<H*>(ts->taps);
  S* line = static_cast<S*>(ds->dlyl);
  const int len = ts->tapsLen;
  if constexpr (!isCplx<S> && !isCplx<H> && std::is_same_v<Dot, H (*)(const S*, const H*, int)>) {
    if (dot == dotOut<S, H> && len <= ds->dlylLen) {
      const H y = stepFused(ts, ds, &sample, 1, 0, err, rule);
      pushOne(line, ds->dlylLen, sample);
      return y;
    }
  }
  if (adapts(rule, ts->step)) {
    updateTaps(taps, len, line, ds->dlylLen, ts->errDly, ts->leak, scaleErr(err, ts->step));
  }
  pushOne(line, ds->dlylLen, sample);
  return dot(line, taps, len);
}

// The float single-sample form on a one-element line: the output is the
// sample times the new tap before the tap is rounded to float.
inline float stepOneShort(RyxLmsTapState* ts, RyxLmsDlyState* ds, float sample, float err) {
  float* taps = static_cast<float*>(ts->taps);
  float* line = static_cast<float*>(ds->dlyl);
  if (!adapts(Adapt::bits, ts->step)) {
    line[0] = sample;
    return static_cast<float>(ld(taps[0]) * sample);
  }
  const double tap = (1.0 - double(ts->leak)) * taps[0] + (double(err) * double(ts->step)) * double(line[0]);
  taps[0] = static_cast<float>(tap);
  line[0] = sample;
  return static_cast<float>(ld(sample) * tap);
}

// One group of D samples.
template <class S, class H>
H stepGroup(RyxLmsTapState* ts, RyxLmsDlyState* ds, const S* samples, H err, Adapt rule) {
  H* taps = static_cast<H*>(ts->taps);
  S* line = static_cast<S*>(ds->dlyl);
  const int len = ts->tapsLen;
  const int D = ts->downFactor;
  const int base = D - 1 - ts->downPhase;
  if constexpr (!isCplx<S> && !isCplx<H>) {
    if (base + len <= ds->dlylLen) {  // every summed element inside the line
      const H y = stepFused(ts, ds, samples, D, base, err, rule);
      pushGroup(line, ds->dlylLen, len + ts->errDly, D, samples);
      return y;
    }
  }
  if (adapts(rule, ts->step)) {
    updateTaps(taps, len, line, ds->dlylLen, base + ts->errDly, ts->leak, scaleErr(err, ts->step));
  }
  pushGroup(line, ds->dlylLen, len + ts->errDly, D, samples);
  return dotOut(line + base, taps, len);
}

// The single-sample form with the caller's error: the float form adapts on
// any nonzero bits of step and has a short path for a one-element line; the
// other types adapt for a step above 0.
template <class S, class H>
H lmslOne(RyxLmsTapState* ts, RyxLmsDlyState* ds, S sample, H err) {
  if constexpr (std::is_same_v<S, float> && std::is_same_v<H, float>) {
    if (ds->dlylLen == 1) return stepOneShort(ts, ds, sample, err);
    return stepOne(ts, ds, sample, err, Adapt::bits);
  } else if constexpr (std::is_same_v<S, SCplx> && std::is_same_v<H, SCplx>) {
    return stepOne(ts, ds, sample, err, Adapt::positive, dotPairs);
  } else {
    return stepOne(ts, ds, sample, err, Adapt::positive);
  }
}

// ---- Desired-signal forms ----------------------------------------------------------

template <class T>
inline T minus(T a, T b) {
  if constexpr (isCplx<T>) {
    return T{a.re - b.re, a.im - b.im};
  } else {
    return a - b;
  }
}

// Block of numIters groups: the error is kept locally from `e` on and
// returned for the caller to store once.
template <class S, class H>
H desBlock(RyxLmsTapState* ts, RyxLmsDlyState* ds, const S* src, const H* des, H* dst, int numIters, H e) {
  const int D = ts->downFactor;
  for (int n = 0; n < numIters; ++n) {
    dst[n] = stepGroup(ts, ds, src + n * D, e, Adapt::always);
    e = minus(des[n], dst[n]);
  }
  return e;
}

// ---- Taps and line access ------------------------------------------------------------

template <class T>
void copyOrZero(T* to, const T* from, int n) {
  if (from == nullptr) {
    ownMemset(to, 0, n * static_cast<int>(sizeof(T)));
  } else {
    ownMemcpy(to, from, n * static_cast<int>(sizeof(T)));
  }
}

// SetTaps: null gives zeros; the record's own array is kept as it stands.
template <class T>
void setTaps(const T* taps, RyxLmsTapState* ts) {
  T* own = static_cast<T*>(ts->taps);
  if (taps != own) copyOrZero(own, taps, ts->tapsLen);
  ts->isFilterMode = 1;
}

// GetTaps: any read takes the filter out of filter mode.
template <class T>
void getTaps(RyxLmsTapState* ts, T* taps) {
  const T* own = static_cast<const T*>(ts->taps);
  if (taps != own) ownMemcpy(taps, own, ts->tapsLen * static_cast<int>(sizeof(T)));
  ts->isFilterMode = 0;
}

template <class T>
void reverseInPlace(T* a, int n) {
  for (int i = 0, j = n - 1; i < j; ++i, --j) std::swap(a[i], a[j]);
}

// SetDlyl: the caller's order is oldest first over dlylLen - 1 samples
// (caller element j is line element dlylLen-2-j); null clears the whole
// line. The record's own buffer while the line is in working order is
// refused with an internal status and no report.
template <class T>
void setDlyl(const T* dlyl, RyxLmsDlyState* ds) {
  T* own = static_cast<T*>(ds->dlyl);
  const int count = ds->dlylLen - 1;
  if (dlyl == nullptr) {
    ownMemset(own, 0, ds->dlylLen * static_cast<int>(sizeof(T)));
  } else if (dlyl == own) {
    if (ds->isDlyFilterMode != 0) {
      ryxSetErrStatus(RYX_StsInternal);
      return;
    }
    reverseInPlace(own, count);
  } else {
    for (int j = 0; j < count; ++j) own[count - 1 - j] = dlyl[j];
  }
  ds->isDlyFilterMode = 1;
}

// GetDlyl: the mirror of SetDlyl; the record's own buffer is refused while
// it is already in the caller's order.
template <class T>
void getDlyl(RyxLmsDlyState* ds, T* dlyl) {
  T* own = static_cast<T*>(ds->dlyl);
  const int count = ds->dlylLen - 1;
  if (dlyl == own) {
    if (ds->isDlyFilterMode == 0) {
      ryxSetErrStatus(RYX_StsInternal);
      return;
    }
    reverseInPlace(own, count);
  } else {
    for (int j = 0; j < count; ++j) dlyl[j] = own[count - 1 - j];
  }
  ds->isDlyFilterMode = 0;
}

// dlylLen of a line for this tap record.
inline int lineLength(const RyxLmsTapState* ts, int adaptB) {
  return ts->tapsLen + (adaptB != 0 ? ts->errDly : 0) + (ts->isMultiRate == 1 ? ts->downFactor : 0);
}

// ---- Views for the plain filtering forms ------------------------------------------------

// The FIR routines see the first tapsLen elements of the line: the tap
// record's head is a FIR tap state, and the line is cut to the FIR length.
inline RyxFirTapState firTaps(const RyxLmsTapState* ts) {
  RyxFirTapState f{};
  f.taps = ts->taps;
  f.tapsLen = ts->tapsLen;
  f.upFactor = ts->upFactor;
  f.upPhase = ts->upPhase;
  f.downFactor = ts->downFactor;
  f.downPhase = ts->downPhase;
  f.isMultiRate = ts->isMultiRate;
  f.isFilterMode = ts->isFilterMode;
  f.tapShift = 0;
  return f;
}

inline RyxFirDlyState firLine(const RyxLmsTapState* ts, const RyxLmsDlyState* ds) {
  RyxFirDlyState f{};
  f.dlyl = ds->dlyl;
  f.dlylLen = std::min(ts->tapsLen, ds->dlylLen);
  f.isDlyFilterMode = ds->isDlyFilterMode;
  return f;
}

// ---- Entries ----------------------------------------------------------------------

// The Out forms of both groups: val is tested first under the Out name, then
// `run` performs the form without Out under its own name; the result is
// stored only when that passed.
template <class Run>
void outForm(const char* name, const char* stem, SCplx* val, Run run) {
  if (!passFirst({name, stem}, {{val == nullptr, "val==0"}})) return;
  SCplx y{};
  if (run(y)) *val = y;
}

}  // namespace ryx::lms
