// Aligned allocation and the block fill, copy and move routines that all
// state-handling code uses.
#pragma once

#include <cstdint>

#include <cstddef>

// Where the aligned allocator takes its raw blocks (the runtime's malloc).
extern "C" void* ownRawAlloc(std::size_t bytes);

namespace ryx {

constexpr unsigned kAlign = 32;

// Raw block size for a payload of `bytes`: the payload, 31 bytes of slack
// and one pointer-sized word for the raw address, in 32-bit arithmetic (a
// wrapped size is not detected, as for every allocator of the family).
constexpr std::uint32_t rawSize(std::uint32_t bytes) {
  return bytes + kAlign - 1 + static_cast<std::uint32_t>(sizeof(void*)) + 1;
}

// Allocates `count * elemSize` bytes aligned to 32; null when the runtime
// has no memory. Never reports.
void* alignedAlloc(std::uint32_t count, std::uint32_t elemSize);

// Typed convenience for internal callers.
template <class T>
T* allocArray(int count) {
  return static_cast<T*>(alignedAlloc(static_cast<std::uint32_t>(count), sizeof(T)));
}

}  // namespace ryx

// Block routines: destination first, size a signed count of bytes, the
// destination returned. They do nothing for null pointers, sizes below 1,
// or (copy and move) destination equal to source.
void* ownMemset(void* dst, int value, int size);
void* ownMemcpy(void* dst, const void* src, int size);
void* ownMemmove(void* dst, const void* src, int size);
