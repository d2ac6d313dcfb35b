// Low-level FIR forms against a direct convolution in long double, for all
// eight type combinations. Error bound per output: 2 * eps * (taps + 2) *
// sum |h_k| |x_{n-k}|, eps being the unit roundoff of the result type (the
// float forms sum in float, the double forms round once from extended).
#include <algorithm>

#include "fir_support.h"

namespace firtest {
namespace {

template <class C>
class FirlFilter : public ::testing::Test {
 protected:
  using S = typename C::S;
  using H = typename C::H;
  using O = typename C::O;

  // Sets up tap and delay states over `taps` with `history` (oldest first,
  // tapsLen - 1 samples) as the line.
  void setUp(const std::vector<H>& taps, const std::vector<S>& history) {
    taps_ = taps;
    line_.assign(taps.size() + 1, S{});
    C::firlInit(taps_.data(), static_cast<int>(taps_.size()), &ts_);
    C::firlInitDlyl(&ts_, line_.data(), &ds_);
    C::firlSetDlyl(&ts_, history.empty() ? nullptr : history.data(), &ds_);
  }

  std::vector<S> history() {
    std::vector<S> h(taps_.size() - 1);
    if (!h.empty()) C::firlGetDlyl(&ts_, &ds_, h.data());
    // GetDlyl into another array keeps the line in working order.
    EXPECT_EQ(ds_.isDlyFilterMode, 1);
    return h;
  }

  std::vector<H> taps_;
  std::vector<S> line_;
  RyxFirTapState ts_{};
  RyxFirDlyState ds_{};
};

TYPED_TEST_SUITE(FirlFilter, AllCombos, ComboNames);

std::vector<int> tapCounts() {
  std::vector<int> counts;
  for (int l = 1; l <= 40; ++l) counts.push_back(l);
  for (int l : {63, 64, 100, 257}) counts.push_back(l);
  return counts;
}

// Block lengths around the head (tapsLen - 1 samples through the line), the
// kernel passes and the leftover outputs.
std::vector<int> blockLengths(int taps) {
  std::vector<int> lengths = {1, taps - 2, taps - 1, taps, taps + 1, taps + 2, taps + 3, taps + 4, taps + 5, 2 * taps + 7};
  lengths.erase(std::remove_if(lengths.begin(), lengths.end(), [](int n) { return n < 1; }), lengths.end());
  std::sort(lengths.begin(), lengths.end());
  lengths.erase(std::unique(lengths.begin(), lengths.end()), lengths.end());
  return lengths;
}

TYPED_TEST(FirlFilter, BlocksMatchDirectConvolution) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(1234);
  for (int len : tapCounts()) {
    const std::vector<H> taps = randomVec<H>(gen, len);
    for (int n : blockLengths(len)) {
      const std::vector<S> hist = randomVec<S>(gen, len - 1);
      const std::vector<S> input = randomVec<S>(gen, n);
      this->setUp(taps, hist);
      std::vector<O> out(static_cast<size_t>(n) + 1);
      const O guard = out.back();
      TypeParam::bFirl(&this->ts_, &this->ds_, input.data(), out.data(), n);
      const std::vector<RefOut> want = directConv(taps, hist, input);
      for (int i = 0; i < n; ++i) {
        ASSERT_TRUE(near(out[static_cast<size_t>(i)], want[static_cast<size_t>(i)], len))
            << "taps " << len << " block " << n << " output " << i;
      }
      EXPECT_TRUE(sameBits(out.back(), guard)) << "wrote past the block";
      // The line holds the last tapsLen - 1 samples of history + input.
      std::vector<S> all = hist;
      all.insert(all.end(), input.begin(), input.end());
      const std::vector<S> after = this->history();
      for (int k = 0; k < len - 1; ++k) {
        ASSERT_TRUE(sameBits(after[static_cast<size_t>(k)], all[all.size() - (len - 1) + static_cast<size_t>(k)]))
            << "taps " << len << " block " << n << " history " << k;
      }
    }
  }
}

TYPED_TEST(FirlFilter, SingleSamplesMatchDirectConvolution) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  std::mt19937 gen(77);
  for (int len : {1, 2, 3, 4, 5, 7, 8, 9, 16, 33}) {
    const std::vector<H> taps = randomVec<H>(gen, len);
    const std::vector<S> hist = randomVec<S>(gen, len - 1);
    const std::vector<S> input = randomVec<S>(gen, 3 * len + 5);
    this->setUp(taps, hist);
    const std::vector<RefOut> want = directConv(taps, hist, input);
    for (size_t i = 0; i < input.size(); ++i) {
      const auto y = TypeParam::firl(&this->ts_, &this->ds_, input[i]);
      ASSERT_TRUE(near(y, want[i], len)) << "taps " << len << " sample " << i;
    }
  }
}

// One block, blocks of random sizes and single samples give the same
// outputs up to rounding and leave exactly the same history.
TYPED_TEST(FirlFilter, StreamCutIntoBlocksAgrees) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(99);
  for (int len : {1, 2, 3, 5, 8, 13, 31, 64}) {
    const std::vector<H> taps = randomVec<H>(gen, len);
    const std::vector<S> hist = randomVec<S>(gen, len - 1);
    const std::vector<S> input = randomVec<S>(gen, 300);
    const std::vector<RefOut> want = directConv(taps, hist, input);
    const int n = static_cast<int>(input.size());

    this->setUp(taps, hist);
    std::vector<O> whole(input.size());
    TypeParam::bFirl(&this->ts_, &this->ds_, input.data(), whole.data(), n);
    const std::vector<S> histWhole = this->history();

    this->setUp(taps, hist);
    std::vector<O> cut(input.size());
    for (int at = 0; at < n;) {
      const int size = std::min(n - at, std::uniform_int_distribution<int>(1, 2 * len + 6)(gen));
      TypeParam::bFirl(&this->ts_, &this->ds_, input.data() + at, cut.data() + at, size);
      at += size;
    }
    const std::vector<S> histCut = this->history();

    this->setUp(taps, hist);
    std::vector<O> single(input.size());
    for (int i = 0; i < n; ++i) single[static_cast<size_t>(i)] = TypeParam::firl(&this->ts_, &this->ds_, input[static_cast<size_t>(i)]);
    const std::vector<S> histSingle = this->history();

    for (int i = 0; i < n; ++i) {
      const auto& w = want[static_cast<size_t>(i)];
      ASSERT_TRUE(near(whole[static_cast<size_t>(i)], w, len)) << "taps " << len << " whole " << i;
      ASSERT_TRUE(near(cut[static_cast<size_t>(i)], w, len)) << "taps " << len << " cut " << i;
      ASSERT_TRUE(near(single[static_cast<size_t>(i)], w, len)) << "taps " << len << " single " << i;
    }
    for (int k = 0; k < len - 1; ++k) {
      ASSERT_TRUE(sameBits(histWhole[static_cast<size_t>(k)], histCut[static_cast<size_t>(k)]));
      ASSERT_TRUE(sameBits(histWhole[static_cast<size_t>(k)], histSingle[static_cast<size_t>(k)]));
    }
  }
}

// One tap state serves two channels with their own delay states.
TYPED_TEST(FirlFilter, OneTapStateServesTwoChannels) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(5);
  const int len = 11;
  std::vector<H> taps = randomVec<H>(gen, len);
  RyxFirTapState ts{};
  TypeParam::firlInit(taps.data(), len, &ts);
  std::vector<S> lineA(len), lineB(len);
  RyxFirDlyState a{}, b{};
  TypeParam::firlInitDlyl(&ts, lineA.data(), &a);
  TypeParam::firlInitDlyl(&ts, lineB.data(), &b);
  TypeParam::firlSetDlyl(&ts, nullptr, &a);
  TypeParam::firlSetDlyl(&ts, nullptr, &b);
  const std::vector<S> inA = randomVec<S>(gen, 40), inB = randomVec<S>(gen, 40);
  std::vector<O> outA(40), outB(40);
  for (int at = 0; at < 40; at += 8) {
    TypeParam::bFirl(&ts, &a, inA.data() + at, outA.data() + at, 8);
    TypeParam::bFirl(&ts, &b, inB.data() + at, outB.data() + at, 8);
  }
  const auto wantA = directConv(taps, std::vector<S>{}, inA);
  const auto wantB = directConv(taps, std::vector<S>{}, inB);
  for (int i = 0; i < 40; ++i) {
    ASSERT_TRUE(near(outA[static_cast<size_t>(i)], wantA[static_cast<size_t>(i)], len)) << i;
    ASSERT_TRUE(near(outB[static_cast<size_t>(i)], wantB[static_cast<size_t>(i)], len)) << i;
  }
}

}  // namespace
}  // namespace firtest
