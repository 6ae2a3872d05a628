// Changes the tempo of a source without its pitch: a deck's key lock, and the second stage of a pitch shift.
// Law      phase vocoder: frames are taken every Hs * ratio frames of the input and laid out every Hs = N / 8 frames of
//          the output, their phases carried on by LPhaseVocChannel. The output cross-fades the two newest frames, near
//          their middle, over one hop. Where Hs * ratio is no whole number the hops vary by one, so that their mean is
//          exact.
// Units    ratio 1.08 plays 8 % faster; positions in frames, of the output in output-time mode, else of the input.
// Threads  LSPPhaseVoc [main]; LSRCPhaseVoc [player], Read allocates nothing.
// Failure  a ratio out of range is held to what the frame allows.
#pragma once
#include <vector>

#include "sound/LSoundProcess.h"
#include "tempo/LFFT.h"
#include "tempo/LFFTWindow.h"
#include "tempo/LPhaseVocChannel.h"

class LSPPhaseVoc final : public LSoundProcess {
 public:
  static constexpr double kMaxRatio = 8;  // beyond it grains serve instead; a negative ratio plays backward
  LSPPhaseVoc(double ratio, bool outputTime) : ratio_(ratio), outputTime_(outputTime) {}
  LSoundSource OpenSource(LSoundSource& input) override;
  LSoundProcess* GetNewCopy() const override { return new LSPPhaseVoc(*this); }

 private:
  double ratio_;
  bool outputTime_;
};

struct LPhaseVocGeometry {
  static constexpr int kHopShift = 3;
  static constexpr int kMaxBits = 16;  // rates of 2 MHz: no header of a file makes it claim more memory
  LPhaseVocGeometry(int sampleRate, double ratio, int hopShift);
  int bits;
  int size;          // N, frames of a transform
  int synthesisHop;  // Hs
  double exactHop;   // Hs * ratio, at least 1 and at most N
  int analysisHop;   // Ha, exactHop rounded away from zero
};

class LSRCPhaseVoc final : public LSoundProcessBase {
 public:
  LSRCPhaseVoc(const LSoundSource& input, double ratio, bool outputTime, int hopShift, int unused);

  void Read(int* out, int frames) override;
  int GetPositionSample() const override;
  int GetEndSample() const override;
  void Seek(int frame) override;
  bool ControlMessage(int code, long* value) override;
  int AdjustRelativeOffset(int offset, int position) override;

 private:
  // The part of a channel's rebuilt frame that is heard: two hops from its middle on.
  struct LHeard {
    explicit LHeard(std::size_t frames) : newest(frames), older(frames) {}
    LAlignedDoubles newest, older;
  };

  int ToOwnTime(int inputFrames) const;
  void Restart();
  void FillBefore(int frames);
  void ReadInput(int atFrame, int frames);
  int NextHop();
  void NextBuffer(int hop);
  void RebuildSpectrum(int channel, LPhaseVocHops hops, LComplexArrays& spectrum);
  void Hear(int channel, const double* rebuilt);
  void FadeOut(int* out, int frames, int channel) const;
  int* InputAt(int frame) { return inputBuffer_.data() + frame * GetChannels(); }

  bool outputTime_;
  LPhaseVocGeometry geometry_;
  double ratio_;  // as far as the geometry allows it
  int bins_;      // B = N / 2
  LFFT transform_;
  LHanningWindow window_;
  LAlignedDoubles laterWindow_;   // the window times the place in the frame, 0..1
  LAlignedDoubles heardGain_;     // of the two hops that are heard
  std::vector<int> inputBuffer_;  // 5 N frames, interleaved
  int readOffset_ = 0;            // frames: where the newest frame begins
  double hopRest_ = 0;            // 0..1, what the hops so far fall short of the exact ones
  int cursor_;                    // B - Hs..B: progress of the cross-fade; at B a new frame is due
  int readCount_ = 0;             // frames read beyond the middle of the newest frame
  bool restartPending_ = true;

  std::vector<LPhaseVocChannel> channels_;
  std::vector<LHeard> heard_;
  LPhaseVocFrame frame_;
  LComplexArrays complex_, left_, right_;
};
