#include <climits>
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

// Column formulas of the two recombinations, written once for scalars and
// for 128-bit vectors of four columns (the same operations per lane).
// Inputs: column k (kr, ki) and its partner p = m-k (pr, pi), table
// constants a, b; outputs: the new column k and partner.
struct RealColumns {
  template <class X>
  static void apply(int sign, X kr, X ki, X pr, X pi, X a, X b, X* out) {
    const X dr = kr - pr, si = ki + pi;
    if (sign >= 1) {
      const X t1 = a * si + b * dr;
      const X t2 = b * si - a * dr;
      out[0] = pr + t1;
      out[1] = t2 - pi;
      out[2] = kr - t1;
      out[3] = t2 - ki;
    } else {
      const X t1 = a * si - b * dr;
      const X t2 = b * si + a * dr;
      out[0] = kr + t1;
      out[1] = ki - t2;
      out[2] = pr - t1;
      out[3] = pi - t2;
    }
  }
};

struct CcsColumns {
  template <class X>
  static void apply(int sign, X kr, X ki, X pr, X pi, X a, X b, X* out) {
    const X sr = kr + pr, di = ki - pi, dr = kr - pr, si = ki + pi;
    if (sign >= 1) {
      const X t1 = b * dr + a * si;
      const X t2 = a * dr - b * si;
      out[0] = sr - t1;
      out[1] = di + t2;
      out[2] = sr + t1;
      out[3] = t2 - di;
    } else {
      const X t1 = b * dr - a * si;
      const X t2 = b * si + a * dr;
      out[0] = sr + t1;
      out[1] = di + t2;
      out[2] = sr - t1;
      out[3] = t2 - di;
    }
  }
};

using V4 = float __attribute__((vector_size(16)));
using I4 = int __attribute__((vector_size(16)));

inline V4 load4(const float* p) {
  V4 v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
inline void store4(float* p, V4 v) { std::memcpy(p, &v, sizeof v); }

// Columns 1 .. m/2-1 with their partners, from `src` to `dst` (which may
// be the same array). Float above m = 4 takes four columns per round, the
// table's four A and four B read as two vectors, the partners read and
// written in reverse lane order; the last lane of the last round is the
// middle column, whose stores are skipped. Everything else is scalar.
template <class Cols, class T>
void sweep(const T* src, T* dst, std::uint32_t m, int sign, const T* tbl) {
  const bool grouped = sizeof(T) == 4 && m > 4;
  if constexpr (sizeof(T) == 4) {
    if (grouped) {
      for (std::uint32_t k0 = 1; k0 <= m / 2; k0 += 4) {
        const std::uint32_t q = m - k0 - 3;  // lowest partner of the round
        const V4 k01 = load4(src + 2 * k0), k23 = load4(src + 2 * k0 + 4);
        const V4 q01 = load4(src + 2 * q), q23 = load4(src + 2 * q + 4);
        const V4 kr = __builtin_shuffle(k01, k23, I4{0, 2, 4, 6});
        const V4 ki = __builtin_shuffle(k01, k23, I4{1, 3, 5, 7});
        const V4 pr = __builtin_shuffle(q01, q23, I4{6, 4, 2, 0});
        const V4 pi = __builtin_shuffle(q01, q23, I4{7, 5, 3, 1});
        const float* g = tbl + 8 * ((k0 - 1) / 4);
        V4 out[4];
        Cols::apply(sign, kr, ki, pr, pi, load4(g), load4(g + 4), out);
        const V4 nk01 = __builtin_shuffle(out[0], out[1], I4{0, 4, 1, 5});
        const V4 nk23 = __builtin_shuffle(out[0], out[1], I4{2, 6, 3, 7});
        const V4 nq01 = __builtin_shuffle(out[2], out[3], I4{3, 7, 2, 6});
        const V4 nq23 = __builtin_shuffle(out[2], out[3], I4{1, 5, 0, 4});
        if (k0 + 3 < m / 2) {
          store4(dst + 2 * k0, nk01);
          store4(dst + 2 * k0 + 4, nk23);
          store4(dst + 2 * q, nq01);
          store4(dst + 2 * q + 4, nq23);
        } else {
          // Last round: lanes 0..2 only (k0 .. k0+2 and their partners).
          store4(dst + 2 * k0, nk01);
          std::memcpy(dst + 2 * k0 + 4, &nk23, 2 * sizeof(float));
          std::memcpy(dst + 2 * q + 2, reinterpret_cast<const float*>(&nq01) + 2, 2 * sizeof(float));
          store4(dst + 2 * q + 4, nq23);
        }
      }
      return;
    }
  }
  for (std::uint32_t k = 1; k < m / 2; ++k) {
    const std::uint32_t p = m - k;
    T a, b;
    tableAB(tbl, k, grouped, a, b);
    T out[4];
    Cols::apply(sign, src[2 * k], src[2 * k + 1], src[2 * p], src[2 * p + 1], a, b, out);
    dst[2 * k] = out[0];
    dst[2 * k + 1] = out[1];
    dst[2 * p] = out[2];
    dst[2 * p + 1] = out[3];
  }
}

// Z to X in place for k = 1 .. m-1, with A = cos/2 and B = (1 - sin)/2:
// for k below m/2 the column and its partner p = m-k together, then the
// middle column m/2, whose imaginary part flips sign in the forward sense.
template <class T>
void realRecombine(T* d, std::uint32_t m, int sign, const T* tbl) {
  if (m < 2) return;
  sweep<RealColumns>(d, d, m, sign, tbl);
  if (sign >= 1) d[m + 1] = -d[m + 1];
}

// X to 2*Z for k = 1 .. m-1, A = cos, B = -sin; `src` may equal `dst`.
// The middle column is X[m/2] times (2, 2) forward, (2, -2) inverse.
template <class T>
void ccsRecombine(const T* src, T* dst, std::uint32_t m, int sign, const T* tbl) {
  if (m < 2) return;
  const T mr = src[m], mi = src[m + 1];
  sweep<CcsColumns>(src, dst, m, sign, tbl);
  dst[m] = mr * T(2);
  dst[m + 1] = mi * (sign >= 1 ? T(2) : T(-2));
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
bool prepare(const ryx::Site& site, int order, int flags, std::initializer_list<ryx::Check> nullChecks, const T*& radix,
             const std::uint32_t*& pairs, const T*& recomb) {
  using P = Precision<T>;
  // INT_MIN has no order below it; out of range either way, it frees nothing.
  const int fftOrder = order == INT_MIN ? -1 : order - 1;
  if (flags & RYX_Release) {
    P::freeRadix(fftOrder);
    if (Real)
      P::freeReal(order);
    else
      P::freeCcs(order);
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
void realFft(const char* name, const T* in, T* out, int order, int flags,
             std::initializer_list<ryx::Check> nullChecks) {
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
  if (Nip)
    permuteCopy(in, out, fftOrder, 2 * sizeof(T), pairs);
  else
    permuteInPlace(out, fftOrder, 2 * sizeof(T), pairs);
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
      if constexpr (sizeof(T) == 4)
        ryxcbMpy2(b, d, count);
      else
        ryxzbMpy2(b, d, count);
    } else {
      const auto* a = reinterpret_cast<const C*>(srcA + at);
      if constexpr (sizeof(T) == 4)
        ryxcbMpy3(a, b, d, count);
      else
        ryxzbMpy3(a, b, d, count);
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
RYXAPI RyxStatus ryxdReal2FftNip(const double* xInSamps, double* xOutSamps, const double* yInSamps, double* yOutSamps,
                                 int order, int flags) {
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
RYXAPI RyxStatus ryxdCcs2FftNip(const double* xInSamps, double* xOutSamps, const double* yInSamps, double* yOutSamps,
                                int order, int flags) {
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
