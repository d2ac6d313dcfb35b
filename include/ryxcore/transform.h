/*
 * Transform tables, complex FFT engine, real FFT and packed spectra.
 * Included by ryxcore.h.
 *
 * Every FFT length is N = 2^order, order 0 to 31 accepted by the checks
 * (memory decides the largest that runs). Forward: X[k] = sum x[n] W^(nk),
 * W = exp(-2*pi*i/N), unscaled; inverse: positive exponent and 1/N unless
 * RYX_KeepScale. Tables and scratch are kept per thread and freed at
 * thread end; pointers from the Get routines belong to the calling
 * thread's record and must not be freed.
 *
 * Packed real spectra, X[0] and X[N/2] being real:
 *   RCCs   N+2 values: Re X0, 0, Re X1, Im X1, ..., Re X(N/2), 0
 *   RCPack N values:   Re X0, Re X1, Im X1, ..., Im X(N/2-1), Re X(N/2)
 *   RCPerm N values:   Re X0, Re X(N/2), Re X1, Im X1, ..., Im X(N/2-1)
 */
#ifndef RYXCORE_TRANSFORM_H
#define RYXCORE_TRANSFORM_H

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Bit reversal ------------------------------------------------------- */

RYXAPI int ryxBitRev(int a, int order);
RYXAPI void ryxCalcBitRevTbl(int* tbl, int order);
RYXAPI int* ryxGetBitRevTbl(int order);
RYXAPI void ryxFreeBitRevTbls(void);
RYXAPI void ryxwbBitRev1(short* vec, int order);
RYXAPI void ryxvbBitRev1(WCplx* vec, int order);
RYXAPI void ryxsbBitRev1(float* vec, int order);
RYXAPI void ryxcbBitRev1(SCplx* vec, int order);
RYXAPI void ryxdbBitRev1(double* vec, int order);
RYXAPI void ryxzbBitRev1(DCplx* vec, int order);
RYXAPI void ryxwbBitRev2(const short* src, short* dst, int order);
RYXAPI void ryxvbBitRev2(const WCplx* src, WCplx* dst, int order);
RYXAPI void ryxsbBitRev2(const float* src, float* dst, int order);
RYXAPI void ryxcbBitRev2(const SCplx* src, SCplx* dst, int order);
RYXAPI void ryxdbBitRev2(const double* src, double* dst, int order);
RYXAPI void ryxzbBitRev2(const DCplx* src, DCplx* dst, int order);

/* ---- Twiddle tables ------------------------------------------------------ */

RYXAPI void ryxcCalcFftTwdTbl(SCplx* tbl, int order);
RYXAPI void ryxzCalcFftTwdTbl(DCplx* tbl, int order);
RYXAPI void ryxvCalcFftTwdTbl(WCplx* tbl, int order);
RYXAPI SCplx* ryxcGetFftTwdTbl(int order);
RYXAPI DCplx* ryxzGetFftTwdTbl(int order);
RYXAPI WCplx* ryxvGetFftTwdTbl(int order);
RYXAPI void ryxcCalcDftTwdTbl(SCplx* tbl, int length);
RYXAPI void ryxzCalcDftTwdTbl(DCplx* tbl, int length);
RYXAPI void ryxvCalcDftTwdTbl(WCplx* tbl, int length);
RYXAPI SCplx* ryxcGetDftTwdTbl(int length);
RYXAPI DCplx* ryxzGetDftTwdTbl(int length);
RYXAPI WCplx* ryxvGetDftTwdTbl(int length);
RYXAPI void ryxcFreeTwdTbls(void);
RYXAPI void ryxzFreeTwdTbls(void);
RYXAPI void ryxvFreeTwdTbls(void);

/* ---- Complex FFT ---------------------------------------------------------- */

RYXAPI void ryxcFft(SCplx* samps, int order, int flags);
RYXAPI void ryxzFft(DCplx* samps, int order, int flags);
RYXAPI void ryxcFftNip(const SCplx* inSamps, SCplx* outSamps, int order, int flags);
RYXAPI void ryxzFftNip(const DCplx* inSamps, DCplx* outSamps, int order, int flags);
RYXAPI void ryxcrFft(float* reSamps, float* imSamps, int order, int flags);
RYXAPI void ryxzrFft(double* reSamps, double* imSamps, int order, int flags);
RYXAPI void ryxcrFftNip(const float* reInSamps, const float* imInSamps, float* reOutSamps, float* imOutSamps,
                        int order, int flags);
RYXAPI void ryxzrFftNip(const double* reInSamps, const double* imInSamps, double* reOutSamps, double* imOutSamps,
                        int order, int flags);

/* ---- Real FFT and packed spectra ------------------------------------------ */

RYXAPI void ryxsRealFftl(float* samps, int order, int flags);
RYXAPI void ryxdRealFftl(double* samps, int order, int flags);
RYXAPI void ryxsRealFftlNip(const float* inSamps, float* outSamps, int order, int flags);
RYXAPI void ryxdRealFftlNip(const double* inSamps, double* outSamps, int order, int flags);
RYXAPI void ryxsCcsFftl(float* samps, int order, int flags);
RYXAPI void ryxdCcsFftl(double* samps, int order, int flags);
RYXAPI void ryxsCcsFftlNip(const float* inSamps, float* outSamps, int order, int flags);
RYXAPI void ryxdCcsFftlNip(const double* inSamps, double* outSamps, int order, int flags);
RYXAPI void ryxsRealFft(float* samps, int order, int flags);
RYXAPI void ryxdRealFft(double* samps, int order, int flags);
RYXAPI void ryxsRealFftNip(const float* inSamps, float* outSamps, int order, int flags);
RYXAPI void ryxdRealFftNip(const double* inSamps, double* outSamps, int order, int flags);
RYXAPI void ryxsCcsFft(float* samps, int order, int flags);
RYXAPI void ryxdCcsFft(double* samps, int order, int flags);
RYXAPI void ryxsCcsFftNip(const float* inSamps, float* outSamps, int order, int flags);
RYXAPI void ryxdCcsFftNip(const double* inSamps, double* outSamps, int order, int flags);
RYXAPI RyxStatus ryxsReal2Fft(float* xSamps, float* ySamps, int order, int flags);
RYXAPI RyxStatus ryxdReal2Fft(double* xSamps, double* ySamps, int order, int flags);
RYXAPI RyxStatus ryxsReal2FftNip(const float* xInSamps, float* xOutSamps, const float* yInSamps, float* yOutSamps,
                                 int order, int flags);
RYXAPI RyxStatus ryxdReal2FftNip(const double* xInSamps, double* xOutSamps, const double* yInSamps,
                                 double* yOutSamps, int order, int flags);
RYXAPI RyxStatus ryxsCcs2Fft(float* xSamps, float* ySamps, int order, int flags);
RYXAPI RyxStatus ryxdCcs2Fft(double* xSamps, double* ySamps, int order, int flags);
RYXAPI RyxStatus ryxsCcs2FftNip(const float* xInSamps, float* xOutSamps, const float* yInSamps, float* yOutSamps,
                                int order, int flags);
RYXAPI RyxStatus ryxdCcs2FftNip(const double* xInSamps, double* xOutSamps, const double* yInSamps,
                                double* yOutSamps, int order, int flags);
RYXAPI void ryxsMpyRCPack2(const float* src, float* dst, int order);
RYXAPI void ryxdMpyRCPack2(const double* src, double* dst, int order);
RYXAPI void ryxsMpyRCPack3(const float* srcA, const float* srcB, float* dst, int order);
RYXAPI void ryxdMpyRCPack3(const double* srcA, const double* srcB, double* dst, int order);
RYXAPI void ryxsMpyRCPerm2(const float* src, float* dst, int order);
RYXAPI void ryxdMpyRCPerm2(const double* src, double* dst, int order);
RYXAPI void ryxsMpyRCPerm3(const float* srcA, const float* srcB, float* dst, int order);
RYXAPI void ryxdMpyRCPerm3(const double* srcA, const double* srcB, double* dst, int order);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_TRANSFORM_H */
