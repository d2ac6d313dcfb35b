// Argument checks of the reductions, norms and normalisation, table driven:
// each row makes one failing call and states its exact context and source
// group. A failure is one bad-argument report, the documented result (0,
// -1 for ryxwStdDev, the stored status for pointer results) and no write.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::ReportCapture;

struct Row {
  std::string name, stem, context;
  std::function<bool()> failsCleanly;  // makes the call; true if result and outputs are as documented
};

// Scratch that a failed call must leave alone.
struct Scratch {
  alignas(16) unsigned char bytes[64];
  Scratch() { std::memset(bytes, 0x3C, sizeof bytes); }
  template <class T> T* as() { return reinterpret_cast<T*>(bytes); }
  bool untouched() const {
    for (unsigned char c : bytes)
      if (c != 0x3C) return false;
    return true;
  }
};

template <class R> bool isZero(R r) { return r == R{}; }

// Reductions to a value: f(vec, len).
template <class R, class T>
void valueRows(std::vector<Row>& rows, const char* name, const char* stem, R (*f)(const T*, int), bool sum,
               bool dev = false) {
  static T data[4] = {};
  const char* n = sum ? "n<=0" : "len<=0";
  const char* p = sum ? "src==0" : "vec==0";
  rows.push_back({name, stem, n, [f] { return isZero(f(nullptr, 0)); }});
  rows.push_back({name, stem, n, [f] { return isZero(f(data, -1)); }});
  rows.push_back({name, stem, p, [f] { return isZero(f(nullptr, 3)); }});
  if (dev) rows.push_back({name, stem, "len<2", [f] { return isZero(f(data, 1)); }});
}

// Reductions through a pointer: f(vec, len, out) returning the status.
template <class T, class O>
void pointerRows(std::vector<Row>& rows, const char* name, const char* stem, RyxStatus (*f)(const T*, int, O*),
                 bool sum) {
  static T data[4] = {};
  const char* n = sum ? "n<=0" : "len<=0";
  const char* p = sum ? "src==0" : "vec==0";
  const char* o = sum ? "sum==0" : "mean==0";
  auto run = [f](const T* v, int len, bool withOut) {
    Scratch s;
    const RyxStatus r = f(v, len, withOut ? s.as<O>() : nullptr);
    return r == RYX_StsBadArg && s.untouched();
  };
  rows.push_back({name, stem, n, [run] { return run(nullptr, 0, false); }});
  rows.push_back({name, stem, p, [run] { return run(nullptr, 2, true); }});
  rows.push_back({name, stem, o, [run] { return run(data, 2, false); }});
}

// The scale checks of the 16-bit sums come before everything else.
template <class Call>
void scaleRows(std::vector<Row>& rows, const char* name, const char* stem, Call call) {
  rows.push_back({name, stem, "scaleMode & RYX_FIXED_SCALE && scaleMode & RYX_AUTO_SCALE", [call] { return call(0, 6, true); }});
  rows.push_back({name, stem, "scaleMode & RYX_FIXED_SCALE && (scaleFactor==NULL)", [call] { return call(0, 3, false); }});
  rows.push_back({name, stem, "scaleMode & RYX_AUTO_SCALE && scaleFactor==NULL", [call] { return call(0, 5, false); }});
}

std::vector<Row> sumRows() {
  std::vector<Row> r;
  valueRows(r, "ryxsSum", "ryxnorm", ryxsSum, true);
  valueRows(r, "ryxdSum", "ryxnorm", ryxdSum, true);
  pointerRows(r, "ryxcSum", "ryxnorm", ryxcSum, true);
  pointerRows(r, "ryxzSum", "ryxnorm", ryxzSum, true);
  valueRows(r, "ryxsMean", "ryxvec", ryxsMean, false);
  valueRows(r, "ryxdMean", "ryxvec", ryxdMean, false);
  valueRows(r, "ryxwMean", "ryxvec", ryxwMean, false);
  pointerRows(r, "ryxcMean", "ryxvec", ryxcMean, false);
  pointerRows(r, "ryxzMean", "ryxvec", ryxzMean, false);
  pointerRows(r, "ryxvMean", "ryxvec", ryxvMean, false);
  valueRows(r, "ryxsStdDev", "ryxvec", ryxsStdDev, false, true);
  valueRows(r, "ryxdStdDev", "ryxvec", ryxdStdDev, false, true);

  static short w[4] = {};
  static WCplx v[4] = {};
  // ryxwSum: result 0; the factor stays as it was.
  auto wsum = [](int n, int mode, bool withFactor) {
    int f = 77;
    return ryxwSum(n > 0 ? w : nullptr, n, mode, withFactor ? &f : nullptr) == 0 && f == 77;
  };
  scaleRows(r, "ryxwSum", "ryxnorm", wsum);
  r.push_back({"ryxwSum", "ryxnorm", "n<=0", [wsum] { return wsum(0, 0, false); }});
  r.push_back({"ryxwSum", "ryxnorm", "src==0", [] { return ryxwSum(nullptr, 3, 0, nullptr) == 0; }});
  auto vsum = [](int n, int mode, bool withFactor, bool withSum = true, bool withSrc = false) {
    int f = 77;
    Scratch s;
    const RyxStatus st = ryxvSum(withSrc ? v : nullptr, n, withSum ? s.as<ICplx>() : nullptr, mode, withFactor ? &f : nullptr);
    return st == RYX_StsBadArg && f == 77 && s.untouched();
  };
  scaleRows(r, "ryxvSum", "ryxnorm", [vsum](int n, int m, bool f) { return vsum(n, m, f); });
  r.push_back({"ryxvSum", "ryxnorm", "n<=0", [vsum] { return vsum(0, 0, false); }});
  r.push_back({"ryxvSum", "ryxnorm", "src==0", [vsum] { return vsum(3, 0, false); }});
  r.push_back({"ryxvSum", "ryxnorm", "sum==0", [vsum] { return vsum(3, 0, false, false, true); }});
  // ryxwStdDev: -1, except the missing auto factor, which gives 0.
  auto wdev = [](const short* p, int len, int mode, int* f) { return ryxwStdDev(p, len, mode, f); };
  r.push_back({"ryxwStdDev", "ryxvec", "len<=0", [wdev] { return wdev(nullptr, 0, 4, nullptr) == -1; }});
  r.push_back({"ryxwStdDev", "ryxvec", "vec==0", [wdev] { return wdev(nullptr, 2, 4, nullptr) == -1; }});
  r.push_back({"ryxwStdDev", "ryxvec", "len<2", [wdev] { return wdev(w, 1, 4, nullptr) == -1; }});
  r.push_back({"ryxwStdDev", "ryxvec", "scaleFactor==0", [wdev] { return wdev(w, 2, 5, nullptr) == 0; }});
  return r;
}

std::vector<Row> extremeRows() {
  std::vector<Row> r;
  valueRows(r, "ryxsMax", "ryxvec", ryxsMax, false);
  valueRows(r, "ryxsMin", "ryxvec", ryxsMin, false);
  valueRows(r, "ryxdMax", "ryxvec", ryxdMax, false);
  valueRows(r, "ryxdMin", "ryxvec", ryxdMin, false);
  valueRows(r, "ryxwMax", "ryxvec", ryxwMax, false);
  valueRows(r, "ryxwMin", "ryxvec", ryxwMin, false);
  // The Ext forms: result 0, index untouched.
  auto ext = [&r](const char* name, auto f) {
    auto call = [f](bool withVec, int len) {
      static decltype(f(nullptr, 0, nullptr)) data[4] = {};
      int at = 77;
      return f(withVec ? data : nullptr, len, &at) == 0 && at == 77;
    };
    r.push_back({name, "ryxvece", "len<=0", [call] { return call(true, 0); }});
    r.push_back({name, "ryxvece", "len<=0", [call] { return call(false, -3); }});
    r.push_back({name, "ryxvece", "vec==0", [call] { return call(false, 3); }});
  };
  ext("ryxsMaxExt", ryxsMaxExt);
  ext("ryxsMinExt", ryxsMinExt);
  ext("ryxdMaxExt", ryxdMaxExt);
  ext("ryxdMinExt", ryxdMinExt);
  ext("ryxwMaxExt", ryxwMaxExt);
  ext("ryxwMinExt", ryxwMinExt);
  return r;
}

// Norms: "n<=0", "srcA==0", "flag is wrong", each with result 0.
template <class R, class T>
void normRows(std::vector<Row>& rows, const char* name, R (*f)(const T*, const T*, int, int)) {
  static T a[4] = {}, b[4] = {};
  rows.push_back({name, "ryxnorm", "n<=0", [f] { return isZero(f(nullptr, nullptr, 0, 99)); }});
  rows.push_back({name, "ryxnorm", "srcA==0", [f] { return isZero(f(nullptr, b, 2, 99)); }});
  for (int flag : {0, 3, 32, 5, 8, 17, 33, -1, 1 | 64})
    rows.push_back({name, "ryxnorm", "flag is wrong", [f, flag] { return isZero(f(a, b, 2, flag)); }});
}

// Normalisation: "n<=0", "src==0", "dst==0", "factor == 0"; nothing written.
template <class T, class O, class F>
void normalizeRows(std::vector<Row>& rows, const char* name, void (*f)(const T*, T*, int, O, F)) {
  auto call = [f](bool src, bool dst, int n, F factor) {
    static T in[4] = {};
    Scratch s;
    f(src ? in : nullptr, dst ? s.as<T>() : nullptr, n, O{}, factor);
    return s.untouched();
  };
  rows.push_back({name, "ryxnorm", "n<=0", [call] { return call(false, false, 0, F{0}); }});
  rows.push_back({name, "ryxnorm", "src==0", [call] { return call(false, true, 2, F{0}); }});
  rows.push_back({name, "ryxnorm", "dst==0", [call] { return call(true, false, 2, F{0}); }});
  rows.push_back({name, "ryxnorm", "factor == 0", [call] { return call(true, true, 2, F{0}); }});
  rows.push_back({name, "ryxnorm", "factor == 0", [call] { return call(true, true, 2, -F{0}); }});
}

std::vector<Row> normRows() {
  std::vector<Row> r;
  normRows(r, "ryxsNorm", ryxsNorm);
  normRows(r, "ryxdNorm", ryxdNorm);
  normRows(r, "ryxcNorm", ryxcNorm);
  normRows(r, "ryxzNorm", ryxzNorm);
  normRows(r, "ryxwNorm", ryxwNorm);
  normRows(r, "ryxvNorm", ryxvNorm);
  static short w[2] = {};
  static WCplx v[2] = {};
  scaleRows(r, "ryxwNormExt", "ryxnorm", [](int n, int mode, bool withFactor) {
    int f = 77;
    return ryxwNormExt(w, nullptr, n, 99, mode, withFactor ? &f : nullptr) == 0 && f == 77;
  });
  scaleRows(r, "ryxvNormExt", "ryxnorm", [](int n, int mode, bool withFactor) {
    int f = 77;
    return ryxvNormExt(v, nullptr, n, 99, mode, withFactor ? &f : nullptr) == 0 && f == 77;
  });
  normalizeRows(r, "ryxsbNormalize", ryxsbNormalize);
  normalizeRows(r, "ryxdbNormalize", ryxdbNormalize);
  normalizeRows(r, "ryxcbNormalize", ryxcbNormalize);
  normalizeRows(r, "ryxzbNormalize", ryxzbNormalize);
  normalizeRows(r, "ryxwbNormalize", ryxwbNormalize);
  normalizeRows(r, "ryxvbNormalize", ryxvbNormalize);
  return r;
}

void runRows(const std::vector<Row>& rows) {
  ReportCapture capture;
  for (const Row& row : rows) {
    capture.clear();
    EXPECT_TRUE(row.failsCleanly()) << row.name << " " << row.context << ": result or outputs";
    ASSERT_EQ(capture.reports().size(), 1u) << row.name << " " << row.context;
    const auto& rep = capture.reports()[0];
    EXPECT_EQ(rep.status, RYX_StsBadArg) << row.name;
    EXPECT_EQ(rep.funcName, row.name);
    EXPECT_EQ(rep.context, row.context) << row.name;
    EXPECT_EQ(rep.file, row.stem) << row.name;
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg) << row.name;
  }
}

TEST(StatsChecks, SumsMeansDeviations) { runRows(sumRows()); }
TEST(StatsChecks, Extremes) { runRows(extremeRows()); }
TEST(StatsChecks, NormsAndNormalisation) { runRows(normRows()); }

}  // namespace
