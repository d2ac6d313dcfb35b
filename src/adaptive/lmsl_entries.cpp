// Entries of the low-level LMS forms (source group "ryxlmsl"). Each shape is
// one template holding its checks in their documented order; the exported
// names are one-line instantiations. Checks stop at the first failure and
// leave records and arrays as they were; a failed filter returns zero. The
// set-up routines also give up on a failure already stored in the thread's
// status, as every set-up routine of the filters does.
#include "adaptive/lmsw_core.h"
#include "frame/checks.h"

namespace ryx::lms {
namespace {

constexpr const char* kStem = "ryxlmsl";
constexpr const char* kNullBuf = "Null buffer pointer";

template <class T>
void initMr(const char* name, int lmsType, T* taps, int tapsLen, float step, float leak, int errDly, int down,
            int downPhase, RyxLmsTapState* ts) {
  if (!passSticky({name, kStem}, {{taps == nullptr || ts == nullptr, kNullBuf},
                                  {tapsLen < 1, "Invalid buffer length"},
                                  {errDly < 0, "Invalid error delay value"},
                                  {downPhase < 0, "Invalid factor value"},
                                  {down <= downPhase, "Invalid factor value"}}))
    return;
  ts->taps = taps;
  ts->tapsLen = tapsLen;
  ts->upFactor = 1;
  ts->upPhase = 0;
  ts->downFactor = down;
  ts->downPhase = downPhase;
  ts->isMultiRate = down > 1 ? 1 : 0;
  ts->isFilterMode = 1;
  ts->leak = leak;
  ts->step = step;
  ts->errDly = errDly;
  ts->lmsType = lmsType;
}

template <class T>
void init(const char* name, int lmsType, T* taps, int tapsLen, float step, float leak, int errDly,
          RyxLmsTapState* ts) {
  initMr(name, lmsType, taps, tapsLen, step, leak, errDly, 1, 0, ts);
}

template <class T>
void initDlyl(const char* name, RyxLmsTapState* ts, T* dlyl, int adaptB, RyxLmsDlyState* ds) {
  if (!passSticky({name, kStem}, {{ds == nullptr || ts == nullptr || dlyl == nullptr, kNullBuf}})) return;
  ds->dlyl = dlyl;
  ds->dlylLen = lineLength(ts, adaptB);
  ds->isDlyFilterMode = 1;
  ds->adaptB = adaptB;
}

bool tapsGiven(const char* name, const RyxLmsTapState* ts) {
  return passFirst({name, kStem}, {{ts == nullptr, kNullBuf}});
}

bool pairGiven(const char* name, const RyxLmsTapState* ts, const RyxLmsDlyState* ds) {
  return passFirst({name, kStem}, {{ds == nullptr || ts == nullptr, kNullBuf}});
}

// One sample with the caller's error; y is written only when the checks pass.
template <class S, class H>
bool one(const char* name, RyxLmsTapState* ts, RyxLmsDlyState* ds, S sample, H err, H& y) {
  if (!pairGiven(name, ts, ds)) return false;
  y = lmslOne(ts, ds, sample, err);
  return true;
}

// One group of downFactor samples with the caller's error.
template <class S, class H>
bool group(const char* name, RyxLmsTapState* ts, RyxLmsDlyState* ds, const S* samples, H err, H& y) {
  if (!passFirst({name, kStem}, {{ds == nullptr || ts == nullptr || samples == nullptr, kNullBuf}})) return false;
  y = stepGroup(ts, ds, samples, err, Adapt::positive);
  return true;
}

// The filters' results, zero when a check failed.
template <class S, class H>
H oneR(const char* name, RyxLmsTapState* ts, RyxLmsDlyState* ds, S sample, H err) {
  H y{};
  one(name, ts, ds, sample, err, y);
  return y;
}
template <class S, class H>
H groupR(const char* name, RyxLmsTapState* ts, RyxLmsDlyState* ds, const S* samples, H err) {
  H y{};
  group(name, ts, ds, samples, err, y);
  return y;
}


// Plain filtering: the FIR routine runs on views of the two records.
template <class S, class O>
bool na(const char* name, RyxLmsTapState* ts, RyxLmsDlyState* ds, S sample,
        O (*firl)(const RyxFirTapState*, RyxFirDlyState*, S), O& y) {
  if (!pairGiven(name, ts, ds)) return false;
  const RyxFirTapState ft = firTaps(ts);
  RyxFirDlyState fd = firLine(ts, ds);
  y = firl(&ft, &fd, sample);
  return true;
}
template <class S, class O>
O naR(const char* name, RyxLmsTapState* ts, RyxLmsDlyState* ds, S sample,
      O (*firl)(const RyxFirTapState*, RyxFirDlyState*, S)) {
  O y{};
  na(name, ts, ds, sample, firl, y);
  return y;
}

template <class S, class O>
void naBlock(const char* name, RyxLmsTapState* ts, RyxLmsDlyState* ds, const S* src, O* dst, int numIters,
             void (*bfirl)(const RyxFirTapState*, RyxFirDlyState*, const S*, O*, int)) {
  if (!passFirst({name, kStem}, {{ds == nullptr || ts == nullptr || dst == nullptr || src == nullptr, kNullBuf},
                                 {numIters < 1, "Invalid buffer length"}}))
    return;
  const RyxFirTapState ft = firTaps(ts);
  RyxFirDlyState fd = firLine(ts, ds);
  bfirl(&ft, &fd, src, dst, numIters);
}

template <class T>
void getTapsE(const char* name, RyxLmsTapState* ts, T* taps) {
  if (!passFirst({name, kStem}, {{ts == nullptr || taps == nullptr, kNullBuf}})) return;
  getTaps(ts, taps);
}

template <class T>
void setTapsE(const char* name, const T* taps, RyxLmsTapState* ts) {
  if (!tapsGiven(name, ts)) return;
  setTaps(taps, ts);
}

template <class T>
void getDlylE(const char* name, RyxLmsTapState* ts, RyxLmsDlyState* ds, T* dlyl) {
  if (!passFirst({name, kStem}, {{ts == nullptr || ds == nullptr || dlyl == nullptr, kNullBuf}})) return;
  getDlyl(ds, dlyl);
}

template <class T>
void setDlylE(const char* name, RyxLmsTapState* ts, const T* dlyl, RyxLmsDlyState* ds) {
  if (!pairGiven(name, ts, ds)) return;
  setDlyl(dlyl, ds);
}

// ---- 16-bit form ----

void initW(const char* name, int lmsType, float* taps, int tapsLen, float step, int errDly, RyxLmsTapState* ts) {
  if (!passSticky({name, kStem}, {{taps == nullptr || ts == nullptr, kNullBuf},
                                  {tapsLen < 1, "Invalid buffer length"},
                                  {errDly < 0, "Invalid error delay value"}}))
    return;
  floatsToQ13(taps, reinterpret_cast<std::int32_t*>(taps), tapsLen);
  initMr(name, lmsType, taps, tapsLen, 0.0f, 0.0f, errDly, 1, 0, ts);
  setStepQ13(ts, toQ13(step));
}

// The record's own array is turned back into floats in place while it holds
// the integer taps; another array receives a converted copy.
void getTapsW(RyxLmsTapState* ts, float* taps) {
  auto* own = static_cast<std::int32_t*>(ts->taps);
  if (taps != static_cast<void*>(own) || ts->isFilterMode == 1) q13ToFloats(own, taps, ts->tapsLen);
  ts->isFilterMode = 0;
}

// Converts as Init does. The record's own array is converted in place,
// unless it already holds the integer taps (filter mode): then nothing
// changes and the status says so, without a report.
void setTapsW(float* taps, RyxLmsTapState* ts) {
  auto* own = static_cast<std::int32_t*>(ts->taps);
  if (taps == nullptr) {
    ownMemset(own, 0, ts->tapsLen * static_cast<int>(sizeof(std::int32_t)));
  } else if (taps == static_cast<void*>(own) && ts->isFilterMode == 1) {
    ryxSetErrStatus(RYX_StsInternal);
    return;
  } else {
    floatsToQ13(taps, own, ts->tapsLen);
  }
  ts->isFilterMode = 1;
}

}  // namespace
}  // namespace ryx::lms

using namespace ryx::lms;
using TS = RyxLmsTapState;
using DS = RyxLmsDlyState;

extern "C" {

// ---- Set-up, per element type ----

RYXAPI void ryxsLmslInit(int type, float* taps, int len, float step, float leak, int errDly, TS* ts) {
  init(__func__, type, taps, len, step, leak, errDly, ts);
}
RYXAPI void ryxdLmslInit(int type, double* taps, int len, float step, float leak, int errDly, TS* ts) {
  init(__func__, type, taps, len, step, leak, errDly, ts);
}
RYXAPI void ryxcLmslInit(int type, SCplx* taps, int len, float step, float leak, int errDly, TS* ts) {
  init(__func__, type, taps, len, step, leak, errDly, ts);
}
RYXAPI void ryxzLmslInit(int type, DCplx* taps, int len, float step, float leak, int errDly, TS* ts) {
  init(__func__, type, taps, len, step, leak, errDly, ts);
}

RYXAPI void ryxsLmslInitMr(int type, float* taps, int len, float step, float leak, int errDly, int down,
                           int downPh, TS* ts) {
  initMr(__func__, type, taps, len, step, leak, errDly, down, downPh, ts);
}
RYXAPI void ryxdLmslInitMr(int type, double* taps, int len, float step, float leak, int errDly, int down,
                           int downPh, TS* ts) {
  initMr(__func__, type, taps, len, step, leak, errDly, down, downPh, ts);
}
RYXAPI void ryxcLmslInitMr(int type, SCplx* taps, int len, float step, float leak, int errDly, int down,
                           int downPh, TS* ts) {
  initMr(__func__, type, taps, len, step, leak, errDly, down, downPh, ts);
}
RYXAPI void ryxzLmslInitMr(int type, DCplx* taps, int len, float step, float leak, int errDly, int down,
                           int downPh, TS* ts) {
  initMr(__func__, type, taps, len, step, leak, errDly, down, downPh, ts);
}

RYXAPI void ryxsLmslInitDlyl(TS* ts, float* dlyl, int adaptB, DS* ds) { initDlyl(__func__, ts, dlyl, adaptB, ds); }
RYXAPI void ryxdLmslInitDlyl(TS* ts, double* dlyl, int adaptB, DS* ds) { initDlyl(__func__, ts, dlyl, adaptB, ds); }
RYXAPI void ryxcLmslInitDlyl(TS* ts, SCplx* dlyl, int adaptB, DS* ds) { initDlyl(__func__, ts, dlyl, adaptB, ds); }
RYXAPI void ryxzLmslInitDlyl(TS* ts, DCplx* dlyl, int adaptB, DS* ds) { initDlyl(__func__, ts, dlyl, adaptB, ds); }

RYXAPI float ryxsLmslGetStep(TS* ts) { return tapsGiven(__func__, ts) ? ts->step : 0.0f; }
RYXAPI float ryxsLmslGetLeak(TS* ts) { return tapsGiven(__func__, ts) ? ts->leak : 0.0f; }
RYXAPI void ryxsLmslSetStep(float step, TS* ts) {
  if (tapsGiven(__func__, ts)) ts->step = step;
}
RYXAPI void ryxsLmslSetLeak(float leak, TS* ts) {
  if (tapsGiven(__func__, ts)) ts->leak = leak;
}

// ---- Adaptive filters: sample type first, tap type second ----

RYXAPI float ryxsLmsl(TS* ts, DS* ds, float x, float e) { return oneR(__func__, ts, ds, x, e); }
RYXAPI double ryxdLmsl(TS* ts, DS* ds, double x, double e) { return oneR(__func__, ts, ds, x, e); }
RYXAPI SCplx ryxcLmsl(TS* ts, DS* ds, SCplx x, SCplx e) { return oneR(__func__, ts, ds, x, e); }
RYXAPI DCplx ryxzLmsl(TS* ts, DS* ds, DCplx x, DCplx e) { return oneR(__func__, ts, ds, x, e); }
RYXAPI SCplx ryxscLmsl(TS* ts, DS* ds, float x, SCplx e) { return oneR(__func__, ts, ds, x, e); }
RYXAPI DCplx ryxdzLmsl(TS* ts, DS* ds, double x, DCplx e) { return oneR(__func__, ts, ds, x, e); }

RYXAPI float ryxsbLmsl(TS* ts, DS* ds, const float* x, float e) { return groupR(__func__, ts, ds, x, e); }
RYXAPI double ryxdbLmsl(TS* ts, DS* ds, const double* x, double e) { return groupR(__func__, ts, ds, x, e); }
RYXAPI SCplx ryxcbLmsl(TS* ts, DS* ds, const SCplx* x, SCplx e) { return groupR(__func__, ts, ds, x, e); }
RYXAPI DCplx ryxzbLmsl(TS* ts, DS* ds, const DCplx* x, DCplx e) { return groupR(__func__, ts, ds, x, e); }
RYXAPI SCplx ryxscbLmsl(TS* ts, DS* ds, const float* x, SCplx e) { return groupR(__func__, ts, ds, x, e); }
RYXAPI DCplx ryxdzbLmsl(TS* ts, DS* ds, const double* x, DCplx e) { return groupR(__func__, ts, ds, x, e); }

RYXAPI void ryxcLmslOut(TS* ts, DS* ds, SCplx x, SCplx e, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return one("ryxcLmsl", ts, ds, x, e, y); });
}
RYXAPI void ryxscLmslOut(TS* ts, DS* ds, float x, SCplx e, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return one("ryxscLmsl", ts, ds, x, e, y); });
}
RYXAPI void ryxcbLmslOut(TS* ts, DS* ds, const SCplx* x, SCplx e, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return group("ryxcbLmsl", ts, ds, x, e, y); });
}
RYXAPI void ryxscbLmslOut(TS* ts, DS* ds, const float* x, SCplx e, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return group("ryxscbLmsl", ts, ds, x, e, y); });
}

// ---- Plain filtering through the FIR forms ----

RYXAPI float ryxsLmslNa(TS* ts, DS* ds, float x) { return naR(__func__, ts, ds, x, ryxsFirl); }
RYXAPI double ryxdLmslNa(TS* ts, DS* ds, double x) { return naR(__func__, ts, ds, x, ryxdFirl); }
RYXAPI SCplx ryxcLmslNa(TS* ts, DS* ds, SCplx x) { return naR(__func__, ts, ds, x, ryxcFirl); }
RYXAPI DCplx ryxzLmslNa(TS* ts, DS* ds, DCplx x) { return naR(__func__, ts, ds, x, ryxzFirl); }
RYXAPI SCplx ryxscLmslNa(TS* ts, DS* ds, float x) { return naR(__func__, ts, ds, x, ryxscFirl); }
RYXAPI SCplx ryxcsLmslNa(TS* ts, DS* ds, SCplx x) { return naR(__func__, ts, ds, x, ryxcsFirl); }
RYXAPI DCplx ryxdzLmslNa(TS* ts, DS* ds, double x) { return naR(__func__, ts, ds, x, ryxdzFirl); }
RYXAPI DCplx ryxzdLmslNa(TS* ts, DS* ds, DCplx x) { return naR(__func__, ts, ds, x, ryxzdFirl); }

RYXAPI void ryxcLmslNaOut(TS* ts, DS* ds, SCplx x, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return na("ryxcLmslNa", ts, ds, x, ryxcFirl, y); });
}
RYXAPI void ryxscLmslNaOut(TS* ts, DS* ds, float x, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return na("ryxscLmslNa", ts, ds, x, ryxscFirl, y); });
}
RYXAPI void ryxcsLmslNaOut(TS* ts, DS* ds, SCplx x, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return na("ryxcsLmslNa", ts, ds, x, ryxcsFirl, y); });
}

RYXAPI void ryxsbLmslNa(TS* ts, DS* ds, const float* src, float* dst, int n) {
  naBlock(__func__, ts, ds, src, dst, n, ryxsbFirl);
}
RYXAPI void ryxdbLmslNa(TS* ts, DS* ds, const double* src, double* dst, int n) {
  naBlock(__func__, ts, ds, src, dst, n, ryxdbFirl);
}
RYXAPI void ryxcbLmslNa(TS* ts, DS* ds, const SCplx* src, SCplx* dst, int n) {
  naBlock(__func__, ts, ds, src, dst, n, ryxcbFirl);
}
RYXAPI void ryxzbLmslNa(TS* ts, DS* ds, const DCplx* src, DCplx* dst, int n) {
  naBlock(__func__, ts, ds, src, dst, n, ryxzbFirl);
}
RYXAPI void ryxscbLmslNa(TS* ts, DS* ds, const float* src, SCplx* dst, int n) {
  naBlock(__func__, ts, ds, src, dst, n, ryxscbFirl);
}
RYXAPI void ryxcsbLmslNa(TS* ts, DS* ds, const SCplx* src, SCplx* dst, int n) {
  naBlock(__func__, ts, ds, src, dst, n, ryxcsbFirl);
}
RYXAPI void ryxdzbLmslNa(TS* ts, DS* ds, const double* src, DCplx* dst, int n) {
  naBlock(__func__, ts, ds, src, dst, n, ryxdzbFirl);
}
RYXAPI void ryxzdbLmslNa(TS* ts, DS* ds, const DCplx* src, DCplx* dst, int n) {
  naBlock(__func__, ts, ds, src, dst, n, ryxzdbFirl);
}

// ---- Taps and line, per element type ----

RYXAPI void ryxsLmslGetTaps(TS* ts, float* taps) { getTapsE(__func__, ts, taps); }
RYXAPI void ryxdLmslGetTaps(TS* ts, double* taps) { getTapsE(__func__, ts, taps); }
RYXAPI void ryxcLmslGetTaps(TS* ts, SCplx* taps) { getTapsE(__func__, ts, taps); }
RYXAPI void ryxzLmslGetTaps(TS* ts, DCplx* taps) { getTapsE(__func__, ts, taps); }

RYXAPI void ryxsLmslSetTaps(const float* taps, TS* ts) { setTapsE(__func__, taps, ts); }
RYXAPI void ryxdLmslSetTaps(const double* taps, TS* ts) { setTapsE(__func__, taps, ts); }
RYXAPI void ryxcLmslSetTaps(const SCplx* taps, TS* ts) { setTapsE(__func__, taps, ts); }
RYXAPI void ryxzLmslSetTaps(const DCplx* taps, TS* ts) { setTapsE(__func__, taps, ts); }

RYXAPI void ryxsLmslGetDlyl(TS* ts, DS* ds, float* dlyl) { getDlylE(__func__, ts, ds, dlyl); }
RYXAPI void ryxdLmslGetDlyl(TS* ts, DS* ds, double* dlyl) { getDlylE(__func__, ts, ds, dlyl); }
RYXAPI void ryxcLmslGetDlyl(TS* ts, DS* ds, SCplx* dlyl) { getDlylE(__func__, ts, ds, dlyl); }
RYXAPI void ryxzLmslGetDlyl(TS* ts, DS* ds, DCplx* dlyl) { getDlylE(__func__, ts, ds, dlyl); }

RYXAPI void ryxsLmslSetDlyl(TS* ts, const float* dlyl, DS* ds) { setDlylE(__func__, ts, dlyl, ds); }
RYXAPI void ryxdLmslSetDlyl(TS* ts, const double* dlyl, DS* ds) { setDlylE(__func__, ts, dlyl, ds); }
RYXAPI void ryxcLmslSetDlyl(TS* ts, const SCplx* dlyl, DS* ds) { setDlylE(__func__, ts, dlyl, ds); }
RYXAPI void ryxzLmslSetDlyl(TS* ts, const DCplx* dlyl, DS* ds) { setDlylE(__func__, ts, dlyl, ds); }

// ---- 16-bit form ----

RYXAPI void ryxwLmslInit(int type, float* taps, int len, float step, int errDly, TS* ts) {
  initW(__func__, type, taps, len, step, errDly, ts);
}
RYXAPI void ryxwLmslInitDlyl(TS* ts, short* dlyl, DS* ds) { initDlyl(__func__, ts, dlyl, 1, ds); }
RYXAPI float ryxwLmslGetStep(TS* ts) { return tapsGiven(__func__, ts) ? fromQ13(stepQ13(ts)) : 0.0f; }
RYXAPI void ryxwLmslSetStep(float step, TS* ts) {
  if (tapsGiven(__func__, ts)) setStepQ13(ts, toQ13(step));
}
RYXAPI short ryxwLmsl(TS* ts, DS* ds, short x, short e) {
  return pairGiven(__func__, ts, ds) ? stepW(ts, ds, x, e) : short{0};
}
RYXAPI void ryxwLmslGetTaps(TS* ts, float* taps) {
  if (ryx::passFirst({__func__, kStem}, {{ts == nullptr || taps == nullptr, kNullBuf}})) getTapsW(ts, taps);
}
RYXAPI void ryxwLmslSetTaps(float* taps, TS* ts) {
  if (tapsGiven(__func__, ts)) setTapsW(taps, ts);
}
RYXAPI void ryxwLmslGetDlyl(TS* ts, DS* ds, short* dlyl) { getDlylE(__func__, ts, ds, dlyl); }
RYXAPI void ryxwLmslSetDlyl(TS* ts, const short* dlyl, DS* ds) { setDlylE(__func__, ts, dlyl, ds); }

}  // extern "C"
