// Float and SCplx kernels of the elementwise family, 128-bit SSE2.
//
// Add, subtract and real multiply run from the top of the array down, with
// alignment measured from the destination's end: single elements until the
// end of the remaining part is 16-byte aligned, then blocks of eight floats
// (two vectors), then the last 0-7 singly, the alignment test running before
// each single step so a block run may resume. In-place (shape 1) blocks use
// aligned access below 4096 remaining elements and the unaligned form above.
// Two- and three-array blocks use aligned loads only when both sources are
// aligned at the block, and from 1024 remaining elements store around the
// cache (sources read unaligned), with a store fence after the loop.
//
// SCplx add and subtract are the real kernel over 2n floats. SCplx multiply
// gathers four samples into a vector of real and one of imaginary parts,
// from the top down, and does the last n mod 4 samples singly.
#include <emmintrin.h>

#include <cstdint>

#include "vector/arith_kernels.h"

namespace ryx::arith {
namespace {

inline bool aligned16(const void* p) { return (reinterpret_cast<std::uintptr_t>(p) & 15u) == 0; }

template <OpKind K>
inline __m128 vop(__m128 a, __m128 b) {
  if constexpr (K == OpKind::Add) return _mm_add_ps(a, b);
  if constexpr (K == OpKind::Sub) return _mm_sub_ps(a, b);
  if constexpr (K == OpKind::Mpy) return _mm_mul_ps(a, b);
}

// An array operand.
struct Array {
  const float* p;
  float at(int i) const { return p[i]; }
  bool alignedAt(int i) const { return aligned16(p + i); }
  __m128 loadA(int i) const { return _mm_load_ps(p + i); }
  __m128 loadU(int i) const { return _mm_loadu_ps(p + i); }
};

// A scalar operand repeated with period two (a float repeated, or the
// re/im pair of a complex value), selected by the parity of the float index.
struct Pattern {
  float v[2];
  __m128 even;  // lanes for a block starting at an even index
  __m128 odd;
  Pattern(float a, float b) : v{a, b}, even(_mm_setr_ps(a, b, a, b)), odd(_mm_setr_ps(b, a, b, a)) {}
  float at(int i) const { return v[i & 1]; }
  bool alignedAt(int) const { return true; }
  __m128 loadA(int i) const { return (i & 1) ? odd : even; }
  __m128 loadU(int i) const { return loadA(i); }
};

// The pattern as seen by a run of blocks: blocks step by eight floats, so
// the parity of their start, and with it the vector, is fixed for the run.
struct FixedPattern {
  const Pattern& p;
  __m128 v;
  FixedPattern(const Pattern& pattern, int start) : p(pattern), v(start & 1 ? pattern.odd : pattern.even) {}
  float at(int i) const { return p.at(i); }
  bool alignedAt(int) const { return true; }
  __m128 loadA(int) const { return v; }
  __m128 loadU(int) const { return v; }
};

// Eight floats [i, i+8) of dst = a op b, with loads and store in the form
// the block loop chose.
enum class Form { Aligned, Unaligned, Stream };

template <OpKind K, Form F, class A, class B>
inline void block8(const A& a, const B& b, float* dst, int i) {
  __m128 hi, lo;
  if constexpr (F == Form::Aligned) {
    hi = vop<K>(a.loadA(i + 4), b.loadA(i + 4));
    lo = vop<K>(a.loadA(i), b.loadA(i));
  } else {
    hi = vop<K>(a.loadU(i + 4), b.loadU(i + 4));
    lo = vop<K>(a.loadU(i), b.loadU(i));
  }
  if constexpr (F == Form::Stream) {
    _mm_stream_ps(dst + i + 4, hi);
    _mm_stream_ps(dst + i, lo);
  } else if constexpr (F == Form::Unaligned) {
    _mm_storeu_ps(dst + i + 4, hi);
    _mm_storeu_ps(dst + i, lo);
  } else {
    _mm_store_ps(dst + i + 4, hi);
    _mm_store_ps(dst + i, lo);
  }
}

// Runs blocks from the top while at least `floor` elements remain (and at
// least eight); returns the new count of remaining elements. The operands
// come by value: vector stores may alias anything, and a referenced operand
// would have its pointer reloaded after every store.
template <OpKind K, Form F, class A, class B>
inline int blocksDownTo(const A a, const B b, float* dst, int i, int floor) {
  if (floor < 8) floor = 8;
  while (i >= floor) {
    i -= 8;
    block8<K, F>(a, b, dst, i);
  }
  return i;
}

// Single steps from the top until the end of the remaining part is aligned
// (or too few elements remain for a block).
template <OpKind K, class A, class B>
inline int singlesUntilAligned(const A& a, const B& b, float* dst, int i) {
  while (i > 0 && (i < 8 || !aligned16(dst + i))) {
    --i;
    dst[i] = apply<K>(a.at(i), b.at(i));
    if (i < 8) break;
  }
  return i;
}

template <OpKind K, class A, class B>
inline void singlesToBottom(const A& a, const B& b, float* dst, int i) {
  while (i > 0) {
    --i;
    dst[i] = apply<K>(a.at(i), b.at(i));
  }
}

// Shape 1: dst = dst op pattern, in place. Blocks use the unaligned form
// while 4096 or more elements remain, the aligned form below.
template <OpKind K>
void runInPlace(const Pattern& b, float* dst, int n) {
  const Array a{dst};
  int i = singlesUntilAligned<K>(a, b, dst, n);
  if (i >= 8 && aligned16(dst + i)) {
    const FixedPattern fb(b, i);
    i = blocksDownTo<K, Form::Unaligned>(a, fb, dst, i, 4096);
    i = blocksDownTo<K, Form::Aligned>(a, fb, dst, i, 8);
  }
  singlesToBottom<K>(a, b, dst, i);
}

// Shapes 2 and 3: dst = a op b. Streaming stores while 1024 or more
// elements remain, then aligned loads if both sources are aligned at the
// blocks (their offset from dst is fixed, so one test decides), else
// unaligned loads.
template <OpKind K, class A, class B>
void runTwoSources(const A& a, const B& b, float* dst, int n) {
  int i = singlesUntilAligned<K>(a, b, dst, n);
  if (i >= 8 && aligned16(dst + i)) {
    if (i >= 1024) {
      i = blocksDownTo<K, Form::Stream>(a, b, dst, i, 1024);
      _mm_sfence();
    }
    if (a.alignedAt(i) && b.alignedAt(i)) {
      i = blocksDownTo<K, Form::Aligned>(a, b, dst, i, 8);
    } else {
      i = blocksDownTo<K, Form::Unaligned>(a, b, dst, i, 8);
    }
  }
  singlesToBottom<K>(a, b, dst, i);
}

// ---- SCplx multiply ----------------------------------------------------------

// Four complex samples from p: returns (re0..re3) and (im0..im3).
inline void gather4(const SCplx* p, __m128& re, __m128& im) {
  const float* f = reinterpret_cast<const float*>(p);
  const __m128 lo = _mm_loadu_ps(f);      // re0 im0 re1 im1
  const __m128 hi = _mm_loadu_ps(f + 4);  // re2 im2 re3 im3
  re = _mm_shuffle_ps(lo, hi, _MM_SHUFFLE(2, 0, 2, 0));
  im = _mm_shuffle_ps(lo, hi, _MM_SHUFFLE(3, 1, 3, 1));
}

enum class CStore { Plain, Stream };

inline void scatter4(SCplx* p, __m128 re, __m128 im, CStore how) {
  float* f = reinterpret_cast<float*>(p);
  const __m128 lo = _mm_unpacklo_ps(re, im);
  const __m128 hi = _mm_unpackhi_ps(re, im);
  if (how == CStore::Stream) {
    _mm_stream_ps(f, lo);
    _mm_stream_ps(f + 4, hi);
  } else {
    _mm_storeu_ps(f, lo);
    _mm_storeu_ps(f + 4, hi);
  }
}

inline void prefetchBelow(const void* p, int bytes) {
  _mm_prefetch(static_cast<const char*>(p) - bytes, _MM_HINT_T0);
}

// One block of four samples [i, i+4): dst = a * b, b an array or a scalar.
template <bool ArrayB, CStore How, bool Prefetch>
inline void cmulBlock(const SCplx* a, const SCplx* bArray, __m128 bReS, __m128 bImS, SCplx* dst, int i) {
  __m128 ar, ai, br = bReS, bi = bImS;
  if constexpr (Prefetch) prefetchBelow(a + i, 64);
  gather4(a + i, ar, ai);
  if constexpr (ArrayB) {
    if constexpr (Prefetch) prefetchBelow(bArray + i, 64);
    gather4(bArray + i, br, bi);
  }
  if constexpr (How == CStore::Stream) prefetchBelow(dst + i, 32);
  const __m128 re = _mm_sub_ps(_mm_mul_ps(ar, br), _mm_mul_ps(ai, bi));
  const __m128 im = _mm_add_ps(_mm_mul_ps(ar, bi), _mm_mul_ps(ai, br));
  scatter4(dst + i, re, im, How);
}

template <bool ArrayB>
void cmulRun(const SCplx* a, const SCplx* bArray, SCplx bVal, SCplx* dst, int n, bool streamOk) {
  const __m128 bReS = _mm_set1_ps(bVal.re);
  const __m128 bImS = _mm_set1_ps(bVal.im);
  int i = n;
  // From 512 remaining samples: prefetching, and streaming stores when
  // allowed and dst is aligned at the blocks (fixed as i steps by four).
  if (i >= 512) {
    if (streamOk && aligned16(dst + i)) {
      for (; i >= 512; i -= 4) cmulBlock<ArrayB, CStore::Stream, true>(a, bArray, bReS, bImS, dst, i - 4);
      _mm_sfence();
    } else {
      for (; i >= 512; i -= 4) cmulBlock<ArrayB, CStore::Plain, true>(a, bArray, bReS, bImS, dst, i - 4);
    }
  }
  for (; i >= 4; i -= 4) cmulBlock<ArrayB, CStore::Plain, false>(a, bArray, bReS, bImS, dst, i - 4);
  while (i > 0) {
    --i;
    dst[i] = cmul(a[i], ArrayB ? bArray[i] : bVal);
  }
}

// dst = a * b, four samples per block from the top; b is either an array
// or, when bArray is null, the scalar bVal. `streamOk` allows streaming
// stores (three-array form with dst distinct from a).
void cmulTopDown(const SCplx* a, const SCplx* bArray, SCplx bVal, SCplx* dst, int n, bool streamOk) {
  if (bArray != nullptr) {
    cmulRun<true>(a, bArray, bVal, dst, n, streamOk);
  } else {
    cmulRun<false>(a, nullptr, bVal, dst, n, streamOk);
  }
}

float* floats(SCplx* p) { return reinterpret_cast<float*>(p); }
const float* floats(const SCplx* p) { return reinterpret_cast<const float*>(p); }

}  // namespace

// ---- float -------------------------------------------------------------------

template <>
void kernelOp1<float>(OpKind op, float val, float* dst, int n) {
  const Pattern b(val, val);
  byKind(op, [&]<OpKind K>() { runInPlace<K>(b, dst, n); });
}

template <>
void kernelOp2<float>(OpKind op, const float* src, float* dst, int n) {
  byKind(op, [&]<OpKind K>() { runTwoSources<K>(Array{dst}, Array{src}, dst, n); });
}

template <>
void kernelOp3<float>(OpKind op, const float* srcA, const float* srcB, float* dst, int n) {
  byKind(op, [&]<OpKind K>() { runTwoSources<K>(Array{srcA}, Array{srcB}, dst, n); });
}

// ---- SCplx -------------------------------------------------------------------

template <>
void kernelOp1<SCplx>(OpKind op, SCplx val, SCplx* dst, int n) {
  if (op == OpKind::Mpy) {
    cmulTopDown(dst, nullptr, val, dst, n, false);
    return;
  }
  const Pattern b(val.re, val.im);
  byKind(op, [&]<OpKind K>() { runInPlace<K>(b, floats(dst), 2 * n); });
}

template <>
void kernelOp2<SCplx>(OpKind op, const SCplx* src, SCplx* dst, int n) {
  if (op == OpKind::Mpy) {
    cmulTopDown(dst, src, SCplx{}, dst, n, false);
    return;
  }
  byKind(op, [&]<OpKind K>() { runTwoSources<K>(Array{floats(dst)}, Array{floats(src)}, floats(dst), 2 * n); });
}

template <>
void kernelOp3<SCplx>(OpKind op, const SCplx* srcA, const SCplx* srcB, SCplx* dst, int n) {
  if (op == OpKind::Mpy) {
    cmulTopDown(srcA, srcB, SCplx{}, dst, n, dst != srcA);
    return;
  }
  byKind(op, [&]<OpKind K>() { runTwoSources<K>(Array{floats(srcA)}, Array{floats(srcB)}, floats(dst), 2 * n); });
}

}  // namespace ryx::arith
