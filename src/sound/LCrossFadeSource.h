// Hides a rewind of a chain: fades from what the chain gave for these frames before to what it gives now.
// Signal   the history keeps the last output by position. After a seek back the index points at what was already
//          produced there; the next block after a request runs linearly from that to the new signal.
// Units    history in samples (frames * channels), 2^21 of them; gains with 24 fraction bits.
// Threads  LCrossFadeSource [main, player lock]; LSRCCrossFade [player], Read allocates nothing.
// Failure  above kMaxChannels channels the signal passes as it is and no history is kept.
#pragma once
#include <atomic>
#include <vector>

#include "sound/LSoundProcess.h"

class LCrossFadeSource {
 public:
  static constexpr int kHistorySamples = 0x200000;
  static constexpr int kMaxChannels = 32;

  LCrossFadeSource() : history_(kHistorySamples) {}
  LCrossFadeSource(const LCrossFadeSource&) = delete;
  LCrossFadeSource& operator=(const LCrossFadeSource&) = delete;

  void RequestFade() { request_.store(true, std::memory_order_relaxed); }  // taken by the next Read
  void Clear();                                                            // another track: history and index to 0
  LSoundSource OpenSource(LSoundSource& input);                            // the source must not outlive this

 private:
  friend class LSRCCrossFade;
  std::atomic<bool> request_{false};
  std::vector<int> history_;
  int index_ = 0;  // samples, 0..kHistorySamples - 1
};

class LSRCCrossFade final : public LSoundProcessBase {
 public:
  LSRCCrossFade(const LSoundSource& input, LCrossFadeSource& owner) : LSoundProcessBase(input), owner_(owner) {}
  void Read(int* out, int frames) override;
  void Seek(int frame) override;

 private:
  void FadeFromHistory(int* out, int frames) const;
  void Remember(const int* samples, int count);
  LCrossFadeSource& owner_;
};
