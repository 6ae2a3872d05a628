#include "audiofile/encode/LMp3EncodeSettings.h"

#include <algorithm>

#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "foundation/TSettings.h"

namespace {

constexpr int kLeastStereoKbit = 24;
constexpr int kHighKbit = 161;  // more than the lower rates of MPEG-2 can carry
constexpr int kLowKbit = 32;    // less than those of MPEG-1 can

std::uint16_t Get(const TSettingInt& setting) { return std::uint16_t(setting.Get()); }

struct RateRow {
  int from, to;  // exclusive: what lies between
  int rate;
};

constexpr RateRow kRates[] = {
    {44100, 48000, 44100}, {32000, 44100, 44100}, {24000, 32000, 32000}, {22050, 24000, 22050},
    {16000, 22050, 22050}, {11025, 16000, 11025}, {8000, 11025, 11025},
};

int NearestRate(int rate) {
  for (const RateRow& row : kRates)
    if (rate > row.from && rate < row.to) return row.rate;
  return std::max(rate, 8000);
}

}  // namespace

LMp3EncodeSettings::LMp3EncodeSettings(const std::string& path) {
  if (!LText::EqualsNoCase(LFile::ExtensionFromPath(path), ".mp3")) return;
  constantBitRate = TSettings::kMp3ConstantBitRate.Get();
  cbrBitRate = Get(TSettings::kMp3CbrBitRate);
  highQuality = TSettings::kMp3HighQuality.Get();
  vbrMinBitRate = Get(TSettings::kMp3VbrMinBitRate);
  vbrMaxBitRate = Get(TSettings::kMp3VbrMaxBitRate);
  vbrQuality = Get(TSettings::kMp3VbrQuality);
  errorProtection = TSettings::kMp3ErrorProtection.Get();
  channelMode = TSettings::kMp3ChannelMode.Get();
  // One rate would have to carry both.
  if (vbrMaxBitRate >= kHighKbit && vbrMinBitRate < kLowKbit) vbrMinBitRate = kLowKbit;
}

LMp3EncodeSettings::ChannelMode LMp3EncodeSettings::GetMode() const {
  if (GetMaxBitRate() < kLeastStereoKbit) return Mono;
  return channelMode >= Stereo && channelMode <= Mono ? ChannelMode(channelMode) : Stereo;
}

int Mp3SampleRate(const LMp3EncodeSettings& settings, int rate) {
  if (rate > 48000) rate = 44100;
  if (settings.GetMaxBitRate() >= kHighKbit && rate < 32000) return 44100;
  if (settings.GetMinBitRate() < kLowKbit && rate > 22050) rate = 22050;
  rate = NearestRate(rate);
  return settings.constantBitRate && settings.cbrBitRate > 127 ? std::max(rate, 22050) : rate;
}

unsigned char Mp3Channels(const LMp3EncodeSettings& settings, int channels) {
  return channels < 2 || settings.GetMaxBitRate() < kLeastStereoKbit ? 1 : 2;
}
