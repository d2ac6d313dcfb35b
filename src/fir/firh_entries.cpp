// Entries of the high-level FIR forms (source group "ryxfirh"). Checks are
// rows in their documented order; a failed filter call returns zero and
// leaves the record as it was. Init gives up on a failure already stored in
// the thread's status, as every set-up routine of the filters does.
#include <climits>
#include <cstdint>

#include "frame/checks.h"
#include "fir/firh_core.h"
#include "fir/firl_core.h"

namespace ryx::fir {

// Sizes are counted in 64 bits; an array whose bytes the block routines
// (signed 32-bit sizes) could not cover is refused like a failed allocation.
void* stateAlloc(std::int64_t count, int elemSize) {
  const std::int64_t bytes = count * elemSize;
  if (count < 0 || bytes > INT_MAX) return nullptr;
  return ryxMalloc(static_cast<unsigned>(bytes));
}

namespace {

constexpr const char* kStem = "ryxfirh";
constexpr const char* kNullState = "Null state pointer";
constexpr const char* kNotInit = "Must have been initialized";
constexpr const char* kNullBuf = "Null buffer pointer";
constexpr const char* kBadValue = "Invalid value";
// The release routine's name in its reports.
constexpr const char* kFreeName = "ryxFirryxFree";

bool isLive(const RyxFirState* st) { return st->initMark == st; }

void releaseState(RyxFirState* st) {
  ryxFree(st->taps);
  ryxFree(st->dlylBuf);
  if (st->phaseTable != nullptr) ryxFree(st->phaseTable);
  st->phaseTable = nullptr;
  st->initMark = nullptr;
}

// Shared set-up of every type; the caller has run its checks.
template <class S, class H>
void setUp(const char* name, const H* taps, int tapsLen, const S* dlyl, int up, int upPhase, int down,
           int downPhase, RyxFirState* st) {
  if (isLive(st)) releaseState(st);
  st->upFactor = up;
  st->upPhase = upPhase;
  st->downFactor = down;
  st->downPhase = downPhase;
  st->isMultiRate = (up > 1 || down > 1) ? 1 : 0;
  st->initMark = st;
  st->phaseTable = nullptr;
  st->taps = nullptr;
  st->dlylBuf = nullptr;
  st->tapsLen = tapsLen;
  st->unrollLen = tapsLen - tapsLen % unrollWidth<S, H>();
  st->reserved = 0;
  st->tapShift = 0;
  st->origTapsLen = tapsLen;
  // History and room in 64 bits: with factors near 2^31 the room alone
  // exceeds the 32-bit range, and such a buffer is refused below.
  std::int64_t hist, room;
  if (st->isMultiRate == 1) {
    hist = ceilDiv(tapsLen, up);
    const std::int64_t least = std::max<std::int64_t>(hist, 127);
    room = (least + down - 1) / down * down;
  } else {
    hist = tapsLen - 1;
    room = std::max<std::int64_t>(hist, 127) + 1;
  }
  st->taps = stateAlloc(tapsLen, sizeof(H));
  st->dlylBuf = stateAlloc(hist + room, sizeof(S));
  st->dlylLen = static_cast<int>(hist);
  st->extLen = st->dlylBuf != nullptr ? static_cast<int>(room) : 0;
  st->dlylEnd = static_cast<S*>(st->dlylBuf) + st->extLen;
  st->dlylCur = st->dlylBuf;
  if (st->isMultiRate == 1) {
    st->phaseTable = static_cast<RyxFirPhaseEntry*>(stateAlloc(up, sizeof(RyxFirPhaseEntry)));
  }
  if (st->taps == nullptr || st->dlylBuf == nullptr || (st->isMultiRate == 1 && st->phaseTable == nullptr)) {
    releaseState(st);
    reportNoMem({name, kStem}, "Allocation failure");
    return;
  }
  if (st->isMultiRate == 1) fillPhaseTable(st);
  firSetTaps(taps, st);
  firSetDlyl(dlyl, st);
}

template <class S, class H>
void init(const char* name, const H* taps, int tapsLen, const S* dlyl, RyxFirState* st) {
  if (!passSticky({name, kStem}, {{st == nullptr, kNullState}, {tapsLen < 1, kBadValue}})) return;
  setUp<S, H>(name, taps, tapsLen, dlyl, 1, 0, 1, 0, st);
}

template <class S, class H>
void initMr(const char* name, const H* taps, int tapsLen, const S* dlyl, int up, int upPhase, int down,
            int downPhase, RyxFirState* st) {
  if (!passSticky({name, kStem}, {{st == nullptr, kNullState},
                                  {up < 1, kBadValue},
                                  {down < 1, kBadValue},
                                  {upPhase < 0 || upPhase >= up, kBadValue},
                                  {downPhase < 0 || downPhase >= down, kBadValue},
                                  {tapsLen < 1, kBadValue}}))
    return;
  setUp<S, H>(name, taps, tapsLen, dlyl, up, upPhase, down, downPhase, st);
}

bool passLive(const char* name, const RyxFirState* st) {
  if (!passFirst({name, kStem}, {{st == nullptr, kNullState}})) return false;
  return passFirst({name, kStem}, {{!isLive(st), kNotInit}});
}

template <class H>
void setTaps(const char* name, const H* taps, RyxFirState* st) {
  if (passLive(name, st)) firSetTaps(taps, st);
}

template <class H>
void getTaps(const char* name, const RyxFirState* st, H* taps) {
  if (!passLive(name, st)) return;
  if (passFirst({name, kStem}, {{taps == nullptr, kNullBuf}})) firGetTaps(st, taps);
}

template <class S>
void setDlyl(const char* name, const S* dlyl, RyxFirState* st) {
  if (passLive(name, st)) firSetDlyl(dlyl, st);
}

template <class S>
void getDlyl(const char* name, const RyxFirState* st, S* dlyl) {
  if (!passLive(name, st)) return;
  if (passFirst({name, kStem}, {{dlyl == nullptr, kNullBuf}})) firGetDlyl(st, dlyl);
}

template <class S, class H>
OutOf<S, H> one(const char* name, RyxFirState* st, S sample) {
  if (!passLive(name, st)) return OutOf<S, H>{};
  return firStep<S, H>(st, sample);
}

// The Out forms are the single-sample form of `inner` with the result
// stored through val; nothing is stored when a check fails.
template <class S, class H>
void oneOut(const char* name, const char* inner, RyxFirState* st, S sample, SCplx* val) {
  if (!passFirst({name, kStem}, {{val == nullptr, "val==0"}})) return;
  if (!passLive(inner, st)) return;
  *val = firStep<S, H>(st, sample);
}

template <class S, class H>
void block(const char* name, RyxFirState* st, const S* src, OutOf<S, H>* dst, int numIters) {
  if (!passLive(name, st)) return;
  if (!passFirst({name, kStem},
                 {{src == nullptr, kNullBuf}, {dst == nullptr, kNullBuf}, {numIters < 1, kBadValue}}))
    return;
  firBlock<S, H>(st, src, dst, numIters);
}

}  // namespace
}  // namespace ryx::fir

using namespace ryx::fir;
using FS = RyxFirState;

extern "C" {

// ---- Set-up: sample type first, tap type second ----

RYXAPI void ryxsFirInit(const float* t, int len, const float* d, FS* st) { init(__func__, t, len, d, st); }
RYXAPI void ryxcFirInit(const SCplx* t, int len, const SCplx* d, FS* st) { init(__func__, t, len, d, st); }
RYXAPI void ryxscFirInit(const SCplx* t, int len, const float* d, FS* st) { init(__func__, t, len, d, st); }
RYXAPI void ryxcsFirInit(const float* t, int len, const SCplx* d, FS* st) { init(__func__, t, len, d, st); }
RYXAPI void ryxdFirInit(const double* t, int len, const double* d, FS* st) { init(__func__, t, len, d, st); }
RYXAPI void ryxzFirInit(const DCplx* t, int len, const DCplx* d, FS* st) { init(__func__, t, len, d, st); }
RYXAPI void ryxdzFirInit(const DCplx* t, int len, const double* d, FS* st) { init(__func__, t, len, d, st); }
RYXAPI void ryxzdFirInit(const double* t, int len, const DCplx* d, FS* st) { init(__func__, t, len, d, st); }

RYXAPI void ryxsFirInitMr(const float* t, int len, const float* d, int u, int up, int dn, int dp, FS* st) {
  initMr(__func__, t, len, d, u, up, dn, dp, st);
}
RYXAPI void ryxcFirInitMr(const SCplx* t, int len, const SCplx* d, int u, int up, int dn, int dp, FS* st) {
  initMr(__func__, t, len, d, u, up, dn, dp, st);
}
RYXAPI void ryxscFirInitMr(const SCplx* t, int len, const float* d, int u, int up, int dn, int dp, FS* st) {
  initMr(__func__, t, len, d, u, up, dn, dp, st);
}
RYXAPI void ryxcsFirInitMr(const float* t, int len, const SCplx* d, int u, int up, int dn, int dp, FS* st) {
  initMr(__func__, t, len, d, u, up, dn, dp, st);
}
RYXAPI void ryxdFirInitMr(const double* t, int len, const double* d, int u, int up, int dn, int dp, FS* st) {
  initMr(__func__, t, len, d, u, up, dn, dp, st);
}
RYXAPI void ryxzFirInitMr(const DCplx* t, int len, const DCplx* d, int u, int up, int dn, int dp, FS* st) {
  initMr(__func__, t, len, d, u, up, dn, dp, st);
}
RYXAPI void ryxdzFirInitMr(const DCplx* t, int len, const double* d, int u, int up, int dn, int dp, FS* st) {
  initMr(__func__, t, len, d, u, up, dn, dp, st);
}
RYXAPI void ryxzdFirInitMr(const double* t, int len, const DCplx* d, int u, int up, int dn, int dp, FS* st) {
  initMr(__func__, t, len, d, u, up, dn, dp, st);
}

// ---- Taps by tap type, history by sample type ----

RYXAPI void ryxsFirSetTaps(const float* taps, FS* st) { setTaps(__func__, taps, st); }
RYXAPI void ryxcFirSetTaps(const SCplx* taps, FS* st) { setTaps(__func__, taps, st); }
RYXAPI void ryxdFirSetTaps(const double* taps, FS* st) { setTaps(__func__, taps, st); }
RYXAPI void ryxzFirSetTaps(const DCplx* taps, FS* st) { setTaps(__func__, taps, st); }

RYXAPI void ryxsFirGetTaps(const FS* st, float* taps) { getTaps(__func__, st, taps); }
RYXAPI void ryxcFirGetTaps(const FS* st, SCplx* taps) { getTaps(__func__, st, taps); }
RYXAPI void ryxdFirGetTaps(const FS* st, double* taps) { getTaps(__func__, st, taps); }
RYXAPI void ryxzFirGetTaps(const FS* st, DCplx* taps) { getTaps(__func__, st, taps); }

RYXAPI void ryxsFirSetDlyl(const float* dlyl, FS* st) { setDlyl(__func__, dlyl, st); }
RYXAPI void ryxcFirSetDlyl(const SCplx* dlyl, FS* st) { setDlyl(__func__, dlyl, st); }
RYXAPI void ryxdFirSetDlyl(const double* dlyl, FS* st) { setDlyl(__func__, dlyl, st); }
RYXAPI void ryxzFirSetDlyl(const DCplx* dlyl, FS* st) { setDlyl(__func__, dlyl, st); }

RYXAPI void ryxsFirGetDlyl(const FS* st, float* dlyl) { getDlyl(__func__, st, dlyl); }
RYXAPI void ryxcFirGetDlyl(const FS* st, SCplx* dlyl) { getDlyl(__func__, st, dlyl); }
RYXAPI void ryxdFirGetDlyl(const FS* st, double* dlyl) { getDlyl(__func__, st, dlyl); }
RYXAPI void ryxzFirGetDlyl(const FS* st, DCplx* dlyl) { getDlyl(__func__, st, dlyl); }

// ---- Filters ----

RYXAPI float ryxsFir(FS* st, float x) { return one<float, float>(__func__, st, x); }
RYXAPI SCplx ryxcFir(FS* st, SCplx x) { return one<SCplx, SCplx>(__func__, st, x); }
RYXAPI SCplx ryxscFir(FS* st, float x) { return one<float, SCplx>(__func__, st, x); }
RYXAPI SCplx ryxcsFir(FS* st, SCplx x) { return one<SCplx, float>(__func__, st, x); }
RYXAPI double ryxdFir(FS* st, double x) { return one<double, double>(__func__, st, x); }
RYXAPI DCplx ryxzFir(FS* st, DCplx x) { return one<DCplx, DCplx>(__func__, st, x); }
RYXAPI DCplx ryxdzFir(FS* st, double x) { return one<double, DCplx>(__func__, st, x); }
RYXAPI DCplx ryxzdFir(FS* st, DCplx x) { return one<DCplx, double>(__func__, st, x); }

RYXAPI void ryxcFirOut(FS* st, SCplx x, SCplx* val) { oneOut<SCplx, SCplx>(__func__, "ryxcFir", st, x, val); }
RYXAPI void ryxscFirOut(FS* st, float x, SCplx* val) { oneOut<float, SCplx>(__func__, "ryxscFir", st, x, val); }
RYXAPI void ryxcsFirOut(FS* st, SCplx x, SCplx* val) { oneOut<SCplx, float>(__func__, "ryxcsFir", st, x, val); }

RYXAPI void ryxsbFir(FS* st, const float* src, float* dst, int n) { block<float, float>(__func__, st, src, dst, n); }
RYXAPI void ryxcbFir(FS* st, const SCplx* src, SCplx* dst, int n) { block<SCplx, SCplx>(__func__, st, src, dst, n); }
RYXAPI void ryxscbFir(FS* st, const float* src, SCplx* dst, int n) { block<float, SCplx>(__func__, st, src, dst, n); }
RYXAPI void ryxcsbFir(FS* st, const SCplx* src, SCplx* dst, int n) { block<SCplx, float>(__func__, st, src, dst, n); }
RYXAPI void ryxdbFir(FS* st, const double* src, double* dst, int n) { block<double, double>(__func__, st, src, dst, n); }
RYXAPI void ryxzbFir(FS* st, const DCplx* src, DCplx* dst, int n) { block<DCplx, DCplx>(__func__, st, src, dst, n); }
RYXAPI void ryxdzbFir(FS* st, const double* src, DCplx* dst, int n) { block<double, DCplx>(__func__, st, src, dst, n); }
RYXAPI void ryxzdbFir(FS* st, const DCplx* src, DCplx* dst, int n) { block<DCplx, double>(__func__, st, src, dst, n); }

RYXAPI void ryxFirFree(FS* st) {
  if (passLive(kFreeName, st)) releaseState(st);
}

}  // extern "C"
