// Entries of the integer and fixed-point conversions: source group
// "ryxcvrts" for float, "ryxcvrtd" for double, the same checks and flags on
// both sides.
//
// Every routine but the S...FixToFloat four clears the status, runs all of
// its checks in order (each failure reported), and gives up if a failure is
// stored: nothing written, the rounding state untouched. The S...FixToFloat
// routines stop at the first failed check and clear nothing.
//
// Float to integer takes exactly one rounding flag; UnsignedInt, ClipRange,
// RangeError and any other bits are free (the S forms are signed whatever
// UnsignedInt says). Integer to float takes 0 or exactly UnsignedInt.
// fractBits runs from 0 to bits (unsigned) or bits - 1 (signed).
#include "convert/float_int_kernels.h"
#include "frame/checks.h"
#include "ryxcore.h"

namespace ryx::convert {
namespace {

template <class T>
constexpr const char* kStem = sizeof(T) == 4 ? "ryxcvrts" : "ryxcvrtd";

constexpr int kRoundingFlags = RYX_RoundNearest | RYX_RoundZero | RYX_RoundDown | RYX_RoundUp;

bool oneRounding(int flags) {
  const int r = flags & kRoundingFlags;
  return r != 0 && (r & (r - 1)) == 0;
}

Rounding roundingOf(int flags) {
  if (flags & RYX_RoundZero) return Rounding::Zero;
  if (flags & RYX_RoundDown) return Rounding::Down;
  if (flags & RYX_RoundUp) return Rounding::Up;
  return Rounding::Nearest;
}

bool unsignedInt(int flags) { return (flags & RYX_UnsignedInt) != 0; }
bool badSize(int bits) { return bits != 8 && bits != 16 && bits != 32; }
bool badFractBits(int bits, int fractBits, int flags) {
  return fractBits < 0 || fractBits > (unsignedInt(flags) ? bits : bits - 1);
}
bool badWidening(int flags) { return flags != 0 && flags != RYX_UnsignedInt; }

IntKind kindOf(int bits, bool isUnsigned) {
  if (bits == 8) return isUnsigned ? IntKind::U8 : IntKind::S8;
  if (bits == 16) return isUnsigned ? IntKind::U16 : IntKind::S16;
  return isUnsigned ? IntKind::U32 : IntKind::S32;
}

// The conversion after passed checks; the range report comes once the
// array is written and the caller's rounding state is back.
template <class T>
void narrow(const char* name, const T* src, void* dst, int len, IntKind kind, int fractBits, int flags, Rounding r) {
  const ToIntJob job{kind, fractBits, r, (flags & RYX_ClipRange) != 0, (flags & RYX_RangeError) != 0};
  if (floatToInt(src, dst, len, job)) ryxError(RYX_StsBadArg, name, "A float exceeds an integer", kStem<T>, __LINE__);
}

template <class T>
void fromFloatInt(const char* name, const T* src, void* dst, int len, int bits, int flags) {
  if (!passAll({name, kStem<T>}, {{len <= 0, "len<=0"},
                                  {src == nullptr, "src==0"},
                                  {dst == nullptr, "dst==0"},
                                  {badSize(bits), "Invalid size of an integer"},
                                  {!oneRounding(flags), "Invalid conversion flag"}}))
    return;
  Rounding r = roundingOf(flags);
  // Double, 32 bits, exactly this flag set: round down, so that a negative
  // fraction becomes -1 and is reported instead of truncating to 0.
  if (sizeof(T) == 8 && bits == 32 && flags == (RYX_RoundZero | RYX_UnsignedInt | RYX_RangeError)) r = Rounding::Down;
  narrow(name, src, dst, len, kindOf(bits, unsignedInt(flags)), 0, flags, r);
}

template <class T>
void fromFloatFix(const char* name, const T* src, void* dst, int len, int bits, int fractBits, int flags) {
  if (!passAll({name, kStem<T>}, {{len <= 0, "len<=0"},
                                  {src == nullptr, "src==0"},
                                  {dst == nullptr, "dst==0"},
                                  {badSize(bits), "Invalid size of a fix-point"},
                                  {!oneRounding(flags), "Invalid conversion flag"},
                                  {badFractBits(bits, fractBits, flags), "Invalid fractBits"}}))
    return;
  narrow(name, src, dst, len, kindOf(bits, unsignedInt(flags)), fractBits, flags, roundingOf(flags));
}

// The S forms: signed, with the format fixed by the name.
template <class T>
void fromFloatS(const char* name, const T* src, void* dst, int len, int bits, int fractBits, int flags) {
  if (!passAll({name, kStem<T>}, {{len <= 0, "len<=0"},
                                  {src == nullptr, "src==0"},
                                  {dst == nullptr, "dst==0"},
                                  {!oneRounding(flags), "Invalid conversion flag"}}))
    return;
  narrow(name, src, dst, len, kindOf(bits, false), fractBits, flags, roundingOf(flags));
}

template <class T>
void toFloatInt(const char* name, const void* src, T* dst, int len, int bits, int flags) {
  if (!passAll({name, kStem<T>}, {{len <= 0, "len<=0"},
                                  {src == nullptr, "src==0"},
                                  {dst == nullptr, "dst==0"},
                                  {badSize(bits), "Invalid size of an integer"},
                                  {badWidening(flags), "Invalid conversion flag"}}))
    return;
  intToFloat(src, dst, len, kindOf(bits, unsignedInt(flags)), 0);
}

template <class T>
void toFloatFix(const char* name, const void* src, T* dst, int len, int bits, int fractBits, int flags) {
  if (!passAll({name, kStem<T>}, {{len <= 0, "len<=0"},
                                  {src == nullptr, "src==0"},
                                  {dst == nullptr, "dst==0"},
                                  {badSize(bits), "Invalid size of a fix-point"},
                                  {badWidening(flags), "Invalid conversion flag"},
                                  {badFractBits(bits, fractBits, flags), "Invalid fractBits"}}))
    return;
  intToFloat(src, dst, len, kindOf(bits, unsignedInt(flags)), fractBits);
}

template <class T>
void toFloatS(const char* name, const void* src, T* dst, int len, int bits, int fractBits) {
  if (!passFirst({name, kStem<T>}, {{len <= 0, "len<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  intToFloat(src, dst, len, kindOf(bits, false), fractBits);
}

}  // namespace
}  // namespace ryx::convert

using namespace ryx::convert;

extern "C" {

RYXAPI void ryxsbFloatToInt(const float* src, void* dst, int len, int bits, int flags) {
  fromFloatInt(__func__, src, dst, len, bits, flags);
}
RYXAPI void ryxsbIntToFloat(const void* src, float* dst, int len, int bits, int flags) {
  toFloatInt(__func__, src, dst, len, bits, flags);
}
RYXAPI void ryxsbFloatToFix(const float* src, void* dst, int len, int bits, int fractBits, int flags) {
  fromFloatFix(__func__, src, dst, len, bits, fractBits, flags);
}
RYXAPI void ryxsbFixToFloat(const void* src, float* dst, int len, int bits, int fractBits, int flags) {
  toFloatFix(__func__, src, dst, len, bits, fractBits, flags);
}
RYXAPI void ryxsbFloatToS7Fix(const float* src, signed char* dst, int len, int flags) { fromFloatS(__func__, src, dst, len, 8, 7, flags); }
RYXAPI void ryxsbFloatToS15Fix(const float* src, short* dst, int len, int flags) { fromFloatS(__func__, src, dst, len, 16, 15, flags); }
RYXAPI void ryxsbFloatToS31Fix(const float* src, int* dst, int len, int flags) { fromFloatS(__func__, src, dst, len, 32, 31, flags); }
RYXAPI void ryxsbFloatToS1516Fix(const float* src, int* dst, int len, int flags) { fromFloatS(__func__, src, dst, len, 32, 16, flags); }
RYXAPI void ryxsbS7FixToFloat(const signed char* src, float* dst, int len) { toFloatS(__func__, src, dst, len, 8, 7); }
RYXAPI void ryxsbS15FixToFloat(const short* src, float* dst, int len) { toFloatS(__func__, src, dst, len, 16, 15); }
RYXAPI void ryxsbS31FixToFloat(const int* src, float* dst, int len) { toFloatS(__func__, src, dst, len, 32, 31); }
RYXAPI void ryxsbS1516FixToFloat(const int* src, float* dst, int len) { toFloatS(__func__, src, dst, len, 32, 16); }

RYXAPI void ryxdbFloatToInt(const double* src, void* dst, int len, int bits, int flags) {
  fromFloatInt(__func__, src, dst, len, bits, flags);
}
RYXAPI void ryxdbIntToFloat(const void* src, double* dst, int len, int bits, int flags) {
  toFloatInt(__func__, src, dst, len, bits, flags);
}
RYXAPI void ryxdbFloatToFix(const double* src, void* dst, int len, int bits, int fractBits, int flags) {
  fromFloatFix(__func__, src, dst, len, bits, fractBits, flags);
}
RYXAPI void ryxdbFixToFloat(const void* src, double* dst, int len, int bits, int fractBits, int flags) {
  toFloatFix(__func__, src, dst, len, bits, fractBits, flags);
}
// Two of the double routines report under their historical names.
RYXAPI void ryxdbFloatToS7Fix(const double* src, signed char* dst, int len, int flags) { fromFloatS(__func__, src, dst, len, 8, 7, flags); }
RYXAPI void ryxdbFloatToS15Fix(const double* src, short* dst, int len, int flags) { fromFloatS("ryxdbFloaToS15Fix", src, dst, len, 16, 15, flags); }
RYXAPI void ryxdbFloatToS31Fix(const double* src, int* dst, int len, int flags) { fromFloatS("ryxdbFloaToS31Fix", src, dst, len, 32, 31, flags); }
RYXAPI void ryxdbFloatToS1516Fix(const double* src, int* dst, int len, int flags) { fromFloatS(__func__, src, dst, len, 32, 16, flags); }
RYXAPI void ryxdbS7FixToFloat(const signed char* src, double* dst, int len) { toFloatS(__func__, src, dst, len, 8, 7); }
RYXAPI void ryxdbS15FixToFloat(const short* src, double* dst, int len) { toFloatS(__func__, src, dst, len, 16, 15); }
RYXAPI void ryxdbS31FixToFloat(const int* src, double* dst, int len) { toFloatS(__func__, src, dst, len, 32, 31); }
RYXAPI void ryxdbS1516FixToFloat(const int* src, double* dst, int len) { toFloatS(__func__, src, dst, len, 32, 16); }

}  // extern "C"
