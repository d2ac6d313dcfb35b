// Argument checks of the square, root, threshold, inverse threshold and
// absolute value routines: length, then the arrays, then the threshold's
// sign or the auto-scale factor, each with its exact text, stopping at the
// first failure and touching nothing.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::ReportCapture;

// call(a, b, len, bad): a and b are the array arguments in order (b unused by
// the in-place form); `bad` makes the scalar argument fail its own check.
struct Routine {
  std::string name;
  bool inPlace;
  const char* scalarText;  // null: no scalar check
  std::function<void(void*, void*, int, bool)> call;
};

template <class T>
T* as(void* p) {
  return static_cast<T*>(p);
}

#define ONE(f, T) Routine{#f, true, nullptr, [](void* a, void*, int n, bool) { f(as<T>(a), n); }}
#define TWO(f, T) Routine{#f, false, nullptr, [](void* a, void* b, int n, bool) { f(as<T>(a), as<T>(b), n); }}
#define THR1(f, T, R, text) Routine{#f, true, text, [](void* a, void*, int n, bool bad) { f(as<T>(a), n, R(bad ? -1 : 1), 0); }}
#define THR2(f, T, R, text) \
  Routine{#f, false, text, [](void* a, void* b, int n, bool bad) { f(as<T>(a), as<T>(b), n, R(bad ? -1 : 1), 0); }}
#define INV1(f, T, R, text) Routine{#f, true, text, [](void* a, void*, int n, bool bad) { f(as<T>(a), n, R(bad ? -1 : 1)); }}
#define INV2(f, T, R, text) \
  Routine{#f, false, text, [](void* a, void* b, int n, bool bad) { f(as<T>(a), as<T>(b), n, R(bad ? -1 : 1)); }}
#define SQ1(f, T) \
  Routine{#f, true, "scaleFactor==0", [](void* a, void*, int n, bool bad) { int s = 0; f(as<T>(a), n, 4, bad ? nullptr : &s); }}
#define SQ2(f, T)                                                                 \
  Routine{#f, false, "scaleFactor==0", [](void* a, void* b, int n, bool bad) {    \
            int s = 0;                                                            \
            f(as<T>(a), as<T>(b), n, 4, bad ? nullptr : &s);                      \
          }}

std::vector<Routine> routines() {
  return {
      ONE(ryxsbSqr1, float), TWO(ryxsbSqr2, float), ONE(ryxdbSqr1, double), TWO(ryxdbSqr2, double),
      ONE(ryxcbSqr1, SCplx), TWO(ryxcbSqr2, SCplx), ONE(ryxzbSqr1, DCplx), TWO(ryxzbSqr2, DCplx),
      SQ1(ryxwbSqr1, short), SQ2(ryxwbSqr2, short), SQ1(ryxvbSqr1, WCplx), SQ2(ryxvbSqr2, WCplx),
      ONE(ryxsbSqrt1, float), TWO(ryxsbSqrt2, float), ONE(ryxdbSqrt1, double), TWO(ryxdbSqrt2, double),
      ONE(ryxcbSqrt1, SCplx), TWO(ryxcbSqrt2, SCplx), ONE(ryxzbSqrt1, DCplx), TWO(ryxzbSqrt2, DCplx),
      ONE(ryxwbSqrt1, short), TWO(ryxwbSqrt2, short), ONE(ryxvbSqrt1, WCplx), TWO(ryxvbSqrt2, WCplx),
      THR1(ryxsbThresh1, float, float, nullptr), THR2(ryxsbThresh2, float, float, nullptr),
      THR1(ryxdbThresh1, double, double, nullptr), THR2(ryxdbThresh2, double, double, nullptr),
      THR1(ryxwbThresh1, short, short, nullptr), THR2(ryxwbThresh2, short, short, nullptr),
      THR1(ryxcbThresh1, SCplx, float, "thresh<0.0f"), THR2(ryxcbThresh2, SCplx, float, "thresh<0.0f"),
      THR1(ryxzbThresh1, DCplx, double, "thresh<0.0"), THR2(ryxzbThresh2, DCplx, double, "thresh<0.0"),
      THR1(ryxvbThresh1, WCplx, short, "thresh<0"), THR2(ryxvbThresh2, WCplx, short, "thresh<0"),
      INV1(ryxsbInvThresh1, float, float, "thresh<0.0"), INV2(ryxsbInvThresh2, float, float, "thresh<0.0"),
      INV1(ryxdbInvThresh1, double, double, "thresh<0.0"), INV2(ryxdbInvThresh2, double, double, "thresh<0.0"),
      INV1(ryxcbInvThresh1, SCplx, float, "thresh<0.0f"), INV2(ryxcbInvThresh2, SCplx, float, "thresh<0.0f"),
      INV1(ryxzbInvThresh1, DCplx, double, "thresh<0.0"), INV2(ryxzbInvThresh2, DCplx, double, "thresh<0.0"),
      ONE(ryxsbAbs1, float), TWO(ryxsbAbs2, float), ONE(ryxdbAbs1, double), TWO(ryxdbAbs2, double),
      ONE(ryxwbAbs1, short), TWO(ryxwbAbs2, short),
  };
}
#undef ONE
#undef TWO
#undef THR1
#undef THR2
#undef INV1
#undef INV2
#undef SQ1
#undef SQ2

TEST(ElemChecks, EveryRoutineInOrderWithExactTexts) {
  const std::vector<Routine> all = routines();
  EXPECT_EQ(all.size(), 50u);
  for (const Routine& r : all) {
    ReportCapture capture;
    alignas(32) unsigned char a[128], b[128];
    auto expectOnly = [&](const std::string& text) {
      ASSERT_EQ(capture.reports().size(), 1u) << r.name << " " << text;
      const auto& rep = capture.reports()[0];
      EXPECT_EQ(rep.status, RYX_StsBadArg);
      EXPECT_EQ(rep.funcName, r.name);
      EXPECT_EQ(rep.context, text) << r.name;
      EXPECT_EQ(rep.file, "ryxvec") << r.name;
      EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
      for (int i = 0; i < 128; ++i) ASSERT_TRUE(a[i] == 0x3C && b[i] == 0x3C) << r.name << " " << text;
      capture.clear();
    };
    std::memset(a, 0x3C, sizeof a);
    std::memset(b, 0x3C, sizeof b);
    for (int n : {0, -1, INT_MIN}) {
      r.call(nullptr, nullptr, n, true);
      expectOnly("len<=0");
    }
    if (r.inPlace) {
      r.call(nullptr, b, 4, true);
      expectOnly("vec==0");
    } else {
      r.call(nullptr, nullptr, 4, true);
      expectOnly("src==0");
      r.call(a, nullptr, 4, true);
      expectOnly("dst==0");
    }
    if (r.scalarText != nullptr) {
      r.call(a, b, 4, true);
      expectOnly(r.scalarText);
    }
  }
}

}  // namespace
