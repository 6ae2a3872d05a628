#include "audiofile/encode/LMp3FileSink.h"

#if __has_include(<lame/lame.h>)
#include <lame/lame.h>

#include <algorithm>

#include "sound/LSampleFormats.h"
#include "sound/LSoundSource.h"

namespace {

constexpr int kBestQuality = 2, kUsualQuality = 5;                            // of the library's scale 0 to 9
constexpr int kMaxBlockBytes = kMaxBlockFrames + kMaxBlockFrames / 4 + 7200;  // the library's own bound

constexpr MPEG_mode kModes[] = {STEREO, JOINT_STEREO, JOINT_STEREO, MONO};  // by channel mode

}  // namespace

LMp3FileSink::LMp3FileSink(const std::string& path, const LMp3EncodeSettings& settings, int rate,
                           unsigned char channels)
    : LSoundSinkBase(rate, channels),
      encoder_(lame_init()),
      samples_(std::size_t(kMaxBlockFrames) * GetChannels()),
      bytes_(kMaxBlockBytes) {
  if (encoder_ && Configure(settings)) file_ = LFileHandle::OpenReadWriteShared(path, true);
  if (!file_.IsOpen()) SetError();
}

LMp3FileSink::~LMp3FileSink() {
  if (!HasError()) Finish();
  if (encoder_) lame_close(encoder_);
}

bool LMp3FileSink::Configure(const LMp3EncodeSettings& settings) {
  const auto mode = GetChannels() == 1 ? LMp3EncodeSettings::Mono : settings.GetMode();
  for (const auto silence : {lame_set_errorf, lame_set_debugf, lame_set_msgf}) silence(encoder_, nullptr);
  lame_set_num_channels(encoder_, GetChannels());
  lame_set_in_samplerate(encoder_, GetSampleRate());
  lame_set_out_samplerate(encoder_, GetSampleRate());
  lame_set_mode(encoder_, kModes[mode]);
  lame_set_force_ms(encoder_, mode == LMp3EncodeSettings::ForcedJointStereo);
  lame_set_quality(encoder_, settings.highQuality ? kBestQuality : kUsualQuality);
  lame_set_error_protection(encoder_, settings.errorProtection);
  lame_set_write_id3tag_automatic(encoder_, 0);
  lame_set_bWriteVbrTag(encoder_, 1);
  if (settings.constantBitRate) {
    lame_set_VBR(encoder_, vbr_off);
    lame_set_brate(encoder_, settings.cbrBitRate);
  } else {
    lame_set_VBR(encoder_, vbr_default);
    lame_set_VBR_min_bitrate_kbps(encoder_, std::min(settings.vbrMinBitRate, settings.vbrMaxBitRate));
    lame_set_VBR_max_bitrate_kbps(encoder_, settings.vbrMaxBitRate);
    lame_set_VBR_q(encoder_, settings.vbrQuality);
  }
  return lame_init_params(encoder_) >= 0;
}

void LMp3FileSink::Write(const int* samples, int frames) {
  const int fitting = std::min(frames, kEndless - position_);
  if (fitting < frames) SetError();
  for (int done = 0; done < fitting;) {
    const int count = std::min(fitting - done, kMaxBlockFrames);
    if (!HasError()) Encode(samples + std::ptrdiff_t{done} * GetChannels(), count);
    position_ += count;
    done += count;
  }
}

void LMp3FileSink::Encode(const int* samples, int frames) {
  ConvertSamplesToDevice(samples_.data(), samples, frames * GetChannels());
  Append(GetChannels() == 1
             ? lame_encode_buffer_int(encoder_, samples_.data(), samples_.data(), frames, bytes_.data(), kMaxBlockBytes)
             : lame_encode_buffer_interleaved_int(encoder_, samples_.data(), frames, bytes_.data(), kMaxBlockBytes));
}

void LMp3FileSink::Append(int bytes) {
  if (bytes < 0 || !file_.WriteAt(bytes_.data(), std::size_t(bytes), fileBytes_)) {
    SetError();
    file_.Truncate(fileBytes_);  // without the piece of a block that a full disk may have left
    return;
  }
  fileBytes_ += bytes;
}

// The last frames, and what the tag in the first one is to tell now that all is known.
void LMp3FileSink::Finish() {
  Append(lame_encode_flush(encoder_, bytes_.data(), kMaxBlockBytes));
  const std::size_t tagBytes = lame_get_lametag_frame(encoder_, bytes_.data(), bytes_.size());
  if (HasError() || tagBytes > bytes_.size() || std::int64_t(tagBytes) > fileBytes_) return;
  file_.WriteAt(bytes_.data(), tagBytes, 0);
}

LSoundSink OpenMp3FileSink(const std::string& path, const LMp3EncodeSettings& settings, int rate,
                           unsigned char channels) {
  return LSoundSink::Make<LMp3FileSink>(path, settings, rate, channels);
}

#else

LSoundSink OpenMp3FileSink(const std::string&, const LMp3EncodeSettings&, int, unsigned char) { return {}; }

#endif
