// Exported complex FFTs (source groups "ryxffts" float, "ryxfftd" double):
// interleaved and split, in place and `Nip`.
//
// Forward: X[k] = sum x[n] W_N^(nk), unscaled. Inverse: the positive
// exponent and 1/N, unless RYX_KeepScale. The engine always takes
// bit-reversed input and yields natural order: without RYX_InReversed the
// samples are permuted first, and RYX_OutReversed pays for a second
// permutation afterwards. Front-end order: release, order checks, tables
// (one purge and retry), scratch, RYX_Init, null checks, direction checks,
// ordering checks; a failed check leaves the samples untouched.
#include "transform/fft_frontend.h"

namespace ryx::fft {

void Precision<float>::copy(const float* src, float* dst, std::uint64_t count) {
  constexpr std::uint64_t kPiece = 1u << 30;
  for (std::uint64_t at = 0; at < count; at += kPiece) {
    const std::uint64_t n = count - at < kPiece ? count - at : kPiece;
    ryxsbCopy(src + at, dst + at, static_cast<int>(n));
  }
}

void Precision<double>::copy(const double* src, double* dst, std::uint64_t count) {
  constexpr std::uint64_t kPiece = 1u << 30;
  for (std::uint64_t at = 0; at < count; at += kPiece) {
    const std::uint64_t n = count - at < kPiece ? count - at : kPiece;
    ryxdbCopy(src + at, dst + at, static_cast<int>(n));
  }
}

}  // namespace ryx::fft

namespace {

using namespace ryx::fft;

// The four sample arrays of a call; interleaved forms use `re` as the
// complex array and leave `im` null.
template <class T>
struct Arrays {
  const T* inRe;
  const T* inIm;
  T* outRe;
  T* outIm;
};

// Interleaved copy through the complex block copy of the sample type.
void copyComplex(const float* src, float* dst, std::uint64_t n) {
  ryxcbCopy(reinterpret_cast<const SCplx*>(src), reinterpret_cast<SCplx*>(dst), static_cast<int>(n));
}
void copyComplex(const double* src, double* dst, std::uint64_t n) {
  ryxzbCopy(reinterpret_cast<const DCplx*>(src), reinterpret_cast<DCplx*>(dst), static_cast<int>(n));
}

template <class T, bool Split, bool Nip>
void complexFft(const char* name, Arrays<T> a, int order, int flags, std::initializer_list<ryx::Check> nullChecks) {
  using P = Precision<T>;
  const ryx::Site site{name, P::kStem};
  if (flags & RYX_Release) {
    P::freeRadix(order);
    ownFreeRevPairs(order);
    ownFreeScratchZSlot(kEngineSlot);
    return;
  }
  if (!ryx::passFirst(site, {{order < 0, "order<0"}, {order > 31, "order>31"}})) return;
  const T* tbl = nullptr;
  const std::uint32_t* pairs = nullptr;
  if (!fetchTables<T>(site, order, tbl, pairs, [] { return true; })) return;
  if (!assureScratch<T>(site)) return;
  if (flags & RYX_Init) return;
  if (!ryx::passFirst(site, nullChecks)) return;
  if (!ryx::passFirst(site, {{(flags & 1) && (flags & 2), "(flags & 1) && (flags & 2)"},
                             {(flags & 1) == 0 && (flags & 2) == 0, "(flags & 1)==0 && (flags & 2)==0"},
                             {(flags & 64) && (flags & 128), "(flags & 64) && (flags & 128)"},
                             {(flags & 64) && (flags & 32), "(flags & 64) && (flags & 32)"},
                             {(flags & 32) && (flags & 128), "(flags & 32) && (flags & 128)"}}))
    return;

  const std::uint64_t n = lengthOf(order);
  constexpr int kElem = Split ? sizeof(T) : 2 * sizeof(T);
  if (order == 0) {
    if (Nip) {
      a.outRe[0] = a.inRe[0];
      if (Split)
        a.outIm[0] = a.inIm[0];
      else
        a.outRe[1] = a.inRe[1];
    }
    return;
  }

  // Reversal (or a plain copy for reversed input of a Nip call).
  if (!(flags & RYX_InReversed)) {
    if (Nip) {
      permuteCopy(a.inRe, a.outRe, order, kElem, pairs);
      if (Split) permuteCopy(a.inIm, a.outIm, order, kElem, pairs);
    } else {
      permuteInPlace(a.outRe, order, kElem, pairs);
      if (Split) permuteInPlace(a.outIm, order, kElem, pairs);
    }
  } else if (Nip) {
    // Reversed input of a Nip call: a plain copy takes the permutation's place.
    if (Split) {
      P::copy(a.inRe, a.outRe, n);
      P::copy(a.inIm, a.outIm, n);
    } else {
      copyComplex(a.inRe, a.outRe, n);
    }
  }

  const int sign = (flags & RYX_Forward) ? 1 : -1;
  if (Split)
    P::splitCore(a.outRe, a.outIm, static_cast<std::uint32_t>(n), sign, tbl);
  else
    P::core(a.outRe, static_cast<std::uint32_t>(n), sign, tbl);

  if (flags & RYX_OutReversed) {
    permuteInPlace(a.outRe, order, kElem, pairs);
    if (Split) permuteInPlace(a.outIm, order, kElem, pairs);
  }
  if ((flags & RYX_Inverse) && !(flags & RYX_KeepScale)) {
    P::scale(a.outRe, Split ? n : 2 * n, n);
    if (Split) P::scale(a.outIm, n, n);
  }
}

template <class T, class C>
T* flat(C* p) {
  return reinterpret_cast<T*>(p);
}
template <class T, class C>
const T* flat(const C* p) {
  return reinterpret_cast<const T*>(p);
}

}  // namespace

extern "C" {

RYXAPI void ryxcFft(SCplx* samps, int order, int flags) {
  complexFft<float, false, false>(__func__, {nullptr, nullptr, flat<float>(samps), nullptr}, order, flags,
                                  {{samps == nullptr, "samps==0"}});
}

RYXAPI void ryxzFft(DCplx* samps, int order, int flags) {
  complexFft<double, false, false>(__func__, {nullptr, nullptr, flat<double>(samps), nullptr}, order, flags,
                                   {{samps == nullptr, "samps==0"}});
}

RYXAPI void ryxcFftNip(const SCplx* inSamps, SCplx* outSamps, int order, int flags) {
  complexFft<float, false, true>(__func__, {flat<float>(inSamps), nullptr, flat<float>(outSamps), nullptr}, order,
                                 flags, {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}

RYXAPI void ryxzFftNip(const DCplx* inSamps, DCplx* outSamps, int order, int flags) {
  complexFft<double, false, true>(__func__, {flat<double>(inSamps), nullptr, flat<double>(outSamps), nullptr}, order,
                                  flags, {{inSamps == nullptr, "inSamps==0"}, {outSamps == nullptr, "outSamps==0"}});
}

RYXAPI void ryxcrFft(float* reSamps, float* imSamps, int order, int flags) {
  complexFft<float, true, false>(__func__, {nullptr, nullptr, reSamps, imSamps}, order, flags,
                                 {{reSamps == nullptr, "reSamps==0"}, {imSamps == nullptr, "imSamps==0"}});
}

RYXAPI void ryxzrFft(double* reSamps, double* imSamps, int order, int flags) {
  complexFft<double, true, false>(__func__, {nullptr, nullptr, reSamps, imSamps}, order, flags,
                                  {{reSamps == nullptr, "reSamps==0"}, {imSamps == nullptr, "imSamps==0"}});
}

RYXAPI void ryxcrFftNip(const float* reInSamps, const float* imInSamps, float* reOutSamps, float* imOutSamps, int order,
                        int flags) {
  complexFft<float, true, true>(__func__, {reInSamps, imInSamps, reOutSamps, imOutSamps}, order, flags,
                                {{reInSamps == nullptr, "reInSamps==0"},
                                 {imInSamps == nullptr, "imInSamps==0"},
                                 {reOutSamps == nullptr, "reOutSamps==0"},
                                 {imOutSamps == nullptr, "imOutSamps==0"}});
}

RYXAPI void ryxzrFftNip(const double* reInSamps, const double* imInSamps, double* reOutSamps, double* imOutSamps,
                        int order, int flags) {
  complexFft<double, true, true>(__func__, {reInSamps, imInSamps, reOutSamps, imOutSamps}, order, flags,
                                 {{reInSamps == nullptr, "reInSamps==0"},
                                  {imInSamps == nullptr, "imInSamps==0"},
                                  {reOutSamps == nullptr, "reOutSamps==0"},
                                  {imOutSamps == nullptr, "imOutSamps==0"}});
}

}  // extern "C"
