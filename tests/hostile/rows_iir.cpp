// Rows of the IIR family. Low-level records carry no mark: the caller
// keeps them valid, so they are built by Init (or null; the delay set-up
// also meets an all-zero tap state). The float set-up with iirType 2 takes
// the address of the caller's pointer and allocates tables the caller
// frees: its rows call it through a wrapper that passes that address and
// frees the tables. High-level records carry a mark and are null, zeroed,
// random bytes, freed or live; their set-up also meets live ones, which it
// refuses.
#include <cstddef>

#include "routine_table.h"

namespace hostile {
namespace {

using TS = RyxIirTapState;
using DS = RyxIirDlyState;
using ST = RyxIirState;
constexpr int kLive = 31725;
constexpr int kTypes[] = {0, 1, kEnd};
constexpr int kTypesLow[] = {0, 1, 2, kEnd};

template <class H>
H smallValue(Case& c) {
  const auto v = [&c] { return static_cast<double>(c.in().byte() % 128 - 64) / 64; };
  if constexpr (std::is_same_v<H, SCplx>) return {static_cast<float>(v()), static_cast<float>(v())};
  else if constexpr (std::is_same_v<H, DCplx>) return {v(), v()};
  else return static_cast<H>(v());
}
template <class H>
H unit() {
  if constexpr (std::is_same_v<H, SCplx> || std::is_same_v<H, DCplx>) return {1, 0};
  else return 1;
}

// Taps of a valid filter: order 0..6, or 1..3 sections; leading a0 = 1.
template <class H>
std::vector<H> drawTaps(Case& c, bool cascade, int count) {
  std::vector<H> t(cascade ? 6 * count : 2 * count + 2);
  for (H& v : t) v = smallValue<H>(c);
  if (cascade) {
    for (int q = 0; q < count; ++q) t[6 * q] = t[6 * q + 3] = unit<H>();
  } else {
    t[count + 1] = unit<H>();
  }
  return t;
}

template <class H>
struct SetUp;
template <>
struct SetUp<float> {
  static constexpr auto low = ryxsIirlInit, lowBq = ryxsIirlInitBq;
};
template <>
struct SetUp<SCplx> {
  static constexpr auto low = ryxcIirlInit, lowBq = ryxcIirlInitBq;
};
template <>
struct SetUp<double> {
  static constexpr auto low = ryxdIirlInit, lowBq = ryxdIirlInitBq;
};
template <>
struct SetUp<DCplx> {
  static constexpr auto low = ryxzIirlInit, lowBq = ryxzIirlInitBq;
};

// The caller's side of a low-level set-up: iirType 2 hands over the
// address of a pointer to the taps, and the float forms' tables (any
// pointer other than the taps' own) are the caller's to free.
template <class H, void (*F)(int, H*, int, TS*)>
void lowInit(int iirType, H* taps, int count, TS* ts) {
  if (iirType != 2) return F(iirType, taps, count, ts);
  H* inner = taps;
  F(2, reinterpret_cast<H*>(&inner), count, ts);
  if (inner != taps) ryxFree(inner);
}

// Tap state: null, (when allowed) zeroed, or built from drawn taps kept in
// a block of the case; float tables from iirType 2 are freed at the end.
template <class H, bool ZeroOk>
void buildTaps(Case& c, int arg) {
  const int kind = c.valid ? 1 : c.in().byte() % 6;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  auto* ts = reinterpret_cast<TS*>(recordBlock(c, arg, sizeof(TS))->data);
  if (ZeroOk && kind == 5) return;
  const bool cascade = c.in().byte() % 2;
  const int count = cascade ? 1 + c.in().byte() % 3 : c.in().byte() % 7;
  const std::vector<H> t = drawTaps<H>(c, cascade, count);
  Block* taps = c.newBlock(sizeof(H) * t.size(), 0, true);
  std::memcpy(taps->data, t.data(), taps->bytes);
  const bool tables = std::is_same_v<H, float> || std::is_same_v<H, SCplx> ? c.in().byte() % 3 == 0 : false;
  auto* p = reinterpret_cast<H*>(taps->data);
  if (tables) {
    (cascade ? SetUp<H>::lowBq : SetUp<H>::low)(2, reinterpret_cast<H*>(&p), count, ts);
    c.releases.push_back([ts] { ryxFree(ts->taps); });
  } else {
    (cascade ? SetUp<H>::lowBq : SetUp<H>::low)(c.in().byte() % 2, p, count, ts);
  }
}
template <class H, bool ZeroOk = false>
ArgRule taps() {
  return {Role::kRecord, nullptr, nullptr, -1, buildTaps<H, ZeroOk>};
}

// Delay state of the row's tap state (argument 0): a line of `order`
// elements; with no tap state, an empty record (refused anyway).
template <class D>
void buildDly(Case& c, int arg) {
  if (!c.valid && c.in().byte() % 6 == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  auto* ds = reinterpret_cast<DS*>(recordBlock(c, arg, sizeof(DS))->data);
  const TS* ts = c.record<TS>(0);
  if (ts == nullptr || ts->taps == nullptr) return;
  Block* line = c.newBlock(sizeof(D) * ts->order, 0, true);
  c.in().fill(line->data, line->bytes);
  ds->dlyl = line->data;
}
template <class D>
ArgRule dly() {
  return {Role::kRecord, nullptr, nullptr, -1, buildDly<D>};
}

template <int K>
std::int64_t orderOf(const Case& c) {
  const TS* ts = c.record<TS>(K);
  return ts ? ts->order : 1;
}
template <int K>
std::int64_t arbTaps(const Case& c) {
  return 2 * c.intArg(K) + 2;
}
template <int K>
std::int64_t bqTaps(const Case& c) {
  return 6 * c.intArg(K);
}

// High-level records of sample type S and tap type H.
template <auto Init, auto InitBq, class H>
struct High {
  using R = ST;
  static constexpr std::size_t kMarkAt = offsetof(ST, initMark), kMarkLen = sizeof(int);
  static constexpr bool kFreeable = true;
  static void free(ST* st) { ryxIirFree(st); }
  static void atEnd(ST* st) {
    if (st->initMark == kLive) ryxIirFree(st);
  }
  static void make(Case& c, ST* st) {
    const bool cascade = c.in().byte() % 2;
    const int count = cascade ? 1 + c.in().byte() % 3 : c.in().byte() % 7;
    const std::vector<H> t = drawTaps<H>(c, cascade, count);
    (cascade ? InitBq : Init)(c.in().byte() % 2, t.data(), count, st);
  }
};
using HighS = High<ryxsIirInit, ryxsIirInitBq, float>;
using HighC = High<ryxcIirInit, ryxcIirInitBq, SCplx>;
using HighSC = High<ryxscIirInit, ryxscIirInitBq, SCplx>;
using HighCS = High<ryxcsIirInit, ryxcsIirInitBq, float>;
using HighD = High<ryxdIirInit, ryxdIirInitBq, double>;
using HighZ = High<ryxzIirInit, ryxzIirInitBq, DCplx>;
using HighDZ = High<ryxdzIirInit, ryxdzIirInitBq, DCplx>;
using HighZD = High<ryxzdIirInit, ryxzdIirInitBq, double>;

constexpr const char* kNull = "statePtr==0";
constexpr const char* kDead = "IIR filter wasn't initialized";

template <class K>
ArgRule state() {
  return marked<K>(kNull, kDead);
}

// ---- Shapes ----

template <class H, void (*F)(int, H*, int, TS*), void (*FBq)(int, H*, int, TS*), class D>
std::vector<Row> lowSetUp(const char* const names[3], void (*initDlyl)(const TS*, D*, DS*)) {
  const bool tables = std::is_same_v<H, float> || std::is_same_v<H, SCplx>;
  return {
      tables ? storesAddress(allocating(row(names[0], lowInit<H, F>, choice(kTypesLow), out(arbTaps<2>), len(), out(one))))
             : row(names[0], lowInit<H, F>, choice(kTypesLow), out(arbTaps<2>), len(), out(one)),
      tables ? storesAddress(allocating(row(names[1], lowInit<H, FBq>, choice(kTypesLow), out(bqTaps<2>), len(), out(one))))
             : row(names[1], lowInit<H, FBq>, choice(kTypesLow), out(bqTaps<2>), len(), out(one)),
      row(names[2], initDlyl, taps<H, true>(), out(orderOf<0>), out(one)),
  };
}
template <class H, class D, class S, class O>
Row lowOne(const char* name, O (*f)(const TS*, DS*, S)) {
  return row(name, f, taps<H>(), dly<D>(), value());
}
template <class H, class D, class S, class O>
Row lowBlock(const char* name, void (*f)(const TS*, DS*, const S*, O*, int)) {
  return row(name, f, taps<H>(), dly<D>(), in(arg<4>), out(arg<4>), len());
}
template <class H, class D, class S>
Row lowOut(const char* name, void (*f)(const TS*, DS*, S, SCplx*)) {
  return row(name, f, taps<H>(), dly<D>(), value(), out(one));
}
template <class K, class H>
std::vector<Row> highSetUp(const char* name, const char* nameBq, void (*init)(int, const H*, int, ST*),
                           void (*initBq)(int, const H*, int, ST*)) {
  return {allocating(row(name, init, choice(kTypes), in(arbTaps<2>), len(), marked<K, true>(nullptr, nullptr))),
          allocating(row(nameBq, initBq, choice(kTypes), in(bqTaps<2>), len(), marked<K, true>(nullptr, nullptr)))};
}
template <class K, class S, class O>
Row single(const char* name, O (*f)(ST*, S)) {
  return row(name, f, state<K>(), value());
}
template <class K, class S, class O>
Row block(const char* name, void (*f)(ST*, const S*, O*, int)) {
  return row(name, f, state<K>(), in(arg<3>), out(arg<3>), len());
}
template <class K, class S>
Row oneOut(const char* name, void (*f)(ST*, S, SCplx*)) {
  return row(name, f, state<K>(), value(), out(one));
}

std::vector<Row> all() {
  std::vector<Row> rows;
  auto add = [&rows](std::vector<Row> more) { rows.insert(rows.end(), more.begin(), more.end()); };
  static const char* const s[] = {"ryxsIirlInit", "ryxsIirlInitBq", "ryxsIirlInitDlyl"};
  static const char* const c[] = {"ryxcIirlInit", "ryxcIirlInitBq", "ryxcIirlInitDlyl"};
  static const char* const d[] = {"ryxdIirlInit", "ryxdIirlInitBq", "ryxdIirlInitDlyl"};
  static const char* const z[] = {"ryxzIirlInit", "ryxzIirlInitBq", "ryxzIirlInitDlyl"};
  add(lowSetUp<float, ryxsIirlInit, ryxsIirlInitBq>(s, ryxsIirlInitDlyl));
  add(lowSetUp<SCplx, ryxcIirlInit, ryxcIirlInitBq>(c, ryxcIirlInitDlyl));
  add(lowSetUp<double, ryxdIirlInit, ryxdIirlInitBq>(d, ryxdIirlInitDlyl));
  add(lowSetUp<DCplx, ryxzIirlInit, ryxzIirlInitBq>(z, ryxzIirlInitDlyl));
  add(highSetUp<HighS>("ryxsIirInit", "ryxsIirInitBq", ryxsIirInit, ryxsIirInitBq));
  add(highSetUp<HighC>("ryxcIirInit", "ryxcIirInitBq", ryxcIirInit, ryxcIirInitBq));
  add(highSetUp<HighSC>("ryxscIirInit", "ryxscIirInitBq", ryxscIirInit, ryxscIirInitBq));
  add(highSetUp<HighCS>("ryxcsIirInit", "ryxcsIirInitBq", ryxcsIirInit, ryxcsIirInitBq));
  add(highSetUp<HighD>("ryxdIirInit", "ryxdIirInitBq", ryxdIirInit, ryxdIirInitBq));
  add(highSetUp<HighZ>("ryxzIirInit", "ryxzIirInitBq", ryxzIirInit, ryxzIirInitBq));
  add(highSetUp<HighDZ>("ryxdzIirInit", "ryxdzIirInitBq", ryxdzIirInit, ryxdzIirInitBq));
  add(highSetUp<HighZD>("ryxzdIirInit", "ryxzdIirInitBq", ryxzdIirInit, ryxzdIirInitBq));
  add({
      lowOne<float, float>("ryxsIirl", ryxsIirl),
      lowBlock<float, float>("ryxsbIirl", ryxsbIirl),
      lowOne<SCplx, SCplx>("ryxcIirl", ryxcIirl),
      lowBlock<SCplx, SCplx>("ryxcbIirl", ryxcbIirl),
      lowOut<SCplx, SCplx>("ryxcIirlOut", ryxcIirlOut),
      lowOne<SCplx, SCplx>("ryxscIirl", ryxscIirl),
      lowBlock<SCplx, SCplx>("ryxscbIirl", ryxscbIirl),
      lowOut<SCplx, SCplx>("ryxscIirlOut", ryxscIirlOut),
      lowOne<float, SCplx>("ryxcsIirl", ryxcsIirl),
      lowBlock<float, SCplx>("ryxcsbIirl", ryxcsbIirl),
      lowOut<float, SCplx>("ryxcsIirlOut", ryxcsIirlOut),
      lowOne<double, double>("ryxdIirl", ryxdIirl),
      lowBlock<double, double>("ryxdbIirl", ryxdbIirl),
      lowOne<DCplx, DCplx>("ryxzIirl", ryxzIirl),
      lowBlock<DCplx, DCplx>("ryxzbIirl", ryxzbIirl),
      lowOne<DCplx, DCplx>("ryxdzIirl", ryxdzIirl),
      lowBlock<DCplx, DCplx>("ryxdzbIirl", ryxdzbIirl),
      lowOne<double, DCplx>("ryxzdIirl", ryxzdIirl),
      lowBlock<double, DCplx>("ryxzdbIirl", ryxzdbIirl),

      single<HighS>("ryxsIir", ryxsIir),
      block<HighS>("ryxsbIir", ryxsbIir),
      single<HighC>("ryxcIir", ryxcIir),
      block<HighC>("ryxcbIir", ryxcbIir),
      oneOut<HighC>("ryxcIirOut", ryxcIirOut),
      single<HighSC>("ryxscIir", ryxscIir),
      block<HighSC>("ryxscbIir", ryxscbIir),
      oneOut<HighSC>("ryxscIirOut", ryxscIirOut),
      single<HighCS>("ryxcsIir", ryxcsIir),
      block<HighCS>("ryxcsbIir", ryxcsbIir),
      oneOut<HighCS>("ryxcsIirOut", ryxcsIirOut),
      single<HighD>("ryxdIir", ryxdIir),
      block<HighD>("ryxdbIir", ryxdbIir),
      single<HighZ>("ryxzIir", ryxzIir),
      block<HighZ>("ryxzbIir", ryxzbIir),
      single<HighDZ>("ryxdzIir", ryxdzIir),
      block<HighDZ>("ryxdzbIir", ryxdzbIir),
      single<HighZD>("ryxzdIir", ryxzdIir),
      block<HighZD>("ryxzdbIir", ryxzdbIir),
      row("ryxIirFree", ryxIirFree, state<HighD>()),
  });
  return rows;
}

const AddRows rows(all());

}  // namespace
}  // namespace hostile
