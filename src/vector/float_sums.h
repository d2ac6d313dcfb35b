// Float sums in four float lanes, emptied into extended precision. Used by
// the float Sum, Mean and StdDev routines.
#pragma once

#include <cstdint>

namespace ryx::stats {

// Extended totals per part: part 0 alone for real arrays, parts 0 and 1
// (real, imaginary) for interleaved complex ones.
struct ExtTotals {
  long double sum[2] = {0.0L, 0.0L};
  long double squares[2] = {0.0L, 0.0L};
};

// Sums `count` floats from p, of `period` parts each (1 real, 2 complex).
// The head goes singly, whole elements at a time, until p is 16-byte
// aligned; the body in strips of 32768 elements, each strip summed in four
// float lanes whose totals go into the extended accumulators; the last
// floats singly. With `squares`, the float squares x*x are summed the same
// way beside the values.
void laneSums(const float* p, std::int64_t count, int period, bool squares, ExtTotals& t);

}  // namespace ryx::stats
