// The Div family (its checks are in checks_test.cpp): the zero-divisor
// rules and their report, the float quotients through the reciprocal
// estimate with one Newton step, the 16-bit narrowing split between blocks
// and single elements, and the 16-bit complex scalar division.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cfloat>
#include <cmath>
#include <complex>
#include <cstdint>
#include <string>
#include <vector>

#include "int16_model.h"
#include "test_support.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;

// The processor's reciprocal estimate of one float.
float rcp(float b) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(b))); }

using i16model::clamp16;
using i16model::low16;

template <class T> bool same(const std::vector<T>& x, const std::vector<T>& y) {
  return x.size() == y.size() && ryxtest::sameBits(x.data(), y.data(), static_cast<int>(x.size()));
}

// One "(Divide_by_Zero)" report per call that met a zero divisor, each
// under the routine's name; the stored status is the bad-argument code.
void expectZeroReports(const ReportCapture& capture, std::vector<std::string> names) {
  ASSERT_EQ(capture.reports().size(), names.size());
  for (size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(capture.reports()[i].funcName, names[i]);
    EXPECT_EQ(capture.reports()[i].context, "(Divide_by_Zero)");
    EXPECT_EQ(capture.reports()[i].file, "ryxdiv");
  }
  EXPECT_EQ(ryxGetErrStatus(), names.empty() ? RYX_StsOk : RYX_StsBadArg);
}

// ---- real float and double -------------------------------------------------

// A zero divisor (either sign) gives the largest finite value with the
// dividend's sign, 0 for a zero dividend, and -max for NaN (not above zero).
float zeroRuleF(float x) { return x == 0.0f ? x : (x > 0.0f ? FLT_MAX : -FLT_MAX); }
double zeroRuleD(double x) { return x == 0.0 ? x : (x > 0.0 ? DBL_MAX : -DBL_MAX); }

TEST(DivFloat, ArraysMatchNewtonQuotientAtEveryLengthAndAlignment) {
  Random rng(21);
  for (int n = 1; n <= 40; ++n) {
    for (int off = 0; off < 16; off += 4) {
      Guarded<float> a(n, off), b(n, (off + 8) % 16), d(n, (16 - off) % 16);
      bool anyZero = false;
      for (int i = 0; i < n; ++i) {
        a[i] = rng.i32(0, 20) == 0 ? 0.0f : rng.f32(-1e4f, 1e4f);
        b[i] = rng.i32(0, 15) == 0 ? (rng.i32(0, 1) ? 0.0f : -0.0f) : rng.f32(-50.0f, 50.0f);
        anyZero |= b[i] == 0.0f;
      }
      ReportCapture capture;
      EXPECT_EQ(ryxsbDiv3(a.data(), b.data(), d.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
      for (int i = 0; i < n; ++i) {
        const float r = rcp(b[i]), want = b[i] == 0.0f ? zeroRuleF(a[i]) : a[i] * r * (2.0f - b[i] * r);
        ASSERT_EQ(d[i], want) << n << " " << off << " " << i;
        // and it is a quotient: one Newton step leaves about 22 good bits
        const double exact = static_cast<double>(a[i]) / b[i];
        if (b[i] != 0.0f) {
          ASSERT_NEAR(d[i], exact, 1e-6 * std::fabs(exact) + 1e-30);
        }
      }
      ASSERT_TRUE(d.intact());
      Guarded<float> d2(n, off);  // Div2: dst / src in place
      for (int i = 0; i < n; ++i) d2[i] = a[i];
      EXPECT_EQ(ryxsbDiv2(b.data(), d2.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
      ASSERT_TRUE(ryxtest::sameBits(d2.data(), d.data(), n));
      expectZeroReports(capture, anyZero ? std::vector<std::string>{"ryxsbDiv3", "ryxsbDiv2"} : std::vector<std::string>{});
    }
  }
}

TEST(DivFloat, ScalarFormsAndDoubleQuotients) {
  Random rng(22);
  std::vector<float> x(37), dx(37);
  std::vector<double> y(37), dy(37), b(37), q(37);
  for (int i = 0; i < 37; ++i) {
    x[i] = rng.f32();
    y[i] = rng.f64();
    b[i] = i % 9 == 4 ? (i % 2 ? 0.0 : -0.0) : rng.f64();
    dx[i] = x[i] * (1.0f / 3.0f);  // a scalar divisor multiplies by one reciprocal
    dy[i] = y[i] * (1.0 / -7.0);
    q[i] = b[i] == 0.0 ? zeroRuleD(y[i]) : y[i] / b[i];  // arrays of doubles divide
  }
  std::vector<float> gx = x;
  std::vector<double> gy = y, q3(37), q2 = y;
  ReportCapture capture;
  EXPECT_EQ(ryxsbDiv1(3.0f, gx.data(), 37), RYX_StsOk);
  EXPECT_EQ(ryxdbDiv1(-7.0, gy.data(), 37), RYX_StsOk);
  EXPECT_EQ(ryxdbDiv3(y.data(), b.data(), q3.data(), 37), RYX_DivByZero);
  EXPECT_EQ(ryxdbDiv2(b.data(), q2.data(), 37), RYX_DivByZero);
  EXPECT_TRUE(same(gx, dx) && same(gy, dy) && same(q3, q) && same(q2, q));
  expectZeroReports(capture, {"ryxdbDiv3", "ryxdbDiv2"});
}

TEST(DivFloat, ZeroScalarDivisorByExample) {
  ReportCapture capture;
  std::vector<float> s = {1.0f, -1.0f, 0.0f, std::nanf("")}, t = s;
  std::vector<double> d = {2.0, -2.0, 0.0};
  EXPECT_EQ(ryxsbDiv1(0.0f, s.data(), 4), RYX_DivByZero);
  EXPECT_EQ(ryxsbDiv1(-0.0f, t.data(), 4), RYX_DivByZero) << "-0.0 counts as zero";
  EXPECT_EQ(ryxdbDiv1(0.0, d.data(), 3), RYX_DivByZero);
  const std::vector<float> want = {3.4028235e38f, -3.4028235e38f, 0.0f, -3.4028235e38f};
  EXPECT_TRUE(same(s, want) && same(t, want));
  EXPECT_TRUE(same(d, {DBL_MAX, -DBL_MAX, 0.0}));
  expectZeroReports(capture, {"ryxsbDiv1", "ryxsbDiv1", "ryxdbDiv1"});
}

// ---- complex float and double --------------------------------------------

template <class C> std::complex<long double> ld(C c) { return {c.re, c.im}; }

// Quotients near the long-double ones, the float ones exactly in the
// documented order (|b|^2, its Newton-refined estimate, then both
// numerators times it); zero divisors give (0, 0).
TEST(DivComplex, QuotientsAgainstLongDoubleAndZeroRules) {
  Random rng(23);
  const std::complex<long double> val(0.5L, -2.0L);
  for (int n = 1; n <= 19; ++n) {
    std::vector<SCplx> a(n), b(n), q(n), want(n), c1(n);
    std::vector<DCplx> za(n), zb(n), zq(n);
    for (int i = 0; i < n; ++i) {
      a[i] = {rng.f32(), rng.f32()};
      b[i] = (i % 7 == 3) ? SCplx{0.0f, -0.0f} : SCplx{rng.f32(), rng.f32()};
      za[i] = {a[i].re, a[i].im};
      zb[i] = {b[i].re, b[i].im};
      const float m = b[i].re * b[i].re + b[i].im * b[i].im, r = rcp(m), inv = r * (2.0f - m * r);
      want[i] = i % 7 == 3 ? SCplx{0, 0}
                           : SCplx{(a[i].re * b[i].re + a[i].im * b[i].im) * inv, (a[i].im * b[i].re - a[i].re * b[i].im) * inv};
    }
    const RyxStatus expected = n > 3 ? RYX_DivByZero : RYX_StsOk;
    ReportCapture capture;
    EXPECT_EQ(ryxcbDiv3(a.data(), b.data(), q.data(), n), expected);
    EXPECT_EQ(ryxzbDiv3(za.data(), zb.data(), zq.data(), n), expected);
    ASSERT_TRUE(same(q, want)) << n;
    for (int i = 0; i < n; ++i) {
      const std::complex<long double> w = i % 7 == 3 ? 0.0L : ld(a[i]) / ld(b[i]);
      const double tol = static_cast<double>(std::abs(w) + 1e-3L);
      EXPECT_NEAR(q[i].re, static_cast<double>(w.real()), 2e-6 * tol);
      EXPECT_NEAR(q[i].im, static_cast<double>(w.imag()), 2e-6 * tol);
      EXPECT_NEAR(zq[i].re, static_cast<double>(w.real()), 1e-13 * tol);
      EXPECT_NEAR(zq[i].im, static_cast<double>(w.imag()), 1e-13 * tol);
    }
    std::vector<SCplx> c2 = a;  // Div2 in place gives the same
    std::vector<DCplx> z2 = za, z1 = za;
    ryxcbDiv2(b.data(), c2.data(), n);
    ryxzbDiv2(zb.data(), z2.data(), n);
    EXPECT_TRUE(same(c2, q) && same(z2, zq));
    c1 = a;
    EXPECT_EQ(ryxcbDiv1(SCplx{0.5f, -2.0f}, c1.data(), n), RYX_StsOk);
    EXPECT_EQ(ryxzbDiv1(DCplx{0.5, -2.0}, z1.data(), n), RYX_StsOk);
    for (int i = 0; i < n; ++i) {
      const std::complex<long double> w = ld(a[i]) / val;
      EXPECT_NEAR(c1[i].re, static_cast<double>(w.real()), 1e-5 * (std::fabs(static_cast<double>(w.real())) + 1));
      EXPECT_NEAR(z1[i].im, static_cast<double>(w.imag()), 1e-12 * (std::fabs(static_cast<double>(w.imag())) + 1));
    }
    EXPECT_EQ(ryxcbDiv1(SCplx{0.0f, 0.0f}, c1.data(), n), RYX_DivByZero);
    EXPECT_EQ(ryxzbDiv1(DCplx{-0.0, 0.0}, z1.data(), n), RYX_DivByZero);
    EXPECT_TRUE(same(c1, std::vector<SCplx>(n, SCplx{0, 0})) && same(z1, std::vector<DCplx>(n, DCplx{0, 0})));
  }
}

// ---- 16-bit --------------------------------------------------------------

// Rounded float quotient, then the narrowing of its position: elements at
// index n % blockLen and above are in blocks (saturate), the lower ones are
// single (low 16 bits).
short narrowAt(float q, int i, int n, int blockLen) {
  const std::int64_t r = std::llrint(q);
  return i >= n % blockLen ? clamp16(r) : low16(r);
}
float newtonInverse(float m) {
  const float r = rcp(m);
  return r * (2.0f - m * r);
}
short rnd16(Random& rng, int lo = -32768, int hi = 32767) { return static_cast<short>(rng.i32(lo, hi)); }

TEST(DivInt16, RealQuotientsRoundAndNarrowByPosition) {
  Random rng(24);
  for (int n = 1; n <= 40; ++n) {
    std::vector<short> a(n), b(n), q(n), want(n);
    bool anyZero = false;
    for (int i = 0; i < n; ++i) {
      a[i] = rng.i32(0, 9) == 0 ? -32768 : rnd16(rng);
      b[i] = rng.i32(0, 9) == 0 ? -1 : (rng.i32(0, 3) == 0 ? rnd16(rng, -3, 3) : rnd16(rng));
      anyZero |= b[i] == 0;
      // A zero divisor saturates by the dividend's sign.
      want[i] = b[i] == 0 ? (a[i] > 0 ? 32767 : (a[i] < 0 ? -32768 : 0)) : narrowAt(a[i] * newtonInverse(b[i]), i, n, 8);
    }
    ReportCapture capture;
    EXPECT_EQ(ryxwbDiv3(a.data(), b.data(), q.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
    ASSERT_TRUE(same(q, want)) << n;
    for (int i = 0; i < n; ++i) {
      // Away from halves the rounded quotient is the nearest integer.
      const double exact = b[i] == 0 ? 0.5 : static_cast<double>(a[i]) / b[i];
      if (std::fabs(exact - std::floor(exact) - 0.5) > 0.01 && std::fabs(exact) < 32767) {
        ASSERT_EQ(q[i], static_cast<short>(std::lround(exact))) << a[i] << "/" << b[i];
      }
    }
    std::vector<short> q2 = a;
    EXPECT_EQ(ryxwbDiv2(b.data(), q2.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
    ASSERT_TRUE(same(q2, q));
    // 2, -2 and 4 put odd (and 2 mod 4) dividends exactly on halves, which
    // round to even in blocks and single elements alike.
    for (short val : {3, -1, 7, -32768, 1, 2, -2, 4}) {
      std::vector<short> d = a;
      EXPECT_EQ(ryxwbDiv1(val, d.data(), n), RYX_StsOk);
      const float inv = 1.0f / static_cast<float>(val);
      for (int i = 0; i < n; ++i) want[i] = narrowAt(static_cast<float>(a[i]) * inv, i, n, 8);
      ASSERT_TRUE(same(d, want)) << val << " " << n;
    }
  }
}

TEST(DivInt16, BlockSaturatesSingleTruncatesByExample) {
  // -32768 / -1: saturated in a block of eight, wrapped when single. With
  // nine elements the top eight are a block and element 0 is single.
  for (int n : {8, 1, 9}) {
    std::vector<short> d(n, -32768), want(n, 32767);
    if (n != 8) want[0] = -32768;
    EXPECT_EQ(ryxwbDiv1(-1, d.data(), n), RYX_StsOk);
    EXPECT_TRUE(same(d, want)) << n;
  }
  ReportCapture capture;
  std::vector<short> z = {5, -5};
  EXPECT_EQ(ryxwbDiv1(0, z.data(), 2), RYX_DivByZero);
  EXPECT_TRUE(same(z, {32767, -32768}));
  short a[10] = {0, 1, -1, 4, 5, 6, 7, 8, 8, 10}, b[10] = {0, 0, 0, 2, 2, 2, 0, 2, 2, 2}, q[10];
  EXPECT_EQ(ryxwbDiv3(a, b, q, 10), RYX_DivByZero);
  const short want[10] = {0, 32767, -32768, 2, 2, 3, 32767, 4, 4, 5};
  for (int i = 0; i < 10; ++i) {
    if (i == 4) {
      EXPECT_TRUE(q[i] == 2 || q[i] == 3) << "a half after the estimate";
    } else {
      EXPECT_EQ(q[i], want[i]) << i;
    }
  }
  expectZeroReports(capture, {"ryxwbDiv1", "ryxwbDiv3"});
}

TEST(DivInt16, ComplexQuotientsAndZeroScalar) {
  Random rng(25);
  for (int n = 1; n <= 21; ++n) {
    std::vector<WCplx> a(n), b(n), q(n), want(n);
    bool anyZero = false;
    for (int i = 0; i < n; ++i) {
      a[i] = {rnd16(rng), rnd16(rng)};
      b[i] = i % 6 == 2 ? WCplx{0, 0} : WCplx{rnd16(rng, -40, 40), rnd16(rng, -40, 40)};
      if (i % 5 == 1) {
        a[i] = {-32768, 0};
        b[i] = {-1, 0};
      }
      const float br = b[i].re, bi = b[i].im, ar = a[i].re, ai = a[i].im, inv = newtonInverse(br * br + bi * bi);
      anyZero |= b[i].re == 0 && b[i].im == 0;
      want[i] = b[i].re == 0 && b[i].im == 0 ? WCplx{0, 0}
                                             : WCplx{narrowAt((ar * br + ai * bi) * inv, i, n, 4), narrowAt((ai * br - ar * bi) * inv, i, n, 4)};
    }
    ReportCapture capture;
    EXPECT_EQ(ryxvbDiv3(a.data(), b.data(), q.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
    ASSERT_TRUE(same(q, want)) << n;
    std::vector<WCplx> q2 = a, d = a;
    ryxvbDiv2(b.data(), q2.data(), n);
    ASSERT_TRUE(same(q2, q));
    // Scalar divisors: one exact float reciprocal of |val|^2. (-1, 0) and
    // (0, -1) take -32768 out of range (saturated in a block of four, low
    // 16 bits when single); (2, 0) and (1, 1) put quotients on halves.
    for (WCplx val : {WCplx{3, -4}, WCplx{-1, 0}, WCplx{0, -1}, WCplx{2, 0}, WCplx{1, 1}}) {
      std::vector<WCplx> want1(n);
      const float vr = val.re, vi = val.im, inv = 1.0f / (vr * vr + vi * vi);
      for (int i = 0; i < n; ++i) {
        const float ar = a[i].re, ai = a[i].im;
        want1[i] = WCplx{narrowAt((ar * vr + ai * vi) * inv, i, n, 4), narrowAt((ai * vr - ar * vi) * inv, i, n, 4)};
      }
      d = a;
      EXPECT_EQ(ryxvbDiv1(val, d.data(), n), RYX_StsOk);
      ASSERT_TRUE(same(d, want1)) << n << " by (" << val.re << "," << val.im << ")";
    }
    EXPECT_EQ(ryxvbDiv1(WCplx{0, 0}, d.data(), n), RYX_DivByZero);
    ASSERT_TRUE(same(d, std::vector<WCplx>(n, WCplx{0, 0})));
  }
}

// The scalar complex helpers divide by the written-out formula in double,
//   f = 1 / (b.im*b.im + b.re*b.re)
//   re = (b.im*a.im + a.re*b.re) * f,  im = (b.re*a.im - b.im*a.re) * f,
// rounded once to float for SCplx: bit for bit on random inputs over wide
// exponent ranges.
// (A function of its own: the parts must be read from the float records.)
[[gnu::noinline]] SCplx formulaDiv(SCplx a, SCplx b) {
  const double ar = a.re, ai = a.im, br = b.re, bi = b.im, f = 1.0 / (bi * bi + br * br);
  return {static_cast<float>((bi * ai + ar * br) * f), static_cast<float>((br * ai - bi * ar) * f)};
}

TEST(DivComplex, ScalarHelpersAreTheWrittenFormulaBitForBit) {
  Random rng(26);
  auto part = [&rng] {
    const double m = rng.f64(-1.0, 1.0) * std::ldexp(1.0, rng.i32(-60, 60));
    return rng.i32(0, 15) == 0 ? 0.0 : m;
  };
  for (int i = 0; i < 20000; ++i) {
    const DCplx a{part(), part()}, b{part(), part()};
    if (b.re == 0.0 && b.im == 0.0) continue;
    const double f = 1.0 / (b.im * b.im + b.re * b.re);
    const DCplx want{(b.im * a.im + a.re * b.re) * f, (b.re * a.im - b.im * a.re) * f};
    const DCplx got = ryxzDiv(a, b);
    ASSERT_TRUE(ryxtest::sameBits(&got, &want, 1)) << i;
    const SCplx sa{static_cast<float>(a.re), static_cast<float>(a.im)}, sb{static_cast<float>(b.re), static_cast<float>(b.im)};
    if (sb.re == 0.0f && sb.im == 0.0f) continue;
    const SCplx swant = formulaDiv(sa, sb);
    SCplx out{};
    const SCplx sgot = ryxcDiv(sa, sb);
    ryxcDivOut(sa, sb, &out);
    ASSERT_TRUE(ryxtest::sameBits(&sgot, &swant, 1) && ryxtest::sameBits(&out, &swant, 1)) << i;
  }
}

// ryxvDiv against exact rational arithmetic: the double-precision formula
// truncates towards zero (C++ integer division does too), so it matches the
// exact truncated quotient, clamped, except where the exact quotient lies
// within rounding distance of an integer.
TEST(Int16Scalar, DivTruncatesThenClamps) {
  Random rng(8);
  auto one = [&](WCplx a, WCplx b) {
    const std::int64_t den = std::int64_t{b.re} * b.re + std::int64_t{b.im} * b.im;
    const std::int64_t num[2] = {std::int64_t{b.re} * a.re + std::int64_t{b.im} * a.im,
                                 std::int64_t{b.re} * a.im - std::int64_t{b.im} * a.re};
    const WCplx r = ryxvDiv(a, b);
    for (int part = 0; part < 2; ++part) {
      const short got = part == 0 ? r.re : r.im, want = clamp16(num[part] / den);
      const long double q = static_cast<long double>(num[part]) / den;
      if (std::fabs(q - std::nearbyint(q)) < 1e-9L * (1 + std::fabs(q))) {
        // The double formula may land just below or at the integer.
        ASSERT_LE(std::abs(got - want), 1) << a.re << "," << a.im << " / " << b.re << "," << b.im;
      } else {
        ASSERT_EQ(got, want) << a.re << "," << a.im << " / " << b.re << "," << b.im << " part " << part;
      }
    }
  };
  for (int i = 0; i < 5000; ++i) {
    const WCplx a{rnd16(rng), rnd16(rng)};
    const WCplx b = i % 4 == 0 ? WCplx{rnd16(rng), rnd16(rng)} : WCplx{rnd16(rng, -300, 300), rnd16(rng, -300, 300)};
    if (b.re != 0 || b.im != 0) one(a, b);
  }
  one(WCplx{-32768, 32767}, WCplx{0, 1});
  const WCplx big = ryxvDiv(WCplx{-32768, -32768}, WCplx{-1, 0});  // 32768 clamps
  EXPECT_TRUE(big.re == 32767 && big.im == 32767);
  const WCplx half = ryxvDiv(WCplx{-7, 7}, WCplx{2, 0});  // -3.5 truncates to -3
  EXPECT_TRUE(half.re == -3 && half.im == 3);

  ReportCapture capture;
  const WCplx z = ryxvDiv(WCplx{5, 6}, WCplx{0, 0});
  EXPECT_TRUE(z.re == 0 && z.im == 0);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].context, "(b.re==0)&&(b.im==0)");
  EXPECT_EQ(capture.reports()[0].funcName, "ryxvDiv");
  EXPECT_EQ(capture.reports()[0].file, "ryxaritw");
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
}

}  // namespace
