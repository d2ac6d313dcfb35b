/*
 * Complex, polar and spectrum conversions. Included by ryxcore.h.
 *
 * Xb forms take complex records, Xbr forms split real and imaginary arrays
 * (c with sbr, z with dbr, v with wbr). Phases lie in -pi..pi; a sample with
 * zero imaginary part has phase 0 (real part at or above 0) or pi. Float
 * magnitudes use the estimate-based root of the elementwise family in
 * strips of 128 (a few ulp), the last partial strip the exact root.
 * 16-bit forms: Phase is the truncated angle times 16383/pi (pi gives
 * 16383). Mag and PowerSpectr read scaleMode by exact value 0..4 (5, 7 and
 * others do nothing; 6 is refused): 0 wrap, 1 saturate, 2 and 3 divide by
 * 2^*scaleFactor then wrap or saturate, 4 choose the factor from the
 * largest value (its binary exponent less 14) and write it. Mag in modes 0
 * and 1 truncates a double root on up to 128 samples; longer arrays take
 * full strips of 128 through a float root rounded to nearest and
 * saturated, so short and long arrays may differ by one on the same data.
 * The split float and double CartToPolar report under the PolarToCart
 * names; 2RealToCplx accepts null sources as zero parts.
 */
#ifndef RYXCORE_CONVERT_POLAR_H
#define RYXCORE_CONVERT_POLAR_H

#ifdef __cplusplus
extern "C" {
#endif

RYXAPI void ryxcbReal(const SCplx* src, float* dst, int length);
RYXAPI void ryxzbReal(const DCplx* src, double* dst, int length);
RYXAPI void ryxvbReal(const WCplx* src, short* dst, int length);
RYXAPI void ryxcbImag(const SCplx* src, float* dst, int length);
RYXAPI void ryxzbImag(const DCplx* src, double* dst, int length);
RYXAPI void ryxvbImag(const WCplx* src, short* dst, int length);
RYXAPI void ryxcbCplxTo2Real(const SCplx* src, float* dstReal, float* dstImag, int length);
RYXAPI void ryxzbCplxTo2Real(const DCplx* src, double* dstReal, double* dstImag, int length);
RYXAPI void ryxvbCplxTo2Real(const WCplx* src, short* dstReal, short* dstImag, int length);
RYXAPI void ryxcb2RealToCplx(const float* srcReal, const float* srcImag, SCplx* dst, int length);
RYXAPI void ryxzb2RealToCplx(const double* srcReal, const double* srcImag, DCplx* dst, int length);
RYXAPI void ryxvb2RealToCplx(const short* srcReal, const short* srcImag, WCplx* dst, int length);

RYXAPI void ryxcbCartToPolar(const SCplx* src, float* mag, float* phase, int length);
RYXAPI void ryxzbCartToPolar(const DCplx* src, double* mag, double* phase, int length);
RYXAPI void ryxsbrCartToPolar(const float* srcReal, const float* srcImag, float* mag, float* phase, int length);
RYXAPI void ryxdbrCartToPolar(const double* srcReal, const double* srcImag, double* mag, double* phase, int length);
RYXAPI void ryxcbPolarToCart(const float* mag, const float* phase, SCplx* dst, int length);
RYXAPI void ryxzbPolarToCart(const double* mag, const double* phase, DCplx* dst, int length);
RYXAPI void ryxsbrPolarToCart(const float* mag, const float* phase, float* dstReal, float* dstImag, int length);
RYXAPI void ryxdbrPolarToCart(const double* mag, const double* phase, double* dstReal, double* dstImag, int length);

RYXAPI void ryxcbMag(const SCplx* src, float* mag, int length);
RYXAPI void ryxzbMag(const DCplx* src, double* mag, int length);
RYXAPI void ryxsbrMag(const float* srcReal, const float* srcImag, float* mag, int length);
RYXAPI void ryxdbrMag(const double* srcReal, const double* srcImag, double* mag, int length);
RYXAPI void ryxvbMag(const WCplx* src, short* mag, int length, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbrMag(const short* srcReal, const short* srcImag, short* mag, int length, int scaleMode,
                      int* scaleFactor);

RYXAPI void ryxcbPhase(const SCplx* src, float* phase, int length);
RYXAPI void ryxzbPhase(const DCplx* src, double* phase, int length);
RYXAPI void ryxvbPhase(const WCplx* src, short* phase, int length);
RYXAPI void ryxsbrPhase(const float* srcReal, const float* srcImag, float* phase, int length);
RYXAPI void ryxdbrPhase(const double* srcReal, const double* srcImag, double* phase, int length);
RYXAPI void ryxwbrPhase(const short* srcReal, const short* srcImag, short* phase, int length);

RYXAPI void ryxcbPowerSpectr(const SCplx* src, float* spectr, int length);
RYXAPI void ryxzbPowerSpectr(const DCplx* src, double* spectr, int length);
RYXAPI void ryxsbrPowerSpectr(const float* srcReal, const float* srcImag, float* spectr, int length);
RYXAPI void ryxdbrPowerSpectr(const double* srcReal, const double* srcImag, double* spectr, int length);
RYXAPI void ryxvbPowerSpectr(const WCplx* src, short* spectr, int length, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbrPowerSpectr(const short* srcReal, const short* srcImag, short* spectr, int length, int scaleMode,
                              int* scaleFactor);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_CONVERT_POLAR_H */
