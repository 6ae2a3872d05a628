// What the phase vocoder reads out of one spectrum: its peaks, and which bins follow which
// peak.
// Law      peak-locked phases: Laroche and Dolson, Improved phase vocoder time-scale modification of audio, IEEE
//          Transactions on Speech and Audio Processing 7 (3), 1999.
// Units    bins; phases in radians, frequencies in radians a frame.
// Threads  [any]; no allocation.
#pragma once
#include "sound/LdB.h"

// Local maxima of `count` magnitudes, flat tops included, whose right neighbour is above `threshold` relative to the
// largest magnitude of all. Gives their number; `peaks` has room for `count`.
int FindPeaks(const double* magnitudes, int count, int* peaks, LLevel threshold);

// Between two peaks the boundary is the first bin at least as close in frequency to the right one. starts[0] = 1 and
// starts[peakCount] = bins; regionOf gives the region of every bin, bin 0 lies in the first. At least one peak.
void FindRegionStarts(const double* frequencies, int bins, const int* peaks, int peakCount, int* starts, int* regionOf);
