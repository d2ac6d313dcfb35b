/*
 * Sample format conversion: float and double to and from 8-, 16- and 32-bit
 * integers and fixed-point numbers; A-law and mu-law companding.
 * Included by ryxcore.h.
 *
 * Integer and fixed-point conversion. The integer side is an array of
 * `bits` (8, 16 or 32) bit elements, signed, or unsigned with
 * RYX_UnsignedInt. A fixed-point element with `fractBits` fractional bits
 * stands for integer / 2^fractBits. Float to integer:
 *   1. the value is multiplied by 2^fractBits (exact unless it overflows);
 *   2. with RYX_ClipRange it is clamped to the integer's range;
 *   3. it is rounded by the one rounding flag given (nearest with ties to
 *      even, towards zero, down or up) and stored.
 * With RYX_RangeError a rounded value outside the integer's range is
 * reported ("A float exceeds an integer", RYX_StsBadArg) after the whole
 * array is written, clipped or not. Out-of-range values without
 * RYX_ClipRange are stored in an unspecified way. A NaN is out of range and
 * clips to the lower limit. The caller's rounding and exception state is
 * restored on every exit. In ryxdbFloatToInt, 32 bits with flags exactly
 * RYX_RoundZero | RYX_UnsignedInt | RYX_RangeError round down, so that a
 * negative fraction is reported rather than stored as 0.
 * Integer to float is exact where the mantissa allows (else rounded by the
 * caller's mode); the fix forms then multiply by 2^-fractBits.
 * The S forms are signed: S7 8 bits with 7 fractional bits, S15 16/15,
 * S31 32/31, S1516 32/16.
 *
 * All routines except the four S...FixToFloat clear the status first and
 * run every check before giving up ("len<=0", "src==0", "dst==0", the size,
 * "Invalid conversion flag", "Invalid fractBits"); the S...FixToFloat
 * routines stop at the first failed check.
 *
 * Companding: 8-bit ITU-T G.711 codes from and to 16-bit (full scale
 * 32768), 32-bit (2^31), float and double (1.0) samples. Decoded values are
 * the interval mid-points of the 16-bit code points (A-law top 32256,
 * mu-law top 32124), shifted left by 16 for 32-bit and scaled by 1/32768
 * for float and double. Over-range samples take the law's limit code.
 * Float and double samples at or above 0.96875 in magnitude take the limit
 * code at once; others are scaled by 32768, rounded by the caller's mode
 * (nearest by default) and encoded as 16-bit samples. The companding
 * routines stop at the first failed check ("len<=0", "src==0", "dst==0").
 * src and dst must not overlap.
 */
#ifndef RYXCORE_CONVERT_H
#define RYXCORE_CONVERT_H

#ifdef __cplusplus
extern "C" {
#endif

/* Flags of the integer and fixed-point conversions. */
enum RyxConvertFlag {
  RYX_RoundNearest = 0x80,
  RYX_RoundZero = 0x100,
  RYX_RoundDown = 0x200,
  RYX_RoundUp = 0x400,
  RYX_UnsignedInt = 0x800,
  RYX_ClipRange = 0x1000,
  RYX_RangeError = 0x2000
};

/* ---- Integer and fixed-point conversion -------------------------------- */

RYXAPI void ryxsbFloatToInt(const float* src, void* dst, int len, int bits, int flags);
RYXAPI void ryxsbIntToFloat(const void* src, float* dst, int len, int bits, int flags);
RYXAPI void ryxsbFloatToFix(const float* src, void* dst, int len, int bits, int fractBits, int flags);
RYXAPI void ryxsbFixToFloat(const void* src, float* dst, int len, int bits, int fractBits, int flags);
RYXAPI void ryxsbFloatToS7Fix(const float* src, signed char* dst, int len, int flags);
RYXAPI void ryxsbFloatToS15Fix(const float* src, short* dst, int len, int flags);
RYXAPI void ryxsbFloatToS31Fix(const float* src, int* dst, int len, int flags);
RYXAPI void ryxsbFloatToS1516Fix(const float* src, int* dst, int len, int flags);
RYXAPI void ryxsbS7FixToFloat(const signed char* src, float* dst, int len);
RYXAPI void ryxsbS15FixToFloat(const short* src, float* dst, int len);
RYXAPI void ryxsbS31FixToFloat(const int* src, float* dst, int len);
RYXAPI void ryxsbS1516FixToFloat(const int* src, float* dst, int len);

RYXAPI void ryxdbFloatToInt(const double* src, void* dst, int len, int bits, int flags);
RYXAPI void ryxdbIntToFloat(const void* src, double* dst, int len, int bits, int flags);
RYXAPI void ryxdbFloatToFix(const double* src, void* dst, int len, int bits, int fractBits, int flags);
RYXAPI void ryxdbFixToFloat(const void* src, double* dst, int len, int bits, int fractBits, int flags);
RYXAPI void ryxdbFloatToS7Fix(const double* src, signed char* dst, int len, int flags);
RYXAPI void ryxdbFloatToS15Fix(const double* src, short* dst, int len, int flags);
RYXAPI void ryxdbFloatToS31Fix(const double* src, int* dst, int len, int flags);
RYXAPI void ryxdbFloatToS1516Fix(const double* src, int* dst, int len, int flags);
RYXAPI void ryxdbS7FixToFloat(const signed char* src, double* dst, int len);
RYXAPI void ryxdbS15FixToFloat(const short* src, double* dst, int len);
RYXAPI void ryxdbS31FixToFloat(const int* src, double* dst, int len);
RYXAPI void ryxdbS1516FixToFloat(const int* src, double* dst, int len);

/* ---- A-law and mu-law companding -------------------------------------- */

RYXAPI void ryxwbLinToALaw(const short* src, unsigned char* dst, int len);
RYXAPI void ryxibLinToALaw(const int* src, unsigned char* dst, int len);
RYXAPI void ryxsbLinToALaw(const float* src, unsigned char* dst, int len);
RYXAPI void ryxdbLinToALaw(const double* src, unsigned char* dst, int len);
RYXAPI void ryxwbLinToMuLaw(const short* src, unsigned char* dst, int len);
RYXAPI void ryxibLinToMuLaw(const int* src, unsigned char* dst, int len);
RYXAPI void ryxsbLinToMuLaw(const float* src, unsigned char* dst, int len);
RYXAPI void ryxdbLinToMuLaw(const double* src, unsigned char* dst, int len);

RYXAPI void ryxwbALawToLin(const unsigned char* src, short* dst, int len);
RYXAPI void ryxibALawToLin(const unsigned char* src, int* dst, int len);
RYXAPI void ryxsbALawToLin(const unsigned char* src, float* dst, int len);
RYXAPI void ryxdbALawToLin(const unsigned char* src, double* dst, int len);
RYXAPI void ryxwbMuLawToLin(const unsigned char* src, short* dst, int len);
RYXAPI void ryxibMuLawToLin(const unsigned char* src, int* dst, int len);
RYXAPI void ryxsbMuLawToLin(const unsigned char* src, float* dst, int len);
RYXAPI void ryxdbMuLawToLin(const unsigned char* src, double* dst, int len);

/* G.711 transcoding tables, code by code. */
RYXAPI void ryxALawToMuLaw(const unsigned char* src, unsigned char* dst, int len);
RYXAPI void ryxMuLawToALaw(const unsigned char* src, unsigned char* dst, int len);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_CONVERT_H */
