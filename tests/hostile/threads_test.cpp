// Threads share nothing: 8 threads at a time, created and joined round
// after round, run FFTs of changing orders, real transforms, single-rate
// and multirate FIR filters (one low-level tap state shared by all) and
// table releases. Every result must be bit-identical to the one computed
// alone on the main thread, and once the threads have ended every table
// they built must have been freed with them. Run under ThreadSanitizer by
// the test script's tsan build.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <random>
#include <thread>
#include <type_traits>
#include <vector>

#include "alloc_failure.h"
#include "frame/thread_context.h"
#include "ryxcore.h"

namespace {

std::uint64_t digest(const void* p, std::size_t bytes) {
  std::uint64_t h = 1469598103934665603ull;
  for (std::size_t i = 0; i < bytes; ++i) h = (h ^ static_cast<const unsigned char*>(p)[i]) * 1099511628211ull;
  return h;
}

template <class T>
std::vector<T> data(int n, unsigned seed) {
  using R = std::conditional_t<std::is_same_v<T, float> || std::is_same_v<T, SCplx>, float, double>;
  std::mt19937 gen(seed);
  std::uniform_real_distribution<R> d(-1, 1);
  std::vector<T> v(n);
  auto* x = reinterpret_cast<R*>(v.data());
  for (std::size_t i = 0; i < sizeof(T) / sizeof(R) * v.size(); ++i) x[i] = d(gen);
  return v;
}

// The shared low-level tap state: read by every thread at once.
struct SharedTaps {
  std::vector<DCplx> taps = data<DCplx>(23, 99);
  RyxFirTapState ts{};
  SharedTaps() { ryxzFirlInitMr(taps.data(), 23, 3, 1, 2, 0, &ts); }
};

// One job: what it computes depends only on its number.
std::uint64_t runJob(int job, const SharedTaps& shared) {
  const int order = 2 + job % 11;
  const int n = 1 << order;
  switch (job % 6) {
    case 0: {
      auto x = data<SCplx>(n, job);
      ryxcFft(x.data(), order, job % 12 < 6 ? RYX_Forward : RYX_Inverse);
      return digest(x.data(), x.size() * sizeof x[0]);
    }
    case 1: {
      auto x = data<DCplx>(n, job);
      std::vector<DCplx> y(n);
      ryxzFftNip(x.data(), y.data(), order, RYX_Forward);
      return digest(y.data(), y.size() * sizeof y[0]);
    }
    case 2: {
      auto x = data<float>(n, job);
      ryxsRealFftl(x.data(), order, RYX_Forward | RYX_RCPackOut);
      return digest(x.data(), x.size() * sizeof x[0]);
    }
    case 3: {  // high-level multirate filter, owned by this thread
      auto taps = data<float>(17 + job % 9, job);
      auto x = data<float>(120, job + 1);
      std::vector<float> y(180);
      RyxFirState st{};
      ryxsFirInitMr(taps.data(), static_cast<int>(taps.size()), nullptr, 3, 1, 2, 1, &st);
      ryxsbFir(&st, x.data(), y.data(), 60);
      ryxFirFree(&st);
      return digest(y.data(), y.size() * sizeof y[0]);
    }
    case 4: {  // shared tap state, own delay state
      std::vector<DCplx> line(16), y(3 * 40);
      auto x = data<DCplx>(2 * 40, job);
      RyxFirDlyState ds{};
      ryxzFirlInitDlyl(&shared.ts, line.data(), &ds);
      ryxzFirlSetDlyl(&shared.ts, nullptr, &ds);
      ryxzbFirl(&shared.ts, &ds, x.data(), y.data(), 40);
      return digest(y.data(), y.size() * sizeof y[0]);
    }
    default: {  // release, then transform again from fresh tables
      ryxcFft(nullptr, order, RYX_Release);
      ryxcFreeTwdTbls();
      auto x = data<double>(n + 2, job);
      ryxdRealFft(x.data(), order, RYX_Forward);
      return digest(x.data(), x.size() * sizeof x[0]);
    }
  }
}

TEST(Threads, ResultsMatchTheLoneThreadAndTablesLeaveWithTheirThread) {
  constexpr int kJobs = 66, kThreads = 8;
  const SharedTaps shared;
  std::vector<std::uint64_t> expected(kJobs);
  for (int j = 0; j < kJobs; ++j) expected[j] = runJob(j, shared);
  ryxFreeThreadTables();
  const long liveBefore = ryxtest::FailAllocation::live();

  std::atomic<int> mismatches{0}, done{0};
  const auto start = std::chrono::steady_clock::now();
  int rounds = 0;
  while (rounds < 3 || std::chrono::steady_clock::now() - start < std::chrono::milliseconds(1500)) {
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
      threads.emplace_back([&, t, rounds] {
        std::mt19937 pick(static_cast<unsigned>(rounds * kThreads + t));
        for (int i = 0; i < 12; ++i) {
          const int j = static_cast<int>(pick() % kJobs);
          if (runJob(j, shared) != expected[j]) ++mismatches;
          ++done;
        }
      });
    }
    for (auto& th : threads) th.join();
    ++rounds;
  }
  EXPECT_EQ(mismatches.load(), 0) << "of " << done.load() << " jobs in " << rounds << " rounds";
  EXPECT_EQ(ryxtest::FailAllocation::live(), liveBefore) << "blocks of ended threads still allocated";
}

}  // namespace
