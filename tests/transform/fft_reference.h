// Independent references for the transform tests: a naive DFT and a plain
// radix-2 FFT, both accumulated in long double with twiddles from cosl and
// sinl, the bit reversal written out bit by bit, and the error measure the
// tests bound.
#pragma once

#include <cmath>
#include <complex>
#include <cstdint>
#include <limits>
#include <vector>

#include "ryxcore.h"

namespace ryxtest {

using LCplx = std::complex<long double>;

constexpr long double kPiL = 3.141592653589793238462643383279502884L;

inline std::uint32_t reverseBits(std::uint32_t v, int bits) {
  std::uint32_t r = 0;
  for (int b = 0; b < bits; ++b) r |= ((v >> b) & 1u) << (bits - 1 - b);
  return r;
}

// exp(sign * 2*pi*i*k/n), sign -1 for the forward kernel.
inline LCplx unitRoot(std::uint64_t k, std::uint64_t n, int sign) {
  const long double a = 2.0L * kPiL * static_cast<long double>(k % n) / static_cast<long double>(n);
  return {cosl(a), sign * sinl(a)};
}

// The complex product written out (the library call behind operator* on
// long double is slow and the sweeps make millions of them).
inline LCplx mul(LCplx a, LCplx b) {
  return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

// unitRoot(k, n, sign) for k < count, cosl/sinl taken on the first quarter
// of the circle only when 4 divides n: a quarter turn further is an exact
// product by sign*i.
inline std::vector<LCplx> unitRoots(std::uint64_t n, std::uint64_t count, int sign) {
  std::vector<LCplx> w(count);
  const std::uint64_t q = n % 4 == 0 ? n / 4 : n;
  for (std::uint64_t k = 0; k < count; ++k)
    w[k] = k < q ? unitRoot(k, n, sign) : LCplx(-sign * w[k - q].imag(), sign * w[k - q].real());
  return w;
}

// Bin k of sum x[j] exp(sign*2*pi*i*j*k/n), roots from unitRoots(n, n, sign).
inline LCplx naiveBin(const std::vector<LCplx>& x, const std::vector<LCplx>& roots, std::uint64_t k) {
  const std::uint64_t n = x.size();
  LCplx acc = 0;
  for (std::uint64_t j = 0; j < n; ++j) acc += mul(x[j], roots[(j * k) % n]);
  return acc;
}

inline std::vector<LCplx> naiveDft(const std::vector<LCplx>& x, int sign) {
  std::vector<LCplx> roots(x.size());
  for (std::uint64_t k = 0; k < x.size(); ++k) roots[k] = unitRoot(k, x.size(), sign);
  std::vector<LCplx> out(x.size());
  for (std::uint64_t k = 0; k < x.size(); ++k) out[k] = naiveBin(x, roots, k);
  return out;
}

// Iterative radix-2 decimation in time, all in long double, twiddles from
// one table of cosl/sinl values: the reference for the orders where the
// naive sum is too slow (it is itself checked against the naive sum).
inline std::vector<LCplx> referenceFft(std::vector<LCplx> x, int sign) {
  const std::uint64_t n = x.size();
  int order = 0;
  while ((std::uint64_t{1} << order) < n) ++order;
  for (std::uint64_t i = 0; i < n; ++i) {
    const std::uint64_t j = reverseBits(static_cast<std::uint32_t>(i), order);
    if (i < j) std::swap(x[i], x[j]);
  }
  const std::vector<LCplx> w = unitRoots(n, n / 2 + 1, sign);
  for (std::uint64_t len = 1; len < n; len *= 2) {
    const std::uint64_t step = n / (2 * len);
    for (std::uint64_t g = 0; g < n; g += 2 * len) {
      for (std::uint64_t k = 0; k < len; ++k) {
        const LCplx p = mul(x[g + k + len], w[k * step]);
        const LCplx a = x[g + k];
        x[g + k] = a + p;
        x[g + k + len] = a - p;
      }
    }
  }
  return x;
}

// ||got - want||_2 / ||want||_2 (0 when both vanish).
inline long double relativeError(const std::vector<LCplx>& got, const std::vector<LCplx>& want) {
  long double num = 0, den = 0;
  for (std::size_t i = 0; i < want.size(); ++i) {
    num += std::norm(got[i] - want[i]);
    den += std::norm(want[i]);
  }
  if (den == 0) return num == 0 ? 0 : INFINITY;
  return sqrtl(num / den);
}

// The accuracy every transform of length 2^order must reach, relative to
// the 2-norm of the exact result: (order + 2) / 2 * epsilon of the
// precision. Rounding errors of a radix-2/4 FFT grow like log2(N) * eps
// in this norm (measured: about 0.3 eps at order 3, 1.3 eps at order 20).
template <class T>
long double errorBound(int order) {
  return 0.5L * (order + 2) * std::numeric_limits<T>::epsilon();
}

template <class C>
std::vector<LCplx> widen(const C* p, std::size_t n) {
  std::vector<LCplx> v(n);
  for (std::size_t i = 0; i < n; ++i) v[i] = {static_cast<long double>(p[i].re), static_cast<long double>(p[i].im)};
  return v;
}

// Real samples as complex values.
template <class T>
std::vector<LCplx> widenReal(const T* p, std::size_t n) {
  std::vector<LCplx> v(n);
  for (std::size_t i = 0; i < n; ++i) v[i] = static_cast<long double>(p[i]);
  return v;
}

// The exact transform of the given samples: the naive sum up to order 9,
// the long-double FFT above.
inline std::vector<LCplx> exactTransform(const std::vector<LCplx>& x, int sign) {
  return x.size() <= 512 ? naiveDft(x, sign) : referenceFft(x, sign);
}

}  // namespace ryxtest
