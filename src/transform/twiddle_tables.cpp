// Public twiddle tables (source group "ryxtwd"): W_N^k = exp(-2*pi*i*k/N)
// as (cos, -sin), the angle formed in double and the result rounded once to
// the element type; the 16-bit tables hold 16384*cos and -16384*sin
// truncated toward zero. `Calc` fills caller memory, `Get` keeps the table
// in the thread's record (one per order for the FFT tables, a list of up to
// `dftTblCapacity` lengths for the DFT tables).
#include <cmath>

#include "frame/checks.h"
#include "frame/thread_context.h"
#include "transform/fft_internal.h"

namespace {

constexpr const char* kStem = "ryxtwd";
constexpr double kTwoPi = 2.0 * 3.14159265358979323846;

template <class C>
void fillTwiddles(C* tbl, std::uint64_t n) {
  for (std::uint64_t k = 0; k < n; ++k) {
    const double angle = kTwoPi * static_cast<double>(k) / static_cast<double>(n);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    if constexpr (sizeof(tbl->re) == 2) {
      tbl[k].re = static_cast<short>(16384.0 * c);
      tbl[k].im = static_cast<short>(-16384.0 * s);
    } else {
      using T = decltype(tbl->re);
      tbl[k].re = static_cast<T>(c);
      tbl[k].im = static_cast<T>(-s);
    }
  }
}

template <class C>
struct TwdFields;
template <>
struct TwdFields<SCplx> {
  static void** fft(RyxThreadContext* c) { return c->cFftTwd; }
  static void** dft(RyxThreadContext* c) { return c->cDftTbl; }
  static int* len(RyxThreadContext* c) { return c->cDftLen; }
  static int& count(RyxThreadContext* c) { return c->cDftTblCount; }
};
template <>
struct TwdFields<DCplx> {
  static void** fft(RyxThreadContext* c) { return c->zFftTwd; }
  static void** dft(RyxThreadContext* c) { return c->zDftTbl; }
  static int* len(RyxThreadContext* c) { return c->zDftLen; }
  static int& count(RyxThreadContext* c) { return c->zDftTblCount; }
};
template <>
struct TwdFields<WCplx> {
  static void** fft(RyxThreadContext* c) { return c->vFftTwd; }
  static void** dft(RyxThreadContext* c) { return c->vDftTbl; }
  static int* len(RyxThreadContext* c) { return c->vDftLen; }
  static int& count(RyxThreadContext* c) { return c->vDftTblCount; }
};

template <class C>
void calcFft(const char* name, C* tbl, int order) {
  if (!ryx::passFirst({name, kStem}, {{order < 0, "order<0"}, {order > 31, "order>31"}, {tbl == nullptr, "tbl==0"}}))
    return;
  fillTwiddles(tbl, std::uint64_t{1} << order);
}

template <class C>
void calcDft(const char* name, C* tbl, int length) {
  if (!ryx::passFirst({name, kStem}, {{length <= 0, "length<=0"}, {tbl == nullptr, "tbl==0"}})) return;
  fillTwiddles(tbl, static_cast<std::uint64_t>(length));
}

template <class C>
C* getFft(const char* name, int order) {
  if (!ryx::passFirst({name, kStem}, {{order < 0, "order<0"}, {order > 31, "order>31"}})) return nullptr;
  if (ryxGetErrStatus() < 0) return nullptr;
  void*& slot = TwdFields<C>::fft(ryxGetThreadContext())[order];
  if (slot != nullptr) return static_cast<C*>(slot);
  const std::uint64_t n = std::uint64_t{1} << order;
  auto* tbl = static_cast<C*>(ryx::fft::blockAlloc(n, sizeof(C)));
  if (tbl == nullptr) {
    ryx::reportNoMem({name, kStem}, "NULL Pointer");
    return nullptr;
  }
  fillTwiddles(tbl, n);
  slot = tbl;
  return tbl;
}

template <class C>
C* getDft(const char* name, int length) {
  if (!ryx::passFirst({name, kStem}, {{length <= 0, "length<=0"}})) return nullptr;
  if (ryxGetErrStatus() < 0) return nullptr;
  RyxThreadContext* ctx = ryxGetThreadContext();
  int& count = TwdFields<C>::count(ctx);
  int* lengths = TwdFields<C>::len(ctx);
  void** tables = TwdFields<C>::dft(ctx);
  for (int i = 0; i < count; ++i) {
    if (lengths[i] == length) return static_cast<C*>(tables[i]);
  }
  if (count >= ctx->dftTblCapacity || count >= 32) {
    ryx::reportNoMem({name, kStem}, "Full Table");
    return nullptr;
  }
  auto* tbl = static_cast<C*>(ryx::fft::blockAlloc(static_cast<std::uint64_t>(length), sizeof(C)));
  if (tbl == nullptr) {
    ryx::reportNoMem({name, kStem}, "NULL Pointer");
    return nullptr;
  }
  tables[count] = tbl;
  lengths[count] = length;
  ++count;
  fillTwiddles(tbl, static_cast<std::uint64_t>(length));
  return tbl;
}

}  // namespace

extern "C" {

RYXAPI void ryxcCalcFftTwdTbl(SCplx* tbl, int order) { calcFft(__func__, tbl, order); }
RYXAPI void ryxzCalcFftTwdTbl(DCplx* tbl, int order) { calcFft(__func__, tbl, order); }
RYXAPI void ryxvCalcFftTwdTbl(WCplx* tbl, int order) { calcFft(__func__, tbl, order); }

RYXAPI SCplx* ryxcGetFftTwdTbl(int order) { return getFft<SCplx>(__func__, order); }
RYXAPI DCplx* ryxzGetFftTwdTbl(int order) { return getFft<DCplx>(__func__, order); }
RYXAPI WCplx* ryxvGetFftTwdTbl(int order) { return getFft<WCplx>(__func__, order); }

RYXAPI void ryxcCalcDftTwdTbl(SCplx* tbl, int length) { calcDft(__func__, tbl, length); }
RYXAPI void ryxzCalcDftTwdTbl(DCplx* tbl, int length) { calcDft(__func__, tbl, length); }
RYXAPI void ryxvCalcDftTwdTbl(WCplx* tbl, int length) { calcDft(__func__, tbl, length); }

RYXAPI SCplx* ryxcGetDftTwdTbl(int length) { return getDft<SCplx>(__func__, length); }
RYXAPI DCplx* ryxzGetDftTwdTbl(int length) { return getDft<DCplx>(__func__, length); }
RYXAPI WCplx* ryxvGetDftTwdTbl(int length) { return getDft<WCplx>(__func__, length); }

}  // extern "C"
