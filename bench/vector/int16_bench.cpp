// 16-bit arithmetic and logic against plain C++ loops doing the same
// wrapping or saturating arithmetic, compiled at -O3 in this file (the
// peers are kept out of line so each call does the whole loop).
//   build/bench/bench_vector --benchmark_filter='^(wb|vb)' --benchmark_format=json > run.json
//   bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "ryxcore.h"

namespace peer16 {

inline short sat(int v) { return static_cast<short>(std::clamp(v, -32768, 32767)); }

__attribute__((noinline)) void add3Wrap(const short* a, const short* b, short* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = static_cast<short>(a[i] + b[i]);
}
__attribute__((noinline)) void add3Sat(const short* a, const short* b, short* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = sat(a[i] + b[i]);
}
__attribute__((noinline)) void mpy3Wrap(const short* a, const short* b, short* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = static_cast<short>(a[i] * b[i]);
}
__attribute__((noinline)) void mpy3Sat(const short* a, const short* b, short* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = sat(a[i] * b[i]);
}
// Complex product with saturation; the imaginary sum is formed in 64 bits
// since it can reach 2^31.
__attribute__((noinline)) void cmpy3Sat(const WCplx* a, const WCplx* b, WCplx* d, int n) {
  for (int i = 0; i < n; ++i) {
    const std::int64_t re = std::int64_t{a[i].re} * b[i].re - std::int64_t{a[i].im} * b[i].im;
    const std::int64_t im = std::int64_t{a[i].re} * b[i].im + std::int64_t{a[i].im} * b[i].re;
    d[i].re = static_cast<short>(std::clamp<std::int64_t>(re, -32768, 32767));
    d[i].im = static_cast<short>(std::clamp<std::int64_t>(im, -32768, 32767));
  }
}
__attribute__((noinline)) void and3(const short* a, const short* b, short* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = static_cast<short>(a[i] & b[i]);
}

}  // namespace peer16

namespace {

struct Arrays16 {
  explicit Arrays16(int n) : a(ryxwMalloc(2 * n)), b(ryxwMalloc(2 * n)), d(ryxwMalloc(2 * n)) {
    for (int i = 0; i < 2 * n; ++i) {
      a[i] = static_cast<short>(i * 7919 - 20000);
      b[i] = static_cast<short>(12345 - i * 31);
      d[i] = 0;
    }
  }
  ~Arrays16() {
    ryxFree(a);
    ryxFree(b);
    ryxFree(d);
  }
  WCplx* va() { return reinterpret_cast<WCplx*>(a); }
  WCplx* vb() { return reinterpret_cast<WCplx*>(b); }
  WCplx* vd() { return reinterpret_cast<WCplx*>(d); }
  short *a, *b, *d;
};

template <class Fn>
void run16(benchmark::State& state, int bytesPerElement, Fn fn) {
  const int n = static_cast<int>(state.range(0));
  Arrays16 x(n);
  for (auto _ : state) {
    fn(x, n);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(n) * bytesPerElement);
}

void sizes16(benchmark::internal::Benchmark* b) {
  for (int n : {4096, 1 << 20}) b->Arg(n);
  b->Repetitions(5)->ReportAggregatesOnly(true)->ComputeStatistics("min", [](const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
  });
}

}  // namespace

BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { ryxwbAdd3(x.a, x.b, x.d, n, 0, nullptr); })->Name("wbAdd3_wrap:ryx")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { peer16::add3Wrap(x.a, x.b, x.d, n); })->Name("wbAdd3_wrap:loop")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { ryxwbAdd3(x.a, x.b, x.d, n, 1, nullptr); })->Name("wbAdd3_sat:ryx")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { peer16::add3Sat(x.a, x.b, x.d, n); })->Name("wbAdd3_sat:loop")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { ryxwbMpy3(x.a, x.b, x.d, n, 0, nullptr); })->Name("wbMpy3_wrap:ryx")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { peer16::mpy3Wrap(x.a, x.b, x.d, n); })->Name("wbMpy3_wrap:loop")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { ryxwbMpy3(x.a, x.b, x.d, n, 1, nullptr); })->Name("wbMpy3_sat:ryx")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { peer16::mpy3Sat(x.a, x.b, x.d, n); })->Name("wbMpy3_sat:loop")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 12, [](Arrays16& x, int n) { ryxvbMpy3(x.va(), x.vb(), x.vd(), n, 1, nullptr); })->Name("vbMpy3_sat:ryx")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 12, [](Arrays16& x, int n) { peer16::cmpy3Sat(x.va(), x.vb(), x.vd(), n); })->Name("vbMpy3_sat:loop")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { ryxwbAnd3(x.a, x.b, x.d, n); })->Name("wbAnd3:ryx")->Apply(sizes16);
BENCHMARK_CAPTURE(run16, "", 6, [](Arrays16& x, int n) { peer16::and3(x.a, x.b, x.d, n); })->Name("wbAnd3:loop")->Apply(sizes16);
