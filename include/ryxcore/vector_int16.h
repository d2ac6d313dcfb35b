/*
 * 16-bit arithmetic with scale modes, division, logic and shifts.
 * Included by ryxcore.h.
 *
 * Scale modes (trailing scaleMode, scaleFactor of the w and v arithmetic):
 * the routines read scaleMode by exact value.
 *   0  wrap: keep the low 16 bits of the exact result;
 *   1  saturate: clamp to -32768 .. 32767;
 *   3  fixed scale with saturation, factor read through scaleFactor;
 *   4  auto scale: the least right shift that makes every result fit is
 *      chosen and written to *scaleFactor (which must not be null);
 *   2 and every other value: fixed scale with wrap.
 * A positive factor s shifts the exact result right by s (rounding towards
 * minus infinity), a negative one shifts it left; a null scaleFactor
 * stands for 0 under the fixed modes.
 *
 * The Div family returns 0, RYX_DivByZero (-9, data written), RYX_StsNullPtr
 * (-10) or RYX_DivBadLen (-11); the stored status of a failure is always
 * RYX_StsBadArg. It checks its pointers before the length. A zero divisor
 * is reported through ryxError as well, so in RYX_ErrorModeLeaf it ends
 * the process: divide data that may hold zeros in Parent or Silent mode.
 * Div3 computes srcA / srcB, Div2 dst / src, Div1 dst / val.
 */
#ifndef RYXCORE_VECTOR_INT16_H
#define RYXCORE_VECTOR_INT16_H

#ifdef __cplusplus
extern "C" {
#endif

/* ---- 16-bit arithmetic with scale modes -------------------------------- */

RYXAPI void ryxwbAdd1(short val, short* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbAdd2(const short* src, short* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbAdd3(const short* srcA, const short* srcB, short* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbSub1(short val, short* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbSub2(const short* src, short* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbSub3(const short* srcA, const short* srcB, short* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbMpy1(short val, short* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbMpy2(const short* src, short* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbMpy3(const short* srcA, const short* srcB, short* dst, int n, int scaleMode, int* scaleFactor);

RYXAPI void ryxvbAdd1(WCplx val, WCplx* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbAdd2(const WCplx* src, WCplx* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbAdd3(const WCplx* srcA, const WCplx* srcB, WCplx* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbSub1(WCplx val, WCplx* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbSub2(const WCplx* src, WCplx* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbSub3(const WCplx* srcA, const WCplx* srcB, WCplx* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbMpy1(WCplx val, WCplx* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbMpy2(const WCplx* src, WCplx* dst, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxvbMpy3(const WCplx* srcA, const WCplx* srcB, WCplx* dst, int n, int scaleMode, int* scaleFactor);

RYXAPI void ryxwbZero(short* dst, int n);
RYXAPI void ryxwbSet(short val, short* dst, int n);
RYXAPI void ryxwbCopy(const short* src, short* dst, int n);
RYXAPI void ryxvbZero(WCplx* dst, int n);
RYXAPI void ryxvbSet(WCplx val, WCplx* dst, int n);
RYXAPI void ryxvbCopy(const WCplx* src, WCplx* dst, int n);

/* Conjugates negate the imaginary part in 16 bits: -32768 stays -32768. */
RYXAPI void ryxvbConj1(WCplx* vec, int n);
RYXAPI void ryxvbConj2(const WCplx* src, WCplx* dst, int n);
RYXAPI void ryxvbConjFlip2(const WCplx* src, WCplx* dst, int n);
RYXAPI void ryxvbConjExtend1(WCplx* vec, int n);
RYXAPI void ryxvbConjExtend2(const WCplx* src, WCplx* dst, int n);

/* Scalar helpers. Add, Sub and Mpy run the array routine on one element. */
RYXAPI WCplx ryxvAdd(WCplx a, WCplx b, int scaleMode, int* scaleFactor);
RYXAPI WCplx ryxvSub(WCplx a, WCplx b, int scaleMode, int* scaleFactor);
RYXAPI WCplx ryxvMpy(WCplx a, WCplx b, int scaleMode, int* scaleFactor);
RYXAPI WCplx ryxvDiv(WCplx a, WCplx b);
RYXAPI WCplx ryxvConj(WCplx a);
RYXAPI WCplx ryxvSet(short re, short im);

/* ---- Division ---------------------------------------------------------- */

RYXAPI RyxStatus ryxsbDiv1(float val, float* dst, int n);
RYXAPI RyxStatus ryxsbDiv2(const float* src, float* dst, int n);
RYXAPI RyxStatus ryxsbDiv3(const float* srcA, const float* srcB, float* dst, int n);
RYXAPI RyxStatus ryxdbDiv1(double val, double* dst, int n);
RYXAPI RyxStatus ryxdbDiv2(const double* src, double* dst, int n);
RYXAPI RyxStatus ryxdbDiv3(const double* srcA, const double* srcB, double* dst, int n);
RYXAPI RyxStatus ryxcbDiv1(SCplx val, SCplx* dst, int n);
RYXAPI RyxStatus ryxcbDiv2(const SCplx* src, SCplx* dst, int n);
RYXAPI RyxStatus ryxcbDiv3(const SCplx* srcA, const SCplx* srcB, SCplx* dst, int n);
RYXAPI RyxStatus ryxzbDiv1(DCplx val, DCplx* dst, int n);
RYXAPI RyxStatus ryxzbDiv2(const DCplx* src, DCplx* dst, int n);
RYXAPI RyxStatus ryxzbDiv3(const DCplx* srcA, const DCplx* srcB, DCplx* dst, int n);
RYXAPI RyxStatus ryxwbDiv1(short val, short* dst, int n);
RYXAPI RyxStatus ryxwbDiv2(const short* src, short* dst, int n);
RYXAPI RyxStatus ryxwbDiv3(const short* srcA, const short* srcB, short* dst, int n);
RYXAPI RyxStatus ryxvbDiv1(WCplx val, WCplx* dst, int n);
RYXAPI RyxStatus ryxvbDiv2(const WCplx* src, WCplx* dst, int n);
RYXAPI RyxStatus ryxvbDiv3(const WCplx* srcA, const WCplx* srcB, WCplx* dst, int n);

/* ---- Logic and shifts on 16-bit words ---------------------------------- */

RYXAPI void ryxwbAnd1(short val, short* dst, int n);
RYXAPI void ryxwbAnd2(const short* src, short* dst, int n);
RYXAPI void ryxwbAnd3(const short* srcA, const short* srcB, short* dst, int n);
RYXAPI void ryxwbOr1(short val, short* dst, int n);
RYXAPI void ryxwbOr2(const short* src, short* dst, int n);
RYXAPI void ryxwbOr3(const short* srcA, const short* srcB, short* dst, int n);
RYXAPI void ryxwbXor1(short val, short* dst, int n);
RYXAPI void ryxwbXor2(const short* src, short* dst, int n);
RYXAPI void ryxwbXor3(const short* srcA, const short* srcB, short* dst, int n);
RYXAPI void ryxwbNot(short* dst, int n);
/* Counts below 0 clear the array; 16 or more clear it (left) or fill it
   with the sign (right). */
RYXAPI void ryxwbShiftL(short* dst, int n, int count);
RYXAPI void ryxwbShiftR(short* dst, int n, int count);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_VECTOR_INT16_H */
