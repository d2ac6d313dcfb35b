// Float dot-product kernels. No failure path: the entries have checked the
// pointers and that n >= 0. The AVX2 forms give the same bits as the SSE2
// ones (one eight-lane register holds the two four-lane accumulators); the
// dispatching forms choose at call time below the cap of cpu_dispatch.h.
#pragma once

#include "ryxcore.h"

namespace ryx::dot {

// sum(a[i] * b[i]). Eight elements per turn from the top of the arrays
// down, in two accumulators of four lanes; the accumulators are added, the
// lanes summed upper pair onto lower pair, then the two left over; the
// lowest n % 8 products are then added one by one, so below eight elements
// the sum is sequential.
float dotF32(const float* a, const float* b, int n);

// Complex product sum without conjugation, two complex per four-lane
// register, four per turn: accumulators of the plain products (a.re*b.re,
// a.im*b.im) and of the swapped ones (a.re*b.im, a.im*b.re) for each half
// of the turn; a last pair joins the first half, the halves are added, and
// the odd complex comes last.
SCplx dotC32(const SCplx* a, const SCplx* b, int n);

// Real array times complex array: the complex array as interleaved parts
// against the real array with each element doubled.
SCplx dotRealC32(const float* r, const SCplx* c, int n);

namespace sse2 {
float dotF32(const float* a, const float* b, int n);
SCplx dotC32(const SCplx* a, const SCplx* b, int n);
}  // namespace sse2

namespace avx2 {
float dotF32(const float* a, const float* b, int n);
SCplx dotC32(const SCplx* a, const SCplx* b, int n);
}  // namespace avx2

}  // namespace ryx::dot
