// Argument-check cases of the transform tests: each call must make exactly
// one report, RYX_StsBadArg from the routine called (the name before the
// parenthesis of the written call), with the given file and text, and
// leave that status stored and the caller's data untouched.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "test_support.h"

namespace ryxtest {

struct CheckCase {
  std::function<void()> call;
  std::string text;
  const char* file;
  const char* context;
};

#define RYX_CHECK_CASE(file, context, ...) \
  ryxtest::CheckCase { [&] { __VA_ARGS__; }, #__VA_ARGS__, file, context }

inline void runCheckCases(const std::vector<CheckCase>& cases, const std::function<bool()>& untouched) {
  for (const CheckCase& k : cases) {
    SCOPED_TRACE(k.text);
    ReportCapture capture;
    k.call();
    ASSERT_EQ(capture.reports().size(), 1u);
    const Report& r = capture.reports()[0];
    EXPECT_EQ(r.status, RYX_StsBadArg);
    EXPECT_EQ(r.funcName, k.text.substr(0, k.text.find('(')));
    EXPECT_EQ(r.file, k.file);
    EXPECT_EQ(r.context, k.context);
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
    EXPECT_TRUE(untouched());
  }
}

}  // namespace ryxtest
