#include "effects/kernels/LFilterKernels.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wpsabi"  // vectors of four are passed between inlined functions only
#endif

extern const LFilterKernels kFilterKernelsAvx2;

namespace {

#include "tempo/kernels/LVector4.inc"
//
#include "effects/kernels/LFilterLoops.inc"
//
#include "effects/kernels/LReverbLoops.inc"

const LFilterKernels kScalar{"scalar", Biquads, MultiplyAdd, Reverb};

const LFilterKernels& Choose() {
  const char* forced = std::getenv("TAVI_KERNELS");
  if (forced && std::string_view(forced) == kScalar.name) return kScalar;
  return *UsableFilterKernels().back();
}

}  // namespace

const LFilterKernels& FilterKernels() {
  static const LFilterKernels& chosen = Choose();
  return chosen;
}

std::span<const LFilterKernels* const> UsableFilterKernels() {
#if defined(__x86_64__)
  static const LFilterKernels* const forms[] = {&kScalar, &kFilterKernelsAvx2};
  if (__builtin_cpu_supports("avx2")) return forms;
  return std::span(forms).first(1);
#else
  static const LFilterKernels* const forms[] = {&kScalar};
  return forms;
#endif
}
