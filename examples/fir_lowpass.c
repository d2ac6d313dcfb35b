/* A FIR lowpass, high-level form.
 *
 * Call sequence: ryx?FirInit (allocates copies of the taps and a history
 * inside the RyxFirState), then any number of ryx?Fir (one sample) or
 * ryx?bFir (a block) calls, then ryxFirFree. The state carries the history
 * from block to block, so a long signal can be fed in pieces of any size.
 * ryx?bFir reads its source in place while writing: src and dst must be
 * different arrays. Taps: taps[0] multiplies the newest sample.
 * (The low-level ryx?Firl forms do the same on records and arrays the
 * caller owns: ryx?FirlInit, ryx?FirlInitDlyl, ryx?FirlSetDlyl, ryx?bFirl.) */
#include <math.h>
#include <stdio.h>

#include "ryxcore.h"

enum { TAPS = 41, LEN = 1000, BLOCK = 128 };

static double rms(const float* v, int n) {
  double s = 0.0;
  int i;
  for (i = 0; i < n; ++i) s += (double)v[i] * v[i];
  return sqrt(s / n);
}

int main(void) {
  const double pi = 3.14159265358979323846, cutoff = 0.1; /* in cycles per sample */
  float taps[TAPS];
  static float x[LEN], low[LEN], y[LEN];
  RyxFirState st;
  int i, done;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */
  /* Windowed sinc (Hamming window), unit gain at DC. */
  for (i = 0; i < TAPS; ++i) {
    double m = i - (TAPS - 1) / 2.0;
    double sinc = (m == 0.0) ? 2.0 * cutoff : sin(2.0 * pi * cutoff * m) / (pi * m);
    taps[i] = (float)(sinc * (0.54 - 0.46 * cos(2.0 * pi * i / (TAPS - 1))));
  }

  /* A tone at 0.02 (passes) plus a tone at 0.3 cycles/sample (stopped). */
  for (i = 0; i < LEN; ++i) {
    low[i] = (float)sin(2.0 * pi * 0.02 * i);
    x[i] = low[i] + (float)sin(2.0 * pi * 0.3 * i);
  }

  ryxsFirInit(taps, TAPS, NULL, &st); /* NULL history: start from silence */
  for (done = 0; done < LEN; done += BLOCK) {
    int n = (LEN - done < BLOCK) ? LEN - done : BLOCK;
    ryxsbFir(&st, x + done, y + done, n); /* blocks of any size continue the stream */
  }
  ryxFirFree(&st);

  /* After the first TAPS samples the output is the low tone, delayed by
   * (TAPS-1)/2 = 20 samples. */
  printf("rms of input               %.3f\n", rms(x + TAPS, LEN - TAPS));
  printf("rms of the low tone alone  %.3f\n", rms(low + TAPS, LEN - TAPS));
  printf("rms of output              %.3f\n", rms(y + TAPS, LEN - TAPS));
  printf("y[500] = %.4f, low tone 20 samples earlier = %.4f\n", y[500], low[480]);
  return 0;
}
