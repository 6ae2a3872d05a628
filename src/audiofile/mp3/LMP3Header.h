// The header of a frame of MPEG audio, Layer III.
// Law      ISO/IEC 11172-3, 2.4.1.3 and 2.4.2.3; 13818-3 for the lower rates and their extension below 16 kHz
// Units    rates in Hz, bit rates in kbit/s, lengths in bytes, "samples" in frames of sound
// Threads  [any]
// Failure  Parse is false for four bytes that are no such header; free format counts as none
#pragma once

struct LMP3Header {
  static constexpr int kBytes = 4, kCrcBytes = 2;
  static constexpr int kMaxFrameBytes = 1441, kMaxSamples = 1152;
  static constexpr int kMono = 3;
  static constexpr int kMidSide = 2, kIntensity = 1;  // bits of the mode extension, in mode kJointStereo
  static constexpr int kJointStereo = 1;

  unsigned char version = 0;    // 0 MPEG-1, 1 MPEG-2, 2 its extension
  unsigned char rateIndex = 0;  // 0..2
  unsigned char mode = 0, modeExtension = 0;
  bool isProtected = false, isPadded = false;
  short bitRate = 0;

  static bool Parse(const unsigned char* bytes, LMP3Header& header);

  bool IsSameStream(const LMP3Header& other) const { return version == other.version && rateIndex == other.rateIndex; }
  bool IsLowRate() const { return version != 0; }
  int SampleRate() const;
  int Channels() const { return mode == kMono ? 1 : 2; }
  int Granules() const { return IsLowRate() ? 1 : 2; }
  int Samples() const { return IsLowRate() ? 576 : 1152; }
  int SlotFactor() const { return IsLowRate() ? 72000 : 144000; }  // bytes of a frame times Hz, for 1 kbit/s
  int FrameBytes() const { return SlotFactor() * bitRate / SampleRate() + isPadded; }
  double AverageFrameBytes() const { return double(SlotFactor()) * bitRate / SampleRate(); }
  int LeastFrameBytes() const { return SlotFactor() * (IsLowRate() ? 8 : 32) / SampleRate(); }
  int SideInfoBytes() const { return IsLowRate() ? (mode == kMono ? 9 : 17) : (mode == kMono ? 17 : 32); }
  int SideInfoOffset() const { return kBytes + (isProtected ? kCrcBytes : 0); }
  int MainDataOffset() const { return SideInfoOffset() + SideInfoBytes(); }
  int BandTable() const { return 3 * version + rateIndex; }
  bool HasMidSide() const { return mode == kJointStereo && (modeExtension & kMidSide) != 0; }
  bool HasIntensity() const { return mode == kJointStereo && (modeExtension & kIntensity) != 0; }
};
