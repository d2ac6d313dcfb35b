// For the fuzzer build only: clang 14 lacks the builtin that the standard
// library's <source_location> needs, so the header declares nothing there.
// This stand-in gives the same interface from the older builtins; it is
// force-included by scripts/fuzz.sh and nowhere else.
#pragma once
#if defined(__clang__) && !__has_builtin(__builtin_source_location)
#include <cstdint>
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
