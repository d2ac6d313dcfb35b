/*
 * IIR filters: caller-owned (low-level) and library-owned (high-level)
 * forms, one section of arbitrary order or a cascade of second-order
 * sections. Included by ryxcore.h.
 *
 * Type codes: the first letter names the sample type, the second the tap
 * type; one letter means both. s float, c SCplx, d double, z DCplx. The
 * mixed forms keep a complex delay line and give complex results. There is
 * no mixed set-up routine: sc takes the c set-up, cs the s taps with the c
 * delay line, dz the z set-up, zd the d taps with the z delay line.
 *
 * Caller's taps, arbitrary order: b[0..order] then a[0..order]. After
 * normalisation by a[0], b[i] stands at i and a[i] (i >= 1) at order+i; the
 * last element keeps its value. Cascade: six taps a section, b0 b1 b2 a0
 * a1 a2; afterwards element 0 is the overall gain (the product of b0/a0
 * over the sections, in section order) and section q holds a1/a0, a2/a0,
 * b1/b0, b2/b0 from element 1+4q on.
 *
 * iirType 0 or 1: taps is the caller's array, normalised in place. iirType
 * 2: taps is the address of a pointer to the caller's array (cast to the tap
 * pointer type). The float forms then allocate a new array with the
 * normalised taps and speed tables behind them and store its address
 * through taps (the caller frees it with ryxFree); the double forms adopt
 * the caller's array, set the caller's pointer to null and normalise in
 * place.
 *
 * Delay line: order elements of the delay type (2 per section, d0 then d1,
 * for a cascade), any alignment; it is the whole state of a filter and the
 * caller may read or write it between calls. Arbitrary order runs the
 * transposed direct form II, a cascade the direct form II per section.
 *
 * Failures report through ryxError (source groups "mvqiirl" for the float
 * forms, "ryxiirl" for the double forms, "mvqiirh" and "ryxiirh" for the
 * high-level ones); a failed filter call returns zero and writes nothing.
 * Filters and the float set-up routines also stop on a failure already
 * stored in the thread's status.
 */
#ifndef RYXCORE_IIR_H
#define RYXCORE_IIR_H

#ifdef __cplusplus
extern "C" {
#endif

/* Tap state of the low-level forms. */
typedef struct RyxIirTapState {
  int order;    /* filter order; 2*numQuads for a cascade */
  void* taps;   /* normalised taps (and tables when tapForm is 1 or 3) */
  int iirType;  /* as passed to Init: 0, 1 or 2 */
  int tapForm;  /* 0 arbitrary order, 1 with tables, 2 cascade, 3 cascade with tables */
  int reserved;
} RyxIirTapState;

/* Delay state of the low-level forms: the caller's line of order elements. */
typedef struct RyxIirDlyState {
  void* dlyl;
} RyxIirDlyState;

/* Record of the high-level forms; its first five fields are a tap state. */
typedef struct RyxIirState {
  int order;
  void* taps;    /* owned */
  int iirType;
  int tapForm;
  int reserved;
  void* dlyl;    /* owned delay line; the field alone serves as a delay state */
  int initMark;  /* 31725 while live */
} RyxIirState;

/* ---- Low-level forms --------------------------------------------------- */

RYXAPI void ryxsIirlInit(int iirType, float* taps, int order, RyxIirTapState* tapStPtr);
RYXAPI void ryxsIirlInitBq(int iirType, float* taps, int numQuads, RyxIirTapState* tapStPtr);
RYXAPI void ryxsIirlInitDlyl(const RyxIirTapState* tapStPtr, float* dlyl, RyxIirDlyState* dlyStPtr);
RYXAPI void ryxcIirlInit(int iirType, SCplx* taps, int order, RyxIirTapState* tapStPtr);
RYXAPI void ryxcIirlInitBq(int iirType, SCplx* taps, int numQuads, RyxIirTapState* tapStPtr);
RYXAPI void ryxcIirlInitDlyl(const RyxIirTapState* tapStPtr, SCplx* dlyl, RyxIirDlyState* dlyStPtr);
RYXAPI void ryxdIirlInit(int iirType, double* taps, int order, RyxIirTapState* tapStPtr);
RYXAPI void ryxdIirlInitBq(int iirType, double* taps, int numQuads, RyxIirTapState* tapStPtr);
RYXAPI void ryxdIirlInitDlyl(const RyxIirTapState* tapStPtr, double* dlyl, RyxIirDlyState* dlyStPtr);
RYXAPI void ryxzIirlInit(int iirType, DCplx* taps, int order, RyxIirTapState* tapStPtr);
RYXAPI void ryxzIirlInitBq(int iirType, DCplx* taps, int numQuads, RyxIirTapState* tapStPtr);
RYXAPI void ryxzIirlInitDlyl(const RyxIirTapState* tapStPtr, DCplx* dlyl, RyxIirDlyState* dlyStPtr);

RYXAPI float ryxsIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, float sample);
RYXAPI void ryxsbIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, const float* inSamps, float* outSamps, int numIters);
RYXAPI SCplx ryxcIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, SCplx sample);
RYXAPI void ryxcbIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, const SCplx* inSamps, SCplx* outSamps, int numIters);
RYXAPI void ryxcIirlOut(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, SCplx sample, SCplx* val);
RYXAPI SCplx ryxscIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, float sample);
RYXAPI void ryxscbIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, const float* inSamps, SCplx* outSamps, int numIters);
RYXAPI void ryxscIirlOut(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, float sample, SCplx* val);
RYXAPI SCplx ryxcsIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, SCplx sample);
RYXAPI void ryxcsbIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, const SCplx* inSamps, SCplx* outSamps, int numIters);
RYXAPI void ryxcsIirlOut(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, SCplx sample, SCplx* val);
RYXAPI double ryxdIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, double sample);
RYXAPI void ryxdbIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, const double* inSamps, double* outSamps, int numIters);
RYXAPI DCplx ryxzIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, DCplx sample);
RYXAPI void ryxzbIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, const DCplx* inSamps, DCplx* outSamps, int numIters);
RYXAPI DCplx ryxdzIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, double sample);
RYXAPI void ryxdzbIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, const double* inSamps, DCplx* outSamps, int numIters);
RYXAPI DCplx ryxzdIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, DCplx sample);
RYXAPI void ryxzdbIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, const DCplx* inSamps, DCplx* outSamps, int numIters);

/* ---- High-level forms -------------------------------------------------- */
/* iirType 0 or 1; tapVals in the caller's order, left unchanged; the delay
 * line starts at zero. A record must be zeroed (or freed) before Init. */

RYXAPI void ryxsIirInit(int iirType, const float* tapVals, int order, RyxIirState* statePtr);
RYXAPI void ryxsIirInitBq(int iirType, const float* tapVals, int numQuads, RyxIirState* statePtr);
RYXAPI void ryxcIirInit(int iirType, const SCplx* tapVals, int order, RyxIirState* statePtr);
RYXAPI void ryxcIirInitBq(int iirType, const SCplx* tapVals, int numQuads, RyxIirState* statePtr);
RYXAPI void ryxscIirInit(int iirType, const SCplx* tapVals, int order, RyxIirState* statePtr);
RYXAPI void ryxscIirInitBq(int iirType, const SCplx* tapVals, int numQuads, RyxIirState* statePtr);
RYXAPI void ryxcsIirInit(int iirType, const float* tapVals, int order, RyxIirState* statePtr);
RYXAPI void ryxcsIirInitBq(int iirType, const float* tapVals, int numQuads, RyxIirState* statePtr);
RYXAPI void ryxdIirInit(int iirType, const double* tapVals, int order, RyxIirState* statePtr);
RYXAPI void ryxdIirInitBq(int iirType, const double* tapVals, int numQuads, RyxIirState* statePtr);
RYXAPI void ryxzIirInit(int iirType, const DCplx* tapVals, int order, RyxIirState* statePtr);
RYXAPI void ryxzIirInitBq(int iirType, const DCplx* tapVals, int numQuads, RyxIirState* statePtr);
RYXAPI void ryxdzIirInit(int iirType, const DCplx* tapVals, int order, RyxIirState* statePtr);
RYXAPI void ryxdzIirInitBq(int iirType, const DCplx* tapVals, int numQuads, RyxIirState* statePtr);
RYXAPI void ryxzdIirInit(int iirType, const double* tapVals, int order, RyxIirState* statePtr);
RYXAPI void ryxzdIirInitBq(int iirType, const double* tapVals, int numQuads, RyxIirState* statePtr);

RYXAPI float ryxsIir(RyxIirState* statePtr, float sample);
RYXAPI void ryxsbIir(RyxIirState* statePtr, const float* src, float* dst, int numIters);
RYXAPI SCplx ryxcIir(RyxIirState* statePtr, SCplx sample);
RYXAPI void ryxcbIir(RyxIirState* statePtr, const SCplx* src, SCplx* dst, int numIters);
RYXAPI void ryxcIirOut(RyxIirState* statePtr, SCplx sample, SCplx* val);
RYXAPI SCplx ryxscIir(RyxIirState* statePtr, float sample);
RYXAPI void ryxscbIir(RyxIirState* statePtr, const float* src, SCplx* dst, int numIters);
RYXAPI void ryxscIirOut(RyxIirState* statePtr, float sample, SCplx* val);
RYXAPI SCplx ryxcsIir(RyxIirState* statePtr, SCplx sample);
RYXAPI void ryxcsbIir(RyxIirState* statePtr, const SCplx* src, SCplx* dst, int numIters);
RYXAPI void ryxcsIirOut(RyxIirState* statePtr, SCplx sample, SCplx* val);
RYXAPI double ryxdIir(RyxIirState* statePtr, double sample);
RYXAPI void ryxdbIir(RyxIirState* statePtr, const double* src, double* dst, int numIters);
RYXAPI DCplx ryxzIir(RyxIirState* statePtr, DCplx sample);
RYXAPI void ryxzbIir(RyxIirState* statePtr, const DCplx* src, DCplx* dst, int numIters);
RYXAPI DCplx ryxdzIir(RyxIirState* statePtr, double sample);
RYXAPI void ryxdzbIir(RyxIirState* statePtr, const double* src, DCplx* dst, int numIters);
RYXAPI DCplx ryxzdIir(RyxIirState* statePtr, DCplx sample);
RYXAPI void ryxzdbIir(RyxIirState* statePtr, const DCplx* src, DCplx* dst, int numIters);

/* Releases the taps and the delay line; the record is dead afterwards. */
RYXAPI void ryxIirFree(RyxIirState* statePtr);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_IIR_H */
