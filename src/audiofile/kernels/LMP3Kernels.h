// The loops of the Layer III decoder that cost time. Each stands once, in LMP3KernelText.h, and is compiled for the plain
// machine and for AVX2; all forms give the same samples for every input. The form is chosen once, by what the processor
// has; the environment variable TAVI_KERNELS=scalar forces the plain one.
// Units    lines: spectral lines of a channel in a granule, 576, subband after subband; slots: the 18 moments of a granule,
//          each with one sample of the 32 subbands; positions of bits count from the start of the main data.
// Threads  [any]; no allocation after the first use.
#pragma once
#include <cstdint>
#include <span>

#include "audiofile/mp3/LMP3LookupTables.h"

// The Huffman part of a granule's channel. The bytes have kSlackBytes behind the last bit.
struct LMP3HuffmanRun {
  static constexpr int kSlackBytes = 24;  // two pairs of the longest words, and a whole window
  const unsigned char* bytes;
  int position, end;  // bits
  int regionEnds[3];  // lines, even, ascending, at most 576
  int tables[3];      // of the regions
  int quadTable;
};

struct LMP3HybridRun {
  float* lines;          // 576; changed
  float (*overlap)[32];  // 18 slots that the last granule left, replaced by what this one leaves
  float (*slots)[32];    // 18 slots out
  int subbands;          // in front, that hold a line other than 0 after alias reduction
  int overlapSubbands;   // in front, that the last granule left something in
  int blockType;         // 0..3
  int longSubbands;      // in front, that have a window of type 0 whatever the type; 0, 2 or 4
};

struct LMP3Kernels {
  static constexpr int kHistory = 15, kRowFloats = 64;

  const char* name;
  // Gives the number of lines decoded, 576 at most; those behind it are left as they were.
  int (*huffman)(const LMP3LookupTables& tables, const LMP3HuffmanRun& run, float* lines);
  // lines[i] *= gains[band] in each band [starts[band], starts[band + 1]).
  void (*scaleBands)(float* lines, const short* starts, const float* gains, int bands);
  // Middle and side become left and right.
  void (*midSide)(float* left, float* right, int lines);
  // Butterflies over the borders in front of subbands 1..borders.
  void (*reduceAlias)(const LMP3LookupTables& tables, float* lines, int borders);
  void (*hybrid)(const LMP3LookupTables& tables, const LMP3HybridRun& run);
  // Slots of 32 samples to rows of the synthesis filter.
  void (*matrixMultiply)(const float (*slots)[32], float (*rows)[kRowFloats], int count);
  // The synthesis window over each row and the kHistory before it; 32 frames a row, interleaved if there are two.
  void (*windowSum)(int* out, const float (*left)[kRowFloats], const float (*right)[kRowFloats], int rows);
};

const LMP3Kernels& LMP3BestKernels();
std::span<const LMP3Kernels* const> LMP3UsableKernels();  // the plain form first
