// Float and double to integer kernels, 128-bit SSE2.
//
// Per element, in order: multiply by 2^fractBits; with the check, compare
// the product with the smallest and largest value that round into the
// integer's range under the call's rounding (a NaN fails both); with the
// clip, clamp the product to the range's limits (a NaN becomes the lower
// limit); round to a 32-bit integer by the processor's mode, which the
// driver has set for the call; narrow.
//
// Layout: single elements until the source is 32-byte aligned (when it is
// element-aligned at all), then eight elements a turn with unaligned loads,
// then the last 0-7 singly. A turn narrows with saturating packs; a single
// element stores the low bits of its 32-bit integer. The two only differ for
// out-of-range values without the clip, which callers may not rely on.
//
// 32-bit results: the conversion yields 0x80000000 for anything beyond the
// signed range. For signed float sources a value at or above 2^31 is turned
// into 0x7FFFFFFF, so the clip limit 2^31 (the float nearest INT_MAX)
// saturates to INT_MAX. Unsigned 32-bit results convert v - 2^31 for v at or
// above 2^31 (exact, as such v are integers or within a factor of two of
// 2^31) and restore the top bit; v at or above 2^32 saturates to UINT_MAX.
#include <emmintrin.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "convert/float_int_kernels.h"
#include "convert/rounding_scope.h"

namespace ryx::convert {
namespace {

// Integer limits; every boundary below is exact in double.
struct Range {
  double lo, hi;
};

constexpr Range rangeOf(IntKind k) {
  switch (k) {
    case IntKind::S8: return {-128.0, 127.0};
    case IntKind::U8: return {0.0, 255.0};
    case IntKind::S16: return {-32768.0, 32767.0};
    case IntKind::U16: return {0.0, 65535.0};
    case IntKind::S32: return {-2147483648.0, 2147483647.0};
    case IntKind::U32: break;
  }
  return {0.0, 4294967295.0};
}

// The neighbour of a finite x towards plus (up) or minus infinity, from its
// bits: no library call and no arithmetic that could raise a flag.
template <class T>
T neighbour(T x, bool up) {
  using U = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
  if (x == 0) return up ? std::numeric_limits<T>::denorm_min() : -std::numeric_limits<T>::denorm_min();
  const U b = std::bit_cast<U>(x);
  return std::bit_cast<T>(static_cast<U>((x > 0) == up ? b + 1 : b - 1));
}

// The values that round into [lo, hi] under r form [firstIn, lastIn]: lo is
// zero or a negative even number, hi a positive odd one. Each limit is
// found from the real boundary by stepping neighbours, so the rounding of
// the first guess does not matter.
template <class T>
T firstIn(double lo, Rounding r) {
  // Boundary b: the values above it (or at it, when `at`) round to lo or above.
  double b = lo - 1.0;  // towards zero and up
  bool at = false;
  if (r == Rounding::Nearest) b = lo - 0.5, at = true;  // the tie goes to lo, which is even
  if (r == Rounding::Down) b = lo, at = true;
  auto in = [&](T t) { return at ? t >= b : t > b; };
  T t = static_cast<T>(b);
  while (!in(t)) t = neighbour(t, true);
  while (in(neighbour(t, false))) t = neighbour(t, false);
  return t;
}

template <class T>
T lastIn(double hi, Rounding r) {
  double b = hi + 1.0;  // towards zero and down: below hi + 1
  bool at = false;
  if (r == Rounding::Nearest) b = hi + 0.5;  // the tie goes to hi + 1, which is even
  if (r == Rounding::Up) b = hi, at = true;
  auto in = [&](T t) { return at ? t <= b : t < b; };
  T t = static_cast<T>(b);
  while (!in(t)) t = neighbour(t, false);
  while (in(neighbour(t, true))) t = neighbour(t, true);
  return t;
}

// 2^e built in the exponent field of 1.0 (|e| <= 32).
template <class T>
T powerOfTwo(int e) {
  if constexpr (sizeof(T) == 4) return std::bit_cast<float>(static_cast<std::uint32_t>(0x3F800000 + (e << 23)));
  else return std::bit_cast<double>(static_cast<std::uint64_t>(0x3FF0000000000000ull + (static_cast<std::int64_t>(e) << 52)));
}

// Broadcast constants of one call.
template <class T> struct Consts;
template <> struct Consts<float> {
  using V = __m128;
  static V set1(float x) { return _mm_set1_ps(x); }
  V scale, clipLo, clipHi, okLo, okHi, two31, two32;
};
template <> struct Consts<double> {
  using V = __m128d;
  static V set1(double x) { return _mm_set1_pd(x); }
  V scale, clipLo, clipHi, okLo, okHi, two31, two32;
};

template <class T>
Consts<T> makeConsts(const ToIntJob& job) {
  using C = Consts<T>;
  const Range r = rangeOf(job.kind);
  // Float cannot hold INT_MAX or UINT_MAX; its nearest value is 2^31 or 2^32,
  // which the conversion saturates.
  const bool wide = sizeof(T) == 4 && (job.kind == IntKind::S32 || job.kind == IntKind::U32);
  C c;
  c.scale = C::set1(powerOfTwo<T>(job.fractBits));
  c.clipLo = C::set1(static_cast<T>(r.lo));
  c.clipHi = C::set1(static_cast<T>(wide ? r.hi + 1.0 : r.hi));
  c.okLo = C::set1(firstIn<T>(r.lo, job.rounding));
  c.okHi = C::set1(lastIn<T>(r.hi, job.rounding));
  c.two31 = C::set1(static_cast<T>(2147483648.0));
  c.two32 = C::set1(static_cast<T>(4294967296.0));
  return c;
}

inline __m128i topBit() { return _mm_set1_epi32(static_cast<int>(0x80000000u)); }

// Four floats to four 32-bit integers.
template <IntKind K, bool Clip, bool Check>
inline __m128i lanes(__m128 v, const Consts<float>& c, __m128& bad) {
  v = _mm_mul_ps(v, c.scale);
  if constexpr (Check) bad = _mm_or_ps(bad, _mm_or_ps(_mm_cmpnge_ps(v, c.okLo), _mm_cmpnle_ps(v, c.okHi)));
  if constexpr (Clip) v = _mm_min_ps(_mm_max_ps(v, c.clipLo), c.clipHi);
  if constexpr (K == IntKind::U32) {
    const __m128 big = _mm_cmpge_ps(v, c.two31);
    __m128i i = _mm_cvtps_epi32(_mm_sub_ps(v, _mm_and_ps(big, c.two31)));
    i = _mm_xor_si128(i, _mm_and_si128(_mm_castps_si128(big), topBit()));
    return _mm_or_si128(i, _mm_castps_si128(_mm_cmpge_ps(v, c.two32)));
  } else {
    __m128i i = _mm_cvtps_epi32(v);
    if constexpr (K == IntKind::S32) i = _mm_xor_si128(i, _mm_castps_si128(_mm_cmpge_ps(v, c.two31)));
    return i;
  }
}

// Two pairs of 64-bit lane masks as four 32-bit lane masks.
inline __m128i narrowMasks(__m128d a, __m128d b) {
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castpd_ps(a), _mm_castpd_ps(b), _MM_SHUFFLE(2, 0, 2, 0)));
}

// Four doubles (two vectors) to four 32-bit integers.
template <IntKind K, bool Clip, bool Check>
inline __m128i lanes(__m128d v0, __m128d v1, const Consts<double>& c, __m128d& bad) {
  v0 = _mm_mul_pd(v0, c.scale);
  v1 = _mm_mul_pd(v1, c.scale);
  if constexpr (Check) {
    const __m128d b0 = _mm_or_pd(_mm_cmpnge_pd(v0, c.okLo), _mm_cmpnle_pd(v0, c.okHi));
    const __m128d b1 = _mm_or_pd(_mm_cmpnge_pd(v1, c.okLo), _mm_cmpnle_pd(v1, c.okHi));
    bad = _mm_or_pd(bad, _mm_or_pd(b0, b1));
  }
  if constexpr (Clip) {
    v0 = _mm_min_pd(_mm_max_pd(v0, c.clipLo), c.clipHi);
    v1 = _mm_min_pd(_mm_max_pd(v1, c.clipLo), c.clipHi);
  }
  if constexpr (K == IntKind::U32) {
    const __m128d big0 = _mm_cmpge_pd(v0, c.two31), big1 = _mm_cmpge_pd(v1, c.two31);
    const __m128i i0 = _mm_cvtpd_epi32(_mm_sub_pd(v0, _mm_and_pd(big0, c.two31)));
    const __m128i i1 = _mm_cvtpd_epi32(_mm_sub_pd(v1, _mm_and_pd(big1, c.two31)));
    __m128i i = _mm_unpacklo_epi64(i0, i1);
    i = _mm_xor_si128(i, _mm_and_si128(narrowMasks(big0, big1), topBit()));
    return _mm_or_si128(i, narrowMasks(_mm_cmpge_pd(v0, c.two32), _mm_cmpge_pd(v1, c.two32)));
  } else {
    return _mm_unpacklo_epi64(_mm_cvtpd_epi32(v0), _mm_cvtpd_epi32(v1));
  }
}

template <IntKind K, bool Clip, bool Check>
inline __m128i four(const float* p, const Consts<float>& c, __m128& bad) {
  return lanes<K, Clip, Check>(_mm_loadu_ps(p), c, bad);
}
template <IntKind K, bool Clip, bool Check>
inline __m128i one(const float* p, const Consts<float>& c, __m128& bad) {
  return lanes<K, Clip, Check>(_mm_load_ss(p), c, bad);  // zero lanes are in range
}
template <IntKind K, bool Clip, bool Check>
inline __m128i four(const double* p, const Consts<double>& c, __m128d& bad) {
  return lanes<K, Clip, Check>(_mm_loadu_pd(p), _mm_loadu_pd(p + 2), c, bad);
}
template <IntKind K, bool Clip, bool Check>
inline __m128i one(const double* p, const Consts<double>& c, __m128d& bad) {
  return lanes<K, Clip, Check>(_mm_load_sd(p), _mm_setzero_pd(), c, bad);
}

inline bool anyLane(__m128 m) { return _mm_movemask_ps(m) != 0; }
inline bool anyLane(__m128d m) { return _mm_movemask_pd(m) != 0; }

// Eight results [i, i+8) from two vectors of 32-bit integers, narrowed with
// saturation.
template <IntKind K>
inline void store8(void* dst, int i, __m128i a, __m128i b) {
  if constexpr (K == IntKind::S32 || K == IntKind::U32) {
    auto* d = static_cast<std::int32_t*>(dst) + i;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d), a);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 4), b);
  } else if constexpr (K == IntKind::S16) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(static_cast<std::int16_t*>(dst) + i), _mm_packs_epi32(a, b));
  } else if constexpr (K == IntKind::U16) {
    // Bias into the signed range, pack with signed saturation, unbias.
    const __m128i bias = _mm_set1_epi32(32768);
    const __m128i p = _mm_packs_epi32(_mm_sub_epi32(a, bias), _mm_sub_epi32(b, bias));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(static_cast<std::uint16_t*>(dst) + i),
                     _mm_xor_si128(p, _mm_set1_epi16(static_cast<short>(0x8000))));
  } else {
    const __m128i w = _mm_packs_epi32(a, b);
    const __m128i bytes = K == IntKind::S8 ? _mm_packs_epi16(w, w) : _mm_packus_epi16(w, w);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(static_cast<std::uint8_t*>(dst) + i), bytes);
  }
}

// One result: the low bits of lane 0.
template <IntKind K>
inline void store1(void* dst, int i, __m128i a) {
  const auto v = static_cast<std::uint32_t>(_mm_cvtsi128_si32(a));
  if constexpr (K == IntKind::S32 || K == IntKind::U32) static_cast<std::uint32_t*>(dst)[i] = v;
  else if constexpr (K == IntKind::S16 || K == IntKind::U16) static_cast<std::uint16_t*>(dst)[i] = static_cast<std::uint16_t>(v);
  else static_cast<std::uint8_t*>(dst)[i] = static_cast<std::uint8_t>(v);
}

template <class T>
using Mask = typename Consts<T>::V;

// Kept out of line so that no conversion is scheduled outside the rounding
// scope of its caller.
template <IntKind K, bool Clip, bool Check, class T>
[[gnu::noinline]] bool convertRun(const T* src, void* dst, int len, const Consts<T>& c) {
  Mask<T> bad{};
  const auto addr = reinterpret_cast<std::uintptr_t>(src);
  int head = 0;
  if (addr % sizeof(T) == 0) head = static_cast<int>(((32 - addr % 32) % 32) / sizeof(T));
  if (head > len) head = len;
  int i = 0;
  for (; i < head; ++i) store1<K>(dst, i, one<K, Clip, Check>(src + i, c, bad));
  for (; i + 8 <= len; i += 8) {
    const __m128i a = four<K, Clip, Check>(src + i, c, bad);
    const __m128i b = four<K, Clip, Check>(src + i + 4, c, bad);
    store8<K>(dst, i, a, b);
  }
  for (; i < len; ++i) store1<K>(dst, i, one<K, Clip, Check>(src + i, c, bad));
  return Check && anyLane(bad);
}

// The clip kernel, the check kernel and the plain kernel of one width.
template <IntKind K, class T>
bool convertKind(const T* src, void* dst, int len, const Consts<T>& c, const ToIntJob& job) {
  if (job.clip) return job.check ? convertRun<K, true, true>(src, dst, len, c) : convertRun<K, true, false>(src, dst, len, c);
  return job.check ? convertRun<K, false, true>(src, dst, len, c) : convertRun<K, false, false>(src, dst, len, c);
}

template <class T>
bool convert(const T* src, void* dst, int len, const ToIntJob& job) {
  // Double conversions also set the x87 unit, which scalar double code may
  // use. The limits are worked out inside the scope, whose masks and flag
  // restore cover the inexact narrowing of a boundary to float.
  RoundingScope scope(job.rounding, sizeof(T) == 8);
  const Consts<T> c = makeConsts<T>(job);
  switch (job.kind) {
    case IntKind::S8: return convertKind<IntKind::S8>(src, dst, len, c, job);
    case IntKind::U8: return convertKind<IntKind::U8>(src, dst, len, c, job);
    case IntKind::S16: return convertKind<IntKind::S16>(src, dst, len, c, job);
    case IntKind::U16: return convertKind<IntKind::U16>(src, dst, len, c, job);
    case IntKind::S32: return convertKind<IntKind::S32>(src, dst, len, c, job);
    case IntKind::U32: break;
  }
  return convertKind<IntKind::U32>(src, dst, len, c, job);
}

}  // namespace

bool floatToInt(const float* src, void* dst, int len, const ToIntJob& job) { return convert(src, dst, len, job); }
bool floatToInt(const double* src, void* dst, int len, const ToIntJob& job) { return convert(src, dst, len, job); }

}  // namespace ryx::convert
