// Wrap and saturate modes of the 16-bit arithmetic on 256-bit AVX2 lanes,
// reached only through run-time dispatch. Every lane operation is the
// 128-bit one of int16_sse2.cpp applied to both halves (the unpack, pack,
// shuffle and byte-shift instructions work within each 128-bit half), so
// results are identical bit for bit. Whole blocks of 32 16-bit words are
// done here from the start of the array; the remainder goes to the
// baseline kernel, which also handles the single elements.
//
// This file is compiled with -mavx2: it calls no inline function shared
// with other files, so no AVX2 code can be merged into baseline callers.
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "vector/int16_kernels.h"

namespace ryx::int16::avx2 {
namespace {

template <Op K, bool Sat>
inline __m256i realLanes(__m256i a, __m256i b) {
  if constexpr (K == Op::Add) return Sat ? _mm256_adds_epi16(a, b) : _mm256_add_epi16(a, b);
  if constexpr (K == Op::Sub) return Sat ? _mm256_subs_epi16(a, b) : _mm256_sub_epi16(a, b);
  if constexpr (K == Op::Mpy) {
    const __m256i lo = _mm256_mullo_epi16(a, b);
    if constexpr (!Sat) {
      return lo;
    } else {
      const __m256i hi = _mm256_mulhi_epi16(a, b);
      return _mm256_packs_epi32(_mm256_unpacklo_epi16(lo, hi), _mm256_unpackhi_epi16(lo, hi));
    }
  }
}

template <bool Sat>
inline __m256i complexMpy(__m256i a, __m256i b) {
  const __m256i notIm = _mm256_set1_epi32(static_cast<int>(0xffff0000u));
  const __m256i re = _mm256_add_epi32(_mm256_madd_epi16(a, _mm256_xor_si256(b, notIm)), _mm256_srai_epi32(a, 16));
  const __m256i swapped = _mm256_shufflehi_epi16(_mm256_shufflelo_epi16(b, 0xB1), 0xB1);
  __m256i im = _mm256_madd_epi16(a, swapped);
  if constexpr (Sat) {
    im = _mm256_add_epi32(im, _mm256_cmpeq_epi32(im, _mm256_set1_epi32(INT32_MIN)));
    const __m256i p = _mm256_packs_epi32(re, im);
    return _mm256_unpacklo_epi16(p, _mm256_srli_si256(p, 8));
  } else {
    return _mm256_or_si256(_mm256_and_si256(re, _mm256_set1_epi32(0xffff)), _mm256_slli_epi32(im, 16));
  }
}

inline __m256i pairPattern(short lo, short hi) {
  const std::uint32_t w = static_cast<std::uint16_t>(lo) | (static_cast<std::uint32_t>(static_cast<std::uint16_t>(hi)) << 16);
  return _mm256_set1_epi32(static_cast<int>(w));
}

// Blocks of 32 words from the start; returns the number of words done.
// With Stream the stores go around the caches (d must be 32-byte aligned).
template <bool Stream, class Vec>
inline std::size_t blocks(const short* a, const short* b, __m256i bv, short* d, std::size_t count, Vec vop) {
  std::size_t i = 0;
  for (; count - i >= 32; i += 32) {
    const __m256i a0 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + i));
    const __m256i a1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + i + 16));
    const __m256i b0 = b ? _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i)) : bv;
    const __m256i b1 = b ? _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i + 16)) : bv;
    const __m256i r0 = vop(a0, b0);
    const __m256i r1 = vop(a1, b1);
    if constexpr (Stream) {
      _mm256_stream_si256(reinterpret_cast<__m256i*>(d + i), r0);
      _mm256_stream_si256(reinterpret_cast<__m256i*>(d + i + 16), r1);
    } else {
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i), r0);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i + 16), r1);
    }
  }
  return i;
}

template <Op K, bool Sat, bool Stream>
std::size_t runW(const short* a, const short* b, short val, short* dst, std::size_t count) {
  auto vop = [](__m256i x, __m256i y) { return realLanes<K, Sat>(x, y); };
  return b ? blocks<Stream>(a, b, _mm256_setzero_si256(), dst, count, vop)
           : blocks<Stream>(a, nullptr, _mm256_set1_epi16(val), dst, count, vop);
}

template <Op K, bool Sat, bool Stream>
std::size_t runV(const short* a, const short* b, WCplx val, short* dst, std::size_t count) {
  const __m256i bv = b ? _mm256_setzero_si256() : pairPattern(val.re, val.im);
  if constexpr (K == Op::Mpy) {
    return blocks<Stream>(a, b, bv, dst, count, [](__m256i x, __m256i y) { return complexMpy<Sat>(x, y); });
  } else {
    return blocks<Stream>(a, b, bv, dst, count, [](__m256i x, __m256i y) { return realLanes<K, Sat>(x, y); });
  }
}

template <bool Complex, bool Stream>
std::size_t pick(Op op, bool sat, const short* a, const short* b, short val, WCplx cval, short* dst, std::size_t count) {
  if constexpr (Complex) {
    switch (op) {
      case Op::Add: return sat ? runV<Op::Add, true, Stream>(a, b, cval, dst, count) : runV<Op::Add, false, Stream>(a, b, cval, dst, count);
      case Op::Sub: return sat ? runV<Op::Sub, true, Stream>(a, b, cval, dst, count) : runV<Op::Sub, false, Stream>(a, b, cval, dst, count);
      default: return sat ? runV<Op::Mpy, true, Stream>(a, b, cval, dst, count) : runV<Op::Mpy, false, Stream>(a, b, cval, dst, count);
    }
  } else {
    switch (op) {
      case Op::Add: return sat ? runW<Op::Add, true, Stream>(a, b, val, dst, count) : runW<Op::Add, false, Stream>(a, b, val, dst, count);
      case Op::Sub: return sat ? runW<Op::Sub, true, Stream>(a, b, val, dst, count) : runW<Op::Sub, false, Stream>(a, b, val, dst, count);
      default: return sat ? runW<Op::Mpy, true, Stream>(a, b, val, dst, count) : runW<Op::Mpy, false, Stream>(a, b, val, dst, count);
    }
  }
}

// From this many 16-bit words on, the result no longer fits the caches and
// the blocks use streaming stores, so the destination's lines are not read
// in before they are overwritten.
constexpr std::size_t kStreamFrom = std::size_t{1} << 18;

// Words to process before dst reaches a 32-byte boundary, or -1 when dst is
// not aligned to whole elements of `unitBytes` (then no streaming).
inline std::ptrdiff_t streamHead(const short* dst, std::size_t unitBytes) {
  const auto mis = reinterpret_cast<std::uintptr_t>(dst) & 31;
  if (mis % unitBytes != 0) return -1;
  return static_cast<std::ptrdiff_t>(((32 - mis) & 31) / 2);
}

}  // namespace

void laneKernelW(Op op, bool saturate, const short* a, const short* b, short val, short* dst, int n) {
  const auto count = static_cast<std::size_t>(n);
  std::size_t done = 0;
  const std::ptrdiff_t head = count >= kStreamFrom ? streamHead(dst, 2) : -1;
  if (head >= 0) {
    if (head > 0) ryx::int16::laneKernelW(op, saturate, a, b, val, dst, static_cast<int>(head));
    done = head + pick<false, true>(op, saturate, a + head, b ? b + head : nullptr, val, WCplx{}, dst + head, count - head);
    _mm_sfence();
  } else {
    done = pick<false, false>(op, saturate, a, b, val, WCplx{}, dst, count);
  }
  if (done < count) {
    ryx::int16::laneKernelW(op, saturate, a + done, b ? b + done : nullptr, val, dst + done, static_cast<int>(count - done));
  }
}

void laneKernelV(Op op, bool saturate, const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n) {
  const short* as = reinterpret_cast<const short*>(a);
  const short* bs = reinterpret_cast<const short*>(b);
  short* ds = reinterpret_cast<short*>(dst);
  const std::size_t count = 2 * static_cast<std::size_t>(n);
  std::size_t done = 0;
  const std::ptrdiff_t head = count >= kStreamFrom ? streamHead(ds, 4) : -1;
  if (head >= 0) {
    const std::size_t h = static_cast<std::size_t>(head);  // whole samples: the offset is a multiple of 4 bytes
    if (h > 0) ryx::int16::laneKernelV(op, saturate, a, b, val, dst, static_cast<int>(h / 2));
    done = h + pick<true, true>(op, saturate, as + h, bs ? bs + h : nullptr, 0, val, ds + h, count - h);
    _mm_sfence();
  } else {
    done = pick<true, false>(op, saturate, as, bs, 0, val, ds, count);
  }
  const std::size_t k = done / 2;  // blocks are whole complex samples
  if (k < static_cast<std::size_t>(n)) {
    ryx::int16::laneKernelV(op, saturate, a + k, b ? b + k : nullptr, val, dst + k, static_cast<int>(n - k));
  }
}

}  // namespace ryx::int16::avx2
