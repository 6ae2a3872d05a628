// Plays an MPEG Layer III file, from any place of it.
// Signal   frames of the file -> decoder -> samples; 1.0 of the decoder is full scale of the sound path, nothing is clipped
// Law      the decoder lags by 529 samples, with `gapless` the encoder's delay comes to it: position 0 is the first sample
//          that went into the encoder. Damaged or missing frames are silent and keep their time.
// Units    frames of sound at the file's own rate; before position 0 and from the end on there is silence
// Threads  one thread at a time; Read allocates nothing and reads the file in large blocks
// Failure  lseDamaged without a stream in the file, lseCannotOpen without a file; a file that ends early ends the sound,
//          and the end moves there
#pragma once
#include "audiofile/mp3/LMP3FrameDecoder.h"
#include "audiofile/mp3/LMP3FrameWalker.h"
#include "sound/LSoundSource.h"

class LMP3Source final : public LSoundSourceBase {
 public:
  static constexpr int kDecoderDelay = 529;
  // Frames in front of a target whose main data may be needed: the reservoir at the lowest bit rates.
  static constexpr int kPreRollFrames = 23;
  // Of them, the last are decoded: one for the overlap, one more for the history of the synthesis filter.
  static constexpr int kWarmFrames = 2;

  LMP3Source(const std::string& path, bool fullScan, bool gapless, const LMP3Kernels& kernels = LMP3BestKernels());

  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override;
  void Seek(int frame) override;

 private:
  int FrameAt(int position) const { return int((std::int64_t{position} + lead_) / frameSamples_); }
  int ReadSound(int* out, int frames);
  bool MakeFrame(int number);
  bool TakeFrame(int number);

  LMP3ReadFile file_;
  LMP3InitialHeader initial_;
  LMP3FrameWalker walker_{file_, initial_};
  LMP3FrameDecoder decoder_;
  int frameSamples_ = LMP3Header::kMaxSamples;
  int lead_ = kDecoderDelay;  // decoder samples in front of position 0
  int trimmed_ = 0;           // that the encoder added in front and behind
  int position_ = 0;
  int made_ = -1;        // number of the frame in samples_, or whose main data was taken last
  bool isMade_ = false;  // samples_ holds it
  LMP3Frame pending_;    // found, not yet taken
  bool hasPending_ = false;
  int samples_[2 * LMP3Header::kMaxSamples] = {};
};
