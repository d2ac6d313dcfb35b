// Engine-layer tables of the FFT, built once per thread and kept in the
// thread's record, plus the grown scratch slots.
//
// Every engine twiddle is read, with a sign, from one quarter-wave sine
// table S of the element type, so W^j and W^(N/4+j) agree exactly up to
// their signs and float tables carry the rounding of the float S. S is
// temporary: built for one table and freed at once.
#include <cmath>
#include <cstring>

#include "frame/memory.h"
#include "frame/thread_context.h"
#include "transform/fft_internal.h"

namespace ryx::fft {

void* blockAlloc(std::uint64_t count, std::uint32_t elemSize) {
  const std::uint64_t bytes = count * elemSize;
  if (count > kMaxBlockBytes || bytes > kMaxBlockBytes) return nullptr;
  return alignedAlloc(static_cast<std::uint32_t>(bytes), 1);
}

void scaleFloats(float* data, std::uint64_t count, float factor) {
  constexpr std::uint64_t kPiece = 1u << 30;
  while (count > 0) {
    const std::uint64_t n = count < kPiece ? count : kPiece;
    ryxsbMpy1(factor, data, static_cast<int>(n));
    data += n;
    count -= n;
  }
}

void scaleDoubles(double* data, std::uint64_t count, double factor) {
  constexpr std::uint64_t kPiece = 1u << 30;
  while (count > 0) {
    const std::uint64_t n = count < kPiece ? count : kPiece;
    ryxdbMpy1(factor, data, static_cast<int>(n));
    data += n;
    count -= n;
  }
}

}  // namespace ryx::fft

using namespace ryx::fft;

namespace {

constexpr double kTwoPi = 2.0 * 3.14159265358979323846;

bool orderInRange(int order) { return order >= 0 && order <= 31; }

template <class T>
T* sineQuarter(int order) {
  const std::uint64_t n = std::uint64_t{1} << order;
  const std::uint64_t quarter = n / 4;
  const std::uint64_t eighth = n / 8;
  T* s = static_cast<T*>(blockAlloc(quarter + 1, sizeof(T)));
  if (s == nullptr) return nullptr;
  const double step = kTwoPi / static_cast<double>(n);
  // The upper half comes from the cosine so that S[N/4] is exactly 1.
  for (std::uint64_t j = 0; j <= eighth && j <= quarter; ++j)
    s[j] = static_cast<T>(std::sin(static_cast<double>(j) * step));
  for (std::uint64_t j = eighth + 1; j <= quarter; ++j)
    s[j] = static_cast<T>(std::cos(static_cast<double>(quarter - j) * step));
  return s;
}

// Radix tables: per stage M (4 + order%2, then every second power up to N),
// for each group of G columns six rows of G values: re and im of W^k, W^2k,
// W^3k, each read from S with stride N/M and a sign.
template <class T, int G>
void fillRadix(T* tbl, const T* s, int order) {
  const std::uint64_t n = std::uint64_t{1} << order;
  T* out = tbl;
  for (int st = 4 + (order & 1); st <= order; st += 2) {
    const std::uint64_t m = std::uint64_t{1} << st;
    const std::uint64_t l = m / 4;
    const std::uint64_t stride = n / m;
    for (std::uint64_t k0 = 0; k0 < l; k0 += G) {
      for (int g = 0; g < G; ++g) {
        const std::uint64_t k = k0 + g;
        T re[3], im[3];
        for (int p = 1; p <= 3; ++p) {
          const std::uint64_t e = k * p;
          T r, i;
          if (e <= l) {
            r = s[(l - e) * stride];
            i = -s[e * stride];
          } else if (e <= 2 * l) {
            r = -s[(e - l) * stride];
            i = -s[(2 * l - e) * stride];
          } else {
            r = -s[(3 * l - e) * stride];
            i = s[(e - 2 * l) * stride];
          }
          re[p - 1] = r;
          im[p - 1] = i;
        }
        for (int p = 0; p < 3; ++p) {
          out[(2 * p) * G + g] = re[p];
          out[(2 * p + 1) * G + g] = im[p];
        }
      }
      out += 6 * G;
    }
  }
}

template <class T>
struct Fields;
template <>
struct Fields<float> {
  static void** radix(RyxThreadContext* c) { return c->sFftRadixTwd; }
  static void** block(RyxThreadContext* c) { return c->sFftBlockTwd; }
  static void** real(RyxThreadContext* c) { return c->sRealTwd; }
  static void** ccs(RyxThreadContext* c) { return c->sCcsTwd; }
  static constexpr int kLimit = kFloatKernelOrder;
  static constexpr std::uint64_t kCombine = kFloatCombine;
  static constexpr int kLanes = kFloatLanes;
};
template <>
struct Fields<double> {
  static void** radix(RyxThreadContext* c) { return c->dFftRadixTwd; }
  static void** block(RyxThreadContext* c) { return c->dFftBlockTwd; }
  static void** real(RyxThreadContext* c) { return c->dRealTwd; }
  static void** ccs(RyxThreadContext* c) { return c->dCcsTwd; }
  static constexpr int kLimit = kDoubleKernelOrder;
  static constexpr std::uint64_t kCombine = kDoubleCombine;
  static constexpr int kLanes = kDoubleLanes;
};

template <class T>
T* buildRadix(int order) {
  const std::uint64_t n = std::uint64_t{1} << order;
  // Float asks (N/4)*32+32 bytes, double ((N & ~3)+4)*16, so a table
  // exists even when it has no stage.
  const std::uint64_t bytes = sizeof(T) == 4 ? (n / 4) * 32 + 32 : ((n & ~std::uint64_t{3}) + 4) * 16;
  T* tbl = static_cast<T*>(blockAlloc(bytes, 1));
  if (tbl == nullptr) return nullptr;
  if (n >= 9 && 4 + (order & 1) <= order) {
    T* s = sineQuarter<T>(order);
    if (s == nullptr) {
      ryxFree(tbl);
      return nullptr;
    }
    fillRadix<T, Fields<T>::kLanes>(tbl, s, order);
    ryxFree(s);
  }
  return tbl;
}

// Block table above the kernel limit: W_N^k for k below N/4, then (when N
// exceeds the combining size C) W_C^j for j below C/4.
template <class T>
T* buildBlock(int order) {
  const std::uint64_t n = std::uint64_t{1} << order;
  const std::uint64_t c = Fields<T>::kCombine;
  const std::uint64_t extra = n > c ? c / 4 : 0;
  T* tbl = static_cast<T*>(blockAlloc((n / 4 + extra) * 2, sizeof(T)));
  if (tbl == nullptr) return nullptr;
  T* s = sineQuarter<T>(order);
  if (s == nullptr) {
    ryxFree(tbl);
    return nullptr;
  }
  const std::uint64_t q = n / 4;
  for (std::uint64_t k = 0; k < q; ++k) {
    tbl[2 * k] = s[q - k];
    tbl[2 * k + 1] = -s[k];
  }
  if (extra != 0) {
    const std::uint64_t t = n / c;
    T* w = tbl + 2 * q;
    for (std::uint64_t j = 0; j < c / 4; ++j) {
      w[2 * j] = s[(c / 4 - j) * t];
      w[2 * j + 1] = -s[j * t];
    }
  }
  ryxFree(s);
  return tbl;
}

template <class T>
T* getRadix(int order) {
  if (!orderInRange(order)) return nullptr;
  RyxThreadContext* ctx = ryxGetThreadContext();
  constexpr int kLimit = Fields<T>::kLimit;
  if (order > kLimit) {
    if (getRadix<T>(kLimit) == nullptr) return nullptr;
    void*& slot = Fields<T>::block(ctx)[order];
    if (slot == nullptr) slot = buildBlock<T>(order);
    return static_cast<T*>(slot);
  }
  void*& slot = Fields<T>::radix(ctx)[order];
  if (slot == nullptr) slot = buildRadix<T>(order);
  return static_cast<T*>(slot);
}

template <class T>
void freeRadix(int order) {
  if (!orderInRange(order)) return;
  RyxThreadContext* ctx = ryxGetThreadContext();
  constexpr int kLimit = Fields<T>::kLimit;
  void** radix = Fields<T>::radix(ctx);
  ryxFree(radix[order]);
  radix[order] = nullptr;
  if (order > kLimit) {
    void** block = Fields<T>::block(ctx);
    ryxFree(block[order]);
    block[order] = nullptr;
    ryxFree(radix[kLimit]);
    radix[kLimit] = nullptr;
  }
}

// Recombination tables of the full real length N: pairs (A_k, B_k) from
// the real (halved cosine, 0.5 - 0.5 sine) or CCS (cosine, minus sine)
// rule, computed in double from S and rounded once. Float above N = 8 uses
// groups of four k: four A then four B.
template <class T, bool Real>
T* buildRecombine(int order) {
  const std::uint64_t n = std::uint64_t{1} << order;
  const std::uint64_t q = n / 4;
  const std::uint64_t pairs = order < 4 ? 2 : q;
  T* tbl = static_cast<T*>(blockAlloc(pairs * 2, sizeof(T)));
  if (tbl == nullptr) return nullptr;
  std::memset(tbl, 0, pairs * 2 * sizeof(T));
  T* s = sineQuarter<T>(order);
  if (s == nullptr) {
    ryxFree(tbl);
    return nullptr;
  }
  auto a = [&](std::uint64_t k) {
    const double v = static_cast<double>(s[q - k]);
    return static_cast<T>(Real ? 0.5 * v : v);
  };
  auto b = [&](std::uint64_t k) {
    const double v = static_cast<double>(s[k]);
    return static_cast<T>(Real ? 0.5 - 0.5 * v : -v);
  };
  if (sizeof(T) == 4 && n > 8) {
    for (std::uint64_t g = 0; 4 * g < q; ++g) {
      for (int l = 0; l < 4; ++l) {
        const std::uint64_t k = 4 * g + 1 + l;
        tbl[8 * g + l] = a(k);
        tbl[8 * g + 4 + l] = b(k);
      }
    }
  } else {
    for (std::uint64_t j = 0; j < q; ++j) {
      tbl[2 * j] = a(j);
      tbl[2 * j + 1] = b(j);
    }
  }
  ryxFree(s);
  return tbl;
}

template <class T, bool Real>
T* getRecombine(int order) {
  if (!orderInRange(order)) return nullptr;
  RyxThreadContext* ctx = ryxGetThreadContext();
  void*& slot = (Real ? Fields<T>::real(ctx) : Fields<T>::ccs(ctx))[order];
  if (slot == nullptr) slot = buildRecombine<T, Real>(order);
  return static_cast<T*>(slot);
}

template <class T, bool Real>
void freeRecombine(int order) {
  if (!orderInRange(order)) return;
  RyxThreadContext* ctx = ryxGetThreadContext();
  void*& slot = (Real ? Fields<T>::real(ctx) : Fields<T>::ccs(ctx))[order];
  ryxFree(slot);
  slot = nullptr;
}

// The running reversed counter shared by the list and table builders:
// advances j to the reversal of its successor over `half`*2 values.
inline std::uint32_t nextReversed(std::uint32_t j, std::uint32_t half) {
  std::uint32_t h = half;
  while (h <= j && h != 0) {
    j -= h;
    h >>= 1;
  }
  return j + h;
}

std::uint32_t* buildRevPairs(int order) {
  if (order < 2) return static_cast<std::uint32_t*>(blockAlloc(1, 4));
  const std::uint32_t q = static_cast<std::uint32_t>((std::uint64_t{1} << order) / 4);
  auto* list = static_cast<std::uint32_t*>(blockAlloc(std::uint64_t{q} + 1, 4));
  if (list == nullptr) return nullptr;
  std::uint32_t front = 0;
  std::uint32_t back = q - 1;
  std::uint32_t j = 0;
  for (std::uint32_t i = 1; i < q; ++i) {
    j = nextReversed(j, q / 2);
    if (i < j) {
      list[front++] = 4 * i;
      list[front++] = 4 * j;
    } else if (i == j) {
      list[back--] = 4 * i;
    }
  }
  list[front] = 0;
  list[q] = 0;
  return list;
}

}  // namespace

// ---- Quarter-wave sine -------------------------------------------------------

float* ownsSineQuarter(int order) { return orderInRange(order) ? sineQuarter<float>(order) : nullptr; }
double* owndSineQuarter(int order) { return orderInRange(order) ? sineQuarter<double>(order) : nullptr; }

// ---- Radix and block tables --------------------------------------------------

float* ownsGetFftRadixTwd(int order) { return getRadix<float>(order); }
double* owndGetFftRadixTwd(int order) { return getRadix<double>(order); }
void ownsFreeFftRadixTwd(int order) { freeRadix<float>(order); }
void owndFreeFftRadixTwd(int order) { freeRadix<double>(order); }

// ---- Recombination tables ----------------------------------------------------

float* ownsGetRealTwd(int order) { return getRecombine<float, true>(order); }
double* owndGetRealTwd(int order) { return getRecombine<double, true>(order); }
float* ownsGetCcsTwd(int order) { return getRecombine<float, false>(order); }
double* owndGetCcsTwd(int order) { return getRecombine<double, false>(order); }
void ownsFreeRealTwd(int order) { freeRecombine<float, true>(order); }
void owndFreeRealTwd(int order) { freeRecombine<double, true>(order); }
void ownsFreeCcsTwd(int order) { freeRecombine<float, false>(order); }
void owndFreeCcsTwd(int order) { freeRecombine<double, false>(order); }

// ---- Q14 table of the 16-bit transforms ---------------------------------------

// N rows (c, s, -s, c) of rounded Q14 cosine and sine, so that two
// multiply-adds on (re, im) give re*c+im*s and im*c-re*s.
short* ownwGetFftTwd(int order) {
  if (!orderInRange(order)) return nullptr;
  RyxThreadContext* ctx = ryxGetThreadContext();
  void*& slot = ctx->wRealTwd[order];
  if (slot != nullptr) return static_cast<short*>(slot);
  const std::uint64_t n = std::uint64_t{1} << order;
  auto* tbl = static_cast<short*>(blockAlloc(order == 0 ? 16 : 8 * n, 1));
  if (tbl == nullptr) return nullptr;
  for (std::uint64_t k = 0; k < n; ++k) {
    const double angle = kTwoPi * static_cast<double>(k) / static_cast<double>(n);
    const auto c = static_cast<short>(std::lround(16384.0 * std::cos(angle)));
    const auto s = static_cast<short>(std::lround(16384.0 * std::sin(angle)));
    tbl[4 * k] = c;
    tbl[4 * k + 1] = s;
    tbl[4 * k + 2] = static_cast<short>(-s);
    tbl[4 * k + 3] = c;
  }
  slot = tbl;
  return tbl;
}

// ---- Reversal pair lists -----------------------------------------------------

// Words 4*i, 4*j per pair of middle parts i < j = rev(i), a zero, the
// self-reversed middle parts in descending order, a zero: Q+1 words.
std::uint32_t* ownGetRevPairs(int order) {
  if (!orderInRange(order)) return nullptr;
  RyxThreadContext* ctx = ryxGetThreadContext();
  void*& slot = ctx->bitRevPairs[order];
  if (slot == nullptr) slot = buildRevPairs(order);
  return static_cast<std::uint32_t*>(slot);
}

void ownFreeRevPairs(int order) {
  if (!orderInRange(order)) return;
  RyxThreadContext* ctx = ryxGetThreadContext();
  ryxFree(ctx->bitRevPairs[order]);
  ctx->bitRevPairs[order] = nullptr;
}

// ---- Grown scratch -----------------------------------------------------------

namespace {

template <class T>
T* growSlot(void* (&slots)[4], int (&lengths)[4], int count, int slot, std::uint32_t elemBytes) {
  if (count <= 0 || slot < 0 || slot > 3) return nullptr;
  if (slots[slot] != nullptr && lengths[slot] >= count) return static_cast<T*>(slots[slot]);
  void* old = slots[slot];
  lengths[slot] = 0;
  slots[slot] = nullptr;
  ryxFree(old);
  void* fresh = blockAlloc(static_cast<std::uint64_t>(count), elemBytes);
  if (fresh == nullptr) return nullptr;
  slots[slot] = fresh;
  lengths[slot] = count;
  return static_cast<T*>(fresh);
}

}  // namespace

int* ownGetScratchI(int count, int slot) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  return growSlot<int>(ctx->scratchI, ctx->scratchILen, count, slot, 4);
}

SCplx* ownGetScratchC(int count, int slot) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  return growSlot<SCplx>(ctx->scratchC, ctx->scratchCLen, count, slot, 8);
}

SCplx* ownGetScratchZ(int count, int slot) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  return growSlot<SCplx>(ctx->scratchZ, ctx->scratchZLen, count, slot, 8);
}

void ownFreeScratchZSlot(int slot) {
  if (slot < 0 || slot > 3) return;
  RyxThreadContext* ctx = ryxGetThreadContext();
  ctx->scratchZLen[slot] = 0;
  ryxFree(ctx->scratchZ[slot]);
  ctx->scratchZ[slot] = nullptr;
}
