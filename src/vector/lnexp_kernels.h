// Kernels of the logarithm, exponent and arctangent family. They have no
// failure path: special arguments yield their special values silently.
//
// Float kernels use their own short polynomials with one reciprocal
// estimate and one Newton step where a quotient is needed, so they are a
// few ulp from the correctly rounded value; special arguments (zero,
// negative, infinite, NaN, denormal) are recognised by their bits and
// computed singly. The double kernels carry the same methods to 64 bits.
#pragma once

#include "ryxcore.h"

namespace ryx::lnexp {

// Natural logarithm; the decimal logarithm is it times log10(e).
void lnF32(const float* src, float* dst, int n);
void lnF64(const double* src, double* dst, int n);
void lnF64ToF32(const double* src, float* dst, int n);
void lgF32(const float* src, float* dst, int n);
void lgF64(const double* src, double* dst, int n);

// e^x, and e^x of floats into doubles.
void expF32(const float* src, float* dst, int n);
void expF64(const double* src, double* dst, int n);
void expF32ToF64(const float* src, double* dst, int n);

// Arctangent, odd, in -pi/2 .. pi/2.
void atanF32(const float* src, float* dst, int n);
void atanF64(const double* src, double* dst, int n);

// Complex decimal logarithm: re = log10|x|, im = arg(x) * log10(e).
void lgC32(const SCplx* src, SCplx* dst, int n);
// The widening form in groups of four through the double root, logarithm
// and arctangent; `work` holds five groups of four SCplx. A sample whose
// real part is zero or a positive denormal gives (-inf, -inf), one with an
// infinite or NaN part (NaN, NaN).
void lgC32ToC64(const SCplx* src, DCplx* dst, int n, SCplx* const work[5]);

// 16-bit logarithm by comparisons (even positions read zero-extended, odd
// ones and an odd length's last element sign-extended) and exponent under a
// scale mode read by bits, with the factor already resolved for fixed and
// plain modes. autoFactorExp gives the auto mode's factor.
void lnI16(const short* src, short* dst, int n);
int autoFactorExp(const short* src, int n);
void expI16(const short* src, short* dst, int n, bool saturate, int factor);

// The scalar float kernels on one element, special arguments included.
float lnOne(float x);
float expOne(float x);
float atanOne(float x);

}  // namespace ryx::lnexp

// Lane forms of the float kernels (float_lanes.h), bit for bit the scalar
// kernels (and x*x, |x|): whole groups of four (SSE2) or eight (AVX2) lanes,
// each returning the count done. root takes a multiple of four elements,
// each group of four refined or exact as a whole, and returns true when an
// element had its sign bit set.
namespace ryx::lanes {
struct Kernels {
  int (*ln)(const float* src, float* dst, int n);
  int (*exp)(const float* src, float* dst, int n);
  int (*atan)(const float* src, float* dst, int n);
  int (*sqr)(const float* src, float* dst, int n);
  int (*abs)(const float* src, float* dst, int n);
  bool (*root)(const float* src, float* dst, int n);
};
extern const Kernels kSse2, kAvx2;
// The AVX2 table where the processor and the cap allow it, else SSE2's.
const Kernels& pick();
}  // namespace ryx::lanes
