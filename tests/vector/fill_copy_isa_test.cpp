// Fill and copy under each instruction-set cap: every word of the
// destination as a word-by-word reference says, nothing outside it
// touched, across destination and source offsets and the lengths around
// the 16-word turns and the streaming thresholds (2048 words for copy,
// 4096 for fill).
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "frame/cpu_dispatch.h"
#include "ryxcore.h"

namespace {

using ryx::cpu::Isa;

constexpr std::uint32_t kGuard = 0xA5A5A5A5u;

std::vector<int> lengths() {
  std::vector<int> n;
  for (int i = 1; i <= 70; ++i) n.push_back(i);
  for (int c : {256, 1024, 2048, 4096}) {
    for (int d = -20; d <= 20; d += 1) n.push_back(c + d);
  }
  n.push_back(9000);
  return n;
}

class FillCopyIsa : public ::testing::TestWithParam<Isa> {
 protected:
  void SetUp() override { ryx::cpu::setCap(GetParam()); }
  void TearDown() override { ryx::cpu::setCap(Isa::Avx512); }
};

// Double and complex values fill with a pattern of two or four words whose
// phase must survive the head and the turns.
TEST_P(FillCopyIsa, SetWritesEveryElementAndNothingElse) {
  for (int n : lengths()) {
    for (int off = 0; off < 4; ++off) {  // destination offset in words
      std::vector<std::uint32_t> buf(static_cast<size_t>(2 * n + 24), kGuard);
      std::uint32_t* base = buf.data() + 4 + off;
      const DCplx val{1.25, -3.5};
      ryxzbSet(val, reinterpret_cast<DCplx*>(base), n / 2 + 1);
      const int words = 4 * (n / 2 + 1);
      ASSERT_LE(words + 4 + off, static_cast<int>(buf.size()));
      std::uint32_t pat[4];
      std::memcpy(pat, &val, 16);
      for (int w = 0; w < static_cast<int>(buf.size()); ++w) {
        const int at = w - 4 - off;
        const std::uint32_t want = (at >= 0 && at < words) ? pat[at % 4] : kGuard;
        ASSERT_EQ(buf[static_cast<size_t>(w)], want) << "n " << n << " off " << off << " word " << at;
      }
      std::vector<float> f(static_cast<size_t>(n + 8), -1.0f);
      ryxsbSet(2.5f, f.data() + 1 + (off & 1), n);
      for (int i = 0; i < n + 8; ++i) {
        const int at = i - 1 - (off & 1);
        ASSERT_EQ(f[static_cast<size_t>(i)], (at >= 0 && at < n) ? 2.5f : -1.0f) << "n " << n << " at " << at;
      }
    }
  }
}

TEST_P(FillCopyIsa, CopyMovesEveryWordAtEverySourceAlignment) {
  for (int n : lengths()) {
    for (int dOff : {0, 1, 3}) {
      for (int sOff : {0, 1, 2, 3}) {
        std::vector<float> src(static_cast<size_t>(n + 8)), dst(static_cast<size_t>(n + 8), -1.0f);
        for (int i = 0; i < n + 8; ++i) src[static_cast<size_t>(i)] = static_cast<float>(i * 7 + 1);
        ryxsbCopy(src.data() + sOff, dst.data() + dOff, n);
        for (int i = 0; i < n + 8; ++i) {
          const int at = i - dOff;
          const float want = (at >= 0 && at < n) ? src[static_cast<size_t>(at + sOff)] : -1.0f;
          ASSERT_EQ(dst[static_cast<size_t>(i)], want) << "n " << n << " offsets " << dOff << "/" << sOff;
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Caps, FillCopyIsa, ::testing::Values(Isa::Sse2, Isa::Avx2, Isa::Avx512),
                         [](const auto& info) { return std::string(info.param == Isa::Sse2   ? "Sse2"
                                                                   : info.param == Isa::Avx2 ? "Avx2"
                                                                                             : "Avx512"); });

}  // namespace
