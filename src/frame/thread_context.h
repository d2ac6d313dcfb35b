// The per-thread record. Every table and grown scratch buffer the library
// caches lives here, owned by its thread: a pointer field is null or owns a
// block from the aligned allocator, and a (length, pointer) pair is cleared
// together. Only the calling thread touches its own record, so nothing is
// locked.
#pragma once

#include "ryxcore.h"

struct RyxThreadContext {
  int errStatus;            // last stored status
  int errMode;              // RYX_ErrorModeLeaf by default
  ryxReportFn reportFn;     // ryxGuiBoxReport by default

  // Direct-DFT table lists.
  int dftTblCapacity;       // 32; reaching it is the "Full Table" failure
  int cDftTblCount;
  int zDftTblCount;
  int vDftTblCount;
  int dftPermCount;

  // DCT caches.
  int dctCosLen;
  void* dctCosTbl;
  int dctFastTblLen;
  void* dctFastTbl;
  int dctStageCount;
  void** dctStageTbls;
  double dctScaleA;
  double dctScaleB;

  int cDftLen[32];
  int zDftLen[32];
  int vDftLen[32];
  void* cDftTbl[32];
  void* zDftTbl[32];
  void* vDftTbl[32];

  // FFT tables, one slot per order.
  void* cFftTwd[32];
  void* zFftTwd[32];
  void* vFftTwd[32];
  void* bitRevTbl[32];
  void* bitRevPairs[32];
  void* sFftBlockTwd[32];
  void* dFftBlockTwd[32];
  void* sFftRadixTwd[32];
  void* dFftRadixTwd[32];
  void* sFftAuxTwd[32];
  void* dFftAuxTwd[32];
  void* sRealTwd[32];
  void* dRealTwd[32];
  void* sCcsTwd[32];
  void* dCcsTwd[32];
  void* wRealTwd[32];

  int dftPermLen[32];
  void* dftPermTbl[32];

  // Grown scratch buffers: capacities in elements (4-, 8- and 8-byte).
  int scratchILen[4];
  int scratchCLen[4];
  int scratchZLen[4];
  void* scratchI[4];
  void* scratchC[4];
  void* scratchZ[4];
};

// The calling thread's record, created at first use. Never null: a failed
// creation ends the process with a message.
RyxThreadContext* ryxGetThreadContext();

// Releases every table of the calling thread's record, in the documented
// order: the twiddle lists of each type, the bit-reversal tables, then the
// DCT stage, cosine and fast tables.
void ryxFreeThreadTables();

// Releases of the DCT caches, called by ryxFreeThreadTables.
void ownFreeDctStageTbls();
void ownFreeDctCosTbl();
void ownFreeDctFastTbl();

// Table releases of the transform family (exported routines).
extern "C" {
RYXAPI void ryxcFreeTwdTbls(void);
RYXAPI void ryxzFreeTwdTbls(void);
RYXAPI void ryxvFreeTwdTbls(void);
RYXAPI void ryxFreeBitRevTbls(void);
}
