#include "effects/LSPDistortion.h"

#include <algorithm>
#include <cmath>

#include "sound/LFixedPoint.h"

namespace {

constexpr double kMiddleFall = 0.22;  // of the middle slope, at degree 1
constexpr int kKneeShare = 4;         // the inner piece ends at this part of the threshold

int Slope24(double slope) { return SaturateToInt(slope * kUnityGain24); }

}  // namespace

LDistortionShape::LDistortionShape(double degree, int threshold) : threshold_(threshold) {
  const double middle = 1 - kMiddleFall * degree;
  const int knee = threshold / kKneeShare;
  inner_ = {Slope24(4 - 3 * middle), 0};
  middle_ = {Slope24(middle), 0};
  outer_ = {Slope24(1 - degree), 0};
  middle_.offset = MulGain24(knee, inner_.slope24) - MulGain24(knee, middle_.slope24);
  outer_.offset = middle_.offset + MulGain24(threshold, middle_.slope24) - MulGain24(threshold, outer_.slope24);
}

int LDistortionShape::operator()(int sample) const {
  const int knee = threshold_ / kKneeShare;
  if (sample >= 0) {
    const Piece& piece = sample < knee ? inner_ : sample < threshold_ ? middle_ : outer_;
    return WrapAdd32(MulGain24(sample, piece.slope24), piece.offset);
  }
  const Piece& piece = sample > -knee ? inner_ : sample > -threshold_ ? middle_ : outer_;
  return WrapSub32(MulGain24(sample, piece.slope24), piece.offset);
}

LSoundSource LSPDistortion::OpenSource(LSoundSource& input) {
  const int threshold = SaturateToInt(std::pow(10, Value(Threshold) / 20.0) * kFullScale);
  return LSoundSource::Make<LSRCDistortion>(input, LDistortionShape(Decimal(Degree), threshold), Value(Level));
}

LSRCDistortion::LSRCDistortion(const LSoundSource& input, const LDistortionShape& shape, int levelPercent)
    : LSoundProcessBase(input), shape_(shape), levelPercent_(levelPercent) {
  SetPeak(std::max({GetPeak(), Shaped(GetPeak()), -Shaped(-GetPeak())}));
}

int LSRCDistortion::Shaped(int sample) const {
  const long long wet = (long long)shape_(sample) * levelPercent_ / 100;
  return int(wet + (long long)sample * (100 - levelPercent_) / 100);
}

void LSRCDistortion::Read(int* out, int frames) {
  input_.Read(out, frames);
  std::transform(out, out + std::ptrdiff_t(frames) * GetChannels(), out, [this](int sample) { return Shaped(sample); });
}
