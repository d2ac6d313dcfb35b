// Low-level FIR forms: the caller keeps the tap state, the delay state and
// the arrays both point at. Kernels here have no failure path; the entries
// in firl_entries.cpp check first.
//
// Working order of the delay line: dlyl[0] is the newest sample. The line is
// shifted, not circular: each sample that goes through it alone moves the
// whole line by one place. Taps are in natural order, taps[0] multiplying the
// newest sample.
#pragma once

#include <algorithm>
#include <type_traits>

#include "fir/fir_arith.h"
#include "frame/memory.h"

namespace ryx::fir {

template <class S>
constexpr bool isFloatSample = std::is_same_v<S, float> || std::is_same_v<S, SCplx>;

inline int ceilDiv(int a, int b) { return a / b + (a % b != 0 ? 1 : 0); }

// History the caller sees through Set/GetDlyl: the last place of a
// single-rate line is never read again, so it is not part of the state.
inline int visibleCount(const RyxFirTapState* ts, const RyxFirDlyState* ds) {
  return ts->isMultiRate == 1 ? ds->dlylLen : ds->dlylLen - 1;
}

// ---- Tap and history access -------------------------------------------------

template <class T>
void firlSetTaps(const T* taps, RyxFirTapState* ts) {
  T* own = static_cast<T*>(ts->taps);
  const int bytes = ts->tapsLen * static_cast<int>(sizeof(T));
  if (taps == nullptr) {
    ownMemset(own, 0, bytes);
  } else if (!(taps == own && ts->isFilterMode == 1)) {
    ownMemcpy(own, taps, bytes);
  }
  ts->isFilterMode = 1;
}

template <class T>
void firlGetTaps(RyxFirTapState* ts, T* taps) {
  if (taps == static_cast<T*>(ts->taps)) {
    ts->isFilterMode = 0;
    return;
  }
  ownMemcpy(taps, ts->taps, ts->tapsLen * static_cast<int>(sizeof(T)));
}

template <class T>
void reverseInPlace(T* a, int n) {
  for (int i = 0, j = n - 1; i < j; ++i, --j) std::swap(a[i], a[j]);
}

template <class T>
void firlInitDlyl(const RyxFirTapState* ts, T* dlyl, RyxFirDlyState* ds) {
  ds->dlyl = dlyl;
  ds->dlylLen = ceilDiv(ts->tapsLen, ts->upFactor);
  ds->isDlyFilterMode = 0;
}

template <class T>
void firlSetDlyl(const RyxFirTapState* ts, const T* dlyl, RyxFirDlyState* ds) {
  T* own = static_cast<T*>(ds->dlyl);
  const int count = visibleCount(ts, ds);
  if (dlyl == nullptr) {
    ownMemset(own, 0, ds->dlylLen * static_cast<int>(sizeof(T)));
  } else if (dlyl == own) {
    if (ds->isDlyFilterMode == 1) return;
    reverseInPlace(own, count);
  } else {
    for (int i = 0; i < count; ++i) own[i] = dlyl[count - 1 - i];
  }
  ds->isDlyFilterMode = 1;
}

template <class T>
void firlGetDlyl(const RyxFirTapState* ts, RyxFirDlyState* ds, T* dlyl) {
  T* own = static_cast<T*>(ds->dlyl);
  const int count = visibleCount(ts, ds);
  if (dlyl == own) {
    reverseInPlace(own, count);
    ds->isDlyFilterMode = 0;
    return;
  }
  for (int i = 0; i < count; ++i) dlyl[i] = own[count - 1 - i];
}

// ---- One sample through the line --------------------------------------------

template <class S>
inline void pushLine(S* line, int len, S sample) {
  ownMemmove(line + 1, line, (len - 1) * static_cast<int>(sizeof(S)));
  line[0] = sample;
}

// Float forms take their length from the tap state and use the fixed-order
// float dot products; double forms take it from the delay state and run in
// extended precision.
template <class S, class H>
OutOf<S, H> firlStep(const RyxFirTapState* ts, RyxFirDlyState* ds, S sample) {
  S* line = static_cast<S*>(ds->dlyl);
  const H* taps = static_cast<const H*>(ts->taps);
  if constexpr (isFloatSample<S>) {
    // Equal on a single-rate state; the bound keeps a multirate state (not
    // meant for this form) inside its shorter line.
    const int len = std::min(ts->tapsLen, ds->dlylLen);
    pushLine(line, len, sample);
    return dotLanes(line, taps, len);
  } else {
    pushLine(line, ds->dlylLen, sample);
    return narrow<OutOf<S, H>>(dotExt(line, 1, taps, 1, ds->dlylLen));
  }
}

// ---- Blocks, single rate -------------------------------------------------------

// Float types: the head goes through the line sample by sample, the rest
// straight from src through the pass kernel, the last outputs of a block
// in extended precision from tap 0 upward; then the line is refilled.
template <class S, class H>
void firlBlockFloat(const RyxFirTapState* ts, RyxFirDlyState* ds, const S* src, OutOf<S, H>* dst, int n) {
  using O = OutOf<S, H>;
  const int len = ts->tapsLen;
  const H* taps = static_cast<const H*>(ts->taps);
  S* line = static_cast<S*>(ds->dlyl);
  const int m = std::min(len - 1, n);
  for (int t = 0; t < m; ++t) dst[t] = firlStep<S, H>(ts, ds, src[t]);
  if (n == m) return;
  const int rest = n - m;
  O* out = dst + m;
  // Output j reads src[j] .. src[j+len-1] against taps[len-1] .. taps[0].
  const int done = blockKernel(taps + (len - 1), len, src, 1, out, rest);
  for (int j = done; j < rest; ++j) out[j] = narrow<O>(dotExt(src + j + (len - 1), -1, taps, 1, len));
  for (int k = 0; k < len; ++k) line[k] = src[n - 1 - k];
}

// Double types: after the head, outputs come in pairs from the two-parallel
// form with three multiplications per pair of taps, in extended precision.
// For taps h0, h1 and x the sample at time q (xm before, xp after):
//   s = (h0 + h1)*x,  y0 += (xm - x)*h1 + s,  y1 += (xp - x)*h0 + s.
template <class S, class H>
void firlBlockPair(const H* taps, int len, const S* src, int o, OutOf<S, H>* dst) {
  using O = OutOf<S, H>;
  Acc<S, H> y0 = zeroAcc<Acc<S, H>>(), y1 = zeroAcc<Acc<S, H>>();
  int k = 0;
  if (len & 1) {
    y0 = mul(ext(src[o]), ext(taps[0]));
    y1 = mul(ext(src[o + 1]), ext(taps[0]));
    k = 1;
  }
  for (; k + 1 < len; k += 2) {
    const auto x = ext(src[o - k]);
    const auto xm = ext(src[o - k - 1]);
    const auto xp = ext(src[o - k + 1]);
    const auto h0 = ext(taps[k]);
    const auto h1 = ext(taps[k + 1]);
    const auto shared = mul(x, h0 + h1);
    y0 = y0 + (mul(xm - x, h1) + shared);
    y1 = y1 + (mul(xp - x, h0) + shared);
  }
  dst[o] = narrow<O>(y0);
  dst[o + 1] = narrow<O>(y1);
}

template <class S, class H>
void firlBlockDouble(const RyxFirTapState* ts, RyxFirDlyState* ds, const S* src, OutOf<S, H>* dst, int n) {
  using O = OutOf<S, H>;
  const int len = ts->tapsLen;
  const H* taps = static_cast<const H*>(ts->taps);
  S* line = static_cast<S*>(ds->dlyl);
  const int m = std::min(ds->dlylLen, n);
  for (int t = 0; t < m; ++t) dst[t] = firlStep<S, H>(ts, ds, src[t]);
  int o = m;
  if ((n - m) & 1) {
    dst[o] = narrow<O>(dotExt(src + o, -1, taps, 1, len));
    ++o;
  }
  for (; o < n; o += 2) firlBlockPair<S, H>(taps, len, src, o, dst);
  for (int k = 0; k < m; ++k) line[k] = src[n - 1 - k];
}

// ---- Blocks, multirate ----------------------------------------------------------
//
// Decimation only (upFactor 1): every input is a tick, outputs fall on ticks
// congruent to downPhase. Ticks below `limit` go through the line, later
// outputs are read straight from src.
template <class S, class H>
void firlBlockDecim(const RyxFirTapState* ts, RyxFirDlyState* ds, const S* src, OutOf<S, H>* dst, int numIters) {
  using O = OutOf<S, H>;
  const int len = ts->tapsLen;
  const int down = ts->downFactor;
  const int phase = ts->downPhase;
  const H* taps = static_cast<const H*>(ts->taps);
  S* line = static_cast<S*>(ds->dlyl);
  const long long ticks = static_cast<long long>(numIters) * down;
  const long long limit = std::min<long long>(ticks, phase + static_cast<long long>(down) * ceilDiv(len, down));
  for (long long t = 0; t < limit; ++t) {
    pushLine(line, ds->dlylLen, src[t]);
    if (t % down == phase) dst[t / down] = narrow<O>(dotExt(line, 1, taps, 1, len));
  }
  long long t = limit;
  // Four outputs at a time (each summed in dotExt's order), then singly.
  for (; t + 3LL * down < ticks; t += 4LL * down) {
    const S* x[4];
    const H* h[4] = {taps, taps, taps, taps};
    const int n[4] = {len, len, len, len};
    for (int j = 0; j < 4; ++j) x[j] = src + t + static_cast<long long>(j) * down;
    Acc<S, H> acc[4];
    dotExt4(x, -1, h, 1, n, acc);
    for (int j = 0; j < 4; ++j) dst[t / down + j] = narrow<O>(acc[j]);
  }
  for (; t < ticks; t += down) dst[t / down] = narrow<O>(dotExt(src + t, -1, taps, 1, len));
  const long long keep = std::min<long long>(len, ticks);
  for (long long k = 0; k < keep; ++k) line[k] = src[ticks - 1 - k];
}

// General multirate by polyphase indexing: inputs arrive at high-rate ticks
// congruent to upPhase, outputs leave at ticks congruent to downPhase, and
// an output at a tick `a` ticks after the last arrival uses the branch of
// taps a, a+up, a+2*up, ... against the newest samples.
template <class S, class H>
void firlBlockPoly(const RyxFirTapState* ts, RyxFirDlyState* ds, const S* src, OutOf<S, H>* dst, int numIters) {
  using O = OutOf<S, H>;
  const int len = ts->tapsLen;
  const int up = ts->upFactor, upPhase = ts->upPhase;
  const int down = ts->downFactor, downPhase = ts->downPhase;
  const H* taps = static_cast<const H*>(ts->taps);
  S* line = static_cast<S*>(ds->dlyl);
  const int q = len / up, r = len % up, w = q + (r != 0 ? 1 : 0);
  const long long ticks = static_cast<long long>(up) * down * numIters;
  const long long inputs = static_cast<long long>(numIters) * down;
  long long limit = downPhase;
  while (limit < std::max(len, up)) limit += down;
  limit = std::min(limit, ticks);

  int a = (up - upPhase) % up;
  int b = (down - downPhase) % down;
  long long in = 0, out = 0;
  for (long long t = 0; t < limit; ++t) {
    if (a == 0) pushLine(line, ds->dlylLen, src[in++]);
    if (b == 0) dst[out++] = narrow<O>(dotExt(line, 1, taps + a, up, a < r ? w : q));
    if (++a == up) a = 0;
    if (++b == down) b = 0;
  }
  // Straight from src: each output's newest sample and branch of taps.
  auto spanOf = [&](long long t, const S*& x, const H*& h, int& n) {
    const long long newest = (t - upPhase) / up;
    const int branch = static_cast<int>(t - (newest * up + upPhase));
    x = src + newest;
    h = taps + branch;
    n = branch < r ? w : q;
  };
  long long t = limit;
  // Four outputs at a time (each summed in dotExt's order), then singly.
  for (; t + 3LL * down < ticks; t += 4LL * down) {
    const S* x[4];
    const H* h[4];
    int n[4];
    for (int j = 0; j < 4; ++j) spanOf(t + static_cast<long long>(j) * down, x[j], h[j], n[j]);
    Acc<S, H> acc[4];
    dotExt4(x, -1, h, up, n, acc);
    for (int j = 0; j < 4; ++j) dst[out++] = narrow<O>(acc[j]);
  }
  for (; t < ticks; t += down) {
    const S* x;
    const H* h;
    int n;
    spanOf(t, x, h, n);
    dst[out++] = narrow<O>(dotExt(x, -1, h, up, n));
  }
  const long long keep = std::min<long long>(inputs, w);
  for (long long k = 0; k < keep; ++k) line[k] = src[inputs - 1 - k];
}

template <class S, class H>
void firlBlock(const RyxFirTapState* ts, RyxFirDlyState* ds, const S* src, OutOf<S, H>* dst, int numIters) {
  if (ts->isMultiRate == 1) {
    if (ts->upFactor == 1) {
      firlBlockDecim<S, H>(ts, ds, src, dst, numIters);
    } else {
      firlBlockPoly<S, H>(ts, ds, src, dst, numIters);
    }
  } else if constexpr (isFloatSample<S>) {
    firlBlockFloat<S, H>(ts, ds, src, dst, numIters);
  } else {
    firlBlockDouble<S, H>(ts, ds, src, dst, numIters);
  }
}

}  // namespace ryx::fir
