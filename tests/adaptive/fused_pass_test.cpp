// The one-pass update and sum of the LMS steps against the step written as
// its three parts (update loop, move of the line, extended sum), bit for
// bit: outputs, taps and lines of the desired-signal forms (single and
// block), the group form with the caller's error and, where it takes the
// general sum, the single form; steps positive, zero and negative, errDly,
// downFactor and phase, tap counts odd and even.
#include "adaptive/lms_core.h"
#include "lms_support.h"

namespace lmstest {
namespace {

using ryx::lms::Adapt;

// The model: update, move, sum, on the record's own arrays.
template <class S, class H>
H partsStep(RyxLmsState& st, const S* samples, H e, Adapt rule, bool group) {
  RyxLmsTapState* ts = &st.tapSt;
  RyxLmsDlyState* ds = &st.dlySt;
  auto* taps = static_cast<H*>(ts->taps);
  auto* line = static_cast<S*>(ds->dlyl);
  const int len = ts->tapsLen, D = group ? ts->downFactor : 1, base = group ? D - 1 - ts->downPhase : 0;
  if (ryx::lms::adapts(rule, ts->step))
    ryx::lms::updateTaps(taps, len, line, ds->dlylLen, base + ts->errDly, ts->leak, ryx::lms::scaleErr(e, ts->step));
  if (group) ryx::lms::pushGroup(line, ds->dlylLen, len + ts->errDly, D, samples);
  else ryx::lms::pushOne(line, ds->dlylLen, samples[0]);
  return ryx::lms::dotOut(line + base, taps, len);
}

template <class C>
class FusedPass : public ::testing::Test {};
TYPED_TEST_SUITE(FusedPass, AllCombos);

TYPED_TEST(FusedPass, EqualsUpdateMoveSum) {
  using C = TypeParam;
  using S = typename C::S;
  using H = typename C::H;
  ryxtest::Random rng(5);
  for (float step : {0.05f, 0.0f, -0.05f})
    for (int len : {1, 2, 3, 8, 33})
      for (int errDly : {0, 2})
        for (auto [D, P] : {std::pair{1, 0}, {3, 0}, {3, 2}}) {
          SCOPED_TRACE(::testing::Message() << "step " << step << " len " << len << " errDly " << errDly << " D " << D << " P " << P);
          const std::vector<H> h0 = randomArray<H>(rng, len);
          RyxLmsState a, b;
          C::hInitMr(0, h0.data(), len, nullptr, step, 0.01f, errDly, D, P, &a);
          C::hInitMr(0, h0.data(), len, nullptr, step, 0.01f, errDly, D, P, &b);
          const std::vector<S> x = randomArray<S>(rng, 12 * D);
          const std::vector<H> des = randomArray<H>(rng, 12);
          std::vector<H> got(12);
          H e{};
          // Block of desired values, then single ones, then group and single forms with a given error.
          C::bdes(&a, x.data(), des.data(), got.data(), 6);
          for (int n = 0; n < 12; ++n) {
            const S* in = x.data() + n * D;
            H want;
            if (n < 6) {
              want = partsStep(b, in, e, Adapt::always, true);
            } else if (n < 8) {
              got[n] = C::des(&a, in[0], des[n]);
              want = partsStep(b, in, e, Adapt::always, false);
            } else if (n < 10) {
              got[n] = C::blms(&a, in, des[n]);
              want = partsStep(b, in, des[n], Adapt::positive, true);
            } else {
              const bool general = !std::is_same_v<C, CC> && !(std::is_same_v<C, SS> && b.dlySt.dlylLen == 1);
              if (!general) continue;
              got[n] = C::lms(&a, in[0], des[n]);
              want = partsStep(b, in, des[n], std::is_same_v<C, SS> ? Adapt::bits : Adapt::positive, false);
            }
            ASSERT_TRUE(ryxtest::sameBits(&got[n], &want, 1)) << "sample " << n;
            e = ryx::lms::minus(des[n], want);
          }
          ASSERT_TRUE(ryxtest::sameBits(static_cast<H*>(a.tapSt.taps), static_cast<H*>(b.tapSt.taps), len));
          ASSERT_TRUE(ryxtest::sameBits(static_cast<S*>(a.dlySt.dlyl), static_cast<S*>(b.dlySt.dlyl), a.dlySt.dlylLen));
          ryxLmsFree(&a);
          ryxLmsFree(&b);
        }
}

}  // namespace
}  // namespace lmstest
