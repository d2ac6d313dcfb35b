// Any-length DFT against a long-double direct sum: every length 1-100,
// both sides of the chirp threshold, primes and composites up to 10^5
// (there on sampled bins); the 16-bit integer kernels bit-exact against
// the Q14 rule written out here, in every scale mode.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "ryxcore.h"
#include "ryxcore/transform_any_length.h"
#include "test_support.h"

namespace {

using LD = long double;
const LD kTwoPi = 2 * 3.14159265358979323846264338327950288L;

// X[k] = (1/n if inverse) sum x[i] exp(-+2 pi i ik/n), the angle reduced exactly.
template <class C>
void refBin(const C* x, int n, long long k, bool inverse, LD& re, LD& im) {
  static std::vector<LD> cosT, sinT;  // cos and sin of 2 pi e/n
  if (static_cast<int>(cosT.size()) != n) {
    cosT.resize(n), sinT.resize(n);
    for (int e = 0; e < n; ++e) cosT[e] = std::cos(kTwoPi * e / n), sinT[e] = std::sin(kTwoPi * e / n);
  }
  re = im = 0;
  for (long long i = 0; i < n; ++i) {
    const long long e = (i * k) % n;
    const LD c = cosT[e], s = inverse ? sinT[e] : -sinT[e];
    re += x[i].re * c - x[i].im * s;
    im += x[i].re * s + x[i].im * c;
  }
  if (inverse) re /= n, im /= n;
}

// Relative RMS error over the bins `step` apart.
template <class C>
double relRms(const C* x, const C* y, int n, bool inverse, int step) {
  LD err = 0, norm = 0;
  for (long long k = 0; k < n; k += step) {
    LD re, im;
    refBin(x, n, k, inverse, re, im);
    err += (y[k].re - re) * (y[k].re - re) + (y[k].im - im) * (y[k].im - im);
    norm += re * re + im * im;
  }
  return static_cast<double>(std::sqrt(err / norm));
}

template <class C>
class DftTest : public ::testing::Test {};
using Types = ::testing::Types<SCplx, DCplx>;
TYPED_TEST_SUITE(DftTest, Types);

void dft(const SCplx* s, SCplx* d, int n, int f) { ryxcDft(s, d, n, f); }
void dft(const DCplx* s, DCplx* d, int n, int f) { ryxzDft(s, d, n, f); }

TYPED_TEST(DftTest, MatchesDirectSumWithinBound) {
  using C = TypeParam;
  const double eps = std::numeric_limits<decltype(C{}.re)>::epsilon();
  std::vector<int> lengths;
  for (int n = 1; n <= 100; ++n) lengths.push_back(n);
  for (int n : {127, 168, 169, 170, 171, 255, 509, 1000, 1009, 4095, 10007, 100000}) lengths.push_back(n);
  ryxtest::Random rnd(17);
  for (int n : lengths) {
    SCOPED_TRACE(n);
    std::vector<C> x(n), y(n), back(n);
    rnd.fill(x.data(), n);
    const int step = n > 200 ? n / 9 : 1;
    const double logM = std::ceil(std::log2(2.0 * n - 1));  // chirp: FFTs of M >= 2n-1 points
    const bool chirp = n >= 170 && (n & (n - 1)) != 0;
    const double bound = chirp ? 2 * (3 * logM + 6) * eps : 2 * (std::log2(n) + 2) * eps;
    dft(x.data(), y.data(), n, RYX_Forward);
    EXPECT_LE(relRms(x.data(), y.data(), n, false, step), bound);
    dft(x.data(), back.data(), n, RYX_Inverse);
    EXPECT_LE(relRms(x.data(), back.data(), n, true, step), bound);
    ryxcFreeTwdTbls();  // the lists hold 32 lengths
    ryxzFreeTwdTbls();
  }
}

TEST(DftLists, ThirtyThirdLengthReportsFullTableThenNoMemory) {
  ryxcFreeTwdTbls();
  std::vector<SCplx> x(200, SCplx{1, 0}), y(200);
  ryxtest::ReportCapture capture;
  for (int n = 3; n <= 65; n += 2) ryxcDft(x.data(), y.data(), n, RYX_Forward);  // 32 lengths
  EXPECT_TRUE(capture.reports().empty());
  ryxcDft(x.data(), y.data(), 67, RYX_Forward);
  ASSERT_EQ(capture.reports().size(), 2u);
  EXPECT_EQ(capture.reports()[0].context, "Full Table");
  EXPECT_EQ(capture.reports()[1].context, "No working memory");
  ryxcFreeTwdTbls();
}

// ---- 16-bit integer kernels --------------------------------------------------

// The integer rule: Q14 rows rounded half away from zero, each dot
// product >> 7 into a 32-bit sum, /n for the inverse (flags 2), rounded
// at 7 + f bits, then wrapped or clamped.
std::vector<WCplx> intRule(const std::vector<WCplx>& x, int flags, int f, bool sat, bool* fits = nullptr) {
  const int n = static_cast<int>(x.size());
  const int sign = (flags & 0xFF) == 2 || (flags & 0xFF) == 18 ? -1 : 1;
  std::vector<WCplx> y(n);
  std::vector<long long> cq(n), sq(n);
  for (int j = 0; j < n; ++j) {
    const double a = 2 * 3.14159265358979323846 * j / n;
    cq[j] = std::lround(16384 * std::cos(a)), sq[j] = sign * std::lround(16384 * std::sin(a));
  }
  for (int k = 0; k < n; ++k) {
    long long sr = 0, si = 0;
    for (int i = 0; i < n; ++i) {
      const long long c = cq[(i * k) % n], s = sq[(i * k) % n];
      sr += (x[i].re * c + x[i].im * s) >> 7;
      si += (x[i].im * c - x[i].re * s) >> 7;
    }
    long long v[2] = {sr, si};
    for (long long& e : v) {
      if ((flags & 0xFF) == 2) e /= n;
      e = 7 + f > 0 ? (e + (1LL << (6 + f))) >> (7 + f) : e << -(7 + f);
      if (fits != nullptr && (e > 32767 || e < -32768)) *fits = false;
      e = sat ? std::max(-32768LL, std::min(32767LL, e)) : static_cast<short>(e & 0xFFFF);
    }
    y[k] = {static_cast<short>(v[0]), static_cast<short>(v[1])};
  }
  return y;
}

TEST(DftInt16, IntegerKernelsBitExactInEveryMode) {
  ryxtest::Random rnd(5);
  for (int n : {2, 3, 5, 6, 16, 31, 100, 128}) {
    std::vector<WCplx> x(n), y(n);
    ryxvFreeTwdTbls();
    for (WCplx& v : x) v = {static_cast<short>(rnd.i32(-32768, 32767)), static_cast<short>(rnd.i32(-32768, 32767))};
    for (int flags : {1, 2, RYX_Inverse | RYX_KeepScale, RYX_Inverse | 32, RYX_Forward | RYX_IntCore}) {
      for (int mode = 0; mode <= 4; ++mode) {
        SCOPED_TRACE(::testing::Message() << n << " flags " << flags << " mode " << mode);
        int factor = mode == 4 ? 99 : 3;
        ryxvDft(x.data(), y.data(), n, flags, mode, &factor);
        int f = mode == 2 || mode == 3 ? 3 : 0;
        if (mode == 4) {
          // The smallest factor at which the rule's unclamped result fits.
          for (bool fits = false; !fits; ++f) {
            fits = true;
            intRule(x, flags, f, true, &fits);
          }
          --f;
          EXPECT_EQ(factor, f);
        }
        const auto want = intRule(x, flags, f, mode == 1 || mode == 3);
        for (int k = 0; k < n; ++k) ASSERT_TRUE(y[k].re == want[k].re && y[k].im == want[k].im) << k;
      }
    }
  }
  std::vector<WCplx> x(5, WCplx{3, -2}), y(5, WCplx{7, 7});
  ryxvDft(x.data(), y.data(), 5, RYX_Forward, 7, nullptr);  // other modes: nothing written
  EXPECT_EQ(y[0].re, 7);
  int factor = -1;
  ryxvDft(x.data(), y.data(), 5, RYX_Forward, RYX_AUTO_SCALE, &factor);
  EXPECT_EQ(factor, 0);
  ryxvFreeTwdTbls();
}

TEST(DftInt16, FloatSideNarrowsTheFloatTransform) {
  ryxtest::Random rnd(9);
  for (int n : {129, 200, 256}) {
    std::vector<WCplx> x(n), y(n);
    std::vector<SCplx> xf(n), yf(n);
    for (int i = 0; i < n; ++i) x[i] = {static_cast<short>(rnd.i32(-200, 200)), static_cast<short>(i)};
    for (int i = 0; i < n; ++i) xf[i] = {static_cast<float>(x[i].re), static_cast<float>(x[i].im)};
    ryxvDft(x.data(), y.data(), n, RYX_Forward, RYX_SATURATE, nullptr);
    ryxcDft(xf.data(), yf.data(), n, RYX_Forward);  // rounded to nearest and clamped
    for (int k = 0; k < n; ++k) EXPECT_EQ(y[k].re, std::clamp(std::nearbyint(yf[k].re), -32768.0f, 32767.0f)) << k;
  }
  ryxvFreeTwdTbls();
  ryxcFreeTwdTbls();
}

}  // namespace
