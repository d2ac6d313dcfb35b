/*
 * 16-bit FIR filters: signed 16-bit samples through taps designed in float.
 * Included by ryxcore.h.
 *
 * Taps are always given as 32-bit floats. Set-up finds the power of two
 * tapShift that puts the sum of the taps' magnitudes between 16383.5 and
 * 32767 and quantises taps * 2^tapShift to 16 bits; the filter then runs in
 * integers (16x16-bit products summed in 32 bits, wrapping, which the tap
 * exponent makes harmless) and brings each 32-bit sum back to 16 bits under
 * the caller's scale mode, the tap exponent folded into the shift:
 *   0 wrap, RYX_SATURATE (1) saturate, RYX_FIXED_SCALE (2) shift by
 *   *scaleFactor first (positive: right), 3 shift and saturate,
 *   RYX_AUTO_SCALE (4, any mode with bit 2 set) choose the shift and write
 *   it to *scaleFactor (the true output is out * 2^*scaleFactor).
 * scaleFactor may be null except with scaleMode exactly 4.
 *
 * Low-level (ryxwFirl...): the records of the float forms. Init quantises in
 * place: the caller's float array then holds tapsLen 16-bit taps (reversed;
 * multirate: polyphase branches, each reversed). GetTaps gives floats back;
 * into the record's own array it returns that array to the caller, and the
 * filter refuses to run until SetTaps. The delay line holds
 * ceil(tapsLen/upFactor) 16-bit samples, oldest first, with no reversal in
 * Set/GetDlyl (tapsLen-1 of them for a single-rate state). ryxwbFirl
 * allocates a 32-bit work array per call.
 *
 * High-level (ryxwFir...): RyxFirState with padded lengths and a table of
 * four shifted tap copies; released by ryxFirFree. Set/GetDlyl move
 * tapsLen-1 samples (multirate: ceil(tapsLen/upFactor)), oldest first.
 * Unlike the float forms, Init on a live record does not free it first.
 *
 * 16-bit IIR: float taps in the order of the float forms (b[0..order] then
 * a[0..order]; cascades b0 b1 b2 a0 a1 a2 per section), normalised and
 * quantised at set-up into the memory of the caller's array, with
 * fractBits fraction bits (the record's `reserved`). Arbitrary order runs
 * in integers on a delay line of `order` 32-bit values and always
 * saturates its output; a fixed positive scale shifts the numerator, a
 * negative one the feedback; automatic scale shifts the input right until
 * no output overflows. A cascade runs in integers under scale mode 0
 * (outputs always even), otherwise in double on a float delay line of the
 * same memory. The Gain forms multiply the numerator by gain and take
 * inputRange (bits of input used) into the choice of fractBits. The
 * high-level records are released by ryxIirFree.
 */
#ifndef RYXCORE_FILTER_INT16_H
#define RYXCORE_FILTER_INT16_H

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Low-level 16-bit FIR ------------------------------------------------ */

RYXAPI void ryxwFirlInit(float* taps, int tapsLen, RyxFirTapState* tapStPtr);
RYXAPI void ryxwFirlInitMr(float* taps, int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase,
                           RyxFirTapState* tapStPtr);
RYXAPI void ryxwFirlInitDlyl(const RyxFirTapState* tapStPtr, short* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxwFirlSetTaps(const float* taps, RyxFirTapState* tapStPtr);
RYXAPI void ryxwFirlGetTaps(RyxFirTapState* tapStPtr, float* taps);
RYXAPI void ryxwFirlSetDlyl(const RyxFirTapState* tapStPtr, const short* dlyl, RyxFirDlyState* dlyStPtr);
RYXAPI void ryxwFirlGetDlyl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, short* dlyl);
RYXAPI short ryxwFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, short sample, int scaleMode,
                      int* scaleFactor);
RYXAPI void ryxwbFirl(const RyxFirTapState* tapStPtr, RyxFirDlyState* dlyStPtr, const short* src, short* dst,
                      int numIters, int scaleMode, int* scaleFactor);

/* ---- High-level 16-bit FIR ----------------------------------------------- */

RYXAPI void ryxwFirInit(const float* taps, int tapsLen, const short* dlyl, RyxFirState* statePtr);
RYXAPI void ryxwFirInitMr(const float* taps, int tapsLen, const short* dlyl, int upFactor, int upPhase,
                          int downFactor, int downPhase, RyxFirState* statePtr);
RYXAPI void ryxwFirSetTaps(const float* taps, RyxFirState* statePtr);
RYXAPI void ryxwFirGetTaps(const RyxFirState* statePtr, float* taps);
RYXAPI void ryxwFirSetDlyl(const short* dlyl, RyxFirState* statePtr);
RYXAPI void ryxwFirGetDlyl(const RyxFirState* statePtr, short* dlyl);
RYXAPI short ryxwFir(RyxFirState* statePtr, short sample, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbFir(RyxFirState* statePtr, const short* src, short* dst, int numIters, int scaleMode,
                     int* scaleFactor);

/* ---- 16-bit IIR ------------------------------------------------------------ */

RYXAPI void ryxwIirlInit(int iirType, float* taps, int order, RyxIirTapState* tapStPtr);
RYXAPI void ryxwIirlInitGain(int iirType, float* taps, int order, RyxIirTapState* tapStPtr, float gain,
                             int inputRange);
RYXAPI void ryxwIirlInitBq(int iirType, float* taps, int numQuads, RyxIirTapState* tapStPtr);
RYXAPI void ryxwIirlInitDlyl(const RyxIirTapState* tapStPtr, int* dlyl, RyxIirDlyState* dlyStPtr);
RYXAPI short ryxwIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, short sample, int scaleMode,
                      int* scaleFactor);
RYXAPI void ryxwbIirl(const RyxIirTapState* tapStPtr, RyxIirDlyState* dlyStPtr, const short* inSamps,
                      short* outSamps, int numIters, int scaleMode, int* scaleFactor);

RYXAPI void ryxwIirInit(int iirType, const float* tapVals, int order, RyxIirState* statePtr);
RYXAPI void ryxwIirInitGain(int iirType, const float* tapVals, int order, RyxIirState* statePtr, float gain,
                            int inputRange);
RYXAPI void ryxwIirInitBq(int iirType, const float* tapVals, int numQuads, RyxIirState* statePtr);
RYXAPI short ryxwIir(RyxIirState* statePtr, short sample, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbIir(RyxIirState* statePtr, const short* src, short* dst, int numIters, int scaleMode,
                     int* scaleFactor);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_FILTER_INT16_H */
