// Each instruction-set kernel of the 16-bit wrap and saturate modes, and of
// the logic family, called directly and compared with the 64-bit model, so
// a path the dispatcher would not pick on this machine is still checked.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "int16_model.h"
#include "test_support.h"
#include "vector/int16_kernels.h"
#include "vector/logic_kernels.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;
namespace k = ryx::int16;

using KernelW = void (*)(k::Op, bool, const short*, const short*, short, short*, int);
using KernelV = void (*)(k::Op, bool, const WCplx*, const WCplx*, WCplx, WCplx*, int);

short edgy(Random& rng) {
  static const short e[] = {-32768, -32767, -1, 0, 1, 32767, 16384, -16384};
  return rng.i32(0, 3) == 0 ? e[rng.i32(0, 7)] : static_cast<short>(rng.i32(-32768, 32767));
}

void checkKernels(KernelW kw, KernelV kv, const std::string& isa) {
  Random rng(77);
  const int lengths[] = {1, 3, 4, 15, 16, 17, 31, 32, 33, 47, 63, 64, 65, 96, 100, 129, 255, 1000};
  for (int op = 0; op < 3; ++op) {
    for (bool sat : {false, true}) {
      for (int n : lengths) {
        for (int off : {0, 2, 4, 6, 10}) {
          for (int shape = 1; shape <= 3; ++shape) {
            Guarded<short> a(n, off), b(n, (off + 4) % 16), d(n, (off * 3) % 16);
            for (int i = 0; i < n; ++i) {
              a[i] = edgy(rng);
              b[i] = edgy(rng);
            }
            const short val = edgy(rng);
            const short* pa = shape == 3 ? a.data() : d.data();
            if (shape != 3) {
              for (int i = 0; i < n; ++i) d[i] = a[i];
            }
            kw(static_cast<k::Op>(op), sat, pa, shape == 1 ? nullptr : b.data(), val, d.data(), n);
            for (int i = 0; i < n; ++i) {
              const std::int64_t r = i16model::exact(static_cast<i16model::Op>(op), a[i], shape == 1 ? val : b[i]);
              ASSERT_EQ(d[i], sat ? i16model::clamp16(r) : i16model::low16(r)) << isa << " w op " << op << " n " << n << " i " << i;
            }
            ASSERT_TRUE(d.intact()) << isa;

            Guarded<WCplx> ca(n, off & ~3), cb(n, 8), cd(n, (off * 2) & 12);
            for (int i = 0; i < n; ++i) {
              ca[i] = WCplx{edgy(rng), edgy(rng)};
              cb[i] = WCplx{edgy(rng), edgy(rng)};
            }
            if (n > 20) {
              ca[n / 2] = cb[n / 2] = WCplx{-32768, -32768};
            }
            const WCplx cv = (n % 3 == 0) ? WCplx{-32768, -32768} : WCplx{edgy(rng), edgy(rng)};
            if (shape != 3) {
              for (int i = 0; i < n; ++i) cd[i] = ca[i];
            }
            kv(static_cast<k::Op>(op), sat, shape == 3 ? ca.data() : cd.data(), shape == 1 ? nullptr : cb.data(), cv,
               cd.data(), n);
            for (int i = 0; i < n; ++i) {
              const auto r = i16model::exact(static_cast<i16model::Op>(op), ca[i], shape == 1 ? cv : cb[i]);
              ASSERT_EQ(cd[i].re, sat ? i16model::clamp16(r.re) : i16model::low16(r.re)) << isa << " v op " << op << " n " << n << " i " << i;
              ASSERT_EQ(cd[i].im, sat ? i16model::clamp16(r.im) : i16model::low16(r.im)) << isa << " v op " << op << " n " << n << " i " << i;
            }
            ASSERT_TRUE(cd.intact()) << isa;
          }
        }
      }
    }
  }
}

TEST(Int16Lanes, BaselineKernelMatchesModel) { checkKernels(k::laneKernelW, k::laneKernelV, "sse2"); }

TEST(Int16Lanes, Avx2KernelMatchesModel) {
  if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "no AVX2 on this processor";
  checkKernels(k::avx2::laneKernelW, k::avx2::laneKernelV, "avx2");
}

// Results too large for the caches take streaming stores after a head that
// aligns dst; every alignment of dst and every shape against the model.
TEST(Int16Lanes, Avx2StreamingPathMatchesModel) {
  if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "no AVX2 on this processor";
  Random rng(79);
  const int n = (1 << 18) + 45;
  std::vector<short> a(n), b(n);
  for (int i = 0; i < n; ++i) {
    a[i] = edgy(rng);
    b[i] = edgy(rng);
  }
  for (int off : {0, 2, 4, 14, 30}) {
    for (bool sat : {false, true}) {
      Guarded<short> d(n, off);
      k::avx2::laneKernelW(k::Op::Mpy, sat, a.data(), b.data(), 0, d.data(), n);
      for (int i = 0; i < n; ++i) {
        const std::int64_t r = std::int64_t{a[i]} * b[i];
        ASSERT_EQ(d[i], sat ? i16model::clamp16(r) : i16model::low16(r)) << off << " " << i;
      }
      ASSERT_TRUE(d.intact());
      const int nc = n / 2;
      Guarded<WCplx> cd(nc, off & ~3);
      const WCplx* ca = reinterpret_cast<const WCplx*>(a.data());
      const WCplx* cb = reinterpret_cast<const WCplx*>(b.data());
      for (int i = 0; i < nc; ++i) cd[i] = ca[i];
      k::avx2::laneKernelV(k::Op::Sub, sat, cd.data(), cb, WCplx{}, cd.data(), nc);
      for (int i = 0; i < nc; ++i) {
        const std::int64_t re = std::int64_t{ca[i].re} - cb[i].re, im = std::int64_t{ca[i].im} - cb[i].im;
        ASSERT_EQ(cd[i].re, sat ? i16model::clamp16(re) : i16model::low16(re)) << off << " " << i;
        ASSERT_EQ(cd[i].im, sat ? i16model::clamp16(im) : i16model::low16(im)) << off << " " << i;
      }
      ASSERT_TRUE(cd.intact());
    }
  }
}

TEST(LogicLanes, Avx2BlocksMatchBitOps) {
  if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "no AVX2 on this processor";
  Random rng(78);
  for (int op = 0; op < 3; ++op) {
    for (int n : {31, 32, 33, 64, 100, 130}) {
      for (bool scalar : {false, true}) {
        Guarded<short> a(n, 2), b(n, 6), d(n, 10);
        for (int i = 0; i < n; ++i) {
          a[i] = static_cast<short>(rng.bits());
          b[i] = static_cast<short>(rng.bits());
          d[i] = 0x1111;
        }
        const short val = static_cast<short>(rng.bits());
        const std::size_t done = ryx::logic::avx2::blocks(op, a.data(), scalar ? nullptr : b.data(), val, d.data(), n);
        ASSERT_EQ(done, static_cast<std::size_t>(n / 32 * 32));
        for (int i = 0; i < n; ++i) {
          const std::uint16_t x = static_cast<std::uint16_t>(a[i]);
          const std::uint16_t y = static_cast<std::uint16_t>(scalar ? val : b[i]);
          const std::uint16_t want = op == 0 ? (x & y) : (op == 1 ? (x | y) : (x ^ y));
          if (static_cast<std::size_t>(i) < done) {
            ASSERT_EQ(static_cast<std::uint16_t>(d[i]), want) << op << " " << n << " " << i;
          } else {
            ASSERT_EQ(d[i], 0x1111) << "words past the blocks are the caller's";
          }
        }
        ASSERT_TRUE(d.intact());
      }
    }
  }
}

}  // namespace
