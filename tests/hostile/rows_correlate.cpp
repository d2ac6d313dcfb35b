// Rows of the convolution and correlation family. Results are as long as
// the lengths make them: xLen + hLen - 1 for a convolution.
#include <algorithm>

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
    image("ryxsFilter2D", ryxsFilter2D, area<1, 2>),
    image("ryxdFilter2D", ryxdFilter2D, area<1, 2>),
    image("ryxwFilter2D", ryxwFilter2D, area<1, 2>),
});

}  // namespace
}  // namespace hostile
