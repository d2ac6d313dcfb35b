// FIR filters on blocks of 4096 samples against liquid-dsp (benchmark-only
// peer): single-rate float in the caller-owned and library-owned forms,
// complex samples through real taps, and decimate/interpolate by 4.
//   cmake -S . -B build/fir/bench -DRYX_BENCH=ON -DRYX_EXAMPLES=OFF -DRYX_TESTS=OFF
//   cmake --build build/fir/bench --target bench_fir -j2
//   build/fir/bench/bench_fir --benchmark_format=json > run.json && bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <algorithm>
#include <complex>
#include <cstring>
#include <vector>

#include "ryxcore.h"

#ifdef RYX_HAVE_LIQUID
#include <liquid/liquid.h>
#endif

namespace {

constexpr int kBlock = 4096;

std::vector<float> signal(int n, float step) {
  std::vector<float> v(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) v[static_cast<size_t>(i)] = 0.5f - static_cast<float>((i * 37) % 101) * step;
  return v;
}

void configure(benchmark::internal::Benchmark* b) {
  b->Repetitions(5)->ReportAggregatesOnly(true)->ComputeStatistics("min", [](const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
  });
}

void setRate(benchmark::State& state, int samples) {
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(samples));
}

// ---- ryxcore ----

void sbFirlRyx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::vector<float> taps = signal(len, 0.003f), line(static_cast<size_t>(len));
  const std::vector<float> src = signal(kBlock, 0.01f);
  std::vector<float> dst(kBlock);
  RyxFirTapState ts{};
  RyxFirDlyState ds{};
  ryxsFirlInit(taps.data(), len, &ts);
  ryxsFirlInitDlyl(&ts, line.data(), &ds);
  ryxsFirlSetDlyl(&ts, nullptr, &ds);
  for (auto _ : state) {
    ryxsbFirl(&ts, &ds, src.data(), dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  setRate(state, kBlock);
}

void sbFirRyx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> taps = signal(len, 0.003f), src = signal(kBlock, 0.01f);
  std::vector<float> dst(kBlock);
  RyxFirState st{};
  ryxsFirInit(taps.data(), len, nullptr, &st);
  for (auto _ : state) {
    ryxsbFir(&st, src.data(), dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  ryxFirFree(&st);
  setRate(state, kBlock);
}

void csbFirRyx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> taps = signal(len, 0.003f), raw = signal(2 * kBlock, 0.01f);
  std::vector<SCplx> dst(kBlock);
  RyxFirState st{};
  ryxcsFirInit(taps.data(), len, nullptr, &st);
  const SCplx* src = reinterpret_cast<const SCplx*>(raw.data());
  for (auto _ : state) {
    ryxcsbFir(&st, src, dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  ryxFirFree(&st);
  setRate(state, kBlock);
}

// Decimate by 4: 4096 inputs give 1024 outputs. Interpolate by 4: 4096
// inputs give 16384 outputs.
void decim4Ryx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> taps = signal(len, 0.003f), src = signal(kBlock, 0.01f);
  std::vector<float> dst(kBlock / 4);
  RyxFirState st{};
  ryxsFirInitMr(taps.data(), len, nullptr, 1, 0, 4, 0, &st);
  for (auto _ : state) {
    ryxsbFir(&st, src.data(), dst.data(), kBlock / 4);
    benchmark::ClobberMemory();
  }
  ryxFirFree(&st);
  setRate(state, kBlock);
}

void interp4Ryx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> taps = signal(len, 0.003f), src = signal(kBlock, 0.01f);
  std::vector<float> dst(4 * kBlock);
  RyxFirState st{};
  ryxsFirInitMr(taps.data(), len, nullptr, 4, 0, 1, 0, &st);
  for (auto _ : state) {
    ryxsbFir(&st, src.data(), dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  ryxFirFree(&st);
  setRate(state, kBlock);
}

// The caller-owned multirate forms on the same filters.
void decim4lRyx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::vector<float> taps = signal(len, 0.003f), src = signal(kBlock, 0.01f);
  std::vector<float> dst(kBlock / 4), line(static_cast<size_t>(len) + 8);
  RyxFirTapState ts;
  RyxFirDlyState ds;
  ryxsFirlInitMr(taps.data(), len, 1, 0, 4, 0, &ts);
  ryxsFirlInitDlyl(&ts, line.data(), &ds);
  ryxsFirlSetDlyl(&ts, nullptr, &ds);
  for (auto _ : state) {
    ryxsbFirl(&ts, &ds, src.data(), dst.data(), kBlock / 4);
    benchmark::ClobberMemory();
  }
  setRate(state, kBlock);
}

void interp4lRyx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::vector<float> taps = signal(len, 0.003f), src = signal(kBlock, 0.01f);
  std::vector<float> dst(4 * kBlock), line(static_cast<size_t>(len) + 8);
  RyxFirTapState ts;
  RyxFirDlyState ds;
  ryxsFirlInitMr(taps.data(), len, 4, 0, 1, 0, &ts);
  ryxsFirlInitDlyl(&ts, line.data(), &ds);
  ryxsFirlSetDlyl(&ts, nullptr, &ds);
  for (auto _ : state) {
    ryxsbFirl(&ts, &ds, src.data(), dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  setRate(state, kBlock);
}

BENCHMARK(sbFirlRyx)->Name("sbFirl:ryx")->Arg(16)->Arg(64)->Arg(256)->Apply(configure);
BENCHMARK(sbFirRyx)->Name("sbFir:ryx")->Arg(16)->Arg(64)->Arg(256)->Apply(configure);
BENCHMARK(csbFirRyx)->Name("csbFir:ryx")->Arg(64)->Apply(configure);
BENCHMARK(decim4Ryx)->Name("decim4:ryx")->Arg(64)->Apply(configure);
BENCHMARK(interp4Ryx)->Name("interp4:ryx")->Arg(64)->Apply(configure);
BENCHMARK(decim4lRyx)->Name("decim4l:ryx")->Arg(64)->Apply(configure);
BENCHMARK(interp4lRyx)->Name("interp4l:ryx")->Arg(64)->Apply(configure);

// ---- liquid-dsp ----
#ifdef RYX_HAVE_LIQUID

void firfiltLiquid(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::vector<float> taps = signal(len, 0.003f), src = signal(kBlock, 0.01f);
  std::vector<float> dst(kBlock);
  firfilt_rrrf q = firfilt_rrrf_create(taps.data(), static_cast<unsigned>(len));
  for (auto _ : state) {
    firfilt_rrrf_execute_block(q, src.data(), kBlock, dst.data());
    benchmark::ClobberMemory();
  }
  firfilt_rrrf_destroy(q);
  setRate(state, kBlock);
}

void firfiltComplexLiquid(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::vector<float> taps = signal(len, 0.003f), raw = signal(2 * kBlock, 0.01f);
  std::vector<liquid_float_complex> src(kBlock), dst(kBlock);
  std::memcpy(src.data(), raw.data(), raw.size() * sizeof(float));
  firfilt_crcf q = firfilt_crcf_create(taps.data(), static_cast<unsigned>(len));
  for (auto _ : state) {
    firfilt_crcf_execute_block(q, src.data(), kBlock, dst.data());
    benchmark::ClobberMemory();
  }
  firfilt_crcf_destroy(q);
  setRate(state, kBlock);
}

void decim4Liquid(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::vector<float> taps = signal(len, 0.003f), src = signal(kBlock, 0.01f);
  std::vector<float> dst(kBlock / 4);
  firdecim_rrrf q = firdecim_rrrf_create(4, taps.data(), static_cast<unsigned>(len));
  for (auto _ : state) {
    firdecim_rrrf_execute_block(q, src.data(), kBlock / 4, dst.data());
    benchmark::ClobberMemory();
  }
  firdecim_rrrf_destroy(q);
  setRate(state, kBlock);
}

void interp4Liquid(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::vector<float> taps = signal(len, 0.003f), src = signal(kBlock, 0.01f);
  std::vector<float> dst(4 * kBlock);
  firinterp_rrrf q = firinterp_rrrf_create(4, taps.data(), static_cast<unsigned>(len));
  for (auto _ : state) {
    firinterp_rrrf_execute_block(q, src.data(), kBlock, dst.data());
    benchmark::ClobberMemory();
  }
  firinterp_rrrf_destroy(q);
  setRate(state, kBlock);
}

// The same filter serves both of our forms; liquid has one.
BENCHMARK(firfiltLiquid)->Name("sbFirl:liquid")->Arg(16)->Arg(64)->Arg(256)->Apply(configure);
BENCHMARK(firfiltLiquid)->Name("sbFir:liquid")->Arg(16)->Arg(64)->Arg(256)->Apply(configure);
BENCHMARK(firfiltComplexLiquid)->Name("csbFir:liquid")->Arg(64)->Apply(configure);
BENCHMARK(decim4Liquid)->Name("decim4:liquid")->Arg(64)->Apply(configure);
BENCHMARK(interp4Liquid)->Name("interp4:liquid")->Arg(64)->Apply(configure);
BENCHMARK(decim4Liquid)->Name("decim4l:liquid")->Arg(64)->Apply(configure);
BENCHMARK(interp4Liquid)->Name("interp4l:liquid")->Arg(64)->Apply(configure);

#endif

}  // namespace

BENCHMARK_MAIN();
