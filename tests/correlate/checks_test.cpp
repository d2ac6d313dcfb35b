// Every refused call of the family in one table: the status, the routine
// (or inner method) named, the source group and the exact context, in the
// documented order of the checks; working arrays refused by the injection
// hook are reported or, where the routine falls back, not; every block
// taken is given back and a refused argument leaves the outputs alone.
#include <functional>

#include "alloc_failure.h"
#include "corr_support.h"

namespace corrtest {
namespace {

TEST(Checks, StatusRoutineGroupAndContextInOrder) {
  float a[289] = {1, 2, 3, 4, 5, 6, 7, 8}, y[33 * 33] = {};
  short w[64] = {1, 2, 3}, wy[256] = {};
  WCplx v[8] = {}, vy[8] = {};
  int sf = 0;
  ryxtest::Random r(9);
  const auto lx = randomVec<float>(r, 60000), lh = randomVec<float>(r, 200);
  std::vector<float> ly(lx.size() + lh.size());
  const auto wx = randomVec<short>(r, 300);
  std::vector<short> wly(600);
  const std::string null2d = "\nNull pointer to data buffer\n", size2d = "\nBad value of data buffer size\n";
  auto longConv = [&] { ryxsConv(lx.data(), 60000, lh.data(), 200, ly.data()); };
  auto wFloat = [&] { ryxwConv(wx.data(), 300, wx.data(), 300, wly.data(), 0, nullptr); };
  struct Row {
    std::function<void()> call;
    const char* func;
    const char* file;
    std::string context;
    int failAt = 0;  // the refused allocation; 0: none
  } rows[] = {
      {[&] { ryxsConv(nullptr, 0, nullptr, 0, nullptr); }, "ryxsConv", "ryxconvs", "x==0"},
      {[&] { ryxsConv(a, 0, nullptr, 4, y); }, "ryxsConv", "ryxconvs", "xLen<=0"},
      {[&] { ryxsConv(a, 4, nullptr, 4, y); }, "ryxsConv", "ryxconvs", "h==0"},
      {[&] { ryxsConv(a, 4, a, -1, y); }, "ryxsConv", "ryxconvs", "hLen<=0"},
      {[&] { ryxcsConv(reinterpret_cast<SCplx*>(a), 4, a, 4, nullptr); }, "ryxcsConv", "ryxconvs", "y==0"},
      {[&] { ryxzdConv(nullptr, 1, nullptr, 1, nullptr); }, "ryxzdConv", "ryxconvd", "x==0"},
      {[&] { ryxwConv(w, 4, w, 0, wy, 4, nullptr); }, "ryxwConv", "ryxconvw", "hLen<=0"},
      {[&] { ryxsConv2D(a, 8, 8, nullptr, 8, 8, y); }, "ryxsConv2D", "ryxcnv2d", null2d},
      {[&] { ryxdConv2D(nullptr, 8, 8, nullptr, 0, 8, nullptr); }, "ryxdConv2D", "ryxcnv2d", null2d},
      {[&] { ryxwConv2D(w, 8, 8, w, 8, 0, wy, 0, &sf); }, "ryxwConv2D", "ryxcnv2d", size2d},
      {[&] { ryxsFilter2D(a, 8, 8, nullptr, 8, 8, y); }, "ryxsFilter2D", "ryxfir2", "Null SRC buffer pointer"},
      {[&] { ryxsFilter2D(a, 8, 8, a, 8, 8, nullptr); }, "ryxsFilter2D", "ryxfir2", "Null DST buffer pointer"},
      {[&] { ryxdFilter2D(nullptr, 0, 8, nullptr, 8, 8, nullptr); }, "ryxdFilter2D", "ryxfir2", "Null SRC buffer pointer"},
      {[&] { ryxsFilter2D(a, 0, 0, a, 8, 8, y); }, "ryxsFilter2D", "ryxfir2", "Invalid number of cols"},
      {[&] { ryxsFilter2D(a, 8, 0, a, 0, 8, y); }, "ryxsFilter2D", "ryxfir2", "Inlalid number of rows"},
      {[&] { ryxwFilter2D(w, 8, 8, w, 0, 8, wy, 4, nullptr); }, "ryxwFilter2D", "ryxfir2w", "Invalid number of cols"},
      {[&] { ryxwFilter2D(w, 8, 8, w, 8, 0, wy, 4, nullptr); }, "ryxwFilter2D", "ryxfir2w", "Inlalid number of rows"},
      {[&] { ryxwFilter2D(w, 8, 8, w, 8, 8, wy, 4, nullptr); }, "ryxwFilter2D", "ryxfir2w", "Null scale factor pointer"},
      {[&] { ryxsCrossCorr(a, 8, nullptr, 8, nullptr, 0, -1); }, "ryxsCrossCorr", "ryxcorr", "Null SRC buffer pointer"},
      {[&] { ryxsCrossCorr(a, 0, a, 8, nullptr, 0, -1); }, "ryxsCrossCorr", "ryxcorr", "Null DST buffer pointer"},
      {[&] { ryxsCrossCorr(a, 8, a, 0, y, 0, -1); }, "ryxsCrossCorr", "ryxcorr", "Invalid SRC buffer length"},
      {[&] { ryxsCrossCorr(a, 8, a, 8, y, 0, -1); }, "ryxsCrossCorr", "ryxcorr", "Invalid LAG value"},
      {[&] { ryxsAutoCorr(nullptr, 0, nullptr, 0, 5); }, "ryxsAutoCorr", "ryxcorr", "Null SRC buffer pointer"},
      {[&] { ryxsAutoCorr(a, 0, nullptr, 0, 5); }, "ryxsAutoCorr", "ryxcorr", "Null DST buffer pointer"},
      {[&] { ryxsAutoCorr(a, 0, y, 0, 5); }, "ryxsAutoCorr", "ryxcorr", "Invalid SRC buffer length"},
      {[&] { ryxsAutoCorr(a, 4, y, 5, 5); }, "ryxsAutoCorr", "ryxcorr", "Invalid LAG value"},
      {[&] { ryxsAutoCorr(a, 4, y, 0, 5); }, "ryxsAutoCorr", "ryxcorr", "Invalid LAG value"},
      {[&] { ryxsAutoCorr(a, 4, y, 4, 3); }, "ryxsAutoCorr", "ryxcorr", "Invalid auto-corr type"},
      {[&] { ryxvCrossCorr(v, 8, v, 8, vy, 0, 3, 4, nullptr); }, "ryxvCrossCorr", "ryxcorrw", "Null scale factor pointer"},
      {[&] { ryxwAutoCorr(w, 8, wy, 8, -1, 4, nullptr); }, "ryxwAutoCorr", "ryxcorrw", "Invalid auto-corr type"},
      {[&] { ryxwAutoCorr(w, 8, wy, 8, 0, 4, nullptr); }, "ryxwAutoCorr", "ryxcorrw", "Null scale factor pointer"},
      {[&] { ryxwvCrossCorr(w, 8, v, 8, vy, 3, 2, 0, &sf); }, "ryxwvCrossCorr", "ryxcorrw", "Invalid LAG value"},
      // Memory: reported under the method or routine that asked for it.
      {longConv, "ryxsConvm", "ryxconvs", "NULL Pointer", 1},
      {longConv, "ryxsConvm", "ryxconvs", "NULL Pointer", 2},
      {[&] { ryxsConv(lx.data(), 300, lh.data(), 200, ly.data()); }, "ryxsConv1", "ryxconvs", "NULL Pointer", 2},
      {wFloat, "ryxwConv", "ryxconvw", "NULL pointer to float copy x", 1},
      {wFloat, "ryxwConv", "ryxconvw", "NULL pointer to float copy h", 2},
      {wFloat, "ryxwConv", "ryxconvw", "NULL pointer to float copy y", 3},
      {[&] { ryxwFilter2D(w, 8, 8, w, 8, 8, wy, 0, nullptr); }, "ryxwFilter2D", "ryxfir2w", "Allocation failure", 1},
      {[&] { ryxsConv2D(a, 17, 17, a, 17, 17, y); }, "ownsHftConv2d", "ryxcnv2d", "\nMemory allocation problem\n", 2},
      {[&] { ryxwAutoCorr(w, 8, wy, 8, RYX_CorrNormal, 0, nullptr); }, "ryxwAutoCorr", "ryxcorrw", "Allocation failure", 1},
  };
  for (auto& row : rows) {
    if (row.failAt > 0) row.call();  // tables of the orders built beforehand
    ryxtest::ReportCapture cap;
    const long live = ryxtest::FailAllocation::live();
    {
      ryxtest::FailAllocation fail(row.failAt);
      row.call();
    }
    EXPECT_EQ(ryxtest::FailAllocation::live(), live);
    EXPECT_EQ(cap.reports().size(), 1u) << row.context;
    expectFirstReport(cap, row.failAt > 0 ? RYX_StsNoMem : RYX_StsBadArg, row.func, row.file, row.context);
    if (row.failAt == 0) {
      for (float e : y) ASSERT_EQ(e, 0.0f) << row.context;
      for (short e : wy) ASSERT_EQ(e, 0) << row.context;
    }
  }
  // Other modes read a null factor as 0.
  ryxtest::ReportCapture cap;
  ryxvCrossCorr(v, 8, v, 8, vy, 0, 3, 3, nullptr);
  EXPECT_TRUE(cap.reports().empty());
}

}  // namespace
}  // namespace corrtest
