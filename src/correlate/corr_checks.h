// Argument checks of the correlations, in their documented order; the
// first failure is reported and nothing is written.
#pragma once

#include "frame/checks.h"

namespace ryx::corr {

constexpr const char* kNullSrc = "Null SRC buffer pointer";
constexpr const char* kNullDst = "Null DST buffer pointer";
constexpr const char* kBadLen = "Invalid SRC buffer length";
constexpr const char* kBadLag = "Invalid LAG value";

inline bool crossArgsPass(const Site& site, const void* s1, int n1, const void* s2, int n2, const void* dst,
                          int loLag, int hiLag) {
  return passFirst(site, {{s1 == nullptr || s2 == nullptr, kNullSrc},
                          {dst == nullptr, kNullDst},
                          {n1 < 1 || n2 < 1, kBadLen},
                          {loLag > hiLag, kBadLag}});
}

inline bool autoArgsPass(const Site& site, const void* src, int len, const void* dst, int nLags, int type) {
  return passFirst(site, {{src == nullptr, kNullSrc},
                          {dst == nullptr, kNullDst},
                          {len < 1, kBadLen},
                          {nLags < 1 || nLags > len, kBadLag},
                          {type < 0 || type > 2, "Invalid auto-corr type"}});
}

}  // namespace ryx::corr
