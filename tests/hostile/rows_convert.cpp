// Rows of the conversions: integer and fixed-point formats, companding,
// complex and polar forms. The integer side of the general forms is an
// array of `bits`-bit elements (32 bits when `bits` is refused anyway); a
// range error is reported after the whole array was written. (An int*
// destination is spelled out: vec() takes it for a scale factor.)
#include "routine_table.h"

namespace hostile {
namespace {

constexpr int kRound[] = {RYX_RoundNearest,
                          RYX_RoundZero,
                          RYX_RoundDown,
                          RYX_RoundUp,
                          RYX_RoundNearest | RYX_ClipRange,
                          RYX_RoundZero | RYX_UnsignedInt,
                          RYX_RoundUp | RYX_RangeError,
                          RYX_RoundNearest | RYX_ClipRange | RYX_RangeError | RYX_UnsignedInt,
                          0};
constexpr int kWiden[] = {0, RYX_UnsignedInt, kEnd};
constexpr int kBits[] = {8, 16, 32, kEnd};
constexpr int kFract[] = {0, 1, 7, 8, 15, 16, 31, 32, kEnd};
constexpr const char* kRange = "A float exceeds an integer";

// Bytes of `len` (argument 2) integers of `bits` (argument 3).
std::int64_t intBytes(const Case& c) {
  const std::int64_t bits = c.intArg(3);
  return c.intArg(2) * (bits == 8 ? 1 : bits == 16 ? 2 : 4);
}

template <class T>
std::vector<Row> general(const char* const names[4], void (*toInt)(const T*, void*, int, int, int),
                         void (*fromInt)(const void*, T*, int, int, int),
                         void (*toFix)(const T*, void*, int, int, int, int),
                         void (*fromFix)(const void*, T*, int, int, int, int)) {
  return {
      reportsLate(row(names[0], toInt, in(arg<2>), out(intBytes), len(), choice(kBits), flags(kRound)), kRange),
      row(names[1], fromInt, in(intBytes), out(arg<2>), len(), choice(kBits), choice(kWiden)),
      reportsLate(row(names[2], toFix, in(arg<2>), out(intBytes), len(), choice(kBits), choice(kFract), flags(kRound)),
                  kRange),
      row(names[3], fromFix, in(intBytes), out(arg<2>), len(), choice(kBits), choice(kFract), choice(kWiden)),
  };
}

template <class T, class I>
Row toS(const char* name, void (*f)(const T*, I*, int, int)) {
  return reportsLate(row(name, f, in(arg<2>), out(arg<2>), len(), flags(kRound)), kRange);
}

std::vector<Row> all() {
  static const char* const s[] = {"ryxsbFloatToInt", "ryxsbIntToFloat", "ryxsbFloatToFix", "ryxsbFixToFloat"};
  static const char* const d[] = {"ryxdbFloatToInt", "ryxdbIntToFloat", "ryxdbFloatToFix", "ryxdbFixToFloat"};
  std::vector<Row> rows = general(s, ryxsbFloatToInt, ryxsbIntToFloat, ryxsbFloatToFix, ryxsbFixToFloat);
  for (Row& r : general(d, ryxdbFloatToInt, ryxdbIntToFloat, ryxdbFloatToFix, ryxdbFixToFloat)) rows.push_back(r);
  const std::vector<Row> more = {
      toS("ryxsbFloatToS7Fix", ryxsbFloatToS7Fix),
      toS("ryxsbFloatToS15Fix", ryxsbFloatToS15Fix),
      toS("ryxsbFloatToS31Fix", ryxsbFloatToS31Fix),
      toS("ryxsbFloatToS1516Fix", ryxsbFloatToS1516Fix),
      toS("ryxdbFloatToS7Fix", ryxdbFloatToS7Fix),
      toS("ryxdbFloatToS15Fix", ryxdbFloatToS15Fix),
      toS("ryxdbFloatToS31Fix", ryxdbFloatToS31Fix),
      toS("ryxdbFloatToS1516Fix", ryxdbFloatToS1516Fix),
      vec("ryxsbS7FixToFloat", ryxsbS7FixToFloat),
      vec("ryxsbS15FixToFloat", ryxsbS15FixToFloat),
      vec("ryxsbS31FixToFloat", ryxsbS31FixToFloat),
      vec("ryxsbS1516FixToFloat", ryxsbS1516FixToFloat),
      vec("ryxdbS7FixToFloat", ryxdbS7FixToFloat),
      vec("ryxdbS15FixToFloat", ryxdbS15FixToFloat),
      vec("ryxdbS31FixToFloat", ryxdbS31FixToFloat),
      vec("ryxdbS1516FixToFloat", ryxdbS1516FixToFloat),

      vec("ryxwbLinToALaw", ryxwbLinToALaw),
      vec("ryxibLinToALaw", ryxibLinToALaw),
      vec("ryxsbLinToALaw", ryxsbLinToALaw),
      vec("ryxdbLinToALaw", ryxdbLinToALaw),
      vec("ryxwbLinToMuLaw", ryxwbLinToMuLaw),
      vec("ryxibLinToMuLaw", ryxibLinToMuLaw),
      vec("ryxsbLinToMuLaw", ryxsbLinToMuLaw),
      vec("ryxdbLinToMuLaw", ryxdbLinToMuLaw),
      vec("ryxwbALawToLin", ryxwbALawToLin),
      row("ryxibALawToLin", ryxibALawToLin, in(arg<2>), out(arg<2>), len()),
      vec("ryxsbALawToLin", ryxsbALawToLin),
      vec("ryxdbALawToLin", ryxdbALawToLin),
      vec("ryxwbMuLawToLin", ryxwbMuLawToLin),
      row("ryxibMuLawToLin", ryxibMuLawToLin, in(arg<2>), out(arg<2>), len()),
      vec("ryxsbMuLawToLin", ryxsbMuLawToLin),
      vec("ryxdbMuLawToLin", ryxdbMuLawToLin),
      vec("ryxALawToMuLaw", ryxALawToMuLaw),
      vec("ryxMuLawToALaw", ryxMuLawToALaw),

      vec("ryxcbReal", ryxcbReal),
      vec("ryxzbReal", ryxzbReal),
      vec("ryxvbReal", ryxvbReal),
      vec("ryxcbImag", ryxcbImag),
      vec("ryxzbImag", ryxzbImag),
      vec("ryxvbImag", ryxvbImag),
      vec("ryxcbCplxTo2Real", ryxcbCplxTo2Real),
      vec("ryxzbCplxTo2Real", ryxzbCplxTo2Real),
      vec("ryxvbCplxTo2Real", ryxvbCplxTo2Real),
      vec("ryxcb2RealToCplx", ryxcb2RealToCplx),
      vec("ryxzb2RealToCplx", ryxzb2RealToCplx),
      vec("ryxvb2RealToCplx", ryxvb2RealToCplx),
      vec("ryxcbCartToPolar", ryxcbCartToPolar),
      vec("ryxzbCartToPolar", ryxzbCartToPolar),
      vec("ryxsbrCartToPolar", ryxsbrCartToPolar),
      vec("ryxdbrCartToPolar", ryxdbrCartToPolar),
      vec("ryxcbPolarToCart", ryxcbPolarToCart),
      vec("ryxzbPolarToCart", ryxzbPolarToCart),
      vec("ryxsbrPolarToCart", ryxsbrPolarToCart),
      vec("ryxdbrPolarToCart", ryxdbrPolarToCart),
      vec("ryxcbMag", ryxcbMag),
      vec("ryxzbMag", ryxzbMag),
      vec("ryxsbrMag", ryxsbrMag),
      vec("ryxdbrMag", ryxdbrMag),
      vec("ryxvbMag", ryxvbMag),
      vec("ryxwbrMag", ryxwbrMag),
      vec("ryxcbPhase", ryxcbPhase),
      vec("ryxzbPhase", ryxzbPhase),
      vec("ryxvbPhase", ryxvbPhase),
      vec("ryxsbrPhase", ryxsbrPhase),
      vec("ryxdbrPhase", ryxdbrPhase),
      vec("ryxwbrPhase", ryxwbrPhase),
      vec("ryxcbPowerSpectr", ryxcbPowerSpectr),
      vec("ryxzbPowerSpectr", ryxzbPowerSpectr),
      vec("ryxsbrPowerSpectr", ryxsbrPowerSpectr),
      vec("ryxdbrPowerSpectr", ryxdbrPowerSpectr),
      vec("ryxvbPowerSpectr", ryxvbPowerSpectr),
      vec("ryxwbrPowerSpectr", ryxwbrPowerSpectr),
  };
  rows.insert(rows.end(), more.begin(), more.end());
  return rows;
}

const AddRows rows(all());

}  // namespace
}  // namespace hostile
