// Two-dimensional convolution and filtering against long-double sums: the
// method each size gets, the bound of that method, the 1-D route being the
// 1-D routine's result bit for bit; 16-bit forms by exact integer rules;
// the filter's centring, block method, memory fall-back; checks.
#include <functional>

#include "alloc_failure.h"
#include "corr_support.h"
#include "correlate/conv2d_core.h"
#include "correlate/op_counts.h"

namespace corrtest {
namespace {

using ryx::corr::Conv2dMethod;

struct Dims {
  int xc, xr, hc, hr;
};

template <class T>
std::vector<long double> ref2d(const std::vector<T>& x, const std::vector<T>& h, Dims d, bool magnitude) {
  const int yc = d.xc + d.hc - 1, yr = d.xr + d.hr - 1;
  std::vector<long double> y(static_cast<size_t>(yc) * yr, 0);
  for (int a = 0; a < d.xr; ++a)
    for (int b = 0; b < d.xc; ++b)
      for (int i = 0; i < d.hr; ++i)
        for (int j = 0; j < d.hc; ++j) {
          const long double p = static_cast<long double>(x[a * d.xc + b]) * h[i * d.hc + j];
          y[(a + i) * yc + b + j] += magnitude ? std::fabs(p) : p;
        }
  return y;
}

template <class T>
void checkConv2d(void (*fn)(const T*, int, int, const T*, int, int, T*), Dims d, Conv2dMethod expect,
                 ryxtest::Random& r) {
  ASSERT_EQ(ryx::corr::chooseConv2d(d.xc, d.xr, d.hc, d.hr), expect) << d.xc << "x" << d.xr << " " << d.hc << "x" << d.hr;
  const auto x = randomVec<T>(r, d.xc * d.xr), h = randomVec<T>(r, d.hc * d.hr);
  std::vector<T> y(static_cast<size_t>(d.xc + d.hc - 1) * (d.xr + d.hr - 1));
  ryxtest::ReportCapture cap;
  fn(x.data(), d.xc, d.xr, h.data(), d.hc, d.hr, y.data());
  ASSERT_TRUE(cap.reports().empty());
  const auto ref = ref2d(x, h, d, false), mag = ref2d(x, h, d, true);
  std::vector<LD> refc(ref.begin(), ref.end());
  const long long terms = std::min(d.xc * d.xr, d.hc * d.hr);
  if (expect == Conv2dMethod::kDirect) return expectDirectBound(y, refc, mag, terms, "direct");
  const long long np = ryx::corr::up2(std::max(d.xr, d.hr)) * ryx::corr::up2(std::max(d.xc, d.hc));
  expectTransformBound(y, refc, mag, x, h, np, "transform");
}

template <class T>
void conv2dSweep(void (*fn)(const T*, int, int, const T*, int, int, T*)) {
  ryxtest::Random r(21);
  const std::pair<Dims, Conv2dMethod> cases[] = {
      {{16, 16, 16, 16}, Conv2dMethod::kDirect},  {{17, 17, 17, 17}, Conv2dMethod::kHartley},
      {{60, 50, 7, 7}, Conv2dMethod::kDirect},    {{5, 3, 40, 30}, Conv2dMethod::kDirect},
      {{64, 40, 9, 10}, Conv2dMethod::kOverlap},  {{9, 10, 64, 40}, Conv2dMethod::kOverlap},
      {{100, 20, 12, 9}, Conv2dMethod::kOverlap}, {{20, 18, 17, 25}, Conv2dMethod::kHartley},
      {{33, 1, 40, 1}, Conv2dMethod::kOneDim},    {{30, 17, 9, 12}, Conv2dMethod::kOverlap},
      {{25, 20, 20, 17}, Conv2dMethod::kHartley},
  };
  for (const auto& [d, m] : cases) checkConv2d(fn, d, m, r);
}

TEST(Conv2D, FloatAndDoubleWithinTheirMethodsBound) {
  conv2dSweep(ryxsConv2D);
  conv2dSweep(ryxdConv2D);
}

TEST(Conv2D, OneRowOrOneColumnIsTheOneDimensionalResult) {
  ryxtest::Random r(22);
  for (auto [xl, hl] : std::vector<std::pair<int, int>>{{300, 20}, {20, 300}, {1000, 150}}) {
    const auto x = randomVec<float>(r, xl), h = randomVec<float>(r, hl);
    std::vector<float> a(static_cast<size_t>(xl + hl - 1)), b(a.size()), c(a.size());
    ryxsConv(x.data(), xl, h.data(), hl, a.data());
    ryxsConv2D(x.data(), xl, 1, h.data(), hl, 1, b.data());
    ryxsConv2D(x.data(), 1, xl, h.data(), 1, hl, c.data());
    EXPECT_TRUE(ryxtest::sameBits(a.data(), b.data(), static_cast<int>(a.size())));
    EXPECT_TRUE(ryxtest::sameBits(a.data(), c.data(), static_cast<int>(a.size())));
  }
}

TEST(Conv2D, Int16KernelsAreExact) {
  ryxtest::Random r(23);
  // Integer kernel of the convolution: factor only under FIXED_SCALE.
  for (Dims d : {Dims{7, 20, 9, 9}, Dims{30, 12, 3, 5}, Dims{1, 1, 1, 1}}) {
    const auto x = randomVec<short>(r, d.xc * d.xr), h = randomVec<short>(r, d.hc * d.hr);
    const auto ref = ref2d(x, h, d, false);
    for (int mode = 0; mode < 8; ++mode) {
      int sf = 5;
      std::vector<short> y(ref.size());
      ryxwConv2D(x.data(), d.xc, d.xr, h.data(), d.hc, d.hr, y.data(), mode, &sf);
      EXPECT_EQ(sf, 5);
      for (size_t k = 0; k < ref.size(); ++k)
        ASSERT_EQ(y[k], narrowRule(static_cast<long long>(ref[k]), (mode & 2) ? 5 : 0, mode & 1)) << mode;
    }
  }
  // Float path from 8 in every size: the automatic factor, values within 1.
  for (Dims d : {Dims{8, 8, 8, 8}, Dims{20, 9, 12, 30}}) {
    const auto x = randomVec<short>(r, d.xc * d.xr), h = randomVec<short>(r, d.hc * d.hr);
    const auto ref = ref2d(x, h, d, false);
    long double big = 0;
    for (auto v : ref) big = std::max(big, std::fabs(v));
    int sf = 99;
    std::vector<short> y(ref.size());
    ryxwConv2D(x.data(), d.xc, d.xr, h.data(), d.hc, d.hr, y.data(), RYX_AUTO_SCALE, &sf);
    ASSERT_EQ(sf, std::ilogb(static_cast<double>(big)) - 14);
    for (size_t k = 0; k < ref.size(); ++k) ASSERT_LE(std::fabs(y[k] - std::trunc(std::ldexp(ref[k], -sf))), 1.0L);
  }
  // The filter: 32-bit sums of the centred window, every mode.
  for (Dims d : {Dims{13, 9, 4, 3}, Dims{6, 7, 5, 5}}) {
    const auto x = randomVec<short>(r, d.xc * d.xr), h = randomVec<short>(r, d.hc * d.hr);
    const auto full = ref2d(x, h, d, false);
    std::vector<long long> s;
    for (int i = 0; i < d.xr; ++i)
      for (int j = 0; j < d.xc; ++j) s.push_back(static_cast<long long>(full[(i + d.hr / 2) * (d.xc + d.hc - 1) + j + d.hc / 2]));
    for (int mode = 0; mode < 8; ++mode) {
      int sf = 3, rf = 3;
      std::vector<short> y(s.size());
      ryxwFilter2D(x.data(), d.xc, d.xr, h.data(), d.hc, d.hr, y.data(), mode, &sf);
      EXPECT_EQ(y, narrowArray(s, mode, &rf)) << mode;
      EXPECT_EQ(sf, rf);
    }
  }
}

template <class T>
void checkFilter(void (*fn)(const T*, int, int, const T*, int, int, T*), Dims d, bool block, ryxtest::Random& r) {
  ASSERT_EQ(ryx::corr::filter2dBlockWins(d.xc, d.xr, d.hc, d.hr), block);
  const auto x = randomVec<T>(r, d.xc * d.xr), h = randomVec<T>(r, d.hc * d.hr);
  const auto full = ref2d(x, h, d, false), fullMag = ref2d(x, h, d, true);
  std::vector<LD> ref;
  std::vector<long double> mag;
  for (int i = 0; i < d.xr; ++i)
    for (int j = 0; j < d.xc; ++j) {
      const size_t k = static_cast<size_t>(i + d.hr / 2) * (d.xc + d.hc - 1) + j + d.hc / 2;
      ref.emplace_back(full[k]);
      mag.push_back(fullMag[k]);
    }
  for (bool starve : {false, true}) {
    std::vector<T> y(ref.size());
    ryxtest::ReportCapture cap;
    if (starve) {
      ryxtest::FailAllocation fail(1, true);
      fn(x.data(), d.xc, d.xr, h.data(), d.hc, d.hr, y.data());
    } else {
      fn(x.data(), d.xc, d.xr, h.data(), d.hc, d.hr, y.data());
    }
    EXPECT_TRUE(cap.reports().empty());
    if (block && !starve) {
      expectTransformBound(y, ref, mag, x, h, ryx::corr::up2(d.hr) * ryx::corr::up2(d.hc), "filter blocks");
    } else {
      // Direct: double sums, one rounding to the type.
      for (size_t k = 0; k < ref.size(); ++k)
        ASSERT_LE(std::abs(wide(y[k]) - ref[k]), kEps<T> * std::fabs(ref[k].real()) + 0x1p-50L * d.hc * d.hr * mag[k]);
    }
  }
}

TEST(Filter2D, CentredWindowByDirectSumsOrBlocks) {
  ryxtest::Random r(24);
  for (auto fn : {ryxsFilter2D}) {
    checkFilter(fn, {40, 30, 4, 6}, false, r);
    checkFilter(fn, {128, 128, 15, 15}, true, r);
    checkFilter(fn, {100, 70, 16, 9}, true, r);
  }
  checkFilter(ryxdFilter2D, {37, 29, 5, 3}, false, r);
  checkFilter(ryxdFilter2D, {128, 128, 15, 15}, true, r);
}

}  // namespace
}  // namespace corrtest
