#include "audiofile/LVocFile.h"

#include <optional>

#include "audiofile/LHeaderBytes.h"
#include "audiofile/LPCMLimits.h"
#include "audiofile/LVocSource.h"

namespace {

constexpr int kMagicBytes = 20, kHeaderBytes = 22;         // the magic, and with it the offset of the first block
constexpr const char* kMagic = "Creative Voice File\x1A";  // some files have "_" for a blank
constexpr int kMaxBlocks = 16384;                          // of all kinds; files in use have a few dozen
constexpr int kMaxAdpcmChannels = 2;

enum VocBlockType { vbtSound = 1, vbtContinue = 2, vbtSilence = 3, vbtExtended = 8, vbtSound9 = 9 };

bool HasMagic(const unsigned char* header) {
  return std::equal(header, header + kMagicBytes, kMagic, [](unsigned char have, char want) {
    return have == static_cast<unsigned char>(want) || (want == ' ' && have == '_');
  });
}

// What the blocks tell one after the other.
class Scan {
 public:
  explicit Scan(LFileHandle& file) : file_(file) {}
  LSoundError Run();
  LPCMData& Describe(LPCMData& data) const;

  const LVocBlocks& Blocks() const { return blocks_; }
  const LVocCompression* Compression() const { return FindVocCompression(compression_.value_or(0)); }

 private:
  struct Row {
    int type;
    int headerBytes;  // in front of the samples
    void (Scan::*read)(const unsigned char* header, std::int64_t start, std::int64_t length);
  };
  static const Row kRows[];

  void Sound(const unsigned char* header, std::int64_t start, std::int64_t length);
  void Continue(const unsigned char* header, std::int64_t start, std::int64_t length);
  void Silence(const unsigned char* header, std::int64_t start, std::int64_t length);
  void Extended(const unsigned char* header, std::int64_t start, std::int64_t length);
  void Sound9(const unsigned char* header, std::int64_t start, std::int64_t length);
  void AddSoundDataBlock(std::int64_t offset, std::int64_t bytes);

  static std::int64_t RateOf(int timeConstant) { return 1000000 / (256 - timeConstant); }
  void SetRate(std::int64_t rate) {
    if (!rate_) rate_ = rate;
  }
  void SetCompression(int compression) {
    if (!compression_) compression_ = compression;
  }

  LFileHandle& file_;
  LVocBlocks blocks_;
  std::optional<std::int64_t> rate_;  // Hz
  std::optional<int> compression_;
  int channels_ = 1;
};

const Scan::Row Scan::kRows[] = {
    {vbtSound, 2, &Scan::Sound},       {vbtContinue, 0, &Scan::Continue}, {vbtSilence, 3, &Scan::Silence},
    {vbtExtended, 4, &Scan::Extended}, {vbtSound9, 12, &Scan::Sound9},
};

void Scan::Sound(const unsigned char* header, std::int64_t start, std::int64_t length) {
  SetRate(RateOf(header[0]));
  SetCompression(header[1]);
  AddSoundDataBlock(start, length);
}

void Scan::Continue(const unsigned char* /*header*/, std::int64_t start, std::int64_t length) {
  AddSoundDataBlock(start, length);
}

void Scan::Silence(const unsigned char* header, std::int64_t /*start*/, std::int64_t /*length*/) {
  SetRate(RateOf(header[2]));
  blocks_.Add({0, 0, 1, GetLe16(header) + 1, true});
}

void Scan::Extended(const unsigned char* header, std::int64_t /*start*/, std::int64_t /*length*/) {
  channels_ = header[3] + 1;
  SetRate(256000000 / (std::int64_t{65536 - GetLe16(header)} * channels_));
  SetCompression(header[2]);
}

void Scan::Sound9(const unsigned char* header, std::int64_t start, std::int64_t length) {
  SetRate(GetLe32(header));
  channels_ = header[5];
  SetCompression(GetLe16(header + 6));
  AddSoundDataBlock(start, length);
}

void Scan::AddSoundDataBlock(std::int64_t offset, std::int64_t bytes) {
  const LVocCompression* compression = Compression();
  const std::int64_t frames = compression && channels_ > 0 ? compression->SamplesOf(bytes) / channels_ : 0;
  if (frames > 0) blocks_.Add({offset, bytes, frames, 1, false});
}

LSoundError Scan::Run() {
  unsigned char header[kHeaderBytes];
  if (file_.ReadAt(header, sizeof header, 0) != kHeaderBytes || !HasMagic(header)) return lseDamaged;
  std::int64_t at = std::max<int>(GetLe16(header + kMagicBytes), kHeaderBytes);
  for (int passed = 0; passed < kMaxBlocks && !blocks_.IsFull(); ++passed) {
    unsigned char bytes[4 + 12] = {};
    const std::int64_t got = file_.ReadAt(bytes, sizeof bytes, at);
    if (got < 4 || bytes[0] == 0) break;
    const std::int64_t length = GetLe32(bytes) >> 8;
    for (const Row& row : kRows)
      if (row.type == bytes[0] && length >= row.headerBytes && got >= 4 + row.headerBytes)
        (this->*row.read)(bytes + 4, at + 4 + row.headerBytes, length - row.headerBytes);
    at += 4 + length;
  }
  const LVocCompression* compression = Compression();
  if (!compression || (compression->adpcm && channels_ > kMaxAdpcmChannels)) return lseCodecMissing;
  return blocks_.count > 0 && IsPlayableFormat(rate_.value_or(0), channels_) ? lseNone : lseDamaged;
}

LPCMData& Scan::Describe(LPCMData& data) const {
  data.rate = int(rate_.value_or(0));
  data.channels = static_cast<unsigned char>(channels_);
  return data;
}

}  // namespace

LSoundSource LVocFile::OpenSource(const std::string& path) {
  LPCMData data;
  data.file = LFileHandle::OpenRead(path);
  if (!data.file.IsOpen()) return LSoundSource(lseCannotOpen);
  Scan scan(data.file);
  const LSoundError error = scan.Run();
  if (error != lseNone) return LSoundSource(error);
  return LSoundSource::Make<LVocSource>(std::move(scan.Describe(data)), scan.Blocks(), *scan.Compression());
}
