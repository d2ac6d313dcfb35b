// Checks of the 16-bit arithmetic family (order, exact texts, untouched
// data), fill and copy, the WCplx conjugates and the scalar helpers.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;

struct CheckCase {
  std::string name;      // exported routine expected in the report
  std::string context;   // expected failing condition, or "" for none
  std::function<void(short* dst, int* factor)> call;
};

// Each call gets a destination of four known words; a failed check must
// leave them, and the factor, as they were.
void runChecks(const std::vector<CheckCase>& cases, const char* stem) {
  for (const CheckCase& c : cases) {
    ReportCapture capture;
    short dst[8] = {11, -12, 13, -14, 15, -16, 17, -18};
    int factor = 77;
    c.call(dst, &factor);
    if (c.context.empty()) {
      EXPECT_TRUE(capture.reports().empty()) << c.name;
      continue;
    }
    ASSERT_EQ(capture.reports().size(), 1u) << c.name << " " << c.context;
    const auto& r = capture.reports()[0];
    EXPECT_EQ(r.status, RYX_StsBadArg);
    EXPECT_EQ(r.funcName, c.name);
    EXPECT_EQ(r.context, c.context) << c.name;
    EXPECT_EQ(r.file, stem);
    EXPECT_GT(r.line, 0);
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
    const short expect[8] = {11, -12, 13, -14, 15, -16, 17, -18};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(dst[i], expect[i]) << c.name << " " << c.context;
    EXPECT_EQ(factor, 77) << c.name;
  }
}

WCplx* asV(short* p) { return reinterpret_cast<WCplx*>(p); }

TEST(Int16Checks, ArithmeticChecksInOrderWithExactTexts) {
  std::vector<CheckCase> cases;
  const short s[4] = {1, 2, 3, 4};
  const WCplx v[2] = {{1, 2}, {3, 4}};
  using W1 = void (*)(short, short*, int, int, int*);
  using W2 = void (*)(const short*, short*, int, int, int*);
  using W3 = void (*)(const short*, const short*, short*, int, int, int*);
  using V1 = void (*)(WCplx, WCplx*, int, int, int*);
  using V2 = void (*)(const WCplx*, WCplx*, int, int, int*);
  using V3 = void (*)(const WCplx*, const WCplx*, WCplx*, int, int, int*);
  const std::pair<const char*, W1> w1[] = {{"ryxwbAdd1", ryxwbAdd1}, {"ryxwbSub1", ryxwbSub1}, {"ryxwbMpy1", ryxwbMpy1}};
  const std::pair<const char*, W2> w2[] = {{"ryxwbAdd2", ryxwbAdd2}, {"ryxwbSub2", ryxwbSub2}, {"ryxwbMpy2", ryxwbMpy2}};
  const std::pair<const char*, W3> w3[] = {{"ryxwbAdd3", ryxwbAdd3}, {"ryxwbSub3", ryxwbSub3}, {"ryxwbMpy3", ryxwbMpy3}};
  const std::pair<const char*, V1> v1[] = {{"ryxvbAdd1", ryxvbAdd1}, {"ryxvbSub1", ryxvbSub1}, {"ryxvbMpy1", ryxvbMpy1}};
  const std::pair<const char*, V2> v2[] = {{"ryxvbAdd2", ryxvbAdd2}, {"ryxvbSub2", ryxvbSub2}, {"ryxvbMpy2", ryxvbMpy2}};
  const std::pair<const char*, V3> v3[] = {{"ryxvbAdd3", ryxvbAdd3}, {"ryxvbSub3", ryxvbSub3}, {"ryxvbMpy3", ryxvbMpy3}};
  for (auto [name, f] : w1) {
    cases.push_back({name, "n<=0", [f](short*, int* sf) { f(1, nullptr, 0, 4, nullptr); }});
    cases.push_back({name, "n<=0", [f](short* d, int* sf) { f(1, d, -3, 0, sf); }});
    cases.push_back({name, "dst==0", [f](short*, int* sf) { f(1, nullptr, 4, 4, nullptr); }});
    cases.push_back({name, "scalefactor==0", [f](short* d, int*) { f(1, d, 4, 4, nullptr); }});
    cases.push_back({name, "", [f](short* d, int*) { f(0, d, 4, 5, nullptr); }});
  }
  for (auto [name, f] : w2) {
    cases.push_back({name, "n<=0", [f](short*, int*) { f(nullptr, nullptr, 0, 4, nullptr); }});
    cases.push_back({name, "src==0", [f](short*, int*) { f(nullptr, nullptr, 4, 4, nullptr); }});
    cases.push_back({name, "dst==0", [f, &s](short*, int*) { f(s, nullptr, 4, 4, nullptr); }});
    cases.push_back({name, "scalefactor==0", [f, &s](short* d, int*) { f(s, d, 4, 4, nullptr); }});
  }
  for (auto [name, f] : w3) {
    cases.push_back({name, "n<=0", [f](short*, int*) { f(nullptr, nullptr, nullptr, 0, 4, nullptr); }});
    cases.push_back({name, "srcA==0", [f](short*, int*) { f(nullptr, nullptr, nullptr, 4, 4, nullptr); }});
    cases.push_back({name, "srcB==0", [f, &s](short*, int*) { f(s, nullptr, nullptr, 4, 4, nullptr); }});
    cases.push_back({name, "dst==0", [f, &s](short*, int*) { f(s, s, nullptr, 4, 4, nullptr); }});
    cases.push_back({name, "scalefactor==0", [f, &s](short* d, int*) { f(s, s, d, 4, 4, nullptr); }});
  }
  for (auto [name, f] : v1) {
    cases.push_back({name, "n<=0", [f](short*, int*) { f(WCplx{1, 1}, nullptr, 0, 4, nullptr); }});
    cases.push_back({name, "dst==0", [f](short*, int*) { f(WCplx{1, 1}, nullptr, 2, 4, nullptr); }});
    cases.push_back({name, "scalefactor==0", [f](short* d, int*) { f(WCplx{1, 1}, asV(d), 2, 4, nullptr); }});
  }
  for (auto [name, f] : v2) {
    cases.push_back({name, "n<=0", [f](short*, int*) { f(nullptr, nullptr, -1, 4, nullptr); }});
    cases.push_back({name, "src==0", [f](short* d, int*) { f(nullptr, asV(d), 2, 4, nullptr); }});
    cases.push_back({name, "dst==0", [f, &v](short*, int*) { f(v, nullptr, 2, 4, nullptr); }});
    cases.push_back({name, "scalefactor==0", [f, &v](short* d, int*) { f(v, asV(d), 2, 4, nullptr); }});
  }
  for (auto [name, f] : v3) {
    cases.push_back({name, "n<=0", [f](short*, int*) { f(nullptr, nullptr, nullptr, 0, 1, nullptr); }});
    cases.push_back({name, "srcA==0", [f, &v](short* d, int*) { f(nullptr, v, asV(d), 2, 4, nullptr); }});
    cases.push_back({name, "srcB==0", [f, &v](short* d, int*) { f(v, nullptr, asV(d), 2, 4, nullptr); }});
    cases.push_back({name, "dst==0", [f, &v](short*, int*) { f(v, v, nullptr, 2, 4, nullptr); }});
    cases.push_back({name, "scalefactor==0", [f, &v](short* d, int*) { f(v, v, asV(d), 2, 4, nullptr); }});
  }
  runChecks(cases, "ryxaritw");
}

TEST(Int16Checks, FillCopyAndConjugateChecks) {
  const short s[4] = {1, 2, 3, 4};
  const WCplx v[2] = {{1, 2}, {3, 4}};
  std::vector<CheckCase> cases = {
      {"ryxwbZero", "n<=0", [](short*, int*) { ryxwbZero(nullptr, 0); }},
      {"ryxwbZero", "dst==0", [](short*, int*) { ryxwbZero(nullptr, 3); }},
      {"ryxwbSet", "n<=0", [](short* d, int*) { ryxwbSet(5, d, -1); }},
      {"ryxwbSet", "dst==0", [](short*, int*) { ryxwbSet(5, nullptr, 3); }},
      {"ryxwbCopy", "n<=0", [](short*, int*) { ryxwbCopy(nullptr, nullptr, 0); }},
      {"ryxwbCopy", "src==0", [](short* d, int*) { ryxwbCopy(nullptr, d, 3); }},
      {"ryxwbCopy", "dst==0", [&s](short*, int*) { ryxwbCopy(s, nullptr, 3); }},
      {"ryxvbZero", "n<=0", [](short* d, int*) { ryxvbZero(asV(d), 0); }},
      {"ryxvbZero", "dst==0", [](short*, int*) { ryxvbZero(nullptr, 1); }},
      {"ryxvbSet", "n<=0", [](short* d, int*) { ryxvbSet(WCplx{1, 1}, asV(d), 0); }},
      {"ryxvbSet", "dst==0", [](short*, int*) { ryxvbSet(WCplx{1, 1}, nullptr, 1); }},
      {"ryxvbCopy", "n<=0", [](short*, int*) { ryxvbCopy(nullptr, nullptr, 0); }},
      {"ryxvbCopy", "src==0", [](short* d, int*) { ryxvbCopy(nullptr, asV(d), 2); }},
      {"ryxvbCopy", "dst==0", [&v](short*, int*) { ryxvbCopy(v, nullptr, 2); }},
      {"ryxvbConj1", "n<=0", [](short* d, int*) { ryxvbConj1(asV(d), 0); }},
      {"ryxvbConj1", "vec==0", [](short*, int*) { ryxvbConj1(nullptr, 2); }},
      {"ryxvbConjExtend1", "n<=0", [](short*, int*) { ryxvbConjExtend1(nullptr, -2); }},
      {"ryxvbConjExtend1", "vec==0", [](short*, int*) { ryxvbConjExtend1(nullptr, 2); }},
      {"ryxvbConj2", "n<=0", [](short* d, int*) { ryxvbConj2(nullptr, asV(d), 0); }},
      {"ryxvbConj2", "src==0", [](short* d, int*) { ryxvbConj2(nullptr, asV(d), 2); }},
      {"ryxvbConj2", "dst==0", [&v](short*, int*) { ryxvbConj2(v, nullptr, 2); }},
      {"ryxvbConjFlip2", "n<=0", [](short*, int*) { ryxvbConjFlip2(nullptr, nullptr, 0); }},
      {"ryxvbConjFlip2", "src==0", [](short* d, int*) { ryxvbConjFlip2(nullptr, asV(d), 2); }},
      {"ryxvbConjFlip2", "dst==0", [&v](short*, int*) { ryxvbConjFlip2(v, nullptr, 2); }},
      {"ryxvbConjExtend2", "n<=0", [](short*, int*) { ryxvbConjExtend2(nullptr, nullptr, 0); }},
      {"ryxvbConjExtend2", "src==0", [](short* d, int*) { ryxvbConjExtend2(nullptr, asV(d), 2); }},
      {"ryxvbConjExtend2", "dst==0", [&v](short*, int*) { ryxvbConjExtend2(v, nullptr, 2); }},
  };
  runChecks(cases, "ryxaritw");
}

TEST(Int16Fill, ZeroSetCopyWriteExactlyTheirElements) {
  Random rng(5);
  for (int n = 1; n <= 21; ++n) {
    for (int off = 0; off < 8; off += 2) {
      Guarded<short> d(n, off);
      for (int i = 0; i < n; ++i) d[i] = static_cast<short>(rng.i32(-32768, 32767));
      ryxwbZero(d.data(), n);
      for (int i = 0; i < n; ++i) ASSERT_EQ(d[i], 0);
      ryxwbSet(-32768, d.data(), n);
      for (int i = 0; i < n; ++i) ASSERT_EQ(d[i], -32768);
      Guarded<short> src(n, 6 - off);
      for (int i = 0; i < n; ++i) src[i] = static_cast<short>(rng.i32(-32768, 32767));
      ryxwbCopy(src.data(), d.data(), n);
      for (int i = 0; i < n; ++i) ASSERT_EQ(d[i], src[i]);
      ASSERT_TRUE(d.intact());

      Guarded<WCplx> cv(n, 2 * off);
      ryxvbSet(WCplx{-7, 32767}, cv.data(), n);
      for (int i = 0; i < n; ++i) ASSERT_TRUE(cv[i].re == -7 && cv[i].im == 32767);
      Guarded<WCplx> cs(n, off);
      for (int i = 0; i < n; ++i) cs[i] = WCplx{static_cast<short>(i), static_cast<short>(-i)};
      ryxvbCopy(cs.data(), cv.data(), n);
      for (int i = 0; i < n; ++i) ASSERT_TRUE(cv[i].re == i && cv[i].im == -i);
      ryxvbZero(cv.data(), n);
      for (int i = 0; i < n; ++i) ASSERT_TRUE(cv[i].re == 0 && cv[i].im == 0);
      ASSERT_TRUE(cv.intact());
    }
  }
}

// -x in 16 bits, by the residue: -32768 stays -32768.
short negWrap(short x) { return x == -32768 ? static_cast<short>(-32768) : static_cast<short>(-x); }

TEST(Int16Conjugate, NegateImaginaryWithWrapInEveryForm) {
  Random rng(6);
  for (int n = 1; n <= 12; ++n) {
    std::vector<WCplx> src(n);
    for (auto& x : src) x = WCplx{static_cast<short>(rng.i32(-32768, 32767)), static_cast<short>(rng.i32(-32768, 32767))};
    src[0].im = -32768;
    if (n > 2) src[n / 2].im = 32767;

    std::vector<WCplx> d = src;
    ryxvbConj1(d.data(), n);
    for (int i = 0; i < n; ++i) ASSERT_TRUE(d[i].re == src[i].re && d[i].im == negWrap(src[i].im));

    std::vector<WCplx> c(n);
    ryxvbConj2(src.data(), c.data(), n);
    for (int i = 0; i < n; ++i) ASSERT_TRUE(c[i].re == src[i].re && c[i].im == negWrap(src[i].im));

    std::vector<WCplx> f(n);
    ryxvbConjFlip2(src.data(), f.data(), n);
    for (int i = 0; i < n; ++i) ASSERT_TRUE(f[n - 1 - i].re == src[i].re && f[n - 1 - i].im == negWrap(src[i].im));
    std::vector<WCplx> g = src;  // in place
    ryxvbConjFlip2(g.data(), g.data(), n);
    for (int i = 0; i < n; ++i) ASSERT_TRUE(g[n - 1 - i].re == src[i].re && g[n - 1 - i].im == negWrap(src[i].im)) << n;

    // Extend: a buffer of 2n-2 (at least n) samples; the mirror covers
    // k = 1 .. n-2 and the rest stays.
    const int len = n < 2 ? n : 2 * n - 2;
    std::vector<WCplx> e(len, WCplx{99, 99});
    for (int i = 0; i < n; ++i) e[i] = src[i];
    std::vector<WCplx> e2(len, WCplx{99, 99});
    ryxvbConjExtend1(e.data(), n);
    ryxvbConjExtend2(src.data(), e2.data(), n);
    for (int k = 0; k < len; ++k) {
      WCplx want = k < n ? src[k] : WCplx{src[2 * n - 2 - k].re, negWrap(src[2 * n - 2 - k].im)};
      ASSERT_TRUE(e[k].re == want.re && e[k].im == want.im) << n << " " << k;
      ASSERT_TRUE(e2[k].re == want.re && e2[k].im == want.im) << n << " " << k;
    }
  }
  const WCplx r = ryxvConj(WCplx{1, -32768});
  EXPECT_TRUE(r.re == 1 && r.im == -32768);
  const WCplx q = ryxvConj(WCplx{-5, 32767});
  EXPECT_TRUE(q.re == -5 && q.im == -32767);
  const WCplx s = ryxvSet(-32768, 7);
  EXPECT_TRUE(s.re == -32768 && s.im == 7);
}

TEST(Int16Conjugate, ExtendWritesNoMirrorForOneAndTwo) {
  WCplx a[3] = {{1, 2}, {3, 4}, {55, 66}};
  ryxvbConjExtend1(a, 2);
  EXPECT_TRUE(a[0].im == 2 && a[1].im == 4 && a[2].re == 55 && a[2].im == 66);
  WCplx b[4] = {{1, 2}, {3, 4}, {5, 6}, {77, 88}};
  ryxvbConjExtend1(b, 3);
  EXPECT_TRUE(b[3].re == 3 && b[3].im == -4);
  EXPECT_TRUE(b[2].re == 5 && b[2].im == 6);
}

// The scalar helpers go through the array routine on one element.
TEST(Int16Scalar, AddSubMpyFollowTheArrayRulesAndTraceFailures) {
  ReportCapture capture;
  int f = 0;
  WCplx r = ryxvAdd(WCplx{32767, -32768}, WCplx{1, -1}, 1, nullptr);
  EXPECT_TRUE(r.re == 32767 && r.im == -32768);
  r = ryxvSub(WCplx{-32768, 5}, WCplx{1, 7}, 0, nullptr);
  EXPECT_TRUE(r.re == 32767 && r.im == -2);
  r = ryxvMpy(WCplx{-32768, -32768}, WCplx{-32768, -32768}, 4, &f);
  EXPECT_EQ(f, 17);
  EXPECT_TRUE(r.re == 0 && r.im == 16384);
  f = -1;
  r = ryxvMpy(WCplx{100, 3}, WCplx{-2, 5}, 3, &f);  // (-200-15, 500-6) << 1
  EXPECT_TRUE(r.re == -430 && r.im == 988);
  EXPECT_TRUE(capture.reports().empty());

  // A failure inside: the array routine's report, then a trace line.
  r = ryxvAdd(WCplx{1, 2}, WCplx{3, 4}, 4, nullptr);
  ASSERT_EQ(capture.reports().size(), 2u);
  EXPECT_EQ(capture.reports()[0].funcName, "ryxvbAdd3");
  EXPECT_EQ(capture.reports()[0].context, "scalefactor==0");
  EXPECT_EQ(capture.reports()[1].status, RYX_StsBacktrace);
  EXPECT_EQ(capture.reports()[1].funcName, "ryxvAdd");
  EXPECT_EQ(capture.reports()[1].file, "ryxaritw");
  EXPECT_TRUE(r.re == 0 && r.im == 0) << "the zero-initialised record comes back";
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);

  // A failure left standing from before: the result is computed and a
  // trace line still follows.
  capture.clear();
  ryxSetErrStatus(RYX_StsBadArg);
  r = ryxvSub(WCplx{1, 2}, WCplx{3, 4}, 0, nullptr);
  EXPECT_TRUE(r.re == -2 && r.im == -2);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].status, RYX_StsBacktrace);
  EXPECT_EQ(capture.reports()[0].funcName, "ryxvSub");
}

// ryxvDiv against exact rational arithmetic: the double-precision formula
// truncates towards zero, so it matches the exact truncated quotient except
// where the exact quotient lies within rounding distance of an integer.
std::int64_t truncDiv(std::int64_t num, std::int64_t den) { return num / den; }  // C++ truncates

short clamp16(std::int64_t v) { return v > 32767 ? 32767 : (v < -32768 ? -32768 : static_cast<short>(v)); }

TEST(Int16Scalar, DivTruncatesThenClamps) {
  Random rng(8);
  auto one = [&](WCplx a, WCplx b) {
    const std::int64_t den = std::int64_t{b.re} * b.re + std::int64_t{b.im} * b.im;
    const std::int64_t nre = std::int64_t{b.re} * a.re + std::int64_t{b.im} * a.im;
    const std::int64_t nim = std::int64_t{b.re} * a.im - std::int64_t{b.im} * a.re;
    const WCplx r = ryxvDiv(a, b);
    for (int part = 0; part < 2; ++part) {
      const std::int64_t num = part == 0 ? nre : nim;
      const short got = part == 0 ? r.re : r.im;
      const short want = clamp16(truncDiv(num, den));
      const long double q = static_cast<long double>(num) / den;
      const bool nearInteger = std::fabs(q - std::nearbyint(q)) < 1e-9L * (1 + std::fabs(q));
      if (nearInteger) {
        // The double formula may land just below or at the integer.
        ASSERT_LE(std::abs(got - want), 1) << a.re << "," << a.im << " / " << b.re << "," << b.im;
      } else {
        ASSERT_EQ(got, want) << a.re << "," << a.im << " / " << b.re << "," << b.im << " part " << part;
      }
    }
  };
  for (int i = 0; i < 20000; ++i) {
    WCplx a{static_cast<short>(rng.i32(-32768, 32767)), static_cast<short>(rng.i32(-32768, 32767))};
    WCplx b{static_cast<short>(rng.i32(-300, 300)), static_cast<short>(rng.i32(-300, 300))};
    if (i % 4 == 0) b = WCplx{static_cast<short>(rng.i32(-32768, 32767)), static_cast<short>(rng.i32(-32768, 32767))};
    if (b.re == 0 && b.im == 0) continue;
    one(a, b);
  }
  one(WCplx{-32768, -32768}, WCplx{-1, 0});  // 32768 clamps
  one(WCplx{-32768, 32767}, WCplx{0, 1});
  one(WCplx{-7, 7}, WCplx{2, 0});            // -3.5 truncates to -3
  const WCplx big = ryxvDiv(WCplx{-32768, -32768}, WCplx{-1, 0});
  EXPECT_TRUE(big.re == 32767 && big.im == 32767);
  const WCplx half = ryxvDiv(WCplx{-7, 7}, WCplx{2, 0});
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
