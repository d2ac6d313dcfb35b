/* Transforms of any length: the direct DFT, the Goertzel filter, the DCT.
 *
 * ryxcDft(src, dst, n, RYX_Forward) transforms any n (not only powers of
 * two); RYX_Inverse goes back and divides by n. src and dst must differ.
 * A Goertzel record tracks one bin, at relative frequency freq, sample by
 * sample or a block at a time: the cheap way to watch a few tones. ryx?Dct
 * is the orthonormal DCT-II (RYX_Forward) and its inverse (RYX_Inverse),
 * any length, in place allowed. */
#include <math.h>
#include <stdio.h>

#include "ryxcore.h"

enum { N = 1000 };

int main(void) {
  static SCplx x[N], X[N];
  static float r[N], d[N];
  RyxGoertzF32State g;
  SCplx bin;
  const double pi = 3.14159265358979323846;
  int i, peak = 0;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */

  /* 1000 samples of a tone at 37 cycles per 1000 samples. */
  for (i = 0; i < N; ++i) {
    x[i].re = (float)cos(2.0 * pi * 37.0 * i / N);
    x[i].im = 0.0f;
    r[i] = x[i].re;
  }
  ryxcDft(x, X, N, RYX_Forward);
  for (i = 1; i < N / 2; ++i)
    if (hypot(X[i].re, X[i].im) > hypot(X[peak].re, X[peak].im)) peak = i;
  printf("DFT of 1000 points: peak at bin %d, |X| = %.1f (N/2 = 500 expected)\n", peak,
         hypot(X[peak].re, X[peak].im));

  /* The same bin through a Goertzel filter, and a bin with no tone. */
  ryxsGoertzInit(37.0f / N, &g);
  bin = ryxsbGoertz(&g, r, N);
  printf("Goertzel at bin 37: |X| = %.1f;", hypot(bin.re, bin.im));
  ryxsGoertzInit(100.0f / N, &g);
  bin = ryxsbGoertz(&g, r, N);
  printf(" at bin 100: |X| = %.1e\n", hypot(bin.re, bin.im));

  /* Orthonormal DCT and back, in place. */
  for (i = 0; i < N; ++i) d[i] = r[i];
  ryxsDct(d, d, N, RYX_Forward);
  ryxsDct(d, d, N, RYX_Inverse);
  {
    double worst = 0.0;
    for (i = 0; i < N; ++i)
      if (fabs(d[i] - r[i]) > worst) worst = fabs(d[i] - r[i]);
    printf("DCT of 1000 points and back: largest difference %.1e\n", worst);
  }
  return 0;
}
