// A deck's equaliser, the fixed first stage of its chain.
// Law      five peaking bands in a row, those at 0 dB included.
// Units    dB, in the order of the sliders from the bass up.
// Threads  [main]; the sources that it opens are read by the player.
// Failure  an index outside of the bands is ignored, and reads 0 dB.
#pragma once
#include <array>

#include "sound/LSoundSource.h"
#include "sound/LdB.h"

// What a deck puts over its sound by itself, no effect of a list. This one puts nothing.
class TEffect {
 public:
  virtual ~TEffect() = default;
  virtual LSoundSource OpenSource(LSoundSource& input) { return input; }
};

class TEqualizer final : public TEffect {
 public:
  static constexpr int kBands = 5;
  static constexpr std::array<int, kBands> kCentresHz = {60, 120, 400, 2000, 12000};
  static constexpr double kQ = 1.4;

  LSoundSource OpenSource(LSoundSource& input) override;
  void SetLevel(int band, LLevel level);
  LLevel GetLevel(int band) const;

 private:
  static bool IsBand(int band) { return band >= 0 && band < kBands; }
  std::array<LLevel, kBands> levels_{};
};
