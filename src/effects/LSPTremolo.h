// Tremolo: the level swings around that of the input, as a sine.
// Law      y = trunc(x * (1 + depth * sin(2 pi hz * frame / rate))), frame 0 being the start of the track: what is played
//          again after a seek sounds the same again.
// Units    frequency in Hz, depth in percent; 0 % passes the signal.
// Threads  LSPTremolo [main]; LSRCTremolo [player], Read allocates nothing.
// Failure  none.
#pragma once
#include "effects/LEffect.h"

class LSPTremolo final : public LEffect {
 public:
  static constexpr int kType = 19;
  enum Parameter { Frequency, Depth };
  static constexpr LEffectParameter kParameters[] = {
      {"Frequenz", "Hz", LSoundProcessParameter::Decimal, 100, 20000, 1000},
      {"Tiefe", "%", LSoundProcessParameter::Percent, 0, 100, 100},
  };
  static constexpr LEffectPreset kPresets[] = {{"Stark", {12000, 100}}, {"Mittel", {8000, 75}}, {"Leise", {4000, 50}}};

  LSPTremolo() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

class LSRCTremolo final : public LSoundProcessBase {
 public:
  LSRCTremolo(const LSoundSource& input, double depth, double frequencyHz);
  void Read(int* out, int frames) override;
  void Seek(int frame) override;

 private:
  double depth_;     // 0..1
  double turns_;     // of the sine, per frame
  long long frame_;  // counts on where an input's position stands still
};
