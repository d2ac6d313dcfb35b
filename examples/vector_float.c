/* Vector arithmetic on float and complex arrays.
 *
 * Names: ryx + type letter (s float, d double, c SCplx, z DCplx) + b (an
 * array routine) + operation + shape:
 *   1  dst[i] = dst[i] op val      (in place, with a scalar)
 *   2  dst[i] = dst[i] op src[i]
 *   3  dst[i] = srcA[i] op srcB[i]
 * Arguments: scalar or sources, then dst, then the count n (> 0). The same
 * array may be passed as source and destination. Arrays from ryx?Malloc
 * are 32-byte aligned (faster paths), but any float array works. */
#include <stdio.h>

#include "ryxcore.h"

static void printFloats(const char* what, const float* v, int n) {
  int i;
  printf("%-18s", what);
  for (i = 0; i < n; ++i) printf(" %6g", v[i]);
  printf("\n");
}

int main(void) {
  enum { N = 8 };
  const RyxLibVersion* ver = ryxGetLibVersion();
  float* x = ryxsMalloc(N); /* free with ryxFree */
  float* y = ryxsMalloc(N);
  float* sum = ryxsMalloc(N);
  SCplx* z = ryxcMalloc(N);
  SCplx j = {0.0f, 1.0f};
  int i;

  printf("%s %d.%d.%d (%s)\n", ver->name, ver->major, ver->minor, ver->build, ver->linkage);
  for (i = 0; i < N; ++i) {
    x[i] = (float)i;
    y[i] = 10.0f;
    z[i].re = (float)i;
    z[i].im = 1.0f;
  }
  ryxsbAdd3(x, y, sum, N); /* sum = x + y      -> 10 11 ... 17 */
  printFloats("x + 10:", sum, N);
  ryxsbMpy1(0.5f, sum, N); /* sum *= 0.5       -> 5 5.5 ... 8.5 */
  printFloats("(x + 10) / 2:", sum, N);
  ryxsbSub2(x, sum, N);    /* sum -= x         -> 5 4.5 ... 1.5 */
  printFloats("(10 - x) / 2:", sum, N);
  ryxsbSet(3.0f, y, N);
  ryxsbMpy2(y, x, N);      /* x *= 3           -> 0 3 ... 21 */
  printFloats("3x:", x, N);

  /* Complex: multiply by j turns (re, im) into (-im, re). */
  ryxcbMpy1(j, z, N);
  printf("%-18s", "(i + 1j) * j:");
  for (i = 0; i < N; ++i) printf(" (%g,%g)", z[i].re, z[i].im);
  printf("\n");
  ryxcbConj1(z, N);        /* flips the sign of each imaginary part */
  printf("%-18s (%g,%g) ... (%g,%g)\n", "conjugated:", z[0].re, z[0].im, z[N - 1].re, z[N - 1].im);

  ryxFree(x);
  ryxFree(y);
  ryxFree(sum);
  ryxFree(z);
  return 0;
}
