// The header of an AIFF or AIFC file, read and written.
// Units    bytes; rates in Hz, in the file as 80-bit extended numbers
// Threads  [any]
// Failure  AIFFOpenHeader gives the error that the source is to have.
#pragma once
#include "audiofile/LHeaderBytes.h"
#include "audiofile/LRawFileDataSoundSink.h"
#include "audiofile/LRawFileDataSoundSource.h"

enum AIFFFormatType { afftPcm = 0, afftSowt = 1, afftALaw = 2, afftMuLaw = 3 };

inline constexpr const char* AIFFCompressionType[] = {"NONE", "sowt", "alaw", "ulaw"};
inline constexpr const char* AIFFCompressionName[] = {"not compressed", "not compressed", "ALaw 2:1", "uLaw 2:1"};

struct LAifFormat {
  int bits = 0;
  char compression[5] = "NONE";  // of an AIFC
};

// From `data.file`; fills the rest of `data` and the format.
LSoundError AIFFOpenHeader(LPCMData& data, LAifFormat& format);

inline constexpr int kAiffHeaderBytes = 54, kAiffLengthOffset = 42;
inline constexpr std::uint32_t kGrowingSoundLength = 0xFFFFFFFF;
inline constexpr std::uint32_t kAifcVersion = 0xA2805140;

LHeaderBytes WriteHeaderAIFF(const LSinkHeader& about, int bits);
LHeaderBytes WriteHeaderAIFC(const LSinkHeader& about, AIFFFormatType type);  // true lengths at all times

std::int64_t RateFromExtended(const unsigned char* tenBytes);
void WriteRateAsExtended(LHeaderBytes& header, std::uint32_t rate);  // 10 bytes; the rate is at least 1
