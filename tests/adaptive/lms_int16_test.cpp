// The 16-bit LMS filter bit for bit against an integer model written from
// its rules in 64-bit arithmetic with explicit 32-bit wrapping: error times
// step saturated to 16 bits when nonzero, wide taps saturated only for the
// product, a wrapping 32-bit output sum rounded by (sum + 4096) >> 13, and
// the one-tap path with the raw error and the whole tap. Each rule is shown
// to have fired at least once.
#include <cstdint>

#include "lms_support.h"

namespace lmstest {
namespace {

std::int32_t wrap32(std::int64_t v) {
  std::uint64_t u = static_cast<std::uint64_t>(v) & 0xffffffffu;
  return u >= 0x80000000u ? static_cast<std::int32_t>(static_cast<std::int64_t>(u) - 0x100000000LL)
                          : static_cast<std::int32_t>(u);
}
std::int64_t sat(std::int64_t v, std::int64_t lo, std::int64_t hi) { return v < lo ? lo : (v > hi ? hi : v); }

struct IntModel {
  std::vector<std::int32_t> taps;
  std::vector<std::int16_t> line;  // newest first, dlylLen elements
  std::int32_t step = 0;
  int errDly = 0;
  // How often each rule fired.
  int errSaturated = 0, tapSaturated = 0, tapWrapped = 0, sumWrapped = 0, outSaturated = 0, ties = 0;

  std::int16_t run(std::int16_t sample, std::int16_t err) {
    const std::int32_t e = wrap32(std::int64_t(err) * step);
    if (line.size() < 2) {
      const std::int64_t t = std::int64_t(taps[0]) + std::int64_t(wrap32(std::int64_t(e) * line[0]));
      taps[0] = wrap32(t);
      line[0] = sample;
      return finish(wrap32(std::int64_t(sample) * taps[0]));
    }
    if (e != 0) {
      const std::int64_t e16 = sat(e, -32768, 32767);
      if (e16 != e) ++errSaturated;
      for (size_t i = 0; i < taps.size(); ++i) {
        const std::int64_t t = std::int64_t(taps[i]) + e16 * line[i + static_cast<size_t>(errDly)];
        if (t != wrap32(t)) ++tapWrapped;
        taps[i] = wrap32(t);
      }
    }
    for (size_t k = line.size() - 1; k > 0; --k) line[k] = line[k - 1];
    line[0] = sample;
    std::int64_t sum = 0;
    for (size_t i = 0; i < taps.size(); ++i) {
      const std::int64_t t16 = sat(taps[i], -32768, 32767);
      if (t16 != taps[i]) ++tapSaturated;
      sum += t16 * line[i];
    }
    if (sum != wrap32(sum)) ++sumWrapped;
    return finish(wrap32(sum));
  }

  std::int16_t finish(std::int32_t sum) {
    if ((std::int64_t(sum) & 0x1fff) == 0x1000) ++ties;
    const std::int64_t shifted = std::int64_t(wrap32(std::int64_t(sum) + 4096));
    // Arithmetic shift: floor division by 8192.
    const std::int64_t q = shifted >= 0 ? shifted / 8192 : -((-shifted + 8191) / 8192);
    const std::int64_t out = sat(q, -32768, 32767);
    if (out != q) ++outSaturated;
    return static_cast<std::int16_t>(out);
  }
};

// trunc(8192*v): toward zero, below one unit gives 0.
TEST(LmsInt16, InitTruncatesTapsAndStep) {
  const float in[] = {1.0f, -1.0f, 1.5f / 8192, -1.5f / 8192, 0.9f / 8192, -0.9f / 8192, 3.99999f, 0.0f};
  const std::int32_t want[] = {8192, -8192, 1, -1, 0, 0, 32767, 0};
  float taps[8];
  std::memcpy(taps, in, sizeof taps);
  RyxLmsTapState ts{};
  ryxwLmslInit(5, taps, 8, -2.75f / 8192, 0, &ts);
  std::int32_t got[8];
  std::memcpy(got, taps, sizeof got);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(got[i], want[i]) << i;
  std::int32_t step;
  std::memcpy(&step, &ts.step, sizeof step);
  EXPECT_EQ(step, -2);
  EXPECT_EQ(ts.leak, 0.0f);
  EXPECT_EQ(ts.isFilterMode, 1);
  EXPECT_EQ(ts.lmsType, 5);
  EXPECT_EQ(ryxwLmslGetStep(&ts), -2.0f / 8192);
  ryxwLmslSetStep(0.5f, &ts);
  EXPECT_EQ(ryxwLmslGetStep(&ts), 0.5f);
  float back[8];
  ryxwLmslGetTaps(&ts, back);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(back[i], float(want[i]) / 8192.0f) << i;
  EXPECT_EQ(ts.isFilterMode, 0);
}

struct Case {
  const char* label;
  int tapsLen;
  int errDly;
  float tapLo, tapHi;  // float units
  int sampleMax;
  int errMax;
  float step;
};

TEST(LmsInt16, BitExactAgainstIntegerModel) {
  const Case cases[] = {
      {"small steps", 7, 0, -0.5f, 0.5f, 3000, 3000, 0.001f},
      {"delayed error", 5, 3, -0.5f, 0.5f, 3000, 3000, 0.002f},
      {"error saturates", 4, 1, -0.25f, 0.25f, 20000, 32767, 2.0f},
      {"taps beyond 4.0", 6, 0, 3.5f, 7.9f, 32767, 32767, 0.0f},
      {"wide and wrapping", 3, 2, 250000.0f, 262000.0f, 32767, 32767, 1.0f},
      {"one tap", 1, 0, -9.0f, 9.0f, 32767, 32767, 0.3f},
      {"one tap, wrapping", 1, 0, 262000.0f, 262100.0f, 32767, 32767, 3.0f},
      {"negative step", 8, 0, -1.0f, 1.0f, 10000, 10000, -0.01f},
  };
  ryxtest::Random r(21);
  IntModel total;
  for (const Case& c : cases) {
    std::vector<float> taps(static_cast<size_t>(c.tapsLen));
    for (auto& t : taps) t = r.f32(c.tapLo, c.tapHi);
    IntModel m;
    for (float t : taps) m.taps.push_back(std::int32_t(std::trunc(double(t) * 8192)));
    m.step = std::int32_t(std::trunc(double(c.step) * 8192));
    m.errDly = c.errDly;
    RyxLmsTapState ts{};
    RyxLmsDlyState ds{};
    ryxwLmslInit(0, taps.data(), c.tapsLen, c.step, c.errDly, &ts);
    std::vector<std::int16_t> line(static_cast<size_t>(c.tapsLen + c.errDly));
    ryxwLmslInitDlyl(&ts, line.data(), &ds);
    ASSERT_EQ(ds.dlylLen, c.tapsLen + c.errDly);
    ryxwLmslSetDlyl(&ts, nullptr, &ds);
    m.line.assign(line.size(), 0);
    for (int n = 0; n < 400; ++n) {
      const auto x = static_cast<std::int16_t>(r.i32(-c.sampleMax, c.sampleMax));
      const auto e = static_cast<std::int16_t>(r.i32(-c.errMax, c.errMax));
      ASSERT_EQ(ryxwLmsl(&ts, &ds, x, e), m.run(x, e)) << c.label << " sample " << n;
    }
    std::vector<std::int32_t> got(taps.size());
    std::memcpy(got.data(), ts.taps, got.size() * sizeof(std::int32_t));
    EXPECT_EQ(got, m.taps) << c.label;
    total.errSaturated += m.errSaturated;
    total.tapSaturated += m.tapSaturated;
    total.tapWrapped += m.tapWrapped;
    total.sumWrapped += m.sumWrapped;
    total.outSaturated += m.outSaturated;
  }
  EXPECT_GT(total.errSaturated, 0);
  EXPECT_GT(total.tapSaturated, 0);
  EXPECT_GT(total.tapWrapped, 0);
  EXPECT_GT(total.sumWrapped, 0);
  EXPECT_GT(total.outSaturated, 0);
}

// Rounding ties: a sum of exactly k*8192 + 4096 rounds up, for either sign.
TEST(LmsInt16, RoundingTiesGoUp) {
  struct Tie {
    float tap;
    short sample;
    short want;
  };
  // One tap of 0.5 (4096): sample s gives sum 4096*s.
  const Tie ties[] = {{0.5f, 1, 1}, {0.5f, -1, 0}, {0.5f, 3, 2}, {0.5f, -3, -1}, {1.5f, 1, 2}, {1.5f, -1, -1}};
  for (const Tie& t : ties) {
    for (int taps : {1, 2}) {
      // Two taps: a zero second tap on the general path.
      float h[2] = {t.tap, 0.0f};
      short line[2] = {0, 0};
      RyxLmsTapState ts{};
      RyxLmsDlyState ds{};
      ryxwLmslInit(0, h, taps, 0.0f, 0, &ts);
      ryxwLmslInitDlyl(&ts, line, &ds);
      EXPECT_EQ(ryxwLmsl(&ts, &ds, t.sample, 0), t.want) << t.tap << " " << t.sample << " taps " << taps;
    }
  }
}

// Error times step beyond 16 bits adapts by 32767 (or -32768) times the
// sample on the general path, but by the raw product with one tap.
TEST(LmsInt16, ErrorSaturationOnlyOnGeneralPath) {
  float h2[2] = {0.0f, 0.0f};
  short line2[2] = {0, 0};
  RyxLmsTapState ts{};
  RyxLmsDlyState ds{};
  ryxwLmslInit(0, h2, 2, 4.0f, 0, &ts);  // step 32768
  ryxwLmslInitDlyl(&ts, line2, &ds);
  ryxwLmsl(&ts, &ds, 3, 0);
  ryxwLmsl(&ts, &ds, 0, 1);  // e = 32768 -> 32767; the line is {3, 0}
  const auto* t2 = static_cast<const std::int32_t*>(ts.taps);
  EXPECT_EQ(t2[0], 3 * 32767);
  EXPECT_EQ(t2[1], 0);
  ryxwLmsl(&ts, &ds, 0, -2);  // e = -65536 -> -32768; the line is {0, 3}
  EXPECT_EQ(t2[0], 3 * 32767);
  EXPECT_EQ(t2[1], -3 * 32768);

  float h1[1] = {0.0f};
  short line1[1] = {0};
  RyxLmsTapState t1{};
  RyxLmsDlyState d1{};
  ryxwLmslInit(0, h1, 1, 4.0f, 0, &t1);
  ryxwLmslInitDlyl(&t1, line1, &d1);
  ryxwLmsl(&t1, &d1, 3, 0);
  ryxwLmsl(&t1, &d1, 0, 1);
  EXPECT_EQ(*static_cast<const std::int32_t*>(t1.taps), 3 * 32768);
}

}  // namespace
}  // namespace lmstest
