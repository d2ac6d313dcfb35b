// In-cache FFT kernels on the working layout, written once with 128-bit
// vector operations and included into one namespace per instruction set
// (the includer opens the namespace). Compiled with AVX2, the interleaved
// kernels take 256-bit forms of the first stages, the radix-4 passes (one
// block per register), the reversal of 16-byte elements and the last pass
// (folded into the final radix-4 pass); every form keeps the arithmetic,
// its order and its rounding points, so all instantiations agree bit for
// bit.
//
// Working layout: the data is cut into blocks of G complex values (G = 4
// float, 2 double); a block holds G real parts, then G imaginary parts.
// Interleaved kernels keep blocks in the sample array itself (block b at
// 2*G*b); split kernels keep them in the two arrays (block b at G*b of
// each). `Step` is the distance between blocks in elements.
//
// Input to every kernel is in bit-reversed order. Passes:
//   float: first stage R8 (odd order) or R16 (even order), then radix-4
//          passes M = 32, 128, ... or 64, 256, ... up to N;
//   double: a radix-4 stage on runs of 4, for odd order a radix-2 pass on
//          runs of 8, then radix-4 passes M = 32, ... or 16, ... up to N;
// then, for interleaved data, a last pass back to (re, im) pairs.
// Float order 2 is one scalar radix-4 butterfly in extended precision.
// Radix-4 passes take the quarters of each group in binary-reversed order
// (quarter 1 gets W^2k, quarter 2 gets W^k), which lets one reversal serve
// every radix. Inverse kernels use the conjugate twiddles of the same table
// and swap the signs of the last two outputs. No fused multiply-add.
//
// This header has no include guard on purpose: it is included once per
// instruction-set namespace.

template <class T>
struct VecOf;
template <>
struct VecOf<float> {
  typedef float type __attribute__((vector_size(16)));
  static constexpr int kLanes = 4;
};
template <>
struct VecOf<double> {
  typedef double type __attribute__((vector_size(16)));
  static constexpr int kLanes = 2;
};

template <class T>
using Vec = typename VecOf<T>::type;

template <class T>
inline Vec<T> load(const T* p) {
  return *reinterpret_cast<const Vec<T>*>(p);
}
template <class T>
inline void store(T* p, Vec<T> v) {
  *reinterpret_cast<Vec<T>*>(p) = v;
}
template <class T>
inline Vec<T> loadu(const T* p) {
  Vec<T> v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}
template <class T>
inline void storeu(T* p, Vec<T> v) {
  __builtin_memcpy(p, &v, sizeof v);
}

// Complex product by a twiddle (wr, wi); the inverse form multiplies by the
// conjugate. Both forms keep the two products of each component separate
// and add or subtract them once.
template <bool Fwd, class V>
inline void cmul(V xr, V xi, V wr, V wi, V& outR, V& outI) {
  if constexpr (Fwd) {
    outR = xr * wr - xi * wi;
    outI = xr * wi + xi * wr;
  } else {
    outR = xr * wr + xi * wi;
    outI = xi * wr - xr * wi;
  }
}

// The radix-4 combination of A, B, C, D (already twiddled):
// q0 = (A+B)+(C+D), q2 = (A+B)-(C+D), q1 = (A-B)-i(C-D), q3 = (A-B)+i(C-D)
// forward; the inverse swaps the last two.
template <bool Fwd, class V>
inline void radix4Join(V ar, V ai, V br, V bi, V cr, V ci, V dr, V di, V* o) {
  const V sr = ar + br, si = ai + bi;
  const V tr = ar - br, ti = ai - bi;
  const V ur = cr + dr, ui = ci + di;
  const V vr = cr - dr, vi = ci - di;
  o[0] = sr + ur;
  o[1] = si + ui;
  o[4] = sr - ur;
  o[5] = si - ui;
  if constexpr (Fwd) {
    o[2] = tr + vi;  // (A-B) - i(C-D)
    o[3] = ti - vr;
    o[6] = tr - vi;  // (A-B) + i(C-D)
    o[7] = ti + vr;
  } else {
    o[2] = tr - vi;
    o[3] = ti + vr;
    o[6] = tr + vi;
    o[7] = ti - vr;
  }
}

// One radix-4 pass over all groups of M values; `bq` is the number of
// blocks per quarter (L/G). The stage's table groups are walked forward,
// once per group of data. Returns the table position after the stage.
template <class T, bool Fwd, int Step>
const T* radix4Pass(T* re, T* im, std::size_t nBlocks, std::size_t bq, const T* tw) {
  constexpr int G = VecOf<T>::kLanes;
  using V = Vec<T>;
  for (std::size_t g = 0; g < nBlocks; g += 4 * bq) {
    const T* t = tw;
    T* r0 = re + g * Step;
    T* i0 = im + g * Step;
    const std::size_t qs = bq * Step;
    for (std::size_t j = 0; j < bq; ++j, t += 6 * G, r0 += Step, i0 += Step) {
      const V w1r = load(t), w1i = load(t + G);
      const V w2r = load(t + 2 * G), w2i = load(t + 3 * G);
      const V w3r = load(t + 4 * G), w3i = load(t + 5 * G);
      const V ar = load(r0), ai = load(i0);
      V br, bi, cr, ci, dr, di;
      cmul<Fwd>(load(r0 + qs), load(i0 + qs), w2r, w2i, br, bi);
      cmul<Fwd>(load(r0 + 2 * qs), load(i0 + 2 * qs), w1r, w1i, cr, ci);
      cmul<Fwd>(load(r0 + 3 * qs), load(i0 + 3 * qs), w3r, w3i, dr, di);
      V o[8];
      radix4Join<Fwd>(ar, ai, br, bi, cr, ci, dr, di, o);
      store(r0, o[0]);
      store(i0, o[1]);
      store(r0 + qs, o[2]);
      store(i0 + qs, o[3]);
      store(r0 + 2 * qs, o[4]);
      store(i0 + 2 * qs, o[5]);
      store(r0 + 3 * qs, o[6]);
      store(i0 + 3 * qs, o[7]);
    }
  }
  return tw + (bq * 6 * G);
}

// Reads complex value i of the bit-reversed input: interleaved pairs or
// two split arrays. The first stages take a source by value: vector stores
// may alias any object, so a source held by reference would have its
// pointers reloaded after every store.
template <class T>
struct PairSource {
  const T* p;
  T re(std::size_t i) const { return p[2 * i]; }
  T im(std::size_t i) const { return p[2 * i + 1]; }
};
template <class T>
struct SplitSource {
  const T* r;
  const T* m;
  T re(std::size_t i) const { return r[i]; }
  T im(std::size_t i) const { return m[i]; }
};

// Plain radix-4 butterfly on four values in memory order (a, b, c, d):
// s = a+b, t = a-b, u = c+d, v = c-d; outputs s+u, t-iv, s-u, t+iv
// forward, with t+iv and t-iv exchanged for the inverse.
template <bool Fwd, class T>
inline void radix4Scalar(const T* ar, const T* ai, T* outR, T* outI) {
  const T sr = ar[0] + ar[1], si = ai[0] + ai[1];
  const T tr = ar[0] - ar[1], ti = ai[0] - ai[1];
  const T ur = ar[2] + ar[3], ui = ai[2] + ai[3];
  const T vr = ar[2] - ar[3], vi = ai[2] - ai[3];
  outR[0] = sr + ur;
  outI[0] = si + ui;
  outR[2] = sr - ur;
  outI[2] = si - ui;
  if constexpr (Fwd) {
    outR[1] = tr + vi;
    outI[1] = ti - vr;
    outR[3] = tr - vi;
    outI[3] = ti + vr;
  } else {
    outR[1] = tr - vi;
    outI[1] = ti + vr;
    outR[3] = tr + vi;
    outI[3] = ti - vr;
  }
}

template <class Src, class T>
inline void gather4(const Src& src, std::size_t base, T* r, T* i) {
  for (int k = 0; k < 4; ++k) {
    r[k] = src.re(base + k);
    i[k] = src.im(base + k);
  }
}

// 4x4 transpose of four float vectors (rows become columns).
inline void transpose4(Vec<float>& r0, Vec<float>& r1, Vec<float>& r2, Vec<float>& r3) {
  using I = int __attribute__((vector_size(16)));
  const Vec<float> t0 = __builtin_shuffle(r0, r1, I{0, 4, 1, 5});
  const Vec<float> t1 = __builtin_shuffle(r2, r3, I{0, 4, 1, 5});
  const Vec<float> t2 = __builtin_shuffle(r0, r1, I{2, 6, 3, 7});
  const Vec<float> t3 = __builtin_shuffle(r2, r3, I{2, 6, 3, 7});
  r0 = __builtin_shuffle(t0, t1, I{0, 1, 4, 5});
  r1 = __builtin_shuffle(t0, t1, I{2, 3, 6, 7});
  r2 = __builtin_shuffle(t2, t3, I{0, 1, 4, 5});
  r3 = __builtin_shuffle(t2, t3, I{2, 3, 6, 7});
}

#if defined(__AVX2__)
// The 256-bit form: lane half h of each register belongs to a second
// group of butterflies; in-lane shuffles do both halves' transposes.
inline void transpose4(__m256& r0, __m256& r1, __m256& r2, __m256& r3) {
  const __m256 t0 = _mm256_unpacklo_ps(r0, r1), t1 = _mm256_unpacklo_ps(r2, r3);
  const __m256 t2 = _mm256_unpackhi_ps(r0, r1), t3 = _mm256_unpackhi_ps(r2, r3);
  r0 = _mm256_shuffle_ps(t0, t1, 0x44);
  r1 = _mm256_shuffle_ps(t0, t1, 0xEE);
  r2 = _mm256_shuffle_ps(t2, t3, 0x44);
  r3 = _mm256_shuffle_ps(t2, t3, 0xEE);
}
#endif

// The butterflies proper, for either width: lane g of every operand works
// on butterfly g with exactly the scalar operations, and the outputs are
// transposed back so that vector g holds butterfly g's four outputs.
template <bool Fwd, class V>
inline void radix4x4Core(V ar, V ai, V br, V bi, V cr, V ci, V dr, V di, V* outR, V* outI) {
  const V sr = ar + br, si = ai + bi, tr = ar - br, ti = ai - bi;
  const V ur = cr + dr, ui = ci + di, vr = cr - dr, vi = ci - di;
  V o0r = sr + ur, o0i = si + ui, o2r = sr - ur, o2i = si - ui;
  V o1r, o1i, o3r, o3i;
  if constexpr (Fwd) {
    o1r = tr + vi;
    o1i = ti - vr;
    o3r = tr - vi;
    o3i = ti + vr;
  } else {
    o1r = tr - vi;
    o1i = ti + vr;
    o3r = tr + vi;
    o3i = ti - vr;
  }
  transpose4(o0r, o1r, o2r, o3r);
  transpose4(o0i, o1i, o2i, o3i);
  outR[0] = o0r;
  outR[1] = o1r;
  outR[2] = o2r;
  outR[3] = o3r;
  outI[0] = o0i;
  outI[1] = o1i;
  outI[2] = o2i;
  outI[3] = o3i;
}

// Four radix-4 butterflies at once on 16 interleaved values (values 4g to
// 4g+3 form butterfly g): the inputs are transposed so that lane g holds
// butterfly g's operands.
template <bool Fwd>
inline void radix4x4(const float* in, Vec<float>* outR, Vec<float>* outI) {
  using V = Vec<float>;
  V ar = loadu(in), ai = loadu(in + 8), br = loadu(in + 16), bi = loadu(in + 24);       // (a b) pairs of groups 0..3
  V cr = loadu(in + 4), ci = loadu(in + 12), dr = loadu(in + 20), di = loadu(in + 28);  // (c d) pairs
  transpose4(ar, ai, br, bi);  // -> a.re, a.im, b.re, b.im with lanes = groups
  transpose4(cr, ci, dr, di);
  radix4x4Core<Fwd>(ar, ai, br, bi, cr, ci, dr, di, outR, outI);
}

// The same from split arrays: row g of each array holds a, b, c, d of
// group g, so one transpose per array gives the operands with lanes =
// groups.
template <bool Fwd>
inline void radix4x4Split(const float* re, const float* im, Vec<float>* outR, Vec<float>* outI) {
  using V = Vec<float>;
  V ar = loadu(re), br = loadu(re + 4), cr = loadu(re + 8), dr = loadu(re + 12);
  V ai = loadu(im), bi = loadu(im + 4), ci = loadu(im + 8), di = loadu(im + 12);
  transpose4(ar, br, cr, dr);
  transpose4(ai, bi, ci, di);
  radix4x4Core<Fwd>(ar, ai, br, bi, cr, ci, dr, di, outR, outI);
}

#if defined(__AVX2__)
// The same four butterflies on two 16-value units at once: lane half h of
// every 256-bit register belongs to unit h (values 16h .. 16h+15 from
// `in`).
inline __m256 loadHalves(const float* lo, const float* hi) {
  return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(lo)), _mm_loadu_ps(hi), 1);
}

template <bool Fwd>
inline void radix4x4Wide(const float* in, __m256* outR, __m256* outI) {
  __m256 ar = loadHalves(in, in + 32), ai = loadHalves(in + 8, in + 40);
  __m256 br = loadHalves(in + 16, in + 48), bi = loadHalves(in + 24, in + 56);
  __m256 cr = loadHalves(in + 4, in + 36), ci = loadHalves(in + 12, in + 44);
  __m256 dr = loadHalves(in + 20, in + 52), di = loadHalves(in + 28, in + 60);
  transpose4(ar, ai, br, bi);
  transpose4(cr, ci, dr, di);
  radix4x4Core<Fwd>(ar, ai, br, bi, cr, ci, dr, di, outR, outI);
}

// Block k of unit 0 and of unit 1 from the split halves of (re, im).
inline void storeBlocks(float* unit0, float* unit1, __m256 r, __m256 i) {
  _mm256_storeu_ps(unit0, _mm256_permute2f128_ps(r, i, 0x20));
  _mm256_storeu_ps(unit1, _mm256_permute2f128_ps(r, i, 0x31));
}

template <bool Fwd>
inline void cmulWideRows(__m256 xr, __m256 xi, __m256 wr, __m256 wi, __m256& outR, __m256& outI) {
  if constexpr (Fwd) {
    outR = xr * wr - xi * wi;
    outI = xr * wi + xi * wr;
  } else {
    outR = xr * wr + xi * wi;
    outI = xi * wr - xr * wi;
  }
}
#endif

// Float first stage, odd order: radix 8 on each run of 8 values. A and B
// are the radix-4 butterflies of values 0-3 and 4-7; B is multiplied lane
// by lane with W_8^l; block 0 gets A + B*W, block 1 gets A - B*W.
template <bool Fwd, int Step, class Src>
void firstStageR8(const Src src, float* re, float* im, std::size_t n) {
  using V = Vec<float>;
  const V w8r = {1.0f, 0.70710678f, 0.0f, -0.70710678f};
  const V w8i = {0.0f, -0.70710678f, -1.0f, -0.70710678f};
  std::size_t start = 0;
#if defined(__AVX2__)
  if constexpr (std::is_same_v<Src, PairSource<float>> && Step == 8) {
    // Four runs per round: the halves of each register are runs 4r+h*2 and
    // 4r+h*2+1 as in the 128-bit round below.
    const __m256 wr = _mm256_setr_ps(1.0f, 0.70710678f, 0.0f, -0.70710678f, 1.0f, 0.70710678f, 0.0f, -0.70710678f);
    const __m256 wi = _mm256_setr_ps(0.0f, -0.70710678f, -1.0f, -0.70710678f, 0.0f, -0.70710678f, -1.0f, -0.70710678f);
    for (; start + 32 <= n; start += 32) {
      __m256 qr[4], qi[4];
      radix4x4Wide<Fwd>(src.p + 2 * start, qr, qi);
      for (int h = 0; h < 2; ++h) {
        __m256 pr, pi;
        cmulWideRows<Fwd>(qr[2 * h + 1], qi[2 * h + 1], wr, wi, pr, pi);
        float* u0 = re + ((start + 8 * h) / 4) * Step;
        float* u1 = re + ((start + 16 + 8 * h) / 4) * Step;
        storeBlocks(u0, u1, qr[2 * h] + pr, qi[2 * h] + pi);
        storeBlocks(u0 + Step, u1 + Step, qr[2 * h] - pr, qi[2 * h] - pi);
      }
    }
  }
#endif
  if constexpr (std::is_same_v<Src, PairSource<float>> || std::is_same_v<Src, SplitSource<float>>) {
    // Two runs per round: butterflies A0, B0, A1, B1.
    for (; start + 16 <= n; start += 16) {
      V qr[4], qi[4];
      if constexpr (std::is_same_v<Src, PairSource<float>>) {
        radix4x4<Fwd>(src.p + 2 * start, qr, qi);
      } else {
        radix4x4Split<Fwd>(src.r + start, src.m + start, qr, qi);
      }
      for (int h = 0; h < 2; ++h) {
        V pr, pi;
        cmul<Fwd>(qr[2 * h + 1], qi[2 * h + 1], w8r, w8i, pr, pi);
        const std::size_t b = (start + 8 * h) / 4;
        store(re + b * Step, qr[2 * h] + pr);
        store(im + b * Step, qi[2 * h] + pi);
        store(re + (b + 1) * Step, qr[2 * h] - pr);
        store(im + (b + 1) * Step, qi[2 * h] - pi);
      }
    }
  }
  for (std::size_t run = start; run < n; run += 8) {
    float xr[8], xi[8], a[16];
    gather4(src, run, xr, xi);
    gather4(src, run + 4, xr + 4, xi + 4);
    radix4Scalar<Fwd>(xr, xi, a, a + 4);
    radix4Scalar<Fwd>(xr + 4, xi + 4, a + 8, a + 12);
    const V ar = loadu(a), ai = loadu(a + 4), br = loadu(a + 8), bi = loadu(a + 12);
    V pr, pi;
    cmul<Fwd>(br, bi, w8r, w8i, pr, pi);
    const std::size_t b = run / 4;
    store(re + b * Step, ar + pr);
    store(im + b * Step, ai + pi);
    store(re + (b + 1) * Step, ar - pr);
    store(im + (b + 1) * Step, ai - pi);
  }
}

// Float first stage, even order: radix 16 on each run of 16 values. Four
// radix-4 butterflies give four vectors, joined by one twiddled radix-4
// butterfly on the table's M = 16 stage (its only group, `tw`).
template <bool Fwd, int Step, class Src>
void firstStageR16(const Src src, float* re, float* im, std::size_t n, const float* tw) {
  using V = Vec<float>;
  const V w1r = load(tw), w1i = load(tw + 4);
  const V w2r = load(tw + 8), w2i = load(tw + 12);
  const V w3r = load(tw + 16), w3i = load(tw + 20);
  std::size_t first = 0;
#if defined(__AVX2__)
  if constexpr (std::is_same_v<Src, PairSource<float>> && Step == 8) {
    const __m256 x1r = _mm256_broadcast_ps(reinterpret_cast<const __m128*>(tw));
    const __m256 x1i = _mm256_broadcast_ps(reinterpret_cast<const __m128*>(tw + 4));
    const __m256 x2r = _mm256_broadcast_ps(reinterpret_cast<const __m128*>(tw + 8));
    const __m256 x2i = _mm256_broadcast_ps(reinterpret_cast<const __m128*>(tw + 12));
    const __m256 x3r = _mm256_broadcast_ps(reinterpret_cast<const __m128*>(tw + 16));
    const __m256 x3i = _mm256_broadcast_ps(reinterpret_cast<const __m128*>(tw + 20));
    for (; first + 32 <= n; first += 32) {
      __m256 qr[4], qi[4];
      radix4x4Wide<Fwd>(src.p + 2 * first, qr, qi);
      __m256 br, bi, cr, ci, dr, di;
      cmulWideRows<Fwd>(qr[1], qi[1], x2r, x2i, br, bi);
      cmulWideRows<Fwd>(qr[2], qi[2], x1r, x1i, cr, ci);
      cmulWideRows<Fwd>(qr[3], qi[3], x3r, x3i, dr, di);
      __m256 o[8];
      radix4Join<Fwd>(qr[0], qi[0], br, bi, cr, ci, dr, di, o);
      float* u0 = re + (first / 4) * Step;
      float* u1 = re + ((first + 16) / 4) * Step;
      for (int k = 0; k < 4; ++k) storeBlocks(u0 + k * Step, u1 + k * Step, o[2 * k], o[2 * k + 1]);
    }
  }
#endif
  for (std::size_t run = first; run < n; run += 16) {
    V qr[4], qi[4];
    if constexpr (std::is_same_v<Src, PairSource<float>>) {
      radix4x4<Fwd>(src.p + 2 * run, qr, qi);
    } else if constexpr (std::is_same_v<Src, SplitSource<float>>) {
      radix4x4Split<Fwd>(src.r + run, src.m + run, qr, qi);
    } else {
      float xr[16], xi[16], q[32];
      for (int g = 0; g < 4; ++g) {
        gather4(src, run + 4 * g, xr + 4 * g, xi + 4 * g);
        radix4Scalar<Fwd>(xr + 4 * g, xi + 4 * g, q + 8 * g, q + 8 * g + 4);
        qr[g] = loadu(q + 8 * g);
        qi[g] = loadu(q + 8 * g + 4);
      }
    }
    V br, bi, cr, ci, dr, di;
    cmul<Fwd>(qr[1], qi[1], w2r, w2i, br, bi);
    cmul<Fwd>(qr[2], qi[2], w1r, w1i, cr, ci);
    cmul<Fwd>(qr[3], qi[3], w3r, w3i, dr, di);
    V o[8];
    radix4Join<Fwd>(qr[0], qi[0], br, bi, cr, ci, dr, di, o);
    const std::size_t b = run / 4;
    for (int k = 0; k < 4; ++k) {
      store(re + (b + k) * Step, o[2 * k]);
      store(im + (b + k) * Step, o[2 * k + 1]);
    }
  }
}

// Double first stage: radix 4 on each run of 4 values, written as two
// blocks of two lanes.
template <bool Fwd, int Step, class Src>
void firstStageR4(const Src src, double* re, double* im, std::size_t n) {
  if constexpr (std::is_same_v<Src, PairSource<double>>) {
    // One complex value per register, (re, im): the butterfly's sums act on
    // both components at once; t -/+ i*v takes v with its halves swapped and
    // the second half negated.
    using V = Vec<double>;
    using I = long long __attribute__((vector_size(16)));
    const V negHigh = {0.0, -0.0};
    auto flipHigh = [&](V x) {
      I bits;
      __builtin_memcpy(&bits, &x, 16);
      I mask;
      __builtin_memcpy(&mask, &negHigh, 16);
      bits ^= mask;
      V out;
      __builtin_memcpy(&out, &bits, 16);
      return out;
    };
    std::size_t first = 0;
#if defined(__AVX2__)
    if constexpr (Step == 4) {
      // Two runs per round, run 0 in the low halves, run 1 in the high ones.
      const __m256d negHigh2 = _mm256_setr_pd(0.0, -0.0, 0.0, -0.0);
      auto pair = [](const double* lo, const double* hi) {
        return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(lo)), _mm_loadu_pd(hi), 1);
      };
      for (; first + 8 <= n; first += 8) {
        const double* p = src.p + 2 * first;
        const __m256d a = pair(p, p + 8), b = pair(p + 2, p + 10), c = pair(p + 4, p + 12), d = pair(p + 6, p + 14);
        const __m256d s = a + b, t = a - b, u = c + d, v = c - d;
        const __m256d mv = _mm256_xor_pd(_mm256_permute_pd(v, 0x5), negHigh2);  // (vi, -vr) per run
        const __m256d o0 = s + u, o2 = s - u;
        const __m256d o1 = Fwd ? t + mv : t - mv;
        const __m256d o3 = Fwd ? t - mv : t + mv;
        const __m256d r01 = _mm256_unpacklo_pd(o0, o1), i01 = _mm256_unpackhi_pd(o0, o1);
        const __m256d r23 = _mm256_unpacklo_pd(o2, o3), i23 = _mm256_unpackhi_pd(o2, o3);
        double* b0 = re + (first / 2) * Step;  // run 0: blocks 0, 1; run 1: blocks 2, 3
        _mm256_storeu_pd(b0, _mm256_permute2f128_pd(r01, i01, 0x20));
        _mm256_storeu_pd(b0 + Step, _mm256_permute2f128_pd(r23, i23, 0x20));
        _mm256_storeu_pd(b0 + 2 * Step, _mm256_permute2f128_pd(r01, i01, 0x31));
        _mm256_storeu_pd(b0 + 3 * Step, _mm256_permute2f128_pd(r23, i23, 0x31));
      }
    }
#endif
    for (std::size_t run = first; run < n; run += 4) {
      const double* p = src.p + 2 * run;
      const V a = loadu(p), b = loadu(p + 2), c = loadu(p + 4), d = loadu(p + 6);
      const V s = a + b, t = a - b, u = c + d, v = c - d;
      const V mv = flipHigh(__builtin_shuffle(v, I{1, 0}));  // (vi, -vr) = -i*v
      const V o0 = s + u, o2 = s - u;
      const V o1 = Fwd ? t + mv : t - mv;
      const V o3 = Fwd ? t - mv : t + mv;
      const std::size_t blk = run / 2;
      store(re + blk * Step, __builtin_shuffle(o0, o1, I{0, 2}));
      store(im + blk * Step, __builtin_shuffle(o0, o1, I{1, 3}));
      store(re + (blk + 1) * Step, __builtin_shuffle(o2, o3, I{0, 2}));
      store(im + (blk + 1) * Step, __builtin_shuffle(o2, o3, I{1, 3}));
    }
    return;
  }
  for (std::size_t run = 0; run < n; run += 4) {
    double xr[4], xi[4], orr[4], oi[4];
    gather4(src, run, xr, xi);
    radix4Scalar<Fwd>(xr, xi, orr, oi);
    const std::size_t b = run / 2;
    store(re + b * Step, Vec<double>{orr[0], orr[1]});
    store(im + b * Step, Vec<double>{oi[0], oi[1]});
    store(re + (b + 1) * Step, Vec<double>{orr[2], orr[3]});
    store(im + (b + 1) * Step, Vec<double>{oi[2], oi[3]});
  }
}

// Double, odd order: radix-2 pass on runs of 8 (four blocks): block pairs
// (0, 2) and (1, 3) with W_8^l for l = 0, 1 and l = 2, 3.
template <bool Fwd, int Step>
void radix2PassDouble(double* re, double* im, std::size_t nBlocks) {
  using V = Vec<double>;
  const V wlr = {1.0, 0.7071067811865475}, wli = {0.0, -0.7071067811865475};
  const V whr = {0.0, -0.7071067811865475}, whi = {-1.0, -0.7071067811865475};
  for (std::size_t b = 0; b < nBlocks; b += 4) {
    for (int h = 0; h < 2; ++h) {
      double* r0 = re + (b + h) * Step;
      double* i0 = im + (b + h) * Step;
      double* r2 = re + (b + h + 2) * Step;
      double* i2 = im + (b + h + 2) * Step;
      V pr, pi;
      cmul<Fwd>(load(r2), load(i2), h == 0 ? wlr : whr, h == 0 ? wli : whi, pr, pi);
      const V ar = load(r0), ai = load(i0);
      store(r0, ar + pr);
      store(i0, ai + pi);
      store(r2, ar - pr);
      store(i2, ai - pi);
    }
  }
}

// Last pass of interleaved kernels: each block's G reals and G imaginaries
// back to pairs, in place or from the work area to the caller's array.
inline void lastPassPairs(const float* blocks, float* out, std::size_t n) {
  using V = Vec<float>;
  using I = int __attribute__((vector_size(16)));
  for (std::size_t b = 0; b < n / 4; ++b) {
    const V r = load(blocks + 8 * b), i = load(blocks + 8 * b + 4);
    const V lo = __builtin_shuffle(r, i, I{0, 4, 1, 5});
    const V hi = __builtin_shuffle(r, i, I{2, 6, 3, 7});
    storeu(out + 8 * b, lo);
    storeu(out + 8 * b + 4, hi);
  }
}
inline void lastPassPairs(const double* blocks, double* out, std::size_t n) {
  using V = Vec<double>;
  using I = long long __attribute__((vector_size(16)));
  for (std::size_t b = 0; b < n / 2; ++b) {
    const V r = load(blocks + 4 * b), i = load(blocks + 4 * b + 2);
    storeu(out + 4 * b, __builtin_shuffle(r, i, I{0, 2}));
    storeu(out + 4 * b + 2, __builtin_shuffle(r, i, I{1, 3}));
  }
}

// Float order 2: one scalar radix-4 butterfly in extended precision,
// rounded once on storing.
template <bool Fwd, class T>
void order2Extended(T* r, T* i, std::size_t step) {
  long double ar[4], ai[4], orr[4], oi[4];
  for (int k = 0; k < 4; ++k) {
    ar[k] = r[k * step];
    ai[k] = i[k * step];
  }
  radix4Scalar<Fwd>(ar, ai, orr, oi);
  for (int k = 0; k < 4; ++k) {
    r[k * step] = static_cast<T>(orr[k]);
    i[k * step] = static_cast<T>(oi[k]);
  }
}

inline int log2Of(std::size_t n) {
  int o = 0;
  while ((std::size_t{1} << o) < n) ++o;
  return o;
}

#if defined(__AVX2__)
// 256-bit forms for the interleaved working layout, where one block (G
// reals, then G imaginaries) is exactly one 256-bit register. A complex
// product then multiplies the block by the broadcast real row and its
// half-swapped copy by the broadcast imaginary row, and adds the two with
// the sign of one half flipped: the same products and the same single sum
// per component as the 128-bit form, hence the same bits (negation and
// the order of the two addends of a sum do not change a rounded result).
struct Wide {
  static __m256 load(const float* p) { return _mm256_loadu_ps(p); }
  static __m256d load(const double* p) { return _mm256_loadu_pd(p); }
  static void store(float* p, __m256 v) { _mm256_storeu_ps(p, v); }
  static void store(double* p, __m256d v) { _mm256_storeu_pd(p, v); }
  static __m256 rows(const float* p) { return _mm256_broadcast_ps(reinterpret_cast<const __m128*>(p)); }
  static __m256d rows(const double* p) { return _mm256_broadcast_pd(reinterpret_cast<const __m128d*>(p)); }
  static __m256 swap(__m256 v) { return _mm256_permute2f128_ps(v, v, 1); }
  static __m256d swap(__m256d v) { return _mm256_permute2f128_pd(v, v, 1); }
  // Sign bit set in the real half (Low) or the imaginary half (High).
  static __m256 signLow(float) { return _mm256_setr_ps(-0.0f, -0.0f, -0.0f, -0.0f, 0.0f, 0.0f, 0.0f, 0.0f); }
  static __m256 signHigh(float) { return _mm256_setr_ps(0.0f, 0.0f, 0.0f, 0.0f, -0.0f, -0.0f, -0.0f, -0.0f); }
  static __m256d signLow(double) { return _mm256_setr_pd(-0.0, -0.0, 0.0, 0.0); }
  static __m256d signHigh(double) { return _mm256_setr_pd(0.0, 0.0, -0.0, -0.0); }
  static __m256 flip(__m256 v, __m256 m) { return _mm256_xor_ps(v, m); }
  static __m256d flip(__m256d v, __m256d m) { return _mm256_xor_pd(v, m); }
};

template <class T>
struct Vec256Of;
template <>
struct Vec256Of<float> {
  using type = __m256;
};
template <>
struct Vec256Of<double> {
  using type = __m256d;
};
template <class T>
using Vec256 = typename Vec256Of<T>::type;

template <bool Fwd, class V>
inline V wideMul(V x, V wr, V wi, V low, V high) {
  const V p1 = x * wr;
  const V p2 = Wide::swap(x) * wi;
  return p1 + Wide::flip(p2, Fwd ? low : high);
}

// A block in (re, im) pair order: the last pass's rearrangement.
inline __m256 toPairs(__m256 v) { return _mm256_permutevar8x32_ps(v, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7)); }
inline __m256d toPairs(__m256d v) { return _mm256_permute4x64_pd(v, 0xD8); }

// With ToPairs the pass is the kernel's final one and stores each block
// straight in pair order at the same place of `out` (the last pass folded
// into it: the same values, one sweep less).
template <class T, bool Fwd, bool ToPairs = false>
const T* radix4PassWide(T* data, std::size_t nBlocks, std::size_t bq, const T* tw, T* out = nullptr) {
  constexpr int G = VecOf<T>::kLanes;
  constexpr std::size_t B = 2 * G;  // elements per block
  using V = Vec256<T>;
  const V low = Wide::signLow(T{}), high = Wide::signHigh(T{});
  auto put = [&](T* at, V v) {
    if constexpr (ToPairs)
      Wide::store(out + (at - data), toPairs(v));
    else
      Wide::store(at, v);
  };
  for (std::size_t g = 0; g < nBlocks; g += 4 * bq) {
    const T* t = tw;
    T* p = data + g * B;
    const std::size_t qs = bq * B;
    for (std::size_t j = 0; j < bq; ++j, t += 6 * G, p += B) {
      const V a = Wide::load(p);
      const V b = wideMul<Fwd>(V(Wide::load(p + qs)), V(Wide::rows(t + 2 * G)), V(Wide::rows(t + 3 * G)), low, high);
      const V c = wideMul<Fwd>(V(Wide::load(p + 2 * qs)), V(Wide::rows(t)), V(Wide::rows(t + G)), low, high);
      const V d =
          wideMul<Fwd>(V(Wide::load(p + 3 * qs)), V(Wide::rows(t + 4 * G)), V(Wide::rows(t + 5 * G)), low, high);
      const V apb = a + b, amb = a - b, cpd = c + d, cmd = c - d;
      // -i(C-D) = (vi, -vr): the half-swapped difference with the imaginary
      // half negated.
      const V mi = Wide::flip(Wide::swap(cmd), high);
      put(p, apb + cpd);
      put(p + 2 * qs, apb - cpd);
      if constexpr (Fwd) {
        put(p + qs, amb + mi);
        put(p + 3 * qs, amb - mi);
      } else {
        put(p + qs, amb - mi);
        put(p + 3 * qs, amb + mi);
      }
    }
  }
  return tw + (bq * 6 * G);
}

// Reversal of 16-byte elements by 32-byte units (elements 2i, 2i+1): the
// same exchanges as the element-wise walk of the pair list.
inline void permutePairs16Wide(const unsigned char* s, unsigned char* d, int order, const std::uint32_t* list) {
  const std::size_t half = ((std::size_t{1} << order) / 2) * 16;
  auto ld = [](const unsigned char* p) { return _mm256_loadu_pd(reinterpret_cast<const double*>(p)); };
  auto st = [](unsigned char* p, __m256d v) { _mm256_storeu_pd(reinterpret_cast<double*>(p), v); };
  const std::uint32_t* p = list;
  for (; *p != 0; p += 2) {
    const std::size_t i = std::size_t{p[0]} * 8;  // byte offset of element 2i
    const std::size_t j = std::size_t{p[1]} * 8;
    const __m256d a = ld(s + i), b = ld(s + half + i), c = ld(s + j), e = ld(s + half + j);
    st(d + i, _mm256_permute2f128_pd(c, e, 0x20));
    st(d + half + i, _mm256_permute2f128_pd(c, e, 0x31));
    st(d + j, _mm256_permute2f128_pd(a, b, 0x20));
    st(d + half + j, _mm256_permute2f128_pd(a, b, 0x31));
  }
  std::size_t i = 0;
  for (;;) {
    const __m256d a = ld(s + i), b = ld(s + half + i);
    st(d + i, _mm256_permute2f128_pd(a, b, 0x20));
    st(d + half + i, _mm256_permute2f128_pd(a, b, 0x31));
    ++p;
    if (*p == 0) break;
    i = std::size_t{*p} * 8;
  }
}

inline void lastPassPairsWide(const float* blocks, float* out, std::size_t n) {
  const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
  for (std::size_t b = 0; b < n / 4; ++b)
    _mm256_storeu_ps(out + 8 * b, _mm256_permutevar8x32_ps(_mm256_loadu_ps(blocks + 8 * b), order));
}
inline void lastPassPairsWide(const double* blocks, double* out, std::size_t n) {
  for (std::size_t b = 0; b < n / 2; ++b)
    _mm256_storeu_pd(out + 4 * b, _mm256_permute4x64_pd(_mm256_loadu_pd(blocks + 4 * b), 0xD8));
}
#endif

// The passes after the first stage, shared by all kernels of a precision.
// Returns true when the final pass already wrote pairs to `pairsOut`
// (interleaved kernels on the wide path), so no last pass is needed.
template <class T, bool Fwd, int Step>
bool radixPasses(T* re, T* im, std::size_t n, const T* tw, std::size_t firstM, T* pairsOut) {
  constexpr int G = VecOf<T>::kLanes;
#if defined(__AVX2__)
  if constexpr (Step == 2 * G) {
    if (firstM > n) return false;
    std::size_t m = firstM;
    for (; m < n; m *= 4) tw = radix4PassWide<T, Fwd>(re, n / G, m / 4 / G, tw);
    radix4PassWide<T, Fwd, true>(re, n / G, m / 4 / G, tw, pairsOut);
    return true;
  }
#endif
  for (std::size_t m = firstM; m <= n; m *= 4) tw = radix4Pass<T, Fwd, Step>(re, im, n / G, m / 4 / G, tw);
  return false;
}

template <class T>
void lastPass(const T* blocks, T* out, std::size_t n) {
#if defined(__AVX2__)
  lastPassPairsWide(blocks, out, n);
#else
  lastPassPairs(blocks, out, n);
#endif
}

// Float kernel, interleaved. `work` null: in place; else first stage into
// `work`, passes there, last pass back into `samps`.
template <bool Fwd>
void floatKernel(SCplx* samps, std::size_t n, const float* tbl, SCplx* work) {
  float* x = reinterpret_cast<float*>(samps);
  const int order = log2Of(n);
  if (order == 2) {
    order2Extended<Fwd>(x, x + 1, 2);
    return;
  }
  float* d = work != nullptr ? reinterpret_cast<float*>(work) : x;
  const PairSource<float> src{x};
  const float* tw = tbl;
  bool paired;
  if (order & 1) {
    firstStageR8<Fwd, 8>(src, d, d + 4, n);
    paired = radixPasses<float, Fwd, 8>(d, d + 4, n, tw, 32, x);
  } else {
    firstStageR16<Fwd, 8>(src, d, d + 4, n, tw);
    paired = radixPasses<float, Fwd, 8>(d, d + 4, n, tw + 24, 64, x);
  }
  if (!paired) lastPass(d, x, n);
}

template <bool Fwd>
void floatSplitKernel(float* re, float* im, std::size_t n, const float* tbl, float* work) {
  const int order = log2Of(n);
  if (order == 2) {
    order2Extended<Fwd>(re, im, 1);
    return;
  }
  float* dr = work != nullptr ? work : re;
  float* di = work != nullptr ? work + n : im;
  const SplitSource<float> src{re, im};
  if (order & 1) {
    firstStageR8<Fwd, 4>(src, dr, di, n);
    radixPasses<float, Fwd, 4>(dr, di, n, tbl, 32, nullptr);
  } else {
    firstStageR16<Fwd, 4>(src, dr, di, n, tbl);
    radixPasses<float, Fwd, 4>(dr, di, n, tbl + 24, 64, nullptr);
  }
  if (work != nullptr) {
    for (std::size_t k = 0; k < n; k += 4) {
      storeu(re + k, load(dr + k));
      storeu(im + k, load(di + k));
    }
  }
}

template <bool Fwd>
void doubleKernel(DCplx* samps, std::size_t n, const double* tbl, DCplx* work) {
  double* x = reinterpret_cast<double*>(samps);
  const int order = log2Of(n);
  double* d = work != nullptr ? reinterpret_cast<double*>(work) : x;
  firstStageR4<Fwd, 4>(PairSource<double>{x}, d, d + 2, n);
  bool paired;
  if (order & 1) {
    radix2PassDouble<Fwd, 4>(d, d + 2, n / 2);
    paired = radixPasses<double, Fwd, 4>(d, d + 2, n, tbl, 32, x);
  } else {
    paired = radixPasses<double, Fwd, 4>(d, d + 2, n, tbl, 16, x);
  }
  if (!paired) lastPass(d, x, n);
}

template <bool Fwd>
void doubleSplitKernel(double* re, double* im, std::size_t n, const double* tbl, double* work) {
  const int order = log2Of(n);
  double* dr = work != nullptr ? work : re;
  double* di = work != nullptr ? work + n : im;
  firstStageR4<Fwd, 2>(SplitSource<double>{re, im}, dr, di, n);
  if (order & 1) {
    radix2PassDouble<Fwd, 2>(dr, di, n / 2);
    radixPasses<double, Fwd, 2>(dr, di, n, tbl, 32, nullptr);
  } else {
    radixPasses<double, Fwd, 2>(dr, di, n, tbl, 16, nullptr);
  }
  if (work != nullptr) {
    for (std::size_t k = 0; k < n; k += 2) {
      storeu(re + k, load(dr + k));
      storeu(im + k, load(di + k));
    }
  }
}
