// This test program supplies the library's raw allocator: it records the
// size of the latest request (so tests can check the size of a tap array)
// and lets tests inject allocation failures.
#include "alloc_failure.h"

namespace iirtest {
std::size_t lastRawBytes = 0;
}

extern "C" void* ownRawAlloc(std::size_t bytes) {
  iirtest::lastRawBytes = bytes;
  return ryxtest::FailAllocation::allocate(bytes);
}
