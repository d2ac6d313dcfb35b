/* Rate change: down-sampling, the resampling filter and the median filter.
 *
 * ryx?DownSample keeps every factor-th sample and carries its position in
 * the caller's phase variable, so a stream may be cut anywhere.
 * ryx?SampInit designs one lowpass row per expected ratio into a record
 * the caller allocates; ryx?Samp then converts srcLen samples to dstLen at
 * the nearest rational ratio (44100 to 48000 runs at 160/147) and keeps its
 * history between calls; ryxSampFree releases it. The rows are lowpass
 * filters of unit gain at the high rate, so the output comes out scaled by
 * 1/up (zeros were inserted): multiply by up to keep the level.
 * ryx?bMedianFilter1
 * replaces each sample by the median of the mask around it (ends extended
 * by repeating the first and last sample). */
#include <math.h>
#include <stdio.h>

#include "ryxcore.h"

enum { IN = 4410, OUT = 4800 };

int main(void) {
  static float src[IN], dst[OUT];
  float picked[8], noisy[12] = {1, 1, 9, 1, 2, 2, -7, 2, 3, 3, 3, 40};
  const float factors[1] = {(float)IN / OUT}, freqs[1] = {0.003f};
  RyxSampState st = {0};
  int i, n = 0, phase = 1, rc;
  const double pi = 3.14159265358979323846;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */

  for (i = 0; i < 24; ++i) src[i] = (float)i;
  ryxsDownSample(src, 24, picked, &n, 3, &phase); /* src[1], src[4], ... */
  printf("down by 3 from phase 1: %d samples:", n);
  for (i = 0; i < n; ++i) printf(" %.0f", picked[i]);
  printf(", next phase %d\n", phase);

  /* A 441 Hz tone at 44100 samples/s, resampled to 48000 (blocks of 0.1 s). */
  for (i = 0; i < IN; ++i) src[i] = (float)sin(2.0 * pi * 441.0 * i / 44100.0);
  rc = ryxsSampInit(&st, factors, freqs, 1, 2560); /* 16 taps per branch */
  if (rc != 0) return 1;
  ryxsSamp(&st, src, IN, dst, OUT); /* the first block fills the filter's history */
  ryxsSamp(&st, src, IN, dst, OUT); /* the tone continues (441 Hz repeats every 0.1 s) */
  {
    double peak = 0.0;
    for (i = OUT / 2; i < OUT; ++i)
      if (fabs(dst[i]) > peak) peak = fabs(dst[i]);
    printf("resampled 44100 -> 48000: peak %.5f = 1/%.1f; times 160: %.3f\n", peak, 1.0 / peak, 160.0 * peak);
  }
  ryxSampFree(&st);

  ryxsbMedianFilter1(noisy, 12, 3);
  printf("median of 3 over 1 1 9 1 2 2 -7 2 3 3 3 40:");
  for (i = 0; i < 12; ++i) printf(" %.0f", noisy[i]);
  printf("\n");
  return 0;
}
