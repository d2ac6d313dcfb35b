// The combining passes written out in the test: radix-2 decimation in time
// in long double, column k of a pass of half-length len using table entry
// k*r/2 (r = n/len) and columns k+len/2 the same entry times -i, the
// product conjugated for the inverse, every value rounded once on storing.
// Compared bit for bit with the library, interleaved and split, including
// the rule that a chunk's first combining step reads the W_C part of the
// table when the full length exceeds C.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "test_support.h"
#include "transform/fft_internal.h"

namespace {

using namespace ryxtest;

template <class T>
void modelCombine(std::vector<T>& re, std::vector<T>& im, std::size_t n, std::size_t len0, const T* base, int sign) {
  for (std::size_t len = len0; len < n; len *= 2) {
    const std::size_t r = n / len;
    for (std::size_t g = 0; g < n; g += 2 * len) {
      for (std::size_t k = 0; k < len; ++k) {
        const std::size_t kk = k < len / 2 ? k : k - len / 2;
        const T* t = base + kk * r;  // entry kk*r/2, two values per entry
        long double tr = t[0], ti = t[1];
        if (k >= len / 2) {  // -i * (tr + i ti) = ti - i tr
          const long double o = tr;
          tr = ti;
          ti = -o;
        }
        const long double pr = re[g + k + len], pi = im[g + k + len];
        long double qr, qi;
        if (sign >= 1) {
          qr = pr * tr - pi * ti;
          qi = pr * ti + pi * tr;
        } else {
          qr = pr * tr + pi * ti;
          qi = pi * tr - pr * ti;
        }
        const long double xr = re[g + k], xi = im[g + k];
        re[g + k] = static_cast<T>(xr + qr);
        im[g + k] = static_cast<T>(xi + qi);
        re[g + k + len] = static_cast<T>(xr - qr);
        im[g + k + len] = static_cast<T>(xi - qi);
      }
    }
  }
}

template <class T>
void checkCombine(std::size_t n, std::size_t len0, std::size_t fullN, int stripe, bool secondPart) {
  SCOPED_TRACE(testing::Message() << "n " << n << " len0 " << len0 << " fullN " << fullN << " size " << sizeof(T));
  const std::size_t c = sizeof(T) == 4 ? 32768 : 8192;
  Random rng(static_cast<std::uint32_t>(n + len0));
  // Any table values will do: the model reads the same entries.
  std::vector<T> tbl(2 * (fullN / 4 + (fullN > c ? c / 4 : 0)));
  for (auto& v : tbl) v = static_cast<T>(rng.f64(-1, 1));
  const T* base = secondPart ? tbl.data() + 2 * (fullN / 4) : tbl.data();
  std::vector<T> re(n), im(n);
  for (std::size_t i = 0; i < n; ++i) {
    re[i] = static_cast<T>(rng.f64());
    im[i] = static_cast<T>(rng.f64());
  }
  const auto un = static_cast<std::uint32_t>(n), ul = static_cast<std::uint32_t>(len0),
             uf = static_cast<std::uint32_t>(fullN);
  const int cn = static_cast<int>(n);
  for (int sign : {1, -1}) {
    std::vector<T> wr = re, wi = im, inter(2 * n), sr = re, si = im;
    modelCombine(wr, wi, n, len0, base, sign);
    for (std::size_t i = 0; i < n; ++i) {
      inter[2 * i] = re[i];
      inter[2 * i + 1] = im[i];
    }
    if constexpr (sizeof(T) == 4) {
      ownsFftCombine(reinterpret_cast<SCplx*>(inter.data()), un, ul, tbl.data(), uf, sign, stripe);
      ownsFftSplitCombine(sr.data(), si.data(), un, ul, tbl.data(), uf, sign, stripe);
    } else {
      owndFftCombine(reinterpret_cast<DCplx*>(inter.data()), un, ul, tbl.data(), uf, sign, stripe);
      owndFftSplitCombine(sr.data(), si.data(), un, ul, tbl.data(), uf, sign, stripe);
    }
    EXPECT_TRUE(sameBits(sr.data(), wr.data(), cn) && sameBits(si.data(), wi.data(), cn)) << "split, sign " << sign;
    for (std::size_t i = 0; i < n; ++i) {
      sr[i] = inter[2 * i];
      si[i] = inter[2 * i + 1];
    }
    EXPECT_TRUE(sameBits(sr.data(), wr.data(), cn) && sameBits(si.data(), wi.data(), cn)) << "interleaved, sign " << sign;
  }
}

TEST(CombineModel, PassesBitForBit) {
  // Small lengths with the stripe in range, first part of the table.
  checkCombine<float>(1024, 256, 1024, 16, false);
  checkCombine<double>(1024, 128, 1024, 8, false);
  // The final call of a large transform reads W_fullN.
  checkCombine<float>(65536, 32768, 65536, 256, false);
  checkCombine<double>(16384, 8192, 16384, 128, false);
  // A chunk's step from B to C of a transform longer than C reads W_C.
  checkCombine<float>(32768, 16384, 65536, 256, true);
  checkCombine<double>(8192, 4096, 16384, 256, true);
}

}  // namespace
