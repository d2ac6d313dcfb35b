// Shared narrowing routines: 32-bit integers and floats to 16 bits under a
// scale mode read by exact value. See scale_narrow.h for the contract.
#include "vector/scale_narrow.h"

#include <cmath>
#include <cstdint>

namespace {

inline bool fits16(std::int64_t v) { return v >= -32768 && v <= 32767; }

inline short wrap16(std::int64_t v) { return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint64_t>(v))); }

inline short sat16(std::int64_t v) { return v > 32767 ? 32767 : (v < -32768 ? -32768 : static_cast<short>(v)); }

// Auto-scale factor of one integer: 0 when it fits, else
// floor(log2 |v|) - 14, which brings |v| below 2^15.
inline int autoFactor(std::int32_t v) {
  if (fits16(v)) return 0;
  const std::uint32_t mag = v < 0 ? 0u - static_cast<std::uint32_t>(v) : static_cast<std::uint32_t>(v);
  return (31 - __builtin_clz(mag)) - 14;
}

// The value under a fixed factor: right shifts clamped to 31, left shifts
// to 15, formed in 64 bits so that the saturating mode sees the true value.
inline std::int64_t fixedShift(std::int32_t v, int f) {
  if (f > 0) return std::int64_t{v} >> (f > 31 ? 31 : f);
  if (f < 0) {
    const std::uint32_t s = 0u - static_cast<std::uint32_t>(f);
    return std::int64_t{v} * (std::int64_t{1} << (s > 15 ? 15 : s));
  }
  return v;
}

inline int readFactor(const int* scaleFactor) { return scaleFactor ? *scaleFactor : 0; }

// Auto-scale factor of one float: the binary exponent minus 14 when the
// value lies beyond the 16-bit range, else 0 (NaN compares false).
inline int autoFactor(float x) {
  if (!(x > 32767.0f || x < -32768.0f)) return 0;
  std::uint32_t bits;
  __builtin_memcpy(&bits, &x, sizeof bits);
  return static_cast<int>((bits >> 23) & 0xffu) - 141;
}

// The largest factor any element of a float array needs: that of its
// largest and of its smallest (most negative) element.
int autoFactorOf(const float* src, int n) {
  float hi = 0.0f, lo = 0.0f;
  for (int i = 0; i < n; ++i) {
    const float x = src[i];
    if (x > hi) hi = x;
    if (x < lo) lo = x;
  }
  const int a = autoFactor(hi), b = autoFactor(lo);
  return a > b ? a : b;
}

// Truncation of a scaled value towards zero. The scaling by 2^-f is done
// in double, where it is exact wherever the float product would be, and
// the few cases where the float product would overflow or underflow land
// on the same 16-bit results (limit or 0).
inline short truncWrap(double v) {
  if (!(std::fabs(v) < 9223372036854775808.0)) return 0;  // NaN, +-inf, |v| >= 2^63
  return wrap16(static_cast<std::int64_t>(v));
}

inline short truncSaturate(double v) {
  if (v > 32767.0) return 32767;
  if (v < -32768.0) return -32768;
  if (v != v) return std::signbit(v) ? -32768 : 32767;
  return static_cast<short>(static_cast<std::int32_t>(v));
}

inline double powerOfTwo(int e) {
  if (e > 1023) e = 1023;
  if (e < -1074) e = -1074;
  return std::ldexp(1.0, e);
}

void narrowFloats(const float* src, short* dst, int n, int factor, bool saturate) {
  const double scale = powerOfTwo(factor == 0 ? 0 : (factor == INT32_MIN ? 1023 : -factor));
  for (int i = 0; i < n; ++i) {
    const double v = static_cast<double>(src[i]) * scale;
    dst[i] = saturate ? truncSaturate(v) : truncWrap(v);
  }
}

// Resolved handling of a float array under a mode; factor is unused in
// mode 4, which finds its own.
void floatsUnderMode(const float* src, short* dst, int n, int scaleMode, int factor) {
  switch (scaleMode) {
    case 2: narrowFloats(src, dst, n, factor, false); break;
    case 3: narrowFloats(src, dst, n, factor, true); break;
    case 1: narrowFloats(src, dst, n, 0, true); break;
    default: narrowFloats(src, dst, n, 0, false); break;
  }
}

}  // namespace

short ownScaleI32(int value, int scaleMode, int* scaleFactor) {
  switch (scaleMode) {
    case 4: {
      const int f = autoFactor(static_cast<std::int32_t>(value));
      if (scaleFactor) *scaleFactor = f;
      return wrap16(std::int64_t{value} >> f);
    }
    case 2: return wrap16(fixedShift(value, readFactor(scaleFactor)));
    case 3: return sat16(fixedShift(value, readFactor(scaleFactor)));
    case 1: return sat16(value);
    default: return wrap16(value);
  }
}

void ownScaleArrayI32(const int* src, short* dst, int n, int scaleMode, int* scaleFactor) {
  if (scaleMode == 4) {
    // The factor of the largest and of the smallest element: the larger of
    // the two is what every element needs.
    std::int32_t hi = 0, lo = 0;
    for (int i = 0; i < n; ++i) {
      if (src[i] > hi) hi = src[i];
      if (src[i] < lo) lo = src[i];
    }
    const int a = autoFactor(hi), b = autoFactor(lo);
    const int f = a > b ? a : b;
    if (scaleFactor) *scaleFactor = f;
    for (int i = 0; i < n; ++i) dst[i] = wrap16(std::int64_t{src[i]} >> f);
    return;
  }
  const int f = readFactor(scaleFactor);
  switch (scaleMode) {
    case 2: for (int i = 0; i < n; ++i) dst[i] = wrap16(fixedShift(src[i], f)); break;
    case 3: for (int i = 0; i < n; ++i) dst[i] = sat16(fixedShift(src[i], f)); break;
    case 1: for (int i = 0; i < n; ++i) dst[i] = sat16(src[i]); break;
    default: for (int i = 0; i < n; ++i) dst[i] = wrap16(src[i]); break;
  }
}

void ownScaleArrayF32(const float* src, short* dst, int n, int scaleMode, int* scaleFactor) {
  if (scaleMode == 4) {
    const int f = n > 0 ? autoFactorOf(src, n) : 0;
    if (scaleFactor) *scaleFactor = f;
    narrowFloats(src, dst, n, f, false);
    return;
  }
  floatsUnderMode(src, dst, n, scaleMode, readFactor(scaleFactor));
}

void ownScaleArraySCplx(const float* srcRe, const float* srcIm, short* dstRe, short* dstIm, int n, int scaleMode,
                        int* scaleFactor) {
  if (scaleMode == 4) {
    int f = 0;
    if (n > 0) {
      const int a = autoFactorOf(srcRe, n), b = autoFactorOf(srcIm, n);
      f = a > b ? a : b;
    }
    if (scaleFactor) *scaleFactor = f;
    narrowFloats(srcRe, dstRe, n, f, false);
    narrowFloats(srcIm, dstIm, n, f, false);
    return;
  }
  const int f = readFactor(scaleFactor);
  floatsUnderMode(srcRe, dstRe, n, scaleMode, f);
  floatsUnderMode(srcIm, dstIm, n, scaleMode, f);
}
