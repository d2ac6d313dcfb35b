// The shared narrowing routines, against a model of their rules written
// here in 64-bit integers and long double.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "int16_model.h"
#include "test_support.h"
#include "vector/scale_narrow.h"

namespace {

using ryxtest::Random;

using i16model::clamp16;
using i16model::floorDiv2;
using i16model::low16;

bool fits(std::int64_t v) { return v >= -32768 && v <= 32767; }

// floor(log2 |v|) - 14 for values beyond 16 bits, else 0.
int intFactor(std::int64_t v) {
  if (fits(v)) return 0;
  const std::int64_t m = v < 0 ? -v : v;
  int k = 0;
  while ((std::int64_t{2} << k) <= m) ++k;
  return k - 14;
}

short modelI32(std::int64_t v, int mode, const int* factor, int* autoFactor) {
  switch (mode) {
    case 4: {
      const int f = intFactor(v);
      *autoFactor = f;
      return low16(floorDiv2(v, f));
    }
    case 2:
    case 3: {
      const std::int64_t f = factor ? *factor : 0;
      std::int64_t s = v;
      if (f > 0) s = floorDiv2(v, static_cast<int>(f > 31 ? 31 : f));
      if (f < 0) s = v * (std::int64_t{1} << (-f > 15 ? 15 : -f));
      return mode == 3 ? clamp16(s) : low16(s);
    }
    case 1: return clamp16(v);
    default: return low16(v);
  }
}

const int kModes[] = {0, 1, 2, 3, 4, 5, 6, 7, -1, 8};
const int kFactors[] = {0, 1, 2, 14, 15, 16, 30, 31, 32, 100, -1, -2, -14, -15, -16, -31, -100, INT_MAX, INT_MIN};

std::vector<int> interestingInts(Random& rng) {
  std::vector<int> v = {0, 1, -1, 32767, -32768, 32768, -32769, 65535, 65536, -65536, -65537, 1 << 20, -(1 << 20),
                        INT_MAX, INT_MIN, INT_MIN + 1, 1073741824, -1073741824};
  for (int i = 0; i < 300; ++i) {
    const int bits = rng.i32(0, 31);
    v.push_back(static_cast<int>(rng.bits() >> (31 - bits)) * (rng.i32(0, 1) ? 1 : -1));
  }
  return v;
}

TEST(ScaleNarrowI32, OneValueUnderEveryModeAndFactor) {
  Random rng(11);
  for (int v : interestingInts(rng)) {
    for (int mode : kModes) {
      for (int fi = -1; fi < static_cast<int>(std::size(kFactors)); ++fi) {
        int given = fi < 0 ? 0 : kFactors[fi];
        int* fp = fi < 0 ? nullptr : &given;
        int autoF = -999;
        const short want = modelI32(v, mode, fp, &autoF);
        int written = given;
        const short got = ownScaleI32(v, mode, fi < 0 && mode != 4 ? nullptr : &written);
        ASSERT_EQ(got, want) << "v=" << v << " mode=" << mode << " factor=" << (fp ? given : 0);
        if (mode == 4) {
          ASSERT_EQ(written, autoF) << v;
          ASSERT_TRUE(fits(floorDiv2(v, autoF))) << "auto scale must make the value fit";
        } else if (fi >= 0) {
          ASSERT_EQ(written, given) << "the factor is only read";
        }
      }
    }
  }
}

TEST(ScaleNarrowI32, ArrayUsesOneFactorThatFitsEveryElement) {
  Random rng(12);
  const std::vector<int> pool = interestingInts(rng);
  for (int trial = 0; trial < 400; ++trial) {
    const int n = 1 + trial % 23;
    std::vector<int> src(n);
    const int scaleBits = trial % 32;
    for (auto& x : src) x = trial % 5 == 0 ? pool[rng.i32(0, static_cast<int>(pool.size()) - 1)]
                                           : static_cast<int>(static_cast<std::int32_t>(rng.bits()) >> (31 - scaleBits));
    for (int mode : kModes) {
      for (int fi = -1; fi < static_cast<int>(std::size(kFactors)); fi += 3) {
        int given = fi < 0 ? 0 : kFactors[fi];
        int* fp = fi < 0 ? nullptr : &given;
        std::vector<short> dst(n + 1, 0x5a5a);
        int written = given;
        ownScaleArrayI32(src.data(), dst.data(), n, mode, mode == 4 ? &written : fp);
        ASSERT_EQ(dst[n], 0x5a5a);
        if (mode == 4) {
          int f = 0;
          for (int x : src) f = std::max(f, intFactor(x));
          ASSERT_EQ(written, f);
          for (int i = 0; i < n; ++i) {
            ASSERT_EQ(dst[i], floorDiv2(src[i], f)) << "element " << i << " must fit after the common shift";
          }
        } else {
          for (int i = 0; i < n; ++i) {
            int unused;
            ASSERT_EQ(dst[i], modelI32(src[i], mode, fp, &unused)) << mode << " " << src[i];
          }
        }
      }
    }
  }
  // The positive and negative limits of equal magnitude need different
  // factors; the array gets the larger.
  const int pair[2] = {32768, -32768};
  short out[2];
  int f = -1;
  ownScaleArrayI32(pair, out, 2, 4, &f);
  EXPECT_EQ(f, 1);
  EXPECT_EQ(out[0], 16384);
  EXPECT_EQ(out[1], -16384);
}

// Float model: the value times 2^-factor in long double (exact here),
// truncated towards zero.
short modelFloat(float x, int mode, int factor) {
  const long double v = std::ldexp(static_cast<long double>(x), factor == INT_MIN ? 4000 : -std::max(-4000, std::min(factor, 4000)));
  const bool saturate = mode == 1 || mode == 3;
  if (std::isnan(v)) return saturate ? (std::signbit(v) ? -32768 : 32767) : 0;
  if (saturate) {
    if (v > 32767.0L) return 32767;
    if (v < -32768.0L) return -32768;
    return static_cast<short>(std::trunc(v));
  }
  if (!(std::fabs(v) < 9223372036854775808.0L)) return 0;
  return low16(static_cast<std::int64_t>(std::trunc(v)));
}

int floatFactor(float x) {
  if (std::isnan(x) || !(x > 32767.0f || x < -32768.0f)) return 0;
  if (std::isinf(x)) return 114;  // the exponent field of infinity, 255, minus 141
  int e;
  std::frexp(x, &e);  // x = m 2^e, 0.5 <= |m| < 1: the binary exponent is e-1
  return e - 1 - 14;
}

std::vector<float> randomFloats(Random& rng, int n, int trial) {
  std::vector<float> v(n);
  const float range = std::ldexp(1.0f, trial % 40);
  for (auto& x : v) x = rng.f32(-range, range);
  const float limits[4] = {32767.0f, -32768.0f, 32768.0f, -32768.5f};
  if (trial % 7 < 4) v[rng.i32(0, n - 1)] = limits[trial % 7];
  if (trial % 11 == 4) v[rng.i32(0, n - 1)] = std::numeric_limits<float>::quiet_NaN();
  if (trial % 13 == 5) v[rng.i32(0, n - 1)] = -std::numeric_limits<float>::quiet_NaN();
  if (trial % 17 == 6) v[rng.i32(0, n - 1)] = 3.0e38f;
  return v;
}

// Float arrays under every mode and factor, and SCplx split arrays, whose
// parts share the larger auto factor.
TEST(ScaleNarrowF32, ArraysUnderEveryModeAndFactor) {
  Random rng(13);
  for (int trial = 0; trial < 300; ++trial) {
    const int n = 1 + trial % 19;
    const std::vector<float> src = randomFloats(rng, n, trial), im = randomFloats(rng, n, trial * 3 + 1);
    for (int mode : kModes) {
      for (int fi = -1; fi < static_cast<int>(std::size(kFactors)); fi += 2) {
        int given = fi < 0 ? 0 : kFactors[fi];
        int* fp = fi < 0 ? nullptr : &given;
        std::vector<short> dst(n + 1, 0x5a5a);
        int written = given;
        ownScaleArrayF32(src.data(), dst.data(), n, mode, mode == 4 ? &written : fp);
        ASSERT_EQ(dst[n], 0x5a5a);
        int f = 0;
        if (mode == 4) {
          for (float x : src) f = std::max(f, floatFactor(x));
          ASSERT_EQ(written, f) << trial;
        } else if (mode == 2 || mode == 3) {
          f = fp ? *fp : 0;
        }
        for (int i = 0; i < n; ++i) ASSERT_EQ(dst[i], modelFloat(src[i], mode == 4 ? 0 : mode, f)) << trial << " " << mode << " " << src[i];
      }
      int given = kFactors[trial % std::size(kFactors)];
      std::vector<short> dre(n), dim(n);
      int written = given;
      ownScaleArraySCplx(src.data(), im.data(), dre.data(), dim.data(), n, mode, &written);
      int f = 0;
      if (mode == 4) {
        for (int i = 0; i < n; ++i) f = std::max({f, floatFactor(src[i]), floatFactor(im[i])});
        ASSERT_EQ(written, f);
      } else if (mode == 2 || mode == 3) {
        f = given;
        ASSERT_EQ(written, given);
      }
      for (int i = 0; i < n; ++i) {
        ASSERT_EQ(dre[i], modelFloat(src[i], mode == 4 ? 0 : mode, f)) << "SCplx " << trial;
        ASSERT_EQ(dim[i], modelFloat(im[i], mode == 4 ? 0 : mode, f)) << "SCplx " << trial;
      }
    }
  }
}

TEST(ScaleNarrowF32, TruncationSaturationAndAutoFactorByExample) {
  const float src[6] = {1.9f, -1.9f, 32767.9f, -32768.9f, 70000.0f, -0.5f};
  short d[6];
  ownScaleArrayF32(src, d, 6, 1, nullptr);
  const short sat[6] = {1, -1, 32767, -32768, 32767, 0};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(d[i], sat[i]) << i;
  ownScaleArrayF32(src, d, 6, 0, nullptr);
  const short wrap[6] = {1, -1, 32767, -32768, static_cast<short>(70000 - 65536), 0};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(d[i], wrap[i]) << i;
  int f = -1;
  ownScaleArrayF32(src, d, 6, 4, &f);
  EXPECT_EQ(f, 2);  // 70000 = 1.07 * 2^16
  EXPECT_EQ(d[4], 17500);
  EXPECT_EQ(d[2], 8191);  // 32767.9 / 4 truncated
  EXPECT_EQ(d[3], -8192);
  const float inRange[2] = {-32768.0f, 32767.0f};
  ownScaleArrayF32(inRange, d, 2, 4, &f);
  EXPECT_EQ(f, 0);
}

}  // namespace
