// The last stage of a deck's chain: measures the level of each block as it passes, with its time, so that the meter can
// show what is heard now and not what was read ahead.
// Units    times in ms of the track; levels in dB; a ring of 256 blocks.
// Threads  Read, Seek, AddLevels [player]; the queries [main]. Indices are words: a stale read costs one meter value.
#pragma once
#include <array>
#include <atomic>

#include "sound/LSoundProcess.h"
#include "sound/LdB.h"

class DJDeckSourceBaseInfo {
 public:
  static constexpr int kRecords = 256;

  void SetVolume(LLevel volume) { volume_ = static_cast<signed char>(volume.Get()); }
  void SetScratching(bool on) {
    scratching_ = on;
    lastStart_ = -1;
  }
  bool IsScratching() const { return scratching_; }

  void AddLevels(LSoundTime start, LSoundTime end, LLevel left, LLevel right);  // the deck volume is added here
  void Clear() { read_ = write_.load(); }
  LLevels GetLevelsFromSoundTime(LSoundTime time) const;  // -48..0 dB; 0 if no record holds the time
  LLevels GetScratchLevel();                              // the latest record; leaves the ring empty

 private:
  struct Record {
    std::atomic<LSoundTime> start{0}, end{0};
    std::atomic<signed char> left{0}, right{0};
  };
  std::array<Record, kRecords> records_;
  std::atomic<int> write_{0}, read_{0};
  std::atomic<signed char> volume_{0};
  std::atomic<bool> scratching_{false};
  std::atomic<LSoundTime> lastStart_{-1};
};

class DJDeckSourceBase final : public LSoundProcessBase {
 public:
  DJDeckSourceBase(const LSoundSource& input, DJDeckSourceBaseInfo* info);  // info may be null, else outlives this
  void Read(int* out, int frames) override;
  void Seek(int frame) override;

 private:
  DJDeckSourceBaseInfo* info_;
};
