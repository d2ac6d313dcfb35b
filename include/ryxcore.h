/*
 * ryxcore: signal-processing primitives with a flat C interface.
 *
 * This is the one header a caller includes. It defines the sample types,
 * status codes and flags shared by all families, then pulls in the
 * declarations of each subsystem from include/ryxcore/. Valid C99 and C++.
 *
 * Conventions, in brief:
 *  - names are ryx + type letters + 'b' for array routines + operation +
 *    suffixes; s float, d double, w int16, i int32, c SCplx, z DCplx,
 *    v WCplx, j ICplx;
 *  - lengths are signed 32-bit element counts (a complex sample counts one);
 *  - a failed argument check goes through ryxError with the routine's name,
 *    the failing condition as text and the source group, and leaves the
 *    caller's arrays untouched; the status is kept per thread.
 */
#ifndef RYXCORE_H
#define RYXCORE_H

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define RYXAPI __attribute__((visibility("default")))
#else
#define RYXAPI
#endif

/* ---- Sample types ------------------------------------------------------ */

typedef struct SCplx { float re; float im; } SCplx;
typedef struct DCplx { double re; double im; } DCplx;
typedef struct WCplx { short re; short im; } WCplx;
typedef struct ICplx { int re; int im; } ICplx;

/* ---- Status ------------------------------------------------------------ */

/* Signed 32-bit status: 0 success, negative failure. */
typedef int RyxStatus;

enum RyxStatusCode {
  RYX_StsOk = 0,
  RYX_StsBacktrace = -1,     /* trace line after a failed inner call */
  RYX_StsInternal = -3,
  RYX_StsNoMem = -4,
  RYX_StsBadArg = -5,
  RYX_StsUnsupported = -6,
  RYX_StsNoConv = -7,
  RYX_StsAutotrace = -8,
  RYX_DivByZero = -9,        /* returned by the Div family, never stored */
  RYX_StsNullPtr = -10,
  RYX_DivBadLen = -11,       /* returned by the Div family, never stored */
  RYX_StsBadPtr = -12,
  RYX_StsBadStruct = -13,
  RYX_StsBadLen = -14,
  RYX_StsBadFreq = -51,
  RYX_StsBadFreqOrder = -52
};

/* Error modes, per thread. */
enum RyxErrorMode {
  RYX_ErrorModeLeaf = 0,     /* a reported failure ends (or offers to end) the process */
  RYX_ErrorModeParent = 1,   /* report, then return to the caller */
  RYX_ErrorModeSilent = 2    /* store the status only */
};

typedef RyxStatus (*ryxReportFn)(RyxStatus status, const char* funcName,
                                 const char* context, const char* file, int line);

/* ---- 16-bit scale modes ------------------------------------------------ */

enum RyxScaleMode {
  RYX_SATURATE = 1,
  RYX_FIXED_SCALE = 2,
  RYX_AUTO_SCALE = 4
};

/* ---- Transform flags --------------------------------------------------- */

enum RyxTransformFlag {
  RYX_Forward = 1,
  RYX_Inverse = 2,
  RYX_Init = 4,
  RYX_Release = 8,
  RYX_KeepScale = 16,
  RYX_NaturalOrder = 32,
  RYX_InReversed = 64,
  RYX_OutReversed = 128,
  RYX_RCPackOut = 256,
  RYX_RCPermOut = 512,
  RYX_RCPackIn = 1024,
  RYX_RCPermIn = 4096,
  RYX_IntCore = 8192,
  RYX_FloatCore = 16384,
  RYX_FastCore = 32768
};

#ifdef __cplusplus
}
#endif

/* ---- Families ---------------------------------------------------------- */

#include "ryxcore/frame.h"
#include "ryxcore/vector_float.h"
#include "ryxcore/vector_int16.h"
#include "ryxcore/transform.h"
#include "ryxcore/fir.h"
#include "ryxcore/convert.h"
#include "ryxcore/vector_stats.h"
#include "ryxcore/vector_math.h"
#include "ryxcore/vector_lnexp.h"
#include "ryxcore/convert_polar.h"
#include "ryxcore/generate.h"
#include "ryxcore/iir.h"
#include "ryxcore/adaptive.h"
#include "ryxcore/rate.h"
#include "ryxcore/correlate.h"
#include "ryxcore/filter_int16.h"
#include "ryxcore/wavelet.h"
#include "ryxcore/transform_int16.h"
#include "ryxcore/transform_any_length.h"

#endif /* RYXCORE_H */
