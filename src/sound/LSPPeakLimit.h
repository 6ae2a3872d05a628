// Peak limiters: the form with look-ahead, whose gain has come down before a peak arrives, and the form without a
// buffer, which works on the block it is asked for.
// Law      target gain of a block = limit / peak where the peak exceeds the limit, else unity (LimitTargetGain24).
// Signal   look-ahead: blocks current, next and after-next are held; the gain moves in equal steps over the current
//          block toward the least of the gains ahead and the mean of four blocks.
//          no buffer: down within kAttackFrames, up by an eighth of the way to unity a block; the output is held within
//          the limit, whatever the gain.
// Units    limit and peaks as samples; gains with 24 fraction bits; blocks in frames.
// Threads  the recipes [main]; the sources [player], Read allocates nothing.
// Failure  an input with an error gives lseInputError.
#pragma once
#include <vector>

#include "sound/LSoundProcess.h"
#include "sound/LdB.h"

int LimitTargetGain24(int peak, int limit);

class LSPPeakLimit final : public LSoundProcess {
 public:
  explicit LSPPeakLimit(int limit) : limit_(limit) {}
  LSoundSource OpenSource(LSoundSource& input) override;

 private:
  int limit_;
};

class LSPPeakLimitNoBuffer final : public LSoundProcess {
 public:
  explicit LSPPeakLimitNoBuffer(int limit) : limit_(limit) {}
  LSoundSource OpenSource(LSoundSource& input) override;

 private:
  int limit_;
};

class LSRCPeakLimit final : public LSoundProcessBase {
 public:
  static constexpr int kBlockFrames = 1024;
  static constexpr int kLookAheadFrames = 2 * kBlockFrames;

  LSRCPeakLimit(const LSoundSource& input, int limit);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return input_.GetPositionSample() - HeldFrames(); }
  // Of a streaming input: what whole blocks with their look-ahead allow, so that no read runs into its open end.
  int GetEndSample() const override;
  void Seek(int frame) override;
  bool ControlMessage(int code, long* value) override;

 private:
  static constexpr int kGains = 4, kBuffers = 3;
  enum Age { Previous, Current, Next, AfterNext };

  void Fill();
  void Rotate();
  int ReadBlock(std::vector<int>& block);  // gives its target gain
  void Play(int* out, int frames);
  int HeldFrames() const;

  int limit_;
  std::vector<int> blocks_[kBuffers];  // Current, Next, AfterNext
  int gains_[kGains] = {kUnityGain24, kUnityGain24, kUnityGain24, kUnityGain24};
  bool filled_ = false;  // false until the first Read after construction or Seek
  int played_ = 0;       // frames of the current block
  int gain_ = kUnityGain24, step_ = 0;
};

class LSRCPeakLimitNoBuffer final : public LSoundProcessBase {
 public:
  static constexpr int kAttackFrames = 64;

  LSRCPeakLimitNoBuffer(const LSoundSource& input, int limit);
  void Read(int* out, int frames) override;  // the gain goes on over a seek: a rewind plays the same passage again
  bool ControlMessage(int code, long* value) override;

 private:
  void Limit(int* samples, int frames);

  int limit_;
  int gain_ = kUnityGain24;
};
