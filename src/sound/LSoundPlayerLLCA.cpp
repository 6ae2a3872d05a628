#include "sound/LSoundPlayerLLCA.h"

#include <algorithm>
#include <cmath>
#include <mutex>

#include "foundation/LPlatform.h"

namespace {

constexpr int kReportsPerSecond = 30;
constexpr unsigned kStartWaitMs = 1000;

double LinearFromLevel(LLevel level) { return std::pow(10.0, level.Get() / 20.0); }

signed char LevelFromLinear(double mean) {
  if (!(mean > 0)) return LLevel::kMuted;
  return static_cast<signed char>(std::round(std::clamp(20 * std::log10(mean), -127.0, 127.0)));
}

}  // namespace

bool LSoundPlayerLLCA::Init(LSoundSource& source, unsigned short flags) {
  startFlags_ = flags;
  const bool sameFormat = source.GetSampleRate() == sampleRate_ && source.GetChannels() == channels_;
  if (!sameFormat) CloseStream();
  sampleRate_ = source.GetSampleRate();
  channels_ = source.GetChannels();
  ring_.SetChannels(channels_);
  mapBlock_.resize(std::size_t(kMaxBlockFrames) * std::size_t(channels_));
  if (!stream_ && !OpenStream()) return false;
  source_ = source;
  position_ = source.GetPositionSample();
  MapChannels();
  return true;
}

bool LSoundPlayerLLCA::OpenStream() {
  LSoundStreamFormat format;
  format.sampleRate = sampleRate_;
  format.channels = std::min(channels_, device_.GetNumOutputChannels());
  stream_ = LPlatform::SoundBackend().OpenOutput(device_.BackendIndex(), format, *this);
  if (!stream_) return false;
  ring_.SetLeadFrames(4 * stream_->MaxSliceFrames() + stream_->ExtraLatencyFrames());
  return true;
}

void LSoundPlayerLLCA::CloseStream() {
  if (stream_) stream_->Stop();
  stream_.reset();
}

void LSoundPlayerLLCA::MapChannels() {
  if (channels_ > 1 && device_.left == device_.right) device_.right = device_.left == 0 ? 1 : device_.left - 1;
}

bool LSoundPlayerLLCA::Start() {
  if (startFlags_ & kPlayerStartPaused) {
    startFlags_ = 0;
    Pause();
    return true;
  }
  return Play();
}

bool LSoundPlayerLLCA::Play() {
  if (!stream_ || !ownerStarted_.WaitSignal(kStartWaitMs)) {
    state_ = Stopped;
    return false;
  }
  stream_->Reset();
  state_ = Playing;
  if (stream_->Start()) return true;
  state_ = Stopped;
  return false;
}

void LSoundPlayerLLCA::Pause() {
  if (stream_) stream_->Stop();
  state_ = state_.load() | Paused;
}

void LSoundPlayerLLCA::Stop() {
  if (stream_) stream_->Stop();
  state_ = Stopped;
  ring_.Clear();
  source_.Close();
  resync_ = false;
  levelFrames_ = levelCallbacks_ = 0;
  levelSumLeft_ = levelSumRight_ = 0;
  levelLeft_ = levelRight_ = LLevel::kMuted;
}

void LSoundPlayerLLCA::SetDevice(const LSoundPlayDevice& device) {
  if (device == device_) return;
  const bool otherDevice = device.index != device_.index;
  const unsigned state = state_;
  {
    std::lock_guard lock(renderLock_);
    device_ = device;
    if (source_.IsOk()) MapChannels();  // else when a source tells its channels
  }
  if (!otherDevice) return;
  CloseStream();
  if (!source_.IsOk() || !OpenStream()) return;
  if (state == Playing) stream_->Start();
}

void LSoundPlayerLLCA::SetSoundSource(LSoundSource& source) {
  if (!source.IsOk()) return;
  if (source.GetSampleRate() == sampleRate_ && source.GetChannels() == channels_) {
    source_ = source;
    return;
  }
  const unsigned state = state_;
  CloseStream();
  if (!Init(source, 0)) return;
  if (ring_.FreeFrames() >= kMaxBlockFrames) WriteBuffer(kMaxBlockFrames);
  if (state == Playing) stream_->Start();
}

bool LSoundPlayerLLCA::IsNextBufferReady() {
  ring_.spaceFreed.Reset();
  // With very many channels the whole ring is no longer than one block.
  return ring_.FreeFrames() >= std::min(kMaxBlockFrames, ring_.CapacityFrames() / 2);
}

void LSoundPlayerLLCA::WriteBuffer(int frames) {
  ring_.Write(source_, std::min({sampleRate_ / kReportsPerSecond, frames, ring_.FreeFrames()}));
  UpdatePosition();
}

void LSoundPlayerLLCA::UpdatePosition() {
  const int sourcePosition = source_.GetPositionSample();
  int queued = 0;
  if (IsPlaying()) {
    ring_.spaceFreed.Reset();
    queued = ring_.FilledFrames();
  }
  position_ = std::max(sourcePosition + source_.AdjustRelativeOffset(-queued, sourcePosition), 0);
}

bool LSoundPlayerLLCA::PlayRemainingBuffer() {
  UpdatePosition();
  return ring_.FilledFrames() > 0;
}

int LSoundPlayerLLCA::GetLagToWriteCursor() const {
  std::lock_guard lock(renderLock_);
  const int lead = ring_.LeadFrames();
  if (!IsPlaying()) return lead > 0 ? 0 : -lead;
  if (!resync_) return std::max(ring_.FilledFrames() - lead, 0);
  // During an exchange what lay behind the mark at its start: fill and mark shrink together as the device goes on.
  return ring_.FilledFrames() + overrunFrames_ - keptFrames_;
}

LLevels LSoundPlayerLLCA::GetLevels() const {
  LLevels levels;
  levels.channels = static_cast<unsigned char>(std::max({device_.left, device_.right, 1}) + 1);
  levels.levels[std::size_t(device_.right)] = LLevel(levelRight_.load());
  levels.levels[std::size_t(device_.left)] = LLevel(levelLeft_.load());  // last: a mono source knows no right level
  return levels;
}

void LSoundPlayerLLCA::ResyncStart() {
  std::lock_guard lock(renderLock_);
  resync_ = true;
  keptFrames_ = std::min(ring_.FilledFrames(), ring_.LeadFrames());
  overrunFrames_ = 0;
}

void LSoundPlayerLLCA::ResyncBuffer(bool refill) {
  int overrun;
  {
    std::lock_guard lock(renderLock_);
    ring_.KeepFrames(keptFrames_);
    resync_ = false;
    overrun = overrunFrames_;
  }
  // What the device took beyond the mark has been heard already: the new graph starts behind it.
  if (overrun > 0) source_.Seek(source_.GetPositionSample() + overrun);
  position_ = std::max(source_.GetPositionSample(), 0);
  if (refill) WriteBuffer(std::min(source_.GetEndSample() - source_.GetPositionSample(), kMaxBlockFrames));
}

void LSoundPlayerLLCA::ResyncFinish() { UpdatePosition(); }

void LSoundPlayerLLCA::RenderData(int* out, int frames, int channels) {
  std::lock_guard lock(renderLock_);
  const int ready = IsPlaying() ? std::min(frames, ring_.FilledFrames()) : 0;
  LLevel left = LLevel::kMuted, right = LLevel::kMuted;
  RenderFromRing(out, ready, channels, left, right);
  std::fill_n(out + std::ptrdiff_t(ready) * channels, std::ptrdiff_t(frames - ready) * channels, 0);
  if (resync_) {
    const int fromKept = std::min(ready, keptFrames_);
    keptFrames_ -= fromKept;
    overrunFrames_ += ready - fromKept;
  }
  AccumulateLevels(frames, ready < frames, left, right);
}

void LSoundPlayerLLCA::RenderFromRing(int* out, int frames, int channels, LLevel& left, LLevel& right) {
  const bool straight = channels == channels_ && device_.left == 0 && (channels < 2 || device_.right == 1);
  if (straight) {
    ring_.Read(out, frames, gain9_, left, right);
    return;
  }
  while (frames > 0) {
    const int block = std::min(frames, kMaxBlockFrames);
    ring_.Read(mapBlock_.data(), block, gain9_, left, right);
    for (int channel = 0; channel < channels; ++channel) {
      const int from = channel == 0 ? device_.left : channel == 1 ? device_.right : channel;
      for (int frame = 0; frame < block; ++frame)
        out[frame * channels + channel] = from < channels_ ? mapBlock_[std::size_t(frame * channels_ + from)] : 0;
    }
    out += std::ptrdiff_t(block) * channels;
    frames -= block;
  }
}

void LSoundPlayerLLCA::AccumulateLevels(int frames, bool shortfall, LLevel left, LLevel right) {
  levelFrames_ += frames;
  ++levelCallbacks_;
  levelSumLeft_ += LinearFromLevel(left);
  levelSumRight_ += LinearFromLevel(right);
  if (levelFrames_ < sampleRate_ / kReportsPerSecond && !shortfall) return;
  levelLeft_ = LevelFromLinear(levelSumLeft_ / levelCallbacks_);
  levelRight_ = LevelFromLinear(levelSumRight_ / levelCallbacks_);
  levelReady_.Signal();
  levelFrames_ = levelCallbacks_ = 0;
  levelSumLeft_ = levelSumRight_ = 0;
}
