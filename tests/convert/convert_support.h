// Shared pieces of the conversion tests: the processor's floating-point
// control state, and the float-to-integer rule written out in exact
// arithmetic (long double holds every float and double scaled by 2^32).
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "ryxcore.h"

namespace cvtest {

// SSE control/status register and x87 control word.
struct FpState {
  std::uint32_t csr;
  std::uint16_t cw;
  bool operator==(const FpState&) const = default;
};

inline FpState readFp() {
  FpState s{};
  asm volatile("stmxcsr %0\n\tfnstcw %1" : "=m"(s.csr), "=m"(s.cw) : : "memory");
  return s;
}

inline void writeFp(const FpState& s) {
  asm volatile("fnclex\n\tfldcw %1\n\tldmxcsr %0" : : "m"(s.csr), "m"(s.cw) : "memory");
}

// Rounding directions by flag.
enum class Mode { Nearest, Zero, Down, Up };
constexpr int flagOf(Mode m) {
  return m == Mode::Nearest ? RYX_RoundNearest : m == Mode::Zero ? RYX_RoundZero : m == Mode::Down ? RYX_RoundDown : RYX_RoundUp;
}

// x rounded to an integer: nearest with ties to even, towards zero, down, up.
inline long double roundBy(long double x, Mode m) {
  switch (m) {
    case Mode::Zero: return std::trunc(x);
    case Mode::Down: return std::floor(x);
    case Mode::Up: return std::ceil(x);
    case Mode::Nearest: break;
  }
  const long double f = std::floor(x), d = x - f;
  if (d < 0.5L) return f;
  if (d > 0.5L) return f + 1;
  return std::fmod(f, 2.0L) == 0 ? f : f + 1;
}

struct IntRange {
  long double lo, hi;
};

inline IntRange rangeOf(int bits, bool isUnsigned) {
  const long double span = std::ldexp(1.0L, bits);
  return isUnsigned ? IntRange{0, span - 1} : IntRange{-span / 2, span / 2 - 1};
}

// One element of a float-to-integer conversion: scale by 2^fractBits, round
// by the mode, and clip to the range when asked; `out` tells that the
// rounded value leaves the range (a NaN always does, and clips to the lower
// limit).
struct Expected {
  long double value;
  bool out;
};

inline Expected expectedInt(long double x, int fractBits, Mode m, IntRange r, bool clip) {
  if (std::isnan(x)) return {r.lo, true};
  const long double rounded = std::isinf(x) ? x : roundBy(std::ldexp(x, fractBits), m);
  const bool out = rounded < r.lo || rounded > r.hi;
  long double v = rounded;
  if (clip) v = std::fmin(std::fmax(rounded, r.lo), r.hi);
  return {v, out};
}

// Element i of an integer array of `bits` bits, read as a number.
inline long double readInt(const void* p, int i, int bits, bool isUnsigned) {
  const auto* b = static_cast<const unsigned char*>(p);
  if (bits == 8) {
    std::uint8_t v;
    std::memcpy(&v, b + i, 1);
    return isUnsigned ? v : static_cast<std::int8_t>(v);
  }
  if (bits == 16) {
    std::uint16_t v;
    std::memcpy(&v, b + 2 * i, 2);
    return isUnsigned ? v : static_cast<std::int16_t>(v);
  }
  std::uint32_t v;
  std::memcpy(&v, b + 4 * i, 4);
  return isUnsigned ? static_cast<long double>(v) : static_cast<std::int32_t>(v);
}

inline void writeInt(void* p, int i, int bits, long double x) {
  auto* b = static_cast<unsigned char*>(p);
  const auto v = static_cast<std::int64_t>(x);
  if (bits == 8) { const auto u = static_cast<std::uint8_t>(v); std::memcpy(b + i, &u, 1); }
  if (bits == 16) { const auto u = static_cast<std::uint16_t>(v); std::memcpy(b + 2 * i, &u, 2); }
  if (bits == 32) { const auto u = static_cast<std::uint32_t>(v); std::memcpy(b + 4 * i, &u, 4); }
}

// The routines of both sides behind one call shape: len, src, dst, bits,
// fractBits, flags (arguments a routine lacks are ignored).
enum class Shape { FromFloatInt, FromFloatFix, FromFloatS, ToFloatInt, ToFloatFix, ToFloatS };
using Call = std::function<void(int len, const void* src, void* dst, int bits, int fractBits, int flags)>;

struct Routine {
  std::string name;  // the name its reports carry
  bool isDouble;
  Shape shape;
  int bits, fractBits;  // fixed by the S forms, else 0
  Call call;
  std::string stem() const { return isDouble ? "ryxcvrtd" : "ryxcvrts"; }
  bool fromFloat() const { return shape == Shape::FromFloatInt || shape == Shape::FromFloatFix || shape == Shape::FromFloatS; }
  bool hasSize() const { return shape != Shape::FromFloatS && shape != Shape::ToFloatS; }
  bool hasFract() const { return shape == Shape::FromFloatFix || shape == Shape::ToFloatFix; }
};

#define CVT_CALL(expr) [](int n, const void* s, void* d, int b, int f, int fl) { expr; }
inline std::vector<Routine> conversionRoutines() {
  using FS = const float*;
  using FD = const double*;
  using SC = signed char*;
  using W = short*;
  using I = int*;
  using CSC = const signed char*;
  using CW = const short*;
  using CI = const int*;
  const Shape fi = Shape::FromFloatInt, ff = Shape::FromFloatFix, fs = Shape::FromFloatS;
  const Shape ti = Shape::ToFloatInt, tf = Shape::ToFloatFix, ts = Shape::ToFloatS;
  return {
      {"ryxsbFloatToInt", false, fi, 0, 0, CVT_CALL(ryxsbFloatToInt(FS(s), d, n, b, fl))},
      {"ryxsbFloatToFix", false, ff, 0, 0, CVT_CALL(ryxsbFloatToFix(FS(s), d, n, b, f, fl))},
      {"ryxsbFloatToS7Fix", false, fs, 8, 7, CVT_CALL(ryxsbFloatToS7Fix(FS(s), SC(d), n, fl))},
      {"ryxsbFloatToS15Fix", false, fs, 16, 15, CVT_CALL(ryxsbFloatToS15Fix(FS(s), W(d), n, fl))},
      {"ryxsbFloatToS31Fix", false, fs, 32, 31, CVT_CALL(ryxsbFloatToS31Fix(FS(s), I(d), n, fl))},
      {"ryxsbFloatToS1516Fix", false, fs, 32, 16, CVT_CALL(ryxsbFloatToS1516Fix(FS(s), I(d), n, fl))},
      {"ryxsbIntToFloat", false, ti, 0, 0, CVT_CALL(ryxsbIntToFloat(s, static_cast<float*>(d), n, b, fl))},
      {"ryxsbFixToFloat", false, tf, 0, 0, CVT_CALL(ryxsbFixToFloat(s, static_cast<float*>(d), n, b, f, fl))},
      {"ryxsbS7FixToFloat", false, ts, 8, 7, CVT_CALL(ryxsbS7FixToFloat(CSC(s), static_cast<float*>(d), n))},
      {"ryxsbS15FixToFloat", false, ts, 16, 15, CVT_CALL(ryxsbS15FixToFloat(CW(s), static_cast<float*>(d), n))},
      {"ryxsbS31FixToFloat", false, ts, 32, 31, CVT_CALL(ryxsbS31FixToFloat(CI(s), static_cast<float*>(d), n))},
      {"ryxsbS1516FixToFloat", false, ts, 32, 16, CVT_CALL(ryxsbS1516FixToFloat(CI(s), static_cast<float*>(d), n))},
      {"ryxdbFloatToInt", true, fi, 0, 0, CVT_CALL(ryxdbFloatToInt(FD(s), d, n, b, fl))},
      {"ryxdbFloatToFix", true, ff, 0, 0, CVT_CALL(ryxdbFloatToFix(FD(s), d, n, b, f, fl))},
      {"ryxdbFloatToS7Fix", true, fs, 8, 7, CVT_CALL(ryxdbFloatToS7Fix(FD(s), SC(d), n, fl))},
      {"ryxdbFloaToS15Fix", true, fs, 16, 15, CVT_CALL(ryxdbFloatToS15Fix(FD(s), W(d), n, fl))},
      {"ryxdbFloaToS31Fix", true, fs, 32, 31, CVT_CALL(ryxdbFloatToS31Fix(FD(s), I(d), n, fl))},
      {"ryxdbFloatToS1516Fix", true, fs, 32, 16, CVT_CALL(ryxdbFloatToS1516Fix(FD(s), I(d), n, fl))},
      {"ryxdbIntToFloat", true, ti, 0, 0, CVT_CALL(ryxdbIntToFloat(s, static_cast<double*>(d), n, b, fl))},
      {"ryxdbFixToFloat", true, tf, 0, 0, CVT_CALL(ryxdbFixToFloat(s, static_cast<double*>(d), n, b, f, fl))},
      {"ryxdbS7FixToFloat", true, ts, 8, 7, CVT_CALL(ryxdbS7FixToFloat(CSC(s), static_cast<double*>(d), n))},
      {"ryxdbS15FixToFloat", true, ts, 16, 15, CVT_CALL(ryxdbS15FixToFloat(CW(s), static_cast<double*>(d), n))},
      {"ryxdbS31FixToFloat", true, ts, 32, 31, CVT_CALL(ryxdbS31FixToFloat(CI(s), static_cast<double*>(d), n))},
      {"ryxdbS1516FixToFloat", true, ts, 32, 16, CVT_CALL(ryxdbS1516FixToFloat(CI(s), static_cast<double*>(d), n))},
  };
}
#undef CVT_CALL

}  // namespace cvtest
