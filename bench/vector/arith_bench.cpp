// Elementwise float arithmetic, fill and copy against plain -O3 loops and
// the C library's memcpy/memset, on 32-byte aligned arrays from ryxsMalloc.
//   build/bench/bench_vector --benchmark_filter='^s|^c' --benchmark_format=json > run.json
//   bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "plain_loops.h"
#include "ryxcore.h"

namespace {

struct Arrays {
  explicit Arrays(int n) : n(n), a(ryxsMalloc(2 * n)), b(ryxsMalloc(2 * n)), d(ryxsMalloc(2 * n)) {
    for (int i = 0; i < 2 * n; ++i) {
      a[i] = 1.0f + i * 1e-6f;
      b[i] = 2.0f - i * 1e-6f;
      d[i] = 0.5f;
    }
  }
  ~Arrays() {
    ryxFree(a);
    ryxFree(b);
    ryxFree(d);
  }
  SCplx* ca() { return reinterpret_cast<SCplx*>(a); }
  SCplx* cb() { return reinterpret_cast<SCplx*>(b); }
  SCplx* cd() { return reinterpret_cast<SCplx*>(d); }
  int n;
  float *a, *b, *d;
};

template <class Fn>
void run(benchmark::State& state, int bytesPerElement, Fn fn) {
  const int n = static_cast<int>(state.range(0));
  Arrays x(n);
  for (auto _ : state) {
    fn(x, n);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(n) * bytesPerElement);
}

void sizes(benchmark::internal::Benchmark* b) {
  for (int n : {256, 4096, 1 << 20, 1 << 24}) b->Arg(n);
  b->Repetitions(5)->ReportAggregatesOnly(true)->ComputeStatistics("min", [](const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
  });
}

}  // namespace

BENCHMARK_CAPTURE(run, "sbAdd3:ryx", 12, [](Arrays& x, int n) { ryxsbAdd3(x.a, x.b, x.d, n); })->Name("sbAdd3:ryx")->Apply(sizes);
BENCHMARK_CAPTURE(run, "sbAdd3:loop", 12, [](Arrays& x, int n) { peer::add3(x.a, x.b, x.d, n); })->Name("sbAdd3:loop")->Apply(sizes);
BENCHMARK_CAPTURE(run, "sbMpy1:ryx", 8, [](Arrays& x, int n) { ryxsbMpy1(1.0000001f, x.d, n); })->Name("sbMpy1:ryx")->Apply(sizes);
BENCHMARK_CAPTURE(run, "sbMpy1:loop", 8, [](Arrays& x, int n) { peer::mpy1(1.0000001f, x.d, n); })->Name("sbMpy1:loop")->Apply(sizes);
BENCHMARK_CAPTURE(run, "cbMpy3:ryx", 24, [](Arrays& x, int n) { ryxcbMpy3(x.ca(), x.cb(), x.cd(), n); })->Name("cbMpy3:ryx")->Apply(sizes);
BENCHMARK_CAPTURE(run, "cbMpy3:loop", 24, [](Arrays& x, int n) { peer::cmpy3(x.ca(), x.cb(), x.cd(), n); })->Name("cbMpy3:loop")->Apply(sizes);
BENCHMARK_CAPTURE(run, "sbCopy:ryx", 8, [](Arrays& x, int n) { ryxsbCopy(x.a, x.d, n); })->Name("sbCopy:ryx")->Apply(sizes);
BENCHMARK_CAPTURE(run, "sbCopy:loop", 8, [](Arrays& x, int n) { peer::copy(x.a, x.d, n); })->Name("sbCopy:loop")->Apply(sizes);
BENCHMARK_CAPTURE(run, "sbCopy:memcpy", 8, [](Arrays& x, int n) { std::memcpy(x.d, x.a, sizeof(float) * n); })->Name("sbCopy:memcpy")->Apply(sizes);
BENCHMARK_CAPTURE(run, "sbSet:ryx", 4, [](Arrays& x, int n) { ryxsbSet(0.0f, x.d, n); })->Name("sbSet:ryx")->Apply(sizes);
BENCHMARK_CAPTURE(run, "sbSet:loop", 4, [](Arrays& x, int n) { peer::set(0.0f, x.d, n); })->Name("sbSet:loop")->Apply(sizes);
BENCHMARK_CAPTURE(run, "sbSet:memset", 4, [](Arrays& x, int n) { std::memset(x.d, 0, sizeof(float) * n); })->Name("sbSet:memset")->Apply(sizes);

BENCHMARK_MAIN();
