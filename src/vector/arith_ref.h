// Elementwise operations on one element: the scalar reference of the
// arithmetic family, used by the kernels for their single-element steps and
// tails, and by the tests as the model every path must match bit for bit.
#pragma once

#include "ryxcore.h"

namespace ryx::arith {

enum class OpKind { Add, Sub, Mpy };

// Complex product in the element's own precision:
//   re = a.re*b.re - a.im*b.im,  im = a.re*b.im + a.im*b.re.
template <class C>
inline C cmul(const C& a, const C& b) {
  C r;
  r.re = a.re * b.re - a.im * b.im;
  r.im = a.re * b.im + a.im * b.re;
  return r;
}

template <OpKind K, class T>
inline T apply(T a, T b) {
  if constexpr (K == OpKind::Add) return a + b;
  if constexpr (K == OpKind::Sub) return a - b;
  if constexpr (K == OpKind::Mpy) return a * b;
}

template <OpKind K, class C>
inline C applyComplex(const C& a, const C& b) {
  if constexpr (K == OpKind::Mpy) {
    return cmul(a, b);
  } else {
    C r;
    r.re = apply<K>(a.re, b.re);
    r.im = apply<K>(a.im, b.im);
    return r;
  }
}

// One element of any sample type of the family.
template <OpKind K, class T>
inline T element(const T& a, const T& b) {
  if constexpr (requires { a.re; }) {
    return applyComplex<K>(a, b);
  } else {
    return apply<K>(a, b);
  }
}

// Runs fn.template operator()<K>() for the run-time operation, so a kernel
// is written once as a template over the operation.
template <class Fn>
inline void byKind(OpKind op, Fn&& fn) {
  switch (op) {
    case OpKind::Add: fn.template operator()<OpKind::Add>(); break;
    case OpKind::Sub: fn.template operator()<OpKind::Sub>(); break;
    case OpKind::Mpy: fn.template operator()<OpKind::Mpy>(); break;
  }
}

}  // namespace ryx::arith
