// Method choice of the one-dimensional convolution: the direct rule by the
// shorter length, then the cost of overlap-save blocks against one
// transform of the whole result.
#include <cmath>

#include "correlate/conv_core.h"
#include "correlate/conv_tables.h"

namespace ryx::corr {

const ConvCosts& convCosts(ConvKind kind) {
  static constexpr ConvCosts kCosts[] = {
      // s, c, cs, sc
      {111, 8, kT_s, kA_sReal, kB_sReal, kB_sReal, kB_sReal, kB_sReal, kA_sReal, true},
      {49, 4, kT_c, kA_sCplx, kB_sCplx, kB_sCplx, kB_sCplx, kB_sCplx, kA_sCplx, false},
      {99, 4, kT_cs, kA_sCplx, kB_sCplx, kB_sReal, kB_sReal, kB_sCplx, kA_sCplx, false},
      {99, 6, kT_sc, kA_sCplx, kB_sReal, kB_sCplx, kB_sReal, kB_sCplx, kA_sCplx, false},
      // d, z, zd, dz
      {109, 4, kT_d, kA_dReal, kB_dReal, kB_dReal, kB_dReal, kB_dReal, kA_dReal, true},
      {60, 2, kT_z, kA_dCplx, kB_dCplx, kB_dCplx, kB_dCplx, kB_dCplx, kA_dCplx, false},
      {107, 2, kT_zd, kA_dCplx, kB_dCplx, kB_dReal, kB_dReal, kB_dCplx, kA_dCplx, false},
      {111, 2, kT_dz, kA_dCplx, kB_dReal, kB_dCplx, kB_dReal, kB_dCplx, kA_dCplx, false},
  };
  return kCosts[static_cast<int>(kind)];
}

namespace {
double at(const double* table, int order) { return table[order < 32 ? order : 32]; }
double ceilDiv(long long a, long long b) { return static_cast<double>((a + b - 1) / b); }
}  // namespace

ConvChoice chooseConv(const ConvCosts& k, int L, int S) {
  if (S < k.upper && (S <= k.small || L < k.limit[S - k.small - 1])) return {ConvMethod::kDirect, 1};
  const long long N = static_cast<long long>(L) + S - 1;
  int m = 2 + floorLog2(S);
  if (m > 33) m = 33;
  auto blockCost = [&](int p, double blocks) { return (at(k.blockB, p) + at(k.blockA, p)) * blocks + at(k.shortB, p); };
  auto blocks = [&](int p) { return ceilDiv(N, (1LL << p) - S + 1); };
  double cost;
  int mode;
  if (static_cast<long long>(L) > 32LL * S) {
    const int p = m + 2;
    cost = blockCost(p, k.realPair ? ceilDiv(N, ((1LL << p) - S) * 2 + 2) : blocks(p));
    mode = 3;
  } else {
    cost = blockCost(m, blocks(m));
    mode = 1;
  }
  const double wider = blockCost(m + 1, blocks(m + 1));
  if (wider < cost) {
    cost = wider;
    mode = 2;
  }
  int v = 1 + floorLog2(N);
  if (v > 32) v = 32;
  const double single = at(k.singleB, v) + at(k.singleB2, v) + at(k.singleA, v);
  if (single > cost) return {ConvMethod::kOverlap, mode};
  return {ConvMethod::kSingle, 1};
}

long long overlapBlock(int S, long long N, int mode) {
  long long P = 1;
  while (P <= S) P <<= 1;
  if (P < N) P <<= 1;
  if ((mode >= 2 || mode <= -2) && P < N) P <<= 1;
  return P;
}

}  // namespace ryx::corr
