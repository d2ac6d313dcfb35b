// Float and complex dot products against VOLK's dot-product kernels
// (volk_32f_x2_dot_prod_32f, volk_32fc_x2_dot_prod_32fc), when VOLK is
// installed, on 32-byte aligned arrays from ryxsMalloc.
//   build/bench/bench_vector --benchmark_filter='DotProd' --benchmark_format=json > run.json
//   bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <algorithm>
#include <complex>
#include <vector>

#include "ryxcore.h"
#if RYX_HAVE_VOLK
#include <volk/volk.h>
#endif

namespace {

struct DotArrays {
  explicit DotArrays(int n) : a(ryxsMalloc(2 * n)), b(ryxsMalloc(2 * n)) {
    for (int i = 0; i < 2 * n; ++i) {
      a[i] = 1.0f + i * 1e-6f;
      b[i] = 0.5f - i * 1e-7f;
    }
  }
  ~DotArrays() {
    ryxFree(a);
    ryxFree(b);
  }
  SCplx* ca() { return reinterpret_cast<SCplx*>(a); }
  SCplx* cb() { return reinterpret_cast<SCplx*>(b); }
  float *a, *b;
};

template <class Fn>
void runDot(benchmark::State& state, int bytesPerElement, Fn fn) {
  const int n = static_cast<int>(state.range(0));
  DotArrays x(n);
  for (auto _ : state) benchmark::DoNotOptimize(fn(x, n));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(n) * bytesPerElement);
}

void dotSizes(benchmark::internal::Benchmark* b) {
  for (int n : {256, 4096, 65536}) b->Arg(n);
  b->Repetitions(5)->ReportAggregatesOnly(true)->ComputeStatistics("min", [](const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
  });
}

}  // namespace

BENCHMARK_CAPTURE(runDot, "sDotProd:ryx", 8, [](DotArrays& x, int n) { return ryxsDotProd(x.a, x.b, n); })
    ->Name("sDotProd:ryx")->Apply(dotSizes);
BENCHMARK_CAPTURE(runDot, "cDotProd:ryx", 16, [](DotArrays& x, int n) { return ryxcDotProd(x.ca(), x.cb(), n).re; })
    ->Name("cDotProd:ryx")->Apply(dotSizes);
#if RYX_HAVE_VOLK
BENCHMARK_CAPTURE(runDot, "sDotProd:volk", 8, [](DotArrays& x, int n) {
  float r;
  volk_32f_x2_dot_prod_32f(&r, x.a, x.b, static_cast<unsigned>(n));
  return r;
})->Name("sDotProd:volk")->Apply(dotSizes);
BENCHMARK_CAPTURE(runDot, "cDotProd:volk", 16, [](DotArrays& x, int n) {
  lv_32fc_t r;
  volk_32fc_x2_dot_prod_32fc(&r, reinterpret_cast<const lv_32fc_t*>(x.a), reinterpret_cast<const lv_32fc_t*>(x.b),
                             static_cast<unsigned>(n));
  return r.real();
})->Name("cDotProd:volk")->Apply(dotSizes);
#endif
