// The plain gain effect.
// Law      (gain * sample) >> 9 in wrapping 32-bit arithmetic; unity passes the samples untouched.
// Units    gain with 24 fraction bits, in Read with 9; the parameter in percent, 1..400.
// Threads  LSPGain [main]; LSRCGain [player], Read allocates nothing.
// Failure  an input with an error gives lseInputError.
#pragma once
#include "sound/LSoundProcess.h"
#include "sound/LdB.h"

class LSPGain final : public LSoundProcess {
 public:
  static constexpr int kProcessType = 1;
  static constexpr int kMinPercent = 1, kMaxPercent = 400;
  static constexpr char kParameterName[] = "Verstärkungsanteil";
  struct Preset {
    const char* name;
    int percent;
  };
  static constexpr Preset kPresets[] = {
      {"Viertel Lautstärke", 25},
      {"Halbe Lautstärke", 50},
      {"Doppelte Lautstärke", 200},
      {"Dreifache Lautstärke", 300},
  };
  static int Gain24OfPercent(int percent);
  static int PercentOfGain24(int gain24);  // rounded up

  explicit LSPGain(int gain24 = kUnityGain24) : gain24_(gain24) {}
  LSoundSource OpenSource(LSoundSource& input) override;
  std::string GetName() const override { return "Verstärkung"; }
  int GetSoundProcessType() const override { return kProcessType; }
  LSoundProcess* GetNewCopy() const override { return new LSPGain(gain24_); }
  int GetNumParameters() const override { return 1; }
  void SetParameterByIndex(int index, int percent) override;
  bool GetParameterByIndex(int index, LSoundProcessParameter* parameter) const override;
  int GetNumPresets() const override;
  std::string GetPresetsName(int index) const override;
  void SetPreset(int index) override;
  int GetIndexInPreset() const override;

  int GetGain24() const { return gain24_; }

 private:
  int Percent() const { return PercentOfGain24(gain24_); }
  int gain24_;
};

class LSRCGain final : public LSoundProcessBase {
 public:
  LSRCGain(const LSoundSource& input, int gain24);
  void Read(int* out, int frames) override;

 private:
  int gain9_;
};
