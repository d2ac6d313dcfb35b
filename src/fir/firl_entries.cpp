// Entries of the low-level FIR forms (source group "ryxfirl"). Each shape is
// one template holding its checks in their documented order; the exported
// names are one-line instantiations. Checks stop at the first failure and
// leave the records as they were; the set-up routines also give up on a
// failure already stored in the thread's status.
#include "frame/checks.h"
#include "fir/firl_core.h"

namespace ryx::fir {
namespace {

constexpr const char* kStem = "ryxfirl";
constexpr const char* kNullBuf = "Null buffer pointer";
constexpr const char* kBadLen = "Invalid array length";
constexpr const char* kNotFilter = "Not filter mode";
constexpr const char* kBadFactor = "Invalid factor value";

template <class T>
void initMr(const char* name, T* taps, int tapsLen, int up, int upPhase, int down, int downPhase,
            RyxFirTapState* ts) {
  if (!passSticky({name, kStem}, {{taps == nullptr || ts == nullptr, kNullBuf},
                                  {tapsLen < 1, kBadLen},
                                  {upPhase < 0 || downPhase < 0, "Invalid phase value"},
                                  {up <= upPhase || down <= downPhase, kBadFactor}}))
    return;
  ts->taps = taps;
  ts->tapsLen = tapsLen;
  ts->upFactor = up;
  ts->upPhase = upPhase;
  ts->downFactor = down;
  ts->downPhase = downPhase;
  ts->isMultiRate = (up > 1 || down > 1) ? 1 : 0;
  ts->isFilterMode = 0;
  firlSetTaps(taps, ts);
  ts->tapShift = 0;
}

template <class T>
void init(const char* name, T* taps, int tapsLen, RyxFirTapState* ts) {
  if (!passSticky({name, kStem}, {{taps == nullptr || ts == nullptr, kNullBuf}, {tapsLen < 1, kBadLen}})) return;
  ts->taps = taps;
  ts->tapsLen = tapsLen;
  ts->upFactor = 1;
  ts->upPhase = 0;
  ts->downFactor = 1;
  ts->downPhase = 0;
  ts->isMultiRate = 0;
  ts->isFilterMode = 0;
  firlSetTaps(taps, ts);
  ts->tapShift = 0;
}

template <class T>
void initDlyl(const char* name, const RyxFirTapState* ts, T* dlyl, RyxFirDlyState* ds) {
  if (!passSticky({name, kStem}, {{dlyl == nullptr || ds == nullptr || ts == nullptr, kNullBuf}})) return;
  // The history length divides by upFactor: a tap state that never went
  // through Init (zeroed, say) must not reach that division.
  if (!passSticky({name, kStem}, {{ts->upFactor < 1, kBadFactor}})) return;
  firlInitDlyl(ts, dlyl, ds);
}

template <class T>
void setTaps(const char* name, const T* taps, RyxFirTapState* ts) {
  if (!passFirst({name, kStem}, {{ts == nullptr, kNullBuf}})) return;
  firlSetTaps(taps, ts);
}

template <class T>
void getTaps(const char* name, RyxFirTapState* ts, T* taps) {
  if (!passFirst({name, kStem}, {{taps == nullptr || ts == nullptr, kNullBuf}})) return;
  if (!passFirst({name, kStem}, {{ts->isFilterMode != 1, kNotFilter}})) return;
  firlGetTaps(ts, taps);
}

template <class T>
void setDlyl(const char* name, const RyxFirTapState* ts, const T* dlyl, RyxFirDlyState* ds) {
  if (!passFirst({name, kStem}, {{ds == nullptr || ts == nullptr, kNullBuf}})) return;
  firlSetDlyl(ts, dlyl, ds);
}

template <class T>
void getDlyl(const char* name, const RyxFirTapState* ts, RyxFirDlyState* ds, T* dlyl) {
  if (!passFirst({name, kStem}, {{ts == nullptr || ds == nullptr || dlyl == nullptr, kNullBuf}})) return;
  if (!passFirst({name, kStem}, {{ds->isDlyFilterMode != 1, kNotFilter}})) return;
  firlGetDlyl(ts, ds, dlyl);
}

// One sample; a failed check yields zero.
template <class S, class H>
OutOf<S, H> one(const char* name, const RyxFirTapState* ts, RyxFirDlyState* ds, S sample) {
  if (!passFirst({name, kStem}, {{ts == nullptr || ds == nullptr, kNullBuf}})) return OutOf<S, H>{};
  return firlStep<S, H>(ts, ds, sample);
}

// The Out forms are the single-sample form of `inner` with the result
// stored through val; nothing is stored when a check fails.
template <class S, class H>
void oneOut(const char* name, const char* inner, const RyxFirTapState* ts, RyxFirDlyState* ds, S sample,
            SCplx* val) {
  if (!passFirst({name, kStem}, {{val == nullptr, "val==0"}})) return;
  if (!passFirst({inner, kStem}, {{ts == nullptr || ds == nullptr, kNullBuf}})) return;
  *val = firlStep<S, H>(ts, ds, sample);
}

template <class S, class H>
void block(const char* name, const RyxFirTapState* ts, RyxFirDlyState* ds, const S* src, OutOf<S, H>* dst,
           int numIters) {
  if (!passFirst({name, kStem}, {{ts == nullptr || ds == nullptr, kNullBuf},
                                 {src == nullptr || dst == nullptr, kNullBuf},
                                 {numIters < 1, kBadLen}}))
    return;
  if (!passFirst({name, kStem}, {{ds->isDlyFilterMode != 1 || ts->isFilterMode != 1, kNotFilter}})) return;
  firlBlock<S, H>(ts, ds, src, dst, numIters);
}

}  // namespace
}  // namespace ryx::fir

using namespace ryx::fir;
using TS = RyxFirTapState;
using DS = RyxFirDlyState;

extern "C" {

// ---- Set-up and state access, per element type ----

RYXAPI void ryxsFirlInit(float* taps, int len, TS* ts) { init(__func__, taps, len, ts); }
RYXAPI void ryxcFirlInit(SCplx* taps, int len, TS* ts) { init(__func__, taps, len, ts); }
RYXAPI void ryxdFirlInit(double* taps, int len, TS* ts) { init(__func__, taps, len, ts); }
RYXAPI void ryxzFirlInit(DCplx* taps, int len, TS* ts) { init(__func__, taps, len, ts); }

RYXAPI void ryxsFirlInitMr(float* taps, int len, int up, int upPh, int down, int downPh, TS* ts) {
  initMr(__func__, taps, len, up, upPh, down, downPh, ts);
}
RYXAPI void ryxcFirlInitMr(SCplx* taps, int len, int up, int upPh, int down, int downPh, TS* ts) {
  initMr(__func__, taps, len, up, upPh, down, downPh, ts);
}
RYXAPI void ryxdFirlInitMr(double* taps, int len, int up, int upPh, int down, int downPh, TS* ts) {
  initMr(__func__, taps, len, up, upPh, down, downPh, ts);
}
RYXAPI void ryxzFirlInitMr(DCplx* taps, int len, int up, int upPh, int down, int downPh, TS* ts) {
  initMr(__func__, taps, len, up, upPh, down, downPh, ts);
}

RYXAPI void ryxsFirlInitDlyl(const TS* ts, float* dlyl, DS* ds) { initDlyl(__func__, ts, dlyl, ds); }
RYXAPI void ryxcFirlInitDlyl(const TS* ts, SCplx* dlyl, DS* ds) { initDlyl(__func__, ts, dlyl, ds); }
RYXAPI void ryxdFirlInitDlyl(const TS* ts, double* dlyl, DS* ds) { initDlyl(__func__, ts, dlyl, ds); }
RYXAPI void ryxzFirlInitDlyl(const TS* ts, DCplx* dlyl, DS* ds) { initDlyl(__func__, ts, dlyl, ds); }

RYXAPI void ryxsFirlSetTaps(const float* taps, TS* ts) { setTaps(__func__, taps, ts); }
RYXAPI void ryxcFirlSetTaps(const SCplx* taps, TS* ts) { setTaps(__func__, taps, ts); }
RYXAPI void ryxdFirlSetTaps(const double* taps, TS* ts) { setTaps(__func__, taps, ts); }
RYXAPI void ryxzFirlSetTaps(const DCplx* taps, TS* ts) { setTaps(__func__, taps, ts); }

RYXAPI void ryxsFirlGetTaps(TS* ts, float* taps) { getTaps(__func__, ts, taps); }
RYXAPI void ryxcFirlGetTaps(TS* ts, SCplx* taps) { getTaps(__func__, ts, taps); }
RYXAPI void ryxdFirlGetTaps(TS* ts, double* taps) { getTaps(__func__, ts, taps); }
RYXAPI void ryxzFirlGetTaps(TS* ts, DCplx* taps) { getTaps(__func__, ts, taps); }

RYXAPI void ryxsFirlSetDlyl(const TS* ts, const float* dlyl, DS* ds) { setDlyl(__func__, ts, dlyl, ds); }
RYXAPI void ryxcFirlSetDlyl(const TS* ts, const SCplx* dlyl, DS* ds) { setDlyl(__func__, ts, dlyl, ds); }
RYXAPI void ryxdFirlSetDlyl(const TS* ts, const double* dlyl, DS* ds) { setDlyl(__func__, ts, dlyl, ds); }
RYXAPI void ryxzFirlSetDlyl(const TS* ts, const DCplx* dlyl, DS* ds) { setDlyl(__func__, ts, dlyl, ds); }

RYXAPI void ryxsFirlGetDlyl(const TS* ts, DS* ds, float* dlyl) { getDlyl(__func__, ts, ds, dlyl); }
RYXAPI void ryxcFirlGetDlyl(const TS* ts, DS* ds, SCplx* dlyl) { getDlyl(__func__, ts, ds, dlyl); }
RYXAPI void ryxdFirlGetDlyl(const TS* ts, DS* ds, double* dlyl) { getDlyl(__func__, ts, ds, dlyl); }
RYXAPI void ryxzFirlGetDlyl(const TS* ts, DS* ds, DCplx* dlyl) { getDlyl(__func__, ts, ds, dlyl); }

// ---- Filters: sample type first, tap type second ----

RYXAPI float ryxsFirl(const TS* ts, DS* ds, float x) { return one<float, float>(__func__, ts, ds, x); }
RYXAPI SCplx ryxcFirl(const TS* ts, DS* ds, SCplx x) { return one<SCplx, SCplx>(__func__, ts, ds, x); }
RYXAPI SCplx ryxscFirl(const TS* ts, DS* ds, float x) { return one<float, SCplx>(__func__, ts, ds, x); }
RYXAPI SCplx ryxcsFirl(const TS* ts, DS* ds, SCplx x) { return one<SCplx, float>(__func__, ts, ds, x); }
RYXAPI double ryxdFirl(const TS* ts, DS* ds, double x) { return one<double, double>(__func__, ts, ds, x); }
RYXAPI DCplx ryxzFirl(const TS* ts, DS* ds, DCplx x) { return one<DCplx, DCplx>(__func__, ts, ds, x); }
RYXAPI DCplx ryxdzFirl(const TS* ts, DS* ds, double x) { return one<double, DCplx>(__func__, ts, ds, x); }
RYXAPI DCplx ryxzdFirl(const TS* ts, DS* ds, DCplx x) { return one<DCplx, double>(__func__, ts, ds, x); }

RYXAPI void ryxcFirlOut(const TS* ts, DS* ds, SCplx x, SCplx* val) {
  oneOut<SCplx, SCplx>(__func__, "ryxcFirl", ts, ds, x, val);
}
RYXAPI void ryxscFirlOut(const TS* ts, DS* ds, float x, SCplx* val) {
  oneOut<float, SCplx>(__func__, "ryxscFirl", ts, ds, x, val);
}
RYXAPI void ryxcsFirlOut(const TS* ts, DS* ds, SCplx x, SCplx* val) {
  oneOut<SCplx, float>(__func__, "ryxcsFirl", ts, ds, x, val);
}

RYXAPI void ryxsbFirl(const TS* ts, DS* ds, const float* src, float* dst, int n) {
  block<float, float>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxcbFirl(const TS* ts, DS* ds, const SCplx* src, SCplx* dst, int n) {
  block<SCplx, SCplx>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxscbFirl(const TS* ts, DS* ds, const float* src, SCplx* dst, int n) {
  block<float, SCplx>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxcsbFirl(const TS* ts, DS* ds, const SCplx* src, SCplx* dst, int n) {
  block<SCplx, float>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxdbFirl(const TS* ts, DS* ds, const double* src, double* dst, int n) {
  block<double, double>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxzbFirl(const TS* ts, DS* ds, const DCplx* src, DCplx* dst, int n) {
  block<DCplx, DCplx>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxdzbFirl(const TS* ts, DS* ds, const double* src, DCplx* dst, int n) {
  block<double, DCplx>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxzdbFirl(const TS* ts, DS* ds, const DCplx* src, DCplx* dst, int n) {
  block<DCplx, double>(__func__, ts, ds, src, dst, n);
}

}  // extern "C"
