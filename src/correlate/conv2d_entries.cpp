// Entries of the 2-D convolution (source group "ryxcnv2d") and the 2-D
// filter (groups "ryxfir2", "ryxfir2w"), and their method rules.
#include <cstdint>

#include "correlate/conv2d_core.h"
#include "correlate/int16_narrow.h"
#include "correlate/op_counts.h"
#include "ryxcore/correlate.h"
#include "vector/scale_narrow.h"

namespace ryx::corr {

Conv2dMethod chooseConv2d(int xCols, int xRows, int hCols, int hRows) {
  if ((std::max(xRows, hRows) < 17 && std::max(xCols, hCols) < 17) || (xRows < 8 && xCols < 8) ||
      (hRows < 8 && hCols < 8))
    return Conv2dMethod::kDirect;
  if ((xRows == 1 && hRows == 1) || (xCols == 1 && hCols == 1)) return Conv2dMethod::kOneDim;
  const long long dC = static_cast<long long>(xCols) - hCols, dR = static_cast<long long>(xRows) - hRows;
  if ((dR >= hRows && dC >= 0) || (dR >= 0 && dC >= hCols) || (2LL * xRows - hRows < 1 && dC < 1) ||
      (dR < 1 && xCols + dC < 1))
    return Conv2dMethod::kOverlap;
  return Conv2dMethod::kHartley;
}

bool filter2dBlockWins(int xCols, int xRows, int hCols, int hRows) {
  const long long R = up2(hRows), C = up2(hCols);
  auto ceilDiv = [](long long a, long long b) { return (a + b - 1) / b; };
  const double n = static_cast<double>(ceilDiv(xCols, C - hCols + 1) * ceilDiv(xRows, R - hRows + 1));
  auto W = [](long long a, long long b) { return 2.0 * static_cast<double>(a) * static_cast<double>(b); };
  auto S = [](long long k) { return k < 2 ? 3.0 : static_cast<double>((std::max(k - 2, 0LL) * 14) / 2 + 6); };
  const double Q = R < 2 ? opH(C) : 2 * opH(C) + static_cast<double>(std::max(R / 2 - 1, 0LL) * C * 36);
  const double T = opF(R) * static_cast<double>(C / 2) + static_cast<double>(R) * opF(C / 2) + Q;
  const double M = R < 2 ? S(C) : 2 * S(C) + static_cast<double>((std::max(R - 2, 0LL) * 14 * C) / 2);
  const double block = (W(R - hRows + 1, C - hCols + 1) + 2 * T + M + W(R, C)) * n + T;
  const double direct = 4.0 * static_cast<double>(xCols) * xRows * static_cast<double>(hCols) * hRows;
  return direct > block;
}

namespace {

constexpr Conv2dNames kS2{"ryxsConv2D", "ownsHftConv2d", "ownsOverlapConv2d"};
constexpr Conv2dNames kD2{"ryxdConv2D", "owndHftConv2d", "owndOverlapConv2d"};

bool conv2dArgsPass(const char* name, const void* x, int xCols, int xRows, const void* h, int hCols, int hRows,
                    const void* y) {
  constexpr const char* kNull = "\nNull pointer to data buffer\n";
  constexpr const char* kSize = "\nBad value of data buffer size\n";
  return passFirst({name, kConv2dStem}, {{x == nullptr, kNull},
                                         {h == nullptr, kNull},
                                         {y == nullptr, kNull},
                                         {xCols < 1, kSize},
                                         {xRows < 1, kSize},
                                         {hCols < 1, kSize},
                                         {hRows < 1, kSize}});
}

template <class T>
void conv2d(const Conv2dNames& nm, RyxStatus (*conv1d)(const T*, int, const T*, int, T*), const T* x, int xCols,
            int xRows, const T* h, int hCols, int hRows, T* y) {
  if (!conv2dArgsPass(nm.entry, x, xCols, xRows, h, hCols, hRows, y)) return;
  ryxSetErrStatus(RYX_StsOk);
  switch (chooseConv2d(xCols, xRows, hCols, hRows)) {
    case Conv2dMethod::kDirect: return conv2dDirect(x, xCols, xRows, h, hCols, hRows, y);
    case Conv2dMethod::kOneDim:
      if (xRows == 1 && hRows == 1) conv1d(x, xCols, h, hCols, y);
      else conv1d(x, xRows, h, hRows, y);
      failedInside({nm.entry, kConv2dStem});
      return;
    case Conv2dMethod::kOverlap: return conv2dOverlap(nm, x, xCols, xRows, h, hCols, hRows, y);
    case Conv2dMethod::kHartley: return conv2dHartley(nm, x, xCols, xRows, h, hCols, hRows, y);
  }
}

// Sum for one output of the 2-D filter over the kernel's valid overlap, by
// `acc(partial, xValue, hValue)` into four partial sums along each row.
template <class T, class A, class F>
void filterPoint(const T* x, int xCols, int xRows, const T* h, int hCols, int hRows, long long r, long long c,
                 A (&part)[4], F acc) {
  for (int i = 0; i < hRows; ++i) {
    const long long a = r + hRows / 2 - i;
    if (a < 0 || a >= xRows) continue;
    for (int j = 0; j < hCols; ++j) {
      const long long b = c + hCols / 2 - j;
      if (b < 0 || b >= xCols) continue;
      acc(part[j & 3], x[a * xCols + b], h[static_cast<long long>(i) * hCols + j]);
    }
  }
}

template <class T>
void filter2dDirect(const T* x, int xCols, int xRows, const T* h, int hCols, int hRows, T* y) {
  for (long long r = 0; r < xRows; ++r)
    for (long long c = 0; c < xCols; ++c) {
      double part[4] = {0, 0, 0, 0};
      filterPoint(x, xCols, xRows, h, hCols, hRows, r, c, part,
                  [](double& p, T a, T b) { p += static_cast<double>(a) * static_cast<double>(b); });
      y[r * xCols + c] = static_cast<T>((part[0] + part[1]) + (part[2] + part[3]));
    }
}

// 2-D complex transform of an R x C array through the exported FFT: rows,
// then gathered columns, left bit-reversed forward and read so inverse.
template <class R>
void fft2d(ComplexOf<R>* a, int oR, int oC, ComplexOf<R>* col, bool inverse) {
  const int rows = 1 << oR, cols = 1 << oC;
  auto rowPass = [&](int flags) {
    for (int r = 0; r < rows; ++r) Fft<R>::cplx(a + static_cast<long long>(r) * cols, oC, flags);
  };
  auto colPass = [&](int flags) {
    for (int c = 0; c < cols; ++c) {
      for (int r = 0; r < rows; ++r) col[r] = a[static_cast<long long>(r) * cols + c];
      Fft<R>::cplx(col, oR, flags);
      for (int r = 0; r < rows; ++r) a[static_cast<long long>(r) * cols + c] = col[r];
    }
  };
  if (inverse) {
    colPass(RYX_Inverse | RYX_InReversed);
    rowPass(RYX_Inverse | RYX_InReversed);
  } else {
    rowPass(RYX_Forward | RYX_OutReversed);
    colPass(RYX_Forward | RYX_OutReversed);
  }
}

// Block method of the 2-D filter: the padded kernel's spectrum once, then
// per output tile the input with its border (zero outside the image),
// product, back; false when the working arrays are not available.
template <class T>
bool filter2dBlocks(const T* x, int xCols, int xRows, const T* h, int hCols, int hRows, T* y) {
  using Cx = ComplexOf<T>;
  const int R = static_cast<int>(up2(hRows)), C = static_cast<int>(up2(hCols));
  const int oR = floorLog2(R), oC = floorLog2(C);
  Scratch s;
  Cx* a = s.take<Cx>(static_cast<long long>(R) * C);
  Cx* k = s.take<Cx>(static_cast<long long>(R) * C);
  Cx* col = s.take<Cx>(R);
  if (!s.ok()) return false;
  Fft<T>::cplx(nullptr, oR, RYX_Init);
  Fft<T>::cplx(nullptr, oC, RYX_Init);
  if (ryxGetErrStatus() < 0) return false;
  for (int i = 0; i < hRows; ++i)
    for (int j = 0; j < hCols; ++j) k[static_cast<long long>(i) * C + j] = {h[static_cast<long long>(i) * hCols + j], 0};
  fft2d<T>(k, oR, oC, col, false);
  const int tileR = R - hRows + 1, tileC = C - hCols + 1;
  for (long long r0 = 0; r0 < xRows; r0 += tileR)
    for (long long c0 = 0; c0 < xCols; c0 += tileC) {
      const long long br = r0 + hRows / 2 - (hRows - 1), bc = c0 + hCols / 2 - (hCols - 1);
      for (long long i = 0; i < R; ++i)
        for (long long j = 0; j < C; ++j) {
          const long long sr = br + i, sc = bc + j;
          const bool in = sr >= 0 && sr < xRows && sc >= 0 && sc < xCols;
          a[i * C + j] = {in ? x[sr * xCols + sc] : T{}, T{}};
        }
      fft2d<T>(a, oR, oC, col, false);
      for (long long i = 0; i < static_cast<long long>(R) * C; ++i) a[i] = mul(a[i], k[i]);
      fft2d<T>(a, oR, oC, col, true);
      const long long rows = std::min<long long>(tileR, xRows - r0), cols = std::min<long long>(tileC, xCols - c0);
      for (long long i = 0; i < rows; ++i)
        for (long long j = 0; j < cols; ++j) y[(r0 + i) * xCols + c0 + j] = a[(hRows - 1 + i) * C + hCols - 1 + j].re;
    }
  return true;
}

bool filter2dArgsPass(const char* name, const char* file, const void* x, int xCols, int xRows, const void* h,
                      int hCols, int hRows, const void* y) {
  return passFirst({name, file}, {{x == nullptr || h == nullptr, "Null SRC buffer pointer"},
                                  {y == nullptr, "Null DST buffer pointer"},
                                  {xCols < 1, "Invalid number of cols"},
                                  {xRows < 1, "Inlalid number of rows"},
                                  {hCols < 1, "Invalid number of cols"},
                                  {hRows < 1, "Inlalid number of rows"}});
}

template <class T>
void filter2d(const char* name, const T* x, int xCols, int xRows, const T* h, int hCols, int hRows, T* y) {
  if (!filter2dArgsPass(name, "ryxfir2", x, xCols, xRows, h, hCols, hRows, y)) return;
  ryxSetErrStatus(RYX_StsOk);
  if (filter2dBlockWins(xCols, xRows, hCols, hRows) && filter2dBlocks(x, xCols, xRows, h, hCols, hRows, y)) return;
  filter2dDirect(x, xCols, xRows, h, hCols, hRows, y);
}

// ---- 16 bits ----

constexpr const char* kW2 = "ryxwConv2D";

void wConv2dFloat(const short* x, int xCols, int xRows, const short* h, int hCols, int hRows, short* y,
                  int scaleMode, int* scaleFactor) {
  const Site site{kW2, kConv2dStem};
  const long long nx = static_cast<long long>(xCols) * xRows, nh = static_cast<long long>(hCols) * hRows;
  const long long ny = (static_cast<long long>(xCols) + hCols - 1) * (static_cast<long long>(xRows) + hRows - 1);
  Scratch s;
  float* xf = s.take<float>(nx);
  float* hf = s.take<float>(nh);
  float* yf = s.take<float>(ny);
  if (!s.ok()) return reportNoMem(site, kNoMem2d);
  ryxsbIntToFloat(x, xf, static_cast<int>(nx), 16, 0);
  ryxsbIntToFloat(h, hf, static_cast<int>(nh), 16, 0);
  ryxsConv2D(xf, xCols, xRows, hf, hCols, hRows, yf);
  if (failedInside(site)) return;
  ownScaleArrayF32(yf, y, static_cast<int>(ny), scaleMode, scaleFactor);
}

// Exact 32-bit sums (wrapping), narrowed as the 1-D integer kernel does.
void wConv2dDirect(const short* x, int xCols, int xRows, const short* h, int hCols, int hRows, short* y,
                   int scaleMode, const int* scaleFactor) {
  const int f = (scaleMode & RYX_FIXED_SCALE) && scaleFactor != nullptr ? *scaleFactor : 0;
  const long long yr = static_cast<long long>(xRows) + hRows - 1, yc = static_cast<long long>(xCols) + hCols - 1;
  for (long long r = 0; r < yr; ++r)
    for (long long c = 0; c < yc; ++c) {
      std::uint32_t acc = 0;
      for (long long a = std::max(0LL, r - hRows + 1); a <= std::min<long long>(r, xRows - 1); ++a)
        for (long long b = std::max(0LL, c - hCols + 1); b <= std::min<long long>(c, xCols - 1); ++b)
          acc += static_cast<std::uint32_t>(x[a * xCols + b] * h[(r - a) * hCols + (c - b)]);
      y[r * yc + c] = narrowShifted(static_cast<std::int32_t>(acc), f, (scaleMode & RYX_SATURATE) != 0);
    }
}

}  // namespace
}  // namespace ryx::corr

using namespace ryx;
using namespace ryx::corr;

extern "C" {
void ryxsConv2D(const float* x, int xCols, int xRows, const float* h, int hCols, int hRows, float* y) {
  conv2d(kS2, ryxsConv, x, xCols, xRows, h, hCols, hRows, y);
}
void ryxdConv2D(const double* x, int xCols, int xRows, const double* h, int hCols, int hRows, double* y) {
  conv2d(kD2, ryxdConv, x, xCols, xRows, h, hCols, hRows, y);
}
void ryxwConv2D(const short* x, int xCols, int xRows, const short* h, int hCols, int hRows, short* y, int scaleMode,
                int* scaleFactor) {
  if (!conv2dArgsPass(kW2, x, xCols, xRows, h, hCols, hRows, y)) return;
  ryxSetErrStatus(RYX_StsOk);
  if (xCols >= 8 && xRows >= 8 && hCols >= 8 && hRows >= 8)
    wConv2dFloat(x, xCols, xRows, h, hCols, hRows, y, scaleMode, scaleFactor);
  else
    wConv2dDirect(x, xCols, xRows, h, hCols, hRows, y, scaleMode, scaleFactor);
}
void ryxsFilter2D(const float* x, int xCols, int xRows, const float* h, int hCols, int hRows, float* y) {
  filter2d("ryxsFilter2D", x, xCols, xRows, h, hCols, hRows, y);
}
void ryxdFilter2D(const double* x, int xCols, int xRows, const double* h, int hCols, int hRows, double* y) {
  filter2d("ryxdFilter2D", x, xCols, xRows, h, hCols, hRows, y);
}
// Integer sums into a 32-bit working array, narrowed by the shared rule
// (modes by exact value; the factor is written under RYX_AUTO_SCALE).
void ryxwFilter2D(const short* x, int xCols, int xRows, const short* h, int hCols, int hRows, short* y,
                  int scaleMode, int* scaleFactor) {
  constexpr const char* kName = "ryxwFilter2D";
  constexpr const char* kStem = "ryxfir2w";
  if (!filter2dArgsPass(kName, kStem, x, xCols, xRows, h, hCols, hRows, y)) return;
  if (!passFirst({kName, kStem}, {{scaleMode == RYX_AUTO_SCALE && scaleFactor == nullptr, "Null scale factor pointer"}}))
    return;
  const long long n = static_cast<long long>(xCols) * xRows;
  Scratch s;
  std::int32_t* sums = s.take<std::int32_t>(n);
  if (sums == nullptr) return reportNoMem({kName, kStem}, "Allocation failure");
  for (long long r = 0; r < xRows; ++r)
    for (long long c = 0; c < xCols; ++c) {
      std::uint32_t part[4] = {0, 0, 0, 0};
      filterPoint(x, xCols, xRows, h, hCols, hRows, r, c, part,
                  [](std::uint32_t& p, short a, short b) { p += static_cast<std::uint32_t>(a * b); });
      sums[r * xCols + c] = static_cast<std::int32_t>(part[0] + part[1] + part[2] + part[3]);
    }
  ownScaleArrayI32(sums, y, static_cast<int>(n), scaleMode, scaleFactor);
}
}
