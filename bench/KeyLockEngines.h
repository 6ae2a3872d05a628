// Time stretchers behind one function, so that all are measured alike.
// Units    samples with full scale 1 at 44100 Hz; speed 1.08 plays 8 % faster. Frame 0 of the result answers frame 0 of
//          the track: what an engine says it starts late is taken off.
#pragma once
#include <rubberband/RubberBandStretcher.h>
#include <soundtouch/SoundTouch.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "sound/LSoundSource.h"
#include "tempo/LSPPhaseVoc.h"

struct StereoTrack {
  explicit StereoTrack(std::size_t frames = 0) : channel{std::vector<float>(frames), std::vector<float>(frames)} {}
  std::size_t Frames() const { return channel[0].size(); }
  std::vector<float> channel[2];
};

class TrackSource final : public LSoundSourceBase {
 public:
  explicit TrackSource(const StereoTrack& track) : LSoundSourceBase(kDeckRate, 2, kPeak16), track_(track) {}
  void Read(int* out, int frames) override {
    for (int frame = 0; frame < frames; ++frame, ++position_)
      for (const auto& samples : track_.channel) *out++ = Inside() ? Sample(samples) : 0;
  }
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return int(track_.Frames()); }
  void Seek(int frame) override { position_ = frame; }

 private:
  bool Inside() const { return position_ >= 0 && position_ < GetEndSample(); }
  int Sample(const std::vector<float>& samples) const {
    return int(std::lround(double(samples[std::size_t(position_)]) * kFullScale));
  }
  const StereoTrack& track_;  // outlives this
  int position_ = 0;
};

inline constexpr int kEngineBlock = 1024;  // frames

inline std::size_t StretchedFrames(const StereoTrack& track, double speed) {
  return std::size_t(double(track.Frames()) / speed);
}

inline StereoTrack StretchTavi(const StereoTrack& track, double speed) {
  LSoundSource source = LSoundSource::Make<TrackSource>(track);
  source = LSPPhaseVoc(speed, true).OpenSource(source);
  StereoTrack result{std::size_t(source.GetEndSample())};
  std::vector<int> block(kEngineBlock * 2);
  for (std::size_t at = 0; at < result.Frames(); at += kEngineBlock) {
    source.Read(block.data(), kEngineBlock);
    for (std::size_t i = 0; i < std::min<std::size_t>(kEngineBlock, result.Frames() - at); ++i)
      for (std::size_t c = 0; c < 2; ++c) result.channel[c][at + i] = float(block[2 * i + c]) / kFullScale;
  }
  return result;
}

inline StereoTrack StretchRubberBand(const StereoTrack& track, double speed, int engine) {
  using RubberBand::RubberBandStretcher;
  RubberBandStretcher stretcher(kDeckRate, 2, RubberBandStretcher::OptionProcessRealTime | engine, 1 / speed, 1);
  StereoTrack result(StretchedFrames(track, speed));
  const std::vector<float> silence(kEngineBlock);
  for (std::size_t pad = stretcher.getPreferredStartPad(); pad > 0;) {
    const std::size_t now = std::min<std::size_t>(pad, kEngineBlock);
    const float* const in[] = {silence.data(), silence.data()};
    stretcher.process(in, now, false);
    pad -= now;
  }
  std::size_t late = stretcher.getStartDelay(), made = 0;
  std::vector<float> left(kEngineBlock), right(kEngineBlock);
  float* const out[] = {left.data(), right.data()};
  for (std::size_t at = 0; made < result.Frames(); at += kEngineBlock) {
    const bool inside = at + kEngineBlock <= track.Frames();
    const float* const in[] = {inside ? &track.channel[0][at] : silence.data(),
                               inside ? &track.channel[1][at] : silence.data()};
    stretcher.process(in, kEngineBlock, false);
    while (stretcher.available() > 0) {
      const std::size_t got = stretcher.retrieve(out, std::min(stretcher.available(), kEngineBlock));
      const std::size_t skipped = std::min(late, got);
      const std::size_t kept = std::min(got - skipped, result.Frames() - made);
      for (std::size_t c = 0; c < 2; ++c) std::copy_n(out[c] + skipped, kept, result.channel[c].begin() + long(made));
      late -= skipped;
      made += kept;
    }
  }
  return result;
}

inline StereoTrack StretchRubberBandFaster(const StereoTrack& track, double speed) {
  return StretchRubberBand(track, speed, RubberBand::RubberBandStretcher::OptionEngineFaster);
}

inline StereoTrack StretchRubberBandFiner(const StereoTrack& track, double speed) {
  return StretchRubberBand(track, speed, RubberBand::RubberBandStretcher::OptionEngineFiner);
}

inline StereoTrack StretchSoundTouch(const StereoTrack& track, double speed) {
  soundtouch::SoundTouch stretcher;
  stretcher.setSampleRate(kDeckRate);
  stretcher.setChannels(2);
  stretcher.setTempo(speed);
  StereoTrack result(StretchedFrames(track, speed));
  std::vector<float> block(kEngineBlock * 2);
  std::size_t made = 0;
  for (std::size_t at = 0; made < result.Frames(); at += kEngineBlock) {
    for (std::size_t i = 0; i < kEngineBlock; ++i)
      for (std::size_t c = 0; c < 2; ++c) block[2 * i + c] = at + i < track.Frames() ? track.channel[c][at + i] : 0;
    stretcher.putSamples(block.data(), kEngineBlock);
    while (const std::size_t got = stretcher.receiveSamples(block.data(), kEngineBlock))
      for (std::size_t i = 0; i < got; ++i) {
        if (made == result.Frames()) break;
        for (std::size_t c = 0; c < 2; ++c) result.channel[c][made] = block[2 * i + c];
        ++made;
      }
  }
  return result;
}
