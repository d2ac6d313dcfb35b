// Status, error modes and the three stock report functions.
//
// ryxError stores the status (trace statuses excepted) and hands the report
// to the thread's report function; it never looks at the mode itself, so
// ending the process is the report function's decision alone.
#include <cstdio>
#include <cstdlib>

#include "frame/process_exit.h"
#include "frame/thread_context.h"
#include "ryxcore.h"

namespace {

constexpr const char* kUnknown = "Unknown error or status code";

// Indexed by status + 14; the gaps at -2, -9 and -11 hold the fallback.
constexpr const char* kStatusWords[15] = {
    "Bad vector length",             // -14
    "Bad data structure",            // -13
    "Bad pointer",                   // -12
    kUnknown,                        // -11
    "Null pointer",                  // -10
    kUnknown,                        // -9
    "Autotrace call",                // -8
    "Iteration convergence failed",  // -7
    "Unsupported function",          // -6
    "Bad argument",                  // -5
    "Out of memory",                 // -4
    "Internal error (bad state)",    // -3
    kUnknown,                        // -2
    "Backtrace",                     // -1
    "No Error",                      // 0
};

constexpr const char* kTerminateMessage = "RYX Library:\nterminating the application";

bool isTrace(RyxStatus status) { return status == RYX_StsBacktrace || status == RYX_StsAutotrace; }

}  // namespace

extern "C" {

RYXAPI RyxStatus ryxGetErrStatus(void) { return ryxGetThreadContext()->errStatus; }

RYXAPI void ryxSetErrStatus(RyxStatus status) { ryxGetThreadContext()->errStatus = status; }

RYXAPI int ryxGetErrMode(void) { return ryxGetThreadContext()->errMode; }

RYXAPI void ryxSetErrMode(int mode) { ryxGetThreadContext()->errMode = mode; }

RYXAPI ryxReportFn ryxRedirectError(ryxReportFn fn) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  ryxReportFn previous = ctx->reportFn;
  ctx->reportFn = fn != nullptr ? fn : ryxGuiBoxReport;
  return previous;
}

RYXAPI const char* ryxErrorStr(RyxStatus status) {
  if (status < -14 || status > 0) return kUnknown;
  return kStatusWords[status + 14];
}

RYXAPI RyxStatus ryxError(RyxStatus status, const char* funcName, const char* context,
                          const char* file, int line) {
  RyxThreadContext* ctx = ryxGetThreadContext();
  if (!isTrace(status)) {
    ctx->errStatus = status;
    if (status == RYX_StsOk) return RYX_StsOk;
  }
  return ctx->reportFn(status, funcName, context, file, line);
}

RYXAPI RyxStatus ryxGuiBoxReport(RyxStatus status, const char* funcName, const char* context,
                                 const char* file, int line) {
  const RyxThreadContext* ctx = ryxGetThreadContext();
  const int mode = ctx->errMode;
  if (mode == RYX_ErrorModeSilent) return status;
  if (funcName == nullptr) funcName = "<unknown>";
  if (context == nullptr) context = "";
  if (file == nullptr) file = "";
  if (line < 0) line = 0;

  const char* trailer = "";
  if (mode == RYX_ErrorModeLeaf) trailer = "\n\nErrMode=RYX_ErrorModeLeaf\n\nTerminate the application?";
  if (mode == RYX_ErrorModeParent) trailer = "\n\nErrMode=RYX_ErrorModeParent\n\nContinue?";

  const char* format = "in function [%s:%d]:%s():\n %s%s";
  if (status == RYX_StsBacktrace) format = "called from [%s:%d]:%s():\n %s%s";
  if (status == RYX_StsAutotrace) format = "called from [%s:%d]:\n %s(%s)%s";

  // Room for 200 characters of body and 100 of title; longer text is cut.
  char body[201];
  char title[101];
  std::snprintf(body, sizeof body, format, file, line, funcName, context, trailer);
  std::snprintf(title, sizeof title, "RYX Library Error: %s", ryxErrorStr(ctx->errStatus));

  if (mode == RYX_ErrorModeParent) {
    if (ryx::askUser(title, body, false) == ryx::Answer::Cancel) ryx::fatalExit(kTerminateMessage);
  } else if (mode == RYX_ErrorModeLeaf) {
    if (ryx::askUser(title, body, true) == ryx::Answer::Yes) ryx::fatalExit(kTerminateMessage);
  }
  return status;
}

RYXAPI RyxStatus ryxStdErrReport(RyxStatus status, const char* funcName, const char* context,
                                 const char* file, int line) {
  const int mode = ryxGetThreadContext()->errMode;
  if (mode == RYX_ErrorModeSilent) return status;
  if (isTrace(status)) {
    std::fprintf(stderr, "\tcalled from");
  } else {
    std::fprintf(stderr, "\nRYX Library Error: %s \n\tin function", ryxErrorStr(status));
  }
  // A null file with a positive line still prints the bracket; glibc's
  // "(null)" for it is spelled out so no null reaches the formatter.
  if (line >= 1 || file != nullptr) std::fprintf(stderr, " [%s:%d]", file != nullptr ? file : "(null)", line);
  std::fprintf(stderr, ":%s", funcName != nullptr ? funcName : "<unknown>");
  if (context != nullptr) std::fprintf(stderr, status == RYX_StsAutotrace ? "(%s)" : "(): %s", context);
  std::fprintf(stderr, "\n");
  std::fflush(stderr);
  if (mode != RYX_ErrorModeLeaf) return status;
  std::fprintf(stderr, "RYX Library Error\nErrMode=RYX_ErrModeLeaf\nterminating the application");
  std::fflush(stderr);
  std::exit(1);
}

RYXAPI RyxStatus ryxNulDevReport(RyxStatus status, const char* funcName, const char* context,
                                 const char* file, int line) {
  if (ryxGetThreadContext()->errMode == RYX_ErrorModeLeaf) std::exit(1);
  return status;
}

}  // extern "C"
