// The spectral lines of a granule between Huffman decoding and the filter bank: requantisation, the order of short
// blocks, and stereo.
// Law      ISO/IEC 11172-3, 2.4.3.4; 13818-3, 2.4.3.2 for intensity at the lower rates
// Units    lines of a channel, 576; `count` of them from the front may differ from 0, all others are 0
// Threads  [any]; no allocation
#pragma once
#include "audiofile/kernels/LMP3Kernels.h"
#include "audiofile/mp3/LMP3ScaleFactors.h"

struct LMP3Spectrum {
  alignas(32) float lines[LMP3BandTables::kLines];
  int count;

  void Clear();
  // Huffman's values, the power already taken, to lines in the order of their frequency; short blocks have the three
  // windows of a frequency side by side then.
  void Requantise(const LMP3Kernels& kernels, const LMP3Granule& granule, const LMP3ScaleFactors& factors, int table);
};

// Makes left and right of what a frame in joint stereo codes. Both granules have the same kind of block.
void LMP3JointStereo(const LMP3Kernels& kernels, const LMP3Header& header, const LMP3Granule& right,
                     const LMP3ScaleFactors& rightFactors, LMP3Spectrum (&spectra)[2]);
