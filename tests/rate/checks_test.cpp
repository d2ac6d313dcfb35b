// Argument checks of the rate family and the design routines: each row is
// a failing call, the value it returns (or none), the status reported, the
// routine, context and source group. Exactly one report per call.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ryxcore.h"
#include "test_support.h"

namespace {

struct Row {
  std::function<int()> call;
  int returned;  // kNone for routines without a result
  RyxStatus status;
  const char* func;
  const char* context;
  const char* file;
};
constexpr int kNone = 12345;

TEST(RateChecks, EveryDocumentedFailure) {
  float f[16] = {1, 2, 3, 4};
  double d[16] = {1, 2, 3, 4};
  short w[16] = {1, 2, 3};
  SCplx c[4] = {};
  int len = 0, ph = 0, bad = -1, big = 3;
  const float fac[] = {1, 2}, frq[] = {0.1f, 0.2f}, badFrq[] = {0.1f, 0.5f}, badFac[] = {1, 0};
  RyxSampState st{}, unset{};
  ASSERT_EQ(ryxsSampInit(&st, fac, frq, 2, 9), 0);
  const char* upS = "ryxsUpSample";
  auto freqText = [](std::string arg) { return "\n" + arg + " argument isn\u2019t satisfactory\n"; };
  const std::string rfreq = freqText("rfreq"), lowF = freqText("rLowFreq"), highF = freqText("rHighFreq");
  const std::vector<Row> rows = {
      {[&] { return ryxsUpSample(f, 0, f, &len, 2, &ph); }, -5, -5, upS, "Invalid src array length", "ryxsampl"},
      {[&] { return ryxsUpSample(nullptr, 1, f, &len, 2, &ph); }, -5, -5, upS, "Null buffer pointer", "ryxsampl"},
      {[&] { return ryxcUpSample(c, 1, nullptr, &len, 2, &ph); }, -5, -5, "ryxcUpSample", "Null buffer pointer", "ryxsampl"},
      {[&] { return ryxdDownSample(d, 1, d, nullptr, 2, &ph); }, -5, -5, "ryxdDownSample", "Null dstLen pointer", "ryxsampl"},
      {[&] { return ryxwDownSample(w, 1, w, &len, 2, nullptr); }, -5, -5, "ryxwDownSample", "Null phase pointer", "ryxsampl"},
      {[&] { return ryxsDownSample(f, 1, f, &len, 0, &ph); }, -5, -5, "ryxsDownSample", "Invalid factor value", "ryxsampl"},
      {[&] { return ryxsUpSample(f, 1, f, &len, 2, &bad); }, -5, -5, upS, "Invalid phase value", "ryxsampl"},
      {[&] { return ryxsUpSample(f, 1, f, &len, 3, &big); }, -5, -5, upS, "Invalid factor value", "ryxsampl"},
      {[&] { return ryxsbMedianFilter1(f, 0, 3), kNone; }, kNone, -5, "ryxsbMedianFilter1", "len<=0", "ryxmed"},
      {[&] { return ryxdbMedianFilter1(nullptr, 4, 3), kNone; }, kNone, -5, "ryxdbMedianFilter1", "inout==0", "ryxmed"},
      {[&] { return ryxwbMedianFilter1(w, 4, 0), kNone; }, kNone, -5, "ryxwbMedianFilter1", "masksize<=0", "ryxmed"},
      {[&] { return ryxsbMedianFilter2(nullptr, f, 4, 3), kNone; }, kNone, -5, "ryxsbMedianFilter2", "src==0", "ryxmed"},
      {[&] { return ryxdbMedianFilter2(d, nullptr, 4, 3), kNone; }, kNone, -5, "ryxdbMedianFilter2", "dst==0", "ryxmed"},
      {[&] { return ryxwbMedianFilter2(w, w, 4, -1), kNone; }, kNone, -5, "ryxwbMedianFilter2", "masksize<=0", "ryxmed"},
      {[&] { return ryxdFirLowpass(0.1, nullptr, 9, 3, 1); }, -10, -10, "ryxdFirLowpass", "\nNull pointer to taps[] array was passed\n", "ryxfirg"},
      {[&] { return ryxdFirHighpass(0.1, d, 4, 3, 1); }, -14, -14, "ryxdFirHighpass", "\ntapsLen argument is less five\n", "ryxfirg"},
      {[&] { return ryxdFirLowpass(0.5, d, 5, 3, 1); }, -51, -51, "ryxdFirLowpass", rfreq.c_str(), "ryxfirg"},
      {[&] { return ryxdFirHighpass(0.0, d, 5, 3, 1); }, -51, -51, "ryxdFirHighpass", rfreq.c_str(), "ryxfirg"},
      {[&] { return ryxdFirBandpass(0.0, 0.2, d, 5, 3, 1); }, -51, -51, "ryxdFirBandpass", lowF.c_str(), "ryxfirg"},
      {[&] { return ryxdFirBandstop(0.1, 0.5, d, 5, 3, 1); }, -51, -51, "ryxdFirBandstop", highF.c_str(), "ryxfirg"},
      {[&] { return ryxdFirBandpass(0.2, 0.2, d, 5, 3, 1); }, -52, -52, "ryxdFirBandpass", "\nrHighFreq argument is less rLowFreq argument\n", "ryxfirg"},
      {[&] { return ryxsSampInit(nullptr, fac, frq, 2, 9); }, -10, -5, "ryxsSampInit", "Null state pointer", "ryxrsmpl"},
      {[&] { return ryxsSampInit(&unset, nullptr, frq, 2, 9); }, -10, -5, "ryxsSampInit", "Null factors pointer", "ryxrsmpl"},
      {[&] { return ryxdSampInit(&unset, d, nullptr, 2, 9); }, -10, -5, "ryxdSampInit", "Null frequencies pointer", "ryxrsmpl"},
      {[&] { return ryxsSampInit(&unset, fac, frq, 2, 4); }, -11, -5, "ryxsSampInit", "Bad number of taps coefficients", "ryxrsmpl"},
      {[&] { return ryxsSampInit(&unset, fac, frq, 0, 9); }, -11, -5, "ryxsSampInit", "Bad number of factors", "ryxrsmpl"},
      {[&] { return ryxsSampInit(&unset, fac, badFrq, 2, 9); }, -51, -5, "ryxsSampInit", "Bad frequency value", "ryxrsmpl"},
      {[&] { return ryxsSampInit(&unset, badFac, frq, 2, 9); }, -50, -5, "ryxsSampInit", "Bad factorRange values", "ryxrsmpl"},
      {[&] { return ryxsSamp(nullptr, f, 4, f + 4, 4); }, -10, -5, "ryxsSamp", "Null state pointer", "ryxrsmpl"},
      {[&] { return ryxsSamp(&st, nullptr, 4, f, 4); }, -10, -5, "ryxsSamp", "Null src pointer", "ryxrsmpl"},
      {[&] { return ryxdSamp(&st, d, 4, nullptr, 4); }, -10, -5, "ryxdSamp", "Null dst pointer", "ryxrsmpl"},
      {[&] { return ryxsSamp(&st, f, 4, f, 4); }, -12, -5, "ryxsSamp", "Function doesn't work in place", "ryxrsmpl"},
      {[&] { return ryxsSamp(&st, f, 1, f + 4, 4); }, -11, -5, "ryxsSamp", "Bad src length", "ryxrsmpl"},
      {[&] { return ryxsSamp(&st, f, 4, f + 4, 1); }, -11, -5, "ryxsSamp", "Bad dst length", "ryxrsmpl"},
      {[&] { return ryxsSamp(&unset, f, 4, f + 4, 4); }, -13, -5, "ryxsSamp", "structure hasn't been initialized", "ryxrsmpl"},
  };
  ryxtest::ReportCapture cap;
  for (size_t i = 0; i < rows.size(); ++i) {
    const Row& r = rows[i];
    cap.clear();
    const int got = r.call();
    ASSERT_EQ(cap.reports().size(), 1u) << "row " << i;
    const ryxtest::Report& rep = cap.reports()[0];
    EXPECT_TRUE(got == r.returned && rep.status == r.status && ryxGetErrStatus() == r.status) << "row " << i;
    EXPECT_TRUE(rep.funcName == r.func && rep.context == r.context && rep.file == r.file) << "row " << i;
  }
  EXPECT_EQ(unset.mark, 0u);
  ryxSampFree(&st);
}

}  // namespace
