#include "audiofile/ffmpeg/LSoundDecoder.h"

#include <algorithm>
#include <iterator>

#include "audiofile/LHeaderBytes.h"

namespace {

constexpr int kAacRates[] = {96000, 88200, 64000, 48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000, 7350};

// 3GPP TS 26.101: bytes of a frame by its type, the byte with the type included.
constexpr int kAmrFrameBytes[16] = {13, 14, 16, 18, 20, 21, 27, 32, 6, 1, 1, 1, 1, 1, 1, 1};
constexpr char kAmrMagic[] = "#!AMR\n";

}  // namespace

LSoundDecoder::LSoundDecoder(std::vector<std::string> command, int rate, unsigned char channels, bool& failed)
    : command_(std::move(command)), rate_(rate), channels_(channels) {
  Restart();
  failed = !child_.IsRunning();
}

void LSoundDecoder::Restart() {
  answersDue_ = 0;
  child_.Start(command_, LChildProcess::ToChild | LChildProcess::FromChild);
  Restarted();
}

bool LSoundDecoder::WriteSoundPacket(const unsigned char* packet, unsigned long length) {
  LHeaderBytes size;
  size.Be32(std::uint32_t(length));
  if (!child_.Write(size.Data(), std::size_t(size.Size())) || !child_.Write(packet, length)) return false;
  ++answersDue_;
  return true;
}

bool LSoundDecoder::ReadAnswer(void* bytes, std::size_t count) {
  if (child_.CanRead(kAnswerMs) && child_.Read(bytes, count) == std::int64_t(count)) return true;
  child_.Kill();
  answersDue_ = 0;
  return false;
}

int LSoundDecoder::ReadSound(short* out, int capacity) {
  unsigned char size[4];
  if (answersDue_ == 0 || !ReadAnswer(size, sizeof size)) return 0;
  --answersDue_;
  const std::uint32_t bytes = GetBe32(size);
  if (bytes > std::min<std::uint32_t>(kMaxAnswerBytes, std::uint32_t(capacity) * 2)) {
    child_.Kill();
    answersDue_ = 0;
    return 0;
  }
  return bytes == 0 || ReadAnswer(out, bytes) ? int(bytes / 2) : 0;
}

int LAACDecoder::RateOfExtraData(const unsigned char* data, int length) {
  if (length < 2) return 0;
  const unsigned index = (unsigned(data[0]) & 7) << 1 | unsigned(data[1]) >> 7;
  return index < std::size(kAacRates) ? kAacRates[index] : 0;
}

bool LAMRDecoder::WriteSoundPacket(const unsigned char* packet, unsigned long length) {
  if (!started_ && !child_.Write(kAmrMagic, sizeof kAmrMagic - 1)) return false;
  started_ = true;
  if (!child_.Write(packet, length)) return false;
  for (unsigned long at = 0; at < length; at += unsigned(kAmrFrameBytes[packet[at] >> 3 & 15])) ++answersDue_;
  return true;
}

int LAMRDecoder::ReadSound(short* out, int capacity) {
  if (answersDue_ == 0 || capacity < kFrameSamples || !ReadAnswer(out, kFrameSamples * 2)) return 0;
  --answersDue_;
  return kFrameSamples;
}
