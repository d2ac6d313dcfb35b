// Triangle generators (source group "ryxtrngl").
//
// The wave stands at +mag at phase 0, falls over fall = pi + asym to -mag
// and rises over rise = pi - asym back. Two designs:
//  - accumulators (double, DCplx, 16-bit, WCplx): value += step, reflected
//    at the rail it passes, or folded by a whole period when one step
//    overshoots a whole leg. Single calls round the value to the record's
//    type after every step; blocks keep it wide and track the direction in
//    a flag, writing value and step back once. 16-bit output is the value
//    rounded to nearest even and wrapped;
//  - float forms: a queue of four phases and a table of lines (slopes and
//    intercepts by pairs of lanes), so four samples cost one compare mask
//    and two paired loads; complex forms interleave the real and imaginary
//    phases, so a complex block is the real block on twice the count.
#include <emmintrin.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "frame/checks.h"
#include "generate/generate_common.h"

namespace ryx::gen {
namespace {

constexpr double kPiD = 3.141592653589793;
constexpr Wide kTwoPiWide = 2 * kPiWide;

// ---- accumulator forms -------------------------------------------------------

inline double emitAs(double, Wide v) { return static_cast<double>(v); }
inline short emitAs(short, Wide v) { return roundWrap16(static_cast<double>(v)); }

template <class St, class Out>
struct Accumulator {
  using State = St;
  using F = decltype(St::mag);
  static constexpr bool kCplx = requires(St s) { s.valueRe; };
  using Sample = std::conditional_t<kCplx, std::conditional_t<std::is_same_v<Out, short>, WCplx, DCplx>, Out>;
  static constexpr const char* stem = "ryxtrngl";
  static bool marked(const St*) { return true; }

  static F& stepOf(St* s, int c) {
    if constexpr (kCplx) return c ? s->stepIm : s->stepRe;
    else return s->step;
  }
  static F& valueOf(St* s, int c) {
    if constexpr (kCplx) return c ? s->valueIm : s->valueRe;
    else return s->value;
  }

  static void init(St* s, Wide freq, Wide phase, Wide mag, Wide asym) {
    const Wide fall = kPiWide + asym, rise = kPiWide - asym, w2 = 4 * kPiWide * mag;
    const Wide reflectTop = -rise / fall, reflectBottom = -fall / rise;
    s->mag = static_cast<F>(mag);
    s->stepDown = static_cast<F>(-w2 * freq / fall);
    s->stepUp = static_cast<F>(w2 * freq / rise);
    s->reflectTop = static_cast<F>(reflectTop);
    s->reflectBottom = static_cast<F>(reflectBottom);
    s->foldTop = static_cast<F>(w2 / rise);
    s->foldBottom = static_cast<F>(w2 / fall);
    s->offsetTop = static_cast<F>(mag - reflectTop * mag);
    s->offsetBottom = static_cast<F>(reflectBottom * mag - mag);
    // The imaginary channel starts (2*pi + fall)/2 further on.
    Wide start[2] = {phase, phase + (kTwoPiWide + fall) / 2};
    if (start[1] > kTwoPiWide) start[1] -= kTwoPiWide;
    for (int c = 0; c < (kCplx ? 2 : 1); ++c) {
      const Wide p = start[c];
      const bool rising = p >= fall;
      stepOf(s, c) = rising ? s->stepUp : s->stepDown;
      valueOf(s, c) = static_cast<F>(rising ? mag * (2 * (p - fall) / rise - 1) : mag * (1 - 2 * p / fall));
    }
  }

  // One sample of one channel, rounded back to the record's type.
  static Out single(St* s, int c) {
    F& step = stepOf(s, c);
    F& value = valueOf(s, c);
    const Out out = emitAs(Out{}, value);
    const Wide mag = s->mag;
    Wide v = static_cast<Wide>(value) + step;
    if (v > mag) {
      const Wide t = (v - mag) * s->reflectTop + mag;
      if (t < -mag) v -= s->foldTop;
      else v = t, step = s->stepDown;
    } else if (v < -mag) {
      const Wide t = (v + mag) * s->reflectBottom - mag;
      if (t > mag) v += s->foldBottom;
      else v = t, step = s->stepUp;
    }
    value = static_cast<F>(v);
    return out;
  }

  static Sample one(St* s) {
    if constexpr (kCplx) {
      Sample v;
      v.re = single(s, 0);
      v.im = single(s, 1);
      return v;
    } else {
      return single(s, 0);
    }
  }

  // A channel run over a block: wide value, direction read once, only the
  // rail ahead tested.
  struct Run {
    const St* s;
    Wide v, step;
    bool up;
    Out next() {
      const Out out = emitAs(Out{}, v);
      const Wide mag = s->mag;
      v += step;
      if (up) {
        if (v > mag) {
          const Wide t = s->reflectTop * v + s->offsetTop;
          if (t < -mag) v -= s->foldTop;
          else v = t, step = s->stepDown, up = false;
        }
      } else if (v < -mag) {
        const Wide t = s->reflectBottom * v + s->offsetBottom;
        if (t > mag) v += s->foldBottom;
        else v = t, step = s->stepUp, up = true;
      }
      return out;
    }
  };

  static void block(St* s, Sample* dst, int n) {
    constexpr int channels = kCplx ? 2 : 1;
    Run run[channels];
    for (int c = 0; c < channels; ++c) run[c] = {s, valueOf(s, c), stepOf(s, c), stepOf(s, c) > 0};
    Out* out = reinterpret_cast<Out*>(dst);
    for (int i = 0; i < n; ++i)
      for (int c = 0; c < channels; ++c) *out++ = run[c].next();
    for (int c = 0; c < channels; ++c) {
      valueOf(s, c) = static_cast<F>(run[c].v);
      stepOf(s, c) = static_cast<F>(run[c].step);
    }
  }
};

// ---- float forms: phase queue and line table -------------------------------

struct PhaseQueue {
  using State = RyxTrnglF32State;
  static constexpr const char* stem = "ryxtrngl";
  static bool marked(const State* s) { return s->mark == RYX_SSX_MAGIC; }

  // The table: slopes of the four lane pairs, then their intercepts; a set
  // bit of the pair index puts that lane on the rising line.
  static float* lines(State* s) {
    const auto a = reinterpret_cast<std::uintptr_t>(s->reserved);
    return reinterpret_cast<float*>((a + 7) & ~std::uintptr_t{7});
  }

  static float wrap(float p) { return p > kTwoPi ? static_cast<float>(p - kTwoPi) : p; }
  static Wide wrapWide(Wide p) { return p > kTwoPiWide ? p - kTwoPiWide : p; }

  static void init(State* s, Wide freq, Wide phase, Wide mag, Wide asym, bool cplx) {
    const Wide w = kTwoPiWide * freq, fall = kPiWide + asym, rise = kPiWide - asym;
    const Wide A = -2 * mag / fall, B = 2 * mag / rise, C = -mag * (kTwoPiWide + fall) / rise;
    const Wide slopes[8] = {A, A, B, A, A, B, B, B}, intercepts[8] = {mag, mag, C, mag, mag, C, C, C};
    float* L = lines(s);
    for (int i = 0; i < 8; ++i) L[i] = static_cast<float>(slopes[i]), L[8 + i] = static_cast<float>(intercepts[i]);
    s->lines = L;
    s->fall = static_cast<float>(fall);
    Wide ph[4];
    if (cplx) {
      const Wide half = (kTwoPiWide + fall) / 2;
      ph[0] = phase, ph[1] = wrapWide(phase + half), ph[2] = wrapWide(phase + w), ph[3] = wrapWide(ph[2] + half);
      s->phaseStep = static_cast<float>(wrapWide(2 * w));
    } else {
      ph[0] = phase;
      for (int i = 1; i < 4; ++i) ph[i] = wrapWide(ph[i - 1] + w);
      s->phaseStep = static_cast<float>(wrapWide(4 * w));
    }
    for (int i = 0; i < 4; ++i) s->phases[i] = static_cast<float>(ph[i]);
    s->mark = RYX_SSX_MAGIC;
  }

  static float line(State* s, float p, bool rising) {
    const float* L = lines(s);
    return rising ? L[6] * p + L[14] : L[0] * p + L[8];
  }

  // One value from the head of the queue; the queue moves down a place.
  // The head is wrapped on reading too, as a vector block may leave its
  // lanes a step past 2*pi.
  static float single(State* s) {
    const float p = wrap(s->phases[0]);
    const float out = line(s, p, !(s->fall > p));
    const float next = p + s->phaseStep;
    s->phases[0] = s->phases[1], s->phases[1] = s->phases[2], s->phases[2] = s->phases[3];
    s->phases[3] = wrap(next);
    return out;
  }

  // k <= 4 values the scalar way, then the queue rotated by k.
  static void scalarRun(State* s, float* dst, int k) {
    float* ph = s->phases;
    for (int i = 0; i < k; ++i) {
      const float p = wrap(ph[i]);
      const float v = line(s, p, p >= s->fall);
      std::memcpy(dst + i, &v, sizeof v);  // dst may be misaligned
      ph[i] = wrap(p + s->phaseStep);
    }
    const float old[4] = {ph[0], ph[1], ph[2], ph[3]};
    for (int i = 0; i < 4; ++i) ph[i] = old[(i + k) & 3];
  }

  static void block(State* s, float* dst, int n) {
    if (n <= 4) return scalarRun(s, dst, n);
    const auto addr = reinterpret_cast<std::uintptr_t>(dst);
    const int peel = addr % 4 == 0 ? static_cast<int>(((0 - addr) & 15) / 4) : 0;
    scalarRun(s, dst, peel);
    dst += peel;
    const int m = n - peel;
    const float* L = lines(s);
    const __m128 step = _mm_set1_ps(s->phaseStep), fall = _mm_set1_ps(s->fall);
    const __m128 twoPi = _mm_set1_ps(static_cast<float>(kTwoPi));
    __m128 p = _mm_loadu_ps(s->phases);
    for (int t = m >> 2; t > 0; --t, dst += 4) {
      p = _mm_sub_ps(p, _mm_and_ps(_mm_cmpgt_ps(p, twoPi), twoPi));
      const int mask = _mm_movemask_ps(_mm_cmplt_ps(fall, p));
      const int lo = 2 * (mask & 3), hi = 2 * (mask >> 2);
      const __m128 slope = _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(L + lo)),
                                        reinterpret_cast<const __m64*>(L + hi));
      const __m128 icpt = _mm_loadh_pi(_mm_loadl_pi(_mm_setzero_ps(), reinterpret_cast<const __m64*>(L + 8 + lo)),
                                       reinterpret_cast<const __m64*>(L + 8 + hi));
      _mm_storeu_ps(dst, _mm_add_ps(_mm_mul_ps(p, slope), icpt));
      p = _mm_add_ps(p, step);
    }
    _mm_storeu_ps(s->phases, p);
    scalarRun(s, dst, m & 3);
  }
};

// ---- Entries -------------------------------------------------------------------

// Words of the float forms end in a blank.
template <bool Blank>
struct Words {
  static constexpr const char* mag = Blank ? "Invalid magnitude value " : "Invalid magnitude value";
  static constexpr const char* freq = Blank ? "Invalid frequence value " : "Invalid frequence value";
  static constexpr const char* phase = Blank ? "Invalid phase value " : "Invalid phase value";
  static constexpr const char* asym = Blank ? "Invalid asymmetry value " : "Invalid asymmetry value";
  static constexpr const char* state = Blank ? "Null pointer to state " : "Null pointer to state";
  static constexpr const char* buffer = Blank ? "Null pointer to buffer " : "Null pointer to buffer";
  static constexpr const char* count = Blank ? "Invalid number of items " : "Invalid number of items";
};
constexpr const char* kNeedInit = "Structure initialization need ";

template <bool Blank, class R, class M, class St>
bool initPasses(const char* name, R freq, R phase, M mag, R asym, St* s) {
  using W = Words<Blank>;
  return passFirst({name, "ryxtrngl"}, {{mag < 0, W::mag},
                                        {freq < 0 || freq >= 0.5, W::freq},
                                        {phase < 0 || static_cast<double>(phase) >= kTwoPi, W::phase},
                                        {asym <= -kPiD || asym >= kPiD, W::asym},
                                        {s == nullptr, W::state}});
}

template <class K, class R, class M>
void accInit(const char* name, R freq, R phase, M mag, R asym, typename K::State* s) {
  if (initPasses<false>(name, freq, phase, mag, asym, s)) K::init(s, freq, phase, mag, asym);
}

template <class K>
typename K::Sample accOne(const char* name, typename K::State* s) {
  return passFirst({name, K::stem}, {{s == nullptr, Words<false>::state}}) ? K::one(s) : typename K::Sample{};
}

template <class K>
void accBlock(const char* name, typename K::State* s, typename K::Sample* dst, int n) {
  using W = Words<false>;
  if (passFirst({name, K::stem}, {{s == nullptr, W::state}, {dst == nullptr, W::buffer}, {n < 1, W::count}}))
    K::block(s, dst, n);
}

using TriD = Accumulator<RyxTrnglF64State, double>;
using TriZ = Accumulator<RyxTrnglDCplxState, double>;
using TriW = Accumulator<RyxTrnglI16State, short>;
using TriV = Accumulator<RyxTrnglWCplxState, short>;

void queueInit(const char* name, float freq, float phase, float mag, float asym, RyxTrnglF32State* s, bool cplx) {
  if (initPasses<true>(name, freq, phase, mag, asym, s)) PhaseQueue::init(s, freq, phase, mag, asym, cplx);
}

bool queueReady(const char* name, RyxTrnglF32State* s) {
  return passFirst({name, PhaseQueue::stem},
                   {{s == nullptr, Words<true>::state}, {s != nullptr && !PhaseQueue::marked(s), kNeedInit}});
}

// floats = samples times the parts of a sample.
void queueBlock(const char* name, RyxTrnglF32State* s, float* dst, int n, int parts) {
  using W = Words<true>;
  if (passFirst({name, PhaseQueue::stem}, {{s == nullptr, W::state},
                                           {dst == nullptr, W::buffer},
                                           {n < 1, W::count},
                                           {s != nullptr && !PhaseQueue::marked(s), kNeedInit}}))
    PhaseQueue::block(s, dst, n * parts);
}

SCplx queueComplex(RyxTrnglF32State* s) {
  SCplx v;
  v.re = PhaseQueue::single(s);
  v.im = PhaseQueue::single(s);
  return v;
}

}  // namespace
}  // namespace ryx::gen

using namespace ryx::gen;

extern "C" {

RYXAPI void ryxsTrnglInit(float f, float p, float m, float a, RyxTrnglF32State* s) { queueInit(__func__, f, p, m, a, s, false); }
RYXAPI void ryxcTrnglInit(float f, float p, float m, float a, RyxTrnglSCplxState* s) { queueInit(__func__, f, p, m, a, s, true); }
RYXAPI void ryxdTrnglInit(double f, double p, double m, double a, RyxTrnglF64State* s) { accInit<TriD>(__func__, f, p, m, a, s); }
RYXAPI void ryxzTrnglInit(double f, double p, double m, double a, RyxTrnglDCplxState* s) { accInit<TriZ>(__func__, f, p, m, a, s); }
RYXAPI void ryxwTrnglInit(float f, float p, short m, float a, RyxTrnglI16State* s) { accInit<TriW>(__func__, f, p, m, a, s); }
RYXAPI void ryxvTrnglInit(float f, float p, short m, float a, RyxTrnglWCplxState* s) { accInit<TriV>(__func__, f, p, m, a, s); }

RYXAPI float ryxsTrngl(RyxTrnglF32State* s) { return queueReady(__func__, s) ? PhaseQueue::single(s) : 0.0f; }
RYXAPI SCplx ryxcTrngl(RyxTrnglSCplxState* s) { return queueReady(__func__, s) ? queueComplex(s) : SCplx{}; }
RYXAPI void ryxcTrnglOut(RyxTrnglSCplxState* s, SCplx* val) {
  if (ryx::passFirst({__func__, PhaseQueue::stem}, {{val == nullptr, "val==0"}}) && queueReady(__func__, s))
    *val = queueComplex(s);
}
RYXAPI double ryxdTrngl(RyxTrnglF64State* s) { return accOne<TriD>(__func__, s); }
RYXAPI DCplx ryxzTrngl(RyxTrnglDCplxState* s) { return accOne<TriZ>(__func__, s); }
RYXAPI short ryxwTrngl(RyxTrnglI16State* s) { return accOne<TriW>(__func__, s); }
RYXAPI WCplx ryxvTrngl(RyxTrnglWCplxState* s) { return accOne<TriV>(__func__, s); }

RYXAPI void ryxsbTrngl(RyxTrnglF32State* s, float* d, int n) { queueBlock(__func__, s, d, n, 1); }
RYXAPI void ryxcbTrngl(RyxTrnglSCplxState* s, SCplx* d, int n) { queueBlock(__func__, s, reinterpret_cast<float*>(d), n, 2); }
RYXAPI void ryxdbTrngl(RyxTrnglF64State* s, double* d, int n) { accBlock<TriD>(__func__, s, d, n); }
RYXAPI void ryxzbTrngl(RyxTrnglDCplxState* s, DCplx* d, int n) { accBlock<TriZ>(__func__, s, d, n); }
RYXAPI void ryxwbTrngl(RyxTrnglI16State* s, short* d, int n) { accBlock<TriW>(__func__, s, d, n); }
RYXAPI void ryxvbTrngl(RyxTrnglWCplxState* s, WCplx* d, int n) { accBlock<TriV>(__func__, s, d, n); }

}  // extern "C"
