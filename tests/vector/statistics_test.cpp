// Sums, means and standard deviations: float and double forms against
// long-double references within a bound of their accumulation chains,
// 16-bit forms against exact integer rules written out here (scale by
// bits, truncation, halving), and the argument checks of the family.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;
using LD = long double;

const int kLengths[] = {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 40, 1000, 40000, 70001};
const LD kF = std::ldexp(1.0L, -24), kD = std::ldexp(1.0L, -53);

// Bound for the float lane sums: a strip lane is at most 32768 / 4
// additions long, the extended part adds nothing that matters, and the
// final rounding is half an ulp.
LD floatBound(int n, LD magnitude, LD value) {
  return (std::min(n, 32768) / 4 + 8) * kF * magnitude + std::fabs(value) * kF;
}

TEST(StatsSum, FloatAndDoubleAgainstLongDouble) {
  Random rng(11);
  for (int n : kLengths) {
    for (int offset : {0, 4, 8, 12}) {
      Guarded<float> s(n, offset);
      Guarded<SCplx> c(n, offset);
      Guarded<double> d(n, 2 * offset);
      Guarded<DCplx> z(n, 2 * offset);
      rng.fill(s.data(), n);
      rng.fill(c.data(), n);
      rng.fill(d.data(), n);
      rng.fill(z.data(), n);
      LD rs = 0, ms = 0, rc[2] = {0, 0}, mc[2] = {0, 0}, rd = 0, md = 0, rz[2] = {0, 0}, mz[2] = {0, 0};
      for (int i = 0; i < n; ++i) {
        rs += s[i], ms += std::fabs(s[i]);
        rc[0] += c[i].re, rc[1] += c[i].im, mc[0] += std::fabs(c[i].re), mc[1] += std::fabs(c[i].im);
        rd += d[i], md += std::fabs(d[i]);
        rz[0] += z[i].re, rz[1] += z[i].im, mz[0] += std::fabs(z[i].re), mz[1] += std::fabs(z[i].im);
      }
      EXPECT_LE(std::fabs(ryxsSum(s.data(), n) - rs), floatBound(n, ms, rs)) << n << " " << offset;
      EXPECT_LE(std::fabs(ryxsMean(s.data(), n) - rs / n), floatBound(n, ms, rs) / n) << n;
      EXPECT_LE(std::fabs(ryxdSum(d.data(), n) - rd), (n + 1) * kD * md) << n;
      EXPECT_LE(std::fabs(ryxdMean(d.data(), n) - rd / n), (n + 2) * kD * md / n) << n;
      SCplx cs{}, cm{};
      DCplx zs{}, zm{};
      EXPECT_EQ(ryxcSum(c.data(), n, &cs), RYX_StsOk);
      EXPECT_EQ(ryxcMean(c.data(), n, &cm), RYX_StsOk);
      EXPECT_EQ(ryxzSum(z.data(), n, &zs), RYX_StsOk);
      EXPECT_EQ(ryxzMean(z.data(), n, &zm), RYX_StsOk);
      const float cp[2] = {cs.re, cs.im}, cmp[2] = {cm.re, cm.im};
      const double zp[2] = {zs.re, zs.im}, zmp[2] = {zm.re, zm.im};
      for (int k = 0; k < 2; ++k) {
        EXPECT_LE(std::fabs(cp[k] - rc[k]), floatBound(n, mc[k], rc[k])) << n << " " << offset;
        EXPECT_LE(std::fabs(cmp[k] - rc[k] / n), floatBound(n, mc[k], rc[k]) / n + kF * std::fabs(rc[k] / n)) << n;
        EXPECT_LE(std::fabs(zp[k] - rz[k]), (n + 1) * kD * mz[k]) << n;
        EXPECT_LE(std::fabs(zmp[k] - rz[k] / n), (n + 3) * kD * mz[k] / n) << n;
      }
      EXPECT_TRUE(s.intact() && c.intact() && d.intact() && z.intact());
    }
  }
}

TEST(StatsSum, FloatSumsInExtendedPrecisionAcrossStrips) {
  // 2^24 followed by ones: a single float accumulator would stay at 2^24;
  // four lanes and the extended accumulator keep all but the ones that
  // share the big element's lane.
  const int n = 4001;
  std::vector<float> v(n, 1.0f);
  v[0] = 16777216.0f;
  const float got = ryxsSum(v.data(), n);
  EXPECT_GE(got, 16777216.0f + 2000.0f);
  // Strip totals meet in extended precision: the first strip sums to
  // 67074050 (exact in its lanes, not in a float), the second to -67076096.
  Guarded<float> w(2 * 32768, 0);
  for (int i = 0; i < 32768; ++i) w[i] = 2047.0f, w[32768 + i] = -2047.0f;
  w[0] = 1.0f;
  EXPECT_EQ(ryxsSum(w.data(), 2 * 32768), -2046.0f);
  EXPECT_EQ(ryxsMean(w.data(), 2 * 32768), static_cast<float>(-2046.0L / 65536));
}

// ---- 16-bit sums ---------------------------------------------------------

std::int32_t low32(std::int64_t v) {
  std::int64_t m = v % 4294967296LL;
  if (m < 0) m += 4294967296LL;
  return static_cast<std::int32_t>(m >= 2147483648LL ? m - 4294967296LL : m);
}
std::int64_t floorDiv(std::int64_t v, int s) {
  if (s >= 62) return v < 0 ? -1 : 0;
  const std::int64_t d = std::int64_t{1} << s;
  return v / d - ((v % d != 0 && v < 0) ? 1 : 0);
}
std::int32_t clamp32(std::int64_t v) { return static_cast<std::int32_t>(std::clamp<std::int64_t>(v, INT_MIN, INT_MAX)); }
bool fits32(std::int64_t v) { return v >= INT_MIN && v <= INT_MAX; }

// The documented rule for one 64-bit sum; `factor` is read or written.
std::int32_t modelSum(std::int64_t s, int mode, int* factor) {
  if (mode & 4) {
    int k = 0;
    while (!fits32(floorDiv(s, k))) ++k;  // least shift that fits
    *factor = k;
    return static_cast<std::int32_t>(floorDiv(s, k));
  }
  const int f = (mode & 2) ? *factor : 0;
  if (mode & 1) {
    if (f >= 0) return clamp32(floorDiv(s, f));
    if (s == 0) return 0;
    if (f < -40) return s > 0 ? INT_MAX : INT_MIN;
    const LD v = std::ldexp(static_cast<LD>(s), -f);  // exact: s has at most 48 bits
    return v > INT_MAX ? INT_MAX : v < INT_MIN ? INT_MIN : static_cast<std::int32_t>(v);
  }
  if (f < -31) return 0;
  if (f < 0) return low32(low32(s) * (std::int64_t{1} << -f));
  if (f > 0) return low32(f >= 62 ? 0 : s / (std::int64_t{1} << f));  // towards zero
  return low32(s);
}

std::vector<short> data16(Random& rng, int n, int kind) {
  std::vector<short> v(n);
  for (short& x : v) {
    switch (kind) {
      case 0: x = static_cast<short>(rng.i32(-32768, 32767)); break;
      case 1: x = 32767; break;
      case 2: x = -32768; break;
      default: x = static_cast<short>(rng.i32(0, 3) == 0 ? -32768 : rng.i32(20000, 32767)); break;
    }
  }
  return v;
}

TEST(StatsSum, Int16ScaleRulesByBits) {
  Random rng(21);
  const int modes[] = {0, 1, 2, 3, 4, 5, 8, 9, 10, 12};
  const int factors[] = {-70, -32, -31, -20, -5, -1, 0, 1, 2, 5, 17, 31, 32, 40, 63, 70};
  for (int n : {1, 2, 17, 65536, 200001}) {
    for (int kind = 0; kind < 4; ++kind) {
      const std::vector<short> w = data16(rng, n, kind);
      std::vector<WCplx> v(n);
      for (int i = 0; i < n; ++i) v[i] = {w[i], w[n - 1 - i]};
      std::int64_t s = 0, re = 0, im = 0;
      for (int i = 0; i < n; ++i) s += w[i], re += v[i].re, im += v[i].im;
      for (int mode : modes) {
        for (int f : factors) {
          int got = f, want = f;
          EXPECT_EQ(ryxwSum(w.data(), n, mode, &got), modelSum(s, mode, &want)) << n << " " << mode << " " << f;
          EXPECT_EQ(got, want);
          // Complex: one factor for both parts, the larger of their own.
          int fr = f, fi = f, fv = f;
          const std::int32_t mr = modelSum(re, mode, &fr), mi = modelSum(im, mode, &fi);
          ICplx out{};
          ASSERT_EQ(ryxvSum(v.data(), n, &out, mode, &fv), RYX_StsOk);
          if (mode & 4) {
            const int k = std::max(fr, fi);
            EXPECT_EQ(fv, k);
            EXPECT_EQ(out.re, floorDiv(re, k));
            EXPECT_EQ(out.im, floorDiv(im, k));
          } else {
            EXPECT_EQ(out.re, mr) << n << " " << mode << " " << f;
            EXPECT_EQ(out.im, mi);
          }
          if (mode & 4) break;  // the factor is not read
        }
      }
    }
  }
  // 65536 elements of 32767 fit 32 bits: no scaling.
  const std::vector<short> full(65536, 32767);
  int f = 9;
  EXPECT_EQ(ryxwSum(full.data(), 65536, 4, &f), 2147418112);
  EXPECT_EQ(f, 0);
  // 2^31 after the sum needs one shift: the lower word's sign differs.
  const std::vector<short> top(65540, 32767);
  const std::int64_t s = 65540LL * 32767;  // 2147549180: upper word 0, lower word negative
  EXPECT_EQ(ryxwSum(top.data(), 65540, 4, &f), static_cast<std::int32_t>(s / 2));
  EXPECT_EQ(f, 1);
}

TEST(StatsMean, Int16TruncatesTowardsZero) {
  const short a[3] = {-3, 0, 1};  // -2 / 3
  EXPECT_EQ(ryxwMean(a, 3), 0);
  const short b[2] = {-3, 0};
  EXPECT_EQ(ryxwMean(b, 2), -1);
  const WCplx v[2] = {{-3, 3}, {0, 0}};
  WCplx m{9, 9};
  EXPECT_EQ(ryxvMean(v, 2, &m), RYX_StsOk);
  EXPECT_EQ(m.re, -1);
  EXPECT_EQ(m.im, 1);
  Random rng(3);
  for (int n : {1, 5, 1000, 70001}) {
    const std::vector<short> w = data16(rng, n, n % 4);
    std::int64_t s = 0;
    for (short x : w) s += x;
    const std::int64_t q = (s < 0 ? -s : s) / n;
    EXPECT_EQ(ryxwMean(w.data(), n), s < 0 ? -q : q);
  }
}

// ---- standard deviation ---------------------------------------------------

TEST(StatsDev, FloatAndDoubleAgainstTwoPassLongDouble) {
  Random rng(8);
  for (int n : kLengths) {
    if (n < 2) continue;
    for (int offset : {0, 4}) {
      Guarded<float> s(n, offset);
      Guarded<double> d(n, 2 * offset);
      for (int i = 0; i < n; ++i) s[i] = rng.f32(-50.0f, 150.0f), d[i] = rng.f64(-50.0, 150.0);
      LD ms = 0, md = 0, qs = 0, qd = 0, sq = 0, dq = 0;
      for (int i = 0; i < n; ++i) ms += s[i], md += d[i], sq += LD(s[i]) * s[i], dq += LD(d[i]) * d[i];
      ms /= n, md /= n;
      for (int i = 0; i < n; ++i) qs += (s[i] - ms) * (s[i] - ms), qd += (d[i] - md) * (d[i] - md);
      const LD refS = std::sqrt(qs / (n - 1)), refD = std::sqrt(qd / (n - 1));
      // The variance is off by the error of the sum of squares; the root
      // halves the relative error.
      const LD gotS = ryxsStdDev(s.data(), n), gotD = ryxdStdDev(d.data(), n);
      EXPECT_LE(std::fabs(gotS * gotS - refS * refS), floatBound(n, 2 * sq, 0) / (n - 1) + 2 * kF * refS * refS) << n;
      EXPECT_LE(std::fabs(gotD * gotD - refD * refD), (n + 4) * kD * 2 * dq / (n - 1)) << n;
    }
  }
  // Constant data: zero, never a NaN from a rounding below zero.
  std::vector<float> c(1001, 0.1f);
  std::vector<double> e(1001, 0.1);
  // The bound is the root of the error bound of the sum of squares.
  EXPECT_GE(ryxsStdDev(c.data(), 1001), 0.0f);
  EXPECT_LE(ryxsStdDev(c.data(), 1001), std::sqrt(floatBound(1001, 2 * 1001 * 0.01L, 0) / 1000));
  EXPECT_GE(ryxdStdDev(e.data(), 1001), 0.0);
  EXPECT_LE(ryxdStdDev(e.data(), 1001), std::sqrt(1005 * kD * 2 * 1001 * 0.01L / 1000));
}

// The exact deviation of integer data, by its rational variance (n up to
// a few thousand keeps n * q and s * s within 64 bits).
LD exactDev(const std::vector<short>& w) {
  std::int64_t s = 0, q = 0;
  for (short x : w) s += x, q += std::int64_t{x} * x;
  const std::int64_t n = static_cast<std::int64_t>(w.size());
  return std::sqrt(static_cast<LD>(n * q - s * s) / static_cast<LD>(n * (n - 1)));
}

short low16(LD v) {
  const std::int64_t t = static_cast<std::int64_t>(std::fmod(std::trunc(v), 65536.0L));
  return static_cast<short>(((t % 65536) + 65536) % 65536 >= 32768 ? t % 65536 - (t >= 0 ? 65536 : 0) : t % 65536);
}

TEST(StatsDev, Int16HalvingAndTruncation) {
  Random rng(31);
  for (int n : {2, 3, 10, 1000}) {
    for (int kind = 0; kind < 4; ++kind) {
      const std::vector<short> w = data16(rng, n, kind);
      const LD v = exactDev(w);
      for (int mode : {0, 1, 2, 3, 4, 5, 6, 7, 8}) {
        for (int f : {-3, -1, 0, 1, 2, 15}) {
          int got = f;
          const int r = ryxwStdDev(w.data(), n, mode, &got);
          LD x = v;
          if (mode & 4) {
            int k = 0;
            for (; x > 32767.0L; ++k) x /= 2;
            EXPECT_EQ(got, k);
          } else {
            if (mode & 2) x = f >= 0 ? x / std::ldexp(1.0L, f) : x * std::ldexp(1.0L, -f);
            if ((mode & 1) && x > 32767.0L) x = 32767.0L;
            EXPECT_EQ(got, f) << "the factor is only written under auto scaling";
          }
          EXPECT_EQ(r, low16(x)) << n << " mode " << mode << " f " << f << " dev " << static_cast<double>(v);
          if (mode & 4) break;
        }
      }
      EXPECT_EQ(ryxwStdDev(w.data(), n, 2, nullptr), low16(v)) << "a null fixed factor is 0";
    }
  }
  // {-32768, 32767}: deviation 65535 / sqrt(2) = 46340.2; wraps to -19196.
  const short e[2] = {-32768, 32767};
  EXPECT_EQ(ryxwStdDev(e, 2, 0, nullptr), 46340 - 65536);
  EXPECT_EQ(ryxwStdDev(e, 2, 1, nullptr), 32767);
  int f = 0;
  EXPECT_EQ(ryxwStdDev(e, 2, 4, &f), 23170);
  EXPECT_EQ(f, 1);
}

}  // namespace
