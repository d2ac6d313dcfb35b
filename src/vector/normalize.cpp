// Normalisation (source group "ryxnorm"): dst[i] = (src[i] - offset) *
// (1 / factor), the reciprocal formed once in the factor's precision.
//
// float and double compute in their own precision, complex parts each less
// the matching part of the offset. The 16-bit forms take the integer
// difference to float, multiply by the float reciprocal and add 1.5 * 2^23:
// the low 16 bits of that sum's pattern are the product rounded to nearest
// (ties to even), stored as they stand, so results beyond 16 bits wrap.
// Checks stop at the first failure and write nothing; src may equal dst.
#include <cstdint>
#include <cstring>

#include "frame/checks.h"

namespace ryx::stats {
namespace {

constexpr const char* kStem = "ryxnorm";

inline float scaled(float x, float offset, float inv) { return (x - offset) * inv; }
inline double scaled(double x, double offset, double inv) { return (x - offset) * inv; }
inline SCplx scaled(SCplx x, SCplx offset, float inv) { return {(x.re - offset.re) * inv, (x.im - offset.im) * inv}; }
inline DCplx scaled(DCplx x, DCplx offset, double inv) { return {(x.re - offset.re) * inv, (x.im - offset.im) * inv}; }

inline short rounded16(std::int32_t difference, float inv) {
  const float sum = static_cast<float>(difference) * inv + 12582912.0f;
  std::uint32_t bits;
  std::memcpy(&bits, &sum, sizeof bits);
  return static_cast<short>(static_cast<std::uint16_t>(bits));
}
inline short scaled(short x, short offset, float inv) { return rounded16(std::int32_t{x} - offset, inv); }
inline WCplx scaled(WCplx x, WCplx offset, float inv) {
  return {rounded16(std::int32_t{x.re} - offset.re, inv), rounded16(std::int32_t{x.im} - offset.im, inv)};
}

template <class T, class F>
void normalize(const char* name, const T* src, T* dst, int n, T offset, F factor) {
  if (!passFirst({name, kStem},
                 {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}, {factor == 0, "factor == 0"}}))
    return;
  const F inv = F{1} / factor;
  for (int i = 0; i < n; ++i) dst[i] = scaled(src[i], offset, inv);
}

}  // namespace
}  // namespace ryx::stats

using namespace ryx::stats;

extern "C" {

RYXAPI void ryxsbNormalize(const float* src, float* dst, int n, float offset, float factor) {
  normalize(__func__, src, dst, n, offset, factor);
}
RYXAPI void ryxdbNormalize(const double* src, double* dst, int n, double offset, double factor) {
  normalize(__func__, src, dst, n, offset, factor);
}
RYXAPI void ryxcbNormalize(const SCplx* src, SCplx* dst, int n, SCplx offset, float factor) {
  normalize(__func__, src, dst, n, offset, factor);
}
RYXAPI void ryxzbNormalize(const DCplx* src, DCplx* dst, int n, DCplx offset, double factor) {
  normalize(__func__, src, dst, n, offset, factor);
}
RYXAPI void ryxwbNormalize(const short* src, short* dst, int n, short offset, float factor) {
  normalize(__func__, src, dst, n, offset, factor);
}
RYXAPI void ryxvbNormalize(const WCplx* src, WCplx* dst, int n, WCplx offset, float factor) {
  normalize(__func__, src, dst, n, offset, factor);
}

}  // extern "C"
