// Triangle generators: all six types against the closed-form wave in long
// double with a drift bound, the accumulator rules bitwise from the
// record's own fields (single steps and blocks differ on purpose), the line
// table's placement, edge cases and the failure table.
#include <cfloat>
#include <cstdint>

#include "gen_support.h"

namespace gentest {
namespace {


using TriS = GenApi<RyxTrnglF32State, float, float, float, ryxsTrnglInit, ryxsTrngl, ryxsbTrngl>;
using TriC = GenApi<RyxTrnglSCplxState, SCplx, float, float, ryxcTrnglInit, ryxcTrngl, ryxcbTrngl>;
using TriD = GenApi<RyxTrnglF64State, double, double, double, ryxdTrnglInit, ryxdTrngl, ryxdbTrngl>;
using TriZ = GenApi<RyxTrnglDCplxState, DCplx, double, double, ryxzTrnglInit, ryxzTrngl, ryxzbTrngl>;
using TriW = GenApi<RyxTrnglI16State, short, float, short, ryxwTrnglInit, ryxwTrngl, ryxwbTrngl>;
using TriV = GenApi<RyxTrnglWCplxState, WCplx, float, short, ryxvTrnglInit, ryxvTrngl, ryxvbTrngl>;

struct Args {
  double freq, phase, mag, asym;
};
const Args kGrid[] = {{0.01, 0.0, 1000, 0.0},   {0.1234, 2.5, 3000, 1.0},  {0.3, 4.0, 20000, -2.0}, {0.45, 1.0, 100, 3.0},
                      {0.4999, 6.0, 250, -3.1}, {0.07, 3.14159, 30000, 0.5}, {0.0, 1.3, 500, 0.2},   {0.2, 0.5, 0, 0.0}};

// The wave at phase p in [0, 2*pi).
Wide wave(Wide p, Wide mag, Wide asym) {
  const Wide fall = kPi + asym, rise = kPi - asym;
  return p < fall ? mag * (1 - 2 * p / fall) : mag * (2 * (p - fall) / rise - 1);
}

template <class A>
std::vector<typename A::Sample> drawMixed(typename A::State* s, int n) {
  static const int pattern[] = {1, 3, 9, 1, 17, 2, 40, 1, 5, 64, 4, 33};
  std::vector<typename A::Sample> out(n);
  for (int k = 0, i = 0; k < n; ++i) {
    const int len = std::min(pattern[i % 12], n - k);
    if (len == 1) out[k] = A::one(s);
    else A::block(s, out.data() + k, len);
    k += len;
  }
  return out;
}

template <class A>
class TriAll : public ::testing::Test {};
using TriTypes = ::testing::Types<TriS, TriC, TriD, TriZ, TriW, TriV>;
TYPED_TEST_SUITE(TriAll, TriTypes);

// Drift bound after k samples. Accumulators: each step rounds with
// relative error eps on values up to S = mag + the largest step or fold,
// and a reflection scales the error by at most R = max(rise/fall,
// fall/rise): |err| <= 4*eps*S*R*(k+2). Phase queue: each lane's phase
// gains eps*2*pi per step and the stored step is off by eps*4*pi, so the
// phase is off by up to eps*4*pi*(k+4); the slope 2*mag/min(fall, rise)
// turns that into value, plus the roundings of the line itself. The
// 16-bit forms round to an integer at the end.
template <class A>
double bound(const Args& a, int k) {
  const double fall = 3.141592653589793 + a.asym, rise = 3.141592653589793 - a.asym;
  const double eps = sizeof(typename A::Real) == 4 || std::is_same_v<typename A::Mag, short> ? FLT_EPSILON : DBL_EPSILON;
  const double extra = std::is_same_v<typename A::Mag, short> ? 1 : 0;
  if constexpr (std::is_same_v<typename A::State, RyxTrnglF32State>)
    return eps * 4 * 3.141592653589793 * (k + 4) * 2 * a.mag / std::min(fall, rise) + 8 * eps * a.mag * (1 + 6.3 / std::min(fall, rise));
  const double w2 = 4 * 3.141592653589793 * a.mag;
  const double S = a.mag + w2 / std::min(fall, rise);
  return 4 * eps * S * std::max(rise / fall, fall / rise) * (k + 2) + extra;
}

TYPED_TEST(TriAll, FollowsTheClosedFormWave) {
  using A = TypeParam;
  for (const Args& a : kGrid) {
    const auto freq = static_cast<typename A::Real>(a.freq), phase = static_cast<typename A::Real>(a.phase),
               asym = static_cast<typename A::Real>(a.asym);
    const auto mag = static_cast<typename A::Mag>(a.mag);
    SCOPED_TRACE(::testing::Message() << "freq " << a.freq << " phase " << a.phase << " mag " << a.mag << " asym " << a.asym);
    typename A::State s;
    A::init(freq, phase, mag, asym, &s);
    const int n = 300;
    const auto y = drawMixed<A>(&s, n);
    const Wide twoPi = 2 * kPi, fall = kPi + asym;
    for (int k = 0; k < n; ++k) {
      const Wide p = std::fmod(static_cast<Wide>(phase) + twoPi * static_cast<Wide>(freq) * k, twoPi);
      const Wide ref[2] = {wave(p, mag, asym), wave(std::fmod(p + (twoPi + fall) / 2, twoPi), mag, asym)};
      for (int c = 0; c < Parts<typename A::Sample>::count; ++c)
        ASSERT_LE(std::fabs(part(y[k], c) - static_cast<double>(ref[c])), bound<A>(a, k)) << "k " << k << " part " << c;
    }
  }
}

// freq 0 holds the start value; a phase equal to fall starts at -mag.
TYPED_TEST(TriAll, ZeroFrequencyAndStartOnTheRisingLeg) {
  using A = TypeParam;
  typename A::State s;
  A::init(0, 1, 100, 0.5f, &s);
  const auto y = drawMixed<A>(&s, 100);
  for (int k = 1; k < 100; ++k) ASSERT_TRUE(ryxtest::sameBits(&y[0], &y[k], 1)) << k;
  const double roundOff = std::is_same_v<typename A::Mag, short> ? 0.5 : 1e-3;
  EXPECT_NEAR(part(y[0], 0), static_cast<double>(wave(1, 100, static_cast<typename A::Real>(0.5f))), roundOff);
  const auto fall = static_cast<typename A::Real>(3.141592653589793 + 1.0);
  A::init(0.1f, fall, 1000, 1.0f, &s);
  EXPECT_NEAR(part(A::one(&s), 0), -1000, 1e-3);
}

// ---- accumulators from the record's own fields ---------------------------

template <class A>
class TriAcc : public ::testing::Test {};
using AccTypes = ::testing::Types<TriD, TriZ, TriW, TriV>;
TYPED_TEST_SUITE(TriAcc, AccTypes);

template <class St> double fieldStep(const St& s, int c) {
  if constexpr (requires { s.stepRe; }) return c ? s.stepIm : s.stepRe;
  else return s.step;
}
template <class St> double fieldValue(const St& s, int c) {
  if constexpr (requires { s.valueRe; }) return c ? s.valueIm : s.valueRe;
  else return s.value;
}

// Single steps: emit, add, reflect at the rail passed (or fold by a whole
// period when the reflection overshoots the other rail), round to the
// record's type. Blocks: the running value stays wide, the direction is
// read once from the sign of the step and only the rail ahead is tested.
TYPED_TEST(TriAcc, SingleStepsAndBlocksFollowTheirRules) {
  using A = TypeParam;
  using F = decltype(A::State::mag);
  constexpr int channels = Parts<typename A::Sample>::count;
  constexpr bool i16 = std::is_same_v<typename A::Mag, short>;
  auto emit = [](Wide v) { return i16 ? static_cast<double>(static_cast<short>(std::llrint(static_cast<double>(v)))) : static_cast<double>(v); };
  for (const Args& a : kGrid) {
    typename A::State s;
    A::init(static_cast<typename A::Real>(a.freq), static_cast<typename A::Real>(a.phase), static_cast<typename A::Mag>(a.mag),
            static_cast<typename A::Real>(a.asym), &s);
    const Wide mag = s.mag;
    F value[2], step[2];
    for (int c = 0; c < channels; ++c) value[c] = static_cast<F>(fieldValue(s, c)), step[c] = static_cast<F>(fieldStep(s, c));
    for (int k = 0; k < 60; ++k) {
      const auto got = A::one(&s);
      for (int c = 0; c < channels; ++c) {
        ASSERT_EQ(part(got, c), emit(value[c])) << k;
        Wide v = static_cast<Wide>(value[c]) + step[c];
        if (v > mag) {
          const Wide t = (v - mag) * s.reflectTop + mag;
          if (t < -mag) v -= s.foldTop;
          else v = t, step[c] = s.stepDown;
        } else if (v < -mag) {
          const Wide t = (v + mag) * s.reflectBottom - mag;
          if (t > mag) v += s.foldBottom;
          else v = t, step[c] = s.stepUp;
        }
        value[c] = static_cast<F>(v);
      }
    }
    std::vector<typename A::Sample> blk(200);
    A::block(&s, blk.data(), 200);
    for (int c = 0; c < channels; ++c) {
      Wide v = value[c], st = step[c];
      bool up = st > 0;
      for (int k = 0; k < 200; ++k) {
        ASSERT_EQ(part(blk[k], c), emit(v)) << "block " << k;
        v += st;
        if (up && v > mag) {
          const Wide t = s.reflectTop * v + s.offsetTop;
          if (t < -mag) v -= s.foldTop;
          else v = t, st = s.stepDown, up = false;
        } else if (!up && v < -mag) {
          const Wide t = s.reflectBottom * v + s.offsetBottom;
          if (t > mag) v += s.foldBottom;
          else v = t, st = s.stepUp, up = true;
        }
      }
      EXPECT_EQ(fieldValue(s, c), static_cast<double>(static_cast<F>(v)));
      EXPECT_EQ(fieldStep(s, c), static_cast<double>(static_cast<F>(st)));
    }
  }
}

// 16-bit single and block forms differ at most by the rounding of the
// running value.
TEST(TriInt16, SingleAndBlockAgreeWithinOne) {
  RyxTrnglI16State a, b;
  ryxwTrnglInit(0.0371f, 2.0f, 12345, -0.7f, &a);
  b = a;
  std::vector<short> blk(500);
  ryxwbTrngl(&b, blk.data(), 500);
  for (int k = 0; k < 500; ++k) ASSERT_LE(std::abs(ryxwTrngl(&a) - blk[k]), 1) << k;
}

// ---- phase queue ------------------------------------------------------------

// The line table lies at an 8-byte boundary inside the record wherever the
// record stands (any 4-byte boundary on i386), and the output does not depend on
// where that is. The complex block is the real block on twice the count.
TEST(TriQueue, LineTablePlacementAndComplexBlock) {
  alignas(16) unsigned char raw[sizeof(RyxTrnglF32State) + 16];
  std::vector<float> first;
  // Every boundary the record's own alignment allows: 4-byte ones on i386.
  for (int offset = 0; offset < 16; offset += static_cast<int>(alignof(RyxTrnglF32State))) {
    auto* s = reinterpret_cast<RyxTrnglF32State*>(raw + offset);
    ryxsTrnglInit(0.0913f, 1.0f, 50, 0.3f, s);
    const auto lines = reinterpret_cast<std::uintptr_t>(s->lines);
    EXPECT_EQ(lines % 8, 0u);
    EXPECT_TRUE(lines >= reinterpret_cast<std::uintptr_t>(s->reserved) &&
                lines + 16 * sizeof(float) <= reinterpret_cast<std::uintptr_t>(s->phases));
    alignas(16) float out[64];
    ryxsbTrngl(s, out, 64);
    if (first.empty()) first.assign(out, out + 64);
    else EXPECT_TRUE(ryxtest::sameBits(first.data(), out, 64));
  }
  RyxTrnglSCplxState c, r;
  ryxcTrnglInit(0.11f, 5.0f, 7, -1.0f, &c);
  ryxcTrnglInit(0.11f, 5.0f, 7, -1.0f, &r);
  alignas(16) SCplx cv[40];
  alignas(16) float rv[80];
  ryxcbTrngl(&c, cv, 40);
  ryxsbTrngl(&r, rv, 80);
  EXPECT_TRUE(ryxtest::sameBits(reinterpret_cast<float*>(cv), rv, 80));
  SCplx viaOut;
  ryxcTrnglOut(&c, &viaOut);
  EXPECT_EQ(viaOut.re, ryxsTrngl(&r));
}

// ---- failures ------------------------------------------------------------

struct TriFixture {
  RyxTrnglF32State s{}, c{}, dead{};
  RyxTrnglF64State d{};
  RyxTrnglDCplxState z{};
  RyxTrnglI16State w{};
  RyxTrnglWCplxState v{};
  float fs[4]{};
  SCplx fc[4]{};
  double fd[4]{};
  DCplx fz[4]{};
  short fw[4]{};
  WCplx fv[4]{};
  SCplx out{};
};

template <class R, class M, class St, class T>
void addTri(std::vector<FailCase>& cases, const std::string& L, void (*init)(R, R, M, R, St*), T (*one)(St*),
            void (*block)(St*, T*, int), St* live, St* dead, T* dst) {
  const bool blank = L == "s" || L == "c";
  const std::string b = blank ? " " : "", stem = "ryxtrngl";
  const std::string in = "ryx" + L + "TrnglInit", on = "ryx" + L + "Trngl", bn = "ryx" + L + "bTrngl";
  const R pi = static_cast<R>(3.141592653589793);
  auto addInit = [&](const std::string& words, R f, R p, M m, R a, St* s) {
    cases.push_back({in, stem, words + b, [=] { return init(f, p, m, a, s), true; }});
  };
  addInit("Invalid magnitude value", R(0.6), R(-1), M(-1), R(9), nullptr);
  addInit("Invalid frequence value", R(0.5), R(-1), M(1), R(9), nullptr);
  addInit("Invalid phase value", R(0.1), static_cast<R>(6.283185307179586), M(1), R(9), live);
  addInit("Invalid asymmetry value", R(0.1), R(1), M(1), pi >= 3.141592653589793 ? pi : std::nextafter(pi, R(4)), live);
  addInit("Invalid asymmetry value", R(0.1), R(1), M(1), -(pi >= 3.141592653589793 ? pi : std::nextafter(pi, R(4))), live);
  addInit("Null pointer to state", R(0.1), R(1), M(1), R(0), nullptr);
  cases.push_back({on, stem, "Null pointer to state" + b, [=] { return isZero(one(nullptr)); }});
  cases.push_back({bn, stem, "Null pointer to state" + b, [=] { return block(nullptr, nullptr, 0), true; }});
  cases.push_back({bn, stem, "Null pointer to buffer" + b, [=] { return block(live, nullptr, 0), true; }});
  cases.push_back({bn, stem, "Invalid number of items" + b, [=] { return block(live, dst, 0), true; }});
  if (dead) {
    cases.push_back({on, stem, "Structure initialization need ", [=] { return isZero(one(dead)); }});
    cases.push_back({bn, stem, "Structure initialization need ", [=] { return block(dead, dst, 3), true; }});
  }
}

TEST(TriFailures, EveryCheckInOrderWithItsWords) {
  TriFixture fx;
  ryxsTrnglInit(0.1f, 1, 1, 0, &fx.s);
  ryxcTrnglInit(0.1f, 1, 1, 0, &fx.c);
  ryxdTrnglInit(0.1, 1, 1, 0, &fx.d);
  ryxzTrnglInit(0.1, 1, 1, 0, &fx.z);
  ryxwTrnglInit(0.1f, 1, 1, 0, &fx.w);
  ryxvTrnglInit(0.1f, 1, 1, 0, &fx.v);
  std::vector<FailCase> cases;
  addTri(cases, "s", ryxsTrnglInit, ryxsTrngl, ryxsbTrngl, &fx.s, &fx.dead, fx.fs);
  addTri(cases, "c", ryxcTrnglInit, ryxcTrngl, ryxcbTrngl, &fx.c, &fx.dead, fx.fc);
  addTri<double, double, RyxTrnglF64State, double>(cases, "d", ryxdTrnglInit, ryxdTrngl, ryxdbTrngl, &fx.d, nullptr, fx.fd);
  addTri<double, double, RyxTrnglDCplxState, DCplx>(cases, "z", ryxzTrnglInit, ryxzTrngl, ryxzbTrngl, &fx.z, nullptr, fx.fz);
  addTri<float, short, RyxTrnglI16State, short>(cases, "w", ryxwTrnglInit, ryxwTrngl, ryxwbTrngl, &fx.w, nullptr, fx.fw);
  addTri<float, short, RyxTrnglWCplxState, WCplx>(cases, "v", ryxvTrnglInit, ryxvTrngl, ryxvbTrngl, &fx.v, nullptr, fx.fv);
  cases.push_back({"ryxcTrnglOut", "ryxtrngl", "val==0", [&] { return ryxcTrnglOut(&fx.c, nullptr), true; }});
  cases.push_back({"ryxcTrnglOut", "ryxtrngl", "Null pointer to state ", [&] { return ryxcTrnglOut(nullptr, &fx.out), true; }});
  runFailures(fx, cases);
}

}  // namespace
}  // namespace gentest
