// The processor's rounding state for the length of one conversion.
//
// The SSE control register gets the chosen rounding, every exception masked
// and denormal flushing (FTZ, DAZ) off, so that a denormal input still rounds
// up or down to 1 by the selected direction; the caller's register comes back
// whole at the end, flags included. With `x87` the x87 control word gets the
// same rounding with every exception masked, and its stale exception flags
// are cleared when it is set and when it is restored.
//
// The state is written by inline assembly with a memory clobber, so no load
// or store of the converted arrays is moved across it; the conversion itself
// runs in a function that is not inlined into the scope's owner.
#pragma once

#include <cstdint>

#include "convert/float_int_kernels.h"

namespace ryx::convert {

class RoundingScope {
 public:
  RoundingScope(Rounding r, bool x87) : x87_(x87) {
    asm volatile("stmxcsr %0" : "=m"(savedCsr_) : : "memory");
    const std::uint32_t rc = static_cast<std::uint32_t>(r);
    // Clear rounding (13-14), FTZ (15), DAZ (6) and the flags (0-5); mask all.
    std::uint32_t csr = (savedCsr_ & ~0xE07Fu) | 0x1F80u | (rc << 13);
    asm volatile("ldmxcsr %0" : : "m"(csr) : "memory");
    if (x87_) {
      asm volatile("fnstcw %0" : "=m"(savedCw_) : : "memory");
      std::uint16_t cw = static_cast<std::uint16_t>((savedCw_ & ~0x0C00u) | 0x003Fu | (rc << 10));
      asm volatile("fnclex\n\tfldcw %0" : : "m"(cw) : "memory");
    }
  }
  ~RoundingScope() {
    if (x87_) asm volatile("fnclex\n\tfldcw %0" : : "m"(savedCw_) : "memory");
    asm volatile("ldmxcsr %0" : : "m"(savedCsr_) : "memory");
  }
  RoundingScope(const RoundingScope&) = delete;
  RoundingScope& operator=(const RoundingScope&) = delete;

 private:
  bool x87_;
  std::uint32_t savedCsr_ = 0;
  std::uint16_t savedCw_ = 0;
};

}  // namespace ryx::convert
