// High-level records: set up from the caller's taps (left unchanged), they
// hold what the low-level set-up gives (float types: the tables of iirType
// 2; double types: a normalised copy) with the caller's iirType, and filter
// bit for bit as the low-level forms do; then the lifecycle, the checks and
// the trace lines under the high-level names.
#include <functional>

#include "alloc_failure.h"
#include "iir_support.h"
#include "test_support.h"

namespace iirtest {
namespace {

using ryxtest::FailAllocation;
using ryxtest::ReportCapture;

template <class C>
class IirHigh : public ::testing::Test {};
TYPED_TEST_SUITE(IirHigh, AllCombos, ComboNames);

// Elements of the taps array that a record of this shape holds.
template <class C>
int heldTaps(bool cascade, int count) {
  if (!C::isFloat) return cascade ? 1 + 4 * count : 2 * count + 2;
  if (cascade) return 16 * count + 4;
  return (2 * count + 5) / 4 * 4 + 8 * count + 8 * ((count + 3) / 4);
}

TYPED_TEST(IirHigh, SameBitsAsLowLevel) {
  using C = TypeParam;
  using S = typename C::S;
  using H = typename C::H;
  using O = typename C::O;
  std::mt19937 g(500);
  for (bool cascade : {false, true}) {
    for (int count = cascade ? 1 : 0; count <= (cascade ? 6 : 12); ++count) {
      for (int iirType = 0; iirType <= 1; ++iirType) {
        SCOPED_TRACE(::testing::Message() << (cascade ? "sections " : "order ") << count << " iirType " << iirType);
        const std::vector<H> raw = cascade ? randomBqTaps<H>(g, count) : randomArbTaps<H>(g, count);
        const std::vector<H> callers = raw;
        RyxIirState st{};
        (cascade ? C::iirInitBq : C::iirInit)(iirType, callers.data(), count, &st);
        ASSERT_EQ(ryxGetErrStatus(), 0);
        ASSERT_EQ(st.initMark, 31725);
        EXPECT_TRUE(std::memcmp(callers.data(), raw.data(), raw.size() * sizeof(H)) == 0) << "caller's taps changed";

        // The low-level pair the record should equal.
        std::vector<H> arr = raw;
        H* inner = arr.data();
        RyxIirTapState ts{};
        const int lowType = C::isFloat ? 2 : iirType;
        (cascade ? Side<H>::initBq : Side<H>::init)(lowType, lowType == 2 ? reinterpret_cast<H*>(&inner) : arr.data(),
                                                    count, &ts);
        EXPECT_EQ(st.order, ts.order);
        EXPECT_EQ(st.tapForm, ts.tapForm);
        EXPECT_EQ(st.iirType, iirType);
        EXPECT_NE(st.taps, ts.taps);
        const int held = heldTaps<C>(cascade, count);
        EXPECT_TRUE(std::memcmp(st.taps, ts.taps, held * sizeof(H)) == 0) << "taps differ";
        const int order = ts.order;
        for (int i = 0; i < order; ++i) EXPECT_TRUE(sameBits(static_cast<O*>(st.dlyl)[i], O{})) << "line " << i;

        std::vector<O> line(order + 1);
        RyxIirDlyState ds{line.data()};
        const std::vector<S> x = randomVec<S>(g, 120);
        std::vector<O> yh(x.size()), yl(x.size());
        size_t n = 0;
        while (n < x.size()) {
          const int kind = static_cast<int>(g() % 3);
          size_t len = 1;
          if (kind == 0) {
            len = std::min(x.size() - n, static_cast<size_t>(g() % 30));
            C::bIir(&st, x.data() + n, yh.data() + n, static_cast<int>(len));
            C::block(&ts, &ds, x.data() + n, yl.data() + n, static_cast<int>(len));
          } else {
            bool done = false;
            if constexpr (C::hasOut) {
              if (kind == 2) {
                C::iirOut(&st, x[n], &yh[n]);
                done = true;
              }
            }
            if (!done) yh[n] = C::iir(&st, x[n]);
            yl[n] = C::step(&ts, &ds, x[n]);
          }
          n += len;
        }
        ASSERT_EQ(ryxGetErrStatus(), 0);
        for (size_t k = 0; k < x.size(); ++k) ASSERT_TRUE(sameBits(yh[k], yl[k])) << "output " << k;
        for (int i = 0; i < order; ++i) ASSERT_TRUE(sameBits(static_cast<O*>(st.dlyl)[i], line[i])) << "line " << i;
        ryxIirFree(&st);
        EXPECT_EQ(st.initMark, 0);
        if (lowType == 2) ryxFree(ts.taps);
      }
    }
  }
}

// Order 0 multiplies by b0/a0.
TYPED_TEST(IirHigh, OrderZero) {
  using C = TypeParam;
  using S = typename C::S;
  using H = typename C::H;
  using O = typename C::O;
  std::mt19937 g(600);
  const std::vector<H> taps = randomArbTaps<H>(g, 0);
  RyxIirState st{};
  C::iirInit(1, taps.data(), 0, &st);
  ASSERT_EQ(st.initMark, 31725);
  const S x = randomValue<S>(g);
  const RC want = toRC(taps[0]) / toRC(taps[1]) * toRC(x);
  EXPECT_LE(mag(toRC(C::iir(&st, x)) - want), 4 * epsOf<O>() * mag(want));
  ryxIirFree(&st);
}

constexpr const char* kFH = "mvqiirh";
constexpr const char* kDH = "ryxiirh";
constexpr const char* kNotLive = "IIR filter wasn't initialized";

TEST(IirHighChecks, InOrder) {
  const float ft[6] = {1, 0.5f, 0.25f, 2, -0.5f, 0.25f};
  const double dt[6] = {1, 0.5, 0.25, 2, -0.5, 0.25};
  RyxIirState live{}, dead{}, deadD{};
  ryxsIirInitBq(0, ft, 1, &live);
  ASSERT_EQ(live.initMark, 31725);
  float src[4] = {1, 2, 3, 4}, dst[4] = {};
  SCplx val{5, 6};
  DCplx zsrc[2] = {};
  struct Case {
    const char* label;
    std::function<void()> call;
    std::vector<Expect> reports;
  };
  const std::vector<Case> cases = {
      {"init state", [&] { ryxsIirInit(0, ft, 1, nullptr); }, {{"ryxsIirInit", "statePtr==0", kFH}}},
      {"init taps, first only", [&] { ryxdIirInit(5, nullptr, -1, &deadD); }, {{"ryxdIirInit", "tapVals==0", kDH}}},
      {"init order", [&] { ryxcsIirInit(0, ft, -1, &dead); }, {{"ryxcsIirInit", "order < 0", kFH}}},
      {"init type 2", [&] { ryxzdIirInit(2, dt, 1, &deadD); }, {{"ryxzdIirInit", "iirType is out of range", kDH}}},
      {"init live",
       [&] { ryxsIirInit(1, ft, 1, &live); },
       {{"ryxsIirInit", "IIR filter state structure is already initialized! Use ryxIirFree to free it", kFH}}},
      {"bq count", [&] { ryxdIirInitBq(0, dt, 0, &deadD); }, {{"ryxdIirInitBq", "numQuads <= 0", kDH}}},
      {"bq live",
       [&] { ryxcsIirInitBq(0, ft, 1, &live); },
       {{"ryxcsIirInitBq", "IIR filter state structure is already initialized! Use ryxIirFree to free it", kFH}}},
      {"one state", [&] { EXPECT_EQ(ryxsIir(nullptr, 1), 0.0f); }, {{"ryxsIir", "statePtr==0", kFH}}},
      {"one dead",
       [&] {
         ryxzdIir(&dead, {1, 1});
       },
       {{"ryxzdIir", kNotLive, kDH}}},
      {"block dead", [&] { ryxsbIir(&dead, src, dst, 4); }, {{"ryxsbIir", kNotLive, kFH}}},
      {"block, low-level fault then trace",
       [&] { ryxsbIir(&live, nullptr, dst, -1); },
       {{"ryxsbIirl", "inSamps==0", "mvqiirl"},
        {"ryxsbIirl", "numIters < 0", "mvqiirl"},
        {"ryxsbIir", nullptr, kFH, RYX_StsBacktrace}}},
      {"block dead, double", [&] { ryxzbIir(&deadD, zsrc, nullptr, 1); }, {{"ryxzbIir", kNotLive, kDH}}},
      {"out val",
       [&] {
         ryxcsIirOut(&live, {1, 1}, nullptr);
       },
       {{"ryxcsIirOut", "val==0", kFH}}},
      {"out dead", [&] { ryxscIirOut(&dead, 1, &val); }, {{"ryxscIir", kNotLive, kFH}}},
      {"free state", [&] { ryxIirFree(nullptr); }, {{"ryxIirFree", "statePtr==0", kDH}}},
      {"free dead", [&] { ryxIirFree(&dead); }, {{"ryxIirFree", kNotLive, kDH}}},
  };
  for (const Case& c : cases) {
    ReportCapture rec;
    const RyxIirState before = live;
    c.call();
    expectReports(rec, c.reports, c.label);
    EXPECT_TRUE(std::memcmp(&before, &live, sizeof live) == 0) << c.label;
    EXPECT_EQ(dead.initMark, 0) << c.label;
    EXPECT_EQ(val.re, 5) << c.label;
  }
  // The refused second Init left the record working.
  ReportCapture rec;
  EXPECT_NE(ryxsIir(&live, 1), 0.0f);
  ryxIirFree(&live);
  ryxIirFree(&live);
  expectReports(rec, {{"ryxIirFree", kNotLive, kDH}}, "second free");
}

// A zero leading tap fails below: the low-level report, the trace line,
// and a dead record.
TEST(IirHighChecks, ZeroLeadLeavesRecordDead) {
  const float ft[4] = {1, 2, 0, 0};
  const DCplx zt[6] = {{1, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}};
  RyxIirState st{};
  {
    ReportCapture rec;
    ryxscIirInit(0, reinterpret_cast<const SCplx*>(ft), 0, &st);
    expectReports(
        rec, {{"ryxcIirlInit", "taps[?] equals zero", "mvqiirl"}, {"ryxscIirInit", nullptr, kFH, RYX_StsBacktrace}},
        "sc");
    EXPECT_EQ(st.initMark, 0);
  }
  {
    ReportCapture rec;
    ryxdzIirInitBq(1, zt, 1, &st);
    expectReports(
        rec, {{"ryxzIirlInitBq", "taps[?] equals zero", "ryxiirl"}, {"ryxdzIirInitBq", nullptr, kDH, RYX_StsBacktrace}},
        "dz");
    EXPECT_EQ(st.initMark, 0);
  }
}

// Each allocation of a set-up fails in turn: the report names the routine
// that allocates, and the record stays dead.
TEST(IirHighChecks, AllocationFailure) {
  const float ft[6] = {1, 0.5f, 0.25f, 2, -0.5f, 0.25f};
  const double dt[6] = {1, 0.5, 0.25, 2, -0.5, 0.25};
  const char* kMem = "insufficiency of memory for IIR filter state";
  for (int nth = 1; nth <= 2; ++nth) {
    RyxIirState st{};
    {
      ReportCapture rec;
      FailAllocation fail(nth);
      ryxsIirInitBq(0, ft, 1, &st);
      if (nth == 1) {
        expectReports(rec, {{"ryxsIirInitBq", kMem, kFH, RYX_StsNoMem}}, "float, line");
      } else {
        expectReports(
            rec, {{"ryxsIirlInitBq", kMem, "mvqiirl", RYX_StsNoMem}, {"ryxsIirInitBq", nullptr, kFH, RYX_StsBacktrace}},
            "float, taps");
      }
      EXPECT_EQ(st.initMark, 0);
    }
    {
      ReportCapture rec;
      FailAllocation fail(nth);
      ryxdIirInit(1, dt, 2, &st);
      expectReports(rec, {{"ryxdIirInit", kMem, kDH, RYX_StsNoMem}}, "double");
      EXPECT_EQ(st.initMark, 0);
    }
  }
}

}  // namespace
}  // namespace iirtest
