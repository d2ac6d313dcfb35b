// Bitwise operations and shifts on 16-bit words: every shape at every
// misalignment of each array (the aligned and the word-loop paths) and the
// shift count rules. The checks are in checks_test.cpp.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#include "frame/cpu_dispatch.h"
#include "int16_model.h"
#include "test_support.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;

using L1 = void (*)(short, short*, int);
using L2 = void (*)(const short*, short*, int);
using L3 = void (*)(const short*, const short*, short*, int);
const L1 kOne[3] = {ryxwbAnd1, ryxwbOr1, ryxwbXor1};
const L2 kTwo[3] = {ryxwbAnd2, ryxwbOr2, ryxwbXor2};
const L3 kThree[3] = {ryxwbAnd3, ryxwbOr3, ryxwbXor3};
const char* kNames[3] = {"And", "Or", "Xor"};

// The bit operation on the unsigned 16-bit patterns.
short bitOp(int op, short a, short b) {
  const std::uint16_t x = static_cast<std::uint16_t>(a), y = static_cast<std::uint16_t>(b);
  const std::uint16_t r = op == 0 ? (x & y) : (op == 1 ? (x | y) : (x ^ y));
  return static_cast<short>(r);
}

class LogicBitwise : public ::testing::TestWithParam<ryx::cpu::Isa> {
 protected:
  void SetUp() override { ryx::cpu::setCap(GetParam()); }
  void TearDown() override { ryx::cpu::setCap(ryx::cpu::Isa::Avx512); }
};

TEST_P(LogicBitwise, EveryShapeLengthAndAlignment) {
  Random rng(31);
  // 1..40 for head, blocks and tail; longer ones also take the wide blocks.
  std::vector<int> lengths;
  for (int n = 1; n <= 40; ++n) lengths.push_back(n);
  for (int n : {127, 128, 129, 200, 1001, (1 << 18) + 37}) lengths.push_back(n);
  for (int op = 0; op < 3; ++op) {
    for (int n : lengths) {
      for (int dOff = 0; dOff < 16; dOff += 2) {
        if (n > 100000 && dOff % 6 != 0) continue;  // the streaming length at a few offsets
        for (int sOff : {0, 2, 8, 14}) {
          if (n > 100000 && sOff > 2) continue;
          // sOff == dOff takes the aligned path, others the word loop.
          const int aOff = (dOff + sOff) % 16;
          Guarded<short> a(n, aOff), b(n, sOff == 0 ? aOff : sOff), d(n, dOff);
          std::vector<short> keep(n);
          for (int i = 0; i < n; ++i) {
            a[i] = static_cast<short>(rng.bits());
            b[i] = static_cast<short>(rng.bits());
            keep[i] = static_cast<short>(rng.bits());
          }
          const std::string what = std::string(kNames[op]) + " n=" + std::to_string(n) + " d=" + std::to_string(dOff) +
                                   " s=" + std::to_string(sOff);
          kThree[op](a.data(), b.data(), d.data(), n);
          for (int i = 0; i < n; ++i) ASSERT_EQ(d[i], bitOp(op, a[i], b[i])) << what;
          for (int i = 0; i < n; ++i) d[i] = keep[i];
          kTwo[op](b.data(), d.data(), n);
          for (int i = 0; i < n; ++i) ASSERT_EQ(d[i], bitOp(op, keep[i], b[i])) << what;
          const short val = static_cast<short>(rng.bits());
          for (int i = 0; i < n; ++i) d[i] = keep[i];
          kOne[op](val, d.data(), n);
          for (int i = 0; i < n; ++i) ASSERT_EQ(d[i], bitOp(op, keep[i], val)) << what;
          ASSERT_TRUE(d.intact()) << what;
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Logic, LogicBitwise, ::testing::Values(ryx::cpu::Isa::Sse2, ryx::cpu::Isa::Avx2),
                         [](const auto& info) { return info.param == ryx::cpu::Isa::Sse2 ? "sse2" : "avx2"; });

TEST(LogicWords, NotIsComplement) {
  short d[3] = {0, -1, 0x1234};
  ryxwbNot(d, 3);
  EXPECT_EQ(d[0], -1);
  EXPECT_EQ(d[1], 0);
  EXPECT_EQ(d[2], static_cast<short>(~0x1234));
}

TEST(LogicShift, CountRules) {
  Random rng(32);
  for (int n : {1, 2, 7, 8, 9, 17, 33}) {
    std::vector<short> src(n);
    for (auto& x : src) x = static_cast<short>(rng.bits());
    src[0] = 0x4000;
    if (n > 1) src[1] = -5;
    for (int count : {INT_MIN, -100, -1, 0, 1, 2, 7, 14, 15, 16, 17, 31, 32, 1000, INT_MAX}) {
      std::vector<short> l = src, r = src;
      ryxwbShiftL(l.data(), n, count);
      ryxwbShiftR(r.data(), n, count);
      for (int i = 0; i < n; ++i) {
        const std::int64_t x = src[i];
        // Left: x * 2^count in 16 bits for 0..15, else cleared. Right:
        // floor(x / 2^count) for 0..15, the sign from 16 on, cleared below 0.
        const short wantL = count < 0 || count >= 16 ? 0 : i16model::low16(x * (std::int64_t{1} << count));
        const std::int64_t wantR = count < 0 ? 0 : (count >= 16 ? (x < 0 ? -1 : 0) : i16model::floorDiv2(x, count));
        ASSERT_EQ(l[i], wantL) << "left " << count << " x=" << x;
        ASSERT_EQ(r[i], wantR) << "right " << count << " x=" << x;
      }
    }
  }
  short a[1] = {0x4000};
  ryxwbShiftL(a, 1, 1);
  EXPECT_EQ(a[0], -32768);
  short b[2] = {-5, 5};
  ryxwbShiftR(b, 2, 16);
  EXPECT_EQ(b[0], -1);
  EXPECT_EQ(b[1], 0);
}

}  // namespace
