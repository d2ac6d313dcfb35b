/*
 * Convolution and correlation. Included by ryxcore.h.
 *
 * Conv: the full linear convolution y[k] = sum x[i] h[k-i], of length
 * xLen + hLen - 1. Each call picks a direct sum, one transform of the whole
 * result, or overlap-save blocks from per-type cost tables, so the last bits
 * of a result depend on the lengths. The 16-bit form takes a float detour
 * for long operands (shorter >= 256; >= 128 with longer >= 512; >= 64 with
 * longer >= 8192), narrowed by the shared scale rule (mode by exact value,
 * factor written under RYX_AUTO_SCALE); otherwise an exact 32-bit integer
 * kernel that shifts by *scaleFactor only under RYX_FIXED_SCALE, saturates
 * under RYX_SATURATE, and never writes *scaleFactor. Checks stop at the
 * first failure: "x==0", "xLen<=0", "h==0", "hLen<=0", "y==0". Returns the
 * stored status.
 *
 * Conv2D: full 2-D convolution of row-major arrays, (xRows + hRows - 1) rows
 * of (xCols + hCols - 1). Filter2D: the xRows by xCols central part,
 * y[r][c] = conv[r + hRows/2][c + hCols/2].
 *
 * CrossCorr: r(k) = sum_n conj(src1[n]) src2[n + k] for k = loLag..hiLag,
 * into hiLag - loLag + 1 values. AutoCorr: lags 0..nLags-1 of a vector with
 * itself, raw, divided by srcLen, or lag k divided by srcLen - k. 16-bit
 * forms are direct, exact in 32 bits, narrowed by the shared scale rule.
 */
#ifndef RYXCORE_CORRELATE_H
#define RYXCORE_CORRELATE_H

#ifdef __cplusplus
extern "C" {
#endif

/* Autocorrelation normalisation. */
enum RyxCorrType {
  RYX_CorrNormal = 0,   /* raw sums */
  RYX_CorrBiased = 1,   /* each lag divided by srcLen */
  RYX_CorrUnbiased = 2  /* lag k divided by srcLen - k */
};

/* ---- One-dimensional convolution ----------------------------------------- */

RYXAPI RyxStatus ryxsConv(const float* x, int xLen, const float* h, int hLen, float* y);
RYXAPI RyxStatus ryxcConv(const SCplx* x, int xLen, const SCplx* h, int hLen, SCplx* y);
RYXAPI RyxStatus ryxcsConv(const SCplx* x, int xLen, const float* h, int hLen, SCplx* y);
RYXAPI RyxStatus ryxscConv(const float* x, int xLen, const SCplx* h, int hLen, SCplx* y);
RYXAPI RyxStatus ryxdConv(const double* x, int xLen, const double* h, int hLen, double* y);
RYXAPI RyxStatus ryxzConv(const DCplx* x, int xLen, const DCplx* h, int hLen, DCplx* y);
RYXAPI RyxStatus ryxzdConv(const DCplx* x, int xLen, const double* h, int hLen, DCplx* y);
RYXAPI RyxStatus ryxdzConv(const double* x, int xLen, const DCplx* h, int hLen, DCplx* y);
RYXAPI RyxStatus ryxwConv(const short* x, int xLen, const short* h, int hLen, short* y, int scaleMode,
                          int* scaleFactor);

/* ---- Two-dimensional convolution and filtering ------------------------------
 * x is xRows rows of xCols, h hRows of hCols, row-major. Conv2D checks stop
 * at the first failure ("\nNull pointer to data buffer\n" for x, h, y, then
 * "\nBad value of data buffer size\n" for xCols, xRows, hCols, hRows); a
 * working array that cannot be had is reported as out of memory.
 * ryxwConv2D with all four sizes at least 8 convolves in float and narrows
 * by the shared scale rule, otherwise it runs the exact integer kernel of
 * ryxwConv. Filter2D falls back to direct sums (double, one rounding) when
 * memory is short; ryxwFilter2D narrows its 32-bit sums by the shared rule
 * and needs scaleFactor under RYX_AUTO_SCALE. */

RYXAPI void ryxsConv2D(const float* x, int xCols, int xRows, const float* h, int hCols, int hRows, float* y);
RYXAPI void ryxdConv2D(const double* x, int xCols, int xRows, const double* h, int hCols, int hRows, double* y);
RYXAPI void ryxwConv2D(const short* x, int xCols, int xRows, const short* h, int hCols, int hRows, short* y,
                       int scaleMode, int* scaleFactor);
RYXAPI void ryxsFilter2D(const float* x, int xCols, int xRows, const float* h, int hCols, int hRows, float* y);
RYXAPI void ryxdFilter2D(const double* x, int xCols, int xRows, const double* h, int hCols, int hRows,
                         double* y);
RYXAPI void ryxwFilter2D(const short* x, int xCols, int xRows, const short* h, int hCols, int hRows, short* y,
                         int scaleMode, int* scaleFactor);

/* ---- Cross- and auto-correlation ---------------------------------------------
 * Checks stop at the first failure: "Null SRC buffer pointer", "Null DST
 * buffer pointer", "Invalid SRC buffer length", "Invalid LAG value"
 * (loLag > hiLag; nLags < 1 or above srcLen), "Invalid auto-corr type",
 * and in the 16-bit forms "Null scale factor pointer" (scaleMode 4 with a
 * null scaleFactor). Float forms pick direct sums or frequency-domain
 * blocks by operation count (falling back to direct sums when memory is
 * short) and release the thread's FFT tables after a transform. */

RYXAPI void ryxsCrossCorr(const float* src1, int src1Len, const float* src2, int src2Len, float* dst, int loLag,
                          int hiLag);
RYXAPI void ryxdCrossCorr(const double* src1, int src1Len, const double* src2, int src2Len, double* dst, int loLag,
                          int hiLag);
RYXAPI void ryxcCrossCorr(const SCplx* src1, int src1Len, const SCplx* src2, int src2Len, SCplx* dst, int loLag,
                          int hiLag);
RYXAPI void ryxzCrossCorr(const DCplx* src1, int src1Len, const DCplx* src2, int src2Len, DCplx* dst, int loLag,
                          int hiLag);
RYXAPI void ryxscCrossCorr(const float* src1, int src1Len, const SCplx* src2, int src2Len, SCplx* dst, int loLag,
                           int hiLag);
RYXAPI void ryxcsCrossCorr(const SCplx* src1, int src1Len, const float* src2, int src2Len, SCplx* dst, int loLag,
                           int hiLag);
RYXAPI void ryxdzCrossCorr(const double* src1, int src1Len, const DCplx* src2, int src2Len, DCplx* dst, int loLag,
                           int hiLag);
RYXAPI void ryxzdCrossCorr(const DCplx* src1, int src1Len, const double* src2, int src2Len, DCplx* dst, int loLag,
                           int hiLag);
RYXAPI void ryxwCrossCorr(const short* src1, int src1Len, const short* src2, int src2Len, short* dst, int loLag,
                          int hiLag, int scaleMode, int* scaleFactor);
RYXAPI void ryxvCrossCorr(const WCplx* src1, int src1Len, const WCplx* src2, int src2Len, WCplx* dst, int loLag,
                          int hiLag, int scaleMode, int* scaleFactor);
RYXAPI void ryxwvCrossCorr(const short* src1, int src1Len, const WCplx* src2, int src2Len, WCplx* dst, int loLag,
                           int hiLag, int scaleMode, int* scaleFactor);
RYXAPI void ryxvwCrossCorr(const WCplx* src1, int src1Len, const short* src2, int src2Len, WCplx* dst, int loLag,
                           int hiLag, int scaleMode, int* scaleFactor);

RYXAPI void ryxsAutoCorr(const float* src, int srcLen, float* dst, int nLags, int type);
RYXAPI void ryxdAutoCorr(const double* src, int srcLen, double* dst, int nLags, int type);
RYXAPI void ryxcAutoCorr(const SCplx* src, int srcLen, SCplx* dst, int nLags, int type);
RYXAPI void ryxzAutoCorr(const DCplx* src, int srcLen, DCplx* dst, int nLags, int type);
RYXAPI void ryxwAutoCorr(const short* src, int srcLen, short* dst, int nLags, int type, int scaleMode,
                         int* scaleFactor);
RYXAPI void ryxvAutoCorr(const WCplx* src, int srcLen, WCplx* dst, int nLags, int type, int scaleMode,
                         int* scaleFactor);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_CORRELATE_H */
