// Release of the DCT caches held in the thread's record: the stage tables
// (an array of table pointers), the direct cosine table and the 16-bit
// fast-path tables (also an array of table pointers).
#include "frame/thread_context.h"

namespace {

void freeTableArray(void*& array, int& count) {
  void** tables = static_cast<void**>(array);
  if (tables != nullptr) {
    for (int i = 0; i < count; ++i) ryxFree(tables[i]);
  }
  ryxFree(array);
  array = nullptr;
  count = 0;
}

}  // namespace

void ownFreeDctStageTbls() {
  RyxThreadContext* ctx = ryxGetThreadContext();
  void* array = ctx->dctStageTbls;
  freeTableArray(array, ctx->dctStageCount);
  ctx->dctStageTbls = nullptr;
}

void ownFreeDctCosTbl() {
  RyxThreadContext* ctx = ryxGetThreadContext();
  ryxFree(ctx->dctCosTbl);
  ctx->dctCosTbl = nullptr;
  ctx->dctCosLen = 0;
}

void ownFreeDctFastTbl() {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeTableArray(ctx->dctFastTbl, ctx->dctFastTblLen);
}
