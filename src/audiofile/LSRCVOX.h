// Dialogic (OKI) ADPCM without a header: four bits a sample, the first one in the upper half of its byte.
// Law      the published algorithm: 49 step widths of floor(16 * 1.1^n), a difference of (2 m + 1) / 8 steps for the
//          magnitude m, 12-bit samples that are held at their limits.
// Units    frames, mono; a 12-bit sample s is s * 256 on the scale of the sound path
// Threads  one thread at a time. A first jump far ahead decodes what lies between; later ones are short.
// Failure  none of its own: every byte is sound.
#pragma once
#include "audiofile/LAdpcmRun.h"
#include "audiofile/LDecodedSource.h"

class LDialogicAdpcm {
 public:
  struct State {
    short value = 0;  // 12 bits
    unsigned char step = 0;
  };
  static constexpr int kSamplesPerByteMax = 2;
  static int SamplesPerByte() { return 2; }
  static void Decode(State& state, unsigned char byte, int* out) {
    out[0] = DecodeOne(state, byte >> 4);
    out[1] = DecodeOne(state, byte & 15);
  }
  static void Skip(State& state, const unsigned char* bytes, int count);

 private:
  struct Tables;
  static const Tables kTables;

  static int DecodeOne(State& state, int code);
};

class LSRCVOX final : public LDecodedSource {
 public:
  explicit LSRCVOX(LPCMData&& data);

 private:
  void Decode(int* out, int frame, int frames) override { run_.Read(file_, frame, out, frames); }

  LFileHandle file_;
  LAdpcmRun<LDialogicAdpcm> run_;
};
