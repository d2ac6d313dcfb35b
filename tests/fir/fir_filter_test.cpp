// Single-rate filters of both forms and all eight type combinations against
// a direct convolution in long double. Error bound per output:
// 2 * eps * (taps + 2) * sum |h_k| |x_{n-k}|, eps the unit roundoff of the
// result type (float forms sum in float, double forms round once from
// extended precision).
#include <algorithm>

#include "fir_support.h"

namespace firtest {
namespace {

template <class F>
class FirFilter : public ::testing::Test {};
TYPED_TEST_SUITE(FirFilter, AllForms, ComboNames);

// Block lengths around the head (tapsLen - 1 samples), the kernel passes and
// leftovers, and the staging room of the record (extLen 128) and beyond.
TYPED_TEST(FirFilter, BlocksMatchDirectConvolution) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(1234);
  std::vector<int> counts;
  for (int l = 1; l <= 20; ++l) counts.push_back(l);
  for (int l : {31, 32, 33, 40, 63, 64, 100, 130, 257}) counts.push_back(l);
  for (int len : counts) {
    const std::vector<H> taps = randomVec<H>(gen, len);
    std::vector<int> sizes = {1, len - 2, len - 1, len, len + 1, len + 2, len + 3, len + 4, len + 5, 2 * len + 7,
                              127, 129};
    if (TypeParam::high) sizes.insert(sizes.end(), {128, 300});
    std::sort(sizes.begin(), sizes.end());
    sizes.erase(std::unique(sizes.begin(), sizes.end()), sizes.end());
    for (int n : sizes) {
      if (n < 1) continue;
      const std::vector<S> hist = randomVec<S>(gen, len - 1);
      const std::vector<S> input = randomVec<S>(gen, n);
      TypeParam f;
      f.init(taps, hist);
      std::vector<O> out(static_cast<size_t>(n) + 1);
      const O guard = out.back();
      f.block(input.data(), out.data(), n);
      ASSERT_TRUE(allNear(out.data(), directConv(taps, hist, input), len)) << "taps " << len << " block " << n;
      EXPECT_TRUE(sameBits(out.back(), guard)) << "wrote past the block";
      // The history holds the last tapsLen - 1 samples of history + input.
      const std::vector<S> want = lastOf(hist, input, static_cast<size_t>(len - 1));
      ASSERT_TRUE(allSame(f.history().data(), want.data(), want.size())) << "taps " << len << " block " << n;
    }
  }
}

// One block against the same stream as single samples (past the wrap of the
// record's sliding buffer), blocks of random size, short and long, and single
// samples again: every output on the reference and the same history after.
// The high-level double forms sum in one order on every path, so they must
// agree with the one block bit for bit.
TYPED_TEST(FirFilter, StreamCutIntoSamplesAndBlocksAgrees) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(2024);
  for (int len : {1, 2, 3, 4, 5, 7, 8, 9, 13, 16, 31, 40, 64, 130}) {
    const std::vector<H> taps = randomVec<H>(gen, len);
    const std::vector<S> hist = randomVec<S>(gen, len - 1);
    const int n = 700;
    const std::vector<S> input = randomVec<S>(gen, n);
    const std::vector<RefOut> want = directConv(taps, hist, input);

    TypeParam whole, mixed;
    whole.init(taps, hist);
    mixed.init(taps, hist);
    std::vector<O> wholeOut(static_cast<size_t>(n)), mixedOut(wholeOut.size());
    whole.block(input.data(), wholeOut.data(), n);
    int at = 0;
    for (; at < 300; ++at) mixedOut[static_cast<size_t>(at)] = mixed.one(input[static_cast<size_t>(at)]);
    for (bool shortCut = true; at < 600; shortCut = !shortCut) {
      const int most = shortCut ? len + 2 : 2 * len + 140;
      const int size = std::min(600 - at, std::uniform_int_distribution<int>(1, most)(gen));
      mixed.block(input.data() + at, mixedOut.data() + at, size);
      at += size;
    }
    for (; at < n; ++at) mixedOut[static_cast<size_t>(at)] = mixed.one(input[static_cast<size_t>(at)]);

    ASSERT_TRUE(allNear(wholeOut.data(), want, len)) << "taps " << len << " one block";
    ASSERT_TRUE(allNear(mixedOut.data(), want, len)) << "taps " << len << " cut";
    if (TypeParam::high && !TypeParam::Combo::isFloat) {
      ASSERT_TRUE(allSame(wholeOut.data(), mixedOut.data(), wholeOut.size())) << "taps " << len;
    }
    const std::vector<S> hw = whole.history(), hm = mixed.history();
    ASSERT_TRUE(allSame(hw.data(), hm.data(), hw.size())) << "taps " << len;
  }
}

// History and taps come back as given; null history clears it; null taps
// make a filter of zeros; taps replaced between blocks act from the next call.
TYPED_TEST(FirFilter, TapsAndHistoryHandedOverBetweenBlocks) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(8);
  const int len = 9;
  const std::vector<S> hist = randomVec<S>(gen, len - 1);
  const std::vector<H> taps = randomVec<H>(gen, len), other = randomVec<H>(gen, len);
  TypeParam f;
  f.init(taps, hist);
  std::vector<S> back = f.history();
  ASSERT_TRUE(allSame(back.data(), hist.data(), hist.size()));
  std::vector<H> tb(len);
  f.getTaps(tb.data());
  ASSERT_TRUE(allSame(tb.data(), taps.data(), taps.size()));
  f.setHistory(nullptr);
  back = f.history();
  for (const S& v : back) ASSERT_TRUE(sameBits(v, S{}));

  f.setTaps(nullptr);
  const std::vector<S> input = randomVec<S>(gen, 60);
  std::vector<O> out(60);
  f.block(input.data(), out.data(), 30);
  for (int i = 0; i < 30; ++i) ASSERT_TRUE(mag1(toRC(out[static_cast<size_t>(i)])) == 0) << i;
  f.setTaps(other.data());
  f.getTaps(tb.data());
  ASSERT_TRUE(allSame(tb.data(), other.data(), other.size()));
  f.block(input.data() + 30, out.data() + 30, 30);
  const std::vector<S> first(input.begin(), input.begin() + 30), second(input.begin() + 30, input.end());
  ASSERT_TRUE(allNear(out.data() + 30, directConv(other, first, second), len));
}

// One tap state serves two channels, each with its own delay state.
template <class C>
class FirlChannels : public ::testing::Test {};
TYPED_TEST_SUITE(FirlChannels, AllCombos, ComboNames);

TYPED_TEST(FirlChannels, OneTapStateServesTwoChannels) {
  using S = typename TypeParam::S;
  using O = typename TypeParam::O;
  std::mt19937 gen(5);
  const int len = 11;
  Low<TypeParam> a;
  a.init(randomVec<typename TypeParam::H>(gen, len), {});
  std::vector<S> lineB(len);
  RyxFirDlyState b{};
  Side<S>::firlInitDlyl(&a.ts, lineB.data(), &b);
  Side<S>::firlSetDlyl(&a.ts, nullptr, &b);
  const std::vector<S> inA = randomVec<S>(gen, 40), inB = randomVec<S>(gen, 40);
  std::vector<O> outA(40), outB(40);
  for (int at = 0; at < 40; at += 8) {
    a.block(inA.data() + at, outA.data() + at, 8);
    TypeParam::bFirl(&a.ts, &b, inB.data() + at, outB.data() + at, 8);
  }
  ASSERT_TRUE(allNear(outA.data(), directConv(a.taps, std::vector<S>{}, inA), len));
  ASSERT_TRUE(allNear(outB.data(), directConv(a.taps, std::vector<S>{}, inB), len));
}

}  // namespace
}  // namespace firtest
