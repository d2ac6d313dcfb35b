/*
 * Logarithm, exponent and arctangent on arrays. Included by ryxcore.h.
 *
 * Float kernels use their own short polynomials and a refined reciprocal
 * estimate: a few ulp, not correctly rounded. Special arguments give their
 * special values silently: ln 0 = -inf, ln of a negative = NaN, exp of a
 * large argument = +inf, NaN passes. ryxczbLg classifies first: a real part
 * of zero or a positive denormal gives (-inf, -inf), an infinite or NaN part
 * (NaN, NaN). 16 bits: ryxwbLn is the rounded logarithm by comparisons,
 * reading elements at even positions (but an odd length's last) as
 * unsigned; ryxwbExp reads scaleMode by bits, rounds e^x / 2^factor to
 * nearest, saturates or wraps, refuses fixed factors outside -31..31, and in
 * auto mode chooses the factor from the largest element and saturates.
 */
#ifndef RYXCORE_VECTOR_LNEXP_H
#define RYXCORE_VECTOR_LNEXP_H

#ifdef __cplusplus
extern "C" {
#endif

RYXAPI void ryxsbLn1(float* vec, int len);
RYXAPI void ryxsbLn2(const float* src, float* dst, int len);
RYXAPI void ryxdbLn1(double* vec, int len);
RYXAPI void ryxdbLn2(const double* src, double* dst, int len);
RYXAPI void ryxdsbLn(const double* src, float* dst, int len);
RYXAPI void ryxsbExp1(float* vec, int len);
RYXAPI void ryxsbExp2(const float* src, float* dst, int len);
RYXAPI void ryxdbExp1(double* vec, int len);
RYXAPI void ryxdbExp2(const double* src, double* dst, int len);
RYXAPI void ryxsdbExp(const float* src, double* dst, int len);

RYXAPI void ryxsbLg1(float* vec, int len);
RYXAPI void ryxsbLg2(const float* src, float* dst, int len);
RYXAPI void ryxdbLg1(double* vec, int len);
RYXAPI void ryxdbLg2(const double* src, double* dst, int len);
RYXAPI void ryxcbLg1(SCplx* vec, int len);
RYXAPI void ryxcbLg2(const SCplx* src, SCplx* dst, int len);
RYXAPI void ryxczbLg(const SCplx* src, DCplx* dst, int len);

RYXAPI void ryxsbArctan1(float* vec, int len);
RYXAPI void ryxsbArctan2(const float* src, float* dst, int len);
RYXAPI void ryxdbArctan1(double* vec, int len);
RYXAPI void ryxdbArctan2(const double* src, double* dst, int len);

RYXAPI void ryxwbLn1(short* vec, int len);
RYXAPI void ryxwbLn2(const short* src, short* dst, int len);
RYXAPI void ryxwbExp1(short* vec, int len, int scaleMode, int* scaleFactor);
RYXAPI void ryxwbExp2(const short* src, short* dst, int len, int scaleMode, int* scaleFactor);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_VECTOR_LNEXP_H */
