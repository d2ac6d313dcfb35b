#pragma once
#include "ryxcore.h"

namespace peer {
void add3(const float* a, const float* b, float* d, int n);
void mpy1(float v, float* d, int n);
void cmpy3(const SCplx* a, const SCplx* b, SCplx* d, int n);
void copy(const float* s, float* d, int n);
void set(float v, float* d, int n);
// One-operand elementwise loops: std::sqrt, std::fabs, x*x, and the C
// library's logf, expf and atanf per element.
void sqrt(const float* s, float* d, int n);
void abs(const float* s, float* d, int n);
void sqr(const float* s, float* d, int n);
void ln(const float* s, float* d, int n);
void exp(const float* s, float* d, int n);
void atan(const float* s, float* d, int n);
}  // namespace peer
