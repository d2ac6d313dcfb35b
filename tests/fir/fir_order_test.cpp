// The documented order of the sums, which decides the last bits, written out
// here independently and compared bit for bit. Each test also counts how
// often a plain sequential sum would differ, so that it is known to tell
// the orders apart.
#include <algorithm>

#include "fir_support.h"

namespace firtest {
namespace {

// ---- Float single-sample orders -----------------------------------------------
//
// x is the line newest first, h the taps; x[k] multiplies h[k].

// Real: head of n mod 4 products one after another into lane 0, then one
// product per lane, folded (0+2)+(1+3).
float lanes(const float* x, const float* h, int n) {
  float lane[4] = {0, 0, 0, 0};
  const int head = n % 4;
  for (int k = 0; k < head; ++k) lane[0] = (k == 0) ? x[k] * h[k] : lane[0] + x[k] * h[k];
  if (n < 4) return lane[0];
  for (int k = head; k < n; ++k) lane[(k - head) % 4] += x[k] * h[k];
  return (lane[0] + lane[2]) + (lane[1] + lane[3]);
}

// Complex: four running sums in tap order, then re = ((ra + ub) - ub) - ub.
SCplx lanes(const SCplx* x, const SCplx* h, int n) {
  float ra = 0, ua = 0, ub = 0, rb = 0;
  for (int k = 0; k < n; ++k) {
    ra = (k == 0) ? x[k].re * h[k].re : ra + x[k].re * h[k].re;
    ua = (k == 0) ? x[k].im * h[k].re : ua + x[k].im * h[k].re;
    ub = (k == 0) ? x[k].im * h[k].im : ub + x[k].im * h[k].im;
    rb = (k == 0) ? x[k].re * h[k].im : rb + x[k].re * h[k].im;
  }
  float re = ra + ub;
  re = re - ub;
  re = re - ub;
  return {re, ua + rb};
}

// Mixed real and complex: even and odd partial sums, a leading odd tap first.
template <class S, class H>
SCplx lanes(const S* x, const H* h, int n) {
  SCplx e{0, 0}, o{0, 0};
  int k = 0;
  if (n % 2 == 1) {
    e = fmul(x[0], h[0]);
    k = 1;
  }
  for (; k < n; k += 2) {
    e = e + fmul(x[k], h[k]);
    o = o + fmul(x[k + 1], h[k + 1]);
  }
  return e + o;
}

template <class S, class H>
auto sequential(const S* x, const H* h, int n) {
  decltype(fmul(x[0], h[0])) s{};
  for (int k = 0; k < n; ++k) s = s + fmul(x[k], h[k]);
  return s;
}

// Newest-first line of `len` samples ending at x[at].
template <class S>
std::vector<S> lineAt(const std::vector<S>& x, int at, int len) {
  std::vector<S> line(static_cast<size_t>(len), S{});
  for (int k = 0; k < len && k <= at; ++k) line[static_cast<size_t>(k)] = x[static_cast<size_t>(at - k)];
  return line;
}

template <class F>
void forParts(float& v, F f) {
  f(v);
}
template <class F>
void forParts(SCplx& v, F f) {
  f(v.re);
  f(v.im);
}

template <class T>
std::vector<T> reversed(const std::vector<T>& v) {
  return std::vector<T>(v.rbegin(), v.rend());
}

template <class C>
class FloatOrder : public ::testing::Test {};
using FloatCombos = ::testing::Types<ComboS, ComboC, ComboSC, ComboCS>;
TYPED_TEST_SUITE(FloatOrder, FloatCombos, ComboNames);

// Float blocks: outputs in groups of four (real) or two (complex results)
// from the pass kernel, the outputs left over in long double from tap 0
// upward. The low-level form runs the first tapsLen - 1 outputs through the
// line as single samples, then the kernel over src with products from the
// oldest sample and the last tap; the record runs the staged history part
// and the src part each through the kernel, with products from the newest
// sample and tap 0. Then one more single sample, through the form with an
// output argument where there is one on every other round: the low-level
// lanes run over the line newest first against the taps, the record's over
// its history oldest first against its reversed taps.
TYPED_TEST(FloatOrder, BlocksAndSingleSamples) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  const int width = std::is_same_v<O, float> ? 4 : 2;
  std::mt19937 gen(14);
  int differs = 0, lanesDiffer = 0;
  for (int len = 1; len <= 20; ++len) {
    // Fewer outputs than a pass up to several passes of sixteen and of 32.
    for (int extra : {1, 2, 3, 4, 5, 6, 7, 8, 9, 16, 19, 23, 36, 50, 75}) {
      std::vector<H> taps = randomVec<H>(gen, len);
      std::vector<S> hist = randomVec<S>(gen, len - 1);
      const int n = len - 1 + extra;
      std::vector<S> src = randomVec<S>(gen, n);
      if (extra % 2 == 0) {
        // Samples of +-1 and taps of +-2^40 or +-2^-30: when the large
        // products cancel, the small ones absorbed on the way show the order
        // of the extended sums.
        auto pm = [&](float m) { return std::uniform_int_distribution<int>(0, 1)(gen) ? m : -m; };
        auto wide = [&](float& v, bool tap) { v = pm(tap ? std::ldexp(1.0f, gen() % 2 ? 40 : -30) : 1.0f); };
        for (H& t : taps) forParts(t, [&](float& v) { wide(v, true); });
        for (S& v : hist) forParts(v, [&](float& p) { wide(p, false); });
        for (S& v : src) forParts(v, [&](float& p) { wide(p, false); });
      }
      Low<TypeParam> low;
      High<TypeParam> high;
      low.init(taps, hist);
      high.init(taps, hist);
      std::vector<O> gotLow(static_cast<size_t>(n)), gotHigh(gotLow.size());
      low.block(src.data(), gotLow.data(), n);
      high.block(src.data(), gotHigh.data(), n);

      std::vector<S> x = hist;
      x.insert(x.end(), src.begin(), src.end());
      auto xs = [&](int i) { return x[static_cast<size_t>(i)]; };
      auto hs = [&](int k) { return taps[static_cast<size_t>(k)]; };
      // Output o has its newest sample at x[len - 1 + o].
      auto extended = [&](int newest) {
        RC acc{0, 0};
        for (int k = 0; k < len; ++k) acc = acc + toRC(xs(newest - k)) * toRC(hs(k));
        return fromRC<O>(acc);
      };
      for (int o = 0; o < n; ++o) {
        const int newest = len - 1 + o;
        if (o < len - 1) {
          const std::vector<S> line = lineAt(x, newest, len);
          const O want = lanes(line.data(), taps.data(), len);
          ASSERT_TRUE(sameBits(gotLow[static_cast<size_t>(o)], want)) << len;
          lanesDiffer += !sameBits(want, sequential(line.data(), taps.data(), len));
        } else {
          const int j = o - (len - 1);
          auto prod = [&](int i) { return fmul(xs(newest - (len - 1) + i), hs(len - 1 - i)); };
          const O want = j < extra / width * width ? pendingSum<O>(len, prod) : extended(newest);
          ASSERT_TRUE(sameBits(gotLow[static_cast<size_t>(o)], want)) << "line " << len << "/" << extra << " o " << o;
          const std::vector<S> line = lineAt(x, newest, len);
          differs += !sameBits(want, sequential(line.data(), taps.data(), len));
        }
        const int first = o < len - 1 ? 0 : len - 1;
        const int count = o < len - 1 ? len - 1 : extra;
        const O want = o - first < count / width * width
                           ? pendingSum<O>(len, [&](int i) { return fmul(xs(newest - i), hs(i)); })
                           : extended(newest);
        ASSERT_TRUE(sameBits(gotHigh[static_cast<size_t>(o)], want)) << "record " << len << "/" << extra << " o " << o;
      }

      const S next = randomVec<S>(gen, 1)[0];
      x.push_back(next);
      const std::vector<S> line = lineAt(x, static_cast<int>(x.size()) - 1, len);
      O nextLow, nextHigh;
      if constexpr (std::is_same_v<O, float>) {
        nextLow = low.one(next);
        nextHigh = high.one(next);
      } else if (extra % 2 == 1) {
        TypeParam::firlOut(&low.ts, &low.ds, next, &nextLow);
        TypeParam::firOut(&high.st, next, &nextHigh);
      } else {
        nextLow = low.one(next);
        nextHigh = high.one(next);
      }
      const O want = lanes(line.data(), taps.data(), len);
      ASSERT_TRUE(sameBits(nextLow, want)) << "taps " << len << " extra " << extra;
      ASSERT_TRUE(sameBits(nextHigh, lanes(reversed(line).data(), reversed(taps).data(), len))) << "taps " << len;
      lanesDiffer += !sameBits(want, sequential(line.data(), taps.data(), len));
    }
  }
  EXPECT_GT(differs, 0);
  EXPECT_GT(lanesDiffer, 0);
}

// ---- Double orders ---------------------------------------------------------------

// Zero-mean taps on samples with a large offset: the results cancel, so the
// rounding of the intermediate sums shows in the last bits.
template <class T>
void shift(T& v, ld re, ld im) {
  if constexpr (std::is_same_v<T, double>) {
    v = static_cast<double>(v + re);
  } else {
    v = {static_cast<double>(v.re + re), static_cast<double>(v.im + im)};
  }
}
template <class T>
void centre(std::vector<T>& v) {
  RC mean{0, 0};
  for (const T& t : v) mean = mean + RC{toRC(t).re / v.size(), toRC(t).im / v.size()};
  if (v.size() > 1)
    for (T& t : v) shift(t, -mean.re, -mean.im);
}

template <class C>
class DoubleOrder : public ::testing::Test {};
using DoubleCombos = ::testing::Types<ComboD, ComboZ, ComboDZ, ComboZD>;
TYPED_TEST_SUITE(DoubleOrder, DoubleCombos, ComboNames);

// Low-level double blocks: the first tapsLen outputs through the line and
// an odd output alone as plain extended sums from tap 0, then pairs from the
// three-multiplication form in long double: for taps h0, h1 and samples
// xm, x, xp, s = (h0 + h1)*x, y0 += (xm - x)*h1 + s, y1 += (xp - x)*h0 + s.
TYPED_TEST(DoubleOrder, LowLevelTwoParallelForm) {
  using S = typename TypeParam::S;
  using H = typename TypeParam::H;
  using O = typename TypeParam::O;
  std::mt19937 gen(17);
  int differs = 0;
  for (int len = 1; len <= 12; ++len) {
    for (int extra : {1, 2, 5, 6}) {
      std::vector<H> taps = randomVec<H>(gen, len);
      centre(taps);
      const int n = len + extra;
      std::vector<S> src = randomVec<S>(gen, n);
      for (S& v : src) shift(v, 1.0e6L, 1.0e6L);
      Low<TypeParam> f;
      f.init(taps, {});
      std::vector<O> got(static_cast<size_t>(n));
      f.block(src.data(), got.data(), n);
      auto x = [&](int i) { return i < 0 ? RC{0, 0} : toRC(src[static_cast<size_t>(i)]); };
      auto h = [&](int k) { return toRC(taps[static_cast<size_t>(k)]); };
      auto plain = [&](int o) {
        RC acc{0, 0};
        for (int k = 0; k < len && k <= o; ++k) acc = acc + x(o - k) * h(k);
        return fromRC<O>(acc);
      };
      const int pairsFrom = len + extra % 2;
      for (int o = 0; o < pairsFrom; ++o)
        ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], plain(o))) << len << " plain " << o;
      for (int o = pairsFrom; o < n; o += 2) {
        RC y0{0, 0}, y1{0, 0};
        int k = 0;
        if (len % 2 == 1) {
          y0 = x(o) * h(0);
          y1 = x(o + 1) * h(0);
          k = 1;
        }
        for (; k + 1 < len; k += 2) {
          const RC s = x(o - k) * (h(k) + h(k + 1));
          y0 = y0 + ((x(o - k - 1) - x(o - k)) * h(k + 1) + s);
          y1 = y1 + ((x(o - k + 1) - x(o - k)) * h(k) + s);
        }
        ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], fromRC<O>(y0))) << len << " pair " << o;
        ASSERT_TRUE(sameBits(got[static_cast<size_t>(o + 1)], fromRC<O>(y1))) << len << " pair " << o;
        differs += !sameBits(fromRC<O>(y0), plain(o)) + !sameBits(fromRC<O>(y1), plain(o + 1));
      }
    }
  }
  EXPECT_GT(differs, 0);
}

// Extended sums elsewhere run in one order: the high-level double forms and
// every multirate path of that form from the oldest sample of the span, the
// low-level multirate paths from the newest sample and the branch's first
// tap.
TEST(FirOrder, ExtendedSumsRunInStorageOrder) {
  std::mt19937 gen(19);
  const int len = 23;
  std::vector<double> taps = randomVec<double>(gen, len);
  centre(taps);
  std::vector<double> src = randomVec<double>(gen, 240);
  for (double& v : src) v += 1.0e6;
  auto x = [&](int i) { return static_cast<ld>(src[static_cast<size_t>(i)]); };
  int differs = 0;

  // High-level single rate.
  High<ComboD> single;
  single.init(taps, {});
  std::vector<double> got(src.size());
  single.block(src.data(), got.data(), static_cast<int>(src.size()));
  for (int o = len - 1; o < static_cast<int>(src.size()); ++o) {
    ld fwd = 0, bwd = 0;
    for (int k = len - 1; k >= 0; --k) fwd += x(o - k) * taps[static_cast<size_t>(k)];
    for (int k = 0; k < len; ++k) bwd += x(o - k) * taps[static_cast<size_t>(k)];
    ASSERT_TRUE(sameBits(got[static_cast<size_t>(o)], static_cast<double>(fwd))) << o;
    differs += !sameBits(static_cast<double>(fwd), static_cast<double>(bwd));
  }

  // Interpolate by 3, phase 1: low-level from the newest, high-level from
  // the oldest sample of the branch.
  const Rates r{3, 1, 1, 0};
  const int iters = 80;
  Low<ComboD> low;
  High<ComboD> high;
  low.init(taps, {}, r);
  high.init(taps, {}, r);
  std::vector<double> lowOut(static_cast<size_t>(iters * r.up)), highOut(lowOut.size());
  low.block(src.data(), lowOut.data(), iters);
  high.block(src.data(), highOut.data(), iters);
  for (int t = r.upPhase + r.up * 8; t < iters * r.up; ++t) {  // past the start-up: full branches
    const int newest = (t - r.upPhase) / r.up;
    const int branch = t - (newest * r.up + r.upPhase);
    const int count = branch < len % r.up ? len / r.up + 1 : len / r.up;
    ld fromNewest = 0, fromOldest = 0;
    for (int k = 0; k < count; ++k) fromNewest += x(newest - k) * taps[static_cast<size_t>(branch + k * r.up)];
    for (int k = count - 1; k >= 0; --k) fromOldest += x(newest - k) * taps[static_cast<size_t>(branch + k * r.up)];
    ASSERT_TRUE(sameBits(lowOut[static_cast<size_t>(t)], static_cast<double>(fromNewest))) << t;
    ASSERT_TRUE(sameBits(highOut[static_cast<size_t>(t)], static_cast<double>(fromOldest))) << t;
    differs += !sameBits(static_cast<double>(fromNewest), static_cast<double>(fromOldest));
  }
  EXPECT_GT(differs, 0);
}

}  // namespace
}  // namespace firtest
