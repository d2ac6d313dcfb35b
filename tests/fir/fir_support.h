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
inline RC operator*(RC a, RC b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
inline RC operator+(RC a, RC b) { return {a.re + b.re, a.im + b.im}; }
inline ld mag1(RC a) { return std::fabs(a.re) + std::fabs(a.im); }

template <class T>
constexpr bool isComplex = std::is_same_v<T, SCplx> || std::is_same_v<T, DCplx>;

// ---- Type combinations --------------------------------------------------------
//
// Each combination names its sample type S, tap type H, result type O and
// every routine of both forms that it uses: set-up of taps by tap type,
// of history by sample type.
struct ComboS {
  using S = float;
  using H = float;
  using O = float;
  static constexpr const char* name = "s";
  static constexpr bool isFloat = true;
  static constexpr auto firl = ryxsFirl;
  static constexpr auto bFirl = ryxsbFirl;
  static constexpr auto firlInit = ryxsFirlInit;
  static constexpr auto firlInitMr = ryxsFirlInitMr;
  static constexpr auto firlSetTaps = ryxsFirlSetTaps;
  static constexpr auto firlGetTaps = ryxsFirlGetTaps;
  static constexpr auto firlInitDlyl = ryxsFirlInitDlyl;
  static constexpr auto firlSetDlyl = ryxsFirlSetDlyl;
  static constexpr auto firlGetDlyl = ryxsFirlGetDlyl;
  static constexpr auto fir = ryxsFir;
  static constexpr auto bFir = ryxsbFir;
  static constexpr auto firInit = ryxsFirInit;
  static constexpr auto firInitMr = ryxsFirInitMr;
  static constexpr auto firSetTaps = ryxsFirSetTaps;
  static constexpr auto firGetTaps = ryxsFirGetTaps;
  static constexpr auto firSetDlyl = ryxsFirSetDlyl;
  static constexpr auto firGetDlyl = ryxsFirGetDlyl;
};
struct ComboC {
  using S = SCplx;
  using H = SCplx;
  using O = SCplx;
  static constexpr const char* name = "c";
  static constexpr bool isFloat = true;
  static constexpr auto firl = ryxcFirl;
  static constexpr auto bFirl = ryxcbFirl;
  static constexpr auto firlInit = ryxcFirlInit;
  static constexpr auto firlInitMr = ryxcFirlInitMr;
  static constexpr auto firlSetTaps = ryxcFirlSetTaps;
  static constexpr auto firlGetTaps = ryxcFirlGetTaps;
  static constexpr auto firlInitDlyl = ryxcFirlInitDlyl;
  static constexpr auto firlSetDlyl = ryxcFirlSetDlyl;
  static constexpr auto firlGetDlyl = ryxcFirlGetDlyl;
  static constexpr auto fir = ryxcFir;
  static constexpr auto bFir = ryxcbFir;
  static constexpr auto firInit = ryxcFirInit;
  static constexpr auto firInitMr = ryxcFirInitMr;
  static constexpr auto firSetTaps = ryxcFirSetTaps;
  static constexpr auto firGetTaps = ryxcFirGetTaps;
  static constexpr auto firSetDlyl = ryxcFirSetDlyl;
  static constexpr auto firGetDlyl = ryxcFirGetDlyl;
};
struct ComboSC {
  using S = float;
  using H = SCplx;
  using O = SCplx;
  static constexpr const char* name = "sc";
  static constexpr bool isFloat = true;
  static constexpr auto firl = ryxscFirl;
  static constexpr auto bFirl = ryxscbFirl;
  static constexpr auto firlInit = ryxcFirlInit;
  static constexpr auto firlInitMr = ryxcFirlInitMr;
  static constexpr auto firlSetTaps = ryxcFirlSetTaps;
  static constexpr auto firlGetTaps = ryxcFirlGetTaps;
  static constexpr auto firlInitDlyl = ryxsFirlInitDlyl;
  static constexpr auto firlSetDlyl = ryxsFirlSetDlyl;
  static constexpr auto firlGetDlyl = ryxsFirlGetDlyl;
  static constexpr auto fir = ryxscFir;
  static constexpr auto bFir = ryxscbFir;
  static constexpr auto firInit = ryxscFirInit;
  static constexpr auto firInitMr = ryxscFirInitMr;
  static constexpr auto firSetTaps = ryxcFirSetTaps;
  static constexpr auto firGetTaps = ryxcFirGetTaps;
  static constexpr auto firSetDlyl = ryxsFirSetDlyl;
  static constexpr auto firGetDlyl = ryxsFirGetDlyl;
};
struct ComboCS {
  using S = SCplx;
  using H = float;
  using O = SCplx;
  static constexpr const char* name = "cs";
  static constexpr bool isFloat = true;
  static constexpr auto firl = ryxcsFirl;
  static constexpr auto bFirl = ryxcsbFirl;
  static constexpr auto firlInit = ryxsFirlInit;
  static constexpr auto firlInitMr = ryxsFirlInitMr;
  static constexpr auto firlSetTaps = ryxsFirlSetTaps;
  static constexpr auto firlGetTaps = ryxsFirlGetTaps;
  static constexpr auto firlInitDlyl = ryxcFirlInitDlyl;
  static constexpr auto firlSetDlyl = ryxcFirlSetDlyl;
  static constexpr auto firlGetDlyl = ryxcFirlGetDlyl;
  static constexpr auto fir = ryxcsFir;
  static constexpr auto bFir = ryxcsbFir;
  static constexpr auto firInit = ryxcsFirInit;
  static constexpr auto firInitMr = ryxcsFirInitMr;
  static constexpr auto firSetTaps = ryxsFirSetTaps;
  static constexpr auto firGetTaps = ryxsFirGetTaps;
  static constexpr auto firSetDlyl = ryxcFirSetDlyl;
  static constexpr auto firGetDlyl = ryxcFirGetDlyl;
};
struct ComboD {
  using S = double;
  using H = double;
  using O = double;
  static constexpr const char* name = "d";
  static constexpr bool isFloat = false;
  static constexpr auto firl = ryxdFirl;
  static constexpr auto bFirl = ryxdbFirl;
  static constexpr auto firlInit = ryxdFirlInit;
  static constexpr auto firlInitMr = ryxdFirlInitMr;
  static constexpr auto firlSetTaps = ryxdFirlSetTaps;
  static constexpr auto firlGetTaps = ryxdFirlGetTaps;
  static constexpr auto firlInitDlyl = ryxdFirlInitDlyl;
  static constexpr auto firlSetDlyl = ryxdFirlSetDlyl;
  static constexpr auto firlGetDlyl = ryxdFirlGetDlyl;
  static constexpr auto fir = ryxdFir;
  static constexpr auto bFir = ryxdbFir;
  static constexpr auto firInit = ryxdFirInit;
  static constexpr auto firInitMr = ryxdFirInitMr;
  static constexpr auto firSetTaps = ryxdFirSetTaps;
  static constexpr auto firGetTaps = ryxdFirGetTaps;
  static constexpr auto firSetDlyl = ryxdFirSetDlyl;
  static constexpr auto firGetDlyl = ryxdFirGetDlyl;
};
struct ComboZ {
  using S = DCplx;
  using H = DCplx;
  using O = DCplx;
  static constexpr const char* name = "z";
  static constexpr bool isFloat = false;
  static constexpr auto firl = ryxzFirl;
  static constexpr auto bFirl = ryxzbFirl;
  static constexpr auto firlInit = ryxzFirlInit;
  static constexpr auto firlInitMr = ryxzFirlInitMr;
  static constexpr auto firlSetTaps = ryxzFirlSetTaps;
  static constexpr auto firlGetTaps = ryxzFirlGetTaps;
  static constexpr auto firlInitDlyl = ryxzFirlInitDlyl;
  static constexpr auto firlSetDlyl = ryxzFirlSetDlyl;
  static constexpr auto firlGetDlyl = ryxzFirlGetDlyl;
  static constexpr auto fir = ryxzFir;
  static constexpr auto bFir = ryxzbFir;
  static constexpr auto firInit = ryxzFirInit;
  static constexpr auto firInitMr = ryxzFirInitMr;
  static constexpr auto firSetTaps = ryxzFirSetTaps;
  static constexpr auto firGetTaps = ryxzFirGetTaps;
  static constexpr auto firSetDlyl = ryxzFirSetDlyl;
  static constexpr auto firGetDlyl = ryxzFirGetDlyl;
};
struct ComboDZ {
  using S = double;
  using H = DCplx;
  using O = DCplx;
  static constexpr const char* name = "dz";
  static constexpr bool isFloat = false;
  static constexpr auto firl = ryxdzFirl;
  static constexpr auto bFirl = ryxdzbFirl;
  static constexpr auto firlInit = ryxzFirlInit;
  static constexpr auto firlInitMr = ryxzFirlInitMr;
  static constexpr auto firlSetTaps = ryxzFirlSetTaps;
  static constexpr auto firlGetTaps = ryxzFirlGetTaps;
  static constexpr auto firlInitDlyl = ryxdFirlInitDlyl;
  static constexpr auto firlSetDlyl = ryxdFirlSetDlyl;
  static constexpr auto firlGetDlyl = ryxdFirlGetDlyl;
  static constexpr auto fir = ryxdzFir;
  static constexpr auto bFir = ryxdzbFir;
  static constexpr auto firInit = ryxdzFirInit;
  static constexpr auto firInitMr = ryxdzFirInitMr;
  static constexpr auto firSetTaps = ryxzFirSetTaps;
  static constexpr auto firGetTaps = ryxzFirGetTaps;
  static constexpr auto firSetDlyl = ryxdFirSetDlyl;
  static constexpr auto firGetDlyl = ryxdFirGetDlyl;
};
struct ComboZD {
  using S = DCplx;
  using H = double;
  using O = DCplx;
  static constexpr const char* name = "zd";
  static constexpr bool isFloat = false;
  static constexpr auto firl = ryxzdFirl;
  static constexpr auto bFirl = ryxzdbFirl;
  static constexpr auto firlInit = ryxdFirlInit;
  static constexpr auto firlInitMr = ryxdFirlInitMr;
  static constexpr auto firlSetTaps = ryxdFirlSetTaps;
  static constexpr auto firlGetTaps = ryxdFirlGetTaps;
  static constexpr auto firlInitDlyl = ryxzFirlInitDlyl;
  static constexpr auto firlSetDlyl = ryxzFirlSetDlyl;
  static constexpr auto firlGetDlyl = ryxzFirlGetDlyl;
  static constexpr auto fir = ryxzdFir;
  static constexpr auto bFir = ryxzdbFir;
  static constexpr auto firInit = ryxzdFirInit;
  static constexpr auto firInitMr = ryxzdFirInitMr;
  static constexpr auto firSetTaps = ryxdFirSetTaps;
  static constexpr auto firGetTaps = ryxdFirGetTaps;
  static constexpr auto firSetDlyl = ryxzFirSetDlyl;
  static constexpr auto firGetDlyl = ryxzFirGetDlyl;
};

using AllCombos = ::testing::Types<ComboS, ComboC, ComboSC, ComboCS, ComboD, ComboZ, ComboDZ, ComboZD>;

struct ComboNames {
  template <class T>
  static std::string GetName(int) {
    return T::name;
  }
};

// ---- Signals ----------------------------------------------------------------------

inline void fill(std::mt19937& g, float& v) { v = std::uniform_real_distribution<float>(-1.0f, 1.0f)(g); }
inline void fill(std::mt19937& g, double& v) { v = std::uniform_real_distribution<double>(-1.0, 1.0)(g); }
inline void fill(std::mt19937& g, SCplx& v) {
  fill(g, v.re);
  fill(g, v.im);
}
inline void fill(std::mt19937& g, DCplx& v) {
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

template <class T>
RC asRC(const T& v) {
  return toRC(v);
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
    for (int k = 0; k < static_cast<int>(taps.size()); ++k) {
      const int at = hist + n - k;
      if (at < 0) continue;
      const RC p = toRC(taps[static_cast<size_t>(k)]) * toRC(x[static_cast<size_t>(at)]);
      o.value = o.value + p;
      o.scale += mag1(toRC(taps[static_cast<size_t>(k)])) * mag1(toRC(x[static_cast<size_t>(at)]));
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
  const int hist = static_cast<int>(history.size());
  const long long ticks = static_cast<long long>(input.size()) * up;
  // High-rate signal, history included: tick 0 of the call is index base.
  const long long base = static_cast<long long>(hist) * up;
  std::vector<RC> z(static_cast<size_t>(base + ticks), RC{0, 0});
  std::vector<ld> zmag(z.size(), 0);
  for (int i = 0; i < hist; ++i) {
    const long long at = static_cast<long long>(i) * up + upPhase;
    z[static_cast<size_t>(at)] = toRC(history[static_cast<size_t>(i)]);
    zmag[static_cast<size_t>(at)] = mag1(z[static_cast<size_t>(at)]);
  }
  for (size_t i = 0; i < input.size(); ++i) {
    const long long at = base + static_cast<long long>(i) * up + upPhase;
    if (at < static_cast<long long>(z.size())) {
      z[static_cast<size_t>(at)] = toRC(input[i]);
      zmag[static_cast<size_t>(at)] = mag1(z[static_cast<size_t>(at)]);
    }
  }
  std::vector<RC> filtered(z.size());
  std::vector<ld> scale(z.size(), 0);
  for (long long t = 0; t < static_cast<long long>(z.size()); ++t) {
    RC acc{0, 0};
    for (long long k = 0; k < static_cast<long long>(taps.size()) && k <= t; ++k) {
      acc = acc + toRC(taps[static_cast<size_t>(k)]) * z[static_cast<size_t>(t - k)];
      scale[static_cast<size_t>(t)] += mag1(toRC(taps[static_cast<size_t>(k)])) * zmag[static_cast<size_t>(t - k)];
    }
    filtered[static_cast<size_t>(t)] = acc;
  }
  std::vector<RefOut> y;
  for (long long t = 0; t < ticks; ++t) {
    if (t % down == downPhase) y.push_back({filtered[static_cast<size_t>(base + t)], scale[static_cast<size_t>(base + t)]});
  }
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
