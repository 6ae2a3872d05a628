// The header of a wave file, read and written.
// Units    bytes; rates in Hz
// Threads  [any]
// Failure  ReadWaveHeader gives the error that the source is to have.
#pragma once
#include <string>

#include "audiofile/LHeaderBytes.h"
#include "audiofile/LRawFileDataSoundSink.h"
#include "audiofile/LRawFileDataSoundSource.h"

enum LWaveTag : std::uint16_t {
  lwtPcm = 1,
  lwtAdpcm = 2,
  lwtFloat = 3,
  lwtALaw = 6,
  lwtMuLaw = 7,
  lwtImaAdpcm = 17,
  lwtDart = 34,  // DSP Group TrueSpeech
  lwtGsm = 49,
  lwtG726 = 69,
  lwtMpeg3 = 85,
  lwtExtensible = 0xFFFE,
};

struct LWaveFormatEx {
  std::uint16_t tag = 0, channels = 0;
  std::uint32_t rate = 0;
  std::uint32_t bytesPerSecond = 0;  // as the file says; not to be believed
  std::uint16_t blockAlign = 0;      // bytes, as the file says
  std::uint16_t bits = 0;            // of a sample in the file; 0 in damaged files

  static bool Load(const std::string& path, LWaveFormatEx& format);  // false: no wave file
};

// From `data.file`; fills the rest of `data` and the format.
LSoundError ReadWaveHeader(LPCMData& data, LWaveFormatEx& format);

inline constexpr int kWaveHeaderBytes = 46, kWaveLengthOffset = 42;
inline constexpr std::uint32_t kGrowingRiffLength = 0xFFFFFFFF;
inline constexpr std::uint32_t kGrowingDataLength = 0xFFFFFFD9;  // -39

LHeaderBytes WriteHeaderWave(const LSinkHeader& about, LWaveTag tag);      // 46 bytes
LHeaderBytes WriteHeaderWaveG711(const LSinkHeader& about, LWaveTag tag);  // 58 bytes, true lengths at all times

inline constexpr int kGsmWaveHeaderBytes = 60;
LHeaderBytes WriteHeaderWaveGSM(int rate, std::uint32_t frames, std::uint32_t dataBytes);
