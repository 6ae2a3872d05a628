// An onset in one band, and what a track's onsets tell of its tempo.
// Units    frames; bpm 1.0 means unknown; strength 0.5..100, or NaN in a band without energy; progress 0..1.
// Threads  the worker that detects; `progress` may be read by any other.
#pragma once
#include <atomic>
#include <string>
#include <vector>

#include "sound/LSoundSource.h"

struct LBeat {
  int position = 0;     // where the window of the onset begins
  int index = 0;        // the same in steps of the envelope
  double strength = 0;  // of the rise where it was noticed
  int band = 0;
  double rise = 0;  // where it is steepest, in the same measure; 100 is the band's greatest
  int attack = 0;   // step of the envelope whose window ends where the sound begins
};

using LBeatList = std::vector<LBeat>;  // ascending by position once they are combined

class LBPMProgress {
 public:
  LBPMProgress(double value = 0) : value_(value) {}
  LBPMProgress(const LBPMProgress& other) : value_(double(other)) {}
  LBPMProgress& operator=(const LBPMProgress& other) { return *this = double(other); }
  LBPMProgress& operator=(double value) {
    value_.store(value, std::memory_order_relaxed);
    return *this;
  }
  operator double() const { return value_.load(std::memory_order_relaxed); }

 private:
  std::atomic<double> value_;
};

struct LProcessSoundSourceBPMDetectionData {
  double bpm = 1.0;
  int offset = 0;  // the first beat
  LBeatList beats;
  LBPMProgress progress;
  int sampleRate = kDeckRate;  // of the file
  LSoundSource source;
};

// The same of a file.
struct LProcessBPMDetectionData : LProcessSoundSourceBPMDetectionData {
  std::string path;
  void SetFile(const char* file) { path = file; }
};
