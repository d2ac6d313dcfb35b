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

/* ---- Triangle records ------------------------------------------------------
 * Accumulator forms (double, DCplx, 16-bit, WCplx): the running value adds
 * a step and reflects at the rails; the 16-bit records hold 32-bit floats
 * and emit the value rounded to nearest even, wrapped to 16 bits. The
 * float forms keep a queue of four phases and a table of lines; the table
 * lies inside the record at its first 8-byte boundary of `reserved`. */

typedef struct RyxTrnglF64State {
  double mag, step, stepDown, stepUp, reflectTop, reflectBottom;
  double foldTop, foldBottom, offsetTop, offsetBottom, value;
} RyxTrnglF64State;

typedef struct RyxTrnglDCplxState {
  double mag, stepRe, stepIm, stepDown, stepUp, reflectTop, reflectBottom;
  double foldTop, foldBottom, offsetTop, offsetBottom, valueRe, valueIm;
} RyxTrnglDCplxState;

typedef struct RyxTrnglI16State {
  float mag, step, stepDown, stepUp, reflectTop, reflectBottom;
  float foldTop, foldBottom, offsetTop, offsetBottom, value;
} RyxTrnglI16State;

typedef struct RyxTrnglWCplxState {
  float mag, stepRe, stepIm, stepDown, stepUp, reflectTop, reflectBottom;
  float foldTop, foldBottom, offsetTop, offsetBottom, valueRe, valueIm;
} RyxTrnglWCplxState;

typedef struct RyxTrnglF32State {
  float phaseStep;    /* 4w (real) or 2w (complex), less 2*pi above it */
  float fall;         /* pi + asym */
  float* lines;       /* 8 slopes then 8 intercepts, inside reserved */
  float reserved[17];
  float phases[4];    /* phases of the next four outputs */
  unsigned int mark;  /* RYX_SSX_MAGIC */
} RyxTrnglF32State;

typedef RyxTrnglF32State RyxTrnglSCplxState;

/* ---- Triangles -------------------------------------------------------------
 * Peak mag at phase 0, falling over pi + asym, rising over pi - asym; the
 * complex forms' imaginary wave leads by a quarter period for asym 0.
 * Accepted: mag >= 0, 0 <= freq < 0.5, 0 <= phase < 2*pi, -pi < asym < pi. */

RYXAPI void ryxsTrnglInit(float freq, float phase, float mag, float asym, RyxTrnglF32State* statePtr);
RYXAPI void ryxcTrnglInit(float freq, float phase, float mag, float asym, RyxTrnglSCplxState* statePtr);
RYXAPI void ryxdTrnglInit(double freq, double phase, double mag, double asym, RyxTrnglF64State* statePtr);
RYXAPI void ryxzTrnglInit(double freq, double phase, double mag, double asym, RyxTrnglDCplxState* statePtr);
RYXAPI void ryxwTrnglInit(float freq, float phase, short mag, float asym, RyxTrnglI16State* statePtr);
RYXAPI void ryxvTrnglInit(float freq, float phase, short mag, float asym, RyxTrnglWCplxState* statePtr);

RYXAPI float ryxsTrngl(RyxTrnglF32State* statePtr);
RYXAPI SCplx ryxcTrngl(RyxTrnglSCplxState* statePtr);
RYXAPI void ryxcTrnglOut(RyxTrnglSCplxState* statePtr, SCplx* val);
RYXAPI double ryxdTrngl(RyxTrnglF64State* statePtr);
RYXAPI DCplx ryxzTrngl(RyxTrnglDCplxState* statePtr);
RYXAPI short ryxwTrngl(RyxTrnglI16State* statePtr);
RYXAPI WCplx ryxvTrngl(RyxTrnglWCplxState* statePtr);

RYXAPI void ryxsbTrngl(RyxTrnglF32State* statePtr, float* dst, int n);
RYXAPI void ryxcbTrngl(RyxTrnglSCplxState* statePtr, SCplx* dst, int n);
RYXAPI void ryxdbTrngl(RyxTrnglF64State* statePtr, double* dst, int n);
RYXAPI void ryxzbTrngl(RyxTrnglDCplxState* statePtr, DCplx* dst, int n);
RYXAPI void ryxwbTrngl(RyxTrnglI16State* statePtr, short* dst, int n);
RYXAPI void ryxvbTrngl(RyxTrnglWCplxState* statePtr, WCplx* dst, int n);

/* ---- Random number records ----------------------------------------------
 * Integer words are 32-bit and wrap; x1 is the newest of the three values
 * of the subtract-with-borrow sequence, lcg the congruential word, seedLcg
 * the word of the seeding sequence. The complex forms use the records of
 * their real counterparts; none of these records carries a mark. */

typedef struct RyxRandUniF32State {
  float offset, scale;
  unsigned int lcg, borrow, x1, x2, x3, seedLcg;
} RyxRandUniF32State;

typedef struct RyxRandUniF64State {
  double offset, scale;
  unsigned int lcg, borrow, x1, x2, x3, seedLcg;
} RyxRandUniF64State;

typedef struct RyxRandGausF32State {
  float mean, stDev, extra;
  int hasExtra;
  unsigned int lcg, borrow, x1, x2, x3, seedLcg;
} RyxRandGausF32State;

typedef struct RyxRandGausF64State {
  double mean, stDev, extra;
  int hasExtra;
  unsigned int lcg, borrow, x1, x2, x3, seedLcg;
} RyxRandGausF64State;

typedef struct RyxRandGausI16State {
  int hasExtra;
  unsigned int lcg, borrow, x1, x2, x3;
  short mean, stDev, extra;
  unsigned int seedLcg;
} RyxRandGausI16State;

typedef struct RyxRandUniI16State {
  int mid;             /* centre less one */
  unsigned int shift;  /* 32 - log2 of the span; above 31 acts as 31 */
  unsigned int lcg0, lcg1, x1, x2, x3, borrow, seedLcg;
  int pos;             /* next unread place in buf; 32 means empty */
  short buf[32];       /* 32 real or 16 complex (re, im) samples */
} RyxRandUniI16State;

/* ---- Random numbers -------------------------------------------------------
 * Uniform: x2 - x3 - borrow (less 18 on a borrow) plus the congruential
 * word, as a signed 32-bit value scaled into [low, high); Init discards five
 * draws. Gaussian: the polar method on pairs of such values, the second
 * deviate of a pair returned first. The 16-bit uniform forms map the sum by
 * a right shift around the centre of [low, high], rounded out to a power of
 * two; their blocks never touch the buffer of the single-sample forms. A
 * negative n in the float and Gaussian block forms counts as unsigned. */

RYXAPI void ryxsRandUniInit(float seed, float low, float high, RyxRandUniF32State* statePtr);
RYXAPI void ryxcRandUniInit(float seed, float low, float high, RyxRandUniF32State* statePtr);
RYXAPI void ryxdRandUniInit(double seed, double low, double high, RyxRandUniF64State* statePtr);
RYXAPI void ryxzRandUniInit(double seed, double low, double high, RyxRandUniF64State* statePtr);
RYXAPI void ryxwRandUniInit(unsigned int seed, short low, short high, RyxRandUniI16State* statePtr);
RYXAPI void ryxvRandUniInit(unsigned int seed, short low, short high, RyxRandUniI16State* statePtr);

RYXAPI float ryxsRandUni(RyxRandUniF32State* statePtr);
RYXAPI SCplx ryxcRandUni(RyxRandUniF32State* statePtr);
RYXAPI void ryxcRandUniOut(RyxRandUniF32State* statePtr, SCplx* val);
RYXAPI double ryxdRandUni(RyxRandUniF64State* statePtr);
RYXAPI DCplx ryxzRandUni(RyxRandUniF64State* statePtr);
RYXAPI short ryxwRandUni(RyxRandUniI16State* statePtr);
RYXAPI WCplx ryxvRandUni(RyxRandUniI16State* statePtr);

RYXAPI void ryxsbRandUni(RyxRandUniF32State* statePtr, float* dst, int n);
RYXAPI void ryxcbRandUni(RyxRandUniF32State* statePtr, SCplx* dst, int n);
RYXAPI void ryxdbRandUni(RyxRandUniF64State* statePtr, double* dst, int n);
RYXAPI void ryxzbRandUni(RyxRandUniF64State* statePtr, DCplx* dst, int n);
RYXAPI void ryxwbRandUni(RyxRandUniI16State* statePtr, short* dst, int n);
RYXAPI void ryxvbRandUni(RyxRandUniI16State* statePtr, WCplx* dst, int n);

RYXAPI void ryxsRandGausInit(float seed, float mean, float stDev, RyxRandGausF32State* statePtr);
RYXAPI void ryxcRandGausInit(float seed, float mean, float stDev, RyxRandGausF32State* statePtr);
RYXAPI void ryxdRandGausInit(double seed, double mean, double stDev, RyxRandGausF64State* statePtr);
RYXAPI void ryxzRandGausInit(double seed, double mean, double stDev, RyxRandGausF64State* statePtr);
RYXAPI void ryxwRandGausInit(short seed, short mean, short stDev, RyxRandGausI16State* statePtr);
RYXAPI void ryxvRandGausInit(short seed, short mean, short stDev, RyxRandGausI16State* statePtr);

RYXAPI float ryxsRandGaus(RyxRandGausF32State* statePtr);
RYXAPI SCplx ryxcRandGaus(RyxRandGausF32State* statePtr);
RYXAPI void ryxcRandGausOut(RyxRandGausF32State* statePtr, SCplx* val);
RYXAPI double ryxdRandGaus(RyxRandGausF64State* statePtr);
RYXAPI DCplx ryxzRandGaus(RyxRandGausF64State* statePtr);
RYXAPI short ryxwRandGaus(RyxRandGausI16State* statePtr);
RYXAPI WCplx ryxvRandGaus(RyxRandGausI16State* statePtr);

RYXAPI void ryxsbRandGaus(RyxRandGausF32State* statePtr, float* dst, int n);
RYXAPI void ryxcbRandGaus(RyxRandGausF32State* statePtr, SCplx* dst, int n);
RYXAPI void ryxdbRandGaus(RyxRandGausF64State* statePtr, double* dst, int n);
RYXAPI void ryxzbRandGaus(RyxRandGausF64State* statePtr, DCplx* dst, int n);
RYXAPI void ryxwbRandGaus(RyxRandGausI16State* statePtr, short* dst, int n);
RYXAPI void ryxvbRandGaus(RyxRandGausI16State* statePtr, WCplx* dst, int n);

/* ---- Windows ------------------------------------------------------------ */

RYXAPI void ryxsWinBartlett(float* v, int n);
RYXAPI void ryxsWinHann(float* v, int n);
RYXAPI void ryxsWinHamming(float* v, int n);
RYXAPI void ryxsWinBlackman(float* v, int n, float alpha);
RYXAPI void ryxsWinBlackmanStd(float* v, int n);
RYXAPI void ryxsWinBlackmanOpt(float* v, int n);
RYXAPI void ryxsWinKaiser(float* v, int n, float alpha);
RYXAPI void ryxsWinBartlett2(const float* s, float* d, int n);
RYXAPI void ryxsWinHann2(const float* s, float* d, int n);
RYXAPI void ryxsWinHamming2(const float* s, float* d, int n);
RYXAPI void ryxsWinBlackman2(const float* s, float* d, int n, float alpha);
RYXAPI void ryxsWinBlackmanStd2(const float* s, float* d, int n);
RYXAPI void ryxsWinBlackmanOpt2(const float* s, float* d, int n);
RYXAPI void ryxsWinKaiser2(const float* s, float* d, int n, float alpha);
RYXAPI void ryxcWinBartlett(SCplx* v, int n);
RYXAPI void ryxcWinHann(SCplx* v, int n);
RYXAPI void ryxcWinHamming(SCplx* v, int n);
RYXAPI void ryxcWinBlackman(SCplx* v, int n, float alpha);
RYXAPI void ryxcWinBlackmanStd(SCplx* v, int n);
RYXAPI void ryxcWinBlackmanOpt(SCplx* v, int n);
RYXAPI void ryxcWinKaiser(SCplx* v, int n, float alpha);
RYXAPI void ryxcWinBartlett2(const SCplx* s, SCplx* d, int n);
RYXAPI void ryxcWinHann2(const SCplx* s, SCplx* d, int n);
RYXAPI void ryxcWinHamming2(const SCplx* s, SCplx* d, int n);
RYXAPI void ryxcWinBlackman2(const SCplx* s, SCplx* d, int n, float alpha);
RYXAPI void ryxcWinBlackmanStd2(const SCplx* s, SCplx* d, int n);
RYXAPI void ryxcWinBlackmanOpt2(const SCplx* s, SCplx* d, int n);
RYXAPI void ryxcWinKaiser2(const SCplx* s, SCplx* d, int n, float alpha);
RYXAPI void ryxdWinBartlett(double* v, int n);
RYXAPI void ryxdWinHann(double* v, int n);
RYXAPI void ryxdWinHamming(double* v, int n);
RYXAPI void ryxdWinBlackman(double* v, int n, double alpha);
RYXAPI void ryxdWinBlackmanStd(double* v, int n);
RYXAPI void ryxdWinBlackmanOpt(double* v, int n);
RYXAPI void ryxdWinKaiser(double* v, int n, double alpha);
RYXAPI void ryxdWinBartlett2(const double* s, double* d, int n);
RYXAPI void ryxdWinHann2(const double* s, double* d, int n);
RYXAPI void ryxdWinHamming2(const double* s, double* d, int n);
RYXAPI void ryxdWinBlackman2(const double* s, double* d, int n, double alpha);
RYXAPI void ryxdWinBlackmanStd2(const double* s, double* d, int n);
RYXAPI void ryxdWinBlackmanOpt2(const double* s, double* d, int n);
RYXAPI void ryxdWinKaiser2(const double* s, double* d, int n, double alpha);
RYXAPI void ryxzWinBartlett(DCplx* v, int n);
RYXAPI void ryxzWinHann(DCplx* v, int n);
RYXAPI void ryxzWinHamming(DCplx* v, int n);
RYXAPI void ryxzWinBlackman(DCplx* v, int n, double alpha);
RYXAPI void ryxzWinBlackmanStd(DCplx* v, int n);
RYXAPI void ryxzWinBlackmanOpt(DCplx* v, int n);
RYXAPI void ryxzWinKaiser(DCplx* v, int n, double alpha);
RYXAPI void ryxzWinBartlett2(const DCplx* s, DCplx* d, int n);
RYXAPI void ryxzWinHann2(const DCplx* s, DCplx* d, int n);
RYXAPI void ryxzWinHamming2(const DCplx* s, DCplx* d, int n);
RYXAPI void ryxzWinBlackman2(const DCplx* s, DCplx* d, int n, double alpha);
RYXAPI void ryxzWinBlackmanStd2(const DCplx* s, DCplx* d, int n);
RYXAPI void ryxzWinBlackmanOpt2(const DCplx* s, DCplx* d, int n);
RYXAPI void ryxzWinKaiser2(const DCplx* s, DCplx* d, int n, double alpha);
RYXAPI void ryxwWinBartlett(short* v, int n);
RYXAPI void ryxwWinHann(short* v, int n);
RYXAPI void ryxwWinHamming(short* v, int n);
RYXAPI void ryxwWinBlackman(short* v, int n, float alpha);
RYXAPI void ryxwWinBlackmanStd(short* v, int n);
RYXAPI void ryxwWinBlackmanOpt(short* v, int n);
RYXAPI void ryxwWinKaiser(short* v, int n, float alpha);
RYXAPI void ryxwWinBartlett2(const short* s, short* d, int n);
RYXAPI void ryxwWinHann2(const short* s, short* d, int n);
RYXAPI void ryxwWinHamming2(const short* s, short* d, int n);
RYXAPI void ryxwWinBlackman2(const short* s, short* d, int n, float alpha);
RYXAPI void ryxwWinBlackmanStd2(const short* s, short* d, int n);
RYXAPI void ryxwWinBlackmanOpt2(const short* s, short* d, int n);
RYXAPI void ryxwWinKaiser2(const short* s, short* d, int n, float alpha);
RYXAPI void ryxvWinBartlett(WCplx* v, int n);
RYXAPI void ryxvWinHann(WCplx* v, int n);
RYXAPI void ryxvWinHamming(WCplx* v, int n);
RYXAPI void ryxvWinBlackman(WCplx* v, int n, float alpha);
RYXAPI void ryxvWinBlackmanStd(WCplx* v, int n);
RYXAPI void ryxvWinBlackmanOpt(WCplx* v, int n);
RYXAPI void ryxvWinKaiser(WCplx* v, int n, float alpha);
RYXAPI void ryxvWinBartlett2(const WCplx* s, WCplx* d, int n);
RYXAPI void ryxvWinHann2(const WCplx* s, WCplx* d, int n);
RYXAPI void ryxvWinHamming2(const WCplx* s, WCplx* d, int n);
RYXAPI void ryxvWinBlackman2(const WCplx* s, WCplx* d, int n, float alpha);
RYXAPI void ryxvWinBlackmanStd2(const WCplx* s, WCplx* d, int n);
RYXAPI void ryxvWinBlackmanOpt2(const WCplx* s, WCplx* d, int n);
RYXAPI void ryxvWinKaiser2(const WCplx* s, WCplx* d, int n, float alpha);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_GENERATE_H */
