// Finds the onsets of one band in its envelope.
// Law      the rise over a lag, E[i] - E[i - lag]; where it reaches 0.7 of its standard deviation, the steepest place
//          nearby is the onset. Strengths are scaled so that the band's steepest rise is 100.
// Units    lag in steps of the envelope, hop in frames.
// Threads  [any]
// Failure  in a band without energy strengths are NaN; such onsets stay.
#pragma once
#include <span>

#include "tempo/LBeat.h"

LBeatList FindBeatOnsets(std::span<const double> envelope, int lag, int hop, int band);
