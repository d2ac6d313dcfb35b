// Tone generators of all six types: accuracy against a long-double cosine,
// exact recurrence rules (the double records' own fields, the float vector
// lanes, a 16-bit model written from the Q14 rules), the choice of path by
// count and alignment, edge cases and the failure table.
#include <cfloat>
#include <cstdint>

#include "gen_support.h"

namespace gentest {
namespace {


using ApiS = GenApi<RyxToneF32State, float, float, float, ryxsToneInit, ryxsTone, ryxsbTone>;
using ApiC = GenApi<RyxToneSCplxState, SCplx, float, float, ryxcToneInit, ryxcTone, ryxcbTone>;
using ApiD = GenApi<RyxToneF64State, double, double, double, ryxdToneInit, ryxdTone, ryxdbTone>;
using ApiZ = GenApi<RyxToneDCplxState, DCplx, double, double, ryxzToneInit, ryxzTone, ryxzbTone>;
using ApiW = GenApi<RyxToneI16State, short, float, short, ryxwToneInit, ryxwTone, ryxwbTone>;
using ApiV = GenApi<RyxToneI16State, WCplx, float, short, ryxvToneInit, ryxvTone, ryxvbTone>;

// Draws n samples in a fixed mix of single calls and blocks of every size
// class (short scalar blocks, vector blocks with and without a tail).
template <class A>
std::vector<typename A::Sample> drawMixed(typename A::State* s, int n) {
  static const int pattern[] = {1, 1, 3, 9, 17, 1, 40, 2, 8, 5, 33, 1, 64, 7};
  std::vector<typename A::Sample> out(n);
  int k = 0;
  for (int i = 0; k < n; ++i) {
    const int len = std::min(pattern[i % 14], n - k);
    if (len == 1) out[k] = A::one(s);
    else A::block(s, out.data() + k, len);
    k += len;
  }
  return out;
}

struct Args {
  double freq, phase, mag;
};
const Args kGrid[] = {{0.0, 1.0, 1000.0}, {0.01, 0.0, 1.0},    {0.1234, 2.5, 3000.0}, {0.25, 6.28, 7.5},
                      {0.3, 4.0, 20000.0}, {0.4999, 1.3, 250.0}, {0.003, 3.14159, 32767.0}, {0.07, 0.5, 16383.0}};

template <class A>
class ToneAll : public ::testing::Test {};
using AllTypes = ::testing::Types<ApiS, ApiC, ApiD, ApiZ, ApiW, ApiV>;
TYPED_TEST_SUITE(ToneAll, AllTypes);

// Bound of the recurrences' drift after k steps. Float and double forms:
// each step adds a rounding error of about eps*mag, which the two-term
// recurrence can amplify by up to (k+1), and the rounded coefficient moves
// the phase by up to k*eps: |err| <= 2*eps*mag*(k+2)^2. The 16-bit forms:
// each Q14 rotation errs by at most one unit plus 2^-14 of the magnitude in
// both gain and angle (about 3*2^-14*mag after descaling), and the output
// shift adds one more: |err| <= 2 + (k+1)*(3*2^-14*mag + 2^(1-shift)).
template <class A>
double bound(const Args& a, int k, int shift) {
  if constexpr (std::is_same_v<typename A::Mag, short>)
    return 2 + (k + 1) * (3 * a.mag / 16384 + std::ldexp(2.0, -shift));
  const double eps = sizeof(typename A::Real) == 4 ? FLT_EPSILON : DBL_EPSILON;
  return 2 * eps * a.mag * (k + 2.0) * (k + 2.0);
}

TYPED_TEST(ToneAll, FollowsTheCosineWithinTheDriftBound) {
  using A = TypeParam;
  for (const Args& a : kGrid) {
    const auto freq = static_cast<typename A::Real>(a.freq), phase = static_cast<typename A::Real>(a.phase);
    const auto mag = static_cast<typename A::Mag>(a.mag);
    SCOPED_TRACE(::testing::Message() << "freq " << a.freq << " phase " << a.phase << " mag " << a.mag);
    typename A::State s;
    A::init(freq, phase, mag, &s);
    int shift = 0;
    if constexpr (std::is_same_v<typename A::State, RyxToneI16State>) shift = s.shift;
    const int n = 300;
    const auto y = drawMixed<A>(&s, n);
    for (int k = 0; k < n; ++k) {
      const Wide arg = 2 * kPi * static_cast<Wide>(freq) * k + static_cast<Wide>(phase);
      const Wide ref[2] = {mag * std::cos(arg), mag * std::sin(arg)};
      for (int c = 0; c < Parts<typename A::Sample>::count; ++c)
        ASSERT_LE(std::fabs(part(y[k], c) - static_cast<double>(ref[c])), bound<A>(a, k, shift)) << "k " << k;
    }
  }
}

// freq 0 is the constant mag*cos(phase) (and mag*sin(phase)) in every form
// and on every path: the recurrences reduce to copies.
TYPED_TEST(ToneAll, ZeroFrequencyIsConstant) {
  using A = TypeParam;
  typename A::State s;
  A::init(0, 2, 1000, &s);
  const auto y = drawMixed<A>(&s, 200);
  for (int k = 1; k < 200; ++k) ASSERT_TRUE(ryxtest::sameBits(&y[0], &y[k], 1)) << k;
  EXPECT_NEAR(part(y[0], 0), 1000 * std::cos(2.0), 1.0);
  A::init(0, 0, 0, &s);
  for (const auto& v : drawMixed<A>(&s, 100)) ASSERT_TRUE(isZero(v));
}

// ---- double forms: bitwise from the record's own fields ---------------

template <class A>
class ToneDouble : public ::testing::Test {};
using ToneDoubleTypes = ::testing::Types<ApiD, ApiZ>;
TYPED_TEST_SUITE(ToneDouble, ToneDoubleTypes);

double re(double v) { return v; }
double re(DCplx v) { return v.re; }
double im(double) { return 0; }
double im(DCplx v) { return v.im; }

TYPED_TEST(ToneDouble, RecurrenceFromRecordFieldsAndBlocksEqualSingleCalls) {
  using A = TypeParam;
  for (const Args& a : kGrid) {
    typename A::State s, t;
    A::init(a.freq, a.phase, a.mag, &s);
    t = s;
    const double c = s.coef;
    double y1[2] = {re(s.y1), im(s.y1)}, y2[2] = {re(s.y2), im(s.y2)};
    const auto y = drawMixed<A>(&s, 400);
    for (int k = 0; k < 400; ++k) {
      const double model[2] = {y1[0] * c - y2[0], y1[1] * c - y2[1]};
      for (int p = 0; p < Parts<typename A::Sample>::count; ++p) {
        ASSERT_EQ(part(y[k], p), model[p]) << k;
        y2[p] = y1[p], y1[p] = model[p];
      }
    }
    for (int k = 0; k < 400; ++k) A::one(&t);
    EXPECT_TRUE(ryxtest::sameBits(&s, &t, 1));
  }
}

// ---- float forms: the vector lane rule and the choice of path -----------

template <class A>
class ToneFloat : public ::testing::Test {};
using ToneFloatTypes = ::testing::Types<ApiS, ApiC>;
TYPED_TEST_SUITE(ToneFloat, ToneFloatTypes);

template <class A>
float* floats(typename A::State* s) { return reinterpret_cast<float*>(s->window); }
float vectorCoef(const RyxToneF32State& s) { return s.coef4; }
float vectorCoef(const RyxToneSCplxState& s) { return s.coef2; }

// A block longer than the scalar limit copies `peel` samples (to bring dst
// to 16 bytes when it is sample-aligned), then runs two four-float lanes:
// its first peel+8 samples are the window's, and from there every float
// obeys f[i+8] = vc*f[i+4] - f[i] in single precision, tail included.
TYPED_TEST(ToneFloat, VectorRuleAtEveryAlignment) {
  using A = TypeParam;
  constexpr int S = Parts<typename A::Sample>::count;
  for (int offset : {0, 2, 4, 6, 8, 10, 12, 14}) {
    for (int n = 8 / S + 1; n <= 48; ++n) {
      typename A::State s;
      A::init(0.0831f, 1.7f, 900.0f, &s);
      for (int i = 0; i < offset % 7; ++i) A::one(&s);  // any window contents
      const typename A::State before = s;
      ryxtest::Guarded<typename A::Sample> buf(n, offset);
      A::block(&s, buf.data(), n);
      ASSERT_TRUE(buf.intact());
      const int peel = offset % (4 * S) == 0 ? ((16 - offset) % 16) / (4 * S) : 0;
      std::vector<float> out(S * n);  // the block may sit at any byte offset
      std::memcpy(out.data(), buf.data(), sizeof(float) * S * n);
      const float* y = out.data();
      const float* w = floats<A>(const_cast<typename A::State*>(&before));
      const float vc = vectorCoef(before);
      SCOPED_TRACE(::testing::Message() << "offset " << offset << " n " << n);
      for (int i = 0; i < std::min(S * peel + 8, S * n); ++i) ASSERT_EQ(y[i], w[i]) << i;
      for (int i = S * peel; i + 8 < S * n; ++i) ASSERT_EQ(y[i + 8], vc * y[i + 4] - y[i]) << i;
    }
  }
}

// Up to the limit (8 real, 4 complex samples) a block is scalar: the next
// window starts with the four floats that followed the block, and the rest
// is rebuilt by the double coef in wide precision. One sample more takes the
// vector lanes: the sample after the first eight comes from vc.
TYPED_TEST(ToneFloat, ScalarLimitAndWindowRebuild) {
  using A = TypeParam;
  constexpr int S = Parts<typename A::Sample>::count, limit = 8 / S;
  alignas(16) typename A::Sample dst[16];
  for (int n = 1; n <= limit + 1; ++n) {
    typename A::State s;
    A::init(0.21f, 0.3f, 5.0f, &s);
    const typename A::State before = s;
    A::block(&s, dst, n);
    const float* w = floats<A>(&s);
    const float* old = floats<A>(const_cast<typename A::State*>(&before));
    const float* y = reinterpret_cast<const float*>(dst);
    for (int i = 4; i < 12; ++i) ASSERT_EQ(w[i], static_cast<float>(static_cast<Wide>(s.coef) * w[i - S] - w[i - 2 * S]));
    if (n <= limit) {
      for (int i = 0; i < 4; ++i) ASSERT_EQ(w[i], old[S * n + i]) << n;
    } else {
      for (int i = 0; i < S; ++i) ASSERT_EQ(y[8 + i], vectorCoef(before) * old[4 + i] - old[i]);
    }
  }
}

// A single call emits window[0] and appends coef*w[11-..] - w[10-..] from
// the stored singles, in wide precision.
TYPED_TEST(ToneFloat, SingleStepAppendsTheWideRecurrence) {
  using A = TypeParam;
  constexpr int S = Parts<typename A::Sample>::count;
  typename A::State s;
  A::init(0.377f, 5.0f, 123.0f, &s);
  for (int k = 0; k < 50; ++k) {
    const typename A::State b = s;
    const auto v = A::one(&s);
    const float* old = floats<A>(const_cast<typename A::State*>(&b));
    const float* w = floats<A>(&s);
    for (int p = 0; p < S; ++p) ASSERT_EQ(part(v, p), old[p]);
    for (int i = 0; i < 12 - S; ++i) ASSERT_EQ(w[i], old[i + S]);
    for (int p = 0; p < S; ++p)
      ASSERT_EQ(w[12 - S + p], static_cast<float>(static_cast<Wide>(b.coef) * old[12 - S + p] - old[12 - 2 * S + p]));
  }
}

// ---- 16-bit forms against the Q14 rules --------------------------------

// The generator as the Q14 rules describe it: Init in double, halves
// rounded away from zero, biased narrowing; a kernel of n samples makes n/2
// turns of two phasors (the even one floored, the odd one rounded half up)
// and, for an odd n, a half turn after which the next call continues.
struct Q14Model {
  int rot[4], shift;
  int a[2], b[2];
  bool cplx;
  std::vector<short> buf;
  size_t pos;

  static int rnd(double v) { return static_cast<int>(std::round(v)); }
  static short q(int x) { return static_cast<short>((x + (x < 0 ? 16384 : 0)) >> 14); }
  static short sat(int v) { return static_cast<short>(std::min(32767, std::max(-32768, v))); }

  Q14Model(float freq, float phase, short mag, bool complex) : cplx(complex) {
    const double w = 2 * 3.141592653589793 * freq;
    const int c2 = rnd(16384 * std::cos(2 * w)), s2 = rnd(16384 * std::sin(2 * w));
    rot[0] = c2, rot[1] = -s2, rot[2] = s2, rot[3] = c2;
    int scale = 1;
    shift = 0;
    while (mag * scale < 16384 && shift < 14) scale *= 2, ++shift;
    const int cw = rnd(16384 * std::cos(w)), sw = rnd(16384 * std::sin(w));
    const double m = mag * scale;
    const int re0 = rnd(std::cos(phase - w) * m), im0 = rnd(std::sin(phase - w) * m);
    a[0] = q(re0 * cw - im0 * sw), a[1] = q(re0 * sw + im0 * cw);
    b[0] = q(a[0] * cw - a[1] * sw), b[1] = q(a[0] * sw + a[1] * cw);
    pos = 0;
  }
  void turn(int* p, int bias) {
    const int re = p[0] * rot[0] + p[1] * rot[1], im = p[0] * rot[2] + p[1] * rot[3];
    p[0] = sat((re + bias) >> 14), p[1] = sat((im + bias) >> 14);
  }
  void emit(const int* p, std::vector<short>& out) {
    for (int c = 0; c < (cplx ? 2 : 1); ++c) {
      const short u = static_cast<short>(p[c]);
      out.push_back(static_cast<short>(static_cast<short>(u + (u < 0 ? 1 << shift : 0)) >> shift));
    }
  }
  void run(int n, std::vector<short>& out) {
    for (int t = 0; t < n / 2; ++t) emit(a, out), emit(b, out), turn(a, 0), turn(b, 8192);
    if (n & 1) {
      emit(a, out);
      int next[2] = {a[0], a[1]};
      turn(next, 8192);
      a[0] = b[0], a[1] = b[1], b[0] = next[0], b[1] = next[1];
    }
  }
  // Single calls take from a buffer of 32 parts; a block first empties it.
  void single(std::vector<short>& out) {
    if (pos == buf.size()) buf.clear(), run(cplx ? 16 : 32, buf), pos = 0;
    for (int c = 0; c < (cplx ? 2 : 1); ++c) out.push_back(buf[pos++]);
  }
  void block(int n, std::vector<short>& out) {
    while (n > 0 && pos < buf.size()) single(out), --n;
    if (n > 0) run(n, out);
  }
};

template <class A>
class ToneInt16 : public ::testing::Test {};
using ToneInt16Types = ::testing::Types<ApiW, ApiV>;
TYPED_TEST_SUITE(ToneInt16, ToneInt16Types);

TYPED_TEST(ToneInt16, BitwiseAgainstTheQ14Model) {
  using A = TypeParam;
  constexpr bool cplx = std::is_same_v<typename A::Sample, WCplx>;
  static const int pattern[] = {1, 5, 1, 1, 40, 3, 1, 16, 31, 1, 2, 64, 9, 1, 33};
  for (const Args& a : kGrid) {
    for (short mag : {static_cast<short>(a.mag), short{1}, short{3}, short{16384}, short{-0}}) {
      Q14Model model(static_cast<float>(a.freq), static_cast<float>(a.phase), mag, cplx);
      RyxToneI16State s;
      A::init(static_cast<float>(a.freq), static_cast<float>(a.phase), mag, &s);
      ASSERT_EQ(s.shift, model.shift);
      std::vector<short> expect;
      std::vector<typename A::Sample> got;
      for (int len : pattern) {
        if (len == 1) got.push_back(A::one(&s)), model.single(expect);
        else {
          std::vector<typename A::Sample> blk(len);
          A::block(&s, blk.data(), len);
          got.insert(got.end(), blk.begin(), blk.end());
          model.block(len, expect);
        }
      }
      ASSERT_EQ(expect.size(), got.size() * (cplx ? 2 : 1));
      ASSERT_EQ(std::memcmp(expect.data(), got.data(), expect.size() * 2), 0) << "freq " << a.freq << " mag " << mag;
    }
  }
}

// mag sets the normalising shift: 16384 and above none, 1 the most (14);
// mag 0 stops at 14 as well and gives zeros.
TEST(ToneInt16Edges, ShiftRangeAndZeroMagnitude) {
  RyxToneI16State s;
  const struct { short mag; int shift; } cases[] = {{32767, 0}, {16384, 0}, {16383, 1}, {8192, 1}, {8191, 2}, {2, 13}, {1, 14}, {0, 14}};
  for (const auto& c : cases) {
    ryxwToneInit(0.1f, 0.0f, c.mag, &s);
    EXPECT_EQ(s.shift, c.shift) << c.mag;
    for (short f : s.fix) EXPECT_EQ(f, 1 << c.shift);
  }
  ryxvToneInit(0.2f, 1.0f, 0, &s);
  WCplx v[40];
  ryxvbTone(&s, v, 40);
  for (const WCplx& x : v) ASSERT_TRUE(x.re == 0 && x.im == 0);
  EXPECT_EQ(s.pos, 16);
  ryxwToneInit(0.2f, 1.0f, 0, &s);
  EXPECT_EQ(s.pos, 32);
  EXPECT_EQ(ryxwTone(&s), 0);
}

// ---- failures ------------------------------------------------------------

struct ToneFixture {
  RyxToneF32State s{};
  RyxToneSCplxState c{};
  RyxToneF64State d{};
  RyxToneDCplxState z{};
  RyxToneI16State w{}, v{};
  RyxToneF32State sDead{};
  RyxToneSCplxState cDead{};
  RyxToneF64State dDead{};
  RyxToneDCplxState zDead{};
  RyxToneI16State wDead{};
  float fs[4]{};
  SCplx fc[4]{};
  double fd[4]{};
  DCplx fz[4]{};
  short fw[4]{};
  WCplx fv[4]{};
  SCplx out{7, 8};
};

template <class R, class M, class St>
void addInitCases(std::vector<FailCase>& cases, const std::string& name, const std::string& stem, void (*init)(R, R, M, St*), St* live) {
  const double twoPi = 6.283185307179586;
  auto add = [&](const char* words, R f, R p, M m, St* s) {
    cases.push_back({name, stem, words, [=] { return init(f, p, m, s), true; }});
  };
  add("Invalid magnitude value", R(0.1), R(1), M(-1), nullptr);
  add("Invalid freq value", R(-0.001), R(1), M(1), nullptr);
  add("Invalid freq value", R(0.5), R(1), M(1), live);
  add("Invalid phase value", R(0.1), R(-0.001), M(1), live);
  add("Invalid phase value", R(0.1), static_cast<R>(twoPi), M(1), live);
  add("Null pointer to state", R(0.1), R(1), M(1), nullptr);
}

template <class St, class T>
void addUseCases(std::vector<FailCase>& cases, const std::string& one, const std::string& blk, const std::string& stem,
                 T (*sample)(St*), void (*block)(St*, T*, int), St* live, St* dead, T* dst) {
  auto zero = [](const T& v) { return isZero(v); };
  cases.push_back({one, stem, "Null pointer to state", [=] { return zero(sample(nullptr)); }});
  cases.push_back({one, stem, "Structure initialization need", [=] { return zero(sample(dead)); }});
  cases.push_back({blk, stem, "Null pointer to state", [=] { return block(nullptr, nullptr, 0), true; }});
  cases.push_back({blk, stem, "Null input buffer pointer", [=] { return block(dead, nullptr, 0), true; }});
  cases.push_back({blk, stem, "Bad number of items", [=] { return block(dead, dst, 0), true; }});
  cases.push_back({blk, stem, "Bad number of items", [=] { return block(live, dst, -3), true; }});
  cases.push_back({blk, stem, "Structure initialization need", [=] { return block(dead, dst, 4), true; }});
}

TEST(ToneFailures, EveryCheckInOrderWithItsWords) {
  ToneFixture fx;
  ryxsToneInit(0.1f, 1, 1, &fx.s);
  ryxcToneInit(0.1f, 1, 1, &fx.c);
  ryxdToneInit(0.1, 1, 1, &fx.d);
  ryxzToneInit(0.1, 1, 1, &fx.z);
  ryxwToneInit(0.1f, 1, 1, &fx.w);
  ryxvToneInit(0.1f, 1, 1, &fx.v);
  std::vector<FailCase> cases;
  addInitCases(cases, "ryxsToneInit", "mvqtone", ryxsToneInit, &fx.s);
  addInitCases(cases, "ryxcToneInit", "mvqtone", ryxcToneInit, &fx.c);
  addInitCases(cases, "ryxdToneInit", "ryxtone", ryxdToneInit, &fx.d);
  addInitCases(cases, "ryxzToneInit", "ryxtone", ryxzToneInit, &fx.z);
  addInitCases(cases, "ryxwToneInit", "ryxtonew", ryxwToneInit, &fx.w);
  addInitCases(cases, "ryxvToneInit", "ryxtonew", ryxvToneInit, &fx.v);
  addUseCases(cases, "ryxsTone", "ryxsbTone", "mvqtone", ryxsTone, ryxsbTone, &fx.s, &fx.sDead, fx.fs);
  addUseCases(cases, "ryxcTone", "ryxcbTone", "mvqtone", ryxcTone, ryxcbTone, &fx.c, &fx.cDead, fx.fc);
  addUseCases(cases, "ryxdTone", "ryxdbTone", "ryxtone", ryxdTone, ryxdbTone, &fx.d, &fx.dDead, fx.fd);
  addUseCases(cases, "ryxzTone", "ryxzbTone", "ryxtone", ryxzTone, ryxzbTone, &fx.z, &fx.zDead, fx.fz);
  addUseCases(cases, "ryxwTone", "ryxwbTone", "ryxtonew", ryxwTone, ryxwbTone, &fx.w, &fx.wDead, fx.fw);
  addUseCases(cases, "ryxvTone", "ryxvbTone", "ryxtonew", ryxvTone, ryxvbTone, &fx.v, &fx.wDead, fx.fv);
  cases.push_back({"ryxcToneOut", "mvqtone", "val==0", [&] { return ryxcToneOut(&fx.c, nullptr), true; }});
  cases.push_back({"ryxcToneOut", "mvqtone", "Null pointer to state", [&] { return ryxcToneOut(nullptr, &fx.out), true; }});
  cases.push_back({"ryxcToneOut", "mvqtone", "Structure initialization need",
                   [&] { return ryxcToneOut(&fx.cDead, &fx.out), true; }});
  runFailures(fx, cases);
}

// The largest accepted phase is the float just below 2*pi; the Out form
// draws the same sample as the plain one.
TEST(ToneFailures, BoundariesPassAndOutMatches) {
  ryxtest::ReportCapture capture;
  RyxToneSCplxState a, b;
  const float below = std::nextafter(static_cast<float>(6.283185307179586), 0.0f);
  ryxcToneInit(0.4999f, below, 0, &a);
  ryxcToneInit(0.0f, below, 2, &b);
  EXPECT_TRUE(capture.reports().empty());
  SCplx viaOut;
  const SCplx plain = ryxcTone(&b);
  ryxcToneInit(0.0f, below, 2, &b);
  ryxcToneOut(&b, &viaOut);
  EXPECT_TRUE(ryxtest::sameBits(&plain, &viaOut, 1));
  EXPECT_TRUE(capture.reports().empty());
}

}  // namespace
}  // namespace gentest
