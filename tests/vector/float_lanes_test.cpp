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

// Source values over lo..hi with every ninth one special.
std::vector<float> values(int n, float lo, float hi, ryxtest::Random& rng) {
  std::vector<float> v(n + 4);
  for (int i = 0; i < n + 4; ++i) v[i] = rng.i32(0, 8) == 0 ? kSpecial[rng.i32(0, 12)] : rng.f32(lo, hi);
  return v;
}

// The square root as groups of four by the destination's address: heads of
// 1, 2 and 4 to a 32-byte boundary, fours, then a two and a one. A group of
// positive normal values takes the refined root of each (the one-element
// call), any other the exact root with values not at or above zero at 0.
std::vector<float> rootModel(const float* x, const float* dstAt, int n) {
  std::vector<float> r(n);
  auto group = [&](int i, int count) {
    bool good = true;
    for (int k = i; k < i + count; ++k) good = good && x[k] >= FLT_MIN && x[k] < INFINITY;
    for (int k = i; k < i + count; ++k) {
      if (good) ryxsbSqrt2(&x[k], &r[k], 1);
      else r[k] = x[k] >= 0.0f ? std::sqrt(x[k]) : 0.0f;
    }
  };
  auto addr = reinterpret_cast<std::uintptr_t>(dstAt);
  int i = 0;
  for (int step = 1; step < 8 && i < n; step *= 2)
    if (addr & static_cast<std::uintptr_t>(4 * step)) {
      const int c = std::min(step, n - i);
      group(i, c);
      i += c, addr += 4u * static_cast<std::uintptr_t>(c);
    }
  for (; n - i >= 4; i += 4) group(i, 4);
  for (int c : {2, 1})
    if (n - i >= c) group(i, c), i += c;
  return r;
}

struct Case {
  const char* name;
  Fn fn;
  float lo, hi;
};

class FloatLanes : public ::testing::TestWithParam<Isa> {
 protected:
  void SetUp() override {
    if (!ryx::cpu::allows(GetParam())) GTEST_SKIP() << "instruction set not on this machine";
    ryx::cpu::setCap(GetParam());
  }
  void TearDown() override { ryx::cpu::setCap(Isa::Avx512); }
};

TEST_P(FloatLanes, EqualTheScalarKernelBitForBit) {
  const Case cases[] = {{"Ln", ryxsbLn2, 0.0f, 50.0f},       {"Lg", ryxsbLg2, 0.0f, 1e6f},
                        {"Exp", ryxsbExp2, -90.0f, 90.0f},   {"Arctan", ryxsbArctan2, -20.0f, 20.0f},
                        {"Sqrt", ryxsbSqrt2, -1.0f, 1000.0f},  {"Sqr", ryxsbSqr2, -1e20f, 1e20f},
                        {"Abs", ryxsbAbs2, -10.0f, 10.0f}};
  ryxtest::Random rng(31);
  ryxtest::ReportCapture capture;  // negative roots report; the values are what is checked here
  for (const Case& c : cases) {
    for (int n = 1; n <= 300; n += n < 40 ? 1 : 259) {
      for (int off = 0; off < 4; ++off) {
        const std::vector<float> src = values(n, c.lo, c.hi, rng);
        std::vector<float> dst(n + 4), inPlace = src, want(n);
        c.fn(&src[off], &dst[3 - off], n);
        if (c.fn == ryxsbSqrt2) {
          want = rootModel(&src[off], &dst[3 - off], n);
        } else {
          for (int i = 0; i < n; ++i) c.fn(&src[off + i], &want[i], 1);
        }
        ASSERT_TRUE(ryxtest::sameBits(&dst[3 - off], want.data(), n)) << c.name << " n " << n << " off " << off;
        c.fn(&inPlace[off], &inPlace[off], n);
        if (c.fn == ryxsbSqrt2) want = rootModel(&src[off], &inPlace[off], n);
        ASSERT_TRUE(ryxtest::sameBits(&inPlace[off], want.data(), n)) << c.name << " in place, n " << n;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EachIsa, FloatLanes, ::testing::Values(Isa::Sse2, Isa::Avx2));

}  // namespace
