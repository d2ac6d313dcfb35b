// Double and DCplx kernels of the elementwise family: plain loops with no
// alignment handling. Real double forms take groups of eight elements from
// the top of the array, then single elements from the top. Complex double
// forms run from the start in groups of eight, four and two samples, then
// singly. Each element is read before it is written, so in-place use is safe.
#include <initializer_list>

#include "vector/arith_kernels.h"

namespace ryx::arith {
namespace {

// Real double: dst[i] = a(i) op b(i), top down.
template <OpKind K, class A, class B>
void realTopDown(A a, B b, double* dst, int n) {
  int i = n;
  while (i >= 8) {
    i -= 8;
    for (int k = 7; k >= 0; --k) dst[i + k] = apply<K>(a(i + k), b(i + k));
  }
  while (i > 0) {
    --i;
    dst[i] = apply<K>(a(i), b(i));
  }
}

// Complex double: forward in groups of 8, 4, 2, then singly.
template <OpKind K, class A, class B>
void complexForward(A a, B b, DCplx* dst, int n) {
  int i = 0;
  for (int group : {8, 4, 2, 1}) {
    for (; n - i >= group; i += group) {
      for (int k = 0; k < group; ++k) dst[i + k] = applyComplex<K>(a(i + k), b(i + k));
    }
  }
}

}  // namespace

template <>
void kernelOp1<double>(OpKind op, double val, double* dst, int n) {
  byKind(op, [&]<OpKind K>() { realTopDown<K>([&](int i) { return dst[i]; }, [&](int) { return val; }, dst, n); });
}
template <>
void kernelOp2<double>(OpKind op, const double* src, double* dst, int n) {
  byKind(op, [&]<OpKind K>() { realTopDown<K>([&](int i) { return dst[i]; }, [&](int i) { return src[i]; }, dst, n); });
}
template <>
void kernelOp3<double>(OpKind op, const double* srcA, const double* srcB, double* dst, int n) {
  byKind(op, [&]<OpKind K>() { realTopDown<K>([&](int i) { return srcA[i]; }, [&](int i) { return srcB[i]; }, dst, n); });
}

template <>
void kernelOp1<DCplx>(OpKind op, DCplx val, DCplx* dst, int n) {
  byKind(op, [&]<OpKind K>() { complexForward<K>([&](int i) { return dst[i]; }, [&](int) { return val; }, dst, n); });
}
template <>
void kernelOp2<DCplx>(OpKind op, const DCplx* src, DCplx* dst, int n) {
  byKind(op, [&]<OpKind K>() { complexForward<K>([&](int i) { return dst[i]; }, [&](int i) { return src[i]; }, dst, n); });
}
template <>
void kernelOp3<DCplx>(OpKind op, const DCplx* srcA, const DCplx* srcB, DCplx* dst, int n) {
  byKind(op, [&]<OpKind K>() { complexForward<K>([&](int i) { return srcA[i]; }, [&](int i) { return srcB[i]; }, dst, n); });
}

}  // namespace ryx::arith
