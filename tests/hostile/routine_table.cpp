// Building the arguments of a row from bytes, calling it and checking what
// it did. See routine_table.h for the rules.
#include "routine_table.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "alloc_failure.h"
#include "frame/thread_context.h"

namespace hostile {

// ---- Registry ------------------------------------------------------------------

namespace {
std::vector<Row>& registry() {
  static std::vector<Row> rows;
  return rows;
}
}  // namespace

AddRows::AddRows(std::vector<Row> rows) {
  for (Row& r : rows) registry().push_back(std::move(r));
}

const std::vector<Row>& allRows() { return registry(); }

const Row* findRow(const std::string& name) {
  for (const Row& r : registry())
    if (name == r.name) return &r;
  return nullptr;
}

// ---- Blocks --------------------------------------------------------------------

Block::Block(std::size_t n, std::size_t offset) : raw(kGuard + 64 + offset + n + kGuard, kMark), bytes(n) {
  auto base = reinterpret_cast<std::uintptr_t>(raw.data()) + kGuard;
  base = (base + 63) & ~std::uintptr_t{63};
  data = reinterpret_cast<std::uint8_t*>(base) + offset;
}

bool Block::guardsIntact() const {
  for (const std::uint8_t* p = raw.data(); p < data; ++p)
    if (*p != kMark) return false;
  for (const std::uint8_t* p = data + bytes; p < raw.data() + raw.size(); ++p)
    if (*p != kMark) return false;
  return true;
}

Block* recordBlock(Case& c, int arg, std::size_t bytes) {
  Block* blk = c.newBlock(bytes, 0, true);
  blk->record = true;
  std::memset(blk->data, 0, bytes);
  c.ptrs[arg] = blk->data;
  return blk;
}

Block* Case::newBlock(std::size_t bytes, std::size_t offset, bool writable) {
  blocks.push_back(std::make_unique<Block>(bytes, offset));
  blocks.back()->writable = writable;
  return blocks.back().get();
}

// ---- Draws ---------------------------------------------------------------------

namespace {

constexpr std::int64_t kHostile[] = {0, -1, INT_MIN, INT_MAX, 1 << 20, 1 << 28, 1 << 30, 0x7FFFFFF0};

std::int64_t drawLen(Case& c) {
  const int b = c.in().byte();
  if (c.valid) return 1 + b % 40;
  return b < 192 ? b % 72 - 3 : kHostile[b % 8];
}

std::int64_t drawOrder(Case& c) {
  const int b = c.in().byte();
  if (c.valid) return b % 11;
  constexpr std::int64_t hostile[] = {INT_MIN, -1, 31, 32, INT_MAX, 30, 28, 24};
  return b < 200 ? b % 36 - 2 : hostile[b % 8];
}

std::int64_t drawFactor(Case& c) {
  const int b = c.in().byte();
  if (c.valid) return 1 + b % 4;
  constexpr std::int64_t hostile[] = {0, -1, INT_MIN, INT_MAX, 1 << 28, 1 << 30, 1 << 16, 1 << 24};
  return b < 200 ? b % 10 - 2 : hostile[b % 8];
}

std::int64_t drawPhase(Case& c, std::int64_t factor) {
  const int b = c.in().byte();
  if (c.valid) return factor > 0 ? b % factor : 0;
  const std::int64_t hostile[] = {-1, INT_MIN, INT_MAX, factor, factor - 1, 1 << 30, 0, 1};
  return b < 200 ? b % 10 - 2 : hostile[b % 8];
}

std::int64_t drawFlags(Case& c, const int* legal) {
  int count = 0;
  while (legal[count] != 0) ++count;
  const int b = c.in().byte();
  const int pick = legal[c.in().byte() % count];
  if (c.valid) return pick;
  switch (b % 4) {
    case 0:
    case 1: return pick;
    case 2: return pick | legal[c.in().byte() % count];
    default: return static_cast<std::int32_t>(c.in().word());
  }
}

std::int64_t drawChoice(Case& c, const int* legal) {
  int count = 0;
  while (legal[count] != kEnd) ++count;
  const int b = c.in().byte();
  if (c.valid || b < 160) return legal[c.in().byte() % count];
  return b < 224 ? b % 8 - 3 : static_cast<std::int32_t>(c.in().word());
}

std::int64_t drawScaleMode(Case& c) {
  const int b = c.in().byte();
  if (c.valid) return b % 5;
  return b < 200 ? b % 8 - 2 : static_cast<std::int32_t>(c.in().word());
}

// Misalignment step of an element: its natural alignment, at most 8.
std::size_t stepOf(int elem) { return std::min<std::size_t>(static_cast<std::size_t>(elem & -elem), 8); }

void drawArray(Case& c, int k, const ArgRule& s) {
  const int elem = s.ref;
  std::int64_t n = s.size(c);
  if (n < 0) n = 0;
  const int b = c.in().byte();
  const bool huge = n > kMaxArrayBytes / elem;
  if (huge || (!c.valid && b % 8 == 0)) {
    c.ptrs[k] = nullptr;
    return;
  }
  std::size_t offset = 0;
  if (!c.valid && b % 8 == 1) offset = (1 + c.in().byte() % 7) * stepOf(elem) % 32;
  if (offset == 0 && !c.valid && b % 8 == 2) offset = 32;
  const std::size_t bytes = static_cast<std::size_t>(n) * elem;
  Block* blk = c.newBlock(bytes, offset, s.role != Role::kIn);
  c.in().fill(blk->data, bytes);
  c.ptrs[k] = blk->data;
}

}  // namespace

// ---- Records -------------------------------------------------------------------

namespace {

template <class S, class H>
auto initMrFor() {
  if constexpr (std::is_same_v<S, float> && std::is_same_v<H, float>) return ryxsFirInitMr;
  else if constexpr (std::is_same_v<S, SCplx> && std::is_same_v<H, SCplx>) return ryxcFirInitMr;
  else if constexpr (std::is_same_v<S, float> && std::is_same_v<H, SCplx>) return ryxscFirInitMr;
  else if constexpr (std::is_same_v<S, SCplx> && std::is_same_v<H, float>) return ryxcsFirInitMr;
  else if constexpr (std::is_same_v<S, double> && std::is_same_v<H, double>) return ryxdFirInitMr;
  else if constexpr (std::is_same_v<S, DCplx> && std::is_same_v<H, DCplx>) return ryxzFirInitMr;
  else if constexpr (std::is_same_v<S, double> && std::is_same_v<H, DCplx>) return ryxdzFirInitMr;
  else return ryxzdFirInitMr;
}

template <class H>
auto firlInitMrFor() {
  if constexpr (std::is_same_v<H, float>) return ryxsFirlInitMr;
  else if constexpr (std::is_same_v<H, SCplx>) return ryxcFirlInitMr;
  else if constexpr (std::is_same_v<H, double>) return ryxdFirlInitMr;
  else return ryxzFirlInitMr;
}

template <class S>
auto firlInitDlylFor() {
  if constexpr (std::is_same_v<S, float>) return ryxsFirlInitDlyl;
  else if constexpr (std::is_same_v<S, SCplx>) return ryxcFirlInitDlyl;
  else if constexpr (std::is_same_v<S, double>) return ryxdFirlInitDlyl;
  else return ryxzFirlInitDlyl;
}

template <class S>
auto firlSetDlylFor() {
  if constexpr (std::is_same_v<S, float>) return ryxsFirlSetDlyl;
  else if constexpr (std::is_same_v<S, SCplx>) return ryxcFirlSetDlyl;
  else if constexpr (std::is_same_v<S, double>) return ryxdFirlSetDlyl;
  else return ryxzFirlSetDlyl;
}

// Valid filter shape: 1..40 taps, single rate or factors 1..4.
struct Shape {
  int taps, up, upPhase, down, downPhase;
};
Shape drawShape(Case& c) {
  Shape s{1 + c.in().byte() % 40, 1, 0, 1, 0};
  if (c.in().byte() % 2) {
    s.up = 1 + c.in().byte() % 4;
    s.down = 1 + c.in().byte() % 4;
    s.upPhase = c.in().byte() % s.up;
    s.downPhase = c.in().byte() % s.down;
  }
  return s;
}

template <class S, class H>
void initLive(Case& c, RyxFirState* st) {
  const Shape s = drawShape(c);
  std::vector<H> taps(s.taps);
  c.in().fill(taps.data(), taps.size() * sizeof(H));
  initMrFor<S, H>()(taps.data(), s.taps, nullptr, s.up, s.upPhase, s.down, s.downPhase, st);
}

template <class S, class H>
void buildFirStateWith(Case& c, int arg, bool forInit) {
  const int kind = c.recordKind >= 0 ? c.recordKind : c.valid ? (forInit ? 1 : 4) : c.in().byte() % 7;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  Block* blk = c.newBlock(sizeof(RyxFirState), 0, true);
  blk->record = true;
  auto* st = reinterpret_cast<RyxFirState*>(blk->data);
  std::memset(st, 0, sizeof *st);
  c.ptrs[arg] = st;
  c.liveStates.push_back(st);
  switch (kind) {
    case 1: break;  // zeroed
    case 2:         // never initialised: random bytes, never the record's own address
      c.in().fill(st, sizeof *st);
      if (st->initMark == st) st->initMark = nullptr;
      break;
    case 3:  // freed
      initLive<S, H>(c, st);
      ryxFirFree(st);
      break;
    case 6:  // Init rows: live for another type
      if (forInit) {
        if (c.in().byte() % 2) initLive<float, float>(c, st);
        else initLive<DCplx, DCplx>(c, st);
        break;
      }
      [[fallthrough]];
    default: initLive<S, H>(c, st);
  }
}

}  // namespace

template <class S, class H>
void buildFirState(Case& c, int arg) {
  buildFirStateWith<S, H>(c, arg, false);
}
template <class S, class H>
void buildFirStateForInit(Case& c, int arg) {
  c.initRow = true;
  buildFirStateWith<S, H>(c, arg, true);
}

namespace {
template <class H>
void buildTapStateWith(Case& c, int arg, bool zeroOk) {
  const int kind = c.valid ? 1 : c.in().byte() % 6;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  Block* blk = c.newBlock(sizeof(RyxFirTapState), 0, true);
  blk->record = true;
  auto* ts = reinterpret_cast<RyxFirTapState*>(blk->data);
  std::memset(ts, 0, sizeof *ts);
  c.ptrs[arg] = ts;
  if (zeroOk && kind == 5) return;
  const Shape s = drawShape(c);
  Block* taps = c.newBlock(sizeof(H) * s.taps, 0, true);
  c.in().fill(taps->data, taps->bytes);
  firlInitMrFor<H>()(reinterpret_cast<H*>(taps->data), s.taps, s.up, s.upPhase, s.down, s.downPhase, ts);
}
}  // namespace

template <class H>
void buildTapState(Case& c, int arg) {
  buildTapStateWith<H>(c, arg, false);
}
template <class H>
void buildTapStateOrZero(Case& c, int arg) {
  buildTapStateWith<H>(c, arg, true);
}

template <class S>
void buildDlyState(Case& c, int arg) {
  const int kind = c.valid ? 1 : c.in().byte() % 5;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  // The delay state goes with the row's tap state; with none, with one of
  // its own (the routine refuses the null tap state anyway).
  auto* ts = static_cast<RyxFirTapState*>(c.ptrs[0]);
  RyxFirTapState own{};
  if (ts == nullptr) {
    static float tap = 1;
    ryxsFirlInit(&tap, 1, &own);
    ts = &own;
  }
  Block* blk = c.newBlock(sizeof(RyxFirDlyState), 0, true);
  blk->record = true;
  auto* ds = reinterpret_cast<RyxFirDlyState*>(blk->data);
  c.ptrs[arg] = ds;
  Block* line = c.newBlock(sizeof(S) * (ts->tapsLen + 1), 0, true);
  c.in().fill(line->data, line->bytes);
  firlInitDlylFor<S>()(ts, reinterpret_cast<S*>(line->data), ds);
  // Usually in working order; sometimes handed over but never set.
  if (kind != 4) firlSetDlylFor<S>()(ts, nullptr, ds);
}

template void buildFirState<float, float>(Case&, int);
template void buildFirState<SCplx, SCplx>(Case&, int);
template void buildFirState<float, SCplx>(Case&, int);
template void buildFirState<SCplx, float>(Case&, int);
template void buildFirState<double, double>(Case&, int);
template void buildFirState<DCplx, DCplx>(Case&, int);
template void buildFirState<double, DCplx>(Case&, int);
template void buildFirState<DCplx, double>(Case&, int);
template void buildFirStateForInit<float, float>(Case&, int);
template void buildFirStateForInit<SCplx, SCplx>(Case&, int);
template void buildFirStateForInit<float, SCplx>(Case&, int);
template void buildFirStateForInit<SCplx, float>(Case&, int);
template void buildFirStateForInit<double, double>(Case&, int);
template void buildFirStateForInit<DCplx, DCplx>(Case&, int);
template void buildFirStateForInit<double, DCplx>(Case&, int);
template void buildFirStateForInit<DCplx, double>(Case&, int);
template void buildTapState<float>(Case&, int);
template void buildTapState<SCplx>(Case&, int);
template void buildTapState<double>(Case&, int);
template void buildTapState<DCplx>(Case&, int);
template void buildTapStateOrZero<float>(Case&, int);
template void buildTapStateOrZero<SCplx>(Case&, int);
template void buildTapStateOrZero<double>(Case&, int);
template void buildTapStateOrZero<DCplx>(Case&, int);
template void buildDlyState<float>(Case&, int);
template void buildDlyState<SCplx>(Case&, int);
template void buildDlyState<double>(Case&, int);
template void buildDlyState<DCplx>(Case&, int);

bool isHighLevelRecord(const ArgRule& s) {
  const RecordFn fir[] = {buildFirState<float, float>,   buildFirState<SCplx, SCplx>,  buildFirState<float, SCplx>,
                          buildFirState<SCplx, float>,   buildFirState<double, double>, buildFirState<DCplx, DCplx>,
                          buildFirState<double, DCplx>,  buildFirState<DCplx, double>};
  return isInitRecord(s) || std::find(std::begin(fir), std::end(fir), s.record) != std::end(fir);
}

bool isInitRecord(const ArgRule& s) {
  const RecordFn init[] = {buildFirStateForInit<float, float>,  buildFirStateForInit<SCplx, SCplx>,
                           buildFirStateForInit<float, SCplx>,  buildFirStateForInit<SCplx, float>,
                           buildFirStateForInit<double, double>, buildFirStateForInit<DCplx, DCplx>,
                           buildFirStateForInit<double, DCplx>, buildFirStateForInit<DCplx, double>};
  return std::find(std::begin(init), std::end(init), s.record) != std::end(init);
}

namespace {
void buildText(Case& c, int arg) {
  static const std::string longText(300, 'x');
  const char* texts[] = {nullptr, "", "n<=0", longText.c_str()};
  c.ptrs[arg] = const_cast<char*>(texts[c.valid ? 2 : c.in().byte() % 4]);
}
void buildReportFn(Case& c, int arg) {
  const ryxReportFn fns[] = {nullptr, ryxNulDevReport, ryxStdErrReport, ryxGuiBoxReport};
  c.ptrs[arg] = reinterpret_cast<void*>(fns[c.in().byte() % 4]);
}
}  // namespace

ArgRule text() { return {Role::kRecord, nullptr, nullptr, -1, buildText}; }
ArgRule reportFn() { return {Role::kRecord, nullptr, nullptr, -1, buildReportFn}; }

// ---- Running -------------------------------------------------------------------

namespace {

struct Seen {
  int status;
  std::string what;
};
std::vector<Seen>& seen() {
  thread_local std::vector<Seen> log;
  return log;
}
RyxStatus record(RyxStatus status, const char* name, const char* context, const char*, int) {
  seen().push_back({status, std::string(name ? name : "(null)") + ": " + (context ? context : "(null)")});
  return status;
}

}  // namespace

Outcome runCase(const Row& row, Bytes& in, bool validOnly, int failAt, int recordKind) {
  Outcome o;
  const long liveBefore = ryxtest::FailAllocation::live();
  const int mode = ryxGetErrMode();
  ryxSetErrMode(RYX_ErrorModeSilent);
  const ryxReportFn previous = ryxRedirectError(record);
  {
    Case c(in, validOnly);
    c.recordKind = recordKind;
    const int n = static_cast<int>(row.args.size());
    // Scalars and records first, arrays after: array sizes may follow any
    // other argument.
    for (int k = 0; k < n; ++k) {
      const ArgRule& s = row.args[k];
      switch (s.role) {
        case Role::kLen:
        case Role::kCount: c.ints[k] = drawLen(c); break;
        case Role::kOrder: c.ints[k] = drawOrder(c); break;
        case Role::kFlags: c.ints[k] = drawFlags(c, s.legal); break;
        case Role::kEnum: c.ints[k] = drawChoice(c, s.legal); break;
        case Role::kFactor: c.ints[k] = drawFactor(c); break;
        case Role::kPhase: c.ints[k] = drawPhase(c, c.ints[s.ref]); break;
        case Role::kScaleMode: c.ints[k] = drawScaleMode(c); break;
        case Role::kAnyInt: c.ints[k] = static_cast<std::int32_t>(c.in().word()); break;
        case Role::kValue:
          c.in().fill(c.vals[k], static_cast<std::size_t>(s.ref));
          // Valid cases: positive and moderate (sign and top exponent bit clear).
          if (c.valid) c.vals[k][s.ref - 1] &= 0x3F;
          break;
        case Role::kRecord: s.record(c, k); break;
        default: break;
      }
    }
    for (int k = 0; k < n; ++k) {
      const Role r = row.args[k].role;
      if (r == Role::kIn || r == Role::kOut || r == Role::kInOut) drawArray(c, k, row.args[k]);
    }
    for (auto& b : c.blocks)
      if (b->writable) b->before.assign(b->data, b->data + b->bytes);

    seen().clear();
    if (std::getenv("HOSTILE_TRACE")) {
      std::fprintf(stderr, "%s", row.name);
      for (int k = 0; k < n; ++k) std::fprintf(stderr, " %lld/%p", static_cast<long long>(c.ints[k]), c.ptrs[k]);
      std::fprintf(stderr, "\n");
    }
    ryxSetErrStatus(RYX_StsOk);
    if (failAt > 0) {
      ryxtest::FailAllocation fail(failAt);
      row.invoke(row.fn, c);
      o.refused = ryxtest::FailAllocation::refused();
      o.requested = ryxtest::FailAllocation::requested();
    } else {
      row.invoke(row.fn, c);
    }

    for (const Seen& s : seen()) {
      if (s.status < 0) o.reported = true;
      if (s.status == RYX_StsNoMem) o.noMem = true;
    }
    o.reports = static_cast<int>(seen().size());
    if (!seen().empty()) {
      o.firstStatus = seen()[0].status;
      o.firstReport = seen()[0].what;
    }
    o.digest = 1469598103934665603ull;
    for (auto& b : c.blocks) {
      if (!b->writable || b->record) continue;
      for (std::size_t i = 0; i < b->bytes; ++i) o.digest = (o.digest ^ b->data[i]) * 1099511628211ull;
    }
    for (std::size_t i = 0; i < c.blocks.size() && o.fault.empty(); ++i) {
      const Block& b = *c.blocks[i];
      if (!b.guardsIntact()) o.fault = "write outside an array or record of the case";
      // (by its context: a few routines report under a name of their own)
      const std::string& what = seen().empty() ? std::string() : seen()[0].what;
      const bool late = row.lateContext != nullptr && seen().size() == 1 &&
                        what.substr(what.find(": ") + 2) == row.lateContext;
      const bool mayChange = (c.initRow && o.noMem) || (row.fallsBack && o.noMem) || row.partial || late;
      if (o.reported && !mayChange && b.writable && b.bytes > 0 && std::memcmp(b.before.data(), b.data, b.bytes) != 0)
        o.fault = "a failed call changed an array or record (" + o.firstReport + ")";
    }
    for (RyxFirState* st : c.liveStates)
      if (st->initMark == st) ryxFirFree(st);
    for (auto& release : c.releases) release();
    ryxFreeThreadTables();
  }
  ryxRedirectError(previous);
  ryxSetErrMode(mode);
  ryxSetErrStatus(RYX_StsOk);
  if (o.fault.empty() && ryxtest::FailAllocation::live() != liveBefore) o.fault = "blocks left allocated";
  return o;
}

Outcome runInput(const std::uint8_t* data, std::size_t size) {
  const auto* end = static_cast<const std::uint8_t*>(std::memchr(data, 0, size));
  if (end == nullptr) return {};
  const Row* row = findRow(std::string(reinterpret_cast<const char*>(data), end - data));
  if (row == nullptr) return {};
  Bytes in(end + 1, size - (end + 1 - data));
  return runCase(*row, in);
}

}  // namespace hostile
