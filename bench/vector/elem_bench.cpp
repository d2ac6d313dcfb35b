// One-operand elementwise float functions at 256, 4096 and 65536 elements:
// Sqrt, Abs and Sqr against VOLK's volk_32f_sqrt_32f (Sqrt) and plain -O3
// loops; Ln, Exp and Arctan against VOLK's volk_32f_log2_32f,
// volk_32f_exp_32f, volk_32f_atan_32f and loops of glibc's logf, expf and
// atanf. Sources are positive, from 0.5 to about 4 (Exp from -4 to 4), on
// 32-byte aligned arrays from ryxsMalloc.
//   build/bench/bench_vector --benchmark_filter='^sb(Sqrt|Abs|Sqr|Ln|Exp|Arctan)2' --benchmark_format=json > run.json
//   bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "plain_loops.h"
#include "ryxcore.h"
#include "ryxcore/vector_lnexp.h"
#if RYX_HAVE_VOLK
#include <volk/volk.h>
#endif

namespace {

using Fn = void (*)(const float*, float*, int);

void runElem(benchmark::State& state, Fn fn, float low) {
  const int n = static_cast<int>(state.range(0));
  float* s = ryxsMalloc(n);
  float* d = ryxsMalloc(n);
  for (int i = 0; i < n; ++i) s[i] = low + (4.0f - low) * static_cast<float>((i * 7919) % n) / n;
  for (auto _ : state) {
    fn(s, d, n);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(n) * 8);
  ryxFree(s);
  ryxFree(d);
}

void elemSizes(benchmark::internal::Benchmark* b) {
  for (int n : {256, 4096, 65536}) b->Arg(n);
  b->Repetitions(5)->ReportAggregatesOnly(true)->ComputeStatistics("min", [](const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
  });
}

struct Case {
  const char* name;
  Fn fn;
  float low;
};

const bool kRegistered = [] {
  const std::vector<Case> cases = {
      {"sbSqrt2:ryx", ryxsbSqrt2, 0.5f},      {"sbSqrt2:loop", peer::sqrt, 0.5f},
      {"sbAbs2:ryx", ryxsbAbs2, -4.0f},       {"sbAbs2:loop", peer::abs, -4.0f},
      {"sbSqr2:ryx", ryxsbSqr2, -4.0f},       {"sbSqr2:loop", peer::sqr, -4.0f},
      {"sbLn2:ryx", ryxsbLn2, 0.5f},          {"sbLn2:libm", peer::ln, 0.5f},
      {"sbExp2:ryx", ryxsbExp2, -4.0f},       {"sbExp2:libm", peer::exp, -4.0f},
      {"sbArctan2:ryx", ryxsbArctan2, -4.0f}, {"sbArctan2:libm", peer::atan, -4.0f},
#if RYX_HAVE_VOLK
      // VOLK's kernels are pointers set at load time, so each is called from a lambda.
      {"sbSqrt2:volk", [](const float* s, float* d, int n) { volk_32f_sqrt_32f(d, s, static_cast<unsigned>(n)); }, 0.5f},
      {"sbLn2:volk", [](const float* s, float* d, int n) { volk_32f_log2_32f(d, s, static_cast<unsigned>(n)); }, 0.5f},
      {"sbExp2:volk", [](const float* s, float* d, int n) { volk_32f_exp_32f(d, s, static_cast<unsigned>(n)); }, -4.0f},
      {"sbArctan2:volk", [](const float* s, float* d, int n) { volk_32f_atan_32f(d, s, static_cast<unsigned>(n)); }, -4.0f},
#endif
  };
  for (const Case& c : cases)
    benchmark::RegisterBenchmark(c.name, [c](benchmark::State& st) { runElem(st, c.fn, c.low); })->Apply(elemSizes);
  return true;
}();

}  // namespace
