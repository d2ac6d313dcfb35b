// Set-up, read-back and release of wavelet records (source group "ryxwlt").
//
// Init routines clear the status, then check in the documented order,
// consulting the stored status after each check. Every array a record will
// own (the converted or copied filters, the working array) is taken before
// the record is touched: a refusal, for arguments or for memory, leaves the
// record and *len_dec as they were and frees what was taken. The d form of
// a built-in set points at the constant tables; the s and w forms keep
// float copies; the caller's filters are always copied.
#include <algorithm>
#include <climits>
#include <cstring>
#include <type_traits>

#include "frame/checks.h"
#include "frame/memory.h"
#include "wavelet/filter_sets.h"
#include "wavelet/wavelet_common.h"

namespace ryx::wavelet {
namespace {

constexpr const char* kNullLenDec = "'NULL' pointer in 'len_dec' argument was passed!";
constexpr const char* kBadLen = "Not correct 'len' argument was passed! 'len' argument must be greater than or equal 2!";
constexpr const char* kTooDeep =
    "Not correct 'level' argument was passed! 2^level can not be  greater than or equal 2*len!";
constexpr const char* kBadType = "Not correct 'wtType' argument was passed!";
constexpr const char* kBadPar1 = "Not correct par1 argument was passed!";
constexpr const char* kBadPar2 = "Not correct 'par2' argument was passed!";
constexpr const char* kNoMem = "No working wavelet memory!";
constexpr const char* kNullTaps = "*tap_filt[] = 'NULL' argument was passed!";
constexpr const char* kNullLens = "'NULL' pointer was passed in len_filt argument!";
constexpr const char* kNullOfs = "'NULL' pointer was passed in ofs_filt argument!";
constexpr const char* kNullTap = "tap_filt[n] = 'NULL' for some n was passed in tap_filt array!";
constexpr const char* kShortTap =
    "len_filt[n] for some n does not correct! For each n len_filt[n] should be greater than or equal 2!";
constexpr const char* kBadOfs =
    "ofs_filt[n] for some n does not correct! For each n ofs_filt[n] should satisfy to the following condition 0 <= "
    "ofs_filt[n] < len_flt";

// The exported routines each set-up calls, and the trace words naming them.
template <class T>
struct Calls;
template <>
struct Calls<double> {
  static constexpr auto initLen = ryxdWtInitLen;
  static constexpr auto init = ryxdWtInit;
  static constexpr auto initUser = ryxdWtInitUserFilter;
  static constexpr const char* outInitLen = "out ryxdWtInitLen";
  static constexpr const char* outInit = "out ryxdWtInit";
  static constexpr const char* outUser = "out ryxdWtInitUserFilter";
};
template <>
struct Calls<float> {
  static constexpr auto initLen = ryxsWtInitLen;
  static constexpr auto init = ryxsWtInit;
  static constexpr auto initUser = ryxsWtInitUserFilter;
  static constexpr const char* outInitLen = "out ryxsWtInitLen";
  static constexpr const char* outInit = "out ryxsWtInit";
  static constexpr const char* outUser = "out ryxsWtInitUserFilter";
};
template <>
struct Calls<short> {
  static constexpr auto initLen = ryxwWtInitLen;
  static constexpr auto init = ryxwWtInit;
  static constexpr auto initUser = ryxwWtInitUserFilter;
  static constexpr const char* outInitLen = "out ryxwWtInitLen";
  static constexpr const char* outInit = "out ryxwWtInit";
  static constexpr const char* outUser = "out ryxwWtInitUserFilter";
};

// Trace line with its words after a failed inner set-up.
bool traced(const Site& site, const char* words, std::source_location at = std::source_location::current()) {
  if (ryxGetErrStatus() >= 0) return false;
  ryxError(RYX_StsBacktrace, site.name, words, site.file, static_cast<int>(at.line()));
  return true;
}

// 2^level >= 2*len, for any level.
bool tooDeep(int len, int level) {
  return level >= 32 || (std::int64_t{1} << level) >= 2 * std::int64_t{len};
}

const FilterSet* findSet(int wtType, int par1, int par2, bool* par1Known) {
  *par1Known = false;
  for (int i = 0; i < kFilterSetCount; ++i) {
    const FilterSet& s = kFilterSets[i];
    if (s.wtType != wtType || (s.par1 != 0 && s.par1 != par1)) continue;
    *par1Known = true;
    if (s.par2 == 0 || s.par2 == par2) return &s;
  }
  return nullptr;
}

// What a record is built from: filters of type Src, and whether the
// record takes copies of them (converted to its tap type) or points at them.
template <class Src>
struct Filters {
  const Src* const* taps;
  const int* len;
  const int* ofs;
  bool copy;
};

RyxStatus noMem(const Site& site, void* const* taken, int count) {
  for (int i = 0; i < count; ++i) ryxFree(taken[i]);
  reportNoMem(site, kNoMem);
  return ryxGetErrStatus();
}

// Takes the record's arrays and fills it; the arguments are checked.
template <class T, class Src>
RyxStatus build(const Site& site, RyxWtState* st, int wtType, int par1, int par2, int filterClass,
                const Filters<Src>& f, int len, int level, int* lenDec) {
  using Tap = typename Form<T>::Tap;
  int levelLen[33] = {len};
  std::int64_t total = 0;  // beyond 32 bits only for lengths no working array can hold
  for (int i = 1; i <= level; ++i) {
    levelLen[i] = static_cast<int>((std::int64_t{levelLen[i - 1]} + 1) >> 1);
    total += levelLen[i];
  }
  total += levelLen[level];
  int maxFilt = 0;
  for (int i = 0; i < 4; ++i) maxFilt = f.len[i] > maxFilt ? f.len[i] : maxFilt;

  void* taken[5] = {};
  void* taps[4] = {};
  for (int i = 0; i < 4; ++i) {
    if (!f.copy) {
      taps[i] = const_cast<Src*>(f.taps[i]);
      continue;
    }
    Tap* c = allocArray<Tap>(f.len[i]);
    if (c == nullptr) return noMem(site, taken, i);
    for (int k = 0; k < f.len[i]; ++k) c[k] = static_cast<Tap>(f.taps[i][k]);
    taken[i] = taps[i] = c;
  }
  const int lenDecOf = static_cast<int>(std::min<std::int64_t>(total, INT_MAX));
  const std::uint64_t count = workCount(Form<T>::core, len, lenDecOf, maxFilt);
  const bool fits = total <= INT_MAX && count * sizeof(Tap) <= 0xFFFFFFFFu;
  void* work = fits ? alignedAlloc(static_cast<std::uint32_t>(count), sizeof(Tap)) : nullptr;
  if (work == nullptr) return noMem(site, taken, 4);

  std::memset(st, 0, sizeof *st);
  st->core = Form<T>::core;
  st->wtType = wtType;
  st->filterClass = filterClass;
  st->par1 = par1;
  st->par2 = par2;
  st->dataOrder = -1;
  st->level = level;
  for (int i = 0; i < 4; ++i) {
    st->lenFilt[i] = f.len[i];
    st->ofsFilt[i] = f.ofs[i];
    st->tapFilt[i] = taps[i];
  }
  st->work = work;
  st->lenDec = lenDecOf;
  std::memcpy(st->levelLen, levelLen, sizeof levelLen);
  *lenDec = lenDecOf;
  return RYX_StsOk;
}

template <class T>
RyxStatus initLen(const char* name, int par1, int par2, int len, int level, RyxWtState* st, int wtType, int* lenDec) {
  ryxSetErrStatus(RYX_StsOk);
  const Site site{name, kStem};
  bool par1Known = false;
  const FilterSet* set = findSet(wtType, par1, par2, &par1Known);
  if (!passSticky(site, {{st == nullptr, kNullState},
                         {lenDec == nullptr, kNullLenDec},
                         {len < 2, kBadLen},
                         {level < 0, kBadLevel},
                         {level >= 0 && tooDeep(len, level), kTooDeep},
                         {wtType < 1 || wtType > 9, kBadType},
                         {!par1Known, kBadPar1},
                         {set == nullptr, kBadPar2}}))
    return ryxGetErrStatus();
  // The d form points at the tables, the others convert them.
  const Filters<double> f{set->taps, set->len, set->ofs, !std::is_same_v<T, double>};
  return build<T>(site, st, wtType, par1, par2, set->filterClass, f, len, level, lenDec);
}

template <class T>
RyxStatus initOrder(const char* name, int par1, int par2, int dataOrder, int level, RyxWtState* st, int wtType) {
  ryxSetErrStatus(RYX_StsOk);
  const Site site{name, kStem};
  if (!passSticky(site, {{dataOrder < 1 || dataOrder > 31, kBadLevel}})) return ryxGetErrStatus();
  int lenDec = 0;
  Calls<T>::initLen(par1, par2, static_cast<int>(1u << dataOrder), level, st, wtType, &lenDec);
  if (traced(site, Calls<T>::outInitLen)) return ryxGetErrStatus();
  st->dataOrder = dataOrder;
  return RYX_StsOk;
}

template <class T>
RyxStatus initUser(const char* name, const typename Form<T>::Tap* const* taps, const int* lens, const int* ofs,
                   int len, int level, RyxWtState* st, int* lenDec) {
  ryxSetErrStatus(RYX_StsOk);
  const Site site{name, kStem};
  if (!passSticky(site, {{st == nullptr, kNullState},
                         {lenDec == nullptr, kNullLenDec},
                         {taps == nullptr, kNullTaps},
                         {lens == nullptr, kNullLens},
                         {ofs == nullptr, kNullOfs},
                         {len < 2, kBadLen},
                         {level < 0, kBadLevel},
                         {level >= 0 && tooDeep(len, level), kTooDeep}}))
    return ryxGetErrStatus();
  bool nullTap = false, shortTap = false, badOfs = false;
  for (int i = 0; i < 4; ++i) {
    nullTap |= taps[i] == nullptr;
    shortTap |= lens[i] < 2;
    badOfs |= ofs[i] < 0 || ofs[i] >= lens[i];
  }
  if (!passSticky(site, {{nullTap, kNullTap}, {shortTap, kShortTap}, {badOfs, kBadOfs}})) return ryxGetErrStatus();
  const Filters<typename Form<T>::Tap> f{taps, lens, ofs, true};
  return build<T>(site, st, 10, 0, 0, 0, f, len, level, lenDec);
}

template <class T>
RyxStatus setState(const char* name, RyxWtState* st, int wtType, int par1, int par2, int dataOrder, int level,
                   const typename Form<T>::Tap* const* taps, const int* lens, const int* ofs) {
  ryxSetErrStatus(RYX_StsOk);
  const Site site{name, kStem};
  if (wtType != 10) {
    Calls<T>::init(par1, par2, dataOrder, level, st, wtType);
    traced(site, Calls<T>::outInit);
    return ryxGetErrStatus();
  }
  if (!passSticky(site, {{dataOrder < 1 || dataOrder > 31, kBadLevel}})) return ryxGetErrStatus();
  int lenDec = 0;
  Calls<T>::initUser(taps, lens, ofs, static_cast<int>(1u << dataOrder), level, st, &lenDec);
  if (traced(site, Calls<T>::outUser)) return ryxGetErrStatus();
  st->dataOrder = dataOrder;
  return RYX_StsOk;
}

template <class T>
RyxStatus getState(const char* name, const RyxWtState* st, int* wtType, int* par1, int* par2, int* dataOrder,
                   int* level, const typename Form<T>::Tap** taps, int* lens, int* ofs) {
  ryxSetErrStatus(RYX_StsOk);
  if (!passFirst({name, kStem}, {{st == nullptr, kNullState},
                                 {wtType == nullptr, "'NULL' pointer was passed in wtType argument!"},
                                 {par1 == nullptr, "'NULL' pointer was passed in par1 argument!"},
                                 {par2 == nullptr, "'NULL' pointer was passed in par2 argument!"},
                                 {dataOrder == nullptr, "'NULL' pointer was passed in dataOrder argument!"},
                                 {level == nullptr, "'NULL' pointer was passed in level argument!"},
                                 {taps == nullptr, kNullTaps},
                                 {lens == nullptr, kNullLens},
                                 {ofs == nullptr, kNullOfs}}))
    return ryxGetErrStatus();
  *wtType = st->wtType;
  *par1 = st->par1;
  *par2 = st->par2;
  *dataOrder = st->dataOrder;
  *level = st->level;
  for (int i = 0; i < 4; ++i) {
    taps[i] = static_cast<const typename Form<T>::Tap*>(st->tapFilt[i]);
    lens[i] = st->lenFilt[i];
    ofs[i] = st->ofsFilt[i];
  }
  return RYX_StsOk;
}

}  // namespace
}  // namespace ryx::wavelet

using namespace ryx::wavelet;
using WS = RyxWtState;

extern "C" {

RYXAPI RyxStatus ryxdWtInitLen(int p1, int p2, int len, int level, WS* st, int type, int* lenDec) {
  return initLen<double>(__func__, p1, p2, len, level, st, type, lenDec);
}
RYXAPI RyxStatus ryxsWtInitLen(int p1, int p2, int len, int level, WS* st, int type, int* lenDec) {
  return initLen<float>(__func__, p1, p2, len, level, st, type, lenDec);
}
RYXAPI RyxStatus ryxwWtInitLen(int p1, int p2, int len, int level, WS* st, int type, int* lenDec) {
  return initLen<short>(__func__, p1, p2, len, level, st, type, lenDec);
}

RYXAPI RyxStatus ryxdWtInit(int p1, int p2, int order, int level, WS* st, int type) {
  return initOrder<double>(__func__, p1, p2, order, level, st, type);
}
RYXAPI RyxStatus ryxsWtInit(int p1, int p2, int order, int level, WS* st, int type) {
  return initOrder<float>(__func__, p1, p2, order, level, st, type);
}
RYXAPI RyxStatus ryxwWtInit(int p1, int p2, int order, int level, WS* st, int type) {
  return initOrder<short>(__func__, p1, p2, order, level, st, type);
}

RYXAPI RyxStatus ryxdWtInitUserFilter(const double* const* t, const int* l, const int* o, int len, int level, WS* st,
                                      int* lenDec) {
  return initUser<double>(__func__, t, l, o, len, level, st, lenDec);
}
RYXAPI RyxStatus ryxsWtInitUserFilter(const float* const* t, const int* l, const int* o, int len, int level, WS* st,
                                      int* lenDec) {
  return initUser<float>(__func__, t, l, o, len, level, st, lenDec);
}
RYXAPI RyxStatus ryxwWtInitUserFilter(const float* const* t, const int* l, const int* o, int len, int level, WS* st,
                                      int* lenDec) {
  return initUser<short>(__func__, t, l, o, len, level, st, lenDec);
}

RYXAPI RyxStatus ryxdWtSetState(WS* st, int type, int p1, int p2, int order, int level, const double* const* t,
                                const int* l, const int* o) {
  return setState<double>(__func__, st, type, p1, p2, order, level, t, l, o);
}
RYXAPI RyxStatus ryxsWtSetState(WS* st, int type, int p1, int p2, int order, int level, const float* const* t,
                                const int* l, const int* o) {
  return setState<float>(__func__, st, type, p1, p2, order, level, t, l, o);
}
RYXAPI RyxStatus ryxwWtSetState(WS* st, int type, int p1, int p2, int order, int level, const float* const* t,
                                const int* l, const int* o) {
  return setState<short>(__func__, st, type, p1, p2, order, level, t, l, o);
}

RYXAPI RyxStatus ryxdWtGetState(const WS* st, int* type, int* p1, int* p2, int* order, int* level, const double** t,
                                int* l, int* o) {
  return getState<double>(__func__, st, type, p1, p2, order, level, t, l, o);
}
RYXAPI RyxStatus ryxsWtGetState(const WS* st, int* type, int* p1, int* p2, int* order, int* level, const float** t,
                                int* l, int* o) {
  return getState<float>(__func__, st, type, p1, p2, order, level, t, l, o);
}
RYXAPI RyxStatus ryxwWtGetState(const WS* st, int* type, int* p1, int* p2, int* order, int* level, const float** t,
                                int* l, int* o) {
  return getState<short>(__func__, st, type, p1, p2, order, level, t, l, o);
}

// Frees the working array, and the filter arrays when the record owns them
// (s and w records, the caller's filters), then clears the record.
RYXAPI RyxStatus ryxWtFree(WS* st) {
  ryxSetErrStatus(RYX_StsOk);
  if (!ryx::passFirst({__func__, kStem}, {{st == nullptr, "wtState==0"}})) return ryxGetErrStatus();
  ryxFree(st->work);
  if (st->wtType == 10 || st->core == 1 || st->core == 4) {
    for (void* taps : st->tapFilt) ryxFree(taps);
  }
  std::memset(st, 0, sizeof *st);
  return RYX_StsOk;
}

}  // extern "C"
