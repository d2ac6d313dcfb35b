// The complex FFT engine: dispatcher over the in-cache kernels and the
// radix-2 combining passes for transforms larger than one kernel call.
//
// Up to the block size B (16384 float, 4096 double) one kernel call does
// the whole transform. Above it, the array is cut into chunks of
// c = min(n, C) values (C = 32768 float, 8192 double); each chunk's blocks
// run through the kernel, highest block first, then combining passes join
// them to length c; a final combining call joins the chunks. The combining
// passes hold intermediates in extended precision and round on storing.
#include <type_traits>

#include "frame/thread_context.h"
#include "transform/fft_internal.h"
#include "transform/fft_kernels.h"

namespace ryx::fft {

const KernelSet* kernelsFor(Isa isa) {
  switch (isa) {
    case Isa::Sse2:
      return &ryx::sse2::kKernels;
    case Isa::Avx2:
      return __builtin_cpu_supports("avx2") ? &ryx::avx2::kKernels : nullptr;
    default:
      return nullptr;
  }
}

// Asked at each call: the processor's feature flags are a plain read.
const KernelSet& kernels() { return ryx::cpu::allows(Isa::Avx2) ? ryx::avx2::kKernels : ryx::sse2::kKernels; }

}  // namespace ryx::fft

using namespace ryx::fft;

// ---- Kernel entries ----------------------------------------------------------

void ownsFftKernelFwd(SCplx* s, std::uint32_t n, const float* t, SCplx* w) { kernels().sFwd(s, n, t, w); }
void ownsFftKernelInv(SCplx* s, std::uint32_t n, const float* t, SCplx* w) { kernels().sInv(s, n, t, w); }
void owndFftKernelFwd(DCplx* s, std::uint32_t n, const double* t, DCplx* w) { kernels().dFwd(s, n, t, w); }
void owndFftKernelInv(DCplx* s, std::uint32_t n, const double* t, DCplx* w) { kernels().dInv(s, n, t, w); }
void ownsFftSplitKernelFwd(float* r, float* i, std::uint32_t n, const float* t, float* w) {
  kernels().sSplitFwd(r, i, n, t, w);
}
void ownsFftSplitKernelInv(float* r, float* i, std::uint32_t n, const float* t, float* w) {
  kernels().sSplitInv(r, i, n, t, w);
}
void owndFftSplitKernelFwd(double* r, double* i, std::uint32_t n, const double* t, double* w) {
  kernels().dSplitFwd(r, i, n, t, w);
}
void owndFftSplitKernelInv(double* r, double* i, std::uint32_t n, const double* t, double* w) {
  kernels().dSplitInv(r, i, n, t, w);
}

// ---- Combining passes ----------------------------------------------------------

namespace {

template <class T>
constexpr std::uint32_t combineSize() {
  return sizeof(T) == 4 ? kFloatCombine : kDoubleCombine;
}

// Radix-2 decimation-in-time passes joining transforms of length `len0`
// into one of length `n`. Value i is (re[i*Step], im[i*Step]).
//
// Column k of a pass of half-length `len` uses W_(2 len)^k, table entry
// k*r/2 with r = n/len; the second loop over the same columns uses -i times
// that twiddle for columns k + len/2, so only a quarter wave is read. The
// stripe loop stands outside the group loop so that the twiddles of a
// stripe stay in cache while every group passes over them.
template <class T, int Step>
void combine(T* re, T* im, std::uint32_t n, std::uint32_t len0, const T* tbl, std::uint32_t fullN, int sign,
             int stripeValues) {
  constexpr std::uint32_t kC = combineSize<T>();
  const T* base = tbl;
  if (fullN > kC && len0 < kC) base = tbl + 2 * std::size_t{fullN / 4};
  const std::size_t w = static_cast<std::size_t>(stripeValues / 2);
  const bool fwd = sign >= 1;
  std::size_t len = len0;
  std::size_t groups = n / (2 * std::size_t{len0});
  std::size_t stripes = len / (2 * w);
  std::size_t r = n / len;
  auto butterfly = [&](std::size_t a, std::size_t b, long double tr, long double ti) {
    const long double pr = re[b * Step], pim = im[b * Step];
    long double qr, qi;
    if (fwd) {
      qr = pr * tr - pim * ti;
      qi = pr * ti + pim * tr;
    } else {
      qr = pr * tr + pim * ti;
      qi = pim * tr - pr * ti;
    }
    const long double xr = re[a * Step], xi = im[a * Step];
    re[a * Step] = static_cast<T>(xr + qr);
    im[a * Step] = static_cast<T>(xi + qi);
    re[b * Step] = static_cast<T>(xr - qr);
    im[b * Step] = static_cast<T>(xi - qi);
  };
  while (groups >= 1) {
    const std::size_t half = len / 2;
    for (std::size_t s = 0; s < stripes; ++s) {
      const std::size_t k0 = s * w;
      for (std::size_t g = 0; g < groups; ++g) {
        const std::size_t at = g * 2 * len;
        for (std::size_t k = k0; k < k0 + w; ++k) {
          const T* t = base + k * r;
          butterfly(at + k, at + k + len, t[0], t[1]);
        }
        // -i * (tr + i ti) = ti - i tr
        for (std::size_t k = k0; k < k0 + w; ++k) {
          const T* t = base + k * r;
          butterfly(at + k + half, at + k + half + len, t[1], -static_cast<long double>(t[0]));
        }
      }
    }
    len *= 2;
    groups /= 2;
    stripes *= 2;
    r /= 2;
  }
}

}  // namespace

void ownsFftCombine(SCplx* data, std::uint32_t n, std::uint32_t len0, const float* tbl, std::uint32_t fullN, int sign,
                    int stripeFloats) {
  float* x = reinterpret_cast<float*>(data);
  combine<float, 2>(x, x + 1, n, len0, tbl, fullN, sign, stripeFloats);
}

void owndFftCombine(DCplx* data, std::uint32_t n, std::uint32_t len0, const double* tbl, std::uint32_t fullN, int sign,
                    int stripeFloats) {
  double* x = reinterpret_cast<double*>(data);
  combine<double, 2>(x, x + 1, n, len0, tbl, fullN, sign, stripeFloats);
}

void ownsFftSplitCombine(float* re, float* im, std::uint32_t n, std::uint32_t len0, const float* tbl,
                         std::uint32_t fullN, int sign, int stripe) {
  combine<float, 1>(re, im, n, len0, tbl, fullN, sign, stripe);
}

void owndFftSplitCombine(double* re, double* im, std::uint32_t n, std::uint32_t len0, const double* tbl,
                         std::uint32_t fullN, int sign, int stripe) {
  combine<double, 1>(re, im, n, len0, tbl, fullN, sign, stripe);
}

// ---- Dispatchers ---------------------------------------------------------------

namespace {

// What the dispatcher needs of each precision: the in-cache block B, the
// chunk size C, the radix table that serves every full block, and the
// stripe of the final combining call.
template <class T>
struct EngineSizes;
template <>
struct EngineSizes<float> {
  static constexpr std::uint32_t kBlock = kFloatBlock, kChunk = kFloatCombine;
  static constexpr int kFinalStripe = 256;
  static const float* radix() {
    return static_cast<const float*>(ryxGetThreadContext()->sFftRadixTwd[kFloatKernelOrder]);
  }
};
template <>
struct EngineSizes<double> {
  static constexpr std::uint32_t kBlock = kDoubleBlock, kChunk = kDoubleCombine;
  static constexpr int kFinalStripe = 128;
  static const double* radix() {
    return static_cast<const double*>(ryxGetThreadContext()->dFftRadixTwd[kDoubleKernelOrder]);
  }
};

// One kernel call on n values at (re, im): interleaved with Step 2 (im is
// re + 1), split with Step 1. A misaligned array gets the thread's engine
// scratch slot as the kernel's work area of n complex values.
template <class T, int Step>
void runKernel(T* re, T* im, std::uint32_t n, const T* tbl, bool fwd) {
  const KernelSet& k = kernels();
  const bool aligned = aligned16(re) && (Step == 2 || aligned16(im));
  T* work = aligned ? nullptr
                    : reinterpret_cast<T*>(ownGetScratchZ(static_cast<int>(n * (sizeof(T) / sizeof(float))), kEngineSlot));
  if constexpr (Step == 2 && std::is_same_v<T, float>) {
    (fwd ? k.sFwd : k.sInv)(reinterpret_cast<SCplx*>(re), n, tbl, reinterpret_cast<SCplx*>(work));
  } else if constexpr (Step == 2) {
    (fwd ? k.dFwd : k.dInv)(reinterpret_cast<DCplx*>(re), n, tbl, reinterpret_cast<DCplx*>(work));
  } else if constexpr (std::is_same_v<T, float>) {
    (fwd ? k.sSplitFwd : k.sSplitInv)(re, im, n, tbl, work);
  } else {
    (fwd ? k.dSplitFwd : k.dSplitInv)(re, im, n, tbl, work);
  }
}

// The whole transform of n values: one kernel call up to B; above it the
// blocks of each chunk of c = min(n, C) values, highest block first, are
// joined to length c, and a final combining call joins the chunks.
template <class T, int Step>
void runCore(T* re, T* im, std::uint32_t n, int sign, const T* tbl) {
  using P = EngineSizes<T>;
  if (n <= 1) return;
  if (n == 2) {
    const T r0 = re[0], i0 = im[0], r1 = re[Step], i1 = im[Step];
    re[0] = r0 + r1;
    im[0] = i0 + i1;
    re[Step] = r0 - r1;
    im[Step] = i0 - i1;
    return;
  }
  const bool fwd = sign >= 1;
  if (n <= P::kBlock) {
    runKernel<T, Step>(re, im, n, tbl, fwd);
    return;
  }
  const T* radix = P::radix();
  const std::uint32_t c = n < P::kChunk ? n : P::kChunk;
  for (std::size_t at = 0; at < n; at += c) {
    for (std::uint32_t b = c / P::kBlock; b-- > 0;) {
      const std::size_t off = (at + std::size_t{b} * P::kBlock) * Step;
      runKernel<T, Step>(re + off, im + off, P::kBlock, radix, fwd);
    }
    combine<T, Step>(re + at * Step, im + at * Step, c, P::kBlock, tbl, n, sign, 256);
  }
  if (n > c) combine<T, Step>(re, im, n, c, tbl, n, sign, P::kFinalStripe);
}

}  // namespace

void ownsFftCore(SCplx* samps, std::uint32_t n, int sign, const float* tbl) {
  float* x = reinterpret_cast<float*>(samps);
  runCore<float, 2>(x, x + 1, n, sign, tbl);
}

void owndFftCore(DCplx* samps, std::uint32_t n, int sign, const double* tbl) {
  double* x = reinterpret_cast<double*>(samps);
  runCore<double, 2>(x, x + 1, n, sign, tbl);
}

void ownsFftSplitCore(float* re, float* im, std::uint32_t n, int sign, const float* tbl) {
  runCore<float, 1>(re, im, n, sign, tbl);
}

void owndFftSplitCore(double* re, double* im, std::uint32_t n, int sign, const double* tbl) {
  runCore<double, 1>(re, im, n, sign, tbl);
}
