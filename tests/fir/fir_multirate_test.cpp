// Multirate filters of both forms against the definition: insert upFactor-1
// zeros after each input, filter at the high rate, keep one output of
// downFactor (reference in long double, bound 2 * eps * (taps + 2) * sum of
// term magnitudes). Every multirate sum runs in one order whatever the block
// cut, so cuts must agree bit for bit.
#include <algorithm>

#include "fir_support.h"

namespace firtest {
namespace {

// Decimation only, interpolation only and rational pairs, phases off zero.
const Rates kRates[] = {{1, 0, 2, 0}, {1, 0, 3, 2}, {1, 0, 4, 1}, {2, 1, 1, 0}, {3, 0, 1, 0}, {4, 3, 1, 0},
                        {2, 1, 3, 0}, {3, 2, 2, 1}, {4, 1, 4, 3}, {5, 3, 2, 0}, {2, 0, 2, 1}, {3, 1, 5, 4}};

template <class F>
class Multirate : public ::testing::Test {};
TYPED_TEST_SUITE(Multirate, AllForms, ComboNames);

// Two blocks in a row: short ones stay in the record's staging room, 70
// iterations pass it (and the start-up of the low-level line).
TYPED_TEST(Multirate, MatchesZeroInsertFilterDecimate) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(31);
  for (const Rates& r : kRates) {
    for (int len : {1, 2, 5, 7, 16, 23, 64}) {
      const int w = ceilDiv(len, r.up);
      const std::vector<H> taps = randomVec<H>(gen, len);
      for (int iters : {1, 3, 70}) {
        const std::vector<S> hist = randomVec<S>(gen, w);
        TypeParam f;
        f.init(taps, hist, r);
        if constexpr (TypeParam::high) {
          // Staging room: whole iterations, at least the history and 127.
          ASSERT_EQ(f.st.extLen % r.down, 0);
          ASSERT_GE(f.st.extLen, std::max(w, 127));
          ASSERT_LT(f.st.extLen - r.down, std::max(w, 127));
        }
        std::vector<H> back(static_cast<size_t>(len));
        f.getTaps(back.data());
        ASSERT_TRUE(allSame(back.data(), taps.data(), taps.size()));

        const int inputs = iters * r.down, outputs = iters * r.up;
        const std::vector<S> input = randomVec<S>(gen, 2 * inputs);
        std::vector<O> out(static_cast<size_t>(2 * outputs) + 1);
        const O guard = out.back();
        f.block(input.data(), out.data(), iters);
        f.block(input.data() + inputs, out.data() + outputs, iters);
        const auto want = zeroInsertFilterDecimate(taps, hist, input, r.up, r.upPhase, r.down, r.downPhase);
        ASSERT_EQ(want.size(), static_cast<size_t>(2 * outputs));
        ASSERT_TRUE(allNear(out.data(), want, len))
            << "up " << r.up << "/" << r.upPhase << " down " << r.down << "/" << r.downPhase << " taps " << len
            << " iters " << iters;
        EXPECT_TRUE(sameBits(out.back(), guard));
        // The visible history of a multirate filter is all dlylLen places.
        const std::vector<S> after = f.history(), last = lastOf(hist, input, static_cast<size_t>(w));
        ASSERT_TRUE(allSame(after.data(), last.data(), last.size()));
      }
    }
  }
}

// A long stream cut at random multiples of downFactor gives the same bits
// as one block.
TYPED_TEST(Multirate, BlockCutsAgreeBitForBit) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(33);
  for (const Rates& r : {Rates{1, 0, 3, 1}, Rates{3, 1, 2, 1}, Rates{4, 0, 3, 2}}) {
    const int len = 29, iters = 120;
    const std::vector<H> taps = randomVec<H>(gen, len);
    const std::vector<S> input = randomVec<S>(gen, iters * r.down);
    TypeParam whole, cut;
    whole.init(taps, {}, r);
    cut.init(taps, {}, r);
    std::vector<O> a(static_cast<size_t>(iters * r.up)), b(a.size());
    whole.block(input.data(), a.data(), iters);
    for (int at = 0; at < iters;) {
      const int size = std::min(iters - at, std::uniform_int_distribution<int>(1, 60)(gen));
      cut.block(input.data() + at * r.down, b.data() + at * r.up, size);
      at += size;
    }
    ASSERT_TRUE(allSame(a.data(), b.data(), a.size())) << "up " << r.up << " down " << r.down;
  }
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
    const int arrived = (tick - 1) / 3 + 1;  // inputs at ticks 1, 4, 7, ...
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
