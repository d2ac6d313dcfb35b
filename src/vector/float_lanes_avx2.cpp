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

namespace avx2 {
int lnF32(const float* src, float* dst, int n) { return lnLanes<V>(src, dst, n, lnexp::lnOne); }
int expF32(const float* src, float* dst, int n) { return expLanes<V>(src, dst, n, lnexp::expOne); }
int atanF32(const float* src, float* dst, int n) { return atanLanes<V>(src, dst, n, lnexp::atanOne); }
int sqrF32(const float* src, float* dst, int n) { return sqrLanes<V>(src, dst, n); }
int absF32(const float* src, float* dst, int n) { return absLanes<V>(src, dst, n); }
bool rootF32(const float* src, float* dst, int n) {
  const int whole = n & ~7;
  const bool bad = rootLanes<V>(src, dst, whole);
  return (whole < n && sse2::rootF32(src + whole, dst + whole, n - whole)) || bad;
}
}  // namespace avx2

}  // namespace ryx::lanes
