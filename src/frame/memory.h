// Aligned allocation and the block fill, copy and move routines that all
// state-handling code uses.
#pragma once

#include <cstdint>

#include <cstddef>

// Where the aligned allocator takes its raw blocks and gives them back (the
// runtime's malloc and free; a test program may supply both).
extern "C" void* ownRawAlloc(std::size_t bytes);
extern "C" void ownRawFree(void* raw);

namespace ryx {

constexpr unsigned kAlign = 32;

// Raw block size for a payload of `bytes`: the payload, 31 bytes of slack
// and one pointer-sized word for the raw address. The payload itself is
// counted in 32 bits (a wrapped count gives a small payload, as for every
// allocator of the family), but the slack is added without wrapping, so
// that every block holds its own header and alignment room.
constexpr std::uint64_t rawSize(std::uint32_t bytes) {
  return std::uint64_t{bytes} + kAlign - 1 + sizeof(void*) + 1;
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
