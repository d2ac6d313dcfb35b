// Up- and down-sampling of all six types against the placement rule
// dst[i*factor + phase] = src[i] written out here, in place, and over a
// stream cut into blocks at random.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

#include "ryxcore.h"
#include "ryxcore/rate.h"

namespace {

// The two routines of each type.
template <class T>
struct Rate {
  static auto pick() {
    if constexpr (std::is_same_v<T, float>) return std::pair{&ryxsUpSample, &ryxsDownSample};
    else if constexpr (std::is_same_v<T, SCplx>) return std::pair{&ryxcUpSample, &ryxcDownSample};
    else if constexpr (std::is_same_v<T, double>) return std::pair{&ryxdUpSample, &ryxdDownSample};
    else if constexpr (std::is_same_v<T, DCplx>) return std::pair{&ryxzUpSample, &ryxzDownSample};
    else if constexpr (std::is_same_v<T, short>) return std::pair{&ryxwUpSample, &ryxwDownSample};
    else return std::pair{&ryxvUpSample, &ryxvDownSample};
  }
  static inline const auto up = pick().first;
  static inline const auto down = pick().second;
};

// A nonzero sample per index, distinct in both parts of the complex types.
template <class T>
T sampleOf(int k) {
  const int v = 1 + k % 30000;
  if constexpr (std::is_same_v<T, WCplx>) return T{short(v), short(-v)};
  else if constexpr (std::is_same_v<T, SCplx>) return T{float(v), float(-v)};
  else if constexpr (std::is_same_v<T, DCplx>) return T{double(v), double(-v) / 3};
  else return T(v);
}

template <class T>
std::vector<T> samples(int n, int seed) {
  std::vector<T> v(n);
  for (int i = 0; i < n; ++i) v[i] = sampleOf<T>(i * 7 + seed);
  return v;
}

template <class T>
bool sameBytes(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0;
}

template <class T>
class Sampling : public ::testing::Test {};
using Types = ::testing::Types<float, SCplx, double, DCplx, short, WCplx>;
TYPED_TEST_SUITE(Sampling, Types);

TYPED_TEST(Sampling, EveryFactorPhaseAndLengthInAndOutOfPlace) {
  using T = TypeParam;
  for (int factor = 1; factor <= 5; ++factor)
    for (int phase = 0; phase < factor; ++phase)
      for (int n = 1; n <= 13; ++n) {
        const std::vector<T> src = samples<T>(n, factor + phase);
        std::vector<T> want(n * factor + 2, T{});  // two guards past the end
        for (int i = 0; i < n; ++i) want[i * factor + phase] = src[i];
        std::vector<T> out(n * factor + 2, T{});
        int len = -1, ph = phase;
        ASSERT_EQ(Rate<T>::up(src.data(), n, out.data(), &len, factor, &ph), 0);
        EXPECT_TRUE(sameBytes(out, want)) << factor << "/" << phase << "/" << n;
        EXPECT_EQ(len, n * factor);
        EXPECT_EQ(ph, phase);
        std::vector<T> inPlace(n * factor + 2, T{});
        std::copy(src.begin(), src.end(), inPlace.begin());
        ASSERT_EQ(Rate<T>::up(inPlace.data(), n, inPlace.data(), &len, factor, &ph), 0);
        EXPECT_TRUE(sameBytes(inPlace, want)) << "in place " << factor << "/" << phase << "/" << n;

        // Down: samples phase, phase+factor, ...; the phase left is the
        // offset of the next wanted sample past the block.
        std::vector<T> kept;
        int next = phase;
        for (; next < n; next += factor) kept.push_back(src[next]);
        std::vector<T> got(n + 1, sampleOf<T>(99999)), wantDown = got;
        std::copy(kept.begin(), kept.end(), wantDown.begin());
        ph = phase;
        ASSERT_EQ(Rate<T>::down(src.data(), n, got.data(), &len, factor, &ph), 0);
        EXPECT_TRUE(sameBytes(got, wantDown)) << factor << "/" << phase << "/" << n;
        EXPECT_EQ(len, static_cast<int>(kept.size()));
        EXPECT_EQ(ph, next - n);
        std::vector<T> same = src;
        ph = phase;
        ASSERT_EQ(Rate<T>::down(same.data(), n, same.data(), &len, factor, &ph), 0);
        EXPECT_TRUE(std::memcmp(same.data(), kept.data(), kept.size() * sizeof(T)) == 0);
      }
}

TYPED_TEST(Sampling, StreamCutAtRandomEqualsOneBlock) {
  using T = TypeParam;
  std::mt19937 rng(11);
  const int n = 500;
  const std::vector<T> src = samples<T>(n, 3);
  for (int factor : {1, 2, 3, 7, 600}) {
    const int phase = factor == 1 ? 0 : static_cast<int>(rng() % factor);
    std::vector<T> whole(n), wholeUp(n * factor);
    int len = 0, ph = phase;
    Rate<T>::down(src.data(), n, whole.data(), &len, factor, &ph);
    whole.resize(len);
    int upLen = 0, upPh = phase;
    Rate<T>::up(src.data(), n, wholeUp.data(), &upLen, factor, &upPh);
    std::vector<T> parts, partsUp;
    int dph = phase;
    for (int at = 0; at < n;) {
      const int block = std::min<int>(n - at, 1 + rng() % 40);
      std::vector<T> out(block), outUp(block * factor);
      int got = 0, uph = phase;
      ASSERT_EQ(Rate<T>::down(src.data() + at, block, out.data(), &got, factor, &dph), 0);
      parts.insert(parts.end(), out.begin(), out.begin() + got);
      ASSERT_EQ(Rate<T>::up(src.data() + at, block, outUp.data(), &got, factor, &uph), 0);
      partsUp.insert(partsUp.end(), outUp.begin(), outUp.end());
      at += block;
    }
    EXPECT_TRUE(sameBytes(parts, whole)) << factor;
    EXPECT_EQ(dph, ph) << factor;
    EXPECT_TRUE(sameBytes(partsUp, wholeUp)) << factor;
  }
}

}  // namespace
