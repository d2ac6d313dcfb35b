// Front-end pieces shared by the 16-bit transforms (source group
// "ryxfftw"): the checks in their documented order, the two-round fetch of
// tables and scratch with a purge of everything between the rounds, and
// the float-core helpers.
#pragma once

#include <climits>
#include <cstdint>

#include "frame/checks.h"
#include "frame/thread_context.h"
#include "transform/fft_int16_cores.h"
#include "transform/fft_internal.h"

namespace ryx::fftw {

constexpr const char* kStem = "ryxfftw";

inline std::uint64_t lengthOf(int order) { return std::uint64_t{1} << order; }
inline bool scaledInverse(int flags) { return (flags & RYX_Inverse) && !(flags & RYX_KeepScale); }

// "order<0", "order>31", then the core conflict: checked also under RYX_Init.
inline bool headChecks(const Site& site, int order, int flags) {
  return passFirst(site, {{order < 0, "order<0"},
                          {order > 31, "order>31"},
                          {(flags & 8192) && (flags & 16384), "(flags & 8192) && (flags & 16384)"}});
}
inline bool directionChecks(const Site& site, int flags) {
  return passFirst(site, {{(flags & 1) && (flags & 2), "(flags & 1) && (flags & 2)"},
                          {(flags & 1) == 0 && (flags & 2) == 0, "(flags & 1)==0 && (flags & 2)==0"}});
}
inline bool orderingChecks(const Site& site, int flags) {
  return passFirst(site, {{(flags & 64) && (flags & 128), "(flags & 64) && (flags & 128)"},
                          {(flags & 64) && (flags & 32), "(flags & 64) && (flags & 32)"},
                          {(flags & 32) && (flags & 128), "(flags & 32) && (flags & 128)"}});
}
// Scale modes are tested by bits; a null factor is refused only for mode 4.
inline bool scaleChecks(const Site& site, int scaleMode, const int* scaleFactor) {
  return passFirst(site, {{(scaleMode & 0x0002) && (scaleMode & 0x0004), "(scaleMode & 0x0002) && (scaleMode & 0x0004)"},
                          {scaleMode == 4 && scaleFactor == nullptr, "scaleFactor==0"}});
}

// Everything the thread keeps for transforms of any precision, dropped
// between the two rounds of a fetch. A caller whose data sits in the
// integer scratch (the split forms pack into it) keeps that scratch.
inline void purgeAll(bool keepScratchI = false) {
  ownwFreeFftTbls();
  ownsFreeFftTbls();
  owndFreeFftTbls();
  if (!keepScratchI) ownFreeScratchI();
  ownFreeScratchC();
  ownFreeScratchZ();
}

// Runs `fetch` (which must take every table and buffer afresh) up to twice,
// purging everything after a miss; the second miss reports
// "No working memory".
template <class Fetch>
bool fetchTwice(const Site& site, Fetch fetch, bool keepScratchI = false) {
  for (int round = 0; round < 2; ++round) {
    if (fetch()) return true;
    if (round == 0) purgeAll(keepScratchI);
  }
  reportNoMem(site, "No working memory");
  return false;
}

// Scratch of `count` elements, or null when the count does not fit.
inline SCplx* scratchC(std::uint64_t count, int slot) {
  return count > INT_MAX ? nullptr : ownGetScratchC(static_cast<int>(count), slot);
}
inline SCplx* scratchZ(std::uint64_t count, int slot) {
  return count > INT_MAX ? nullptr : ownGetScratchZ(static_cast<int>(count), slot);
}
inline int* scratchI(std::uint64_t count, int slot) {
  return count > INT_MAX ? nullptr : ownGetScratchI(static_cast<int>(count), slot);
}

// Trace line with a context after a failed float routine inside a core.
inline void traceIfFailed(const Site& site, const char* context, int line) {
  if (ryxGetErrStatus() < 0) ryxError(RYX_StsBacktrace, site.name, context, site.file, line);
}

// Frees wRealTwd[order] when the order is in range.
void freeQ14Table(int order);

}  // namespace ryx::fftw
