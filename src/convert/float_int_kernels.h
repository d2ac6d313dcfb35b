// Kernels of the integer and fixed-point conversions. They have no failure
// path: the entries have checked the length, the pointers, the size, the
// flags and fractBits.
#pragma once

namespace ryx::convert {

// The integer side: width and signedness.
enum class IntKind { S8, U8, S16, U16, S32, U32 };

// Rounding direction, in the encoding of the processor's rounding-control
// fields (SSE MXCSR bits 13-14, x87 control word bits 10-11).
enum class Rounding { Nearest = 0, Down = 1, Up = 2, Zero = 3 };

// One float-to-integer conversion: the multiply by 2^fractBits, the
// rounding direction, and the clip and check choices.
struct ToIntJob {
  IntKind kind;
  int fractBits;
  Rounding rounding;
  bool clip;   // clamp to the integer's range before rounding
  bool check;  // watch the rounded values for the integer's range
};

// Converts len > 0 elements with the processor's rounding set from the job
// for the length of the call (the caller's state is restored before the
// return). The result is true when `check` is set and some rounded value
// lies outside the integer's range.
bool floatToInt(const float* src, void* dst, int len, const ToIntJob& job);
bool floatToInt(const double* src, void* dst, int len, const ToIntJob& job);

// dst[i] = src[i] * 2^-fractBits, the integer converted exactly where the
// mantissa allows and rounded by the caller's mode where it does not.
void intToFloat(const void* src, float* dst, int len, IntKind kind, int fractBits);
void intToFloat(const void* src, double* dst, int len, IntKind kind, int fractBits);

}  // namespace ryx::convert
