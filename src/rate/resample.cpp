// Resampling filter (source group "ryxrsmpl"): a bank of Hamming lowpass
// rows, one per expected ratio srcLen/dstLen, and an embedded multirate
// FIR that turns a block of srcLen samples into dstLen.
//
// The rational factor up/down comes from the two lengths: both halved while
// even, then the smallest u, d with srcLen'*u == dstLen'*d; accepted when
// dstLen' is 1 or u lies below dstLen - 1, otherwise the ratio moves to a
// nearby one (dstLen' less 1 when odd, else srcLen' less 1) and the
// reduction starts again. The smallest solution of a*u == b*d is
// u = b/gcd, d = a/gcd, and any other solution has a larger u, so testing
// that one pair decides the whole search.
//
// Argument failures report RYX_StsBadArg but return codes of their own.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>

#include "frame/memory.h"
#include "rate/rate_checks.h"

namespace ryx::rate {
namespace {

constexpr const char* kStem = "ryxrsmpl";
constexpr unsigned kMark = 0xfedcba91u;

constexpr int kNullPtr = -10;
constexpr int kBadLen = -11;
constexpr int kInPlace = -12;
constexpr int kNotInit = -13;
constexpr int kBadFactor = -50;
constexpr int kBadFreq = -51;
constexpr int kNoMem = -4;
constexpr const char* kNoMemText = "memory allocation failure";

struct Ratio {
  int up;
  int down;
};

Ratio reduce(int srcLen, int dstLen) {
  if (srcLen == dstLen) return {1, 1};
  int a = srcLen, b = dstLen;
  for (;;) {
    while (a % 2 == 0 && b % 2 == 0) {
      a /= 2;
      b /= 2;
    }
    const int g = std::gcd(a, b);
    if (b == 1 || b / g < dstLen - 1) return {b / g, a / g};
    if (b % 2 != 0) --b;
    else --a;
  }
}

// The filter routines of each record type.
template <class T>
struct Filter;
template <>
struct Filter<float> {
  static constexpr auto initMr = ryxsFirInitMr;
  static constexpr auto block = ryxsbFir;
};
template <>
struct Filter<double> {
  static constexpr auto initMr = ryxdFirInitMr;
  static constexpr auto block = ryxdbFir;
};

template <class T>
T* takeArray(std::int64_t count) {
  return count * static_cast<std::int64_t>(sizeof(T)) > INT_MAX ? nullptr : allocArray<T>(static_cast<int>(count));
}

// The new arrays are built completely before the record is touched, so a
// failed Init leaves an earlier live record as it was.
template <class T>
int sampInit(const char* name, RyxSampState* st, const T* factors, const T* freqs, int count, int tapsLen) {
  const Site site{name, kStem};
  if (const int code = firstCode(site, {{st == nullptr, "Null state pointer", kNullPtr},
                                        {factors == nullptr, "Null factors pointer", kNullPtr},
                                        {freqs == nullptr, "Null frequencies pointer", kNullPtr},
                                        {tapsLen < 5, "Bad number of taps coefficients", kBadLen},
                                        {count < 1, "Bad number of factors", kBadLen}}))
    return code;
  for (int i = 0; i < count; ++i) {
    if (const int code = firstCode(site, {{freqs[i] < 0 || freqs[i] >= 0.5, "Bad frequency value", kBadFreq},
                                          {factors[i] <= 0, "Bad factorRange values", kBadFactor}}))
      return code;
  }
  T* ownFactors = takeArray<T>(count);
  T* ownFreqs = takeArray<T>(count);
  T* rows = takeArray<T>(std::int64_t{count} * tapsLen);
  double* scratch = takeArray<double>(tapsLen);
  auto release = [&] {
    ryxFree(ownFactors);
    ryxFree(ownFreqs);
    ryxFree(rows);
    ryxFree(scratch);
  };
  if (ownFactors == nullptr || ownFreqs == nullptr || rows == nullptr || scratch == nullptr) {
    release();
    reportNoMem(site, kNoMemText);
    return kNoMem;
  }
  for (int i = 0; i < count; ++i) {
    if (const RyxStatus status = ryxdFirLowpass(freqs[i], scratch, tapsLen, 3, 1); status != RYX_StsOk) {
      release();
      return status;
    }
    T* row = rows + std::int64_t{i} * tapsLen;
    for (int k = 0; k < tapsLen; ++k) row[k] = static_cast<T>(scratch[k]);
  }
  ryxFree(scratch);
  std::memcpy(ownFactors, factors, sizeof(T) * count);
  std::memcpy(ownFreqs, freqs, sizeof(T) * count);
  ryxSampFree(st);
  st->factorCount = count;
  st->tapsLen = tapsLen;
  st->lastSrcLen = 0;
  st->lastDstLen = 0;
  st->factors = ownFactors;
  st->freqs = ownFreqs;
  st->taps = rows;
  std::memset(&st->fir, 0, sizeof st->fir);
  st->mark = kMark;
  return 0;
}

// The row whose factor lies nearest srcLen/dstLen; the first on a tie.
template <class T>
const T* nearestRow(const RyxSampState* st, int srcLen, int dstLen) {
  const double ratio = static_cast<double>(srcLen) / dstLen;
  const T* factors = static_cast<const T*>(st->factors);
  int best = 0;
  for (int i = 1; i < st->factorCount; ++i) {
    if (std::fabs(factors[i] - ratio) < std::fabs(factors[best] - ratio)) best = i;
  }
  return static_cast<const T*>(st->taps) + std::int64_t{best} * st->tapsLen;
}

template <class T>
int samp(const char* name, RyxSampState* st, const T* src, int srcLen, T* dst, int dstLen) {
  if (const int code = firstCode({name, kStem}, {{st == nullptr, "Null state pointer", kNullPtr},
                                                 {src == nullptr, "Null src pointer", kNullPtr},
                                                 {dst == nullptr, "Null dst pointer", kNullPtr},
                                                 {src == dst, "Function doesn't work in place", kInPlace},
                                                 {srcLen < 2, "Bad src length", kBadLen},
                                                 {dstLen < 2, "Bad dst length", kBadLen},
                                                 {st != nullptr && st->mark != kMark,
                                                  "structure hasn't been initialized", kNotInit}}))
    return code;
  const bool rebuild = srcLen != st->lastSrcLen || dstLen != st->lastDstLen;
  const Ratio r = rebuild ? reduce(srcLen, dstLen) : Ratio{st->fir.upFactor, st->fir.downFactor};
  // A moved ratio can give more outputs than dstLen; they are filtered (the
  // history stays that of the whole block) into a spare row and dropped.
  const int iters = srcLen / r.down;
  const int fit = std::min(iters, dstLen / r.up);
  T* spare = nullptr;
  if (fit < iters && (spare = allocArray<T>(r.up)) == nullptr) {
    reportNoMem({name, kStem}, kNoMemText);
    return kNoMem;
  }
  if (rebuild) {
    // The set-up gives up on any failure left in the thread's status; an
    // older failure stays stored but does not stop the rebuild.
    const RyxStatus before = ryxGetErrStatus();
    ryxSetErrStatus(RYX_StsOk);
    Filter<T>::initMr(nearestRow<T>(st, srcLen, dstLen), st->tapsLen, nullptr, r.up, 0, r.down, 0, &st->fir);
    if (const RyxStatus status = ryxGetErrStatus(); status < 0) {
      st->lastSrcLen = st->lastDstLen = 0;
      ryxFree(spare);
      return status;
    }
    ryxSetErrStatus(before);
    st->lastSrcLen = srcLen;
    st->lastDstLen = dstLen;
  }
  dst[dstLen - 1] = src[srcLen - 1];
  if (fit > 0) Filter<T>::block(&st->fir, src, dst, fit);
  for (int k = fit, at = fit * r.up; k < iters; ++k, at += r.up) {
    Filter<T>::block(&st->fir, src + std::int64_t{k} * r.down, spare, 1);
    if (at < dstLen) std::memcpy(dst + at, spare, sizeof(T) * std::min(r.up, dstLen - at));
  }
  ryxFree(spare);
  return 0;
}

}  // namespace
}  // namespace ryx::rate

using ryx::rate::samp;
using ryx::rate::sampInit;

extern "C" {

RYXAPI int ryxsSampInit(RyxSampState* st, const float* factors, const float* freqs, int count, int tapsLen) {
  return sampInit(__func__, st, factors, freqs, count, tapsLen);
}
RYXAPI int ryxdSampInit(RyxSampState* st, const double* factors, const double* freqs, int count, int tapsLen) {
  return sampInit(__func__, st, factors, freqs, count, tapsLen);
}
RYXAPI int ryxsSamp(RyxSampState* st, const float* src, int srcLen, float* dst, int dstLen) {
  return samp(__func__, st, src, srcLen, dst, dstLen);
}
RYXAPI int ryxdSamp(RyxSampState* st, const double* src, int srcLen, double* dst, int dstLen) {
  return samp(__func__, st, src, srcLen, dst, dstLen);
}

// Null and unmarked records are ignored; the embedded filter is released
// only if it was ever built (it then points at itself).
RYXAPI void ryxSampFree(RyxSampState* st) {
  if (st == nullptr || st->mark != ryx::rate::kMark) return;
  ryxFree(st->factors);
  ryxFree(st->freqs);
  ryxFree(st->taps);
  st->factors = st->freqs = st->taps = nullptr;
  if (st->fir.initMark == &st->fir) ryxFirFree(&st->fir);
  st->mark = 0;
}

}  // extern "C"
