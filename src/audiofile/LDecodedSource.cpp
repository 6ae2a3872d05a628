#include "audiofile/LDecodedSource.h"

void LDecodedSource::Read(int* out, int frames) {
  const std::ptrdiff_t channels = GetChannels();
  ReadSilenceBefore(out, frames);
  const int inside = std::clamp(end_ - std::max(position_, 0), 0, std::max(frames, 0));
  if (inside > 0) Decode(out, position_, inside);
  if (frames > inside) std::fill_n(out + inside * channels, (frames - inside) * channels, 0);
  Advance(std::max(frames, 0));
}

LBlockSource::LBlockSource(LPCMData&& data, int peak, int blockBytes, int blockFrames, std::int64_t frames)
    : LDecodedSource(data.rate, data.channels, peak, frames),
      bytes_(std::size_t(blockBytes)),
      file_(std::move(data.file)),
      dataStart_(data.start),
      blockFrames_(blockFrames),
      samples_(std::size_t(blockFrames) * GetChannels()) {}

int LBlockSource::LoadBlock(int block) {
  const std::int64_t offset = dataStart_ + std::int64_t{block} * std::int64_t(bytes_.size());
  return int(std::max<std::int64_t>(file_.ReadAt(bytes_.data(), bytes_.size(), offset), 0));
}

void LBlockSource::Decode(int* out, int frame, int frames) {
  const std::ptrdiff_t channels = GetChannels();
  while (frames > 0) {
    const int block = BlockOf(frame), within = frame % blockFrames_;
    if (block != held_) {
      const int size = LoadBlock(block);
      DecodeBlock(samples_.data(), block, bytes_.data(), size);
      held_ = block;
    }
    const int count = std::min(frames, blockFrames_ - within);
    std::copy_n(samples_.data() + within * channels, count * channels, out);
    out += count * channels;
    frame += count;
    frames -= count;
  }
}
