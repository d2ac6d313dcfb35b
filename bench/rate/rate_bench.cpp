// Rate family against its peers (benchmark-only): resampling 44100 to
// 48000 in blocks of 44100 against libsamplerate's SRC_SINC_FASTEST (loaded
// at run time from libsamplerate.so.0 when present) and liquid-dsp's
// rational and arbitrary-rate resamplers; the float median filter against a
// plain sort-per-window loop; the window design of lowpass taps against
// liquid_firdes_kaiser.
//   cmake -S . -B build/bench -DRYX_BENCH=ON -DRYX_TESTS=OFF -DRYX_EXAMPLES=OFF
//   cmake --build build/bench --target bench_rate -j2
//   build/bench/bench_rate --benchmark_format=json > run.json && bench/ratios.py run.json
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "ryxcore.h"

#ifdef RYX_HAVE_LIQUID
#include <liquid/liquid.h>
#endif

namespace {

constexpr int kSrc = 44100;
constexpr int kDst = 48000;

std::vector<float> signal(int n) {
  std::vector<float> v(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) v[static_cast<size_t>(i)] = static_cast<float>(std::sin(0.01 * i) + 0.1 * ((i * 37) % 11));
  return v;
}

void configure(benchmark::internal::Benchmark* b) {
  b->Repetitions(5)->ReportAggregatesOnly(true)->ComputeStatistics("min", [](const std::vector<double>& v) {
    return *std::min_element(v.begin(), v.end());
  });
}

// ---- Resampling ----

void sampRyx(benchmark::State& state) {
  const float factor = static_cast<float>(kSrc) / kDst, freq = 0.003f;
  RyxSampState st{};
  ryxsSampInit(&st, &factor, &freq, 1, 2560);
  const std::vector<float> src = signal(kSrc);
  std::vector<float> dst(kDst);
  for (auto _ : state) {
    ryxsSamp(&st, src.data(), kSrc, dst.data(), kDst);
    benchmark::DoNotOptimize(dst.data());
  }
  state.SetItemsProcessed(state.iterations() * kSrc);
  ryxSampFree(&st);
}

// libsamplerate's one-call interface, by its documented layout.
struct SrcData {
  const float* dataIn;
  float* dataOut;
  long inputFrames, outputFrames, inputFramesUsed, outputFramesGen;
  int endOfInput;
  double srcRatio;
};
using SrcSimple = int (*)(SrcData*, int converter, int channels);
constexpr int kSincFastest = 2;

void sampLibsamplerate(benchmark::State& state) {
  void* lib = dlopen("libsamplerate.so.0", RTLD_NOW);
  auto simple = lib ? reinterpret_cast<SrcSimple>(dlsym(lib, "src_simple")) : nullptr;
  if (simple == nullptr) {
    state.SkipWithError("libsamplerate.so.0 not found");
    return;
  }
  const std::vector<float> src = signal(kSrc);
  std::vector<float> dst(kDst + 16);
  for (auto _ : state) {
    SrcData d{src.data(), dst.data(), kSrc, kDst + 16, 0, 0, 0, static_cast<double>(kDst) / kSrc};
    simple(&d, kSincFastest, 1);
    benchmark::DoNotOptimize(dst.data());
  }
  state.SetItemsProcessed(state.iterations() * kSrc);
  dlclose(lib);
}

#ifdef RYX_HAVE_LIQUID
void sampLiquidRresamp(benchmark::State& state) {
  rresamp_rrrf q = rresamp_rrrf_create_kaiser(160, 147, 8, 0.45f, 60.0f);
  std::vector<float> src = signal(kSrc), dst(kDst);
  for (auto _ : state) {
    rresamp_rrrf_execute_block(q, src.data(), kSrc / 147, dst.data());
    benchmark::DoNotOptimize(dst.data());
  }
  state.SetItemsProcessed(state.iterations() * kSrc);
  rresamp_rrrf_destroy(q);
}

void sampLiquidResampCrcf(benchmark::State& state) {
  resamp_crcf q = resamp_crcf_create(static_cast<float>(kDst) / kSrc, 8, 0.45f, 60.0f, 64);
  const std::vector<float> re = signal(kSrc);
  std::vector<std::complex<float>> src(re.begin(), re.end()), dst(kDst + 64);
  for (auto _ : state) {
    unsigned int ny = 0;
    resamp_crcf_execute_block(q, reinterpret_cast<liquid_float_complex*>(src.data()), kSrc,
                              reinterpret_cast<liquid_float_complex*>(dst.data()), &ny);
    benchmark::DoNotOptimize(dst.data());
  }
  state.SetItemsProcessed(state.iterations() * kSrc);
  resamp_crcf_destroy(q);
}
#endif

// ---- Median ----

constexpr int kMedianLen = 1000000;

void medianRyx(benchmark::State& state) {
  const int mask = static_cast<int>(state.range(0));
  const std::vector<float> src = signal(kMedianLen);
  std::vector<float> x(src.size());
  for (auto _ : state) {
    state.PauseTiming();
    x = src;
    state.ResumeTiming();
    ryxsbMedianFilter1(x.data(), kMedianLen, mask);
    benchmark::DoNotOptimize(x.data());
  }
  state.SetItemsProcessed(state.iterations() * kMedianLen);
}

// The plain method: copy each extended window and sort it.
void medianLoop(benchmark::State& state) {
  const int mask = static_cast<int>(state.range(0)), half = mask / 2;
  const std::vector<float> src = signal(kMedianLen);
  std::vector<float> dst(src.size()), w(static_cast<size_t>(mask));
  for (auto _ : state) {
    for (int i = 0; i < kMedianLen; ++i) {
      for (int k = 0; k < mask; ++k) w[k] = src[static_cast<size_t>(std::clamp(i - half + k, 0, kMedianLen - 1))];
      std::sort(w.begin(), w.end());
      dst[static_cast<size_t>(i)] = w[static_cast<size_t>(half)];
    }
    benchmark::DoNotOptimize(dst.data());
  }
  state.SetItemsProcessed(state.iterations() * kMedianLen);
}

// ---- Design ----

void lowpassRyx(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<double> taps(static_cast<size_t>(n));
  for (auto _ : state) {
    ryxdFirLowpass(0.1, taps.data(), n, 3, 1);
    benchmark::DoNotOptimize(taps.data());
  }
}

#ifdef RYX_HAVE_LIQUID
void lowpassLiquid(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<float> taps(static_cast<size_t>(n));
  for (auto _ : state) {
    liquid_firdes_kaiser(static_cast<unsigned>(n), 0.1f, 60.0f, 0.0f, taps.data());
    benchmark::DoNotOptimize(taps.data());
  }
}
#endif

}  // namespace

BENCHMARK(sampRyx)->Name("sSamp44k1to48k:ryx")->Arg(2560)->Apply(configure);
BENCHMARK(sampLibsamplerate)->Name("sSamp44k1to48k:libsamplerate")->Arg(2560)->Apply(configure);
BENCHMARK(medianRyx)->Name("sbMedianFilter1:ryx")->Arg(3)->Arg(7)->Arg(9)->Arg(15)->Apply(configure);
BENCHMARK(medianLoop)->Name("sbMedianFilter1:loop")->Arg(3)->Arg(7)->Arg(9)->Arg(15)->Apply(configure);
BENCHMARK(lowpassRyx)->Name("dFirLowpass:ryx")->Arg(64)->Arg(512)->Apply(configure);
#ifdef RYX_HAVE_LIQUID
BENCHMARK(sampLiquidRresamp)->Name("sSamp44k1to48k:liquid_rresamp")->Arg(2560)->Apply(configure);
BENCHMARK(sampLiquidResampCrcf)->Name("sSamp44k1to48k:liquid_resamp_crcf")->Arg(2560)->Apply(configure);
BENCHMARK(lowpassLiquid)->Name("dFirLowpass:liquid")->Arg(64)->Arg(512)->Apply(configure);
#endif

BENCHMARK_MAIN();
