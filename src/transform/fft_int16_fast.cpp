// The fast core of the 16-bit transforms and its static twiddles, and the
// saturating real/CCS recombinations that go with it.
//
// Every sum saturates to 16 bits; no stage scales, so the caller keeps the
// headroom. A twiddle product of (re, im) with W = c - i*s is
// ((re*c + im*s) >> 14, (im*c - re*s) >> 14), each saturated. The static
// table holds c = 16384 cos(2 pi j/1024) and s = 16384 sin(2 pi j/1024),
// truncated toward zero, for j below 768: a stage of size M reads entry
// j * 1024/M for W_M^j, which is the same angle. Inverse transforms negate
// the imaginary parts before and after the forward passes (n of 8 and up);
// n = 2 and n = 4 run one butterfly each, n = 4 with the inverse's signs.
#include "transform/fft_int16_cores.h"

namespace {

using ryx::fftw::sat16;

// ---- Static twiddles, computed at compile time ------------------------------

constexpr long double kPi = 3.141592653589793238462643383279502884L;

// Taylor series, |x| <= pi/4: enough terms for long double accuracy.
constexpr long double sinSeries(long double x) {
  long double term = x, sum = x;
  for (int i = 1; i < 14; ++i) {
    term *= -x * x / ((2 * i) * (2 * i + 1));
    sum += term;
  }
  return sum;
}
constexpr long double cosSeries(long double x) {
  long double term = 1, sum = 1;
  for (int i = 1; i < 14; ++i) {
    term *= -x * x / ((2 * i - 1) * (2 * i));
    sum += term;
  }
  return sum;
}

struct CosSin {
  long double c, s;
};

// cos and sin of 2 pi j/1024, reduced to the first octant exactly.
constexpr CosSin unitRoot1024(int j) {
  const int q = j / 256, r = j % 256;
  long double c = 0, s = 0;
  if (r <= 128) {
    const long double x = kPi * r / 512;
    c = cosSeries(x);
    s = sinSeries(x);
  } else {
    const long double x = kPi * (256 - r) / 512;
    c = sinSeries(x);
    s = cosSeries(x);
  }
  switch (q) {
    case 1: return {-s, c};
    case 2: return {-c, -s};
    case 3: return {s, -c};
    default: return {c, s};
  }
}

constexpr int kFastTableLen = 768;

struct FastTable {
  short c[kFastTableLen];
  short s[kFastTableLen];
};

constexpr FastTable makeFastTable() {
  FastTable t{};
  for (int j = 0; j < kFastTableLen; ++j) {
    const CosSin w = unitRoot1024(j);
    t.c[j] = static_cast<short>(static_cast<int>(16384.0L * w.c));
    t.s[j] = static_cast<short>(static_cast<int>(16384.0L * w.s));
  }
  return t;
}

constexpr FastTable kFast = makeFastTable();
static_assert(kFast.c[0] == 16384 && kFast.s[0] == 0 && kFast.c[256] == 0 && kFast.s[256] == 16384);
static_assert(kFast.s[1] == 100 && kFast.c[1] == 16383 && kFast.s[2] == 201 && kFast.c[2] == 16382);

// ---- Saturating arithmetic ---------------------------------------------------

inline short adds(int a, int b) { return sat16(a + b); }
inline short subs(int a, int b) { return sat16(a - b); }

inline WCplx rotate(WCplx v, int c, int s) {
  return {sat16((v.re * c + v.im * s) >> 14), sat16((v.im * c - v.re * s) >> 14)};
}

// One saturating radix-4 decimation-in-frequency butterfly; `inv` swaps
// the signs of the i(b-d) terms.
inline void butterfly4(WCplx& a, WCplx& b, WCplx& c, WCplx& d, WCplx out[4], bool inv) {
  const WCplx acS{adds(a.re, c.re), adds(a.im, c.im)}, acD{subs(a.re, c.re), subs(a.im, c.im)};
  const WCplx bdS{adds(b.re, d.re), adds(b.im, d.im)}, bdD{subs(b.re, d.re), subs(b.im, d.im)};
  const WCplx minusI{adds(acD.re, bdD.im), subs(acD.im, bdD.re)};  // (a-c) - i(b-d)
  const WCplx plusI{subs(acD.re, bdD.im), adds(acD.im, bdD.re)};   // (a-c) + i(b-d)
  out[0] = {adds(acS.re, bdS.re), adds(acS.im, bdS.im)};
  out[1] = {subs(acS.re, bdS.re), subs(acS.im, bdS.im)};  // y2
  out[2] = inv ? plusI : minusI;                              // y1
  out[3] = inv ? minusI : plusI;                              // y3
}

inline void negateImag(WCplx* x, std::uint32_t n) {
  for (std::uint32_t i = 0; i < n; ++i) x[i].im = subs(0, x[i].im);
}

}  // namespace

void ownvFftFast(WCplx* x, std::uint32_t n, int sign) {
  if (n < 2) return;
  WCplx y[4];
  if (n == 2) {
    const WCplx a = x[0], b = x[1];
    x[0] = {adds(a.re, b.re), adds(a.im, b.im)};
    x[1] = {subs(a.re, b.re), subs(a.im, b.im)};
    return;
  }
  if (n == 4) {
    butterfly4(x[0], x[1], x[2], x[3], y, sign < 0);
    for (int i = 0; i < 4; ++i) x[i] = y[i];
    return;
  }
  if (sign < 0) negateImag(x, n);
  std::uint32_t M = n;
  for (; M > 2; M /= 4) {
    const std::uint32_t L = M / 4, step = 1024 / M;
    for (std::uint32_t g = 0; g < n; g += M) {
      WCplx* q = x + g;
      for (std::uint32_t k = 0; k < L; ++k) {
        butterfly4(q[k], q[k + L], q[k + 2 * L], q[k + 3 * L], y, false);
        q[k] = y[0];
        if (k == 0) {
          q[k + L] = y[1];
          q[k + 2 * L] = y[2];
          q[k + 3 * L] = y[3];
        } else {
          const std::uint32_t j1 = k * step, j2 = 2 * k * step, j3 = 3 * k * step;
          q[k + L] = rotate(y[1], kFast.c[j2], kFast.s[j2]);
          q[k + 2 * L] = rotate(y[2], kFast.c[j1], kFast.s[j1]);
          q[k + 3 * L] = rotate(y[3], kFast.c[j3], kFast.s[j3]);
        }
      }
    }
  }
  if (M == 2) {
    // Odd order: the last two stages form the radix-8 step; its final
    // radix-2 half on adjacent pairs.
    for (std::uint32_t j = 0; j < n; j += 2) {
      const WCplx a = x[j], b = x[j + 1];
      x[j] = {adds(a.re, b.re), adds(a.im, b.im)};
      x[j + 1] = {subs(a.re, b.re), subs(a.im, b.im)};
    }
  }
  if (sign < 0) negateImag(x, n);
}

namespace ryx::fftw {

// Saturating real recombination: halved sums and differences, the product
// (dr, si) times the row (entry k for sign 1; the fast core ran the inverse
// itself for sign -1, so entry N-k, the conjugate), then
// X[k] = (sr + P.im, di - P.re), X[p] = (sr - P.im, -di - P.re).
void ownvRealRecombineFast(short* d, std::uint32_t m, int sign, const short* tbl) {
  const std::uint32_t n = 2 * m;
  for (std::uint32_t k = 1; k < m / 2; ++k) {
    const std::uint32_t p = m - k;
    short* zk = d + 2 * k;
    short* zp = d + 2 * p;
    const int sr = (zk[0] + zp[0]) >> 1, si = (zk[1] + zp[1]) >> 1;
    const int dr = (zk[0] - zp[0]) >> 1, di = (zk[1] - zp[1]) >> 1;
    const short* w = tbl + 4 * (sign >= 1 ? k : n - k);
    const WCplx P = rotate({static_cast<short>(dr), static_cast<short>(si)}, w[0], w[1]);
    zk[0] = adds(sr, P.im);
    zk[1] = subs(di, P.re);
    zp[0] = subs(sr, P.im);
    zp[1] = subs(-di, P.re);
  }
  if (sign >= 1 && m >= 2) d[m + 1] = subs(0, d[m + 1]);
}

// Saturating CCS recombination: no halving, Z[k] = (sr - P.im, di + P.re),
// Z[p] = (sr + P.im, P.re - di) with P = (dr, si) times the row of the
// direction; the middle column doubled, its imaginary part negated for
// sign -1. The fast core then runs in the same direction.
void ownvCcsRecombineFast(const short* src, short* dst, std::uint32_t m, int sign, const short* tbl) {
  const std::uint32_t n = 2 * m;
  for (std::uint32_t k = 1; k < m / 2; ++k) {
    const std::uint32_t p = m - k;
    const short* xk = src + 2 * k;
    const short* xp = src + 2 * p;
    const short sr = adds(xk[0], xp[0]), di = subs(xk[1], xp[1]);
    const short dr = subs(xk[0], xp[0]), si = adds(xk[1], xp[1]);
    const short* w = tbl + 4 * (sign >= 1 ? k : n - k);
    const WCplx P = rotate({dr, si}, w[0], w[1]);
    dst[2 * k] = subs(sr, P.im);
    dst[2 * k + 1] = adds(di, P.re);
    dst[2 * p] = adds(sr, P.im);
    dst[2 * p + 1] = subs(P.re, di);
  }
  if (m >= 2) {
    const short mr = src[m], mi = src[m + 1];
    dst[m] = adds(mr, mr);
    dst[m + 1] = sign >= 1 ? adds(mi, mi) : subs(0, adds(mi, mi));
  }
}

}  // namespace ryx::fftw
