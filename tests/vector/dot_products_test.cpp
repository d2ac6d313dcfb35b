// Dot products: float and double forms against long-double sums within a
// bound of their accumulation chains, the documented orders where they
// decide the last bits, 16-bit totals against exact 64-bit sums reduced
// modulo 2^32 with the scale rules written out, and the argument checks.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <vector>

#include "frame/cpu_dispatch.h"
#include "test_support.h"
#include "vector/dot_kernels.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;
using LD = long double;

const int kLengths[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 15, 16, 17, 23, 24, 25, 31, 32, 33, 39, 40, 255, 1001, 4099};

template <class T> std::complex<LD> wide(const T& x) { return {LD(x.re), LD(x.im)}; }
std::complex<LD> wide(float x) { return {LD(x), 0}; }
std::complex<LD> wide(double x) { return {LD(x), 0}; }
std::complex<LD> wide(short x) { return {LD(x), 0}; }

// Exact product sum in long double (exact for float operands: products
// have 48 bits, sums stay far below 64 bits of headroom for these data),
// with the sum of product magnitudes for the error bound.
template <class A, class B>
std::complex<LD> reference(const A* a, const B* b, int n, LD* mag) {
  std::complex<LD> s = 0;
  *mag = 0;
  for (int i = 0; i < n; ++i) {
    const std::complex<LD> p = wide(a[i]) * wide(b[i]);
    s += p;
    *mag += std::abs(wide(a[i])) * std::abs(wide(b[i])) * 2;
  }
  return s;
}

template <class T> T* fill(Guarded<T>& g, Random& r) {
  r.fill(g.data(), g.size());
  return g.data();
}

std::complex<LD> asComplex(float v) { return {v, 0}; }
std::complex<LD> asComplex(double v) { return {v, 0}; }
std::complex<LD> asComplex(SCplx v) { return {v.re, v.im}; }
std::complex<LD> asComplex(DCplx v) { return {v.re, v.im}; }

// One routine of the float family over every length and a misaligned
// start: the error stays within (chain length + 8) roundings of the
// magnitude sum, where a float chain is at most n/8 + 8 additions long and
// a double one n/2 + 2.
template <class R, class A, class B>
void sweep(const char* name, R (*f)(const A*, const B*, int), LD eps, int chainDiv) {
  Random rng(1234);
  for (int n : kLengths) {
    for (int k : {0, 1, 2}) {
      // Start offsets in whole elements, so every element stays naturally
      // aligned while the blocks' 16- and 32-byte alignment changes.
      Guarded<A> a(n, k * static_cast<int>(sizeof(A)));
      Guarded<B> b(n, (2 - k) * static_cast<int>(sizeof(B)));
      LD mag;
      const std::complex<LD> ref = reference(fill(a, rng), fill(b, rng), n, &mag);
      const std::complex<LD> got = asComplex(f(a.data(), b.data(), n));
      const LD bound = (n / chainDiv + 8) * eps * mag;
      EXPECT_LE(std::fabs(got.real() - ref.real()), bound) << name << " n=" << n;
      EXPECT_LE(std::fabs(got.imag() - ref.imag()), bound) << name << " n=" << n;
      EXPECT_TRUE(a.intact() && b.intact());
    }
  }
}

TEST(DotFloat, AgainstLongDoubleSums) {
  const LD f = std::ldexp(1.0L, -24), d = std::ldexp(1.0L, -53);
  sweep("ryxsDotProd", ryxsDotProd, f, 8);
  sweep("ryxcDotProd", ryxcDotProd, f, 4);
  sweep("ryxscDotProd", ryxscDotProd, f, 4);
  sweep("ryxcsDotProd", ryxcsDotProd, f, 4);
  sweep("ryxdDotProd", ryxdDotProd, d, 2);
  sweep("ryxzDotProd", ryxzDotProd, d, 2);
  sweep("ryxdzDotProd", ryxdzDotProd, d, 2);
  sweep("ryxzdDotProd", ryxzdDotProd, d, 2);
}

// The documented lane order of the float kernel, one lane at a time.
float laneModel(const float* a, const float* b, int n) {
  const int rest = n % 8;
  float total = 0.0f;
  if (n >= 8) {
    float lane[8] = {};
    for (int i = n - 8; i >= rest; i -= 8)
      for (int k = 0; k < 8; ++k) lane[k] += a[i + k] * b[i + k];
    float s[4];
    for (int k = 0; k < 4; ++k) s[k] = lane[k] + lane[k + 4];
    total = (s[0] + s[2]) + (s[1] + s[3]);
  }
  for (int i = 0; i < rest; ++i) total += a[i] * b[i];
  return total;
}

// The complex kernel's lanes: two halves of a four-complex turn, each with
// plain (re*re, im*im) and swapped (re*im, im*re) lanes.
SCplx complexLaneModel(const SCplx* a, const SCplx* b, int n) {
  float plain[8] = {}, swapped[8] = {};
  const auto add = [&](int at, int base) {
    plain[base] += a[at].re * b[at].re, plain[base + 1] += a[at].im * b[at].im;
    swapped[base] += a[at].re * b[at].im, swapped[base + 1] += a[at].im * b[at].re;
  };
  int i = 0;
  for (; i + 4 <= n; i += 4)
    for (int j = 0; j < 4; ++j) add(i + j, (j / 2) * 4 + (j % 2) * 2);
  if (i + 2 <= n) add(i, 0), add(i + 1, 2), i += 2;
  float p[4], q[4];
  for (int k = 0; k < 4; ++k) p[k] = plain[k] + plain[k + 4], q[k] = swapped[k] + swapped[k + 4];
  SCplx r{(p[0] - p[1]) + (p[2] - p[3]), (q[0] + q[1]) + (q[2] + q[3])};
  if (i < n) r.re += a[i].re * b[i].re - a[i].im * b[i].im, r.im += a[i].re * b[i].im + a[i].im * b[i].re;
  return r;
}

// Each instruction-set form, called directly, and the exported routines
// under each dispatch cap follow the lane order bit for bit.
TEST(DotFloat, EveryKernelFormFollowsTheLaneOrder) {
  const bool avx2 = __builtin_cpu_supports("avx2");
  Random rng(61);
  for (int n : kLengths) {
    for (int offset : {0, 4}) {
      Guarded<float> a(n, offset), b(n, 8 - offset);
      Guarded<SCplx> c(n, offset), d(n, 8 - offset);
      fill(a, rng), fill(b, rng), fill(c, rng), fill(d, rng);
      const float want = laneModel(a.data(), b.data(), n);
      const SCplx wantC = complexLaneModel(c.data(), d.data(), n);
      const auto same = [](SCplx x, SCplx y) { return ryxtest::sameBits(&x, &y, 1); };
      const float base = ryx::dot::sse2::dotF32(a.data(), b.data(), n);
      ASSERT_TRUE(ryxtest::sameBits(&want, &base, 1)) << n;
      ASSERT_TRUE(same(wantC, ryx::dot::sse2::dotC32(c.data(), d.data(), n))) << n;
      if (avx2) {
        const float wide = ryx::dot::avx2::dotF32(a.data(), b.data(), n);
        ASSERT_TRUE(ryxtest::sameBits(&want, &wide, 1)) << n;
        ASSERT_TRUE(same(wantC, ryx::dot::avx2::dotC32(c.data(), d.data(), n))) << n;
      }
      for (auto cap : {ryx::cpu::Isa::Sse2, ryx::cpu::Isa::Avx512}) {
        ryx::cpu::setCap(cap);
        const float got = ryxsDotProd(a.data(), b.data(), n);
        EXPECT_TRUE(ryxtest::sameBits(&want, &got, 1)) << n;
        EXPECT_TRUE(same(wantC, ryxcDotProd(c.data(), d.data(), n))) << n;
      }
      ryx::cpu::setCap(ryx::cpu::Isa::Avx512);
    }
  }
  if (!avx2) GTEST_SKIP() << "no AVX2 on this CPU: only the SSE2 form ran";
}

TEST(DotFloat, OutFormsWriteTheValueForm) {
  Random rng(7);
  for (int n : {0, 1, 5, 33}) {
    std::vector<SCplx> c(n + 1), d(n + 1);
    std::vector<float> r(n + 1);
    rng.fill(c.data(), n);
    rng.fill(d.data(), n);
    rng.fill(r.data(), n);
    SCplx out{-7.0f, -7.0f};
    const SCplx v1 = ryxcDotProd(c.data(), d.data(), n);
    ryxcDotProdOut(c.data(), d.data(), n, &out);
    EXPECT_TRUE(ryxtest::sameBits(&out, &v1, 1));
    const SCplx v2 = ryxscDotProd(r.data(), c.data(), n);
    ryxscDotProdOut(r.data(), c.data(), n, &out);
    EXPECT_TRUE(ryxtest::sameBits(&out, &v2, 1));
    const SCplx v3 = ryxcsDotProd(c.data(), r.data(), n);
    ryxcsDotProdOut(c.data(), r.data(), n, &out);
    EXPECT_TRUE(ryxtest::sameBits(&out, &v3, 1));
    // The mixed forms agree with each other: the product is commutative.
    EXPECT_TRUE(ryxtest::sameBits(&v2, &v3, 1));
  }
}

TEST(DotFloat, DocumentedOrders) {
  // Below eight elements the float sum is sequential: 2^24 + 1 + 1 loses
  // both ones (ties to even), a pairwise sum would keep them.
  const float a[7] = {16777216.0f, 1.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f}, ones[7] = {1, 1, 1, 1, 1, 1, 1};
  EXPECT_EQ(ryxsDotProd(a, ones, 3), 16777216.0f);
  EXPECT_EQ(ryxsDotProd(a, ones, 7), 16777216.0f);
  // Eight and more: the lowest n % 8 products come after the lane sum, so
  // here 2^24 (in the lanes) meets the two ones one by one.
  float big[10] = {1.0f, 1.0f, 16777216.0f, 0, 0, 0, 0, 0, 0, 0}, one10[10];
  for (float& x : one10) x = 1.0f;
  EXPECT_EQ(ryxsDotProd(big, one10, 10), 16777216.0f);
  // Double: each pair is summed before it joins the total, so the two ones
  // of the second pair survive against 2^53 where a running sum loses them.
  const double p[4] = {9007199254740992.0, 0.0, 1.0, 1.0}, q[4] = {1, 1, 1, 1};
  EXPECT_EQ(ryxdDotProd(p, q, 4), 9007199254740994.0);
  const DCplx zp[4] = {{9007199254740992.0, 0}, {0, 0}, {1, 0}, {1, 0}}, zq[4] = {{1, 0}, {1, 0}, {1, 0}, {1, 0}};
  EXPECT_EQ(ryxzDotProd(zp, zq, 4).re, 9007199254740994.0);
  EXPECT_EQ(ryxdzDotProd(q, zp, 4).re, 9007199254740994.0);
  EXPECT_EQ(ryxzdDotProd(zp, q, 4).re, 9007199254740994.0);
  // No conjugate: i * i = -1.
  const SCplx i1[1] = {{0, 1}};
  const SCplx r = ryxcDotProd(i1, i1, 1);
  EXPECT_EQ(r.re, -1.0f);
  EXPECT_EQ(r.im, 0.0f);
  const DCplx zi[1] = {{0, 1}};
  EXPECT_EQ(ryxzDotProd(zi, zi, 1).re, -1.0);
}

// ---- 16-bit -------------------------------------------------------------

// The low 32 bits of an exact 64-bit total, as a signed value.
std::int32_t low32(std::int64_t v) {
  std::int64_t m = v % 4294967296LL;
  if (m < 0) m += 4294967296LL;
  return static_cast<std::int32_t>(m >= 2147483648LL ? m - 4294967296LL : m);
}

struct Exact {
  std::int64_t re = 0, im = 0;
};
Exact exactTotal(const short* a, const short* b, int n) {
  Exact t;
  for (int i = 0; i < n; ++i) t.re += std::int64_t{a[i]} * b[i];
  return t;
}
template <class A, class B>
Exact exactTotal(const A* a, const B* b, int n) {
  Exact t;
  for (int i = 0; i < n; ++i) {
    const std::complex<LD> p = wide(a[i]) * wide(b[i]);  // |parts| < 2^31: exact
    t.re += static_cast<std::int64_t>(p.real());
    t.im += static_cast<std::int64_t>(p.imag());
  }
  return t;
}

std::vector<short> extremes16(Random& rng, int n) {
  std::vector<short> v(n + 1);  // one spare, so data() is never null
  for (short& x : v) {
    const int k = rng.i32(0, 3);
    x = static_cast<short>(k == 0 ? -32768 : k == 1 ? 32767 : rng.i32(-32768, 32767));
  }
  return v;
}
std::vector<WCplx> extremesV(Random& rng, int n) {
  std::vector<short> s = extremes16(rng, 2 * n);
  std::vector<WCplx> v(n + 1);
  std::memcpy(v.data(), s.data(), sizeof(short) * 2 * n);
  return v;
}

// floor(log2 |v|) - 14 beyond 16 bits, else 0, by counting.
int autoFactorOf(std::int64_t v) {
  const std::int64_t m = v < 0 ? -v : v;
  if (v >= -32768 && v <= 32767) return 0;
  int k = 0;
  while ((std::int64_t{2} << k) <= m) ++k;
  return k - 14;
}

TEST(DotInt16, ExtTotalsWrapModulo2To32) {
  Random rng(99);
  for (int n : kLengths) {
    const std::vector<short> a = extremes16(rng, n), b = extremes16(rng, n);
    const std::vector<WCplx> c = extremesV(rng, n), d = extremesV(rng, n);
    for (int mode : {0, 1, 3, 5}) {
      int f = 3;
      EXPECT_EQ(ryxwDotProdExt(a.data(), b.data(), n, mode, &f), low32(exactTotal(a.data(), b.data(), n).re));
      EXPECT_EQ(f, 3) << "only mode 4 writes the factor";
      const Exact vv = exactTotal(c.data(), d.data(), n), wv = exactTotal(a.data(), c.data(), n);
      const ICplx x = ryxvDotProdExt(c.data(), d.data(), n, mode, &f);
      EXPECT_EQ(x.re, low32(vv.re));
      EXPECT_EQ(x.im, low32(vv.im));
      const ICplx y = ryxwvDotProdExt(a.data(), c.data(), n, mode, &f);
      const ICplx z = ryxvwDotProdExt(c.data(), a.data(), n, mode, &f);
      EXPECT_EQ(y.re, low32(wv.re));
      EXPECT_EQ(y.im, low32(wv.im));
      EXPECT_EQ(z.re, y.re);
      EXPECT_EQ(z.im, y.im);
      ICplx o{1, 1};
      ryxvDotProdExtOut(c.data(), d.data(), n, mode, &f, &o);
      EXPECT_EQ(o.re, x.re);
      EXPECT_EQ(o.im, x.im);
      ryxwvDotProdExtOut(a.data(), c.data(), n, mode, &f, &o);
      EXPECT_EQ(o.im, y.im);
      ryxvwDotProdExtOut(c.data(), a.data(), n, mode, &f, &o);
      EXPECT_EQ(o.re, y.re);
    }
  }
  // Four products of -32768 squared make 2^32: the total wraps to 0.
  const short m[4] = {-32768, -32768, -32768, -32768};
  EXPECT_EQ(ryxwDotProdExt(m, m, 4, 0, nullptr), 0);
  EXPECT_EQ(ryxwDotProdExt(m, m, 2, 0, nullptr), INT32_MIN);
}

TEST(DotInt16, ExtScaleRuleByExactMode) {
  // A total of 40000 = 200 * 200.
  const short a[1] = {200};
  const short neg[1] = {-200};
  int f = 9;
  EXPECT_EQ(ryxwDotProdExt(a, a, 1, 4, &f), 40000);
  EXPECT_EQ(f, 0);
  f = 2;
  EXPECT_EQ(ryxwDotProdExt(a, a, 1, 2, &f), 10000);
  EXPECT_EQ(ryxwDotProdExt(a, a, 1, 3, &f), 40000) << "saturation and mode 3 leave the total alone";
  EXPECT_EQ(ryxwDotProdExt(a, a, 1, 6, &f), 40000);
  EXPECT_EQ(ryxwDotProdExt(a, neg, 1, 2, &f), -10000);
  f = 3;
  EXPECT_EQ(ryxwDotProdExt(a, neg, 1, 2, &f), -5000);  // -40000 / 8
  f = 7;
  EXPECT_EQ(ryxwDotProdExt(a, neg, 1, 2, &f), -313) << "an arithmetic shift rounds down";
  f = -1;
  EXPECT_EQ(ryxwDotProdExt(a, a, 1, 2, &f), 80000);
  f = -16;  // 40000 * 65536 = 2621440000 wraps in 32 bits
  EXPECT_EQ(ryxwDotProdExt(a, a, 1, 2, &f), low32(40000LL * 65536));
  EXPECT_EQ(ryxwDotProdExt(a, a, 1, 2, nullptr), 40000) << "a null factor is 0";
  const WCplx v[1] = {{200, 100}};
  f = 1;
  const ICplx x = ryxvDotProdExt(v, v, 1, 2, &f);  // (200+100i)^2 = 30000 + 40000i
  EXPECT_EQ(x.re, 15000);
  EXPECT_EQ(x.im, 20000);
}

TEST(DotInt16, NarrowedTotalsShareOneFactor) {
  Random rng(5);
  const short a[1] = {200};
  int f = 0;
  EXPECT_EQ(ryxwDotProd(a, a, 1, 4, &f), 20000);
  EXPECT_EQ(f, 1);
  EXPECT_EQ(ryxwDotProd(a, a, 1, 1, &f), 32767);
  EXPECT_EQ(ryxwDotProd(a, a, 1, 0, &f), static_cast<short>(40000 - 65536));
  // Random totals in mode 4: the factor of the larger part applies to both.
  for (int n : kLengths) {
    const std::vector<short> s = extremes16(rng, n);
    const std::vector<WCplx> c = extremesV(rng, n), d = extremesV(rng, n);
    const Exact w = exactTotal(s.data(), s.data(), n);
    const std::int32_t t = low32(w.re);
    int fw = -5;
    const short rw = ryxwDotProd(s.data(), s.data(), n, 4, &fw);
    EXPECT_EQ(fw, autoFactorOf(t));
    EXPECT_EQ(std::int64_t{rw}, std::int64_t{t} >> fw);  // the factor leaves 16 bits
    const Exact e = exactTotal(c.data(), d.data(), n);
    const std::int32_t re = low32(e.re), im = low32(e.im);
    int fv = -5;
    const WCplx rv = ryxvDotProd(c.data(), d.data(), n, 4, &fv);
    const int want = std::max(autoFactorOf(re), autoFactorOf(im));
    EXPECT_EQ(fv, want) << n;
    EXPECT_EQ(rv.re, static_cast<short>(std::int64_t{re} >> want));
    EXPECT_EQ(rv.im, static_cast<short>(std::int64_t{im} >> want));
    const Exact m = exactTotal(s.data(), c.data(), n);
    const WCplx p = ryxwvDotProd(s.data(), c.data(), n, 1, nullptr), q = ryxvwDotProd(c.data(), s.data(), n, 1, nullptr);
    const auto clamp = [](std::int32_t v) { return static_cast<short>(v > 32767 ? 32767 : v < -32768 ? -32768 : v); };
    EXPECT_EQ(p.re, clamp(low32(m.re)));
    EXPECT_EQ(p.im, clamp(low32(m.im)));
    EXPECT_EQ(q.re, p.re);
    EXPECT_EQ(q.im, p.im);
  }
}

// ---- argument checks ---------------------------------------------------

template <class R> bool isZero(const R& r) {
  R z{};
  return std::memcmp(&r, &z, sizeof r) == 0;
}

struct Expect {
  ReportCapture capture;
  void one(const char* name, const char* stem, const char* context) {
    ASSERT_EQ(capture.reports().size(), 1u) << name << " " << context;
    const auto& r = capture.reports()[0];
    EXPECT_EQ(r.status, RYX_StsBadArg);
    EXPECT_EQ(r.funcName, name);
    EXPECT_EQ(r.context, context) << name;
    EXPECT_EQ(r.file, stem) << name;
    capture.clear();
  }
  void none(const char* name) {
    EXPECT_TRUE(capture.reports().empty()) << name;
    capture.clear();
  }
};

// Pointers first, then the length; n of 0 is valid.
template <class R, class A, class B>
void plainChecks(Expect& e, const char* name, R (*f)(const A*, const B*, int)) {
  A a[2]{};
  B b[2]{};
  EXPECT_TRUE(isZero(f(nullptr, b, -1)));
  e.one(name, "ryxdotp", "Null buffer pointer");
  EXPECT_TRUE(isZero(f(a, nullptr, 2)));
  e.one(name, "ryxdotp", "Null buffer pointer");
  EXPECT_TRUE(isZero(f(a, b, -1)));
  e.one(name, "ryxdotp", "Invalid value");
  EXPECT_TRUE(isZero(f(a, b, 0)));
  e.none(name);
}

template <class R, class A, class B>
void scaledChecks(Expect& e, const char* name, R (*f)(const A*, const B*, int, int, int*)) {
  A a[2]{};
  B b[2]{};
  int sf = 5;
  EXPECT_TRUE(isZero(f(nullptr, b, -1, 4, nullptr)));
  e.one(name, "ryxdotpw", "Null buffer pointer");
  EXPECT_TRUE(isZero(f(a, nullptr, 2, 4, nullptr)));
  e.one(name, "ryxdotpw", "Null buffer pointer");
  EXPECT_TRUE(isZero(f(a, b, -1, 4, nullptr)));
  e.one(name, "ryxdotpw", "Invalid value");
  EXPECT_TRUE(isZero(f(a, b, 2, 4, nullptr)));
  e.one(name, "ryxdotpw", "Null scale factor pointer");
  f(a, b, 2, 5, nullptr);  // only the exact auto mode needs the factor
  f(a, b, 0, 4, &sf);
  e.none(name);
  EXPECT_EQ(sf, 0);
}

// f(a, b, n, val): the Out form with any scale arguments bound.
template <class V, class A, class B, class F>
void outChecks(Expect& e, const char* name, const char* stem, F f) {
  A a[2]{};
  B b[2]{};
  V v{};
  std::memset(&v, 0x5A, sizeof v);
  const V before = v;
  f(nullptr, nullptr, -1, nullptr);
  e.one(name, stem, "val==0");
  f(nullptr, b, 2, &v);
  e.one(name, stem, "Null buffer pointer");
  f(a, b, -1, &v);
  e.one(name, stem, "Invalid value");
  EXPECT_EQ(std::memcmp(&v, &before, sizeof v), 0) << name << ": a failed call wrote its result";
  f(a, b, 0, &v);
  e.none(name);
  EXPECT_TRUE(isZero(v));
}

TEST(DotChecks, OrderTextsAndZeroResults) {
  Expect e;
  plainChecks(e, "ryxsDotProd", ryxsDotProd);
  plainChecks(e, "ryxcDotProd", ryxcDotProd);
  plainChecks(e, "ryxscDotProd", ryxscDotProd);
  plainChecks(e, "ryxcsDotProd", ryxcsDotProd);
  plainChecks(e, "ryxdDotProd", ryxdDotProd);
  plainChecks(e, "ryxzDotProd", ryxzDotProd);
  plainChecks(e, "ryxdzDotProd", ryxdzDotProd);
  plainChecks(e, "ryxzdDotProd", ryxzdDotProd);
  scaledChecks(e, "ryxwDotProd", ryxwDotProd);
  scaledChecks(e, "ryxvDotProd", ryxvDotProd);
  scaledChecks(e, "ryxwvDotProd", ryxwvDotProd);
  scaledChecks(e, "ryxvwDotProd", ryxvwDotProd);
  scaledChecks(e, "ryxwDotProdExt", ryxwDotProdExt);
  scaledChecks(e, "ryxvDotProdExt", ryxvDotProdExt);
  scaledChecks(e, "ryxwvDotProdExt", ryxwvDotProdExt);
  scaledChecks(e, "ryxvwDotProdExt", ryxvwDotProdExt);
  outChecks<SCplx, SCplx, SCplx>(e, "ryxcDotProdOut", "ryxdotp", ryxcDotProdOut);
  outChecks<SCplx, float, SCplx>(e, "ryxscDotProdOut", "ryxdotp", ryxscDotProdOut);
  outChecks<SCplx, SCplx, float>(e, "ryxcsDotProdOut", "ryxdotp", ryxcsDotProdOut);
  // Mode 4 with a null factor: val is still tested first.
  outChecks<ICplx, WCplx, WCplx>(e, "ryxvDotProdExtOut", "ryxdotpw", [](auto a, auto b, int n, ICplx* v) {
    ryxvDotProdExtOut(a, b, n, 0, nullptr, v);
  });
  outChecks<ICplx, short, WCplx>(e, "ryxwvDotProdExtOut", "ryxdotpw", [](auto a, auto b, int n, ICplx* v) {
    ryxwvDotProdExtOut(a, b, n, 0, nullptr, v);
  });
  outChecks<ICplx, WCplx, short>(e, "ryxvwDotProdExtOut", "ryxdotpw", [](auto a, auto b, int n, ICplx* v) {
    ryxvwDotProdExtOut(a, b, n, 0, nullptr, v);
  });
}

}  // namespace
