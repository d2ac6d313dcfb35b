// Uniform and Gaussian random numbers (source group "ryxrand"; the 16-bit
// uniform forms "ryxrandw").
//
// One core everywhere: a subtract-with-borrow sequence on lags 2 and 3
// (modulo 2^32 - 18) added to the congruential word lcg*69069 + 1013904243,
// seeded by x1 = seed and two draws of the 15-bit sequence
// seedLcg*214013 + 2531011. The integer rules are kept bit for bit so a seed
// gives the same sequence everywhere.
//  - uniform float forms: int32(n + lcg)*scale + offset in wide precision;
//    Init discards five draws;
//  - Gaussian forms: borrow starts at 1; the polar method on pairs, the
//    second deviate returned first and the first kept for the next call;
//  - 16-bit uniform: a two-lane kernel (the second lane's congruential word
//    purely multiplicative, its own borrow rule), mapped by a right shift.
// Complex samples are two draws, real part first.
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "frame/checks.h"
#include "generate/generate_common.h"

namespace ryx::gen {
namespace {

using u32 = std::uint32_t;

inline u32 next15(u32& seedLcg) {
  seedLcg = seedLcg * 214013u + 2531011u;
  return (seedLcg & 0x7fff0000u) >> 16;
}

inline u32 congruential(u32& lcg) { return lcg = lcg * 69069u + 1013904243u; }

// Seeding shared by every record: x1 is the seed, x2 and x3 the next two
// values of the 15-bit sequence.
template <class St>
void seedCore(St* s, u32 seed, u32 borrow) {
  s->borrow = borrow;
  s->x1 = seed;
  s->seedLcg = seed;
  s->x2 = next15(s->seedLcg);
  s->x3 = next15(s->seedLcg);
}

// One step of the lagged sequence. The float and Gaussian forms borrow on
// a difference below 1; the 16-bit uniform kernel only on a negative one.
template <bool SignBorrow = false, class St>
std::int32_t coreStep(St* s) {
  const auto d = static_cast<std::int32_t>(s->x2 - s->x3 - s->borrow);
  const u32 borrow = SignBorrow ? d < 0 : d < 1;  // without a branch: borrows come at random
  const auto n = static_cast<std::int32_t>(static_cast<u32>(d) - 18u * borrow);
  s->borrow = borrow;
  s->x3 = s->x2, s->x2 = s->x1, s->x1 = static_cast<u32>(n);
  return n;
}

template <class T> struct Real { using type = T; };
template <> struct Real<SCplx> { using type = float; };
template <> struct Real<DCplx> { using type = double; };
template <> struct Real<WCplx> { using type = short; };
template <class T> constexpr bool kComplex = !std::is_same_v<typename Real<T>::type, T>;

// ---- uniform, float forms ------------------------------------------------

template <class St>
struct UniformFloat {
  using State = St;
  using R = decltype(St::offset);

  static void init(St* s, R seed, R low, R high) {
    s->offset = static_cast<R>(low + static_cast<Wide>(0.5) * (static_cast<Wide>(high) - low));
    s->scale = static_cast<R>((static_cast<Wide>(high) - low) * 2.328306436539e-10L);
    seedCore(s, static_cast<u32>(truncInt32(seed)), 0);
    s->lcg = 1131199209u;
    for (int i = 0; i < 5; ++i) draw(s);
  }
  static R draw(St* s) {
    const std::int32_t n = coreStep(s);
    const auto sum = static_cast<std::int32_t>(static_cast<u32>(n) + congruential(s->lcg));
    return static_cast<R>(static_cast<Wide>(sum) * s->scale + s->offset);
  }
};

// ---- Gaussian, all forms ---------------------------------------------------

template <class St>
struct Gaussian {
  using State = St;
  using R = decltype(St::mean);

  static void init(St* s, R seed, R mean, R stDev) {
    s->mean = mean, s->stDev = stDev;
    seedCore(s, static_cast<u32>(truncInt32(seed)), 1);
    s->lcg = 1131199209u;
    s->hasExtra = 0;
  }
  static R narrow(Wide v) {
    if constexpr (std::is_same_v<R, short>) return static_cast<short>(truncInt32(v));
    else return static_cast<R>(v);
  }
  // A point (f1, f2) strictly inside the unit circle, s = f1^2 + f2^2, from
  // two core and two congruential steps per round.
  // Kept as the two integer sums: the wide values are exact functions of
  // them, cheaper to remake than to store and load.
  struct Point {
    std::int32_t u1, u2;
    Wide f1() const { return u1 * 4.656612873077e-10L; }
    Wide f2() const { return u2 * 4.656612873077e-10L; }
    Wide sq() const { return f1() * f1() + f2() * f2(); }
  };
  template <class Core>
  static Point point(Core* c, u32& lcg) {
    Point p;
    Wide sq;
    do {
      const std::int32_t n1 = coreStep(c);
      const u32 g1 = congruential(lcg);
      const std::int32_t n2 = coreStep(c);
      const u32 g2 = congruential(lcg);
      p = {static_cast<std::int32_t>(static_cast<u32>(n1) + g1), static_cast<std::int32_t>(static_cast<u32>(n2) + g2)};
      sq = p.sq();
    } while (!(sq < 1 && sq != 0));
    return p;
  }
  // The pair of deviates of a point, given ln(s): the second is returned first.
  static void deviates(const St* s, const Point& p, Wide lnSq, R& second, R& first) {
    const Wide r = std::sqrt(-(2 * lnSq) / p.sq());
    const Wide dev = s->stDev, mean = s->mean;
    first = narrow(p.f1() * r * dev + mean);
    second = narrow(p.f2() * r * dev + mean);
  }
  static R draw(St* s) {
    if (s->hasExtra) {
      s->hasExtra = 0;
      return s->extra;
    }
    s->hasExtra = 1;
    R second;
    const Point p = point(s, s->lcg);
    deviates(s, p, std::log(p.sq()), second, s->extra);
    return second;
  }
  // count draws into out, as many draw() calls would make them. The points
  // of up to 16 pairs are drawn first (the integer sequence in its order),
  // then their logarithms, then the deviates, so that the logarithms, the
  // divisions and the roots of different pairs overlap instead of each
  // waiting on the one before.
  static void fill(St* s, R* out, std::uint64_t count) {
    std::uint64_t i = 0;
    if (count > 0 && s->hasExtra) out[i++] = draw(s);
    while (count - i >= 2) {
      constexpr std::uint64_t kBatch = 16;
      const std::uint64_t m = (count - i) / 2 < kBatch ? (count - i) / 2 : kBatch;
      Point p[kBatch];
      // The core words in locals while the batch draws them.
      struct {
        u32 borrow, x1, x2, x3;
      } core = {s->borrow, s->x1, s->x2, s->x3};
      u32 lcg = s->lcg;
      for (std::uint64_t j = 0; j < m; ++j) p[j] = point(&core, lcg);
      s->borrow = core.borrow, s->x1 = core.x1, s->x2 = core.x2, s->x3 = core.x3, s->lcg = lcg;
      Wide lnSq[kBatch];
      for (std::uint64_t j = 0; j < m; ++j) lnSq[j] = std::log(p[j].sq());
      for (std::uint64_t j = 0; j < m; ++j) deviates(s, p[j], lnSq[j], out[i + 2 * j], out[i + 2 * j + 1]);
      i += 2 * m;
    }
    if (i < count) out[i] = draw(s);
  }
};

// ---- uniform, 16-bit -------------------------------------------------------

struct UniformInt16 {
  using State = RyxRandUniI16State;

  static void init(State* s, u32 seed, short low, short high) {
    s->mid = ((high + low) >> 1) - 1;
    const int d = (high - low) & ~1;
    int k = 0;
    if (d > 1)
      while ((1 << k) < d) ++k;
    s->shift = 32 - k;
    seedCore(s, seed, 0);
    s->lcg0 = 1131199209u;
    s->lcg1 = next15(s->seedLcg);
    // Five discarded draws with the ordinary borrow rule; lcg1 stays.
    for (int i = 0; i < 5; ++i) {
      coreStep(s);
      congruential(s->lcg0);
    }
    s->pos = 32;
  }

  static short map(const State* s, int shift, std::int32_t n, u32 lcg) {
    return static_cast<short>(s->mid - (static_cast<std::int32_t>(static_cast<u32>(n) + lcg) >> shift));
  }

  // count samples: an odd one first on lane 0 alone, then pairs, the later
  // core value going to the earlier sample.
  static void kernel(State* s, short* dst, std::int64_t count) {
    const int shift = s->shift > 31 ? 31 : static_cast<int>(s->shift);
    if (count & 1) {
      const std::int32_t n = coreStep<true>(s);
      *dst++ = map(s, shift, n, congruential(s->lcg0));
    }
    for (std::int64_t t = count / 2; t > 0; --t) {
      const std::int32_t n1 = coreStep<true>(s), n2 = coreStep<true>(s);
      congruential(s->lcg0);
      s->lcg1 *= 69069u;
      *dst++ = map(s, shift, n2, s->lcg0);
      *dst++ = map(s, shift, n1, s->lcg1);
    }
  }

  // Single samples come from a buffer of 32, refilled when fewer than a
  // sample's parts are left.
  template <class T>
  static T one(State* s) {
    constexpr int parts = kComplex<T> ? 2 : 1;
    if (s->pos > 32 - parts) kernel(s, s->buf, 32), s->pos = 0;
    T v;
    std::memcpy(&v, s->buf + s->pos, sizeof v);
    s->pos += parts;
    return v;
  }
};

// ---- Entries -----------------------------------------------------------------

constexpr const char* kStem = "ryxrand";
constexpr const char* kNullState = "Null pointer to state structure";

template <class K, class T>
T drawSample(typename K::State* s) {
  if constexpr (kComplex<T>) {
    T v;
    v.re = K::draw(s);
    v.im = K::draw(s);
    return v;
  } else {
    return K::draw(s);
  }
}

template <class K, class A>
void randInit(const char* name, A seed, A a, A b, typename K::State* s) {
  if (passFirst({name, kStem}, {{s == nullptr, kNullState}})) K::init(s, seed, a, b);
}

template <class K, class T>
T randOne(const char* name, typename K::State* s) {
  return passFirst({name, kStem}, {{s == nullptr, kNullState}}) ? drawSample<K, T>(s) : T{};
}

template <class K, class T>
void randOut(const char* name, typename K::State* s, T* val) {
  if (passFirst({name, kStem}, {{val == nullptr, "val==0"}, {s == nullptr, kNullState}})) *val = drawSample<K, T>(s);
}

// The length is an unsigned count: only zero is refused.
template <class K, class T>
void randBlock(const char* name, typename K::State* s, T* dst, int n) {
  if (!passFirst({name, kStem},
                 {{s == nullptr, kNullState}, {dst == nullptr, "Null pointer to data buffer"}, {n == 0, "Null length of buffer"}}))
    return;
  if constexpr (requires { K::fill; }) {
    using R = typename Real<T>::type;
    K::fill(s, reinterpret_cast<R*>(dst), std::uint64_t{static_cast<u32>(n)} * (kComplex<T> ? 2 : 1));
  } else {
    for (u32 i = 0; i < static_cast<u32>(n); ++i) dst[i] = drawSample<K, T>(s);
  }
}

constexpr const char* kStemW = "ryxrandw";

void uniInt16Init(const char* name, u32 seed, short low, short high, RyxRandUniI16State* s) {
  if (passFirst({name, kStemW}, {{s == nullptr, "statePtr==0"}})) UniformInt16::init(s, seed, low, high);
}

template <class T>
T uniInt16One(const char* name, RyxRandUniI16State* s) {
  return passFirst({name, kStemW}, {{s == nullptr, "((void*)(0))==statePtr"}}) ? UniformInt16::one<T>(s) : T{};
}

template <class T>
void uniInt16Block(const char* name, RyxRandUniI16State* s, T* dst, int n) {
  if (passFirst({name, kStemW}, {{s == nullptr, "statePtr==0"}, {n < 1, "sampsLen<=0"}, {dst == nullptr, "samps==0"}}))
    UniformInt16::kernel(s, reinterpret_cast<short*>(dst), std::int64_t{n} * (kComplex<T> ? 2 : 1));
}

using UniS = UniformFloat<RyxRandUniF32State>;
using UniD = UniformFloat<RyxRandUniF64State>;
using GausS = Gaussian<RyxRandGausF32State>;
using GausD = Gaussian<RyxRandGausF64State>;
using GausW = Gaussian<RyxRandGausI16State>;

}  // namespace
}  // namespace ryx::gen

using namespace ryx::gen;

extern "C" {

RYXAPI void ryxsRandUniInit(float seed, float lo, float hi, RyxRandUniF32State* s) { randInit<UniS>(__func__, seed, lo, hi, s); }
RYXAPI void ryxcRandUniInit(float seed, float lo, float hi, RyxRandUniF32State* s) { randInit<UniS>(__func__, seed, lo, hi, s); }
RYXAPI void ryxdRandUniInit(double seed, double lo, double hi, RyxRandUniF64State* s) { randInit<UniD>(__func__, seed, lo, hi, s); }
RYXAPI void ryxzRandUniInit(double seed, double lo, double hi, RyxRandUniF64State* s) { randInit<UniD>(__func__, seed, lo, hi, s); }
RYXAPI void ryxwRandUniInit(unsigned int seed, short lo, short hi, RyxRandUniI16State* s) { uniInt16Init(__func__, seed, lo, hi, s); }
RYXAPI void ryxvRandUniInit(unsigned int seed, short lo, short hi, RyxRandUniI16State* s) { uniInt16Init(__func__, seed, lo, hi, s); }

RYXAPI float ryxsRandUni(RyxRandUniF32State* s) { return randOne<UniS, float>(__func__, s); }
RYXAPI SCplx ryxcRandUni(RyxRandUniF32State* s) { return randOne<UniS, SCplx>(__func__, s); }
RYXAPI void ryxcRandUniOut(RyxRandUniF32State* s, SCplx* val) { randOut<UniS>(__func__, s, val); }
RYXAPI double ryxdRandUni(RyxRandUniF64State* s) { return randOne<UniD, double>(__func__, s); }
RYXAPI DCplx ryxzRandUni(RyxRandUniF64State* s) { return randOne<UniD, DCplx>(__func__, s); }
RYXAPI short ryxwRandUni(RyxRandUniI16State* s) { return uniInt16One<short>(__func__, s); }
RYXAPI WCplx ryxvRandUni(RyxRandUniI16State* s) { return uniInt16One<WCplx>(__func__, s); }

RYXAPI void ryxsbRandUni(RyxRandUniF32State* s, float* d, int n) { randBlock<UniS>(__func__, s, d, n); }
RYXAPI void ryxcbRandUni(RyxRandUniF32State* s, SCplx* d, int n) { randBlock<UniS>(__func__, s, d, n); }
RYXAPI void ryxdbRandUni(RyxRandUniF64State* s, double* d, int n) { randBlock<UniD>(__func__, s, d, n); }
RYXAPI void ryxzbRandUni(RyxRandUniF64State* s, DCplx* d, int n) { randBlock<UniD>(__func__, s, d, n); }
RYXAPI void ryxwbRandUni(RyxRandUniI16State* s, short* d, int n) { uniInt16Block(__func__, s, d, n); }
RYXAPI void ryxvbRandUni(RyxRandUniI16State* s, WCplx* d, int n) { uniInt16Block(__func__, s, d, n); }

RYXAPI void ryxsRandGausInit(float seed, float m, float sd, RyxRandGausF32State* s) { randInit<GausS>(__func__, seed, m, sd, s); }
RYXAPI void ryxcRandGausInit(float seed, float m, float sd, RyxRandGausF32State* s) { randInit<GausS>(__func__, seed, m, sd, s); }
RYXAPI void ryxdRandGausInit(double seed, double m, double sd, RyxRandGausF64State* s) { randInit<GausD>(__func__, seed, m, sd, s); }
RYXAPI void ryxzRandGausInit(double seed, double m, double sd, RyxRandGausF64State* s) { randInit<GausD>(__func__, seed, m, sd, s); }
RYXAPI void ryxwRandGausInit(short seed, short m, short sd, RyxRandGausI16State* s) { randInit<GausW>(__func__, seed, m, sd, s); }
RYXAPI void ryxvRandGausInit(short seed, short m, short sd, RyxRandGausI16State* s) { randInit<GausW>(__func__, seed, m, sd, s); }

RYXAPI float ryxsRandGaus(RyxRandGausF32State* s) { return randOne<GausS, float>(__func__, s); }
RYXAPI SCplx ryxcRandGaus(RyxRandGausF32State* s) { return randOne<GausS, SCplx>(__func__, s); }
RYXAPI void ryxcRandGausOut(RyxRandGausF32State* s, SCplx* val) { randOut<GausS>(__func__, s, val); }
RYXAPI double ryxdRandGaus(RyxRandGausF64State* s) { return randOne<GausD, double>(__func__, s); }
RYXAPI DCplx ryxzRandGaus(RyxRandGausF64State* s) { return randOne<GausD, DCplx>(__func__, s); }
RYXAPI short ryxwRandGaus(RyxRandGausI16State* s) { return randOne<GausW, short>(__func__, s); }
RYXAPI WCplx ryxvRandGaus(RyxRandGausI16State* s) { return randOne<GausW, WCplx>(__func__, s); }

RYXAPI void ryxsbRandGaus(RyxRandGausF32State* s, float* d, int n) { randBlock<GausS>(__func__, s, d, n); }
RYXAPI void ryxcbRandGaus(RyxRandGausF32State* s, SCplx* d, int n) { randBlock<GausS>(__func__, s, d, n); }
RYXAPI void ryxdbRandGaus(RyxRandGausF64State* s, double* d, int n) { randBlock<GausD>(__func__, s, d, n); }
RYXAPI void ryxzbRandGaus(RyxRandGausF64State* s, DCplx* d, int n) { randBlock<GausD>(__func__, s, d, n); }
RYXAPI void ryxwbRandGaus(RyxRandGausI16State* s, short* d, int n) { randBlock<GausW>(__func__, s, d, n); }
RYXAPI void ryxvbRandGaus(RyxRandGausI16State* s, WCplx* d, int n) { randBlock<GausW>(__func__, s, d, n); }

}  // extern "C"
