// LMS filters learning from a desired signal, blocks of 4096 samples, against
// liquid-dsp's eqlms (benchmark-only peer; push, execute and step per sample)
// and a plain loop of the same recursion compiled at -O3 in this program.
//   cmake -S . -B build/lms/bench -DRYX_BENCH=ON -DRYX_EXAMPLES=OFF -DRYX_TESTS=OFF
//   cmake --build build/lms/bench --target bench_adaptive -j2
//   build/lms/bench/bench_adaptive --benchmark_format=json > run.json && bench/ratios.py run.json
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
constexpr float kStep = 0.001f;

std::vector<float> signal(int n, float step) {
  std::vector<float> v(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) v[static_cast<size_t>(i)] = 0.5f - static_cast<float>((i * 37) % 101) * step;
  return v;
}

void configure(benchmark::internal::Benchmark* b) {
  b->Arg(32)->Arg(128)->Repetitions(5)->ReportAggregatesOnly(true)->ComputeStatistics(
      "min", [](const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); });
}

void setRate(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * int64_t{kBlock}); }

// ---- ryxcore ----

void sbLmsDesRyx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> src = signal(kBlock, 0.01f), des = signal(kBlock, 0.007f);
  std::vector<float> dst(kBlock);
  RyxLmsState st{};
  ryxsLmsInit(0, nullptr, len, nullptr, kStep, 0.0f, 0, &st);
  for (auto _ : state) {
    ryxsbLmsDes(&st, src.data(), des.data(), dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  ryxLmsFree(&st);
  setRate(state);
}

void sLmsDesRyx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> src = signal(kBlock, 0.01f), des = signal(kBlock, 0.007f);
  std::vector<float> dst(kBlock);
  RyxLmsState st{};
  ryxsLmsInit(0, nullptr, len, nullptr, kStep, 0.0f, 0, &st);
  for (auto _ : state) {
    for (int n = 0; n < kBlock; ++n) dst[size_t(n)] = ryxsLmsDes(&st, src[size_t(n)], des[size_t(n)]);
    benchmark::ClobberMemory();
  }
  ryxLmsFree(&st);
  setRate(state);
}

void cbLmsDesRyx(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> a = signal(2 * kBlock, 0.01f), b = signal(2 * kBlock, 0.007f);
  const auto* src = reinterpret_cast<const SCplx*>(a.data());
  const auto* des = reinterpret_cast<const SCplx*>(b.data());
  std::vector<SCplx> dst(kBlock);
  RyxLmsState st{};
  ryxcLmsInit(0, nullptr, len, nullptr, kStep, 0.0f, 0, &st);
  for (auto _ : state) {
    ryxcbLmsDes(&st, src, des, dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  ryxLmsFree(&st);
  setRate(state);
}

BENCHMARK(sbLmsDesRyx)->Name("sbLmsDes:ryx")->Apply(configure);
BENCHMARK(sLmsDesRyx)->Name("sLmsDes:ryx")->Apply(configure);
BENCHMARK(cbLmsDesRyx)->Name("cbLmsDes:ryx")->Apply(configure);

// ---- plain loops of the same recursion ----
//
// Update in double rounded to the tap type (with the leak factor, as the
// library computes it), a shifted line, the output in extended precision,
// the error kept for the next sample.

volatile float gLeak = 0.0f;

void realLoop(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> src = signal(kBlock, 0.01f), des = signal(kBlock, 0.007f);
  std::vector<float> dst(kBlock), taps(static_cast<size_t>(len)), line(static_cast<size_t>(len));
  float err = 0.0f;
  const double keep = 1.0 - double(gLeak);
  for (auto _ : state) {
    for (int n = 0; n < kBlock; ++n) {
      const double se = double(err) * kStep;
      for (int i = 0; i < len; ++i)
        taps[size_t(i)] = float(double(taps[size_t(i)]) * keep + double(line[size_t(i)]) * se);
      std::memmove(line.data() + 1, line.data(), sizeof(float) * size_t(len - 1));
      line[0] = src[size_t(n)];
      long double y = 0;
      for (int i = 0; i < len; ++i) y += (long double)taps[size_t(i)] * line[size_t(i)];
      dst[size_t(n)] = float(y);
      err = des[size_t(n)] - dst[size_t(n)];
    }
    benchmark::ClobberMemory();
  }
  setRate(state);
}

void complexLoop(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> a = signal(2 * kBlock, 0.01f), b = signal(2 * kBlock, 0.007f);
  const auto* src = reinterpret_cast<const SCplx*>(a.data());
  const auto* des = reinterpret_cast<const SCplx*>(b.data());
  std::vector<SCplx> dst(kBlock), taps(static_cast<size_t>(len)), line(static_cast<size_t>(len));
  SCplx err{0, 0};
  const double keep = 1.0 - double(gLeak);
  for (auto _ : state) {
    for (int n = 0; n < kBlock; ++n) {
      const double er = double(kStep) * err.re, ei = double(kStep) * err.im;
      for (int i = 0; i < len; ++i) {
        SCplx& t = taps[size_t(i)];
        const double xr = line[size_t(i)].re, xi = line[size_t(i)].im;
        t = SCplx{float(t.re * keep + (xr * er + xi * ei)), float(t.im * keep + (xr * ei - xi * er))};
      }
      std::memmove(line.data() + 1, line.data(), sizeof(SCplx) * size_t(len - 1));
      line[0] = src[n];
      long double yr = 0, yi = 0;
      for (int i = 0; i < len; ++i) {
        const SCplx t = taps[size_t(i)], x = line[size_t(i)];
        yr += (long double)t.re * x.re - (long double)t.im * x.im;
        yi += (long double)t.re * x.im + (long double)t.im * x.re;
      }
      dst[size_t(n)] = SCplx{float(yr), float(yi)};
      err = SCplx{des[n].re - dst[size_t(n)].re, des[n].im - dst[size_t(n)].im};
    }
    benchmark::ClobberMemory();
  }
  setRate(state);
}

BENCHMARK(realLoop)->Name("sbLmsDes:loop")->Apply(configure);
BENCHMARK(realLoop)->Name("sLmsDes:loop")->Apply(configure);
BENCHMARK(complexLoop)->Name("cbLmsDes:loop")->Apply(configure);

// ---- liquid-dsp ----

#ifdef RYX_HAVE_LIQUID
// The peer's header marks these entry points deprecated by mistake of its
// macros; they are its documented per-sample interface.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

void eqlmsReal(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> src = signal(kBlock, 0.01f), des = signal(kBlock, 0.007f);
  std::vector<float> dst(kBlock);
  eqlms_rrrf q = eqlms_rrrf_create(nullptr, unsigned(len));
  eqlms_rrrf_set_bw(q, kStep);
  for (auto _ : state) {
    for (int n = 0; n < kBlock; ++n) {
      float y;
      eqlms_rrrf_push(q, src[size_t(n)]);
      eqlms_rrrf_execute(q, &y);
      eqlms_rrrf_step(q, des[size_t(n)], y);
      dst[size_t(n)] = y;
    }
    benchmark::ClobberMemory();
  }
  eqlms_rrrf_destroy(q);
  setRate(state);
}

void eqlmsComplex(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<float> a = signal(2 * kBlock, 0.01f), b = signal(2 * kBlock, 0.007f);
  const auto* src = reinterpret_cast<const liquid_float_complex*>(a.data());
  const auto* des = reinterpret_cast<const liquid_float_complex*>(b.data());
  std::vector<liquid_float_complex> dst(kBlock);
  eqlms_cccf q = eqlms_cccf_create(nullptr, unsigned(len));
  eqlms_cccf_set_bw(q, kStep);
  for (auto _ : state) {
    for (int n = 0; n < kBlock; ++n) {
      liquid_float_complex y;
      eqlms_cccf_push(q, src[n]);
      eqlms_cccf_execute(q, &y);
      eqlms_cccf_step(q, des[n], y);
      dst[size_t(n)] = y;
    }
    benchmark::ClobberMemory();
  }
  eqlms_cccf_destroy(q);
  setRate(state);
}

BENCHMARK(eqlmsReal)->Name("sbLmsDes:liquid")->Apply(configure);
BENCHMARK(eqlmsReal)->Name("sLmsDes:liquid")->Apply(configure);
BENCHMARK(eqlmsComplex)->Name("cbLmsDes:liquid")->Apply(configure);
#endif

}  // namespace

BENCHMARK_MAIN();
