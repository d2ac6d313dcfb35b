// Status storage, ryxError's routing, the status words, and the output of
// the stock report functions, including the process-ending paths.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "ryxcore.h"
#include "test_support.h"

namespace {

using ryxtest::ReportCapture;

// The words each status must have, written out independently.
std::string expectedWords(int status) {
  switch (status) {
    case 0: return "No Error";
    case -1: return "Backtrace";
    case -3: return "Internal error (bad state)";
    case -4: return "Out of memory";
    case -5: return "Bad argument";
    case -6: return "Unsupported function";
    case -7: return "Iteration convergence failed";
    case -8: return "Autotrace call";
    case -10: return "Null pointer";
    case -12: return "Bad pointer";
    case -13: return "Bad data structure";
    case -14: return "Bad vector length";
    default: return "Unknown error or status code";
  }
}

TEST(StatusWords, EveryCodeFromMinus60To5) {
  for (int s = -60; s <= 5; ++s) EXPECT_EQ(ryxErrorStr(s), expectedWords(s)) << "status " << s;
  EXPECT_STREQ(ryxErrorStr(-2147483647 - 1), "Unknown error or status code");
  EXPECT_STREQ(ryxErrorStr(2147483647), "Unknown error or status code");
}

TEST(StatusStore, SetAndModeAreStoredUnchecked) {
  ReportCapture capture;
  ryxSetErrStatus(-77);
  EXPECT_EQ(ryxGetErrStatus(), -77);
  ryxSetErrStatus(12);
  EXPECT_EQ(ryxGetErrStatus(), 12);
  const int mode = ryxGetErrMode();
  ryxSetErrMode(9);
  EXPECT_EQ(ryxGetErrMode(), 9);
  ryxSetErrMode(mode);
  EXPECT_TRUE(capture.reports().empty());
}

// Zero is stored and not reported; any other status is stored, reported
// with its arguments unchanged and passed through.
TEST(ErrorRouting, StatusIsStoredAndFailuresReported) {
  ReportCapture capture;
  ryxSetErrStatus(-5);
  EXPECT_EQ(ryxError(0, "f", "c", "file", 3), 0);
  EXPECT_EQ(ryxGetErrStatus(), 0);
  EXPECT_TRUE(capture.reports().empty());
  EXPECT_EQ(ryxError(RYX_StsNoMem, "ryxThing", "Full Table", "ryxtwd", 42), RYX_StsNoMem);
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsNoMem);
  ryxError(3, "f", "c", "s", 1);
  EXPECT_EQ(ryxGetErrStatus(), 3);
  ASSERT_EQ(capture.reports().size(), 2u);
  const auto& r = capture.reports()[0];
  EXPECT_TRUE(r.status == RYX_StsNoMem && r.funcName == "ryxThing" && r.context == "Full Table" && r.file == "ryxtwd" &&
              r.line == 42);
  EXPECT_EQ(capture.reports()[1].status, 3);
}

TEST(ErrorRouting, TraceStatusesKeepTheFirstFailure) {
  ReportCapture capture;
  ryxSetErrStatus(-5);
  ryxError(RYX_StsBacktrace, "outer", nullptr, "s", 1);
  EXPECT_EQ(ryxGetErrStatus(), -5);
  ryxError(RYX_StsAutotrace, "inner", "args", "s", 2);
  EXPECT_EQ(ryxGetErrStatus(), -5);
  ASSERT_EQ(capture.reports().size(), 2u);
  EXPECT_EQ(capture.reports()[0].status, RYX_StsBacktrace);
  EXPECT_EQ(capture.reports()[1].status, RYX_StsAutotrace);
}

RyxStatus otherReport(RyxStatus s, const char*, const char*, const char*, int) { return s - 100; }

TEST(ErrorRouting, RedirectReturnsPreviousAndNullRestoresTheBox) {
  ryxReportFn original = ryxRedirectError(otherReport);
  EXPECT_EQ(original, &ryxGuiBoxReport);  // a fresh thread starts with the box
  // ryxError returns what the report function returns.
  const int mode = ryxGetErrMode();
  ryxSetErrMode(RYX_ErrorModeParent);
  EXPECT_EQ(ryxError(-5, "f", "c", "s", 1), -105);
  ryxSetErrMode(mode);
  EXPECT_EQ(ryxRedirectError(nullptr), &otherReport);
  EXPECT_EQ(ryxRedirectError(nullptr), &ryxGuiBoxReport);
  ryxSetErrStatus(0);
}

// ---- ryxStdErrReport ------------------------------------------------------

TEST(StdErrReport, FormatsByStatusKindAndMode) {
  const struct {
    int mode;
    RyxStatus status;
    const char *func, *context, *file;
    int line;
    const char* text;
  } cases[] = {
      {RYX_ErrorModeParent, -5, "ryxsbAdd1", "n<=0", "ryxarith", 57,
       "\nRYX Library Error: Bad argument \n\tin function [ryxarith:57]:ryxsbAdd1(): n<=0\n"},
      {RYX_ErrorModeParent, RYX_StsBacktrace, "outer", nullptr, "ryxconvs", 9, "\tcalled from [ryxconvs:9]:outer\n"},
      {RYX_ErrorModeParent, RYX_StsAutotrace, "fn", "x, 3", "stem", 2, "\tcalled from [stem:2]:fn(x, 3)\n"},
      // The bracket only with a line or a file.
      {RYX_ErrorModeParent, -4, nullptr, nullptr, nullptr, 0, "\nRYX Library Error: Out of memory \n\tin function:<unknown>\n"},
      {RYX_ErrorModeParent, -4, "f", "m", "", 0, "\nRYX Library Error: Out of memory \n\tin function [:0]:f(): m\n"},
      {RYX_ErrorModeSilent, -5, "f", "c", "s", 1, ""},
      // An unknown mode prints and returns.
      {7, -5, "f", "c", "s", 1, "\nRYX Library Error: Bad argument \n\tin function [s:1]:f(): c\n"},
  };
  const int saved = ryxGetErrMode();
  for (const auto& c : cases) {
    ryxSetErrMode(c.mode);
    testing::internal::CaptureStderr();
    EXPECT_EQ(ryxStdErrReport(c.status, c.func, c.context, c.file, c.line), c.status);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), c.text);
  }
  // A positive line with no file still prints the bracket.
  ryxSetErrMode(RYX_ErrorModeParent);
  testing::internal::CaptureStderr();
  ryxStdErrReport(-4, "f", nullptr, nullptr, 7);
  EXPECT_NE(testing::internal::GetCapturedStderr().find(":7]:f\n"), std::string::npos);
  ryxSetErrMode(saved);
}

TEST(StdErrReportDeathTest, LeafModeEndsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ryxSetErrMode(RYX_ErrorModeLeaf);
        ryxStdErrReport(-5, "ryxsbAdd1", "dst==0", "ryxarith", 3);
      },
      testing::ExitedWithCode(1),
      "in function \\[ryxarith:3\\]:ryxsbAdd1\\(\\): dst==0\nRYX Library Error\nErrMode=RYX_ErrModeLeaf\nterminating "
      "the application");
}

// ---- ryxNulDevReport ------------------------------------------------------

// Outside Leaf mode the null-device report returns silently; the box shows
// nothing in Silent mode or a mode it does not know.
TEST(NulDevAndBoxReport, ReturnSilently) {
  const int saved = ryxGetErrMode();
  for (auto [fn, mode] : {std::pair{&ryxNulDevReport, int{RYX_ErrorModeParent}}, {&ryxNulDevReport, RYX_ErrorModeSilent},
                          {&ryxNulDevReport, 5}, {&ryxGuiBoxReport, RYX_ErrorModeSilent}, {&ryxGuiBoxReport, 3},
                          {&ryxGuiBoxReport, -1}}) {
    ryxSetErrMode(mode);
    testing::internal::CaptureStderr();
    EXPECT_EQ(fn(-5, "f", "c", "s", 1), -5);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << mode;
  }
  ryxSetErrMode(saved);
}

TEST(NulDevReportDeathTest, LeafModeEndsSilently) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ryxSetErrMode(RYX_ErrorModeLeaf);
        ryxRedirectError(ryxNulDevReport);
        ryxsbAdd1(1.0f, nullptr, 4);
      },
      testing::ExitedWithCode(1), "^$");
}

// ---- ryxGuiBoxReport ------------------------------------------------------
// Each case runs in a child process detached from any terminal, so the box
// takes its default button.

// Parent mode: title from the status, body, trailer, then the call returns
// the status; the trace statuses take their own body and the title of the
// stored status.
TEST(BoxReportDeathTest, ParentModeBoxesAndTraceFormats) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        setsid();
        ryxSetErrMode(RYX_ErrorModeParent);
        ryxSetErrStatus(-5);
        const RyxStatus r = ryxGuiBoxReport(-5, "ryxsbAdd1", "n<=0", "ryxarith", 12);
        ryxSetErrStatus(RYX_StsNoMem);
        ryxGuiBoxReport(RYX_StsBacktrace, "outer", "", "ryxconvs", -4);
        ryxGuiBoxReport(RYX_StsAutotrace, "inner", "a, b", "ryxconvs", 5);
        std::_Exit(r == -5 ? 0 : 3);
      },
      testing::ExitedWithCode(0),
      "RYX Library Error: Bad argument\nin function \\[ryxarith:12\\]:ryxsbAdd1\\(\\):\n "
      "n<=0\n\nErrMode=RYX_ErrorModeParent\n\nContinue\\?.*"
      "RYX Library Error: Out of memory\ncalled from \\[ryxconvs:0\\]:outer\\(\\):\n \n\n.*"
      "RYX Library Error: Out of memory\ncalled from \\[ryxconvs:5\\]:\n inner\\(a, b\\)\n\n");
}

TEST(BoxReportDeathTest, LeafModeDefaultsToYesAndTerminates) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        setsid();
        ryxSetErrMode(RYX_ErrorModeLeaf);
        ryxError(-5, "ryxsbSet", "dst==0", "ryxarith", 8);
        std::_Exit(0);
      },
      testing::ExitedWithCode(1),
      "RYX Library Error: Bad argument\nin function \\[ryxarith:8\\]:ryxsbSet\\(\\):\n dst==0\n\n"
      "ErrMode=RYX_ErrorModeLeaf\n\nTerminate the application\\?\n.*RYX Library:\nterminating the application");
}

TEST(BoxReportDeathTest, LongTextIsCutNotOverrun) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  // The body holds 200 characters: a 400-character context is cut inside
  // itself, so no trailer follows.
  EXPECT_EXIT(
      {
        setsid();
        ryxSetErrMode(RYX_ErrorModeParent);
        const std::string longContext(400, 'x');
        ryxGuiBoxReport(-5, "f", longContext.c_str(), "s", 1);
        std::_Exit(0);
      },
      testing::ExitedWithCode(0), "in function \\[s:1\\]:f\\(\\):\n x{176}\n(\\[OK/cancel\\] )?$");
}

TEST(BoxReport, SilentModeStillStoresTheStatusThroughRyxError) {
  const int saved = ryxGetErrMode();
  ryxSetErrMode(RYX_ErrorModeSilent);
  ryxRedirectError(nullptr);
  ryxSetErrStatus(0);
  testing::internal::CaptureStderr();
  ryxsbMpy1(2.0f, nullptr, 3);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
  ryxSetErrStatus(0);
  ryxSetErrMode(saved);
}

TEST(Version, RecordValues) {
  const RyxLibVersion* v = ryxGetLibVersion();
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(v, ryxGetLibVersion());
  EXPECT_EQ(v->major, 4);
  EXPECT_EQ(v->minor, 5);
  EXPECT_EQ(v->build, 0);
  EXPECT_STREQ(v->name, "ryxcore.dll");
  EXPECT_STREQ(v->version, "4.5 ");
  EXPECT_STREQ(v->internalVersion, "[4.5.2.82, 09/06/00]");
  EXPECT_STREQ(v->buildDate, "Sep  7 2000");
  EXPECT_STREQ(v->linkage, "DLL");
}

}  // namespace
