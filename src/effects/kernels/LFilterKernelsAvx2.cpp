#if defined(__x86_64__)
#include <immintrin.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "effects/kernels/LFilterKernels.h"

// From here on everything is compiled for AVX2. Without FMA, so that the bits are those of the plain form.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#elif defined(__GNUC__)
#pragma GCC target("avx2")
#pragma GCC diagnostic ignored "-Wpsabi"
#endif

namespace {

#define L_AVX2_FORM
#include "tempo/kernels/LVector4.inc"
//
#include "effects/kernels/LFilterLoops.inc"
//
#include "effects/kernels/LReverbLoops.inc"

}  // namespace

#if defined(__clang__)
#pragma clang attribute pop
#endif

extern const LFilterKernels kFilterKernelsAvx2{"avx2", Biquads, MultiplyAdd, Reverb};
#endif
