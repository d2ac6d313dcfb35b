// An independent model of the 16-bit arithmetic rules, written from the
// family's documented behaviour in 64-bit integers: the exact result of an
// element, and what each scale mode stores for it. The tests compare every
// kernel path against it.
#pragma once

#include <cstdint>
#include <vector>

#include "ryxcore.h"

namespace i16model {

enum Op { kAdd = 0, kSub = 1, kMpy = 2 };

inline std::int64_t exact(Op op, std::int64_t a, std::int64_t b) {
  switch (op) {
    case kAdd: return a + b;
    case kSub: return a - b;
    default: return a * b;
  }
}

struct Pair {
  std::int64_t re, im;
};

inline Pair exact(Op op, WCplx a, WCplx b) {
  if (op == kMpy) {
    // (a.re + i a.im)(b.re + i b.im)
    return {std::int64_t{a.re} * b.re - std::int64_t{a.im} * b.im, std::int64_t{a.re} * b.im + std::int64_t{a.im} * b.re};
  }
  return {exact(op, a.re, b.re), exact(op, a.im, b.im)};
}

// Low 16 bits as a signed value, by arithmetic on the residue.
inline short low16(std::int64_t v) {
  std::int64_t m = v % 65536;
  if (m < 0) m += 65536;
  return static_cast<short>(m >= 32768 ? m - 65536 : m);
}

inline short clamp16(std::int64_t v) {
  if (v > 32767) return 32767;
  if (v < -32768) return -32768;
  return static_cast<short>(v);
}

// floor(v / 2^s) by division, so the model does not lean on >>.
inline std::int64_t floorDiv2(std::int64_t v, int s) {
  const std::int64_t d = std::int64_t{1} << s;
  std::int64_t q = v / d;
  if (v % d != 0 && v < 0) --q;
  return q;
}

// Exact value times 2^s for s >= 0, clamped (with its sign kept) to a
// range far beyond 16 bits so a huge s cannot overflow the model.
inline std::int64_t timesPow2Clamped(std::int64_t v, std::int64_t s) {
  if (v == 0) return 0;
  if (s >= 24) return v > 0 ? (std::int64_t{1} << 40) : -(std::int64_t{1} << 40);
  return v * (std::int64_t{1} << s);
}

// What a non-auto mode stores for exact result r. `factor` is the value
// behind scaleFactor, or nullptr.
inline short store(int mode, std::int64_t r, const int* factor) {
  const std::int64_t f = factor ? *factor : 0;
  if (mode == 0) return low16(r);
  if (mode == 1) return clamp16(r);
  const bool saturate = mode == 3;
  std::int64_t v;
  if (f >= 0) {
    v = floorDiv2(r, static_cast<int>(f % 32));  // the right count is taken modulo 32
  } else {
    v = timesPow2Clamped(r, -f);
    if (!saturate && -f >= 16) return 0;  // nothing left in the low 16 bits
  }
  return saturate ? clamp16(v) : low16(v);
}

// Exact results of arrays, one per 16-bit part (re, im for WCplx).
inline std::vector<std::int64_t> exactParts(Op op, const short* a, const short* b, int n) {
  std::vector<std::int64_t> r(n);
  for (int i = 0; i < n; ++i) r[i] = exact(op, a[i], b[i]);
  return r;
}
inline std::vector<std::int64_t> exactParts(Op op, const WCplx* a, const WCplx* b, int n) {
  std::vector<std::int64_t> r(2 * static_cast<size_t>(n));
  for (int i = 0; i < n; ++i) {
    const Pair p = exact(op, a[i], b[i]);
    r[2 * i] = p.re;
    r[2 * i + 1] = p.im;
  }
  return r;
}

// Auto scale over exact results: the least shift that makes every value
// fit, and the shifted values.
inline int autoShift(const std::vector<std::int64_t>& values) {
  int f = 0;
  for (;;) {
    bool all = true;
    for (std::int64_t v : values) {
      const std::int64_t s = floorDiv2(v, f);
      if (s < -32768 || s > 32767) {
        all = false;
        break;
      }
    }
    if (all) return f;
    ++f;
  }
}

}  // namespace i16model
