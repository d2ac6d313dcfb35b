// One-dimensional convolution against long-double direct sums: every form,
// both operand orders, lengths on both sides of each method threshold, the
// error bound of the method the rules choose, exact results for small
// integers on the direct method; the 16-bit form's two paths and every
// scale mode on its integer kernel; allocation failures.
#include <set>

#include "alloc_failure.h"
#include "corr_support.h"
#include "correlate/conv_core.h"
#include "correlate/int16_narrow.h"

namespace corrtest {
namespace {

using ryx::corr::ConvKind;
using ryx::corr::ConvMethod;

template <class X, class H, class Y>
struct Form {
  const char* name;
  RyxStatus (*fn)(const X*, int, const H*, int, Y*);
  ConvKind kind;    // x the longer
  ConvKind mirror;  // h the longer
};

// Small integers, exact in every precision and by every direct order.
template <class T>
std::vector<T> smallInts(ryxtest::Random& r, int n) {
  std::vector<T> v(static_cast<size_t>(n));
  for (auto& e : v) {
    if constexpr (kIsComplex<T>) e = {static_cast<decltype(e.re)>(r.i32(-8, 8)), static_cast<decltype(e.re)>(r.i32(-8, 8))};
    else e = static_cast<T>(r.i32(-8, 8));
  }
  return v;
}

template <class X, class H, class Y>
ConvMethod checkOne(const Form<X, H, Y>& f, int xLen, int hLen, bool ints, ryxtest::Random& r) {
  const int L = std::max(xLen, hLen), S = std::min(xLen, hLen);
  const auto choice = ryx::corr::chooseConv(ryx::corr::convCosts(hLen > xLen ? f.mirror : f.kind), L, S);
  if (ints && choice.method != ConvMethod::kDirect) return choice.method;  // exact only by direct sums
  const auto x = ints ? smallInts<X>(r, xLen) : randomVec<X>(r, xLen);
  const auto h = ints ? smallInts<H>(r, hLen) : randomVec<H>(r, hLen);
  const long long n = static_cast<long long>(xLen) + hLen - 1;
  std::vector<Y> y(static_cast<size_t>(n + 1));
  ryxtest::ReportCapture cap;
  EXPECT_EQ(f.fn(x.data(), xLen, h.data(), hLen, y.data()), RYX_StsOk) << f.name;
  EXPECT_TRUE(cap.reports().empty());
  std::vector<long double> mag;
  const auto ref = refConv(x, h, &mag);
  std::string what = std::string(f.name) + " " + std::to_string(xLen) + "x" + std::to_string(hLen);
  if (choice.method == ConvMethod::kDirect && ints) {
    for (long long k = 0; k < n; ++k) EXPECT_EQ(wide(y[k]), ref[k]) << what << " k=" << k;
  } else if (choice.method == ConvMethod::kDirect) {
    expectDirectBound(y, ref, mag, S, what.c_str());
  } else {
    const long long np = choice.method == ConvMethod::kSingle ? 1LL << ryx::corr::ceilLog2(n)
                                                                : ryx::corr::overlapBlock(S, n, choice.mode);
    expectTransformBound(y, ref, mag, x, h, np, what.c_str());
  }
  return choice.method;
}

// Lengths around each rule of the form: the small and upper limits, the
// first and last T rows, L = 32 S, odd and even, both operand orders.
template <class X, class H, class Y>
void sweep(const Form<X, H, Y>& f) {
  ryxtest::Random r(1234);
  const auto& k = ryx::corr::convCosts(f.kind);
  const int first = k.small + 1, last = k.upper - 1;
  const int tFirst = k.limit[0], tLast = k.limit[last - first];
  const std::vector<std::pair<int, int>> sizes = {
      {1, 1},         {5000, 1},       {3000, k.small}, {tFirst - 1, first}, {tFirst, first},
      {tLast - 1, last}, {tLast, last},  {k.upper + 1, k.upper}, {32 * k.upper, k.upper},
      {32 * k.upper + 1, k.upper}, {4001, 37},    {201, 200},  {300, 300}, {2000, 129}};
  std::set<ConvMethod> seen;
  for (auto [L, S] : sizes) {
    for (bool ints : {false, true}) {
      seen.insert(checkOne(f, L, S, ints, r));
      seen.insert(checkOne(f, S, L, ints, r));
    }
  }
  EXPECT_EQ(seen.size(), 3u) << f.name << ": every method reached";
}

TEST(Conv, EveryFormMatchesDirectSumsWithinItsMethodsBound) {
  sweep(Form<float, float, float>{"ryxsConv", ryxsConv, ConvKind::s, ConvKind::s});
  sweep(Form<SCplx, SCplx, SCplx>{"ryxcConv", ryxcConv, ConvKind::c, ConvKind::c});
  sweep(Form<SCplx, float, SCplx>{"ryxcsConv", ryxcsConv, ConvKind::cs, ConvKind::sc});
  sweep(Form<float, SCplx, SCplx>{"ryxscConv", ryxscConv, ConvKind::sc, ConvKind::cs});
  sweep(Form<double, double, double>{"ryxdConv", ryxdConv, ConvKind::d, ConvKind::d});
  sweep(Form<DCplx, DCplx, DCplx>{"ryxzConv", ryxzConv, ConvKind::z, ConvKind::z});
  sweep(Form<DCplx, double, DCplx>{"ryxzdConv", ryxzdConv, ConvKind::zd, ConvKind::dz});
  sweep(Form<double, DCplx, DCplx>{"ryxdzConv", ryxdzConv, ConvKind::dz, ConvKind::zd});
}

// The method rule at its stated rows, and the block actually used when the
// cost model asks for the larger one.
TEST(Conv, MethodChoiceFollowsLimitsAndBlockRule) {
  using ryx::corr::chooseConv;
  const auto& s = ryx::corr::convCosts(ConvKind::s);
  EXPECT_EQ(chooseConv(s, 1 << 30, 8).method, ConvMethod::kDirect);
  EXPECT_EQ(chooseConv(s, 53242, 9).method, ConvMethod::kDirect);
  EXPECT_NE(chooseConv(s, 53243, 9).method, ConvMethod::kDirect);
  EXPECT_EQ(chooseConv(s, 110, 110).method, ConvMethod::kDirect);
  EXPECT_NE(chooseConv(s, 111, 110).method, ConvMethod::kDirect);
  EXPECT_NE(chooseConv(s, 111, 111).method, ConvMethod::kDirect);
  const auto& z = ryx::corr::convCosts(ConvKind::z);
  EXPECT_EQ(chooseConv(z, 12800, 3).method, ConvMethod::kDirect);
  EXPECT_NE(chooseConv(z, 12801, 3).method, ConvMethod::kDirect);
  // Long x: mode 3 is asked for, and its block is the mode-2 block.
  const auto c = chooseConv(s, 1 << 22, 200);
  EXPECT_EQ(c.method, ConvMethod::kOverlap);
  EXPECT_EQ(ryx::corr::overlapBlock(200, (1 << 22) + 199, 3), ryx::corr::overlapBlock(200, (1 << 22) + 199, 2));
  EXPECT_EQ(ryx::corr::overlapBlock(200, (1 << 22) + 199, 2), 1024);
  EXPECT_EQ(ryx::corr::overlapBlock(200, (1 << 22) + 199, 1), 512);
  EXPECT_EQ(ryx::corr::overlapBlock(200, 300, 2), 512);
  EXPECT_EQ(ryx::corr::overlapBlock(200, 600, 2), 1024);
  EXPECT_EQ(ryx::corr::overlapBlock(200, 600, 1), 512);
}

// ---- 16 bits ----------------------------------------------------------------

std::vector<long long> sums64(const std::vector<short>& x, const std::vector<short>& h) {
  std::vector<long long> s(x.size() + h.size() - 1, 0);
  for (size_t i = 0; i < x.size(); ++i)
    for (size_t j = 0; j < h.size(); ++j) s[i + j] += static_cast<long long>(x[i]) * h[j];
  return s;
}

TEST(Conv, Int16IntegerKernelEveryModeBitExact) {
  ryxtest::Random r(7);
  for (auto [xl, hl] : std::vector<std::pair<int, int>>{{64, 8191}, {8191, 64}, {63, 20000}, {128, 511}, {255, 255}, {1, 1}, {7, 3}}) {
    const auto x = randomVec<short>(r, xl), h = randomVec<short>(r, hl);
    const auto s = sums64(x, h);
    for (int mode = 0; mode < 8; ++mode) {
      for (int factor : {-2, 0, 3, 17, 40}) {
        for (bool withPtr : {false, true}) {
          std::vector<short> y(s.size());
          int sf = factor;
          ryxtest::ReportCapture cap;
          ASSERT_EQ(ryxwConv(x.data(), xl, h.data(), hl, y.data(), mode, withPtr ? &sf : nullptr), RYX_StsOk);
          EXPECT_EQ(sf, factor);  // never written
          const int f = (mode & RYX_FIXED_SCALE) && withPtr ? factor : 0;
          for (size_t k = 0; k < s.size(); ++k)
            ASSERT_EQ(y[k], narrowRule(s[k], f, mode & RYX_SATURATE)) << xl << "x" << hl << " mode " << mode << " k=" << k;
        }
      }
    }
  }
}

TEST(Conv, Int16FloatPathNarrowsTheFloatResult) {
  ryxtest::Random r(8);
  for (auto [xl, hl] : std::vector<std::pair<int, int>>{{256, 256}, {1000, 255}, {128, 512}, {64, 8192}}) {
    EXPECT_TRUE(ryx::corr::wConvFloatPath(xl, hl));
    const auto x = randomVec<short>(r, xl), h = randomVec<short>(r, hl);
    const auto s = sums64(x, h);
    long long big = 0;
    for (long long v : s) big = std::max(big, std::llabs(v));
    const int expectFactor = std::ilogb(static_cast<double>(big)) - 14;
    std::vector<short> y(s.size());
    int sf = 99;
    ASSERT_EQ(ryxwConv(x.data(), xl, h.data(), hl, y.data(), RYX_AUTO_SCALE, &sf), RYX_StsOk);
    ASSERT_EQ(sf, expectFactor);
    for (size_t k = 0; k < s.size(); ++k)
      ASSERT_LE(std::abs(y[k] - std::trunc(std::ldexp(static_cast<double>(s[k]), -sf))), 1.0) << k;
    // Within range, the automatic factor is 0.
    std::vector<short> sx(static_cast<size_t>(xl)), sh(static_cast<size_t>(hl));
    for (auto& v : sx) v = static_cast<short>(r.i32(-3, 3));
    for (auto& v : sh) v = static_cast<short>(r.i32(-3, 3));
    const auto ss = sums64(sx, sh);
    std::vector<short> y2(ss.size());
    sf = 99;
    ASSERT_EQ(ryxwConv(sx.data(), xl, sh.data(), hl, y2.data(), RYX_AUTO_SCALE, &sf), RYX_StsOk);
    EXPECT_EQ(sf, 0);
    for (size_t k = 0; k < ss.size(); ++k) ASSERT_LE(std::llabs(y2[k] - ss[k]), 1) << k;
  }
  for (auto [xl, hl] : std::vector<std::pair<int, int>>{{8191, 64}, {511, 128}, {255, 255}, {5000, 63}})
    EXPECT_FALSE(ryx::corr::wConvFloatPath(xl, hl));
}

}  // namespace
}  // namespace corrtest
