/*
 * Fourier transforms of 16-bit samples: WCplx arrays, split 16-bit arrays,
 * and real 16-bit signals with the packed spectra of transform.h (RCCs,
 * RCPack, RCPerm). Included by ryxcore.h.
 *
 * N = 2^order. The flags are those of the float transforms, plus the core
 * choice:
 *   RYX_IntCore    integer side at any order;
 *   RYX_FloatCore  float core at any order (not together with RYX_IntCore);
 *   neither        integer side below order 8, float core from order 8;
 *   RYX_FastCore   on the integer side up to order 10, the fast core.
 * The 32-bit integer core widens each value by 2^g (g = 16 - order below
 * order 10, else 6), transforms with Q14 twiddles and narrows with one
 * rounding shift (half up) that removes the guard, the inverse's 1/N and a
 * fixed scale factor at once; its sums wrap at order 10 and up for
 * full-scale signals. The fast core works in saturating 16-bit arithmetic
 * with no scaling inside: keep headroom, or accept saturation. The float
 * core converts to float, runs the float transform and narrows back.
 *
 * Scale arguments (last two of every routine): bit 1 saturates, bit 2
 * shifts right by *scaleFactor (null reads as 0), bit 4 chooses and writes
 * the factor (the result times 2^factor is the true value). Modes with both
 * 2 and 4 are refused; mode 4 needs a non-null scaleFactor. The float core
 * rounds and clamps in modes 0 and 1 (it never wraps); the integer cores
 * wrap in mode 0. The fast core writes 0 under auto scaling and never
 * saturates at the end; its inverse and fixed scaling are plain shifts.
 *
 * RYX_Init prepares the tables and scratch of the core these flags and this
 * order choose (so give it the same core bits as later calls); RYX_Release
 * frees this order's tables of every core and the thread's scratch.
 * Memory that cannot be had after one purge of all the thread's transform
 * tables is reported as RYX_StsNoMem, "No working memory".
 */
#ifndef RYXCORE_TRANSFORM_INT16_H
#define RYXCORE_TRANSFORM_INT16_H

#ifdef __cplusplus
extern "C" {
#endif

/* Complex: N WCplx (split: N values in each array). Ordering flags as in
 * transform.h; on the integer side RYX_OutReversed saves a permutation. */
RYXAPI void ryxvFft(WCplx* samps, int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI void ryxvFftNip(const WCplx* inSamps, WCplx* outSamps, int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI void ryxvrFft(short* reSamps, short* imSamps, int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI void ryxvrFftNip(const short* reInSamps, const short* imInSamps, short* reOutSamps, short* imOutSamps,
                        int order, int flags, int scaleMode, int* scaleFactor);

/* Real signals and packed spectra, layouts as in transform.h: RealFft reads
 * N real samples and writes RCCs (N+2 values; in place the array needs
 * room for N+2), CcsFft reads RCCs and writes N samples; the l forms use
 * RCPack or RCPerm (one of RYX_RCPackOut, RYX_RCPermOut for RealFftl, one
 * of RYX_RCPackIn, RYX_RCPermIn for CcsFftl). Orders 0 and 1 of the
 * integer side are computed directly with 32-bit sums. */
RYXAPI void ryxwRealFftl(short* samps, int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI void ryxwRealFftlNip(const short* inSamps, short* outSamps, int order, int flags, int scaleMode,
                            int* scaleFactor);
RYXAPI void ryxwRealFft(short* samps, int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI void ryxwRealFftNip(const short* inSamps, short* outSamps, int order, int flags, int scaleMode,
                           int* scaleFactor);
RYXAPI void ryxwCcsFftl(short* samps, int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI void ryxwCcsFftlNip(const short* inSamps, short* outSamps, int order, int flags, int scaleMode,
                           int* scaleFactor);
RYXAPI void ryxwCcsFft(short* samps, int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI void ryxwCcsFftNip(const short* inSamps, short* outSamps, int order, int flags, int scaleMode,
                          int* scaleFactor);

/* Two signals: the float side (RYX_FloatCore, or order 8 and up without
 * RYX_IntCore) transforms both with one common factor under auto scaling;
 * the integer side runs the one-signal form on x, then on y (each writes
 * the factor, so y's stands). The result is the stored status; a failure
 * inside adds a trace report. */
RYXAPI RyxStatus ryxwReal2Fft(short* xSamps, short* ySamps, int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI RyxStatus ryxwReal2FftNip(const short* xInSamps, short* xOutSamps, const short* yInSamps, short* yOutSamps,
                                 int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI RyxStatus ryxwCcs2Fft(short* xSamps, short* ySamps, int order, int flags, int scaleMode, int* scaleFactor);
RYXAPI RyxStatus ryxwCcs2FftNip(const short* xInSamps, short* xOutSamps, const short* yInSamps, short* yOutSamps,
                                int order, int flags, int scaleMode, int* scaleFactor);

/* Products of packed 16-bit spectra (N values): Mpy..2 dst = dst*src,
 * Mpy..3 dst = srcA*srcB. The complex part goes through ryxvbMpy2/3 with
 * the same mode and factor (modes by exact value: 4 auto, 2 and 3 fixed,
 * 1 saturate, 0 wrap); the two real values use the same mode, except that
 * a fixed right shift rounds half up. Under auto scaling one factor holds
 * for the whole spectrum. */
RYXAPI void ryxwMpyRCPack2(const short* src, short* dst, int order, int scaleMode, int* scaleFactor);
RYXAPI void ryxwMpyRCPerm2(const short* src, short* dst, int order, int scaleMode, int* scaleFactor);
RYXAPI void ryxwMpyRCPack3(const short* srcA, const short* srcB, short* dst, int order, int scaleMode,
                           int* scaleFactor);
RYXAPI void ryxwMpyRCPerm3(const short* srcA, const short* srcB, short* dst, int order, int scaleMode,
                           int* scaleFactor);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_TRANSFORM_INT16_H */
