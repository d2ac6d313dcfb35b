// Sample format conversion on 64 Ki samples.
//  - Companding: the 16-bit and float encoders and decoders of both laws
//    against spandsp's inline G.711 routines in a plain loop (peer `spandsp`;
//    the float peer scales by 32768 and rounds with lrintf first).
//  - 16-bit float-to-integer (nearest, with and without clip) and
//    integer-to-float against plain -O3 loops with lrintf and clamping
//    (peer `loop`).
// Peers are kept out of line so each call does the whole loop.
//   build/bench/bench_convert --benchmark_format=json > run.json
//   bench/ratios.py run.json
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "ryxcore.h"

#if __has_include(<spandsp/g711.h>)
#include <spandsp/telephony.h>
#include <spandsp/bit_operations.h>
#include <spandsp/g711.h>
#define RYX_HAVE_SPANDSP 1
#endif

namespace {

constexpr int kLen = 65536;

struct Data {
  std::vector<short> w;
  std::vector<float> s;
  std::vector<unsigned char> a, u;
  Data() : w(kLen), s(kLen), a(kLen), u(kLen) {
    std::mt19937 gen(5);
    for (int i = 0; i < kLen; ++i) {
      w[i] = static_cast<short>(gen());
      s[i] = static_cast<float>(w[i]) / 32768.0f;
    }
    ryxwbLinToALaw(w.data(), a.data(), kLen);
    ryxwbLinToMuLaw(w.data(), u.data(), kLen);
  }
};
Data& data() {
  static Data d;
  return d;
}

template <class F>
void run(benchmark::State& state, F&& f) {
  for (auto _ : state) {
    f();
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kLen);
}

#ifdef RYX_HAVE_SPANDSP
namespace peer {
__attribute__((noinline)) void encA(const short* x, unsigned char* c, int n) { for (int i = 0; i < n; ++i) c[i] = linear_to_alaw(x[i]); }
__attribute__((noinline)) void encU(const short* x, unsigned char* c, int n) { for (int i = 0; i < n; ++i) c[i] = linear_to_ulaw(x[i]); }
__attribute__((noinline)) void decA(const unsigned char* c, short* x, int n) { for (int i = 0; i < n; ++i) x[i] = alaw_to_linear(c[i]); }
__attribute__((noinline)) void decU(const unsigned char* c, short* x, int n) { for (int i = 0; i < n; ++i) x[i] = ulaw_to_linear(c[i]); }
__attribute__((noinline)) void encAf(const float* x, unsigned char* c, int n) {
  for (int i = 0; i < n; ++i) c[i] = linear_to_alaw(static_cast<int>(lrintf(x[i] * 32768.0f)));
}
__attribute__((noinline)) void encUf(const float* x, unsigned char* c, int n) {
  for (int i = 0; i < n; ++i) c[i] = linear_to_ulaw(static_cast<int>(lrintf(x[i] * 32768.0f)));
}
__attribute__((noinline)) void decAf(const unsigned char* c, float* x, int n) {
  for (int i = 0; i < n; ++i) x[i] = alaw_to_linear(c[i]) * (1.0f / 32768.0f);
}
__attribute__((noinline)) void decUf(const unsigned char* c, float* x, int n) {
  for (int i = 0; i < n; ++i) x[i] = ulaw_to_linear(c[i]) * (1.0f / 32768.0f);
}
}  // namespace peer

std::vector<unsigned char> codes(kLen);
std::vector<short> words(kLen);
std::vector<float> floats(kLen);

void wALawEnc_ryx(benchmark::State& s) { run(s, [] { ryxwbLinToALaw(data().w.data(), codes.data(), kLen); }); }
void wALawEnc_sp(benchmark::State& s) { run(s, [] { peer::encA(data().w.data(), codes.data(), kLen); }); }
void wMuLawEnc_ryx(benchmark::State& s) { run(s, [] { ryxwbLinToMuLaw(data().w.data(), codes.data(), kLen); }); }
void wMuLawEnc_sp(benchmark::State& s) { run(s, [] { peer::encU(data().w.data(), codes.data(), kLen); }); }
void wALawDec_ryx(benchmark::State& s) { run(s, [] { ryxwbALawToLin(data().a.data(), words.data(), kLen); }); }
void wALawDec_sp(benchmark::State& s) { run(s, [] { peer::decA(data().a.data(), words.data(), kLen); }); }
void wMuLawDec_ryx(benchmark::State& s) { run(s, [] { ryxwbMuLawToLin(data().u.data(), words.data(), kLen); }); }
void wMuLawDec_sp(benchmark::State& s) { run(s, [] { peer::decU(data().u.data(), words.data(), kLen); }); }
void sALawEnc_ryx(benchmark::State& s) { run(s, [] { ryxsbLinToALaw(data().s.data(), codes.data(), kLen); }); }
void sALawEnc_sp(benchmark::State& s) { run(s, [] { peer::encAf(data().s.data(), codes.data(), kLen); }); }
void sMuLawEnc_ryx(benchmark::State& s) { run(s, [] { ryxsbLinToMuLaw(data().s.data(), codes.data(), kLen); }); }
void sMuLawEnc_sp(benchmark::State& s) { run(s, [] { peer::encUf(data().s.data(), codes.data(), kLen); }); }
void sALawDec_ryx(benchmark::State& s) { run(s, [] { ryxsbALawToLin(data().a.data(), floats.data(), kLen); }); }
void sALawDec_sp(benchmark::State& s) { run(s, [] { peer::decAf(data().a.data(), floats.data(), kLen); }); }
void sMuLawDec_ryx(benchmark::State& s) { run(s, [] { ryxsbMuLawToLin(data().u.data(), floats.data(), kLen); }); }
void sMuLawDec_sp(benchmark::State& s) { run(s, [] { peer::decUf(data().u.data(), floats.data(), kLen); }); }

BENCHMARK(wALawEnc_ryx)->Name("wbLinToALaw:ryx/65536");
BENCHMARK(wALawEnc_sp)->Name("wbLinToALaw:spandsp/65536");
BENCHMARK(wMuLawEnc_ryx)->Name("wbLinToMuLaw:ryx/65536");
BENCHMARK(wMuLawEnc_sp)->Name("wbLinToMuLaw:spandsp/65536");
BENCHMARK(wALawDec_ryx)->Name("wbALawToLin:ryx/65536");
BENCHMARK(wALawDec_sp)->Name("wbALawToLin:spandsp/65536");
BENCHMARK(wMuLawDec_ryx)->Name("wbMuLawToLin:ryx/65536");
BENCHMARK(wMuLawDec_sp)->Name("wbMuLawToLin:spandsp/65536");
BENCHMARK(sALawEnc_ryx)->Name("sbLinToALaw:ryx/65536");
BENCHMARK(sALawEnc_sp)->Name("sbLinToALaw:spandsp/65536");
BENCHMARK(sMuLawEnc_ryx)->Name("sbLinToMuLaw:ryx/65536");
BENCHMARK(sMuLawEnc_sp)->Name("sbLinToMuLaw:spandsp/65536");
BENCHMARK(sALawDec_ryx)->Name("sbALawToLin:ryx/65536");
BENCHMARK(sALawDec_sp)->Name("sbALawToLin:spandsp/65536");
BENCHMARK(sMuLawDec_ryx)->Name("sbMuLawToLin:ryx/65536");
BENCHMARK(sMuLawDec_sp)->Name("sbMuLawToLin:spandsp/65536");
#endif

// ---- 16-bit conversion against plain loops ---------------------------------

namespace loop {
__attribute__((noinline)) void toShort(const float* x, short* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = static_cast<short>(lrintf(x[i]));
}
__attribute__((noinline)) void toShortClip(const float* x, short* d, int n) {
  for (int i = 0; i < n; ++i) {
    long v = lrintf(x[i]);
    d[i] = static_cast<short>(v < -32768 ? -32768 : v > 32767 ? 32767 : v);
  }
}
__attribute__((noinline)) void fromShort(const short* x, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = static_cast<float>(x[i]);
}
}  // namespace loop

struct Scaled {
  std::vector<float> x;
  std::vector<short> w;
  std::vector<float> f;
  Scaled() : x(kLen), w(kLen), f(kLen) {
    for (int i = 0; i < kLen; ++i) x[i] = data().s[i] * 40000.0f;  // some beyond the 16-bit range
  }
};
Scaled& scaled() {
  static Scaled s;
  return s;
}

void toInt_ryx(benchmark::State& s) {
  run(s, [] { ryxsbFloatToInt(scaled().x.data(), scaled().w.data(), kLen, 16, RYX_RoundNearest); });
}
void toInt_loop(benchmark::State& s) { run(s, [] { loop::toShort(scaled().x.data(), scaled().w.data(), kLen); }); }
void toIntClip_ryx(benchmark::State& s) {
  run(s, [] { ryxsbFloatToInt(scaled().x.data(), scaled().w.data(), kLen, 16, RYX_RoundNearest | RYX_ClipRange); });
}
void toIntClip_loop(benchmark::State& s) { run(s, [] { loop::toShortClip(scaled().x.data(), scaled().w.data(), kLen); }); }
void toFloat_ryx(benchmark::State& s) { run(s, [] { ryxsbIntToFloat(data().w.data(), scaled().f.data(), kLen, 16, 0); }); }
void toFloat_loop(benchmark::State& s) { run(s, [] { loop::fromShort(data().w.data(), scaled().f.data(), kLen); }); }

BENCHMARK(toInt_ryx)->Name("sbFloatToInt16:ryx/65536");
BENCHMARK(toInt_loop)->Name("sbFloatToInt16:loop/65536");
BENCHMARK(toIntClip_ryx)->Name("sbFloatToInt16Clip:ryx/65536");
BENCHMARK(toIntClip_loop)->Name("sbFloatToInt16Clip:loop/65536");
BENCHMARK(toFloat_ryx)->Name("sbIntToFloat16:ryx/65536");
BENCHMARK(toFloat_loop)->Name("sbIntToFloat16:loop/65536");

}  // namespace
BENCHMARK_MAIN();
