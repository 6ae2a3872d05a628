#if defined(__x86_64__)
#include <immintrin.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "tempo/kernels/LBeatKernels.h"

// From here on everything is compiled for AVX2. Without FMA, so that the bits are those of the plain form.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#elif defined(__GNUC__)
#pragma GCC target("avx2")
#pragma GCC diagnostic ignored "-Wpsabi"
#endif

namespace {

#define L_AVX2_FORM
#include "tempo/kernels/LBeatLoops.inc"

}  // namespace

#if defined(__clang__)
#pragma clang attribute pop
#endif

extern const LBeatKernels kBeatKernelsAvx2{"avx2", Energies, Weights, Places, Score};
#endif
