// The settings that the program reads, each with its default, in one table. A value is read at the moment it is needed.
// Units    as the comment at the row says.
// Threads  [any]
#pragma once
#include <algorithm>
#include <string>

#include "foundation/LPreferences.h"

struct TSettingBool {
  const char *section, *key;
  bool fallback;
  bool Get() const { return LUserSettingGetBool(section, key, fallback); }
  void Set(bool value) const { LUserSettingSetString(section, key, value ? "1" : "0"); }
};

struct TSettingInt {
  const char *section, *key;
  int fallback, low, high;
  int Get() const { return std::clamp(LUserSettingGetInt(section, key, fallback), low, high); }
  void Set(int value) const { LUserSettingSetString(section, key, std::to_string(value)); }
};

struct TSettingString {
  const char *section, *key, *fallback;
  std::string Get() const { return LUserSettingGetString(section, key, fallback); }
  void Set(const std::string& value) const { LUserSettingSetString(section, key, value); }
};

namespace TSettings {

inline constexpr TSettingString kAudioApi{"Settings", "AudioApi",
                                          ""};  // "pulse", "alsa", "jack"; empty: the first with a device
inline constexpr TSettingString kSoundOutDevice{"Settings", "SoundOutDevice", ""};
inline constexpr TSettingString kSoundOutDeviceHeadphone{"Settings", "SoundOutDeviceHeadphone", ""};
inline constexpr TSettingBool kUseSecondDevice{"Settings", "UseSecondDevice", false};
inline constexpr TSettingInt kMainOutputLeft{"Settings", "MainOutputLeft", 0, -1, 255};  // channel
inline constexpr TSettingInt kMainOutputRight{"Settings", "MainOutputRight", 1, -1, 255};
inline constexpr TSettingInt kHeadphoneOutputLeft{"Settings", "HeadphoneOutputLeft", -1, -1, 255};  // -1: none
inline constexpr TSettingInt kHeadphoneOutputRight{"Settings", "HeadphoneOutputRight", -1, -1, 255};
inline constexpr TSettingInt kHeadphoneOutput2Left{"Settings", "HeadphoneOutput2Left", 0, -1, 255};
inline constexpr TSettingInt kHeadphoneOutput2Right{"Settings", "HeadphoneOutput2Right", 1, -1, 255};
inline constexpr TSettingInt kMasterLevel{"Settings", "MasterDBLevel", 0, -127, 127};  // dB
inline constexpr TSettingInt kHeadphoneLevel{"Settings", "HeadphoneDBLevel", 0, -127, 127};

inline constexpr TSettingBool kSilenceDetection{"Settings", "SilenceDetection", false};
inline constexpr TSettingBool kResetDeckWhenLoaded{"Settings", "ResetDeckWhenLoaded", false};
inline constexpr TSettingBool kNotWarnWhilePlaying{"Settings", "NotWarnWhilePlaying", false};
inline constexpr TSettingInt kCrossFadeShiftValue{"Settings", "CrossFadeShiftValue", 2, 1, 100};  // of 100, a key press
inline constexpr TSettingInt kMidiJogWheelConfig{"Settings", "MidiJogWheelConfig", 0, -0x7fffffff, 0x7fffffff};  // 0, 1
inline constexpr TSettingInt kMidiJogWheelMagnitude{"Settings", "MidiJogWheelMagnitude", 1, 1, 5};  // times the delta
inline constexpr TSettingBool kMidInvertJogWheelDirection{"Settings", "MidInvertJogWheelDirection", false};
inline constexpr TSettingString kLoadFromFolder{"Settings", "LoadFromFolder", ""};
inline constexpr TSettingString kMultiEffectsFolder{"Settings", "MultiEffectsFolder", ""};
inline constexpr TSettingString kMasterEffectsFolder{"Settings", "MasterEffectsFolder", ""};
inline constexpr TSettingString kLoadSamplesFromFolder{"Settings", "LoadSamplesFromFolder", ""};

inline constexpr TSettingString kDefaultRecordFolder{"Settings", "DefaultRecordFolder", ""};
inline constexpr TSettingString kRecordingExtension{"Settings", "RecordingExtension", ".aiff"};
inline constexpr TSettingBool kAutoRecordFileName{"Settings", "AutoRecordFileName", true};
inline constexpr TSettingString kRecordingFileName{"Settings", "RecordingFileName", ""};
inline constexpr TSettingBool kStreamingToRelayo{"Settings", "StreamingToRelayo", false};
inline constexpr TSettingBool kRecordAndStream{"Settings", "RSBoth", false};
inline constexpr TSettingInt kAiffChannels{"AIFFEncode", "Channels", 2, 1, 255};
inline constexpr TSettingInt kAiffSampleRate{"AIFFEncode", "SampleRate", 44100, 1, 196000};    // Hz
inline constexpr TSettingInt kAiffSampleSize{"AIFFEncode", "SampleSize", 16, 1, 32};           // bits
inline constexpr TSettingInt kAiffFormat{"AIFFEncode", "Format", 0, -0x7fffffff, 0x7fffffff};  // 1, 2, 3; others: 0

inline constexpr TSettingBool kMp3ConstantBitRate{"MP3Encoder", "ConstantBitRate", true};
inline constexpr TSettingInt kMp3CbrBitRate{"MP3Encoder", "CBRBitRate", 160, 8, 320};  // kbit/s
inline constexpr TSettingBool kMp3HighQuality{"MP3Encoder", "HighQuality", true};
inline constexpr TSettingInt kMp3VbrMinBitRate{"MP3Encoder", "VBRMinBitRate", 32, 8, 320};   // kbit/s
inline constexpr TSettingInt kMp3VbrMaxBitRate{"MP3Encoder", "VBRMaxBitRate", 320, 8, 320};  // kbit/s
inline constexpr TSettingInt kMp3VbrQuality{"MP3Encoder", "VBRQuality", 4, 0, 9};            // 0 is best
inline constexpr TSettingBool kMp3ErrorProtection{"MP3Encoder", "ErrorProtection", false};
inline constexpr TSettingInt kMp3ChannelMode{"MP3Encoder", "ChannelMode", 0, -0x7fffffff, 0x7fffffff};  // 0 to 3

inline constexpr TSettingBool kCacheYesNo{"Settings", "CacheYesNo", true};
inline constexpr TSettingString kCachePath{"Settings", "CachePath", ""};  // empty: the folder "Cache" of the program
inline constexpr TSettingInt kRemainMB{"Settings", "RemainMB", 100, 0, 0x7fffffff};
inline constexpr TSettingBool kWarnWhenDiskLow{"Settings", "WarnWhenDiskLow", false};

}  // namespace TSettings
