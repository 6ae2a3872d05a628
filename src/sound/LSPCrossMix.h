// Fades a source in out of a second one, and at its end out into the second one again. For offline copies.
// Signal   head, N frames: first * i / N + second * (1 - i / N); body: the first alone; tail, N frames: the reverse.
// Units    frames. The head's ramp counts within one Read, so callers keep their blocks at or above N.
// Threads  [worker]; Read allocates nothing.
// Failure  a source with an error gives lseInputError; past the end it reads silence.
#pragma once
#include <vector>

#include "sound/LSoundProcess.h"

class LSPCrossMix final : public LSoundProcess {
 public:
  // Both sources have one format.
  LSPCrossMix(int fadeFrames, const LSoundSource& second) : fadeFrames_(fadeFrames), second_(second) {}
  LSoundSource OpenSource(LSoundSource& input) override;

  static int FadeFrames(int totalFrames, int sampleRate);  // what a copy of so many frames takes

 private:
  int fadeFrames_;
  LSoundSource second_;
};

class LSRCCrossMix final : public LSoundProcessBase {
 public:
  LSRCCrossMix(const LSoundSource& first, const LSoundSource& second, int fadeFrames);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return position_; }
  void Seek(int frame) override;

 private:
  int ReadPart(int* out, int frames, int done);
  void Fade(int* out, int frames, const float* firstRamp, const float* secondRamp);

  LSoundSource second_;
  int fadeFrames_;
  std::vector<float> rising_, falling_;
  std::vector<int> firstBlock_, secondBlock_;  // fadeFrames_ frames
  int position_ = 0;
};
