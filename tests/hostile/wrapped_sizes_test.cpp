// Sizes that wrap in 32 bits: the allocators' counts, the high-level FIR
// set-up with factors near 2^31, and a tap state that never went through
// Init. Each must end in a usable block, a report, or a refusal, never in a
// block smaller than what is written into it.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>

#include "alloc_failure.h"
#include "ryxcore.h"
#include "test_support.h"

namespace {

using ryxtest::FailAllocation;

// The runtime of these tests gives no single block above 256 MiB.
constexpr std::size_t kBlockLimit = std::size_t{1} << 28;

struct LimitBlocks {
  LimitBlocks() { FailAllocation::limitBlockSize(kBlockLimit); }
  ~LimitBlocks() { FailAllocation::limitBlockSize(0); }
};

// Every allocator of the family at counts whose byte size wraps: the block
// may be small, but it must hold the word below the given address and the
// (wrapped) payload above it, and ryxFree must take it back.
TEST(WrappedSizes, EveryAllocatorBlockHoldsItsHeaderAndPayload) {
  LimitBlocks limit;
  using Alloc = void* (*)(unsigned);
  const std::pair<Alloc, std::uint32_t> allocators[] = {
      {reinterpret_cast<Alloc>(ryxMalloc), 1},  {reinterpret_cast<Alloc>(ryxwMalloc), 2},
      {reinterpret_cast<Alloc>(ryxsMalloc), 4}, {reinterpret_cast<Alloc>(ryxiMalloc), 4},
      {reinterpret_cast<Alloc>(ryxvMalloc), 4}, {reinterpret_cast<Alloc>(ryxdMalloc), 8},
      {reinterpret_cast<Alloc>(ryxcMalloc), 8}, {reinterpret_cast<Alloc>(ryxjMalloc), 8},
      {reinterpret_cast<Alloc>(ryxzMalloc), 16},
  };
  const std::uint32_t counts[] = {0xFFFFFFFFu, 0xFFFFFFFEu, 0x7FFFFFFFu, 0x80000000u, 0x40000000u,
                                  0x20000001u, 0x10000000u, 0x10000001u, 0x0FFFFFFFu, 0xFFFFFFF9u};
  const long before = FailAllocation::live();
  for (auto [alloc, elem] : allocators) {
    for (std::uint32_t n : counts) {
      const std::uint32_t payload = n * elem;  // the documented 32-bit count
      auto* p = static_cast<unsigned char*>(alloc(n));
      if (p == nullptr) {
        // Only a refusal of the runtime: the whole payload was asked for.
        EXPECT_GT(std::uint64_t{payload} + 32, kBlockLimit) << n << " x " << elem;
        continue;
      }
      auto* raw = static_cast<unsigned char*>(FailAllocation::lastRaw());
      const std::size_t size = FailAllocation::lastSize();
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(p) % 32, 0u);
      EXPECT_GE(p - sizeof(void*), raw) << n << " x " << elem;
      EXPECT_LE(static_cast<std::uint64_t>(p - raw) + payload, size) << n << " x " << elem;
      void* stored;
      std::memcpy(&stored, p - sizeof(void*), sizeof stored);
      EXPECT_EQ(stored, raw);
      ryxFree(p);
    }
  }
  EXPECT_EQ(FailAllocation::live(), before);
}

using InitMr = void (*)(const void*, int, const void*, int, int, int, int, RyxFirState*);
template <class F>
InitMr erase(F f) {
  return reinterpret_cast<InitMr>(f);
}

// Factors whose tables or history cannot be had are refused as out of
// memory, before anything is written; the record stays dead and nothing
// stays allocated. A factor that fits still gives a working filter.
TEST(WrappedSizes, MultirateSetUpRefusesWhatCannotBeAllocated) {
  LimitBlocks limit;
  const std::pair<const char*, InitMr> inits[] = {
      {"ryxsFirInitMr", erase(ryxsFirInitMr)},   {"ryxcFirInitMr", erase(ryxcFirInitMr)},
      {"ryxscFirInitMr", erase(ryxscFirInitMr)}, {"ryxcsFirInitMr", erase(ryxcsFirInitMr)},
      {"ryxdFirInitMr", erase(ryxdFirInitMr)},   {"ryxzFirInitMr", erase(ryxzFirInitMr)},
      {"ryxdzFirInitMr", erase(ryxdzFirInitMr)}, {"ryxzdFirInitMr", erase(ryxzdFirInitMr)},
  };
  struct Factors {
    int up, down;
  };
  const Factors hostile[] = {{1 << 28, 1}, {1 << 30, 1}, {INT_MAX, 1}, {1 << 27, 3},
                             {2, INT_MAX}, {1, INT_MAX}, {INT_MAX, INT_MAX}, {1 << 24, 1 << 30}};
  const DCplx taps[16] = {};
  ryxtest::ReportCapture capture;
  ryxSetErrMode(RYX_ErrorModeSilent);
  const long before = FailAllocation::live();
  for (auto [name, init] : inits) {
    for (Factors f : hostile) {
      RyxFirState st{};
      capture.clear();
      init(taps, 16, nullptr, f.up, 0, f.down, 0, &st);
      ASSERT_EQ(capture.reports().size(), 1u) << name << " " << f.up << "/" << f.down;
      EXPECT_EQ(capture.reports()[0].status, RYX_StsNoMem);
      EXPECT_EQ(capture.reports()[0].funcName, name);
      EXPECT_EQ(capture.reports()[0].context, "Allocation failure");
      EXPECT_EQ(st.initMark, nullptr);
      EXPECT_EQ(FailAllocation::live(), before);
    }
    // 2^20 phases of 16 bytes fit: the filter works and releases all.
    RyxFirState st{};
    capture.clear();
    init(taps, 16, nullptr, 1 << 20, 5, 3, 1, &st);
    EXPECT_TRUE(capture.reports().empty()) << name;
    ASSERT_EQ(st.initMark, &st);
    EXPECT_EQ(st.phaseTable[(1 << 20) - 1].branch, (1 - 5 + 3 * ((1 << 20) - 1)) % (1 << 20));
    ryxFirFree(&st);
    EXPECT_EQ(FailAllocation::live(), before);
  }
}

using InitDlyl = void (*)(const RyxFirTapState*, void*, RyxFirDlyState*);

// A tap state that never went through Init: its zero (or negative) factor
// is refused with the factor check's text instead of being divided by.
TEST(WrappedSizes, DelaySetUpRefusesATapStateWithoutFactor) {
  const std::pair<const char*, InitDlyl> inits[] = {
      {"ryxsFirlInitDlyl", reinterpret_cast<InitDlyl>(ryxsFirlInitDlyl)},
      {"ryxcFirlInitDlyl", reinterpret_cast<InitDlyl>(ryxcFirlInitDlyl)},
      {"ryxdFirlInitDlyl", reinterpret_cast<InitDlyl>(ryxdFirlInitDlyl)},
      {"ryxzFirlInitDlyl", reinterpret_cast<InitDlyl>(ryxzFirlInitDlyl)},
  };
  ryxtest::ReportCapture capture;
  ryxSetErrMode(RYX_ErrorModeSilent);
  DCplx line[4];
  for (auto [name, init] : inits) {
    for (int up : {0, -1, INT_MIN}) {
      RyxFirTapState ts{};
      ts.tapsLen = up == 0 ? 0 : INT_MIN;
      ts.upFactor = up;
      RyxFirDlyState ds{};
      const RyxFirDlyState was = ds;
      capture.clear();
      init(&ts, line, &ds);
      ASSERT_EQ(capture.reports().size(), 1u) << name << " " << up;
      EXPECT_EQ(capture.reports()[0].status, RYX_StsBadArg);
      EXPECT_EQ(capture.reports()[0].funcName, name);
      EXPECT_EQ(capture.reports()[0].context, "Invalid factor value");
      EXPECT_EQ(capture.reports()[0].file, "ryxfirl");
      EXPECT_EQ(std::memcmp(&ds, &was, sizeof ds), 0);
    }
  }
}

}  // namespace
