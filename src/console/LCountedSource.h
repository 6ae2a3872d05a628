// A stage whose position is the frame sought plus the frames read since. For a time-stretching input, whose own position
// moves in steps of its analysis: what is rewound and looped must count to the frame.
// Units    frames of the output
// Threads  [player] or [main, player lock]
#pragma once
#include "sound/LSoundProcess.h"
#include "sound/LWrap.h"

class LCountedSource final : public LSoundProcessBase {
 public:
  explicit LCountedSource(const LSoundSource& input) : LSoundProcessBase(input), position_(input.GetPositionSample()) {}

  void Read(int* out, int frames) override {
    input_.Read(out, frames);
    position_ = WrapAdd32(position_, frames);
  }
  void Seek(int frame) override {
    input_.Seek(frame);
    position_ = frame;
  }
  int GetPositionSample() const override { return position_; }

 private:
  int position_;
};
