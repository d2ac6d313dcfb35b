// What the wavelet set-up and transform entries share: the source group,
// the report texts, and per precision the record's tag and tap type.
#pragma once

#include <cstdint>

#include "ryxcore.h"
#include "ryxcore/wavelet.h"

namespace ryx::wavelet {

constexpr const char* kStem = "ryxwlt";
constexpr const char* kNullState = "'NULL' pointer in 'wtState' argument was passed!";
constexpr const char* kBadLevel = "Not correct 'level' argument was passed! Level must be  greater than or equal 0!";

// Precisions by sample type: the record's `core` tag and the type its
// taps are kept in (16-bit data runs the float kernels).
template <class T>
struct Form;
template <>
struct Form<double> {
  using Tap = double;
  static constexpr int core = 2;
};
template <>
struct Form<float> {
  using Tap = float;
  static constexpr int core = 1;
};
template <>
struct Form<short> {
  using Tap = float;
  static constexpr int core = 4;
};

// Working array, in elements of the kernels' type (double for d, float
// for s and w): the data and room for the widest filter on both sides; the
// 16-bit form adds float copies of its input and its output.
inline std::uint64_t workCount(int core, int len, int lenDec, int maxFilt) {
  const std::uint64_t base = std::uint64_t(len) + 2 * std::uint64_t(maxFilt);
  if (core != 4) return base;
  const std::uint64_t side = std::uint64_t(len > lenDec ? len : lenDec);
  return base + 2 * side;
}

}  // namespace ryx::wavelet
