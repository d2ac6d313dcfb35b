// Release of the DCT caches held in the thread's record: the stage tables
// (an array of table pointers), the direct cosine table and the 16-bit
// fast-path tables (also an array of table pointers); and their builds.
#include <cmath>
#include <cstdint>

#include "frame/thread_context.h"
#include "transform/dct_cache.h"
#include "transform/fft_internal.h"

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

// ---- Building -------------------------------------------------------------

namespace {

constexpr double kPi = 3.14159265358979323846;

// L tables of 8 * 2^l entries, each from `entry(j, m)`; false (and nothing
// kept) when a block is missing.
template <class E, class F>
bool buildStages(void*& array, int& count, int stages, F entry) {
  freeTableArray(array, count);
  if (stages == 0) return true;
  auto** tables = static_cast<void**>(ryx::fft::blockAlloc(static_cast<std::uint64_t>(stages), sizeof(void*)));
  if (tables == nullptr) return false;
  for (int l = 0; l < stages; ++l) {
    const int m = 8 << l;
    auto* t = static_cast<E*>(ryx::fft::blockAlloc(static_cast<std::uint64_t>(m), sizeof(E)));
    if (t == nullptr) {
      array = tables;
      count = l;
      freeTableArray(array, count);
      return false;
    }
    for (int j = 0; j < m; ++j) t[j] = entry(j, m);
    tables[l] = t;
  }
  array = tables;
  count = stages;
  return true;
}

double secantAngle(int j, int m) { return static_cast<double>(2 * j + 1) * kPi / static_cast<double>(4 * m); }

}  // namespace

bool ownPrepareDctCosTbl(int n) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  if (n <= 0x1FFFFFFF && ctx->dctCosLen == 4 * n && ctx->dctCosTbl != nullptr) return true;
  ownFreeDctCosTbl();
  if (n > 0x1FFFFFFF) return false;
  auto* c = static_cast<double*>(ryx::fft::blockAlloc(4 * static_cast<std::uint64_t>(n), sizeof(double)));
  if (c == nullptr) return false;
  for (int i = 0; i < 4 * n; ++i) c[i] = std::cos(static_cast<double>(i) * kPi / (2.0 * static_cast<double>(n)));
  ctx->dctCosTbl = c;
  ctx->dctCosLen = 4 * n;
  ctx->dctScaleA = 1.0 / std::sqrt(static_cast<double>(n));
  return true;
}

bool ownPrepareDctStageTbls(int stages) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  if (stages == ctx->dctStageCount && (stages == 0 || ctx->dctStageTbls != nullptr)) return true;
  void* array = ctx->dctStageTbls;
  const bool ok = buildStages<double>(array, ctx->dctStageCount, stages,
                                      [](int j, int m) { return 0.5 / std::cos(secantAngle(j, m)); });
  ctx->dctStageTbls = static_cast<void**>(array);
  ctx->dctScaleB = 1.0 / std::sqrt(static_cast<double>(std::uint64_t{8} << stages));
  return ok;
}

bool ownPrepareDctFastTbl(int stages) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  if (stages == ctx->dctFastTblLen && (stages == 0 || ctx->dctFastTbl != nullptr)) return true;
  // 0.5/cos in Q9, rounded; the few entries beyond 16 bits (m from 256 on)
  // are held at the largest value.
  return buildStages<std::uint16_t>(ctx->dctFastTbl, ctx->dctFastTblLen, stages, [](int j, int m) {
    const double v = (512.0 / std::cos(secantAngle(j, m))) * 0.5 + 0.5;
    return static_cast<std::uint16_t>(v >= 65535.0 ? 65535.0 : v);
  });
}
