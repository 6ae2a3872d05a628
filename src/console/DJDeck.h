// One turntable: a loaded track, its position, volume and state of play. It holds no device: it builds a chain of
// sources on demand and tells its two listeners what happens; the console puts the chain into the mixer.
// Chain    file at 44100 Hz stereo; equaliser; effects; pan; speed or key lock, if the pitch is not 1; loop; scratch; level measuring.
// Units    positions in frames at the deck's present pitch, 44100 a second; beats in frames at pitch 1.
// Threads  [main]; the chain is read by the feeder and changed only under the player's lock.
// Failure  Load of an unreadable file leaves an error source in the handles; Play is then refused by the console.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "console/DJDeckPosition.h"
#include "console/DJDeckSourceBase.h"
#include "console/DJNotify.h"
#include "console/LTransitionManager.h"
#include "console/TCuePoints.h"
#include "effects/LSPPan.h"
#include "effects/TEqualizer.h"
#include "sound/LSoundSource.h"

class DJConsole;
class TSoundProcessChain;

class DJDeck {
 public:
  enum State { Stopping = 0, Stopped = 1, Starting = 2, Playing = 3 };
  enum SyncState { Free = 0, Master = 1, Slave = 2 };

  DJDeck(DJDeckPosition position, DJConsole& console) : console_(console), position_(position) {}
  DJDeck(const DJDeck&) = delete;
  DJDeck& operator=(const DJDeck&) = delete;

  void AddNotify(DJDeckNotify& listener);  // two is the design; more are ignored

  // The open source goes into the deck; the caller has tested it. With silence detection the position goes to the first
  // sound.
  void Load(const std::string& path, const LSoundSource& source, int beatIntervalFrames, int beatOffsetFrames);
  void Unload();
  bool Play();
  bool CuePlay(int frame);  // as Play, from a frame; a deck that plays jumps there on its beat
  void Stop();
  void ClearState();  // unplugs the deck from the console without telling the panel; used while it is cleared
  void Seek(int frame);

  DJDeckPosition GetPosition() const { return position_; }
  char GetLetter() const { return DeckLetter(position_); }
  State GetState() const { return state_; }
  bool IsPlaying() const { return state_ == Playing; }
  bool IsSounding() const { return state_ == Playing || state_ == Starting; }
  void SetState(State state) { state_ = state; }  // of the console, which starts a deck to be scratched
  void SetRawPosition(int frame) { rawPosition_ = frame; }
  bool IsLoaded() const { return loaded_; }
  bool IsScratching() const { return scratching_; }
  const std::string& GetPath() const { return path_; }  // of what is played
  // The track itself, where it is played from a decoded copy.
  const std::string& GetOriginalPath() const { return originalPath_; }
  void SetOriginalPath(const std::string& path) { originalPath_ = path; }
  int GetPlayPosition() const { return playPosition_; }
  int GetFirstSoundPosition() const { return firstSoundPosition_; }
  int GetRawPosition() const { return rawPosition_; }
  int GetBaseEnd() const { return baseSource_.GetEndSample(); }                       // frames at pitch 1
  int GetTrackEnd() const { return int(GetBaseEnd() / pitch_); }                      // frames at the present pitch
  int GetEndSample() const { return open_ ? chain_.GetEndSample() : GetTrackEnd(); }  // kEndless in a loop
  int GetChainPosition() const { return open_ ? chain_.GetPositionSample() : rawPosition_; }
  int GetStartPosition() const { return int(firstSoundPosition_ / pitch_); }
  std::uint32_t GetLoadTimeMs() const { return loadTimeMs_; }

  int GetRealPosition(int lagFrames) const;  // the position audible now, given frames still buffered
  static int RealPosition(int chainPosition, int lagFrames, bool loopOn, int loopStart, int loopLength);
  void EvTimeChanged(int frame);
  void NotifyLevel(LSoundTime time);

  void SetVolume(LLevel level);
  LLevel GetVolume() const { return volume_; }
  void SetCrossFadeLevel(LLevel level) { crossFadeLevel_ = level; }
  LLevel GetCrossFadeLevel() const { return crossFadeLevel_; }
  LLevel GetVolumeTotal() const { return volume_ + crossFadeLevel_; }

  void SetHeadphoneMode(bool on);
  bool IsHeadphoneOn() const { return headphone_; }
  bool CheckHeadphones() const;

  void SetBPM(double bpm, int offsetFrames);
  void ClearBPM();
  double GetBPM() const { return bpm_; }
  int GetBeatInterval() const { return beatInterval_; }
  int GetBeatOffset() const { return beatOffset_; }
  TBeatGrid GetBeatGrid() const { return {bpm_, beatInterval_, beatOffset_, pitch_, GetTrackEnd()}; }
  bool HasStrictBeats() const { return strictBeats_; }  // cue points and loops snap to beats
  void ToggleStrictBeats() { strictBeats_ = !strictBeats_; }
  bool SnapsToBeats() const { return strictBeats_ && bpm_ > 1.0; }

  // Speed. A change rescales the positions, the loop and the cue points; the chain stays what it is.
  void SetPitch(double pitch);
  double GetPitch() const { return pitch_; }
  double GetPreviousPitch() const { return previousPitch_; }
  bool IsKeyLocked() const { return keyLock_; }
  void SetKeyLock(bool on) { keyLock_ = on; }
  SyncState GetSyncState() const { return syncState_; }
  DJDeckPosition GetMasterDeck() const { return masterDeck_; }  // kNoDeck: none yet
  void SetSync(SyncState state, DJDeckPosition master);

  // Cue points. A frame of -1 is the audible position; with strict beats it goes to the closest beat.
  void SetCuePointAtIndex(int index, int frame);
  int GetCuePosition(int index) const { return cues_.Position(index, GetTrackEnd()); }  // kNoCue: empty
  int GetCuePointClosest(int frame) const { return cues_.GetCuePointClosest(frame, GetTrackEnd()); }
  TCuePoints& Cues() { return cues_; }
  const TCuePoints& Cues() const { return cues_; }
  bool IsCueLocked() const { return cueLock_; }
  void ToggleCueLock() { cueLock_ = !cueLock_; }

  // Loops. Beats below 0 loop the whole track, 0 ends the loop. The listeners are told of the first three.
  void SetBeatLoop(double beats);
  void SetBeatLoopWithStart(double beats, int start);
  void SetBeatLoopStart(int frame);
  void CmApplyBeatLoop(int frame, double beats) { loop_.Apply(frame, beats, GetBeatGrid()); }
  void CmRemoveBeatLoop() { loop_.Clear(); }
  const TDeckLoop& GetLoop() const { return loop_; }

  // Scratching: the hand leads the position until it lets go. The moves are changed under the player's lock.
  void ScratchStart(int frame);
  void ScratchToPosition(int frame);
  void ScratchRestart(int frame);
  void ScratchEnd();
  bool WasPlayingAtScratchStart() const { return playedAtScratchStart_; }
  bool TakeScratchEnded() { return std::exchange(scratchEnded_, false); }  // for the panel, once
  LLevels GetScratchLevel() { return levelInfo_.GetScratchLevel(); }
  bool HasVinylMode() const { return vinylMode_; }  // a hand on a playing deck scratches; without, it bends the pitch
  void ToggleVinylMode() { vinylMode_ = !vinylMode_; }

  void ResetFirstSoundPosition();
  void ResetDeckToDefaults();

  TEqualizer& GetEqualizer() { return equalizer_; }
  LSPPan& GetPan() { return pan_; }
  bool IsPanOn() const { return panOn_; }
  void SetPan(bool on);  // heard at the console's next timer
  void ResetEffects() { equalizer_ = {}; }
  void SetEffectChain(const TSoundProcessChain* chain) { effectChain_ = chain; }  // outlives the deck, or null

  LSoundSource OpenSource();                // the whole chain anew, at the play position
  LSoundSource OpenStereoPanSource();       // the same over the file opened again, to listen to the pan; panned always
  LSoundSource OpenSaveLoopSource() const;  // the loop once, at its own speed; an error source without a loop
  void CloseChain();                        // back to the bare file

 private:
  void FindFirst();
  LSoundSource BuildChain(LSoundSource source, bool panned, DJDeckSourceBaseInfo* info);
  LSoundSource OpenSpeed(LSoundSource source) const;
  void TellBeatLoop();

  DJConsole& console_;
  const TSoundProcessChain* effectChain_ = nullptr;
  TEqualizer equalizer_;
  LSPPan pan_;
  DJDeckPosition position_;
  State state_ = Stopped;
  std::array<DJDeckNotify*, 2> listeners_{};
  int listenerCount_ = 0;
  LSoundSource chain_, baseSource_;
  std::string path_;
  std::string originalPath_;
  LLevel volume_, crossFadeLevel_;
  int beatInterval_ = 0, beatOffset_ = 0;  // at pitch 1; 0 interval: no beats
  int playPosition_ = 0;                   // at least 0; where the deck is or will start
  int rawPosition_ = 0;                    // as sent by the time path
  int firstSoundPosition_ = 0;
  double bpm_ = 0;
  double pitch_ = 1.0, previousPitch_ = 1.0;
  TCuePoints cues_;
  TDeckLoop loop_;
  SyncState syncState_ = Free;
  DJDeckPosition masterDeck_ = kNoDeck;
  bool headphone_ = false, loaded_ = false, scratching_ = false;
  bool open_ = false;  // the chain is built, and not the bare file
  bool panOn_ = false;
  bool keyLock_ = false, cueLock_ = false, strictBeats_ = true, vinylMode_ = true;
  bool playedAtScratchStart_ = false, scratchEnded_ = false;
  int scratchPosition_ = 0;
  LTransitionManager transitions_;
  TScratchClock scratchClock_;
  DJDeckSourceBaseInfo levelInfo_;
  std::uint32_t loadTimeMs_ = 0;
};
