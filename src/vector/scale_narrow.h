// Shared narrowing to 16 bits under a scale mode.
//
// These are the only ways the library's 16-bit families (transforms,
// filters, convolution, wavelets, the vector routines) bring 32-bit
// integer or float accumulators back to 16 bits. Contract, common to all:
//
//  - scaleMode is read by exact value, not by bits:
//      4     auto scale: the factor is chosen from the data (0 when every
//            value fits 16 bits, else floor(log2 |largest|) - 14 for
//            integers, the binary exponent of the largest float minus 14
//            for floats), the values are shifted (integers, arithmetic
//            right shift) or multiplied by 2^-factor (floats), the low 16
//            bits are kept, and the factor is written to *scaleFactor;
//      2, 3  fixed scale: the factor is *scaleFactor, 0 when the pointer is
//            null; a positive factor shifts right (integers: count clamped
//            to 31), a negative one shifts left (integers: count clamped to
//            15); mode 3 then saturates, mode 2 keeps the low 16 bits;
//      1     saturate, no scaling;
//      other keep the low 16 bits of the unscaled value.
//  - scaleFactor is written only in mode 4 and may be null in every other
//    mode (a null pointer in mode 4 is the caller's error: nothing is
//    written then, the values are still narrowed).
//  - Floats are truncated towards zero. Wrapping modes keep the low 16 bits
//    of the value truncated to 64 bits (0 for NaN and magnitudes of 2^63 or
//    more); saturating modes store 32767 above 32767.0 and -32768 below
//    -32768.0, a NaN going to the limit of its sign.
//  - In mode 4 the factor is the largest that any single element needs, so
//    every scaled element fits; NaN elements do not take part in choosing
//    a float factor.
//  - No routine reports or allocates; n <= 0 does nothing (in mode 4 the
//    factor 0 is written). Source and destination arrays must not overlap.
#pragma once

#include "ryxcore.h"

// One 32-bit value.
short ownScaleI32(int value, int scaleMode, int* scaleFactor);

// An array of 32-bit values; one factor for the whole array.
void ownScaleArrayI32(const int* src, short* dst, int n, int scaleMode, int* scaleFactor);

// An array of floats; one factor for the whole array.
void ownScaleArrayF32(const float* src, short* dst, int n, int scaleMode, int* scaleFactor);

// Real and imaginary float arrays to real and imaginary 16-bit arrays with
// one common factor: in mode 4 the larger of the two arrays' own factors.
void ownScaleArraySCplx(const float* srcRe, const float* srcIm, short* dstRe, short* dstIm, int n, int scaleMode,
                        int* scaleFactor);
