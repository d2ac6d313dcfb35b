// Shared pieces of the convolution and correlation tests: long-double
// references written from the definitions, and the error bounds.
#pragma once

#include <cmath>
#include <complex>
#include <vector>

#include <gtest/gtest.h>

#include "ryxcore.h"
#include "ryxcore/correlate.h"
#include "test_support.h"

namespace corrtest {

using LD = std::complex<long double>;

inline LD wide(float v) { return {v, 0}; }
inline LD wide(double v) { return {v, 0}; }
inline LD wide(SCplx v) { return {v.re, v.im}; }
inline LD wide(DCplx v) { return {v.re, v.im}; }
inline LD wide(short v) { return {static_cast<long double>(v), 0}; }
inline LD wide(WCplx v) { return {static_cast<long double>(v.re), static_cast<long double>(v.im)}; }

// Complex product written out (std::complex's own checks for infinities
// make the reference sums slow).
inline LD mulLD(LD a, LD b) {
  return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

template <class T>
constexpr bool kIsComplex = std::is_same_v<T, SCplx> || std::is_same_v<T, DCplx>;
template <class T>
constexpr long double kEps = sizeof(T) == 4 || std::is_same_v<T, SCplx> ? 0x1p-24L : 0x1p-53L;

template <class T>
std::vector<T> randomVec(ryxtest::Random& r, int n) {
  std::vector<T> v(static_cast<size_t>(n));
  if constexpr (std::is_same_v<T, short>) {
    for (auto& e : v) e = static_cast<short>(r.i32(-32768, 32767));
  } else if constexpr (std::is_same_v<T, WCplx>) {
    for (auto& e : v) e = {static_cast<short>(r.i32(-32768, 32767)), static_cast<short>(r.i32(-32768, 32767))};
  } else {
    r.fill(v.data(), n);
  }
  return v;
}

// Full linear convolution, and the same on magnitudes.
template <class X, class H>
std::vector<LD> refConv(const std::vector<X>& x, const std::vector<H>& h, std::vector<long double>* mag = nullptr) {
  const size_t n = x.size() + h.size() - 1;
  std::vector<LD> y(n);
  if (mag) mag->assign(n, 0);
  for (size_t i = 0; i < x.size(); ++i)
    for (size_t j = 0; j < h.size(); ++j) {
      y[i + j] += mulLD(wide(x[i]), wide(h[j]));
      if (mag) (*mag)[i + j] += std::abs(wide(x[i])) * std::abs(wide(h[j]));
    }
  return y;
}

// The first report of a capture is (status, routine, source group, context).
inline void expectFirstReport(const ryxtest::ReportCapture& cap, RyxStatus status, const std::string& func,
                              const std::string& file, const std::string& context) {
  ASSERT_FALSE(cap.reports().empty()) << context;
  const ryxtest::Report& r = cap.reports()[0];
  EXPECT_EQ(r.status, status);
  EXPECT_EQ(r.funcName, func);
  EXPECT_EQ(r.file, file);
  EXPECT_EQ(r.context, context);
}

inline long double norm2(const std::vector<LD>& v) {
  long double s = 0;
  for (const LD& e : v) s += std::norm(e);
  return std::sqrt(s);
}
template <class T>
long double norm2(const std::vector<T>& v) {
  long double s = 0;
  for (const T& e : v) s += std::norm(wide(e));
  return std::sqrt(s);
}

// Transform bound: ||y - ref|| <= eps (2 (log2 Np + 2) ||a|| ||b|| + 4 ||S||).
template <class Y, class A, class B>
void expectTransformBound(const std::vector<Y>& y, const std::vector<LD>& ref, const std::vector<long double>& mag,
                          const std::vector<A>& a, const std::vector<B>& b, long long np, const char* what) {
  long double err = 0, magn = 0;
  for (size_t k = 0; k < ref.size(); ++k) {
    err += std::norm(wide(y[k]) - ref[k]);
    magn += mag[k] * mag[k];
  }
  const long double bound =
      kEps<Y> * (2 * (std::log2(static_cast<long double>(np)) + 2) * norm2(a) * norm2(b) + 4 * std::sqrt(magn));
  EXPECT_LE(std::sqrt(err), bound) << what;
}

// Direct bound per output: |y_k - ref_k| <= eps (2n + 4) S_k.
template <class Y>
void expectDirectBound(const std::vector<Y>& y, const std::vector<LD>& ref, const std::vector<long double>& mag,
                       long long n, const char* what) {
  for (size_t k = 0; k < ref.size(); ++k) {
    ASSERT_LE(std::abs(wide(y[k]) - ref[k]), kEps<Y> * (2 * n + 4) * mag[k]) << what << " k=" << k;
  }
}

// 32-bit wrap of a 64-bit sum, the shift and the packing of the integer
// kernels, written out: a positive factor shifts right arithmetically, a
// negative one left (low 32 bits kept), then saturate or keep 16 bits.
inline short narrowRule(long long sum, int factor, bool saturate) {
  long long v = static_cast<int>(static_cast<unsigned>(sum & 0xffffffffLL));
  if (factor > 0) v = v >> std::min(factor, 31);
  if (factor < 0) v = static_cast<int>(static_cast<unsigned>((v << std::min(-factor, 31)) & 0xffffffffLL));
  if (saturate) return static_cast<short>(std::clamp(v, -32768LL, 32767LL));
  return static_cast<short>(v & 0xffff);
}

// Shared 16-bit narrowing of 32-bit sums written out from its contract:
// modes by exact value; 4 picks floor(log2 |largest|) - 14 (0 when all
// fit), 2 and 3 take the caller's factor (positive factors only here).
inline std::vector<short> narrowArray(const std::vector<long long>& s, int mode, int* factor) {
  std::vector<int> v(s.size());
  for (size_t i = 0; i < s.size(); ++i) v[i] = static_cast<int>(static_cast<unsigned>(s[i] & 0xffffffff));
  int f = 0;
  if (mode == 4) {
    long long big = 0;
    bool fits = true;
    for (int e : v) {
      big = std::max(big, std::llabs(static_cast<long long>(e)));
      fits = fits && e >= -32768 && e <= 32767;
    }
    f = fits ? 0 : static_cast<int>(std::log2(static_cast<double>(big))) - 14;
    *factor = f;
  } else if (mode == 2 || mode == 3) {
    f = factor ? *factor : 0;
  }
  std::vector<short> out(s.size());
  for (size_t i = 0; i < s.size(); ++i) out[i] = narrowRule(v[i], f, mode == 1 || mode == 3);
  return out;
}

}  // namespace corrtest
