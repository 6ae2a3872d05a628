// The device side of a player: the open stream, the ring, the position as the listener hears it, and the exchange of what
// is queued when the graph behind changes.
// Units    frames of the source; gain with 9 fraction bits; levels in dB, by the device's channel numbers.
// Threads  RenderData [device] under the render lock; WriteBuffer and the ring's fill [player] or [main, engine lock];
//          everything else [main]. The render lock is held only while indices and flags change.
// Failure  a device that cannot be opened gives false, and nothing plays.
#pragma once
#include <atomic>
#include <memory>

#include "foundation/LMutex.h"
#include "foundation/LStepThread.h"
#include "sound/LCARingBuffer.h"
#include "sound/LSoundBackend.h"
#include "sound/LSoundPlayDevice.h"

inline constexpr unsigned short kPlayerStartPaused = 1;

class LSoundPlayerLLCA final : private LSoundRenderer {
 public:
  enum State : unsigned { Stopped = 0, Playing = 1, Paused = 2 };

  explicit LSoundPlayerLLCA(LSignalObjectRef started) : ownerStarted_(started) {}
  ~LSoundPlayerLLCA() { CloseStream(); }

  bool Init(LSoundSource& source, unsigned short flags);  // opens the device, takes the source and its position
  bool Start();                                           // false: the owner's thread did not report in time
  bool Play();
  void Pause();
  void Stop();  // empties the ring and closes the source

  void SetDevice(const LSoundPlayDevice& device);
  const LSoundPlayDevice& GetDevice() const { return device_; }
  // Same rate and channels: a plain exchange, the ring keeps its content. Otherwise the stream is opened anew.
  void SetSoundSource(LSoundSource& source);
  LSoundSource& GetSoundSource() { return source_; }

  bool IsActive() const { return state_.load() != Stopped; }
  bool IsPlaying() const { return (state_.load() & (Playing | Paused)) == Playing; }
  bool IsNextBufferReady();         // [player] room for a whole block
  void WriteBuffer(int frames);     // [player] at most a thirtieth of a second
  bool PlayRemainingBuffer();       // [player] true while something waits in the ring
  int GetLagToWriteCursor() const;  // frames queued behind what the device is about to take
  int FilledFrames() const { return ring_.FilledFrames(); }
  int CapacityFrames() const { return ring_.CapacityFrames(); }
  int GetPosition() const { return position_.load(); }
  int GetSampleRate() const { return sampleRate_; }
  LLevels GetLevels() const;
  void SetGain9(int gain) { gain9_ = gain; }

  // The three steps of an exchange, under the engine lock: mark what the device is about to take, let the caller seek the
  // source back by GetLagToWriteCursor, drop what lies behind the mark (and write one new block), settle the position.
  void ResyncStart();
  void ResyncBuffer(bool refill);
  void ResyncFinish();

  const LSignalObject& LevelReady() const { return levelReady_; }

 private:
  void RenderData(int* out, int frames, int channels) override;
  void RenderFromRing(int* out, int frames, int channels, LLevel& left, LLevel& right);
  void AccumulateLevels(int frames, bool shortfall, LLevel left, LLevel right);
  void UpdatePosition();
  bool OpenStream();
  void CloseStream();
  void MapChannels();

  mutable LMutex renderLock_{LMutex::Kind::PriorityInheritance};
  LSignalObjectRef ownerStarted_;
  std::unique_ptr<LSoundOutputStream> stream_;
  LSoundSource source_;
  LSoundPlayDevice device_;
  std::atomic<unsigned> state_{Stopped};
  std::atomic<int> position_{0};  // frames, as heard
  int sampleRate_ = 44100;        // Hz
  int channels_ = 2;
  LCARingBuffer ring_;
  std::vector<int> mapBlock_;  // kMaxBlockFrames frames of the source, where channels are mapped
  LSignalObject levelReady_;
  std::atomic<signed char> levelLeft_{LLevel::kMuted}, levelRight_{LLevel::kMuted};
  std::atomic<int> gain9_{kUnityGain9};
  unsigned short startFlags_ = 0;

  int levelFrames_ = 0, levelCallbacks_ = 0;     // since the last report [device]
  double levelSumLeft_ = 0, levelSumRight_ = 0;  // linear

  bool resync_ = false;    // render lock
  int keptFrames_ = 0;     // render lock: still to be taken by the device before the new graph
  int overrunFrames_ = 0;  // render lock: taken beyond them while the graph was rebuilt
};
