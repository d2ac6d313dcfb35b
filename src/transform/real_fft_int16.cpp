// Exported 16-bit real FFTs and packed spectra (source group "ryxfftw"):
// real samples to RCCs, RCPack or RCPerm and back, two-signal forms, and
// products of packed 16-bit spectra.
//
// Front-end order: RYX_Release, "order<0", "order>31", the core conflict;
// without RYX_Init the null pointers, direction, layout (l forms) and
// scale-mode checks. The float core converts the samples, runs the
// matching float routine on them in place and narrows back. The integer
// cores run orders 0 and 1 directly with 32-bit sums; from order 2 they
// transform the N/2 complex values z[n] = x[2n] + i x[2n+1] and recombine
// (real forms), or recombine first and then transform (CCS forms).
#include <cstring>

#include "transform/fft_int16_common.h"
#include "vector/scale_narrow.h"

namespace {

using namespace ryx::fftw;

enum class Layout { Ccs, Pack, Perm };

// The float routine a form runs in its float core, and its trace texts.
struct FloatForm {
  void (*fn)(float*, int, int);
  const char* initText;
  const char* calcText;
};

struct Args {
  ryx::Site site;
  const short* in;
  short* out;
  int order;
  int flags;
  int scaleMode;
  int* scaleFactor;
};

// Puts the Nyquist value into its layout's place (and the zeros of RCCs);
// the spectrum stands as RCPerm in `d` before.
template <class T>
void finishLayout(T* d, std::uint64_t n, T nyquist, Layout layout) {
  switch (layout) {
    case Layout::Ccs:
      d[1] = 0;
      d[n] = nyquist;
      d[n + 1] = 0;
      break;
    case Layout::Perm:
      d[1] = nyquist;
      break;
    case Layout::Pack:
      std::memmove(d + 1, d + 2, (n - 2) * sizeof(T));
      d[n - 1] = nyquist;
      break;
  }
}

// Values of an RCCs array: N+2, or 2 at N = 1 (Re X0, 0).
inline std::uint64_t ccsCount(std::uint64_t n) { return n == 1 ? 2 : n + 2; }

// Orders 0 and 1 of the integer cores: 32-bit sums and the output step.
void directPath(const Args& a, bool real, Layout layout, std::uint64_t outCount) {
  std::int32_t w[4] = {};
  const std::int32_t x0 = a.in[0];
  if (a.order == 0) {
    w[0] = x0;
  } else if (real) {
    const std::int32_t x1 = a.in[1];
    w[0] = x0 + x1;
    w[layout == Layout::Ccs ? 2 : 1] = x0 - x1;
  } else {
    const std::int32_t x1 = a.in[layout == Layout::Ccs ? 2 : 1];
    w[0] = x0 + x1;
    w[1] = x0 - x1;
  }
  outputStep(w, a.out, static_cast<std::uint32_t>(outCount), scaledInverse(a.flags) ? a.order : 0, a.scaleMode,
             a.scaleFactor);
}

// Real samples to a packed spectrum, or (`real` false) back.
void packedForm(const Args& a, bool real, bool packed, bool nip, const FloatForm& ff,
                std::initializer_list<ryx::Check> nullChecks) {
  const int order = a.order, flags = a.flags;
  if (flags & RYX_Release) {
    ff.fn(nullptr, order, flags);
    freeQ14Table(order);
    if (order > 0) freeQ14Table(order - 1);
    if (order > 0) ownFreeRevPairs(order - 1);
    ownFreeScratchC();
    ownFreeScratchZ();
    return;
  }
  if (!headChecks(a.site, order, flags)) return;
  if (!(flags & RYX_Init)) {
    if (!ryx::passFirst(a.site, nullChecks) || !directionChecks(a.site, flags)) return;
    if (packed && real &&
        !ryx::passFirst(a.site, {{(flags & 256) && (flags & 512), "(flags & 256) && (flags & 512)"},
                                 {(flags & 256) == 0 && (flags & 512) == 0, "(flags & 256)==0 && (flags & 512)==0"}}))
      return;
    if (packed && !real &&
        !ryx::passFirst(a.site,
                        {{(flags & 1024) && (flags & 4096), "(flags & 1024) && (flags & 4096)"},
                         {(flags & 1024) == 0 && (flags & 4096) == 0, "(flags & 1024)==0 && (flags & 4096)==0"}}))
      return;
    if (!scaleChecks(a.site, a.scaleMode, a.scaleFactor)) return;
  }
  const Layout layout = !packed                                         ? Layout::Ccs
                        : (flags & (real ? RYX_RCPackOut : RYX_RCPackIn)) ? Layout::Pack
                                                                        : Layout::Perm;
  const std::uint64_t n = lengthOf(order);
  const std::uint64_t inCount = real || packed ? n : ccsCount(n);
  const std::uint64_t outCount = !real || packed ? n : ccsCount(n);
  const Core core = chooseCore(order, flags);
  if (core != Core::Float && order < 2) {
    if (!(flags & RYX_Init)) directPath(a, real, layout, outCount);
    return;
  }

  const short* tblHalf = nullptr;
  const short* tblFull = nullptr;
  const std::uint32_t* pairs = nullptr;
  void* work = nullptr;
  const bool ok = fetchTwice(a.site, [&] {
    switch (core) {
      case Core::Float:
        work = scratchZ((n + 2) / 2, 1);
        return work != nullptr;
      case Core::Int32:
        tblHalf = ownwGetFftTwd(order - 1);
        tblFull = tblHalf ? ownwGetFftTwd(order) : nullptr;
        pairs = tblFull ? ownGetRevPairs(order - 1) : nullptr;
        work = pairs ? scratchC((n + 2) / 2, 1) : nullptr;
        return work != nullptr;
      case Core::Fast:
      default:
        tblFull = ownwGetFftTwd(order);
        pairs = tblFull ? ownGetRevPairs(order - 1) : nullptr;
        return pairs != nullptr;
    }
  });
  if (!ok) return;

  if (core == Core::Float) {
    if (flags & RYX_Init) {
      ff.fn(nullptr, order, flags);
      traceIfFailed(a.site, ff.initText, __LINE__);
      return;
    }
    auto* f = static_cast<float*>(work);
    ryxsbIntToFloat(a.in, f, static_cast<int>(inCount), 16, 0);
    ff.fn(f, order, flags);
    traceIfFailed(a.site, ff.calcText, __LINE__);
    narrowFloats(f, a.out, static_cast<int>(outCount), a.scaleMode, a.scaleFactor);
    return;
  }
  if (flags & RYX_Init) return;

  const std::uint32_t m = static_cast<std::uint32_t>(n / 2);
  const int sign = (flags & RYX_Forward) ? 1 : -1;
  const int halfOrder = order - 1;
  if (core == Core::Int32) {
    auto* w = static_cast<std::int32_t*>(work);
    const int g = guardShift(order);
    const int t = g + (scaledInverse(flags) ? order : 0);
    if (real) {
      ownI16ToI32Shifted(a.in, w, static_cast<std::uint32_t>(n), g);
      ownvFftInt32(w, m, 1, tblHalf);
      ryx::fft::permuteInPlace(w, halfOrder, 8, pairs);
      const std::int32_t t0 = w[0], t1 = w[1];
      w[0] = wadd(t0, t1);
      ownvRealRecombineInt32(w, m, sign, tblFull);
      finishLayout(w, n, wsub(t0, t1), layout);
      outputStep(w, a.out, static_cast<std::uint32_t>(outCount), t, a.scaleMode, a.scaleFactor);
      return;
    }
    // CCS: the spectrum is widened into RCPerm places, recombined, and
    // transformed forward (the recombination mirrors the inverse's columns).
    std::int32_t last = 0;
    if (layout == Layout::Pack) {
      ownI16ToI32Shifted(a.in, w, 1, g);
      ownI16ToI32Shifted(a.in + 1, w + 2, static_cast<std::uint32_t>(n - 2), g);
      ownI16ToI32Shifted(a.in + n - 1, &last, 1, g);
    } else {
      ownI16ToI32Shifted(a.in, w, static_cast<std::uint32_t>(inCount), g);
      last = layout == Layout::Ccs ? w[n] : w[1];
    }
    const std::int32_t first = w[0];
    ownvCcsRecombineInt32(w, w, m, sign, tblFull);
    w[0] = wadd(first, last);
    w[1] = wsub(first, last);
    ownvFftInt32(w, m, 1, tblHalf);
    outputStep(w, a.out, static_cast<std::uint32_t>(n), t, a.scaleMode, a.scaleFactor);
    ryx::fft::permuteInPlace(a.out, halfOrder, 4, pairs);
    return;
  }

  // Fast core, on the caller's output array.
  short* d = a.out;
  if (real) {
    if (nip) std::memcpy(d, a.in, n * sizeof(short));
    ownvFftFast(reinterpret_cast<WCplx*>(d), m, sign);
    ryx::fft::permuteInPlace(d, halfOrder, 4, pairs);
    const std::int32_t t0 = d[0], t1 = d[1];
    d[0] = sat16(t0 + t1);
    ownvRealRecombineFast(d, m, sign, tblFull);
    finishLayout(d, n, sat16(t0 - t1), layout);
    fastOutputShift(d, static_cast<std::uint32_t>(outCount), order, flags, a.scaleMode, a.scaleFactor);
    return;
  }
  const std::int32_t first = a.in[0];
  std::int32_t last = layout == Layout::Pack ? a.in[n - 1] : layout == Layout::Ccs ? a.in[n] : a.in[1];
  const short* src = a.in;
  if (layout == Layout::Pack) {
    std::memmove(d + 2, a.in + 1, (n - 2) * sizeof(short));
    src = d;
  }
  ownvCcsRecombineFast(src, d, m, sign, tblFull);
  d[0] = sat16(first + last);
  d[1] = sat16(first - last);
  ownvFftFast(reinterpret_cast<WCplx*>(d), m, sign);
  fastOutputShift(d, static_cast<std::uint32_t>(n), order, flags, a.scaleMode, a.scaleFactor);
  ryx::fft::permuteInPlace(d, halfOrder, 4, pairs);
}

const FloatForm kRealFftl{ryxsRealFftl, "out ryxsRealFftl RYX_Init", "out ryxsRealFftl calc. FFT"};
const FloatForm kRealFft{ryxsRealFft, "out ryxsRealFft RYX_Init", "out ryxsRealFft calc. FFT"};
const FloatForm kRealFftNip{ryxsRealFft, "out ryxsRealFftNip RYX_Init", "out ryxsRealFftNip calc. FFT"};
const FloatForm kCcsFftl{ryxsCcsFftl, "out ryxsCcsFftl RYX_Init", "out ryxsCcsFftl calc. FFT"};
const FloatForm kCcsFft{ryxsCcsFft, "out ryxsCcsFft RYX_Init", "out ryxsCcsFft calc. FFT"};
const FloatForm kCcsFftNip{ryxsCcsFft, "out ryxsCcsFftNip RYX_Init", "out ryxsCcsFftNip calc. FFT"};

// ---- Two signals -------------------------------------------------------------

struct TwoArgs {
  ryx::Site site;
  const short* xIn;
  short* xOut;
  const short* yIn;
  short* yOut;
  int order;
  int flags;
  int scaleMode;
  int* scaleFactor;
};

using OneSignal = void (*)(const short*, short*, int, int, int, int*);

// Two real signals (or two RCCs spectra, `real` false): the float side
// converts both, runs the float two-signal routine and narrows with one
// common factor; the integer side runs the one-signal routine on x, then
// on y. The result is the stored status, with a trace line when negative.
RyxStatus twoSignals(const TwoArgs& a, bool real, OneSignal one, RyxStatus (*float2)(float*, float*, int, int),
                     const char* oneName, const char* initText, const char* calcText,
                     std::initializer_list<ryx::Check> nullChecks) {
  const int order = a.order, flags = a.flags;
  if (flags & RYX_Release) {
    one(nullptr, nullptr, order, flags, a.scaleMode, a.scaleFactor);
    float2(nullptr, nullptr, order, flags);
    ownFreeScratchC();
    ownFreeScratchZ();
    return ryxGetErrStatus();
  }
  if (!headChecks(a.site, order, flags)) return ryxGetErrStatus();
  if (!(flags & RYX_Init)) {
    if (!ryx::passFirst(a.site, nullChecks) || !directionChecks(a.site, flags) ||
        !scaleChecks(a.site, a.scaleMode, a.scaleFactor))
      return ryxGetErrStatus();
  }
  const std::uint64_t n = lengthOf(order);
  const std::uint64_t inCount = real ? n : ccsCount(n), outCount = real ? ccsCount(n) : n;
  const bool floatSide = (flags & RYX_FloatCore) || (!(flags & RYX_IntCore) && order >= kFloatFromOrder);
  if (order == 0) {
    if (!(flags & RYX_Init)) {
      directPath({a.site, a.xIn, a.xOut, 0, flags, a.scaleMode, a.scaleFactor}, real, Layout::Ccs, outCount);
      directPath({a.site, a.yIn, a.yOut, 0, flags, a.scaleMode, a.scaleFactor}, real, Layout::Ccs, outCount);
    }
    return ryxGetErrStatus();
  }
  if (floatSide) {
    float* x = nullptr;
    float* y = nullptr;
    const bool ok = fetchTwice(a.site, [&] {
      x = reinterpret_cast<float*>(scratchZ((n + 2) / 2, 1));
      y = x ? reinterpret_cast<float*>(scratchZ((n + 2) / 2, 2)) : nullptr;
      return y != nullptr;
    });
    if (!ok) return ryxGetErrStatus();
    if (flags & RYX_Init) {
      float2(nullptr, nullptr, order, flags);
      traceIfFailed(a.site, initText, __LINE__);
      return ryxGetErrStatus();
    }
    ryxsbIntToFloat(a.xIn, x, static_cast<int>(inCount), 16, 0);
    ryxsbIntToFloat(a.yIn, y, static_cast<int>(inCount), 16, 0);
    float2(x, y, order, flags);
    traceIfFailed(a.site, calcText, __LINE__);
    const int count = static_cast<int>(outCount);
    if (a.scaleMode == 0 || a.scaleMode == 1) {
      narrowFloats(x, a.xOut, count, a.scaleMode, a.scaleFactor);
      narrowFloats(y, a.yOut, count, a.scaleMode, a.scaleFactor);
    } else {
      ownScaleArraySCplx(x, y, a.xOut, a.yOut, count, a.scaleMode, a.scaleFactor);
    }
    return ryxGetErrStatus();
  }
  one(a.xIn, a.xOut, order, flags, a.scaleMode, a.scaleFactor);
  if (!(flags & RYX_Init)) one(a.yIn, a.yOut, order, flags, a.scaleMode, a.scaleFactor);
  const RyxStatus st = ryxGetErrStatus();
  if (st >= 0) return st;
  return ryxError(RYX_StsBacktrace, a.site.name, oneName, a.site.file, __LINE__);
}

// In-place one-signal forms seen through the Nip signature.
void realInPlace(const short*, short* out, int order, int flags, int mode, int* factor) {
  ryxwRealFft(out, order, flags, mode, factor);
}
void ccsInPlace(const short*, short* out, int order, int flags, int mode, int* factor) {
  ryxwCcsFft(out, order, flags, mode, factor);
}

// ---- Products -------------------------------------------------------------------

inline bool fits16(std::int32_t v) { return v >= -32768 && v <= 32767; }

// Product of two packed 16-bit spectra. The real values (places 0 and N-1
// for RCPack, 0 and 1 for RCPerm) are formed in 32 bits and narrowed here;
// the complex block goes through the 16-bit complex product with the same
// mode and factor. The modes are read by exact value, as the complex
// product reads them; under auto scaling both parts end with one factor.
void mpyPacked(const ryx::Site& site, const short* srcA, const short* srcB, short* dst, int order, bool perm,
               int scaleMode, int* scaleFactor, std::initializer_list<ryx::Check> nullChecks) {
  if (!ryx::passFirst(site, {{order < 0, "order<0"}, {order > 31, "order>31"}})) return;
  if (!ryx::passFirst(site, nullChecks)) return;
  if (!ryx::passFirst(site, {{scaleMode == 4 && scaleFactor == nullptr, "scaleFactor==0"}})) return;
  const std::uint64_t n = lengthOf(order);
  const std::uint64_t at[2] = {0, perm ? 1 : n - 1};
  const int reals = order > 0 ? 2 : 1;
  std::int32_t v[2] = {};
  for (int i = 0; i < reals; ++i) v[i] = std::int32_t{srcA[at[i]]} * srcB[at[i]];

  int realFactor = 0;
  const bool autoScale = scaleMode == 4;
  if (autoScale) {
    while (!fits16(v[0]) || !fits16(v[1])) {
      v[0] >>= 1;
      v[1] >>= 1;
      ++realFactor;
    }
  } else if (scaleMode >= 2) {
    const int f = scaleFactor != nullptr ? *scaleFactor : 0;
    for (int i = 0; i < reals; ++i) {
      if (f > 0)
        v[i] = ((v[i] >> 1) + (v[i] & 1)) >> (f - 1 > 31 ? 31 : f - 1);
      else if (f < 0)
        v[i] = -f > 31 ? 0 : static_cast<std::int32_t>(static_cast<std::uint32_t>(v[i]) << -f);
    }
  }
  const bool clamp = autoScale || scaleMode == 3 || scaleMode == 1;
  auto narrow = [&](std::int32_t x) { return clamp ? sat16(x) : static_cast<short>(static_cast<std::uint16_t>(x)); };

  if (order > 1) {
    const std::uint64_t from = perm ? 2 : 1;
    const int count = static_cast<int>(n / 2 - 1);
    auto* d = reinterpret_cast<WCplx*>(dst + from);
    const auto* b = reinterpret_cast<const WCplx*>(srcB + from);
    if (srcA == dst)
      ryxvbMpy2(b, d, count, scaleMode, scaleFactor);
    else
      ryxvbMpy3(reinterpret_cast<const WCplx*>(srcA + from), b, d, count, scaleMode, scaleFactor);
    if (autoScale) {
      const int inner = *scaleFactor;
      if (realFactor < inner) {
        for (int i = 0; i < reals; ++i) v[i] >>= (inner - realFactor);
      } else if (realFactor > inner) {
        *scaleFactor = realFactor;
        short* s = dst + from;
        for (int i = 0; i < 2 * count; ++i) s[i] = static_cast<short>(s[i] >> (realFactor - inner));
      }
    }
  } else if (autoScale) {
    *scaleFactor = realFactor;
  }
  for (int i = 0; i < reals; ++i) dst[at[i]] = narrow(v[i]);
}

}  // namespace

extern "C" {

// ---- Real to packed, packed to real ---------------------------------------------

RYXAPI void ryxwRealFftl(short* samps, int order, int flags, int scaleMode, int* scaleFactor) {
  packedForm({{__func__, kStem}, samps, samps, order, flags, scaleMode, scaleFactor}, true, true, false, kRealFftl,
             {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxwRealFftlNip(const short* inSamps, short* outSamps, int order, int flags, int scaleMode,
                            int* scaleFactor) {
  packedForm({{__func__, kStem}, inSamps, outSamps, order, flags, scaleMode, scaleFactor}, true, true, true, kRealFftl,
             {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}
RYXAPI void ryxwRealFft(short* samps, int order, int flags, int scaleMode, int* scaleFactor) {
  packedForm({{__func__, kStem}, samps, samps, order, flags, scaleMode, scaleFactor}, true, false, false, kRealFft,
             {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxwRealFftNip(const short* inSamps, short* outSamps, int order, int flags, int scaleMode,
                           int* scaleFactor) {
  packedForm({{__func__, kStem}, inSamps, outSamps, order, flags, scaleMode, scaleFactor}, true, false, true,
             kRealFftNip, {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}
RYXAPI void ryxwCcsFftl(short* samps, int order, int flags, int scaleMode, int* scaleFactor) {
  packedForm({{__func__, kStem}, samps, samps, order, flags, scaleMode, scaleFactor}, false, true, false, kCcsFftl,
             {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxwCcsFftlNip(const short* inSamps, short* outSamps, int order, int flags, int scaleMode,
                           int* scaleFactor) {
  packedForm({{__func__, kStem}, inSamps, outSamps, order, flags, scaleMode, scaleFactor}, false, true, true, kCcsFftl,
             {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}
RYXAPI void ryxwCcsFft(short* samps, int order, int flags, int scaleMode, int* scaleFactor) {
  packedForm({{__func__, kStem}, samps, samps, order, flags, scaleMode, scaleFactor}, false, false, false, kCcsFft,
             {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxwCcsFftNip(const short* inSamps, short* outSamps, int order, int flags, int scaleMode,
                          int* scaleFactor) {
  packedForm({{__func__, kStem}, inSamps, outSamps, order, flags, scaleMode, scaleFactor}, false, false, true,
             kCcsFftNip, {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}

// ---- Two signals ------------------------------------------------------------------

RYXAPI RyxStatus ryxwReal2Fft(short* xSamps, short* ySamps, int order, int flags, int scaleMode, int* scaleFactor) {
  return twoSignals({{__func__, kStem}, xSamps, xSamps, ySamps, ySamps, order, flags, scaleMode, scaleFactor}, true,
                    realInPlace, ryxsReal2Fft, "out ryxwRealFft", "out ryxsReal2Fft RYX_Init",
                    "out ryxsReal2Fft calc. FFT", {{xSamps == nullptr, "xSamps==0"}, {ySamps == nullptr, "ySamps==0"}});
}
RYXAPI RyxStatus ryxwReal2FftNip(const short* xInSamps, short* xOutSamps, const short* yInSamps, short* yOutSamps,
                                 int order, int flags, int scaleMode, int* scaleFactor) {
  return twoSignals({{__func__, kStem}, xInSamps, xOutSamps, yInSamps, yOutSamps, order, flags, scaleMode, scaleFactor},
                    true, ryxwRealFftNip, ryxsReal2Fft, "out ryxwRealFftNip", "out ryxsReal2Fft RYX_Init",
                    "out ryxsReal2Fft calc. FFT",
                    {{xInSamps == nullptr, "xInSamps==0"},
                     {xOutSamps == nullptr, "xOutSamps==0"},
                     {yInSamps == nullptr, "yInSamps==0"},
                     {yOutSamps == nullptr, "yOutSamps==0"}});
}
RYXAPI RyxStatus ryxwCcs2Fft(short* xSamps, short* ySamps, int order, int flags, int scaleMode, int* scaleFactor) {
  return twoSignals({{__func__, kStem}, xSamps, xSamps, ySamps, ySamps, order, flags, scaleMode, scaleFactor}, false,
                    ccsInPlace, ryxsCcs2Fft, "out ryxwCcsFft", "out ryxsCcs2Fft RYX_Init", "out ryxsCcs2Fft calc. FFT",
                    {{xSamps == nullptr, "xSamps==0"}, {ySamps == nullptr, "ySamps==0"}});
}
RYXAPI RyxStatus ryxwCcs2FftNip(const short* xInSamps, short* xOutSamps, const short* yInSamps, short* yOutSamps,
                                int order, int flags, int scaleMode, int* scaleFactor) {
  return twoSignals({{__func__, kStem}, xInSamps, xOutSamps, yInSamps, yOutSamps, order, flags, scaleMode, scaleFactor},
                    false, ryxwCcsFftNip, ryxsCcs2Fft, "out ryxwCcsFftNip", "out ryxsCcs2Fft RYX_Init",
                    "out ryxsCcs2Fft calc. FFT",
                    {{xInSamps == nullptr, "xInSamps==0"},
                     {xOutSamps == nullptr, "xOutSamps==0"},
                     {yInSamps == nullptr, "yInSamps==0"},
                     {yOutSamps == nullptr, "yOutSamps==0"}});
}

// ---- Products ---------------------------------------------------------------------

RYXAPI void ryxwMpyRCPack2(const short* src, short* dst, int order, int scaleMode, int* scaleFactor) {
  mpyPacked({__func__, kStem}, dst, src, dst, order, false, scaleMode, scaleFactor,
            {{src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxwMpyRCPerm2(const short* src, short* dst, int order, int scaleMode, int* scaleFactor) {
  mpyPacked({__func__, kStem}, dst, src, dst, order, true, scaleMode, scaleFactor,
            {{src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxwMpyRCPack3(const short* srcA, const short* srcB, short* dst, int order, int scaleMode,
                           int* scaleFactor) {
  mpyPacked({__func__, kStem}, srcA, srcB, dst, order, false, scaleMode, scaleFactor,
            {{srcA == nullptr, "srcA==0"}, {srcB == nullptr, "srcB==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxwMpyRCPerm3(const short* srcA, const short* srcB, short* dst, int order, int scaleMode,
                           int* scaleFactor) {
  mpyPacked({__func__, kStem}, srcA, srcB, dst, order, true, scaleMode, scaleFactor,
            {{srcA == nullptr, "srcA==0"}, {srcB == nullptr, "srcB==0"}, {dst == nullptr, "dst==0"}});
}

}  // extern "C"
