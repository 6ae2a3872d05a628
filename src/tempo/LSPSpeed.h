// Speed without pitch, by grains that fade into one another: rough, cheap, for any ratio, backward too, and for ramps.
// Signal   a grain takes half its length from where the last one went on, then fades to where the input should be by
//          now: a * w + b * (1 - w), w a half cosine with 24 fraction bits.
// Law      a grain moves the input by trunc(speed * grain) samples; a ramp changes that from grain to grain. A grain is
//          1/90 s, between 20 and 2730 frames.
// Units    indices, grain and step in samples (frames * channels), positions in frames of the input; in output-time mode
//          in frames of the output.
// Threads  LSPSpeed [main]; LSRCSpeed [player], Read allocates nothing and reads at most one buffer of eight grains a grain.
// Failure  none of its own; a speed that is no number is 0, which repeats one grain for ever.
#pragma once
#include <vector>

#include "sound/LSoundProcess.h"
#include "tempo/LSpeedTimeMap.h"

class LSPSpeed final : public LSoundProcess {
 public:
  // Without a ramp the speed stays as it is and finalSpeed is not used.
  LSPSpeed(double speed, double finalSpeed, LSoundTime rampMs, bool outputTime)
      : speed_(speed), finalSpeed_(finalSpeed), rampMs_(rampMs), outputTime_(outputTime) {}
  LSoundSource OpenSource(LSoundSource& input) override;
  LSoundProcess* GetNewCopy() const override { return new LSPSpeed(*this); }

 private:
  double speed_, finalSpeed_;
  LSoundTime rampMs_;
  bool outputTime_;
};

class LSRCSpeed final : public LSoundProcessBase {
 public:
  LSRCSpeed(const LSoundSource& input, double speed, double finalSpeed, LSoundTime rampMs, bool outputTime);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override;
  int GetEndSample() const override;
  void Seek(int frame) override;
  bool ControlMessage(int code, long* value) override;
  int AdjustRelativeOffset(int offset, int position) override;

  int AdjustOffsetFromPosition(int offset, int position) const;  // a negative one from output to input frames

  static std::vector<int> FadeTable(int grainSamples);  // 24 fraction bits, falling

 private:
  void Restart();
  void ReBuffer();
  void Jump();
  void MoveUp(int samples);
  void MoveDown(int samples);
  void FillAgain(int from);
  void AdvanceRamp();
  void SeekRelative(int samples);  // of where the source stands
  void FillTo(int index);
  int FramesAhead() const;  // between the position and what was last read from the input

  const int channels_, grain_, length_;  // length_: of the buffer, eight grains
  const bool outputTime_;
  const double speed_;
  int step_, finalStep_;  // input samples a grain
  int rampLeft_;          // samples
  int inGrain_ = 0;       // position in the present grain
  int outgoing_ = 0, incoming_ = 0, ideal_ = 0;
  int fill_ = 0;        // index that belongs to the position of the input
  bool whole_ = false;  // the buffer is one stretch of the input
  std::vector<int> buffer_, fade_;
  LSpeedTimeMap map_;
};
