// How MP3 files are to be encoded: the user's settings, and the sample rate and channels that follow from them.
// Units    bit rates in kbit/s, rates in Hz
// Threads  the constructor [main]; the rest [any]
#pragma once
#include <cstdint>
#include <string>

struct LMp3EncodeSettings {
  enum ChannelMode { Stereo = 0, JointStereo = 1, ForcedJointStereo = 2, Mono = 3 };

  LMp3EncodeSettings() = default;
  // From the store for a path that ends in ".mp3", else as they are by default.
  explicit LMp3EncodeSettings(const std::string& path);

  // Of what is encoded, at most.
  int GetMaxBitRate() const { return constantBitRate ? cbrBitRate : vbrMaxBitRate; }
  int GetMinBitRate() const { return constantBitRate ? cbrBitRate : vbrMinBitRate; }
  ChannelMode GetMode() const;  // below 24 kbit/s there is no room for two channels

  bool constantBitRate = true;
  std::uint16_t cbrBitRate = 160;
  bool highQuality = true;
  std::uint16_t vbrMinBitRate = 32;
  std::uint16_t vbrMaxBitRate = 320;
  std::uint16_t vbrQuality = 4;  // 0 best .. 9
  bool errorProtection = false;  // 16 bits of checksum a frame
  int channelMode = Stereo;
};

// The rate nearest to the asked one that goes with the bit rate, and how many channels fit into it.
int Mp3SampleRate(const LMp3EncodeSettings& settings, int rate);
unsigned char Mp3Channels(const LMp3EncodeSettings& settings, int channels);
