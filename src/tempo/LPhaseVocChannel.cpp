#include "tempo/LPhaseVocChannel.h"

#include <numbers>
#include <utility>

#include "tempo/LSpectralPeaks.h"

namespace {

constexpr int kPeakThresholdDb = -40;   // against the strongest bin
constexpr double kAttackGravity = 0.7;  // 0.5 is the middle of the frame
constexpr double kTurn = 2 * std::numbers::pi;

// Without whole turns: else a phase would grow through the evening and lose its precision.
double WithoutTurns(double phase) {
  constexpr double kRounder = 6755399441055744.0;  // 1.5 * 2^52: leaves the sum no bits below the point
  return phase - ((phase * (1 / kTurn) + kRounder) - kRounder) * kTurn;
}

// Where the energy of a region lies in the frame: 0 its start, 1 its end. That is the mean group delay, weighted by
// energy.
double CentreOfGravity(const LPhaseVocFrame& frame, std::size_t low, std::size_t high) {
  double cross = 0, energy = 0;
  for (std::size_t bin = low; bin < high; ++bin) {
    cross += frame.cross[bin];
    energy += frame.magnitude[bin] * frame.magnitude[bin];
  }
  return energy > 0 ? cross / energy : 0;
}

}  // namespace

LPhaseVocFrame::LPhaseVocFrame(int binCount)
    : bins(binCount),
      magnitude(std::size_t(bins)),
      phase(std::size_t(bins)),
      cross(std::size_t(bins)),
      frequency(std::size_t(bins)),
      unwrapped(std::size_t(bins)),
      rebuiltMagnitude(std::size_t(bins)),
      rebuiltPhase(std::size_t(bins)),
      peaks(std::size_t(bins)),
      regionStarts(std::size_t(bins) + 1),
      regionOf(std::size_t(bins)),
      startAfresh(std::size_t(bins)) {}

LPhaseVocChannel::LPhaseVocChannel(int bins)
    : phase_(std::size_t(bins)),
      rebuiltPhase_(std::size_t(bins)),
      magnitude_(std::size_t(bins)),
      peaks_(std::size_t(bins)),
      regionOf_(std::size_t(bins)),
      attack_(std::size_t(bins)) {}

void LPhaseVocChannel::Reset() {
  phase_.Clear();
  rebuiltPhase_.Clear();
  magnitude_.Clear();
  std::fill(attack_.begin(), attack_.end(), static_cast<unsigned char>(0));
  first_ = true;
}

void LPhaseVocChannel::Step(LPhaseVocFrame& frame, LPhaseVocHops hops, LComplexSpan spectrum) {
  frame.peakCount = FindPeaks(frame.magnitude.data(), frame.bins, frame.peaks.data(), kPeakThresholdDb);
  TempoKernels().frequencies(frame.frequency.data(), frame.phase.data(), phase_.data(), frame.bins, hops.analysis);
  if (frame.peakCount == 0)
    LockHorizontally(frame, hops, spectrum);
  else
    LockToPeaks(frame, hops, spectrum);
}

// Without a peak every bin advances by itself.
void LPhaseVocChannel::LockHorizontally(LPhaseVocFrame& frame, LPhaseVocHops hops, LComplexSpan spectrum) {
  for (std::size_t bin = 1; bin < std::size_t(frame.bins); ++bin)
    frame.rebuiltPhase[bin] = WithoutTurns(frame.frequency[bin] * hops.synthesis + rebuiltPhase_[bin]);
  TempoKernels().rebuild(spectrum, frame.magnitude.data(), frame.rebuiltPhase.data(), frame.bins);
  std::swap(rebuiltPhase_, frame.rebuiltPhase);
  std::swap(phase_, frame.phase);
  first_ = true;
}

void LPhaseVocChannel::LockToPeaks(LPhaseVocFrame& frame, LPhaseVocHops hops, LComplexSpan spectrum) {
  FindRegionStarts(frame.frequency.data(), frame.bins, frame.peaks.data(), frame.peakCount, frame.regionStarts.data(),
                   frame.regionOf.data());
  if (first_) {
    std::copy_n(frame.peaks.begin(), frame.peakCount, peaks_.begin());
    regionOf_ = frame.regionOf;
    first_ = false;
  }
  TempoKernels().unwrap(frame.unwrapped.data(), frame.phase.data(), frame.bins);
  std::copy_n(frame.magnitude.data(), frame.bins, frame.rebuiltMagnitude.data());
  for (int region = 0; region < frame.peakCount; ++region) StepRegion(frame, region, hops);
  TempoKernels().rebuild(spectrum, frame.rebuiltMagnitude.data(), frame.rebuiltPhase.data(), frame.bins);
  std::swap(magnitude_, frame.magnitude);
  std::swap(phase_, frame.phase);
  std::swap(rebuiltPhase_, frame.rebuiltPhase);
  ForgetAttacks(frame);
  std::swap(peaks_, frame.peaks);
  std::swap(regionOf_, frame.regionOf);
}

void LPhaseVocChannel::StepRegion(LPhaseVocFrame& frame, int region, LPhaseVocHops hops) {
  const auto at = std::size_t(region);
  const auto peak = std::size_t(frame.peaks[at]);
  const auto before = std::size_t(peaks_[std::size_t(regionOf_[peak])]);  // the peak that the bin followed
  const auto low = std::size_t(frame.regionStarts[at]), high = std::size_t(frame.regionStarts[at + 1]);
  const bool attack = CentreOfGravity(frame, low, high) > kAttackGravity;
  frame.startAfresh[at] = !attack && attack_[before];
  if (attack) {
    attack_[peak] = 1;
    std::copy(magnitude_.data() + low, magnitude_.data() + high, frame.rebuiltMagnitude.data() + low);
    for (std::size_t bin = low; bin < high; ++bin)
      frame.rebuiltPhase[bin] = WithoutTurns(frame.frequency[bin] * hops.synthesis + rebuiltPhase_[bin]);
    return;
  }
  if (frame.startAfresh[at]) attack_[before] = 0;

  const double w = std::numbers::pi * double(peak) / frame.bins;
  const double error = WithoutTurns(frame.phase[peak] - phase_[before] - hops.analysis * w);
  const double frequency = w + error / hops.analysis;
  const double advanced = WithoutTurns(frequency * hops.synthesis + rebuiltPhase_[before]);
  const double spread = double(hops.synthesis) / hops.analysis / 3 + 2.0 / 3;
  const double anchor = frame.unwrapped[peak];
  for (std::size_t bin = low; bin < high; ++bin)
    frame.rebuiltPhase[bin] = (frame.unwrapped[bin] - anchor) * spread + advanced;
}

void LPhaseVocChannel::ForgetAttacks(const LPhaseVocFrame& frame) {
  for (std::size_t region = 0; region < std::size_t(frame.peakCount); ++region) {
    if (!frame.startAfresh[region]) continue;
    const std::size_t low = std::size_t(frame.regionStarts[region]);
    const std::size_t count = std::size_t(frame.regionStarts[region + 1]) - low;
    std::fill_n(phase_.data() + low, count, 0.0);
    std::fill_n(rebuiltPhase_.data() + low, count, 0.0);
  }
}
