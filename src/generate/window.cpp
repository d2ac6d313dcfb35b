// Window functions (source groups "ryxwin" and "ryxwin2" for float, double
// and their complex forms, "ryxwinw" and "ryxwin2w" for the 16-bit forms;
// the 2 forms read src and write dst).
//
// One weight serves the pair k, n-1-k, for k below n/2, produced by a
// recurrence as the pairs go and applied at once; complex samples take the
// weight on both parts. The middle sample of an odd n keeps weight 1 (the
// two-buffer forms copy it first, whatever n). n = 3 is settled without a
// recurrence, except in Kaiser.
//
// Cosine families: weight K - y - B*y*y with y(k) = a*cos(k*theta),
// theta = 2*pi/(n-1), from y(-1) = a*c, y(0) = a, y(k+1) = 2c*y(k) - y(k-1):
//  - wide kernel (double forms, float forms above the limits, 16-bit above
//    512): 2c and a*c as doubles, recurrence and product in wide precision;
//  - float lane kernel (float forms up to 640 in place for Hann and Hamming,
//    512 otherwise): 2c rounded to single, y rounded to single, weight and
//    product in single. The rounded 2c makes it drift, hence the limits;
//  - 16-bit up to 512 samples: cos(k*theta) as a Q15 rotation, Q14 weights,
//    (x*w) >> 14 with saturation.
// Bartlett: weight 2k/(n-1); single-precision lanes (float forms), a wide
// running sum (double, and 16-bit above 512), Q14 steps (16-bit up to 512).
// Kaiser: I0 by the Abramowitz-Stegun polynomials over a running argument
// r = alpha^2*k*(n-1-k), one square root only where r >= 3.75^2.
// 16-bit products of wide weights round to nearest even and wrap.
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "frame/checks.h"
#include "generate/generate_common.h"

namespace ryx::gen {
namespace {

enum class Family { Bartlett, Hann, Hamming, Blackman, Kaiser };

constexpr double kPiD = 3.141592653589793;

// The caller's samples as parts of type R, P parts per sample; src and dst
// are the same array in the in-place forms.
template <class R, int P>
struct Span {
  const R* src;
  R* dst;
  int n;
  template <class Mul>
  void pair(int k, Mul mul) const {
    for (int p = 0; p < P; ++p) {
      dst[k * P + p] = mul(src[k * P + p]);
      dst[(n - 1 - k) * P + p] = mul(src[(n - 1 - k) * P + p]);
    }
  }
  void copyMiddle() const {
    for (int p = 0; p < P; ++p) dst[(n / 2) * P + p] = src[(n / 2) * P + p];
  }
};

// Product of a sample and a wide weight, rounded to the sample type.
inline float mulWide(float x, Wide w) { return static_cast<float>(x * w); }
inline double mulWide(double x, Wide w) { return static_cast<double>(x * w); }
inline short mulWide(short x, Wide w) { return roundWrap16(static_cast<double>(x * w)); }

inline short saturate16(std::int64_t v) { return static_cast<short>(v > 32767 ? 32767 : v < -32768 ? -32768 : v); }
// 64-bit products and sums that wrap instead of overflowing: weights from a
// huge alpha are meaningless, but computing them must stay defined.
inline std::int64_t wrapMul(std::int64_t x, std::int64_t y) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(x) * static_cast<std::uint64_t>(y));
}
inline std::int64_t wrapAdd(std::int64_t x, std::int64_t y) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(x) + static_cast<std::uint64_t>(y));
}
inline short mulQ14(short x, std::int64_t w) { return saturate16(wrapMul(x, w) >> 14); }

// Weight K - y - B*y*y of the cosine families, y of amplitude a.
struct Cosine {
  Wide K, a, B;
};

template <class R, int P>
void cosineWide(const Span<R, P>& s, const Cosine& f) {
  const double c = std::cos(-2 * kPiD / (s.n - 1));
  const double c2 = 2 * c, ac = static_cast<double>(f.a) * c;
  Wide prev = ac, y = f.a;
  for (int k = 0; k < s.n / 2; ++k) {
    const Wide w = f.K - y - f.B * y * y;
    s.pair(k, [w](R x) { return mulWide(x, w); });
    const Wide next = c2 * y - prev;
    prev = y, y = next;
  }
}

template <int P>
void cosineLanes(const Span<float, P>& s, const Cosine& f) {
  const double c = std::cos(-2 * kPiD / (s.n - 1));
  const float c2 = static_cast<float>(2 * c), K = static_cast<float>(f.K), B = static_cast<float>(f.B);
  Wide prev = static_cast<double>(f.a) * c, y = f.a;
  for (int k = 0; k < s.n / 2; ++k) {
    const float yf = static_cast<float>(y);
    const float w = (K - yf) - B * yf * yf;
    s.pair(k, [w](float x) { return x * w; });
    const Wide next = c2 * y - prev;
    prev = y, y = next;
  }
}

// Q15 rotation by an angle, rounded at each step.
struct Rotor {
  std::int64_t c = 32768, s = 0;
  void turn(std::int64_t cq, std::int64_t sq) {
    const std::int64_t nc = (c * cq - s * sq + 16384) >> 15, ns = (s * cq + c * sq + 16384) >> 15;
    c = nc, s = ns;
  }
};

template <int P>
void cosineQ14(const Span<short, P>& s, const Cosine& f) {
  const double c = std::cos(2 * kPiD / (s.n - 1));
  const std::int64_t cq = roundAway(32768 * c), sq = roundAway(32768 * std::sqrt(1 - c * c));
  const std::int64_t cq2 = (cq * cq - sq * sq) >> 15, sq2 = 2 * ((sq * cq) >> 15);
  // Q14 constants; the cosine terms are Q15 products shifted back.
  // K - a*cos - B*a^2*cos^2 = (K - B*a^2/2) - a*cos - (B*a^2/2)*cos(2*.)
  const std::int64_t K = std::llround(16384 * static_cast<double>(f.K - f.B * f.a * f.a / 2));
  const std::int64_t a = std::llround(16384 * static_cast<double>(f.a));
  const std::int64_t b = std::llround(16384 * static_cast<double>(f.B * f.a * f.a / 2));
  Rotor one, two;
  for (int k = 0; k < s.n / 2; ++k) {
    const std::int64_t w =
        wrapAdd(wrapAdd(K, -(wrapAdd(wrapMul(a, one.c), 16384) >> 15)), -(wrapAdd(wrapMul(b, two.c), 16384) >> 15));
    s.pair(k, [w](short x) { return mulQ14(x, w); });
    one.turn(cq, sq);
    two.turn(cq2, sq2);
  }
}

template <class R, int P>
void bartlett(const Span<R, P>& s) {
  const int pairs = s.n / 2;
  if constexpr (std::is_same_v<R, float>) {
    // Four single-precision lanes at (0, 1, 2, 3)*step, each adding 4*step.
    const float step = static_cast<float>(2.0 / (s.n - 1)), step4 = 4 * step;
    float lane[4] = {0 * step, 1 * step, 2 * step, 3 * step};
    for (int k = 0; k < pairs; ++k) {
      const float w = lane[k & 3];
      s.pair(k, [w](float x) { return x * w; });
      lane[k & 3] = w + step4;
    }
  } else if (std::is_same_v<R, short> && s.n <= 512) {
    const std::int32_t step = (65536 / (s.n - 1)) >> 1;  // Q15 step, halved to Q14
    std::int32_t w = 0;
    for (int k = 0; k < pairs; ++k) {
      s.pair(k, [w](R x) { return static_cast<R>(mulQ14(static_cast<short>(x), w)); });
      w = saturate16(w + step);
    }
  } else {
    const double step = 2.0 / (s.n - 1);
    Wide w = 0;
    for (int k = 0; k < pairs; ++k) {
      s.pair(k, [w](R x) { return mulWide(x, w); });
      w += step;
    }
  }
}

// I0 by Abramowitz and Stegun 9.8.1 (t2 = (x/3.75)^2, x below 3.75) and
// 9.8.2 (x at least 3.75), with the printed coefficients.
inline Wide i0Small(Wide t2) {
  return 1 + t2 * (3.5156229L + t2 * (3.0899424L + t2 * (1.2067492L + t2 * (0.2659732L + t2 * (0.0360768L + t2 * 0.0045813L)))));
}
inline Wide i0Large(Wide x) {
  const Wide t = 3.75L / x;
  const Wide poly =
      0.39894228L +
      t * (0.01328592L +
           t * (0.00225319L +
                t * (-0.00157565L +
                     t * (0.00916281L + t * (-0.02057706L + t * (0.02635537L + t * (-0.01647633L + t * 0.00392377L)))))));
  return std::exp(x) / std::sqrt(x) * poly;
}

template <class R, int P>
void kaiser(const Span<R, P>& s, double alpha) {
  const double x0 = std::fabs((s.n - 1) * alpha * 0.5);
  const Wide norm = 1 / (x0 < 3.75 ? i0Small((x0 / 3.75L) * (x0 / 3.75L)) : i0Large(x0));
  // The loop runs while n - 2 - 2k >= 0, that is for the n/2 pairs. Weights
  // are made for a batch of pairs, then applied: the polynomials and
  // exponentials of neighbouring pairs are independent and overlap.
  constexpr int kBatch = 32;
  Wide w[kBatch];
  double r = 0;
  for (int k0 = 0; k0 < s.n / 2; k0 += kBatch) {
    const int m = s.n / 2 - k0 < kBatch ? s.n / 2 - k0 : kBatch;
    for (int j = 0; j < m; ++j) {
      const Wide v = r < 14.0625 ? i0Small(r * (1 / 14.0625L)) : i0Large(std::sqrt(static_cast<Wide>(r)));
      w[j] = v * norm;
      r += static_cast<double>(s.n - 2 - 2 * (k0 + j)) * alpha * alpha;
    }
    for (int j = 0; j < m; ++j) {
      const Wide wj = w[j];
      s.pair(k0 + j, [wj](R x) { return mulWide(x, wj); });
    }
  }
}

// The largest n for which the float forms take the single-precision lanes.
int laneLimit(Family f, bool inPlace) { return inPlace && f != Family::Blackman ? 640 : 512; }

template <class R, int P>
void apply(const Span<R, P>& s, Family f, double alpha, bool inPlace) {
  if (!inPlace) s.copyMiddle();
  if (f == Family::Kaiser) return kaiser(s, alpha);
  if (s.n == 3) {
    const Wide end = f == Family::Hamming ? 0.08L : 0;
    s.pair(0, [end](R x) { return end == 0 ? R{} : mulWide(x, end); });
    return;
  }
  if (f == Family::Bartlett) return bartlett(s);
  const Cosine cos = f == Family::Hann      ? Cosine{0.5L, 0.5L, 0}
                     : f == Family::Hamming ? Cosine{0.54L, 0.46L, 0}
                                            : Cosine{static_cast<Wide>(alpha) + 0.5L, 0.5L, 4 * static_cast<Wide>(alpha)};
  if constexpr (std::is_same_v<R, float>) {
    if (s.n <= laneLimit(f, inPlace)) return cosineLanes(s, cos);
  } else if constexpr (std::is_same_v<R, short>) {
    if (s.n <= 512) return cosineQ14(s, cos);
  }
  cosineWide(s, cos);
}

template <class T> struct PartsOf { using R = T; static constexpr int P = 1; };
template <> struct PartsOf<SCplx> { using R = float; static constexpr int P = 2; };
template <> struct PartsOf<DCplx> { using R = double; static constexpr int P = 2; };
template <> struct PartsOf<WCplx> { using R = short; static constexpr int P = 2; };

template <class T>
constexpr bool kInt16 = std::is_same_v<typename PartsOf<T>::R, short>;

constexpr const char* kNullBuffer = "Null pointer to buffer";
constexpr const char* kBadCount = "Bad number of items";

template <class T>
void windowInPlace(const char* name, T* vec, int n, Family f, double alpha = 0) {
  if (!passFirst({name, kInt16<T> ? "ryxwinw" : "ryxwin"},
                 {{vec == nullptr, kNullBuffer},
                  {n < 3, kBadCount},
                  {f == Family::Kaiser && (n - 1.0) * std::fabs(alpha) * 0.5 > 38, "Huge window parameter"}}))
    return;
  using R = typename PartsOf<T>::R;
  apply(Span<R, PartsOf<T>::P>{reinterpret_cast<const R*>(vec), reinterpret_cast<R*>(vec), n}, f, alpha, true);
}

template <class T>
void windowTwoBuffers(const char* name, const T* src, T* dst, int n, Family f, double alpha = 0) {
  if (!passFirst({name, kInt16<T> ? "ryxwin2w" : "ryxwin2"},
                 {{src == nullptr, kNullBuffer},
                  {dst == nullptr, kNullBuffer},
                  {n < 3, kBadCount},
                  {f == Family::Kaiser && (n - 1.0) * std::fabs(alpha) * 0.5 > 38, "Huge window parameter"}}))
    return;
  using R = typename PartsOf<T>::R;
  apply(Span<R, PartsOf<T>::P>{reinterpret_cast<const R*>(src), reinterpret_cast<R*>(dst), n}, f, alpha, false);
}

// Alpha of the optimal Blackman window; n = 3 is fixed so as not to divide
// by cos(pi/2).
double optimalAlpha(int n) {
  if (n == 3) return -0.25;
  const double h = 0.5 / std::cos(kPiD / (n - 1.0));
  return -(h * h);
}

constexpr Family Bartlett = Family::Bartlett, Hann = Family::Hann, Hamming = Family::Hamming,
                 Blackman = Family::Blackman, Kaiser = Family::Kaiser;

}  // namespace
}  // namespace ryx::gen

using namespace ryx::gen;

extern "C" {

RYXAPI void ryxsWinBartlett(float* v, int n) { windowInPlace(__func__, v, n, Bartlett); }
RYXAPI void ryxsWinHann(float* v, int n) { windowInPlace(__func__, v, n, Hann); }
RYXAPI void ryxsWinHamming(float* v, int n) { windowInPlace(__func__, v, n, Hamming); }
RYXAPI void ryxsWinBlackman(float* v, int n, float alpha) { windowInPlace(__func__, v, n, Blackman, alpha); }
RYXAPI void ryxsWinBlackmanStd(float* v, int n) { ryxsWinBlackman(v, n, -0.16f); }
RYXAPI void ryxsWinBlackmanOpt(float* v, int n) { ryxsWinBlackman(v, n, static_cast<float>(optimalAlpha(n))); }
RYXAPI void ryxsWinKaiser(float* v, int n, float alpha) { windowInPlace(__func__, v, n, Kaiser, alpha); }
RYXAPI void ryxsWinBartlett2(const float* s, float* d, int n) { windowTwoBuffers(__func__, s, d, n, Bartlett); }
RYXAPI void ryxsWinHann2(const float* s, float* d, int n) { windowTwoBuffers(__func__, s, d, n, Hann); }
RYXAPI void ryxsWinHamming2(const float* s, float* d, int n) { windowTwoBuffers(__func__, s, d, n, Hamming); }
RYXAPI void ryxsWinBlackman2(const float* s, float* d, int n, float alpha) { windowTwoBuffers(__func__, s, d, n, Blackman, alpha); }
RYXAPI void ryxsWinBlackmanStd2(const float* s, float* d, int n) { ryxsWinBlackman2(s, d, n, -0.16f); }
RYXAPI void ryxsWinBlackmanOpt2(const float* s, float* d, int n) { ryxsWinBlackman2(s, d, n, static_cast<float>(optimalAlpha(n))); }
RYXAPI void ryxsWinKaiser2(const float* s, float* d, int n, float alpha) { windowTwoBuffers(__func__, s, d, n, Kaiser, alpha); }

RYXAPI void ryxcWinBartlett(SCplx* v, int n) { windowInPlace(__func__, v, n, Bartlett); }
RYXAPI void ryxcWinHann(SCplx* v, int n) { windowInPlace(__func__, v, n, Hann); }
RYXAPI void ryxcWinHamming(SCplx* v, int n) { windowInPlace(__func__, v, n, Hamming); }
RYXAPI void ryxcWinBlackman(SCplx* v, int n, float alpha) { windowInPlace(__func__, v, n, Blackman, alpha); }
RYXAPI void ryxcWinBlackmanStd(SCplx* v, int n) { ryxcWinBlackman(v, n, -0.16f); }
RYXAPI void ryxcWinBlackmanOpt(SCplx* v, int n) { ryxcWinBlackman(v, n, static_cast<float>(optimalAlpha(n))); }
RYXAPI void ryxcWinKaiser(SCplx* v, int n, float alpha) { windowInPlace(__func__, v, n, Kaiser, alpha); }
RYXAPI void ryxcWinBartlett2(const SCplx* s, SCplx* d, int n) { windowTwoBuffers(__func__, s, d, n, Bartlett); }
RYXAPI void ryxcWinHann2(const SCplx* s, SCplx* d, int n) { windowTwoBuffers(__func__, s, d, n, Hann); }
RYXAPI void ryxcWinHamming2(const SCplx* s, SCplx* d, int n) { windowTwoBuffers(__func__, s, d, n, Hamming); }
RYXAPI void ryxcWinBlackman2(const SCplx* s, SCplx* d, int n, float alpha) { windowTwoBuffers(__func__, s, d, n, Blackman, alpha); }
RYXAPI void ryxcWinBlackmanStd2(const SCplx* s, SCplx* d, int n) { ryxcWinBlackman2(s, d, n, -0.16f); }
RYXAPI void ryxcWinBlackmanOpt2(const SCplx* s, SCplx* d, int n) { ryxcWinBlackman2(s, d, n, static_cast<float>(optimalAlpha(n))); }
RYXAPI void ryxcWinKaiser2(const SCplx* s, SCplx* d, int n, float alpha) { windowTwoBuffers(__func__, s, d, n, Kaiser, alpha); }

RYXAPI void ryxdWinBartlett(double* v, int n) { windowInPlace(__func__, v, n, Bartlett); }
RYXAPI void ryxdWinHann(double* v, int n) { windowInPlace(__func__, v, n, Hann); }
RYXAPI void ryxdWinHamming(double* v, int n) { windowInPlace(__func__, v, n, Hamming); }
RYXAPI void ryxdWinBlackman(double* v, int n, double alpha) { windowInPlace(__func__, v, n, Blackman, alpha); }
RYXAPI void ryxdWinBlackmanStd(double* v, int n) { ryxdWinBlackman(v, n, -0.16); }
RYXAPI void ryxdWinBlackmanOpt(double* v, int n) { ryxdWinBlackman(v, n, optimalAlpha(n)); }
RYXAPI void ryxdWinKaiser(double* v, int n, double alpha) { windowInPlace(__func__, v, n, Kaiser, alpha); }
RYXAPI void ryxdWinBartlett2(const double* s, double* d, int n) { windowTwoBuffers(__func__, s, d, n, Bartlett); }
RYXAPI void ryxdWinHann2(const double* s, double* d, int n) { windowTwoBuffers(__func__, s, d, n, Hann); }
RYXAPI void ryxdWinHamming2(const double* s, double* d, int n) { windowTwoBuffers(__func__, s, d, n, Hamming); }
RYXAPI void ryxdWinBlackman2(const double* s, double* d, int n, double alpha) { windowTwoBuffers(__func__, s, d, n, Blackman, alpha); }
RYXAPI void ryxdWinBlackmanStd2(const double* s, double* d, int n) { ryxdWinBlackman2(s, d, n, -0.16); }
RYXAPI void ryxdWinBlackmanOpt2(const double* s, double* d, int n) { ryxdWinBlackman2(s, d, n, optimalAlpha(n)); }
RYXAPI void ryxdWinKaiser2(const double* s, double* d, int n, double alpha) { windowTwoBuffers(__func__, s, d, n, Kaiser, alpha); }

RYXAPI void ryxzWinBartlett(DCplx* v, int n) { windowInPlace(__func__, v, n, Bartlett); }
RYXAPI void ryxzWinHann(DCplx* v, int n) { windowInPlace(__func__, v, n, Hann); }
RYXAPI void ryxzWinHamming(DCplx* v, int n) { windowInPlace(__func__, v, n, Hamming); }
RYXAPI void ryxzWinBlackman(DCplx* v, int n, double alpha) { windowInPlace(__func__, v, n, Blackman, alpha); }
RYXAPI void ryxzWinBlackmanStd(DCplx* v, int n) { ryxzWinBlackman(v, n, -0.16); }
RYXAPI void ryxzWinBlackmanOpt(DCplx* v, int n) { ryxzWinBlackman(v, n, optimalAlpha(n)); }
RYXAPI void ryxzWinKaiser(DCplx* v, int n, double alpha) { windowInPlace(__func__, v, n, Kaiser, alpha); }
RYXAPI void ryxzWinBartlett2(const DCplx* s, DCplx* d, int n) { windowTwoBuffers(__func__, s, d, n, Bartlett); }
RYXAPI void ryxzWinHann2(const DCplx* s, DCplx* d, int n) { windowTwoBuffers(__func__, s, d, n, Hann); }
RYXAPI void ryxzWinHamming2(const DCplx* s, DCplx* d, int n) { windowTwoBuffers(__func__, s, d, n, Hamming); }
RYXAPI void ryxzWinBlackman2(const DCplx* s, DCplx* d, int n, double alpha) { windowTwoBuffers(__func__, s, d, n, Blackman, alpha); }
RYXAPI void ryxzWinBlackmanStd2(const DCplx* s, DCplx* d, int n) { ryxzWinBlackman2(s, d, n, -0.16); }
RYXAPI void ryxzWinBlackmanOpt2(const DCplx* s, DCplx* d, int n) { ryxzWinBlackman2(s, d, n, optimalAlpha(n)); }
RYXAPI void ryxzWinKaiser2(const DCplx* s, DCplx* d, int n, double alpha) { windowTwoBuffers(__func__, s, d, n, Kaiser, alpha); }

RYXAPI void ryxwWinBartlett(short* v, int n) { windowInPlace(__func__, v, n, Bartlett); }
RYXAPI void ryxwWinHann(short* v, int n) { windowInPlace(__func__, v, n, Hann); }
RYXAPI void ryxwWinHamming(short* v, int n) { windowInPlace(__func__, v, n, Hamming); }
RYXAPI void ryxwWinBlackman(short* v, int n, float alpha) { windowInPlace(__func__, v, n, Blackman, alpha); }
RYXAPI void ryxwWinBlackmanStd(short* v, int n) { ryxwWinBlackman(v, n, -0.16f); }
RYXAPI void ryxwWinBlackmanOpt(short* v, int n) { ryxwWinBlackman(v, n, static_cast<float>(optimalAlpha(n))); }
RYXAPI void ryxwWinKaiser(short* v, int n, float alpha) { windowInPlace(__func__, v, n, Kaiser, alpha); }
RYXAPI void ryxwWinBartlett2(const short* s, short* d, int n) { windowTwoBuffers(__func__, s, d, n, Bartlett); }
RYXAPI void ryxwWinHann2(const short* s, short* d, int n) { windowTwoBuffers(__func__, s, d, n, Hann); }
RYXAPI void ryxwWinHamming2(const short* s, short* d, int n) { windowTwoBuffers(__func__, s, d, n, Hamming); }
RYXAPI void ryxwWinBlackman2(const short* s, short* d, int n, float alpha) { windowTwoBuffers(__func__, s, d, n, Blackman, alpha); }
RYXAPI void ryxwWinBlackmanStd2(const short* s, short* d, int n) { ryxwWinBlackman2(s, d, n, -0.16f); }
RYXAPI void ryxwWinBlackmanOpt2(const short* s, short* d, int n) { ryxwWinBlackman2(s, d, n, static_cast<float>(optimalAlpha(n))); }
RYXAPI void ryxwWinKaiser2(const short* s, short* d, int n, float alpha) { windowTwoBuffers(__func__, s, d, n, Kaiser, alpha); }

RYXAPI void ryxvWinBartlett(WCplx* v, int n) { windowInPlace(__func__, v, n, Bartlett); }
RYXAPI void ryxvWinHann(WCplx* v, int n) { windowInPlace(__func__, v, n, Hann); }
RYXAPI void ryxvWinHamming(WCplx* v, int n) { windowInPlace(__func__, v, n, Hamming); }
RYXAPI void ryxvWinBlackman(WCplx* v, int n, float alpha) { windowInPlace(__func__, v, n, Blackman, alpha); }
RYXAPI void ryxvWinBlackmanStd(WCplx* v, int n) { ryxvWinBlackman(v, n, -0.16f); }
RYXAPI void ryxvWinBlackmanOpt(WCplx* v, int n) { ryxvWinBlackman(v, n, static_cast<float>(optimalAlpha(n))); }
RYXAPI void ryxvWinKaiser(WCplx* v, int n, float alpha) { windowInPlace(__func__, v, n, Kaiser, alpha); }
RYXAPI void ryxvWinBartlett2(const WCplx* s, WCplx* d, int n) { windowTwoBuffers(__func__, s, d, n, Bartlett); }
RYXAPI void ryxvWinHann2(const WCplx* s, WCplx* d, int n) { windowTwoBuffers(__func__, s, d, n, Hann); }
RYXAPI void ryxvWinHamming2(const WCplx* s, WCplx* d, int n) { windowTwoBuffers(__func__, s, d, n, Hamming); }
RYXAPI void ryxvWinBlackman2(const WCplx* s, WCplx* d, int n, float alpha) { windowTwoBuffers(__func__, s, d, n, Blackman, alpha); }
RYXAPI void ryxvWinBlackmanStd2(const WCplx* s, WCplx* d, int n) { ryxvWinBlackman2(s, d, n, -0.16f); }
RYXAPI void ryxvWinBlackmanOpt2(const WCplx* s, WCplx* d, int n) { ryxvWinBlackman2(s, d, n, static_cast<float>(optimalAlpha(n))); }
RYXAPI void ryxvWinKaiser2(const WCplx* s, WCplx* d, int n, float alpha) { windowTwoBuffers(__func__, s, d, n, Kaiser, alpha); }

}  // extern "C"
