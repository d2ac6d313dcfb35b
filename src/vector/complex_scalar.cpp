// Scalar complex helpers (source group "ryxarith"). The SCplx helpers widen
// each part to double, compute there and round once to float, so they may
// differ in the last bit from the array kernels, which work in float.
// Conjugation here is a negation, unlike the sign-bit flip of the arrays.
// Division: b of exactly (0, 0) (an ordered comparison, so NaN is not zero)
// is reported and yields (0, 0); otherwise
//   f = 1 / (b.im*b.im + b.re*b.re)
//   re = (b.im*a.im + a.re*b.re) * f,  im = (b.re*a.im - b.im*a.re) * f.
#include "frame/checks.h"
#include "ryxcore.h"

namespace ryx::cscalar {
namespace {

constexpr const char* kStem = "ryxarith";

struct Wide {
  double re, im;
};

inline Wide widen(SCplx a) { return {a.re, a.im}; }
inline Wide widen(DCplx a) { return {a.re, a.im}; }

template <class C>
inline C narrow(Wide w) {
  C r;
  r.re = static_cast<decltype(r.re)>(w.re);
  r.im = static_cast<decltype(r.im)>(w.im);
  return r;
}

template <class C>
C add(C a, C b) {
  const Wide x = widen(a), y = widen(b);
  return narrow<C>({x.re + y.re, x.im + y.im});
}

template <class C>
C sub(C a, C b) {
  const Wide x = widen(a), y = widen(b);
  return narrow<C>({x.re - y.re, x.im - y.im});
}

template <class C>
C mpy(C a, C b) {
  const Wide x = widen(a), y = widen(b);
  return narrow<C>({x.re * y.re - x.im * y.im, x.re * y.im + x.im * y.re});
}

template <class C>
C div(const char* name, C a, C b) {
  const Wide x = widen(a), y = widen(b);
  if (y.re == 0.0 && y.im == 0.0) {
    ryxError(RYX_StsBadArg, name, "(b.re==0.0)&&(b.im==0.0)", kStem, __LINE__);
    return narrow<C>({0.0, 0.0});
  }
  const double f = 1.0 / (y.im * y.im + y.re * y.re);
  return narrow<C>({(y.im * x.im + x.re * y.re) * f, (y.re * x.im - y.im * x.re) * f});
}

template <class C>
C conjugate(C a) {
  a.im = -a.im;
  return a;
}

// Out forms: "val==0" first, then the helper's own work under this name.
template <class Fn>
void out(const char* name, SCplx* val, Fn&& compute) {
  if (!passFirst({name, kStem}, {{val == nullptr, "val==0"}})) return;
  *val = compute();
}

}  // namespace
}  // namespace ryx::cscalar

using namespace ryx::cscalar;

extern "C" {

RYXAPI SCplx ryxcAdd(SCplx a, SCplx b) { return add(a, b); }
RYXAPI SCplx ryxcSub(SCplx a, SCplx b) { return sub(a, b); }
RYXAPI SCplx ryxcMpy(SCplx a, SCplx b) { return mpy(a, b); }
RYXAPI SCplx ryxcDiv(SCplx a, SCplx b) { return div(__func__, a, b); }
RYXAPI SCplx ryxcConj(SCplx a) { return conjugate(a); }
RYXAPI SCplx ryxcSet(float re, float im) { return SCplx{re, im}; }

RYXAPI void ryxcAddOut(SCplx a, SCplx b, SCplx* val) { out(__func__, val, [&] { return add(a, b); }); }
RYXAPI void ryxcSubOut(SCplx a, SCplx b, SCplx* val) { out(__func__, val, [&] { return sub(a, b); }); }
RYXAPI void ryxcMpyOut(SCplx a, SCplx b, SCplx* val) { out(__func__, val, [&] { return mpy(a, b); }); }
RYXAPI void ryxcDivOut(SCplx a, SCplx b, SCplx* val) {
  const char* name = __func__;
  out(name, val, [&] { return div(name, a, b); });
}
RYXAPI void ryxcConjOut(SCplx a, SCplx* val) { out(__func__, val, [&] { return conjugate(a); }); }
RYXAPI void ryxcSetOut(float re, float im, SCplx* val) { out(__func__, val, [&] { return SCplx{re, im}; }); }

RYXAPI DCplx ryxzAdd(DCplx a, DCplx b) { return add(a, b); }
RYXAPI DCplx ryxzSub(DCplx a, DCplx b) { return sub(a, b); }
RYXAPI DCplx ryxzMpy(DCplx a, DCplx b) { return mpy(a, b); }
RYXAPI DCplx ryxzDiv(DCplx a, DCplx b) { return div(__func__, a, b); }
RYXAPI DCplx ryxzConj(DCplx a) { return conjugate(a); }
RYXAPI DCplx ryxzSet(double re, double im) { return DCplx{re, im}; }

}  // extern "C"
