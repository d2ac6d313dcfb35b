// A-law and mu-law companding (source group "ryxlaw"): linear samples to and
// from the 8-bit codes of ITU-T G.711, and the G.711 transcoding between the
// two laws.
//
// The segment rules are written once, on the magnitude of the sample's upper
// 16 bits; the 32-bit encoders apply them directly, and every table is built
// from them at compile time:
//  - A-law: segment k is the first with v <= end[k]; the code is
//    ((v >> shift[k]) & 15 | k << 4 | sign) ^ 0x55, sign 0x80 for x >= 0.
//    The 16-bit encoder looks up |x| >> 4 in one 2048-byte table per sign,
//    -32768 having an entry of its own (0x2a).
//  - mu-law: segment s is the first with m <= top[s] (the G.711 bias applied);
//    the low four bits are (top[s] - m) >> (3 + s) and the code is that ored
//    with (7 - s) << 4 and with 0x80 for x >= 0; above the last top the code
//    is the limit (0x80 or 0). The 16-bit encoder reads the magnitude up to
//    124 from a direct table and above from a table indexed by (m + 3) >> 4
//    (every group of 16 magnitudes there shares one code, the limit code
//    from 31613 on).
//  - Decoding gives the code's interval mid-point on the 16-bit scale: lower
//    end plus half a step for A-law (top 32256), upper end minus half a step
//    for mu-law (top 32124). 32-bit samples shift it left by 16; float and
//    double scale it by 1/32768.
// Float and double encoders give the limit code for magnitudes at or above
// 0.96875 (tested on the bit pattern, so a NaN takes the limit of its sign),
// else multiply by 32768.0 in double, round by the processor's mode
// (nearest unless the caller changed it) and take the 16-bit path.
#include <emmintrin.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "frame/checks.h"
#include "ryxcore.h"

namespace ryx::law {
namespace {

constexpr const char* kStem = "ryxlaw";
using Code = std::uint8_t;

// ---- A-law ----------------------------------------------------------------

constexpr int kAEnd[8] = {255, 511, 1023, 2047, 4095, 8191, 16383, 32767};
constexpr int kAShift[8] = {4, 4, 5, 6, 7, 8, 9, 10};

// v: magnitude on the 16-bit scale, 0 to 32767; sign 0x80 or 0.
constexpr Code aLawCode(int v, int sign) {
  int k = 0;
  while (v > kAEnd[k]) ++k;
  return static_cast<Code>((((v >> kAShift[k]) & 0xF) | (k << 4) | sign) ^ 0x55);
}

constexpr int aLawValue(Code c) {
  const int a = c ^ 0x55, k = (a >> 4) & 7, q = a & 0xF;
  const int lower = k == 0 ? q << 4 : (16 + q) << kAShift[k];
  const int v = lower + ((k == 0 ? 16 : 1 << kAShift[k]) >> 1);
  return (a & 0x80) ? v : -v;
}

// The 2048-entry tables of negative and of non-negative samples by |x| >> 4,
// one after the other so that the sign picks the table without a branch.
// The negative table has one entry more, for -32768 (|x| >> 4 = 2048).
constexpr int kAPosBase = 2049;
constexpr std::array<Code, kAPosBase + 2048> aLawEncodeTable() {
  std::array<Code, kAPosBase + 2048> t{};
  for (int i = 0; i < 2048; ++i) t[i] = aLawCode(i << 4, 0), t[kAPosBase + i] = aLawCode(i << 4, 0x80);
  t[2048] = 0x2A;
  return t;
}
constexpr std::array<Code, kAPosBase + 2048> kAEncode = aLawEncodeTable();

// ---- mu-law ---------------------------------------------------------------

constexpr int kMuTop[8] = {124, 380, 892, 1916, 3964, 8060, 16252, 32636};

// m: magnitude on the 16-bit scale, 0 to 32768; sign 0x80 or 0.
constexpr Code muLawCode(int m, int sign) {
  int s = 0;
  while (s < 8 && m > kMuTop[s]) ++s;
  if (s == 8) return static_cast<Code>(sign);
  return static_cast<Code>(((kMuTop[s] - m) >> (3 + s)) | ((7 - s) << 4) | sign);
}

constexpr int muLawValue(Code c) {
  const int s = 7 - ((c >> 4) & 7), low = c & 0xF, step = 8 << s;
  const int v = kMuTop[s] - low * step - step / 2;
  return (c & 0x80) ? v : -v;
}

// The grouped table runs on to |x| = 32768 with the limit code (0 before
// the sign), so that the sample needs no range test of its own; its groups
// of 16 end at 31612, the last magnitude below the limit.
constexpr int kMuDirect = 124;  // magnitudes read directly
struct MuTables {
  std::array<Code, kMuDirect + 1> direct{};
  std::array<Code, ((32768 + 3) >> 4) + 1> grouped{};
};
constexpr MuTables muLawEncodeTables() {
  MuTables t;
  for (int m = 0; m <= kMuDirect; ++m) t.direct[m] = muLawCode(m, 0);
  for (int m = kMuDirect + 1; m <= 32768; ++m) t.grouped[(m + 3) >> 4] = muLawCode(m, 0);
  return t;
}
constexpr MuTables kMu = muLawEncodeTables();

// ---- Decoding and transcoding tables --------------------------------------

template <int (*Value)(Code)>
constexpr std::array<std::int16_t, 256> decodeTable() {
  std::array<std::int16_t, 256> t{};
  for (int c = 0; c < 256; ++c) t[c] = static_cast<std::int16_t>(Value(static_cast<Code>(c)));
  return t;
}
constexpr std::array<std::int16_t, 256> kALawLinear = decodeTable<aLawValue>();
constexpr std::array<std::int16_t, 256> kMuLawLinear = decodeTable<muLawValue>();

// G.711 transcoding by magnitude index (segment << 4 | step, before the
// laws' bit inversions): A-law index to mu-law index, and mu-law index to
// A-law index plus one.
constexpr Code kAToMuIndex[128] = {
    1,  3,  5,  7,  9,  11, 13, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 32,
    33, 33, 34, 34, 35, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 48, 49, 49, 50, 51, 52, 53,
    54, 55, 56, 57, 58, 59, 60, 61, 62, 63, 64, 64, 65, 66, 67, 68, 69, 70, 71, 72, 73, 74, 75, 76, 77, 78,
    79, 80, 80, 81, 82, 83, 84, 85, 86, 87, 88, 89, 90, 91, 92, 93, 94, 95, 96, 97, 98, 99, 100, 101, 102, 103,
    104, 105, 106, 107, 108, 109, 110, 111, 112, 113, 114, 115, 116, 117, 118, 119, 120, 121, 122, 123, 124, 125, 126, 127};
constexpr Code kMuToAIndexPlus1[128] = {
    1,  1,  2,  2,  3,  3,  4,  4,  5,  5,  6,  6,  7,  7,  8,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18,
    19, 20, 21, 22, 23, 24, 25, 27, 29, 31, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 46, 48, 49, 50,
    51, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62, 64, 65, 66, 67, 68, 69, 70, 71, 72, 73, 74, 75, 76, 77,
    78, 79, 80, 82, 83, 84, 85, 86, 87, 88, 89, 90, 91, 92, 93, 94, 95, 96, 97, 98, 99, 100, 101, 102, 103, 104,
    105, 106, 107, 108, 109, 110, 111, 112, 113, 114, 115, 116, 117, 118, 119, 120, 121, 122, 123, 124, 125, 126, 127, 128};

// A code's magnitude index is the code xor its law's inversion (0x55 for
// A-law, 0x7F for mu-law) with the sign bit merged in.
constexpr std::array<Code, 256> transcodeTable(const Code (&index)[128], int fromInvert, int toInvert, int bias) {
  std::array<Code, 256> t{};
  for (int c = 0; c < 256; ++c) {
    const int sign = c & 0x80;
    t[c] = static_cast<Code>((toInvert | sign) ^ (index[c ^ (fromInvert | sign)] - bias));
  }
  return t;
}
constexpr std::array<Code, 256> kAToMu = transcodeTable(kAToMuIndex, 0x55, 0x7F, 0);
constexpr std::array<Code, 256> kMuToA = transcodeTable(kMuToAIndexPlus1, 0x7F, 0x55, 1);

// ---- Per-sample encoders --------------------------------------------------

struct ALaw {
  static Code word(int x) {
    const int neg = x >> 31;  // all ones for a negative sample
    return kAEncode[(((x ^ neg) - neg) >> 4) + (~neg & kAPosBase)];
  }
  static Code dword(std::int32_t x) {
    if (x == INT32_MIN) return 0x2A;
    const int v = static_cast<int>(static_cast<std::uint32_t>(x < 0 ? -x : x) >> 16);
    return aLawCode(v, x >= 0 ? 0x80 : 0);
  }
  static constexpr Code kLimitPos = 0xAA, kLimitNeg = 0x2A;
  static constexpr const std::array<std::int16_t, 256>& kLinear = kALawLinear;
};

struct MuLaw {
  static Code word(int x) {
    const int neg = x >> 31, m = (x ^ neg) - neg;
    const Code code = m <= kMuDirect ? kMu.direct[m] : kMu.grouped[(m + 3) >> 4];
    return static_cast<Code>(code | (~neg & 0x80));
  }
  static Code dword(std::int32_t x) {
    const int top = x >> 16;  // arithmetic shift
    return muLawCode(top >= 0 ? top : -top, x >= 0 ? 0x80 : 0);
  }
  static constexpr Code kLimitPos = 0x80, kLimitNeg = 0x00;
  static constexpr const std::array<std::int16_t, 256>& kLinear = kMuLawLinear;
};

// Magnitude at or above 0.96875, on the bit pattern (high word for double).
inline bool atLimit(float x) { return (std::bit_cast<std::uint32_t>(x) & 0x7FFFFFFFu) >= 0x3F780000u; }
inline bool atLimit(double x) {
  return (static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(x) >> 32) & 0x7FFFFFFFu) >= 0x3FEF0000u;
}
inline bool signSet(float x) { return std::signbit(x); }
inline bool signSet(double x) { return std::signbit(x); }

template <class Law, class S>
Code encodeOne(S x) {
  if constexpr (sizeof(S) == 2) return Law::word(x);
  else if constexpr (std::is_integral_v<S>) return Law::dword(x);
  else {
    // Both results are formed and one is picked, so that the rare limit
    // costs no mispredicted branch; a sample at the limit is encoded as 0.
    const bool limit = atLimit(x);
    const double y = limit ? 0.0 : static_cast<double>(x);
    const Code c = Law::word(_mm_cvtsd_si32(_mm_set_sd(y * 32768.0)));  // the processor's rounding
    const Code edge = signSet(x) ? Law::kLimitNeg : Law::kLimitPos;
    return limit ? edge : c;
  }
}

template <class S>
S decodeOne(std::int16_t v) {
  if constexpr (sizeof(S) == 2) return v;
  else if constexpr (std::is_integral_v<S>) return static_cast<S>(static_cast<std::uint32_t>(v) << 16);
  else return static_cast<S>(v) * static_cast<S>(1.0 / 32768.0);
}

// ---- Entries --------------------------------------------------------------

bool pass(const char* name, const void* src, const void* dst, int len) {
  return passFirst({name, kStem}, {{len <= 0, "len<=0"}, {src == nullptr, "src==0"}, {dst == nullptr, "dst==0"}});
}

// Encoders run from the last element to the first.
template <class Law, class S>
void encode(const char* name, const S* src, Code* dst, int len) {
  if (!pass(name, src, dst, len)) return;
  for (int i = len - 1; i >= 0; --i) dst[i] = encodeOne<Law>(src[i]);
}

template <class Law, class S>
void decode(const char* name, const Code* src, S* dst, int len) {
  if (!pass(name, src, dst, len)) return;
  for (int i = 0; i < len; ++i) dst[i] = decodeOne<S>(Law::kLinear[src[i]]);
}

// Two codes a turn.
void transcode(const char* name, const Code* src, Code* dst, int len, const std::array<Code, 256>& table) {
  if (!pass(name, src, dst, len)) return;
  int i = 0;
  for (; i + 2 <= len; i += 2) {
    const Code a = table[src[i]], b = table[src[i + 1]];
    dst[i] = a;
    dst[i + 1] = b;
  }
  if (i < len) dst[i] = table[src[i]];
}

}  // namespace
}  // namespace ryx::law

using namespace ryx::law;
using ryx::law::Code;

extern "C" {

RYXAPI void ryxwbLinToALaw(const short* src, unsigned char* dst, int len) { encode<ALaw>(__func__, src, dst, len); }
RYXAPI void ryxibLinToALaw(const int* src, unsigned char* dst, int len) { encode<ALaw>(__func__, src, dst, len); }
RYXAPI void ryxsbLinToALaw(const float* src, unsigned char* dst, int len) { encode<ALaw>(__func__, src, dst, len); }
RYXAPI void ryxdbLinToALaw(const double* src, unsigned char* dst, int len) { encode<ALaw>(__func__, src, dst, len); }
RYXAPI void ryxwbLinToMuLaw(const short* src, unsigned char* dst, int len) { encode<MuLaw>(__func__, src, dst, len); }
RYXAPI void ryxibLinToMuLaw(const int* src, unsigned char* dst, int len) { encode<MuLaw>(__func__, src, dst, len); }
RYXAPI void ryxsbLinToMuLaw(const float* src, unsigned char* dst, int len) { encode<MuLaw>(__func__, src, dst, len); }
RYXAPI void ryxdbLinToMuLaw(const double* src, unsigned char* dst, int len) { encode<MuLaw>(__func__, src, dst, len); }

RYXAPI void ryxwbALawToLin(const unsigned char* src, short* dst, int len) { decode<ALaw>(__func__, src, dst, len); }
RYXAPI void ryxibALawToLin(const unsigned char* src, int* dst, int len) { decode<ALaw>(__func__, src, dst, len); }
RYXAPI void ryxsbALawToLin(const unsigned char* src, float* dst, int len) { decode<ALaw>(__func__, src, dst, len); }
RYXAPI void ryxdbALawToLin(const unsigned char* src, double* dst, int len) { decode<ALaw>(__func__, src, dst, len); }
RYXAPI void ryxwbMuLawToLin(const unsigned char* src, short* dst, int len) { decode<MuLaw>(__func__, src, dst, len); }
RYXAPI void ryxibMuLawToLin(const unsigned char* src, int* dst, int len) { decode<MuLaw>(__func__, src, dst, len); }
RYXAPI void ryxsbMuLawToLin(const unsigned char* src, float* dst, int len) { decode<MuLaw>(__func__, src, dst, len); }
RYXAPI void ryxdbMuLawToLin(const unsigned char* src, double* dst, int len) { decode<MuLaw>(__func__, src, dst, len); }

RYXAPI void ryxALawToMuLaw(const unsigned char* src, unsigned char* dst, int len) { transcode(__func__, src, dst, len, kAToMu); }
RYXAPI void ryxMuLawToALaw(const unsigned char* src, unsigned char* dst, int len) { transcode(__func__, src, dst, len, kMuToA); }

}  // extern "C"
