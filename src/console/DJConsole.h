// The audio engine: decks, mixer, players, recorder and microphone, and which signal reaches which output at which
// level. Nothing is applied in the audio path directly: a change goes to a stored value and a flag; the 30 ms timer
// takes the flag up, rebuilds or regains under the player lock, and rewinds the graph by what waits in the device ring,
// so that the change is heard at once through a short crossfade.
// Units    levels in dB; crossfader 0 (deck A) to 100 (deck B); positions in frames of 44100 Hz.
// Threads  [main]; the graph is read by the players' feeders between the main thread's locks.
// Failure  a device or a source that does not open leaves the deck stopped; no message is made here.
#pragma once
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "console/DJDeck.h"
#include "console/DJNotify.h"
#include "console/DJSyncResult.h"
#include "console/TMicrophone.h"
#include "console/TPlayers.h"
#include "console/TRecorder.h"
#include "console/TStreamSender.h"
#include "effects/LEffectList.h"
#include "foundation/LTimerHandler.h"
#include "sound/LAudioMixer.h"

inline constexpr long kMainPlayerId = 6, kMicrophonePlayerId = 9;

class DJConsole final : private LSoundPlayerNotify, private DJDeckNotify, private TMicrophoneNotify {
 public:
  static constexpr int kTimerMs = 30;  // many slider moves collapse into one rebuild

  DJConsole();
  ~DJConsole() override;
  DJConsole(const DJConsole&) = delete;
  DJConsole& operator=(const DJConsole&) = delete;

  void SetNotify(DJConsoleNotify* target) { target_ = target; }  // outlives this, or null
  DJDeck& AddDeck(DJDeckPosition position);
  DJDeck* GetDeck(DJDeckPosition position) const;  // null: there is none
  DJDeck* GetOtherDeck(DJDeckPosition position) const;
  TPlayers& GetPlayers() { return players_; }
  void Shutdown();

  bool IsDeckLoaded(DJDeckPosition deck) const;
  bool IsDeckPlaying(DJDeckPosition deck) const;
  bool IsDeckScratching(DJDeckPosition deck) const;
  bool IsAnyDeckPlaying() const;
  bool IsMainPlayerRunning() const { return players_.IsRunning(); }

  void UpdateDevice();  // reads the settings; nothing while a player runs
  void SetDeviceOverride(std::string name) { deviceOverride_ = std::move(name); }  // of the command line
  bool CheckHeadphones() const;  // false: headphones share a channel with the main output

  void SetCrossFadePosition(int position);
  int GetCrossFadePosition() const { return crossFade_; }
  void SetVolume(LLevel master, LLevel headphone);
  LLevel GetMasterLevel() const { return masterLevel_; }
  LLevel GetHeadphoneLevel() const { return headphoneLevel_; }
  int GetLag(bool addSplitter) const { return players_.GetLag(addSplitter); }

  void CmSeek(int position, DJDeck& deck);
  void CmDeckClear(DJDeck& deck);  // stops without the panel hearing it, and unloads

  void CmDeckReset(DJDeck& deck);  // pitch and switches to what they are at the start

  // Pitch and sync (DJConsoleSync.cpp).
  bool CmDeckSetPitch(DJDeck& deck, int slider);    // whether a change was queued for the timer
  void CmDeckNudgePitch(DJDeck& deck, int slider);  // there, and with the next call back again
  void CmDeckPitchLock(DJDeck& deck, bool on);
  DJSyncResult CtlDeckSync(DJDeck& deck);
  void CmDeckUnsync(DJDeck& deck);
  void CtlDeckFreeSlave(DJDeck& deck);
  bool IsMasterPlaying(const DJDeck& slave) const { return PlayingMasterOf(slave) != nullptr; }
  // Where the slave would have to be to stand at its master's place in the bar; may be below 0.
  int GetEquivalentBarPosition(const DJDeck& master, const DJDeck& slave, int lagFrames) const;
  double GetDeckBeatFrequency(DJDeckPosition deck) const;  // frames from beat to beat as they play; 0: no deck
  int GetDeckBeatOffset(DJDeckPosition deck) const;

  // Cue points and loops (DJConsoleCue.cpp).
  void CmDeckSetCuePoint(DJDeck& deck, int index);
  void CmDeckCuePause(DJDeck& deck, int index);
  void CmDeckApplyCueBeatLoop(DJDeck& deck, int index);
  void CmDeckRemoveCueBeatLoop(DJDeck& deck);
  void CmDeckLoopTrack(DJDeck& deck);

  // Scratching (DJConsoleScratch.cpp). Frames at the deck's pitch.
  void CmScratchStart(DJDeck& deck, int frame);
  void CmStartMidiScratch(DJDeck& deck);
  void CmScratchToPosition(DJDeck& deck, int frame);
  void CmMidiScratchToPosition(DJDeck& deck, int delta);
  void CmScratchEnd(DJDeck& deck);
  int GetMidiScratchPosition(const DJDeck& deck) const { return midiScratchStart_[std::size_t(deck.GetPosition())]; }

  // Recording. StartRecording takes path and format from the settings; the other form is given the path.
  bool StartRecording();
  bool StartRecordingTo(const std::string& path);
  void StopRecording();
  bool IsRecording() const { return recorder_.IsEnabled(); }
  bool HasRecordingFailed() const { return recorder_.HasFailed(); }
  const std::string& GetRecordingPath() const { return recordingPath_; }
  void ResyncPlayerNoRecorder();
  void SetRelayoPipe(LNamedPipe* pipe);
  static bool IsStreamingToRelayo();

  bool StartSpeaking() { return microphone_.StartSpeaking(); }
  void StopSpeaking() { microphone_.StopSpeaking(); }
  bool IsSpeaking() const { return microphone_.IsSpeaking(); }

  LMasterEffects& GetMasterEffects() { return masterEffects_; }
  const LMasterEffects& GetMasterEffects() const { return masterEffects_; }
  void CmDeckUpdateEQ(DJDeck& deck, const std::array<LLevel, TEqualizer::kBands>& levels);  // from the bass up
  void djntfProcessChainUpdate() { pending_.chain = true; }
  void djntfProcessChainUpdateNow() { EvUpdateEffectChain(); }
  void djntfProcessMasterFxChainUpdate() { pending_.masterFx = true; }
  void djntfProcessMasterFxChainUpdateNow() { CmUpdateMasterEffects(); }

  void tmntfTimer();

 private:
  struct DeckFlags {
    bool time = false, fx = false, volume = false;
    std::optional<double> pitch = {};
  };
  struct Nudge {
    bool on = false;
    double returnPitch = 1.0;
  };
  struct PendingFlags {
    std::array<DeckFlags, kDeckCount> deck;
    bool masterFx = false, chain = false, crossFade = false, masterVolume = false;
  };
  struct ChannelMap {
    int mainLeft = 0, mainRight = 1, headphoneLeft = -1, headphoneRight = -1;  // device channels; -1: none
  };

  // Notifications of the players.
  void spntfStop(long id) override;
  void spntfTime(LSoundTime time, long id) override;
  void spntfLevel(const LLevels& levels, long id) override;
  void micntfLevel(const LLevels& levels) override;
  // Notifications of the decks.
  bool djntfPlay(DJDeck& deck) override;
  bool djntfCuePlay(DJDeck& deck, int frame) override;
  void djntfStop(DJDeck& deck) override;
  void djntfVolume(LLevel volume, LLevel crossFade, DJDeck& deck) override;
  void djntfHeadphone(DJDeck& deck, bool on) override;
  void djntfFX(DJDeck& deck) override;
  void djntfBeatLoop(DJDeck& deck) override { UpdateDeckLoop(deck); }

  // Topology.
  void UpdateChannelMapping();
  ChannelMap MixerMap() const;  // the mixer's output channels: 0 to 3 with a second device, else those of the device
  void ConfigureDeckMixerChannels(DJDeck& deck);
  void RouteHeadphones(DJDeck& deck, bool on);
  void AddDeckSourceToMixer(DJDeck& deck);
  bool StartPlayingDeck(DJDeck& deck);
  bool StartPlayers();
  LSoundSource OpenGlobalFxChain(const LSoundSource& source) const { return masterEffects_.OpenSource(source); }
  LSoundSource OpenMainTail(const LSoundSource& source);

  // Levels.
  void ApplyCrossFade();
  void UpdateDeckVolume(DJDeck& deck, int percent);

  // Resync.
  void ResyncAll(bool refill);
  void ResyncRecorder();
  void ResyncPlayerRebuild(DJDeck& deck);
  void ResyncPlayerScratch(DJDeck& deck);
  void ReopenDeckChain(DJDeck& deck);
  void ReplaceChain(DJDeck& deck, int position);
  void ResyncIfRunning();
  void SettlePosition(DJDeck& deck);
  int RecorderLag();

  void TmUpdateDeck(DJDeck& deck, DeckFlags flags);
  void TmUpdateDeckTime(DJDeck& deck);
  void EvCheckDecksStop();
  bool IsHeardToItsEnd(const DJDeck& deck);
  void EvTimeAllDecks();
  void EvUpdateEffectChain();
  void CmUpdateMasterEffects();
  void CtlDeckSeek(DJDeck& deck, int position);
  int MixerPosition(const DJDeck& deck) { return mixer_.GetPositionSample(deck.GetPosition()); }

  double PitchToBe(const DJDeck& deck) const;
  void QueuePitch(DJDeck& deck, double pitch);
  void TmUpdateDeckPitch(DJDeck& deck, double pitch);
  void CtlDeckPitch(DJDeck& deck, double pitch);
  void CtlDeckSlavePitch(DJDeck& master);
  DJSyncResult CmSyncSlaveToMaster(DJDeck& master, DJDeck& slave);
  DJDeck* MasterOf(const DJDeck& slave) const;         // null: not a slave
  DJDeck* PlayingMasterOf(const DJDeck& slave) const;  // null: not a slave, or its master does not play
  void SeekToMaster(DJDeck& deck);                     // a slave, to its master's place in the bar
  template <class Change>
  void ChangeInMix(DJDeck& deck, Change change);

  void UpdateDeckLoop(DJDeck& deck);
  int PositionInLoop(DJDeck& deck, int position) const;
  bool StartDeckScratch(DJDeck& deck, int frame);

  TStreamSender streamSender_;
  TRecorder recorder_;  // outlives the players, whose graph writes to it
  LAudioMixer mixer_{false};
  std::vector<std::unique_ptr<DJDeck>> decks_;
  LMasterEffects masterEffects_;
  TPlayers players_;
  TMicrophone microphone_;
  DJConsoleNotify* target_ = nullptr;
  LLevel masterLevel_ = 0, headphoneLevel_ = 0;
  int crossFade_ = 50;
  ChannelMap map_;
  std::string deviceOverride_;
  std::string recordingPath_;
  PendingFlags pending_;
  std::array<Nudge, kDeckCount> nudge_;
  std::array<std::optional<double>, kDeckCount> pitchAfterScratch_;
  std::array<int, kDeckCount> midiScratchStart_{};  // frames
  bool shutDown_ = false;
  LTimerCallBack<DJConsole> timer_{*this};
};

// Changes a deck that plays, from the audible moment on: the change is made between what is heard and what is read anew,
// and returns the frame to go on from.
template <class Change>
void DJConsole::ChangeInMix(DJDeck& deck, Change change) {
  const TPlayersLock lock(players_);
  ResyncAll(false);
  ReplaceChain(deck, change());
  ResyncAll(true);
  SettlePosition(deck);
}
