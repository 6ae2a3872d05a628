#include "audiofile/LRawSettingsStore.h"

#include "foundation/LPreferences.h"

namespace {

constexpr const char *kRate = "SampleRate", *kChannels = "Channels", *kCodec = "Codec";

}  // namespace

LRawSettings GetRawSettings(const LRawSection& section) {
  LRawSettings settings;
  settings.rate = LUserSettingGetInt(section.name, kRate, section.fallback.rate);
  settings.channels = LUserSettingGetInt(section.name, kChannels, section.fallback.channels);
  settings.codec = LUserSettingGetInt(section.name, kCodec, section.fallback.codec);
  if (settings.channels == 0) settings.channels = 1;
  return settings;
}

void SetRawSettings(const LRawSection& section, const LRawSettings& settings) {
  LUserSettingSetString(section.name, kRate, std::to_string(settings.rate));
  LUserSettingSetString(section.name, kChannels, std::to_string(settings.channels));
  LUserSettingSetString(section.name, kCodec, std::to_string(settings.codec));
}
