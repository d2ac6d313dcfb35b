// Each instruction-set kernel of the 16-bit wrap and saturate modes, and of
// the logic family, called directly and compared with the 64-bit model, so
// a path the dispatcher would not pick on this machine is still checked.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
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

template <class T> using Kernel = void (*)(k::Op, bool, const T*, const T*, T, T*, int);

short edgy(Random& rng) {
  static const short e[] = {-32768, -32767, -1, 0, 1, 32767, 16384, -16384};
  return rng.i32(0, 3) == 0 ? e[rng.i32(0, 7)] : static_cast<short>(rng.i32(-32768, 32767));
}
template <class T> void fillEdgy(Random& rng, T* p, int n) {
  short* s = reinterpret_cast<short*>(p);
  for (size_t i = 0; i < n * sizeof(T) / 2; ++i) s[i] = edgy(rng);
}

template <class T> void setMin(T& x) {
  for (size_t i = 0; i < sizeof(T) / 2; ++i) reinterpret_cast<short*>(&x)[i] = -32768;
}

// dst against the model: the exact result wrapped or saturated, per part.
template <class T>
void expectModel(k::Op op, bool sat, const T* a, const std::vector<T>& b, T* dst, int n, const std::string& what) {
  const std::vector<std::int64_t> r = i16model::exactParts(static_cast<i16model::Op>(op), a, b.data(), n);
  const short* got = reinterpret_cast<const short*>(dst);
  for (size_t i = 0; i < r.size(); ++i) {
    ASSERT_EQ(got[i], sat ? i16model::clamp16(r[i]) : i16model::low16(r[i])) << what << " part " << i;
  }
}

// Every op, both modes, lengths across the 8-byte head and the 16- and
// 4-lane steps, every shape (1 and 2 in place on dst), at misalignments of
// each array at the element's own granularity.
template <class T> void checkKernel(Kernel<T> kernel, const std::string& isa) {
  Random rng(77);
  const int lengths[] = {1, 3, 4, 15, 16, 17, 31, 32, 33, 47, 63, 64, 65, 96, 100, 129, 255, 1000};
  const int grain = ~(static_cast<int>(sizeof(T)) - 1);
  for (int op = 0; op < 3; ++op) {
    for (bool sat : {false, true}) {
      for (int n : lengths) {
        for (int off : {0, 2, 4, 6, 10}) {
          for (int shape = 1; shape <= 3; ++shape) {
            Guarded<T> a(n, off & grain), b(n, ((off + 4) % 16) & grain), d(n, ((off * 3) % 16) & grain);
            fillEdgy(rng, a.data(), n);
            fillEdgy(rng, b.data(), n);
            T val;
            fillEdgy(rng, &val, 1);
            if (n > 20) {  // the largest products, mid-array
              setMin(a[n / 2]);
              setMin(b[n / 2]);
            }
            if (n % 3 == 0) setMin(val);
            if (shape != 3) std::memcpy(d.data(), a.data(), sizeof(T) * n);
            const std::vector<T> rhs = shape == 1 ? std::vector<T>(n, val) : std::vector<T>(b.data(), b.data() + n);
            kernel(static_cast<k::Op>(op), sat, shape == 3 ? a.data() : d.data(), shape == 1 ? nullptr : b.data(), val,
                   d.data(), n);
            expectModel(static_cast<k::Op>(op), sat, a.data(), rhs, d.data(), n,
                        isa + " op " + std::to_string(op) + " shape " + std::to_string(shape) + " n " + std::to_string(n));
            ASSERT_TRUE(d.intact()) << isa;
          }
        }
      }
    }
  }
}

TEST(Int16Lanes, BaselineKernelMatchesModel) {
  checkKernel<short>(k::laneKernelW, "sse2 w");
  checkKernel<WCplx>(k::laneKernelV, "sse2 v");
}

TEST(Int16Lanes, Avx2KernelMatchesModel) {
  if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "no AVX2 on this processor";
  checkKernel<short>(k::avx2::laneKernelW, "avx2 w");
  checkKernel<WCplx>(k::avx2::laneKernelV, "avx2 v");
}

// Results too large for the caches take streaming stores after a head that
// aligns dst; every alignment of dst against the model (w multiply shape 3,
// v subtract shape 2).
TEST(Int16Lanes, Avx2StreamingPathMatchesModel) {
  if (!__builtin_cpu_supports("avx2")) GTEST_SKIP() << "no AVX2 on this processor";
  Random rng(79);
  const int n = (1 << 18) + 45, nc = n / 2;
  std::vector<short> a(n), b(n);
  fillEdgy(rng, a.data(), n);
  fillEdgy(rng, b.data(), n);
  const WCplx* ca = reinterpret_cast<const WCplx*>(a.data());
  const std::vector<WCplx> cb(reinterpret_cast<const WCplx*>(b.data()), reinterpret_cast<const WCplx*>(b.data()) + nc);
  for (int off : {0, 2, 4, 14, 30}) {
    for (bool sat : {false, true}) {
      Guarded<short> d(n, off);
      k::avx2::laneKernelW(k::Op::Mpy, sat, a.data(), b.data(), 0, d.data(), n);
      expectModel(k::Op::Mpy, sat, a.data(), b, d.data(), n, "w off " + std::to_string(off));
      ASSERT_TRUE(d.intact());
      Guarded<WCplx> cd(nc, off & ~3);
      std::memcpy(cd.data(), ca, sizeof(WCplx) * nc);
      k::avx2::laneKernelV(k::Op::Sub, sat, cd.data(), cb.data(), WCplx{}, cd.data(), nc);
      expectModel(k::Op::Sub, sat, ca, cb, cd.data(), nc, "v off " + std::to_string(off));
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
