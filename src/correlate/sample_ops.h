// Arithmetic on the sample types of the convolution and correlation family,
// written once over real and complex, float and double: products of mixed
// operands, conjugates, accumulation. Every operation rounds in the
// element's own precision, with the complex product as (ac - bd, ad + bc).
#pragma once

#include <type_traits>

#include "ryxcore.h"

namespace ryx::corr {

template <class T>
constexpr bool kComplex = std::is_same_v<T, SCplx> || std::is_same_v<T, DCplx>;

// The real scalar under a sample type, and the complex type over a scalar.
template <class T>
struct ScalarOf {
  using type = T;
};
template <>
struct ScalarOf<SCplx> {
  using type = float;
};
template <>
struct ScalarOf<DCplx> {
  using type = double;
};
template <class T>
using Scalar = typename ScalarOf<T>::type;
template <class R>
using ComplexOf = std::conditional_t<std::is_same_v<R, float>, SCplx, DCplx>;

// Result of combining an X and an H sample: complex when either is.
template <class X, class H>
using ResultOf = std::conditional_t<kComplex<X> || kComplex<H>, ComplexOf<Scalar<X>>, X>;

template <class T>
T zero() {
  return T{};
}

template <class R>
R conj(R a) requires(!kComplex<R>) {
  return a;
}
template <class C>
C conj(C a) requires kComplex<C> {
  return {a.re, -a.im};
}

template <class A, class B>
auto mul(A a, B b) {
  if constexpr (kComplex<A> && kComplex<B>) {
    return A{a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
  } else if constexpr (kComplex<A>) {
    return A{a.re * b, a.im * b};
  } else if constexpr (kComplex<B>) {
    return B{a * b.re, a * b.im};
  } else {
    return a * b;
  }
}

template <class T>
void addTo(T& acc, T v) {
  if constexpr (kComplex<T>) {
    acc.re += v.re;
    acc.im += v.im;
  } else {
    acc += v;
  }
}

template <class T, class R>
T scaled(T v, R f) {
  if constexpr (kComplex<T>) {
    return T{v.re * f, v.im * f};
  } else {
    return v * f;
  }
}

}  // namespace ryx::corr
