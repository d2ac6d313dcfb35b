// Cached 16-word turns of fill and copy on 256-bit stores (compiled with
// -mavx2). The words written and their forward order are those of the
// 128-bit turns; only the store width differs.
#include <immintrin.h>

#include "vector/arith_kernels.h"

namespace ryx::arith::avx2 {

std::int64_t fillTurns(char* d, __m128 lanes, std::int64_t words) {
  const __m256 v = _mm256_set_m128(lanes, lanes);
  const std::int64_t turns = words / 16;
  float* df = reinterpret_cast<float*>(d);
  for (std::int64_t t = 0; t < turns; ++t, df += 16) {
    _mm256_storeu_ps(df, v);
    _mm256_storeu_ps(df + 8, v);
  }
  return turns * 16;
}

std::int64_t copyTurns(const char* s, char* d, std::int64_t words) {
  const std::int64_t turns = words / 16;
  const float* sf = reinterpret_cast<const float*>(s);
  float* df = reinterpret_cast<float*>(d);
  for (std::int64_t t = 0; t < turns; ++t, sf += 16, df += 16) {
    const __m256 a = _mm256_loadu_ps(sf);
    const __m256 b = _mm256_loadu_ps(sf + 8);
    _mm256_storeu_ps(df, a);
    _mm256_storeu_ps(df + 8, b);
  }
  return turns * 16;
}

}  // namespace ryx::arith::avx2
