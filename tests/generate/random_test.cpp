// Random numbers: the integer core, seeding and both congruential lanes
// bitwise against a model written from the rules, the float mapping from
// the record's own scale and offset, the polar method's pair order and
// rejections, moments on 10^5 draws, edge cases and the failure table.
#include <cstdint>

#include "gen_support.h"

namespace gentest {
namespace {

using u32 = std::uint32_t;

// The core as described: the 15-bit seeding sequence, subtract-with-borrow
// on lags 2 and 3 less 18 on a borrow, and the congruential words.
struct Core {
  u32 x1, x2, x3, borrow, lcg = 1131199209u, seedLcg;
  Core(u32 seed, u32 firstBorrow) : x1(seed), borrow(firstBorrow), seedLcg(seed) {
    x2 = next15();
    x3 = next15();
  }
  u32 next15() {
    seedLcg = seedLcg * 214013u + 2531011u;
    return (seedLcg >> 16) & 0x7fffu;
  }
  // Ordinary rule: borrow on a difference below 1. Kernel rule of the
  // 16-bit uniform form: only on a negative difference.
  std::int32_t step(bool negativeOnly = false) {
    std::int64_t d = static_cast<std::int32_t>(x2 - x3 - borrow);
    borrow = negativeOnly ? d < 0 : d < 1;
    const u32 n = static_cast<u32>(d) - (borrow ? 18u : 0u);
    x3 = x2, x2 = x1, x1 = n;
    return static_cast<std::int32_t>(n);
  }
  static u32 lcgNext(u32& l) { return l = l * 69069u + 1013904243u; }
  std::int32_t uniform() {
    const u32 n = static_cast<u32>(step());
    return static_cast<std::int32_t>(n + lcgNext(lcg));
  }
};

template <class St, class T>
struct UniApi {
  void (*init)(T, T, T, St*);
  T (*one)(St*);
  void (*block)(St*, T*, int);
};

// Float uniform forms: seed truncated toward zero (out of range gives the
// integer indefinite), five draws discarded, then int32(n + lcg)*scale +
// offset in wide precision from the record's own fields, which hold
// low + (high-low)/2 and (high-low)*2.328306436539e-10 rounded.
template <class St, class T>
void checkUniform(const UniApi<St, T>& api) {
  const struct { double seed, lo, hi; } cases[] = {{12345, -1, 1}, {0, 0, 100}, {-7.9, 5, -5}, {0.9, 1000, 1000}, {3e9, -3, 8}};
  for (const auto& c : cases) {
    St s;
    api.init(static_cast<T>(c.seed), static_cast<T>(c.lo), static_cast<T>(c.hi), &s);
    const Wide span = static_cast<Wide>(static_cast<T>(c.hi)) - static_cast<T>(c.lo);
    EXPECT_EQ(s.offset, static_cast<T>(static_cast<T>(c.lo) + span / 2));
    EXPECT_EQ(s.scale, static_cast<T>(span * 2.328306436539e-10L));
    const u32 seed = std::fabs(c.seed) >= 2147483648.0 ? 0x80000000u : static_cast<u32>(static_cast<std::int32_t>(c.seed));
    Core m(seed, 0);
    for (int i = 0; i < 5; ++i) m.uniform();
    std::vector<T> got(100);
    for (int i = 0; i < 100; i += 10) got[i] = api.one(&s), api.block(&s, &got[i + 1], 9);
    for (int i = 0; i < 100; ++i) ASSERT_EQ(got[i], static_cast<T>(static_cast<Wide>(m.uniform()) * s.scale + s.offset)) << i;
  }
}

TEST(RandomUniform, FloatFormsBitwiseAgainstTheCore) {
  checkUniform<RyxRandUniF32State, float>({ryxsRandUniInit, ryxsRandUni, ryxsbRandUni});
  checkUniform<RyxRandUniF64State, double>({ryxdRandUniInit, ryxdRandUni, ryxdbRandUni});
}

// A complex sample is two draws of the real form, real part first.
TEST(RandomUniform, ComplexFormsAreTwoRealDraws) {
  RyxRandUniF32State a, b;
  RyxRandUniF64State c, d;
  ryxsRandUniInit(99, -2, 3, &a);
  ryxcRandUniInit(99, -2, 3, &b);
  ryxdRandUniInit(99, -2, 3, &c);
  ryxzRandUniInit(99, -2, 3, &d);
  SCplx cs[5];
  DCplx zs[5];
  ryxcbRandUni(&b, cs, 4);
  ryxcRandUniOut(&b, &cs[4]);
  ryxzbRandUni(&d, zs, 4);
  zs[4] = ryxzRandUni(&d);
  for (int i = 0; i < 5; ++i) {
    ASSERT_EQ(cs[i].re, ryxsRandUni(&a));
    ASSERT_EQ(cs[i].im, ryxsRandUni(&a));
    ASSERT_EQ(zs[i].re, ryxdRandUni(&c));
    ASSERT_EQ(zs[i].im, ryxdRandUni(&c));
  }
  EXPECT_EQ(ryxcRandUni(&b).re, ryxsRandUni(&a));
}

// 10^5 draws: inside [low, high), mean and variance of the uniform law
// within four standard errors; low == high is that constant.
TEST(RandomUniform, MomentsAndRange) {
  const int n = 100000;
  RyxRandUniF64State s;
  ryxdRandUniInit(2024, -3, 5, &s);
  std::vector<double> v(n);
  ryxdbRandUni(&s, v.data(), n);
  double mean = 0, var = 0;
  for (double x : v) {
    ASSERT_TRUE(x >= -3 && x < 5);
    mean += x;
  }
  mean /= n;
  for (double x : v) var += (x - mean) * (x - mean);
  var /= n - 1;
  EXPECT_NEAR(mean, 1.0, 4 * std::sqrt(64.0 / 12 / n));
  EXPECT_NEAR(var, 64.0 / 12, 4 * 64.0 / 12 * std::sqrt(0.8 / n));
  RyxRandUniF32State f;
  ryxsRandUniInit(5, 7.5f, 7.5f, &f);
  for (int i = 0; i < 50; ++i) ASSERT_EQ(ryxsRandUni(&f), 7.5f);
}

// ---- 16-bit uniform ---------------------------------------------------------

// The 16-bit rules: centre and power-of-two span, five discarded draws on
// the ordinary rule, then the two-lane kernel with its own borrow rule;
// single samples from a buffer of 32 that blocks never touch.
struct Uni16Model {
  Core c;
  int mid, shift;
  u32 lcg1;
  std::vector<short> buf;
  size_t pos = 0;
  Uni16Model(u32 seed, short lo, short hi) : c(seed, 0) {
    mid = ((hi + lo) >> 1) - 1;
    const int d = (hi - lo) & ~1;
    int k = 0;
    while (d > 1 && (1 << k) < d) ++k;
    shift = std::min(32 - k, 31);
    lcg1 = c.next15();
    for (int i = 0; i < 5; ++i) c.uniform();
  }
  short map(std::int32_t n, u32 l) const { return static_cast<short>(mid - (static_cast<std::int32_t>(static_cast<u32>(n) + l) >> shift)); }
  void kernel(int count, std::vector<short>& out) {
    if (count & 1) {
      const std::int32_t n = c.step(true);
      out.push_back(map(n, Core::lcgNext(c.lcg)));
    }
    for (int t = 0; t < count / 2; ++t) {
      const std::int32_t n1 = c.step(true), n2 = c.step(true);
      Core::lcgNext(c.lcg);
      lcg1 *= 69069u;
      out.push_back(map(n2, c.lcg));
      out.push_back(map(n1, lcg1));
    }
  }
  short single() {
    if (pos == buf.size()) buf.clear(), kernel(32, buf), pos = 0;
    return buf[pos++];
  }
};

TEST(RandomUniformInt16, BitwiseAgainstTheModel) {
  const struct { u32 seed; short lo, hi; } cases[] = {{1, -100, 100}, {0, 0, 1}, {77777, -32768, 32767}, {5, 10, 10}, {123, 300, -300}, {9, 0, 1000}};
  for (const auto& c : cases) {
    RyxRandUniI16State s, v;
    ryxwRandUniInit(c.seed, c.lo, c.hi, &s);
    ryxvRandUniInit(c.seed, c.lo, c.hi, &v);
    Uni16Model m(c.seed, c.lo, c.hi), mv(c.seed, c.lo, c.hi);
    std::vector<short> expect, got;
    for (int len : {1, 7, 1, 1, 32, 1, 4, 33, 1, 1}) {
      if (len == 1) {
        got.push_back(ryxwRandUni(&s)), expect.push_back(m.single());
      } else {
        std::vector<short> b(len);
        ryxwbRandUni(&s, b.data(), len);
        got.insert(got.end(), b.begin(), b.end());
        m.kernel(len, expect);
      }
    }
    ASSERT_EQ(got, expect) << "seed " << c.seed;
    // The complex forms: a block of n is the kernel on 2n values, a single
    // sample two successive buffer values.
    WCplx w[5];
    ryxvbRandUni(&v, w, 5);
    std::vector<short> ve;
    mv.kernel(10, ve);
    for (int i = 0; i < 5; ++i) ASSERT_TRUE(w[i].re == ve[2 * i] && w[i].im == ve[2 * i + 1]);
    for (int i = 0; i < 20; ++i) {
      const WCplx x = ryxvRandUni(&v);
      const short re = mv.single(), im = mv.single();
      ASSERT_TRUE(x.re == re && x.im == im) << i;
    }
  }
}

// Samples stay in [mid - 2^(k-1) + 1, mid + 2^(k-1)]; a span of 0 or 1
// gives mid or mid + 1 only.
TEST(RandomUniformInt16, SpanRules) {
  RyxRandUniI16State s;
  ryxwRandUniInit(31, 10, 11, &s);
  EXPECT_EQ(s.mid, 9);
  EXPECT_EQ(s.shift, 32u);
  std::vector<short> v(1000);
  ryxwbRandUni(&s, v.data(), 1000);
  bool seen[2] = {};
  for (short x : v) {
    ASSERT_TRUE(x == 9 || x == 10);
    seen[x - 9] = true;
  }
  EXPECT_TRUE(seen[0] && seen[1]);
  ryxwRandUniInit(31, -100, 100, &s);  // d = 200, k = 8
  EXPECT_EQ(s.shift, 24u);
  ryxwbRandUni(&s, v.data(), 1000);
  for (short x : v) ASSERT_TRUE(x >= s.mid - 127 && x <= s.mid + 128) << x;
}

// ---- Gaussian ------------------------------------------------------------

// Polar method from the core with borrow 1 and no discarded draws: the
// second deviate first, the first on the next call; rejected pairs use up
// their draws.
struct GausModel {
  Core c;
  double mean, sd;
  bool has = false;
  double extra = 0;
  GausModel(u32 seed, double m, double s) : c(seed, 1), mean(m), sd(s) {}
  double next() {
    if (has) return has = false, extra;
    has = true;
    double f1, f2, q;
    do {
      f1 = c.uniform() * 4.656612873077e-10;
      f2 = c.uniform() * 4.656612873077e-10;
      q = f1 * f1 + f2 * f2;
    } while (q >= 1 || q == 0);
    const double r = std::sqrt(-2 * std::log(q) / q);
    extra = f1 * r * sd + mean;
    return f2 * r * sd + mean;
  }
};

TEST(RandomGaussian, PairOrderAndRejectionsFollowTheModel) {
  RyxRandGausF64State d;
  RyxRandGausF32State s;
  RyxRandGausI16State w;
  RyxRandGausF64State z;
  ryxdRandGausInit(-17.8, 3, 2, &d);
  ryxzRandGausInit(-17.8, 3, 2, &z);
  ryxsRandGausInit(-17.8f, 3, 2, &s);
  ryxwRandGausInit(-17, 300, 1000, &w);
  GausModel md(static_cast<u32>(-17), 3, 2), ms(static_cast<u32>(-17), 3, 2), mw(static_cast<u32>(-17), 300, 1000),
      mz(static_cast<u32>(-17), 3, 2);
  std::vector<double> dv(40);
  ryxdbRandGaus(&d, dv.data(), 20);
  for (int i = 20; i < 40; ++i) dv[i] = ryxdRandGaus(&d);
  for (int i = 0; i < 40; ++i) {
    ASSERT_NEAR(dv[i], md.next(), 1e-12) << i;
    ASSERT_NEAR(ryxsRandGaus(&s), ms.next(), 1e-5) << i;
    const double e = mw.next();
    ASSERT_NEAR(ryxwRandGaus(&w), static_cast<short>(static_cast<int>(e)), 1) << i;
    const DCplx c = ryxzRandGaus(&z);
    ASSERT_NEAR(c.re, mz.next(), 1e-12);
    ASSERT_NEAR(c.im, mz.next(), 1e-12);
  }
}

TEST(RandomGaussian, ComplexAndBlockFormsMatchSingleCalls) {
  RyxRandGausF32State a, b;
  RyxRandGausI16State v, w;
  ryxsRandGausInit(8, 0, 1, &a);
  ryxcRandGausInit(8, 0, 1, &b);
  ryxwRandGausInit(8, 0, 1000, &w);
  ryxvRandGausInit(8, 0, 1000, &v);
  SCplx c[3];
  WCplx vc[3];
  ryxcbRandGaus(&b, c, 2);
  ryxcRandGausOut(&b, &c[2]);
  ryxvbRandGaus(&v, vc, 2);
  vc[2] = ryxvRandGaus(&v);
  std::vector<float> f(6);
  std::vector<short> s(6);
  ryxsbRandGaus(&a, f.data(), 6);
  ryxwbRandGaus(&w, s.data(), 3);
  for (int i = 3; i < 6; ++i) s[i] = ryxwRandGaus(&w);
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(c[i].re == f[2 * i] && c[i].im == f[2 * i + 1]);
    ASSERT_TRUE(vc[i].re == s[2 * i] && vc[i].im == s[2 * i + 1]);
  }
  EXPECT_EQ(ryxcRandGaus(&b).re, ryxsRandGaus(&a));
}

// 10^5 draws: mean, variance, skew and kurtosis of the normal law within
// four standard errors.
TEST(RandomGaussian, Moments) {
  const int n = 100000;
  RyxRandGausF64State d;
  ryxdRandGausInit(4242, -1.5, 3, &d);
  std::vector<double> v(n);
  ryxdbRandGaus(&d, v.data(), n);
  double m1 = 0, m2 = 0, m3 = 0, m4 = 0;
  for (double x : v) m1 += x;
  m1 /= n;
  for (double x : v) {
    const double z = (x - m1) / 3;
    m2 += z * z, m3 += z * z * z, m4 += z * z * z * z;
  }
  m2 /= n, m3 /= n, m4 /= n;
  EXPECT_NEAR(m1, -1.5, 4 * 3 / std::sqrt(n));
  EXPECT_NEAR(m2, 1, 4 * std::sqrt(2.0 / n));
  EXPECT_NEAR(m3, 0, 4 * std::sqrt(6.0 / n));
  EXPECT_NEAR(m4, 3, 4 * std::sqrt(24.0 / n));
}

// ---- failures ------------------------------------------------------------

struct RandFixture {
  RyxRandUniF32State us{};
  RyxRandUniF64State ud{};
  RyxRandGausF32State gs{};
  RyxRandGausF64State gd{};
  RyxRandGausI16State gw{};
  RyxRandUniI16State uw{};
  float f[4]{};
  double d[4]{};
  short w[4]{};
  SCplx c[4]{};
  DCplx z[4]{};
  WCplx v[4]{};
};

template <class St, class A, class T>
void addRand(std::vector<FailCase>& cases, const std::string& L, const std::string& fam, void (*init)(A, A, A, St*),
             T (*one)(St*), void (*block)(St*, T*, int), St* live, T* dst) {
  const std::string stem = "ryxrand", words = "Null pointer to state structure";
  cases.push_back({"ryx" + L + "Rand" + fam + "Init", stem, words, [=] { return init(A(1), A(0), A(1), nullptr), true; }});
  cases.push_back({"ryx" + L + "Rand" + fam, stem, words, [=] { return isZero(one(nullptr)); }});
  const std::string b = "ryx" + L + "bRand" + fam;
  cases.push_back({b, stem, words, [=] { return block(nullptr, nullptr, 0), true; }});
  cases.push_back({b, stem, "Null pointer to data buffer", [=] { return block(live, nullptr, 0), true; }});
  cases.push_back({b, stem, "Null length of buffer", [=] { return block(live, dst, 0), true; }});
}

TEST(RandomFailures, EveryCheckInOrderWithItsWords) {
  RandFixture fx;
  ryxsRandUniInit(1, 0, 1, &fx.us);
  ryxdRandUniInit(1, 0, 1, &fx.ud);
  ryxsRandGausInit(1, 0, 1, &fx.gs);
  ryxdRandGausInit(1, 0, 1, &fx.gd);
  ryxwRandGausInit(1, 0, 1, &fx.gw);
  ryxwRandUniInit(1, 0, 1, &fx.uw);
  std::vector<FailCase> cases;
  addRand(cases, "s", "Uni", ryxsRandUniInit, ryxsRandUni, ryxsbRandUni, &fx.us, fx.f);
  addRand(cases, "c", "Uni", ryxcRandUniInit, ryxcRandUni, ryxcbRandUni, &fx.us, fx.c);
  addRand(cases, "d", "Uni", ryxdRandUniInit, ryxdRandUni, ryxdbRandUni, &fx.ud, fx.d);
  addRand(cases, "z", "Uni", ryxzRandUniInit, ryxzRandUni, ryxzbRandUni, &fx.ud, fx.z);
  addRand(cases, "s", "Gaus", ryxsRandGausInit, ryxsRandGaus, ryxsbRandGaus, &fx.gs, fx.f);
  addRand(cases, "c", "Gaus", ryxcRandGausInit, ryxcRandGaus, ryxcbRandGaus, &fx.gs, fx.c);
  addRand(cases, "d", "Gaus", ryxdRandGausInit, ryxdRandGaus, ryxdbRandGaus, &fx.gd, fx.d);
  addRand(cases, "z", "Gaus", ryxzRandGausInit, ryxzRandGaus, ryxzbRandGaus, &fx.gd, fx.z);
  addRand(cases, "w", "Gaus", ryxwRandGausInit, ryxwRandGaus, ryxwbRandGaus, &fx.gw, fx.w);
  addRand(cases, "v", "Gaus", ryxvRandGausInit, ryxvRandGaus, ryxvbRandGaus, &fx.gw, fx.v);
  cases.push_back({"ryxcRandUniOut", "ryxrand", "val==0", [&] { return ryxcRandUniOut(&fx.us, nullptr), true; }});
  cases.push_back({"ryxcRandUniOut", "ryxrand", "Null pointer to state structure", [&] { return ryxcRandUniOut(nullptr, fx.c), true; }});
  cases.push_back({"ryxcRandGausOut", "ryxrand", "val==0", [&] { return ryxcRandGausOut(&fx.gs, nullptr), true; }});
  cases.push_back({"ryxcRandGausOut", "ryxrand", "Null pointer to state structure", [&] { return ryxcRandGausOut(nullptr, fx.c), true; }});
  // The 16-bit uniform forms have their own texts; the length goes first.
  for (const char* L : {"w", "v"}) {
    const bool v = L[0] == 'v';
    const std::string init = std::string("ryx") + L + "RandUniInit", one = std::string("ryx") + L + "RandUni",
                      blk = std::string("ryx") + L + "bRandUni";
    cases.push_back({init, "ryxrandw", "statePtr==0", [=] { return (v ? ryxvRandUniInit : ryxwRandUniInit)(1, 0, 1, nullptr), true; }});
    cases.push_back({one, "ryxrandw", "((void*)(0))==statePtr",
                     [=] { return v ? isZero(ryxvRandUni(nullptr)) : isZero(ryxwRandUni(nullptr)); }});
    cases.push_back({blk, "ryxrandw", "statePtr==0", [=] { return v ? ryxvbRandUni(nullptr, nullptr, 0) : ryxwbRandUni(nullptr, nullptr, 0), true; }});
    cases.push_back({blk, "ryxrandw", "sampsLen<=0", [&fx, v] { return v ? ryxvbRandUni(&fx.uw, nullptr, 0) : ryxwbRandUni(&fx.uw, nullptr, -1), true; }});
    cases.push_back({blk, "ryxrandw", "samps==0", [&fx, v] { return v ? ryxvbRandUni(&fx.uw, nullptr, 3) : ryxwbRandUni(&fx.uw, nullptr, 3), true; }});
  }
  runFailures(fx, cases);
}

}  // namespace
}  // namespace gentest
