// Extremes with their first index, norms against long-double and exact
// integer references, the 32-bit scaled norms against the scaling rule
// written out, and normalisation bit for bit against a step-by-step
// reference (16-bit forms over all 65536 values).
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
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

const int kLengths[] = {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 19, 20, 21, 31, 33, 40, 1000, 70001};

// ---- extremes -------------------------------------------------------------

// Data with many repeats, so that ties and the first index matter.
template <class T> T sample(Random& r) {
  const int k = r.i32(0, 60);
  if constexpr (std::is_same_v<T, short>) return static_cast<short>(k == 0 ? -32768 : k == 1 ? 32767 : r.i32(-50, 50));
  else return static_cast<T>(r.i32(-50, 50)) * static_cast<T>(0.5);
}

template <class T>
void extremesSweep(T (*mn)(const T*, int), T (*mx)(const T*, int), T (*mnx)(const T*, int, int*),
                   T (*mxx)(const T*, int, int*)) {
  Random rng(17);
  for (int n : kLengths) {
    for (int offset : {0, 2, 8}) {
      Guarded<T> v(n, offset * static_cast<int>(sizeof(T)) / 2);
      for (int i = 0; i < n; ++i) v[i] = sample<T>(rng);
      const T* lo = std::min_element(v.data(), v.data() + n);  // first of the smallest
      const T* hi = std::max_element(v.data(), v.data() + n);  // first of the largest
      EXPECT_EQ(mn(v.data(), n), *lo) << n;
      EXPECT_EQ(mx(v.data(), n), *hi) << n;
      int at = -1;
      EXPECT_EQ(mnx(v.data(), n, &at), *lo);
      EXPECT_EQ(at, lo - v.data()) << n;
      EXPECT_EQ(mxx(v.data(), n, &at), *hi);
      EXPECT_EQ(at, hi - v.data()) << n;
      EXPECT_EQ(mnx(v.data(), n, nullptr), *lo);
      EXPECT_EQ(mxx(v.data(), n, nullptr), *hi);
      EXPECT_TRUE(v.intact());
    }
  }
}

TEST(StatsExtremes, ValuesAndFirstIndexAgainstScan) {
  extremesSweep<float>(ryxsMin, ryxsMax, ryxsMinExt, ryxsMaxExt);
  extremesSweep<double>(ryxdMin, ryxdMax, ryxdMinExt, ryxdMaxExt);
  extremesSweep<short>(ryxwMin, ryxwMax, ryxwMinExt, ryxwMaxExt);
  // Thirty elements, the minimum at 3 and at 25: index 3.
  std::vector<short> w(30, 7);
  w[3] = w[25] = -9;
  int at = -1;
  EXPECT_EQ(ryxwMinExt(w.data(), 30, &at), -9);
  EXPECT_EQ(at, 3);
}

// ---- norms ------------------------------------------------------------------

template <class T> LD part(const T& x, int k) {
  if constexpr (std::is_arithmetic_v<T>) return k == 0 ? LD(x) : 0;
  else return k == 0 ? LD(x.re) : LD(x.im);
}

// The norm of a kind on exact long-double differences.
template <class T>
LD refNorm(int kind, const T* a, const T* b, int n) {
  LD r = 0;
  for (int i = 0; i < n; ++i) {
    const LD re = part(a[i], 0) - (b ? part(b[i], 0) : 0), im = part(a[i], 1) - (b ? part(b[i], 1) : 0);
    const LD sq = re * re + im * im;
    if (kind == RYX_C) r = std::max(r, std::sqrt(sq));
    else if (kind == RYX_L1) r += std::sqrt(sq);
    else r += sq;
  }
  return r;
}

template <class R>
LD refFull(int flag, LD r, LD d) {
  const int kind = flag & ~RYX_RELATIVE;
  if (flag & RYX_RELATIVE) {
    if (r < std::numeric_limits<R>::min()) return 0;
    if (d < std::numeric_limits<R>::min()) return std::numeric_limits<R>::max();
    r /= d;
  }
  return kind == RYX_L2 ? std::sqrt(r) : r;
}

template <class T, class R>
void normSweep(R (*f)(const T*, const T*, int, int), LD eps) {
  Random rng(23);
  for (int n : {1, 2, 3, 5, 8, 17, 40, 1001}) {
    std::vector<T> a(n), b(n);
    if constexpr (std::is_same_v<T, short>) {
      for (int i = 0; i < n; ++i) a[i] = static_cast<short>(rng.i32(-32768, 32767)), b[i] = static_cast<short>(rng.i32(-32768, 32767));
    } else if constexpr (std::is_same_v<T, WCplx>) {
      for (int i = 0; i < n; ++i)
        a[i] = {static_cast<short>(rng.i32(-32768, 32767)), static_cast<short>(rng.i32(-32768, 32767))},
        b[i] = {static_cast<short>(rng.i32(-32768, 32767)), -32768};
    } else {
      rng.fill(a.data(), n);
      rng.fill(b.data(), n);
    }
    for (int kind : {int{RYX_C}, int{RYX_L1}, int{RYX_L2}, int{RYX_L2SQUARED}}) {
      for (int rel : {0, int{RYX_RELATIVE}}) {
        const int flag = kind | rel;
        const LD r = refNorm(kind, a.data(), b.data(), n), d = refNorm(kind, a.data(), static_cast<const T*>(nullptr), n);
        const LD want = refFull<R>(flag, r, d);
        const LD got = f(a.data(), b.data(), n, flag);
        EXPECT_LE(std::fabs(got - want), eps * want) << n << " flag " << flag;
        if (!rel) {
          const LD alone = f(a.data(), nullptr, n, flag);
          const LD wantAlone = refFull<R>(flag, d, d);
          EXPECT_LE(std::fabs(alone - wantAlone), eps * wantAlone) << n << " flag " << flag;
        }
      }
    }
  }
}

TEST(StatsNorm, KindsAgainstLongDouble) {
  // Float types: a rounding per difference and one at the end, with
  // double sums; 16-bit sums are exact, so only the final rounding stays.
  const LD f = 6 * std::ldexp(1.0L, -24), d = 2000 * std::ldexp(1.0L, -53);
  normSweep<float>(ryxsNorm, f);
  normSweep<SCplx>(ryxcNorm, f);
  normSweep<double>(ryxdNorm, d);
  normSweep<DCplx>(ryxzNorm, d);
  normSweep<short>(ryxwNorm, f);
  normSweep<WCplx>(ryxvNorm, f);
}

TEST(StatsNorm, IntegerNormsAreExactBeforeTheirRounding) {
  // 16-bit differences in 32 bits: -32768 - 32767 does not wrap.
  const short a[2] = {-32768, 32767}, b[2] = {32767, -32768};
  EXPECT_EQ(ryxwNorm(a, b, 2, RYX_C), 65535.0f);
  EXPECT_EQ(ryxwNorm(a, b, 2, RYX_L1), 131070.0f);
  EXPECT_EQ(ryxwNorm(a, b, 2, RYX_L2SQUARED), static_cast<float>(2.0 * 65535 * 65535));
  const WCplx v[1] = {{3, -4}}, z[1] = {{0, 0}};
  EXPECT_EQ(ryxvNorm(v, z, 1, RYX_C), 5.0f);
  EXPECT_EQ(ryxvNorm(v, nullptr, 1, RYX_L2SQUARED), 25.0f);
}

TEST(StatsNorm, RelativeEdges) {
  ReportCapture capture;
  const float a[3] = {1.0f, -2.0f, 3.0f}, zeros[3] = {0, 0, 0};
  EXPECT_EQ(ryxsNorm(a, nullptr, 3, RYX_L2 | RYX_RELATIVE), 1.0f);
  EXPECT_EQ(ryxsNorm(a, a, 3, RYX_C | RYX_RELATIVE), 0.0f);
  EXPECT_EQ(ryxsNorm(zeros, a, 3, RYX_L1 | RYX_RELATIVE), FLT_MAX);
  EXPECT_EQ(ryxsNorm(a, zeros, 3, RYX_L2SQUARED | RYX_RELATIVE), 1.0f);  // flag 24
  const double da[2] = {1.0, 2.0}, dz[2] = {0, 0};
  EXPECT_EQ(ryxdNorm(dz, da, 2, RYX_C | RYX_RELATIVE), DBL_MAX);
  EXPECT_EQ(ryxdNorm(da, nullptr, 2, RYX_C | RYX_RELATIVE), 1.0);
  // Relative L2 is the root of the ratio of the sums of squares.
  const float b[3] = {1.0f, -2.0f, 1.0f};
  EXPECT_FLOAT_EQ(ryxsNorm(a, b, 3, RYX_L2 | RYX_RELATIVE), std::sqrt(4.0f / 14.0f));
  EXPECT_TRUE(capture.reports().empty());
}

// The scaling of a norm x to 32 bits, written out in long double.
int modelScale(LD x, int mode, int* factor) {
  const auto trunc32 = [](LD d) -> int {
    if (!(d > -2147483649.0L && d < 2147483648.0L)) return INT_MIN;
    return static_cast<int>(d);
  };
  if (mode & 4) {
    if (x + 0.5L <= 2147483647.0L) return *factor = 0, trunc32(x + 0.5L);
    int f = 1;
    while (std::ldexp(1.0L, f) * 2147483648.0L < x) ++f;
    *factor = f;
    return trunc32(x / std::ldexp(1.0L, f) + 0.5L);
  }
  if (mode & 2) x = std::ldexp(x, -*factor);
  const LD d = x + 0.5L;
  if ((mode & 1) && d > 2147483647.0L) return INT_MAX;
  return trunc32(d);
}

TEST(StatsNorm, ScaledNormsFollowTheRoundingRule) {
  Random rng(41);
  for (int n : {1, 3, 40, 100000}) {
    std::vector<short> a(n), b(n);
    std::vector<WCplx> c(n);
    for (int i = 0; i < n; ++i) {
      a[i] = static_cast<short>(rng.i32(-32768, 32767)), b[i] = static_cast<short>(rng.i32(-32768, 32767));
      c[i] = {a[i], b[i]};
    }
    for (int flag : {int{RYX_C}, int{RYX_L1}, int{RYX_L2}, int{RYX_L2SQUARED}, RYX_L1 | RYX_RELATIVE}) {
      const LD xw = ryxwNorm(a.data(), b.data(), n, flag), xv = ryxvNorm(c.data(), nullptr, n, flag);
      for (int mode : {0, 1, 2, 3, 4, 5, 8}) {
        for (int f : {-40, -3, -1, 0, 1, 7, 31, 32, 45}) {
          int got = f, want = f;
          EXPECT_EQ(ryxwNormExt(a.data(), b.data(), n, flag, mode, &got), modelScale(xw, mode, &want))
              << n << " flag " << flag << " mode " << mode << " f " << f;
          EXPECT_EQ(got, want);
          got = f, want = f;
          EXPECT_EQ(ryxvNormExt(c.data(), nullptr, n, flag, mode, &got), modelScale(xv, mode, &want));
          EXPECT_EQ(got, want);
          if (mode & 4) break;
        }
      }
    }
  }
  // 100000 elements of 30000: L1 is 3e9, beyond 32 bits.
  const std::vector<short> big(100000, 30000);
  int f = 0;
  EXPECT_EQ(ryxwNormExt(big.data(), nullptr, 100000, RYX_L1, 4, &f), 1500000000);
  EXPECT_EQ(f, 1);
  EXPECT_EQ(ryxwNormExt(big.data(), nullptr, 100000, RYX_L1, 1, nullptr), INT_MAX);
  f = 2;
  EXPECT_EQ(ryxwNormExt(big.data(), nullptr, 100000, RYX_L1, 2, &f), 750000000);
}

TEST(StatsNorm, ScaledNormTracesAFailedNorm) {
  ReportCapture capture;
  const short a[2] = {1, 2};
  int f = 5;
  EXPECT_EQ(ryxwNormExt(a, nullptr, 0, RYX_L1, 2, &f), 0);
  ASSERT_EQ(capture.reports().size(), 2u);
  EXPECT_EQ(capture.reports()[0].funcName, "ryxwNorm");
  EXPECT_EQ(capture.reports()[0].context, "n<=0");
  EXPECT_EQ(capture.reports()[1].status, RYX_StsBacktrace);
  EXPECT_EQ(capture.reports()[1].funcName, "ryxwNormExt");
  EXPECT_EQ(capture.reports()[1].context, "");
  EXPECT_EQ(capture.reports()[1].file, "ryxnorm");
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
  capture.clear();
  const WCplx v[1] = {{1, 1}};
  EXPECT_EQ(ryxvNormExt(v, v, 1, 3, 0, nullptr), 0);
  ASSERT_EQ(capture.reports().size(), 2u);
  EXPECT_EQ(capture.reports()[0].context, "flag is wrong");
  EXPECT_EQ(capture.reports()[1].funcName, "ryxvNormExt");
}

// ---- normalisation ------------------------------------------------------

short low16(LD v) {
  long long t = static_cast<long long>(v) % 65536;
  if (t < 0) t += 65536;
  return static_cast<short>(t >= 32768 ? t - 65536 : t);
}

TEST(StatsNormalize, Int16AllValuesRoundHalfEvenAndWrap) {
  std::vector<short> src(65536), dst(65536), in(65536);
  for (int i = 0; i < 65536; ++i) src[i] = static_cast<short>(i - 32768);
  std::vector<WCplx> vs(65536), vd(65536);
  for (int i = 0; i < 65536; ++i) vs[i] = {src[i], src[65535 - i]};
  for (short offset : {0, 1, -1, 1234, 32767, -32768}) {
    for (float factor : {1.0f, 0.5f, 2.0f, 3.0f, -3.0f, 0.7f, 1000.0f, -0.1f}) {
      const float inv = static_cast<float>(1.0L / factor);
      ryxwbNormalize(src.data(), dst.data(), 65536, offset, factor);
      const WCplx off{offset, static_cast<short>(-offset)};
      ryxvbNormalize(vs.data(), vd.data(), 65536, off, factor);
      for (int i = 0; i < 65536; ++i) {
        // The float product, then rounded to nearest even; the wrapped
        // low 16 bits are the result while the product stays within 2^22.
        const auto expect = [inv](int difference) -> int {
          const float p = static_cast<float>(LD(static_cast<float>(difference)) * inv);
          return std::fabs(p) < 4194304.0f ? low16(std::nearbyint(LD(p))) : INT_MIN;  // INT_MIN: not modelled
        };
        const int w = expect(src[i] - offset), re = expect(vs[i].re - off.re), im = expect(vs[i].im - off.im);
        if (w != INT_MIN) {
          ASSERT_EQ(dst[i], w) << src[i] << " " << factor;
        }
        if (re != INT_MIN) {
          ASSERT_EQ(vd[i].re, re) << vs[i].re << " " << factor;
        }
        if (im != INT_MIN) {
          ASSERT_EQ(vd[i].im, im) << vs[i].im << " " << factor;
        }
      }
      in = src;
      ryxwbNormalize(in.data(), in.data(), 65536, offset, factor);
      EXPECT_EQ(in, dst) << "in place";
    }
  }
  const short top[1] = {32767};
  short out[1];
  ryxwbNormalize(top, out, 1, 0, 1.0f);
  EXPECT_EQ(out[0], 32767);
  ryxwbNormalize(top, out, 1, 0, 0.5f);
  EXPECT_EQ(out[0], -2);
}

TEST(StatsNormalize, FloatStepsBitForBit) {
  Random rng(77);
  for (int n : {1, 2, 3, 17, 1000}) {
    for (int offset : {0, 4}) {
      Guarded<float> s(n, offset), sd(n, offset);
      Guarded<SCplx> c(n, offset), cd(n, offset);
      Guarded<double> d(n, 2 * offset), dd(n, 2 * offset);
      Guarded<DCplx> z(n, 2 * offset), zd(n, 2 * offset);
      rng.fill(s.data(), n), rng.fill(c.data(), n), rng.fill(d.data(), n), rng.fill(z.data(), n);
      const float off = rng.f32(), factor = rng.f32(0.1f, 10.0f);
      const SCplx coff{rng.f32(), rng.f32()};
      const double doff = rng.f64(), dfactor = rng.f64(-10.0, -0.1);
      const DCplx zoff{rng.f64(), rng.f64()};
      ryxsbNormalize(s.data(), sd.data(), n, off, factor);
      ryxcbNormalize(c.data(), cd.data(), n, coff, factor);
      ryxdbNormalize(d.data(), dd.data(), n, doff, dfactor);
      ryxzbNormalize(z.data(), zd.data(), n, zoff, dfactor);
      // Each step rounded once: the float difference, the float reciprocal,
      // the float product (exact products of floats in long double).
      const LD inv = static_cast<float>(1.0L / factor);
      const auto step = [inv](float x, float o) { return static_cast<float>(LD(static_cast<float>(LD(x) - o)) * inv); };
      const double dinv = 1.0 / dfactor;
      for (int i = 0; i < n; ++i) {
        ASSERT_EQ(sd[i], step(s[i], off)) << i;
        ASSERT_EQ(cd[i].re, step(c[i].re, coff.re));
        ASSERT_EQ(cd[i].im, step(c[i].im, coff.im));
        // Double: within an ulp of the exact value of (x - o) / factor.
        const LD e = (LD(d[i]) - doff) * dinv, ez = (LD(z[i].im) - zoff.im) * dinv;
        EXPECT_LE(std::fabs(dd[i] - e), std::ldexp(std::fabs(e), -51));
        EXPECT_LE(std::fabs(zd[i].im - ez), std::ldexp(std::fabs(ez), -51));
      }
      EXPECT_TRUE(sd.intact() && cd.intact() && dd.intact() && zd.intact());
    }
  }
}

}  // namespace
