// Resampling filter: the reduced factors against the search written out
// as nested loops, the output against zero-insertion, direct convolution
// with the chosen row in long double and keeping one sample in `down`,
// streaming over calls, the preset last sample, the dstLen cap, re-Init,
// Free and memory failures.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "alloc_failure.h"
#include "ryxcore.h"
#include "ryxcore/rate.h"
#include "test_support.h"

namespace {

using ld = long double;

// The factor search as described: halve while both even; scan u, then d,
// for a*u == b*d, storing every match and stopping at the first with b 1
// or u below dstLen-1; otherwise step to a nearby ratio and start over.
std::pair<int, int> searchAsWritten(int srcLen, int dstLen) {
  if (srcLen == dstLen) return {1, 1};
  int a = srcLen, b = dstLen;
  for (;;) {
    while (a % 2 == 0 && b % 2 == 0) a /= 2, b /= 2;
    for (int u = 1; u <= b; ++u)
      for (int d = 1; d <= a; ++d)
        if (a * u == b * d && (b == 1 || u < dstLen - 1)) return {u, d};
    if (b % 2) --b;
    else --a;
  }
}

struct Samp {
  RyxSampState st{};
  ~Samp() { ryxSampFree(&st); }
};

TEST(Resample, FactorsOfTheWorkedExamplesAndTheSearch) {
  const float factors[] = {1.0f}, freqs[] = {0.2f};
  Samp s;
  ASSERT_EQ(ryxsSampInit(&s.st, factors, freqs, 1, 9), 0);
  std::vector<float> src(44100, 0.5f), dst(48000);
  struct Want { int src, dst, up, down; };
  for (Want w : {Want{10, 10, 1, 1}, {100, 50, 1, 2}, {8, 6, 3, 4}, {7, 5, 2, 3}, {9, 8, 1, 1}, {44100, 48000, 160, 147}}) {
    ASSERT_EQ(ryxsSamp(&s.st, src.data(), w.src, dst.data(), w.dst), 0);
    EXPECT_EQ(s.st.fir.upFactor, w.up) << w.src << "->" << w.dst;
    EXPECT_EQ(s.st.fir.downFactor, w.down) << w.src << "->" << w.dst;
  }
  for (int a = 2; a <= 40; ++a)
    for (int b = 2; b <= 40; ++b) {
      ASSERT_EQ(ryxsSamp(&s.st, src.data(), a, dst.data(), b), 0);
      const auto want = searchAsWritten(a, b);
      ASSERT_EQ(std::make_pair(s.st.fir.upFactor, s.st.fir.downFactor), want) << a << "->" << b;
    }
}

// Zero-insert by up, convolve with the row, keep outputs 0, down, 2*down...
// over the whole stream `x`.
template <class T>
std::vector<ld> reference(const std::vector<T>& x, const T* row, int tapsLen, int up, int down) {
  std::vector<ld> z(x.size() * up, 0);
  for (size_t i = 0; i < x.size(); ++i) z[i * up] = x[i];
  std::vector<ld> y;
  for (size_t n = 0; n < z.size(); n += down) {
    ld acc = 0;
    for (int k = 0; k < tapsLen && k <= static_cast<int>(n); ++k) acc += static_cast<ld>(row[k]) * z[n - k];
    y.push_back(acc);
  }
  return y;
}

template <class T>
class Resampling : public ::testing::Test {};
using Types = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Resampling, Types);

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

TYPED_TEST(Resampling, OutputIsZeroInsertFilterKeepOneInDown) {
  using T = TypeParam;
  const ld tol = std::is_same_v<T, float> ? 2e-6L : 1e-14L;
  // Rows 0 and 2 tie for the ratio 1 and row 0 wins.
  const T factors[] = {T(1.25), T(0.5), T(0.75), T(2.5)}, freqs[] = {T(0.1), T(0.2), T(0.3), T(0.15)};
  std::mt19937 rng(3);
  std::uniform_real_distribution<double> u(-1, 1);
  struct Job { int src, dst, row, up, down; };
  for (Job j : {Job{441, 480, 2, 160, 147}, {200, 100, 3, 1, 2}, {100, 200, 1, 2, 1}, {60, 60, 0, 1, 1}, {8, 6, 0, 3, 4},
                {7, 5, 0, 2, 3}}) {
    Samp s;
    ASSERT_EQ(init<T>(&s.st, factors, freqs, 4, 31), 0);
    std::vector<T> x(3 * j.src);
    for (T& v : x) v = static_cast<T>(u(rng));
    const T* row = static_cast<const T*>(s.st.taps) + j.row * 31;
    // Each call consumes whole groups of `down` samples; a remainder never
    // enters the filter.
    const int used = j.src / j.down * j.down;
    std::vector<T> consumed;
    for (int call = 0; call < 3; ++call) consumed.insert(consumed.end(), &x[call * j.src], &x[call * j.src + used]);
    const std::vector<ld> want = reference(consumed, row, 31, j.up, j.down);
    std::vector<T> got;
    for (int call = 0; call < 3; ++call) {  // three calls continue one stream
      std::vector<T> dst(j.dst + 1, T(9));
      ASSERT_EQ(run<T>(&s.st, x.data() + call * j.src, j.src, dst.data(), j.dst), 0);
      EXPECT_EQ(dst[j.dst], T(9));
      got.insert(got.end(), dst.begin(), dst.end() - 1);
    }
    ASSERT_EQ(s.st.fir.upFactor, j.up);
    const int produced = j.src / j.down * j.up;
    for (int call = 0; call < 3; ++call)
      for (int k = 0; k < j.dst; ++k) {
        const ld w = k < produced ? want[call * produced + k] : static_cast<ld>(x[call * j.src + j.src - 1]);
        ASSERT_NEAR(got[call * j.dst + k], w, tol) << j.src << "->" << j.dst << " call " << call << " k " << k;
      }
  }
}

TYPED_TEST(Resampling, MovedRatioNeverWritesPastDstLen) {
  using T = TypeParam;
  const T factors[] = {T(1)}, freqs[] = {T(0.25)};
  Samp s;
  ASSERT_EQ(init<T>(&s.st, factors, freqs, 1, 7), 0);
  std::vector<T> x = {1, -2, 3, 4, -5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18};
  std::vector<T> dst(9, T(-99));
  // 9 to 8 runs at 1/1: nine outputs, of which the first eight are kept,
  // and the ninth sample still enters the history for the next call.
  ASSERT_EQ(run<T>(&s.st, x.data(), 9, dst.data(), 8), 0);
  EXPECT_EQ(dst[8], T(-99));
  ASSERT_EQ(run<T>(&s.st, x.data() + 9, 9, dst.data(), 8), 0);
  const std::vector<ld> want = reference(x, static_cast<const T*>(s.st.taps), 7, 1, 1);
  for (int k = 0; k < 8; ++k) EXPECT_NEAR(dst[k], want[9 + k], 1e-6L) << k;
  EXPECT_EQ(dst[8], T(-99));
}

TEST(Resample, ReInitFreeAndMemory) {
  const long live = ryxtest::FailAllocation::live();
  const double factors[] = {1, 2}, freqs[] = {0.2, 0.1};
  RyxSampState st{};
  ryxSampFree(nullptr);
  ryxSampFree(&st);  // never initialised: ignored
  ASSERT_EQ(ryxdSampInit(&st, factors, freqs, 2, 16), 0);
  std::vector<double> src(64, 1.0), dst(32);
  ASSERT_EQ(ryxdSamp(&st, src.data(), 64, dst.data(), 32), 0);
  ASSERT_EQ(ryxdSampInit(&st, factors, freqs, 2, 24), 0);  // releases the first build
  EXPECT_EQ(st.tapsLen, 24);
  EXPECT_EQ(st.lastSrcLen, 0);
  ASSERT_EQ(ryxdSamp(&st, src.data(), 64, dst.data(), 32), 0);
  // Every allocation of Init refused in turn: -4, the live record intact.
  {
    ryxtest::ReportCapture cap;
    const RyxSampState before = st;
    for (int nth = 1; nth <= 4; ++nth) {
      ryxtest::FailAllocation fail(nth);
      EXPECT_EQ(ryxdSampInit(&st, factors, freqs, 2, 40), -4) << nth;
      EXPECT_EQ(std::memcmp(&st, &before, sizeof st), 0) << nth;
    }
    ASSERT_EQ(cap.reports().size(), 4u);
    EXPECT_EQ(cap.reports()[0].status, RYX_StsNoMem);
    EXPECT_EQ(cap.reports()[0].context, "memory allocation failure");
    // A design failure (frequency 0 passes the check, not the design)
    // returns the design's stored status and keeps the record.
    cap.clear();
    const double zero[] = {0.2, 0.0};
    EXPECT_EQ(ryxdSampInit(&st, factors, zero, 2, 40), RYX_StsBadFreq);
    EXPECT_EQ(cap.reports().back().funcName, "ryxdFirLowpass");
    EXPECT_EQ(std::memcmp(&st, &before, sizeof st), 0);
    // The filter's set-up refused for memory: its stored status returned,
    // and the next call builds it again.
    cap.clear();
    {
      ryxtest::FailAllocation fail(1);
      EXPECT_EQ(ryxdSamp(&st, src.data(), 30, dst.data(), 20), RYX_StsNoMem);
    }
    EXPECT_EQ(ryxdSamp(&st, src.data(), 30, dst.data(), 20), 0);
  }
  ryxSampFree(&st);
  EXPECT_EQ(st.mark, 0u);
  ryxSampFree(&st);  // second Free does nothing
  EXPECT_EQ(ryxtest::FailAllocation::live(), live);
}

}  // namespace
