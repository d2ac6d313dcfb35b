// Complex DFT of any length, float and double (source group "ryxdft").
//
// The method goes by length: powers of two run the FFT (its flags, checks
// and scaling), 170 and up a chirp transform on one FFT of M >= 2n-1
// points, shorter lengths a folded direct sum. Tables come from the
// thread's DFT twiddle lists: the n-entry table for the direct sum, the
// 2n-entry one (W_2n^j) for the chirp. Float work goes to scratch slot 1,
// double work to a block taken and freed per call.
#include <cstdint>

#include "transform/dft_direct.h"
#include "transform/fft_internal.h"
#include "frame/thread_context.h"

namespace {

using ryx::Site;
using ryx::dft::traceIfFailed;

constexpr int kChirpFrom = 170;

template <class C>
struct DftType;

template <>
struct DftType<SCplx> {
  using T = float;
  using Acc = double;
  static void fftNip(const SCplx* s, SCplx* d, int order, int flags) { ryxcFftNip(s, d, order, flags); }
  static void fft(SCplx* s, int order, int flags) { ryxcFft(s, order, flags); }
  static const SCplx* table(int n) { return ryxcGetDftTwdTbl(n); }
  static void release() {
    ownFreeScratchZSlot(1);
    ownsFreeFftTbls();
  }
  static void scale(SCplx* d, int n) {
    ryxsbMpy1(static_cast<float>(1.0 / static_cast<double>(n)), reinterpret_cast<float*>(d), 2 * n);
  }
};

template <>
struct DftType<DCplx> {
  using T = double;
  using Acc = long double;
  static void fftNip(const DCplx* s, DCplx* d, int order, int flags) { ryxzFftNip(s, d, order, flags); }
  static void fft(DCplx* s, int order, int flags) { ryxzFft(s, order, flags); }
  static const DCplx* table(int n) { return ryxzGetDftTwdTbl(n); }
  static void release() { owndFreeFftTbls(); }
  static void scale(DCplx* d, int n) { ryxdbMpy1(1.0 / static_cast<double>(n), reinterpret_cast<double*>(d), 2 * n); }
};

// Working array: float from scratch slot 1 (kept), double from a fresh
// block (freed when the holder goes).
template <class C>
struct Work {
  C* data = nullptr;
  explicit Work(std::uint64_t count) {
    if constexpr (sizeof(C) == sizeof(SCplx)) {
      if (count <= 0x7FFFFFFF) data = ownGetScratchZ(static_cast<int>(count), 1);
    } else {
      data = static_cast<C*>(ryx::fft::blockAlloc(count, sizeof(C)));
    }
  }
  ~Work() {
    if constexpr (sizeof(C) != sizeof(SCplx)) ryxFree(data);
  }
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;
};

template <class C>
C mul(C a, C b) {
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
template <class C>
C conj(C a) {
  return {a.re, -a.im};
}

// Bluestein: x[i] W^(ik) = W^(i^2/2) W^(k^2/2) W^(-(k-i)^2/2), with the
// chirp C[i] = W_2n^(i^2 mod 2n) and one circular convolution of M points.
template <class C>
void chirpDft(const Site& site, const C* x, C* dst, int n, int flags) {
  using P = DftType<C>;
  const std::uint32_t m = static_cast<std::uint32_t>(ryx::dft::log2Of(2 * static_cast<std::uint64_t>(n) - 1));
  const std::uint64_t bigM = std::uint64_t{1} << m;
  const bool init = (flags & RYX_Init) != 0;
  if (init) {
    P::fft(nullptr, static_cast<int>(m), RYX_Init);
    traceIfFailed(site, "out ryxcFft Init");
  }
  const C* tbl = n <= 0x3FFFFFFF ? P::table(2 * n) : nullptr;
  if (init && sizeof(C) != sizeof(SCplx)) {
    if (tbl == nullptr) ryx::reportNoMem(site, "No working memory");
    return;
  }
  Work<C> work(tbl == nullptr ? 0 : static_cast<std::uint64_t>(n) + 2 * bigM);
  if (tbl == nullptr || work.data == nullptr) {
    ryx::reportNoMem(site, "No working memory");
    return;
  }
  if (init) return;
  C* a = work.data;
  C* b = a + bigM;
  C* c = b + bigM;
  const std::uint32_t twoN = 2u * static_cast<std::uint32_t>(n);
  std::uint32_t idx = 0;
  for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(n); ++i) {
    c[i] = tbl[idx];
    idx += 2 * i + 1;
    if (idx >= twoN) idx -= twoN;
  }
  const bool forward = (flags & RYX_Forward) != 0;
  for (int i = 0; i < n; ++i) {
    b[i] = forward ? conj(c[i]) : c[i];
    if (!forward) c[i] = conj(c[i]);
    a[i] = mul(x[i], c[i]);
  }
  if (static_cast<std::uint64_t>(n) < bigM) {
    for (std::uint64_t i = static_cast<std::uint64_t>(n); i < bigM; ++i) a[i] = b[i] = C{};
    for (int i = 1; i < n; ++i) b[bigM - i] = b[i];
  }
  P::fft(a, static_cast<int>(m), RYX_Forward);
  traceIfFailed(site, "out ryxcFft Forw 1");
  P::fft(b, static_cast<int>(m), RYX_Forward);
  traceIfFailed(site, "out ryxcFft Forw 2");
  for (std::uint64_t i = 0; i < bigM; ++i) a[i] = mul(a[i], b[i]);
  P::fft(a, static_cast<int>(m), RYX_Inverse);
  traceIfFailed(site, "out ryxcFft Inv");
  for (int k = 0; k < n; ++k) dst[k] = mul(c[k], a[k]);
  if (!forward && !(flags & RYX_KeepScale)) P::scale(dst, n);
}

// Folded direct sum. Pairs S[i] = x[i] + x[n-i], D[i] = x[i] - x[n-i]
// give X[k] = P + iQ and X[n-k] = P - iQ (forward; conjugate roles
// inverse) with P = x0 (+-x[h]) + sum S c, Q = sum D t, (c, t) = W^(ik).
template <class C>
void directDft(const Site& site, const C* x, C* dst, int n, int flags) {
  using P = DftType<C>;
  using A = typename P::Acc;
  const C* tbl = P::table(n);
  Work<C> work(tbl == nullptr ? 0 : static_cast<std::uint64_t>(n));
  if (tbl == nullptr || work.data == nullptr) {
    ryx::reportNoMem(site, "No working memory");
    return;
  }
  if (flags & RYX_Init) return;
  const bool even = (n & 1) == 0;
  const int h = even ? n / 2 : (n + 1) / 2;
  C* sd = work.data;  // S[1], D[1], S[2], D[2], ...
  A sumRe = x[0].re, sumIm = x[0].im;
  A altRe = x[0].re, altIm = x[0].im;  // a = S[i] - a
  for (int i = 1; i < h; ++i) {
    C s{x[i].re + x[n - i].re, x[i].im + x[n - i].im};
    C d{x[i].re - x[n - i].re, x[i].im - x[n - i].im};
    sd[2 * (i - 1)] = s;
    sd[2 * (i - 1) + 1] = d;
    sumRe += s.re;
    sumIm += s.im;
    altRe = s.re - altRe;
    altIm = s.im - altIm;
  }
  const C mid = even ? x[h] : C{};
  if (even) {
    sumRe += mid.re;
    sumIm += mid.im;
    // a holds (-1)^(h-1) (x0 + sum (-1)^i S[i]); X[h] adds (-1)^h x[h].
    const bool hOdd = (h & 1) != 0;
    dst[h].re = static_cast<typename P::T>(hOdd ? altRe - mid.re : mid.re - altRe);
    dst[h].im = static_cast<typename P::T>(hOdd ? altIm - mid.im : mid.im - altIm);
  }
  dst[0].re = static_cast<typename P::T>(sumRe);
  dst[0].im = static_cast<typename P::T>(sumIm);
  const bool forward = (flags & RYX_Forward) != 0;
  for (int k = 1; k < h; ++k) {
    const A sign = (k & 1) ? -1 : 1;
    A pRe = static_cast<A>(x[0].re) + sign * mid.re, pIm = static_cast<A>(x[0].im) + sign * mid.im;
    A qRe = 0, qIm = 0;
    int j = k;
    for (int i = 0; i < h - 1; ++i) {
      const A c = tbl[j].re, t = tbl[j].im;
      pRe += sd[2 * i].re * c;
      pIm += sd[2 * i].im * c;
      qRe += sd[2 * i + 1].re * t;
      qIm += sd[2 * i + 1].im * t;
      j += k;
      if (j >= n) j -= n;
    }
    const A plusRe = pRe - qIm, plusIm = pIm + qRe;   // P + iQ
    const A minusRe = pRe + qIm, minusIm = pIm - qRe;  // P - iQ
    using T = typename P::T;
    dst[k] = forward ? C{static_cast<T>(plusRe), static_cast<T>(plusIm)} : C{static_cast<T>(minusRe), static_cast<T>(minusIm)};
    dst[n - k] =
        forward ? C{static_cast<T>(minusRe), static_cast<T>(minusIm)} : C{static_cast<T>(plusRe), static_cast<T>(plusIm)};
  }
  if (!forward && !(flags & RYX_KeepScale)) P::scale(dst, n);
}

template <class C>
void dft(const char* name, const C* src, C* dst, int length, int flags) {
  using P = DftType<C>;
  const Site site{name, ryx::dft::kStem};
  if (flags & RYX_Release) {
    P::release();
    return;
  }
  if (!ryx::passFirst(site, {{length < 1, "length<=0"}})) return;
  const bool init = (flags & RYX_Init) != 0;
  if (!init && !ryx::passFirst(site, {{src == nullptr, "src==0"},
                                      {dst == nullptr, "dst==0"},
                                      {(flags & 1) && (flags & 2), "(flags & 1) && (flags & 2)"},
                                      {(flags & 1) == 0 && (flags & 2) == 0, "(flags & 1)==0 && (flags & 2)==0"}}))
    return;
  if (ryx::dft::isPow2(length)) {
    const int order = ryx::dft::log2Of(static_cast<std::uint32_t>(length));
    if (init) {
      P::fftNip(nullptr, nullptr, order, flags);
      traceIfFailed(site, "out ryxcFftNip RYX_Init");
    } else {
      P::fftNip(src, dst, order, flags);
      traceIfFailed(site, "out ryxcFftNip calc. FFT");
    }
    return;
  }
  if (length >= kChirpFrom) {
    chirpDft(site, src, dst, length, flags);
  } else {
    directDft(site, src, dst, length, flags);
  }
}

}  // namespace

extern "C" {

RYXAPI void ryxcDft(const SCplx* src, SCplx* dst, int length, int flags) { dft(__func__, src, dst, length, flags); }
RYXAPI void ryxzDft(const DCplx* src, DCplx* dst, int length, int flags) { dft(__func__, src, dst, length, flags); }

}  // extern "C"
