// The equalisers by transforms: their curves, from which the grid is computed.
// Law      bells add up in dB, each 2^(-4 (octaves from its centre / width)^2): half of its level at half its width on
//          either side. The drawn curve goes straight from point to point, over the logarithm of the frequency.
// Units    Hz; dB; widths in octaves.
// Threads  [main]; the sources that they open are read by the player.
// Failure  none.
#pragma once
#include "effects/LEffect.h"
#include "sound/LdB.h"

class LSPEqBand : public LEffect {
 public:
  static constexpr int kLeastDb = LLevel(LLevel::kMuted).Get(), kMostDb = 12;

  LSoundSource OpenSource(LSoundSource& input) final;
  virtual double DbAt(double hz) const = 0;  // of a frequency above 0

 protected:
  using LEffect::LEffect;
  // The share of its level that a bell has at a frequency.
  static double Bell(double hz, double centreHz, double octaves);
};

class LSPParametricEqBand final : public LSPEqBand {
 public:
  static constexpr int kType = 10;
  enum Parameter { Frequency, Level, Width };
  static constexpr LEffectParameter kParameters[] = {
      {"Frequenz", "Hz", LSoundProcessParameter::Whole, 20, 20000, 1000},
      {"Verstärkung", "dB", LSoundProcessParameter::Db, kLeastDb, kMostDb, 0},
      {"Bandbreite", "", LSoundProcessParameter::Decimal, 100, 4000, 1000},
  };

  LSPParametricEqBand() : LSPEqBand(kType) {}
  double DbAt(double hz) const override;
};

// Seven levels at centres a factor of 2.5 apart, which cover what is heard.
inline constexpr int kEqCurveBands = 7;
inline constexpr int kEqCurveHz[kEqCurveBands] = {60, 150, 375, 950, 2400, 6000, 15000};
inline constexpr LEffectParameter kEqCurveParameters[] = {
    {"Verstärkung (60 Hz)", "dB", LSoundProcessParameter::Db, LSPEqBand::kLeastDb, LSPEqBand::kMostDb, 0},
    {"Verstärkung (150 Hz)", "dB", LSoundProcessParameter::Db, LSPEqBand::kLeastDb, LSPEqBand::kMostDb, 0},
    {"Verstärkung (375 Hz)", "dB", LSoundProcessParameter::Db, LSPEqBand::kLeastDb, LSPEqBand::kMostDb, 0},
    {"Verstärkung (950 Hz)", "dB", LSoundProcessParameter::Db, LSPEqBand::kLeastDb, LSPEqBand::kMostDb, 0},
    {"Verstärkung (2400 Hz)", "dB", LSoundProcessParameter::Db, LSPEqBand::kLeastDb, LSPEqBand::kMostDb, 0},
    {"Verstärkung (6000 Hz)", "dB", LSoundProcessParameter::Db, LSPEqBand::kLeastDb, LSPEqBand::kMostDb, 0},
    {"Verstärkung (15000 Hz)", "dB", LSoundProcessParameter::Db, LSPEqBand::kLeastDb, LSPEqBand::kMostDb, 0},
};

class LSPGraphicEqBand final : public LSPEqBand {
 public:
  static constexpr int kType = 11;
  // As wide as the centres are apart, so that equal levels make an almost even curve: log2(2.5).
  static constexpr double kWidthOctaves = 1.3219280948873623;
  static constexpr auto& kParameters = kEqCurveParameters;

  LSPGraphicEqBand() : LSPEqBand(kType) {}
  double DbAt(double hz) const override;
};

class LSPEqPointLine final : public LSPEqBand {
 public:
  static constexpr int kType = 12;
  static constexpr auto& kParameters = kEqCurveParameters;

  LSPEqPointLine() : LSPEqBand(kType) {}
  double DbAt(double hz) const override;  // beyond its ends the curve is level
};
