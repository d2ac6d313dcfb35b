// The float kernel's passes written out as plain scalar float arithmetic
// from the engine's definition (radix-4 butterfly s=a+b, t=a-b, u=c+d,
// v=c-d; R8 with the W_8 constants; the twiddled radix-4 join with the
// quarters in binary-reversed order, twiddles from the radix table) and
// compared bit for bit with the library at orders 3, 4 and 5 and with every
// kernel set: this pins the rounding points of the first stages and of one
// radix-4 pass independently of the vector code.
#include <gtest/gtest.h>

#include <complex>
#include <vector>

#include "test_support.h"
#include "transform/fft_internal.h"
#include "transform/fft_kernels.h"

namespace {

using namespace ryxtest;
using C = std::complex<float>;
using ryx::fft::Isa;

// Product by a twiddle as the engine forms it: re = xr*wr - xi*wi,
// im = xr*wi + xi*wr; the inverse uses the conjugate.
C twiddle(C x, C w, bool fwd) {
  if (fwd) return {x.real() * w.real() - x.imag() * w.imag(), x.real() * w.imag() + x.imag() * w.real()};
  return {x.real() * w.real() + x.imag() * w.imag(), x.imag() * w.real() - x.real() * w.imag()};
}
// -i*v, componentwise.
C minusI(C v) { return {v.imag(), -v.real()}; }
C add(C a, C b) { return {a.real() + b.real(), a.imag() + b.imag()}; }
C sub(C a, C b) { return {a.real() - b.real(), a.imag() - b.imag()}; }

void radix4(const C* in, C* out, bool fwd) {
  const C s = add(in[0], in[1]), t = sub(in[0], in[1]), u = add(in[2], in[3]), v = sub(in[2], in[3]);
  out[0] = add(s, u);
  out[2] = sub(s, u);
  // t - i v and t + i v, as t + (vi, -vr) and t - (vi, -vr)
  out[1] = fwd ? C{t.real() + v.imag(), t.imag() - v.real()} : C{t.real() - v.imag(), t.imag() + v.real()};
  out[3] = fwd ? C{t.real() - v.imag(), t.imag() + v.real()} : C{t.real() + v.imag(), t.imag() - v.real()};
}

// One twiddled radix-4 pass of stage size m over y (natural order within
// each group), table groups of four k: rows re/im of W^k, W^2k, W^3k.
void pass(std::vector<C>& y, std::size_t m, const float* stage, bool fwd) {
  const std::size_t l = m / 4;
  for (std::size_t g = 0; g < y.size(); g += m) {
    for (std::size_t k = 0; k < l; ++k) {
      const float* t = stage + 24 * (k / 4);
      const std::size_t lane = k % 4;
      const C w1{t[lane], t[4 + lane]}, w2{t[8 + lane], t[12 + lane]}, w3{t[16 + lane], t[20 + lane]};
      const C a = y[g + k];
      const C b = twiddle(y[g + k + l], w2, fwd);
      const C c = twiddle(y[g + k + 2 * l], w1, fwd);
      const C d = twiddle(y[g + k + 3 * l], w3, fwd);
      const C apb = add(a, b), amb = sub(a, b), cpd = add(c, d), cmd = sub(c, d);
      y[g + k] = add(apb, cpd);
      y[g + k + 2 * l] = sub(apb, cpd);
      const C mi = minusI(cmd);
      y[g + k + l] = fwd ? add(amb, mi) : sub(amb, mi);
      y[g + k + 3 * l] = fwd ? sub(amb, mi) : add(amb, mi);
    }
  }
}

std::vector<C> model(const std::vector<C>& x, int order, bool fwd, const float* tbl) {
  const std::size_t n = x.size();
  std::vector<C> y(n);
  if (order & 1) {
    // R8: A from values 0-3, B from 4-7, B times W_8^l, then A +/- B*W.
    const C w8[4] = {{1.0f, 0.0f}, {0.70710678f, -0.70710678f}, {0.0f, -1.0f}, {-0.70710678f, -0.70710678f}};
    for (std::size_t r = 0; r < n; r += 8) {
      C a[4], b[4];
      radix4(&x[r], a, fwd);
      radix4(&x[r + 4], b, fwd);
      for (int l = 0; l < 4; ++l) {
        const C p = twiddle(b[l], w8[l], fwd);
        y[r + l] = add(a[l], p);
        y[r + 4 + l] = sub(a[l], p);
      }
    }
    for (std::size_t m = 32; m <= n; m *= 4) {
      pass(y, m, tbl, fwd);
      tbl += 6 * (m / 4);
    }
  } else {
    for (std::size_t r = 0; r < n; r += 4) radix4(&x[r], &y[r], fwd);
    for (std::size_t m = 16; m <= n; m *= 4) {
      pass(y, m, tbl, fwd);
      tbl += 6 * (m / 4);
    }
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
          const std::vector<C> want = model(x, order, fwd, tbl);
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

}  // namespace
