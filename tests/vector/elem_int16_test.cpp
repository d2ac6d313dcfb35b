// 16-bit square, root, threshold and absolute value over all 65536 values
// (w) or dense grids (v) against integer rules written out from the
// description: the square's scale modes read by bits, with round-half-even
// only under saturation for factors -14..30; roots by exact integer
// comparison; complex thresholds by exact floor and ceiling of the scaled
// parts.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <vector>

#include "alloc_failure.h"
#include "test_support.h"

namespace {

using ryxtest::Random;
using ryxtest::ReportCapture;
using i64 = std::int64_t;

std::vector<short> allShorts() {
  std::vector<short> v(65536);
  for (int i = 0; i < 65536; ++i) v[i] = static_cast<short>(i - 32768);
  return v;
}

short low16(i64 r) { return static_cast<short>(static_cast<std::uint16_t>(r & 0xffff)); }
short clamp16(i64 r) { return static_cast<short>(std::clamp<i64>(r, -32768, 32767)); }

// floor(r / 2^f) for r >= 0, then to nearest with ties to the even quotient.
i64 roundHalfEven(i64 r, int f) {
  const i64 unit = i64{1} << f, q = r / unit, rem = r % unit, half = unit / 2;
  return rem > half || (rem == half && (q & 1)) ? q + 1 : q;
}

// One square's element under the bit-read mode with a resolved factor.
short sqrModel(i64 r, int f, bool saturate) {
  if (saturate && f >= -14 && f <= 30) {
    if (f > 0) return clamp16(roundHalfEven(r, f));
    return clamp16(f < 0 ? r * (i64{1} << -f) : r);
  }
  if (f > 0) return saturate ? clamp16(f >= 40 ? 0 : r >> f) : low16(f >= 40 ? 0 : r >> f);
  if (f < 0) {
    if (saturate) return r == 0 ? 0 : (r > 0 ? 32767 : -32768);  // any left shift of 15 or more overflows
    return f <= -16 ? 0 : low16(r * (i64{1} << -f));
  }
  return saturate ? clamp16(r) : low16(r);
}

TEST(ElemSqr16, RealSquaresEveryValueEveryMode) {
  const std::vector<short> x = allShorts();
  std::vector<short> out(65536);
  for (int mode : {0, 1, 2, 3, 8 + 3}) {
    for (int f : {INT_MIN, -16, -15, -14, -3, 0, 1, 2, 7, 15, 16, 30, 31, 35, INT_MAX}) {
      int factor = f;
      ryxwbSqr2(x.data(), out.data(), 65536, mode, &factor);
      const int used = (mode & 2) ? f : 0;
      for (int i = 0; i < 65536; ++i) {
        const i64 r = i64{x[i]} * x[i];
        ASSERT_EQ(out[i], sqrModel(r, used, mode & 1)) << "mode " << mode << " factor " << f << " x " << x[i];
      }
      EXPECT_EQ(factor, f);
      if ((mode & 2) == 0) break;
    }
  }
  // Auto scale (any mode with the bit 4): the least shift that brings the
  // larger square of the extremes to 32767 or below, then a plain shift.
  Random rng(11);
  for (int trial = 0; trial < 200; ++trial) {
    const int n = rng.i32(1, 40), lim = rng.i32(1, 32768);
    std::vector<short> v(n), got(n);
    for (short& e : v) e = static_cast<short>(std::max(-32768, rng.i32(-lim, lim)));
    int factor = 99;
    std::vector<short> inPlace = v;
    ryxwbSqr2(v.data(), got.data(), n, trial % 2 ? 5 : 4, &factor);
    i64 m = 0;
    for (short e : v) m = std::max(m, i64{e} * e);
    int f = 0;
    while ((m >> f) > 32767) ++f;
    ASSERT_EQ(factor, f);
    for (int i = 0; i < n; ++i) ASSERT_EQ(got[i], (i64{v[i]} * v[i]) >> f);
    int factor1 = 99;
    ryxwbSqr1(inPlace.data(), n, 7, &factor1);
    EXPECT_EQ(factor1, f);
    EXPECT_EQ(inPlace, got);
  }
}

TEST(ElemSqr16, ComplexSquaresByMode) {
  Random rng(5);
  const short edges[] = {-32768, -32767, -16384, -181, -1, 0, 1, 181, 182, 16383, 32767};
  for (int trial = 0; trial < 400; ++trial) {
    const int n = rng.i32(1, 40);
    std::vector<WCplx> v(n);
    for (WCplx& e : v) {
      auto pick = [&] { return rng.i32(0, 3) == 0 ? edges[rng.i32(0, 10)] : static_cast<short>(rng.i32(-300, 300)); };
      e = {pick(), pick()};
    }
    auto exact = [](WCplx e) { return std::pair<i64, i64>{i64{e.re} * e.re - i64{e.im} * e.im, 2 * i64{e.re} * e.im}; };
    const int mode = trial % 8, fixed = rng.i32(-17, 33);
    int factor = fixed;
    std::vector<WCplx> got(n), inPlace = v;
    ryxvbSqr2(v.data(), got.data(), n, mode, &factor);
    int factor1 = fixed;
    ryxvbSqr1(inPlace.data(), n, mode, &factor1);
    int f = (mode & 2) ? fixed : 0;
    if (mode & 4) {
      f = 0;
      for (WCplx e : v) {
        auto [re, im] = exact(e);
        while ((re >> f) < -32768 || (re >> f) > 32767 || (im >> f) < -32768 || (im >> f) > 32767) ++f;
      }
      ASSERT_EQ(factor, f);
    }
    for (int i = 0; i < n; ++i) {
      auto [re, im] = exact(v[i]);
      auto narrow = [&](i64 r) -> short {
        if (mode & 4) return static_cast<short>(r >> f);
        const bool sat = mode & 1;
        if (f >= 0) return sat ? clamp16(r >> std::min(f, 62)) : low16(r >> std::min(f, 62));
        if (sat) return -f >= 33 ? clamp16(r == 0 ? 0 : r * (i64{1} << 40)) : clamp16(r * (i64{1} << -f));
        return -f >= 16 ? 0 : low16(r * (i64{1} << -f));
      };
      ASSERT_EQ(got[i].re, narrow(re)) << "mode " << mode << " f " << f << " " << v[i].re << "," << v[i].im;
      ASSERT_EQ(got[i].im, narrow(im)) << "mode " << mode << " f " << f;
      ASSERT_EQ(inPlace[i].re, got[i].re);
      ASSERT_EQ(inPlace[i].im, got[i].im);
    }
    EXPECT_EQ(factor1, factor);
  }
}

TEST(ElemSqrt16, RealRootsOfTheUnsignedReadingRoundedToNearest) {
  ReportCapture capture;
  const std::vector<short> x = allShorts();
  std::vector<short> out(65536);
  ryxwbSqrt2(x.data(), out.data(), 65536);
  ASSERT_EQ(capture.reports().size(), 1u);  // one report for all the negative elements
  for (int i = 0; i < 65536; ++i) {
    // r rounds sqrt(u + 1/16): (r - 1/2)^2 <= u + 1/16 < (r + 1/2)^2, times 16.
    const i64 u = static_cast<std::uint16_t>(x[i]), r = out[i];
    ASSERT_TRUE((r == 0 || 16 * (r * r - r) + 4 <= 16 * u + 1) && 16 * u + 1 < 16 * (r * r + r) + 4) << u << " -> " << r;
  }
}

TEST(ElemSqrt16, ComplexRootsTruncatedPerComponent) {
  // re = floor(sqrt((|x| + x.re) / 2)), im = floor(sqrt((|x| - x.re) / 2)) with the sign of x.im.
  std::vector<WCplx> v;
  for (int a = -32768; a <= 32767; a += 257)
    for (int b = -32768; b <= 32767; b += 263) v.push_back({static_cast<short>(a), static_cast<short>(b)});
  for (int a = -12; a <= 12; ++a)
    for (int b = -12; b <= 12; ++b) v.push_back({static_cast<short>(a), static_cast<short>(b)});
  v.push_back({-32768, -32768});
  v.push_back({32767, 0});
  std::vector<WCplx> out(v.size());
  ryxvbSqrt2(v.data(), out.data(), static_cast<int>(v.size()));
  for (size_t i = 0; i < v.size(); ++i) {
    const long double re = v[i].re, im = v[i].im, m = std::sqrt(re * re + im * im);
    const int wantRe = static_cast<int>(std::floor(std::sqrt((m + re) / 2)));
    const int wantIm = static_cast<int>(std::floor(std::sqrt((m - re) / 2)));
    ASSERT_EQ(out[i].re, wantRe) << v[i].re << "," << v[i].im;
    ASSERT_EQ(out[i].im, v[i].im < 0 ? -wantIm : wantIm) << v[i].re << "," << v[i].im;
  }
  std::vector<WCplx> inPlace = v;
  ryxvbSqrt1(inPlace.data(), static_cast<int>(v.size()));
  EXPECT_TRUE(ryxtest::sameBits(inPlace.data(), out.data(), static_cast<int>(v.size())));
}

TEST(ElemThresh16, RealThresholdsAndSaturatingAbs) {
  const std::vector<short> x = allShorts();
  std::vector<short> out(65536), inPlace;
  for (short t : {short(-32768), short(-5), short(0), short(1234), short(32767)}) {
    for (int relOp : {0, 1, -3}) {
      ryxwbThresh2(x.data(), out.data(), 65536, t, relOp);
      inPlace = x;
      ryxwbThresh1(inPlace.data(), 65536, t, relOp);
      for (int i = 0; i < 65536; ++i) ASSERT_EQ(out[i], relOp == 0 ? std::max(x[i], t) : std::min(x[i], t));
      ASSERT_EQ(inPlace, out);
    }
  }
  ryxwbAbs2(x.data(), out.data(), 65536);
  inPlace = x;
  ryxwbAbs1(inPlace.data(), 65536);
  for (int i = 0; i < 65536; ++i) ASSERT_EQ(out[i], std::min(32767, std::abs(int{x[i]})));
  EXPECT_EQ(inPlace, out);
}

TEST(ElemThresh16, ComplexThresholdsByExactScaledParts) {
  Random rng(9);
  std::vector<WCplx> v(1500);
  for (WCplx& e : v) e = {static_cast<short>(rng.i32(-32768, 32767) >> rng.i32(0, 15)), static_cast<short>(rng.i32(-32768, 32767) >> rng.i32(0, 15))};
  v[0] = {0, 0};
  v[1] = {-32768, -32768};
  v[2] = {300, 400};  // magnitude 500: exact quotients
  for (short t : {short(1), short(250), short(1000), short(32767)}) {
    for (int relOp : {0, 1}) {
      std::vector<WCplx> out(v.size()), inPlace = v;
      ryxvbThresh2(v.data(), out.data(), static_cast<int>(v.size()), t, relOp);
      ryxvbThresh1(inPlace.data(), static_cast<int>(v.size()), t, relOp);
      ASSERT_TRUE(ryxtest::sameBits(inPlace.data(), out.data(), static_cast<int>(v.size())));
      for (size_t i = 0; i < v.size(); ++i) {
        const i64 re = v[i].re, im = v[i].im, m2 = re * re + im * im, t2 = i64{t} * t;
        const bool change = relOp == RYX_GT ? m2 > t2 : m2 < t2;
        if (!change) {
          ASSERT_TRUE(out[i].re == v[i].re && out[i].im == v[i].im);
          continue;
        }
        if (m2 == 0) {
          ASSERT_TRUE(out[i].re == t && out[i].im == 0);
          continue;
        }
        // |part| * t / sqrt(m2): floor for GT, ceiling for LT, decided on integers
        // (k <= q  <=>  k*k*m2 <= p*p*t2 for k >= 0).
        auto expectPart = [&](i64 p, short got) {
          const i64 a = p < 0 ? -p : p;
          const i64 target = static_cast<i64>(a * a) * t2;
          i64 k = 0;
          while (static_cast<i64>((k + 1) * (k + 1)) * m2 <= target) ++k;  // floor
          const bool exact = static_cast<i64>(k * k) * m2 == target;
          const i64 want = relOp == RYX_GT || exact ? k : k + 1;
          ASSERT_EQ(got, p < 0 ? -want : want) << re << "," << im << " t=" << t << " relOp " << relOp;
        };
        expectPart(re, out[i].re);
        expectPart(im, out[i].im);
      }
    }
  }
}

TEST(ElemThresh16, MemoryFailureLeavesTheArrayAndReports) {
  ReportCapture capture;
  WCplx v[] = {{3000, 4000}, {1, 1}};
  {
    ryxtest::FailAllocation fail(1);
    ryxvbThresh1(v, 2, 100, RYX_GT);
  }
  EXPECT_EQ(v[0].re, 3000);
  EXPECT_EQ(v[1].im, 1);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].status, RYX_StsNoMem);
  EXPECT_EQ(capture.reports()[0].context, "Out of memory");
  EXPECT_EQ(capture.reports()[0].funcName, "ryxvbThresh1");
}

}  // namespace
