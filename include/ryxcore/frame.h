/*
 * Library frame: status and error reporting, error modes, version record,
 * aligned memory. Included by ryxcore.h; not meant to be included alone.
 *
 * Everything here is per thread: the stored status, the error mode and the
 * report function. Each thread starts with status 0, RYX_ErrorModeLeaf and
 * ryxGuiBoxReport; a program that handles failures itself calls, first
 * thing in every thread that uses the library,
 *     ryxSetErrMode(RYX_ErrorModeParent);   (or RYX_ErrorModeSilent)
 *     ryxRedirectError(ryxStdErrReport);    (or a function of its own)
 * A failed argument check stores its status and calls the report function;
 * in Leaf mode the stock functions end the process (exit code 1).
 */
#ifndef RYXCORE_FRAME_H
#define RYXCORE_FRAME_H

#ifdef __cplusplus
extern "C" {
#endif

/* Static, read-only version record shared by all threads. */
typedef struct RyxLibVersion {
  int major;
  int minor;
  int build;
  const char* name;
  const char* version;
  const char* internalVersion;
  const char* buildDate;
  const char* linkage;
} RyxLibVersion;

/* ---- Status and reports (per thread) ---------------------------------- */
/* ryxGetErrStatus: the last stored status. A later success does not clear
 * it; ryxSetErrStatus(RYX_StsOk) does (it stores any value, reports nothing).
 * ryxSetErrMode stores the mode unchecked. ryxRedirectError installs fn for
 * the calling thread and returns the previous function; NULL restores
 * ryxGuiBoxReport. ryxError(status, ...): RYX_StsBacktrace and
 * RYX_StsAutotrace leave the stored status alone, 0 is stored and returns
 * without a report, anything else is stored and reported; it returns what
 * the report function returns. ryxErrorStr returns static text, never NULL. */

RYXAPI RyxStatus ryxGetErrStatus(void);
RYXAPI void ryxSetErrStatus(RyxStatus status);
RYXAPI int ryxGetErrMode(void);
RYXAPI void ryxSetErrMode(int mode);
RYXAPI ryxReportFn ryxRedirectError(ryxReportFn fn);
RYXAPI RyxStatus ryxError(RyxStatus status, const char* funcName, const char* context,
                          const char* file, int line);
RYXAPI const char* ryxErrorStr(RyxStatus status);

/* Stock report functions; each returns the status it was given.
 *  ryxGuiBoxReport: prints the report and a question on stderr and reads
 *    the answer from /dev/tty (none: the default answer). Leaf mode asks
 *    whether to end the process (default yes), Parent mode whether to go on
 *    (default OK). Silent mode: nothing.
 *  ryxStdErrReport: one report on stderr; in Leaf mode then exits with 1.
 *  ryxNulDevReport: no output; in Leaf mode exits with 1. */
RYXAPI RyxStatus ryxGuiBoxReport(RyxStatus status, const char* funcName, const char* context,
                                 const char* file, int line);
RYXAPI RyxStatus ryxStdErrReport(RyxStatus status, const char* funcName, const char* context,
                                 const char* file, int line);
RYXAPI RyxStatus ryxNulDevReport(RyxStatus status, const char* funcName, const char* context,
                                 const char* file, int line);

/* Static record, shared by all threads; never free it. */
RYXAPI const RyxLibVersion* ryxGetLibVersion(void);

/* ---- Aligned memory ---------------------------------------------------- */
/* Every block is aligned to 32 bytes; counts are elements of the named type
 * (ryxMalloc counts bytes). The size is computed in 32-bit arithmetic
 * without an overflow check; the contents are not zeroed; a count of 0
 * gives a valid block. NULL means no memory; nothing is reported. Release
 * with ryxFree only (never free()), from any thread; ryxFree(NULL) does
 * nothing. No routine requires aligned arrays: aligned ones may take a
 * faster path with the same result. */

RYXAPI void* ryxMalloc(unsigned int len);
RYXAPI short* ryxwMalloc(unsigned int len);
RYXAPI float* ryxsMalloc(unsigned int len);
RYXAPI int* ryxiMalloc(unsigned int len);
RYXAPI WCplx* ryxvMalloc(unsigned int len);
RYXAPI double* ryxdMalloc(unsigned int len);
RYXAPI SCplx* ryxcMalloc(unsigned int len);
RYXAPI ICplx* ryxjMalloc(unsigned int len);
RYXAPI DCplx* ryxzMalloc(unsigned int len);
RYXAPI void ryxFree(void* ptr);

#ifdef __cplusplus
}
#endif

#endif /* RYXCORE_FRAME_H */
