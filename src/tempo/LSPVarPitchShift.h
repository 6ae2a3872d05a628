// Speed and pitch together by a ratio that changes as the source plays: doppler, and whatever else follows a curve.
// Law      each output frame moves the input position by the ratio there and takes the value between its frames from
//          four of them, by the Lagrange polynomial of third order. No low-pass: a ratio above 1 aliases.
// Units    ratio in input frames per output frame, at least 0.01; points in input frames; positions in output frames.
// Threads  LSPVarPitchShift [main]; LSRCVarPitchShift [player], Read allocates nothing. Construction and Seek go through
//          the curve frame by frame.
// Failure  none; a ratio that is no number counts as 0.01.
#pragma once
#include <vector>

#include "sound/LSoundProcess.h"

struct LPSPoint {
  int inputFrame;
  double ratio;
};

using LPitchRatio = double (*)(int outputFrame, double inputPosition, void* user);

class LSPVarPitchShift final : public LSoundProcess {
 public:
  // Straight between the points, which stand in rising order; level before the first and after the last. The position is
  // taken down to a whole multiple of the resolution.
  LSPVarPitchShift(std::vector<LPSPoint> points, int resolution)
      : points_(std::move(points)), resolution_(resolution) {}
  LSPVarPitchShift(LPitchRatio ratio, void* user) : ratio_(ratio), user_(user) {}  // user outlives the sources
  LSoundSource OpenSource(LSoundSource& input) override;
  LSoundProcess* GetNewCopy() const override { return new LSPVarPitchShift(*this); }

 private:
  std::vector<LPSPoint> points_;
  int resolution_ = 1;
  LPitchRatio ratio_ = nullptr;
  void* user_ = nullptr;
};

class LSRCVarPitchShift final : public LSoundProcessBase {
 public:
  // Without a ratio the points serve.
  LSRCVarPitchShift(const LSoundSource& input, std::vector<LPSPoint> points, int resolution, LPitchRatio ratio,
                    void* user);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return frame_; }
  int GetEndSample() const override { return end_; }
  void Seek(int frame) override;

  static double GetPitchChangeRatio(int outputFrame, double inputPosition, void* source);

 private:
  struct Place {
    int frame;        // output
    double position;  // input
  };
  void Advance(Place& place) const;
  int FindEnd() const;
  int PlanPart(int frames);
  void ReadInput(int first, int frames);
  void Interpolate(int* out, int first, int frames) const;

  std::vector<LPSPoint> points_;
  std::size_t lower_ = 0, upper_ = 0;  // the segment of the last ratio
  int resolution_;
  LPitchRatio ratio_;
  void* user_;
  int frame_ = 0;        // output
  double position_ = 0;  // input
  int end_;              // output
  std::vector<int> work_;
  std::vector<double> positions_;  // of the output frames of one part
};
