// Internal interface of the 16-bit transforms (source group "ryxfftw").
//
// Three cores carry a 16-bit transform:
//  - the 32-bit integer core: values widened by a guard shift g into 32-bit
//    integers, a radix-4 decimation-in-frequency transform on Q14 twiddles
//    (natural input, bit-reversed output), one final rounding shift back;
//  - the fast core: the same passes in saturating 16-bit arithmetic, with
//    static twiddles truncated toward zero, no scaling in any stage;
//  - the float core: conversion to float, the float engine, and the shared
//    narrowing back to 16 bits.
// Sums in the 32-bit core wrap (computed on unsigned words); sums in the
// fast core saturate. Neither is reported.
#pragma once

#include <cstdint>

#include "ryxcore.h"
#include "ryxcore/transform_int16.h"

namespace ryx::fftw {

constexpr int kFastMaxOrder = 10;   // the fast core runs orders up to 10
constexpr int kFloatFromOrder = 8;  // default core: integer below, float from here

enum class Core { Float, Int32, Fast };

// Core of a complex or real transform of this order: RYX_IntCore gives the
// integer side, else RYX_FloatCore the float core, else the order decides;
// on the integer side RYX_FastCore picks the fast core up to order 10.
inline Core chooseCore(int order, int flags) {
  const bool intSide = (flags & RYX_IntCore) || (!(flags & RYX_FloatCore) && order < kFloatFromOrder);
  if (!intSide) return Core::Float;
  return (flags & RYX_FastCore) && order <= kFastMaxOrder ? Core::Fast : Core::Int32;
}

// Guard shift of the 32-bit core: 16 - order below order 10, else 6.
inline int guardShift(int order) { return order < 10 ? 16 - order : 6; }

// 32-bit wrapping arithmetic.
inline std::int32_t wadd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
inline std::int32_t wsub(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
inline std::int32_t wneg(std::int32_t a) { return wsub(0, a); }

// 16-bit saturation of a 32-bit value.
inline short sat16(std::int32_t v) {
  return static_cast<short>(v > 32767 ? 32767 : (v < -32768 ? -32768 : v));
}

// Q14 product of the complex 32-bit value (x, y) with one table pair
// (w0, w1): x*w0 + y*w1 / 2^14. Each operand is split into its signed high
// word h and unsigned low word l; the low products (l >> 1) * w are summed
// and shifted arithmetically right by 13 (after adding 4096 when `round`),
// the high products h * w are summed and multiplied by 4 (wrapping).
inline std::int32_t mulQ14(std::int32_t x, std::int32_t y, int w0, int w1, bool round = false) {
  const std::int32_t lo = static_cast<std::int32_t>((static_cast<std::uint32_t>(x) & 0xFFFFu) >> 1) * w0 +
                          static_cast<std::int32_t>((static_cast<std::uint32_t>(y) & 0xFFFFu) >> 1) * w1 +
                          (round ? 4096 : 0);
  const std::int32_t hi = (x >> 16) * w0 + (y >> 16) * w1;
  return wadd(lo >> 13, static_cast<std::int32_t>(static_cast<std::uint32_t>(hi) * 4u));
}

// Complex product of (re, im) with W = c - i*s as a table row gives it:
// (re*c + im*s, im*c - re*s).
struct Pair32 {
  std::int32_t re, im;
};
inline Pair32 twiddle32(std::int32_t re, std::int32_t im, int c, int s, bool round = false) {
  return {mulQ14(re, im, c, s, round), mulQ14(re, im, -s, c, round)};
}

}  // namespace ryx::fftw

// In-place transform of n interleaved 32-bit complex values, natural input,
// bit-reversed output; sign -1 gives the positive exponent. `tbl` is
// wRealTwd of the order of n (rows c, s, -s, c).
void ownvFftInt32(std::int32_t* data, std::uint32_t n, int sign, const short* tbl);

// In-place saturating transform of n WCplx (2 to 1024), natural input,
// bit-reversed output, static tables.
void ownvFftFast(WCplx* data, std::uint32_t n, int sign);

// dst[i] = src[i] << g.
void ownI16ToI32Shifted(const short* src, std::int32_t* dst, std::uint32_t n, int g);
// Rounding shift right by `shift` (half up, count capped at 31), left shift
// for a negative `shift`; then clamped when `saturate`, else the low 16 bits.
void ownI32ToI16Shifted(const std::int32_t* src, short* dst, std::uint32_t n, int saturate, int shift);
// data[i] = (data[i] + 2^(shift-1)) >> shift in place, count capped at 31.
void ownI32ShiftRound(std::int32_t* data, std::uint32_t n, int shift);
// In-place shift of 16-bit values: right (arithmetic) for a positive shift,
// left (low 16 bits) for a negative one.
void ownI16Shift(short* data, std::uint32_t n, int shift);
// Interleave two 16-bit arrays of 2^order values into WCplx, and back.
void ownvSplitPack(const short* re, const short* im, WCplx* dst, int order);
void ownvSplitUnpack(const WCplx* src, short* re, short* im, int order);

namespace ryx::fftw {

// The output step of the 32-bit core over n values: total down-shift t (the
// guard, the inverse's order), then under a mode without bit 4 the fixed
// factor joins t and one rounding shift narrows (saturating with bit 1);
// with bit 4 the values are first shifted by t (rounded) and then narrowed
// by ownScaleArrayI32 under the mode as given.
void outputStep(std::int32_t* work, short* dst, std::uint32_t n, int t, int scaleMode, int* scaleFactor);

// The fast core's output shift over n values: the fixed factor (bit 2 with
// a factor), plus `order` for an inverse without RYX_KeepScale; under bit 4
// the factor reported is 0.
void fastOutputShift(short* data, std::uint32_t n, int order, int flags, int scaleMode, int* scaleFactor);

// Float results to 16 bits: modes 0 and 1 round to nearest and clamp,
// other modes go through ownScaleArrayF32.
void narrowFloats(const float* src, short* dst, int n, int scaleMode, int* scaleFactor);

// Real recombination of the integer cores, m complex values, k = 1..m-1
// (column pairs halved first); `tbl` is wRealTwd of the full order.
void ownvRealRecombineInt32(std::int32_t* data, std::uint32_t m, int sign, const short* tbl);
void ownvRealRecombineFast(short* data, std::uint32_t m, int sign, const short* tbl);
// The reverse (CCS) recombination, without halving, middle column doubled;
// `src` may equal `dst`. The 32-bit form stores the columns of sign -1 at
// mirrored places (m - k), so that a forward transform yields the inverse.
void ownvCcsRecombineInt32(const std::int32_t* src, std::int32_t* dst, std::uint32_t m, int sign, const short* tbl);
void ownvCcsRecombineFast(const short* src, short* dst, std::uint32_t m, int sign, const short* tbl);

}  // namespace ryx::fftw
