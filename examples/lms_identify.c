/* An LMS adaptive filter learning an unknown system, high-level form.
 *
 * Call sequence: ryx?LmsInit (allocates the taps and the delay line inside
 * a RyxLmsState; null taps and history start from zeros), then blocks of
 * ryx?bLmsDes, which filter the input and adapt the taps toward a desired
 * signal, then ryx?LmsGetTaps to read what was learned, then ryxLmsFree.
 * GetTaps takes the record out of filter mode: call ryx?LmsSetTaps before
 * filtering again. (ryx?Lms and ryx?bLms take the caller's own error
 * instead of a desired signal; the low-level ryx?Lmsl forms run on records
 * and arrays the caller owns.) Each step updates
 *   taps[i] = taps[i]*(1 - leak) + x[i]*err*step,
 * with err the desired value less the output. */
#include <math.h>
#include <stdio.h>

#include "ryxcore.h"

enum { TAPS = 4, LEN = 20000, BLOCK = 1000 };

int main(void) {
  /* The unknown system: a short FIR. */
  const float plant[TAPS] = {0.5f, -0.3f, 0.2f, 0.1f};
  static float x[LEN], d[LEN], y[LEN];
  float learned[TAPS];
  RyxLmsState st;
  RyxRandUniF32State noise;
  double e2 = 0.0;
  int i, k;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */

  /* White input in [-1, 1); the desired signal is the plant's output. */
  ryxsRandUniInit(11.0f, -1.0f, 1.0f, &noise);
  ryxsbRandUni(&noise, x, LEN);
  for (i = 0; i < LEN; ++i) {
    d[i] = 0.0f;
    for (k = 0; k < TAPS && k <= i; ++k) d[i] += plant[k] * x[i - k];
  }

  /* lmsType 0, no initial taps or history, step 0.05, no leak, error delay 0. */
  ryxsLmsInit(0, NULL, TAPS, NULL, 0.05f, 0.0f, 0, &st);
  for (i = 0; i < LEN; i += BLOCK) ryxsbLmsDes(&st, x + i, d + i, y + i, BLOCK);
  ryxsLmsGetTaps(&st, learned);
  ryxLmsFree(&st);

  for (i = LEN - 1000; i < LEN; ++i) e2 += (double)(d[i] - y[i]) * (d[i] - y[i]);
  printf("%-8s %-8s %s\n", "tap", "plant", "learned");
  for (k = 0; k < TAPS; ++k) printf("%-8d %-8.4f %.4f\n", k, plant[k], learned[k]);
  printf("rms error over the last 1000 samples: %.2e\n", sqrt(e2 / 1000.0));
  return 0;
}
