// Arithmetic of the IIR recursions, written once for real and complex
// values at a chosen working precision R (long double for the plain
// recursions, float for the table kernels of the float types).
//
// lift<R> widens a stored value (float, double, SCplx, DCplx) to R or
// Cx<R>; narrow<O> rounds a working value to the stored type O. A product
// is complex when either factor is; a complex by real product scales both
// parts (the real and imaginary parts run as parallel lanes), a complex by
// complex product is re = ar*br - ai*bi, im = ar*bi + ai*br.
#pragma once

#include <type_traits>

#include "ryxcore.h"

namespace ryx::iir {

template <class R>
struct Cx {
  R re;
  R im;
};

template <class T>
constexpr bool isComplex = std::is_same_v<T, SCplx> || std::is_same_v<T, DCplx>;

template <class T>
constexpr bool isFloatType = std::is_same_v<T, float> || std::is_same_v<T, SCplx>;

// Result (and delay) type of a sample type S filtered by taps of type H:
// the sample's precision, complex when either is complex.
template <class S, class H>
using OutOf = std::conditional_t<isComplex<S> || isComplex<H>, std::conditional_t<isFloatType<S>, SCplx, DCplx>, S>;

// ---- Widening and rounding
// ------------------------------------------------------

template <class R>
inline R lift(float v) {
  return static_cast<R>(v);
}
template <class R>
inline R lift(double v) {
  return static_cast<R>(v);
}
template <class R>
inline Cx<R> lift(SCplx v) {
  return {static_cast<R>(v.re), static_cast<R>(v.im)};
}
template <class R>
inline Cx<R> lift(DCplx v) {
  return {static_cast<R>(v.re), static_cast<R>(v.im)};
}

template <class O, class R>
inline O narrow(R v) {
  return static_cast<O>(v);
}
template <class O, class R>
inline O narrow(Cx<R> v) {
  using F = decltype(O{}.re);
  return O{static_cast<F>(v.re), static_cast<F>(v.im)};
}

// Working type of a stored type T at precision R.
template <class T, class R>
using Work = std::conditional_t<isComplex<T>, Cx<R>, R>;

// ---- Operators
// ------------------------------------------------------------------------

template <class R>
inline Cx<R> operator+(Cx<R> a, Cx<R> b) {
  return {a.re + b.re, a.im + b.im};
}
template <class R>
inline Cx<R> operator-(Cx<R> a, Cx<R> b) {
  return {a.re - b.re, a.im - b.im};
}
template <class R>
inline Cx<R> operator*(Cx<R> a, Cx<R> b) {
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
template <class R>
inline Cx<R> operator*(Cx<R> a, R b) {
  return {a.re * b, a.im * b};
}
template <class R>
inline Cx<R> operator*(R a, Cx<R> b) {
  return {a * b.re, a * b.im};
}

}  // namespace ryx::iir
