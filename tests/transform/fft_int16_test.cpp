// 16-bit complex FFTs: each integer core bit-exact against the integer
// model of fft_int16_model.h over orders 0-10, every ordering and scale
// mode; the float core against int-to-float, the float FFT and the shared
// narrowing; all cores against a long-double DFT; the core choice; the Nip
// and split forms against the base form; the argument checks; allocation
// failure.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "alloc_failure.h"
#include "check_cases.h"
#include "fft_int16_model.h"
#include "test_support.h"

namespace {

using m16::V;
using ryxtest::Random;

constexpr int F = RYX_Forward, I = RYX_Inverse;
constexpr int kInt = RYX_IntCore, kFloat = RYX_FloatCore, kFast = RYX_IntCore | RYX_FastCore;
const int kFlagSets[] = {F, I, I | RYX_KeepScale, F | RYX_InReversed, I | RYX_OutReversed};

struct Mode {
  int mode;
  bool hasFactor;
  int factor;
};
const Mode kModes[] = {{0, false, 0}, {1, false, 0}, {2, true, 1},  {2, true, -1}, {3, true, 2},
                       {3, false, 0}, {4, true, 99}, {5, false, 0}, {5, true, 7},  {1, true, 3}};

std::vector<short> randomSamples(Random& rnd, std::size_t count, int amp) {
  std::vector<short> x(count);
  for (short& v : x) v = static_cast<short>(rnd.i32(-amp, amp));
  return x;
}

// The model of ryxvFft on the integer side for one core.
std::vector<short> modelComplex(std::vector<short> in, int order, int flags, bool fast, int mode, int* factor) {
  const std::int64_t n = std::int64_t{1} << order;
  if (order == 0) return m16::outputStep(V(in.begin(), in.end()), 0, mode, factor);
  if (flags & RYX_InReversed) in = m16::reversed(in, order);
  const int sign = (flags & F) ? 1 : -1;
  std::vector<short> out;
  if (fast) {
    V x(in.begin(), in.end());
    m16::fastCore(x, n, sign);
    out.assign(x.begin(), x.end());
    if (!(flags & RYX_OutReversed)) out = m16::reversed(out, order);
    m16::fastShift(out, order, flags, mode, factor);
    return out;
  }
  const int g = m16::guard(order);
  V x(in.size());
  for (std::size_t i = 0; i < in.size(); ++i) x[i] = m16::w32(std::int64_t{in[i]} << g);
  m16::int32Core(x, n, sign, order);
  const bool scaled = (flags & I) && !(flags & RYX_KeepScale);
  out = m16::outputStep(x, g + (scaled ? order : 0), mode, factor);
  if (!(flags & RYX_OutReversed)) out = m16::reversed(out, order);
  return out;
}

std::vector<short> runComplex(std::vector<short> x, int order, int flags, int mode, int* factor) {
  ryxvFft(reinterpret_cast<WCplx*>(x.data()), order, flags, mode, factor);
  return x;
}

// Every order 0-10, flag set, scale mode and two amplitudes (one with
// headroom, one full scale that wraps or saturates): library == model.
TEST(Int16Fft, IntegerCoresMatchTheModelBitForBit) {
  ryxtest::ReportCapture quiet;
  Random rnd(161);
  for (const bool fast : {false, true})
    for (int order = 0; order <= 10; ++order)
      for (const int amp : {32767 >> std::min(order + 1, 14), 32767})
        for (const int flags : kFlagSets)
          for (const Mode& m : kModes) {
            const std::vector<short> in = randomSamples(rnd, std::size_t{2} << order, amp);
            int fLib = m.factor, fModel = m.factor;
            const int core = RYX_IntCore | (fast ? RYX_FastCore : 0);
            const auto lib = runComplex(in, order, flags | core, m.mode, m.hasFactor ? &fLib : nullptr);
            const auto model = modelComplex(in, order, flags, fast && order > 0, m.mode, m.hasFactor ? &fModel : nullptr);
            ASSERT_EQ(lib, model) << "fast " << fast << " order " << order << " flags " << flags << " mode "
                                  << m.mode << " amp " << amp;
            ASSERT_EQ(fLib, fModel);
          }
  EXPECT_TRUE(quiet.reports().empty());
}

// The float core: int to float, the float FFT with the same flags, then
// round-and-clamp (modes 0, 1) or the shared float narrowing.
TEST(Int16Fft, FloatCoreIsIntToFloatFftAndNarrowing) {
  ryxtest::ReportCapture quiet;
  Random rnd(162);
  for (int order = 0; order <= 12; ++order)
    for (const int flags : kFlagSets)
      for (const Mode& m : kModes) {
        const std::size_t count = std::size_t{2} << order;
        const std::vector<short> in = randomSamples(rnd, count, 32767);
        int fLib = m.factor, fRef = m.factor;
        const auto lib = runComplex(in, order, flags | RYX_FloatCore, m.mode, m.hasFactor ? &fLib : nullptr);
        std::vector<short> ref(count);
        if (order == 0) {
          ref = m16::outputStep(V(in.begin(), in.end()), 0, m.mode, m.hasFactor ? &fRef : nullptr);
        } else {
          std::vector<float> f(count);
          ryxsbIntToFloat(in.data(), f.data(), static_cast<int>(count), 16, 0);
          ryxcFft(reinterpret_cast<SCplx*>(f.data()), order, flags);
          if (m.mode <= 1)
            ryxsbFloatToInt(f.data(), ref.data(), static_cast<int>(count), 16, RYX_RoundNearest | RYX_ClipRange);
          else
            ownScaleArrayF32(f.data(), ref.data(), static_cast<int>(count), m.mode, m.hasFactor ? &fRef : nullptr);
        }
        ASSERT_EQ(lib, ref) << "order " << order << " flags " << flags << " mode " << m.mode;
        ASSERT_EQ(fLib, fRef);
      }
  EXPECT_TRUE(quiet.reports().empty());
}

// Which core runs: the flags and the order decide, as the model shows.
TEST(Int16Fft, CoreChoiceFollowsFlagsAndOrder) {
  Random rnd(163);
  auto same = [&](int order, int flagsA, int flagsB) {
    const auto in = randomSamples(rnd, std::size_t{2} << order, 3000 >> (order / 2));
    return runComplex(in, order, F | flagsA, 1, nullptr) == runComplex(in, order, F | flagsB, 1, nullptr);
  };
  EXPECT_TRUE(same(7, 0, RYX_IntCore));
  EXPECT_TRUE(same(8, 0, RYX_FloatCore));
  EXPECT_FALSE(same(8, 0, RYX_IntCore));
  EXPECT_TRUE(same(11, RYX_IntCore | RYX_FastCore, RYX_IntCore));
  EXPECT_TRUE(same(9, RYX_FloatCore | RYX_FastCore, RYX_FloatCore));
  EXPECT_TRUE(same(5, RYX_FastCore, RYX_IntCore | RYX_FastCore));
  // Order 10 with the fast core: the fast model, not the 32-bit one.
  const auto in = randomSamples(rnd, 2048, 20);
  EXPECT_EQ(runComplex(in, 10, F | RYX_IntCore | RYX_FastCore, 1, nullptr),
            modelComplex(in, 10, F, true, 1, nullptr));
}

// Accuracy: result times 2^factor against a long-double DFT (inverse: /N).
// Bounds in LSB of the output: 32-bit core 2 + |X|max * order / 2^13
// (Q14 twiddles, one rounding at the end); fast core 2 * order + N/4 + the
// same (each stage truncates to 16 bits and the later stages carry that
// error with their gain, up to N/8 measured); float core 1.
TEST(Int16Fft, AllCoresAreCloseToTheExactDft) {
  Random rnd(164);
  for (int order = 1; order <= 10; ++order)
    for (const int flags : {F, I})
      for (const int core : {kInt, kFast, kFloat}) {
        const bool fast = core & RYX_FastCore;
        const std::size_t n = std::size_t{1} << order;
        const int amp = fast ? 30000 >> order : 2000;
        const auto in = randomSamples(rnd, 2 * n, amp);
        int factor = 0;
        const int mode = fast ? 1 : 4;
        const auto out = runComplex(in, order, flags | core, mode, &factor);
        std::vector<ryxtest::LCplx> x(n);
        for (std::size_t i = 0; i < n; ++i) x[i] = {static_cast<long double>(in[2 * i]), static_cast<long double>(in[2 * i + 1])};
        auto ref = ryxtest::naiveDft(x, flags == F ? -1 : 1);
        long double peak = 0, err = 0;
        for (std::size_t k = 0; k < n; ++k) {
          if (flags == I) ref[k] /= static_cast<long double>(n);
          peak = std::max(peak, std::abs(ref[k]));
          const long double scale = ldexpl(1.0L, factor);
          err = std::max({err, fabsl(out[2 * k] * scale - ref[k].real()), fabsl(out[2 * k + 1] * scale - ref[k].imag())});
        }
        const long double bound = (core == kFloat ? 1.0L : fast ? 2.0L * order + n / 4.0L : 2.0L) + peak * order / 8192 +
                                  ldexpl(1.0L, factor);
        EXPECT_LE(err, bound) << "order " << order << " flags " << flags << " core " << core;
      }
}

// Edge cases of the cores and modes.
TEST(Int16Fft, SaturationWrapAndReportedFactors) {
  // Full scale: the fast core saturates, the 32-bit core at order 9 is exact.
  std::vector<short> full(1024, 32767);
  auto fast = runComplex(full, 9, F | RYX_IntCore | RYX_FastCore, 0, nullptr);
  EXPECT_EQ(fast[0], 32767);
  int factor = -5;
  auto exact = runComplex(full, 9, F | RYX_IntCore, 4, &factor);
  EXPECT_EQ(factor, 9);
  EXPECT_EQ(exact[0], 32767);
  EXPECT_EQ(exact[1], 32767);
  // Auto scale in the fast core always reports 0.
  factor = 7;
  runComplex(full, 3, F | RYX_IntCore | RYX_FastCore, 4, &factor);
  EXPECT_EQ(factor, 0);
  // Mode 0: the float core clamps, the integer core wraps.
  std::vector<short> dc(16, 30000);
  EXPECT_EQ(runComplex(dc, 3, F | RYX_FloatCore, 0, nullptr)[0], 32767);
  EXPECT_EQ(runComplex(dc, 3, F | RYX_IntCore, 0, nullptr)[0], static_cast<short>(8 * 30000));
}

// Nip and split forms give the base form's bits, on both sides.
TEST(Int16Fft, NipAndSplitFormsEqualTheBaseForm) {
  Random rnd(165);
  for (int order = 0; order <= 9; order += 3)
    for (const int core : {0, kInt, kFloat, kFast})
      for (const int mode : {1, 4}) {
        const std::size_t n = std::size_t{1} << order;
        const auto in = randomSamples(rnd, 2 * n, 9000);
        int fBase = 0, fNip = 0, fSplit = 0, fSplitNip = 0;
        const auto base = runComplex(in, order, I | core, mode, &fBase);
        std::vector<short> nip(2 * n), re(n), im(n), reOut(n), imOut(n);
        ryxvFftNip(reinterpret_cast<const WCplx*>(in.data()), reinterpret_cast<WCplx*>(nip.data()), order, I | core,
                   mode, &fNip);
        EXPECT_EQ(nip, base);
        for (std::size_t i = 0; i < n; ++i) re[i] = in[2 * i], im[i] = in[2 * i + 1];
        const std::vector<short> reIn = re, imIn = im;
        ryxvrFftNip(reIn.data(), imIn.data(), reOut.data(), imOut.data(), order, I | core, mode, &fSplitNip);
        ryxvrFft(re.data(), im.data(), order, I | core, mode, &fSplit);
        EXPECT_EQ(re, reOut);
        EXPECT_EQ(im, imOut);
        std::vector<short> split(2 * n);
        for (std::size_t i = 0; i < n; ++i) split[2 * i] = re[i], split[2 * i + 1] = im[i];
        if (core == RYX_FloatCore || (core == 0 && order >= 8)) {
          // Float side: one factor for both arrays, as the complex form.
          EXPECT_EQ(fSplit, fBase) << order;
        } else {
          EXPECT_EQ(split, base) << "order " << order << " core " << core;
          EXPECT_EQ(fSplit, fBase);
        }
        EXPECT_EQ(fNip, fBase);
      }
}

TEST(Int16Fft, ArgumentChecks) {
  WCplx v[8] = {};
  short re[8] = {}, im[8] = {};
  int f = 0;
  const WCplx before[8] = {};
  using ryxtest::CheckCase;
  const std::vector<CheckCase> cases = {
      RYX_CHECK_CASE("ryxfftw", "order<0", ryxvFft(v, -1, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "order>31", ryxvFft(v, 32, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "(flags & 8192) && (flags & 16384)", ryxvFft(v, 3, RYX_Init | 8192 | 16384, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "samps==0", ryxvFft(nullptr, 3, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "(flags & 1) && (flags & 2)", ryxvFft(v, 3, F | I, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "(flags & 1)==0 && (flags & 2)==0", ryxvFft(v, 3, 0, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "(flags & 64) && (flags & 128)", ryxvFft(v, 3, F | 64 | 128, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "(flags & 64) && (flags & 32)", ryxvFft(v, 3, F | 64 | 32, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "(flags & 32) && (flags & 128)", ryxvFft(v, 3, F | 32 | 128, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "(scaleMode & 0x0002) && (scaleMode & 0x0004)", ryxvFft(v, 3, F, 6, &f)),
      RYX_CHECK_CASE("ryxfftw", "scaleFactor==0", ryxvFft(v, 3, F, 4, nullptr)),
      RYX_CHECK_CASE("ryxfftw", "order<0", ryxvFftNip(v, v, -1, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "inSamps==0", ryxvFftNip(nullptr, v, 3, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "outSamps==0", ryxvFftNip(v, nullptr, 3, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "reSamps==0", ryxvrFft(nullptr, im, 3, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "imSamps==0", ryxvrFft(re, nullptr, 3, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "(flags & 8192) && (flags & 16384)", ryxvrFft(re, im, 3, 8192 | 16384 | F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "reInSamps==0", ryxvrFftNip(nullptr, im, re, im, 3, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "imInSamps==0", ryxvrFftNip(re, nullptr, re, im, 3, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "reOutSamps==0", ryxvrFftNip(re, im, nullptr, im, 3, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "imOutSamps==0", ryxvrFftNip(re, im, re, nullptr, 3, F, 0, &f)),
      RYX_CHECK_CASE("ryxfftw", "scaleFactor==0", ryxvrFft(re, im, 3, I, 4, nullptr)),
  };
  ryxtest::runCheckCases(cases, [&] {
    return std::memcmp(v, before, sizeof v) == 0 && std::all_of(re, re + 8, [](short s) { return s == 0; }) && f == 0;
  });
  // Under RYX_Init the sample, direction and scale checks do not run; mode
  // 5 with a null factor is never refused.
  ryxtest::ReportCapture capture;
  ryxvFft(nullptr, 3, RYX_Init | F | I | 64 | 128, 6, nullptr);
  ryxvFft(v, 3, F | RYX_IntCore, 5, nullptr);
  EXPECT_TRUE(capture.reports().empty());
}

// A refused allocation costs one purge and a retry; a second refusal is
// "No working memory", with the samples untouched.
TEST(Int16Fft, AllocationFailureRetriesOnceThenReports) {
  for (const int core : {kInt, kFloat}) {
    ryxvFreeTwdTbls();
    ryxcFreeTwdTbls();
    std::vector<short> x(64, 100), ref = runComplex(x, 5, F | core, 1, nullptr);
    ryxvFreeTwdTbls();
    ryxcFreeTwdTbls();
    {
      ryxtest::ReportCapture capture;
      ryxtest::FailAllocation fail(1);
      EXPECT_EQ(runComplex(x, 5, F | core, 1, nullptr), ref);
      EXPECT_TRUE(capture.reports().empty());
      EXPECT_EQ(fail.refused(), 1);
    }
    ryxvFreeTwdTbls();
    ryxcFreeTwdTbls();
    ryxtest::ReportCapture capture;
    ryxtest::FailAllocation fail(1, true);
    EXPECT_EQ(runComplex(x, 5, F | core, 1, nullptr), x);
    ASSERT_EQ(capture.reports().size(), 1u);
    EXPECT_EQ(capture.reports()[0].status, RYX_StsNoMem);
    EXPECT_EQ(capture.reports()[0].context, "No working memory");
    EXPECT_EQ(capture.reports()[0].funcName, "ryxvFft");
  }
}

}  // namespace
