/* Statistics, norms, dot products and elementwise math on float arrays.
 *
 * Reductions (ryx?Mean, ryx?StdDev, ryx?Max/MinExt, ryx?Norm,
 * ryx?DotProd) return their result; a refused call returns 0. ryx?Norm
 * takes a second array (the norm of the difference) or null, and one of
 * RYX_C, RYX_L1, RYX_L2, RYX_L2SQUARED. Elementwise routines come in two
 * forms: ...1 works in place, ...2 reads src and writes dst. ryxsbSqrt
 * and ryxsbLn report negative (and, for Ln, zero) inputs after computing
 * every element. */
#include <stdio.h>

#include "ryxcore.h"

enum { N = 6 };

static void show(const char* what, const float* v) {
  int i;
  printf("%-22s", what);
  for (i = 0; i < N; ++i) printf(" %9.4f", v[i]);
  printf("\n");
}

int main(void) {
  const float a[N] = {1.0f, 4.0f, 9.0f, 16.0f, 25.0f, 36.0f};
  const float b[N] = {1.0f, -1.0f, 1.0f, -1.0f, 1.0f, -1.0f};
  float out[N];
  int at = -1;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */

  show("a:", a);
  printf("mean %.4f, standard deviation %.4f\n", ryxsMean(a, N), ryxsStdDev(a, N));
  printf("max %.1f at index ", ryxsMaxExt(a, N, &at));
  printf("%d\n", at);
  printf("L1 norm %.1f, L2 norm %.4f, L2 norm of a - b %.4f\n", ryxsNorm(a, NULL, N, RYX_L1),
         ryxsNorm(a, NULL, N, RYX_L2), ryxsNorm(a, b, N, RYX_L2));
  printf("dot(a, b) = %.1f (1 - 4 + 9 - 16 + 25 - 36 = -21)\n\n", ryxsDotProd(a, b, N));

  ryxsbSqrt2(a, out, N);
  show("sqrt(a):", out);
  ryxsbLn2(a, out, N);
  show("ln(a):", out);
  ryxsbExp1(out, N); /* in place: back to a */
  show("exp(ln(a)):", out);
  ryxsbThresh2(a, out, N, 10.0f, RYX_GT); /* values above 10 become 10 */
  show("a clipped above 10:", out);
  return 0;
}
