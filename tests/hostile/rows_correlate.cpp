// Rows of the convolution and correlation family. Results are as long as
// the lengths make them: xLen + hLen - 1 for a convolution, hiLag - loLag + 1
// for a cross-correlation (loLag drawn as a phase below hiLag, so that
// valid cases have lags in order).
#include <algorithm>
#include <climits>

#include "routine_table.h"
#include "ryxcore/correlate.h"

namespace hostile {
namespace {

template <int A, int B>
std::int64_t convLen(const Case& c) {
  return std::max<std::int64_t>(c.intArg(A) + c.intArg(B) - 1, 1);
}

// Rows and columns of an image at arguments C, R; the full 2-D result.
template <int C, int R>
std::int64_t area(const Case& c) {
  return std::max<std::int64_t>(c.intArg(C) * c.intArg(R), 1);
}
std::int64_t fullArea(const Case& c) {
  return std::max<std::int64_t>((c.intArg(1) + c.intArg(4) - 1) * (c.intArg(2) + c.intArg(5) - 1), 1);
}

template <class T, class... Scale>
Row image(const char* name, void (*f)(const T*, int, int, const T*, int, int, T*, Scale...), SizeFn result) {
  if constexpr (sizeof...(Scale) == 0)
    return allocating(row(name, f, in(area<1, 2>), len(), len(), in(area<4, 5>), len(), len(), out(result)));
  else
    return allocating(row(name, f, in(area<1, 2>), len(), len(), in(area<4, 5>), len(), len(), out(result),
                          scaleMode(), out(one)));
}

// Lags lo .. hi at arguments L, H.
template <int L, int H>
std::int64_t lags(const Case& c) {
  return std::max<std::int64_t>(c.intArg(H) - c.intArg(L) + 1, 1);
}

template <class A, class B, class Y, class... Scale>
Row cross(const char* name, void (*f)(const A*, int, const B*, int, Y*, int, int, Scale...)) {
  if constexpr (sizeof...(Scale) == 0)
    return allocating(row(name, f, in(arg<1>), len(), in(arg<3>), len(), out(lags<5, 6>), phase<6>(), len()));
  else
    return allocating(row(name, f, in(arg<1>), len(), in(arg<3>), len(), out(lags<5, 6>), phase<6>(), len(),
                          scaleMode(), out(one)));
}

// Autocorrelation rows draw nLags - 1 as a phase below srcLen (valid
// cases then ask for 1 .. srcLen lags) and the type from its three values.
template <int K>
std::int64_t plusOne(const Case& c) {
  return std::max<std::int64_t>(c.intArg(K) + 1, 1);
}
inline int lagsFrom(int below) { return below == INT_MAX ? INT_MIN : below + 1; }
constexpr int kTypes[] = {RYX_CorrBiased, RYX_CorrUnbiased, 0};

template <class T, void (*F)(const T*, int, T*, int, int)>
void autoByPhase(const T* src, int len, T* dst, int below, int type) {
  F(src, len, dst, lagsFrom(below), type);
}
template <class T, void (*F)(const T*, int, T*, int, int, int, int*)>
void autoByPhase16(const T* src, int len, T* dst, int below, int type, int scaleMode, int* scaleFactor) {
  F(src, len, dst, lagsFrom(below), type, scaleMode, scaleFactor);
}
template <class T, void (*F)(const T*, int, T*, int, int)>
Row autoRow(const char* name) {
  return allocating(row(name, autoByPhase<T, F>, in(arg<1>), len(), out(plusOne<3>), phase<1>(), flags(kTypes)));
}
template <class T, void (*F)(const T*, int, T*, int, int, int, int*)>
Row autoRow16(const char* name) {
  return allocating(row(name, autoByPhase16<T, F>, in(arg<1>), len(), out(plusOne<3>), phase<1>(), flags(kTypes),
                        scaleMode(), out(one)));
}

template <class X, class H, class Y>
Row conv(const char* name, RyxStatus (*f)(const X*, int, const H*, int, Y*)) {
  return allocating(row(name, f, in(arg<1>), len(), in(arg<3>), len(), out(convLen<1, 3>)));
}

const AddRows rows({
    conv("ryxsConv", ryxsConv),
    conv("ryxcConv", ryxcConv),
    conv("ryxcsConv", ryxcsConv),
    conv("ryxscConv", ryxscConv),
    conv("ryxdConv", ryxdConv),
    conv("ryxzConv", ryxzConv),
    conv("ryxzdConv", ryxzdConv),
    conv("ryxdzConv", ryxdzConv),
    allocating(row("ryxwConv", ryxwConv, in(arg<1>), len(), in(arg<3>), len(), out(convLen<1, 3>), scaleMode(),
                   out(one))),
    image("ryxsConv2D", ryxsConv2D, fullArea),
    image("ryxdConv2D", ryxdConv2D, fullArea),
    image("ryxwConv2D", ryxwConv2D, fullArea),
    fallsBack(image("ryxsFilter2D", ryxsFilter2D, area<1, 2>)),
    fallsBack(image("ryxdFilter2D", ryxdFilter2D, area<1, 2>)),
    fallsBack(image("ryxwFilter2D", ryxwFilter2D, area<1, 2>)),
    cross("ryxsCrossCorr", ryxsCrossCorr),
    cross("ryxdCrossCorr", ryxdCrossCorr),
    cross("ryxcCrossCorr", ryxcCrossCorr),
    cross("ryxzCrossCorr", ryxzCrossCorr),
    cross("ryxscCrossCorr", ryxscCrossCorr),
    cross("ryxcsCrossCorr", ryxcsCrossCorr),
    cross("ryxdzCrossCorr", ryxdzCrossCorr),
    cross("ryxzdCrossCorr", ryxzdCrossCorr),
    cross("ryxwCrossCorr", ryxwCrossCorr),
    cross("ryxvCrossCorr", ryxvCrossCorr),
    cross("ryxwvCrossCorr", ryxwvCrossCorr),
    cross("ryxvwCrossCorr", ryxvwCrossCorr),
    autoRow<float, ryxsAutoCorr>("ryxsAutoCorr"),
    autoRow<double, ryxdAutoCorr>("ryxdAutoCorr"),
    autoRow<SCplx, ryxcAutoCorr>("ryxcAutoCorr"),
    autoRow<DCplx, ryxzAutoCorr>("ryxzAutoCorr"),
    autoRow16<short, ryxwAutoCorr>("ryxwAutoCorr"),
    autoRow16<WCplx, ryxvAutoCorr>("ryxvAutoCorr"),
});

}  // namespace
}  // namespace hostile
