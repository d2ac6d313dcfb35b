// Internal interface of the transform family: the per-thread engine tables,
// the reversal pair lists, the grown scratch slots, the complex FFT engine
// and the real/CCS recombinations.
//
// Engine-layer `Get` operations never report: they yield the cached table,
// build and store it, or yield null (failed allocation, order outside 0..31,
// or a block whose size does not fit 32-bit arithmetic). The exported front
// ends turn a null into "No working Twd memory".
#pragma once

#include <cstdint>

#include "ryxcore.h"

// ---- Constants of the engine ---------------------------------------------

namespace ryx::fft {

constexpr int kFloatLanes = 4;         // complex columns per 128-bit register, float
constexpr int kDoubleLanes = 2;        // the same, double
constexpr int kFloatKernelOrder = 14;  // largest order one float kernel call runs
constexpr int kDoubleKernelOrder = 12;
constexpr std::uint32_t kFloatBlock = 1u << kFloatKernelOrder;    // B, float
constexpr std::uint32_t kDoubleBlock = 1u << kDoubleKernelOrder;  // B, double
constexpr std::uint32_t kFloatCombine = 32768;                    // C, float
constexpr std::uint32_t kDoubleCombine = 8192;                    // C, double
constexpr int kFloatScratchKept = 16384;                          // 8-byte elements of scratch slot 3
constexpr int kDoubleScratchKept = 8192;
constexpr int kEngineSlot = 3;

// Largest block any table or scratch allocation of this family asks for:
// beyond it the 32-bit size arithmetic of the allocator would wrap, so the
// request is refused instead of running into a too-small block.
constexpr std::uint64_t kMaxBlockBytes = 0xFFFFFFFFull - 256;

// Allocates `count` elements of `elemSize` bytes (32-byte aligned) or
// yields null when the size is refused or memory is short. Never reports.
void* blockAlloc(std::uint64_t count, std::uint32_t elemSize);

// True when `p` is on a 16-byte boundary.
inline bool aligned16(const void* p) { return (reinterpret_cast<std::uintptr_t>(p) & 15u) == 0; }

// Multiplies `count` values by `factor` through the exported block routine,
// in pieces that fit its signed length.
void scaleFloats(float* data, std::uint64_t count, float factor);
void scaleDoubles(double* data, std::uint64_t count, double factor);

}  // namespace ryx::fft

// ---- Reversal pair lists and permutations --------------------------------

std::uint32_t* ownGetRevPairs(int order);
void ownFreeRevPairs(int order);

namespace ryx::fft {

// In-place permutation of 2^order elements of `elemBytes` bytes (2, 4, 8
// or 16) driven by the pair list; does nothing below four elements.
void permuteInPlace(void* data, int order, int elemBytes, const std::uint32_t* pairs);
// Copying permutation: each element of `dst` written once.
void permuteCopy(const void* src, void* dst, int order, int elemBytes, const std::uint32_t* pairs);

}  // namespace ryx::fft

// ---- Engine tables ---------------------------------------------------------

float* ownsSineQuarter(int order);
double* owndSineQuarter(int order);

float* ownsGetFftRadixTwd(int order);
double* owndGetFftRadixTwd(int order);
void ownsFreeFftRadixTwd(int order);
void owndFreeFftRadixTwd(int order);

float* ownsGetRealTwd(int order);
double* owndGetRealTwd(int order);
float* ownsGetCcsTwd(int order);
double* owndGetCcsTwd(int order);
void ownsFreeRealTwd(int order);
void owndFreeRealTwd(int order);
void ownsFreeCcsTwd(int order);
void owndFreeCcsTwd(int order);

short* ownwGetFftTwd(int order);

void ownsFreeFftTbls();
void owndFreeFftTbls();
void ownwFreeFftTbls();

// ---- Grown scratch ---------------------------------------------------------

int* ownGetScratchI(int count, int slot);
SCplx* ownGetScratchC(int count, int slot);
SCplx* ownGetScratchZ(int count, int slot);
void ownFreeScratchI();
void ownFreeScratchC();
void ownFreeScratchZ();
void ownFreeScratchZSlot(int slot);

// ---- Complex engine --------------------------------------------------------

// Natural-order unscaled transform in place of bit-reversed input; sign 1
// forward, -1 inverse; `tbl` is what ownsGetFftRadixTwd(order) yields.
void ownsFftCore(SCplx* samps, std::uint32_t n, int sign, const float* tbl);
void owndFftCore(DCplx* samps, std::uint32_t n, int sign, const double* tbl);
void ownsFftSplitCore(float* re, float* im, std::uint32_t n, int sign, const float* tbl);
void owndFftSplitCore(double* re, double* im, std::uint32_t n, int sign, const double* tbl);

// In-cache kernels, n from 4 up to the block size (one per direction).
// `work` is null for 16-byte aligned data, else scratch of n complex values.
void ownsFftKernelFwd(SCplx* samps, std::uint32_t n, const float* tbl, SCplx* work);
void ownsFftKernelInv(SCplx* samps, std::uint32_t n, const float* tbl, SCplx* work);
void owndFftKernelFwd(DCplx* samps, std::uint32_t n, const double* tbl, DCplx* work);
void owndFftKernelInv(DCplx* samps, std::uint32_t n, const double* tbl, DCplx* work);
void ownsFftSplitKernelFwd(float* re, float* im, std::uint32_t n, const float* tbl, float* work);
void ownsFftSplitKernelInv(float* re, float* im, std::uint32_t n, const float* tbl, float* work);
void owndFftSplitKernelFwd(double* re, double* im, std::uint32_t n, const double* tbl, double* work);
void owndFftSplitKernelInv(double* re, double* im, std::uint32_t n, const double* tbl, double* work);

// Radix-2 combining passes in extended precision.
void ownsFftCombine(SCplx* data, std::uint32_t n, std::uint32_t len0, const float* tbl, std::uint32_t fullN, int sign,
                    int stripeFloats);
void owndFftCombine(DCplx* data, std::uint32_t n, std::uint32_t len0, const double* tbl, std::uint32_t fullN, int sign,
                    int stripeFloats);
void ownsFftSplitCombine(float* re, float* im, std::uint32_t n, std::uint32_t len0, const float* tbl,
                         std::uint32_t fullN, int sign, int stripe);
void owndFftSplitCombine(double* re, double* im, std::uint32_t n, std::uint32_t len0, const double* tbl,
                         std::uint32_t fullN, int sign, int stripe);

// ---- Real / CCS recombination ----------------------------------------------

void ownsRealRecombine(float* data, std::uint32_t m, int sign, const float* tbl);
void owndRealRecombine(double* data, std::uint32_t m, int sign, const double* tbl);
void ownsCcsRecombine(const float* src, float* dst, std::uint32_t m, int sign, const float* tbl);
void owndCcsRecombine(const double* src, double* dst, std::uint32_t m, int sign, const double* tbl);
