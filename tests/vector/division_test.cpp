// The Div family: return codes and checks, the zero-divisor rules, the
// float quotients through the reciprocal estimate with one Newton step,
// and the 16-bit narrowing split between blocks and single elements.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cfloat>
#include <cmath>
#include <complex>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;

// The processor's reciprocal estimate of one float.
float rcp(float b) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(b))); }

short low16(std::int64_t v) {
  std::int64_t m = v % 65536;
  if (m < 0) m += 65536;
  return static_cast<short>(m >= 32768 ? m - 65536 : m);
}
short clamp16(std::int64_t v) { return v > 32767 ? 32767 : (v < -32768 ? -32768 : static_cast<short>(v)); }

// ---- checks and return codes ---------------------------------------------

struct DivCase {
  std::string name, context;
  RyxStatus result;
  std::function<RyxStatus(void* dst)> call;
};

template <class T>
void addCases(std::vector<DivCase>& cases, const std::string& letter, const std::string& cast,
              RyxStatus (*d1)(T, T*, int), RyxStatus (*d2)(const T*, T*, int),
              RyxStatus (*d3)(const T*, const T*, T*, int)) {
  static T src[4];
  const std::string n1 = "ryx" + letter + "bDiv1", n2 = "ryx" + letter + "bDiv2", n3 = "ryx" + letter + "bDiv3";
  const T one{};
  cases.push_back({n1, "dst==0", RYX_StsNullPtr, [=](void*) { return d1(one, nullptr, 4); }});
  cases.push_back({n1, "dst==0", RYX_StsNullPtr, [=](void*) { return d1(one, nullptr, 0); }});
  cases.push_back({n1, "n<=0", RYX_DivBadLen, [=](void* d) { return d1(one, static_cast<T*>(d), 0); }});
  cases.push_back({n2, "(" + cast + "*)src==0", RYX_StsNullPtr, [=](void* d) { return d2(nullptr, static_cast<T*>(d), 4); }});
  cases.push_back({n2, "(" + cast + "*)src==0", RYX_StsNullPtr, [=](void*) { return d2(nullptr, nullptr, 0); }});
  cases.push_back({n2, "dst==0", RYX_StsNullPtr, [=](void*) { return d2(src, nullptr, 0); }});
  cases.push_back({n2, "n<=0", RYX_DivBadLen, [=](void* d) { return d2(src, static_cast<T*>(d), -1); }});
  cases.push_back({n3, "(" + cast + "*)srcA==0", RYX_StsNullPtr, [=](void*) { return d3(nullptr, nullptr, nullptr, 0); }});
  cases.push_back({n3, "(" + cast + "*)srcB==0", RYX_StsNullPtr, [=](void* d) { return d3(src, nullptr, static_cast<T*>(d), 4); }});
  cases.push_back({n3, "dst==0", RYX_StsNullPtr, [=](void*) { return d3(src, src, nullptr, 4); }});
  cases.push_back({n3, "n<=0", RYX_DivBadLen, [=](void* d) { return d3(src, src, static_cast<T*>(d), 0); }});
}

TEST(DivChecks, PointersBeforeLengthWithTypedTextsAndResults) {
  std::vector<DivCase> cases;
  addCases<float>(cases, "s", "float", ryxsbDiv1, ryxsbDiv2, ryxsbDiv3);
  addCases<double>(cases, "d", "double", ryxdbDiv1, ryxdbDiv2, ryxdbDiv3);
  addCases<SCplx>(cases, "c", "SCplx", ryxcbDiv1, ryxcbDiv2, ryxcbDiv3);
  addCases<DCplx>(cases, "z", "DCplx", ryxzbDiv1, ryxzbDiv2, ryxzbDiv3);
  addCases<short>(cases, "w", "short", ryxwbDiv1, ryxwbDiv2, ryxwbDiv3);
  addCases<WCplx>(cases, "v", "WCplx", ryxvbDiv1, ryxvbDiv2, ryxvbDiv3);
  for (const DivCase& c : cases) {
    ReportCapture capture;
    unsigned char dst[64];
    std::memset(dst, 0x3c, sizeof dst);
    EXPECT_EQ(c.call(dst), c.result) << c.name << " " << c.context;
    ASSERT_EQ(capture.reports().size(), 1u) << c.name << " " << c.context;
    EXPECT_EQ(capture.reports()[0].status, RYX_StsBadArg);
    EXPECT_EQ(capture.reports()[0].funcName, c.name);
    EXPECT_EQ(capture.reports()[0].context, c.context);
    EXPECT_EQ(capture.reports()[0].file, "ryxdiv");
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg) << "the stored status is always the bad-argument code";
    for (unsigned char b : dst) ASSERT_EQ(b, 0x3c) << c.name;
  }
}

// ---- real float and double -------------------------------------------------

float zeroRuleF(float x) { return x == 0.0f ? x : (x > 0.0f ? FLT_MAX : -FLT_MAX); }
double zeroRuleD(double x) { return x == 0.0 ? x : (x > 0.0 ? DBL_MAX : -DBL_MAX); }

TEST(DivFloat, ArraysMatchNewtonQuotientAtEveryLengthAndAlignment) {
  Random rng(21);
  for (int n = 1; n <= 40; ++n) {
    for (int off = 0; off < 16; off += 4) {
      Guarded<float> a(n, off), b(n, (off + 8) % 16), d(n, (16 - off) % 16);
      for (int i = 0; i < n; ++i) {
        a[i] = rng.f32(-1e4f, 1e4f);
        b[i] = rng.f32(-50.0f, 50.0f);
        if (rng.i32(0, 15) == 0) b[i] = rng.i32(0, 1) ? 0.0f : -0.0f;
        if (rng.i32(0, 20) == 0) a[i] = 0.0f;
      }
      bool anyZero = false;
      for (int i = 0; i < n; ++i) anyZero |= b[i] == 0.0f;
      ReportCapture capture;
      EXPECT_EQ(ryxsbDiv3(a.data(), b.data(), d.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
      for (int i = 0; i < n; ++i) {
        if (b[i] == 0.0f) {
          ASSERT_EQ(d[i], zeroRuleF(a[i]));
          continue;
        }
        const float r = rcp(b[i]);
        ASSERT_EQ(d[i], a[i] * r * (2.0f - b[i] * r)) << n << " " << off << " " << i;
        // and it is a quotient: one Newton step leaves about 22 good bits
        ASSERT_NEAR(d[i], static_cast<double>(a[i]) / b[i], 1e-6 * std::fabs(static_cast<double>(a[i]) / b[i]) + 1e-30);
      }
      ASSERT_TRUE(d.intact());
      // Div2 in place: dst / src
      Guarded<float> d2(n, off);
      for (int i = 0; i < n; ++i) d2[i] = a[i];
      EXPECT_EQ(ryxsbDiv2(b.data(), d2.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
      for (int i = 0; i < n; ++i) ASSERT_EQ(d2[i], d[i]);
      ASSERT_EQ(capture.reports().size(), anyZero ? 2u : 0u);
      if (anyZero) {
        EXPECT_EQ(capture.reports()[0].context, "(Divide_by_Zero)");
      }
    }
  }
}

TEST(DivFloat, ScalarFormsMultiplyByOneReciprocal) {
  Random rng(22);
  std::vector<float> x(37);
  std::vector<double> y(37);
  for (auto& v : x) v = rng.f32();
  for (auto& v : y) v = rng.f64();
  std::vector<float> dx = x;
  std::vector<double> dy = y;
  EXPECT_EQ(ryxsbDiv1(3.0f, dx.data(), 37), RYX_StsOk);
  EXPECT_EQ(ryxdbDiv1(-7.0, dy.data(), 37), RYX_StsOk);
  const float inv = 1.0f / 3.0f;
  const double dinv = 1.0 / -7.0;
  for (int i = 0; i < 37; ++i) {
    EXPECT_EQ(dx[i], x[i] * inv);
    EXPECT_EQ(dy[i], y[i] * dinv);
  }
  std::vector<double> q(37), b(37);
  for (int i = 0; i < 37; ++i) b[i] = i % 9 == 4 ? 0.0 : rng.f64();
  ReportCapture capture;
  EXPECT_EQ(ryxdbDiv3(y.data(), b.data(), q.data(), 37), RYX_DivByZero);
  for (int i = 0; i < 37; ++i) EXPECT_EQ(q[i], b[i] == 0.0 ? zeroRuleD(y[i]) : y[i] / b[i]);
  std::vector<double> q2 = y;
  EXPECT_EQ(ryxdbDiv2(b.data(), q2.data(), 37), RYX_DivByZero);
  for (int i = 0; i < 37; ++i) EXPECT_EQ(q2[i], q[i]);
}

TEST(DivFloat, ZeroDivisorRulesByExample) {
  ReportCapture capture;
  float s[3] = {1.0f, -1.0f, 0.0f};
  EXPECT_EQ(ryxsbDiv1(0.0f, s, 3), RYX_DivByZero);
  EXPECT_EQ(s[0], 3.4028235e38f);
  EXPECT_EQ(s[1], -3.4028235e38f);
  EXPECT_EQ(s[2], 0.0f);
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].context, "(Divide_by_Zero)");
  EXPECT_EQ(capture.reports()[0].funcName, "ryxsbDiv1");

  float nan[2] = {std::nanf(""), 5.0f};
  EXPECT_EQ(ryxsbDiv1(-0.0f, nan, 2), RYX_DivByZero) << "-0.0 counts as zero";
  EXPECT_EQ(nan[0], -FLT_MAX) << "a NaN dividend is not above zero";
  EXPECT_EQ(nan[1], FLT_MAX);

  double d[3] = {2.0, -2.0, 0.0};
  EXPECT_EQ(ryxdbDiv1(0.0, d, 3), RYX_DivByZero);
  EXPECT_EQ(d[0], DBL_MAX);
  EXPECT_EQ(d[1], -DBL_MAX);
  EXPECT_EQ(d[2], 0.0);

  // One zero divisor among eight: seven ordinary quotients.
  float a[8], b[8], q[8];
  for (int i = 0; i < 8; ++i) {
    a[i] = static_cast<float>(i + 1);
    b[i] = i == 5 ? 0.0f : 2.0f;
  }
  EXPECT_EQ(ryxsbDiv3(a, b, q, 8), RYX_DivByZero);
  for (int i = 0; i < 8; ++i) {
    if (i == 5) {
      EXPECT_EQ(q[i], FLT_MAX);
    } else {
      EXPECT_NEAR(q[i], a[i] / 2.0f, 1e-5f);
    }
  }
}

// ---- complex float and double --------------------------------------------

TEST(DivComplex, QuotientsAgainstLongDoubleAndZeroRules) {
  Random rng(23);
  for (int n = 1; n <= 19; ++n) {
    std::vector<SCplx> a(n), b(n), q(n);
    std::vector<DCplx> za(n), zb(n), zq(n);
    for (int i = 0; i < n; ++i) {
      a[i] = {rng.f32(), rng.f32()};
      b[i] = (i % 7 == 3) ? SCplx{0.0f, -0.0f} : SCplx{rng.f32(), rng.f32()};
      za[i] = {a[i].re, a[i].im};
      zb[i] = {b[i].re, b[i].im};
    }
    const bool anyZero = n > 3;
    ReportCapture capture;
    EXPECT_EQ(ryxcbDiv3(a.data(), b.data(), q.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
    EXPECT_EQ(ryxzbDiv3(za.data(), zb.data(), zq.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
    for (int i = 0; i < n; ++i) {
      if (i % 7 == 3) {
        EXPECT_TRUE(q[i].re == 0.0f && q[i].im == 0.0f);
        EXPECT_TRUE(zq[i].re == 0.0 && zq[i].im == 0.0);
        continue;
      }
      const std::complex<long double> x(a[i].re, a[i].im), y(b[i].re, b[i].im);
      const std::complex<long double> want = x / y;
      const long double scale = std::abs(want) + 1e-3L;
      EXPECT_NEAR(q[i].re, static_cast<double>(want.real()), static_cast<double>(2e-6L * scale));
      EXPECT_NEAR(q[i].im, static_cast<double>(want.imag()), static_cast<double>(2e-6L * scale));
      EXPECT_NEAR(zq[i].re, static_cast<double>(want.real()), static_cast<double>(1e-13L * scale));
      EXPECT_NEAR(zq[i].im, static_cast<double>(want.imag()), static_cast<double>(1e-13L * scale));
      // The documented float order: m, its Newton-refined estimate, then
      // both numerators times it.
      const float m = b[i].re * b[i].re + b[i].im * b[i].im;
      const float r = rcp(m);
      const float inv = r * (2.0f - m * r);
      EXPECT_EQ(q[i].re, (a[i].re * b[i].re + a[i].im * b[i].im) * inv);
      EXPECT_EQ(q[i].im, (a[i].im * b[i].re - a[i].re * b[i].im) * inv);
    }
    // Div2 in place gives the same.
    std::vector<SCplx> c2 = a;
    std::vector<DCplx> z2 = za;
    ryxcbDiv2(b.data(), c2.data(), n);
    ryxzbDiv2(zb.data(), z2.data(), n);
    for (int i = 0; i < n; ++i) {
      EXPECT_TRUE(c2[i].re == q[i].re && c2[i].im == q[i].im);
      EXPECT_TRUE(z2[i].re == zq[i].re && z2[i].im == zq[i].im);
    }
    // Div1 by a constant and by zero.
    std::vector<SCplx> c1 = a;
    std::vector<DCplx> z1 = za;
    EXPECT_EQ(ryxcbDiv1(SCplx{0.5f, -2.0f}, c1.data(), n), RYX_StsOk);
    EXPECT_EQ(ryxzbDiv1(DCplx{0.5, -2.0}, z1.data(), n), RYX_StsOk);
    for (int i = 0; i < n; ++i) {
      const std::complex<long double> want = std::complex<long double>(a[i].re, a[i].im) / std::complex<long double>(0.5L, -2.0L);
      EXPECT_NEAR(c1[i].re, static_cast<double>(want.real()), 1e-5 * (std::abs(static_cast<double>(want.real())) + 1));
      EXPECT_NEAR(z1[i].im, static_cast<double>(want.imag()), 1e-12 * (std::abs(static_cast<double>(want.imag())) + 1));
    }
    EXPECT_EQ(ryxcbDiv1(SCplx{0.0f, 0.0f}, c1.data(), n), RYX_DivByZero);
    EXPECT_EQ(ryxzbDiv1(DCplx{-0.0, 0.0}, z1.data(), n), RYX_DivByZero);
    for (int i = 0; i < n; ++i) {
      EXPECT_TRUE(c1[i].re == 0.0f && c1[i].im == 0.0f);
      EXPECT_TRUE(z1[i].re == 0.0 && z1[i].im == 0.0);
    }
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
short zeroRuleW(short x) { return x > 0 ? 32767 : (x < 0 ? -32768 : 0); }

TEST(DivInt16, RealQuotientsRoundAndNarrowByPosition) {
  Random rng(24);
  for (int n = 1; n <= 40; ++n) {
    std::vector<short> a(n), b(n), q(n);
    for (int i = 0; i < n; ++i) {
      a[i] = static_cast<short>(rng.i32(-32768, 32767));
      b[i] = static_cast<short>(rng.i32(0, 3) == 0 ? rng.i32(-3, 3) : rng.i32(-32768, 32767));
      if (rng.i32(0, 9) == 0) a[i] = -32768;
      if (rng.i32(0, 9) == 0) b[i] = -1;
    }
    bool anyZero = false;
    for (short v : b) anyZero |= v == 0;
    ReportCapture capture;
    EXPECT_EQ(ryxwbDiv3(a.data(), b.data(), q.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
    for (int i = 0; i < n; ++i) {
      if (b[i] == 0) {
        ASSERT_EQ(q[i], zeroRuleW(a[i]));
        continue;
      }
      const float y = b[i];
      const float r = rcp(y);
      const float qf = static_cast<float>(a[i]) * (r * (2.0f - y * r));
      ASSERT_EQ(q[i], narrowAt(qf, i, n, 8)) << n << " " << i << " " << a[i] << "/" << b[i];
      // Away from halves the rounded quotient is the nearest integer.
      const double exact = static_cast<double>(a[i]) / b[i];
      if (std::fabs(exact - std::floor(exact) - 0.5) > 0.01 && std::fabs(exact) < 32767) {
        ASSERT_EQ(q[i], static_cast<short>(std::lround(exact)));
      }
    }
    std::vector<short> q2 = a;
    EXPECT_EQ(ryxwbDiv2(b.data(), q2.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
    for (int i = 0; i < n; ++i) ASSERT_EQ(q2[i], q[i]);

    for (short val : {3, -1, 7, -32768, 1}) {
      std::vector<short> d = a;
      EXPECT_EQ(ryxwbDiv1(val, d.data(), n), RYX_StsOk);
      const float inv = 1.0f / static_cast<float>(val);
      for (int i = 0; i < n; ++i) ASSERT_EQ(d[i], narrowAt(static_cast<float>(a[i]) * inv, i, n, 8)) << val << " " << n << " " << i;
    }
  }
}

TEST(DivInt16, BlockSaturatesSingleTruncatesByExample) {
  short eight[8];
  for (short& x : eight) x = -32768;
  EXPECT_EQ(ryxwbDiv1(-1, eight, 8), RYX_StsOk);
  for (short x : eight) EXPECT_EQ(x, 32767);
  short one[1] = {-32768};
  EXPECT_EQ(ryxwbDiv1(-1, one, 1), RYX_StsOk);
  EXPECT_EQ(one[0], -32768);
  // Nine elements: the top eight are a block, element 0 is single.
  short nine[9];
  for (short& x : nine) x = -32768;
  ryxwbDiv1(-1, nine, 9);
  EXPECT_EQ(nine[0], -32768);
  for (int i = 1; i < 9; ++i) EXPECT_EQ(nine[i], 32767);

  ReportCapture capture;
  short z[2] = {5, -5};
  EXPECT_EQ(ryxwbDiv1(0, z, 2), RYX_DivByZero);
  EXPECT_EQ(z[0], 32767);
  EXPECT_EQ(z[1], -32768);
  short a[10] = {0, 1, -1, 4, 5, 6, 7, 8, 8, 10}, b[10] = {0, 0, 0, 2, 2, 2, 0, 2, 2, 2}, q[10];
  EXPECT_EQ(ryxwbDiv3(a, b, q, 10), RYX_DivByZero);
  const short want[10] = {0, 32767, -32768, 2, 2, 3, 32767, 4, 4, 5};  // 2.5 rounds to even
  for (int i = 0; i < 10; ++i) {
    if (i == 4) {
      EXPECT_TRUE(q[i] == 2 || q[i] == 3) << "a half after the estimate";
    } else {
      EXPECT_EQ(q[i], want[i]) << i;
    }
  }
}

TEST(DivInt16, ComplexQuotientsAndZeroScalar) {
  Random rng(25);
  for (int n = 1; n <= 21; ++n) {
    std::vector<WCplx> a(n), b(n), q(n);
    for (int i = 0; i < n; ++i) {
      a[i] = {static_cast<short>(rng.i32(-32768, 32767)), static_cast<short>(rng.i32(-32768, 32767))};
      b[i] = {static_cast<short>(rng.i32(-40, 40)), static_cast<short>(rng.i32(-40, 40))};
      if (i % 6 == 2) b[i] = {0, 0};
      if (i % 5 == 1) {
        a[i] = {-32768, 0};
        b[i] = {-1, 0};
      }
    }
    bool anyZero = false;
    for (const WCplx& v : b) anyZero |= v.re == 0 && v.im == 0;
    ReportCapture capture;
    EXPECT_EQ(ryxvbDiv3(a.data(), b.data(), q.data(), n), anyZero ? RYX_DivByZero : RYX_StsOk);
    for (int i = 0; i < n; ++i) {
      if (b[i].re == 0 && b[i].im == 0) {
        ASSERT_TRUE(q[i].re == 0 && q[i].im == 0);
        continue;
      }
      const float br = b[i].re, bi = b[i].im, ar = a[i].re, ai = a[i].im;
      const float m = br * br + bi * bi;
      const float r = rcp(m);
      const float inv = r * (2.0f - m * r);
      ASSERT_EQ(q[i].re, narrowAt((ar * br + ai * bi) * inv, i, n, 4)) << n << " " << i;
      ASSERT_EQ(q[i].im, narrowAt((ai * br - ar * bi) * inv, i, n, 4)) << n << " " << i;
    }
    std::vector<WCplx> q2 = a;
    ryxvbDiv2(b.data(), q2.data(), n);
    for (int i = 0; i < n; ++i) ASSERT_TRUE(q2[i].re == q[i].re && q2[i].im == q[i].im);

    std::vector<WCplx> d = a;
    const WCplx val{3, -4};
    EXPECT_EQ(ryxvbDiv1(val, d.data(), n), RYX_StsOk);
    const float inv = 1.0f / 25.0f;
    for (int i = 0; i < n; ++i) {
      const float ar = a[i].re, ai = a[i].im;
      ASSERT_EQ(d[i].re, narrowAt((ar * 3.0f + ai * -4.0f) * inv, i, n, 4));
      ASSERT_EQ(d[i].im, narrowAt((ai * 3.0f - ar * -4.0f) * inv, i, n, 4));
    }
    EXPECT_EQ(ryxvbDiv1(WCplx{0, 0}, d.data(), n), RYX_DivByZero);
    for (const WCplx& x : d) ASSERT_TRUE(x.re == 0 && x.im == 0);
  }
}

}  // namespace
