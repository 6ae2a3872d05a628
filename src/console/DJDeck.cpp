#include "console/DJDeck.h"

#include <algorithm>

#include "console/DJConsole.h"
#include "foundation/LClock.h"
#include "foundation/LPlatform.h"
#include "foundation/LThreadRole.h"
#include "foundation/TSettings.h"

namespace {

constexpr double kFramesPerMinute = 2646000;  // 44100 * 60

}  // namespace

void DJDeck::AddNotify(DJDeckNotify& listener) {
  if (std::size_t(listenerCount_) < listeners_.size()) listeners_[std::size_t(listenerCount_++)] = &listener;
}

void DJDeck::ChangeState(State state) {
  previousState_ = state_;
  state_ = state;
}

void DJDeck::Load(const std::string& path, const LSoundSource& source, int beatIntervalFrames, int beatOffsetFrames) {
  LAssertThread(LThreadRole::Main, "DJDeck::Load");
  path_ = path;
  playPosition_ = rawPosition_ = 0;
  baseSource_ = source;
  chain_ = baseSource_;
  loaded_ = true;
  FindFirst();
  playPosition_ = std::max(playPosition_, firstSoundPosition_);
  pitch_ = 1.0;
  beatInterval_ = savedBeatInterval_ = beatIntervalFrames;
  beatOffset_ = savedBeatOffset_ = beatOffsetFrames;
  loadTimeMs_ = LPlatform::Clock().NowMs();
}

void DJDeck::FindFirst() { firstSoundPosition_ = TSettings::kSilenceDetection.Get() ? FindFirstSound(baseSource_) : 0; }

void DJDeck::ResetFirstSoundPosition() {
  if (loaded_)
    FindFirst();
  else
    firstSoundPosition_ = 0;
}

void DJDeck::Unload() {
  Stop();
  chain_.Close();
  baseSource_.Close();
  loaded_ = false;
  path_.clear();
  ClearBPM();
  playPosition_ = rawPosition_ = firstSoundPosition_ = 0;
  levelInfo_.Clear();
}

bool DJDeck::Play() {
  if (!loaded_) return false;
  playPosition_ = std::max(playPosition_, firstSoundPosition_);
  for (int i = 0; i < listenerCount_; ++i) {
    ChangeState(Starting);
    if (listeners_[std::size_t(i)]->djntfPlay(*this)) continue;
    Stop();
    return false;
  }
  ChangeState(Playing);
  return true;
}

void DJDeck::Stop() {
  if (state_ == Stopped) return;
  ChangeState(Stopping);
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfStop(*this);
  ChangeState(Stopped);
}

void DJDeck::ClearState() {
  if (state_ != Stopped && listenerCount_ > 0) {
    ChangeState(Stopping);
    listeners_[0]->djntfStop(*this);
  }
  ChangeState(Stopped);
}

void DJDeck::Seek(int frame) {
  playPosition_ = std::max(frame, 0);
  rawPosition_ = frame;
  chain_.Seek(frame);
}

int DJDeck::RealPosition(int chainPosition, int lagFrames, bool loopOn, int loopStart, int loopLength) {
  if (!loopOn || loopLength <= 0) return std::max(chainPosition - lagFrames, 0);
  const int into = (chainPosition - loopStart - lagFrames % loopLength + loopLength) % loopLength;
  return std::max(into + loopStart, 0);
}

int DJDeck::GetRealPosition(int lagFrames) const {
  return RealPosition(chain_.GetPositionSample(), lagFrames, false, 0, 0);
}

void DJDeck::EvTimeChanged(int frame) {
  if (state_ < Starting || scratching_) return;
  playPosition_ = std::max(frame, 0);
  rawPosition_ = frame;
  LSoundTime time = LSoundTimeFromFrames(frame, kDeckRate);
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfTime(time, *this);
  NotifyLevel(time);
}

void DJDeck::NotifyLevel(LSoundTime time) {
  const LLevels levels = levelInfo_.GetLevelsFromSoundTime(time);
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfLevel(levels, *this);
}

void DJDeck::SetVolume(LLevel level) {
  volume_ = level;
  levelInfo_.SetVolume(level);
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfVolume(volume_, crossFadeLevel_, *this);
}

void DJDeck::SetHeadphoneMode(bool on) {
  headphone_ = on;
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfHeadphone(*this, on);
}

bool DJDeck::CheckHeadphones() const { return console_.CheckHeadphones(); }

void DJDeck::SetBPM(double bpm, int offsetFrames) {
  bpm_ = bpm;
  beatInterval_ = savedBeatInterval_ = bpm > 1.0 ? int(kFramesPerMinute / bpm) : 0;
  if (beatInterval_ != 0) beatOffset_ = savedBeatOffset_ = offsetFrames;
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfBeats(*this);
}

void DJDeck::ClearBPM() {
  bpm_ = 0;
  beatInterval_ = savedBeatInterval_ = beatOffset_ = savedBeatOffset_ = 0;
}

void DJDeck::ResetDeckToDefaults() { pitch_ = 1.0; }

LSoundSource DJDeck::OpenSource() {
  chain_ = baseSource_;
  chain_ = BuildChain(chain_);
  return chain_;
}

LSoundSource DJDeck::BuildChain(const LSoundSource& source) {
  if (!source.IsOk()) return source;
  source.Seek(playPosition_);
  return LSoundSource::Make<DJDeckSourceBase>(source, &levelInfo_);
}

void DJDeck::CloseChain() { chain_ = baseSource_; }
