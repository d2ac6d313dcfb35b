// Up- and down-sampling of all six types against the placement rule
// dst[i*factor + phase] = src[i] written out here, in place, and over a
// stream cut into blocks at random.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <type_traits>
#include <vector>

#include "ryxcore.h"

namespace {

template <class T>
auto routines() {
  if constexpr (std::is_same_v<T, float>) return std::pair{&ryxsUpSample, &ryxsDownSample};
  else if constexpr (std::is_same_v<T, SCplx>) return std::pair{&ryxcUpSample, &ryxcDownSample};
  else if constexpr (std::is_same_v<T, double>) return std::pair{&ryxdUpSample, &ryxdDownSample};
  else if constexpr (std::is_same_v<T, DCplx>) return std::pair{&ryxzUpSample, &ryxzDownSample};
  else if constexpr (std::is_same_v<T, short>) return std::pair{&ryxwUpSample, &ryxwDownSample};
  else return std::pair{&ryxvUpSample, &ryxvDownSample};
}

// Nonzero samples, distinct in both parts of the complex types.
template <class T>
std::vector<T> samples(int n, int seed) {
  std::vector<T> v(n);
  for (int i = 0; i < n; ++i) {
    const short k = static_cast<short>(1 + (i * 7 + seed) % 30000);
    if constexpr (std::is_arithmetic_v<T>) v[i] = T(k);
    else v[i] = T{decltype(T{}.re)(k), decltype(T{}.re)(-k)};
  }
  return v;
}

template <class T>
bool same(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

template <class T>
class Sampling : public ::testing::Test {};
using Types = ::testing::Types<float, SCplx, double, DCplx, short, WCplx>;
TYPED_TEST_SUITE(Sampling, Types);

TYPED_TEST(Sampling, EveryFactorPhaseLengthInPlaceAndAcrossBlocks) {
  using T = TypeParam;
  const auto [up, down] = routines<T>();
  for (int factor = 1; factor <= 5; ++factor)
    for (int phase = 0; phase < factor; ++phase)
      for (int n = 1; n <= 13; ++n) {
        const std::vector<T> src = samples<T>(n, factor + phase);
        std::vector<T> want(n * factor + 1, T{}), out = want, inPlace = want;  // one guard past the end
        for (int i = 0; i < n; ++i) want[i * factor + phase] = src[i];
        std::copy(src.begin(), src.end(), inPlace.begin());
        int len = -1, ph = phase;
        ASSERT_EQ(up(src.data(), n, out.data(), &len, factor, &ph), 0);
        ASSERT_EQ(up(inPlace.data(), n, inPlace.data(), &len, factor, &ph), 0);
        EXPECT_TRUE(same(out, want) && same(inPlace, want)) << factor << "/" << phase << "/" << n;
        EXPECT_TRUE(len == n * factor && ph == phase);
        std::vector<T> kept, got(n + 1, T{}), self = src;
        int next = phase;
        for (; next < n; next += factor) kept.push_back(src[next]);
        ASSERT_EQ(down(src.data(), n, got.data(), &len, factor, &ph), 0);
        EXPECT_TRUE(len == static_cast<int>(kept.size()) && ph == next - n);
        got.resize(len);
        EXPECT_TRUE(same(got, kept)) << factor << "/" << phase << "/" << n;
        ph = phase;
        ASSERT_EQ(down(self.data(), n, self.data(), &len, factor, &ph), 0);
        self.resize(len);
        EXPECT_TRUE(same(self, kept));
      }
  // A stream cut at random gives the samples of one call on the whole.
  std::mt19937 rng(11);
  const int n = 500;
  const std::vector<T> src = samples<T>(n, 3);
  for (int factor : {1, 3, 7, 600}) {
    const int phase = factor == 1 ? 0 : static_cast<int>(rng() % factor);
    std::vector<T> whole(n), wholeUp(n * factor), parts, partsUp;
    int len = 0, ph = phase, dph = phase;
    down(src.data(), n, whole.data(), &len, factor, &ph);
    whole.resize(len);
    up(src.data(), n, wholeUp.data(), &len, factor, &dph);
    for (int at = 0, block; at < n; at += block) {
      block = std::min<int>(n - at, 1 + rng() % 40);
      std::vector<T> out(block), outUp(block * factor);
      ASSERT_EQ(down(src.data() + at, block, out.data(), &len, factor, &dph), 0);
      parts.insert(parts.end(), out.begin(), out.begin() + len);
      int uph = phase;
      ASSERT_EQ(up(src.data() + at, block, outUp.data(), &len, factor, &uph), 0);
      partsUp.insert(partsUp.end(), outUp.begin(), outUp.end());
    }
    EXPECT_TRUE(same(parts, whole) && dph == ph && same(partsUp, wholeUp)) << factor;
  }
}

}  // namespace
