// Rows of the 16-bit filters. Their records are those of the float forms,
// built here by the 16-bit set-up routines: low-level tap states by
// ryxwFirlInitMr or ryxwIirlInit/InitBq (or null; all zero where a routine
// must refuse one), delay states for the row's tap state, high-level
// records null, zeroed, random bytes, freed or live. The 16-bit FIR Init
// does not release a live record, so its rows meet only records that hold
// nothing; the IIR Init refuses a live one.
#include <cmath>

#include "routine_table.h"
#include "ryxcore/filter_int16.h"

namespace hostile {
namespace {

using TS = RyxFirTapState;
using DS = RyxFirDlyState;
using FS = RyxFirState;

struct Shape16 {
  int taps, up, upPhase, down, downPhase;
};
Shape16 drawShape(Case& c) {
  Shape16 s{1 + c.in().byte() % 40, 1, 0, 1, 0};
  if (c.in().byte() % 2) {
    s.up = 1 + c.in().byte() % 4;
    s.down = 1 + c.in().byte() % 4;
    s.upPhase = c.in().byte() % s.up;
    s.downPhase = c.in().byte() % s.down;
  }
  return s;
}

template <bool kZeroOk>
void buildTap(Case& c, int arg) {
  const int kind = c.valid ? 1 : c.in().byte() % 6;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  Block* blk = c.newBlock(sizeof(TS), 0, true);
  blk->record = true;
  auto* ts = reinterpret_cast<TS*>(blk->data);
  std::memset(ts, 0, sizeof *ts);
  c.ptrs[arg] = ts;
  if (kZeroOk && kind == 5) return;
  const Shape16 s = drawShape(c);
  Block* taps = c.newBlock(sizeof(float) * s.taps, 0, true);
  c.in().fill(taps->data, taps->bytes);
  ryxwFirlInitMr(reinterpret_cast<float*>(taps->data), s.taps, s.up, s.upPhase, s.down, s.downPhase, ts);
}

void buildDly(Case& c, int arg) {
  const int kind = c.valid ? 1 : c.in().byte() % 5;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  auto* ts = static_cast<TS*>(c.ptrs[0]);
  TS own{};
  float tap[1] = {1.0f};
  if (ts == nullptr) {
    ryxwFirlInit(tap, 1, &own);
    ts = &own;
  }
  Block* blk = c.newBlock(sizeof(DS), 0, true);
  blk->record = true;
  auto* ds = reinterpret_cast<DS*>(blk->data);
  c.ptrs[arg] = ds;
  Block* line = c.newBlock(sizeof(short) * (ts->tapsLen + 1), 0, true);
  c.in().fill(line->data, line->bytes);
  ryxwFirlInitDlyl(ts, reinterpret_cast<short*>(line->data), ds);
  if (kind != 4) ryxwFirlSetDlyl(ts, nullptr, ds);
}

template <bool kForInit>
void buildState(Case& c, int arg) {
  if (kForInit) c.initRow = true;
  const int kind = c.valid ? (kForInit ? 1 : 4) : c.in().byte() % (kForInit ? 4 : 6);
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  Block* blk = c.newBlock(sizeof(FS), 0, true);
  blk->record = true;
  auto* st = reinterpret_cast<FS*>(blk->data);
  std::memset(st, 0, sizeof *st);
  c.ptrs[arg] = st;
  c.liveStates.push_back(st);
  if (kind == 1) return;
  if (kind == 2) {
    c.in().fill(st, sizeof *st);
    if (st->initMark == st) st->initMark = nullptr;
    return;
  }
  const Shape16 s = drawShape(c);
  std::vector<float> taps(s.taps);
  c.in().fill(taps.data(), taps.size() * sizeof(float));
  ryxwFirInitMr(taps.data(), s.taps, nullptr, s.up, s.upPhase, s.down, s.downPhase, st);
  if (kind == 3) ryxFirFree(st);
}

ArgRule tap() { return {Role::kRecord, nullptr, nullptr, -1, buildTap<false>}; }
ArgRule tapOrZero() { return {Role::kRecord, nullptr, nullptr, -1, buildTap<true>}; }
ArgRule dly() { return {Role::kRecord, nullptr, nullptr, -1, buildDly}; }
ArgRule state() { return {Role::kRecord, nullptr, nullptr, -1, buildState<false>}; }
ArgRule stateForInit() { return {Role::kRecord, nullptr, nullptr, -1, buildState<true>}; }

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
constexpr SizeFn origOf = field<FS, &FS::origTapsLen, K>;

// ---- IIR records ----

// Random taps of a random shape: arbitrary order 0..8 or 1..3 sections
// (a zero a0 or b0 leaves the record as zeroed, which is refused later).
void initIirTaps(Case& c, RyxIirTapState* ts, bool cascade) {
  const int count = cascade ? 1 + c.in().byte() % 3 : c.in().byte() % 9;
  std::vector<float> taps(cascade ? 6 * count : 2 * count + 2);
  c.in().fill(taps.data(), taps.size() * sizeof(float));
  Block* own = c.newBlock(taps.size() * sizeof(float), 0, true);
  std::memcpy(own->data, taps.data(), own->bytes);
  if (cascade) ryxwIirlInitBq(0, reinterpret_cast<float*>(own->data), count, ts);
  else ryxwIirlInit(0, reinterpret_cast<float*>(own->data), count, ts);
  ryxSetErrStatus(RYX_StsOk);
}

void buildIirTap(Case& c, int arg) {
  const int kind = c.valid ? 1 : c.in().byte() % 5;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  Block* blk = c.newBlock(sizeof(RyxIirTapState), 0, true);
  blk->record = true;
  auto* ts = reinterpret_cast<RyxIirTapState*>(blk->data);
  std::memset(ts, 0, sizeof *ts);
  c.ptrs[arg] = ts;
  if (kind != 4) initIirTaps(c, ts, kind == 2);
}

// A delay state of order + 1 elements for the row's tap state (its first
// argument), or one never set up (all zero).
void buildIirDly(Case& c, int arg) {
  const int kind = c.valid ? 1 : c.in().byte() % 4;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  Block* blk = c.newBlock(sizeof(RyxIirDlyState), 0, true);
  blk->record = true;
  auto* ds = reinterpret_cast<RyxIirDlyState*>(blk->data);
  std::memset(ds, 0, sizeof *ds);
  c.ptrs[arg] = ds;
  const auto* ts = static_cast<const RyxIirTapState*>(c.ptrs[0]);
  if (kind == 3 || ts == nullptr || ts->taps == nullptr) return;
  Block* line = c.newBlock(sizeof(int) * (ts->order + 1), 0, true);
  ryxwIirlInitDlyl(ts, reinterpret_cast<int*>(line->data), ds);
  c.in().fill(line->data, line->bytes);
}

template <bool kForInit>
void buildIirState(Case& c, int arg) {
  if (kForInit) c.initRow = true;
  const int kind = c.valid ? (kForInit ? 1 : 4) : c.in().byte() % 6;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  Block* blk = c.newBlock(sizeof(RyxIirState), 0, true);
  blk->record = true;
  auto* st = reinterpret_cast<RyxIirState*>(blk->data);
  std::memset(st, 0, sizeof *st);
  c.ptrs[arg] = st;
  c.releases.push_back([st] {
    if (st->initMark == 31725) ryxIirFree(st);
  });
  if (kind == 1) return;
  if (kind == 2) {
    c.in().fill(st, sizeof *st);
    if (st->initMark == 31725) st->initMark = 0;
    return;
  }
  const bool cascade = c.in().byte() % 2;
  const int count = cascade ? 1 + c.in().byte() % 3 : c.in().byte() % 9;
  std::vector<float> taps(cascade ? 6 * count : 2 * count + 2);
  c.in().fill(taps.data(), taps.size() * sizeof(float));
  // Leads of one so that the record comes up live.
  if (cascade) {
    for (int q = 0; q < count; ++q) taps[6 * q] = taps[6 * q + 3] = 1.0f;
    ryxwIirInitBq(0, taps.data(), count, st);
  } else {
    taps[count + 1] = 1.0f;
    ryxwIirInit(0, taps.data(), count, st);
  }
  ryxSetErrStatus(RYX_StsOk);
  if (kind == 3) ryxIirFree(st);
}

ArgRule iirTap() { return {Role::kRecord, nullptr, nullptr, -1, buildIirTap}; }
ArgRule iirDly() { return {Role::kRecord, nullptr, nullptr, -1, buildIirDly}; }
ArgRule iirState() { return {Role::kRecord, nullptr, nullptr, -1, buildIirState<false>}; }
ArgRule iirStateForInit() { return {Role::kRecord, nullptr, nullptr, -1, buildIirState<true>}; }

// Tap arrays of Init: 2*order+2 floats, or 6 a section; under iirType 2
// the argument is the address of a pointer, which these rows do not make.
std::int64_t arbTaps(const Case& c) { return 2 * c.intArg(2) + 2; }
std::int64_t bqTaps(const Case& c) { return 6 * c.intArg(2); }
std::int64_t iirOrder(const Case& c) {
  const auto* ts = c.record<RyxIirTapState>(0);
  return ts ? ts->order + 1 : 1;
}

// The set-ups get a copy of the harness's tap array with leads of one, so
// that valid arguments make a working filter (zero leads and a negative
// gain, given here as its magnitude, are refused, and tested, elsewhere);
// under iirType 2 the low-level forms get the address of a pointer to it,
// as the caller must give it.
struct TapCopy {
  std::vector<float> t;
  float* p = nullptr;
  TapCopy(const float* taps, std::int64_t count, bool cascade, std::int64_t n) {
    if (taps == nullptr || n < 0 || count <= 0) return;
    t.assign(taps, taps + count);
    for (std::int64_t q = 0; cascade && q < n; ++q) t[6 * q] = t[6 * q + 3] = 1.0f;
    if (!cascade) t[n + 1] = 1.0f;
    p = t.data();
  }
  float* arg(int type) { return p == nullptr ? nullptr : type == 2 ? reinterpret_cast<float*>(&p) : p; }
};

void lowInit(int type, float* taps, int order, RyxIirTapState* ts) {
  TapCopy c(taps, 2 * std::int64_t{order} + 2, false, order);
  ryxwIirlInit(type, c.arg(type), order, ts);
}
void lowInitGain(int type, float* taps, int order, RyxIirTapState* ts, float gain, int range) {
  TapCopy c(taps, 2 * std::int64_t{order} + 2, false, order);
  ryxwIirlInitGain(type, c.arg(type), order, ts, std::fabs(gain), range);
}
void lowInitBq(int type, float* taps, int numQuads, RyxIirTapState* ts) {
  TapCopy c(taps, 6 * std::int64_t{numQuads}, true, numQuads);
  ryxwIirlInitBq(type, c.arg(type), numQuads, ts);
}
void highInit(int type, const float* taps, int order, RyxIirState* st) {
  TapCopy c(taps, 2 * std::int64_t{order} + 2, false, order);
  ryxwIirInit(type, c.p, order, st);
}
void highInitGain(int type, const float* taps, int order, RyxIirState* st, float gain, int range) {
  TapCopy c(taps, 2 * std::int64_t{order} + 2, false, order);
  ryxwIirInitGain(type, c.p, order, st, std::fabs(gain), range);
}
void highInitBq(int type, const float* taps, int numQuads, RyxIirState* st) {
  TapCopy c(taps, 6 * std::int64_t{numQuads}, true, numQuads);
  ryxwIirInitBq(type, c.p, numQuads, st);
}

constexpr int kLowTypes[] = {1, 2, 0};  // 0 comes as junk
constexpr int kHighTypes[] = {1, 0};

std::vector<Row> all() {
  return {
      row("ryxwFirlInit", ryxwFirlInit, out(arg<1>), len(), out(one)),
      row("ryxwFirlInitMr", ryxwFirlInitMr, out(arg<1>), len(), factor(), phase<2>(), factor(), phase<4>(), out(one)),
      row("ryxwFirlInitDlyl", ryxwFirlInitDlyl, tapOrZero(), out(tapsOf<0>), out(one)),
      row("ryxwFirlSetTaps", ryxwFirlSetTaps, in(tapsOf<1>), tap()),
      row("ryxwFirlGetTaps", ryxwFirlGetTaps, tap(), out(tapsOf<0>)),
      row("ryxwFirlSetDlyl", ryxwFirlSetDlyl, tap(), in(lineOf<2>), dly()),
      row("ryxwFirlGetDlyl", ryxwFirlGetDlyl, tap(), dly(), out(lineOf<1>)),
      row("ryxwFirl", ryxwFirl, tap(), dly(), value(), scaleMode(), out(one)),
      allocating(row("ryxwbFirl", ryxwbFirl, tap(), dly(), in(times<TS, &TS::downFactor, 0, 4>),
                     out(times<TS, &TS::upFactor, 0, 4>), len(), scaleMode(), out(one))),
      allocating(row("ryxwFirInit", ryxwFirInit, in(arg<1>), len(), in(arg<1>), stateForInit())),
      allocating(row("ryxwFirInitMr", ryxwFirInitMr, in(arg<1>), len(), in(arg<1>), factor(), phase<3>(), factor(),
                     phase<5>(), stateForInit())),
      row("ryxwFirSetTaps", ryxwFirSetTaps, in(origOf<1>), state()),
      row("ryxwFirGetTaps", ryxwFirGetTaps, state(), out(origOf<0>)),
      row("ryxwFirSetDlyl", ryxwFirSetDlyl, in(origOf<1>), state()),
      row("ryxwFirGetDlyl", ryxwFirGetDlyl, state(), out(origOf<0>)),
      row("ryxwFir", ryxwFir, state(), value(), scaleMode(), out(one)),
      row("ryxwbFir", ryxwbFir, state(), in(times<FS, &FS::downFactor, 0, 3>), out(times<FS, &FS::upFactor, 0, 3>),
          len(), scaleMode(), out(one)),

      storesAddress(allocating(row("ryxwIirlInit", lowInit, flags(kLowTypes), io(arbTaps), len(), out(one)))),
      storesAddress(allocating(row("ryxwIirlInitGain", lowInitGain, flags(kLowTypes), io(arbTaps), len(), out(one), value(),
                     anyInt()))),
      storesAddress(allocating(row("ryxwIirlInitBq", lowInitBq, flags(kLowTypes), io(bqTaps), len(), out(one)))),
      row("ryxwIirlInitDlyl", ryxwIirlInitDlyl, iirTap(), out(iirOrder), out(one)),
      allocating(row("ryxwIirl", ryxwIirl, iirTap(), iirDly(), value(), scaleMode(), out(one))),
      allocating(row("ryxwbIirl", ryxwbIirl, iirTap(), iirDly(), in(arg<4>), out(arg<4>), len(), scaleMode(),
                     out(one))),
      allocating(row("ryxwIirInit", highInit, flags(kHighTypes), in(arbTaps), len(), iirStateForInit())),
      allocating(row("ryxwIirInitGain", highInitGain, flags(kHighTypes), in(arbTaps), len(), iirStateForInit(), value(),
                     anyInt())),
      allocating(row("ryxwIirInitBq", highInitBq, flags(kHighTypes), in(bqTaps), len(), iirStateForInit())),
      allocating(row("ryxwIir", ryxwIir, iirState(), value(), scaleMode(), out(one))),
      allocating(row("ryxwbIir", ryxwbIir, iirState(), in(arg<3>), out(arg<3>), len(), scaleMode(), out(one))),
  };
}

const AddRows rows(all());

}  // namespace
}  // namespace hostile
