// 16-bit FIR filters, both forms, against an integer model written from the
// rules: tap exponent in long double, quantisation (low-level: float scale,
// ties to even; high-level: double scale, halves away from zero), exact
// sums of the zero-stuffed stream taken modulo 2^32, narrowing per mode.
// Streams are cut into random blocks; single samples must match blocks.
#include "alloc_failure.h"
#include "fir_support.h"
#include "int16_model.h"
#include "ryxcore/filter_int16.h"

namespace firtest {
namespace {

using namespace int16model;

bool fits(i64 v) { return v >= -32768 && v <= 32767; }
int topShift(i64 v) { return static_cast<int>(std::floor(std::log2(static_cast<double>(v < 0 ? -v : v)))) - 14; }
// Positive f: right with sign (at most 31); negative: left (at most 15).
i64 shift(i64 v, int f) { return f >= 0 ? v >> std::min(f, 31) : v * (i64{1} << std::min(-f, 15)); }
std::int32_t shift32(std::int32_t v, int f) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(shift(v, f))); }

// Quantised taps: low-level scales in float and rounds ties to even,
// high-level scales in double and rounds halves away from zero.
std::vector<i64> quant(const std::vector<float>& t, int e, bool high) {
  std::vector<i64> q;
  for (float v : t) {
    const double x = std::ldexp(static_cast<double>(v), e);
    q.push_back(high ? static_cast<i64>(x > 0 ? x + 0.5 : x - 0.5) : std::lrintf(v * std::ldexp(1.0f, e)));
  }
  return q;
}

// Output sums of a filter with up/down factors over the whole stream x (the
// history starts at zero): input i at tick i*up + upPhase, outputs at ticks
// downPhase + j*down, y = sum q[k] * stuffed(t - k), modulo 2^32.
std::vector<std::int32_t> sums(const std::vector<i64>& q, const std::vector<short>& x, int up = 1, int upPh = 0,
                               int down = 1, int downPh = 0) {
  std::vector<std::int32_t> y;
  const i64 ticks = static_cast<i64>(x.size()) * up;
  for (i64 t = downPh; t < ticks; t += down) {
    std::uint64_t s = 0;
    for (i64 k = 0; k < static_cast<i64>(q.size()) && k <= t; ++k) {
      const i64 u = t - k - upPh;
      if (u >= 0 && u % up == 0) s += static_cast<std::uint64_t>(q[k] * x[u / up]);
    }
    y.push_back(static_cast<std::int32_t>(static_cast<std::uint32_t>(s)));
  }
  return y;
}

// One sum narrowed as the single-sample forms do; *f receives the
// automatic factor.
short narrow(std::int32_t v, int mode, int sf, int e, int* f) {
  if ((mode & 7) >= 4) {
    const std::int32_t x = shift32(v, e);
    *f = fits(x) ? 0 : topShift(x);
    return wrap(x >> *f);
  }
  const int total = e + ((mode & 2) ? sf : 0);
  if (total == 0) return (mode & 1) ? sat(v) : wrap(v);
  return (mode & 1) ? sat(shift(v, total)) : wrap(shift(v, total));
}

// A block narrowed. Low-level automatic mode: one factor from the largest
// need. High-level: each run [cuts[i], cuts[i+1]) carries a running shift
// from e, then all runs are brought to the largest.
std::vector<short> narrowBlock(const std::vector<std::int32_t>& v, int mode, int sf, int e, bool high,
                               const std::vector<size_t>& cuts, int* factor) {
  std::vector<short> out(v.size());
  int f = 0;
  if ((mode & 7) < 4) {
    for (size_t i = 0; i < v.size(); ++i) out[i] = narrow(v[i], mode, sf, e, &f);
  } else if (!high) {
    int top = 0;
    for (std::int32_t x : v) top = std::max(top, fits(shift32(x, e)) ? 0 : topShift(shift32(x, e)));
    for (size_t i = 0; i < v.size(); ++i) out[i] = wrap(shift32(v[i], e) >> top);
    *factor = top;
  } else {
    std::vector<int> ends;
    for (size_t r = 0; r + 1 < cuts.size(); ++r) {
      int run = e;
      for (size_t i = cuts[r]; i < cuts[r + 1]; ++i) {
        i64 x = shift32(v[i], run);
        if (!fits(x)) {
          const int g = topShift(x);
          for (size_t j = cuts[r]; j < i; ++j) out[j] = static_cast<short>(out[j] >> g);
          x >>= g, run += g;
        }
        out[i] = static_cast<short>(x);
      }
      ends.push_back(run);
    }
    const int top = std::max(e, *std::max_element(ends.begin(), ends.end()));
    for (size_t r = 0; r + 1 < cuts.size(); ++r)
      for (size_t i = cuts[r]; i < cuts[r + 1]; ++i) out[i] = static_cast<short>(out[i] >> (top - ends[r]));
    *factor = top - e;
  }
  return out;
}

void clearReports() {
  reports().clear();
  ryxSetErrStatus(RYX_StsOk);
}

std::vector<float> randomTaps(std::mt19937& rng, int n, float scale) {
  std::vector<float> t(n);
  for (float& v : t) v = std::uniform_real_distribution<float>(-scale, scale)(rng);
  return t;
}

struct Shape {
  int len, up, upPh, down, downPh;
  bool multi() const { return up > 1 || down > 1; }
};

// Runs of a high-level block of n outputs (see the block rules).
std::vector<size_t> highRuns(const RyxFirState& st, int n) {
  if (st.isMultiRate == 1) {
    const size_t first = std::min<size_t>(n * st.downFactor, st.extLen) / st.downFactor * st.upFactor;
    return {0, std::min<size_t>(first, n * st.upFactor), static_cast<size_t>(n) * st.upFactor};
  }
  const size_t whole = n & ~3, m = std::min<size_t>(whole, st.extLen);
  return {0, m, whole, static_cast<size_t>(n)};
}

// Every shape and scale mode: the stream as random blocks through both
// forms and as single samples through both forms, against the model.
TEST(FirInt16, StreamsMatchModelInEveryMode) {
  std::mt19937 rng(1601);
  const Shape shapes[] = {{1, 1, 0, 1, 0}, {3, 1, 0, 1, 0}, {8, 1, 0, 1, 0}, {21, 1, 0, 1, 0}, {70, 1, 0, 1, 0},
                          {9, 2, 1, 3, 0}, {10, 3, 0, 1, 0}, {7, 1, 0, 2, 1}, {16, 4, 3, 3, 2}};
  const int modes[][2] = {{0, 0}, {1, 0}, {2, 2}, {3, 3}, {3, -2}, {2, -1}, {4, 0}, {5, 0}, {7, 0}, {2, 0}};
  for (const Shape& sh : shapes) {
    for (float tapScale : {0.3f, 4000.0f}) {
      std::vector<float> taps = randomTaps(rng, sh.len, tapScale);
      const int e = tapExp(taps);
      const std::vector<short> x = randomSamples(rng, 300 * sh.down, 30000);
      for (auto [mode, sf] : modes) {
        SCOPED_TRACE(testing::Message() << "len " << sh.len << " up " << sh.up << " down " << sh.down << " mode "
                                        << mode << " sf " << sf << " tapShift " << e);
        std::vector<float> own = taps;
        RyxFirTapState ts{};
        RyxFirDlyState ds{};
        std::vector<short> line(sh.len + 4, 0);
        ryxwFirlInitMr(own.data(), sh.len, sh.up, sh.upPh, sh.down, sh.downPh, &ts);
        ryxwFirlInitDlyl(&ts, line.data(), &ds);
        ryxwFirlSetDlyl(&ts, nullptr, &ds);
        RyxFirState st{};
        ryxwFirInitMr(taps.data(), sh.len, nullptr, sh.up, sh.upPh, sh.down, sh.downPh, &st);
        ASSERT_EQ(ts.tapShift, e);
        ASSERT_EQ(st.tapShift, e);
        const auto lowSums = sums(quant(taps, e, false), x, sh.up, sh.upPh, sh.down, sh.downPh);
        const auto highSums = sums(quant(taps, e, true), x, sh.up, sh.upPh, sh.down, sh.downPh);
        inBlocks(rng, x.size() / sh.down, 90, [&](size_t g, int n) {
          const size_t in = g * sh.down, outPos = g * sh.up, outs = static_cast<size_t>(n) * sh.up;
          std::vector<short> lo(outs), hi(outs);
          int lf = sf, hf = sf, f = 0;
          ryxwbFirl(&ts, &ds, x.data() + in, lo.data(), n, mode, &lf);
          ryxwbFir(&st, x.data() + in, hi.data(), n, mode, &hf);
          std::vector<std::int32_t> l(lowSums.begin() + outPos, lowSums.begin() + outPos + outs);
          std::vector<std::int32_t> h(highSums.begin() + outPos, highSums.begin() + outPos + outs);
          ASSERT_EQ(lo, narrowBlock(l, mode, sf, e, false, {}, &f)) << "ryxwbFirl at " << in;
          if ((mode & 7) >= 4) { EXPECT_EQ(lf, f); }
          ASSERT_EQ(hi, narrowBlock(h, mode, sf, e, true, highRuns(st, n), &f)) << "ryxwbFir at " << in;
          if ((mode & 7) >= 4) { EXPECT_EQ(hf, f); }
        });
        if (!sh.multi()) {
          // The same stream again, one sample at a time, after clearing.
          ryxwFirlSetDlyl(&ts, nullptr, &ds);
          ryxwFirSetDlyl(nullptr, &st);
          for (size_t i = 0; i < x.size(); ++i) {
            int lf = sf, hf = sf, f = 0;
            ASSERT_EQ(ryxwFirl(&ts, &ds, x[i], mode, &lf), narrow(lowSums[i], mode, sf, e, &f)) << i;
            if ((mode & 7) >= 4) { EXPECT_EQ(lf, f); }
            ASSERT_EQ(ryxwFir(&st, x[i], mode, &hf), narrow(highSums[i], mode, sf, e, &f)) << i;
            if ((mode & 7) >= 4) { EXPECT_EQ(hf, f); }
          }
        }
        ryxFirFree(&st);
      }
    }
  }
}

// Taps and history access, and the documented edge cases.
TEST(FirInt16, StateAccessAndEdges) {
  RecordReports rec;
  std::vector<float> unity = {0.25f, 0.5f, 0.25f}, own = unity, back(3);
  RyxFirTapState ts{}, mts{};
  RyxFirDlyState ds{}, mds{};
  RyxFirState st{};
  short line[3] = {}, got[2] = {}, out[6];
  const short hist[2] = {100, 200}, small[6] = {1, 2, 3, 4, 5, 6}, big[6] = {30000, 30000, 30000, 30000, 30000, -30000};
  ryxwFirlInit(own.data(), 3, &ts);
  ryxwFirlInitDlyl(&ts, line, &ds);
  ryxwFirlSetDlyl(&ts, hist, &ds);
  ryxwFirInit(unity.data(), 3, hist, &st);
  EXPECT_EQ(ts.tapShift, 14);  // taps summing to 1: 16384
  EXPECT_EQ(std::vector<int>({st.tapsLen, st.dlylLen, st.extLen}), std::vector<int>({8, 4, 8}));
  ryxwFirGetDlyl(&st, got);
  EXPECT_EQ(got[1], 200);
  ryxwFirlGetDlyl(&ts, &ds, got);
  EXPECT_EQ(got[0], 100);
  // A constant input comes out unchanged once the line is full.
  for (int i = 0; i < 3; ++i) ryxwFirl(&ts, &ds, 1000, 0, nullptr), ryxwFir(&st, 1000, 1, nullptr);
  EXPECT_EQ(ryxwFirl(&ts, &ds, 1000, 0, nullptr), 1000);
  EXPECT_EQ(ryxwFir(&st, 1000, 1, nullptr), 1000);
  ryxwFirGetTaps(&st, back.data());
  EXPECT_EQ(back, unity);
  // Taps taken back into the record's array: floats again, filter refuses.
  ryxwFirlGetTaps(&ts, own.data());
  EXPECT_EQ(own, unity);
  ryxwFirl(&ts, &ds, 1, 0, nullptr);
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].context, "Filter Taps is not setup");
  // Zero taps: no exponent, zero output; a sum above 32767 shifts left.
  ryxwFirSetTaps(std::vector<float>{0, 0, 0}.data(), &st);
  EXPECT_EQ(st.tapShift, 0);
  EXPECT_EQ(ryxwFir(&st, 1234, 0, nullptr), 0);
  ryxwFirSetTaps(std::vector<float>{40000.0f, 0, 0}.data(), &st);
  EXPECT_EQ(st.tapShift, -1);
  EXPECT_EQ(ryxwFir(&st, 1, 0, nullptr), -25536);  // 20000 << 1, wrapped
  EXPECT_EQ(ryxwFir(&st, 1, 1, nullptr), 32767);
  // Auto scale: small samples report 0; numIters 6 shares one factor.
  int f = -9;
  ryxwFirSetTaps(unity.data(), &st);
  ryxwbFir(&st, small, out, 6, 4, &f);
  EXPECT_EQ(f, 0);
  ryxwFirSetTaps(std::vector<float>{2.0f, 2.0f, 0}.data(), &st);
  ryxwbFir(&st, big, out, 6, 4, &f);
  EXPECT_GE(f, 1);
  // ryxwFirl refuses a multirate state; the block form runs it.
  clearReports();
  own = unity;
  ryxwFirlInitMr(own.data(), 3, 2, 0, 1, 0, &mts);
  ryxwFirlInitDlyl(&mts, line, &mds);
  ryxwFirlSetDlyl(&mts, nullptr, &mds);
  ryxwFirl(&mts, &mds, 1, 0, nullptr);
  ryxwbFirl(&mts, &mds, small, out, 1, 0, nullptr);
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].context, "MultiRate filter");
  ryxFirFree(&st);
}

// Every documented check in its order, plus allocation failures.
TEST(FirInt16, ChecksAndAllocation) {
  RecordReports rec;
  float taps[4] = {1, 1, 1, 1};
  short line[4] = {}, buf[4] = {};
  int sf = 0;
  RyxFirTapState ts{}, off{}, fresh{};
  RyxFirDlyState ds{}, unset{}, freshD{};
  ryxwFirlInit(taps, 4, &ts);
  ryxwFirlInitDlyl(&ts, line, &ds);
  ryxwFirlSetDlyl(&ts, nullptr, &ds);
  off = ts, off.isFilterMode = 0;
  unset = ds, unset.isDlyFilterMode = 0;
  RyxFirState st{}, dead{};
  ryxwFirInit(taps, 4, nullptr, &st);
  const char *nt = "Null Tap State pointer", *nd = "Null Dly State pointer", *nb = "Null buffer pointer",
             *ns = "Null state pointer", *ni = "Must have been initialized", *nsf = "Null scale factor pointer";
  const char *L = "ryxfirlw", *H = "ryxfirhw";
  struct Row {
    std::function<void()> call;
    const char *func, *context, *file;
  };
  const Row rows[] = {
      {[&] { ryxwFirlInit(nullptr, 0, &fresh); }, "ryxwFirlInit", nt, L},
      {[&] { ryxwFirlInit(taps, 0, &fresh); }, "ryxwFirlInit", "Invalid array length", L},
      {[&] { ryxwFirlInitMr(taps, 4, 2, -1, 1, 0, &fresh); }, "ryxwFirlInitMr", "Invalid phase value", L},
      {[&] { ryxwFirlInitMr(taps, 4, 1, 0, 2, 2, &fresh); }, "ryxwFirlInitMr", "Invalid factor value", L},
      {[&] { ryxwFirlInitDlyl(nullptr, nullptr, &freshD); }, "ryxwFirlInitDlyl", nd, L},
      {[&] { ryxwFirlInitDlyl(nullptr, line, &freshD); }, "ryxwFirlInitDlyl", nb, L},
      {[&] { ryxwFirlSetTaps(taps, nullptr); }, "ryxwFirlSetTaps", nt, L},
      {[&] { ryxwFirlGetTaps(nullptr, nullptr); }, "ryxwFirlGetTaps", nt, L},
      {[&] { ryxwFirlGetTaps(&ts, nullptr); }, "ryxwFirlGetTaps", nb, L},
      {[&] { ryxwFirlGetTaps(&off, taps); }, "ryxwFirlGetTaps", "Filter Taps is not setup", L},
      {[&] { ryxwFirlSetDlyl(nullptr, line, nullptr); }, "ryxwFirlSetDlyl", nd, L},
      {[&] { ryxwFirlSetDlyl(nullptr, line, &ds); }, "ryxwFirlSetDlyl", nt, L},
      {[&] { ryxwFirlGetDlyl(nullptr, nullptr, nullptr); }, "ryxwFirlGetDlyl", nd, L},
      {[&] { ryxwFirlGetDlyl(nullptr, &ds, nullptr); }, "ryxwFirlGetDlyl", nt, L},
      {[&] { ryxwFirlGetDlyl(&ts, &ds, nullptr); }, "ryxwFirlGetDlyl", nb, L},
      {[&] { ryxwFirlGetDlyl(&ts, &unset, buf); }, "ryxwFirlGetDlyl", "Filter Dlyl is not setup", L},
      {[&] { ryxwFirl(nullptr, nullptr, 1, 4, nullptr); }, "ryxwFirl", nt, L},
      {[&] { ryxwFirl(&ts, nullptr, 1, 4, nullptr); }, "ryxwFirl", nd, L},
      {[&] { ryxwFirl(&off, &unset, 1, 4, nullptr); }, "ryxwFirl", "Filter Taps is not setup", L},
      {[&] { ryxwFirl(&ts, &unset, 1, 4, nullptr); }, "ryxwFirl", "Filter Dlyl is not setup", L},
      {[&] { ryxwFirl(&ts, &ds, 1, 4, nullptr); }, "ryxwFirl", nsf, L},
      {[&] { ryxwbFirl(&off, &ds, nullptr, buf, 0, 4, nullptr); }, "ryxwbFirl", "Filter Taps is not setup", L},
      {[&] { ryxwbFirl(&ts, &ds, nullptr, buf, 0, 4, nullptr); }, "ryxwbFirl", nb, L},
      {[&] { ryxwbFirl(&ts, &ds, line, buf, 0, 4, nullptr); }, "ryxwbFirl", "Invalid array length", L},
      {[&] { ryxwbFirl(&ts, &ds, line, buf, 1, 4, nullptr); }, "ryxwbFirl", nsf, L},
      {[&] { ryxwFirInit(taps, 0, nullptr, nullptr); }, "ryxwFirInit", ns, H},
      {[&] { ryxwFirInit(taps, 0, nullptr, &dead); }, "ryxwFirInit", "Invalid value", H},
      {[&] { ryxwFirInitMr(taps, 0, nullptr, 0, 0, 1, 0, &dead); }, "ryxwFirInitMr", "Invalid value", H},
      {[&] { ryxwFirSetTaps(taps, nullptr); }, "ryxwFirSetTaps", ns, H},
      {[&] { ryxwFirSetDlyl(line, &dead); }, "ryxwFirSetDlyl", ni, H},
      {[&] { ryxwFirGetTaps(&dead, nullptr); }, "ryxwFirGetTaps", ni, H},
      {[&] { ryxwFirGetDlyl(&st, nullptr); }, "ryxwFirGetDlyl", nb, H},
      {[&] { ryxwFir(&dead, 1, 4, nullptr); }, "ryxwFir", ni, H},
      {[&] { ryxwFir(&st, 1, 4, nullptr); }, "ryxwFir", nsf, H},
      {[&] { ryxwbFir(&st, line, nullptr, 0, 4, nullptr); }, "ryxwbFir", nb, H},
      {[&] { ryxwbFir(&st, line, buf, 0, 4, nullptr); }, "ryxwbFir", "Invalid value", H},
      {[&] { ryxwbFir(&st, line, buf, 1, 4, nullptr); }, "ryxwbFir", nsf, H},
  };
  for (const Row& r : rows) {
    clearReports();
    std::memset(buf, 0x5a, sizeof buf);
    r.call();
    ASSERT_EQ(reports().size(), 1u) << r.func << " " << r.context;
    EXPECT_EQ(reports()[0].func, r.func);
    EXPECT_EQ(reports()[0].context, r.context);
    EXPECT_EQ(reports()[0].file, r.file);
    EXPECT_EQ(buf[0], 0x5a5a) << r.func << " " << r.context;
  }
  // Out of memory: the block's work array; each of Init's arrays and its
  // tap temporary, after which the record is dead.
  clearReports();
  {
    ryxtest::FailAllocation fail(1);
    ryxwbFirl(&ts, &ds, line, buf, 4, 0, &sf);
  }
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_EQ(reports()[0].status, RYX_StsNoMem);
  EXPECT_EQ(reports()[0].context, "Allocation failure");
  for (int failAt = 1; failAt <= 4; ++failAt) {
    clearReports();
    RyxFirState fs{};
    {
      ryxtest::FailAllocation fail(failAt);
      ryxwFirInitMr(taps, 4, nullptr, 2, 0, 3, 1, &fs);
    }
    ASSERT_EQ(reports().size(), 1u) << failAt;
    EXPECT_EQ(reports()[0].status, RYX_StsNoMem);
    EXPECT_EQ(reports()[0].func, "ryxwFirInitMr");
    EXPECT_EQ(fs.initMark, nullptr);
  }
  ryxFirFree(&st);
}

}  // namespace
}  // namespace firtest
