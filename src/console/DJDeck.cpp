#include "console/DJDeck.h"

#include <algorithm>

#include "audiofile/TSourceOpen.h"
#include "console/DJConsole.h"
#include "console/DJPitchLaw.h"
#include "console/LCountedSource.h"
#include "console/LLoopSaveSource.h"
#include "console/LLoopSource.h"
#include "console/TScratch.h"
#include "effects/LEffectList.h"
#include "foundation/LClock.h"
#include "foundation/LPlatform.h"
#include "foundation/LThreadRole.h"
#include "foundation/TSettings.h"
#include "tempo/LSPPhaseVoc.h"
#include "tempo/LSPPitchSpeed.h"

namespace {

constexpr double kFramesPerMinute = 2646000;  // 44100 * 60

}  // namespace

void DJDeck::AddNotify(DJDeckNotify& listener) {
  if (std::size_t(listenerCount_) < listeners_.size()) listeners_[std::size_t(listenerCount_++)] = &listener;
}

void DJDeck::Load(const std::string& path, const LSoundSource& source, int beatIntervalFrames, int beatOffsetFrames) {
  LAssertThread(LThreadRole::Main, "DJDeck::Load");
  path_ = originalPath_ = path;
  playPosition_ = rawPosition_ = 0;
  baseSource_ = source;
  CloseChain();
  loaded_ = true;
  FindFirst();
  pitch_ = previousPitch_ = 1.0;
  playPosition_ = std::max(playPosition_, GetStartPosition());
  beatInterval_ = beatIntervalFrames;
  beatOffset_ = beatOffsetFrames;
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
  if (scratching_) ScratchEnd();
  baseSource_.Close();
  CloseChain();
  loaded_ = false;
  path_.clear();
  cues_.ClearAll();
  if (loop_.on) SetBeatLoop(0.0);
  loop_.Clear();
  ClearBPM();
  playPosition_ = rawPosition_ = firstSoundPosition_ = 0;
  levelInfo_.Clear();
}

bool DJDeck::Play() {
  if (!loaded_) return false;
  playPosition_ = std::max(playPosition_, GetStartPosition());
  for (int i = 0; i < listenerCount_; ++i) {
    state_ = Starting;
    if (listeners_[std::size_t(i)]->djntfPlay(*this)) continue;
    Stop();
    return false;
  }
  state_ = Playing;
  return true;
}

bool DJDeck::CuePlay(int frame) {
  if (!loaded_) return false;
  const bool played = IsPlaying();
  for (int i = 0; i < listenerCount_; ++i) {
    if (!played) state_ = Starting;
    if (listeners_[std::size_t(i)]->djntfCuePlay(*this, frame)) continue;
    Stop();
    return false;
  }
  state_ = Playing;
  return true;
}

void DJDeck::Stop() {
  if (state_ == Stopped) return;
  state_ = Stopping;
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfStop(*this);
  state_ = Stopped;
}

void DJDeck::ClearState() {
  if (state_ != Stopped && listenerCount_ > 0) {
    state_ = Stopping;
    listeners_[0]->djntfStop(*this);
  }
  state_ = Stopped;
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
  return RealPosition(GetChainPosition(), lagFrames, loop_.on, loop_.start, loop_.length);
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
  beatInterval_ = bpm > 1.0 ? int(kFramesPerMinute / bpm) : 0;
  if (beatInterval_ != 0) beatOffset_ = offsetFrames;
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfBeats(*this);
}

void DJDeck::ClearBPM() {
  bpm_ = 0;
  beatInterval_ = beatOffset_ = 0;
}

void DJDeck::ResetDeckToDefaults() {
  SetPitch(1.0);
  keyLock_ = cueLock_ = panOn_ = false;
  pan_ = {};
  ResetEffects();
}

// Speed

void DJDeck::SetPitch(double pitch) {
  const int oldEnd = GetTrackEnd();
  previousPitch_ = pitch_;
  pitch_ = pitch;
  const int newEnd = int(GetBaseEnd() * (1 / pitch));
  loop_.Rescale(newEnd);
  rawPosition_ = oldEnd >= 1 ? int(double(rawPosition_) / oldEnd * newEnd) : 0;
  playPosition_ = std::max(rawPosition_, 0);
  cues_.Rescale(newEnd);
}

void DJDeck::SetSync(SyncState state, DJDeckPosition master) {
  syncState_ = state;
  masterDeck_ = master;
}

void DJDeck::SetPan(bool on) {
  panOn_ = on;
  if (!loaded_) return;
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfFX(*this);
}

// Cue points and loops

void DJDeck::SetCuePointAtIndex(int index, int frame) {
  if (!loaded_) return;
  if (frame == -1) frame = rawPosition_;
  frame = std::clamp(frame, 0, std::max(GetTrackEnd(), 0));  // a converted track may end some frames later
  if (frame < GetTrackEnd() && SnapsToBeats()) frame = GetBeatGrid().GetClosestBeatPos(frame);
  cues_.Set(index, frame, GetTrackEnd());
}

void DJDeck::TellBeatLoop() {
  for (int i = 0; i < listenerCount_; ++i) listeners_[std::size_t(i)]->djntfBeatLoop(*this);
}

void DJDeck::SetBeatLoop(double beats) {
  const int audible = GetChainPosition() - console_.GetLag(true);
  const int start = SnapsToBeats() ? GetBeatGrid().GetPreviousBeatPos(audible) : audible;
  if (loop_.SetBeats(beats, GetBeatGrid(), start)) TellBeatLoop();
}

void DJDeck::SetBeatLoopWithStart(double beats, int start) {
  if (beats == 0) {
    playPosition_ = GetRealPosition(console_.GetLag(true));
    loop_.on = false;
    TellBeatLoop();
    return;
  }
  loop_.on = false;  // the given start counts, not the old one
  if (loop_.SetBeats(beats, GetBeatGrid(), start)) TellBeatLoop();
}

void DJDeck::SetBeatLoopStart(int frame) {
  if (!loop_.on || loop_.beats <= 0) return;
  loop_.MoveTo(frame, GetBeatGrid());
  TellBeatLoop();
}

// Scratching

void DJDeck::ScratchStart(int frame) {
  scratchPosition_ = frame;
  scratching_ = true;
  playedAtScratchStart_ = state_ == Playing;
  transitions_.Clear();
  levelInfo_.SetScratching(true);
  scratchClock_.Start(LPlatform::Clock().NowMs());
}

void DJDeck::ScratchToPosition(int frame) {
  transitions_.AddTransition(frame, scratchClock_.Step(LPlatform::Clock().NowMs()));
  rawPosition_ = frame;
}

void DJDeck::ScratchRestart(int frame) {
  scratchPosition_ = frame;
  transitions_.Clear();
}

void DJDeck::ScratchEnd() {
  scratching_ = false;
  scratchEnded_ = true;
  transitions_.Clear();
  levelInfo_.SetScratching(false);
}

// The chain

LSoundSource DJDeck::OpenSource() {
  chain_ = BuildChain(baseSource_, panOn_, &levelInfo_);
  open_ = true;
  return chain_;
}

LSoundSource DJDeck::OpenStereoPanSource() {
  LSoundSource file;
  if (!TSourceOpenWithConvert(file, path_)) return file;
  return BuildChain(file, true, nullptr);
}

LSoundSource DJDeck::BuildChain(LSoundSource source, bool panned, DJDeckSourceBaseInfo* info) {
  if (!source.IsOk()) return source;
  source = equalizer_.OpenSource(source);
  if (effectChain_) source = effectChain_->OpenSource(position_, source);
  if (panned) source = pan_.OpenSource(source);
  source = OpenSpeed(source);
  source.Seek(playPosition_);
  if (loop_.IsActive()) source = LLoopSource::OpenSource(source, loop_.start, loop_.End());
  if (scratching_ && info) source = TScratch(scratchPosition_, transitions_).OpenSource(source);
  return LSoundSource::Make<DJDeckSourceBase>(source, info);
}

LSoundSource DJDeck::OpenSpeed(LSoundSource source) const {
  if (IsSamePitch(pitch_, 1.0)) return source;
  if (keyLock_ && !scratching_) return LSoundSource::Make<LCountedSource>(LSPPhaseVoc(pitch_, true).OpenSource(source));
  return LSPPitchSpeed(NearestRateRatio(pitch_, source.GetSampleRate()), true).OpenSource(source);
}

// In frames of the file, so that the sample is what the loop plays, whatever the deck's speed.
LSoundSource DJDeck::OpenSaveLoopSource() const {
  if (!loop_.IsActive()) return LSoundSource();
  LSoundSource file;
  if (!TSourceOpenWithConvert(file, path_)) return file;
  const int start = int(GetBaseEnd() * loop_.startFraction), length = int(GetBaseEnd() * loop_.lengthFraction);
  return LSoundSource::Make<LLoopSaveSource>(file, start, start + length);
}

void DJDeck::CloseChain() {
  chain_ = baseSource_;
  open_ = false;
}
