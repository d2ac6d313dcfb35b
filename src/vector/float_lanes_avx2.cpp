// Eight-lane (AVX2) forms of the float logarithm, exponent, arctangent and
// square root kernels, compiled with -mavx2; see float_lanes.h. The 256-bit
// estimates are the 128-bit ones lane for lane.
#include <immintrin.h>

#include "vector/float_lanes.h"
#include "vector/lnexp_kernels.h"

namespace ryx::lanes {
namespace {

struct Avx2 {
  template <class F>
  static F rcp(F a) { return reinterpret_cast<F>(_mm256_rcp_ps(reinterpret_cast<__m256>(a))); }
  template <class F>
  static F rsqrt(F a) { return reinterpret_cast<F>(_mm256_rsqrt_ps(reinterpret_cast<__m256>(a))); }
  template <class F>
  static int mask(F m) { return _mm256_movemask_ps(reinterpret_cast<__m256>(m)); }
  template <class F, class I>
  static F cvt(I a) { return reinterpret_cast<F>(_mm256_cvtepi32_ps(reinterpret_cast<__m256i>(a))); }
  template <class I, class F>
  static I trunc(F a) { return reinterpret_cast<I>(_mm256_cvttps_epi32(reinterpret_cast<__m256>(a))); }
};
using V = Lanes<8, Avx2>;

}  // namespace

// Pairs of groups of four in eight lanes; a last lone group on four.
const Kernels kAvx2 = {
    [](const float* s, float* d, int n) { return lnLanes<V>(s, d, n, lnexp::lnOne); },
    [](const float* s, float* d, int n) { return expLanes<V>(s, d, n, lnexp::expOne); },
    [](const float* s, float* d, int n) { return atanLanes<V>(s, d, n, lnexp::atanOne); },
    sqrLanes<V>,
    absLanes<V>,
    [](const float* s, float* d, int n) {
      const int whole = n & ~7;
      const bool bad = rootLanes<V>(s, d, whole);
      return (whole < n && kSse2.root(s + whole, d + whole, n - whole)) || bad;
    },
};

}  // namespace ryx::lanes
