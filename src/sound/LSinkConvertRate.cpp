#include "sound/LSinkConvertRate.h"

#include <algorithm>

#include "sound/LSoundSource.h"
#include "sound/LSoundTime.h"

namespace {

constexpr int kTaps = 15, kHalfTaps = 8;
constexpr int kLeadFrames = kTaps / 2;  // of silence before the first frame and after the last
constexpr int kHistoryFrames = kTaps + kMaxBlockFrames;

}  // namespace

LSoundSink LSinkConvertRate::OpenSink(LSoundSink& sink, int writerRate, bool approximate) {
  if (writerRate == sink.GetSampleRate()) return sink;
  return LSoundSink::Make<LSinkConvertRateBase>(sink, writerRate, true, approximate);
}

LSinkConvertRateBase::LSinkConvertRateBase(const LSoundSink& sink, int writerRate, bool wideTransition,
                                           bool approximate)
    : LSoundSinkBase(std::max(writerRate, 1), sink.GetChannels(), writerRate < 1 || sink.HasError()),
      LConvertRateBase(std::max(writerRate, 1), std::max(sink.GetSampleRate(), 1), kTaps, wideTransition, approximate),
      sink_(sink),
      history_(std::size_t(kHistoryFrames) * GetChannels()),
      output_(std::size_t(kMaxBlockFrames) * GetChannels()) {
  position_ = LFramesFromSoundTime(LSoundTimeFromFrames(sink.GetPositionSample(), sink.GetSampleRate()), writerRate);
  Restart();
}

LSinkConvertRateBase::~LSinkConvertRateBase() { PushLastFrames(); }

void LSinkConvertRateBase::Restart() {
  historyFrames_ = kLeadFrames;
  index_ = phase_ = 0;
  written_ = false;
  std::fill_n(history_.begin(), kLeadFrames * GetChannels(), 0);
}

int LSinkConvertRateBase::ToInnerFrames(int frames) const {
  return int((long long)frames * sink_.GetSampleRate() / GetSampleRate());
}

void LSinkConvertRateBase::Seek(int frame) {
  sink_.Seek(ToInnerFrames(frame));
  position_ = frame;
  Restart();
}

void LSinkConvertRateBase::Truncate(int frames) {
  sink_->Truncate(ToInnerFrames(frames));
  position_ = std::min(position_, frames);
  Restart();
}

void LSinkConvertRateBase::Write(const int* samples, int frames) {
  if (frames > 0) written_ = true;
  while (frames > 0) {
    const int part = std::min(frames, kMaxBlockFrames);
    Append(samples, part);
    WriteBuffer();
    position_ += part;
    samples += part * GetChannels();
    frames -= part;
  }
  if (sink_.HasError()) SetError();
}

void LSinkConvertRateBase::Append(const int* samples, int frames) {
  const int count = frames * GetChannels();
  std::transform(samples, samples + count, history_.begin() + historyFrames_ * GetChannels(),
                 [](int sample) { return sample >> 4; });
  historyFrames_ += frames;
}

void LSinkConvertRateBase::WriteBuffer() {
  const int channels = GetChannels();
  int waiting = 0;
  int* out = output_.data();
  while (index_ < historyFrames_ - kTaps) {
    if (waiting == kMaxBlockFrames) {
      sink_.Write(output_.data(), waiting);
      waiting = 0;
      out = output_.data();
    }
    const int* row = Row(phase_);
    for (int channel = 0; channel < channels; ++channel) {
      const int* in = history_.data() + index_ * channels + channel;
      long long first = 0, second = 0;
      for (int tap = 0; tap < kHalfTaps; ++tap) first += (long long)row[tap] * in[tap * channels];
      for (int tap = kHalfTaps; tap < kTaps; ++tap) second += (long long)row[tap] * in[tap * channels];
      *out++ = int(((first >> 1) + (second >> 1) + 1024) >> 11);
    }
    ++waiting;
    phase_ += Step();
    index_ += phase_ / Phases();
    phase_ %= Phases();
  }
  if (waiting > 0) sink_.Write(output_.data(), waiting);

  const int done = std::min(index_, historyFrames_);
  std::copy(history_.begin() + done * channels, history_.begin() + historyFrames_ * channels, history_.begin());
  historyFrames_ -= done;
  index_ -= done;
}

void LSinkConvertRateBase::PushLastFrames() {
  if (!written_) return;
  std::fill_n(history_.begin() + historyFrames_ * GetChannels(), kLeadFrames * GetChannels(), 0);
  historyFrames_ += kLeadFrames;
  WriteBuffer();
}
