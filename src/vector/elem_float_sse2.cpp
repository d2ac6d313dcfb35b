// Float and SCplx kernels of square, root, thresholds and absolute value.
// Roots and reciprocals take the processor's 12-bit estimate and one Newton
// step; lanes the estimate cannot serve (zero, negative, denormal, infinite
// or NaN arguments) send their whole group of four to the exact operation,
// which is where a bad element is noticed.
#include <emmintrin.h>

#include <cfloat>
#include <cmath>
#include <cstring>

#include "vector/elem_kernels.h"
#include "vector/lnexp_kernels.h"

namespace ryx::elem {
namespace {

// A positive, normal, finite float: what the estimates are good for.
inline bool estimable(float x) {
  std::uint32_t b;
  std::memcpy(&b, &x, 4);
  return b - 0x00800000u < 0x7f000000u;
}

inline bool signSet(float x) { return std::signbit(x); }

inline float rsqrtEstimate(float x) { return _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(x))); }
inline float rcpEstimate(float x) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(x))); }

// sqrt(x) as y = rsqrt(x), s = x*y, t = y*s, (3 - t) * 0.5 * s.
inline __m128 rootRefined(__m128 x) {
  const __m128 y = _mm_rsqrt_ps(x);
  const __m128 s = _mm_mul_ps(x, y);
  const __m128 t = _mm_mul_ps(y, s);
  return _mm_mul_ps(_mm_mul_ps(_mm_sub_ps(_mm_set1_ps(3.0f), t), _mm_set1_ps(0.5f)), s);
}

// 1/sqrt(x) refined: 0.5 * y * (3 - x*y*y).
inline float rsqrtRefined(float x) {
  if (!estimable(x)) return static_cast<float>(1.0 / std::sqrt(static_cast<double>(x)));
  const float y = rsqrtEstimate(x);
  return 0.5f * y * (3.0f - x * y * y);
}

// 1/x refined: r * (2 - x*r).
inline float rcpRefined(float x) {
  if (!estimable(x)) return 1.0f / x;
  const float r = rcpEstimate(x);
  return r * (2.0f - x * r);
}

inline __m128 load(const float* p, int count, float pad) {
  alignas(16) float lanes[4] = {pad, pad, pad, pad};
  std::memcpy(lanes, p, sizeof(float) * count);
  return _mm_load_ps(lanes);
}

inline void store(float* p, __m128 v, int count) {
  alignas(16) float lanes[4];
  _mm_store_ps(lanes, v);
  std::memcpy(p, lanes, sizeof(float) * count);
}

}  // namespace

float rsqrtSeed(float x) { return rsqrtEstimate(x); }

float rootEstimateF32(float x) { return _mm_cvtss_f32(rootRefined(_mm_set_ss(x))); }

// Whole groups of lanes (eight where allowed), then the rest one by one.
void sqrF32(const float* src, float* dst, int n) {
  int i = lanes::pick().sqr(src, dst, n);
  for (; i < n; ++i) dst[i] = src[i] * src[i];
}

void sqrC32(const SCplx* src, SCplx* dst, int n) {
  for (int i = 0; i < n; ++i) {
    const SCplx x = src[i];
    dst[i] = {(x.re + x.im) * (x.re - x.im), (2.0f * x.re) * x.im};
  }
}

bool sqrtF32(const float* src, float* dst, int n) {
  bool bad = false;
  // Whole groups of four through the lane forms (two groups per turn where
  // eight lanes are allowed), the head and the tail group by group here.
  const lanes::Kernels& k = lanes::pick();
  auto bulk = [&](int i, int count) { bad = k.root(src + i, dst + i, count) || bad; };
  forwardGroups(dst, n, 4, [&](int i, int count) {
    bool all = true;
    for (int k = 0; k < count; ++k) all = all && estimable(src[i + k]);
    if (all) {
      store(dst + i, rootRefined(load(src + i, count, 1.0f)), count);
      return;
    }
    // Exact group: the sign bit marks the error, the comparison the value.
    for (int k = 0; k < count; ++k) {
      float x = src[i + k];
      if (signSet(x)) bad = true;
      if (!(x >= 0.0f)) x = 0.0f;
      dst[i + k] = std::sqrt(x);
    }
  }, bulk);
  return bad;
}

void sqrtC32(const SCplx* src, SCplx* dst, int n) {
  forwardGroups(dst, n, 8, [&](int i, int count) {
    alignas(16) float u[4] = {0.5f, 0.5f, 0.5f, 0.5f}, v[4] = {0.5f, 0.5f, 0.5f, 0.5f}, sgn[4] = {};
    for (int k = 0; k < count; ++k) {
      u[k] = 0.5f * src[i + k].re;
      v[k] = 0.5f * src[i + k].im;
      sgn[k] = src[i + k].im;
    }
    const __m128 uu = _mm_load_ps(u), vv = _mm_load_ps(v);
    const __m128 m2 = _mm_add_ps(_mm_mul_ps(uu, uu), _mm_mul_ps(vv, vv));
    alignas(16) float m2s[4], ps[4], qs[4];
    _mm_store_ps(m2s, m2);
    const __m128 m = rootRefined(m2);
    const __m128 p = _mm_add_ps(m, uu), q = _mm_sub_ps(m, uu);
    _mm_store_ps(ps, p);
    _mm_store_ps(qs, q);
    bool all = true;
    for (int k = 0; k < count; ++k) all = all && estimable(m2s[k]) && estimable(ps[k]) && estimable(qs[k]);
    alignas(16) float re[4], im[4];
    if (all) {
      _mm_store_ps(re, rootRefined(p));
      _mm_store_ps(im, rootRefined(q));
    } else {
      for (int k = 0; k < count; ++k) {
        const float mk = std::sqrt(u[k] * u[k] + v[k] * v[k]);
        re[k] = std::sqrt(std::fmax(mk + u[k], 0.0f));
        im[k] = std::sqrt(std::fmax(mk - u[k], 0.0f));
      }
    }
    for (int k = 0; k < count; ++k) dst[i + k] = {re[k], std::copysign(im[k], sgn[k])};
  });
}

void threshC32(const SCplx* src, SCplx* dst, int n, float thresh, int relOp) {
  const float t2 = thresh * thresh;
  for (int i = 0; i < n; ++i) {
    const SCplx x = src[i];
    const float m2 = x.re * x.re + x.im * x.im;
    const bool change = relOp != 0 ? m2 > t2 : m2 < t2;
    if (!change) {
      dst[i] = x;
      continue;
    }
    if (m2 == 0.0f) {  // no phase: the sample becomes (thresh, 0)
      dst[i] = {thresh, 0.0f};
      continue;
    }
    float k;
    if (estimable(m2)) {
      const float y = rsqrtEstimate(m2);
      k = thresh * 0.5f * y * (3.0f - m2 * y * y);
    } else {
      const double dm2 = double{x.re} * x.re + double{x.im} * x.im;
      k = static_cast<float>(thresh / std::sqrt(dm2));
    }
    dst[i] = {x.re * k, x.im * k};
  }
}

bool invThreshF32(const float* src, float* dst, int n, float thresh) {
  bool zero = false;
  if (thresh > 0.0f) {
    for (int i = 0; i < n; ++i) {
      float a = src[i];
      if (std::fabs(a) < thresh) a = std::copysign(thresh, a);  // sign by sign bit: -0.0 gives -1/thresh
      if (!estimable(std::fabs(a)) && std::isfinite(a)) {
        dst[i] = 1.0f / a;
        continue;
      }
      const float r = rcpEstimate(a);
      const float x = r == 0.0f ? 0.0f : a;  // a huge element: its estimate is 0, keep NaN out
      dst[i] = r * (2.0f - x * r);
    }
    return false;
  }
  forwardGroups(dst, n, 4, [&](int i, int count) {
    float out[4];
    bool exact = false;
    for (int k = 0; k < count; ++k) {
      const float x = src[i + k];
      const float r = rcpEstimate(x);
      out[k] = r * (2.0f - x * r);
      exact = exact || std::isnan(out[k]) || std::fabs(x) < FLT_MIN;
    }
    if (exact) {
      for (int k = 0; k < count; ++k) {
        zero = zero || src[i + k] == 0.0f;
        out[k] = 1.0f / src[i + k];
      }
    }
    std::memcpy(dst + i, out, sizeof(float) * count);
  });
  return zero;
}

bool invThreshC32(const SCplx* src, SCplx* dst, int n, float thresh) {
  return invThreshComplex(src, dst, n, thresh, rsqrtRefined, rcpRefined);
}

void absF32(const float* src, float* dst, int n) {
  for (int i = lanes::pick().abs(src, dst, n); i < n; ++i) {
    std::uint32_t b;
    std::memcpy(&b, src + i, 4);
    b &= 0x7fffffffu;
    std::memcpy(dst + i, &b, 4);
  }
}

}  // namespace ryx::elem
