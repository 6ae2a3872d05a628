// The summing point of the graph: a list of inputs, each with a routing and a level from every input channel to every
// output channel, and one open source that reads and sums them.
// Signal   out[d] += MulGain24(in[c], amplitude of the level at [c][d]) for each routing c -> d. The sum wraps in 32
//          bits; nothing limits it here.
// Units    levels in dB, positions and ends in frames of the mixer's rate; ids are the caller's.
// Threads  edits [main, player lock], among themselves under the mixer's mutex; levels [main] at any time, as atomic
//          bytes; the open source [player], takes no lock, Read allocates nothing.
// Failure  an unknown id does nothing; a routing beyond 256 channels or beyond the output is silent; an input with an
//          error reads silence.
#pragma once
#include <array>
#include <atomic>
#include <list>
#include <vector>

#include "foundation/LMutex.h"
#include "sound/LSoundSource.h"
#include "sound/LdB.h"
#include "sound/kernels/LSoundKernels.h"

// One input. A channel's routings are slots; those behind a hole are dead until the hole is filled again.
class LAudioMixerSource {
 public:
  static constexpr int kChannels = 256, kSlots = 256;
  static constexpr short kFree = -1;

  LAudioMixerSource(int id, const LSoundSource& source);

  bool IsStreaming() const { return source.IsStreaming(); }
  void WaitForStreamingData(int ms) const { source.WaitForStreamingData(ms); }

  void AddDesignation(int inputChannel, int outputChannel);
  void RemoveDesignation(int inputChannel, int outputChannel);
  void SetVolume(int inputChannel, int outputChannel, LLevel level);
  int Gain24(int inputChannel, int outputChannel) const;
  int LiveSlots(int inputChannel) const { return liveSlots_[std::size_t(inputChannel)]; }  // up to the first hole
  int OutputOfSlot(int inputChannel, int slot) const { return slots_[At(inputChannel, slot)]; }

  int id;
  LSoundSource source;

 private:
  static std::size_t At(int row, int column) { return std::size_t(row) * kChannels + std::size_t(column); }
  void CountLiveSlots(int inputChannel);

  std::vector<std::atomic<signed char>> levels_;  // dB, [input channel][output channel]
  std::vector<short> slots_;                      // output channel or kFree, [input channel][slot]
  std::array<short, kChannels> liveSlots_{};
};

class LAudioMixer {
 public:
  // endRule  true: the mix ends with the first input to end; false: with the last.
  explicit LAudioMixer(bool endRule) : endRule_(endRule) {}
  virtual ~LAudioMixer() = default;
  LAudioMixer(const LAudioMixer&) = delete;
  LAudioMixer& operator=(const LAudioMixer&) = delete;

  void AddSource(LSoundSource& source, int id);     // an id already present keeps its routing and levels
  void ChangeSource(int id, LSoundSource& source);  // position untouched
  void UpdateSource(int id, LSoundSource& source);  // the new source is sought to the old one's position
  void UpdateSourceID(int id, int newId);
  void DeleteSource(int id);

  void AddChannelDesignation(int id, int inputChannel, int outputChannel);
  void RemoveChannelDesignation(int id, int inputChannel, int outputChannel);
  void SetChannelDesignationVolume(int id, int inputChannel, int outputChannel, LdB<signed char> level);

  int GetPositionSample(int id);  // of the input; 0 for an unknown id
  void SetOutputChannels(unsigned char channels) { channels_ = channels; }
  unsigned char GetOutputChannels() const { return channels_; }
  int GetSampleRate() const { return sampleRate_; }

  // Inputs of another rate are converted now; one added later is not. The source must not outlive the mixer.
  LSoundSource OpenSource();

 private:
  friend class LAudioMixerSourceBase;
  LAudioMixerSource* Find(int id);

  std::list<LAudioMixerSource> sources_;  // newest first
  LMutex mutex_;                          // guards edits of the list
  bool endRule_;
  unsigned char channels_ = 2;
  int sampleRate_ = kDeckRate;
};

class LAudioMixerSourceBase final : public LSoundSourceBase {
 public:
  static constexpr int kWorkSamples = 16384;  // frames * channels of one input, at most

  explicit LAudioMixerSourceBase(LAudioMixer& mixer);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override;  // the largest of the inputs
  int GetEndSample() const override;
  void Seek(int frame) override;  // keeps the offsets between the inputs
  bool ControlMessage(int code, long* value) override;
  bool IsStreaming() const override;
  void WaitForStreamingData(int ms) override;

 private:
  void Mix(LAudioMixerSource& input, int* out, int frames);
  void MixRouted(const LAudioMixerSource& input, int* out, int frames);
  int EndOfFirst() const;
  int EndOfLast() const;

  LAudioMixer& mixer_;
  std::vector<int> work_;
};
