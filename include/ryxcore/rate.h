/*
 * Rate change and order statistics: up- and down-sampling by an integer
 * factor, the resampling filter, the median filter, and the design of
 * linear-phase FIR taps by the window method. Included by ryxcore.h.
 *
 * Up/down-sampling (ryx?UpSample, ryx?DownSample; s c d z w v): no
 * filtering. UpSample writes dst[i*factor + *phase] = src[i] and zeros
 * elsewhere, *dstLen = srcLen*factor, backwards so that dst may equal src
 * (with room for srcLen*factor samples). DownSample keeps src[*phase],
 * src[*phase + factor], ... and leaves *phase at the offset of the next
 * wanted sample in the next block, so a stream cut into blocks of any size
 * gives the samples of one call on the whole. Both return 0, or the status
 * of the failed check; a failure writes nothing.
 *
 * Median (ryx?bMedianFilter1 in place, ...2 from src into dst; s d w): an
 * even maskSize acts as the next smaller odd one; each sample becomes the
 * median of the mask samples around it, the ends extended by repeating the
 * first and last sample. Masks 3 to 9 run on branch-free min/max kernels
 * without working memory; longer masks take two small working arrays
 * (RYX_StsNoMem "out of memory" when they are not available). For float
 * data the kernels and the sorted window agree on every value except the
 * sign of a zero among equal zeros and any result involving a NaN.
 *
 * FIR design (ryxdFir{Lowpass,Highpass,Bandpass,Bandstop}): tapsLen >= 5
 * taps of a linear-phase filter by the window method, frequencies relative
 * to the sampling rate and strictly between 0 and 0.5. winType 1 Bartlett,
 * 2 optimal Blackman, 3 Hamming, 4 Hann, any other value none. A nonzero
 * doNormal scales to unit gain at 0 (lowpass, bandstop), at 0.5 (highpass)
 * or at the band centre (bandpass). The sines come from the double tone
 * generator, one recurrence per band edge. Even-length highpass filters are
 * antisymmetric, all others symmetric. The status is returned and stored:
 * RYX_StsOk on success, RYX_StsNullPtr, RYX_StsBadLen, RYX_StsBadFreq or
 * RYX_StsBadFreqOrder on failure (then taps is not written).
 *
 * Resampling (ryx?SampInit, ryx?Samp, ryxSampFree; s d): Init copies
 * factorCount expected ratios (srcLen/dstLen) and cut-off frequencies and
 * designs one Hamming lowpass row of tapsLen taps per entry. Samp turns
 * srcLen samples into dstLen: the row whose factor is nearest srcLen/dstLen
 * (the first on a tie) runs as a multirate FIR at up/down, the reduced
 * ratio of dstLen/srcLen (a nearby ratio when the exact one needs up of
 * dstLen-1 or more); the filter keeps its history while the lengths stay
 * the same. dst[dstLen-1] is preset to src[srcLen-1]; outputs beyond
 * dstLen (possible when the ratio was moved) are not written. Both return
 * 0 on success, otherwise a code of their own (-10 null pointer, -11 bad
 * length, -12 in place, -13 not initialised, -50 bad factor, -51 bad
 * frequency, -4 no memory) while the reported status is RYX_StsBadArg
 * (RYX_StsNoMem for memory); a design or filter set-up failure returns the
 * stored status. ryxSampFree ignores null and uninitialised records.
 */
#ifndef RYXCORE_RATE_H
#define RYXCORE_RATE_H

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Up- and down-sampling ---------------------------------------------- */

RYXAPI RyxStatus ryxsUpSample(const float* src, int srcLen, float* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxcUpSample(const SCplx* src, int srcLen, SCplx* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxdUpSample(const double* src, int srcLen, double* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxzUpSample(const DCplx* src, int srcLen, DCplx* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxwUpSample(const short* src, int srcLen, short* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxvUpSample(const WCplx* src, int srcLen, WCplx* dst, int* dstLen, int factor, int* phase);

RYXAPI RyxStatus ryxsDownSample(const float* src, int srcLen, float* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxcDownSample(const SCplx* src, int srcLen, SCplx* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxdDownSample(const double* src, int srcLen, double* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxzDownSample(const DCplx* src, int srcLen, DCplx* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxwDownSample(const short* src, int srcLen, short* dst, int* dstLen, int factor, int* phase);
RYXAPI RyxStatus ryxvDownSample(const WCplx* src, int srcLen, WCplx* dst, int* dstLen, int factor, int* phase);

/* ---- Median filter ------------------------------------------------------ */

RYXAPI void ryxsbMedianFilter1(float* inout, int len, int maskSize);
RYXAPI void ryxdbMedianFilter1(double* inout, int len, int maskSize);
RYXAPI void ryxwbMedianFilter1(short* inout, int len, int maskSize);
RYXAPI void ryxsbMedianFilter2(const float* src, float* dst, int len, int maskSize);
RYXAPI void ryxdbMedianFilter2(const double* src, double* dst, int len, int maskSize);
RYXAPI void ryxwbMedianFilter2(const short* src, short* dst, int len, int maskSize);

/* ---- FIR design by window ------------------------------------------------ */

RYXAPI RyxStatus ryxdFirLowpass(double rfreq, double* taps, int tapsLen, int winType, int doNormal);
RYXAPI RyxStatus ryxdFirHighpass(double rfreq, double* taps, int tapsLen, int winType, int doNormal);
RYXAPI RyxStatus ryxdFirBandpass(double rLowFreq, double rHighFreq, double* taps, int tapsLen, int winType, int doNormal);
RYXAPI RyxStatus ryxdFirBandstop(double rLowFreq, double rHighFreq, double* taps, int tapsLen, int winType, int doNormal);

/* ---- Resampling filter ---------------------------------------------------- */

/* Record of the resampling filter; the caller allocates it, Init fills it,
 * ryxSampFree releases what it owns. factors, freqs and taps hold the
 * record's type (float or double). */
typedef struct RyxSampState {
  int factorCount;     /* entries of factors and freqs, rows of taps */
  int tapsLen;         /* taps per row */
  int lastSrcLen;      /* lengths the embedded filter was built for; 0 after Init */
  int lastDstLen;
  unsigned int mark;   /* 0xfedcba91 while valid */
  void* factors;       /* copy of the caller's ratios */
  void* freqs;         /* copy of the caller's cut-off frequencies */
  void* taps;          /* factorCount rows of tapsLen taps */
  RyxFirState fir;     /* embedded multirate filter */
} RyxSampState;

RYXAPI int ryxsSampInit(RyxSampState* state, const float* factors, const float* freqs, int factorCount, int tapsLen);
RYXAPI int ryxdSampInit(RyxSampState* state, const double* factors, const double* freqs, int factorCount, int tapsLen);
RYXAPI int ryxsSamp(RyxSampState* state, const float* src, int srcLen, float* dst, int dstLen);
RYXAPI int ryxdSamp(RyxSampState* state, const double* src, int srcLen, double* dst, int dstLen);
RYXAPI void ryxSampFree(RyxSampState* state);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_RATE_H */
