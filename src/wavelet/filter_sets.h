// The built-in filter sets as constant data (filter_sets.cpp) and the
// lookup by transform type and parameters.
#pragma once

namespace ryx::wavelet {

// Filters in the order h0, h1 (decomposition), g0, g1 (reconstruction).
// Parameters a family does not use are 0 here.
struct FilterSet {
  int wtType, par1, par2, filterClass;
  int len[4];
  int ofs[4];
  const double* taps[4];
};

extern const FilterSet kFilterSets[];
extern const int kFilterSetCount;

}  // namespace ryx::wavelet
