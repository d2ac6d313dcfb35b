// Tone generators (source groups "ryxtone" for double and DCplx, "mvqtone"
// for float and SCplx, "ryxtonew" for the 16-bit forms).
//
// Every form is a recurrence set up by a few cosines at Init; no cosine is
// evaluated per sample, and the drift of each recurrence is part of the
// behaviour:
//  - double: y = y1*coef - y2, coef = 2*cos(w); blocks equal single calls;
//  - float: a window of the next twelve floats (six SCplx). A single step
//    appends coef*w[11] - w[10] in wide precision with the double coef;
//    long blocks run two four-float lanes on the single-precision
//    2*cos(4w) (real) or 2*cos(2w) (complex), lanes stride four floats;
//  - 16-bit: two Q14 phasors, the even one rotated with floor, the odd one
//    with round-half-up, emitted through a biased right shift.
#include <emmintrin.h>

#include <cmath>
#include <cstdint>
#include <cstring>

#include "frame/checks.h"
#include "generate/generate_common.h"

namespace ryx::gen {
namespace {

constexpr const char* kNullState = "Null pointer to state";
constexpr const char* kNeedInit = "Structure initialization need";

// ---- double and DCplx: plain two-term recurrence -----------------------

inline double recur(double y1, double y2, double c) { return y1 * c - y2; }
inline DCplx recur(DCplx y1, DCplx y2, double c) { return {y1.re * c - y2.re, y1.im * c - y2.im}; }
inline void sampleAt(double& y, Wide mag, Wide arg) { y = static_cast<double>(mag * std::cos(arg)); }
inline void sampleAt(DCplx& y, Wide mag, Wide arg) {
  y = {static_cast<double>(mag * std::cos(arg)), static_cast<double>(mag * std::sin(arg))};
}

template <class St, class Smp>
struct ToneTwoTerm {
  using State = St;
  using Sample = Smp;
  static constexpr const char* stem = "ryxtone";
  static bool marked(const State* s) { return hasMark(s->mark); }

  static void init(State* s, double freq, double phase, double mag) {
    const Wide w = 2 * kPiWide * freq;
    s->coef = static_cast<double>(2 * std::cos(w));
    sampleAt(s->y1, mag, phase - w);
    sampleAt(s->y2, mag, phase - w - w);
    s->mag = mag, s->freq = freq, s->phase = phase;
    writeMark(s->mark);
  }
  static Smp one(State* s) {
    const Smp y = recur(s->y1, s->y2, s->coef);
    s->y2 = s->y1, s->y1 = y;
    return y;
  }
  static void block(State* s, Smp* dst, int n) {
    const double c = s->coef;
    Smp y1 = s->y1, y2 = s->y2;
    for (int i = 0; i < n; ++i) {
      dst[i] = recur(y1, y2, c);
      y2 = y1, y1 = dst[i];
    }
    s->y1 = y1, s->y2 = y2;
  }
};

using ToneD = ToneTwoTerm<RyxToneF64State, double>;
using ToneZ = ToneTwoTerm<RyxToneDCplxState, DCplx>;

// ---- float and SCplx: look-ahead window ---------------------------------
//
// Seen as floats, both windows hold twelve values and the scalar recurrence
// links floats S apart (S = 1 real, 2 complex): f[i] = coef*f[i-S] - f[i-2S].
// The vector path holds floats 0..3 and 4..7 as two lanes; lane values four
// floats apart obey lane' = vc*lane - lane'' with vc = 2*cos(4w/S).

template <class St, class Smp, int S>
struct ToneFloat {
  using State = St;
  using Sample = Smp;
  static constexpr const char* stem = "mvqtone";
  static constexpr int kSmall = 8 / S;  // longest block on the scalar path
  static bool marked(const State* s) { return s->mark == RYX_SSX_MAGIC; }
  static float* win(State* s) { return reinterpret_cast<float*>(s->window); }
  static float vectorCoef(const RyxToneF32State* s) { return s->coef4; }
  static float vectorCoef(const RyxToneSCplxState* s) { return s->coef2; }
  static void setVectorCoef(RyxToneF32State* s, Wide c) { s->coef4 = static_cast<float>(16 * c * c * (c * c - 1) + 2); }
  static void setVectorCoef(RyxToneSCplxState* s, Wide c) { s->coef2 = static_cast<float>(4 * c * c - 2); }
  static void keepOld(RyxToneF32State* s) { s->spare = s->window[0]; }
  static void keepOld(RyxToneSCplxState*) {}

  static void init(State* s, float freq, float phase, float mag) {
    const Wide w = 2 * kPiWide * freq, c = std::cos(w);
    // chain[0..S) is the sample before the first, chain[S..2S) the first.
    Wide chain[12 + S];
    chain[0] = mag * std::cos(phase - w);
    chain[S] = mag * std::cos(static_cast<Wide>(phase));
    if (S == 2) {
      chain[1] = mag * std::sin(phase - w);
      chain[3] = mag * std::sin(static_cast<Wide>(phase));
    }
    for (int i = 2 * S; i < 12 + S; ++i) chain[i] = 2 * c * chain[i - S] - chain[i - 2 * S];
    s->mag = mag, s->freq = freq, s->phase = phase;
    s->coef = static_cast<double>(2 * c);
    setVectorCoef(s, c);
    float* f = win(s);
    for (int i = 0; i < 12; ++i) f[i] = static_cast<float>(chain[i + S]);
    s->mark = RYX_SSX_MAGIC;
  }

  // Refill floats [from, 12) by the double coef, each rounded to single
  // before it feeds the next.
  static void rebuild(State* s, int from) {
    float* f = win(s);
    const Wide c = s->coef;
    for (int i = from; i < 12; ++i) f[i] = static_cast<float>(c * f[i - S] - f[i - 2 * S]);
  }

  // Copy k samples out, move the next four floats to the front, rebuild.
  static void scalarBlock(State* s, float* dst, int k) {
    float* f = win(s);
    std::memcpy(dst, f, sizeof(float) * S * k);
    std::memmove(f, f + S * k, 4 * sizeof(float));
    rebuild(s, 4);
  }

  static Sample one(State* s) {
    float* f = win(s);
    const Wide c = s->coef;
    Sample out;
    float next[S];
    std::memcpy(&out, f, sizeof out);
    for (int j = 0; j < S; ++j) next[j] = static_cast<float>(c * f[12 - S + j] - f[12 - 2 * S + j]);
    keepOld(s);
    std::memmove(f, f + S, sizeof(float) * (12 - S));
    std::memcpy(f + 12 - S, next, sizeof next);
    return out;
  }

  static void block(State* s, Sample* out, int n) {
    float* dst = reinterpret_cast<float*>(out);
    if (n <= kSmall) return scalarBlock(s, dst, n);
    // Peel samples until dst reaches 16 bytes, when it is sample-aligned.
    const auto addr = reinterpret_cast<std::uintptr_t>(dst);
    const int peel = addr % (4 * S) == 0 ? static_cast<int>(((0 - addr) & 15) / (4 * S)) : 0;
    float* f = win(s);
    std::memcpy(dst, f, sizeof(float) * S * peel);
    dst += S * peel;
    const int floats = S * (n - peel);
    const __m128 c = _mm_set1_ps(vectorCoef(s));
    __m128 a = _mm_loadu_ps(f + S * peel), b = _mm_loadu_ps(f + S * peel + 4);
    for (int t = floats >> 3; t > 0; --t, dst += 8) {
      _mm_storeu_ps(dst, a);
      _mm_storeu_ps(dst + 4, b);
      a = _mm_sub_ps(_mm_mul_ps(c, b), a);
      b = _mm_sub_ps(_mm_mul_ps(c, a), b);
    }
    _mm_storeu_ps(f, a);
    _mm_storeu_ps(f + 4, b);
    _mm_storeu_ps(f + 8, _mm_sub_ps(_mm_mul_ps(c, b), a));
    // The tail (possibly empty) also restores the window's coef recurrence.
    scalarBlock(s, dst, (floats & 7) / S);
  }
};

using ToneS = ToneFloat<RyxToneF32State, float, 1>;
using ToneC = ToneFloat<RyxToneSCplxState, SCplx, 2>;

// ---- 16-bit and WCplx: Q14 phasors --------------------------------------

inline short saturate16(std::int32_t v) {
  return static_cast<short>(v > 32767 ? 32767 : v < -32768 ? -32768 : v);
}

// Biased Q14 narrowing of Init: negative sums come out one above the floor.
inline short biasedQ14(std::int32_t x) { return static_cast<short>((x + (x < 0 ? 16384 : 0)) >> 14); }

// Rotation by 2w: bias 0 floors (even phasor), 8192 rounds half up (odd).
inline WCplx rotate(WCplx p, const short (&rot)[4], std::int32_t bias) {
  const std::int32_t re = p.re * rot[0] + p.im * rot[1];
  const std::int32_t im = p.re * rot[2] + p.im * rot[3];
  return {saturate16((re + bias) >> 14), saturate16((im + bias) >> 14)};
}

// Output stage: undo the 2^shift scaling with the bias of negative words.
inline short descale(short u, int shift) {
  const short t = static_cast<short>(u + (u < 0 ? (1 << shift) : 0));
  return static_cast<short>(t >> shift);
}

template <bool Cplx>
struct ToneInt {
  using State = RyxToneI16State;
  using Sample = std::conditional_t<Cplx, WCplx, short>;
  static constexpr const char* stem = "ryxtonew";
  static constexpr int kCapacity = Cplx ? 16 : 32;
  static bool marked(const State* s) { return hasMark(s->mark); }

  static void init(State* s, float freq, float phase, short mag) {
    s->mag = mag, s->freq = freq, s->phase = phase;
    writeMark(s->mark);
    const double w = 2 * 3.141592653589793 * freq;
    const std::int32_t cos2 = roundAway(16384 * std::cos(2 * w)), sin2 = roundAway(16384 * std::sin(2 * w));
    s->rot[0] = static_cast<short>(cos2), s->rot[1] = static_cast<short>(-sin2);
    s->rot[2] = static_cast<short>(sin2), s->rot[3] = static_cast<short>(cos2);
    // Normalise mag towards 2^14. A mag of 0 would never get there; the
    // doubling stops at the record's largest shift, 14, and gives zeros.
    std::int32_t scale = 1;
    int shift = 0;
    while (shift < 14 && mag * scale < 16384) scale *= 2, ++shift;
    for (short& f : s->fix) f = static_cast<short>(scale);
    s->shift = shift;
    const std::int32_t cw = roundAway(16384 * std::cos(w)), sw = roundAway(16384 * std::sin(w));
    const double p = phase - w, m = static_cast<double>(mag) * scale;
    const std::int32_t re0 = roundAway(std::cos(p) * m), im0 = roundAway(std::sin(p) * m);
    const WCplx a = {biasedQ14(re0 * cw - im0 * sw), biasedQ14(re0 * sw + im0 * cw)};
    s->phasorA = a;
    s->phasorB = {biasedQ14(a.re * cw - a.im * sw), biasedQ14(a.re * sw + a.im * cw)};
    s->pos = kCapacity;
  }

  // n samples straight from the phasors; only the phasors are written back.
  static void kernel(State* s, Sample* out, int n) {
    short* dst = reinterpret_cast<short*>(out);
    const int shift = s->shift;
    WCplx a = s->phasorA, b = s->phasorB;
    auto emit = [&](WCplx p) {
      *dst++ = descale(p.re, shift);
      if (Cplx) *dst++ = descale(p.im, shift);
    };
    for (int t = n / 2; t > 0; --t) {
      emit(a), emit(b);
      a = rotate(a, s->rot, 0);
      b = rotate(b, s->rot, 8192);
    }
    if (n & 1) {
      // Half turn: the odd phasor becomes the even one, and the new odd
      // phasor is the old even one advanced by 2w, so the next call goes on
      // with the sample after.
      emit(a);
      const WCplx next = rotate(a, s->rot, 8192);
      a = b, b = next;
    }
    s->phasorA = a, s->phasorB = b;
  }

  static Sample* buffer(State* s) { return reinterpret_cast<Sample*>(s->buf); }

  static Sample one(State* s) {
    if (s->pos >= kCapacity) kernel(s, buffer(s), kCapacity), s->pos = 0;
    return buffer(s)[s->pos++];
  }

  static void block(State* s, Sample* dst, int n) {
    if (s->pos < kCapacity) {
      const int k = n < kCapacity - s->pos ? n : kCapacity - s->pos;
      std::memcpy(dst, buffer(s) + s->pos, sizeof(Sample) * k);
      s->pos += k, dst += k, n -= k;
      if (n == 0) return;
    }
    kernel(s, dst, n);
  }
};

using ToneW = ToneInt<false>;
using ToneV = ToneInt<true>;

// ---- Entries ------------------------------------------------------------

template <class K, class Real, class Mag>
void toneInit(const char* name, Real freq, Real phase, Mag mag, typename K::State* s) {
  if (!passFirst({name, K::stem}, {{mag < 0, "Invalid magnitude value"},
                                   {freq < 0 || freq >= 0.5, "Invalid freq value"},
                                   {phase < 0 || static_cast<double>(phase) >= kTwoPi, "Invalid phase value"},
                                   {s == nullptr, kNullState}}))
    return;
  K::init(s, freq, phase, mag);
}

template <class K>
bool toneReady(const char* name, typename K::State* s) {
  return passFirst({name, K::stem}, {{s == nullptr, kNullState}, {s != nullptr && !K::marked(s), kNeedInit}});
}

template <class K>
typename K::Sample toneOne(const char* name, typename K::State* s) {
  return toneReady<K>(name, s) ? K::one(s) : typename K::Sample{};
}

template <class K>
void toneBlock(const char* name, typename K::State* s, typename K::Sample* dst, int n) {
  if (!passFirst({name, K::stem}, {{s == nullptr, kNullState},
                                   {dst == nullptr, "Null input buffer pointer"},
                                   {n < 1, "Bad number of items"},
                                   {s != nullptr && !K::marked(s), kNeedInit}}))
    return;
  K::block(s, dst, n);
}

}  // namespace
}  // namespace ryx::gen

using namespace ryx::gen;

extern "C" {

RYXAPI void ryxsToneInit(float f, float p, float m, RyxToneF32State* s) { toneInit<ToneS>(__func__, f, p, m, s); }
RYXAPI void ryxcToneInit(float f, float p, float m, RyxToneSCplxState* s) { toneInit<ToneC>(__func__, f, p, m, s); }
RYXAPI void ryxdToneInit(double f, double p, double m, RyxToneF64State* s) { toneInit<ToneD>(__func__, f, p, m, s); }
RYXAPI void ryxzToneInit(double f, double p, double m, RyxToneDCplxState* s) { toneInit<ToneZ>(__func__, f, p, m, s); }
RYXAPI void ryxwToneInit(float f, float p, short m, RyxToneI16State* s) { toneInit<ToneW>(__func__, f, p, m, s); }
RYXAPI void ryxvToneInit(float f, float p, short m, RyxToneI16State* s) { toneInit<ToneV>(__func__, f, p, m, s); }

RYXAPI float ryxsTone(RyxToneF32State* s) { return toneOne<ToneS>(__func__, s); }
RYXAPI SCplx ryxcTone(RyxToneSCplxState* s) { return toneOne<ToneC>(__func__, s); }
RYXAPI double ryxdTone(RyxToneF64State* s) { return toneOne<ToneD>(__func__, s); }
RYXAPI DCplx ryxzTone(RyxToneDCplxState* s) { return toneOne<ToneZ>(__func__, s); }
RYXAPI short ryxwTone(RyxToneI16State* s) { return toneOne<ToneW>(__func__, s); }
RYXAPI WCplx ryxvTone(RyxToneI16State* s) { return toneOne<ToneV>(__func__, s); }

RYXAPI void ryxcToneOut(RyxToneSCplxState* s, SCplx* val) {
  if (ryx::passFirst({__func__, ToneC::stem}, {{val == nullptr, "val==0"}}) && toneReady<ToneC>(__func__, s))
    *val = ToneC::one(s);
}

RYXAPI void ryxsbTone(RyxToneF32State* s, float* dst, int n) { toneBlock<ToneS>(__func__, s, dst, n); }
RYXAPI void ryxcbTone(RyxToneSCplxState* s, SCplx* dst, int n) { toneBlock<ToneC>(__func__, s, dst, n); }
RYXAPI void ryxdbTone(RyxToneF64State* s, double* dst, int n) { toneBlock<ToneD>(__func__, s, dst, n); }
RYXAPI void ryxzbTone(RyxToneDCplxState* s, DCplx* dst, int n) { toneBlock<ToneZ>(__func__, s, dst, n); }
RYXAPI void ryxwbTone(RyxToneI16State* s, short* dst, int n) { toneBlock<ToneW>(__func__, s, dst, n); }
RYXAPI void ryxvbTone(RyxToneI16State* s, WCplx* dst, int n) { toneBlock<ToneV>(__func__, s, dst, n); }

}  // extern "C"
