// 16-bit complex DFT of any length (source group "ryxdft").
//
// Up to 128 points (or with RYX_IntCore) integer kernels run on a Q14 row
// table from the thread's `dftPermTbl` list: 2n rows of four words, row k
// (c, s, -s, c) for the forward sum and row n+k (c, -s, s, c) for the
// inverse, c and s being 16384 cos and sin of 2 pi k/n rounded half away
// from zero. Each term is a pair of 32-bit dot products of (re, im) with a
// row half, each shifted right by 7 before it joins its 32-bit sum; the
// sum is then rounded once at 7 + f bits. Longer lengths (or
// RYX_FloatCore) convert to float, run ryxcDft and narrow back.
#include <cmath>
#include <cstdint>

#include "frame/thread_context.h"
#include "transform/dft_direct.h"
#include "transform/fft_internal.h"
#include "vector/scale_narrow.h"

namespace {

using ryx::Site;
using ryx::dft::traceIfFailed;

constexpr int kIntCoreUpTo = 128;
constexpr double kTwoPi = 2.0 * 3.14159265358979323846;

// The Q14 row table of length n, fetched from or added to the list; null
// when the list is full or memory is short.
const short* permTable(int n) {
  if (n > 0x1FFFFFFF) return nullptr;
  RyxThreadContext* ctx = ryxGetThreadContext();
  for (int i = 0; i < ctx->dftPermCount; ++i) {
    if (ctx->dftPermLen[i] == 4 * n) return static_cast<const short*>(ctx->dftPermTbl[i]);
  }
  if (ctx->dftPermCount >= 32) return nullptr;
  auto* rows = static_cast<short*>(ryx::fft::blockAlloc(8 * static_cast<std::uint64_t>(n), sizeof(short)));
  if (rows == nullptr) return nullptr;
  for (int k = 0; k < n; ++k) {
    const double angle = kTwoPi * static_cast<double>(k) / static_cast<double>(n);
    const auto c = static_cast<short>(std::round(16384.0 * std::cos(angle)));
    const auto s = static_cast<short>(std::round(16384.0 * std::sin(angle)));
    short* fwd = rows + 4 * k;
    short* inv = rows + 4 * (n + k);
    fwd[0] = c, fwd[1] = s, fwd[2] = static_cast<short>(-s), fwd[3] = c;
    inv[0] = c, inv[1] = static_cast<short>(-s), inv[2] = s, inv[3] = c;
  }
  ctx->dftPermTbl[ctx->dftPermCount] = rows;
  ctx->dftPermLen[ctx->dftPermCount] = 4 * n;
  ++ctx->dftPermCount;
  return rows;
}

enum class Narrow { kWrap, kSaturate, kMustFit };

// One integer transform at total shift 7 + f. kMustFit stops at the first
// component outside 16 bits and yields false.
bool intKernel(const WCplx* x, WCplx* y, int n, const short* rows, int flags, int f, Narrow narrow) {
  const int byte = flags & 0xFF;
  const bool inverseRows = byte == 2 || byte == 18;
  const bool divide = byte == 2;
  const short* base = rows + (inverseRows ? 4 * static_cast<std::int64_t>(n) : 0);
  const int total = 7 + f;
  for (int k = 0; k < n; ++k) {
    std::uint32_t sumRe = 0, sumIm = 0;  // 32-bit sums, wrapping
    int j = 0;
    for (int i = 0; i < n; ++i) {
      const short* r = base + 4 * static_cast<std::int64_t>(j);
      const std::int32_t re = x[i].re, im = x[i].im;
      sumRe += static_cast<std::uint32_t>((re * r[0] + im * r[1]) >> 7);
      sumIm += static_cast<std::uint32_t>((re * r[2] + im * r[3]) >> 7);
      j += k;
      if (j >= n) j -= n;
    }
    std::int64_t out[2];
    const std::uint32_t sums[2] = {sumRe, sumIm};
    for (int c = 0; c < 2; ++c) {
      std::int64_t v = static_cast<std::int32_t>(sums[c]);
      if (divide) v /= n;
      if (total > 0) {
        const int s = total > 31 ? 31 : total;
        v = (v + (std::int64_t{1} << (s - 1))) >> s;
      } else {
        v *= std::int64_t{1} << (-total > 32 ? 32 : -total);
      }
      if (narrow == Narrow::kMustFit && (v > 32767 || v < -32768)) return false;
      if (narrow == Narrow::kSaturate) v = v > 32767 ? 32767 : (v < -32768 ? -32768 : v);
      out[c] = v;
    }
    y[k].re = static_cast<short>(static_cast<std::uint16_t>(out[0]));
    y[k].im = static_cast<short>(static_cast<std::uint16_t>(out[1]));
  }
  return true;
}

void intDft(const WCplx* x, WCplx* y, int n, const short* rows, int flags, int mode, int* factor) {
  const int f = factor != nullptr ? *factor : 0;
  switch (mode) {
    case 0: intKernel(x, y, n, rows, flags, 0, Narrow::kWrap); break;
    case 1: intKernel(x, y, n, rows, flags, 0, Narrow::kSaturate); break;
    case 2: intKernel(x, y, n, rows, flags, f, Narrow::kWrap); break;
    case 3: intKernel(x, y, n, rows, flags, f, Narrow::kSaturate); break;
    case 4:
      // The smallest factor at which every component fits.
      for (int g = 0;; ++g) {
        *factor = g;
        if (intKernel(x, y, n, rows, flags, g, Narrow::kMustFit)) break;
      }
      break;
    default: break;  // other modes write nothing
  }
}

void floatSide(const Site& site, const WCplx* src, WCplx* dst, int n, int flags, int mode, int* factor, SCplx* work) {
  if (flags & RYX_Init) {
    ryxcDft(nullptr, nullptr, n, flags);
    traceIfFailed(site, "out ryxcDft RYX_Init");
    return;
  }
  auto* w = reinterpret_cast<float*>(work);
  ryxsbIntToFloat(src, w, 2 * n, 16, 0);
  ryxcDft(work, work + n, n, flags);
  traceIfFailed(site, "out ryxcDft calc. DFT");
  if (mode == 0 || mode == 1) {
    ryxsbFloatToInt(w + 2 * n, dst, 2 * n, 16, RYX_RoundNearest | RYX_ClipRange);
  } else {
    ownScaleArrayF32(w + 2 * n, reinterpret_cast<short*>(dst), 2 * n, mode, factor);
  }
}

// The fixed-and-auto check lets 7 pass (it writes nothing), while 6 is
// refused: modes with the saturate bit are not refused by it.
void vDft(const WCplx* src, WCplx* dst, int n, int flags, int mode, int* factor) {
  const Site site{"ryxvDft", ryx::dft::kStem};
  if (flags & RYX_Release) {
    ryxcFreeTwdTbls();
    ryxvFreeTwdTbls();
    return;
  }
  if (!ryx::passFirst(site, {{n < 1, "length<=0"},
                             {(flags & 8192) && (flags & 16384), "(flags & 8192) && (flags & 16384)"}}))
    return;
  const bool init = (flags & RYX_Init) != 0;
  if (!init && !ryx::passFirst(site, {{src == nullptr, "src==0"},
                                      {dst == nullptr, "dst==0"},
                                      {(flags & 1) && (flags & 2), "(flags & 1) && (flags & 2)"},
                                      {(flags & 1) == 0 && (flags & 2) == 0, "(flags & 1)==0 && (flags & 2)==0"},
                                      {(mode & 0x0002) && (mode & 0x0004) && !(mode & 1), "(ScaleMode & 0x0002) && (ScaleMode & 0x0004)"},
                                      {mode == 4 && factor == nullptr, "ScaleFactor==0"}}))
    return;
  if (n == 1) {
    if (init) return;
    if ((mode & 2) && factor != nullptr) {
      const int values[2] = {src[0].re, src[0].im};
      ownScaleArrayI32(values, reinterpret_cast<short*>(dst), 2, mode, factor);
    } else {
      dst[0] = src[0];
      if ((mode & 4) && factor != nullptr) *factor = 0;
    }
    return;
  }
  const bool floatSide_ = (flags & RYX_FloatCore) || (!(flags & RYX_IntCore) && n > kIntCoreUpTo);
  SCplx* work = nullptr;
  const short* rows = nullptr;
  for (int round = 0; round < 2; ++round) {
    if (floatSide_) {
      work = n <= 0x3FFFFFFF ? ownGetScratchZ(2 * n, 2) : nullptr;
    } else {
      rows = permTable(n);
    }
    if (work != nullptr || rows != nullptr) break;
    if (round == 1) {
      ryx::reportNoMem(site, "No working memory");
      return;
    }
    ryxcFreeTwdTbls();
    ryxvFreeTwdTbls();
  }
  if (floatSide_) {
    floatSide(site, src, dst, n, flags, mode, factor, work);
  } else if (!init) {
    intDft(src, dst, n, rows, flags, mode, factor);
  }
}

}  // namespace

extern "C" {

RYXAPI void ryxvDft(const WCplx* src, WCplx* dst, int length, int flags, int scaleMode, int* scaleFactor) {
  vDft(src, dst, length, flags, scaleMode, scaleFactor);
}

}  // extern "C"
