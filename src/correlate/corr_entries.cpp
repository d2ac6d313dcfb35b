// Entries of the floating cross- and auto-correlations (source group
// "ryxcorr"): checks in their documented order, then the direct sums or the
// frequency-domain blocks by operation count; the latter fall back to the
// direct sums, silently, when their working arrays are not available.
#include "correlate/corr_core.h"
#include "correlate/corr_checks.h"
#include "ryxcore/correlate.h"

namespace ryx::corr {

bool crossFreqWins(CorrShape shape, long long L, long long m) {
  const long long u = upPow2(m), P = 2 * u, b = (L + u - 1) / u;
  const double Ld = static_cast<double>(L), md = static_cast<double>(m), bd = static_cast<double>(b);
  const double ud = static_cast<double>(u), Pd = static_cast<double>(P);
  switch (shape) {
    case CorrShape::kReal:
      return 4 * md * Ld > 0.75 * opF(u) + (2 * 8 * ud + 0.75 * opF(P) + 14 * ud) * bd + opG(u);
    case CorrShape::kMixed:
      return 8 * md * Ld > opF(P) + (opF(P) + opH(u) + opF(u) + 14 * Pd) * bd;
    case CorrShape::kComplex:
      return 14 * md * Ld > opF(P) + (2 * opF(P) + 14 * Pd) * bd;
  }
  return false;
}

bool autoFreqWins(bool complex, long long L, long long m) {
  const long long u = upPow2(m), P = 2 * u, b = (L + u - 1) / u;
  // sum over k < m of max(L - k, 0), with m <= L.
  const double terms = static_cast<double>(m) * static_cast<double>(L) - static_cast<double>(m) * (m - 1) / 2;
  const double ud = static_cast<double>(u), Pd = static_cast<double>(P), bd = static_cast<double>(b);
  if (complex) return 11 * terms > opF(P) + (opF(P) + 12 * Pd * 0.5 + 4 * Pd) * bd;
  return 4 * terms > opF(u) + (6 * ud + opH(u) + opF(u) + 14 * ud) * bd + opG(u);
}

namespace {

constexpr const char* kStem = "ryxcorr";

template <class A, class B>
constexpr CorrShape shapeOf() {
  if constexpr (kComplex<A> && kComplex<B>) return CorrShape::kComplex;
  else if constexpr (kComplex<A> || kComplex<B>) return CorrShape::kMixed;
  else return CorrShape::kReal;
}

template <class A, class B, class Y = ResultOf<A, B>>
void cross(const char* name, const A* s1, int n1, const B* s2, int n2, Y* dst, int loLag, int hiLag) {
  const Site site{name, kStem};
  if (!crossArgsPass(site, s1, n1, s2, n2, dst, loLag, hiLag)) return;
  ryxSetErrStatus(RYX_StsOk);
  const long long lagLen = static_cast<long long>(hiLag) - loLag + 1;
  if (crossFreqWins(shapeOf<A, B>(), n1, lagLen) &&
      corrFreq(site, s1, n1, s2, n2, loLag, lagLen, true, [&](const auto* acc, auto scale) {
        for (long long i = 0; i < lagLen; ++i) dst[i] = fromComplex<Y>(scaled(acc[i], scale));
      }))
    return;
  crossDirect(s1, n1, s2, n2, dst, loLag, lagLen);
}

template <class T>
void autoCorr(const char* name, const T* src, int len, T* dst, int nLags, int type) {
  using R = Scalar<T>;
  const Site site{name, kStem};
  if (!autoArgsPass(site, src, len, dst, nLags, type)) return;
  ryxSetErrStatus(RYX_StsOk);
  // Type rule: the divisor of lag k.
  auto divisor = [&](long long k) { return static_cast<R>(type == RYX_CorrBiased ? len : len - k); };
  if (autoFreqWins(kComplex<T>, len, nLags) &&
      corrFreq(site, src, len, src, len, 0, nLags, !kComplex<T>, [&](const auto* acc, R scale) {
        for (long long k = 0; k < nLags; ++k)
          dst[k] = fromComplex<T>(scaled(acc[k], type == RYX_CorrNormal ? scale : scale / divisor(k)));
      }))
    return;
  crossDirect(src, len, src, len, dst, 0, nLags);
  if (type == RYX_CorrBiased) {
    const R inv = static_cast<R>(1) / static_cast<R>(len);
    for (int k = 0; k < nLags; ++k) dst[k] = scaled(dst[k], inv);
  } else if (type == RYX_CorrUnbiased) {
    for (int k = 0; k < nLags; ++k) {
      if constexpr (kComplex<T>) dst[k] = {dst[k].re / divisor(k), dst[k].im / divisor(k)};
      else dst[k] = dst[k] / divisor(k);
    }
  }
}

}  // namespace
}  // namespace ryx::corr

using namespace ryx::corr;

extern "C" {
void ryxsCrossCorr(const float* s1, int n1, const float* s2, int n2, float* dst, int lo, int hi) {
  cross("ryxsCrossCorr", s1, n1, s2, n2, dst, lo, hi);
}
void ryxdCrossCorr(const double* s1, int n1, const double* s2, int n2, double* dst, int lo, int hi) {
  cross("ryxdCrossCorr", s1, n1, s2, n2, dst, lo, hi);
}
void ryxcCrossCorr(const SCplx* s1, int n1, const SCplx* s2, int n2, SCplx* dst, int lo, int hi) {
  cross("ryxcCrossCorr", s1, n1, s2, n2, dst, lo, hi);
}
void ryxzCrossCorr(const DCplx* s1, int n1, const DCplx* s2, int n2, DCplx* dst, int lo, int hi) {
  cross("ryxzCrossCorr", s1, n1, s2, n2, dst, lo, hi);
}
void ryxscCrossCorr(const float* s1, int n1, const SCplx* s2, int n2, SCplx* dst, int lo, int hi) {
  cross("ryxscCrossCorr", s1, n1, s2, n2, dst, lo, hi);
}
void ryxcsCrossCorr(const SCplx* s1, int n1, const float* s2, int n2, SCplx* dst, int lo, int hi) {
  cross("ryxcsCrossCorr", s1, n1, s2, n2, dst, lo, hi);
}
void ryxdzCrossCorr(const double* s1, int n1, const DCplx* s2, int n2, DCplx* dst, int lo, int hi) {
  cross("ryxdzCrossCorr", s1, n1, s2, n2, dst, lo, hi);
}
void ryxzdCrossCorr(const DCplx* s1, int n1, const double* s2, int n2, DCplx* dst, int lo, int hi) {
  cross("ryxzdCrossCorr", s1, n1, s2, n2, dst, lo, hi);
}
void ryxsAutoCorr(const float* src, int len, float* dst, int nLags, int type) {
  autoCorr("ryxsAutoCorr", src, len, dst, nLags, type);
}
void ryxdAutoCorr(const double* src, int len, double* dst, int nLags, int type) {
  autoCorr("ryxdAutoCorr", src, len, dst, nLags, type);
}
void ryxcAutoCorr(const SCplx* src, int len, SCplx* dst, int nLags, int type) {
  autoCorr("ryxcAutoCorr", src, len, dst, nLags, type);
}
void ryxzAutoCorr(const DCplx* src, int len, DCplx* dst, int nLags, int type) {
  autoCorr("ryxzAutoCorr", src, len, dst, nLags, type);
}
}
