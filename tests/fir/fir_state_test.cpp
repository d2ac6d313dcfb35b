// State rules of both forms: hand-over of taps and history through
// Get/Set, the reversed working order of the low-level line, the sliding
// history of the high-level record, re-initialisation and release.
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
  // Null taps zero the caller's array and the filter outputs zeros.
  ryxsFirlSetTaps(nullptr, &ts);
  EXPECT_TRUE(std::all_of(taps, taps + 4, [](float v) { return v == 0.0f; }));
  ryxsbFirl(&ts, &ds, src, dst, 3);
  EXPECT_TRUE(std::all_of(dst, dst + 3, [](float v) { return v == 0.0f; }));
  EXPECT_EQ(reports().size(), 1u);
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
  double back[4];
  ryxdFirlGetDlyl(&ts, &ds, back);
  EXPECT_TRUE(std::equal(back, back + 4, hist));
  EXPECT_EQ(ds.isDlyFilterMode, 1);

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
}

TEST(FirlState, ShortBlocksShiftTheLineExactly) {
  float taps[6] = {1, 2, 3, 4, 5, 6};
  float line[6];
  RyxFirTapState ts{};
  RyxFirDlyState ds{};
  ryxsFirlInit(taps, 6, &ts);
  ryxsFirlInitDlyl(&ts, line, &ds);
  const float hist[5] = {1, 2, 3, 4, 5};
  ryxsFirlSetDlyl(&ts, hist, &ds);
  const float src[2] = {6, 7};
  float dst[2];
  ryxsbFirl(&ts, &ds, src, dst, 2);
  float back[5];
  ryxsFirlGetDlyl(&ts, &ds, back);
  const float want[5] = {3, 4, 5, 6, 7};
  EXPECT_TRUE(std::equal(back, back + 5, want));
}

TEST(FirlState, OneTapHasNoVisibleHistory) {
  SCplx tap[1] = {{2.0f, -1.0f}};
  SCplx line[1] = {{5.0f, 5.0f}};
  RyxFirTapState ts{};
  RyxFirDlyState ds{};
  ryxcFirlInit(tap, 1, &ts);
  ryxcFirlInitDlyl(&ts, line, &ds);
  const SCplx other[1] = {{9.0f, 9.0f}};
  ryxcFirlSetDlyl(&ts, other, &ds);
  EXPECT_EQ(line[0].re, 5.0f);
  const SCplx src[3] = {{1, 0}, {0, 1}, {1, 1}};
  SCplx dst[3];
  ryxcbFirl(&ts, &ds, src, dst, 3);
  EXPECT_EQ(dst[0].re, 2.0f);
  EXPECT_EQ(dst[0].im, -1.0f);
  EXPECT_EQ(dst[1].re, 1.0f);
  EXPECT_EQ(dst[1].im, 2.0f);
  EXPECT_EQ(dst[2].re, 3.0f);
  EXPECT_EQ(dst[2].im, 1.0f);
  SCplx out{};
  ryxcFirlOut(&ts, &ds, SCplx{0, 2}, &out);
  EXPECT_EQ(out.re, 2.0f);
  EXPECT_EQ(out.im, 4.0f);
}

TEST(FirlState, MultirateStateSeesTheWholeLine) {
  DCplx taps[7] = {};
  RyxFirTapState ts{};
  ryxzFirlInitMr(taps, 7, 3, 2, 2, 1, &ts);
  EXPECT_EQ(ts.isMultiRate, 1);
  EXPECT_EQ(ts.upPhase, 2);
  EXPECT_EQ(ts.downPhase, 1);
  DCplx line[3];
  RyxFirDlyState ds{};
  ryxzFirlInitDlyl(&ts, line, &ds);
  EXPECT_EQ(ds.dlylLen, 3);
  const DCplx hist[3] = {{1, 0}, {2, 0}, {3, 0}};
  ryxzFirlSetDlyl(&ts, hist, &ds);
  EXPECT_EQ(line[0].re, 3.0);
  EXPECT_EQ(line[2].re, 1.0);
  // Factors of one make a single-rate state.
  RyxFirTapState single{};
  ryxzFirlInitMr(taps, 7, 1, 0, 1, 0, &single);
  EXPECT_EQ(single.isMultiRate, 0);
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

TEST(FirState, OneTapIsAScaling) {
  const float tap = 3.0f;
  RyxFirState st{};
  ryxsFirInit(&tap, 1, nullptr, &st);
  EXPECT_EQ(st.dlylLen, 0);
  EXPECT_EQ(st.extLen, 128);
  float src[200], dst[200];
  for (int i = 0; i < 200; ++i) src[i] = static_cast<float>(i) - 50.0f;
  ryxsbFir(&st, src, dst, 200);
  for (int i = 0; i < 200; ++i) ASSERT_EQ(dst[i], 3.0f * src[i]);
  for (int i = 0; i < 300; ++i) ASSERT_EQ(ryxsFir(&st, src[i % 200]), 3.0f * src[i % 200]);
  ryxFirFree(&st);
}

TEST(FirState, HistorySlidesAndComesBack) {
  std::mt19937 gen(3);
  const int len = 6;
  const std::vector<double> taps = randomVec<double>(gen, len);
  const std::vector<double> hist = randomVec<double>(gen, len - 1);
  RyxFirState st{};
  ryxdFirInit(taps.data(), len, hist.data(), &st);
  std::vector<double> back(len - 1);
  ryxdFirGetDlyl(&st, back.data());
  EXPECT_TRUE(back == hist);
  // The wrap comes after extLen single samples and puts the span back at
  // the start of the buffer.
  const std::vector<double> input = randomVec<double>(gen, 128);
  for (int i = 0; i < 127; ++i) ryxdFir(&st, input[static_cast<size_t>(i)]);
  EXPECT_EQ(st.dlylCur, static_cast<double*>(st.dlylBuf) + 127);
  ryxdFir(&st, input[127]);
  EXPECT_EQ(st.dlylCur, st.dlylBuf);
  ryxdFirGetDlyl(&st, back.data());
  EXPECT_TRUE(std::equal(back.begin(), back.end(), input.end() - (len - 1)));
  // A block after single samples first brings the span to the start.
  ryxdFir(&st, 1.0);
  ryxdFir(&st, 2.0);
  const double src[3] = {3, 4, 5};
  double dst[3];
  ryxdbFir(&st, src, dst, 3);
  EXPECT_EQ(st.dlylCur, st.dlylBuf);
  ryxdFirGetDlyl(&st, back.data());
  const double want[5] = {1, 2, 3, 4, 5};
  EXPECT_TRUE(std::equal(back.begin(), back.end(), want));
  // A block shorter than the history moves it down by its length.
  const double two[2] = {6, 7};
  ryxdbFir(&st, two, dst, 2);
  ryxdFirGetDlyl(&st, back.data());
  const double want2[5] = {3, 4, 5, 6, 7};
  EXPECT_TRUE(std::equal(back.begin(), back.end(), want2));
  // Null history clears; taps read back in natural order.
  ryxdFirSetDlyl(nullptr, &st);
  ryxdFirGetDlyl(&st, back.data());
  EXPECT_TRUE(std::all_of(back.begin(), back.end(), [](double v) { return v == 0.0; }));
  std::vector<double> tb(len);
  ryxdFirGetTaps(&st, tb.data());
  EXPECT_TRUE(tb == taps);
  ryxdFirSetTaps(nullptr, &st);
  EXPECT_EQ(ryxdFir(&st, 1.0), 0.0);
  ryxFirFree(&st);
}

TEST(FirState, ComplexHistoryAndTapsRoundTrip) {
  std::mt19937 gen(4);
  const std::vector<SCplx> taps = randomVec<SCplx>(gen, 12);
  const std::vector<SCplx> hist = randomVec<SCplx>(gen, 11);
  RyxFirState st{};
  ryxcFirInit(taps.data(), 12, hist.data(), &st);
  std::vector<SCplx> hb(11), tb(12);
  ryxcFirGetDlyl(&st, hb.data());
  ryxcFirGetTaps(&st, tb.data());
  for (int i = 0; i < 11; ++i) EXPECT_TRUE(sameBits(hb[static_cast<size_t>(i)], hist[static_cast<size_t>(i)]));
  for (int i = 0; i < 12; ++i) EXPECT_TRUE(sameBits(tb[static_cast<size_t>(i)], taps[static_cast<size_t>(i)]));
  ryxcFirSetDlyl(nullptr, &st);
  ryxcFirSetTaps(nullptr, &st);
  SCplx out{1, 1};
  ryxcFirOut(&st, SCplx{1, 2}, &out);
  EXPECT_EQ(out.re, 0.0f);
  EXPECT_EQ(out.im, 0.0f);
  ryxFirFree(&st);

  // Mixed forms: complex history of real taps and back.
  const std::vector<DCplx> zh = randomVec<DCplx>(gen, 4);
  const double dt[5] = {1, 2, 3, 4, 5};
  ryxzdFirInit(dt, 5, zh.data(), &st);
  std::vector<DCplx> zb(4);
  ryxzFirGetDlyl(&st, zb.data());
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(sameBits(zb[static_cast<size_t>(i)], zh[static_cast<size_t>(i)]));
  ryxzFirSetDlyl(zb.data(), &st);
  ryxdFirSetTaps(nullptr, &st);
  const DCplx y = ryxzdFir(&st, DCplx{1, 1});
  EXPECT_EQ(y.re, 0.0);
  ryxFirFree(&st);
}

}  // namespace
}  // namespace firtest

namespace firtest {
namespace {

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
