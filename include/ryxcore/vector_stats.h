/*
 * Reductions and dot products: sums, means, standard deviations, extremes
 * (with index), C/L1/L2 norms (absolute and relative, 32-bit scaled forms),
 * normalisation by an offset and a factor, and the typed and mixed dot
 * products. Included by ryxcore.h.
 *
 * Reductions check "n<=0" or "len<=0" and their pointers, stop at the first
 * failure and give 0 (-1 for ryxwStdDev, the stored status for routines
 * that write their result through a pointer). Dot products check their
 * pointers first ("Null buffer pointer"), then "Invalid value" for a
 * negative n; n of 0 is valid and gives zero.
 *
 * 16-bit sums are exact in 64 bits; 16-bit dot totals wrap in 32 bits.
 * ryxwSum, ryxvSum, ryxwStdDev and the NormExt forms read scaleMode by
 * single bits; ryxwDotProd, ryxvDotProd and the Ext dot products by exact
 * value.
 */
#ifndef RYXCORE_VECTOR_STATS_H
#define RYXCORE_VECTOR_STATS_H

#ifdef __cplusplus
extern "C" {
#endif

/* Norm kinds: exactly one of C, L1, L2, L2SQUARED, optionally | RELATIVE. */
enum RyxNormFlag {
  RYX_C = 1,          /* largest absolute value */
  RYX_L1 = 2,         /* sum of absolute values */
  RYX_L2 = 4,         /* root of the sum of squares */
  RYX_RELATIVE = 8,   /* norm(srcA - srcB) / norm(srcA) */
  RYX_L2SQUARED = 16  /* sum of squares, no root */
};

/* ---- Sums, means, standard deviations ---------------------------------- */

RYXAPI float ryxsSum(const float* src, int n);
RYXAPI double ryxdSum(const double* src, int n);
RYXAPI RyxStatus ryxcSum(const SCplx* src, int n, SCplx* sum);
RYXAPI RyxStatus ryxzSum(const DCplx* src, int n, DCplx* sum);
RYXAPI int ryxwSum(const short* src, int n, int scaleMode, int* scaleFactor);
RYXAPI RyxStatus ryxvSum(const WCplx* src, int n, ICplx* sum, int scaleMode, int* scaleFactor);

RYXAPI float ryxsMean(const float* vec, int len);
RYXAPI double ryxdMean(const double* vec, int len);
RYXAPI RyxStatus ryxcMean(const SCplx* vec, int len, SCplx* mean);
RYXAPI RyxStatus ryxzMean(const DCplx* vec, int len, DCplx* mean);
RYXAPI int ryxwMean(const short* vec, int len);
RYXAPI RyxStatus ryxvMean(const WCplx* vec, int len, WCplx* mean);

RYXAPI float ryxsStdDev(const float* vec, int len);
RYXAPI double ryxdStdDev(const double* vec, int len);
RYXAPI int ryxwStdDev(const short* vec, int len, int scaleMode, int* scaleFactor);

/* ---- Extremes ---------------------------------------------------------- */

RYXAPI float ryxsMax(const float* vec, int len);
RYXAPI float ryxsMin(const float* vec, int len);
RYXAPI double ryxdMax(const double* vec, int len);
RYXAPI double ryxdMin(const double* vec, int len);
RYXAPI short ryxwMax(const short* vec, int len);
RYXAPI short ryxwMin(const short* vec, int len);
/* The Ext forms write the lowest index of the extreme; a null index is
 * allowed and writes nothing. */
RYXAPI float ryxsMaxExt(const float* vec, int len, int* index);
RYXAPI float ryxsMinExt(const float* vec, int len, int* index);
RYXAPI double ryxdMaxExt(const double* vec, int len, int* index);
RYXAPI double ryxdMinExt(const double* vec, int len, int* index);
RYXAPI short ryxwMaxExt(const short* vec, int len, int* index);
RYXAPI short ryxwMinExt(const short* vec, int len, int* index);

/* ---- Norms ------------------------------------------------------------- */

/* The norm of srcA - srcB, or of srcA when srcB is null. */
RYXAPI float ryxsNorm(const float* srcA, const float* srcB, int n, int flag);
RYXAPI double ryxdNorm(const double* srcA, const double* srcB, int n, int flag);
RYXAPI float ryxcNorm(const SCplx* srcA, const SCplx* srcB, int n, int flag);
RYXAPI double ryxzNorm(const DCplx* srcA, const DCplx* srcB, int n, int flag);
RYXAPI float ryxwNorm(const short* srcA, const short* srcB, int n, int flag);
RYXAPI float ryxvNorm(const WCplx* srcA, const WCplx* srcB, int n, int flag);
RYXAPI int ryxwNormExt(const short* srcA, const short* srcB, int n, int flag, int scaleMode, int* scaleFactor);
RYXAPI int ryxvNormExt(const WCplx* srcA, const WCplx* srcB, int n, int flag, int scaleMode, int* scaleFactor);

/* ---- Normalisation: dst[i] = (src[i] - offset) * (1 / factor) ----------- */

RYXAPI void ryxsbNormalize(const float* src, float* dst, int n, float offset, float factor);
RYXAPI void ryxdbNormalize(const double* src, double* dst, int n, double offset, double factor);
RYXAPI void ryxcbNormalize(const SCplx* src, SCplx* dst, int n, SCplx offset, float factor);
RYXAPI void ryxzbNormalize(const DCplx* src, DCplx* dst, int n, DCplx offset, double factor);
/* 16-bit forms round to nearest even in float and keep the low 16 bits. */
RYXAPI void ryxwbNormalize(const short* src, short* dst, int n, short offset, float factor);
RYXAPI void ryxvbNormalize(const WCplx* src, WCplx* dst, int n, WCplx offset, float factor);

/* ---- Dot products (no conjugation) -------------------------------------- */

RYXAPI float ryxsDotProd(const float* srcA, const float* srcB, int n);
RYXAPI SCplx ryxcDotProd(const SCplx* srcA, const SCplx* srcB, int n);
RYXAPI SCplx ryxscDotProd(const float* srcA, const SCplx* srcB, int n);
RYXAPI SCplx ryxcsDotProd(const SCplx* srcA, const float* srcB, int n);
RYXAPI void ryxcDotProdOut(const SCplx* srcA, const SCplx* srcB, int n, SCplx* val);
RYXAPI void ryxscDotProdOut(const float* srcA, const SCplx* srcB, int n, SCplx* val);
RYXAPI void ryxcsDotProdOut(const SCplx* srcA, const float* srcB, int n, SCplx* val);
RYXAPI double ryxdDotProd(const double* srcA, const double* srcB, int n);
RYXAPI DCplx ryxzDotProd(const DCplx* srcA, const DCplx* srcB, int n);
RYXAPI DCplx ryxdzDotProd(const double* srcA, const DCplx* srcB, int n);
RYXAPI DCplx ryxzdDotProd(const DCplx* srcA, const double* srcB, int n);

RYXAPI short ryxwDotProd(const short* srcA, const short* srcB, int n, int scaleMode, int* scaleFactor);
RYXAPI WCplx ryxvDotProd(const WCplx* srcA, const WCplx* srcB, int n, int scaleMode, int* scaleFactor);
RYXAPI WCplx ryxwvDotProd(const short* srcA, const WCplx* srcB, int n, int scaleMode, int* scaleFactor);
RYXAPI WCplx ryxvwDotProd(const WCplx* srcA, const short* srcB, int n, int scaleMode, int* scaleFactor);
RYXAPI int ryxwDotProdExt(const short* srcA, const short* srcB, int n, int scaleMode, int* scaleFactor);
RYXAPI ICplx ryxvDotProdExt(const WCplx* srcA, const WCplx* srcB, int n, int scaleMode, int* scaleFactor);
RYXAPI ICplx ryxwvDotProdExt(const short* srcA, const WCplx* srcB, int n, int scaleMode, int* scaleFactor);
RYXAPI ICplx ryxvwDotProdExt(const WCplx* srcA, const short* srcB, int n, int scaleMode, int* scaleFactor);
RYXAPI void ryxvDotProdExtOut(const WCplx* srcA, const WCplx* srcB, int n, int scaleMode, int* scaleFactor, ICplx* val);
RYXAPI void ryxwvDotProdExtOut(const short* srcA, const WCplx* srcB, int n, int scaleMode, int* scaleFactor,
                               ICplx* val);
RYXAPI void ryxvwDotProdExtOut(const WCplx* srcA, const short* srcB, int n, int scaleMode, int* scaleFactor,
                               ICplx* val);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_VECTOR_STATS_H */
