/* An IIR lowpass as a cascade of biquads, high-level form.
 *
 * Call sequence: ryx?IirInitBq (the record must be zeroed first; it
 * allocates its own copy of the taps and a zeroed delay line), then any
 * number of ryx?Iir (one sample) or ryx?bIir (a block) calls, then
 * ryxIirFree. Taps: six per section, b0 b1 b2 a0 a1 a2, for
 * H(z) = (b0 + b1 z^-1 + b2 z^-2) / (a0 + a1 z^-1 + a2 z^-2); the caller's
 * array is left as it was. (ryx?IirInit takes one section of any order:
 * b[0..order] then a[0..order]. The low-level ryx?Iirl forms work on
 * records and a delay line the caller owns.) */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "ryxcore.h"

enum { LEN = 4000, SECTIONS = 2 };

/* Bilinear-transform Butterworth lowpass biquad with quality q at cut-off
 * fc (cycles per sample). */
static void lowpass(float* t, double fc, double q) {
  const double pi = 3.14159265358979323846;
  double w = 2.0 * pi * fc, alpha = sin(w) / (2.0 * q), c = cos(w);
  t[0] = (float)((1.0 - c) / 2.0);
  t[1] = (float)(1.0 - c);
  t[2] = (float)((1.0 - c) / 2.0);
  t[3] = (float)(1.0 + alpha);
  t[4] = (float)(-2.0 * c);
  t[5] = (float)(1.0 - alpha);
}

static double gainAt(RyxIirState* st, double f) {
  static float x[LEN], y[LEN];
  double in = 0.0, out = 0.0;
  int i;
  for (i = 0; i < LEN; ++i) x[i] = (float)sin(2.0 * 3.14159265358979323846 * f * i);
  ryxsbIir(st, x, y, LEN);
  for (i = LEN / 2; i < LEN; ++i) { /* past the transient */
    in += (double)x[i] * x[i];
    out += (double)y[i] * y[i];
  }
  return sqrt(out / in);
}

int main(void) {
  float taps[6 * SECTIONS];
  RyxIirState st;
  const double freqs[] = {0.01, 0.05, 0.1, 0.2, 0.4};
  int i;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */
  /* Fourth-order Butterworth at 0.05: two sections, q 0.5412 and 1.3066. */
  lowpass(taps, 0.05, 0.5411961);
  lowpass(taps + 6, 0.05, 1.3065630);

  memset(&st, 0, sizeof st);
  ryxsIirInitBq(0, taps, SECTIONS, &st);
  printf("4th-order Butterworth lowpass, cut-off 0.05 cycles/sample\n");
  printf("%-12s %-10s %s\n", "frequency", "gain", "expected 1/sqrt(1+(tan(pi f)/tan(pi fc))^8)");
  for (i = 0; i < 5; ++i) {
    double f = freqs[i], r = tan(3.14159265358979323846 * f) / tan(3.14159265358979323846 * 0.05);
    printf("%-12.2f %-10.5f %.5f\n", f, gainAt(&st, f), 1.0 / sqrt(1.0 + pow(r, 8.0)));
  }
  ryxIirFree(&st);
  return 0;
}
