// Low-level 16-bit IIR (source group "ryxiirlw"): float taps quantised at
// set-up to 16-bit fixed point with `fractBits` (kept in the record's
// `reserved`) fraction bits, in the memory of the caller's floats.
//
// Arbitrary order (tapForm 0): shorts b0, 0, b0, 0, then the pairs
// (-a[k], b[k]) for k = 1..order and a zero pair; the delay line holds
// `order` 32-bit values in units of 2^-fractBits. One step, with x the
// sample and `shift` the output shift:
//   y = sat16((b0*x + d[0]) >> shift)   (no rounding, whatever the mode)
//   d[k-1] = d[k] + (-a[k])*y + b[k]*x,  d[order-1] = (-a[order])*y + b[order]*x
// with 32-bit wrapping sums. A fixed scale f is folded into a working copy
// of the taps: f > 0 shifts the numerator right (b0 as the zero-extended
// 32-bit word that holds it), f < 0 the feedback, and the output shift
// becomes fractBits + f. Order 0 alone rounds (single sample).
//
// Cascade (tapForm 2): shorts fractBits, gain, then -a1, -a2, b1, b2 per
// section. Scale mode 0 runs in integers with 16-bit delay pairs (a
// quarter of the state of the halved signal, outputs always even); other
// modes run in double on a float delay line and narrow the float outputs.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "frame/checks.h"
#include "frame/memory.h"
#include "fir/firw_arith.h"
#include "iir/iir_checks.h"
#include "iir/iirl_core.h"

namespace ryx::iirw {
namespace {

// Round to nearest, ties to even, of x * 2^bits; clipped to 16 bits when
// `clip`, else the low 16 bits.
short toFix(float v, int bits, bool clip) {
  const double x = std::ldexp(static_cast<double>(v), bits);
  if (!(std::fabs(x) < 4611686018427387904.0)) return clip ? (x > 0 ? 32767 : -32768) : 0;
  double r = std::floor(x + 0.5);
  if (r - x == 0.5 && std::fmod(r, 2.0) != 0) r -= 1;
  const auto i = static_cast<std::int64_t>(r);
  if (clip) return static_cast<short>(std::clamp<std::int64_t>(i, -32768, 32767));
  return static_cast<short>(static_cast<std::uint16_t>(static_cast<std::uint64_t>(i)));
}

using ryx::firw::fits16;
using ryx::firw::mulWrap;

constexpr const char* kStem = "ryxiirlw";
constexpr const char* kNoWork = "No memory for working array";

short* shortsOf(const RyxIirTapState* ts) { return static_cast<short*>(ts->taps); }

short sat16(std::int64_t v) { return static_cast<short>(std::clamp<std::int64_t>(v, -32768, 32767)); }

// Arithmetic right shift with the count of a 32-bit SIMD shift: counts
// beyond 31 (negative ones included, read unsigned) fill with the sign.
std::int32_t sar(std::int32_t v, int count) { return v >> (static_cast<unsigned>(count) > 31u ? 31 : count); }

// The caller's fixed scale; beyond +-64 every shift it drives is clamped
// anyway, so it is kept in that range.
int fixedOf(int scaleMode, const int* scaleFactor) {
  const int f = (scaleMode & RYX_FIXED_SCALE) != 0 && scaleFactor != nullptr ? *scaleFactor : 0;
  return std::clamp(f, -64, 64);
}

// Taps of an arbitrary-order filter under a fixed scale f, read from the
// stored pairs as they are used (the caller's taps stay as they are).
struct Work {
  const short* t;
  int f;
  std::int32_t b0;
  int shift;
  short na(int k) const { return static_cast<short>(t[2 + 2 * k] >> (f < 0 ? std::min(-f, 15) : 0)); }
  short b(int k) const { return static_cast<short>(t[3 + 2 * k] >> (f > 0 ? std::min(f, 15) : 0)); }
};

Work workTaps(const RyxIirTapState* ts, int f) {
  const short* t = shortsOf(ts);
  Work w{t, f, t[0], f < 0 ? ts->reserved + f : ts->reserved};
  if (f > 0) {
    const std::uint32_t word = static_cast<std::uint16_t>(t[0]);
    w.b0 = f > 31 ? 0 : static_cast<std::int32_t>(word >> f);
  }
  return w;
}

// One step of the recursion; `v` receives the sum before narrowing.
short stepArb(const Work& w, std::int32_t* d, int order, short x, std::int32_t* v) {
  const std::uint32_t head = order > 0 ? static_cast<std::uint32_t>(d[0]) : 0u;
  *v = sar(static_cast<std::int32_t>(static_cast<std::uint32_t>(w.b0 * x) + head), w.shift);
  const short y = sat16(*v);
  if (order == 0) return y;
  for (int k = 1; k < order; ++k)
    d[k - 1] = static_cast<std::int32_t>(static_cast<std::uint32_t>(d[k]) + mulWrap(w.na(k), y) + mulWrap(w.b(k), x));
  d[order - 1] = static_cast<std::int32_t>(mulWrap(w.na(order), y) + mulWrap(w.b(order), x));
  return y;
}

bool outOfRange(std::int32_t v) { return v > 32767 || v <= -32768; }

// Automatic scale of an arbitrary-order block: inputs shifted right by s,
// s growing until no output overflows, each try from the saved line. A
// single sample instead updates the line once and shifts its own output
// right by 1, 2, 3... until it fits.
bool autoArb(const RyxIirTapState* ts, std::int32_t* d, const short* src, short* dst, int n, int* scaleFactor) {
  const Work w = workTaps(ts, 0);
  const int order = ts->order;
  std::int32_t v;
  if (n == 1) {
    stepArb(w, d, order, src[0], &v);
    int s = 0;
    while (outOfRange(v)) v >>= ++s;
    dst[0] = static_cast<short>(v);
    if (scaleFactor != nullptr) *scaleFactor = s;
    return true;
  }
  std::int32_t* line = ryxiMalloc(static_cast<unsigned>(std::max(order, 1)));
  if (line == nullptr) return false;
  int s = 0;
  for (;; ++s) {
    ownMemcpy(line, d, order * 4);
    bool over = false;
    for (int i = 0; i < n && !over; ++i) {
      dst[i] = stepArb(w, line, order, static_cast<short>(src[i] >> std::min(s, 15)), &v);
      over = outOfRange(v) && s < 16;
    }
    if (!over) break;
  }
  ownMemcpy(d, line, order * 4);
  ryxFree(line);
  if (scaleFactor != nullptr) *scaleFactor = s;
  return true;
}

bool blockArb(const RyxIirTapState* ts, std::int32_t* d, const short* src, short* dst, int n, int scaleMode,
              int* scaleFactor) {
  if (scaleMode >= 4) return autoArb(ts, d, src, dst, n, scaleFactor);
  const Work w = workTaps(ts, fixedOf(scaleMode, scaleFactor));
  if (ts->order == 0) {
    ryxwbCopy(src, dst, n);
    int shift = w.shift;
    ryxwbMpy1(static_cast<short>(w.b0), dst, n, 3, &shift);
    return true;
  }
  std::int32_t v;
  for (int i = 0; i < n; ++i) dst[i] = stepArb(w, d, ts->order, src[i], &v);
  return true;
}

// Cascade in integers (scale mode 0).
void blockBqInt(const RyxIirTapState* ts, short* d, const short* src, short* dst, int n) {
  const short* t = shortsOf(ts);
  const int fb = t[0], q = ts->order / 2;
  const std::int32_t g = t[1];
  for (int i = 0; i < n; ++i) {
    std::uint32_t acc = static_cast<std::uint32_t>((src[i] >> 1) * g);
    for (int s = 0; s < q; ++s) {
      const short* c = t + 2 + 4 * s;
      short* p = d + 2 * s;
      const std::uint32_t a = mulWrap(c[0], p[0]) + mulWrap(c[1], p[1]);
      const std::uint32_t b = mulWrap(c[2], p[0]) + mulWrap(c[3], p[1]);
      const short w = static_cast<short>(static_cast<std::int32_t>(acc + 4 * a) >> (fb + 2));
      p[1] = p[0];
      p[0] = w;
      acc += 4 * a + 4 * b;
    }
    dst[i] = static_cast<short>(static_cast<std::uint16_t>(sat16(static_cast<std::int32_t>(acc) >> fb)) << 1);
  }
}

// Cascade through doubles on a float delay line, outputs narrowed as floats.
bool blockBqFloat(const RyxIirTapState* ts, float* d, const short* src, short* dst, int n, int scaleMode,
                  int* scaleFactor) {
  const int q = ts->order / 2, count = 4 * q + 1;
  float* taps = ryxsMalloc(static_cast<unsigned>(count));
  float* line = ryxsMalloc(static_cast<unsigned>(2 * q));
  float* out = ryxsMalloc(static_cast<unsigned>(n));
  const bool ok = taps != nullptr && line != nullptr && out != nullptr;
  if (ok) {
    const double step = std::ldexp(1.0, -shortsOf(ts)[0]);
    for (int i = 0; i < count; ++i) taps[i] = static_cast<float>(shortsOf(ts)[1 + i] * step);
    ownMemcpy(line, d, 2 * q * 4);
    for (int i = 0; i < n; ++i) {
      double y = static_cast<double>(src[i]) * taps[0];
      for (int s = 0; s < q; ++s) {
        const float* c = taps + 1 + 4 * s;
        float* p = line + 2 * s;
        const double w = y + static_cast<double>(c[0]) * p[0] + static_cast<double>(c[1]) * p[1];
        y = w + static_cast<double>(c[2]) * p[0] + static_cast<double>(c[3]) * p[1];
        p[1] = p[0];
        p[0] = static_cast<float>(w);
      }
      out[i] = static_cast<float>(y);
    }
    ownMemcpy(d, line, 2 * q * 4);
    ownScaleArrayF32(out, dst, n, scaleMode, scaleFactor);
  }
  ryxFree(taps);
  ryxFree(line);
  ryxFree(out);
  return ok;
}

bool blockCore(const Site& site, const RyxIirTapState* ts, RyxIirDlyState* ds, const short* src, short* dst, int n,
               int scaleMode, int* scaleFactor) {
  bool ok = true;
  if (ts->tapForm != ryx::iir::kBiquad) {
    ok = blockArb(ts, static_cast<std::int32_t*>(ds->dlyl), src, dst, n, scaleMode, scaleFactor);
  } else if (scaleMode == 0) {
    blockBqInt(ts, static_cast<short*>(ds->dlyl), src, dst, n);
  } else {
    ok = blockBqFloat(ts, static_cast<float*>(ds->dlyl), src, dst, n, scaleMode, scaleFactor);
  }
  if (ok) return true;
  reportNoMem(site, kNoWork);
  return false;
}

short stepCore(const Site& site, const RyxIirTapState* ts, RyxIirDlyState* ds, short x, int scaleMode,
               int* scaleFactor) {
  short y = 0;
  if (ts->tapForm == ryx::iir::kBiquad || scaleMode == RYX_AUTO_SCALE) {
    blockCore(site, ts, ds, &x, &y, 1, scaleMode, scaleFactor);
    return y;
  }
  const int f = fixedOf(scaleMode, scaleFactor);
  const Work w = workTaps(ts, f);
  if (ts->order == 0) {
    const int sh = std::clamp(w.shift, 0, 62);
    const std::int64_t round = sh > 0 ? std::int64_t{1} << (sh - 1) : 0;
    return sat16((std::int64_t{w.b0} * x + round) >> std::min(f > 0 ? sh + f : sh, 62));
  }
  std::int32_t v;
  return stepArb(w, static_cast<std::int32_t*>(ds->dlyl), ts->order, x, &v);
}

// ---- Set-up ---------------------------------------------------------------------

constexpr const char* kUninitTaps = "structure *tapStPtr wasn't initialized";

float*& innerPointer(float* taps) { return *reinterpret_cast<float**>(taps); }

bool passInitRows(const Site& site, int iirType, float* taps, const Check& countRow, RyxIirTapState* ts) {
  const bool inner = iirType == 2 && taps != nullptr && innerPointer(taps) == nullptr;
  return ryx::iir::passReported(site, {{ts == nullptr, "tapStPtr==0"},
                                       {taps == nullptr, "taps==0"},
                                       countRow,
                                       {iirType < 0 || iirType > 2, "iirType out of range"},
                                       {inner, "*((float**)taps)==0"}});
}

void setRecord(RyxIirTapState* ts, int order, void* taps, int iirType, int tapForm, int fractBits) {
  ts->order = order;
  ts->taps = taps;
  ts->iirType = iirType;
  ts->tapForm = tapForm;
  ts->reserved = fractBits;
}

// Arbitrary order, with or without a gain: normalise by a[0], choose the
// fraction bits, quantise through a temporary and lay out the pairs.
void initArb(const char* name, int iirType, float* taps, int order, RyxIirTapState* ts, const float* gain,
             int inputRange) {
  const Site site{name, kStem};
  if (!passInitRows(site, iirType, taps, {order < 0, "order<0"}, ts)) return;
  if (gain != nullptr && !ryx::iir::passReported(site, {{*gain < 0, "Gain < zero"}})) return;
  float* src = iirType == 2 ? innerPointer(taps) : taps;
  if (!ryx::iir::passReported(site, {{src[order + 1] == 0.0f, "taps[order+1] equals zero"}})) return;
  const int n = 2 * order + 1;
  short* temp = ryxwMalloc(static_cast<unsigned>(n));
  if (temp == nullptr) {
    reportNoMem(site, kNoWork);
    return;
  }
  if (iirType == 2) innerPointer(taps) = nullptr;
  if (gain != nullptr) ryxsbMpy1(*gain, src, order + 1);
  ryx::iir::normaliseArb(src, order);
  int fb = ryx::firw::tapExponent(src, n);
  if (gain != nullptr) {
    float top = 0.0f;
    for (int i = 0; i < n; ++i) top = std::max(top, std::fabs(src[i]));
    // In 64 bits: any inputRange is accepted; beyond +-1000 bits nothing
    // of a 16-bit tap is left either way.
    const std::int64_t byRange = std::int64_t{fb} - inputRange + 16;
    fb = static_cast<int>(std::clamp<std::int64_t>(byRange, -1000, ryx::firw::tapExponent(&top, 1)));
  }
  for (int i = 0; i < n; ++i) temp[i] = toFix(src[i], fb, gain != nullptr);
  short* out = reinterpret_cast<short*>(src);
  out[0] = out[2] = temp[0];
  out[1] = out[3] = 0;
  for (int k = 1; k <= order; ++k) {
    out[2 + 2 * k] = static_cast<short>(-temp[order + k]);
    out[3 + 2 * k] = temp[k];
  }
  if (order > 0) out[4 + 2 * order] = out[5 + 2 * order] = 0;
  ryxFree(temp);
  setRecord(ts, order, src, iirType, ryx::iir::kArb, fb);
}

void initBq(const char* name, int iirType, float* taps, int numQuads, RyxIirTapState* ts) {
  const Site site{name, kStem};
  if (!passInitRows(site, iirType, taps, {numQuads < 1, "numQuads<=0"}, ts)) return;
  float* src = iirType == 2 ? innerPointer(taps) : taps;
  float* temp = ryxsMalloc(static_cast<unsigned>(6 * numQuads));
  if (temp == nullptr) {
    reportNoMem(site, kNoWork);
    return;
  }
  ownMemcpy(temp, src, 6 * numQuads * 4);
  if (!ryx::iir::passReported(site, {{ryx::iir::firstZeroLead(temp, numQuads) >= 0, "taps[?] equals zero"}})) {
    ryxFree(temp);
    return;
  }
  if (iirType == 2) innerPointer(taps) = nullptr;
  ryx::iir::normaliseBq(temp, temp, numQuads);
  const int n = 4 * numQuads + 1;
  float top = 0.0f;
  for (int i = 0; i < n; ++i) {
    if (i % 4 == 1 || i % 4 == 2) temp[i] = -temp[i];
    top = std::max(top, std::fabs(temp[i]));
  }
  const double room = std::fabs(32767.0 / top);
  int fb = 0;
  while (fb < 15 && std::ldexp(1.0, fb + 1) <= room) ++fb;
  short* out = reinterpret_cast<short*>(src);
  out[0] = static_cast<short>(fb);
  for (int i = 0; i < n; ++i) out[1 + i] = toFix(temp[i], fb, false);
  ryxFree(temp);
  setRecord(ts, 2 * numQuads, src, iirType, ryx::iir::kBiquad, fb);
}

// The filters' checks: every failing row reported, then the thread's
// status decides.
bool passFilter(const Site& site, const RyxIirTapState* ts, const RyxIirDlyState* ds, const short* src, short* dst,
                bool block, int numIters) {
  const bool tapsBad = ts != nullptr && (ts->taps == nullptr || ts->tapForm < 0 || ts->tapForm > 3);
  const bool dlyBad = ts != nullptr && !tapsBad && ds != nullptr && ts->order > 0 && ds->dlyl == nullptr;
  if (!block) {
    return ryx::iir::passReported(site, {{ts == nullptr, "tapStPtr==0"},
                                         {ds == nullptr, "dlyStPtr==0"},
                                         {tapsBad, kUninitTaps},
                                         {dlyBad, "structure *dlyStPtr wasn't initialized"}});
  }
  return ryx::iir::passReported(site, {{ts == nullptr, "tapStPtr==0"},
                                       {ds == nullptr, "dlyStPtr==0"},
                                       {src == nullptr, "inSamps==0"},
                                       {dst == nullptr, "outSamps==0"},
                                       {tapsBad, kUninitTaps},
                                       {dlyBad, "structure *dlyStPtr wasn't initialized"},
                                       {numIters < 1, "numIters <= 0"}});
}

}  // namespace
}  // namespace ryx::iirw

using namespace ryx;
using namespace ryx::iirw;
using TS = RyxIirTapState;
using DS = RyxIirDlyState;

extern "C" {

RYXAPI void ryxwIirlInit(int iirType, float* taps, int order, TS* ts) {
  initArb(__func__, iirType, taps, order, ts, nullptr, 16);
}

RYXAPI void ryxwIirlInitGain(int iirType, float* taps, int order, TS* ts, float gain, int inputRange) {
  initArb(__func__, iirType, taps, order, ts, &gain, inputRange);
}

RYXAPI void ryxwIirlInitBq(int iirType, float* taps, int numQuads, TS* ts) {
  initBq(__func__, iirType, taps, numQuads, ts);
}

RYXAPI void ryxwIirlInitDlyl(const TS* ts, int* dlyl, DS* ds) {
  const bool tapsBad = ts != nullptr && (ts->taps == nullptr || ts->tapForm < 0 || ts->tapForm > 3);
  if (!ryx::iir::passReported({__func__, kStem}, {{ts == nullptr, "tapStPtr==0"},
                                                  {ds == nullptr, "dlyStPtr==0"},
                                                  {tapsBad, kUninitTaps},
                                                  {ts != nullptr && !tapsBad && ts->order > 0 && dlyl == nullptr,
                                                   "dlyl==0"}}))
    return;
  ds->dlyl = dlyl;
  if (ts->order > 0) ownMemset(dlyl, 0, ts->order * 4);
}

RYXAPI short ryxwIirl(const TS* ts, DS* ds, short sample, int scaleMode, int* scaleFactor) {
  const Site site{__func__, kStem};
  if (!passFilter(site, ts, ds, nullptr, nullptr, false, 1)) return (ts == nullptr || ds == nullptr) ? -10 : 0;
  return stepCore(site, ts, ds, sample, scaleMode, scaleFactor);
}

RYXAPI void ryxwbIirl(const TS* ts, DS* ds, const short* src, short* dst, int numIters, int scaleMode,
                      int* scaleFactor) {
  const Site site{__func__, kStem};
  if (!passFilter(site, ts, ds, src, dst, true, numIters)) return;
  blockCore(site, ts, ds, src, dst, numIters, scaleMode, scaleFactor);
}

}  // extern "C"
