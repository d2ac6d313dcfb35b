// Narrowing of one 32-bit sum to 16 bits by the integer kernels of the
// convolution family: an arithmetic right shift for a positive factor, a
// left shift for a negative one (counts beyond 31 clamp to 31; the left
// shift keeps the low 32 bits), then saturation or the low 16 bits.
#pragma once

#include <cstdint>

namespace ryx::corr {

inline short narrowShifted(std::int32_t v, int f, bool saturate) {
  if (f > 0) {
    v >>= f < 31 ? f : 31;
  } else if (f < 0) {
    const int s = f > -31 ? -f : 31;
    v = static_cast<std::int32_t>(static_cast<std::uint32_t>(v) << s);
  }
  if (saturate) return static_cast<short>(v > 32767 ? 32767 : v < -32768 ? -32768 : v);
  return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(v)));
}

bool wConvFloatPath(int xLen, int hLen);

}  // namespace ryx::corr
