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
 *
 * Flags every transform reads: exactly one of RYX_Forward, RYX_Inverse
 * (both or neither is reported); RYX_KeepScale drops the 1/N of the
 * inverse; RYX_Init only builds this order's tables and scratch and
 * returns (sample pointers may be NULL, no direction needed); RYX_Release
 * only frees this order's tables and the thread's FFT scratch (no checks).
 * Bits a routine does not read are ignored. Checks run after the table
 * work: order ("order<0", "order>31"), NULL pointers, then flags.
 *
 * Nip forms read one array and write another: the two must not overlap and
 * the input is left untouched. Arrays need not be aligned.
 */
#ifndef RYXCORE_TRANSFORM_H
#define RYXCORE_TRANSFORM_H

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Bit reversal ------------------------------------------------------- */
/* ryxBitRev(a, order): a with its low order bits reversed. Calc fills the
 * caller's array of 2^order ints; Get returns the thread's cached table
 * (owned by the thread, never free it) or NULL. BitRev1 permutes in place,
 * BitRev2 copies src into dst in bit-reversed order (no overlap). Get and
 * ryxBitRev give up (0 or NULL) while a failure is stored on the thread:
 * clear it with ryxSetErrStatus(RYX_StsOk) first. */

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
/* Entry k is (cos(2 pi k/N), -sin(2 pi k/N)); the 16-bit tables hold 16384
 * times that, truncated. FftTwd tables have N = 2^order entries, DftTwd
 * tables `length` entries. Calc fills the caller's array; Get returns the
 * thread's cached table (do not free; valid until a Free routine or the
 * thread's end). FreeTwdTbls releases the thread's tables of the type. */

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
/* N complex values (split forms: N reals in each array), transformed in
 * place or (Nip) into the output. Extra flags: RYX_InReversed (input is
 * already in bit-reversed order), RYX_OutReversed (leave the output
 * bit-reversed), RYX_NaturalOrder (neither, the default); at most one. */

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
/* The name says which way: RealFft reads N real samples and writes a packed
 * spectrum; CcsFft reads a packed spectrum and writes N real samples. The
 * flag only chooses the exponent's sign and the scaling:
 *   RealFft, RYX_Forward: the spectrum X      RealFft, RYX_Inverse: conj(X)/N
 *   CcsFft,  RYX_Inverse: x[n] = 1/N sum X[k] exp(+2 pi i nk/N), which
 *                         undoes RealFft with RYX_Forward;
 *   CcsFft,  RYX_Forward: the same sum with exp(-...) and no 1/N, which
 *                         undoes RealFft with RYX_Inverse. It is accepted:
 *                         on a spectrum from RealFft/RYX_Forward it yields
 *                         N*x[-n mod N], not x.
 * Forms without l use RCCs: in place the array needs N+2 elements; Nip
 * RealFft writes N+2, Nip CcsFft reads N+2. The l forms use N elements in
 * RCPack or RCPerm and need exactly one layout flag: RealFftl one of
 * RYX_RCPackOut, RYX_RCPermOut; CcsFftl one of RYX_RCPackIn, RYX_RCPermIn.
 * The Nip CcsFftl form with RCPack input writes shifted values into its
 * output, never its input. Real samples are always in natural order.
 * Real2Fft/Ccs2Fft run the one-signal form on x, then on y, and return the
 * stored status (a failure also adds a trace report). */

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
/* Spectrum products in one layout (N = 2^order values): Mpy..2 dst = dst*src,
 * Mpy..3 dst = srcA*srcB; dst may be one of the sources. A product of two
 * spectra is the spectrum of the circular convolution of the signals. */
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
