// High-level 16-bit FIR (source group "ryxfirhw") on RyxFirState.
//
// Lengths are padded: pad(n) is the least multiple of 4 not below n + 3.
// Single rate: tapsLen = pad(origTapsLen), dlylLen = tapsLen - 4, extLen =
// tapsLen. Multirate, with Lc = ceil(origTapsLen/up): tapsLen = pad(Lc)*up,
// dlylLen = pad(Lc) - 3, extLen = dlylLen rounded up to a multiple of down.
//
// Stored taps: per branch (one for a single-rate filter) a table of four
// shifted copies. With temp the branch's quantised taps reversed and
// right-aligned in pad width (temp[w-1-k] = tap k of the branch, three
// zeros behind), group g holds the rows temp[4g+3-k .. 4g+6-k] for k = 0..3:
// row k serves a span that starts k samples past a group boundary, so every
// load is a whole group. `reserved` is the start of the current history in
// dlylBuf; dlylEnd and dlylCur are unused.
//
// Automatic scaling of a block: each kernel run carries a running shift
// that starts at tapShift; an output that still overflows grows it by
// floor(log2 |v|) - 14 and shifts the run's earlier outputs to match. At
// the end every run is brought to the largest shift, and *scaleFactor is
// that shift less tapShift. A block is cut into numIters rounded down to a
// multiple of 4 and the rest; each part runs over the buffer, then
// straight from src (multirate: one part).
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "fir/firh_core.h"
#include "fir/firw_arith.h"
#include "frame/checks.h"
#include "frame/memory.h"

namespace ryx::firw {
namespace {

constexpr const char* kStem = "ryxfirhw";
constexpr const char* kNullState = "Null state pointer";
constexpr const char* kNotInit = "Must have been initialized";
constexpr const char* kNullBuf = "Null buffer pointer";
constexpr const char* kBadValue = "Invalid value";
constexpr const char* kNullScale = "Null scale factor pointer";

std::int64_t pad(std::int64_t n) { return (n + 6) / 4 * 4; }

short* tableOf(const RyxFirState* st) { return static_cast<short*>(st->taps); }
short* bufOf(const RyxFirState* st) { return static_cast<short*>(st->dlylBuf); }

// Width of one branch table (the whole table when single rate).
int branchWidth(const RyxFirState* st) { return st->tapsLen / st->upFactor; }

ryx::fir::Polyphase polyphase(const RyxFirState* st) {
  return {st->origTapsLen / st->upFactor, st->origTapsLen % st->upFactor};
}

// Samples dealt with by Set/GetDlyl, at the end of the history.
int visibleLen(const RyxFirState* st) {
  return st->isMultiRate == 1 ? polyphase(st).q + (polyphase(st).r != 0 ? 1 : 0) : st->origTapsLen - 1;
}

// Tap k of a branch table of width w (row 0 read backward).
short branchTap(const short* table, int w, int k) {
  const int i = w - 4 - k;
  return table[16 * (i / 4) + i % 4];
}

// Quantised tap: scaled in double, rounded half away from zero, low 16 bits.
short quantise(float tap, int shift) {
  const double v = std::ldexp(static_cast<double>(tap), shift);
  const double r = v > 0 ? v + 0.5 : (v < 0 ? v - 0.5 : 0.0);
  if (!(std::fabs(r) < 9223372036854775808.0)) return 0;
  return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint64_t>(static_cast<std::int64_t>(r))));
}

// Clear the table; with taps, find the exponent and rebuild it. The status
// becomes RYX_StsNoMem when the temporary is missing.
void setTapsCore(const float* taps, RyxFirState* st) {
  short* table = tableOf(st);
  ownMemset(table, 0, st->tapsLen * 4 * 2);
  if (taps == nullptr) return;
  const int w = branchWidth(st), up = st->upFactor;
  short* temp = ryxwMalloc(static_cast<unsigned>(w + 3));
  if (temp == nullptr) {
    ryxSetErrStatus(RYX_StsNoMem);
    return;
  }
  st->tapShift = tapExponent(taps, st->origTapsLen);
  const ryx::fir::Polyphase pp = polyphase(st);
  for (int b = 0; b < up; ++b) {
    ownMemset(temp, 0, (w + 3) * 2);
    for (int k = 0; k < pp.branchLen(b); ++k) temp[w - 1 - k] = quantise(taps[b + k * up], st->tapShift);
    short* rows = table + std::int64_t{b} * w * 4;
    for (int g = 0; g < w / 4; ++g)
      for (int k = 0; k < 4; ++k)
        for (int j = 0; j < 4; ++j) rows[16 * g + 4 * k + j] = temp[4 * g + 3 - k + j];
  }
  ryxFree(temp);
}

// Row r of the phase table: the branch met at the tick of output r of a
// group, its length, where its span starts (relative to the group's first
// input, the spans being right-aligned on the newest input) and where its
// table starts.
void fillPhaseTable(RyxFirState* st) {
  const std::int64_t up = st->upFactor, down = st->downFactor;
  const ryx::fir::Polyphase pp = polyphase(st);
  const int w = branchWidth(st);
  for (std::int64_t r = 0; r < up; ++r) {
    const std::int64_t tick = st->downPhase + r * down - st->upPhase;
    const std::int64_t newest = tick >= 0 ? tick / up : -1;
    RyxFirPhaseEntry& row = st->phaseTable[r];
    row.branch = static_cast<int>(tick - newest * up);
    row.count = pp.branchLen(row.branch);
    row.dlyOffset = static_cast<int>(newest + 1);
    row.tapOffset = row.branch * w * 4;
  }
}

// ---- Narrowing ----------------------------------------------------------------

// Narrows a stream of sums into dst; in automatic mode run by run, as
// described above.
class Sink {
 public:
  Sink(short* dst, Narrowing nw, int tapShift) : dst_(dst), nw_(nw), tapShift_(tapShift) {}

  void beginRun() {
    runs_[count_] = {pos_, tapShift_};
  }
  void put(std::int32_t v) {
    if (nw_.mode != 4) {
      int f = nw_.factor;
      dst_[pos_++] = ownScaleI32(v, nw_.mode, &f);
      return;
    }
    Run& run = runs_[count_];
    std::int32_t x = shiftBy(v, run.shift);
    if (!fits16(x)) {
      const int e = overflowShift(x);
      for (std::int64_t i = run.first; i < pos_; ++i) dst_[i] = static_cast<short>(dst_[i] >> e);
      x >>= e;
      run.shift += e;
    }
    dst_[pos_++] = static_cast<short>(x);
  }
  void endRun() {
    if (pos_ > runs_[count_].first) ++count_;
  }
  // Brings every run to the largest shift; writes the factor.
  void finish(int* scaleFactor) {
    if (nw_.mode != 4) return;
    int top = tapShift_;
    for (int r = 0; r < count_; ++r) top = std::max(top, runs_[r].shift);
    for (int r = 0; r < count_; ++r) {
      const int d = std::min(top - runs_[r].shift, 31);
      const std::int64_t end = r + 1 < count_ ? runs_[r + 1].first : pos_;
      for (std::int64_t i = runs_[r].first; i < end; ++i) dst_[i] = static_cast<short>(dst_[i] >> d);
    }
    if (scaleFactor != nullptr) *scaleFactor = top - tapShift_;
  }

 private:
  struct Run {
    std::int64_t first;
    int shift;
  };
  short* dst_;
  Narrowing nw_;
  int tapShift_;
  std::int64_t pos_ = 0;
  Run runs_[5] = {};
  int count_ = 0;
};

// ---- Filtering ---------------------------------------------------------------

// Moves the history to the buffer's front.
void resetStart(RyxFirState* st) {
  if (st->reserved == 0) return;
  ownMemmove(bufOf(st), bufOf(st) + st->reserved, st->dlylLen * 2);
  st->reserved = 0;
}

// One part of a single-rate block: outputs from the buffer (the first
// min(count, extLen) samples copied behind the history), then straight
// from src; four outputs a pass, each with its own row.
void partSingle(RyxFirState* st, const short* src, int count, Sink& sink) {
  resetStart(st);
  short* buf = bufOf(st);
  const short* table = tableOf(st);
  const int hist = st->dlylLen, groups = st->tapsLen / 4;
  const int m = std::min(count, st->extLen);
  ownMemcpy(buf + hist, src, m * 2);
  std::int32_t v[4];
  sink.beginRun();
  for (int j = 0; j < m; j += 4) {
    quadDot(table, buf + j, groups, v);
    for (int k = 0; k < std::min(4, m - j); ++k) sink.put(v[k]);
  }
  sink.endRun();
  if (count == m) {
    ownMemmove(buf, buf + m, hist * 2);
    return;
  }
  // count and extLen are multiples of 4 here, so the passes are whole.
  sink.beginRun();
  for (int j = m; j < count; j += 4) {
    quadDot(table, src + j - hist, groups, v);
    for (int k = 0; k < 4; ++k) sink.put(v[k]);
  }
  sink.endRun();
  ownMemcpy(buf, src + count - hist, hist * 2);
}

// A multirate block: group by group of downFactor inputs, each phase row
// gives one output summing its branch against the newest samples; the
// groups whose inputs fit the buffer's room first, then those from src.
void blockMulti(RyxFirState* st, const short* src, int numIters, Sink& sink) {
  resetStart(st);
  short* buf = bufOf(st);
  const std::int64_t up = st->upFactor, down = st->downFactor, inputs = numIters * down;
  const int hist = st->dlylLen, w = branchWidth(st);
  const std::int64_t m = std::min<std::int64_t>(inputs, st->extLen);
  ownMemcpy(buf + hist, src, static_cast<int>(m) * 2);
  auto sampleAt = [&](std::int64_t i) { return i < m ? buf[hist + i] : src[i]; };
  const std::int64_t firstGroups = m / down;
  sink.beginRun();
  for (std::int64_t g = 0; g < numIters; ++g) {
    if (g == firstGroups) {
      sink.endRun();
      sink.beginRun();
    }
    for (std::int64_t r = 0; r < up; ++r) {
      const RyxFirPhaseEntry& row = st->phaseTable[r];
      const short* table = tableOf(st) + row.tapOffset;
      const std::int64_t newest = g * down + row.dlyOffset - 1;
      std::uint32_t s = 0;
      for (int k = 0; k < row.count; ++k) s += mulWrap(branchTap(table, w, k), sampleAt(newest - k));
      sink.put(static_cast<std::int32_t>(s));
    }
  }
  sink.endRun();
  if (m == st->extLen) {
    ownMemcpy(buf, src + inputs - hist, hist * 2);
  } else {
    ownMemmove(buf, buf + m, hist * 2);
  }
}

// One sample: stored dlylLen behind the start, summed from the start with
// the row of the start's offset in its group; the start moves on and wraps
// at extLen. A multirate filter sums branch 0 against the newest samples.
std::int32_t step(RyxFirState* st, short sample) {
  short* buf = bufOf(st);
  const int s = st->reserved, hist = st->dlylLen;
  buf[s + hist] = sample;
  std::int32_t v;
  if (st->isMultiRate == 1) {
    const int w = branchWidth(st);
    std::uint32_t sum = 0;
    for (int k = 0; k < polyphase(st).branchLen(0); ++k) sum += mulWrap(branchTap(tableOf(st), w, k), buf[s + hist - k]);
    v = static_cast<std::int32_t>(sum);
  } else {
    v = rowDot(tableOf(st), s & 3, buf + (s & ~3), st->tapsLen / 4);
  }
  st->reserved = s + 1;
  if (st->reserved == st->extLen) {
    ownMemmove(buf, buf + st->extLen, hist * 2);
    st->reserved = 0;
  }
  return v;
}

// ---- Set-up ------------------------------------------------------------------

void setUp(const char* name, const float* taps, int tapsLen, const short* dlyl, int up, int upPhase, int down,
           int downPhase, RyxFirState* st) {
  st->upFactor = up;
  st->upPhase = upPhase;
  st->downFactor = down;
  st->downPhase = downPhase;
  st->isMultiRate = (up > 1 || down > 1) ? 1 : 0;
  st->initMark = st;
  st->phaseTable = nullptr;
  st->taps = nullptr;
  st->dlylBuf = nullptr;
  st->dlylEnd = nullptr;
  st->dlylCur = nullptr;
  st->unrollLen = 0;
  st->reserved = 0;
  st->tapShift = 0;
  st->origTapsLen = tapsLen;
  std::int64_t taps64, hist, room;
  if (st->isMultiRate == 1) {
    const std::int64_t width = pad((std::int64_t{tapsLen} + up - 1) / up);
    taps64 = width * up;
    hist = width - 3;
    room = (hist + down - 1) / down * down;
  } else {
    taps64 = pad(tapsLen);
    hist = taps64 - 4;
    room = taps64;
  }
  st->taps = ryx::fir::stateAlloc(taps64 * 4, 2);
  st->dlylBuf = ryx::fir::stateAlloc(hist + room, 2);
  if (st->isMultiRate == 1) {
    st->phaseTable = static_cast<RyxFirPhaseEntry*>(ryx::fir::stateAlloc(up, sizeof(RyxFirPhaseEntry)));
  }
  if (st->taps == nullptr || st->dlylBuf == nullptr || (st->isMultiRate == 1 && st->phaseTable == nullptr)) {
    st->tapsLen = 0;
    ryxFirFree(st);
    reportNoMem({name, kStem}, "Allocation failure");
    return;
  }
  st->tapsLen = static_cast<int>(taps64);
  st->dlylLen = static_cast<int>(hist);
  st->extLen = static_cast<int>(room);
  ownMemset(st->dlylBuf, 0, static_cast<int>(hist + room) * 2);
  if (st->isMultiRate == 1) fillPhaseTable(st);
  setTapsCore(taps, st);
  if (ryxGetErrStatus() < 0) {
    ryxFirFree(st);
    reportNoMem({name, kStem}, "Allocation failure");
    return;
  }
  if (dlyl != nullptr) ownMemcpy(bufOf(st) + hist - visibleLen(st), dlyl, visibleLen(st) * 2);
}

bool passLive(const char* name, const RyxFirState* st) {
  return passFirst({name, kStem}, {{st == nullptr, kNullState}}) &&
         passFirst({name, kStem}, {{st->initMark != st, kNotInit}});
}

}  // namespace
}  // namespace ryx::firw

using namespace ryx;
using namespace ryx::firw;
using FS = RyxFirState;

extern "C" {

RYXAPI void ryxwFirInit(const float* taps, int tapsLen, const short* dlyl, FS* st) {
  ryxSetErrStatus(RYX_StsOk);
  if (!passFirst({__func__, kStem}, {{st == nullptr, kNullState}, {tapsLen < 1, kBadValue}})) return;
  setUp(__func__, taps, tapsLen, dlyl, 1, 0, 1, 0, st);
}

RYXAPI void ryxwFirInitMr(const float* taps, int tapsLen, const short* dlyl, int up, int upPhase, int down,
                          int downPhase, FS* st) {
  ryxSetErrStatus(RYX_StsOk);
  if (!passFirst({__func__, kStem}, {{st == nullptr, kNullState},
                                     {up < 1, kBadValue},
                                     {down < 1, kBadValue},
                                     {upPhase < 0 || upPhase >= up, kBadValue},
                                     {downPhase < 0 || downPhase >= down, kBadValue},
                                     {tapsLen < 1, kBadValue}}))
    return;
  setUp(__func__, taps, tapsLen, dlyl, up, upPhase, down, downPhase, st);
}

RYXAPI void ryxwFirSetTaps(const float* taps, FS* st) {
  if (passLive(__func__, st)) setTapsCore(taps, st);
}

RYXAPI void ryxwFirGetTaps(const FS* st, float* taps) {
  if (!passLive(__func__, st) || !passFirst({__func__, kStem}, {{taps == nullptr, kNullBuf}})) return;
  const int w = branchWidth(st), up = st->upFactor;
  const double scale = std::ldexp(1.0, -st->tapShift);
  const ryx::fir::Polyphase pp = polyphase(st);
  for (int b = 0; b < up; ++b) {
    const short* table = tableOf(st) + std::int64_t{b} * w * 4;
    for (int k = 0; k < pp.branchLen(b); ++k) taps[b + k * up] = static_cast<float>(branchTap(table, w, k) * scale);
  }
}

RYXAPI void ryxwFirSetDlyl(const short* dlyl, FS* st) {
  if (!passLive(__func__, st)) return;
  short* hist = bufOf(st) + st->reserved;
  if (dlyl == nullptr) {
    ownMemset(hist, 0, st->dlylLen * 2);
  } else {
    ownMemmove(hist + st->dlylLen - visibleLen(st), dlyl, visibleLen(st) * 2);
  }
}

RYXAPI void ryxwFirGetDlyl(const FS* st, short* dlyl) {
  if (!passLive(__func__, st) || !passFirst({__func__, kStem}, {{dlyl == nullptr, kNullBuf}})) return;
  ownMemmove(dlyl, bufOf(st) + st->reserved + st->dlylLen - visibleLen(st), visibleLen(st) * 2);
}

RYXAPI short ryxwFir(FS* st, short sample, int scaleMode, int* scaleFactor) {
  if (!passLive(__func__, st) ||
      !passFirst({__func__, kStem}, {{scaleMode == 4 && scaleFactor == nullptr, kNullScale}}))
    return 0;
  const Narrowing nw = highNarrowing(scaleMode, scaleFactor, st->tapShift);
  return narrowOne(step(st, sample), nw, st->tapShift, scaleFactor);
}

RYXAPI void ryxwbFir(FS* st, const short* src, short* dst, int numIters, int scaleMode, int* scaleFactor) {
  if (!passLive(__func__, st) ||
      !passFirst({__func__, kStem}, {{src == nullptr, kNullBuf},
                                     {dst == nullptr, kNullBuf},
                                     {numIters < 1, kBadValue},
                                     {scaleMode == 4 && scaleFactor == nullptr, kNullScale}}))
    return;
  Sink sink(dst, highNarrowing(scaleMode, scaleFactor, st->tapShift), st->tapShift);
  if (st->isMultiRate == 1) {
    blockMulti(st, src, numIters, sink);
  } else {
    const int whole = numIters & ~3;
    if (whole > 0) partSingle(st, src, whole, sink);
    if (numIters > whole) partSingle(st, src + whole, numIters - whole, sink);
  }
  sink.finish(scaleFactor);
}

}  // extern "C"
