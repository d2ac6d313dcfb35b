// Low-level 16-bit FIR (source group "ryxfirlw"): the records of the float
// forms, the taps quantised into the caller's own float array.
//
// Stored taps: tapsLen 16-bit values at the start of the caller's array,
// split into the polyphase branches (branch j: taps j, j+up, ...), each
// reversed, the branches in order; a single-rate state has one branch, the
// whole reversal. The delay line runs oldest first, newest at the last
// place, and moves down by one per sample. Outputs are wrapping 32-bit sums
// narrowed under the scale mode with the tap exponent folded in.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "fir/firh_core.h"
#include "fir/firw_arith.h"
#include "frame/checks.h"
#include "frame/memory.h"

namespace ryx::firw {
namespace {

constexpr const char* kStem = "ryxfirlw";
constexpr const char* kNullTap = "Null Tap State pointer";
constexpr const char* kNullDly = "Null Dly State pointer";
constexpr const char* kNullBuf = "Null buffer pointer";
constexpr const char* kBadLen = "Invalid array length";
constexpr const char* kTapsNotSet = "Filter Taps is not setup";
constexpr const char* kDlylNotSet = "Filter Dlyl is not setup";
constexpr const char* kNullScale = "Null scale factor pointer";

short* tapsOf(const RyxFirTapState* ts) { return static_cast<short*>(ts->taps); }
short* lineOf(const RyxFirDlyState* ds) { return static_cast<short*>(ds->dlyl); }

ryx::fir::Polyphase polyphase(const RyxFirTapState* ts) {
  return {ts->tapsLen / ts->upFactor, ts->tapsLen % ts->upFactor};
}

// Place of natural tap i in the stored array.
int storedPlace(const RyxFirTapState* ts, const ryx::fir::Polyphase& pp, int i) {
  const int j = i % ts->upFactor, k = i / ts->upFactor;
  return pp.branchStart(j) + pp.branchLen(j) - 1 - k;
}

// Samples of the line that Set/GetDlyl deal with.
int visibleLen(const RyxFirTapState* ts, const RyxFirDlyState* ds) {
  return ts->isMultiRate == 1 ? ds->dlylLen : ds->dlylLen - 1;
}

// Quantise: scale by 2^tapShift in float, arrange, round to nearest.
// False when no temporary could be had.
bool quantise(const float* taps, RyxFirTapState* ts) {
  const int n = ts->tapsLen;
  float* tmp = ryxsMalloc(static_cast<unsigned>(n));
  if (tmp == nullptr) return false;
  const int shift = tapExponent(taps, n);
  const ryx::fir::Polyphase pp = polyphase(ts);
  for (int i = 0; i < n; ++i) tmp[storedPlace(ts, pp, i)] = taps[i];
  ryxsbMpy1(std::ldexp(1.0f, shift), tmp, n);
  ryxsbFloatToInt(tmp, ts->taps, n, 16, RYX_RoundNearest);
  ryxFree(tmp);
  ts->tapShift = shift;
  return true;
}

void setTapsCore(const float* taps, RyxFirTapState* ts) {
  if (taps == nullptr) {
    ownMemset(ts->taps, 0, ts->tapsLen * 4);
    ts->isFilterMode = 1;
    return;
  }
  if (taps == ts->taps && ts->isFilterMode == 1) return;
  if (quantise(taps, ts)) {
    ts->isFilterMode = 1;
  } else {
    ts->isFilterMode = 0;
    ryxSetErrStatus(RYX_StsNoMem);
  }
}

void fillState(float* taps, int tapsLen, int up, int upPhase, int down, int downPhase, RyxFirTapState* ts) {
  ts->taps = taps;
  ts->tapsLen = tapsLen;
  ts->upFactor = up;
  ts->upPhase = upPhase;
  ts->downFactor = down;
  ts->downPhase = downPhase;
  ts->isMultiRate = (up > 1 || down > 1) ? 1 : 0;
  ts->isFilterMode = 0;
  ts->tapShift = 0;
  setTapsCore(taps, ts);
}

// ---- Filtering ------------------------------------------------------------

// One sample through the line: enters at the end, the sum is taken, the
// line moves down by one.
std::int32_t step(const RyxFirTapState* ts, RyxFirDlyState* ds, short sample) {
  const int len = ts->tapsLen;
  short* line = lineOf(ds);
  line[len - 1] = sample;
  const std::int32_t v = dotWrap(tapsOf(ts), line, len);
  ownMemmove(line, line + 1, (len - 1) * 2);
  return v;
}

// Single rate: the first samples through the line, the rest straight from
// src (output j reads src[j-len+1..j]), then the line from src's end.
void blockSingle(const RyxFirTapState* ts, RyxFirDlyState* ds, const short* src, std::int32_t* out, int n) {
  const int len = ts->tapsLen;
  const int m = std::min(n, len);
  for (int j = 0; j < m; ++j) out[j] = step(ts, ds, src[j]);
  if (n == m) return;
  const short* taps = tapsOf(ts);
  for (int j = m; j < n; ++j) out[j] = dotWrap(taps, src + j - len + 1, len);
  ownMemcpy(lineOf(ds), src + n - len + 1, (len - 1) * 2);
  lineOf(ds)[len - 1] = src[n - 1];
}

// Multirate: inputs at high-rate ticks upPhase + i*up, outputs at ticks
// downPhase + t*down; an output sums its branch (the ticks since the newest
// input) against the newest samples, the line standing before src.
void blockMulti(const RyxFirTapState* ts, RyxFirDlyState* ds, const short* src, std::int32_t* out, int numIters) {
  const std::int64_t up = ts->upFactor, down = ts->downFactor;
  const int w = ds->dlylLen;
  const short* line = lineOf(ds);
  const short* taps = tapsOf(ts);
  const ryx::fir::Polyphase pp = polyphase(ts);
  auto sampleAt = [&](std::int64_t i) { return i < 0 ? line[w + i] : src[i]; };
  for (std::int64_t g = 0; g < numIters; ++g) {
    for (std::int64_t r = 0; r < up; ++r) {
      const std::int64_t tick = ts->downPhase + r * down - ts->upPhase;
      const std::int64_t newest = (tick >= 0 ? tick / up : -1);  // tick > -up always
      const int branch = static_cast<int>(tick - newest * up);
      const int count = pp.branchLen(branch);
      const short* h = taps + pp.branchStart(branch);
      const std::int64_t last = g * down + newest;
      std::uint32_t s = 0;
      for (int k = 0; k < count; ++k) s += mulWrap(h[k], sampleAt(last - count + 1 + k));
      out[g * up + r] = static_cast<std::int32_t>(s);
    }
  }
  const std::int64_t inputs = numIters * down;
  short* dl = lineOf(ds);
  if (inputs >= w) {
    ownMemcpy(dl, src + inputs - w, w * 2);
  } else {
    ownMemmove(dl, dl + inputs, static_cast<int>(w - inputs) * 2);
    ownMemcpy(dl + w - inputs, src, static_cast<int>(inputs) * 2);
  }
}

// ---- Entries ----------------------------------------------------------------

void initMr(const char* name, float* taps, int tapsLen, int up, int upPhase, int down, int downPhase,
            RyxFirTapState* ts) {
  if (!passSticky({name, kStem}, {{taps == nullptr || ts == nullptr, kNullTap},
                                  {tapsLen < 1, kBadLen},
                                  {upPhase < 0 || downPhase < 0, "Invalid phase value"},
                                  {up <= upPhase || down <= downPhase, "Invalid factor value"}}))
    return;
  fillState(taps, tapsLen, up, upPhase, down, downPhase, ts);
}

bool passFilter(const char* name, const RyxFirTapState* ts, const RyxFirDlyState* ds) {
  return passFirst({name, kStem}, {{ts == nullptr, kNullTap}, {ds == nullptr, kNullDly}}) &&
         passFirst({name, kStem}, {{ts->isFilterMode == 0, kTapsNotSet}, {ds->isDlyFilterMode == 0, kDlylNotSet}});
}

}  // namespace
}  // namespace ryx::firw

using namespace ryx;
using namespace ryx::firw;
using TS = RyxFirTapState;
using DS = RyxFirDlyState;

extern "C" {

RYXAPI void ryxwFirlInit(float* taps, int tapsLen, TS* ts) {
  if (!passSticky({__func__, kStem}, {{taps == nullptr || ts == nullptr, kNullTap}, {tapsLen < 1, kBadLen}})) return;
  fillState(taps, tapsLen, 1, 0, 1, 0, ts);
}

RYXAPI void ryxwFirlInitMr(float* taps, int tapsLen, int up, int upPhase, int down, int downPhase, TS* ts) {
  initMr(__func__, taps, tapsLen, up, upPhase, down, downPhase, ts);
}

RYXAPI void ryxwFirlInitDlyl(const TS* ts, short* dlyl, DS* ds) {
  if (!passSticky({__func__, kStem}, {{dlyl == nullptr, kNullDly}, {ds == nullptr || ts == nullptr, kNullBuf}}))
    return;
  // The line's length divides by upFactor: a tap state that never went
  // through Init (zeroed, say) must not reach that division.
  if (!passSticky({__func__, kStem}, {{ts->upFactor < 1, "Invalid factor value"}})) return;
  ds->dlyl = dlyl;
  ds->dlylLen = ts->tapsLen / ts->upFactor + (ts->tapsLen % ts->upFactor != 0 ? 1 : 0);
  ds->isDlyFilterMode = 0;
}

RYXAPI void ryxwFirlSetTaps(const float* taps, TS* ts) {
  if (passFirst({__func__, kStem}, {{ts == nullptr, kNullTap}})) setTapsCore(taps, ts);
}

RYXAPI void ryxwFirlGetTaps(TS* ts, float* taps) {
  if (!passFirst({__func__, kStem},
                 {{ts == nullptr, kNullTap}, {taps == nullptr, kNullBuf}}) ||
      !passFirst({__func__, kStem}, {{ts->isFilterMode != 1, kTapsNotSet}}))
    return;
  const int n = ts->tapsLen;
  const bool own = taps == ts->taps;
  // Into the record's own array the 16-bit taps are read before the floats
  // land on them, through a temporary.
  float* out = own ? ryxsMalloc(static_cast<unsigned>(n)) : taps;
  if (out == nullptr) {
    ryxSetErrStatus(RYX_StsNoMem);
    return;
  }
  const float scale = std::ldexp(1.0f, -ts->tapShift);
  const ryx::fir::Polyphase pp = polyphase(ts);
  for (int i = 0; i < n; ++i) out[i] = static_cast<float>(tapsOf(ts)[storedPlace(ts, pp, i)]) * scale;
  if (own) {
    ownMemcpy(taps, out, n * 4);
    ryxFree(out);
    ts->isFilterMode = 0;
  }
}

RYXAPI void ryxwFirlSetDlyl(const TS* ts, const short* dlyl, DS* ds) {
  if (!passFirst({__func__, kStem}, {{ds == nullptr, kNullDly}, {ts == nullptr, kNullTap}})) return;
  if (dlyl == nullptr) {
    ownMemset(ds->dlyl, 0, ds->dlylLen * 2);
  } else if (dlyl != ds->dlyl) {
    ownMemmove(ds->dlyl, dlyl, visibleLen(ts, ds) * 2);
  }
  ds->isDlyFilterMode = 1;
}

RYXAPI void ryxwFirlGetDlyl(const TS* ts, DS* ds, short* dlyl) {
  if (!passFirst({__func__, kStem}, {{ds == nullptr, kNullDly}, {ts == nullptr, kNullTap}, {dlyl == nullptr, kNullBuf}}) ||
      !passFirst({__func__, kStem}, {{ds->isDlyFilterMode != 1, kDlylNotSet}}))
    return;
  if (dlyl == ds->dlyl) {
    ds->isDlyFilterMode = 0;
  } else {
    ownMemmove(dlyl, ds->dlyl, visibleLen(ts, ds) * 2);
  }
}

RYXAPI short ryxwFirl(const TS* ts, DS* ds, short sample, int scaleMode, int* scaleFactor) {
  if (!passFilter(__func__, ts, ds) ||
      !passFirst({__func__, kStem},
                 {{ts->isMultiRate == 1, "MultiRate filter"}, {scaleMode == 4 && scaleFactor == nullptr, kNullScale}}))
    return 0;
  const Narrowing nw = lowNarrowing(scaleMode, scaleFactor, ts->tapShift);
  return narrowOne(step(ts, ds, sample), nw, ts->tapShift, scaleFactor);
}

RYXAPI void ryxwbFirl(const TS* ts, DS* ds, const short* src, short* dst, int numIters, int scaleMode,
                      int* scaleFactor) {
  if (!passFilter(__func__, ts, ds) ||
      !passFirst({__func__, kStem}, {{src == nullptr || dst == nullptr, kNullBuf},
                                     {numIters < 1, kBadLen},
                                     {scaleMode == 4 && scaleFactor == nullptr, kNullScale}}))
    return;
  const std::int64_t outputs = std::int64_t{numIters} * ts->upFactor;
  std::int32_t* sums = static_cast<std::int32_t*>(ryx::fir::stateAlloc(outputs, 4));
  if (sums == nullptr) {
    reportNoMem({__func__, kStem}, "Allocation failure");
    return;
  }
  if (ts->isMultiRate == 1) {
    blockMulti(ts, ds, src, sums, numIters);
  } else {
    blockSingle(ts, ds, src, sums, numIters);
  }
  const int n = static_cast<int>(outputs);
  const Narrowing nw = lowNarrowing(scaleMode, scaleFactor, ts->tapShift);
  if (nw.mode == 4) {
    for (int i = 0; i < n; ++i) sums[i] = shiftBy(sums[i], ts->tapShift);
    ownScaleArrayI32(sums, dst, n, 4, scaleFactor);
  } else {
    int f = nw.factor;
    ownScaleArrayI32(sums, dst, n, nw.mode, &f);
  }
  ryxFree(sums);
}

}  // extern "C"
