// Shared pieces of the LMS tests: one traits record per type combination
// naming its exported routines, complex long-double arithmetic, and an
// independent model of the recursion written from its description.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <type_traits>
#include <vector>

#include "ryxcore.h"
#include "test_support.h"

namespace lmstest {

using ld = long double;

struct LC {
  ld re = 0;
  ld im = 0;
};
inline LC operator+(LC a, LC b) { return {a.re + b.re, a.im + b.im}; }
inline LC operator-(LC a, LC b) { return {a.re - b.re, a.im - b.im}; }
inline LC operator*(LC a, LC b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
inline LC operator*(ld a, LC b) { return {a * b.re, a * b.im}; }
inline LC conj(LC a) { return {a.re, -a.im}; }
// |re| + |im|: not below the modulus, and the sum of the parts' rounding
// errors is bounded by u times it.
inline ld mag(LC a) { return std::fabs(a.re) + std::fabs(a.im); }

inline LC toLC(float v) { return {v, 0}; }
inline LC toLC(double v) { return {v, 0}; }
inline LC toLC(SCplx v) { return {v.re, v.im}; }
inline LC toLC(DCplx v) { return {v.re, v.im}; }

template <class T>
constexpr bool isCplx = std::is_same_v<T, SCplx> || std::is_same_v<T, DCplx>;

template <class T>
T fromLC(LC v) {
  if constexpr (std::is_same_v<T, SCplx>) {
    return SCplx{float(v.re), float(v.im)};
  } else if constexpr (std::is_same_v<T, DCplx>) {
    return DCplx{double(v.re), double(v.im)};
  } else {
    return T(v.re);
  }
}

// Unit roundoff of the type's parts.
template <class T>
constexpr ld unitOf() {
  if constexpr (std::is_same_v<T, float> || std::is_same_v<T, SCplx>) {
    return 0x1p-24L;
  } else {
    return 0x1p-53L;
  }
}

template <class T>
T randomValue(ryxtest::Random& r, double lo, double hi) {
  if constexpr (std::is_same_v<T, float>) {
    return r.f32(float(lo), float(hi));
  } else if constexpr (std::is_same_v<T, double>) {
    return r.f64(lo, hi);
  } else if constexpr (std::is_same_v<T, SCplx>) {
    return SCplx{r.f32(float(lo), float(hi)), r.f32(float(lo), float(hi))};
  } else {
    return DCplx{r.f64(lo, hi), r.f64(lo, hi)};
  }
}

template <class T>
std::vector<T> randomArray(ryxtest::Random& r, int n, double lo = -1, double hi = 1) {
  std::vector<T> v(static_cast<size_t>(n));
  for (auto& x : v) x = randomValue<T>(r, lo, hi);
  return v;
}

// ---- Type combinations: S samples, H taps (also the error and result) ----

template <class S_, class H_>
struct Combo {
  using S = S_;
  using H = H_;
};

struct SS : Combo<float, float> {
  static constexpr auto initMr = ryxsLmslInitMr;
  static constexpr auto initDlyl = ryxsLmslInitDlyl;
  static constexpr auto setDlyl = ryxsLmslSetDlyl;
  static constexpr auto getTaps = ryxsLmslGetTaps;
  static constexpr auto getDlyl = ryxsLmslGetDlyl;
  static constexpr auto setTaps = ryxsLmslSetTaps;
  static constexpr auto lmsl = ryxsLmsl;
  static constexpr auto blmsl = ryxsbLmsl;
  static constexpr auto hInitMr = ryxsLmsInitMr;
  static constexpr auto hGetTaps = ryxsLmsGetTaps;
  static constexpr auto hSetTaps = ryxsLmsSetTaps;
  static constexpr auto hGetDlyl = ryxsLmsGetDlyl;
  static constexpr auto hSetDlyl = ryxsLmsSetDlyl;
  static constexpr auto hGetErr = ryxsLmsGetErrVal;
  static constexpr auto hSetErr = ryxsLmsSetErrVal;
  static constexpr auto lms = ryxsLms;
  static constexpr auto blms = ryxsbLms;
  static constexpr auto des = ryxsLmsDes;
  static constexpr auto bdes = ryxsbLmsDes;
  static constexpr bool bitsRule = true;  // the single-sample form adapts on any nonzero step
};
struct DD : Combo<double, double> {
  static constexpr auto initMr = ryxdLmslInitMr;
  static constexpr auto initDlyl = ryxdLmslInitDlyl;
  static constexpr auto setDlyl = ryxdLmslSetDlyl;
  static constexpr auto getTaps = ryxdLmslGetTaps;
  static constexpr auto getDlyl = ryxdLmslGetDlyl;
  static constexpr auto setTaps = ryxdLmslSetTaps;
  static constexpr auto lmsl = ryxdLmsl;
  static constexpr auto blmsl = ryxdbLmsl;
  static constexpr auto hInitMr = ryxdLmsInitMr;
  static constexpr auto hGetTaps = ryxdLmsGetTaps;
  static constexpr auto hSetTaps = ryxdLmsSetTaps;
  static constexpr auto hGetDlyl = ryxdLmsGetDlyl;
  static constexpr auto hSetDlyl = ryxdLmsSetDlyl;
  static constexpr auto hGetErr = ryxdLmsGetErrVal;
  static constexpr auto hSetErr = ryxdLmsSetErrVal;
  static constexpr auto lms = ryxdLms;
  static constexpr auto blms = ryxdbLms;
  static constexpr auto des = ryxdLmsDes;
  static constexpr auto bdes = ryxdbLmsDes;
  static constexpr bool bitsRule = false;
};
struct CC : Combo<SCplx, SCplx> {
  static constexpr auto initMr = ryxcLmslInitMr;
  static constexpr auto initDlyl = ryxcLmslInitDlyl;
  static constexpr auto setDlyl = ryxcLmslSetDlyl;
  static constexpr auto getTaps = ryxcLmslGetTaps;
  static constexpr auto getDlyl = ryxcLmslGetDlyl;
  static constexpr auto setTaps = ryxcLmslSetTaps;
  static constexpr auto lmsl = ryxcLmsl;
  static constexpr auto blmsl = ryxcbLmsl;
  static constexpr auto hInitMr = ryxcLmsInitMr;
  static constexpr auto hGetTaps = ryxcLmsGetTaps;
  static constexpr auto hSetTaps = ryxcLmsSetTaps;
  static constexpr auto hGetDlyl = ryxcLmsGetDlyl;
  static constexpr auto hSetDlyl = ryxcLmsSetDlyl;
  static constexpr auto hGetErr = ryxcLmsGetErrVal;
  static constexpr auto hSetErr = ryxcLmsSetErrVal;
  static constexpr auto lms = ryxcLms;
  static constexpr auto blms = ryxcbLms;
  static constexpr auto des = ryxcLmsDes;
  static constexpr auto bdes = ryxcbLmsDes;
  static constexpr bool bitsRule = false;
};
struct ZZ : Combo<DCplx, DCplx> {
  static constexpr auto initMr = ryxzLmslInitMr;
  static constexpr auto initDlyl = ryxzLmslInitDlyl;
  static constexpr auto setDlyl = ryxzLmslSetDlyl;
  static constexpr auto getTaps = ryxzLmslGetTaps;
  static constexpr auto getDlyl = ryxzLmslGetDlyl;
  static constexpr auto setTaps = ryxzLmslSetTaps;
  static constexpr auto lmsl = ryxzLmsl;
  static constexpr auto blmsl = ryxzbLmsl;
  static constexpr auto hInitMr = ryxzLmsInitMr;
  static constexpr auto hGetTaps = ryxzLmsGetTaps;
  static constexpr auto hSetTaps = ryxzLmsSetTaps;
  static constexpr auto hGetDlyl = ryxzLmsGetDlyl;
  static constexpr auto hSetDlyl = ryxzLmsSetDlyl;
  static constexpr auto hGetErr = ryxzLmsGetErrVal;
  static constexpr auto hSetErr = ryxzLmsSetErrVal;
  static constexpr auto lms = ryxzLms;
  static constexpr auto blms = ryxzbLms;
  static constexpr auto des = ryxzLmsDes;
  static constexpr auto bdes = ryxzbLmsDes;
  static constexpr bool bitsRule = false;
};
struct SC : Combo<float, SCplx> {
  static constexpr auto initMr = ryxcLmslInitMr;
  static constexpr auto initDlyl = ryxsLmslInitDlyl;
  static constexpr auto setDlyl = ryxsLmslSetDlyl;
  static constexpr auto getTaps = ryxcLmslGetTaps;
  static constexpr auto lmsl = ryxscLmsl;
  static constexpr auto blmsl = ryxscbLmsl;
  static constexpr auto hInitMr = ryxscLmsInitMr;
  static constexpr auto hGetTaps = ryxcLmsGetTaps;
  static constexpr auto hSetTaps = ryxcLmsSetTaps;
  static constexpr auto hGetErr = ryxcLmsGetErrVal;
  static constexpr auto hSetErr = ryxcLmsSetErrVal;
  static constexpr auto lms = ryxscLms;
  static constexpr auto blms = ryxscbLms;
  static constexpr auto des = ryxscLmsDes;
  static constexpr auto bdes = ryxscbLmsDes;
  static constexpr bool bitsRule = false;
};
struct DZ : Combo<double, DCplx> {
  static constexpr auto initMr = ryxzLmslInitMr;
  static constexpr auto initDlyl = ryxdLmslInitDlyl;
  static constexpr auto setDlyl = ryxdLmslSetDlyl;
  static constexpr auto getTaps = ryxzLmslGetTaps;
  static constexpr auto lmsl = ryxdzLmsl;
  static constexpr auto blmsl = ryxdzbLmsl;
  static constexpr auto hInitMr = ryxdzLmsInitMr;
  static constexpr auto hGetTaps = ryxzLmsGetTaps;
  static constexpr auto hSetTaps = ryxzLmsSetTaps;
  static constexpr auto hGetErr = ryxzLmsGetErrVal;
  static constexpr auto hSetErr = ryxzLmsSetErrVal;
  static constexpr auto lms = ryxdzLms;
  static constexpr auto blms = ryxdzbLms;
  static constexpr auto des = ryxdzLmsDes;
  static constexpr auto bdes = ryxdzbLmsDes;
  static constexpr bool bitsRule = false;
};

using AllCombos = ::testing::Types<SS, DD, CC, ZZ, SC, DZ>;

// ---- The model ---------------------------------------------------------------
//
// Taps are kept in long double without rounding; the line is the record of
// every sample so far (oldest first), line element k being the k-th newest
// and elements at or beyond dlylLen reading as zero. Beside each tap the
// model carries a bound on how far a correct implementation may be from it,
// propagated step by step:
//   b' = |1-leak|*b + |step|*dE*|x| + 8u_d*(|t|*|1-leak| + |step|*|e|*|x|) + uH*(|t'| + b'')
// where dE bounds the error's own difference (0 when the caller gives it),
// u_d is the double unit roundoff of the update's arithmetic and uH that of
// the tap type at the store. An output may differ by
//   sum b_i*|x_i| + uO*(|y| + that) + pairs*u_f*sum |t_i|*|x_i| + (n+4)*2^-63*sum |t_i|*|x_i|,
// pairs counting the float roundings of the complex float sum.
template <class C>
struct Model {
  using S = typename C::S;
  using H = typename C::H;
  static constexpr ld uH = unitOf<H>();
  static constexpr ld uD = 0x1p-53L;

  std::vector<LC> taps;
  std::vector<ld> bound;
  std::vector<LC> hist;
  int dlylLen = 0;
  int errDly = 0;
  float step = 0;
  float leak = 0;
  LC err;         // kept error of the desired-signal forms
  ld errBound = 0;
  ld lastBound = 0;  // bound of the last output

  LC line(int k) const {
    if (k >= dlylLen || k >= static_cast<int>(hist.size())) return {};
    return hist[hist.size() - 1 - static_cast<size_t>(k)];
  }

  void update(int off, LC e, ld dE) {
    const ld keep = 1.0L - ld(leak);
    for (size_t i = 0; i < taps.size(); ++i) {
      const LC x = line(off + static_cast<int>(i));
      const LC t = taps[i];
      const LC next = keep * t + (ld(step) * e) * conj(x);
      const ld inherited = std::fabs(keep) * bound[i] + std::fabs(ld(step)) * dE * mag(x);
      bound[i] = inherited * (1 + uH) + 8 * uD * (mag(t) * std::fabs(keep) + std::fabs(ld(step)) * mag(e) * mag(x)) +
                 uH * mag(next) * 1.001L;
      taps[i] = next;
    }
  }

  LC output(int base) {
    LC y;
    ld spread = 0, size = 0;
    for (size_t i = 0; i < taps.size(); ++i) {
      const LC x = line(base + static_cast<int>(i));
      y = y + taps[i] * x;
      spread += bound[i] * mag(x);
      size += mag(taps[i]) * mag(x);
    }
    const ld n = ld(taps.size());
    const ld pairs = std::is_same_v<H, SCplx> && std::is_same_v<S, SCplx> ? (n / 2 + 1) * 0x1p-24L * 1.01L : 0;
    lastBound = spread * 1.001L + unitOf<H>() * (mag(y) + spread) * 1.001L + pairs * size + (n + 4) * 0x1p-62L * size;
    return y;
  }

  void push(const S* samples, int D) {
    for (int k = 0; k < D; ++k) hist.push_back(toLC(samples[k]));
  }

  // One adaptive step: `adapt` says whether the taps change.
  LC stepOne(S sample, LC e, ld dE, bool adapt) {
    if (adapt) update(errDly, e, dE);
    push(&sample, 1);
    return output(0);
  }
  LC stepGroup(const S* samples, int D, int P, LC e, ld dE, bool adapt) {
    const int base = D - 1 - P;
    if (adapt) update(base + errDly, e, dE);
    push(samples, D);
    return output(base);
  }
  // Desired signal: the kept error drives the update, then the new error
  // is kept with its bound.
  LC des(const S* samples, int D, int P, LC d) {
    const LC y = stepGroup(samples, D, P, err, errBound, true);
    err = d - y;
    errBound = lastBound * (1 + unitOf<H>()) + unitOf<H>() * mag(err) * 1.001L;
    return y;
  }
};

// |impl - model| within the bound, part by part.
template <class T>
::testing::AssertionResult within(T got, LC want, ld bound) {
  const LC g = toLC(got);
  const ld diff = mag(g - want);
  if (diff <= bound + 1e-300L) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "got (" << double(g.re) << ", " << double(g.im) << ") want ("
                                       << double(want.re) << ", " << double(want.im) << ") diff " << double(diff)
                                       << " bound " << double(bound);
}

}  // namespace lmstest
