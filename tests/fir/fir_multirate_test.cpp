// Multirate filters of both forms against the definition: insert upFactor-1
// zeros after each input, filter at the high rate, keep one output of
// downFactor (reference in long double, bound 2 * eps * (taps + 2) * sum of
// term magnitudes). Every multirate sum runs in one order whatever the block
// cut, so cuts must agree bit for bit.
#include <algorithm>

#include "fir_support.h"

namespace firtest {
namespace {

struct Rates {
  int up, upPhase, down, downPhase;
};

// Decimation only, interpolation only and rational pairs, phases off zero.
const Rates kRates[] = {{1, 0, 2, 0}, {1, 0, 3, 2}, {1, 0, 4, 1}, {2, 1, 1, 0}, {3, 0, 1, 0}, {4, 3, 1, 0},
                        {2, 1, 3, 0}, {3, 2, 2, 1}, {4, 1, 4, 3}, {5, 3, 2, 0}, {2, 0, 2, 1}, {3, 1, 5, 4}};
const int kTapCounts[] = {1, 2, 5, 7, 16, 23, 64};

template <class C>
class Multirate : public ::testing::Test {};
TYPED_TEST_SUITE(Multirate, AllCombos, ComboNames);

int ceilDiv(int a, int b) { return (a + b - 1) / b; }

TYPED_TEST(Multirate, LowLevelMatchesZeroInsertFilterDecimate) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(31);
  for (const Rates& r : kRates) {
    for (int len : kTapCounts) {
      const int w = ceilDiv(len, r.up);
      std::vector<H> taps = randomVec<H>(gen, len);
      for (int iters : {1, 2, 5, 40}) {
        RyxFirTapState ts{};
        RyxFirDlyState ds{};
        std::vector<S> line(static_cast<size_t>(w));
        TypeParam::firlInitMr(taps.data(), len, r.up, r.upPhase, r.down, r.downPhase, &ts);
        TypeParam::firlInitDlyl(&ts, line.data(), &ds);
        ASSERT_EQ(ds.dlylLen, w);
        const std::vector<S> hist = randomVec<S>(gen, w);
        TypeParam::firlSetDlyl(&ts, hist.data(), &ds);
        const int inputs = iters * r.down, outputs = iters * r.up;
        const std::vector<S> input = randomVec<S>(gen, inputs);
        std::vector<O> out(static_cast<size_t>(outputs) + 1);
        const O guard = out.back();
        TypeParam::bFirl(&ts, &ds, input.data(), out.data(), iters);
        const auto want = zeroInsertFilterDecimate(taps, hist, input, r.up, r.upPhase, r.down, r.downPhase);
        ASSERT_EQ(static_cast<int>(want.size()), outputs);
        for (int i = 0; i < outputs; ++i) {
          ASSERT_TRUE(near(out[static_cast<size_t>(i)], want[static_cast<size_t>(i)], len))
              << "up " << r.up << "/" << r.upPhase << " down " << r.down << "/" << r.downPhase << " taps " << len
              << " iters " << iters << " output " << i;
        }
        EXPECT_TRUE(sameBits(out.back(), guard));
        // The visible history of a multirate line is all dlylLen places.
        std::vector<S> after(static_cast<size_t>(w));
        TypeParam::firlGetDlyl(&ts, &ds, after.data());
        std::vector<S> all = hist;
        all.insert(all.end(), input.begin(), input.end());
        for (int k = 0; k < w; ++k) ASSERT_TRUE(sameBits(after[static_cast<size_t>(k)], all[all.size() - w + static_cast<size_t>(k)]));
      }
    }
  }
}

TYPED_TEST(Multirate, HighLevelMatchesZeroInsertFilterDecimate) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(32);
  for (const Rates& r : kRates) {
    for (int len : kTapCounts) {
      const int w = ceilDiv(len, r.up);
      const std::vector<H> taps = randomVec<H>(gen, len);
      // Short blocks stay in the staging room; 70 iterations pass extLen.
      for (int iters : {1, 3, 70}) {
        RyxFirState st{};
        const std::vector<S> hist = randomVec<S>(gen, w);
        TypeParam::firInitMr(taps.data(), len, hist.data(), r.up, r.upPhase, r.down, r.downPhase, &st);
        ASSERT_EQ(st.initMark, &st);
        ASSERT_EQ(st.dlylLen, w);
        ASSERT_EQ(st.extLen % r.down, 0);
        ASSERT_GE(st.extLen, std::max(w, 127));
        ASSERT_LT(st.extLen - r.down, std::max(w, 127));
        std::vector<H> back(static_cast<size_t>(len));
        TypeParam::firGetTaps(&st, back.data());
        for (int k = 0; k < len; ++k) ASSERT_TRUE(sameBits(back[static_cast<size_t>(k)], taps[static_cast<size_t>(k)]));

        const int inputs = iters * r.down, outputs = iters * r.up;
        const std::vector<S> input = randomVec<S>(gen, 2 * inputs);
        const std::vector<S> first(input.begin(), input.begin() + inputs);
        std::vector<O> out(static_cast<size_t>(2 * outputs) + 1);
        const O guard = out.back();
        TypeParam::bFir(&st, input.data(), out.data(), iters);
        TypeParam::bFir(&st, input.data() + inputs, out.data() + outputs, iters);
        const auto want = zeroInsertFilterDecimate(taps, hist, input, r.up, r.upPhase, r.down, r.downPhase);
        for (int i = 0; i < 2 * outputs; ++i) {
          ASSERT_TRUE(near(out[static_cast<size_t>(i)], want[static_cast<size_t>(i)], len))
              << "up " << r.up << "/" << r.upPhase << " down " << r.down << "/" << r.downPhase << " taps " << len
              << " iters " << iters << " output " << i;
        }
        EXPECT_TRUE(sameBits(out.back(), guard));
        std::vector<S> after(static_cast<size_t>(w));
        TypeParam::firGetDlyl(&st, after.data());
        std::vector<S> all = hist;
        all.insert(all.end(), input.begin(), input.end());
        for (int k = 0; k < w; ++k) ASSERT_TRUE(sameBits(after[static_cast<size_t>(k)], all[all.size() - w + static_cast<size_t>(k)]));
        ryxFirFree(&st);
      }
    }
  }
}

// A long stream cut at random multiples of downFactor gives the same bits
// as one block, in both forms.
TYPED_TEST(Multirate, BlockCutsAgreeBitForBit) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(33);
  for (const Rates& r : {Rates{1, 0, 3, 1}, Rates{3, 1, 2, 1}, Rates{4, 0, 3, 2}}) {
    const int len = 29, iters = 120;
    const int w = ceilDiv(len, r.up);
    std::vector<H> taps = randomVec<H>(gen, len);
    const std::vector<S> input = randomVec<S>(gen, iters * r.down);

    RyxFirTapState ts{};
    TypeParam::firlInitMr(taps.data(), len, r.up, r.upPhase, r.down, r.downPhase, &ts);
    std::vector<S> lineA(static_cast<size_t>(w)), lineB(static_cast<size_t>(w));
    RyxFirDlyState a{}, b{};
    TypeParam::firlInitDlyl(&ts, lineA.data(), &a);
    TypeParam::firlInitDlyl(&ts, lineB.data(), &b);
    TypeParam::firlSetDlyl(&ts, nullptr, &a);
    TypeParam::firlSetDlyl(&ts, nullptr, &b);
    RyxFirState hw{}, hc{};
    TypeParam::firInitMr(taps.data(), len, nullptr, r.up, r.upPhase, r.down, r.downPhase, &hw);
    TypeParam::firInitMr(taps.data(), len, nullptr, r.up, r.upPhase, r.down, r.downPhase, &hc);

    std::vector<O> lowWhole(static_cast<size_t>(iters * r.up)), lowCut(lowWhole.size());
    std::vector<O> highWhole(lowWhole.size()), highCut(lowWhole.size());
    TypeParam::bFirl(&ts, &a, input.data(), lowWhole.data(), iters);
    TypeParam::bFir(&hw, input.data(), highWhole.data(), iters);
    for (int at = 0; at < iters;) {
      const int size = std::min(iters - at, std::uniform_int_distribution<int>(1, 60)(gen));
      TypeParam::bFirl(&ts, &b, input.data() + at * r.down, lowCut.data() + at * r.up, size);
      TypeParam::bFir(&hc, input.data() + at * r.down, highCut.data() + at * r.up, size);
      at += size;
    }
    for (size_t i = 0; i < lowWhole.size(); ++i) {
      ASSERT_TRUE(sameBits(lowWhole[i], lowCut[i])) << "low-level output " << i;
      ASSERT_TRUE(sameBits(highWhole[i], highCut[i])) << "high-level output " << i;
    }
    ryxFirFree(&hw);
    ryxFirFree(&hc);
  }
}

// Interpolation by 2 with phase 1 and decimation by 3: one iteration reads
// three samples and writes two, both at the ticks the phases name.
TEST(MultirateShape, OneIterationReadsDownAndWritesUp) {
  float taps[4] = {1.0f, 0.5f, 0.25f, 0.125f};
  RyxFirTapState ts{};
  ryxsFirlInitMr(taps, 4, 2, 1, 3, 0, &ts);
  float line[2];
  RyxFirDlyState ds{};
  ryxsFirlInitDlyl(&ts, line, &ds);
  ryxsFirlSetDlyl(&ts, nullptr, &ds);
  const float src[4] = {1.0f, 2.0f, 3.0f, 99.0f};
  float dst[3] = {-1.0f, -1.0f, -7.0f};
  ryxsbFirl(&ts, &ds, src, dst, 1);
  // High rate: inputs at ticks 1, 3, 5; outputs at ticks 0 and 3.
  // y[0] = 0 (nothing arrived); y[3] = t0*x1 + t2*x0 = 2 + 0.25.
  EXPECT_EQ(dst[0], 0.0f);
  EXPECT_EQ(dst[1], 2.25f);
  EXPECT_EQ(dst[2], -7.0f);
}

// The phase table of an interpolator whose tap count is not a multiple of
// upFactor: branches differ by one tap and a short branch's span starts one
// sample later, so that every span ends on the newest sample.
TEST(MultiratePhaseTable, RowsFollowTheBranches) {
  RyxFirState st{};
  float taps[7] = {1, 2, 3, 4, 5, 6, 7};
  ryxsFirInitMr(taps, 7, nullptr, 3, 1, 2, 1, &st);
  ASSERT_EQ(st.initMark, &st);
  const int q = 7 / 3, rem = 7 % 3, w = 3;
  EXPECT_EQ(st.dlylLen, w);
  EXPECT_EQ(st.extLen, 128);
  for (int i = 0; i < 3; ++i) {
    const RyxFirPhaseEntry& row = st.phaseTable[i];
    const int tick = 1 + 2 * i;
    const int branch = ((tick - 1) % 3 + 3) % 3;
    long long arrived = 0;
    for (long long k = 0; k * 3 + 1 <= tick; ++k) ++arrived;
    const int count = branch < rem ? q + 1 : q;
    EXPECT_EQ(row.branch, branch) << i;
    EXPECT_EQ(row.count, count) << i;
    // Span of `count` samples ending on the newest arrival at history
    // index w + arrived - 1.
    EXPECT_EQ(row.dlyOffset + row.count - 1, w + arrived - 1) << i;
    int offset = 0;
    for (int j = 0; j < branch; ++j) offset += j < rem ? q + 1 : q;
    EXPECT_EQ(row.tapOffset, offset) << i;
    // The branch is stored reversed: its first stored tap is its last one.
    const float* stored = static_cast<const float*>(st.taps) + row.tapOffset;
    EXPECT_EQ(stored[0], taps[branch + (count - 1) * 3]) << i;
    EXPECT_EQ(stored[count - 1], taps[branch]) << i;
  }
  ryxFirFree(&st);
}

}  // namespace
}  // namespace firtest
