/*
 * Elementwise one-operand functions: square, square root, threshold,
 * inverse threshold and absolute value. Included by ryxcore.h.
 *
 * The in-place form 1 takes (vec, len, ...), form 2 (src, dst, len, ...).
 * Float roots and reciprocals refine a hardware estimate by one Newton step:
 * a few ulp, not correctly rounded. relOp 0 (RYX_LT) raises values below
 * thresh to it, any other value (RYX_GT) lowers values above it; the complex
 * forms compare magnitudes and keep the phase. A negative root argument
 * (by its sign bit: -0.0 counts) and a zero element under a zero inverse
 * threshold are reported once after the whole array is written. The 16-bit
 * squares read scaleMode by bits and round to nearest (ties to even) when
 * they scale with saturation.
 */
#ifndef RYXCORE_VECTOR_MATH_H
#define RYXCORE_VECTOR_MATH_H

#ifdef __cplusplus
extern "C" {
#endif

enum RyxRelOp { RYX_LT = 0, RYX_GT = 1 };

RYXAPI void ryxsbSqr1(float* vec, int len);
RYXAPI void ryxsbSqr2(const float* src, float* dst, int len);
RYXAPI void ryxdbSqr1(double* vec, int len);
RYXAPI void ryxdbSqr2(const double* src, double* dst, int len);
RYXAPI void ryxcbSqr1(SCplx* vec, int len);
RYXAPI void ryxcbSqr2(const SCplx* src, SCplx* dst, int len);
RYXAPI void ryxzbSqr1(DCplx* vec, int len);
RYXAPI void ryxzbSqr2(const DCplx* src, DCplx* dst, int len);
RYXAPI void ryxwbSqr1(short* vec, int len, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbSqr2(const short* src, short* dst, int len, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbSqr1(WCplx* vec, int len, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbSqr2(const WCplx* src, WCplx* dst, int len, int scaleMode, int* scaleFactor);

RYXAPI void ryxsbSqrt1(float* vec, int len);
RYXAPI void ryxsbSqrt2(const float* src, float* dst, int len);
RYXAPI void ryxdbSqrt1(double* vec, int len);
RYXAPI void ryxdbSqrt2(const double* src, double* dst, int len);
RYXAPI void ryxcbSqrt1(SCplx* vec, int len);
RYXAPI void ryxcbSqrt2(const SCplx* src, SCplx* dst, int len);
RYXAPI void ryxzbSqrt1(DCplx* vec, int len);
RYXAPI void ryxzbSqrt2(const DCplx* src, DCplx* dst, int len);
/* 16-bit roots: w rounds the root of the unsigned reading to nearest (a
 * negative element is still reported); v gives truncated component roots. */
RYXAPI void ryxwbSqrt1(short* vec, int len);
RYXAPI void ryxwbSqrt2(const short* src, short* dst, int len);
RYXAPI void ryxvbSqrt1(WCplx* vec, int len);
RYXAPI void ryxvbSqrt2(const WCplx* src, WCplx* dst, int len);

RYXAPI void ryxsbThresh1(float* vec, int len, float thresh, int relOp);
RYXAPI void ryxsbThresh2(const float* src, float* dst, int len, float thresh, int relOp);
RYXAPI void ryxdbThresh1(double* vec, int len, double thresh, int relOp);
RYXAPI void ryxdbThresh2(const double* src, double* dst, int len, double thresh, int relOp);
RYXAPI void ryxwbThresh1(short* vec, int len, short thresh, int relOp);
RYXAPI void ryxwbThresh2(const short* src, short* dst, int len, short thresh, int relOp);
RYXAPI void ryxcbThresh1(SCplx* vec, int len, float thresh, int relOp);
RYXAPI void ryxcbThresh2(const SCplx* src, SCplx* dst, int len, float thresh, int relOp);
RYXAPI void ryxzbThresh1(DCplx* vec, int len, double thresh, int relOp);
RYXAPI void ryxzbThresh2(const DCplx* src, DCplx* dst, int len, double thresh, int relOp);
RYXAPI void ryxvbThresh1(WCplx* vec, int len, short thresh, int relOp);
RYXAPI void ryxvbThresh2(const WCplx* src, WCplx* dst, int len, short thresh, int relOp);

RYXAPI void ryxsbInvThresh1(float* vec, int len, float thresh);
RYXAPI void ryxsbInvThresh2(const float* src, float* dst, int len, float thresh);
RYXAPI void ryxdbInvThresh1(double* vec, int len, double thresh);
RYXAPI void ryxdbInvThresh2(const double* src, double* dst, int len, double thresh);
RYXAPI void ryxcbInvThresh1(SCplx* vec, int len, float thresh);
RYXAPI void ryxcbInvThresh2(const SCplx* src, SCplx* dst, int len, float thresh);
RYXAPI void ryxzbInvThresh1(DCplx* vec, int len, double thresh);
RYXAPI void ryxzbInvThresh2(const DCplx* src, DCplx* dst, int len, double thresh);

RYXAPI void ryxsbAbs1(float* vec, int len);
RYXAPI void ryxsbAbs2(const float* src, float* dst, int len);
RYXAPI void ryxdbAbs1(double* vec, int len);
RYXAPI void ryxdbAbs2(const double* src, double* dst, int len);
RYXAPI void ryxwbAbs1(short* vec, int len);
RYXAPI void ryxwbAbs2(const short* src, short* dst, int len);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_VECTOR_MATH_H */
