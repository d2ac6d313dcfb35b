// Integer models of the 16-bit transform cores, written out from their
// description with 64-bit arithmetic and explicit wrapping, for bit-exact
// comparison with the library: the Q14 split product, the radix-4
// decimation-in-frequency 32-bit core, the saturating fast core, the
// output step, and the real/CCS recombinations of both.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "fft_reference.h"
#include "ryxcore.h"
#include "ryxcore/transform_int16.h"
#include "vector/scale_narrow.h"

namespace m16 {

using V = std::vector<std::int64_t>;  // interleaved re, im

inline std::int64_t w32(std::int64_t v) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(v)); }
inline std::int64_t sat(std::int64_t v) { return std::clamp<std::int64_t>(v, -32768, 32767); }
inline std::int64_t low16(std::int64_t v) { return static_cast<std::int16_t>(static_cast<std::uint16_t>(v)); }

// Q14 row of W_n^k: c, s rounded half away from zero.
inline void q14(std::int64_t k, std::int64_t n, int& c, int& s) {
  const long double a = 2 * ryxtest::kPiL * static_cast<long double>(k) / static_cast<long double>(n);
  c = static_cast<int>(llroundl(16384 * cosl(a)));
  s = static_cast<int>(llroundl(16384 * sinl(a)));
}

// x*w0 + y*w1 over 2^14 by halves: low words (unsigned, halved) times w
// summed and shifted right by 13 (+4096 first when rounding), high words
// (signed) times w summed and times 4, all wrapped to 32 bits.
inline std::int64_t split(std::int64_t x, int w0, std::int64_t y, int w1, bool round) {
  const std::int64_t lx = (x & 0xFFFF) >> 1, ly = (y & 0xFFFF) >> 1;
  const std::int64_t hx = w32(x) >> 16, hy = w32(y) >> 16;
  const std::int64_t lo = lx * w0 + ly * w1 + (round ? 4096 : 0);
  return w32((lo >> 13) + 4 * (hx * w0 + hy * w1));
}
// (re, im) times c - i s: (re c + im s, im c - re s).
inline void rot32(std::int64_t& re, std::int64_t& im, int c, int s, bool round = false) {
  const std::int64_t r = split(re, c, im, s, round), i = split(re, -s, im, c, round);
  re = r;
  im = i;
}

// The 32-bit core: radix-4 DIF, natural in, bit-reversed out.
inline void int32Core(V& x, std::int64_t n, int sign, int order) {
  if (sign < 0)
    for (std::int64_t k = 1; k < n / 2; ++k) {
      std::swap(x[2 * k], x[2 * (n - k)]);
      std::swap(x[2 * k + 1], x[2 * (n - k) + 1]);
    }
  std::int64_t M = n;
  for (; M > 2; M /= 4) {
    const std::int64_t L = M / 4;
    for (std::int64_t g = 0; g < n; g += M)
      for (std::int64_t k = 0; k < L; ++k) {
        std::int64_t* e[4];
        for (int q = 0; q < 4; ++q) e[q] = &x[2 * (g + k + q * L)];
        std::int64_t y[4][2];
        for (int part = 0; part < 2; ++part) {
          const std::int64_t a = e[0][part], b = e[1][part], c = e[2][part], d = e[3][part];
          y[0][part] = w32(w32(a + c) + w32(b + d));
          y[2][part] = w32(w32(a + c) - w32(b + d));
        }
        const std::int64_t amr = w32(e[0][0] - e[2][0]), ami = w32(e[0][1] - e[2][1]);
        const std::int64_t bmr = w32(e[1][0] - e[3][0]), bmi = w32(e[1][1] - e[3][1]);
        y[1][0] = w32(amr + bmi), y[1][1] = w32(ami - bmr);
        y[3][0] = w32(amr - bmi), y[3][1] = w32(ami + bmr);
        if (M >= 8 && k == M / 8) {
          const std::int64_t r = y[2][0];
          y[2][0] = y[2][1];
          y[2][1] = w32(-r);
          rot32(y[1][0], y[1][1], 11585, 11585);
          rot32(y[3][0], y[3][1], -11585, 11585);
        } else if (k != 0) {
          int c, s;
          q14(2 * k * (n / M), n, c, s), rot32(y[2][0], y[2][1], c, s);
          q14(k * (n / M), n, c, s), rot32(y[1][0], y[1][1], c, s);
          q14(3 * k * (n / M), n, c, s), rot32(y[3][0], y[3][1], c, s);
        }
        // y0 at k, y2 at k+L, y1 at k+2L, y3 at k+3L.
        const int slot[4] = {0, 2, 1, 3};
        for (int q = 0; q < 4; ++q) e[q][0] = y[slot[q]][0], e[q][1] = y[slot[q]][1];
      }
  }
  if (M == 2)
    for (std::int64_t j = 0; j < 2 * n; j += 4)
      for (int part = 0; part < 2; ++part) {
        const std::int64_t a = x[j + part], b = x[j + 2 + part];
        x[j + part] = w32(a + b);
        x[j + 2 + part] = w32(a - b);
      }
  (void)order;
}

// Truncated static twiddle of the fast core, W_1024^j.
inline void fastRow(std::int64_t j, int& c, int& s) {
  const long double a = 2 * ryxtest::kPiL * static_cast<long double>(j) / 1024;
  c = static_cast<int>(16384 * cosl(a));
  s = static_cast<int>(16384 * sinl(a));
  if (j % 256 == 0) c = (j == 0 ? 16384 : j == 512 ? -16384 : 0), s = (j == 256 ? 16384 : j == 768 ? -16384 : 0);
}
inline void rot16(std::int64_t& re, std::int64_t& im, int c, int s) {
  const std::int64_t r = sat((re * c + im * s) >> 14), i = sat((im * c - re * s) >> 14);
  re = r;
  im = i;
}

// The fast core: saturating radix-4 DIF passes; inverse by negating the
// imaginary parts before and after (n of 8 and up).
inline void fastCore(V& x, std::int64_t n, int sign) {
  auto butterfly = [](std::int64_t* e[4], std::int64_t y[4][2], bool inv) {
    std::int64_t ac[2], am[2], bd[2], bm[2];
    for (int p = 0; p < 2; ++p) {
      ac[p] = sat(e[0][p] + e[2][p]), am[p] = sat(e[0][p] - e[2][p]);
      bd[p] = sat(e[1][p] + e[3][p]), bm[p] = sat(e[1][p] - e[3][p]);
      y[0][p] = sat(ac[p] + bd[p]), y[2][p] = sat(ac[p] - bd[p]);
    }
    const std::int64_t mr = sat(am[0] + bm[1]), mi = sat(am[1] - bm[0]);  // (a-c) - i(b-d)
    const std::int64_t pr = sat(am[0] - bm[1]), pi = sat(am[1] + bm[0]);  // (a-c) + i(b-d)
    y[1][0] = inv ? pr : mr, y[1][1] = inv ? pi : mi;
    y[3][0] = inv ? mr : pr, y[3][1] = inv ? mi : pi;
  };
  const int slot[4] = {0, 2, 1, 3};
  std::int64_t y[4][2];
  if (n == 2) {
    for (int p = 0; p < 2; ++p) {
      const std::int64_t a = x[p], b = x[2 + p];
      x[p] = sat(a + b), x[2 + p] = sat(a - b);
    }
    return;
  }
  if (n == 4) {
    std::int64_t* e[4] = {&x[0], &x[2], &x[4], &x[6]};
    butterfly(e, y, sign < 0);
    for (int q = 0; q < 4; ++q) e[q][0] = y[slot[q]][0], e[q][1] = y[slot[q]][1];
    return;
  }
  if (sign < 0)
    for (std::int64_t i = 0; i < n; ++i) x[2 * i + 1] = sat(-x[2 * i + 1]);
  std::int64_t M = n;
  for (; M > 2; M /= 4) {
    const std::int64_t L = M / 4;
    for (std::int64_t g = 0; g < n; g += M)
      for (std::int64_t k = 0; k < L; ++k) {
        std::int64_t* e[4];
        for (int q = 0; q < 4; ++q) e[q] = &x[2 * (g + k + q * L)];
        butterfly(e, y, false);
        for (int q = 1; q < 4; ++q) {
          int c, s;
          fastRow(q * k * (1024 / M), c, s);
          rot16(y[q][0], y[q][1], c, s);
        }
        for (int q = 0; q < 4; ++q) e[q][0] = y[slot[q]][0], e[q][1] = y[slot[q]][1];
      }
  }
  if (M == 2)
    for (std::int64_t j = 0; j < 2 * n; j += 4)
      for (int p = 0; p < 2; ++p) {
        const std::int64_t a = x[j + p], b = x[j + 2 + p];
        x[j + p] = sat(a + b), x[j + 2 + p] = sat(a - b);
      }
  if (sign < 0)
    for (std::int64_t i = 0; i < n; ++i) x[2 * i + 1] = sat(-x[2 * i + 1]);
}

// Output step of the 32-bit core: one shift of t plus the fixed factor,
// rounded half up, then clamp or low 16 bits; under bit 4 a rounded shift
// by t and the shared array narrowing.
inline std::vector<short> outputStep(V x, int t, int mode, int* factor) {
  std::vector<short> out(x.size());
  auto shiftRound = [](std::int64_t v, std::int64_t s) {
    if (s > 0) {
      s = std::min<std::int64_t>(s, 31);
      return w32(v + (std::int64_t{1} << (s - 1))) >> s;
    }
    if (s < 0) return -s > 31 ? 0 : w32(v * (std::int64_t{1} << -s));
    return v;
  };
  if (!(mode & 4)) {
    const std::int64_t total = t + ((mode & 2) && factor ? *factor : 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
      const std::int64_t v = shiftRound(x[i], total);
      out[i] = static_cast<short>((mode & 1) ? sat(v) : low16(v));
    }
    return out;
  }
  std::vector<int> w(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) w[i] = static_cast<int>(shiftRound(x[i], t));
  ownScaleArrayI32(w.data(), out.data(), static_cast<int>(w.size()), mode, factor);
  return out;
}

// The fast core's closing shift: fixed factor plus order for a scaled
// inverse; right arithmetic, left keeps the low 16 bits; factor 0 under auto.
inline void fastShift(std::vector<short>& x, int order, int flags, int mode, int* factor) {
  std::int64_t s = (mode & 2) && factor ? *factor : 0;
  if ((mode & 4) && factor) *factor = 0;
  if ((flags & RYX_Inverse) && !(flags & RYX_KeepScale)) s += order;
  for (short& v : x)
    v = static_cast<short>(s >= 0 ? v >> std::min<std::int64_t>(s, 15) : low16(-s >= 16 ? 0 : v * (1 << -s)));
}

// Element i of an interleaved array at its bit-reversed place.
inline std::vector<short> reversed(const std::vector<short>& x, int order) {
  std::vector<short> r(x.size());
  const std::size_t n = x.size() / 2;
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t j = ryxtest::reverseBits(static_cast<std::uint32_t>(i), order);
    r[2 * j] = x[2 * i], r[2 * j + 1] = x[2 * i + 1];
  }
  return r;
}

inline int guard(int order) { return order < 10 ? 16 - order : 6; }

}  // namespace m16
