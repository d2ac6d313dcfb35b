// Shared pieces of the FIR tests: the eight type combinations with the
// routines that serve them, seeded signal generators, a direct convolution
// in long double as the reference, and a report recorder.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "ryxcore.h"

namespace firtest {

using ld = long double;

// ---- Exact complex arithmetic in long double ------------------------------

struct RC {
  ld re = 0;
  ld im = 0;
};
inline RC toRC(float v) { return {v, 0}; }
inline RC toRC(double v) { return {v, 0}; }
inline RC toRC(SCplx v) { return {v.re, v.im}; }
inline RC toRC(DCplx v) { return {v.re, v.im}; }
inline RC toRC(RC v) { return v; }
inline RC operator*(RC a, RC b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
inline RC operator+(RC a, RC b) { return {a.re + b.re, a.im + b.im}; }
inline RC operator-(RC a, RC b) { return {a.re - b.re, a.im - b.im}; }
inline ld mag1(RC a) { return std::fabs(a.re) + std::fabs(a.im); }
// Rounds an extended value to a result type.
template <class O>
O fromRC(RC v) {
  if constexpr (std::is_same_v<O, float> || std::is_same_v<O, double>) {
    return static_cast<O>(v.re);
  } else {
    using F = decltype(O{}.re);
    return O{static_cast<F>(v.re), static_cast<F>(v.im)};
  }
}

// ---- Float arithmetic as the float kernels form it ---------------------------
//
// Complex by complex: re = r*a - u*b, im = u*a + r*b for x = r+ui, h = a+bi;
// a real factor multiplies both parts of the complex one.
inline float fmul(float x, float h) { return x * h; }
inline SCplx fmul(SCplx x, SCplx h) { return {x.re * h.re - x.im * h.im, x.im * h.re + x.re * h.im}; }
inline SCplx fmul(float x, SCplx h) { return {x * h.re, x * h.im}; }
inline SCplx fmul(SCplx x, float h) { return {x.re * h, x.im * h}; }
inline SCplx operator+(SCplx a, SCplx b) { return {a.re + b.re, a.im + b.im}; }

// The block kernels' accumulation of products prod(0) .. prod(n-1): two
// accumulators A and B and a pending product P; an odd n starts B with
// product 0; each pair does B += P, A += prod(i), P = prod(i+1); the output
// is A + (B + P).
template <class T, class Prod>
T pendingSum(int n, Prod prod) {
  T a{}, b{}, p{};
  int i = 0;
  if (n % 2 == 1) {
    b = prod(0);
    i = 1;
  }
  for (; i < n; i += 2) {
    b = b + p;
    a = a + prod(i);
    p = prod(i + 1);
  }
  return a + (b + p);
}

// ---- Type combinations --------------------------------------------------------
//
// Side<T> holds the routines keyed by one element type: the tap set-up of
// taps of type T and the history set-up of samples of type T. A combination
// names its sample type S, tap type H, result type O, its own filter and
// Init routines and the forms with an output argument (null where there are
// none); the rest come from Side<H> (taps) and Side<S> (history).
template <class T>
struct Side;
#define FIR_SIDE(T, lInit, lInitMr, lSetTaps, lGetTaps, lInitDlyl, lSetDlyl, lGetDlyl, hSetTaps, hGetTaps, hSetDlyl, \
                 hGetDlyl)                                                                                          \
  template <>                                                                                                       \
  struct Side<T> {                                                                                                  \
    static constexpr auto firlInit = lInit;                                                                         \
    static constexpr auto firlInitMr = lInitMr;                                                                     \
    static constexpr auto firlSetTaps = lSetTaps;                                                                   \
    static constexpr auto firlGetTaps = lGetTaps;                                                                   \
    static constexpr auto firlInitDlyl = lInitDlyl;                                                                 \
    static constexpr auto firlSetDlyl = lSetDlyl;                                                                   \
    static constexpr auto firlGetDlyl = lGetDlyl;                                                                   \
    static constexpr auto firSetTaps = hSetTaps;                                                                    \
    static constexpr auto firGetTaps = hGetTaps;                                                                    \
    static constexpr auto firSetDlyl = hSetDlyl;                                                                    \
    static constexpr auto firGetDlyl = hGetDlyl;                                                                    \
  }
FIR_SIDE(float, ryxsFirlInit, ryxsFirlInitMr, ryxsFirlSetTaps, ryxsFirlGetTaps, ryxsFirlInitDlyl, ryxsFirlSetDlyl,
         ryxsFirlGetDlyl, ryxsFirSetTaps, ryxsFirGetTaps, ryxsFirSetDlyl, ryxsFirGetDlyl);
FIR_SIDE(SCplx, ryxcFirlInit, ryxcFirlInitMr, ryxcFirlSetTaps, ryxcFirlGetTaps, ryxcFirlInitDlyl, ryxcFirlSetDlyl,
         ryxcFirlGetDlyl, ryxcFirSetTaps, ryxcFirGetTaps, ryxcFirSetDlyl, ryxcFirGetDlyl);
FIR_SIDE(double, ryxdFirlInit, ryxdFirlInitMr, ryxdFirlSetTaps, ryxdFirlGetTaps, ryxdFirlInitDlyl, ryxdFirlSetDlyl,
         ryxdFirlGetDlyl, ryxdFirSetTaps, ryxdFirGetTaps, ryxdFirSetDlyl, ryxdFirGetDlyl);
FIR_SIDE(DCplx, ryxzFirlInit, ryxzFirlInitMr, ryxzFirlSetTaps, ryxzFirlGetTaps, ryxzFirlInitDlyl, ryxzFirlSetDlyl,
         ryxzFirlGetDlyl, ryxzFirSetTaps, ryxzFirGetTaps, ryxzFirSetDlyl, ryxzFirGetDlyl);
#undef FIR_SIDE

#define FIR_COMBO(Name, code, SS, HH, OO, lFir, lBlock, hFir, hBlock, hInit, hInitMr, lOut, hOut)      \
  struct Name {                                                                                      \
    using S = SS;                                                                                    \
    using H = HH;                                                                                    \
    using O = OO;                                                                                    \
    static constexpr const char* name = code;                                                        \
    static constexpr bool isFloat = std::is_same_v<S, float> || std::is_same_v<S, SCplx>;            \
    static constexpr auto firl = lFir;                                                               \
    static constexpr auto bFirl = lBlock;                                                            \
    static constexpr auto fir = hFir;                                                                \
    static constexpr auto bFir = hBlock;                                                             \
    static constexpr auto firInit = hInit;                                                           \
    static constexpr auto firInitMr = hInitMr;                                                       \
    static constexpr auto firlOut = lOut;                                                            \
    static constexpr auto firOut = hOut;                                                             \
  }
FIR_COMBO(ComboS, "s", float, float, float, ryxsFirl, ryxsbFirl, ryxsFir, ryxsbFir, ryxsFirInit, ryxsFirInitMr,
          nullptr, nullptr);
FIR_COMBO(ComboC, "c", SCplx, SCplx, SCplx, ryxcFirl, ryxcbFirl, ryxcFir, ryxcbFir, ryxcFirInit, ryxcFirInitMr,
          ryxcFirlOut, ryxcFirOut);
FIR_COMBO(ComboSC, "sc", float, SCplx, SCplx, ryxscFirl, ryxscbFirl, ryxscFir, ryxscbFir, ryxscFirInit, ryxscFirInitMr,
          ryxscFirlOut, ryxscFirOut);
FIR_COMBO(ComboCS, "cs", SCplx, float, SCplx, ryxcsFirl, ryxcsbFirl, ryxcsFir, ryxcsbFir, ryxcsFirInit, ryxcsFirInitMr,
          ryxcsFirlOut, ryxcsFirOut);
FIR_COMBO(ComboD, "d", double, double, double, ryxdFirl, ryxdbFirl, ryxdFir, ryxdbFir, ryxdFirInit, ryxdFirInitMr,
          nullptr, nullptr);
FIR_COMBO(ComboZ, "z", DCplx, DCplx, DCplx, ryxzFirl, ryxzbFirl, ryxzFir, ryxzbFir, ryxzFirInit, ryxzFirInitMr,
          nullptr, nullptr);
FIR_COMBO(ComboDZ, "dz", double, DCplx, DCplx, ryxdzFirl, ryxdzbFirl, ryxdzFir, ryxdzbFir, ryxdzFirInit, ryxdzFirInitMr,
          nullptr, nullptr);
FIR_COMBO(ComboZD, "zd", DCplx, double, DCplx, ryxzdFirl, ryxzdbFirl, ryxzdFir, ryxzdbFir, ryxzdFirInit, ryxzdFirInitMr,
          nullptr, nullptr);
#undef FIR_COMBO

using AllCombos = ::testing::Types<ComboS, ComboC, ComboSC, ComboCS, ComboD, ComboZ, ComboDZ, ComboZD>;

// Test names: the combination's code, with the form in front for a form.
struct ComboNames {
  template <class T>
  static std::string GetName(int) {
    if constexpr (requires { typename T::Combo; }) {
      std::string form = T::high ? "high_" : "low_";
      return form.append(T::Combo::name);
    } else {
      return T::name;
    }
  }
};

// ---- Signals ----------------------------------------------------------------------

inline void fill(std::mt19937& g, float& v) { v = std::uniform_real_distribution<float>(-1.0f, 1.0f)(g); }
inline void fill(std::mt19937& g, double& v) { v = std::uniform_real_distribution<double>(-1.0, 1.0)(g); }
template <class C>
void fill(std::mt19937& g, C& v) {
  fill(g, v.re);
  fill(g, v.im);
}

template <class T>
std::vector<T> randomVec(std::mt19937& g, int n) {
  std::vector<T> v(static_cast<size_t>(n));
  for (T& x : v) fill(g, x);
  return v;
}

template <class T>
bool sameBits(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

// Unit roundoff of the result type.
template <class O>
constexpr ld epsOf() {
  if constexpr (std::is_same_v<O, float> || std::is_same_v<O, SCplx>) return std::ldexp(1.0L, -24);
  return std::ldexp(1.0L, -53);
}

// ---- Reference filters ----------------------------------------------------------------
//
// Direct convolution over a signal given as history (oldest first) followed
// by the new samples: y[n] = sum over k of taps[k] * x[n-k], in long double,
// with the sum of magnitudes of the terms for an error bound.
struct RefOut {
  RC value;
  ld scale;
};

template <class S, class H>
std::vector<RefOut> directConv(const std::vector<H>& taps, const std::vector<S>& history, const std::vector<S>& input) {
  std::vector<S> x = history;
  x.insert(x.end(), input.begin(), input.end());
  const int hist = static_cast<int>(history.size());
  std::vector<RefOut> y;
  for (int n = 0; n < static_cast<int>(input.size()); ++n) {
    RefOut o{{0, 0}, 0};
    for (int k = 0; k < static_cast<int>(taps.size()) && k <= hist + n; ++k) {
      const RC h = toRC(taps[static_cast<size_t>(k)]), v = toRC(x[static_cast<size_t>(hist + n - k)]);
      o.value = o.value + h * v;
      o.scale += mag1(h) * mag1(v);
    }
    y.push_back(o);
  }
  return y;
}

// Multirate reference written as its definition: insert up-1 zeros after
// each input (the input at high-rate tick i*up + upPhase), filter at the high
// rate, keep the ticks congruent to downPhase modulo down. The history
// enters as earlier inputs on the same grid.
template <class S, class H>
std::vector<RefOut> zeroInsertFilterDecimate(const std::vector<H>& taps, const std::vector<S>& history,
                                             const std::vector<S>& input, int up, int upPhase, int down,
                                             int downPhase) {
  auto stuff = [&](const std::vector<S>& v) {
    std::vector<RC> z(v.size() * static_cast<size_t>(up), RC{0, 0});
    for (size_t i = 0; i < v.size(); ++i) z[i * static_cast<size_t>(up) + static_cast<size_t>(upPhase)] = toRC(v[i]);
    return z;
  };
  const std::vector<RefOut> all = directConv(taps, stuff(history), stuff(input));
  std::vector<RefOut> y;
  for (size_t t = static_cast<size_t>(downPhase); t < all.size(); t += static_cast<size_t>(down)) y.push_back(all[t]);
  return y;
}

// |got - want| within factor * eps * (terms + 2) * scale, plus a floor for
// results that cancel to nearly zero.
template <class O>
::testing::AssertionResult near(const O& got, const RefOut& want, int terms, ld factor = 2) {
  const RC g = toRC(got);
  const ld eps = epsOf<O>();
  const ld bound = factor * eps * (terms + 2) * want.scale + 4 * std::numeric_limits<float>::min();
  const ld dre = std::fabs(g.re - want.value.re);
  const ld dim = std::fabs(g.im - want.value.im);
  if (dre <= bound && dim <= bound) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "got (" << static_cast<double>(g.re) << ", " << static_cast<double>(g.im)
                                       << ") want (" << static_cast<double>(want.value.re) << ", "
                                       << static_cast<double>(want.value.im) << ") bound "
                                       << static_cast<double>(bound);
}

// Every output of a block against the reference, and bitwise equality of two
// runs of samples.
template <class O>
::testing::AssertionResult allNear(const O* got, const std::vector<RefOut>& want, int terms) {
  for (size_t i = 0; i < want.size(); ++i) {
    ::testing::AssertionResult r = near(got[i], want[i], terms);
    if (!r) return ::testing::AssertionFailure() << "output " << i << ": " << r.message();
  }
  return ::testing::AssertionSuccess();
}

template <class T>
::testing::AssertionResult allSame(const T* a, const T* b, size_t n) {
  for (size_t i = 0; i < n; ++i)
    if (!sameBits(a[i], b[i])) return ::testing::AssertionFailure() << "differs at " << i;
  return ::testing::AssertionSuccess();
}

// The last n samples of `first` followed by `then`.
template <class S>
std::vector<S> lastOf(const std::vector<S>& first, const std::vector<S>& then, size_t n) {
  std::vector<S> all = first;
  all.insert(all.end(), then.begin(), then.end());
  return std::vector<S>(all.end() - static_cast<long>(n), all.end());
}

inline int ceilDiv(int a, int b) { return (a + b - 1) / b; }

// ---- The two forms behind one face ---------------------------------------------------
//
// Low<C> keeps a tap state, a delay state and the arrays they point at; High<C>
// keeps one record (both are Form<C, high>). Both take taps and history (oldest first; null when
// empty), filter blocks and single samples and hand back history and taps,
// so a rule both forms must keep is written once.
struct Rates {
  int up = 1, upPhase = 0, down = 1, downPhase = 0;
  bool multi() const { return up > 1 || down > 1; }
};

template <class T>
const T* orNull(const std::vector<T>& v) {
  return v.empty() ? nullptr : v.data();
}

template <class C, bool isHigh>
struct Form {
  using Combo = C;
  using S = typename C::S;
  using H = typename C::H;
  using O = typename C::O;
  using Tap = Side<H>;
  using Hist = Side<S>;
  static constexpr bool high = isHigh;

  Form() = default;
  Form(const Form&) = delete;
  ~Form() {
    if (st.initMark == &st) ryxFirFree(&st);
  }
  // A live record is initialised again over itself.
  void init(const std::vector<H>& t, const std::vector<S>& hist, Rates r = {}) {
    taps = t;
    const int len = static_cast<int>(taps.size());
    if constexpr (isHigh) {
      if (r.multi()) {
        C::firInitMr(taps.data(), len, orNull(hist), r.up, r.upPhase, r.down, r.downPhase, &st);
      } else {
        C::firInit(taps.data(), len, orNull(hist), &st);
      }
      ASSERT_EQ(st.initMark, &st);
      ASSERT_EQ(st.dlylLen, r.multi() ? ceilDiv(len, r.up) : len - 1);
    } else {
      if (r.multi()) {
        Tap::firlInitMr(taps.data(), len, r.up, r.upPhase, r.down, r.downPhase, &ts);
      } else {
        Tap::firlInit(taps.data(), len, &ts);
      }
      line.assign(static_cast<size_t>(ceilDiv(len, r.up)), S{});
      Hist::firlInitDlyl(&ts, line.data(), &ds);
      ASSERT_EQ(ds.dlylLen, static_cast<int>(line.size()));
      Hist::firlSetDlyl(&ts, orNull(hist), &ds);
    }
  }
  void block(const S* src, O* dst, int n) { isHigh ? C::bFir(&st, src, dst, n) : C::bFirl(&ts, &ds, src, dst, n); }
  O one(S x) { return isHigh ? C::fir(&st, x) : C::firl(&ts, &ds, x); }
  void setTaps(const H* t) { isHigh ? Tap::firSetTaps(t, &st) : Tap::firlSetTaps(t, &ts); }
  void getTaps(H* t) { isHigh ? Tap::firGetTaps(&st, t) : Tap::firlGetTaps(&ts, t); }
  void setHistory(const S* h) { isHigh ? Hist::firSetDlyl(h, &st) : Hist::firlSetDlyl(&ts, h, &ds); }
  // A multirate line shows all its places, a single-rate one all but one.
  std::vector<S> history() {
    std::vector<S> h(isHigh ? static_cast<size_t>(st.dlylLen) : line.size() - (ts.isMultiRate ? 0 : 1));
    if (h.empty()) return h;
    if constexpr (isHigh) {
      Hist::firGetDlyl(&st, h.data());
    } else {
      Hist::firlGetDlyl(&ts, &ds, h.data());
      EXPECT_EQ(ds.isDlyFilterMode, 1);  // a copy out keeps the working order
    }
    return h;
  }

  std::vector<H> taps;  // the low-level form's taps
  std::vector<S> line;  // the low-level form's delay line
  RyxFirTapState ts{};
  RyxFirDlyState ds{};
  RyxFirState st{};
};
template <class C>
using Low = Form<C, false>;
template <class C>
using High = Form<C, true>;

using AllForms = ::testing::Types<Low<ComboS>, Low<ComboC>, Low<ComboSC>, Low<ComboCS>, Low<ComboD>, Low<ComboZ>,
                                  Low<ComboDZ>, Low<ComboZD>, High<ComboS>, High<ComboC>, High<ComboSC>,
                                  High<ComboCS>, High<ComboD>, High<ComboZ>, High<ComboDZ>, High<ComboZD>>;

// ---- Reports -------------------------------------------------------------------------------

struct Report {
  RyxStatus status;
  std::string func;
  std::string context;
  std::string file;
};

inline std::vector<Report>& reports() {
  static std::vector<Report> all;
  return all;
}

inline RyxStatus recordReport(RyxStatus status, const char* func, const char* context, const char* file, int) {
  reports().push_back({status, func ? func : "", context ? context : "", file ? file : ""});
  return status;
}

// Installs the recorder in Parent mode with a clear status for the scope of
// a test, and restores the thread's previous settings after it.
class RecordReports {
 public:
  RecordReports() : prevFn_(ryxRedirectError(recordReport)), prevMode_(ryxGetErrMode()) {
    ryxSetErrMode(RYX_ErrorModeParent);
    ryxSetErrStatus(RYX_StsOk);
    reports().clear();
  }
  ~RecordReports() {
    ryxRedirectError(prevFn_);
    ryxSetErrMode(prevMode_);
    ryxSetErrStatus(RYX_StsOk);
  }
  RecordReports(const RecordReports&) = delete;
  RecordReports& operator=(const RecordReports&) = delete;

 private:
  ryxReportFn prevFn_;
  int prevMode_;
};

}  // namespace firtest
