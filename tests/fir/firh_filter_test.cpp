// High-level FIR forms against a direct convolution in long double, for all
// eight type combinations, with the same error bound as the low-level tests:
// 2 * eps * (taps + 2) * sum |h_k| |x_{n-k}|.
#include <algorithm>

#include "fir_support.h"

namespace firtest {
namespace {

template <class C>
class FirFilter : public ::testing::Test {
 protected:
  using S = typename C::S;
  using H = typename C::H;

  void TearDown() override {
    if (st_.initMark == &st_) ryxFirFree(&st_);
  }

  void setUp(const std::vector<H>& taps, const std::vector<S>& history) {
    C::firInit(taps.data(), static_cast<int>(taps.size()), history.empty() ? nullptr : history.data(), &st_);
    ASSERT_EQ(st_.initMark, &st_);
    ASSERT_EQ(st_.dlylLen, static_cast<int>(taps.size()) - 1);
  }

  std::vector<S> history() {
    std::vector<S> h(static_cast<size_t>(st_.dlylLen));
    if (!h.empty()) C::firGetDlyl(&st_, h.data());
    return h;
  }

  RyxFirState st_{};
};

TYPED_TEST_SUITE(FirFilter, AllCombos, ComboNames);

TYPED_TEST(FirFilter, BlocksMatchDirectConvolution) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(4321);
  std::vector<int> counts;
  for (int l = 1; l <= 40; ++l) counts.push_back(l);
  for (int l : {63, 64, 100, 130, 257}) counts.push_back(l);
  for (int len : counts) {
    const std::vector<H> taps = randomVec<H>(gen, len);
    // Around the history length, the staging room (extLen) and beyond.
    for (int n : {1, 2, len - 2, len - 1, len, len + 1, len + 3, len + 5, 127, 128, 129, 300}) {
      if (n < 1) continue;
      const std::vector<S> hist = randomVec<S>(gen, len - 1);
      const std::vector<S> input = randomVec<S>(gen, n);
      this->setUp(taps, hist);
      std::vector<O> out(static_cast<size_t>(n) + 1);
      const O guard = out.back();
      TypeParam::bFir(&this->st_, input.data(), out.data(), n);
      const std::vector<RefOut> want = directConv(taps, hist, input);
      for (int i = 0; i < n; ++i) {
        ASSERT_TRUE(near(out[static_cast<size_t>(i)], want[static_cast<size_t>(i)], len))
            << "taps " << len << " block " << n << " output " << i;
      }
      EXPECT_TRUE(sameBits(out.back(), guard));
      std::vector<S> all = hist;
      all.insert(all.end(), input.begin(), input.end());
      const std::vector<S> after = this->history();
      for (int k = 0; k < len - 1; ++k) {
        ASSERT_TRUE(sameBits(after[static_cast<size_t>(k)], all[all.size() - (len - 1) + static_cast<size_t>(k)]))
            << "taps " << len << " block " << n << " history " << k;
      }
      ryxFirFree(&this->st_);
    }
  }
}

// Single samples run past the end of the sliding buffer (a wrap every
// extLen samples), then blocks of random size follow, then single samples
// again: every output stays on the reference, and the double forms, whose
// sums have one order in every path, agree bit for bit with one block.
TYPED_TEST(FirFilter, StreamOfSamplesAndBlocksAgrees) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(2024);
  for (int len : {1, 2, 3, 4, 7, 8, 9, 16, 40, 130}) {
    const std::vector<H> taps = randomVec<H>(gen, len);
    const std::vector<S> hist = randomVec<S>(gen, len - 1);
    const int n = 700;
    const std::vector<S> input = randomVec<S>(gen, n);
    const std::vector<RefOut> want = directConv(taps, hist, input);

    this->setUp(taps, hist);
    std::vector<O> whole(static_cast<size_t>(n));
    TypeParam::bFir(&this->st_, input.data(), whole.data(), n);
    const std::vector<S> histWhole = this->history();
    ryxFirFree(&this->st_);

    this->setUp(taps, hist);
    std::vector<O> mixed(static_cast<size_t>(n));
    int at = 0;
    for (; at < 300; ++at) mixed[static_cast<size_t>(at)] = TypeParam::fir(&this->st_, input[static_cast<size_t>(at)]);
    while (at < 600) {
      const int size = std::min(600 - at, std::uniform_int_distribution<int>(1, 2 * len + 140)(gen));
      TypeParam::bFir(&this->st_, input.data() + at, mixed.data() + at, size);
      at += size;
    }
    for (; at < n; ++at) mixed[static_cast<size_t>(at)] = TypeParam::fir(&this->st_, input[static_cast<size_t>(at)]);
    const std::vector<S> histMixed = this->history();

    for (int i = 0; i < n; ++i) {
      ASSERT_TRUE(near(whole[static_cast<size_t>(i)], want[static_cast<size_t>(i)], len)) << "taps " << len << " whole " << i;
      ASSERT_TRUE(near(mixed[static_cast<size_t>(i)], want[static_cast<size_t>(i)], len)) << "taps " << len << " mixed " << i;
      if (!TypeParam::isFloat) {
        ASSERT_TRUE(sameBits(whole[static_cast<size_t>(i)], mixed[static_cast<size_t>(i)])) << "taps " << len << " output " << i;
      }
    }
    for (int k = 0; k < len - 1; ++k) ASSERT_TRUE(sameBits(histWhole[static_cast<size_t>(k)], histMixed[static_cast<size_t>(k)]));
    ryxFirFree(&this->st_);
  }
}

// Taps given null make an all-zero filter; taps replaced between blocks take
// effect at the next call.
TYPED_TEST(FirFilter, TapsReplacedBetweenBlocks) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(8);
  const int len = 9;
  TypeParam::firInit(nullptr, len, nullptr, &this->st_);
  const std::vector<S> input = randomVec<S>(gen, 60);
  std::vector<O> out(60);
  TypeParam::bFir(&this->st_, input.data(), out.data(), 30);
  for (int i = 0; i < 30; ++i) {
    const RC v = toRC(out[static_cast<size_t>(i)]);
    ASSERT_EQ(v.re, 0);
    ASSERT_EQ(v.im, 0);
  }
  const std::vector<H> taps = randomVec<H>(gen, len);
  TypeParam::firSetTaps(taps.data(), &this->st_);
  std::vector<H> back(len);
  TypeParam::firGetTaps(&this->st_, back.data());
  for (int k = 0; k < len; ++k) ASSERT_TRUE(sameBits(back[static_cast<size_t>(k)], taps[static_cast<size_t>(k)]));
  TypeParam::bFir(&this->st_, input.data() + 30, out.data() + 30, 30);
  const std::vector<RefOut> want = directConv(taps, std::vector<S>(input.begin(), input.begin() + 30),
                                              std::vector<S>(input.begin() + 30, input.end()));
  for (int i = 0; i < 30; ++i) ASSERT_TRUE(near(out[static_cast<size_t>(30 + i)], want[static_cast<size_t>(i)], len)) << i;
}

}  // namespace
}  // namespace firtest
