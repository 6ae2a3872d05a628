// Sits between a renderer and a device that refuses the renderer's rate, and converts with a windowed sinc filter.
// Signal   the filter is filled with silence at construction, so that source frame k sounds at device frame (k +
//          DelayFrames) * deviceRate / sourceRate.
// Units    frames of the source, but for the `frames` of RenderData, which are the device's; rates in Hz; signed 32
//          bits.
// Threads  RenderData [device]: allocates nothing, asks the source for kChunkFrames at a time. The rest by the owner
//          while nothing renders.
// Failure  IsOk is false if the rates or the channel count are not to be converted; RenderData gives silence then.
#pragma once
#include <memory>
#include <vector>

#include "sound/LSoundBackend.h"

struct SwrContext;

class LResampledOutput final : public LSoundRenderer {
 public:
  static constexpr int kChunkFrames = 64;

  LResampledOutput(LSoundRenderer& source, int sourceRate, int deviceRate, int channels);
  LResampledOutput(const LResampledOutput&) = delete;
  LResampledOutput& operator=(const LResampledOutput&) = delete;

  bool IsOk() const { return swr_ != nullptr; }
  int DelayFrames() const { return delayFrames_; }
  int SourceSliceFrames(int deviceFrames) const;  // the most that a slice of the device takes from the source
  void Discard();                                 // forgets what was taken and did not sound yet

  void RenderData(int* out, int frames, int channels) override;

 private:
  struct SwrFree {
    void operator()(SwrContext* swr) const;
  };
  bool Configure();
  void Prime();
  void ConvertChunk();

  LSoundRenderer& source_;
  int sourceRate_, deviceRate_, channels_;
  std::unique_ptr<SwrContext, SwrFree> swr_;
  int delayFrames_ = 0;
  std::vector<int> chunk_;                     // kChunkFrames of the source
  std::vector<int> converted_;                 // what became of the last chunk
  int convertedCapacity_ = 0;                  // device frames
  int convertedFrames_ = 0, takenFrames_ = 0;  // device frames: in converted_, and of them already given out
};
