// Entries of the elementwise family (source group "ryxarith"). Each shape is
// one template holding its checks in their documented order; every exported
// name is a one-line instantiation that names itself. All checks stop at the
// first failure and leave the arrays untouched.
#include <cstdint>
#include <cstring>

#include "frame/checks.h"
#include "vector/arith_kernels.h"

namespace ryx::arith {
namespace {

constexpr const char* kStem = "ryxarith";

template <class T>
constexpr int wordsPer = sizeof(T) / 4;

template <class T>
void zero(const char* name, T* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}})) return;
  const std::uint32_t pattern[1] = {0};
  fillWords(pattern, 1, dst, static_cast<std::int64_t>(n) * wordsPer<T>);
}

template <class T>
void set(const char* name, T val, T* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}})) return;
  std::uint32_t pattern[wordsPer<T>];
  std::memcpy(pattern, &val, sizeof val);
  fillWords(pattern, wordsPer<T>, dst, static_cast<std::int64_t>(n) * wordsPer<T>);
}

template <class T>
void copy(const char* name, const T* src, T* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  copyWords(src, dst, static_cast<std::int64_t>(n) * wordsPer<T>);
}

template <class T>
void op1(const char* name, OpKind op, T val, T* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {dst == nullptr, "dst==0"}})) return;
  kernelOp1<T>(op, val, dst, n);
}

template <class T>
void op2(const char* name, OpKind op, const T* src, T* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  kernelOp2<T>(op, src, dst, n);
}

template <class T>
void op3(const char* name, OpKind op, const T* srcA, const T* srcB, T* dst, int n) {
  if (!passFirst({name, kStem},
                 {{n <= 0, "n<=0"}, {srcA == nullptr, "srcA==0"}, {srcB == nullptr, "srcB==0"}, {dst == nullptr, "dst==0"}}))
    return;
  kernelOp3<T>(op, srcA, srcB, dst, n);
}

constexpr OpKind Add = OpKind::Add;
constexpr OpKind Sub = OpKind::Sub;
constexpr OpKind Mpy = OpKind::Mpy;

}  // namespace
}  // namespace ryx::arith

using namespace ryx::arith;

extern "C" {

RYXAPI void ryxsbZero(float* dst, int n) { zero(__func__, dst, n); }
RYXAPI void ryxsbSet(float val, float* dst, int n) { set(__func__, val, dst, n); }
RYXAPI void ryxsbCopy(const float* src, float* dst, int n) { copy(__func__, src, dst, n); }
RYXAPI void ryxsbAdd1(float val, float* dst, int n) { op1(__func__, Add, val, dst, n); }
RYXAPI void ryxsbAdd2(const float* src, float* dst, int n) { op2(__func__, Add, src, dst, n); }
RYXAPI void ryxsbAdd3(const float* a, const float* b, float* dst, int n) { op3(__func__, Add, a, b, dst, n); }
RYXAPI void ryxsbSub1(float val, float* dst, int n) { op1(__func__, Sub, val, dst, n); }
RYXAPI void ryxsbSub2(const float* src, float* dst, int n) { op2(__func__, Sub, src, dst, n); }
RYXAPI void ryxsbSub3(const float* a, const float* b, float* dst, int n) { op3(__func__, Sub, a, b, dst, n); }
RYXAPI void ryxsbMpy1(float val, float* dst, int n) { op1(__func__, Mpy, val, dst, n); }
RYXAPI void ryxsbMpy2(const float* src, float* dst, int n) { op2(__func__, Mpy, src, dst, n); }
RYXAPI void ryxsbMpy3(const float* a, const float* b, float* dst, int n) { op3(__func__, Mpy, a, b, dst, n); }

RYXAPI void ryxdbZero(double* dst, int n) { zero(__func__, dst, n); }
RYXAPI void ryxdbSet(double val, double* dst, int n) { set(__func__, val, dst, n); }
RYXAPI void ryxdbCopy(const double* src, double* dst, int n) { copy(__func__, src, dst, n); }
RYXAPI void ryxdbAdd1(double val, double* dst, int n) { op1(__func__, Add, val, dst, n); }
RYXAPI void ryxdbAdd2(const double* src, double* dst, int n) { op2(__func__, Add, src, dst, n); }
RYXAPI void ryxdbAdd3(const double* a, const double* b, double* dst, int n) { op3(__func__, Add, a, b, dst, n); }
RYXAPI void ryxdbSub1(double val, double* dst, int n) { op1(__func__, Sub, val, dst, n); }
RYXAPI void ryxdbSub2(const double* src, double* dst, int n) { op2(__func__, Sub, src, dst, n); }
RYXAPI void ryxdbSub3(const double* a, const double* b, double* dst, int n) { op3(__func__, Sub, a, b, dst, n); }
RYXAPI void ryxdbMpy1(double val, double* dst, int n) { op1(__func__, Mpy, val, dst, n); }
RYXAPI void ryxdbMpy2(const double* src, double* dst, int n) { op2(__func__, Mpy, src, dst, n); }
RYXAPI void ryxdbMpy3(const double* a, const double* b, double* dst, int n) { op3(__func__, Mpy, a, b, dst, n); }

RYXAPI void ryxcbZero(SCplx* dst, int n) { zero(__func__, dst, n); }
RYXAPI void ryxcbSet(SCplx val, SCplx* dst, int n) { set(__func__, val, dst, n); }
RYXAPI void ryxcbCopy(const SCplx* src, SCplx* dst, int n) { copy(__func__, src, dst, n); }
RYXAPI void ryxcbAdd1(SCplx val, SCplx* dst, int n) { op1(__func__, Add, val, dst, n); }
RYXAPI void ryxcbAdd2(const SCplx* src, SCplx* dst, int n) { op2(__func__, Add, src, dst, n); }
RYXAPI void ryxcbAdd3(const SCplx* a, const SCplx* b, SCplx* dst, int n) { op3(__func__, Add, a, b, dst, n); }
RYXAPI void ryxcbSub1(SCplx val, SCplx* dst, int n) { op1(__func__, Sub, val, dst, n); }
RYXAPI void ryxcbSub2(const SCplx* src, SCplx* dst, int n) { op2(__func__, Sub, src, dst, n); }
RYXAPI void ryxcbSub3(const SCplx* a, const SCplx* b, SCplx* dst, int n) { op3(__func__, Sub, a, b, dst, n); }
RYXAPI void ryxcbMpy1(SCplx val, SCplx* dst, int n) { op1(__func__, Mpy, val, dst, n); }
RYXAPI void ryxcbMpy2(const SCplx* src, SCplx* dst, int n) { op2(__func__, Mpy, src, dst, n); }
RYXAPI void ryxcbMpy3(const SCplx* a, const SCplx* b, SCplx* dst, int n) { op3(__func__, Mpy, a, b, dst, n); }

RYXAPI void ryxzbZero(DCplx* dst, int n) { zero(__func__, dst, n); }
RYXAPI void ryxzbSet(DCplx val, DCplx* dst, int n) { set(__func__, val, dst, n); }
RYXAPI void ryxzbCopy(const DCplx* src, DCplx* dst, int n) { copy(__func__, src, dst, n); }
RYXAPI void ryxzbAdd1(DCplx val, DCplx* dst, int n) { op1(__func__, Add, val, dst, n); }
RYXAPI void ryxzbAdd2(const DCplx* src, DCplx* dst, int n) { op2(__func__, Add, src, dst, n); }
RYXAPI void ryxzbAdd3(const DCplx* a, const DCplx* b, DCplx* dst, int n) { op3(__func__, Add, a, b, dst, n); }
RYXAPI void ryxzbSub1(DCplx val, DCplx* dst, int n) { op1(__func__, Sub, val, dst, n); }
RYXAPI void ryxzbSub2(const DCplx* src, DCplx* dst, int n) { op2(__func__, Sub, src, dst, n); }
RYXAPI void ryxzbSub3(const DCplx* a, const DCplx* b, DCplx* dst, int n) { op3(__func__, Sub, a, b, dst, n); }
RYXAPI void ryxzbMpy1(DCplx val, DCplx* dst, int n) { op1(__func__, Mpy, val, dst, n); }
RYXAPI void ryxzbMpy2(const DCplx* src, DCplx* dst, int n) { op2(__func__, Mpy, src, dst, n); }
RYXAPI void ryxzbMpy3(const DCplx* a, const DCplx* b, DCplx* dst, int n) { op3(__func__, Mpy, a, b, dst, n); }

}  // extern "C"
