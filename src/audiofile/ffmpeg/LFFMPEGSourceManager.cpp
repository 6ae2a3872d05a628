#include "audiofile/ffmpeg/LFFMPEGSourceManager.h"

#include <algorithm>

#include "audiofile/LPCMLimits.h"
#include "foundation/LComponentFinder.h"
#include "sound/LSampleFormats.h"

namespace {

struct FormatRow {
  AVSampleFormat format;
  void (*convert)(int* out, const unsigned char* in, int samples);
};
constexpr FormatRow kFormats[] = {
    {AV_SAMPLE_FMT_U8, ConvertSamplesIn<LSFU8>},
    {AV_SAMPLE_FMT_S16, ConvertSamplesIn<LSF16>},
    {AV_SAMPLE_FMT_S32, ConvertSamplesIn<LSF32>},
    {AV_SAMPLE_FMT_FLT, ConvertSamplesIn<LSFF32>},
};

const FormatRow* FindFormat(AVSampleFormat format) {
  for (const FormatRow& row : kFormats)
    if (row.format == format) return &row;
  return nullptr;
}

// What a decoder's format becomes: the same, interleaved, where there is a reader for it, else floats.
AVSampleFormat OutputFormat(int format) {
  const AVSampleFormat packed = av_get_packed_sample_fmt(AVSampleFormat(format));
  return FindFormat(packed) ? packed : AV_SAMPLE_FMT_FLT;
}

AVChannelLayout DefaultLayout(int channels) {
  AVChannelLayout layout{};
  av_channel_layout_default(&layout, channels);
  return layout;
}

}  // namespace

bool LFFMPEGSourceManager::OpenSound(int streamIndex) {
  const AVStream& stream = *Stream(streamIndex);
  ChooseStream(streamIndex);
  timeBase_ = stream.time_base;
  packet_.reset(av_packet_alloc());
  frame_.reset(av_frame_alloc());
  if (!packet_ || !frame_ || (!OpenDecoder(stream) && !OpenProgram(stream))) return false;
  while (rate_ > kMaxFileRate) rate_ /= 2;  // one-bit streams; the resampler makes it up
  if (!IsPlayableFormat(rate_, channels_)) return false;
  if (Format()->start_time != AV_NOPTS_VALUE)
    base_ = av_rescale_q(Format()->start_time, AVRational{1, AV_TIME_BASE}, AVRational{1, rate_});
  maxFrames_ = std::int64_t{rate_} * kMaxGapSeconds + std::max<std::int64_t>(FileBytes(), 0) * kMaxFramesPerByte;
  bucket_ = std::make_unique<LSoundBucket>();
  return true;
}

bool LFFMPEGSourceManager::OpenDecoder(const AVStream& stream) {
  const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
  if (!codec) return false;
  decoder_.reset(avcodec_alloc_context3(codec));
  if (!decoder_ || avcodec_parameters_to_context(decoder_.get(), stream.codecpar) < 0) return false;
  decoder_->pkt_timebase = stream.time_base;
  if (avcodec_open2(decoder_.get(), codec, nullptr) < 0) {
    decoder_.reset();
    return false;
  }
  rate_ = decoder_->sample_rate;
  channels_ = static_cast<unsigned char>(std::min(decoder_->ch_layout.nb_channels, int(kMaxFileChannels) + 1) & 0xff);
  return rate_ > 0 && channels_ > 0;
}

bool LFFMPEGSourceManager::OpenProgram(const AVStream& stream) {
  const AVCodecParameters& codec = *stream.codecpar;
  const char* name = ProgramFor(codec.codec_id);
  const std::string path = name ? LComponentGetPath(name) : "";
  if (path.empty()) return false;
  const auto channels = static_cast<unsigned char>(codec.ch_layout.nb_channels == 1 ? 1 : 2);
  int rate = codec.sample_rate;
  bool failed = true;
  if (codec.codec_id == AV_CODEC_ID_AAC) {
    if (const int stated = LAACDecoder::RateOfExtraData(codec.extradata, codec.extradata_size)) rate = stated;
    program_ = std::make_unique<LAACDecoder>(path, rate, channels, failed);
  } else if (codec.codec_id == AV_CODEC_ID_AC3) {
    program_ = std::make_unique<LAC3Decoder>(path, rate, channels, failed);
  } else {
    program_ = std::make_unique<LAMRDecoder>(path, failed);
  }
  if (failed) return false;
  answer_.resize(LSoundDecoder::kMaxAnswerBytes / 2);
  rate_ = program_->GetSampleRate();
  channels_ = program_->GetChannels();
  return rate_ > 0;
}

int LFFMPEGSourceManager::GetSamplesAvailable() {
  if (bucket_->Held() < kRefillSamples) Refill();
  return bucket_->Held();
}

void LFFMPEGSourceManager::Refill() {
  while (bucket_->Held() < kRefillSamples)
    if (PutSoundDataIntoBucket() && !DecodeMore()) return;
}

// True when all that is pending has gone in.
bool LFFMPEGSourceManager::PutSoundDataIntoBucket() {
  if (gapSamples_ > 0)
    gapSamples_ -= bucket_->Put(nullptr, int(std::min<std::int64_t>(gapSamples_, LSoundBucket::kCapacity)));
  if (gapSamples_ > 0) return false;
  pendingRead_ += bucket_->Put(pending_.data() + pendingRead_, PendingSamples());
  if (PendingSamples() > 0) return false;
  pending_.clear();
  pendingRead_ = 0;
  return true;
}

bool LFFMPEGSourceManager::DecodeMore() {
  decoded_ = decoded_ || positioned_ > maxFrames_;
  while (!decoded_) {
    if (program_) return ReadProgram();
    const int error = avcodec_receive_frame(decoder_.get(), frame_.get());
    if (error == 0) {
      SetAudioTimePosition(frame_->best_effort_timestamp);
      ProcessSoundData(*frame_);
      av_frame_unref(frame_.get());
      return true;
    }
    decoded_ = error == AVERROR_EOF || (error != AVERROR(EAGAIN) && draining_);
    if (!decoded_ && !SendPacket()) decoded_ = true;
  }
  return false;
}

// The next packet to the decoder, or that there are no more. A packet that is refused is dropped.
bool LFFMPEGSourceManager::SendPacket() {
  if (draining_) return false;
  draining_ = !ReadFrame(packet_.get());
  avcodec_send_packet(decoder_.get(), draining_ ? nullptr : packet_.get());
  av_packet_unref(packet_.get());
  return true;
}

bool LFFMPEGSourceManager::ReadProgram() {
  if (!ReadFrame(packet_.get())) {
    decoded_ = true;
    return false;
  }
  SetAudioTimePosition(packet_->pts);
  const bool written = packet_->size > 0 && program_->WriteSoundPacket(packet_->data, unsigned(packet_->size));
  av_packet_unref(packet_.get());
  if (!written) return true;
  outputFormat_ = AV_SAMPLE_FMT_S16;
  while (const int samples = program_->ReadSound(answer_.data(), int(answer_.size())))
    Convert(reinterpret_cast<const unsigned char*>(answer_.data()), samples / channels_);
  return true;
}

void LFFMPEGSourceManager::ProcessSoundData(const AVFrame& frame) {
  if (frame.nb_samples <= 0 || frame.ch_layout.nb_channels <= 0) return;
  const bool plain = FindFormat(AVSampleFormat(frame.format)) && frame.ch_layout.nb_channels == channels_ &&
                     frame.sample_rate == rate_;
  if (plain) {
    outputFormat_ = AVSampleFormat(frame.format);
    Convert(frame.extended_data[0], frame.nb_samples);
    return;
  }
  if (!PrepareResampler(frame)) return;
  const int room = swr_get_out_samples(resampler_.get(), frame.nb_samples);
  if (room <= 0) return;
  const std::size_t bytes = std::size_t(room) * channels_ * std::size_t(av_get_bytes_per_sample(outputFormat_));
  if (resampled_.size() < bytes) resampled_.resize(bytes);
  unsigned char* out = resampled_.data();
  auto* in = const_cast<const unsigned char**>(frame.extended_data);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  Convert(out, swr_convert(resampler_.get(), &out, room, in, frame.nb_samples));
}

bool LFFMPEGSourceManager::PrepareResampler(const AVFrame& frame) {
  if (resampler_ && frame.format == inputFormat_ && frame.sample_rate == inputRate_ &&
      frame.ch_layout.nb_channels == inputLayout_.nb_channels)
    return true;
  resampler_.reset();
  inputFormat_ = frame.format;
  inputRate_ = frame.sample_rate;
  inputLayout_ = DefaultLayout(frame.ch_layout.nb_channels);
  outputFormat_ = OutputFormat(frame.format);
  AVChannelLayout output = DefaultLayout(channels_);
  SwrContext* context = nullptr;
  if (swr_alloc_set_opts2(&context, &output, outputFormat_, rate_, &inputLayout_, AVSampleFormat(frame.format),
                          frame.sample_rate, 0, nullptr) < 0)
    return false;
  resampler_.reset(context);
  if (swr_init(context) >= 0) return true;
  resampler_.reset();
  return false;
}

void LFFMPEGSourceManager::Convert(const unsigned char* bytes, int frames) {
  if (frames <= 0) return;
  const int skipped = int(std::min<std::int64_t>(frames, skipFrames_));
  skipFrames_ -= skipped;
  const int samples = (frames - skipped) * channels_;
  const std::size_t before = pending_.size();
  pending_.resize(before + std::size_t(samples));
  const std::ptrdiff_t stride = std::ptrdiff_t{channels_} * av_get_bytes_per_sample(outputFormat_);
  FindFormat(outputFormat_)->convert(pending_.data() + before, bytes + skipped * stride, samples);
  positioned_ += frames - skipped;
}

void LFFMPEGSourceManager::SetAudioTimePosition(std::int64_t timestamp) {
  if (timestamp == AV_NOPTS_VALUE) return;
  const std::int64_t time = av_rescale_q(timestamp, timeBase_, AVRational{1, rate_});
  const std::int64_t ahead = time - base_ - positioned_;  // of what stands in the bucket
  const std::int64_t tolerance = std::int64_t{rate_} * kToleranceMs / 1000;
  if (ahead > tolerance) {
    const std::int64_t gap = std::min(ahead, std::int64_t{rate_} * kMaxGapSeconds);
    gapSamples_ = gap * channels_;
    positioned_ += gap;
    base_ += ahead - gap;
  } else if (ahead < -tolerance) {
    if (-ahead <= std::int64_t{rate_} * kMaxOverlapSeconds)
      skipFrames_ = -ahead;
    else
      base_ += ahead;
  }
}
