// The scale checks shared by the 16-bit sums and the 32-bit norms, which
// read scaleMode by single bits and run them before any other check.
#pragma once

#include "frame/checks.h"

namespace ryx::stats {

inline bool passScale(const char* name, const char* stem, int scaleMode, const int* scaleFactor) {
  const bool fixed = scaleMode & RYX_FIXED_SCALE, automatic = scaleMode & RYX_AUTO_SCALE;
  return passFirst({name, stem},
                   {{fixed && automatic, "scaleMode & RYX_FIXED_SCALE && scaleMode & RYX_AUTO_SCALE"},
                    {fixed && scaleFactor == nullptr, "scaleMode & RYX_FIXED_SCALE && (scaleFactor==NULL)"},
                    {automatic && scaleFactor == nullptr, "scaleMode & RYX_AUTO_SCALE && scaleFactor==NULL"}});
}

}  // namespace ryx::stats
