// Per-instruction-set forms of the real float block kernel and the choice
// between them. Every form computes the same bits per output; the choice is
// made from the CPU at call time, below a cap that tests can lower.
#pragma once

namespace ryx::fir {

// Whether the AVX2 form may run (the CPU has it, below the dispatch cap).
bool useAvx2();

// Baseline SSE2 kernel: four-lane passes (sixteen outputs a pass where it
// can), returns the outputs written, a multiple of four.
int blockKernelRealSse2(const float* hFirst, int n, const float* x0, int xs, float* dst, int count);

namespace avx2 {
// Thirty-two outputs a pass; returns the outputs written, a multiple of 32.
int blockKernelReal(const float* hFirst, int n, const float* x0, int xs, float* dst, int count);
}  // namespace avx2

}  // namespace ryx::fir
