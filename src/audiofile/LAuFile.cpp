#include "audiofile/LAuFile.h"

#include "audiofile/LHeaderBytes.h"
#include "audiofile/LPCMLimits.h"
#include "audiofile/LRawFileDataSoundSource.h"

namespace {

constexpr int kHeaderBytes = 24;  // magic, data offset, data length, encoding, rate, channels: big-endian, 32 bits each

template <class Storage>
LSoundSource OpenData(LPCMData&& data) {
  return LSoundSource::Make<LRawFileDataSoundSource<Storage>>(std::move(data));
}

struct EncodingRow {
  std::uint32_t encoding;
  LSoundSource (*open)(LPCMData&& data);
};
constexpr EncodingRow kEncodings[] = {
    {1, OpenData<LSFULAW>},
    {2, OpenData<LSFS8>},
    {3, OpenData<LSFBE16>},
    {27, OpenData<LSFALAW>},
};

}  // namespace

LSoundSource LAuFile::OpenSource(const std::string& path) {
  LPCMData data;
  data.file = LFileHandle::OpenRead(path);
  if (!data.file.IsOpen()) return LSoundSource(lseCannotOpen);
  unsigned char header[kHeaderBytes];
  if (data.file.ReadAt(header, sizeof header, 0) != kHeaderBytes || !IsId(header, ".snd"))
    return LSoundSource(lseDamaged);
  const std::uint32_t encoding = GetBe32(header + 12), rate = GetBe32(header + 16), channels = GetBe32(header + 20);
  if (!IsPlayableFormat(rate, channels)) return LSoundSource(lseDamaged);
  data.start = kHeaderBytes;
  data.length = GetBe32(header + 8);
  data.rate = int(rate);
  data.channels = static_cast<unsigned char>(channels);
  for (const EncodingRow& row : kEncodings)
    if (row.encoding == encoding) return row.open(std::move(data));
  return LSoundSource(lseCodecMissing);
}
