// Operation counts that decide between direct sums and block transforms in
// the correlation and 2-D filtering routines. Integer arithmetic as
// written (the halvings are integer divisions); costs are compared in
// double, so large sizes do not wrap.
#pragma once

namespace ryx::corr {

inline long long ilog2(long long n) {
  long long v = 0;
  while (n >= 2) {
    n >>= 1;
    ++v;
  }
  return v;
}
inline long long upPow2(long long n) {
  long long p = 1;
  while (p < n) p <<= 1;
  return p;
}
// A complex transform of n points.
inline double opF(long long n) { return 24.0 * static_cast<double>((ilog2(n) * n) / 2); }
// Real-spectrum recombination and the complex products of n points.
inline double opG(long long n) { return n == 1 ? 8.0 : static_cast<double>((n / 2 - 1) * 36 + 8); }
inline double opH(long long n) { return n == 1 ? 8.0 : static_cast<double>((n / 2 - 1) * 40 + 8); }

// True when the 2-D filter's block method is cheaper than the direct sum.
bool filter2dBlockWins(int xCols, int xRows, int hCols, int hRows);

}  // namespace ryx::corr
