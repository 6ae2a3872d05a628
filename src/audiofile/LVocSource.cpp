#include "audiofile/LVocSource.h"

namespace {

constexpr LCreativeAdpcm::Form k4Bits{2, {4, 4}, {4, 0}, 0};
constexpr LCreativeAdpcm::Form k2Bits6{3, {3, 3, 2}, {5, 2, 0}, 0};
constexpr LCreativeAdpcm::Form k2Bits{4, {2, 2, 2, 2}, {6, 4, 2, 0}, 2};

constexpr LVocCompression kCompressions[] = {
    {0, 1, 0, 1, ConvertSamplesIn<LSFU8>, nullptr},
    {1, 2, 1, 1, nullptr, &k4Bits},
    {2, 2, 1, 1, nullptr, &k2Bits6},  // counted like the form of 4 bits
    {3, 4, 3, 1, nullptr, &k2Bits},
    {4, 1, 0, 2, ConvertSamplesIn<LSF16>, nullptr},
    {6, 1, 0, 1, ConvertSamplesIn<LSFALAW>, nullptr},
    {7, 1, 0, 1, ConvertSamplesIn<LSFULAW>, nullptr},
};

constexpr int kPlainByteMiddle = 0x80;
constexpr int kMaxWidth = 3;

}  // namespace

const LVocCompression* FindVocCompression(int number) {
  for (const LVocCompression& compression : kCompressions)
    if (compression.number == number) return &compression;
  return nullptr;
}

void LCreativeAdpcm::Decode(State& state, unsigned char byte, int* out) const {
  for (int i = 0; i < form_->samplesPerByte; ++i) {
    const int bits = form_->bits[i], code = byte >> form_->low[i];
    const int sign = 1 << (bits - 1), magnitude = code & (sign - 1);
    const int channel = state.nextChannel;
    unsigned char& width = state.width[channel];
    const int difference = magnitude << (width + form_->shift);
    const int moved = state.value[channel] + (code & sign ? -difference : difference);
    state.value[channel] = static_cast<signed char>(std::clamp(moved, -128, 127));
    if (magnitude >= 2 * bits - 3)
      width = static_cast<unsigned char>(std::min(width + 1, kMaxWidth));
    else if (magnitude == 0 && width > 0)
      --width;
    state.nextChannel = channel + 1 < channels_ ? 1 : 0;
    out[i] = state.value[channel] * 4096;
  }
}

void LCreativeAdpcm::Skip(State& state, const unsigned char* bytes, int count) const {
  int unheard[kSamplesPerByteMax];
  for (int i = 0; i < count; ++i) Decode(state, bytes[i], unheard);
}

std::int64_t LVocBlocks::Frames() const {
  std::int64_t frames = 0;
  for (int i = 0; i < count; ++i) frames += blocks[std::size_t(i)].AllFrames();
  return frames;
}

LVocSource::LVocSource(LPCMData&& data, const LVocBlocks& blocks, const LVocCompression& compression)
    : LDecodedSource(data.rate, data.channels, kPeak16, blocks.Frames()),
      file_(std::move(data.file)),
      blocks_(blocks),
      compression_(compression) {
  if (!compression_.adpcm) return;
  runs_.reserve(std::size_t(blocks_.count));
  for (int i = 0; i < blocks_.count; ++i) runs_.push_back(MakeRun(blocks_.blocks[std::size_t(i)]));
}

LAdpcmRun<LCreativeAdpcm> LVocSource::MakeRun(const LVocBlock& block) {
  const int channels = GetChannels();
  unsigned char plain[2] = {kPlainByteMiddle, kPlainByteMiddle};
  if (!block.silent) file_.ReadAt(plain, std::size_t(channels), block.offset);
  LCreativeAdpcm::State start;
  for (int i = 0; i < channels; ++i) start.value[i] = static_cast<signed char>(plain[i] - kPlainByteMiddle);
  starts_.push_back(start);
  const std::int64_t codes = block.offset + channels;
  const std::int64_t held = std::min(block.bytes - channels, file_.Size() - codes);
  return {LCreativeAdpcm(*compression_.adpcm, channels), start, codes, std::max<std::int64_t>(held, 0)};
}

void LVocSource::Decode(int* out, int frame, int frames) {
  const std::int64_t channels = GetChannels();
  std::int64_t at = frame;  // within the block
  for (int i = 0; i < blocks_.count && frames > 0; ++i) {
    const LVocBlock& block = blocks_.blocks[std::size_t(i)];
    const std::int64_t all = block.AllFrames();
    while (at < all && frames > 0) {
      const std::int64_t within = block.silent ? at : at % block.frames;
      const int count = int(std::min<std::int64_t>(frames, block.silent ? all - at : block.frames - within));
      const int samples = int(count * channels);
      if (block.silent)
        std::fill_n(out, samples, 0);
      else if (compression_.adpcm)
        DecodeAdpcm(i, out, within * channels, samples);
      else
        DecodePlain(block, out, within * channels, samples);
      out += samples;
      at += count;
      frames -= count;
    }
    at -= std::min(at, all);
  }
}

void LVocSource::DecodePlain(const LVocBlock& block, int* out, std::int64_t sample, int samples) {
  const int width = compression_.bytesPerSample;
  while (samples > 0) {
    unsigned char bytes[4096];
    const int wanted = std::min(samples, int(sizeof bytes) / width);
    const std::int64_t got = file_.ReadAt(bytes, std::size_t(wanted * width), block.offset + sample * width);
    const int whole = int(std::max<std::int64_t>(got, 0)) / width;
    compression_.convert(out, bytes, whole);
    std::fill_n(out + whole, wanted - whole, 0);
    out += wanted;
    sample += wanted;
    samples -= wanted;
  }
}

void LVocSource::DecodeAdpcm(int index, int* out, std::int64_t sample, int samples) {
  const int plain = GetChannels();
  for (; sample < plain && samples > 0; ++sample, --samples) *out++ = starts_[std::size_t(index)].value[sample] * 4096;
  if (samples > 0) runs_[std::size_t(index)].Read(file_, sample - plain, out, samples);
}
