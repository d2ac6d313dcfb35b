#include "frame/cpu_dispatch.h"

#include <atomic>

namespace ryx::cpu {
namespace {
// The one dispatch setting: a ceiling that tests lower; it never changes a
// result, only which of the identical kernel forms runs.
std::atomic<int> g_cap{static_cast<int>(Isa::Avx512)};
}  // namespace

void setCap(Isa c) { g_cap.store(static_cast<int>(c), std::memory_order_relaxed); }

Isa cap() { return static_cast<Isa>(g_cap.load(std::memory_order_relaxed)); }

bool allows(Isa isa) {
  if (static_cast<int>(isa) > g_cap.load(std::memory_order_relaxed)) return false;
  switch (isa) {
    case Isa::Sse2: return true;
    case Isa::Avx2: return __builtin_cpu_supports("avx2");
    case Isa::Avx512:
      return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
             __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl");
  }
  return false;
}

}  // namespace ryx::cpu
