// This test program supplies the library's raw allocator pair, so tests can
// fail allocations, bound block sizes and count the blocks alive.
#include "alloc_failure_hook.inc"
