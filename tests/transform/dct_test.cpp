// Orthonormal DCT-II / DCT-III against long-double sums, at lengths of the
// direct and the fast path; in place equals not in place, round trips,
// table cache changes leave the bits unchanged. Bound, relative RMS:
// 8 (log2 n + 1) sqrt(n) eps, the secant stages' error growing like sqrt(n).
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "ryxcore.h"
#include "ryxcore/transform_any_length.h"
#include "test_support.h"

namespace {

using LD = long double;
const LD kPi = 3.14159265358979323846264338327950288L;

// y[k] = a_k sum x[i] cos((2i+1) k pi / 2n), a_0 = 1/sqrt n, a_k = sqrt(2/n);
// the inverse is the transpose.
template <class T>
std::vector<LD> reference(const std::vector<T>& x, bool forward) {
  const int n = static_cast<int>(x.size());
  std::vector<LD> y(n, 0), cosTbl(4 * n);
  for (int e = 0; e < 4 * n; ++e) cosTbl[e] = std::cos(kPi * e / (2 * n));
  for (int k = 0; k < n; ++k) {
    for (int i = 0; i < n; ++i) {
      const LD c = cosTbl[(2 * i + 1) * static_cast<long long>(k) % (4 * n)];
      const LD a = k == 0 ? 1 / std::sqrt(static_cast<LD>(n)) : std::sqrt(2 / static_cast<LD>(n));
      if (forward) y[k] += a * x[i] * c;
      else y[i] += a * x[k] * c;
    }
  }
  return y;
}

template <class T>
double relRms(const std::vector<T>& got, const std::vector<LD>& want) {
  LD e = 0, s = 0;
  for (size_t i = 0; i < got.size(); ++i) e += (got[i] - want[i]) * (got[i] - want[i]), s += want[i] * want[i];
  return static_cast<double>(std::sqrt(e / s));
}

void dct(const float* s, float* d, int n, int f) { ryxsDct(s, d, n, f); }
void dct(const double* s, double* d, int n, int f) { ryxdDct(s, d, n, f); }

template <class T>
class DctTest : public ::testing::Test {};
using Types = ::testing::Types<float, double>;
TYPED_TEST_SUITE(DctTest, Types);

TYPED_TEST(DctTest, OrthonormalWithinBoundInPlaceAndRoundTrip) {
  using T = TypeParam;
  const double eps = std::numeric_limits<T>::epsilon();
  std::vector<int> lengths;
  for (int n = 1; n <= 33; ++n) lengths.push_back(n);
  for (int n : {64, 100, 128, 1000, 1024}) lengths.push_back(n);
  ryxtest::Random rnd(21);
  for (int n : lengths) {
    SCOPED_TRACE(n);
    const double bound = 8 * (std::log2(n) + 1) * std::sqrt(n) * eps;
    std::vector<T> x(n), y(n), inPlace(n), back(n);
    rnd.fill(x.data(), n);
    for (int flags : {RYX_Forward, RYX_Inverse}) {
      dct(x.data(), y.data(), n, flags);
      EXPECT_LE(relRms(y, reference(x, flags == RYX_Forward)), bound);
      inPlace = x;
      dct(inPlace.data(), inPlace.data(), n, flags | 64);  // other bits ignored
      EXPECT_TRUE(ryxtest::sameBits(inPlace.data(), y.data(), n));
      dct(y.data(), back.data(), n, flags ^ 3);
      EXPECT_LE(relRms(back, std::vector<LD>(x.begin(), x.end())), 2 * bound);
    }
  }
  // One-entry caches: another length in between changes nothing.
  for (int pair : {0, 1}) {
    const int a = pair ? 5 : 32, b = pair ? 7 : 256;
    std::vector<T> x(a), first(a), again(a), other(b, 1);
    rnd.fill(x.data(), a);
    dct(x.data(), first.data(), a, RYX_Forward);
    dct(other.data(), other.data(), b, RYX_Forward);
    dct(x.data(), again.data(), a, RYX_Forward);
    EXPECT_TRUE(ryxtest::sameBits(first.data(), again.data(), a));
  }
  dct(static_cast<T*>(nullptr), nullptr, 0, RYX_Release);
}

TEST(DctInt16, PowersOfTwoAndOtherLengthsWithinRounding) {
  ryxtest::Random rnd(8);
  for (int n : {1, 2, 3, 4, 8, 16, 17, 64, 128, 100}) {
    SCOPED_TRACE(n);
    // Amplitudes small enough that the unscaled stages stay in 16 bits.
    const int amp = 32767 / n;
    std::vector<short> x(n), y(n), back(n);
    for (short& v : x) v = static_cast<short>(rnd.i32(-amp, amp));
    ryxwDct(x.data(), y.data(), n, RYX_Forward);
    const auto want = reference(x, true);
    // Stages round once each: about one unit per stage on top of the rounding.
    const double tol = 2 + std::log2(n) * 1.5;
    for (int k = 0; k < n; ++k) EXPECT_NEAR(y[k], static_cast<double>(want[k]), tol) << k;
    // Inverse on coefficients small enough that the secant-weighted odd
    // halves (weights up to 4m/pi) stay in 16 bits.
    for (short& v : y) v = static_cast<short>(rnd.i32(-4096 / n, 4096 / n));
    const auto wantBack = reference(y, false);
    ryxwDct(y.data(), back.data(), n, RYX_Inverse);
    // The Q9 products truncate: a bias of half a unit per product, which
    // each odd half's DCT gathers into its first outputs, up to about
    // 3n/4 units at the top of the inverse recursion.
    const double tolBack = n >= 16 && (n & (n - 1)) == 0 ? tol + 0.75 * n : tol;
    for (int i = 0; i < n; ++i) EXPECT_NEAR(back[i], static_cast<double>(wantBack[i]), tolBack) << i;
  }
  ryxwDct(nullptr, nullptr, 64, RYX_Release);
  ryxwDct(nullptr, nullptr, 3, RYX_Release);
}

}  // namespace
