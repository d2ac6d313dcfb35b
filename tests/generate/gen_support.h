// Helpers of the generator tests: the failure-table runner and small
// numeric utilities.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "ryxcore.h"
#include "ryxcore/generate.h"
#include "test_support.h"

namespace gentest {

using Wide = long double;
constexpr Wide kPi = 3.141592653589793238462643383279502884L;

// One documented failure: the call (true when a returned sample is zero),
// and the report it must produce.
struct FailCase {
  std::string func, file, context;
  std::function<bool()> call;
};

// Runs each case against a fixture of live records and arrays: exactly one
// report, bad-argument status, exact name, stem and words; the fixture is
// byte for byte unchanged and a sample routine returns zero.
template <class Fixture>
void runFailures(Fixture& fx, const std::vector<FailCase>& cases) {
  for (const FailCase& c : cases) {
    SCOPED_TRACE(c.func + ": " + c.context);
    std::vector<unsigned char> before(sizeof fx);
    std::memcpy(before.data(), &fx, sizeof fx);
    ryxtest::ReportCapture capture;
    const bool zero = c.call();
    ASSERT_EQ(capture.reports().size(), 1u);
    const ryxtest::Report& r = capture.reports()[0];
    EXPECT_EQ(r.status, RYX_StsBadArg);
    EXPECT_EQ(r.funcName, c.func);
    EXPECT_EQ(r.file, c.file);
    EXPECT_EQ(r.context, c.context);
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
    EXPECT_TRUE(zero);
    EXPECT_EQ(std::memcmp(before.data(), &fx, sizeof fx), 0);
  }
}

// A generator's three entry points with their types: record, sample, the
// Init's real arguments and its magnitude.
template <class St, class T, class R, class M, auto Init, T (*One)(St*), void (*Block)(St*, T*, int)>
struct GenApi {
  using State = St;
  using Sample = T;
  using Real = R;
  using Mag = M;
  template <class... X>
  static void init(X... x) { Init(x...); }
  static T one(St* s) { return One(s); }
  static void block(St* s, T* d, int n) { Block(s, d, n); }
};

template <class T>
bool isZero(const T& v) {
  T z{};
  return std::memcmp(&v, &z, sizeof v) == 0;
}

// Complex and real samples seen as arrays of their parts.
template <class T> struct Parts { static constexpr int count = 1; };
template <> struct Parts<SCplx> { static constexpr int count = 2; };
template <> struct Parts<DCplx> { static constexpr int count = 2; };
template <> struct Parts<WCplx> { static constexpr int count = 2; };

inline double part(float v, int) { return v; }
inline double part(double v, int) { return v; }
inline double part(short v, int) { return v; }
inline double part(SCplx v, int i) { return i ? v.im : v.re; }
inline double part(DCplx v, int i) { return i ? v.im : v.re; }
inline double part(WCplx v, int i) { return i ? v.im : v.re; }

}  // namespace gentest
