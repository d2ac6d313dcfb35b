// The kernels' passes written out as plain scalar arithmetic of the element
// type from the engine's definition (radix-4 butterfly s=a+b, t=a-b,
// u=c+d, v=c-d; the W_8 step of odd orders with its constants; the
// twiddled radix-4 passes with the quarters in binary-reversed order,
// twiddles from the radix table) and compared bit for bit with every kernel
// set, interleaved and split, at the small orders where every first stage
// and the first passes occur: this pins the rounding points independently
// of the vector code.
#include <gtest/gtest.h>

#include <complex>
#include <vector>

#include "test_support.h"
#include "transform/fft_internal.h"
#include "transform/fft_kernels.h"

namespace {

using namespace ryxtest;
template <class T>
using Cx = std::complex<T>;
using C = Cx<float>;
using ryx::fft::Isa;

// Product by a twiddle as the engine forms it: re = xr*wr - xi*wi,
// im = xr*wi + xi*wr; the inverse uses the conjugate.
template <class T>
Cx<T> twiddle(Cx<T> x, Cx<T> w, bool fwd) {
  if (fwd) return {x.real() * w.real() - x.imag() * w.imag(), x.real() * w.imag() + x.imag() * w.real()};
  return {x.real() * w.real() + x.imag() * w.imag(), x.imag() * w.real() - x.real() * w.imag()};
}
// -i*v, componentwise.
template <class T>
Cx<T> minusI(Cx<T> v) {
  return {v.imag(), -v.real()};
}
template <class T>
Cx<T> add(Cx<T> a, Cx<T> b) {
  return {a.real() + b.real(), a.imag() + b.imag()};
}
template <class T>
Cx<T> sub(Cx<T> a, Cx<T> b) {
  return {a.real() - b.real(), a.imag() - b.imag()};
}

template <class T>
void radix4(const Cx<T>* in, Cx<T>* out, bool fwd) {
  const Cx<T> s = add(in[0], in[1]), t = sub(in[0], in[1]), u = add(in[2], in[3]), v = sub(in[2], in[3]);
  out[0] = add(s, u);
  out[2] = sub(s, u);
  // t - i v and t + i v, as t + (vi, -vr) and t - (vi, -vr)
  out[1] = fwd ? Cx<T>{t.real() + v.imag(), t.imag() - v.real()} : Cx<T>{t.real() - v.imag(), t.imag() + v.real()};
  out[3] = fwd ? Cx<T>{t.real() - v.imag(), t.imag() + v.real()} : Cx<T>{t.real() + v.imag(), t.imag() - v.real()};
}

// One twiddled radix-4 pass of stage size m over y (natural order within
// each group), table groups of G columns: rows re/im of W^k, W^2k, W^3k.
template <class T, int G>
void pass(std::vector<Cx<T>>& y, std::size_t m, const T* stage, bool fwd) {
  const std::size_t l = m / 4;
  for (std::size_t g = 0; g < y.size(); g += m) {
    for (std::size_t k = 0; k < l; ++k) {
      const T* t = stage + 6 * G * (k / G);
      const std::size_t lane = k % G;
      const Cx<T> w1{t[lane], t[G + lane]}, w2{t[2 * G + lane], t[3 * G + lane]}, w3{t[4 * G + lane], t[5 * G + lane]};
      const Cx<T> a = y[g + k];
      const Cx<T> b = twiddle(y[g + k + l], w2, fwd);
      const Cx<T> c = twiddle(y[g + k + 2 * l], w1, fwd);
      const Cx<T> d = twiddle(y[g + k + 3 * l], w3, fwd);
      const Cx<T> apb = add(a, b), amb = sub(a, b), cpd = add(c, d), cmd = sub(c, d);
      y[g + k] = add(apb, cpd);
      y[g + k + 2 * l] = sub(apb, cpd);
      const Cx<T> mi = minusI(cmd);
      y[g + k + l] = fwd ? add(amb, mi) : sub(amb, mi);
      y[g + k + 3 * l] = fwd ? sub(amb, mi) : add(amb, mi);
    }
  }
}

// Float: R8 (odd order) or R4 runs joined by the M = 16 pass (R16); double:
// R4 runs, for odd order the radix-2 step with W_8, then the passes. Both
// come to the same formulas: radix-4 butterflies on runs of 4, then for odd
// orders A +/- W_8^l B over runs of 8, then radix-4 passes.
template <class T, int G>
std::vector<Cx<T>> model(const std::vector<Cx<T>>& x, int order, bool fwd, const T* tbl) {
  const std::size_t n = x.size();
  std::vector<Cx<T>> y(n);
  for (std::size_t r = 0; r < n; r += 4) radix4(&x[r], &y[r], fwd);
  std::size_t m = 16;
  if (order & 1) {
    const T h = sizeof(T) == 4 ? static_cast<T>(0.70710678f) : static_cast<T>(0.7071067811865475);
    const Cx<T> w8[4] = {{1, 0}, {h, -h}, {0, -1}, {-h, -h}};
    for (std::size_t r = 0; r < n; r += 8) {
      for (int l = 0; l < 4; ++l) {
        const Cx<T> a = y[r + l];
        const Cx<T> p = twiddle(y[r + 4 + l], w8[l], fwd);
        y[r + l] = add(a, p);
        y[r + 4 + l] = sub(a, p);
      }
    }
    m = 32;
  }
  for (; m <= n; m *= 4) {
    pass<T, G>(y, m, tbl, fwd);
    tbl += 6 * (m / 4);
  }
  return y;
}

TEST(KernelModel, FloatFirstStagesAndOnePassBitForBit) {
  for (Isa isa : {Isa::Sse2, Isa::Avx2}) {
    const ryx::fft::KernelSet* set = ryx::fft::kernelsFor(isa);
    if (set == nullptr) continue;
    for (int order : {3, 4, 5, 6}) {
      const std::size_t n = std::size_t{1} << order;
      const float* tbl = ownsGetFftRadixTwd(order);
      ASSERT_NE(tbl, nullptr);
      Random rng(order);
      std::vector<C> x(n);
      for (auto& v : x) v = {rng.f32(), rng.f32()};
      for (bool fwd : {true, false}) {
        for (bool split : {false, true}) {
          SCOPED_TRACE(testing::Message() << "order " << order << " fwd " << fwd << " split " << split);
          const std::vector<C> want = model<float, 4>(x, order, fwd, tbl);
          std::vector<C> got(n);
          if (!split) {
            std::vector<SCplx> buf(n);
            for (std::size_t i = 0; i < n; ++i) buf[i] = {x[i].real(), x[i].imag()};
            SCplx* p = ryxcMalloc(static_cast<int>(n));
            std::copy(buf.begin(), buf.end(), p);
            (fwd ? set->sFwd : set->sInv)(p, n, tbl, nullptr);
            for (std::size_t i = 0; i < n; ++i) got[i] = {p[i].re, p[i].im};
            ryxFree(p);
          } else {
            float* re = ryxsMalloc(static_cast<int>(n));
            float* im = ryxsMalloc(static_cast<int>(n));
            for (std::size_t i = 0; i < n; ++i) {
              re[i] = x[i].real();
              im[i] = x[i].imag();
            }
            (fwd ? set->sSplitFwd : set->sSplitInv)(re, im, n, tbl, nullptr);
            for (std::size_t i = 0; i < n; ++i) got[i] = {re[i], im[i]};
            ryxFree(re);
            ryxFree(im);
          }
          EXPECT_TRUE(sameBits(got.data(), want.data(), static_cast<int>(n)));
        }
      }
    }
  }
}

TEST(KernelModel, DoubleFirstStagesAndPassesBitForBit) {
  using Z = Cx<double>;
  for (Isa isa : {Isa::Sse2, Isa::Avx2}) {
    const ryx::fft::KernelSet* set = ryx::fft::kernelsFor(isa);
    if (set == nullptr) continue;
    for (int order : {2, 3, 4, 5, 6, 7}) {
      const std::size_t n = std::size_t{1} << order;
      const double* tbl = owndGetFftRadixTwd(order);
      ASSERT_NE(tbl, nullptr);
      Random rng(order + 40);
      std::vector<Z> x(n);
      for (auto& v : x) v = {rng.f64(), rng.f64()};
      for (bool fwd : {true, false}) {
        SCOPED_TRACE(testing::Message() << "order " << order << " fwd " << fwd);
        const std::vector<Z> want = model<double, 2>(x, order, fwd, tbl);
        DCplx* p = ryxzMalloc(static_cast<int>(n));
        for (std::size_t i = 0; i < n; ++i) p[i] = {x[i].real(), x[i].imag()};
        (fwd ? set->dFwd : set->dInv)(p, n, tbl, nullptr);
        std::vector<Z> got(n);
        for (std::size_t i = 0; i < n; ++i) got[i] = {p[i].re, p[i].im};
        ryxFree(p);
        EXPECT_TRUE(sameBits(got.data(), want.data(), static_cast<int>(n)));
        double* re = ryxdMalloc(static_cast<int>(n));
        double* im = ryxdMalloc(static_cast<int>(n));
        for (std::size_t i = 0; i < n; ++i) {
          re[i] = x[i].real();
          im[i] = x[i].imag();
        }
        (fwd ? set->dSplitFwd : set->dSplitInv)(re, im, n, tbl, nullptr);
        for (std::size_t i = 0; i < n; ++i) got[i] = {re[i], im[i]};
        ryxFree(re);
        ryxFree(im);
        EXPECT_TRUE(sameBits(got.data(), want.data(), static_cast<int>(n)));
      }
    }
  }
}

}  // namespace
