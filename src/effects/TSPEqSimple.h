// The equaliser of the effect lists: seven peaking bands in a row, those at 0 dB included.
// Units    dB, by band from the bass up; kMuted (-127) takes a band out.
// Threads  [main]; the sources that it opens are read by the player.
// Failure  none.
#pragma once
#include "effects/LEffect.h"
#include "sound/LdB.h"

class TSPEqSimple final : public LEffect {
 public:
  static constexpr int kType = 16;
  static constexpr int kBands = 7;
  static constexpr int kCentresHz[kBands] = {55, 150, 250, 1200, 3000, 6000, 12000};
  static constexpr double kQ = 5;
  static constexpr int kMostDb = 12;
  static constexpr LEffectParameter kParameters[] = {
      {"Verstärkung (55 Hz)", "dB", LSoundProcessParameter::Db, LLevel::kMuted, kMostDb, 0},
      {"Verstärkung (150 Hz)", "dB", LSoundProcessParameter::Db, LLevel::kMuted, kMostDb, 0},
      {"Verstärkung (250 Hz)", "dB", LSoundProcessParameter::Db, LLevel::kMuted, kMostDb, 0},
      {"Verstärkung (1200 Hz)", "dB", LSoundProcessParameter::Db, LLevel::kMuted, kMostDb, 0},
      {"Verstärkung (3000 Hz)", "dB", LSoundProcessParameter::Db, LLevel::kMuted, kMostDb, 0},
      {"Verstärkung (6000 Hz)", "dB", LSoundProcessParameter::Db, LLevel::kMuted, kMostDb, 0},
      {"Verstärkung (12000 Hz)", "dB", LSoundProcessParameter::Db, LLevel::kMuted, kMostDb, 0},
  };

  TSPEqSimple() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};
