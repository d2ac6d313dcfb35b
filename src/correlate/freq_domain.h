// The transforms the convolution and correlation methods run, through the
// exported FFT routines only, and the working arrays they take.
#pragma once

#include "frame/memory.h"
#include "correlate/sample_ops.h"

namespace ryx::corr {

// The exported transforms of one precision.
template <class R>
struct Fft;
template <>
struct Fft<float> {
  static void real(float* p, int order, int flags) { ryxsRealFftl(p, order, flags); }
  static void ccs(float* p, int order, int flags) { ryxsCcsFftl(p, order, flags); }
  static void mpyPack(const float* src, float* dst, int order) { ryxsMpyRCPack2(src, dst, order); }
  static void cplx(SCplx* p, int order, int flags) { ryxcFft(p, order, flags); }
  static void freeTwiddles() { ryxcFreeTwdTbls(); }
};
template <>
struct Fft<double> {
  static void real(double* p, int order, int flags) { ryxdRealFftl(p, order, flags); }
  static void ccs(double* p, int order, int flags) { ryxdCcsFftl(p, order, flags); }
  static void mpyPack(const double* src, double* dst, int order) { ryxdMpyRCPack2(src, dst, order); }
  static void cplx(DCplx* p, int order, int flags) { ryxzFft(p, order, flags); }
  static void freeTwiddles() { ryxzFreeTwdTbls(); }
};

// Working arrays from the aligned allocator, released on every path out.
class Scratch {
 public:
  Scratch() = default;
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() {
    for (void* p : blocks_) ryxFree(p);
  }
  // A zeroed array of n elements, or null (then `ok` turns false).
  template <class T>
  T* take(long long n) {
    T* p = n >= 0 && n <= 0x7fffffff && count_ < kSlots ? allocArray<T>(static_cast<int>(n)) : nullptr;
    if (p == nullptr) {
      ok_ = false;
      return nullptr;
    }
    blocks_[count_++] = p;
    ownMemset(p, 0, static_cast<int>(n * static_cast<long long>(sizeof(T))));
    return p;
  }
  bool ok() const { return ok_; }

 private:
  static constexpr int kSlots = 8;
  void* blocks_[kSlots] = {};
  int count_ = 0;
  bool ok_ = true;
};

inline int ceilLog2(long long n) {
  int v = 0;
  while ((1LL << v) < n) ++v;
  return v;
}
inline int floorLog2(long long n) {
  int v = 0;
  while (n >= 2) {
    n >>= 1;
    ++v;
  }
  return v;
}

// Value k of a packed real spectrum (RCPack, P values) as a complex number.
template <class R>
ComplexOf<R> packedBin(const R* pack, int P, int k) {
  if (k == 0) return {pack[0], 0};
  if (2 * k == P) return {pack[P - 1], 0};
  if (2 * k < P) return {pack[2 * k - 1], pack[2 * k]};
  return {pack[2 * (P - k) - 1], -pack[2 * (P - k)]};
}

}  // namespace ryx::corr
