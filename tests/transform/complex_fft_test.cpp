// Complex FFT: accuracy against the long-double reference at every order
// 0..20 for both precisions, forward and inverse, scaled and kept scale;
// up to order 16 (past the in-cache block and the combining length of both
// precisions) also bitwise agreement of in-place and Nip forms, interleaved
// and split forms, aligned and misaligned arrays, reversed input and output
// against the natural forms permuted by the written-out bit reversal.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "fft_reference.h"
#include "test_support.h"

namespace {

using namespace ryxtest;

constexpr int kAllFormsUpTo = 16;

// The routines of one precision.
template <class T, class C>
struct Forms {
  void (*fft)(C*, int, int);
  void (*nip)(const C*, C*, int, int);
  void (*split)(T*, T*, int, int);
  void (*splitNip)(const T*, const T*, T*, T*, int, int);
};
constexpr Forms<float, SCplx> kFloatForms = {ryxcFft, ryxcFftNip, ryxcrFft, ryxcrFftNip};
constexpr Forms<double, DCplx> kDoubleForms = {ryxzFft, ryxzFftNip, ryxzrFft, ryxzrFftNip};

template <class C>
std::vector<C> bitReversed(const std::vector<C>& v, int order) {
  std::vector<C> out(v.size());
  for (std::size_t i = 0; i < v.size(); ++i) out[reverseBits(static_cast<std::uint32_t>(i), order)] = v[i];
  return out;
}

// The real (part 0) or imaginary (part 1) parts of interleaved values.
template <class C>
auto part(const std::vector<C>& v, int which) {
  std::vector<decltype(v[0].re)> out(v.size());
  for (std::size_t i = 0; i < v.size(); ++i) out[i] = which ? v[i].im : v[i].re;
  return out;
}

template <class T, class C>
void checkOrder(const Forms<T, C>& A, int order) {
  SCOPED_TRACE(testing::Message() << "order " << order << (sizeof(T) == 4 ? " float" : " double"));
  ReportCapture capture;
  const int n = 1 << order;
  Random rng(1000u + order);
  std::vector<C> x(n);
  rng.fill(x.data(), n);
  const std::vector<LCplx> fwdRef = exactTransform(widen(x.data(), n), -1);
  // The positive-exponent sum is the forward one read backwards.
  std::vector<LCplx> invRef(n);
  for (int k = 0; k < n; ++k) invRef[k] = fwdRef[(n - k) % n] / static_cast<long double>(n);
  const long double bound = errorBound<T>(order);
  auto run = [&](int flags, const std::vector<C>& in) {
    std::vector<C> y = in;
    A.fft(y.data(), order, flags);
    return y;
  };

  const std::vector<C> fwd = run(RYX_Forward, x), inv = run(RYX_Inverse, x);
  EXPECT_LE(relativeError(widen(fwd.data(), n), fwdRef), bound);
  EXPECT_LE(relativeError(widen(inv.data(), n), invRef), bound);
  // Kept scale: n times the scaled values (the error is relative, so the
  // exact division by n changes nothing).
  std::vector<LCplx> keep = widen(run(RYX_Inverse | RYX_KeepScale, x).data(), n);
  for (auto& v : keep) v /= static_cast<long double>(n);
  EXPECT_LE(relativeError(keep, invRef), bound);

  if (order <= kAllFormsUpTo) {
    // Nip: bitwise the in-place results.
    std::vector<C> out(n), outInv(n);
    A.nip(x.data(), out.data(), order, RYX_Forward);
    A.nip(x.data(), outInv.data(), order, RYX_Inverse);
    EXPECT_TRUE(sameBits(out.data(), fwd.data(), n));
    EXPECT_TRUE(sameBits(outInv.data(), inv.data(), n));

    // Misaligned arrays (8 and, for float, 4 bytes past a 16-byte
    // boundary): bitwise the aligned result, guards intact.
    for (int offset : {8, 4}) {
      if (offset % sizeof(T) != 0) continue;
      Guarded<C> g(n, offset), gi(n, offset);
      std::memcpy(g.data(), x.data(), sizeof(C) * n);
      A.fft(g.data(), order, RYX_Forward);
      A.nip(x.data(), gi.data(), order, RYX_Inverse);
      EXPECT_TRUE(sameBits(g.data(), fwd.data(), n) && g.intact()) << "offset " << offset;
      EXPECT_TRUE(sameBits(gi.data(), inv.data(), n) && gi.intact()) << "offset " << offset;
    }

    // Split forms run the same arithmetic: bitwise the interleaved result,
    // in place (aligned) and Nip (real parts misaligned).
    const std::vector<T> re = part(x, 0), im = part(x, 1);
    for (int dir : {+RYX_Forward, +RYX_Inverse}) {
      const std::vector<T> wantRe = part(dir == RYX_Forward ? fwd : inv, 0);
      const std::vector<T> wantIm = part(dir == RYX_Forward ? fwd : inv, 1);
      std::vector<T> sr = re, si = im;
      A.split(sr.data(), si.data(), order, dir);
      EXPECT_TRUE(sameBits(sr.data(), wantRe.data(), n) && sameBits(si.data(), wantIm.data(), n)) << dir;
      Guarded<T> gr(n, sizeof(T)), gim(n, 0);
      A.splitNip(re.data(), im.data(), gr.data(), gim.data(), order, dir);
      EXPECT_TRUE(sameBits(gr.data(), wantRe.data(), n) && sameBits(gim.data(), wantIm.data(), n)) << dir;
      EXPECT_TRUE(gr.intact() && gim.intact());
    }

    // Reversed input and output: the same computation with the permutation
    // moved outside, so bitwise the natural result permuted.
    const std::vector<C> xr = bitReversed(x, order);
    EXPECT_TRUE(sameBits(run(RYX_Forward | RYX_InReversed, xr).data(), fwd.data(), n));
    EXPECT_TRUE(sameBits(run(RYX_Forward | RYX_OutReversed, x).data(), bitReversed(fwd, order).data(), n));
    EXPECT_TRUE(sameBits(run(RYX_Forward | RYX_NaturalOrder, x).data(), fwd.data(), n));
    A.nip(xr.data(), out.data(), order, RYX_Forward | RYX_InReversed | RYX_KeepScale);
    EXPECT_TRUE(sameBits(out.data(), fwd.data(), n));
  }
  EXPECT_TRUE(capture.reports().empty());
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsOk);
}

class ComplexFftOrders : public testing::TestWithParam<int> {};

TEST_P(ComplexFftOrders, FloatMatchesReferenceAndFormsAgreeBitwise) { checkOrder(kFloatForms, GetParam()); }
TEST_P(ComplexFftOrders, DoubleMatchesReferenceAndFormsAgreeBitwise) { checkOrder(kDoubleForms, GetParam()); }

INSTANTIATE_TEST_SUITE_P(Orders0To20, ComplexFftOrders, testing::Range(0, 21));

// The long-double FFT used above for orders 10 and up agrees with the naive
// sum where both can run, and at the largest orders a few bins of the
// library's result go against the naive sum directly.
TEST(Reference, FftAgreesWithNaiveSum) {
  Random rng(7);
  for (int order = 0; order <= 9; ++order) {
    std::vector<LCplx> x(1u << order);
    for (auto& v : x) v = {rng.f64(), rng.f64()};
    for (int sign : {-1, 1}) EXPECT_LE(relativeError(referenceFft(x, sign), naiveDft(x, sign)), 1e-16L);
  }
  ReportCapture capture;
  for (int order : {16, 20}) {
    const int n = 1 << order;
    std::vector<SCplx> x(n);
    rng.fill(x.data(), n);
    std::vector<SCplx> y = x;
    ryxcFft(y.data(), order, RYX_Forward);
    const std::vector<LCplx> xl = widen(x.data(), n), roots = unitRoots(n, n, -1);
    long double norm = 0;  // ||x||_2, the size of a typical bin
    for (auto& v : xl) norm += std::norm(v);
    norm = sqrtl(norm);
    for (int k : {0, 1, 3, n / 4 + 5, n / 2, n - 1}) {
      EXPECT_LE(std::abs(LCplx(y[k].re, y[k].im) - naiveBin(xl, roots, k)), 20 * errorBound<float>(order) * norm)
          << "order " << order << " bin " << k;
    }
  }
  EXPECT_TRUE(capture.reports().empty());
}

// Orders 0 and 1 follow their own rules: the single value is returned (or
// copied) unchanged whatever the flags; order 1 is x0+x1, x0-x1, halved by
// the inverse, and reversal flags change nothing. Order 2 is the direct sum
// rounded once, so exact for small integer data.
TEST(ComplexFft, OrdersZeroToTwo) {
  ReportCapture capture;
  const SCplx one{3.5f, -2.25f};
  for (int flags : {+RYX_Forward, +RYX_Inverse, RYX_Inverse | RYX_OutReversed}) {
    SCplx v = one, out{0, 0};
    ryxcFft(&v, 0, flags);
    ryxcFftNip(&one, &out, 0, flags);
    EXPECT_TRUE(sameBits(&v, &one, 1) && sameBits(&out, &one, 1)) << flags;
  }
  for (int flags : {+RYX_Forward, RYX_Forward | RYX_InReversed, RYX_Forward | RYX_OutReversed, +RYX_Inverse}) {
    DCplx v[2] = {{1.0, 2.0}, {5.0, -7.0}};
    ryxzFft(v, 1, flags);
    const double s = flags == RYX_Inverse ? 0.5 : 1.0;
    EXPECT_TRUE(v[0].re == 6.0 * s && v[0].im == -5.0 * s && v[1].re == -4.0 * s && v[1].im == 9.0 * s) << flags;
  }
  SCplx x[4] = {{1, 2}, {-3, 4}, {5, -6}, {7, 8}}, y[4];
  const std::vector<LCplx> ref = naiveDft(widen(x, 4), -1);
  ryxcFftNip(x, y, 2, RYX_Forward);
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(y[k].re, static_cast<float>(ref[k].real()));
    EXPECT_EQ(y[k].im, static_cast<float>(ref[k].imag()));
  }
  EXPECT_TRUE(capture.reports().empty());
}

}  // namespace
