// Entries of the 16-bit correlations (source group "ryxcorrw"). Always
// direct: exact 32-bit integer sums of conj(a) b (wrapping as 32-bit
// registers do) in a working array, each of its two parts (negative lags,
// the others) rounded up to a multiple of four, then narrowed by the shared
// rule with one factor for the whole result. Biased and unbiased
// autocorrelation take a float quotient per lag and the shared float rule.
#include <cstdint>

#include "correlate/corr_core.h"
#include "correlate/corr_checks.h"
#include "ryxcore/correlate.h"
#include "vector/scale_narrow.h"

namespace ryx::corr {
namespace {

constexpr const char* kStem = "ryxcorrw";
constexpr const char* kNullScale = "Null scale factor pointer";

template <class T>
constexpr bool kWide = std::is_same_v<T, WCplx>;

template <class T>
std::int32_t realPart(T v) {
  if constexpr (kWide<T>) return v.re;
  else return v;
}
template <class T>
std::int32_t imagPart(T v) {
  if constexpr (kWide<T>) return v.im;
  else return 0;
}

struct Sum32 {
  std::uint32_t re = 0;
  std::uint32_t im = 0;
};

// Sums of conj(a) b for the lags lo .. lo + lagLen - 1 into `out` (one or
// two 32-bit values per lag); false when the working array is refused.
template <class A, class B>
std::int32_t* lagSums(Scratch& s, const A* s1, int n1, const B* s2, int n2, long long lo, long long lagLen) {
  constexpr int kParts = kWide<A> || kWide<B> ? 2 : 1;
  const long long neg = std::min(std::max(-lo, 0LL), lagLen);
  auto round4 = [](long long n) { return (n + 3) & ~3LL; };
  std::int32_t* out = s.take<std::int32_t>((round4(neg) + round4(lagLen - neg)) * kParts);
  if (out == nullptr) return nullptr;
  for (long long i = 0; i < lagLen; ++i) {
    const Sum32 v = lagSum(s1, n1, s2, n2, lo + i, Sum32{}, [](Sum32& acc, A a, B b) {
      const std::int32_t ar = realPart(a), ai = -imagPart(a), br = realPart(b), bi = imagPart(b);
      acc.re += static_cast<std::uint32_t>(ar * br) - static_cast<std::uint32_t>(ai * bi);
      acc.im += static_cast<std::uint32_t>(ar * bi) + static_cast<std::uint32_t>(ai * br);
    });
    out[i * kParts] = static_cast<std::int32_t>(v.re);
    if constexpr (kParts == 2) out[i * kParts + 1] = static_cast<std::int32_t>(v.im);
  }
  return out;
}

template <class A, class B, class Y>
void cross16(const char* name, const A* s1, int n1, const B* s2, int n2, Y* dst, int loLag, int hiLag, int scaleMode,
             int* scaleFactor) {
  const Site site{name, kStem};
  if (!crossArgsPass(site, s1, n1, s2, n2, dst, loLag, hiLag)) return;
  if (!passFirst(site, {{scaleMode == RYX_AUTO_SCALE && scaleFactor == nullptr, kNullScale}})) return;
  const long long lagLen = static_cast<long long>(hiLag) - loLag + 1;
  Scratch s;
  const std::int32_t* sums = lagSums(s, s1, n1, s2, n2, loLag, lagLen);
  if (sums == nullptr) return reportNoMem(site, "Allocation failure");
  constexpr int kParts = sizeof(Y) / sizeof(short);
  ownScaleArrayI32(sums, reinterpret_cast<short*>(dst), static_cast<int>(lagLen * kParts), scaleMode, scaleFactor);
}

template <class T>
void auto16(const char* name, const T* src, int len, T* dst, int nLags, int type, int scaleMode, int* scaleFactor) {
  const Site site{name, kStem};
  if (!autoArgsPass(site, src, len, dst, nLags, type)) return;
  if (!passFirst(site, {{scaleMode == RYX_AUTO_SCALE && scaleFactor == nullptr, kNullScale}})) return;
  constexpr int kParts = kWide<T> ? 2 : 1;
  Scratch s;
  const std::int32_t* sums = lagSums(s, src, len, src, len, 0, nLags);
  float* quot = type == RYX_CorrNormal ? nullptr : s.take<float>(static_cast<long long>(nLags) * kParts);
  if (!s.ok()) return reportNoMem(site, "Allocation failure");
  short* out = reinterpret_cast<short*>(dst);
  if (type == RYX_CorrNormal) return ownScaleArrayI32(sums, out, nLags * kParts, scaleMode, scaleFactor);
  for (int k = 0; k < nLags; ++k) {
    const float f = 1.0f / static_cast<float>(type == RYX_CorrBiased ? len : len - k);
    for (int p = 0; p < kParts; ++p) quot[k * kParts + p] = static_cast<float>(sums[k * kParts + p]) * f;
  }
  ownScaleArrayF32(quot, out, nLags * kParts, scaleMode, scaleFactor);
}

}  // namespace
}  // namespace ryx::corr

using namespace ryx::corr;

extern "C" {
void ryxwCrossCorr(const short* s1, int n1, const short* s2, int n2, short* dst, int lo, int hi, int scaleMode,
                   int* scaleFactor) {
  cross16("ryxwCrossCorr", s1, n1, s2, n2, dst, lo, hi, scaleMode, scaleFactor);
}
void ryxvCrossCorr(const WCplx* s1, int n1, const WCplx* s2, int n2, WCplx* dst, int lo, int hi, int scaleMode,
                   int* scaleFactor) {
  cross16("ryxvCrossCorr", s1, n1, s2, n2, dst, lo, hi, scaleMode, scaleFactor);
}
void ryxwvCrossCorr(const short* s1, int n1, const WCplx* s2, int n2, WCplx* dst, int lo, int hi, int scaleMode,
                    int* scaleFactor) {
  cross16("ryxwvCrossCorr", s1, n1, s2, n2, dst, lo, hi, scaleMode, scaleFactor);
}
void ryxvwCrossCorr(const WCplx* s1, int n1, const short* s2, int n2, WCplx* dst, int lo, int hi, int scaleMode,
                    int* scaleFactor) {
  cross16("ryxvwCrossCorr", s1, n1, s2, n2, dst, lo, hi, scaleMode, scaleFactor);
}
void ryxwAutoCorr(const short* src, int len, short* dst, int nLags, int type, int scaleMode, int* scaleFactor) {
  auto16("ryxwAutoCorr", src, len, dst, nLags, type, scaleMode, scaleFactor);
}
void ryxvAutoCorr(const WCplx* src, int len, WCplx* dst, int nLags, int type, int scaleMode, int* scaleFactor) {
  auto16("ryxvAutoCorr", src, len, dst, nLags, type, scaleMode, scaleFactor);
}
}
