#include "tempo/LFFTFrame.h"

#include <algorithm>

namespace {

template <class Sample>
void Load(double* re, const Sample* samples, std::size_t n, const LFFTWindow& window, std::size_t channels) {
  for (std::size_t i = 0; i < n; ++i) re[i] = samples[i * channels] * window[i];
}

}  // namespace

void LFFTFrame::LoadRealSamples(const int* samples, std::size_t n, const LFFTWindow& window, unsigned char channels,
                                unsigned char channel) {
  Load(re(), samples + channel, std::min({n, size(), window.size()}), window, channels);
}

void LFFTFrame::LoadRealSamples(const double* samples, std::size_t n, const LFFTWindow& window, unsigned char channels,
                                unsigned char channel) {
  Load(re(), samples + channel, std::min({n, size(), window.size()}), window, channels);
}

void LFFTFrame::ShiftHalf(std::size_t n) {
  const std::size_t half = std::min(n, size()) / 2;
  std::swap_ranges(re(), re() + half, re() + half);
  std::swap_ranges(im(), im() + half, im() + half);
}

void LFFTFrame::MirrorTopHalf(std::size_t n) {
  const std::size_t points = std::min(n, size());
  for (std::size_t k = 1; k < (points + 1) / 2; ++k) {
    re_[points - k] = re_[k];
    im_[points - k] = -im_[k];
  }
}
