// The 16-bit add, subtract and multiply routines (w and v, three shapes)
// under every scale mode, against the 64-bit model of int16_model.h.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <vector>

#include "frame/cpu_dispatch.h"
#include "int16_model.h"
#include "test_support.h"

namespace {

using i16model::Op;
using ryxtest::Guarded;
using ryxtest::Random;

using W1 = void (*)(short, short*, int, int, int*);
using W2 = void (*)(const short*, short*, int, int, int*);
using W3 = void (*)(const short*, const short*, short*, int, int, int*);
using V1 = void (*)(WCplx, WCplx*, int, int, int*);
using V2 = void (*)(const WCplx*, WCplx*, int, int, int*);
using V3 = void (*)(const WCplx*, const WCplx*, WCplx*, int, int, int*);

constexpr W1 kW1[3] = {ryxwbAdd1, ryxwbSub1, ryxwbMpy1};
constexpr W2 kW2[3] = {ryxwbAdd2, ryxwbSub2, ryxwbMpy2};
constexpr W3 kW3[3] = {ryxwbAdd3, ryxwbSub3, ryxwbMpy3};
constexpr V1 kV1[3] = {ryxvbAdd1, ryxvbSub1, ryxvbMpy1};
constexpr V2 kV2[3] = {ryxvbAdd2, ryxvbSub2, ryxvbMpy2};
constexpr V3 kV3[3] = {ryxvbAdd3, ryxvbSub3, ryxvbMpy3};
constexpr const char* kOpName[3] = {"Add", "Sub", "Mpy"};

// Values that sit on the edges of every rule, mixed into random data.
short edgyShort(Random& rng, int range) {
  static const short edges[] = {-32768, -32767, -16385, -16384, -1, 0, 1, 2, 16383, 16384, 32766, 32767};
  if (rng.i32(0, 3) == 0) return edges[rng.i32(0, 11)];
  return static_cast<short>(rng.i32(-range, range - 1));
}

std::vector<short> randomShorts(Random& rng, int n, int range) {
  std::vector<short> v(n);
  for (auto& x : v) x = range >= 32768 ? edgyShort(rng, 32768) : static_cast<short>(rng.i32(-range, range));
  return v;
}

std::vector<WCplx> randomCplx(Random& rng, int n, int range) {
  std::vector<WCplx> v(n);
  for (auto& x : v) {
    const auto s = randomShorts(rng, 2, range);
    x = WCplx{s[0], s[1]};
  }
  return v;
}

// Expected array and factor for the w family under one mode.
struct ExpectW {
  std::vector<short> values;
  int factor;  // written factor in mode 4
};

ExpectW modelW(Op op, const std::vector<short>& a, const std::vector<short>& b, int mode, const int* factor) {
  std::vector<std::int64_t> r(a.size());
  for (size_t i = 0; i < a.size(); ++i) r[i] = i16model::exact(op, a[i], b[i]);
  ExpectW e{std::vector<short>(a.size()), 0};
  if (mode == 4) {
    e.factor = i16model::autoShift(r);
    for (size_t i = 0; i < r.size(); ++i) e.values[i] = static_cast<short>(i16model::floorDiv2(r[i], e.factor));
  } else {
    for (size_t i = 0; i < r.size(); ++i) e.values[i] = i16model::store(mode, r[i], factor);
  }
  return e;
}

struct ExpectV {
  std::vector<WCplx> values;
  int factor;
};

ExpectV modelV(Op op, const std::vector<WCplx>& a, const std::vector<WCplx>& b, int mode, const int* factor) {
  std::vector<std::int64_t> parts;
  for (size_t i = 0; i < a.size(); ++i) {
    const auto p = i16model::exact(op, a[i], b[i]);
    parts.push_back(p.re);
    parts.push_back(p.im);
  }
  ExpectV e{std::vector<WCplx>(a.size()), 0};
  if (mode == 4) e.factor = i16model::autoShift(parts);
  for (size_t i = 0; i < a.size(); ++i) {
    if (mode == 4) {
      e.values[i] = WCplx{static_cast<short>(i16model::floorDiv2(parts[2 * i], e.factor)),
                          static_cast<short>(i16model::floorDiv2(parts[2 * i + 1], e.factor))};
    } else {
      e.values[i] = WCplx{i16model::store(mode, parts[2 * i], factor), i16model::store(mode, parts[2 * i + 1], factor)};
    }
  }
  return e;
}

// Runs one routine of the w family in the given shape on guarded buffers
// (dst at byte offset dstOff, sources at srcOff), optionally in place, and
// compares with the model.
void checkW(Op op, int shape, const std::vector<short>& a, const std::vector<short>& b, int mode, const int* factor,
            int dstOff, int srcOff, bool inPlace, const std::string& what) {
  const int n = static_cast<int>(a.size());
  std::vector<short> bb = b;
  if (shape == 1) bb.assign(n, b[0]);
  const ExpectW e = modelW(op, a, bb, mode, factor);
  Guarded<short> dst(n, dstOff), srcA(n, srcOff), srcB(n, (srcOff + 6) % 16);
  for (int i = 0; i < n; ++i) {
    srcA[i] = a[i];
    srcB[i] = bb[i];
  }
  int f = factor ? *factor : -12345;
  int* fp = (factor || mode == 4) ? &f : nullptr;
  switch (shape) {
    case 1:
      for (int i = 0; i < n; ++i) dst[i] = a[i];
      kW1[op](b[0], dst.data(), n, mode, fp);
      break;
    case 2:
      for (int i = 0; i < n; ++i) dst[i] = a[i];
      kW2[op](inPlace ? dst.data() : srcB.data(), dst.data(), n, mode, fp);
      break;
    default:
      if (inPlace) {
        for (int i = 0; i < n; ++i) dst[i] = a[i];
        kW3[op](dst.data(), srcB.data(), dst.data(), n, mode, fp);
      } else {
        kW3[op](srcA.data(), srcB.data(), dst.data(), n, mode, fp);
      }
  }
  ASSERT_TRUE(dst.intact()) << what;
  // In place, shape 2 reads dst as both operands: model a op a.
  const ExpectW e2 = (shape == 2 && inPlace) ? modelW(op, a, a, mode, factor) : e;
  for (int i = 0; i < n; ++i) {
    ASSERT_EQ(dst[i], e2.values[i]) << what << " i=" << i << " n=" << n;
  }
  if (mode == 4) {
    ASSERT_EQ(f, e2.factor) << what;
  } else if (factor) {
    ASSERT_EQ(f, *factor) << what << ": a fixed factor is only read";
  }
}

void checkV(Op op, int shape, const std::vector<WCplx>& a, const std::vector<WCplx>& b, int mode, const int* factor,
            int dstOff, int srcOff, bool inPlace, const std::string& what) {
  const int n = static_cast<int>(a.size());
  std::vector<WCplx> bb = b;
  if (shape == 1) bb.assign(n, b[0]);
  const ExpectV e = (shape == 2 && inPlace) ? modelV(op, a, a, mode, factor) : modelV(op, a, bb, mode, factor);
  Guarded<WCplx> dst(n, dstOff), srcA(n, srcOff), srcB(n, (srcOff + 8) % 16);
  for (int i = 0; i < n; ++i) {
    srcA[i] = a[i];
    srcB[i] = bb[i];
  }
  int f = factor ? *factor : -12345;
  int* fp = (factor || mode == 4) ? &f : nullptr;
  switch (shape) {
    case 1:
      for (int i = 0; i < n; ++i) dst[i] = a[i];
      kV1[op](b[0], dst.data(), n, mode, fp);
      break;
    case 2:
      for (int i = 0; i < n; ++i) dst[i] = a[i];
      kV2[op](inPlace ? dst.data() : srcB.data(), dst.data(), n, mode, fp);
      break;
    default:
      if (inPlace) {
        for (int i = 0; i < n; ++i) dst[i] = a[i];
        kV3[op](dst.data(), srcB.data(), dst.data(), n, mode, fp);
      } else {
        kV3[op](srcA.data(), srcB.data(), dst.data(), n, mode, fp);
      }
  }
  ASSERT_TRUE(dst.intact()) << what;
  for (int i = 0; i < n; ++i) {
    ASSERT_EQ(dst[i].re, e.values[i].re) << what << " re i=" << i << " n=" << n;
    ASSERT_EQ(dst[i].im, e.values[i].im) << what << " im i=" << i << " n=" << n;
  }
  if (mode == 4) {
    ASSERT_EQ(f, e.factor) << what;
  }
}

std::string label(const char* type, Op op, int shape, int mode, const int* f) {
  return std::string(type) + kOpName[op] + std::to_string(shape) + " mode " + std::to_string(mode) + " factor " +
         (f ? std::to_string(*f) : std::string("null"));
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
  const short fixed[] = {-32768, -1, 0, 1, 181, 32767};
  const int plus3 = 3, minus2 = -2;
  for (short b : fixed) {
    const std::vector<short> bs(65536, b);
    for (int mode : {0, 1, 2, 3, 4}) {
      for (const int* f : {static_cast<const int*>(nullptr), &plus3, &minus2}) {
        if (!readsFactor(mode) && f) continue;
        const std::string what = label("w", op, 3, mode, f) + " b=" + std::to_string(b);
        checkW(op, 3, all, bs, mode, f, 0, 2, false, what);
        checkW(op, 1, all, bs, mode, f, 6, 0, false, what);
      }
    }
    for (int x = -32768; x <= 32767; x += (b == 0 || b == 1 ? 1 : 7)) {
      const std::vector<short> a1{static_cast<short>(x)}, b1{b};
      checkW(op, 3, a1, b1, 4, nullptr, 0, 0, false, label("w", op, 3, 4, nullptr));
    }
  }
}

// Random arrays for every routine, mode and factor, lengths 1 to 40 with
// the destination and sources at varying misalignments, so that head,
// blocks and tail of every kernel run; shapes 2 and 3 also in place.
TEST_P(Int16Arith, RandomArraysEveryModeAndFactor) {
  const Op op = static_cast<Op>(GetParam());
  Random rng(1000 + GetParam());
  for (int mode : kModes) {
    std::vector<const int*> factors{nullptr};
    if (readsFactor(mode)) {
      for (const int& f : kFactors) factors.push_back(&f);
    }
    for (const int* f : factors) {
      for (int n = 1; n <= 40; ++n) {
        const int range = (mode == 4 && n % 3 == 0) ? (op == i16model::kMpy ? 150 : 16000) : 32768;
        for (int shape = 1; shape <= 3; ++shape) {
          const bool inPlace = shape > 1 && n % 4 == 1;
          const std::string what = label("w", op, shape, mode, f);
          checkW(op, shape, randomShorts(rng, n, range), randomShorts(rng, n, range), mode, f, 2 * (n % 8),
                 2 * ((n / 8) % 8), inPlace, what);
          checkV(op, shape, randomCplx(rng, n, range), randomCplx(rng, n, range), mode, f, 4 * (n % 4),
                 4 * ((n / 4) % 4), inPlace, label("v", op, shape, mode, f));
          if (::testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

// The SIMD modes at every destination and source misalignment, short and
// long lengths, against the model; with the wide kernels allowed and with
// the dispatch capped at the 128-bit ones.
TEST_P(Int16Arith, LaneModesEveryAlignment) {
  const Op op = static_cast<Op>(GetParam());
  Random rng(2000 + GetParam());
  struct Restore {
    ~Restore() { ryx::cpu::setCap(ryx::cpu::Isa::Avx512); }
  } restore;
  for (int round = 0; round < 4; ++round) {
    const int mode = round % 2;
    ryx::cpu::setCap(round < 2 ? ryx::cpu::Isa::Avx512 : ryx::cpu::Isa::Sse2);
    for (int dstOff = 0; dstOff < 16; dstOff += 2) {
      for (int srcOff : {0, 2, 6, 10}) {
        for (int n : {1, 2, 3, 4, 5, 7, 8, 15, 16, 17, 19, 20, 21, 23, 31, 32, 33, 36, 40, 255, 1000}) {
          for (int shape = 1; shape <= 3; ++shape) {
            checkW(op, shape, randomShorts(rng, n, 32768), randomShorts(rng, n, 32768), mode, nullptr, dstOff, srcOff,
                   false, label("w", op, shape, mode, nullptr) + " off " + std::to_string(dstOff));
            if (dstOff % 4 == 0) {
              checkV(op, shape, randomCplx(rng, n, 32768), randomCplx(rng, n, 32768), mode, nullptr, dstOff, srcOff & ~3,
                     false, label("v", op, shape, mode, nullptr) + " off " + std::to_string(dstOff));
            }
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
  Random rng(3000 + GetParam());
  for (int n : {1, 2, 9, 100, 1001}) {
    for (int pos : {0, n / 2, n - 1, -1}) {
      std::vector<short> a = randomShorts(rng, n, op == i16model::kMpy ? 100 : 10000);
      std::vector<short> b = randomShorts(rng, n, op == i16model::kMpy ? 100 : 10000);
      if (pos >= 0) {
        a[pos] = op == i16model::kSub ? -32768 : 32767;
        b[pos] = op == i16model::kSub ? 32767 : (op == i16model::kMpy ? 32767 : 1000);
      }
      for (int shape = 1; shape <= 3; ++shape) {
        checkW(op, shape, a, b, 4, nullptr, 0, 4, shape > 1 && n % 2 == 1, label("w", op, shape, 4, nullptr));
      }
      std::vector<WCplx> ca(n), cb(n);
      for (int i = 0; i < n; ++i) {
        ca[i] = WCplx{a[i], b[(i + 1) % n]};
        cb[i] = WCplx{b[i], a[(i + 3) % n]};
      }
      if (pos >= 0 && op == i16model::kMpy) {
        ca[pos] = WCplx{-32768, -32768};
        cb[pos] = WCplx{-32768, -32768};
      }
      for (int shape = 1; shape <= 3; ++shape) {
        checkV(op, shape, ca, cb, 4, nullptr, 4, 0, shape > 1 && n % 2 == 0, label("v", op, shape, 4, nullptr));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Int16, Int16Arith, ::testing::Values(0, 1, 2), [](const auto& info) {
  return std::string(kOpName[info.param]);
});

// Cases the family's rules single out.
TEST(Int16ArithEdges, WrapSaturateAndAutoByExample) {
  short d[3] = {32767, 0, 0};
  ryxwbAdd1(1, d, 1, 0, nullptr);
  EXPECT_EQ(d[0], -32768);
  d[0] = 32767;
  ryxwbAdd1(1, d, 1, 1, nullptr);
  EXPECT_EQ(d[0], 32767);

  short e[3] = {32767, 1, 3};
  int f = -7;
  ryxwbAdd1(1, e, 3, 4, &f);
  EXPECT_EQ(f, 1);
  EXPECT_EQ(e[0], 16384);
  EXPECT_EQ(e[1], 1);
  EXPECT_EQ(e[2], 2);

  short g[2] = {3, -4};
  f = 99;
  ryxwbAdd1(1, g, 2, 4, &f);
  EXPECT_EQ(f, 0) << "auto scale without overflow writes factor 0";
  EXPECT_EQ(g[0], 4);
  EXPECT_EQ(g[1], -3);
}

TEST(Int16ArithEdges, ComplexImaginaryReachingTwoToThe31) {
  const WCplx m{-32768, -32768};
  for (int mode : {0, 1, 3, 4}) {
    WCplx d[1] = {m};
    int f = 0;
    ryxvbMpy1(m, d, 1, mode, &f);
    // re = 2^30 - 2^30 = 0, im = 2^31.
    switch (mode) {
      case 0: EXPECT_EQ(d[0].im, 0); break;
      case 1:
      case 3: EXPECT_EQ(d[0].im, 32767); break;
      case 4:
        EXPECT_EQ(f, 17);
        EXPECT_EQ(d[0].im, 16384);
        break;
    }
    EXPECT_EQ(d[0].re, 0) << mode;
  }
  // Every SIMD block position: eight samples in a row.
  WCplx v[8], w[8], out[8];
  for (int i = 0; i < 8; ++i) v[i] = w[i] = m;
  ryxvbMpy3(v, w, out, 8, 1, nullptr);
  for (const WCplx& o : out) EXPECT_EQ(o.im, 32767);
  // A fixed right shift by 1 of 2^31 saturates; by 16 gives 32768 -> 32767;
  // by 17 gives 16384.
  for (int s : {1, 16, 17}) {
    int fs = s;
    WCplx d[1] = {m};
    ryxvbMpy1(m, d, 1, 3, &fs);
    EXPECT_EQ(d[0].im, s == 17 ? 16384 : 32767) << s;
    d[0] = m;
    ryxvbMpy1(m, d, 1, 2, &fs);
    EXPECT_EQ(d[0].im, s == 17 ? 16384 : (s == 16 ? -32768 : 0)) << s;
  }
}

TEST(Int16ArithEdges, FixedScaleLimitsAndNullFactor) {
  int f = -1;
  short d[2] = {16384, 16383};
  ryxwbMpy1(1, d, 2, 3, &f);
  EXPECT_EQ(d[0], 32767);
  EXPECT_EQ(d[1], 32766);
  short e[2] = {-16384, -16385};
  ryxwbMpy1(1, e, 2, 3, &f);
  EXPECT_EQ(e[0], -32768);
  EXPECT_EQ(e[1], -32768);

  short s[1] = {30000};
  ryxwbAdd1(30000, s, 1, 3, nullptr);
  EXPECT_EQ(s[0], 32767) << "mode 3 with null factor saturates";
  s[0] = 30000;
  ryxwbAdd1(30000, s, 1, 2, nullptr);
  EXPECT_EQ(s[0], static_cast<short>(60000 - 65536)) << "mode 2 with null factor wraps";

  // A factor of 32 is a shift by 0 in mode 3; 33 a shift by 1.
  f = 32;
  s[0] = 30000;
  ryxwbAdd1(30000, s, 1, 3, &f);
  EXPECT_EQ(s[0], 32767);
  f = 33;
  s[0] = 30000;
  ryxwbAdd1(30000, s, 1, 3, &f);
  EXPECT_EQ(s[0], 30000);
}

TEST(Int16ArithEdges, AutoMultiplyLargestProduct) {
  short d[4] = {5, -32768, 7, 1};
  int f = 0;
  ryxwbMpy1(-32768, d, 4, 4, &f);
  EXPECT_EQ(f, 16);
  EXPECT_EQ(d[1], 16384);
  EXPECT_EQ(d[0], static_cast<short>((5 * -32768) >> 16));
}

// Modes outside 0..7 act as fixed wrap and are safe with any factor.
TEST(Int16ArithEdges, OddModesActAsFixedWrap) {
  for (int mode : {5, 6, 7, 8, -3, INT_MAX}) {
    int f = 1;
    short d[1] = {32767};
    ryxwbAdd1(32767, d, 1, mode, &f);
    EXPECT_EQ(d[0], 32767) << mode;  // 65534 >> 1
    f = 0;
    d[0] = 32767;
    ryxwbAdd1(32767, d, 1, mode, &f);
    EXPECT_EQ(d[0], -2) << mode;
  }
}

}  // namespace
