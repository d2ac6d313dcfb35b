// Logarithm, exponent and arctangent: float and double kernels against
// long-double references within stated ulp bounds, the documented special
// values, the complex decimal logarithms, the 16-bit logarithm over all
// 65536 values at even and odd positions against rounded ln, and the
// 16-bit exponent over all values per mode and factor against e^x / 2^f
// written out from the description. Checks and reported names by table.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "alloc_failure.h"
#include "test_support.h"

namespace {

using ryxtest::Random;
using ryxtest::ReportCapture;
using LD = long double;

template <class T>
LD ulpOf(LD ref) {
  const T r = static_cast<T>(ref);
  return std::fabs(LD(std::nextafter(r, std::numeric_limits<T>::infinity())) - LD(r));
}

// Both shapes over lengths 1-40 and 1000 on `gen`'s data, each element
// within `ulps` of `ref` (measured in the result type's ulp at the reference).
template <class S, class D>
void against(void (*one)(D*, int), void (*two)(const S*, D*, int), std::function<S(Random&)> gen,
             std::function<LD(LD)> ref, LD ulps, const char* what) {
  Random rng(31);
  for (int n = 1; n <= 1000; n = n < 40 ? n + 1 : 1000 + (n == 1000)) {
    if (n > 1000) break;
    std::vector<S> src(n);
    for (S& x : src) x = gen(rng);
    std::vector<D> out(n);
    two(src.data(), out.data(), n);
    if constexpr (std::is_same_v<S, D>) {
      std::vector<D> inPlace = src;
      one(inPlace.data(), n);
      ASSERT_TRUE(ryxtest::sameBits(inPlace.data(), out.data(), n)) << what << " n=" << n;
    }
    for (int i = 0; i < n; ++i) {
      const LD want = ref(src[i]);
      ASSERT_LE(std::fabs(out[i] - want), ulps * ulpOf<D>(want)) << what << "(" << src[i] << ") = " << out[i];
    }
  }
}

template <class T>
std::function<T(Random&)> logUniform(double lo, double hi) {
  return [lo, hi](Random& r) { return static_cast<T>(std::exp2(r.f64(lo, hi))); };
}
template <class T>
std::function<T(Random&)> uniform(double lo, double hi) {
  return [lo, hi](Random& r) { return static_cast<T>(r.f64(lo, hi)); };
}

TEST(LnExpFloat, KernelsWithinTheirUlpBounds) {
  auto ln = [](LD x) { return std::log(x); };
  auto lg = [](LD x) { return std::log10(x); };
  auto ex = [](LD x) { return std::exp(x); };
  auto at = [](LD x) { return std::atan(x); };
  against<float, float>(ryxsbLn1, ryxsbLn2, logUniform<float>(-140, 127), ln, 4, "sbLn");
  against<float, float>(ryxsbLn1, ryxsbLn2, uniform<float>(0.5, 2.0), ln, 4, "sbLn near 1");
  against<float, float>(ryxsbLg1, ryxsbLg2, logUniform<float>(-120, 120), lg, 6, "sbLg");
  against<float, float>(ryxsbExp1, ryxsbExp2, uniform<float>(-87, 87), ex, 6, "sbExp");
  against<float, float>(ryxsbArctan1, ryxsbArctan2, uniform<float>(-8, 8), at, 4, "sbArctan");
  against<float, float>(ryxsbArctan1, ryxsbArctan2, logUniform<float>(-30, 30), at, 4, "sbArctan wide");
  against<double, double>(ryxdbLn1, ryxdbLn2, logUniform<double>(-1060, 1020), ln, 4, "dbLn");
  against<double, double>(ryxdbLn1, ryxdbLn2, uniform<double>(0.5, 2.0), ln, 4, "dbLn near 1");
  against<double, double>(ryxdbLg1, ryxdbLg2, logUniform<double>(-1000, 1000), lg, 4, "dbLg");
  against<double, double>(ryxdbExp1, ryxdbExp2, uniform<double>(-700, 700), ex, 4, "dbExp");
  against<double, double>(ryxdbArctan1, ryxdbArctan2, uniform<double>(-8, 8), at, 1, "dbArctan");
  against<double, float>(nullptr, ryxdsbLn, logUniform<double>(-120, 120), ln, 1, "dsbLn");
  against<float, double>(nullptr, ryxsdbExp, uniform<float>(-80, 80), ex, 4, "sdbExp");
}

TEST(LnExpFloat, SpecialArgumentsSilently) {
  ReportCapture capture;
  const float inf = INFINITY, nan = std::numeric_limits<float>::quiet_NaN();
  float ln[] = {1.0f, 0.0f, -1.0f, inf, nan, -0.0f, 1e-40f};
  ryxsbLn1(ln, 7);
  EXPECT_EQ(ln[0], 0.0f);
  EXPECT_EQ(ln[1], -inf);
  EXPECT_TRUE(std::isnan(ln[2]));
  EXPECT_EQ(ln[3], inf);
  EXPECT_TRUE(std::isnan(ln[4]));
  EXPECT_EQ(ln[5], -inf);
  EXPECT_NEAR(ln[6], std::log(LD(1e-40f)), 1e-5);
  float ex[] = {0.0f, 88.0f, -inf, inf, nan, 1e-9f, -100.0f, 87.2f};
  ryxsbExp1(ex, 8);
  EXPECT_EQ(ex[0], 1.0f);
  EXPECT_EQ(ex[1], inf);
  EXPECT_EQ(ex[2], 0.0f);
  EXPECT_EQ(ex[3], inf);
  EXPECT_TRUE(std::isnan(ex[4]));
  EXPECT_EQ(ex[5], 1.0f);
  EXPECT_NEAR(ex[6], std::exp(-100.0L), 1e-44);  // a denormal
  EXPECT_NEAR(ex[7], std::exp(LD(87.2f)), 4 * ulpOf<float>(std::exp(LD(87.2f))));
  float at[] = {1.0f, -0.0f, inf, -inf, nan};
  ryxsbArctan1(at, 5);
  EXPECT_NEAR(at[0], 0.7853982f, 1e-7f);
  EXPECT_EQ(at[1], 0.0f);
  std::uint32_t bits;
  std::memcpy(&bits, &at[2], 4);
  EXPECT_EQ(bits, 0x3fc90fdbu);
  EXPECT_EQ(at[3], -at[2]);
  EXPECT_TRUE(std::isnan(at[4]));
  double d[] = {0.0, -2.0, 800.0, -800.0};
  double dl[4], de[4];
  ryxdbLn2(d, dl, 2);
  ryxdbExp2(d + 2, de, 2);
  EXPECT_EQ(dl[0], -INFINITY);
  EXPECT_TRUE(std::isnan(dl[1]));
  EXPECT_EQ(de[0], INFINITY);
  EXPECT_EQ(de[1], 0.0);
  EXPECT_TRUE(capture.reports().empty());
}

TEST(LnExpComplex, DecimalLogarithmOfMagnitudeAndPhase) {
  Random rng(12);
  const int n = 300;
  std::vector<SCplx> x(n);
  for (SCplx& e : x) e = {rng.f32(-50, 50), rng.f32(-50, 50)};
  std::vector<SCplx> out(n), inPlace = x;
  std::vector<DCplx> wide(n);
  ryxcbLg2(x.data(), out.data(), n);
  ryxcbLg1(inPlace.data(), n);
  ASSERT_TRUE(ryxtest::sameBits(inPlace.data(), out.data(), n));
  for (int len : {1, 3, 4, 7, n}) ryxczbLg(x.data(), wide.data(), len);
  for (int i = 0; i < n; ++i) {
    const LD re = std::log10(std::hypot(LD(x[i].re), LD(x[i].im)));
    const LD im = std::atan2(LD(x[i].im), LD(x[i].re)) / std::log(10.0L);
    EXPECT_NEAR(out[i].re, re, 0x1p-21L * std::fmax(1.0L, std::fabs(re)));
    EXPECT_NEAR(out[i].im, im, 0x1p-21L * std::fmax(1.0L, std::fabs(im)));
    EXPECT_NEAR(wide[i].re, re, 1e-12L);
    EXPECT_NEAR(wide[i].im, im, 1e-12L);
  }
  // Classified before any arithmetic: a zero or positive denormal real part,
  // an infinite or NaN part.
  SCplx special[] = {{0.0f, 5.0f}, {1e-40f, -1.0f}, {INFINITY, 1.0f}, {1.0f, NAN}, {-3.0f, 4.0f}};
  DCplx r[5];
  ryxczbLg(special, r, 5);
  EXPECT_TRUE(r[0].re == -INFINITY && r[0].im == -INFINITY);
  EXPECT_TRUE(r[1].re == -INFINITY && r[1].im == -INFINITY);
  EXPECT_TRUE(std::isnan(r[2].re) && std::isnan(r[2].im));
  EXPECT_TRUE(std::isnan(r[3].re) && std::isnan(r[3].im));
  EXPECT_NEAR(r[4].re, std::log10(5.0L), 1e-12);
  EXPECT_NEAR(r[4].im, std::atan2(4.0L, -3.0L) / std::log(10.0L), 1e-12);
  // Every buffer is given back when one cannot be had.
  ReportCapture capture;
  for (int k = 1; k <= 5; ++k) {
    ryxtest::FailAllocation fail(k);
    DCplx keep[1] = {{7.0, 7.0}};
    ryxczbLg(special + 4, keep, 1);
    EXPECT_EQ(keep[0].re, 7.0);
    ASSERT_EQ(capture.reports().size(), 1u);
    EXPECT_EQ(capture.reports()[0].status, RYX_StsNoMem);
    EXPECT_EQ(capture.reports()[0].funcName, "ryxcbLg2");
    capture.clear();
  }
}

std::vector<short> allShorts() {
  std::vector<short> v(65536);
  for (int i = 0; i < 65536; ++i) v[i] = static_cast<short>(i - 32768);
  return v;
}

TEST(LnExp16, LogarithmRoundedByComparisonsEvenAndOddPositions) {
  const std::vector<short> x = allShorts();
  auto rounded = [](int v) { return v < 1 ? 0 : static_cast<int>(std::min(10L, std::lround(std::log(LD(v))))); };
  // Each value at an even position, at an odd one, and as an odd length's last element.
  for (int pos : {0, 1}) {
    std::vector<short> src(2 * 65536, 7), dst(2 * 65536);
    for (int i = 0; i < 65536; ++i) src[2 * i + pos] = x[i];
    ryxwbLn2(src.data(), dst.data(), 2 * 65536);
    std::vector<short> inPlace = src;
    ryxwbLn1(inPlace.data(), 2 * 65536);
    ASSERT_EQ(inPlace, dst);
    for (int i = 0; i < 65536; ++i) {
      const int read = pos == 0 ? static_cast<std::uint16_t>(x[i]) : x[i];
      ASSERT_EQ(dst[2 * i + pos], rounded(read)) << x[i] << " at " << pos;
    }
  }
  short odd[3] = {4, 5, -1}, out[3];
  ryxwbLn2(odd, out, 3);
  EXPECT_EQ(out[0], 1);
  EXPECT_EQ(out[1], 2);
  EXPECT_EQ(out[2], 0);
  short pair[2] = {-1, -1};
  ryxwbLn1(pair, 2);
  EXPECT_EQ(pair[0], 10);
  EXPECT_EQ(pair[1], 0);
}

// e^x * 2^-f rounded to nearest; tables below and above their ranges.
short expModel(int x, int f, bool saturate) {
  const LD v = std::exp2(LD(x) / std::log(2.0L) - f);  // e^x * 2^-f without overflowing early
  auto low = [](LD w) {
    return std::isfinite(w) ? static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(std::fmod(std::trunc(w), 65536.0L)))) : short{0};
  };
  const bool tabled = f >= -16 && f <= 16;
  const int lo = f >= 0 ? 0 : -12, hi = f >= 0 ? (f == 0 && !saturate ? 21 : 24) : 12;
  if (tabled && x < lo) return 0;
  if (tabled && x > hi) return saturate ? 32767 : low(v);
  const LD r = std::floor(v + 0.5L);
  return saturate ? static_cast<short>(std::min(r, 32767.0L)) : low(r);
}

TEST(LnExp16, ExponentEveryValuePerModeAndFactor) {
  const std::vector<short> x = allShorts();
  std::vector<short> out(65536);
  // The documented table with saturation and no factor.
  const int table[] = {1, 3, 7, 20, 55, 148, 403, 1097, 2981, 8103, 22026};
  for (int mode : {1, 3, 0, 2}) {
    for (int f : {-31, -20, -17, -16, -9, -1, 0, 1, 4, 16, 17, 25, 31}) {
      int factor = f;
      ryxwbExp2(x.data(), out.data(), 65536, mode, &factor);
      const int used = (mode & 2) ? f : 0;
      for (int i = 0; i < 65536; ++i) {
        // The low 16 bits of a wrapped power beyond 2^40 are below its precision: not compared.
        if (!(mode & 1) && std::exp2(LD(x[i]) / std::log(2.0L) - used) > 0x1p40L) continue;
        ASSERT_EQ(out[i], expModel(x[i], used, mode & 1)) << mode << " " << f << " x=" << x[i];
      }
      if (mode == 1) {
        for (int k = 0; k <= 10; ++k) EXPECT_EQ(out[32768 + k], table[k]);
        EXPECT_EQ(out[32768 + 11], 32767);
        EXPECT_EQ(out[32767], 0);
        break;
      }
      if ((mode & 2) == 0) break;
    }
  }
  // Auto: the largest element's factor (its binary exponent less 14), saturating.
  for (short top : {short(3), short(10), short(11), short(20), short(32767)}) {
    std::vector<short> v = {-5, 0, top, 2};
    std::vector<short> o(4);
    int factor = 99;
    ryxwbExp2(v.data(), o.data(), 4, 4, &factor);
    const LD e = std::exp(LD(top));
    const int f = std::floor(e + 0.5L) <= 32767 ? 0 : static_cast<int>(std::floor(top / std::log(2.0L))) - 14;
    ASSERT_EQ(factor, f) << top;
    for (int i = 0; i < 4; ++i) ASSERT_EQ(o[i], expModel(v[i], f, true)) << top;
    ryxwbExp1(v.data(), 4, 5, &factor);
    EXPECT_EQ(v, o);
  }
}

template <class T>
T* as(void* p) {
  return static_cast<T*>(p);
}

struct Checked {
  std::string name, reportedAs, stem;
  std::vector<std::string> texts;  // length, then pointers
  std::function<void(void*, void*, int)> call;
};

#define ONE(f, T, stem) Checked{#f, #f, stem, {"len<=0", "vec==0"}, [](void* a, void*, int n) { f(as<T>(a), n); }}
#define TWO(f, S, D, stem) \
  Checked{#f, #f, stem, {"len<=0", "src==0", "dst==0"}, [](void* a, void* b, int n) { f(as<S>(a), as<D>(b), n); }}

TEST(LnExpChecks, EveryRoutineInOrderWithExactTexts) {
  const char *e = "ryxlnexp", *w = "ryxlnexw", *g = "ryxlg", *t = "ryxatan";
  std::vector<Checked> all = {
      ONE(ryxsbLn1, float, e), TWO(ryxsbLn2, float, float, e), ONE(ryxdbLn1, double, e),
      TWO(ryxdbLn2, double, double, e), TWO(ryxdsbLn, double, float, e), ONE(ryxsbExp1, float, e),
      TWO(ryxsbExp2, float, float, e), ONE(ryxdbExp1, double, e), TWO(ryxdbExp2, double, double, e),
      TWO(ryxsdbExp, float, double, e), ONE(ryxsbLg1, float, g), TWO(ryxsbLg2, float, float, g),
      ONE(ryxdbLg1, double, g), TWO(ryxdbLg2, double, double, g), ONE(ryxcbLg1, SCplx, g),
      TWO(ryxcbLg2, SCplx, SCplx, g), TWO(ryxczbLg, SCplx, DCplx, g), ONE(ryxsbArctan1, float, t),
      TWO(ryxsbArctan2, float, float, t), ONE(ryxdbArctan1, double, t), TWO(ryxdbArctan2, double, double, t),
      TWO(ryxwbLn2, short, short, w),
      Checked{"ryxwbLn1", "ryxwbLn1", w, {"Len<=0", "Vector==0"}, [](void* a, void*, int n) { ryxwbLn1(as<short>(a), n); }},
      Checked{"ryxwbExp1", "ryxwbExp1", w, {"len<=0", "vec==0"},
              [](void* a, void*, int n) { int f = 0; ryxwbExp1(as<short>(a), n, 2, &f); }},
      Checked{"ryxwbExp2", "ryxwbExp1", w, {"len<=0", "src==0", "dst==0"},
              [](void* a, void* b, int n) { int f = 0; ryxwbExp2(as<short>(a), as<short>(b), n, 2, &f); }},
  };
  all[16].reportedAs = "ryxcbLg2";
  EXPECT_EQ(all.size(), 25u);
  ReportCapture capture;
  alignas(32) unsigned char a[64], b[64];
  std::memset(a, 0x3C, sizeof a);
  std::memset(b, 0x3C, sizeof b);
  auto expectOnly = [&](const Checked& r, const std::string& text) {
    ASSERT_EQ(capture.reports().size(), 1u) << r.name << " " << text;
    const auto& rep = capture.reports()[0];
    EXPECT_EQ(rep.status, RYX_StsBadArg);
    EXPECT_EQ(rep.funcName, r.reportedAs);
    EXPECT_EQ(rep.context, text) << r.name;
    EXPECT_EQ(rep.file, r.stem) << r.name;
    for (int i = 0; i < 64; ++i) ASSERT_TRUE(a[i] == 0x3C && b[i] == 0x3C) << r.name;
    capture.clear();
  };
  for (const Checked& r : all) {
    for (int n : {0, -1, INT_MIN}) {
      r.call(nullptr, nullptr, n);
      expectOnly(r, r.texts[0]);
    }
    r.call(nullptr, nullptr, 4);
    expectOnly(r, r.texts[1]);
    if (r.texts.size() == 3) {
      r.call(a, nullptr, 4);
      expectOnly(r, r.texts[2]);
    }
  }
  // The 16-bit exponent's fixed factor limits; data unchanged.
  short v[2] = {1, 2}, d[2] = {9, 9};
  for (int f : {-33, -32, 32, 40}) {
    int factor = f;
    ryxwbExp1(v, 2, 3, &factor);
    ryxwbExp2(v, d, 2, 2, &factor);
    ASSERT_EQ(capture.reports().size(), 2u);
    const char* text = f < 0 ? "sorry, bat ScaleFactor is too small (less then -31)"
                             : "sorry, bat ScaleFactor is too large (greate then 31)";
    for (const auto& rep : capture.reports()) {
      EXPECT_EQ(rep.context, text);
      EXPECT_EQ(rep.funcName, "ryxwbExp1");
      EXPECT_EQ(rep.status, RYX_StsBadArg);
    }
    EXPECT_TRUE(v[0] == 1 && v[1] == 2 && d[0] == 9 && d[1] == 9);
    capture.clear();
  }
  int factor = -40;
  ryxwbExp1(v, 2, 1, &factor);  // without the fixed flag the factor is not read
  EXPECT_TRUE(capture.reports().empty());
}
#undef ONE
#undef TWO

}  // namespace
