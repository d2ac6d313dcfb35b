// Shared pieces of the signal generators: the wide type, the constants of
// the argument ranges, validity marks and the 16-bit rounding of a wide
// value.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "ryxcore.h"
#include "ryxcore/generate.h"

namespace ryx::gen {

// Wide intermediate arithmetic (80-bit extended on x86).
using Wide = long double;

// The argument ranges compare with 2*pi in double.
constexpr double kTwoPi = 6.283185307179586;
constexpr Wide kPiWide = 3.141592653589793238462643383279502884L;

// Text mark of the double and 16-bit generator records.
inline void writeMark(char (&mark)[4]) { std::memcpy(mark, "BDT", 4); }
inline bool hasMark(const char (&mark)[4]) { return std::memcmp(mark, "BDT", 4) == 0; }

// Round to the nearest integer, ties to even, and keep the low 16 bits: the
// value is added to 2^52 + 2^32, whose unit in the last place is 1, and the
// low word of the sum's bit pattern is the wrapped integer.
inline short roundWrap16(double v) {
  const double sum = v + 4503603922337792.0;  // bit pattern 0x4330000100000000
  std::uint64_t bits;
  std::memcpy(&bits, &sum, sizeof bits);
  return static_cast<short>(static_cast<std::uint16_t>(bits));
}

// Round half away from zero to a 32-bit integer (the Init tables of the
// 16-bit generators hold small values only).
inline std::int32_t roundAway(double v) { return static_cast<std::int32_t>(std::round(v)); }

// Truncation toward zero as the processor's conversion does it: out of
// range and NaN give the integer indefinite 0x80000000.
// Integer arguments (the 16-bit records' fields) convert as they are: the
// bounds would not fit their type.
template <class F>
std::int32_t truncInt32(F v) {
  if constexpr (std::is_integral_v<F>) {
    return static_cast<std::int32_t>(v);
  } else {
    if (!(v > F(-2147483649.0) && v < F(2147483648.0))) return INT32_MIN;
    return static_cast<std::int32_t>(v);
  }
}

}  // namespace ryx::gen
