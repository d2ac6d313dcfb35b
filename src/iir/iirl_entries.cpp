// Entries of the low-level IIR forms: source group "mvqiirl" for the float
// types (s, c and the mixed sc, cs), "ryxiirl" for the double types. Each
// shape is one template holding its checks in their documented order; the
// exported names are one-line instantiations.
//
// Reporting: the float set-up routines and every filter report each failing
// check, then stop on a negative thread status (an earlier failure that
// nobody cleared included); the double set-up routines stop at the first
// failure, or on a failure already standing. Nothing is written on failure.
#include <type_traits>

#include "frame/memory.h"
#include "iir/iir_checks.h"
#include "iir/iirl_core.h"

namespace ryx::iir {
namespace {

constexpr const char* kFloatStem = "mvqiirl";
constexpr const char* kDoubleStem = "ryxiirl";

template <class T>
constexpr const char* stemOf() {
  return isFloatType<T> ? kFloatStem : kDoubleStem;
}

constexpr const char* kInnerNull = "*((float**)taps)==0";
constexpr const char* kZeroLead = "taps[?] equals zero";

void setRecord(RyxIirTapState* ts, int order, void* taps, int iirType, int tapForm) {
  ts->order = order;
  ts->taps = taps;
  ts->iirType = iirType;
  ts->tapForm = tapForm;
  ts->reserved = 0;
}

// The caller's array behind `taps`: the array itself, or under iirType 2
// the array whose address `taps` holds.
template <class H>
H*& innerPointer(H* taps) {
  return *reinterpret_cast<H**>(taps);
}

// Tap arrays of the float forms with tables, zero-filled.
template <class H>
H* allocTables(int count) {
  H* p;
  if constexpr (std::is_same_v<H, float>) {
    p = reinterpret_cast<float*>(ryxiMalloc(static_cast<unsigned>(count)));
  } else {
    static_assert(std::is_same_v<H, SCplx>, "tables exist for the float forms only");
    p = ryxcMalloc(static_cast<unsigned>(count));
  }
  if (p != nullptr) ownMemset(p, 0, count * static_cast<int>(sizeof(H)));
  return p;
}

// The common checks of Init and InitBq; `count` is the order or the number
// of sections, with the row that tests it.
template <class H>
bool passInitRows(const Site& site, int iirType, H* taps, const Check& countRow, RyxIirTapState* ts) {
  const bool inner = iirType == 2 && taps != nullptr && innerPointer(taps) == nullptr;
  if constexpr (isFloatType<H>) {
    return passReported(site, {{ts == nullptr, "tapStPtr==0"},
                               {taps == nullptr, "taps==0"},
                               countRow,
                               {iirType < 0 || iirType > 2, "iirType out of range"},
                               {inner, kInnerNull}});
  } else {
    return passSticky(site, {{ts == nullptr, "tapStPtr==0"},
                             {taps == nullptr, "taps==0"},
                             countRow,
                             {iirType < 0 || iirType > 2, "iirType is out of range"},
                             {inner, kInnerNull}});
  }
}

template <class H>
bool passLeadRow(const Site& site, const Check& row) {
  if constexpr (isFloatType<H>) {
    return passReported(site, {row});
  } else {
    return passSticky(site, {row});
  }
}

template <class H>
void init(const char* name, int iirType, H* taps, int order, RyxIirTapState* ts) {
  const Site site{name, stemOf<H>()};
  const Check orderRow = isFloatType<H> ? Check{order < 0, "Order < 0"} : Check{order < 0, "order < 0"};
  if (!passInitRows(site, iirType, taps, orderRow, ts)) return;
  H* src = iirType == 2 ? innerPointer(taps) : taps;
  const char* zeroText = isFloatType<H> ? kZeroLead : "taps[order+1] equals zero";
  if (!passLeadRow<H>(site, {isZero(src[order + 1]), zeroText})) return;
  if (iirType != 2 || !isFloatType<H>) {
    if (iirType == 2) innerPointer(taps) = nullptr;
    normaliseArb(src, order);
    setRecord(ts, order, src, iirType, kArb);
    return;
  }
  if constexpr (isFloatType<H>) {
    H* own = allocTables<H>(arbTableCount(order));
    if (own == nullptr) {
      reportNoMem(site, kNoMemText);
      return;
    }
    ownMemcpy(own, src, (2 * order + 2) * static_cast<int>(sizeof(H)));
    normaliseArb(own, order);
    fillArbTables(own, order);
    innerPointer(taps) = own;
    setRecord(ts, order, own, iirType, kArbTables);
  }
}

template <class H>
void initBq(const char* name, int iirType, H* taps, int numQuads, RyxIirTapState* ts) {
  const Site site{name, stemOf<H>()};
  const Check countRow = isFloatType<H> ? Check{numQuads < 1, "NumQuads <= 0"} : Check{numQuads < 1, "numQuads <= 0"};
  if (!passInitRows(site, iirType, taps, countRow, ts)) return;
  H* src = iirType == 2 ? innerPointer(taps) : taps;
  if (!passLeadRow<H>(site, {firstZeroLead(src, numQuads) >= 0, kZeroLead})) return;
  if (iirType != 2 || !isFloatType<H>) {
    if (iirType == 2) innerPointer(taps) = nullptr;
    normaliseBq(src, src, numQuads);
    setRecord(ts, 2 * numQuads, src, iirType, kBiquad);
    return;
  }
  if constexpr (isFloatType<H>) {
    H* own = allocTables<H>(bqTableCount(numQuads));
    if (own == nullptr) {
      reportNoMem(site, kNoMemText);
      return;
    }
    normaliseBq(src, own, numQuads);
    fillBqTables(own, numQuads);
    innerPointer(taps) = own;
    setRecord(ts, 2 * numQuads, own, iirType, kBiquadTables);
  }
}

bool isSetUp(const RyxIirTapState* ts) {
  return ts->taps != nullptr && ts->tapForm >= kArb && ts->tapForm <= kBiquadTables;
}

template <class D>
void initDlyl(const char* name, const RyxIirTapState* ts, D* dlyl, RyxIirDlyState* ds) {
  const Site site{name, stemOf<D>()};
  const bool badTaps = ts != nullptr && !isSetUp(ts);
  const bool noLine = ts != nullptr && ts->order > 0 && dlyl == nullptr;
  const std::initializer_list<Check> rows = {{ts == nullptr, "tapStPtr==0"},
                                             {ds == nullptr, "dlyStPtr==0"},
                                             {badTaps, "structure *tapStPtr wasn't initialized"},
                                             {noLine, "dlyl==0"}};
  if (!(isFloatType<D> ? passReported(site, rows) : passSticky(site, rows))) return;
  if (ts->order > 0) ownMemset(dlyl, 0, ts->order * static_cast<int>(sizeof(D)));
  ds->dlyl = dlyl;
}

// The checks of every filter; src and dst are null-tested in the block
// forms only.
template <class S, class H>
bool passFilter(const char* name, const RyxIirTapState* ts, const RyxIirDlyState* ds, bool block, const void* src,
                const void* dst, int numIters) {
  const bool badTaps = ts != nullptr && !isSetUp(ts);
  const bool noLine = ts != nullptr && ds != nullptr && ts->order > 0 && ds->dlyl == nullptr;
  return passReported({name, stemOf<S>()}, {{ts == nullptr, "tapStPtr==0"},
                                            {ds == nullptr, "dlyStPtr==0"},
                                            {block && src == nullptr, "inSamps==0"},
                                            {block && dst == nullptr, "outSamps==0"},
                                            {badTaps, "structure *tapStPtr wasn't initialized"},
                                            {noLine, "structure *dlyStPtr wasn't initialized"},
                                            {block && numIters < 0, "numIters < 0"}});
}

template <class S, class H>
OutOf<S, H>* lineOf(RyxIirDlyState* ds) {
  return static_cast<OutOf<S, H>*>(ds->dlyl);
}

template <class S, class H>
OutOf<S, H> one(const char* name, const RyxIirTapState* ts, RyxIirDlyState* ds, S x) {
  if (!passFilter<S, H>(name, ts, ds, false, nullptr, nullptr, 0)) return OutOf<S, H>{};
  return iirlStep<S, H>(ts, lineOf<S, H>(ds), x);
}

// The result of the single-sample form `inner` stored through val; nothing
// is stored when a check fails.
template <class S, class H>
void oneOut(const char* name, const char* inner, const RyxIirTapState* ts, RyxIirDlyState* ds, S x, SCplx* val) {
  if (!passReported({name, kFloatStem}, {{val == nullptr, "val==0"}})) return;
  if (!passFilter<S, H>(inner, ts, ds, false, nullptr, nullptr, 0)) return;
  *val = iirlStep<S, H>(ts, lineOf<S, H>(ds), x);
}

template <class S, class H>
void block(const char* name, const RyxIirTapState* ts, RyxIirDlyState* ds, const S* src, OutOf<S, H>* dst,
           int numIters) {
  if (!passFilter<S, H>(name, ts, ds, true, src, dst, numIters)) return;
  iirlBlock<S, H>(ts, lineOf<S, H>(ds), src, dst, numIters);
}

}  // namespace
}  // namespace ryx::iir

using namespace ryx::iir;
using TS = RyxIirTapState;
using DS = RyxIirDlyState;

extern "C" {

// ---- Set-up, per element type ----

RYXAPI void ryxsIirlInit(int type, float* taps, int order, TS* ts) { init(__func__, type, taps, order, ts); }
RYXAPI void ryxcIirlInit(int type, SCplx* taps, int order, TS* ts) { init(__func__, type, taps, order, ts); }
RYXAPI void ryxdIirlInit(int type, double* taps, int order, TS* ts) { init(__func__, type, taps, order, ts); }
RYXAPI void ryxzIirlInit(int type, DCplx* taps, int order, TS* ts) { init(__func__, type, taps, order, ts); }

RYXAPI void ryxsIirlInitBq(int type, float* taps, int nq, TS* ts) { initBq(__func__, type, taps, nq, ts); }
RYXAPI void ryxcIirlInitBq(int type, SCplx* taps, int nq, TS* ts) { initBq(__func__, type, taps, nq, ts); }
RYXAPI void ryxdIirlInitBq(int type, double* taps, int nq, TS* ts) { initBq(__func__, type, taps, nq, ts); }
RYXAPI void ryxzIirlInitBq(int type, DCplx* taps, int nq, TS* ts) { initBq(__func__, type, taps, nq, ts); }

RYXAPI void ryxsIirlInitDlyl(const TS* ts, float* dlyl, DS* ds) { initDlyl(__func__, ts, dlyl, ds); }
RYXAPI void ryxcIirlInitDlyl(const TS* ts, SCplx* dlyl, DS* ds) { initDlyl(__func__, ts, dlyl, ds); }
RYXAPI void ryxdIirlInitDlyl(const TS* ts, double* dlyl, DS* ds) { initDlyl(__func__, ts, dlyl, ds); }
RYXAPI void ryxzIirlInitDlyl(const TS* ts, DCplx* dlyl, DS* ds) { initDlyl(__func__, ts, dlyl, ds); }

// ---- Filters: sample type first, tap type second ----

RYXAPI float ryxsIirl(const TS* ts, DS* ds, float x) { return one<float, float>(__func__, ts, ds, x); }
RYXAPI SCplx ryxcIirl(const TS* ts, DS* ds, SCplx x) { return one<SCplx, SCplx>(__func__, ts, ds, x); }
RYXAPI SCplx ryxscIirl(const TS* ts, DS* ds, float x) { return one<float, SCplx>(__func__, ts, ds, x); }
RYXAPI SCplx ryxcsIirl(const TS* ts, DS* ds, SCplx x) { return one<SCplx, float>(__func__, ts, ds, x); }
RYXAPI double ryxdIirl(const TS* ts, DS* ds, double x) { return one<double, double>(__func__, ts, ds, x); }
RYXAPI DCplx ryxzIirl(const TS* ts, DS* ds, DCplx x) { return one<DCplx, DCplx>(__func__, ts, ds, x); }
RYXAPI DCplx ryxdzIirl(const TS* ts, DS* ds, double x) { return one<double, DCplx>(__func__, ts, ds, x); }
RYXAPI DCplx ryxzdIirl(const TS* ts, DS* ds, DCplx x) { return one<DCplx, double>(__func__, ts, ds, x); }

RYXAPI void ryxcIirlOut(const TS* ts, DS* ds, SCplx x, SCplx* val) {
  oneOut<SCplx, SCplx>(__func__, "ryxcIirl", ts, ds, x, val);
}
RYXAPI void ryxscIirlOut(const TS* ts, DS* ds, float x, SCplx* val) {
  oneOut<float, SCplx>(__func__, "ryxscIirl", ts, ds, x, val);
}
RYXAPI void ryxcsIirlOut(const TS* ts, DS* ds, SCplx x, SCplx* val) {
  oneOut<SCplx, float>(__func__, "ryxcsIirl", ts, ds, x, val);
}

RYXAPI void ryxsbIirl(const TS* ts, DS* ds, const float* src, float* dst, int n) {
  block<float, float>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxcbIirl(const TS* ts, DS* ds, const SCplx* src, SCplx* dst, int n) {
  block<SCplx, SCplx>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxscbIirl(const TS* ts, DS* ds, const float* src, SCplx* dst, int n) {
  block<float, SCplx>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxcsbIirl(const TS* ts, DS* ds, const SCplx* src, SCplx* dst, int n) {
  block<SCplx, float>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxdbIirl(const TS* ts, DS* ds, const double* src, double* dst, int n) {
  block<double, double>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxzbIirl(const TS* ts, DS* ds, const DCplx* src, DCplx* dst, int n) {
  block<DCplx, DCplx>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxdzbIirl(const TS* ts, DS* ds, const double* src, DCplx* dst, int n) {
  block<double, DCplx>(__func__, ts, ds, src, dst, n);
}
RYXAPI void ryxzdbIirl(const TS* ts, DS* ds, const DCplx* src, DCplx* dst, int n) {
  block<DCplx, double>(__func__, ts, ds, src, dst, n);
}

}  // extern "C"
