/*
 * Transforms of any length: the direct DFT, the Goertzel single-bin filter
 * and the orthonormal DCT. Included by ryxcore.h.
 *
 * Dft: X[k] = sum x[i] W_n^(ik), W_n = exp(-2 pi i/n), any n >= 1; the
 * inverse takes the positive exponent and 1/n unless RYX_KeepScale.
 * Powers of two run the FFT (its flags and checks apply), lengths from 170
 * a chirp transform on one padded FFT, shorter ones a folded direct sum.
 * RYX_Init prepares tables and scratch only (arrays may be NULL),
 * RYX_Release frees the thread's FFT tables. src and dst must not overlap.
 * ryxvDft: 16-bit samples; up to 128 points (or with RYX_IntCore) exact
 * integer kernels on Q14 rows, one per scale mode (0 wrap, 1 saturate,
 * 2/3 fixed factor, 4 auto; other modes write nothing); longer lengths
 * (or RYX_FloatCore) go through ryxcDft in float.
 *
 * Goertz: one DFT bin at relative frequency freq (0 <= freq < 1) tracked
 * sample by sample in a caller-kept record: s = x - s2 + 2cos(w) s1, the
 * output exp(i w) s - s1. Block forms run the recursion only and apply the
 * output once; Out forms store the result through val. A failed call
 * returns (0, 0) and leaves the record as it was.
 *
 * Dct: orthonormal DCT-II (RYX_Forward) and its inverse DCT-III
 * (RYX_Inverse), any len >= 1, in place allowed; flags exactly
 * RYX_Release (8) frees the thread's DCT tables (ryxwDct: the tables of
 * its path for this len).
 */
#ifndef RYXCORE_TRANSFORM_ANY_LENGTH_H
#define RYXCORE_TRANSFORM_ANY_LENGTH_H

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Direct DFT ------------------------------------------------------------ */

RYXAPI void ryxcDft(const SCplx* src, SCplx* dst, int length, int flags);
RYXAPI void ryxzDft(const DCplx* src, DCplx* dst, int length, int flags);
RYXAPI void ryxvDft(const WCplx* src, WCplx* dst, int length, int flags, int scaleMode, int* scaleFactor);

/* ---- Goertzel filter ------------------------------------------------------- */

/* Records in this field order; the real forms leave the Im delays unused. */
typedef struct RyxGoertzF32State {
  float freq, cosV, sinV, twoCosV;
  float prevRe2, prevIm2, prevRe1, prevIm1;
} RyxGoertzF32State;

typedef struct RyxGoertzF64State {
  double freq, cosV, sinV, twoCosV;
  double prevRe2, prevIm2, prevRe1, prevIm1;
} RyxGoertzF64State;

RYXAPI RyxStatus ryxsGoertzInit(float freq, RyxGoertzF32State* state);
RYXAPI RyxStatus ryxcGoertzInit(float freq, RyxGoertzF32State* state);
RYXAPI RyxStatus ryxwGoertzInit(float freq, RyxGoertzF32State* state);
RYXAPI RyxStatus ryxvGoertzInit(float freq, RyxGoertzF32State* state);
RYXAPI void ryxdGoertzInit(double freq, RyxGoertzF64State* state);
RYXAPI void ryxzGoertzInit(double freq, RyxGoertzF64State* state);

RYXAPI void ryxsGoertzReset(RyxGoertzF32State* state);
RYXAPI void ryxcGoertzReset(RyxGoertzF32State* state);
RYXAPI void ryxwGoertzReset(RyxGoertzF32State* state);
RYXAPI void ryxvGoertzReset(RyxGoertzF32State* state);
RYXAPI void ryxdGoertzReset(RyxGoertzF64State* state);
RYXAPI void ryxzGoertzReset(RyxGoertzF64State* state);

RYXAPI SCplx ryxsGoertz(RyxGoertzF32State* state, float sample);
RYXAPI SCplx ryxcGoertz(RyxGoertzF32State* state, SCplx sample);
RYXAPI DCplx ryxdGoertz(RyxGoertzF64State* state, double sample);
RYXAPI DCplx ryxzGoertz(RyxGoertzF64State* state, DCplx sample);
RYXAPI SCplx ryxsbGoertz(RyxGoertzF32State* state, const float* inSamps, int len);
RYXAPI SCplx ryxcbGoertz(RyxGoertzF32State* state, const SCplx* inSamps, int len);
RYXAPI DCplx ryxdbGoertz(RyxGoertzF64State* state, const double* inSamps, int len);
RYXAPI DCplx ryxzbGoertz(RyxGoertzF64State* state, const DCplx* inSamps, int len);

RYXAPI void ryxsGoertzOut(RyxGoertzF32State* state, float sample, SCplx* val);
RYXAPI void ryxcGoertzOut(RyxGoertzF32State* state, SCplx sample, SCplx* val);
RYXAPI void ryxsbGoertzOut(RyxGoertzF32State* state, const float* inSamps, int len, SCplx* val);
RYXAPI void ryxcbGoertzOut(RyxGoertzF32State* state, const SCplx* inSamps, int len, SCplx* val);

/* 16-bit: the float record; the output narrowed under scaleMode (0..4),
 * *scaleFactor from -14 to 14 (scaleFactor may be NULL in mode 0). */
RYXAPI WCplx ryxwGoertz(RyxGoertzF32State* state, short sample, int scaleMode, int* scaleFactor);
RYXAPI WCplx ryxvGoertz(RyxGoertzF32State* state, WCplx sample, int scaleMode, int* scaleFactor);
RYXAPI WCplx ryxwbGoertz(RyxGoertzF32State* state, const short* inSamps, int len, int scaleMode, int* scaleFactor);
RYXAPI WCplx ryxvbGoertz(RyxGoertzF32State* state, const WCplx* inSamps, int len, int scaleMode, int* scaleFactor);

/* ---- DCT ------------------------------------------------------------------- */

RYXAPI void ryxsDct(const float* src, float* dst, int len, int flags);
RYXAPI void ryxdDct(const double* src, double* dst, int len, int flags);
RYXAPI void ryxwDct(const short* src, short* dst, int len, int flags);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_TRANSFORM_ANY_LENGTH_H */
