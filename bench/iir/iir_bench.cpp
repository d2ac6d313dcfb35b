// IIR filters on blocks of 4096 samples against liquid-dsp (benchmark-only
// peer) and plain scalar loops compiled at -O3: a cascade of four biquads
// (the caller-owned and library-owned float forms with tables, and complex
// samples through real taps) and the same filter as one section of order 8.
//   cmake -S . -B build/iir/bench -DRYX_BENCH=ON -DRYX_EXAMPLES=OFF -DRYX_TESTS=OFF
//   cmake --build build/iir/bench --target bench_iir -j2
//   build/iir/bench/bench_iir --benchmark_format=json > run.json && bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "ryxcore.h"

#ifdef RYX_HAVE_LIQUID
#include <liquid/liquid.h>
#endif

namespace {

constexpr int kBlock = 4096;
constexpr int kSections = 4;

std::vector<float> signal(int n) {
  std::vector<float> v(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) v[static_cast<size_t>(i)] = 0.5f - static_cast<float>((i * 37) % 101) * 0.01f;
  return v;
}

// A low-pass cascade: poles of radius 0.9 at four angles, zeros at -1.
struct Cascade {
  std::vector<float> b, a;  // three a section each, a0 = 1
  Cascade() {
    for (int s = 0; s < kSections; ++s) {
      const double th = 0.15 + 0.2 * s, r = 0.9;
      const double a1 = -2 * r * std::cos(th), a2 = r * r, g = (1 + a1 + a2) / 4;
      b.insert(b.end(), {static_cast<float>(g), static_cast<float>(2 * g), static_cast<float>(g)});
      a.insert(a.end(), {1.0f, static_cast<float>(a1), static_cast<float>(a2)});
    }
  }
  // Caller's taps of the cascade: b0 b1 b2 a0 a1 a2 a section.
  std::vector<float> sectionTaps() const {
    std::vector<float> t;
    for (int s = 0; s < kSections; ++s) {
      t.insert(t.end(), b.begin() + 3 * s, b.begin() + 3 * s + 3);
      t.insert(t.end(), a.begin() + 3 * s, a.begin() + 3 * s + 3);
    }
    return t;
  }
  // The product polynomials, b then a, of order 8.
  std::vector<float> directTaps() const {
    std::vector<double> pb{1}, pa{1};
    for (int s = 0; s < kSections; ++s) {
      std::vector<double> nb(pb.size() + 2), na(pa.size() + 2);
      for (size_t i = 0; i < pb.size(); ++i) {
        for (int k = 0; k < 3; ++k) {
          nb[i + k] += pb[i] * b[3 * s + k];
          na[i + k] += pa[i] * a[3 * s + k];
        }
      }
      pb = nb;
      pa = na;
    }
    std::vector<float> t;
    for (double v : pb) t.push_back(static_cast<float>(v));
    for (double v : pa) t.push_back(static_cast<float>(v));
    return t;
  }
};

void configure(benchmark::internal::Benchmark* b) {
  b->Repetitions(5)->ReportAggregatesOnly(true)->ComputeStatistics(
      "min", [](const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); });
}

void setRate(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(kBlock)); }

// ---- ryxcore ----

// Low-level form with tables: the cascade (true) or the order-8 section.
void sbIirlRyx(benchmark::State& state, bool cascade) {
  const Cascade c;
  std::vector<float> taps = cascade ? c.sectionTaps() : c.directTaps();
  float* inner = taps.data();
  RyxIirTapState ts{};
  if (cascade) {
    ryxsIirlInitBq(2, reinterpret_cast<float*>(&inner), kSections, &ts);
  } else {
    ryxsIirlInit(2, reinterpret_cast<float*>(&inner), 2 * kSections, &ts);
  }
  std::vector<float> line(2 * kSections);
  RyxIirDlyState ds{};
  ryxsIirlInitDlyl(&ts, line.data(), &ds);
  const std::vector<float> src = signal(kBlock);
  std::vector<float> dst(kBlock);
  for (auto _ : state) {
    ryxsbIirl(&ts, &ds, src.data(), dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  setRate(state);
  ryxFree(ts.taps);
}

void sbIirRyx(benchmark::State& state, bool cascade) {
  const Cascade c;
  const std::vector<float> taps = cascade ? c.sectionTaps() : c.directTaps();
  RyxIirState st{};
  if (cascade) {
    ryxsIirInitBq(0, taps.data(), kSections, &st);
  } else {
    ryxsIirInit(0, taps.data(), 2 * kSections, &st);
  }
  const std::vector<float> src = signal(kBlock);
  std::vector<float> dst(kBlock);
  for (auto _ : state) {
    ryxsbIir(&st, src.data(), dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  setRate(state);
  ryxIirFree(&st);
}

void csbIirRyx(benchmark::State& state) {
  const Cascade c;
  const std::vector<float> taps = c.sectionTaps();
  RyxIirState st{};
  ryxcsIirInitBq(0, taps.data(), kSections, &st);
  const std::vector<float> re = signal(kBlock);
  std::vector<SCplx> src(kBlock), dst(kBlock);
  for (int i = 0; i < kBlock; ++i) src[i] = {re[i], -re[i]};
  for (auto _ : state) {
    ryxcsbIir(&st, src.data(), dst.data(), kBlock);
    benchmark::ClobberMemory();
  }
  setRate(state);
  ryxIirFree(&st);
}

BENCHMARK_CAPTURE(sbIirlRyx, bq, true)->Name("sbIirl_bq4:ryx")->Apply(configure);
BENCHMARK_CAPTURE(sbIirRyx, bq, true)->Name("sbIir_bq4:ryx")->Apply(configure);
BENCHMARK_CAPTURE(sbIirlRyx, df, false)->Name("sbIirl_df8:ryx")->Apply(configure);
BENCHMARK_CAPTURE(sbIirRyx, df, false)->Name("sbIir_df8:ryx")->Apply(configure);
BENCHMARK(csbIirRyx)->Name("csbIir_bq4:ryx")->Apply(configure);

// ---- Plain loops, as a user would write them ----

template <class T>
void biquadLoop(const Cascade& c, const T* x, T* y, int n, T* w) {
  for (int i = 0; i < n; ++i) {
    T v = x[i];
    for (int s = 0; s < kSections; ++s) {
      const float* bs = c.b.data() + 3 * s;
      const float* as = c.a.data() + 3 * s;
      T* ws = w + 2 * s;
      const T t = v - as[1] * ws[0] - as[2] * ws[1];
      v = bs[0] * t + bs[1] * ws[0] + bs[2] * ws[1];
      ws[1] = ws[0];
      ws[0] = t;
    }
    y[i] = v;
  }
}

void biquadLoopReal(benchmark::State& state) {
  const Cascade c;
  const std::vector<float> src = signal(kBlock);
  std::vector<float> dst(kBlock), w(2 * kSections);
  for (auto _ : state) {
    biquadLoop<float>(c, src.data(), dst.data(), kBlock, w.data());
    benchmark::ClobberMemory();
  }
  setRate(state);
}

void biquadLoopComplex(benchmark::State& state) {
  const Cascade c;
  const std::vector<float> re = signal(kBlock);
  std::vector<std::complex<float>> src(kBlock), dst(kBlock), w(2 * kSections);
  for (int i = 0; i < kBlock; ++i) src[i] = {re[i], -re[i]};
  for (auto _ : state) {
    biquadLoop<std::complex<float>>(c, src.data(), dst.data(), kBlock, w.data());
    benchmark::ClobberMemory();
  }
  setRate(state);
}

// Transposed direct form II of order 8.
void directLoop(benchmark::State& state) {
  const Cascade c;
  const std::vector<float> t = c.directTaps();
  const int m = 2 * kSections;
  const std::vector<float> src = signal(kBlock);
  std::vector<float> dst(kBlock), d(m + 1);
  for (auto _ : state) {
    for (int i = 0; i < kBlock; ++i) {
      const float x = src[i];
      const float y = t[0] * x + d[0];
      for (int k = 1; k <= m; ++k) d[k - 1] = t[k] * x - t[m + 1 + k] * y + d[k];
      dst[i] = y;
    }
    benchmark::ClobberMemory();
  }
  setRate(state);
}

BENCHMARK(biquadLoopReal)->Name("sbIirl_bq4:loop")->Apply(configure);
BENCHMARK(biquadLoopReal)->Name("sbIir_bq4:loop")->Apply(configure);
BENCHMARK(directLoop)->Name("sbIirl_df8:loop")->Apply(configure);
BENCHMARK(directLoop)->Name("sbIir_df8:loop")->Apply(configure);
BENCHMARK(biquadLoopComplex)->Name("csbIir_bq4:loop")->Apply(configure);

// ---- liquid-dsp ----

#ifdef RYX_HAVE_LIQUID
void liquidReal(benchmark::State& state, bool cascade) {
  Cascade c;
  std::vector<float> t = c.directTaps();
  iirfilt_rrrf q =
      cascade ? iirfilt_rrrf_create_sos(c.b.data(), c.a.data(), kSections)
              : iirfilt_rrrf_create(t.data(), 2 * kSections + 1, t.data() + 2 * kSections + 1, 2 * kSections + 1);
  std::vector<float> src = signal(kBlock), dst(kBlock);
  for (auto _ : state) {
    iirfilt_rrrf_execute_block(q, src.data(), kBlock, dst.data());
    benchmark::ClobberMemory();
  }
  setRate(state);
  iirfilt_rrrf_destroy(q);
}

void liquidComplex(benchmark::State& state) {
  Cascade c;
  iirfilt_crcf q = iirfilt_crcf_create_sos(c.b.data(), c.a.data(), kSections);
  const std::vector<float> re = signal(kBlock);
  std::vector<liquid_float_complex> src(kBlock), dst(kBlock);
  for (int i = 0; i < kBlock; ++i) src[i] = {re[i], -re[i]};
  for (auto _ : state) {
    iirfilt_crcf_execute_block(q, src.data(), kBlock, dst.data());
    benchmark::ClobberMemory();
  }
  setRate(state);
  iirfilt_crcf_destroy(q);
}

// The same liquid filter serves both of our forms.
BENCHMARK_CAPTURE(liquidReal, bq, true)->Name("sbIirl_bq4:liquid")->Apply(configure);
BENCHMARK_CAPTURE(liquidReal, bq, true)->Name("sbIir_bq4:liquid")->Apply(configure);
BENCHMARK_CAPTURE(liquidReal, df, false)->Name("sbIirl_df8:liquid")->Apply(configure);
BENCHMARK_CAPTURE(liquidReal, df, false)->Name("sbIir_df8:liquid")->Apply(configure);
BENCHMARK(liquidComplex)->Name("csbIir_bq4:liquid")->Apply(configure);
#endif

}  // namespace

BENCHMARK_MAIN();
