// Paths that work in batches: Gaussian blocks (points drawn 16 pairs at a
// time) against single calls, and Kaiser weights (made 32 pairs at a time)
// against a pair-by-pair model of the running argument and the printed
// Abramowitz-Stegun polynomials, bit for bit across batch boundaries.
#include <random>

#include "gen_support.h"

namespace gentest {
namespace {

template <class St, class T, class A>
void blocksMatchSingles(void (*init)(A, A, A, St*), T (*one)(St*), void (*block)(St*, T*, int), A stDev) {
  St a, b;
  for (St* s : {&a, &b}) init(5, 1, stDev, s);
  std::mt19937 cut(7);
  for (int turn = 0; turn < 40; ++turn) {  // odd and even cuts, some past several batches
    std::vector<T> got(1 + cut() % 90), want(got.size());
    block(&a, got.data(), static_cast<int>(got.size()));
    for (T& x : want) x = one(&b);
    ASSERT_TRUE(ryxtest::sameBits(got.data(), want.data(), static_cast<int>(got.size()))) << turn;
  }
}

TEST(BatchedPaths, GaussianBlocksInRandomCutsEqualSingleCalls) {
  blocksMatchSingles(ryxsRandGausInit, ryxsRandGaus, ryxsbRandGaus, 1.0f);
  blocksMatchSingles(ryxcRandGausInit, ryxcRandGaus, ryxcbRandGaus, 1.0f);
  blocksMatchSingles(ryxdRandGausInit, ryxdRandGaus, ryxdbRandGaus, 1.0);
  blocksMatchSingles(ryxzRandGausInit, ryxzRandGaus, ryxzbRandGaus, 1.0);
  blocksMatchSingles<RyxRandGausI16State, short, short>(ryxwRandGausInit, ryxwRandGaus, ryxwbRandGaus, 3000);
  blocksMatchSingles<RyxRandGausI16State, WCplx, short>(ryxvRandGausInit, ryxvRandGaus, ryxvbRandGaus, 3000);
}

Wide i0Small(Wide t2) {
  return 1 + t2 * (3.5156229L + t2 * (3.0899424L + t2 * (1.2067492L + t2 * (0.2659732L + t2 * (0.0360768L + t2 * 0.0045813L)))));
}
Wide i0Large(Wide x) {
  const Wide t = 3.75L / x;
  Wide p = 0;  // Horner from the highest coefficient
  for (Wide c : {0.00392377L, -0.01647633L, 0.02635537L, -0.02057706L, 0.00916281L, -0.00157565L, 0.00225319L, 0.01328592L, 0.39894228L})
    p = c + t * p;
  return std::exp(x) / std::sqrt(x) * p;
}

// One weight per pair from r = alpha^2*k*(n-1-k), accumulated in double.
std::vector<Wide> kaiserWeights(int n, double alpha) {
  const double x0 = std::fabs((n - 1) * alpha * 0.5);
  const Wide norm = 1 / (x0 < 3.75 ? i0Small((x0 / 3.75L) * (x0 / 3.75L)) : i0Large(x0));
  std::vector<Wide> w;
  double r = 0;
  for (int k = 0; k < n / 2; r += static_cast<double>(n - 2 - 2 * k++) * alpha * alpha)
    w.push_back((r < 14.0625 ? i0Small(r * (1 / 14.0625L)) : i0Large(std::sqrt(static_cast<Wide>(r)))) * norm);
  return w;
}

// Each sample times its pair's weight in long double, rounded to the type
// (16-bit: to nearest even, wrapped).
template <class T>
void expectKaiser(void (*win)(T*, int, decltype(T{} * 1.0f)), int n, float alpha) {
  std::vector<T> v(n), want(n);
  for (int i = 0; i < n; ++i) v[i] = want[i] = static_cast<T>(sizeof(T) == 2 ? 97 * i : 1 + i);
  const std::vector<Wide> w = kaiserWeights(n, alpha);
  for (int k = 0; k < n / 2; ++k)
    for (int i : {k, n - 1 - k})
      want[i] = sizeof(T) == 2 ? T(std::int64_t(std::nearbyint(double(want[i] * w[k])))) : T(want[i] * w[k]);
  win(v.data(), n, alpha);
  ASSERT_TRUE(ryxtest::sameBits(v.data(), want.data(), n)) << n << " " << alpha;
}

TEST(BatchedPaths, KaiserEqualsThePairByPairModel) {
  for (int n : {3, 64, 65, 66, 130, 1000})
    for (float alpha : {0.01f, 9.0f / (n - 1), 70.0f / (n - 1)}) {
      expectKaiser<float>(ryxsWinKaiser, n, alpha);
      expectKaiser<double>(ryxdWinKaiser, n, alpha);
      expectKaiser<short>(ryxwWinKaiser, n, alpha);
    }
}

}  // namespace
}  // namespace gentest
