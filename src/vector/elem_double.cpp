// Double and DCplx kernels of square, root, thresholds and absolute value.
// The double root works in blocks of four: each element's exponent is
// split off by its high word, a float estimate of the reduced mantissa is
// refined once in float and once more in extended precision, and the
// exponent goes back by adding to the high word.
#include <cfloat>
#include <cmath>
#include <cstring>

#include "vector/elem_kernels.h"

namespace ryx::elem {
namespace {

inline std::int32_t highWord(double x) {
  std::uint64_t b;
  std::memcpy(&b, &x, 8);
  return static_cast<std::int32_t>(b >> 32);
}

inline double withHighWord(double x, std::uint32_t high) {
  std::uint64_t b;
  std::memcpy(&b, &x, 8);
  b = (b & 0xffffffffu) | (std::uint64_t{high} << 32);
  std::memcpy(&x, &b, 8);
  return x;
}

inline int exponentField(double x) { return (highWord(x) >> 20) & 0x7ff; }

// A positive, normal, finite double.
inline bool estimable(double x) {
  const int e = exponentField(x);
  return highWord(x) > 0 && e != 0 && e != 0x7ff;
}

// The refined root of a positive, normal, finite double.
double rootRefined(double x) {
  const std::uint32_t hx = static_cast<std::uint32_t>(highWord(x));
  // Mantissa m in [0.5, 2): the low exponent bit is kept so that the
  // removed exponent is even.
  const std::uint32_t hm = (hx & 0x3fffffffu) | 0x3fe00000u;
  const double m = withHighWord(x, hm);
  // Half the removed exponent, less one: r below is twice the root.
  const std::int32_t correction = (static_cast<std::int32_t>(hx) - static_cast<std::int32_t>(hm)) / 2 - 0x100000;
  const float mf = static_cast<float>(m);
  float y = rsqrtSeed(mf);
  y = (3.0f - mf * y * y) * 0.5f * y;
  const double s = m * static_cast<double>(y);
  const double r = static_cast<double>((3.0L - static_cast<long double>(s) * y) * s);
  return withHighWord(r, static_cast<std::uint32_t>(highWord(r) + correction));
}

}  // namespace

double rootF64Flushed(double x) {
  if (highWord(x) < 0 || exponentField(x) == 0) return 0.0;
  if (exponentField(x) == 0x7ff) return std::sqrt(x);
  return rootRefined(x);
}

void sqrF64(const double* src, double* dst, int n) {
  for (int i = 0; i < n; ++i) dst[i] = src[i] * src[i];
}

void sqrC64(const DCplx* src, DCplx* dst, int n) {
  for (int i = 0; i < n; ++i) {
    const DCplx x = src[i];
    dst[i] = {x.re * x.re - x.im * x.im, x.re * x.im + x.re * x.im};
  }
}

bool sqrtF64(const double* src, double* dst, int n) {
  bool bad = false;
  const int blocks = n - n % 4;
  for (int i = 0; i < blocks; i += 4) {
    double x[4];
    std::memcpy(x, src + i, sizeof x);
    bool all = true;
    for (double v : x) all = all && estimable(v);
    for (int k = 0; k < 4; ++k) {
      if (all) {
        dst[i + k] = rootRefined(x[k]);
      } else if (highWord(x[k]) <= 0) {  // zero, a small denormal or a set sign: 0
        bad = bad || highWord(x[k]) < 0;
        dst[i + k] = 0.0;
      } else {
        dst[i + k] = std::sqrt(x[k]);
      }
    }
  }
  for (int i = blocks; i < n; ++i) {
    const double x = src[i];
    if (std::signbit(x)) {
      bad = true;
      dst[i] = 0.0;
    } else {
      dst[i] = std::sqrt(x);
    }
  }
  return bad;
}

void sqrtC64(const DCplx* src, DCplx* dst, int n) {
  for (int i = 0; i < n; ++i) {
    const double u = 0.5 * src[i].re, v = 0.5 * src[i].im;
    const double m = rootF64Flushed(u * u + v * v);
    if (m == 0.0) {  // a squared magnitude below the normal range counts as zero
      dst[i] = {0.0, std::copysign(0.0, src[i].im)};
      continue;
    }
    const double re = rootF64Flushed(m + u), im = rootF64Flushed(m - u);
    dst[i] = {re, std::copysign(im, src[i].im)};
  }
}

void threshC64(const DCplx* src, DCplx* dst, int n, double thresh, int relOp) {
  const double t2 = thresh * thresh;
  for (int i = 0; i < n; ++i) {
    const DCplx x = src[i];
    const double m2 = x.re * x.re + x.im * x.im;
    if (relOp != 0) {
      if (m2 > t2) {
        const double k = std::sqrt(t2 / m2);
        dst[i] = {x.re * k, x.im * k};
      } else {
        dst[i] = x;
      }
    } else if (!(m2 >= t2)) {  // below, or NaN
      if (m2 > 0.0) {
        const double k = std::sqrt(t2 / m2);
        dst[i] = {x.re * k, x.im * k};
      } else {
        dst[i] = {thresh, 0.0};
      }
    } else {
      dst[i] = x;
    }
  }
}

bool invThreshF64(const double* src, double* dst, int n, double thresh) {
  bool zero = false;
  if (thresh == 0.0) {
    for (int i = 0; i < n; ++i) {
      zero = zero || src[i] == 0.0;
      dst[i] = 1.0 / src[i];
    }
    return zero;
  }
  // Elements at or below thresh in magnitude become +-1/thresh by
  // comparison (so -0.0 gives +1/thresh); a pair above it shares one
  // division unless the product leaves the normal range.
  const double p = 1.0 / thresh;
  auto low = [&](double a) { return a >= 0.0 ? p : -p; };
  int i = 0;
  for (; i + 1 < n; i += 2) {
    const double a = src[i], b = src[i + 1];
    const bool aAbove = std::fabs(a) > thresh, bAbove = std::fabs(b) > thresh;
    if (aAbove && bAbove) {
      const double q = a * b;
      if (std::fabs(q) >= DBL_MAX || std::fabs(q) < DBL_MIN) {
        dst[i] = 1.0 / a;
        dst[i + 1] = 1.0 / b;
      } else {
        const double f = 1.0 / q;
        dst[i] = b * f;
        dst[i + 1] = a * f;
      }
    } else {
      dst[i] = aAbove ? 1.0 / a : low(a);
      dst[i + 1] = bAbove ? 1.0 / b : low(b);
    }
  }
  if (i < n) dst[i] = std::fabs(src[i]) > thresh ? 1.0 / src[i] : low(src[i]);
  return false;
}

bool invThreshC64(const DCplx* src, DCplx* dst, int n, double thresh) {
  return invThreshComplex(src, dst, n, thresh, [](double a) { return 1.0 / std::sqrt(a); },
                          [](double a) { return 1.0 / a; });
}

void absF64(const double* src, double* dst, int n) {
  for (int i = 0; i < n; ++i) {
    std::uint64_t b;
    std::memcpy(&b, src + i, 8);
    b &= 0x7fffffffffffffffull;
    std::memcpy(dst + i, &b, 8);
  }
}

}  // namespace ryx::elem
