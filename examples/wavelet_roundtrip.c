/* Wavelet decomposition and reconstruction.
 *
 * A RyxWtState record (the caller's) holds one transform: precision, filter
 * set, data length and number of levels. ryx?WtInitLen sets it up and says
 * how many values the decomposition has; ryx?WtDecompose writes the
 * approximation of the last level, then the details from the last level
 * down to the first; ryx?WtReconstruct inverts it; ryxWtFree releases the
 * record's arrays. Data is extended periodically at every level. */
#include <math.h>
#include <stdio.h>

#include "ryxcore.h"

enum { N = 1000, LEVELS = 4 };

int main(void) {
  static double x[N], c[2 * N], y[N];
  RyxWtState st;
  int lenDec = 0, i, l;
  double worst = 0.0, detailEnergy = 0.0, total = 0.0;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */

  /* A slow wave: nearly all of it should land in the approximation. */
  for (i = 0; i < N; ++i) x[i] = sin(2.0 * 3.14159265358979323846 * i / 250.0);

  /* Daubechies 2 (wtType 2, par1 2), 1000 samples, 4 levels. */
  if (ryxdWtInitLen(2, 0, N, LEVELS, &st, 2, &lenDec) != RYX_StsOk) return 1;
  ryxdWtDecompose(&st, x, c);
  ryxdWtReconstruct(&st, c, y);
  printf("levels:");
  for (l = 0; l <= LEVELS; ++l) printf(" %d", st.levelLen[l]);
  printf(" samples; %d coefficients in all\n", lenDec);
  for (i = 0; i < lenDec; ++i) {
    total += c[i] * c[i];
    if (i >= st.levelLen[LEVELS]) detailEnergy += c[i] * c[i];
  }
  for (i = 0; i < N; ++i)
    if (fabs(y[i] - x[i]) > worst) worst = fabs(y[i] - x[i]);
  printf("share of the energy in the details: %.2e\n", detailEnergy / total);
  printf("largest round-trip error: %.1e\n", worst);
  ryxWtFree(&st);
  return 0;
}
