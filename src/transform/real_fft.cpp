// Real FFT and packed spectra (source groups "ryxffts", "ryxfftd").
//
// A real signal of N = 2^order samples is read as m = N/2 complex values
// z[n] = x[2n] + i x[2n+1]; the half-length engine gives Z, and one sweep
// from both ends at once (the recombination) turns Z into the first half of
// the spectrum X. The CCS forms run the same steps backwards. Layouts:
//   RCCs   (N+2): Re X0, 0, Re X1, Im X1, ..., Re X(N/2), 0
//   RCPack (N):   Re X0, Re X1, Im X1, ..., Im X(N/2-1), Re X(N/2)
//   RCPerm (N):   Re X0, Re X(N/2), Re X1, Im X1, ..., Im X(N/2-1)
// RCPerm is what the engine delivers without moving samples. With
// RYX_Inverse the real forms compute the positive-exponent spectrum and
// scale by 1/N; the CCS recombination carries a factor 2 so that the CCS
// inverse undoes the real forward transform.
#include <cstring>

#include "transform/fft_frontend.h"

namespace {

using namespace ryx::fft;

// Recombination constants of column k: float tables above N = 8 hold
// groups of four A then four B for k = 4b+1 .. 4b+4; other tables hold
// pairs (A_k, B_k).
template <class T>
inline void tableAB(const T* tbl, std::uint32_t k, bool grouped, T& a, T& b) {
  if (grouped) {
    const std::uint32_t g = (k - 1) / 4, l = (k - 1) % 4;
    a = tbl[8 * g + l];
    b = tbl[8 * g + 4 + l];
  } else {
    a = tbl[2 * k];
    b = tbl[2 * k + 1];
  }
}

// Z to X in place for k = 1 .. m-1, with A = cos/2 and B = (1 - sin)/2:
// for k below m/2 the column and its partner p = m-k together, then the
// middle column m/2, whose imaginary part flips sign in the forward sense.
template <class T>
void realRecombine(T* d, std::uint32_t m, int sign, const T* tbl) {
  if (m < 2) return;
  const bool grouped = sizeof(T) == 4 && m > 4;
  for (std::uint32_t k = 1; k < m / 2; ++k) {
    const std::uint32_t p = m - k;
    T a, b;
    tableAB(tbl, k, grouped, a, b);
    const T zkr = d[2 * k], zki = d[2 * k + 1], zpr = d[2 * p], zpi = d[2 * p + 1];
    const T dr = zkr - zpr, si = zki + zpi;
    if (sign >= 1) {
      const T t1 = a * si + b * dr;
      const T t2 = b * si - a * dr;
      d[2 * k] = zpr + t1;
      d[2 * k + 1] = t2 - zpi;
      d[2 * p] = zkr - t1;
      d[2 * p + 1] = t2 - zki;
    } else {
      const T t1 = a * si - b * dr;
      const T t2 = b * si + a * dr;
      d[2 * k] = zkr + t1;
      d[2 * k + 1] = zki - t2;
      d[2 * p] = zpr - t1;
      d[2 * p + 1] = zpi - t2;
    }
  }
  if (sign >= 1) d[m + 1] = -d[m + 1];
}

// X to 2*Z for k = 1 .. m-1, A = cos, B = -sin; `src` may equal `dst`.
template <class T>
void ccsRecombine(const T* src, T* dst, std::uint32_t m, int sign, const T* tbl) {
  if (m < 2) return;
  const bool grouped = sizeof(T) == 4 && m > 4;
  for (std::uint32_t k = 1; k < m / 2; ++k) {
    const std::uint32_t p = m - k;
    T a, b;
    tableAB(tbl, k, grouped, a, b);
    const T xkr = src[2 * k], xki = src[2 * k + 1], xpr = src[2 * p], xpi = src[2 * p + 1];
    const T sr = xkr + xpr, di = xki - xpi, dr = xkr - xpr, si = xki + xpi;
    if (sign >= 1) {
      const T t1 = b * dr + a * si;
      const T t2 = a * dr - b * si;
      dst[2 * k] = sr - t1;
      dst[2 * k + 1] = di + t2;
      dst[2 * p] = sr + t1;
      dst[2 * p + 1] = t2 - di;
    } else {
      const T t1 = b * dr - a * si;
      const T t2 = b * si + a * dr;
      dst[2 * k] = sr + t1;
      dst[2 * k + 1] = di + t2;
      dst[2 * p] = sr - t1;
      dst[2 * p + 1] = t2 - di;
    }
  }
  dst[m] = src[m] * T(2);
  dst[m + 1] = src[m + 1] * (sign >= 1 ? T(2) : T(-2));
}

}  // namespace

void ownsRealRecombine(float* data, std::uint32_t m, int sign, const float* tbl) { realRecombine(data, m, sign, tbl); }
void owndRealRecombine(double* data, std::uint32_t m, int sign, const double* tbl) {
  realRecombine(data, m, sign, tbl);
}
void ownsCcsRecombine(const float* src, float* dst, std::uint32_t m, int sign, const float* tbl) {
  ccsRecombine(src, dst, m, sign, tbl);
}
void owndCcsRecombine(const double* src, double* dst, std::uint32_t m, int sign, const double* tbl) {
  ccsRecombine(src, dst, m, sign, tbl);
}

namespace {

enum class Layout { Ccs, Pack, Perm };

// The front-end steps shared by the real and CCS forms up to the
// direction checks. `Real` picks the recombination table family. Returns
// false when the call is over (release, RYX_Init or a failure).
template <class T, bool Real>
bool prepare(const ryx::Site& site, int order, int flags, std::initializer_list<ryx::Check> nullChecks,
             const T*& radix, const std::uint32_t*& pairs, const T*& recomb) {
  using P = Precision<T>;
  const int fftOrder = order - 1;
  if (flags & RYX_Release) {
    P::freeRadix(fftOrder);
    if (Real) P::freeReal(order);
    else P::freeCcs(order);
    ownFreeRevPairs(fftOrder);
    ownFreeScratchZSlot(kEngineSlot);
    return false;
  }
  if (!ryx::passFirst(site, {{order < 0, "order<0"}, {order > 31, "order>31"}})) return false;
  if (fftOrder >= 1) {
    auto extra = [&] {
      recomb = Real ? P::getReal(order) : P::getCcs(order);
      return recomb != nullptr;
    };
    if (!fetchTables<T>(site, fftOrder, radix, pairs, extra)) return false;
    if (!assureScratch<T>(site)) return false;
  }
  if (flags & RYX_Init) return false;
  if (!ryx::passFirst(site, nullChecks)) return false;
  return ryx::passFirst(site, {{(flags & 1) && (flags & 2), "(flags & 1) && (flags & 2)"},
                               {(flags & 1) == 0 && (flags & 2) == 0, "(flags & 1)==0 && (flags & 2)==0"}});
}

bool outLayoutChecks(const ryx::Site& site, int flags) {
  return ryx::passFirst(site, {{(flags & 256) && (flags & 512), "(flags & 256) && (flags & 512)"},
                               {(flags & 256) == 0 && (flags & 512) == 0, "(flags & 256)==0 && (flags & 512)==0"}});
}

bool inLayoutChecks(const ryx::Site& site, int flags) {
  return ryx::passFirst(site, {{(flags & 1024) && (flags & 4096), "(flags & 1024) && (flags & 4096)"},
                               {(flags & 1024) == 0 && (flags & 4096) == 0, "(flags & 1024)==0 && (flags & 4096)==0"}});
}

bool scaled(int flags) { return (flags & RYX_Inverse) && !(flags & RYX_KeepScale); }

// Real samples to a packed spectrum. `in` equals `out` for in-place forms.
template <class T, bool Packed, bool Nip>
void realFft(const char* name, const T* in, T* out, int order, int flags, std::initializer_list<ryx::Check> nullChecks) {
  using P = Precision<T>;
  const ryx::Site site{name, P::kStem};
  const T* radix = nullptr;
  const T* recomb = nullptr;
  const std::uint32_t* pairs = nullptr;
  if (!prepare<T, true>(site, order, flags, nullChecks, radix, pairs, recomb)) return;
  if (Packed && !outLayoutChecks(site, flags)) return;
  const Layout layout = !Packed ? Layout::Ccs : (flags & RYX_RCPackOut) ? Layout::Pack : Layout::Perm;
  const std::uint64_t n = lengthOf(order);
  const std::uint64_t count = layout == Layout::Ccs ? n + 2 : n;

  if (order == 0) {
    if (Nip) out[0] = in[0];
    if (layout == Layout::Ccs) out[1] = 0;
    return;
  }
  if (order == 1) {
    const T x0 = in[0], x1 = in[1];
    out[0] = x0 + x1;
    if (layout == Layout::Ccs) {
      out[1] = 0;
      out[2] = x0 - x1;
      out[3] = 0;
    } else {
      out[1] = x0 - x1;
    }
    if (scaled(flags)) P::scale(out, count, n);
    return;
  }

  const int fftOrder = order - 1;
  const std::uint32_t m = static_cast<std::uint32_t>(n / 2);
  const int sign = (flags & RYX_Forward) ? 1 : -1;
  if (Nip) permuteCopy(in, out, fftOrder, 2 * sizeof(T), pairs);
  else permuteInPlace(out, fftOrder, 2 * sizeof(T), pairs);
  P::core(out, m, sign, radix);
  const T t0 = out[0], t1 = out[1];
  out[0] = t0 + t1;
  const T nyquist = t0 - t1;
  P::realRecombine(out, m, sign, recomb);
  switch (layout) {
    case Layout::Ccs:
      out[1] = 0;
      out[n] = nyquist;
      out[n + 1] = 0;
      break;
    case Layout::Perm:
      out[1] = nyquist;
      break;
    case Layout::Pack:
      std::memmove(out + 1, out + 2, (n - 2) * sizeof(T));
      out[n - 1] = nyquist;
      break;
  }
  if (scaled(flags)) P::scale(out, count, n);
}

// Packed spectrum back to real samples.
template <class T, bool Packed, bool Nip>
void ccsFft(const char* name, const T* in, T* out, int order, int flags, std::initializer_list<ryx::Check> nullChecks) {
  using P = Precision<T>;
  const ryx::Site site{name, P::kStem};
  const T* radix = nullptr;
  const T* recomb = nullptr;
  const std::uint32_t* pairs = nullptr;
  if (!prepare<T, false>(site, order, flags, nullChecks, radix, pairs, recomb)) return;
  if (Packed && !inLayoutChecks(site, flags)) return;
  const Layout layout = !Packed ? Layout::Ccs : (flags & RYX_RCPackIn) ? Layout::Pack : Layout::Perm;
  const std::uint64_t n = lengthOf(order);

  if (order == 0) {
    if (Nip) out[0] = in[0];
    return;
  }
  if (order == 1) {
    const T x0 = in[0];
    const T x1 = layout == Layout::Ccs ? in[2] : in[1];
    out[0] = x0 + x1;
    out[1] = x0 - x1;
    if (scaled(flags)) P::scale(out, n, n);
    return;
  }

  const int fftOrder = order - 1;
  const std::uint32_t m = static_cast<std::uint32_t>(n / 2);
  const int sign = (flags & RYX_Forward) ? 1 : -1;
  const T first = in[0];
  T last;
  const T* src = in;
  switch (layout) {
    case Layout::Pack:
      // Shift the inner values up one place (into the output for Nip), which
      // makes the array an RCPerm array with two meaningless leading slots.
      last = in[n - 1];
      std::memmove(out + 2, in + 1, (n - 2) * sizeof(T));
      src = out;
      break;
    case Layout::Perm:
      last = in[1];
      break;
    case Layout::Ccs:
    default:
      last = in[n];
      break;
  }
  P::ccsRecombine(src, out, m, sign, recomb);
  out[0] = first + last;
  out[1] = first - last;
  permuteInPlace(out, fftOrder, 2 * sizeof(T), pairs);
  P::core(out, m, sign, radix);
  if (scaled(flags)) P::scale(out, n, n);
}

// Two real signals: the one-signal routine on each array in turn (once, on
// the first array, for RYX_Init or RYX_Release), then the stored status, or
// a trace line naming the callee when it is negative.
RyxStatus twoSignalResult(const char* name, const char* stem, const char* context) {
  const RyxStatus st = ryxGetErrStatus();
  if (st >= 0) return st;
  return ryxError(RYX_StsBacktrace, name, context, stem, __LINE__);
}

template <class T>
void mpyReal(T* dst, const T* a, const T* b) {
  if constexpr (sizeof(T) == 4) {
    *dst = static_cast<T>(static_cast<long double>(*a) * static_cast<long double>(*b));
  } else {
    *dst = *a * *b;
  }
}

// Product of two packed spectra: the real values one by one, the complex
// block through the elementwise complex product. `perm` selects RCPerm
// (real values at 0 and 1, block from 2) over RCPack (real values at 0 and
// N-1, block from 1).
template <class T>
void mpyPacked(const char* name, const T* srcA, const T* srcB, T* dst, int order, bool perm,
               std::initializer_list<ryx::Check> nullChecks) {
  using P = Precision<T>;
  using C = typename P::Cplx;
  const ryx::Site site{name, P::kStem};
  if (!ryx::passFirst(site, {{order < 0, "order<0"}, {order > 31, "order>31"}})) return;
  if (!ryx::passFirst(site, nullChecks)) return;
  const std::uint64_t n = lengthOf(order);
  mpyReal(dst, srcA, srcB);
  if (order > 0) {
    const std::uint64_t at = perm ? 1 : n - 1;
    mpyReal(dst + at, srcA + at, srcB + at);
  }
  if (order > 1) {
    const std::uint64_t at = perm ? 2 : 1;
    const int count = static_cast<int>(n / 2 - 1);
    auto* d = reinterpret_cast<C*>(dst + at);
    const auto* b = reinterpret_cast<const C*>(srcB + at);
    if (srcA == dst) {
      if constexpr (sizeof(T) == 4) ryxcbMpy2(b, d, count);
      else ryxzbMpy2(b, d, count);
    } else {
      const auto* a = reinterpret_cast<const C*>(srcA + at);
      if constexpr (sizeof(T) == 4) ryxcbMpy3(a, b, d, count);
      else ryxzbMpy3(a, b, d, count);
    }
  }
}

}  // namespace

extern "C" {

// ---- Real to packed ------------------------------------------------------------

RYXAPI void ryxsRealFftl(float* samps, int order, int flags) {
  realFft<float, true, false>(__func__, samps, samps, order, flags, {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxdRealFftl(double* samps, int order, int flags) {
  realFft<double, true, false>(__func__, samps, samps, order, flags, {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxsRealFftlNip(const float* inSamps, float* outSamps, int order, int flags) {
  realFft<float, true, true>(__func__, inSamps, outSamps, order, flags,
                             {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}
RYXAPI void ryxdRealFftlNip(const double* inSamps, double* outSamps, int order, int flags) {
  realFft<double, true, true>(__func__, inSamps, outSamps, order, flags,
                              {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}
RYXAPI void ryxsRealFft(float* samps, int order, int flags) {
  realFft<float, false, false>(__func__, samps, samps, order, flags, {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxdRealFft(double* samps, int order, int flags) {
  realFft<double, false, false>(__func__, samps, samps, order, flags, {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxsRealFftNip(const float* inSamps, float* outSamps, int order, int flags) {
  realFft<float, false, true>(__func__, inSamps, outSamps, order, flags,
                              {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}
RYXAPI void ryxdRealFftNip(const double* inSamps, double* outSamps, int order, int flags) {
  realFft<double, false, true>(__func__, inSamps, outSamps, order, flags,
                               {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}

// ---- Packed to real ------------------------------------------------------------

RYXAPI void ryxsCcsFftl(float* samps, int order, int flags) {
  ccsFft<float, true, false>(__func__, samps, samps, order, flags, {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxdCcsFftl(double* samps, int order, int flags) {
  ccsFft<double, true, false>(__func__, samps, samps, order, flags, {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxsCcsFftlNip(const float* inSamps, float* outSamps, int order, int flags) {
  ccsFft<float, true, true>(__func__, inSamps, outSamps, order, flags,
                            {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}
RYXAPI void ryxdCcsFftlNip(const double* inSamps, double* outSamps, int order, int flags) {
  ccsFft<double, true, true>(__func__, inSamps, outSamps, order, flags,
                             {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}
RYXAPI void ryxsCcsFft(float* samps, int order, int flags) {
  ccsFft<float, false, false>(__func__, samps, samps, order, flags, {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxdCcsFft(double* samps, int order, int flags) {
  ccsFft<double, false, false>(__func__, samps, samps, order, flags, {{samps == nullptr, "samps==0"}});
}
RYXAPI void ryxsCcsFftNip(const float* inSamps, float* outSamps, int order, int flags) {
  ccsFft<float, false, true>(__func__, inSamps, outSamps, order, flags,
                             {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}
RYXAPI void ryxdCcsFftNip(const double* inSamps, double* outSamps, int order, int flags) {
  ccsFft<double, false, true>(__func__, inSamps, outSamps, order, flags,
                              {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}

// ---- Two signals ---------------------------------------------------------------

RYXAPI RyxStatus ryxsReal2Fft(float* xSamps, float* ySamps, int order, int flags) {
  ryxsRealFft(xSamps, order, flags);
  if (!(flags & (RYX_Init | RYX_Release))) ryxsRealFft(ySamps, order, flags);
  return twoSignalResult(__func__, "ryxffts", "out ryxsRealFft");
}
RYXAPI RyxStatus ryxdReal2Fft(double* xSamps, double* ySamps, int order, int flags) {
  ryxdRealFft(xSamps, order, flags);
  if (!(flags & (RYX_Init | RYX_Release))) ryxdRealFft(ySamps, order, flags);
  return twoSignalResult(__func__, "ryxfftd", "out ryxdRealFft");
}
RYXAPI RyxStatus ryxsReal2FftNip(const float* xInSamps, float* xOutSamps, const float* yInSamps, float* yOutSamps,
                                 int order, int flags) {
  ryxsRealFftNip(xInSamps, xOutSamps, order, flags);
  if (!(flags & (RYX_Init | RYX_Release))) ryxsRealFftNip(yInSamps, yOutSamps, order, flags);
  return twoSignalResult(__func__, "ryxffts", "out ryxsRealFftNip");
}
RYXAPI RyxStatus ryxdReal2FftNip(const double* xInSamps, double* xOutSamps, const double* yInSamps,
                                 double* yOutSamps, int order, int flags) {
  ryxdRealFftNip(xInSamps, xOutSamps, order, flags);
  if (!(flags & (RYX_Init | RYX_Release))) ryxdRealFftNip(yInSamps, yOutSamps, order, flags);
  return twoSignalResult(__func__, "ryxfftd", "out ryxdRealFftNip");
}
RYXAPI RyxStatus ryxsCcs2Fft(float* xSamps, float* ySamps, int order, int flags) {
  ryxsCcsFft(xSamps, order, flags);
  if (!(flags & (RYX_Init | RYX_Release))) ryxsCcsFft(ySamps, order, flags);
  return twoSignalResult(__func__, "ryxffts", "out ryxsCcsFft");
}
RYXAPI RyxStatus ryxdCcs2Fft(double* xSamps, double* ySamps, int order, int flags) {
  ryxdCcsFft(xSamps, order, flags);
  if (!(flags & (RYX_Init | RYX_Release))) ryxdCcsFft(ySamps, order, flags);
  return twoSignalResult(__func__, "ryxfftd", "out ryxdCcsFft");
}
RYXAPI RyxStatus ryxsCcs2FftNip(const float* xInSamps, float* xOutSamps, const float* yInSamps, float* yOutSamps,
                                int order, int flags) {
  ryxsCcsFftNip(xInSamps, xOutSamps, order, flags);
  if (!(flags & (RYX_Init | RYX_Release))) ryxsCcsFftNip(yInSamps, yOutSamps, order, flags);
  return twoSignalResult(__func__, "ryxffts", "out ryxsCcsFftNip");
}
RYXAPI RyxStatus ryxdCcs2FftNip(const double* xInSamps, double* xOutSamps, const double* yInSamps,
                                double* yOutSamps, int order, int flags) {
  ryxdCcsFftNip(xInSamps, xOutSamps, order, flags);
  if (!(flags & (RYX_Init | RYX_Release))) ryxdCcsFftNip(yInSamps, yOutSamps, order, flags);
  return twoSignalResult(__func__, "ryxfftd", "out ryxdCcsFftNip");
}

// ---- Products of packed spectra ----------------------------------------------------

RYXAPI void ryxsMpyRCPack2(const float* src, float* dst, int order) {
  mpyPacked(__func__, dst, src, dst, order, false, {{src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxdMpyRCPack2(const double* src, double* dst, int order) {
  mpyPacked(__func__, static_cast<const double*>(dst), src, dst, order, false,
            {{src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxsMpyRCPerm2(const float* src, float* dst, int order) {
  mpyPacked(__func__, static_cast<const float*>(dst), src, dst, order, true,
            {{src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxdMpyRCPerm2(const double* src, double* dst, int order) {
  mpyPacked(__func__, static_cast<const double*>(dst), src, dst, order, true,
            {{src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxsMpyRCPack3(const float* srcA, const float* srcB, float* dst, int order) {
  mpyPacked(__func__, srcA, srcB, dst, order, false,
            {{srcA == nullptr, "srcA==0"}, {srcB == nullptr, "srcB==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxdMpyRCPack3(const double* srcA, const double* srcB, double* dst, int order) {
  mpyPacked(__func__, srcA, srcB, dst, order, false,
            {{srcA == nullptr, "srcA==0"}, {srcB == nullptr, "srcB==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxsMpyRCPerm3(const float* srcA, const float* srcB, float* dst, int order) {
  mpyPacked(__func__, srcA, srcB, dst, order, true,
            {{srcA == nullptr, "srcA==0"}, {srcB == nullptr, "srcB==0"}, {dst == nullptr, "dst==0"}});
}
RYXAPI void ryxdMpyRCPerm3(const double* srcA, const double* srcB, double* dst, int order) {
  mpyPacked(__func__, srcA, srcB, dst, order, true,
            {{srcA == nullptr, "srcA==0"}, {srcB == nullptr, "srcB==0"}, {dst == nullptr, "dst==0"}});
}

}  // extern "C"
