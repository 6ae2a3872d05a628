#include "audiofile/LGSMFile.h"

#include "audiofile/LDecodedSource.h"
#include "audiofile/LGSMDecoder.h"
#include "audiofile/LGSMWaveSink.h"
#include "audiofile/LPCMLimits.h"

namespace {

constexpr int kGsmRate = 8000;  // Hz
constexpr int kMarkFrames = 2 * kGsmRate, kPreRollFrames = kGsmRate, kMaxRunFrames = 60 * kGsmRate;

class LGSMSource final : public LBlockSource {
 public:
  LGSMSource(LPCMData&& data, const LGSMPacking& packing, std::int64_t frames)
      : LGSMSource(packing, frames, data.BytesInFile() / packing.blockBytes, std::move(data)) {}

 private:
  LGSMSource(const LGSMPacking& packing, std::int64_t frames, std::int64_t blocksInFile, LPCMData&& data)
      : LBlockSource(std::move(data), kPeak16, packing.blockBytes, packing.blockFrames, frames),
        packing_(packing),
        marks_(std::size_t(blocksInFile / MarkBlocks()) + 1) {}

  int MarkBlocks() const { return kMarkFrames / packing_.blockFrames; }

  void DecodeBlock(int* out, int block, const unsigned char* bytes, int size) override {
    if (block != next_) {
      ChooseStart(block);
      while (next_ < block) DecodeNext(out, bytes, LoadBlock(next_));
      size = LoadBlock(block);
    }
    DecodeNext(out, bytes, size);
  }

  void DecodeNext(int* out, const unsigned char* bytes, int size) {
    if (size == packing_.blockBytes)
      decoder_.Decode(packing_, bytes, out);
    else
      std::fill_n(out, packing_.blockFrames, 0);
    ++next_;
    const std::size_t mark = std::size_t(next_ / MarkBlocks());
    if (exact_ && next_ % MarkBlocks() == 0 && mark == reached_ && reached_ < marks_.size())
      marks_[reached_++] = decoder_;
  }

  void ChooseStart(int block) {
    const int mark = int(std::min(std::size_t(block / MarkBlocks()), reached_ - 1));
    if (!exact_ || next_ > block || next_ < mark * MarkBlocks())
      Start(marks_[std::size_t(mark)], mark * MarkBlocks(), true);
    if (block - next_ > kMaxRunFrames / packing_.blockFrames)
      Start(LGSMDecoder(), block - kPreRollFrames / packing_.blockFrames, false);
  }

  void Start(const LGSMDecoder& decoder, int block, bool exact) {
    decoder_ = decoder;
    next_ = block;
    exact_ = exact;
  }

  LGSMPacking packing_;
  LGSMDecoder decoder_;
  int next_ = 0;                    // the block that it is ready for
  bool exact_ = true;               // it has been through all before
  std::vector<LGSMDecoder> marks_;  // before every block of MarkBlocks()
  std::size_t reached_ = 1;         // how many of them are known
};

LSoundSource OpenBlocks(LPCMData&& data, const LGSMPacking& packing) {
  const std::int64_t bytes = data.HasUnknownLength() ? data.BytesInFile() : data.length;
  std::int64_t frames = bytes / packing.blockBytes * packing.blockFrames;
  if (data.frames > 0) frames = std::min<std::int64_t>(frames, data.frames);
  return LSoundSource::Make<LGSMSource>(std::move(data), packing, frames);
}

}  // namespace

LSoundSource LGSMFile::OpenSource(const std::string& path) {
  LPCMData data;
  data.file = LFileHandle::OpenRead(path);
  if (!data.file.IsOpen()) return LSoundSource(lseCannotOpen);
  unsigned char first = 0;
  if (data.file.ReadAt(&first, 1, 0) != 1 || first >> 4 != kGsmMark) return LSoundSource(lseDamaged);
  data.length = std::uint32_t(std::min<std::int64_t>(data.file.Size(), LPCMData::kUnknownLength));
  data.rate = kGsmRate;
  data.channels = 1;
  return OpenBlocks(std::move(data), kGsmBare);
}

LSoundSource LGSMWaveOpenSource(LPCMData&& data) {
  if (data.channels != 1) return LSoundSource(lseDamaged);
  return OpenBlocks(std::move(data), kGsmWave);
}

LSoundSink LGSMWaveOpenSink(const std::string& path, int rate, unsigned char channels) {
  if (channels != 1 || !IsPlayableFormat(rate, channels)) return {};
  LSoundSink sink = LSoundSink::Make<LGSMWaveSink>(path, rate);
  return sink.HasError() ? LSoundSink() : sink;
}
