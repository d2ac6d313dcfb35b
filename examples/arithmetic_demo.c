/* A first look at ryxcore from C: the version record, arithmetic on
 * aligned arrays, and how a bad argument is reported in Parent mode. */
#include <stdio.h>

#include "ryxcore.h"

int main(void) {
  const RyxLibVersion* v = ryxGetLibVersion();
  const int n = 8;
  float* x = ryxsMalloc(n);
  float* y = ryxsMalloc(n);
  SCplx* z = ryxcMalloc(n);
  SCplx w = {0.0f, 1.0f};
  int i;

  printf("%s %d.%d.%d version \"%s\" %s built %s (%s)\n", v->name, v->major, v->minor, v->build,
         v->version, v->internalVersion, v->buildDate, v->linkage);

  for (i = 0; i < n; ++i) {
    x[i] = (float)i;
    y[i] = 0.5f * (float)i;
    z[i].re = (float)i;
    z[i].im = 1.0f;
  }
  ryxsbMpy1(2.0f, x, n);   /* x = 2i      */
  ryxsbAdd2(y, x, n);      /* x = 2.5i    */
  ryxcbMpy1(w, z, n);      /* z = z * j   */
  printf("x:");
  for (i = 0; i < n; ++i) printf(" %g", x[i]);
  printf("\nz * j:");
  for (i = 0; i < n; ++i) printf(" (%g,%g)", z[i].re, z[i].im);
  printf("\n\n");

  /* Parent mode: a bad argument is reported on stderr, then control comes
   * back with the status stored for this thread. */
  fflush(stdout); /* keep the report below what was printed so far */
  ryxSetErrMode(RYX_ErrorModeParent);
  ryxRedirectError(ryxStdErrReport);
  ryxsbAdd2(y, NULL, n);
  printf("after ryxsbAdd2(y, NULL, n): status %d \"%s\"\n", ryxGetErrStatus(),
         ryxErrorStr(ryxGetErrStatus()));

  ryxFree(x);
  ryxFree(y);
  ryxFree(z);
  return 0;
}
