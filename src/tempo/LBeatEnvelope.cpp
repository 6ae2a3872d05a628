#include "tempo/LBeatEnvelope.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kNoBand = -1;
constexpr double kEnergyUnit = 8192;

// Filters of two sections together, so that no lane waits for longer ones.
constexpr int kLaneBands[3][4] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {0, 9, kFullBeatBand, kNoBand}};

LBeatLanes LanesOf(const int (&bands)[4]) {
  LBeatLanes lanes{};
  for (int lane = 0; lane < 4; ++lane) {
    if (bands[lane] == kNoBand) continue;
    const LBeatFilter& filter = BeatFilter(bands[lane]);
    lanes.gain[lane] = filter.gain;
    lanes.sectionCount = std::max(lanes.sectionCount, filter.sections);
    for (int i = 0; i < filter.sections; ++i) {
      LBeatLanes::Section& section = lanes.sections[i];
      section.b1[lane] = filter.table[i].b1;
      section.b2[lane] = filter.table[i].b2;
      section.a1[lane] = filter.table[i].a1;
      section.a2[lane] = filter.table[i].a2;
    }
  }
  return lanes;
}

}  // namespace

LBeatGeometry::LBeatGeometry(int sampleRate, int endFrames)
    : rate(sampleRate), hop(int(rate * 0.0004)), window(std::min(kBlockFrames - hop, int(rate * 0.1))), length(0) {
  if (hop >= 1 && rate <= kMostRate) length = std::max(0, std::min(endFrames, kMostFrames) / hop);
}

int LBeatGeometry::Lag(int band) const {
  return std::min((BeatFilter(band).timeConstantMs * 5 + 1) / 2, kBlockFrames / std::max(hop, 1));
}

LBeatEnvelopes::LBeatEnvelopes(const LBeatGeometry& geometry, const LBeatKernels& kernels)
    : geometry_(geometry),
      kernels_(kernels),
      lanes_{LanesOf(kLaneBands[0]), LanesOf(kLaneBands[1]), LanesOf(kLaneBands[2])},
      bands_(kBeatBands, std::vector<double>(unsigned(geometry.length))) {
  if (geometry.length == 0) return;
  const auto most = std::size_t(2 * (LBeatGeometry::kBlockFrames / geometry.hop + 1));
  marks_.reserve(most);
  runs_.reserve(most + 1);
  sums_ = LAlignedDoubles(4 * (most + 1));
}

bool LBeatEnvelopes::Read(const LSoundSource& mono, const std::function<bool(int)>& goOn) {
  std::vector<int> samples(LBeatGeometry::kBlockFrames);
  mono.Seek(0);
  for (int done = 0, frames = 0; done < geometry_.Frames(); done += frames) {
    if (!goOn(done)) return false;
    frames = std::min(LBeatGeometry::kBlockFrames, geometry_.Frames() - done);
    mono.Read(samples.data(), frames);
    for (int& sample : samples) sample = std::clamp(sample, -kPeakHeadroom, kPeakHeadroom);
    MarkBlock(done, done + frames);
    for (int group = 0; group < kGroups; ++group) {
      kernels_.energies(lanes_[unsigned(group)], samples.data(), runs_, sums_.data());
      TakeSums(group);
      Rebase(group);
    }
    for (const Mark& mark : marks_) ++(mark.ends ? nextEnd_ : nextStart_);
  }
  return true;
}

// A mark on the block's first frame belongs to the block before.
void LBeatEnvelopes::MarkBlock(int startFrame, int endFrame) {
  marks_.clear();
  runs_.clear();
  int start = nextStart_, end = nextEnd_, last = startFrame;
  for (;;) {
    const int starts = start < geometry_.length ? start * geometry_.hop : endFrame + 1;
    const int ends = end < geometry_.length ? end * geometry_.hop + geometry_.window : endFrame + 1;
    const int next = std::min(starts, ends);
    if (next > endFrame) break;
    marks_.push_back({next == starts ? start++ : end++, next != starts});
    runs_.push_back(next - last);
    last = next;
  }
  runs_.push_back(endFrame - last);
}

void LBeatEnvelopes::TakeSums(int group) {
  const double* sums = sums_.data();
  for (const Mark& mark : marks_) {
    Sums& start = starts_[unsigned(group)][unsigned(mark.step % kPending)];
    for (unsigned lane = 0; lane < 4; ++lane, ++sums) {
      const int band = kLaneBands[group][lane];
      if (!mark.ends)
        start[lane] = *sums;
      else if (band != kNoBand)
        bands_[unsigned(band)][unsigned(mark.step)] = std::floor((*sums - start[lane]) / kEnergyUnit);
    }
  }
}

// Counts from here on, so that the sums stay whole numbers that a double holds exactly.
void LBeatEnvelopes::Rebase(int group) {
  LBeatLanes& lanes = lanes_[unsigned(group)];
  for (Sums& start : starts_[unsigned(group)])
    for (unsigned lane = 0; lane < 4; ++lane) start[lane] -= lanes.energy[lane];
  std::fill(std::begin(lanes.energy), std::end(lanes.energy), 0.0);
}
