// Complex and real FFT against FFTW 3: ryxcFft and ryxzFft in place,
// forward, at even orders 4..20, and ryxsRealFftl (RCPerm) at orders 6, 10,
// 14, 18 beside FFTW's in-place r2c. FFTW plans are made with FFTW_MEASURE
// outside the timing; both libraries work on 32-byte aligned arrays from
// their own allocators. FFTW is linked into this program only.
//   bench/transform/setup.sh
//   cmake -S . -B build/fft/bench -DRYX_BENCH=ON -DRYX_TESTS=OFF -DRYX_EXAMPLES=OFF
//   cmake --build build/fft/bench --target bench_transform -j2
//   build/fft/bench/bench_transform --benchmark_repetitions=5 --benchmark_format=json > run.json
//   bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "ryxcore.h"

#if defined(RYX_HAVE_FFTW)
#include <fftw3.h>
#endif

namespace {

template <class T>
void fillSignal(T* p, int count) {
  for (int i = 0; i < count; ++i) p[i] = static_cast<T>(((i * 7919) % 1000) * 0.001 - 0.5);
}

// The customary 5 N log2 N flop count, per microsecond.
// Repeated forward transforms grow the data by up to N each time; before
// it could overflow (which would time special-value arithmetic instead of
// the transform) the input is restored from a pristine copy. Both libraries
// run the same schedule, the restore being timed with them.
int restoreEvery(int order, bool isDouble) {
  const int k = (isDouble ? 900 : 100) / (order > 0 ? order : 1);
  return k < 1 ? 1 : k;
}

template <class T, class Fn>
void timedLoop(benchmark::State& state, T* x, int count, int order, Fn transform) {
  T* pristine = new T[count];
  fillSignal(pristine, count);
  std::memcpy(x, pristine, sizeof(T) * count);
  const int every = restoreEvery(order, sizeof(T) == 8);
  int left = every;
  for (auto _ : state) {
    if (--left == 0) {
      std::memcpy(x, pristine, sizeof(T) * count);
      left = every;
    }
    transform();
    benchmark::DoNotOptimize(x);
    benchmark::ClobberMemory();
  }
  delete[] pristine;
}

void setCounters(benchmark::State& state, int order) {
  const double n = static_cast<double>(1 << order);
  state.counters["MFLOPS"] =
      benchmark::Counter(5.0 * n * order * static_cast<double>(state.iterations()) / 1e6, benchmark::Counter::kIsRate);
}

void cFftRyx(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  SCplx* x = ryxcMalloc(n);
  ryxcFft(nullptr, order, RYX_Init);
  timedLoop(state, reinterpret_cast<float*>(x), 2 * n, order, [&] { ryxcFft(x, order, RYX_Forward); });
  setCounters(state, order);
  ryxFree(x);
}

void zFftRyx(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  DCplx* x = ryxzMalloc(n);
  ryxzFft(nullptr, order, RYX_Init);
  timedLoop(state, reinterpret_cast<double*>(x), 2 * n, order, [&] { ryxzFft(x, order, RYX_Forward); });
  setCounters(state, order);
  ryxFree(x);
}

void sRealRyx(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  float* x = ryxsMalloc(n);
  ryxsRealFftl(nullptr, order, RYX_Init);
  timedLoop(state, x, n, order, [&] { ryxsRealFftl(x, order, RYX_Forward | RYX_RCPermOut); });
  ryxFree(x);
}

#if defined(RYX_HAVE_FFTW)
void cFftFftw(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  auto* x = static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * n));
  fftwf_plan p = fftwf_plan_dft_1d(n, x, x, FFTW_FORWARD, FFTW_MEASURE);
  timedLoop(state, reinterpret_cast<float*>(x), 2 * n, order, [&] { fftwf_execute(p); });
  setCounters(state, order);
  fftwf_destroy_plan(p);
  fftwf_free(x);
}

void zFftFftw(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  auto* x = static_cast<fftw_complex*>(fftw_malloc(sizeof(fftw_complex) * n));
  fftw_plan p = fftw_plan_dft_1d(n, x, x, FFTW_FORWARD, FFTW_MEASURE);
  timedLoop(state, reinterpret_cast<double*>(x), 2 * n, order, [&] { fftw_execute(p); });
  setCounters(state, order);
  fftw_destroy_plan(p);
  fftw_free(x);
}

void sRealFftw(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  auto* x = static_cast<float*>(fftwf_malloc(sizeof(float) * (n + 2)));
  fftwf_plan p = fftwf_plan_dft_r2c_1d(n, x, reinterpret_cast<fftwf_complex*>(x), FFTW_MEASURE);
  timedLoop(state, x, n, order, [&] { fftwf_execute(p); });
  fftwf_destroy_plan(p);
  fftwf_free(x);
}
#endif

// Each ryxcore case is registered right beside its FFTW twin, size by
// size, so that both see the same machine load.
void registerAll() {
  using Fn = void (*)(benchmark::State&);
  struct Case {
    const char* name;
    Fn ryx;
    Fn peer;
    std::vector<int> orders;
  };
#if defined(RYX_HAVE_FFTW)
  const Fn cPeer = cFftFftw, zPeer = zFftFftw, sPeer = sRealFftw;
#else
  const Fn cPeer = nullptr, zPeer = nullptr, sPeer = nullptr;
#endif
  const std::vector<Case> cases = {
      {"cFft", cFftRyx, cPeer, {4, 6, 8, 10, 12, 14, 16, 18, 20}},
      {"zFft", zFftRyx, zPeer, {4, 6, 8, 10, 12, 14, 16, 18, 20}},
      {"sRealFftlPerm", sRealRyx, sPeer, {6, 10, 14, 18}},
  };
  for (const Case& c : cases) {
    for (int order : c.orders) {
      benchmark::RegisterBenchmark((std::string(c.name) + ":ryx").c_str(), c.ryx)->Arg(order);
      if (c.peer != nullptr) benchmark::RegisterBenchmark((std::string(c.name) + ":fftw").c_str(), c.peer)->Arg(order);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  registerAll();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
