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

inline constexpr int kMost = 0x7fffffff, kLeast = -kMost;  // no bound

// "pulse", "alsa" or "jack"; empty: the first with a device
inline constexpr TSettingString kAudioApi{"Settings", "AudioApi", ""};
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
// This and the warnings below, if on: not shown again.
inline constexpr TSettingBool kWarnOptionsSoundDeviceChange{"Settings", "WarnOptionsSoundDeviceChange", false};

// Folders of a library are the program's own if empty.
inline constexpr TSettingString kLibraryPath{"Settings", "LibraryPath", ""};
inline constexpr TSettingString kSampleLibraryPath{"Settings", "SampleLibraryPath", ""};
inline constexpr TSettingString kVideoLibraryFolder{"Settings", "VideoLibraryFolder", ""};
inline constexpr TSettingString kLoadVideoFromFolder{"Settings", "LoadVideoFromFolder", ""};
inline constexpr TSettingString kLoadVideoPlaylistFromFolder{"Settings", "LoadVideoPlaylistFromFolder", ""};
// Rows of the lists of file types.
inline constexpr TSettingInt kSelectedAudioType{"Settings", "SelectedAudioType", 0, 0, kMost};
inline constexpr TSettingInt kSelectedAudioPlaylistType{"Settings", "SelectedAudioPlaylistType", 0, 0, kMost};
inline constexpr TSettingInt kSelectedSoundClipType{"Settings", "SelectedSoundClipType", 0, 0, kMost};
inline constexpr TSettingInt kSelectedSoundClipPlaylistType{"Settings", "SelectedSoundClipPlaylistType", 0, 0, kMost};
inline constexpr TSettingInt kSelectedVideoType{"Settings", "SelectedVideoType", 0, 0, kMost};
inline constexpr TSettingInt kSelectedVideoPlaylistType{"Settings", "SelectedVideoPlaylistType", 0, 0, kMost};
inline constexpr TSettingBool kBackgroundBPMScan{"Settings", "BackgroundBPMScan", true};
inline constexpr TSettingBool kRefineBPM{"Settings", "RefineBPM", true};  // after detection
inline constexpr TSettingBool kNotWarnUserForExistingBPMData{"Settings", "NotWarnUserForExistingBPMData", false};
inline constexpr TSettingBool kDontShowDuplicateAudioFileWarning{"Settings", "DontShowDuplicateAudioFileWarning",
                                                                 false};
inline constexpr TSettingBool kDontShowDuplicateVideoFileWarning{"Settings", "DontShowDuplicateVideoFileWarning",
                                                                 false};
inline constexpr TSettingBool kDontWarnWhenChangingValidFilePath{"Settings", "DontWarnWhenChangingValidFilePath",
                                                                 false};
// The answer that goes with the warning above.
inline constexpr TSettingBool kChangeFilePathIfValid{"Settings", "ChangeFilePathIfValid", false};
inline constexpr TSettingString kITunesLibraryLocation{"Settings", "iTunesLibraryLocation", ""};
inline constexpr TSettingString kITunesPlaylist{"Settings", "iTunes Playlist", ""};

inline constexpr TSettingBool kSilenceDetection{"Settings", "SilenceDetection", false};
inline constexpr TSettingBool kResetDeckWhenLoaded{"Settings", "ResetDeckWhenLoaded", false};
inline constexpr TSettingBool kNotWarnWhilePlaying{"Settings", "NotWarnWhilePlaying", false};
inline constexpr TSettingBool kNotWarnWhileDeleting{"Settings", "NotWarnWhileDeleting", false};
inline constexpr TSettingInt kCrossFadeTime{"Settings", "CrossFadeTime", 8, 2, 300};  // s
inline constexpr TSettingBool kFeedTo{"Settings", "FeedTo", false};
inline constexpr TSettingBool kFlashWaveform{"Settings", "FlashWaveform", true};
inline constexpr TSettingInt kFlashWaveformTime{"Settings", "FlashWaveformTime", 15, 1, 120};  // s before the end
inline constexpr TSettingBool kVideoDisplayEnabled{"Settings", "VideoDisplayEnabled", true};
inline constexpr TSettingInt kCrossFadeShiftValue{"Settings", "CrossFadeShiftValue", 2, 1, 100};  // of 100, a key press
inline constexpr TSettingInt kMidiJogWheelConfig{"Settings", "MidiJogWheelConfig", 0, kLeast, kMost};  // 0, 1
inline constexpr TSettingInt kMidiJogWheelMagnitude{"Settings", "MidiJogWheelMagnitude", 1, 1, 5};  // times the delta
inline constexpr TSettingBool kMidInvertJogWheelDirection{"Settings", "MidInvertJogWheelDirection", false};
inline constexpr TSettingInt kMidiJogWheelLatency{"Settings", "MidiJogWheelLatency", 100, 20, 1000};  // ms
inline constexpr TSettingString kMidiControl{"Settings", "MidiControl", ""};  // name of the device; empty: none
inline constexpr TSettingBool kMidiButtonToggleModeOn{"Settings", "MidiButtonToggleModeOn", false};
inline constexpr TSettingString kSelectedMidiMap{"Settings", "SelectedMidiMap", ""};

inline constexpr TSettingString kLoadFromFolder{"Settings", "LoadFromFolder", ""};
inline constexpr TSettingString kMultiEffectsFolder{"Settings", "MultiEffectsFolder", ""};
inline constexpr TSettingString kMasterEffectsFolder{"Settings", "MasterEffectsFolder", ""};
inline constexpr TSettingString kLoadSamplesFromFolder{"Settings", "LoadSamplesFromFolder", ""};

inline constexpr TSettingBool kIsCliplistFloating{"Settings", "IsCliplistFloating", false};
inline constexpr TSettingBool kIsEffectChainFloating{"Settings", "IsEffectChainFloating", false};
inline constexpr TSettingBool kIsPlaylistFloating{"Settings", "IsPlaylistFloating", false};
inline constexpr TSettingBool kIsVideoControlsFloating{"Settings", "IsVideoControlsFloating", false};
inline constexpr TSettingBool kMainWindowShownAtStartup{"Settings", "MainWindowShownAtStartup", true};
inline constexpr TSettingBool kMetal{"Settings", "Metal", false};
inline constexpr TSettingBool kFirstRun{"Settings", "FirstRun", false};
inline constexpr TSettingInt kRuns{"Settings", "Runs", 0, 0, kMost};
inline constexpr TSettingString kCurrentVersion{"Settings", "CurrentVersion", ""};
inline constexpr TSettingString kPreviousVersion{"Settings", "PreviousVersion", ""};
inline constexpr TSettingInt kCurrentTutorialMessage{"Settings", "iCurrentTutorialMessage", 0, 0, kMost};
inline constexpr TSettingInt kTracksPlayed{"UsageStats", "TracksPlayed", 0, 0, kMost};

inline constexpr TSettingInt kDrive{"Settings", "Drive", 0, 0, kMost};
inline constexpr TSettingBool kUseCDDB{"Settings", "bUseCDDB", true};
inline constexpr TSettingBool kUseMusicBrainz{"Settings", "bUseMusicBrainz", true};
inline constexpr TSettingBool kUseCDLookupHTTP{"Settings", "bUseCDLookupHTTP", true};
inline constexpr TSettingBool kUseFreeDB{"Settings", "UseFreeDB", false};

inline constexpr TSettingString kDefaultRecordFolder{"Settings", "DefaultRecordFolder", ""};
inline constexpr TSettingString kRecordingExtension{"Settings", "RecordingExtension", ".aiff"};
inline constexpr TSettingBool kAutoRecordFileName{"Settings", "AutoRecordFileName", true};
inline constexpr TSettingString kRecordingFileName{"Settings", "RecordingFileName", ""};
inline constexpr TSettingBool kStreamingToRelayo{"Settings", "StreamingToRelayo", false};
inline constexpr TSettingBool kRecordAndStream{"Settings", "RSBoth", false};
inline constexpr TSettingBool kRecorderAutotrim{"Recorder", "Autotrim", false};
inline constexpr TSettingInt kAiffChannels{"AIFFEncode", "Channels", 2, 1, 255};
inline constexpr TSettingInt kAiffSampleRate{"AIFFEncode", "SampleRate", 44100, 1, 196000};  // Hz
inline constexpr TSettingInt kAiffSampleSize{"AIFFEncode", "SampleSize", 16, 1, 32};         // bits
inline constexpr TSettingInt kAiffFormat{"AIFFEncode", "Format", 0, kLeast, kMost};          // 1, 2, 3; others: 0

inline constexpr TSettingBool kMp3ConstantBitRate{"MP3Encoder", "ConstantBitRate", true};
inline constexpr TSettingInt kMp3CbrBitRate{"MP3Encoder", "CBRBitRate", 160, 8, 320};  // kbit/s
inline constexpr TSettingBool kMp3HighQuality{"MP3Encoder", "HighQuality", true};
inline constexpr TSettingInt kMp3VbrMinBitRate{"MP3Encoder", "VBRMinBitRate", 32, 8, 320};   // kbit/s
inline constexpr TSettingInt kMp3VbrMaxBitRate{"MP3Encoder", "VBRMaxBitRate", 320, 8, 320};  // kbit/s
inline constexpr TSettingInt kMp3VbrQuality{"MP3Encoder", "VBRQuality", 4, 0, 9};            // 0 is best
inline constexpr TSettingBool kMp3ErrorProtection{"MP3Encoder", "ErrorProtection", false};
inline constexpr TSettingInt kMp3ChannelMode{"MP3Encoder", "ChannelMode", 0, kLeast, kMost};  // 0 to 3

inline constexpr TSettingBool kCacheYesNo{"Settings", "CacheYesNo", true};
inline constexpr TSettingString kCachePath{"Settings", "CachePath", ""};  // empty: the folder "Cache" of the program
inline constexpr TSettingInt kRemainMB{"Settings", "RemainMB", 100, 0, kMost};
inline constexpr TSettingBool kWarnWhenDiskLow{"Settings", "WarnWhenDiskLow", false};

// What the editing dialogs showed last.
inline constexpr TSettingInt kBandPassFrequencyStart{"LEQBandPassDlg", "FrequencyStart", 8000, kLeast, kMost};  // Hz
inline constexpr TSettingInt kBandPassFrequencyEnd{"LEQBandPassDlg", "FrequencyEnd", 12000, kLeast, kMost};
inline constexpr TSettingInt kBandPassSlope{"LEQBandPassDlg", "Slope", 1000, kLeast, kMost};
inline constexpr TSettingInt kBandPassAmp{"LEQBandPassDlg", "Amp", 20, kLeast, kMost};
inline constexpr TSettingInt kNotchFrequencyStart{"LEQNotchDlg", "FrequencyStart", 9750, kLeast, kMost};
inline constexpr TSettingInt kNotchFrequencyEnd{"LEQNotchDlg", "FrequencyEnd", 10250, kLeast, kMost};
inline constexpr TSettingInt kHighPassFrequency{"LEQHighPassDlg", "Frequency", 4000, kLeast, kMost};
inline constexpr TSettingInt kHighPassSlope{"LEQHighPassDlg", "Slope", 1000, kLeast, kMost};
inline constexpr TSettingInt kHighShelfFrequency{"LEQHighShelfDlg", "Frequency", 4000, kLeast, kMost};
inline constexpr TSettingInt kHighShelfSlope{"LEQHighShelfDlg", "Slope", 1000, kLeast, kMost};
inline constexpr TSettingInt kHighShelfAmplitude{"LEQHighShelfDlg", "Amplitude", 20, kLeast, kMost};

// An alert that is set stays away; the answer of the last is kept.
inline constexpr TSettingBool kAlertCorruptVideoFound{"VideoSettings", "AlertCorruptVideoFound", false};
inline constexpr TSettingBool kAlertNoStreamFound{"VideoSettings", "AlertNoStreamFound", false};
inline constexpr TSettingBool kAlertVideoCorruptionConvert{"VideoSettings", "AlertVideoCorruptionConvert", false};
inline constexpr TSettingBool kVideoCorruptionConvert{"VideoSettings", "VideoCorruptionConvert", false};

// One entry for each command that the user changed.
inline constexpr const char* kCustomKeySection = "CustomKeyList";
inline constexpr const char* kCustomMidiSection = "CustomMidiList";
// Of the shared store: the installed version of each component.
inline constexpr const char* kComponentVersionsSection = "ComponentVersions";

}  // namespace TSettings

namespace TGlobalSettings {

inline int GetTracksPlayedCount() { return TSettings::kTracksPlayed.Get(); }
inline int GetTutorialCurrentMessage() { return TSettings::kCurrentTutorialMessage.Get(); }
inline int GetCrossfadeShiftValue() { return TSettings::kCrossFadeShiftValue.Get(); }

}  // namespace TGlobalSettings
