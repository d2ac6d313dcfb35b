/* The public header compiles as strict C99 and a C program can link and
 * call the shared library: version, allocation, arithmetic, a report. */
#include <stdio.h>
#include <string.h>

#include "ryxcore.h"

static int g_reports;

static RyxStatus countReport(RyxStatus status, const char* funcName, const char* context,
                             const char* file, int line) {
  (void)funcName; (void)context; (void)file; (void)line;
  ++g_reports;
  return status;
}

int main(void) {
  const RyxLibVersion* v = ryxGetLibVersion();
  float* a = ryxsMalloc(16);
  SCplx c;
  int i, failures = 0;
  if (v->major != 4 || v->minor != 5 || strcmp(v->version, "4.5 ") != 0) ++failures;
  if (a == NULL || ((unsigned long)a & 31u) != 0) return 1;
  for (i = 0; i < 16; ++i) a[i] = (float)i;
  ryxsbAdd1(0.5f, a, 16);
  if (a[15] != 15.5f) ++failures;
  c = ryxcMpy(ryxcSet(1.0f, 2.0f), ryxcSet(3.0f, 4.0f));
  if (c.re != -5.0f || c.im != 10.0f) ++failures;
  ryxSetErrMode(RYX_ErrorModeParent);
  ryxRedirectError(countReport);
  ryxsbAdd1(1.0f, a, 0);
  if (g_reports != 1 || ryxGetErrStatus() != RYX_StsBadArg) ++failures;
  ryxFree(a);
  printf("c interface: %s\n", failures == 0 ? "ok" : "FAILED");
  return failures == 0 ? 0 : 1;
}
