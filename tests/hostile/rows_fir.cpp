// Rows of the FIR family. Low-level records carry no mark, so the caller
// keeps them valid: they are built by Init (or null), the delay set-up
// alone also meets an all-zero tap state. High-level records are null,
// zeroed, random bytes, freed or live; the set-up routines also meet
// records live for another type.
#include "routine_table.h"

namespace hostile {
namespace {

using TS = RyxFirTapState;
using DS = RyxFirDlyState;
using FS = RyxFirState;

// Sizes read from the records: a field of the record at argument K (a
// null record stands for one element), or the length at N times a factor
// field (a block reads numIters * downFactor samples and writes
// numIters * upFactor).
template <class R, int R::*F, int K>
std::int64_t field(const Case& c) {
  const R* r = c.record<R>(K);
  return r ? r->*F : 1;
}
template <class R, int R::*F, int K, int N>
std::int64_t times(const Case& c) {
  return c.intArg(N) * field<R, F, K>(c);
}
template <int K>
constexpr SizeFn tapsOf = field<TS, &TS::tapsLen, K>;
template <int K>
constexpr SizeFn lineOf = field<DS, &DS::dlylLen, K>;
template <int K>
constexpr SizeFn stateTaps = field<FS, &FS::tapsLen, K>;
template <int K>
constexpr SizeFn stateLine = field<FS, &FS::dlylLen, K>;

// ---- Low-level shapes ----

template <class T>
std::vector<Row> lowSetUp(const char* const names[7], void (*init)(T*, int, TS*),
                          void (*initMr)(T*, int, int, int, int, int, TS*), void (*initDlyl)(const TS*, T*, DS*),
                          void (*setTaps)(const T*, TS*), void (*getTaps)(TS*, T*),
                          void (*setDlyl)(const TS*, const T*, DS*), void (*getDlyl)(const TS*, DS*, T*)) {
  return {
      row(names[0], init, out(arg<1>), len(), out(one)),
      row(names[1], initMr, out(arg<1>), len(), factor(), phase<2>(), factor(), phase<4>(), out(one)),
      row(names[2], initDlyl, tapStateOrZero<T>(), out(tapsOf<0>), out(one)),
      row(names[3], setTaps, in(tapsOf<1>), tapState<T>()),
      row(names[4], getTaps, tapState<T>(), out(tapsOf<0>)),
      row(names[5], setDlyl, tapState<T>(), in(lineOf<2>), dlyState<T>()),
      row(names[6], getDlyl, tapState<T>(), dlyState<T>(), out(lineOf<1>)),
  };
}

template <class S, class H, class O>
Row lowOne(const char* name, O (*f)(const TS*, DS*, S)) {
  return row(name, f, tapState<H>(), dlyState<S>(), value());
}
template <class S, class H, class O>
Row lowBlock(const char* name, void (*f)(const TS*, DS*, const S*, O*, int)) {
  return row(name, f, tapState<H>(), dlyState<S>(), in(times<TS, &TS::downFactor, 0, 4>),
             out(times<TS, &TS::upFactor, 0, 4>), len());
}
template <class S, class H>
Row lowOut(const char* name, void (*f)(const TS*, DS*, S, SCplx*)) {
  return row(name, f, tapState<H>(), dlyState<S>(), value(), out(one));
}

// ---- High-level shapes ----

template <class S, class H>
Row init(const char* name, void (*f)(const H*, int, const S*, FS*)) {
  return allocating(row(name, f, in(arg<1>), len(), in(arg<1>), firStateForInit<S, H>()));
}
template <class S, class H>
Row initMr(const char* name, void (*f)(const H*, int, const S*, int, int, int, int, FS*)) {
  return allocating(row(name, f, in(arg<1>), len(), in(arg<1>), factor(), phase<3>(), factor(), phase<5>(),
                        firStateForInit<S, H>()));
}
template <class T>
std::vector<Row> access(const char* const names[4], void (*setTaps)(const T*, FS*), void (*getTaps)(const FS*, T*),
                        void (*setDlyl)(const T*, FS*), void (*getDlyl)(const FS*, T*)) {
  return {
      row(names[0], setTaps, in(stateTaps<1>), firState<T, T>()),
      row(names[1], getTaps, firState<T, T>(), out(stateTaps<0>)),
      row(names[2], setDlyl, in(stateLine<1>), firState<T, T>()),
      row(names[3], getDlyl, firState<T, T>(), out(stateLine<0>)),
  };
}
template <class S, class H, class O>
Row single(const char* name, O (*f)(FS*, S)) {
  return row(name, f, firState<S, H>(), value());
}
template <class S, class H, class O>
Row block(const char* name, void (*f)(FS*, const S*, O*, int)) {
  return row(name, f, firState<S, H>(), in(times<FS, &FS::downFactor, 0, 3>), out(times<FS, &FS::upFactor, 0, 3>),
             len());
}
template <class S, class H>
Row oneOut(const char* name, void (*f)(FS*, S, SCplx*)) {
  return row(name, f, firState<S, H>(), value(), out(one));
}

std::vector<Row> all() {
  std::vector<Row> rows;
  auto add = [&rows](std::vector<Row> more) { rows.insert(rows.end(), more.begin(), more.end()); };
  static const char* const s[] = {"ryxsFirlInit",    "ryxsFirlInitMr",  "ryxsFirlInitDlyl", "ryxsFirlSetTaps",
                                  "ryxsFirlGetTaps", "ryxsFirlSetDlyl", "ryxsFirlGetDlyl"};
  static const char* const c[] = {"ryxcFirlInit",    "ryxcFirlInitMr",  "ryxcFirlInitDlyl", "ryxcFirlSetTaps",
                                  "ryxcFirlGetTaps", "ryxcFirlSetDlyl", "ryxcFirlGetDlyl"};
  static const char* const d[] = {"ryxdFirlInit",    "ryxdFirlInitMr",  "ryxdFirlInitDlyl", "ryxdFirlSetTaps",
                                  "ryxdFirlGetTaps", "ryxdFirlSetDlyl", "ryxdFirlGetDlyl"};
  static const char* const z[] = {"ryxzFirlInit",    "ryxzFirlInitMr",  "ryxzFirlInitDlyl", "ryxzFirlSetTaps",
                                  "ryxzFirlGetTaps", "ryxzFirlSetDlyl", "ryxzFirlGetDlyl"};
  add(lowSetUp(s, ryxsFirlInit, ryxsFirlInitMr, ryxsFirlInitDlyl, ryxsFirlSetTaps, ryxsFirlGetTaps,
               ryxsFirlSetDlyl, ryxsFirlGetDlyl));
  add(lowSetUp(c, ryxcFirlInit, ryxcFirlInitMr, ryxcFirlInitDlyl, ryxcFirlSetTaps, ryxcFirlGetTaps,
               ryxcFirlSetDlyl, ryxcFirlGetDlyl));
  add(lowSetUp(d, ryxdFirlInit, ryxdFirlInitMr, ryxdFirlInitDlyl, ryxdFirlSetTaps, ryxdFirlGetTaps,
               ryxdFirlSetDlyl, ryxdFirlGetDlyl));
  add(lowSetUp(z, ryxzFirlInit, ryxzFirlInitMr, ryxzFirlInitDlyl, ryxzFirlSetTaps, ryxzFirlGetTaps,
               ryxzFirlSetDlyl, ryxzFirlGetDlyl));
  static const char* const hs[] = {"ryxsFirSetTaps", "ryxsFirGetTaps", "ryxsFirSetDlyl", "ryxsFirGetDlyl"};
  static const char* const hc[] = {"ryxcFirSetTaps", "ryxcFirGetTaps", "ryxcFirSetDlyl", "ryxcFirGetDlyl"};
  static const char* const hd[] = {"ryxdFirSetTaps", "ryxdFirGetTaps", "ryxdFirSetDlyl", "ryxdFirGetDlyl"};
  static const char* const hz[] = {"ryxzFirSetTaps", "ryxzFirGetTaps", "ryxzFirSetDlyl", "ryxzFirGetDlyl"};
  add(access(hs, ryxsFirSetTaps, ryxsFirGetTaps, ryxsFirSetDlyl, ryxsFirGetDlyl));
  add(access(hc, ryxcFirSetTaps, ryxcFirGetTaps, ryxcFirSetDlyl, ryxcFirGetDlyl));
  add(access(hd, ryxdFirSetTaps, ryxdFirGetTaps, ryxdFirSetDlyl, ryxdFirGetDlyl));
  add(access(hz, ryxzFirSetTaps, ryxzFirGetTaps, ryxzFirSetDlyl, ryxzFirGetDlyl));
  add({
      lowOne<float, float>("ryxsFirl", ryxsFirl),
      lowOne<SCplx, SCplx>("ryxcFirl", ryxcFirl),
      lowOne<float, SCplx>("ryxscFirl", ryxscFirl),
      lowOne<SCplx, float>("ryxcsFirl", ryxcsFirl),
      lowOne<double, double>("ryxdFirl", ryxdFirl),
      lowOne<DCplx, DCplx>("ryxzFirl", ryxzFirl),
      lowOne<double, DCplx>("ryxdzFirl", ryxdzFirl),
      lowOne<DCplx, double>("ryxzdFirl", ryxzdFirl),
      lowBlock<float, float>("ryxsbFirl", ryxsbFirl),
      lowBlock<SCplx, SCplx>("ryxcbFirl", ryxcbFirl),
      lowBlock<float, SCplx>("ryxscbFirl", ryxscbFirl),
      lowBlock<SCplx, float>("ryxcsbFirl", ryxcsbFirl),
      lowBlock<double, double>("ryxdbFirl", ryxdbFirl),
      lowBlock<DCplx, DCplx>("ryxzbFirl", ryxzbFirl),
      lowBlock<double, DCplx>("ryxdzbFirl", ryxdzbFirl),
      lowBlock<DCplx, double>("ryxzdbFirl", ryxzdbFirl),
      lowOut<SCplx, SCplx>("ryxcFirlOut", ryxcFirlOut),
      lowOut<float, SCplx>("ryxscFirlOut", ryxscFirlOut),
      lowOut<SCplx, float>("ryxcsFirlOut", ryxcsFirlOut),

      init("ryxsFirInit", ryxsFirInit),
      init("ryxcFirInit", ryxcFirInit),
      init("ryxscFirInit", ryxscFirInit),
      init("ryxcsFirInit", ryxcsFirInit),
      init("ryxdFirInit", ryxdFirInit),
      init("ryxzFirInit", ryxzFirInit),
      init("ryxdzFirInit", ryxdzFirInit),
      init("ryxzdFirInit", ryxzdFirInit),
      initMr("ryxsFirInitMr", ryxsFirInitMr),
      initMr("ryxcFirInitMr", ryxcFirInitMr),
      initMr("ryxscFirInitMr", ryxscFirInitMr),
      initMr("ryxcsFirInitMr", ryxcsFirInitMr),
      initMr("ryxdFirInitMr", ryxdFirInitMr),
      initMr("ryxzFirInitMr", ryxzFirInitMr),
      initMr("ryxdzFirInitMr", ryxdzFirInitMr),
      initMr("ryxzdFirInitMr", ryxzdFirInitMr),
      single<float, float>("ryxsFir", ryxsFir),
      single<SCplx, SCplx>("ryxcFir", ryxcFir),
      single<float, SCplx>("ryxscFir", ryxscFir),
      single<SCplx, float>("ryxcsFir", ryxcsFir),
      single<double, double>("ryxdFir", ryxdFir),
      single<DCplx, DCplx>("ryxzFir", ryxzFir),
      single<double, DCplx>("ryxdzFir", ryxdzFir),
      single<DCplx, double>("ryxzdFir", ryxzdFir),
      block<float, float>("ryxsbFir", ryxsbFir),
      block<SCplx, SCplx>("ryxcbFir", ryxcbFir),
      block<float, SCplx>("ryxscbFir", ryxscbFir),
      block<SCplx, float>("ryxcsbFir", ryxcsbFir),
      block<double, double>("ryxdbFir", ryxdbFir),
      block<DCplx, DCplx>("ryxzbFir", ryxzbFir),
      block<double, DCplx>("ryxdzbFir", ryxdzbFir),
      block<DCplx, double>("ryxzdbFir", ryxzdbFir),
      oneOut<SCplx, SCplx>("ryxcFirOut", ryxcFirOut),
      oneOut<float, SCplx>("ryxscFirOut", ryxscFirOut),
      oneOut<SCplx, float>("ryxcsFirOut", ryxcsFirOut),
      row("ryxFirFree", ryxFirFree, firState<float, float>()),
  });
  return rows;
}

const AddRows rows(all());

}  // namespace
}  // namespace hostile
