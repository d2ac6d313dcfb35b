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
});

}  // namespace
}  // namespace hostile
