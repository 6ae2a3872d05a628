// Finds the tempo and the first beat of a track.
// Law      the onsets of eleven bands (LBeatEnvelopes, FindBeatOnsets), then candidates for the tempo from the spectrum
//          of all onsets (FindBeatCandidates), then the best of a grid of tempos and phases (LBeatGrid). 70 to 180 BPM.
// Units    BPM, 1.0 for unknown; the offset in frames.
// Threads  a worker with a source of its own.
// Failure  lprFailed and BPM 1.0 for a file that does not open; lprStopped leaves what is known so far. A clip below two
//          seconds without onsets is taken for one beat.
#pragma once
#include "foundation/LProcessInterface.h"
#include "tempo/LBeat.h"
#include "tempo/LBeatEnvelope.h"

class LBeatDetection {
 public:
  LBeatDetection(LProcessSoundSourceBPMDetectionData& data, const LSoundSource& mono);

  // Each is true if it ran to its end.
  bool ReadBands(LProcessInterface& process);
  bool ProcessBand(LProcessInterface& process, int band);
  bool CombineBeats(LProcessInterface& process);

 private:
  void SetProgress(LProcessInterface& process, double progress);

  LBeatList& beats_;
  double& bpm_;
  int& offset_;
  LBPMProgress& progress_;
  const LBeatGeometry geometry_;
  const LSoundSource mono_;
  LBeatEnvelopes envelopes_;
};

LProcessResult Process(LProcessInterface& process, LProcessBPMDetectionData& data);
LProcessResult Process(LProcessInterface& process, LProcessSoundSourceBPMDetectionData& data);
