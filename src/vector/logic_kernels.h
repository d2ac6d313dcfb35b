// Wide kernels of the 16-bit logic family, reached through run-time
// dispatch. The bitwise result of a word never depends on the path.
#pragma once

#include <cstddef>

namespace ryx::logic::avx2 {

// dst[i] = a[i] op b[i] (op 0 And, 1 Or, 2 Xor), or a[i] op val when b is
// null, for whole blocks of 32 words from the start; returns the number of
// words done, the rest is the caller's.
std::size_t blocks(int op, const short* a, const short* b, short val, short* dst, std::size_t n);

// The same with streaming stores that go around the caches, followed by a
// store fence; dst must be 32-byte aligned.
std::size_t streamBlocks(int op, const short* a, const short* b, short val, short* dst, std::size_t n);

}  // namespace ryx::logic::avx2
