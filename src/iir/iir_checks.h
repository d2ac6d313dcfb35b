// The reporting pattern of the IIR routines: every failing row is reported
// in order (the conditions are all evaluated first, so each must be safe on
// its own), then the routine goes on only if the thread's stored status is
// not negative. A failure left standing by an earlier call of the thread
// stops the routine too, without a report of its own.
#pragma once

#include "frame/checks.h"

namespace ryx::iir {

inline bool passReported(const Site& site, std::initializer_list<Check> checks) {
  for (const Check& c : checks) {
    if (c.fails) ryxError(RYX_StsBadArg, site.name, c.context, site.file, c.line);
  }
  return ryxGetErrStatus() >= 0;
}

constexpr const char* kNoMemText = "insufficiency of memory for IIR filter state";

}  // namespace ryx::iir
