// 16-bit FFTs: each integer core bit-exact against the model of
// fft_int16_model.h (orders 0-10, every direction, ordering, layout and
// scale mode); the float core against int-to-float, the float routine and
// the shared narrowing; every core against a long-double DFT; core choice;
// Nip, split and two-signal forms against the base forms; the spectrum
// products; every check text in its order; allocation failure.
#include <gtest/gtest.h>

#include <cstring>

#include "alloc_failure.h"
#include "check_cases.h"
#include "fft_int16_model.h"
#include "test_support.h"

namespace {

using m16::S;
using m16::V;
using ryxtest::Random;

constexpr int F = RYX_Forward, I = RYX_Inverse;
constexpr int kInt = RYX_IntCore, kFloat = RYX_FloatCore, kFast = RYX_IntCore | RYX_FastCore;
struct Mode {
  int mode, factor;
  bool given;
};
const Mode kModes[] = {{0, 0, false}, {1, 0, false}, {2, 1, true}, {2, -1, true}, {3, 2, true},
                       {3, 0, false}, {4, 99, true}, {5, 0, false}, {5, 7, true}, {1, 3, true}};

S noise(Random& rnd, std::size_t count, int amp) {
  S x(count);
  for (short& v : x) v = static_cast<short>(rnd.i32(-amp, amp));
  return x;
}
S head(const S& v, std::size_t k) { return S(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(k)); }
std::size_t ccsCount(std::size_t n) { return n == 1 ? 2 : n + 2; }

// ---- Models of whole calls on the integer side ------------------------------

S modelComplex(S in, int order, int flags, bool fast, int mode, int* factor) {
  const std::int64_t n = std::int64_t{1} << order;
  if (order == 0) return m16::outputStep(V(in.begin(), in.end()), 0, mode, factor);
  if (flags & RYX_InReversed) in = m16::reversed(in, order);
  const int g = fast ? 0 : m16::guard(order);
  V x(in.size());
  for (std::size_t i = 0; i < in.size(); ++i) x[i] = m16::w32(std::int64_t{in[i]} << g);
  m16::core(x, n, (flags & F) ? 1 : -1, fast);
  const bool scaled = (flags & I) && !(flags & RYX_KeepScale);
  S out = fast ? S(x.begin(), x.end()) : m16::outputStep(x, g + (scaled ? order : 0), mode, factor);
  if (!(flags & RYX_OutReversed)) out = m16::reversed(out, order);
  if (fast) m16::fastShift(out, order, flags, mode, factor);
  return out;
}

// Real forward or (ccs) backward transform in `layout` (0 RCCs, 1 RCPack,
// 2 RCPerm). Recombination: halved (real) sums sr, si, dr, di of Z[k] and
// Z[m-k], P = (dr, si) times the row of W^k (W^-k for sign -1); the 32-bit
// core ran forward, so for sign -1 it reads Z[m-k] as Z[k] (real) or stores
// the columns mirrored (CCS). CCS: no halving, rounded product, middle
// doubled and conjugated for sign -1.
S modelPacked(const S& in, int order, int flags, int layout, bool fast, bool ccs, int mode, int* factor) {
  const std::int64_t n = std::int64_t{1} << order, m = n / 2;
  const bool scaled = (flags & I) && !(flags & RYX_KeepScale);
  const int sign = (flags & F) ? 1 : -1, g = fast ? 0 : m16::guard(order);
  auto add = [fast](std::int64_t a, std::int64_t b) { return fast ? m16::sat(a + b) : m16::w32(a + b); };
  V X(n + 2, 0), z(n + 2, 0);  // spectrum X[0..N/2], half-length values z
  if (order < 2) {
    const std::int64_t a = in[0], b = order ? in[ccs ? (layout ? 1 : 2) : 1] : 0;
    if (ccs) return m16::outputStep(order ? V{a + b, a - b} : V{a}, scaled ? order : 0, mode, factor);
    X = order ? V{a + b, 0, a - b, 0} : V{a, 0};
  } else if (!ccs) {
    z.resize(n);
    for (std::int64_t i = 0; i < n; ++i) z[i] = m16::w32(std::int64_t{in[i]} << g);
    m16::core(z, m, fast ? sign : 1, fast);
    z = m16::reversed(z, order - 1);
    X[0] = add(z[0], z[1]), X[2 * m] = add(z[0], -z[1]);
    for (std::int64_t k = 1; k < m / 2; ++k) {
      const bool swap = !fast && sign < 0;
      const std::int64_t *u = &z[2 * (swap ? m - k : k)], *v = &z[2 * (swap ? k : m - k)];
      const std::int64_t sr = m16::w32(u[0] + v[0]) >> 1, si = m16::w32(u[1] + v[1]) >> 1;
      std::int64_t dr = m16::w32(u[0] - v[0]) >> 1, di = m16::w32(u[1] - v[1]) >> 1, pi = si;
      int c, s;
      m16::q14(sign > 0 ? k : n - k, n, c, s);
      m16::rot(dr, pi, c, s, fast);
      X[2 * k] = add(sr, pi), X[2 * k + 1] = add(di, -dr);
      X[2 * (m - k)] = add(sr, -pi), X[2 * (m - k) + 1] = add(fast ? -di : m16::w32(-di), -dr);
    }
    X[m] = z[m], X[m + 1] = sign > 0 ? (fast ? m16::sat(-z[m + 1]) : m16::w32(-z[m + 1])) : z[m + 1];
  } else {
    X[0] = in[0], X[2 * m] = in[m16::nyquistAt(layout, n)];
    for (std::int64_t k = 1; k < m; ++k) X[2 * k] = in[m16::placeOf(layout, k, 0)], X[2 * k + 1] = in[m16::placeOf(layout, k, 1)];
    for (auto& v : X) v = m16::w32(v << g);
    for (std::int64_t k = 1; k < m / 2; ++k) {
      const std::int64_t p = m - k, sr = add(X[2 * k], X[2 * p]), di = add(X[2 * k + 1], -X[2 * p + 1]);
      std::int64_t pr = add(X[2 * k], -X[2 * p]), pi = add(X[2 * k + 1], X[2 * p + 1]);
      int c, s;
      m16::q14(sign > 0 ? k : n - k, n, c, s);
      m16::rot(pr, pi, c, s, fast, true);
      const bool mirror = !fast && sign < 0;
      const std::int64_t at = mirror ? p : k, ap = mirror ? k : p;
      z[2 * at] = add(sr, -pi), z[2 * at + 1] = add(di, pr), z[2 * ap] = add(sr, pi), z[2 * ap + 1] = add(pr, -di);
    }
    const std::int64_t twice = add(X[m + 1], X[m + 1]);
    z[m] = add(X[m], X[m]), z[m + 1] = sign > 0 ? twice : (fast ? m16::sat(-twice) : m16::w32(-twice));
    z[0] = add(X[0], X[2 * m]), z[1] = add(X[0], -X[2 * m]);
    z.resize(n);
    m16::core(z, m, fast ? sign : 1, fast);
    S out = fast ? S(z.begin(), z.end()) : m16::outputStep(z, g + (scaled ? order : 0), mode, factor);
    if (fast) m16::fastShift(out, order, flags, mode, factor);
    return m16::reversed(out, order - 1);
  }
  V bins16(layout == 0 ? ccsCount(n) : n, 0);
  bins16[0] = X[0];
  if (n > 1) bins16[m16::nyquistAt(layout, n)] = X[2 * m];
  for (std::int64_t k = 1; k < m; ++k) bins16[m16::placeOf(layout, k, 0)] = X[2 * k], bins16[m16::placeOf(layout, k, 1)] = X[2 * k + 1];
  if (order < 2 || !fast) return m16::outputStep(bins16, order < 2 ? (scaled ? order : 0) : g + (scaled ? order : 0), mode, factor);
  S out(bins16.begin(), bins16.end());
  m16::fastShift(out, order, flags, mode, factor);
  return out;
}

S runComplex(S x, int order, int flags, int mode, int* factor) {
  ryxvFft(reinterpret_cast<WCplx*>(x.data()), order, flags, mode, factor);
  return x;
}
using Fn = void (*)(short*, int, int, int, int*);
S run(Fn fn, S x, std::size_t room, int order, int flags, int mode, int* factor) {
  x.resize(std::max(room, x.size()));
  fn(x.data(), order, flags, mode, factor);
  return x;
}

// ---- Integer cores, bit for bit --------------------------------------------------

TEST(Int16Fft, IntegerCoresMatchTheModelBitForBit) {
  ryxtest::ReportCapture quiet;
  Random rnd(161);
  const Fn realFn[] = {ryxwRealFft, ryxwRealFftl, ryxwRealFftl}, ccsFn[] = {ryxwCcsFft, ryxwCcsFftl, ryxwCcsFftl};
  const int outFlag[] = {0, RYX_RCPackOut, RYX_RCPermOut}, inFlag[] = {0, RYX_RCPackIn, RYX_RCPermIn};
  for (const bool fast : {false, true})
    for (int order = 0; order <= 10; ++order)
      for (const int flags : {F, I, I | RYX_KeepScale, F | RYX_InReversed, I | RYX_OutReversed})
        for (const Mode& md : kModes) {
          const std::size_t n = std::size_t{1} << order;
          const int core = fast ? kFast : kInt, amp = fast ? 16000 >> order : (md.mode == 0 ? 32767 : 20000);
          int fl = md.factor, fm = md.factor;
          int *pl = md.given ? &fl : nullptr, *pm = md.given ? &fm : nullptr;
          const S x = noise(rnd, 2 * n + 2, amp);
          ASSERT_EQ(runComplex(head(x, 2 * n), order, flags | core, md.mode, pl),
                    modelComplex(head(x, 2 * n), order, flags, fast && order > 0, md.mode, pm))
              << "fast " << fast << " order " << order << " flags " << flags << " mode " << md.mode;
          ASSERT_EQ(fl, fm);
          const int layout = (flags >> 4) % 3, dir = flags & 3;  // layouts ride on the flag sets
          const std::size_t bins16 = layout ? n : ccsCount(n);
          ASSERT_EQ(head(run(realFn[layout], head(x, n), bins16, order, dir | core | outFlag[layout], md.mode, pl), bins16),
                    modelPacked(head(x, n), order, dir, layout, fast, false, md.mode, pm))
              << "real, layout " << layout;
          ASSERT_EQ(fl, fm);
          ASSERT_EQ(head(run(ccsFn[layout], head(x, bins16), bins16, order, (dir ^ 3) | core | inFlag[layout], md.mode, pl), n),
                    modelPacked(head(x, bins16), order, dir ^ 3, layout, fast, true, md.mode, pm))
              << "ccs, layout " << layout;
          ASSERT_EQ(fl, fm);
        }
  EXPECT_TRUE(quiet.reports().empty());
}

// The float core: int to float, the float routine with the same flags,
// round-and-clamp (modes 0, 1) or the shared float narrowing.
TEST(Int16Fft, FloatCoreIsIntToFloatTransformAndNarrowing) {
  ryxtest::ReportCapture quiet;
  Random rnd(162);
  for (int order = 0; order <= 12; ++order)
    for (const Mode& md : kModes) {
      const int n = 1 << order, count[2] = {2 * n, n};
      const S x = noise(rnd, 2 * n, 32767);
      int fl = md.factor, fr = md.factor;
      const S lib[2] = {runComplex(x, order, I | RYX_OutReversed | kFloat, md.mode, md.given ? &fl : nullptr),
                        run(ryxwRealFftl, head(x, n), n, order, F | RYX_RCPermOut | kFloat, md.mode, md.given ? &fl : nullptr)};
      for (int form = 0; form < 2; ++form) {
        std::vector<float> f(2 * n);
        S ref(count[form]);
        ryxsbIntToFloat(x.data(), f.data(), count[form], 16, 0);
        if (form == 0 && order > 0) ryxcFft(reinterpret_cast<SCplx*>(f.data()), order, I | RYX_OutReversed);
        if (form == 1) ryxsRealFftl(f.data(), order, F | RYX_RCPermOut);
        if (md.mode <= 1)
          ryxsbFloatToInt(f.data(), ref.data(), count[form], 16, RYX_RoundNearest | RYX_ClipRange);
        else
          ownScaleArrayF32(f.data(), ref.data(), count[form], md.mode, md.given ? &fr : nullptr);
        if (form == 0 && order == 0) ref = m16::outputStep(V(x.begin(), x.end()), 0, md.mode, md.given ? &fr : nullptr);
        ASSERT_EQ(head(lib[form], count[form]), ref) << "form " << form << " order " << order << " mode " << md.mode;
      }
      ASSERT_EQ(fl, fr);
    }
  EXPECT_TRUE(quiet.reports().empty());
}

// Which core runs: flags first, then the order (fast only up to order 10).
TEST(Int16Fft, CoreChoiceFollowsFlagsAndOrder) {
  Random rnd(163);
  auto same = [&](int order, int flagsA, int flagsB) {
    const S in = noise(rnd, std::size_t{2} << order, 3000 >> (order / 2));
    return runComplex(in, order, F | flagsA, 1, nullptr) == runComplex(in, order, F | flagsB, 1, nullptr);
  };
  EXPECT_TRUE(same(7, 0, kInt));
  EXPECT_TRUE(same(8, 0, kFloat));
  EXPECT_FALSE(same(8, 0, kInt));
  EXPECT_TRUE(same(11, kFast, kInt));
  EXPECT_FALSE(same(10, kFast, kInt));
  EXPECT_TRUE(same(9, kFloat | RYX_FastCore, kFloat));
  EXPECT_TRUE(same(5, RYX_FastCore, kFast));
  // Full scale: the fast core saturates, the 32-bit core at order 9 is exact.
  const S full(1024, 32767);
  EXPECT_EQ(runComplex(full, 9, F | kFast, 0, nullptr)[0], 32767);
  int f = 7;
  const S exact = runComplex(full, 9, F | kInt, 4, &f);
  EXPECT_EQ(f, 9);
  EXPECT_EQ(exact[0], 32767);
  runComplex(full, 3, F | kFast, 4, &f);
  EXPECT_EQ(f, 0);  // auto scale in the fast core reports 0
  const S dc(16, 30000);  // mode 0: the float core clamps, the 32-bit core wraps
  EXPECT_EQ(runComplex(dc, 3, F | kFloat, 0, nullptr)[0], 32767);
  EXPECT_EQ(runComplex(dc, 3, F | kInt, 0, nullptr)[0], static_cast<short>(8 * 30000));
}

// Accuracy, result times 2^factor against a long-double DFT (inverse /N),
// complex and real forward. Bounds in output LSB: 32-bit core
// 3 + |X|max * order / 2^13 (Q14 twiddles, one final rounding); fast core
// 2 * order + N/4 + the same (every stage truncates, later stages carry the
// error with their gain: about N/8 measured); float core 1. Plus one unit
// of the reported factor. The CCS inverse of the scaled real spectrum,
// with the factor undone, returns the signal within 2 + order + 2^factor.
TEST(Int16Fft, AllCoresAreCloseToTheExactDft) {
  Random rnd(164);
  for (int order = 1; order <= 10; ++order)
    for (const int core : {kInt, kFast, kFloat})
      for (const bool real : {false, true})
        for (const int dir : {F, I}) {
          if (real && dir == I) continue;
          const std::size_t n = std::size_t{1} << order;
          const S x = noise(rnd, 2 * n, core == kFast ? 30000 >> order : 2000);
          int factor = 0;
          const int mode = core == kFast ? 1 : 4;
          const S out = real ? run(ryxwRealFft, head(x, n), n + 2, order, F | core, mode, &factor)
                             : runComplex(x, order, dir | core, mode, &factor);
          std::vector<ryxtest::LCplx> lx(n);
          for (std::size_t i = 0; i < n; ++i) lx[i] = real ? ryxtest::LCplx(x[i]) : ryxtest::LCplx(x[2 * i], x[2 * i + 1]);
          const auto ref = ryxtest::referenceFft(lx, dir == F ? -1 : 1);
          const long double unit = ldexpl(1.0L, factor), div = dir == I ? n : 1;
          long double peak = 0, err = 0;
          for (std::size_t k = 0; k < (real ? n / 2 + 1 : n); ++k) {
            peak = std::max(peak, std::abs(ref[k]) / div);
            err = std::max({err, fabsl(out[2 * k] * unit - ref[k].real() / div), fabsl(out[2 * k + 1] * unit - ref[k].imag() / div)});
          }
          const long double base = core == kFloat ? 1.0L : core == kFast ? 2.0L * order + n / 4.0L : 3.0L;
          EXPECT_LE(err, base + peak * order / 8192 + unit) << "order " << order << " core " << core << " real " << real;
          if (!real || core == kFast) continue;
          int undo = -factor;
          const S y = run(ryxwCcsFft, out, n + 2, order, I | core, 3, &undo);
          for (std::size_t i = 0; i < n; ++i) ASSERT_LE(std::abs(y[i] - x[i]), 2 + order + unit) << "round trip " << order;
        }
}

// Nip, split and two-signal forms give the base forms' bits.
TEST(Int16Fft, NipSplitAndTwoSignalFormsEqualTheBaseForms) {
  ryxtest::ReportCapture quiet;
  Random rnd(165);
  for (int order = 0; order <= 9; order += 3)
    for (const int core : {0, kInt, kFloat, kFast}) {
      const std::size_t n = std::size_t{1} << order, bins16 = ccsCount(n);
      const S x = noise(rnd, 2 * n + 2, 20000 >> order), y = noise(rnd, n + 2, 500);
      int fb = 0, f1 = 0, f2 = 0, fx = 0, fy = 0;
      const S base = runComplex(head(x, 2 * n), order, I | core, 4, &fb);
      S out(2 * n + 2), outY(n + 2), re(n), im(n), reOut(n), imOut(n);
      ryxvFftNip(reinterpret_cast<const WCplx*>(x.data()), reinterpret_cast<WCplx*>(out.data()), order, I | core, 4, &f1);
      EXPECT_EQ(head(out, 2 * n), base);
      EXPECT_EQ(f1, fb);
      for (std::size_t i = 0; i < n; ++i) re[i] = x[2 * i], im[i] = x[2 * i + 1];
      ryxvrFftNip(re.data(), im.data(), reOut.data(), imOut.data(), order, I | core, 4, &f2);
      ryxvrFft(re.data(), im.data(), order, I | core, 4, &f1);
      EXPECT_EQ(re, reOut);
      EXPECT_EQ(im, imOut);
      EXPECT_EQ(f1, fb);  // on the float side one factor for both arrays, as for WCplx
      S packed(2 * n);
      for (std::size_t i = 0; i < n; ++i) packed[2 * i] = re[i], packed[2 * i + 1] = im[i];
      if (core != kFloat && !(core == 0 && order >= 8)) EXPECT_EQ(packed, base);

      const std::pair<Fn, int> inPlace[] = {{ryxwRealFft, F}, {ryxwRealFftl, F | RYX_RCPackOut}, {ryxwCcsFft, I}, {ryxwCcsFftl, I | RYX_RCPackIn}};
      void (*nip[])(const short*, short*, int, int, int, int*) = {ryxwRealFftNip, ryxwRealFftlNip, ryxwCcsFftNip, ryxwCcsFftlNip};
      for (int form = 0; form < 4; ++form) {
        const std::size_t count = form == 0 ? bins16 : n, room = form == 2 ? bins16 : count;
        nip[form](x.data(), out.data(), order, inPlace[form].second | core, 1, nullptr);
        EXPECT_EQ(head(out, count), head(run(inPlace[form].first, head(x, room), room, order, inPlace[form].second | core, 1, nullptr), count));
      }
      S x2 = head(x, n + 2), y2 = y;
      EXPECT_EQ(ryxwReal2Fft(x2.data(), y2.data(), order, F | core, 4, &f1), RYX_StsOk);
      ryxwReal2FftNip(x.data(), out.data(), y.data(), outY.data(), order, F | core, 4, &f2);
      EXPECT_EQ(head(out, bins16), head(x2, bins16));
      EXPECT_EQ(head(outY, bins16), head(y2, bins16));
      const S ox = run(ryxwRealFft, head(x, n), bins16, order, F | core, 4, &fx), oy = run(ryxwRealFft, head(y, n), bins16, order, F | core, 4, &fy);
      const bool floatSide = order > 0 && (core == kFloat || (core == 0 && order >= 8));
      EXPECT_EQ(f1, floatSide ? std::max(fx, fy) : fy);  // float side: one factor; else y's
      if (!floatSide) EXPECT_TRUE(head(x2, bins16) == head(ox, bins16) && head(y2, bins16) == head(oy, bins16));
      S cx = head(x, n + 2), cy = y;
      EXPECT_EQ(ryxwCcs2Fft(cx.data(), cy.data(), order, I | core, 1, nullptr), RYX_StsOk);
      ryxwCcs2FftNip(x.data(), out.data(), y.data(), outY.data(), order, I | core, 1, nullptr);
      EXPECT_EQ(head(cx, n), head(out, n));
      EXPECT_EQ(head(cy, n), head(outY, n));
    }
  EXPECT_TRUE(quiet.reports().empty());
}

// Products: the real places by their own rules, the complex block as
// ryxvbMpy3 gives it, one factor under auto scaling.
TEST(Int16Fft, PackedProductsFollowTheirRules) {
  short a[8] = {3, 200, 3, 4, 5, 6, 7, 300}, b[8] = {1, 300, 1, 2, 3, 4, 5, 200}, d[8];
  int f = 1;
  ryxwMpyRCPack3(a, b, d, 0, 2, &f);
  EXPECT_EQ(d[0], 2);  // 3, rounded half up by one place
  ryxwMpyRCPack3(a, b, d, 3, 3, &f);
  EXPECT_EQ(d[7], 30000);
  a[7] = 8, b[7] = 6, f = 0;
  ryxwMpyRCPerm3(a, b, d, 3, 4, &f);  // 200 * 300 needs one place; the block follows
  WCplx ref[3];
  int fi = 0;
  ryxvbMpy3(reinterpret_cast<const WCplx*>(a + 2), reinterpret_cast<const WCplx*>(b + 2), ref, 3, 4, &fi);
  EXPECT_EQ(f, 1);
  EXPECT_EQ(fi, 0);
  EXPECT_EQ(d[1], 30000);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(d[2 + 2 * k], ref[k].re >> 1);
  short big[4] = {2, 32767, 32767, 2}, one[4] = {1, 32767, 32767, 1}, p[2] = {300, 300}, q[2] = {300, 300};
  WCplx v{32767, 32767}, r;
  ryxwMpyRCPack2(one, big, 2, 4, &f);  // the block's factor is the larger: the reals follow it
  ryxvbMpy3(&v, &v, &r, 1, 4, &fi);
  EXPECT_EQ(f, fi);
  EXPECT_EQ(big[0], 2 >> fi);
  EXPECT_EQ(big[1], r.re);
  ryxwMpyRCPerm2(p, q, 1, 0, nullptr);
  EXPECT_EQ(q[0], static_cast<short>(90000));  // mode 0 wraps, mode 1 clamps
  ryxwMpyRCPerm2(p, p, 1, 1, nullptr);
  EXPECT_EQ(p[1], 32767);
}

TEST(Int16Fft, ArgumentChecksInTheirOrder) {
  short s[16] = {}, t[16] = {};
  WCplx* v = reinterpret_cast<WCplx*>(s);
  int f = 0;
  const char* w = "ryxfftw";
  const std::vector<ryxtest::CheckCase> cases = {
      RYX_CHECK_CASE(w, "order<0", ryxvFft(v, -1, F, 0, &f)),
      RYX_CHECK_CASE(w, "order>31", ryxvFft(v, 32, F, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 8192) && (flags & 16384)", ryxvFft(v, 3, RYX_Init | kInt | kFloat, 0, &f)),
      RYX_CHECK_CASE(w, "samps==0", ryxvFft(nullptr, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 1) && (flags & 2)", ryxvFft(v, 3, F | I, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 1)==0 && (flags & 2)==0", ryxvFft(v, 3, 0, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 64) && (flags & 128)", ryxvFft(v, 3, F | 64 | 128, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 64) && (flags & 32)", ryxvFft(v, 3, F | 64 | 32, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 32) && (flags & 128)", ryxvFft(v, 3, F | 32 | 128, 0, &f)),
      RYX_CHECK_CASE(w, "(scaleMode & 0x0002) && (scaleMode & 0x0004)", ryxvFft(v, 3, F, 6, &f)),
      RYX_CHECK_CASE(w, "scaleFactor==0", ryxvFft(v, 3, F, 4, nullptr)),
      RYX_CHECK_CASE(w, "order<0", ryxvFftNip(v, v, -1, F, 0, &f)),
      RYX_CHECK_CASE(w, "inSamps==0", ryxvFftNip(nullptr, v, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "outSamps==0", ryxvFftNip(v, nullptr, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "reSamps==0", ryxvrFft(nullptr, t, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "imSamps==0", ryxvrFft(s, nullptr, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 8192) && (flags & 16384)", ryxvrFft(s, t, 3, kInt | kFloat | F, 0, &f)),
      RYX_CHECK_CASE(w, "reInSamps==0", ryxvrFftNip(nullptr, t, s, t, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "imInSamps==0", ryxvrFftNip(s, nullptr, s, t, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "reOutSamps==0", ryxvrFftNip(s, t, nullptr, t, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "imOutSamps==0", ryxvrFftNip(s, t, s, nullptr, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "order<0", ryxwRealFft(s, -3, F, 0, &f)),
      RYX_CHECK_CASE(w, "order>31", ryxwCcsFft(s, 40, I, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 8192) && (flags & 16384)", ryxwRealFftl(s, 3, RYX_Init | kInt | kFloat, 0, &f)),
      RYX_CHECK_CASE(w, "samps==0", ryxwRealFftl(nullptr, 3, F | RYX_RCPackOut, 0, &f)),
      RYX_CHECK_CASE(w, "inSamps==0", ryxwRealFftlNip(nullptr, t, 3, F | RYX_RCPackOut, 0, &f)),
      RYX_CHECK_CASE(w, "outSamps==0", ryxwCcsFftNip(s, nullptr, 3, I, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 1) && (flags & 2)", ryxwRealFft(s, 3, F | I, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 1)==0 && (flags & 2)==0", ryxwCcsFftl(s, 3, RYX_RCPackIn, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 256) && (flags & 512)", ryxwRealFftl(s, 0, F | 256 | 512, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 256)==0 && (flags & 512)==0", ryxwRealFftlNip(s, t, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 1024) && (flags & 4096)", ryxwCcsFftlNip(s, t, 3, I | 1024 | 4096, 0, &f)),
      RYX_CHECK_CASE(w, "(flags & 1024)==0 && (flags & 4096)==0", ryxwCcsFftl(s, 3, I, 0, &f)),
      RYX_CHECK_CASE(w, "(scaleMode & 0x0002) && (scaleMode & 0x0004)", ryxwRealFftNip(s, t, 3, F, 7, &f)),
      RYX_CHECK_CASE(w, "scaleFactor==0", ryxwCcsFft(s, 3, I, 4, nullptr)),
      RYX_CHECK_CASE(w, "xSamps==0", ryxwReal2Fft(nullptr, t, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "ySamps==0", ryxwCcs2Fft(s, nullptr, 3, I, 0, &f)),
      RYX_CHECK_CASE(w, "xInSamps==0", ryxwReal2FftNip(nullptr, t, s, t, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "xOutSamps==0", ryxwReal2FftNip(s, nullptr, s, t, 3, F, 0, &f)),
      RYX_CHECK_CASE(w, "yInSamps==0", ryxwCcs2FftNip(s, t, nullptr, t, 3, I, 0, &f)),
      RYX_CHECK_CASE(w, "yOutSamps==0", ryxwCcs2FftNip(s, t, s, nullptr, 3, I, 0, &f)),
      RYX_CHECK_CASE(w, "order>31", ryxwMpyRCPack2(s, t, 32, 0, &f)),
      RYX_CHECK_CASE(w, "src==0", ryxwMpyRCPerm2(nullptr, t, 3, 0, &f)),
      RYX_CHECK_CASE(w, "dst==0", ryxwMpyRCPack2(s, nullptr, 3, 0, &f)),
      RYX_CHECK_CASE(w, "srcA==0", ryxwMpyRCPack3(nullptr, s, t, 3, 0, &f)),
      RYX_CHECK_CASE(w, "srcB==0", ryxwMpyRCPerm3(s, nullptr, t, 3, 0, &f)),
      RYX_CHECK_CASE(w, "dst==0", ryxwMpyRCPerm3(s, s, nullptr, 3, 0, &f)),
      RYX_CHECK_CASE(w, "scaleFactor==0", ryxwMpyRCPack3(s, s, t, 3, 4, nullptr)),
  };
  ryxtest::runCheckCases(cases, [&] { return S(s, s + 16) == S(16, 0) && S(t, t + 16) == S(16, 0) && f == 0; });
  // Under RYX_Init only the order and core checks run; mode 5 may have a
  // null factor; the two-signal forms return the stored status.
  ryxtest::ReportCapture capture;
  ryxvFft(nullptr, 3, RYX_Init | F | I | 64 | 128, 6, nullptr);
  ryxvFft(v, 3, F | kInt, 5, nullptr);
  EXPECT_EQ(ryxwReal2Fft(nullptr, nullptr, 5, RYX_Init | kInt, 4, nullptr), RYX_StsOk);
  EXPECT_EQ(ryxwCcs2Fft(nullptr, nullptr, 9, RYX_Init, 0, nullptr), RYX_StsOk);
  EXPECT_TRUE(capture.reports().empty());
}

// A refused allocation costs one purge of every table and a retry; a
// second refusal is "No working memory", the samples untouched.
TEST(Int16Fft, AllocationFailureRetriesOnceThenReports) {
  for (const int core : {kInt, kFloat, kFast}) {
    auto freeAll = [] { ryxvFreeTwdTbls(), ryxcFreeTwdTbls(); };
    const S x(66, 100);
    freeAll();
    const S ref = run(ryxwRealFft, x, 66, 6, F | core, 1, nullptr);
    freeAll();
    {
      ryxtest::ReportCapture capture;
      ryxtest::FailAllocation fail(1);
      EXPECT_EQ(run(ryxwRealFft, x, 66, 6, F | core, 1, nullptr), ref);
      EXPECT_TRUE(capture.reports().empty());
      EXPECT_EQ(fail.refused(), 1);
    }
    freeAll();
    ryxtest::ReportCapture capture;
    ryxtest::FailAllocation fail(1, true);
    EXPECT_EQ(runComplex(x, 5, F | core, 1, nullptr), x);
    ASSERT_EQ(capture.reports().size(), 1u);
    EXPECT_EQ(capture.reports()[0].status, RYX_StsNoMem);
    EXPECT_EQ(capture.reports()[0].context, "No working memory");
    EXPECT_EQ(capture.reports()[0].funcName, "ryxvFft");
  }
}

}  // namespace
