// Integer rules shared by the 16-bit filter tests: wrap and saturation to
// 16 bits, the tap exponent (written out from its definition, in long
// double), seeded samples and random block lengths over a stream.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

namespace int16model {

using i64 = long long;

inline short wrap(i64 v) { return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint64_t>(v))); }
inline short sat(i64 v) { return static_cast<short>(std::clamp<i64>(v, -32768, 32767)); }
inline std::int32_t wrap32(i64 v) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(v)); }

// The power of two that puts the sum of |taps| between 16383.5 and 32767.
inline int tapExp(const std::vector<float>& t) {
  long double s = 0;
  for (float v : t) s += std::fabs(static_cast<long double>(v));
  int e = 0;
  if (!(s > 0)) return 0;
  for (; s > 32767; s /= 2) --e;
  for (; 2 * s < 32767; s *= 2) ++e;
  return e;
}

inline std::vector<short> randomSamples(std::mt19937& rng, size_t n, int amp) {
  std::uniform_int_distribution<int> d(-amp, amp);
  std::vector<short> x(n);
  for (short& s : x) s = static_cast<short>(d(rng));
  return x;
}

// Blocks of 1..most units over `total` units; `call(first, count)`.
inline void inBlocks(std::mt19937& rng, size_t total, int most, const std::function<void(size_t, int)>& call) {
  for (size_t in = 0; in < total;) {
    const int n = std::min<int>(std::uniform_int_distribution<int>(1, most)(rng), static_cast<int>(total - in));
    call(in, n);
    in += n;
  }
}

}  // namespace int16model
