// High-level FIR forms: one RyxFirState owns its taps, its history buffer
// and, for multirate filters, a table of output phases.
//
// Stored taps: reversed for a single-rate filter; for a multirate one, the
// polyphase branches (branch j holds taps j, j+up, j+2*up, ...) one after the
// other, each reversed in itself. The history runs forward in time, oldest
// first, in a sliding span of a longer buffer, so a single sample costs no
// move; one copy of the history per extLen samples brings the span back.
#pragma once

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "fir/fir_arith.h"
#include "frame/memory.h"

namespace ryx::fir {

// Unroll width of the stored taps per type combination.
template <class S, class H>
constexpr int unrollWidth() {
  if constexpr (std::is_same_v<S, float> && std::is_same_v<H, float>) return 8;
  if constexpr (std::is_same_v<S, double> && std::is_same_v<H, double>) return 4;
  if constexpr (std::is_same_v<S, float> || std::is_same_v<S, SCplx>) return 4;
  return 2;
}

// Allocation used by Init (the aligned allocator): `count` elements of
// `elemSize` bytes, null when the runtime has no memory or the size is out
// of range.
void* stateAlloc(std::int64_t count, int elemSize);

struct Polyphase {
  int q;  // tapsLen / upFactor
  int r;  // tapsLen % upFactor
  int branchLen(int j) const { return j < r ? q + 1 : q; }
  int branchStart(int j) const { return j * q + std::min(j, r); }
};

inline Polyphase polyphaseOf(const RyxFirState* st) { return {st->tapsLen / st->upFactor, st->tapsLen % st->upFactor}; }

// ---- Taps and history --------------------------------------------------------

template <class H>
void firSetTaps(const H* taps, RyxFirState* st) {
  H* own = static_cast<H*>(st->taps);
  const int len = st->tapsLen;
  if (taps == nullptr) {
    ownMemset(own, 0, len * static_cast<int>(sizeof(H)));
    return;
  }
  if (st->isMultiRate != 1) {
    for (int i = 0; i < len; ++i) own[len - 1 - i] = taps[i];
    return;
  }
  const Polyphase pp = polyphaseOf(st);
  const int up = st->upFactor;
  for (int j = 0; j < up; ++j) {
    const int count = pp.branchLen(j);
    H* branch = own + pp.branchStart(j);
    for (int k = 0; k < count; ++k) branch[count - 1 - k] = taps[j + k * up];
  }
}

template <class H>
void firGetTaps(const RyxFirState* st, H* taps) {
  const H* own = static_cast<const H*>(st->taps);
  const int len = st->tapsLen;
  if (st->isMultiRate != 1) {
    for (int i = 0; i < len; ++i) taps[i] = own[len - 1 - i];
    return;
  }
  const Polyphase pp = polyphaseOf(st);
  const int up = st->upFactor;
  for (int j = 0; j < up; ++j) {
    const int count = pp.branchLen(j);
    const H* branch = own + pp.branchStart(j);
    for (int k = 0; k < count; ++k) taps[j + k * up] = branch[count - 1 - k];
  }
}

template <class S>
void firSetDlyl(const S* dlyl, RyxFirState* st) {
  const int bytes = st->dlylLen * static_cast<int>(sizeof(S));
  if (dlyl == nullptr) {
    ownMemset(st->dlylCur, 0, bytes);
  } else {
    ownMemmove(st->dlylCur, dlyl, bytes);
  }
}

template <class S>
void firGetDlyl(const RyxFirState* st, S* dlyl) {
  ownMemmove(dlyl, st->dlylCur, st->dlylLen * static_cast<int>(sizeof(S)));
}

// ---- Phase table ----------------------------------------------------------------
//
// Row i serves the outputs at high-rate ticks downPhase + i*downFactor (and
// every up*down ticks on): the branch that meets a sample there, its length,
// where its span starts in the history (so that every span ends on the
// newest sample that has arrived by then) and where its taps are stored.
inline void fillPhaseTable(RyxFirState* st) {
  const std::int64_t up = st->upFactor, down = st->downFactor;
  const Polyphase pp = polyphaseOf(st);
  std::int64_t p = ((st->downPhase - st->upPhase) % up + up) % up;
  for (std::int64_t i = 0; i < up; ++i) {
    RyxFirPhaseEntry& row = st->phaseTable[i];
    // Inputs arrive at ticks upPhase, upPhase + up, ...; count those up to
    // the tick of this output (64 bits: i * down passes 2^31 for large
    // factors).
    const std::int64_t tick = st->downPhase + i * down;
    const std::int64_t arrived = tick >= st->upPhase ? (tick - st->upPhase) / up + 1 : 0;
    row.branch = static_cast<int>(p);
    row.count = pp.branchLen(row.branch);
    row.dlyOffset = static_cast<int>((row.count == pp.q + 1) ? arrived : arrived + (pp.r != 0 ? 1 : 0));
    row.tapOffset = pp.branchStart(row.branch);
    p = (p + down) % up;
  }
}

// ---- One sample ------------------------------------------------------------------

template <class S, class H>
OutOf<S, H> firStep(RyxFirState* st, S sample) {
  S* cur = static_cast<S*>(st->dlylCur);
  const H* taps = static_cast<const H*>(st->taps);
  // Equal to tapsLen on a single-rate filter; a multirate record (not meant
  // for this form) is kept inside its buffer.
  const int len = st->isMultiRate == 1 ? std::min(st->tapsLen, st->dlylLen + 1) : st->tapsLen;
  cur[st->dlylLen] = sample;
  OutOf<S, H> y;
  if constexpr (std::is_same_v<S, float> || std::is_same_v<S, SCplx>) {
    y = dotLanes(cur, taps, len);
  } else {
    y = narrow<OutOf<S, H>>(dotExt(cur, 1, taps, 1, len));
  }
  ++cur;
  if (cur == static_cast<S*>(st->dlylEnd)) {
    ownMemcpy(st->dlylBuf, st->dlylEnd, st->dlylLen * static_cast<int>(sizeof(S)));
    cur = static_cast<S*>(st->dlylBuf);
  }
  st->dlylCur = cur;
  return y;
}

// ---- Blocks --------------------------------------------------------------------------

// Float outputs j < count whose newest sample is newest0[j]: the pass kernel,
// taps from the caller's first on against samples newest first, then the
// last outputs in extended precision in the same order.
template <class S, class H>
void floatSegment(const H* taps, int len, const S* newest0, OutOf<S, H>* out, int count) {
  const int done = blockKernel(taps + (len - 1), len, newest0, -1, out, count);
  for (int j = done; j < count; ++j)
    out[j] = narrow<OutOf<S, H>>(dotExt(newest0 + j, -1, taps + (len - 1), -1, len));
}

// Moves the history span to the start of the buffer, so blocks work on a
// fixed place.
template <class S>
void historyToStart(RyxFirState* st) {
  if (st->dlylCur == st->dlylBuf) return;
  ownMemmove(st->dlylBuf, st->dlylCur, st->dlylLen * static_cast<int>(sizeof(S)));
  st->dlylCur = st->dlylBuf;
}

template <class S, class H>
void firBlockSingle(RyxFirState* st, const S* src, OutOf<S, H>* dst, int n) {
  using O = OutOf<S, H>;
  constexpr bool isFloat = std::is_same_v<S, float> || std::is_same_v<S, SCplx>;
  constexpr int sz = static_cast<int>(sizeof(S));
  const int len = st->tapsLen;
  const int hist = st->dlylLen;
  const H* taps = static_cast<const H*>(st->taps);
  S* buf = static_cast<S*>(st->dlylBuf);
  historyToStart<S>(st);
  // Float forms stage only what the history covers; double forms stage up
  // to extLen samples and run them from the buffer.
  const int room = isFloat ? hist : st->extLen;
  const int m = std::min(n, room);
  ownMemcpy(buf + hist, src, m * sz);
  if constexpr (isFloat) {
    floatSegment<S, H>(taps, len, buf + (len - 1), dst, m);
    if (n > m) floatSegment<S, H>(taps, len, src + (len - 1), dst + m, n - m);
  } else {
    for (int j = 0; j < m; ++j) dst[j] = narrow<O>(dotExt(buf + j, 1, taps, 1, len));
    if (n > m) {
      const S* from = src + (m - hist);
      for (int j = 0; j < n - m; ++j) dst[m + j] = narrow<O>(dotExt(from + j, 1, taps, 1, len));
    }
  }
  if (room <= m) {
    ownMemcpy(buf, src + (n - hist), hist * sz);
  } else {
    ownMemmove(buf, buf + m, hist * sz);
  }
}

// Multirate: phase by phase over the whole block, each output of a phase
// moving its span on by downFactor samples and its destination by upFactor.
template <class S, class H>
void phasePass(const RyxFirState* st, const S* base, OutOf<S, H>* dst, int perPhase) {
  using O = OutOf<S, H>;
  const H* taps = static_cast<const H*>(st->taps);
  const int up = st->upFactor, down = st->downFactor;
  for (int i = 0; i < up; ++i) {
    const RyxFirPhaseEntry& row = st->phaseTable[i];
    const S* span = base + row.dlyOffset;
    const H* h = taps + row.tapOffset;
    O* out = dst + i;
    int r = 0;
    if constexpr (!isCplx<S> && !isCplx<H>) {
      // Four outputs of the phase side by side, each with its own
      // accumulator in the same order as dotExt: the same bits, with the
      // additions of different outputs overlapping.
      for (; r + 4 <= perPhase; r += 4) {
        ld a0 = 0, a1 = 0, a2 = 0, a3 = 0;
        const S* s1 = span + down;
        const S* s2 = s1 + down;
        const S* s3 = s2 + down;
        for (int k = 0; k < row.count; ++k) {
          const ld t = h[k];
          a0 = a0 + static_cast<ld>(span[k]) * t;
          a1 = a1 + static_cast<ld>(s1[k]) * t;
          a2 = a2 + static_cast<ld>(s2[k]) * t;
          a3 = a3 + static_cast<ld>(s3[k]) * t;
        }
        out[0] = static_cast<O>(a0);
        out[up] = static_cast<O>(a1);
        out[2 * up] = static_cast<O>(a2);
        out[3 * up] = static_cast<O>(a3);
        span += 4 * down;
        out += 4 * up;
      }
    }
    for (; r < perPhase; ++r) {
      *out = narrow<O>(dotExt(span, 1, h, 1, row.count));
      span += down;
      out += up;
    }
  }
}

template <class S, class H>
void firBlockMulti(RyxFirState* st, const S* src, OutOf<S, H>* dst, int numIters) {
  constexpr int sz = static_cast<int>(sizeof(S));
  const int down = st->downFactor, up = st->upFactor;
  const int hist = st->dlylLen;
  S* buf = static_cast<S*>(st->dlylBuf);
  const int inputs = numIters * down;
  const int m = std::min(inputs, st->extLen);
  ownMemcpy(buf + hist, src, m * sz);
  phasePass<S, H>(st, buf, dst, m / down);
  if (st->extLen <= m) {
    phasePass<S, H>(st, src + (m - hist), dst + up * (m / down), (inputs - m) / down);
    ownMemcpy(buf, src + (inputs - hist), hist * sz);
  } else {
    ownMemmove(buf, buf + m, hist * sz);
  }
}

template <class S, class H>
void firBlock(RyxFirState* st, const S* src, OutOf<S, H>* dst, int numIters) {
  if (st->isMultiRate == 1) {
    firBlockMulti<S, H>(st, src, dst, numIters);
  } else {
    firBlockSingle<S, H>(st, src, dst, numIters);
  }
}

}  // namespace ryx::fir
