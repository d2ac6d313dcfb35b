// The 128-bit kernels: the baseline instantiation of the in-cache FFT
// kernels, and the named kernel entries of the engine.
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "transform/fft_kernels.h"

namespace ryx::sse2 {
#include "transform/fft_kernel_impl.h"

const ryx::fft::KernelSet kKernels = {
    &floatKernel<true>,       &floatKernel<false>,       &doubleKernel<true>,
    &doubleKernel<false>,     &floatSplitKernel<true>,   &floatSplitKernel<false>,
    &doubleSplitKernel<true>, &doubleSplitKernel<false>, nullptr,
};

}  // namespace ryx::sse2
