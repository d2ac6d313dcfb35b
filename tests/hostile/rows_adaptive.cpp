// Rows of the LMS family. None of its records carries a mark that random
// bytes could not imitate (the two mode flags), and a freed high-level
// record keeps its flags, so every record is the caller's to keep valid:
// null, or built live by the set-up routines (Init rows: zeroed). Low-level
// lines serve the adaptive forms (adaptB 1), of dlylLen elements; Set and
// GetDlyl move dlylLen-1 samples; a group is downFactor samples. ryxLmsFree
// and the high-level step and leak accessors never test their record.
#include "routine_table.h"

namespace hostile {
namespace {

using TS = RyxLmsTapState;
using DS = RyxLmsDlyState;
using ST = RyxLmsState;

float smallFloat(Case& c) { return static_cast<float>(c.in().byte() % 64) / 512; }

// A valid shape: 1..40 taps, error delay 0..3, decimation 1..4 half the time.
struct LmsShape {
  int taps, errDly, down, phase;
};
LmsShape drawLms(Case& c) {
  LmsShape s{1 + c.in().byte() % 40, c.in().byte() % 4, 1, 0};
  if (c.in().byte() % 2) {
    s.down = 1 + c.in().byte() % 4;
    s.phase = c.in().byte() % s.down;
  }
  return s;
}

// ---- Low-level records ----

template <class H, auto InitMr>
void makeLowTaps(Case& c, TS* ts) {
  const LmsShape s = drawLms(c);
  Block* taps = c.newBlock(sizeof(H) * s.taps, 0, true);
  c.in().fill(taps->data, taps->bytes);
  InitMr(0, reinterpret_cast<H*>(taps->data), s.taps, smallFloat(c), smallFloat(c), s.errDly, s.down, s.phase, ts);
}
void makeLowTapsW(Case& c, TS* ts) {
  const LmsShape s = drawLms(c);
  Block* taps = c.newBlock(sizeof(float) * s.taps, 0, true);
  auto* t = reinterpret_cast<float*>(taps->data);
  for (int i = 0; i < s.taps; ++i) t[i] = smallFloat(c);
  ryxwLmslInit(0, t, s.taps, smallFloat(c), s.errDly, ts);
}
template <class H, auto InitMr>
struct LowTaps {
  using R = TS;
  static void make(Case& c, TS* ts) { makeLowTaps<H, InitMr>(c, ts); }
  static void atEnd(TS*) {}
};
struct LowTapsW {
  using R = TS;
  static void make(Case& c, TS* ts) { makeLowTapsW(c, ts); }
  static void atEnd(TS*) {}
};
using TapS = LowTaps<float, ryxsLmslInitMr>;
using TapD = LowTaps<double, ryxdLmslInitMr>;
using TapC = LowTaps<SCplx, ryxcLmslInitMr>;
using TapZ = LowTaps<DCplx, ryxzLmslInitMr>;

int lineLength(const TS* ts, int adaptB) {
  return ts->tapsLen + (adaptB != 0 ? ts->errDly : 0) + (ts->isMultiRate == 1 ? ts->downFactor : 0);
}

// The delay record of the row's tap record (argument 0): a line for the
// adaptive forms; with no tap record, an empty one (refused anyway).
template <class S, auto InitDlyl>
void buildLowDly(Case& c, int arg) {
  if (!c.valid && c.in().byte() % 6 == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  auto* ds = reinterpret_cast<DS*>(recordBlock(c, arg, sizeof(DS))->data);
  auto* ts = c.record<TS>(0);
  if (ts == nullptr) return;
  Block* line = c.newBlock(sizeof(S) * lineLength(ts, 1), 0, true);
  c.in().fill(line->data, line->bytes);
  if constexpr (std::is_same_v<S, short>) InitDlyl(ts, reinterpret_cast<S*>(line->data), ds);
  else InitDlyl(ts, reinterpret_cast<S*>(line->data), 1, ds);
}
template <class S, auto InitDlyl>
ArgRule lowDly() {
  return {Role::kRecord, nullptr, nullptr, -1, buildLowDly<S, InitDlyl>};
}
ArgRule dlyS() { return lowDly<float, ryxsLmslInitDlyl>(); }
ArgRule dlyD() { return lowDly<double, ryxdLmslInitDlyl>(); }
ArgRule dlyC() { return lowDly<SCplx, ryxcLmslInitDlyl>(); }
ArgRule dlyZ() { return lowDly<DCplx, ryxzLmslInitDlyl>(); }
ArgRule dlyW() { return lowDly<short, ryxwLmslInitDlyl>(); }

// Sizes read from the low-level records.
template <int K>
std::int64_t tapsLenOf(const Case& c) {
  const TS* ts = c.record<TS>(K);
  return ts ? ts->tapsLen : 1;
}
template <int K>
std::int64_t downOf(const Case& c) {
  const TS* ts = c.record<TS>(K);
  return ts ? ts->downFactor : 1;
}
template <int K, int N>
std::int64_t groupsOf(const Case& c) {
  return c.intArg(N) * downOf<K>(c);
}
template <int K>
std::int64_t lineOf(const Case& c) {
  const DS* ds = c.record<DS>(K);
  return ds ? ds->dlylLen - 1 : 1;
}
// The line InitDlyl is given: of the length it will record.
std::int64_t initLine(const Case& c) {
  const TS* ts = c.record<TS>(0);
  return ts ? lineLength(ts, static_cast<int>(c.intArg(2))) : 1;
}

// ---- High-level records ----

template <class S, class H, auto InitMr>
struct High {
  using R = ST;
  static void make(Case& c, ST* st) {
    const LmsShape s = drawLms(c);
    std::vector<H> taps(s.taps);
    std::vector<S> line(s.taps + s.errDly + s.down);
    c.in().fill(taps.data(), taps.size() * sizeof(H));
    c.in().fill(line.data(), line.size() * sizeof(S));
    const bool given = c.in().byte() % 4 != 0;
    InitMr(0, given ? taps.data() : nullptr, s.taps, given ? line.data() : nullptr, smallFloat(c), smallFloat(c),
           s.errDly, s.down, s.phase, st);
  }
  static void atEnd(ST* st) { ryxLmsFree(st); }
};
using HighS = High<float, float, ryxsLmsInitMr>;
using HighD = High<double, double, ryxdLmsInitMr>;
using HighC = High<SCplx, SCplx, ryxcLmsInitMr>;
using HighZ = High<DCplx, DCplx, ryxzLmsInitMr>;
using HighSC = High<float, SCplx, ryxscLmsInitMr>;
using HighDZ = High<double, DCplx, ryxdzLmsInitMr>;

template <int K>
std::int64_t stTaps(const Case& c) {
  const ST* st = c.record<ST>(K);
  return st ? st->tapSt.tapsLen : 1;
}
template <int K>
std::int64_t stDown(const Case& c) {
  const ST* st = c.record<ST>(K);
  return st ? st->tapSt.downFactor : 1;
}
template <int K, int N>
std::int64_t stGroups(const Case& c) {
  return c.intArg(N) * stDown<K>(c);
}
template <int K>
std::int64_t stLine(const Case& c) {
  const ST* st = c.record<ST>(K);
  return st ? st->dlySt.dlylLen - 1 : 1;
}
// The caller's line at set-up: dlylLen - 1 from the arguments.
template <int Down>
std::int64_t setUpLine(const Case& c) {
  const std::int64_t down = Down < 0 ? 1 : c.intArg(Down);
  return c.intArg(2) + c.intArg(6) + (down > 1 ? down : 0) - 1;
}

// ---- Shapes ----

template <class H, class... P>
Row lowInit(const char* name, void (*f)(int, H*, int, float, float, int, P...)) {
  if constexpr (sizeof...(P) == 1)
    return row(name, f, anyInt(), out(arg<2>), len(), value(), value(), len(), out(one));
  else
    return row(name, f, anyInt(), out(arg<2>), len(), value(), value(), len(), factor(), phase<6>(), out(one));
}
template <class K, class S>
Row lowInitDlyl(const char* name, void (*f)(TS*, S*, int, DS*)) {
  return row(name, f, kept<K>(), out(initLine), anyInt(), out(one));
}
template <class K, class S, class E, class O>
Row lowOne(const char* name, O (*f)(TS*, DS*, S, E), ArgRule dly) {
  return row(name, f, kept<K>(), dly, value(), value());
}
template <class K, class S, class E, class O>
Row lowGroup(const char* name, O (*f)(TS*, DS*, const S*, E), ArgRule dly) {
  return row(name, f, kept<K>(), dly, in(downOf<0>), value());
}
template <class K, class S, class E>
Row lowOneOut(const char* name, void (*f)(TS*, DS*, S, E, SCplx*), ArgRule dly) {
  return row(name, f, kept<K>(), dly, value(), value(), out(one));
}
template <class K, class S, class E>
Row lowGroupOut(const char* name, void (*f)(TS*, DS*, const S*, E, SCplx*), ArgRule dly) {
  return row(name, f, kept<K>(), dly, in(downOf<0>), value(), out(one));
}
template <class K, class S, class O>
Row na(const char* name, O (*f)(TS*, DS*, S), ArgRule dly) {
  return row(name, f, kept<K>(), dly, value());
}
template <class K, class S>
Row naOut(const char* name, void (*f)(TS*, DS*, S, SCplx*), ArgRule dly) {
  return row(name, f, kept<K>(), dly, value(), out(one));
}
template <class K, class S, class O>
Row naBlock(const char* name, void (*f)(TS*, DS*, const S*, O*, int), ArgRule dly) {
  return row(name, f, kept<K>(), dly, in(groupsOf<0, 4>), out(arg<4>), len());
}
template <class K, class T>
std::vector<Row> lowAccess(const char* const names[4], void (*getTaps)(TS*, T*), void (*setTaps)(const T*, TS*),
                           void (*getDlyl)(TS*, DS*, T*), void (*setDlyl)(TS*, const T*, DS*), ArgRule dly) {
  return {row(names[0], getTaps, kept<K>(), out(tapsLenOf<0>)), row(names[1], setTaps, in(tapsLenOf<1>), kept<K>()),
          row(names[2], getDlyl, kept<K>(), dly, out(lineOf<1>)), row(names[3], setDlyl, kept<K>(), in(lineOf<2>), dly)};
}

template <class K, class S, class H>
std::vector<Row> highInit(const char* name, const char* nameMr,
                          void (*init)(int, const H*, int, const S*, float, float, int, ST*),
                          void (*initMr)(int, const H*, int, const S*, float, float, int, int, int, ST*)) {
  return {allocating(row(name, init, anyInt(), in(arg<2>), len(), in(setUpLine<-1>), value(), value(), len(),
                         kept<K, true>())),
          allocating(row(nameMr, initMr, anyInt(), in(arg<2>), len(), in(setUpLine<7>), value(), value(), len(),
                         factor(), phase<7>(), kept<K, true>()))};
}
template <class K, class S, class E, class O>
Row high(const char* name, O (*f)(ST*, S, E)) {
  return row(name, f, kept<K>(), value(), value());
}
template <class K, class S, class E, class O>
Row highGroup(const char* name, O (*f)(ST*, const S*, E)) {
  return row(name, f, kept<K>(), in(stDown<0>), value());
}
template <class K, class S, class E>
Row highOut(const char* name, void (*f)(ST*, S, E, SCplx*)) {
  return row(name, f, kept<K>(), value(), value(), out(one));
}
template <class K, class S, class E>
Row highGroupOut(const char* name, void (*f)(ST*, const S*, E, SCplx*)) {
  return row(name, f, kept<K>(), in(stDown<0>), value(), out(one));
}
template <class K, class S, class D, class O>
Row desBlock(const char* name, void (*f)(ST*, const S*, const D*, O*, int)) {
  return row(name, f, kept<K>(), in(stGroups<0, 4>), in(arg<4>), out(arg<4>), len());
}
template <class K, class T>
std::vector<Row> highAccess(const char* const names[4], void (*getTaps)(ST*, T*), void (*setTaps)(const T*, ST*),
                            void (*getDlyl)(ST*, T*), void (*setDlyl)(ST*, const T*)) {
  return {row(names[0], getTaps, kept<K>(), out(stTaps<0>)), row(names[1], setTaps, in(stTaps<1>), kept<K>()),
          row(names[2], getDlyl, kept<K>(), out(stLine<0>)), row(names[3], setDlyl, kept<K>(), in(stLine<0>))};
}
template <class K, class T>
std::vector<Row> errVal(const char* get, T (*g)(const ST*), const char* set, void (*s)(T, ST*)) {
  return {row(get, g, kept<K>()), row(set, s, value(), kept<K>())};
}

std::vector<Row> all() {
  std::vector<Row> rows;
  auto add = [&rows](std::vector<Row> more) { rows.insert(rows.end(), more.begin(), more.end()); };
  add({
      lowInit("ryxsLmslInit", ryxsLmslInit),
      lowInit("ryxdLmslInit", ryxdLmslInit),
      lowInit("ryxcLmslInit", ryxcLmslInit),
      lowInit("ryxzLmslInit", ryxzLmslInit),
      lowInit("ryxsLmslInitMr", ryxsLmslInitMr),
      lowInit("ryxdLmslInitMr", ryxdLmslInitMr),
      lowInit("ryxcLmslInitMr", ryxcLmslInitMr),
      lowInit("ryxzLmslInitMr", ryxzLmslInitMr),
      lowInitDlyl<TapS>("ryxsLmslInitDlyl", ryxsLmslInitDlyl),
      lowInitDlyl<TapD>("ryxdLmslInitDlyl", ryxdLmslInitDlyl),
      lowInitDlyl<TapC>("ryxcLmslInitDlyl", ryxcLmslInitDlyl),
      lowInitDlyl<TapZ>("ryxzLmslInitDlyl", ryxzLmslInitDlyl),
      row("ryxsLmslGetStep", ryxsLmslGetStep, kept<TapS>()),
      row("ryxsLmslGetLeak", ryxsLmslGetLeak, kept<TapD>()),
      row("ryxsLmslSetStep", ryxsLmslSetStep, value(), kept<TapC>()),
      row("ryxsLmslSetLeak", ryxsLmslSetLeak, value(), kept<TapZ>()),
      lowOne<TapS>("ryxsLmsl", ryxsLmsl, dlyS()),
      lowOne<TapD>("ryxdLmsl", ryxdLmsl, dlyD()),
      lowOne<TapC>("ryxcLmsl", ryxcLmsl, dlyC()),
      lowOne<TapZ>("ryxzLmsl", ryxzLmsl, dlyZ()),
      lowOne<TapC>("ryxscLmsl", ryxscLmsl, dlyS()),
      lowOne<TapZ>("ryxdzLmsl", ryxdzLmsl, dlyD()),
      lowGroup<TapS>("ryxsbLmsl", ryxsbLmsl, dlyS()),
      lowGroup<TapD>("ryxdbLmsl", ryxdbLmsl, dlyD()),
      lowGroup<TapC>("ryxcbLmsl", ryxcbLmsl, dlyC()),
      lowGroup<TapZ>("ryxzbLmsl", ryxzbLmsl, dlyZ()),
      lowGroup<TapC>("ryxscbLmsl", ryxscbLmsl, dlyS()),
      lowGroup<TapZ>("ryxdzbLmsl", ryxdzbLmsl, dlyD()),
      lowOneOut<TapC>("ryxcLmslOut", ryxcLmslOut, dlyC()),
      lowOneOut<TapC>("ryxscLmslOut", ryxscLmslOut, dlyS()),
      lowGroupOut<TapC>("ryxcbLmslOut", ryxcbLmslOut, dlyC()),
      lowGroupOut<TapC>("ryxscbLmslOut", ryxscbLmslOut, dlyS()),
      na<TapS>("ryxsLmslNa", ryxsLmslNa, dlyS()),
      na<TapD>("ryxdLmslNa", ryxdLmslNa, dlyD()),
      na<TapC>("ryxcLmslNa", ryxcLmslNa, dlyC()),
      na<TapZ>("ryxzLmslNa", ryxzLmslNa, dlyZ()),
      na<TapC>("ryxscLmslNa", ryxscLmslNa, dlyS()),
      na<TapS>("ryxcsLmslNa", ryxcsLmslNa, dlyC()),
      na<TapZ>("ryxdzLmslNa", ryxdzLmslNa, dlyD()),
      na<TapD>("ryxzdLmslNa", ryxzdLmslNa, dlyZ()),
      naOut<TapC>("ryxcLmslNaOut", ryxcLmslNaOut, dlyC()),
      naOut<TapC>("ryxscLmslNaOut", ryxscLmslNaOut, dlyS()),
      naOut<TapS>("ryxcsLmslNaOut", ryxcsLmslNaOut, dlyC()),
      naBlock<TapS>("ryxsbLmslNa", ryxsbLmslNa, dlyS()),
      naBlock<TapD>("ryxdbLmslNa", ryxdbLmslNa, dlyD()),
      naBlock<TapC>("ryxcbLmslNa", ryxcbLmslNa, dlyC()),
      naBlock<TapZ>("ryxzbLmslNa", ryxzbLmslNa, dlyZ()),
      naBlock<TapC>("ryxscbLmslNa", ryxscbLmslNa, dlyS()),
      naBlock<TapS>("ryxcsbLmslNa", ryxcsbLmslNa, dlyC()),
      naBlock<TapZ>("ryxdzbLmslNa", ryxdzbLmslNa, dlyD()),
      naBlock<TapD>("ryxzdbLmslNa", ryxzdbLmslNa, dlyZ()),
  });
  static const char* const ls[] = {"ryxsLmslGetTaps", "ryxsLmslSetTaps", "ryxsLmslGetDlyl", "ryxsLmslSetDlyl"};
  static const char* const ld[] = {"ryxdLmslGetTaps", "ryxdLmslSetTaps", "ryxdLmslGetDlyl", "ryxdLmslSetDlyl"};
  static const char* const lc[] = {"ryxcLmslGetTaps", "ryxcLmslSetTaps", "ryxcLmslGetDlyl", "ryxcLmslSetDlyl"};
  static const char* const lz[] = {"ryxzLmslGetTaps", "ryxzLmslSetTaps", "ryxzLmslGetDlyl", "ryxzLmslSetDlyl"};
  add(lowAccess<TapS>(ls, ryxsLmslGetTaps, ryxsLmslSetTaps, ryxsLmslGetDlyl, ryxsLmslSetDlyl, dlyS()));
  add(lowAccess<TapD>(ld, ryxdLmslGetTaps, ryxdLmslSetTaps, ryxdLmslGetDlyl, ryxdLmslSetDlyl, dlyD()));
  add(lowAccess<TapC>(lc, ryxcLmslGetTaps, ryxcLmslSetTaps, ryxcLmslGetDlyl, ryxcLmslSetDlyl, dlyC()));
  add(lowAccess<TapZ>(lz, ryxzLmslGetTaps, ryxzLmslSetTaps, ryxzLmslGetDlyl, ryxzLmslSetDlyl, dlyZ()));
  add({
      row("ryxwLmslInit", ryxwLmslInit, anyInt(), out(arg<2>), len(), value(), len(), out(one)),
      row("ryxwLmslInitDlyl", ryxwLmslInitDlyl, kept<LowTapsW>(), out(initLine), out(one)),
      row("ryxwLmslGetStep", ryxwLmslGetStep, kept<LowTapsW>()),
      row("ryxwLmslSetStep", ryxwLmslSetStep, value(), kept<LowTapsW>()),
      row("ryxwLmsl", ryxwLmsl, kept<LowTapsW>(), dlyW(), value(), value()),
      row("ryxwLmslGetTaps", ryxwLmslGetTaps, kept<LowTapsW>(), out(tapsLenOf<0>)),
      row("ryxwLmslSetTaps", ryxwLmslSetTaps, in(tapsLenOf<1>), kept<LowTapsW>()),
      row("ryxwLmslGetDlyl", ryxwLmslGetDlyl, kept<LowTapsW>(), dlyW(), out(lineOf<1>)),
      row("ryxwLmslSetDlyl", ryxwLmslSetDlyl, kept<LowTapsW>(), in(lineOf<2>), dlyW()),
  });

  add(highInit<HighS>("ryxsLmsInit", "ryxsLmsInitMr", ryxsLmsInit, ryxsLmsInitMr));
  add(highInit<HighD>("ryxdLmsInit", "ryxdLmsInitMr", ryxdLmsInit, ryxdLmsInitMr));
  add(highInit<HighC>("ryxcLmsInit", "ryxcLmsInitMr", ryxcLmsInit, ryxcLmsInitMr));
  add(highInit<HighZ>("ryxzLmsInit", "ryxzLmsInitMr", ryxzLmsInit, ryxzLmsInitMr));
  add(highInit<HighSC>("ryxscLmsInit", "ryxscLmsInitMr", ryxscLmsInit, ryxscLmsInitMr));
  add(highInit<HighDZ>("ryxdzLmsInit", "ryxdzLmsInitMr", ryxdzLmsInit, ryxdzLmsInitMr));
  add({
      row("ryxLmsFree", ryxLmsFree, kept<HighS, false, false>()),  // never tests for null
      high<HighS>("ryxsLms", ryxsLms),
      high<HighD>("ryxdLms", ryxdLms),
      high<HighC>("ryxcLms", ryxcLms),
      high<HighZ>("ryxzLms", ryxzLms),
      high<HighSC>("ryxscLms", ryxscLms),
      high<HighDZ>("ryxdzLms", ryxdzLms),
      highGroup<HighS>("ryxsbLms", ryxsbLms),
      highGroup<HighD>("ryxdbLms", ryxdbLms),
      highGroup<HighC>("ryxcbLms", ryxcbLms),
      highGroup<HighZ>("ryxzbLms", ryxzbLms),
      highGroup<HighSC>("ryxscbLms", ryxscbLms),
      highGroup<HighDZ>("ryxdzbLms", ryxdzbLms),
      highOut<HighC>("ryxcLmsOut", ryxcLmsOut),
      highOut<HighSC>("ryxscLmsOut", ryxscLmsOut),
      highGroupOut<HighC>("ryxcbLmsOut", ryxcbLmsOut),
      highGroupOut<HighSC>("ryxscbLmsOut", ryxscbLmsOut),
      high<HighS>("ryxsLmsDes", ryxsLmsDes),
      high<HighD>("ryxdLmsDes", ryxdLmsDes),
      high<HighC>("ryxcLmsDes", ryxcLmsDes),
      high<HighZ>("ryxzLmsDes", ryxzLmsDes),
      high<HighSC>("ryxscLmsDes", ryxscLmsDes),
      high<HighDZ>("ryxdzLmsDes", ryxdzLmsDes),
      highOut<HighC>("ryxcLmsDesOut", ryxcLmsDesOut),
      highOut<HighSC>("ryxscLmsDesOut", ryxscLmsDesOut),
      desBlock<HighS>("ryxsbLmsDes", ryxsbLmsDes),
      desBlock<HighD>("ryxdbLmsDes", ryxdbLmsDes),
      desBlock<HighC>("ryxcbLmsDes", ryxcbLmsDes),
      desBlock<HighZ>("ryxzbLmsDes", ryxzbLmsDes),
      desBlock<HighSC>("ryxscbLmsDes", ryxscbLmsDes),
      desBlock<HighDZ>("ryxdzbLmsDes", ryxdzbLmsDes),
      row("ryxcLmsGetErrValOut", ryxcLmsGetErrValOut, kept<HighC>(), out(one)),
      row("ryxsLmsGetStep", ryxsLmsGetStep, kept<HighS, false, false>()),
      row("ryxsLmsGetLeak", ryxsLmsGetLeak, kept<HighD, false, false>()),
      row("ryxsLmsSetStep", ryxsLmsSetStep, value(), kept<HighC, false, false>()),
      row("ryxsLmsSetLeak", ryxsLmsSetLeak, value(), kept<HighZ, false, false>()),
  });
  add(errVal<HighS>("ryxsLmsGetErrVal", ryxsLmsGetErrVal, "ryxsLmsSetErrVal", ryxsLmsSetErrVal));
  add(errVal<HighD>("ryxdLmsGetErrVal", ryxdLmsGetErrVal, "ryxdLmsSetErrVal", ryxdLmsSetErrVal));
  add(errVal<HighC>("ryxcLmsGetErrVal", ryxcLmsGetErrVal, "ryxcLmsSetErrVal", ryxcLmsSetErrVal));
  add(errVal<HighZ>("ryxzLmsGetErrVal", ryxzLmsGetErrVal, "ryxzLmsSetErrVal", ryxzLmsSetErrVal));
  static const char* const hs[] = {"ryxsLmsGetTaps", "ryxsLmsSetTaps", "ryxsLmsGetDlyl", "ryxsLmsSetDlyl"};
  static const char* const hd[] = {"ryxdLmsGetTaps", "ryxdLmsSetTaps", "ryxdLmsGetDlyl", "ryxdLmsSetDlyl"};
  static const char* const hc[] = {"ryxcLmsGetTaps", "ryxcLmsSetTaps", "ryxcLmsGetDlyl", "ryxcLmsSetDlyl"};
  static const char* const hz[] = {"ryxzLmsGetTaps", "ryxzLmsSetTaps", "ryxzLmsGetDlyl", "ryxzLmsSetDlyl"};
  add(highAccess<HighS>(hs, ryxsLmsGetTaps, ryxsLmsSetTaps, ryxsLmsGetDlyl, ryxsLmsSetDlyl));
  add(highAccess<HighD>(hd, ryxdLmsGetTaps, ryxdLmsSetTaps, ryxdLmsGetDlyl, ryxdLmsSetDlyl));
  add(highAccess<HighC>(hc, ryxcLmsGetTaps, ryxcLmsSetTaps, ryxcLmsGetDlyl, ryxcLmsSetDlyl));
  add(highAccess<HighZ>(hz, ryxzLmsGetTaps, ryxzLmsSetTaps, ryxzLmsGetDlyl, ryxzLmsSetDlyl));
  return rows;
}

const AddRows rows(all());

}  // namespace
}  // namespace hostile
