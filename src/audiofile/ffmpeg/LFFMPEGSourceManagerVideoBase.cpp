#include "audiofile/ffmpeg/LFFMPEGSourceManagerVideoBase.h"

namespace {

constexpr int kMaxBadReads = 64;  // in a row, before the rest of a file is given up

}  // namespace

int LFFMPEGSourceManagerVideoBase::IsToStop(void* self) {
  LProcessInterface* process = static_cast<LFFMPEGSourceManagerVideoBase*>(self)->process_;
  return process && process->IsToStop() ? 1 : 0;
}

bool LFFMPEGSourceManagerVideoBase::Open(const std::string& path) {
  av_log_set_level(AV_LOG_QUIET);  // its remarks on damaged files are of no use to the user
  format_.reset();
  atEnd_ = false;
  chosen_ = -1;
  AVFormatContext* format = avformat_alloc_context();
  if (!format) return false;
  format->interrupt_callback = {IsToStop, this};
  format->probesize = kProbeBytes;
  AVDictionary* options = nullptr;
  av_dict_set(&options, "protocol_whitelist", "file", 0);
  // The scheme keeps a name with a colon from being taken for a protocol.
  const int error = avformat_open_input(&format, ("file:" + path).c_str(), nullptr, &options);
  av_dict_free(&options);
  if (error < 0) return false;  // the context is freed then
  format_.reset(format);
  if (avformat_find_stream_info(format, nullptr) >= 0 && format->nb_streams > 0) return true;
  format_.reset();
  return false;
}

double LFFMPEGSourceManagerVideoBase::ReadShare() const {
  const std::int64_t bytes = format_ ? FileBytes() : 0;
  return bytes > 0 ? double(avio_tell(format_->pb)) / double(bytes) : 0;
}

bool LFFMPEGSourceManagerVideoBase::Init() {
  if (!format_ || chosen_ < 0) return false;
  for (unsigned i = 0; i < format_->nb_streams; ++i)
    if (int(i) != chosen_) format_->streams[i]->discard = AVDISCARD_ALL;
  return true;
}

int LFFMPEGSourceManagerVideoBase::GetMainVideoStream(const AVFormatContext* format) {
  for (unsigned i = 0; i < format->nb_streams; ++i) {
    const AVStream& stream = *format->streams[i];
    if (stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !(stream.disposition & AV_DISPOSITION_ATTACHED_PIC))
      return int(i);
  }
  return -1;
}

bool LFFMPEGSourceManagerVideoBase::ReadFrame(AVPacket* packet) {
  for (int bad = 0; format_ && !atEnd_ && bad < kMaxBadReads;) {
    const int error = av_read_frame(format_.get(), packet);
    if (error == AVERROR_EOF || error == AVERROR_EXIT) break;
    if (error < 0) {
      ++bad;
    } else if (packet->stream_index == chosen_) {
      return true;
    } else {
      av_packet_unref(packet);
    }
  }
  atEnd_ = true;
  return false;
}
