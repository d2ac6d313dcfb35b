// Float dot-product kernels on SSE2 lanes. No failure path: the entries
// have checked the pointers and that n >= 0.
#pragma once

#include "ryxcore.h"

namespace ryx::dot {

// sum(a[i] * b[i]). Eight elements per turn from the top of the arrays
// down, in two accumulators of four lanes; the lanes are summed upper pair
// onto lower pair, then the two left over; the lowest n % 8 products are
// then added one by one, so below eight elements the sum is sequential.
float dotF32(const float* a, const float* b, int n);

// Complex product sum without conjugation, two complex per lane register:
// one accumulator of the plain products (a.re*b.re, a.im*b.im) and one of
// the swapped ones (a.re*b.im, a.im*b.re); the odd complex last.
SCplx dotC32(const SCplx* a, const SCplx* b, int n);

// Real array times complex array: the complex array as interleaved parts
// against the real array with each element doubled.
SCplx dotRealC32(const float* r, const SCplx* c, int n);

}  // namespace ryx::dot
