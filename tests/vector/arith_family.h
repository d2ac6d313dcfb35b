// The elementwise routines of one element type, gathered so one test can
// run every type through every shape, and an independent reference of the
// element arithmetic written out from the family's rules.
#pragma once

#include <cmath>
#include <limits>
#include <string>

#include "ryxcore.h"

namespace ryxtest {

enum Op { kAdd = 0, kSub = 1, kMpy = 2 };

template <class T>
struct Family;

#define RYX_TEST_FAMILY(T, x)                                                                   \
  template <>                                                                                   \
  struct Family<T> {                                                                            \
    static constexpr const char* letter = #x;                                                  \
    static constexpr void (*zero)(T*, int) = ryx##x##bZero;                                     \
    static constexpr void (*set)(T, T*, int) = ryx##x##bSet;                                    \
    static constexpr void (*copy)(const T*, T*, int) = ryx##x##bCopy;                           \
    static constexpr void (*op1[3])(T, T*, int) = {ryx##x##bAdd1, ryx##x##bSub1, ryx##x##bMpy1}; \
    static constexpr void (*op2[3])(const T*, T*, int) = {ryx##x##bAdd2, ryx##x##bSub2,         \
                                                          ryx##x##bMpy2};                       \
    static constexpr void (*op3[3])(const T*, const T*, T*, int) = {                            \
        ryx##x##bAdd3, ryx##x##bSub3, ryx##x##bMpy3};                                           \
  };
RYX_TEST_FAMILY(float, s)
RYX_TEST_FAMILY(double, d)
RYX_TEST_FAMILY(SCplx, c)
RYX_TEST_FAMILY(DCplx, z)
#undef RYX_TEST_FAMILY

// Reference arithmetic, one element, in the element's own precision.
inline float refOp(Op op, float a, float b) {
  switch (op) {
    case kAdd: return a + b;
    case kSub: return a - b;
    default: return a * b;
  }
}
inline double refOp(Op op, double a, double b) {
  switch (op) {
    case kAdd: return a + b;
    case kSub: return a - b;
    default: return a * b;
  }
}
template <class C>
C refComplexOp(Op op, C a, C b) {
  C r;
  if (op == kMpy) {
    const auto p1 = a.re * b.re;
    const auto p2 = a.im * b.im;
    const auto p3 = a.re * b.im;
    const auto p4 = a.im * b.re;
    r.re = p1 - p2;
    r.im = p3 + p4;
  } else {
    r.re = refOp(op, a.re, b.re);
    r.im = refOp(op, a.im, b.im);
  }
  return r;
}
inline SCplx refOp(Op op, SCplx a, SCplx b) { return refComplexOp(op, a, b); }
inline DCplx refOp(Op op, DCplx a, DCplx b) { return refComplexOp(op, a, b); }

}  // namespace ryxtest
