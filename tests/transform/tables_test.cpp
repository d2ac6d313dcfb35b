// Tables: bit reversal and twiddle routines against direct computations
// (bits reversed one by one, cosl/sinl in long double, the truncation and
// rounding rules written out), the reversal pair list against its defining
// rule, the engine tables against the twiddles they stand for, the cache
// and list rules, scratch slots, and the argument checks.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>
#include <vector>

#include "alloc_failure.h"
#include "check_cases.h"
#include "fft_reference.h"
#include "frame/thread_context.h"
#include "test_support.h"
#include "transform/fft_internal.h"

namespace {

using namespace ryxtest;

TEST(BitRev, ScalarAndTableAgainstBitByBitReversal) {
  ReportCapture capture;
  Random rng(3);
  for (int order = 0; order <= 31; ++order) {
    for (int t = 0; t < 20; ++t) {
      const std::uint32_t a = rng.bits();
      EXPECT_EQ(static_cast<std::uint32_t>(ryxBitRev(static_cast<int>(a), order)), reverseBits(a, order));
    }
  }
  EXPECT_TRUE(ryxBitRev(12345, 0) == 0 && ryxBitRev(1, 31) == 1 << 30);
  for (int order = 0; order <= 14; ++order) {
    const int n = 1 << order;
    std::vector<int> tbl(n + 1, -7);
    ryxCalcBitRevTbl(tbl.data(), order);
    for (int i = 0; i < n; ++i) ASSERT_EQ(tbl[i], static_cast<int>(reverseBits(i, order))) << order << " " << i;
    EXPECT_EQ(tbl[n], -7);
    int* cached = ryxGetBitRevTbl(order);
    ASSERT_NE(cached, nullptr);
    EXPECT_EQ(ryxGetBitRevTbl(order), cached);
    EXPECT_EQ(std::memcmp(cached, tbl.data(), sizeof(int) * n), 0);
  }
  ryxFreeBitRevTbls();
  for (int o = 0; o < 32; ++o) EXPECT_EQ(ryxGetThreadContext()->bitRevTbl[o], nullptr);
  // A negative stored status makes the scalar and Get routines return 0 or
  // null without doing anything, until it is cleared.
  ryxSetErrStatus(RYX_StsBadArg);
  EXPECT_TRUE(ryxGetBitRevTbl(5) == nullptr && ryxGetThreadContext()->bitRevTbl[5] == nullptr);
  EXPECT_EQ(ryxBitRev(1, 3), 0);
  EXPECT_TRUE(ryxcGetFftTwdTbl(3) == nullptr && ryxzGetDftTwdTbl(7) == nullptr);
  ryxSetErrStatus(RYX_StsOk);
  EXPECT_TRUE(ryxGetBitRevTbl(5) != nullptr && ryxBitRev(1, 3) == 4);
  EXPECT_TRUE(capture.reports().empty());
}

// Permutation of every sample type by both routines against the written-out
// reversal, misaligned; guards around the arrays stay intact; the source of
// the copying form is untouched.
template <class T>
void checkPermutations(void (*rev1)(T*, int), void (*rev2)(const T*, T*, int)) {
  Random rng(sizeof(T));
  for (int order : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 16, 17}) {
    const int n = 1 << order;
    std::vector<unsigned char> bytes(sizeof(T) * n);
    for (auto& b : bytes) b = static_cast<unsigned char>(rng.bits());
    const std::vector<unsigned char> keep = bytes;
    const T* src = reinterpret_cast<const T*>(bytes.data());
    std::vector<T> want(n);
    for (int i = 0; i < n; ++i) want[reverseBits(i, order)] = src[i];
    Guarded<T> inPlace(n, alignof(T)), out(n, 8);
    std::memcpy(inPlace.data(), src, sizeof(T) * n);
    rev1(inPlace.data(), order);
    rev2(src, out.data(), order);
    EXPECT_TRUE(sameBits(inPlace.data(), want.data(), n) && inPlace.intact()) << "order " << order;
    EXPECT_TRUE(sameBits(out.data(), want.data(), n) && out.intact()) << "order " << order;
    EXPECT_TRUE(bytes == keep);
  }
}

TEST(BitRev, PermutationsOfEverySampleType) {
  ReportCapture capture;
  checkPermutations<short>(ryxwbBitRev1, ryxwbBitRev2);
  checkPermutations<WCplx>(ryxvbBitRev1, ryxvbBitRev2);
  checkPermutations<float>(ryxsbBitRev1, ryxsbBitRev2);
  checkPermutations<SCplx>(ryxcbBitRev1, ryxcbBitRev2);
  checkPermutations<double>(ryxdbBitRev1, ryxdbBitRev2);
  checkPermutations<DCplx>(ryxzbBitRev1, ryxzbBitRev2);
  EXPECT_TRUE(capture.reports().empty());
}

// The pair list: pairs (4i, 4j) with j the reversal of i over order-2 bits
// and i < j, then a zero, then the self-reversed parts in descending order,
// then a zero at word Q; each middle part appears once.
TEST(RevPairs, ListFollowsItsDefiningRule) {
  for (int order = 2; order <= 16; ++order) {
    const std::uint32_t q = (1u << order) / 4;
    const std::uint32_t* list = ownGetRevPairs(order);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(ownGetRevPairs(order), list);
    std::set<std::uint32_t> seen = {0};
    std::uint32_t w = 0;
    for (; list[w] != 0; w += 2) {
      const std::uint32_t i = list[w] / 4, j = list[w + 1] / 4;
      EXPECT_TRUE(list[w] % 4 == 0 && list[w + 1] % 4 == 0 && i < j && j == reverseBits(i, order - 2)) << w;
      seen.insert({i, j});
    }
    for (std::uint32_t prev = q, i; ++w < q; prev = i) {
      i = list[w] / 4;
      EXPECT_TRUE(list[w] % 4 == 0 && reverseBits(i, order - 2) == i && i < prev) << w;
      seen.insert(i);
    }
    EXPECT_EQ(list[q], 0u);
    EXPECT_EQ(seen.size(), q) << "order " << order;
  }
  EXPECT_TRUE(ownGetRevPairs(2)[0] == 0 && ownGetRevPairs(2)[1] == 0);
  EXPECT_NE(ownGetRevPairs(0), nullptr);
  EXPECT_EQ(ownGetRevPairs(32), nullptr);
  ownFreeRevPairs(5);
  EXPECT_EQ(ryxGetThreadContext()->bitRevPairs[5], nullptr);
}

// |got - exact| within half an ulp of the element type plus the double
// rounding of the angle.
template <class T>
void expectNear(T got, long double exact) {
  EXPECT_LE(fabsl(got - exact), std::numeric_limits<T>::epsilon() * 0.5L * fabsl(exact) + 1e-15L) << exact;
}

// Float and double tables rounded from the exact root, the Q14 one within
// `q14` of 16384 times it (the FFT table truncates toward zero, checked
// separately).
void expectRoots(const SCplx* c, const DCplx* z, const WCplx* v, int n, long double q14) {
  for (int k = 0; k < n; ++k) {
    const LCplx w = unitRoot(k, n, -1);
    expectNear(c[k].re, w.real());
    expectNear(c[k].im, w.imag());
    expectNear(z[k].re, w.real());
    expectNear(z[k].im, w.imag());
    EXPECT_LT(fabsl(v[k].re - 16384 * w.real()), q14);
    EXPECT_LT(fabsl(v[k].im - 16384 * w.imag()), q14);
  }
}

TEST(Twiddles, FftAndDftTablesAgainstDirectValues) {
  ReportCapture capture;
  // Computed into the caller's arrays, then fetched bitwise the same from
  // the thread's cache (the same pointer each time); `arg` is the order or
  // the length.
  auto family = [](int arg, int n, auto calcC, auto calcZ, auto calcV, auto getC, auto getZ, auto getV) {
    std::vector<SCplx> c(n);
    std::vector<DCplx> z(n);
    std::vector<WCplx> v(n);
    calcC(c.data(), arg);
    calcZ(z.data(), arg);
    calcV(v.data(), arg);
    expectRoots(c.data(), z.data(), v.data(), n, 1.0L + 1e-9L);
    EXPECT_TRUE(getC(arg) != nullptr && getC(arg) == getC(arg) && getZ(arg) != nullptr && getV(arg) != nullptr);
    EXPECT_TRUE(sameBits(getC(arg), c.data(), n) && sameBits(getZ(arg), z.data(), n) && sameBits(getV(arg), v.data(), n));
    EXPECT_TRUE(c[0].re == 1.0f && z[0].re == 1.0 && v[0].re == 16384 && v[0].im == 0);
    EXPECT_TRUE(std::signbit(c[0].im) && std::signbit(z[0].im));
    return v;
  };
  for (int order = 0; order <= 12; ++order) {
    const int n = 1 << order;
    const std::vector<WCplx> v = family(order, n, ryxcCalcFftTwdTbl, ryxzCalcFftTwdTbl, ryxvCalcFftTwdTbl,
                                        ryxcGetFftTwdTbl, ryxzGetFftTwdTbl, ryxvGetFftTwdTbl);
    // Truncation toward zero of 16384 cos and -16384 sin.
    for (int k = 0; k < n; ++k) {
      const LCplx w = unitRoot(k, n, -1);
      for (auto [got, exact] : {std::pair{v[k].re, 16384 * w.real()}, std::pair{v[k].im, 16384 * w.imag()}}) {
        EXPECT_LE(fabsl(got), fabsl(exact) + 1e-9L);
        EXPECT_TRUE(got == 0 || (got > 0) == (exact > 0));
      }
    }
  }
  for (int len : {1, 3, 5, 12, 100, 170}) {
    family(len, len, ryxcCalcDftTwdTbl, ryxzCalcDftTwdTbl, ryxvCalcDftTwdTbl, ryxcGetDftTwdTbl, ryxzGetDftTwdTbl,
           ryxvGetDftTwdTbl);
  }
  ryxcFreeTwdTbls();
  ryxzFreeTwdTbls();
  ryxvFreeTwdTbls();
  RyxThreadContext* ctx = ryxGetThreadContext();
  EXPECT_TRUE(ctx->cDftTblCount == 0 && ctx->zDftTblCount == 0 && ctx->vDftTblCount == 0);
  for (int o = 0; o < 32; ++o) EXPECT_EQ(ctx->cFftTwd[o], nullptr);
  EXPECT_TRUE(capture.reports().empty());
}

// The DFT list holds 32 lengths: the 33rd distinct one fails with "Full
// Table", a length already listed is still found.
TEST(Twiddles, DftListCapacity) {
  ReportCapture capture;
  ryxcFreeTwdTbls();
  std::vector<SCplx*> tables;
  for (int len = 1; len <= 32; ++len) tables.push_back(ryxcGetDftTwdTbl(len));
  for (SCplx* t : tables) EXPECT_NE(t, nullptr);
  EXPECT_EQ(ryxGetThreadContext()->cDftTblCount, 32);
  EXPECT_TRUE(capture.reports().empty());
  EXPECT_EQ(ryxcGetDftTwdTbl(33), nullptr);
  ASSERT_EQ(capture.reports().size(), 1u);
  const Report& r = capture.reports()[0];
  EXPECT_TRUE(r.status == RYX_StsNoMem && r.context == "Full Table" && r.funcName == "ryxcGetDftTwdTbl" &&
              r.file == "ryxtwd");
  capture.clear();
  EXPECT_EQ(ryxcGetDftTwdTbl(17), tables[16]);
  ryxcFreeTwdTbls();
  EXPECT_EQ(ryxGetThreadContext()->cDftTblCount, 0);
}

// Argument checks of the table and reversal routines, in order, with their
// texts; nothing written.
TEST(Tables, ArgumentChecks) {
  int tbl[4] = {9, 9, 9, 9};
  SCplx c[4];
  short w[4];
  runCheckCases(
      {
          RYX_CHECK_CASE("ryxmisc", "order<0", ryxBitRev(1, -1)),
          RYX_CHECK_CASE("ryxmisc", "order>31", ryxBitRev(1, 32)),
          RYX_CHECK_CASE("ryxmisc", "order<0", ryxCalcBitRevTbl(tbl, -3)),
          RYX_CHECK_CASE("ryxmisc", "order>31", ryxCalcBitRevTbl(nullptr, 40)),
          RYX_CHECK_CASE("ryxmisc", "tbl==0", ryxCalcBitRevTbl(nullptr, 2)),
          RYX_CHECK_CASE("ryxmisc", "order>31", ryxGetBitRevTbl(32)),
          RYX_CHECK_CASE("ryxmisc", "vec==0", ryxsbBitRev1(nullptr, 3)),
          RYX_CHECK_CASE("ryxmisc", "order<0", ryxzbBitRev1(nullptr, -1)),
          RYX_CHECK_CASE("ryxmisc", "src==0", ryxcbBitRev2(nullptr, c, 2)),
          RYX_CHECK_CASE("ryxmisc", "dst==0", ryxwbBitRev2(w, nullptr, 2)),
          RYX_CHECK_CASE("ryxmisc", "order>31", ryxvbBitRev2(nullptr, nullptr, 32)),
          RYX_CHECK_CASE("ryxtwd", "tbl==0", ryxcCalcFftTwdTbl(nullptr, 3)),
          RYX_CHECK_CASE("ryxtwd", "order<0", ryxzCalcFftTwdTbl(nullptr, -1)),
          RYX_CHECK_CASE("ryxtwd", "order>31", ryxvCalcFftTwdTbl(nullptr, 99)),
          RYX_CHECK_CASE("ryxtwd", "order<0", ryxcGetFftTwdTbl(-2)),
          RYX_CHECK_CASE("ryxtwd", "order>31", ryxvGetFftTwdTbl(32)),
          RYX_CHECK_CASE("ryxtwd", "length<=0", ryxzCalcDftTwdTbl(nullptr, 0)),
          RYX_CHECK_CASE("ryxtwd", "tbl==0", ryxvCalcDftTwdTbl(nullptr, 5)),
          RYX_CHECK_CASE("ryxtwd", "length<=0", ryxcCalcDftTwdTbl(nullptr, -5)),
          RYX_CHECK_CASE("ryxtwd", "length<=0", ryxzGetDftTwdTbl(0)),
      },
      [&] { return tbl[0] == 9 && tbl[1] == 9 && tbl[2] == 9 && tbl[3] == 9; });
}

// Engine tables against the twiddles they stand for. The quarter-wave
// table ends at exactly 1; each radix-table group holds the six rows
// re/im of W_M^k, W_M^2k, W_M^3k for G consecutive k, stage after stage.
template <class T, int G>
void checkRadixTable(int order, const T* g) {
  for (int s = 4 + (order & 1); s <= order; s += 2) {
    const std::uint64_t m = std::uint64_t{1} << s;
    for (std::uint64_t k0 = 0; k0 < m / 4; k0 += G, g += 6 * G) {
      for (int l = 0; l < G; ++l) {
        for (int p = 1; p <= 3; ++p) {
          const LCplx w = unitRoot((k0 + l) * p, m, -1);
          expectNear(g[(2 * p - 2) * G + l], w.real());
          expectNear(g[(2 * p - 1) * G + l], w.imag());
        }
      }
    }
  }
}

// Entries [first, first + count) of a block table, every step-th, against
// W_m^j (two values per entry).
template <class T>
void checkBlockPart(const T* b, std::uint64_t first, std::uint64_t m, std::uint64_t count, std::uint64_t step) {
  for (std::uint64_t j = 0; j < count; j += step) {
    const LCplx w = unitRoot(j, m, -1);
    expectNear(b[2 * (first + j)], w.real());
    expectNear(b[2 * (first + j) + 1], w.imag());
  }
}

TEST(EngineTables, SineQuarterRadixAndBlockTables) {
  for (int order = 0; order <= 16; ++order) {
    float* s = ownsSineQuarter(order);
    double* d = owndSineQuarter(order);
    ASSERT_TRUE(s != nullptr && d != nullptr);
    const std::uint64_t q = (std::uint64_t{1} << order) / 4;
    for (std::uint64_t j = 0; j <= q; ++j) {
      const LCplx w = unitRoot(j, std::uint64_t{1} << order, 1);
      expectNear(s[j], w.imag());
      expectNear(d[j], w.imag());
    }
    EXPECT_TRUE(order < 2 || (s[q] == 1.0f && d[q] == 1.0));
    ryxFree(s);
    ryxFree(d);
  }
  for (int order = 0; order <= 14; ++order) {
    const float* t = ownsGetFftRadixTwd(order);
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(ownsGetFftRadixTwd(order), t);
    checkRadixTable<float, 4>(order, t);
    if (order <= 12) checkRadixTable<double, 2>(order, owndGetFftRadixTwd(order));
  }
  // Above the kernel limit: the block table (W_N^k for k < N/4, then W_C^j
  // for j < C/4 when N exceeds C), with the limit order's radix table.
  RyxThreadContext* ctx = ryxGetThreadContext();
  for (int order : {15, 16}) {
    const float* b = ownsGetFftRadixTwd(order);
    ASSERT_NE(b, nullptr);
    EXPECT_TRUE(b == ctx->sFftBlockTwd[order] && ctx->sFftRadixTwd[order] == nullptr);
    EXPECT_NE(ctx->sFftRadixTwd[14], nullptr);
    const std::uint64_t n = std::uint64_t{1} << order;
    checkBlockPart(b, 0, n, n / 4, 37);
    if (n > 32768) checkBlockPart(b, n / 4, 32768, 8192, 11);
  }
  const double* db = owndGetFftRadixTwd(14);
  ASSERT_NE(db, nullptr);
  checkBlockPart(db, 4096, 8192, 2048, 7);
  ownsFreeFftRadixTwd(16);
  EXPECT_TRUE(ctx->sFftBlockTwd[16] == nullptr && ctx->sFftRadixTwd[14] == nullptr);
  EXPECT_NE(ctx->sFftBlockTwd[15], nullptr);
  ownsFreeFftTbls();
  owndFreeFftTbls();
  for (int o = 0; o < 32; ++o) {
    EXPECT_TRUE(ctx->sFftBlockTwd[o] == nullptr && ctx->dFftRadixTwd[o] == nullptr);
    EXPECT_EQ(ctx->bitRevPairs[o], nullptr);
  }
}

// Recombination tables: A_k, B_k = cos/2 and (1 - sin)/2 (real) or cos and
// -sin (CCS) of 2*pi*k/N for 0 < k < N/4; float above N = 8 in groups of
// four A then four B (k = N/4 included).
template <class T, bool Real>
void checkRecombination(int order, const T* tbl) {
  const std::uint64_t n = std::uint64_t{1} << order;
  const bool grouped = sizeof(T) == 4 && n > 8;
  for (std::uint64_t k = 1; grouped ? k <= n / 4 : k < n / 4; ++k) {
    const long double c = cosl(2 * kPiL * k / n), s = sinl(2 * kPiL * k / n);
    const T a = grouped ? tbl[8 * ((k - 1) / 4) + (k - 1) % 4] : tbl[2 * k];
    const T b = grouped ? tbl[8 * ((k - 1) / 4) + 4 + (k - 1) % 4] : tbl[2 * k + 1];
    EXPECT_LE(fabsl(a - (Real ? 0.5L * c : c)), 2 * std::numeric_limits<T>::epsilon()) << order << " " << k;
    EXPECT_LE(fabsl(b - (Real ? 0.5L - 0.5L * s : -s)), 2 * std::numeric_limits<T>::epsilon()) << order << " " << k;
  }
}

TEST(EngineTables, RecombinationAndQ14Tables) {
  for (int order = 2; order <= 14; ++order) {
    checkRecombination<float, true>(order, ownsGetRealTwd(order));
    checkRecombination<float, false>(order, ownsGetCcsTwd(order));
    checkRecombination<double, true>(order, owndGetRealTwd(order));
    checkRecombination<double, false>(order, owndGetCcsTwd(order));
  }
  for (int order = 0; order <= 10; ++order) {
    const short* w = ownwGetFftTwd(order);
    ASSERT_NE(w, nullptr);
    const int n = 1 << order;
    for (int k = 0; k < n; ++k) {
      // Rounded half away from zero, unlike the truncated public table.
      const long double c = 16384 * cosl(2 * kPiL * k / n), s = 16384 * sinl(2 * kPiL * k / n);
      EXPECT_LE(fabsl(w[4 * k] - c), 0.5L + 1e-9L);
      EXPECT_LE(fabsl(w[4 * k + 1] - s), 0.5L + 1e-9L);
      EXPECT_TRUE(w[4 * k + 2] == -w[4 * k + 1] && w[4 * k + 3] == w[4 * k]) << k;
    }
  }
  const short* w0 = ownwGetFftTwd(0);
  EXPECT_TRUE(w0[0] == 16384 && w0[1] == 0 && w0[3] == 16384);
  ownwFreeFftTbls();
  EXPECT_EQ(ryxGetThreadContext()->wRealTwd[0], nullptr);
}

TEST(Scratch, SlotsGrowAndKeepTheirBuffer) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  ownFreeScratchZ();
  SCplx* a = ownGetScratchZ(100, 1);
  ASSERT_NE(a, nullptr);
  a[5] = {1.5f, 2.5f};
  EXPECT_EQ(ownGetScratchZ(50, 1), a);
  EXPECT_TRUE(a[5].re == 1.5f && ctx->scratchZLen[1] == 100);
  ASSERT_NE(ownGetScratchZ(1000, 1), nullptr);
  EXPECT_EQ(ctx->scratchZLen[1], 1000);
  EXPECT_TRUE(ownGetScratchZ(0, 1) == nullptr && ownGetScratchZ(10, 4) == nullptr && ownGetScratchZ(10, -1) == nullptr);
  EXPECT_TRUE(ownGetScratchI(10, 1) != nullptr && ownGetScratchC(10, 1) != nullptr);
  ownFreeScratchZSlot(1);
  EXPECT_TRUE(ctx->scratchZ[1] == nullptr && ctx->scratchZLen[1] == 0);
  ownFreeScratchZSlot(7);
  ownFreeScratchI();
  ownFreeScratchC();
  EXPECT_EQ(ctx->scratchI[1], nullptr);
  // A failed growth leaves length and pointer at zero.
  ASSERT_NE(ownGetScratchZ(10, 2), nullptr);
  {
    FailAllocation fail(1);
    EXPECT_EQ(ownGetScratchZ(1000, 2), nullptr);
    EXPECT_EQ(FailAllocation::refused(), 1);
  }
  EXPECT_TRUE(ctx->scratchZ[2] == nullptr && ctx->scratchZLen[2] == 0);
  // Sizes that do not fit 32-bit arithmetic are refused without asking.
  EXPECT_EQ(ownGetScratchZ(0x7FFFFFFF, 2), nullptr);
}

}  // namespace
