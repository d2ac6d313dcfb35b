// Shared pieces of the IIR tests: the eight type combinations with the
// routines that serve them, stable random filters, and the references in
// long double: the transposed direct form II from taps divided by a0, the
// per-section direct form II with the gain in front, a direct-form
// recursion and a textbook cascade to check those two, and the error bound
// C*eps*G*E (G: l1 norm of the error-to-output impulse responses, E: the
// largest sum of term magnitudes of one recursion step).
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "ryxcore.h"
#include "test_support.h"

namespace iirtest {

using ld = long double;

// ---- Complex long double
// -------------------------------------------------------------

struct RC {
  ld re = 0;
  ld im = 0;
};
inline RC toRC(float v) { return {v, 0}; }
inline RC toRC(double v) { return {v, 0}; }
inline RC toRC(SCplx v) { return {v.re, v.im}; }
inline RC toRC(DCplx v) { return {v.re, v.im}; }
inline RC operator*(RC a, RC b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
inline RC operator+(RC a, RC b) { return {a.re + b.re, a.im + b.im}; }
inline RC operator-(RC a, RC b) { return {a.re - b.re, a.im - b.im}; }
inline RC operator/(RC a, RC b) {
  const ld m = b.re * b.re + b.im * b.im;
  return {(a.re * b.re + a.im * b.im) / m, (a.im * b.re - a.re * b.im) / m};
}
inline ld mag(RC a) { return std::fabs(a.re) + std::fabs(a.im); }

template <class T>
T fromRC(RC v) {
  if constexpr (std::is_same_v<T, float> || std::is_same_v<T, double>) {
    return static_cast<T>(v.re);
  } else {
    using F = decltype(T{}.re);
    return T{static_cast<F>(v.re), static_cast<F>(v.im)};
  }
}

template <class T>
bool sameBits(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

template <class T>
constexpr bool isCplx = std::is_same_v<T, SCplx> || std::is_same_v<T, DCplx>;

template <class O>
constexpr ld epsOf() {
  if constexpr (std::is_same_v<O, float> || std::is_same_v<O, SCplx>) return std::ldexp(1.0L, -24);
  return std::ldexp(1.0L, -53);
}

// ---- Type combinations
// ------------------------------------------------------------------
//
// Side<T>: the set-up routines keyed by one element type (taps of type T,
// or a delay line of type T). A combination names its sample, tap and
// result types, its filters and the high-level routines.
template <class T>
struct Side;
template <>
struct Side<float> {
  static constexpr auto init = ryxsIirlInit;
  static constexpr auto initBq = ryxsIirlInitBq;
  static constexpr auto initDlyl = ryxsIirlInitDlyl;
};
template <>
struct Side<SCplx> {
  static constexpr auto init = ryxcIirlInit;
  static constexpr auto initBq = ryxcIirlInitBq;
  static constexpr auto initDlyl = ryxcIirlInitDlyl;
};
template <>
struct Side<double> {
  static constexpr auto init = ryxdIirlInit;
  static constexpr auto initBq = ryxdIirlInitBq;
  static constexpr auto initDlyl = ryxdIirlInitDlyl;
};
template <>
struct Side<DCplx> {
  static constexpr auto init = ryxzIirlInit;
  static constexpr auto initBq = ryxzIirlInitBq;
  static constexpr auto initDlyl = ryxzIirlInitDlyl;
};

template <class SS, class HH, class OO, auto lStep, auto lBlock, auto lOut, auto hInit, auto hInitBq, auto hStep,
          auto hBlock, auto hOut>
struct Combo {
  using S = SS;
  using H = HH;
  using O = OO;
  static constexpr bool isFloat = std::is_same_v<S, float> || std::is_same_v<S, SCplx>;
  static constexpr auto step = lStep;
  static constexpr auto block = lBlock;
  static constexpr auto out = lOut;  // nullptr where there is no Out form
  static constexpr bool hasOut = !std::is_null_pointer_v<decltype(lOut)>;
  static constexpr auto iirInit = hInit;
  static constexpr auto iirInitBq = hInitBq;
  static constexpr auto iir = hStep;
  static constexpr auto bIir = hBlock;
  static constexpr auto iirOut = hOut;
};

struct ComboS
    : Combo<float, float, float, ryxsIirl, ryxsbIirl, nullptr, ryxsIirInit, ryxsIirInitBq, ryxsIir, ryxsbIir, nullptr> {
};
struct ComboC : Combo<SCplx, SCplx, SCplx, ryxcIirl, ryxcbIirl, ryxcIirlOut, ryxcIirInit, ryxcIirInitBq, ryxcIir,
                      ryxcbIir, ryxcIirOut> {};
struct ComboSC : Combo<float, SCplx, SCplx, ryxscIirl, ryxscbIirl, ryxscIirlOut, ryxscIirInit, ryxscIirInitBq, ryxscIir,
                       ryxscbIir, ryxscIirOut> {};
struct ComboCS : Combo<SCplx, float, SCplx, ryxcsIirl, ryxcsbIirl, ryxcsIirlOut, ryxcsIirInit, ryxcsIirInitBq, ryxcsIir,
                       ryxcsbIir, ryxcsIirOut> {};
struct ComboD : Combo<double, double, double, ryxdIirl, ryxdbIirl, nullptr, ryxdIirInit, ryxdIirInitBq, ryxdIir,
                      ryxdbIir, nullptr> {};
struct ComboZ
    : Combo<DCplx, DCplx, DCplx, ryxzIirl, ryxzbIirl, nullptr, ryxzIirInit, ryxzIirInitBq, ryxzIir, ryxzbIir, nullptr> {
};
struct ComboDZ : Combo<double, DCplx, DCplx, ryxdzIirl, ryxdzbIirl, nullptr, ryxdzIirInit, ryxdzIirInitBq, ryxdzIir,
                       ryxdzbIir, nullptr> {};
struct ComboZD : Combo<DCplx, double, DCplx, ryxzdIirl, ryxzdbIirl, nullptr, ryxzdIirInit, ryxzdIirInitBq, ryxzdIir,
                       ryxzdbIir, nullptr> {};

using AllCombos = ::testing::Types<ComboS, ComboC, ComboSC, ComboCS, ComboD, ComboZ, ComboDZ, ComboZD>;

struct ComboNames {
  template <class T>
  static std::string GetName(int) {
    if constexpr (std::is_same_v<T, ComboS>) return "s";
    if constexpr (std::is_same_v<T, ComboC>) return "c";
    if constexpr (std::is_same_v<T, ComboSC>) return "sc";
    if constexpr (std::is_same_v<T, ComboCS>) return "cs";
    if constexpr (std::is_same_v<T, ComboD>) return "d";
    if constexpr (std::is_same_v<T, ComboZ>) return "z";
    if constexpr (std::is_same_v<T, ComboDZ>) return "dz";
    return "zd";
  }
};

// ---- Random data
// ------------------------------------------------------------------------------

inline ld uni(std::mt19937& g, ld lo, ld hi) { return std::uniform_real_distribution<double>(lo, hi)(g); }

template <class T>
T randomValue(std::mt19937& g, ld lo = -1, ld hi = 1) {
  return fromRC<T>({uni(g, lo, hi), isCplx<T> ? uni(g, lo, hi) : 0});
}

template <class T>
std::vector<T> randomVec(std::mt19937& g, int n, ld lo = -1, ld hi = 1) {
  std::vector<T> v(static_cast<size_t>(n));
  for (T& x : v) x = randomValue<T>(g, lo, hi);
  return v;
}

// Monic denominator with roots of radius 0.2..0.8: conjugate pairs (and one
// real root for an odd order) for real taps, free complex roots otherwise.
inline std::vector<RC> stableDenominator(std::mt19937& g, int order, bool complexTaps) {
  std::vector<RC> poly{{1, 0}};
  auto times = [&](RC root) {  // poly *= (1 - root z^-1)
    std::vector<RC> next(poly.size() + 1);
    for (size_t i = 0; i < poly.size(); ++i) {
      next[i] = next[i] + poly[i];
      next[i + 1] = next[i + 1] - poly[i] * root;
    }
    poly = next;
  };
  int left = order;
  while (left > 0) {
    const ld r = uni(g, 0.2, 0.8);
    const ld th = uni(g, 0, 3.14159265358979323846L);
    if (complexTaps) {
      times({r * std::cos(2 * th), r * std::sin(2 * th)});
      left -= 1;
    } else if (left == 1) {
      times({uni(g, -0.8, 0.8), 0});
      left -= 1;
    } else {
      times({r * std::cos(th), r * std::sin(th)});
      times({r * std::cos(th), -r * std::sin(th)});
      left -= 2;
    }
  }
  return poly;
}

// A leading tap of magnitude 0.5..2 with a random sign (and phase).
template <class H>
RC randomLead(std::mt19937& g) {
  const ld m = uni(g, 0.5, 2.0) * (g() % 2 ? 1 : -1);
  if (!isCplx<H>) return {m, 0};
  const ld th = uni(g, 0, 6.283185307179586L);
  return {m * std::cos(th), m * std::sin(th)};
}

// Caller's taps of a stable filter of the given order: b then a, a scaled
// by a random a0.
template <class H>
std::vector<H> randomArbTaps(std::mt19937& g, int order) {
  const std::vector<RC> a = stableDenominator(g, order, isCplx<H>);
  const RC a0 = randomLead<H>(g);
  std::vector<H> t(2 * static_cast<size_t>(order) + 2);
  for (int i = 0; i <= order; ++i) {
    t[i] = randomValue<H>(g);
    t[order + 1 + i] = fromRC<H>(a[i] * a0);
  }
  return t;
}

// Caller's taps of a stable cascade: b0 b1 b2 a0 a1 a2 a section.
template <class H>
std::vector<H> randomBqTaps(std::mt19937& g, int numQuads) {
  std::vector<H> t;
  for (int q = 0; q < numQuads; ++q) {
    const std::vector<RC> a = stableDenominator(g, 2, isCplx<H>);
    const RC a0 = randomLead<H>(g);
    t.push_back(fromRC<H>(randomLead<H>(g)));
    t.push_back(randomValue<H>(g));
    t.push_back(randomValue<H>(g));
    for (int i = 0; i < 3; ++i) t.push_back(fromRC<H>(a[i] * a0));
  }
  return t;
}

// ---- References
// --------------------------------------------------------------------------------

// Transposed direct form II over normalised taps b[0..n], a[0..n] (a[0]
// unused), tracking E, the largest magnitude sum of one update.
struct ArbRef {
  std::vector<RC> b, a, d;
  ld stepMax = 0;
  RC step(RC x) {
    const int n = static_cast<int>(d.size());
    const RC y = b[0] * x + (n > 0 ? d[0] : RC{});
    stepMax = std::max(stepMax, mag(b[0] * x) + (n > 0 ? mag(d[0]) : 0) + mag(y));
    for (int i = 1; i <= n; ++i) {
      const RC di = i < n ? d[i] : RC{};
      stepMax = std::max(stepMax, mag(b[i] * x) + mag(a[i] * y) + mag(di));
      d[i - 1] = b[i] * x - a[i] * y + di;
    }
    return y;
  }
  // l1 norm of 1/A(z), which carries every rounding error to the output.
  ld errorGain() const {
    const int n = static_cast<int>(d.size());
    std::vector<RC> h(4000);
    ld sum = 0;
    for (size_t k = 0; k < h.size(); ++k) {
      RC v = k == 0 ? RC{1, 0} : RC{};
      for (int i = 1; i <= n && i <= static_cast<int>(k); ++i) v = v - a[i] * h[k - i];
      h[k] = v;
      sum += mag(v);
    }
    return sum;
  }
};

// Direct form II per section with the gain in front: w = y - a1*d0 - a2*d1,
// y = w + b1*d0 + b2*d1. Section q is {a1, a2, b1, b2}.
struct BqRef {
  RC gain;
  std::vector<std::array<RC, 4>> sec;
  std::vector<RC> d;  // d0, d1 a section
  ld stepMax = 0;
  RC step(RC x) {
    RC y = gain * x;
    stepMax = std::max(stepMax, mag(y));
    for (size_t q = 0; q < sec.size(); ++q) {
      const auto& s = sec[q];
      const RC d0 = d[2 * q], d1 = d[2 * q + 1];
      const RC w = y - s[0] * d0 - s[1] * d1;
      stepMax = std::max(stepMax, mag(y) + mag(s[0] * d0) + mag(s[1] * d1) + mag(s[2] * d0) + mag(s[3] * d1));
      y = w + s[2] * d0 + s[3] * d1;
      d[2 * q + 1] = d0;
      d[2 * q] = w;
    }
    return y;
  }
  // Sum over the places where rounding enters (the gain product, each w
  // and each section output) of the l1 norm of the path to the output.
  ld errorGain() const {
    const int nq = static_cast<int>(sec.size());
    ld total = 0;
    for (int from = 0; from <= nq; ++from) {
      for (bool allPole : {false, true}) {
        if (allPole && from == nq) continue;
        BqRef tail{{1, 0}, {}, {}};
        for (int q = from; q < nq; ++q) tail.sec.push_back(sec[q]);
        if (allPole) tail.sec[0][2] = tail.sec[0][3] = RC{};
        tail.d.assign(tail.sec.size() * 2, RC{});
        ld sum = 0;
        for (int k = 0; k < 4000; ++k) sum += mag(tail.step(k == 0 ? RC{1, 0} : RC{}));
        total += sum;
      }
    }
    return total;
  }
};

// Stored taps of a record as the references read them.
template <class H>
ArbRef arbRefOf(const H* t, int order) {
  ArbRef r;
  r.b.resize(order + 1);
  r.a.resize(order + 1);
  r.d.assign(order, RC{});
  for (int i = 0; i <= order; ++i) r.b[i] = toRC(t[i]);
  for (int i = 1; i <= order; ++i) r.a[i] = toRC(t[order + i]);
  return r;
}

template <class H>
BqRef bqRefOf(const H* t, int numQuads) {
  BqRef r;
  r.gain = toRC(t[0]);
  for (int q = 0; q < numQuads; ++q) {
    r.sec.push_back({toRC(t[1 + 4 * q]), toRC(t[2 + 4 * q]), toRC(t[3 + 4 * q]), toRC(t[4 + 4 * q])});
  }
  r.d.assign(2 * numQuads, RC{});
  return r;
}

// Textbook forms from the caller's taps, to check the two references:
// y[n] = (sum b[k] x[n-k] - sum_{k>=1} a[k] y[n-k]) / a[0] from rest, and a
// cascade of such filters, one a section.
inline std::vector<RC> directForm(const std::vector<RC>& b, const std::vector<RC>& a, const std::vector<RC>& x) {
  std::vector<RC> y(x.size());
  for (size_t n = 0; n < x.size(); ++n) {
    RC acc{};
    for (size_t k = 0; k < b.size() && k <= n; ++k) acc = acc + b[k] * x[n - k];
    for (size_t k = 1; k < a.size() && k <= n; ++k) acc = acc - a[k] * y[n - k];
    y[n] = acc / a[0];
  }
  return y;
}

// ---- Reports ------------------------------------------------------------------------------

// One expected report; a null context stands for a trace line's.
struct Expect {
  const char* func;
  const char* context;
  const char* file;
  RyxStatus status = RYX_StsBadArg;
};

inline void expectReports(const ryxtest::ReportCapture& rec, const std::vector<Expect>& want, const char* label) {
  const auto& got = rec.reports();
  ASSERT_EQ(got.size(), want.size()) << label;
  for (size_t i = 0; i < got.size(); ++i) {
    EXPECT_EQ(got[i].status, want[i].status) << label << " #" << i;
    EXPECT_EQ(got[i].funcName, want[i].func) << label << " #" << i;
    EXPECT_EQ(got[i].context, want[i].context != nullptr ? want[i].context : "(null)") << label << " #" << i;
    EXPECT_EQ(got[i].file, want[i].file) << label << " #" << i;
  }
}

}  // namespace iirtest
