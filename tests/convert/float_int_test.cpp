// Float and double to and from integers and fixed point, against the rule
// written out in exact arithmetic (convert_support.h): every routine, width,
// sign, rounding mode, clip/check choice and a spread of fractBits, at
// lengths and source offsets that put boundary values in the head, the
// eight-element blocks and the tail. Each call runs under a caller state
// with another rounding mode, denormal flushing or unmasked exceptions, and
// must leave that state as it found it.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "convert_support.h"
#include "test_support.h"

namespace {

using namespace cvtest;
using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;

// Caller states the conversions must work under and give back: the default;
// rounding up with FTZ and DAZ (SSE) and x87 rounding down; rounding towards
// zero with the invalid and overflow exceptions unmasked (x87 invalid too).
const FpState kDefault{0x1F80, 0x037F};
const FpState kCallerStates[] = {kDefault, {0x1F80 | 0x4000 | 0x8040, 0x037F | 0x0400}, {(0x1F80 & ~0x0280u) | 0x6000, 0x037E}};

// Runs f with the caller state s and checks that s is intact afterwards.
template <class F>
void underState(const FpState& s, F&& f) {
  writeFp(s);
  f();
  const FpState after = readFp();
  writeFp(kDefault);
  EXPECT_EQ(after.csr, s.csr);
  EXPECT_EQ(after.cw, s.cw);
}

// Values that probe the rule for one range and scale: integers, halves and
// quarters around both limits and zero, their float neighbours, specials
// and random values across the range.
template <class T>
std::vector<T> probes(IntRange r, int fractBits, Random& rng) {
  std::vector<T> v;
  const long double anchors[] = {r.lo, r.hi, 0, std::floor((r.lo + r.hi) / 2), r.lo + 1, r.hi - 1};
  const long double steps[] = {-1.5L, -1, -0.75L, -0.5L, -0.25L, 0, 0.25L, 0.5L, 0.75L, 1, 1.5L, 2.5L};
  for (long double a : anchors) {
    for (long double d : steps) {
      const T t = static_cast<T>(std::ldexp(a + d, -fractBits));
      v.insert(v.end(), {t, std::nextafter(t, T(-INFINITY)), std::nextafter(t, T(INFINITY))});
    }
  }
  const T lim = std::numeric_limits<T>::max(), den = std::numeric_limits<T>::denorm_min();
  v.insert(v.end(), {T(0), -T(0), den, -den, lim, -lim, T(INFINITY), T(-INFINITY), std::numeric_limits<T>::quiet_NaN(),
                     T(1e20), T(-1e20)});
  for (int i = 0; i < 64; ++i) {
    const long double x = r.lo - 4 + (r.hi - r.lo + 8) * (rng.bits() / 4294967296.0L);
    v.push_back(static_cast<T>(std::ldexp(x, -fractBits)));
  }
  return v;
}

constexpr int kLengths[] = {1, 3, 7, 8, 9, 16, 23, 40, 67};

template <class T>
class FloatToInteger : public ::testing::Test {};
using SourceTypes = ::testing::Types<float, double>;
TYPED_TEST_SUITE(FloatToInteger, SourceTypes);

// Every routine, width, sign, mode, clip/check choice and scale against the
// rule, element by element; the range report exactly when a rounded value
// leaves the range; unspecified elements (out of range, no clip) skipped.
TYPED_TEST(FloatToInteger, MatchesTheRule) {
  using T = TypeParam;
  const bool isDouble = sizeof(T) == 8;
  Random rng(isDouble ? 1234 : 4321);
  int calls = 0, mismatches = 0;
  std::string first;
  for (const Routine& routine : conversionRoutines()) {
    if (routine.isDouble != isDouble || !routine.fromFloat()) continue;
    for (int bits : {8, 16, 32}) {
      if (routine.bits && bits != routine.bits) continue;
      for (bool uns : {false, true}) {
        if (routine.bits && uns) continue;
        std::vector<int> fracts = {0};
        if (routine.bits) fracts = {routine.fractBits};
        else if (routine.hasFract()) fracts = {0, 3, uns ? bits : bits - 1};
        const IntRange range = rangeOf(bits, uns);
        for (int f : fracts) {
          const std::vector<T> pool = probes<T>(range, f, rng);
          for (Mode mode : {Mode::Nearest, Mode::Zero, Mode::Down, Mode::Up}) {
            for (int extra : {0, int{RYX_ClipRange}, int{RYX_RangeError}, RYX_ClipRange | RYX_RangeError}) {
              const int flags = flagOf(mode) | extra | (uns ? RYX_UnsignedInt : 0);
              const bool clip = extra & RYX_ClipRange, check = extra & RYX_RangeError;
              // Double, 32 bits, exactly truncation + unsigned + check: rounds down.
              const bool downInstead = isDouble && routine.shape == Shape::FromFloatInt && bits == 32 &&
                                       flags == (RYX_RoundZero | RYX_UnsignedInt | RYX_RangeError);
              const Mode effective = downInstead ? Mode::Down : mode;
              for (int len : kLengths) {
                const int offset = static_cast<int>(sizeof(T)) * (calls % 8);
                Guarded<T> src(len, offset);
                Guarded<unsigned char> dst(len * bits / 8, (calls % 3) * bits / 8);  // 0-2 elements off
                for (int i = 0; i < len; ++i) src[i] = pool[rng.bits() % pool.size()];
                ReportCapture capture;
                underState(kCallerStates[calls % 3], [&] { routine.call(len, src.data(), dst.data(), bits, f, flags); });
                ++calls;
                bool anyOut = false;
                for (int i = 0; i < len; ++i) {
                  const Expected e = expectedInt(src[i], f, effective, range, clip);
                  anyOut |= e.out;
                  if (e.out && !clip) continue;
                  const long double got = readInt(dst.data(), i, bits, uns);
                  if (got != e.value && mismatches++ == 0)
                    first = routine.name + " bits " + std::to_string(bits) + " flags " + std::to_string(flags) + " f " +
                            std::to_string(f) + " x " + std::to_string(static_cast<double>(src[i])) + " got " +
                            std::to_string(static_cast<double>(got)) + " want " + std::to_string(static_cast<double>(e.value));
                }
                EXPECT_TRUE(src.intact() && dst.intact()) << routine.name;
                const auto& reports = capture.reports();
                if (check && anyOut) {
                  ASSERT_EQ(reports.size(), 1u) << routine.name << " flags " << flags;
                  EXPECT_EQ(reports[0].status, RYX_StsBadArg);
                  EXPECT_EQ(reports[0].funcName, routine.name);
                  EXPECT_EQ(reports[0].context, "A float exceeds an integer");
                  EXPECT_EQ(reports[0].file, routine.stem());
                  EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
                } else {
                  ASSERT_TRUE(reports.empty()) << routine.name << " flags " << flags << " " << reports[0].context;
                  EXPECT_EQ(ryxGetErrStatus(), RYX_StsOk);
                }
              }
            }
          }
        }
      }
    }
  }
  EXPECT_EQ(mismatches, 0) << first;
  EXPECT_GT(calls, 1000);
}

// The cases the routines are known by, each on its own.
TEST(FloatToInteger, DocumentedCases) {
  ReportCapture capture;
  short s15[2];
  const float halfOne[2] = {0.5f, 1.0f};
  ryxsbFloatToS15Fix(halfOne, s15, 1, RYX_RoundNearest);
  EXPECT_EQ(s15[0], 16384);
  ryxsbFloatToS15Fix(halfOne + 1, s15, 1, RYX_ClipRange | RYX_RoundNearest);
  EXPECT_EQ(s15[0], 32767);
  EXPECT_TRUE(capture.reports().empty());

  signed char s8 = 0;
  const float big = 300.0f;
  ryxsbFloatToInt(&big, &s8, 1, 8, RYX_ClipRange | RYX_RangeError | RYX_RoundZero);
  EXPECT_EQ(s8, 127);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].context, "A float exceeds an integer");

  // Truncation alone would give 0; this flag set rounds down to -1.
  capture.clear();
  const double minusHalf = -0.5;
  unsigned u32 = 7;
  ryxdbFloatToInt(&minusHalf, &u32, 1, 32, RYX_RoundZero | RYX_UnsignedInt | RYX_RangeError);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].funcName, "ryxdbFloatToInt");
  // The same set on the float side, or with any other flag added, truncates.
  capture.clear();
  const float minusHalfF = -0.5f;
  ryxsbFloatToInt(&minusHalfF, &u32, 1, 32, RYX_RoundZero | RYX_UnsignedInt | RYX_RangeError);
  ryxdbFloatToInt(&minusHalf, &u32, 1, 32, RYX_RoundZero | RYX_UnsignedInt | RYX_RangeError | RYX_ClipRange);
  EXPECT_EQ(u32, 0u);
  EXPECT_TRUE(capture.reports().empty());

  // The range test is on the rounded value.
  struct Case { float x; int bits; bool out; } cases[] = {{-0.4f, 8, false}, {-0.6f, 8, true}, {65535.5f, 16, true}, {65534.5f, 16, false}};
  for (const Case& c : cases) {
    capture.clear();
    unsigned char d[4];
    ryxsbFloatToInt(&c.x, d, 1, c.bits, RYX_RoundNearest | RYX_UnsignedInt | RYX_RangeError);
    EXPECT_EQ(capture.reports().size(), c.out ? 1u : 0u) << c.x;
  }
  // 32-bit tops saturate through the float nearest the limit.
  capture.clear();
  const float huge[2] = {3e9f, 5e9f};
  int s32 = 0;
  unsigned u = 0;
  ryxsbFloatToInt(huge, &s32, 1, 32, RYX_ClipRange | RYX_RoundNearest);
  ryxsbFloatToInt(huge + 1, &u, 1, 32, RYX_ClipRange | RYX_RoundNearest | RYX_UnsignedInt);
  EXPECT_EQ(s32, 2147483647);
  EXPECT_EQ(u, 4294967295u);
}

template <class T>
class IntegerToFloat : public ::testing::Test {};
TYPED_TEST_SUITE(IntegerToFloat, SourceTypes);

// Every 8- and 16-bit value and a spread of 32-bit ones (edges, the float
// mantissa's limit and its neighbours, random words): the exact value
// integer / 2^fractBits rounded once to the destination type.
TYPED_TEST(IntegerToFloat, RoundsTheExactValueOnce) {
  using T = TypeParam;
  Random rng(99);
  int mismatches = 0;
  std::string first;
  for (const Routine& routine : conversionRoutines()) {
    if (routine.isDouble != (sizeof(T) == 8) || routine.fromFloat()) continue;
    for (int bits : {8, 16, 32}) {
      if (routine.bits && bits != routine.bits) continue;
      for (bool uns : {false, true}) {
        if (routine.bits && uns) continue;
        std::vector<long double> values;
        if (bits < 32) {
          const IntRange r = rangeOf(bits, uns);
          for (long double x = r.lo; x <= r.hi; ++x) values.push_back(x);
        } else {
          for (long double e : {0.0L, 1.0L, 24.0L, 25.0L, 31.0L}) {
            for (long double d : {-3.0L, -1.0L, 0.0L, 1.0L, 3.0L}) {
              values.insert(values.end(), {std::ldexp(1.0L, e) + d, -std::ldexp(1.0L, e) + d});
            }
          }
          values.insert(values.end(), {4294967295.0L, 4294967168.0L, 4294967167.0L, 4294967169.0L, 2147483647.0L});
          for (int i = 0; i < 3000; ++i) values.push_back(uns ? static_cast<long double>(rng.bits()) : static_cast<std::int32_t>(rng.bits()));
          const IntRange r = rangeOf(32, uns);
          std::erase_if(values, [&](long double x) { return x < r.lo || x > r.hi; });
        }
        std::vector<int> fracts = {0};
        if (routine.bits) fracts = {routine.fractBits};
        else if (routine.hasFract()) fracts = {0, 5, uns ? bits : bits - 1};
        for (int f : fracts) {
          const int len = static_cast<int>(values.size());
          Guarded<unsigned char> src(len * bits / 8, 3 * bits / 8);
          Guarded<T> dst(len, static_cast<int>(sizeof(T)));
          for (int i = 0; i < len; ++i) writeInt(src.data(), i, bits, values[i]);
          routine.call(len, src.data(), dst.data(), bits, f, uns ? RYX_UnsignedInt : 0);
          for (int i = 0; i < len; ++i) {
            const T want = static_cast<T>(std::ldexp(values[i], -f));
            if (!ryxtest::sameBits(&dst[i], &want, 1) && mismatches++ == 0)
              first = routine.name + " bits " + std::to_string(bits) + " f " + std::to_string(f) + " x " +
                      std::to_string(static_cast<double>(values[i]));
          }
          EXPECT_TRUE(src.intact() && dst.intact()) << routine.name;
        }
      }
    }
  }
  EXPECT_EQ(mismatches, 0) << first;
}

}  // namespace
