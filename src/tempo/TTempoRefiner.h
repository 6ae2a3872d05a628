// Makes a detected tempo exact, by the phase of a track's onsets over its whole length.
// Law      onsets are impulses at their attacks, weighted by their rises; |Z(f)| is their spectrum at f beats a second. The
//          evidence for a tempo is |Z(f)| + |Z(2 f)| / 2 + |Z(4 f)| / 4 - |Z(f / 2)|. The detected one holds within 2.4 BPM
//          unless another in 70..180 has clearly more, which as a rule is a simple ratio of it. From there the sum of the
//          magnitudes rises to its top, in steps down to 0.001 BPM; the phase follows from the low bands' onsets.
// Units    BPM; the offset in frames, 0 up to a beat.
// Threads  [any]
// Failure  without a tempo, or with too few onsets to tell, everything stays as it was.
#pragma once
#include <array>
#include <complex>
#include <vector>

#include "tempo/LBeat.h"

class TTempoRefiner {
 public:
  explicit TTempoRefiner(const LProcessSoundSourceBPMDetectionData& data);

  void Refine();
  double Bpm() const { return bpm_; }
  int Offset() const { return offset_; }

 private:
  struct Onset {
    double time;          // s, of its attack
    double weight;        // 0..100
    double phaseWeight;   // low bands tell the beat from what lies between
    double attackWeight;  // the highest band and the full one are not late
  };
  static constexpr int kHarmonics = 3;  // the beat, its half and its quarter
  using Harmonics = std::array<std::complex<double>, kHarmonics>;

  void MakeSpectrum();
  double Magnitude(double hz) const;  // 0 at half a bin and below
  double Evidence(double bpm) const;
  double BestBetween(double low, double high) const;
  double ChooseLevel() const;
  Harmonics Sums(double bpm, double Onset::*weight) const;
  double Clarity(double bpm) const;
  double Sharpened(double bpm) const;
  double Phase(double bpm) const;
  double AtAttacks(double bpm, double phase) const;

  double bpm_;
  int offset_;
  int rate_;
  std::vector<Onset> onsets_;
  std::vector<double> spectrum_;
  double binsPerHz_ = 0;
};

void RefineTempo(LProcessSoundSourceBPMDetectionData& data);
