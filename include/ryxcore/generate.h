/*
 * Signal generators: tones, triangle waves, uniform and Gaussian noise, and
 * window functions. Included by ryxcore.h.
 *
 * Generators work on records the caller allocates; nothing is allocated.
 * An Init routine checks its arguments and fills the record (the validity
 * mark, where the record has one, is written last); sample routines return
 * one value and block routines write n values, continuing one sequence in
 * any mix of the two. A failed call reports RYX_StsBadArg through ryxError,
 * returns zero from a sample routine, and leaves record and arrays as they
 * were.
 *
 * Tones produce mag*cos(2*pi*freq*k + phase) (real) or
 * mag*exp(j*(2*pi*freq*k + phase)) (complex) by recurrences set up at Init:
 *   d, z  two-term recurrence y = y1*coef - y2 in double; a block leaves the
 *         record exactly as the same number of single calls;
 *   s, c  a window of the next twelve floats; single calls step it with the
 *         double coef, blocks above 8 (s) or 4 (c) samples run four float
 *         lanes on coef4 = 2*cos(4w) (s) or coef2 = 2*cos(2w) (c) rounded to
 *         single, so results of the two mechanisms differ in the last bits;
 *   w, v  two Q14 phasors rotated by 2w, the next sample scaled by 2^shift;
 *         single calls draw from a 32-value buffer that blocks do not touch
 *         unless it still holds samples.
 * Accepted: 0 <= freq < 0.5, 0 <= phase < 2*pi, mag >= 0. In the w and v
 * forms a mag of 0 gives shift 14 and zeros.
 *
 * Windows multiply n >= 3 samples by a symmetric window, pairs k and n-1-k
 * with one weight; the middle sample of an odd n is left alone (copied in
 * the two-buffer forms). Kaiser's weight is I0(alpha*sqrt(k*(n-1-k))) /
 * I0(alpha*(n-1)/2) with I0 by the Abramowitz-Stegun polynomials; it fails
 * when (n-1)*|alpha|/2 > 38.
 */
#ifndef RYXCORE_GENERATE_H
#define RYXCORE_GENERATE_H

#ifdef __cplusplus
extern "C" {
#endif

/* Mark of the 32-bit generator records. */
#define RYX_SSX_MAGIC 0x585353u

/* ---- Tone records ------------------------------------------------------ */

typedef struct RyxToneF64State {
  double coef;   /* 2*cos(w), w = 2*pi*freq */
  double y1;     /* sample before the next one */
  double y2;     /* sample before y1 */
  double mag, freq, phase;
  char mark[4];  /* "BDT" */
} RyxToneF64State;

typedef struct RyxToneDCplxState {
  double coef;
  DCplx y1, y2;
  double mag, freq, phase;
  char mark[4];
} RyxToneDCplxState;

typedef struct RyxToneF32State {
  float mag, freq, phase;
  double coef;        /* 2*cos(w), single steps */
  float coef4;        /* 2*cos(4w), vector blocks */
  float spare;        /* takes the old window[0] on a single step */
  float window[12];   /* the next twelve samples */
  unsigned int mark;  /* RYX_SSX_MAGIC */
} RyxToneF32State;

typedef struct RyxToneSCplxState {
  float mag, freq, phase;
  double coef;        /* 2*cos(w) */
  float coef2;        /* 2*cos(2w) as 4*cos(w)^2 - 2 */
  SCplx window[6];    /* the next six samples */
  unsigned int mark;  /* RYX_SSX_MAGIC */
} RyxToneSCplxState;

typedef struct RyxToneI16State {
  WCplx phasorA;    /* next sample, scaled by 2^shift */
  WCplx phasorB;    /* the sample after it */
  short rot[4];     /* Q14: cos2, -sin2, sin2, cos2 of 2w */
  short fix[4];     /* 2^shift */
  int shift;        /* 0 .. 14 */
  int pos;          /* next unread place in buf; capacity means empty */
  short buf[32];    /* 32 real or 16 complex (re, im) samples */
  short mag;
  float freq, phase;
  char mark[4];     /* "BDT" */
} RyxToneI16State;

/* ---- Tones ------------------------------------------------------------- */

RYXAPI void ryxsToneInit(float freq, float phase, float mag, RyxToneF32State* statePtr);
RYXAPI void ryxcToneInit(float freq, float phase, float mag, RyxToneSCplxState* statePtr);
RYXAPI void ryxdToneInit(double freq, double phase, double mag, RyxToneF64State* statePtr);
RYXAPI void ryxzToneInit(double freq, double phase, double mag, RyxToneDCplxState* statePtr);
RYXAPI void ryxwToneInit(float freq, float phase, short mag, RyxToneI16State* statePtr);
RYXAPI void ryxvToneInit(float freq, float phase, short mag, RyxToneI16State* statePtr);

RYXAPI float ryxsTone(RyxToneF32State* statePtr);
RYXAPI SCplx ryxcTone(RyxToneSCplxState* statePtr);
RYXAPI void ryxcToneOut(RyxToneSCplxState* statePtr, SCplx* val);
RYXAPI double ryxdTone(RyxToneF64State* statePtr);
RYXAPI DCplx ryxzTone(RyxToneDCplxState* statePtr);
RYXAPI short ryxwTone(RyxToneI16State* statePtr);
RYXAPI WCplx ryxvTone(RyxToneI16State* statePtr);

RYXAPI void ryxsbTone(RyxToneF32State* statePtr, float* dst, int n);
RYXAPI void ryxcbTone(RyxToneSCplxState* statePtr, SCplx* dst, int n);
RYXAPI void ryxdbTone(RyxToneF64State* statePtr, double* dst, int n);
RYXAPI void ryxzbTone(RyxToneDCplxState* statePtr, DCplx* dst, int n);
RYXAPI void ryxwbTone(RyxToneI16State* statePtr, short* dst, int n);
RYXAPI void ryxvbTone(RyxToneI16State* statePtr, WCplx* dst, int n);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_GENERATE_H */
