#include "audiofile/LGSMWaveSink.h"

#include <algorithm>
#include <iterator>

#include "audiofile/LWaveHeader.h"
#include "sound/LSoundSource.h"

namespace {

constexpr int kPreRollBlocks = 25;  // one second

std::int64_t OffsetOf(int block) { return kGsmWaveHeaderBytes + std::int64_t{block} * kGsmWave.blockBytes; }

}  // namespace

LGSMWaveSink::LGSMWaveSink(const std::string& path, int rate)
    : LSoundSinkBase(rate, 1), file_(LFileHandle::OpenReadWriteShared(path, true)) {
  ResetEncoder();
  if (!encoder_ || !file_.IsOpen()) SetError();
  if (file_.IsOpen()) WriteHeader();
}

LGSMWaveSink::~LGSMWaveSink() {
  const int rest = position_ % kBlockFrames;
  if (file_.IsOpen()) {
    if (rest > 0) {
      std::fill(pending_ + rest, std::end(pending_), 0);
      WriteBlock(position_ / kBlockFrames);
    }
    if (HasError()) {  // a full disk: without the piece of a block at the end
      blocks_ = int(std::clamp<std::int64_t>((file_.Size() - kGsmWaveHeaderBytes) / kBlockBytes, 0, blocks_));
      file_.Truncate(OffsetOf(blocks_));
    }
    if (blocks_ % 2 != 0) file_.WriteAt("", 1, OffsetOf(blocks_));  // 65 bytes a block, and chunks are even
    WriteHeader();
  }
  if (encoder_) ::gsm_destroy(encoder_);
}

void LGSMWaveSink::ResetEncoder() {
  if (encoder_) ::gsm_destroy(encoder_);
  encoder_ = ::gsm_create();
  int wave = 1;
  if (encoder_) ::gsm_option(encoder_, GSM_OPT_WAV49, &wave);
}

void LGSMWaveSink::Encode(unsigned char* bytes) {
  constexpr int kFrameSamples = kBlockFrames / 2, kFirstBytes = 32;  // and half a byte, which waits for the second
  gsm_signal samples[kBlockFrames];
  std::transform(pending_, std::end(pending_), samples,
                 [](int x) { return gsm_signal(std::clamp((x + 8) >> 4, -32768, 32767)); });
  ::gsm_encode(encoder_, samples, bytes);
  ::gsm_encode(encoder_, samples + kFrameSamples, bytes + kFirstBytes);
}

void LGSMWaveSink::WriteHeader() {
  const std::int64_t frames = std::min<std::int64_t>(position_, std::int64_t{blocks_} * kBlockFrames);
  const LHeaderBytes bytes =
      WriteHeaderWaveGSM(GetSampleRate(), std::uint32_t(frames), std::uint32_t(blocks_) * kBlockBytes);
  if (!file_.WriteAt(bytes.Data(), std::size_t(bytes.Size()), 0)) SetError();
}

void LGSMWaveSink::WriteBlock(int block) {
  unsigned char bytes[kBlockBytes + 1] = {};
  if (encoder_) Encode(bytes);
  if (!file_.WriteAt(bytes, kBlockBytes, OffsetOf(block))) SetError();
  blocks_ = block + 1;
}

void LGSMWaveSink::Write(const int* samples, int frames) {
  const int fitting = std::min(frames, kEndless - position_);
  if (fitting < frames) SetError();
  const int before = blocks_;
  for (int done = 0; done < fitting;) {
    const int within = position_ % kBlockFrames;
    const int count = std::min(fitting - done, kBlockFrames - within);
    std::copy_n(samples + done, count, pending_ + within);
    if (within + count == kBlockFrames) WriteBlock(position_ / kBlockFrames);
    position_ += count;
    done += count;
  }
  if (blocks_ != before) WriteHeader();
}

void LGSMWaveSink::Seek(int frame) {
  if (frame >= position_ || !file_.IsOpen()) return;
  const int oldBlock = position_ / kBlockFrames;
  position_ = std::max(frame, 0);
  const int block = position_ / kBlockFrames;
  if (block < oldBlock) Rewind(block);
  blocks_ = block;
  if (!file_.Truncate(OffsetOf(block))) SetError();
  WriteHeader();
}

// The encoder, too, is to know what came before.
void LGSMWaveSink::Rewind(int block) {
  LGSMDecoder decoder;
  ResetEncoder();
  for (int at = std::max(block - kPreRollBlocks, 0); at <= block; ++at) {
    unsigned char bytes[kBlockBytes + 1] = {};
    file_.ReadAt(bytes, kBlockBytes, OffsetOf(at));
    decoder.Decode(kGsmWave, bytes, pending_);
    if (at < block && encoder_) Encode(bytes);
  }
}
