// And, Or, Xor of 16-bit words on 256-bit lanes (compiled with -mavx2).
#include <immintrin.h>

#include "vector/logic_kernels.h"

namespace ryx::logic::avx2 {
namespace {

template <int K>
inline __m256i lanes(__m256i a, __m256i b) {
  if constexpr (K == 0) return _mm256_and_si256(a, b);
  if constexpr (K == 1) return _mm256_or_si256(a, b);
  if constexpr (K == 2) return _mm256_xor_si256(a, b);
}

template <int K, bool Broadcast, bool Stream>
std::size_t run(const short* a, const short* b, __m256i bv, short* d, std::size_t n) {
  std::size_t i = 0;
  for (; n - i >= 32; i += 32) {
    const __m256i a0 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + i));
    const __m256i a1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + i + 16));
    const __m256i b0 = Broadcast ? bv : _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i));
    const __m256i b1 = Broadcast ? bv : _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + i + 16));
    if constexpr (Stream) {
      _mm256_stream_si256(reinterpret_cast<__m256i*>(d + i), lanes<K>(a0, b0));
      _mm256_stream_si256(reinterpret_cast<__m256i*>(d + i + 16), lanes<K>(a1, b1));
    } else {
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i), lanes<K>(a0, b0));
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i + 16), lanes<K>(a1, b1));
    }
  }
  return i;
}

template <int K, bool Stream>
std::size_t pick(const short* a, const short* b, short val, short* d, std::size_t n) {
  return b ? run<K, false, Stream>(a, b, _mm256_setzero_si256(), d, n)
           : run<K, true, Stream>(a, nullptr, _mm256_set1_epi16(val), d, n);
}

template <bool Stream>
std::size_t byOp(int op, const short* a, const short* b, short val, short* dst, std::size_t n) {
  switch (op) {
    case 0: return pick<0, Stream>(a, b, val, dst, n);
    case 1: return pick<1, Stream>(a, b, val, dst, n);
    default: return pick<2, Stream>(a, b, val, dst, n);
  }
}

}  // namespace

std::size_t blocks(int op, const short* a, const short* b, short val, short* dst, std::size_t n) {
  return byOp<false>(op, a, b, val, dst, n);
}

std::size_t streamBlocks(int op, const short* a, const short* b, short val, short* dst, std::size_t n) {
  const std::size_t done = byOp<true>(op, a, b, val, dst, n);
  _mm_sfence();
  return done;
}

}  // namespace ryx::logic::avx2
