#include "console/DJConsole.h"

#include <algorithm>

#include "console/DJMixLaws.h"
#include "console/TRecordingFile.h"
#include "foundation/LThreadRole.h"
#include "foundation/TSettings.h"

namespace {

int DeviceIndexFromName(std::string name) {
  if (name == "[Standard-Soundausgang]") name = kDefaultPlayDeviceName;
  return name.empty() ? 0 : LSoundPlayDevice::GetListDeviceIndex(name);
}

}  // namespace

DJConsole::DJConsole() : microphone_(*this) {
  recorder_.SetStream(&streamSender_);
  players_.Main().SetNotify(this, kMainPlayerId);
  UpdateDevice();
  timer_.Set(kTimerMs);
}

DJConsole::~DJConsole() { Shutdown(); }

DJDeck& DJConsole::AddDeck(DJDeckPosition position) {
  decks_.push_back(std::make_unique<DJDeck>(position, *this));
  decks_.back()->AddNotify(*this);
  return *decks_.back();
}

DJDeck* DJConsole::GetDeck(DJDeckPosition position) const {
  for (const auto& deck : decks_)
    if (deck->GetPosition() == position) return deck.get();
  return nullptr;
}

DJDeck* DJConsole::GetOtherDeck(DJDeckPosition position) const { return GetDeck(position == kDeckA ? kDeckB : kDeckA); }

bool DJConsole::IsDeckLoaded(DJDeckPosition position) const {
  const DJDeck* deck = GetDeck(position);
  return deck && deck->IsLoaded();
}

bool DJConsole::IsDeckPlaying(DJDeckPosition position) const {
  const DJDeck* deck = GetDeck(position);
  return deck && deck->IsPlaying();
}

bool DJConsole::IsDeckScratching(DJDeckPosition position) const {
  const DJDeck* deck = GetDeck(position);
  return deck && deck->IsScratching();
}

bool DJConsole::IsAnyDeckPlaying() const {
  return std::any_of(decks_.begin(), decks_.end(), [](const auto& deck) { return deck->IsPlaying(); });
}

void DJConsole::Shutdown() {
  if (shutDown_) return;
  shutDown_ = true;
  timer_.Reset();
  microphone_.StopSpeaking();
  StopRecording();
  for (const auto& deck : decks_) deck->Stop();
  players_.StopPlaying();
  recorder_.Stop();
  streamSender_.SetPipe(nullptr);
}

// Devices and routing

void DJConsole::UpdateDevice() {
  if (players_.IsRunning()) return;
  LSoundPlayDevice main;
  main.index = DeviceIndexFromName(deviceOverride_.empty() ? TSettings::kSoundOutDevice.Get() : deviceOverride_);
  LSoundPlayDevice headphone;
  headphone.index = DeviceIndexFromName(TSettings::kSoundOutDeviceHeadphone.Get());
  const bool second = TSettings::kUseSecondDevice.Get();
  players_.SetDevices(main, headphone, second);
  microphone_.SetDevice(main);
  UpdateChannelMapping();
  const int highest = std::max({map_.mainLeft, map_.mainRight, map_.headphoneLeft, map_.headphoneRight, 1});
  mixer_.SetOutputChannels(static_cast<unsigned char>(second ? 4 : highest + 1));
}

void DJConsole::UpdateChannelMapping() {
  const bool second = players_.UsesSecond();
  map_.mainLeft = TSettings::kMainOutputLeft.Get();
  map_.mainRight = TSettings::kMainOutputRight.Get();
  map_.headphoneLeft = (second ? TSettings::kHeadphoneOutput2Left : TSettings::kHeadphoneOutputLeft).Get();
  map_.headphoneRight = (second ? TSettings::kHeadphoneOutput2Right : TSettings::kHeadphoneOutputRight).Get();
  recorder_.SetChannelPick(map_.mainLeft, map_.mainRight);
}

DJConsole::ChannelMap DJConsole::MixerMap() const { return players_.UsesSecond() ? ChannelMap{0, 1, 2, 3} : map_; }

bool DJConsole::CheckHeadphones() const {
  if (players_.UsesSecond()) return true;
  if (map_.headphoneLeft < 0 && map_.headphoneRight < 0) return true;
  const auto isHeadphone = [&](int channel) { return channel == map_.headphoneLeft || channel == map_.headphoneRight; };
  return !isHeadphone(map_.mainLeft) && !isHeadphone(map_.mainRight);
}

void DJConsole::ConfigureDeckMixerChannels(DJDeck& deck) {
  const ChannelMap map = MixerMap();
  const DJDeckPosition id = deck.GetPosition();
  if (id != kHeadphoneOnlyDeck) {
    mixer_.AddChannelDesignation(id, 0, map.mainLeft);
    mixer_.AddChannelDesignation(id, 1, map.mainRight);
  }
  if (deck.IsHeadphoneOn() || id == kHeadphoneOnlyDeck) RouteHeadphones(deck, true);
}

void DJConsole::RouteHeadphones(DJDeck& deck, bool on) {
  const ChannelMap map = MixerMap();
  const auto route = [&](int input, int output) {
    if (output < 0) return;
    if (on)
      mixer_.AddChannelDesignation(deck.GetPosition(), input, output);
    else
      mixer_.RemoveChannelDesignation(deck.GetPosition(), input, output);
  };
  route(0, map.headphoneLeft);
  route(1, map.headphoneRight);
}

void DJConsole::djntfHeadphone(DJDeck& deck, bool on) {
  const TPlayersLock lock(players_);
  RouteHeadphones(deck, on);
  UpdateDeckVolume(deck, CrossFadePercent(deck.GetPosition(), crossFade_));
  if (players_.IsRunning()) ResyncAll(true);
}

LSoundSource DJConsole::OpenMainTail(const LSoundSource& source) {
  return LSoundSource::Make<TRecorderSource>(OpenGlobalFxChain(source), recorder_);
}

bool DJConsole::StartPlayers() {
  LSoundSource mix = mixer_.OpenSource();
  if (!players_.UsesSecond()) {
    LSoundSource main = OpenMainTail(mix);
    return players_.Start(main);
  }
  players_.OpenSplitter(mix, {map_.mainLeft, map_.mainRight, map_.headphoneLeft, map_.headphoneRight});
  LSoundSource main = OpenMainTail(players_.MainHalf());
  LSoundSource headphone = OpenGlobalFxChain(players_.HeadphoneHalf());
  return players_.Start(main, headphone);
}

// Start and stop of a deck

bool DJConsole::djntfPlay(DJDeck& deck) {
  LAssertThread(LThreadRole::Main, "DJConsole::djntfPlay");
  UpdateChannelMapping();
  {
    const TPlayersLock lock(players_);
    ResyncAll(false);
    AddDeckSourceToMixer(deck);
    ResyncAll(true);
  }
  return StartPlayingDeck(deck);
}

void DJConsole::AddDeckSourceToMixer(DJDeck& deck) {
  LSoundSource chain = deck.OpenSource();
  if (!deck.IsScratching()) {
    const TDeckLoop& loop = deck.GetLoop();
    if (MasterOf(deck))
      SeekToMaster(deck);
    else if (loop.IsActive() && (deck.GetPlayPosition() < loop.start || deck.GetPlayPosition() > loop.End()))
      deck.Seek(deck.GetRealPosition(0));
  }
  mixer_.AddSource(chain, deck.GetPosition());
  ConfigureDeckMixerChannels(deck);
  UpdateDeckVolume(deck, CrossFadePercent(deck.GetPosition(), crossFade_));
}

bool DJConsole::StartPlayingDeck(DJDeck& deck) {
  const bool joinsRunningMix = players_.IsRunning() && IsAnyDeckPlaying();
  if (!joinsRunningMix && !StartPlayers()) return false;
  if (target_) target_->djcntfPlay(deck);
  return true;
}

void DJConsole::djntfStop(DJDeck& deck) {
  TPlayersLock lock(players_);
  const int lag = GetLag(true);
  const int end = deck.GetEndSample();
  // What was heard last, not what was read last.
  const int heard = deck.GetChainPosition() - lag >= end ? end : deck.GetRealPosition(lag);
  if (deck.IsLoaded()) {
    mixer_.DeleteSource(deck.GetPosition());
    deck.CloseChain();
    deck.Seek(std::max(heard, 0));
  }
  if (IsAnyDeckPlaying()) {
    ResyncAll(true);
    lock.Release();
  } else {
    ResyncRecorder();
    lock.Release();
    players_.StopPlaying();
  }
  if (target_) target_->djcntfStop(deck);
}

void DJConsole::CmDeckClear(DJDeck& deck) {
  CtlDeckFreeSlave(deck);
  for (const auto& other : decks_)
    if (MasterOf(*other) == &deck) CtlDeckFreeSlave(*other);
  pending_.deck[std::size_t(deck.GetPosition())].pitch.reset();
  pitchAfterScratch_[std::size_t(deck.GetPosition())].reset();
  deck.ClearState();
  deck.Unload();
  nudge_[std::size_t(deck.GetPosition())] = {};
  if (TSettings::kResetDeckWhenLoaded.Get()) deck.ResetDeckToDefaults();
}

void DJConsole::CmDeckReset(DJDeck& deck) {
  CmScratchEnd(deck);
  CtlDeckFreeSlave(deck);
  pending_.deck[std::size_t(deck.GetPosition())].pitch.reset();
  nudge_[std::size_t(deck.GetPosition())] = {};
  TmUpdateDeckPitch(deck, 1.0);  // with its slaves
  deck.ResetDeckToDefaults();
  ResyncPlayerRebuild(deck);
}

void DJConsole::CmSeek(int position, DJDeck& deck) {
  if (!deck.IsPlaying()) {
    deck.Seek(position);
    return;
  }
  const TPlayersLock lock(players_);
  ResyncAll(false);
  CtlDeckSeek(deck, position);
}

void DJConsole::CtlDeckSeek(DJDeck& deck, int position) {
  deck.Seek(position);
  SeekToMaster(deck);
}

// Levels

void DJConsole::SetCrossFadePosition(int position) {
  crossFade_ = std::clamp(position, 0, 100);
  pending_.crossFade = true;
}

void DJConsole::SetVolume(LLevel master, LLevel headphone) {
  masterLevel_ = master;
  headphoneLevel_ = headphone;
  pending_.masterVolume = true;
}

void DJConsole::djntfVolume(LLevel, LLevel, DJDeck& deck) {
  pending_.deck[std::size_t(deck.GetPosition())].volume = true;
}

void DJConsole::djntfFX(DJDeck& deck) { pending_.deck[std::size_t(deck.GetPosition())].fx = true; }

void DJConsole::CmDeckUpdateEQ(DJDeck& deck, const std::array<LLevel, TEqualizer::kBands>& levels) {
  for (int band = 0; band < TEqualizer::kBands; ++band) deck.GetEqualizer().SetLevel(band, levels[std::size_t(band)]);
  djntfFX(deck);
}

void DJConsole::ApplyCrossFade() {
  for (const auto& deck : decks_) UpdateDeckVolume(*deck, CrossFadePercent(deck->GetPosition(), crossFade_));
}

void DJConsole::UpdateDeckVolume(DJDeck& deck, int percent) {
  deck.SetCrossFadeLevel(CrossFadeLevel(percent));
  const ChannelMap map = MixerMap();
  const auto set = [&](int input, int output, LLevel level) {
    if (output >= 0) mixer_.SetChannelDesignationVolume(deck.GetPosition(), input, output, level);
  };
  const LLevel headphone = deck.GetVolume() + headphoneLevel_;
  set(0, map.headphoneLeft, headphone);
  set(1, map.headphoneRight, headphone);
  // Last, so that a channel that serves both carries the main level.
  const LLevel main = deck.GetVolumeTotal() + masterLevel_;
  set(0, map.mainLeft, main);
  set(1, map.mainRight, main);
}

// Resync

int DJConsole::RecorderLag() {
  long lookAhead = 0;
  players_.Main().Chain().ControlMessage(lccLookAhead, &lookAhead);
  return players_.Main().GetDevice().GetLagToWriteCursor() + int(lookAhead);
}

void DJConsole::ResyncRecorder() {
  if (IsRecording()) recorder_.Resync(RecorderLag());
}

void DJConsole::ResyncAll(bool refill) {
  if (!players_.IsRunning()) return;
  ResyncRecorder();
  players_.Resync(refill);
}

void DJConsole::ResyncPlayerNoRecorder() {
  if (!players_.IsRunning()) return;
  const TPlayersLock lock(players_);
  players_.Resync(true);
}

void DJConsole::ResyncIfRunning() {
  if (!players_.IsRunning()) return;
  const TPlayersLock lock(players_);
  ResyncAll(true);
}

void DJConsole::ReopenDeckChain(DJDeck& deck) { ReplaceChain(deck, MixerPosition(deck)); }

void DJConsole::ReplaceChain(DJDeck& deck, int position) {
  LSoundSource chain = deck.OpenSource();
  mixer_.ChangeSource(deck.GetPosition(), chain);
  deck.Seek(position);
}

void DJConsole::ResyncPlayerRebuild(DJDeck& deck) {
  if (!deck.IsPlaying()) return;
  const TPlayersLock lock(players_);
  ReopenDeckChain(deck);
  ResyncAll(true);
  SettlePosition(deck);
}

// The rebuild seeked the deck to what is read; what it shows is what is heard.
void DJConsole::SettlePosition(DJDeck& deck) { deck.EvTimeChanged(deck.GetRealPosition(GetLag(true))); }

void DJConsole::EvUpdateEffectChain() {
  if (!IsAnyDeckPlaying()) return;
  const TPlayersLock lock(players_);
  for (const auto& deck : decks_)
    if (deck->IsPlaying()) ReopenDeckChain(*deck);
  ResyncAll(true);
  for (const auto& deck : decks_)
    if (deck->IsPlaying()) SettlePosition(*deck);
}

void DJConsole::CmUpdateMasterEffects() {
  if (!players_.IsRunning()) return;
  const TPlayersLock lock(players_);
  const TPlayers::Places places = players_.GetPlaces();
  LSoundSource mix = mixer_.OpenSource();
  if (players_.UsesSecond()) {
    players_.OpenSplitter(mix, {map_.mainLeft, map_.mainRight, map_.headphoneLeft, map_.headphoneRight});
    LSoundSource main = OpenMainTail(players_.MainHalf());
    LSoundSource headphone = OpenGlobalFxChain(players_.HeadphoneHalf());
    players_.Replace(main, &headphone, places);
  } else {
    LSoundSource main = OpenMainTail(mix);
    players_.Replace(main, nullptr, places);
  }
  ResyncAll(true);
}

// The timer and the players' notifications

void DJConsole::tmntfTimer() {
  PendingFlags now = pending_;
  pending_ = {};
  for (const auto& deck : decks_) TmUpdateDeck(*deck, now.deck[std::size_t(deck->GetPosition())]);
  if (now.masterFx) CmUpdateMasterEffects();
  if (now.chain) EvUpdateEffectChain();
  if (now.crossFade || now.masterVolume) {
    ApplyCrossFade();
    ResyncIfRunning();
  }
  timer_.Set(kTimerMs);
}

void DJConsole::TmUpdateDeck(DJDeck& deck, DeckFlags flags) {
  if (flags.fx) ResyncPlayerRebuild(deck);
  if (flags.volume) {
    ApplyCrossFade();
    ResyncIfRunning();
  }
  if (flags.pitch) TmUpdateDeckPitch(deck, *flags.pitch);
  if (flags.time) TmUpdateDeckTime(deck);
}

void DJConsole::TmUpdateDeckTime(DJDeck& deck) {
  {
    const TPlayersLock lock(players_);
    if (!deck.IsPlaying()) return;
    SettlePosition(deck);
  }
  EvCheckDecksStop();
}

// A deck has ended when its last frame has left the ring too: the shown position runs ahead by the device's lead.
void DJConsole::EvCheckDecksStop() {
  for (const auto& deck : decks_)
    if (deck->IsPlaying() && !deck->IsScratching() && IsHeardToItsEnd(*deck)) deck->Stop();
}

bool DJConsole::IsHeardToItsEnd(const DJDeck& deck) {
  const TPlayersLock lock(players_);
  return deck.GetChainPosition() - players_.GetQueuedFrames() >= deck.GetEndSample();
}

void DJConsole::EvTimeAllDecks() {
  for (const auto& deck : decks_)
    if (deck->IsPlaying()) pending_.deck[std::size_t(deck->GetPosition())].time = true;
}

void DJConsole::spntfTime(LSoundTime, long id) {
  if (id == kMicrophonePlayerId) return;
  EvTimeAllDecks();
  if (target_) target_->djcntfTime();
}

void DJConsole::spntfStop(long id) {
  if (id != kMainPlayerId) return;
  for (const auto& deck : decks_)
    if (deck->IsSounding()) deck->Stop();
}

void DJConsole::spntfLevel(const LLevels& levels, long id) {
  if (target_) target_->djcntfLevel(levels, id);
}

void DJConsole::micntfLevel(const LLevels& levels) { spntfLevel(levels, kMicrophonePlayerId); }

// Recording

bool DJConsole::StartRecording() { return StartRecordingTo(TRecordingFile::NewPath()); }

bool DJConsole::StartRecordingTo(const std::string& path) {
  if (IsRecording()) return false;
  recordingPath_ = path;
  LSoundSink sink = TRecordingFile::OpenSink(path);
  if (sink.HasError()) return false;
  recorder_.SetRecordingSink(sink);
  {
    const TPlayersLock lock(players_);
    if (!recorder_.Enable(true)) return false;
  }
  ResyncPlayerNoRecorder();
  return true;
}

void DJConsole::StopRecording() {
  if (!IsRecording()) return;
  {
    const TPlayersLock lock(players_);
    const int lag = players_.IsRunning() ? RecorderLag() : 0;
    recorder_.Enable(false);
    recorder_.Resync(lag);
  }
  recorder_.Stop();
}

void DJConsole::SetRelayoPipe(LNamedPipe* pipe) { streamSender_.SetPipe(pipe); }

bool DJConsole::IsStreamingToRelayo() {
  return TSettings::kStreamingToRelayo.Get() || TSettings::kRecordAndStream.Get();
}
