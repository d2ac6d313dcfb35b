// Argument checks of every array routine of the elementwise family, table
// driven: the length first, then the pointers in order (sources, then the
// destination), each reported with its exact text under the routine's own
// name, stopping at the first failure and touching no array.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::ReportCapture;

struct Routine {
  std::string name;
  std::vector<std::string> pointers;               // argument names, in order
  std::function<void(void**, int)> call;           // pointers, n
};

template <class T>
T* as(void* p) { return static_cast<T*>(p); }

template <class T>
void addFamily(std::vector<Routine>& out, const std::string& x, void (*zero)(T*, int), void (*set)(T, T*, int),
               void (*copy)(const T*, T*, int), std::vector<void (*)(T, T*, int)> op1,
               std::vector<void (*)(const T*, T*, int)> op2, std::vector<void (*)(const T*, const T*, T*, int)> op3) {
  const char* ops[] = {"Add", "Sub", "Mpy"};
  out.push_back({"ryx" + x + "bZero", {"dst"}, [zero](void** p, int n) { zero(as<T>(p[0]), n); }});
  out.push_back({"ryx" + x + "bSet", {"dst"}, [set](void** p, int n) { set(T{}, as<T>(p[0]), n); }});
  out.push_back({"ryx" + x + "bCopy", {"src", "dst"}, [copy](void** p, int n) { copy(as<T>(p[0]), as<T>(p[1]), n); }});
  for (int k = 0; k < 3; ++k) {
    auto f1 = op1[k];
    auto f2 = op2[k];
    auto f3 = op3[k];
    out.push_back({"ryx" + x + "b" + ops[k] + "1", {"dst"}, [f1](void** p, int n) { f1(T{}, as<T>(p[0]), n); }});
    out.push_back({"ryx" + x + "b" + ops[k] + "2", {"src", "dst"},
                   [f2](void** p, int n) { f2(as<T>(p[0]), as<T>(p[1]), n); }});
    out.push_back({"ryx" + x + "b" + ops[k] + "3", {"srcA", "srcB", "dst"},
                   [f3](void** p, int n) { f3(as<T>(p[0]), as<T>(p[1]), as<T>(p[2]), n); }});
  }
}

template <class C>
void addConjugates(std::vector<Routine>& out, const std::string& x, void (*c1)(C*, int),
                   void (*c2)(const C*, C*, int), void (*flip)(const C*, C*, int), void (*e1)(C*, int),
                   void (*e2)(const C*, C*, int)) {
  out.push_back({"ryx" + x + "bConj1", {"vec"}, [c1](void** p, int n) { c1(as<C>(p[0]), n); }});
  out.push_back({"ryx" + x + "bConj2", {"src", "dst"}, [c2](void** p, int n) { c2(as<C>(p[0]), as<C>(p[1]), n); }});
  out.push_back(
      {"ryx" + x + "bConjFlip2", {"src", "dst"}, [flip](void** p, int n) { flip(as<C>(p[0]), as<C>(p[1]), n); }});
  out.push_back({"ryx" + x + "bConjExtend1", {"vec"}, [e1](void** p, int n) { e1(as<C>(p[0]), n); }});
  out.push_back(
      {"ryx" + x + "bConjExtend2", {"src", "dst"}, [e2](void** p, int n) { e2(as<C>(p[0]), as<C>(p[1]), n); }});
}

std::vector<Routine> allRoutines() {
  std::vector<Routine> r;
  addFamily<float>(r, "s", ryxsbZero, ryxsbSet, ryxsbCopy, {ryxsbAdd1, ryxsbSub1, ryxsbMpy1},
                   {ryxsbAdd2, ryxsbSub2, ryxsbMpy2}, {ryxsbAdd3, ryxsbSub3, ryxsbMpy3});
  addFamily<double>(r, "d", ryxdbZero, ryxdbSet, ryxdbCopy, {ryxdbAdd1, ryxdbSub1, ryxdbMpy1},
                    {ryxdbAdd2, ryxdbSub2, ryxdbMpy2}, {ryxdbAdd3, ryxdbSub3, ryxdbMpy3});
  addFamily<SCplx>(r, "c", ryxcbZero, ryxcbSet, ryxcbCopy, {ryxcbAdd1, ryxcbSub1, ryxcbMpy1},
                   {ryxcbAdd2, ryxcbSub2, ryxcbMpy2}, {ryxcbAdd3, ryxcbSub3, ryxcbMpy3});
  addFamily<DCplx>(r, "z", ryxzbZero, ryxzbSet, ryxzbCopy, {ryxzbAdd1, ryxzbSub1, ryxzbMpy1},
                   {ryxzbAdd2, ryxzbSub2, ryxzbMpy2}, {ryxzbAdd3, ryxzbSub3, ryxzbMpy3});
  addConjugates<SCplx>(r, "c", ryxcbConj1, ryxcbConj2, ryxcbConjFlip2, ryxcbConjExtend1, ryxcbConjExtend2);
  addConjugates<DCplx>(r, "z", ryxzbConj1, ryxzbConj2, ryxzbConjFlip2, ryxzbConjExtend1, ryxzbConjExtend2);
  return r;
}

class ArithChecks : public testing::TestWithParam<Routine> {};

constexpr int kBytes = 256;

TEST_P(ArithChecks, LengthFirstThenPointersInOrder) {
  const Routine& r = GetParam();
  ReportCapture capture;
  alignas(32) unsigned char buffers[3][kBytes];
  for (auto& b : buffers) std::memset(b, 0x3C, kBytes);

  auto expectOne = [&](const std::string& context) {
    ASSERT_EQ(capture.reports().size(), 1u) << r.name << " expecting " << context;
    const auto& rep = capture.reports()[0];
    EXPECT_EQ(rep.status, RYX_StsBadArg);
    EXPECT_EQ(rep.funcName, r.name);
    EXPECT_EQ(rep.context, context);
    EXPECT_EQ(rep.file, "ryxarith");
    EXPECT_GT(rep.line, 0);
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
    for (auto& b : buffers)
      for (unsigned char c : b) ASSERT_EQ(c, 0x3C) << r.name << ": an array was touched";
    capture.clear();
  };

  // A bad length wins over every null pointer, and over valid ones.
  for (int n : {0, -1, -2147483647 - 1}) {
    void* none[3] = {nullptr, nullptr, nullptr};
    r.call(none, n);
    expectOne("n<=0");
    void* valid[3] = {buffers[0], buffers[1], buffers[2]};
    r.call(valid, n);
    expectOne("n<=0");
  }
  // Then each pointer in order: earlier ones valid, this one and later null.
  for (size_t k = 0; k < r.pointers.size(); ++k) {
    void* p[3] = {nullptr, nullptr, nullptr};
    for (size_t j = 0; j < k; ++j) p[j] = buffers[j];
    r.call(p, 3);
    expectOne(r.pointers[k] + "==0");
  }
}

TEST_P(ArithChecks, StoredStatusStaysAfterALaterSuccess) {
  const Routine& r = GetParam();
  ReportCapture capture;
  alignas(32) unsigned char buffers[3][kBytes] = {};
  void* none[3] = {nullptr, nullptr, nullptr};
  r.call(none, 4);
  void* valid[3] = {buffers[0], buffers[1], buffers[2]};
  r.call(valid, 4);
  EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg);
  EXPECT_EQ(capture.reports().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(All, ArithChecks, testing::ValuesIn(allRoutines()),
                         [](const testing::TestParamInfo<Routine>& info) { return info.param.name; });

}  // namespace
