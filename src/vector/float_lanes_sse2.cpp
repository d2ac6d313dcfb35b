// Four-lane (SSE2) forms of the float logarithm, exponent, arctangent and
// square root kernels; see float_lanes.h.
#include <emmintrin.h>

#include "vector/float_lanes.h"
#include "vector/lnexp_kernels.h"

namespace ryx::lanes {
namespace {

struct Sse2 {
  template <class F>
  static F rcp(F a) { return reinterpret_cast<F>(_mm_rcp_ps(reinterpret_cast<__m128>(a))); }
  template <class F>
  static F rsqrt(F a) { return reinterpret_cast<F>(_mm_rsqrt_ps(reinterpret_cast<__m128>(a))); }
  template <class F>
  static int mask(F m) { return _mm_movemask_ps(reinterpret_cast<__m128>(m)); }
  template <class F, class I>
  static F cvt(I a) { return reinterpret_cast<F>(_mm_cvtepi32_ps(reinterpret_cast<__m128i>(a))); }
  template <class I, class F>
  static I trunc(F a) { return reinterpret_cast<I>(_mm_cvttps_epi32(reinterpret_cast<__m128>(a))); }
};
using V = Lanes<4, Sse2>;

}  // namespace

namespace sse2 {
int lnF32(const float* src, float* dst, int n) { return lnLanes<V>(src, dst, n, lnexp::lnOne); }
int expF32(const float* src, float* dst, int n) { return expLanes<V>(src, dst, n, lnexp::expOne); }
int atanF32(const float* src, float* dst, int n) { return atanLanes<V>(src, dst, n, lnexp::atanOne); }
int sqrF32(const float* src, float* dst, int n) { return sqrLanes<V>(src, dst, n); }
int absF32(const float* src, float* dst, int n) { return absLanes<V>(src, dst, n); }
bool rootF32(const float* src, float* dst, int n) { return rootLanes<V>(src, dst, n); }
}  // namespace sse2

}  // namespace ryx::lanes
