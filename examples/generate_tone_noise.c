/* Tones, noise and windows.
 *
 * Generators run on records the caller allocates (nothing to free): an
 * Init fills the record, then single calls (ryx?Tone) and blocks
 * (ryx?bTone) continue one sequence in any mix. A tone is
 * mag*cos(2*pi*freq*k + phase), freq in cycles per sample (0 <= freq < 0.5).
 * Noise is repeatable: the same seed gives the same samples. Windows
 * multiply an array in place (ryx?WinHann) or source to destination
 * (ryx?WinHann2). */
#include <math.h>
#include <stdio.h>

#include "ryxcore.h"

enum { N = 4096 };

int main(void) {
  static float tone[N], win[N];
  static double noise[N];
  RyxToneF32State ts;
  RyxRandGausF64State gs;
  double mean = 0.0, var = 0.0, err = 0.0;
  int i;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */

  /* 1 kHz at 8 kHz sampling: freq 0.125, magnitude 2, phase 0. */
  ryxsToneInit(0.125f, 0.0f, 2.0f, &ts);
  tone[0] = ryxsTone(&ts);             /* one sample ... */
  ryxsbTone(&ts, tone + 1, N - 1);     /* ... then the rest in a block */
  for (i = 0; i < N; ++i) {
    double e = fabs(tone[i] - 2.0 * cos(2.0 * 3.14159265358979323846 * 0.125 * i));
    if (e > err) err = e;
  }
  printf("tone: first samples %.4f %.4f %.4f %.4f, largest error over %d: %.2e\n", tone[0], tone[1],
         tone[2], tone[3], N, err);

  /* Hann window of the tone: the ends go to zero, the middle keeps its value. */
  ryxsWinHann2(tone, win, N);
  printf("Hann-windowed: win[0] %.4f, win[N/2] %.4f (tone %.4f)\n", win[0], win[N / 2], tone[N / 2]);

  /* Gaussian noise, mean 1, standard deviation 0.5, seed 7. */
  ryxdRandGausInit(7.0, 1.0, 0.5, &gs);
  ryxdbRandGaus(&gs, noise, N);
  for (i = 0; i < N; ++i) mean += noise[i];
  mean /= N;
  for (i = 0; i < N; ++i) var += (noise[i] - mean) * (noise[i] - mean);
  printf("noise: mean %.3f (1), standard deviation %.3f (0.5) over %d samples\n", mean, sqrt(var / (N - 1)), N);
  return 0;
}
