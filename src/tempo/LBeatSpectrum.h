// Which tempos a track's onsets may have: the peaks in the spectrum of their train.
// Law      the strengths of all bands but the full one in steps of the envelope, smoothed by a window of 31 points; the
//          magnitudes of whole transforms side by side, added up. Of the peaks in bins 2..199 the twenty highest count.
// Units    BPM; length in steps.
// Threads  [any]
// Failure  too short a track has no tempo. Onsets without a strength take no part.
#pragma once
#include <vector>

#include "tempo/LBeat.h"
#include "tempo/LBeatEnvelope.h"

inline constexpr double kLeastBPM = 70, kGreatestBPM = 180;

std::vector<double> SmoothedBeatTrain(const LBeatList& beats, int length);
std::vector<double> FindBeatCandidates(const LBeatList& beats, const LBeatGeometry& geometry);  // highest peak first
