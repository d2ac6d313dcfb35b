// Shared steps of the FFT front ends (complex and real): release of one
// order, table fetch with one purge and retry, the scratch slot, and the
// precision-specific pieces, gathered per sample type.
#pragma once

#include "frame/checks.h"
#include "frame/thread_context.h"
#include "transform/fft_internal.h"

namespace ryx::fft {

template <class T>
struct Precision;

template <>
struct Precision<float> {
  using Cplx = SCplx;
  static constexpr const char* kStem = "ryxffts";
  static constexpr int kScratchKept = kFloatScratchKept;
  static float* getRadix(int order) { return ownsGetFftRadixTwd(order); }
  // The table getRadix would yield when it is already built, else null.
  static const float* cachedRadix(const RyxThreadContext* c, int order) {
    if (order < 0 || order > 31) return nullptr;
    if (order <= kFloatKernelOrder) return static_cast<const float*>(c->sFftRadixTwd[order]);
    if (c->sFftRadixTwd[kFloatKernelOrder] == nullptr) return nullptr;
    return static_cast<const float*>(c->sFftBlockTwd[order]);
  }
  static void freeRadix(int order) { ownsFreeFftRadixTwd(order); }
  static void freeTables() { ownsFreeFftTbls(); }
  static float* getReal(int order) { return ownsGetRealTwd(order); }
  static float* getCcs(int order) { return ownsGetCcsTwd(order); }
  static void freeReal(int order) { ownsFreeRealTwd(order); }
  static void freeCcs(int order) { ownsFreeCcsTwd(order); }
  static void core(float* x, std::uint32_t n, int sign, const float* tbl) {
    ownsFftCore(reinterpret_cast<SCplx*>(x), n, sign, tbl);
  }
  static void splitCore(float* re, float* im, std::uint32_t n, int sign, const float* tbl) {
    ownsFftSplitCore(re, im, n, sign, tbl);
  }
  static void realRecombine(float* d, std::uint32_t m, int sign, const float* t) { ownsRealRecombine(d, m, sign, t); }
  static void ccsRecombine(const float* s, float* d, std::uint32_t m, int sign, const float* t) {
    ownsCcsRecombine(s, d, m, sign, t);
  }
  // 1/N formed in double and rounded to float.
  static void scale(float* x, std::uint64_t count, std::uint64_t n) {
    scaleFloats(x, count, static_cast<float>(1.0 / static_cast<double>(n)));
  }
  static void copy(const float* src, float* dst, std::uint64_t count);
};

template <>
struct Precision<double> {
  using Cplx = DCplx;
  static constexpr const char* kStem = "ryxfftd";
  static constexpr int kScratchKept = kDoubleScratchKept;
  static double* getRadix(int order) { return owndGetFftRadixTwd(order); }
  static const double* cachedRadix(const RyxThreadContext* c, int order) {
    if (order < 0 || order > 31) return nullptr;
    if (order <= kDoubleKernelOrder) return static_cast<const double*>(c->dFftRadixTwd[order]);
    if (c->dFftRadixTwd[kDoubleKernelOrder] == nullptr) return nullptr;
    return static_cast<const double*>(c->dFftBlockTwd[order]);
  }
  static void freeRadix(int order) { owndFreeFftRadixTwd(order); }
  static void freeTables() { owndFreeFftTbls(); }
  static double* getReal(int order) { return owndGetRealTwd(order); }
  static double* getCcs(int order) { return owndGetCcsTwd(order); }
  static void freeReal(int order) { owndFreeRealTwd(order); }
  static void freeCcs(int order) { owndFreeCcsTwd(order); }
  static void core(double* x, std::uint32_t n, int sign, const double* tbl) {
    owndFftCore(reinterpret_cast<DCplx*>(x), n, sign, tbl);
  }
  static void splitCore(double* re, double* im, std::uint32_t n, int sign, const double* tbl) {
    owndFftSplitCore(re, im, n, sign, tbl);
  }
  static void realRecombine(double* d, std::uint32_t m, int sign, const double* t) { owndRealRecombine(d, m, sign, t); }
  static void ccsRecombine(const double* s, double* d, std::uint32_t m, int sign, const double* t) {
    owndCcsRecombine(s, d, m, sign, t);
  }
  static void scale(double* x, std::uint64_t count, std::uint64_t n) {
    scaleDoubles(x, count, 1.0 / static_cast<double>(n));
  }
  static void copy(const double* src, double* dst, std::uint64_t count);
};

// Engine tables of one order, fetched in up to two rounds: when one is
// missing, this precision's engine tables are purged and the fetch runs
// once more; a second miss reports "No working Twd memory". `extra`
// fetches a further table (the recombination table of the real forms).
template <class T, class Extra>
bool fetchTables(const Site& site, int order, const T*& radix, const std::uint32_t*& pairs, Extra extra) {
  // Fast path: everything of this order already cached.
  const RyxThreadContext* ctx = ryxGetThreadContext();
  if (const T* cached = Precision<T>::cachedRadix(ctx, order)) {
    const void* list = ctx->bitRevPairs[order];
    if (list != nullptr && extra()) {
      radix = cached;
      pairs = static_cast<const std::uint32_t*>(list);
      return true;
    }
  }
  for (int round = 0; round < 2; ++round) {
    const T* r = Precision<T>::getRadix(order);
    const bool more = r != nullptr && extra();
    const std::uint32_t* p = more ? ownGetRevPairs(order) : nullptr;
    if (p != nullptr) {
      radix = r;
      pairs = p;
      return true;
    }
    Precision<T>::freeTables();
  }
  reportNoMem(site, "No working Twd memory");
  return false;
}

// Every float or double transform keeps scratch slot 3 at its minimum
// size, taken once, so the kernels never have to fail for lack of it.
template <class T>
bool assureScratch(const Site& site) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  constexpr int kKept = Precision<T>::kScratchKept;
  const void* slot =
      ctx->scratchZLen[kEngineSlot] < kKept ? ownGetScratchZ(kKept, kEngineSlot) : ctx->scratchZ[kEngineSlot];
  if (slot != nullptr) return true;
  reportNoMem(site, "No working Twd memory");
  return false;
}

inline std::uint64_t lengthOf(int order) { return std::uint64_t{1} << order; }

}  // namespace ryx::fft
