// Entries of the Div family (source group "ryxdiv"). Unlike the rest of the
// library these routines return a status and check their pointers before
// the length: a null pointer returns RYX_StsNullPtr (-10), a length below 1
// RYX_DivBadLen (-11), a zero divisor RYX_DivByZero (-9) after all of dst
// has been written. Every report stores RYX_StsBadArg.
#include "frame/checks.h"
#include "vector/division_kernels.h"

namespace ryx::div {
namespace {

constexpr const char* kStem = "ryxdiv";

// The source contexts name the element type in a cast.
template <class T>
struct Contexts;
template <>
struct Contexts<float> {
  static constexpr const char* src = "(float*)src==0";
  static constexpr const char* srcA = "(float*)srcA==0";
  static constexpr const char* srcB = "(float*)srcB==0";
};
template <>
struct Contexts<double> {
  static constexpr const char* src = "(double*)src==0";
  static constexpr const char* srcA = "(double*)srcA==0";
  static constexpr const char* srcB = "(double*)srcB==0";
};
template <>
struct Contexts<SCplx> {
  static constexpr const char* src = "(SCplx*)src==0";
  static constexpr const char* srcA = "(SCplx*)srcA==0";
  static constexpr const char* srcB = "(SCplx*)srcB==0";
};
template <>
struct Contexts<DCplx> {
  static constexpr const char* src = "(DCplx*)src==0";
  static constexpr const char* srcA = "(DCplx*)srcA==0";
  static constexpr const char* srcB = "(DCplx*)srcB==0";
};
template <>
struct Contexts<short> {
  static constexpr const char* src = "(short*)src==0";
  static constexpr const char* srcA = "(short*)srcA==0";
  static constexpr const char* srcB = "(short*)srcB==0";
};
template <>
struct Contexts<WCplx> {
  static constexpr const char* src = "(WCplx*)src==0";
  static constexpr const char* srcA = "(WCplx*)srcA==0";
  static constexpr const char* srcB = "(WCplx*)srcB==0";
};

inline bool kernel1(float v, float* d, int n) { return divScalarS(v, d, n); }
inline bool kernel1(double v, double* d, int n) { return divScalarD(v, d, n); }
inline bool kernel1(SCplx v, SCplx* d, int n) { return divScalarC(v, d, n); }
inline bool kernel1(DCplx v, DCplx* d, int n) { return divScalarZ(v, d, n); }
inline bool kernel1(short v, short* d, int n) { return divScalarW(v, d, n); }
inline bool kernel1(WCplx v, WCplx* d, int n) { return divScalarV(v, d, n); }
inline bool kernelN(const float* a, const float* b, float* d, int n) { return divArrayS(a, b, d, n); }
inline bool kernelN(const double* a, const double* b, double* d, int n) { return divArrayD(a, b, d, n); }
inline bool kernelN(const SCplx* a, const SCplx* b, SCplx* d, int n) { return divArrayC(a, b, d, n); }
inline bool kernelN(const DCplx* a, const DCplx* b, DCplx* d, int n) { return divArrayZ(a, b, d, n); }
inline bool kernelN(const short* a, const short* b, short* d, int n) { return divArrayW(a, b, d, n); }
inline bool kernelN(const WCplx* a, const WCplx* b, WCplx* d, int n) { return divArrayV(a, b, d, n); }

// The length check after the pointer checks, and the zero-divisor report
// after the kernel.
inline RyxStatus lengthFails(const char* name, int n) {
  return passFirst({name, kStem}, {{n <= 0, "n<=0"}}) ? RYX_StsOk : RYX_DivBadLen;
}

inline RyxStatus finish(const char* name, bool zeroDivisor) {
  if (!zeroDivisor) return RYX_StsOk;
  passFirst({name, kStem}, {{true, "(Divide_by_Zero)"}});
  return RYX_DivByZero;
}

template <class T>
RyxStatus div1(const char* name, T val, T* dst, int n) {
  if (!passFirst({name, kStem}, {{dst == nullptr, "dst==0"}})) return RYX_StsNullPtr;
  if (const RyxStatus s = lengthFails(name, n)) return s;
  return finish(name, kernel1(val, dst, n));
}

template <class T>
RyxStatus div2(const char* name, const T* src, T* dst, int n) {
  if (!passFirst({name, kStem}, {{src == nullptr, Contexts<T>::src}, {dst == nullptr, "dst==0"}})) return RYX_StsNullPtr;
  if (const RyxStatus s = lengthFails(name, n)) return s;
  return finish(name, kernelN(dst, src, dst, n));
}

template <class T>
RyxStatus div3(const char* name, const T* srcA, const T* srcB, T* dst, int n) {
  if (!passFirst({name, kStem},
                 {{srcA == nullptr, Contexts<T>::srcA}, {srcB == nullptr, Contexts<T>::srcB}, {dst == nullptr, "dst==0"}}))
    return RYX_StsNullPtr;
  if (const RyxStatus s = lengthFails(name, n)) return s;
  return finish(name, kernelN(srcA, srcB, dst, n));
}

}  // namespace
}  // namespace ryx::div

using namespace ryx::div;

extern "C" {

RYXAPI RyxStatus ryxsbDiv1(float val, float* dst, int n) { return div1(__func__, val, dst, n); }
RYXAPI RyxStatus ryxsbDiv2(const float* src, float* dst, int n) { return div2(__func__, src, dst, n); }
RYXAPI RyxStatus ryxsbDiv3(const float* a, const float* b, float* dst, int n) { return div3(__func__, a, b, dst, n); }
RYXAPI RyxStatus ryxdbDiv1(double val, double* dst, int n) { return div1(__func__, val, dst, n); }
RYXAPI RyxStatus ryxdbDiv2(const double* src, double* dst, int n) { return div2(__func__, src, dst, n); }
RYXAPI RyxStatus ryxdbDiv3(const double* a, const double* b, double* dst, int n) { return div3(__func__, a, b, dst, n); }
RYXAPI RyxStatus ryxcbDiv1(SCplx val, SCplx* dst, int n) { return div1(__func__, val, dst, n); }
RYXAPI RyxStatus ryxcbDiv2(const SCplx* src, SCplx* dst, int n) { return div2(__func__, src, dst, n); }
RYXAPI RyxStatus ryxcbDiv3(const SCplx* a, const SCplx* b, SCplx* dst, int n) { return div3(__func__, a, b, dst, n); }
RYXAPI RyxStatus ryxzbDiv1(DCplx val, DCplx* dst, int n) { return div1(__func__, val, dst, n); }
RYXAPI RyxStatus ryxzbDiv2(const DCplx* src, DCplx* dst, int n) { return div2(__func__, src, dst, n); }
RYXAPI RyxStatus ryxzbDiv3(const DCplx* a, const DCplx* b, DCplx* dst, int n) { return div3(__func__, a, b, dst, n); }
RYXAPI RyxStatus ryxwbDiv1(short val, short* dst, int n) { return div1(__func__, val, dst, n); }
RYXAPI RyxStatus ryxwbDiv2(const short* src, short* dst, int n) { return div2(__func__, src, dst, n); }
RYXAPI RyxStatus ryxwbDiv3(const short* a, const short* b, short* dst, int n) { return div3(__func__, a, b, dst, n); }
RYXAPI RyxStatus ryxvbDiv1(WCplx val, WCplx* dst, int n) { return div1(__func__, val, dst, n); }
RYXAPI RyxStatus ryxvbDiv2(const WCplx* src, WCplx* dst, int n) { return div2(__func__, src, dst, n); }
RYXAPI RyxStatus ryxvbDiv3(const WCplx* a, const WCplx* b, WCplx* dst, int n) { return div3(__func__, a, b, dst, n); }

}  // extern "C"
