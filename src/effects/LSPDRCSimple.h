// Compressor: the level of each block of 20 ms says how loud the music may stay.
// Signal   two blocks are held; over the one that is played, the gain moves in a straight line toward the table's gain for
//          the level of the one behind it, so that it has come down before a loud passage arrives.
// Law      a block brings the gain nearer to its target by blockMs / T of the distance, at most all of it; T is the attack
//          where the gain falls, the release where it rises. After a seek the gain starts at that of the first block.
// Units    levels in dB: by mean square a full-scale sine is 0; by peak 0 is a sample of 2^24, so a track's full scale is
//          -30. Ratio in dB of gain per dB of level. Times in ms, gains with 24 fraction bits.
// Threads  the recipes [main]; LSRCCompressorSimple [player], Read allocates nothing.
// Failure  an input with an error reads as silence.
#pragma once
#include <utility>
#include <vector>

#include "effects/LCompressorTableGain.h"
#include "effects/LEffect.h"

struct LCompressorTiming {
  LSoundTime attack = 20, release = 500;
  bool byPeak = false;  // else by mean square
};

class LSPDRCSimple final : public LEffect {
 public:
  static constexpr int kType = 2;
  enum Parameter { Threshold, Ratio, Limit, Attack, Release, ByPeak };
  static constexpr LEffectParameter kParameters[] = {
      {"Schwelle", "dB", LSoundProcessParameter::Db, -60, 0, -20},
      {"Verhältnis", "dB", LSoundProcessParameter::Decimal, 0, 1000, 1000},
      {"Grenze", "dB", LSoundProcessParameter::Db, -60, 0, -60},
      {"Anstiegszeit", "ms", LSoundProcessParameter::Time, 1, 2000, 20},
      {"Abklingzeit", "ms", LSoundProcessParameter::Time, 1, 5000, 500},
      {"Spitzenwert messen", "", LSoundProcessParameter::OnOff, 0, 1, 0},
  };
  static constexpr LEffectPreset kPresets[] = {
      {"Allgemeiner Stimmpegel", {-24, 500, -40, 100, kKeepValue, kKeepValue}},
      {"TV- / Radio-Werbung", {-30, 750, -30, 100, kKeepValue, kKeepValue}},
  };

  LSPDRCSimple() : LEffect(kType) {}
  LSoundSource OpenSource(LSoundSource& input) override;
};

// The same with a drawn line in place of threshold, ratio and limit.
class LSPDRCPointLine final : public LSoundProcess {
 public:
  explicit LSPDRCPointLine(std::vector<LCompressorPoint> line, const LCompressorTiming& timing = {})
      : line_(std::move(line)), timing_(timing) {}
  LSoundSource OpenSource(LSoundSource& input) override;
  std::string GetName() const override { return "Kompressor"; }
  LSoundProcess* GetNewCopy() const override { return new LSPDRCPointLine(*this); }

 private:
  std::vector<LCompressorPoint> line_;
  LCompressorTiming timing_;
};

class LSRCCompressorSimple final : public LSoundProcessBase {
 public:
  LSRCCompressorSimple(const LSoundSource& input, const LCompressorTableGain& table, const LCompressorTiming& timing);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return input_.GetPositionSample() - HeldFrames(); }
  int GetEndSample() const override;  // of a streaming input: what whole blocks allow
  void Seek(int frame) override;
  bool ControlMessage(int code, long* value) override;

 private:
  int HeldFrames() const { return filled_ ? 2 * blockFrames_ - played_ : 0; }
  int ReadNext();  // gives its target gain
  void Fill();
  void Advance();
  void Play(int* out, int frames);

  LCompressorTableGain table_;
  LCompressorTiming timing_;
  int blockFrames_;
  std::vector<int> current_, next_;
  bool filled_ = false;                                   // false until the first Read after construction or Seek
  int played_ = 0;                                        // frames of the current block
  int gain24_ = kUnityGain24, endGain24_ = kUnityGain24;  // at the current block's ends
};
