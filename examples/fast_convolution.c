/* Linear convolution through packed spectra.
 *
 * The l forms keep the spectrum in N floats: RYX_RCPackOut (or
 * RYX_RCPermOut) chooses the layout written by ryx?RealFftl, and
 * RYX_RCPackIn (RYX_RCPermIn) the layout read by ryx?CcsFftl; exactly one
 * of each pair must be given, as must one of RYX_Forward, RYX_Inverse.
 * RCPack: Re X0, Re X1, Im X1, ..., Re X(N/2-1), Im X(N/2-1), Re X(N/2).
 * ryx?MpyRCPack2(src, dst, order) multiplies dst by src as spectra.
 * Zero-padding both signals to N >= lenX + lenH - 1 makes the circular
 * product a linear convolution. */
#include <stdio.h>

#include "ryxcore.h"

int main(void) {
  enum { ORDER = 4, N = 1 << ORDER, LX = 10, LH = 4 };
  const float x[LX] = {1, 2, 3, 4, 5, 5, 4, 3, 2, 1};
  const float h[LH] = {0.25f, 0.25f, 0.25f, 0.25f}; /* moving average of 4 */
  float* bx = ryxsMalloc(N);
  float* bh = ryxsMalloc(N);
  int i, k;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */
  ryxsbZero(bx, N);
  ryxsbZero(bh, N);
  ryxsbCopy(x, bx, LX);
  ryxsbCopy(h, bh, LH);

  ryxsRealFftl(bx, ORDER, RYX_Forward | RYX_RCPackOut); /* in place, N floats */
  ryxsRealFftl(bh, ORDER, RYX_Forward | RYX_RCPackOut);
  ryxsMpyRCPack2(bh, bx, ORDER);                        /* bx = bx * bh */
  ryxsCcsFftl(bx, ORDER, RYX_Inverse | RYX_RCPackIn);   /* back, scaled by 1/N */

  printf(" n   fft-conv   direct\n");
  for (i = 0; i < LX + LH - 1; ++i) {
    double direct = 0.0;
    for (k = 0; k < LH; ++k)
      if (i - k >= 0 && i - k < LX) direct += (double)h[k] * x[i - k];
    printf("%2d %9.4f %8.4f\n", i, bx[i], direct);
  }

  ryxFree(bx);
  ryxFree(bh);
  return 0;
}
