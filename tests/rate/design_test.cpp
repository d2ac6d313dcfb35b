// FIR design against the window method computed independently in long
// double: the ideal response from sin/cos at distance t from the centre,
// the window weights from their closed forms, the gain at the pass
// frequency summed over all taps. The library draws its sines from a double
// recurrence whose error grows by about one rounding per step, amplified by
// 1/sin(2*pi*f); divided by pi*t that leaves a tap error of a few roundings
// over sin(2*pi*f). Bound used: 64 eps / sin(2*pi*fmin) per tap (eps =
// 2^-52, fmin the edge nearest 0 or 0.5); unit gain within 16 n eps.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "ryxcore.h"

namespace {

using ld = long double;
const ld kPi = 3.141592653589793238462643383279502884L;
enum Kind { Low, High, Pass, Stop };

RyxStatus designBy(Kind k, double lo, double hi, double* taps, int n, int win, int norm) {
  if (k == Low || k == High) return (k == Low ? ryxdFirLowpass : ryxdFirHighpass)(lo, taps, n, win, norm);
  return (k == Pass ? ryxdFirBandpass : ryxdFirBandstop)(lo, hi, taps, n, win, norm);
}

// Bartlett, optimal Blackman (alpha = -(0.5/cos(pi/(n-1)))^2), Hamming,
// Hann; anything else rectangular.
ld windowWeight(int win, int k, int n) {
  const ld x = 2 * kPi * k / (n - 1), c = 0.5L / std::cos(kPi / (n - 1)), a = -c * c;
  const ld w[] = {1, 1 - std::fabs(2.0L * k / (n - 1) - 1), (a + 1) / 2 - 0.5L * std::cos(x) - a / 2 * std::cos(2 * x),
                  0.54L - 0.46L * std::cos(x), 0.5L - 0.5L * std::cos(x)};
  return win >= 1 && win <= 4 ? w[win] : 1;
}

// Amplitude at the pass frequency: the alternating sum for highpass (which
// also serves the antisymmetric even length), else the cosine sum about
// the centre at 0 or at the band centre.
template <class V>
ld gainAt(Kind kind, ld lo, ld hi, const V* taps, int n) {
  ld gain = 0;
  for (int k = 0; k < n; ++k)
    gain += kind == High ? (k % 2 ? -taps[k] : taps[k])
                         : taps[k] * (kind == Pass ? std::cos(kPi * (lo + hi) * (k - (n - 1) / 2.0L)) : 1);
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
    const ld num[] = {s(lo, t), odd ? -s(lo, t) : std::cos(2 * kPi * lo * t), s(hi, t) - s(lo, t),
                      (odd ? 0 : (step % 2 ? -1 : 1)) + s(lo, t) - s(hi, t)};
    taps[i] = num[kind] / (kPi * t) * windowWeight(win, i, n);
    taps[n - 1 - i] = (kind == High && !odd) ? -taps[i] : taps[i];
  }
  const ld centre[] = {2 * lo, 1 - 2 * lo, (hi - lo) * 2, 1 - (hi - lo) * 2};
  if (odd) taps[h] = centre[kind] * windowWeight(win, h, n);
  const ld gain = norm ? std::fabs(gainAt(kind, lo, hi, taps.data(), n)) : 1;
  for (ld& v : taps) v /= gain;
  return taps;
}

TEST(FirDesign, MatchesLongDoubleWindowMethod) {
  const double eps = std::ldexp(1.0, -52), bands[][2] = {{0.1, 0.3}, {0.02, 0.27}, {0.2499, 0.4}, {0.3, 0.45}};
  for (Kind kind : {Low, High, Pass, Stop})
    for (auto& b : bands)
      for (int n : {5, 6, 7, 8, 21, 64, 65, 255, 256})
        for (int win = 0; win <= 5; ++win)
          for (int norm = 0; norm <= 1; ++norm) {
            std::vector<double> taps(n + 1, 7.0), rect(n);
            ryxSetErrStatus(RYX_StsBadArg);
            ASSERT_EQ(designBy(kind, b[0], b[1], taps.data(), n, win, norm), RYX_StsOk);
            ASSERT_TRUE(ryxGetErrStatus() == RYX_StsOk && taps[n] == 7.0);  // success clears; nothing past n
            const std::vector<ld> want = reference(kind, b[0], b[1], n, win, norm);
            const double fmin = std::min(b[0], 0.5 - (kind < Pass ? b[0] : b[1]));
            const bool anti = kind == High && n % 2 == 0;
            for (int k = 0; k < n; ++k) {
              ASSERT_NEAR(taps[k], want[k], 64 * eps / std::sin(2 * M_PI * fmin)) << kind << " " << n << " " << win << " " << k;
              ASSERT_EQ(taps[n - 1 - k], anti ? -taps[k] : taps[k]);  // exact mirror
            }
            if (norm) {
              EXPECT_NEAR(std::fabs(gainAt(kind, b[0], b[1], taps.data(), n)), 1.0L, 16 * n * eps);
            }
            designBy(kind, b[0], b[1], rect.data(), n, 0, norm);  // any other window type: rectangular
            if (win == 5) {
              EXPECT_EQ(std::memcmp(rect.data(), taps.data(), n * sizeof(double)), 0);
            }
          }
}

}  // namespace
