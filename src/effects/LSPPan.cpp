#include "effects/LSPPan.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "sound/LFixedPoint.h"

namespace {

// A slow swing is one that a dancer follows without noticing its start, a fast one takes about two bars.
constexpr LSoundTime kSlowMs = 20000, kFastMs = 4000;

struct Preset {
  const char* name;
  std::array<LPanPoint, 2> points;
};
constexpr Preset kPresets[] = {
    {"Langsam von links nach rechts schwenken", {{{0, -100}, {kSlowMs, 100}}}},
    {"Langsam von rechts nach links schwenken", {{{0, 100}, {kSlowMs, -100}}}},
    {"Schnell von links nach rechts schwenken", {{{0, -100}, {kFastMs, 100}}}},
    {"Schnell von rechts nach links schwenken", {{{0, 100}, {kFastMs, -100}}}},
    {"Alles nach links schwenken", {{{0, -100}, {0, -100}}}},
};
constexpr int kPresetCount = int(std::size(kPresets));

bool IsPreset(int index) { return index >= 0 && index < kPresetCount; }

int Gain24(double towardOwnSide) {
  return int(std::min(LSPPan::kFarthest + towardOwnSide, double(LSPPan::kFarthest)) * (kUnityGain24 / 100.0));
}

}  // namespace

void LSPPan::SetPoints(std::vector<LPanPoint> points) {
  points_ = std::move(points);
  for (LPanPoint& point : points_) point.pan = std::clamp(point.pan, -kFarthest, kFarthest);
  std::stable_sort(points_.begin(), points_.end(),
                   [](const LPanPoint& a, const LPanPoint& b) { return a.position < b.position; });
}

LSoundSource LSPPan::OpenSource(LSoundSource& input) {
  if (points_.empty() || (input.IsOk() && input.GetChannels() < 2)) return input;
  return LSoundSource::Make<LSRCPan>(input, points_);
}

int LSPPan::GetNumPresets() const { return kPresetCount; }

std::string LSPPan::GetPresetsName(int index) const { return IsPreset(index) ? kPresets[index].name : ""; }

void LSPPan::SetPreset(int index) {
  if (IsPreset(index)) points_.assign(kPresets[index].points.begin(), kPresets[index].points.end());
}

int LSPPan::GetIndexInPreset() const {
  for (int index = 0; index < kPresetCount; ++index)
    if (std::equal(points_.begin(), points_.end(), kPresets[index].points.begin(), kPresets[index].points.end()))
      return index;
  return -1;
}

LSRCPan::LSRCPan(const LSoundSource& input, const std::vector<LPanPoint>& points) : LSoundProcessBase(input) {
  for (const LPanPoint& point : points)
    points_.push_back({LFramesFromSoundTime(point.position, input.GetSampleRate()), point.pan});
}

void LSRCPan::Read(int* out, int frames) {
  const int channels = GetChannels();
  const long long start = input_.GetPositionSample();
  input_.Read(out, frames);
  if (channels < 2) return;
  std::size_t upper = 0;
  for (long long frame = start; frame < start + frames; ++frame, out += channels) {
    const double pan = PanAt(frame, upper);
    out[0] = MulGain24(out[0], Gain24(-pan));
    out[1] = MulGain24(out[1], Gain24(pan));
  }
}

double LSRCPan::PanAt(long long frame, std::size_t& upper) const {
  while (upper < points_.size() && points_[upper].frame <= frame) ++upper;
  if (upper == 0) return points_.front().pan;
  const Point& before = points_[upper - 1];
  if (upper == points_.size()) return before.pan;
  const Point& after = points_[upper];
  const double way = double(frame - before.frame) / (double(after.frame) - before.frame);
  return before.pan + (after.pan - before.pan) * way;
}
