// Resampling filter: the reduced factors against the search written out
// as nested loops; the output against zero-insertion, direct convolution
// with the chosen row in long double and keeping one sample in `down`,
// over three calls of one stream, with the preset last sample and the
// dstLen cap; re-Init, Free and memory failures.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "alloc_failure.h"
#include "ryxcore.h"
#include "test_support.h"

namespace {

using ld = long double;

// Halve while both even; scan u, then d, for a*u == b*d, stopping at the
// first match with b 1 or u below dstLen-1; else move b (odd) or a (b even)
// down by one and start over.
std::pair<int, int> searchAsWritten(int srcLen, int dstLen) {
  if (srcLen == dstLen) return {1, 1};
  for (int a = srcLen, b = dstLen;; b % 2 ? --b : --a) {
    while (a % 2 == 0 && b % 2 == 0) a /= 2, b /= 2;
    for (int u = 1; u <= b; ++u)
      for (int d = 1; d <= a; ++d)
        if (a * u == b * d && (b == 1 || u < dstLen - 1)) return {u, d};
  }
}

TEST(Resample, FactorsOfTheWorkedExamplesAndTheSearch) {
  const float factors[] = {1.0f}, freqs[] = {0.2f};
  RyxSampState st{};
  ASSERT_EQ(ryxsSampInit(&st, factors, freqs, 1, 9), 0);
  std::vector<float> src(44100, 0.5f), dst(48000);
  const int cases[][4] = {{10, 10, 1, 1}, {100, 50, 1, 2}, {8, 6, 3, 4}, {7, 5, 2, 3}, {9, 8, 1, 1}, {44100, 48000, 160, 147}};
  for (auto& w : cases) {
    ASSERT_EQ(ryxsSamp(&st, src.data(), w[0], dst.data(), w[1]), 0);
    EXPECT_TRUE(st.fir.upFactor == w[2] && st.fir.downFactor == w[3]) << w[0] << "->" << w[1];
  }
  for (int a = 2; a <= 40; ++a)
    for (int b = 2; b <= 40; ++b) {
      ASSERT_EQ(ryxsSamp(&st, src.data(), a, dst.data(), b), 0);
      ASSERT_EQ(std::make_pair(st.fir.upFactor, st.fir.downFactor), searchAsWritten(a, b)) << a << "->" << b;
    }
  ryxSampFree(&st);
}

template <class T>
int init(RyxSampState* st, const T* f, const T* q, int n, int taps) {
  if constexpr (std::is_same_v<T, float>) return ryxsSampInit(st, f, q, n, taps);
  else return ryxdSampInit(st, f, q, n, taps);
}
template <class T>
int run(RyxSampState* st, const T* src, int n, T* dst, int m) {
  if constexpr (std::is_same_v<T, float>) return ryxsSamp(st, src, n, dst, m);
  else return ryxdSamp(st, src, n, dst, m);
}

template <class T>
class Resampling : public ::testing::Test {};
using Types = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Resampling, Types);

TYPED_TEST(Resampling, OutputIsZeroInsertFilterKeepOneInDown) {
  using T = TypeParam;
  constexpr bool kFloat = std::is_same_v<T, float>;
  // Rows 0 and 2 tie for the ratio 1 and row 0 wins.
  const T factors[] = {T(1.25), T(0.5), T(0.75), T(2.5)}, freqs[] = {T(0.1), T(0.2), T(0.3), T(0.15)};
  std::mt19937 rng(3);
  std::uniform_real_distribution<double> u(-1, 1);
  // srcLen, dstLen, row, up, down; 7 to 5 leaves the last output to the
  // preset, 9 to 8 makes one output more than dstLen.
  const int jobs[][5] = {{441, 480, 2, 160, 147}, {200, 100, 3, 1, 2}, {100, 200, 1, 2, 1},
                         {60, 60, 0, 1, 1},       {8, 6, 0, 3, 4},     {7, 5, 0, 2, 3}, {9, 8, 0, 1, 1}};
  for (auto& j : jobs) {
    RyxSampState st{};
    ASSERT_EQ(init<T>(&st, factors, freqs, 4, 31), 0);
    const T* row = static_cast<const T*>(st.taps) + j[2] * 31;
    const int used = j[0] / j[4] * j[4], produced = used / j[4] * j[3];
    std::vector<T> x(3 * j[0]), got(3 * j[1] + 1, T(9));
    for (T& v : x) v = static_cast<T>(u(rng));
    std::vector<ld> z;  // the consumed samples of the three calls, zero-stuffed
    for (int call = 0; call < 3; ++call) {
      for (int i = 0; i < used; ++i) z.push_back(x[call * j[0] + i]), z.insert(z.end(), j[3] - 1, 0);
      ASSERT_EQ(run<T>(&st, &x[call * j[0]], j[0], &got[call * j[1]], j[1]), 0);
    }
    ASSERT_TRUE(st.fir.upFactor == j[3] && got[3 * j[1]] == T(9));
    for (int call = 0; call < 3; ++call)
      for (int k = 0; k < j[1]; ++k) {
        ld want = x[call * j[0] + j[0] - 1];
        if (k < produced) {
          const int n = (call * produced + k) * j[4];
          want = 0;
          for (int t = 0; t < 31 && t <= n; ++t) want += static_cast<ld>(row[t]) * z[n - t];
        }
        ASSERT_NEAR(got[call * j[1] + k], want, kFloat ? 2e-6L : 1e-14L) << j[0] << "->" << j[1] << " k " << k;
      }
    ryxSampFree(&st);
    ryxSampFree(&st);  // a second Free does nothing
  }
}

TEST(Resample, ReInitFreeAndMemory) {
  const long live = ryxtest::FailAllocation::live();
  const double factors[] = {1, 2}, freqs[] = {0.2, 0.1}, zero[] = {0.2, 0.0};
  RyxSampState st{};
  ryxSampFree(nullptr);
  ryxSampFree(&st);  // never initialised: ignored
  std::vector<double> src(64, 1.0), dst(32);
  ASSERT_EQ(ryxdSampInit(&st, factors, freqs, 2, 16), 0);
  ASSERT_EQ(ryxdSamp(&st, src.data(), 64, dst.data(), 32), 0);
  ASSERT_EQ(ryxdSampInit(&st, factors, freqs, 2, 24), 0);  // releases the first build
  EXPECT_TRUE(st.tapsLen == 24 && st.lastSrcLen == 0);
  ASSERT_EQ(ryxdSamp(&st, src.data(), 64, dst.data(), 32), 0);
  ryxtest::ReportCapture cap;
  const RyxSampState before = st;
  for (int nth = 1; nth <= 4; ++nth) {  // each allocation of Init refused: -4, the live record intact
    ryxtest::FailAllocation fail(nth);
    EXPECT_EQ(ryxdSampInit(&st, factors, freqs, 2, 40), -4) << nth;
    EXPECT_EQ(std::memcmp(&st, &before, sizeof st), 0) << nth;
    EXPECT_EQ(cap.reports().back().context, "memory allocation failure");
  }
  // Frequency 0 passes Init's check but not the design: its status returns.
  EXPECT_EQ(ryxdSampInit(&st, factors, zero, 2, 40), RYX_StsBadFreq);
  EXPECT_EQ(cap.reports().back().funcName, "ryxdFirLowpass");
  EXPECT_EQ(std::memcmp(&st, &before, sizeof st), 0);
  {  // the filter's set-up refused: its status returned; the next call builds it
    ryxtest::FailAllocation fail(1);
    EXPECT_EQ(ryxdSamp(&st, src.data(), 30, dst.data(), 20), RYX_StsNoMem);
  }
  EXPECT_EQ(ryxdSamp(&st, src.data(), 30, dst.data(), 20), 0);
  ryxSampFree(&st);
  EXPECT_EQ(st.mark, 0u);
  EXPECT_EQ(ryxtest::FailAllocation::live(), live);
}

}  // namespace
