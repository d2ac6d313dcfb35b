// The 16-bit add, subtract and multiply routines (w and v, three shapes)
// under every scale mode, against the 64-bit model of int16_model.h, and
// the scalar helpers that go through them.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <vector>

#include "frame/cpu_dispatch.h"
#include "int16_model.h"
#include "test_support.h"

namespace {

using i16model::Op;
using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;

template <class T> struct Fns;
#define RYX_I16_FNS(T, x)                                                                                      \
  template <> struct Fns<T> {                                                                                  \
    static constexpr const char* letter = #x;                                                                 \
    static constexpr void (*op1[3])(T, T*, int, int, int*) = {ryx##x##bAdd1, ryx##x##bSub1, ryx##x##bMpy1};   \
    static constexpr void (*op2[3])(const T*, T*, int, int, int*) = {ryx##x##bAdd2, ryx##x##bSub2,            \
                                                                     ryx##x##bMpy2};                           \
    static constexpr void (*op3[3])(const T*, const T*, T*, int, int, int*) = {ryx##x##bAdd3, ryx##x##bSub3,  \
                                                                               ryx##x##bMpy3};                 \
  };
RYX_I16_FNS(short, w)
RYX_I16_FNS(WCplx, v)
#undef RYX_I16_FNS
constexpr const char* kOpName[3] = {"Add", "Sub", "Mpy"};
constexpr int partsOf(short) { return 1; }
constexpr int partsOf(WCplx) { return 2; }

// Values that sit on the edges of every rule, mixed into random data.
short edgyShort(Random& rng, int range) {
  static const short edges[] = {-32768, -32767, -16385, -16384, -1, 0, 1, 2, 16383, 16384, 32766, 32767};
  if (range < 32768) return static_cast<short>(rng.i32(-range, range));
  if (rng.i32(0, 3) == 0) return edges[rng.i32(0, 11)];
  return static_cast<short>(rng.i32(-range, range - 1));
}

template <class T> std::vector<T> randomArray(Random& rng, int n, int range) {
  std::vector<short> s(n * partsOf(T{}));
  for (auto& x : s) x = edgyShort(rng, range);
  std::vector<T> v(n);
  std::memcpy(v.data(), s.data(), sizeof(short) * s.size());
  return v;
}

// What a mode stores for the exact parts, and the factor mode 4 writes.
std::vector<short> model(const std::vector<std::int64_t>& r, int mode, const int* factor, int* autoFactor) {
  std::vector<short> out(r.size());
  if (mode == 4) *autoFactor = i16model::autoShift(r);
  for (size_t i = 0; i < r.size(); ++i) {
    out[i] = mode == 4 ? static_cast<short>(i16model::floorDiv2(r[i], *autoFactor)) : i16model::store(mode, r[i], factor);
  }
  return out;
}

std::string label(const char* type, Op op, int shape, int mode, const int* f) {
  return std::string(type) + kOpName[op] + std::to_string(shape) + " mode " + std::to_string(mode) + " factor " +
         (f ? std::to_string(*f) : std::string("null"));
}

// Runs one routine in the given shape on guarded buffers (dst at byte
// offset dstOff, sources at srcOff and beyond), optionally in place, and
// compares with the model. In place, shape 2 reads dst as both operands
// and shape 3 reads it as srcA.
template <class T>
void check(Op op, int shape, const std::vector<T>& a, const std::vector<T>& b, int mode, const int* factor, int dstOff,
           int srcOff, bool inPlace, const char* note = "") {
  using F = Fns<T>;
  const int n = static_cast<int>(a.size());
  const std::vector<T> bb = shape == 1 ? std::vector<T>(n, b[0]) : b;
  int want = 0;
  const std::vector<T>& rhs = shape == 2 && inPlace ? a : bb;
  const std::vector<short> e = model(i16model::exactParts(op, a.data(), rhs.data(), n), mode, factor, &want);
  Guarded<T> dst(n, dstOff), srcA(n, srcOff), srcB(n, (srcOff + (sizeof(T) == 2 ? 6 : 8)) % 16);
  for (int i = 0; i < n; ++i) {
    srcA[i] = a[i];
    srcB[i] = bb[i];
    if (shape != 3 || inPlace) dst[i] = a[i];
  }
  int f = factor ? *factor : -12345;
  int* fp = (factor || mode == 4) ? &f : nullptr;
  if (shape == 1) F::op1[op](b[0], dst.data(), n, mode, fp);
  if (shape == 2) F::op2[op](inPlace ? dst.data() : srcB.data(), dst.data(), n, mode, fp);
  if (shape == 3) F::op3[op](inPlace ? dst.data() : srcA.data(), srcB.data(), dst.data(), n, mode, fp);
  auto what = [&] { return label(F::letter, op, shape, mode, factor) + note + (inPlace ? " in place" : ""); };
  ASSERT_TRUE(dst.intact()) << what();
  const short* got = reinterpret_cast<const short*>(dst.data());
  for (size_t i = 0; i < e.size(); ++i) ASSERT_EQ(got[i], e[i]) << what() << " part " << i << " n=" << n;
  if (mode == 4) {
    ASSERT_EQ(f, want) << what();
  } else if (factor) {
    ASSERT_EQ(f, *factor) << what() << ": a fixed factor is only read";
  }
}

// Modes as read by exact value: 0..7 and values outside that range, which
// act as fixed wrap.
const int kModes[] = {0, 1, 2, 3, 4, 5, 6, 7, -1, 8, 1000, INT_MIN};
const int kFactors[] = {0, 1, 3, 15, 16, 17, 31, 32, 33, 40, -1, -2, -15, -16, -17, -31, -32, -40, INT_MAX, INT_MIN};

bool readsFactor(int mode) { return mode != 0 && mode != 1 && mode != 4; }

class Int16Arith : public ::testing::TestWithParam<int> {};

// Every value of the first operand against fixed second operands, shapes 3
// and 1, modes 0 to 4 (a factor of 3 and -2 for the fixed modes), and
// mode 4 on single elements so every value gets its own factor.
TEST_P(Int16Arith, ExhaustiveFirstOperandReal) {
  const Op op = static_cast<Op>(GetParam());
  std::vector<short> all(65536);
  for (int i = 0; i < 65536; ++i) all[i] = static_cast<short>(i - 32768);
  const int plus3 = 3, minus2 = -2;
  for (short b : {-32768, -1, 0, 1, 181, 32767}) {
    const std::vector<short> bs(65536, b);
    for (int mode : {0, 1, 2, 3, 4}) {
      for (const int* f : {static_cast<const int*>(nullptr), &plus3, &minus2}) {
        if (!readsFactor(mode) && f) continue;
        check(op, 3, all, bs, mode, f, 0, 2, false);
        check(op, 1, all, bs, mode, f, 6, 0, false);
      }
    }
    for (int x = -32768; x <= 32767; x += (b == 0 || b == 1 ? 1 : 7)) {
      check(op, 3, std::vector<short>{static_cast<short>(x)}, std::vector<short>{b}, 4, nullptr, 0, 0, false);
    }
  }
}

// Random arrays for every routine, mode and factor, lengths 1 to 40 with
// the destination and sources at varying misalignments, so that head,
// blocks and tail of every kernel run; shapes 2 and 3 also in place. The
// lane modes (0 and 1) also at longer lengths and with the dispatch capped
// at the 128-bit kernels.
TEST_P(Int16Arith, RandomArraysEveryModeAndFactor) {
  const Op op = static_cast<Op>(GetParam());
  Random rng(1000 + GetParam());
  struct Restore {
    ~Restore() { ryx::cpu::setCap(ryx::cpu::Isa::Avx512); }
  } restore;
  for (int mode : kModes) {
    const bool lanes = mode == 0 || mode == 1;
    std::vector<const int*> factors{nullptr};
    if (readsFactor(mode)) {
      for (const int& f : kFactors) factors.push_back(&f);
    }
    for (bool capped : {false, true}) {
      if (capped && !lanes) continue;
      ryx::cpu::setCap(capped ? ryx::cpu::Isa::Sse2 : ryx::cpu::Isa::Avx512);
      const char* cap = capped ? " sse2" : "";
      for (const int* f : factors) {
        for (int k = 1; k <= (lanes ? 42 : 40); ++k) {
          const int n = k == 41 ? 255 : (k == 42 ? 1000 : k);
          const int range = (mode == 4 && n % 3 == 0) ? (op == i16model::kMpy ? 150 : 16000) : 32768;
          for (int shape = 1; shape <= 3; ++shape) {
            const bool inPlace = shape > 1 && n % 4 == 1;
            check(op, shape, randomArray<short>(rng, n, range), randomArray<short>(rng, n, range), mode, f,
                  2 * (n % 8), 2 * ((n / 8) % 8), inPlace, cap);
            check(op, shape, randomArray<WCplx>(rng, n, range), randomArray<WCplx>(rng, n, range), mode, f,
                  4 * (n % 4), 4 * ((n / 4) % 4), inPlace, cap);
            if (::testing::Test::HasFatalFailure()) return;
          }
        }
      }
    }
  }
}

// Auto scale on long arrays where the first overflow comes late, early or
// not at all, in place and not: the stored part is rescaled and the rest
// recomputed from operands that were not overwritten.
TEST_P(Int16Arith, AutoScaleOverflowPositions) {
  const Op op = static_cast<Op>(GetParam());
  const bool mpy = op == i16model::kMpy;
  Random rng(3000 + GetParam());
  for (int n : {1, 2, 9, 100, 1001}) {
    for (int pos : {0, n / 2, n - 1, -1}) {
      std::vector<short> a = randomArray<short>(rng, n, mpy ? 100 : 10000);
      std::vector<short> b = randomArray<short>(rng, n, mpy ? 100 : 10000);
      if (pos >= 0) {
        a[pos] = op == i16model::kSub ? -32768 : 32767;
        b[pos] = op == i16model::kSub ? 32767 : (mpy ? 32767 : 1000);
      }
      std::vector<WCplx> ca(n), cb(n);
      for (int i = 0; i < n; ++i) {
        ca[i] = WCplx{a[i], b[(i + 1) % n]};
        cb[i] = WCplx{b[i], a[(i + 3) % n]};
      }
      if (pos >= 0 && mpy) ca[pos] = cb[pos] = WCplx{-32768, -32768};
      for (int shape = 1; shape <= 3; ++shape) {
        check(op, shape, a, b, 4, nullptr, 0, 4, shape > 1 && n % 2 == 1);
        check(op, shape, ca, cb, 4, nullptr, 4, 0, shape > 1 && n % 2 == 0);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Int16, Int16Arith, ::testing::Values(0, 1, 2), [](const auto& info) {
  return std::string(kOpName[info.param]);
});

// Cases the family's rules single out, written out by hand so the model
// itself is pinned down.
TEST(Int16ArithEdges, WrapSaturateAndAutoByExample) {
  short d[1] = {32767};
  ryxwbAdd1(1, d, 1, 0, nullptr);
  EXPECT_EQ(d[0], -32768);
  d[0] = 32767;
  ryxwbAdd1(1, d, 1, 1, nullptr);
  EXPECT_EQ(d[0], 32767);

  short e[3] = {32767, 1, 3};
  int f = -7;
  ryxwbAdd1(1, e, 3, 4, &f);
  EXPECT_TRUE(f == 1 && e[0] == 16384 && e[1] == 1 && e[2] == 2);
  short g[2] = {3, -4};
  f = 99;
  ryxwbAdd1(1, g, 2, 4, &f);
  EXPECT_TRUE(f == 0 && g[0] == 4 && g[1] == -3) << "auto scale without overflow writes factor 0";

  short m[4] = {5, -32768, 7, 1};
  ryxwbMpy1(-32768, m, 4, 4, &f);
  EXPECT_TRUE(f == 16 && m[1] == 16384 && m[0] == static_cast<short>((5 * -32768) >> 16));
}

TEST(Int16ArithEdges, ComplexImaginaryReachingTwoToThe31) {
  const WCplx m{-32768, -32768};
  // re = 2^30 - 2^30 = 0, im = 2^31: wrapped, saturated, saturated, auto.
  const short wantIm[4] = {0, 32767, 32767, 16384};
  const int modes[4] = {0, 1, 3, 4};
  for (int k = 0; k < 4; ++k) {
    WCplx d[1] = {m};
    int f = 0;
    ryxvbMpy1(m, d, 1, modes[k], &f);
    EXPECT_EQ(d[0].im, wantIm[k]) << modes[k];
    EXPECT_EQ(d[0].re, 0) << modes[k];
    if (modes[k] == 4) {
      EXPECT_EQ(f, 17);
    }
  }
  // Every SIMD block position: eight samples in a row.
  WCplx v[8], out[8];
  for (WCplx& x : v) x = m;
  ryxvbMpy3(v, v, out, 8, 1, nullptr);
  for (const WCplx& o : out) EXPECT_EQ(o.im, 32767);
  // A fixed right shift by 1 of 2^31 saturates; by 16 gives 32768 -> 32767
  // (saturate) or -32768 (wrap); by 17 gives 16384.
  for (int s : {1, 16, 17}) {
    WCplx d[1] = {m};
    ryxvbMpy1(m, d, 1, 3, &s);
    EXPECT_EQ(d[0].im, s == 17 ? 16384 : 32767) << s;
    d[0] = m;
    ryxvbMpy1(m, d, 1, 2, &s);
    EXPECT_EQ(d[0].im, s == 17 ? 16384 : (s == 16 ? -32768 : 0)) << s;
  }
}

TEST(Int16ArithEdges, FixedScaleLimitsNullFactorAndOddModes) {
  int f = -1;
  short d[4] = {16384, 16383, -16384, -16385};
  ryxwbMpy1(1, d, 4, 3, &f);
  EXPECT_TRUE(d[0] == 32767 && d[1] == 32766 && d[2] == -32768 && d[3] == -32768);
  // Mode 3 with a null factor saturates, mode 2 wraps; a factor of 32 is a
  // shift by 0 in mode 3, 33 a shift by 1.
  int f32 = 32, f33 = 33;
  const struct {
    int mode;
    int* factor;
    short want;
  } cases[] = {{3, nullptr, 32767}, {2, nullptr, static_cast<short>(60000 - 65536)}, {3, &f32, 32767}, {3, &f33, 30000}};
  for (const auto& c : cases) {
    short s[1] = {30000};
    ryxwbAdd1(30000, s, 1, c.mode, c.factor);
    EXPECT_EQ(s[0], c.want) << c.mode;
  }
  // Modes outside 0..4 act as fixed wrap and are safe with any factor.
  for (int mode : {5, 6, 7, 8, -3, INT_MAX}) {
    for (int factor : {1, 0}) {
      short s[1] = {32767};
      ryxwbAdd1(32767, s, 1, mode, &factor);
      EXPECT_EQ(s[0], factor == 1 ? 32767 : -2) << mode;  // 65534 >> 1, or wrapped
    }
  }
}

// The scalar helpers go through the array routine on one element.
TEST(Int16Scalar, AddSubMpyFollowTheArrayRulesAndTraceFailures) {
  ReportCapture capture;
  int f = 0;
  WCplx r = ryxvAdd(WCplx{32767, -32768}, WCplx{1, -1}, 1, nullptr);
  EXPECT_TRUE(r.re == 32767 && r.im == -32768);
  r = ryxvSub(WCplx{-32768, 5}, WCplx{1, 7}, 0, nullptr);
  EXPECT_TRUE(r.re == 32767 && r.im == -2);
  r = ryxvMpy(WCplx{-32768, -32768}, WCplx{-32768, -32768}, 4, &f);
  EXPECT_TRUE(f == 17 && r.re == 0 && r.im == 16384);
  f = -1;
  r = ryxvMpy(WCplx{100, 3}, WCplx{-2, 5}, 3, &f);  // (-200-15, 500-6) << 1
  EXPECT_TRUE(r.re == -430 && r.im == 988);
  EXPECT_TRUE(capture.reports().empty());

  // A failure inside: the array routine's report, then a trace line.
  r = ryxvAdd(WCplx{1, 2}, WCplx{3, 4}, 4, nullptr);
  ASSERT_EQ(capture.reports().size(), 2u);
  EXPECT_EQ(capture.reports()[0].funcName, "ryxvbAdd3");
  EXPECT_EQ(capture.reports()[0].context, "scalefactor==0");
  EXPECT_EQ(capture.reports()[1].status, RYX_StsBacktrace);
  EXPECT_EQ(capture.reports()[1].funcName, "ryxvAdd");
  EXPECT_EQ(capture.reports()[1].file, "ryxaritw");
  EXPECT_TRUE(r.re == 0 && r.im == 0) << "the zero-initialised record comes back";
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);

  // A failure left standing from before: the result is computed and a
  // trace line still follows.
  capture.clear();
  ryxSetErrStatus(RYX_StsBadArg);
  r = ryxvSub(WCplx{1, 2}, WCplx{3, 4}, 0, nullptr);
  EXPECT_TRUE(r.re == -2 && r.im == -2);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].status, RYX_StsBacktrace);
  EXPECT_EQ(capture.reports()[0].funcName, "ryxvSub");
}

}  // namespace
