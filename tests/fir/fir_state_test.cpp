// State rules of both forms that the filter tests do not reach: the filter
// mode of taps and lines handed back, the raw working order of the
// low-level line, the stored layout of the high-level record,
// re-initialisation and release.
#include <algorithm>

#include "fir_support.h"

namespace firtest {
namespace {

// ---- Low-level ------------------------------------------------------------------

TEST(FirlState, TapsHandedBackStopBlocksButNotSingleSamples) {
  RecordReports rec;
  float taps[4] = {0.5f, 0.25f, -1.0f, 2.0f};
  float line[4];
  RyxFirTapState ts{};
  RyxFirDlyState ds{};
  ryxsFirlInit(taps, 4, &ts);
  EXPECT_EQ(ts.isFilterMode, 1);
  EXPECT_EQ(ts.isMultiRate, 0);
  EXPECT_EQ(ts.upFactor, 1);
  EXPECT_EQ(ts.downFactor, 1);
  EXPECT_EQ(ts.tapShift, 0);
  ryxsFirlInitDlyl(&ts, line, &ds);
  EXPECT_EQ(ds.dlylLen, 4);
  EXPECT_EQ(ds.isDlyFilterMode, 0);
  ryxsFirlSetDlyl(&ts, nullptr, &ds);
  EXPECT_EQ(ds.isDlyFilterMode, 1);

  // A copy to another array keeps the filter mode.
  float copy[4];
  ryxsFirlGetTaps(&ts, copy);
  EXPECT_EQ(ts.isFilterMode, 1);
  EXPECT_TRUE(std::equal(copy, copy + 4, taps));
  // The record's own array: the caller takes the taps back.
  ryxsFirlGetTaps(&ts, taps);
  EXPECT_EQ(ts.isFilterMode, 0);
  const float src[3] = {1, 2, 3};
  float dst[3] = {7, 7, 7};
  ryxsbFirl(&ts, &ds, src, dst, 3);
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].context, "Not filter mode");
  EXPECT_EQ(dst[0], 7.0f);
  // The single-sample form does not look at the mode.
  EXPECT_EQ(ryxsFirl(&ts, &ds, 2.0f), 1.0f);
  // The caller edits its taps and hands them over again.
  taps[0] = 3.0f;
  ryxsFirlSetTaps(taps, &ts);
  EXPECT_EQ(ts.isFilterMode, 1);
  ryxsbFirl(&ts, &ds, src, dst, 1);
  EXPECT_EQ(dst[0], 3.0f * 1.0f + 0.25f * 2.0f);
  // Null taps zero the caller's array.
  ryxsFirlSetTaps(nullptr, &ts);
  EXPECT_TRUE(std::all_of(taps, taps + 4, [](float v) { return v == 0.0f; }));
  EXPECT_EQ(reports().size(), 1u);

  // Multirate fields; factors of one make a single-rate state.
  ryxSetErrStatus(RYX_StsOk);
  DCplx ztaps[7] = {};
  ryxzFirlInitMr(ztaps, 7, 3, 2, 2, 1, &ts);
  EXPECT_EQ(ts.isMultiRate, 1);
  EXPECT_EQ(ts.upPhase, 2);
  EXPECT_EQ(ts.downPhase, 1);
  ryxzFirlInitMr(ztaps, 7, 1, 0, 1, 0, &ts);
  EXPECT_EQ(ts.isMultiRate, 0);
}

TEST(FirlState, HistoryIsReversedIntoWorkingOrder) {
  double taps[5] = {1, 0, 0, 0, 0};
  double line[5] = {-1, -1, -1, -1, -9};
  RyxFirTapState ts{};
  RyxFirDlyState ds{};
  ryxdFirlInit(taps, 5, &ts);
  ryxdFirlInitDlyl(&ts, line, &ds);
  EXPECT_EQ(line[0], -1.0);  // InitDlyl leaves the contents alone
  // Caller order is oldest first; the line is newest first; the last place
  // is not part of the visible state and stays as it was.
  const double hist[4] = {1, 2, 3, 4};
  ryxdFirlSetDlyl(&ts, hist, &ds);
  EXPECT_EQ(line[0], 4.0);
  EXPECT_EQ(line[3], 1.0);
  EXPECT_EQ(line[4], -9.0);

  // Handing the own buffer back reverses it in place and clears the flag.
  ryxdFirlGetDlyl(&ts, &ds, line);
  EXPECT_EQ(ds.isDlyFilterMode, 0);
  EXPECT_EQ(line[0], 1.0);
  EXPECT_EQ(line[3], 4.0);
  // The caller fills its buffer oldest first and hands it over: reversed
  // once, and a second hand-over changes nothing.
  line[0] = 10;
  line[1] = 20;
  line[2] = 30;
  line[3] = 40;
  ryxdFirlSetDlyl(&ts, line, &ds);
  ryxdFirlSetDlyl(&ts, line, &ds);
  EXPECT_EQ(line[0], 40.0);
  EXPECT_EQ(line[3], 10.0);
  EXPECT_EQ(ds.isDlyFilterMode, 1);
  // A delay of four: x[n-4] comes out with the single tap moved.
  taps[0] = 0;
  taps[4] = 1;
  ryxdFirlSetTaps(taps, &ts);
  const double src[2] = {50, 60};
  double dst[2];
  ryxdbFirl(&ts, &ds, src, dst, 2);
  EXPECT_EQ(dst[0], 10.0);
  EXPECT_EQ(dst[1], 20.0);

  // One tap: nothing of the line is visible, so a history leaves it alone.
  SCplx tap[1] = {{2.0f, -1.0f}};
  SCplx one[1] = {{5.0f, 5.0f}};
  const SCplx other[1] = {{9.0f, 9.0f}};
  ryxcFirlInit(tap, 1, &ts);
  ryxcFirlInitDlyl(&ts, one, &ds);
  ryxcFirlSetDlyl(&ts, other, &ds);
  EXPECT_EQ(one[0].re, 5.0f);
}

// ---- High-level -------------------------------------------------------------------

TEST(FirState, StoredLayoutAndSizes) {
  float taps[10] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  RyxFirState st{};
  ryxsFirInit(taps, 10, nullptr, &st);
  EXPECT_EQ(st.dlylLen, 9);
  EXPECT_EQ(st.extLen, 128);
  EXPECT_EQ(st.unrollLen, 8);
  EXPECT_EQ(st.isMultiRate, 0);
  EXPECT_EQ(st.phaseTable, nullptr);
  EXPECT_EQ(st.dlylCur, st.dlylBuf);
  EXPECT_EQ(st.dlylEnd, static_cast<float*>(st.dlylBuf) + 128);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(static_cast<float*>(st.taps)[9 - i], taps[i]);
  // Re-initialising a live record with another type and length releases
  // the old arrays (the sanitizer build checks for leaks).
  DCplx ztaps[300] = {};
  ryxzdFirInit(reinterpret_cast<double*>(ztaps), 300, nullptr, &st);
  EXPECT_EQ(st.dlylLen, 299);
  EXPECT_EQ(st.extLen, 300);
  EXPECT_EQ(st.unrollLen, 300);
  ryxcsFirInitMr(taps, 10, nullptr, 3, 0, 4, 1, &st);
  EXPECT_EQ(st.dlylLen, 4);
  EXPECT_EQ(st.extLen, 128);
  EXPECT_EQ(st.unrollLen, 8);
  ASSERT_NE(st.phaseTable, nullptr);
  ryxFirFree(&st);
  EXPECT_EQ(st.initMark, nullptr);
  EXPECT_EQ(st.phaseTable, nullptr);
  // Unroll widths per type: s 8, c sc cs d 4, z dz zd 2.
  const int len = 15;
  double dt[len] = {};
  DCplx zt[len] = {};
  ryxdFirInit(dt, len, nullptr, &st);
  EXPECT_EQ(st.unrollLen, 12);
  ryxzFirInit(zt, len, nullptr, &st);
  EXPECT_EQ(st.unrollLen, 14);
  ryxdzFirInit(zt, len, nullptr, &st);
  EXPECT_EQ(st.unrollLen, 14);
  ryxscFirInit(reinterpret_cast<SCplx*>(dt), len, nullptr, &st);
  EXPECT_EQ(st.unrollLen, 12);
  ryxFirFree(&st);
}

// A freed record is dead: every routine refuses it, freeing it again too.
TEST(FirState, FreedRecordIsRefused) {
  RecordReports rec;
  const float taps[3] = {1, 2, 3};
  RyxFirState st{};
  ryxsFirInit(taps, 3, nullptr, &st);
  ryxFirFree(&st);
  EXPECT_TRUE(reports().empty());
  ryxFirFree(&st);
  float x = 1.0f, y = 5.0f;
  EXPECT_EQ(ryxsFir(&st, 1.0f), 0.0f);
  ryxsbFir(&st, &x, &y, 1);
  EXPECT_EQ(y, 5.0f);
  ASSERT_EQ(reports().size(), 3u);
  for (const Report& r : reports()) EXPECT_EQ(r.context, "Must have been initialized");
  EXPECT_EQ(reports()[0].func, "ryxFirryxFree");
  // Initialising it again brings it back.
  ryxSetErrStatus(RYX_StsOk);
  ryxsFirInit(taps, 3, nullptr, &st);
  EXPECT_EQ(ryxsFir(&st, 1.0f), 1.0f);
  ryxFirFree(&st);
}

}  // namespace
}  // namespace firtest
