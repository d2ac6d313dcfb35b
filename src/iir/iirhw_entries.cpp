// High-level 16-bit IIR (source group "ryxiirhw"): a RyxIirState owns a
// copy of the float taps (quantised in place by the low-level set-up with
// the caller's iirType) and a delay line of 32-bit elements; the filters
// hand the record to the low-level forms, which report under their own
// names, followed by a trace line here. ryxIirFree releases the record.
#include "frame/checks.h"
#include "frame/memory.h"
#include "iir/iir_checks.h"
#include "ryxcore/filter_int16.h"

namespace ryx::iirw {
namespace {

constexpr const char* kStem = "ryxiirhw";
constexpr int kLiveMark = 31725;

void markDead(RyxIirState* st) {
  ryxFree(st->taps);
  ryxFree(st->dlyl);
  st->taps = nullptr;
  st->dlyl = nullptr;
  st->initMark = 0;
}

// The three set-ups: `count` is the order or, for a cascade, the number of
// sections; `setUp` runs the low-level set-up on the record's own copy.
template <class SetUp>
void init(const char* name, int iirType, const float* tapVals, int count, bool cascade, RyxIirState* st,
          SetUp setUp) {
  const Site site{name, kStem};
  const Check countRow = cascade ? Check{count < 1, "numQuads <= 0"} : Check{count < 0, "order < 0"};
  if (!passSticky(site, {{st == nullptr, "statePtr==0"},
                         {tapVals == nullptr, "tapVals==0"},
                         countRow,
                         {iirType < 0 || iirType > 1, "iirType is out of range"},
                         {st != nullptr && st->initMark == kLiveMark,
                          "IIR filter state structure is already initialized! Use ryxIirFree to free it"}}))
    return;
  const int order = cascade ? 2 * count : count;
  const int tapCount = cascade ? 6 * count : 2 * order + 2;
  st->taps = ryxsMalloc(static_cast<unsigned>(tapCount));
  st->dlyl = ryxiMalloc(static_cast<unsigned>(order));
  if (st->taps == nullptr || st->dlyl == nullptr) {
    reportNoMem(site, ryx::iir::kNoMemText);
    markDead(st);
    return;
  }
  ownMemcpy(st->taps, tapVals, tapCount * 4);
  RyxIirTapState ts{};
  setUp(iirType, static_cast<float*>(st->taps), count, &ts);
  if (failedInside(site)) {
    markDead(st);
    return;
  }
  st->order = ts.order;
  st->iirType = ts.iirType;
  st->tapForm = ts.tapForm;
  st->reserved = ts.reserved;
  RyxIirDlyState ds{};
  ryxwIirlInitDlyl(&ts, static_cast<int*>(st->dlyl), &ds);
  st->initMark = kLiveMark;
}

bool passLive(const char* name, const RyxIirState* st) {
  return passFirst({name, kStem}, {{st == nullptr, "statePtr==0"}}) &&
         passFirst({name, kStem}, {{st->initMark != kLiveMark, "IIR filter wasn't initialized"}});
}

RyxIirTapState tapsOf(const RyxIirState* st) { return {st->order, st->taps, st->iirType, st->tapForm, st->reserved}; }

}  // namespace
}  // namespace ryx::iirw

using namespace ryx;
using namespace ryx::iirw;
using ST = RyxIirState;

extern "C" {

RYXAPI void ryxwIirInit(int iirType, const float* tapVals, int order, ST* st) {
  init(__func__, iirType, tapVals, order, false, st, ryxwIirlInit);
}

RYXAPI void ryxwIirInitGain(int iirType, const float* tapVals, int order, ST* st, float gain, int inputRange) {
  // Reports under the name of the plain set-up.
  init("ryxwIirInit", iirType, tapVals, order, false, st, [gain, inputRange](int t, float* p, int o, RyxIirTapState* ts) {
    ryxwIirlInitGain(t, p, o, ts, gain, inputRange);
  });
}

RYXAPI void ryxwIirInitBq(int iirType, const float* tapVals, int numQuads, ST* st) {
  init(__func__, iirType, tapVals, numQuads, true, st, ryxwIirlInitBq);
}

RYXAPI short ryxwIir(ST* st, short sample, int scaleMode, int* scaleFactor) {
  if (!passLive(__func__, st)) return 0;
  const RyxIirTapState ts = tapsOf(st);
  RyxIirDlyState ds{st->dlyl};
  return ryxwIirl(&ts, &ds, sample, scaleMode, scaleFactor);
}

RYXAPI void ryxwbIir(ST* st, const short* src, short* dst, int numIters, int scaleMode, int* scaleFactor) {
  if (!passLive(__func__, st)) return;
  const RyxIirTapState ts = tapsOf(st);
  RyxIirDlyState ds{st->dlyl};
  ryxwbIirl(&ts, &ds, src, dst, numIters, scaleMode, scaleFactor);
  failedInside({__func__, kStem});
}

}  // extern "C"
