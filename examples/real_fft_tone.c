/* Spectrum of a tone by the real FFT, and back.
 *
 * Real transforms come in pairs: ryx?RealFft* takes N = 2^order real
 * samples to a packed spectrum; ryx?CcsFft* takes a packed spectrum back to
 * N real samples. The flags choose the sign of the exponent:
 *   RealFft with RYX_Forward: X[k] = sum x[n] exp(-2 pi i nk/N), unscaled;
 *   CcsFft with RYX_Inverse:  x[n] = 1/N sum X[k] exp(+2 pi i nk/N),
 * so the pair above gives the signal back. The forms without l write RCCs:
 * N/2+1 complex values, N+2 floats, so an in-place buffer needs N+2 floats.
 * Tables are built for the thread on the first call of an order; a call
 * with RYX_Init builds them ahead of time (and takes no samples). */
#include <math.h>
#include <stdio.h>

#include "ryxcore.h"

int main(void) {
  enum { ORDER = 6, N = 1 << ORDER };
  const double pi = 3.14159265358979323846;
  float* buf = ryxsMalloc(N + 2); /* N samples in, N+2 spectrum values out */
  float* orig = ryxsMalloc(N);
  double maxErr = 0.0;
  int n, k;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */
  ryxsRealFft(NULL, ORDER, RYX_Init); /* build the tables now, outside any loop */

  /* 3 + 2 cos(2 pi 5 n / N): a constant and a tone on bin 5. */
  for (n = 0; n < N; ++n) orig[n] = buf[n] = (float)(3.0 + 2.0 * cos(2.0 * pi * 5.0 * n / N));

  ryxsRealFft(buf, ORDER, RYX_Forward);
  printf("|X[k]| for k = 0 .. N/2 (expect %d at k=0 and %d at k=5):\n", 3 * N, N);
  for (k = 0; k <= N / 2; ++k) {
    double re = buf[2 * k], im = buf[2 * k + 1];
    double mag = sqrt(re * re + im * im);
    printf("%8.2f%s", mag, (k % 8 == 7) ? "\n" : " ");
  }
  printf("\n");

  /* Back to samples: CcsFft with RYX_Inverse reads RCCs and scales by 1/N. */
  ryxsCcsFft(buf, ORDER, RYX_Inverse);
  for (n = 0; n < N; ++n) {
    double e = fabs((double)buf[n] - (double)orig[n]);
    if (e > maxErr) maxErr = e;
  }
  printf("round trip: largest difference %.2g\n", maxErr);

  /* Optional: give this order's tables back (they are freed at thread end anyway). */
  ryxsRealFft(NULL, ORDER, RYX_Release);
  ryxsCcsFft(NULL, ORDER, RYX_Release);
  ryxFree(buf);
  ryxFree(orig);
  return 0;
}
