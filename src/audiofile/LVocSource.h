// The sound of a Creative Voice file: blocks of samples and of silence one after the other.
// Units    frames; offsets and lengths in bytes
// Threads  one thread at a time; Read allocates nothing.
// Failure  what the file no longer holds is silence.
#pragma once
#include <array>
#include <vector>

#include "audiofile/LAdpcmRun.h"
#include "audiofile/LDecodedSource.h"

// One of the three ADPCM forms.
class LCreativeAdpcm {
 public:
  struct State {
    signed char value[2] = {};      // by channel; 8 bits
    unsigned char width[2] = {};    // 0..3
    unsigned char nextChannel = 0;  // codes of the channels take turns
  };
  static constexpr int kSamplesPerByteMax = 4;

  struct Form {
    int samplesPerByte;
    unsigned char bits[kSamplesPerByteMax], low[kSamplesPerByteMax];  // where each code lies in the byte
    int shift;
  };

  LCreativeAdpcm(const Form& form, int channels) : form_(&form), channels_(channels) {}
  int SamplesPerByte() const { return form_->samplesPerByte; }
  void Decode(State& state, unsigned char byte, int* out) const;
  void Skip(State& state, const unsigned char* bytes, int count) const;

 private:
  const Form* form_;  // of a table
  int channels_;
};

// How samples lie in the file.
struct LVocCompression {
  int number;
  int perByte, lost;                                                // samples of n bytes: n * perByte - lost ...
  int bytesPerSample;                                               // ... or n / bytesPerSample
  void (*convert)(int* out, const unsigned char* in, int samples);  // null: ADPCM
  const LCreativeAdpcm::Form* adpcm;                                // null: plain

  std::int64_t SamplesOf(std::int64_t bytes) const { return bytes * perByte / bytesPerSample - lost; }
};
const LVocCompression* FindVocCompression(int number);  // null: none that can be decoded

struct LVocBlock {
  std::int64_t offset;  // of the samples
  std::int64_t bytes;
  std::int64_t frames;  // of one round
  int repeats;
  bool silent;

  std::int64_t AllFrames() const { return std::min<std::int64_t>(frames * repeats, kEndless); }
};

struct LVocBlocks {
  static constexpr int kMax = 49;
  std::array<LVocBlock, kMax> blocks;
  int count = 0;

  bool IsFull() const { return count == kMax; }
  void Add(const LVocBlock& block) {
    if (!IsFull()) blocks[std::size_t(count++)] = block;
  }
  std::int64_t Frames() const;
};

class LVocSource final : public LDecodedSource {
 public:
  LVocSource(LPCMData&& data, const LVocBlocks& blocks, const LVocCompression& compression);

 private:
  void Decode(int* out, int frame, int frames) override;
  void DecodePlain(const LVocBlock& block, int* out, std::int64_t sample, int samples);
  void DecodeAdpcm(int index, int* out, std::int64_t sample, int samples);
  LAdpcmRun<LCreativeAdpcm> MakeRun(const LVocBlock& block);

  LFileHandle file_;
  LVocBlocks blocks_;
  const LVocCompression& compression_;           // of the table
  std::vector<LAdpcmRun<LCreativeAdpcm>> runs_;  // one a block; none for plain samples
  std::vector<LCreativeAdpcm::State> starts_;    // the plain samples that each begins with
};
