// One stage of the filter bank, per kernel, on float or double data (T)
// with float or double taps (F); sums in double. The caller hands in the
// working array `ext`, which holds the periodically extended input so that
// the inner loops run without index wrapping; outputs never alias inputs
// the stage still reads.
#pragma once

#include <algorithm>

namespace ryx::wavelet {

template <class F>
struct Bank {
  const F* taps[4];
  int len[4];
  int ofs[4];
};

// ext[t - from] = x[t] for t in [from, to), x read with period `period`;
// indices m..period-1 (the one repeated sample of an odd stage) take x[m-1].
template <class T>
void extend(const T* x, int m, int period, int from, int to, T* ext) {
  for (int t = from; t < to; ++t) {
    if (t >= 0 && t < m) {
      const int run = std::min(to, m) - t;
      std::copy(x + t, x + t + run, ext + (t - from));
      t += run - 1;
      continue;
    }
    int k = t % period;
    if (k < 0) k += period;
    ext[t - from] = x[k < m ? k : m - 1];
  }
}

inline int floorHalf(int v) { return v >= 0 ? v / 2 : -((1 - v) / 2); }

// General decomposition: n = (m+1)/2 outputs of lo[i] = sum_j h0[j]*x[2i+o0-j]
// and of hi with h1, o1.
template <class T, class F>
void decGeneral(const T* x, int m, const Bank<F>& b, T* lo, T* hi, T* ext) {
  const int period = m + (m & 1), n = period / 2;
  int from = 0, to = period;
  for (int f = 0; f < 2; ++f) {
    from = std::min(from, b.ofs[f] - b.len[f] + 1);
    to = std::max(to, period - 1 + b.ofs[f]);
  }
  extend(x, m, period, from, to, ext);
  const T* base = ext - from;
  for (int f = 0; f < 2; ++f) {
    const F* h = b.taps[f];
    const int len = b.len[f];
    T* out = f == 0 ? lo : hi;
    for (int i = 0; i < n; ++i) {
      const T* p = base + 2 * i + b.ofs[f];
      double s = 0;
      for (int j = 0; j < len; ++j) s += double(h[j]) * double(p[-j]);
      out[i] = T(s);
    }
  }
}

// General reconstruction: m outputs of
// y[k] = sum_i lo[i]*g0[k-2i+o2] + hi[i]*g1[k-2i+o3], lo and hi read with
// period n, only taps inside the filters.
template <class T, class F>
void recGeneral(const T* lo, const T* hi, int n, int m, const Bank<F>& b, T* y, T* ext) {
  const T* base[2];
  T* e = ext;
  for (int f = 0; f < 2; ++f) {
    const int from = floorHalf(b.ofs[2 + f] - b.len[2 + f] + 1);
    const int to = floorHalf(m - 1 + b.ofs[2 + f]) + 1;
    extend(f == 0 ? lo : hi, n, n, from, to, e);
    base[f] = e - from;
    e += to - from;
  }
  // Outputs of one parity r use the taps of parity r + o, in steps of 2,
  // each one input further back.
  for (int r = 0; r < 2 && r < m; ++r) {
    const F* g[2];
    const T* v[2];
    int count[2];
    for (int f = 0; f < 2; ++f) {
      const int first = (r + b.ofs[2 + f]) & 1;
      g[f] = b.taps[2 + f] + first;
      count[f] = (b.len[2 + f] - first + 1) / 2;
      v[f] = base[f] + (r + b.ofs[2 + f] - first) / 2;
    }
    const F *gLo = g[0], *gHi = g[1];
    const T *vLo = v[0], *vHi = v[1];
    const int nLo = count[0], nHi = count[1];
    for (int k = r, q = 0; k < m; k += 2, ++q) {
      double s = 0;
      for (int u = 0; u < nLo; ++u) s += double(gLo[2 * u]) * double(vLo[q - u]);
      for (int u = 0; u < nHi; ++u) s += double(gHi[2 * u]) * double(vHi[q - u]);
      y[k] = T(s);
    }
  }
}

// Haar: lo = 0.5*(a+b), hi = 0.5*(b-a) over pairs (x[2i], x[2i+1]), each
// rounded once; an odd last sample gives lo = x[m-1], hi = 0.
template <class T>
void decHaar(const T* x, int m, T* lo, T* hi) {
  const int pairs = m / 2;
  for (int i = 0; i < pairs; ++i) {
    const double a = x[2 * i], b = x[2 * i + 1];
    lo[i] = T(0.5 * (a + b));
    hi[i] = T(0.5 * (b - a));
  }
  if (m & 1) {
    lo[pairs] = x[m - 1];
    hi[pairs] = T(0);
  }
}

// y[2i] = lo - hi, y[2i+1] = lo + hi; an odd m drops the last.
template <class T>
void recHaar(const T* lo, const T* hi, int n, int m, T* y) {
  for (int i = 0; i < n; ++i) {
    const double a = lo[i], d = hi[i];
    y[2 * i] = T(a - d);
    if (2 * i + 1 < m) y[2 * i + 1] = T(a + d);
  }
}

// The 2-tap spline pair (offsets 0, 0, 1, 1): the Haar butterflies on
// (x[2i-1], x[2i]), x[-1] being the last sample of the even period.
template <class T>
void decSpline2(const T* x, int m, T* lo, T* hi) {
  const int n = (m + 1) / 2;
  for (int i = 0; i < n; ++i) {
    const double a = i == 0 ? x[m - 1] : x[2 * i - 1], b = x[2 * i];
    lo[i] = T(0.5 * (a + b));
    hi[i] = T(0.5 * (b - a));
  }
}

// y[2i] = lo + hi, y[2i-1] = lo - hi; the pair of i = 0 wraps to the end
// of the even period, which an odd m drops.
template <class T>
void recSpline2(const T* lo, const T* hi, int n, int m, T* y) {
  for (int i = 0; i < n; ++i) {
    const double a = lo[i], d = hi[i];
    y[2 * i] = T(a + d);
    const int back = i == 0 ? 2 * n - 1 : 2 * i - 1;
    if (back < m) y[back] = T(a - d);
  }
}

}  // namespace ryx::wavelet
