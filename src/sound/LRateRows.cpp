#include "sound/LRateRows.h"

#include <sys/mman.h>

#include <cmath>

#include "sound/kernels/LSoundKernels.h"

namespace {

// Near a whole input frame a tap's sine is the difference of two numbers of size 1. Its relative error in a double then
// grows with the number of phases; up to this one it stays below a tenth of kRateDoubt.
constexpr int kMaxFastPhases = 1 << 19;

LRateLaw FastLaw(const LRateWindow& window) {
  LRateLaw law{double(window.angular), double(window.gain), double(window.beta * window.beta), {}, {}};
  for (int tap = 0; tap < kRateRowTaps; ++tap) {
    law.sines[tap] = double(std::sin(window.angular * (tap - kRateCentreTap)));
    law.cosines[tap] = double(std::cos(window.angular * (tap - kRateCentreTap)));
  }
  return law;
}

}  // namespace

// Memory straight from the system is zero without being touched; the heap's might have to be cleared first.
LRateRows::LRateRows(const LConvertRateBase& law) : law_(law), fastLaw_(FastLaw(law.Window())) {
  void* memory = mmap(nullptr, Bytes(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  rows_ = memory == MAP_FAILED ? nullptr : static_cast<LRateRow*>(memory);
}

LRateRows::~LRateRows() {
  if (rows_) munmap(rows_, Bytes());
}

std::size_t LRateRows::Bytes() const { return std::size_t(law_.Phases()) * sizeof(LRateRow); }

void LRateRows::Make(int number) {
  const int phase = int((long long)number * law_.Step() % law_.Phases());
  LRateRow& row = rows_[number];
  double values[kRateRowTaps];
  const bool fast = phase > 0 && law_.Phases() <= kMaxFastPhases;
  if (fast && Kernels().rate->makeRow(fastLaw_, double(phase) / law_.Phases(), values, row)) return;
  for (int tap = 0; tap < kRateTaps; ++tap)
    if (!fast || IsRateDoubtful(values[tap])) row.taps[tap] = static_cast<std::int16_t>(law_.Coefficient(phase, tap));
}
