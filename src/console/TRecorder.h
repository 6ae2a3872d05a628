// Records the mix to a sink and hands it to a stream, without ever making the player wait: the player copies into a
// ring, a thread of its own drains it. What the player reads is ahead of what is heard, so the ring can be rewound by
// the player's lag and a recording ends on what was heard.
// Signal   ring of stereo samples at kDeckRate, converted to the sink's rate and channels, then limited to 16 bits'
//          peak.
// Units    ring in samples (frames * 2); Write, Resync in frames of the mix.
// Threads  Write [player], allocates nothing and takes no lock; Step [worker]; the rest [main], Resync and Stop while
//          the player is held.
// Failure  a full ring drops the newest block; a sink with an error goes on losing samples until somebody asks
//          HasFailed.
#pragma once
#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "foundation/LStepThread.h"
#include "sound/LSoundProcess.h"
#include "sound/LSoundSink.h"

class TStreamSender;

class TRecorder final : public LStepThread {
 public:
  static constexpr int kRingSamples = 0x80000;      // 5.9 s of stereo
  static constexpr int kRetainedSamples = 0x40000;  // kept behind the read index for a resync
  static constexpr int kRingChannels = 2;
  static constexpr int kFadeSamples = 8192;

  TRecorder(int ringSamples = kRingSamples, int retainedSamples = kRetainedSamples);
  ~TRecorder() override;

  void SetRecordingSink(const LSoundSink& sink);               // ignored while recording
  void SetStream(TStreamSender* sender) { sender_ = sender; }  // before the first recording; outlives this
  void SetChannelPick(int left, int right);                    // of three or more channels; -1, -1: the first two

  bool Enable(bool on);
  bool IsEnabled() const { return enabled_; }
  void Resync(int lagFrames);
  void Stop();  // writes what is left and closes the sink

  bool HasFailed() const { return enabled_ && sink_.HasError(); }
  void Write(const int* samples, int frames, unsigned char channels);

 private:
  friend class TRingBufferSource;
  void StepsBegin() override;
  LStepResult Step() override;
  void WriteBlock(int frames);
  void Flush();
  int PickStereo(const int* samples, int frames, unsigned char channels);
  void FadeFromOldTail(int count);
  int Available() const;  // samples between read and write index
  int ReadRing(int* out, int samples);
  int Wrapped(int index) const { return index >= capacity_ ? index - capacity_ : index; }

  std::vector<int> ring_;
  int capacity_;  // samples; one always stays unused
  int retained_;
  std::atomic<int> read_{0}, write_{0};
  LSignalObject written_;
  LMutex lock_;  // sink and ring reads
  LSoundSource source_;
  LSoundSink sink_;
  TStreamSender* sender_ = nullptr;
  std::atomic<bool> enabled_{false};
  std::atomic<bool> fadePending_{false};
  std::vector<int> oldTail_;  // kFadeSamples
  std::vector<int> stereo_;   // [player] the block as it goes into the ring
  std::vector<int> block_;    // [worker] kMaxBlockFrames frames of the sink
  std::atomic<int> pickLeft_{-1}, pickRight_{-1};
  int neededSamples_ = 0;    // ring samples that one block of output may take
  long long framesIn_ = 0;   // taken from the ring, at the mix's rate
  long long framesOut_ = 0;  // written to the sink
};

// Passes everything through and copies what was read to the recorder.
class TRecorderSource final : public LSoundProcessBase {
 public:
  TRecorderSource(const LSoundSource& input, TRecorder& recorder) : LSoundProcessBase(input), recorder_(recorder) {}
  void Read(int* out, int frames) override {
    input_.Read(out, frames);
    recorder_.Write(out, frames, GetChannels());
  }

 private:
  TRecorder& recorder_;
};

// The recorder's ring as a source: endless, what is not there yet is silence.
class TRingBufferSource final : public LSoundSourceBase {
 public:
  explicit TRingBufferSource(TRecorder& recorder);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return 0; }
  int GetEndSample() const override { return kEndless; }

 private:
  TRecorder& recorder_;
};
