// Kernels of the elementwise family. They have no failure path: the entry
// has checked that n > 0 and that every pointer is set.
#pragma once

#include <emmintrin.h>

#include <cstdint>

#include "ryxcore.h"
#include "vector/arith_ref.h"

namespace ryx::arith {

// dst[i] = dst[i] op val
template <class T>
void kernelOp1(OpKind op, T val, T* dst, int n);
// dst[i] = dst[i] op src[i]
template <class T>
void kernelOp2(OpKind op, const T* src, T* dst, int n);
// dst[i] = srcA[i] op srcB[i]
template <class T>
void kernelOp3(OpKind op, const T* srcA, const T* srcB, T* dst, int n);

// Forward fill of `words` 32-bit words with a pattern of `period` words
// (1, 2 or 4), starting at pattern[0]. Zero and Set of every type use it.
void fillWords(const std::uint32_t* pattern, int period, void* dst, std::int64_t words);

// Forward copy of `words` 32-bit words. Copy of every type uses it.
void copyWords(const void* src, void* dst, std::int64_t words);

// The cached (non-streaming) 16-word turns of fill and copy in wider
// stores, forward, for the block part below the streaming thresholds.
// `d` is 16-byte aligned; each writes floor(words / 16) * 16 words (the
// fill repeating the four 32-bit lanes of `lanes`) and returns that count.
namespace avx2 {
std::int64_t fillTurns(char* d, __m128 lanes, std::int64_t words);
std::int64_t copyTurns(const char* s, char* d, std::int64_t words);
}  // namespace avx2
namespace avx512 {
std::int64_t fillTurns(char* d, __m128 lanes, std::int64_t words);
std::int64_t copyTurns(const char* s, char* d, std::int64_t words);
}  // namespace avx512

}  // namespace ryx::arith
