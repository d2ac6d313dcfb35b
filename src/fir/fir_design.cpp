// FIR design by the window method (source group "ryxfirg"): the taps of a
// linear-phase lowpass, highpass, bandpass or bandstop filter, in double.
//
// The ideal response is a truncated sinc. Its sines come from the double
// tone generator, one recurrence per band edge, read once per tap from the
// centre outward: step n fills tap h-1-n, h = tapsLen/2, at distance
// t = n+1 (odd tapsLen) or n+1/2 (even) from the centre, and the divisor
// pi*t grows by pi a step. A tone of frequency f and phase p yields
// cos(2*pi*f*n + p); the phases below turn that into sin(2*pi*f*t), its
// negative or cos(2*pi*f*t). Then the upper half is cleared, the window
// runs over the whole length (so it weighs the left half and the centre),
// the left half and centre are scaled to unit gain, and the upper half is
// the mirror image (negated for an even highpass, which needs a zero at 0.5
// and so must be antisymmetric).
#include <cmath>
#include <initializer_list>
#include <source_location>

#include "ryxcore.h"

namespace ryx::firdesign {
namespace {

constexpr const char* kStem = "ryxfirg";
constexpr double kPi = 3.14159265358979323846;
constexpr double kTwoPi = 6.28318530717958647692;

// A failure row: condition, the status both reported and returned, text.
struct DesignCheck {
  bool fails;
  RyxStatus status;
  const char* context;
  int line;
  DesignCheck(bool failing, RyxStatus st, const char* text,
              std::source_location at = std::source_location::current())
      : fails(failing), status(st), context(text), line(static_cast<int>(at.line())) {}
};

RyxStatus firstFailure(const char* name, std::initializer_list<DesignCheck> checks) {
  for (const DesignCheck& c : checks) {
    if (c.fails) {
      ryxError(c.status, name, c.context, kStem, c.line);
      return c.status;
    }
  }
  return RYX_StsOk;
}

bool inBand(double f) { return f > 0 && f < 0.5; }

// Texts of the failures; the apostrophe is U+2019 in UTF-8.
constexpr const char* kNullTaps = "\nNull pointer to taps[] array was passed\n";
constexpr const char* kShort = "\ntapsLen argument is less five\n";
constexpr const char* kBadFreq = "\nrfreq argument isn\xE2\x80\x99t satisfactory\n";
constexpr const char* kBadLow = "\nrLowFreq argument isn\xE2\x80\x99t satisfactory\n";
constexpr const char* kBadHigh = "\nrHighFreq argument isn\xE2\x80\x99t satisfactory\n";
constexpr const char* kBadOrder = "\nrHighFreq argument is less rLowFreq argument\n";

enum class Kind { Lowpass, Highpass, Bandpass, Bandstop };

// One tone of magnitude 1 read once per step. A phase that rounding
// carried to 2*pi (a frequency a hair below a split point) is the same
// angle as 0, which the generator accepts.
struct Tone {
  RyxToneF64State st;
  Tone(double freq, double phase) { ryxdToneInit(freq, phase >= kTwoPi ? phase - kTwoPi : phase, 1.0, &st); }
  double next() { return ryxdTone(&st); }
};

// sin(2*pi*f*t) and -sin(2*pi*f*t) at the steps of an odd or even length;
// the odd phase splits at 0.25 to stay within 0..2*pi.
Tone sine(double f, bool odd) {
  if (!odd) return {f, (1.5 + f) * kPi};
  return {f, f < 0.25 ? (0.75 + f) * kTwoPi : (f - 0.25) * kTwoPi};
}
Tone negatedSine(double f, bool odd) { return odd ? Tone{f, (0.25 + f) * kTwoPi} : Tone{f, (0.5 + f) * kPi}; }

// Ideal response into taps[0..h-1] (and the centre tap of an odd length).
void idealResponse(Kind kind, double lo, double hi, double* taps, int tapsLen) {
  const int h = tapsLen / 2;
  const bool odd = (tapsLen & 1) != 0;
  double divisor = odd ? kPi : kPi / 2;
  if (kind == Kind::Lowpass || kind == Kind::Highpass) {
    Tone a = kind == Kind::Lowpass ? sine(lo, odd) : odd ? negatedSine(lo, odd) : Tone{lo, lo * kPi};
    for (int n = 0; n < h; ++n, divisor += kPi) taps[h - 1 - n] = a.next() / divisor;
  } else {
    // Bandpass: s(high) - s(low); bandstop: s(low) - s(high), and for an
    // even length an alternating +-1 in front.
    const bool pass = kind == Kind::Bandpass;
    Tone a = sine(pass ? hi : lo, odd);
    Tone b = negatedSine(pass ? lo : hi, odd);
    double sign = 1;
    for (int n = 0; n < h; ++n, divisor += kPi) {
      double num;
      if (!pass && !odd) {
        num = sign + a.next();
        num = num + b.next();
        sign = -sign;
      } else {
        num = a.next() + b.next();
      }
      taps[h - 1 - n] = num / divisor;
    }
  }
  if (odd) {
    switch (kind) {
      case Kind::Lowpass: taps[h] = 2 * lo; break;
      case Kind::Highpass: taps[h] = 1 - 2 * lo; break;
      case Kind::Bandpass: taps[h] = (hi - lo) * 2; break;
      case Kind::Bandstop: taps[h] = 1 - (hi - lo) * 2; break;
    }
  }
}

void applyWindow(double* taps, int tapsLen, int winType) {
  switch (winType) {
    case 1: ryxdWinBartlett(taps, tapsLen); break;
    case 2: ryxdWinBlackmanOpt(taps, tapsLen); break;
    case 3: ryxdWinHamming(taps, tapsLen); break;
    case 4: ryxdWinHann(taps, tapsLen); break;
    default: break;  // rectangular: the truncated response as it is
  }
}

// Scales the left half and the centre to unit gain at the pass frequency:
// 0 for lowpass and bandstop, 0.5 for highpass, the band centre for
// bandpass. S sums over the left half; the right half is its mirror.
void normalise(Kind kind, double lo, double hi, double* taps, int tapsLen) {
  const int h = tapsLen / 2;
  const bool odd = (tapsLen & 1) != 0;
  double s = 0;
  switch (kind) {
    case Kind::Lowpass:
    case Kind::Bandstop:
      for (int i = 0; i < h; ++i) s += taps[i];
      break;
    case Kind::Highpass:
      for (int i = 0; i < h; ++i) s += (i & 1) ? taps[i] : -taps[i];
      break;
    case Kind::Bandpass: {
      const double fc = (lo + hi) * 0.5;
      Tone c{fc, odd ? kTwoPi * fc : kPi * fc};
      for (int i = h - 1; i >= 0; --i) s += c.next() * taps[i];
      break;
    }
  }
  double scale;
  if (odd) {
    const double w = (kind == Kind::Highpass && (h & 1) == 0) ? -1.0 : 1.0;  // (-1)^(h+1) for highpass
    scale = 1 / std::fabs(s + w * taps[h] + s);
  } else {
    scale = 1 / std::fabs(s + s);
  }
  for (int i = 0; i < h + (odd ? 1 : 0); ++i) taps[i] *= scale;
}

RyxStatus design(Kind kind, double lo, double hi, double* taps, int tapsLen, int winType, int doNormal) {
  const int h = tapsLen / 2;
  idealResponse(kind, lo, hi, taps, tapsLen);
  ryxdbZero(taps + (tapsLen + 1) / 2, h);
  applyWindow(taps, tapsLen, winType);
  if (doNormal != 0) normalise(kind, lo, hi, taps, tapsLen);
  const bool antisymmetric = kind == Kind::Highpass && (tapsLen & 1) == 0;
  for (int i = 0; i < h; ++i) taps[tapsLen - 1 - i] = antisymmetric ? -taps[i] : taps[i];
  ryxSetErrStatus(RYX_StsOk);
  return RYX_StsOk;
}

RyxStatus oneEdge(const char* name, Kind kind, double rfreq, double* taps, int tapsLen, int winType, int doNormal) {
  if (const RyxStatus st = firstFailure(name, {{taps == nullptr, RYX_StsNullPtr, kNullTaps},
                                               {tapsLen < 5, RYX_StsBadLen, kShort},
                                               {!inBand(rfreq), RYX_StsBadFreq, kBadFreq}});
      st != RYX_StsOk)
    return st;
  return design(kind, rfreq, 0, taps, tapsLen, winType, doNormal);
}

RyxStatus twoEdges(const char* name, Kind kind, double lo, double hi, double* taps, int tapsLen, int winType,
                   int doNormal) {
  if (const RyxStatus st = firstFailure(name, {{taps == nullptr, RYX_StsNullPtr, kNullTaps},
                                               {tapsLen < 5, RYX_StsBadLen, kShort},
                                               {!inBand(lo), RYX_StsBadFreq, kBadLow},
                                               {!inBand(hi), RYX_StsBadFreq, kBadHigh},
                                               {!(hi > lo), RYX_StsBadFreqOrder, kBadOrder}});
      st != RYX_StsOk)
    return st;
  return design(kind, lo, hi, taps, tapsLen, winType, doNormal);
}

}  // namespace
}  // namespace ryx::firdesign

using ryx::firdesign::Kind;
using ryx::firdesign::oneEdge;
using ryx::firdesign::twoEdges;

extern "C" {

RYXAPI RyxStatus ryxdFirLowpass(double f, double* taps, int len, int win, int norm) {
  return oneEdge(__func__, Kind::Lowpass, f, taps, len, win, norm);
}
RYXAPI RyxStatus ryxdFirHighpass(double f, double* taps, int len, int win, int norm) {
  return oneEdge(__func__, Kind::Highpass, f, taps, len, win, norm);
}
RYXAPI RyxStatus ryxdFirBandpass(double lo, double hi, double* taps, int len, int win, int norm) {
  return twoEdges(__func__, Kind::Bandpass, lo, hi, taps, len, win, norm);
}
RYXAPI RyxStatus ryxdFirBandstop(double lo, double hi, double* taps, int len, int win, int norm) {
  return twoEdges(__func__, Kind::Bandstop, lo, hi, taps, len, win, norm);
}

}  // extern "C"
