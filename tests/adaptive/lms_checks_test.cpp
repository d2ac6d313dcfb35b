// Argument checks of both LMS forms: each documented failure in its order,
// with its status, routine name, context text and source group; records,
// arrays and val stay as they were and a failed filter yields zero.
#include <functional>

#include "lms_support.h"

namespace lmstest {
namespace {

constexpr const char* kNull = "Null buffer pointer";
constexpr const char* kNoTaps = "Taps state structure is not initialized";
constexpr const char* kNoLine = "Delay line state structure is not initialized";

// Live records of both forms with their arrays, compared byte for byte
// before and after each failing call.
struct Live {
  float taps[4] = {1, 2, 3, 4};
  float line[8] = {};
  SCplx ctaps[4] = {{1, 1}, {2, 2}, {3, 3}, {4, 4}};
  SCplx cline[8] = {};
  float wtaps[3] = {0.5f, 0.25f, 0.125f};
  short wline[4] = {};
  RyxLmsTapState ts{}, cts{}, wts{};
  RyxLmsDlyState ds{}, cds{}, wds{};
  RyxLmsState st{}, cst{}, dead{}, noLine{};
  float src[4] = {1, 2, 3, 4};
  float dst[4] = {9, 9, 9, 9};
  SCplx csrc[4] = {};
  SCplx cdst[4] = {};
  SCplx val{42.0f, 43.0f};
  float got[8] = {};

  Live() {
    ryxsLmslInit(0, taps, 4, 0.5f, 0.0f, 1, &ts);
    ryxsLmslInitDlyl(&ts, line, 1, &ds);
    ryxcLmslInit(0, ctaps, 4, 0.5f, 0.0f, 0, &cts);
    ryxcLmslInitDlyl(&cts, cline, 1, &cds);
    ryxwLmslInit(0, wtaps, 3, 0.5f, 0, &wts);
    ryxwLmslInitDlyl(&wts, wline, &wds);
    ryxsLmsInit(0, taps, 4, nullptr, 0.5f, 0.0f, 0, &st);
    ryxcLmsInit(0, ctaps, 4, nullptr, 0.5f, 0.0f, 0, &cst);
    ryxsLmsInit(0, taps, 4, nullptr, 0.5f, 0.0f, 0, &noLine);
    ryxsLmsGetDlyl(&noLine, got);
  }
  ~Live() {
    ryxLmsFree(&st);
    ryxLmsFree(&cst);
    ryxLmsFree(&noLine);
  }
  std::vector<unsigned char> snapshot() const {
    auto bytes = [](const void* p, size_t n) {
      const auto* b = static_cast<const unsigned char*>(p);
      return std::vector<unsigned char>(b, b + n);
    };
    std::vector<unsigned char> all = bytes(this, sizeof *this);
    for (auto part : {bytes(st.tapSt.taps, 4 * sizeof(float)), bytes(st.dlySt.dlyl, 4 * sizeof(float)),
                      bytes(cst.tapSt.taps, 4 * sizeof(SCplx)), bytes(cst.dlySt.dlyl, 4 * sizeof(SCplx))})
      all.insert(all.end(), part.begin(), part.end());
    return all;
  }
};

struct Case {
  const char* func;
  const char* context;
  const char* file;
  // Runs the failing call on the fixture; returns the filter's result as
  // its magnitude (0 for routines without one).
  std::function<double(Live&)> call;
};

double m(float v) { return std::fabs(v); }
double m(double v) { return std::fabs(v); }
double m(SCplx v) { return std::fabs(v.re) + std::fabs(v.im); }
double m(DCplx v) { return std::fabs(v.re) + std::fabs(v.im); }

std::vector<Case> lowLevelCases() {
  const char* L = "ryxlmsl";
  return {
      {"ryxsLmslInit", kNull, L, [](Live& f) { ryxsLmslInit(0, nullptr, 4, 0.5f, 0, 0, &f.ts); return 0.0; }},
      {"ryxsLmslInit", kNull, L, [](Live& f) { ryxsLmslInit(0, f.taps, 4, 0.5f, 0, 0, nullptr); return 0.0; }},
      {"ryxdLmslInit", "Invalid buffer length", L,
       [](Live& f) { ryxdLmslInit(0, reinterpret_cast<double*>(f.taps), 0, 0.5f, 0, 0, &f.ts); return 0.0; }},
      {"ryxcLmslInit", "Invalid error delay value", L,
       [](Live& f) { ryxcLmslInit(0, f.ctaps, 4, 0.5f, 0, -1, &f.cts); return 0.0; }},
      {"ryxzLmslInit", kNull, L,
       [](Live& f) { ryxzLmslInit(0, reinterpret_cast<DCplx*>(f.ctaps), 2, 0.5f, 0, 0, nullptr); return 0.0; }},
      {"ryxsLmslInitMr", "Invalid buffer length", L,
       [](Live& f) { ryxsLmslInitMr(0, f.taps, 0, 0.5f, 0, -1, 2, -1, &f.ts); return 0.0; }},
      {"ryxzLmslInitMr", "Invalid error delay value", L,
       [](Live& f) { ryxzLmslInitMr(0, reinterpret_cast<DCplx*>(f.ctaps), 2, 0.5f, 0, -1, 2, -1, &f.cts); return 0.0; }},
      {"ryxsLmslInitMr", "Invalid factor value", L,
       [](Live& f) { ryxsLmslInitMr(0, f.taps, 4, 0.5f, 0, 0, 2, -1, &f.ts); return 0.0; }},
      {"ryxdLmslInitMr", "Invalid factor value", L,
       [](Live& f) { ryxdLmslInitMr(0, reinterpret_cast<double*>(f.taps), 2, 0.5f, 0, 0, 2, 2, &f.ts); return 0.0; }},
      {"ryxsLmslInitDlyl", kNull, L, [](Live& f) { ryxsLmslInitDlyl(&f.ts, f.line, 1, nullptr); return 0.0; }},
      {"ryxdLmslInitDlyl", kNull, L,
       [](Live& f) { ryxdLmslInitDlyl(nullptr, reinterpret_cast<double*>(f.line), 1, &f.ds); return 0.0; }},
      {"ryxcLmslInitDlyl", kNull, L, [](Live& f) { ryxcLmslInitDlyl(&f.cts, nullptr, 1, &f.cds); return 0.0; }},
      {"ryxzLmslInitDlyl", kNull, L, [](Live& f) { ryxzLmslInitDlyl(&f.cts, nullptr, 1, &f.cds); return 0.0; }},
      {"ryxwLmslInit", kNull, L, [](Live& f) { ryxwLmslInit(0, nullptr, 3, 0.5f, 0, &f.wts); return 0.0; }},
      {"ryxwLmslInit", "Invalid buffer length", L,
       [](Live& f) { ryxwLmslInit(0, f.wtaps, 0, 0.5f, 0, &f.wts); return 0.0; }},
      {"ryxwLmslInit", "Invalid error delay value", L,
       [](Live& f) { ryxwLmslInit(0, f.wtaps, 3, 0.5f, -2, &f.wts); return 0.0; }},
      {"ryxwLmslInitDlyl", kNull, L, [](Live& f) { ryxwLmslInitDlyl(&f.wts, nullptr, &f.wds); return 0.0; }},
      {"ryxsLmslGetStep", kNull, L, [](Live&) { return m(ryxsLmslGetStep(nullptr)); }},
      {"ryxsLmslGetLeak", kNull, L, [](Live&) { return m(ryxsLmslGetLeak(nullptr)); }},
      {"ryxsLmslSetStep", kNull, L, [](Live&) { ryxsLmslSetStep(1.0f, nullptr); return 0.0; }},
      {"ryxsLmslSetLeak", kNull, L, [](Live&) { ryxsLmslSetLeak(1.0f, nullptr); return 0.0; }},
      {"ryxwLmslGetStep", kNull, L, [](Live&) { return m(ryxwLmslGetStep(nullptr)); }},
      {"ryxwLmslSetStep", kNull, L, [](Live&) { ryxwLmslSetStep(1.0f, nullptr); return 0.0; }},
      {"ryxsLmsl", kNull, L, [](Live& f) { return m(ryxsLmsl(&f.ts, nullptr, 1.0f, 1.0f)); }},
      {"ryxdLmsl", kNull, L, [](Live& f) { return m(ryxdLmsl(nullptr, &f.ds, 1.0, 1.0)); }},
      {"ryxcLmsl", kNull, L, [](Live& f) { return m(ryxcLmsl(nullptr, &f.cds, SCplx{1, 1}, SCplx{1, 1})); }},
      {"ryxzLmsl", kNull, L, [](Live& f) { return m(ryxzLmsl(&f.cts, nullptr, DCplx{1, 1}, DCplx{1, 1})); }},
      {"ryxscLmsl", kNull, L, [](Live& f) { return m(ryxscLmsl(&f.cts, nullptr, 1.0f, SCplx{1, 1})); }},
      {"ryxdzLmsl", kNull, L, [](Live& f) { return m(ryxdzLmsl(nullptr, &f.ds, 1.0, DCplx{1, 1})); }},
      {"ryxwLmsl", kNull, L, [](Live& f) { return double(std::abs(ryxwLmsl(&f.wts, nullptr, 100, 100))); }},
      {"ryxsbLmsl", kNull, L, [](Live& f) { return m(ryxsbLmsl(&f.ts, &f.ds, nullptr, 1.0f)); }},
      {"ryxdbLmsl", kNull, L, [](Live& f) { return m(ryxdbLmsl(&f.ts, nullptr, nullptr, 1.0)); }},
      {"ryxcbLmsl", kNull, L, [](Live& f) { return m(ryxcbLmsl(&f.cts, &f.cds, nullptr, SCplx{1, 1})); }},
      {"ryxzbLmsl", kNull, L, [](Live& f) { return m(ryxzbLmsl(nullptr, &f.cds, nullptr, DCplx{1, 1})); }},
      {"ryxscbLmsl", kNull, L, [](Live& f) { return m(ryxscbLmsl(&f.cts, &f.ds, nullptr, SCplx{1, 1})); }},
      {"ryxdzbLmsl", kNull, L, [](Live& f) { return m(ryxdzbLmsl(&f.cts, &f.ds, nullptr, DCplx{1, 1})); }},
      {"ryxcLmslOut", "val==0", L, [](Live& f) { ryxcLmslOut(&f.cts, &f.cds, SCplx{1, 1}, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxcLmsl", kNull, L, [](Live& f) { ryxcLmslOut(&f.cts, nullptr, SCplx{1, 1}, SCplx{1, 1}, &f.val); return 0.0; }},
      {"ryxscLmslOut", "val==0", L, [](Live& f) { ryxscLmslOut(&f.cts, &f.ds, 1.0f, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxcbLmslOut", "val==0", L, [](Live& f) { ryxcbLmslOut(&f.cts, &f.cds, f.csrc, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxcbLmsl", kNull, L, [](Live& f) { ryxcbLmslOut(&f.cts, &f.cds, nullptr, SCplx{1, 1}, &f.val); return 0.0; }},
      {"ryxscbLmslOut", "val==0", L, [](Live& f) { ryxscbLmslOut(&f.cts, &f.ds, f.src, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxsLmslNa", kNull, L, [](Live& f) { return m(ryxsLmslNa(&f.ts, nullptr, 1.0f)); }},
      {"ryxdLmslNa", kNull, L, [](Live& f) { return m(ryxdLmslNa(nullptr, &f.ds, 1.0)); }},
      {"ryxcLmslNa", kNull, L, [](Live& f) { return m(ryxcLmslNa(nullptr, &f.cds, SCplx{1, 1})); }},
      {"ryxzLmslNa", kNull, L, [](Live& f) { return m(ryxzLmslNa(&f.cts, nullptr, DCplx{1, 1})); }},
      {"ryxscLmslNa", kNull, L, [](Live& f) { return m(ryxscLmslNa(nullptr, &f.ds, 1.0f)); }},
      {"ryxcsLmslNa", kNull, L, [](Live& f) { return m(ryxcsLmslNa(&f.ts, nullptr, SCplx{1, 1})); }},
      {"ryxdzLmslNa", kNull, L, [](Live& f) { return m(ryxdzLmslNa(nullptr, &f.ds, 1.0)); }},
      {"ryxzdLmslNa", kNull, L, [](Live& f) { return m(ryxzdLmslNa(&f.ts, nullptr, DCplx{1, 1})); }},
      {"ryxcLmslNaOut", "val==0", L, [](Live& f) { ryxcLmslNaOut(&f.cts, &f.cds, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxscLmslNa", kNull, L, [](Live& f) { ryxscLmslNaOut(&f.cts, nullptr, 1.0f, &f.val); return 0.0; }},
      {"ryxcsLmslNaOut", "val==0", L, [](Live& f) { ryxcsLmslNaOut(&f.ts, &f.cds, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxsbLmslNa", kNull, L, [](Live& f) { ryxsbLmslNa(&f.ts, &f.ds, f.src, nullptr, 4); return 0.0; }},
      {"ryxdbLmslNa", kNull, L,
       [](Live& f) { ryxdbLmslNa(&f.ts, &f.ds, nullptr, reinterpret_cast<double*>(f.dst), 2); return 0.0; }},
      {"ryxcbLmslNa", kNull, L, [](Live& f) { ryxcbLmslNa(nullptr, &f.cds, f.csrc, f.cdst, 4); return 0.0; }},
      {"ryxzbLmslNa", "Invalid buffer length", L,
       [](Live& f) {
         ryxzbLmslNa(&f.cts, &f.cds, reinterpret_cast<DCplx*>(f.csrc), reinterpret_cast<DCplx*>(f.cdst), 0);
         return 0.0;
       }},
      {"ryxscbLmslNa", "Invalid buffer length", L, [](Live& f) { ryxscbLmslNa(&f.cts, &f.ds, f.src, f.cdst, -1); return 0.0; }},
      {"ryxcsbLmslNa", kNull, L, [](Live& f) { ryxcsbLmslNa(&f.ts, nullptr, f.csrc, f.cdst, 4); return 0.0; }},
      {"ryxdzbLmslNa", kNull, L,
       [](Live& f) { ryxdzbLmslNa(&f.cts, &f.ds, nullptr, reinterpret_cast<DCplx*>(f.cdst), 2); return 0.0; }},
      {"ryxzdbLmslNa", kNull, L,
       [](Live& f) { ryxzdbLmslNa(&f.ts, &f.cds, reinterpret_cast<DCplx*>(f.csrc), nullptr, 2); return 0.0; }},
      {"ryxsLmslGetTaps", kNull, L, [](Live& f) { ryxsLmslGetTaps(&f.ts, nullptr); return 0.0; }},
      {"ryxdLmslGetTaps", kNull, L, [](Live& f) { ryxdLmslGetTaps(nullptr, reinterpret_cast<double*>(f.got)); return 0.0; }},
      {"ryxcLmslGetTaps", kNull, L, [](Live& f) { ryxcLmslGetTaps(&f.cts, nullptr); return 0.0; }},
      {"ryxzLmslGetTaps", kNull, L, [](Live& f) { ryxzLmslGetTaps(&f.cts, nullptr); return 0.0; }},
      {"ryxwLmslGetTaps", kNull, L, [](Live& f) { ryxwLmslGetTaps(&f.wts, nullptr); return 0.0; }},
      {"ryxsLmslSetTaps", kNull, L, [](Live& f) { ryxsLmslSetTaps(f.src, nullptr); return 0.0; }},
      {"ryxdLmslSetTaps", kNull, L, [](Live&) { ryxdLmslSetTaps(nullptr, nullptr); return 0.0; }},
      {"ryxcLmslSetTaps", kNull, L, [](Live& f) { ryxcLmslSetTaps(f.csrc, nullptr); return 0.0; }},
      {"ryxzLmslSetTaps", kNull, L, [](Live&) { ryxzLmslSetTaps(nullptr, nullptr); return 0.0; }},
      {"ryxwLmslSetTaps", kNull, L, [](Live& f) { ryxwLmslSetTaps(f.got, nullptr); return 0.0; }},
      {"ryxsLmslGetDlyl", kNull, L, [](Live& f) { ryxsLmslGetDlyl(&f.ts, &f.ds, nullptr); return 0.0; }},
      {"ryxdLmslGetDlyl", kNull, L, [](Live& f) { ryxdLmslGetDlyl(&f.ts, nullptr, reinterpret_cast<double*>(f.got)); return 0.0; }},
      {"ryxcLmslGetDlyl", kNull, L, [](Live& f) { ryxcLmslGetDlyl(nullptr, &f.cds, f.cdst); return 0.0; }},
      {"ryxzLmslGetDlyl", kNull, L, [](Live& f) { ryxzLmslGetDlyl(&f.cts, &f.cds, nullptr); return 0.0; }},
      {"ryxwLmslGetDlyl", kNull, L, [](Live& f) { ryxwLmslGetDlyl(&f.wts, &f.wds, nullptr); return 0.0; }},
      {"ryxsLmslSetDlyl", kNull, L, [](Live& f) { ryxsLmslSetDlyl(&f.ts, f.src, nullptr); return 0.0; }},
      {"ryxdLmslSetDlyl", kNull, L, [](Live& f) { ryxdLmslSetDlyl(nullptr, nullptr, &f.ds); return 0.0; }},
      {"ryxcLmslSetDlyl", kNull, L, [](Live& f) { ryxcLmslSetDlyl(nullptr, f.csrc, &f.cds); return 0.0; }},
      {"ryxzLmslSetDlyl", kNull, L, [](Live& f) { ryxzLmslSetDlyl(&f.cts, nullptr, nullptr); return 0.0; }},
      {"ryxwLmslSetDlyl", kNull, L, [](Live& f) { ryxwLmslSetDlyl(&f.wts, nullptr, nullptr); return 0.0; }},
  };
}

std::vector<Case> highLevelCases() {
  const char* H = "ryxlmsh";
  return {
      {"ryxsLmsInit", kNull, H, [](Live& f) { ryxsLmsInit(0, f.taps, 4, nullptr, 0.5f, 0, 0, nullptr); return 0.0; }},
      {"ryxdLmsInit", "Invalid buffer length", H, [](Live& f) { ryxdLmsInit(0, nullptr, 0, nullptr, 0.5f, 0, 0, &f.st); return 0.0; }},
      {"ryxcLmsInit", "Invalid error delay value", H, [](Live& f) { ryxcLmsInit(0, nullptr, 2, nullptr, 0.5f, 0, -1, &f.cst); return 0.0; }},
      {"ryxzLmsInit", kNull, H, [](Live&) { ryxzLmsInit(0, nullptr, 2, nullptr, 0.5f, 0, 0, nullptr); return 0.0; }},
      {"ryxscLmsInit", "Invalid buffer length", H, [](Live& f) { ryxscLmsInit(0, nullptr, -3, nullptr, 0.5f, 0, 0, &f.cst); return 0.0; }},
      {"ryxdzLmsInit", kNull, H, [](Live&) { ryxdzLmsInit(0, nullptr, 2, nullptr, 0.5f, 0, 0, nullptr); return 0.0; }},
      {"ryxsLmsInitMr", "Invalid phase value", H, [](Live& f) { ryxsLmsInitMr(0, nullptr, 2, nullptr, 0.5f, 0, 0, 2, -1, &f.st); return 0.0; }},
      {"ryxdLmsInitMr", "Invalid factor value", H, [](Live& f) { ryxdLmsInitMr(0, nullptr, 2, nullptr, 0.5f, 0, 0, 2, 2, &f.st); return 0.0; }},
      {"ryxcLmsInitMr", "Invalid buffer length", H, [](Live& f) { ryxcLmsInitMr(0, nullptr, 0, nullptr, 0.5f, 0, 0, 2, -1, &f.cst); return 0.0; }},
      {"ryxzLmsInitMr", kNull, H, [](Live&) { ryxzLmsInitMr(0, nullptr, 0, nullptr, 0.5f, 0, 0, 2, -1, nullptr); return 0.0; }},
      {"ryxscLmsInitMr", "Invalid factor value", H, [](Live& f) { ryxscLmsInitMr(0, nullptr, 2, nullptr, 0.5f, 0, 0, 0, 0, &f.cst); return 0.0; }},
      {"ryxdzLmsInitMr", "Invalid phase value", H, [](Live& f) { ryxdzLmsInitMr(0, nullptr, 2, nullptr, 0.5f, 0, 0, 1, -1, &f.cst); return 0.0; }},
      {"ryxsLms", kNull, H, [](Live&) { return m(ryxsLms(nullptr, 1.0f, 1.0f)); }},
      {"ryxsLms", kNoTaps, H, [](Live& f) { return m(ryxsLms(&f.dead, 1.0f, 1.0f)); }},
      {"ryxsLms", kNoLine, H, [](Live& f) { return m(ryxsLms(&f.noLine, 1.0f, 1.0f)); }},
      {"ryxdLms", kNoTaps, H, [](Live& f) { return m(ryxdLms(&f.dead, 1.0, 1.0)); }},
      {"ryxcLms", kNull, H, [](Live&) { return m(ryxcLms(nullptr, SCplx{1, 1}, SCplx{1, 1})); }},
      {"ryxzLms", kNoTaps, H, [](Live& f) { return m(ryxzLms(&f.dead, DCplx{1, 1}, DCplx{1, 1})); }},
      {"ryxscLms", kNoTaps, H, [](Live& f) { return m(ryxscLms(&f.dead, 1.0f, SCplx{1, 1})); }},
      {"ryxdzLms", kNull, H, [](Live&) { return m(ryxdzLms(nullptr, 1.0, DCplx{1, 1})); }},
      {"ryxsbLms", kNull, H, [](Live& f) { return m(ryxsbLms(&f.st, nullptr, 1.0f)); }},
      {"ryxdbLms", kNull, H, [](Live& f) { return m(ryxdbLms(&f.dead, nullptr, 1.0)); }},
      {"ryxcbLms", kNoTaps, H, [](Live& f) { return m(ryxcbLms(&f.dead, f.csrc, SCplx{1, 1})); }},
      {"ryxzbLms", kNull, H, [](Live&) { return m(ryxzbLms(nullptr, nullptr, DCplx{1, 1})); }},
      {"ryxscbLms", kNoLine, H, [](Live& f) { return m(ryxscbLms(&f.noLine, f.src, SCplx{1, 1})); }},
      {"ryxdzbLms", kNull, H, [](Live& f) { return m(ryxdzbLms(&f.cst, nullptr, DCplx{1, 1})); }},
      {"ryxcLmsOut", "val==0", H, [](Live& f) { ryxcLmsOut(&f.cst, SCplx{1, 1}, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxcLms", kNoTaps, H, [](Live& f) { ryxcLmsOut(&f.dead, SCplx{1, 1}, SCplx{1, 1}, &f.val); return 0.0; }},
      {"ryxscLmsOut", "val==0", H, [](Live& f) { ryxscLmsOut(&f.cst, 1.0f, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxcbLmsOut", "val==0", H, [](Live& f) { ryxcbLmsOut(&f.cst, f.csrc, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxscbLms", kNull, H, [](Live& f) { ryxscbLmsOut(&f.cst, nullptr, SCplx{1, 1}, &f.val); return 0.0; }},
      {"ryxsLmsDes", kNull, H, [](Live&) { return m(ryxsLmsDes(nullptr, 1.0f, 1.0f)); }},
      {"ryxdLmsDes", kNoTaps, H, [](Live& f) { return m(ryxdLmsDes(&f.dead, 1.0, 1.0)); }},
      {"ryxcLmsDes", kNoTaps, H, [](Live& f) { return m(ryxcLmsDes(&f.dead, SCplx{1, 1}, SCplx{1, 1})); }},
      {"ryxzLmsDes", kNull, H, [](Live&) { return m(ryxzLmsDes(nullptr, DCplx{1, 1}, DCplx{1, 1})); }},
      {"ryxscLmsDes", kNoLine, H, [](Live& f) { return m(ryxscLmsDes(&f.noLine, 1.0f, SCplx{1, 1})); }},
      {"ryxdzLmsDes", kNoTaps, H, [](Live& f) { return m(ryxdzLmsDes(&f.dead, 1.0, DCplx{1, 1})); }},
      {"ryxcLmsDesOut", "val==0", H, [](Live& f) { ryxcLmsDesOut(&f.cst, SCplx{1, 1}, SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxscLmsDes", kNoTaps, H, [](Live& f) { ryxscLmsDesOut(&f.dead, 1.0f, SCplx{1, 1}, &f.val); return 0.0; }},
      {"ryxscLmsDesOut", "val==0", H, [](Live& f) { ryxscLmsDesOut(&f.cst, 1.0f, SCplx{1, 1}, nullptr); return 0.0; }},
      // The marks are tested before the arrays.
      {"ryxsbLmsDes", kNull, H, [](Live& f) { ryxsbLmsDes(nullptr, f.src, f.src, f.dst, 4); return 0.0; }},
      {"ryxsbLmsDes", kNoTaps, H, [](Live& f) { ryxsbLmsDes(&f.dead, nullptr, nullptr, nullptr, 0); return 0.0; }},
      {"ryxsbLmsDes", kNoLine, H, [](Live& f) { ryxsbLmsDes(&f.noLine, nullptr, nullptr, nullptr, 0); return 0.0; }},
      {"ryxsbLmsDes", kNull, H, [](Live& f) { ryxsbLmsDes(&f.st, nullptr, f.src, f.dst, 0); return 0.0; }},
      {"ryxdbLmsDes", kNoTaps, H,
       [](Live& f) {
         ryxdbLmsDes(&f.dead, nullptr, nullptr, nullptr, 0);
         return 0.0;
       }},
      {"ryxcbLmsDes", kNull, H, [](Live& f) { ryxcbLmsDes(&f.cst, f.csrc, nullptr, f.cdst, 4); return 0.0; }},
      {"ryxzbLmsDes", kNoTaps, H, [](Live& f) { ryxzbLmsDes(&f.dead, nullptr, nullptr, nullptr, 1); return 0.0; }},
      {"ryxscbLmsDes", kNull, H, [](Live& f) { ryxscbLmsDes(&f.cst, f.src, f.csrc, nullptr, 4); return 0.0; }},
      {"ryxdzbLmsDes", kNull, H, [](Live&) { ryxdzbLmsDes(nullptr, nullptr, nullptr, nullptr, 4); return 0.0; }},
      {"ryxsbLmsDes", "Bad value of number of iterations", H, [](Live& f) { ryxsbLmsDes(&f.st, f.src, f.src, f.dst, 0); return 0.0; }},
      {"ryxcbLmsDes", "Bad value of number of iterations", H,
       [](Live& f) { ryxcbLmsDes(&f.cst, f.csrc, f.csrc, f.cdst, -2); return 0.0; }},
      {"ryxsLmsGetTaps", kNull, H, [](Live& f) { ryxsLmsGetTaps(&f.st, nullptr); return 0.0; }},
      {"ryxdLmsGetTaps", kNull, H, [](Live& f) { ryxdLmsGetTaps(nullptr, reinterpret_cast<double*>(f.got)); return 0.0; }},
      {"ryxcLmsGetTaps", kNull, H, [](Live& f) { ryxcLmsGetTaps(&f.cst, nullptr); return 0.0; }},
      {"ryxzLmsGetTaps", kNull, H, [](Live&) { ryxzLmsGetTaps(nullptr, nullptr); return 0.0; }},
      {"ryxsLmsSetTaps", kNull, H, [](Live& f) { ryxsLmsSetTaps(f.src, nullptr); return 0.0; }},
      {"ryxdLmsSetTaps", kNull, H, [](Live&) { ryxdLmsSetTaps(nullptr, nullptr); return 0.0; }},
      {"ryxcLmsSetTaps", kNull, H, [](Live& f) { ryxcLmsSetTaps(f.csrc, nullptr); return 0.0; }},
      {"ryxzLmsSetTaps", kNull, H, [](Live&) { ryxzLmsSetTaps(nullptr, nullptr); return 0.0; }},
      {"ryxsLmsGetDlyl", kNull, H, [](Live& f) { ryxsLmsGetDlyl(nullptr, f.got); return 0.0; }},
      {"ryxdLmsGetDlyl", kNull, H, [](Live& f) { ryxdLmsGetDlyl(&f.st, nullptr); return 0.0; }},
      {"ryxcLmsGetDlyl", kNull, H, [](Live& f) { ryxcLmsGetDlyl(nullptr, f.cdst); return 0.0; }},
      {"ryxzLmsGetDlyl", kNull, H, [](Live&) { ryxzLmsGetDlyl(nullptr, nullptr); return 0.0; }},
      {"ryxsLmsSetDlyl", kNull, H, [](Live& f) { ryxsLmsSetDlyl(nullptr, f.src); return 0.0; }},
      {"ryxdLmsSetDlyl", kNull, H, [](Live&) { ryxdLmsSetDlyl(nullptr, nullptr); return 0.0; }},
      {"ryxcLmsSetDlyl", kNull, H, [](Live& f) { ryxcLmsSetDlyl(nullptr, f.csrc); return 0.0; }},
      {"ryxzLmsSetDlyl", kNull, H, [](Live&) { ryxzLmsSetDlyl(nullptr, nullptr); return 0.0; }},
      {"ryxsLmsGetErrVal", kNull, H, [](Live&) { return m(ryxsLmsGetErrVal(nullptr)); }},
      {"ryxdLmsGetErrVal", kNull, H, [](Live&) { return m(ryxdLmsGetErrVal(nullptr)); }},
      {"ryxcLmsGetErrVal", kNull, H, [](Live&) { return m(ryxcLmsGetErrVal(nullptr)); }},
      {"ryxzLmsGetErrVal", kNull, H, [](Live&) { return m(ryxzLmsGetErrVal(nullptr)); }},
      {"ryxcLmsGetErrValOut", "val==0", H, [](Live& f) { ryxcLmsGetErrValOut(&f.cst, nullptr); return 0.0; }},
      {"ryxcLmsGetErrVal", kNull, H, [](Live& f) { ryxcLmsGetErrValOut(nullptr, &f.val); return 0.0; }},
      {"ryxsLmsSetErrVal", kNull, H, [](Live&) { ryxsLmsSetErrVal(1.0f, nullptr); return 0.0; }},
      {"ryxdLmsSetErrVal", kNull, H, [](Live&) { ryxdLmsSetErrVal(1.0, nullptr); return 0.0; }},
      {"ryxcLmsSetErrVal", kNull, H, [](Live&) { ryxcLmsSetErrVal(SCplx{1, 1}, nullptr); return 0.0; }},
      {"ryxzLmsSetErrVal", kNull, H, [](Live&) { ryxzLmsSetErrVal(DCplx{1, 1}, nullptr); return 0.0; }},
  };
}

TEST(LmsChecks, EveryDocumentedFailure) {
  std::vector<Case> cases = lowLevelCases();
  for (Case& c : highLevelCases()) cases.push_back(std::move(c));
  for (size_t i = 0; i < cases.size(); ++i) {
    const Case& c = cases[i];
    Live f;
    const std::vector<unsigned char> before = f.snapshot();
    ryxtest::ReportCapture cap;
    const double result = c.call(f);
    const std::string where = std::string("case ") + std::to_string(i) + " " + c.func + ": " + c.context;
    ASSERT_EQ(cap.reports().size(), 1u) << where;
    const ryxtest::Report& r = cap.reports()[0];
    EXPECT_EQ(r.status, RYX_StsBadArg) << where;
    EXPECT_EQ(r.funcName, c.func) << where;
    EXPECT_EQ(r.context, c.context) << where;
    EXPECT_EQ(r.file, c.file) << where;
    EXPECT_EQ(ryxGetErrStatus(), RYX_StsBadArg) << where;
    EXPECT_EQ(result, 0.0) << where;
    EXPECT_TRUE(f.snapshot() == before) << where << ": something was written";
  }
}

// The set-up routines give up on a failure already standing in the thread's
// status, without a report of their own.
TEST(LmsChecks, SetUpGivesUpOnStandingFailure) {
  ryxtest::ReportCapture cap;
  float taps[2] = {1, 2}, line[3] = {};
  RyxLmsTapState ts{};
  RyxLmsDlyState ds{};
  RyxLmsState st{};
  ryxSetErrStatus(RYX_StsBadArg);
  ryxsLmslInit(0, taps, 2, 0.5f, 0, 0, &ts);
  ryxsLmslInitDlyl(&ts, line, 1, &ds);
  ryxsLmsInit(0, taps, 2, nullptr, 0.5f, 0, 0, &st);
  ryxwLmslInit(0, taps, 2, 0.5f, 0, &ts);
  EXPECT_TRUE(cap.reports().empty());
  EXPECT_EQ(ts.taps, nullptr);
  EXPECT_EQ(ds.dlyl, nullptr);
  EXPECT_EQ(st.tapSt.taps, nullptr);
  EXPECT_EQ(taps[0], 1.0f);
}

}  // namespace
}  // namespace lmstest
