// Rows of the frame: status, modes, reports, version, aligned memory.
#include <cstring>

#include "routine_table.h"

namespace hostile {
namespace {

// An allocator row takes a block and gives it back; the (wrapped) payload
// is written whole, so a block without room for it is found.
template <class T, T* (*Alloc)(unsigned)>
void allocWriteFree(unsigned count) {
  T* p = Alloc(count);
  const unsigned bytes = count * static_cast<unsigned>(sizeof(T));
  if (p != nullptr && bytes <= (1u << 20)) std::memset(static_cast<void*>(p), 0x5A, bytes);
  ryxFree(p);
}

char* bytesAlloc(unsigned n) { return static_cast<char*>(ryxMalloc(n)); }

void freeOwnOrNull(int which) { ryxFree(which % 2 ? ryxMalloc(static_cast<unsigned>(which) & 0xFFu) : nullptr); }

const AddRows rows({
    row("ryxGetErrStatus", ryxGetErrStatus),
    row("ryxSetErrStatus", ryxSetErrStatus, anyInt()),
    row("ryxGetErrMode", ryxGetErrMode),
    row("ryxSetErrMode", ryxSetErrMode, anyInt()),
    row("ryxRedirectError", ryxRedirectError, reportFn()),
    row("ryxError", ryxError, anyInt(), text(), text(), text(), anyInt()),
    row("ryxErrorStr", ryxErrorStr, anyInt()),
    row("ryxGuiBoxReport", ryxGuiBoxReport, anyInt(), text(), text(), text(), anyInt()),
    row("ryxStdErrReport", ryxStdErrReport, anyInt(), text(), text(), text(), anyInt()),
    row("ryxNulDevReport", ryxNulDevReport, anyInt(), text(), text(), text(), anyInt()),
    row("ryxGetLibVersion", ryxGetLibVersion),
    allocating(row("ryxMalloc", allocWriteFree<char, bytesAlloc>, count())),
    allocating(row("ryxwMalloc", allocWriteFree<short, ryxwMalloc>, count())),
    allocating(row("ryxsMalloc", allocWriteFree<float, ryxsMalloc>, count())),
    allocating(row("ryxiMalloc", allocWriteFree<int, ryxiMalloc>, count())),
    allocating(row("ryxvMalloc", allocWriteFree<WCplx, ryxvMalloc>, count())),
    allocating(row("ryxdMalloc", allocWriteFree<double, ryxdMalloc>, count())),
    allocating(row("ryxcMalloc", allocWriteFree<SCplx, ryxcMalloc>, count())),
    allocating(row("ryxjMalloc", allocWriteFree<ICplx, ryxjMalloc>, count())),
    allocating(row("ryxzMalloc", allocWriteFree<DCplx, ryxzMalloc>, count())),
    row("ryxFree", freeOwnOrNull, anyInt()),
});

}  // namespace
}  // namespace hostile
