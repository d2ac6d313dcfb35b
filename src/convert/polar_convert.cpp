// Entries of the complex, polar and spectrum conversions (source groups
// "ryxcvrts" for float, "ryxcvrtd" for double, "ryxcvrtw" for 16 bits).
// Checks stop at the first failure: "length<=0", then the pointers, in
// argument order for the floating-point forms and outputs first for the
// 16-bit forms. Kept as they are: the split float and double CartToPolar
// report under the PolarToCart name and check their outputs first; the
// 2RealToCplx forms take null sources as zero parts; the 16-bit Mag and
// PowerSpectr refuse both scale flags together and auto scale without a
// factor pointer.
#include "convert/polar_kernels.h"
#include "frame/checks.h"

namespace ryx::polar {
namespace {

template <class R>
constexpr const char* kStem = std::is_same_v<R, float> ? "ryxcvrts" : (std::is_same_v<R, double> ? "ryxcvrtd" : "ryxcvrtw");

template <class R>
bool ok(const char* name, std::initializer_list<Check> rows) {
  return passFirst({name, kStem<R>}, rows);
}

struct Arg {
  const void* p;
  const char* text;
};
// "length<=0" then each pointer; the 16-bit forms name their outputs first.
template <class R>
bool lengthThen(const char* name, int length, Arg a, Arg b) {
  return ok<R>(name, {{length <= 0, "length<=0"}, {a.p == nullptr, a.text}, {b.p == nullptr, b.text}});
}
template <class R>
bool lengthThen(const char* name, int length, Arg a, Arg b, Arg c) {
  return ok<R>(name, {{length <= 0, "length<=0"}, {a.p == nullptr, a.text}, {b.p == nullptr, b.text}, {c.p == nullptr, c.text}});
}
template <class R>
bool lengthThen(const char* name, int length, Arg a, Arg b, Arg c, Arg d) {
  return ok<R>(name, {{length <= 0, "length<=0"},
                      {a.p == nullptr, a.text},
                      {b.p == nullptr, b.text},
                      {c.p == nullptr, c.text},
                      {d.p == nullptr, d.text}});
}

template <class R>
constexpr bool is16 = std::is_same_v<R, short>;

// Real and imaginary parts, one array or both.
template <class R>
void part(const char* name, const Cplx<R>* src, R* dst, int length, bool imag) {
  const Arg s{src, "src==0"}, d{dst, "dst==0"};
  if (!(is16<R> ? lengthThen<R>(name, length, d, s) : lengthThen<R>(name, length, s, d))) return;
  if (imag) imagParts(src, dst, length);
  else realParts(src, dst, length);
}

template <class R>
void cplxTo2Real(const char* name, const Cplx<R>* src, R* re, R* im, int length) {
  const Arg s{src, "src==0"}, a{re, "dstReal==0"}, b{im, "dstImag==0"};
  if (is16<R> ? lengthThen<R>(name, length, a, b, s) : lengthThen<R>(name, length, s, a, b)) toSplit(src, re, im, length);
}

template <class R>
void realToCplx(const char* name, const R* re, const R* im, Cplx<R>* dst, int length) {
  if (ok<R>(name, {{length <= 0, "length<=0"}, {dst == nullptr, "dst==0"}})) fromSplit(re, im, dst, length);
}

template <class R>
void cartToPolarC(const char* name, const Cplx<R>* src, R* mag, R* phase, int length) {
  if (lengthThen<R>(name, length, {src, "src==0"}, {mag, "mag==0"}, {phase, "phase==0"}))
    cartToPolar(Interleaved<R>{src}, mag, phase, length);
}

// The split form reports as its inverse and checks its outputs first.
template <class R>
void cartToPolarR(const char* name, const R* re, const R* im, R* mag, R* phase, int length) {
  if (lengthThen<R>(name, length, {mag, "mag==0"}, {phase, "phase==0"}, {re, "srcReal==0"}, {im, "srcImag==0"}))
    cartToPolar(Split<R>{re, im}, mag, phase, length);
}

template <class R>
void polarToCartC(const char* name, const R* mag, const R* phase, Cplx<R>* dst, int length) {
  if (lengthThen<R>(name, length, {mag, "mag==0"}, {phase, "phase==0"}, {dst, "dst==0"}))
    polarToCart(mag, phase, InterleavedOut<R>{dst}, length);
}

template <class R>
void polarToCartR(const char* name, const R* mag, const R* phase, R* re, R* im, int length) {
  if (lengthThen<R>(name, length, {mag, "mag==0"}, {phase, "phase==0"}, {re, "dstReal==0"}, {im, "dstImag==0"}))
    polarToCart(mag, phase, SplitOut<R>{re, im}, length);
}

// Mag, Phase and PowerSpectr share one shape: a source, one output array.
enum class Op { Mag, Phase, Power };

template <class R, class In>
void unary(Op op, In in, R* out, int length) {
  if (op == Op::Mag) magnitudes(in, out, length);
  else if (op == Op::Phase) phases(in, out, length);
  else powerSpectrum(in, out, length);
}

template <class R>
void unaryC(const char* name, Op op, const Cplx<R>* src, R* out, const char* outText, int length) {
  const Arg s{src, "src==0"}, o{out, outText};
  if (!(is16<R> ? lengthThen<R>(name, length, o, s) : lengthThen<R>(name, length, s, o))) return;
  if constexpr (is16<R>) phases16(Interleaved<R>{src}, out, length);
  else unary(op, Interleaved<R>{src}, out, length);
}

template <class R>
void unaryR(const char* name, Op op, const R* re, const R* im, R* out, const char* outText, int length) {
  const Arg a{re, "srcReal==0"}, b{im, "srcImag==0"}, o{out, outText};
  if (!(is16<R> ? lengthThen<R>(name, length, o, a, b) : lengthThen<R>(name, length, a, b, o))) return;
  if constexpr (is16<R>) phases16(Split<R>{re, im}, out, length);
  else unary(op, Split<R>{re, im}, out, length);
}

// 16-bit Mag and PowerSpectr: after the pointers, exactly both scale flags
// (mode 6) are refused, then auto scale (by its bit) without a factor.
bool scaleFlagsOk(const char* name, int scaleMode, int* scaleFactor) {
  return ok<short>(name, {{scaleMode == (RYX_FIXED_SCALE | RYX_AUTO_SCALE), "RYX_FIXED_SCALE and RYX_AUTO_SCALE"},
                          {(scaleMode & RYX_AUTO_SCALE) != 0 && scaleFactor == nullptr,
                           "RYX_AUTO_SCALE and ScaleFactor==NULL"}});
}

template <class In>
void runScaled(Op op, In in, short* out, int length, int scaleMode, int* scaleFactor) {
  if (op == Op::Mag) magnitudes16(in, out, length, scaleMode, scaleFactor);
  else powerSpectrum16(in, out, length, scaleMode, scaleFactor);
}

void scaledC(const char* name, Op op, const WCplx* src, short* out, const char* outText, int length, int scaleMode,
             int* scaleFactor) {
  if (lengthThen<short>(name, length, {out, outText}, {src, "src==0"}) && scaleFlagsOk(name, scaleMode, scaleFactor))
    runScaled(op, Interleaved<short>{src}, out, length, scaleMode, scaleFactor);
}

void scaledR(const char* name, Op op, const short* re, const short* im, short* out, const char* outText, int length,
             int scaleMode, int* scaleFactor) {
  if (lengthThen<short>(name, length, {out, outText}, {re, "srcReal==0"}, {im, "srcImag==0"}) &&
      scaleFlagsOk(name, scaleMode, scaleFactor))
    runScaled(op, Split<short>{re, im}, out, length, scaleMode, scaleFactor);
}

constexpr Op Mag = Op::Mag;
constexpr Op Phase = Op::Phase;
constexpr Op Power = Op::Power;

}  // namespace
}  // namespace ryx::polar

using namespace ryx::polar;

extern "C" {

RYXAPI void ryxcbReal(const SCplx* src, float* dst, int length) { part(__func__, src, dst, length, false); }
RYXAPI void ryxzbReal(const DCplx* src, double* dst, int length) { part(__func__, src, dst, length, false); }
RYXAPI void ryxvbReal(const WCplx* src, short* dst, int length) { part(__func__, src, dst, length, false); }
RYXAPI void ryxcbImag(const SCplx* src, float* dst, int length) { part(__func__, src, dst, length, true); }
RYXAPI void ryxzbImag(const DCplx* src, double* dst, int length) { part(__func__, src, dst, length, true); }
RYXAPI void ryxvbImag(const WCplx* src, short* dst, int length) { part(__func__, src, dst, length, true); }

RYXAPI void ryxcbCplxTo2Real(const SCplx* src, float* dstReal, float* dstImag, int length) {
  cplxTo2Real(__func__, src, dstReal, dstImag, length);
}
RYXAPI void ryxzbCplxTo2Real(const DCplx* src, double* dstReal, double* dstImag, int length) {
  cplxTo2Real(__func__, src, dstReal, dstImag, length);
}
RYXAPI void ryxvbCplxTo2Real(const WCplx* src, short* dstReal, short* dstImag, int length) {
  cplxTo2Real(__func__, src, dstReal, dstImag, length);
}
RYXAPI void ryxcb2RealToCplx(const float* srcReal, const float* srcImag, SCplx* dst, int length) {
  realToCplx(__func__, srcReal, srcImag, dst, length);
}
RYXAPI void ryxzb2RealToCplx(const double* srcReal, const double* srcImag, DCplx* dst, int length) {
  realToCplx(__func__, srcReal, srcImag, dst, length);
}
RYXAPI void ryxvb2RealToCplx(const short* srcReal, const short* srcImag, WCplx* dst, int length) {
  realToCplx(__func__, srcReal, srcImag, dst, length);
}

RYXAPI void ryxcbCartToPolar(const SCplx* src, float* mag, float* phase, int length) {
  cartToPolarC(__func__, src, mag, phase, length);
}
RYXAPI void ryxzbCartToPolar(const DCplx* src, double* mag, double* phase, int length) {
  cartToPolarC(__func__, src, mag, phase, length);
}
RYXAPI void ryxsbrCartToPolar(const float* srcReal, const float* srcImag, float* mag, float* phase, int length) {
  cartToPolarR("ryxsbrPolarToCart", srcReal, srcImag, mag, phase, length);
}
RYXAPI void ryxdbrCartToPolar(const double* srcReal, const double* srcImag, double* mag, double* phase, int length) {
  cartToPolarR("ryxdbrPolarToCart", srcReal, srcImag, mag, phase, length);
}
RYXAPI void ryxcbPolarToCart(const float* mag, const float* phase, SCplx* dst, int length) {
  polarToCartC(__func__, mag, phase, dst, length);
}
RYXAPI void ryxzbPolarToCart(const double* mag, const double* phase, DCplx* dst, int length) {
  polarToCartC(__func__, mag, phase, dst, length);
}
RYXAPI void ryxsbrPolarToCart(const float* mag, const float* phase, float* dstReal, float* dstImag, int length) {
  polarToCartR(__func__, mag, phase, dstReal, dstImag, length);
}
RYXAPI void ryxdbrPolarToCart(const double* mag, const double* phase, double* dstReal, double* dstImag, int length) {
  polarToCartR(__func__, mag, phase, dstReal, dstImag, length);
}

RYXAPI void ryxcbMag(const SCplx* src, float* mag, int length) { unaryC(__func__, Mag, src, mag, "mag==0", length); }
RYXAPI void ryxzbMag(const DCplx* src, double* mag, int length) { unaryC(__func__, Mag, src, mag, "mag==0", length); }
RYXAPI void ryxsbrMag(const float* srcReal, const float* srcImag, float* mag, int length) {
  unaryR(__func__, Mag, srcReal, srcImag, mag, "mag==0", length);
}
RYXAPI void ryxdbrMag(const double* srcReal, const double* srcImag, double* mag, int length) {
  unaryR(__func__, Mag, srcReal, srcImag, mag, "mag==0", length);
}
RYXAPI void ryxvbMag(const WCplx* src, short* mag, int length, int scaleMode, int* scaleFactor) {
  scaledC(__func__, Mag, src, mag, "mag==0", length, scaleMode, scaleFactor);
}
RYXAPI void ryxwbrMag(const short* srcReal, const short* srcImag, short* mag, int length, int scaleMode,
                      int* scaleFactor) {
  scaledR(__func__, Mag, srcReal, srcImag, mag, "mag==0", length, scaleMode, scaleFactor);
}

RYXAPI void ryxcbPhase(const SCplx* src, float* phase, int length) {
  unaryC(__func__, Phase, src, phase, "phase==0", length);
}
RYXAPI void ryxzbPhase(const DCplx* src, double* phase, int length) {
  unaryC(__func__, Phase, src, phase, "phase==0", length);
}
RYXAPI void ryxvbPhase(const WCplx* src, short* phase, int length) {
  unaryC(__func__, Phase, src, phase, "phase==0", length);
}
RYXAPI void ryxsbrPhase(const float* srcReal, const float* srcImag, float* phase, int length) {
  unaryR(__func__, Phase, srcReal, srcImag, phase, "phase==0", length);
}
RYXAPI void ryxdbrPhase(const double* srcReal, const double* srcImag, double* phase, int length) {
  unaryR(__func__, Phase, srcReal, srcImag, phase, "phase==0", length);
}
RYXAPI void ryxwbrPhase(const short* srcReal, const short* srcImag, short* phase, int length) {
  unaryR(__func__, Phase, srcReal, srcImag, phase, "phase==0", length);
}

RYXAPI void ryxcbPowerSpectr(const SCplx* src, float* spectr, int length) {
  unaryC(__func__, Power, src, spectr, "spectr==0", length);
}
RYXAPI void ryxzbPowerSpectr(const DCplx* src, double* spectr, int length) {
  unaryC(__func__, Power, src, spectr, "spectr==0", length);
}
RYXAPI void ryxsbrPowerSpectr(const float* srcReal, const float* srcImag, float* spectr, int length) {
  unaryR(__func__, Power, srcReal, srcImag, spectr, "spectr==0", length);
}
RYXAPI void ryxdbrPowerSpectr(const double* srcReal, const double* srcImag, double* spectr, int length) {
  unaryR(__func__, Power, srcReal, srcImag, spectr, "spectr==0", length);
}
RYXAPI void ryxvbPowerSpectr(const WCplx* src, short* spectr, int length, int scaleMode, int* scaleFactor) {
  scaledC(__func__, Power, src, spectr, "spectr==0", length, scaleMode, scaleFactor);
}
RYXAPI void ryxwbrPowerSpectr(const short* srcReal, const short* srcImag, short* spectr, int length, int scaleMode,
                              int* scaleFactor) {
  scaledR(__func__, Power, srcReal, srcImag, spectr, "spectr==0", length, scaleMode, scaleFactor);
}

}  // extern "C"
