// The routine table run as tests: every routine of the headers has a row;
// a seeded sweep of hostile arguments and the fuzzer's corpus find nothing;
// every routine that takes memory, made to fail at its 1st, 2nd, ... k-th
// allocation, reports out of memory (or recovers), changes nothing, leaks
// nothing, and works on the next call.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <regex>
#include <set>
#include <sstream>

#include "alloc_failure.h"
#include "routine_table.h"

namespace {

namespace fs = std::filesystem;
using hostile::Outcome;
using hostile::Row;

const fs::path kHere = fs::path(__FILE__).parent_path();

// The runtime of these runs gives no single block above 16 MiB, so that
// hostile sizes end in refusals rather than in gigabytes.
struct LimitBlocks {
  LimitBlocks() { ryxtest::FailAllocation::limitBlockSize(std::size_t{1} << 24); }
  ~LimitBlocks() { ryxtest::FailAllocation::limitBlockSize(0); }
};

// Family headers whose routines have not joined the table yet. Every other
// header's routines must each have exactly one row; a header that is in
// neither state (a new family) fails the coverage test below.
const std::set<std::string> kRowsPending = {};

std::set<std::string> familyHeaders() {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(kHere / ".." / ".." / "include" / "ryxcore"))
    names.insert(entry.path().filename().string());
  return names;
}

std::set<std::string> declaredRoutines(bool includePending = false) {
  std::set<std::string> names;
  const std::regex decl(R"(^RYXAPI[^(]*\b(ryx\w+)\s*\()");
  for (const auto& entry : fs::directory_iterator(kHere / ".." / ".." / "include" / "ryxcore")) {
    if (!includePending && kRowsPending.count(entry.path().filename().string())) continue;
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line);) {
      std::smatch m;
      if (std::regex_search(line, m, decl)) names.insert(m[1]);
    }
  }
  return names;
}

TEST(RoutineTable, EveryHeaderRoutineHasExactlyOneRow) {
  const std::set<std::string> declared = declaredRoutines();
  ASSERT_GT(declared.size(), 300u);
  std::set<std::string> rows;
  std::string twice, stale, missing;
  for (const Row& r : hostile::allRows()) {
    if (!rows.insert(r.name).second) twice += std::string(" ") + r.name;
    if (!declared.count(r.name)) stale += std::string(" ") + r.name;
  }
  for (const std::string& n : declared)
    if (!rows.count(n)) missing += " " + n;
  EXPECT_EQ(missing, "") << "routines without a row";
  // The pending list names real headers only, and none of their routines
  // has a row yet (a family joins the table whole, then leaves the list).
  const std::set<std::string> headers = familyHeaders();
  std::string unknown, partly;
  const std::set<std::string> all = declaredRoutines(true);
  for (const std::string& h : kRowsPending)
    if (!headers.count(h)) unknown += " " + h;
  for (const std::string& n : all)
    if (!declared.count(n) && rows.count(n)) partly += " " + n;
  EXPECT_EQ(unknown, "") << "pending headers that do not exist";
  EXPECT_EQ(partly, "") << "rows of a family still listed as pending";
  EXPECT_EQ(twice, "") << "routines with two rows";
  EXPECT_EQ(stale, "") << "rows of routines the headers do not declare";
}

bool checkable(const Row& r) {
  for (const hostile::ArgRule& s : r.args) {
    if (s.role == hostile::Role::kLen || s.role == hostile::Role::kOrder || s.role == hostile::Role::kFactor)
      return true;
    if (s.role == hostile::Role::kRecord && s.refusable && s.record != hostile::text().record &&
        s.record != hostile::reportFn().record)
      return true;
  }
  return false;
}

// Random bytes per row, from a fixed seed: the same checks as the fuzzer,
// in every build of the suite.
TEST(RoutineTable, SeededHostileArgumentsFindNothing) {
  LimitBlocks limit;
  std::mt19937 gen(2024);
  std::vector<std::uint8_t> bytes(40);
  for (const Row& r : hostile::allRows()) {
    int reported = 0;
    // 24 cases; a row that has not refused yet gets up to 72 more, so that
    // an unlucky draw does not fail the test.
    for (int i = 0; i < 24 || (i < 96 && reported == 0 && checkable(r)); ++i) {
      for (auto& b : bytes) b = static_cast<std::uint8_t>(gen());
      hostile::Bytes in(bytes.data(), bytes.size());
      const Outcome o = hostile::runCase(r, in);
      ASSERT_EQ(o.fault, "") << r.name << " case " << i;
      reported += o.reported;
    }
    // A row with a length, order, factor or record to refuse that never
    // refused would mean its arguments are not hostile at all.
    if (checkable(r)) {
      EXPECT_GT(reported, 0) << r.name;
    }
  }
}

// The fuzzer's corpus (the defects it found included) replayed.
TEST(RoutineTable, CorpusReplaysClean) {
  LimitBlocks limit;
  int files = 0;
  for (const auto& entry : fs::directory_iterator(kHere / "corpus")) {
    std::ifstream in(entry.path(), std::ios::binary);
    const std::vector<std::uint8_t> data{std::istreambuf_iterator<char>(in), {}};
    const Outcome o = hostile::runInput(data.data(), data.size());
    EXPECT_EQ(o.fault, "") << entry.path().filename();
    ++files;
  }
  EXPECT_GT(files, 0);
}

// Records with a mark (high-level FIR and IIR, tones, float triangles):
// one that is null, never initialised (random bytes) or already freed is
// refused by every routine that uses it, with the documented text, and
// nothing is touched.
TEST(RoutineTable, MarkedRecordsThatAreNotLiveAreRefused) {
  int rows = 0;
  for (const Row& r : hostile::allRows()) {
    const auto rec = std::find_if(r.args.begin(), r.args.end(), [](const hostile::ArgRule& s) {
      return s.role == hostile::Role::kRecord && s.deadText != nullptr;
    });
    if (rec == r.args.end()) continue;
    ++rows;
    for (int kind : {0, 2, 3}) {
      std::vector<std::uint8_t> bytes(64, 7);
      hostile::Bytes in(bytes.data(), bytes.size());
      const Outcome o = hostile::runCase(r, in, true, 0, kind);
      ASSERT_EQ(o.fault, "") << r.name;
      ASSERT_TRUE(o.reported) << r.name << " record kind " << kind;
      EXPECT_EQ(o.firstStatus, RYX_StsBadArg) << r.name;
      const std::string text = kind == 0 ? rec->nullText : rec->deadText;
      EXPECT_EQ(o.firstReport.substr(o.firstReport.find(": ") + 2), text) << r.name << " record kind " << kind;
    }
  }
  EXPECT_GE(rows, 16 + 8 + 8 + 3 + 1 + 19 + 8);  // FIR access, single, block, Out, release; tones, triangles
}

TEST(RoutineTable, EveryAllocationFailureIsReportedOrRecoveredWithoutTrace) {
  LimitBlocks limit;
  int sites = 0;
  for (const Row& r : hostile::allRows()) {
    if (!r.allocates) continue;
    for (std::uint8_t seed = 0; seed < 3; ++seed) {
      std::vector<std::uint8_t> bytes(4096);
      std::mt19937 gen(seed);
      for (auto& b : bytes) b = static_cast<std::uint8_t>(gen());
      auto run = [&](int failAt) {
        hostile::Bytes in(bytes.data(), bytes.size());
        return hostile::runCase(r, in, true, failAt);
      };
      const Outcome ref = run(0);
      ASSERT_EQ(ref.fault, "") << r.name;
      ASSERT_FALSE(ref.reported) << r.name << " " << ref.firstReport;
      for (int k = 1; k < 64; ++k) {
        const Outcome o = run(k);
        if (o.refused == 0) break;  // the call took fewer than k blocks
        ++sites;
        const std::string where = std::string(r.name) + " failing allocation " + std::to_string(k);
        ASSERT_EQ(o.fault, "") << where;
        if (o.reported) {
          EXPECT_EQ(o.firstStatus, RYX_StsNoMem) << where << ": " << o.firstReport;
        } else if (!r.fallsBack && !r.storesAddress) {
          EXPECT_EQ(o.digest, ref.digest) << where << " recovered with other results";
        }
        // The same call on the same thread, memory back: as if nothing was.
        const Outcome again = run(0);
        EXPECT_FALSE(again.reported) << where;
        if (!r.storesAddress) {
          EXPECT_EQ(again.digest, ref.digest) << where;
        }
      }
    }
  }
  EXPECT_GT(sites, 100);
  std::cout << "allocation sites failed: " << sites << "\n";
}

}  // namespace
