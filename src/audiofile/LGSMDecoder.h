// The decoder of GSM 06.10 (ETSI EN 300 961), to the bit: a value, so that a source can keep its states and return to
// them, which a library behind a handle does not allow.
// Signal   a frame of 160 samples at 8000 Hz: eight log area ratios, and four subframes of a long term prediction and a
//          coarse residual; two lattices of filters bring the sound back.
// Units    16-bit arithmetic with saturation, fractions of 15 bits; out: a 16-bit sample s is s * 16
// Threads  one thread at a time; no allocation.
// Failure  a bare frame without its mark is silence and changes nothing.
#pragma once

// How frames lie in a file. Bare: each in 33 bytes, with a mark of four bits, highest bits first. In a wave file: two in
// 65 bytes without marks, lowest bits first.
struct LGSMPacking {
  int blockBytes, blockFrames;
  bool wave;
};
inline constexpr LGSMPacking kGsmBare{33, 160, false}, kGsmWave{65, 320, true};
inline constexpr unsigned kGsmMark = 0xD;

class LGSMDecoder {
 public:
  void Decode(const LGSMPacking& packing, const unsigned char* block, int* out);  // a whole block

 private:
  static constexpr int kMinLag = 40, kMaxLag = 120, kSubframe = 40, kOrder = 8;

  template <class Bits>
  void DecodeFrame(Bits& bits, int* out);
  template <class Bits>
  void DecodeResidual(Bits& bits, int* residual);
  void Synthesize(const int* residual, const int* ratios, int count, int* out);

  short past_[kMaxLag] = {};        // of the long term residual
  short ratios_[kOrder] = {};       // of the frame before
  short lattice_[kOrder + 1] = {};  // of the short term filter
  short emphasis_ = 0;              // what the last filter keeps
  short lag_ = kMinLag;             // the last good one
};
