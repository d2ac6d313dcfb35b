// Kernels of the Div family. Each writes every element of dst and returns
// true when at least one divisor was zero (the entry then reports). They
// have no other failure path: the entry has checked pointers and length.
//
// Zero divisors, with the sign of zero ignored:
//   s, d   x/0 is the largest finite value with the sign of x, where x above
//          0 counts as positive and everything else (NaN included) as
//          negative; 0/0 leaves the dividend (a zero);
//   w      x/0 is 32767 for x > 0, -32768 for x < 0, 0 for x = 0;
//   c,z,v  a zero scalar of Div1 sets the whole array to (0, 0); a zero
//          divisor element of Div2/Div3 gives (0, 0).
// Shape 1 divides dst by val; shapes 2 and 3 are given as a (dividends) and
// b (divisors): shape 2 passes a = dst, b = src.
#pragma once

#include "ryxcore.h"

namespace ryx::div {

bool divScalarS(float val, float* dst, int n);
bool divArrayS(const float* a, const float* b, float* dst, int n);
bool divScalarD(double val, double* dst, int n);
bool divArrayD(const double* a, const double* b, double* dst, int n);
bool divScalarC(SCplx val, SCplx* dst, int n);
bool divArrayC(const SCplx* a, const SCplx* b, SCplx* dst, int n);
bool divScalarZ(DCplx val, DCplx* dst, int n);
bool divArrayZ(const DCplx* a, const DCplx* b, DCplx* dst, int n);
bool divScalarW(short val, short* dst, int n);
bool divArrayW(const short* a, const short* b, short* dst, int n);
bool divScalarV(WCplx val, WCplx* dst, int n);
bool divArrayV(const WCplx* a, const WCplx* b, WCplx* dst, int n);

// One float reciprocal estimate (the processor's table lookup, about 12
// bits), the same in the single-element and the four-lane forms.
float reciprocalEstimate(float b);

}  // namespace ryx::div
