// The table of exported routines that drives the hostile-argument runs
// (the fuzzer, the seeded sweep, the corpus replay) and the allocation-failure
// sweep. Each family contributes its rows in a file of its own
// (rows_<family>.cpp); a row names the routine, points at it and says, per
// argument, how it is built from input bytes:
//
//   len()            a length: small values, zero, negatives, 2^20..2^31-1
//   count()          an allocator's unsigned count, drawn as a length
//   order()          a transform order: -2..33 and hostile values
//   flags(set)       a flags word: a value of `set`, an OR of its bits, or junk
//   factor(), phase<K>()  rate factors and a phase below factor K
//   scaleMode(), anyInt()  16-bit scale modes, any 32-bit value
//   value()          a scalar by value (raw bytes: NaN and infinities too)
//   in(size), out(size), io(size)  an array of `size` elements (a function
//                    of the other arguments): valid and guarded, misaligned
//                    within 32 bytes, or null; never shorter than `size`
//                    (a shorter array is the caller's fault). A size beyond
//                    what the harness allocates makes the pointer null.
//   firState<S,H>()  a high-level record: null, zeroed, random bytes, freed,
//                    live for these types (Init rows: live for any type)
//   tapState<H>(), dlyState<S>(K)  low-level records, which carry no mark:
//                    the caller's to keep valid, so built by Init (or null)
//
// After each call: no sanitizer finding, every guard intact, and when a
// failure was reported, every array and record the routine may write as it
// was (an Init refused for memory may leave its record dead). Blocks alive
// after the case, once records and thread tables are released, must be as
// many as before.
#pragma once

#include <cstdint>
#include <climits>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "ryxcore.h"

namespace hostile {

class Case;
using SizeFn = std::int64_t (*)(const Case&);

enum class Role {
  kLen, kCount, kOrder, kFlags, kEnum, kFactor, kPhase, kScaleMode, kAnyInt, kValue, kIn, kOut, kInOut, kRecord
};

// A record builder: makes the record for argument `arg` and says whether
// the routine may change it.
using RecordFn = void (*)(Case&, int arg);

struct ArgRule {
  Role role;
  SizeFn size = nullptr;   // arrays: elements
  const int* legal = nullptr;  // flags: legal values, 0-terminated
  int ref = -1;            // phase: the factor's argument; dlyState: the tap state's
  RecordFn record = nullptr;
  // Marked records: the texts of the refusals of a null record and of one
  // that is not live (never initialised or freed).
  const char* nullText = nullptr;
  const char* deadText = nullptr;
  bool refusable = true;  // records: some drawn record can be refused
};

// Bytes of one case; zeros once used up.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  std::uint8_t byte() { return pos_ < size_ ? data_[pos_++] : 0; }
  std::uint32_t word() {
    std::uint32_t w = 0;
    for (int i = 0; i < 4; ++i) w = w << 8 | byte();
    return w;
  }
  void fill(void* dst, std::size_t n) {
    auto* d = static_cast<std::uint8_t*>(dst);
    for (std::size_t i = 0; i < n; ++i) d[i] = byte();
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t pos_ = 0;
};

// A guarded block the harness owns: guard bytes around the payload, which
// sits at a chosen offset from a 64-byte boundary.
struct Block {
  static constexpr std::size_t kGuard = 64;
  static constexpr std::uint8_t kMark = 0xC3;
  std::vector<std::uint8_t> raw;
  std::uint8_t* data = nullptr;
  std::size_t bytes = 0;
  bool writable = false;  // the routine may write it
  bool record = false;    // a record (holds addresses: not digested)
  std::vector<std::uint8_t> before;  // snapshot of a writable block
  Block(std::size_t n, std::size_t offset);
  bool guardsIntact() const;
};

class Case {
 public:
  Case(Bytes& in, bool validOnly) : valid(validOnly), in_(in) {}
  Bytes& in() { return in_; }
  const bool valid;  // only valid arguments: the allocation-failure sweep

  std::int64_t intArg(int k) const { return ints[k]; }
  template <class R>
  R* record(int k) const {
    return reinterpret_cast<R*>(ptrs[k]);
  }
  Block* newBlock(std::size_t bytes, std::size_t offset, bool writable);

  static constexpr int kMaxArgs = 10;
  std::int64_t ints[kMaxArgs] = {};
  void* ptrs[kMaxArgs] = {};
  std::uint8_t vals[kMaxArgs][16] = {};
  std::vector<std::unique_ptr<Block>> blocks;
  std::vector<RyxFirState*> liveStates;  // released at the end of the case
  std::vector<std::function<void()>> releases;  // other records' releases, run at the end of the case
  bool initRow = false;                  // a set-up routine: NoMem may leave its record dead
  int recordKind = -1;                   // when set: the kind of high-level record to build

 private:
  Bytes& in_;
};

using Invoke = void (*)(void (*fn)(), Case&);

struct Row {
  const char* name;
  void (*fn)();
  Invoke invoke;
  std::vector<ArgRule> args;
  bool allocates;  // takes memory from the aligned allocator (or builds tables)
  bool partial = false;  // a failure may come after earlier outputs were written
  const char* lateContext = nullptr;  // a report with this text comes after the outputs
  bool fallsBack = false;  // short of memory, takes another method (other bits)
  bool storesAddress = false;  // writes the address of a block it allocated into an output
};

// ---- Argument specs ----------------------------------------------------------

inline ArgRule len() { return {Role::kLen}; }
inline ArgRule count() { return {Role::kCount}; }  // an allocator's count: drawn as a length, never refused
inline ArgRule order() { return {Role::kOrder}; }
inline ArgRule flags(const int* legal) { return {Role::kFlags, nullptr, legal}; }
// A selector with the legal values `legal` (ended by kEnd; zero allowed):
// mostly one of them, else a small or any value.
constexpr int kEnd = INT_MIN;
inline ArgRule choice(const int* legal) { return {Role::kEnum, nullptr, legal}; }
inline ArgRule factor() { return {Role::kFactor}; }
template <int K>
ArgRule phase() {
  return {Role::kPhase, nullptr, nullptr, K};
}
inline ArgRule scaleMode() { return {Role::kScaleMode}; }
inline ArgRule anyInt() { return {Role::kAnyInt}; }
inline ArgRule value() { return {Role::kValue}; }
inline ArgRule in(SizeFn size) { return {Role::kIn, size}; }
inline ArgRule out(SizeFn size) { return {Role::kOut, size}; }
inline ArgRule io(SizeFn size) { return {Role::kInOut, size}; }

// Sizes.
template <int K>
std::int64_t arg(const Case& c) {
  return c.intArg(K);
}
inline std::int64_t one(const Case&) { return 1; }
// 2^order, and 2^order + 2 (the RCCs layout); orders outside 0..31 are
// sized so large that the harness passes null.
constexpr std::int64_t kHuge = std::int64_t{1} << 40;
template <int K>
std::int64_t pow2(const Case& c) {
  const std::int64_t o = c.intArg(K);
  return o < 0 || o > 31 ? kHuge : std::int64_t{1} << o;
}
template <int K>
std::int64_t pow2plus2(const Case& c) {
  return pow2<K>(c) + 2;
}

// ---- Records -------------------------------------------------------------------

template <class S, class H>
void buildFirState(Case& c, int arg);
template <class S, class H>
void buildFirStateForInit(Case& c, int arg);
template <class H>
void buildTapState(Case& c, int arg);
template <class H>
void buildTapStateOrZero(Case& c, int arg);
template <class S>
void buildDlyState(Case& c, int arg);

template <class S, class H>
ArgRule firState() {
  return {Role::kRecord, nullptr, nullptr, -1, buildFirState<S, H>, "Null state pointer", "Must have been initialized"};
}
template <class S, class H>
ArgRule firStateForInit() {
  return {Role::kRecord, nullptr, nullptr, -1, buildFirStateForInit<S, H>};
}
template <class H>
ArgRule tapState() {
  return {Role::kRecord, nullptr, nullptr, -1, buildTapState<H>};
}
bool isHighLevelRecord(const ArgRule& s);
bool isInitRecord(const ArgRule& s);

// A tap state that may also be all zero (a routine that must refuse it).
template <class H>
ArgRule tapStateOrZero() {
  return {Role::kRecord, nullptr, nullptr, -1, buildTapStateOrZero<H>};
}
// The delay state of the row's tap state (always its first argument).
template <class S>
ArgRule dlyState() {
  return {Role::kRecord, nullptr, nullptr, -1, buildDlyState<S>};
}
// A writable record block of `bytes` for argument `arg` (zeroed).
Block* recordBlock(Case& c, int arg, std::size_t bytes);

// Record kinds K describe a record type: `using R`, `static void make(Case&,
// R*)` (live, from the bytes), `static void atEnd(R*)` (releases what a
// live or dead record still owns); marked kinds also `kMarkAt`, `kMarkLen`
// (the mark's bytes) and `static void free(R*)` (or `kFreeable` false).
//
// Records the caller keeps valid (no mark to judge them by): null (unless
// the routine does not test for it), or live (zeroed for an Init row).
template <class K, bool ForInit, bool NullOk>
void buildKept(Case& c, int arg) {
  if (ForInit) c.initRow = true;
  if (NullOk && (c.recordKind == 0 || (!c.valid && c.recordKind < 0 && c.in().byte() % 6 == 0))) {
    c.ptrs[arg] = nullptr;
    return;
  }
  auto* r = reinterpret_cast<typename K::R*>(recordBlock(c, arg, sizeof(typename K::R))->data);
  if (!ForInit) K::make(c, r);
  c.releases.push_back([r] { K::atEnd(r); });
}
template <class K, bool ForInit = false, bool NullOk = true>
ArgRule kept() {
  ArgRule a{Role::kRecord, nullptr, nullptr, -1, buildKept<K, ForInit, NullOk>};
  a.refusable = NullOk;
  return a;
}

// Marked records: null, zeroed, random bytes (mark spoiled), freed (random
// when the kind has no release), or live; an Init row's valid record is
// zeroed, and it also meets live ones.
template <class K, bool ForInit>
void buildMarked(Case& c, int arg) {
  using R = typename K::R;
  if (ForInit) c.initRow = true;
  int kind = c.recordKind >= 0 ? c.recordKind : c.valid ? (ForInit ? 1 : 4) : c.in().byte() % 6;
  // A set-up that owns arrays wants its record zeroed or freed: random
  // bytes are the caller's fault there, so they become a freed record.
  if (ForInit && K::kFreeable && kind == 2) kind = 3;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  auto* r = reinterpret_cast<R*>(recordBlock(c, arg, sizeof(R))->data);
  c.releases.push_back([r] { K::atEnd(r); });
  if (kind == 1) return;
  if (kind == 2 || (kind == 3 && !K::kFreeable)) {
    c.in().fill(r, sizeof(R));
    std::memset(reinterpret_cast<std::uint8_t*>(r) + K::kMarkAt, 0x5A, K::kMarkLen);
    return;
  }
  K::make(c, r);
  if (kind == 3) K::free(r);
}
template <class K, bool ForInit = false>
ArgRule marked(const char* nullText, const char* deadText) {
  ArgRule a{Role::kRecord, nullptr, nullptr, -1, buildMarked<K, ForInit>};
  if (!ForInit) {
    a.nullText = nullText;
    a.deadText = deadText;
  }
  return a;
}
// Kinds without anything to release.
template <class T>
void nothing(T*) {}

// Pointers that are the caller's to keep valid and that no check can
// judge (texts, report functions): null or a valid one.
ArgRule text();
ArgRule reportFn();

// ---- Rows ----------------------------------------------------------------------

template <class P>
P argAs(Case& c, int k) {
  if constexpr (std::is_pointer_v<P>) {
    return reinterpret_cast<P>(c.ptrs[k]);
  } else if constexpr (std::is_same_v<P, int>) {
    return static_cast<int>(c.ints[k]);
  } else if constexpr (std::is_same_v<P, unsigned>) {
    return static_cast<unsigned>(c.ints[k]);
  } else {
    P v;
    std::memcpy(&v, c.vals[k], sizeof v);
    return v;
  }
}

template <class R, class... P, std::size_t... I>
void callWith(R (*f)(P...), Case& c, std::index_sequence<I...>) {
  (void)f(argAs<P>(c, static_cast<int>(I))...);
}

template <class R, class... P>
void invokeAs(void (*raw)(), Case& c) {
  callWith(reinterpret_cast<R (*)(P...)>(raw), c, std::index_sequence_for<P...>{});
}

// Element size of each pointer parameter (void and functions: 1).
template <class P>
constexpr int elemSize() {
  if constexpr (std::is_pointer_v<P>) {
    using T = std::remove_cv_t<std::remove_pointer_t<P>>;
    if constexpr (std::is_void_v<T> || std::is_function_v<T>) return 1;
    else return sizeof(T);
  } else {
    return sizeof(P);
  }
}

struct Sized {
  ArgRule spec;
  int elem;
};

template <class R, class... P, class... S>
Row row(const char* name, R (*f)(P...), S... specs) {
  static_assert(sizeof...(P) == sizeof...(S), "one spec per argument");
  static_assert(sizeof...(P) <= Case::kMaxArgs);
  Row r{name, reinterpret_cast<void (*)()>(f), invokeAs<R, P...>, {}, false};
  const int elems[] = {0, elemSize<P>()...};
  int k = 1;
  for (const ArgRule& s : std::initializer_list<ArgRule>{specs...}) {
    ArgRule copy = s;
    if (copy.role == Role::kIn || copy.role == Role::kOut || copy.role == Role::kInOut || copy.role == Role::kValue)
      copy.ref = elems[k];  // element size of arrays, byte size of values
    r.args.push_back(copy);
    ++k;
  }
  return r;
}

// Rows of the vector shapes, derived from the signature: sources (const
// pointers) and destinations of n elements, n being the first int; a
// second int is the scale mode when an int* (the scale factor, one
// element) follows, any value otherwise (shift counts); values by value.
// The length's place: the first int, unless the only int is the scale
// mode of a scalar helper; -1 when there is none (pointers then hold one).
template <class... P>
constexpr int lengthArg() {
  constexpr bool isInt[] = {false, std::is_same_v<P, int>...};
  constexpr bool scaled = (false || ... || std::is_same_v<P, int*>);
  int first = -1, count = 0;
  for (int i = 0; i < static_cast<int>(sizeof...(P)); ++i) {
    if (!isInt[i + 1]) continue;
    if (first < 0) first = i;
    ++count;
  }
  return scaled && count == 1 ? -1 : first;
}

template <class P, int I, int K, bool kScaled>
ArgRule vecSpec() {
  if constexpr (std::is_same_v<P, int*> || (std::is_pointer_v<P> && K < 0)) return out(one);
  else if constexpr (std::is_pointer_v<P> && std::is_const_v<std::remove_pointer_t<P>>) return in(arg<K>);
  else if constexpr (std::is_pointer_v<P>) return out(arg<K>);
  else if constexpr (std::is_same_v<P, int> && I == K) return len();
  else if constexpr (std::is_same_v<P, int>) return kScaled ? scaleMode() : anyInt();
  else return value();
}

template <class R, class... P, std::size_t... I>
Row vecRow(const char* name, R (*f)(P...), std::index_sequence<I...>) {
  constexpr int k = lengthArg<P...>();
  constexpr bool scaled = (false || ... || std::is_same_v<P, int*>);
  return row(name, f, vecSpec<P, static_cast<int>(I), k, scaled>()...);
}

template <class R, class... P>
Row vec(const char* name, R (*f)(P...)) {
  return vecRow(name, f, std::index_sequence_for<P...>{});
}

// A row that takes memory: the allocation-failure sweep runs it.
inline Row allocating(Row r) {
  r.allocates = true;
  return r;
}

// A row whose failure may come after it wrote earlier outputs (a routine
// made of two calls, the second of which fails).
inline Row partial(Row r) {
  r.partial = true;
  return r;
}

// A row that reports `context` only after writing its outputs (the Div
// family's zero divisor); every other failure must leave them untouched.
inline Row reportsLate(Row r, const char* context) {
  r.lateContext = context;
  return r;
}

// A row that, when memory fails, quietly takes another method: its result
// may differ in the last bits, and an inner routine's out-of-memory report
// may come before outputs are written (2-D filtering).
inline Row fallsBack(Row r) {
  r.fallsBack = true;
  return r;
}

// A set-up that stores the address of a block it allocated into an output
// the harness digests (the low-level IIR tap state): its digest depends on
// where the allocator put the block, so runs are not compared by it.
inline Row storesAddress(Row r) {
  r.storesAddress = true;
  return r;
}

// Registration: each rows_<family>.cpp adds its rows at start-up.
struct AddRows {
  explicit AddRows(std::vector<Row> rows);
};
const std::vector<Row>& allRows();
const Row* findRow(const std::string& name);

// ---- Running ------------------------------------------------------------------

// What one case found; empty `fault` when all held.
struct Outcome {
  std::string fault;
  bool reported = false;   // a failure was reported
  bool noMem = false;      // ... as out of memory
  int reports = 0;
  int firstStatus = 0;     // the first report's status, name and context
  std::string firstReport;
  int refused = 0;         // allocations refused by the injection
  int requested = 0;       // allocations asked for
  std::uint64_t digest = 0;  // of the arrays written (records aside)
};

// Builds the arguments of `row` from `in`, calls it in Silent mode with a
// recording report function, checks guards and (on a reported failure) the
// arrays and records, releases what the case made and checks the live
// block count.
// With `failAt` above 0 the failAt-th allocation of the call is refused.
// `recordKind` (0 null, 1 zeroed, 2 random bytes, 3 freed, 4 live) chooses
// the high-level records of an otherwise valid case.
Outcome runCase(const Row& row, Bytes& in, bool validOnly = false, int failAt = 0, int recordKind = -1);

// One fuzz input: the row's name, a zero byte, then the argument bytes.
Outcome runInput(const std::uint8_t* data, std::size_t size);

// Largest array the harness builds, in bytes.
constexpr std::int64_t kMaxArrayBytes = std::int64_t{1} << 18;

}  // namespace hostile
