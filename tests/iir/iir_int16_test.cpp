// 16-bit IIR filters against integer and double models written from the
// rules: normalisation by a0 in float, the tap exponent and the cascade's
// fraction bits, quantisation ties to even, the transposed recursion with
// the fixed scale folded into the taps, the automatic restart rule, the
// cascade's integer path with its two bits of headroom and its double path
// narrowed as floats. Streams in random blocks; both forms must agree.
#include <gtest/gtest.h>

#include "alloc_failure.h"
#include "iir_support.h"
#include "../fir/int16_model.h"
#include "ryxcore/filter_int16.h"

namespace {

using namespace int16model;
using i32 = std::int32_t;

short fix(float v, int bits) { return static_cast<short>(std::nearbyint(std::ldexp(static_cast<double>(v), bits))); }
float mulF(float a, float b) { return static_cast<float>(static_cast<double>(a) * b); }

// Arbitrary order: b[0..order], then -a[1..order] quantised.
struct Arb {
  int order, fb;
  std::vector<short> b, na;
};
Arb quantArb(std::vector<float> t, int order) {
  const float r = static_cast<float>(1.0 / t[order + 1]);
  std::vector<float> n;
  for (int i = 0; i <= order; ++i) n.push_back(mulF(t[i], r));
  for (int i = 1; i <= order; ++i) n.push_back(mulF(t[order + 1 + i], r));
  Arb a{order, tapExp(n), {}, {0}};
  for (int i = 0; i <= order; ++i) a.b.push_back(fix(n[i], a.fb));
  for (int i = 1; i <= order; ++i) a.na.push_back(static_cast<short>(-fix(n[order + i], a.fb)));
  return a;
}

// One step with fixed scale f folded in; *v the sum before saturation.
short stepArb(const Arb& a, std::vector<i32>& d, short x, int f, i32* v) {
  i64 b0 = a.b[0];
  if (f > 0) b0 = f > 31 ? 0 : static_cast<std::uint16_t>(a.b[0]) >> f;
  auto bk = [&](int k) { return f > 0 ? a.b[k] >> std::min(f, 15) : a.b[k]; };
  auto nak = [&](int k) { return f < 0 ? a.na[k] >> std::min(-f, 15) : a.na[k]; };
  const int shift = f < 0 ? a.fb + f : a.fb;
  *v = wrap32(b0 * x + (a.order ? d[0] : 0)) >> (shift < 0 || shift > 31 ? 31 : shift);
  const short y = sat(*v);
  if (a.order == 0) return y;
  for (int k = 1; k < a.order; ++k) d[k - 1] = wrap32(i64{d[k]} + nak(k) * y + bk(k) * x);
  d[a.order - 1] = wrap32(i64{nak(a.order)} * y + bk(a.order) * x);
  return y;
}

bool over(i32 v) { return v > 32767 || v <= -32768; }

// A block (single = one call of the single-sample form) under a mode.
std::vector<short> runArb(const Arb& a, std::vector<i32>& d, const std::vector<short>& x, int mode, int sf,
                          bool single, int* factor) {
  std::vector<short> y(x.size());
  i32 v;
  const int f = (mode & 2) ? sf : 0;
  if ((mode >= 4 && !single) || (mode == 4 && single)) {
    if (x.size() == 1) {
      stepArb(a, d, x[0], 0, &v);
      int s = 0;
      while (over(v)) v >>= ++s;
      *factor = s;
      return {static_cast<short>(v)};
    }
    for (int s = 0;; ++s) {
      std::vector<i32> line = d;
      bool again = false;
      for (size_t i = 0; i < x.size() && !again; ++i) {
        y[i] = stepArb(a, line, static_cast<short>(x[i] >> std::min(s, 15)), 0, &v);
        again = over(v) && s < 16;
      }
      if (!again) return d = line, *factor = s, y;
    }
  }
  if (a.order == 0 && single) {
    const i64 b0 = f > 0 ? static_cast<std::uint16_t>(a.b[0]) >> f : a.b[0];
    const int sh = f < 0 ? a.fb + f : a.fb;
    return {sat((b0 * x[0] + (i64{1} << (sh - 1))) >> (f > 0 ? sh + f : sh))};
  }
  for (size_t i = 0; i < x.size(); ++i) y[i] = stepArb(a, d, x[i], f, &v);
  return y;
}

std::vector<float> randomArb(std::mt19937& rng, int order) {
  std::uniform_real_distribution<float> u(-1.0f, 1.0f);
  std::vector<float> t(2 * order + 2);
  for (float& v : t) v = u(rng);
  t[order + 1] = 1.5f;
  for (int k = 1; k <= order; ++k) t[order + 1 + k] *= 0.6f / order;  // mild feedback
  return t;
}

TEST(IirInt16, ArbitraryOrderMatchesModel) {
  std::mt19937 rng(1663);
  const int modes[][2] = {{0, 0}, {1, 0}, {2, 2}, {3, -1}, {2, 0}, {3, 20}, {4, 0}, {6, 1}};
  for (int order : {0, 1, 2, 3, 4, 7}) {
    const std::vector<float> taps = randomArb(rng, order);
    const Arb a = quantArb(taps, order);
    for (auto [mode, sf] : modes) {
      for (int amp : {300, 32767}) {
        SCOPED_TRACE(testing::Message() << "order " << order << " mode " << mode << " sf " << sf << " amp " << amp);
        std::vector<float> own = taps;
        RyxIirTapState ts{};
        RyxIirDlyState ds{}, ds1{};
        std::vector<int> line(order + 1), line1(order + 1);
        ryxwIirlInit(0, own.data(), order, &ts);
        ASSERT_EQ(ts.reserved, a.fb);
        ryxwIirlInitDlyl(&ts, line.data(), &ds);
        ryxwIirlInitDlyl(&ts, line1.data(), &ds1);
        RyxIirState st{}, st1{};
        ryxwIirInit(1, taps.data(), order, &st);
        ryxwIirInit(0, taps.data(), order, &st1);
        const std::vector<short> x = randomSamples(rng, 160, amp);
        std::vector<i32> d(order), d1(order), dh(order);
        inBlocks(rng, x.size(), 40, [&](size_t in, int n) {
          const std::vector<short> xs(x.begin() + in, x.begin() + in + n);
          std::vector<short> got(n), high(n);
          int f = sf, fh = sf, fm = 0;
          ryxwbIirl(&ts, &ds, xs.data(), got.data(), n, mode, &f);
          ASSERT_EQ(got, runArb(a, d, xs, mode, sf, false, &fm)) << "block at " << in;
          if (mode >= 4) { EXPECT_EQ(f, fm); }
          ryxwbIir(&st, xs.data(), high.data(), n, mode, &fh);
          ASSERT_EQ(high, got);
          for (int i = 0; i < n; ++i) {
            int f1 = sf;
            const short y = ryxwIirl(&ts, &ds1, xs[i], mode, &f1);
            ASSERT_EQ(y, runArb(a, d1, {xs[i]}, mode, sf, true, &fm)[0]) << "sample " << in + i;
            if (mode == 4) { EXPECT_EQ(f1, fm); }
            int fh1 = sf;
            ASSERT_EQ(ryxwIir(&st1, xs[i], mode, &fh1), y);
          }
        });
        ryxIirFree(&st);
        ryxIirFree(&st1);
      }
    }
  }
}

// Cascade: integer path in mode 0, double path otherwise.
struct Bq {
  int q, fb;
  std::vector<short> c;  // gain, then -a1 -a2 b1 b2 per section
};
Bq quantBq(const std::vector<float>& t, int q) {
  std::vector<float> n(1, 1.0f);
  for (int s = 0; s < q; ++s) {
    const float* p = &t[6 * s];
    const float rb = static_cast<float>(1.0 / p[0]), ra = static_cast<float>(1.0 / p[3]);
    n.insert(n.end(), {-mulF(p[4], ra), -mulF(p[5], ra), mulF(p[1], rb), mulF(p[2], rb)});
    n[0] = mulF(mulF(n[0], p[0]), ra);
  }
  float m = 0;
  for (float v : n) m = std::max(m, std::fabs(v));
  int fb = 0;
  while (fb < 15 && std::ldexp(1.0, fb + 1) <= std::fabs(32767.0 / m)) ++fb;
  Bq b{q, fb, {}};
  for (float v : n) b.c.push_back(fix(v, fb));
  return b;
}

short bqInt(const Bq& b, std::vector<short>& d, short x) {
  i64 t = i64{x >> 1} * b.c[0];
  for (int s = 0; s < b.q; ++s) {
    const short* c = &b.c[1 + 4 * s];
    const i64 A = i64{c[0]} * d[2 * s] + i64{c[1]} * d[2 * s + 1], B = i64{c[2]} * d[2 * s] + i64{c[3]} * d[2 * s + 1];
    const short w = static_cast<short>(wrap32(t + 4 * A) >> (b.fb + 2));
    d[2 * s + 1] = d[2 * s], d[2 * s] = w;
    t = wrap32(t + 4 * A + 4 * B);
  }
  return static_cast<short>(sat(wrap32(t) >> b.fb) * 2);
}

float bqFloat(const Bq& b, std::vector<float>& d, short x) {
  auto tap = [&](int i) { return static_cast<double>(std::ldexp(static_cast<float>(b.c[i]), -b.fb)); };
  double y = x * tap(0);
  for (int s = 0; s < b.q; ++s) {
    float* p = &d[2 * s];
    const double w = y + tap(1 + 4 * s) * p[0] + tap(2 + 4 * s) * p[1];
    y = w + tap(3 + 4 * s) * p[0] + tap(4 + 4 * s) * p[1];
    p[1] = p[0], p[0] = static_cast<float>(w);
  }
  return static_cast<float>(y);
}

TEST(IirInt16, CascadeMatchesModel) {
  std::mt19937 rng(1664);
  std::uniform_real_distribution<float> u(-0.5f, 0.5f);
  for (int q : {1, 2, 3}) {
    std::vector<float> taps;
    for (int s = 0; s < q; ++s) taps.insert(taps.end(), {1.0f + u(rng), u(rng), u(rng), 1.0f, u(rng), 0.3f * u(rng)});
    const Bq b = quantBq(taps, q);
    for (int mode : {0, 1, 4}) {
      SCOPED_TRACE(testing::Message() << "sections " << q << " mode " << mode);
      std::vector<float> own = taps;
      RyxIirTapState ts{};
      RyxIirDlyState ds{};
      std::vector<int> line(2 * q);
      ryxwIirlInitBq(0, own.data(), q, &ts);
      ASSERT_EQ(ts.reserved, b.fb);
      ryxwIirlInitDlyl(&ts, line.data(), &ds);
      RyxIirState st{};
      ryxwIirInitBq(0, taps.data(), q, &st);
      const std::vector<short> x = randomSamples(rng, 120, 20000);
      std::vector<short> di(2 * q);
      std::vector<float> df(2 * q);
      inBlocks(rng, x.size(), 40, [&](size_t in, int n) {
        std::vector<short> got(n), high(n), want(n);
        std::vector<float> ys;
        int f = 0, fh = 0;
        ryxwbIirl(&ts, &ds, &x[in], got.data(), n, mode, &f);
        ryxwbIir(&st, &x[in], high.data(), n, mode, &fh);
        for (int i = 0; i < n; ++i) {
          if (mode == 0) want[i] = bqInt(b, di, x[in + i]);
          else ys.push_back(bqFloat(b, df, x[in + i]));
        }
        int fm = 0;
        if (mode == 4)
          for (float y : ys) fm = std::max(fm, std::fabs(y) > 32767 ? std::ilogb(y) - 14 : 0);
        for (int i = 0; i < n && mode != 0; ++i) {
          const double v = std::trunc(std::ldexp(static_cast<double>(ys[i]), -fm));
          want[i] = mode == 1 ? sat(static_cast<i64>(v)) : static_cast<short>(static_cast<i64>(v));
        }
        ASSERT_EQ(got, want) << "block at " << in;
        ASSERT_EQ(high, got);
        if (mode == 4) { EXPECT_EQ(f, fm); }
        for (int i = 0; i < n && mode == 0; ++i) EXPECT_EQ(got[i] % 2, 0);
      });
      ryxIirFree(&st);
    }
  }
}

TEST(IirInt16, SetUpRulesAndChecks) {
  ryxtest::ReportCapture rec;
  // Gain 1 over 16 bits gives the plain exponent; fewer bits give more.
  std::vector<float> t = {0.2f, 0.1f, 1.0f, -0.3f}, g = t, h = t;
  RyxIirTapState a{}, b{}, c{};
  ryxwIirlInit(0, t.data(), 1, &a);
  ryxwIirlInitGain(0, g.data(), 1, &b, 1.0f, 16);
  EXPECT_EQ(a.reserved, b.reserved);
  ryxwIirlInitGain(0, h.data(), 1, &c, 1.0f, 12);
  EXPECT_GT(c.reserved, a.reserved);
  // iirType 2 adopts the caller's array.
  std::vector<float> v = {1.0f, 2.0f};
  float* p = v.data();
  ryxwIirlInit(2, reinterpret_cast<float*>(&p), 0, &a);
  EXPECT_EQ(p, nullptr);
  EXPECT_EQ(a.taps, v.data());
  EXPECT_TRUE(rec.reports().empty());
  // Checks, each with its text and stem; a null state returns -10.
  float taps[6] = {1, 0, 0, 1, 0, 0}, zero[6] = {0, 0, 0, 1, 0, 0}, arb[4] = {1, 0.5f, 1, 0.2f};
  float* nullInner = nullptr;
  short s[2] = {};
  RyxIirTapState fresh{};
  RyxIirDlyState ds{};
  RyxIirState st{}, dead{};
  ryxwIirInit(0, arb, 1, &st);
  struct Row {
    std::function<void()> call;
    const char *func, *context, *file;
  };
  const char *L = "ryxiirlw", *H = "ryxiirhw";
  const Row rows[] = {
      {[&] { ryxwIirlInit(0, taps, 1, nullptr); }, "ryxwIirlInit", "tapStPtr==0", L},
      {[&] { ryxwIirlInit(0, nullptr, 1, &fresh); }, "ryxwIirlInit", "taps==0", L},
      {[&] { ryxwIirlInit(0, taps, -1, &fresh); }, "ryxwIirlInit", "order<0", L},
      {[&] { ryxwIirlInit(3, taps, 1, &fresh); }, "ryxwIirlInit", "iirType out of range", L},
      {[&] { ryxwIirlInit(2, reinterpret_cast<float*>(&nullInner), 1, &fresh); }, "ryxwIirlInit",
       "*((float**)taps)==0", L},
      {[&] { ryxwIirlInit(0, zero + 3, 0, &fresh); }, "ryxwIirlInit", "taps[order+1] equals zero", L},
      {[&] { ryxwIirlInitGain(0, taps, 1, &fresh, -1.0f, 16); }, "ryxwIirlInitGain", "Gain < zero", L},
      {[&] { ryxwIirlInitBq(0, taps, 0, &fresh); }, "ryxwIirlInitBq", "numQuads<=0", L},
      {[&] { ryxwIirlInitBq(0, zero, 1, &fresh); }, "ryxwIirlInitBq", "taps[?] equals zero", L},
      {[&] { ryxwIirlInitDlyl(&fresh, nullptr, &ds); }, "ryxwIirlInitDlyl", "structure *tapStPtr wasn't initialized", L},
      {[&] { ryxwIirlInitDlyl(&a, nullptr, nullptr); }, "ryxwIirlInitDlyl", "dlyStPtr==0", L},
      {[&] { EXPECT_EQ(ryxwIirl(nullptr, &ds, 1, 0, nullptr), -10); }, "ryxwIirl", "tapStPtr==0", L},
      {[&] { EXPECT_EQ(ryxwIirl(&fresh, &ds, 1, 0, nullptr), 0); }, "ryxwIirl", "structure *tapStPtr wasn't initialized", L},
      {[&] { ryxwbIirl(&a, &ds, nullptr, s, 1, 0, nullptr); }, "ryxwbIirl", "inSamps==0", L},
      {[&] { ryxwbIirl(&a, &ds, s, nullptr, 1, 0, nullptr); }, "ryxwbIirl", "outSamps==0", L},
      {[&] { ryxwbIirl(&a, &ds, s, s, 0, 0, nullptr); }, "ryxwbIirl", "numIters <= 0", L},
      {[&] { ryxwIirInit(0, taps, 1, nullptr); }, "ryxwIirInit", "statePtr==0", H},
      {[&] { ryxwIirInitGain(0, nullptr, 1, &dead, 1.0f, 16); }, "ryxwIirInit", "tapVals==0", H},
      {[&] { ryxwIirInitBq(2, taps, 1, &dead); }, "ryxwIirInitBq", "iirType is out of range", H},
      {[&] { ryxwIirInit(0, taps, 1, &st); }, "ryxwIirInit",
       "IIR filter state structure is already initialized! Use ryxIirFree to free it", H},
      {[&] { ryxwIir(&dead, 1, 0, nullptr); }, "ryxwIir", "IIR filter wasn't initialized", H},
      {[&] { ryxwbIir(nullptr, s, s, 1, 0, nullptr); }, "ryxwbIir", "statePtr==0", H},
  };
  for (const Row& r : rows) {
    rec.clear();
    r.call();
    ASSERT_FALSE(rec.reports().empty()) << r.context;
    EXPECT_EQ(rec.reports()[0].funcName, r.func) << r.context;
    EXPECT_EQ(rec.reports()[0].context, r.context);
    EXPECT_EQ(rec.reports()[0].file, r.file) << r.context;
  }
  // A low-level failure under the high-level block: its report, then the
  // trace line. Out of memory in the cascade's set-up, its double path and
  // the high-level set-up.
  rec.clear();
  ryxwbIir(&st, s, s, 0, 0, nullptr);
  ASSERT_EQ(rec.reports().size(), 2u);
  EXPECT_EQ(rec.reports()[1].funcName, "ryxwbIir");
  EXPECT_EQ(rec.reports()[1].status, RYX_StsBacktrace);
  RyxIirState bq{};
  rec.clear();
  ryxwIirInitBq(0, taps, 1, &bq);
  for (auto call : std::vector<std::function<void()>>{[&] { ryxwIirlInitBq(0, taps, 1, &fresh); },
                                                       [&] { ryxwbIir(&bq, s, s, 2, 1, nullptr); },
                                                       [&] { ryxwIirInit(0, arb, 1, &dead); }}) {
    rec.clear();
    {
      ryxtest::FailAllocation fail(1);
      call();
    }
    ASSERT_FALSE(rec.reports().empty());
    EXPECT_EQ(rec.reports()[0].status, RYX_StsNoMem) << rec.reports()[0].funcName << ": " << rec.reports()[0].context;
  }
  EXPECT_EQ(dead.initMark, 0);
  ryxIirFree(&bq);
  ryxIirFree(&st);
}

}  // namespace
