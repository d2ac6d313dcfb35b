// Up- and down-sampling by an integer factor (source group "ryxsampl").
// No filtering: UpSample spreads the samples `factor` apart behind `*phase`
// leading zeros, DownSample keeps every factor-th sample from `*phase` on.
// The caller's phase carries the position from one block to the next.
// Checks stop at the first failure and write nothing.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "rate/rate_checks.h"

namespace ryx::rate {
namespace {

constexpr const char* kStem = "ryxsampl";

// The shared checks; `phase` is read only once it is known not to be null.
template <class T>
Verdict checkArgs(const char* name, const T* src, int srcLen, const T* dst, const int* dstLen, int factor,
                    const int* phase) {
  const bool hasPhase = phase != nullptr;
  return firstReport({name, kStem}, {{srcLen < 1, "Invalid src array length"},
                                {src == nullptr || dst == nullptr, "Null buffer pointer"},
                                {dstLen == nullptr, "Null dstLen pointer"},
                                {!hasPhase, "Null phase pointer"},
                                {factor < 1, "Invalid factor value"},
                                {hasPhase && *phase < 0, "Invalid phase value"},
                                {hasPhase && factor <= *phase, "Invalid factor value"}});
}

template <class T>
void copyUnlessSame(const T* src, T* dst, int n) {
  if (src != dst) std::memmove(dst, src, sizeof(T) * static_cast<std::size_t>(n));
}

// Written from the end towards the start, each sample after the zeros that
// follow it, so that dst may be src itself: a place is written only after
// the source sample that lies there has been read.
template <class T>
RyxStatus upSample(const char* name, const T* src, int srcLen, T* dst, int* dstLen, int factor, int* phase) {
  if (const Verdict v = checkArgs(name, src, srcLen, dst, dstLen, factor, phase); v.failed) return v.result;
  const std::int64_t total = std::int64_t{srcLen} * factor;
  *dstLen = static_cast<int>(total);
  if (factor == 1) {
    copyUnlessSame(src, dst, srcLen);
    return RYX_StsOk;
  }
  const std::int64_t p = *phase;
  std::int64_t end = total;  // one past the zeros behind the current sample
  for (std::int64_t i = srcLen - 1; i >= 0; --i) {
    const T sample = src[i];
    const std::int64_t at = i * factor + p;
    for (std::int64_t k = end - 1; k > at; --k) dst[k] = T{};
    dst[at] = sample;
    end = at;
  }
  for (std::int64_t k = 0; k < p; ++k) dst[k] = T{};
  return RYX_StsOk;
}

template <class T>
RyxStatus downSample(const char* name, const T* src, int srcLen, T* dst, int* dstLen, int factor, int* phase) {
  if (const Verdict v = checkArgs(name, src, srcLen, dst, dstLen, factor, phase); v.failed) return v.result;
  if (factor == 1) {
    copyUnlessSame(src, dst, srcLen);
    *dstLen = srcLen;
    return RYX_StsOk;
  }
  std::int64_t i = *phase;
  int k = 0;
  for (; i < srcLen; i += factor) dst[k++] = src[i];
  *dstLen = k;
  *phase = static_cast<int>(i - srcLen);
  return RYX_StsOk;
}

}  // namespace
}  // namespace ryx::rate

using ryx::rate::downSample;
using ryx::rate::upSample;

extern "C" {

RYXAPI RyxStatus ryxsUpSample(const float* s, int n, float* d, int* dn, int f, int* p) { return upSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxcUpSample(const SCplx* s, int n, SCplx* d, int* dn, int f, int* p) { return upSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxdUpSample(const double* s, int n, double* d, int* dn, int f, int* p) { return upSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxzUpSample(const DCplx* s, int n, DCplx* d, int* dn, int f, int* p) { return upSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxwUpSample(const short* s, int n, short* d, int* dn, int f, int* p) { return upSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxvUpSample(const WCplx* s, int n, WCplx* d, int* dn, int f, int* p) { return upSample(__func__, s, n, d, dn, f, p); }

RYXAPI RyxStatus ryxsDownSample(const float* s, int n, float* d, int* dn, int f, int* p) { return downSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxcDownSample(const SCplx* s, int n, SCplx* d, int* dn, int f, int* p) { return downSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxdDownSample(const double* s, int n, double* d, int* dn, int f, int* p) { return downSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxzDownSample(const DCplx* s, int n, DCplx* d, int* dn, int f, int* p) { return downSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxwDownSample(const short* s, int n, short* d, int* dn, int f, int* p) { return downSample(__func__, s, n, d, dn, f, p); }
RYXAPI RyxStatus ryxvDownSample(const WCplx* s, int n, WCplx* d, int* dn, int f, int* p) { return downSample(__func__, s, n, d, dn, f, p); }

}  // extern "C"
