// Low-level filters of all eight type combinations against the long double
// references, for arbitrary orders 0..16 and cascades of 1..8 sections under
// every iirType: random chunks of blocks, single samples and Out calls, the
// outputs and the delay line checked after each chunk within
//   C*eps*G*E,  C = 8*(order+2),
// eps the unit roundoff of the result type, G and E as in iir_support.h.
// Then a copy of the delay line at another alignment continues bit for bit.
#include "iir_support.h"
#include "test_support.h"

namespace iirtest {
namespace {

using ryxtest::Guarded;

TEST(IirReference, MatchesTextbookForms) {
  std::mt19937 g(11);
  for (int order = 0; order <= 10; ++order) {
    for (bool cplx : {false, true}) {
      const std::vector<DCplx> raw = cplx ? randomArbTaps<DCplx>(g, order) : [&] {
        std::vector<DCplx> v;
        for (double t : randomArbTaps<double>(g, order)) v.push_back({t, 0});
        return v;
      }();
      std::vector<RC> b, a;
      for (int i = 0; i <= order; ++i) {
        b.push_back(toRC(raw[i]));
        a.push_back(toRC(raw[order + 1 + i]));
      }
      ArbRef ref;
      ref.d.assign(order, RC{});
      for (int i = 0; i <= order; ++i) {
        ref.b.push_back(b[i] / a[0]);
        ref.a.push_back(a[i] / a[0]);
      }
      std::vector<RC> x;
      for (int n = 0; n < 150; ++n) x.push_back(toRC(randomValue<DCplx>(g)));
      const std::vector<RC> want = directForm(b, a, x);
      for (size_t n = 0; n < x.size(); ++n) {
        const RC y = ref.step(x[n]);
        ASSERT_LE(mag(y - want[n]), 1e-15L * (1 + mag(want[n]))) << "order " << order << " n " << n;
      }
    }
  }
  for (int nq = 1; nq <= 6; ++nq) {
    const std::vector<DCplx> raw = randomBqTaps<DCplx>(g, nq);
    BqRef ref{{1, 0}, {}, {}};
    std::vector<RC> x, want;
    for (int n = 0; n < 150; ++n) x.push_back(toRC(randomValue<DCplx>(g)));
    want = x;
    for (int q = 0; q < nq; ++q) {
      const RC* s = nullptr;
      std::vector<RC> t;
      for (int k = 0; k < 6; ++k) t.push_back(toRC(raw[6 * q + k]));
      s = t.data();
      ref.gain = ref.gain * s[0] / s[3];
      ref.sec.push_back({s[4] / s[3], s[5] / s[3], s[1] / s[0], s[2] / s[0]});
      want = directForm({s[0], s[1], s[2]}, {s[3], s[4], s[5]}, want);
    }
    ref.d.assign(2 * nq, RC{});
    for (size_t n = 0; n < x.size(); ++n) {
      const RC y = ref.step(x[n]);
      ASSERT_LE(mag(y - want[n]), 1e-15L * (1 + mag(want[n]))) << nq << " sections, n " << n;
    }
  }
}

template <class C>
class IirFilter : public ::testing::Test {};
TYPED_TEST_SUITE(IirFilter, AllCombos, ComboNames);

// A tap state set up from random taps of a stable filter under iirType,
// with what happened to the caller's array checked on the way.
template <class C>
struct TapSetup {
  using H = typename C::H;
  std::vector<H> raw, arr;
  H* inner = nullptr;
  RyxIirTapState ts{};
  bool cascade;
  int iirType;

  TapSetup(std::mt19937& g, bool bq, int count, int type) : cascade(bq), iirType(type) {
    raw = bq ? randomBqTaps<H>(g, count) : randomArbTaps<H>(g, count);
    arr = raw;
    inner = arr.data();
    H* arg = type == 2 ? reinterpret_cast<H*>(&inner) : arr.data();
    ryxSetErrStatus(0);
    (bq ? Side<H>::initBq : Side<H>::init)(type, arg, count, &ts);
    EXPECT_EQ(ryxGetErrStatus(), 0);
    EXPECT_EQ(ts.iirType, type);
    const bool tables = type == 2 && C::isFloat;
    EXPECT_EQ(ts.tapForm, (bq ? 2 : 0) + (tables ? 1 : 0));
    EXPECT_EQ(ts.order, bq ? 2 * count : count);
    if (tables) {
      EXPECT_NE(inner, arr.data());
      EXPECT_EQ(ts.taps, inner);
      EXPECT_TRUE(std::memcmp(arr.data(), raw.data(), raw.size() * sizeof(H)) == 0) << "caller's taps changed";
    } else if (type == 2) {
      EXPECT_EQ(inner, nullptr) << "adopted array still the caller's";
      EXPECT_EQ(ts.taps, arr.data());
    } else {
      EXPECT_EQ(ts.taps, arr.data());
    }
  }
  ~TapSetup() {
    if (iirType == 2 && C::isFloat) ryxFree(ts.taps);
  }
  const H* stored() const { return static_cast<const H*>(ts.taps); }
};

template <class C, class Ref>
void checkAgainst(std::mt19937& g, TapSetup<C>& setup, Ref ref, const char* what) {
  using S = typename C::S;
  using O = typename C::O;
  const int order = setup.ts.order;
  const RyxIirTapState& ts = setup.ts;
  SCOPED_TRACE(::testing::Message() << what << " order " << order << " iirType " << setup.iirType);

  // Naturally aligned but off every vector boundary.
  Guarded<O> line(order, alignof(O));
  RyxIirDlyState ds{};
  for (int i = 0; i < order; ++i) line[i] = randomValue<O>(g);
  Side<O>::initDlyl(&ts, line.data(), &ds);
  ASSERT_EQ(ds.dlyl, line.data());
  for (int i = 0; i < order; ++i) ASSERT_TRUE(sameBits(line[i], O{})) << "line not cleared at " << i;
  // The caller writes a starting state straight into the line.
  for (int i = 0; i < order; ++i) {
    line[i] = randomValue<O>(g, -0.5, 0.5);
    ref.d[i] = toRC(line[i]);
  }

  const int total = 260;
  const std::vector<S> x = randomVec<S>(g, total);
  Guarded<O> y(total, 2 * alignof(O));
  std::vector<RC> want(total);
  ld outErr = 0, lineErr = 0;
  int n = 0;
  while (n < total) {
    const int kind = static_cast<int>(g() % 4);
    int len = 1;
    if (kind <= 1) {
      len = std::min(total - n, static_cast<int>(g() % 40));
      C::block(&ts, &ds, x.data() + n, y.data() + n, len);
    } else {
      bool done = false;
      if constexpr (C::hasOut) {
        if (kind == 3) {
          C::out(&ts, &ds, x[n], &y[n]);
          done = true;
        }
      }
      if (!done) y[n] = C::step(&ts, &ds, x[n]);
    }
    for (int k = n; k < n + len; ++k) {
      want[k] = ref.step(toRC(x[k]));
      outErr = std::max(outErr, mag(toRC(y[k]) - want[k]));
    }
    for (int i = 0; i < order; ++i) lineErr = std::max(lineErr, mag(toRC(line[i]) - ref.d[i]));
    n += len;
  }
  ASSERT_EQ(ryxGetErrStatus(), 0);
  const ld bound = 8 * (order + 2) * epsOf<O>() * ref.errorGain() * ref.stepMax;
  EXPECT_LE(outErr, bound) << "outputs, bound " << bound;
  EXPECT_LE(lineErr, bound) << "delay line, bound " << bound;
  EXPECT_TRUE(y.intact() && line.intact()) << "write outside the arrays";

  // The line is the whole state: a copy elsewhere continues bit for bit.
  Guarded<O> copy(order, 3 * alignof(O));
  for (int i = 0; i < order; ++i) copy[i] = line[i];
  RyxIirDlyState ds2{copy.data()};
  const std::vector<S> more = randomVec<S>(g, 45);
  std::vector<O> y1(more.size()), y2(more.size());
  C::block(&ts, &ds, more.data(), y1.data(), 20);
  C::block(&ts, &ds2, more.data(), y2.data(), 20);
  for (size_t k = 20; k < more.size(); ++k) {
    y1[k] = C::step(&ts, &ds, more[k]);
    y2[k] = C::step(&ts, &ds2, more[k]);
  }
  for (size_t k = 0; k < more.size(); ++k) ASSERT_TRUE(sameBits(y1[k], y2[k])) << "copied line, output " << k;
  for (int i = 0; i < order; ++i) ASSERT_TRUE(sameBits(line[i], copy[i])) << "copied line, element " << i;
}

TYPED_TEST(IirFilter, ArbitraryOrderMatchesReference) {
  using H = typename TypeParam::H;
  std::mt19937 g(100);
  for (int iirType = 0; iirType <= 2; ++iirType) {
    for (int order = 0; order <= 16; ++order) {
      TapSetup<TypeParam> setup(g, false, order, iirType);
      checkAgainst(g, setup, arbRefOf<H>(setup.stored(), order), "arbitrary");
      if (::testing::Test::HasFatalFailure()) return;
    }
  }
}

TYPED_TEST(IirFilter, CascadeMatchesReference) {
  using H = typename TypeParam::H;
  std::mt19937 g(200);
  for (int iirType = 0; iirType <= 2; ++iirType) {
    for (int nq = 1; nq <= 8; ++nq) {
      TapSetup<TypeParam> setup(g, true, nq, iirType);
      checkAgainst(g, setup, bqRefOf<H>(setup.stored(), nq), "cascade");
      if (::testing::Test::HasFatalFailure()) return;
    }
  }
}

// Order 0 multiplies by b0/a0 and needs no line; a block of no samples
// writes nothing.
TYPED_TEST(IirFilter, OrderZeroAndEmptyBlocks) {
  using C = TypeParam;
  using S = typename C::S;
  using O = typename C::O;
  using H = typename C::H;
  std::mt19937 g(300);
  for (int iirType = 0; iirType <= 2; ++iirType) {
    TapSetup<C> setup(g, false, 0, iirType);
    RyxIirDlyState ds{};
    Side<O>::initDlyl(&setup.ts, nullptr, &ds);
    ASSERT_EQ(ryxGetErrStatus(), 0);
    const S x = randomValue<S>(g);
    const RC want = toRC(setup.raw[0]) / toRC(setup.raw[1]) * toRC(x);
    const O y = C::step(&setup.ts, &ds, x);
    EXPECT_LE(mag(toRC(y) - want), 4 * epsOf<O>() * mag(want));
    std::vector<S> src = randomVec<S>(g, 3);
    std::vector<O> dst(3, fromRC<O>({7, 7}));
    C::block(&setup.ts, &ds, src.data(), dst.data(), 3);
    for (int k = 0; k < 3; ++k) EXPECT_TRUE(sameBits(dst[k], C::step(&setup.ts, &ds, src[k])));
  }
  TapSetup<C> setup(g, true, 3, 0);
  std::vector<O> line(6, fromRC<O>({1, 2}));
  RyxIirDlyState ds{line.data()};
  std::vector<S> src = randomVec<S>(g, 4);
  std::vector<O> dst(4, fromRC<O>({7, 7}));
  C::block(&setup.ts, &ds, src.data(), dst.data(), 0);
  EXPECT_EQ(ryxGetErrStatus(), 0);
  for (const O& v : dst) EXPECT_TRUE(sameBits(v, fromRC<O>({7, 7})));
  for (const O& v : line) EXPECT_TRUE(sameBits(v, fromRC<O>({1, 2})));
  (void)sizeof(H);
}

// The real float cascade with tables runs its blocks on a wavefront of up to
// four sections; every block length and section count gives the bits of
// the single-sample form, in place too.
TEST(IirFilterFloat, CascadeBlocksMatchSingleSamples) {
  std::mt19937 g(400);
  for (int nq = 1; nq <= 9; ++nq) {
    for (int n : {0, 1, 2, 3, 4, 5, 7, 8, 9, 13, 64}) {
      TapSetup<ComboS> setup(g, true, nq, 2);
      std::vector<float> l1 = randomVec<float>(g, 2 * nq, -0.5, 0.5), l2 = l1, l3 = l1;
      RyxIirDlyState d1{l1.data()}, d2{l2.data()}, d3{l3.data()};
      const std::vector<float> x = randomVec<float>(g, n + 1);
      std::vector<float> yb(n + 1), ys(n + 1), yi = x;
      ryxsbIirl(&setup.ts, &d1, x.data(), yb.data(), n);
      for (int k = 0; k < n; ++k) ys[k] = ryxsIirl(&setup.ts, &d2, x[k]);
      ryxsbIirl(&setup.ts, &d3, yi.data(), yi.data(), n);
      for (int k = 0; k < n; ++k) {
        ASSERT_TRUE(sameBits(yb[k], ys[k])) << nq << " sections, n " << n << ", output " << k;
        ASSERT_TRUE(sameBits(yi[k], ys[k])) << "in place, " << nq << " sections, n " << n << ", output " << k;
      }
      for (int i = 0; i < 2 * nq; ++i) {
        ASSERT_TRUE(sameBits(l1[i], l2[i]) && sameBits(l3[i], l2[i])) << nq << " sections, n " << n << ", line " << i;
      }
    }
  }
}

}  // namespace
}  // namespace iirtest
