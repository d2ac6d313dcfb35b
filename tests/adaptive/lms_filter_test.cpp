// Whole-filter behaviour: identification of a known FIR through the
// desired-signal forms and through a delayed caller error; block Des in
// random cuts against single samples; the plain filtering forms against a
// direct convolution.
#include <functional>

#include "lms_support.h"

namespace lmstest {
namespace {

template <class C>
class LmsFilter : public ::testing::Test {};
TYPED_TEST_SUITE(LmsFilter, AllCombos);

// Relative tolerance of an identified tap set.
template <class H>
ld identifyTolerance() {
  return unitOf<H>() > 1e-10L ? 1e-3L : 1e-6L;
}

template <class C>
struct Plant {
  using S = typename C::S;
  using H = typename C::H;
  static constexpr int kTaps = 8;
  std::vector<H> h;
  std::vector<S> x;
  std::vector<H> d;
  explicit Plant(int n) {
    ryxtest::Random r(31);
    h = randomArray<H>(r, kTaps, -0.5, 0.5);
    x = randomArray<S>(r, n);
    for (int k = 0; k < n; ++k) {
      LC acc;
      for (int i = 0; i < kTaps && i <= k; ++i) acc = acc + toLC(h[size_t(i)]) * toLC(x[size_t(k - i)]);
      d.push_back(fromLC<H>(acc));
    }
  }
  ::testing::AssertionResult matches(const std::vector<H>& taps) const {
    ld worst = 0, size = 0;
    for (int i = 0; i < kTaps; ++i) {
      worst = std::max(worst, mag(toLC(taps[size_t(i)]) - toLC(h[size_t(i)])));
      size = std::max(size, mag(toLC(h[size_t(i)])));
    }
    if (worst <= identifyTolerance<H>() * size) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "largest tap error " << double(worst / size) << " relative";
  }
};

TYPED_TEST(LmsFilter, IdentifiesKnownFir) {
  using C = TypeParam;
  using S = typename C::S;
  using H = typename C::H;
  constexpr int kN = 4000;
  const Plant<C> p(kN);
  const float step = 0.1f;
  // Desired signal, single samples.
  {
    RyxLmsState st{};
    C::hInitMr(0, nullptr, Plant<C>::kTaps, nullptr, step, 0.0f, 0, 1, 0, &st);
    for (int k = 0; k < kN; ++k) C::des(&st, p.x[size_t(k)], p.d[size_t(k)]);
    std::vector<H> taps(Plant<C>::kTaps);
    C::hGetTaps(&st, taps.data());
    EXPECT_TRUE(p.matches(taps)) << "single samples";
    ryxLmsFree(&st);
  }
  // Desired signal, one block.
  {
    RyxLmsState st{};
    C::hInitMr(0, nullptr, Plant<C>::kTaps, nullptr, step, 0.0f, 0, 1, 0, &st);
    std::vector<H> y(kN);
    C::bdes(&st, p.x.data(), p.d.data(), y.data(), kN);
    std::vector<H> taps(Plant<C>::kTaps);
    C::hGetTaps(&st, taps.data());
    EXPECT_TRUE(p.matches(taps)) << "block";
    ryxLmsFree(&st);
  }
  // The caller's error, two samples late: at sample n it hands the error of
  // output n-1-errDly.
  {
    constexpr int kDly = 2;
    std::vector<H> taps(Plant<C>::kTaps, H{});
    std::vector<S> line(Plant<C>::kTaps + kDly + 1);
    RyxLmsTapState ts{};
    RyxLmsDlyState ds{};
    C::initMr(0, taps.data(), Plant<C>::kTaps, step / 2, 0.0f, kDly, 1, 0, &ts);
    C::initDlyl(&ts, line.data(), 1, &ds);
    C::setDlyl(&ts, nullptr, &ds);
    std::vector<H> errs;
    for (int k = 0; k < kN; ++k) {
      const int late = k - 1 - kDly;
      const H e = late >= 0 ? errs[size_t(late)] : H{};
      const H y = C::lmsl(&ts, &ds, p.x[size_t(k)], e);
      errs.push_back(fromLC<H>(toLC(p.d[size_t(k)]) - toLC(y)));
    }
    EXPECT_TRUE(p.matches(taps)) << "delayed caller error";
  }
}

// Block Des in random cuts gives the same bits as single samples on a
// single-rate filter, and as one block on a decimating one.
TYPED_TEST(LmsFilter, BlockDesInCutsEqualsSingleSamples) {
  using C = TypeParam;
  using S = typename C::S;
  using H = typename C::H;
  ryxtest::Random r(32);
  for (int D : {1, 3}) {
    const int groups = 90;
    const std::vector<S> x = randomArray<S>(r, groups * D);
    const std::vector<H> d = randomArray<H>(r, groups);
    const std::vector<H> h0 = randomArray<H>(r, 6);
    RyxLmsState whole{}, cut{};
    C::hInitMr(0, h0.data(), 6, nullptr, 0.05f, 0.01f, 1, D, D - 1, &whole);
    C::hInitMr(0, h0.data(), 6, nullptr, 0.05f, 0.01f, 1, D, D - 1, &cut);
    std::vector<H> yWhole(groups), yCut(groups);
    if (D == 1) {
      for (int k = 0; k < groups; ++k) yWhole[size_t(k)] = C::des(&whole, x[size_t(k)], d[size_t(k)]);
    } else {
      C::bdes(&whole, x.data(), d.data(), yWhole.data(), groups);
    }
    for (int k = 0; k < groups;) {
      const int n = std::min(r.i32(1, 9), groups - k);
      C::bdes(&cut, x.data() + k * D, d.data() + k, yCut.data() + k, n);
      k += n;
    }
    EXPECT_TRUE(ryxtest::sameBits(yWhole.data(), yCut.data(), groups)) << "D " << D;
    const H e1 = C::hGetErr(&whole), e2 = C::hGetErr(&cut);
    EXPECT_TRUE(ryxtest::sameBits(&e1, &e2, 1)) << "D " << D;
    ryxLmsFree(&whole);
    ryxLmsFree(&cut);
  }
}

// ---- Plain filtering --------------------------------------------------------

// One record per plain-filtering combination: sample type, tap type, the
// tap and line set-up routines and the two filters.
template <class S_, class H_, class O_>
struct NaCombo {
  using S = S_;
  using H = H_;
  using O = O_;
};

template <class N, class InitMr, class InitDlyl, class One, class Block>
void checkNa(const char* label, InitMr initMr, InitDlyl initDlyl, One one, Block block) {
  using S = typename N::S;
  using H = typename N::H;
  using O = typename N::O;
  const ld u = unitOf<O>();
  ryxtest::Random r(33);
  const int shapes[][4] = {{5, 0, 1, 0}, {6, 2, 1, 0}, {7, 1, 3, 1}, {4, 0, 2, 0}};  // taps, errDly, D, P
  for (const auto& sh : shapes) {
    const int len = sh[0], errDly = sh[1], D = sh[2], P = sh[3];
    const std::vector<H> h = randomArray<H>(r, len);
    std::vector<H> taps = h;
    std::vector<S> line(size_t(len + errDly + D + 1));
    RyxLmsTapState ts{};
    RyxLmsDlyState ds{};
    initMr(0, taps.data(), len, 0.5f, 0.1f, errDly, D, P, &ts);
    initDlyl(&ts, line.data(), 1, &ds);
    const int outs = 40;
    const std::vector<S> x = randomArray<S>(r, outs * D);
    auto direct = [&](int t) {
      LC acc;
      ld size = 0;
      for (int i = 0; i < len && i <= t; ++i) {
        acc = acc + toLC(h[size_t(i)]) * toLC(x[size_t(t - i)]);
        size += mag(toLC(h[size_t(i)])) * mag(toLC(x[size_t(t - i)]));
      }
      return std::pair<LC, ld>(acc, size);
    };
    std::vector<O> y(outs);
    if (D == 1) {
      // Single samples for the first half, a block for the rest.
      for (int t = 0; t < outs / 2; ++t) y[size_t(t)] = one(&ts, &ds, x[size_t(t)]);
      block(&ts, &ds, x.data() + outs / 2, y.data() + outs / 2, outs - outs / 2);
    } else {
      block(&ts, &ds, x.data(), y.data(), outs);
    }
    for (int n = 0; n < outs; ++n) {
      const auto [want, size] = direct(n * D + P);
      EXPECT_TRUE(within(y[size_t(n)], want, 4 * (len + 2) * u * size)) << label << " taps " << len << " D " << D
                                                                        << " output " << n;
    }
    EXPECT_TRUE(ryxtest::sameBits(taps.data(), h.data(), len)) << label << ": plain filtering left the taps";
  }
}

TEST(LmsPlainFilter, MatchesDirectConvolution) {
  checkNa<NaCombo<float, float, float>>("s", ryxsLmslInitMr, ryxsLmslInitDlyl, ryxsLmslNa, ryxsbLmslNa);
  checkNa<NaCombo<double, double, double>>("d", ryxdLmslInitMr, ryxdLmslInitDlyl, ryxdLmslNa, ryxdbLmslNa);
  checkNa<NaCombo<SCplx, SCplx, SCplx>>("c", ryxcLmslInitMr, ryxcLmslInitDlyl, ryxcLmslNa, ryxcbLmslNa);
  checkNa<NaCombo<DCplx, DCplx, DCplx>>("z", ryxzLmslInitMr, ryxzLmslInitDlyl, ryxzLmslNa, ryxzbLmslNa);
  checkNa<NaCombo<float, SCplx, SCplx>>("sc", ryxcLmslInitMr, ryxsLmslInitDlyl, ryxscLmslNa, ryxscbLmslNa);
  checkNa<NaCombo<SCplx, float, SCplx>>("cs", ryxsLmslInitMr, ryxcLmslInitDlyl, ryxcsLmslNa, ryxcsbLmslNa);
  checkNa<NaCombo<double, DCplx, DCplx>>("dz", ryxzLmslInitMr, ryxdLmslInitDlyl, ryxdzLmslNa, ryxdzbLmslNa);
  checkNa<NaCombo<DCplx, double, DCplx>>("zd", ryxdLmslInitMr, ryxzLmslInitDlyl, ryxzdLmslNa, ryxzdbLmslNa);
}

// The Out forms store what the forms without Out return.
TEST(LmsPlainFilter, OutFormsStoreTheResult) {
  ryxtest::Random r(34);
  SCplx taps[4], line[5] = {};
  float rtaps[4], rline[5] = {};
  for (auto& t : taps) t = randomValue<SCplx>(r, -1, 1);
  for (auto& t : rtaps) t = r.f32(-1, 1);
  auto run = [&](auto initT, auto* tp, auto initD, auto* lp, auto plain, auto out, auto sampleOf) {
    RyxLmsTapState ts{};
    RyxLmsDlyState d1{}, d2{};
    auto line1 = std::vector<std::remove_reference_t<decltype(lp[0])>>(5);
    auto line2 = line1;
    initT(0, tp, 4, 0.25f, 0.0f, 0, &ts);
    initD(&ts, line1.data(), 1, &d1);
    initD(&ts, line2.data(), 1, &d2);
    for (int k = 0; k < 6; ++k) {
      const auto x = sampleOf(k);
      SCplx got{-7, -7};
      const SCplx want = plain(&ts, &d1, x);
      out(&ts, &d2, x, &got);
      EXPECT_TRUE(ryxtest::sameBits(&got, &want, 1)) << k;
    }
  };
  auto cx = [&](int k) { return SCplx{float(k) * 0.5f, 1.0f - float(k)}; };
  auto rx = [&](int k) { return float(k) * 0.25f - 0.5f; };
  run(ryxcLmslInit, taps, ryxcLmslInitDlyl, line, ryxcLmslNa, ryxcLmslNaOut, cx);
  run(ryxcLmslInit, taps, ryxsLmslInitDlyl, rline, ryxscLmslNa, ryxscLmslNaOut, rx);
  run(ryxsLmslInit, rtaps, ryxcLmslInitDlyl, line, ryxcsLmslNa, ryxcsLmslNaOut, cx);
}

// The adaptive Out forms, low and high level, against their plain twins on
// a second identical filter.
TEST(LmsOutForms, StoreWhatTheTwinReturns) {
  ryxtest::Random r(35);
  const std::vector<SCplx> h = randomArray<SCplx>(r, 3);
  const std::vector<SCplx> xs = randomArray<SCplx>(r, 8);
  const std::vector<float> rs = randomArray<float>(r, 8);
  const SCplx e{0.25f, -0.5f};
  using Pair = std::pair<std::function<SCplx(RyxLmsState*, int)>, std::function<void(RyxLmsState*, int, SCplx*)>>;
  const std::vector<Pair> pairs = {
      {[&](RyxLmsState* s, int k) { return ryxcLms(s, xs[size_t(k)], e); },
       [&](RyxLmsState* s, int k, SCplx* v) { ryxcLmsOut(s, xs[size_t(k)], e, v); }},
      {[&](RyxLmsState* s, int k) { return ryxscLms(s, rs[size_t(k)], e); },
       [&](RyxLmsState* s, int k, SCplx* v) { ryxscLmsOut(s, rs[size_t(k)], e, v); }},
      {[&](RyxLmsState* s, int k) { return ryxcbLms(s, &xs[size_t(k)], e); },
       [&](RyxLmsState* s, int k, SCplx* v) { ryxcbLmsOut(s, &xs[size_t(k)], e, v); }},
      {[&](RyxLmsState* s, int k) { return ryxscbLms(s, &rs[size_t(k)], e); },
       [&](RyxLmsState* s, int k, SCplx* v) { ryxscbLmsOut(s, &rs[size_t(k)], e, v); }},
      {[&](RyxLmsState* s, int k) { return ryxcLmsDes(s, xs[size_t(k)], e); },
       [&](RyxLmsState* s, int k, SCplx* v) { ryxcLmsDesOut(s, xs[size_t(k)], e, v); }},
      {[&](RyxLmsState* s, int k) { return ryxscLmsDes(s, rs[size_t(k)], e); },
       [&](RyxLmsState* s, int k, SCplx* v) { ryxscLmsDesOut(s, rs[size_t(k)], e, v); }},
      {[&](RyxLmsState* s, int) { return ryxcLmsGetErrVal(s); },
       [&](RyxLmsState* s, int, SCplx* v) { ryxcLmsGetErrValOut(s, v); }},
  };
  for (size_t p = 0; p < pairs.size(); ++p) {
    RyxLmsState a{}, b{};
    ryxcLmsInit(0, h.data(), 3, nullptr, 0.125f, 0.0f, 0, &a);
    ryxcLmsInit(0, h.data(), 3, nullptr, 0.125f, 0.0f, 0, &b);
    const SCplx seed{0.5f, 0.25f};
    ryxcLmsSetErrVal(seed, &a);
    ryxcLmsSetErrVal(seed, &b);
    for (int k = 0; k < 8; ++k) {
      SCplx got{-9, -9};
      const SCplx want = pairs[p].first(&a, k);
      pairs[p].second(&b, k, &got);
      EXPECT_TRUE(ryxtest::sameBits(&got, &want, 1)) << "pair " << p << " k " << k;
    }
    ryxLmsFree(&a);
    ryxLmsFree(&b);
  }
  // Low level: Lmsl and bLmsl beside their Out forms.
  SCplx t1[3], t2[3], l1[4] = {}, l2[4] = {};
  float r1[4] = {}, r2[4] = {};
  for (int i = 0; i < 3; ++i) t1[i] = t2[i] = h[size_t(i)];
  RyxLmsTapState a{}, b{};
  RyxLmsDlyState da{}, db{}, ra{}, rb{};
  ryxcLmslInit(0, t1, 3, 0.125f, 0.0f, 0, &a);
  ryxcLmslInit(0, t2, 3, 0.125f, 0.0f, 0, &b);
  ryxcLmslInitDlyl(&a, l1, 1, &da);
  ryxcLmslInitDlyl(&b, l2, 1, &db);
  ryxsLmslInitDlyl(&a, r1, 1, &ra);
  ryxsLmslInitDlyl(&b, r2, 1, &rb);
  for (int k = 0; k < 8; ++k) {
    SCplx got{}, want{};
    switch (k % 4) {
      case 0:
        want = ryxcLmsl(&a, &da, xs[size_t(k)], e);
        ryxcLmslOut(&b, &db, xs[size_t(k)], e, &got);
        break;
      case 1:
        want = ryxcbLmsl(&a, &da, &xs[size_t(k)], e);
        ryxcbLmslOut(&b, &db, &xs[size_t(k)], e, &got);
        break;
      case 2:
        want = ryxscLmsl(&a, &ra, rs[size_t(k)], e);
        ryxscLmslOut(&b, &rb, rs[size_t(k)], e, &got);
        break;
      default:
        want = ryxscbLmsl(&a, &ra, &rs[size_t(k)], e);
        ryxscbLmslOut(&b, &rb, &rs[size_t(k)], e, &got);
        break;
    }
    EXPECT_TRUE(ryxtest::sameBits(&got, &want, 1)) << k;
  }
}

}  // namespace
}  // namespace lmstest
