// The lane forms of the float ln, lg, exp, arctangent, square root, square
// and absolute value, each
// instruction set forced in turn, bit for bit against the one-element
// calls (the scalar kernel): every length from 1 to 40 and a long one, at
// four source and destination offsets, in place and not, special
// arguments scattered. The root's groups of four follow the destination's
// alignment, and a group holding a bad element is exact as a whole.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <vector>

#include "frame/cpu_dispatch.h"
#include "test_support.h"

namespace {

using ryx::cpu::Isa;
using Fn = void (*)(const float*, float*, int);

const float kSpecial[] = {0.0f, -0.0f, -1.5f, INFINITY, -INFINITY, NAN, 1e-40f, 1e-9f, -3e-9f, 87.2f, -87.2f, 100.0f, 1.0f};

// The square root by groups of four from the destination's address (heads
// of 1, 2 and 4 to a 32-byte boundary, fours, a two, a one): a group holding
// a value that is not positive, normal and finite is exact as a whole (0 for
// values not at or above zero); the others keep the refined one-element roots.
void exactBadGroups(const float* x, const float* dstAt, std::vector<float>& r) {
  const int n = static_cast<int>(r.size());
  auto group = [&](int i, int count) {
    bool good = true;
    for (int k = i; k < i + count; ++k) good = good && x[k] >= FLT_MIN && x[k] < INFINITY;
    for (int k = i; k < i + count && !good; ++k) r[k] = x[k] >= 0.0f ? std::sqrt(x[k]) : 0.0f;
  };
  auto addr = reinterpret_cast<std::uintptr_t>(dstAt);
  int i = 0;
  for (int step = 1; step < 8 && i < n; step *= 2)
    if (addr & static_cast<std::uintptr_t>(4 * step)) group(i, std::min(step, n - i)), addr += 4u * std::min(step, n - i), i += std::min(step, n - i);
  for (; n - i >= 4; i += 4) group(i, 4);
  for (int c : {2, 1})
    if (n - i >= c) group(i, c), i += c;
}

class FloatLanes : public ::testing::TestWithParam<Isa> {
 protected:
  void SetUp() override {
    if (!ryx::cpu::allows(GetParam())) GTEST_SKIP() << "instruction set not on this machine";
    ryx::cpu::setCap(GetParam());
  }
  void TearDown() override { ryx::cpu::setCap(Isa::Avx512); }
};

TEST_P(FloatLanes, EqualTheScalarKernelBitForBit) {
  struct Case {
    const char* name;
    Fn fn;
    float lo, hi;
  } const cases[] = {{"Ln", ryxsbLn2, 0.0f, 50.0f},       {"Lg", ryxsbLg2, 0.0f, 1e6f},
                        {"Exp", ryxsbExp2, -90.0f, 90.0f},   {"Arctan", ryxsbArctan2, -20.0f, 20.0f},
                        {"Sqrt", ryxsbSqrt2, -1.0f, 1000.0f},  {"Sqr", ryxsbSqr2, -1e20f, 1e20f},
                        {"Abs", ryxsbAbs2, -10.0f, 10.0f}};
  ryxtest::Random rng(31);
  ryxtest::ReportCapture capture;  // negative roots report; the values are what is checked here
  for (const Case& c : cases) {
    for (int n = 1; n <= 300; n += n < 40 ? 1 : 259) {
      for (int off = 0; off < 4; ++off) {
        std::vector<float> src(n + 4);  // every ninth value special
        for (float& v : src) v = rng.i32(0, 8) == 0 ? kSpecial[rng.i32(0, 12)] : rng.f32(c.lo, c.hi);
        std::vector<float> dst(n + 4), inPlace = src, want(n);
        c.fn(&src[off], &dst[3 - off], n);
        for (int i = 0; i < n; ++i) c.fn(&src[off + i], &want[i], 1);
        const std::vector<float> single = want;
        if (c.fn == ryxsbSqrt2) exactBadGroups(&src[off], &dst[3 - off], want);
        ASSERT_TRUE(ryxtest::sameBits(&dst[3 - off], want.data(), n)) << c.name << " n " << n << " off " << off;
        c.fn(&inPlace[off], &inPlace[off], n);
        want = single;
        if (c.fn == ryxsbSqrt2) exactBadGroups(&src[off], &inPlace[off], want);
        ASSERT_TRUE(ryxtest::sameBits(&inPlace[off], want.data(), n)) << c.name << " in place, n " << n;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EachIsa, FloatLanes, ::testing::Values(Isa::Sse2, Isa::Avx2));

}  // namespace
