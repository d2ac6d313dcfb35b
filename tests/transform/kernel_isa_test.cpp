// Per instruction set: its own reversal of 16-byte elements, and the
// engine really runs the set it is capped to. (The kernels of every set go
// against the scalar model in kernel_model_test.cpp.)
#include <gtest/gtest.h>

#include <vector>

#include "fft_reference.h"
#include "test_support.h"
#include "transform/fft_internal.h"
#include "transform/fft_kernels.h"

namespace {

using namespace ryxtest;
using ryx::fft::Isa;
using ryx::fft::KernelSet;

class KernelIsa : public testing::TestWithParam<Isa> {};

// The reversal of 16-byte elements, where a set has its own, against the
// written-out bit reversal, in place and copying.
TEST_P(KernelIsa, OwnReversalMatchesTheBitByBitOne) {
  const KernelSet* wide = ryx::fft::kernelsFor(GetParam());
  if (wide == nullptr) GTEST_SKIP() << "no kernel set for this instruction set on this processor";
  if (wide->permute16 == nullptr) GTEST_SKIP() << "this set has no reversal of its own";
  Random rng(4);
  for (int order = 3; order <= 12; ++order) {
    const int n = 1 << order;
    std::vector<DCplx> x(n), want(n), out(n);
    rng.fill(x.data(), n);
    for (int i = 0; i < n; ++i) want[reverseBits(i, order)] = x[i];
    const std::uint32_t* list = ownGetRevPairs(order);
    auto bytes = [](std::vector<DCplx>& v) { return reinterpret_cast<unsigned char*>(v.data()); };
    wide->permute16(bytes(x), bytes(out), order, list);
    EXPECT_TRUE(sameBits(out.data(), want.data(), n)) << order;
    wide->permute16(bytes(x), bytes(x), order, list);
    EXPECT_TRUE(sameBits(x.data(), want.data(), n)) << order;
  }
}

// Capping the instruction set selects that set, and the engine's results
// through it match the baseline's through the public entry.
TEST_P(KernelIsa, CapSelectsTheSet) {
  const KernelSet* wide = ryx::fft::kernelsFor(GetParam());
  if (wide == nullptr) GTEST_SKIP() << "no kernel set for this instruction set on this processor";
  ReportCapture capture;
  ryx::cpu::setCap(GetParam());
  // The widest set this build has at or below the cap.
  const KernelSet* expected = ryx::fft::kernelsFor(GetParam() == Isa::Sse2 ? Isa::Sse2 : Isa::Avx2);
  EXPECT_EQ(&ryx::fft::kernels(), expected);
  Random rng(2);
  std::vector<DCplx> x(1 << 11);
  rng.fill(x.data(), 1 << 11);
  std::vector<DCplx> a = x, b = x;
  ryxzFft(a.data(), 11, RYX_Forward);
  ryx::cpu::setCap(Isa::Sse2);
  EXPECT_EQ(&ryx::fft::kernels(), ryx::fft::kernelsFor(Isa::Sse2));
  ryxzFft(b.data(), 11, RYX_Forward);
  ryx::cpu::setCap(Isa::Avx512);
  EXPECT_TRUE(sameBits(a.data(), b.data(), 1 << 11));
  EXPECT_TRUE(capture.reports().empty());
}

INSTANTIATE_TEST_SUITE_P(Sets, KernelIsa, testing::Values(Isa::Sse2, Isa::Avx2, Isa::Avx512));

}  // namespace
