// Allocation failure injection. A test program that includes
// "alloc_failure_hook.inc" in exactly one of its files supplies the
// library's raw allocator pair (the library's own is a weak default), so a
// test can make the n-th aligned allocation of the calling thread fail,
// count the blocks alive, and see the raw blocks handed out.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>

namespace ryxtest {

class FailAllocation {
 public:
  // The n-th aligned allocation from now on (1 = the next) returns null,
  // and so does every later one when `sticky`.
  explicit FailAllocation(int nth, bool sticky = false) {
    state().countdown = nth;
    state().sticky = sticky;
  }
  ~FailAllocation() { state() = {}; }
  FailAllocation(const FailAllocation&) = delete;
  FailAllocation& operator=(const FailAllocation&) = delete;

  // How many allocations were refused while this object lived.
  static int refused() { return state().refused; }
  // How many allocations were asked for while this object lived.
  static int requested() { return state().requested; }

  // Raw blocks taken and not yet given back, over all threads.
  static long live() { return liveBlocks().load(); }

  // The runtime is made to refuse single blocks above `bytes` (0: no
  // limit), as a machine with little memory would; for every thread.
  static void limitBlockSize(std::size_t bytes) { blockLimit().store(bytes); }

  // The last raw block handed out on this thread and its size.
  static void* lastRaw() { return state().lastRaw; }
  static std::size_t lastSize() { return state().lastSize; }

  static void* allocate(std::size_t bytes) {
    State& s = state();
    ++s.requested;
    const std::size_t limit = blockLimit().load();
    if (s.failing || (s.countdown > 0 && --s.countdown == 0)) {
      s.failing = s.sticky;
      ++s.refused;
      return nullptr;
    }
    if (limit != 0 && bytes > limit) return nullptr;
    void* raw = std::malloc(bytes);
    if (raw != nullptr) ++liveBlocks();
    s.lastRaw = raw;
    s.lastSize = bytes;
    return raw;
  }
  static void release(void* raw) {
    if (raw != nullptr) --liveBlocks();
    std::free(raw);
  }

 private:
  struct State {
    int countdown = 0;
    bool sticky = false;
    bool failing = false;
    int refused = 0;
    int requested = 0;
    void* lastRaw = nullptr;
    std::size_t lastSize = 0;
  };
  static State& state() {
    thread_local State s;
    return s;
  }
  static std::atomic<long>& liveBlocks() {
    static std::atomic<long> n{0};
    return n;
  }
  static std::atomic<std::size_t>& blockLimit() {
    static std::atomic<std::size_t> n{0};
    return n;
  }
};

}  // namespace ryxtest
