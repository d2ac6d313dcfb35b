// Entries of the floating one-dimensional convolutions (source groups
// "ryxconvs" and "ryxconvd"). Same-type forms put the longer operand first
// (a tie keeps the order); a mixed form whose second operand is longer runs
// as its mirror, which has the operand types the other way round.
#include "correlate/conv_core.h"
#include "ryxcore/correlate.h"

namespace ryx::corr {
namespace {

constexpr ConvNames kS{"ryxsConv", "ryxsConv0", "ryxsConv1", "ryxsConvm", "ryxconvs"};
constexpr ConvNames kC{"ryxcConv", "ryxcConv0", "ryxcConv1", "ryxcConvm", "ryxconvs"};
constexpr ConvNames kCs{"ryxcsConv", "ryxcsConv0", "ryxcsConv1", "ryxcsConvm", "ryxconvs"};
constexpr ConvNames kSc{"ryxscConv", "ryxscConv0", "ryxscConv1", "ryxscConvm", "ryxconvs"};
constexpr ConvNames kD{"ryxdConv", "ryxdConv0", "ryxdConv1", "ryxdConvm", "ryxconvd"};
constexpr ConvNames kZ{"ryxzConv", "ryxzConv0", "ryxzConv1", "ryxzConvm", "ryxconvd"};
constexpr ConvNames kZd{"ryxzdConv", "ryxzdConv0", "ryxzdConv1", "ryxzdConvm", "ryxconvd"};
constexpr ConvNames kDz{"ryxdzConv", "ryxdzConv0", "ryxdzConv1", "ryxdzConvm", "ryxconvd"};

// `n`/`kind` for the routine, `mn`/`mkind` for the one that runs when h is
// the longer (the routine itself for same-type operands).
template <class A, class B, class Y>
RyxStatus conv(const ConvNames& n, ConvKind kind, const ConvNames& mn, ConvKind mkind, const A* x, int xLen,
                const B* h, int hLen, Y* y) {
  if (!convArgsPass(n.entry, n.file, x, xLen, h, hLen, y)) return ryxGetErrStatus();
  if (hLen > xLen) return convRun(mn, convCosts(mkind), h, hLen, x, xLen, y);
  return convRun(n, convCosts(kind), x, xLen, h, hLen, y);
}

}  // namespace
}  // namespace ryx::corr

using namespace ryx::corr;

extern "C" {
RyxStatus ryxsConv(const float* x, int xLen, const float* h, int hLen, float* y) {
  return conv(kS, ConvKind::s, kS, ConvKind::s, x, xLen, h, hLen, y);
}
RyxStatus ryxcConv(const SCplx* x, int xLen, const SCplx* h, int hLen, SCplx* y) {
  return conv(kC, ConvKind::c, kC, ConvKind::c, x, xLen, h, hLen, y);
}
RyxStatus ryxdConv(const double* x, int xLen, const double* h, int hLen, double* y) {
  return conv(kD, ConvKind::d, kD, ConvKind::d, x, xLen, h, hLen, y);
}
RyxStatus ryxzConv(const DCplx* x, int xLen, const DCplx* h, int hLen, DCplx* y) {
  return conv(kZ, ConvKind::z, kZ, ConvKind::z, x, xLen, h, hLen, y);
}
RyxStatus ryxcsConv(const SCplx* x, int xLen, const float* h, int hLen, SCplx* y) {
  return conv(kCs, ConvKind::cs, kSc, ConvKind::sc, x, xLen, h, hLen, y);
}
RyxStatus ryxscConv(const float* x, int xLen, const SCplx* h, int hLen, SCplx* y) {
  return conv(kSc, ConvKind::sc, kCs, ConvKind::cs, x, xLen, h, hLen, y);
}
RyxStatus ryxzdConv(const DCplx* x, int xLen, const double* h, int hLen, DCplx* y) {
  return conv(kZd, ConvKind::zd, kDz, ConvKind::dz, x, xLen, h, hLen, y);
}
RyxStatus ryxdzConv(const double* x, int xLen, const DCplx* h, int hLen, DCplx* y) {
  return conv(kDz, ConvKind::dz, kZd, ConvKind::zd, x, xLen, h, hLen, y);
}
}
