// Conjugation of SCplx and DCplx arrays (source group "ryxarith"). The
// imaginary part's sign bit is flipped with an exclusive or and the real
// part is moved as a word, so every bit pattern (NaN payloads, -0.0) is
// handled exactly and no floating-point flag is raised.
#include <cstdint>
#include <cstring>

#include "frame/checks.h"
#include "ryxcore.h"

namespace ryx::conj {
namespace {

constexpr const char* kStem = "ryxarith";

template <class C>
struct Bits;
template <>
struct Bits<SCplx> {
  using Word = std::uint32_t;
  static constexpr Word sign = 0x80000000u;
};
template <>
struct Bits<DCplx> {
  using Word = std::uint64_t;
  static constexpr Word sign = 0x8000000000000000ull;
};

// dst = conj(src) on raw words; src and dst may be the same element.
template <class C>
inline void conjElement(const C* src, C* dst) {
  using Word = typename Bits<C>::Word;
  Word w[2];
  std::memcpy(w, src, sizeof w);
  w[1] ^= Bits<C>::sign;
  std::memcpy(dst, w, sizeof w);
}

template <class C>
inline void copyElement(const C* src, C* dst) {
  std::memcpy(dst, src, sizeof(C));
}

// vec[2n-2-k] = conj(vec[k]) for k = 1 .. n-2.
template <class C>
void mirror(C* vec, int n) {
  for (int k = 1; k <= n - 2; ++k) conjElement(vec + k, vec + (2 * n - 2 - k));
}

template <class C>
void conj1(const char* name, C* vec, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {vec == nullptr, "vec==0"}})) return;
  for (int i = 0; i < n; ++i) conjElement(vec + i, vec + i);
}

template <class C>
void conj2(const char* name, const C* src, C* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  for (int i = 0; i < n; ++i) conjElement(src + i, dst + i);
}

template <class C>
void conjFlip2(const char* name, const C* src, C* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  // The pair i, n-1-i is read before either is written, so src may equal dst.
  for (int i = 0, j = n - 1; i <= j; ++i, --j) {
    C lo, hi;
    conjElement(src + i, &lo);
    conjElement(src + j, &hi);
    copyElement(&lo, dst + j);
    copyElement(&hi, dst + i);
  }
}

template <class C>
void conjExtend1(const char* name, C* vec, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {vec == nullptr, "vec==0"}})) return;
  mirror(vec, n);
}

template <class C>
void conjExtend2(const char* name, const C* src, C* dst, int n) {
  if (!passFirst({name, kStem}, {{n <= 0, "n<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}})) return;
  for (int k = 0; k < n; ++k) copyElement(src + k, dst + k);
  mirror(dst, n);
}

}  // namespace
}  // namespace ryx::conj

using namespace ryx::conj;

extern "C" {

RYXAPI void ryxcbConj1(SCplx* vec, int n) { conj1(__func__, vec, n); }
RYXAPI void ryxcbConj2(const SCplx* src, SCplx* dst, int n) { conj2(__func__, src, dst, n); }
RYXAPI void ryxcbConjFlip2(const SCplx* src, SCplx* dst, int n) { conjFlip2(__func__, src, dst, n); }
RYXAPI void ryxcbConjExtend1(SCplx* vec, int n) { conjExtend1(__func__, vec, n); }
RYXAPI void ryxcbConjExtend2(const SCplx* src, SCplx* dst, int n) { conjExtend2(__func__, src, dst, n); }

RYXAPI void ryxzbConj1(DCplx* vec, int n) { conj1(__func__, vec, n); }
RYXAPI void ryxzbConj2(const DCplx* src, DCplx* dst, int n) { conj2(__func__, src, dst, n); }
RYXAPI void ryxzbConjFlip2(const DCplx* src, DCplx* dst, int n) { conjFlip2(__func__, src, dst, n); }
RYXAPI void ryxzbConjExtend1(DCplx* vec, int n) { conjExtend1(__func__, vec, n); }
RYXAPI void ryxzbConjExtend2(const DCplx* src, DCplx* dst, int n) { conjExtend2(__func__, src, dst, n); }

}  // extern "C"
