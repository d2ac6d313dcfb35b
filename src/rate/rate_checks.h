// Argument checks of the rate family that hand back more than a yes/no:
// the rows stop at the first failure, report it as a bad argument, and the
// routine returns either the report's result or a code of its own.
#pragma once

#include <initializer_list>
#include <source_location>

#include "frame/checks.h"

namespace ryx::rate {

// A check row with the value the routine returns when it fails.
struct CodedCheck {
  bool fails;
  const char* context;
  int code;
  int line;
  CodedCheck(bool failing, const char* text, int returned,
             std::source_location at = std::source_location::current())
      : fails(failing), context(text), code(returned), line(static_cast<int>(at.line())) {}
};

// 0 when every check passed; else the failing row's code after its report.
inline int firstCode(const Site& site, std::initializer_list<CodedCheck> checks) {
  for (const CodedCheck& c : checks) {
    if (c.fails) {
      ryxError(RYX_StsBadArg, site.name, c.context, site.file, c.line);
      return c.code;
    }
  }
  return 0;
}

// Outcome of a check list whose routine returns what ryxError returned.
struct Verdict {
  bool failed;
  RyxStatus result;
};

inline Verdict firstReport(const Site& site, std::initializer_list<Check> checks) {
  for (const Check& c : checks) {
    if (c.fails) return {true, ryxError(RYX_StsBadArg, site.name, c.context, site.file, c.line)};
  }
  return {false, RYX_StsOk};
}

}  // namespace ryx::rate
