// The recursion of every type and form against the long-double model, with
// the per-step bound of lms_support.h: step positive, zero and negative,
// with and without leak, errDly 0 to 3, several taps counts and, for the
// group forms, several (downFactor, downPhase). Outputs, final taps and the
// kept error are compared.
#include "lms_support.h"

namespace lmstest {
namespace {

constexpr int kSteps = 24;

struct Setup {
  int tapsLen;
  int errDly;
  float step;
  float leak;
  int D;
  int P;
};

// Every setup of the sweep; single-sample forms take only D = 1.
std::vector<Setup> sweep(bool groups) {
  std::vector<Setup> all;
  const int shapes[][2] = {{1, 0}, {2, 0}, {2, 1}, {3, 2}, {4, 1}};
  for (int tapsLen : {1, 2, 5, 8}) {
    for (int errDly = 0; errDly <= 3; ++errDly) {
      for (float step : {0.125f, 0.0f, -0.0625f}) {
        for (float leak : {0.0f, 0.0625f}) {
          for (const auto& dp : shapes) {
            if (!groups && dp[0] != 1) continue;
            all.push_back({tapsLen, errDly, step, leak, dp[0], dp[1]});
          }
        }
      }
    }
  }
  return all;
}

std::string describe(const Setup& s) {
  return "tapsLen " + std::to_string(s.tapsLen) + " errDly " + std::to_string(s.errDly) + " step " +
         std::to_string(s.step) + " leak " + std::to_string(s.leak) + " D " + std::to_string(s.D) + " P " +
         std::to_string(s.P);
}

template <class C>
void start(Model<C>& m, const Setup& s, const std::vector<typename C::H>& taps,
           const std::vector<typename C::S>& history, int len) {
  for (const auto& t : taps) m.taps.push_back(toLC(t));
  m.bound.assign(taps.size(), 0);
  m.hist.push_back({});  // the cleared last place of the line
  for (const auto& x : history) m.hist.push_back(toLC(x));
  m.dlylLen = len;
  m.errDly = s.errDly;
  m.step = s.step;
  m.leak = s.leak;
}

// Caller-owned records with a random line (oldest first, the last place
// cleared) and random taps, and the model started from the same state.
template <class C>
struct LowLevel {
  using S = typename C::S;
  using H = typename C::H;
  std::vector<H> taps;
  std::vector<S> line;
  RyxLmsTapState ts{};
  RyxLmsDlyState ds{};
  Model<C> model;

  LowLevel(const Setup& s, ryxtest::Random& r) {
    taps = randomArray<H>(r, s.tapsLen);
    const int len = s.tapsLen + s.errDly + (s.D > 1 ? s.D : 0);
    line.assign(static_cast<size_t>(len + 1), S{});
    C::initMr(7, taps.data(), s.tapsLen, s.step, s.leak, s.errDly, s.D, s.P, &ts);
    C::initDlyl(&ts, line.data(), 1, &ds);
    EXPECT_EQ(ds.dlylLen, len);
    const std::vector<S> history = randomArray<S>(r, len - 1);
    C::setDlyl(&ts, nullptr, &ds);
    C::setDlyl(&ts, history.data(), &ds);
    start(model, s, taps, history, len);
  }
};

template <class C>
void expectTaps(const std::vector<typename C::H>& got, const Model<C>& m, const std::string& what) {
  for (size_t i = 0; i < got.size(); ++i) EXPECT_TRUE(within(got[i], m.taps[i], m.bound[i])) << what << " tap " << i;
}

template <class C>
class LmsRecursion : public ::testing::Test {};
TYPED_TEST_SUITE(LmsRecursion, AllCombos);

// Single samples with the caller's error, caller-owned records. Only the
// float form adapts on a negative step.
TYPED_TEST(LmsRecursion, SingleSampleCallerError) {
  using C = TypeParam;
  using S = typename C::S;
  using H = typename C::H;
  ryxtest::Random r(11);
  for (const Setup& s : sweep(false)) {
    LowLevel<C> f(s, r);
    const bool adapt = C::bitsRule ? s.step != 0.0f : s.step > 0.0f;
    for (int n = 0; n < kSteps; ++n) {
      const S x = randomValue<S>(r, -1, 1);
      const H e = randomValue<H>(r, -1, 1);
      const H y = C::lmsl(&f.ts, &f.ds, x, e);
      const LC want = f.model.stepOne(x, toLC(e), 0, adapt);
      ASSERT_TRUE(within(y, want, f.model.lastBound)) << describe(s) << " sample " << n;
    }
    std::vector<H> got(static_cast<size_t>(s.tapsLen));
    C::getTaps(&f.ts, got.data());
    expectTaps(got, f.model, describe(s));
  }
}

// Groups of D samples with the caller's error, caller-owned records; the
// group forms adapt for a step above 0 in every type.
TYPED_TEST(LmsRecursion, GroupCallerError) {
  using C = TypeParam;
  using S = typename C::S;
  using H = typename C::H;
  ryxtest::Random r(12);
  for (const Setup& s : sweep(true)) {
    LowLevel<C> f(s, r);
    for (int n = 0; n < kSteps; ++n) {
      const std::vector<S> xs = randomArray<S>(r, s.D);
      const H e = randomValue<H>(r, -1, 1);
      const H y = C::blmsl(&f.ts, &f.ds, xs.data(), e);
      const LC want = f.model.stepGroup(xs.data(), s.D, s.P, toLC(e), 0, s.step > 0.0f);
      ASSERT_TRUE(within(y, want, f.model.lastBound)) << describe(s) << " group " << n;
    }
    // Nothing is written beyond the caller's line, single-rate lines included.
    EXPECT_EQ(mag(toLC(f.line.back())), 0) << describe(s);
    std::vector<H> got(static_cast<size_t>(s.tapsLen));
    C::getTaps(&f.ts, got.data());
    expectTaps(got, f.model, describe(s));
  }
}

// Library-owned records: the caller's error in single samples and groups,
// then the desired-signal forms, where the update always runs (a zero step
// still leaks) and the error is kept in the record.
template <class C>
struct HighLevel {
  using S = typename C::S;
  using H = typename C::H;
  RyxLmsState st{};
  Model<C> model;
  HighLevel(const Setup& s, ryxtest::Random& r) {
    const std::vector<H> taps = randomArray<H>(r, s.tapsLen);
    const int len = s.tapsLen + s.errDly + (s.D > 1 ? s.D : 0);
    const std::vector<S> history = randomArray<S>(r, len - 1);
    C::hInitMr(3, taps.data(), s.tapsLen, history.data(), s.step, s.leak, s.errDly, s.D, s.P, &st);
    EXPECT_EQ(st.dlySt.dlylLen, len);
    EXPECT_EQ(st.tapSt.isFilterMode, 1);
    EXPECT_EQ(st.dlySt.isDlyFilterMode, 1);
    EXPECT_EQ(st.dlySt.adaptB, 1);
    start(model, s, taps, history, len);
  }
  ~HighLevel() { ryxLmsFree(&st); }
  void expectTapsNow(const std::string& what) {
    std::vector<H> got(static_cast<size_t>(model.taps.size()));
    C::hGetTaps(&st, got.data());
    expectTaps(got, model, what);
  }
};

TYPED_TEST(LmsRecursion, OwnedRecordCallerError) {
  using C = TypeParam;
  using S = typename C::S;
  using H = typename C::H;
  ryxtest::Random r(13);
  for (const Setup& s : sweep(true)) {
    HighLevel<C> f(s, r);
    for (int n = 0; n < kSteps; ++n) {
      const H e = randomValue<H>(r, -1, 1);
      if (s.D == 1 && n % 2 == 0) {
        const S x = randomValue<S>(r, -1, 1);
        const H y = C::lms(&f.st, x, e);
        const bool adapt = C::bitsRule ? s.step != 0.0f : s.step > 0.0f;
        const LC want = f.model.stepOne(x, toLC(e), 0, adapt);
        ASSERT_TRUE(within(y, want, f.model.lastBound)) << describe(s);
      } else {
        const std::vector<S> xs = randomArray<S>(r, s.D);
        const H y = C::blms(&f.st, xs.data(), e);
        const LC want = f.model.stepGroup(xs.data(), s.D, s.P, toLC(e), 0, s.step > 0.0f);
        ASSERT_TRUE(within(y, want, f.model.lastBound)) << describe(s);
      }
    }
    f.expectTapsNow(describe(s));
  }
}

TYPED_TEST(LmsRecursion, DesiredSignal) {
  using C = TypeParam;
  using S = typename C::S;
  using H = typename C::H;
  ryxtest::Random r(14);
  for (const Setup& s : sweep(true)) {
    HighLevel<C> f(s, r);
    // A kept error set by the caller drives the first update.
    const H first = randomValue<H>(r, -1, 1);
    C::hSetErr(first, &f.st);
    f.model.err = toLC(first);
    for (int n = 0; n < kSteps;) {
      if (s.D == 1 && n % 3 == 0) {
        const S x = randomValue<S>(r, -1, 1);
        const H d = randomValue<H>(r, -1, 1);
        const H y = C::des(&f.st, x, d);
        const LC want = f.model.des(&x, 1, 0, toLC(d));
        ASSERT_TRUE(within(y, want, f.model.lastBound)) << describe(s);
        ++n;
      } else {
        const int count = r.i32(1, 4);
        const std::vector<S> xs = randomArray<S>(r, count * s.D);
        const std::vector<H> ds = randomArray<H>(r, count);
        std::vector<H> ys(static_cast<size_t>(count));
        C::bdes(&f.st, xs.data(), ds.data(), ys.data(), count);
        for (int k = 0; k < count; ++k) {
          const LC want = f.model.des(xs.data() + k * s.D, s.D, s.P, toLC(ds[static_cast<size_t>(k)]));
          ASSERT_TRUE(within(ys[static_cast<size_t>(k)], want, f.model.lastBound)) << describe(s) << " k " << k;
        }
        n += count;
      }
      ASSERT_TRUE(within(C::hGetErr(&f.st), f.model.err, f.model.errBound)) << describe(s);
    }
    f.expectTapsNow(describe(s));
  }
}

}  // namespace
}  // namespace lmstest

namespace lmstest {
namespace {

// The two float single-sample forms fix the order of their output sums:
// the real one adds a lone first tap (odd count) and then the taps in pairs
// over two extended sums; the complex one rounds both running sums to float
// after each pair of taps. With a zero step the taps stay put, so each output
// can be written out from that rule and compared bit for bit.
TEST(LmsOutputOrder, FloatSingleSampleSums) {
  ryxtest::Random r(15);
  for (int len : {1, 2, 3, 6, 7}) {
    std::vector<float> taps = randomArray<float>(r, len);
    std::vector<SCplx> ctaps = randomArray<SCplx>(r, len);
    std::vector<float> line(size_t(len) + 1);
    std::vector<SCplx> cline(size_t(len) + 1);
    RyxLmsTapState ts{}, cts{};
    RyxLmsDlyState ds{}, cds{};
    ryxsLmslInit(0, taps.data(), len, 0.0f, 0.5f, 0, &ts);
    ryxsLmslInitDlyl(&ts, line.data(), 1, &ds);
    ryxcLmslInit(0, ctaps.data(), len, 0.0f, 0.5f, 0, &cts);
    ryxcLmslInitDlyl(&cts, cline.data(), 1, &cds);
    std::vector<float> xs;
    std::vector<SCplx> cxs;
    for (int n = 0; n < 12; ++n) {
      xs.insert(xs.begin(), randomValue<float>(r, -1, 1));
      cxs.insert(cxs.begin(), randomValue<SCplx>(r, -1, 1));
      auto x = [&](int i) { return i < int(xs.size()) ? ld(xs[size_t(i)]) : 0.0L; };
      auto cx = [&](int i) { return i < int(cxs.size()) ? toLC(cxs[size_t(i)]) : LC{}; };
      ld even = len % 2 ? ld(taps[0]) * x(0) : 0.0L, odd = 0;
      for (int i = len % 2; i < len; i += 2) {
        even += ld(taps[size_t(i)]) * x(i);
        odd += ld(taps[size_t(i + 1)]) * x(i + 1);
      }
      const float want = float(even + odd);
      const float got = ryxsLmsl(&ts, &ds, xs[0], 0.25f);
      EXPECT_TRUE(ryxtest::sameBits(&got, &want, 1)) << "s len " << len << " n " << n;
      float re = 0, im = 0;
      for (int i = 0; i < len; i += 2) {
        LC acc{re, im};
        for (int k = i; k < std::min(i + 2, len); ++k) acc = acc + toLC(ctaps[size_t(k)]) * cx(k);
        re = float(acc.re);
        im = float(acc.im);
      }
      const SCplx cwant{re, im};
      const SCplx cgot = ryxcLmsl(&cts, &cds, cxs[0], SCplx{0.25f, 0.5f});
      EXPECT_TRUE(ryxtest::sameBits(&cgot, &cwant, 1)) << "c len " << len << " n " << n;
    }
  }
}

}  // namespace
}  // namespace lmstest
