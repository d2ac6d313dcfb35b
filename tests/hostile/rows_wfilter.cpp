// Rows of the 16-bit filters. Their records are those of the float forms,
// built here by the 16-bit set-up routines: low-level tap states by
// ryxwFirlInitMr (or null; all zero for the delay set-up), delay states for
// the row's tap state, high-level records null, zeroed, random bytes,
// freed or live. The 16-bit Init does not release a live record, so its
// rows meet only records that hold nothing.
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
  };
}

const AddRows rows(all());

}  // namespace
}  // namespace hostile
