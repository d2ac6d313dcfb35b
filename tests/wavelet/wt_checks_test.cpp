// Argument checks of the wavelet routines as one table: each call's reports
// (status, routine, exact words, source group) in order, the returned
// status, and nothing written to the record, *len_dec or the data. Then
// the records of other precisions, out-of-memory in the set-up, and Free.
#include <cstring>
#include <functional>

#include "alloc_failure.h"
#include "wt_support.h"

namespace wttest {
namespace {

using ryxtest::FailAllocation;
using ryxtest::ReportCapture;

struct Want {
  RyxStatus status;
  const char* func;
  const char* context;
};
struct Row {
  const char* label;
  std::function<RyxStatus()> call;
  std::vector<Want> reports;
};

constexpr const char* kState = "'NULL' pointer in 'wtState' argument was passed!";
constexpr const char* kLenDec = "'NULL' pointer in 'len_dec' argument was passed!";
constexpr const char* kLen = "Not correct 'len' argument was passed! 'len' argument must be greater than or equal 2!";
constexpr const char* kLevel = "Not correct 'level' argument was passed! Level must be  greater than or equal 0!";
constexpr const char* kDeep = "Not correct 'level' argument was passed! 2^level can not be  greater than or equal 2*len!";
constexpr const char* kType = "Not correct 'wtType' argument was passed!";
constexpr const char* kPar1 = "Not correct par1 argument was passed!";
constexpr const char* kPar2 = "Not correct 'par2' argument was passed!";
constexpr const char* kTaps = "*tap_filt[] = 'NULL' argument was passed!";
constexpr const char* kLens = "'NULL' pointer was passed in len_filt argument!";
constexpr const char* kOfs = "'NULL' pointer was passed in ofs_filt argument!";
constexpr const char* kTapN = "tap_filt[n] = 'NULL' for some n was passed in tap_filt array!";
constexpr const char* kLenN =
    "len_filt[n] for some n does not correct! For each n len_filt[n] should be greater than or equal 2!";
constexpr const char* kOfsN =
    "ofs_filt[n] for some n does not correct! For each n ofs_filt[n] should satisfy to the following condition 0 <= "
    "ofs_filt[n] < len_flt";
constexpr const char* kCore = "Error in the (float, double or short) core of wtState!";

struct World {
  RyxWtState st{}, live{}, sLive{};
  int lenDec = -3;
  double taps[4][3] = {{0.5, 0.5, 0}, {0.5, -0.5, 0}, {1, 1, 0}, {-1, 1, 0}};
  const double* tp[4] = {taps[0], taps[1], taps[2], taps[3]};
  const double* tpNull[4] = {taps[0], nullptr, taps[2], taps[3]};
  int lens[4] = {2, 2, 2, 2}, shortLens[4] = {2, 2, 1, 2}, ofs[4] = {1, 1, 0, 0}, badOfs[4] = {1, 2, 0, 0};
  double x[8] = {1, 2, 3, 4, 5, 6, 7, 8}, c[8] = {};
  short wx[8] = {}, wc[8] = {};
  int type = 0, p1 = 0, p2 = 0, order = 0, level = 0, gl[4] = {}, go[4] = {};
  const double* gt[4] = {};
  World() {
    int n;
    ryxdWtInitLen(0, 0, 8, 2, &live, 1, &n);
    ryxsWtInitLen(0, 0, 8, 2, &sLive, 1, &n);
  }
  ~World() {
    ryxWtFree(&live);
    ryxWtFree(&sLive);
  }
  std::vector<unsigned char> snapshot() const {
    const auto* b = reinterpret_cast<const unsigned char*>(this);
    return {b, b + sizeof *this};
  }
};

TEST(WtChecks, EveryCheckInOrderWithItsWords) {
  World w;
  RyxWtState* st = &w.st;
  int* ld = &w.lenDec;
  const std::vector<Row> rows = {
      {"InitLen null state", [&] { return ryxdWtInitLen(0, 0, 1, -1, nullptr, 0, nullptr); }, {{-5, "ryxdWtInitLen", kState}}},
      {"InitLen null len_dec", [&] { return ryxsWtInitLen(0, 0, 1, -1, st, 0, nullptr); }, {{-5, "ryxsWtInitLen", kLenDec}}},
      {"InitLen len", [&] { return ryxwWtInitLen(0, 0, 1, -1, st, 0, ld); }, {{-5, "ryxwWtInitLen", kLen}}},
      {"InitLen level", [&] { return ryxdWtInitLen(0, 0, 2, -1, st, 0, ld); }, {{-5, "ryxdWtInitLen", kLevel}}},
      {"InitLen 2^2 >= 2*2", [&] { return ryxdWtInitLen(0, 0, 2, 2, st, 0, ld); }, {{-5, "ryxdWtInitLen", kDeep}}},
      {"InitLen huge level", [&] { return ryxdWtInitLen(0, 0, INT_MAX, 32, st, 1, ld); }, {{-5, "ryxdWtInitLen", kDeep}}},
      {"InitLen type 10", [&] { return ryxdWtInitLen(0, 0, 5, 2, st, 10, ld); }, {{-5, "ryxdWtInitLen", kType}}},
      {"InitLen type 0", [&] { return ryxdWtInitLen(0, 0, 5, 2, st, 0, ld); }, {{-5, "ryxdWtInitLen", kType}}},
      {"InitLen daub 11", [&] { return ryxdWtInitLen(11, 0, 5, 2, st, 2, ld); }, {{-5, "ryxdWtInitLen", kPar1}}},
      {"InitLen sym 0", [&] { return ryxdWtInitLen(0, 0, 5, 2, st, 3, ld); }, {{-5, "ryxdWtInitLen", kPar1}}},
      {"InitLen coif 6", [&] { return ryxdWtInitLen(6, 0, 5, 2, st, 4, ld); }, {{-5, "ryxdWtInitLen", kPar1}}},
      {"InitLen spline 4", [&] { return ryxdWtInitLen(4, 1, 5, 2, st, 6, ld); }, {{-5, "ryxdWtInitLen", kPar1}}},
      {"InitLen spline 2/3", [&] { return ryxdWtInitLen(2, 3, 5, 2, st, 7, ld); }, {{-5, "ryxdWtInitLen", kPar2}}},
      {"Init order 0", [&] { return ryxsWtInit(1, 0, 0, 1, st, 2); }, {{-5, "ryxsWtInit", kLevel}}},
      {"Init order 32", [&] { return ryxsWtInit(1, 0, 32, 1, st, 2); }, {{-5, "ryxsWtInit", kLevel}}},
      {"Init inner",
       [&] { return ryxwWtInit(1, 0, 3, 1, st, 11); },
       {{-5, "ryxwWtInitLen", kType}, {-1, "ryxwWtInit", "out ryxwWtInitLen"}}},
      {"SetState inner Init",
       [&] { return ryxdWtSetState(st, 2, 1, 0, 3, 4, nullptr, nullptr, nullptr); },
       {{-5, "ryxdWtInitLen", kDeep}, {-1, "ryxdWtInit", "out ryxdWtInitLen"}, {-1, "ryxdWtSetState", "out ryxdWtInit"}}},
      {"SetState user order", [&] { return ryxdWtSetState(st, 10, 0, 0, 0, 1, w.tp, w.lens, w.ofs); }, {{-5, "ryxdWtSetState", kLevel}}},
      {"SetState user inner",
       [&] { return ryxdWtSetState(st, 10, 0, 0, 3, 1, w.tpNull, w.lens, w.ofs); },
       {{-5, "ryxdWtInitUserFilter", kTapN}, {-1, "ryxdWtSetState", "out ryxdWtInitUserFilter"}}},
      {"User null state", [&] { return ryxdWtInitUserFilter(nullptr, nullptr, nullptr, 1, -1, nullptr, nullptr); }, {{-5, "ryxdWtInitUserFilter", kState}}},
      {"User null len_dec", [&] { return ryxdWtInitUserFilter(nullptr, nullptr, nullptr, 1, -1, st, nullptr); }, {{-5, "ryxdWtInitUserFilter", kLenDec}}},
      {"User null taps", [&] { return ryxdWtInitUserFilter(nullptr, nullptr, nullptr, 1, -1, st, ld); }, {{-5, "ryxdWtInitUserFilter", kTaps}}},
      {"User null lens", [&] { return ryxdWtInitUserFilter(w.tp, nullptr, nullptr, 1, -1, st, ld); }, {{-5, "ryxdWtInitUserFilter", kLens}}},
      {"User null offsets", [&] { return ryxdWtInitUserFilter(w.tp, w.lens, nullptr, 1, -1, st, ld); }, {{-5, "ryxdWtInitUserFilter", kOfs}}},
      {"User len", [&] { return ryxdWtInitUserFilter(w.tp, w.lens, w.ofs, 1, -1, st, ld); }, {{-5, "ryxdWtInitUserFilter", kLen}}},
      {"User level", [&] { return ryxdWtInitUserFilter(w.tp, w.lens, w.ofs, 4, -1, st, ld); }, {{-5, "ryxdWtInitUserFilter", kLevel}}},
      {"User deep", [&] { return ryxdWtInitUserFilter(w.tp, w.lens, w.ofs, 4, 3, st, ld); }, {{-5, "ryxdWtInitUserFilter", kDeep}}},
      {"User tap n", [&] { return ryxdWtInitUserFilter(w.tpNull, w.shortLens, w.badOfs, 4, 1, st, ld); }, {{-5, "ryxdWtInitUserFilter", kTapN}}},
      {"User length n", [&] { return ryxdWtInitUserFilter(w.tp, w.shortLens, w.badOfs, 4, 1, st, ld); }, {{-5, "ryxdWtInitUserFilter", kLenN}}},
      {"User offset n", [&] { return ryxdWtInitUserFilter(w.tp, w.lens, w.badOfs, 4, 1, st, ld); }, {{-5, "ryxdWtInitUserFilter", kOfsN}}},
      {"Get null state", [&] { return ryxdWtGetState(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }, {{-5, "ryxdWtGetState", kState}}},
      {"Get wtType", [&] { return ryxdWtGetState(&w.live, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }, {{-5, "ryxdWtGetState", "'NULL' pointer was passed in wtType argument!"}}},
      {"Get par1", [&] { return ryxdWtGetState(&w.live, &w.type, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }, {{-5, "ryxdWtGetState", "'NULL' pointer was passed in par1 argument!"}}},
      {"Get par2", [&] { return ryxdWtGetState(&w.live, &w.type, &w.p1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr); }, {{-5, "ryxdWtGetState", "'NULL' pointer was passed in par2 argument!"}}},
      {"Get order", [&] { return ryxdWtGetState(&w.live, &w.type, &w.p1, &w.p2, nullptr, nullptr, nullptr, nullptr, nullptr); }, {{-5, "ryxdWtGetState", "'NULL' pointer was passed in dataOrder argument!"}}},
      {"Get level", [&] { return ryxdWtGetState(&w.live, &w.type, &w.p1, &w.p2, &w.order, nullptr, nullptr, nullptr, nullptr); }, {{-5, "ryxdWtGetState", "'NULL' pointer was passed in level argument!"}}},
      {"Get taps", [&] { return ryxdWtGetState(&w.live, &w.type, &w.p1, &w.p2, &w.order, &w.level, nullptr, nullptr, nullptr); }, {{-5, "ryxdWtGetState", kTaps}}},
      {"Get lens", [&] { return ryxdWtGetState(&w.live, &w.type, &w.p1, &w.p2, &w.order, &w.level, w.gt, nullptr, nullptr); }, {{-5, "ryxdWtGetState", kLens}}},
      {"Get offsets", [&] { return ryxdWtGetState(&w.live, &w.type, &w.p1, &w.p2, &w.order, &w.level, w.gt, w.gl, nullptr); }, {{-5, "ryxdWtGetState", kOfs}}},
      {"Free null", [&] { return ryxWtFree(nullptr); }, {{-5, "ryxWtFree", "wtState==0"}}},
      {"Decompose null state", [&] { return ryxdWtDecompose(nullptr, nullptr, nullptr); }, {{-5, "ryxdWtDecompose", kState}}},
      {"Decompose null src", [&] { return ryxsWtDecompose(&w.sLive, nullptr, nullptr); }, {{-5, "ryxsWtDecompose", "'NULL' pointer in 'src' argument was passed!"}}},
      {"Reconstruct null dst", [&] { return ryxdWtReconstruct(&w.live, w.x, nullptr); }, {{-5, "ryxdWtReconstruct", "'NULL' pointer in 'dst' argument was passed!"}}},
      {"Decompose s record", [&] { return ryxdWtDecompose(&w.sLive, w.x, w.c); }, {{-5, "ryxdWtDecompose", kCore}}},
      {"Reconstruct d record", [&] { return ryxwWtReconstruct(&w.live, w.wx, w.wc); }, {{-5, "ryxwWtReconstruct", kCore}}},
      {"Decompose cleared", [&] { return ryxwWtDecompose(&w.st, w.wx, w.wc); }, {{-5, "ryxwWtDecompose", kCore}}},
  };
  for (const Row& r : rows) {
    ReportCapture rec;
    const auto before = w.snapshot();
    const RyxStatus got = r.call();
    const auto& seen = rec.reports();
    ASSERT_EQ(seen.size(), r.reports.size()) << r.label;
    for (size_t i = 0; i < seen.size(); ++i) {
      EXPECT_EQ(seen[i].status, r.reports[i].status) << r.label;
      EXPECT_EQ(seen[i].funcName, r.reports[i].func) << r.label;
      EXPECT_EQ(seen[i].context, r.reports[i].context) << r.label;
      EXPECT_EQ(seen[i].file, "ryxwlt") << r.label;
    }
    EXPECT_EQ(got, r.reports[0].status) << r.label;
    EXPECT_EQ(ryxGetErrStatus(), r.reports[0].status) << r.label;
    EXPECT_TRUE(w.snapshot() == before) << r.label << ": something was written";
  }
}

// A failure left standing does not stop a set-up: each starts clean.
TEST(WtChecks, EachRoutineClearsTheStatusFirst) {
  ReportCapture rec;
  RyxWtState st{};
  int n;
  ryxSetErrStatus(RYX_StsBadArg);
  EXPECT_EQ(ryxdWtInitLen(2, 0, 16, 2, &st, 2, &n), RYX_StsOk);
  ryxSetErrStatus(RYX_StsBadArg);
  EXPECT_EQ(ryxWtFree(&st), RYX_StsOk);
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsOk);
  EXPECT_TRUE(rec.reports().empty());
}

// Out of memory at each allocation of a set-up: reported with its words,
// the blocks taken so far freed, the record and *len_dec untouched.
TEST(WtChecks, OutOfMemoryFreesWhatWasTaken) {
  const double h[3] = {0.25, 0.5, 0.25};
  const double* taps[4] = {h, h, h, h};
  const int lens[4] = {3, 3, 2, 2}, ofs[4] = {1, 1, 0, 0};
  const std::vector<std::pair<const char*, std::function<RyxStatus(RyxWtState*, int*)>>> calls = {
      {"ryxsWtInitLen", [](RyxWtState* s, int* n) { return ryxsWtInitLen(3, 3, 100, 3, s, 6, n); }},
      {"ryxwWtInitLen", [](RyxWtState* s, int* n) { return ryxwWtInitLen(3, 0, 100, 3, s, 2, n); }},
      {"ryxdWtInitLen", [](RyxWtState* s, int* n) { return ryxdWtInitLen(3, 0, 100, 3, s, 2, n); }},
      {"ryxdWtInitUserFilter", [&](RyxWtState* s, int* n) { return ryxdWtInitUserFilter(taps, lens, ofs, 100, 3, s, n); }},
  };
  for (const auto& [name, call] : calls) {
    const int blocks = std::string(name) == "ryxdWtInitLen" ? 1 : 5;
    for (int k = 1; k <= blocks; ++k) {
      ReportCapture rec;
      RyxWtState st;
      std::memset(&st, 0x33, sizeof st);
      const RyxWtState before = st;
      int n = -3;
      const long live = FailAllocation::live();
      RyxStatus got;
      {
        FailAllocation fail(k);
        got = call(&st, &n);
      }
      EXPECT_EQ(got, RYX_StsNoMem) << name << " allocation " << k;
      ASSERT_EQ(rec.reports().size(), 1u) << name << " allocation " << k;
      EXPECT_EQ(rec.reports()[0].context, "No working wavelet memory!");
      EXPECT_EQ(rec.reports()[0].funcName, name);
      EXPECT_EQ(FailAllocation::live(), live) << name << " allocation " << k;
      EXPECT_EQ(std::memcmp(&st, &before, sizeof st), 0) << name;
      EXPECT_EQ(n, -3);
    }
  }
  // A length whose working array does not fit in 32 bits is out of memory too.
  ReportCapture rec;
  RyxWtState st{};
  int n;
  EXPECT_EQ(ryxdWtInitLen(0, 0, 1 << 30, 1, &st, 1, &n), RYX_StsNoMem);
}

// Free releases what the record owns: the working array alone for a d
// record of a built-in set, also the filter copies otherwise; twice is fine.
TEST(WtChecks, FreeReleasesOnlyWhatTheRecordOwns) {
  const double h[2] = {0.5, 0.5};
  const double* taps[4] = {h, h, h, h};
  const int lens[4] = {2, 2, 2, 2}, ofs[4] = {0, 0, 0, 0};
  struct Case {
    std::function<void(RyxWtState*, int*)> init;
    long blocks;
  };
  const Case cases[] = {
      {[](RyxWtState* s, int* n) { ryxdWtInitLen(3, 0, 64, 2, s, 4, n); }, 1},
      {[](RyxWtState* s, int* n) { ryxsWtInitLen(3, 0, 64, 2, s, 4, n); }, 5},
      {[](RyxWtState* s, int* n) { ryxwWtInitLen(3, 0, 64, 2, s, 4, n); }, 5},
      {[&](RyxWtState* s, int* n) { ryxdWtInitUserFilter(taps, lens, ofs, 64, 2, s, n); }, 5},
  };
  for (const Case& c : cases) {
    const long live = FailAllocation::live();
    RyxWtState st{};
    int n;
    c.init(&st, &n);
    EXPECT_EQ(FailAllocation::live() - live, c.blocks);
    EXPECT_EQ(ryxWtFree(&st), RYX_StsOk);
    EXPECT_EQ(ryxWtFree(&st), RYX_StsOk);
    EXPECT_EQ(FailAllocation::live(), live);
  }
}

}  // namespace
}  // namespace wttest
