// Front-end behaviour of the transforms: argument checks in their order
// with their exact texts and samples left untouched, RYX_Init without
// samples, RYX_Release of any order, the refusal of orders whose sizes do
// not fit and the out-of-memory path (purge, report, thread still usable),
// ignored flag bits, the two-signal status, and per-thread table caches.
#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

#include "alloc_failure.h"
#include "check_cases.h"
#include "fft_reference.h"
#include "frame/thread_context.h"
#include "test_support.h"
#include "transform/fft_internal.h"

namespace {

using namespace ryxtest;

#define CASE RYX_CHECK_CASE

TEST(FftChecks, ReportInOrder) {
  struct {
    SCplx c[16];
    DCplx z[16];
    float f[34];
    double d[34];
  } buf, keep;
  std::memset(&buf, 0x5A, sizeof buf);
  keep = buf;
  SCplx* cp = buf.c;
  DCplx* zp = buf.z;
  float* fp = buf.f;
  double* dp = buf.d;
  const int fwd = RYX_Forward;
  runCheckCases(
      {
          CASE("ryxffts", "order<0", ryxcFft(cp, -1, fwd)),
          CASE("ryxffts", "order>31", ryxcFft(cp, 32, fwd)),
          CASE("ryxffts", "samps==0", ryxcFft(nullptr, 4, fwd)),
          CASE("ryxffts", "(flags & 1) && (flags & 2)", ryxcFft(cp, 4, fwd | RYX_Inverse)),
          CASE("ryxffts", "(flags & 1)==0 && (flags & 2)==0", ryxcFft(cp, 4, RYX_KeepScale)),
          CASE("ryxffts", "(flags & 64) && (flags & 128)", ryxcFft(cp, 4, fwd | RYX_InReversed | RYX_OutReversed)),
          CASE("ryxffts", "(flags & 64) && (flags & 32)", ryxcFft(cp, 4, fwd | RYX_InReversed | RYX_NaturalOrder)),
          CASE("ryxffts", "(flags & 32) && (flags & 128)", ryxcFft(cp, 4, fwd | RYX_NaturalOrder | RYX_OutReversed)),
          // Null checks come before the flag checks; order 0 is checked too.
          CASE("ryxfftd", "samps==0", ryxzFft(nullptr, 0, fwd | RYX_Inverse)),
          CASE("ryxfftd", "(flags & 1)==0 && (flags & 2)==0", ryxzFft(zp, 0, 0)),
          CASE("ryxfftd", "order>31", ryxzFft(zp, 33, 0)),
          CASE("ryxffts", "inSamps==0", ryxcFftNip(nullptr, nullptr, 4, fwd)),
          CASE("ryxffts", "outSamps==0", ryxcFftNip(cp, nullptr, 4, fwd)),
          CASE("ryxfftd", "(flags & 1) && (flags & 2)", ryxzFftNip(zp, zp + 8, 3, RYX_Inverse | fwd)),
          CASE("ryxffts", "reSamps==0", ryxcrFft(nullptr, fp, 4, fwd)),
          CASE("ryxffts", "imSamps==0", ryxcrFft(fp, nullptr, 4, fwd)),
          CASE("ryxfftd", "order<0", ryxzrFft(dp, dp + 8, -5, fwd)),
          CASE("ryxfftd", "(flags & 64) && (flags & 128)",
               ryxzrFft(dp, dp + 8, 3, RYX_Inverse | RYX_OutReversed | RYX_InReversed)),
          CASE("ryxffts", "reInSamps==0", ryxcrFftNip(nullptr, fp, fp, fp, 2, fwd)),
          CASE("ryxffts", "imInSamps==0", ryxcrFftNip(fp, nullptr, fp, fp, 2, fwd)),
          CASE("ryxffts", "reOutSamps==0", ryxcrFftNip(fp, fp, nullptr, fp, 2, fwd)),
          CASE("ryxffts", "imOutSamps==0", ryxcrFftNip(fp, fp, fp + 4, nullptr, 2, fwd)),
          CASE("ryxfftd", "reOutSamps==0", ryxzrFftNip(dp, dp + 4, nullptr, nullptr, 2, fwd)),
          // Real forms: the format checks follow the direction checks.
          CASE("ryxffts", "order<0", ryxsRealFftl(fp, -1, fwd | RYX_RCPackOut)),
          CASE("ryxffts", "samps==0", ryxsRealFftl(nullptr, 4, fwd | RYX_RCPackOut)),
          CASE("ryxffts", "(flags & 1)==0 && (flags & 2)==0", ryxsRealFftl(fp, 4, RYX_RCPackOut)),
          CASE("ryxffts", "(flags & 256) && (flags & 512)", ryxsRealFftl(fp, 4, fwd | RYX_RCPackOut | RYX_RCPermOut)),
          CASE("ryxffts", "(flags & 256)==0 && (flags & 512)==0", ryxsRealFftl(fp, 0, fwd)),
          CASE("ryxfftd", "outSamps==0", ryxdRealFftlNip(dp, nullptr, 3, fwd | RYX_RCPermOut)),
          CASE("ryxfftd", "(flags & 1024) && (flags & 4096)",
               ryxdCcsFftl(dp, 3, RYX_Inverse | RYX_RCPackIn | RYX_RCPermIn)),
          CASE("ryxfftd", "(flags & 1024)==0 && (flags & 4096)==0", ryxdCcsFftl(dp, 1, RYX_Inverse | RYX_RCPackOut)),
          CASE("ryxffts", "inSamps==0", ryxsCcsFftlNip(nullptr, fp, 3, RYX_Inverse | RYX_RCPackIn)),
          CASE("ryxffts", "order>31", ryxsRealFft(fp, 32, fwd)),
          CASE("ryxfftd", "(flags & 1) && (flags & 2)", ryxdRealFft(dp, 4, fwd | RYX_Inverse)),
          CASE("ryxffts", "outSamps==0", ryxsRealFftNip(fp, nullptr, 4, fwd)),
          CASE("ryxfftd", "samps==0", ryxdCcsFft(nullptr, 4, fwd)),
          CASE("ryxffts", "(flags & 1)==0 && (flags & 2)==0", ryxsCcsFftNip(fp, fp + 16, 4, 0)),
          CASE("ryxffts", "order<0", ryxsMpyRCPack2(fp, fp, -1)),
          CASE("ryxfftd", "src==0", ryxdMpyRCPack2(nullptr, dp, 3)),
          CASE("ryxffts", "dst==0", ryxsMpyRCPerm2(fp, nullptr, 3)),
          CASE("ryxfftd", "order>31", ryxdMpyRCPerm2(dp, dp, 32)),
          CASE("ryxffts", "srcA==0", ryxsMpyRCPack3(nullptr, fp, fp, 3)),
          CASE("ryxfftd", "srcB==0", ryxdMpyRCPack3(dp, nullptr, dp, 3)),
          CASE("ryxffts", "dst==0", ryxsMpyRCPerm3(fp, fp, nullptr, 3)),
          CASE("ryxfftd", "order<0", ryxdMpyRCPerm3(dp, dp, dp, -2)),
      },
      [&] { return std::memcmp(&buf, &keep, sizeof buf) == 0; });
}

// The two-signal forms return the stored status, and after a failure of
// the callee a trace line naming it.
TEST(FftChecks, TwoSignalStatusAndTrace) {
  ReportCapture capture;
  // `fails` calls of the callee reported, then the trace line.
  auto expectTrace = [&](RyxStatus got, const char* caller, const char* callee, const char* context, size_t fails) {
    EXPECT_EQ(got, RYX_StsBacktrace);
    const auto& r = capture.reports();
    ASSERT_EQ(r.size(), fails + 1) << callee;
    for (size_t i = 0; i < fails; ++i) EXPECT_TRUE(r[i].funcName == callee && r[i].context == context) << i;
    EXPECT_EQ(r[fails].status, RYX_StsBacktrace);
    EXPECT_EQ(r[fails].funcName, caller);
    EXPECT_EQ(r[fails].context, std::string("out ") + callee);
    capture.clear();
  };
  std::vector<float> x(18, 1.0f);
  std::vector<double> d(18, 1.0);
  expectTrace(ryxsReal2Fft(x.data(), nullptr, 4, RYX_Forward), "ryxsReal2Fft", "ryxsRealFft", "samps==0", 1);
  expectTrace(ryxdCcs2FftNip(d.data(), nullptr, d.data(), d.data(), 4, RYX_Inverse), "ryxdCcs2FftNip",
              "ryxdCcsFftNip", "outSamps==0", 1);
  expectTrace(ryxsCcs2FftNip(x.data(), x.data(), x.data(), x.data(), 32, RYX_Inverse), "ryxsCcs2FftNip",
              "ryxsCcsFftNip", "order>31", 2);
  // With RYX_Init only the first array is passed on: a null second one is fine.
  EXPECT_EQ(ryxsReal2Fft(nullptr, nullptr, 6, RYX_Init), RYX_StsOk);
  EXPECT_EQ(ryxdCcs2Fft(nullptr, nullptr, 6, RYX_Init), RYX_StsOk);
  EXPECT_EQ(ryxdReal2FftNip(nullptr, nullptr, nullptr, nullptr, 6, RYX_Release), RYX_StsOk);
  EXPECT_TRUE(capture.reports().empty());
}

// RYX_Init needs no samples and no direction; it builds the tables of the
// order and keeps the scratch slot. RYX_Release frees that order's engine
// tables and the slot, accepts any order and checks nothing.
TEST(FftLifecycle, InitAndRelease) {
  ReportCapture capture;
  RyxThreadContext* ctx = ryxGetThreadContext();
  ryxcFreeTwdTbls();
  ryxzFreeTwdTbls();
  ryxcFft(nullptr, 10, RYX_Init | RYX_Forward | RYX_Inverse);
  EXPECT_TRUE(ctx->sFftRadixTwd[10] != nullptr && ctx->bitRevPairs[10] != nullptr);
  EXPECT_GE(ctx->scratchZLen[3], 16384);
  ryxzFft(nullptr, 0, RYX_Init);
  EXPECT_NE(ctx->dFftRadixTwd[0], nullptr);
  ryxzrFftNip(nullptr, nullptr, nullptr, nullptr, 16, RYX_Init);
  EXPECT_TRUE(ctx->dFftBlockTwd[16] != nullptr && ctx->dFftRadixTwd[12] != nullptr);
  EXPECT_TRUE(capture.reports().empty());

  ryxcFft(nullptr, 10, RYX_Release | RYX_InReversed | RYX_OutReversed);
  EXPECT_TRUE(ctx->sFftRadixTwd[10] == nullptr && ctx->bitRevPairs[10] == nullptr);
  EXPECT_TRUE(ctx->scratchZ[3] == nullptr && ctx->scratchZLen[3] == 0);
  ryxzFft(nullptr, 16, RYX_Release);
  EXPECT_TRUE(ctx->dFftBlockTwd[16] == nullptr && ctx->dFftRadixTwd[12] == nullptr);
  ryxcFft(nullptr, 40, RYX_Release);
  ryxzrFft(nullptr, nullptr, -3, RYX_Release);
  EXPECT_TRUE(capture.reports().empty());

  // Real forms: the half-length tables, the recombination table of the
  // order, the list of the half length.
  ryxsRealFftl(nullptr, 9, RYX_Init);
  EXPECT_TRUE(ctx->sFftRadixTwd[8] != nullptr && ctx->sRealTwd[9] != nullptr && ctx->bitRevPairs[8] != nullptr);
  EXPECT_EQ(ctx->sCcsTwd[9], nullptr);
  ryxdCcsFftlNip(nullptr, nullptr, 9, RYX_Init);
  EXPECT_NE(ctx->dCcsTwd[9], nullptr);
  ryxsRealFftl(nullptr, 9, RYX_Release);
  EXPECT_TRUE(ctx->sRealTwd[9] == nullptr && ctx->sFftRadixTwd[8] == nullptr);
  // Order 0 and 1: no table is touched.
  ryxsRealFft(nullptr, 0, RYX_Init);
  ryxsCcsFft(nullptr, 1, RYX_Init);
  EXPECT_TRUE(ctx->sRealTwd[0] == nullptr && ctx->sCcsTwd[1] == nullptr);
  EXPECT_TRUE(capture.reports().empty());

  // A plain call builds what is missing; the stored status is left as it
  // is. Bits outside the listed flags are ignored.
  Random rng(5);
  std::vector<SCplx> x(64, SCplx{1, 0}), a(256);
  ryxSetErrStatus(RYX_StsNoMem);
  ryxcFft(x.data(), 6, RYX_Forward);
  EXPECT_EQ(x[0].re, 64.0f);
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsNoMem);
  rng.fill(a.data(), 256);
  std::vector<SCplx> b = a;
  ryxcFft(a.data(), 8, RYX_Inverse);
  ryxcFft(b.data(), 8, RYX_Inverse | 2048 | (1 << 20) | RYX_RCPackOut);
  EXPECT_TRUE(sameBits(a.data(), b.data(), 256));
  EXPECT_TRUE(capture.reports().empty());
}

// Orders whose blocks cannot exist are refused by size and report "No
// working Twd memory" after the purge; so do allocation failures in both
// rounds, and a missing scratch area; the thread stays usable.
TEST(FftMemory, ExhaustionReportsNoMemAndPurges) {
  ReportCapture capture;
  RyxThreadContext* ctx = ryxGetThreadContext();
  std::vector<SCplx> x(4096, SCplx{1, 1});
  const auto keep = x;
  auto expectNoMem = [&](std::size_t count) {
    ASSERT_EQ(capture.reports().size(), count);
    for (const Report& r : capture.reports()) {
      EXPECT_EQ(r.status, RYX_StsNoMem);
      EXPECT_EQ(r.context, "No working Twd memory");
    }
    EXPECT_TRUE(sameBits(x.data(), keep.data(), 4096));
    capture.clear();
  };
  ryxcFft(x.data(), 31, RYX_Forward);
  EXPECT_EQ(capture.reports().at(0).funcName, "ryxcFft");
  expectNoMem(1);
  ryxzFft(nullptr, 31, RYX_Init);
  ryxdRealFft(nullptr, 31, RYX_Init);
  ryxdCcsFftl(nullptr, 31, RYX_Init);
  expectNoMem(3);

  ryxcFft(nullptr, 6, RYX_Init);
  ASSERT_NE(ctx->sFftRadixTwd[6], nullptr);
  {
    // Every allocation fails: both rounds miss, after the purge.
    FailAllocation fail(1, true);
    ryxcFft(x.data(), 12, RYX_Forward);
    EXPECT_GE(FailAllocation::refused(), 2);
  }
  expectNoMem(1);
  // The purge took this precision's other engine tables with it.
  EXPECT_TRUE(ctx->sFftRadixTwd[6] == nullptr && ctx->sFftRadixTwd[12] == nullptr);
  for (int o = 0; o < 32; ++o) EXPECT_EQ(ctx->bitRevPairs[o], nullptr);

  // A miss in the first round only: the purge and the second round succeed.
  owndFreeFftTbls();
  {
    FailAllocation fail(1);
    ryxdRealFftl(nullptr, 10, RYX_Init);
    EXPECT_EQ(FailAllocation::refused(), 1);
  }
  EXPECT_TRUE(capture.reports().empty());
  EXPECT_NE(ctx->dRealTwd[10], nullptr);

  // Scratch unavailable: reported the same way, tables kept.
  ryxcFft(nullptr, 5, RYX_Init);
  ownFreeScratchZSlot(3);
  {
    FailAllocation fail(1);
    ryxcFft(x.data(), 5, RYX_Forward);
    EXPECT_EQ(FailAllocation::refused(), 1);
  }
  expectNoMem(1);
  EXPECT_NE(ctx->sFftRadixTwd[5], nullptr);

  // Usable afterwards.
  ryxcFft(x.data(), 12, RYX_Forward);
  EXPECT_TRUE(x[0].re == 4096.0f && x[0].im == 4096.0f);
  EXPECT_TRUE(capture.reports().empty());
}

// Tables are per thread: a second thread builds its own, the first keeps
// its pointers, and a thread's tables are gone with the thread (the
// sanitizer build checks that nothing leaks).
TEST(FftThreads, EachThreadBuildsAndFreesItsOwnTables) {
  ReportCapture capture;
  std::vector<SCplx> x(1024);
  Random rng(8);
  rng.fill(x.data(), 1024);
  std::vector<SCplx> mine = x, theirs = x;
  ryxcFft(mine.data(), 10, RYX_Forward);
  RyxThreadContext* ctx = ryxGetThreadContext();
  void* myTable = ctx->sFftRadixTwd[10];
  ASSERT_NE(myTable, nullptr);
  void* theirTable = nullptr;
  bool theirsFresh = false, freedAtEnd = false;
  std::thread t([&] {
    RyxThreadContext* other = ryxGetThreadContext();
    theirsFresh = other != ctx && other->sFftRadixTwd[10] == nullptr && other->bitRevPairs[10] == nullptr;
    ryxSetErrMode(RYX_ErrorModeSilent);
    ryxcFft(theirs.data(), 10, RYX_Forward);
    theirTable = other->sFftRadixTwd[10];
    ryxFreeThreadTables();
    freedAtEnd =
        other->sFftRadixTwd[10] == nullptr && other->scratchZ[3] == nullptr && other->bitRevPairs[10] == nullptr;
    ryxcFft(theirs.data(), 10, RYX_Inverse);  // rebuilt, freed at thread exit
  });
  t.join();
  EXPECT_TRUE(theirsFresh && freedAtEnd);
  EXPECT_TRUE(theirTable != nullptr && theirTable != myTable);
  EXPECT_EQ(ctx->sFftRadixTwd[10], myTable);
  EXPECT_LE(relativeError(widen(theirs.data(), 1024), widen(x.data(), 1024)), 2 * errorBound<float>(10));
  EXPECT_TRUE(capture.reports().empty());
}

}  // namespace
