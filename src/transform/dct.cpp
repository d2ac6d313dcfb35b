// Orthonormal DCT-II (forward) and DCT-III (inverse) of any length
// (source group "ryxdct").
//
// With a = 1/sqrt(n): y[0] = a sum x[i], y[k] = a sqrt2 sum x[i]
// cos((2i+1) k pi / 2n). Even powers of two run Lee's recursion on the
// unscaled form: D splits into sums (an n/2 DCT-II) and differences (O, a
// DCT-IV: secant weights, an n/2 DCT-II, adjacent sums), and U, the
// inverse, splits even and odd coefficients and reuses O, since a DCT-IV
// is its own transpose. Other lengths run the folded direct sum over a
// 4n-entry cosine table. The input is copied first, so src may be dst.
//
// Precision: float and double values are held in double inside a kernel
// and stored in the sample type between stages. The 16-bit power-of-two
// path saturates every sum, difference and Q9 secant product, and scales
// by 1/sqrt(n) in one rounded pass (after D forward, before U inverse).
#include <bit>
#include <cmath>
#include <cstdint>

#include "frame/checks.h"
#include "frame/thread_context.h"
#include "ryxcore/transform_any_length.h"
#include "transform/dct_cache.h"
#include "transform/fft_internal.h"

namespace {

using ryx::Site;

constexpr const char* kStem = "ryxdct";
constexpr double kSqrt2 = 1.4142135623730951;
constexpr double kInvSqrt8 = 0.3535533905932738;
constexpr double kC1 = 0.9238795325112867;  // cos(pi/8)
constexpr double kC3 = 0.3826834323650898;  // cos(3pi/8)
constexpr double kC4 = 0.7071067811865476;  // cos(pi/4)
// 0.5 / cos((2j+1) pi / 16): the secants of the 8-point odd half.
constexpr double kSec8[4] = {0.5097955791041592, 0.6013448869350453, 0.8999762231364157, 2.5629154477415064};

// True for 1, 2, 4, ...: (v | 2^31) & (v - 1) is zero.
bool isPow2(int v) {
  const auto u = static_cast<std::uint32_t>(v);
  return ((u | 0x80000000u) & (u - 1u)) == 0;
}

// ---- 8-, 4- and 2-point kernels in double ------------------------------------

void dct4(const double* a, double* c) {
  const double p0 = a[0] + a[3], p1 = a[1] + a[2], m0 = a[0] - a[3], m1 = a[1] - a[2];
  c[0] = p0 + p1;
  c[2] = (p0 - p1) * kC4;
  c[1] = m0 * kC1 + m1 * kC3;
  c[3] = m0 * kC3 - m1 * kC1;
}

void idct4(const double* a, double* e) {
  const double t0 = a[0] + a[2] * kC4, t1 = a[0] - a[2] * kC4;
  const double u0 = a[1] * kC1 + a[3] * kC3, u1 = a[1] * kC3 - a[3] * kC1;
  e[0] = t0 + u0, e[1] = t1 + u1, e[2] = t1 - u1, e[3] = t0 - u0;
}

// 4-point DCT-IV through secants, a 4-point DCT-II and adjacent sums.
void dct4iv(const double* b, double* g) {
  double w[4];
  for (int j = 0; j < 4; ++j) w[j] = b[j] * kSec8[j];
  dct4(w, g);
  for (int i = 0; i < 3; ++i) g[i] += g[i + 1];
}

// Unscaled 8-point DCT-II: C[k] = sum x[i] cos((2i+1) k pi / 16).
void fwd8(const double* x, double* y) {
  double s[4], d[4], e[4], o[4];
  for (int i = 0; i < 4; ++i) s[i] = x[i] + x[7 - i], d[i] = x[i] - x[7 - i];
  dct4(s, e);
  dct4iv(d, o);
  for (int i = 0; i < 4; ++i) y[2 * i] = e[i], y[2 * i + 1] = o[i];
}

// Its transpose, the unscaled DCT-III.
void inv8(const double* y, double* x) {
  double a[4], b[4], e[4], o[4];
  for (int i = 0; i < 4; ++i) a[i] = y[2 * i], b[i] = y[2 * i + 1];
  idct4(a, e);
  dct4iv(b, o);
  for (int i = 0; i < 4; ++i) x[i] = e[i] + o[i], x[7 - i] = e[i] - o[i];
}

// Orthonormal 2-, 4- and 8-point transforms in place.
void smallScaled(double* v, int n, bool forward) {
  double r[8];
  if (n == 2) {
    r[0] = (v[0] + v[1]) * kC4, r[1] = (v[0] - v[1]) * kC4;
  } else if (n == 4) {
    if (forward) {
      const double a = v[0] + v[3], b = v[1] + v[2], d0 = v[0] - v[3], d1 = v[1] - v[2];
      r[0] = (a + b) * 0.5, r[2] = (a - b) * 0.5;
      r[1] = 0.6532814824381883 * d0 + 0.2705980500730985 * d1;
      r[3] = 0.2705980500730985 * d0 - 0.6532814824381883 * d1;
    } else {
      const double e0 = (v[0] + v[2]) * 0.5, e1 = (v[0] - v[2]) * 0.5;
      const double o0 = 0.6532814824381883 * v[1] + 0.2705980500730985 * v[3];
      const double o1 = 0.2705980500730985 * v[1] - 0.6532814824381883 * v[3];
      r[0] = e0 + o0, r[3] = e0 - o0, r[1] = e1 + o1, r[2] = e1 - o1;
    }
  } else if (forward) {
    fwd8(v, r);
    r[0] *= kInvSqrt8;
    for (int k = 1; k < 8; ++k) r[k] *= 0.5;
  } else {
    v[0] *= kInvSqrt8;
    for (int k = 1; k < 8; ++k) v[k] *= 0.5;
    inv8(v, r);
  }
  for (int i = 0; i < n; ++i) v[i] = r[i];
}

// ---- Per sample type: stage arithmetic -----------------------------------------

short saturate(double v) {
  const double r = std::nearbyint(v);
  return static_cast<short>(r > 32767.0 ? 32767 : (r < -32768.0 ? -32768 : r));
}
short saturate(std::int64_t v) { return static_cast<short>(v > 32767 ? 32767 : (v < -32768 ? -32768 : v)); }

template <class T>
struct Ops {
  using Tbl = double;
  static T add(T a, T b) { return static_cast<T>(static_cast<double>(a) + static_cast<double>(b)); }
  static T sub(T a, T b) { return static_cast<T>(static_cast<double>(a) - static_cast<double>(b)); }
  static T secant(T a, double e) { return static_cast<T>(static_cast<double>(a) * e); }
  static T store(double v) { return static_cast<T>(v); }
};

template <>
struct Ops<short> {
  using Tbl = std::uint16_t;
  static short add(short a, short b) { return saturate(std::int64_t{a} + b); }
  static short sub(short a, short b) { return saturate(std::int64_t{a} - b); }
  static short secant(short a, std::uint16_t e) { return saturate((std::int64_t{a} * e) >> 9); }
  static short store(double v) { return saturate(v); }
};

template <class T, void (*K)(const double*, double*)>
void kernel8(const T* in, T* out) {
  double x[8], y[8];
  for (int i = 0; i < 8; ++i) x[i] = in[i];
  K(x, y);
  for (int i = 0; i < 8; ++i) out[i] = Ops<T>::store(y[i]);
}

template <class T>
using Tables = const typename Ops<T>::Tbl* const*;

template <class T>
void lee(T* in, T* out, int n, Tables<T> tbls);

// DCT-IV of h values of d (destroyed) into out.
template <class T>
void odd(T* d, T* out, int h, Tables<T> tbls) {
  const typename Ops<T>::Tbl* sec = tbls[std::countr_zero(static_cast<unsigned>(h)) - 3];
  for (int j = 0; j < h; ++j) d[j] = Ops<T>::secant(d[j], sec[j]);
  if (h == 8) {
    kernel8<T, fwd8>(d, out);
  } else {
    lee(d, out, h, tbls);
  }
  for (int i = 0; i + 1 < h; ++i) out[i] = Ops<T>::add(out[i], out[i + 1]);
}

// D: unscaled DCT-II of `in` (destroyed) into `out`, n above 8.
template <class T>
void lee(T* in, T* out, int n, Tables<T> tbls) {
  const int h = n / 2;
  for (int i = 0; i < h; ++i) {
    out[i] = Ops<T>::add(in[i], in[n - 1 - i]);
    out[h + i] = Ops<T>::sub(in[i], in[n - 1 - i]);
  }
  if (h == 8) {
    kernel8<T, fwd8>(out, in);
  } else {
    lee(out, in, h, tbls);
  }
  odd(out + h, in + h, h, tbls);
  for (int i = 0; i < h; ++i) out[2 * i] = in[i], out[2 * i + 1] = in[h + i];
}

// U: unscaled DCT-III of `y` (destroyed) into `out`, n above 8.
template <class T>
void leeInverse(T* y, T* out, int n, Tables<T> tbls) {
  const int h = n / 2;
  for (int i = 0; i < h; ++i) out[i] = y[2 * i], out[h + i] = y[2 * i + 1];
  if (h == 8) {
    kernel8<T, inv8>(out, y);
  } else {
    leeInverse(out, y, h, tbls);
  }
  odd(out + h, y + h, h, tbls);
  for (int i = 0; i < h; ++i) {
    out[i] = Ops<T>::add(y[i], y[h + i]);
    out[n - 1 - i] = Ops<T>::sub(y[i], y[h + i]);
  }
}

template <class T>
void smallFast(const T* x, T* y, int n, bool forward) {
  double v[8];
  for (int i = 0; i < n; ++i) v[i] = x[i];
  smallScaled(v, n, forward);
  for (int i = 0; i < n; ++i) y[i] = Ops<T>::store(v[i]);
}

// Scaling of the float and double fast path: element 0 by b, others by b sqrt2.
template <class T>
void scaleFast(T* v, int n, double b) {
  v[0] = static_cast<T>(static_cast<double>(v[0]) * b);
  const double b2 = b * kSqrt2;
  for (int i = 1; i < n; ++i) v[i] = static_cast<T>(static_cast<double>(v[i]) * b2);
}

// The 16-bit scaling pass: 1/sqrt(n) (and sqrt2 beyond element 0) as a
// Q15 factor and a right shift by floor(log2(n)/2), rounded once.
void scaleFast(short* v, int n, double) {
  const int log2n = std::countr_zero(static_cast<unsigned>(n));
  const int shift = log2n / 2 + 15;
  const bool oddLog = (log2n & 1) != 0;
  const std::int64_t first = oddLog ? 23170 : 32768;  // 1/sqrt2 or 1
  const std::int64_t rest = oddLog ? 32768 : 46341;   // 1 or sqrt2
  const std::int64_t half = std::int64_t{1} << (shift - 1);
  for (int i = 0; i < n; ++i) v[i] = saturate((v[i] * (i == 0 ? first : rest) + half) >> shift);
}

// Fast path of an even power of two; the copy `x` is destroyed.
template <class T>
bool fastPath(T* x, T* dst, int n, bool forward) {
  if (n <= 8) {
    if (n == 8 && !(sizeof(T) == 2 ? ownPrepareDctFastTbl(0) : ownPrepareDctStageTbls(0))) return false;
    smallFast(x, dst, n, forward);
    return true;
  }
  const int stages = std::countr_zero(static_cast<unsigned>(n)) - 3;
  const bool ok = sizeof(T) == 2 ? ownPrepareDctFastTbl(stages) : ownPrepareDctStageTbls(stages);
  if (!ok) return false;
  RyxThreadContext* ctx = ryxGetThreadContext();
  const auto tbls = static_cast<Tables<T>>(sizeof(T) == 2 ? ctx->dctFastTbl : static_cast<void*>(ctx->dctStageTbls));
  if (forward) {
    lee(x, dst, n, tbls);
    scaleFast(dst, n, ctx->dctScaleB);
  } else {
    scaleFast(x, n, ctx->dctScaleB);
    leeInverse(x, dst, n, tbls);
  }
  return true;
}

// Direct path: folded sums over the cosine table C[e] = cos(e pi / 2n).
template <class T>
bool directPath(T* x, T* y, int n, bool forward) {
  if (!ownPrepareDctCosTbl(n)) return false;
  const RyxThreadContext* ctx = ryxGetThreadContext();
  const auto* c = static_cast<const double*>(ctx->dctCosTbl);
  const double a = ctx->dctScaleA, a2 = ctx->dctScaleA * kSqrt2;
  const std::uint32_t wrap = 4u * static_cast<std::uint32_t>(n);
  const int h = n / 2;
  const bool oddN = (n & 1) != 0;
  if (forward) {
    double sum = 0;
    for (int i = 0; i < n; ++i) sum += static_cast<double>(x[i]);
    const double mid = oddN ? static_cast<double>(x[h]) : 0.0;
    for (int k = 1; k < n; ++k) {
      const bool oddK = (k & 1) != 0;
      double acc = oddK ? 0.0 : ((k & 3) == 0 ? mid : -mid);
      std::uint32_t e = static_cast<std::uint32_t>(k);
      const std::uint32_t step = 2u * static_cast<std::uint32_t>(k);
      for (int i = 0; i < h; ++i) {
        const double lo = x[i], hi = x[n - 1 - i];
        acc += (oddK ? lo - hi : lo + hi) * c[e];
        e += step;
        if (e >= wrap) e -= wrap;
      }
      y[k] = static_cast<T>(acc * a2);
    }
    y[0] = static_cast<T>(sum * a);
    return true;
  }
  scaleFast(x, n, a);
  if (oddN) {
    double m = 0;
    for (int k = 0; k < n; k += 2) m += (k & 3) == 0 ? static_cast<double>(x[k]) : -static_cast<double>(x[k]);
    y[h] = static_cast<T>(m);
  }
  for (int j = 0; j < h; ++j) {
    double first = x[0], second = x[0];
    const std::uint32_t step = 2u * static_cast<std::uint32_t>(j) + 1u;
    std::uint32_t e = step;
    int k = 1;
    for (; k + 1 < n; k += 2) {
      const double p = static_cast<double>(x[k]) * c[e];
      e += step;
      if (e >= wrap) e -= wrap;
      const double q = static_cast<double>(x[k + 1]) * c[e];
      e += step;
      if (e >= wrap) e -= wrap;
      first += q + p;
      second += q - p;
    }
    if (k < n) {
      const double p = static_cast<double>(x[k]) * c[e];
      first += p;
      second -= p;
    }
    y[j] = static_cast<T>(first);
    y[n - 1 - j] = static_cast<T>(second);
  }
  return true;
}

bool dctChecks(const Site& site, const void* src, const void* dst, int len, int flags) {
  return ryx::passFirst(site, {{src == nullptr || dst == nullptr, "\nNull pointer to data buffer\n"},
                               {len < 1, "\nBad value of data buffer size\n"},
                               {(flags & 3) == 3 || (flags & 3) == 0, "\nBad value of the transform flag\n"}});
}

// Copy, transform, free; a missing block is reported and nothing written.
template <class T>
void dctRun(const Site& site, const T* src, T* dst, int len, int flags) {
  auto* copy = static_cast<T*>(ryx::fft::blockAlloc(static_cast<std::uint64_t>(len), sizeof(T)));
  if (copy == nullptr) {
    ryx::reportNoMem(site, "\nMemory allocation problem\n");
    return;
  }
  for (int i = 0; i < len; ++i) copy[i] = src[i];
  const bool forward = (flags & 1) != 0;
  bool ok = true;
  if constexpr (sizeof(T) == 2) {
    if (len == 1) {
      dst[0] = copy[0];
    } else {
      ok = fastPath(copy, dst, len, forward);
    }
  } else {
    ok = isPow2(len) && len > 1 ? fastPath(copy, dst, len, forward) : directPath(copy, dst, len, forward);
  }
  ryxFree(copy);
  if (!ok) ryx::reportNoMem(site, "\nMemory allocation problem\n");
}

template <class T>
void dct(const char* name, const T* src, T* dst, int len, int flags) {
  if (flags == RYX_Release) {
    ownFreeDctCosTbl();
    ownFreeDctStageTbls();
    return;
  }
  const Site site{name, kStem};
  if (dctChecks(site, src, dst, len, flags)) dctRun(site, src, dst, len, flags);
}

// 16-bit: other lengths through the float transform, powers of two on the
// saturating integer path.
void wDct(const short* src, short* dst, int len, int flags) {
  if (flags == RYX_Release) {
    if (!isPow2(len)) {
      ownFreeDctCosTbl();
      ownFreeDctStageTbls();
    } else {
      ownFreeDctFastTbl();
    }
    return;
  }
  const Site site{"ryxwDct", kStem};
  if (!dctChecks(site, src, dst, len, flags)) return;
  if (isPow2(len)) {
    dctRun(site, src, dst, len, flags);
    return;
  }
  auto* buf = static_cast<float*>(ryx::fft::blockAlloc(2 * static_cast<std::uint64_t>(len), sizeof(float)));
  if (buf == nullptr) {
    ryx::reportNoMem(site, "\nMemory allocation problem\n");
    return;
  }
  ryxsbIntToFloat(src, buf, len, 16, 0);
  // The float transform's own failure (no memory) leaves dst unwritten.
  const RyxStatus before = ryxGetErrStatus();
  ryxSetErrStatus(RYX_StsOk);
  dctRun(Site{"ryxsDct", kStem}, buf, buf + len, len, flags);
  if (ryxGetErrStatus() >= 0) {
    ryxSetErrStatus(before);
    ryxsbFloatToInt(buf + len, dst, len, 16, RYX_RoundNearest | RYX_ClipRange);
  }
  ryxFree(buf);
}

}  // namespace

extern "C" {

RYXAPI void ryxsDct(const float* src, float* dst, int len, int flags) { dct(__func__, src, dst, len, flags); }
RYXAPI void ryxdDct(const double* src, double* dst, int len, int flags) { dct(__func__, src, dst, len, flags); }
RYXAPI void ryxwDct(const short* src, short* dst, int len, int flags) { wDct(src, dst, len, flags); }

}  // extern "C"
