#include "sound/LSoundSource.h"

#include <algorithm>
#include <vector>

#include "foundation/LProcessInterface.h"
#include "sound/LSoundLevel.h"
#include "sound/LWrap.h"

LSoundSourceBase::LSoundSourceBase(int sampleRate, unsigned char channels, int peak, LSoundError error)
    : sampleRate_(sampleRate), channels_(channels), peak_(peak), error_(error) {
  if (sampleRate_ < 1) sampleRate_ = kDeckRate, error_ = lseDamaged;
  if (channels_ == 0) channels_ = 1, error_ = lseDamaged;
}

void LSoundSourceBase::WaitForStreamingData(int ms) { LProcessInterfaceVoid().ProcessWait(unsigned(std::max(ms, 0))); }

LSoundSource::LSoundSource(LSoundError error) : LSoundSource(new LSoundSourceError(error)) {}

LSoundSource& LSoundSource::operator=(const LSoundSource& other) {  // NOLINT(bugprone-unhandled-self-assignment)
  ++other.source_->references_;                                     // first, so that self-assignment is safe
  Drop();
  source_ = other.source_;
  return *this;
}

void LSoundSourceError::Read(int* out, int frames) { std::fill_n(out, std::max(frames, 0), 0); }

void LSilenceSourceBase::Read(int* out, int frames) {
  std::fill_n(out, std::max(frames, 0) * GetChannels(), 0);
  position_ = WrapAdd32(position_, frames);
}

int FindFirstSound(LSoundSource& source) {
  constexpr int kWindowFrames = 2048, kHopFrames = 1024;
  const int channels = source.GetChannels();
  const int position = source.GetPositionSample();
  const int end = source.GetEndSample();
  std::vector<int> window(std::size_t(kWindowFrames) * std::size_t(channels));
  const auto level = [&](int frames) {
    source.Read(window.data(), frames);
    return GetBufferMeanSquare(window.data(), frames, static_cast<unsigned char>(channels));
  };

  int found = 0;
  source.Seek(0);
  unsigned previous = level(std::clamp(end, 0, kWindowFrames));
  source.Seek(0);
  if (end > kHopFrames) {
    for (int at = 0;; at += kHopFrames) {
      const unsigned now = level(std::min(end - at, kWindowFrames));
      source.Seek(at + kHopFrames);
      if (previous != 0 ? now > 2ULL * previous : now != 0) {
        found = at + kHopFrames;
        break;
      }
      if (end <= at + kHopFrames) break;
      previous = now;
    }
  }
  source.Seek(position);
  return found;
}
