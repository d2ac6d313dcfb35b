#include "ryxcore.h"

namespace {
constexpr RyxLibVersion kVersion = {
    4, 5, 0, "ryxcore.dll", "4.5 ", "[4.5.2.82, 09/06/00]", "Sep  7 2000", "DLL",
};
}  // namespace

extern "C" RYXAPI const RyxLibVersion* ryxGetLibVersion(void) { return &kVersion; }
