#pragma once
#include "ryxcore.h"

namespace peer {
void add3(const float* a, const float* b, float* d, int n);
void mpy1(float v, float* d, int n);
void cmpy3(const SCplx* a, const SCplx* b, SCplx* d, int n);
void copy(const float* s, float* d, int n);
void set(float v, float* d, int n);
}  // namespace peer
