// Elementwise add, subtract, multiply, fill and copy on float, double, SCplx
// and DCplx arrays: every shape, every length 1-9 and around the kernel
// thresholds, every 4-byte misalignment of each array, in place and not,
// bitwise against a scalar reference, with the bytes around dst untouched.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

#include "arith_family.h"
#include "test_support.h"

namespace {

using namespace ryxtest;

// Lengths around the block size (8), the streaming threshold (1024), the
// aligned-form threshold (4096) and the fill/copy word thresholds.
const std::vector<int> kLengths = {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 17, 33, 511, 512, 513, 1023, 1024, 1025, 2049,
                                   4095, 4096, 4097};
// Byte offsets from a 64-byte boundary: every 4-byte misalignment for float
// data, every 8-byte one for double data (the element's own alignment).
template <class T>
std::vector<int> offsetsFor() {
  if (alignof(T) >= 8) return {0, 8};
  return {0, 4, 8, 12};
}

// Finite random values with a sprinkle of signed zeros, infinities and
// subnormals, so hardware semantics are exercised on every path.
template <class Real>
Real specialOr(Random& rnd, Real v) {
  switch (rnd.bits() % 23) {
    case 0: return Real(0);
    case 1: return -Real(0);
    case 2: return std::numeric_limits<Real>::infinity();
    case 3: return std::numeric_limits<Real>::denorm_min() * Real(rnd.i32(1, 1000));
    default: return v;
  }
}
void fillData(Random& rnd, float* p, int n) { for (int i = 0; i < n; ++i) p[i] = specialOr(rnd, rnd.f32()); }
void fillData(Random& rnd, double* p, int n) { for (int i = 0; i < n; ++i) p[i] = specialOr(rnd, rnd.f64()); }
void fillData(Random& rnd, SCplx* p, int n) { fillData(rnd, reinterpret_cast<float*>(p), 2 * n); }
void fillData(Random& rnd, DCplx* p, int n) { fillData(rnd, reinterpret_cast<double*>(p), 2 * n); }

template <class T>
class Elementwise : public testing::Test {};
using ElementTypes = testing::Types<float, double, SCplx, DCplx>;
TYPED_TEST_SUITE(Elementwise, ElementTypes);

TYPED_TEST(Elementwise, ShapeOneInPlaceWithScalar) {
  using T = TypeParam;
  const std::vector<int> kOffsets = offsetsFor<T>();
  Random rnd(11);
  for (int op = 0; op < 3; ++op) {
    for (int n : kLengths) {
      for (int od : kOffsets) {
        Guarded<T> dst(n, od);
        fillData(rnd, dst.data(), n);
        T val;
        fillData(rnd, &val, 1);
        std::vector<T> expect(dst.data(), dst.data() + n);
        for (auto& e : expect) e = refOp(Op(op), e, val);
        Family<T>::op1[op](val, dst.data(), n);
        ASSERT_TRUE(sameBits(dst.data(), expect.data(), n)) << Family<T>::letter << " op " << op << " n " << n << " od " << od;
        ASSERT_TRUE(dst.intact());
      }
    }
  }
}

TYPED_TEST(Elementwise, ShapeTwoEveryAlignmentPairAndInPlace) {
  using T = TypeParam;
  const std::vector<int> kOffsets = offsetsFor<T>();
  Random rnd(12);
  for (int op = 0; op < 3; ++op) {
    for (int n : kLengths) {
      for (int os : kOffsets) {
        for (int od : kOffsets) {
          Guarded<T> src(n, os), dst(n, od);
          fillData(rnd, src.data(), n);
          fillData(rnd, dst.data(), n);
          std::vector<T> expect(n);
          for (int i = 0; i < n; ++i) expect[i] = refOp(Op(op), dst[i], src[i]);
          std::vector<T> srcCopy(src.data(), src.data() + n);
          Family<T>::op2[op](src.data(), dst.data(), n);
          ASSERT_TRUE(sameBits(dst.data(), expect.data(), n)) << Family<T>::letter << " op " << op << " n " << n;
          ASSERT_TRUE(sameBits(src.data(), srcCopy.data(), n));
          ASSERT_TRUE(dst.intact());
        }
      }
      // src and dst the same array.
      Guarded<T> v(n, kOffsets.back());
      fillData(rnd, v.data(), n);
      std::vector<T> expect(n);
      for (int i = 0; i < n; ++i) expect[i] = refOp(Op(op), v[i], v[i]);
      Family<T>::op2[op](v.data(), v.data(), n);
      ASSERT_TRUE(sameBits(v.data(), expect.data(), n)) << "in place, n " << n;
    }
  }
}

TYPED_TEST(Elementwise, ShapeThreeEveryAlignmentTripleAndInPlace) {
  using T = TypeParam;
  const std::vector<int> kOffsets = offsetsFor<T>();
  Random rnd(13);
  for (int op = 0; op < 3; ++op) {
    for (int n : kLengths) {
      for (int oa : kOffsets) {
        for (int ob : kOffsets) {
          for (int od : kOffsets) {
            Guarded<T> a(n, oa), b(n, ob), dst(n, od);
            fillData(rnd, a.data(), n);
            fillData(rnd, b.data(), n);
            std::vector<T> expect(n);
            for (int i = 0; i < n; ++i) expect[i] = refOp(Op(op), a[i], b[i]);
            Family<T>::op3[op](a.data(), b.data(), dst.data(), n);
            ASSERT_TRUE(sameBits(dst.data(), expect.data(), n))
                << Family<T>::letter << " op " << op << " n " << n << " offsets " << oa << ob << od;
            ASSERT_TRUE(dst.intact());
          }
        }
      }
      // dst the same array as srcA, and as both sources.
      Guarded<T> a(n, kOffsets.back()), b(n, 0);
      fillData(rnd, a.data(), n);
      fillData(rnd, b.data(), n);
      std::vector<T> expect(n), expectBoth(n);
      for (int i = 0; i < n; ++i) expect[i] = refOp(Op(op), a[i], b[i]);
      for (int i = 0; i < n; ++i) expectBoth[i] = refOp(Op(op), expect[i], expect[i]);
      Family<T>::op3[op](a.data(), b.data(), a.data(), n);
      ASSERT_TRUE(sameBits(a.data(), expect.data(), n)) << "dst==srcA, n " << n;
      Family<T>::op3[op](a.data(), a.data(), a.data(), n);
      ASSERT_TRUE(sameBits(a.data(), expectBoth.data(), n)) << "all one array, n " << n;
    }
  }
}

TYPED_TEST(Elementwise, ZeroSetAndCopy) {
  using T = TypeParam;
  const std::vector<int> kOffsets = offsetsFor<T>();
  Random rnd(14);
  std::vector<int> lengths = kLengths;
  lengths.push_back(4200);  // fills of more than 4096 words stream
  for (int n : lengths) {
    for (int od : kOffsets) {
      Guarded<T> dst(n, od);
      fillData(rnd, dst.data(), n);
      Family<T>::zero(dst.data(), n);
      std::vector<unsigned char> zeros(sizeof(T) * n, 0);
      ASSERT_EQ(std::memcmp(dst.data(), zeros.data(), zeros.size()), 0) << "zero n " << n << " od " << od;
      ASSERT_TRUE(dst.intact());

      T val;
      fillData(rnd, &val, 1);
      Family<T>::set(val, dst.data(), n);
      for (int i = 0; i < n; ++i) ASSERT_TRUE(sameBits(&dst[i], &val, 1)) << "set n " << n << " at " << i;
      ASSERT_TRUE(dst.intact());

      for (int os : kOffsets) {
        Guarded<T> src(n, os);
        fillData(rnd, src.data(), n);
        Family<T>::copy(src.data(), dst.data(), n);
        ASSERT_TRUE(sameBits(dst.data(), src.data(), n)) << "copy n " << n << " os " << os << " od " << od;
        ASSERT_TRUE(dst.intact());
      }
    }
  }
}

TEST(ElementwiseValues, SubtractionOrderAndComplexProduct) {
  float a[3] = {5, 7, 9}, b[3] = {1, 2, 3}, d[3];
  ryxsbSub3(a, b, d, 3);
  EXPECT_EQ(d[2], 6.0f);  // srcA - srcB
  ryxsbSub2(b, a, 3);
  EXPECT_EQ(a[0], 4.0f);  // dst - src
  ryxsbSub1(1.5f, a, 3);
  EXPECT_EQ(a[0], 2.5f);  // dst - val
  SCplx x[1] = {{1, 2}}, y[1] = {{3, 4}}, z[1];
  ryxcbMpy3(x, y, z, 1);
  EXPECT_EQ(z[0].re, -5.0f);
  EXPECT_EQ(z[0].im, 10.0f);
  DCplx p[5], q = {0, 1};
  for (int i = 0; i < 5; ++i) p[i] = {double(i), 1};
  ryxzbMpy1(q, p, 5);  // times j
  EXPECT_EQ(p[4].re, -1.0);
  EXPECT_EQ(p[4].im, 4.0);
}

}  // namespace
