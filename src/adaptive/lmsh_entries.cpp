// Entries of the high-level LMS forms (source group "ryxlmsh"). The record
// holds a tap record and a delay record that the low-level kernels run on
// directly, with owned arrays, and the latest error for the Des forms.
// Checks are rows in their documented order; a failed filter returns zero
// and leaves the record as it was. Init gives up on a failure already stored
// in the thread's status, as every set-up routine of the filters does.
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "adaptive/lms_core.h"
#include "frame/checks.h"

namespace ryx::lms {
namespace {

constexpr const char* kStem = "ryxlmsh";
constexpr const char* kNullBuf = "Null buffer pointer";

template <class H>
H loadErr(const RyxLmsState* st) {
  H e;
  std::memcpy(&e, &st->errVal, sizeof e);
  return e;
}
template <class H>
void storeErr(RyxLmsState* st, H e) {
  std::memcpy(&st->errVal, &e, sizeof e);
}

void release(RyxLmsState* st) {
  ryxFree(st->tapSt.taps);
  ryxFree(st->dlySt.dlyl);
  st->tapSt.taps = nullptr;
  st->dlySt.dlyl = nullptr;
}

// Fills the record, takes both arrays (the line with one spare element) and
// loads them. Without memory both flags stay 0 and nothing is kept.
template <class S, class H>
void setUp(const char* name, int lmsType, const H* taps, int tapsLen, const S* dlyl, float step, float leak,
           int errDly, int down, int downPhase, RyxLmsState* st) {
  RyxLmsTapState& ts = st->tapSt;
  RyxLmsDlyState& ds = st->dlySt;
  ts.tapsLen = tapsLen;
  ts.upFactor = 1;
  ts.upPhase = 0;
  ts.downFactor = down;
  ts.downPhase = downPhase;
  ts.isMultiRate = down > 1 ? 1 : 0;
  ts.isFilterMode = 0;
  ts.leak = leak;
  ts.step = step;
  ts.errDly = errDly;
  ts.lmsType = lmsType;
  // Lengths and sizes in 64 bits: taps and error delay near INT_MAX would
  // wrap, and the allocator takes 32-bit byte counts (a wrapped count gives
  // a small block), so arrays beyond them are refused as out of memory.
  const std::int64_t line = std::int64_t{tapsLen} + errDly + (down > 1 ? down : 0);
  constexpr std::int64_t kMaxBytes = 0xFFFFFFFF;
  const bool fits = line < INT_MAX && (line + 1) * std::int64_t{sizeof(S)} <= kMaxBytes &&
                    std::int64_t{tapsLen} * std::int64_t{sizeof(H)} <= kMaxBytes;
  ds.dlylLen = fits ? static_cast<int>(line) : 0;
  ds.isDlyFilterMode = 0;
  std::memset(&st->errVal, 0, sizeof st->errVal);
  ts.taps = fits ? allocArray<H>(tapsLen) : nullptr;
  ds.dlyl = fits ? allocArray<S>(ds.dlylLen + 1) : nullptr;
  if (ts.taps == nullptr || ds.dlyl == nullptr) {
    release(st);
    reportNoMem({name, kStem}, "Problem to allocate memory");
    return;
  }
  ds.adaptB = 1;
  setTaps(taps, &ts);
  std::memset(ds.dlyl, 0, (static_cast<std::size_t>(ds.dlylLen) + 1) * sizeof(S));
  if (dlyl != nullptr) setDlyl(dlyl, &ds);
  ds.isDlyFilterMode = 1;
}

// Init is this with downFactor 1 and phase 0, for which the phase and
// factor checks cannot fail.
template <class S, class H>
void initMr(const char* name, int lmsType, const H* taps, int tapsLen, const S* dlyl, float step, float leak,
            int errDly, int down, int downPhase, RyxLmsState* st) {
  if (!passSticky({name, kStem}, {{st == nullptr, kNullBuf},
                                  {tapsLen < 1, "Invalid buffer length"},
                                  {errDly < 0, "Invalid error delay value"},
                                  {downPhase < 0, "Invalid phase value"},
                                  {down <= downPhase, "Invalid factor value"}}))
    return;
  setUp(name, lmsType, taps, tapsLen, dlyl, step, leak, errDly, down, downPhase, st);
}

// The two marks of a live record, tested after the pointers.
bool live(const char* name, const RyxLmsState* st) {
  return passFirst({name, kStem}, {{st->tapSt.isFilterMode == 0, "Taps state structure is not initialized"},
                                   {st->dlySt.isDlyFilterMode == 0,
                                    "Delay line state structure is not initialized"}});
}

bool given(const char* name, const void* p) { return passFirst({name, kStem}, {{p == nullptr, kNullBuf}}); }

// The caller's error, one sample or one group.
template <class S, class H>
bool one(const char* name, RyxLmsState* st, S sample, H err, H& y) {
  if (!given(name, st) || !live(name, st)) return false;
  y = lmslOne(&st->tapSt, &st->dlySt, sample, err);
  return true;
}

template <class S, class H>
bool group(const char* name, RyxLmsState* st, const S* samples, H err, H& y) {
  if (!given(name, st) || !given(name, samples) || !live(name, st)) return false;
  y = stepGroup(&st->tapSt, &st->dlySt, samples, err, Adapt::positive);
  return true;
}

// The desired signal: the error of the previous output drives the update,
// then the new error is kept.
template <class S, class H>
bool des(const char* name, RyxLmsState* st, S sample, H d, H& y) {
  if (!given(name, st) || !live(name, st)) return false;
  y = stepOne(&st->tapSt, &st->dlySt, sample, loadErr<H>(st), Adapt::always);
  storeErr(st, minus(d, y));
  return true;
}

template <class S, class H>
void desBlockE(const char* name, RyxLmsState* st, const S* src, const H* d, H* dst, int numIters) {
  if (!given(name, st) || !live(name, st)) return;
  if (!passFirst({name, kStem}, {{src == nullptr || d == nullptr || dst == nullptr, kNullBuf},
                                 {numIters < 1, "Bad value of number of iterations"}}))
    return;
  storeErr(st, desBlock(&st->tapSt, &st->dlySt, src, d, dst, numIters, loadErr<H>(st)));
}

// Results, zero when a check failed.
template <class S, class H>
H oneR(const char* name, RyxLmsState* st, S sample, H err) {
  H y{};
  one(name, st, sample, err, y);
  return y;
}
template <class S, class H>
H groupR(const char* name, RyxLmsState* st, const S* samples, H err) {
  H y{};
  group(name, st, samples, err, y);
  return y;
}
template <class S, class H>
H desR(const char* name, RyxLmsState* st, S sample, H d) {
  H y{};
  des(name, st, sample, d, y);
  return y;
}


template <class H>
H getErr(const char* name, const RyxLmsState* st) {
  return given(name, st) ? loadErr<H>(st) : H{};
}
template <class H>
void setErr(const char* name, H e, RyxLmsState* st) {
  if (given(name, st)) storeErr(st, e);
}

template <class T>
void getTapsE(const char* name, RyxLmsState* st, T* taps) {
  if (passFirst({name, kStem}, {{taps == nullptr || st == nullptr, kNullBuf}})) getTaps(&st->tapSt, taps);
}
template <class T>
void setTapsE(const char* name, const T* taps, RyxLmsState* st) {
  if (given(name, st)) setTaps(taps, &st->tapSt);
}
template <class T>
void getDlylE(const char* name, RyxLmsState* st, T* dlyl) {
  if (passFirst({name, kStem}, {{st == nullptr, kNullBuf}, {dlyl == nullptr, kNullBuf}})) getDlyl(&st->dlySt, dlyl);
}
template <class T>
void setDlylE(const char* name, RyxLmsState* st, const T* dlyl) {
  if (given(name, st)) setDlyl(dlyl, &st->dlySt);
}

}  // namespace
}  // namespace ryx::lms

using namespace ryx::lms;
using St = RyxLmsState;

extern "C" {

// ---- Set-up and release ----

RYXAPI void ryxsLmsInit(int type, const float* taps, int len, const float* dlyl, float step, float leak,
                        int errDly, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, 1, 0, st);
}
RYXAPI void ryxdLmsInit(int type, const double* taps, int len, const double* dlyl, float step, float leak,
                        int errDly, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, 1, 0, st);
}
RYXAPI void ryxcLmsInit(int type, const SCplx* taps, int len, const SCplx* dlyl, float step, float leak,
                        int errDly, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, 1, 0, st);
}
RYXAPI void ryxzLmsInit(int type, const DCplx* taps, int len, const DCplx* dlyl, float step, float leak,
                        int errDly, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, 1, 0, st);
}
RYXAPI void ryxscLmsInit(int type, const SCplx* taps, int len, const float* dlyl, float step, float leak,
                         int errDly, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, 1, 0, st);
}
RYXAPI void ryxdzLmsInit(int type, const DCplx* taps, int len, const double* dlyl, float step, float leak,
                         int errDly, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, 1, 0, st);
}

RYXAPI void ryxsLmsInitMr(int type, const float* taps, int len, const float* dlyl, float step, float leak,
                          int errDly, int down, int downPh, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, down, downPh, st);
}
RYXAPI void ryxdLmsInitMr(int type, const double* taps, int len, const double* dlyl, float step, float leak,
                          int errDly, int down, int downPh, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, down, downPh, st);
}
RYXAPI void ryxcLmsInitMr(int type, const SCplx* taps, int len, const SCplx* dlyl, float step, float leak,
                          int errDly, int down, int downPh, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, down, downPh, st);
}
RYXAPI void ryxzLmsInitMr(int type, const DCplx* taps, int len, const DCplx* dlyl, float step, float leak,
                          int errDly, int down, int downPh, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, down, downPh, st);
}
RYXAPI void ryxscLmsInitMr(int type, const SCplx* taps, int len, const float* dlyl, float step, float leak,
                           int errDly, int down, int downPh, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, down, downPh, st);
}
RYXAPI void ryxdzLmsInitMr(int type, const DCplx* taps, int len, const double* dlyl, float step, float leak,
                           int errDly, int down, int downPh, St* st) {
  initMr(__func__, type, taps, len, dlyl, step, leak, errDly, down, downPh, st);
}

// No test of the pointer; the arrays' pointers are cleared, so a second
// call does nothing. The flags stay as they are.
RYXAPI void ryxLmsFree(St* st) { release(st); }

// ---- Filters with the caller's error ----

RYXAPI float ryxsLms(St* st, float x, float e) { return oneR(__func__, st, x, e); }
RYXAPI double ryxdLms(St* st, double x, double e) { return oneR(__func__, st, x, e); }
RYXAPI SCplx ryxcLms(St* st, SCplx x, SCplx e) { return oneR(__func__, st, x, e); }
RYXAPI DCplx ryxzLms(St* st, DCplx x, DCplx e) { return oneR(__func__, st, x, e); }
RYXAPI SCplx ryxscLms(St* st, float x, SCplx e) { return oneR(__func__, st, x, e); }
RYXAPI DCplx ryxdzLms(St* st, double x, DCplx e) { return oneR(__func__, st, x, e); }

RYXAPI float ryxsbLms(St* st, const float* x, float e) { return groupR(__func__, st, x, e); }
RYXAPI double ryxdbLms(St* st, const double* x, double e) { return groupR(__func__, st, x, e); }
RYXAPI SCplx ryxcbLms(St* st, const SCplx* x, SCplx e) { return groupR(__func__, st, x, e); }
RYXAPI DCplx ryxzbLms(St* st, const DCplx* x, DCplx e) { return groupR(__func__, st, x, e); }
RYXAPI SCplx ryxscbLms(St* st, const float* x, SCplx e) { return groupR(__func__, st, x, e); }
RYXAPI DCplx ryxdzbLms(St* st, const double* x, DCplx e) { return groupR(__func__, st, x, e); }

RYXAPI void ryxcLmsOut(St* st, SCplx x, SCplx e, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return one("ryxcLms", st, x, e, y); });
}
RYXAPI void ryxscLmsOut(St* st, float x, SCplx e, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return one("ryxscLms", st, x, e, y); });
}
RYXAPI void ryxcbLmsOut(St* st, const SCplx* x, SCplx e, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return group("ryxcbLms", st, x, e, y); });
}
RYXAPI void ryxscbLmsOut(St* st, const float* x, SCplx e, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return group("ryxscbLms", st, x, e, y); });
}

// ---- Filters with a desired signal ----

RYXAPI float ryxsLmsDes(St* st, float x, float d) { return desR(__func__, st, x, d); }
RYXAPI double ryxdLmsDes(St* st, double x, double d) { return desR(__func__, st, x, d); }
RYXAPI SCplx ryxcLmsDes(St* st, SCplx x, SCplx d) { return desR(__func__, st, x, d); }
RYXAPI DCplx ryxzLmsDes(St* st, DCplx x, DCplx d) { return desR(__func__, st, x, d); }
RYXAPI SCplx ryxscLmsDes(St* st, float x, SCplx d) { return desR(__func__, st, x, d); }
RYXAPI DCplx ryxdzLmsDes(St* st, double x, DCplx d) { return desR(__func__, st, x, d); }

RYXAPI void ryxcLmsDesOut(St* st, SCplx x, SCplx d, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return des("ryxcLmsDes", st, x, d, y); });
}
RYXAPI void ryxscLmsDesOut(St* st, float x, SCplx d, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) { return des("ryxscLmsDes", st, x, d, y); });
}

RYXAPI void ryxsbLmsDes(St* st, const float* src, const float* d, float* dst, int n) {
  desBlockE(__func__, st, src, d, dst, n);
}
RYXAPI void ryxdbLmsDes(St* st, const double* src, const double* d, double* dst, int n) {
  desBlockE(__func__, st, src, d, dst, n);
}
RYXAPI void ryxcbLmsDes(St* st, const SCplx* src, const SCplx* d, SCplx* dst, int n) {
  desBlockE(__func__, st, src, d, dst, n);
}
RYXAPI void ryxzbLmsDes(St* st, const DCplx* src, const DCplx* d, DCplx* dst, int n) {
  desBlockE(__func__, st, src, d, dst, n);
}
RYXAPI void ryxscbLmsDes(St* st, const float* src, const SCplx* d, SCplx* dst, int n) {
  desBlockE(__func__, st, src, d, dst, n);
}
RYXAPI void ryxdzbLmsDes(St* st, const double* src, const DCplx* d, DCplx* dst, int n) {
  desBlockE(__func__, st, src, d, dst, n);
}

// ---- State access ----

RYXAPI float ryxsLmsGetErrVal(const St* st) { return getErr<float>(__func__, st); }
RYXAPI double ryxdLmsGetErrVal(const St* st) { return getErr<double>(__func__, st); }
RYXAPI SCplx ryxcLmsGetErrVal(const St* st) { return getErr<SCplx>(__func__, st); }
RYXAPI DCplx ryxzLmsGetErrVal(const St* st) { return getErr<DCplx>(__func__, st); }
RYXAPI void ryxcLmsGetErrValOut(const St* st, SCplx* val) {
  outForm(__func__, kStem, val, [&](SCplx& y) {
    if (!given("ryxcLmsGetErrVal", st)) return false;
    y = loadErr<SCplx>(st);
    return true;
  });
}
RYXAPI void ryxsLmsSetErrVal(float e, St* st) { setErr(__func__, e, st); }
RYXAPI void ryxdLmsSetErrVal(double e, St* st) { setErr(__func__, e, st); }
RYXAPI void ryxcLmsSetErrVal(SCplx e, St* st) { setErr(__func__, e, st); }
RYXAPI void ryxzLmsSetErrVal(DCplx e, St* st) { setErr(__func__, e, st); }

// Step and leak are read and written without any test of the pointer.
RYXAPI float ryxsLmsGetStep(St* st) { return st->tapSt.step; }
RYXAPI float ryxsLmsGetLeak(St* st) { return st->tapSt.leak; }
RYXAPI void ryxsLmsSetStep(float step, St* st) { st->tapSt.step = step; }
RYXAPI void ryxsLmsSetLeak(float leak, St* st) { st->tapSt.leak = leak; }

RYXAPI void ryxsLmsGetTaps(St* st, float* taps) { getTapsE(__func__, st, taps); }
RYXAPI void ryxdLmsGetTaps(St* st, double* taps) { getTapsE(__func__, st, taps); }
RYXAPI void ryxcLmsGetTaps(St* st, SCplx* taps) { getTapsE(__func__, st, taps); }
RYXAPI void ryxzLmsGetTaps(St* st, DCplx* taps) { getTapsE(__func__, st, taps); }
RYXAPI void ryxsLmsSetTaps(const float* taps, St* st) { setTapsE(__func__, taps, st); }
RYXAPI void ryxdLmsSetTaps(const double* taps, St* st) { setTapsE(__func__, taps, st); }
RYXAPI void ryxcLmsSetTaps(const SCplx* taps, St* st) { setTapsE(__func__, taps, st); }
RYXAPI void ryxzLmsSetTaps(const DCplx* taps, St* st) { setTapsE(__func__, taps, st); }
RYXAPI void ryxsLmsGetDlyl(St* st, float* dlyl) { getDlylE(__func__, st, dlyl); }
RYXAPI void ryxdLmsGetDlyl(St* st, double* dlyl) { getDlylE(__func__, st, dlyl); }
RYXAPI void ryxcLmsGetDlyl(St* st, SCplx* dlyl) { getDlylE(__func__, st, dlyl); }
RYXAPI void ryxzLmsGetDlyl(St* st, DCplx* dlyl) { getDlylE(__func__, st, dlyl); }
RYXAPI void ryxsLmsSetDlyl(St* st, const float* dlyl) { setDlylE(__func__, st, dlyl); }
RYXAPI void ryxdLmsSetDlyl(St* st, const double* dlyl) { setDlylE(__func__, st, dlyl); }
RYXAPI void ryxcLmsSetDlyl(St* st, const SCplx* dlyl) { setDlylE(__func__, st, dlyl); }
RYXAPI void ryxzLmsSetDlyl(St* st, const DCplx* dlyl) { setDlylE(__func__, st, dlyl); }

}  // extern "C"
