// Element rules of the 16-bit arithmetic family (source group "ryxaritw"):
// the exact result of one element and its narrowing under each scale mode.
// The plain-loop modes use them directly and the SIMD kernels use them for
// their single-element head and tail steps.
//
// Exact results are formed in 64 bits, so the one value that leaves the
// 32-bit range, the imaginary part of (-32768,-32768)*(-32768,-32768) which
// is 2^31, never wraps before it is narrowed.
#pragma once

#include <cstdint>

#include "ryxcore.h"

namespace ryx::int16 {

enum class Op { Add, Sub, Mpy };

// How this family reads scaleMode: by exact value 0, 1, 4, 3; any other
// value (2, 5, 6, 7, negative, large) is a fixed scale with wrap.
enum class Mode { Wrap, Saturate, Auto, FixedSaturate, FixedWrap };

inline Mode readMode(int scaleMode) {
  switch (scaleMode) {
    case 0: return Mode::Wrap;
    case 1: return Mode::Saturate;
    case 4: return Mode::Auto;
    case 3: return Mode::FixedSaturate;
    default: return Mode::FixedWrap;
  }
}

struct Exact2 {
  std::int64_t re, im;
};

template <Op K>
inline std::int64_t exact(std::int64_t a, std::int64_t b) {
  if constexpr (K == Op::Add) return a + b;
  if constexpr (K == Op::Sub) return a - b;
  if constexpr (K == Op::Mpy) return a * b;
}

template <Op K>
inline Exact2 exact(WCplx a, WCplx b) {
  if constexpr (K == Op::Mpy) {
    const std::int64_t re = std::int64_t{a.re} * b.re - std::int64_t{a.im} * b.im;
    const std::int64_t im = std::int64_t{a.re} * b.im + std::int64_t{a.im} * b.re;
    return {re, im};
  } else {
    return {exact<K>(std::int64_t{a.re}, std::int64_t{b.re}), exact<K>(std::int64_t{a.im}, std::int64_t{b.im})};
  }
}

inline bool fits16(std::int64_t r) { return r >= -32768 && r <= 32767; }

inline short wrap16(std::int64_t r) { return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint64_t>(r))); }

inline short sat16(std::int64_t r) {
  if (r > 32767) return 32767;
  if (r < -32768) return -32768;
  return static_cast<short>(r);
}

// Left shift count of a negative factor, without negating INT_MIN.
inline std::uint32_t leftCount(int f) { return 0u - static_cast<std::uint32_t>(f); }

// Fixed scale with saturation. A right shift takes its count modulo 32; a
// left shift tests the limits before shifting, so no overflowed value can
// slip through (for counts of 16 or more both limits are 0).
inline short fixedSaturate(std::int64_t r, int f) {
  if (f == 0) return sat16(r);
  if (f > 0) return sat16(r >> (f & 31));
  const std::uint32_t s = leftCount(f);
  const std::int64_t hi = s >= 16 ? 0 : (32767 >> s);
  const std::int64_t lo = s >= 16 ? 0 : (-32768 >> s);
  if (r > hi) return 32767;
  if (r < lo) return -32768;
  return static_cast<short>(r * (std::int64_t{1} << (s & 15)));
}

// Fixed scale with wrap: the low 16 bits of the shifted result. The right
// shift count is taken modulo 32 as in the saturating form; a left shift by
// 16 or more leaves nothing in the low 16 bits.
inline short fixedWrap(std::int64_t r, int f) {
  if (f == 0) return wrap16(r);
  if (f > 0) return wrap16(r >> (f & 31));
  const std::uint32_t s = leftCount(f);
  if (s >= 16) return 0;
  return wrap16(static_cast<std::int64_t>(static_cast<std::uint64_t>(r) << s));
}

// Narrowing of one exact result under a non-auto mode and factor.
inline short narrow(Mode m, std::int64_t r, int f) {
  switch (m) {
    case Mode::Wrap: return wrap16(r);
    case Mode::Saturate: return sat16(r);
    case Mode::FixedSaturate: return fixedSaturate(r, f);
    default: return fixedWrap(r, f);
  }
}

}  // namespace ryx::int16
