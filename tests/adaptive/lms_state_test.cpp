// Taps and line access, hand-over of the records' own arrays, the refusals
// that only set the status, the marks of the owned record, release and
// allocation failure.
#include "alloc_failure.h"
#include "lms_support.h"

namespace lmstest {
namespace {

using ryxtest::ReportCapture;

// The routines of one element type: those of its combination of equal
// sample and tap types.
template <class T>
using Access = std::conditional_t<std::is_same_v<T, float>, SS,
                                  std::conditional_t<std::is_same_v<T, double>, DD,
                                                     std::conditional_t<std::is_same_v<T, SCplx>, CC, ZZ>>>;

template <class T>
class LmsState : public ::testing::Test {};
using ElementTypes = ::testing::Types<float, double, SCplx, DCplx>;
TYPED_TEST_SUITE(LmsState, ElementTypes);

// The line's length by its rule, and the caller's order (oldest first over
// dlylLen - 1 places, caller element j at line element dlylLen-2-j).
TYPED_TEST(LmsState, LineLengthAndOrder) {
  using T = TypeParam;
  using A = Access<T>;
  ryxtest::Random r(41);
  const int shapes[][4] = {{4, 0, 1, 0}, {4, 2, 1, 0}, {3, 1, 3, 2}, {1, 0, 1, 0}};  // taps, errDly, D, P
  for (const auto& sh : shapes) {
    for (int adaptB : {0, 1}) {
      std::vector<T> taps(static_cast<size_t>(sh[0]));
      RyxLmsTapState ts{};
      RyxLmsDlyState ds{};
      A::initMr(9, taps.data(), sh[0], 0.5f, 0.25f, sh[1], sh[2], sh[3], &ts);
      EXPECT_EQ(ts.isMultiRate, sh[2] > 1 ? 1 : 0);
      EXPECT_EQ(ts.lmsType, 9);
      EXPECT_EQ(ts.upFactor, 1);
      const int len = sh[0] + (adaptB ? sh[1] : 0) + (sh[2] > 1 ? sh[2] : 0);
      std::vector<T> line(size_t(len), randomValue<T>(r, 5, 6));
      const std::vector<T> before = line;
      A::initDlyl(&ts, line.data(), adaptB, &ds);
      ASSERT_EQ(ds.dlylLen, len);
      EXPECT_EQ(ds.adaptB, adaptB);
      EXPECT_EQ(ds.isDlyFilterMode, 1);
      EXPECT_TRUE(ryxtest::sameBits(line.data(), before.data(), len)) << "InitDlyl leaves the contents";
      // Null clears every place.
      A::setDlyl(&ts, nullptr, &ds);
      for (const T& v : line) EXPECT_EQ(mag(toLC(v)), 0) << "cleared";
      const std::vector<T> given = randomArray<T>(r, len - 1);
      A::setDlyl(&ts, given.data(), &ds);
      for (int j = 0; j < len - 1; ++j) EXPECT_TRUE(ryxtest::sameBits(&line[size_t(len - 2 - j)], &given[size_t(j)], 1));
      EXPECT_EQ(mag(toLC(line[size_t(len - 1)])), 0) << "the last place is out of reach";
      std::vector<T> got(static_cast<size_t>(len));
      A::getDlyl(&ts, &ds, got.data());
      if (len > 1) EXPECT_TRUE(ryxtest::sameBits(got.data(), given.data(), len - 1));
      EXPECT_EQ(ds.isDlyFilterMode, 0);
    }
  }
}

// Hand-over of the record's own line: reversed in place each way; the
// second hand-over in the same direction is refused with an internal
// status and no report, and changes nothing.
TYPED_TEST(LmsState, OwnLineHandOverAndRefusals) {
  using T = TypeParam;
  using A = Access<T>;
  ryxtest::Random r(42);
  std::vector<T> taps(3);
  std::vector<T> line(6);
  RyxLmsTapState ts{};
  RyxLmsDlyState ds{};
  A::initMr(0, taps.data(), 3, 0.5f, 0.0f, 2, 1, 0, &ts);
  A::initDlyl(&ts, line.data(), 1, &ds);
  const std::vector<T> given = randomArray<T>(r, 4);
  A::setDlyl(&ts, given.data(), &ds);
  ReportCapture cap;
  A::getDlyl(&ts, &ds, line.data());
  EXPECT_TRUE(ryxtest::sameBits(line.data(), given.data(), 4)) << "caller's order in place";
  EXPECT_EQ(ds.isDlyFilterMode, 0);
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsOk);
  A::getDlyl(&ts, &ds, line.data());
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsInternal);
  EXPECT_TRUE(ryxtest::sameBits(line.data(), given.data(), 4));
  cap.clear();
  // The caller edits its history in place and hands it back.
  line[0] = randomValue<T>(r, 2, 3);
  const T oldest = line[0];
  A::setDlyl(&ts, line.data(), &ds);
  EXPECT_EQ(ds.isDlyFilterMode, 1);
  EXPECT_TRUE(ryxtest::sameBits(&line[3], &oldest, 1));
  const std::vector<T> working = line;
  A::setDlyl(&ts, line.data(), &ds);
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsInternal);
  EXPECT_TRUE(ryxtest::sameBits(line.data(), working.data(), 6));
  EXPECT_TRUE(cap.reports().empty());
}

// Taps: null gives zeros, another array is copied, the own array is kept;
// any read clears filter mode, any write sets it.
TYPED_TEST(LmsState, TapsAccess) {
  using T = TypeParam;
  using A = Access<T>;
  ryxtest::Random r(43);
  std::vector<T> taps = randomArray<T>(r, 5);
  RyxLmsTapState ts{};
  A::initMr(0, taps.data(), 5, 0.5f, 0.0f, 0, 1, 0, &ts);
  EXPECT_EQ(ts.isFilterMode, 1);
  std::vector<T> got(5);
  A::getTaps(&ts, got.data());
  EXPECT_TRUE(ryxtest::sameBits(got.data(), taps.data(), 5));
  EXPECT_EQ(ts.isFilterMode, 0);
  A::setTaps(nullptr, &ts);
  EXPECT_EQ(ts.isFilterMode, 1);
  for (const T& v : taps) EXPECT_EQ(mag(toLC(v)), 0);
  A::setTaps(got.data(), &ts);
  EXPECT_TRUE(ryxtest::sameBits(got.data(), taps.data(), 5));
  A::getTaps(&ts, taps.data());
  EXPECT_EQ(ts.isFilterMode, 0);
  taps[2] = randomValue<T>(r, 7, 8);
  const std::vector<T> edited = taps;
  A::setTaps(taps.data(), &ts);
  EXPECT_EQ(ts.isFilterMode, 1);
  EXPECT_TRUE(ryxtest::sameBits(taps.data(), edited.data(), 5));
}

// The owned record: its arrays round trip through the accessors, a read
// stops the filters until the matching write.
TYPED_TEST(LmsState, OwnedRecordAccessAndMarks) {
  using T = TypeParam;
  using A = Access<T>;
  ryxtest::Random r(44);
  const std::vector<T> taps = randomArray<T>(r, 4);
  const std::vector<T> hist = randomArray<T>(r, 4 + 1 + 2 - 1);
  RyxLmsState st{};
  A::hInitMr(0, taps.data(), 4, hist.data(), 0.5f, 0.0f, 1, 2, 1, &st);
  ASSERT_EQ(st.dlySt.dlylLen, 7);
  std::vector<T> got(7);
  A::hGetDlyl(&st, got.data());
  EXPECT_TRUE(ryxtest::sameBits(got.data(), hist.data(), 6));
  EXPECT_EQ(st.dlySt.isDlyFilterMode, 0);
  A::hSetDlyl(&st, got.data());
  EXPECT_EQ(st.dlySt.isDlyFilterMode, 1);
  A::hGetTaps(&st, got.data());
  EXPECT_TRUE(ryxtest::sameBits(got.data(), taps.data(), 4));
  EXPECT_EQ(st.tapSt.isFilterMode, 0);
  A::hSetTaps(nullptr, &st);
  EXPECT_EQ(st.tapSt.isFilterMode, 1);
  A::hSetDlyl(&st, nullptr);
  for (int k = 0; k < 7; ++k) EXPECT_EQ(mag(toLC(static_cast<T*>(st.dlySt.dlyl)[k])), 0);
  ryxLmsFree(&st);
  EXPECT_EQ(st.tapSt.taps, nullptr);
  EXPECT_EQ(st.dlySt.dlyl, nullptr);
  ryxLmsFree(&st);  // harmless twice
}

TEST(LmsStateMarks, FiltersRefuseAfterARead) {
  ReportCapture cap;
  RyxLmsState st{};
  const float taps[3] = {1, 2, 3};
  ryxsLmsInit(0, taps, 3, nullptr, 0.5f, 0.0f, 0, &st);
  float got[3];
  ryxsLmsGetTaps(&st, got);
  cap.clear();
  EXPECT_EQ(ryxsLms(&st, 1.0f, 1.0f), 0.0f);
  ASSERT_EQ(cap.reports().size(), 1u);
  EXPECT_EQ(cap.reports()[0].funcName, "ryxsLms");
  EXPECT_EQ(cap.reports()[0].context, "Taps state structure is not initialized");
  EXPECT_EQ(cap.reports()[0].file, "ryxlmsh");
  ryxsLmsSetTaps(got, &st);
  float line[2];
  ryxsLmsGetDlyl(&st, line);
  cap.clear();
  EXPECT_EQ(ryxsLmsDes(&st, 1.0f, 1.0f), 0.0f);
  ASSERT_EQ(cap.reports().size(), 1u);
  EXPECT_EQ(cap.reports()[0].context, "Delay line state structure is not initialized");
  ryxsLmsSetDlyl(&st, line);
  cap.clear();
  EXPECT_EQ(ryxsLms(&st, 1.0f, 0.0f), 1.0f);
  EXPECT_TRUE(cap.reports().empty());
  ryxLmsFree(&st);
}

// A read of the taps of a low-level record stops the plain block filter,
// whose FIR routine reports it.
TEST(LmsStateMarks, PlainBlockNeedsFilterMode) {
  ReportCapture cap;
  float taps[3] = {1, 2, 3}, line[4] = {}, got[3];
  RyxLmsTapState ts{};
  RyxLmsDlyState ds{};
  ryxsLmslInit(0, taps, 3, 0.5f, 0.0f, 0, &ts);
  ryxsLmslInitDlyl(&ts, line, 1, &ds);
  ryxsLmslGetTaps(&ts, got);
  cap.clear();
  const float src[2] = {1, 2};
  float dst[2] = {7, 7};
  ryxsbLmslNa(&ts, &ds, src, dst, 2);
  ASSERT_EQ(cap.reports().size(), 1u);
  EXPECT_EQ(cap.reports()[0].funcName, "ryxsbFirl");
  EXPECT_EQ(cap.reports()[0].context, "Not filter mode");
  EXPECT_EQ(cap.reports()[0].file, "ryxfirl");
  EXPECT_EQ(dst[0], 7.0f);
  EXPECT_EQ(dst[1], 7.0f);
}

// The scalar accessors, low and high level.
TEST(LmsStateMarks, StepLeakAndErrorAccessors) {
  double taps[2] = {};
  RyxLmsTapState ts{};
  ryxdLmslInit(0, taps, 2, 0.25f, 0.125f, 0, &ts);
  EXPECT_EQ(ryxsLmslGetStep(&ts), 0.25f);
  EXPECT_EQ(ryxsLmslGetLeak(&ts), 0.125f);
  ryxsLmslSetStep(-0.5f, &ts);
  ryxsLmslSetLeak(0.75f, &ts);
  EXPECT_EQ(ts.step, -0.5f);
  EXPECT_EQ(ts.leak, 0.75f);
  RyxLmsState st{};
  ryxdLmsInit(0, nullptr, 2, nullptr, 0.25f, 0.125f, 0, &st);
  EXPECT_EQ(ryxsLmsGetStep(&st), 0.25f);
  EXPECT_EQ(ryxsLmsGetLeak(&st), 0.125f);
  ryxsLmsSetStep(2.0f, &st);
  ryxsLmsSetLeak(0.5f, &st);
  EXPECT_EQ(st.tapSt.step, 2.0f);
  EXPECT_EQ(st.tapSt.leak, 0.5f);
  EXPECT_EQ(ryxdLmsGetErrVal(&st), 0.0);
  ryxdLmsSetErrVal(-3.5, &st);
  EXPECT_EQ(ryxdLmsGetErrVal(&st), -3.5);
  ryxLmsFree(&st);
  RyxLmsState zs{};
  ryxzLmsInit(0, nullptr, 1, nullptr, 0.25f, 0.0f, 0, &zs);
  ryxzLmsSetErrVal(DCplx{1.5, -2.5}, &zs);
  EXPECT_EQ(ryxzLmsGetErrVal(&zs).im, -2.5);
  ryxLmsFree(&zs);
  RyxLmsState ss{};
  ryxsLmsInit(0, nullptr, 1, nullptr, 0.25f, 0.0f, 0, &ss);
  ryxsLmsSetErrVal(4.0f, &ss);
  EXPECT_EQ(ryxsLmsGetErrVal(&ss), 4.0f);
  ryxLmsFree(&ss);
}

// With the leak and no error, the desired-signal form only scales the taps
// (a zero step too), while the caller-error form leaves them alone.
TEST(LmsStateMarks, DesiredSignalLeaksWithZeroStep) {
  const double taps[2] = {1.0, -2.0};
  RyxLmsState des{}, plain{};
  ryxdLmsInit(0, taps, 2, nullptr, 0.0f, 0.25f, 0, &des);
  ryxdLmsInit(0, taps, 2, nullptr, 0.0f, 0.25f, 0, &plain);
  ryxdLmsDes(&des, 1.0, 5.0);
  ryxdLms(&plain, 1.0, 5.0);
  double a[2], b[2];
  ryxdLmsGetTaps(&des, a);
  ryxdLmsGetTaps(&plain, b);
  EXPECT_EQ(a[0], 0.75);
  EXPECT_EQ(a[1], -1.5);
  EXPECT_EQ(b[0], 1.0);
  EXPECT_EQ(b[1], -2.0);
  EXPECT_EQ(ryxdLmsGetErrVal(&des), 5.0 - 0.75);
  ryxLmsFree(&des);
  ryxLmsFree(&plain);
}

// 16-bit hand-over: the own array goes back to floats in place and returns
// to integers on SetTaps; a second SetTaps of the own array is refused.
TEST(LmsStateInt16, TapsAndLineHandOver) {
  ReportCapture cap;
  float taps[3] = {0.5f, -1.25f, 2.0f};
  short line[4] = {};
  RyxLmsTapState ts{};
  RyxLmsDlyState ds{};
  ryxwLmslInit(0, taps, 3, 0.0f, 1, &ts);
  ryxwLmslInitDlyl(&ts, line, &ds);
  ryxwLmslGetTaps(&ts, taps);
  EXPECT_EQ(taps[0], 0.5f);
  EXPECT_EQ(taps[1], -1.25f);
  EXPECT_EQ(ts.isFilterMode, 0);
  taps[2] = 0.25f;
  ryxwLmslSetTaps(taps, &ts);
  std::int32_t q[3];
  std::memcpy(q, taps, sizeof q);
  EXPECT_EQ(q[0], 4096);
  EXPECT_EQ(q[1], -10240);
  EXPECT_EQ(q[2], 2048);
  EXPECT_EQ(ts.isFilterMode, 1);
  ryxwLmslSetTaps(taps, &ts);
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsInternal);
  std::memcpy(q, taps, sizeof q);
  EXPECT_EQ(q[0], 4096);
  EXPECT_TRUE(cap.reports().empty());
  cap.clear();
  float other[3] = {1.0f, 0.0f, -0.5f};
  ryxwLmslSetTaps(other, &ts);
  std::memcpy(q, taps, sizeof q);
  EXPECT_EQ(q[2], -4096);
  ryxwLmslSetTaps(nullptr, &ts);
  std::memcpy(q, taps, sizeof q);
  EXPECT_EQ(q[0], 0);
  // The line, oldest first over dlylLen - 1 = 3 places.
  const short hist[3] = {10, -20, 30};
  ryxwLmslSetDlyl(&ts, hist, &ds);
  EXPECT_EQ(line[0], 30);
  EXPECT_EQ(line[2], 10);
  short back[3];
  ryxwLmslGetDlyl(&ts, &ds, back);
  EXPECT_EQ(back[0], 10);
  EXPECT_EQ(back[2], 30);
  EXPECT_EQ(ds.isDlyFilterMode, 0);
}

// Init without memory: what was obtained is freed, both marks stay 0 and
// the failure is reported; the filters then refuse the record.
TEST(LmsStateAlloc, InitWithoutMemory) {
  for (int nth : {1, 2}) {
    ReportCapture cap;
    RyxLmsState st{};
    {
      ryxtest::FailAllocation fail(nth);
      ryxcLmsInitMr(0, nullptr, 4, nullptr, 0.5f, 0.0f, 1, 2, 0, &st);
    }
    EXPECT_EQ(st.tapSt.isFilterMode, 0) << nth;
    EXPECT_EQ(st.dlySt.isDlyFilterMode, 0) << nth;
    EXPECT_EQ(st.tapSt.taps, nullptr);
    EXPECT_EQ(st.dlySt.dlyl, nullptr);
    ASSERT_EQ(cap.reports().size(), 1u);
    EXPECT_EQ(cap.reports()[0].status, RYX_StsNoMem);
    EXPECT_EQ(cap.reports()[0].funcName, "ryxcLmsInitMr");
    EXPECT_EQ(cap.reports()[0].context, "Problem to allocate memory");
    EXPECT_EQ(cap.reports()[0].file, "ryxlmsh");
    cap.clear();
    const SCplx x[2] = {};
    EXPECT_EQ(ryxcbLms(&st, x, SCplx{1, 1}).re, 0.0f);
    ASSERT_EQ(cap.reports().size(), 1u);
    EXPECT_EQ(cap.reports()[0].context, "Taps state structure is not initialized");
  }
}

}  // namespace
}  // namespace lmstest
