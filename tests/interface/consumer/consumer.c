/* Built outside the library's tree: includes the installed header, links
 * the installed library, and checks a few results that follow from the
 * routines' definitions. Prints the library version; exits 0 on success. */
#include <stdio.h>

#include "ryxcore.h"

int main(void) {
  const RyxLibVersion* v = ryxGetLibVersion();
  float* a = ryxsMalloc(8);
  float* b = ryxsMalloc(8);
  float* c = ryxsMalloc(8);
  int i, bad = 0;

  if (!a || !b || !c || ((unsigned long)a & 31u) != 0) bad |= 1;
  for (i = 0; i < 8 && !bad; ++i) {
    a[i] = (float)i;
    b[i] = (float)(8 - i);
  }
  if (!bad) ryxsbAdd3(a, b, c, 8);
  for (i = 0; i < 8 && !bad; ++i)
    if (c[i] != 8.0f) bad |= 2;

  /* A bad argument in Silent mode: nothing printed, status kept. */
  ryxSetErrMode(RYX_ErrorModeSilent);
  ryxsbAdd3(a, b, NULL, 8);
  if (ryxGetErrStatus() != RYX_StsBadArg) bad |= 4;

  ryxFree(a);
  ryxFree(b);
  ryxFree(c);
  printf("ryxcore %d.%d.%d %s\n", v->major, v->minor, v->build, bad ? "FAILED" : "ok");
  return bad;
}
