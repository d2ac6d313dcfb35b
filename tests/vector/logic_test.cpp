// Bitwise operations and shifts on 16-bit words: every shape at every
// misalignment of each array (the aligned and the word-loop paths), the
// shift count rules, and the checks.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "frame/cpu_dispatch.h"
#include "test_support.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;

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

TEST(LogicWords, SourceOneWordOffTheBoundaryMatchesAligned) {
  Guarded<short> src(20, 2), dst(20, 0), ref(20, 0), srcAligned(20, 0);
  for (int i = 0; i < 20; ++i) {
    src[i] = srcAligned[i] = static_cast<short>(0x1234 * (i + 1));
    dst[i] = ref[i] = static_cast<short>(0x7f0f ^ (i * 0x0101));
  }
  ryxwbAnd2(src.data(), dst.data(), 20);
  ryxwbAnd2(srcAligned.data(), ref.data(), 20);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(dst[i], ref[i]);
}

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
        // Left: x * 2^count in 16 bits for 0..15, else cleared.
        const short wantL = (count < 0 || count >= 16) ? 0
                                                        : static_cast<short>(static_cast<std::uint16_t>((x * (std::int64_t{1} << count)) & 0xffff));
        // Right: floor(x / 2^count) for 0..15, the sign from 16 on,
        // cleared below 0.
        std::int64_t wantR = 0;
        if (count >= 16) {
          wantR = x < 0 ? -1 : 0;
        } else if (count >= 0) {
          const std::int64_t d = std::int64_t{1} << count;
          wantR = x / d - ((x % d != 0 && x < 0) ? 1 : 0);
        }
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

TEST(LogicChecks, OrderTextsAndUntouchedData) {
  const short s[2] = {1, 2};
  struct Case {
    const char* name;
    const char* context;
    std::function<void(short*)> call;
  };
  std::vector<Case> cases;
  const char* n1[3] = {"ryxwbAnd1", "ryxwbOr1", "ryxwbXor1"};
  const char* n2[3] = {"ryxwbAnd2", "ryxwbOr2", "ryxwbXor2"};
  const char* n3[3] = {"ryxwbAnd3", "ryxwbOr3", "ryxwbXor3"};
  for (int op = 0; op < 3; ++op) {
    L1 f1 = kOne[op];
    L2 f2 = kTwo[op];
    L3 f3 = kThree[op];
    cases.push_back({n1[op], "n<=0", [f1](short*) { f1(1, nullptr, 0); }});
    cases.push_back({n1[op], "dst==0", [f1](short*) { f1(1, nullptr, 2); }});
    cases.push_back({n2[op], "n<=0", [f2](short*) { f2(nullptr, nullptr, -1); }});
    cases.push_back({n2[op], "src==0", [f2](short* d) { f2(nullptr, d, 2); }});
    cases.push_back({n2[op], "dst==0", [f2, &s](short*) { f2(s, nullptr, 2); }});
    cases.push_back({n3[op], "n<=0", [f3](short*) { f3(nullptr, nullptr, nullptr, 0); }});
    cases.push_back({n3[op], "srcA==0", [f3](short* d) { f3(nullptr, nullptr, d, 2); }});
    cases.push_back({n3[op], "srcB==0", [f3, &s](short* d) { f3(s, nullptr, d, 2); }});
    cases.push_back({n3[op], "dst==0", [f3, &s](short*) { f3(s, s, nullptr, 2); }});
  }
  cases.push_back({"ryxwbNot", "n<=0", [](short* d) { ryxwbNot(d, 0); }});
  cases.push_back({"ryxwbNot", "dst==0", [](short*) { ryxwbNot(nullptr, 1); }});
  cases.push_back({"ryxwbShiftL", "n<=0", [](short* d) { ryxwbShiftL(d, 0, -1); }});
  cases.push_back({"ryxwbShiftL", "dst==0", [](short*) { ryxwbShiftL(nullptr, 1, 3); }});
  cases.push_back({"ryxwbShiftR", "n<=0", [](short* d) { ryxwbShiftR(d, -4, 3); }});
  cases.push_back({"ryxwbShiftR", "dst==0", [](short*) { ryxwbShiftR(nullptr, 1, 3); }});
  for (const Case& c : cases) {
    ReportCapture capture;
    short d[2] = {0x55, -0x56};
    c.call(d);
    ASSERT_EQ(capture.reports().size(), 1u) << c.name << " " << c.context;
    EXPECT_EQ(capture.reports()[0].funcName, c.name);
    EXPECT_EQ(capture.reports()[0].context, c.context);
    EXPECT_EQ(capture.reports()[0].file, "ryxlogic");
    EXPECT_EQ(capture.reports()[0].status, RYX_StsBadArg);
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
    EXPECT_TRUE(d[0] == 0x55 && d[1] == -0x56) << c.name;
  }
}

}  // namespace
