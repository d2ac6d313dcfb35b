// Lane forms of the float logarithm, exponent, arctangent and square root,
// written once over a lane type V and compiled once per instruction set
// (float_lanes_sse2.cpp: four lanes; float_lanes_avx2.cpp: eight). Each lane
// runs the scalar kernel's operations in the scalar kernel's order, so a
// lane's result has the scalar result's bits; lanes the formula does not
// serve (special arguments) are recomputed by the scalar kernel.
//
// V is Lanes<N, Native> below: plain lane arithmetic through the compiler's
// vector types (one IEEE operation per operator, nothing fused), with the
// estimates, the sign mask and the conversions taken from Native's
// intrinsics.
// Everything here has internal linkage: each file compiles its own copy
// with its own instruction set.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

namespace ryx::lanes {
namespace {

template <int N, class Native>
struct Lanes {
  typedef float F __attribute__((vector_size(4 * N)));
  typedef std::int32_t I __attribute__((vector_size(4 * N)));
  static constexpr int kWidth = N;
  static F load(const float* p) {
    F v;
    std::memcpy(&v, p, sizeof v);
    return v;
  }
  static void store(float* p, F v) { std::memcpy(p, &v, sizeof v); }
  static F set(float x) { return F{} + x; }
  static I seti(std::int32_t x) { return I{} + x; }
  static F add(F a, F b) { return a + b; }
  static F sub(F a, F b) { return a - b; }
  static F mul(F a, F b) { return a * b; }
  static F div(F a, F b) { return a / b; }
  static F rcp(F a) { return Native::rcp(a); }
  static F rsqrt(F a) { return Native::rsqrt(a); }
  static int mask(F m) { return Native::mask(m); }
  static F lt(F a, F b) { return fromBits(a < b); }
  static F le(F a, F b) { return fromBits(a <= b); }
  static F gt(F a, F b) { return fromBits(a > b); }
  static F ge(F a, F b) { return fromBits(a >= b); }
  static F andf(F a, F b) { return fromBits(bits(a) & bits(b)); }
  static F orf(F a, F b) { return fromBits(bits(a) | bits(b)); }
  static F andnot(F a, F b) { return fromBits(~bits(a) & bits(b)); }
  static I bits(F x) { return reinterpret_cast<I>(x); }
  static F fromBits(I x) { return reinterpret_cast<F>(x); }
  static I addi(I a, I b) { return a + b; }
  static I subi(I a, I b) { return a - b; }
  static I andi(I a, I b) { return a & b; }
  static I ori(I a, I b) { return a | b; }
  static I shl23(I a) { return a << 23; }
  static I shr23(I a) { return reinterpret_cast<I>(reinterpret_cast<U>(a) >> 23); }
  static I gti(I a, I b) { return a > b; }
  static F cvt(I a) { return Native::template cvt<F>(a); }
  static I trunc(F a) { return Native::template trunc<I>(a); }

 private:
  typedef std::uint32_t U __attribute__((vector_size(4 * N)));
};

template <class V>
typename V::F select(typename V::F m, typename V::F a, typename V::F b) {
  return V::orf(V::andf(m, a), V::andnot(m, b));
}

// 1/d refined from the estimate: r * (2 - d*r).
template <class V>
typename V::F reciprocal(typename V::F d) {
  const typename V::F r = V::rcp(d);
  return V::mul(r, V::sub(V::set(2.0f), V::mul(d, r)));
}

// Positive, normal and finite: what the estimates and the logarithm's
// split are good for.
template <class V>
typename V::F positiveNormal(typename V::F x) {
  return V::andf(V::ge(x, V::set(0x1p-126f)), V::lt(x, V::set(INFINITY)));
}

// Runs body over whole groups of kWidth lanes from src to dst and returns
// the count done; lanes where good(x) is false get one(x) instead.
template <class V, class Good, class Body>
int eachLane(const float* src, float* dst, int n, Good good, Body body, float (*one)(float)) {
  constexpr int W = V::kWidth;
  int i = 0;
  for (; n - i >= W; i += W) {
    const typename V::F x = V::load(src + i);
    const int ok = V::mask(good(x));
    V::store(dst + i, body(x));
    if (ok != (1 << W) - 1) {
      alignas(32) float xs[W];
      V::store(xs, x);  // src may be dst
      for (int k = 0; k < W; ++k)
        if (!((ok >> k) & 1)) dst[i + k] = one(xs[k]);
    }
  }
  return i;
}

// ln x = e*ln2 + 2*s + s*t*P(t), s = (m-1)/(m+1), t = s*s, m in
// [1, sqrt(2)] after the split (halved above sqrt(2)).
template <class V>
int lnLanes(const float* src, float* dst, int n, float (*one)(float)) {
  using F = typename V::F;
  using I = typename V::I;
  return eachLane<V>(src, dst, n, positiveNormal<V>, [](F x) {
    I b = V::bits(x);
    I e = V::subi(V::shr23(b), V::seti(127));
    b = V::ori(V::andi(b, V::seti(0x007fffff)), V::seti(0x3f800000));
    const I big = V::gti(b, V::seti(0x3fb504f3));
    b = V::subi(b, V::andi(big, V::seti(0x00800000)));
    e = V::subi(e, big);  // big is -1 where set
    const F m = V::fromBits(b);
    const F s = V::mul(V::sub(m, V::set(1.0f)), reciprocal<V>(V::add(m, V::set(1.0f))));
    const F t = V::mul(s, s);
    const F p = V::add(V::set(0.666666627f),
                       V::mul(t, V::add(V::set(0.400005966f),
                                        V::mul(t, V::add(V::set(0.285253823f), V::mul(t, V::set(0.237624556f)))))));
    return V::add(V::add(V::mul(V::cvt(e), V::set(0.693147182f)), V::mul(V::set(2.0f), s)), V::mul(V::mul(s, t), p));
  }, one);
}

// e^x for 1e-8 <= |x| <= 87.1: n = round(x*log2(e)) by adding and taking
// away 1.5*2^23, r = x - n*ln2 in two parts, e^r = (q+p)/(q-p) with
// p = r*(r*r+60), q = 12*(r*r+10), times 2^n built in the exponent field.
template <class V>
int expLanes(const float* src, float* dst, int n, float (*one)(float)) {
  using F = typename V::F;
  auto good = [](F x) {
    const F a = V::andf(x, V::fromBits(V::seti(0x7fffffff)));
    return V::andf(V::ge(a, V::set(1e-08f)), V::le(a, V::set(87.099998474f)));
  };
  return eachLane<V>(src, dst, n, good, [](F x) {
    const F big = V::set(12582912.0f);
    const F k = V::sub(V::add(V::mul(x, V::set(1.442695022f)), big), big);
    const F r = V::add(V::sub(x, V::mul(k, V::set(0.693359375f))), V::mul(k, V::set(0.000212194f)));
    const F a = V::mul(r, r);
    const F p = V::mul(r, V::add(a, V::set(60.0f)));
    const F q = V::mul(V::set(12.0f), V::add(a, V::set(10.0f)));
    const F e = V::mul(V::add(q, p), reciprocal<V>(V::sub(q, p)));
    return V::mul(e, V::fromBits(V::shl23(V::addi(V::trunc(k), V::seti(127)))));
  }, one);
}

// atan on |x| (above 1 through 1/|x| and pi/2 minus the result), a rational
// form in t = a*a and u = t*t, the sign put back as a bit. Zero, infinity
// and NaN go to the scalar kernel.
template <class V>
int atanLanes(const float* src, float* dst, int n, float (*one)(float)) {
  using F = typename V::F;
  static constexpr float kHalfPi = 1.5707963267948966f;
  auto magnitude = [](F x) { return V::andf(x, V::fromBits(V::seti(0x7fffffff))); };
  auto good = [magnitude](F x) {
    const F a = magnitude(x);
    return V::andf(V::gt(a, V::set(0.0f)), V::lt(a, V::set(INFINITY)));
  };
  return eachLane<V>(src, dst, n, good, [magnitude](F x) {
    F a = magnitude(x);
    const F inverted = V::gt(a, V::set(1.0f));
    a = select<V>(inverted, V::div(V::set(1.0f), a), a);
    const F t = V::mul(a, a), u = V::mul(t, t);
    const F num = V::add(V::add(V::add(V::mul(V::set(0.16929808076717057f), t), V::mul(V::set(0.14563069811407553f), u)),
                                V::mul(V::mul(V::set(0.020972123400173f), u), t)),
                         V::set(1.1139321843993106e-09f));
    const F den = V::add(V::add(V::add(V::mul(V::set(0.7416239113090943f), t), V::mul(V::mul(V::set(0.025449373192319054f), u), t)),
                                V::mul(V::set(0.2902606865063184f), u)),
                         V::set(0.5078944990310164f));
    F r = V::sub(a, V::div(V::mul(a, num), den));
    r = select<V>(inverted, V::sub(V::set(kHalfPi), r), r);
    return V::orf(r, V::andnot(V::fromBits(V::seti(0x7fffffff)), x));
  }, one);
}

// x*x and |x| (the sign bit cleared) over whole groups of lanes; the
// count done is returned.
template <class V>
int sqrLanes(const float* src, float* dst, int n) {
  int i = 0;
  for (; n - i >= V::kWidth; i += V::kWidth) {
    const typename V::F x = V::load(src + i);
    V::store(dst + i, V::mul(x, x));
  }
  return i;
}
template <class V>
int absLanes(const float* src, float* dst, int n) {
  int i = 0;
  for (; n - i >= V::kWidth; i += V::kWidth) V::store(dst + i, V::andf(V::load(src + i), V::fromBits(V::seti(0x7fffffff))));
  return i;
}

// Square root by groups of four: a group whose lanes are all positive,
// normal and finite takes y = rsqrt(x), s = x*y, t = y*s, (3 - t)*0.5*s;
// any other group is done exactly, a set sign bit noted as an error and a
// lane not at or above zero taken as +0. n is a multiple of kWidth.
template <class V>
bool rootLanes(const float* src, float* dst, int n) {
  using F = typename V::F;
  constexpr int W = V::kWidth;
  bool bad = false;
  for (int i = 0; i < n; i += W) {
    const F x = V::load(src + i);
    const int ok = V::mask(positiveNormal<V>(x));
    const F y = V::rsqrt(x);
    const F s = V::mul(x, y);
    const F t = V::mul(y, s);
    V::store(dst + i, V::mul(V::mul(V::sub(V::set(3.0f), t), V::set(0.5f)), s));
    if (ok == (1 << W) - 1) continue;
    alignas(32) float xs[W];
    V::store(xs, x);
    for (int g = 0; g < W; g += 4) {
      if (((ok >> g) & 15) == 15) continue;
      for (int k = g; k < g + 4; ++k) {
        float v = xs[k];
        if (std::signbit(v)) bad = true;
        if (!(v >= 0.0f)) v = 0.0f;
        dst[i + k] = std::sqrt(v);
      }
    }
  }
  return bad;
}

}  // namespace
}  // namespace ryx::lanes
