// The main player and, with a second device, the headphone player, as one: both run on one mix, are locked in one order
// and rewound in one operation.
// Units    frames
// Threads  [main]
// Failure  Start returns false if the main device does not open; without the headphone device the main one plays alone.
#pragma once
#include <array>

#include "sound/LSoundPlayer.h"
#include "sound/LSplitter.h"

class TPlayers {
 public:
  LSoundPlayer& Main() { return main_; }
  const LSoundPlayer& Main() const { return main_; }
  LSoundPlayer& Headphone() { return headphone_; }

  void SetDevices(const LSoundPlayDevice& main, const LSoundPlayDevice& headphone, bool second);
  bool UsesSecond() const { return second_; }
  bool IsRunning() const { return main_.IsActive() || headphone_.IsActive(); }

  // Divides the mix of four channels into two halves by the device channels of each (-1: none).
  void OpenSplitter(LSoundSource& mix, const std::array<int, 4>& map);
  LSoundSource& MainHalf() { return mainHalf_; }
  LSoundSource& HeadphoneHalf() { return headphoneHalf_; }

  bool Start(LSoundSource& main);
  bool Start(LSoundSource& main, LSoundSource& headphone);
  // Other sources for what runs, which go on at the places the players had before the new ones were opened. Under the
  // lock.
  struct Places {
    int main = 0, headphone = 0;
  };
  Places GetPlaces();
  void Replace(LSoundSource& main, LSoundSource* headphone, const Places& places);
  void StopPlaying();

  // Frames that were read but are not heard yet, in front of the device; with addSplitter those in the main half's
  // ring.
  int GetLag(bool addSplitter) const;
  int GetQueuedFrames() const;  // all that was read and has not left the rings

  // Replaces what is queued behind the device's reach by the graph as it is now, from the audible position on. Under
  // the lock. With refill one new block is written at once.
  void Resync(bool refill);

 private:
  friend class TPlayersLock;
  LSoundPlayer main_, headphone_;
  LSplitter splitter_;
  LSoundSource mainHalf_, headphoneHalf_;
  bool second_ = false;
};

// Holds the engine locks of the players that run, main first.
class TPlayersLock {
 public:
  explicit TPlayersLock(TPlayers& players);
  ~TPlayersLock() { Release(); }
  TPlayersLock(const TPlayersLock&) = delete;
  TPlayersLock& operator=(const TPlayersLock&) = delete;
  void Release();

 private:
  TPlayers& players_;
  bool main_ = false, headphone_ = false;  // locked by this object, and not by an outer one
};
