// Signal generators on blocks of 4096: tone blocks against liquid-dsp's
// NCO stepped per sample (benchmark-only peer), window application against
// a plain -O3 loop multiplying by a precomputed window, and noise blocks
// against GSL's Mersenne Twister (benchmark-only peer).
//   cmake -S . -B build/bench -DRYX_BENCH=ON -DRYX_EXAMPLES=OFF -DRYX_TESTS=OFF
//   cmake --build build/bench --target bench_generate -j2
//   build/bench/bench_generate --benchmark_format=json > run.json && bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "ryxcore.h"

#ifdef RYX_HAVE_LIQUID
#include <liquid/liquid.h>
#endif
#ifdef RYX_HAVE_GSL
#include <gsl/gsl_randist.h>
#include <gsl/gsl_rng.h>
#endif

namespace {

constexpr int kBlock = 4096;

void configure(benchmark::internal::Benchmark* b) {
  b->Repetitions(5)->ReportAggregatesOnly(true)->ComputeStatistics("min", [](const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
  });
}

void setRate(benchmark::State& state, int samples) {
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(samples));
}

void cbToneRyx(benchmark::State& state) {
  RyxToneSCplxState s;
  ryxcToneInit(0.0123f, 0.5f, 1.0f, &s);
  std::vector<SCplx> dst(kBlock);
  for (auto _ : state) {
    ryxcbTone(&s, dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  setRate(state, kBlock);
}

void sbToneRyx(benchmark::State& state) {
  RyxToneF32State s;
  ryxsToneInit(0.0123f, 0.5f, 1.0f, &s);
  std::vector<float> dst(kBlock);
  for (auto _ : state) {
    ryxsbTone(&s, dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  setRate(state, kBlock);
}

#ifdef RYX_HAVE_LIQUID
void cbToneLiquid(benchmark::State& state) {
  nco_crcf q = nco_crcf_create(LIQUID_NCO);
  nco_crcf_set_frequency(q, 2 * 3.14159265f * 0.0123f);
  std::vector<std::complex<float>> dst(kBlock);
  for (auto _ : state) {
    for (int i = 0; i < kBlock; ++i) {
      nco_crcf_cexpf(q, &dst[i]);
      nco_crcf_step(q);
    }
    benchmark::ClobberMemory();
  }
  nco_crcf_destroy(q);
  setRate(state, kBlock);
}

void sbToneLiquid(benchmark::State& state) {
  nco_crcf q = nco_crcf_create(LIQUID_NCO);
  nco_crcf_set_frequency(q, 2 * 3.14159265f * 0.0123f);
  std::vector<float> dst(kBlock);
  for (auto _ : state) {
    for (int i = 0; i < kBlock; ++i) {
      dst[i] = nco_crcf_cos(q);
      nco_crcf_step(q);
    }
    benchmark::ClobberMemory();
  }
  nco_crcf_destroy(q);
  setRate(state, kBlock);
}
BENCHMARK(cbToneLiquid)->Name("cbTone:liquid/4096")->Apply(configure);
BENCHMARK(sbToneLiquid)->Name("sbTone:liquid/4096")->Apply(configure);
#endif

BENCHMARK(cbToneRyx)->Name("cbTone:ryx/4096")->Apply(configure);
BENCHMARK(sbToneRyx)->Name("sbTone:ryx/4096")->Apply(configure);

// Windows: ryxcore applies weights made on the fly; the peer multiplies by a
// window computed beforehand (the cost a caller without a window routine
// pays per block, once the table exists).
void sWinHannRyx(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<float> v(n, 1.0f);
  for (auto _ : state) {
    ryxsWinHann(v.data(), n);
    benchmark::ClobberMemory();
  }
  setRate(state, n);
}

void sWinKaiserRyx(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<float> v(n, 1.0f);
  for (auto _ : state) {
    ryxsWinKaiser(v.data(), n, 8.0f / n);
    benchmark::ClobberMemory();
  }
  setRate(state, n);
}

__attribute__((noinline)) void multiplyLoop(const float* w, float* v, int n) {
  for (int i = 0; i < n; ++i) v[i] *= w[i];
}

void sWinLoop(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<float> v(n, 1.0f), w(n);
  for (int i = 0; i < n; ++i) w[i] = static_cast<float>(0.5 - 0.5 * std::cos(2 * 3.141592653589793 * i / (n - 1)));
  for (auto _ : state) {
    multiplyLoop(w.data(), v.data(), n);
    benchmark::ClobberMemory();
  }
  setRate(state, n);
}

BENCHMARK(sWinHannRyx)->Name("sWinHann:ryx")->Arg(512)->Arg(4096)->Apply(configure);
BENCHMARK(sWinLoop)->Name("sWinHann:loop")->Arg(512)->Arg(4096)->Apply(configure);
BENCHMARK(sWinKaiserRyx)->Name("sWinKaiser:ryx")->Arg(512)->Arg(4096)->Apply(configure);
BENCHMARK(sWinLoop)->Name("sWinKaiser:loop")->Arg(512)->Arg(4096)->Apply(configure);

void dbRandGausRyx(benchmark::State& state) {
  RyxRandGausF64State s;
  ryxdRandGausInit(1, 0, 1, &s);
  std::vector<double> dst(kBlock);
  for (auto _ : state) {
    ryxdbRandGaus(&s, dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  setRate(state, kBlock);
}

void sbRandUniRyx(benchmark::State& state) {
  RyxRandUniF32State s;
  ryxsRandUniInit(1, 0, 1, &s);
  std::vector<float> dst(kBlock);
  for (auto _ : state) {
    ryxsbRandUni(&s, dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  setRate(state, kBlock);
}

#ifdef RYX_HAVE_GSL
// GSL's Mersenne Twister: one standard deviate (Box-Muller polar form) or
// one uniform on [0, 1) per sample, stored as the ryxcore block stores them.
void dbRandGausGsl(benchmark::State& state) {
  gsl_rng* r = gsl_rng_alloc(gsl_rng_mt19937);
  std::vector<double> dst(kBlock);
  for (auto _ : state) {
    for (int i = 0; i < kBlock; ++i) dst[i] = gsl_ran_gaussian(r, 1.0);
    benchmark::ClobberMemory();
  }
  gsl_rng_free(r);
  setRate(state, kBlock);
}

void sbRandUniGsl(benchmark::State& state) {
  gsl_rng* r = gsl_rng_alloc(gsl_rng_mt19937);
  std::vector<float> dst(kBlock);
  for (auto _ : state) {
    for (int i = 0; i < kBlock; ++i) dst[i] = static_cast<float>(gsl_rng_uniform(r));
    benchmark::ClobberMemory();
  }
  gsl_rng_free(r);
  setRate(state, kBlock);
}
BENCHMARK(dbRandGausGsl)->Name("dbRandGaus:gsl/4096")->Apply(configure);
BENCHMARK(sbRandUniGsl)->Name("sbRandUni:gsl/4096")->Apply(configure);
#endif

BENCHMARK(dbRandGausRyx)->Name("dbRandGaus:ryx/4096")->Apply(configure);
BENCHMARK(sbRandUniRyx)->Name("sbRandUni:ryx/4096")->Apply(configure);

}  // namespace

BENCHMARK_MAIN();
