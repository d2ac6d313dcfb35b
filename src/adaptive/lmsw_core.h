// 16-bit LMS filter: 16-bit samples and error, 32-bit taps with 13 fraction
// bits, the step kept as trunc(8192*step) in the record's step word.
//
// The taps stay wide so that slow adaptation is not lost: they are
// saturated to 16 bits only where they enter the product of the output.
// All 32-bit sums and products wrap.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

#include "ryxcore.h"
#include "adaptive/lms_core.h"

namespace ryx::lms {

inline std::int32_t wrapAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
inline std::int32_t wrapMul(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}
inline std::int16_t sat16(std::int32_t v) {
  return static_cast<std::int16_t>(std::clamp<std::int32_t>(v, -32768, 32767));
}

// trunc(8192*v) toward zero; beyond the 32-bit range it saturates, and NaN
// gives 0.
inline std::int32_t toQ13(float v) {
  const double q = std::trunc(8192.0 * double(v));
  if (!(q == q)) return 0;
  if (q >= 2147483647.0) return INT32_MAX;
  if (q <= -2147483648.0) return INT32_MIN;
  return static_cast<std::int32_t>(q);
}
inline float fromQ13(std::int32_t q) { return static_cast<float>(q) * (1.0f / 8192.0f); }

inline std::int32_t stepQ13(const RyxLmsTapState* ts) {
  std::int32_t q;
  std::memcpy(&q, &ts->step, sizeof q);
  return q;
}
inline void setStepQ13(RyxLmsTapState* ts, std::int32_t q) { std::memcpy(&ts->step, &q, sizeof q); }

// Converts n floats to Q13 integers in the same storage (element by element,
// so the source and the destination may be the same array).
inline void floatsToQ13(const float* from, std::int32_t* to, int n) {
  for (int i = 0; i < n; ++i) {
    const std::int32_t q = toQ13(from[i]);
    std::memcpy(to + i, &q, sizeof q);
  }
}
inline void q13ToFloats(const std::int32_t* from, float* to, int n) {
  for (int i = 0; i < n; ++i) {
    std::int32_t q;
    std::memcpy(&q, from + i, sizeof q);
    const float f = fromQ13(q);
    std::memcpy(to + i, &f, sizeof f);
  }
}

// (sum + 4096) >> 13 with sign, saturated.
inline std::int16_t roundQ13(std::int32_t sum) { return sat16(wrapAdd(sum, 4096) >> 13); }

inline std::int16_t stepW(RyxLmsTapState* ts, RyxLmsDlyState* ds, std::int16_t sample, std::int16_t err) {
  std::int32_t* taps = static_cast<std::int32_t*>(ts->taps);
  std::int16_t* line = static_cast<std::int16_t*>(ds->dlyl);
  const std::int32_t e = wrapMul(err, stepQ13(ts));
  if (ds->dlylLen < 2) {
    // One tap, no delay: the error is not saturated and the whole 32-bit
    // tap multiplies the sample.
    taps[0] = wrapAdd(taps[0], wrapMul(e, line[0]));
    line[0] = sample;
    return roundQ13(wrapMul(sample, taps[0]));
  }
  const int len = ts->tapsLen;
  if (e != 0) {
    const std::int32_t e16 = sat16(e);
    const int off = ts->errDly;
    const int reach = std::clamp(ds->dlylLen - off, 0, len);
    for (int i = 0; i < reach; ++i) taps[i] = wrapAdd(taps[i], line[i + off] * e16);
  }
  pushOne(line, ds->dlylLen, sample);
  std::int32_t sum = 0;
  for (int i = 0; i < len; ++i) sum = wrapAdd(sum, std::int32_t(sat16(taps[i])) * line[i]);
  return roundQ13(sum);
}

}  // namespace ryx::lms
