// The 32-bit integer core of the 16-bit transforms, the conversions around
// it, and the integer real/CCS recombinations.
//
// ownvFftInt32 is a radix-4 decimation-in-frequency transform: for each
// group of M values and each column k of the quarter L = M/4,
//   y0 = (a+c)+(b+d)  at k,        y2 = (a+c)-(b+d) times W_M^2k at k+L,
//   y1 = (a-c)-i(b-d) times W_M^k at k+2L,  y3 = (a-c)+i(b-d) times W_M^3k at k+3L,
// which leaves the output in binary bit-reversed order. Column 0 takes no
// product; column M/8 turns W^2k = -i into a swap and uses the Q14
// constants 11585 for W_8 and W_8^3. An odd order ends with a radix-2 pass.
#include <emmintrin.h>

#include <cstring>

#include "transform/fft_int16_cores.h"
#include "vector/scale_narrow.h"

using ryx::fftw::Pair32;
using ryx::fftw::twiddle32;
using ryx::fftw::wadd;
using ryx::fftw::wneg;
using ryx::fftw::wsub;

namespace {

constexpr int kQ14Diag = 11585;  // 16384 / sqrt(2), rounded

inline void radix4Column(std::int32_t* x, std::uint32_t k, std::uint32_t L, std::uint32_t step, std::uint32_t M,
                         const short* tbl) {
  std::int32_t* a = x + 2 * k;
  std::int32_t* b = x + 2 * (k + L);
  std::int32_t* c = x + 2 * (k + 2 * L);
  std::int32_t* d = x + 2 * (k + 3 * L);
  const std::int32_t acr = wadd(a[0], c[0]), aci = wadd(a[1], c[1]);
  const std::int32_t bdr = wadd(b[0], d[0]), bdi = wadd(b[1], d[1]);
  const std::int32_t amr = wsub(a[0], c[0]), ami = wsub(a[1], c[1]);
  const std::int32_t bmr = wsub(b[0], d[0]), bmi = wsub(b[1], d[1]);
  Pair32 y2{wsub(acr, bdr), wsub(aci, bdi)};
  Pair32 y1{wadd(amr, bmi), wsub(ami, bmr)};  // (a-c) - i(b-d)
  Pair32 y3{wsub(amr, bmi), wadd(ami, bmr)};  // (a-c) + i(b-d)
  a[0] = wadd(acr, bdr);
  a[1] = wadd(aci, bdi);
  if (k == 0) {
    // W^0 = 1: no product.
  } else if (M >= 8 && k == M / 8) {
    y2 = {y2.im, wneg(y2.re)};  // times -i
    y1 = twiddle32(y1.re, y1.im, kQ14Diag, kQ14Diag);
    y3 = twiddle32(y3.re, y3.im, -kQ14Diag, kQ14Diag);
  } else {
    const short* w1 = tbl + 4 * (k * step);
    const short* w2 = tbl + 4 * (2 * k * step);
    const short* w3 = tbl + 4 * (3 * k * step);
    y2 = twiddle32(y2.re, y2.im, w2[0], w2[1]);
    y1 = twiddle32(y1.re, y1.im, w1[0], w1[1]);
    y3 = twiddle32(y3.re, y3.im, w3[0], w3[1]);
  }
  b[0] = y2.re;
  b[1] = y2.im;
  c[0] = y1.re;
  c[1] = y1.im;
  d[0] = y3.re;
  d[1] = y3.im;
}

// ---- Two columns at a time with 128-bit integer operations ------------------
//
// A register holds two complex 32-bit values. The Q14 product packs the
// halved unsigned low words and the signed high words of (re, im) as 16-bit
// pairs and multiplies them with a table row (c, s, -s, c) by one pairwise
// multiply-add each, which yields (re*c + im*s, im*c - re*s) for both
// halves; the sums and shifts are those of mulQ14, so the results are the
// scalar column's bit for bit.

inline __m128i pairsOf(__m128i words) {
  const __m128i packed = _mm_packs_epi32(words, words);  // values fit 16 bits
  return _mm_shuffle_epi32(packed, _MM_SHUFFLE(1, 1, 0, 0));
}

inline __m128i twiddle2(__m128i v, __m128i rows) {
  const __m128i low = _mm_srli_epi32(_mm_slli_epi32(v, 16), 17);  // (v & 0xFFFF) >> 1
  const __m128i high = _mm_srai_epi32(v, 16);
  const __m128i lo = _mm_madd_epi16(pairsOf(low), rows);
  const __m128i hi = _mm_madd_epi16(pairsOf(high), rows);
  return _mm_add_epi32(_mm_srai_epi32(lo, 13), _mm_slli_epi32(hi, 2));
}

inline __m128i rowsAt(const short* tbl, std::uint32_t j0, std::uint32_t j1) {
  return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(tbl + 4 * j0)),
                            _mm_loadl_epi64(reinterpret_cast<const __m128i*>(tbl + 4 * j1)));
}

// Columns k and k+1 of one group, neither of them 0 or M/8.
inline void radix4Pair(std::int32_t* x, std::uint32_t k, std::uint32_t L, std::uint32_t step, const short* tbl) {
  auto at = [&](std::uint32_t q) { return reinterpret_cast<__m128i*>(x + 2 * (k + q * L)); };
  const __m128i a = _mm_loadu_si128(at(0)), b = _mm_loadu_si128(at(1));
  const __m128i c = _mm_loadu_si128(at(2)), d = _mm_loadu_si128(at(3));
  const __m128i ac = _mm_add_epi32(a, c), bd = _mm_add_epi32(b, d);
  const __m128i am = _mm_sub_epi32(a, c), bm = _mm_sub_epi32(b, d);
  // i(b-d) = (-(b-d).im, (b-d).re): swap the components, negate the real.
  const __m128i bmSwap = _mm_shuffle_epi32(bm, _MM_SHUFFLE(2, 3, 0, 1));
  const __m128i signRe = _mm_set_epi32(0, -1, 0, -1);
  const __m128i iBm = _mm_sub_epi32(_mm_xor_si128(bmSwap, signRe), signRe);
  const __m128i y2 = _mm_sub_epi32(ac, bd), y1 = _mm_sub_epi32(am, iBm), y3 = _mm_add_epi32(am, iBm);
  _mm_storeu_si128(at(0), _mm_add_epi32(ac, bd));
  _mm_storeu_si128(at(1), twiddle2(y2, rowsAt(tbl, 2 * k * step, 2 * (k + 1) * step)));
  _mm_storeu_si128(at(2), twiddle2(y1, rowsAt(tbl, k * step, (k + 1) * step)));
  _mm_storeu_si128(at(3), twiddle2(y3, rowsAt(tbl, 3 * k * step, 3 * (k + 1) * step)));
}

// One group of M values: the two special columns and their pair partners
// column by column, every other pair two at a time.
void radix4Group(std::int32_t* x, std::uint32_t L, std::uint32_t step, std::uint32_t M, const short* tbl) {
  if (L < 4) {
    for (std::uint32_t k = 0; k < L; ++k) radix4Column(x, k, L, step, M, tbl);
    return;
  }
  for (std::uint32_t k = 0; k < L; k += 2) {
    if (k == 0 || k == M / 8) {
      radix4Column(x, k, L, step, M, tbl);
      radix4Column(x, k + 1, L, step, M, tbl);
    } else {
      radix4Pair(x, k, L, step, tbl);
    }
  }
}

}  // namespace

void ownvFftInt32(std::int32_t* data, std::uint32_t n, int sign, const short* tbl) {
  if (n < 2) return;
  if (sign < 0) {
    // Element k and n-k exchanged: the forward passes then give the
    // positive exponent; only forward twiddles exist.
    for (std::uint32_t k = 1; k < n / 2; ++k) {
      std::int32_t* p = data + 2 * k;
      std::int32_t* q = data + 2 * (n - k);
      const std::int32_t r = p[0], i = p[1];
      p[0] = q[0];
      p[1] = q[1];
      q[0] = r;
      q[1] = i;
    }
  }
  std::uint32_t M = n;
  for (; M > 2; M /= 4) {
    const std::uint32_t L = M / 4, step = n / M;
    for (std::uint32_t g = 0; g < n; g += M) radix4Group(data + 2 * g, L, step, M, tbl);
  }
  if (M == 2) {
    for (std::uint32_t j = 0; j < n; j += 2) {
      std::int32_t* x = data + 2 * j;
      const std::int32_t r0 = x[0], i0 = x[1];
      x[0] = wadd(r0, x[2]);
      x[1] = wadd(i0, x[3]);
      x[2] = wsub(r0, x[2]);
      x[3] = wsub(i0, x[3]);
    }
  }
}

void ownI16ToI32Shifted(const short* src, std::int32_t* dst, std::uint32_t n, int g) {
  for (std::uint32_t i = 0; i < n; ++i)
    dst[i] = static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int32_t>(src[i])) << g);
}

namespace {

// One value of ownI32ToI16Shifted before narrowing.
inline std::int32_t shifted(std::int32_t v, int shift) {
  if (shift > 0) {
    const int s = shift > 31 ? 31 : shift;
    return wadd(v, static_cast<std::int32_t>(1u << (s - 1))) >> s;
  }
  if (shift < 0) {
    const int s = -shift;
    return s > 31 ? 0 : static_cast<std::int32_t>(static_cast<std::uint32_t>(v) << s);
  }
  return v;
}

}  // namespace

void ownI32ToI16Shifted(const std::int32_t* src, short* dst, std::uint32_t n, int saturate, int shift) {
  for (std::uint32_t i = 0; i < n; ++i) {
    const std::int32_t v = shifted(src[i], shift);
    dst[i] = saturate ? ryx::fftw::sat16(v) : static_cast<short>(static_cast<std::uint16_t>(v));
  }
}

void ownI32ShiftRound(std::int32_t* data, std::uint32_t n, int shift) {
  if (shift <= 0) return;
  for (std::uint32_t i = 0; i < n; ++i) data[i] = shifted(data[i], shift);
}

void ownI16Shift(short* data, std::uint32_t n, int shift) {
  if (shift > 0) {
    const int s = shift > 15 ? 15 : shift;
    for (std::uint32_t i = 0; i < n; ++i) data[i] = static_cast<short>(data[i] >> s);
  } else if (shift < 0) {
    const int s = -shift > 16 ? 16 : -shift;
    for (std::uint32_t i = 0; i < n; ++i)
      data[i] = static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(data[i]) << s));
  }
}

void ownvSplitPack(const short* re, const short* im, WCplx* dst, int order) {
  const std::uint64_t n = std::uint64_t{1} << order;
  for (std::uint64_t i = 0; i < n; ++i) dst[i] = {re[i], im[i]};
}

void ownvSplitUnpack(const WCplx* src, short* re, short* im, int order) {
  const std::uint64_t n = std::uint64_t{1} << order;
  for (std::uint64_t i = 0; i < n; ++i) {
    re[i] = src[i].re;
    im[i] = src[i].im;
  }
}

namespace ryx::fftw {

void outputStep(std::int32_t* work, short* dst, std::uint32_t n, int t, int scaleMode, int* scaleFactor) {
  if (!(scaleMode & 4)) {
    std::int64_t total = t;
    if ((scaleMode & 2) && scaleFactor != nullptr) total += *scaleFactor;
    const int shift = total > 64 ? 64 : (total < -64 ? -64 : static_cast<int>(total));
    ownI32ToI16Shifted(work, dst, n, scaleMode & 1, shift);
    return;
  }
  if (t > 0) ownI32ShiftRound(work, n, t);
  ownScaleArrayI32(work, dst, static_cast<int>(n), scaleMode, scaleFactor);
}

void fastOutputShift(short* data, std::uint32_t n, int order, int flags, int scaleMode, int* scaleFactor) {
  std::int64_t shift = (scaleMode & 2) && scaleFactor != nullptr ? *scaleFactor : 0;
  if ((scaleMode & 4) && scaleFactor != nullptr) *scaleFactor = 0;
  if ((flags & RYX_Inverse) && !(flags & RYX_KeepScale)) shift += order;
  if (shift != 0) ownI16Shift(data, n, shift > 64 ? 64 : (shift < -64 ? -64 : static_cast<int>(shift)));
}

// Real recombination, integer form. For column k and partner p = m-k the
// sums and differences are halved first: sr, si, dr, di; the product
// P = (dr, si) times the twiddle row gives
//   X[k] = (sr + P.im, di - P.re),  X[p] = (sr - P.im, -di - P.re).
// For sign -1 (the 32-bit core ran forward) Z[k] and Z[p] trade places and
// the row is entry N-k, the conjugate twiddle. The middle column's
// imaginary part is negated for sign 1.
void ownvRealRecombineInt32(std::int32_t* d, std::uint32_t m, int sign, const short* tbl) {
  const std::uint32_t n = 2 * m;
  for (std::uint32_t k = 1; k < m / 2; ++k) {
    const std::uint32_t p = m - k;
    std::int32_t* zk = d + 2 * k;
    std::int32_t* zp = d + 2 * p;
    const std::int32_t* u = sign >= 1 ? zk : zp;  // the column read as Z[k]
    const std::int32_t* v = sign >= 1 ? zp : zk;  // and as Z[p]
    const std::int32_t sr = wadd(u[0], v[0]) >> 1, si = wadd(u[1], v[1]) >> 1;
    const std::int32_t dr = wsub(u[0], v[0]) >> 1, di = wsub(u[1], v[1]) >> 1;
    const short* w = tbl + 4 * (sign >= 1 ? k : n - k);
    const Pair32 P = twiddle32(dr, si, w[0], w[1]);
    zk[0] = wadd(sr, P.im);
    zk[1] = wsub(di, P.re);
    zp[0] = wsub(sr, P.im);
    zp[1] = wsub(wneg(di), P.re);
  }
  if (sign >= 1 && m >= 2) d[m + 1] = wneg(d[m + 1]);
}

// CCS recombination, integer form: sr, di, dr, si without halving,
// P = (dr, si) times the row (entry k for sign 1, entry N-k for sign -1),
// with the rounding product; Z[k] = (sr - P.im, di + P.re),
// Z[p] = (sr + P.im, P.re - di). Middle column doubled, its imaginary part
// negated for sign -1. For sign -1 Z[k] is stored at p and Z[p] at k.
void ownvCcsRecombineInt32(const std::int32_t* src, std::int32_t* dst, std::uint32_t m, int sign,
                           const short* tbl) {
  const std::uint32_t n = 2 * m;
  for (std::uint32_t k = 1; k < m / 2; ++k) {
    const std::uint32_t p = m - k;
    const std::int32_t* xk = src + 2 * k;
    const std::int32_t* xp = src + 2 * p;
    const std::int32_t sr = wadd(xk[0], xp[0]), di = wsub(xk[1], xp[1]);
    const std::int32_t dr = wsub(xk[0], xp[0]), si = wadd(xk[1], xp[1]);
    const short* w = tbl + 4 * (sign >= 1 ? k : n - k);
    const Pair32 P = twiddle32(dr, si, w[0], w[1], true);
    std::int32_t* zk = dst + 2 * (sign >= 1 ? k : p);
    std::int32_t* zp = dst + 2 * (sign >= 1 ? p : k);
    zk[0] = wsub(sr, P.im);
    zk[1] = wadd(di, P.re);
    zp[0] = wadd(sr, P.im);
    zp[1] = wsub(P.re, di);
  }
  if (m >= 2) {
    const std::int32_t mr = src[m], mi = src[m + 1];
    dst[m] = wadd(mr, mr);
    dst[m + 1] = sign >= 1 ? wadd(mi, mi) : wneg(wadd(mi, mi));
  }
}

}  // namespace ryx::fftw
