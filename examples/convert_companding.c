/* Sample-format conversion and G.711 companding.
 *
 * ryx?bFloatToInt converts to 8, 16 or 32-bit integers. The flags pick one
 * rounding (RYX_RoundNearest: half to even, RYX_RoundZero, RYX_RoundDown,
 * RYX_RoundUp) and what happens out of range: RYX_ClipRange clamps,
 * RYX_RangeError converts everything and then reports; with neither, an
 * out-of-range value is stored in an unspecified way. ryx?bIntToFloat goes
 * back (flags 0: signed). The caller's rounding mode is untouched.
 *
 * Companding maps 16-bit linear samples to 8-bit A-law or mu-law codes
 * and back (the w forms; the i forms take 32-bit samples with full scale
 * 2^31, the s and d forms float and double with full scale 1.0). A code
 * decodes to the middle of its
 * step; steps are fine near zero and coarse near full scale, so the round
 * trip error grows with the value but stays a few percent of it. */
#include <stdio.h>

#include "ryxcore.h"

enum { N = 8 };

int main(void) {
  const float x[N] = {0.5f, 1.5f, 2.5f, -2.5f, 40000.0f, -40000.0f, 123.7f, -0.4f};
  const short lin[N] = {0, 1, 7, 100, 1000, -1000, 10000, 32767};
  short y[N], back[N];
  unsigned char code[N], acode[N];
  int i;

  ryxSetErrMode(RYX_ErrorModeParent); /* report bad arguments, then return */
  ryxRedirectError(ryxStdErrReport);   /* ... on stderr, without a question */

  /* Half to even, clamped to -32768..32767. */
  ryxsbFloatToInt(x, y, N, 16, RYX_RoundNearest | RYX_ClipRange);
  printf("%-24s", "float:");
  for (i = 0; i < N; ++i) printf(" %8.1f", x[i]);
  printf("\n%-24s", "nearest, clipped:");
  for (i = 0; i < N; ++i) printf(" %8d", y[i]);
  ryxsbFloatToInt(x, y, N, 16, RYX_RoundZero | RYX_ClipRange);
  printf("\n%-24s", "toward zero, clipped:");
  for (i = 0; i < N; ++i) printf(" %8d", y[i]);
  printf("\n\n");

  /* mu-law: encode, decode, and compare. */
  ryxwbLinToMuLaw(lin, code, N);
  ryxwbMuLawToLin(code, back, N);
  printf("%-10s %-6s %-8s\n", "linear", "code", "decoded");
  for (i = 0; i < N; ++i) printf("%-10d 0x%02x   %-8d\n", lin[i], code[i], back[i]);

  /* Transcode the mu-law codes to A-law (code by code, a table) and decode. */
  ryxMuLawToALaw(code, acode, N);
  ryxwbALawToLin(acode, back, N);
  printf("\nvia A-law: ");
  for (i = 0; i < N; ++i) printf(" %d", back[i]);
  printf("\n");
  return 0;
}
