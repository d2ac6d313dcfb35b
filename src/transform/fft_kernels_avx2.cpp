// The 256-bit kernels: the same kernels compiled for AVX2, with the radix-4
// passes and the last pass of the interleaved layout on whole blocks per
// register. Results are bit-identical to the 128-bit kernels (tested).
#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "transform/fft_kernels.h"

namespace ryx::avx2 {
#include "transform/fft_kernel_impl.h"

const ryx::fft::KernelSet kKernels = {
    &floatKernel<true>,       &floatKernel<false>,       &doubleKernel<true>,
    &doubleKernel<false>,     &floatSplitKernel<true>,   &floatSplitKernel<false>,
    &doubleSplitKernel<true>, &doubleSplitKernel<false>, &permutePairs16Wide,
};

}  // namespace ryx::avx2
