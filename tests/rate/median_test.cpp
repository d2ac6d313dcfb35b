// Median filter of the three types against a sort-based median of the
// extended window (ends repeated), written here: every mask to 20 over
// short lengths, longer masks over a few lengths, ties, 16-bit extremes,
// misaligned data, in place against two buffers, working-array failure.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <type_traits>
#include <vector>

#include "alloc_failure.h"
#include "ryxcore.h"
#include "ryxcore/rate.h"
#include "test_support.h"

namespace {

template <class T>
std::vector<T> referenceMedian(const std::vector<T>& x, int maskSize) {
  const int mask = maskSize % 2 ? maskSize : maskSize - 1;
  const int n = static_cast<int>(x.size());
  if (mask <= 1 || n < 3) return x;
  std::vector<T> y(n), w(mask);
  for (int i = 0; i < n; ++i) {
    for (int k = 0; k < mask; ++k) w[k] = x[std::clamp(i - mask / 2 + k, 0, n - 1)];
    std::sort(w.begin(), w.end());
    y[i] = w[mask / 2];
  }
  return y;
}

template <class T>
void filter1(T* x, int n, int m) {
  if constexpr (std::is_same_v<T, float>) ryxsbMedianFilter1(x, n, m);
  else if constexpr (std::is_same_v<T, double>) ryxdbMedianFilter1(x, n, m);
  else ryxwbMedianFilter1(x, n, m);
}
template <class T>
void filter2(const T* s, T* d, int n, int m) {
  if constexpr (std::is_same_v<T, float>) ryxsbMedianFilter2(s, d, n, m);
  else if constexpr (std::is_same_v<T, double>) ryxdbMedianFilter2(s, d, n, m);
  else ryxwbMedianFilter2(s, d, n, m);
}

// Data drawn from `pool` distinct values (few values: many ties), or the
// 16-bit extremes and their neighbours.
template <class T>
std::vector<T> draw(std::mt19937& rng, int n, int pool, bool extremes) {
  static const short ends[] = {-32768, -32767, -1, 0, 1, 32766, 32767};
  std::vector<T> v(n);
  for (T& e : v) {
    if (extremes) e = static_cast<T>(ends[rng() % 7]);
    else e = static_cast<T>(static_cast<int>(rng() % pool) - pool / 2) / (std::is_integral_v<T> ? 1 : 4);
  }
  return v;
}

// Runs both forms at an element offset of a larger buffer (misaligned
// starts) and compares bit for bit with the reference.
template <class T>
void checkOne(const std::vector<T>& x, int maskSize, int offset) {
  const int n = static_cast<int>(x.size());
  const std::vector<T> want = referenceMedian(x, maskSize);
  std::vector<T> buf(n + offset + 1, T(77));
  std::copy(x.begin(), x.end(), buf.begin() + offset);
  filter1(buf.data() + offset, n, maskSize);
  ASSERT_EQ(std::memcmp(buf.data() + offset, want.data(), n * sizeof(T)), 0) << "mask " << maskSize << " len " << n;
  ASSERT_EQ(buf[offset + n], T(77));
  std::vector<T> dst(n + 1, T(77));
  filter2(x.data(), dst.data(), n, maskSize);
  ASSERT_EQ(std::memcmp(dst.data(), want.data(), n * sizeof(T)), 0) << "two buffers, mask " << maskSize;
  ASSERT_EQ(dst[n], T(77));
}

template <class T>
class Median : public ::testing::Test {};
using Types = ::testing::Types<float, double, short>;
TYPED_TEST_SUITE(Median, Types);

TYPED_TEST(Median, AgreesWithSortedWindowEverywhere) {
  using T = TypeParam;
  std::mt19937 rng(5);
  for (int mask = 1; mask <= 20; ++mask)
    for (int n = 1; n <= 70; ++n) checkOne(draw<T>(rng, n, n % 3 ? 1000 : 4, false), mask, n % 4);
  for (int mask = 21; mask <= 101; mask += 5)
    for (int n : {3, 40, 150, 1000}) checkOne(draw<T>(rng, n, mask % 2 ? 50 : 3, false), mask, mask % 3);
  for (int mask : {3, 5, 7, 9, 11, 33})
    for (int n : {300, 1000}) checkOne(draw<T>(rng, n, 0, true), mask, 1);
}

TEST(MedianMemory, GeneralMethodReportsOutOfMemoryAndWritesNothing) {
  ryxtest::ReportCapture cap;
  std::vector<double> x = {5, 1, 4, 2, 3, 9, 8}, y(7, 0), before = y;
  {
    ryxtest::FailAllocation fail(1);
    ryxdbMedianFilter2(x.data(), y.data(), 7, 11);
  }
  ASSERT_EQ(cap.reports().size(), 1u);
  EXPECT_EQ(cap.reports()[0].status, RYX_StsNoMem);
  EXPECT_EQ(cap.reports()[0].context, "out of memory");
  EXPECT_EQ(cap.reports()[0].funcName, "ryxdbMedianFilter2");
  EXPECT_EQ(y, before);
  cap.clear();
  {
    ryxtest::FailAllocation fail(1, true);
    ryxsbMedianFilter1(reinterpret_cast<float*>(y.data()), 14, 9);  // the kernels take no memory
    EXPECT_EQ(ryxtest::FailAllocation::requested(), 0);
  }
  EXPECT_TRUE(cap.reports().empty());
}

}  // namespace
