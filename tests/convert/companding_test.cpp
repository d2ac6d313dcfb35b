// A-law and mu-law companding against the segment rules written out here:
// every 16-bit sample and every code bit for bit, 32-bit, float and double
// samples by the same rules, the G.711 properties (monotone, sign-symmetric,
// error within half a step), the transcoding tables' known entries and
// shape, and the argument checks.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "test_support.h"

namespace {

using ryxtest::Guarded;
using ryxtest::Random;
using ryxtest::ReportCapture;

// ---- The rules, on 32-bit samples ------------------------------------------

const int kEnd[8] = {255, 511, 1023, 2047, 4095, 8191, 16383, 32767};
const int kShift[8] = {4, 4, 5, 6, 7, 8, 9, 10};
const int kMuTops[8] = {124, 380, 892, 1916, 3964, 8060, 16252, 32636};

int aLawRule(std::int32_t x) {
  if (x == INT_MIN || x == INT_MIN + 1) return 0x2A;
  if (x == INT_MAX) return 0xAA;
  const std::int64_t mag = x < 0 ? -static_cast<std::int64_t>(x) : x;
  const int v = static_cast<int>(mag / 65536);
  for (int k = 0; k < 8; ++k) {
    if (v <= kEnd[k]) return (((v >> kShift[k]) & 0xF) | (k << 4) | (x >= 0 ? 0x80 : 0)) ^ 0x55;
  }
  return -1;
}

int muLawRule(std::int32_t x) {
  const int high = static_cast<int>(std::floor(x / 65536.0));  // arithmetic shift by 16
  const int m = std::abs(high), sign = x >= 0 ? 0x80 : 0;
  for (int s = 0; s < 8; ++s) {
    if (m <= kMuTops[s]) return ((kMuTops[s] - m) >> (3 + s)) | ((7 - s) << 4) | sign;
  }
  return sign;
}

// G.711 decoding on the 16-bit scale.
int aLawDecode(int code) {
  const int a = code ^ 0x55, seg = (a >> 4) & 7;
  int t = (a & 0xF) << 4;
  if (seg == 0) t += 8;
  else t = (t + 0x108) << (seg - 1);
  return (a & 0x80) ? t : -t;
}
int muLawDecode(int code) {
  const int u = ~code & 0xFF, seg = (u >> 4) & 7;
  const int t = ((((u & 0xF) << 3) + 0x84) << seg) - 0x84;
  return (u & 0x80) ? -t : t;
}

// Half the quantisation step of a code's segment, on the 16-bit scale.
double halfStepA(int code) { return (1 << kShift[((code ^ 0x55) >> 4) & 7]) / 2.0; }
double halfStepMu(int code) { return (8 << (7 - ((code >> 4) & 7))) / 2.0; }

// ---- One law's routines -----------------------------------------------------

struct Law {
  std::string name;
  std::function<int(std::int32_t)> rule;
  std::function<int(int)> decode;
  std::function<double(int)> halfStep;
  void (*encW)(const short*, unsigned char*, int);
  void (*encI)(const int*, unsigned char*, int);
  void (*encS)(const float*, unsigned char*, int);
  void (*encD)(const double*, unsigned char*, int);
  void (*decW)(const unsigned char*, short*, int);
  void (*decI)(const unsigned char*, int*, int);
  void (*decS)(const unsigned char*, float*, int);
  void (*decD)(const unsigned char*, double*, int);
  int limitPos, limitNeg;
  int lastInRange;  // largest 16-bit magnitude inside the law's decision range
};

std::vector<Law> laws() {
  return {{"A-law", aLawRule, aLawDecode, halfStepA, ryxwbLinToALaw, ryxibLinToALaw, ryxsbLinToALaw, ryxdbLinToALaw,
           ryxwbALawToLin, ryxibALawToLin, ryxsbALawToLin, ryxdbALawToLin, 0xAA, 0x2A, 32768},
          {"mu-law", muLawRule, muLawDecode, halfStepMu, ryxwbLinToMuLaw, ryxibLinToMuLaw, ryxsbLinToMuLaw,
           ryxdbLinToMuLaw, ryxwbMuLawToLin, ryxibMuLawToLin, ryxsbMuLawToLin, ryxdbMuLawToLin, 0x80, 0x00, 32636}};
}

std::vector<short> allWords() {
  std::vector<short> v;
  for (int x = -32768; x <= 32767; ++x) v.push_back(static_cast<short>(x));
  return v;
}

class Companding : public ::testing::TestWithParam<int> {
 protected:
  Law law = laws()[GetParam()];
};

// Every 16-bit sample by the rule applied to the sample in the upper half of
// a 32-bit word; then decoded back: within half a step inside the law's range,
// monotone, and the decoded value sign-symmetric.
TEST_P(Companding, EveryWordSample) {
  const std::vector<short> x = allWords();
  const int n = static_cast<int>(x.size());
  Guarded<unsigned char> codes(n, 1);
  law.encW(x.data(), codes.data(), n);
  Guarded<short> back(n, 2);
  law.decW(codes.data(), back.data(), n);
  EXPECT_TRUE(codes.intact() && back.intact());
  int wrong = 0, far = 0;
  for (int i = 0; i < n; ++i) {
    const int want = law.rule(static_cast<std::int32_t>(x[i]) * 65536);
    if (codes[i] != want && wrong++ == 0) ADD_FAILURE() << law.name << " " << x[i] << " gives " << int(codes[i]) << " want " << want;
    if (std::abs(x[i]) <= law.lastInRange && std::abs(back[i] - x[i]) > law.halfStep(codes[i]) && far++ == 0)
      ADD_FAILURE() << law.name << " " << x[i] << " decodes to " << back[i];
    if (i > 0) {
      ASSERT_LE(back[i - 1], back[i]) << law.name << " not monotone at " << x[i];
    }
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(far, 0);
  for (int c = 0; c < 256; ++c) {
    short v[2];
    const unsigned char pair[2] = {static_cast<unsigned char>(c), static_cast<unsigned char>(c ^ 0x80)};
    law.decW(pair, v, 2);
    EXPECT_EQ(v[0], -v[1]) << law.name << " code " << c;
  }
}

// Every code through the four decoders: the G.711 value on the 16-bit scale,
// shifted by 16 for 32-bit, divided by 32768 for float and double.
TEST_P(Companding, EveryCodeDecoded) {
  unsigned char codes[256];
  for (int c = 0; c < 256; ++c) codes[c] = static_cast<unsigned char>(c);
  short w[256];
  int i32[256];
  float f[256];
  double d[256];
  law.decW(codes, w, 256);
  law.decI(codes, i32, 256);
  law.decS(codes, f, 256);
  law.decD(codes, d, 256);
  for (int c = 0; c < 256; ++c) {
    const int v = law.decode(c);
    EXPECT_EQ(w[c], v) << law.name << " code " << c;
    EXPECT_EQ(i32[c], v * 65536) << law.name << " code " << c;
    EXPECT_EQ(f[c], static_cast<float>(v / 32768.0L)) << law.name << " code " << c;
    EXPECT_EQ(d[c], static_cast<double>(v / 32768.0L)) << law.name << " code " << c;
  }
  EXPECT_EQ(law.decode(law.limitPos), law.name == "A-law" ? 32256 : 32124);
}

// 32-bit samples: the rule on the whole word, at the edges, around every
// segment boundary with low bits set, and at random.
TEST_P(Companding, DwordSamples) {
  std::vector<int> x = {INT_MIN, INT_MIN + 1, INT_MAX, INT_MAX - 1, 0, -1, 1, -65535, -65536, -65537, 65535, 65536};
  for (int t : {255, 511, 1023, 2047, 4095, 8191, 16383, 32767, 124, 380, 892, 1916, 3964, 8060, 16252, 32636}) {
    for (int d : {-1, 0, 1}) {
      for (int low : {0, 1, 0x8000, 0xFFFF}) {
        const std::int64_t w = static_cast<std::int64_t>(t + d) * 65536 + low;
        if (w <= INT_MAX) x.insert(x.end(), {static_cast<int>(w), static_cast<int>(-w)});
      }
    }
  }
  Random rng(7);
  for (int i = 0; i < 20000; ++i) x.push_back(static_cast<int>(rng.bits()));
  const int n = static_cast<int>(x.size());
  Guarded<unsigned char> codes(n, 3);
  law.encI(x.data(), codes.data(), n);
  EXPECT_TRUE(codes.intact());
  int wrong = 0;
  for (int i = 0; i < n; ++i) {
    if (codes[i] != law.rule(x[i]) && wrong++ == 0) ADD_FAILURE() << law.name << " " << x[i] << " gives " << int(codes[i]);
  }
  EXPECT_EQ(wrong, 0);
}

// Float and double samples: the limit code from magnitude 0.96875 up (NaN
// and infinity included, by sign), else the sample times 32768 rounded to
// nearest (ties to even) and encoded as a 16-bit sample.
template <class T>
void checkFloatEncoder(const Law& law, void (*enc)(const T*, unsigned char*, int)) {
  std::vector<T> x;
  for (int k = -32768; k <= 32767; ++k) {
    const T v = static_cast<T>(k / 32768.0L);
    const T half = static_cast<T>((k + 0.5L) / 32768.0L);
    x.insert(x.end(), {v, half, std::nextafter(half, T(-2)), std::nextafter(half, T(2))});
  }
  const T inf = std::numeric_limits<T>::infinity();
  for (T v : {T(0.96875), std::nextafter(T(0.96875), T(0)), T(1), T(1.5), T(1e30), inf, std::numeric_limits<T>::quiet_NaN()})
    x.insert(x.end(), {v, -v});
  const int n = static_cast<int>(x.size());
  Guarded<unsigned char> codes(n, 1);
  enc(x.data(), codes.data(), n);
  EXPECT_TRUE(codes.intact());
  int wrong = 0;
  for (int i = 0; i < n; ++i) {
    int want;
    if (std::isnan(x[i]) || std::fabs(x[i]) >= T(0.96875)) want = std::signbit(x[i]) ? law.limitNeg : law.limitPos;
    else want = law.rule(static_cast<std::int32_t>(std::nearbyint(static_cast<long double>(x[i]) * 32768)) * 65536);
    if (codes[i] != want && wrong++ == 0) ADD_FAILURE() << law.name << " " << x[i] << " gives " << int(codes[i]) << " want " << want;
  }
  EXPECT_EQ(wrong, 0) << law.name << (sizeof(T) == 4 ? " float" : " double");
}

TEST_P(Companding, FloatAndDoubleSamples) {
  checkFloatEncoder<float>(law, law.encS);
  checkFloatEncoder<double>(law, law.encD);
}

INSTANTIATE_TEST_SUITE_P(Laws, Companding, ::testing::Values(0, 1), [](const auto& info) {
  return info.param == 0 ? std::string("ALaw") : std::string("MuLaw");
});

// The cases the encoders are known by.
TEST(CompandingCases, KnownCodes) {
  unsigned char c[2];
  const short words[2] = {-32768, 32767};
  ryxwbLinToALaw(words, c, 2);
  EXPECT_EQ(c[0], 0x2A);
  EXPECT_EQ(c[1], 0xAA);
  const float floats[2] = {1.0f, -1.0f};
  ryxsbLinToALaw(floats, c, 2);
  EXPECT_EQ(c[0], 0xAA);
  EXPECT_EQ(c[1], 0x2A);
  const int top = INT_MAX;
  ryxibLinToALaw(&top, c, 1);
  EXPECT_EQ(c[0], 0xAA);
  const short zeroTop[2] = {0, 32767};
  ryxwbLinToMuLaw(zeroTop, c, 2);
  EXPECT_EQ(c[0], 0xFF);  // smallest positive step
  EXPECT_EQ(c[1], 0x80);
}

// The G.711 transcoding tables: their known first entries, agreement of the
// two tables in the top segment only, sign kept, order kept, and each
// result within a step of the code it came from.
TEST(CompandingCases, Transcoding) {
  unsigned char codes[256], aToMu[256], muToA[256];
  for (int c = 0; c < 256; ++c) codes[c] = static_cast<unsigned char>(c);
  ryxALawToMuLaw(codes, aToMu, 256);
  ryxMuLawToALaw(codes, muToA, 256);
  EXPECT_EQ(aToMu[0], 42);
  EXPECT_EQ(aToMu[1], 43);
  EXPECT_EQ(aToMu[2], 40);
  EXPECT_EQ(aToMu[3], 41);
  for (int c = 0; c < 16; ++c) EXPECT_EQ(aToMu[c], muToA[c]) << c;
  EXPECT_NE(aToMu[16], muToA[16]);
  // Not an identity round trip: the laws differ near zero.
  int unchanged = 0;
  for (int c = 0; c < 256; ++c) unchanged += muToA[aToMu[c]] == c;
  EXPECT_LT(unchanged, 256);
  for (int c = 0; c < 256; ++c) {
    EXPECT_EQ(aToMu[c] & 0x80, (c ^ 0x55) & 0x80) << c;
    EXPECT_EQ(muToA[c] & 0x80, c & 0x80) << c;
    EXPECT_LE(std::abs(muLawDecode(aToMu[c]) - aLawDecode(c)), 2 * std::max(halfStepA(c), halfStepMu(aToMu[c]))) << c;
    EXPECT_LE(std::abs(aLawDecode(muToA[c]) - muLawDecode(c)), 2 * std::max(halfStepMu(c), halfStepA(muToA[c]))) << c;
  }
  // Order: codes sorted by decoded value (the mu-law negative zero before the
  // positive one) stay sorted after transcoding.
  std::vector<int> byA(256), byMu(256);
  for (int c = 0; c < 256; ++c) byA[c] = byMu[c] = c;
  std::sort(byA.begin(), byA.end(), [](int a, int b) { return aLawDecode(a) < aLawDecode(b); });
  auto muKey = [](int c) { return 2 * muLawDecode(c) + (c >> 7); };
  std::sort(byMu.begin(), byMu.end(), [&](int a, int b) { return muKey(a) < muKey(b); });
  for (int i = 1; i < 256; ++i) {
    EXPECT_LE(muLawDecode(aToMu[byA[i - 1]]), muLawDecode(aToMu[byA[i]]));
    EXPECT_LE(aLawDecode(muToA[byMu[i - 1]]), aLawDecode(muToA[byMu[i]]));
  }
  // Odd lengths go two a turn and one at the end.
  Guarded<unsigned char> out(3, 1);
  ryxALawToMuLaw(codes + 5, out.data(), 3);
  EXPECT_EQ(out[2], aToMu[7]);
  EXPECT_TRUE(out.intact());
}

// Checks stop at the first failure and leave a stored status standing.
TEST(CompandingCases, Checks) {
  struct Routine { std::string name; std::function<void(int, bool, bool)> call; };
  auto wrap = [](auto f, auto* src, auto* dst) {
    return [f, src, dst](int n, bool nullSrc, bool nullDst) {
      f(nullSrc ? nullptr : src, nullDst ? nullptr : dst, n);
    };
  };
  static short w[4];
  static int i32[4];
  static float f[4];
  static double d[4];
  static unsigned char b[4], out[4];
  const std::vector<Routine> routines = {
      {"ryxwbLinToALaw", wrap(ryxwbLinToALaw, w, out)},   {"ryxibLinToALaw", wrap(ryxibLinToALaw, i32, out)},
      {"ryxsbLinToALaw", wrap(ryxsbLinToALaw, f, out)},   {"ryxdbLinToALaw", wrap(ryxdbLinToALaw, d, out)},
      {"ryxwbLinToMuLaw", wrap(ryxwbLinToMuLaw, w, out)}, {"ryxibLinToMuLaw", wrap(ryxibLinToMuLaw, i32, out)},
      {"ryxsbLinToMuLaw", wrap(ryxsbLinToMuLaw, f, out)}, {"ryxdbLinToMuLaw", wrap(ryxdbLinToMuLaw, d, out)},
      {"ryxwbALawToLin", wrap(ryxwbALawToLin, b, w)},     {"ryxibALawToLin", wrap(ryxibALawToLin, b, i32)},
      {"ryxsbALawToLin", wrap(ryxsbALawToLin, b, f)},     {"ryxdbALawToLin", wrap(ryxdbALawToLin, b, d)},
      {"ryxwbMuLawToLin", wrap(ryxwbMuLawToLin, b, w)},   {"ryxibMuLawToLin", wrap(ryxibMuLawToLin, b, i32)},
      {"ryxsbMuLawToLin", wrap(ryxsbMuLawToLin, b, f)},   {"ryxdbMuLawToLin", wrap(ryxdbMuLawToLin, b, d)},
      {"ryxALawToMuLaw", wrap(ryxALawToMuLaw, b, out)},   {"ryxMuLawToALaw", wrap(ryxMuLawToALaw, b, out)},
  };
  ReportCapture capture;
  struct Case { int n; bool nullSrc, nullDst; const char* text; };
  const Case cases[] = {{0, false, false, "len<=0"}, {-1, true, true, "len<=0"}, {4, true, true, "src==0"}, {4, false, true, "dst==0"}};
  for (const Routine& r : routines) {
    for (const Case& c : cases) {
      capture.clear();
      r.call(c.n, c.nullSrc, c.nullDst);
      ASSERT_EQ(capture.reports().size(), 1u) << r.name;
      const ryxtest::Report& rep = capture.reports()[0];
      EXPECT_EQ(rep.status, RYX_StsBadArg);
      EXPECT_EQ(rep.funcName, r.name);
      EXPECT_EQ(rep.context, c.text) << r.name;
      EXPECT_EQ(rep.file, "ryxlaw");
    }
    // A valid call reports nothing and clears nothing.
    capture.clear();
    ryxSetErrStatus(RYX_StsBadArg);
    r.call(4, false, false);
    EXPECT_TRUE(capture.reports().empty()) << r.name;
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg) << r.name;
  }
}

}  // namespace
