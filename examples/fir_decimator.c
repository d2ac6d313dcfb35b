/* A FIR decimator: filter and keep one output in four.
 *
 * ryx?FirInitMr(taps, tapsLen, history, upFactor, upPhase, downFactor,
 * downPhase, state) sets up a multirate filter. With upFactor 1 and
 * downFactor D a block call ryx?bFir(state, src, dst, numIters) reads
 * numIters*D samples and writes numIters outputs: output m is the filter
 * output at input tick m*D + downPhase. (With upFactor U > 1 the input is
 * seen as zero-stuffed by U and each call writes numIters*U outputs.)
 * The same is available with caller-owned records: ryx?FirlInitMr. */
#include <stdio.h>

#include "ryxcore.h"

enum { TAPS = 8, D = 4, OUT = 6 };

int main(void) {
  /* Moving average of 8: a simple lowpass that is easy to check by hand. */
  float taps[TAPS], x[OUT * D], y[OUT];
  RyxFirState st;
  int i, k;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */
  for (k = 0; k < TAPS; ++k) taps[k] = 1.0f / TAPS;
  for (i = 0; i < OUT * D; ++i) x[i] = (float)i; /* a ramp 0, 1, 2, ... */

  ryxsFirInitMr(taps, TAPS, NULL, 1, 0, D, 0, &st); /* up 1, down D, phase 0 */
  ryxsbFir(&st, x, y, OUT);                          /* reads OUT*D, writes OUT */
  ryxFirFree(&st);

  printf(" m  tick   y[m]   direct sum over x[tick-7 .. tick] / 8\n");
  for (i = 0; i < OUT; ++i) {
    int tick = i * D;
    double direct = 0.0;
    for (k = 0; k < TAPS; ++k)
      if (tick - k >= 0) direct += (double)taps[k] * x[tick - k];
    printf("%2d %5d %7.3f %7.3f\n", i, tick, y[i], direct);
  }
  return 0;
}
