// Fixed-scale and auto-scale modes of the 16-bit arithmetic, as plain loops
// over the element rules of int16_ref.h.
#include <cstdint>

#include "vector/int16_kernels.h"

namespace ryx::int16 {
namespace {

template <Op K>
void fixedW(Mode mode, const short* a, const short* b, short val, short* dst, int n, int f) {
  for (int i = 0; i < n; ++i) dst[i] = narrow(mode, exact<K>(std::int64_t{a[i]}, std::int64_t{b ? b[i] : val}), f);
}

template <Op K>
void fixedV(Mode mode, const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n, int f) {
  for (int i = 0; i < n; ++i) {
    const Exact2 r = exact<K>(a[i], b ? b[i] : val);
    dst[i].re = narrow(mode, r.re, f);
    dst[i].im = narrow(mode, r.im, f);
  }
}

// Least shift f >= 1 that makes x >> f fit 16 bits, starting from `f`.
inline int growShift(std::int64_t x, int f) {
  while (!fits16(x >> f)) ++f;
  return f;
}

// Phase one stores exact results while they fit. At the first that does
// not (element k) the shift is 1 for add and subtract (17 bits always
// suffice) and for multiply the least shift that fits elements k..n-1;
// elements 0..k-1 are then shifted in place and k..n-1, which have not been
// written yet, are recomputed from their operands.
template <Op K>
void autoW(const short* a, const short* b, short val, short* dst, int n, int* scaleFactor) {
  auto result = [&](int i) { return exact<K>(std::int64_t{a[i]}, std::int64_t{b ? b[i] : val}); };
  int k = 0;
  for (; k < n; ++k) {
    const std::int64_t r = result(k);
    if (!fits16(r)) break;
    dst[k] = static_cast<short>(r);
  }
  if (k == n) {
    *scaleFactor = 0;
    return;
  }
  int f = 1;
  if constexpr (K == Op::Mpy) {
    for (int i = k; i < n; ++i) f = growShift(result(i), f);
  }
  for (int i = 0; i < k; ++i) dst[i] = static_cast<short>(dst[i] >> f);
  for (int i = k; i < n; ++i) dst[i] = static_cast<short>(result(i) >> f);
  *scaleFactor = f;
}

template <Op K>
void autoV(const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n, int* scaleFactor) {
  auto result = [&](int i) { return exact<K>(a[i], b ? b[i] : val); };
  int k = 0;
  for (; k < n; ++k) {
    const Exact2 r = result(k);
    if (!fits16(r.re) || !fits16(r.im)) break;
    dst[k].re = static_cast<short>(r.re);
    dst[k].im = static_cast<short>(r.im);
  }
  if (k == n) {
    *scaleFactor = 0;
    return;
  }
  int f = 1;
  if constexpr (K == Op::Mpy) {
    for (int i = k; i < n; ++i) {
      const Exact2 r = result(i);
      f = growShift(r.im, growShift(r.re, f));
    }
  }
  for (int i = 0; i < k; ++i) {
    dst[i].re = static_cast<short>(dst[i].re >> f);
    dst[i].im = static_cast<short>(dst[i].im >> f);
  }
  for (int i = k; i < n; ++i) {
    const Exact2 r = result(i);
    dst[i].re = static_cast<short>(r.re >> f);
    dst[i].im = static_cast<short>(r.im >> f);
  }
  *scaleFactor = f;
}

}  // namespace

void fixedKernelW(Op op, Mode mode, const short* a, const short* b, short val, short* dst, int n, int factor) {
  switch (op) {
    case Op::Add: return fixedW<Op::Add>(mode, a, b, val, dst, n, factor);
    case Op::Sub: return fixedW<Op::Sub>(mode, a, b, val, dst, n, factor);
    case Op::Mpy: return fixedW<Op::Mpy>(mode, a, b, val, dst, n, factor);
  }
}

void fixedKernelV(Op op, Mode mode, const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n, int factor) {
  switch (op) {
    case Op::Add: return fixedV<Op::Add>(mode, a, b, val, dst, n, factor);
    case Op::Sub: return fixedV<Op::Sub>(mode, a, b, val, dst, n, factor);
    case Op::Mpy: return fixedV<Op::Mpy>(mode, a, b, val, dst, n, factor);
  }
}

void autoKernelW(Op op, const short* a, const short* b, short val, short* dst, int n, int* scaleFactor) {
  switch (op) {
    case Op::Add: return autoW<Op::Add>(a, b, val, dst, n, scaleFactor);
    case Op::Sub: return autoW<Op::Sub>(a, b, val, dst, n, scaleFactor);
    case Op::Mpy: return autoW<Op::Mpy>(a, b, val, dst, n, scaleFactor);
  }
}

void autoKernelV(Op op, const WCplx* a, const WCplx* b, WCplx val, WCplx* dst, int n, int* scaleFactor) {
  switch (op) {
    case Op::Add: return autoV<Op::Add>(a, b, val, dst, n, scaleFactor);
    case Op::Sub: return autoV<Op::Sub>(a, b, val, dst, n, scaleFactor);
    case Op::Mpy: return autoV<Op::Mpy>(a, b, val, dst, n, scaleFactor);
  }
}

}  // namespace ryx::int16
