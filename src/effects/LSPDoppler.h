// Doppler: the sound drives past the listener in a straight line.
// Law      x is the way to the place of the passing, h the listener's distance from the line; the pitch is
//          1 +- speed * x / sqrt(x^2 + h^2) / speed of sound, above before the passing and below behind it; with the level
//          it is also h / sqrt(x^2 + h^2) as loud. The level's way counts samples, not frames: with two channels it is at
//          its loudest half way to where the pitch turns.
// Units    the passing in percent of the track, distances in m, speed in m/s; positions in frames of the output.
// Threads  LSPDoppler [main]; LSRCDoppler [player], Read allocates nothing. Construction and Seek go through the way frame
//          by frame.
// Failure  none.
#pragma once
#include "effects/LEffect.h"

class LSPDoppler final : public LEffect {
 public:
  static constexpr int kType = 21;
  enum Parameter { Horizontal, Vertical, ChangeVolume, Speed };
  // A new one is the middle preset, with the level.
  static constexpr LEffectParameter kParameters[] = {
      {"Horizontale Hörerposition", "%", LSoundProcessParameter::Percent, 0, 100, 50},
      {"Vertikale Hörerposition", "m", LSoundProcessParameter::Whole, 1, 100, 75},
      {"Lautstärke ändern", "", LSoundProcessParameter::OnOff, 0, 1, 1},
      {"Geschwindigkeit", "m/s", LSoundProcessParameter::Whole, 1, 1000, 100},
  };
  static constexpr LEffectPreset kPresets[] = {{"Stark", {50, 100, kKeepValue, 1000}},
                                               {"Mittel", {50, 75, kKeepValue, 100}},
                                               {"Leise", {50, 50, kKeepValue, 50}}};

  LSPDoppler() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

// How a sound passes a listener.
struct LDopplerPass {
  int frame;       // of the passing
  int sampleRate;  // Hz
  double speed;    // m/s
  double height;   // of the listener above the line, m

  double Along(double at) const;  // m from the passing
  double Ratio(double at) const;
  double Level(double at) const;
};

class LSRCDoppler final : public LSoundProcessBase {
 public:
  LSRCDoppler(const LSoundSource& input, const LDopplerPass& pass, bool changesVolume);
  void Read(int* out, int frames) override;

 private:
  static double GetRatiosCallback(int frame, double inputPosition, void* pass);

  LDopplerPass pass_;
  bool changesVolume_;
};
