// Set-up of the tap states: the normalised taps bit for bit against the
// rounding rules written out here (float: reciprocal and products in double,
// each rounded to float; complex: the scalar complex quotient and product
// formulas, in double), the tables and their sizes, the delay-line set-up.
#include "frame/memory.h"
#include "iir_support.h"

namespace iirtest {
extern std::size_t lastRawBytes;
namespace {

// ---- The rules
// -----------------------------------------------------------------
float ruleRecip(float a) { return static_cast<float>(1.0 / static_cast<double>(a)); }
double ruleRecip(double a) { return 1.0 / a; }
float ruleTimes(float a, float b) { return static_cast<float>(static_cast<double>(a) * static_cast<double>(b)); }
double ruleTimes(double a, double b) { return a * b; }
// Complex results are rounded straight from the double parts.
template <class C>
C fromParts(double re, double im) {
  using F = decltype(C{}.re);
  return C{static_cast<F>(re), static_cast<F>(im)};
}
template <class C>
C ruleRecip(C b) {
  const double f = 1.0 / (static_cast<double>(b.im) * b.im + static_cast<double>(b.re) * b.re);
  const double re = (static_cast<double>(b.im) * 0.0 + 1.0 * b.re) * f;
  const double im = (static_cast<double>(b.re) * 0.0 - static_cast<double>(b.im) * 1.0) * f;
  return fromParts<C>(re, im);
}
template <class C>
C ruleTimes(C a, C b) {
  const double ar = a.re, ai = a.im, br = b.re, bi = b.im;
  // Each double result is stored, so it is rounded where the formula says.
  volatile double re = ar * br - ai * bi;
  volatile double im = ar * bi + ai * br;
  return fromParts<C>(re, im);
}
template <class H>
H one() {
  return fromRC<H>({1, 0});
}
float diffOf(float a, float b) { return a - b; }
SCplx diffOf(SCplx a, SCplx b) { return {a.re - b.re, a.im - b.im}; }

template <class H>
std::vector<H> ruleArb(const std::vector<H>& raw, int order) {
  std::vector<H> t = raw;
  const H f = ruleRecip(raw[order + 1]);
  for (int i = 0; i <= order; ++i) t[i] = ruleTimes(raw[i], f);
  for (int i = 1; i <= order; ++i) t[order + i] = ruleTimes(raw[order + 1 + i], f);
  return t;  // the last element keeps its value
}

template <class H>
std::vector<H> ruleBq(const std::vector<H>& raw, int nq) {
  std::vector<H> t(1 + 4 * nq);
  H gain = one<H>();
  for (int q = 0; q < nq; ++q) {
    const H* s = raw.data() + 6 * q;
    const H rb = ruleRecip(s[0]), ra = ruleRecip(s[3]);
    t[1 + 4 * q] = ruleTimes(s[4], ra);
    t[2 + 4 * q] = ruleTimes(s[5], ra);
    t[3 + 4 * q] = ruleTimes(s[1], rb);
    t[4 + 4 * q] = ruleTimes(s[2], rb);
    gain = ruleTimes(ruleTimes(gain, s[0]), ra);
  }
  t[0] = gain;
  return t;
}

template <class H>
void expectSame(const H* got, const H* want, int n, const char* what) {
  for (int i = 0; i < n; ++i) ASSERT_TRUE(sameBits(got[i], want[i])) << what << " element " << i;
}

template <class H>
class IirSetup : public ::testing::Test {};
using TapTypes = ::testing::Types<float, SCplx, double, DCplx>;
TYPED_TEST_SUITE(IirSetup, TapTypes);

constexpr bool hasTables(bool floatType, int iirType) { return floatType && iirType == 2; }

TYPED_TEST(IirSetup, ArbitraryOrderNormalisationAndTables) {
  using H = TypeParam;
  constexpr bool isFloat = std::is_same_v<H, float> || std::is_same_v<H, SCplx>;
  std::mt19937 g(1);
  for (int iirType = 0; iirType <= 2; ++iirType) {
    for (int order = 0; order <= 16; ++order) {
      SCOPED_TRACE(::testing::Message() << "order " << order << " iirType " << iirType);
      const std::vector<H> raw = randomArbTaps<H>(g, order);
      const std::vector<H> want = ruleArb(raw, order);
      std::vector<H> arr = raw;
      H* inner = arr.data();
      RyxIirTapState ts{};
      lastRawBytes = 0;
      Side<H>::init(iirType, iirType == 2 ? reinterpret_cast<H*>(&inner) : arr.data(), order, &ts);
      ASSERT_EQ(ryxGetErrStatus(), 0);
      const H* t = static_cast<const H*>(ts.taps);
      expectSame(t, want.data(), 2 * order + 2, "taps");
      if (!hasTables(isFloat, iirType)) continue;
      // Taps in (2*order+5) rounded down to 4; then b[i] x4, a[i] x4, plain
      // b padded to 4, plain a.
      const int span = (2 * order + 5) / 4 * 4, pad = (order + 3) / 4 * 4;
      const int count = span + 8 * order + 8 * ((order + 3) / 4);
      EXPECT_EQ(lastRawBytes, ryx::rawSize(static_cast<unsigned>(count * sizeof(H))));
      for (int i = 2 * order + 2; i < span; ++i) EXPECT_TRUE(sameBits(t[i], H{})) << "tap padding " << i;
      const H* row = t + span;
      for (int i = 1; i <= order; ++i) {
        for (int k = 0; k < 4; ++k) {
          EXPECT_TRUE(sameBits(row[4 * (i - 1) + k], want[i])) << "b row " << i;
          EXPECT_TRUE(sameBits(row[4 * order + 4 * (i - 1) + k], want[order + i])) << "a row " << i;
        }
      }
      const H* plainB = row + 8 * order;
      const H* plainA = plainB + pad;
      for (int i = 0; i < pad; ++i) {
        EXPECT_TRUE(sameBits(plainB[i], i < order ? want[i + 1] : H{})) << "plain b " << i;
      }
      for (int i = 0; i < order; ++i) EXPECT_TRUE(sameBits(plainA[i], want[order + 1 + i])) << "plain a " << i;
      ryxFree(ts.taps);
    }
  }
}

TYPED_TEST(IirSetup, CascadeNormalisationAndTables) {
  using H = TypeParam;
  constexpr bool isFloat = std::is_same_v<H, float> || std::is_same_v<H, SCplx>;
  std::mt19937 g(2);
  for (int iirType = 0; iirType <= 2; ++iirType) {
    for (int nq = 1; nq <= 8; ++nq) {
      SCOPED_TRACE(::testing::Message() << nq << " sections, iirType " << iirType);
      const std::vector<H> raw = randomBqTaps<H>(g, nq);
      const std::vector<H> want = ruleBq(raw, nq);
      std::vector<H> arr = raw;
      H* inner = arr.data();
      RyxIirTapState ts{};
      lastRawBytes = 0;
      Side<H>::initBq(iirType, iirType == 2 ? reinterpret_cast<H*>(&inner) : arr.data(), nq, &ts);
      ASSERT_EQ(ryxGetErrStatus(), 0);
      const H* t = static_cast<const H*>(ts.taps);
      expectSame(t, want.data(), 1 + 4 * nq, "taps");
      if (!hasTables(isFloat, iirType)) {
        // Rewritten in place: what lies behind the new taps stays.
        expectSame(t + 1 + 4 * nq, raw.data() + 1 + 4 * nq, 2 * nq - 1, "rest of the caller's array");
        continue;
      }
      EXPECT_EQ(lastRawBytes, ryx::rawSize(static_cast<unsigned>((16 * nq + 4) * sizeof(H))));
      if constexpr (isFloat) {
        for (int i = 1 + 4 * nq; i < 4 * nq + 4; ++i) EXPECT_TRUE(sameBits(t[i], H{})) << "tap padding " << i;
        const H* rows = t + 4 * nq + 4;
        for (int q = 0; q < nq; ++q) {
          const H* s = want.data() + 1 + 4 * q;  // a1 a2 b1 b2
          const H row[4] = {s[0], diffOf(s[1], s[3]), s[1], diffOf(s[0], s[2])};
          for (int k = 0; k < 4; ++k) {
            EXPECT_TRUE(sameBits(rows[4 * q + k], row[k])) << "row of section " << q;
            EXPECT_TRUE(sameBits(rows[4 * nq + 8 * q + 2 * k], row[k])) << "doubled row of section " << q;
            EXPECT_TRUE(sameBits(rows[4 * nq + 8 * q + 2 * k + 1], row[k])) << "doubled row of section " << q;
          }
        }
      }
      ryxFree(ts.taps);
    }
  }
}

// A leading denominator tap of 2 halves every tap, b0 included; the last
// element keeps its value.
TEST(IirSetupExample, HalvedByLeadingTwo) {
  float t[6] = {2, 4, 6, 2, 1, 0.5f};
  RyxIirTapState ts{};
  ryxsIirlInit(0, t, 2, &ts);
  const float want[6] = {1, 2, 3, 0.5f, 0.25f, 0.5f};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(t[i], want[i]) << i;
  double d[6] = {2, 4, 6, 2, 1, 0.5};
  ryxdIirlInit(0, d, 2, &ts);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(d[i], want[i]) << i;
  // One section: gain b0/a0 = 1, then a1/a0, a2/a0, b1/b0, b2/b0.
  double s[6] = {2, 4, 6, 2, 1, 0.5};
  ryxdIirlInitBq(0, s, 1, &ts);
  const double sw[5] = {1, 0.5, 0.25, 2, 3};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(s[i], sw[i]) << i;
}

}  // namespace
}  // namespace iirtest
