// Shared pieces of the conversion tests: the processor's floating-point
// control state, and the float-to-integer rule written out in exact
// arithmetic (long double holds every float and double scaled by 2^32).
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

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

}  // namespace cvtest
