// This test program supplies the library's raw allocator so tests can
// inject allocation failures and count live blocks.
#include "alloc_failure_hook.inc"
