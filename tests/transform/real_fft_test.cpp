// Real FFT and packed spectra: the RCCs result against the long-double
// reference at every order 0..20 for both precisions and both directions,
// and the round trip through CCS; up to order 16 RCPack and RCPerm bitwise
// the RCCs values rearranged, Nip, misaligned and two-signal forms bitwise
// the in-place one-signal form, and CCS transforms against the reference
// sum of the conjugate-symmetric extension; products of packed spectra against a long-double product
// and a direct circular convolution.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "fft_reference.h"
#include "test_support.h"
#include "transform/fft_internal.h"

namespace {

using namespace ryxtest;

constexpr int kAllFormsUpTo = 16;

// The routines of one precision.
template <class T>
struct RealForms {
  void (*real)(T*, int, int), (*realL)(T*, int, int), (*ccs)(T*, int, int), (*ccsL)(T*, int, int);
  void (*realNip)(const T*, T*, int, int), (*realLNip)(const T*, T*, int, int), (*ccsNip)(const T*, T*, int, int),
      (*ccsLNip)(const T*, T*, int, int);
  RyxStatus (*real2)(T*, T*, int, int), (*ccs2)(T*, T*, int, int);
  RyxStatus (*real2Nip)(const T*, T*, const T*, T*, int, int), (*ccs2Nip)(const T*, T*, const T*, T*, int, int);
};
constexpr RealForms<float> kFloatForms = {
    .real = ryxsRealFft, .realL = ryxsRealFftl, .ccs = ryxsCcsFft, .ccsL = ryxsCcsFftl,
    .realNip = ryxsRealFftNip, .realLNip = ryxsRealFftlNip, .ccsNip = ryxsCcsFftNip, .ccsLNip = ryxsCcsFftlNip,
    .real2 = ryxsReal2Fft, .ccs2 = ryxsCcs2Fft, .real2Nip = ryxsReal2FftNip, .ccs2Nip = ryxsCcs2FftNip};
constexpr RealForms<double> kDoubleForms = {
    .real = ryxdRealFft, .realL = ryxdRealFftl, .ccs = ryxdCcsFft, .ccsL = ryxdCcsFftl,
    .realNip = ryxdRealFftNip, .realLNip = ryxdRealFftlNip, .ccsNip = ryxdCcsFftNip, .ccsLNip = ryxdCcsFftlNip,
    .real2 = ryxdReal2Fft, .ccs2 = ryxdCcs2Fft, .real2Nip = ryxdReal2FftNip, .ccs2Nip = ryxdCcs2FftNip};

// RCCs (N+2 values) to RCPack (re0, re1, im1, ..., reN/2) and RCPerm
// (re0, reN/2, re1, im1, ...), written out.
template <class T>
std::vector<T> toPacked(const std::vector<T>& ccs, int n, bool perm) {
  if (n == 1) return {ccs[0]};
  std::vector<T> out(ccs.begin(), ccs.begin() + n);
  if (perm) {
    out[1] = ccs[n];
  } else {
    std::copy(ccs.begin() + 2, ccs.begin() + n, out.begin() + 1);
    out[n - 1] = ccs[n];
  }
  return out;
}

template <class T>
void checkRealOrder(const RealForms<T>& A, int order) {
  SCOPED_TRACE(testing::Message() << "order " << order << (sizeof(T) == 4 ? " float" : " double"));
  ReportCapture capture;
  const int n = 1 << order;
  Random rng(500u + order);
  std::vector<T> x(n);
  rng.fill(x.data(), n);
  const std::vector<LCplx> xl = widenReal(x.data(), n);
  const long double bound = errorBound<T>(order);
  // For real input the positive-exponent spectrum is the conjugate of the
  // forward one.
  const std::vector<LCplx> spectrum = exactTransform(xl, -1);
  const bool all = order <= kAllFormsUpTo;

  for (int dir : {+RYX_Forward, +RYX_Inverse, RYX_Inverse | RYX_KeepScale}) {
    SCOPED_TRACE(testing::Message() << "flags " << dir);
    const int sign = dir & RYX_Forward ? -1 : 1;
    const long double scale = (dir & RYX_Inverse) && !(dir & RYX_KeepScale) ? n : 1;
    std::vector<LCplx> ref(spectrum.begin(), spectrum.begin() + n / 2 + 1);
    for (auto& v : ref) v = (sign > 0 ? std::conj(v) : v) / scale;

    std::vector<T> ccs(n + 2);
    std::copy(x.begin(), x.end(), ccs.begin());
    A.real(ccs.data(), order, dir);
    std::vector<LCplx> half(n / 2 + 1);
    for (int k = 0; k <= n / 2; ++k) half[k] = {ccs[2 * k], ccs[2 * k + 1]};
    EXPECT_LE(relativeError(half, ref), bound);
    EXPECT_EQ(ccs[1], T(0));
    EXPECT_EQ(ccs[n + 1], T(0));
    if (!all) continue;

    std::vector<T> nip(n + 2);
    A.realNip(x.data(), nip.data(), order, dir);
    EXPECT_TRUE(sameBits(nip.data(), ccs.data(), n + 2));
    const std::vector<T> pack = toPacked(ccs, n, false), perm = toPacked(ccs, n, true);
    std::vector<T> p = x, q = x;
    A.realL(p.data(), order, dir | RYX_RCPackOut);
    A.realL(q.data(), order, dir | RYX_RCPermOut);
    EXPECT_TRUE(sameBits(p.data(), pack.data(), n));
    EXPECT_TRUE(sameBits(q.data(), perm.data(), n));
    Guarded<T> g(n, sizeof(T)), gp(n, 2 * sizeof(T));
    A.realLNip(x.data(), g.data(), order, dir | RYX_RCPermOut);
    std::memcpy(gp.data(), x.data(), sizeof(T) * n);
    A.realL(gp.data(), order, dir | RYX_RCPackOut);
    EXPECT_TRUE(sameBits(g.data(), perm.data(), n) && g.intact());
    EXPECT_TRUE(sameBits(gp.data(), pack.data(), n) && gp.intact());

    // CCS: the real sum over the conjugate-symmetric extension of the
    // spectrum just computed, exponent by direction, 1/N for the inverse.
    std::vector<T> c = ccs;
    A.ccs(c.data(), order, dir);
    std::vector<LCplx> full(n);
    for (int k = 0; k < n; ++k) full[k] = k <= n / 2 ? LCplx(ccs[2 * k], ccs[2 * k + 1]) : std::conj(full[n - k]);
    full[0].imag(0);
    full[n / 2].imag(0);
    std::vector<LCplx> back = exactTransform(full, sign);
    for (auto& v : back) v = v.real() / scale;
    EXPECT_LE(relativeError(widenReal(c.data(), n), back), 2 * bound);
    std::vector<T> cn(n), cp = pack, cq(n);
    A.ccsNip(ccs.data(), cn.data(), order, dir);
    A.ccsL(cp.data(), order, dir | RYX_RCPackIn);
    A.ccsLNip(perm.data(), cq.data(), order, dir | RYX_RCPermIn);
    EXPECT_TRUE(sameBits(cn.data(), c.data(), n));
    EXPECT_TRUE(sameBits(cp.data(), c.data(), n));
    EXPECT_TRUE(sameBits(cq.data(), c.data(), n));
    Guarded<T> gq(n, sizeof(T));
    A.ccsLNip(pack.data(), gq.data(), order, dir | RYX_RCPackIn);
    EXPECT_TRUE(sameBits(gq.data(), c.data(), n) && gq.intact());
  }

  // Round trip: CCS inverse undoes the real forward transform.
  std::vector<T> rt(n + 2);
  std::copy(x.begin(), x.end(), rt.begin());
  A.real(rt.data(), order, RYX_Forward);
  A.ccs(rt.data(), order, RYX_Inverse);
  EXPECT_LE(relativeError(widenReal(rt.data(), n), xl), 2 * bound);

  // Two signals: bitwise two one-signal calls.
  if (order <= 12) {
    std::vector<T> y(n);
    rng.fill(y.data(), n);
    std::vector<T> xs(n + 2), ys(n + 2), xo(n + 2), yo(n + 2), xb(n), yb(n);
    std::copy(x.begin(), x.end(), xs.begin());
    std::copy(y.begin(), y.end(), ys.begin());
    std::vector<T> xr = xs, yr = ys;
    EXPECT_EQ(A.real2(xs.data(), ys.data(), order, RYX_Forward), RYX_StsOk);
    EXPECT_EQ(A.real2Nip(x.data(), xo.data(), y.data(), yo.data(), order, RYX_Forward), RYX_StsOk);
    A.real(xr.data(), order, RYX_Forward);
    A.real(yr.data(), order, RYX_Forward);
    EXPECT_TRUE(sameBits(xs.data(), xr.data(), n + 2) && sameBits(ys.data(), yr.data(), n + 2));
    EXPECT_TRUE(sameBits(xo.data(), xr.data(), n + 2) && sameBits(yo.data(), yr.data(), n + 2));
    EXPECT_EQ(A.ccs2Nip(xr.data(), xb.data(), yr.data(), yb.data(), order, RYX_Inverse), RYX_StsOk);
    EXPECT_EQ(A.ccs2(xr.data(), yr.data(), order, RYX_Inverse), RYX_StsOk);
    EXPECT_TRUE(sameBits(xb.data(), xr.data(), n) && sameBits(yb.data(), yr.data(), n));
    EXPECT_LE(relativeError(widenReal(yb.data(), n), widenReal(y.data(), n)), 2 * bound);
  }
  EXPECT_TRUE(capture.reports().empty());
}

class RealFftOrders : public testing::TestWithParam<int> {};
TEST_P(RealFftOrders, FloatLayoutsAndDirections) { checkRealOrder(kFloatForms, GetParam()); }
TEST_P(RealFftOrders, DoubleLayoutsAndDirections) { checkRealOrder(kDoubleForms, GetParam()); }
INSTANTIATE_TEST_SUITE_P(Orders0To20, RealFftOrders, testing::Range(0, 21));

// Small-order rules written out.
TEST(RealFft, OrdersZeroAndOne) {
  ReportCapture capture;
  float s[4] = {2.5f, 9.0f, 9.0f, 9.0f}, l[1] = {4.0f}, o[2] = {7, 7};
  ryxsRealFft(s, 0, RYX_Forward);
  ryxsRealFftl(l, 0, RYX_Forward | RYX_RCPermOut);
  ryxsRealFftNip(l, o, 0, RYX_Forward);
  EXPECT_TRUE(s[0] == 2.5f && s[1] == 0.0f && l[0] == 4.0f && o[0] == 4.0f && o[1] == 0.0f);
  for (int fmt : {+RYX_RCPackOut, +RYX_RCPermOut}) {
    float t[2] = {3.0f, 5.0f};
    ryxsRealFftl(t, 1, RYX_Forward | fmt);
    EXPECT_TRUE(t[0] == 8.0f && t[1] == -2.0f) << fmt;
  }
  double r[4] = {3.0, 5.0, 9.0, 9.0}, c[4] = {8.0, 0.0, -2.0, 0.0};
  ryxdRealFft(r, 1, RYX_Forward);
  EXPECT_TRUE(r[0] == 8.0 && r[1] == 0.0 && r[2] == -2.0 && r[3] == 0.0);
  ryxdCcsFft(c, 1, RYX_Inverse);
  EXPECT_TRUE(c[0] == 3.0 && c[1] == 5.0);
  float cp[2] = {8.0f, -2.0f};
  ryxsCcsFftl(cp, 1, RYX_Inverse | RYX_RCPackIn);
  EXPECT_TRUE(cp[0] == 3.0f && cp[1] == 5.0f);
  EXPECT_TRUE(capture.reports().empty());
}

// Products of packed spectra: the real slots as products rounded once, the
// complex pairs against the long-double product, nothing beyond N touched,
// the two-array form bitwise the three-array one.
template <class T>
void checkProducts(int order, bool perm) {
  SCOPED_TRACE(testing::Message() << "order " << order << (perm ? " RCPerm" : " RCPack"));
  ReportCapture capture;
  const int n = 1 << order;
  Random rng(order * 3 + perm);
  std::vector<T> a(n), b(n);
  rng.fill(a.data(), n);
  rng.fill(b.data(), n);
  std::vector<T> d3(n + 4, T(77)), d2(b);
  d2.resize(n + 4, T(77));
  if constexpr (sizeof(T) == 4) {
    (perm ? ryxsMpyRCPerm3 : ryxsMpyRCPack3)(a.data(), b.data(), d3.data(), order);
    (perm ? ryxsMpyRCPerm2 : ryxsMpyRCPack2)(a.data(), d2.data(), order);
  } else {
    (perm ? ryxdMpyRCPerm3 : ryxdMpyRCPack3)(a.data(), b.data(), d3.data(), order);
    (perm ? ryxdMpyRCPerm2 : ryxdMpyRCPack2)(a.data(), d2.data(), order);
  }
  // Real slots: 0 and, from order 1, N-1 (RCPack) or 1 (RCPerm).
  const int realSlot = n == 1 ? 0 : perm ? 1 : n - 1;
  for (int i : {0, realSlot}) EXPECT_EQ(d3[i], static_cast<T>(static_cast<long double>(a[i]) * b[i])) << i;
  for (int i = perm ? 2 : 1; i + 1 < n && i != realSlot; i += 2) {
    const LCplx want = LCplx(a[i], a[i + 1]) * LCplx(b[i], b[i + 1]);
    const long double tol = 4 * std::numeric_limits<T>::epsilon() * std::abs(want) + 1e-30L;
    EXPECT_LE(std::abs(LCplx(d3[i], d3[i + 1]) - want), tol) << i;
  }
  EXPECT_TRUE(sameBits(d2.data(), d3.data(), n + 4));
  for (int i = n; i < n + 4; ++i) EXPECT_EQ(d3[i], T(77));
  EXPECT_TRUE(capture.reports().empty());
}

TEST(PackedProducts, AgainstLongDoubleProducts) {
  for (int order : {0, 1, 2, 3, 6, 11}) {
    for (bool perm : {false, true}) {
      checkProducts<float>(order, perm);
      checkProducts<double>(order, perm);
    }
  }
}

// The use the products exist for: forward transforms, product, inverse
// gives the circular convolution, checked against the direct sum.
TEST(PackedProducts, CircularConvolutionThroughPackedSpectra) {
  ReportCapture capture;
  const int order = 7, n = 1 << order;
  Random rng(99);
  for (bool perm : {false, true}) {
    std::vector<double> x(n), h(n);
    rng.fill(x.data(), n);
    rng.fill(h.data(), n);
    std::vector<double> fx = x, fh = h;
    ryxdRealFftl(fx.data(), order, RYX_Forward | (perm ? RYX_RCPermOut : RYX_RCPackOut));
    ryxdRealFftl(fh.data(), order, RYX_Forward | (perm ? RYX_RCPermOut : RYX_RCPackOut));
    (perm ? ryxdMpyRCPerm2 : ryxdMpyRCPack2)(fh.data(), fx.data(), order);
    ryxdCcsFftl(fx.data(), order, RYX_Inverse | (perm ? RYX_RCPermIn : RYX_RCPackIn));
    for (int k = 0; k < n; ++k) {
      long double want = 0, mag = 0;
      for (int j = 0; j < n; ++j) {
        want += static_cast<long double>(x[j]) * h[(k - j + n) % n];
        mag += fabsl(static_cast<long double>(x[j]) * h[(k - j + n) % n]);
      }
      EXPECT_NEAR(fx[k], static_cast<double>(want), static_cast<double>(mag * 1e-13)) << k;
    }
  }
  EXPECT_TRUE(capture.reports().empty());
}

// The recombinations against their column formulas written out here in
// scalar float arithmetic, column by column: the four-column rounds of the
// library must give the same bits, the middle column included.
TEST(Recombination, FloatRoundsMatchTheColumnFormulas) {
  for (int order = 2; order <= 12; ++order) {
    const std::uint32_t n = 1u << order, m = n / 2;
    const float* rt = ownsGetRealTwd(order);
    const float* ct = ownsGetCcsTwd(order);
    ASSERT_TRUE(rt != nullptr && ct != nullptr);
    // A_k, B_k: pairs up to N = 8, above in groups of four A then four B.
    auto ab = [&](const float* t, std::uint32_t k, float& a, float& b) {
      a = n > 8 ? t[8 * ((k - 1) / 4) + (k - 1) % 4] : t[2 * k];
      b = n > 8 ? t[8 * ((k - 1) / 4) + 4 + (k - 1) % 4] : t[2 * k + 1];
    };
    Random rng(order);
    std::vector<float> z(n);
    rng.fill(z.data(), static_cast<int>(n));
    for (int sign : {1, -1}) {
      SCOPED_TRACE(testing::Message() << "order " << order << " sign " << sign);
      std::vector<float> want = z, cwant = z;
      for (std::uint32_t k = 1; k < m / 2; ++k) {
        const std::uint32_t p = m - k;
        float a, b;
        ab(rt, k, a, b);
        const float kr = z[2 * k], ki = z[2 * k + 1], pr = z[2 * p], pi = z[2 * p + 1];
        const float sr = kr + pr, di = ki - pi, dr = kr - pr, si = ki + pi;
        if (sign == 1) {
          const float t1 = a * si + b * dr, t2 = b * si - a * dr;
          want[2 * k] = pr + t1;
          want[2 * k + 1] = t2 - pi;
          want[2 * p] = kr - t1;
          want[2 * p + 1] = t2 - ki;
        } else {
          const float t1 = a * si - b * dr, t2 = b * si + a * dr;
          want[2 * k] = kr + t1;
          want[2 * k + 1] = ki - t2;
          want[2 * p] = pr - t1;
          want[2 * p + 1] = pi - t2;
        }
        ab(ct, k, a, b);
        const float t1 = sign == 1 ? b * dr + a * si : b * dr - a * si;
        const float t2 = sign == 1 ? a * dr - b * si : b * si + a * dr;
        cwant[2 * k] = sign == 1 ? sr - t1 : sr + t1;
        cwant[2 * k + 1] = di + t2;
        cwant[2 * p] = sign == 1 ? sr + t1 : sr - t1;
        cwant[2 * p + 1] = t2 - di;
      }
      if (sign == 1 && m >= 2) want[m + 1] = -z[m + 1];
      if (m >= 2) {
        cwant[m] = z[m] * 2.0f;
        cwant[m + 1] = z[m + 1] * (sign == 1 ? 2.0f : -2.0f);
      }
      std::vector<float> got = z, cgot(n, 0.0f), inPlace = z;
      ownsRealRecombine(got.data(), m, sign, rt);
      EXPECT_TRUE(sameBits(got.data(), want.data(), static_cast<int>(n)));
      cgot[0] = z[0];
      cgot[1] = z[1];
      ownsCcsRecombine(z.data(), cgot.data(), m, sign, ct);
      ownsCcsRecombine(inPlace.data(), inPlace.data(), m, sign, ct);
      EXPECT_TRUE(sameBits(cgot.data(), cwant.data(), static_cast<int>(n)));
      EXPECT_TRUE(sameBits(inPlace.data(), cwant.data(), static_cast<int>(n)));
    }
  }
}

}  // namespace
