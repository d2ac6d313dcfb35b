// Forward fill and copy over 32-bit words, 128-bit SSE2.
//
// Fill: single words until the destination is 16-byte aligned, then 16
// words a turn (streaming stores while more than 4096 words remain, then a
// store fence), then groups of four, then the last 0-3 singly. A pattern of
// 2 or 4 words (complex or double values) keeps its phase across the steps.
//
// Copy: the same shape in 16-word turns with three source forms chosen by the
// source's alignment at the first block (16, 8, other) and streaming stores
// while more than 2048 words remain. A copy to a higher overlapping address
// is not protected.
//
// Below the streaming thresholds the 16-word turns go to 256- or 512-bit
// stores where the processor has them: the same words in the same forward
// order, fewer instructions.
#include <emmintrin.h>

#include <cstdint>
#include <cstring>

#include "frame/cpu_dispatch.h"
#include "vector/arith_kernels.h"

namespace ryx::arith {
namespace {

inline bool aligned16(const void* p) { return (reinterpret_cast<std::uintptr_t>(p) & 15u) == 0; }
inline unsigned misalign(const void* p) { return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(p) & 15u); }

inline void putWord(char* d, std::uint32_t w) { std::memcpy(d, &w, 4); }

using ryx::cpu::Isa;

// The cached turns in the widest stores allowed; 0 when only SSE2 is.
std::int64_t wideFill(char* d, __m128 lanes, std::int64_t words) {
  if (words < 16) return 0;
  if (ryx::cpu::allows(Isa::Avx512)) return avx512::fillTurns(d, lanes, words);
  if (ryx::cpu::allows(Isa::Avx2)) return avx2::fillTurns(d, lanes, words);
  return 0;
}
std::int64_t wideCopy(const char* s, char* d, std::int64_t words) {
  if (words < 16) return 0;
  if (ryx::cpu::allows(Isa::Avx512)) return avx512::copyTurns(s, d, words);
  if (ryx::cpu::allows(Isa::Avx2)) return avx2::copyTurns(s, d, words);
  return 0;
}

enum class SrcForm { Aligned16, Aligned8, Other };

template <SrcForm F>
inline __m128 loadSrc(const char* s) {
  if constexpr (F == SrcForm::Aligned16) {
    return _mm_load_ps(reinterpret_cast<const float*>(s));
  } else if constexpr (F == SrcForm::Aligned8) {
    const __m128d lo = _mm_load_sd(reinterpret_cast<const double*>(s));
    return _mm_castpd_ps(_mm_loadh_pd(lo, reinterpret_cast<const double*>(s + 8)));
  } else {
    return _mm_loadu_ps(reinterpret_cast<const float*>(s));
  }
}

template <SrcForm F>
void copyBlocks(const char*& s, char*& d, std::int64_t& words, bool& streamed) {
  while (words >= 16) {
    const bool stream = words > 2048;
    if (!stream) {
      const std::int64_t done = wideCopy(s, d, words);
      s += 4 * done;
      d += 4 * done;
      words -= done;
      if (words < 16) break;
    }
    __m128 v[4];
    for (int k = 0; k < 4; ++k) v[k] = loadSrc<F>(s + 16 * k);
    float* df = reinterpret_cast<float*>(d);
    if (stream) {
      for (int k = 0; k < 4; ++k) _mm_stream_ps(df + 4 * k, v[k]);
      streamed = true;
    } else {
      for (int k = 0; k < 4; ++k) _mm_store_ps(df + 4 * k, v[k]);
    }
    s += 64;
    d += 64;
    words -= 16;
  }
}

}  // namespace

void fillWords(const std::uint32_t* pattern, int period, void* dst, std::int64_t words) {
  char* d = static_cast<char*>(dst);
  const int wrap = period - 1;  // period is 1, 2 or 4
  int phase = 0;
  while (words > 0 && !aligned16(d)) {
    putWord(d, pattern[phase]);
    phase = (phase + 1) & wrap;
    d += 4;
    --words;
  }
  if (words <= 0) return;
  std::uint32_t lanes[4];
  for (int l = 0; l < 4; ++l) lanes[l] = pattern[(phase + l) & wrap];
  // Built in registers: a vector load of just-stored words would stall on
  // store forwarding, which costs as much as a short fill.
  const __m128 v = _mm_castsi128_ps(_mm_setr_epi32(static_cast<int>(lanes[0]), static_cast<int>(lanes[1]),
                                                   static_cast<int>(lanes[2]), static_cast<int>(lanes[3])));
  bool streamed = false;
  for (; words > 4096; words -= 16, d += 64) {
    float* df = reinterpret_cast<float*>(d);
    for (int k = 0; k < 4; ++k) _mm_stream_ps(df + 4 * k, v);
    streamed = true;
  }
  if (streamed) _mm_sfence();
  {
    const std::int64_t done = wideFill(d, v, words);
    d += 4 * done;
    words -= done;
  }
  for (; words >= 16; words -= 16, d += 64) {
    float* df = reinterpret_cast<float*>(d);
    for (int k = 0; k < 4; ++k) _mm_store_ps(df + 4 * k, v);
  }
  for (; words >= 4; words -= 4, d += 16) _mm_store_ps(reinterpret_cast<float*>(d), v);
  for (int l = 0; words > 0; --words, ++l, d += 4) putWord(d, lanes[l]);
}

void copyWords(const void* src, void* dst, std::int64_t words) {
  const char* s = static_cast<const char*>(src);
  char* d = static_cast<char*>(dst);
  while (words > 0 && !aligned16(d)) {
    std::memcpy(d, s, 4);
    d += 4;
    s += 4;
    --words;
  }
  if (words <= 0) return;
  bool streamed = false;
  const unsigned sm = misalign(s);
  if (sm == 0) {
    copyBlocks<SrcForm::Aligned16>(s, d, words, streamed);
  } else if (sm == 8) {
    copyBlocks<SrcForm::Aligned8>(s, d, words, streamed);
  } else {
    copyBlocks<SrcForm::Other>(s, d, words, streamed);
  }
  if (streamed) _mm_sfence();
  for (; words >= 4; words -= 4, d += 16, s += 16) {
    _mm_store_ps(reinterpret_cast<float*>(d), _mm_loadu_ps(reinterpret_cast<const float*>(s)));
  }
  for (; words > 0; --words, d += 4, s += 4) std::memcpy(d, s, 4);
}

}  // namespace ryx::arith
