// Decomposition and reconstruction entries (source group "ryxwlt").
//
// Decomposition: stage l turns the approximation of level l-1 (src at the
// first stage, then dst[0..)) into the next approximation, written to
// dst[0..), and the details of level l, written to their place from the
// end of dst backwards. A stage reads its input from the working array
// (extended, or a plain copy for the 2-tap kernels) whenever the input lies
// in dst. Reconstruction runs the stages from level L down, the
// approximation coming from src and then from dst, the details from src.
// Level 0 copies. The 16-bit form runs Haar decomposition up to level 14
// in integers; all else converts to float in the working array, runs the
// float kernels and rounds back to nearest with clipping.
#include <algorithm>

#include "frame/checks.h"
#include "wavelet/wavelet_common.h"
#include "wavelet/wavelet_kernels.h"

namespace ryx::wavelet {
namespace {

enum class Kernel { kGeneral, kHaar, kSpline2 };

Kernel kernelOf(const RyxWtState* st) {
  if (st->wtType == 1 || (st->wtType == 2 && st->par1 == 1)) return Kernel::kHaar;
  if ((st->wtType == 6 || st->wtType == 7) && st->par1 == 1 && st->par2 == 1) return Kernel::kSpline2;
  return Kernel::kGeneral;
}

template <class F>
Bank<F> bankOf(const RyxWtState* st) {
  Bank<F> b{};
  for (int i = 0; i < 4; ++i) {
    b.taps[i] = static_cast<const F*>(st->tapFilt[i]);
    b.len[i] = st->lenFilt[i];
    b.ofs[i] = st->ofsFilt[i];
  }
  return b;
}

// All stages of a float or double decomposition; `work` holds at least
// len + 2*max(lenFilt) elements.
template <class T, class F>
void decompose(const RyxWtState* st, const T* src, T* dst, T* work) {
  const Kernel kind = kernelOf(st);
  const Bank<F> bank = bankOf<F>(st);
  int pos = st->lenDec;
  for (int l = 1; l <= st->level; ++l) {
    const int m = st->levelLen[l - 1], n = st->levelLen[l];
    pos -= n;
    const T* x = l == 1 ? src : dst;
    if (kind != Kernel::kGeneral && l > 1) {
      std::copy(dst, dst + m, work);
      x = work;
    }
    switch (kind) {
      case Kernel::kHaar: decHaar(x, m, dst, dst + pos); break;
      case Kernel::kSpline2: decSpline2(x, m, dst, dst + pos); break;
      default: decGeneral(x, m, bank, dst, dst + pos, work);
    }
  }
}

template <class T, class F>
void reconstruct(const RyxWtState* st, const T* src, T* dst, T* work) {
  const Kernel kind = kernelOf(st);
  const Bank<F> bank = bankOf<F>(st);
  const int top = st->level;
  int pos = st->levelLen[top];
  for (int l = top; l >= 1; --l) {
    const int n = st->levelLen[l], m = st->levelLen[l - 1];
    const T* lo = l == top ? src : dst;
    const T* hi = src + pos;
    pos += n;
    if (kind != Kernel::kGeneral && l < top) {
      std::copy(dst, dst + n, work);
      lo = work;
    }
    switch (kind) {
      case Kernel::kHaar: recHaar(lo, hi, n, m, dst); break;
      case Kernel::kSpline2: recSpline2(lo, hi, n, m, dst); break;
      default: recGeneral(lo, hi, n, m, bank, dst, work);
    }
  }
}

// 16-bit Haar in integers, level 1..14. Stage t keeps the unshifted pair
// sums (sums of 2^t samples) in `acc` and stores the detail (b - a) >> t;
// an odd last sample stands for a pair of itself (2a, detail 0), so the
// approximation is sum >> L throughout (for that sample the same as
// a >> (L-1)).
void decHaarInt(const RyxWtState* st, const short* src, short* dst, int* acc) {
  int pos = st->lenDec;
  const int top = st->level;
  for (int t = 1; t <= top; ++t) {
    const int m = st->levelLen[t - 1], n = st->levelLen[t];
    pos -= n;
    const int pairs = m / 2;
    for (int i = 0; i < pairs; ++i) {
      const int a = t == 1 ? src[2 * i] : acc[2 * i];
      const int b = t == 1 ? src[2 * i + 1] : acc[2 * i + 1];
      acc[i] = a + b;
      dst[pos + i] = static_cast<short>((b - a) >> t);
    }
    if (m & 1) {
      const int a = t == 1 ? src[m - 1] : acc[m - 1];
      acc[pairs] = 2 * a;
      dst[pos + pairs] = 0;
    }
  }
  for (int i = 0; i < st->levelLen[top]; ++i) dst[i] = static_cast<short>(acc[i] >> top);
}

// The float route of the 16-bit form: input converted into the working
// array after the float kernels' part, result built there and rounded.
template <bool kForward>
void viaFloat(const RyxWtState* st, const short* src, short* dst) {
  const int len = st->levelLen[0], lenDec = st->lenDec;
  const int maxFilt = std::max({st->lenFilt[0], st->lenFilt[1], st->lenFilt[2], st->lenFilt[3]});
  float* work = static_cast<float*>(st->work);
  float* in = work + len + 2 * maxFilt;
  float* out = in + std::max(len, lenDec);
  const int inLen = kForward ? len : lenDec, outLen = kForward ? lenDec : len;
  ryxsbIntToFloat(src, in, inLen, 16, 0);
  if (kForward) decompose<float, float>(st, in, out, work);
  else reconstruct<float, float>(st, in, out, work);
  ryxsbFloatToInt(out, dst, outLen, 16, RYX_ClipRange | RYX_RoundNearest);
}

template <class T>
bool passRecord(const char* name, const RyxWtState* st, const T* src, T* dst) {
  ryxSetErrStatus(RYX_StsOk);
  return passFirst({name, kStem}, {{st == nullptr, kNullState},
                                   {src == nullptr, "'NULL' pointer in 'src' argument was passed!"},
                                   {dst == nullptr, "'NULL' pointer in 'dst' argument was passed!"},
                                   {st != nullptr && st->core != Form<T>::core,
                                    "Error in the (float, double or short) core of wtState!"}});
}

template <class T, bool kForward>
RyxStatus run(const char* name, RyxWtState* st, const T* src, T* dst) {
  if (!passRecord(name, st, src, dst)) return ryxGetErrStatus();
  if (st->level == 0) {
    std::copy(src, src + st->levelLen[0], dst);
    return RYX_StsOk;
  }
  if constexpr (std::is_same_v<T, short>) {
    if (kForward && kernelOf(st) == Kernel::kHaar && st->level <= 14)
      decHaarInt(st, src, dst, static_cast<int*>(st->work));
    else viaFloat<kForward>(st, src, dst);
    ryxSetErrStatus(RYX_StsOk);
  } else {
    using F = typename Form<T>::Tap;
    if (kForward) decompose<T, F>(st, src, dst, static_cast<T*>(st->work));
    else reconstruct<T, F>(st, src, dst, static_cast<T*>(st->work));
  }
  return RYX_StsOk;
}

}  // namespace
}  // namespace ryx::wavelet

using namespace ryx::wavelet;

extern "C" {

RYXAPI RyxStatus ryxdWtDecompose(RyxWtState* st, const double* src, double* dst) {
  return run<double, true>(__func__, st, src, dst);
}
RYXAPI RyxStatus ryxsWtDecompose(RyxWtState* st, const float* src, float* dst) {
  return run<float, true>(__func__, st, src, dst);
}
RYXAPI RyxStatus ryxwWtDecompose(RyxWtState* st, const short* src, short* dst) {
  return run<short, true>(__func__, st, src, dst);
}
RYXAPI RyxStatus ryxdWtReconstruct(RyxWtState* st, const double* src, double* dst) {
  return run<double, false>(__func__, st, src, dst);
}
RYXAPI RyxStatus ryxsWtReconstruct(RyxWtState* st, const float* src, float* dst) {
  return run<float, false>(__func__, st, src, dst);
}
RYXAPI RyxStatus ryxwWtReconstruct(RyxWtState* st, const short* src, short* dst) {
  return run<short, false>(__func__, st, src, dst);
}

}  // extern "C"
