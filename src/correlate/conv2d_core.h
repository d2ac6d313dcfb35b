// Two-dimensional convolution of row-major arrays: the method rule and the
// methods, once over float and double.
#pragma once

#include "frame/checks.h"
#include "correlate/hartley.h"

namespace ryx::corr {

enum class Conv2dMethod { kDirect, kOneDim, kOverlap, kHartley };

// The method for x of xRows x xCols and h of hRows x hCols, tried in order.
Conv2dMethod chooseConv2d(int xCols, int xRows, int hCols, int hRows);

// Least power of two at or above n, doubled.
inline long long up2(long long n) {
  long long p = 1;
  while (p < n) p <<= 1;
  return 2 * p;
}

// Per-type names of the internal routines that report.
struct Conv2dNames {
  const char* entry;
  const char* hartley;
  const char* overlap;
};

constexpr const char* kConv2dStem = "ryxcnv2d";
constexpr const char* kNoMem2d = "\nMemory allocation problem\n";

// Direct: y cleared, the array with more rows outer.
template <class T>
void conv2dDirect(const T* x, int xCols, int xRows, const T* h, int hCols, int hRows, T* y) {
  const bool swap = hRows > xRows;
  const T* a = swap ? h : x;
  const T* b = swap ? x : h;
  const int ac = swap ? hCols : xCols, ar = swap ? hRows : xRows;
  const int bc = swap ? xCols : hCols, br = swap ? xRows : hRows;
  const long long yc = static_cast<long long>(xCols) + hCols - 1;
  const long long n = yc * (static_cast<long long>(xRows) + hRows - 1);
  for (long long i = 0; i < n; ++i) y[i] = T{};
  for (int r = 0; r < ar; ++r)
    for (int c = 0; c < ac; ++c) {
      const T v = a[static_cast<long long>(r) * ac + c];
      for (int i = 0; i < br; ++i) {
        T* row = y + (r + i) * yc + c;
        const T* hb = b + static_cast<long long>(i) * bc;
        for (int j = 0; j < bc; ++j) row[j] += v * hb[j];
      }
    }
}

// Copies a rows x cols block of `src` (row length srcCols, starting at
// (r0, c0), zero outside 0..srcRows-1 / 0..srcCols-1) into an R x C array
// at its top left, times `scale`, zero elsewhere.
template <class T>
void placeBlock(T* dst, int R, int C, const T* src, int srcCols, int srcRows, long long r0, long long c0, int rows,
                int cols, T scale) {
  for (int r = 0; r < R; ++r)
    for (int c = 0; c < C; ++c) {
      const long long sr = r0 + r, sc = c0 + c;
      const bool in = r < rows && c < cols && sr >= 0 && sr < srcRows && sc >= 0 && sc < srcCols;
      dst[static_cast<long long>(r) * C + c] = in ? src[sr * srcCols + sc] * scale : T{};
    }
}

// The working arrays of the Hartley methods: two R x C arrays, a line and
// the tables of both lengths.
template <class T>
struct HartleyWork {
  T* a = nullptr;
  T* b = nullptr;
  T* line = nullptr;
  HartleyTable rows, cols;
  bool take(Scratch& s, int R, int C) {
    a = s.take<T>(static_cast<long long>(R) * C);
    b = s.take<T>(static_cast<long long>(R) * C);
    line = s.take<T>(std::max(R, C));
    return s.ok() && rows.take(s, R) && cols.take(s, C);
  }
};

// Whole-array Hartley: both arrays padded to R x C (h scaled by 1/(R C)),
// transformed, multiplied, transformed back; the top left of the result.
template <class T>
void conv2dHartley(const Conv2dNames& nm, const T* x, int xCols, int xRows, const T* h, int hCols, int hRows,
                   T* y) {
  const Site site{nm.hartley, kConv2dStem};
  const int R = static_cast<int>(up2(std::max(xRows, hRows))), C = static_cast<int>(up2(std::max(xCols, hCols)));
  Scratch s;
  HartleyWork<T> w;
  if (!w.take(s, R, C)) return reportNoMem(site, kNoMem2d);
  T* a = w.a;
  T* b = w.b;
  const HartleyTable& tr = w.rows;
  const HartleyTable& tc = w.cols;
  T* work = w.line;
  placeBlock(a, R, C, x, xCols, xRows, 0, 0, xRows, xCols, T{1});
  placeBlock(b, R, C, h, hCols, hRows, 0, 0, hRows, hCols, static_cast<T>(1.0 / (static_cast<double>(R) * C)));
  hartley2d(a, tr, tc, work);
  hartley2d(b, tr, tc, work);
  hartleyProduct(a, b, R, C);
  hartley2d(a, tr, tc, work);
  const long long yr = static_cast<long long>(xRows) + hRows - 1, yc = static_cast<long long>(xCols) + hCols - 1;
  for (long long r = 0; r < yr; ++r)
    for (long long c = 0; c < yc; ++c) y[r * yc + c] = a[r * C + c];
}

// Overlap-add blocks: the bigger array (by area) is the data, cut into
// tiles; each tile is convolved with the once-transformed kernel through
// the Hartley passes and added into y at its place.
template <class T>
void conv2dOverlap(const Conv2dNames& nm, const T* x, int xCols, int xRows, const T* h, int hCols, int hRows,
                   T* y) {
  const Site site{nm.overlap, kConv2dStem};
  const bool swap = static_cast<long long>(hRows) * hCols > static_cast<long long>(xRows) * xCols;
  const T* d = swap ? h : x;
  const T* k = swap ? x : h;
  const int dc = swap ? hCols : xCols, dr = swap ? hRows : xRows;
  const int kc = swap ? xCols : hCols, kr = swap ? xRows : hRows;
  // Block and tile per dimension: the kernel's up2, or one tile covering
  // all of the data when it would not reach two tiles.
  auto dims = [](int data, int kern, int& block, int& tile) {
    block = static_cast<int>(up2(kern));
    tile = block - kern + 1;
    if (data < 2 * tile) {
      long long p = 2;
      while (p < static_cast<long long>(data) + kern - 1) p <<= 1;
      block = static_cast<int>(p);
      tile = data;
    }
  };
  int R, C, tileR, tileC;
  dims(dr, kr, R, tileR);
  dims(dc, kc, C, tileC);
  Scratch s;
  HartleyWork<T> w;
  if (!w.take(s, R, C)) return reportNoMem(site, kNoMem2d);
  T* a = w.a;
  T* b = w.b;
  const HartleyTable& tr = w.rows;
  const HartleyTable& tc = w.cols;
  T* work = w.line;
  placeBlock(b, R, C, k, kc, kr, 0, 0, kr, kc, static_cast<T>(1.0 / (static_cast<double>(R) * C)));
  hartley2d(b, tr, tc, work);
  const long long yr = static_cast<long long>(xRows) + hRows - 1, yc = static_cast<long long>(xCols) + hCols - 1;
  for (long long i = 0; i < yr * yc; ++i) y[i] = T{};
  for (long long r0 = 0; r0 < dr; r0 += tileR)
    for (long long c0 = 0; c0 < dc; c0 += tileC) {
      placeBlock(a, R, C, d, dc, dr, r0, c0, tileR, tileC, T{1});
      hartley2d(a, tr, tc, work);
      hartleyProduct(a, b, R, C);
      hartley2d(a, tr, tc, work);
      const long long rows = std::min<long long>(tileR + kr - 1, yr - r0);
      const long long cols = std::min<long long>(tileC + kc - 1, yc - c0);
      for (long long r = 0; r < rows; ++r)
        for (long long c = 0; c < cols; ++c) y[(r0 + r) * yc + c0 + c] += a[r * C + c];
    }
}

}  // namespace ryx::corr
