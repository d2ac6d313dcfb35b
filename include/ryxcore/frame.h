/*
 * Library frame: status and error reporting, error modes, version record,
 * aligned memory. Included by ryxcore.h; not meant to be included alone.
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

RYXAPI RyxStatus ryxGetErrStatus(void);
RYXAPI void ryxSetErrStatus(RyxStatus status);
RYXAPI int ryxGetErrMode(void);
RYXAPI void ryxSetErrMode(int mode);
RYXAPI ryxReportFn ryxRedirectError(ryxReportFn fn);
RYXAPI RyxStatus ryxError(RyxStatus status, const char* funcName, const char* context,
                          const char* file, int line);
RYXAPI const char* ryxErrorStr(RyxStatus status);

/* Stock report functions. */
RYXAPI RyxStatus ryxGuiBoxReport(RyxStatus status, const char* funcName, const char* context,
                                 const char* file, int line);
RYXAPI RyxStatus ryxStdErrReport(RyxStatus status, const char* funcName, const char* context,
                                 const char* file, int line);
RYXAPI RyxStatus ryxNulDevReport(RyxStatus status, const char* funcName, const char* context,
                                 const char* file, int line);

RYXAPI const RyxLibVersion* ryxGetLibVersion(void);

/* ---- Aligned memory ---------------------------------------------------- */
/* Every block is aligned to 32 bytes; counts are elements of the named type.
 * The size is computed in 32-bit arithmetic without an overflow check. */

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
