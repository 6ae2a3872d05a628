#include "audiofile/kernels/LMP3Kernels.h"

#include <bit>

#include "audiofile/mp3/LMP3PolyphaseSynth.h"
#include "sound/kernels/LSoundKernels.h"

namespace {

#define L_LANES 4
#define L_TARGET
namespace plain {
#include "audiofile/kernels/LMP3KernelText.h"
constexpr LMP3Kernels kKernels{"scalar", Huffman, ScaleBands, MidSide, ReduceAlias, Hybrid, MatrixMultiply, WindowSum};
}  // namespace plain
#undef L_LANES
#undef L_TARGET

#if defined(__x86_64__)
#define L_LANES 8
#define L_TARGET __attribute__((target("avx2,bmi2")))
namespace avx2 {
#include "audiofile/kernels/LMP3KernelText.h"
constexpr LMP3Kernels kKernels{"avx2", Huffman, ScaleBands, MidSide, ReduceAlias, Hybrid, MatrixMultiply, WindowSum};
}  // namespace avx2
#endif

}  // namespace

const LMP3Kernels& LMP3BestKernels() {
  // The wish for the plain form has been heard there already.
  const bool isPlain = &Kernels() == UsableKernels().front();
  return isPlain ? *LMP3UsableKernels().front() : *LMP3UsableKernels().back();
}

std::span<const LMP3Kernels* const> LMP3UsableKernels() {
#if defined(__x86_64__)
  static const LMP3Kernels* const all[] = {&plain::kKernels, &avx2::kKernels};
  return {all, __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2") ? 2U : 1U};
#else
  static const LMP3Kernels* const all[] = {&plain::kKernels};
  return all;
#endif
}
