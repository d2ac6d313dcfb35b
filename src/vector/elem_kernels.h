// Kernels of the one-operand elementwise functions: square, square root,
// threshold, inverse threshold and absolute value. They have no failure
// path: the entries have checked lengths and pointers. A kernel that can
// meet a bad element (a negative root, a zero under a zero inverse
// threshold) returns true after it has written the whole array, and the
// entry reports it then.
//
// The float square root and reciprocal kernels refine a hardware estimate
// (about 12 bits) by one Newton step, so their results are a few ulp from
// the correctly rounded value and may differ in the last bits between
// processors; the double root refines a float seed once more in extended
// precision. The conversion family reuses the root kernels for magnitudes.
#pragma once

#include <cstdint>

#include "ryxcore.h"

namespace ryx::elem {

// Square. Real: x*x. SCplx: re = (re+im)*(re-im), im = (2*re)*im.
// DCplx: re = re*re - im*im, im = re*im + re*im.
void sqrF32(const float* src, float* dst, int n);
void sqrF64(const double* src, double* dst, int n);
void sqrC32(const SCplx* src, SCplx* dst, int n);
void sqrC64(const DCplx* src, DCplx* dst, int n);

// 16-bit squares; the scale mode is read by bits. The factor is the one
// already resolved by the entry (auto scale computes it with autoFactorSqr).
int autoFactorSqr(const short* src, int n);
void sqrI16(const short* src, short* dst, int n, int scaleMode, int factor);
// WCplx square; in auto mode writes the chosen factor to *factor.
void sqrCI16(const WCplx* src, WCplx* dst, int n, int scaleMode, int* factor);

// A 64-bit value shifted by the factor f (positive right, negative left),
// then clamped or cut to its low 16 bits (left shifts of 16 or more leave
// no low bits).
short narrowScaled(std::int64_t r, int f, bool saturate);

// Square roots. True when an element had its sign bit set (float, double,
// 16-bit); such an element's float or double result is 0.
bool sqrtF32(const float* src, float* dst, int n);
bool sqrtF64(const double* src, double* dst, int n);
void sqrtC32(const SCplx* src, SCplx* dst, int n);
void sqrtC64(const DCplx* src, DCplx* dst, int n);
bool sqrtI16(const short* src, short* dst, int n);
void sqrtCI16(const WCplx* src, WCplx* dst, int n);

// The refined float estimate of sqrt(x) for a positive normal float, and
// the double root of one element as the complex double root takes it:
// 0 for a set sign bit or a zero exponent field, the refined float seed
// otherwise (infinity and NaN by the exact root).
float rootEstimateF32(float x);
// The bare reciprocal-root estimate (about 12 bits) of a positive float.
float rsqrtSeed(float x);
double rootF64Flushed(double x);

// Thresholds: relOp zero raises values below thresh (RYX_LT), any other
// value lowers values above it. The 16-bit complex form needs a working
// buffer and returns false, with the array unchanged, when none is had.
// Real forms: hardware minimum and maximum, so a NaN element yields thresh.
template <class T>
void threshReal(const T* src, T* dst, int n, T thresh, int relOp) {
  if (relOp == 0) {
    for (int i = 0; i < n; ++i) dst[i] = src[i] > thresh ? src[i] : thresh;
  } else {
    for (int i = 0; i < n; ++i) dst[i] = src[i] < thresh ? src[i] : thresh;
  }
}
void threshC32(const SCplx* src, SCplx* dst, int n, float thresh, int relOp);
void threshC64(const DCplx* src, DCplx* dst, int n, double thresh, int relOp);
bool threshCI16(const WCplx* src, WCplx* dst, int n, short thresh, int relOp);

// Reciprocal with magnitudes raised to thresh (thresh >= 0). True when
// thresh is zero and an element is zero.
bool invThreshF32(const float* src, float* dst, int n, float thresh);
bool invThreshF64(const double* src, double* dst, int n, double thresh);
bool invThreshC32(const SCplx* src, SCplx* dst, int n, float thresh);
bool invThreshC64(const DCplx* src, DCplx* dst, int n, double thresh);

// The complex rule, conj(x) / m2, written once: with thresh above zero a
// sample below it is brought to magnitude 1/thresh through rsqrt(m2*t2)
// (a zero sample, taken as m2 = re = 1, gives (1/thresh, 0)), others take
// rcp(m2); with thresh zero the quotient is exact and a zero sample, taken
// as m2 = 1, is the error.
template <class C, class R, class Rsqrt, class Rcp>
bool invThreshComplex(const C* src, C* dst, int n, R thresh, Rsqrt rsqrt, Rcp rcp) {
  bool zero = false;
  const R t2 = thresh * thresh;
  for (int i = 0; i < n; ++i) {
    R re = src[i].re;
    const R im = src[i].im;
    R m2 = re * re + im * im;
    if (thresh > R{0}) {
      R k;
      if (m2 < t2 || m2 == R{0}) {
        if (m2 == R{0}) re = m2 = R{1};
        k = rsqrt(m2 * t2);
      } else {
        k = rcp(m2);
      }
      dst[i] = {re * k, -im * k};
    } else {
      if (m2 == R{0}) {
        zero = true;
        m2 = R{1};
      }
      dst[i] = {re / m2, -im / m2};
    }
  }
  return zero;
}

// Absolute value: the sign bit cleared (float, double); saturating for
// 16 bits, so -32768 gives 32767.
void absF32(const float* src, float* dst, int n);
void absF64(const double* src, double* dst, int n);
void absI16(const short* src, short* dst, int n);

// Float groups of the forward kernels: heads of one, two and four lanes
// until the destination is 32-byte aligned (when it is at least aligned to
// `unit` bytes), then groups of four, then one of two and one single.
// Calls body(start, count) in order; the run of whole groups of four in the
// middle goes to bulk(start, count), count a multiple of four.
template <class F, class Bulk>
void forwardGroups(const void* dst, int n, int unit, F body, Bulk bulk) {
  auto addr = reinterpret_cast<std::uintptr_t>(dst);
  int i = 0;
  if (addr % unit == 0) {
    for (int step = 1; step * unit < 32 && i < n; step *= 2) {
      if ((addr & static_cast<std::uintptr_t>(step * unit)) == 0) continue;
      const int count = step < n - i ? step : n - i;
      body(i, count);
      i += count;
      addr += static_cast<std::uintptr_t>(count * unit);
    }
  }
  const int whole = (n - i) & ~3;
  bulk(i, whole);
  i += whole;
  if (n - i >= 2) {
    body(i, 2);
    i += 2;
  }
  if (n - i >= 1) body(i, 1);
}

template <class F>
void forwardGroups(const void* dst, int n, int unit, F body) {
  forwardGroups(dst, n, unit, body, [&body](int start, int count) {
    for (int i = start; i < start + count; i += 4) body(i, 4);
  });
}

}  // namespace ryx::elem
