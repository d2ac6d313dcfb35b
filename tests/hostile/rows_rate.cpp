// Rows of the rate family and the FIR design routines. The phase of up-
// and down-sampling is an int the routine reads and writes, drawn like a
// phase below the row's factor; resampling records are null, zeroed,
// random bytes (never marked), freed, or live from Init, and released at
// the end of the case.
#include <climits>

#include "routine_table.h"

namespace hostile {
namespace {

using SS = RyxSampState;

// ---- Phase pointer: a drawn phase below the factor at argument 4 ----

void buildPhase(Case& c, int arg) {
  Block* blk = c.newBlock(sizeof(int), 0, true);
  blk->record = true;
  const std::int64_t factor = c.intArg(4);
  const int b = c.in().byte();
  int phase = 0;
  if (c.valid || b < 160) phase = factor > 0 ? static_cast<int>(b % factor) : 0;
  else phase = b < 224 ? b % 10 - 2 : (b % 2 ? INT_MIN : INT_MAX);
  std::memcpy(blk->data, &phase, sizeof phase);
  c.ptrs[arg] = blk->data;
}
ArgRule phasePtr() { return {Role::kRecord, nullptr, nullptr, -1, buildPhase}; }

std::int64_t upLen(const Case& c) { return c.intArg(1) * c.intArg(4); }

template <class T>
std::vector<Row> sampling(const char* upName, const char* downName,
                          RyxStatus (*up)(const T*, int, T*, int*, int, int*),
                          RyxStatus (*down)(const T*, int, T*, int*, int, int*)) {
  return {row(upName, up, in(arg<1>), len(), out(upLen), out(one), factor(), phasePtr()),
          row(downName, down, in(arg<1>), len(), out(arg<1>), out(one), factor(), phasePtr())};
}

template <class T>
std::vector<Row> median(const char* name1, const char* name2, void (*f1)(T*, int, int),
                        void (*f2)(const T*, T*, int, int)) {
  return {allocating(row(name1, f1, io(arg<1>), len(), len())),
          allocating(row(name2, f2, in(arg<2>), out(arg<2>), len(), len()))};
}

// ---- Resampling records ----

template <class T>
void initLive(SS* st, Case& c) {
  const int count = 1 + c.in().byte() % 3;
  T factors[3], freqs[3];
  for (int i = 0; i < count; ++i) {
    factors[i] = static_cast<T>(0.25 * (1 + c.in().byte() % 8));
    freqs[i] = static_cast<T>(0.01 + 0.48 * (c.in().byte() / 256.0));
  }
  const int taps = 5 + c.in().byte() % 40;
  if constexpr (std::is_same_v<T, float>) ryxsSampInit(st, factors, freqs, count, taps);
  else ryxdSampInit(st, factors, freqs, count, taps);
}

template <class T, bool kForInit>
void buildSampState(Case& c, int arg) {
  const int kind = c.valid ? (kForInit ? 1 : 4) : c.in().byte() % 5;
  if (kind == 0) {
    c.ptrs[arg] = nullptr;
    return;
  }
  Block* blk = c.newBlock(sizeof(SS), 0, true);
  blk->record = true;
  auto* st = reinterpret_cast<SS*>(blk->data);
  std::memset(st, 0, sizeof *st);
  c.ptrs[arg] = st;
  c.releases.push_back([st] { ryxSampFree(st); });
  c.initRow = true;  // a filter set-up refused for memory leaves the embedded filter dead
  if (kind == 2) {
    c.in().fill(st, sizeof *st);
    st->mark = 0;
  } else if (kind == 3) {
    initLive<T>(st, c);
    ryxSampFree(st);
  } else if (kind == 4) {
    initLive<T>(st, c);
  }
}

// Init's arguments hang together: the factor and frequency arrays hold
// factorCount entries (argument 3, drawn by the factors' builder), and a
// valid case needs frequencies below 0.5, positive factors and five taps
// or more. Hostile cases mix valid entries, raw bytes, null arrays and
// hostile counts (whose arrays are null).
constexpr int kMaxFactors = 64;

template <class T>
void buildFactorArray(Case& c, int arg, bool freqs) {
  std::int64_t count = c.intArg(3);
  if (!freqs) {
    const int b = c.in().byte();
    count = c.valid ? 1 + b % 3 : b < 200 ? b % 6 - 1 : (b % 2 ? INT_MAX : INT_MIN);
    c.ints[3] = count;
  }
  const int mode = c.valid ? 0 : c.in().byte() % 4;
  if (mode == 3 || count > kMaxFactors) {
    c.ptrs[arg] = nullptr;
    return;
  }
  const int n = count > 0 ? static_cast<int>(count) : 1;
  Block* blk = c.newBlock(sizeof(T) * n, 0, false);
  blk->record = true;
  T* v = reinterpret_cast<T*>(blk->data);
  for (int i = 0; i < n; ++i) {
    const int b = c.in().byte();
    v[i] = static_cast<T>(freqs ? 0.01 + 0.48 * (b / 256.0) : 0.25 * (1 + b % 8));
  }
  if (mode == 2) c.in().fill(v, sizeof(T) * n);
  c.ptrs[arg] = v;
}
template <class T>
void buildFactors(Case& c, int arg) {
  buildFactorArray<T>(c, arg, false);
}
template <class T>
void buildFreqs(Case& c, int arg) {
  buildFactorArray<T>(c, arg, true);
}
void keepCount(Case&, int) {}
void buildTapsLen(Case& c, int arg) {
  const int b = c.in().byte();
  c.ints[arg] = c.valid ? 5 + b % 40 : b < 200 ? b % 50 - 3 : (b % 2 ? INT_MAX : INT_MIN);
}

ArgRule built(RecordFn fn) { return {Role::kRecord, nullptr, nullptr, -1, fn}; }

template <class T>
std::vector<Row> resampling(const char* initName, const char* sampName,
                            int (*init)(SS*, const T*, const T*, int, int), int (*samp)(SS*, const T*, int, T*, int)) {
  return {allocating(row(initName, init, built(buildSampState<T, true>), built(buildFactors<T>),
                         built(buildFreqs<T>), built(keepCount), built(buildTapsLen))),
          allocating(row(sampName, samp, built(buildSampState<T, false>), in(arg<2>), len(), out(arg<4>), len()))};
}

// Free has nothing to refuse: null, a record never initialised, and a live
// one released twice.
void freeSamp(int which) {
  SS st{};
  const float factor = 1, freq = 0.2f;
  switch (which & 3) {
    case 0: ryxSampFree(nullptr); break;
    case 1: ryxSampFree(&st); break;
    default:
      ryxsSampInit(&st, &factor, &freq, 1, 5 + (which >> 2 & 15));
      ryxSampFree(&st);
      ryxSampFree(&st);
  }
}

std::vector<Row> all() {
  std::vector<Row> rows;
  auto add = [&rows](std::vector<Row> more) { rows.insert(rows.end(), more.begin(), more.end()); };
  add(sampling<float>("ryxsUpSample", "ryxsDownSample", ryxsUpSample, ryxsDownSample));
  add(sampling<SCplx>("ryxcUpSample", "ryxcDownSample", ryxcUpSample, ryxcDownSample));
  add(sampling<double>("ryxdUpSample", "ryxdDownSample", ryxdUpSample, ryxdDownSample));
  add(sampling<DCplx>("ryxzUpSample", "ryxzDownSample", ryxzUpSample, ryxzDownSample));
  add(sampling<short>("ryxwUpSample", "ryxwDownSample", ryxwUpSample, ryxwDownSample));
  add(sampling<WCplx>("ryxvUpSample", "ryxvDownSample", ryxvUpSample, ryxvDownSample));
  add(median<float>("ryxsbMedianFilter1", "ryxsbMedianFilter2", ryxsbMedianFilter1, ryxsbMedianFilter2));
  add(median<double>("ryxdbMedianFilter1", "ryxdbMedianFilter2", ryxdbMedianFilter1, ryxdbMedianFilter2));
  add(median<short>("ryxwbMedianFilter1", "ryxwbMedianFilter2", ryxwbMedianFilter1, ryxwbMedianFilter2));
  add({row("ryxdFirLowpass", ryxdFirLowpass, value(), out(arg<2>), len(), anyInt(), anyInt()),
       row("ryxdFirHighpass", ryxdFirHighpass, value(), out(arg<2>), len(), anyInt(), anyInt()),
       row("ryxdFirBandpass", ryxdFirBandpass, value(), value(), out(arg<3>), len(), anyInt(), anyInt()),
       row("ryxdFirBandstop", ryxdFirBandstop, value(), value(), out(arg<3>), len(), anyInt(), anyInt())});
  add(resampling<float>("ryxsSampInit", "ryxsSamp", ryxsSampInit, ryxsSamp));
  add(resampling<double>("ryxdSampInit", "ryxdSamp", ryxdSampInit, ryxdSamp));
  add({allocating(row("ryxSampFree", freeSamp, anyInt()))});
  return rows;
}

const AddRows rows(all());

}  // namespace
}  // namespace hostile
