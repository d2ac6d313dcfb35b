// Elementwise add, subtract and multiply on float, double, SCplx and DCplx
// arrays, and zero, set and copy on those and the 16-bit types: every shape,
// lengths 1-9 and around the kernel thresholds, every misalignment of each
// array at the element's own granularity, in place and not, bitwise against
// a scalar reference, with the bytes around dst untouched.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

#include "test_support.h"

namespace {

using namespace ryxtest;

enum Op { kAdd, kSub, kMpy };

template <class T> struct Family;
#define RYX_TEST_FAMILY(T, x)                                                                              \
  template <> struct Family<T> {                                                                           \
    static constexpr void (*zero)(T*, int) = ryx##x##bZero;                                                \
    static constexpr void (*set)(T, T*, int) = ryx##x##bSet;                                               \
    static constexpr void (*copy)(const T*, T*, int) = ryx##x##bCopy;                                      \
    static constexpr void (*op1[3])(T, T*, int) = {ryx##x##bAdd1, ryx##x##bSub1, ryx##x##bMpy1};          \
    static constexpr void (*op2[3])(const T*, T*, int) = {ryx##x##bAdd2, ryx##x##bSub2, ryx##x##bMpy2};   \
    static constexpr void (*op3[3])(const T*, const T*, T*, int) = {ryx##x##bAdd3, ryx##x##bSub3,         \
                                                                    ryx##x##bMpy3};                        \
  };
#define RYX_TEST_FILL(T, x)                                                \
  template <> struct Family<T> {                                           \
    static constexpr void (*zero)(T*, int) = ryx##x##bZero;                \
    static constexpr void (*set)(T, T*, int) = ryx##x##bSet;               \
    static constexpr void (*copy)(const T*, T*, int) = ryx##x##bCopy;      \
  };
RYX_TEST_FAMILY(float, s)
RYX_TEST_FAMILY(double, d)
RYX_TEST_FAMILY(SCplx, c)
RYX_TEST_FAMILY(DCplx, z)
RYX_TEST_FILL(short, w)
RYX_TEST_FILL(WCplx, v)
#undef RYX_TEST_FAMILY
#undef RYX_TEST_FILL

// Reference arithmetic, one element, in the element's own precision; the
// complex product as four rounded products, then their difference and sum.
template <class R> R refOp(Op op, R a, R b) { return op == kAdd ? a + b : (op == kSub ? a - b : a * b); }
template <class C> C refComplex(Op op, C a, C b) {
  if (op != kMpy) return {refOp(op, a.re, b.re), refOp(op, a.im, b.im)};
  const auto p1 = a.re * b.re, p2 = a.im * b.im, p3 = a.re * b.im, p4 = a.im * b.re;
  return {p1 - p2, p3 + p4};
}
SCplx refOp(Op op, SCplx a, SCplx b) { return refComplex(op, a, b); }
DCplx refOp(Op op, DCplx a, DCplx b) { return refComplex(op, a, b); }

// Lengths around the block size (8), the streaming threshold (1024), the
// aligned-form threshold (4096) and the fill/copy word thresholds.
const std::vector<int> kLengths = {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 17, 33, 511, 512, 513, 1023, 1024, 1025, 2049,
                                   4095, 4096, 4097};
// Every product of misalignments at the threshold lengths; in between, the
// sources share the destination's misalignment or sit 8 bytes away.
bool everyAlignment(int n) { return n <= 9 || (n >= 1023 && n <= 1025) || n >= 4095; }

// Byte offsets from a 64-byte boundary at the element's own alignment.
template <class T> std::vector<int> offsetsFor() {
  if (alignof(T) >= 8) return {0, 8};
  if (alignof(T) == 2) return {0, 2, 6, 12};
  return {0, 4, 8, 12};
}

// Finite random values with a sprinkle of signed zeros, infinities and
// subnormals, so hardware semantics are exercised on every path.
template <class Real> Real specialOr(Random& rnd, Real v) {
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
void fillData(Random& rnd, short* p, int n) { for (int i = 0; i < n; ++i) p[i] = static_cast<short>(rnd.bits()); }
void fillData(Random& rnd, WCplx* p, int n) { fillData(rnd, reinterpret_cast<short*>(p), 2 * n); }

template <class T> class Elementwise : public testing::Test {};
using ElementTypes = testing::Types<float, double, SCplx, DCplx>;
TYPED_TEST_SUITE(Elementwise, ElementTypes);

// Shape 3 at every triple of misalignments, shape 2 at every pair and
// shape 1 at every destination misalignment; then dst as srcA, as both
// sources (shape 3) and as src (shape 2).
TYPED_TEST(Elementwise, EveryShapeAlignmentAndInPlace) {
  using T = TypeParam;
  using F = Family<T>;
  const std::vector<int> offs = offsetsFor<T>();
  Random rnd(11);
  for (int op = 0; op < 3; ++op) {
    for (int n : kLengths) {
      for (int oa : offs) {
        for (int ob : offs) {
          for (int od : offs) {
            if (!everyAlignment(n) && oa != od && (oa + 8) % 16 != od) continue;
            Guarded<T> a(n, oa), b(n, ob), dst(n, od);
            fillData(rnd, a.data(), n);
            fillData(rnd, b.data(), n);
            const std::vector<T> keepB(b.data(), b.data() + n);
            std::vector<T> expect(n);
            for (int i = 0; i < n; ++i) expect[i] = refOp(Op(op), a[i], b[i]);
            F::op3[op](a.data(), b.data(), dst.data(), n);
            ASSERT_TRUE(sameBits(dst.data(), expect.data(), n)) << "shape 3 op " << op << " n " << n << " offsets " << oa << ob << od;
            ASSERT_TRUE(dst.intact());
            if (oa != offs[0]) continue;
            // Shape 2: dst = dst op src with dst holding a.
            std::memcpy(dst.data(), a.data(), sizeof(T) * n);
            F::op2[op](b.data(), dst.data(), n);
            ASSERT_TRUE(sameBits(dst.data(), expect.data(), n)) << "shape 2 op " << op << " n " << n << " offsets " << ob << od;
            ASSERT_TRUE(sameBits(b.data(), keepB.data(), n)) << "src written";
            ASSERT_TRUE(dst.intact());
            if (ob != offs[0]) continue;
            // Shape 1: dst = dst op val.
            const T val = b[0];
            for (int i = 0; i < n; ++i) expect[i] = refOp(Op(op), a[i], val);
            std::memcpy(dst.data(), a.data(), sizeof(T) * n);
            F::op1[op](val, dst.data(), n);
            ASSERT_TRUE(sameBits(dst.data(), expect.data(), n)) << "shape 1 op " << op << " n " << n << " od " << od;
            ASSERT_TRUE(dst.intact());
          }
        }
      }
      Guarded<T> a(n, offs.back()), b(n, 0);
      fillData(rnd, a.data(), n);
      fillData(rnd, b.data(), n);
      std::vector<T> expect(n), expectBoth(n), expectTwo(n);
      for (int i = 0; i < n; ++i) expect[i] = refOp(Op(op), a[i], b[i]);
      for (int i = 0; i < n; ++i) expectBoth[i] = refOp(Op(op), expect[i], expect[i]);
      for (int i = 0; i < n; ++i) expectTwo[i] = refOp(Op(op), expectBoth[i], expectBoth[i]);
      F::op3[op](a.data(), b.data(), a.data(), n);
      ASSERT_TRUE(sameBits(a.data(), expect.data(), n)) << "dst==srcA, n " << n;
      F::op3[op](a.data(), a.data(), a.data(), n);
      ASSERT_TRUE(sameBits(a.data(), expectBoth.data(), n)) << "all one array, n " << n;
      F::op2[op](a.data(), a.data(), n);
      ASSERT_TRUE(sameBits(a.data(), expectTwo.data(), n)) << "src==dst, n " << n;
    }
  }
}

template <class T> class Fill : public testing::Test {};
using FillTypes = testing::Types<float, double, SCplx, DCplx, short, WCplx>;
TYPED_TEST_SUITE(Fill, FillTypes);

TYPED_TEST(Fill, ZeroSetAndCopy) {
  using T = TypeParam;
  const std::vector<int> offs = offsetsFor<T>();
  Random rnd(14);
  std::vector<int> lengths = kLengths;
  lengths.push_back(4200);  // fills of more than 4096 words stream
  for (int n : lengths) {
    for (int od : offs) {
      Guarded<T> dst(n, od);
      fillData(rnd, dst.data(), n);
      Family<T>::zero(dst.data(), n);
      const std::vector<unsigned char> zeros(sizeof(T) * n, 0);
      ASSERT_EQ(std::memcmp(dst.data(), zeros.data(), zeros.size()), 0) << "zero n " << n << " od " << od;
      ASSERT_TRUE(dst.intact());
      T val;
      fillData(rnd, &val, 1);
      Family<T>::set(val, dst.data(), n);
      for (int i = 0; i < n; ++i) ASSERT_TRUE(sameBits(&dst[i], &val, 1)) << "set n " << n << " at " << i;
      ASSERT_TRUE(dst.intact());
      for (int os : offs) {
        Guarded<T> src(n, os);
        fillData(rnd, src.data(), n);
        Family<T>::copy(src.data(), dst.data(), n);
        ASSERT_TRUE(sameBits(dst.data(), src.data(), n)) << "copy n " << n << " os " << os << " od " << od;
        ASSERT_TRUE(dst.intact());
      }
    }
  }
}

// The reference itself, by example: operand order and the complex product.
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
  EXPECT_TRUE(z[0].re == -5.0f && z[0].im == 10.0f);
}

}  // namespace
