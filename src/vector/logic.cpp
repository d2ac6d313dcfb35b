// Bitwise operations and shifts on 16-bit words (source group "ryxlogic").
//
// The And/Or/Xor kernels run on 128-bit lanes with aligned access. They
// bring dst to a 16-byte boundary in up to three steps (one word when the
// address is odd in its 32-bit word, a 32-bit pair, a 64-bit group), then
// take eight words per aligned turn, then finish the tail in the same
// steps downward. The two- and three-array forms use that structure when
// every array has the same address bits below 16; otherwise a plain loop
// over 32-bit words runs. Long arrays take 256-bit blocks first on
// processors with AVX2. The path never changes a result.
#include <emmintrin.h>

#include <cstdint>
#include <cstring>

#include "frame/checks.h"
#include "frame/cpu_dispatch.h"
#include "vector/logic_kernels.h"
#include "ryxcore.h"

namespace ryx::logic {
namespace {

constexpr const char* kStem = "ryxlogic";

enum class Bit { And = 0, Or = 1, Xor = 2 };

template <Bit K>
inline __m128i lanes(__m128i a, __m128i b) {
  if constexpr (K == Bit::And) return _mm_and_si128(a, b);
  if constexpr (K == Bit::Or) return _mm_or_si128(a, b);
  if constexpr (K == Bit::Xor) return _mm_xor_si128(a, b);
}

template <Bit K, class W>
inline W word(W a, W b) {
  if constexpr (K == Bit::And) return static_cast<W>(a & b);
  if constexpr (K == Bit::Or) return static_cast<W>(a | b);
  if constexpr (K == Bit::Xor) return static_cast<W>(a ^ b);
}

inline std::uintptr_t low4(const void* p) { return reinterpret_cast<std::uintptr_t>(p) & 15; }

// dst[i] = a[i] op b[i], or a[i] op val when b is null, with dst aligned
// to 16 bytes after the head and a, b sharing dst's low address bits.
template <Bit K>
void alignedRun(const short* a, const short* b, short val, short* d, std::size_t n) {
  auto one = [&](std::size_t i) { d[i] = word<K>(a[i], b ? b[i] : val); };
  auto steps = [&](std::size_t& i, std::size_t count) {
    for (std::size_t j = 0; j < count; ++j) one(i + j);
    i += count;
  };
  const std::uintptr_t addr = reinterpret_cast<std::uintptr_t>(d);
  std::size_t i = 0;
  if ((addr & 2) != 0 && n - i >= 1) steps(i, 1);
  if (((addr + 2 * i) & 4) != 0 && n - i >= 2) steps(i, 2);
  if (((addr + 2 * i) & 8) != 0 && n - i >= 4) steps(i, 4);
  if (b != nullptr) {
    for (; n - i >= 16; i += 16) {
      const __m128i x0 = _mm_load_si128(reinterpret_cast<const __m128i*>(a + i));
      const __m128i x1 = _mm_load_si128(reinterpret_cast<const __m128i*>(a + i + 8));
      const __m128i y0 = _mm_load_si128(reinterpret_cast<const __m128i*>(b + i));
      const __m128i y1 = _mm_load_si128(reinterpret_cast<const __m128i*>(b + i + 8));
      _mm_store_si128(reinterpret_cast<__m128i*>(d + i), lanes<K>(x0, y0));
      _mm_store_si128(reinterpret_cast<__m128i*>(d + i + 8), lanes<K>(x1, y1));
    }
  }
  const __m128i bv = _mm_set1_epi16(val);
  for (; n - i >= 8; i += 8) {
    const __m128i x = _mm_load_si128(reinterpret_cast<const __m128i*>(a + i));
    const __m128i y = b ? _mm_load_si128(reinterpret_cast<const __m128i*>(b + i)) : bv;
    _mm_store_si128(reinterpret_cast<__m128i*>(d + i), lanes<K>(x, y));
  }
  if (n - i >= 4) steps(i, 4);
  if (n - i >= 2) steps(i, 2);
  if (n - i >= 1) steps(i, 1);
}

// Arrays with different alignments: 32-bit words, then a last odd word.
template <Bit K>
void wordRun(const short* a, const short* b, short* d, std::size_t n) {
  std::size_t i = 0;
  for (; n - i >= 2; i += 2) {
    std::uint32_t x, y;
    std::memcpy(&x, a + i, 4);
    std::memcpy(&y, b + i, 4);
    const std::uint32_t r = word<K>(x, y);
    std::memcpy(d + i, &r, 4);
  }
  if (i < n) d[i] = word<K>(a[i], b[i]);
}

// The baseline 128-bit kernel.
template <Bit K>
void kernel(const short* a, const short* b, short val, short* d, std::size_t count) {
  const bool even = (reinterpret_cast<std::uintptr_t>(d) & 1) == 0;
  const bool shared = even && low4(a) == low4(d) && (b == nullptr || low4(b) == low4(d));
  if (shared) {
    alignedRun<K>(a, b, val, d, count);
  } else if (b != nullptr) {
    wordRun<K>(a, b, d, count);
  } else {
    for (std::size_t i = 0; i < count; ++i) d[i] = word<K>(a[i], val);
  }
}

// Long arrays go through 256-bit blocks first where the processor has them;
// results beyond the caches' size are stored around them, after a head
// that brings dst to a 32-byte boundary.
constexpr std::size_t kWideFrom = 128;
constexpr std::size_t kStreamFrom = std::size_t{1} << 18;

template <Bit K>
void dispatch(const short* a, const short* b, short val, short* d, int n) {
  auto count = static_cast<std::size_t>(n);
  if (count >= kWideFrom && cpu::allows(cpu::Isa::Avx2)) {
    const auto mis = reinterpret_cast<std::uintptr_t>(d) & 31;
    std::size_t done;
    if (count >= kStreamFrom && mis % 2 == 0) {
      const std::size_t head = ((32 - mis) & 31) / 2;
      if (head > 0) kernel<K>(a, b, val, d, head);
      done = head + avx2::streamBlocks(static_cast<int>(K), a + head, b ? b + head : nullptr, val, d + head, count - head);
    } else {
      done = avx2::blocks(static_cast<int>(K), a, b, val, d, count);
    }
    a += done;
    if (b) b += done;
    d += done;
    count -= done;
    if (count == 0) return;
  }
  kernel<K>(a, b, val, d, count);
}

template <Bit K>
void op1(const char* name, short val, short* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}})) return;
  dispatch<K>(dst, nullptr, val, dst, n);
}

template <Bit K>
void op2(const char* name, const short* src, short* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  dispatch<K>(dst, src, 0, dst, n);
}

template <Bit K>
void op3(const char* name, const short* srcA, const short* srcB, short* dst, int n) {
  if (!passFirst({name, kStem},
                 {{n <= 0, "n<=0"}, {srcA == nullptr, "srcA==0"}, {srcB == nullptr, "srcB==0"}, {dst == nullptr, "dst==0"}}))
    return;
  dispatch<K>(srcA, srcB, 0, dst, n);
}

// Shifts by 0..15 in 16 bits; the entry has dealt with other counts.
void shiftLeft(short* dst, int n, int count) {
  const __m128i c = _mm_cvtsi32_si128(count);
  int i = 0;
  for (; n - i >= 8; i += 8) {
    const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dst + i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), _mm_sll_epi16(x, c));
  }
  for (; i < n; ++i) dst[i] = static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint16_t>(dst[i]) << count));
}

void shiftRight(short* dst, int n, int count) {
  const __m128i c = _mm_cvtsi32_si128(count);
  int i = 0;
  for (; n - i >= 8; i += 8) {
    const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(dst + i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), _mm_sra_epi16(x, c));
  }
  for (; i < n; ++i) dst[i] = static_cast<short>(dst[i] >> count);
}

constexpr Bit And = Bit::And;
constexpr Bit Or = Bit::Or;
constexpr Bit Xor = Bit::Xor;

}  // namespace
}  // namespace ryx::logic

using namespace ryx::logic;

extern "C" {

RYXAPI void ryxwbAnd1(short val, short* dst, int n) { op1<And>(__func__, val, dst, n); }
RYXAPI void ryxwbAnd2(const short* src, short* dst, int n) { op2<And>(__func__, src, dst, n); }
RYXAPI void ryxwbAnd3(const short* a, const short* b, short* dst, int n) { op3<And>(__func__, a, b, dst, n); }
RYXAPI void ryxwbOr1(short val, short* dst, int n) { op1<Or>(__func__, val, dst, n); }
RYXAPI void ryxwbOr2(const short* src, short* dst, int n) { op2<Or>(__func__, src, dst, n); }
RYXAPI void ryxwbOr3(const short* a, const short* b, short* dst, int n) { op3<Or>(__func__, a, b, dst, n); }
RYXAPI void ryxwbXor1(short val, short* dst, int n) { op1<Xor>(__func__, val, dst, n); }
RYXAPI void ryxwbXor2(const short* src, short* dst, int n) { op2<Xor>(__func__, src, dst, n); }
RYXAPI void ryxwbXor3(const short* a, const short* b, short* dst, int n) { op3<Xor>(__func__, a, b, dst, n); }

// ~x as x ^ 0xffff through the shape-1 Xor, whose checks then pass.
RYXAPI void ryxwbNot(short* dst, int n) {
  if (!ryx::passFirst({__func__, kStem}, {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}})) return;
  ryxwbXor1(static_cast<short>(-1), dst, n);
}

// Counts below 0 or from 16 on clear the array.
RYXAPI void ryxwbShiftL(short* dst, int n, int count) {
  if (!ryx::passFirst({__func__, kStem}, {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}})) return;
  if (count < 0 || count >= 16) {
    ryxwbZero(dst, n);
    return;
  }
  shiftLeft(dst, n, count);
}

// Counts below 0 clear the array; from 16 on every element becomes its
// sign (0 or -1), since an arithmetic shift cannot lose the sign.
RYXAPI void ryxwbShiftR(short* dst, int n, int count) {
  if (!ryx::passFirst({__func__, kStem}, {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}})) return;
  if (count < 0) {
    ryxwbZero(dst, n);
    return;
  }
  shiftRight(dst, n, count >= 16 ? 15 : count);
}

}  // extern "C"
