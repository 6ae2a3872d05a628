// Decodes frames of Layer III, one after the other.
// Signal   frame -> main data (partly of frames before) -> scale factors, Huffman -> requantisation -> stereo ->
//          alias reduction, inverse transform, overlap -> synthesis filter -> samples on the 20-bit scale, unclipped
// Law      ISO/IEC 11172-3 and 13818-3; exact to single precision
// Units    bytes of a frame with its header; frames of sound: 1152 of MPEG-1, 576 of the lower rates
// Threads  one thread at a time; no allocation after construction
// Failure  a frame that contradicts itself, or whose main data is not there, fades into silence and counts as any other
#pragma once
#include "audiofile/kernels/LMP3Kernels.h"
#include "audiofile/mp3/LMP3Header.h"
#include "audiofile/mp3/LMP3PolyphaseSynth.h"
#include "audiofile/mp3/LMP3Spectrum.h"

class LMP3FrameDecoder {
 public:
  explicit LMP3FrameDecoder(const LMP3Kernels& kernels) : kernels_(kernels) {}

  void SetChannels(int channels) { channels_ = channels; }  // of what Decode writes, 1 or 2

  void Clear();  // forgets all frames before
  // Takes the main data alone, for the frames that follow.
  void Collect(const LMP3Header& header, const unsigned char* frame);
  // Writes header.Samples() frames of sound, with the channels set whatever the frame has.
  void Decode(const LMP3Header& header, const unsigned char* frame, int* out);

 private:
  static constexpr int kReservoirBytes = 511;  // that a frame can reach back
  static constexpr int kMainSlack = LMP3ScaleFactors::kMaxBits / 8 + LMP3HuffmanRun::kSlackBytes;

  struct Channel {
    alignas(32) float overlap[LMP3BandTables::kSubbandLines][32] = {};
    alignas(32) float slots[LMP3PolyphaseSynth::kMaxSlots][32] = {};
    LMP3PolyphaseSynth synth;
    LMP3ScaleFactors factors;
    int overlapSubbands = 0;  // that the last granule left something in
  };

  void DecodeGranule(const LMP3Header& header, int granule, int coded, int& position);
  void DecodeSpectrum(const LMP3Header& header, int granule, int channel, int start, int end);
  void Filter(const LMP3Granule& granule, int table, LMP3Spectrum& spectrum, Channel& channel, int slot);
  void Synthesise(int slots, int coded, int* out);

  const LMP3Kernels& kernels_;
  const LMP3LookupTables& tables_ = GetMp3LookUpTable();
  int channels_ = 2;
  LMP3SideInfo side_{};
  unsigned char main_[kReservoirBytes + LMP3Header::kMaxFrameBytes + kMainSlack] = {};
  int mainBytes_ = 0;
  LMP3Spectrum spectra_[2];
  Channel channel_[2];
};
