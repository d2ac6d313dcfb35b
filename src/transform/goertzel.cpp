// Goertzel filter: one DFT bin of a running signal (source groups
// "ryxgrtzl" float and double, "ryxgrtzw" 16-bit).
//
// Per sample s = x - s2 + 2 cos(w) s1 on the record's delays; the output
// exp(i w) s - s1 = (cos(w) s - s1, sin(w) s) for real samples, the
// complex product for complex ones. Single-sample forms work through
// double; the float block loop runs in float, the double ones in double,
// the 16-bit block loops in extended precision. Block forms apply the
// output formula once to the final delays, so it equals what the
// single-sample form returns on the last sample. Every check comes before
// the first write, so a failed call leaves the record as it was and
// returns (0, 0).
#include <cmath>
#include <type_traits>

#include "frame/checks.h"
#include "ryxcore/transform_any_length.h"
#include "vector/scale_narrow.h"

namespace {

using ryx::Site;

constexpr const char* kStemF = "ryxgrtzl";
constexpr const char* kStemW = "ryxgrtzw";
constexpr double kTwoPi = 2.0 * 3.14159265358979323846;

template <class S>
struct Rec;
template <>
struct Rec<RyxGoertzF32State> {
  using T = float;
  using Cplx = SCplx;
};
template <>
struct Rec<RyxGoertzF64State> {
  using T = double;
  using Cplx = DCplx;
};

template <class S>
RyxStatus init(const char* name, const char* stem, double freq, S* state) {
  if (!ryx::passFirst({name, stem}, {{state == nullptr, "Null state pointer"},
                                     {!(freq >= 0.0 && freq < 1.0), "Invalid frequency value"}}))
    return RYX_StsBadArg;
  using T = typename Rec<S>::T;
  const double c = std::cos(kTwoPi * freq);
  const double s = std::sin(kTwoPi * freq);
  *state = S{static_cast<T>(freq), static_cast<T>(c), static_cast<T>(s), static_cast<T>(2.0 * c), 0, 0, 0, 0};
  return RYX_StsOk;
}

template <class S>
void reset(const char* name, const char* stem, S* state) {
  if (!ryx::passFirst({name, stem}, {{state == nullptr, "Null state pointer"}})) return;
  state->prevRe2 = state->prevIm2 = state->prevRe1 = state->prevIm1 = 0;
}

// Output of the record as it stands: e^(iw) s[n] - s[n-1], in double.
template <class S, bool Complex>
typename Rec<S>::Cplx output(const S& st, double oldRe1, double oldIm1) {
  using T = typename Rec<S>::T;
  const double c = st.cosV, s = st.sinV, sr = st.prevRe1, si = st.prevIm1;
  if constexpr (Complex) {
    return {static_cast<T>(c * sr - s * si - oldRe1), static_cast<T>(c * si + s * sr - oldIm1)};
  } else {
    return {static_cast<T>(c * sr - oldRe1), static_cast<T>(s * sr)};
  }
}

// One sample through the recursion in double, delays stored back.
template <class S>
typename Rec<S>::Cplx stepReal(S& st, double x) {
  using T = typename Rec<S>::T;
  const double a = st.prevRe1;
  const double s = x - static_cast<double>(st.prevRe2) + static_cast<double>(st.twoCosV) * a;
  st.prevRe2 = static_cast<T>(a);
  st.prevRe1 = static_cast<T>(s);
  return output<S, false>(st, a, 0.0);
}

template <class S>
typename Rec<S>::Cplx stepCplx(S& st, double xr, double xi) {
  using T = typename Rec<S>::T;
  const double ar = st.prevRe1, ai = st.prevIm1, k = st.twoCosV;
  const double sr = xr - static_cast<double>(st.prevRe2) + k * ar;
  const double si = xi - static_cast<double>(st.prevIm2) + k * ai;
  st.prevRe2 = static_cast<T>(ar);
  st.prevIm2 = static_cast<T>(ai);
  st.prevRe1 = static_cast<T>(sr);
  st.prevIm1 = static_cast<T>(si);
  return output<S, true>(st, ar, ai);
}

// The block recursion in the working type W, two samples a round for the
// complex forms; yields the output of the last state.
template <class W, class S, class X>
typename Rec<S>::Cplx blockReal(S& st, const X* in, int len) {
  using T = typename Rec<S>::T;
  const W k = static_cast<W>(st.twoCosV);
  W s1 = st.prevRe1, s2 = st.prevRe2;
  for (int i = 0; i < len; ++i) {
    const W s = static_cast<W>(in[i]) - s2 + k * s1;
    s2 = s1;
    s1 = s;
  }
  const double old = static_cast<T>(s2);
  st.prevRe2 = static_cast<T>(s2);
  st.prevRe1 = static_cast<T>(s1);
  return output<S, false>(st, old, 0.0);
}

template <class W, class S, class X>
typename Rec<S>::Cplx blockCplx(S& st, const X* in, int len) {
  using T = typename Rec<S>::T;
  const W k = static_cast<W>(st.twoCosV);
  W r1 = st.prevRe1, r2 = st.prevRe2, i1 = st.prevIm1, i2 = st.prevIm2;
  int i = 0;
  for (; i + 1 < len; i += 2) {
    const W ra = static_cast<W>(in[i].re) - r2 + k * r1;
    const W ia = static_cast<W>(in[i].im) - i2 + k * i1;
    const W rb = static_cast<W>(in[i + 1].re) - r1 + k * ra;
    const W ib = static_cast<W>(in[i + 1].im) - i1 + k * ia;
    r2 = ra, i2 = ia;
    r1 = rb, i1 = ib;
  }
  if (i < len) {
    const W r = static_cast<W>(in[i].re) - r2 + k * r1;
    const W m = static_cast<W>(in[i].im) - i2 + k * i1;
    r2 = r1, i2 = i1;
    r1 = r, i1 = m;
  }
  st.prevRe2 = static_cast<T>(r2);
  st.prevIm2 = static_cast<T>(i2);
  st.prevRe1 = static_cast<T>(r1);
  st.prevIm1 = static_cast<T>(i1);
  return output<S, true>(st, st.prevRe2, st.prevIm2);
}

template <class S, class X>
bool blockChecks(const Site& site, const S* state, const X* in, int len) {
  return ryx::passFirst(site, {{state == nullptr, "Null state pointer"},
                               {in == nullptr, "Null buffer pointer"},
                               {len < 1, "Invalid array length"}});
}

bool scaleChecks(const Site& site, int mode, const int* factor) {
  if (mode == 0) return true;
  return ryx::passFirst(site, {{factor == nullptr, "Zero scale factor pointer"},
                               {factor != nullptr && (*factor >= 15 || *factor < -14), "Too large scale factor"},
                               {mode > 4, "Erroneus scale mode"}});
}

WCplx narrow(SCplx v, int mode, int* factor) {
  const float pair[2] = {v.re, v.im};
  short out[2];
  ownScaleArrayF32(pair, out, 2, mode, factor);
  return {out[0], out[1]};
}

template <class S, class X, class R>
R blockEntry(const char* name, S* state, const X* in, int len) {
  if (!blockChecks(Site{name, kStemF}, state, in, len)) return R{};
  using W = typename Rec<S>::T;
  if constexpr (std::is_arithmetic_v<X>) {
    return blockReal<W>(*state, in, len);
  } else {
    return blockCplx<W>(*state, in, len);
  }
}

bool valCheck(const char* name, const void* val) {
  return ryx::passFirst({name, kStemF}, {{val == nullptr, "val==0"}});
}

}  // namespace

extern "C" {

RYXAPI RyxStatus ryxsGoertzInit(float freq, RyxGoertzF32State* state) { return init(__func__, kStemF, freq, state); }
RYXAPI RyxStatus ryxcGoertzInit(float freq, RyxGoertzF32State* state) { return init(__func__, kStemF, freq, state); }
RYXAPI RyxStatus ryxwGoertzInit(float freq, RyxGoertzF32State* state) { return init(__func__, kStemW, freq, state); }
RYXAPI RyxStatus ryxvGoertzInit(float freq, RyxGoertzF32State* state) { return init(__func__, kStemW, freq, state); }
RYXAPI void ryxdGoertzInit(double freq, RyxGoertzF64State* state) { init(__func__, kStemF, freq, state); }
RYXAPI void ryxzGoertzInit(double freq, RyxGoertzF64State* state) { init(__func__, kStemF, freq, state); }

RYXAPI void ryxsGoertzReset(RyxGoertzF32State* state) { reset(__func__, kStemF, state); }
RYXAPI void ryxcGoertzReset(RyxGoertzF32State* state) { reset(__func__, kStemF, state); }
RYXAPI void ryxwGoertzReset(RyxGoertzF32State* state) { reset(__func__, kStemW, state); }
RYXAPI void ryxvGoertzReset(RyxGoertzF32State* state) { reset(__func__, kStemW, state); }
RYXAPI void ryxdGoertzReset(RyxGoertzF64State* state) { reset(__func__, kStemF, state); }
RYXAPI void ryxzGoertzReset(RyxGoertzF64State* state) { reset(__func__, kStemF, state); }

RYXAPI SCplx ryxsGoertz(RyxGoertzF32State* state, float sample) {
  if (!ryx::passFirst({__func__, kStemF}, {{state == nullptr, "Null state pointer"}})) return SCplx{};
  return stepReal(*state, sample);
}
RYXAPI SCplx ryxcGoertz(RyxGoertzF32State* state, SCplx sample) {
  if (!ryx::passFirst({__func__, kStemF}, {{state == nullptr, "Null state pointer"}})) return SCplx{};
  return stepCplx(*state, sample.re, sample.im);
}
RYXAPI DCplx ryxdGoertz(RyxGoertzF64State* state, double sample) {
  if (!ryx::passFirst({__func__, kStemF}, {{state == nullptr, "Null state pointer"}})) return DCplx{};
  return stepReal(*state, sample);
}
RYXAPI DCplx ryxzGoertz(RyxGoertzF64State* state, DCplx sample) {
  if (!ryx::passFirst({__func__, kStemF}, {{state == nullptr, "Null state pointer"}})) return DCplx{};
  return stepCplx(*state, sample.re, sample.im);
}

RYXAPI SCplx ryxsbGoertz(RyxGoertzF32State* state, const float* inSamps, int len) {
  return blockEntry<RyxGoertzF32State, float, SCplx>(__func__, state, inSamps, len);
}
RYXAPI SCplx ryxcbGoertz(RyxGoertzF32State* state, const SCplx* inSamps, int len) {
  return blockEntry<RyxGoertzF32State, SCplx, SCplx>(__func__, state, inSamps, len);
}
RYXAPI DCplx ryxdbGoertz(RyxGoertzF64State* state, const double* inSamps, int len) {
  return blockEntry<RyxGoertzF64State, double, DCplx>(__func__, state, inSamps, len);
}
RYXAPI DCplx ryxzbGoertz(RyxGoertzF64State* state, const DCplx* inSamps, int len) {
  return blockEntry<RyxGoertzF64State, DCplx, DCplx>(__func__, state, inSamps, len);
}

RYXAPI void ryxsGoertzOut(RyxGoertzF32State* state, float sample, SCplx* val) {
  if (valCheck(__func__, val)) *val = ryxsGoertz(state, sample);
}
RYXAPI void ryxcGoertzOut(RyxGoertzF32State* state, SCplx sample, SCplx* val) {
  if (valCheck(__func__, val)) *val = ryxcGoertz(state, sample);
}
RYXAPI void ryxsbGoertzOut(RyxGoertzF32State* state, const float* inSamps, int len, SCplx* val) {
  if (valCheck(__func__, val)) *val = ryxsbGoertz(state, inSamps, len);
}
RYXAPI void ryxcbGoertzOut(RyxGoertzF32State* state, const SCplx* inSamps, int len, SCplx* val) {
  if (valCheck(__func__, val)) *val = ryxcbGoertz(state, inSamps, len);
}

RYXAPI WCplx ryxwGoertz(RyxGoertzF32State* state, short sample, int scaleMode, int* scaleFactor) {
  const Site site{__func__, kStemW};
  if (!ryx::passFirst(site, {{state == nullptr, "Null state pointer"}}) || !scaleChecks(site, scaleMode, scaleFactor))
    return WCplx{};
  float x;
  ryxsbIntToFloat(&sample, &x, 1, 16, 0);
  return narrow(stepReal(*state, x), scaleMode, scaleFactor);
}
RYXAPI WCplx ryxvGoertz(RyxGoertzF32State* state, WCplx sample, int scaleMode, int* scaleFactor) {
  const Site site{__func__, kStemW};
  if (!ryx::passFirst(site, {{state == nullptr, "Null state pointer"}}) || !scaleChecks(site, scaleMode, scaleFactor))
    return WCplx{};
  float x[2];
  ryxsbIntToFloat(&sample, x, 2, 16, 0);
  return narrow(stepCplx(*state, x[0], x[1]), scaleMode, scaleFactor);
}
RYXAPI WCplx ryxwbGoertz(RyxGoertzF32State* state, const short* inSamps, int len, int scaleMode, int* scaleFactor) {
  const Site site{__func__, kStemW};
  if (!blockChecks(site, state, inSamps, len) || !scaleChecks(site, scaleMode, scaleFactor)) return WCplx{};
  return narrow(blockReal<long double>(*state, inSamps, len), scaleMode, scaleFactor);
}
RYXAPI WCplx ryxvbGoertz(RyxGoertzF32State* state, const WCplx* inSamps, int len, int scaleMode, int* scaleFactor) {
  const Site site{__func__, kStemW};
  if (!blockChecks(site, state, inSamps, len) || !scaleChecks(site, scaleMode, scaleFactor)) return WCplx{};
  return narrow(blockCplx<long double>(*state, inSamps, len), scaleMode, scaleFactor);
}

}  // extern "C"
