// Each instruction-set form of the real float block kernel, called
// directly, against the accumulation order of pendingSum (fir_support.h)
// over the taps from hFirst backwards, samples either way. The wider forms
// must give the same bits.
#include "fir/fir_block_isa.h"
#include "fir_support.h"
#include "frame/cpu_dispatch.h"

namespace firtest {
namespace {

using Kernel = int (*)(const float*, int, const float*, int, float*, int);

void checkKernel(Kernel kernel, int width) {
  std::mt19937 gen(21);
  for (int n : {1, 2, 3, 4, 7, 16, 33, 64}) {
    const std::vector<float> taps = randomVec<float>(gen, n);
    for (int xs : {1, -1}) {
      for (int count : {0, 3, 4, 31, 32, 33, 64, 100}) {
        // Samples for outputs 0..count-1 and products 0..n-1 in either
        // direction, with room on both sides.
        std::vector<float> buf = randomVec<float>(gen, count + 2 * n + 8);
        const float* x0 = buf.data() + n + 4;
        std::vector<float> out(static_cast<size_t>(count) + 1, -7.0f);
        const int done = kernel(taps.data() + (n - 1), n, x0, xs, out.data(), count);
        ASSERT_EQ(done, count / width * width) << "taps " << n << " count " << count;
        for (int j = 0; j < done; ++j) {
          const float* x = x0 + j;
          auto prod = [&](int i) { return x[i * xs] * taps[static_cast<size_t>(n - 1 - i)]; };
          const float want = pendingSum<float>(n, prod);
          ASSERT_TRUE(sameBits(out[static_cast<size_t>(j)], want)) << "taps " << n << " xs " << xs << " output " << j;
        }
        for (int j = done; j <= count; ++j) ASSERT_EQ(out[static_cast<size_t>(j)], -7.0f) << "wrote past its passes";
      }
    }
  }
}

TEST(FirIsa, Sse2KernelFollowsTheLaneOrder) { checkKernel(ryx::fir::blockKernelRealSse2, 4); }

TEST(FirIsa, Avx2KernelFollowsTheLaneOrder) {
  if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "no AVX2 on this CPU";
  checkKernel(ryx::fir::avx2::blockKernelReal, 32);
}

// The exported filters give the same bits with the wide form allowed and
// with the cap at the baseline.
TEST(FirIsa, CapDoesNotChangeResults) {
  std::mt19937 gen(22);
  const int len = 37, n = 1000;
  std::vector<float> taps = randomVec<float>(gen, len);
  const std::vector<float> src = randomVec<float>(gen, n);
  std::vector<float> wide(n), base(n), line(len);
  RyxFirState st{};
  using ryx::cpu::Isa;
  for (Isa cap : {Isa::Avx512, Isa::Sse2}) {
    ryx::cpu::setCap(cap);
    EXPECT_EQ(ryx::fir::useAvx2(), cap != Isa::Sse2 && __builtin_cpu_supports("avx2"));
    ryxsFirInit(taps.data(), len, nullptr, &st);
    ryxsbFir(&st, src.data(), cap != Isa::Sse2 ? wide.data() : base.data(), n);
  }
  ryx::cpu::setCap(Isa::Avx512);
  ryxFirFree(&st);
  for (int i = 0; i < n; ++i) ASSERT_TRUE(sameBits(wide[static_cast<size_t>(i)], base[static_cast<size_t>(i)])) << i;
}

}  // namespace
}  // namespace firtest
