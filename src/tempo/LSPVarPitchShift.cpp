#include "tempo/LSPVarPitchShift.h"

#include <algorithm>
#include <cmath>

#include "sound/LWrap.h"

namespace {

constexpr int kTaps = 4, kTapsBefore = 1;
constexpr double kMinRatio = 0.01;
constexpr double kMaxRatio = 1 << 20;  // far beyond any use: a position stays a frame number

// Input positions reach past the last frame number by one step at most.
int Held(long long frame) { return int(std::min<long long>(frame, INT32_MAX - kMaxBlockFrames)); }

double Lagrange(const int* taps, int stride, double f) {
  const double s0 = taps[0], s1 = taps[stride], s2 = taps[2 * stride], s3 = taps[3 * stride];
  const double c1 = s2 - s0 / 3 - s1 / 2 - s3 / 6;
  const double c2 = (s0 + s2) / 2 - s1;
  const double c3 = (s3 - s0) / 6 + (s1 - s2) / 2;
  return ((c3 * f + c2) * f + c1) * f + s1;
}

}  // namespace

LSoundSource LSPVarPitchShift::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<LSRCVarPitchShift>(input, points_, resolution_, ratio_, user_);
}

LSRCVarPitchShift::LSRCVarPitchShift(const LSoundSource& input, std::vector<LPSPoint> points, int resolution,
                                     LPitchRatio ratio, void* user)
    : LSoundProcessBase(input),
      points_(std::move(points)),
      resolution_(resolution),
      ratio_(ratio ? ratio : GetPitchChangeRatio),
      user_(ratio ? user : this),
      end_(FindEnd()),
      work_(std::size_t(kMaxBlockFrames) * GetChannels()),
      positions_(kMaxBlockFrames) {
  SetPeak(SaturateToInt(1.25 * GetPeak()));  // between two frames the polynomial swings up by a quarter at most
}

double LSRCVarPitchShift::GetPitchChangeRatio(int, double inputPosition, void* source) {
  auto& self = *static_cast<LSRCVarPitchShift*>(source);
  const std::vector<LPSPoint>& points = self.points_;
  if (points.empty()) return 1;
  double at = inputPosition;
  if (self.resolution_ > 1) at = std::floor(at / self.resolution_) * self.resolution_;
  if (self.lower_ == self.upper_ || at < points[self.lower_].inputFrame || at >= points[self.upper_].inputFrame) {
    const auto after = std::upper_bound(points.begin(), points.end(), at,
                                        [](double value, const LPSPoint& point) { return value < point.inputFrame; });
    const auto index = std::size_t(after - points.begin());
    self.lower_ = index == 0 ? 0 : index - 1;
    self.upper_ = std::min(index, points.size() - 1);
  }
  const LPSPoint &lower = points[self.lower_], &upper = points[self.upper_];
  if (lower.inputFrame >= upper.inputFrame) return upper.ratio;
  const double share = (at - lower.inputFrame) / (double(upper.inputFrame) - lower.inputFrame);
  return lower.ratio + share * (upper.ratio - lower.ratio);
}

void LSRCVarPitchShift::Advance(Place& place) const {
  const double ratio = ratio_(place.frame, place.position, user_);
  place.position += ratio > kMinRatio ? std::min(ratio, kMaxRatio) : kMinRatio;
  ++place.frame;
}

int LSRCVarPitchShift::FindEnd() const {
  const int inputEnd = input_.GetEndSample();
  if (inputEnd == kEndless) return kEndless;
  Place place{0, 0};
  while (place.position < inputEnd && place.frame < INT32_MAX) Advance(place);
  return place.frame;
}

// Past the end there is silence wherever the position stands, so the curve is followed no further.
void LSRCVarPitchShift::Seek(int frame) {
  Place place{0, 0};
  const int last = std::min(frame, end_);
  while (place.frame < last) Advance(place);
  frame_ = frame;
  position_ = place.position;
  input_.Seek(Held((long long)position_));
}

void LSRCVarPitchShift::Read(int* out, int frames) {
  const int channels = GetChannels();
  int sounding = int(std::clamp<long long>((long long)end_ - frame_, 0, frames));
  const int silent = frames - sounding;
  while (sounding > 0) {
    const int part = PlanPart(sounding);
    const int first = Held((long long)positions_[0]) - kTapsBefore;
    ReadInput(first, Held((long long)position_) - kTapsBefore + kTaps - first);
    Interpolate(out, first, part);
    input_.Seek(Held((long long)position_));
    out += part * channels;
    sounding -= part;
  }
  std::fill_n(out, silent * channels, 0);
  frame_ = int(std::min<long long>((long long)frame_ + silent, INT32_MAX));
}

// As many of the next output frames as the work buffer has room for: moves on, and keeps the way in positions_.
int LSRCVarPitchShift::PlanPart(int frames) {
  const int most = std::min(frames, kMaxBlockFrames);
  Place place{frame_, position_};
  int planned = 0;
  for (; planned < most; ++planned) {
    Advance(place);
    if (planned > 0 && place.position - std::floor(positions_[0]) >= kMaxBlockFrames - kTaps) break;
    positions_[std::size_t(planned)] = position_ = place.position;
    frame_ = place.frame;
  }
  return planned;
}

void LSRCVarPitchShift::ReadInput(int first, int frames) {
  const int before = std::clamp(-first, 0, frames);
  std::fill_n(work_.begin(), before * GetChannels(), 0);
  input_.Seek(first + before);
  input_.Read(work_.data() + before * GetChannels(), frames - before);
}

void LSRCVarPitchShift::Interpolate(int* out, int first, int frames) const {
  const int channels = GetChannels();
  for (int i = 0; i < frames; ++i) {
    const double position = positions_[std::size_t(i)];
    const auto whole = (long long)position;
    const int* taps = work_.data() + (Held(whole) - kTapsBefore - first) * channels;
    for (int channel = 0; channel < channels; ++channel)
      *out++ = SaturateToInt(Lagrange(taps + channel, channels, position - double(whole)));
  }
}
