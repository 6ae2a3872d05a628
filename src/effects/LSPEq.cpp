#include "effects/LSPEq.h"

#include <algorithm>

#include "tempo/LFFTWindow.h"

namespace {

constexpr int kPoints = 2 * LSPEq::kBins;

std::vector<double> Coefficients(const LSPEq::Grid& grid) {
  LAlignedDoubles re(kPoints), im(kPoints);
  for (int bin = 0; bin < LSPEq::kBins; ++bin) re[std::size_t(bin)] = grid[std::size_t(bin)] / LSPEq::kPass;
  re[LSPEq::kBins] = re[LSPEq::kBins - 1];
  for (std::size_t bin = 1; bin < LSPEq::kBins; ++bin) re[kPoints - bin] = re[bin];
  LFFT(std::size_t(std::countr_zero(unsigned(kPoints)))).DoInverseFFT(re.data(), im.data());

  // The response stands around frame 0 and wraps: its centre is brought to that of the window.
  const LHanningWindow window(kPoints);
  std::vector<double> coefficients;
  for (std::size_t i = 1; i <= LSRCEq::kCoefficients; ++i)
    coefficients.push_back(re[(i + LSPEq::kBins) % kPoints] * window[i]);
  return coefficients;
}

}  // namespace

LSoundSource LSPEq::OpenSource(LSoundSource& input) { return LSoundSource::Make<LSRCEq>(input, grid_); }

LSRCEq::LSRCEq(const LSoundSource& input, const LSPEq::Grid& grid)
    : LSoundProcessBase(input), block_(std::size_t(kBlockFrames) * input.GetChannels()) {
  const std::vector<double> coefficients = Coefficients(grid);
  for (int channel = 0; channel < GetChannels(); ++channel) {
    filters_.emplace_back();
    filters_.back().SetBlkSize(kBlockFrames);
    filters_.back().SetCoeff(coefficients.data(), coefficients.size());
  }
  if (*std::max_element(grid.begin(), grid.end()) > LSPEq::kPass) SetPeak(std::max(GetPeak(), kPeakHeadroom));
}

int LSRCEq::GetPositionSample() const { return input_.GetPositionSample() - HeldFrames(); }

int LSRCEq::GetEndSample() const {
  const int end = input_.GetEndSample();
  return IsStreaming() ? std::max(end - kDelayFrames - kBlockFrames, GetPositionSample()) : end;
}

void LSRCEq::Seek(int frame) {
  input_.Seek(frame);
  filled_ = false;
}

bool LSRCEq::ControlMessage(int code, long* value) {
  if (!value || code != lccPullBack) return input_.ControlMessage(code, value);
  *value += HeldFrames();
  input_.ControlMessage(code, value);
  return true;
}

void LSRCEq::Fill() {
  const int position = input_.GetPositionSample();
  const int before = IsStreaming() ? 0 : std::clamp(position, 0, kDelayFrames);
  if (before > 0) input_.Seek(position - before);
  for (LFiltFFT& filter : filters_) filter.Clear();

  const int dropped = before + kDelayFrames;
  for (int frame = 0; frame <= dropped; frame += kBlockFrames) NextBlock();
  played_ = dropped % kBlockFrames;
  filled_ = true;
}

void LSRCEq::NextBlock() {
  input_.Read(block_.data(), kBlockFrames);
  for (int channel = 0; channel < GetChannels(); ++channel)
    filters_[std::size_t(channel)].ApplyFilter(&block_[std::size_t(channel)], &block_[std::size_t(channel)],
                                               kBlockFrames, GetChannels());
  played_ = 0;
}

void LSRCEq::Read(int* out, int frames) {
  if (frames > 0 && !filled_) Fill();
  while (frames > 0) {
    if (played_ == kBlockFrames) NextBlock();
    const int part = std::min(frames, kBlockFrames - played_);
    const std::ptrdiff_t samples = std::ptrdiff_t(part) * GetChannels();
    out = std::copy_n(block_.begin() + std::ptrdiff_t(played_) * GetChannels(), samples, out);
    played_ += part;
    frames -= part;
  }
}
