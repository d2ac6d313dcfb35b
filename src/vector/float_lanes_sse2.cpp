// Four-lane (SSE2) forms of the float logarithm, exponent, arctangent and
// square root kernels; see float_lanes.h.
#include <emmintrin.h>

#include "frame/cpu_dispatch.h"
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

const Kernels kSse2 = {
    [](const float* s, float* d, int n) { return lnLanes<V>(s, d, n, lnexp::lnOne); },
    [](const float* s, float* d, int n) { return expLanes<V>(s, d, n, lnexp::expOne); },
    [](const float* s, float* d, int n) { return atanLanes<V>(s, d, n, lnexp::atanOne); },
    sqrLanes<V>,
    absLanes<V>,
    rootLanes<V>,
};

const Kernels& pick() { return cpu::allows(cpu::Isa::Avx2) ? kAvx2 : kSse2; }

}  // namespace ryx::lanes
