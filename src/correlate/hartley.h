// Two-dimensional fast Hartley transform for the 2-D convolution.
//
// A row pass and a column pass of a radix-2 Hartley transform give the
// separable transform sum x cas(u)cas(v); four-point butterflies over the
// points (u,v), (-u,v), (u,-v), (-u,-v) turn it into the 2-D transform
// sum x cas(u + v), whose convolution rule is used in the product. That
// transform is its own inverse up to the factor R*C, which the caller folds
// into the kernel. Tables (bit reversal, a sine quarter of C/4 + 1 entries
// in double built by a rotation recurrence) are the caller's per call.
#pragma once

#include <cmath>

#include "correlate/freq_domain.h"

namespace ryx::corr {

// Tables of one length n = 2^order.
struct HartleyTable {
  int n = 0;
  int* rev = nullptr;
  double* sine = nullptr;  // sin(2 pi i / n), i = 0 .. n/4

  bool take(Scratch& s, int len) {
    n = len;
    rev = s.take<int>(n);
    sine = s.take<double>(n / 4 + 1);
    if (!s.ok()) return false;
    const int bits = floorLog2(n);
    for (int i = 0; i < n; ++i) {
      int r = 0;
      for (int b = 0; b < bits; ++b) r |= ((i >> b) & 1) << (bits - 1 - b);
      rev[i] = r;
    }
    const double step = 2.0 * 3.14159265358979323846 / n;
    const double cs = std::cos(step), sn = std::sin(step);
    double c = 1.0, s1 = 0.0;
    for (int i = 0; i <= n / 4; ++i) {
      sine[i] = s1;
      const double nc = c * cs - s1 * sn;
      s1 = s1 * cs + c * sn;
      c = nc;
    }
    if (n >= 4) sine[n / 4] = 1.0;
    return true;
  }
  double sinAt(int i) const { return sine[i]; }
  double cosAt(int i) const { return sine[n / 4 - i]; }
};

// In-place Hartley transform of a[0], a[stride], ..., a[(n-1) stride]
// (unscaled); `work` holds n elements.
template <class T>
void hartley1d(T* a, int stride, const HartleyTable& t, T* work) {
  const int n = t.n;
  for (int i = 0; i < n; ++i) work[t.rev[i]] = a[static_cast<long long>(i) * stride];
  for (int h = 1; h < n; h <<= 1) {
    const int step = n / (2 * h);  // table index of angle pi/h
    for (int b = 0; b < n; b += 2 * h) {
      T* e = work + b;
      T* o = work + b + h;
      const T e0 = e[0], o0 = o[0];
      e[0] = e0 + o0;
      o[0] = e0 - o0;
      if (h >= 2) {
        const T em = e[h / 2], om = o[h / 2];
        e[h / 2] = em + om;
        o[h / 2] = em - om;
      }
      for (int k = 1; k < h / 2; ++k) {
        const int j = h - k;
        const T c = static_cast<T>(t.cosAt(k * step)), s = static_cast<T>(t.sinAt(k * step));
        const T ek = e[k], ej = e[j], ok = o[k], oj = o[j];
        const T tk = c * ok + s * oj;
        const T tj = s * ok - c * oj;
        e[k] = ek + tk;
        o[k] = ek - tk;
        e[j] = ej + tj;
        o[j] = ej - tj;
      }
    }
  }
  for (int i = 0; i < n; ++i) a[static_cast<long long>(i) * stride] = work[i];
}

// The 2-D transform of an R x C row-major array.
template <class T>
void hartley2d(T* a, const HartleyTable& rows, const HartleyTable& cols, T* work) {
  const int R = rows.n, C = cols.n;
  for (int r = 0; r < R; ++r) hartley1d(a + static_cast<long long>(r) * C, 1, cols, work);
  for (int c = 0; c < C; ++c) hartley1d(a + c, C, rows, work);
  for (int u = 0; u <= R / 2; ++u) {
    const int nu = (R - u) & (R - 1);
    for (int v = 0; v <= C / 2; ++v) {
      const int nv = (C - v) & (C - 1);
      T& pa = a[static_cast<long long>(u) * C + v];
      T& pb = a[static_cast<long long>(nu) * C + v];
      T& pc = a[static_cast<long long>(u) * C + nv];
      T& pd = a[static_cast<long long>(nu) * C + nv];
      const T A = pa, B = pb, Cc = pc, D = pd;
      const T e = static_cast<T>(0.5) * ((A + B) + (Cc + D));
      pa = e - D;
      pb = e - Cc;
      pc = e - B;
      pd = e - A;
    }
  }
}

// a becomes the transform of the circular convolution of a and k, both
// given as 2-D transforms: for the bins at (i,j) and (-i,-j), with a, b the
// first array's values and c, d the second's, the product is
// (ac - bd + (bc + ad))/2 and its pair (bc + ad - (ac - bd))/2; a bin that
// is its own pair is the one product.
template <class T>
void hartleyProduct(T* a, const T* k, int R, int C) {
  for (int u = 0; u < R; ++u) {
    const int nu = (R - u) & (R - 1);
    for (int v = 0; v < C; ++v) {
      const int nv = (C - v) & (C - 1);
      const long long i = static_cast<long long>(u) * C + v, p = static_cast<long long>(nu) * C + nv;
      if (p < i) continue;
      if (p == i) {
        a[i] = a[i] * k[i];
        continue;
      }
      const T av = a[i], bv = a[p], cv = k[i], dv = k[p];
      const T even = av * cv - bv * dv, odd = bv * cv + av * dv;
      a[i] = static_cast<T>(0.5) * (even + odd);
      a[p] = static_cast<T>(0.5) * (odd - even);
    }
  }
}

}  // namespace ryx::corr
