// Sound that says of every sample where it belongs: 1, 2, 3, ... over frames and channels, as 20 bits shifted up by 12.
#pragma once
#include <algorithm>
#include <atomic>
#include <vector>

#include "sound/LSoundBackend.h"

inline int RampSample20(int frame, int channel, int channels) { return frame * channels + channel + 1; }

class RampRenderer final : public LSoundRenderer {
 public:
  explicit RampRenderer(int length) : length_(length) {}
  void RenderData(int* out, int frames, int channels) override {
    const int at = frames_.load();
    for (int i = 0; i < frames; ++i)
      for (int channel = 0; channel < channels; ++channel)
        *out++ = at + i < length_ ? RampSample20(at + i, channel, channels) << 12 : 0;
    largest = std::max(largest.load(), frames);
    frames_ = at + frames;
  }
  int Frames() const { return frames_; }
  bool IsDone() const { return frames_ >= length_; }
  std::atomic<int> largest{0};

 private:
  int length_;
  std::atomic<int> frames_{0};
};

// Leaves frames out that are silent on every channel: a device that runs ahead of a starved thread puts them in
// anywhere, while no frame of a ramp is silent.
inline std::vector<int> WithoutSilence(const std::vector<int>& samples, int channels) {
  std::vector<int> kept;
  for (auto frame = samples.begin(); frame != samples.end(); frame += channels)
    if (std::any_of(frame, frame + channels, [](int sample) { return sample != 0; }))
      kept.insert(kept.end(), frame, frame + channels);
  return kept;
}

// The first frame of `samples` (20 bits) that is not silent, and how many frames from there on continue the ramp.
struct RampFound {
  int firstFrame = -1, exactFrames = 0;
  bool silentAfter = true;
};
inline RampFound FindRamp(const std::vector<int>& samples, int channels) {
  RampFound found;
  const int frames = int(samples.size()) / channels;
  const auto at = [&](int frame, int channel) { return samples[std::size_t(frame * channels + channel)]; };
  int frame = 0;
  while (frame < frames && at(frame, 0) == 0 && at(frame, channels - 1) == 0) ++frame;
  found.firstFrame = frame;
  const auto continues = [&] {
    for (int channel = 0; channel < channels; ++channel)
      if (at(frame, channel) != RampSample20(found.exactFrames, channel, channels)) return false;
    return true;
  };
  for (; frame < frames && continues(); ++frame) ++found.exactFrames;
  for (; frame < frames; ++frame)
    for (int channel = 0; channel < channels; ++channel) found.silentAfter &= at(frame, channel) == 0;
  return found;
}
