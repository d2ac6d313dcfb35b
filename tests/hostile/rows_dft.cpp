// Rows of the any-length transforms: DFT, Goertzel filter, DCT. Arrays
// hold `length` elements; Goertzel records are one caller-owned record
// (any bytes: the routines only compute with them), the scale factor one
// int. A DFT may trace a failed inner FFT after writing its output; the
// Out forms store the (0, 0) of a failed plain form through val.
#include "routine_table.h"
#include "ryxcore/transform_any_length.h"

namespace hostile {
namespace {

constexpr int F = RYX_Forward, I = RYX_Inverse;
constexpr int kDft[] = {F, I, I | RYX_KeepScale, RYX_Init, RYX_Release, F | RYX_IntCore, I | RYX_FloatCore,
                        F | RYX_Init, 0};
constexpr int kDct[] = {F, I, RYX_Release, F | 8, 3, 0};

template <class C>
Row dft(const char* name, void (*f)(const C*, C*, int, int)) {
  return partial(allocating(row(name, f, in(arg<2>), out(arg<2>), len(), flags(kDft))));
}
template <class T>
Row dct(const char* name, void (*f)(const T*, T*, int, int)) {
  return allocating(row(name, f, in(arg<2>), out(arg<2>), len(), flags(kDct)));
}
template <class S, class X, class R>
Row block(const char* name, R (*f)(S*, const X*, int)) {
  return row(name, f, io(one), in(arg<2>), len());
}
template <class S, class X, class R>
Row block16(const char* name, R (*f)(S*, const X*, int, int, int*)) {
  return row(name, f, io(one), in(arg<2>), len(), scaleMode(), io(one));
}

const AddRows rows({
    dft("ryxcDft", ryxcDft),
    dft("ryxzDft", ryxzDft),
    partial(allocating(row("ryxvDft", ryxvDft, in(arg<2>), out(arg<2>), len(), flags(kDft), scaleMode(), io(one)))),

    row("ryxsGoertzInit", ryxsGoertzInit, value(), out(one)),
    row("ryxcGoertzInit", ryxcGoertzInit, value(), out(one)),
    row("ryxwGoertzInit", ryxwGoertzInit, value(), out(one)),
    row("ryxvGoertzInit", ryxvGoertzInit, value(), out(one)),
    row("ryxdGoertzInit", ryxdGoertzInit, value(), out(one)),
    row("ryxzGoertzInit", ryxzGoertzInit, value(), out(one)),
    row("ryxsGoertzReset", ryxsGoertzReset, io(one)),
    row("ryxcGoertzReset", ryxcGoertzReset, io(one)),
    row("ryxwGoertzReset", ryxwGoertzReset, io(one)),
    row("ryxvGoertzReset", ryxvGoertzReset, io(one)),
    row("ryxdGoertzReset", ryxdGoertzReset, io(one)),
    row("ryxzGoertzReset", ryxzGoertzReset, io(one)),
    row("ryxsGoertz", ryxsGoertz, io(one), value()),
    row("ryxcGoertz", ryxcGoertz, io(one), value()),
    row("ryxdGoertz", ryxdGoertz, io(one), value()),
    row("ryxzGoertz", ryxzGoertz, io(one), value()),
    block("ryxsbGoertz", ryxsbGoertz),
    block("ryxcbGoertz", ryxcbGoertz),
    block("ryxdbGoertz", ryxdbGoertz),
    block("ryxzbGoertz", ryxzbGoertz),
    partial(row("ryxsGoertzOut", ryxsGoertzOut, io(one), value(), out(one))),
    partial(row("ryxcGoertzOut", ryxcGoertzOut, io(one), value(), out(one))),
    partial(row("ryxsbGoertzOut", ryxsbGoertzOut, io(one), in(arg<2>), len(), out(one))),
    partial(row("ryxcbGoertzOut", ryxcbGoertzOut, io(one), in(arg<2>), len(), out(one))),
    row("ryxwGoertz", ryxwGoertz, io(one), value(), scaleMode(), io(one)),
    row("ryxvGoertz", ryxvGoertz, io(one), value(), scaleMode(), io(one)),
    block16("ryxwbGoertz", ryxwbGoertz),
    block16("ryxvbGoertz", ryxvbGoertz),

    dct("ryxsDct", ryxsDct),
    dct("ryxdDct", ryxdDct),
    dct("ryxwDct", ryxwDct),
});

}  // namespace
}  // namespace hostile
