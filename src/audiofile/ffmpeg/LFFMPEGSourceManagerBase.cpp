#include "audiofile/ffmpeg/LFFMPEGSourceManagerBase.h"

#include <algorithm>

namespace {

struct ProgramRow {
  AVCodecID codec;
  const char* program;
};
constexpr ProgramRow kPrograms[] = {
    {AV_CODEC_ID_AAC, "aacdec3"},
    {AV_CODEC_ID_AC3, "a52dec3"},
    {AV_CODEC_ID_AMR_NB, "amrdec2"},
};

}  // namespace

const char* LFFMPEGSourceManagerBase::ProgramFor(AVCodecID codec) {
  for (const ProgramRow& row : kPrograms)
    if (row.codec == codec) return row.program;
  return nullptr;
}

bool LFFMPEGSourceManagerBase::IsSound(int index) const {
  return Stream(index)->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
}

bool LFFMPEGSourceManagerBase::IsDecodable(int index) const {
  const AVCodecParameters& codec = *Stream(index)->codecpar;
  return IsSound(index) && codec.sample_rate > 0 && codec.ch_layout.nb_channels > 0 &&
         codec.codec_id != AV_CODEC_ID_NONE;
}

int LFFMPEGSourceManagerBase::GetSoundStreamIndex(int stream, bool preferDecodable) const {
  if (!Format()) return -1;
  if (stream < 0) {
    // Newer forms of the library take the context as const, older ones do not change it either.
    auto* format = const_cast<AVFormatContext*>(Format());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    const int best = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, GetMainVideoStream(format), nullptr, 0);
    return best < 0 ? -1 : best;
  }
  int firstSound = -1, firstDecodable = -1;
  for (int i = 0, counted = 0; i < int(Format()->nb_streams); ++i) {
    if (!IsSound(i)) continue;
    if (firstSound < 0) firstSound = i;
    if (preferDecodable && !IsDecodable(i)) continue;
    if (firstDecodable < 0) firstDecodable = i;
    if (counted++ == stream) return i;
  }
  if (!preferDecodable) return -1;
  return firstDecodable >= 0 ? firstDecodable : firstSound;
}

bool LFFMPEGSourceManagerBase::GetSoundStreamComponent(int stream, std::string& name, bool preferDecodable) const {
  name.clear();
  const int index = GetSoundStreamIndex(stream, preferDecodable);
  if (index < 0) return false;
  const AVCodecID codec = Stream(index)->codecpar->codec_id;
  if (avcodec_find_decoder(codec)) return true;
  const char* program = ProgramFor(codec);
  if (program) name = program;
  return program != nullptr;
}

LSoundSource LFFMPEGSourceManagerBase::GetSoundSource(const std::shared_ptr<LFFMPEGSourceManagerBase>& manager,
                                                      int stream, bool preferDecodable) {
  const int index = manager->GetSoundStreamIndex(stream, preferDecodable);
  if (index < 0 || !manager->OpenSound(index)) return LSoundSource(lseNoSource);
  return LSoundSource::Make<LFFMPEGSoundSourceBase>(manager);
}

void LFFMPEGSoundSourceBase::Read(int* out, int frames) {
  manager_->Read(out, frames);
  position_ = int(std::min<std::int64_t>(std::int64_t{position_} + frames, kEndless));
}
