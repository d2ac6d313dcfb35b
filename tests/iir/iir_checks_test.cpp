// Argument checks of the IIR routines: every documented failure in its
// order, with status, routine name, context text and source group; the
// float set-up routines and the filters report each fault of a call, the
// double set-up routines the first only; nothing is written on failure, a
// failure left standing stops a filter silently, and a failed allocation
// is reported and leaves the caller's pointer alone.
#include <functional>

#include "alloc_failure.h"
#include "iir_support.h"
#include "test_support.h"

namespace iirtest {
namespace {

using ryxtest::FailAllocation;
using ryxtest::ReportCapture;

struct Case {
  const char* label;
  std::function<void()> call;
  std::vector<Expect> reports;
};

// Live low-level records of each precision with their arrays; compared
// byte for byte around each failing call.
struct Live {
  float ftaps[6] = {1, 0.5f, 0.25f, 1, -0.5f, 0.25f};
  double dtaps[6] = {1, 0.5, 0.25, 1, -0.5, 0.25};
  float fline[2] = {0.5f, -0.5f};
  double dline[2] = {0.5, -0.5};
  SCplx cline[2] = {{1, 2}, {3, 4}};
  RyxIirTapState fts{}, dts{}, bad{};
  RyxIirDlyState fds{}, dds{}, cds{}, nullLine{};
  float src[4] = {1, 2, 3, 4};
  float dst[4] = {9, 9, 9, 9};
  double ddst[4] = {9, 9, 9, 9};
  SCplx cdst[4] = {};
  DCplx zdst[4] = {};
  SCplx val{42, 43};

  Live() {
    ryxsIirlInit(0, ftaps, 2, &fts);
    ryxdIirlInit(0, dtaps, 2, &dts);
    fds.dlyl = fline;
    dds.dlyl = dline;
    cds.dlyl = cline;
    bad = fts;
    bad.tapForm = 4;
  }
  std::vector<unsigned char> snapshot() const {
    const auto* b = reinterpret_cast<const unsigned char*>(this);
    return std::vector<unsigned char>(b, b + sizeof *this);
  }
};

void runCases(Live& live, const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    ReportCapture rec;
    const auto before = live.snapshot();
    c.call();
    expectReports(rec, c.reports, c.label);
    EXPECT_EQ(ryxGetErrStatus(), c.reports.back().status) << c.label;
    EXPECT_TRUE(live.snapshot() == before) << c.label << ": records or arrays changed";
  }
}

constexpr const char* kF = "mvqiirl";
constexpr const char* kD = "ryxiirl";
constexpr const char* kTapsNotSet = "structure *tapStPtr wasn't initialized";
constexpr const char* kLineNotSet = "structure *dlyStPtr wasn't initialized";

TEST(IirChecks, SetUpInOrder) {
  Live l;
  RyxIirTapState ts{};
  float* nullInner = nullptr;
  float zeroA0[4] = {1, 2, 0, 3};
  double dzeroA0[4] = {1, 2, 0, 3};
  float zeroB0[12] = {1, 0, 0, 1, 0, 0, 0, 1, 1, 1, 0, 0};
  double dzeroA0bq[12] = {1, 0, 0, 1, 0, 0, 1, 1, 1, 0, 0, 0};
  SCplx czero[2] = {{1, 0}, {0, 0}};
  DCplx zzero[2] = {{1, 0}, {0, 0}};
  float* f = l.ftaps;
  double* d = l.dtaps;
  auto inner = [](auto*& p) { return reinterpret_cast<std::remove_reference_t<decltype(*p)>*>(&p); };
  double* dNullInner = nullptr;
  float* zb = zeroB0;
  const std::vector<Case> cases = {
      {"f null record", [&] { ryxsIirlInit(0, f, 1, nullptr); }, {{"ryxsIirlInit", "tapStPtr==0", kF}}},
      {"f null taps", [&] { ryxcIirlInit(0, nullptr, 1, &ts); }, {{"ryxcIirlInit", "taps==0", kF}}},
      {"f order", [&] { ryxsIirlInit(0, f, -1, &ts); }, {{"ryxsIirlInit", "Order < 0", kF}}},
      {"f type", [&] { ryxsIirlInit(3, f, 1, &ts); }, {{"ryxsIirlInit", "iirType out of range", kF}}},
      {"f inner", [&] { ryxsIirlInit(2, inner(nullInner), 1, &ts); }, {{"ryxsIirlInit", "*((float**)taps)==0", kF}}},
      {"f a0", [&] { ryxsIirlInit(0, zeroA0, 1, &ts); }, {{"ryxsIirlInit", "taps[?] equals zero", kF}}},
      {"c a0", [&] { ryxcIirlInit(0, czero, 0, &ts); }, {{"ryxcIirlInit", "taps[?] equals zero", kF}}},
      {"f every fault",
       [&] { ryxsIirlInit(-1, nullptr, -1, nullptr); },
       {{"ryxsIirlInit", "tapStPtr==0", kF},
        {"ryxsIirlInit", "taps==0", kF},
        {"ryxsIirlInit", "Order < 0", kF},
        {"ryxsIirlInit", "iirType out of range", kF}}},
      {"f bq count", [&] { ryxsIirlInitBq(0, f, 0, &ts); }, {{"ryxsIirlInitBq", "NumQuads <= 0", kF}}},
      {"f bq every fault",
       [&] { ryxcIirlInitBq(5, nullptr, -2, &ts); },
       {{"ryxcIirlInitBq", "taps==0", kF},
        {"ryxcIirlInitBq", "NumQuads <= 0", kF},
        {"ryxcIirlInitBq", "iirType out of range", kF}}},
      {"f bq zero b0 in section 2",
       [&] { ryxsIirlInitBq(2, inner(zb), 2, &ts); },
       {{"ryxsIirlInitBq", "taps[?] equals zero", kF}}},
      {"d null record, first only",
       [&] { ryxdIirlInit(7, nullptr, -1, nullptr); },
       {{"ryxdIirlInit", "tapStPtr==0", kD}}},
      {"d null taps", [&] { ryxzIirlInit(0, nullptr, -1, &ts); }, {{"ryxzIirlInit", "taps==0", kD}}},
      {"d order", [&] { ryxdIirlInit(9, d, -1, &ts); }, {{"ryxdIirlInit", "order < 0", kD}}},
      {"d type", [&] { ryxdIirlInit(3, d, 1, &ts); }, {{"ryxdIirlInit", "iirType is out of range", kD}}},
      {"d inner", [&] { ryxdIirlInit(2, inner(dNullInner), 1, &ts); }, {{"ryxdIirlInit", "*((float**)taps)==0", kD}}},
      {"d a0", [&] { ryxdIirlInit(0, dzeroA0, 1, &ts); }, {{"ryxdIirlInit", "taps[order+1] equals zero", kD}}},
      {"z a0", [&] { ryxzIirlInit(0, zzero, 0, &ts); }, {{"ryxzIirlInit", "taps[order+1] equals zero", kD}}},
      {"d bq count", [&] { ryxdIirlInitBq(-1, d, 0, &ts); }, {{"ryxdIirlInitBq", "numQuads <= 0", kD}}},
      {"d bq zero a0", [&] { ryxdIirlInitBq(0, dzeroA0bq, 2, &ts); }, {{"ryxdIirlInitBq", "taps[?] equals zero", kD}}},
      {"f dlyl every fault",
       [&] { ryxsIirlInitDlyl(&l.bad, nullptr, nullptr); },
       {{"ryxsIirlInitDlyl", "dlyStPtr==0", kF},
        {"ryxsIirlInitDlyl", kTapsNotSet, kF},
        {"ryxsIirlInitDlyl", "dlyl==0", kF}}},
      {"c dlyl record", [&] { ryxcIirlInitDlyl(nullptr, l.cline, &l.cds); }, {{"ryxcIirlInitDlyl", "tapStPtr==0", kF}}},
      {"d dlyl first only",
       [&] { ryxdIirlInitDlyl(&l.bad, nullptr, nullptr); },
       {{"ryxdIirlInitDlyl", "dlyStPtr==0", kD}}},
      {"z dlyl line", [&] { ryxzIirlInitDlyl(&l.dts, nullptr, &l.dds); }, {{"ryxzIirlInitDlyl", "dlyl==0", kD}}},
  };
  runCases(l, cases);
}

TEST(IirChecks, FiltersInOrder) {
  Live l;
  RyxIirTapState unset{};
  const std::vector<Case> cases = {
      {"one, every fault",
       [&] { EXPECT_EQ(ryxsIirl(nullptr, nullptr, 1), 0.0f); },
       {{"ryxsIirl", "tapStPtr==0", kF}, {"ryxsIirl", "dlyStPtr==0", kF}}},
      {"one, record", [&] { EXPECT_EQ(ryxdIirl(&unset, &l.dds, 1), 0.0); }, {{"ryxdIirl", kTapsNotSet, kD}}},
      {"one, bad form", [&] { EXPECT_EQ(ryxsIirl(&l.bad, &l.fds, 1), 0.0f); }, {{"ryxsIirl", kTapsNotSet, kF}}},
      {"one, line",
       [&] {
         ryxzdIirl(&l.dts, &l.nullLine, {1, 1});
       },
       {{"ryxzdIirl", kLineNotSet, kD}}},
      {"block, every fault",
       [&] { ryxsbIirl(&l.fts, &l.nullLine, nullptr, nullptr, -1); },
       {{"ryxsbIirl", "inSamps==0", kF},
        {"ryxsbIirl", "outSamps==0", kF},
        {"ryxsbIirl", kLineNotSet, kF},
        {"ryxsbIirl", "numIters < 0", kF}}},
      {"block, records",
       [&] { ryxdzbIirl(nullptr, nullptr, nullptr, l.zdst, 3); },
       {{"ryxdzbIirl", "tapStPtr==0", kD}, {"ryxdzbIirl", "dlyStPtr==0", kD}, {"ryxdzbIirl", "inSamps==0", kD}}},
      {"block, count", [&] { ryxcsbIirl(&l.fts, &l.cds, l.cdst, l.cdst, -3); }, {{"ryxcsbIirl", "numIters < 0", kF}}},
      {"out, val",
       [&] {
         ryxcsIirlOut(&l.fts, &l.cds, {1, 1}, nullptr);
       },
       {{"ryxcsIirlOut", "val==0", kF}}},
      {"out, inner", [&] { ryxscIirlOut(nullptr, &l.cds, 1, &l.val); }, {{"ryxscIirl", "tapStPtr==0", kF}}},
  };
  runCases(l, cases);
}

// A failure left standing stops filters silently and returns zero; the
// float set-up routines give up too.
TEST(IirChecks, StandingFailureStops) {
  Live l;
  ReportCapture rec;
  const auto before = l.snapshot();
  ryxSetErrStatus(RYX_StsBadArg);
  EXPECT_EQ(ryxsIirl(&l.fts, &l.fds, 1), 0.0f);
  EXPECT_EQ(ryxdIirl(&l.dts, &l.dds, 1), 0.0);
  ryxsbIirl(&l.fts, &l.fds, l.src, l.dst, 4);
  ryxcsIirlOut(&l.fts, &l.cds, {1, 1}, &l.val);
  ryxsIirlInit(0, l.ftaps, 2, &l.fts);
  ryxdIirlInitBq(0, l.dtaps, 1, &l.dts);
  ryxcIirlInitDlyl(&l.fts, l.cline, &l.cds);
  EXPECT_TRUE(rec.reports().empty());
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
  EXPECT_TRUE(l.snapshot() == before);
  ryxSetErrStatus(RYX_StsOk);
  EXPECT_NE(ryxsIirl(&l.fts, &l.fds, 1), 0.0f);
}

TEST(IirChecks, AllocationFailure) {
  for (bool cascade : {false, true}) {
    ReportCapture rec;
    float taps[12] = {1, 0.5f, 0.25f, 1, -0.5f, 0.25f, 1, 0.5f, 0.25f, 1, -0.5f, 0.25f};
    float* p = taps;
    RyxIirTapState ts{};
    {
      FailAllocation fail(1);
      if (cascade) {
        ryxsIirlInitBq(2, reinterpret_cast<float*>(&p), 2, &ts);
      } else {
        ryxcIirlInit(2, reinterpret_cast<SCplx*>(&p), 2, &ts);
      }
      EXPECT_EQ(FailAllocation::refused(), 1);
    }
    ASSERT_EQ(rec.reports().size(), 1u);
    EXPECT_EQ(rec.reports()[0].status, RYX_StsNoMem);
    EXPECT_EQ(rec.reports()[0].context, "insufficiency of memory for IIR filter state");
    EXPECT_EQ(rec.reports()[0].funcName, cascade ? "ryxsIirlInitBq" : "ryxcIirlInit");
    EXPECT_EQ(rec.reports()[0].file, "mvqiirl");
    EXPECT_EQ(p, taps);
    EXPECT_EQ(ts.taps, nullptr);
  }
}

}  // namespace
}  // namespace iirtest
