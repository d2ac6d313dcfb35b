// One-dimensional convolution: the method choice and the three methods,
// written once over the operand types.
//
// Methods (internal names ryx?Conv0, ryx?Conv1, ryx?Convm), all with the
// longer operand first: a direct sum; one transform of the whole result;
// overlap-save blocks. A positive `mode` writes y, zero or below adds to
// it; in the block method its magnitude also sets the block length.
#pragma once

#include "frame/checks.h"
#include "correlate/freq_domain.h"

namespace ryx::corr {

// ---- Method choice ---------------------------------------------------------

enum class ConvMethod { kDirect, kSingle, kOverlap };
struct ConvChoice {
  ConvMethod method;
  int mode;
};

// The limits and cost tables of one routine. `blockB`/`blockA` price the
// per-block transform of x and the spectrum product, `shortB` the one
// transform of h; the single transform of everything costs
// singleB + singleB2 + singleA at its order (2*B + A for one type).
struct ConvCosts {
  int upper;        // direct only for S below this
  int small;        // direct for S at or below this
  const int* limit;  // T[S], S from small + 1
  const double* blockA;
  const double* blockB;
  const double* shortB;
  const double* singleB;
  const double* singleB2;
  const double* singleA;
  bool realPair;  // real forms count two blocks as one when L > 32 S
};

enum class ConvKind { s, c, cs, sc, d, z, zd, dz };
const ConvCosts& convCosts(ConvKind kind);

// The method and mode for longer length L and shorter length S.
ConvChoice chooseConv(const ConvCosts& k, int L, int S);

// Block length of the overlap-save method for S and N = L + S - 1.
long long overlapBlock(int S, long long N, int mode);

// ---- Methods -----------------------------------------------------------------

// Names of one routine and its three methods, and its source group.
struct ConvNames {
  const char* entry;
  const char* direct;
  const char* single;
  const char* overlap;
  const char* file;
};

template <class X, class H>
bool convArgsPass(const char* name, const char* file, const X* x, int xLen, const H* h, int hLen, const void* y) {
  return passFirst({name, file},
                   {{x == nullptr, "x==0"}, {xLen < 1, "xLen<=0"}, {h == nullptr, "h==0"}, {hLen < 1, "hLen<=0"},
                    {y == nullptr, "y==0"}});
}

template <class Y>
void emit(Y* y, const Y* v, long long n, bool write) {
  for (long long i = 0; i < n; ++i) {
    if (write) y[i] = v[i];
    else addTo(y[i], v[i]);
  }
}

// Direct sum: the even parts pairwise, then the last tap of an odd S over
// the even part of x, then the last sample of an odd L over all of h.
template <class X, class H, class Y = ResultOf<X, H>>
void convDirect(const ConvNames& n, const X* x, int L, const H* h, int S, Y* y, int mode) {
  if (!convArgsPass(n.direct, n.file, x, L, h, S, y)) return;
  const long long N = static_cast<long long>(L) + S - 1;
  if (mode > 0) {
    for (long long k = 0; k < N; ++k) y[k] = zero<Y>();
  }
  const int le = L & ~1, se = S & ~1;
  for (int i = 0; i < le; i += 2) {
    for (int j = 0; j < se; j += 2) {
      addTo(y[i + j], mul(x[i], h[j]));
      addTo(y[i + j + 1], mul(x[i], h[j + 1]));
      addTo(y[i + j + 1], mul(x[i + 1], h[j]));
      addTo(y[i + j + 2], mul(x[i + 1], h[j + 1]));
    }
  }
  if (S & 1) {
    for (int i = 0; i < le; ++i) addTo(y[i + S - 1], mul(x[i], h[S - 1]));
  }
  if (L & 1) {
    for (int j = 0; j < S; ++j) addTo(y[L - 1 + j], mul(x[L - 1], h[j]));
  }
}

// The spectra of one transform size: both operands' arrays, the product
// and the inverse. Real operands go through the real transform in RCPack;
// complex ones through the complex transform, left bit-reversed when both
// are complex, natural when mixed (the product then reads the real
// operand's packed bins).
template <class X, class H>
struct ConvSpectra {
  using R = Scalar<X>;
  using Y = ResultOf<X, H>;
  static constexpr bool kReal = !kComplex<X> && !kComplex<H>;
  static constexpr bool kMixed = kComplex<X> != kComplex<H>;
  int order = 0;
  int P = 0;
  X* xb = nullptr;
  H* hb = nullptr;
  Y* yb = nullptr;

  bool take(Scratch& s, int o) {
    order = o;
    P = 1 << o;
    xb = s.take<X>(P);
    hb = s.take<H>(P);
    if constexpr (kMixed) yb = s.take<Y>(P);
    else yb = xb;
    return s.ok();
  }
  void init() const {
    if constexpr (!kComplex<X> || !kComplex<H>) Fft<R>::real(nullptr, order, RYX_Init);
    if constexpr (kReal) Fft<R>::ccs(nullptr, order, RYX_Init);
    if constexpr (kComplex<X> || kComplex<H>) Fft<R>::cplx(nullptr, order, RYX_Init);
  }
  template <class T>
  void forward(T* b) const {
    if constexpr (kComplex<T>) Fft<R>::cplx(b, order, RYX_Forward | (kMixed ? 0 : RYX_OutReversed));
    else Fft<R>::real(b, order, RYX_Forward | RYX_RCPackOut);
  }
  // xb times hb, back to samples; the result's array.
  const Y* productInverse() const {
    if constexpr (kReal) {
      Fft<R>::mpyPack(hb, xb, order);
      Fft<R>::ccs(xb, order, RYX_Inverse | RYX_RCPackIn);
    } else if constexpr (!kMixed) {
      for (int k = 0; k < P; ++k) xb[k] = mul(xb[k], hb[k]);
      Fft<R>::cplx(xb, order, RYX_Inverse | RYX_InReversed);
    } else {
      for (int k = 0; k < P; ++k) {
        if constexpr (kComplex<X>) yb[k] = mul(xb[k], packedBin(hb, P, k));
        else yb[k] = mul(packedBin(xb, P, k), hb[k]);
      }
      Fft<R>::cplx(yb, order, RYX_Inverse);
    }
    return yb;
  }
};

template <class T>
void copyPadded(T* dst, int P, const T* src, long long from, long long len) {
  for (int i = 0; i < P; ++i) {
    const long long k = from + i;
    dst[i] = k >= 0 && k < len ? src[k] : zero<T>();
  }
}

// One transform of the whole result.
template <class X, class H, class Y = ResultOf<X, H>>
void convSingle(const ConvNames& n, const X* x, int L, const H* h, int S, Y* y, int mode) {
  const Site site{n.single, n.file};
  if (!convArgsPass(n.single, n.file, x, L, h, S, y)) return;
  const bool write = mode > 0;
  if (L + S == 2) {
    const Y one[1] = {mul(x[0], h[0])};
    emit(y, one, 1, write);
    return;
  }
  const long long N = static_cast<long long>(L) + S - 1;
  Scratch scratch;
  ConvSpectra<X, H> sp;
  if (!sp.take(scratch, ceilLog2(N))) return reportNoMem(site, "NULL Pointer");
  sp.init();
  if (failedInside(site)) return;
  copyPadded(sp.xb, sp.P, x, 0, L);
  copyPadded(sp.hb, sp.P, h, 0, S);
  sp.forward(sp.xb);
  sp.forward(sp.hb);
  const Y* out = sp.productInverse();
  if (failedInside(site)) return;
  emit(y, out, N, write);
}

// Overlap-save: h transformed once, then blocks of P samples of x that
// overlap by S - 1, each keeping P - (S - 1) outputs.
template <class X, class H, class Y = ResultOf<X, H>>
void convOverlap(const ConvNames& n, const X* x, int L, const H* h, int S, Y* y, int mode) {
  const Site site{n.overlap, n.file};
  if (!convArgsPass(n.overlap, n.file, x, L, h, S, y)) return;
  const bool write = mode > 0;
  const long long N = static_cast<long long>(L) + S - 1;
  const long long P = overlapBlock(S, N, mode);
  const long long seg = P - (S - 1);
  Scratch scratch;
  ConvSpectra<X, H> sp;
  if (!sp.take(scratch, ceilLog2(P))) return reportNoMem(site, "NULL Pointer");
  sp.init();
  if (failedInside(site)) return;
  copyPadded(sp.hb, sp.P, h, 0, S);
  sp.forward(sp.hb);
  // First block: x from 0, outputs from position 0.
  copyPadded(sp.xb, sp.P, x, 0, seg < L ? seg : L);
  sp.forward(sp.xb);
  const Y* out = sp.productInverse();
  if (failedInside(site)) return;
  if (N <= P) return emit(y, out, N, write);
  emit(y, out, seg, write);
  for (long long o = seg; o < N; o += seg) {
    copyPadded(sp.xb, sp.P, x, o - (S - 1), L);
    sp.forward(sp.xb);
    out = sp.productInverse();
    if (failedInside(site)) return;
    emit(y + o, out + (S - 1), N - o < seg ? N - o : seg, write);
  }
}

// The floating front end: checks, the longer operand first, the method.
template <class X, class H, class Y = ResultOf<X, H>>
RyxStatus convRun(const ConvNames& n, const ConvCosts& costs, const X* x, int L, const H* h, int S, Y* y) {
  ryxSetErrStatus(RYX_StsOk);
  const ConvChoice c = chooseConv(costs, L, S);
  switch (c.method) {
    case ConvMethod::kDirect: convDirect(n, x, L, h, S, y, c.mode); break;
    case ConvMethod::kSingle: convSingle(n, x, L, h, S, y, c.mode); break;
    case ConvMethod::kOverlap: convOverlap(n, x, L, h, S, y, c.mode); break;
  }
  return ryxGetErrStatus();
}

}  // namespace ryx::corr
