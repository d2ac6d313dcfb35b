// 16-bit FFTs against FFTW 3 float on the same samples converted to float:
// ryxvFft forward in place with the 32-bit integer core (orders 4-7) and
// the float core (orders 8-14), and ryxwRealFftl with RCPerm output under
// the default core choice (orders 6, 10, 14) beside FFTW's in-place r2c.
// Scale mode 1 (saturate, no scaling); the 16-bit data is restored from a
// pristine copy before every transform in both libraries, so that neither
// times saturated or overflowing values. Registered beside the other
// transform cases (fft_bench.cpp holds main); same command.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "ryxcore.h"

#if defined(RYX_HAVE_FFTW)
#include <fftw3.h>
#endif

namespace {

// A deterministic 16-bit test signal and its float copy.
std::vector<short> signal16(int count) {
  std::vector<short> s(count);
  for (int i = 0; i < count; ++i) s[i] = static_cast<short>(((i * 7919) % 2001) - 1000);
  return s;
}

template <class T, class Fn>
void restoreAndRun(benchmark::State& state, T* x, const std::vector<T>& pristine, Fn transform) {
  for (auto _ : state) {
    std::memcpy(x, pristine.data(), sizeof(T) * pristine.size());
    transform();
    benchmark::DoNotOptimize(x);
    benchmark::ClobberMemory();
  }
}

void vFftRyx(benchmark::State& state, int core) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  WCplx* x = ryxvMalloc(n);
  ryxvFft(nullptr, order, RYX_Init | core, 1, nullptr);
  restoreAndRun(state, reinterpret_cast<short*>(x), signal16(2 * n),
                [&] { ryxvFft(x, order, RYX_Forward | core, 1, nullptr); });
  ryxFree(x);
}
void vFftInt(benchmark::State& state) { vFftRyx(state, RYX_IntCore); }
void vFftFloat(benchmark::State& state) { vFftRyx(state, RYX_FloatCore); }

void wRealRyx(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  short* x = ryxwMalloc(n);
  ryxwRealFftl(nullptr, order, RYX_Init, 1, nullptr);
  restoreAndRun(state, x, signal16(n), [&] { ryxwRealFftl(x, order, RYX_Forward | RYX_RCPermOut, 1, nullptr); });
  ryxFree(x);
}

#if defined(RYX_HAVE_FFTW)
std::vector<float> asFloat(const std::vector<short>& s) { return std::vector<float>(s.begin(), s.end()); }

void vFftFftw(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  auto* x = static_cast<fftwf_complex*>(fftwf_malloc(sizeof(fftwf_complex) * n));
  fftwf_plan p = fftwf_plan_dft_1d(n, x, x, FFTW_FORWARD, FFTW_MEASURE);
  restoreAndRun(state, reinterpret_cast<float*>(x), asFloat(signal16(2 * n)), [&] { fftwf_execute(p); });
  fftwf_destroy_plan(p);
  fftwf_free(x);
}

void wRealFftw(benchmark::State& state) {
  const int order = static_cast<int>(state.range(0));
  const int n = 1 << order;
  auto* x = static_cast<float*>(fftwf_malloc(sizeof(float) * (n + 2)));
  fftwf_plan p = fftwf_plan_dft_r2c_1d(n, x, reinterpret_cast<fftwf_complex*>(x), FFTW_MEASURE);
  restoreAndRun(state, x, asFloat(signal16(n)), [&] { fftwf_execute(p); });
  fftwf_destroy_plan(p);
  fftwf_free(x);
}
#endif

// Registered at load, each ryxcore case beside its FFTW twin.
struct Register16 {
  Register16() {
    using Fn = void (*)(benchmark::State&);
#if defined(RYX_HAVE_FFTW)
    const Fn cPeer = vFftFftw, rPeer = wRealFftw;
#else
    const Fn cPeer = nullptr, rPeer = nullptr;
#endif
    struct Case {
      const char* name;
      Fn ryx;
      Fn peer;
      std::vector<int> orders;
    };
    const std::vector<Case> cases = {{"vFftInt32", vFftInt, cPeer, {4, 5, 6, 7}},
                                     {"vFftFloat", vFftFloat, cPeer, {8, 10, 12, 14}},
                                     {"wRealFftlPerm", wRealRyx, rPeer, {6, 10, 14}}};
    for (const Case& c : cases)
      for (int order : c.orders) {
        benchmark::RegisterBenchmark((std::string(c.name) + ":ryx").c_str(), c.ryx)->Arg(order);
        if (c.peer != nullptr) benchmark::RegisterBenchmark((std::string(c.name) + ":fftw").c_str(), c.peer)->Arg(order);
      }
  }
} register16;

}  // namespace
