// Wrap and saturate modes of the 16-bit arithmetic on 128-bit SSE2 lanes.
//
// Add and subtract use the wrapping and saturating lane operations, so they
// are exact by construction. A real product keeps the low half of the lane
// product (wrap) or packs the full 32-bit product with saturation. A complex
// product is formed in 32-bit lanes with pairwise multiply-adds:
//   re = ar*br + ai*(~bi) + ai  (= ar*br - ai*bi; ~bi never overflows where
//                               -bi would, the sum wraps harmlessly since the
//                               true re always fits 32 bits),
//   im = ar*bi + ai*br,
// where im wraps to -2^31 exactly when all four operands are -32768 (true
// value 2^31); the saturating form turns that lane into 2^31-1 before the
// pack. For a scalar operand whose imaginary part can be negated (anything
// but -32768) the negated scalar is used directly.
#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

#include "vector/int16_kernels.h"

namespace ryx::int16 {
namespace {

// Forward run over `count` 16-bit words in elements of `Unit` words:
// single elements until dst is 8-byte aligned, 16 words per turn, groups of
// four words, then single elements. Each turn loads before it stores, so
// dst may equal a or b.
template <int Unit, bool Broadcast, class Vec, class One>
inline void drive(const short* a, const short* b, __m128i bv, short* d, std::size_t count, Vec vop, One one) {
  std::size_t i = 0;
  const auto addr = reinterpret_cast<std::uintptr_t>(d);
  if (addr % (2 * Unit) == 0) {
    while (i < count && ((addr + 2 * i) & 7) != 0) {
      one(i);
      i += Unit;
    }
  }
  for (; count - i >= 16; i += 16) {
    const __m128i a0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i));
    const __m128i a1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i + 8));
    const __m128i b0 = Broadcast ? bv : _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i));
    const __m128i b1 = Broadcast ? bv : _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i + 8));
    const __m128i r0 = vop(a0, b0);
    const __m128i r1 = vop(a1, b1);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i), r0);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i + 8), r1);
  }
  for (; count - i >= 4; i += 4) {
    const __m128i a0 = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(a + i));
    const __m128i b0 = Broadcast ? bv : _mm_loadl_epi64(reinterpret_cast<const __m128i*>(b + i));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(d + i), vop(a0, b0));
  }
  for (; i < count; i += Unit) one(i);
}

template <Op K, bool Sat>
inline __m128i realLanes(__m128i a, __m128i b) {
  if constexpr (K == Op::Add) return Sat ? _mm_adds_epi16(a, b) : _mm_add_epi16(a, b);
  if constexpr (K == Op::Sub) return Sat ? _mm_subs_epi16(a, b) : _mm_sub_epi16(a, b);
  if constexpr (K == Op::Mpy) {
    const __m128i lo = _mm_mullo_epi16(a, b);
    if constexpr (!Sat) {
      return lo;
    } else {
      const __m128i hi = _mm_mulhi_epi16(a, b);
      return _mm_packs_epi32(_mm_unpacklo_epi16(lo, hi), _mm_unpackhi_epi16(lo, hi));
    }
  }
}

// Narrows 32-bit lanes re (real parts) and im (imaginary parts) of four
// complex samples to interleaved 16-bit pairs.
template <bool Sat>
inline __m128i joinComplex(__m128i re, __m128i im) {
  if constexpr (Sat) {
    const __m128i minInt = _mm_set1_epi32(INT32_MIN);
    im = _mm_add_epi32(im, _mm_cmpeq_epi32(im, minInt));  // wrapped 2^31 -> 2^31-1
    const __m128i p = _mm_packs_epi32(re, im);             // re0..re3 im0..im3
    return _mm_unpacklo_epi16(p, _mm_srli_si128(p, 8));
  } else {
    const __m128i low = _mm_and_si128(re, _mm_set1_epi32(0xffff));
    return _mm_or_si128(low, _mm_slli_epi32(im, 16));
  }
}

inline __m128i swapPairs(__m128i b) { return _mm_shufflehi_epi16(_mm_shufflelo_epi16(b, 0xB1), 0xB1); }

// General complex product: b as loaded, any value allowed.
template <bool Sat>
inline __m128i complexMpy(__m128i a, __m128i b) {
  const __m128i notIm = _mm_set1_epi32(static_cast<int>(0xffff0000u));
  const __m128i re = _mm_add_epi32(_mm_madd_epi16(a, _mm_xor_si128(b, notIm)), _mm_srai_epi32(a, 16));
  const __m128i im = _mm_madd_epi16(a, swapPairs(b));
  return joinComplex<Sat>(re, im);
}

// Product by a scalar given as (br, -bi) and (bi, br) patterns.
template <bool Sat>
inline __m128i complexMpyNegated(__m128i a, __m128i negPattern, __m128i swapPattern) {
  return joinComplex<Sat>(_mm_madd_epi16(a, negPattern), _mm_madd_epi16(a, swapPattern));
}

inline __m128i pairPattern(short lo, short hi) {
  const std::uint32_t w = static_cast<std::uint16_t>(lo) | (static_cast<std::uint32_t>(static_cast<std::uint16_t>(hi)) << 16);
  return _mm_set1_epi32(static_cast<int>(w));
}

template <Op K, bool Sat>
void runW(const short* a, const short* b, short val, short* dst, int n) {
  auto one = [&](std::size_t i) {
    const std::int64_t r = exact<K>(std::int64_t{a[i]}, std::int64_t{b ? b[i] : val});
    dst[i] = Sat ? sat16(r) : wrap16(r);
  };
  auto vop = [](__m128i x, __m128i y) { return realLanes<K, Sat>(x, y); };
  if (b == nullptr) {
    drive<1, true>(a, nullptr, _mm_set1_epi16(val), dst, static_cast<std::size_t>(n), vop, one);
  } else {
    drive<1, false>(a, b, _mm_setzero_si128(), dst, static_cast<std::size_t>(n), vop, one);
  }
}

template <Op K, bool Sat>
void runV(const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n) {
  auto one = [&](std::size_t i) {
    const std::size_t k = i / 2;
    const Exact2 r = exact<K>(a[k], b ? b[k] : val);
    dst[k].re = Sat ? sat16(r.re) : wrap16(r.re);
    dst[k].im = Sat ? sat16(r.im) : wrap16(r.im);
  };
  const short* as = reinterpret_cast<const short*>(a);
  const short* bs = reinterpret_cast<const short*>(b);
  short* ds = reinterpret_cast<short*>(dst);
  const std::size_t count = 2 * static_cast<std::size_t>(n);
  if constexpr (K != Op::Mpy) {
    auto vop = [](__m128i x, __m128i y) { return realLanes<K, Sat>(x, y); };
    if (b == nullptr) {
      drive<2, true>(as, nullptr, pairPattern(val.re, val.im), ds, count, vop, one);
    } else {
      drive<2, false>(as, bs, _mm_setzero_si128(), ds, count, vop, one);
    }
  } else {
    if (b != nullptr) {
      drive<2, false>(as, bs, _mm_setzero_si128(), ds, count, [](__m128i x, __m128i y) { return complexMpy<Sat>(x, y); }, one);
    } else if (val.im != -32768) {
      // The scalar's imaginary part has a positive image: negate it once.
      const __m128i neg = pairPattern(val.re, static_cast<short>(-val.im));
      const __m128i swp = pairPattern(val.im, val.re);
      drive<2, true>(as, nullptr, neg, ds, count,
                     [neg, swp](__m128i x, __m128i) { return complexMpyNegated<Sat>(x, neg, swp); }, one);
    } else {
      drive<2, true>(as, nullptr, pairPattern(val.re, val.im), ds, count,
                     [](__m128i x, __m128i y) { return complexMpy<Sat>(x, y); }, one);
    }
  }
}

}  // namespace

void laneKernelW(Op op, bool saturate, const short* a, const short* b, short val, short* dst, int n) {
  switch (op) {
    case Op::Add: return saturate ? runW<Op::Add, true>(a, b, val, dst, n) : runW<Op::Add, false>(a, b, val, dst, n);
    case Op::Sub: return saturate ? runW<Op::Sub, true>(a, b, val, dst, n) : runW<Op::Sub, false>(a, b, val, dst, n);
    case Op::Mpy: return saturate ? runW<Op::Mpy, true>(a, b, val, dst, n) : runW<Op::Mpy, false>(a, b, val, dst, n);
  }
}

void laneKernelV(Op op, bool saturate, const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n) {
  switch (op) {
    case Op::Add: return saturate ? runV<Op::Add, true>(a, b, val, dst, n) : runV<Op::Add, false>(a, b, val, dst, n);
    case Op::Sub: return saturate ? runV<Op::Sub, true>(a, b, val, dst, n) : runV<Op::Sub, false>(a, b, val, dst, n);
    case Op::Mpy: return saturate ? runV<Op::Mpy, true>(a, b, val, dst, n) : runV<Op::Mpy, false>(a, b, val, dst, n);
  }
}

}  // namespace ryx::int16
