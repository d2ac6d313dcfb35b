// Values of the complex, polar and spectrum conversions against long-double
// references (float magnitudes within the estimate's 2^-21, double within
// 2^-40, phases and polar-to-Cartesian within an ulp of the result's
// magnitude) and, for 16 bits, integer rules written out from the
// description over dense grids of samples.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::Random;
using LD = long double;

std::vector<int> lengths() {
  std::vector<int> v;
  for (int n = 1; n <= 40; ++n) v.push_back(n);
  v.insert(v.end(), {127, 128, 129, 300, 1024});
  return v;
}

// Interleaved and split forms of one operation must agree bit for bit.
template <class R, class C>
void splitOf(const std::vector<C>& x, std::vector<R>& re, std::vector<R>& im) {
  re.resize(x.size());
  im.resize(x.size());
  for (size_t i = 0; i < x.size(); ++i) {
    re[i] = x[i].re;
    im[i] = x[i].im;
  }
}

template <class R, class C, class FC, class FR, class FCM, class FRM, class FCP, class FRP, class FCS, class FRS>
void floatFamily(R eps, R magRel, FC cartC, FR cartR, FCM magC, FRM magR, FCP phC, FRP phR, FCS powC, FRS powR) {
  Random rng(21);
  for (int n : lengths()) {
    std::vector<C> x(n);
    for (C& e : x) e = {R(rng.f64(-50, 50) * std::exp2(rng.i32(-20, 20))), R(rng.f64(-50, 50))};
    if (n > 3) x[1].im = 0, x[2] = {0, 0}, x[3] = {R(-2), 0};
    std::vector<R> re, im, mag(n), ph(n), mag2(n), ph2(n), m3(n), m4(n), p3(n), p4(n), s3(n), s4(n);
    splitOf(x, re, im);
    cartC(x.data(), mag.data(), ph.data(), n);
    cartR(re.data(), im.data(), mag2.data(), ph2.data(), n);
    magC(x.data(), m3.data(), n);
    magR(re.data(), im.data(), m4.data(), n);
    phC(x.data(), p3.data(), n);
    phR(re.data(), im.data(), p4.data(), n);
    powC(x.data(), s3.data(), n);
    powR(re.data(), im.data(), s4.data(), n);
    ASSERT_TRUE(ryxtest::sameBits(mag.data(), mag2.data(), n) && ryxtest::sameBits(ph.data(), ph2.data(), n));
    ASSERT_TRUE(ryxtest::sameBits(m3.data(), m4.data(), n) && ryxtest::sameBits(p3.data(), p4.data(), n));
    ASSERT_TRUE(ryxtest::sameBits(s3.data(), s4.data(), n));
    ASSERT_TRUE(ryxtest::sameBits(ph.data(), p3.data(), n)) << "Phase is CartToPolar's phase";
    for (int i = 0; i < n; ++i) {
      const LD h = std::hypot(LD(x[i].re), LD(x[i].im));
      const LD a = x[i].im == 0 ? (x[i].re < 0 ? LD(3.14159265358979323846L) : 0) : std::atan2(LD(x[i].im), LD(x[i].re));
      EXPECT_NEAR(mag[i], h, h * 2 * eps) << n << " " << i;
      EXPECT_NEAR(ph[i], a, std::fabs(a) * eps + 1e-300);
      EXPECT_NEAR(m3[i], h, h * magRel) << n << " " << i;
      // The power spectrum is re*re + im*im, each product and the sum rounded to R.
      const R pr = x[i].re * x[i].re, pi = x[i].im * x[i].im;
      EXPECT_EQ(s3[i], R(pr + pi));
      EXPECT_NEAR(s3[i], LD(x[i].re) * x[i].re + LD(x[i].im) * x[i].im, s3[i] * 2 * eps);
    }
  }
}

TEST(PolarValues, FloatCartToPolarMagPhasePower) {
  floatFamily<float, SCplx>(0x1p-24f, 0x1p-21f, ryxcbCartToPolar, ryxsbrCartToPolar, ryxcbMag, ryxsbrMag, ryxcbPhase,
                            ryxsbrPhase, ryxcbPowerSpectr, ryxsbrPowerSpectr);
  floatFamily<double, DCplx>(0x1p-53, 0x1p-40, ryxzbCartToPolar, ryxdbrCartToPolar, ryxzbMag, ryxdbrMag, ryxzbPhase,
                             ryxdbrPhase, ryxzbPowerSpectr, ryxdbrPowerSpectr);
}

TEST(PolarValues, DocumentedCartToPolarCases) {
  SCplx x[] = {{-2, 0}, {0, 0}, {0, 2}, {3, -0.0f}};
  float mag[4], ph[4];
  ryxcbCartToPolar(x, mag, ph, 4);
  EXPECT_EQ(mag[0], 2.0f);
  std::uint32_t bits;
  std::memcpy(&bits, &ph[0], 4);
  EXPECT_EQ(bits, 0x40490fdbu);
  EXPECT_TRUE(mag[1] == 0.0f && ph[1] == 0.0f);
  EXPECT_EQ(mag[2], 2.0f);
  EXPECT_NEAR(ph[2], 1.5707964f, 1e-7f);
  EXPECT_TRUE(mag[3] == 3.0f && ph[3] == 0.0f);
}

TEST(PolarValues, PolarToCartRoundedOnce) {
  Random rng(4);
  for (int n : lengths()) {
    std::vector<float> m(n), p(n), re(n), im(n);
    std::vector<double> dm(n), dp(n), dre(n), dim(n);
    for (int i = 0; i < n; ++i) {
      m[i] = rng.f32(0, 100), p[i] = rng.f32(-4, 4);
      dm[i] = rng.f64(0, 100), dp[i] = rng.f64(-4, 4);
    }
    std::vector<SCplx> c(n);
    std::vector<DCplx> z(n);
    ryxcbPolarToCart(m.data(), p.data(), c.data(), n);
    ryxsbrPolarToCart(m.data(), p.data(), re.data(), im.data(), n);
    ryxzbPolarToCart(dm.data(), dp.data(), z.data(), n);
    ryxdbrPolarToCart(dm.data(), dp.data(), dre.data(), dim.data(), n);
    for (int i = 0; i < n; ++i) {
      ASSERT_TRUE(c[i].re == re[i] && c[i].im == im[i]);
      ASSERT_TRUE(z[i].re == dre[i] && z[i].im == dim[i]);
      EXPECT_NEAR(c[i].re, m[i] * std::cos(LD(p[i])), std::fabs(c[i].re) * 0x1p-24 + 1e-30);
      EXPECT_NEAR(c[i].im, m[i] * std::sin(LD(p[i])), std::fabs(c[i].im) * 0x1p-24 + 1e-30);
      EXPECT_NEAR(z[i].re, dm[i] * std::cos(LD(dp[i])), std::fabs(z[i].re) * 0x1p-52 + 1e-300);
      EXPECT_NEAR(z[i].im, dm[i] * std::sin(LD(dp[i])), std::fabs(z[i].im) * 0x1p-52 + 1e-300);
    }
  }
}

TEST(PolarValues, PartsMoveWordsUnchanged) {
  Random rng(8);
  for (int n : lengths()) {
    std::vector<SCplx> c(n), c2(n);
    std::vector<DCplx> z(n), z2(n);
    std::vector<WCplx> v(n), v2(n);
    for (int i = 0; i < n; ++i) {
      std::uint32_t a = rng.bits(), b = rng.bits();
      std::memcpy(&c[i].re, &a, 4);
      std::memcpy(&c[i].im, &b, 4);
      std::uint64_t a2 = (std::uint64_t{rng.bits()} << 32) | rng.bits(), b2 = rng.bits();
      std::memcpy(&z[i].re, &a2, 8);
      std::memcpy(&z[i].im, &b2, 8);
      v[i] = {static_cast<short>(a), static_cast<short>(b)};
    }
    std::vector<float> fr(n), fi(n), fr2(n), fi2(n);
    std::vector<double> dr(n), di(n), dr2(n), di2(n);
    std::vector<short> wr(n), wi(n), wr2(n), wi2(n);
    ryxcbCplxTo2Real(c.data(), fr.data(), fi.data(), n);
    ryxcbReal(c.data(), fr2.data(), n);
    ryxcbImag(c.data(), fi2.data(), n);
    ryxcb2RealToCplx(fr.data(), fi.data(), c2.data(), n);
    ryxzbCplxTo2Real(z.data(), dr.data(), di.data(), n);
    ryxzbReal(z.data(), dr2.data(), n);
    ryxzbImag(z.data(), di2.data(), n);
    ryxzb2RealToCplx(dr.data(), di.data(), z2.data(), n);
    ryxvbCplxTo2Real(v.data(), wr.data(), wi.data(), n);
    ryxvbReal(v.data(), wr2.data(), n);
    ryxvbImag(v.data(), wi2.data(), n);
    ryxvb2RealToCplx(wr.data(), wi.data(), v2.data(), n);
    ASSERT_TRUE(ryxtest::sameBits(c.data(), c2.data(), n) && ryxtest::sameBits(z.data(), z2.data(), n) &&
                ryxtest::sameBits(v.data(), v2.data(), n));
    ASSERT_TRUE(ryxtest::sameBits(fr.data(), fr2.data(), n) && ryxtest::sameBits(fi.data(), fi2.data(), n));
    ASSERT_TRUE(ryxtest::sameBits(dr.data(), dr2.data(), n) && ryxtest::sameBits(di.data(), di2.data(), n));
    ASSERT_TRUE(ryxtest::sameBits(wr.data(), wr2.data(), n) && ryxtest::sameBits(wi.data(), wi2.data(), n));
    for (int i = 0; i < n; ++i) ASSERT_TRUE(std::memcmp(&fr[i], &c[i].re, 4) == 0 && wi[i] == v[i].im);
  }
}

// ---- 16 bits ---------------------------------------------------------------

std::vector<WCplx> grid() {
  std::vector<WCplx> v;
  for (int a = -32768; a <= 32767; a += 1021)
    for (int b = -32768; b <= 32767; b += 1031) v.push_back({short(a), short(b)});
  for (int a = -9; a <= 9; ++a)
    for (int b = -9; b <= 9; ++b) v.push_back({short(a), short(b)});
  v.push_back({-32768, -32768});
  v.push_back({32767, 32767});
  v.push_back({-32768, 0});
  return v;
}

TEST(Polar16, PhaseIsTheTruncatedAngleTimes16383OverPi) {
  const std::vector<WCplx> v = grid();
  const int n = static_cast<int>(v.size());
  std::vector<short> ph(n), ph2(n), re, im;
  splitOf(v, re, im);
  ryxvbPhase(v.data(), ph.data(), n);
  ryxwbrPhase(re.data(), im.data(), ph2.data(), n);
  EXPECT_EQ(ph, ph2);
  for (int i = 0; i < n; ++i) {
    const LD a = v[i].im == 0 ? (v[i].re < 0 ? 3.14159265358979323846L : 0) : std::atan2(LD(v[i].im), LD(v[i].re));
    const LD scaled = a * 16383 / 3.14159265358979323846L;
    // Truncation towards zero; only a value within 1e-9 of an integer may go either way.
    const LD t = std::trunc(scaled);
    if (std::fabs(scaled - std::round(scaled)) > 1e-9) ASSERT_EQ(ph[i], short(t)) << v[i].re << "," << v[i].im;
    else ASSERT_LE(std::fabs(ph[i] - scaled), 1) << v[i].re << "," << v[i].im;
  }
  WCplx e[] = {{-1, 0}, {1, 0}, {0, 1}};
  short out[3];
  ryxvbPhase(e, out, 3);
  EXPECT_EQ(out[0], 16383);
  EXPECT_EQ(out[1], 0);
  EXPECT_EQ(out[2], 8191);
}

// The exact power re^2 + im^2 under mode and factor, from the description.
short powerModel(std::int64_t r, int mode, int f) {
  auto wrap = [](std::int64_t x) { return static_cast<short>(static_cast<std::uint16_t>(x & 0xffff)); };
  auto clamp = [](std::int64_t x) { return static_cast<short>(x > 32767 ? 32767 : (x < -32768 ? -32768 : x)); };
  if (mode == 0) return wrap(r);
  if (mode == 1) return clamp(r);
  if (f >= 0) return mode == 3 ? clamp(r >> std::min(f, 62)) : wrap(r >> std::min(f, 62));
  if (mode == 3) return clamp(r * (std::int64_t{1} << -f));
  return -f >= 16 ? 0 : wrap(r << -f);
}

TEST(Polar16, PowerSpectrumByMode) {
  const std::vector<WCplx> v = grid();
  const int n = static_cast<int>(v.size());
  std::vector<short> re, im, out(n), out2(n);
  splitOf(v, re, im);
  for (int mode : {0, 1, 2, 3}) {
    for (int f : {-17, -3, 0, 1, 9, 17, 40}) {
      int factor = f;
      ryxvbPowerSpectr(v.data(), out.data(), n, mode, &factor);
      ryxwbrPowerSpectr(re.data(), im.data(), out2.data(), n, mode, &factor);
      ASSERT_EQ(out, out2);
      const int used = mode >= 2 ? f : 0;
      for (int i = 0; i < n; ++i) {
        const std::int64_t r = std::int64_t{v[i].re} * v[i].re + std::int64_t{v[i].im} * v[i].im;
        ASSERT_EQ(out[i], powerModel(r, mode, used)) << mode << " " << f << " " << v[i].re << "," << v[i].im;
      }
      if (mode < 2) break;
    }
  }
  // Auto: the largest power's exponent less 14 when it leaves 16 bits.
  for (std::vector<WCplx> w : {std::vector<WCplx>{{100, 100}, {-3, 4}}, v}) {
    std::int64_t m = 0;
    for (WCplx e : w) m = std::max(m, std::int64_t{e.re} * e.re + std::int64_t{e.im} * e.im);
    int f = 0;
    while (m > 32767 && (m >> (f + 15)) != 0) ++f;  // floor(log2 m) - 14
    int factor = -5;
    std::vector<short> o(w.size());
    ryxvbPowerSpectr(w.data(), o.data(), static_cast<int>(w.size()), 4, &factor);
    ASSERT_EQ(factor, f);
    for (size_t i = 0; i < w.size(); ++i)
      ASSERT_EQ(o[i], short((std::int64_t{w[i].re} * w[i].re + std::int64_t{w[i].im} * w[i].im) >> f));
  }
}

TEST(Polar16, MagnitudeShortAndLongArrays) {
  const std::vector<WCplx> all = grid();
  std::vector<short> re, im;
  auto exact = [](WCplx e) { return std::sqrt(LD(e.re) * e.re + LD(e.im) * e.im); };
  for (size_t start = 0; start + 128 <= all.size(); start += 128 * 7) {
    // Up to 128 samples in modes 0 and 1: the truncated root, wrapped or clamped.
    std::vector<WCplx> v(all.begin() + start, all.begin() + start + 128);
    v[0] = {-32768, -32768};
    std::vector<short> o0(128), o1(128), o2(128);
    ryxvbMag(v.data(), o0.data(), 128, 0, nullptr);
    splitOf(v, re, im);
    ryxwbrMag(re.data(), im.data(), o1.data(), 128, 1, nullptr);
    for (int i = 0; i < 128; ++i) {
      const std::int64_t t = static_cast<std::int64_t>(exact(v[i]));
      ASSERT_EQ(o0[i], static_cast<short>(static_cast<std::uint16_t>(t)));
      ASSERT_EQ(o1[i], std::min<std::int64_t>(t, 32767));
    }
    // Fixed factors divide the root before truncation.
    for (int f : {-2, 1, 3}) {
      for (int mode : {2, 3}) {
        int factor = f;
        ryxvbMag(v.data(), o2.data(), 128, mode, &factor);
        for (int i = 0; i < 128; ++i) {
          const std::int64_t t = static_cast<std::int64_t>(std::ldexp(exact(v[i]), -f));
          ASSERT_EQ(o2[i], mode == 3 ? short(std::min<std::int64_t>(t, 32767)) : short(std::uint16_t(t)));
        }
      }
    }
  }
  // Longer arrays: full strips of 128 round a float root to nearest and
  // saturate; the rest truncates. The float root carries the estimate's
  // error, so a value near one half may round either way.
  const int n = 128 * 3 + 5;
  std::vector<WCplx> v(all.begin(), all.begin() + n);
  v[0] = {-32768, -32768};
  v[n - 1] = {-32768, -32768};
  std::vector<short> o(n);
  for (int mode : {0, 1}) {
    ryxvbMag(v.data(), o.data(), n, mode, nullptr);
    for (int i = 0; i < n; ++i) {
      const LD root = exact(v[i]);
      if (i < 3 * 128) {
        ASSERT_LE(std::fabs(o[i] - std::min<LD>(root, 32767)), 0.53L) << i;
      } else {
        const std::int64_t t = static_cast<std::int64_t>(root);
        ASSERT_EQ(o[i], mode == 1 ? short(std::min<std::int64_t>(t, 32767)) : short(std::uint16_t(t))) << i;
      }
    }
  }
  int factor = 0;
  ryxvbMag(v.data(), o.data(), n, 4, &factor);
  EXPECT_EQ(factor, 1);  // the largest root 46340.95 has exponent 15
  for (int i = 0; i < n; ++i) ASSERT_EQ(o[i], static_cast<short>(exact(v[i]) / 2));
  WCplx e[] = {{3, 4}};
  short m5;
  ryxvbMag(e, &m5, 1, 0, nullptr);
  EXPECT_EQ(m5, 5);
}

}  // namespace
