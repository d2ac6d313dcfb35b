// Smallest and largest element (source group "ryxvec"), and the same with
// the index of its first occurrence (source group "ryxvece").
//
// Min and Max run on SSE2 lanes with the hardware minimum and maximum
// (four floats, two doubles, eight 16-bit words per register), then fold
// the lanes and the tail with the same rule: op(acc, x) keeps acc only when
// it compares strictly better, so a NaN behaves as in the hardware
// instruction. The Ext forms scan for the extreme and keep the lowest index
// among equal values; a null index falls back on Min or Max. Checks stop at
// the first failure with a result of 0.
#include <emmintrin.h>

#include "frame/checks.h"

namespace ryx::stats {
namespace {

constexpr const char* kStemVec = "ryxvec";
constexpr const char* kStemExt = "ryxvece";

struct F32 {
  using V = __m128;
  static constexpr int kWidth = 4;
  static V load(const float* p) { return _mm_loadu_ps(p); }
  static V min(V a, V b) { return _mm_min_ps(a, b); }
  static V max(V a, V b) { return _mm_max_ps(a, b); }
  static void store(float* p, V v) { _mm_storeu_ps(p, v); }
};
struct F64 {
  using V = __m128d;
  static constexpr int kWidth = 2;
  static V load(const double* p) { return _mm_loadu_pd(p); }
  static V min(V a, V b) { return _mm_min_pd(a, b); }
  static V max(V a, V b) { return _mm_max_pd(a, b); }
  static void store(double* p, V v) { _mm_storeu_pd(p, v); }
};
struct I16 {
  using V = __m128i;
  static constexpr int kWidth = 8;
  static V load(const short* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
  static V min(V a, V b) { return _mm_min_epi16(a, b); }
  static V max(V a, V b) { return _mm_max_epi16(a, b); }
  static void store(short* p, V v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
};

template <class T> struct LanesOf;
template <> struct LanesOf<float> { using type = F32; };
template <> struct LanesOf<double> { using type = F64; };
template <> struct LanesOf<short> { using type = I16; };

// The scalar form of the lane rule: acc when strictly better, else x.
template <bool kMax, class T>
inline T pick(T acc, T x) {
  if constexpr (kMax) return acc > x ? acc : x;
  else return acc < x ? acc : x;
}

template <bool kMax, class T>
T extreme(const T* v, int n) {
  using L = typename LanesOf<T>::type;
  constexpr int w = L::kWidth;
  T acc = v[0];
  int i = 0;
  if (n >= w) {
    typename L::V lanes = L::load(v);
    for (i = w; i + w <= n; i += w) lanes = kMax ? L::max(lanes, L::load(v + i)) : L::min(lanes, L::load(v + i));
    T part[w];
    L::store(part, lanes);
    acc = part[0];
    for (int k = 1; k < w; ++k) acc = pick<kMax>(acc, part[k]);
  }
  for (; i < n; ++i) acc = pick<kMax>(acc, v[i]);
  return acc;
}

template <bool kMax, class T>
T minMax(const char* name, const T* vec, int len) {
  if (!passFirst({name, kStemVec}, {{len <= 0, "len<=0"}, {vec == nullptr, "vec==0"}})) return T{};
  return extreme<kMax>(vec, len);
}

template <bool kMax, class T>
T minMaxExt(const char* name, const T* vec, int len, int* index) {
  if (!passFirst({name, kStemExt}, {{len <= 0, "len<=0"}, {vec == nullptr, "vec==0"}})) return T{};
  if (index == nullptr) return extreme<kMax>(vec, len);
  T best = vec[0];
  int at = 0;
  for (int i = 1; i < len; ++i) {
    if (kMax ? vec[i] > best : vec[i] < best) best = vec[i], at = i;
  }
  *index = at;
  return best;
}

constexpr bool Max = true;
constexpr bool Min = false;

}  // namespace
}  // namespace ryx::stats

using namespace ryx::stats;

extern "C" {

RYXAPI float ryxsMax(const float* vec, int len) { return minMax<Max>(__func__, vec, len); }
RYXAPI float ryxsMin(const float* vec, int len) { return minMax<Min>(__func__, vec, len); }
RYXAPI double ryxdMax(const double* vec, int len) { return minMax<Max>(__func__, vec, len); }
RYXAPI double ryxdMin(const double* vec, int len) { return minMax<Min>(__func__, vec, len); }
RYXAPI short ryxwMax(const short* vec, int len) { return minMax<Max>(__func__, vec, len); }
RYXAPI short ryxwMin(const short* vec, int len) { return minMax<Min>(__func__, vec, len); }

RYXAPI float ryxsMaxExt(const float* vec, int len, int* index) { return minMaxExt<Max>(__func__, vec, len, index); }
RYXAPI float ryxsMinExt(const float* vec, int len, int* index) { return minMaxExt<Min>(__func__, vec, len, index); }
RYXAPI double ryxdMaxExt(const double* vec, int len, int* index) { return minMaxExt<Max>(__func__, vec, len, index); }
RYXAPI double ryxdMinExt(const double* vec, int len, int* index) { return minMaxExt<Min>(__func__, vec, len, index); }
RYXAPI short ryxwMaxExt(const short* vec, int len, int* index) { return minMaxExt<Max>(__func__, vec, len, index); }
RYXAPI short ryxwMinExt(const short* vec, int len, int* index) { return minMaxExt<Min>(__func__, vec, len, index); }

}  // extern "C"
