// Decomposition and reconstruction of every set in every precision against
// the long-double model (bit for bit for the 2-tap kernels, within a bound
// in eps * filter length * level otherwise), perfect reconstruction round
// trips, and the 16-bit routes: integer Haar by block sums, its level-14
// result against the level-15 float route, and the float route as the
// float kernels' result rounded to nearest with clipping.
#include <climits>

#include "wt_support.h"

namespace wttest {
namespace {

template <class T>
std::vector<T> randomData(int len, std::uint32_t seed) {
  ryxtest::Random r(seed);
  std::vector<T> x(len);
  for (T& v : x) v = std::is_same_v<T, short> ? T(r.i32(-32768, 32767)) : T(r.f64(-100, 100));
  return x;
}

int deepest(int len) {
  int top = 0;
  while ((2LL << top) < 2LL * len) ++top;
  return top;
}

bool twoTap(const SetSpec& s) { return s.type == 1 || (s.type == 2 && s.p1 == 1) || (s.type >= 6 && s.p1 == 1 && s.p2 == 1 && s.type <= 7); }

template <class T>
void compareWithModel(const SetSpec& s, int len, int level) {
  RyxWtState st{};
  int lenDec;
  ASSERT_EQ(P<T>::initLen(s.p1, s.p2, len, level, &st, s.type, &lenDec), RYX_StsOk);
  const Taps taps = tapsOf<T>(st);
  const std::vector<T> x = randomData<T>(len, 7 * len + level);
  std::vector<T> c(lenDec + 1, T(99)), y(len + 1, T(99));
  ASSERT_EQ(P<T>::dec(&st, x.data(), c.data()), RYX_StsOk);
  ASSERT_EQ(P<T>::rec(&st, c.data(), y.data()), RYX_StsOk);
  ryxWtFree(&st);
  EXPECT_EQ(c[lenDec], T(99));
  EXPECT_EQ(y[len], T(99));
  auto round = [](ld v) { return ld(T(v)); };
  const std::vector<ld> wantC = modelDecompose(std::vector<ld>(x.begin(), x.end()), taps, level, round);
  const std::vector<ld> wantY =
      modelReconstruct(std::vector<ld>(c.begin(), c.end() - 1), taps, levelLens(len, level), round);
  int maxLen = 0;
  for (const auto& f : taps.f) maxLen = std::max(maxLen, int(f.size()));
  // Inputs lie within 100 in magnitude.
  const ld tol = twoTap(s) ? 0 : 4 * P<T>::eps() * maxLen * (level + 1) * 100;
  for (int i = 0; i < lenDec; ++i)
    ASSERT_LE(std::fabs(c[i] - wantC[i]), tol) << s.type << "/" << s.p1 << "/" << s.p2 << " len " << len << " level "
                                               << level << " coefficient " << i;
  for (int i = 0; i < len; ++i)
    ASSERT_LE(std::fabs(y[i] - wantY[i]), tol) << s.type << "/" << s.p1 << "/" << s.p2 << " len " << len << " level "
                                               << level << " sample " << i;
}

TEST(WtTransform, EveryFamilyAndPrecisionAgainstTheModel) {
  for (const SetSpec& s : allSets()) {
    for (int len : {2, 5, 37, 64}) {
      for (int level : {0, 1, 2, deepest(len)}) {
        if (level > deepest(len)) continue;
        compareWithModel<double>(s, len, level);
        compareWithModel<float>(s, len, level);
      }
    }
  }
}

TEST(WtTransform, PerfectReconstructionAtEveryLevel) {
  for (const SetSpec& s : allSets()) {
    for (int len : {2, 5, 37, 64, 255, 1000}) {
      const std::vector<double> x = randomData<double>(len, len);
      for (int level = 0; level <= deepest(len); ++level) {
        RyxWtState st{};
        int lenDec;
        ASSERT_EQ(ryxdWtInitLen(s.p1, s.p2, len, level, &st, s.type, &lenDec), RYX_StsOk);
        std::vector<double> c(lenDec), y(len);
        ryxdWtDecompose(&st, x.data(), c.data());
        ryxdWtReconstruct(&st, c.data(), y.data());
        ryxWtFree(&st);
        // The 12-digit Vaidyanathan taps sum to 1 within 4e-9.
        const double tol = s.type == 5 ? 1e-6 * (level + 1) : 1e-9;
        for (int i = 0; i < len; ++i)
          ASSERT_NEAR(y[i], x[i], tol) << s.type << "/" << s.p1 << "/" << s.p2 << " len " << len << " level " << level;
      }
    }
  }
}

// 16-bit Haar in integers: for a length of 2^L, detail i of level t is
// (sum of the later half of block i of 2^t samples - the earlier half) >> t
// and the approximation the block sum of 2^L samples >> L.
TEST(WtInt16, HaarByBlockSums) {
  for (int level : {1, 3, 14}) {
    const int len = 1 << level;
    const std::vector<short> x = randomData<short>(len, level);
    RyxWtState st{};
    int lenDec;
    ASSERT_EQ(ryxwWtInitLen(1, 0, len, level, &st, 1, &lenDec), RYX_StsOk);
    std::vector<short> c(lenDec);
    ASSERT_EQ(ryxwWtDecompose(&st, x.data(), c.data()), RYX_StsOk);
    ryxWtFree(&st);
    auto blockSum = [&](int from, int n) {
      long long s = 0;
      for (int k = from; k < from + n; ++k) s += x[k];
      return s;
    };
    ASSERT_EQ(c[0], blockSum(0, len) >> level);
    int pos = lenDec;
    for (int t = 1; t <= level; ++t) {
      const int n = len >> t, half = 1 << (t - 1);
      pos -= n;
      for (int i = 0; i < n; ++i)
        ASSERT_EQ(c[pos + i], (blockSum(2 * i * half + half, half) - blockSum(2 * i * half, half)) >> t)
            << "level " << t << " detail " << i;
    }
  }
}

TEST(WtInt16, IntegerHaarAtLevel14AgainstFloatRouteAtLevel15) {
  const int len = 20001;
  const std::vector<short> x = randomData<short>(len, 3);
  std::vector<short> c[2];
  for (int k = 0; k < 2; ++k) {
    RyxWtState st{};
    int lenDec;
    ASSERT_EQ(ryxwWtInitLen(0, 0, len, 14 + k, &st, 1, &lenDec), RYX_StsOk);
    c[k].resize(lenDec);
    ASSERT_EQ(ryxwWtDecompose(&st, x.data(), c[k].data()), RYX_StsOk);
    ryxWtFree(&st);
  }
  // Details of levels 1..14 end both outputs; floor against nearest.
  const int common = int(c[0].size()) - 2 * ((len + (1 << 14) - 1) >> 14);
  for (int i = 0; i < common; ++i) {
    const int a = c[0][c[0].size() - 1 - i], b = c[1][c[1].size() - 1 - i];
    ASSERT_TRUE(b - a == 0 || b - a == 1) << i;
  }
}

// Every other 16-bit case is the float kernels' result of the converted
// input, rounded to nearest (ties to even) and clipped.
TEST(WtInt16, FloatRouteIsTheFloatResultRounded) {
  const SetSpec cases[] = {{1, 0, 0, 1, {}, {}}, {3, 4, 0, 1, {}, {}}, {6, 3, 9, 2, {}, {}}, {6, 1, 1, 2, {}, {}}};
  auto narrow = [](float v) { return short(std::clamp(std::nearbyint(v), -32768.0f, 32767.0f)); };
  for (const SetSpec& s : cases) {
    for (int len : {5, 37, 40000}) {
      const int level = s.type == 1 ? deepest(len) : 3;
      if (s.type == 1 && level <= 14) continue;  // the integer kernel, tested above
      std::vector<short> x = randomData<short>(len, len);
      x[0] = SHRT_MIN;
      RyxWtState w{}, f{};
      int lenDec;
      ASSERT_EQ(ryxwWtInitLen(s.p1, s.p2, len, level, &w, s.type, &lenDec), RYX_StsOk);
      ASSERT_EQ(ryxsWtInitLen(s.p1, s.p2, len, level, &f, s.type, &lenDec), RYX_StsOk);
      std::vector<float> fx(x.begin(), x.end()), fc(lenDec), fy(len);
      std::vector<short> c(lenDec), y(len);
      ryxwWtDecompose(&w, x.data(), c.data());
      ryxsWtDecompose(&f, fx.data(), fc.data());
      for (int i = 0; i < lenDec; ++i) ASSERT_EQ(c[i], narrow(fc[i])) << s.type << " coefficient " << i;
      ryxwWtReconstruct(&w, c.data(), y.data());
      std::vector<float> fcRounded(c.begin(), c.end());
      ryxsWtReconstruct(&f, fcRounded.data(), fy.data());
      for (int i = 0; i < len; ++i) ASSERT_EQ(y[i], narrow(fy[i])) << s.type << " sample " << i;
      ryxWtFree(&w);
      ryxWtFree(&f);
    }
  }
}

}  // namespace
}  // namespace wttest
