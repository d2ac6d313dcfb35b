// Run-time choice of instruction set for kernels with wider forms. Every
// form of a kernel gives bit-identical results, so the choice changes speed
// only. The CPU is asked at each call; a cap set by tests lowers the choice
// so that each form can be forced and compared.
#pragma once

namespace ryx::cpu {

enum class Isa { Sse2 = 0, Avx2 = 1, Avx512 = 2 };

// True when kernels may use `isa`: the CPU has it and the cap allows it.
bool allows(Isa isa);

// Highest instruction set kernels may use (default Avx512, i.e. whatever
// the CPU has). For tests that force each kernel form in turn.
void setCap(Isa cap);
Isa cap();

}  // namespace ryx::cpu
