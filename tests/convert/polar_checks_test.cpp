// Argument checks of the complex, polar and spectrum conversions: each
// routine's name, source group and pointer order ("length<=0" first), the
// split CartToPolar reporting as PolarToCart, the lenient 2RealToCplx, and
// the scale-flag checks of the 16-bit Mag and PowerSpectr.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::ReportCapture;

// call(p, length, mode, factor): p holds the pointer arguments in order.
struct Routine {
  std::string name, reportedAs, stem;
  std::vector<std::string> order;  // pointer texts in the order they are checked
  std::vector<int> argOf;          // for each checked text, its argument position
  bool scaled;
  std::function<void(void**, int, int, int*)> call;
};

template <class T>
T p(void* q) {
  return static_cast<T>(q);
}

std::vector<Routine> routines() {
  using V = void**;
  std::vector<Routine> r;
  auto add = [&](std::string name, std::string stem, std::vector<std::string> order, std::vector<int> argOf,
                 std::function<void(void**, int, int, int*)> call, bool scaled = false, std::string as = "") {
    r.push_back({name, as.empty() ? name : as, stem, order, argOf, scaled, call});
  };
  const std::string s = "ryxcvrts", d = "ryxcvrtd", w = "ryxcvrtw";
  add("ryxcbReal", s, {"src==0", "dst==0"}, {0, 1}, [](V a, int n, int, int*) { ryxcbReal(p<SCplx*>(a[0]), p<float*>(a[1]), n); });
  add("ryxzbReal", d, {"src==0", "dst==0"}, {0, 1}, [](V a, int n, int, int*) { ryxzbReal(p<DCplx*>(a[0]), p<double*>(a[1]), n); });
  add("ryxvbReal", w, {"dst==0", "src==0"}, {1, 0}, [](V a, int n, int, int*) { ryxvbReal(p<WCplx*>(a[0]), p<short*>(a[1]), n); });
  add("ryxcbImag", s, {"src==0", "dst==0"}, {0, 1}, [](V a, int n, int, int*) { ryxcbImag(p<SCplx*>(a[0]), p<float*>(a[1]), n); });
  add("ryxzbImag", d, {"src==0", "dst==0"}, {0, 1}, [](V a, int n, int, int*) { ryxzbImag(p<DCplx*>(a[0]), p<double*>(a[1]), n); });
  add("ryxvbImag", w, {"dst==0", "src==0"}, {1, 0}, [](V a, int n, int, int*) { ryxvbImag(p<WCplx*>(a[0]), p<short*>(a[1]), n); });
  add("ryxcbCplxTo2Real", s, {"src==0", "dstReal==0", "dstImag==0"}, {0, 1, 2},
      [](V a, int n, int, int*) { ryxcbCplxTo2Real(p<SCplx*>(a[0]), p<float*>(a[1]), p<float*>(a[2]), n); });
  add("ryxzbCplxTo2Real", d, {"src==0", "dstReal==0", "dstImag==0"}, {0, 1, 2},
      [](V a, int n, int, int*) { ryxzbCplxTo2Real(p<DCplx*>(a[0]), p<double*>(a[1]), p<double*>(a[2]), n); });
  add("ryxvbCplxTo2Real", w, {"dstReal==0", "dstImag==0", "src==0"}, {1, 2, 0},
      [](V a, int n, int, int*) { ryxvbCplxTo2Real(p<WCplx*>(a[0]), p<short*>(a[1]), p<short*>(a[2]), n); });
  add("ryxcb2RealToCplx", s, {"dst==0"}, {2},
      [](V a, int n, int, int*) { ryxcb2RealToCplx(p<float*>(a[0]), p<float*>(a[1]), p<SCplx*>(a[2]), n); });
  add("ryxzb2RealToCplx", d, {"dst==0"}, {2},
      [](V a, int n, int, int*) { ryxzb2RealToCplx(p<double*>(a[0]), p<double*>(a[1]), p<DCplx*>(a[2]), n); });
  add("ryxvb2RealToCplx", w, {"dst==0"}, {2},
      [](V a, int n, int, int*) { ryxvb2RealToCplx(p<short*>(a[0]), p<short*>(a[1]), p<WCplx*>(a[2]), n); });
  add("ryxcbCartToPolar", s, {"src==0", "mag==0", "phase==0"}, {0, 1, 2},
      [](V a, int n, int, int*) { ryxcbCartToPolar(p<SCplx*>(a[0]), p<float*>(a[1]), p<float*>(a[2]), n); });
  add("ryxzbCartToPolar", d, {"src==0", "mag==0", "phase==0"}, {0, 1, 2},
      [](V a, int n, int, int*) { ryxzbCartToPolar(p<DCplx*>(a[0]), p<double*>(a[1]), p<double*>(a[2]), n); });
  add("ryxsbrCartToPolar", s, {"mag==0", "phase==0", "srcReal==0", "srcImag==0"}, {2, 3, 0, 1},
      [](V a, int n, int, int*) { ryxsbrCartToPolar(p<float*>(a[0]), p<float*>(a[1]), p<float*>(a[2]), p<float*>(a[3]), n); },
      false, "ryxsbrPolarToCart");
  add("ryxdbrCartToPolar", d, {"mag==0", "phase==0", "srcReal==0", "srcImag==0"}, {2, 3, 0, 1},
      [](V a, int n, int, int*) { ryxdbrCartToPolar(p<double*>(a[0]), p<double*>(a[1]), p<double*>(a[2]), p<double*>(a[3]), n); },
      false, "ryxdbrPolarToCart");
  add("ryxcbPolarToCart", s, {"mag==0", "phase==0", "dst==0"}, {0, 1, 2},
      [](V a, int n, int, int*) { ryxcbPolarToCart(p<float*>(a[0]), p<float*>(a[1]), p<SCplx*>(a[2]), n); });
  add("ryxzbPolarToCart", d, {"mag==0", "phase==0", "dst==0"}, {0, 1, 2},
      [](V a, int n, int, int*) { ryxzbPolarToCart(p<double*>(a[0]), p<double*>(a[1]), p<DCplx*>(a[2]), n); });
  add("ryxsbrPolarToCart", s, {"mag==0", "phase==0", "dstReal==0", "dstImag==0"}, {0, 1, 2, 3},
      [](V a, int n, int, int*) { ryxsbrPolarToCart(p<float*>(a[0]), p<float*>(a[1]), p<float*>(a[2]), p<float*>(a[3]), n); });
  add("ryxdbrPolarToCart", d, {"mag==0", "phase==0", "dstReal==0", "dstImag==0"}, {0, 1, 2, 3},
      [](V a, int n, int, int*) { ryxdbrPolarToCart(p<double*>(a[0]), p<double*>(a[1]), p<double*>(a[2]), p<double*>(a[3]), n); });
  // Mag, Phase, PowerSpectr: one output after the sources, or before them in 16 bits.
  struct Unary {
    const char* out;
    void (*c)(const SCplx*, float*, int);
    void (*z)(const DCplx*, double*, int);
    void (*sr)(const float*, const float*, float*, int);
    void (*dr)(const double*, const double*, double*, int);
    const char *cName, *zName, *srName, *drName;
  };
  const Unary unary[] = {
      {"mag==0", ryxcbMag, ryxzbMag, ryxsbrMag, ryxdbrMag, "ryxcbMag", "ryxzbMag", "ryxsbrMag", "ryxdbrMag"},
      {"phase==0", ryxcbPhase, ryxzbPhase, ryxsbrPhase, ryxdbrPhase, "ryxcbPhase", "ryxzbPhase", "ryxsbrPhase", "ryxdbrPhase"},
      {"spectr==0", ryxcbPowerSpectr, ryxzbPowerSpectr, ryxsbrPowerSpectr, ryxdbrPowerSpectr, "ryxcbPowerSpectr",
       "ryxzbPowerSpectr", "ryxsbrPowerSpectr", "ryxdbrPowerSpectr"},
  };
  for (const Unary& u : unary) {
    auto c = u.c;
    auto z = u.z;
    auto sr = u.sr;
    auto dr = u.dr;
    add(u.cName, s, {"src==0", u.out}, {0, 1}, [c](V a, int n, int, int*) { c(p<SCplx*>(a[0]), p<float*>(a[1]), n); });
    add(u.zName, d, {"src==0", u.out}, {0, 1}, [z](V a, int n, int, int*) { z(p<DCplx*>(a[0]), p<double*>(a[1]), n); });
    add(u.srName, s, {"srcReal==0", "srcImag==0", u.out}, {0, 1, 2},
        [sr](V a, int n, int, int*) { sr(p<float*>(a[0]), p<float*>(a[1]), p<float*>(a[2]), n); });
    add(u.drName, d, {"srcReal==0", "srcImag==0", u.out}, {0, 1, 2},
        [dr](V a, int n, int, int*) { dr(p<double*>(a[0]), p<double*>(a[1]), p<double*>(a[2]), n); });
  }
  add("ryxvbPhase", w, {"phase==0", "src==0"}, {1, 0}, [](V a, int n, int, int*) { ryxvbPhase(p<WCplx*>(a[0]), p<short*>(a[1]), n); });
  add("ryxwbrPhase", w, {"phase==0", "srcReal==0", "srcImag==0"}, {2, 0, 1},
      [](V a, int n, int, int*) { ryxwbrPhase(p<short*>(a[0]), p<short*>(a[1]), p<short*>(a[2]), n); });
  add("ryxvbMag", w, {"mag==0", "src==0"}, {1, 0},
      [](V a, int n, int m, int* f) { ryxvbMag(p<WCplx*>(a[0]), p<short*>(a[1]), n, m, f); }, true);
  add("ryxwbrMag", w, {"mag==0", "srcReal==0", "srcImag==0"}, {2, 0, 1},
      [](V a, int n, int m, int* f) { ryxwbrMag(p<short*>(a[0]), p<short*>(a[1]), p<short*>(a[2]), n, m, f); }, true);
  add("ryxvbPowerSpectr", w, {"spectr==0", "src==0"}, {1, 0},
      [](V a, int n, int m, int* f) { ryxvbPowerSpectr(p<WCplx*>(a[0]), p<short*>(a[1]), n, m, f); }, true);
  add("ryxwbrPowerSpectr", w, {"spectr==0", "srcReal==0", "srcImag==0"}, {2, 0, 1},
      [](V a, int n, int m, int* f) { ryxwbrPowerSpectr(p<short*>(a[0]), p<short*>(a[1]), p<short*>(a[2]), n, m, f); },
      true);
  return r;
}

TEST(PolarChecks, EveryRoutineInOrderWithExactTexts) {
  const std::vector<Routine> all = routines();
  EXPECT_EQ(all.size(), 38u);
  for (const Routine& r : all) {
    ReportCapture capture;
    alignas(32) unsigned char buf[4][256];
    int factor = 77;
    auto reset = [&] {
      std::memset(buf, 0x3C, sizeof buf);
      factor = 77;
      capture.clear();
    };
    auto expectOnly = [&](const std::string& text) {
      ASSERT_EQ(capture.reports().size(), 1u) << r.name << " " << text;
      const auto& rep = capture.reports()[0];
      EXPECT_EQ(rep.status, RYX_StsBadArg);
      EXPECT_EQ(rep.funcName, r.reportedAs) << r.name;
      EXPECT_EQ(rep.context, text) << r.name;
      EXPECT_EQ(rep.file, r.stem) << r.name;
      for (auto& b : buf)
        for (unsigned char c : b) ASSERT_EQ(c, 0x3C) << r.name << " " << text;
      EXPECT_EQ(factor, 77);
      reset();
    };
    reset();
    void* none[4] = {};
    for (int n : {0, -1, INT_MIN}) {
      r.call(none, n, 4, nullptr);
      expectOnly("length<=0");
    }
    // Each checked pointer in turn null, those checked before it valid.
    for (size_t k = 0; k < r.order.size(); ++k) {
      void* args[4] = {};
      for (size_t j = 0; j < 4; ++j) args[j] = buf[j];
      for (size_t j = k; j < r.order.size(); ++j) args[r.argOf[j]] = nullptr;
      r.call(args, 4, 0, &factor);
      expectOnly(r.order[k]);
    }
    if (!r.scaled) continue;
    void* args[4] = {buf[0], buf[1], buf[2], buf[3]};
    r.call(args, 4, 6, &factor);
    expectOnly("RYX_FIXED_SCALE and RYX_AUTO_SCALE");
    r.call(args, 4, 4, nullptr);
    expectOnly("RYX_AUTO_SCALE and ScaleFactor==NULL");
    for (int mode : {5, 7, 8, -1}) {  // no routine of these modes: nothing written, nothing reported
      r.call(args, 4, mode, &factor);
      EXPECT_TRUE(capture.reports().empty()) << r.name << " mode " << mode;
      for (auto& b : buf)
        for (unsigned char c : b) ASSERT_EQ(c, 0x3C) << r.name << " mode " << mode;
    }
  }
}

TEST(PolarChecks, TwoRealToCplxTakesNullSourcesAsZeroParts) {
  ReportCapture capture;
  float re[3] = {1, 2, 3};
  SCplx c[3];
  std::memset(c, 0x7f, sizeof c);
  ryxcb2RealToCplx(re, nullptr, c, 3);
  EXPECT_EQ(c[2].re, 3.0f);
  EXPECT_EQ(c[2].im, 0.0f);
  ryxcb2RealToCplx(nullptr, nullptr, c, 3);
  for (SCplx e : c) EXPECT_TRUE(e.re == 0.0f && e.im == 0.0f);
  double im[2] = {5, 6};
  DCplx z[2];
  ryxzb2RealToCplx(nullptr, im, z, 2);
  EXPECT_TRUE(z[1].re == 0.0 && z[1].im == 6.0);
  short wre[2] = {-7, 8};
  WCplx v[2];
  ryxvb2RealToCplx(wre, nullptr, v, 2);
  EXPECT_TRUE(v[0].re == -7 && v[0].im == 0);
  EXPECT_TRUE(capture.reports().empty());
}

}  // namespace
