// Argument checks of both FIR forms: each documented failure, in its order,
// with its status, routine name, context text and source group; the records
// and arrays stay as they were and a failed filter yields zero.
#include <functional>

#include "fir/firh_core.h"
#include "alloc_failure.h"
#include "fir_support.h"

namespace firtest {
namespace {

struct Case {
  const char* label;
  std::function<void()> call;
  const char* func;
  const char* context;
  RyxStatus status = RYX_StsBadArg;
};

// A live low-level pair and a live high-level record with their arrays, to
// be compared byte for byte before and after each failing call.
struct Live {
  float taps[5] = {1, 2, 3, 4, 5};
  float line[5] = {0};
  RyxFirTapState ts{};
  RyxFirDlyState ds{};
  RyxFirState st{};
  RyxFirState dead{};
  float src[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  float dst[8] = {9, 9, 9, 9, 9, 9, 9, 9};
  SCplx csrc[8] = {};
  SCplx cdst[8] = {};
  SCplx val{42.0f, 43.0f};

  Live() {
    ryxsFirlInit(taps, 5, &ts);
    ryxsFirlInitDlyl(&ts, line, &ds);
    ryxsFirlSetDlyl(&ts, nullptr, &ds);
    ryxsFirInit(taps, 5, nullptr, &st);
  }
  ~Live() {
    if (st.initMark == &st) ryxFirFree(&st);
  }
  // The whole fixture byte for byte, and the record's own arrays while live.
  std::vector<unsigned char> snapshot() const {
    auto bytes = [](const void* p, size_t n) {
      const auto* b = static_cast<const unsigned char*>(p);
      return std::vector<unsigned char>(b, b + n);
    };
    std::vector<unsigned char> all = bytes(this, sizeof *this);
    if (st.initMark == &st) {
      for (auto part : {bytes(st.taps, 5 * sizeof(float)),
                        bytes(st.dlylBuf, static_cast<size_t>(st.dlylLen + st.extLen) * sizeof(float))})
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
  }
};

void runCases(Live& live, const std::vector<Case>& cases, const char* file) {
  for (const Case& c : cases) {
    RecordReports rec;
    const auto before = live.snapshot();
    c.call();
    ASSERT_EQ(reports().size(), 1u) << c.label;
    const Report& r = reports()[0];
    EXPECT_EQ(r.status, c.status) << c.label;
    EXPECT_EQ(r.func, c.func) << c.label;
    EXPECT_EQ(r.context, c.context) << c.label;
    EXPECT_EQ(r.file, file) << c.label;
    EXPECT_EQ(ryxGetErrStatus(), c.status) << c.label;
    EXPECT_TRUE(live.snapshot() == before) << c.label << ": records or arrays changed";
  }
}

TEST(FirChecks, LowLevelInOrder) {
  Live l;
  RyxFirTapState fresh{};
  RyxFirDlyState freshD{};
  RyxFirTapState& ts = l.ts;
  RyxFirDlyState& ds = l.ds;
  float* t = l.taps;
  // Tap states that refuse block filtering: taps taken back, line not set.
  static RyxFirTapState taken;
  static RyxFirDlyState unset;
  taken = ts;
  taken.isFilterMode = 0;
  unset = ds;
  unset.isDlyFilterMode = 0;
  const char* nb = "Null buffer pointer";
  std::vector<Case> cases = {
      {"init null taps", [&] { ryxsFirlInit(nullptr, 5, &fresh); }, "ryxsFirlInit", nb},
      {"init null state", [&] { ryxcFirlInit(reinterpret_cast<SCplx*>(t), 2, nullptr); }, "ryxcFirlInit", nb},
      {"init nulls before length", [&] { ryxdFirlInit(nullptr, 0, &fresh); }, "ryxdFirlInit", nb},
      {"init length", [&] { ryxzFirlInit(reinterpret_cast<DCplx*>(t), 0, &fresh); }, "ryxzFirlInit", "Invalid array length"},
      {"mr null", [&] { ryxsFirlInitMr(t, 5, 2, 0, 1, 0, nullptr); }, "ryxsFirlInitMr", nb},
      {"mr length", [&] { ryxsFirlInitMr(t, 0, 2, -1, 1, 0, &fresh); }, "ryxsFirlInitMr", "Invalid array length"},
      {"mr up phase", [&] { ryxcFirlInitMr(reinterpret_cast<SCplx*>(t), 2, 2, -1, 1, 9, &fresh); }, "ryxcFirlInitMr",
       "Invalid phase value"},
      {"mr down phase", [&] { ryxdFirlInitMr(reinterpret_cast<double*>(t), 2, 2, 0, 1, -1, &fresh); }, "ryxdFirlInitMr",
       "Invalid phase value"},
      {"mr up factor", [&] { ryxzFirlInitMr(reinterpret_cast<DCplx*>(t), 1, 2, 2, 1, 0, &fresh); }, "ryxzFirlInitMr",
       "Invalid factor value"},
      {"mr down factor", [&] { ryxsFirlInitMr(t, 5, 1, 0, 3, 3, &fresh); }, "ryxsFirlInitMr", "Invalid factor value"},
      {"mr factor zero", [&] { ryxsFirlInitMr(t, 5, 0, 0, 1, 0, &fresh); }, "ryxsFirlInitMr", "Invalid factor value"},
      {"dlyl null buffer", [&] { ryxsFirlInitDlyl(&ts, nullptr, &freshD); }, "ryxsFirlInitDlyl", nb},
      {"dlyl null delay state", [&] { ryxcFirlInitDlyl(&ts, reinterpret_cast<SCplx*>(l.line), nullptr); },
       "ryxcFirlInitDlyl", nb},
      {"dlyl null tap state", [&] { ryxdFirlInitDlyl(nullptr, reinterpret_cast<double*>(l.line), &freshD); },
       "ryxdFirlInitDlyl", nb},
      {"set taps", [&] { ryxsFirlSetTaps(t, nullptr); }, "ryxsFirlSetTaps", nb},
      {"get taps null array", [&] { ryxsFirlGetTaps(&ts, nullptr); }, "ryxsFirlGetTaps", nb},
      {"get taps null state", [&] { ryxzFirlGetTaps(nullptr, reinterpret_cast<DCplx*>(l.dst)); }, "ryxzFirlGetTaps", nb},
      {"get taps mode", [&] { ryxsFirlGetTaps(&taken, l.dst); }, "ryxsFirlGetTaps", "Not filter mode"},
      {"set dlyl null delay", [&] { ryxsFirlSetDlyl(&ts, l.src, nullptr); }, "ryxsFirlSetDlyl", nb},
      {"set dlyl null tap", [&] { ryxcFirlSetDlyl(nullptr, l.csrc, &ds); }, "ryxcFirlSetDlyl", nb},
      {"get dlyl null array", [&] { ryxdFirlGetDlyl(&ts, &ds, nullptr); }, "ryxdFirlGetDlyl", nb},
      {"get dlyl null tap", [&] { ryxsFirlGetDlyl(nullptr, &ds, l.dst); }, "ryxsFirlGetDlyl", nb},
      {"get dlyl mode", [&] { ryxsFirlGetDlyl(&ts, &unset, l.dst); }, "ryxsFirlGetDlyl", "Not filter mode"},
      {"filter null tap", [&] { EXPECT_EQ(ryxsFirl(nullptr, &ds, 1.0f), 0.0f); }, "ryxsFirl", nb},
      {"filter null delay", [&] {
         const DCplx z = ryxzFirl(&ts, nullptr, DCplx{1, 1});
         EXPECT_EQ(z.re, 0.0);
         EXPECT_EQ(z.im, 0.0);
       }, "ryxzFirl", nb},
      {"block null state before length", [&] { ryxsbFirl(nullptr, &ds, l.src, l.dst, 0); }, "ryxsbFirl", nb},
      {"block null src", [&] { ryxsbFirl(&ts, &ds, nullptr, l.dst, 4); }, "ryxsbFirl", nb},
      {"block null dst", [&] { ryxcsbFirl(&ts, &ds, l.csrc, nullptr, 4); }, "ryxcsbFirl", nb},
      {"block length", [&] { ryxsbFirl(&ts, &ds, l.src, l.dst, 0); }, "ryxsbFirl", "Invalid array length"},
      {"block length before mode", [&] { ryxsbFirl(&taken, &unset, l.src, l.dst, -1); }, "ryxsbFirl",
       "Invalid array length"},
      {"block taps taken", [&] { ryxsbFirl(&taken, &ds, l.src, l.dst, 4); }, "ryxsbFirl", "Not filter mode"},
      {"block line unset", [&] { ryxsbFirl(&ts, &unset, l.src, l.dst, 4); }, "ryxsbFirl", "Not filter mode"},
      {"out val", [&] { ryxcFirlOut(&ts, &ds, SCplx{1, 1}, nullptr); }, "ryxcFirlOut", "val==0"},
      {"out val before state", [&] { ryxscFirlOut(nullptr, nullptr, 1.0f, nullptr); }, "ryxscFirlOut", "val==0"},
      {"out state", [&] { ryxcsFirlOut(nullptr, &ds, SCplx{1, 1}, &l.val); }, "ryxcsFirl", nb},
  };
  runCases(l, cases, "ryxfirl");
}

TEST(FirChecks, HighLevelInOrder) {
  Live l;
  RyxFirState fresh{};
  RyxFirState& st = l.st;
  RyxFirState& dead = l.dead;
  float* t = l.taps;
  const char* ns = "Null state pointer";
  const char* ni = "Must have been initialized";
  const char* nb = "Null buffer pointer";
  const char* iv = "Invalid value";
  std::vector<Case> cases = {
      {"init null", [&] { ryxsFirInit(t, 5, nullptr, nullptr); }, "ryxsFirInit", ns},
      {"init null before length", [&] { ryxcFirInit(nullptr, 0, nullptr, nullptr); }, "ryxcFirInit", ns},
      {"init length", [&] { ryxzdFirInit(nullptr, 0, nullptr, &fresh); }, "ryxzdFirInit", iv},
      {"mr up", [&] { ryxsFirInitMr(t, 5, nullptr, 0, 0, 1, 0, &fresh); }, "ryxsFirInitMr", iv},
      {"mr down", [&] { ryxscFirInitMr(nullptr, 5, nullptr, 1, 0, 0, 0, &fresh); }, "ryxscFirInitMr", iv},
      {"mr up phase", [&] { ryxcsFirInitMr(t, 5, nullptr, 2, 2, 1, 0, &fresh); }, "ryxcsFirInitMr", iv},
      {"mr down phase", [&] { ryxdzFirInitMr(nullptr, 5, nullptr, 2, 1, 3, -1, &fresh); }, "ryxdzFirInitMr", iv},
      {"mr length", [&] { ryxdFirInitMr(nullptr, 0, nullptr, 2, 1, 3, 2, &fresh); }, "ryxdFirInitMr", iv},
      {"set taps null", [&] { ryxsFirSetTaps(t, nullptr); }, "ryxsFirSetTaps", ns},
      {"set taps dead", [&] { ryxcFirSetTaps(nullptr, &dead); }, "ryxcFirSetTaps", ni},
      {"set dlyl null", [&] { ryxdFirSetDlyl(nullptr, nullptr); }, "ryxdFirSetDlyl", ns},
      {"set dlyl dead", [&] { ryxzFirSetDlyl(nullptr, &dead); }, "ryxzFirSetDlyl", ni},
      {"get taps null", [&] { ryxsFirGetTaps(nullptr, l.dst); }, "ryxsFirGetTaps", ns},
      {"get taps dead before array", [&] { ryxdFirGetTaps(&dead, nullptr); }, "ryxdFirGetTaps", ni},
      {"get taps array", [&] { ryxsFirGetTaps(&st, nullptr); }, "ryxsFirGetTaps", nb},
      {"get dlyl null", [&] { ryxcFirGetDlyl(nullptr, l.cdst); }, "ryxcFirGetDlyl", ns},
      {"get dlyl dead", [&] { ryxzFirGetDlyl(&dead, nullptr); }, "ryxzFirGetDlyl", ni},
      {"get dlyl array", [&] { ryxsFirGetDlyl(&st, nullptr); }, "ryxsFirGetDlyl", nb},
      {"filter null", [&] { EXPECT_EQ(ryxsFir(nullptr, 1.0f), 0.0f); }, "ryxsFir", ns},
      {"filter dead", [&] { EXPECT_EQ(ryxdFir(&dead, 1.0), 0.0); }, "ryxdFir", ni},
      {"block null", [&] { ryxsbFir(nullptr, nullptr, nullptr, 0); }, "ryxsbFir", ns},
      {"block dead", [&] { ryxcbFir(&dead, nullptr, nullptr, 0); }, "ryxcbFir", ni},
      {"block src", [&] { ryxsbFir(&st, nullptr, nullptr, 0); }, "ryxsbFir", nb},
      {"block dst", [&] { ryxsbFir(&st, l.src, nullptr, 0); }, "ryxsbFir", nb},
      {"block length", [&] { ryxsbFir(&st, l.src, l.dst, 0); }, "ryxsbFir", iv},
      {"out val", [&] { ryxcFirOut(&st, SCplx{1, 1}, nullptr); }, "ryxcFirOut", "val==0"},
      {"out dead", [&] { ryxscFirOut(&dead, 1.0f, &l.val); }, "ryxscFir", ni},
      {"out null", [&] { ryxcsFirOut(nullptr, SCplx{1, 1}, &l.val); }, "ryxcsFir", ns},
      {"free null", [&] { ryxFirFree(nullptr); }, "ryxFirryxFree", ns},
      {"free dead", [&] { ryxFirFree(&dead); }, "ryxFirryxFree", ni},
  };
  runCases(l, cases, "ryxfirh");
}

// The set-up routines give up on a failure already stored in the thread's
// status, without a report of their own.
TEST(FirChecks, InitGivesUpOnStoredFailure) {
  RecordReports rec;
  float taps[3] = {1, 2, 3};
  float line[3];
  RyxFirTapState ts{};
  RyxFirDlyState ds{};
  RyxFirState st{};
  ryxSetErrStatus(RYX_StsBadArg);
  ryxsFirlInit(taps, 3, &ts);
  ryxsFirlInitMr(taps, 3, 2, 0, 1, 0, &ts);
  ryxsFirlInitDlyl(&ts, line, &ds);
  ryxsFirInit(taps, 3, nullptr, &st);
  ryxsFirInitMr(taps, 3, nullptr, 2, 0, 1, 0, &st);
  EXPECT_TRUE(reports().empty());
  EXPECT_EQ(ts.taps, nullptr);
  EXPECT_EQ(ds.dlyl, nullptr);
  EXPECT_EQ(st.initMark, nullptr);
  ryxSetErrStatus(RYX_StsOk);
  ryxsFirInit(taps, 3, nullptr, &st);
  EXPECT_EQ(st.initMark, &st);
  ryxFirFree(&st);
}

// Allocation failure in Init: whatever was obtained is freed (the leak
// checker of the sanitizer build watches), the record is left dead and the
// failure is reported once as out of memory; also on a live record.
TEST(FirChecks, AllocationFailureFreesAndReports) {
  float taps[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  for (bool multi : {false, true}) {
    for (int failAt = 1; failAt <= (multi ? 3 : 2); ++failAt) {
      for (bool live : {false, true}) {
        RyxFirState st{};
        if (live) ryxsFirInit(taps, 4, nullptr, &st);
        RecordReports rec;
        {
          ryxtest::FailAllocation fail(failAt);
          if (multi) {
            ryxsFirInitMr(taps, 9, nullptr, 2, 1, 3, 0, &st);
          } else {
            ryxsFirInit(taps, 9, nullptr, &st);
          }
        }
        ASSERT_EQ(reports().size(), 1u);
        EXPECT_EQ(reports()[0].status, RYX_StsNoMem);
        EXPECT_EQ(reports()[0].context, "Allocation failure");
        EXPECT_EQ(reports()[0].func, multi ? "ryxsFirInitMr" : "ryxsFirInit");
        EXPECT_EQ(reports()[0].file, "ryxfirh");
        EXPECT_EQ(st.initMark, nullptr);
        EXPECT_EQ(st.phaseTable, nullptr);
        // A dead record is refused from then on.
        reports().clear();
        ryxFirFree(&st);
        ASSERT_EQ(reports().size(), 1u);
        EXPECT_EQ(reports()[0].context, "Must have been initialized");
      }
    }
  }
}

}  // namespace
}  // namespace firtest
