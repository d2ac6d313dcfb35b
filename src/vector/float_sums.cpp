// Float lane sums on SSE2 (see float_sums.h).
#include "vector/float_sums.h"

#include <emmintrin.h>

namespace ryx::stats {
namespace {

constexpr std::int64_t kStrip = 32768;

inline void single(float x, int part, bool squares, ExtTotals& t) {
  t.sum[part] += x;
  if (squares) t.squares[part] += static_cast<long double>(x) * x;
}

// Lanes (x0, x1, x2, x3) into the part totals: all four into part 0 for
// real data, the even lanes into part 0 and the odd ones into part 1 for
// interleaved complex data.
inline void empty(__m128 lanes, int period, long double* total) {
  alignas(16) float v[4];
  _mm_store_ps(v, lanes);
  if (period == 1) {
    total[0] += (static_cast<long double>(v[0]) + v[1]) + (static_cast<long double>(v[2]) + v[3]);
  } else {
    total[0] += static_cast<long double>(v[0]) + v[2];
    total[1] += static_cast<long double>(v[1]) + v[3];
  }
}

template <bool kSquares>
void body(const float* p, std::int64_t floats, int period, ExtTotals& t) {
  const std::int64_t stripFloats = kStrip * period;
  for (std::int64_t s = 0; s < floats; s += stripFloats) {
    const std::int64_t end = floats - s < stripFloats ? floats : s + stripFloats;
    __m128 sum = _mm_setzero_ps(), sq = _mm_setzero_ps();
    for (std::int64_t i = s; i < end; i += 4) {
      const __m128 x = _mm_load_ps(p + i);
      sum = _mm_add_ps(sum, x);
      if (kSquares) sq = _mm_add_ps(sq, _mm_mul_ps(x, x));
    }
    empty(sum, period, t.sum);
    if (kSquares) empty(sq, period, t.squares);
  }
}

}  // namespace

void laneSums(const float* p, std::int64_t count, int period, bool squares, ExtTotals& t) {
  const std::int64_t floats = count * period;
  // Head: whole elements until the address is a multiple of 16; an address
  // that no whole element step can align (a float not on a 4-byte boundary,
  // a complex not on an 8-byte one) is summed singly throughout.
  const auto addr = reinterpret_cast<std::uintptr_t>(p);
  std::int64_t head = 0;
  if (addr % (4u * period) == 0) head = static_cast<std::int64_t>((16 - addr % 16) % 16 / 4);
  else head = floats;
  if (head > floats) head = floats;
  for (std::int64_t i = 0; i < head; ++i) single(p[i], static_cast<int>(i % period), squares, t);
  const std::int64_t bodyFloats = (floats - head) & ~std::int64_t{3};
  if (squares) body<true>(p + head, bodyFloats, period, t);
  else body<false>(p + head, bodyFloats, period, t);
  for (std::int64_t i = head + bodyFloats; i < floats; ++i) single(p[i], static_cast<int>(i % period), squares, t);
}

}  // namespace ryx::stats
