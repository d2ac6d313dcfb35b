// Float, double and complex square, root, threshold, inverse threshold and
// absolute value against long-double references: the estimate-based float
// kernels within 2^-21 relative, the double root within 2^-40, exact
// operations bit for bit. Both shapes, lengths 1-40 and long, misaligned
// destinations, guards after the end; the documented edge cases.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;

using LD = long double;

// Runs a routine in both shapes over every length 1-40 and some long ones,
// at three destination offsets, and hands (src, dst, n) to `check`.
template <class T, class F1, class F2, class Fill, class Check>
void sweep(F1 inPlace, F2 outOfPlace, Fill fill, Check check) {
  Random rng(7);
  std::vector<int> lengths;
  for (int n = 1; n <= 40; ++n) lengths.push_back(n);
  lengths.insert(lengths.end(), {127, 1000, 4099});
  for (int n : lengths) {
    for (int offset : {0, int(alignof(T)), int(3 * alignof(T))}) {
      std::vector<T> src(n);
      for (T& x : src) x = fill(rng);
      Guarded<T> a(n, offset), b(n, offset);  // the same alignment: the same lane groups
      for (int i = 0; i < n; ++i) a[i] = src[i];
      inPlace(a.data(), n);
      outOfPlace(src.data(), b.data(), n);
      ASSERT_TRUE(a.intact() && b.intact()) << n;
      ASSERT_TRUE(ryxtest::sameBits(a.data(), b.data(), n)) << "shapes differ at n=" << n;
      for (int i = 0; i < n; ++i) check(src[i], b[i], n);
    }
  }
}

float logUniform(Random& rng, float lo, float hi) { return std::exp2(rng.f32(lo, hi)); }

TEST(ElemSqr, ProductsInTheElementPrecision) {
  sweep<SCplx>(ryxcbSqr1, ryxcbSqr2, [](Random& r) { return SCplx{r.f32(), r.f32()}; },
               [](SCplx x, SCplx y, int) {
                 // The documented product order: (re+im)*(re-im) and (2*re)*im, each rounded to float.
                 const float s = x.re + x.im, d = x.re - x.im;
                 EXPECT_EQ(y.re, s * d);
                 EXPECT_EQ(y.im, (2.0f * x.re) * x.im);
                 EXPECT_NEAR(y.re, LD(x.re) * x.re - LD(x.im) * x.im, 1e-5 * (x.re * x.re + x.im * x.im));
               });
  sweep<DCplx>(ryxzbSqr1, ryxzbSqr2, [](Random& r) { return DCplx{r.f64(), r.f64()}; }, [](DCplx x, DCplx y, int) {
    EXPECT_NEAR(y.re, LD(x.re) * x.re - LD(x.im) * x.im, 1e-15 * (x.re * x.re + x.im * x.im));
    EXPECT_EQ(y.im, 2.0 * (x.re * x.im));  // the doubled product is exact
  });
  sweep<float>(ryxsbSqr1, ryxsbSqr2, [](Random& r) { return r.f32(); },
               [](float x, float y, int) { EXPECT_EQ(y, float(LD(x) * x)); });
  sweep<double>(ryxdbSqr1, ryxdbSqr2, [](Random& r) { return r.f64(); },
                [](double x, double y, int) { EXPECT_NEAR(y, LD(x) * x, LD(y) * 0x1p-52L); });
}

TEST(ElemSqrt, RealRootsWithinTheirBounds) {
  ReportCapture capture;
  sweep<float>(ryxsbSqrt1, ryxsbSqrt2, [](Random& r) { return logUniform(r, -120.0f, 120.0f); },
               [](float x, float y, int) { EXPECT_NEAR(y, std::sqrt(LD(x)), std::sqrt(LD(x)) * 0x1p-21L) << x; });
  sweep<double>(ryxdbSqrt1, ryxdbSqrt2, [](Random& r) { return std::exp2(r.f64(-1000.0, 1000.0)); },
                [](double x, double y, int) { EXPECT_NEAR(y, std::sqrt(LD(x)), std::sqrt(LD(x)) * 0x1p-40L) << x; });
  EXPECT_TRUE(capture.reports().empty());
  // Denormal, huge and infinite arguments take the exact root.
  float special[] = {1e-40f, FLT_MAX, INFINITY, 4.0f, 1e-45f};
  ryxsbSqrt1(special, 5);
  EXPECT_NEAR(special[0], std::sqrt(LD(1e-40f)), 1e-26);
  EXPECT_EQ(special[2], INFINITY);
  EXPECT_NEAR(special[1], std::sqrt(LD(FLT_MAX)), 1e13);
  double dspecial[] = {1e-310, DBL_MAX, INFINITY, 9.0, 2.0};
  ryxdbSqrt1(dspecial, 5);
  EXPECT_NEAR(dspecial[0], std::sqrt(LD(1e-310)), 1e-168);
  EXPECT_EQ(dspecial[2], INFINITY);
  EXPECT_NEAR(dspecial[3], 3.0, 1e-14);
  EXPECT_TRUE(capture.reports().empty());
}

TEST(ElemSqrt, NegativeElementsReportedOnceAfterTheWholeArray) {
  ReportCapture capture;
  auto expectOneReport = [&](const char* name) {
    ASSERT_EQ(capture.reports().size(), 1u) << name;
    EXPECT_EQ(capture.reports()[0].funcName, name);
    EXPECT_EQ(capture.reports()[0].context, "Element of input vector is negative");
    EXPECT_EQ(capture.reports()[0].status, RYX_StsBadArg);
    capture.clear();
  };
  float v[] = {4.0f, -1.0f, 9.0f};
  ryxsbSqrt1(v, 3);
  EXPECT_NEAR(v[0], 2.0f, 1e-6f);
  EXPECT_EQ(v[1], 0.0f);
  EXPECT_NEAR(v[2], 3.0f, 1e-6f);
  expectOneReport("ryxsbSqrt1");
  float nz[] = {-0.0f};
  ryxsbSqrt1(nz, 1);
  EXPECT_EQ(nz[0], 0.0f);
  expectOneReport("ryxsbSqrt1");
  float nan[] = {std::numeric_limits<float>::quiet_NaN(), 1.0f};
  ryxsbSqrt1(nan, 2);  // a NaN with clear sign gives 0 and no report
  EXPECT_EQ(nan[0], 0.0f);
  EXPECT_TRUE(capture.reports().empty());
  double pz = 0.0, out = 5.0, mz = -0.0;
  ryxdbSqrt2(&pz, &out, 1);
  EXPECT_EQ(out, 0.0);
  EXPECT_TRUE(capture.reports().empty());
  ryxdbSqrt2(&mz, &out, 1);
  EXPECT_EQ(out, 0.0);
  expectOneReport("ryxdbSqrt2");
  // In a block of four and in the tail: the rest still computed.
  double d[] = {16.0, -2.0, 25.0, 36.0, 49.0, -1.0};
  ryxdbSqrt1(d, 6);
  const double want[] = {4.0, 0.0, 5.0, 6.0, 7.0, 0.0};
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(d[i], want[i], 1e-12) << i;
  expectOneReport("ryxdbSqrt1");
  short w[] = {16, -1, 100};
  ryxwbSqrt1(w, 3);
  EXPECT_EQ(w[0], 4);
  EXPECT_EQ(w[1], 256);  // the root of the unsigned reading 65535
  EXPECT_EQ(w[2], 10);
  expectOneReport("ryxwbSqrt1");
}

TEST(ElemSqrt, ComplexPrincipalRoots) {
  // The root of (m + u) and (m - u) cancels when one part dominates, so the
  // bound is the estimate's relative error carried through a square root.
  auto bound = [](LD mag, LD rel) { return std::sqrt(mag * rel) + std::sqrt(mag) * rel; };
  auto ref = [](LD re, LD im) {
    const LD m = std::hypot(re, im);
    return std::pair<LD, LD>{std::sqrt((m + re) / 2), std::copysign(std::sqrt((m - re) / 2), im)};
  };
  sweep<SCplx>(ryxcbSqrt1, ryxcbSqrt2, [](Random& r) { return SCplx{r.f32(), r.f32()}; },
               [&](SCplx x, SCplx y, int) {
                 const auto [re, im] = ref(x.re, x.im);
                 const LD tol = bound(std::hypot(LD(x.re), LD(x.im)), 0x1p-20L);
                 EXPECT_NEAR(y.re, re, tol);
                 EXPECT_NEAR(y.im, im, tol);
               });
  sweep<DCplx>(ryxzbSqrt1, ryxzbSqrt2, [](Random& r) { return DCplx{r.f64(), r.f64()}; },
               [&](DCplx x, DCplx y, int) {
                 const auto [re, im] = ref(x.re, x.im);
                 const LD tol = bound(std::hypot(LD(x.re), LD(x.im)), 0x1p-40L);
                 EXPECT_NEAR(y.re, re, tol);
                 EXPECT_NEAR(y.im, im, tol);
               });
  SCplx c[] = {{-4.0f, 0.0f}, {-4.0f, -0.0f}, {0.0f, 0.0f}};
  ryxcbSqrt1(c, 3);
  EXPECT_EQ(c[0].re, 0.0f);
  EXPECT_EQ(c[0].im, 2.0f);
  EXPECT_EQ(c[1].re, 0.0f);
  EXPECT_EQ(c[1].im, -2.0f);
  EXPECT_EQ(c[2].re, 0.0f);
  DCplx z[] = {{1e-170, 1e-170}, {4.0, 0.0}};
  ryxzbSqrt1(z, 2);  // a squared magnitude below the smallest normal counts as zero
  EXPECT_EQ(z[0].re, 0.0);
  EXPECT_EQ(z[0].im, 0.0);
  EXPECT_NEAR(z[1].re, 2.0, 1e-12);
}

TEST(ElemThresh, RealFormsFollowHardwareMinimumAndMaximum) {
  const float t = 0.5f;
  for (int relOp : {0, 1, 2}) {
    sweep<float>([&](float* v, int n) { ryxsbThresh1(v, n, t, relOp); },
                 [&](const float* s, float* d, int n) { ryxsbThresh2(s, d, n, t, relOp); },
                 [](Random& r) { return r.f32(-2, 2); },
                 [&](float x, float y, int) { EXPECT_EQ(y, relOp == 0 ? std::fmax(x, t) : std::fmin(x, t)); });
    sweep<double>([&](double* v, int n) { ryxdbThresh1(v, n, -0.25, relOp); },
                  [&](const double* s, double* d, int n) { ryxdbThresh2(s, d, n, -0.25, relOp); },
                  [](Random& r) { return r.f64(-2, 2); },
                  [&](double x, double y, int) { EXPECT_EQ(y, relOp == 0 ? std::fmax(x, -0.25) : std::fmin(x, -0.25)); });
  }
  float nan[] = {std::numeric_limits<float>::quiet_NaN()};
  ryxsbThresh1(nan, 1, 3.0f, RYX_GT);
  EXPECT_EQ(nan[0], 3.0f);
  double dnan[] = {std::numeric_limits<double>::quiet_NaN()};
  ryxdbThresh1(dnan, 1, -3.0, RYX_LT);
  EXPECT_EQ(dnan[0], -3.0);
}

TEST(ElemThresh, ComplexMagnitudesKeepTheirPhase) {
  const LD t = 1.5L;
  for (int relOp : {0, 1}) {
    auto check = [&](LD re, LD im, LD yre, LD yim, LD rel) {
      const LD m = std::hypot(re, im);
      const bool change = relOp == RYX_GT ? m > t : m < t;
      if (!change) {
        EXPECT_EQ(yre, re);
        EXPECT_EQ(yim, im);
        return;
      }
      EXPECT_NEAR(yre, re * t / m, t * rel);
      EXPECT_NEAR(yim, im * t / m, t * rel);
    };
    sweep<SCplx>([&](SCplx* v, int n) { ryxcbThresh1(v, n, float(t), relOp); },
                 [&](const SCplx* s, SCplx* d, int n) { ryxcbThresh2(s, d, n, float(t), relOp); },
                 [](Random& r) { return SCplx{r.f32(-3, 3), r.f32(-3, 3)}; },
                 [&](SCplx x, SCplx y, int) { check(x.re, x.im, y.re, y.im, 0x1p-20L); });
    sweep<DCplx>([&](DCplx* v, int n) { ryxzbThresh1(v, n, double(t), relOp); },
                 [&](const DCplx* s, DCplx* d, int n) { ryxzbThresh2(s, d, n, double(t), relOp); },
                 [](Random& r) { return DCplx{r.f64(-3, 3), r.f64(-3, 3)}; },
                 [&](DCplx x, DCplx y, int) { check(x.re, x.im, y.re, y.im, 0x1p-50L); });
  }
  // A zero sample has no phase: raised to (thresh, 0); a NaN sample too in DCplx.
  SCplx c[] = {{0.0f, 0.0f}};
  ryxcbThresh1(c, 1, 2.0f, RYX_LT);
  EXPECT_EQ(c[0].re, 2.0f);
  EXPECT_EQ(c[0].im, 0.0f);
  DCplx z[] = {{0.0, 0.0}, {NAN, 1.0}};
  ryxzbThresh1(z, 2, 2.0, RYX_LT);
  EXPECT_EQ(z[0].re, 2.0);
  EXPECT_EQ(z[1].re, 2.0);
  EXPECT_EQ(z[1].im, 0.0);
  // Zero threshold in SCplx and WCplx: relOp exactly 1 clears, 0 and 2 leave or copy.
  SCplx keep[] = {{1, 2}, {3, 4}}, out[2] = {{9, 9}, {9, 9}};
  ryxcbThresh1(keep, 2, 0.0f, RYX_LT);
  ryxcbThresh1(keep, 2, 0.0f, 2);
  EXPECT_EQ(keep[1].im, 4.0f);
  ryxcbThresh2(keep, out, 2, 0.0f, 2);
  EXPECT_EQ(out[1].im, 4.0f);
  ryxcbThresh1(keep, 2, 0.0f, RYX_GT);
  EXPECT_EQ(keep[0].re, 0.0f);
  EXPECT_EQ(keep[1].im, 0.0f);
  WCplx v[] = {{5, -7}}, vout[] = {{1, 1}};
  ryxvbThresh2(v, vout, 1, 0, 2);
  EXPECT_EQ(vout[0].im, -7);
  ryxvbThresh1(v, 1, 0, RYX_GT);
  EXPECT_EQ(v[0].re, 0);
  EXPECT_EQ(v[0].im, 0);
  DCplx zz[] = {{3.0, -4.0}};
  ryxzbThresh1(zz, 1, 0.0, RYX_GT);
  EXPECT_EQ(zz[0].re, 0.0);
  EXPECT_EQ(zz[0].im, 0.0);
}

TEST(ElemInvThresh, ReciprocalsWithMagnitudesRaisedToThresh) {
  ReportCapture capture;
  for (float t : {0.0f, 0.75f}) {
    auto ref = [t](LD x) { return std::fabs(x) < t ? std::copysign(LD(1) / t, x) : LD(1) / x; };
    sweep<float>([&](float* v, int n) { ryxsbInvThresh1(v, n, t); },
                 [&](const float* s, float* d, int n) { ryxsbInvThresh2(s, d, n, t); },
                 [](Random& r) { return r.f32(-4, 4); },
                 [&](float x, float y, int) { EXPECT_NEAR(y, ref(x), std::fabs(ref(x)) * 0x1p-21L) << x; });
    sweep<double>([&](double* v, int n) { ryxdbInvThresh1(v, n, t); },
                  [&](const double* s, double* d, int n) { ryxdbInvThresh2(s, d, n, t); },
                  [](Random& r) { return r.f64(-4, 4); },
                  [&](double x, double y, int) { EXPECT_NEAR(y, ref(x), std::fabs(ref(x)) * 0x1p-51L) << x; });
    auto cref = [t](LD re, LD im) {
      const LD m = std::hypot(re, im), k = m < t ? 1 / (m * t) : 1 / (m * m);
      return std::pair<LD, LD>{re * k, -im * k};
    };
    sweep<SCplx>([&](SCplx* v, int n) { ryxcbInvThresh1(v, n, t); },
                 [&](const SCplx* s, SCplx* d, int n) { ryxcbInvThresh2(s, d, n, t); },
                 [](Random& r) { return SCplx{r.f32(-2, 2), r.f32(-2, 2)}; },
                 [&](SCplx x, SCplx y, int) {
                   const auto [re, im] = cref(x.re, x.im);
                   const LD tol = std::hypot(re, im) * 0x1p-20L;
                   EXPECT_NEAR(y.re, re, tol);
                   EXPECT_NEAR(y.im, im, tol);
                 });
    sweep<DCplx>([&](DCplx* v, int n) { ryxzbInvThresh1(v, n, t); },
                 [&](const DCplx* s, DCplx* d, int n) { ryxzbInvThresh2(s, d, n, t); },
                 [](Random& r) { return DCplx{r.f64(-2, 2), r.f64(-2, 2)}; },
                 [&](DCplx x, DCplx y, int) {
                   const auto [re, im] = cref(x.re, x.im);
                   const LD tol = std::hypot(re, im) * 0x1p-50L;
                   EXPECT_NEAR(y.re, re, tol);
                   EXPECT_NEAR(y.im, im, tol);
                 });
  }
  EXPECT_TRUE(capture.reports().empty());
  // The sign of -0.0: by sign bit in float, by comparison in double.
  float s[] = {-0.0f, 0.25f};
  ryxsbInvThresh1(s, 2, 1.0f);
  EXPECT_NEAR(s[0], -1.0f, 1e-6f);
  EXPECT_NEAR(s[1], 1.0f, 1e-6f);
  double d[] = {0.5, -0.5, -0.0};
  ryxdbInvThresh1(d, 3, 1.0);
  EXPECT_EQ(d[0], 1.0);
  EXPECT_EQ(d[1], -1.0);
  EXPECT_EQ(d[2], 1.0);
  float huge[] = {3e38f, -INFINITY};
  ryxsbInvThresh1(huge, 2, 1.0f);
  EXPECT_FALSE(std::isnan(huge[0]) || std::isnan(huge[1]));
  SCplx c0[] = {{0.0f, 0.0f}};
  ryxcbInvThresh1(c0, 1, 4.0f);
  EXPECT_NEAR(c0[0].re, 0.25f, 1e-6f);
  EXPECT_EQ(c0[0].im, 0.0f);
  EXPECT_TRUE(capture.reports().empty());
  // Zero threshold and a zero element: an infinity there, one report after the rest is done.
  float z[] = {2.0f, 0.0f, 4.0f, 8.0f, -0.5f};
  ryxsbInvThresh1(z, 5, 0.0f);
  EXPECT_EQ(z[1], INFINITY);
  EXPECT_NEAR(z[4], -2.0f, 1e-6f);
  EXPECT_NEAR(z[3], 0.125f, 1e-7f);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].context, "zero element and zero thresh");
  capture.clear();
  for (auto call : {+[] { double v[] = {0.0, 1.0}; ryxdbInvThresh1(v, 2, 0.0); },
                    +[] { SCplx v[] = {{0.0f, 0.0f}}; ryxcbInvThresh1(v, 1, 0.0f); },
                    +[] { DCplx v[] = {{0.0, 0.0}}; ryxzbInvThresh1(v, 1, 0.0); }}) {
    call();
    ASSERT_EQ(capture.reports().size(), 1u);
    EXPECT_EQ(capture.reports()[0].context, "zero element and zero thresh");
    capture.clear();
  }
}

TEST(ElemAbs, SignBitClearedForEveryPattern) {
  Random rng(3);
  std::vector<float> f(1000);
  std::vector<double> d(1000);
  for (int i = 0; i < 1000; ++i) {
    std::uint32_t b = rng.bits();
    std::memcpy(&f[i], &b, 4);
    std::uint64_t b2 = (std::uint64_t{rng.bits()} << 32) | rng.bits();
    std::memcpy(&d[i], &b2, 8);
  }
  std::vector<float> fo(1000);
  std::vector<double> dout(1000);
  ryxsbAbs2(f.data(), fo.data(), 1000);
  ryxdbAbs2(d.data(), dout.data(), 1000);
  for (int i = 0; i < 1000; ++i) {
    std::uint32_t a, b;
    std::memcpy(&a, &f[i], 4);
    std::memcpy(&b, &fo[i], 4);
    ASSERT_EQ(b, a & 0x7fffffffu);
    std::uint64_t c, e;
    std::memcpy(&c, &d[i], 8);
    std::memcpy(&e, &dout[i], 8);
    ASSERT_EQ(e, c & 0x7fffffffffffffffull);
  }
  ryxsbAbs1(f.data(), 1000);
  ryxdbAbs1(d.data(), 1000);
  EXPECT_TRUE(ryxtest::sameBits(f.data(), fo.data(), 1000));
  EXPECT_TRUE(ryxtest::sameBits(d.data(), dout.data(), 1000));
}

}  // namespace
