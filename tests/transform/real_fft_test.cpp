// Real FFT and packed spectra: the RCCs result against the long-double
// reference at every order 0..20 for both precisions and both directions;
// RCPack and RCPerm bitwise the RCCs values rearranged; Nip, misaligned and
// two-signal forms bitwise the in-place one-signal form; CCS transforms
// against the reference sum of the conjugate-symmetric extension, and the
// round trip; products of packed spectra against a long-double product
// and a direct circular convolution.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "fft_reference.h"
#include "test_support.h"
#include "transform/fft_internal.h"

namespace {

using namespace ryxtest;

template <class T>
struct RealApi;
template <>
struct RealApi<float> {
  static void real(float* s, int o, int f) { ryxsRealFft(s, o, f); }
  static void realNip(const float* i, float* out, int o, int f) { ryxsRealFftNip(i, out, o, f); }
  static void realL(float* s, int o, int f) { ryxsRealFftl(s, o, f); }
  static void realLNip(const float* i, float* out, int o, int f) { ryxsRealFftlNip(i, out, o, f); }
  static void ccs(float* s, int o, int f) { ryxsCcsFft(s, o, f); }
  static void ccsNip(const float* i, float* out, int o, int f) { ryxsCcsFftNip(i, out, o, f); }
  static void ccsL(float* s, int o, int f) { ryxsCcsFftl(s, o, f); }
  static void ccsLNip(const float* i, float* out, int o, int f) { ryxsCcsFftlNip(i, out, o, f); }
  static RyxStatus real2(float* x, float* y, int o, int f) { return ryxsReal2Fft(x, y, o, f); }
  static RyxStatus real2Nip(const float* xi, float* xo, const float* yi, float* yo, int o, int f) {
    return ryxsReal2FftNip(xi, xo, yi, yo, o, f);
  }
  static RyxStatus ccs2(float* x, float* y, int o, int f) { return ryxsCcs2Fft(x, y, o, f); }
  static RyxStatus ccs2Nip(const float* xi, float* xo, const float* yi, float* yo, int o, int f) {
    return ryxsCcs2FftNip(xi, xo, yi, yo, o, f);
  }
};
template <>
struct RealApi<double> {
  static void real(double* s, int o, int f) { ryxdRealFft(s, o, f); }
  static void realNip(const double* i, double* out, int o, int f) { ryxdRealFftNip(i, out, o, f); }
  static void realL(double* s, int o, int f) { ryxdRealFftl(s, o, f); }
  static void realLNip(const double* i, double* out, int o, int f) { ryxdRealFftlNip(i, out, o, f); }
  static void ccs(double* s, int o, int f) { ryxdCcsFft(s, o, f); }
  static void ccsNip(const double* i, double* out, int o, int f) { ryxdCcsFftNip(i, out, o, f); }
  static void ccsL(double* s, int o, int f) { ryxdCcsFftl(s, o, f); }
  static void ccsLNip(const double* i, double* out, int o, int f) { ryxdCcsFftlNip(i, out, o, f); }
  static RyxStatus real2(double* x, double* y, int o, int f) { return ryxdReal2Fft(x, y, o, f); }
  static RyxStatus real2Nip(const double* xi, double* xo, const double* yi, double* yo, int o, int f) {
    return ryxdReal2FftNip(xi, xo, yi, yo, o, f);
  }
  static RyxStatus ccs2(double* x, double* y, int o, int f) { return ryxdCcs2Fft(x, y, o, f); }
  static RyxStatus ccs2Nip(const double* xi, double* xo, const double* yi, double* yo, int o, int f) {
    return ryxdCcs2FftNip(xi, xo, yi, yo, o, f);
  }
};

// RCCs (N+2 values) to RCPack / RCPerm (N values), written out.
template <class T>
std::vector<T> toPack(const std::vector<T>& ccs, int n) {
  if (n == 1) return {ccs[0]};
  std::vector<T> out(n);
  out[0] = ccs[0];
  for (int i = 1; i < n - 1; ++i) out[i] = ccs[i + 1];
  out[n - 1] = ccs[n];
  return out;
}
template <class T>
std::vector<T> toPerm(const std::vector<T>& ccs, int n) {
  if (n == 1) return {ccs[0]};
  std::vector<T> out(n);
  out[0] = ccs[0];
  out[1] = ccs[n];
  for (int i = 2; i < n; ++i) out[i] = ccs[i];
  return out;
}

template <class T>
std::vector<LCplx> halfSpectrum(const std::vector<T>& ccs, int n) {
  std::vector<LCplx> v(n / 2 + 1);
  for (int k = 0; k <= n / 2; ++k)
    v[k] = {static_cast<long double>(ccs[2 * k]), static_cast<long double>(ccs[2 * k + 1])};
  return v;
}

template <class T>
void checkRealOrder(int order) {
  using A = RealApi<T>;
  SCOPED_TRACE(testing::Message() << "order " << order << (sizeof(T) == 4 ? " float" : " double"));
  ReportCapture capture;
  const int n = 1 << order;
  Random rng(500u + order);
  std::vector<T> x(n);
  rng.fill(x.data(), n);
  std::vector<LCplx> xl(n);
  for (int i = 0; i < n; ++i) xl[i] = x[i];
  const long double bound = errorBound<T>(order);
  // For real input the positive-exponent spectrum is the conjugate of the
  // forward one.
  const std::vector<LCplx> spectrum = exactTransform(xl, -1);

  for (int dir : {+RYX_Forward, +RYX_Inverse, RYX_Inverse | RYX_KeepScale}) {
    SCOPED_TRACE(testing::Message() << "flags " << dir);
    const int sign = dir & RYX_Forward ? -1 : 1;
    std::vector<LCplx> ref(spectrum.begin(), spectrum.begin() + n / 2 + 1);
    if (sign > 0)
      for (auto& v : ref) v = std::conj(v);
    if ((dir & RYX_Inverse) && !(dir & RYX_KeepScale))
      for (auto& v : ref) v /= static_cast<long double>(n);

    std::vector<T> ccs(n + 2);
    std::copy(x.begin(), x.end(), ccs.begin());
    A::real(ccs.data(), order, dir);
    EXPECT_LE(relativeError(halfSpectrum(ccs, n), ref), bound);
    EXPECT_EQ(ccs[1], T(0));
    EXPECT_EQ(ccs[n + 1], T(0));

    std::vector<T> nip(n + 2);
    A::realNip(x.data(), nip.data(), order, dir);
    EXPECT_TRUE(sameBits(nip.data(), ccs.data(), n + 2));

    const std::vector<T> pack = toPack(ccs, n), perm = toPerm(ccs, n);
    std::vector<T> p = x;
    A::realL(p.data(), order, dir | RYX_RCPackOut);
    EXPECT_TRUE(sameBits(p.data(), pack.data(), n));
    std::vector<T> q = x;
    A::realL(q.data(), order, dir | RYX_RCPermOut);
    EXPECT_TRUE(sameBits(q.data(), perm.data(), n));
    Guarded<T> g(n, sizeof(T));
    A::realLNip(x.data(), g.data(), order, dir | RYX_RCPermOut);
    EXPECT_TRUE(sameBits(g.data(), perm.data(), n));
    EXPECT_TRUE(g.intact());
    Guarded<T> gp(n, 2 * sizeof(T));
    std::memcpy(gp.data(), x.data(), sizeof(T) * n);
    A::realL(gp.data(), order, dir | RYX_RCPackOut);
    EXPECT_TRUE(sameBits(gp.data(), pack.data(), n));
    EXPECT_TRUE(gp.intact());

    // CCS: the real sum over the conjugate-symmetric extension of the
    // spectrum just computed, exponent by direction, 1/N for the inverse
    // (up to order 16; above, the round trip below covers it).
    std::vector<T> c = ccs;
    A::ccs(c.data(), order, dir);
    if (order <= 16) {
      std::vector<LCplx> full(n);
      for (int k = 0; k < n; ++k) {
        if (k <= n / 2)
          full[k] = {static_cast<long double>(ccs[2 * k]), static_cast<long double>(ccs[2 * k + 1])};
        else
          full[k] = std::conj(full[n - k]);
      }
      full[0].imag(0);
      full[n / 2].imag(0);
      std::vector<LCplx> back = exactTransform(full, sign);
      if ((dir & RYX_Inverse) && !(dir & RYX_KeepScale))
        for (auto& v : back) v /= static_cast<long double>(n);
      for (auto& v : back) v.imag(0);
      std::vector<LCplx> got(n);
      for (int i = 0; i < n; ++i) got[i] = c[i];
      EXPECT_LE(relativeError(got, back), 2 * bound);
    }
    std::vector<T> cn(n);
    A::ccsNip(ccs.data(), cn.data(), order, dir);
    EXPECT_TRUE(sameBits(cn.data(), c.data(), n));
    std::vector<T> cp = pack;
    A::ccsL(cp.data(), order, dir | RYX_RCPackIn);
    EXPECT_TRUE(sameBits(cp.data(), c.data(), n));
    std::vector<T> cq(n);
    A::ccsLNip(perm.data(), cq.data(), order, dir | RYX_RCPermIn);
    EXPECT_TRUE(sameBits(cq.data(), c.data(), n));
    Guarded<T> gq(n, sizeof(T));
    A::ccsLNip(pack.data(), gq.data(), order, dir | RYX_RCPackIn);
    EXPECT_TRUE(sameBits(gq.data(), c.data(), n));
    EXPECT_TRUE(gq.intact());
  }

  // Round trip: CCS inverse undoes the real forward transform.
  std::vector<T> rt(n + 2);
  std::copy(x.begin(), x.end(), rt.begin());
  A::real(rt.data(), order, RYX_Forward);
  A::ccs(rt.data(), order, RYX_Inverse);
  std::vector<LCplx> rtl(n);
  for (int i = 0; i < n; ++i) rtl[i] = rt[i];
  EXPECT_LE(relativeError(rtl, xl), 2 * bound);

  // Two signals: bitwise two one-signal calls.
  if (order <= 12) {
    std::vector<T> y(n);
    rng.fill(y.data(), n);
    std::vector<T> xs(n + 2), ys(n + 2), xr(n + 2), yr(n + 2);
    std::copy(x.begin(), x.end(), xs.begin());
    std::copy(y.begin(), y.end(), ys.begin());
    xr = xs;
    yr = ys;
    EXPECT_EQ(A::real2(xs.data(), ys.data(), order, RYX_Forward), RYX_StsOk);
    A::real(xr.data(), order, RYX_Forward);
    A::real(yr.data(), order, RYX_Forward);
    EXPECT_TRUE(sameBits(xs.data(), xr.data(), n + 2));
    EXPECT_TRUE(sameBits(ys.data(), yr.data(), n + 2));
    std::vector<T> xo(n + 2), yo(n + 2);
    EXPECT_EQ(A::real2Nip(x.data(), xo.data(), y.data(), yo.data(), order, RYX_Forward), RYX_StsOk);
    EXPECT_TRUE(sameBits(xo.data(), xr.data(), n + 2));
    EXPECT_TRUE(sameBits(yo.data(), yr.data(), n + 2));
    std::vector<T> xb(n), yb(n);
    EXPECT_EQ(A::ccs2Nip(xr.data(), xb.data(), yr.data(), yb.data(), order, RYX_Inverse), RYX_StsOk);
    EXPECT_EQ(A::ccs2(xr.data(), yr.data(), order, RYX_Inverse), RYX_StsOk);
    EXPECT_TRUE(sameBits(xb.data(), xr.data(), n));
    EXPECT_TRUE(sameBits(yb.data(), yr.data(), n));
    std::vector<LCplx> yl(n), yb2(n);
    for (int i = 0; i < n; ++i) {
      yl[i] = y[i];
      yb2[i] = yb[i];
    }
    EXPECT_LE(relativeError(yb2, yl), 2 * bound);
  }
  EXPECT_TRUE(capture.reports().empty());
}

class RealFftOrders : public testing::TestWithParam<int> {};
TEST_P(RealFftOrders, FloatLayoutsAndDirections) { checkRealOrder<float>(GetParam()); }
TEST_P(RealFftOrders, DoubleLayoutsAndDirections) { checkRealOrder<double>(GetParam()); }
INSTANTIATE_TEST_SUITE_P(Orders0To20, RealFftOrders, testing::Range(0, 21));

// Small-order rules written out.
TEST(RealFft, OrdersZeroAndOne) {
  ReportCapture capture;
  float s[4] = {2.5f, 9.0f, 9.0f, 9.0f};
  ryxsRealFft(s, 0, RYX_Forward);
  EXPECT_EQ(s[0], 2.5f);
  EXPECT_EQ(s[1], 0.0f);
  float l[1] = {4.0f};
  ryxsRealFftl(l, 0, RYX_Forward | RYX_RCPermOut);
  EXPECT_EQ(l[0], 4.0f);
  float o[2] = {7, 7};
  ryxsRealFftNip(l, o, 0, RYX_Forward);
  EXPECT_EQ(o[0], 4.0f);
  EXPECT_EQ(o[1], 0.0f);
  for (int fmt : {+RYX_RCPackOut, +RYX_RCPermOut}) {
    float t[2] = {3.0f, 5.0f};
    ryxsRealFftl(t, 1, RYX_Forward | fmt);
    EXPECT_EQ(t[0], 8.0f);
    EXPECT_EQ(t[1], -2.0f);
  }
  double r[4] = {3.0, 5.0, 9.0, 9.0};
  ryxdRealFft(r, 1, RYX_Forward);
  EXPECT_EQ(r[0], 8.0);
  EXPECT_EQ(r[1], 0.0);
  EXPECT_EQ(r[2], -2.0);
  EXPECT_EQ(r[3], 0.0);
  double c[4] = {8.0, 0.0, -2.0, 0.0};
  ryxdCcsFft(c, 1, RYX_Inverse);
  EXPECT_EQ(c[0], 3.0);
  EXPECT_EQ(c[1], 5.0);
  float cp[2] = {8.0f, -2.0f};
  ryxsCcsFftl(cp, 1, RYX_Inverse | RYX_RCPackIn);
  EXPECT_EQ(cp[0], 3.0f);
  EXPECT_EQ(cp[1], 5.0f);
  EXPECT_TRUE(capture.reports().empty());
}

// Products of packed spectra: the real slots as products rounded once, the
// complex block against the long-double product, nothing beyond N touched.
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
  std::vector<bool> isReal(n, false);
  isReal[0] = true;
  if (n > 1) isReal[perm ? 1 : n - 1] = true;
  const int first = perm ? 2 : 1;
  for (int i = 0; i < n; ++i) {
    if (isReal[i]) {
      EXPECT_EQ(d3[i], static_cast<T>(static_cast<long double>(a[i]) * b[i])) << i;
    }
  }
  for (int i = first; i + 1 < n && !isReal[i]; i += 2) {
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
  for (int fmt : {0, 1}) {
    std::vector<double> x(n), h(n);
    rng.fill(x.data(), n);
    rng.fill(h.data(), n);
    std::vector<double> fx = x, fh = h;
    const int out = fmt ? RYX_RCPermOut : RYX_RCPackOut;
    const int in = fmt ? RYX_RCPermIn : RYX_RCPackIn;
    ryxdRealFftl(fx.data(), order, RYX_Forward | out);
    ryxdRealFftl(fh.data(), order, RYX_Forward | out);
    if (fmt)
      ryxdMpyRCPerm2(fh.data(), fx.data(), order);
    else
      ryxdMpyRCPack2(fh.data(), fx.data(), order);
    ryxdCcsFftl(fx.data(), order, RYX_Inverse | in);
    for (int k = 0; k < n; ++k) {
      long double want = 0, mag = 0;
      for (int j = 0; j < n; ++j) {
        want += static_cast<long double>(x[j]) * h[(k - j + n) % n];
        mag += fabsl(static_cast<long double>(x[j]) * h[(k - j + n) % n]);
      }
      EXPECT_NEAR(static_cast<double>(fx[k]), static_cast<double>(want), static_cast<double>(mag * 1e-13)) << k;
    }
  }
  EXPECT_TRUE(capture.reports().empty());
}

}  // namespace

namespace {

using namespace ryxtest;

// The recombinations against their column formulas written out here in
// scalar float arithmetic, column by column: the four-column rounds of the
// library must give the same bits, the middle column included.
TEST(Recombination, FloatRoundsMatchTheColumnFormulas) {
  for (int order = 2; order <= 12; ++order) {
    const std::uint32_t n = 1u << order, m = n / 2;
    const float* rt = ownsGetRealTwd(order);
    const float* ct = ownsGetCcsTwd(order);
    ASSERT_NE(rt, nullptr);
    ASSERT_NE(ct, nullptr);
    auto ab = [&](const float* t, std::uint32_t k, float& a, float& b) {
      if (n > 8) {
        a = t[8 * ((k - 1) / 4) + (k - 1) % 4];
        b = t[8 * ((k - 1) / 4) + 4 + (k - 1) % 4];
      } else {
        a = t[2 * k];
        b = t[2 * k + 1];
      }
    };
    Random rng(order);
    std::vector<float> z(n);
    rng.fill(z.data(), static_cast<int>(n));
    for (int sign : {1, -1}) {
      SCOPED_TRACE(testing::Message() << "order " << order << " sign " << sign);
      std::vector<float> want = z;
      for (std::uint32_t k = 1; k < m / 2; ++k) {
        const std::uint32_t p = m - k;
        float a, b;
        ab(rt, k, a, b);
        const float kr = z[2 * k], ki = z[2 * k + 1], pr = z[2 * p], pi = z[2 * p + 1];
        const float dr = kr - pr, si = ki + pi;
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
      }
      if (sign == 1 && m >= 2) want[m + 1] = -z[m + 1];
      std::vector<float> got = z;
      ownsRealRecombine(got.data(), m, sign, rt);
      EXPECT_TRUE(sameBits(got.data(), want.data(), static_cast<int>(n)));

      std::vector<float> cwant = z;
      for (std::uint32_t k = 1; k < m / 2; ++k) {
        const std::uint32_t p = m - k;
        float a, b;
        ab(ct, k, a, b);
        const float kr = z[2 * k], ki = z[2 * k + 1], pr = z[2 * p], pi = z[2 * p + 1];
        const float sr = kr + pr, di = ki - pi, dr = kr - pr, si = ki + pi;
        if (sign == 1) {
          const float t1 = b * dr + a * si, t2 = a * dr - b * si;
          cwant[2 * k] = sr - t1;
          cwant[2 * k + 1] = di + t2;
          cwant[2 * p] = sr + t1;
          cwant[2 * p + 1] = t2 - di;
        } else {
          const float t1 = b * dr - a * si, t2 = b * si + a * dr;
          cwant[2 * k] = sr + t1;
          cwant[2 * k + 1] = di + t2;
          cwant[2 * p] = sr - t1;
          cwant[2 * p + 1] = t2 - di;
        }
      }
      if (m >= 2) {
        cwant[m] = z[m] * 2.0f;
        cwant[m + 1] = z[m + 1] * (sign == 1 ? 2.0f : -2.0f);
      }
      std::vector<float> cgot(n, 0.0f);
      cgot[0] = z[0];
      cgot[1] = z[1];
      ownsCcsRecombine(z.data(), cgot.data(), m, sign, ct);
      EXPECT_TRUE(sameBits(cgot.data(), cwant.data(), static_cast<int>(n)));
      std::vector<float> inPlace = z;
      ownsCcsRecombine(inPlace.data(), inPlace.data(), m, sign, ct);
      EXPECT_TRUE(sameBits(inPlace.data(), cwant.data(), static_cast<int>(n)));
    }
  }
}

}  // namespace
