// The registered WAVE format tags (RFC 2361 and what vendors registered since) by maker and name, for messages about a
// codec that is missing.
// Threads  [any]
// Failure  a file that is none, or whose tag nobody registered, has the first name.
#pragma once
#include <cstdint>
#include <string>

struct WaveCodec {
  std::uint16_t tag;
  const char* name;
};

inline constexpr unsigned uNumWaveCodecs = 248;
extern const WaveCodec WaveCodecs[uNumWaveCodecs];  // by tag

std::string LGetWaveFileCodecName(const std::string& path);
