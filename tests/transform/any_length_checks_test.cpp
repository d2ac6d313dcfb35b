// Argument checks of the DFT, Goertzel and DCT entries: the first failing
// check of each call, its exact text, nothing written; and the memory
// failures.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "check_cases.h"
#include "ryxcore/transform_any_length.h"
#include "alloc_failure.h"

namespace {

TEST(AnyLengthChecks, FirstFailingCheckReportsItsText) {
  SCplx c[4] = {}, cOut[4] = {}, val{};
  DCplx z[4] = {}, zOut[4] = {};
  WCplx v[4] = {}, vOut[4] = {};
  float s[4] = {}, sOut[4] = {};
  double d[4] = {}, dOut[4] = {};
  short w[4] = {}, wOut[4] = {};
  int f = 0, big = 15, low = -15;
  RyxGoertzF32State g{};
  RyxGoertzF64State g64{};
  const char *kDft = "ryxdft", *kGl = "ryxgrtzl", *kGw = "ryxgrtzw", *kDct = "ryxdct";
  ryxsGoertzInit(0.1f, &g);
  const RyxGoertzF32State gBefore = g;
  const std::vector<ryxtest::CheckCase> cases = {
      RYX_CHECK_CASE(kDft, "length<=0", ryxcDft(c, cOut, 0, RYX_Forward)),
      RYX_CHECK_CASE(kDft, "src==0", ryxzDft(nullptr, zOut, 3, RYX_Forward)),
      RYX_CHECK_CASE(kDft, "dst==0", ryxcDft(c, nullptr, 3, RYX_Forward)),
      RYX_CHECK_CASE(kDft, "(flags & 1) && (flags & 2)", ryxzDft(z, zOut, 3, 3)),
      RYX_CHECK_CASE(kDft, "(flags & 1)==0 && (flags & 2)==0", ryxcDft(c, cOut, 3, 0)),
      RYX_CHECK_CASE(kDft, "length<=0", ryxvDft(v, vOut, -1, RYX_Forward, 0, &f)),
      RYX_CHECK_CASE(kDft, "(flags & 8192) && (flags & 16384)", ryxvDft(v, vOut, 3, RYX_Init | 8192 | 16384, 0, &f)),
      RYX_CHECK_CASE(kDft, "(flags & 1)==0 && (flags & 2)==0", ryxvDft(v, vOut, 3, 16, 0, &f)),
      RYX_CHECK_CASE(kDft, "(ScaleMode & 0x0002) && (ScaleMode & 0x0004)", ryxvDft(v, vOut, 3, 1, 6, &f)),
      RYX_CHECK_CASE(kDft, "ScaleFactor==0", ryxvDft(v, vOut, 3, 1, 4, nullptr)),
      RYX_CHECK_CASE(kGl, "Null state pointer", ryxsGoertzInit(0.1f, nullptr)),
      RYX_CHECK_CASE(kGl, "Invalid frequency value", ryxcGoertzInit(1.0f, &g)),
      RYX_CHECK_CASE(kGw, "Invalid frequency value", ryxwGoertzInit(-0.0001f, &g)),
      RYX_CHECK_CASE(kGl, "Invalid frequency value", ryxzGoertzInit(std::nan(""), &g64)),
      RYX_CHECK_CASE(kGl, "Null state pointer", ryxdGoertzReset(nullptr)),
      RYX_CHECK_CASE(kGl, "Null state pointer", ryxsGoertz(nullptr, 1.0f)),
      RYX_CHECK_CASE(kGl, "Null buffer pointer", ryxsbGoertz(&g, nullptr, 3)),
      RYX_CHECK_CASE(kGl, "Invalid array length", ryxcbGoertz(&g, c, 0)),
      RYX_CHECK_CASE(kGl, "val==0", ryxsbGoertzOut(nullptr, nullptr, 0, nullptr)),
      RYX_CHECK_CASE(kGw, "Zero scale factor pointer", ryxwGoertz(&g, 1, 2, nullptr)),
      RYX_CHECK_CASE(kGw, "Too large scale factor", ryxvGoertz(&g, WCplx{1, 1}, 3, &big)),
      RYX_CHECK_CASE(kGw, "Too large scale factor", ryxwbGoertz(&g, w, 4, 3, &low)),
      RYX_CHECK_CASE(kGw, "Erroneus scale mode", ryxvbGoertz(&g, v, 4, 5, &f)),
      RYX_CHECK_CASE(kGw, "Null buffer pointer", ryxvbGoertz(&g, nullptr, 4, 9, nullptr)),
      RYX_CHECK_CASE(kDct, "\nNull pointer to data buffer\n", ryxsDct(nullptr, sOut, 4, RYX_Forward)),
      RYX_CHECK_CASE(kDct, "\nBad value of data buffer size\n", ryxdDct(d, dOut, 0, RYX_Forward)),
      RYX_CHECK_CASE(kDct, "\nBad value of the transform flag\n", ryxwDct(w, wOut, 4, 3)),
      RYX_CHECK_CASE(kDct, "\nBad value of the transform flag\n", ryxsDct(s, sOut, 4, 0)),
  };
  ryxtest::runCheckCases(cases, [&] {
    const SCplx* cc = cOut;
    const DCplx* zz = zOut;
    return cc[0].re == 0 && zz[0].re == 0 && vOut[0].re == 0 && sOut[0] == 0 && dOut[0] == 0 && wOut[0] == 0 &&
           std::memcmp(&g, &gBefore, sizeof g) == 0 && val.re == 0;
  });
  // Accepted edges: 14 and -14, mode 0 without a factor, mode 7 writes nothing.
  ryxtest::ReportCapture capture;
  int edge[2] = {14, -14};
  ryxwGoertz(&g, 1, 3, &edge[0]), ryxwGoertz(&g, 1, 3, &edge[1]);
  ryxvGoertz(&g, WCplx{1, 2}, 0, nullptr);
  vOut[0].re = 9;
  ryxvDft(v, vOut, 5, RYX_Forward, 7, nullptr);
  ryxsDct(s, sOut, 4, 9);  // only exactly 8 releases
  EXPECT_TRUE(capture.reports().empty());
  EXPECT_EQ(vOut[0].re, 9);
}

TEST(AnyLengthChecks, MemoryFailuresReportAndWriteNothing) {
  double x[300] = {}, y[300] = {};
  std::vector<DCplx> zx(300), zy(300);
  ryxtest::ReportCapture capture;
  {
    ryxtest::FailAllocation fail(1, true);
    ryxdDct(x, y, 300, RYX_Forward);
    ryxSetErrStatus(RYX_StsOk);  // a stored failure would stop the table fetch silently
    ryxzDft(zx.data(), zy.data(), 300, RYX_Forward);
  }
  ASSERT_GE(capture.reports().size(), 3u);
  EXPECT_EQ(capture.reports()[0].context, "\nMemory allocation problem\n");
  EXPECT_EQ(capture.reports()[1].context, "NULL Pointer");
  EXPECT_EQ(capture.reports()[2].context, "No working memory");
  EXPECT_EQ(y[0], 0.0);
  EXPECT_EQ(zy[0].re, 0.0);
}

}  // namespace
