// Complex FFT: accuracy against the long-double reference at every order
// 0..20 for both precisions, forward and inverse, scaled and kept scale;
// bitwise agreement of in-place and Nip forms, interleaved and split forms,
// aligned and misaligned arrays, reversed input and output against the
// natural forms permuted by the written-out bit reversal.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "fft_reference.h"
#include "test_support.h"

namespace {

using namespace ryxtest;

template <class T>
struct Api;
template <>
struct Api<float> {
  using C = SCplx;
  static void fft(C* s, int o, int f) { ryxcFft(s, o, f); }
  static void nip(const C* i, C* out, int o, int f) { ryxcFftNip(i, out, o, f); }
  static void split(float* r, float* i, int o, int f) { ryxcrFft(r, i, o, f); }
  static void splitNip(const float* ri, const float* ii, float* ro, float* io, int o, int f) {
    ryxcrFftNip(ri, ii, ro, io, o, f);
  }
};
template <>
struct Api<double> {
  using C = DCplx;
  static void fft(C* s, int o, int f) { ryxzFft(s, o, f); }
  static void nip(const C* i, C* out, int o, int f) { ryxzFftNip(i, out, o, f); }
  static void split(double* r, double* i, int o, int f) { ryxzrFft(r, i, o, f); }
  static void splitNip(const double* ri, const double* ii, double* ro, double* io, int o, int f) {
    ryxzrFftNip(ri, ii, ro, io, o, f);
  }
};

template <class C>
std::vector<C> bitReversed(const std::vector<C>& v, int order) {
  std::vector<C> out(v.size());
  for (std::size_t i = 0; i < v.size(); ++i) out[reverseBits(static_cast<std::uint32_t>(i), order)] = v[i];
  return out;
}

template <class T>
void checkOrder(int order) {
  using C = typename Api<T>::C;
  SCOPED_TRACE(testing::Message() << "order " << order << (sizeof(T) == 4 ? " float" : " double"));
  ReportCapture capture;
  const int n = 1 << order;
  Random rng(1000u + order);
  std::vector<C> x(n);
  rng.fill(x.data(), n);
  const std::vector<LCplx> xl = widen(x.data(), n);
  const std::vector<LCplx> fwdRef = exactTransform(xl, -1);
  // The positive-exponent sum is the forward one read backwards.
  std::vector<LCplx> invRef(n);
  for (int k = 0; k < n; ++k) invRef[k] = fwdRef[(n - k) % n];
  const long double bound = errorBound<T>(order);

  // Forward in place, aligned.
  std::vector<C> fwd = x;
  Api<T>::fft(fwd.data(), order, RYX_Forward);
  EXPECT_LE(relativeError(widen(fwd.data(), n), fwdRef), bound);

  // Inverse, scaled and kept scale.
  std::vector<C> inv = x;
  Api<T>::fft(inv.data(), order, RYX_Inverse);
  std::vector<LCplx> invScaled = invRef;
  for (auto& v : invScaled) v /= static_cast<long double>(n);
  EXPECT_LE(relativeError(widen(inv.data(), n), invScaled), bound);
  std::vector<C> keep = x;
  Api<T>::fft(keep.data(), order, RYX_Inverse | RYX_KeepScale);
  EXPECT_LE(relativeError(widen(keep.data(), n), invRef), bound);

  // Nip: bitwise the in-place result, input untouched.
  std::vector<C> out(n);
  Api<T>::nip(x.data(), out.data(), order, RYX_Forward);
  EXPECT_TRUE(sameBits(out.data(), fwd.data(), n));
  std::vector<C> outInv(n);
  Api<T>::nip(x.data(), outInv.data(), order, RYX_Inverse);
  EXPECT_TRUE(sameBits(outInv.data(), inv.data(), n));

  // Misaligned arrays (8 and 4 bytes past a 16-byte boundary; 8 for
  // double): bitwise the aligned result, guards intact.
  for (int offset : {8, 4}) {
    if (sizeof(T) == 8 && offset == 4) continue;
    Guarded<C> g(n, offset);
    std::memcpy(g.data(), x.data(), sizeof(C) * n);
    Api<T>::fft(g.data(), order, RYX_Forward);
    EXPECT_TRUE(sameBits(g.data(), fwd.data(), n)) << "offset " << offset;
    EXPECT_TRUE(g.intact());
    Guarded<C> gi(n, offset);
    Api<T>::nip(x.data(), gi.data(), order, RYX_Inverse);
    EXPECT_TRUE(sameBits(gi.data(), inv.data(), n)) << "offset " << offset;
    EXPECT_TRUE(gi.intact());
  }

  // Split forms run the same arithmetic: bitwise the interleaved result,
  // aligned or not.
  std::vector<T> re(n), im(n);
  for (int i = 0; i < n; ++i) {
    re[i] = x[i].re;
    im[i] = x[i].im;
  }
  std::vector<T> sr = re, si = im;
  Api<T>::split(sr.data(), si.data(), order, RYX_Forward);
  std::vector<T> fr(n), fi(n);
  for (int i = 0; i < n; ++i) {
    fr[i] = fwd[i].re;
    fi[i] = fwd[i].im;
  }
  EXPECT_TRUE(sameBits(sr.data(), fr.data(), n));
  EXPECT_TRUE(sameBits(si.data(), fi.data(), n));
  Guarded<T> gr(n, sizeof(T)), gim(n, 0);
  Api<T>::splitNip(re.data(), im.data(), gr.data(), gim.data(), order, RYX_Forward);
  EXPECT_TRUE(sameBits(gr.data(), fr.data(), n));
  EXPECT_TRUE(sameBits(gim.data(), fi.data(), n));
  EXPECT_TRUE(gr.intact() && gim.intact());
  std::vector<T> ir = re, ii = im;
  Api<T>::split(ir.data(), ii.data(), order, RYX_Inverse);
  for (int i = 0; i < n; ++i) {
    EXPECT_EQ(std::memcmp(&ir[i], &inv[i].re, sizeof(T)), 0);
    EXPECT_EQ(std::memcmp(&ii[i], &inv[i].im, sizeof(T)), 0);
    if (testing::Test::HasFailure()) break;
  }

  // Reversed input and output: the same computation with the permutation
  // moved outside, so bitwise the natural result permuted.
  const std::vector<C> xr = bitReversed(x, order);
  std::vector<C> inRev = xr;
  Api<T>::fft(inRev.data(), order, RYX_Forward | RYX_InReversed);
  EXPECT_TRUE(sameBits(inRev.data(), fwd.data(), n));
  std::vector<C> outRev = x;
  Api<T>::fft(outRev.data(), order, RYX_Forward | RYX_OutReversed);
  const std::vector<C> fwdRev = bitReversed(fwd, order);
  EXPECT_TRUE(sameBits(outRev.data(), fwdRev.data(), n));
  std::vector<C> nipRev(n);
  Api<T>::nip(xr.data(), nipRev.data(), order, RYX_Forward | RYX_InReversed | RYX_KeepScale);
  EXPECT_TRUE(sameBits(nipRev.data(), fwd.data(), n));
  std::vector<C> natural = x;
  Api<T>::fft(natural.data(), order, RYX_Forward | RYX_NaturalOrder);
  EXPECT_TRUE(sameBits(natural.data(), fwd.data(), n));

  // Round trip.
  std::vector<C> back = fwd;
  Api<T>::fft(back.data(), order, RYX_Inverse);
  EXPECT_LE(relativeError(widen(back.data(), n), xl), 2 * bound);

  EXPECT_TRUE(capture.reports().empty());
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsOk);
}

class ComplexFftOrders : public testing::TestWithParam<int> {};

TEST_P(ComplexFftOrders, FloatMatchesReferenceAndFormsAgreeBitwise) { checkOrder<float>(GetParam()); }
TEST_P(ComplexFftOrders, DoubleMatchesReferenceAndFormsAgreeBitwise) { checkOrder<double>(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Orders0To20, ComplexFftOrders, testing::Range(0, 21));

// The long-double FFT used above for orders 11 and up agrees with the naive
// sum where both can run.
TEST(Reference, FftAgreesWithNaiveSum) {
  Random rng(7);
  for (int order = 0; order <= 9; ++order) {
    std::vector<LCplx> x(1u << order);
    for (auto& v : x) v = {rng.f64(), rng.f64()};
    for (int sign : {-1, 1}) EXPECT_LE(relativeError(referenceFft(x, sign), naiveDft(x, sign)), 1e-16L);
  }
}

// At the largest orders a few bins also go against the naive sum directly.
TEST(ComplexFft, LargeOrderBinsMatchNaiveSum) {
  ReportCapture capture;
  for (int order : {15, 16, 20}) {
    const int n = 1 << order;
    Random rng(order);
    std::vector<SCplx> x(n);
    rng.fill(x.data(), n);
    std::vector<SCplx> y = x;
    ryxcFft(y.data(), order, RYX_Forward);
    const std::vector<LCplx> xl = widen(x.data(), n);
    long double norm = 0;
    for (auto& v : xl) norm += std::norm(v);
    norm = sqrtl(norm * n);  // ||X||_2 / sqrt(N) bounds a typical bin
    for (int k : {0, 1, 3, n / 4 + 5, n / 2, n - 1}) {
      const LCplx want = naiveBin(xl, k, -1);
      const LCplx got{y[k].re, y[k].im};
      EXPECT_LE(std::abs(got - want), 20 * errorBound<float>(order) * norm / sqrtl(n))
          << "order " << order << " bin " << k;
    }
  }
}

// Orders 0 and 1 follow their own rules: the single value is returned (or
// copied) unchanged whatever the flags; order 1 is x0+x1, x0-x1, halved by
// the inverse, and reversal flags change nothing.
TEST(ComplexFft, OrdersZeroAndOne) {
  ReportCapture capture;
  SCplx one{3.5f, -2.25f};
  for (int flags : {+RYX_Forward, +RYX_Inverse, RYX_Inverse | RYX_OutReversed}) {
    SCplx v = one;
    ryxcFft(&v, 0, flags);
    EXPECT_TRUE(sameBits(&v, &one, 1));
    SCplx out{0, 0};
    ryxcFftNip(&one, &out, 0, flags);
    EXPECT_TRUE(sameBits(&out, &one, 1));
  }
  for (int flags : {+RYX_Forward, RYX_Forward | RYX_InReversed, RYX_Forward | RYX_OutReversed}) {
    DCplx v[2] = {{1.0, 2.0}, {5.0, -7.0}};
    ryxzFft(v, 1, flags);
    EXPECT_EQ(v[0].re, 6.0);
    EXPECT_EQ(v[0].im, -5.0);
    EXPECT_EQ(v[1].re, -4.0);
    EXPECT_EQ(v[1].im, 9.0);
  }
  DCplx v[2] = {{1.0, 2.0}, {5.0, -7.0}};
  ryxzFft(v, 1, RYX_Inverse);
  EXPECT_EQ(v[0].re, 3.0);
  EXPECT_EQ(v[1].im, 4.5);
  EXPECT_TRUE(capture.reports().empty());
}

// Order 2 is the scalar butterfly: the direct sum, rounded once, so every
// value with small integer data is exact.
TEST(ComplexFft, OrderTwoIsTheDirectSum) {
  ReportCapture capture;
  SCplx x[4] = {{1, 2}, {-3, 4}, {5, -6}, {7, 8}};
  const std::vector<LCplx> ref = naiveDft(widen(x, 4), -1);
  SCplx y[4];
  ryxcFftNip(x, y, 2, RYX_Forward);
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(y[k].re, static_cast<float>(ref[k].real()));
    EXPECT_EQ(y[k].im, static_cast<float>(ref[k].imag()));
  }
}

}  // namespace
