// Rows of the transform family: bit reversal, twiddle tables, complex and
// real FFTs, packed spectrum products. Arrays hold N = 2^order elements,
// N+2 for the RCCs layout. Everything that builds or fetches tables or
// grows scratch takes memory.
#include "routine_table.h"

namespace hostile {
namespace {

// Flags that make sense for each group; the fuzzer also ORs them and
// passes junk.
constexpr int F = RYX_Forward, I = RYX_Inverse;
constexpr int kFft[] = {F, I, F | RYX_KeepScale, I | RYX_KeepScale, RYX_Init, RYX_Release, F | RYX_NaturalOrder,
                        F | RYX_InReversed, I | RYX_OutReversed, F | RYX_Init, 0};
constexpr int kReal[] = {F | RYX_RCPackOut, F | RYX_RCPermOut, I | RYX_RCPackOut, F | RYX_RCPackOut | RYX_KeepScale,
                         RYX_Init, RYX_Release, 0};
constexpr int kCcs[] = {I | RYX_RCPackIn, I | RYX_RCPermIn, F | RYX_RCPermIn, I | RYX_RCPackIn | RYX_KeepScale,
                        RYX_Init, RYX_Release, 0};
constexpr int kPlain[] = {F, I, I | RYX_KeepScale, RYX_Init, RYX_Release, 0};

// Shapes by the place of `order`.
template <class T>
Row inPlace(const char* name, void (*f)(T*, int, int), const int* legal) {
  return allocating(row(name, f, out(pow2<1>), order(), flags(legal)));
}
template <class T>
Row inPlaceCcs(const char* name, void (*f)(T*, int, int)) {
  return allocating(row(name, f, out(pow2plus2<1>), order(), flags(kPlain)));
}
template <class T>
Row notInPlace(const char* name, void (*f)(const T*, T*, int, int), const int* legal, SizeFn in0, SizeFn out0) {
  return allocating(row(name, f, in(in0), out(out0), order(), flags(legal)));
}

// Two signals: the second transform may fail after the first was written.
template <class T>
Row twoInPlace(const char* name, RyxStatus (*f)(T*, T*, int, int)) {
  return partial(allocating(row(name, f, out(pow2plus2<2>), out(pow2plus2<2>), order(), flags(kPlain))));
}
template <class T>
Row twoNip(const char* name, RyxStatus (*f)(const T*, T*, const T*, T*, int, int), SizeFn in0, SizeFn out0) {
  return partial(allocating(row(name, f, in(in0), out(out0), in(in0), out(out0), order(), flags(kPlain))));
}

const AddRows rows({
    row("ryxBitRev", ryxBitRev, anyInt(), order()),
    row("ryxCalcBitRevTbl", ryxCalcBitRevTbl, out(pow2<1>), order()),
    allocating(row("ryxGetBitRevTbl", ryxGetBitRevTbl, order())),
    row("ryxFreeBitRevTbls", ryxFreeBitRevTbls),
    allocating(row("ryxwbBitRev1", ryxwbBitRev1, out(pow2<1>), order())),
    allocating(row("ryxvbBitRev1", ryxvbBitRev1, out(pow2<1>), order())),
    allocating(row("ryxsbBitRev1", ryxsbBitRev1, out(pow2<1>), order())),
    allocating(row("ryxcbBitRev1", ryxcbBitRev1, out(pow2<1>), order())),
    allocating(row("ryxdbBitRev1", ryxdbBitRev1, out(pow2<1>), order())),
    allocating(row("ryxzbBitRev1", ryxzbBitRev1, out(pow2<1>), order())),
    allocating(row("ryxwbBitRev2", ryxwbBitRev2, in(pow2<2>), out(pow2<2>), order())),
    allocating(row("ryxvbBitRev2", ryxvbBitRev2, in(pow2<2>), out(pow2<2>), order())),
    allocating(row("ryxsbBitRev2", ryxsbBitRev2, in(pow2<2>), out(pow2<2>), order())),
    allocating(row("ryxcbBitRev2", ryxcbBitRev2, in(pow2<2>), out(pow2<2>), order())),
    allocating(row("ryxdbBitRev2", ryxdbBitRev2, in(pow2<2>), out(pow2<2>), order())),
    allocating(row("ryxzbBitRev2", ryxzbBitRev2, in(pow2<2>), out(pow2<2>), order())),

    row("ryxcCalcFftTwdTbl", ryxcCalcFftTwdTbl, out(pow2<1>), order()),
    row("ryxzCalcFftTwdTbl", ryxzCalcFftTwdTbl, out(pow2<1>), order()),
    row("ryxvCalcFftTwdTbl", ryxvCalcFftTwdTbl, out(pow2<1>), order()),
    allocating(row("ryxcGetFftTwdTbl", ryxcGetFftTwdTbl, order())),
    allocating(row("ryxzGetFftTwdTbl", ryxzGetFftTwdTbl, order())),
    allocating(row("ryxvGetFftTwdTbl", ryxvGetFftTwdTbl, order())),
    row("ryxcCalcDftTwdTbl", ryxcCalcDftTwdTbl, out(arg<1>), len()),
    row("ryxzCalcDftTwdTbl", ryxzCalcDftTwdTbl, out(arg<1>), len()),
    row("ryxvCalcDftTwdTbl", ryxvCalcDftTwdTbl, out(arg<1>), len()),
    allocating(row("ryxcGetDftTwdTbl", ryxcGetDftTwdTbl, len())),
    allocating(row("ryxzGetDftTwdTbl", ryxzGetDftTwdTbl, len())),
    allocating(row("ryxvGetDftTwdTbl", ryxvGetDftTwdTbl, len())),
    row("ryxcFreeTwdTbls", ryxcFreeTwdTbls),
    row("ryxzFreeTwdTbls", ryxzFreeTwdTbls),
    row("ryxvFreeTwdTbls", ryxvFreeTwdTbls),

    inPlace("ryxcFft", ryxcFft, kFft),
    inPlace("ryxzFft", ryxzFft, kFft),
    notInPlace("ryxcFftNip", ryxcFftNip, kFft, pow2<2>, pow2<2>),
    notInPlace("ryxzFftNip", ryxzFftNip, kFft, pow2<2>, pow2<2>),
    allocating(row("ryxcrFft", ryxcrFft, out(pow2<2>), out(pow2<2>), order(), flags(kFft))),
    allocating(row("ryxzrFft", ryxzrFft, out(pow2<2>), out(pow2<2>), order(), flags(kFft))),
    allocating(row("ryxcrFftNip", ryxcrFftNip, in(pow2<4>), in(pow2<4>), out(pow2<4>), out(pow2<4>), order(),
                   flags(kFft))),
    allocating(row("ryxzrFftNip", ryxzrFftNip, in(pow2<4>), in(pow2<4>), out(pow2<4>), out(pow2<4>), order(),
                   flags(kFft))),

    inPlace("ryxsRealFftl", ryxsRealFftl, kReal),
    inPlace("ryxdRealFftl", ryxdRealFftl, kReal),
    notInPlace("ryxsRealFftlNip", ryxsRealFftlNip, kReal, pow2<2>, pow2<2>),
    notInPlace("ryxdRealFftlNip", ryxdRealFftlNip, kReal, pow2<2>, pow2<2>),
    inPlace("ryxsCcsFftl", ryxsCcsFftl, kCcs),
    inPlace("ryxdCcsFftl", ryxdCcsFftl, kCcs),
    notInPlace("ryxsCcsFftlNip", ryxsCcsFftlNip, kCcs, pow2<2>, pow2<2>),
    notInPlace("ryxdCcsFftlNip", ryxdCcsFftlNip, kCcs, pow2<2>, pow2<2>),
    inPlaceCcs("ryxsRealFft", ryxsRealFft),
    inPlaceCcs("ryxdRealFft", ryxdRealFft),
    notInPlace("ryxsRealFftNip", ryxsRealFftNip, kPlain, pow2<2>, pow2plus2<2>),
    notInPlace("ryxdRealFftNip", ryxdRealFftNip, kPlain, pow2<2>, pow2plus2<2>),
    inPlaceCcs("ryxsCcsFft", ryxsCcsFft),
    inPlaceCcs("ryxdCcsFft", ryxdCcsFft),
    notInPlace("ryxsCcsFftNip", ryxsCcsFftNip, kPlain, pow2plus2<2>, pow2<2>),
    notInPlace("ryxdCcsFftNip", ryxdCcsFftNip, kPlain, pow2plus2<2>, pow2<2>),
    twoInPlace("ryxsReal2Fft", ryxsReal2Fft),
    twoInPlace("ryxdReal2Fft", ryxdReal2Fft),
    twoInPlace("ryxsCcs2Fft", ryxsCcs2Fft),
    twoInPlace("ryxdCcs2Fft", ryxdCcs2Fft),
    twoNip("ryxsReal2FftNip", ryxsReal2FftNip, pow2<4>, pow2plus2<4>),
    twoNip("ryxdReal2FftNip", ryxdReal2FftNip, pow2<4>, pow2plus2<4>),
    twoNip("ryxsCcs2FftNip", ryxsCcs2FftNip, pow2plus2<4>, pow2<4>),
    twoNip("ryxdCcs2FftNip", ryxdCcs2FftNip, pow2plus2<4>, pow2<4>),
    row("ryxsMpyRCPack2", ryxsMpyRCPack2, in(pow2<2>), out(pow2<2>), order()),
    row("ryxdMpyRCPack2", ryxdMpyRCPack2, in(pow2<2>), out(pow2<2>), order()),
    row("ryxsMpyRCPack3", ryxsMpyRCPack3, in(pow2<3>), in(pow2<3>), out(pow2<3>), order()),
    row("ryxdMpyRCPack3", ryxdMpyRCPack3, in(pow2<3>), in(pow2<3>), out(pow2<3>), order()),
    row("ryxsMpyRCPerm2", ryxsMpyRCPerm2, in(pow2<2>), out(pow2<2>), order()),
    row("ryxdMpyRCPerm2", ryxdMpyRCPerm2, in(pow2<2>), out(pow2<2>), order()),
    row("ryxsMpyRCPerm3", ryxsMpyRCPerm3, in(pow2<3>), in(pow2<3>), out(pow2<3>), order()),
    row("ryxdMpyRCPerm3", ryxdMpyRCPerm3, in(pow2<3>), in(pow2<3>), out(pow2<3>), order()),
});

}  // namespace
}  // namespace hostile
