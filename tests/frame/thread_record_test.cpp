// The per-thread record: defaults in each new thread, isolation of status,
// mode and report function between threads, and release of the record and
// its tables at thread exit and at library unload.
//
// Release is observed by interposing calloc and free in this test program:
// records are the calloc blocks of the record's size, and every freed
// pointer is remembered. (Not under the sanitizers, whose allocator owns
// these names; LeakSanitizer covers leaks there.)
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <cstdlib>
#include <thread>
#include <vector>

#include "frame/thread_context.h"
#include "ryxcore.h"

#if defined(__SANITIZE_ADDRESS__)
#define RYX_TEST_INTERPOSE 0
#else
#define RYX_TEST_INTERPOSE 1
#endif

#if RYX_TEST_INTERPOSE
extern "C" void* __libc_calloc(size_t, size_t);
extern "C" void __libc_free(void*);

namespace {
constexpr int kSlots = 1 << 14;
std::atomic<void*> g_records[256];
std::atomic<void*> g_freed[kSlots];
std::atomic<unsigned> g_freedNext{0};
std::atomic<bool> g_watch{false};
}  // namespace

extern "C" void* calloc(size_t count, size_t size) {
  void* p = __libc_calloc(count, size);
  if (p != nullptr && g_watch.load() && count * size == sizeof(RyxThreadContext)) {
    for (auto& slot : g_records) {
      void* empty = nullptr;
      if (slot.compare_exchange_strong(empty, p)) break;
    }
  }
  return p;
}

extern "C" void free(void* p) {
  if (p != nullptr && g_watch.load()) {
    for (auto& slot : g_records) {
      void* mine = p;
      if (slot.compare_exchange_strong(mine, nullptr)) break;
    }
    g_freed[g_freedNext.fetch_add(1) % kSlots].store(p);
  }
  __libc_free(p);
}

namespace {

int liveRecords() {
  return static_cast<int>(std::count_if(std::begin(g_records), std::end(g_records),
                                        [](const std::atomic<void*>& s) { return s.load() != nullptr; }));
}

bool wasFreed(void* p) {
  for (auto& s : g_freed)
    if (s.load() == p) return true;
  return false;
}

struct Watch {
  Watch() { g_watch = true; }
  ~Watch() { g_watch = false; }
};

}  // namespace
#endif

namespace {

RyxStatus quietReport(RyxStatus s, const char*, const char*, const char*, int) { return s; }

// Each new thread gets its own record with the defaults (Leaf mode, status
// 0, the box report, empty tables) whatever this thread has set, and what a
// thread sets or stores stays its own.
TEST(ThreadRecord, DefaultsAndIsolationPerThread) {
  const int mode = ryxGetErrMode();
  ryxSetErrMode(RYX_ErrorModeSilent);
  ryxReportFn previous = ryxRedirectError(quietReport);
  ryxSetErrStatus(-5);
  RyxThreadContext* const mine = ryxGetThreadContext();
  std::vector<std::thread> threads;
  for (int k = 0; k < 4; ++k) {
    threads.emplace_back([k, mine] {
      EXPECT_EQ(ryxGetErrMode(), RYX_ErrorModeLeaf);  // first use creates the record
      EXPECT_EQ(ryxGetErrStatus(), 0);
      EXPECT_EQ(ryxRedirectError(quietReport), &ryxGuiBoxReport);
      const RyxThreadContext* ctx = ryxGetThreadContext();
      EXPECT_NE(ctx, mine);
      EXPECT_TRUE(ctx->dftTblCapacity == 32 && ctx->dctScaleA == 0.0 && ctx->cFftTwd[0] == nullptr &&
                  ctx->scratchZ[3] == nullptr);
      ryxSetErrMode(RYX_ErrorModeParent);
      ryxsbZero(nullptr, k + 1);  // stores -5 in this thread only
      EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
    });
  }
  for (auto& t : threads) t.join();
  EXPECT_EQ(ryxGetErrMode(), RYX_ErrorModeSilent);
  EXPECT_EQ(ryxGetErrStatus(), -5);
  EXPECT_EQ(ryxRedirectError(previous), &quietReport);
  ryxSetErrMode(mode);
  ryxSetErrStatus(0);
}

#if RYX_TEST_INTERPOSE

TEST(ThreadRecordRelease, RecordAndItsTablesAreFreedAtThreadExit) {
  Watch watch;
  const int before = liveRecords();
  std::vector<void*> tableRaw(8, nullptr);
  std::vector<std::thread> threads;
  for (int k = 0; k < 8; ++k) {
    threads.emplace_back([k, &tableRaw] {
      RyxThreadContext* ctx = ryxGetThreadContext();
      // Give the record a table the way the transform family does.
      float* table = ryxsMalloc(64);
      ctx->cFftTwd[k % 32] = table;
      void* raw;
      std::memcpy(&raw, reinterpret_cast<char*>(table) - sizeof(void*), sizeof raw);
      tableRaw[k] = raw;
    });
  }
  // While the threads are alive (or just ended) their records exist; after
  // join every record is back.
  for (auto& t : threads) t.join();
  EXPECT_EQ(liveRecords(), before);
  for (void* raw : tableRaw) EXPECT_TRUE(wasFreed(raw));
}

TEST(ThreadRecordRelease, ThreadsThatNeverCallTheLibraryGetNoRecord) {
  Watch watch;
  const int before = liveRecords();
  std::thread([] {}).join();
  EXPECT_EQ(liveRecords(), before);
}

TEST(ThreadRecordRelease, UnloadReleasesTheCallingThreadsRecord) {
  Watch watch;
  const int before = liveRecords();
  void* lib = dlopen(RYX_SHARED_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(lib, nullptr) << dlerror();
  // Loading gives this thread its record in the loaded copy.
  EXPECT_EQ(liveRecords(), before + 1);
  auto getMode = reinterpret_cast<int (*)()>(dlsym(lib, "ryxGetErrMode"));
  ASSERT_NE(getMode, nullptr);
  EXPECT_EQ(getMode(), RYX_ErrorModeLeaf);
  EXPECT_EQ(liveRecords(), before + 1);
  dlclose(lib);
  EXPECT_EQ(liveRecords(), before);
}

#endif

}  // namespace
