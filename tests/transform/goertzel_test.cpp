// Goertzel filter against a long-double single-bin sum: after N samples the
// output is sum x[m] exp(i theta (N - m)). Single-sample, block and Out
// forms of every type, the 16-bit forms through their scale modes.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

#include "ryxcore.h"
#include "ryxcore/transform_any_length.h"
#include "test_support.h"

namespace {

using LD = long double;
using Ref = std::complex<LD>;

template <class X>
Ref singleBin(const std::vector<X>& x, double freq) {
  Ref sum = 0;
  const int n = static_cast<int>(x.size());
  for (int m = 0; m < n; ++m) {
    const LD a = 2 * 3.14159265358979323846264338L * freq * (n - m);
    Ref v;
    if constexpr (std::is_arithmetic_v<X>) v = static_cast<LD>(x[m]);
    else v = Ref(x[m].re, x[m].im);
    sum += v * Ref(std::cos(a), std::sin(a));
  }
  return sum;
}

// One record type, one sample type: the single-sample form over the
// array, the block form in two pieces, both against the reference.
template <class S, class X, class R>
void checkForms(void (*init)(double, S*), R (*one)(S*, X), R (*block)(S*, const X*, int), double eps) {
  ryxtest::Random rnd(3);
  for (int n : {1, 2, 7, 205, 4096}) {
    for (double freq : {0.0, 0.05, 0.25, 0.4999, 0.7, 1.0 - 1.0 / 4096}) {
      SCOPED_TRACE(::testing::Message() << n << " at " << freq);
      std::vector<X> x(n);
      for (X& v : x) {
        if constexpr (std::is_arithmetic_v<X>) v = static_cast<X>(rnd.f64(-1, 1));
        else v = {static_cast<decltype(v.re)>(rnd.f64(-1, 1)), static_cast<decltype(v.re)>(rnd.f64(-1, 1))};
      }
      const Ref want = singleBin(x, freq);
      const double s = std::max(std::fabs(std::sin(2 * 3.14159265358979 * freq)), 1.0 / n);
      const double bound = 4.0 * n * n * eps / s + 1e-300;  // error of N steps, each amplified by 1/|sin theta|
      S a{}, b{};
      init(freq, &a);
      init(freq, &b);
      R r1{};
      for (const X& v : x) r1 = one(&a, v);
      const int cut = n / 3;
      R r2 = cut > 0 ? block(&b, x.data(), cut) : R{};
      r2 = block(&b, x.data() + cut, n - cut);
      EXPECT_LE(std::abs(Ref(r1.re, r1.im) - want), bound);
      EXPECT_LE(std::abs(Ref(r2.re, r2.im) - want), bound);
    }
  }
}

// Adapters with a common init signature (the float Inits take a float).
template <RyxStatus (*F)(float, RyxGoertzF32State*)>
void init32(double f, RyxGoertzF32State* s) {
  F(static_cast<float>(f), s);
}

TEST(Goertzel, EveryFormMatchesTheSingleBinSum) {
  checkForms(init32<ryxsGoertzInit>, ryxsGoertz, ryxsbGoertz, 6e-8);
  checkForms(init32<ryxcGoertzInit>, ryxcGoertz, ryxcbGoertz, 6e-8);
  checkForms(ryxdGoertzInit, ryxdGoertz, ryxdbGoertz, 1.2e-16);
  checkForms(ryxzGoertzInit, ryxzGoertz, ryxzbGoertz, 1.2e-16);
}

TEST(Goertzel, OutFormsResetAndSixteenBitScaling) {
  RyxGoertzF32State a, b;
  ryxsGoertzInit(0.125f, &a);
  ryxsGoertzInit(0.125f, &b);
  const SCplx xs[2] = {{1, -2}, {0.5f, 3}};
  SCplx v[4];
  ryxsbGoertzOut(&a, &xs[0].re, 3, &v[0]), ryxsGoertzOut(&a, 2.0f, &v[1]);
  ryxcGoertzOut(&a, xs[0], &v[2]), ryxcbGoertzOut(&a, xs, 2, &v[3]);
  const SCplx w[4] = {ryxsbGoertz(&b, &xs[0].re, 3), ryxsGoertz(&b, 2.0f), ryxcGoertz(&b, xs[0]), ryxcbGoertz(&b, xs, 2)};
  EXPECT_TRUE(ryxtest::sameBits(v, w, 4));
  for (auto reset : {ryxsGoertzReset, ryxcGoertzReset, ryxwGoertzReset, ryxvGoertzReset}) {
    reset(&a);
    const SCplx first = ryxsGoertz(&a, 3.0f);  // (cosV x, sinV x)
    EXPECT_TRUE(first.re == static_cast<float>(3.0 * a.cosV) && first.im == static_cast<float>(3.0 * a.sinV));
  }
  RyxGoertzF64State z;
  ryxzGoertzInit(0.5, &z);
  ryxzGoertz(&z, DCplx{1, 0});
  ryxzGoertzReset(&z);
  ryxdGoertzReset(&z);
  EXPECT_TRUE(z.prevRe1 == 0.0 && z.prevIm2 == 0.0 && z.cosV == -1.0);

  // 16-bit: a tone at bin 8 of 64 reaches 64 * amplitude; the narrowing
  // truncates (mode 1), scales by 2^-f (mode 3) or picks f (mode 4).
  std::vector<short> tone(64);
  std::vector<WCplx> ctone(64);
  std::vector<DCplx> cwide(64);
  for (int m = 0; m < 64; ++m) {
    tone[m] = static_cast<short>(std::lround(1000 * std::cos(2 * 3.14159265358979 * m / 8)));
    ctone[m] = {tone[m], static_cast<short>(std::lround(1000 * std::sin(2 * 3.14159265358979 * m / 8)))};
    cwide[m] = {static_cast<double>(ctone[m].re), static_cast<double>(ctone[m].im)};
  }
  const LD want[2] = {singleBin(tone, 0.125).real(), singleBin(cwide, 0.125).real()};
  for (int mode : {1, 3, 4}) {
    int f[4] = {2, 2, 2, 2};
    RyxGoertzF32State s[4];
    for (int k = 0; k < 4; ++k) (k & 1 ? ryxvGoertzInit : ryxwGoertzInit)(0.125f, &s[k]);
    WCplx r[4] = {};
    for (int m = 0; m < 64; ++m) r[0] = ryxwGoertz(&s[0], tone[m], mode, &f[0]);
    for (int m = 0; m < 64; ++m) r[1] = ryxvGoertz(&s[1], ctone[m], mode, &f[1]);
    r[2] = ryxwbGoertz(&s[2], tone.data(), 64, mode, &f[2]);
    r[3] = ryxvbGoertz(&s[3], ctone.data(), 64, mode, &f[3]);
    for (int k = 0; k < 4; ++k) {
      const int shift = mode == 1 ? 0 : f[k];
      const double v = std::ldexp(static_cast<double>(want[k & 1]), -shift);
      EXPECT_NEAR(r[k].re, mode == 1 ? std::min(v, 32767.0) : v, 1.5) << mode << " form " << k;
    }
  }
}

}  // namespace
