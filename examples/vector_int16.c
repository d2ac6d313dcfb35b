/* 16-bit arithmetic and its scale modes.
 *
 * The w (short) and v (WCplx) routines compute the exact result, then
 * bring it back to 16 bits as the trailing scaleMode says:
 *   0               wrap: keep the low 16 bits;
 *   RYX_SATURATE    clamp to -32768 .. 32767;
 *   RYX_FIXED_SCALE shift right by *scaleFactor (rounding toward minus
 *                   infinity); with RYX_SATURATE added, also clamp;
 *   RYX_AUTO_SCALE  choose the least right shift that makes every result
 *                   fit and write it to *scaleFactor.
 * A negative factor shifts left. */
#include <stdio.h>

#include "ryxcore.h"

static void show(const char* what, const short* v, int n, int factor) {
  int i;
  printf("%-30s", what);
  for (i = 0; i < n; ++i) printf(" %6d", v[i]);
  if (factor != -99) printf("   (factor %d)", factor);
  printf("\n");
}

int main(void) {
  enum { N = 5 };
  const short a[N] = {30000, -30000, 1000, 20000, -1};
  const short b[N] = {10000, -10000, 2000, 20000, -1};
  short out[N];
  int factor = 0;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */
  show("a:", a, N, -99);
  show("b:", b, N, -99);

  ryxwbAdd3(a, b, out, N, 0, NULL);            /* 40000 wraps to -25536 */
  show("a + b, wrap:", out, N, -99);
  ryxwbAdd3(a, b, out, N, RYX_SATURATE, NULL); /* 40000 clamps to 32767 */
  show("a + b, saturate:", out, N, -99);

  factor = 1;                                  /* (a + b) >> 1 */
  ryxwbAdd3(a, b, out, N, RYX_FIXED_SCALE | RYX_SATURATE, &factor);
  show("a + b, >> 1 and saturate:", out, N, factor);

  ryxwbMpy3(a, b, out, N, RYX_AUTO_SCALE, &factor); /* 3e8 needs a shift of 14 */
  show("a * b, auto scale:", out, N, factor);
  printf("  check: 30000 * 10000 / 2^%d = %d\n", factor, (int)((30000L * 10000L) >> factor));

  /* Division (dst = srcA / srcB) returns a status of its own. A zero
   * divisor is also reported like a bad argument (in Leaf mode that ends
   * the process), so here it runs in Silent mode: the quotient of 2/0
   * becomes the largest float, the other elements are divided as usual. */
  {
    float num[3] = {1, 2, 3}, den[3] = {2, 0, 4}, q[3];
    RyxStatus st;
    ryxSetErrMode(RYX_ErrorModeSilent);
    st = ryxsbDiv3(num, den, q, 3);
    printf("ryxsbDiv3: returned %d (RYX_DivByZero), stored %d; q = %g %g %g\n", st,
           ryxGetErrStatus(), q[0], q[1], q[2]);
  }
  return 0;
}
