// Rows of the generators: tones, triangles, random numbers and windows.
// Tone records and the float triangle records carry a mark: null, zeroed,
// random and live ones are drawn, and the sample routines refuse all but
// live ones with their texts. The other triangle records and the random
// number records carry none: the caller keeps them valid (null or live).
// A negative length of the float and Gaussian random blocks counts as
// unsigned, so their destination is sized by the unsigned count.
#include <cstddef>

#include "routine_table.h"

namespace hostile {
namespace {

// Valid set-up values from the bytes.
double freqOf(Case& c) { return (c.in().byte() % 128) / 256.0; }
double phaseOf(Case& c) { return (c.in().byte() % 200) / 32.0; }
int magOf(Case& c) { return c.in().byte() % 100; }
double asymOf(Case& c) { return (c.in().byte() % 200 - 100) / 40.0; }

template <class St, std::size_t MarkAt, bool Marked = true>
struct GenKind {
  using R = St;
  static constexpr std::size_t kMarkAt = MarkAt, kMarkLen = 4;
  static constexpr bool kFreeable = false;
  static void free(R*) {}
  static void atEnd(R*) {}
};

template <class St, auto Init, class F, class M, std::size_t MarkAt>
struct Tone : GenKind<St, MarkAt> {
  static void make(Case& c, St* r) {
    Init(static_cast<F>(freqOf(c)), static_cast<F>(phaseOf(c)), static_cast<M>(magOf(c)), r);
  }
};
template <class St, auto Init, class F, class M, std::size_t MarkAt = 0>
struct Trngl : GenKind<St, MarkAt> {
  static void make(Case& c, St* r) {
    Init(static_cast<F>(freqOf(c)), static_cast<F>(phaseOf(c)), static_cast<M>(magOf(c)),
         static_cast<F>(asymOf(c)), r);
  }
};
template <class St, auto Init, class Seed, class V>
struct Rand : GenKind<St, 0> {
  static void make(Case& c, St* r) {
    const int low = -(c.in().byte() % 50);
    Init(static_cast<Seed>(c.in().byte()), static_cast<V>(low), static_cast<V>(low + 1 + c.in().byte() % 100), r);
  }
};

using ToneS = Tone<RyxToneF32State, ryxsToneInit, float, float, offsetof(RyxToneF32State, mark)>;
using ToneC = Tone<RyxToneSCplxState, ryxcToneInit, float, float, offsetof(RyxToneSCplxState, mark)>;
using ToneD = Tone<RyxToneF64State, ryxdToneInit, double, double, offsetof(RyxToneF64State, mark)>;
using ToneZ = Tone<RyxToneDCplxState, ryxzToneInit, double, double, offsetof(RyxToneDCplxState, mark)>;
using ToneW = Tone<RyxToneI16State, ryxwToneInit, float, short, offsetof(RyxToneI16State, mark)>;
using ToneV = Tone<RyxToneI16State, ryxvToneInit, float, short, offsetof(RyxToneI16State, mark)>;
using TrnglS = Trngl<RyxTrnglF32State, ryxsTrnglInit, float, float, offsetof(RyxTrnglF32State, mark)>;
using TrnglC = Trngl<RyxTrnglSCplxState, ryxcTrnglInit, float, float, offsetof(RyxTrnglF32State, mark)>;
using TrnglD = Trngl<RyxTrnglF64State, ryxdTrnglInit, double, double>;
using TrnglZ = Trngl<RyxTrnglDCplxState, ryxzTrnglInit, double, double>;
using TrnglW = Trngl<RyxTrnglI16State, ryxwTrnglInit, float, short>;
using TrnglV = Trngl<RyxTrnglWCplxState, ryxvTrnglInit, float, short>;
using UniS = Rand<RyxRandUniF32State, ryxsRandUniInit, float, float>;
using UniC = Rand<RyxRandUniF32State, ryxcRandUniInit, float, float>;
using UniD = Rand<RyxRandUniF64State, ryxdRandUniInit, double, double>;
using UniZ = Rand<RyxRandUniF64State, ryxzRandUniInit, double, double>;
using UniW = Rand<RyxRandUniI16State, ryxwRandUniInit, unsigned, short>;
using UniV = Rand<RyxRandUniI16State, ryxvRandUniInit, unsigned, short>;
using GausS = Rand<RyxRandGausF32State, ryxsRandGausInit, float, float>;
using GausC = Rand<RyxRandGausF32State, ryxcRandGausInit, float, float>;
using GausD = Rand<RyxRandGausF64State, ryxdRandGausInit, double, double>;
using GausZ = Rand<RyxRandGausF64State, ryxzRandGausInit, double, double>;
using GausW = Rand<RyxRandGausI16State, ryxwRandGausInit, short, short>;
using GausV = Rand<RyxRandGausI16State, ryxvRandGausInit, short, short>;

constexpr const char* kToneNull = "Null pointer to state";
constexpr const char* kToneDead = "Structure initialization need";
constexpr const char* kTrnglNull = "Null pointer to state ";
constexpr const char* kTrnglDead = "Structure initialization need ";

// Set-up, one sample, a block, the Out form; by the kind of record.
template <class K, class... P>
Row markedInit(const char* name, void (*f)(P...)) {
  return row(name, f, (std::is_pointer_v<P> ? marked<K, true>(nullptr, nullptr) : value())...);
}
template <class K, class... P>
Row keptInit(const char* name, void (*f)(P...)) {
  return row(name, f, (std::is_pointer_v<P> ? kept<K, true>() : value())...);
}
template <class K, class O>
Row markedOne(const char* name, O (*f)(typename K::R*), const char* null, const char* dead) {
  return row(name, f, marked<K>(null, dead));
}
template <class K, class O>
Row markedBlock(const char* name, void (*f)(typename K::R*, O*, int), const char* null, const char* dead) {
  return row(name, f, marked<K>(null, dead), out(arg<2>), len());
}
template <class K>
Row markedOut(const char* name, void (*f)(typename K::R*, SCplx*), const char* null, const char* dead) {
  return row(name, f, marked<K>(null, dead), out(one));
}
template <class K, class O>
Row keptOne(const char* name, O (*f)(typename K::R*)) {
  return row(name, f, kept<K>());
}
// The count of the float and Gaussian random blocks, read as unsigned.
std::int64_t unsignedCount(const Case& c) { return c.intArg(2) < 0 ? kHuge : c.intArg(2); }
template <class K, class O>
Row keptBlock(const char* name, void (*f)(typename K::R*, O*, int), bool signedCount = true) {
  return row(name, f, kept<K>(), out(signedCount ? arg<2> : unsignedCount), len());
}
template <class K>
Row keptOut(const char* name, void (*f)(typename K::R*, SCplx*)) {
  return row(name, f, kept<K>(), out(one));
}

const AddRows rows({
    markedInit<ToneS>("ryxsToneInit", ryxsToneInit),
    markedInit<ToneC>("ryxcToneInit", ryxcToneInit),
    markedInit<ToneD>("ryxdToneInit", ryxdToneInit),
    markedInit<ToneZ>("ryxzToneInit", ryxzToneInit),
    markedInit<ToneW>("ryxwToneInit", ryxwToneInit),
    markedInit<ToneV>("ryxvToneInit", ryxvToneInit),
    markedOne<ToneS>("ryxsTone", ryxsTone, kToneNull, kToneDead),
    markedOne<ToneC>("ryxcTone", ryxcTone, kToneNull, kToneDead),
    markedOut<ToneC>("ryxcToneOut", ryxcToneOut, kToneNull, kToneDead),
    markedOne<ToneD>("ryxdTone", ryxdTone, kToneNull, kToneDead),
    markedOne<ToneZ>("ryxzTone", ryxzTone, kToneNull, kToneDead),
    markedOne<ToneW>("ryxwTone", ryxwTone, kToneNull, kToneDead),
    markedOne<ToneV>("ryxvTone", ryxvTone, kToneNull, kToneDead),
    markedBlock<ToneS>("ryxsbTone", ryxsbTone, kToneNull, kToneDead),
    markedBlock<ToneC>("ryxcbTone", ryxcbTone, kToneNull, kToneDead),
    markedBlock<ToneD>("ryxdbTone", ryxdbTone, kToneNull, kToneDead),
    markedBlock<ToneZ>("ryxzbTone", ryxzbTone, kToneNull, kToneDead),
    markedBlock<ToneW>("ryxwbTone", ryxwbTone, kToneNull, kToneDead),
    markedBlock<ToneV>("ryxvbTone", ryxvbTone, kToneNull, kToneDead),

    markedInit<TrnglS>("ryxsTrnglInit", ryxsTrnglInit),
    markedInit<TrnglC>("ryxcTrnglInit", ryxcTrnglInit),
    keptInit<TrnglD>("ryxdTrnglInit", ryxdTrnglInit),
    keptInit<TrnglZ>("ryxzTrnglInit", ryxzTrnglInit),
    keptInit<TrnglW>("ryxwTrnglInit", ryxwTrnglInit),
    keptInit<TrnglV>("ryxvTrnglInit", ryxvTrnglInit),
    markedOne<TrnglS>("ryxsTrngl", ryxsTrngl, kTrnglNull, kTrnglDead),
    markedOne<TrnglC>("ryxcTrngl", ryxcTrngl, kTrnglNull, kTrnglDead),
    markedOut<TrnglC>("ryxcTrnglOut", ryxcTrnglOut, kTrnglNull, kTrnglDead),
    keptOne<TrnglD>("ryxdTrngl", ryxdTrngl),
    keptOne<TrnglZ>("ryxzTrngl", ryxzTrngl),
    keptOne<TrnglW>("ryxwTrngl", ryxwTrngl),
    keptOne<TrnglV>("ryxvTrngl", ryxvTrngl),
    markedBlock<TrnglS>("ryxsbTrngl", ryxsbTrngl, kTrnglNull, kTrnglDead),
    markedBlock<TrnglC>("ryxcbTrngl", ryxcbTrngl, kTrnglNull, kTrnglDead),
    keptBlock<TrnglD>("ryxdbTrngl", ryxdbTrngl),
    keptBlock<TrnglZ>("ryxzbTrngl", ryxzbTrngl),
    keptBlock<TrnglW>("ryxwbTrngl", ryxwbTrngl),
    keptBlock<TrnglV>("ryxvbTrngl", ryxvbTrngl),

    keptInit<UniS>("ryxsRandUniInit", ryxsRandUniInit),
    keptInit<UniC>("ryxcRandUniInit", ryxcRandUniInit),
    keptInit<UniD>("ryxdRandUniInit", ryxdRandUniInit),
    keptInit<UniZ>("ryxzRandUniInit", ryxzRandUniInit),
    keptInit<UniW>("ryxwRandUniInit", ryxwRandUniInit),
    keptInit<UniV>("ryxvRandUniInit", ryxvRandUniInit),
    keptOne<UniS>("ryxsRandUni", ryxsRandUni),
    keptOne<UniC>("ryxcRandUni", ryxcRandUni),
    keptOut<UniC>("ryxcRandUniOut", ryxcRandUniOut),
    keptOne<UniD>("ryxdRandUni", ryxdRandUni),
    keptOne<UniZ>("ryxzRandUni", ryxzRandUni),
    keptOne<UniW>("ryxwRandUni", ryxwRandUni),
    keptOne<UniV>("ryxvRandUni", ryxvRandUni),
    keptBlock<UniS>("ryxsbRandUni", ryxsbRandUni, false),
    keptBlock<UniC>("ryxcbRandUni", ryxcbRandUni, false),
    keptBlock<UniD>("ryxdbRandUni", ryxdbRandUni, false),
    keptBlock<UniZ>("ryxzbRandUni", ryxzbRandUni, false),
    keptBlock<UniW>("ryxwbRandUni", ryxwbRandUni),
    keptBlock<UniV>("ryxvbRandUni", ryxvbRandUni),
    keptInit<GausS>("ryxsRandGausInit", ryxsRandGausInit),
    keptInit<GausC>("ryxcRandGausInit", ryxcRandGausInit),
    keptInit<GausD>("ryxdRandGausInit", ryxdRandGausInit),
    keptInit<GausZ>("ryxzRandGausInit", ryxzRandGausInit),
    keptInit<GausW>("ryxwRandGausInit", ryxwRandGausInit),
    keptInit<GausV>("ryxvRandGausInit", ryxvRandGausInit),
    keptOne<GausS>("ryxsRandGaus", ryxsRandGaus),
    keptOne<GausC>("ryxcRandGaus", ryxcRandGaus),
    keptOut<GausC>("ryxcRandGausOut", ryxcRandGausOut),
    keptOne<GausD>("ryxdRandGaus", ryxdRandGaus),
    keptOne<GausZ>("ryxzRandGaus", ryxzRandGaus),
    keptOne<GausW>("ryxwRandGaus", ryxwRandGaus),
    keptOne<GausV>("ryxvRandGaus", ryxvRandGaus),
    keptBlock<GausS>("ryxsbRandGaus", ryxsbRandGaus, false),
    keptBlock<GausC>("ryxcbRandGaus", ryxcbRandGaus, false),
    keptBlock<GausD>("ryxdbRandGaus", ryxdbRandGaus, false),
    keptBlock<GausZ>("ryxzbRandGaus", ryxzbRandGaus, false),
    keptBlock<GausW>("ryxwbRandGaus", ryxwbRandGaus, false),
    keptBlock<GausV>("ryxvbRandGaus", ryxvbRandGaus, false),
    vec("ryxsWinBartlett", ryxsWinBartlett),
    vec("ryxsWinHann", ryxsWinHann),
    vec("ryxsWinHamming", ryxsWinHamming),
    vec("ryxsWinBlackman", ryxsWinBlackman),
    vec("ryxsWinBlackmanStd", ryxsWinBlackmanStd),
    vec("ryxsWinBlackmanOpt", ryxsWinBlackmanOpt),
    vec("ryxsWinKaiser", ryxsWinKaiser),
    vec("ryxsWinBartlett2", ryxsWinBartlett2),
    vec("ryxsWinHann2", ryxsWinHann2),
    vec("ryxsWinHamming2", ryxsWinHamming2),
    vec("ryxsWinBlackman2", ryxsWinBlackman2),
    vec("ryxsWinBlackmanStd2", ryxsWinBlackmanStd2),
    vec("ryxsWinBlackmanOpt2", ryxsWinBlackmanOpt2),
    vec("ryxsWinKaiser2", ryxsWinKaiser2),
    vec("ryxcWinBartlett", ryxcWinBartlett),
    vec("ryxcWinHann", ryxcWinHann),
    vec("ryxcWinHamming", ryxcWinHamming),
    vec("ryxcWinBlackman", ryxcWinBlackman),
    vec("ryxcWinBlackmanStd", ryxcWinBlackmanStd),
    vec("ryxcWinBlackmanOpt", ryxcWinBlackmanOpt),
    vec("ryxcWinKaiser", ryxcWinKaiser),
    vec("ryxcWinBartlett2", ryxcWinBartlett2),
    vec("ryxcWinHann2", ryxcWinHann2),
    vec("ryxcWinHamming2", ryxcWinHamming2),
    vec("ryxcWinBlackman2", ryxcWinBlackman2),
    vec("ryxcWinBlackmanStd2", ryxcWinBlackmanStd2),
    vec("ryxcWinBlackmanOpt2", ryxcWinBlackmanOpt2),
    vec("ryxcWinKaiser2", ryxcWinKaiser2),
    vec("ryxdWinBartlett", ryxdWinBartlett),
    vec("ryxdWinHann", ryxdWinHann),
    vec("ryxdWinHamming", ryxdWinHamming),
    vec("ryxdWinBlackman", ryxdWinBlackman),
    vec("ryxdWinBlackmanStd", ryxdWinBlackmanStd),
    vec("ryxdWinBlackmanOpt", ryxdWinBlackmanOpt),
    vec("ryxdWinKaiser", ryxdWinKaiser),
    vec("ryxdWinBartlett2", ryxdWinBartlett2),
    vec("ryxdWinHann2", ryxdWinHann2),
    vec("ryxdWinHamming2", ryxdWinHamming2),
    vec("ryxdWinBlackman2", ryxdWinBlackman2),
    vec("ryxdWinBlackmanStd2", ryxdWinBlackmanStd2),
    vec("ryxdWinBlackmanOpt2", ryxdWinBlackmanOpt2),
    vec("ryxdWinKaiser2", ryxdWinKaiser2),
    vec("ryxzWinBartlett", ryxzWinBartlett),
    vec("ryxzWinHann", ryxzWinHann),
    vec("ryxzWinHamming", ryxzWinHamming),
    vec("ryxzWinBlackman", ryxzWinBlackman),
    vec("ryxzWinBlackmanStd", ryxzWinBlackmanStd),
    vec("ryxzWinBlackmanOpt", ryxzWinBlackmanOpt),
    vec("ryxzWinKaiser", ryxzWinKaiser),
    vec("ryxzWinBartlett2", ryxzWinBartlett2),
    vec("ryxzWinHann2", ryxzWinHann2),
    vec("ryxzWinHamming2", ryxzWinHamming2),
    vec("ryxzWinBlackman2", ryxzWinBlackman2),
    vec("ryxzWinBlackmanStd2", ryxzWinBlackmanStd2),
    vec("ryxzWinBlackmanOpt2", ryxzWinBlackmanOpt2),
    vec("ryxzWinKaiser2", ryxzWinKaiser2),
    vec("ryxwWinBartlett", ryxwWinBartlett),
    vec("ryxwWinHann", ryxwWinHann),
    vec("ryxwWinHamming", ryxwWinHamming),
    vec("ryxwWinBlackman", ryxwWinBlackman),
    vec("ryxwWinBlackmanStd", ryxwWinBlackmanStd),
    vec("ryxwWinBlackmanOpt", ryxwWinBlackmanOpt),
    vec("ryxwWinKaiser", ryxwWinKaiser),
    vec("ryxwWinBartlett2", ryxwWinBartlett2),
    vec("ryxwWinHann2", ryxwWinHann2),
    vec("ryxwWinHamming2", ryxwWinHamming2),
    vec("ryxwWinBlackman2", ryxwWinBlackman2),
    vec("ryxwWinBlackmanStd2", ryxwWinBlackmanStd2),
    vec("ryxwWinBlackmanOpt2", ryxwWinBlackmanOpt2),
    vec("ryxwWinKaiser2", ryxwWinKaiser2),
    vec("ryxvWinBartlett", ryxvWinBartlett),
    vec("ryxvWinHann", ryxvWinHann),
    vec("ryxvWinHamming", ryxvWinHamming),
    vec("ryxvWinBlackman", ryxvWinBlackman),
    vec("ryxvWinBlackmanStd", ryxvWinBlackmanStd),
    vec("ryxvWinBlackmanOpt", ryxvWinBlackmanOpt),
    vec("ryxvWinKaiser", ryxvWinKaiser),
    vec("ryxvWinBartlett2", ryxvWinBartlett2),
    vec("ryxvWinHann2", ryxvWinHann2),
    vec("ryxvWinHamming2", ryxvWinHamming2),
    vec("ryxvWinBlackman2", ryxvWinBlackman2),
    vec("ryxvWinBlackmanStd2", ryxvWinBlackmanStd2),
    vec("ryxvWinBlackmanOpt2", ryxvWinBlackmanOpt2),
    vec("ryxvWinKaiser2", ryxvWinKaiser2),
});

}  // namespace
}  // namespace hostile
