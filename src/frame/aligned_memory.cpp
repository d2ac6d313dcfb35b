// The aligned allocator family. The caller gets the raw address rounded up
// to a multiple of 32 with at least one pointer-sized word below it; that
// word holds the raw address for ryxFree. On i386 this is payload + 36 bytes
// with the given address 4 to 35 bytes above the raw one.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "frame/memory.h"
#include "ryxcore.h"

// Raw memory for the aligned allocator. Weak, so a test program linked with
// the static archive can supply its own pair (to inject allocation failures
// and count live blocks); hidden, so the shared library never offers them.
extern "C" __attribute__((weak, visibility("hidden"))) void* ownRawAlloc(std::size_t bytes) {
  return std::malloc(bytes);
}
extern "C" __attribute__((weak, visibility("hidden"))) void ownRawFree(void* raw) { std::free(raw); }

namespace ryx {

void* alignedAlloc(std::uint32_t count, std::uint32_t elemSize) {
  const std::uint32_t payload = count * elemSize;  // may wrap: no overflow check
  const std::uint64_t size = rawSize(payload);
  // On i386 a payload near 4 GiB plus its slack exceeds the address space:
  // no runtime could give that, so it is a null result like any other.
  if constexpr (sizeof(std::size_t) < sizeof size) {
    if (size > SIZE_MAX) return nullptr;
  }
  void* raw = ownRawAlloc(static_cast<std::size_t>(size));
  if (raw == nullptr) return nullptr;
  const std::uintptr_t given =
      (reinterpret_cast<std::uintptr_t>(raw) + kAlign - 1 + sizeof(void*)) & ~std::uintptr_t{kAlign - 1};
  std::memcpy(reinterpret_cast<void*>(given - sizeof(void*)), &raw, sizeof raw);
  return reinterpret_cast<void*>(given);
}

}  // namespace ryx

extern "C" {

RYXAPI void* ryxMalloc(unsigned int len) { return ryx::alignedAlloc(len, 1); }
RYXAPI short* ryxwMalloc(unsigned int len) { return static_cast<short*>(ryx::alignedAlloc(len, 2)); }
RYXAPI float* ryxsMalloc(unsigned int len) { return static_cast<float*>(ryx::alignedAlloc(len, 4)); }
RYXAPI double* ryxdMalloc(unsigned int len) { return static_cast<double*>(ryx::alignedAlloc(len, 8)); }
RYXAPI DCplx* ryxzMalloc(unsigned int len) { return static_cast<DCplx*>(ryx::alignedAlloc(len, 16)); }

// The 4-byte and 8-byte element allocators are one routine each under
// several exported names.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wattribute-alias"
RYXAPI int* ryxiMalloc(unsigned int len) __attribute__((alias("ryxsMalloc")));
RYXAPI WCplx* ryxvMalloc(unsigned int len) __attribute__((alias("ryxsMalloc")));
RYXAPI SCplx* ryxcMalloc(unsigned int len) __attribute__((alias("ryxdMalloc")));
RYXAPI ICplx* ryxjMalloc(unsigned int len) __attribute__((alias("ryxdMalloc")));
#pragma GCC diagnostic pop

RYXAPI void ryxFree(void* ptr) {
  if (ptr == nullptr) return;
  void* raw;
  std::memcpy(&raw, static_cast<char*>(ptr) - sizeof(void*), sizeof raw);
  ownRawFree(raw);
}

}  // extern "C"
