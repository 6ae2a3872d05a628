#include "tempo/kernels/LTempoKernels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <string_view>
#include <type_traits>
#include <utility>

#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wpsabi"  // vectors of four are passed between inlined functions only
#endif

extern const LTempoKernels kTempoKernelsAvx2;

namespace {

#include "tempo/kernels/LFFTLoops.inc"
#include "tempo/kernels/LVocoderLoops.inc"

const LTempoKernels kScalar{"scalar", Transform,   TransformReal, LoadWindowed, Polar,
                            Peaks,    Frequencies, Unwrap,        Rebuild,      JoinReal};

const LTempoKernels& Choose() {
  const char* forced = std::getenv("TAVI_KERNELS");
  if (forced && std::string_view(forced) == kScalar.name) return kScalar;
  return *UsableTempoKernels().back();
}

}  // namespace

const LTempoKernels& TempoKernels() {
  static const LTempoKernels& chosen = Choose();
  return chosen;
}

std::span<const LTempoKernels* const> UsableTempoKernels() {
#if defined(__x86_64__)
  static const LTempoKernels* const forms[] = {&kScalar, &kTempoKernelsAvx2};
  if (__builtin_cpu_supports("avx2")) return forms;
  return std::span(forms).first(1);
#else
  static const LTempoKernels* const forms[] = {&kScalar};
  return forms;
#endif
}
