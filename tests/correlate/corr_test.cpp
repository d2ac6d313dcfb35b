// Cross- and auto-correlation against long-double lag sums: every form,
// lags all negative, all positive, across zero and beyond the overlap, on
// both sides of the operation-count rule; the normalisations; the 16-bit
// forms by exact integer rules in every scale mode; the memory fall-back,
// the release of the thread's tables, the checks.
#include <functional>
#include <set>

#include "alloc_failure.h"
#include "corr_support.h"
#include "correlate/corr_core.h"
#include "frame/thread_context.h"

namespace corrtest {
namespace {

using ryx::corr::CorrShape;

// r(k) = sum conj(a[n]) b[n + k], and the same on magnitudes.
template <class A, class B>
std::vector<LD> refCorr(const std::vector<A>& a, const std::vector<B>& b, long long lo, long long hi,
                        std::vector<long double>* mag) {
  std::vector<LD> r;
  mag->clear();
  for (long long k = lo; k <= hi; ++k) {
    LD s = 0;
    long double m = 0;
    const long long n1 = static_cast<long long>(a.size()), n2 = static_cast<long long>(b.size());
    for (long long n = std::max(0LL, -k); n < std::min(n1, n2 - k); ++n) {
      s += mulLD(std::conj(wide(a[n])), wide(b[n + k]));
      m += std::abs(wide(a[n])) * std::abs(wide(b[n + k]));
    }
    r.push_back(s);
    mag->push_back(m);
  }
  return r;
}

struct Lags {
  int n1, n2, lo, hi;
};
const Lags kLags[] = {{50, 70, -40, -3}, {50, 70, 5, 40},  {33, 20, -20, 30}, {30, 40, 45, 60},
                      {30, 40, -40, -31}, {7, 9, 2, 2},    {1, 1, 0, 0},      {1500, 1200, -300, 400},
                      {4096, 300, 0, 63}, {700, 700, -1023, 0}};

template <class A, class B, class Y>
void crossForm(void (*fn)(const A*, int, const B*, int, Y*, int, int), CorrShape shape) {
  ryxtest::Random r(31);
  std::set<bool> seen;
  for (const Lags& l : kLags) {
    const auto a = randomVec<A>(r, l.n1);
    const auto b = randomVec<B>(r, l.n2);
    const int m = l.hi - l.lo + 1;
    std::vector<Y> y(static_cast<size_t>(m));
    ryxtest::ReportCapture cap;
    fn(a.data(), l.n1, b.data(), l.n2, y.data(), l.lo, l.hi);
    ASSERT_TRUE(cap.reports().empty());
    std::vector<long double> mag;
    const auto ref = refCorr(a, b, l.lo, l.hi, &mag);
    const bool freq = ryx::corr::crossFreqWins(shape, l.n1, m);
    seen.insert(freq);
    if (freq) {
      expectTransformBound(y, ref, mag, a, b, 2 * ryx::corr::upPow2(m), "cross, blocks");
    } else {
      expectDirectBound(y, ref, mag, std::min(l.n1, l.n2), "cross, direct");
    }
  }
  EXPECT_EQ(seen.size(), 2u) << "both methods reached";
}

TEST(CrossCorr, EveryFloatFormAgainstLagSums) {
  crossForm(ryxsCrossCorr, CorrShape::kReal);
  crossForm(ryxdCrossCorr, CorrShape::kReal);
  crossForm(ryxcCrossCorr, CorrShape::kComplex);
  crossForm(ryxzCrossCorr, CorrShape::kComplex);
  crossForm(ryxscCrossCorr, CorrShape::kMixed);
  crossForm(ryxcsCrossCorr, CorrShape::kMixed);
  crossForm(ryxdzCrossCorr, CorrShape::kMixed);
  crossForm(ryxzdCrossCorr, CorrShape::kMixed);
}

template <class T>
void autoForm(void (*fn)(const T*, int, T*, int, int)) {
  ryxtest::Random r(32);
  std::set<bool> seen;
  for (auto [len, nLags] : std::vector<std::pair<int, int>>{{40, 40}, {100, 7}, {1, 1}, {1500, 300}, {1200, 1200}}) {
    const auto x = randomVec<T>(r, len);
    std::vector<long double> mag;
    const auto raw = refCorr(x, x, 0, nLags - 1, &mag);
    const bool freq = ryx::corr::autoFreqWins(kIsComplex<T>, len, nLags);
    seen.insert(freq);
    for (int type : {RYX_CorrNormal, RYX_CorrBiased, RYX_CorrUnbiased}) {
      std::vector<T> y(static_cast<size_t>(nLags));
      fn(x.data(), len, y.data(), nLags, type);
      std::vector<LD> ref(raw);
      std::vector<long double> m(mag);
      for (int k = 0; k < nLags; ++k) {
        const long double d = type == RYX_CorrNormal ? 1 : type == RYX_CorrBiased ? len : len - k;
        ref[k] /= d;
        m[k] /= d;
      }
      if (freq) {
        expectTransformBound(y, ref, m, x, x, 2 * ryx::corr::upPow2(nLags), "auto, blocks");
      } else {
        expectDirectBound(y, ref, m, len + 2, "auto, direct");
      }
    }
  }
  EXPECT_EQ(seen.size(), 2u) << "both methods reached";
}

TEST(AutoCorr, EveryFloatFormAndNormalisation) {
  autoForm(ryxsAutoCorr);
  autoForm(ryxdAutoCorr);
  autoForm(ryxcAutoCorr);
  autoForm(ryxzAutoCorr);
}

// ---- 16 bits ----------------------------------------------------------------

// Exact sums of the lags, real and imaginary parts interleaved for complex
// results.
template <class A, class B>
std::vector<long long> sums16(const std::vector<A>& a, const std::vector<B>& b, long long lo, long long hi, bool cplx) {
  std::vector<long double> mag;
  std::vector<long long> out;
  for (const LD& v : refCorr(a, b, lo, hi, &mag)) {
    out.push_back(static_cast<long long>(v.real()));
    if (cplx) out.push_back(static_cast<long long>(v.imag()));
  }
  return out;
}

template <class A, class B, class Y>
void cross16(void (*fn)(const A*, int, const B*, int, Y*, int, int, int, int*)) {
  ryxtest::Random r(33);
  constexpr bool cplx = std::is_same_v<Y, WCplx>;
  for (const Lags& l : {Lags{50, 70, -40, -3}, Lags{50, 70, 5, 40}, Lags{33, 20, -20, 30}, Lags{30, 40, 45, 60}}) {
    const auto a = randomVec<A>(r, l.n1);
    const auto b = randomVec<B>(r, l.n2);
    const auto s = sums16(a, b, l.lo, l.hi, cplx);
    for (int mode = 0; mode < 8; ++mode) {
      int sf = 3, rf = 3;
      std::vector<Y> y(static_cast<size_t>(l.hi - l.lo + 1));
      fn(a.data(), l.n1, b.data(), l.n2, y.data(), l.lo, l.hi, mode, &sf);
      const auto want = narrowArray(s, mode, &rf);
      ASSERT_EQ(std::memcmp(y.data(), want.data(), want.size() * sizeof(short)), 0) << mode;
      EXPECT_EQ(sf, rf);
    }
  }
}

TEST(CrossCorr, Int16FormsExactInEveryMode) {
  cross16(ryxwCrossCorr);
  cross16(ryxvCrossCorr);
  cross16(ryxwvCrossCorr);
  cross16(ryxvwCrossCorr);
}

template <class T>
void auto16(void (*fn)(const T*, int, T*, int, int, int, int*)) {
  ryxtest::Random r(34);
  constexpr bool cplx = std::is_same_v<T, WCplx>;
  const int len = 60;
  const auto x = randomVec<T>(r, len);
  const auto s = sums16(x, x, 0, len - 1, cplx);
  for (int mode = 0; mode < 8; ++mode) {
    int sf = 2, rf = 2;
    std::vector<T> y(static_cast<size_t>(len));
    fn(x.data(), len, y.data(), len, RYX_CorrNormal, mode, &sf);
    const auto want = narrowArray(s, mode, &rf);
    ASSERT_EQ(std::memcmp(y.data(), want.data(), want.size() * sizeof(short)), 0) << mode;
  }
  // Biased and unbiased: the float quotient sum * (1/divisor), saturated
  // and truncated towards zero; the unbiased last lag divides by 1.
  for (int type : {RYX_CorrBiased, RYX_CorrUnbiased}) {
    std::vector<T> y(static_cast<size_t>(len));
    fn(x.data(), len, y.data(), len, type, RYX_SATURATE, nullptr);
    const short* got = reinterpret_cast<const short*>(y.data());
    const int parts = cplx ? 2 : 1;
    for (int k = 0; k < len; ++k)
      for (int p = 0; p < parts; ++p) {
        const float q = static_cast<float>(static_cast<int>(s[k * parts + p])) *
                        (1.0f / static_cast<float>(type == RYX_CorrBiased ? len : len - k));
        ASSERT_EQ(got[k * parts + p], static_cast<short>(std::clamp(std::trunc(q), -32768.0f, 32767.0f))) << k;
      }
  }
}

TEST(AutoCorr, Int16FormsExact) {
  auto16(ryxwAutoCorr);
  auto16(ryxvAutoCorr);
}

// ---- Memory and tables ---------------------------------------------------

TEST(CrossCorr, ShortMemoryFallsBackAndTablesAreReleased) {
  ryxtest::Random r(35);
  const auto a = randomVec<float>(r, 4000), b = randomVec<float>(r, 4000);
  ASSERT_TRUE(ryx::corr::crossFreqWins(CorrShape::kReal, 4000, 1001));
  std::vector<long double> mag;
  const auto ref = refCorr(a, b, -500, 500, &mag);
  std::vector<float> y(1001);
  ryxtest::ReportCapture cap;
  ryxsCrossCorr(a.data(), 4000, b.data(), 4000, y.data(), -500, 500);
  const RyxThreadContext* ctx = ryxGetThreadContext();
  for (int o = 0; o < 32; ++o) {
    EXPECT_EQ(ctx->bitRevTbl[o], nullptr) << o;
    EXPECT_EQ(ctx->cFftTwd[o], nullptr) << o;
  }
  for (int nth : {1, 2, 3}) {
    std::vector<float> z(1001);
    {
      ryxtest::FailAllocation fail(nth);
      ryxsCrossCorr(a.data(), 4000, b.data(), 4000, z.data(), -500, 500);
    }
    expectDirectBound(z, ref, mag, 4000, "fallback");
  }
  EXPECT_TRUE(cap.reports().empty());
}

}  // namespace
}  // namespace corrtest
