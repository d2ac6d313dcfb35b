// Per-thread record lifecycle.
//
// A pthread key stands for the thread-local slot. The library's load
// constructor takes the key and gives the loading thread its record; other
// threads get theirs at first use. At thread exit the key's destructor frees
// the record's tables and the record; at unload the destructor does the same
// for the calling thread and gives the key back. Records of other threads
// still alive at unload are not visited.
#include "frame/thread_context.h"

#include <pthread.h>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include "frame/process_exit.h"

namespace {

// The one piece of process-wide state: written once at load, read after.
pthread_key_t g_key;
bool g_keyValid = false;

RyxThreadContext* newRecord() {
  auto* ctx = static_cast<RyxThreadContext*>(std::calloc(1, sizeof(RyxThreadContext)));
  if (ctx == nullptr) return nullptr;
  ctx->errStatus = RYX_StsOk;
  ctx->errMode = RYX_ErrorModeLeaf;
  ctx->reportFn = ryxGuiBoxReport;
  ctx->dftTblCapacity = 32;
  ctx->dctScaleA = 0.0;
  ctx->dctScaleB = 0.0;
  return ctx;
}

// Thread detach: tables first, then the record.
void releaseRecord(RyxThreadContext* ctx) {
  if (ctx == nullptr) return;
  // The release routines reach the record through the key, so it must still
  // be set while they run.
  pthread_setspecific(g_key, ctx);
  ryxFreeThreadTables();
  pthread_setspecific(g_key, nullptr);
  std::free(ctx);
}

void onThreadExit(void* value) { releaseRecord(static_cast<RyxThreadContext*>(value)); }

__attribute__((constructor)) void onLoad() {
  if (pthread_key_create(&g_key, onThreadExit) != 0) {
    ryx::fatalExit("RYXlib. Problem to allocate TLS key.");
  }
  g_keyValid = true;
  if (RyxThreadContext* ctx = newRecord()) pthread_setspecific(g_key, ctx);
}

__attribute__((destructor)) void onUnload() {
  if (!g_keyValid) return;
  releaseRecord(static_cast<RyxThreadContext*>(pthread_getspecific(g_key)));
  pthread_key_delete(g_key);
  g_keyValid = false;
}

}  // namespace

RyxThreadContext* ryxGetThreadContext() {
  auto* ctx = static_cast<RyxThreadContext*>(pthread_getspecific(g_key));
  if (ctx != nullptr) return ctx;
  ctx = newRecord();
  if (ctx == nullptr) ryx::fatalExit("RYXlib. Problem to allocate memory for TLS RYX context.");
  pthread_setspecific(g_key, ctx);
  return ctx;
}

void ryxFreeThreadTables() {
  ryxcFreeTwdTbls();
  ryxzFreeTwdTbls();
  ryxvFreeTwdTbls();
  ryxFreeBitRevTbls();
  ownFreeDctStageTbls();
  ownFreeDctCosTbl();
  ownFreeDctFastTbl();
}
