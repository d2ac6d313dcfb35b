/* Convolution and correlation.
 *
 * ryx?Conv(x, xLen, h, hLen, y) writes the full linear convolution,
 * xLen + hLen - 1 values, and returns a status. It picks a direct sum or a
 * transform method by the operation count for these lengths; the result is
 * the same sum either way, to rounding. ryx?CrossCorr(a, aLen, b, bLen,
 * dst, loLag, hiLag) writes the lags loLag..hiLag, each the sum of a[k]
 * times b[k + lag] over the overlap; ryx?AutoCorr adds biased and unbiased
 * normalisations. */
#include <math.h>
#include <stdio.h>

#include "ryxcore.h"

enum { X = 2000, H = 300, Y = X + H - 1 };

int main(void) {
  static float x[X], h[H], y[Y];
  float lags[13];
  double worst = 0.0;
  int i, k;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */

  for (i = 0; i < X; ++i) x[i] = (float)sin(0.01 * i) + (float)((i * 37) % 11) / 11.0f;
  for (k = 0; k < H; ++k) h[k] = (float)exp(-k / 50.0) / 50.0f;

  /* Long enough for a transform method; compare with the direct sum. */
  if (ryxsConv(x, X, h, H, y) != RYX_StsOk) return 1;
  for (i = 0; i < Y; i += 7) {
    double s = 0.0;
    for (k = 0; k < H; ++k)
      if (i - k >= 0 && i - k < X) s += (double)h[k] * x[i - k];
    if (fabs(s - y[i]) > worst) worst = fabs(s - y[i]);
  }
  printf("conv of %d and %d samples: %d outputs, y[1000] = %.5f, largest difference from the direct sum %.1e\n",
         X, H, Y, y[1000], worst);

  /* Where does b match a? b is a copy of a delayed by 3 samples. */
  {
    float a[64], b[64];
    for (i = 0; i < 64; ++i) a[i] = (float)((i * 29) % 17) - 8.0f;
    for (i = 0; i < 64; ++i) b[i] = i >= 3 ? a[i - 3] : 0.0f;
    int best = 0;
    ryxsCrossCorr(a, 64, b, 64, lags, -6, 6);
    printf("cross-correlation at lags -6..6:");
    for (i = 0; i < 13; ++i) {
      printf(" %.0f", lags[i]);
      if (lags[i] > lags[best]) best = i;
    }
    printf("\npeak at lag %d: b is a delayed by 3\n", best - 6);
  }
  return 0;
}
