// Argument checks as data.
//
// An entry lists its checks in their documented order as rows of
// {failing condition, context text}; one helper runs them under the
// routine's reporting pattern. The report names the exported routine, the
// context text and the source group (`file`), with the row's source line.
#pragma once

#include <initializer_list>
#include <source_location>

#include "ryxcore.h"

namespace ryx {

// Who reports: the exported routine's name and its source group.
struct Site {
  const char* name;
  const char* file;
};

struct Check {
  bool fails;
  const char* context;
  int line;
  Check(bool failing, const char* text, std::source_location at = std::source_location::current())
      : fails(failing), context(text), line(static_cast<int>(at.line())) {}
};

// Stop at the first failure: report it as a bad argument and tell the
// caller to leave. True when every check passed.
inline bool passFirst(const Site& site, std::initializer_list<Check> checks) {
  for (const Check& c : checks) {
    if (c.fails) {
      ryxError(RYX_StsBadArg, site.name, c.context, site.file, c.line);
      return false;
    }
  }
  return true;
}

// Check everything, then decide: clear the status, report every failing
// check in order, and pass only if no failure is stored at the end.
inline bool passAll(const Site& site, std::initializer_list<Check> checks) {
  ryxSetErrStatus(RYX_StsOk);
  for (const Check& c : checks) {
    if (c.fails) ryxError(RYX_StsBadArg, site.name, c.context, site.file, c.line);
  }
  return ryxGetErrStatus() >= 0;
}

// Check, then consult the stored status: a failure left standing by an
// earlier call of this thread stops the routine too.
inline bool passSticky(const Site& site, std::initializer_list<Check> checks) {
  for (const Check& c : checks) {
    if (c.fails) ryxError(RYX_StsBadArg, site.name, c.context, site.file, c.line);
    if (ryxGetErrStatus() < 0) return false;
  }
  return ryxGetErrStatus() >= 0;
}

// Trace line after a nested exported call: when the stored status shows a
// failure, add this routine's trace line and tell the caller to leave.
inline bool failedInside(const Site& site, std::source_location at = std::source_location::current()) {
  if (ryxGetErrStatus() >= 0) return false;
  ryxError(RYX_StsBacktrace, site.name, nullptr, site.file, static_cast<int>(at.line()));
  return true;
}

// Out-of-memory report with a message for context.
inline void reportNoMem(const Site& site, const char* message,
                        std::source_location at = std::source_location::current()) {
  ryxError(RYX_StsNoMem, site.name, message, site.file, static_cast<int>(at.line()));
}

}  // namespace ryx
