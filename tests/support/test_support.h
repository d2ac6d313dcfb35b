// Shared test helpers: capturing reports, guarded buffers at chosen
// misalignments, seeded random data.
#pragma once

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "ryxcore.h"

namespace ryxtest {

// One call of a report function.
struct Report {
  RyxStatus status;
  std::string funcName;
  std::string context;
  std::string file;
  int line;
};

// While alive, the calling thread runs in Parent mode with a report
// function that records every call; the previous mode and function come
// back at destruction and the stored status is cleared on both ends.
class ReportCapture {
 public:
  ReportCapture() : mode_(ryxGetErrMode()) {
    log() = {};
    ryxSetErrMode(RYX_ErrorModeParent);
    previous_ = ryxRedirectError(&record);
    ryxSetErrStatus(RYX_StsOk);
  }
  ~ReportCapture() {
    ryxRedirectError(previous_);
    ryxSetErrMode(mode_);
    ryxSetErrStatus(RYX_StsOk);
  }
  ReportCapture(const ReportCapture&) = delete;
  ReportCapture& operator=(const ReportCapture&) = delete;

  const std::vector<Report>& reports() const { return log(); }
  void clear() {
    log().clear();
    ryxSetErrStatus(RYX_StsOk);
  }

  static std::vector<Report>& log() {
    thread_local std::vector<Report> entries;
    return entries;
  }

 private:
  static RyxStatus record(RyxStatus status, const char* funcName, const char* context, const char* file,
                          int line) {
    log().push_back({status, funcName ? funcName : "(null)", context ? context : "(null)",
                     file ? file : "(null)", line});
    return status;
  }

  int mode_;
  ryxReportFn previous_;
};

// A buffer of `count` elements of T starting `offsetBytes` past a 64-byte
// boundary, with guard bytes on both sides filled with a marker so stray
// writes are caught by intact().
template <class T>
class Guarded {
 public:
  static constexpr int kGuard = 64;
  static constexpr unsigned char kMark = 0xA5;

  Guarded(int count, int offsetBytes)
      : count_(count), offset_(offsetBytes), raw_(kGuard + 64 + offsetBytes + sizeof(T) * count + kGuard) {
    std::memset(raw_.data(), kMark, raw_.size());
  }
  T* data() { return reinterpret_cast<T*>(base() + kGuard + offset_); }
  int size() const { return count_; }
  T& operator[](int i) { return data()[i]; }

  bool intact() {
    unsigned char* b = base();
    unsigned char* first = reinterpret_cast<unsigned char*>(data());
    unsigned char* last = first + sizeof(T) * count_;
    for (unsigned char* p = raw_.data(); p < first; ++p) {
      if (p >= b && *p != kMark) return false;
    }
    for (unsigned char* p = last; p < last + kGuard; ++p) {
      if (*p != kMark) return false;
    }
    return true;
  }

 private:
  unsigned char* base() {
    auto a = reinterpret_cast<std::uintptr_t>(raw_.data());
    return reinterpret_cast<unsigned char*>((a + 63) & ~std::uintptr_t{63});
  }
  int count_;
  int offset_;
  std::vector<unsigned char> raw_;
};

// Seeded source of test data.
class Random {
 public:
  explicit Random(std::uint32_t seed) : gen_(seed) {}
  float f32(float lo = -100.0f, float hi = 100.0f) { return std::uniform_real_distribution<float>(lo, hi)(gen_); }
  double f64(double lo = -100.0, double hi = 100.0) { return std::uniform_real_distribution<double>(lo, hi)(gen_); }
  int i32(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(gen_); }
  std::uint32_t bits() { return gen_(); }
  void fill(float* p, int n) { for (int i = 0; i < n; ++i) p[i] = f32(); }
  void fill(double* p, int n) { for (int i = 0; i < n; ++i) p[i] = f64(); }
  void fill(SCplx* p, int n) { for (int i = 0; i < n; ++i) p[i] = {f32(), f32()}; }
  void fill(DCplx* p, int n) { for (int i = 0; i < n; ++i) p[i] = {f64(), f64()}; }
  std::mt19937& engine() { return gen_; }

 private:
  std::mt19937 gen_;
};

// Bitwise equality of two element arrays.
template <class T>
bool sameBits(const T* a, const T* b, int n) {
  return std::memcmp(a, b, sizeof(T) * static_cast<std::size_t>(n)) == 0;
}

}  // namespace ryxtest
