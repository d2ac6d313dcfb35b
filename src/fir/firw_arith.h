// Integer arithmetic of the 16-bit filters: the tap exponent, the wrapping
// 16x16->32 dot products and the narrowing of a 32-bit sum under a scale
// mode with the tap exponent folded in.
//
// Sums of products are taken modulo 2^32 (the pairwise multiply-add wraps
// the one product pair -32768*-32768 + -32768*-32768 too), so every order of
// summation gives the same bits; the kernels choose their order for speed.
#pragma once

#include <emmintrin.h>

#include <cmath>
#include <cstdint>

#include "ryxcore.h"
#include "ryxcore/filter_int16.h"
#include "vector/scale_narrow.h"

namespace ryx::firw {

// The power of two that puts the sum of |taps| (in long double) between
// half of 32767 and 32767; 0 for a sum that is zero, NaN or infinite.
inline int tapExponent(const float* taps, int n) {
  long double s = 0.0L;
  for (int i = 0; i < n; ++i) s += std::fabs(static_cast<long double>(taps[i]));
  if (!(s > 0.0L) || !std::isfinite(s)) return 0;
  int shift = 0;
  if (s > 32767.0L) {
    while (s > 32767.0L) {
      s /= 2;
      --shift;
    }
  } else {
    while (2 * s < 32767.0L) {
      s *= 2;
      ++shift;
    }
  }
  return shift;
}

inline std::uint32_t mulWrap(short a, short b) {
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(a) * static_cast<std::int32_t>(b));
}

// Sum of a[i]*b[i] over n elements, modulo 2^32.
inline std::int32_t dotWrap(const short* a, const short* b, int n) {
  __m128i acc = _mm_setzero_si128();
  int i = 0;
  for (; i + 8 <= n; i += 8) {
    const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i));
    const __m128i y = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i));
    acc = _mm_add_epi32(acc, _mm_madd_epi16(x, y));
  }
  acc = _mm_add_epi32(acc, _mm_shuffle_epi32(acc, 0x4e));
  acc = _mm_add_epi32(acc, _mm_shuffle_epi32(acc, 0xb1));
  std::uint32_t s = static_cast<std::uint32_t>(_mm_cvtsi128_si32(acc));
  for (; i < n; ++i) s += mulWrap(a[i], b[i]);
  return static_cast<std::int32_t>(s);
}

// Four outputs of the high-level filter from one span: the tap table holds,
// for each group g of four samples, the rows k = 0..3 (16 elements) that
// serve an output starting k samples past base; out[k] sums
// table[16g+4k+j] * base[4g+j] over g < groups, j < 4. Reads 4*groups
// samples from base; the table is 16-byte aligned.
inline void quadDot(const short* table, const short* base, int groups, std::int32_t out[4]) {
  __m128i acc01 = _mm_setzero_si128(), acc23 = _mm_setzero_si128();
  for (int g = 0; g < groups; ++g) {
    const __m128i x = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(base + 4 * g));
    const __m128i xx = _mm_unpacklo_epi64(x, x);
    const __m128i* t = reinterpret_cast<const __m128i*>(table + 16 * g);
    acc01 = _mm_add_epi32(acc01, _mm_madd_epi16(xx, _mm_load_si128(t)));
    acc23 = _mm_add_epi32(acc23, _mm_madd_epi16(xx, _mm_load_si128(t + 1)));
  }
  // Lanes (row 2r: 0, 1; row 2r+1: 2, 3): add the pairs.
  const __m128i s01 = _mm_add_epi32(acc01, _mm_shuffle_epi32(acc01, 0xb1));
  const __m128i s23 = _mm_add_epi32(acc23, _mm_shuffle_epi32(acc23, 0xb1));
  out[0] = _mm_cvtsi128_si32(s01);
  out[1] = _mm_cvtsi128_si32(_mm_shuffle_epi32(s01, 0x02));
  out[2] = _mm_cvtsi128_si32(s23);
  out[3] = _mm_cvtsi128_si32(_mm_shuffle_epi32(s23, 0x02));
}

// One output from row k of the table, base being the span's start rounded
// down to a group boundary.
inline std::int32_t rowDot(const short* table, int k, const short* base, int groups) {
  __m128i acc = _mm_setzero_si128();
  for (int g = 0; g < groups; ++g) {
    const __m128i x = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(base + 4 * g));
    const __m128i t = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(table + 16 * g + 4 * k));
    acc = _mm_add_epi32(acc, _mm_madd_epi16(x, t));
  }
  return _mm_cvtsi128_si32(_mm_add_epi32(acc, _mm_shuffle_epi32(acc, 0xb1)));
}

// A 32-bit value shifted by f: right with sign (count at most 31) for a
// positive f, left with wrap-around (count at most 15) for a negative one.
inline std::int32_t shiftBy(std::int32_t v, std::int64_t f) {
  if (f > 0) return v >> (f > 31 ? 31 : f);
  if (f < 0) {
    const int s = f < -15 ? 15 : static_cast<int>(-f);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(v) << s);
  }
  return v;
}

inline bool fits16(std::int32_t v) { return v >= -32768 && v <= 32767; }

// floor(log2 |v|) - 14 for a value beyond the 16-bit range.
inline int overflowShift(std::int32_t v) {
  const std::uint32_t mag = v < 0 ? 0u - static_cast<std::uint32_t>(v) : static_cast<std::uint32_t>(v);
  return (31 - __builtin_clz(mag)) - 14;
}

// Total fixed shift: the tap exponent plus the caller's factor when fixed
// scaling is asked for, kept in a range where every shift is clamped anyway.
inline int totalShift(int scaleMode, const int* scaleFactor, int tapShift) {
  std::int64_t total = tapShift;
  if (scaleFactor != nullptr && (scaleMode & RYX_FIXED_SCALE) != 0) total += *scaleFactor;
  if (total > 64) total = 64;
  if (total < -64) total = -64;
  return static_cast<int>(total);
}

// Effective mode and factor: 4 is automatic (the factor is unused by the
// low-level form, the starting shift in the high-level one); 0, 1 keep or
// saturate the plain sum; 2, 3 shift by the factor (positive right,
// negative left), then keep or saturate.
struct Narrowing {
  int mode;
  int factor;
};

inline Narrowing lowNarrowing(int scaleMode, const int* scaleFactor, int tapShift) {
  if ((scaleMode & 7) >= 4) return {4, 0};
  const int total = totalShift(scaleMode, scaleFactor, tapShift);
  if (total == 0) return {scaleMode & 5, 0};
  return {(scaleMode | 2) & 7, total};
}

// The high-level form names the left-shifting modes 5 and 6 apart; they
// act as 2 and 3 with a negative factor, which is what is kept here.
inline Narrowing highNarrowing(int scaleMode, const int* scaleFactor, int tapShift) {
  if ((scaleMode & 7) >= 4) return {4, tapShift};
  const int total = totalShift(scaleMode, scaleFactor, tapShift);
  if (total == 0) return {scaleMode & 5, 0};
  return {(scaleMode & 7) | 2, total};
}

// One sum narrowed: automatic mode first applies the tap exponent, then
// brings the value into range and reports the extra shift.
inline short narrowOne(std::int32_t v, Narrowing n, int tapShift, int* scaleFactor) {
  if (n.mode == 4) return ownScaleI32(shiftBy(v, tapShift), 4, scaleFactor);
  int f = n.factor;
  return ownScaleI32(v, n.mode, &f);
}

}  // namespace ryx::firw
