// Every instruction-set kernel set gives bitwise the results of the 128-bit
// set, on every kernel, order and direction, aligned (in place) and through
// the work area; the engine really runs the set it is capped to.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "test_support.h"
#include "transform/fft_internal.h"
#include "transform/fft_kernels.h"

namespace {

using namespace ryxtest;
using ryx::fft::Isa;
using ryx::fft::KernelSet;

struct Buffers {
  explicit Buffers(std::size_t floats) : data(ryxsMalloc(static_cast<unsigned>(floats))), count(floats) {}
  ~Buffers() { ryxFree(data); }
  float* data;
  std::size_t count;
};

template <class T>
void compareSets(const KernelSet& wide, const KernelSet& base, int maxOrder) {
  constexpr bool kFloat = sizeof(T) == 4;
  Random rng(11);
  for (int order = 2; order <= maxOrder; ++order) {
    if (!kFloat && order < 2) continue;
    const std::size_t n = std::size_t{1} << order;
    const T* tbl = kFloat ? reinterpret_cast<const T*>(ownsGetFftRadixTwd(order))
                          : reinterpret_cast<const T*>(owndGetFftRadixTwd(order));
    ASSERT_NE(tbl, nullptr);
    std::vector<T> x(2 * n);
    for (auto& v : x) v = static_cast<T>(rng.f64(-10, 10));
    for (int dir = 0; dir < 2; ++dir) {
      for (bool useWork : {false, true}) {
        SCOPED_TRACE(testing::Message() << "order " << order << " dir " << dir << " work " << useWork);
        Buffers a(2 * n * sizeof(T) / 4 + 8), b(2 * n * sizeof(T) / 4 + 8), wa(2 * n * sizeof(T) / 4),
            wb(2 * n * sizeof(T) / 4);
        // Through the work area the samples sit 8 bytes off a 16-byte boundary.
        T* pa = reinterpret_cast<T*>(a.data + (useWork ? 2 : 0));
        T* pb = reinterpret_cast<T*>(b.data + (useWork ? 2 : 0));
        std::memcpy(pa, x.data(), sizeof(T) * 2 * n);
        std::memcpy(pb, x.data(), sizeof(T) * 2 * n);
        T* worka = useWork ? reinterpret_cast<T*>(wa.data) : nullptr;
        T* workb = useWork ? reinterpret_cast<T*>(wb.data) : nullptr;
        if constexpr (kFloat) {
          (dir ? wide.sInv : wide.sFwd)(reinterpret_cast<SCplx*>(pa), n, tbl, reinterpret_cast<SCplx*>(worka));
          (dir ? base.sInv : base.sFwd)(reinterpret_cast<SCplx*>(pb), n, tbl, reinterpret_cast<SCplx*>(workb));
        } else {
          (dir ? wide.dInv : wide.dFwd)(reinterpret_cast<DCplx*>(pa), n, tbl, reinterpret_cast<DCplx*>(worka));
          (dir ? base.dInv : base.dFwd)(reinterpret_cast<DCplx*>(pb), n, tbl, reinterpret_cast<DCplx*>(workb));
        }
        EXPECT_TRUE(sameBits(pa, pb, static_cast<int>(2 * n)));
        // Split kernels: real parts first half, imaginary parts second half.
        std::memcpy(pa, x.data(), sizeof(T) * 2 * n);
        std::memcpy(pb, x.data(), sizeof(T) * 2 * n);
        if constexpr (kFloat) {
          (dir ? wide.sSplitInv : wide.sSplitFwd)(pa, pa + n, n, tbl, worka);
          (dir ? base.sSplitInv : base.sSplitFwd)(pb, pb + n, n, tbl, workb);
        } else {
          (dir ? wide.dSplitInv : wide.dSplitFwd)(pa, pa + n, n, tbl, worka);
          (dir ? base.dSplitInv : base.dSplitFwd)(pb, pb + n, n, tbl, workb);
        }
        EXPECT_TRUE(sameBits(pa, pb, static_cast<int>(2 * n)));
      }
    }
  }
}

class KernelIsa : public testing::TestWithParam<Isa> {};

TEST_P(KernelIsa, BitIdenticalToTheBaseline) {
  const KernelSet* wide = ryx::fft::kernelsFor(GetParam());
  if (wide == nullptr) GTEST_SKIP() << "instruction set not available here";
  const KernelSet* base = ryx::fft::kernelsFor(Isa::Sse2);
  ASSERT_NE(base, nullptr);
  compareSets<float>(*wide, *base, 14);
  compareSets<double>(*wide, *base, 12);
  // The reversal of 16-byte elements, where a set has its own, against the
  // written-out bit reversal, in place and copying.
  if (wide->permute16 != nullptr) {
    Random rng(4);
    for (int order = 3; order <= 12; ++order) {
      const int n = 1 << order;
      std::vector<DCplx> x(n), want(n), out(n);
      rng.fill(x.data(), n);
      for (int i = 0; i < n; ++i) {
        std::uint32_t r = 0;
        for (int b = 0; b < order; ++b) r |= ((static_cast<std::uint32_t>(i) >> b) & 1u) << (order - 1 - b);
        want[r] = x[i];
      }
      const std::uint32_t* list = ownGetRevPairs(order);
      wide->permute16(reinterpret_cast<const unsigned char*>(x.data()), reinterpret_cast<unsigned char*>(out.data()),
                      order, list);
      EXPECT_TRUE(sameBits(out.data(), want.data(), n)) << order;
      wide->permute16(reinterpret_cast<const unsigned char*>(x.data()), reinterpret_cast<unsigned char*>(x.data()),
                      order, list);
      EXPECT_TRUE(sameBits(x.data(), want.data(), n)) << order;
    }
  }
}

// Capping the instruction set selects that set, and the engine's results
// through it match the baseline's through the public entry.
TEST_P(KernelIsa, CapSelectsTheSet) {
  const KernelSet* wide = ryx::fft::kernelsFor(GetParam());
  if (wide == nullptr) GTEST_SKIP() << "instruction set not available here";
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
