// Window functions of all six types and seven families, in place and from
// source to destination: weights against the closed formulas in long
// double (I0 by its power series for Kaiser, and by the Abramowitz-Stegun
// polynomials for the tight check), with error bounds per kernel; the
// float lanes of Bartlett and the 16-bit Bartlett bitwise against the
// rules; the kernel limits told apart by their drift; edge cases and the
// failure table.
#include <cfloat>
#include <cstdint>

#include "gen_support.h"

namespace gentest {
namespace {

enum Fam { kBartlett, kHann, kHamming, kBlackman, kStd, kOpt, kKaiser, kFamilies };
const char* const kFamName[] = {"Bartlett", "Hann", "Hamming", "Blackman", "BlackmanStd", "BlackmanOpt", "Kaiser"};

template <class T, class A>
struct WinSet {
  using Sample = T;
  using Alpha = A;
  void (*one[kFamilies])(T*, int);  // in place, families without alpha
  void (*blackman)(T*, int, A);
  void (*kaiser)(T*, int, A);
  void (*two[kFamilies])(const T*, T*, int);
  void (*blackman2)(const T*, T*, int, A);
  void (*kaiser2)(const T*, T*, int, A);
  const char* letter;

  void run(Fam f, A alpha, const T* src, T* dst, int n, bool inPlace) const {
    if (inPlace) {
      if (f == kBlackman) blackman(dst, n, alpha);
      else if (f == kKaiser) kaiser(dst, n, alpha);
      else one[f](dst, n);
    } else {
      if (f == kBlackman) blackman2(src, dst, n, alpha);
      else if (f == kKaiser) kaiser2(src, dst, n, alpha);
      else two[f](src, dst, n);
    }
  }
};

const WinSet<float, float> kS = {{ryxsWinBartlett, ryxsWinHann, ryxsWinHamming, nullptr, ryxsWinBlackmanStd, ryxsWinBlackmanOpt, nullptr},
                                 ryxsWinBlackman, ryxsWinKaiser,
                                 {ryxsWinBartlett2, ryxsWinHann2, ryxsWinHamming2, nullptr, ryxsWinBlackmanStd2, ryxsWinBlackmanOpt2, nullptr},
                                 ryxsWinBlackman2, ryxsWinKaiser2, "s"};
const WinSet<SCplx, float> kC = {{ryxcWinBartlett, ryxcWinHann, ryxcWinHamming, nullptr, ryxcWinBlackmanStd, ryxcWinBlackmanOpt, nullptr},
                                 ryxcWinBlackman, ryxcWinKaiser,
                                 {ryxcWinBartlett2, ryxcWinHann2, ryxcWinHamming2, nullptr, ryxcWinBlackmanStd2, ryxcWinBlackmanOpt2, nullptr},
                                 ryxcWinBlackman2, ryxcWinKaiser2, "c"};
const WinSet<double, double> kD = {{ryxdWinBartlett, ryxdWinHann, ryxdWinHamming, nullptr, ryxdWinBlackmanStd, ryxdWinBlackmanOpt, nullptr},
                                   ryxdWinBlackman, ryxdWinKaiser,
                                   {ryxdWinBartlett2, ryxdWinHann2, ryxdWinHamming2, nullptr, ryxdWinBlackmanStd2, ryxdWinBlackmanOpt2, nullptr},
                                   ryxdWinBlackman2, ryxdWinKaiser2, "d"};
const WinSet<DCplx, double> kZ = {{ryxzWinBartlett, ryxzWinHann, ryxzWinHamming, nullptr, ryxzWinBlackmanStd, ryxzWinBlackmanOpt, nullptr},
                                  ryxzWinBlackman, ryxzWinKaiser,
                                  {ryxzWinBartlett2, ryxzWinHann2, ryxzWinHamming2, nullptr, ryxzWinBlackmanStd2, ryxzWinBlackmanOpt2, nullptr},
                                  ryxzWinBlackman2, ryxzWinKaiser2, "z"};
const WinSet<short, float> kW = {{ryxwWinBartlett, ryxwWinHann, ryxwWinHamming, nullptr, ryxwWinBlackmanStd, ryxwWinBlackmanOpt, nullptr},
                                 ryxwWinBlackman, ryxwWinKaiser,
                                 {ryxwWinBartlett2, ryxwWinHann2, ryxwWinHamming2, nullptr, ryxwWinBlackmanStd2, ryxwWinBlackmanOpt2, nullptr},
                                 ryxwWinBlackman2, ryxwWinKaiser2, "w"};
const WinSet<WCplx, float> kV = {{ryxvWinBartlett, ryxvWinHann, ryxvWinHamming, nullptr, ryxvWinBlackmanStd, ryxvWinBlackmanOpt, nullptr},
                                 ryxvWinBlackman, ryxvWinKaiser,
                                 {ryxvWinBartlett2, ryxvWinHann2, ryxvWinHamming2, nullptr, ryxvWinBlackmanStd2, ryxvWinBlackmanOpt2, nullptr},
                                 ryxvWinBlackman2, ryxvWinKaiser2, "v"};

// I0 by its power series, sum of ((x/2)^k / k!)^2, in long double.
Wide besselI0(Wide x) {
  Wide term = 1, sum = 1;
  for (int k = 1; k < 200 && term > sum * 1e-21L; ++k) term *= (x / (2 * k)) * (x / (2 * k)), sum += term;
  return sum;
}

// The same by the Abramowitz-Stegun approximations as printed.
Wide besselI0Printed(Wide x) {
  x = std::fabs(x);
  if (x < 3.75L) {
    const Wide t = (x / 3.75L) * (x / 3.75L);
    return 1 + t * (3.5156229L + t * (3.0899424L + t * (1.2067492L + t * (0.2659732L + t * (0.0360768L + t * 0.0045813L)))));
  }
  const Wide t = 3.75L / x;
  const Wide c[] = {0.39894228L, 0.01328592L, 0.00225319L, -0.00157565L, 0.00916281L,
                    -0.02057706L, 0.02635537L, -0.01647633L, 0.00392377L};
  Wide p = 0, tk = 1;
  for (Wide ci : c) p += ci * tk, tk *= t;
  return std::exp(x) / std::sqrt(x) * p;
}

Wide optimalAlpha(int n) { return n == 3 ? -0.25L : -0.5L / (1 + std::cos(2 * kPi / (n - 1))); }

// Closed-form weight of sample i (the middle of an odd n has weight 1);
// the Blackman forms take alpha as the routine received it.
Wide weight(Fam f, Wide alpha, int n, int i) {
  if (n % 2 == 1 && i == n / 2) return 1;
  const int k = i < n / 2 ? i : n - 1 - i;
  const Wide x = 2 * kPi * k / (n - 1);
  switch (f) {
    case kBartlett: return Wide(2) * k / (n - 1);
    case kHann: return 0.5L - 0.5L * std::cos(x);
    case kHamming: return 0.54L - 0.46L * std::cos(x);
    case kStd:
    case kOpt:
    case kBlackman: return (alpha + 1) / 2 - 0.5L * std::cos(x) - alpha / 2 * std::cos(2 * x);
    default: return besselI0(alpha * std::sqrt(Wide(k) * (n - 1 - k))) / besselI0(alpha * (n - 1) / 2);
  }
}

template <class Set>
class Windows : public ::testing::Test {};
struct SetS { static const WinSet<float, float>& get() { return kS; } };
struct SetC { static const WinSet<SCplx, float>& get() { return kC; } };
struct SetD { static const WinSet<double, double>& get() { return kD; } };
struct SetZ { static const WinSet<DCplx, double>& get() { return kZ; } };
struct SetW { static const WinSet<short, float>& get() { return kW; } };
struct SetV { static const WinSet<WCplx, float>& get() { return kV; } };
using AllSets = ::testing::Types<SetS, SetC, SetD, SetZ, SetW, SetV>;
TYPED_TEST_SUITE(Windows, AllSets);

template <class T>
void fillData(T* p, int n, std::uint32_t seed) {
  ryxtest::Random rnd(seed);
  auto* r = reinterpret_cast<std::conditional_t<sizeof(T) / Parts<T>::count == 2, short,
                                                std::conditional_t<sizeof(T) / Parts<T>::count == 4, float, double>>*>(p);
  for (int i = 0; i < n * Parts<T>::count; ++i) {
    if constexpr (sizeof(*r) == 2) r[i] = static_cast<short>(rnd.i32(-9000, 9000));
    else r[i] = static_cast<std::remove_reference_t<decltype(*r)>>(rnd.f64(-1000, 1000));
  }
}

// Allowed weight error of sample pair k by kernel:
//  - wide recurrences: the double 2*cos(theta) is off by up to 1.1e-16,
//    moving the phase by k*1.1e-16/sin(theta) <= n^2*9e-18, plus rounding;
//  - float lanes: the single 2*cos(theta) is off by d = |float(2c) - 2c|,
//    which drifts the cosine by up to a*(k+1)*d/(2*sin(theta)), plus the
//    single roundings of y and the weight;
//  - float Bartlett lanes: one single rounding per four pairs;
//  - 16-bit Q15 rotation: per turn half a unit of rounding and up to one
//    unit of gain and angle from the rounded rotation, about 2^-13 of the
//    weight per turn, plus the Q14 constants and the floor of the product.
// The Blackman term in y^2 scales the cosine errors by up to 1 + 4|alpha|.
// Kaiser: the printed polynomials are good to 1.6e-7 (small arguments)
// and 1.9e-7/0.3989 relative (large), so the ratio to about 1.1e-6.
template <class T>
double allowedWeightError(Fam f, double alpha, int n, int k, bool inPlace) {
  const double theta = 2 * 3.141592653589793 / (n - 1);
  const double blackman = f == kBlackman ? 1 + 4 * std::fabs(alpha) : f == kStd || f == kOpt ? 2 : 1;
  if (f == kKaiser) return 1.1e-6;
  const bool isFloat = sizeof(T) / Parts<T>::count == 4, isShort = sizeof(T) / Parts<T>::count == 2;
  if (isShort && n <= 512)
    return f == kBartlett ? (k + 2) * std::ldexp(1.0, -14) : (k + 2) * std::ldexp(1.0, -13) * blackman + std::ldexp(1.0, -12);
  if (isFloat && f == kBartlett) return (k / 4 + 1) * 1.2e-7;
  const int limit = inPlace && (f == kHann || f == kHamming) ? 640 : 512;
  if (isFloat && n <= limit) {
    const double c2 = 2 * std::cos(theta), d = std::fabs(static_cast<double>(static_cast<float>(c2)) - c2);
    return (0.5 * (k + 1) * d / (2 * std::sin(theta)) + 3e-7) * blackman;
  }
  return (2e-17 * n * n + 1e-15) * blackman;
}

template <class T>
double roundingOf(double v) {
  const int width = sizeof(T) / Parts<T>::count;
  return width == 2 ? 1.0 : std::fabs(v) * (width == 4 ? FLT_EPSILON : DBL_EPSILON);
}

// Runs every family on both forms over lengths around each limit and
// checks each output against x*w(closed form) within the kernel's bound;
// the middle and the source stay as they must, nothing beyond n is touched.
TYPED_TEST(Windows, WeightsAgainstClosedForms) {
  const auto& set = TypeParam::get();
  using T = typename std::remove_reference_t<decltype(set)>::Sample;
  using A = typename std::remove_reference_t<decltype(set)>::Alpha;
  const int lengths[] = {3, 4, 5, 6, 7, 8, 9, 10, 17, 64, 101, 511, 512, 513, 640, 641, 1000, 2049};
  for (int f = 0; f < kFamilies; ++f) {
    for (A alpha : {A(-0.16), A(0.3), A(-2.5), A(0.05)}) {
      if ((f != kBlackman && f != kKaiser) && alpha != A(-0.16)) continue;
      for (int n : lengths) {
        if (f == kKaiser && (n - 1) * std::fabs(alpha) * 0.5 > 38) continue;
        for (bool inPlace : {true, false}) {
          SCOPED_TRACE(::testing::Message() << set.letter << "Win" << kFamName[f] << (inPlace ? "" : "2") << " n " << n
                                            << " alpha " << alpha);
          std::vector<T> src(n);
          fillData(src.data(), n, 77 + n);
          ryxtest::Guarded<T> dst(n, 0);
          if (inPlace) std::memcpy(dst.data(), src.data(), sizeof(T) * n);
          const std::vector<T> keep = src;
          set.run(static_cast<Fam>(f), alpha, src.data(), dst.data(), n, inPlace);
          ASSERT_TRUE(dst.intact());
          ASSERT_TRUE(ryxtest::sameBits(src.data(), keep.data(), n));
          if (n % 2) {
            ASSERT_TRUE(ryxtest::sameBits(&src[n / 2], &dst[n / 2], 1));
          }
          for (int i = 0; i < n; ++i) {
            const int k = i < n / 2 ? i : n - 1 - i;
            const A used = f == kStd ? A(-0.16) : f == kOpt ? static_cast<A>(optimalAlpha(n)) : alpha;
            const Wide w = weight(static_cast<Fam>(f), used, n, i);
            const double tol = allowedWeightError<T>(static_cast<Fam>(f), alpha, n, k, inPlace) * (f == kKaiser ? w : 1);
            for (int p = 0; p < Parts<T>::count; ++p) {
              const double x = part(src[i], p), ref = static_cast<double>(x * w);
              ASSERT_LE(std::fabs(part(dst[i], p) - ref), std::fabs(x) * tol + roundingOf<T>(ref)) << "i " << i;
            }
          }
        }
      }
    }
  }
}

// Below the float limits (and always in the other types) the two forms
// run the same kernel and agree bitwise.
TYPED_TEST(Windows, InPlaceEqualsTwoBuffersOnTheSameKernel) {
  const auto& set = TypeParam::get();
  using T = typename std::remove_reference_t<decltype(set)>::Sample;
  for (int n : {3, 6, 7, 200, 512, 1001}) {
    for (int f = 0; f < kFamilies; ++f) {
      std::vector<T> src(n), a(n), b(n);
      fillData(src.data(), n, 5);
      a = src;
      set.run(static_cast<Fam>(f), 0.05f, nullptr, a.data(), n, true);
      set.run(static_cast<Fam>(f), 0.05f, src.data(), b.data(), n, false);
      ASSERT_TRUE(ryxtest::sameBits(a.data(), b.data(), n)) << kFamName[f] << " " << n;
    }
  }
}

// Kaiser: alpha 0 is the identity, the sign of alpha does not matter, and
// the weights follow the printed polynomials closely (the running argument
// only adds rounding).
TYPED_TEST(Windows, KaiserIdentitySymmetryAndPrintedPolynomials) {
  const auto& set = TypeParam::get();
  using T = typename std::remove_reference_t<decltype(set)>::Sample;
  for (int n : {3, 4, 9, 100, 1025}) {
    std::vector<T> src(n), a(n), b(n);
    fillData(src.data(), n, 9);
    set.kaiser2(src.data(), a.data(), n, 0);
    ASSERT_TRUE(ryxtest::sameBits(src.data(), a.data(), n));
    set.kaiser2(src.data(), a.data(), n, 0.07f);
    set.kaiser2(src.data(), b.data(), n, -0.07f);
    ASSERT_TRUE(ryxtest::sameBits(a.data(), b.data(), n));
    if (Parts<T>::count == 1 && sizeof(T) == 8) {
      for (int i = 0; i < n; ++i) {
        const int k = i < n / 2 ? i : n - 1 - i;
        const Wide alpha = 0.07f, arg = alpha * std::sqrt(Wide(k) * (n - 1 - k));
        const Wide w = i == n / 2 && n % 2 ? 1 : besselI0Printed(arg) / besselI0Printed(alpha * (n - 1) / 2);
        ASSERT_NEAR(part(a[i], 0), static_cast<double>(part(src[i], 0) * w), 1e-12 * std::fabs(part(src[i], 0))) << i;
      }
    }
  }
}

// The float cosine kernels change at 640 (in place, Hann and Hamming) and
// 512 (otherwise): at the limit the drift of the single-precision 2*cos
// shows (when that rounding is large enough to see), one above it the
// wide kernel is exact to rounding.
TEST(WindowLimits, FloatKernelsChangeAtTheirLimits) {
  struct Limit { Fam f; bool inPlace; int n; } limits[] = {{kHann, true, 640}, {kHamming, true, 640}, {kBlackman, true, 512},
                                                          {kHann, false, 512}, {kHamming, false, 512}, {kBlackman, false, 512}};
  for (const Limit& l : limits) {
    for (int n : {l.n - 3, l.n - 2, l.n - 1, l.n, l.n + 1, l.n + 2}) {
      std::vector<float> src(n, 1.0f), dst(n);
      l.inPlace ? kS.run(l.f, -0.16f, nullptr, src.data(), n, true) : kS.run(l.f, -0.16f, std::vector<float>(n, 1.0f).data(), src.data(), n, false);
      double worst = 0;
      for (int i = 0; i < n; ++i) worst = std::max(worst, std::fabs(src[i] - static_cast<double>(weight(l.f, -0.16L, n, i))));
      const double theta = 2 * 3.141592653589793 / (n - 1), c2 = 2 * std::cos(theta);
      const double drift = 0.5 * (n / 2) * std::fabs(static_cast<float>(c2) - c2) / (2 * std::sin(theta));
      SCOPED_TRACE(::testing::Message() << kFamName[l.f] << " n " << n << " drift " << drift << " worst " << worst);
      if (n > l.n) {
        EXPECT_LT(worst, 2e-7);
      } else if (drift > 1e-5) {
        EXPECT_GT(worst, 1e-6);
      }
    }
  }
}

// Float Bartlett: four single-precision lanes at (0..3)*step, each adding
// 4*step, step = 2/(n-1) rounded to single.
TEST(WindowBartlett, FloatLanesBitwise) {
  for (int n : {3, 4, 11, 12, 99, 1000, 4097}) {
    std::vector<float> v(n, 1.0f);
    std::vector<SCplx> c(n, SCplx{1.0f, -3.0f});
    ryxsWinBartlett(v.data(), n);
    ryxcWinBartlett(c.data(), n);
    const float step = static_cast<float>(2.0 / (n - 1));
    float lane[4] = {0.0f, step, 2 * step, 3 * step};
    for (int k = 0; k < n / 2; ++k) {
      const float w = n == 3 ? 0.0f : lane[k % 4];
      ASSERT_EQ(v[k], w) << n << " " << k;
      ASSERT_EQ(v[n - 1 - k], w);
      ASSERT_EQ(c[n - 1 - k].im, -3.0f * w);
      lane[k % 4] += 4 * step;
    }
  }
  float four[4] = {3, 3, 3, 3};
  ryxsWinBartlett(four, 4);
  EXPECT_EQ(four[1], static_cast<float>(2.0 / 3) * 3);
  EXPECT_EQ(four[0], 0.0f);
}

// 16-bit Bartlett: up to 512 samples a Q14 step (65536/(n-1))/2 added
// with saturation and (x*w) >> 14; above, a wide running sum of 2/(n-1)
// and products rounded to nearest even, wrapped to 16 bits.
TEST(WindowBartlett, Int16Bitwise) {
  for (int n : {4, 5, 77, 256, 511, 512, 513, 600, 1001, 3000}) {
    std::vector<short> src(n), dst(n);
    fillData(src.data(), n, 3 * n);
    ryxwWinBartlett2(src.data(), dst.data(), n);
    const int q = (65536 / (n - 1)) / 2;
    Wide wide = 0;
    for (int k = 0; k < n / 2; ++k) {
      for (int i : {k, n - 1 - k}) {
        int expect;
        if (n <= 512) expect = std::clamp((src[i] * std::min(k * q, 32767)) >> 14, -32768, 32767);
        else expect = static_cast<short>(static_cast<std::int64_t>(std::nearbyint(static_cast<double>(src[i] * wide))));
        ASSERT_EQ(dst[i], expect) << "n " << n << " i " << i;
      }
      wide += 2.0 / (n - 1);
    }
  }
}

// Edge cases: n = 3 zeroes the ends (Hamming keeps 8 per cent) whatever
// alpha, the optimal Blackman does not divide by cos(pi/2), and an even n
// leaves no middle to copy.
TYPED_TEST(Windows, LengthThreeAndEvenLengths) {
  const auto& set = TypeParam::get();
  using T = typename std::remove_reference_t<decltype(set)>::Sample;
  for (int f : {kBartlett, kHann, kBlackman, kStd, kOpt, kHamming}) {
    std::vector<T> src(3), dst(3);
    fillData(src.data(), 3, 1);
    set.run(static_cast<Fam>(f), 5.0f, src.data(), dst.data(), 3, false);
    for (int p = 0; p < Parts<T>::count; ++p) {
      const double expect = f == kHamming ? part(src[0], p) * 0.08 : 0.0;
      EXPECT_NEAR(part(dst[0], p), expect, roundingOf<T>(expect) + 1e-30) << kFamName[f];
      EXPECT_EQ(part(dst[1], p), part(src[1], p));
    }
  }
}

// ---- failures ------------------------------------------------------------

struct WinFixture {
  float s[8]{1, 2, 3, 4, 5, 6, 7, 8};
  SCplx c[8]{};
  double d[8]{1, 2, 3};
  DCplx z[8]{};
  short w[8]{1, 2, 3};
  WCplx v[8]{};
  float s2[8]{};
  SCplx c2[8]{};
  double d2[8]{};
  DCplx z2[8]{};
  short w2[8]{};
  WCplx v2[8]{};
};

template <class T, class A>
void addWindowCases(std::vector<FailCase>& cases, const WinSet<T, A>& set, T* live, T* live2) {
  const std::string L = set.letter;
  const bool i16 = L == "w" || L == "v";
  const std::string stem = i16 ? "ryxwinw" : "ryxwin", stem2 = i16 ? "ryxwin2w" : "ryxwin2";
  for (int f = 0; f < kFamilies; ++f) {
    // The standard and optimal forms report through the Blackman routine.
    const std::string fam = f == kStd || f == kOpt ? "Blackman" : kFamName[f];
    const std::string name = "ryx" + L + "Win" + fam, name2 = name + "2";
    const Fam F = static_cast<Fam>(f);
    auto add = [&](const std::string& nm, const std::string& st, const char* words, const T* s, T* d, int n, bool inPlace, A alpha) {
      cases.push_back({nm, st, words, [=, &set] { return set.run(F, alpha, s, d, n, inPlace), true; }});
    };
    add(name, stem, "Null pointer to buffer", nullptr, nullptr, 0, true, 1);
    add(name, stem, "Bad number of items", nullptr, live, 2, true, 1);
    add(name, stem, "Bad number of items", nullptr, live, -1, true, 1);
    add(name2, stem2, "Null pointer to buffer", nullptr, live2, 8, false, 1);
    add(name2, stem2, "Null pointer to buffer", live, nullptr, 0, false, 1);
    add(name2, stem2, "Bad number of items", live, live2, 2, false, 1);
    if (F == kKaiser) {
      add(name, stem, "Huge window parameter", nullptr, live, 8, true, A(10.9));
      add(name2, stem2, "Huge window parameter", live, live2, 8, false, A(-10.9));
    }
  }
}

TEST(WindowFailures, EveryCheckInOrderWithItsWords) {
  WinFixture fx;
  std::vector<FailCase> cases;
  addWindowCases(cases, kS, fx.s, fx.s2);
  addWindowCases(cases, kC, fx.c, fx.c2);
  addWindowCases(cases, kD, fx.d, fx.d2);
  addWindowCases(cases, kZ, fx.z, fx.z2);
  addWindowCases(cases, kW, fx.w, fx.w2);
  addWindowCases(cases, kV, fx.v, fx.v2);
  runFailures(fx, cases);
}

// The Kaiser limit (n-1)*|alpha|/2 > 38 is strict.
TEST(WindowFailures, KaiserLimitIsStrict) {
  ryxtest::ReportCapture capture;
  std::vector<double> v(77, 1.0);
  ryxdWinKaiser(v.data(), 77, 1.0);
  ryxdWinKaiser(v.data(), 77, -1.0);
  EXPECT_TRUE(capture.reports().empty());
  ryxdWinKaiser(v.data(), 77, std::nextafter(1.0, 2.0));
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].context, "Huge window parameter");
}

}  // namespace
}  // namespace gentest
