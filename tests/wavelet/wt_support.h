// Shared pieces of the wavelet tests: the routines of each precision, the
// built-in sets as the family table lists them, and a long-double model of
// the filter bank written from the stage formulas with explicit periodic
// indexing.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "ryxcore.h"
#include "ryxcore/wavelet.h"
#include "test_support.h"

namespace wttest {

using ld = long double;

template <class T>
struct P;
template <>
struct P<double> {
  using Tap = double;
  static constexpr int core = 2;
  static constexpr auto initLen = ryxdWtInitLen;
  static constexpr auto dec = ryxdWtDecompose;
  static constexpr auto rec = ryxdWtReconstruct;
  static constexpr const char* prefix = "ryxd";
  static ld eps() { return std::ldexp(1.0L, -53); }
};
template <>
struct P<float> {
  using Tap = float;
  static constexpr int core = 1;
  static constexpr auto initLen = ryxsWtInitLen;
  static constexpr auto dec = ryxsWtDecompose;
  static constexpr auto rec = ryxsWtReconstruct;
  static constexpr const char* prefix = "ryxs";
  static ld eps() { return std::ldexp(1.0L, -24); }
};
template <>
struct P<short> {
  using Tap = float;
  static constexpr int core = 4;
  static constexpr auto initLen = ryxwWtInitLen;
  static constexpr auto dec = ryxwWtDecompose;
  static constexpr auto rec = ryxwWtReconstruct;
  static constexpr const char* prefix = "ryxw";
  static ld eps() { return std::ldexp(1.0L, -24); }
};

// One built-in set: type, parameters, class, lengths and offsets (h0, h1,
// g0, g1), as the family table gives them.
struct SetSpec {
  int type, p1, p2, cls;
  int len[4], ofs[4];
};

inline std::vector<SetSpec> allSets() {
  std::vector<SetSpec> v;
  v.push_back({1, 0, 0, 1, {2, 2, 2, 2}, {1, 1, 0, 0}});
  const int db[11][4] = {{}, {1, 1, 0, 0}, {1, 1, 2, 2}, {1, 1, 4, 4}, {1, 1, 6, 6}, {2, 2, 7, 7},
                         {2, 2, 9, 9}, {2, 2, 11, 11}, {2, 2, 13, 13}, {3, 3, 14, 14}, {3, 3, 16, 16}};
  for (int p = 1; p <= 10; ++p)
    v.push_back({2, p, 0, 1, {2 * p, 2 * p, 2 * p, 2 * p}, {db[p][0], db[p][1], db[p][2], db[p][3]}});
  const int sym[8][2] = {{}, {3, 4}, {4, 5}, {5, 6}, {8, 5}, {8, 7}, {9, 8}, {9, 10}};
  for (int p = 1; p <= 7; ++p) {
    const int n = 2 * p + 6;
    v.push_back({3, p, 0, 1, {n, n, n, n}, {sym[p][0], sym[p][0], sym[p][1], sym[p][1]}});
  }
  const int coif[6][2] = {{}, {4, 1}, {4, 7}, {6, 11}, {8, 15}, {10, 19}};
  for (int p = 1; p <= 5; ++p) {
    const int n = 6 * p;
    v.push_back({4, p, 0, 1, {n, n, n, n}, {coif[p][0], coif[p][0], coif[p][1], coif[p][1]}});
  }
  v.push_back({5, 0, 0, 1, {24, 24, 24, 24}, {20, 20, 3, 3}});
  const SetSpec spline[] = {
      {6, 1, 1, 2, {2, 2, 2, 2}, {0, 0, 1, 1}},     {6, 1, 3, 2, {2, 6, 6, 2}, {0, 2, 3, 1}},
      {6, 1, 5, 2, {2, 10, 10, 2}, {0, 4, 5, 1}},   {6, 2, 2, 2, {3, 5, 5, 3}, {1, 1, 2, 2}},
      {6, 2, 4, 2, {3, 9, 9, 3}, {1, 3, 4, 2}},     {6, 2, 6, 2, {3, 13, 13, 3}, {1, 5, 6, 2}},
      {6, 2, 8, 2, {3, 17, 17, 3}, {1, 7, 8, 2}},   {6, 3, 1, 2, {4, 4, 4, 4}, {1, 1, 2, 2}},
      {6, 3, 3, 2, {4, 8, 8, 4}, {1, 3, 4, 2}},     {6, 3, 5, 2, {4, 12, 12, 4}, {1, 5, 6, 2}},
      {6, 3, 7, 2, {4, 16, 16, 4}, {1, 7, 8, 2}},   {6, 3, 9, 2, {4, 20, 20, 4}, {1, 9, 10, 2}}};
  for (const SetSpec& s : spline) {
    v.push_back(s);
    v.push_back({7, s.p1, s.p2, 2, {s.len[1], s.len[0], s.len[3], s.len[2]}, {s.ofs[1], s.ofs[0], s.ofs[3], s.ofs[2]}});
  }
  v.push_back({8, 0, 0, 2, {3, 5, 5, 3}, {1, 1, 2, 2}});
  v.push_back({9, 0, 0, 2, {4, 8, 8, 4}, {1, 3, 4, 2}});
  return v;
}

// The taps of a record, widened.
struct Taps {
  std::vector<ld> f[4];
  int ofs[4];
};
template <class T>
Taps tapsOf(const RyxWtState& st) {
  Taps t;
  for (int i = 0; i < 4; ++i) {
    const auto* p = static_cast<const typename P<T>::Tap*>(st.tapFilt[i]);
    t.f[i].assign(p, p + st.lenFilt[i]);
    t.ofs[i] = st.ofsFilt[i];
  }
  return t;
}

inline int wrap(int i, int n) { return ((i % n) + n) % n; }

// Decomposition over `level` stages; each stage's outputs pass through
// `round` (the precision's rounding, or none).
template <class R>
std::vector<ld> modelDecompose(std::vector<ld> x, const Taps& t, int level, R round) {
  std::vector<std::vector<ld>> details;
  for (int l = 1; l <= level; ++l) {
    const int m = static_cast<int>(x.size()), period = m + m % 2, n = period / 2;
    auto at = [&](int k) { return x[std::min(wrap(k, period), m - 1)]; };
    std::vector<ld> lo(n), hi(n);
    for (int i = 0; i < n; ++i) {
      ld a = 0, d = 0;
      for (size_t j = 0; j < t.f[0].size(); ++j) a += t.f[0][j] * at(2 * i + t.ofs[0] - int(j));
      for (size_t j = 0; j < t.f[1].size(); ++j) d += t.f[1][j] * at(2 * i + t.ofs[1] - int(j));
      lo[i] = round(a);
      hi[i] = round(d);
    }
    details.push_back(hi);
    x = lo;
  }
  for (int l = level; l >= 1; --l) x.insert(x.end(), details[l - 1].begin(), details[l - 1].end());
  return x;
}

template <class R>
std::vector<ld> modelReconstruct(const std::vector<ld>& c, const Taps& t, const std::vector<int>& levelLen, R round) {
  const int level = static_cast<int>(levelLen.size()) - 1;
  std::vector<ld> lo(c.begin(), c.begin() + levelLen[level]);
  size_t pos = levelLen[level];
  for (int l = level; l >= 1; --l) {
    const int n = levelLen[l], m = levelLen[l - 1];
    const std::vector<ld> hi(c.begin() + pos, c.begin() + pos + n);
    pos += n;
    std::vector<ld> y(m);
    for (int k = 0; k < m; ++k) {
      ld s = 0;
      for (int b = 0; b < 2; ++b) {
        const std::vector<ld>& g = t.f[2 + b];
        const std::vector<ld>& v = b == 0 ? lo : hi;
        for (int tap = 0; tap < int(g.size()); ++tap) {
          const int twice = k + t.ofs[2 + b] - tap;  // = 2i
          if (twice % 2 == 0) s += v[wrap(twice / 2, n)] * g[tap];
        }
      }
      y[k] = round(s);
    }
    lo = y;
  }
  return lo;
}

inline std::vector<int> levelLens(int len, int level) {
  std::vector<int> v{len};
  for (int l = 1; l <= level; ++l) v.push_back((v.back() + 1) / 2);
  return v;
}

}  // namespace wttest
