// The peer for elementwise arithmetic: the plain loops a user would write,
// compiled at -O3 in their own translation unit and never inlined into the
// benchmark, so each call does what a caller's own loop would do.
#include "plain_loops.h"

#include <cmath>

namespace peer {

__attribute__((noinline)) void add3(const float* a, const float* b, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = a[i] + b[i];
}
__attribute__((noinline)) void mpy1(float v, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] *= v;
}
__attribute__((noinline)) void cmpy3(const SCplx* a, const SCplx* b, SCplx* d, int n) {
  for (int i = 0; i < n; ++i) {
    const float re = a[i].re * b[i].re - a[i].im * b[i].im;
    const float im = a[i].re * b[i].im + a[i].im * b[i].re;
    d[i].re = re;
    d[i].im = im;
  }
}
__attribute__((noinline)) void copy(const float* s, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = s[i];
}
__attribute__((noinline)) void set(float v, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = v;
}

__attribute__((noinline)) void sqrt(const float* s, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = std::sqrt(s[i]);
}
__attribute__((noinline)) void abs(const float* s, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = std::fabs(s[i]);
}
__attribute__((noinline)) void sqr(const float* s, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = s[i] * s[i];
}
__attribute__((noinline)) void ln(const float* s, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = logf(s[i]);
}
__attribute__((noinline)) void exp(const float* s, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = expf(s[i]);
}
__attribute__((noinline)) void atan(const float* s, float* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = atanf(s[i]);
}
}  // namespace peer
