// Shared pieces of the any-length DFT front ends (source group "ryxdft").
#pragma once

#include <cstdint>
#include <source_location>

#include "frame/checks.h"
#include "ryxcore/transform_any_length.h"

namespace ryx::dft {

constexpr const char* kStem = "ryxdft";

// Trace line after a nested exported call that left a failure stored; the
// work goes on.
inline void traceIfFailed(const Site& site, const char* context,
                          std::source_location at = std::source_location::current()) {
  if (ryxGetErrStatus() < 0) ryxError(RYX_StsBacktrace, site.name, context, site.file, static_cast<int>(at.line()));
}

// True for 1, 2, 4, ... (n and n-1 share no bit).
inline bool isPow2(int n) { return n > 0 && (n & (n - 1)) == 0; }

// The smallest m with 2^m >= n.
inline int log2Of(std::uint64_t n) {
  int m = 0;
  while ((std::uint64_t{1} << m) < n) ++m;
  return m;
}

}  // namespace ryx::dft
