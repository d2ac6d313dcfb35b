// FIR design against the window method computed independently in long
// double: the ideal response from sinl/cosl at distance t from the centre,
// the window weights from their closed forms, the gain at the pass
// frequency summed over all taps. The library draws its sines from a double
// recurrence, whose error grows by about one rounding per step and is
// amplified by 1/sin(2*pi*f); divided by pi*t that leaves a tap error of a
// few roundings over sin(2*pi*f). Bound used: 64 eps / sin(2*pi*fmin) per
// tap (eps = 2^-52), fmin the edge nearest 0 or 0.5.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "ryxcore.h"
#include "ryxcore/rate.h"

namespace {

using ld = long double;
const ld kPi = 3.141592653589793238462643383279502884L;

enum Kind { Low, High, Pass, Stop };

RyxStatus designBy(Kind k, double lo, double hi, double* taps, int n, int win, int norm) {
  switch (k) {
    case Low: return ryxdFirLowpass(lo, taps, n, win, norm);
    case High: return ryxdFirHighpass(lo, taps, n, win, norm);
    case Pass: return ryxdFirBandpass(lo, hi, taps, n, win, norm);
    default: return ryxdFirBandstop(lo, hi, taps, n, win, norm);
  }
}

ld windowWeight(int win, int k, int n) {
  const ld x = 2 * kPi * k / (n - 1);
  switch (win) {
    case 1: return 1 - std::fabs(2.0L * k / (n - 1) - 1);
    case 2: {
      const ld c = 0.5L / std::cos(kPi / (n - 1)), a = -c * c;
      return (a + 1) / 2 - 0.5L * std::cos(x) - a / 2 * std::cos(2 * x);
    }
    case 3: return 0.54L - 0.46L * std::cos(x);
    case 4: return 0.5L - 0.5L * std::cos(x);
    default: return 1;
  }
}

// Amplitude at the pass frequency: 0, 0.5 (as the alternating sum, which
// also serves the antisymmetric even highpass) or the band centre.
template <class V>
ld gainAt(Kind kind, ld lo, ld hi, const V* taps, int n) {
  ld gain = 0;
  for (int k = 0; k < n; ++k) {
    if (kind == High) gain += k % 2 ? -taps[k] : taps[k];
    else gain += taps[k] * (kind == Pass ? std::cos(2 * kPi * (lo + hi) / 2 * (k - (n - 1) / 2.0L)) : 1);
  }
  return gain;
}

std::vector<ld> reference(Kind kind, ld lo, ld hi, int n, int win, bool norm) {
  const int h = n / 2;
  const bool odd = n % 2;
  std::vector<ld> taps(n);
  auto s = [](ld f, ld t) { return std::sin(2 * kPi * f * t); };
  for (int i = 0; i < h; ++i) {
    const int step = h - 1 - i;
    const ld t = odd ? step + 1 : step + 0.5L;
    ld num = 0;
    switch (kind) {
      case Low: num = s(lo, t); break;
      case High: num = odd ? -s(lo, t) : std::cos(2 * kPi * lo * t); break;
      case Pass: num = s(hi, t) - s(lo, t); break;
      case Stop: num = (odd ? 0 : (step % 2 ? -1 : 1)) + s(lo, t) - s(hi, t); break;
    }
    taps[i] = num / (kPi * t) * windowWeight(win, i, n);
    taps[n - 1 - i] = (kind == High && !odd) ? -taps[i] : taps[i];
  }
  if (odd) {
    const ld centre[] = {2 * lo, 1 - 2 * lo, (hi - lo) * 2, 1 - (hi - lo) * 2};
    taps[h] = centre[kind] * windowWeight(win, h, n);
  }
  if (norm) {
    const ld gain = gainAt(kind, lo, hi, taps.data(), n);
    for (ld& v : taps) v /= std::fabs(gain);
  }
  return taps;
}

TEST(FirDesign, MatchesLongDoubleWindowMethod) {
  const double eps = std::ldexp(1.0, -52);
  struct Band { double lo, hi; };
  const Band bands[] = {{0.1, 0.3}, {0.02, 0.27}, {0.2499, 0.4}, {0.3, 0.45}};
  for (Kind kind : {Low, High, Pass, Stop})
    for (const Band& b : bands)
      for (int n : {5, 6, 7, 8, 21, 64, 65, 255, 256})
        for (int win = 0; win <= 5; ++win)
          for (int norm = 0; norm <= 1; ++norm) {
            std::vector<double> taps(n + 1, 7.0);
            ryxSetErrStatus(RYX_StsBadArg);
            ASSERT_EQ(designBy(kind, b.lo, b.hi, taps.data(), n, win, norm), RYX_StsOk);
            EXPECT_EQ(ryxGetErrStatus(), RYX_StsOk);  // success clears an earlier failure
            EXPECT_EQ(taps[n], 7.0);
            const std::vector<ld> want = reference(kind, b.lo, b.hi, n, win, norm);
            const double fmin = kind == Low || kind == High ? std::min(b.lo, 0.5 - b.lo)
                                                            : std::min(b.lo, 0.5 - b.hi);
            const double bound = 64 * eps / std::sin(2 * M_PI * fmin);
            const bool anti = kind == High && n % 2 == 0;
            for (int k = 0; k < n; ++k) {
              ASSERT_NEAR(taps[k], want[k], bound) << kind << " n=" << n << " win=" << win << " k=" << k;
              ASSERT_EQ(taps[n - 1 - k], anti ? -taps[k] : taps[k]);  // exact mirror
            }
            if (norm) {
              EXPECT_NEAR(std::fabs(gainAt(kind, b.lo, b.hi, taps.data(), n)), 1.0L, 16 * n * eps) << kind << " n=" << n;
            }
            if (win == 5) {  // any other window type: the rectangular response
              std::vector<double> rect(n);
              designBy(kind, b.lo, b.hi, rect.data(), n, 0, norm);
              EXPECT_EQ(std::memcmp(rect.data(), taps.data(), n * sizeof(double)), 0);
            }
          }
}

}  // namespace
