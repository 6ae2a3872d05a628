// Files without a header: what they hold has to be told, and the choices that a dialog offers for that.
// Units    rates in Hz
// Threads  [main, worker] to open; then as sources.
// Failure  an error source with the reason; an unknown codec is lseNoSource.
#pragma once
#include <string>

#include "audiofile/LRawFileDataSoundSource.h"

struct LRawSettings {
  int rate = 44100;
  int channels = 1;
  int codec = 3;  // a number of kRawCodecs
};

struct LRawCodec {
  int number;
  const char* name;  // as shown
  LSoundSource (*open)(LPCMData&& data);
};
extern const LRawCodec kRawCodecs[9];  // in the order of the list

inline constexpr int kStandardSampleRates[] = {8000,  11025, 12000, 16000, 22050, 24000,
                                               32000, 44100, 48000, 88200, 96000, 192000};
inline constexpr const char* kStandardChannels[] = {"Mono", "Stereo"};

namespace LRawFile {

LSoundSource OpenSource(const std::string& path, const LRawSettings& settings);
// Mono, whatever the channels.
LSoundSource OpenSourceADPCM(const std::string& path, int rate, int channels);

}  // namespace LRawFile
