// Block kernels of the real float IIR forms with tables. Each lane runs the
// float operations of the single-sample recursion in the same order, and
// SSE arithmetic rounds as scalar float arithmetic does, so the results
// are those of the scalar forms bit for bit; only the scheduling differs.
#include <emmintrin.h>
#include <xmmintrin.h>

#include "iir/iirl_core.h"

namespace ryx::iir {
namespace {

// ---- Cascade
// -------------------------------------------------------------------------
//
// Up to four sections run side by side, one a lane, on a wavefront: at
// step i, section k works on sample i-k. The output of lane k at one step
// is the input of lane k+1 at the next, so every section keeps its delay
// pair in a register and the recursions of the sections overlap. Lanes at
// or above G hold no section; their values are never read back.
template <int G>
struct Wavefront {
  __m128 a1, a2b2, a2, a1b1;  // one section a lane
  __m128 d0, d1;

  Wavefront(const float* rows, const float* d) {
    alignas(16) float c[4][4] = {};
    alignas(16) float s0[4] = {}, s1[4] = {};
    for (int k = 0; k < G; ++k) {
      for (int j = 0; j < 4; ++j) c[j][k] = rows[4 * k + j];
      s0[k] = d[2 * k];
      s1[k] = d[2 * k + 1];
    }
    a1 = _mm_load_ps(c[0]);
    a2b2 = _mm_load_ps(c[1]);
    a2 = _mm_load_ps(c[2]);
    a1b1 = _mm_load_ps(c[3]);
    d0 = _mm_load_ps(s0);
    d1 = _mm_load_ps(s1);
  }

  void store(float* d) const {
    alignas(16) float s0[4], s1[4];
    _mm_store_ps(s0, d0);
    _mm_store_ps(s1, d1);
    for (int k = 0; k < G; ++k) {
      d[2 * k] = s0[k];
      d[2 * k + 1] = s1[k];
    }
  }

  // One step for lanes y; the delay pairs move where `active` is set.
  __m128 step(__m128 y, __m128 active) {
    const __m128 w = _mm_sub_ps(_mm_sub_ps(y, _mm_mul_ps(a1, d0)), _mm_mul_ps(a2, d1));
    const __m128 out = _mm_sub_ps(_mm_sub_ps(y, _mm_mul_ps(a1b1, d0)), _mm_mul_ps(a2b2, d1));
    d1 = _mm_or_ps(_mm_and_ps(active, d0), _mm_andnot_ps(active, d1));
    d0 = _mm_or_ps(_mm_and_ps(active, w), _mm_andnot_ps(active, d0));
    return out;
  }

  __m128 step(__m128 y) {
    const __m128 w = _mm_sub_ps(_mm_sub_ps(y, _mm_mul_ps(a1, d0)), _mm_mul_ps(a2, d1));
    const __m128 out = _mm_sub_ps(_mm_sub_ps(y, _mm_mul_ps(a1b1, d0)), _mm_mul_ps(a2b2, d1));
    d1 = d0;
    d0 = w;
    return out;
  }
};

inline __m128 shiftIn(__m128 out, float next) {
  const __m128 up = _mm_castsi128_ps(_mm_slli_si128(_mm_castps_si128(out), 4));
  return _mm_move_ss(up, _mm_set_ss(next));
}

inline float lane(__m128 v, int k) {
  alignas(16) float s[4];
  _mm_store_ps(s, v);
  return s[k];
}

// Sections of one group over n samples. The input of the first lane is
// gain*x when `gain` is given, else the samples as they stand (the output
// of the group before). in may equal out: the output of step i lands at
// i-G+1, behind every input still to be read.
template <int G>
void runGroup(const float* rows, float* d, const float* gain, const float* in, float* out, int n) {
  Wavefront<G> wf(rows, d);
  auto input = [&](int i) { return i < n ? (gain != nullptr ? *gain * in[i] : in[i]) : 0.0f; };
  const __m128i laneIndex = _mm_set_epi32(3, 2, 1, 0);
  // Lanes k with 0 <= i-k < n hold a sample at step i.
  auto activeAt = [&](int i) {
    const __m128i started = _mm_cmpgt_epi32(_mm_set1_epi32(i + 1), laneIndex);
    const __m128i pending = _mm_cmpgt_epi32(laneIndex, _mm_set1_epi32(i - n));
    return _mm_castsi128_ps(_mm_and_si128(started, pending));
  };
  __m128 y = _mm_set_ss(input(0));
  const int steps = n + G - 1;
  int i = 0;
  for (; i < steps && (i < G - 1 || i >= n); ++i) {
    const __m128 o = wf.step(y, activeAt(i));
    if (i >= G - 1) out[i - G + 1] = lane(o, G - 1);
    y = shiftIn(o, input(i + 1));
  }
  // Every lane busy: no masks, one output a step.
  for (; i < n; ++i) {
    const __m128 o = wf.step(y);
    out[i - G + 1] = _mm_cvtss_f32(_mm_shuffle_ps(o, o, _MM_SHUFFLE(G - 1, G - 1, G - 1, G - 1)));
    y = shiftIn(o, input(i + 1));
  }
  for (; i < steps; ++i) {
    const __m128 o = wf.step(y, activeAt(i));
    out[i - G + 1] = lane(o, G - 1);
    y = shiftIn(o, input(i + 1));
  }
  wf.store(d);
}

// ---- Arbitrary order, four samples a pass
// -----------------------------------------------

// The line advanced by four samples: d[i] = d[i+4] + P0[i+4] + P1[i+3] +
// P2[i+2] + P3[i+1], Pk[j] = b[j]*xk - a[j]*yk, with d beyond the line and
// P beyond the order counting as zero. Rows hold b and a from index 1.
void sweep(const float* rb, const float* ra, int order, float* d, const float* x, const float* y) {
  int i = 0;
  const __m128 x0 = _mm_set1_ps(x[0]), x1 = _mm_set1_ps(x[1]), x2 = _mm_set1_ps(x[2]), x3 = _mm_set1_ps(x[3]);
  const __m128 y0 = _mm_set1_ps(y[0]), y1 = _mm_set1_ps(y[1]), y2 = _mm_set1_ps(y[2]), y3 = _mm_set1_ps(y[3]);
  auto p = [&](int j, __m128 xk, __m128 yk) {
    return _mm_sub_ps(_mm_mul_ps(_mm_loadu_ps(rb + j - 1), xk), _mm_mul_ps(_mm_loadu_ps(ra + j - 1), yk));
  };
  for (; i + 8 <= order; i += 4) {
    __m128 acc = _mm_loadu_ps(d + i + 4);
    acc = _mm_add_ps(acc, p(i + 4, x0, y0));
    acc = _mm_add_ps(acc, p(i + 3, x1, y1));
    acc = _mm_add_ps(acc, p(i + 2, x2, y2));
    acc = _mm_add_ps(acc, p(i + 1, x3, y3));
    _mm_storeu_ps(d + i, acc);
  }
  auto ps = [&](int j, int k) { return j <= order ? rb[j - 1] * x[k] - ra[j - 1] * y[k] : 0.0f; };
  for (; i < order; ++i) {
    float acc = i + 4 < order ? d[i + 4] : 0.0f;
    acc = acc + ps(i + 4, 0);
    acc = acc + ps(i + 3, 1);
    acc = acc + ps(i + 2, 2);
    acc = acc + ps(i + 1, 3);
    d[i] = acc;
  }
}

}  // namespace

void bqBlockReal(const float* t, int numQuads, float* d, const float* src, float* dst, int n) {
  if (n <= 0) return;
  const float* rows = bqRows(t, numQuads);
  const float* gain = t;
  const float* in = src;
  for (int q = 0; q < numQuads; q += 4) {
    const int g = numQuads - q < 4 ? numQuads - q : 4;
    const float* r = rows + 4 * q;
    float* line = d + 2 * q;
    switch (g) {
      case 1:
        runGroup<1>(r, line, gain, in, dst, n);
        break;
      case 2:
        runGroup<2>(r, line, gain, in, dst, n);
        break;
      case 3:
        runGroup<3>(r, line, gain, in, dst, n);
        break;
      default:
        runGroup<4>(r, line, gain, in, dst, n);
        break;
    }
    gain = nullptr;
    in = dst;
  }
}

int arbBlockReal(const float* t, int order, float* d, const float* src, float* dst, int n) {
  const ArbRows<float> r = arbRows(t, order);
  const float b0 = t[0], b1 = t[1], b2 = t[2], b3 = t[3];
  const float a1 = t[order + 1], a2 = t[order + 2], a3 = t[order + 3];
  int k = 0;
  for (; k + 4 <= n; k += 4) {
    const float* x = src + k;
    alignas(16) float xs[4] = {x[0], x[1], x[2], x[3]};
    alignas(16) float bx[4];
    _mm_store_ps(bx, _mm_mul_ps(_mm_set1_ps(b0), _mm_load_ps(xs)));
    const float d3 = order > 3 ? d[3] : 0.0f;
    alignas(16) float y[4];
    y[0] = bx[0] + d[0];
    y[1] = ((bx[1] + d[1]) + b1 * xs[0]) - a1 * y[0];
    y[2] = ((((bx[2] + d[2]) + b1 * xs[1]) - a1 * y[1]) + b2 * xs[0]) - a2 * y[0];
    y[3] = ((((((bx[3] + d3) + b1 * xs[2]) - a1 * y[2]) + b2 * xs[1]) - a2 * y[1]) + b3 * xs[0]) - a3 * y[0];
    sweep(r.b, r.a, order, d, xs, y);
    dst[k] = y[0];
    dst[k + 1] = y[1];
    dst[k + 2] = y[2];
    dst[k + 3] = y[3];
  }
  return k;
}

}  // namespace ryx::iir
