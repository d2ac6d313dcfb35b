// Allocation failure injection. A test program that includes
// "alloc_failure_hook.inc" in exactly one of its files supplies the
// library's raw allocator (the library's own is a weak default), so a test
// can make the n-th aligned allocation of the calling thread fail.
#pragma once

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

  static void* allocate(std::size_t bytes) {
    State& s = state();
    if (s.failing || (s.countdown > 0 && --s.countdown == 0)) {
      s.failing = s.sticky;
      ++s.refused;
      return nullptr;
    }
    return std::malloc(bytes);
  }

 private:
  struct State {
    int countdown = 0;
    bool sticky = false;
    bool failing = false;
    int refused = 0;
  };
  static State& state() {
    thread_local State s;
    return s;
  }
};

}  // namespace ryxtest
