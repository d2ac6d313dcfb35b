// Argument checks of the integer and fixed-point conversions, table driven.
// All routines but the S...FixToFloat four clear the status, report every
// failing check in order ("len<=0", "src==0", "dst==0", the size, the flags,
// fractBits) and then give up with nothing written and the caller's
// floating-point state untouched; the S...FixToFloat routines stop at the
// first failure and leave a stored status standing.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "convert_support.h"
#include "test_support.h"

namespace {

using ryxtest::ReportCapture;

using namespace cvtest;

std::string sizeText(Shape s) {
  return s == Shape::FromFloatFix || s == Shape::ToFloatFix ? "Invalid size of a fix-point" : "Invalid size of an integer";
}

// Arguments of one call; `valid()` passes every check of every shape.
struct Args {
  int len = 4, bits = 16, fractBits = 3, flags = 0;
  bool nullSrc = false, nullDst = false;
};
Args valid(const Routine& r) {
  Args a;
  a.flags = r.fromFloat() ? RYX_RoundNearest : 0;
  return a;
}

// One call with guarded buffers under a non-default caller state: the
// reports, and whether dst and the state stayed as they were.
struct Outcome {
  std::vector<std::string> contexts;
  bool dstUntouched, stateKept;
};
Outcome run(const Routine& r, const Args& a, ReportCapture& capture) {
  capture.clear();
  alignas(32) std::array<double, 8> src{0.25, -0.5, 0.75, 1.0, 2, 3, 4, 5};
  alignas(32) std::array<unsigned char, 64> dst;
  dst.fill(0xA5);
  const FpState caller{0x1F80 | 0x4000, 0x037F | 0x0800};
  writeFp(caller);
  r.call(a.len, a.nullSrc ? nullptr : src.data(), a.nullDst ? nullptr : dst.data(), a.bits, a.fractBits, a.flags);
  const FpState after = readFp();
  writeFp({0x1F80, 0x037F});
  Outcome o{{}, true, after == caller};
  for (unsigned char b : dst) o.dstUntouched &= b == 0xA5;
  for (const ryxtest::Report& rep : capture.reports()) {
    EXPECT_EQ(rep.status, RYX_StsBadArg) << r.name;
    EXPECT_EQ(rep.funcName, r.name);
    EXPECT_EQ(rep.file, r.stem());
    o.contexts.push_back(rep.context);
  }
  return o;
}

using Texts = std::vector<std::string>;

// Each check failing alone: one report with its text, nothing written, the
// caller's state kept; the stored failure is the status afterwards.
TEST(ConvertChecks, EachCheckAlone) {
  ReportCapture capture;
  for (const Routine& r : conversionRoutines()) {
    struct Case { std::function<void(Args&)> spoil; std::string text; bool applies; };
    const std::vector<Case> cases = {
        {[](Args& a) { a.len = 0; }, "len<=0", true},
        {[](Args& a) { a.len = -3; }, "len<=0", true},
        {[](Args& a) { a.nullSrc = true; }, "src==0", true},
        {[](Args& a) { a.nullDst = true; }, "dst==0", true},
        {[](Args& a) { a.bits = 12; }, sizeText(r.shape), r.hasSize()},
        {[](Args& a) { a.bits = 64; }, sizeText(r.shape), r.hasSize()},
        // No rounding flag, two rounding flags.
        {[](Args& a) { a.flags = RYX_ClipRange; }, "Invalid conversion flag", r.fromFloat()},
        {[](Args& a) { a.flags = RYX_RoundNearest | RYX_RoundZero; }, "Invalid conversion flag", r.fromFloat()},
        {[](Args& a) { a.flags = RYX_RoundDown | RYX_RoundUp | RYX_ClipRange; }, "Invalid conversion flag", r.fromFloat()},
        // Integer to float takes 0 or exactly UnsignedInt.
        {[](Args& a) { a.flags = RYX_RoundNearest; }, "Invalid conversion flag", !r.fromFloat() && r.shape != Shape::ToFloatS},
        {[](Args& a) { a.flags = RYX_UnsignedInt | RYX_ClipRange; }, "Invalid conversion flag", !r.fromFloat() && r.shape != Shape::ToFloatS},
        {[](Args& a) { a.fractBits = -1; }, "Invalid fractBits", r.hasFract()},
        {[](Args& a) { a.fractBits = 16; }, "Invalid fractBits", r.hasFract()},
    };
    for (const Case& c : cases) {
      if (!c.applies) continue;
      Args a = valid(r);
      c.spoil(a);
      const Outcome o = run(r, a, capture);
      EXPECT_EQ(o.contexts, Texts{c.text}) << r.name;
      EXPECT_TRUE(o.dstUntouched) << r.name << " " << c.text;
      EXPECT_TRUE(o.stateKept) << r.name << " " << c.text;
      EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg) << r.name;
    }
    // And the valid call itself: no report, data written.
    const Outcome o = run(r, valid(r), capture);
    EXPECT_TRUE(o.contexts.empty()) << r.name;
    EXPECT_FALSE(o.dstUntouched) << r.name;
    EXPECT_TRUE(o.stateKept) << r.name;
  }
}

// Everything wrong at once: the check-everything routines report all in
// order and the last stays stored; the stop-at-first ones report only the
// length.
TEST(ConvertChecks, AllBadReportsInOrder) {
  ReportCapture capture;
  for (const Routine& r : conversionRoutines()) {
    Args a{0, 12, -1, r.fromFloat() ? RYX_RoundNearest | RYX_RoundUp : RYX_RoundNearest, true, true};
    const Outcome o = run(r, a, capture);
    Texts want = {"len<=0"};
    if (r.shape != Shape::ToFloatS) {
      want = {"len<=0", "src==0", "dst==0"};
      if (r.hasSize()) want.push_back(sizeText(r.shape));
      want.push_back("Invalid conversion flag");
      if (r.hasFract()) want.push_back("Invalid fractBits");
    }
    EXPECT_EQ(o.contexts, want) << r.name;
    EXPECT_TRUE(o.stateKept) << r.name;
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
  }
}

// A stored failure: cleared by a valid call of a check-everything routine,
// left standing by a valid call of a stop-at-first routine.
TEST(ConvertChecks, StoredStatusAfterAValidCall) {
  ReportCapture capture;
  for (const Routine& r : conversionRoutines()) {
    ryxSetErrStatus(RYX_StsNoMem);
    const Outcome o = run(r, valid(r), capture);
    EXPECT_TRUE(o.contexts.empty());
    // run() clears the capture (and the status) first; set it again.
    ryxSetErrStatus(RYX_StsNoMem);
    r.call(1, std::array<double, 1>{0.5}.data(), std::array<double, 1>{}.data(), 16, 3, valid(r).flags);
    EXPECT_EQ(ryxGetErrStatus(), r.shape == Shape::ToFloatS ? RYX_StsNoMem : RYX_StsOk) << r.name;
  }
}

// fractBits runs from 0 to bits when unsigned and to bits - 1 when signed.
TEST(ConvertChecks, FractBitsLimits) {
  ReportCapture capture;
  struct Case { int bits, fractBits; bool isUnsigned, accepted; };
  const Case cases[] = {{8, 8, true, true},   {8, 8, false, false}, {8, 7, false, true},    {8, 9, true, false},
                        {16, 16, true, true}, {16, 15, false, true}, {16, 16, false, false}, {32, 32, true, true},
                        {32, 31, false, true}, {32, 32, false, false}, {32, 33, true, false}, {16, 0, false, true},
                        {8, -1, true, false}};
  for (const Routine& r : conversionRoutines()) {
    if (!r.hasFract()) continue;
    for (const Case& c : cases) {
      Args a = valid(r);
      a.bits = c.bits;
      a.fractBits = c.fractBits;
      if (c.isUnsigned) a.flags |= RYX_UnsignedInt;
      const Outcome o = run(r, a, capture);
      EXPECT_EQ(o.contexts, c.accepted ? Texts{} : Texts{"Invalid fractBits"})
          << r.name << " " << c.bits << "." << c.fractBits << (c.isUnsigned ? " unsigned" : " signed");
    }
  }
}

// Flags beside the single rounding flag are free in the float-to-integer
// direction.
TEST(ConvertChecks, OtherFlagBitsAreFree) {
  ReportCapture capture;
  for (const Routine& r : conversionRoutines()) {
    if (!r.fromFloat()) continue;
    for (int flags : {RYX_RoundZero | RYX_ClipRange | RYX_UnsignedInt, RYX_RoundUp | 0x1, RYX_RoundDown | 0x10000}) {
      Args a = valid(r);
      a.flags = flags;
      EXPECT_TRUE(run(r, a, capture).contexts.empty()) << r.name << " " << flags;
    }
  }
}

}  // namespace
