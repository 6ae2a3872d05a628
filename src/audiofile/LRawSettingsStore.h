// What is assumed of files without a header: a rate, channels and a codec in the settings, one set for bare samples and
// one for Dialogic files.
// Threads  [any]
#pragma once
#include "audiofile/LRawFile.h"

struct LRawSection {
  const char* name;  // of the settings section
  LRawSettings fallback;
};
inline constexpr LRawSection kRawAudioSection{"RawAudio", {44100, 1, 3}};
inline constexpr LRawSection kVoxAudioSection{"VoxAudio", {8000, 1, 0}};

LRawSettings GetRawSettings(const LRawSection& section);
void SetRawSettings(const LRawSection& section, const LRawSettings& settings);

// Asks the user for the settings of a section and stores them; false: cancelled.
class LRawSettingsAsker {
 public:
  virtual ~LRawSettingsAsker() = default;
  virtual bool AskRawSettings(const LRawSection& section) = 0;
};
