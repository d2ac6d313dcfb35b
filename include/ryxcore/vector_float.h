/*
 * Elementwise arithmetic on float, double, SCplx and DCplx arrays: fill,
 * copy, add, subtract, multiply in three shapes, the conjugates and the
 * scalar complex helpers. Included by ryxcore.h.
 *
 * Shapes: 1 = in place with a scalar (dst[i] = dst[i] op val),
 *         2 = dst[i] = dst[i] op src[i],
 *         3 = dst[i] = srcA[i] op srcB[i].
 * n <= 0 is reported as "n<=0", never treated as a no-op. The same array may
 * be given as src and dst (or srcA and dst); other overlaps are undefined.
 * Checks: n first, then pointers, sources before dst; the first failure is
 * reported and the call returns without writing. Sub1/Sub2 subtract the
 * scalar or src from dst. Arrays need not be aligned.
 * Complex products are re = a.re*b.re - a.im*b.im, im = a.re*b.im + a.im*b.re
 * in the element's own precision.
 */
#ifndef RYXCORE_VECTOR_FLOAT_H
#define RYXCORE_VECTOR_FLOAT_H

#ifdef __cplusplus
extern "C" {
#endif

/* float */
RYXAPI void ryxsbZero(float* dst, int n);
RYXAPI void ryxsbSet(float val, float* dst, int n);
RYXAPI void ryxsbCopy(const float* src, float* dst, int n);
RYXAPI void ryxsbAdd1(float val, float* dst, int n);
RYXAPI void ryxsbAdd2(const float* src, float* dst, int n);
RYXAPI void ryxsbAdd3(const float* srcA, const float* srcB, float* dst, int n);
RYXAPI void ryxsbSub1(float val, float* dst, int n);
RYXAPI void ryxsbSub2(const float* src, float* dst, int n);
RYXAPI void ryxsbSub3(const float* srcA, const float* srcB, float* dst, int n);
RYXAPI void ryxsbMpy1(float val, float* dst, int n);
RYXAPI void ryxsbMpy2(const float* src, float* dst, int n);
RYXAPI void ryxsbMpy3(const float* srcA, const float* srcB, float* dst, int n);

/* double */
RYXAPI void ryxdbZero(double* dst, int n);
RYXAPI void ryxdbSet(double val, double* dst, int n);
RYXAPI void ryxdbCopy(const double* src, double* dst, int n);
RYXAPI void ryxdbAdd1(double val, double* dst, int n);
RYXAPI void ryxdbAdd2(const double* src, double* dst, int n);
RYXAPI void ryxdbAdd3(const double* srcA, const double* srcB, double* dst, int n);
RYXAPI void ryxdbSub1(double val, double* dst, int n);
RYXAPI void ryxdbSub2(const double* src, double* dst, int n);
RYXAPI void ryxdbSub3(const double* srcA, const double* srcB, double* dst, int n);
RYXAPI void ryxdbMpy1(double val, double* dst, int n);
RYXAPI void ryxdbMpy2(const double* src, double* dst, int n);
RYXAPI void ryxdbMpy3(const double* srcA, const double* srcB, double* dst, int n);

/* SCplx */
RYXAPI void ryxcbZero(SCplx* dst, int n);
RYXAPI void ryxcbSet(SCplx val, SCplx* dst, int n);
RYXAPI void ryxcbCopy(const SCplx* src, SCplx* dst, int n);
RYXAPI void ryxcbAdd1(SCplx val, SCplx* dst, int n);
RYXAPI void ryxcbAdd2(const SCplx* src, SCplx* dst, int n);
RYXAPI void ryxcbAdd3(const SCplx* srcA, const SCplx* srcB, SCplx* dst, int n);
RYXAPI void ryxcbSub1(SCplx val, SCplx* dst, int n);
RYXAPI void ryxcbSub2(const SCplx* src, SCplx* dst, int n);
RYXAPI void ryxcbSub3(const SCplx* srcA, const SCplx* srcB, SCplx* dst, int n);
RYXAPI void ryxcbMpy1(SCplx val, SCplx* dst, int n);
RYXAPI void ryxcbMpy2(const SCplx* src, SCplx* dst, int n);
RYXAPI void ryxcbMpy3(const SCplx* srcA, const SCplx* srcB, SCplx* dst, int n);

/* DCplx */
RYXAPI void ryxzbZero(DCplx* dst, int n);
RYXAPI void ryxzbSet(DCplx val, DCplx* dst, int n);
RYXAPI void ryxzbCopy(const DCplx* src, DCplx* dst, int n);
RYXAPI void ryxzbAdd1(DCplx val, DCplx* dst, int n);
RYXAPI void ryxzbAdd2(const DCplx* src, DCplx* dst, int n);
RYXAPI void ryxzbAdd3(const DCplx* srcA, const DCplx* srcB, DCplx* dst, int n);
RYXAPI void ryxzbSub1(DCplx val, DCplx* dst, int n);
RYXAPI void ryxzbSub2(const DCplx* src, DCplx* dst, int n);
RYXAPI void ryxzbSub3(const DCplx* srcA, const DCplx* srcB, DCplx* dst, int n);
RYXAPI void ryxzbMpy1(DCplx val, DCplx* dst, int n);
RYXAPI void ryxzbMpy2(const DCplx* src, DCplx* dst, int n);
RYXAPI void ryxzbMpy3(const DCplx* srcA, const DCplx* srcB, DCplx* dst, int n);

/* ---- Conjugates (sign bit of the imaginary part flipped) --------------- */
/* ConjFlip2: dst[i] = conj(src[n-1-i]). ConjExtend: the n given values are
 * the lower half of a conjugate-symmetric spectrum of 2n-2 values; the
 * routine writes vec[2n-2-k] = conj(vec[k]) for k = 1 .. n-2, so vec (dst)
 * must have room for 2n-2 values (at least n). */

RYXAPI void ryxcbConj1(SCplx* vec, int n);
RYXAPI void ryxcbConj2(const SCplx* src, SCplx* dst, int n);
RYXAPI void ryxcbConjFlip2(const SCplx* src, SCplx* dst, int n);
RYXAPI void ryxcbConjExtend1(SCplx* vec, int n);
RYXAPI void ryxcbConjExtend2(const SCplx* src, SCplx* dst, int n);
RYXAPI void ryxzbConj1(DCplx* vec, int n);
RYXAPI void ryxzbConj2(const DCplx* src, DCplx* dst, int n);
RYXAPI void ryxzbConjFlip2(const DCplx* src, DCplx* dst, int n);
RYXAPI void ryxzbConjExtend1(DCplx* vec, int n);
RYXAPI void ryxzbConjExtend2(const DCplx* src, DCplx* dst, int n);

/* ---- Scalar complex helpers -------------------------------------------- */
/* SCplx helpers compute in double and round once to float. The Out forms
 * write the result through val (checked first, "val==0"). */

RYXAPI SCplx ryxcAdd(SCplx a, SCplx b);
RYXAPI SCplx ryxcSub(SCplx a, SCplx b);
RYXAPI SCplx ryxcMpy(SCplx a, SCplx b);
RYXAPI SCplx ryxcDiv(SCplx a, SCplx b);
RYXAPI SCplx ryxcConj(SCplx a);
RYXAPI SCplx ryxcSet(float re, float im);
RYXAPI void ryxcAddOut(SCplx a, SCplx b, SCplx* val);
RYXAPI void ryxcSubOut(SCplx a, SCplx b, SCplx* val);
RYXAPI void ryxcMpyOut(SCplx a, SCplx b, SCplx* val);
RYXAPI void ryxcDivOut(SCplx a, SCplx b, SCplx* val);
RYXAPI void ryxcConjOut(SCplx a, SCplx* val);
RYXAPI void ryxcSetOut(float re, float im, SCplx* val);

RYXAPI DCplx ryxzAdd(DCplx a, DCplx b);
RYXAPI DCplx ryxzSub(DCplx a, DCplx b);
RYXAPI DCplx ryxzMpy(DCplx a, DCplx b);
RYXAPI DCplx ryxzDiv(DCplx a, DCplx b);
RYXAPI DCplx ryxzConj(DCplx a);
RYXAPI DCplx ryxzSet(double re, double im);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_VECTOR_FLOAT_H */
