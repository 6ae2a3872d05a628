// The ring between the refill thread and the device: samples of the player's source, gained, measured and converted as
// they leave.
// Units    frames, unless a name says samples (frames * channels). Device samples are signed 32 bits, full scale at
//          +-2^31; what lies beyond is limited hard.
// Threads  Write [player]; Read [device]; the indices have one writer each. Rewind and the rest [main, render lock].
// Failure  none: callers check space and fill.
#pragma once
#include <atomic>
#include <vector>

#include "foundation/LSignalObject.h"
#include "sound/LSoundSource.h"
#include "sound/LdB.h"

class LCARingBuffer {
 public:
  static constexpr int kCapacitySamples = 0x40000;  // 1 MiB

  LCARingBuffer() : ring_(kCapacitySamples) { SetChannels(2); }

  void SetChannels(int channels);  // empties the ring; allocates
  void Clear();                    // the device is stopped, or the render lock held

  int Channels() const { return channels_; }
  int CapacityFrames() const { return capacityFrames_; }
  int FilledFrames() const;
  int FreeFrames() const;  // one sample always stays unused

  // Reads from the source into the ring, at most to its end, in blocks of kMaxBlockFrames. The caller checks the space.
  void Write(LSoundSource& source, int frames);

  // Takes frames out, gains them (9 fraction bits), measures the first two channels and converts to device samples of
  // Channels() channels. With one channel `right` is left alone.
  void Read(int* out, int frames, int gain9, LLevel& left, LLevel& right);

  void KeepFrames(int frames);  // drops everything behind the first `frames` that wait

  void SetLeadFrames(int frames) { leadFrames_ = frames; }
  int LeadFrames() const { return leadFrames_; }  // what the device is about to take; 0 until it is known

  LSignalObject spaceFreed, dataReady;

 private:
  int FilledSamples() const;
  void CopyIn(const int* samples, int count);
  void CopyOut(int* samples, int count);

  std::vector<int> ring_;
  std::atomic<int> read_{0}, write_{0};  // samples
  std::vector<int> inBlock_, outBlock_;  // kMaxBlockFrames frames each
  int channels_ = 0;
  int capacityFrames_ = 0;
  int capacitySamples_ = 0;  // capacityFrames_ * channels_
  std::atomic<int> leadFrames_{0};
};
