// Any frequency response, drawn over a grid, as a filter of linear phase.
// Law      the grid is the spectrum of the filter; its transform, windowed (Hann), gives 4094 coefficients around their
//          centre. Output and input are aligned: the filter reads kDelayFrames ahead of its position, and after a seek
//          as many frames before it. The window tells no frequencies apart that are closer than four bins: at 44100 Hz
//          a curve bends over 43 Hz at least.
// Units    magnitudes in percent, 100 passes; bin k of 2048 stands for the frequency k * rate / 4096.
// Threads  LSPEq [main]; LSRCEq [player], Read allocates nothing; the first one after a seek filters up to 4094 frames more.
// Failure  none.
#pragma once
#include <array>
#include <vector>

#include "effects/LFiltFFT.h"
#include "sound/LSoundProcess.h"

class LSPEq final : public LSoundProcess {
 public:
  static constexpr int kBins = 2048;
  static constexpr double kPass = 100;
  using Grid = std::array<double, kBins>;

  LSPEq() { grid_.fill(kPass); }
  LSoundSource OpenSource(LSoundSource& input) override;
  void SetMagnitude(int bin, double percent) { grid_[std::size_t(bin)] = percent; }
  static double BinHz(int bin, int sampleRate) { return double(bin) * sampleRate / (2 * kBins); }

 private:
  Grid grid_;
};

class LSRCEq final : public LSoundProcessBase {
 public:
  static constexpr int kBlockFrames = 128;
  static constexpr int kCoefficients = 4094, kDelayFrames = 2047;

  LSRCEq(const LSoundSource& input, const LSPEq::Grid& grid);
  void Read(int* out, int frames) override;
  int GetPositionSample() const override;
  int GetEndSample() const override;  // of a streaming input: so far that no read runs into its open end
  void Seek(int frame) override;
  bool ControlMessage(int code, long* value) override;

 private:
  int HeldFrames() const { return filled_ ? kDelayFrames + kBlockFrames - played_ : 0; }
  void Fill();  // up to the frame at the position
  void NextBlock();

  std::vector<LFiltFFT> filters_;  // one a channel
  std::vector<int> block_;         // interleaved, filtered
  int played_ = 0;                 // frames of the block
  bool filled_ = false;
};
