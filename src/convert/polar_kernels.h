// Kernels of the complex, polar and spectrum conversions, written once over
// the part type (float, double, 16-bit) and the layout: an array of complex
// records or two split arrays of real and imaginary parts. The entries
// have checked lengths and pointers.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "ryxcore.h"
#include "vector/elem_kernels.h"

namespace ryx::polar {

template <class R>
using Cplx = std::conditional_t<std::is_same_v<R, float>, SCplx, std::conditional_t<std::is_same_v<R, double>, DCplx, WCplx>>;

// Read access to complex samples, interleaved or split.
template <class R>
struct Interleaved {
  const Cplx<R>* p;
  R re(int i) const { return p[i].re; }
  R im(int i) const { return p[i].im; }
};
template <class R>
struct Split {
  const R* reals;
  const R* imags;
  R re(int i) const { return reals[i]; }
  R im(int i) const { return imags[i]; }
};

template <class R>
Interleaved<R> advance(Interleaved<R> in, int k) {
  return {in.p + k};
}
template <class R>
Split<R> advance(Split<R> in, int k) {
  return {in.reals + k, in.imags + k};
}

// Write access, interleaved or split.
template <class R>
struct InterleavedOut {
  Cplx<R>* p;
  void set(int i, R re, R im) const { p[i] = {re, im}; }
};
template <class R>
struct SplitOut {
  R* reals;
  R* imags;
  void set(int i, R re, R im) const {
    reals[i] = re;
    imags[i] = im;
  }
};

// ---- Parts ---------------------------------------------------------------

template <class R>
void realParts(const Cplx<R>* src, R* dst, int n) {
  for (int i = 0; i < n; ++i) dst[i] = src[i].re;
}
template <class R>
void imagParts(const Cplx<R>* src, R* dst, int n) {
  for (int i = 0; i < n; ++i) dst[i] = src[i].im;
}
template <class R>
void toSplit(const Cplx<R>* src, R* re, R* im, int n) {
  for (int i = 0; i < n; ++i) SplitOut<R>{re, im}.set(i, src[i].re, src[i].im);
}
// A null source stands for parts of zero.
template <class R>
void fromSplit(const R* re, const R* im, Cplx<R>* dst, int n) {
  for (int i = 0; i < n; ++i) dst[i] = {re != nullptr ? re[i] : R{}, im != nullptr ? im[i] : R{}};
}

// ---- Float and double ----------------------------------------------------

// The phase of (x, y): y equal to 0 is settled by x alone (0 for x above 0
// or equal to 0, pi for x below 0 or NaN); otherwise the two-argument
// arctangent in extended precision, rounded once.
template <class R>
R phaseOf(R x, R y) {
  if (y == R{0}) {
    if (x == R{0} || x > R{0}) return R{0};
    return static_cast<R>(3.14159265358979323846L);
  }
  return static_cast<R>(std::atan2(static_cast<long double>(y), static_cast<long double>(x)));
}

template <class R, class In>
void cartToPolar(In in, R* mag, R* phase, int n) {
  for (int i = 0; i < n; ++i) {
    const R x = in.re(i), y = in.im(i);
    if (y == R{0}) {
      mag[i] = x == R{0} ? R{0} : (x > R{0} ? x : -x);
    } else {
      mag[i] = std::sqrt(x * x + y * y);
    }
    phase[i] = phaseOf(x, y);
  }
}

template <class R, class Out>
void polarToCart(const R* mag, const R* phase, Out out, int n) {
  for (int i = 0; i < n; ++i) {
    const long double m = mag[i], p = phase[i];
    out.set(i, static_cast<R>(m * std::cos(p)), static_cast<R>(m * std::sin(p)));
  }
}

template <class R, class In>
void powerSpectrum(In in, R* spectr, int n) {
  for (int i = 0; i < n; ++i) {
    const R x = in.re(i), y = in.im(i);
    spectr[i] = x * x + y * y;
  }
}

template <class R, class In>
void phases(In in, R* phase, int n) {
  for (int i = 0; i < n; ++i) phase[i] = phaseOf(in.re(i), in.im(i));
}

// Magnitudes: strips of 128 through the power spectrum and the estimate
// root of the elementwise family; the elements after the last full strip
// take the exact root.
template <class R, class In>
void magnitudes(In in, R* mag, int n) {
  constexpr int kStrip = 128;
  alignas(32) R power[kStrip];
  int i = 0;
  for (; n - i >= kStrip; i += kStrip) {
    powerSpectrum(In{in}, power, kStrip);
    if constexpr (std::is_same_v<R, float>) elem::sqrtF32(power, mag + i, kStrip);
    else elem::sqrtF64(power, mag + i, kStrip);
    in = advance(in, kStrip);
  }
  powerSpectrum(In{in}, power, n - i);
  for (int k = 0; k < n - i; ++k) mag[i + k] = std::sqrt(power[k]);
}

// ---- 16 bits -------------------------------------------------------------

template <class In>
std::int64_t power16(const In& in, int i) {
  const std::int64_t re = in.re(i), im = in.im(i);
  return re * re + im * im;
}

// A truncated double to 16 bits: its low 16 bits, or clamped.
inline short truncWrap(double v) {
  return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::int64_t>(std::fmod(std::trunc(v), 65536.0))));
}
inline short truncClamp(double v) {
  v = std::trunc(v);
  return v > 32767.0 ? short{32767} : (v < -32768.0 ? short{-32768} : static_cast<short>(v));
}

// The auto factor of a largest value m: its binary exponent less 14 when it
// leaves the 16-bit range, else 0.
inline int autoFactor(double m) { return m > 32767.0 ? std::ilogb(m) - 14 : 0; }

// Magnitudes by exact scaleMode value; 5, 7 and other values do nothing.
// Modes 0 and 1 on more than 128 samples take full strips of 128 through
// float (power, estimate root, round to nearest, saturate) and the rest
// through the truncated double root, so short and long arrays may round
// the same data differently.
template <class In>
void magnitudes16(In in, short* mag, int n, int scaleMode, int* scaleFactor) {
  auto root = [&](int i) { return std::sqrt(static_cast<double>(power16(in, i))); };
  switch (scaleMode) {
    case 0:
    case 1: {
      const bool saturate = scaleMode == 1;
      int i = 0;
      if (n > 128) {
        alignas(32) float strip[128];
        for (; n - i >= 128; i += 128) {
          for (int k = 0; k < 128; ++k) {
            const float re = in.re(i + k), im = in.im(i + k);
            strip[k] = re * re + im * im;
          }
          elem::sqrtF32(strip, strip, 128);
          for (int k = 0; k < 128; ++k) mag[i + k] = truncClamp(std::nearbyint(strip[k]));
        }
      }
      for (; i < n; ++i) mag[i] = saturate ? truncClamp(root(i)) : truncWrap(root(i));
      return;
    }
    case 2:
    case 3: {
      // Factors beyond +-2000 act alike; the clamp keeps the negation defined.
      const int f = scaleFactor != nullptr ? std::clamp(*scaleFactor, -2000, 2000) : 0;
      for (int i = 0; i < n; ++i) {
        const double v = std::ldexp(root(i), -f);
        mag[i] = scaleMode == 3 ? truncClamp(v) : truncWrap(v);
      }
      return;
    }
    case 4: {
      double m = 0.0;
      for (int i = 0; i < n; ++i) m = std::fmax(m, root(i));
      const int f = autoFactor(m);
      for (int i = 0; i < n; ++i) mag[i] = truncWrap(std::ldexp(root(i), -f));
      *scaleFactor = f;
      return;
    }
    default:
      return;
  }
}

// Power spectrum by exact scaleMode value, on the exact 64-bit squares.
template <class In>
void powerSpectrum16(In in, short* spectr, int n, int scaleMode, int* scaleFactor) {
  int f = 0;
  bool saturate = false;
  switch (scaleMode) {
    case 0:
      break;
    case 1:
      saturate = true;
      break;
    case 2:
    case 3:
      f = scaleFactor != nullptr ? *scaleFactor : 0;
      saturate = scaleMode == 3;
      break;
    case 4: {
      std::int64_t m = 0;
      for (int i = 0; i < n; ++i) m = std::max(m, power16(in, i));
      f = autoFactor(static_cast<double>(m));
      *scaleFactor = f;
      break;
    }
    default:
      return;
  }
  for (int i = 0; i < n; ++i) spectr[i] = elem::narrowScaled(power16(in, i), f, saturate);
}

// Phases as the truncated angle times 16383/pi: pi gives 16383.
template <class In>
void phases16(In in, short* phase, int n) {
  constexpr double kScale = 5214.870865349043;
  for (int i = 0; i < n; ++i) {
    const long double x = in.re(i), y = in.im(i);
    long double a;
    if (y == 0) a = x >= 0 ? 0.0L : static_cast<long double>(3.141592653589793);
    else a = std::atan2(y, x);
    phase[i] = static_cast<short>(static_cast<int>(a * kScale));
  }
}

}  // namespace ryx::polar
