// Argument checks of every array routine of the vector families, table
// driven. The ordinary routines check the length first, then the pointers
// in argument order, then (16-bit scaled forms) the factor of the auto mode;
// the Div family checks its pointers before the length and returns a code
// while storing the bad-argument status. Each failure is one report with the
// routine's own name, exact text and source group, stopping at the first
// failure and touching no array and no factor.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::ReportCapture;

enum Kind { kPlain, kScaled, kDiv };
// p: the pointer arguments in order; the result is the returned code (0 for
// routines that return nothing).
using Call = std::function<int(void** p, int n, int mode, int* factor)>;
using Ptrs = std::vector<std::string>;

struct Routine {
  std::string name, stem;
  Kind kind;
  Ptrs contexts;  // failing texts of the pointers, in order
  Call call;
};

template <class T> const char* typeName();
template <> const char* typeName<float>() { return "float"; }
template <> const char* typeName<double>() { return "double"; }
template <> const char* typeName<SCplx>() { return "SCplx"; }
template <> const char* typeName<DCplx>() { return "DCplx"; }
template <> const char* typeName<short>() { return "short"; }
template <> const char* typeName<WCplx>() { return "WCplx"; }

// Hands out a call's arguments in order: pointers from p, the first int
// as n and the second as the mode (or shift count), the factor pointer,
// and a zero value for a scalar operand.
struct Args {
  void** p;
  int n, mode;
  int* factor;
  int pointers = 0, ints = 0;
  template <class X> X next() {
    if constexpr (std::is_same_v<X, int*>) return factor;
    else if constexpr (std::is_pointer_v<X>) return static_cast<X>(p[pointers++]);
    else if constexpr (std::is_same_v<X, int>) return ints++ == 0 ? n : mode;
    else return X{};
  }
};

template <class R, class... A> Routine make(const char* name, const char* stem, R (*f)(A...), const char* only = nullptr) {
  constexpr int count = (0 + ... + (std::is_pointer_v<A> && !std::is_same_v<A, int*>));
  constexpr bool div = !std::is_void_v<R>, scaled = (false || ... || std::is_same_v<A, int*>);
  Call call = [f](void** p, int n, int mode, int* factor) {
    Args args{p, n, mode, factor};
    std::tuple<A...> t{args.next<A>()...};  // braces: evaluated in order
    if constexpr (div) return static_cast<int>(std::apply(f, t));
    else return std::apply(f, t), 0;
  };
  // The pointers' texts by their number; the Div family casts its sources.
  using T = std::remove_const_t<std::remove_pointer_t<std::tuple_element_t<count - 1, std::tuple<A...>>>>;
  const std::vector<std::string> names = count == 1 ? Ptrs{only ? only : "dst"}
                                         : count == 2 ? Ptrs{"src", "dst"} : Ptrs{"srcA", "srcB", "dst"};
  Ptrs contexts;
  for (const std::string& arg : names) {
    std::string text = div && arg != "dst" ? std::string("(").append(typeName<T>()).append("*)") : std::string();
    contexts.push_back(text.append(arg).append("==0"));
  }
  return {name, stem, div ? kDiv : (scaled ? kScaled : kPlain), contexts, call};
}
#define R(f) make(#f, stem, f)
#define VEC(f) make(#f, stem, f, "vec")

std::vector<Routine> allRoutines() {
  std::vector<Routine> r;
  const char* stem = "ryxarith";
  r.insert(r.end(), {
      R(ryxsbZero), R(ryxsbSet), R(ryxsbCopy), R(ryxdbZero), R(ryxdbSet), R(ryxdbCopy),
      R(ryxcbZero), R(ryxcbSet), R(ryxcbCopy), R(ryxzbZero), R(ryxzbSet), R(ryxzbCopy),
      R(ryxsbAdd1), R(ryxsbSub1), R(ryxsbMpy1), R(ryxsbAdd2), R(ryxsbSub2), R(ryxsbMpy2),
      R(ryxsbAdd3), R(ryxsbSub3), R(ryxsbMpy3), R(ryxdbAdd1), R(ryxdbSub1), R(ryxdbMpy1),
      R(ryxdbAdd2), R(ryxdbSub2), R(ryxdbMpy2), R(ryxdbAdd3), R(ryxdbSub3), R(ryxdbMpy3),
      R(ryxcbAdd1), R(ryxcbSub1), R(ryxcbMpy1), R(ryxcbAdd2), R(ryxcbSub2), R(ryxcbMpy2),
      R(ryxcbAdd3), R(ryxcbSub3), R(ryxcbMpy3), R(ryxzbAdd1), R(ryxzbSub1), R(ryxzbMpy1),
      R(ryxzbAdd2), R(ryxzbSub2), R(ryxzbMpy2), R(ryxzbAdd3), R(ryxzbSub3), R(ryxzbMpy3),
      VEC(ryxcbConj1), R(ryxcbConj2), R(ryxcbConjFlip2), VEC(ryxcbConjExtend1), R(ryxcbConjExtend2),
      VEC(ryxzbConj1), R(ryxzbConj2), R(ryxzbConjFlip2), VEC(ryxzbConjExtend1), R(ryxzbConjExtend2),
  });
  stem = "ryxaritw";
  r.insert(r.end(), {
      R(ryxwbZero), R(ryxwbSet), R(ryxwbCopy), R(ryxvbZero), R(ryxvbSet), R(ryxvbCopy),
      R(ryxwbAdd1), R(ryxwbSub1), R(ryxwbMpy1), R(ryxwbAdd2), R(ryxwbSub2), R(ryxwbMpy2),
      R(ryxwbAdd3), R(ryxwbSub3), R(ryxwbMpy3), R(ryxvbAdd1), R(ryxvbSub1), R(ryxvbMpy1),
      R(ryxvbAdd2), R(ryxvbSub2), R(ryxvbMpy2), R(ryxvbAdd3), R(ryxvbSub3), R(ryxvbMpy3),
      VEC(ryxvbConj1), R(ryxvbConj2), R(ryxvbConjFlip2), VEC(ryxvbConjExtend1), R(ryxvbConjExtend2),
  });
  stem = "ryxdiv";
  r.insert(r.end(), {
      R(ryxsbDiv1), R(ryxsbDiv2), R(ryxsbDiv3), R(ryxdbDiv1), R(ryxdbDiv2), R(ryxdbDiv3),
      R(ryxcbDiv1), R(ryxcbDiv2), R(ryxcbDiv3), R(ryxzbDiv1), R(ryxzbDiv2), R(ryxzbDiv3),
      R(ryxwbDiv1), R(ryxwbDiv2), R(ryxwbDiv3), R(ryxvbDiv1), R(ryxvbDiv2), R(ryxvbDiv3),
  });
  stem = "ryxlogic";
  r.insert(r.end(), {
      R(ryxwbAnd1), R(ryxwbOr1), R(ryxwbXor1), R(ryxwbAnd2), R(ryxwbOr2), R(ryxwbXor2),
      R(ryxwbAnd3), R(ryxwbOr3), R(ryxwbXor3), R(ryxwbNot), R(ryxwbShiftL), R(ryxwbShiftR),
  });
  return r;
}
#undef R
#undef VEC

constexpr int kBytes = 256;
constexpr int kFactor = 77;

struct Harness {
  ReportCapture capture;
  alignas(32) unsigned char buffers[3][kBytes];
  int factor = kFactor;

  void reset() {
    for (auto& b : buffers) std::memset(b, 0x3C, kBytes);
    factor = kFactor;
    capture.clear();
  }
  // The first k pointers valid, the rest null.
  int call(const Routine& r, size_t valid, int n, int mode, bool withFactor) {
    void* p[3] = {nullptr, nullptr, nullptr};
    for (size_t j = 0; j < valid && j < 3; ++j) p[j] = buffers[j];
    return r.call(p, n, mode, withFactor ? &factor : nullptr);
  }
  void expectOne(const Routine& r, const std::string& context) {
    ASSERT_EQ(capture.reports().size(), 1u) << r.name << " expecting " << context;
    const auto& rep = capture.reports()[0];
    EXPECT_EQ(rep.status, RYX_StsBadArg) << r.name;
    EXPECT_EQ(rep.funcName, r.name);
    EXPECT_EQ(rep.context, context) << r.name;
    EXPECT_EQ(rep.file, r.stem) << r.name;
    EXPECT_GT(rep.line, 0);
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg) << r.name << ": the stored status is the bad-argument code";
    for (auto& b : buffers)
      for (unsigned char c : b) ASSERT_EQ(c, 0x3C) << r.name << " " << context << ": an array was touched";
    EXPECT_EQ(factor, kFactor) << r.name << ": the factor was touched";
    reset();
  }
};

TEST(VectorChecks, EveryRoutineInOrderWithExactTexts) {
  for (const Routine& r : allRoutines()) {
    Harness h;
    h.reset();
    const size_t count = r.contexts.size();
    if (r.kind == kDiv) {
      // Each pointer in order, with a bad length too: the pointer wins.
      for (size_t k = 0; k < count; ++k) {
        for (int n : {4, 0}) {
          EXPECT_EQ(h.call(r, k, n, 0, false), RYX_StsNullPtr) << r.name;
          h.expectOne(r, r.contexts[k]);
        }
      }
      for (int n : {0, -1, INT_MIN}) {
        EXPECT_EQ(h.call(r, 3, n, 0, false), RYX_DivBadLen) << r.name;
        h.expectOne(r, "n<=0");
      }
      continue;
    }
    // A bad length wins over null pointers, a null factor and valid ones.
    for (int n : {0, -1, INT_MIN}) {
      h.call(r, 0, n, 4, false);
      h.expectOne(r, "n<=0");
      h.call(r, 3, n, 0, true);
      h.expectOne(r, "n<=0");
    }
    // Then each pointer in order: earlier ones valid, this one and later null.
    for (size_t k = 0; k < count; ++k) {
      h.call(r, k, 3, 4, false);
      h.expectOne(r, r.contexts[k]);
    }
    if (r.kind == kScaled) {
      h.call(r, 3, 3, 4, false);
      h.expectOne(r, "scalefactor==0");
      h.call(r, 3, 3, 5, false);  // only the auto mode needs the factor
      EXPECT_TRUE(h.capture.reports().empty()) << r.name;
    }
    // A failure stays stored through a later successful call.
    h.reset();
    h.call(r, 0, 4, 4, true);
    h.call(r, 3, 4, 4, true);
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg) << r.name;
    EXPECT_EQ(h.capture.reports().size(), 1u) << r.name;
  }
}

}  // namespace
