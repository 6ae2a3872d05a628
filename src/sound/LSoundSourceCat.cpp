#include "sound/LSoundSourceCat.h"

#include <algorithm>

#include "sound/LSPConvertSourceRateChannels.h"

LSoundSource LSoundSourceCat::OpenSource(int sampleRate, unsigned char channels) const {
  return LSoundSource::Make<LSRCCat>(items_, sampleRate, channels);
}

LSRCCat::LSRCCat(const std::vector<LSoundSourceCat::Item>& items, int sampleRate, unsigned char channels)
    : LSoundSourceBase(sampleRate, channels, kPeak16) {
  for (LSoundSourceCat::Item item : items) {
    if (item.source.IsOk()) {
      LSPConvertSourceRateChannels(GetSampleRate(), GetChannels(), item.source);
      SetPeak(std::max(GetPeak(), item.source.GetPeak()));
      parts_.push_back({item.source, std::max(item.source.GetEndSample(), 0)});
    } else {
      const int frames = std::max(LFramesFromSoundTime(item.duration, GetSampleRate()), 0);
      parts_.push_back({LSoundSource::Make<LSilenceSourceBase>(GetSampleRate(), GetChannels(), frames), frames});
    }
  }
  Seek(0);
}

int LSRCCat::GetEndSample() const {
  long long end = 0;
  for (const Part& part : parts_) end += part.frames;
  return int(std::min<long long>(end, kEndless));
}

void LSRCCat::EnterPart(int index, int frame) {
  current_ = index;
  if (index < int(parts_.size())) parts_[std::size_t(index)].source.Seek(frame);
}

void LSRCCat::Seek(int frame) {
  position_ = frame;
  partStart_ = 0;
  int index = 0;
  while (index < int(parts_.size()) && frame - partStart_ >= parts_[std::size_t(index)].frames)
    partStart_ += parts_[std::size_t(index++)].frames;
  EnterPart(index, std::max(frame - partStart_, 0));
}

void LSRCCat::Read(int* out, int frames) {
  while (frames > 0) {
    const int done = ReadPart(out, frames);
    position_ += done;
    out += done * GetChannels();
    frames -= done;
  }
}

int LSRCCat::ReadPart(int* out, int frames) {
  while (position_ >= 0 && current_ < int(parts_.size())) {
    const Part& part = parts_[std::size_t(current_)];
    const int left = part.frames - (position_ - partStart_);
    if (left > 0) {
      const int count = std::min(frames, left);
      part.source.Read(out, count);
      return count;
    }
    partStart_ += part.frames;
    EnterPart(current_ + 1, 0);
  }
  const int silent = position_ < 0 ? std::min(frames, -position_) : frames;
  std::fill_n(out, silent * GetChannels(), 0);
  return silent;
}
