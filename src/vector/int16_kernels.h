// Kernels of the 16-bit arithmetic family. They have no failure path: the
// entry has checked the length, the pointers and, for auto scale, the
// factor pointer.
//
// Operands: shape 1 passes a = dst and b = null (the scalar `val` is used),
// shape 2 a = dst and b = src, shape 3 a = srcA and b = srcB; every element
// is dst[i] = a[i] op b[i] (or a[i] op val), subtraction in that order.
#pragma once

#include "ryxcore.h"
#include "vector/int16_ref.h"

namespace ryx::int16 {

// Modes 0 (wrap) and 1 (saturate) on SIMD lanes, forward: single elements
// until dst is a multiple of 8 bytes, then 16 16-bit lanes per turn, then
// groups of four lanes, then single elements.
void laneKernelW(Op op, bool saturate, const short* a, const short* b, short val, short* dst, int n);
void laneKernelV(Op op, bool saturate, const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n);

// Fixed-scale modes (2, 3, 5, 6, 7 and any value outside 0..7) as plain
// loops; the factor is *scaleFactor, 0 when null.
void fixedKernelW(Op op, Mode mode, const short* a, const short* b, short val, short* dst, int n, int factor);
void fixedKernelV(Op op, Mode mode, const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n, int factor);

// Auto scale: the two-phase run that stores exact results until the first
// one that does not fit, then finds the least right shift for the rest,
// shifts the stored results in place, recomputes the rest and writes the
// shift to *scaleFactor.
void autoKernelW(Op op, const short* a, const short* b, short val, short* dst, int n, int* scaleFactor);
void autoKernelV(Op op, const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n, int* scaleFactor);

// The same wrap and saturate kernels on 256-bit lanes (AVX2), identical
// in every result; only for processors that have AVX2.
namespace avx2 {
void laneKernelW(Op op, bool saturate, const short* a, const short* b, short val, short* dst, int n);
void laneKernelV(Op op, bool saturate, const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n);
}  // namespace avx2

}  // namespace ryx::int16
