// Integer models of the 16-bit transform cores, written out from their
// description in 64-bit arithmetic: one radix-4 decimation-in-frequency
// walk shared by the 32-bit core (wrapping sums, split Q14 product, exact
// -i swap and 11585 constants at column M/8) and the fast core (saturating
// sums, truncated twiddles of W_1024); the output steps; the real and CCS
// recombinations of both cores; the packed layouts.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "fft_reference.h"
#include "ryxcore.h"
#include "ryxcore/transform_int16.h"
#include "vector/scale_narrow.h"

namespace m16 {

using V = std::vector<std::int64_t>;  // interleaved re, im
using S = std::vector<short>;

inline std::int64_t w32(std::int64_t v) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(v)); }
inline std::int64_t sat(std::int64_t v) { return std::clamp<std::int64_t>(v, -32768, 32767); }
inline std::int64_t low16(std::int64_t v) { return static_cast<std::int16_t>(static_cast<std::uint16_t>(v)); }
inline int guard(int order) { return order < 10 ? 16 - order : 6; }

// (c, s) of W_n^k: Q14 rounded half away from zero, or truncated toward
// zero (the fast core's W_1024^k, exact at the quarter turns). Rows are
// computed once per (n, kind) and kept: the sweeps ask for them often.
inline void q14(std::int64_t k, std::int64_t n, int& c, int& s, bool truncated = false) {
  static std::map<std::pair<std::int64_t, bool>, std::vector<std::pair<int, int>>> rows;
  auto& row = rows[{n, truncated}];
  if (row.empty())
    for (std::int64_t j = 0; j < n; ++j) {
      const long double a = 2 * ryxtest::kPiL * static_cast<long double>(j) / static_cast<long double>(n);
      int cj = static_cast<int>(truncated ? 16384 * cosl(a) : llroundl(16384 * cosl(a)));
      int sj = static_cast<int>(truncated ? 16384 * sinl(a) : llroundl(16384 * sinl(a)));
      if (truncated && 4 * j % n == 0)
        cj = j == 0 ? 16384 : 2 * j == n ? -16384 : 0, sj = 4 * j == n ? 16384 : 4 * j == 3 * n ? -16384 : 0;
      row.emplace_back(cj, sj);
    }
  c = row[static_cast<std::size_t>(k)].first, s = row[static_cast<std::size_t>(k)].second;
}

// (re, im) times c - i s. 32-bit: x*w over 2^14 by halves, the unsigned
// low words halved, times w, summed, (+4096 when rounding) shifted by 13;
// the signed high words times w, summed, times 4; wrapped. 16-bit: the
// 32-bit sums shifted by 14 and saturated.
inline void rot(std::int64_t& re, std::int64_t& im, int c, int s, bool fast, bool round = false) {
  auto split = [&](std::int64_t x, int w0, std::int64_t y, int w1) {
    const std::int64_t lo = ((x & 0xFFFF) >> 1) * w0 + ((y & 0xFFFF) >> 1) * w1 + (round ? 4096 : 0);
    return w32((lo >> 13) + 4 * ((w32(x) >> 16) * w0 + (w32(y) >> 16) * w1));
  };
  const std::int64_t r = fast ? sat((re * c + im * s) >> 14) : split(re, c, im, s);
  im = fast ? sat((im * c - re * s) >> 14) : split(re, -s, im, c);
  re = r;
}

// The transform of either core, natural in, bit-reversed out.
inline void core(V& x, std::int64_t n, int sign, bool fast) {
  auto add = [fast](std::int64_t a, std::int64_t b) { return fast ? sat(a + b) : w32(a + b); };
  auto negIm = [&] { for (std::int64_t i = 1; i < 2 * n; i += 2) x[i] = sat(-x[i]); };
  const bool small = fast && n <= 4;  // one butterfly, the inverse by signs
  if (sign < 0 && !fast)
    for (std::int64_t k = 1; k < n / 2; ++k) std::swap(x[2 * k], x[2 * (n - k)]), std::swap(x[2 * k + 1], x[2 * (n - k) + 1]);
  if (sign < 0 && fast && !small) negIm();
  std::int64_t M = n;
  for (; M > 2; M /= 4)
    for (std::int64_t g = 0; g < n; g += M)
      for (std::int64_t k = 0; k < M / 4; ++k) {
        std::int64_t* e[4];
        for (int q = 0; q < 4; ++q) e[q] = &x[2 * (g + k + q * M / 4)];
        std::int64_t s[2], d[2], t[2], u[2], y[4][2];
        for (int p = 0; p < 2; ++p) {
          s[p] = add(e[0][p], e[2][p]), d[p] = add(e[0][p], -e[2][p]);
          t[p] = add(e[1][p], e[3][p]), u[p] = add(e[1][p], -e[3][p]);
          y[0][p] = add(s[p], t[p]), y[1][p] = add(s[p], -t[p]);
        }
        const int j = small && sign < 0 ? 3 : 2;  // y1 = (a-c) - i(b-d) at place 2
        y[j][0] = add(d[0], u[1]), y[j][1] = add(d[1], -u[0]);
        y[5 - j][0] = add(d[0], -u[1]), y[5 - j][1] = add(d[1], u[0]);
        const int expo[4] = {0, 2, 1, 3};
        for (int q = 1; q < 4 && k > 0; ++q) {
          int c, sn;
          if (!fast && 8 * k == M) {
            if (q == 1) {
              std::swap(y[1][0], y[1][1]), y[1][1] = w32(-y[1][1]);
              continue;
            }
            c = q == 2 ? 11585 : -11585, sn = 11585;
          } else {
            q14(expo[q] * k * (fast ? 1024 / M : n / M), fast ? 1024 : n, c, sn, fast);
          }
          rot(y[q][0], y[q][1], c, sn, fast);
        }
        for (int q = 0; q < 4; ++q) e[q][0] = y[q][0], e[q][1] = y[q][1];
      }
  if (M == 2)
    for (std::int64_t j = 0; j < 2 * n; j += 4)
      for (int p = 0; p < 2; ++p) {
        const std::int64_t a = x[j + p], b = x[j + 2 + p];
        x[j + p] = add(a, b), x[j + 2 + p] = add(a, -b);
      }
  if (sign < 0 && fast && !small) negIm();
}

// Output step of the 32-bit core: without bit 4 one shift by t plus the
// fixed factor, rounded half up, then clamp (bit 1) or low 16 bits; with
// bit 4 a rounded shift by t and the shared array narrowing.
inline S outputStep(const V& x, int t, int mode, int* factor) {
  auto shift = [](std::int64_t v, std::int64_t s) {
    if (s > 0) return w32(v + (std::int64_t{1} << (std::min<std::int64_t>(s, 31) - 1))) >> std::min<std::int64_t>(s, 31);
    return s < 0 ? (-s > 31 ? 0 : w32(v * (std::int64_t{1} << -s))) : v;
  };
  S out(x.size());
  const bool autoScale = mode & 4;
  const std::int64_t total = t + (!autoScale && (mode & 2) && factor ? *factor : 0);
  std::vector<int> w(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    const std::int64_t v = shift(x[i], total);
    w[i] = static_cast<int>(v), out[i] = static_cast<short>((mode & 1) ? sat(v) : low16(v));
  }
  if (autoScale) ownScaleArrayI32(w.data(), out.data(), static_cast<int>(w.size()), mode, factor);
  return out;
}

// The fast core's closing shift: fixed factor plus order for a scaled
// inverse, right arithmetic or left keeping the low 16 bits; auto reports 0.
inline void fastShift(S& x, int order, int flags, int mode, int* factor) {
  std::int64_t s = (mode & 2) && factor ? *factor : 0;
  if ((mode & 4) && factor) *factor = 0;
  if ((flags & RYX_Inverse) && !(flags & RYX_KeepScale)) s += order;
  for (short& v : x) v = static_cast<short>(s >= 0 ? v >> std::min<std::int64_t>(s, 15) : low16(-s >= 16 ? 0 : v * (1 << -s)));
}

// Complex element i moved to its bit-reversed place.
template <class T>
std::vector<T> reversed(const std::vector<T>& x, int bits) {
  std::vector<T> r(x.size());
  for (std::size_t i = 0; i < x.size() / 2; ++i) {
    const std::size_t j = ryxtest::reverseBits(static_cast<std::uint32_t>(i), bits);
    r[2 * j] = x[2 * i], r[2 * j + 1] = x[2 * i + 1];
  }
  return r;
}

// Packed layouts: 0 RCCs, 1 RCPack, 2 RCPerm. Place of X[k] component p
// (k from 1 to N/2-1), and of X[N/2].
inline std::size_t placeOf(int layout, std::size_t k, int p) { return (layout == 1 ? 2 * k - 1 : 2 * k) + p; }
inline std::size_t nyquistAt(int layout, std::size_t n) { return layout == 0 ? n : layout == 1 ? n - 1 : 1; }

}  // namespace m16
