#include "tempo/kernels/LBeatKernels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wpsabi"  // vectors of four are passed between inlined functions only
#endif

extern const LBeatKernels kBeatKernelsAvx2;

namespace {

#include "tempo/kernels/LBeatLoops.inc"

const LBeatKernels kScalar{"scalar", Energies, Weights, Places, Score};

const LBeatKernels& Choose() {
  const char* forced = std::getenv("TAVI_KERNELS");
  if (forced && std::string_view(forced) == kScalar.name) return kScalar;
  return *UsableBeatKernels().back();
}

}  // namespace

const LBeatKernels& BeatKernels() {
  static const LBeatKernels& chosen = Choose();
  return chosen;
}

std::span<const LBeatKernels* const> UsableBeatKernels() {
#if defined(__x86_64__)
  static const LBeatKernels* const forms[] = {&kScalar, &kBeatKernelsAvx2};
  if (__builtin_cpu_supports("avx2")) return forms;
  return std::span(forms).first(1);
#else
  static const LBeatKernels* const forms[] = {&kScalar};
  return forms;
#endif
}
