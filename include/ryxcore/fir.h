/*
 * FIR filters: caller-owned and library-owned forms, single-rate and multirate.
 * Included by ryxcore.h.
 *
 * Type codes: the first letter names the sample (and history) type, the
 * second the tap type; one letter means both. s float, c SCplx, d double,
 * z DCplx. Every mixed form yields complex results.
 *
 * Low-level forms (ryx?Firl...): the caller keeps two small records and the
 * arrays they point at. RyxFirTapState points at the caller's taps, in
 * natural order (taps[0] multiplies the newest sample); RyxFirDlyState
 * points at the caller's delay line, kept newest first while filtering.
 * Through SetDlyl/GetDlyl the caller sees the history oldest first. Nothing
 * is allocated, and one tap state may serve many delay states.
 *
 * High-level forms (ryx?Fir...): one RyxFirState owns copies of the taps, a
 * sliding history buffer and, for multirate filters, a table of output
 * phases; ryxFirFree releases them. History through SetDlyl/GetDlyl is oldest
 * first.
 *
 * Multirate (InitMr): the input is conceptually zero-stuffed by upFactor
 * (inputs at high-rate ticks congruent to upPhase), filtered, and every
 * downFactor-th output kept (ticks congruent to downPhase). A block call reads
 * numIters*downFactor samples and writes numIters*upFactor.
 *
 * Block forms (ryx?bFirl, ryx?bFir) read their source in place while they
 * write: src and dst must be different, non-overlapping arrays (src == dst
 * gives wrong output once the block is longer than the history).
 *
 * Low-level call sequence: ryx?FirlInit (or InitMr), ryx?FirlInitDlyl,
 * ryx?FirlSetDlyl (required before the block forms; NULL clears the
 * history), then filter. The records point at the caller's taps and delay
 * buffer, which must outlive them; there is nothing to free. The delay
 * buffer holds tapsLen samples (multirate: ceil(tapsLen/upFactor)).
 *
 * High-level call sequence: ryx?FirInit (or InitMr) with taps and history
 * that may be NULL (all-zero taps, cleared history), filter, ryxFirFree. Set/
 * GetDlyl move tapsLen-1 samples (multirate: ceil(tapsLen/upFactor)),
 * oldest first. SetTaps may be called between any two filter calls.
 *
 * Float single-rate forms accumulate in float in a fixed lane order; double
 * forms and every multirate path accumulate in long double and round at the
 * store. Failures report through ryxError; a failed filter call returns zero
 * and leaves the records as they were.
 */
#ifndef RYXCORE_FIR_H
#define RYXCORE_FIR_H

#ifdef __cplusplus
extern "C" {
#endif

/* Tap state of the low-level forms; the arrays are the caller's. */
typedef struct RyxFirTapState {
  void* taps;        /* caller's taps, natural order */
  int tapsLen;       /* at least 1 */
  int upFactor;      /* 1 for single rate */
  int upPhase;       /* 0 .. upFactor-1 */
  int downFactor;    /* 1 for single rate */
  int downPhase;     /* 0 .. downFactor-1 */
  int isMultiRate;   /* 1 when a factor exceeds 1 */
  int isFilterMode;  /* 0 after the caller took the taps back by GetTaps */
  int tapShift;      /* 0 for the float and double forms */
} RyxFirTapState;

/* Delay state of the low-level forms. */
typedef struct RyxFirDlyState {
  void* dlyl;           /* caller's delay buffer, newest first while filtering */
  int dlylLen;          /* tapsLen, or ceil(tapsLen/upFactor) when multirate */
  int isDlyFilterMode;  /* 1 when the buffer is in working order */
} RyxFirDlyState;

/* One output phase of a multirate high-level filter. */
typedef struct RyxFirPhaseEntry {
  int branch;     /* polyphase branch serving this output */
  int count;      /* taps of that branch */
  int dlyOffset;  /* first history sample of the span */
  int tapOffset;  /* first stored tap of the branch */
} RyxFirPhaseEntry;

/* Record of the high-level forms; Init allocates, ryxFirFree releases. */
typedef struct RyxFirState {
  int upFactor;
  int upPhase;
  int downFactor;
  int downPhase;
  int isMultiRate;
  void* initMark;                /* the record's own address while live */
  int tapsLen;
  int unrollLen;                 /* tapsLen rounded down to the type's unroll width */
  void* taps;                    /* owned: reversed taps, or the polyphase branches */
  int dlylLen;                   /* samples of history */
  int extLen;                    /* room behind the history */
  int reserved;
  void* dlylBuf;                 /* owned: dlylLen + extLen samples */
  void* dlylEnd;                 /* dlylBuf + extLen samples */
  void* dlylCur;                 /* start of the current history span */
  RyxFirPhaseEntry* phaseTable;  /* owned: upFactor rows when multirate, else null */
  int tapShift;
  int origTapsLen;
} RyxFirState;

/* ---- Low-level forms --------------------------------------------------- */

RYXAPI void ryxsFirlInit(float* taps, int tapsLen, RyxFirTapState* tapStPtr);
RYXAPI void ryxsFirlInitMr(float* taps, int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirTapState* tapStPtr);
RYXAPI void ryxsFirlInitDlyl(const RyxFirTapState* tapStPtr, float* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxsFirlSetTaps(const float* taps, RyxFirTapState* tapStPtr);
RYXAPI void ryxsFirlGetTaps(RyxFirTapState* tapStPtr, float* taps);
RYXAPI void ryxsFirlSetDlyl(const RyxFirTapState* tapStPtr, const float* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxsFirlGetDlyl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, float* dlyl);

RYXAPI void ryxcFirlInit(SCplx* taps, int tapsLen, RyxFirTapState* tapStPtr);
RYXAPI void ryxcFirlInitMr(SCplx* taps, int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirTapState* tapStPtr);
RYXAPI void ryxcFirlInitDlyl(const RyxFirTapState* tapStPtr, SCplx* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxcFirlSetTaps(const SCplx* taps, RyxFirTapState* tapStPtr);
RYXAPI void ryxcFirlGetTaps(RyxFirTapState* tapStPtr, SCplx* taps);
RYXAPI void ryxcFirlSetDlyl(const RyxFirTapState* tapStPtr, const SCplx* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxcFirlGetDlyl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, SCplx* dlyl);

RYXAPI void ryxdFirlInit(double* taps, int tapsLen, RyxFirTapState* tapStPtr);
RYXAPI void ryxdFirlInitMr(double* taps, int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirTapState* tapStPtr);
RYXAPI void ryxdFirlInitDlyl(const RyxFirTapState* tapStPtr, double* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxdFirlSetTaps(const double* taps, RyxFirTapState* tapStPtr);
RYXAPI void ryxdFirlGetTaps(RyxFirTapState* tapStPtr, double* taps);
RYXAPI void ryxdFirlSetDlyl(const RyxFirTapState* tapStPtr, const double* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxdFirlGetDlyl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, double* dlyl);

RYXAPI void ryxzFirlInit(DCplx* taps, int tapsLen, RyxFirTapState* tapStPtr);
RYXAPI void ryxzFirlInitMr(DCplx* taps, int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirTapState* tapStPtr);
RYXAPI void ryxzFirlInitDlyl(const RyxFirTapState* tapStPtr, DCplx* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxzFirlSetTaps(const DCplx* taps, RyxFirTapState* tapStPtr);
RYXAPI void ryxzFirlGetTaps(RyxFirTapState* tapStPtr, DCplx* taps);
RYXAPI void ryxzFirlSetDlyl(const RyxFirTapState* tapStPtr, const DCplx* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxzFirlGetDlyl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, DCplx* dlyl);

RYXAPI float ryxsFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, float sample);
RYXAPI void ryxsbFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, const float* src, float* dst, int numIters);
RYXAPI SCplx ryxcFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, SCplx sample);
RYXAPI void ryxcbFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, const SCplx* src, SCplx* dst, int numIters);
RYXAPI void ryxcFirlOut(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, SCplx sample, SCplx* val);
RYXAPI SCplx ryxscFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, float sample);
RYXAPI void ryxscbFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, const float* src, SCplx* dst, int numIters);
RYXAPI void ryxscFirlOut(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, float sample, SCplx* val);
RYXAPI SCplx ryxcsFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, SCplx sample);
RYXAPI void ryxcsbFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, const SCplx* src, SCplx* dst, int numIters);
RYXAPI void ryxcsFirlOut(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, SCplx sample, SCplx* val);
RYXAPI double ryxdFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, double sample);
RYXAPI void ryxdbFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, const double* src, double* dst, int numIters);
RYXAPI DCplx ryxzFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, DCplx sample);
RYXAPI void ryxzbFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, const DCplx* src, DCplx* dst, int numIters);
RYXAPI DCplx ryxdzFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, double sample);
RYXAPI void ryxdzbFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, const double* src, DCplx* dst, int numIters);
RYXAPI DCplx ryxzdFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, DCplx sample);
RYXAPI void ryxzdbFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, const DCplx* src, DCplx* dst, int numIters);

/* ---- High-level forms -------------------------------------------------- */

RYXAPI void ryxsFirInit(const float* taps, int tapsLen, const float* dlyl, RyxFirState* statePtr);
RYXAPI void ryxsFirInitMr(const float* taps, int tapsLen, const float* dlyl, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirState* statePtr);
RYXAPI void ryxcFirInit(const SCplx* taps, int tapsLen, const SCplx* dlyl, RyxFirState* statePtr);
RYXAPI void ryxcFirInitMr(const SCplx* taps, int tapsLen, const SCplx* dlyl, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirState* statePtr);
RYXAPI void ryxscFirInit(const SCplx* taps, int tapsLen, const float* dlyl, RyxFirState* statePtr);
RYXAPI void ryxscFirInitMr(const SCplx* taps, int tapsLen, const float* dlyl, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirState* statePtr);
RYXAPI void ryxcsFirInit(const float* taps, int tapsLen, const SCplx* dlyl, RyxFirState* statePtr);
RYXAPI void ryxcsFirInitMr(const float* taps, int tapsLen, const SCplx* dlyl, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirState* statePtr);
RYXAPI void ryxdFirInit(const double* taps, int tapsLen, const double* dlyl, RyxFirState* statePtr);
RYXAPI void ryxdFirInitMr(const double* taps, int tapsLen, const double* dlyl, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirState* statePtr);
RYXAPI void ryxzFirInit(const DCplx* taps, int tapsLen, const DCplx* dlyl, RyxFirState* statePtr);
RYXAPI void ryxzFirInitMr(const DCplx* taps, int tapsLen, const DCplx* dlyl, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirState* statePtr);
RYXAPI void ryxdzFirInit(const DCplx* taps, int tapsLen, const double* dlyl, RyxFirState* statePtr);
RYXAPI void ryxdzFirInitMr(const DCplx* taps, int tapsLen, const double* dlyl, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirState* statePtr);
RYXAPI void ryxzdFirInit(const double* taps, int tapsLen, const DCplx* dlyl, RyxFirState* statePtr);
RYXAPI void ryxzdFirInitMr(const double* taps, int tapsLen, const DCplx* dlyl, int upFactor, int upPhase, int downFactor, int downPhase, RyxFirState* statePtr);

RYXAPI void ryxsFirSetTaps(const float* taps, RyxFirState* statePtr);
RYXAPI void ryxsFirGetTaps(const RyxFirState* statePtr, float* taps);
RYXAPI void ryxsFirSetDlyl(const float* dlyl, RyxFirState* statePtr);
RYXAPI void ryxsFirGetDlyl(const RyxFirState* statePtr, float* dlyl);
RYXAPI void ryxcFirSetTaps(const SCplx* taps, RyxFirState* statePtr);
RYXAPI void ryxcFirGetTaps(const RyxFirState* statePtr, SCplx* taps);
RYXAPI void ryxcFirSetDlyl(const SCplx* dlyl, RyxFirState* statePtr);
RYXAPI void ryxcFirGetDlyl(const RyxFirState* statePtr, SCplx* dlyl);
RYXAPI void ryxdFirSetTaps(const double* taps, RyxFirState* statePtr);
RYXAPI void ryxdFirGetTaps(const RyxFirState* statePtr, double* taps);
RYXAPI void ryxdFirSetDlyl(const double* dlyl, RyxFirState* statePtr);
RYXAPI void ryxdFirGetDlyl(const RyxFirState* statePtr, double* dlyl);
RYXAPI void ryxzFirSetTaps(const DCplx* taps, RyxFirState* statePtr);
RYXAPI void ryxzFirGetTaps(const RyxFirState* statePtr, DCplx* taps);
RYXAPI void ryxzFirSetDlyl(const DCplx* dlyl, RyxFirState* statePtr);
RYXAPI void ryxzFirGetDlyl(const RyxFirState* statePtr, DCplx* dlyl);

RYXAPI float ryxsFir(RyxFirState* statePtr, float sample);
RYXAPI void ryxsbFir(RyxFirState* statePtr, const float* src, float* dst, int numIters);
RYXAPI SCplx ryxcFir(RyxFirState* statePtr, SCplx sample);
RYXAPI void ryxcbFir(RyxFirState* statePtr, const SCplx* src, SCplx* dst, int numIters);
RYXAPI void ryxcFirOut(RyxFirState* statePtr, SCplx sample, SCplx* val);
RYXAPI SCplx ryxscFir(RyxFirState* statePtr, float sample);
RYXAPI void ryxscbFir(RyxFirState* statePtr, const float* src, SCplx* dst, int numIters);
RYXAPI void ryxscFirOut(RyxFirState* statePtr, float sample, SCplx* val);
RYXAPI SCplx ryxcsFir(RyxFirState* statePtr, SCplx sample);
RYXAPI void ryxcsbFir(RyxFirState* statePtr, const SCplx* src, SCplx* dst, int numIters);
RYXAPI void ryxcsFirOut(RyxFirState* statePtr, SCplx sample, SCplx* val);
RYXAPI double ryxdFir(RyxFirState* statePtr, double sample);
RYXAPI void ryxdbFir(RyxFirState* statePtr, const double* src, double* dst, int numIters);
RYXAPI DCplx ryxzFir(RyxFirState* statePtr, DCplx sample);
RYXAPI void ryxzbFir(RyxFirState* statePtr, const DCplx* src, DCplx* dst, int numIters);
RYXAPI DCplx ryxdzFir(RyxFirState* statePtr, double sample);
RYXAPI void ryxdzbFir(RyxFirState* statePtr, const double* src, DCplx* dst, int numIters);
RYXAPI DCplx ryxzdFir(RyxFirState* statePtr, DCplx sample);
RYXAPI void ryxzdbFir(RyxFirState* statePtr, const DCplx* src, DCplx* dst, int numIters);

RYXAPI void ryxFirFree(RyxFirState* statePtr);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_FIR_H */
