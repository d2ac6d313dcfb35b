// Rows of the wavelet family. Records carry no mark: the set-up routines
// meet null, zeroed or random records (they must not read them); the other
// routines meet null, zeroed, random (with a core tag no precision has),
// and live records of either their own or another precision, built by the
// set-up. Family and parameters are drawn together so that valid cases are
// valid families; the caller's filters are four arrays of 8 taps with
// lengths and offsets that may be wrong. Records built or filled during a
// case are freed at its end.
#include <climits>

#include "routine_table.h"
#include "ryxcore/wavelet.h"

namespace hostile {
namespace {

using WS = RyxWtState;

constexpr int kFamilies[][3] = {{1, 0, 0}, {2, 1, 0}, {2, 2, 0}, {2, 10, 0}, {3, 1, 0}, {3, 7, 0}, {4, 1, 0},
                                {4, 5, 0}, {5, 0, 0}, {6, 1, 1}, {6, 2, 8}, {6, 3, 9}, {7, 1, 3}, {7, 3, 1},
                                {8, 0, 0}, {9, 0, 0}, {10, 0, 0}};
constexpr int kBuiltIn = 16;  // entries before the caller's filters

// Type and parameters into arguments kType, kP1, kP2; the caller's filters
// only when `user`.
template <int kType, int kP1, int kP2, bool user>
void drawFamily(Case& c, int) {
  const int* f = kFamilies[c.in().byte() % (user ? kBuiltIn + 1 : kBuiltIn)];
  c.ints[kType] = f[0];
  c.ints[kP1] = f[1];
  c.ints[kP2] = f[2];
  if (c.valid || c.in().byte() % 4) return;
  constexpr int junk[] = {0, -1, 11, 12, INT_MIN, INT_MAX, 4, 2};
  if (c.in().byte() % 2) c.ints[kType] = junk[c.in().byte() % 8];
  c.ints[kP1] = junk[c.in().byte() % 8];
  c.ints[kP2] = junk[c.in().byte() % 8];
}
void drawnElsewhere(Case&, int) {}

constexpr std::int64_t kHostileInts[] = {0, 1, -1, INT_MIN, INT_MAX, 1 << 28, 1 << 30, 32};

void drawLength(Case& c, int k) {
  const int b = c.in().byte();
  c.ints[k] = c.valid || b < 200 ? 2 + b % 60 : kHostileInts[b % 8];
}
void drawOrder(Case& c, int k) {
  const int b = c.in().byte();
  c.ints[k] = c.valid || b < 200 ? 1 + b % 6 : kHostileInts[b % 8];
}
// A level for the length at argument K (or 2^order when kOrder).
template <int K, bool kOrder>
void drawLevel(Case& c, int k) {
  const std::int64_t v = c.ints[K];
  const std::int64_t len = kOrder ? (v >= 1 && v <= 31 ? std::int64_t{1} << v : 2) : v;
  int top = 0;
  while (top < 40 && (std::int64_t{2} << top) < 2 * len) ++top;
  const int b = c.in().byte();
  c.ints[k] = c.valid || b < 160 ? b % (top + 1) : b < 220 ? top + 1 : kHostileInts[b % 8];
}

Block* recordBlock(Case& c, int k) {
  Block* blk = c.newBlock(sizeof(WS), 0, true);
  blk->record = true;
  std::memset(blk->data, 0, sizeof(WS));
  c.ptrs[k] = blk->data;
  return blk;
}

// Set-up records: null, zeroed or random; freed afterwards when the call
// filled them.
void buildForSetUp(Case& c, int k) {
  c.initRow = true;
  const int kind = c.valid ? 1 : c.in().byte() % 3;
  if (kind == 0) return;
  Block* blk = recordBlock(c, k);
  if (kind == 2) c.in().fill(blk->data, sizeof(WS));
  c.releases.push_back([blk] {
    if (std::memcmp(blk->data, blk->before.data(), sizeof(WS)) != 0) ryxWtFree(reinterpret_cast<WS*>(blk->data));
  });
}

// Records for the other routines, of precision `core`; `randomOk` when
// the routine may meet random bytes (Free may not: it releases pointers).
template <int core, bool randomOk>
void buildRecord(Case& c, int k) {
  const int kind = c.valid ? 4 : c.in().byte() % 5;
  if (kind == 0) return;
  Block* blk = recordBlock(c, k);
  auto* st = reinterpret_cast<WS*>(blk->data);
  if (kind == 1 || (kind == 2 && !randomOk)) return;
  if (kind == 2) {
    c.in().fill(st, sizeof *st);
    if (st->core == 1 || st->core == 2 || st->core == 4) st->core = 3;
    return;
  }
  const int* f = kFamilies[c.in().byte() % kBuiltIn];
  const int len = 2 + c.in().byte() % 40;
  int top = 0;
  while ((2 << top) < 2 * len) ++top;
  const int level = c.in().byte() % (top + 1);
  // Kind 3: another precision (the next tag of 1, 2, 4 round); kind 4: this one.
  const int which = kind == 4 ? core : core == 4 ? 1 : core * 2;
  int lenDec;
  if (which == 1) ryxsWtInitLen(f[1], f[2], len, level, st, f[0], &lenDec);
  else if (which == 2) ryxdWtInitLen(f[1], f[2], len, level, st, f[0], &lenDec);
  else ryxwWtInitLen(f[1], f[2], len, level, st, f[0], &lenDec);
  c.releases.push_back([st] { ryxWtFree(st); });
}

// The caller's filters at arguments k, k+1, k+2: four arrays of 8 taps,
// lengths 2..8 and offsets within them, or (hostile) a null filter, a
// length below 2 or an offset outside.
void buildFilters(Case& c, int k) {
  Block* taps = c.newBlock(4 * sizeof(void*), 0, false);
  Block* lens = c.newBlock(4 * sizeof(int), 0, false);
  Block* ofs = c.newBlock(4 * sizeof(int), 0, false);
  taps->record = lens->record = ofs->record = true;
  auto* t = reinterpret_cast<float**>(taps->data);  // float or double arrays of 8 doubles' room
  auto* l = reinterpret_cast<int*>(lens->data);
  auto* o = reinterpret_cast<int*>(ofs->data);
  for (int i = 0; i < 4; ++i) {
    Block* f = c.newBlock(8 * sizeof(double), 0, false);
    c.in().fill(f->data, f->bytes);
    t[i] = reinterpret_cast<float*>(f->data);
    l[i] = 2 + c.in().byte() % 7;
    o[i] = c.in().byte() % l[i];
  }
  if (!c.valid) {
    const int b = c.in().byte(), i = c.in().byte() % 4;
    if (b % 5 == 1) t[i] = nullptr;
    if (b % 5 == 2) l[i] = 1 - c.in().byte() % 3;
    if (b % 5 == 3) o[i] = c.in().byte() % 2 ? -1 : l[i];
  }
  const int nulls = c.valid ? 0 : c.in().byte() % 8;
  c.ptrs[k] = nulls == 1 ? nullptr : taps->data;
  c.ptrs[k + 1] = nulls == 2 ? nullptr : lens->data;
  c.ptrs[k + 2] = nulls == 3 ? nullptr : ofs->data;
}

ArgRule rec(RecordFn f) { return {Role::kRecord, nullptr, nullptr, -1, f}; }
const ArgRule kElsewhere = rec(drawnElsewhere);

template <bool kDec>
std::int64_t srcSize(const Case& c) {
  const WS* st = c.record<WS>(0);
  return st == nullptr ? 1 : kDec ? st->levelLen[0] : st->lenDec;
}
template <bool kDec>
std::int64_t dstSize(const Case& c) {
  return srcSize<!kDec>(c);
}
std::int64_t four(const Case&) { return 4; }

template <class T, int core>
std::vector<Row> forms(const char* const names[7], RyxStatus (*initLen)(int, int, int, int, WS*, int, int*),
                       RyxStatus (*init)(int, int, int, int, WS*, int),
                       RyxStatus (*initUser)(const T* const*, const int*, const int*, int, int, WS*, int*),
                       RyxStatus (*setState)(WS*, int, int, int, int, int, const T* const*, const int*, const int*),
                       RyxStatus (*getState)(const WS*, int*, int*, int*, int*, int*, const T**, int*, int*),
                       auto dec, auto recon) {
  return {
      allocating(row(names[0], initLen, rec(drawFamily<5, 0, 1, false>), kElsewhere, rec(drawLength),
                     rec(drawLevel<2, false>), rec(buildForSetUp), kElsewhere, out(one))),
      allocating(row(names[1], init, rec(drawFamily<5, 0, 1, false>), kElsewhere, rec(drawOrder),
                     rec(drawLevel<2, true>), rec(buildForSetUp), kElsewhere)),
      allocating(row(names[2], initUser, rec(buildFilters), kElsewhere, kElsewhere, rec(drawLength),
                     rec(drawLevel<3, false>), rec(buildForSetUp), out(one))),
      allocating(row(names[3], setState, rec(buildForSetUp), rec(drawFamily<1, 2, 3, true>), kElsewhere, kElsewhere,
                     rec(drawOrder), rec(drawLevel<4, true>), rec(buildFilters), kElsewhere, kElsewhere)),
      row(names[4], getState, rec(buildRecord<core, true>), out(one), out(one), out(one), out(one), out(one),
          out(four), out(four), out(four)),
      row(names[5], dec, rec(buildRecord<core, true>), in(srcSize<true>), out(dstSize<true>)),
      row(names[6], recon, rec(buildRecord<core, true>), in(srcSize<false>), out(dstSize<false>)),
  };
}

std::vector<Row> all() {
  static const char* const d[] = {"ryxdWtInitLen",  "ryxdWtInit",      "ryxdWtInitUserFilter", "ryxdWtSetState",
                                  "ryxdWtGetState", "ryxdWtDecompose", "ryxdWtReconstruct"};
  static const char* const s[] = {"ryxsWtInitLen",  "ryxsWtInit",      "ryxsWtInitUserFilter", "ryxsWtSetState",
                                  "ryxsWtGetState", "ryxsWtDecompose", "ryxsWtReconstruct"};
  static const char* const w[] = {"ryxwWtInitLen",  "ryxwWtInit",      "ryxwWtInitUserFilter", "ryxwWtSetState",
                                  "ryxwWtGetState", "ryxwWtDecompose", "ryxwWtReconstruct"};
  std::vector<Row> rows = forms<double, 2>(d, ryxdWtInitLen, ryxdWtInit, ryxdWtInitUserFilter, ryxdWtSetState,
                                           ryxdWtGetState, ryxdWtDecompose, ryxdWtReconstruct);
  for (auto more : {forms<float, 1>(s, ryxsWtInitLen, ryxsWtInit, ryxsWtInitUserFilter, ryxsWtSetState,
                                    ryxsWtGetState, ryxsWtDecompose, ryxsWtReconstruct),
                    forms<float, 4>(w, ryxwWtInitLen, ryxwWtInit, ryxwWtInitUserFilter, ryxwWtSetState,
                                    ryxwWtGetState, ryxwWtDecompose, ryxwWtReconstruct)})
    rows.insert(rows.end(), more.begin(), more.end());
  rows.push_back(row("ryxWtFree", ryxWtFree, rec(buildRecord<2, false>)));
  return rows;
}

const AddRows rows(all());

}  // namespace
}  // namespace hostile
