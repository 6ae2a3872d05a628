#include "audiofile/mp3/LMP3Header.h"

namespace {

constexpr int kRates[3] = {44100, 48000, 32000};  // halved by each version
constexpr short kBitRates[2][16] = {
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0},  // MPEG-1
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0},
};
constexpr unsigned kNoVersion = 1, kLayerThree = 1;
constexpr unsigned char kVersions[4] = {2, 0, 1, 0};  // by the two version bits

}  // namespace

bool LMP3Header::Parse(const unsigned char* bytes, LMP3Header& header) {
  if (bytes[0] != 255 || bytes[1] <= 223) return false;
  const unsigned versionBits = bytes[1] >> 3 & 3, layerBits = bytes[1] >> 1 & 3, rateIndex = bytes[2] >> 2 & 3;
  if (versionBits == kNoVersion || layerBits != kLayerThree || rateIndex > 2) return false;
  header.version = kVersions[versionBits];
  header.bitRate = kBitRates[header.version != 0][bytes[2] >> 4];
  header.rateIndex = static_cast<unsigned char>(rateIndex);
  header.isProtected = (bytes[1] & 1) == 0;
  header.isPadded = (bytes[2] >> 1 & 1) != 0;
  header.mode = bytes[3] >> 6;
  header.modeExtension = bytes[3] >> 4 & 3;
  return header.bitRate != 0;
}

int LMP3Header::SampleRate() const { return kRates[rateIndex] >> version; }
