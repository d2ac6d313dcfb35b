// The complex FFT engine: dispatcher over the in-cache kernels and the
// radix-2 combining passes for transforms larger than one kernel call.
//
// Up to the block size B (16384 float, 4096 double) one kernel call does
// the whole transform. Above it, the array is cut into chunks of
// c = min(n, C) values (C = 32768 float, 8192 double); each chunk's blocks
// run through the kernel, highest block first, then combining passes join
// them to length c; a final combining call joins the chunks. The combining
// passes hold intermediates in extended precision and round on storing.
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

// Interleaved float work area for a misaligned block of n values.
SCplx* floatWork(const void* p, std::uint32_t n) {
  return aligned16(p) ? nullptr : ownGetScratchZ(static_cast<int>(n), kEngineSlot);
}
DCplx* doubleWork(const void* p, std::uint32_t n) {
  return aligned16(p) ? nullptr : reinterpret_cast<DCplx*>(ownGetScratchZ(static_cast<int>(2 * n), kEngineSlot));
}
float* floatSplitWork(const void* a, const void* b, std::uint32_t n) {
  return aligned16(a) && aligned16(b) ? nullptr
                                      : reinterpret_cast<float*>(ownGetScratchZ(static_cast<int>(n), kEngineSlot));
}
double* doubleSplitWork(const void* a, const void* b, std::uint32_t n) {
  return aligned16(a) && aligned16(b) ? nullptr
                                      : reinterpret_cast<double*>(ownGetScratchZ(static_cast<int>(2 * n), kEngineSlot));
}

template <class T>
void butterfly2(T* r, T* i, std::size_t step) {
  const T r0 = r[0], i0 = i[0], r1 = r[step], i1 = i[step];
  r[0] = r0 + r1;
  i[0] = i0 + i1;
  r[step] = r0 - r1;
  i[step] = i0 - i1;
}

}  // namespace

void ownsFftCore(SCplx* samps, std::uint32_t n, int sign, const float* tbl) {
  if (n <= 1) return;
  if (n == 2) {
    float* x = reinterpret_cast<float*>(samps);
    butterfly2(x, x + 1, 2);
    return;
  }
  const KernelSet& k = kernels();
  auto kernel = sign >= 1 ? k.sFwd : k.sInv;
  if (n <= kFloatBlock) {
    kernel(samps, n, tbl, floatWork(samps, n));
    return;
  }
  const float* radix = static_cast<const float*>(ryxGetThreadContext()->sFftRadixTwd[kFloatKernelOrder]);
  const std::uint32_t c = n < kFloatCombine ? n : kFloatCombine;
  for (std::size_t at = 0; at < n; at += c) {
    for (std::uint32_t b = c / kFloatBlock; b-- > 0;) {
      SCplx* blk = samps + at + std::size_t{b} * kFloatBlock;
      kernel(blk, kFloatBlock, radix, floatWork(blk, kFloatBlock));
    }
    ownsFftCombine(samps + at, c, kFloatBlock, tbl, n, sign, 256);
  }
  if (n > c) ownsFftCombine(samps, n, c, tbl, n, sign, 256);
}

void owndFftCore(DCplx* samps, std::uint32_t n, int sign, const double* tbl) {
  if (n <= 1) return;
  if (n == 2) {
    double* x = reinterpret_cast<double*>(samps);
    butterfly2(x, x + 1, 2);
    return;
  }
  const KernelSet& k = kernels();
  auto kernel = sign >= 1 ? k.dFwd : k.dInv;
  if (n <= kDoubleBlock) {
    kernel(samps, n, tbl, doubleWork(samps, n));
    return;
  }
  const double* radix = static_cast<const double*>(ryxGetThreadContext()->dFftRadixTwd[kDoubleKernelOrder]);
  const std::uint32_t c = n < kDoubleCombine ? n : kDoubleCombine;
  for (std::size_t at = 0; at < n; at += c) {
    for (std::uint32_t b = c / kDoubleBlock; b-- > 0;) {
      DCplx* blk = samps + at + std::size_t{b} * kDoubleBlock;
      kernel(blk, kDoubleBlock, radix, doubleWork(blk, kDoubleBlock));
    }
    owndFftCombine(samps + at, c, kDoubleBlock, tbl, n, sign, 256);
  }
  if (n > c) owndFftCombine(samps, n, c, tbl, n, sign, 128);
}

void ownsFftSplitCore(float* re, float* im, std::uint32_t n, int sign, const float* tbl) {
  if (n <= 1) return;
  if (n == 2) {
    butterfly2(re, im, 1);
    return;
  }
  const KernelSet& k = kernels();
  auto kernel = sign >= 1 ? k.sSplitFwd : k.sSplitInv;
  if (n <= kFloatBlock) {
    kernel(re, im, n, tbl, floatSplitWork(re, im, n));
    return;
  }
  const float* radix = static_cast<const float*>(ryxGetThreadContext()->sFftRadixTwd[kFloatKernelOrder]);
  const std::uint32_t c = n < kFloatCombine ? n : kFloatCombine;
  for (std::size_t at = 0; at < n; at += c) {
    for (std::uint32_t b = c / kFloatBlock; b-- > 0;) {
      const std::size_t off = at + std::size_t{b} * kFloatBlock;
      kernel(re + off, im + off, kFloatBlock, radix, floatSplitWork(re + off, im + off, kFloatBlock));
    }
    ownsFftSplitCombine(re + at, im + at, c, kFloatBlock, tbl, n, sign, 256);
  }
  if (n > c) ownsFftSplitCombine(re, im, n, c, tbl, n, sign, 256);
}

void owndFftSplitCore(double* re, double* im, std::uint32_t n, int sign, const double* tbl) {
  if (n <= 1) return;
  if (n == 2) {
    butterfly2(re, im, 1);
    return;
  }
  const KernelSet& k = kernels();
  auto kernel = sign >= 1 ? k.dSplitFwd : k.dSplitInv;
  if (n <= kDoubleBlock) {
    kernel(re, im, n, tbl, doubleSplitWork(re, im, n));
    return;
  }
  const double* radix = static_cast<const double*>(ryxGetThreadContext()->dFftRadixTwd[kDoubleKernelOrder]);
  const std::uint32_t c = n < kDoubleCombine ? n : kDoubleCombine;
  for (std::size_t at = 0; at < n; at += c) {
    for (std::uint32_t b = c / kDoubleBlock; b-- > 0;) {
      const std::size_t off = at + std::size_t{b} * kDoubleBlock;
      kernel(re + off, im + off, kDoubleBlock, radix, doubleSplitWork(re + off, im + off, kDoubleBlock));
    }
    owndFftSplitCombine(re + at, im + at, c, kDoubleBlock, tbl, n, sign, 256);
  }
  if (n > c) owndFftSplitCombine(re, im, n, c, tbl, n, sign, 128);
}
