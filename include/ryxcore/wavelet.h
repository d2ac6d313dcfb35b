/*
 * Wavelets: a two-channel filter bank with decimation by two, run over
 * `level` stages on periodically extended data. Included by ryxcore.h.
 *
 * Set-up fills a caller-allocated RyxWtState for one precision (s float,
 * d double, w 16-bit) and one data length; ryxWtFree releases what it holds.
 * wtType: 1 Haar, 2 Daubechies (par1 1..10), 3 symlets (par1 1..7, 2*par1+6
 * taps), 4 coiflets (par1 1..5), 5 Vaidyanathan (24 taps), 6 biorthogonal
 * spline pairs (par1, par2) = (1, 1|3|5), (2, 2|4|6|8), (3, 1|3|5|7|9), 7 the
 * same pairs with the dual filters swapped in, 8 linear spline, 9 quadratic
 * spline, 10 the caller's filters (only through InitUserFilter/SetState).
 * Filters, in order: decomposition low-pass h0 and high-pass h1,
 * reconstruction low-pass g0 and high-pass g1, each with a length and an
 * offset o. Built-in low-pass filters sum to 1 (h0) and 2 (g0).
 *
 * One stage on x of length m (an odd m repeats its last sample, giving the
 * even period m'): lo[i] = sum_j h0[j]*x[2i+o0-j], hi[i] likewise with h1,
 * o1, x read periodically; n = (m+1)/2 values each. Reconstruction:
 * y[k] = sum_i lo[i]*g0[k-2i+o2] + hi[i]*g1[k-2i+o3], lo and hi read with
 * period n, only taps inside the filter; an odd m drops the extra sample.
 * levelLen[0] = len, levelLen[i] = (levelLen[i-1]+1)/2; the decomposed
 * layout is the approximation (levelLen[L] values), then the details of
 * level L, L-1, ..., 1; lenDec counts them all. Float forms accumulate in
 * double. Haar and the 2-tap spline pair have exact butterfly kernels
 * (0.5*(a+b), 0.5*(b-a); y = lo-hi, lo+hi). The 16-bit form runs Haar in
 * integers up to level 14 (details (b-a)>>t at stage t, approximation
 * sum>>L), everything else through the float kernels, rounding to nearest
 * with clipping.
 *
 * Every routine clears the stored status first and returns the status; a
 * refused call writes nothing. Source group "ryxwlt".
 */
#ifndef RYXCORE_WAVELET_H
#define RYXCORE_WAVELET_H

#ifdef __cplusplus
extern "C" {
#endif

/* State of one transform; allocated by the caller, filled by the set-up. */
typedef struct RyxWtState {
  int core;          /* precision: 1 s, 2 d, 4 w; 0 when cleared */
  int wtType;        /* 1..10 */
  int filterClass;   /* 1 orthogonal, 2 biorthogonal, 0 the caller's filters */
  int par1;
  int par2;
  int dataOrder;     /* log2 of the length when set up by order, else -1 */
  int level;
  int lenFilt[4];    /* h0, h1, g0, g1 */
  int ofsFilt[4];
  void* tapFilt[4];  /* double (d) or float (s, w) taps; the d form points at constant tables */
  void* work;        /* owned working array */
  int lenDec;        /* length of the decomposed output */
  int levelLen[33];  /* data length at each level; unused entries zero */
} RyxWtState;

RYXAPI RyxStatus ryxdWtInitLen(int par1, int par2, int len, int level, RyxWtState* wtState, int wtType, int* len_dec);
RYXAPI RyxStatus ryxsWtInitLen(int par1, int par2, int len, int level, RyxWtState* wtState, int wtType, int* len_dec);
RYXAPI RyxStatus ryxwWtInitLen(int par1, int par2, int len, int level, RyxWtState* wtState, int wtType, int* len_dec);

/* Length 1 << dataOrder, dataOrder 1..31; stores dataOrder. */
RYXAPI RyxStatus ryxdWtInit(int par1, int par2, int dataOrder, int level, RyxWtState* wtState, int wtType);
RYXAPI RyxStatus ryxsWtInit(int par1, int par2, int dataOrder, int level, RyxWtState* wtState, int wtType);
RYXAPI RyxStatus ryxwWtInit(int par1, int par2, int dataOrder, int level, RyxWtState* wtState, int wtType);

/* Four filters of the caller's (copied), lengths >= 2, 0 <= offset < length. */
RYXAPI RyxStatus ryxdWtInitUserFilter(const double* const* tap_filt, const int* len_filt, const int* ofs_filt,
                                      int len, int level, RyxWtState* wtState, int* len_dec);
RYXAPI RyxStatus ryxsWtInitUserFilter(const float* const* tap_filt, const int* len_filt, const int* ofs_filt,
                                      int len, int level, RyxWtState* wtState, int* len_dec);
RYXAPI RyxStatus ryxwWtInitUserFilter(const float* const* tap_filt, const int* len_filt, const int* ofs_filt,
                                      int len, int level, RyxWtState* wtState, int* len_dec);

/* Init (wtType 1..9) or InitUserFilter (wtType 10) for length 1 << dataOrder. */
RYXAPI RyxStatus ryxdWtSetState(RyxWtState* wtState, int wtType, int par1, int par2, int dataOrder, int level,
                                const double* const* tap_filt, const int* len_filt, const int* ofs_filt);
RYXAPI RyxStatus ryxsWtSetState(RyxWtState* wtState, int wtType, int par1, int par2, int dataOrder, int level,
                                const float* const* tap_filt, const int* len_filt, const int* ofs_filt);
RYXAPI RyxStatus ryxwWtSetState(RyxWtState* wtState, int wtType, int par1, int par2, int dataOrder, int level,
                                const float* const* tap_filt, const int* len_filt, const int* ofs_filt);

/* Reads the record back; the filter pointers stay the record's. */
RYXAPI RyxStatus ryxdWtGetState(const RyxWtState* wtState, int* wtType, int* par1, int* par2, int* dataOrder,
                                int* level, const double** tap_filt, int* len_filt, int* ofs_filt);
RYXAPI RyxStatus ryxsWtGetState(const RyxWtState* wtState, int* wtType, int* par1, int* par2, int* dataOrder,
                                int* level, const float** tap_filt, int* len_filt, int* ofs_filt);
RYXAPI RyxStatus ryxwWtGetState(const RyxWtState* wtState, int* wtType, int* par1, int* par2, int* dataOrder,
                                int* level, const float** tap_filt, int* len_filt, int* ofs_filt);

/* Releases the working array (and the filter copies of s, w and user sets)
 * and clears the record; a cleared record may be freed again. */
RYXAPI RyxStatus ryxWtFree(RyxWtState* wtState);

/* src of levelLen[0] values to dst of lenDec values, and back. */
RYXAPI RyxStatus ryxdWtDecompose(RyxWtState* wtState, const double* src, double* dst);
RYXAPI RyxStatus ryxsWtDecompose(RyxWtState* wtState, const float* src, float* dst);
RYXAPI RyxStatus ryxwWtDecompose(RyxWtState* wtState, const short* src, short* dst);
RYXAPI RyxStatus ryxdWtReconstruct(RyxWtState* wtState, const double* src, double* dst);
RYXAPI RyxStatus ryxsWtReconstruct(RyxWtState* wtState, const float* src, float* dst);
RYXAPI RyxStatus ryxwWtReconstruct(RyxWtState* wtState, const short* src, short* dst);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_WAVELET_H */
