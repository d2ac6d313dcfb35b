// Bit-reversal permutations driven by the pair list, and the exported
// reversal routines (source group "ryxmisc").
//
// An index of `order` bits is (top bit a, middle m, bottom bit b); reversal
// maps it to (b, rev(m), a). Per listed pair of middle parts (i, j) four
// element pairs are exchanged, per self-reversed part one, so no element
// is touched twice and the walk covers the low and the high half at once.
// Moves go through memcpy of the element width, which serves 8-byte aligned
// and 4-byte aligned complex arrays alike with the same result.
#include <cstring>

#include "frame/checks.h"
#include "frame/thread_context.h"
#include "transform/fft_internal.h"
#include "transform/fft_kernels.h"

namespace {

template <int W>
struct Elem {
  unsigned char b[W];
};

template <int W>
inline void swapAt(unsigned char* d, std::uint32_t x, std::uint32_t y) {
  Elem<W> a, b;
  std::memcpy(&a, d + std::size_t{x} * W, W);
  std::memcpy(&b, d + std::size_t{y} * W, W);
  std::memcpy(d + std::size_t{x} * W, &b, W);
  std::memcpy(d + std::size_t{y} * W, &a, W);
}

template <int W>
inline void moveAt(const unsigned char* s, std::uint32_t from, unsigned char* d, std::uint32_t to) {
  std::memcpy(d + std::size_t{to} * W, s + std::size_t{from} * W, W);
}

// 8-byte elements (SCplx, and the complex view of float real data): the
// two elements 2i, 2i+1 of a pair are one 16-byte unit, so a pair of middle
// parts moves as four units, each rebuilt from the low or high halves of two
// others. The same exchanges as the element-wise walk, fewer moves.
using Unit = long long __attribute__((vector_size(16)));

inline Unit loadUnit(const unsigned char* p) {
  Unit u;
  std::memcpy(&u, p, sizeof u);
  return u;
}
inline void storeUnit(unsigned char* p, Unit u) { std::memcpy(p, &u, sizeof u); }

void permutePairs8(const unsigned char* s, unsigned char* d, int order, const std::uint32_t* list) {
  const std::size_t half = ((std::size_t{1} << order) / 2) * 8;
  const std::uint32_t* p = list;
  for (; *p != 0; p += 2) {
    const std::size_t i = std::size_t{p[0]} * 4;  // byte offset of element 2i
    const std::size_t j = std::size_t{p[1]} * 4;
    const Unit a = loadUnit(s + i), b = loadUnit(s + half + i);
    const Unit c = loadUnit(s + j), e = loadUnit(s + half + j);
    storeUnit(d + i, __builtin_shuffle(c, e, Unit{0, 2}));
    storeUnit(d + half + i, __builtin_shuffle(c, e, Unit{1, 3}));
    storeUnit(d + j, __builtin_shuffle(a, b, Unit{0, 2}));
    storeUnit(d + half + j, __builtin_shuffle(a, b, Unit{1, 3}));
  }
  std::size_t i = 0;
  for (;;) {
    const Unit a = loadUnit(s + i), b = loadUnit(s + half + i);
    storeUnit(d + i, __builtin_shuffle(a, b, Unit{0, 2}));
    storeUnit(d + half + i, __builtin_shuffle(a, b, Unit{1, 3}));
    ++p;
    if (*p == 0) break;
    i = std::size_t{*p} * 4;
  }
}

template <int W>
void permuteInPlaceW(unsigned char* d, int order, const std::uint32_t* list) {
  const std::uint32_t half = static_cast<std::uint32_t>((std::uint64_t{1} << order) / 2);
  const std::uint32_t* p = list;
  for (; *p != 0; p += 2) {
    const std::uint32_t i2 = p[0] / 2;  // word 4*i is element 2*i
    const std::uint32_t j2 = p[1] / 2;
    swapAt<W>(d, i2, j2);
    swapAt<W>(d, half + i2 + 1, half + j2 + 1);
    swapAt<W>(d, i2 + 1, half + j2);
    swapAt<W>(d, half + i2, j2 + 1);
  }
  // The pairs' zero stands for middle part 0, then the self-reversed parts
  // up to the closing zero.
  std::uint32_t i2 = 0;
  for (;;) {
    swapAt<W>(d, i2 + 1, half + i2);
    ++p;
    if (*p == 0) break;
    i2 = *p / 2;
  }
}

template <int W>
void permuteCopyW(const unsigned char* s, unsigned char* d, int order, const std::uint32_t* list) {
  const std::uint32_t half = static_cast<std::uint32_t>((std::uint64_t{1} << order) / 2);
  const std::uint32_t* p = list;
  for (; *p != 0; p += 2) {
    const std::uint32_t i2 = p[0] / 2;
    const std::uint32_t j2 = p[1] / 2;
    moveAt<W>(s, i2, d, j2);
    moveAt<W>(s, j2, d, i2);
    moveAt<W>(s, half + i2 + 1, d, half + j2 + 1);
    moveAt<W>(s, half + j2 + 1, d, half + i2 + 1);
    moveAt<W>(s, i2 + 1, d, half + j2);
    moveAt<W>(s, half + j2, d, i2 + 1);
    moveAt<W>(s, half + i2, d, j2 + 1);
    moveAt<W>(s, j2 + 1, d, half + i2);
  }
  std::uint32_t i2 = 0;
  for (;;) {
    moveAt<W>(s, i2, d, i2);
    moveAt<W>(s, half + i2 + 1, d, half + i2 + 1);
    moveAt<W>(s, i2 + 1, d, half + i2);
    moveAt<W>(s, half + i2, d, i2 + 1);
    ++p;
    if (*p == 0) break;
    i2 = *p / 2;
  }
}

// Cache-blocked reversal for transforms larger than the first-level
// cache. An index is split as i = (h, m, l): B high bits, the middle bits,
// B low bits; its reverse is (rev l, rev m, rev h). So the 2^B x 2^B tile of
// middle m maps onto the tile of rev m, transposed, with rows and columns
// reversed. Both tiles are read into buffers before either is written,
// which makes the same code serve in place and source to destination; the
// rows read and the rows written are contiguous runs of 2^B elements.
inline std::uint32_t reverseLow(std::uint32_t v, int bits) {
  std::uint32_t r = 0;
  for (int k = 0; k < bits; ++k, v >>= 1) r = (r << 1) | (v & 1u);
  return r;
}

template <int W, int B>
void reverseBlocked(const unsigned char* s, unsigned char* d, int order) {
  constexpr std::uint32_t T = 1u << B;
  alignas(64) unsigned char tileA[T * T * W];
  alignas(64) unsigned char tileB[T * T * W];
  std::uint32_t revB[T];
  for (std::uint32_t k = 0; k < T; ++k) revB[k] = reverseLow(k, B);
  const int midBits = order - 2 * B;
  const int highShift = order - B;
  const std::uint32_t mids = 1u << midBits;
  auto at = [&](std::uint32_t h, std::uint32_t m, std::uint32_t l) {
    return ((std::size_t{h} << highShift) | (std::size_t{m} << B) | l) * W;
  };
  auto gather = [&](std::uint32_t m, unsigned char* tile) {
    for (std::uint32_t h = 0; h < T; ++h) std::memcpy(tile + h * T * W, s + at(h, m, 0), T * W);
  };
  // Element (h, l) of the tile of m goes to (rev l, rm, rev h).
  auto scatter = [&](const unsigned char* tile, std::uint32_t rm) {
    for (std::uint32_t l = 0; l < T; ++l) {
      unsigned char* row = d + at(revB[l], rm, 0);
      for (std::uint32_t h = 0; h < T; ++h) std::memcpy(row + std::size_t{revB[h]} * W, tile + (h * T + l) * W, W);
    }
  };
  for (std::uint32_t m = 0; m < mids; ++m) {
    const std::uint32_t rm = reverseLow(m, midBits);
    if (rm < m) continue;  // done with its partner
    gather(m, tileA);
    if (rm != m) gather(rm, tileB);
    scatter(tileA, rm);
    if (rm != m) scatter(tileB, m);
  }
}

// Orders from which the blocked form runs (the array outgrows the L1 cache).
constexpr int kBlockedFrom8 = 12;
constexpr int kBlockedFrom16 = 11;

template <int W>
void copySmall(const unsigned char* s, unsigned char* d, std::uint32_t n) {
  moveAt<W>(s, 0, d, 0);
  moveAt<W>(s, n - 1, d, n - 1);
  if (n > 2) {
    moveAt<W>(s, 1, d, 2);
    moveAt<W>(s, 2, d, 1);
  }
}

}  // namespace

namespace ryx::fft {

void permuteInPlace(void* data, int order, int elemBytes, const std::uint32_t* pairs) {
  if (order < 2) return;
  auto* d = static_cast<unsigned char*>(data);
  switch (elemBytes) {
    case 2:
      permuteInPlaceW<2>(d, order, pairs);
      break;
    case 4:
      permuteInPlaceW<4>(d, order, pairs);
      break;
    case 8:
      if (order >= kBlockedFrom8)
        reverseBlocked<8, 5>(d, d, order);
      else
        permutePairs8(d, d, order, pairs);
      break;
    default:
      if (order >= kBlockedFrom16)
        reverseBlocked<16, 4>(d, d, order);
      else if (auto wide = ryx::fft::kernels().permute16; wide != nullptr && order >= 3)
        wide(d, d, order, pairs);
      else
        permuteInPlaceW<16>(d, order, pairs);
      break;
  }
}

void permuteCopy(const void* src, void* dst, int order, int elemBytes, const std::uint32_t* pairs) {
  const auto* s = static_cast<const unsigned char*>(src);
  auto* d = static_cast<unsigned char*>(dst);
  const std::uint32_t n = static_cast<std::uint32_t>(std::uint64_t{1} << order);
  if (order < 3) {
    switch (elemBytes) {
      case 2:
        copySmall<2>(s, d, n);
        break;
      case 4:
        copySmall<4>(s, d, n);
        break;
      case 8:
        copySmall<8>(s, d, n);
        break;
      default:
        copySmall<16>(s, d, n);
        break;
    }
    return;
  }
  switch (elemBytes) {
    case 2:
      permuteCopyW<2>(s, d, order, pairs);
      break;
    case 4:
      permuteCopyW<4>(s, d, order, pairs);
      break;
    case 8:
      if (order >= kBlockedFrom8)
        reverseBlocked<8, 5>(s, d, order);
      else
        permutePairs8(s, d, order, pairs);
      break;
    default:
      if (order >= kBlockedFrom16)
        reverseBlocked<16, 4>(s, d, order);
      else if (auto wide = ryx::fft::kernels().permute16; wide != nullptr)
        wide(s, d, order, pairs);
      else
        permuteCopyW<16>(s, d, order, pairs);
      break;
  }
}

}  // namespace ryx::fft

namespace {

constexpr const char* kStem = "ryxmisc";

// The list of the order, or a report when it cannot be built; the routines
// then leave the samples as they are.
const std::uint32_t* listOrReport(const char* name, int order) {
  const std::uint32_t* list = ownGetRevPairs(order);
  if (list == nullptr) ryx::reportNoMem({name, kStem}, "NULL Pointer");
  return list;
}

template <class T>
void bitRev1(const char* name, T* vec, int order) {
  if (!ryx::passFirst({name, kStem}, {{order < 0, "order<0"}, {order > 31, "order>31"}, {vec == nullptr, "vec==0"}}))
    return;
  if (order < 2) return;
  if (order == 2) {
    swapAt<sizeof(T)>(reinterpret_cast<unsigned char*>(vec), 1, 2);
    return;
  }
  const std::uint32_t* list = listOrReport(name, order);
  if (list != nullptr) ryx::fft::permuteInPlace(vec, order, sizeof(T), list);
}

template <class T>
void bitRev2(const char* name, const T* src, T* dst, int order) {
  if (!ryx::passFirst(
          {name, kStem},
          {{order < 0, "order<0"}, {order > 31, "order>31"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}}))
    return;
  if (order < 3) {
    ryx::fft::permuteCopy(src, dst, order, sizeof(T), nullptr);
    return;
  }
  const std::uint32_t* list = listOrReport(name, order);
  if (list != nullptr) ryx::fft::permuteCopy(src, dst, order, sizeof(T), list);
}

}  // namespace

extern "C" {

RYXAPI int ryxBitRev(int a, int order) {
  if (!ryx::passFirst({__func__, kStem}, {{order < 0, "order<0"}, {order > 31, "order>31"}})) return 0;
  if (ryxGetErrStatus() < 0) return 0;
  std::uint32_t v = static_cast<std::uint32_t>(a);
  std::uint32_t r = 0;
  for (int b = 0; b < order; ++b) {
    r = (r << 1) + (v & 1u);
    v >>= 1;
  }
  return static_cast<int>(r);
}

RYXAPI void ryxCalcBitRevTbl(int* tbl, int order) {
  if (!ryx::passFirst({__func__, kStem},
                      {{order < 0, "order<0"}, {order > 31, "order>31"}, {tbl == nullptr, "tbl==0"}}))
    return;
  const std::uint32_t n = static_cast<std::uint32_t>(std::uint64_t{1} << order);
  tbl[n - 1] = static_cast<int>(n - 1);
  tbl[0] = 0;
  if (n - 1 < 2) return;
  std::uint32_t j = 0;
  for (std::uint32_t i = 1; i <= n - 2; ++i) {
    std::uint32_t h = n / 2;
    while (h <= j && h != 0) {
      j -= h;
      h >>= 1;
    }
    j += h;
    if (i <= j) {
      tbl[j] = static_cast<int>(i);
      tbl[i] = static_cast<int>(j);
    }
  }
}

RYXAPI int* ryxGetBitRevTbl(int order) {
  if (!ryx::passFirst({__func__, kStem}, {{order < 0, "order<0"}, {order > 31, "order>31"}})) return nullptr;
  if (ryxGetErrStatus() < 0) return nullptr;
  RyxThreadContext* ctx = ryxGetThreadContext();
  if (ctx->bitRevTbl[order] != nullptr) return static_cast<int*>(ctx->bitRevTbl[order]);
  auto* tbl = static_cast<int*>(ryx::fft::blockAlloc(std::uint64_t{1} << order, 4));
  if (tbl == nullptr) {
    ryx::reportNoMem({__func__, kStem}, "NULL Pointer");
    return nullptr;
  }
  ryxCalcBitRevTbl(tbl, order);
  ctx->bitRevTbl[order] = tbl;
  return tbl;
}

RYXAPI void ryxwbBitRev1(short* vec, int order) { bitRev1(__func__, vec, order); }
RYXAPI void ryxvbBitRev1(WCplx* vec, int order) { bitRev1(__func__, vec, order); }
RYXAPI void ryxsbBitRev1(float* vec, int order) { bitRev1(__func__, vec, order); }
RYXAPI void ryxcbBitRev1(SCplx* vec, int order) { bitRev1(__func__, vec, order); }
RYXAPI void ryxdbBitRev1(double* vec, int order) { bitRev1(__func__, vec, order); }
RYXAPI void ryxzbBitRev1(DCplx* vec, int order) { bitRev1(__func__, vec, order); }

RYXAPI void ryxwbBitRev2(const short* src, short* dst, int order) { bitRev2(__func__, src, dst, order); }
RYXAPI void ryxvbBitRev2(const WCplx* src, WCplx* dst, int order) { bitRev2(__func__, src, dst, order); }
RYXAPI void ryxsbBitRev2(const float* src, float* dst, int order) { bitRev2(__func__, src, dst, order); }
RYXAPI void ryxcbBitRev2(const SCplx* src, SCplx* dst, int order) { bitRev2(__func__, src, dst, order); }
RYXAPI void ryxdbBitRev2(const double* src, double* dst, int order) { bitRev2(__func__, src, dst, order); }
RYXAPI void ryxzbBitRev2(const DCplx* src, DCplx* dst, int order) { bitRev2(__func__, src, dst, order); }

}  // extern "C"
