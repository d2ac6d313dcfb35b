/* Status codes and error modes.
 *
 * Every routine checks its arguments first. A failed check stores a status
 * for the calling thread and calls the thread's report function. What
 * happens next depends on the thread's error mode:
 *   RYX_ErrorModeLeaf   (the default, in every new thread): the stock
 *                        reports end the process (ryxStdErrReport,
 *                        ryxNulDevReport) or ask whether to (ryxGuiBoxReport);
 *   RYX_ErrorModeParent: report, then return; the caller reads the status;
 *   RYX_ErrorModeSilent: no report, the status is only stored.
 * A program that wants to handle bad arguments itself sets Parent or
 * Silent at the start of each thread that calls the library. */
#include <pthread.h>
#include <stdio.h>

#include "ryxcore.h"

/* A report function of our own: counts reports, prints one line. */
static int reports = 0;
static RyxStatus countingReport(RyxStatus status, const char* funcName, const char* context,
                                const char* file, int line) {
  (void)line;
  ++reports;
  printf("  report %d: %s in %s (%s): \"%s\"\n", reports, ryxErrorStr(status), funcName, file, context);
  return status;
}

static void* threadBody(void* arg) {
  (void)arg;
  /* A new thread starts with its own status and the default mode. */
  printf("new thread: mode %d (Leaf is %d), status %d\n", ryxGetErrMode(), RYX_ErrorModeLeaf,
         ryxGetErrStatus());
  return NULL;
}

int main(void) {
  float x[4] = {1, 2, 3, 4};
  pthread_t t;

  printf("main thread at start: mode %d (Leaf), status %d\n", ryxGetErrMode(), ryxGetErrStatus());

  /* Parent mode with the console report: the report goes to stderr and the
   * call returns without touching x. */
  fflush(stdout);
  ryxSetErrMode(RYX_ErrorModeParent);
  ryxRedirectError(ryxStdErrReport);
  ryxsbAdd1(1.0f, x, 0);
  printf("ryxsbAdd1(1, x, 0): status %d \"%s\", x[0] still %g\n", ryxGetErrStatus(),
         ryxErrorStr(ryxGetErrStatus()), x[0]);

  /* The stored status stays until cleared: a later success does not reset it. */
  ryxsbAdd1(1.0f, x, 4);
  printf("after a good call: status still %d; x[0] now %g\n", ryxGetErrStatus(), x[0]);
  ryxSetErrStatus(RYX_StsOk);

  /* Our own report function sees every failure: routine, condition, source group. */
  ryxRedirectError(countingReport);
  ryxsbAdd2(NULL, x, 4);
  ryxsbCopy(x, x, -3);

  /* Silent mode: the stock reports print nothing; the status is still kept. */
  ryxRedirectError(NULL); /* back to the default report */
  ryxSetErrMode(RYX_ErrorModeSilent);
  ryxsbMpy1(2.0f, NULL, 4);
  printf("silent: status %d \"%s\"\n", ryxGetErrStatus(), ryxErrorStr(ryxGetErrStatus()));

  /* Modes are per thread: the new thread does not see Silent. */
  pthread_create(&t, NULL, threadBody, NULL);
  pthread_join(t, NULL);
  return 0;
}
