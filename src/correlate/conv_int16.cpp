// The 16-bit one-dimensional convolution (source group "ryxconvw"). Long
// operands take a float detour through ryxsConv and the shared float
// narrowing; the rest run an exact integer kernel: 32-bit sums (wrapping
// as 32-bit registers do), an arithmetic shift by the caller's factor under
// RYX_FIXED_SCALE, saturation under RYX_SATURATE, and no automatic scaling.
#include <algorithm>
#include <cstdint>

#include "correlate/conv_core.h"
#include "correlate/int16_narrow.h"
#include "ryxcore/correlate.h"
#include "vector/scale_narrow.h"

namespace ryx::corr {

bool wConvFloatPath(int xLen, int hLen) {
  const int s = std::min(xLen, hLen), l = std::max(xLen, hLen);
  if (s >= 256) return true;
  if (s >= 128) return l >= 512;
  if (s >= 64) return l >= 8192;
  return false;
}

namespace {

constexpr const char* kName = "ryxwConv";
constexpr const char* kStem = "ryxconvw";

void integerKernel(const short* x, int L, const short* h, int S, short* y, int scaleMode, const int* scaleFactor) {
  const int f = (scaleMode & RYX_FIXED_SCALE) && scaleFactor != nullptr ? *scaleFactor : 0;
  const bool saturate = (scaleMode & RYX_SATURATE) != 0;
  const long long N = static_cast<long long>(L) + S - 1;
  for (long long k = 0; k < N; ++k) {
    const long long lo = std::max(0LL, k - (S - 1)), hi = std::min<long long>(k, L - 1);
    std::uint32_t acc = 0;
    for (long long i = lo; i <= hi; ++i) acc += static_cast<std::uint32_t>(x[i] * h[k - i]);
    y[k] = narrowShifted(static_cast<std::int32_t>(acc), f, saturate);
  }
}

void floatPath(const short* x, int xLen, const short* h, int hLen, short* y, int scaleMode, int* scaleFactor) {
  const Site site{kName, kStem};
  const long long N = static_cast<long long>(xLen) + hLen - 1;
  Scratch scratch;
  float* xf = scratch.take<float>(xLen);
  if (xf == nullptr) return reportNoMem(site, "NULL pointer to float copy x");
  float* hf = scratch.take<float>(hLen);
  if (hf == nullptr) return reportNoMem(site, "NULL pointer to float copy h");
  float* yf = scratch.take<float>(N);
  if (yf == nullptr) return reportNoMem(site, "NULL pointer to float copy y");
  ryxsbIntToFloat(x, xf, xLen, 16, 0);
  ryxsbIntToFloat(h, hf, hLen, 16, 0);
  ryxsConv(xf, xLen, hf, hLen, yf);
  if (failedInside(site)) return;
  ownScaleArrayF32(yf, y, static_cast<int>(N), scaleMode, scaleFactor);
}

}  // namespace
}  // namespace ryx::corr

using namespace ryx::corr;

extern "C" RyxStatus ryxwConv(const short* x, int xLen, const short* h, int hLen, short* y, int scaleMode,
                              int* scaleFactor) {
  if (!convArgsPass(kName, kStem, x, xLen, h, hLen, y)) return ryxGetErrStatus();
  ryxSetErrStatus(RYX_StsOk);
  if (wConvFloatPath(xLen, hLen)) floatPath(x, xLen, h, hLen, y, scaleMode, scaleFactor);
  else integerKernel(x, xLen, h, hLen, y, scaleMode, scaleFactor);
  return ryxGetErrStatus();
}
