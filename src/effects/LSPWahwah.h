// Wah-wah: a resonant band-pass whose centre moves up and down in a triangle.
// Law      per frame g = 2 sin(pi f / rate); per sample hi = x - lo - q band, band += g hi, lo += g band, y = band,
//          truncated (Chamberlin, Musical Applications of Microprocessors, 1985, the state-variable filter).
// Units    frequencies in Hz; depth in percent of the centre; resonance in percent, q = 2 (1 - resonance).
// Threads  LSPWahwah [main]; LSRCWahwah [player], Read allocates nothing.
// Failure  none: centres at which the filter would not be stable are held below them.
#pragma once
#include <vector>

#include "effects/LEffect.h"

// The sweep in numbers: from low to high and back over two periods.
struct LWahSweep {
  double lowHz, highHz;
  double periodFrames;
  double damping;  // q; the resonance lifts its centre by 1 / q
};

class LSPWahwah final : public LEffect {
 public:
  static constexpr int kType = 22;
  enum Parameter { Frequency, Depth, Centre, Resonance };
  static constexpr LEffectParameter kParameters[] = {
      {"Frequenz", "Hz", LSoundProcessParameter::Decimal, 100, 10000, 5000},
      {"Tiefe", "%", LSoundProcessParameter::Percent, 0, 100, 100},
      {"Mittenfrequenz", "Hz", LSoundProcessParameter::Whole, 100, 4000, 500},
      {"Resonanz", "%", LSoundProcessParameter::Percent, 0, 99, 75},
  };
  static constexpr LEffectPreset kPresets[] = {
      {"Stark", {5000, 100, 500, 75}},
      {"Mittel", {5000, 80, 450, 60}},
      {"Leise", {4000, 70, 400, 50}},
  };

  LSPWahwah() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
  LWahSweep Sweep(int sampleRate) const;
};

class LSRCWahwah final : public LSoundProcessBase {
 public:
  LSRCWahwah(const LSoundSource& input, const LWahSweep& sweep);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;  // begins anew: silence in the filter, the centre at its lowest

 private:
  struct State {
    double low = 0, band = 0;
  };
  void Filter(int* out, int frames);
  double CentreHz(long long frame) const;

  LWahSweep sweep_;
  double slope_;               // Hz a frame
  long long heard_ = 0;        // frames since the start
  std::vector<State> states_;  // one a channel
};
