// Any-length transforms against their peers: ryxcDft at non-power-of-two
// lengths beside FFTW's planned complex transform (FFTW_MEASURE), ryxsDct
// both ways beside FFTW's REDFT10 / REDFT01 with the orthonormal scaling
// loop, and the Goertzel block forms beside spandsp's goertzel on 16-bit
// samples (reset, update, result per block; both sides start a fresh
// measurement each time). Peers are linked into this program only.
//   apt-get install libfftw3-dev libspandsp-dev
//   cmake -S . -B build/bench -DRYX_BENCH=ON -DRYX_TESTS=OFF -DRYX_EXAMPLES=OFF
//   cmake --build build/bench --target bench_transform -j2
//   build/bench/bench_transform --benchmark_filter='Dft|Dct|Goertz' --benchmark_repetitions=5
//     --benchmark_format=json > run.json
//   bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <vector>

#include "ryxcore.h"

#if defined(RYX_HAVE_FFTW)
#include <fftw3.h>
#endif
#if defined(RYX_HAVE_SPANDSP)
#include <spandsp/telephony.h>
#include <spandsp/complex.h>
#include <spandsp/tone_detect.h>
#endif

namespace {

float sample(int i) { return static_cast<float>(((i * 7919) % 1000) * 0.001 - 0.5); }

void dftRyx(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<SCplx> x(n), y(n);
  for (int i = 0; i < n; ++i) x[i] = {sample(i), sample(i + 3)};
  ryxcDft(nullptr, nullptr, n, RYX_Init);
  for (auto _ : state) {
    ryxcDft(x.data(), y.data(), n, RYX_Forward);
    benchmark::DoNotOptimize(y.data());
  }
}

void dctRyx(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int flags = state.range(1) ? RYX_Forward : RYX_Inverse;
  std::vector<float> x(n), y(n);
  for (int i = 0; i < n; ++i) x[i] = sample(i);
  for (auto _ : state) {
    ryxsDct(x.data(), y.data(), n, flags);
    benchmark::DoNotOptimize(y.data());
  }
}

template <bool Sixteen>
void goertzRyx(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<short> w(n);
  std::vector<float> f(n);
  for (int i = 0; i < n; ++i) w[i] = static_cast<short>(8000 * sample(i)), f[i] = w[i];
  RyxGoertzF32State g;
  ryxsGoertzInit(0.1f, &g);
  for (auto _ : state) {
    ryxsGoertzReset(&g);
    if constexpr (Sixteen) {
      int factor = 0;
      benchmark::DoNotOptimize(ryxwbGoertz(&g, w.data(), n, RYX_AUTO_SCALE, &factor));
    } else {
      benchmark::DoNotOptimize(ryxsbGoertz(&g, f.data(), n));
    }
  }
}

#if defined(RYX_HAVE_FFTW)
void dftFftw(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  auto* x = static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * n));
  auto* y = static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * n));
  fftwf_plan p = fftwf_plan_dft_1d(n, x, y, FFTW_FORWARD, FFTW_MEASURE);
  for (int i = 0; i < n; ++i) x[i][0] = sample(i), x[i][1] = sample(i + 3);
  for (auto _ : state) {
    fftwf_execute(p);
    benchmark::DoNotOptimize(y);
  }
  fftwf_destroy_plan(p);
  fftwf_free(x);
  fftwf_free(y);
}

// REDFT10 is 2x the unnormalised DCT-II, REDFT01 the DCT-III with y[0]
// counted once: the loops make both orthonormal.
void dctFftw(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const bool forward = state.range(1) != 0;
  auto* x = static_cast<float*>(fftwf_malloc(sizeof(float) * n));
  auto* y = static_cast<float*>(fftwf_malloc(sizeof(float) * n));
  fftwf_plan p = fftwf_plan_r2r_1d(n, x, y, forward ? FFTW_REDFT10 : FFTW_REDFT01, FFTW_MEASURE);
  std::vector<float> src(n);
  for (int i = 0; i < n; ++i) src[i] = sample(i);
  const float a = static_cast<float>(std::sqrt(0.5 / n)), a0 = static_cast<float>(std::sqrt(0.25 / n));
  const float b = static_cast<float>(std::sqrt(0.5 / n)), b0 = static_cast<float>(std::sqrt(1.0 / n));
  for (auto _ : state) {
    if (forward) {
      for (int i = 0; i < n; ++i) x[i] = src[i];
      fftwf_execute(p);
      y[0] *= a0;
      for (int i = 1; i < n; ++i) y[i] *= a;
    } else {
      x[0] = src[0] * b0;
      for (int i = 1; i < n; ++i) x[i] = src[i] * b;
      fftwf_execute(p);
    }
    benchmark::DoNotOptimize(y);
  }
  fftwf_destroy_plan(p);
  fftwf_free(x);
  fftwf_free(y);
}
#endif

#if defined(RYX_HAVE_SPANDSP)
void goertzSpandsp(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<int16_t> w(n);
  for (int i = 0; i < n; ++i) w[i] = static_cast<int16_t>(8000 * sample(i));
  goertzel_descriptor_t desc;
  make_goertzel_descriptor(&desc, 800.0f, n);  // 0.1 of the 8 kHz rate
  goertzel_state_t* s = goertzel_init(nullptr, &desc);
  for (auto _ : state) {
    goertzel_reset(s);
    goertzel_update(s, w.data(), n);
    benchmark::DoNotOptimize(goertzel_result(s));
  }
  goertzel_free(s);
}
#endif

const int kRegistered = [] {
  for (int n : {1000, 1009, 4095, 10007}) {
    benchmark::RegisterBenchmark("cDft:ryx", dftRyx)->Arg(n);
#if defined(RYX_HAVE_FFTW)
    benchmark::RegisterBenchmark("cDft:fftw", dftFftw)->Arg(n);
#endif
  }
  for (int dir : {1, 0}) {
    const std::string name = dir ? "sDctFwd" : "sDctInv";
    for (int n : {1000, 1024, 4096, 65536}) {
      benchmark::RegisterBenchmark((name + ":ryx").c_str(), dctRyx)->Args({n, dir});
#if defined(RYX_HAVE_FFTW)
      benchmark::RegisterBenchmark((name + ":fftw").c_str(), dctFftw)->Args({n, dir});
#endif
    }
  }
  for (int n : {205, 4096}) {
    benchmark::RegisterBenchmark("sbGoertz:ryx", goertzRyx<false>)->Arg(n);
    benchmark::RegisterBenchmark("wbGoertz:ryx", goertzRyx<true>)->Arg(n);
#if defined(RYX_HAVE_SPANDSP)
    benchmark::RegisterBenchmark("sbGoertz:spandsp", goertzSpandsp)->Arg(n);
    benchmark::RegisterBenchmark("wbGoertz:spandsp", goertzSpandsp)->Arg(n);
#endif
  }
  return 0;
}();

}  // namespace
