// Entries of the high-level IIR forms: source group "mvqiirh" for the float
// types, "ryxiirh" for the double types. A RyxIirState owns its taps and its
// delay line; its first five fields are a tap state and its `dlyl` field a
// delay state, and every call hands them to the low-level routines, which
// report under their own names. No arithmetic here: outputs are those of
// the low-level forms bit for bit.
//
// Set-up: the float types go through the low-level Init with iirType 2, so
// they get the tables and leave the caller's taps alone, and then store the
// caller's iirType; the double types copy the taps into an array of their
// own and normalise the copy. A failure below is followed by a trace line
// under the high-level name, and leaves the record dead with all freed.
#include <type_traits>

#include "frame/checks.h"
#include "iir/iir_arith.h"
#include "iir/iir_checks.h"

namespace ryx::iir {
namespace {

constexpr int kLiveMark = 31725;
constexpr const char* kNotLive = "IIR filter wasn't initialized";
constexpr const char* kAlreadyLive = "IIR filter state structure is already initialized! Use ryxIirFree to free it";

template <class T>
constexpr const char* stemOf() {
  return isFloatType<T> ? "mvqiirh" : "ryxiirh";
}

// Aligned arrays of each element type.
template <class T>
T* allocOf(int count) {
  const auto n = static_cast<unsigned>(count);
  if constexpr (std::is_same_v<T, float>) return ryxsMalloc(n);
  if constexpr (std::is_same_v<T, double>) return ryxdMalloc(n);
  if constexpr (std::is_same_v<T, SCplx>) return ryxcMalloc(n);
  if constexpr (std::is_same_v<T, DCplx>) return ryxzMalloc(n);
}

// The low-level set-up routines by tap type, and by delay type.
template <class H>
struct TapSetUp;
template <>
struct TapSetUp<float> {
  static constexpr auto init = ryxsIirlInit;
  static constexpr auto initBq = ryxsIirlInitBq;
};
template <>
struct TapSetUp<SCplx> {
  static constexpr auto init = ryxcIirlInit;
  static constexpr auto initBq = ryxcIirlInitBq;
};
template <>
struct TapSetUp<double> {
  static constexpr auto init = ryxdIirlInit;
  static constexpr auto initBq = ryxdIirlInitBq;
  static constexpr auto copy = ryxdbCopy;
};
template <>
struct TapSetUp<DCplx> {
  static constexpr auto init = ryxzIirlInit;
  static constexpr auto initBq = ryxzIirlInitBq;
  static constexpr auto copy = ryxzbCopy;
};

inline void initDlylOf(const RyxIirTapState* ts, float* d, RyxIirDlyState* ds) { ryxsIirlInitDlyl(ts, d, ds); }
inline void initDlylOf(const RyxIirTapState* ts, SCplx* d, RyxIirDlyState* ds) { ryxcIirlInitDlyl(ts, d, ds); }
inline void initDlylOf(const RyxIirTapState* ts, double* d, RyxIirDlyState* ds) { ryxdIirlInitDlyl(ts, d, ds); }
inline void initDlylOf(const RyxIirTapState* ts, DCplx* d, RyxIirDlyState* ds) { ryxzIirlInitDlyl(ts, d, ds); }

// The record's first five fields as a tap state, and back.
RyxIirTapState tapsOf(const RyxIirState* st) { return {st->order, st->taps, st->iirType, st->tapForm, st->reserved}; }

void adopt(RyxIirState* st, const RyxIirTapState& ts) {
  st->order = ts.order;
  st->taps = ts.taps;
  st->iirType = ts.iirType;
  st->tapForm = ts.tapForm;
  st->reserved = ts.reserved;
}

void markDead(RyxIirState* st) {
  ryxFree(st->taps);
  ryxFree(st->dlyl);
  st->taps = nullptr;
  st->dlyl = nullptr;
  st->initMark = 0;
}

// Init and InitBq of every type: `count` is the order, or the number of
// sections when `cascade`.
template <class S, class H>
void init(const char* name, int iirType, const H* tapVals, int count, bool cascade, RyxIirState* st) {
  using O = OutOf<S, H>;
  const Site site{name, stemOf<S>()};
  const Check countRow = cascade ? Check{count < 1, "numQuads <= 0"} : Check{count < 0, "order < 0"};
  if (!passSticky(site, {{st == nullptr, "statePtr==0"},
                         {tapVals == nullptr, "tapVals==0"},
                         countRow,
                         {iirType < 0 || iirType > 1, "iirType is out of range"},
                         {st != nullptr && st->initMark == kLiveMark, kAlreadyLive}}))
    return;
  const int order = cascade ? 2 * count : count;
  const int tapCount = cascade ? 6 * count : 2 * order + 2;
  const auto lowInit = cascade ? TapSetUp<H>::initBq : TapSetUp<H>::init;
  RyxIirTapState ts{};
  st->taps = nullptr;
  st->dlyl = allocOf<O>(order);
  if constexpr (isFloatType<S>) {
    if (st->dlyl == nullptr) {
      reportNoMem(site, kNoMemText);
      markDead(st);
      return;
    }
    H* local = const_cast<H*>(tapVals);  // read only under iirType 2
    lowInit(2, reinterpret_cast<H*>(&local), count, &ts);
  } else {
    H* own = allocOf<H>(tapCount);
    st->taps = own;
    if (own == nullptr || st->dlyl == nullptr) {
      reportNoMem(site, kNoMemText);
      markDead(st);
      return;
    }
    st->initMark = kLiveMark;
    TapSetUp<H>::copy(tapVals, own, tapCount);
    lowInit(iirType, own, count, &ts);
  }
  if (failedInside(site)) {
    if (isFloatType<S>) ryxFree(ts.taps);
    markDead(st);
    return;
  }
  ts.iirType = iirType;
  adopt(st, ts);
  RyxIirDlyState ds{};
  initDlylOf(&ts, static_cast<O*>(st->dlyl), &ds);
  st->initMark = kLiveMark;
}

bool passLive(const char* name, const char* file, const RyxIirState* st) {
  if (!passFirst({name, file}, {{st == nullptr, "statePtr==0"}})) return false;
  return passFirst({name, file}, {{st->initMark != kLiveMark, kNotLive}});
}

// The filters hand the record to the low-level form `low`.
template <class S, auto low>
auto one(const char* name, RyxIirState* st, S x) {
  using O = decltype(low(nullptr, nullptr, x));
  if (!passLive(name, stemOf<S>(), st)) return O{};
  const RyxIirTapState ts = tapsOf(st);
  RyxIirDlyState ds{st->dlyl};
  return low(&ts, &ds, x);
}

// The result of the single-sample form `inner` stored through val; nothing
// is stored when a check, here or below, fails.
template <class S, auto low>
void oneOut(const char* name, const char* inner, RyxIirState* st, S x, SCplx* val) {
  if (!passFirst({name, stemOf<S>()}, {{val == nullptr, "val==0"}})) return;
  const SCplx y = one<S, low>(inner, st, x);
  if (ryxGetErrStatus() >= 0 && st != nullptr && st->initMark == kLiveMark) *val = y;
}

template <class S, class O, auto low>
void block(const char* name, RyxIirState* st, const S* src, O* dst, int numIters) {
  const Site site{name, stemOf<S>()};
  if (!passLive(name, site.file, st)) return;
  const RyxIirTapState ts = tapsOf(st);
  RyxIirDlyState ds{st->dlyl};
  low(&ts, &ds, src, dst, numIters);
  failedInside(site);
}

}  // namespace
}  // namespace ryx::iir

using namespace ryx::iir;
using ST = RyxIirState;

extern "C" {

// ---- Set-up: sample type first, tap type second ----

RYXAPI void ryxsIirInit(int type, const float* t, int order, ST* st) {
  init<float>(__func__, type, t, order, false, st);
}
RYXAPI void ryxcIirInit(int type, const SCplx* t, int order, ST* st) {
  init<SCplx>(__func__, type, t, order, false, st);
}
RYXAPI void ryxscIirInit(int type, const SCplx* t, int order, ST* st) {
  init<float>(__func__, type, t, order, false, st);
}
RYXAPI void ryxcsIirInit(int type, const float* t, int order, ST* st) {
  init<SCplx>(__func__, type, t, order, false, st);
}
RYXAPI void ryxdIirInit(int type, const double* t, int order, ST* st) {
  init<double>(__func__, type, t, order, false, st);
}
RYXAPI void ryxzIirInit(int type, const DCplx* t, int order, ST* st) {
  init<DCplx>(__func__, type, t, order, false, st);
}
RYXAPI void ryxdzIirInit(int type, const DCplx* t, int order, ST* st) {
  init<double>(__func__, type, t, order, false, st);
}
RYXAPI void ryxzdIirInit(int type, const double* t, int order, ST* st) {
  init<DCplx>(__func__, type, t, order, false, st);
}

RYXAPI void ryxsIirInitBq(int type, const float* t, int nq, ST* st) { init<float>(__func__, type, t, nq, true, st); }
RYXAPI void ryxcIirInitBq(int type, const SCplx* t, int nq, ST* st) { init<SCplx>(__func__, type, t, nq, true, st); }
RYXAPI void ryxscIirInitBq(int type, const SCplx* t, int nq, ST* st) { init<float>(__func__, type, t, nq, true, st); }
RYXAPI void ryxcsIirInitBq(int type, const float* t, int nq, ST* st) { init<SCplx>(__func__, type, t, nq, true, st); }
RYXAPI void ryxdIirInitBq(int type, const double* t, int nq, ST* st) { init<double>(__func__, type, t, nq, true, st); }
RYXAPI void ryxzIirInitBq(int type, const DCplx* t, int nq, ST* st) { init<DCplx>(__func__, type, t, nq, true, st); }
RYXAPI void ryxdzIirInitBq(int type, const DCplx* t, int nq, ST* st) { init<double>(__func__, type, t, nq, true, st); }
RYXAPI void ryxzdIirInitBq(int type, const double* t, int nq, ST* st) { init<DCplx>(__func__, type, t, nq, true, st); }

// ---- Filters ----

RYXAPI float ryxsIir(ST* st, float x) { return one<float, ryxsIirl>(__func__, st, x); }
RYXAPI SCplx ryxcIir(ST* st, SCplx x) { return one<SCplx, ryxcIirl>(__func__, st, x); }
RYXAPI SCplx ryxscIir(ST* st, float x) { return one<float, ryxscIirl>(__func__, st, x); }
RYXAPI SCplx ryxcsIir(ST* st, SCplx x) { return one<SCplx, ryxcsIirl>(__func__, st, x); }
RYXAPI double ryxdIir(ST* st, double x) { return one<double, ryxdIirl>(__func__, st, x); }
RYXAPI DCplx ryxzIir(ST* st, DCplx x) { return one<DCplx, ryxzIirl>(__func__, st, x); }
RYXAPI DCplx ryxdzIir(ST* st, double x) { return one<double, ryxdzIirl>(__func__, st, x); }
RYXAPI DCplx ryxzdIir(ST* st, DCplx x) { return one<DCplx, ryxzdIirl>(__func__, st, x); }

RYXAPI void ryxcIirOut(ST* st, SCplx x, SCplx* val) { oneOut<SCplx, ryxcIirl>(__func__, "ryxcIir", st, x, val); }
RYXAPI void ryxscIirOut(ST* st, float x, SCplx* val) { oneOut<float, ryxscIirl>(__func__, "ryxscIir", st, x, val); }
RYXAPI void ryxcsIirOut(ST* st, SCplx x, SCplx* val) { oneOut<SCplx, ryxcsIirl>(__func__, "ryxcsIir", st, x, val); }

RYXAPI void ryxsbIir(ST* st, const float* src, float* dst, int n) {
  block<float, float, ryxsbIirl>(__func__, st, src, dst, n);
}
RYXAPI void ryxcbIir(ST* st, const SCplx* src, SCplx* dst, int n) {
  block<SCplx, SCplx, ryxcbIirl>(__func__, st, src, dst, n);
}
RYXAPI void ryxscbIir(ST* st, const float* src, SCplx* dst, int n) {
  block<float, SCplx, ryxscbIirl>(__func__, st, src, dst, n);
}
RYXAPI void ryxcsbIir(ST* st, const SCplx* src, SCplx* dst, int n) {
  block<SCplx, SCplx, ryxcsbIirl>(__func__, st, src, dst, n);
}
RYXAPI void ryxdbIir(ST* st, const double* src, double* dst, int n) {
  block<double, double, ryxdbIirl>(__func__, st, src, dst, n);
}
RYXAPI void ryxzbIir(ST* st, const DCplx* src, DCplx* dst, int n) {
  block<DCplx, DCplx, ryxzbIirl>(__func__, st, src, dst, n);
}
RYXAPI void ryxdzbIir(ST* st, const double* src, DCplx* dst, int n) {
  block<double, DCplx, ryxdzbIirl>(__func__, st, src, dst, n);
}
RYXAPI void ryxzdbIir(ST* st, const DCplx* src, DCplx* dst, int n) {
  block<DCplx, DCplx, ryxzdbIirl>(__func__, st, src, dst, n);
}

RYXAPI void ryxIirFree(ST* st) {
  if (passLive(__func__, "ryxiirh", st)) markDead(st);
}

}  // extern "C"
