// Exported 16-bit complex FFTs (source group "ryxfftw"): WCplx in place and
// Nip, split arrays in place and Nip.
//
// Front-end order: RYX_Release (passes through to the float engine, then
// the 16-bit tables and all scratch), "order<0", "order>31", the core
// conflict; without RYX_Init the null pointer, direction, ordering and
// scale-mode checks. Order 0 narrows the one value by the output step.
// Then the core's tables and scratch are fetched in up to two rounds and
// the core runs. Every core ends in the scale modes of the 16-bit family.
#include "transform/fft_int16_common.h"
#include "vector/scale_narrow.h"

namespace ryx::fftw {

void freeQ14Table(int order) {
  if (order < 0 || order > 31) return;
  RyxThreadContext* ctx = ryxGetThreadContext();
  ryxFree(ctx->wRealTwd[order]);
  ctx->wRealTwd[order] = nullptr;
}

void narrowFloats(const float* src, short* dst, int n, int scaleMode, int* scaleFactor) {
  if (scaleMode == 0 || scaleMode == 1)
    ryxsbFloatToInt(src, dst, n, 16, RYX_RoundNearest | RYX_ClipRange);
  else
    ownScaleArrayF32(src, dst, n, scaleMode, scaleFactor);
}

}  // namespace ryx::fftw

namespace {

using namespace ryx::fftw;

const ryx::Site kVFft{"ryxvFft", kStem};

// ryxvFft after its release step. False when the call failed (reported).
bool complexFft(WCplx* samps, int order, int flags, int scaleMode, int* scaleFactor, bool keepScratchI = false) {
  const ryx::Site& site = kVFft;
  if (!headChecks(site, order, flags)) return false;
  if (!(flags & RYX_Init)) {
    if (!ryx::passFirst(site, {{samps == nullptr, "samps==0"}})) return false;
    if (!directionChecks(site, flags) || !orderingChecks(site, flags)) return false;
    if (!scaleChecks(site, scaleMode, scaleFactor)) return false;
  }
  auto* s16 = reinterpret_cast<short*>(samps);
  if (order == 0) {
    if (flags & RYX_Init) return true;
    std::int32_t w[2] = {samps[0].re, samps[0].im};
    outputStep(w, s16, 2, 0, scaleMode, scaleFactor);
    return true;
  }

  const Core core = chooseCore(order, flags);
  const std::uint64_t n = lengthOf(order);
  const short* tbl = nullptr;
  const std::uint32_t* pairs = nullptr;
  void* work = nullptr;
  const bool ok = fetchTwice(site, [&] {
    switch (core) {
      case Core::Float:
        work = scratchZ(n, 1);
        return work != nullptr;
      case Core::Int32:
        tbl = ownwGetFftTwd(order);
        pairs = tbl ? ownGetRevPairs(order) : nullptr;
        work = pairs ? scratchC(n, 1) : nullptr;
        return work != nullptr;
      case Core::Fast:
      default:
        pairs = ownGetRevPairs(order);
        return pairs != nullptr;
    }
  }, keepScratchI);
  if (!ok) return false;

  if (core == Core::Float) {
    if (flags & RYX_Init) {
      ryxcFft(nullptr, order, flags);
      traceIfFailed(site, "out ryxcFft RYX_Init", __LINE__);
      return true;
    }
    auto* f = static_cast<float*>(work);
    const int count = static_cast<int>(2 * n);
    ryxsbIntToFloat(s16, f, count, 16, 0);
    ryxcFft(static_cast<SCplx*>(work), order, flags);
    traceIfFailed(site, "out ryxcFft calc. FFT", __LINE__);
    narrowFloats(f, s16, count, scaleMode, scaleFactor);
    return true;
  }
  if (flags & RYX_Init) return true;

  const int sign = (flags & RYX_Forward) ? 1 : -1;
  // Both integer cores want natural input and give bit-reversed output.
  if (flags & RYX_InReversed) ryx::fft::permuteInPlace(samps, order, 4, pairs);
  if (core == Core::Int32) {
    auto* w = static_cast<std::int32_t*>(work);
    const int g = guardShift(order);
    ownI16ToI32Shifted(s16, w, static_cast<std::uint32_t>(2 * n), g);
    ownvFftInt32(w, static_cast<std::uint32_t>(n), sign, tbl);
    const int t = g + (scaledInverse(flags) ? order : 0);
    outputStep(w, s16, static_cast<std::uint32_t>(2 * n), t, scaleMode, scaleFactor);
    if (!(flags & RYX_OutReversed)) ryx::fft::permuteInPlace(samps, order, 4, pairs);
  } else {
    ownvFftFast(samps, static_cast<std::uint32_t>(n), sign);
    if (!(flags & RYX_OutReversed)) ryx::fft::permuteInPlace(samps, order, 4, pairs);
    fastOutputShift(s16, static_cast<std::uint32_t>(2 * n), order, flags, scaleMode, scaleFactor);
  }
  return true;
}

void releaseComplex(int order, int flags) {
  ryxcFft(nullptr, order, flags);
  freeQ14Table(order);
  ownFreeRevPairs(order);
  ownFreeScratchI();
  ownFreeScratchC();
  ownFreeScratchZ();
}

// Split arrays: the integer side packs them into WCplx scratch and runs
// ryxvFft; the float side converts each array and runs ryxcrFft. `Nip`
// reads the input arrays and writes the output arrays.
void splitFft(const ryx::Site& site, const short* reIn, const short* imIn, short* reOut, short* imOut, int order,
              int flags, int scaleMode, int* scaleFactor, std::initializer_list<ryx::Check> nullChecks) {
  if (flags & RYX_Release) {
    ryxvFft(nullptr, order, flags, scaleMode, scaleFactor);
    ryxcrFft(nullptr, nullptr, order, flags);
    ownFreeScratchZ();
    return;
  }
  if (!headChecks(site, order, flags)) return;
  if (!(flags & RYX_Init)) {
    if (!ryx::passFirst(site, nullChecks)) return;
    if (!directionChecks(site, flags) || !orderingChecks(site, flags)) return;
    if (!scaleChecks(site, scaleMode, scaleFactor)) return;
  }
  if (order == 0) {
    if (flags & RYX_Init) return;
    std::int32_t w[2] = {reIn[0], imIn[0]};
    short out[2];
    outputStep(w, out, 2, 0, scaleMode, scaleFactor);
    reOut[0] = out[0];
    imOut[0] = out[1];
    return;
  }
  const std::uint64_t n = lengthOf(order);
  const bool intSide = (flags & RYX_IntCore) || (!(flags & RYX_FloatCore) && order < kFloatFromOrder);
  if (intSide) {
    WCplx* packed = nullptr;
    if (!fetchTwice(site, [&] { return (packed = reinterpret_cast<WCplx*>(scratchI(n, 1))) != nullptr; })) return;
    if (flags & RYX_Init) {
      complexFft(nullptr, order, flags, scaleMode, scaleFactor);
      return;
    }
    ownvSplitPack(reIn, imIn, packed, order);
    if (complexFft(packed, order, flags, scaleMode, scaleFactor, true)) ownvSplitUnpack(packed, reOut, imOut, order);
    return;
  }
  float* re = nullptr;
  float* im = nullptr;
  const bool ok = fetchTwice(site, [&] {
    re = reinterpret_cast<float*>(scratchZ(n / 2, 1));
    im = re ? reinterpret_cast<float*>(scratchZ(n / 2, 2)) : nullptr;
    return im != nullptr;
  });
  if (!ok) return;
  if (flags & RYX_Init) {
    ryxcrFft(nullptr, nullptr, order, flags);
    traceIfFailed(site, "out ryxcrFft RYX_Init", __LINE__);
    return;
  }
  const int count = static_cast<int>(n);
  ryxsbIntToFloat(reIn, re, count, 16, 0);
  ryxsbIntToFloat(imIn, im, count, 16, 0);
  ryxcrFft(re, im, order, flags);
  traceIfFailed(site, "out ryxcrFft calc. FFT", __LINE__);
  if (scaleMode == 0 || scaleMode == 1) {
    narrowFloats(re, reOut, count, scaleMode, scaleFactor);
    narrowFloats(im, imOut, count, scaleMode, scaleFactor);
  } else {
    ownScaleArraySCplx(re, im, reOut, imOut, count, scaleMode, scaleFactor);
  }
}

}  // namespace

extern "C" {

RYXAPI void ryxvFft(WCplx* samps, int order, int flags, int scaleMode, int* scaleFactor) {
  if (flags & RYX_Release) {
    releaseComplex(order, flags);
    return;
  }
  complexFft(samps, order, flags, scaleMode, scaleFactor);
}

RYXAPI void ryxvFftNip(const WCplx* inSamps, WCplx* outSamps, int order, int flags, int scaleMode, int* scaleFactor) {
  const ryx::Site site{__func__, kStem};
  if (!(flags & (RYX_Init | RYX_Release))) {
    if (!ryx::passFirst(site, {{order < 0, "order<0"},
                               {order > 31, "order>31"},
                               {inSamps == nullptr, "inSamps==0"},
                               {outSamps == nullptr, "outSamps==0"}}))
      return;
    if (order < 31) ryxvbCopy(inSamps, outSamps, static_cast<int>(lengthOf(order)));
  }
  ryxvFft(outSamps, order, flags, scaleMode, scaleFactor);
  traceIfFailed(site, "out ryxvFft", __LINE__);
}

RYXAPI void ryxvrFft(short* reSamps, short* imSamps, int order, int flags, int scaleMode, int* scaleFactor) {
  splitFft({__func__, kStem}, reSamps, imSamps, reSamps, imSamps, order, flags, scaleMode, scaleFactor,
           {{reSamps == nullptr, "reSamps==0"}, {imSamps == nullptr, "imSamps==0"}});
}

RYXAPI void ryxvrFftNip(const short* reInSamps, const short* imInSamps, short* reOutSamps, short* imOutSamps,
                        int order, int flags, int scaleMode, int* scaleFactor) {
  splitFft({__func__, kStem}, reInSamps, imInSamps, reOutSamps, imOutSamps, order, flags, scaleMode, scaleFactor,
           {{reInSamps == nullptr, "reInSamps==0"},
            {imInSamps == nullptr, "imInSamps==0"},
            {reOutSamps == nullptr, "reOutSamps==0"},
            {imOutSamps == nullptr, "imOutSamps==0"}});
}

}  // extern "C"
