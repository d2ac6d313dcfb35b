// The libFuzzer entry: one input is a row's name, a zero byte and the
// argument bytes (see routine_table.h). Anything the checks find aborts,
// so the fuzzer keeps the input. Built by scripts/fuzz.sh; compiled into
// the test program too, where the corpus replay reaches the same code.
#include <cstdio>
#include <cstdlib>

#include "alloc_failure.h"
#include "routine_table.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // As a machine with little memory: single blocks above 16 MiB are refused.
  ryxtest::FailAllocation::limitBlockSize(std::size_t{1} << 24);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const hostile::Outcome o = hostile::runInput(data, size);
  if (!o.fault.empty()) {
    std::fprintf(stderr, "hostile: %.*s: %s\n", static_cast<int>(size), reinterpret_cast<const char*>(data),
                 o.fault.c_str());
    std::abort();
  }
  return 0;
}
