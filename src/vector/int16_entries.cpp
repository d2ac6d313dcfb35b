// Entries of the 16-bit arithmetic family (source group "ryxaritw"): add,
// subtract and multiply in three shapes with scale modes, fill and copy,
// the conjugates and the WCplx scalar helpers. All checks stop at the
// first failure and leave the arrays untouched.
//
// Mode selection, by exact value of scaleMode: 0 and 1 run on SIMD lanes,
// 4 runs the two-phase auto-scale loop, 3 and every other value run the
// fixed-scale plain loops (3 saturating, the rest wrapping).
#include <cstring>

#include "frame/checks.h"
#include "frame/cpu_dispatch.h"
#include "vector/int16_kernels.h"

namespace ryx::int16 {
namespace {

constexpr const char* kStem = "ryxaritw";

// The wide kernel only pays from a few blocks on.
constexpr int kWideFrom = 64;

inline void laneKernel(Op op, bool sat, const short* a, const short* b, short v, short* d, int n) {
  if (n >= kWideFrom && cpu::allows(cpu::Isa::Avx2)) {
    avx2::laneKernelW(op, sat, a, b, v, d, n);
  } else {
    laneKernelW(op, sat, a, b, v, d, n);
  }
}
inline void laneKernel(Op op, bool sat, const WCplx* a, const WCplx* b, WCplx v, WCplx* d, int n) {
  if (n >= kWideFrom / 2 && cpu::allows(cpu::Isa::Avx2)) {
    avx2::laneKernelV(op, sat, a, b, v, d, n);
  } else {
    laneKernelV(op, sat, a, b, v, d, n);
  }
}
inline void fixedKernel(Op op, Mode m, const short* a, const short* b, short v, short* d, int n, int f) {
  fixedKernelW(op, m, a, b, v, d, n, f);
}
inline void fixedKernel(Op op, Mode m, const WCplx* a, const WCplx* b, WCplx v, WCplx* d, int n, int f) {
  fixedKernelV(op, m, a, b, v, d, n, f);
}
inline void autoKernel(Op op, const short* a, const short* b, short v, short* d, int n, int* sf) {
  autoKernelW(op, a, b, v, d, n, sf);
}
inline void autoKernel(Op op, const WCplx* a, const WCplx* b, WCplx v, WCplx* d, int n, int* sf) {
  autoKernelV(op, a, b, v, d, n, sf);
}

template <class T>
void run(Op op, const T* a, const T* b, T val, T* dst, int n, int scaleMode, int* scaleFactor) {
  const Mode mode = readMode(scaleMode);
  switch (mode) {
    case Mode::Wrap: laneKernel(op, false, a, b, val, dst, n); break;
    case Mode::Saturate: laneKernel(op, true, a, b, val, dst, n); break;
    case Mode::Auto: autoKernel(op, a, b, val, dst, n, scaleFactor); break;
    default: fixedKernel(op, mode, a, b, val, dst, n, scaleFactor ? *scaleFactor : 0); break;
  }
}

template <class T>
void op1(const char* name, Op op, T val, T* dst, int n, int scaleMode, int* scaleFactor) {
  if (!passFirst({name, kStem},
                 {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}, {scaleMode == 4 && scaleFactor == nullptr, "scalefactor==0"}}))
    return;
  run<T>(op, dst, nullptr, val, dst, n, scaleMode, scaleFactor);
}

template <class T>
void op2(const char* name, Op op, const T* src, T* dst, int n, int scaleMode, int* scaleFactor) {
  if (!passFirst({name, kStem},
                 {{n <= 0, "n<=0"},
                  {src == nullptr, "src==0"},
                  {dst == nullptr, "dst==0"},
                  {scaleMode == 4 && scaleFactor == nullptr, "scalefactor==0"}}))
    return;
  run<T>(op, dst, src, T{}, dst, n, scaleMode, scaleFactor);
}

template <class T>
void op3(const char* name, Op op, const T* srcA, const T* srcB, T* dst, int n, int scaleMode, int* scaleFactor) {
  if (!passFirst({name, kStem},
                 {{n <= 0, "n<=0"},
                  {srcA == nullptr, "srcA==0"},
                  {srcB == nullptr, "srcB==0"},
                  {dst == nullptr, "dst==0"},
                  {scaleMode == 4 && scaleFactor == nullptr, "scalefactor==0"}}))
    return;
  run<T>(op, srcA, srcB, T{}, dst, n, scaleMode, scaleFactor);
}

template <class T>
void zero(const char* name, T* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}})) return;
  std::memset(dst, 0, sizeof(T) * static_cast<std::size_t>(n));
}

template <class T>
void set(const char* name, T val, T* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}})) return;
  for (int i = 0; i < n; ++i) dst[i] = val;
}

// Copy tolerates any overlap of src and dst.
template <class T>
void copy(const char* name, const T* src, T* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  std::memmove(dst, src, sizeof(T) * static_cast<std::size_t>(n));
}

// Conjugation negates the imaginary part in 16 bits, keeping the low 16
// bits: -32768 has no positive image and stays as it is.
inline WCplx conjOf(WCplx a) {
  return {a.re, static_cast<short>(static_cast<unsigned short>(0u - static_cast<unsigned short>(a.im)))};
}

// vec[2n-2-k] = conj(vec[k]) for k = 1 .. n-2: the upper half of a
// conjugate-symmetric spectrum of 2n-2 samples from its n lower samples.
inline void mirror(WCplx* vec, int n) {
  for (int k = 1; k <= n - 2; ++k) vec[2 * n - 2 - k] = conjOf(vec[k]);
}

using Array3 = void (*)(const WCplx*, const WCplx*, WCplx*, int, int, int*);

// One element through the array routine on local copies; a failure stored
// in the thread's status (by that call or an earlier one) adds a trace line.
WCplx scalarByArray(const char* name, Array3 routine, WCplx a, WCplx b, int scaleMode, int* scaleFactor) {
  WCplx result{0, 0};
  const WCplx la = a;
  const WCplx lb = b;
  routine(&la, &lb, &result, 1, scaleMode, scaleFactor);
  failedInside({name, kStem});
  return result;
}

inline short clampToShort(int v) { return v > 32767 ? 32767 : (v < -32768 ? -32768 : static_cast<short>(v)); }

constexpr Op Add = Op::Add;
constexpr Op Sub = Op::Sub;
constexpr Op Mpy = Op::Mpy;

}  // namespace
}  // namespace ryx::int16

using namespace ryx::int16;

extern "C" {

RYXAPI void ryxwbAdd1(short val, short* dst, int n, int m, int* f) { op1(__func__, Add, val, dst, n, m, f); }
RYXAPI void ryxwbAdd2(const short* src, short* dst, int n, int m, int* f) { op2(__func__, Add, src, dst, n, m, f); }
RYXAPI void ryxwbAdd3(const short* a, const short* b, short* dst, int n, int m, int* f) { op3(__func__, Add, a, b, dst, n, m, f); }
RYXAPI void ryxwbSub1(short val, short* dst, int n, int m, int* f) { op1(__func__, Sub, val, dst, n, m, f); }
RYXAPI void ryxwbSub2(const short* src, short* dst, int n, int m, int* f) { op2(__func__, Sub, src, dst, n, m, f); }
RYXAPI void ryxwbSub3(const short* a, const short* b, short* dst, int n, int m, int* f) { op3(__func__, Sub, a, b, dst, n, m, f); }
RYXAPI void ryxwbMpy1(short val, short* dst, int n, int m, int* f) { op1(__func__, Mpy, val, dst, n, m, f); }
RYXAPI void ryxwbMpy2(const short* src, short* dst, int n, int m, int* f) { op2(__func__, Mpy, src, dst, n, m, f); }
RYXAPI void ryxwbMpy3(const short* a, const short* b, short* dst, int n, int m, int* f) { op3(__func__, Mpy, a, b, dst, n, m, f); }

RYXAPI void ryxvbAdd1(WCplx val, WCplx* dst, int n, int m, int* f) { op1(__func__, Add, val, dst, n, m, f); }
RYXAPI void ryxvbAdd2(const WCplx* src, WCplx* dst, int n, int m, int* f) { op2(__func__, Add, src, dst, n, m, f); }
RYXAPI void ryxvbAdd3(const WCplx* a, const WCplx* b, WCplx* dst, int n, int m, int* f) { op3(__func__, Add, a, b, dst, n, m, f); }
RYXAPI void ryxvbSub1(WCplx val, WCplx* dst, int n, int m, int* f) { op1(__func__, Sub, val, dst, n, m, f); }
RYXAPI void ryxvbSub2(const WCplx* src, WCplx* dst, int n, int m, int* f) { op2(__func__, Sub, src, dst, n, m, f); }
RYXAPI void ryxvbSub3(const WCplx* a, const WCplx* b, WCplx* dst, int n, int m, int* f) { op3(__func__, Sub, a, b, dst, n, m, f); }
RYXAPI void ryxvbMpy1(WCplx val, WCplx* dst, int n, int m, int* f) { op1(__func__, Mpy, val, dst, n, m, f); }
RYXAPI void ryxvbMpy2(const WCplx* src, WCplx* dst, int n, int m, int* f) { op2(__func__, Mpy, src, dst, n, m, f); }
RYXAPI void ryxvbMpy3(const WCplx* a, const WCplx* b, WCplx* dst, int n, int m, int* f) { op3(__func__, Mpy, a, b, dst, n, m, f); }

RYXAPI void ryxwbZero(short* dst, int n) { zero(__func__, dst, n); }
RYXAPI void ryxwbSet(short val, short* dst, int n) { set(__func__, val, dst, n); }
RYXAPI void ryxwbCopy(const short* src, short* dst, int n) { copy(__func__, src, dst, n); }
RYXAPI void ryxvbZero(WCplx* dst, int n) { zero(__func__, dst, n); }
RYXAPI void ryxvbSet(WCplx val, WCplx* dst, int n) { set(__func__, val, dst, n); }
RYXAPI void ryxvbCopy(const WCplx* src, WCplx* dst, int n) { copy(__func__, src, dst, n); }

RYXAPI void ryxvbConj1(WCplx* vec, int n) {
  if (!ryx::passFirst({__func__, kStem}, {{n <= 0, "n<=0"}, {vec == nullptr, "vec==0"}})) return;
  for (int i = 0; i < n; ++i) vec[i] = conjOf(vec[i]);
}

RYXAPI void ryxvbConj2(const WCplx* src, WCplx* dst, int n) {
  if (!ryx::passFirst({__func__, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  for (int i = 0; i < n; ++i) dst[i] = conjOf(src[i]);
}

// dst[n-1-i] = conj(src[i]); the pairs i, n-1-i are read before either is
// written, so src may equal dst.
RYXAPI void ryxvbConjFlip2(const WCplx* src, WCplx* dst, int n) {
  if (!ryx::passFirst({__func__, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  for (int i = 0, j = n - 1; i <= j; ++i, --j) {
    const WCplx lo = src[i];
    const WCplx hi = src[j];
    dst[j] = conjOf(lo);
    dst[i] = conjOf(hi);
  }
}

RYXAPI void ryxvbConjExtend1(WCplx* vec, int n) {
  if (!ryx::passFirst({__func__, kStem}, {{n <= 0, "n<=0"}, {vec == nullptr, "vec==0"}})) return;
  mirror(vec, n);
}

RYXAPI void ryxvbConjExtend2(const WCplx* src, WCplx* dst, int n) {
  if (!ryx::passFirst({__func__, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  std::memmove(dst, src, sizeof(WCplx) * static_cast<std::size_t>(n));
  mirror(dst, n);
}

RYXAPI WCplx ryxvAdd(WCplx a, WCplx b, int m, int* f) { return scalarByArray(__func__, ryxvbAdd3, a, b, m, f); }
RYXAPI WCplx ryxvSub(WCplx a, WCplx b, int m, int* f) { return scalarByArray(__func__, ryxvbSub3, a, b, m, f); }
RYXAPI WCplx ryxvMpy(WCplx a, WCplx b, int m, int* f) { return scalarByArray(__func__, ryxvbMpy3, a, b, m, f); }

// a / b in double precision: f = 1/|b|^2, each part truncated towards zero
// to 32 bits and then clamped to 16 bits. No scale mode: saturation is
// fixed. A zero divisor reports and yields (0, 0).
RYXAPI WCplx ryxvDiv(WCplx a, WCplx b) {
  if (!ryx::passFirst({__func__, kStem}, {{b.re == 0 && b.im == 0, "(b.re==0)&&(b.im==0)"}})) return WCplx{0, 0};
  const double br = b.re, bi = b.im, ar = a.re, ai = a.im;
  const double f = 1.0 / (br * br + bi * bi);
  const double re = (br * ar + bi * ai) * f;
  const double im = (br * ai - bi * ar) * f;
  return WCplx{clampToShort(static_cast<int>(re)), clampToShort(static_cast<int>(im))};
}

RYXAPI WCplx ryxvConj(WCplx a) { return conjOf(a); }

RYXAPI WCplx ryxvSet(short re, short im) { return WCplx{re, im}; }

}  // extern "C"
