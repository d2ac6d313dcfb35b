// Cached 16-word turns of fill and copy on 512-bit stores (compiled with
// -mavx512f). The words written and their forward order are those of the
// 128-bit turns; only the store width differs.
// The register broadcast below goes through a cast whose upper lanes g++ 12
// calls uninitialised; the shuffle overwrites all of them.
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <immintrin.h>

#include "vector/arith_kernels.h"

namespace ryx::arith::avx512 {

// The turns cover [d, d + 64 * turns); a 64-byte store that straddles two
// cache lines costs two, so the first and last turns are written unaligned
// and the ones between on line boundaries (rewriting a few words with the
// same value).
std::int64_t fillTurns(char* d, __m128 lanes, std::int64_t words) {
  const __m512 v = _mm512_broadcast_f32x4(lanes);  // in registers: no store-forwarding stall
  const std::int64_t turns = words / 16;
  if (turns == 0) return 0;
  char* const end = d + 64 * turns;
  _mm512_storeu_ps(d, v);
  char* p = reinterpret_cast<char*>((reinterpret_cast<std::uintptr_t>(d) + 64) & ~std::uintptr_t{63});
  for (; p + 64 <= end; p += 64) _mm512_store_ps(p, v);
  if (p < end) _mm512_storeu_ps(end - 64, v);
  return turns * 16;
}

std::int64_t copyTurns(const char* s, char* d, std::int64_t words) {
  const std::int64_t turns = words / 16;
  const float* sf = reinterpret_cast<const float*>(s);
  float* df = reinterpret_cast<float*>(d);
  for (std::int64_t t = 0; t < turns; ++t, sf += 16, df += 16) _mm512_storeu_ps(df, _mm512_loadu_ps(sf));
  return turns * 16;
}

}  // namespace ryx::arith::avx512
