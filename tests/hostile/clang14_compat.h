// For the fuzzer build only, force-included by scripts/fuzz.sh: what the
// library takes from GCC that clang 14 lacks.
//  - <source_location> needs a builtin clang 14 does not have, so the
//    standard header declares nothing there; this stand-in gives the same
//    interface from the older builtins.
//  - GCC's __builtin_shuffle (vector permutation by a mask vector) is
//    given element by element; the results are the same.
#pragma once
#if defined(__clang__)
#include <cstdint>

#if !__has_builtin(__builtin_source_location)
namespace std {
struct source_location {
  static constexpr source_location current(const char* file = __builtin_FILE(),
                                           const char* function = __builtin_FUNCTION(),
                                           std::uint_least32_t line = __builtin_LINE()) noexcept {
    source_location s;
    s.file_ = file;
    s.function_ = function;
    s.line_ = line;
    return s;
  }
  constexpr std::uint_least32_t line() const noexcept { return line_; }
  constexpr std::uint_least32_t column() const noexcept { return 0; }
  constexpr const char* file_name() const noexcept { return file_; }
  constexpr const char* function_name() const noexcept { return function_; }

 private:
  const char* file_ = "";
  const char* function_ = "";
  std::uint_least32_t line_ = 0;
};
}  // namespace std
#endif

template <class V, class M>
inline V __builtin_shuffle(V a, V b, M mask) {
  constexpr int n = sizeof(V) / sizeof(a[0]);
  V r = a;
  for (int i = 0; i < n; ++i) {
    const int k = static_cast<int>(mask[i]) & (2 * n - 1);
    r[i] = k < n ? a[k] : b[k - n];
  }
  return r;
}
template <class V, class M>
inline V __builtin_shuffle(V a, M mask) {
  return __builtin_shuffle(a, a, mask);
}
#endif
