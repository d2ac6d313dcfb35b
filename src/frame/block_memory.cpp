// Block fill, copy and move. Up to 32 bytes they work bytewise. Above that:
// bytes until the destination is 8-aligned, 64-byte blocks as eight 64-bit
// moves with a non-temporal prefetch of the next block, one 32-byte block
// if it remains, then the last 0-31 bytes singly. A move whose destination
// lies inside the source runs from the top down instead.
#include <xmmintrin.h>

#include <cstdint>
#include <cstring>

#include "frame/memory.h"

namespace {

using u8 = unsigned char;

inline std::uint64_t load64(const u8* p) {
  std::uint64_t v;
  std::memcpy(&v, p, 8);
  return v;
}
inline void store64(u8* p, std::uint64_t v) { std::memcpy(p, &v, 8); }

inline void prefetchAhead(const u8* p) { _mm_prefetch(reinterpret_cast<const char*>(p), _MM_HINT_NTA); }

inline unsigned misalign8(const u8* p) { return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(p) & 7u); }

// Forward copy in the shared shape; each 32-byte group is read into
// registers before it is stored, so a destination below the source is safe.
void copyForward(u8* d, const u8* s, int size) {
  if (size <= 32) {
    for (int i = 0; i < size; ++i) d[i] = s[i];
    return;
  }
  while (misalign8(d) != 0) {
    *d++ = *s++;
    --size;
  }
  for (; size >= 64; size -= 64, d += 64, s += 64) {
    prefetchAhead(s + 64);
    std::uint64_t w[8];
    for (int k = 0; k < 4; ++k) w[k] = load64(s + 8 * k);
    for (int k = 0; k < 4; ++k) store64(d + 8 * k, w[k]);
    for (int k = 4; k < 8; ++k) w[k] = load64(s + 8 * k);
    for (int k = 4; k < 8; ++k) store64(d + 8 * k, w[k]);
  }
  if (size >= 32) {
    std::uint64_t w[4];
    for (int k = 0; k < 4; ++k) w[k] = load64(s + 8 * k);
    for (int k = 0; k < 4; ++k) store64(d + 8 * k, w[k]);
    d += 32;
    s += 32;
    size -= 32;
  }
  for (int i = 0; i < size; ++i) d[i] = s[i];
}

// Top-down move for a destination above an overlapping source.
void moveBackward(u8* d, const u8* s, int size) {
  u8* de = d + size;
  const u8* se = s + size;
  if (size <= 32) {
    while (de != d) *--de = *--se;
    return;
  }
  while (misalign8(de) != 0 && de != d) *--de = *--se;
  while (de - d >= 32) {
    de -= 32;
    se -= 32;
    std::uint64_t w[4];
    for (int k = 0; k < 4; ++k) w[k] = load64(se + 8 * k);
    for (int k = 0; k < 4; ++k) store64(de + 8 * k, w[k]);
  }
  while (de != d) *--de = *--se;
}

}  // namespace

void* ownMemset(void* dst, int value, int size) {
  if (dst == nullptr || size < 1) return dst;
  u8* d = static_cast<u8*>(dst);
  const u8 byte = static_cast<u8>(value);
  if (size <= 32) {
    for (int i = 0; i < size; ++i) d[i] = byte;
    return dst;
  }
  while (misalign8(d) != 0) {
    *d++ = byte;
    --size;
  }
  // Replicate the byte as unsigned so no sign bits reach the upper bytes.
  const std::uint64_t word = 0x0101010101010101ull * byte;
  for (; size >= 64; size -= 64, d += 64) {
    prefetchAhead(d + 64);
    for (int k = 0; k < 8; ++k) store64(d + 8 * k, word);
  }
  if (size >= 32) {
    for (int k = 0; k < 4; ++k) store64(d + 8 * k, word);
    d += 32;
    size -= 32;
  }
  for (int i = 0; i < size; ++i) d[i] = byte;
  return dst;
}

void* ownMemcpy(void* dst, const void* src, int size) {
  if (dst == nullptr || src == nullptr || size < 1 || dst == src) return dst;
  copyForward(static_cast<u8*>(dst), static_cast<const u8*>(src), size);
  return dst;
}

void* ownMemmove(void* dst, const void* src, int size) {
  if (dst == nullptr || src == nullptr || size < 1 || dst == src) return dst;
  u8* d = static_cast<u8*>(dst);
  const u8* s = static_cast<const u8*>(src);
  const auto da = reinterpret_cast<std::uintptr_t>(d);
  const auto sa = reinterpret_cast<std::uintptr_t>(s);
  if (da > sa && da < sa + static_cast<std::uintptr_t>(size)) {
    moveBackward(d, s, size);
  } else {
    copyForward(d, s, size);
  }
  return dst;
}
