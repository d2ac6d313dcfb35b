// Median filter of the three types against a sort-based median of the
// extended window (ends repeated), written here: every mask to 20 over
// short lengths, longer masks over a few lengths, ties, 16-bit extremes,
// misaligned data, in place against two buffers, working-array failure.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

#include "alloc_failure.h"
#include "ryxcore.h"
#include "test_support.h"

namespace {

template <class T>
auto routines() {
  if constexpr (std::is_same_v<T, float>) return std::pair{&ryxsbMedianFilter1, &ryxsbMedianFilter2};
  else if constexpr (std::is_same_v<T, double>) return std::pair{&ryxdbMedianFilter1, &ryxdbMedianFilter2};
  else return std::pair{&ryxwbMedianFilter1, &ryxwbMedianFilter2};
}

// Runs both forms (the in-place one at an element offset: misaligned
// starts) on values drawn from `pool` (few values: many ties) or from the
// 16-bit extremes, and compares bit for bit with the sorted window.
template <class T>
void checkOne(std::mt19937& rng, int n, int maskSize, int pool) {
  static const short ends[] = {-32768, -32767, -1, 0, 1, 32766, 32767};
  std::vector<T> x(n), want(n), w;
  for (T& e : x) e = pool ? T(static_cast<int>(rng() % pool) - pool / 2) / T(std::is_integral_v<T> ? 1 : 4) : T(ends[rng() % 7]);
  const int mask = maskSize % 2 ? maskSize : maskSize - 1;
  for (int i = 0; i < n; ++i) {
    w.clear();
    for (int k = -(mask / 2); k <= mask / 2; ++k) w.push_back(x[std::clamp(i + k, 0, n - 1)]);
    std::sort(w.begin(), w.end());
    want[i] = mask <= 1 || n < 3 ? x[i] : w[mask / 2];
  }
  const int offset = n % 4;
  std::vector<T> buf(n + offset + 1, T(77)), dst(n + 1, T(77));
  std::copy(x.begin(), x.end(), buf.begin() + offset);
  routines<T>().first(buf.data() + offset, n, maskSize);
  routines<T>().second(x.data(), dst.data(), n, maskSize);
  ASSERT_EQ(std::memcmp(buf.data() + offset, want.data(), n * sizeof(T)), 0) << "mask " << maskSize << " len " << n;
  ASSERT_EQ(std::memcmp(dst.data(), want.data(), n * sizeof(T)), 0) << "two buffers, mask " << maskSize;
  ASSERT_TRUE(buf[offset + n] == T(77) && dst[n] == T(77));
}

template <class T>
class Median : public ::testing::Test {};
using Types = ::testing::Types<float, double, short>;
TYPED_TEST_SUITE(Median, Types);

TYPED_TEST(Median, AgreesWithSortedWindowEverywhere) {
  std::mt19937 rng(5);
  for (int mask = 1; mask <= 20; ++mask)
    for (int n = 1; n <= 70; ++n) checkOne<TypeParam>(rng, n, mask, n % 3 ? 1000 : 4);
  for (int mask = 21; mask <= 101; mask += 5)
    for (int n : {3, 40, 150, 1000}) checkOne<TypeParam>(rng, n, mask, mask % 2 ? 50 : 3);
  for (int mask : {3, 5, 7, 9, 11, 33})
    for (int n : {300, 1000}) checkOne<TypeParam>(rng, n, mask, 0);
}

TEST(MedianMemory, GeneralMethodReportsOutOfMemoryAndWritesNothing) {
  ryxtest::ReportCapture cap;
  std::vector<double> x = {5, 1, 4, 2, 3, 9, 8}, y(7, 0);
  {
    ryxtest::FailAllocation fail(1);
    ryxdbMedianFilter2(x.data(), y.data(), 7, 11);
  }
  ASSERT_EQ(cap.reports().size(), 1u);
  EXPECT_EQ(cap.reports()[0].status, RYX_StsNoMem);
  EXPECT_EQ(cap.reports()[0].context, "out of memory");
  EXPECT_EQ(y, std::vector<double>(7, 0));
  ryxtest::FailAllocation fail(1, true);
  ryxsbMedianFilter1(reinterpret_cast<float*>(y.data()), 14, 9);  // the kernels take no memory
  EXPECT_EQ(ryxtest::FailAllocation::requested(), 0);
}

}  // namespace
