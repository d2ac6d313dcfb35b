// Wavelet decomposition and reconstruction of 4096 samples with the
// 4-tap Daubechies filters (periodic), against GSL (benchmark-only peer:
// gsl_wavelet_daubechies 4 with a workspace, always to full depth, 12
// levels here). ryxcore runs at 5 levels (Ln5 cases) and at the full 12
// (Ln12); the GSL time is registered under both cases. The float form has
// no float peer in GSL and is compared with the same double GSL run.
//   cmake -S . -B build/bench -DRYX_BENCH=ON -DRYX_EXAMPLES=OFF -DRYX_TESTS=OFF
//   cmake --build build/bench --target bench_wavelet -j2
//   build/bench/bench_wavelet --benchmark_format=json > run.json && bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <vector>

#include "ryxcore.h"

#ifdef RYX_HAVE_GSL
#include <gsl/gsl_wavelet.h>
#endif

namespace {

constexpr int kLen = 4096;

template <class T>
std::vector<T> signal() {
  std::vector<T> v(kLen);
  for (int i = 0; i < kLen; ++i) v[i] = T(0.5 - ((i * 37) % 101) * 0.01);
  return v;
}

template <class T>
struct Ryx;
template <>
struct Ryx<double> {
  static constexpr auto init = ryxdWtInitLen;
  static constexpr auto dec = ryxdWtDecompose;
  static constexpr auto rec = ryxdWtReconstruct;
};
template <>
struct Ryx<float> {
  static constexpr auto init = ryxsWtInitLen;
  static constexpr auto dec = ryxsWtDecompose;
  static constexpr auto rec = ryxsWtReconstruct;
};

template <class T, bool kForward>
void ryx(benchmark::State& state, int level) {
  RyxWtState st{};
  int lenDec = 0;
  Ryx<T>::init(2, 0, kLen, level, &st, 2, &lenDec);
  const std::vector<T> x = signal<T>();
  std::vector<T> c(lenDec), y(kLen);
  Ryx<T>::dec(&st, x.data(), c.data());
  for (auto _ : state) {
    if (kForward) Ryx<T>::dec(&st, x.data(), c.data());
    else Ryx<T>::rec(&st, c.data(), y.data());
    benchmark::DoNotOptimize(kForward ? c.data() : y.data());
  }
  ryxWtFree(&st);
}

#ifdef RYX_HAVE_GSL
template <bool kForward>
void gsl(benchmark::State& state) {
  gsl_wavelet* w = gsl_wavelet_alloc(gsl_wavelet_daubechies, 4);
  gsl_wavelet_workspace* ws = gsl_wavelet_workspace_alloc(kLen);
  const std::vector<double> x = signal<double>();
  std::vector<double> c = x;
  gsl_wavelet_transform_forward(w, c.data(), 1, kLen, ws);
  std::vector<double> buf(kLen);
  for (auto _ : state) {
    buf = kForward ? x : c;
    if (kForward) gsl_wavelet_transform_forward(w, buf.data(), 1, kLen, ws);
    else gsl_wavelet_transform_inverse(w, buf.data(), 1, kLen, ws);
    benchmark::DoNotOptimize(buf.data());
  }
  gsl_wavelet_workspace_free(ws);
  gsl_wavelet_free(w);
}
#endif

void registerAll() {
  struct Case {
    const char* name;
    void (*d)(benchmark::State&, int);
    void (*s)(benchmark::State&, int);
    bool forward;
  };
  const Case cases[] = {{"WtDecompose", ryx<double, true>, ryx<float, true>, true},
                        {"WtReconstruct", ryx<double, false>, ryx<float, false>, false}};
  for (const Case& c : cases) {
    for (int level : {5, 12}) {
      const std::string tail = "Ln" + std::to_string(level);
      benchmark::RegisterBenchmark(("d" + std::string(c.name) + tail + ":ryx/4096").c_str(), c.d, level);
      benchmark::RegisterBenchmark(("s" + std::string(c.name) + tail + ":ryx/4096").c_str(), c.s, level);
#ifdef RYX_HAVE_GSL
      for (const char* p : {"d", "s"})
        benchmark::RegisterBenchmark((p + std::string(c.name) + tail + ":gsl/4096").c_str(),
                                     c.forward ? gsl<true> : gsl<false>);
#endif
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  registerAll();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
