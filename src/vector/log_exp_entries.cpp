// Entries of the logarithm, exponent and arctangent family (source groups
// "ryxlnexp", "ryxlnexw", "ryxlg", "ryxatan"). Checks stop at the first
// failure: the length, then the arrays; no element is ever reported. Kept as
// they are: ryxwbLn1's texts "Len<=0" and "Vector==0", ryxczbLg reporting as
// "ryxcbLg2" and ryxwbExp2 as "ryxwbExp1", and the wording of the 16-bit
// exponent's factor limits.
#include "frame/checks.h"
#include "frame/memory.h"
#include "vector/lnexp_kernels.h"

namespace ryx::lnexp {
namespace {

constexpr const char* kLnExp = "ryxlnexp";
constexpr const char* kLnExpW = "ryxlnexw";
constexpr const char* kLg = "ryxlg";
constexpr const char* kAtan = "ryxatan";

template <class T, class K>
void inPlace(const char* name, const char* stem, T* vec, int len, K kernel) {
  if (passFirst({name, stem}, {{len <= 0, "len<=0"}, {vec == nullptr, "vec==0"}})) kernel(vec, vec, len);
}

template <class S, class D, class K>
void outOfPlace(const char* name, const char* stem, const S* src, D* dst, int len, K kernel) {
  if (passFirst({name, stem}, {{len <= 0, "len<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}}))
    kernel(src, dst, len);
}

// The widening complex logarithm works through five buffers of four SCplx,
// freed on every path.
void lgWidening(const char* name, const SCplx* src, DCplx* dst, int len) {
  if (!passFirst({name, kLg}, {{len <= 0, "len<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  SCplx* work[5] = {};
  bool ok = true;
  for (SCplx*& w : work) {
    w = ryxcMalloc(4);
    ok = ok && w != nullptr;
  }
  if (ok) lgC32ToC64(src, dst, len, work);
  else reportNoMem({name, kLg}, "Out of memory");
  for (SCplx* w : work) ryxFree(w);
}

// The 16-bit exponent reads scaleMode by bits. Auto scale takes the factor
// of the largest element and saturates; otherwise the fixed factor (0
// without the flag or the pointer) must lie within -31..31.
void expShort(const char* name, bool inPlace, const short* src, short* dst, int len, int scaleMode, int* scaleFactor) {
  if (!passFirst({name, kLnExpW}, {{len <= 0, "len<=0"},
                                   {src == nullptr, inPlace ? "vec==0" : "src==0"},
                                   {dst == nullptr, "dst==0"}}))
    return;
  if ((scaleMode & RYX_AUTO_SCALE) != 0) {
    const int f = autoFactorExp(src, len);
    if (scaleFactor != nullptr) *scaleFactor = f;
    expI16(src, dst, len, true, f);
    return;
  }
  const int f = (scaleMode & RYX_FIXED_SCALE) != 0 && scaleFactor != nullptr ? *scaleFactor : 0;
  if (!passFirst({name, kLnExpW}, {{f < -31, "sorry, bat ScaleFactor is too small (less then -31)"},
                                   {f > 31, "sorry, bat ScaleFactor is too large (greate then 31)"}}))
    return;
  expI16(src, dst, len, (scaleMode & RYX_SATURATE) != 0, f);
}

}  // namespace
}  // namespace ryx::lnexp

using namespace ryx::lnexp;

extern "C" {

RYXAPI void ryxsbLn1(float* vec, int len) { inPlace(__func__, kLnExp, vec, len, lnF32); }
RYXAPI void ryxsbLn2(const float* src, float* dst, int len) { outOfPlace(__func__, kLnExp, src, dst, len, lnF32); }
RYXAPI void ryxdbLn1(double* vec, int len) { inPlace(__func__, kLnExp, vec, len, lnF64); }
RYXAPI void ryxdbLn2(const double* src, double* dst, int len) { outOfPlace(__func__, kLnExp, src, dst, len, lnF64); }
RYXAPI void ryxdsbLn(const double* src, float* dst, int len) { outOfPlace(__func__, kLnExp, src, dst, len, lnF64ToF32); }
RYXAPI void ryxsbExp1(float* vec, int len) { inPlace(__func__, kLnExp, vec, len, expF32); }
RYXAPI void ryxsbExp2(const float* src, float* dst, int len) { outOfPlace(__func__, kLnExp, src, dst, len, expF32); }
RYXAPI void ryxdbExp1(double* vec, int len) { inPlace(__func__, kLnExp, vec, len, expF64); }
RYXAPI void ryxdbExp2(const double* src, double* dst, int len) { outOfPlace(__func__, kLnExp, src, dst, len, expF64); }
RYXAPI void ryxsdbExp(const float* src, double* dst, int len) { outOfPlace(__func__, kLnExp, src, dst, len, expF32ToF64); }

RYXAPI void ryxsbLg1(float* vec, int len) { inPlace(__func__, kLg, vec, len, lgF32); }
RYXAPI void ryxsbLg2(const float* src, float* dst, int len) { outOfPlace(__func__, kLg, src, dst, len, lgF32); }
RYXAPI void ryxdbLg1(double* vec, int len) { inPlace(__func__, kLg, vec, len, lgF64); }
RYXAPI void ryxdbLg2(const double* src, double* dst, int len) { outOfPlace(__func__, kLg, src, dst, len, lgF64); }
RYXAPI void ryxcbLg1(SCplx* vec, int len) { inPlace(__func__, kLg, vec, len, lgC32); }
RYXAPI void ryxcbLg2(const SCplx* src, SCplx* dst, int len) { outOfPlace(__func__, kLg, src, dst, len, lgC32); }
RYXAPI void ryxczbLg(const SCplx* src, DCplx* dst, int len) { lgWidening("ryxcbLg2", src, dst, len); }

RYXAPI void ryxsbArctan1(float* vec, int len) { inPlace(__func__, kAtan, vec, len, atanF32); }
RYXAPI void ryxsbArctan2(const float* src, float* dst, int len) { outOfPlace(__func__, kAtan, src, dst, len, atanF32); }
RYXAPI void ryxdbArctan1(double* vec, int len) { inPlace(__func__, kAtan, vec, len, atanF64); }
RYXAPI void ryxdbArctan2(const double* src, double* dst, int len) {
  outOfPlace(__func__, kAtan, src, dst, len, atanF64);
}

RYXAPI void ryxwbLn1(short* vec, int len) {
  if (ryx::passFirst({__func__, kLnExpW}, {{len <= 0, "Len<=0"}, {vec == nullptr, "Vector==0"}})) lnI16(vec, vec, len);
}
RYXAPI void ryxwbLn2(const short* src, short* dst, int len) { outOfPlace(__func__, kLnExpW, src, dst, len, lnI16); }
RYXAPI void ryxwbExp1(short* vec, int len, int scaleMode, int* scaleFactor) {
  expShort(__func__, true, vec, vec, len, scaleMode, scaleFactor);
}
RYXAPI void ryxwbExp2(const short* src, short* dst, int len, int scaleMode, int* scaleFactor) {
  expShort("ryxwbExp1", false, src, dst, len, scaleMode, scaleFactor);
}

}  // extern "C"
