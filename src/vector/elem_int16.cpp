// 16-bit kernels of square, root, threshold and absolute value. Squares are
// formed exactly in 64 bits and narrowed by the scale rules of this family
// (read by bits); roots go through the float estimate and are made exact
// where the result is defined exactly.
#include <algorithm>
#include <cfenv>
#include <cmath>

#include "frame/memory.h"
#include "vector/elem_kernels.h"
#include "vector/int16_ref.h"

namespace ryx::elem {
namespace {

using int16::fits16;
using int16::sat16;
using int16::wrap16;

}  // namespace

short narrowScaled(std::int64_t r, int f, bool saturate) {
  if (f > 0) {
    r >>= (f < 63 ? f : 63);
  } else if (f < 0) {
    const int s = f < -64 ? 64 : -f;  // any count past 63 acts alike
    if (!saturate) return s >= 16 ? 0 : wrap16(r * (std::int64_t{1} << s));
    if (s >= 32) return r > 0 ? 32767 : (r < 0 ? -32768 : 0);
    r *= std::int64_t{1} << s;
  }
  return saturate ? sat16(r) : wrap16(r);
}

namespace {

// The square's own saturating rule: a right shift rounds to nearest with
// ties to even, a left shift clamps.
short sqrRounded(std::int64_t r, int f) {
  if (f > 0) r = (r + (std::int64_t{1} << (f - 1)) - 1 + ((r >> f) & 1)) >> f;
  else if (f < 0) r *= std::int64_t{1} << -f;
  return sat16(r);
}

struct Square {
  std::int64_t re, im;
};

inline Square square(WCplx x) {
  const std::int64_t a = x.re, b = x.im;
  return {(a - b) * (a + b), 2 * a * b};
}

// The candidate c made exact: the largest c >= 0 with
// c*c <= (|x| + sign*x.re) / 2, decided on integers.
int exactHalfRoot(int c, std::int64_t re, std::int64_t norm2, int sign) {
  auto within = [&](std::int64_t k) {
    const std::int64_t d = 2 * k * k - sign * re;
    return d <= 0 || d * d <= norm2;
  };
  if (c < 0) c = 0;
  while (c > 0 && !within(c)) --c;
  while (within(c + 1)) ++c;
  return c;
}

}  // namespace

int autoFactorSqr(const short* src, int n) {
  short hi = src[0], lo = src[0];
  for (int i = 1; i < n; ++i) {
    hi = src[i] > hi ? src[i] : hi;
    lo = src[i] < lo ? src[i] : lo;
  }
  const std::int64_t m = std::max(std::int64_t{hi} * hi, std::int64_t{lo} * lo);
  int f = 0;
  while ((m >> f) > 32767) ++f;
  return f;
}

void sqrI16(const short* src, short* dst, int n, int scaleMode, int factor) {
  const bool saturate = (scaleMode & RYX_SATURATE) != 0;
  const bool rounded = saturate && factor >= -14 && factor <= 30;
  for (int i = 0; i < n; ++i) {
    const std::int64_t r = std::int64_t{src[i]} * src[i];
    dst[i] = rounded ? sqrRounded(r, factor) : narrowScaled(r, factor, saturate);
  }
}

void sqrCI16(const WCplx* src, WCplx* dst, int n, int scaleMode, int* factor) {
  if ((scaleMode & RYX_AUTO_SCALE) == 0) {
    const int f = (scaleMode & RYX_FIXED_SCALE) != 0 && factor != nullptr ? *factor : 0;
    const bool saturate = (scaleMode & RYX_SATURATE) != 0;
    for (int i = 0; i < n; ++i) {
      const Square r = square(src[i]);
      dst[i] = {narrowScaled(r.re, f, saturate), narrowScaled(r.im, f, saturate)};
    }
    return;
  }
  // Auto scale: exact results while they fit; from the first that does
  // not, the least shift that makes every later one fit; then the stored
  // ones are shifted to match and the rest recomputed.
  int k = 0;
  for (; k < n; ++k) {
    const Square r = square(src[k]);
    if (!fits16(r.re) || !fits16(r.im)) break;
    dst[k] = {static_cast<short>(r.re), static_cast<short>(r.im)};
  }
  if (k == n) {
    *factor = 0;
    return;
  }
  int f = 1;
  for (int i = k; i < n; ++i) {
    const Square r = square(src[i]);
    while (!fits16(r.re >> f) || !fits16(r.im >> f)) ++f;
  }
  for (int i = 0; i < k; ++i) dst[i] = {static_cast<short>(dst[i].re >> f), static_cast<short>(dst[i].im >> f)};
  for (int i = k; i < n; ++i) {
    const Square r = square(src[i]);
    dst[i] = {static_cast<short>(r.re >> f), static_cast<short>(r.im >> f)};
  }
  *factor = f;
}

bool sqrtI16(const short* src, short* dst, int n) {
  // The unsigned reading, lifted by 1/16 so that no zero reaches the
  // estimate, rounded to nearest.
  bool bad = false;
  for (int i = 0; i < n; ++i) {
    const short x = src[i];
    bad = bad || x < 0;
    const float u = static_cast<float>(static_cast<std::uint16_t>(x)) + 0.0625f;
    dst[i] = static_cast<short>(std::lrint(rootEstimateF32(u)));
  }
  return bad;
}

void sqrtCI16(const WCplx* src, WCplx* dst, int n) {
  constexpr int kStrip = 64;
  SCplx buf[kStrip];
  for (int base = 0; base < n; base += kStrip) {
    const int count = n - base < kStrip ? n - base : kStrip;
    for (int j = 0; j < count; ++j) buf[j] = {static_cast<float>(src[base + j].re), static_cast<float>(src[base + j].im)};
    sqrtC32(buf, buf, count);
    for (int j = 0; j < count; ++j) {
      const std::int64_t re = src[base + j].re, im = src[base + j].im;
      const std::int64_t norm2 = re * re + im * im;
      const int a = exactHalfRoot(static_cast<int>(buf[j].re), re, norm2, 1);
      const int b = exactHalfRoot(static_cast<int>(std::fabs(buf[j].im)), re, norm2, -1);
      dst[base + j] = {static_cast<short>(a), static_cast<short>(im < 0 ? -b : b)};
    }
  }
}

bool threshCI16(const WCplx* src, WCplx* dst, int n, short thresh, int relOp) {
  constexpr int kStrip = 512;
  const int words = n < kStrip ? n : kStrip;
  int* buf = ryxiMalloc(static_cast<unsigned>(words));
  if (buf == nullptr) return false;
  constexpr std::uint32_t kZeroSample = 0xffffffffu;  // no square reaches it
  const std::int64_t t2 = std::int64_t{thresh} * thresh;
  const long double nudge = 0x1p-33L;
  for (int base = 0; base < n; base += kStrip) {
    const int count = n - base < kStrip ? n - base : kStrip;
    auto* m2s = reinterpret_cast<std::uint32_t*>(buf);
    bool any = false;
    for (int j = 0; j < count; ++j) {
      const WCplx x = src[base + j];
      dst[base + j] = x;
      const std::int64_t m2 = std::int64_t{x.re} * x.re + std::int64_t{x.im} * x.im;
      const bool change = relOp != 0 ? m2 > t2 : m2 < t2;
      m2s[j] = !change ? 0u : (m2 == 0 ? kZeroSample : static_cast<std::uint32_t>(m2));
      any = any || change;
    }
    if (!any) continue;
    // Greater-than truncates with a nudge of 2^-33 away from zero, so that
    // an exact quotient is not lost below its integer; less-than rounds the
    // magnitude upwards with the nudge taken off.
    const int saved = std::fegetround();
    std::fesetround(relOp != 0 ? FE_TOWARDZERO : FE_UPWARD);
    for (int j = 0; j < count; ++j) {
      if (m2s[j] == 0) continue;
      if (m2s[j] == kZeroSample) {
        dst[base + j] = {thresh, 0};
        continue;
      }
      const long double k = static_cast<long double>(thresh) / std::sqrt(static_cast<long double>(m2s[j]));
      auto part = [&](short p) -> short {
        const long double v = std::fabs(static_cast<long double>(p)) * k;
        const long double q = relOp != 0 ? std::trunc(v + nudge) : std::ceil(v - nudge);
        const int r = static_cast<int>(q);
        return static_cast<short>(p < 0 ? -r : r);
      };
      const WCplx x = src[base + j];
      dst[base + j] = {part(x.re), part(x.im)};
    }
    std::fesetround(saved);
  }
  ryxFree(buf);
  return true;
}

void absI16(const short* src, short* dst, int n) {
  for (int i = 0; i < n; ++i) dst[i] = src[i] == -32768 ? short{32767} : static_cast<short>(src[i] < 0 ? -src[i] : src[i]);
}

}  // namespace ryx::elem
