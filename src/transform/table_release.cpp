// Release of the per-thread transform tables and grown scratch buffers.
// Each routine frees what it owns in the thread's record and zeroes the
// matching lengths and counts, so a later call rebuilds on demand.
#include <cstddef>

#include "frame/thread_context.h"
#include "ryxcore.h"

namespace {

template <std::size_t N>
void freeAll(void* (&slots)[N]) {
  for (void*& p : slots) {
    ryxFree(p);
    p = nullptr;
  }
}

void freeList(void* (&tables)[32], int (&lengths)[32], int& count) {
  for (int i = 0; i < 32; ++i) {
    ryxFree(tables[i]);
    tables[i] = nullptr;
    lengths[i] = 0;
  }
  count = 0;
}

template <std::size_t N>
void freeScratch(void* (&slots)[N], int (&lengths)[N]) {
  for (std::size_t i = 0; i < N; ++i) {
    lengths[i] = 0;
    ryxFree(slots[i]);
    slots[i] = nullptr;
  }
}

}  // namespace

void ownFreeScratchI() {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeScratch(ctx->scratchI, ctx->scratchILen);
}
void ownFreeScratchC() {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeScratch(ctx->scratchC, ctx->scratchCLen);
}
void ownFreeScratchZ() {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeScratch(ctx->scratchZ, ctx->scratchZLen);
}

void ownsFreeFftTbls() {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeAll(ctx->sFftBlockTwd);
  freeAll(ctx->sFftRadixTwd);
  freeAll(ctx->sFftAuxTwd);
  freeAll(ctx->sRealTwd);
  freeAll(ctx->sCcsTwd);
  freeAll(ctx->bitRevPairs);
}

void owndFreeFftTbls() {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeAll(ctx->dFftBlockTwd);
  freeAll(ctx->dFftRadixTwd);
  freeAll(ctx->dFftAuxTwd);
  freeAll(ctx->dRealTwd);
  freeAll(ctx->dCcsTwd);
  freeAll(ctx->bitRevPairs);
}

void ownwFreeFftTbls() {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeList(ctx->dftPermTbl, ctx->dftPermLen, ctx->dftPermCount);
  freeAll(ctx->wRealTwd);
  freeAll(ctx->bitRevPairs);
}

extern "C" {

RYXAPI void ryxcFreeTwdTbls(void) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeList(ctx->cDftTbl, ctx->cDftLen, ctx->cDftTblCount);
  freeAll(ctx->cFftTwd);
  ownsFreeFftTbls();
  ownFreeScratchZ();
}

RYXAPI void ryxzFreeTwdTbls(void) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeList(ctx->zDftTbl, ctx->zDftLen, ctx->zDftTblCount);
  freeAll(ctx->zFftTwd);
  owndFreeFftTbls();
  ownFreeScratchZ();
}

RYXAPI void ryxvFreeTwdTbls(void) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeList(ctx->vDftTbl, ctx->vDftLen, ctx->vDftTblCount);
  freeAll(ctx->vFftTwd);
  ownwFreeFftTbls();
  ownFreeScratchI();
  ownFreeScratchC();
  ownFreeScratchZ();
}

RYXAPI void ryxFreeBitRevTbls(void) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  freeAll(ctx->bitRevTbl);
  freeAll(ctx->bitRevPairs);
}

}  // extern "C"
