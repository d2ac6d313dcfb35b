// Median filter (source group "ryxmed"): each sample becomes the median of
// the `mask` samples centred on it, the ends extended by repeating the first
// and the last sample. An even maskSize acts as the next smaller odd one.
//
// The definition is the sorted window: a sorted copy of the window and a
// ring of the same values in arrival order; per output the oldest value
// leaves the sorted copy and the entering one is shifted into place. Masks
// 3, 5, 7 and 9 run on min/max networks over SSE2 lanes instead, which
// select the same order statistic without branches or working memory.
#include <emmintrin.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstddef>
#include <cstring>

#include "frame/checks.h"
#include "frame/memory.h"

namespace ryx::rate {
namespace {

constexpr const char* kStem = "ryxmed";

// Index of the extended signal: positions outside 0..len-1 repeat the ends.
inline int clampIndex(int k, int len) { return k < 0 ? 0 : (k >= len ? len - 1 : k); }

// ---- SSE2 lanes ---------------------------------------------------------------

template <class T>
struct Lanes;
template <>
struct Lanes<float> {
  using V = __m128;
  static constexpr int kWidth = 4;
  static V load(const float* p) { return _mm_loadu_ps(p); }
  static void store(float* p, V v) { _mm_storeu_ps(p, v); }
  static V min(V a, V b) { return _mm_min_ps(a, b); }
  static V max(V a, V b) { return _mm_max_ps(a, b); }
};
template <>
struct Lanes<double> {
  using V = __m128d;
  static constexpr int kWidth = 2;
  static V load(const double* p) { return _mm_loadu_pd(p); }
  static void store(double* p, V v) { _mm_storeu_pd(p, v); }
  static V min(V a, V b) { return _mm_min_pd(a, b); }
  static V max(V a, V b) { return _mm_max_pd(a, b); }
};
template <>
struct Lanes<short> {
  using V = __m128i;
  static constexpr int kWidth = 8;
  static V load(const short* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
  static void store(short* p, V v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
  static V min(V a, V b) { return _mm_min_epi16(a, b); }
  static V max(V a, V b) { return _mm_max_epi16(a, b); }
};

// Median of M lanes-wide values by odd-even transposition: after M rounds
// of compare-exchange the values stand in order, lane by lane. Exchanges
// that cannot reach the middle place are kept: the count is small and the
// network stays obviously a sort.
template <class L, int M>
typename L::V medianOf(typename L::V (&v)[M]) {
  if constexpr (M == 3) {
    return L::min(L::max(v[0], v[1]), L::max(v[2], L::min(v[0], v[1])));
  } else {
    for (int round = 0; round < M; ++round) {
      for (int i = round & 1; i + 1 < M; i += 2) {
        const typename L::V lo = L::min(v[i], v[i + 1]);
        v[i + 1] = L::max(v[i], v[i + 1]);
        v[i] = lo;
      }
    }
    return v[M / 2];
  }
}

// Masks 3 to 9, in place. The extended signal passes through a small
// window buffer in blocks of kBlock outputs; the window keeps the 2*half
// old samples that the next block needs after its outputs overwrote them.
template <class T, int M>
void medianSmall(T* x, int len) {
  using L = Lanes<T>;
  constexpr int kHalf = M / 2;
  constexpr int kBlock = 64;
  T window[kBlock + 2 * kHalf];
  T out[kBlock];
  for (int j = 0; j < 2 * kHalf; ++j) window[j] = x[clampIndex(j - kHalf, len)];
  for (int start = 0; start < len; start += kBlock) {
    // Samples entering this block lie at start+half on, not yet written.
    const int first = start + kHalf;
    if (first + kBlock <= len) {
      std::memcpy(window + 2 * kHalf, x + first, sizeof(T) * kBlock);
    } else {
      for (int j = 0; j < kBlock; ++j) window[2 * kHalf + j] = x[clampIndex(first + j, len)];
    }
    for (int j = 0; j < kBlock; j += L::kWidth) {
      typename L::V v[M];
      for (int k = 0; k < M; ++k) v[k] = L::load(window + j + k);
      L::store(out + j, medianOf<L, M>(v));
    }
    std::memcpy(x + start, out, sizeof(T) * std::min(kBlock, len - start));
    std::memmove(window, window + kBlock, sizeof(T) * 2 * kHalf);
  }
}

// Equal in the order's sense; a NaN is equal to nothing, so the search for
// a leaving value passes over it.
template <class T>
bool sameRank(T a, T b) {
  return !(a < b) && !(a > b) && a == a;
}

// Working arrays of the sorted-window method: two of `mask` elements, each
// rounded up to a multiple of four.
template <class T>
struct Work {
  T* sorted = nullptr;
  T* fifo = nullptr;
  ~Work() {
    ryxFree(sorted);
    ryxFree(fifo);
  }
  bool take(int mask) {
    const std::int64_t room = (std::int64_t{mask} + 3) & ~std::int64_t{3};
    if (room * static_cast<std::int64_t>(sizeof(T)) > INT_MAX) return false;  // beyond the allocator's counts
    sorted = allocArray<T>(static_cast<int>(room));
    fifo = allocArray<T>(static_cast<int>(room));
    return sorted != nullptr && fifo != nullptr;
  }
};

// The sorted-window method.
template <class T>
void medianGeneral(T* x, int len, int mask, T* sorted, T* fifo) {
  const int half = mask / 2;
  for (int k = 0; k < mask; ++k) fifo[k] = sorted[k] = x[clampIndex(k - half, len)];
  for (int pass = mask - 1; pass > 0; --pass) {
    for (int k = 0; k < pass; ++k) {
      if (sorted[k] > sorted[k + 1]) std::swap(sorted[k], sorted[k + 1]);
    }
  }
  int p = 0;
  for (int i = 0; i < len; ++i) {
    x[i] = sorted[half];
    if (i + 1 == len) break;
    // The window of output i+1 loses fifo[p] and gains the sample half+1
    // ahead of i, which no output has overwritten yet.
    const T entering = x[clampIndex(i + half + 1, len)];
    int at = 0;
    while (at < mask - 1 && !sameRank(sorted[at], fifo[p])) ++at;
    fifo[p] = entering;
    p = p + 1 == mask ? 0 : p + 1;
    if (entering < sorted[at]) {
      for (; at > 0 && sorted[at - 1] > entering; --at) sorted[at] = sorted[at - 1];
    } else {
      for (; at < mask - 1 && sorted[at + 1] < entering; ++at) sorted[at] = sorted[at + 1];
    }
    sorted[at] = entering;
  }
}

// Once half reaches len-1 every window holds all samples, plus copies of
// the two ends whose counts grow together with half while their difference
// stays len-1-2i; adding one copy of each end leaves the middle rank on the
// same value. So a mask beyond 2*len-1 acts as 2*len-1, which bounds the
// working arrays and the time by the data rather than by maskSize.
// 0 when there is nothing to do.
inline int effectiveMask(int len, int maskSize) {
  const int odd = (maskSize & 1) != 0 ? maskSize : maskSize - 1;  // no overflow at INT_MAX
  if (odd <= 1 || len < 3) return 0;
  return static_cast<int>(std::min<std::int64_t>(odd, 2 * std::int64_t{len} - 1));
}

// Filters x in place (after copying src there when src differs). The
// working arrays are taken before anything is written, so a refusal
// leaves x as it was.
template <class T>
void median(const char* name, const T* src, T* x, int len, int maskSize) {
  const int mask = effectiveMask(len, maskSize);
  Work<T> work;
  if (mask > 9 && !work.take(mask)) {
    reportNoMem({name, kStem}, "out of memory");
    return;
  }
  if (src != x) std::memmove(x, src, sizeof(T) * static_cast<std::size_t>(len));
  switch (mask) {
    case 0: return;
    case 3: medianSmall<T, 3>(x, len); return;
    case 5: medianSmall<T, 5>(x, len); return;
    case 7: medianSmall<T, 7>(x, len); return;
    case 9: medianSmall<T, 9>(x, len); return;
    default: medianGeneral(x, len, mask, work.sorted, work.fifo);
  }
}

template <class T>
void filter1(const char* name, T* inout, int len, int maskSize) {
  if (!passFirst({name, kStem}, {{len < 1, "len<=0"}, {inout == nullptr, "inout==0"}, {maskSize < 1, "masksize<=0"}}))
    return;
  median(name, inout, inout, len, maskSize);
}

// dst receives the source even where nothing is filtered (mask 1, fewer
// than three samples).
template <class T>
void filter2(const char* name, const T* src, T* dst, int len, int maskSize) {
  if (!passFirst({name, kStem},
                 {{len < 1, "len<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}, {maskSize < 1, "masksize<=0"}}))
    return;
  median(name, src, dst, len, maskSize);
}

}  // namespace
}  // namespace ryx::rate

using ryx::rate::filter1;
using ryx::rate::filter2;

extern "C" {

RYXAPI void ryxsbMedianFilter1(float* x, int n, int m) { filter1(__func__, x, n, m); }
RYXAPI void ryxdbMedianFilter1(double* x, int n, int m) { filter1(__func__, x, n, m); }
RYXAPI void ryxwbMedianFilter1(short* x, int n, int m) { filter1(__func__, x, n, m); }
RYXAPI void ryxsbMedianFilter2(const float* s, float* d, int n, int m) { filter2(__func__, s, d, n, m); }
RYXAPI void ryxdbMedianFilter2(const double* s, double* d, int n, int m) { filter2(__func__, s, d, n, m); }
RYXAPI void ryxwbMedianFilter2(const short* s, short* d, int n, int m) { filter2(__func__, s, d, n, m); }

}  // extern "C"
