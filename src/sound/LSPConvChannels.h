// Another number of channels. Stereo to mono is the mean, mono to stereo a copy; any other number copies channel
// c modulo the input's, so that fewer channels drop some and more repeat them.
// Units    frames
// Threads  LSPConvChannels [main, worker]; its sources [player], Read allocates nothing.
// Failure  LSRCConvChannelsN to 0 channels gives one channel and lseDamaged.
#pragma once
#include <vector>

#include "sound/LSoundProcess.h"

class LSPConvChannels final : public LSoundProcess {
 public:
  explicit LSPConvChannels(unsigned char channels) : channels_(channels) {}
  LSoundSource OpenSource(LSoundSource& input) override;  // the input itself if nothing is to be converted

 private:
  unsigned char channels_;
};

class LSRCConvChannels : public LSoundProcessBase {
 public:
  LSRCConvChannels(const LSoundSource& input, unsigned char channels);
  void Read(int* out, int frames) final;

 protected:
  virtual void Convert(const int* in, int* out, int frames) = 0;

 private:
  std::vector<int> work_;  // kMaxBlockFrames frames of the input
};

class LSRCConvStereoMono final : public LSRCConvChannels {
 public:
  explicit LSRCConvStereoMono(const LSoundSource& input) : LSRCConvChannels(input, 1) {}

 private:
  void Convert(const int* in, int* out, int frames) override;
};

class LSRCConvMonoStereo final : public LSRCConvChannels {
 public:
  explicit LSRCConvMonoStereo(const LSoundSource& input) : LSRCConvChannels(input, 2) {}

 private:
  void Convert(const int* in, int* out, int frames) override;
};

class LSRCConvChannelsN final : public LSRCConvChannels {
 public:
  using LSRCConvChannels::LSRCConvChannels;

 private:
  void Convert(const int* in, int* out, int frames) override;
};
