// One turntable: a loaded track, its position, volume and state of play. It holds no device: it builds a chain of
// sources on demand and tells its two listeners what happens; the console puts the chain into the mixer.
// Chain    file at 44100 Hz stereo, then (later) equaliser, effects, pan, speed, loop, scratch, then level measuring.
// Units    positions in frames at the deck's present pitch, 44100 a second; beats in frames at pitch 1.
// Threads  [main]; the chain is read by the feeder and changed only under the player's lock.
// Failure  Load of an unreadable file leaves an error source in the handles; Play is then refused by the console.
#pragma once
#include <array>
#include <cstdint>
#include <string>

#include "console/DJDeckPosition.h"
#include "console/DJDeckSourceBase.h"
#include "console/DJNotify.h"
#include "sound/LSoundSource.h"

class DJConsole;

class DJDeck {
 public:
  enum State { Stopping = 0, Stopped = 1, Starting = 2, Playing = 3 };

  DJDeck(DJDeckPosition position, DJConsole& console) : console_(console), position_(position) {}
  DJDeck(const DJDeck&) = delete;
  DJDeck& operator=(const DJDeck&) = delete;

  void AddNotify(DJDeckNotify& listener);  // two is the design; more are ignored

  // The open source goes into the deck; the caller has tested it. With silence detection the position goes to the first
  // sound.
  void Load(const std::string& path, const LSoundSource& source, int beatIntervalFrames, int beatOffsetFrames);
  void Unload();
  bool Play();
  void Stop();
  void ClearState();  // unplugs the deck from the console without telling the panel; used while it is cleared
  void Seek(int frame);

  DJDeckPosition GetPosition() const { return position_; }
  char GetLetter() const { return DeckLetter(position_); }
  State GetState() const { return state_; }
  bool IsPlaying() const { return state_ == Playing; }
  bool IsSounding() const { return state_ == Playing || state_ == Starting; }
  bool IsLoaded() const { return loaded_; }
  bool IsScratching() const { return scratching_; }
  const std::string& GetPath() const { return path_; }
  int GetPlayPosition() const { return playPosition_; }
  int GetFirstSoundPosition() const { return firstSoundPosition_; }
  int GetEndSample() const { return chain_.GetEndSample(); }
  int GetChainPosition() const { return chain_.GetPositionSample(); }
  int GetStartPosition() const { return firstSoundPosition_; }
  double GetPitch() const { return pitch_; }
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

  void ResetFirstSoundPosition();
  void ResetDeckToDefaults();

  LSoundSource OpenSource();  // the whole chain anew, at the play position
  void CloseChain();          // back to the bare file

 private:
  void ChangeState(State state);
  void FindFirst();
  LSoundSource BuildChain(const LSoundSource& source);

  DJConsole& console_;
  DJDeckPosition position_;
  State state_ = Stopped, previousState_ = Stopped;
  std::array<DJDeckNotify*, 2> listeners_{};
  int listenerCount_ = 0;
  LSoundSource chain_, baseSource_;
  std::string path_;
  LLevel volume_, crossFadeLevel_;
  int beatInterval_ = 0, beatOffset_ = 0;            // 0 interval: no beats
  int savedBeatInterval_ = 0, savedBeatOffset_ = 0;  // at pitch 1
  int playPosition_ = 0;                             // at least 0; where the deck is or will start
  int rawPosition_ = 0;                              // as sent by the time path
  int firstSoundPosition_ = 0;
  double bpm_ = 0;
  double pitch_ = 1.0;
  bool headphone_ = false, loaded_ = false, scratching_ = false;
  DJDeckSourceBaseInfo levelInfo_;
  std::uint32_t loadTimeMs_ = 0;
};
