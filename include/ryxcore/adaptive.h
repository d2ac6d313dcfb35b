/*
 * LMS adaptive FIR filters: caller-owned, 16-bit and library-owned forms.
 * Included by ryxcore.h.
 *
 * Type codes: s, d, c, z samples and taps alike; sc real float samples with
 * SCplx taps; dz real double samples with DCplx taps; cs and zd (plain
 * filtering only) complex samples with real taps; w 16-bit samples with
 * 32-bit fixed-point taps of 13 fraction bits. With complex taps the error,
 * the desired value and the result are complex.
 *
 * Each adaptive call first updates the taps from the error of an earlier
 * output, then moves the delay line, stores the sample and sums
 *   taps[i] = taps[i]*(1 - leak) + x[i + errDly]*(err*step)
 * (complex taps: step*err*conj(x)), the line being read as it stood before
 * the sample. The update is computed in double and rounded to the tap type
 * at each store; outputs are summed in extended precision.
 *
 * Low-level forms (ryx?Lmsl...): the caller keeps both records and arrays.
 * The tap record starts with the fields of RyxFirTapState, so the plain
 * filtering forms (Na) run the FIR routines on the same records; they read
 * the first tapsLen elements of the line and ignore errDly. The line is
 * newest first while filtering; Set/GetDlyl deal oldest first over
 * dlylLen-1 samples. dlylLen = tapsLen + errDly (when adaptB) + downFactor
 * (when decimating).
 *
 * High-level forms (ryx?Lms...): one RyxLmsState owns its taps and line
 * until ryxLmsFree; the Des forms keep the error themselves from a desired
 * signal. isFilterMode and isDlyFilterMode are the marks of a live record:
 * GetTaps and GetDlyl clear them, and the filters refuse to run until the
 * matching Set call.
 */
#ifndef RYXCORE_ADAPTIVE_H
#define RYXCORE_ADAPTIVE_H

#ifdef __cplusplus
extern "C" {
#endif

/* Tap record; its first eight fields are laid out as RyxFirTapState's. */
typedef struct RyxLmsTapState {
  void* taps;        /* caller's taps, natural order; int32 Q13 in the 16-bit form */
  int tapsLen;       /* at least 1 */
  int upFactor;      /* always 1 */
  int upPhase;       /* always 0 */
  int downFactor;    /* 1 for a single-rate filter */
  int downPhase;     /* 0 .. downFactor-1 */
  int isMultiRate;   /* 1 when downFactor exceeds 1 */
  int isFilterMode;  /* 1 after Init and SetTaps, 0 after GetTaps */
  float leak;        /* leakage; 0 in the 16-bit form */
  float step;        /* step; the 16-bit form keeps trunc(8192*step) as a
                        signed 32-bit integer in this word */
  int errDly;        /* samples the error lags behind, at least 0 */
  int lmsType;       /* stored by Init, read by nothing */
} RyxLmsTapState;

/* Delay record. */
typedef struct RyxLmsDlyState {
  void* dlyl;           /* caller's line, newest first while filtering */
  int dlylLen;          /* tapsLen (+ errDly when adaptB) (+ downFactor when decimating) */
  int isDlyFilterMode;  /* 1 after InitDlyl and SetDlyl, 0 after GetDlyl */
  int adaptB;           /* nonzero when the line serves the adaptive forms */
} RyxLmsDlyState;

/* Latest error of a high-level filter, in its output type. */
typedef union RyxLmsErrVal {
  float s;
  double d;
  SCplx c;
  DCplx z;
} RyxLmsErrVal;

/* Record of the high-level forms: a tap record and a delay record, both
 * used directly by the low-level forms, with owned arrays. */
typedef struct RyxLmsState {
  RyxLmsTapState tapSt;  /* taps owned */
  RyxLmsDlyState dlySt;  /* dlyl owned; adaptB is 1 */
  RyxLmsErrVal errVal;   /* latest error, 0 after Init */
} RyxLmsState;

/* ---- Low-level forms: set-up -------------------------------------------- */

RYXAPI void ryxsLmslInit(int lmsType, float* taps, int tapsLen, float step, float leak, int errDly,
                         RyxLmsTapState* tapStPtr);
RYXAPI void ryxdLmslInit(int lmsType, double* taps, int tapsLen, float step, float leak, int errDly,
                         RyxLmsTapState* tapStPtr);
RYXAPI void ryxcLmslInit(int lmsType, SCplx* taps, int tapsLen, float step, float leak, int errDly,
                         RyxLmsTapState* tapStPtr);
RYXAPI void ryxzLmslInit(int lmsType, DCplx* taps, int tapsLen, float step, float leak, int errDly,
                         RyxLmsTapState* tapStPtr);
RYXAPI void ryxsLmslInitMr(int lmsType, float* taps, int tapsLen, float step, float leak, int errDly,
                           int downFactor, int downPhase, RyxLmsTapState* tapStPtr);
RYXAPI void ryxdLmslInitMr(int lmsType, double* taps, int tapsLen, float step, float leak, int errDly,
                           int downFactor, int downPhase, RyxLmsTapState* tapStPtr);
RYXAPI void ryxcLmslInitMr(int lmsType, SCplx* taps, int tapsLen, float step, float leak, int errDly,
                           int downFactor, int downPhase, RyxLmsTapState* tapStPtr);
RYXAPI void ryxzLmslInitMr(int lmsType, DCplx* taps, int tapsLen, float step, float leak, int errDly,
                           int downFactor, int downPhase, RyxLmsTapState* tapStPtr);
RYXAPI void ryxsLmslInitDlyl(RyxLmsTapState* tapStPtr, float* dlyl, int adaptB, RyxLmsDlyState* dlyStPtr);
RYXAPI void ryxdLmslInitDlyl(RyxLmsTapState* tapStPtr, double* dlyl, int adaptB, RyxLmsDlyState* dlyStPtr);
RYXAPI void ryxcLmslInitDlyl(RyxLmsTapState* tapStPtr, SCplx* dlyl, int adaptB, RyxLmsDlyState* dlyStPtr);
RYXAPI void ryxzLmslInitDlyl(RyxLmsTapState* tapStPtr, DCplx* dlyl, int adaptB, RyxLmsDlyState* dlyStPtr);

/* Step and leak of any float or double tap record. */
RYXAPI float ryxsLmslGetStep(RyxLmsTapState* tapStPtr);
RYXAPI float ryxsLmslGetLeak(RyxLmsTapState* tapStPtr);
RYXAPI void ryxsLmslSetStep(float step, RyxLmsTapState* tapStPtr);
RYXAPI void ryxsLmslSetLeak(float leak, RyxLmsTapState* tapStPtr);

/* ---- Low-level forms: adaptive filters ---------------------------------- */

RYXAPI float ryxsLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, float sample, float err);
RYXAPI double ryxdLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, double sample, double err);
RYXAPI SCplx ryxcLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, SCplx sample, SCplx err);
RYXAPI DCplx ryxzLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, DCplx sample, DCplx err);
RYXAPI SCplx ryxscLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, float sample, SCplx err);
RYXAPI DCplx ryxdzLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, double sample, DCplx err);

/* One output for downFactor samples, given in time order. */
RYXAPI float ryxsbLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const float* samples, float err);
RYXAPI double ryxdbLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const double* samples,
                        double err);
RYXAPI SCplx ryxcbLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const SCplx* samples, SCplx err);
RYXAPI DCplx ryxzbLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const DCplx* samples, DCplx err);
RYXAPI SCplx ryxscbLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const float* samples, SCplx err);
RYXAPI DCplx ryxdzbLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const double* samples,
                        DCplx err);

RYXAPI void ryxcLmslOut(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, SCplx sample, SCplx err,
                        SCplx* val);
RYXAPI void ryxscLmslOut(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, float sample, SCplx err,
                         SCplx* val);
RYXAPI void ryxcbLmslOut(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const SCplx* samples, SCplx err,
                         SCplx* val);
RYXAPI void ryxscbLmslOut(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const float* samples,
                          SCplx err, SCplx* val);

/* ---- Low-level forms: plain filtering on the adapted taps --------------- */

RYXAPI float ryxsLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, float sample);
RYXAPI double ryxdLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, double sample);
RYXAPI SCplx ryxcLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, SCplx sample);
RYXAPI DCplx ryxzLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, DCplx sample);
RYXAPI SCplx ryxscLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, float sample);
RYXAPI SCplx ryxcsLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, SCplx sample);
RYXAPI DCplx ryxdzLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, double sample);
RYXAPI DCplx ryxzdLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, DCplx sample);
RYXAPI void ryxcLmslNaOut(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, SCplx sample, SCplx* val);
RYXAPI void ryxscLmslNaOut(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, float sample, SCplx* val);
RYXAPI void ryxcsLmslNaOut(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, SCplx sample, SCplx* val);
RYXAPI void ryxsbLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const float* src, float* dst,
                        int numIters);
RYXAPI void ryxdbLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const double* src, double* dst,
                        int numIters);
RYXAPI void ryxcbLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const SCplx* src, SCplx* dst,
                        int numIters);
RYXAPI void ryxzbLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const DCplx* src, DCplx* dst,
                        int numIters);
RYXAPI void ryxscbLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const float* src, SCplx* dst,
                         int numIters);
RYXAPI void ryxcsbLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const SCplx* src, SCplx* dst,
                         int numIters);
RYXAPI void ryxdzbLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const double* src, DCplx* dst,
                         int numIters);
RYXAPI void ryxzdbLmslNa(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, const DCplx* src, DCplx* dst,
                         int numIters);

/* ---- Low-level forms: taps and line ------------------------------------- */

RYXAPI void ryxsLmslGetTaps(RyxLmsTapState* tapStPtr, float* taps);
RYXAPI void ryxdLmslGetTaps(RyxLmsTapState* tapStPtr, double* taps);
RYXAPI void ryxcLmslGetTaps(RyxLmsTapState* tapStPtr, SCplx* taps);
RYXAPI void ryxzLmslGetTaps(RyxLmsTapState* tapStPtr, DCplx* taps);
RYXAPI void ryxsLmslSetTaps(const float* taps, RyxLmsTapState* tapStPtr);
RYXAPI void ryxdLmslSetTaps(const double* taps, RyxLmsTapState* tapStPtr);
RYXAPI void ryxcLmslSetTaps(const SCplx* taps, RyxLmsTapState* tapStPtr);
RYXAPI void ryxzLmslSetTaps(const DCplx* taps, RyxLmsTapState* tapStPtr);
RYXAPI void ryxsLmslGetDlyl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, float* dlyl);
RYXAPI void ryxdLmslGetDlyl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, double* dlyl);
RYXAPI void ryxcLmslGetDlyl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, SCplx* dlyl);
RYXAPI void ryxzLmslGetDlyl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, DCplx* dlyl);
RYXAPI void ryxsLmslSetDlyl(RyxLmsTapState* tapStPtr, const float* dlyl, RyxLmsDlyState* dlyStPtr);
RYXAPI void ryxdLmslSetDlyl(RyxLmsTapState* tapStPtr, const double* dlyl, RyxLmsDlyState* dlyStPtr);
RYXAPI void ryxcLmslSetDlyl(RyxLmsTapState* tapStPtr, const SCplx* dlyl, RyxLmsDlyState* dlyStPtr);
RYXAPI void ryxzLmslSetDlyl(RyxLmsTapState* tapStPtr, const DCplx* dlyl, RyxLmsDlyState* dlyStPtr);

/* ---- Low-level 16-bit form ----------------------------------------------- */

/* Overwrites the caller's float taps with int32 trunc(8192*tap). */
RYXAPI void ryxwLmslInit(int lmsType, float* taps, int tapsLen, float step, int errDly,
                         RyxLmsTapState* tapStPtr);
RYXAPI void ryxwLmslInitDlyl(RyxLmsTapState* tapStPtr, short* dlyl, RyxLmsDlyState* dlyStPtr);
RYXAPI float ryxwLmslGetStep(RyxLmsTapState* tapStPtr);
RYXAPI void ryxwLmslSetStep(float step, RyxLmsTapState* tapStPtr);
RYXAPI short ryxwLmsl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, short sample, short err);
RYXAPI void ryxwLmslGetTaps(RyxLmsTapState* tapStPtr, float* taps);
RYXAPI void ryxwLmslSetTaps(float* taps, RyxLmsTapState* tapStPtr);
RYXAPI void ryxwLmslGetDlyl(RyxLmsTapState* tapStPtr, RyxLmsDlyState* dlyStPtr, short* dlyl);
RYXAPI void ryxwLmslSetDlyl(RyxLmsTapState* tapStPtr, const short* dlyl, RyxLmsDlyState* dlyStPtr);

/* ---- High-level forms ----------------------------------------------------- */

/* taps and dlyl may be null (zeros); dlyl is oldest first, dlylLen-1 samples. */
RYXAPI void ryxsLmsInit(int lmsType, const float* taps, int tapsLen, const float* dlyl, float step, float leak,
                        int errDly, RyxLmsState* statePtr);
RYXAPI void ryxdLmsInit(int lmsType, const double* taps, int tapsLen, const double* dlyl, float step,
                        float leak, int errDly, RyxLmsState* statePtr);
RYXAPI void ryxcLmsInit(int lmsType, const SCplx* taps, int tapsLen, const SCplx* dlyl, float step, float leak,
                        int errDly, RyxLmsState* statePtr);
RYXAPI void ryxzLmsInit(int lmsType, const DCplx* taps, int tapsLen, const DCplx* dlyl, float step, float leak,
                        int errDly, RyxLmsState* statePtr);
RYXAPI void ryxscLmsInit(int lmsType, const SCplx* taps, int tapsLen, const float* dlyl, float step,
                         float leak, int errDly, RyxLmsState* statePtr);
RYXAPI void ryxdzLmsInit(int lmsType, const DCplx* taps, int tapsLen, const double* dlyl, float step,
                         float leak, int errDly, RyxLmsState* statePtr);
RYXAPI void ryxsLmsInitMr(int lmsType, const float* taps, int tapsLen, const float* dlyl, float step,
                          float leak, int errDly, int downFactor, int downPhase, RyxLmsState* statePtr);
RYXAPI void ryxdLmsInitMr(int lmsType, const double* taps, int tapsLen, const double* dlyl, float step,
                          float leak, int errDly, int downFactor, int downPhase, RyxLmsState* statePtr);
RYXAPI void ryxcLmsInitMr(int lmsType, const SCplx* taps, int tapsLen, const SCplx* dlyl, float step,
                          float leak, int errDly, int downFactor, int downPhase, RyxLmsState* statePtr);
RYXAPI void ryxzLmsInitMr(int lmsType, const DCplx* taps, int tapsLen, const DCplx* dlyl, float step,
                          float leak, int errDly, int downFactor, int downPhase, RyxLmsState* statePtr);
RYXAPI void ryxscLmsInitMr(int lmsType, const SCplx* taps, int tapsLen, const float* dlyl, float step,
                           float leak, int errDly, int downFactor, int downPhase, RyxLmsState* statePtr);
RYXAPI void ryxdzLmsInitMr(int lmsType, const DCplx* taps, int tapsLen, const double* dlyl, float step,
                           float leak, int errDly, int downFactor, int downPhase, RyxLmsState* statePtr);
RYXAPI void ryxLmsFree(RyxLmsState* statePtr);

/* The caller's error. */
RYXAPI float ryxsLms(RyxLmsState* statePtr, float sample, float err);
RYXAPI double ryxdLms(RyxLmsState* statePtr, double sample, double err);
RYXAPI SCplx ryxcLms(RyxLmsState* statePtr, SCplx sample, SCplx err);
RYXAPI DCplx ryxzLms(RyxLmsState* statePtr, DCplx sample, DCplx err);
RYXAPI SCplx ryxscLms(RyxLmsState* statePtr, float sample, SCplx err);
RYXAPI DCplx ryxdzLms(RyxLmsState* statePtr, double sample, DCplx err);
RYXAPI float ryxsbLms(RyxLmsState* statePtr, const float* samples, float err);
RYXAPI double ryxdbLms(RyxLmsState* statePtr, const double* samples, double err);
RYXAPI SCplx ryxcbLms(RyxLmsState* statePtr, const SCplx* samples, SCplx err);
RYXAPI DCplx ryxzbLms(RyxLmsState* statePtr, const DCplx* samples, DCplx err);
RYXAPI SCplx ryxscbLms(RyxLmsState* statePtr, const float* samples, SCplx err);
RYXAPI DCplx ryxdzbLms(RyxLmsState* statePtr, const double* samples, DCplx err);
RYXAPI void ryxcLmsOut(RyxLmsState* statePtr, SCplx sample, SCplx err, SCplx* val);
RYXAPI void ryxscLmsOut(RyxLmsState* statePtr, float sample, SCplx err, SCplx* val);
RYXAPI void ryxcbLmsOut(RyxLmsState* statePtr, const SCplx* samples, SCplx err, SCplx* val);
RYXAPI void ryxscbLmsOut(RyxLmsState* statePtr, const float* samples, SCplx err, SCplx* val);

/* A desired signal; the record keeps the error. */
RYXAPI float ryxsLmsDes(RyxLmsState* statePtr, float sample, float des);
RYXAPI double ryxdLmsDes(RyxLmsState* statePtr, double sample, double des);
RYXAPI SCplx ryxcLmsDes(RyxLmsState* statePtr, SCplx sample, SCplx des);
RYXAPI DCplx ryxzLmsDes(RyxLmsState* statePtr, DCplx sample, DCplx des);
RYXAPI SCplx ryxscLmsDes(RyxLmsState* statePtr, float sample, SCplx des);
RYXAPI DCplx ryxdzLmsDes(RyxLmsState* statePtr, double sample, DCplx des);
RYXAPI void ryxcLmsDesOut(RyxLmsState* statePtr, SCplx sample, SCplx des, SCplx* val);
RYXAPI void ryxscLmsDesOut(RyxLmsState* statePtr, float sample, SCplx des, SCplx* val);
RYXAPI void ryxsbLmsDes(RyxLmsState* statePtr, const float* src, const float* des, float* dst, int numIters);
RYXAPI void ryxdbLmsDes(RyxLmsState* statePtr, const double* src, const double* des, double* dst,
                        int numIters);
RYXAPI void ryxcbLmsDes(RyxLmsState* statePtr, const SCplx* src, const SCplx* des, SCplx* dst, int numIters);
RYXAPI void ryxzbLmsDes(RyxLmsState* statePtr, const DCplx* src, const DCplx* des, DCplx* dst, int numIters);
RYXAPI void ryxscbLmsDes(RyxLmsState* statePtr, const float* src, const SCplx* des, SCplx* dst, int numIters);
RYXAPI void ryxdzbLmsDes(RyxLmsState* statePtr, const double* src, const DCplx* des, DCplx* dst,
                         int numIters);

/* State access. */
RYXAPI float ryxsLmsGetErrVal(const RyxLmsState* statePtr);
RYXAPI double ryxdLmsGetErrVal(const RyxLmsState* statePtr);
RYXAPI SCplx ryxcLmsGetErrVal(const RyxLmsState* statePtr);
RYXAPI DCplx ryxzLmsGetErrVal(const RyxLmsState* statePtr);
RYXAPI void ryxcLmsGetErrValOut(const RyxLmsState* statePtr, SCplx* val);
RYXAPI void ryxsLmsSetErrVal(float err, RyxLmsState* statePtr);
RYXAPI void ryxdLmsSetErrVal(double err, RyxLmsState* statePtr);
RYXAPI void ryxcLmsSetErrVal(SCplx err, RyxLmsState* statePtr);
RYXAPI void ryxzLmsSetErrVal(DCplx err, RyxLmsState* statePtr);
RYXAPI float ryxsLmsGetStep(RyxLmsState* statePtr);
RYXAPI float ryxsLmsGetLeak(RyxLmsState* statePtr);
RYXAPI void ryxsLmsSetStep(float step, RyxLmsState* statePtr);
RYXAPI void ryxsLmsSetLeak(float leak, RyxLmsState* statePtr);
RYXAPI void ryxsLmsGetTaps(RyxLmsState* statePtr, float* taps);
RYXAPI void ryxdLmsGetTaps(RyxLmsState* statePtr, double* taps);
RYXAPI void ryxcLmsGetTaps(RyxLmsState* statePtr, SCplx* taps);
RYXAPI void ryxzLmsGetTaps(RyxLmsState* statePtr, DCplx* taps);
RYXAPI void ryxsLmsSetTaps(const float* taps, RyxLmsState* statePtr);
RYXAPI void ryxdLmsSetTaps(const double* taps, RyxLmsState* statePtr);
RYXAPI void ryxcLmsSetTaps(const SCplx* taps, RyxLmsState* statePtr);
RYXAPI void ryxzLmsSetTaps(const DCplx* taps, RyxLmsState* statePtr);
RYXAPI void ryxsLmsGetDlyl(RyxLmsState* statePtr, float* dlyl);
RYXAPI void ryxdLmsGetDlyl(RyxLmsState* statePtr, double* dlyl);
RYXAPI void ryxcLmsGetDlyl(RyxLmsState* statePtr, SCplx* dlyl);
RYXAPI void ryxzLmsGetDlyl(RyxLmsState* statePtr, DCplx* dlyl);
RYXAPI void ryxsLmsSetDlyl(RyxLmsState* statePtr, const float* dlyl);
RYXAPI void ryxdLmsSetDlyl(RyxLmsState* statePtr, const double* dlyl);
RYXAPI void ryxcLmsSetDlyl(RyxLmsState* statePtr, const SCplx* dlyl);
RYXAPI void ryxzLmsSetDlyl(RyxLmsState* statePtr, const DCplx* dlyl);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_ADAPTIVE_H */
