// Integer to float and double: each element widened by its kind, converted
// and multiplied by 2^-fractBits (built in the exponent field; exact, as
// |integer| >= 1 keeps the product above the denormal range).
//
// Doubles hold every 32-bit integer. Floats hold every 8- and 16-bit one;
// a signed 32-bit integer is rounded once by the conversion, and an unsigned
// one is split into its 16-bit halves, the high half scaled by 2^16 (exact)
// and the two added, which rounds once as well. The loops are plain so the
// compiler vectorises them.
#include <bit>
#include <cstdint>
#include <type_traits>

#include "convert/float_int_kernels.h"

namespace ryx::convert {
namespace {

template <class F>
F inverseTwoPower(int e) {
  if constexpr (sizeof(F) == 4) return std::bit_cast<float>(static_cast<std::uint32_t>(0x3F800000 - (e << 23)));
  else return std::bit_cast<double>(static_cast<std::uint64_t>(0x3FF0000000000000ull - (static_cast<std::uint64_t>(e) << 52)));
}

template <class F, class I>
F exact(I x) {
  if constexpr (sizeof(F) == 4 && std::is_same_v<I, std::uint32_t>)
    return static_cast<float>(x >> 16) * 65536.0f + static_cast<float>(x & 0xFFFFu);
  else return static_cast<F>(x);
}

template <class F, class I>
void widen(const void* src, F* dst, int len, F scale) {
  const I* s = static_cast<const I*>(src);
  // A product with 1 is the value itself: no multiply for fractBits 0.
  if (scale == F(1)) {
    for (int i = 0; i < len; ++i) dst[i] = exact<F>(s[i]);
  } else {
    for (int i = 0; i < len; ++i) dst[i] = exact<F>(s[i]) * scale;
  }
}

template <class F>
void toFloat(const void* src, F* dst, int len, IntKind kind, int fractBits) {
  const F scale = inverseTwoPower<F>(fractBits);
  switch (kind) {
    case IntKind::S8: return widen<F, std::int8_t>(src, dst, len, scale);
    case IntKind::U8: return widen<F, std::uint8_t>(src, dst, len, scale);
    case IntKind::S16: return widen<F, std::int16_t>(src, dst, len, scale);
    case IntKind::U16: return widen<F, std::uint16_t>(src, dst, len, scale);
    case IntKind::S32: return widen<F, std::int32_t>(src, dst, len, scale);
    case IntKind::U32: return widen<F, std::uint32_t>(src, dst, len, scale);
  }
}

}  // namespace

void intToFloat(const void* src, float* dst, int len, IntKind kind, int fractBits) {
  toFloat(src, dst, len, kind, fractBits);
}
void intToFloat(const void* src, double* dst, int len, IntKind kind, int fractBits) {
  toFloat(src, dst, len, kind, fractBits);
}

}  // namespace ryx::convert
