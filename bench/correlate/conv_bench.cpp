// Convolution and cross-correlation against the better of two peers: a
// direct loop compiled with -O3, and FFTW 3 (r2c/c2r plans with
// FFTW_MEASURE, made outside the timing) convolving by one transform of the
// whole result or by overlap-save blocks of 4 S rounded up to a power of
// two, whichever is faster at the size. FFTW is linked into this program
// only.
//   cmake -S . -B build/bench -DRYX_BENCH=ON -DRYX_TESTS=OFF -DRYX_EXAMPLES=OFF
//   cmake --build build/bench --target bench_correlate -j2
//   build/bench/bench_correlate --benchmark_format=json > run.json && bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <complex>
#include <vector>

#include "ryxcore.h"

#if defined(RYX_HAVE_FFTW)
#include <fftw3.h>
#endif

namespace {

template <class T>
std::vector<T> signal(int n, int seed) {
  std::vector<T> v(static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) {
    const double s = ((i * 7919 + seed * 104729) % 1000) * 0.001 - 0.5;
    if constexpr (std::is_same_v<T, SCplx>) v[i] = {static_cast<float>(s), static_cast<float>(-s)};
    else v[i] = static_cast<T>(s);
  }
  return v;
}

void setItems(benchmark::State& state, long long L, long long S) {
  state.SetItemsProcessed(state.iterations() * (L + S - 1));
}

// Direct loop peer: y[i + j] += x[i] h[j].
template <class T>
void directConv(const T* x, int L, const T* h, int S, T* y) {
  for (int k = 0; k < L + S - 1; ++k) y[k] = T{};
  for (int i = 0; i < L; ++i) {
    const T v = x[i];
    for (int j = 0; j < S; ++j) y[i + j] += v * h[j];
  }
}
void directConv(const SCplx* x, int L, const SCplx* h, int S, SCplx* y) {
  auto* yc = reinterpret_cast<std::complex<float>*>(y);
  const auto* xc = reinterpret_cast<const std::complex<float>*>(x);
  const auto* hc = reinterpret_cast<const std::complex<float>*>(h);
  for (int k = 0; k < L + S - 1; ++k) yc[k] = 0;
  for (int i = 0; i < L; ++i) {
    const std::complex<float> v = xc[i];
    for (int j = 0; j < S; ++j) {
      const std::complex<float> p{v.real() * hc[j].real() - v.imag() * hc[j].imag(),
                                  v.real() * hc[j].imag() + v.imag() * hc[j].real()};
      yc[i + j] += p;
    }
  }
}

template <class T, class Fn>
void benchConv(benchmark::State& state, Fn fn) {
  const int L = static_cast<int>(state.range(0)), S = static_cast<int>(state.range(1));
  const auto x = signal<T>(L, 1), h = signal<T>(S, 2);
  std::vector<T> y(static_cast<size_t>(L + S - 1));
  for (auto _ : state) {
    fn(x.data(), L, h.data(), S, y.data());
    benchmark::DoNotOptimize(y.data());
    benchmark::ClobberMemory();
  }
  setItems(state, L, S);
}

void BM_ryxsConv(benchmark::State& s) { benchConv<float>(s, ryxsConv); }
void BM_loop_sConv(benchmark::State& s) { benchConv<float>(s, [](auto... a) { directConv(a...); }); }
void BM_ryxdConv(benchmark::State& s) { benchConv<double>(s, ryxdConv); }
void BM_loop_dConv(benchmark::State& s) { benchConv<double>(s, [](auto... a) { directConv(a...); }); }
void BM_ryxcConv(benchmark::State& s) { benchConv<SCplx>(s, ryxcConv); }
void BM_loop_cConv(benchmark::State& s) {
  benchConv<SCplx>(s, [](const SCplx* x, int L, const SCplx* h, int S, SCplx* y) { directConv(x, L, h, S, y); });
}

#if defined(RYX_HAVE_FFTW)
// FFTW overlap-save (block P, P = whole result rounded up for a single
// transform) of real float signals.
void fftwConv(benchmark::State& state, bool single) {
  const int L = static_cast<int>(state.range(0)), S = static_cast<int>(state.range(1));
  const long long N = static_cast<long long>(L) + S - 1;
  int P = 1;
  while (P < (single ? N : 4LL * S)) P <<= 1;
  if (!single && P >= N) {
    state.SkipWithError("one block: the single transform covers it");
    return;
  }
  const auto x = signal<float>(L, 1), h = signal<float>(S, 2);
  std::vector<float> y(static_cast<size_t>(N));
  float* buf = fftwf_alloc_real(P);
  fftwf_complex* bins = fftwf_alloc_complex(P / 2 + 1);
  fftwf_complex* hs = fftwf_alloc_complex(P / 2 + 1);
  fftwf_plan fwd = fftwf_plan_dft_r2c_1d(P, buf, bins, FFTW_MEASURE);
  fftwf_plan inv = fftwf_plan_dft_c2r_1d(P, bins, buf, FFTW_MEASURE);
  for (int i = 0; i < P; ++i) buf[i] = i < S ? h[i] : 0.0f;
  fftwf_execute(fwd);
  for (int i = 0; i <= P / 2; ++i) {
    hs[i][0] = bins[i][0] / P;
    hs[i][1] = bins[i][1] / P;
  }
  const long long seg = P - (S - 1);
  for (auto _ : state) {
    for (long long o = 0; o < N; o += seg) {
      const long long from = o - (S - 1);
      for (int i = 0; i < P; ++i) {
        const long long k = from + i;
        buf[i] = k >= 0 && k < L ? x[k] : 0.0f;
      }
      fftwf_execute(fwd);
      for (int i = 0; i <= P / 2; ++i) {
        const float re = bins[i][0] * hs[i][0] - bins[i][1] * hs[i][1];
        const float im = bins[i][0] * hs[i][1] + bins[i][1] * hs[i][0];
        bins[i][0] = re;
        bins[i][1] = im;
      }
      fftwf_execute(inv);
      const long long take = std::min(seg, N - o);
      for (long long i = 0; i < take; ++i) y[o + i] = buf[S - 1 + i];
    }
    benchmark::DoNotOptimize(y.data());
  }
  fftwf_destroy_plan(fwd);
  fftwf_destroy_plan(inv);
  fftwf_free(buf);
  fftwf_free(bins);
  fftwf_free(hs);
  setItems(state, L, S);
}
void BM_fftw_sConvSingle(benchmark::State& s) { fftwConv(s, true); }
void BM_fftw_sConvBlocks(benchmark::State& s) { fftwConv(s, false); }
#endif

// Signal lengths 1K .. 1M by kernels of 16, 256, 4096; the direct loop only
// up to 2^28 multiply-adds.
void grid(benchmark::internal::Benchmark* b, bool direct) {
  for (long long L : {1 << 10, 1 << 14, 1 << 18, 1 << 20})
    for (long long S : {16, 256, 4096})
      if (!direct || L * S <= (1LL << 28)) b->Args({L, S});
  b->Unit(benchmark::kMicrosecond);
}
void gridAll(benchmark::internal::Benchmark* b) { grid(b, false); }
void gridDirect(benchmark::internal::Benchmark* b) { grid(b, true); }

BENCHMARK(BM_ryxsConv)->Apply(gridAll);
BENCHMARK(BM_loop_sConv)->Apply(gridDirect);
#if defined(RYX_HAVE_FFTW)
BENCHMARK(BM_fftw_sConvSingle)->Apply(gridAll);
BENCHMARK(BM_fftw_sConvBlocks)->Apply(gridAll);
#endif
BENCHMARK(BM_ryxdConv)->Apply(gridAll);
BENCHMARK(BM_loop_dConv)->Apply(gridDirect);
BENCHMARK(BM_ryxcConv)->Apply(gridAll);
BENCHMARK(BM_loop_cConv)->Apply(gridDirect);

// Cross-correlation of two 64K signals over 64 and 2048 lags centred on 0.
template <class Fn>
void benchCorr(benchmark::State& state, Fn fn) {
  const int n = 1 << 16, lags = static_cast<int>(state.range(0));
  const auto a = signal<float>(n, 3), b = signal<float>(n, 4);
  std::vector<float> y(static_cast<size_t>(lags));
  for (auto _ : state) {
    fn(a.data(), n, b.data(), n, y.data(), -lags / 2, lags - lags / 2 - 1);
    benchmark::DoNotOptimize(y.data());
  }
  state.SetItemsProcessed(state.iterations() * lags);
}
void BM_ryxsCrossCorr(benchmark::State& s) { benchCorr(s, ryxsCrossCorr); }
void BM_loop_sCrossCorr(benchmark::State& s) {
  benchCorr(s, [](const float* a, int n1, const float* b, int n2, float* y, int lo, int hi) {
    for (int k = lo; k <= hi; ++k) {
      float acc = 0;
      const int a1 = k < 0 ? -k : 0, a2 = k > 0 ? k : 0, cnt = std::min(n1 - a1, n2 - a2);
      for (int t = 0; t < cnt; ++t) acc += a[a1 + t] * b[a2 + t];
      y[k - lo] = acc;
    }
  });
}
BENCHMARK(BM_ryxsCrossCorr)->Arg(64)->Arg(2048)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_loop_sCrossCorr)->Arg(64)->Arg(2048)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
