// Entries of the dot products: float (source group "ryxdotp") and 16-bit
// ("ryxdotpw"), typed and mixed real/complex, without conjugation.
//
// Checks stop at the first failure and give the zero result: the Out forms'
// "val==0" first, then the two sources ("Null buffer pointer"), a negative
// n ("Invalid value") and, for the 16-bit forms, a null factor in mode 4
// exactly ("Null scale factor pointer"). n of 0 is valid and gives zero.
//
// Double forms: plain loops, two elements per turn, the pair's sum added
// into one running total. 16-bit forms: the products summed modulo 2^32
// (a 32-bit accumulator that wraps without notice); the total then goes
// through the shared narrowing (DotProd) or the Ext rule (DotProdExt).
#include <cstdint>

#include "frame/checks.h"
#include "vector/dot_kernels.h"
#include "vector/scale_narrow.h"

namespace ryx::dot {
namespace {

constexpr const char* kStemFloat = "ryxdotp";
constexpr const char* kStemInt16 = "ryxdotpw";

bool pass(const char* name, const char* stem, const void* a, const void* b, int n) {
  return passFirst({name, stem},
                   {{a == nullptr, "Null buffer pointer"}, {b == nullptr, "Null buffer pointer"}, {n < 0, "Invalid value"}});
}

bool passScaled(const char* name, const void* a, const void* b, int n, int scaleMode, const int* scaleFactor) {
  return passFirst({name, kStemInt16}, {{a == nullptr, "Null buffer pointer"},
                                        {b == nullptr, "Null buffer pointer"},
                                        {n < 0, "Invalid value"},
                                        {scaleMode == 4 && scaleFactor == nullptr, "Null scale factor pointer"}});
}

bool passOut(const char* name, const char* stem, const void* val) {
  return passFirst({name, stem}, {{val == nullptr, "val==0"}});
}

// ---- double ---------------------------------------------------------------

inline double product(double a, double b) { return a * b; }
inline DCplx product(const DCplx& a, const DCplx& b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
inline DCplx product(double a, const DCplx& b) { return {a * b.re, a * b.im}; }
inline DCplx product(const DCplx& a, double b) { return {a.re * b, a.im * b}; }
inline DCplx operator+(const DCplx& x, const DCplx& y) { return {x.re + y.re, x.im + y.im}; }

template <class R, class A, class B>
R dotDouble(const A* a, const B* b, int n) {
  R total{};
  int i = 0;
  for (; i + 2 <= n; i += 2) total = total + (product(a[i], b[i]) + product(a[i + 1], b[i + 1]));
  if (i < n) total = total + product(a[i], b[i]);
  return total;
}

template <class R, class A, class B>
R floatDot(const char* name, const A* a, const B* b, int n, R (*kernel)(const A*, const B*, int)) {
  if (!pass(name, kStemFloat, a, b, n)) return R{};
  return kernel(a, b, n);
}

template <class R, class A, class B>
void floatDotOut(const char* name, const A* a, const B* b, int n, SCplx* val, R (*kernel)(const A*, const B*, int)) {
  if (!passOut(name, kStemFloat, val) || !pass(name, kStemFloat, a, b, n)) return;
  *val = kernel(a, b, n);
}

SCplx dotComplexReal(const SCplx* c, const float* r, int n) { return dotRealC32(r, c, n); }

// ---- 16-bit ---------------------------------------------------------------

// Parts of a total modulo 2^32.
struct Wrapped {
  std::uint32_t re = 0, im = 0;
};

inline std::uint32_t mul(int x, int y) { return static_cast<std::uint32_t>(x * y); }  // |x*y| <= 2^30
inline void accumulate(std::uint32_t& t, short a, short b) { t += mul(a, b); }
inline void accumulate(Wrapped& t, const WCplx& a, const WCplx& b) {
  t.re += mul(a.re, b.re) - mul(a.im, b.im);
  t.im += mul(a.re, b.im) + mul(a.im, b.re);
}
inline void accumulate(Wrapped& t, short a, const WCplx& b) {
  t.re += mul(a, b.re);
  t.im += mul(a, b.im);
}
inline void accumulate(Wrapped& t, const WCplx& a, short b) { accumulate(t, b, a); }

template <class T, class A, class B>
T wrappedTotal(const A* a, const B* b, int n) {
  T t{};
  for (int i = 0; i < n; ++i) accumulate(t, a[i], b[i]);
  return t;
}

inline int asInt(std::uint32_t v) { return static_cast<int>(v); }

// The Ext scale rule, by exact mode: 4 reports factor 0, 2 shifts in 32 bits
// (right for a positive factor, left for a negative one, the count taken
// modulo 32 as the processor's shift does), every other mode keeps the total.
std::uint32_t extScaled(std::uint32_t v, int scaleMode, int* scaleFactor) {
  if (scaleMode == 4) {
    *scaleFactor = 0;
    return v;
  }
  if (scaleMode != 2 || scaleFactor == nullptr || *scaleFactor == 0) return v;
  const int f = *scaleFactor;
  if (f > 0) return static_cast<std::uint32_t>(asInt(v) >> (f & 31));
  return v << ((0u - static_cast<unsigned>(f)) & 31u);
}

ICplx extScaled(const Wrapped& t, int scaleMode, int* scaleFactor) {
  return {asInt(extScaled(t.re, scaleMode, scaleFactor)), asInt(extScaled(t.im, scaleMode, scaleFactor))};
}

short wDot(const char* name, const short* a, const short* b, int n, int scaleMode, int* scaleFactor) {
  if (!passScaled(name, a, b, n, scaleMode, scaleFactor)) return 0;
  return ownScaleI32(asInt(wrappedTotal<std::uint32_t>(a, b, n)), scaleMode, scaleFactor);
}

int wDotExt(const char* name, const short* a, const short* b, int n, int scaleMode, int* scaleFactor) {
  if (!passScaled(name, a, b, n, scaleMode, scaleFactor)) return 0;
  return asInt(extScaled(wrappedTotal<std::uint32_t>(a, b, n), scaleMode, scaleFactor));
}

// Both parts through the shared array narrowing, so they share one factor.
template <class A, class B>
WCplx vDot(const char* name, const A* a, const B* b, int n, int scaleMode, int* scaleFactor) {
  if (!passScaled(name, a, b, n, scaleMode, scaleFactor)) return WCplx{0, 0};
  const Wrapped t = wrappedTotal<Wrapped>(a, b, n);
  const int parts[2] = {asInt(t.re), asInt(t.im)};
  short out[2];
  ownScaleArrayI32(parts, out, 2, scaleMode, scaleFactor);
  return {out[0], out[1]};
}

template <class A, class B>
bool vDotExt(const char* name, const A* a, const B* b, int n, int scaleMode, int* scaleFactor, ICplx* out) {
  if (!passScaled(name, a, b, n, scaleMode, scaleFactor)) return false;
  *out = extScaled(wrappedTotal<Wrapped>(a, b, n), scaleMode, scaleFactor);
  return true;
}

template <class A, class B>
ICplx vDotExtValue(const char* name, const A* a, const B* b, int n, int scaleMode, int* scaleFactor) {
  ICplx r{0, 0};
  vDotExt(name, a, b, n, scaleMode, scaleFactor, &r);
  return r;
}

template <class A, class B>
void vDotExtOut(const char* name, const A* a, const B* b, int n, int scaleMode, int* scaleFactor, ICplx* val) {
  if (passOut(name, kStemInt16, val)) vDotExt(name, a, b, n, scaleMode, scaleFactor, val);
}

}  // namespace
}  // namespace ryx::dot

using namespace ryx::dot;

extern "C" {

RYXAPI float ryxsDotProd(const float* a, const float* b, int n) { return floatDot(__func__, a, b, n, dotF32); }
RYXAPI SCplx ryxcDotProd(const SCplx* a, const SCplx* b, int n) { return floatDot(__func__, a, b, n, dotC32); }
RYXAPI SCplx ryxscDotProd(const float* a, const SCplx* b, int n) { return floatDot(__func__, a, b, n, dotRealC32); }
RYXAPI SCplx ryxcsDotProd(const SCplx* a, const float* b, int n) { return floatDot(__func__, a, b, n, dotComplexReal); }
RYXAPI void ryxcDotProdOut(const SCplx* a, const SCplx* b, int n, SCplx* val) { floatDotOut(__func__, a, b, n, val, dotC32); }
RYXAPI void ryxscDotProdOut(const float* a, const SCplx* b, int n, SCplx* val) {
  floatDotOut(__func__, a, b, n, val, dotRealC32);
}
RYXAPI void ryxcsDotProdOut(const SCplx* a, const float* b, int n, SCplx* val) {
  floatDotOut(__func__, a, b, n, val, dotComplexReal);
}
RYXAPI double ryxdDotProd(const double* a, const double* b, int n) {
  return floatDot(__func__, a, b, n, dotDouble<double, double, double>);
}
RYXAPI DCplx ryxzDotProd(const DCplx* a, const DCplx* b, int n) {
  return floatDot(__func__, a, b, n, dotDouble<DCplx, DCplx, DCplx>);
}
RYXAPI DCplx ryxdzDotProd(const double* a, const DCplx* b, int n) {
  return floatDot(__func__, a, b, n, dotDouble<DCplx, double, DCplx>);
}
RYXAPI DCplx ryxzdDotProd(const DCplx* a, const double* b, int n) {
  return floatDot(__func__, a, b, n, dotDouble<DCplx, DCplx, double>);
}

RYXAPI short ryxwDotProd(const short* a, const short* b, int n, int mode, int* sf) { return wDot(__func__, a, b, n, mode, sf); }
RYXAPI WCplx ryxvDotProd(const WCplx* a, const WCplx* b, int n, int mode, int* sf) { return vDot(__func__, a, b, n, mode, sf); }
RYXAPI WCplx ryxwvDotProd(const short* a, const WCplx* b, int n, int mode, int* sf) { return vDot(__func__, a, b, n, mode, sf); }
RYXAPI WCplx ryxvwDotProd(const WCplx* a, const short* b, int n, int mode, int* sf) { return vDot(__func__, a, b, n, mode, sf); }
RYXAPI int ryxwDotProdExt(const short* a, const short* b, int n, int mode, int* sf) {
  return wDotExt(__func__, a, b, n, mode, sf);
}
RYXAPI ICplx ryxvDotProdExt(const WCplx* a, const WCplx* b, int n, int mode, int* sf) {
  return vDotExtValue(__func__, a, b, n, mode, sf);
}
RYXAPI ICplx ryxwvDotProdExt(const short* a, const WCplx* b, int n, int mode, int* sf) {
  return vDotExtValue(__func__, a, b, n, mode, sf);
}
RYXAPI ICplx ryxvwDotProdExt(const WCplx* a, const short* b, int n, int mode, int* sf) {
  return vDotExtValue(__func__, a, b, n, mode, sf);
}
RYXAPI void ryxvDotProdExtOut(const WCplx* a, const WCplx* b, int n, int mode, int* sf, ICplx* val) {
  vDotExtOut(__func__, a, b, n, mode, sf, val);
}
RYXAPI void ryxwvDotProdExtOut(const short* a, const WCplx* b, int n, int mode, int* sf, ICplx* val) {
  vDotExtOut(__func__, a, b, n, mode, sf, val);
}
RYXAPI void ryxvwDotProdExtOut(const WCplx* a, const short* b, int n, int mode, int* sf, ICplx* val) {
  vDotExtOut(__func__, a, b, n, mode, sf, val);
}

}  // extern "C"
