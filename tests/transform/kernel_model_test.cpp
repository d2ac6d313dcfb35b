// The kernels' passes written out as plain scalar arithmetic of the element
// type from the engine's definition (radix-4 butterfly s=a+b, t=a-b,
// u=c+d, v=c-d; the W_8 step of odd orders with its constants; the
// twiddled radix-4 passes with the quarters in binary-reversed order,
// twiddles from the radix table; float order 2 as one butterfly rounded
// once) and compared bit for bit with every kernel set, interleaved and
// split, at every order the kernels serve: this pins the rounding points
// independently of the vector code, and so makes the sets agree bitwise.
#include <gtest/gtest.h>

#include <complex>
#include <cstring>
#include <vector>

#include "test_support.h"
#include "transform/fft_internal.h"
#include "transform/fft_kernels.h"

namespace {

using namespace ryxtest;
template <class T>
using Cx = std::complex<T>;
using ryx::fft::Isa;
using ryx::fft::KernelSet;

// Product by a twiddle as the engine forms it: re = xr*wr - xi*wi,
// im = xr*wi + xi*wr; the inverse uses the conjugate.
template <class T>
Cx<T> twiddle(Cx<T> x, Cx<T> w, bool fwd) {
  if (fwd) return {x.real() * w.real() - x.imag() * w.imag(), x.real() * w.imag() + x.imag() * w.real()};
  return {x.real() * w.real() + x.imag() * w.imag(), x.imag() * w.real() - x.real() * w.imag()};
}
// -i*v, componentwise. (Sums and differences of std::complex are
// componentwise too, one rounding each.)
template <class T>
Cx<T> minusI(Cx<T> v) {
  return {v.imag(), -v.real()};
}

template <class T>
void radix4(const Cx<T>* in, Cx<T>* out, bool fwd) {
  const Cx<T> s = in[0] + in[1], t = in[0] - in[1], u = in[2] + in[3], v = in[2] - in[3];
  out[0] = s + u;
  out[2] = s - u;
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
      const Cx<T> apb = a + b, amb = a - b, cpd = c + d, cmd = c - d;
      y[g + k] = apb + cpd;
      y[g + k + 2 * l] = apb - cpd;
      const Cx<T> mi = minusI(cmd);
      y[g + k + l] = fwd ? amb + mi : amb - mi;
      y[g + k + 3 * l] = fwd ? amb - mi : amb + mi;
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
  if (sizeof(T) == 4 && order == 2) {  // float order 2: the butterfly in extended precision, rounded once
    Cx<long double> in[4] = {x[0], x[1], x[2], x[3]}, out[4];
    radix4(in, out, fwd);
    for (int r = 0; r < 4; ++r) y[r] = {static_cast<T>(out[r].real()), static_cast<T>(out[r].imag())};
    return y;
  }
  for (std::size_t r = 0; r < n; r += 4) radix4(&x[r], &y[r], fwd);
  std::size_t m = 16;
  if (order & 1) {
    const T h = sizeof(T) == 4 ? static_cast<T>(0.70710678f) : static_cast<T>(0.7071067811865475);
    const Cx<T> w8[4] = {{1, 0}, {h, -h}, {0, -1}, {-h, -h}};
    for (std::size_t r = 0; r < n; r += 8) {
      for (int l = 0; l < 4; ++l) {
        const Cx<T> a = y[r + l];
        const Cx<T> p = twiddle(y[r + 4 + l], w8[l], fwd);
        y[r + l] = a + p;
        y[r + 4 + l] = a - p;
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

// Per precision: the kernels of a set, the radix table, the table group
// width G of the model, the last order the kernels serve (the in-cache
// block).
template <class T>
struct Kernels;
template <>
struct Kernels<float> {
  using P = SCplx;
  static constexpr int kG = 4, kLast = 14;
  static auto interleaved(const KernelSet& s, bool fwd) { return fwd ? s.sFwd : s.sInv; }
  static auto split(const KernelSet& s, bool fwd) { return fwd ? s.sSplitFwd : s.sSplitInv; }
  static const float* table(int order) { return ownsGetFftRadixTwd(order); }
};
template <>
struct Kernels<double> {
  using P = DCplx;
  static constexpr int kG = 2, kLast = 12;
  static auto interleaved(const KernelSet& s, bool fwd) { return fwd ? s.dFwd : s.dInv; }
  static auto split(const KernelSet& s, bool fwd) { return fwd ? s.dSplitFwd : s.dSplitInv; }
  static const double* table(int order) { return owndGetFftRadixTwd(order); }
};

// Every kernel set, every order 2 up to the block, both directions,
// interleaved and split, in place on aligned samples and through the work
// area with the samples 8 bytes off a 16-byte boundary: bitwise the model.
// (So every set also agrees bitwise with every other.)
template <class T>
void checkKernels(Isa isa) {
  using K = Kernels<T>;
  const KernelSet* set = ryx::fft::kernelsFor(isa);
  if (set == nullptr) return;
  for (int order = 2; order <= K::kLast; ++order) {
    const std::size_t n = std::size_t{1} << order;
    const T* tbl = K::table(order);
    ASSERT_NE(tbl, nullptr);
    Random rng(order + 40 * sizeof(T));
    std::vector<Cx<T>> x(n), got(n);
    for (auto& v : x) v = {static_cast<T>(rng.f64()), static_cast<T>(rng.f64())};
    for (bool fwd : {true, false}) {
      const std::vector<Cx<T>> want = model<T, K::kG>(x, order, fwd, tbl);
      for (bool useWork : {false, true}) {
        SCOPED_TRACE(testing::Message() << "isa " << static_cast<int>(isa) << " order " << order << " fwd " << fwd
                                        << " work " << useWork << " size " << sizeof(T));
        Guarded<T> buf(static_cast<int>(2 * n), useWork ? 8 : 0), work(static_cast<int>(2 * n), 0);
        T* s = buf.data();
        T* w = useWork ? work.data() : nullptr;
        // std::complex is laid out as the (re, im) pair the kernels use.
        std::memcpy(s, x.data(), sizeof(Cx<T>) * n);
        K::interleaved(*set, fwd)(reinterpret_cast<typename K::P*>(s), n, tbl, reinterpret_cast<typename K::P*>(w));
        EXPECT_TRUE(sameBits(reinterpret_cast<const Cx<T>*>(s), want.data(), static_cast<int>(n)));
        // Split: real parts first, imaginary parts after.
        for (std::size_t i = 0; i < n; ++i) {
          s[i] = x[i].real();
          s[n + i] = x[i].imag();
        }
        K::split(*set, fwd)(s, s + n, n, tbl, w);
        for (std::size_t i = 0; i < n; ++i) got[i] = {s[i], s[n + i]};
        EXPECT_TRUE(sameBits(got.data(), want.data(), static_cast<int>(n)));
        EXPECT_TRUE(buf.intact() && work.intact());
      }
    }
  }
}

class KernelModel : public testing::TestWithParam<Isa> {};

TEST_P(KernelModel, EveryOrderBitForBit) {
  if (ryx::fft::kernelsFor(GetParam()) == nullptr) GTEST_SKIP() << "no kernel set for this instruction set on this processor";
  checkKernels<float>(GetParam());
  checkKernels<double>(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Sets, KernelModel, testing::Values(Isa::Sse2, Isa::Avx2, Isa::Avx512));

}  // namespace
