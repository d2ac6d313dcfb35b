// The one-pass update and sum of the LMS steps against the step as its three
// parts (update loop, move of the line, extended sum), bit for bit: outputs,
// taps and lines of the desired-signal forms (block and single) and the group
// form with the caller's error; steps positive, zero and negative, errDly,
// downFactor and phase, tap counts odd and even, blocks of eight and tails.
#include "adaptive/lms_core.h"
#include "lms_support.h"

namespace lmstest {
namespace {

namespace k = ryx::lms;

template <class S, class H>
H partsStep(RyxLmsState& st, const S* in, H e, k::Adapt rule, bool group) {
  RyxLmsTapState* ts = &st.tapSt;
  RyxLmsDlyState* ds = &st.dlySt;
  auto* taps = static_cast<H*>(ts->taps);
  auto* line = static_cast<S*>(ds->dlyl);
  const int len = ts->tapsLen, D = group ? ts->downFactor : 1, base = group ? D - 1 - ts->downPhase : 0;
  if (k::adapts(rule, ts->step))
    k::updateTaps(taps, len, line, ds->dlylLen, base + ts->errDly, ts->leak, k::scaleErr(e, ts->step));
  group ? k::pushGroup(line, ds->dlylLen, len + ts->errDly, D, in) : k::pushOne(line, ds->dlylLen, in[0]);
  return k::dotOut(line + base, taps, len);
}

template <class C>
class FusedPass : public ::testing::Test {};
TYPED_TEST_SUITE(FusedPass, AllCombos);

TYPED_TEST(FusedPass, EqualsUpdateMoveSum) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  ryxtest::Random rng(5);
  for (float step : {0.05f, 0.0f, -0.05f})
    for (int len : {1, 2, 3, 8, 33})
      for (int errDly : {0, 2})
        for (auto [D, P] : {std::pair{1, 0}, {3, 0}, {3, 2}}) {
          SCOPED_TRACE(::testing::Message() << step << " " << len << " " << errDly << " " << D << " " << P);
          const std::vector<H> h0 = randomArray<H>(rng, len), des = randomArray<H>(rng, 10);
          const std::vector<S> x = randomArray<S>(rng, 10 * D);
          RyxLmsState a, b;
          for (RyxLmsState* st : {&a, &b}) TypeParam::hInitMr(0, h0.data(), len, nullptr, step, 0.01f, errDly, D, P, st);
          std::vector<H> got(10);
          TypeParam::bdes(&a, x.data(), des.data(), got.data(), 6);  // then single Des, then group with given error
          H e{};
          for (int n = 0; n < 10; ++n) {
            const S* in = x.data() + n * D;
            if (n >= 6) got[n] = n < 8 ? TypeParam::des(&a, in[0], des[n]) : TypeParam::blms(&a, in, des[n]);
            const H want = partsStep(b, in, n < 8 ? e : des[n], n < 8 ? k::Adapt::always : k::Adapt::positive, n != 6 && n != 7);
            ASSERT_TRUE(ryxtest::sameBits(&got[n], &want, 1)) << "sample " << n;
            e = k::minus(des[n], want);
          }
          ASSERT_TRUE(ryxtest::sameBits(static_cast<H*>(a.tapSt.taps), static_cast<H*>(b.tapSt.taps), len));
          ASSERT_TRUE(ryxtest::sameBits(static_cast<S*>(a.dlySt.dlyl), static_cast<S*>(b.dlySt.dlyl), a.dlySt.dlylLen));
          ryxLmsFree(&a);
          ryxLmsFree(&b);
        }
}

}  // namespace
}  // namespace lmstest
