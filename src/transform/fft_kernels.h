// Kernel sets per instruction set and the run-time choice among them.
// Every set computes bit-identical results; wider sets only run faster.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/cpu_dispatch.h"
#include "ryxcore.h"

namespace ryx::fft {

struct KernelSet {
  void (*sFwd)(SCplx*, std::size_t, const float*, SCplx*);
  void (*sInv)(SCplx*, std::size_t, const float*, SCplx*);
  void (*dFwd)(DCplx*, std::size_t, const double*, DCplx*);
  void (*dInv)(DCplx*, std::size_t, const double*, DCplx*);
  void (*sSplitFwd)(float*, float*, std::size_t, const float*, float*);
  void (*sSplitInv)(float*, float*, std::size_t, const float*, float*);
  void (*dSplitFwd)(double*, double*, std::size_t, const double*, double*);
  void (*dSplitInv)(double*, double*, std::size_t, const double*, double*);
  // Reversal of 16-byte elements by the pair list (order 3 and up), in
  // place when src equals dst; null where the portable walk is as good.
  void (*permute16)(const unsigned char*, unsigned char*, int, const std::uint32_t*);
};

using Isa = ryx::cpu::Isa;

// The set used by the engine for this call: the widest the processor has
// below the frame's dispatch cap (tests lower the cap to force each set).
const KernelSet& kernels();
// The set of one instruction set whatever the cap, or null when this build
// or this processor lacks it (tests compare the sets directly).
const KernelSet* kernelsFor(Isa isa);

}  // namespace ryx::fft

namespace ryx::sse2 {
extern const ryx::fft::KernelSet kKernels;
}
namespace ryx::avx2 {
extern const ryx::fft::KernelSet kKernels;
}
