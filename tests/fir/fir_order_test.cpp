// The documented order of the sums, which decides the last bits, written out
// here independently and compared bit for bit. Each test also counts how
// often a plain sequential sum would differ, so that it is known to tell
// the orders apart.
#include <algorithm>

#include "fir_support.h"

namespace firtest {
namespace {

// Newest-first line after pushing `sample` onto `hist` (oldest first).
template <class S>
std::vector<S> lineAfter(const std::vector<S>& hist, S sample, int len) {
  std::vector<S> line(static_cast<size_t>(len));
  line[0] = sample;
  for (int k = 1; k < len; ++k) line[static_cast<size_t>(k)] = hist[hist.size() - static_cast<size_t>(k)];
  return line;
}

// Float dot product in lanes: head of len mod 4 products into lane 0, then
// one product per lane, folded (0+2)+(1+3).
float laneDot(const float* x, const float* h, int n) {
  float lane[4] = {0, 0, 0, 0};
  const int head = n % 4;
  float s = 0;
  for (int k = 0; k < head; ++k) s = (k == 0) ? x[k] * h[k] : s + x[k] * h[k];
  lane[0] = s;
  if (n < 4) return s;
  for (int k = head; k < n; ++k) lane[(k - head) % 4] += x[k] * h[k];
  return (lane[0] + lane[2]) + (lane[1] + lane[3]);
}

float seqDot(const float* x, const float* h, int n) {
  float s = 0;
  for (int k = 0; k < n; ++k) s += x[k] * h[k];
  return s;
}

TEST(FirOrder, RealSingleSampleLanes) {
  std::mt19937 gen(11);
  int differs = 0;
  for (int len = 1; len <= 40; ++len) {
    for (int rep = 0; rep < 20; ++rep) {
      std::vector<float> taps = randomVec<float>(gen, len);
      const std::vector<float> hist = randomVec<float>(gen, len - 1);
      const float sample = randomVec<float>(gen, 1)[0];
      std::vector<float> lineBuf(static_cast<size_t>(len));
      RyxFirTapState ts{};
      RyxFirDlyState ds{};
      ryxsFirlInit(taps.data(), len, &ts);
      ryxsFirlInitDlyl(&ts, lineBuf.data(), &ds);
      ryxsFirlSetDlyl(&ts, hist.data(), &ds);
      const std::vector<float> line = lineAfter(hist, sample, len);
      const float want = laneDot(line.data(), taps.data(), len);
      const float got = ryxsFirl(&ts, &ds, sample);
      ASSERT_TRUE(sameBits(got, want)) << "taps " << len << " rep " << rep;
      differs += !sameBits(want, seqDot(line.data(), taps.data(), len));

      // The high-level record runs the same lanes over its stored arrays:
      // reversed taps against the history oldest first.
      RyxFirState st{};
      ryxsFirInit(taps.data(), len, hist.data(), &st);
      std::vector<float> fwd(line.rbegin(), line.rend()), rev(taps.rbegin(), taps.rend());
      ASSERT_TRUE(sameBits(ryxsFir(&st, sample), laneDot(fwd.data(), rev.data(), len))) << "taps " << len;
      ryxFirFree(&st);
    }
  }
  EXPECT_GT(differs, 0);
}

TEST(FirOrder, ComplexSingleSampleRealPartOrder) {
  std::mt19937 gen(12);
  int differs = 0;
  for (int len = 1; len <= 24; ++len) {
    for (int rep = 0; rep < 20; ++rep) {
      std::vector<SCplx> taps = randomVec<SCplx>(gen, len);
      const std::vector<SCplx> hist = randomVec<SCplx>(gen, len - 1);
      const SCplx sample = randomVec<SCplx>(gen, 1)[0];
      std::vector<SCplx> lineBuf(static_cast<size_t>(len));
      RyxFirTapState ts{};
      RyxFirDlyState ds{};
      ryxcFirlInit(taps.data(), len, &ts);
      ryxcFirlInitDlyl(&ts, lineBuf.data(), &ds);
      ryxcFirlSetDlyl(&ts, hist.data(), &ds);
      const std::vector<SCplx> x = lineAfter(hist, sample, len);
      // Four running sums in tap order, then ((ra + ub) - ub) - ub.
      float ra = 0, ua = 0, ub = 0, rb = 0;
      for (int k = 0; k < len; ++k) {
        const SCplx& t = taps[static_cast<size_t>(k)];
        const SCplx& v = x[static_cast<size_t>(k)];
        ra = (k == 0) ? v.re * t.re : ra + v.re * t.re;
        ua = (k == 0) ? v.im * t.re : ua + v.im * t.re;
        ub = (k == 0) ? v.im * t.im : ub + v.im * t.im;
        rb = (k == 0) ? v.re * t.im : rb + v.re * t.im;
      }
      float re = ra + ub;
      re = re - ub;
      re = re - ub;
      const float im = ua + rb;
      const SCplx got = ryxcFirl(&ts, &ds, sample);
      ASSERT_TRUE(sameBits(got.re, re)) << "taps " << len;
      ASSERT_TRUE(sameBits(got.im, im)) << "taps " << len;
      differs += !sameBits(re, ra - ub);
    }
  }
  EXPECT_GT(differs, 0);
}

// Mixed real and complex: even and odd partial sums, a leading odd tap first.
template <class S, class H>
SCplx pairSums(const std::vector<S>& x, const std::vector<H>& h) {
  auto prod = [](auto a, auto b) {
    if constexpr (std::is_same_v<decltype(a), float>) return SCplx{a * b.re, a * b.im};
    else return SCplx{a.re * b, a.im * b};
  };
  const int n = static_cast<int>(h.size());
  SCplx e{0, 0}, o{0, 0};
  int k = 0;
  if (n % 2 == 1) {
    e = prod(x[0], h[0]);
    k = 1;
  }
  for (; k < n; k += 2) {
    const SCplx p = prod(x[static_cast<size_t>(k)], h[static_cast<size_t>(k)]);
    const SCplx q = prod(x[static_cast<size_t>(k + 1)], h[static_cast<size_t>(k + 1)]);
    e = SCplx{e.re + p.re, e.im + p.im};
    o = SCplx{o.re + q.re, o.im + q.im};
  }
  return SCplx{e.re + o.re, e.im + o.im};
}

TEST(FirOrder, MixedSingleSamplePairs) {
  std::mt19937 gen(13);
  for (int len = 1; len <= 24; ++len) {
    std::vector<SCplx> ctaps = randomVec<SCplx>(gen, len);
    std::vector<float> staps = randomVec<float>(gen, len);
    const std::vector<float> sh = randomVec<float>(gen, len - 1);
    const std::vector<SCplx> ch = randomVec<SCplx>(gen, len - 1);
    std::vector<float> sl(static_cast<size_t>(len));
    std::vector<SCplx> cl(static_cast<size_t>(len));
    RyxFirTapState tc{}, tsr{};
    RyxFirDlyState dsr{}, dc{};
    ryxcFirlInit(ctaps.data(), len, &tc);
    ryxsFirlInit(staps.data(), len, &tsr);
    ryxsFirlInitDlyl(&tc, sl.data(), &dsr);
    ryxcFirlInitDlyl(&tsr, cl.data(), &dc);
    ryxsFirlSetDlyl(&tc, sh.data(), &dsr);
    ryxcFirlSetDlyl(&tsr, ch.data(), &dc);
    const SCplx a = ryxscFirl(&tc, &dsr, 0.75f);
    SCplx b{};
    ryxcsFirlOut(&tsr, &dc, SCplx{0.5f, -0.25f}, &b);
    const SCplx wa = pairSums(lineAfter(sh, 0.75f, len), ctaps);
    const SCplx wb = pairSums(lineAfter(ch, SCplx{0.5f, -0.25f}, len), staps);
    ASSERT_TRUE(sameBits(a, wa)) << len;
    ASSERT_TRUE(sameBits(b, wb)) << len;
    SCplx c{};
    ryxscFirlOut(&tc, &dsr, 0.5f, &c);
    std::vector<float> sh2 = sh;
    sh2.push_back(0.75f);
    ASSERT_TRUE(sameBits(c, pairSums(lineAfter(sh2, 0.5f, len), ctaps))) << len;
  }
}

// The real block kernel: per output, accumulators A and B and a pending
// product P over taps from last to first; outputs left over after the
// groups of four in long double from tap 0 upward.
TEST(FirOrder, RealBlockKernelAndLeftovers) {
  std::mt19937 gen(14);
  int differs = 0;
  for (int len = 1; len <= 20; ++len) {
    // Fewer than four kernel outputs up to several passes of sixteen.
    for (int extra : {1, 2, 3, 4, 5, 6, 7, 8, 9, 16, 19, 23, 36, 50}) {
      std::vector<float> taps = randomVec<float>(gen, len);
      const std::vector<float> hist = randomVec<float>(gen, len - 1);
      const int n = len - 1 + extra;
      const std::vector<float> src = randomVec<float>(gen, n);
      std::vector<float> lineBuf(static_cast<size_t>(len));
      RyxFirTapState ts{};
      RyxFirDlyState ds{};
      ryxsFirlInit(taps.data(), len, &ts);
      ryxsFirlInitDlyl(&ts, lineBuf.data(), &ds);
      ryxsFirlSetDlyl(&ts, hist.data(), &ds);
      std::vector<float> got(static_cast<size_t>(n));
      ryxsbFirl(&ts, &ds, src.data(), got.data(), n);

      std::vector<float> all = hist;
      all.insert(all.end(), src.begin(), src.end());
      const size_t base = hist.size();
      // Head: single-sample lanes.
      for (int t = 0; t < len - 1; ++t) {
        std::vector<float> h(all.begin(), all.begin() + static_cast<long>(base + t));
        const std::vector<float> line = lineAfter(h, src[static_cast<size_t>(t)], len);
        ASSERT_TRUE(sameBits(got[static_cast<size_t>(t)], laneDot(line.data(), taps.data(), len)));
      }
      const int groups = extra / 4 * 4;
      for (int j = 0; j < extra; ++j) {
        const int o = len - 1 + j;  // output index; newest sample src[o]
        float want;
        if (j < groups) {
          float a = 0, b = 0, p = 0;
          int i = 0;
          if (len % 2 == 1) {
            b = taps[static_cast<size_t>(len - 1)] * src[static_cast<size_t>(o - len + 1)];
            i = 1;
          }
          for (; i < len; i += 2) {
            b = b + p;
            a = a + src[static_cast<size_t>(o - len + 1 + i)] * taps[static_cast<size_t>(len - 1 - i)];
            p = src[static_cast<size_t>(o - len + 2 + i)] * taps[static_cast<size_t>(len - 2 - i)];
          }
          b = b + p;
          want = a + b;
        } else {
          ld acc = 0;
          for (int k = 0; k < len; ++k) acc += static_cast<ld>(taps[static_cast<size_t>(k)]) * src[static_cast<size_t>(o - k)];
          want = static_cast<float>(acc);
        }
        ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], want)) << "taps " << len << " extra " << extra << " j " << j;
        std::vector<float> line(static_cast<size_t>(len));
        for (int k = 0; k < len; ++k) line[static_cast<size_t>(k)] = src[static_cast<size_t>(o - k)];
        differs += !sameBits(want, seqDot(line.data(), taps.data(), len));
      }
    }
  }
  EXPECT_GT(differs, 0);
}

// High-level float blocks: the same kernel with the taps from the caller's
// first on against the samples newest first, and the leftovers in long
// double in that same order.
TEST(FirOrder, HighLevelRealBlockReadsTapsFromTheFirst) {
  std::mt19937 gen(15);
  for (int len : {1, 2, 3, 6, 9, 17, 30}) {
    std::vector<float> taps = randomVec<float>(gen, len);
    const int n = len - 1 + 43;
    const std::vector<float> src = randomVec<float>(gen, n);
    RyxFirState st{};
    ryxsFirInit(taps.data(), len, nullptr, &st);
    std::vector<float> got(static_cast<size_t>(n));
    ryxsbFir(&st, src.data(), got.data(), n);
    std::vector<float> x(static_cast<size_t>(len - 1), 0.0f);
    x.insert(x.end(), src.begin(), src.end());
    // Outputs come from the staged buffer (the first len-1) and from src
    // (the rest), each part in groups of four then leftovers.
    auto check = [&](int first, int count) {
      for (int j = 0; j < count; ++j) {
        const int o = first + j;
        const size_t newest = static_cast<size_t>(o + len - 1);
        float want;
        if (j < count / 4 * 4) {
          float a = 0, b = 0, p = 0;
          int i = 0;
          if (len % 2 == 1) {
            b = taps[0] * x[newest];
            i = 1;
          }
          for (; i < len; i += 2) {
            b = b + p;
            a = a + x[newest - static_cast<size_t>(i)] * taps[static_cast<size_t>(i)];
            p = x[newest - static_cast<size_t>(i) - 1] * taps[static_cast<size_t>(i + 1)];
          }
          b = b + p;
          want = a + b;
        } else {
          ld acc = 0;
          for (int k = 0; k < len; ++k) acc += static_cast<ld>(x[newest - static_cast<size_t>(k)]) * taps[static_cast<size_t>(k)];
          want = static_cast<float>(acc);
        }
        ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], want)) << "taps " << len << " output " << o;
      }
    };
    check(0, len - 1);
    check(len - 1, n - (len - 1));
    ryxFirFree(&st);
  }
}

// Complex block kernel: two outputs a pass, the complex product formed as
// re = r*a - u*b, im = u*a + r*b in float, then the A/B/P accumulation.
TEST(FirOrder, ComplexBlockKernel) {
  std::mt19937 gen(16);
  for (int len : {1, 2, 3, 4, 5, 8, 13}) {
    std::vector<SCplx> taps = randomVec<SCplx>(gen, len);
    const int n = len - 1 + 7;
    const std::vector<SCplx> src = randomVec<SCplx>(gen, n);
    std::vector<SCplx> lineBuf(static_cast<size_t>(len));
    RyxFirTapState ts{};
    RyxFirDlyState ds{};
    ryxcFirlInit(taps.data(), len, &ts);
    ryxcFirlInitDlyl(&ts, lineBuf.data(), &ds);
    ryxcFirlSetDlyl(&ts, nullptr, &ds);
    std::vector<SCplx> got(static_cast<size_t>(n));
    ryxcbFirl(&ts, &ds, src.data(), got.data(), n);
    auto prod = [](SCplx h, SCplx x) { return SCplx{x.re * h.re - x.im * h.im, x.im * h.re + x.re * h.im}; };
    auto add = [](SCplx a, SCplx b) { return SCplx{a.re + b.re, a.im + b.im}; };
    for (int j = 0; j < 7; ++j) {
      const int o = len - 1 + j;
      SCplx want;
      if (j < 6) {
        SCplx a{0, 0}, b{0, 0}, p{0, 0};
        int i = 0;
        if (len % 2 == 1) {
          b = prod(taps[static_cast<size_t>(len - 1)], src[static_cast<size_t>(o - len + 1)]);
          i = 1;
        }
        for (; i < len; i += 2) {
          b = add(b, p);
          a = add(a, prod(taps[static_cast<size_t>(len - 1 - i)], src[static_cast<size_t>(o - len + 1 + i)]));
          p = prod(taps[static_cast<size_t>(len - 2 - i)], src[static_cast<size_t>(o - len + 2 + i)]);
        }
        want = add(a, add(b, p));
      } else {
        ld re = 0, im = 0;
        for (int k = 0; k < len; ++k) {
          const SCplx t = taps[static_cast<size_t>(k)], v = src[static_cast<size_t>(o - k)];
          re += static_cast<ld>(v.re) * t.re - static_cast<ld>(v.im) * t.im;
          im += static_cast<ld>(v.im) * t.re + static_cast<ld>(t.im) * v.re;
        }
        want = SCplx{static_cast<float>(re), static_cast<float>(im)};
      }
      ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], want)) << "taps " << len << " j " << j;
    }
  }
}

// Low-level double blocks: after the head, an odd output alone, then pairs
// from the three-multiplication form in long double.
TEST(FirOrder, DoubleBlockTwoParallelForm) {
  std::mt19937 gen(17);
  int differs = 0;
  for (int len = 1; len <= 12; ++len) {
    for (int extra : {1, 2, 5, 6}) {
      // Zero-mean taps on samples with a large offset: the result cancels,
      // so the rounding of the intermediate sums shows in the last bits.
      std::vector<double> taps = randomVec<double>(gen, len);
      double mean = 0;
      for (double t : taps) mean += t / len;
      if (len > 1)
        for (double& t : taps) t -= mean;
      const int n = len + extra;
      std::vector<double> src = randomVec<double>(gen, n);
      for (double& v : src) v += 1.0e6;
      std::vector<double> lineBuf(static_cast<size_t>(len));
      RyxFirTapState ts{};
      RyxFirDlyState ds{};
      ryxdFirlInit(taps.data(), len, &ts);
      ryxdFirlInitDlyl(&ts, lineBuf.data(), &ds);
      ryxdFirlSetDlyl(&ts, nullptr, &ds);
      std::vector<double> got(static_cast<size_t>(n));
      ryxdbFirl(&ts, &ds, src.data(), got.data(), n);
      auto x = [&](int i) { return i < 0 ? 0.0L : static_cast<ld>(src[static_cast<size_t>(i)]); };
      auto h = [&](int k) { return static_cast<ld>(taps[static_cast<size_t>(k)]); };
      auto plain = [&](int o) {
        ld acc = 0;
        for (int k = 0; k < len; ++k) acc += x(o - k) * h(k);
        return static_cast<double>(acc);
      };
      for (int o = 0; o < len; ++o) ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], plain(o))) << len << " head " << o;
      int o = len;
      if (extra % 2 == 1) {
        ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], plain(o)));
        ++o;
      }
      for (; o < n; o += 2) {
        ld y0 = 0, y1 = 0;
        int k = 0;
        if (len % 2 == 1) {
          y0 = x(o) * h(0);
          y1 = x(o + 1) * h(0);
          k = 1;
        }
        for (; k + 1 < len; k += 2) {
          const ld s = x(o - k) * (h(k) + h(k + 1));
          y0 = y0 + ((x(o - k - 1) - x(o - k)) * h(k + 1) + s);
          y1 = y1 + ((x(o - k + 1) - x(o - k)) * h(k) + s);
        }
        ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], static_cast<double>(y0))) << len << " pair " << o;
        ASSERT_TRUE(sameBits(got[static_cast<size_t>(o + 1)], static_cast<double>(y1))) << len << " pair " << o;
        differs += !sameBits(static_cast<double>(y0), plain(o)) + !sameBits(static_cast<double>(y1), plain(o + 1));
      }
    }
  }
  EXPECT_GT(differs, 0);
}

}  // namespace
}  // namespace firtest

namespace firtest {
namespace {

// Complex and mixed double blocks: the three-multiplication pairs with
// complex sums and differences, products re = r*a - u*b, im = u*a + b*r.
struct LC {
  ld re, im;
};
LC lc(double v) { return {v, 0}; }
LC lc(DCplx v) { return {v.re, v.im}; }
LC operator+(LC a, LC b) { return {a.re + b.re, a.im + b.im}; }
LC operator-(LC a, LC b) { return {a.re - b.re, a.im - b.im}; }
template <class S, class H>
LC lmul(const LC& x, const LC& h) {
  // Real factors multiply both parts of the complex one.
  if constexpr (std::is_same_v<H, double>) return {x.re * h.re, x.im * h.re};
  else if constexpr (std::is_same_v<S, double>) return {x.re * h.re, x.re * h.im};
  else return {x.re * h.re - x.im * h.im, x.im * h.re + h.im * x.re};
}

template <class C>
class DoublePairs : public ::testing::Test {};
using ComplexDoubles = ::testing::Types<ComboZ, ComboDZ, ComboZD>;
TYPED_TEST_SUITE(DoublePairs, ComplexDoubles, ComboNames);

TYPED_TEST(DoublePairs, TwoParallelFormWithComplexValues) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  std::mt19937 gen(18);
  for (int len : {1, 2, 3, 4, 7, 10}) {
    std::vector<H> taps = randomVec<H>(gen, len);
    const int n = len + 7;
    const std::vector<S> src = randomVec<S>(gen, n);
    std::vector<S> lineBuf(static_cast<size_t>(len));
    RyxFirTapState ts{};
    RyxFirDlyState ds{};
    TypeParam::firlInit(taps.data(), len, &ts);
    TypeParam::firlInitDlyl(&ts, lineBuf.data(), &ds);
    TypeParam::firlSetDlyl(&ts, nullptr, &ds);
    std::vector<DCplx> got(static_cast<size_t>(n));
    TypeParam::bFirl(&ts, &ds, src.data(), got.data(), n);
    auto x = [&](int i) { return lc(src[static_cast<size_t>(i)]); };
    auto h = [&](int k) { return lc(taps[static_cast<size_t>(k)]); };
    auto same = [](DCplx g, LC w) {
      return sameBits(g.re, static_cast<double>(w.re)) && sameBits(g.im, static_cast<double>(w.im));
    };
    // Head of len samples and the odd output: plain sums from tap 0.
    for (int o = 0; o <= len; ++o) {
      LC acc{0, 0};
      for (int k = 0; k < len && k <= o; ++k) acc = acc + lmul<S, H>(x(o - k), h(k));
      ASSERT_TRUE(same(got[static_cast<size_t>(o)], acc)) << len << " plain " << o;
    }
    for (int o = len + 1; o < n; o += 2) {
      LC y0{0, 0}, y1{0, 0};
      int k = 0;
      if (len % 2 == 1) {
        y0 = lmul<S, H>(x(o), h(0));
        y1 = lmul<S, H>(x(o + 1), h(0));
        k = 1;
      }
      for (; k + 1 < len; k += 2) {
        const LC s = lmul<S, H>(x(o - k), h(k) + h(k + 1));
        y0 = y0 + (lmul<S, H>(x(o - k - 1) - x(o - k), h(k + 1)) + s);
        y1 = y1 + (lmul<S, H>(x(o - k + 1) - x(o - k), h(k)) + s);
      }
      ASSERT_TRUE(same(got[static_cast<size_t>(o)], y0)) << len << " pair " << o;
      ASSERT_TRUE(same(got[static_cast<size_t>(o + 1)], y1)) << len << " pair " << o;
    }
  }
}

// Extended sums elsewhere run in one order: the high-level double forms and
// every multirate path of that form from the oldest sample of the span, the
// low-level multirate paths from the newest sample and the branch's first
// tap.
TEST(FirOrder, ExtendedSumsRunInStorageOrder) {
  std::mt19937 gen(19);
  const int len = 23;
  std::vector<double> taps = randomVec<double>(gen, len);
  double mean = 0;
  for (double t : taps) mean += t / len;
  for (double& t : taps) t -= mean;
  std::vector<double> src = randomVec<double>(gen, 240);
  for (double& v : src) v += 1.0e6;
  int differs = 0;

  // High-level single rate.
  RyxFirState st{};
  ryxdFirInit(taps.data(), len, nullptr, &st);
  std::vector<double> got(src.size());
  ryxdbFir(&st, src.data(), got.data(), static_cast<int>(src.size()));
  for (int o = len - 1; o < static_cast<int>(src.size()); ++o) {
    ld fwd = 0, bwd = 0;
    for (int k = len - 1; k >= 0; --k) fwd += static_cast<ld>(src[static_cast<size_t>(o - k)]) * taps[static_cast<size_t>(k)];
    for (int k = 0; k < len; ++k) bwd += static_cast<ld>(src[static_cast<size_t>(o - k)]) * taps[static_cast<size_t>(k)];
    ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], static_cast<double>(fwd))) << o;
    differs += !sameBits(static_cast<double>(fwd), static_cast<double>(bwd));
  }
  ryxFirFree(&st);

  // Interpolate by 3, phase 1: low-level from the newest, high-level from
  // the oldest sample of the branch.
  const int up = 3, upPhase = 1, iters = 80;
  RyxFirTapState ts{};
  RyxFirDlyState ds{};
  std::vector<double> line(8);
  ryxdFirlInitMr(taps.data(), len, up, upPhase, 1, 0, &ts);
  ryxdFirlInitDlyl(&ts, line.data(), &ds);
  ryxdFirlSetDlyl(&ts, nullptr, &ds);
  std::vector<double> low(static_cast<size_t>(iters * up)), high(low.size());
  ryxdbFirl(&ts, &ds, src.data(), low.data(), iters);
  ryxdFirInitMr(taps.data(), len, nullptr, up, upPhase, 1, 0, &st);
  ryxdbFir(&st, src.data(), high.data(), iters);
  ryxFirFree(&st);
  for (int t = 0; t < iters * up; ++t) {
    if (t < upPhase + up * 8) continue;  // past the start-up, full branches
    const int newest = (t - upPhase) / up;
    const int branch = t - (newest * up + upPhase);
    const int count = branch < len % up ? len / up + 1 : len / up;
    ld fromNewest = 0, fromOldest = 0;
    for (int k = 0; k < count; ++k)
      fromNewest += static_cast<ld>(src[static_cast<size_t>(newest - k)]) * taps[static_cast<size_t>(branch + k * up)];
    for (int k = count - 1; k >= 0; --k)
      fromOldest += static_cast<ld>(src[static_cast<size_t>(newest - k)]) * taps[static_cast<size_t>(branch + k * up)];
    ASSERT_TRUE(sameBits(low[static_cast<size_t>(t)], static_cast<double>(fromNewest))) << t;
    ASSERT_TRUE(sameBits(high[static_cast<size_t>(t)], static_cast<double>(fromOldest))) << t;
    differs += !sameBits(static_cast<double>(fromNewest), static_cast<double>(fromOldest));
  }
  EXPECT_GT(differs, 0);
}

}  // namespace
}  // namespace firtest
