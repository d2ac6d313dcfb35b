// Rows of the 16-bit transforms: complex, split, real and packed forms and
// the packed spectrum products. Arrays hold N = 2^order elements (WCplx or
// short), N+2 shorts for the RCCs layout; the scale factor is one int.
#include "routine_table.h"
#include "ryxcore/transform_int16.h"

namespace hostile {
namespace {

constexpr int F = RYX_Forward, I = RYX_Inverse;
constexpr int kInt = RYX_IntCore, kFloat = RYX_FloatCore, kFast = RYX_IntCore | RYX_FastCore;
constexpr int kFft16[] = {F, I, F | kInt, I | kFloat, F | kFast, I | kFast | RYX_KeepScale, F | RYX_InReversed | kInt,
                          I | RYX_OutReversed, RYX_Init, RYX_Init | kFloat, RYX_Release, 0};

const AddRows rows({
    allocating(row("ryxvFft", ryxvFft, out(pow2<1>), order(), flags(kFft16), scaleMode(), out(one))),
    // The input is copied to the output before the transform's memory is
    // fetched: a refused allocation comes after that write.
    partial(allocating(row("ryxvFftNip", ryxvFftNip, in(pow2<2>), out(pow2<2>), order(), flags(kFft16), scaleMode(),
                           out(one)))),
    allocating(row("ryxvrFft", ryxvrFft, out(pow2<2>), out(pow2<2>), order(), flags(kFft16), scaleMode(), out(one))),
    allocating(row("ryxvrFftNip", ryxvrFftNip, in(pow2<4>), in(pow2<4>), out(pow2<4>), out(pow2<4>), order(),
                   flags(kFft16), scaleMode(), out(one))),
});

}  // namespace
}  // namespace hostile
