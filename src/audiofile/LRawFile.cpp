#include "audiofile/LRawFile.h"

#include "audiofile/LPCMLimits.h"
#include "audiofile/LSRCVOX.h"

namespace {

constexpr int kDialogicCodec = 0;

template <class Source>
LSoundSource Open(LPCMData&& data) {
  return LSoundSource::Make<Source>(std::move(data));
}

// All of a file as samples; files of 4 GiB and more count as empty.
LPCMData Describe(const std::string& path, int rate, int channels) {
  LPCMData data;
  data.file = LFileHandle::OpenRead(path);
  const std::int64_t size = data.file.Size();
  data.length = size < 0 || size > 0xFFFFFFFF ? 0 : std::uint32_t(size);
  data.rate = rate;
  data.channels = static_cast<unsigned char>(channels);
  return data;
}

}  // namespace

const LRawCodec kRawCodecs[9] = {
    {kDialogicCodec, "Dialogic ADPCM", Open<LSRCVOX>},
    {1, "G711 uLaw", Open<LRawFileDataSoundSource<LSFULAW>>},
    {2, "G711 aLaw", Open<LRawFileDataSoundSource<LSFALAW>>},
    {3, "16 Bit PCM (Intel Endian)", Open<LRawFileDataSoundSource<LSF16>>},
    {4, "8 Bit unsigniert", Open<LRawFileDataSoundSource<LSFU8>>},
    {5, "8 Bit signiert", Open<LRawFileDataSoundSource<LSFS8>>},
    {6, "16 Bit PCM (Big Endian)", Open<LRawFileDataSoundSource<LSFBE16>>},
    {7, "32 Bit float (Intel Endian)", Open<LRawFileDataSoundSource<LSFF32>>},
    {8, "32 Bit float (Big Endian)", Open<LRawFileDataSoundSource<LSFFRE32>>},
};

LSoundSource LRawFile::OpenSource(const std::string& path, const LRawSettings& settings) {
  for (const LRawCodec& codec : kRawCodecs) {
    if (codec.number != settings.codec) continue;
    if (!IsPlayableFormat(settings.rate, settings.channels)) return LSoundSource(lseDamaged);
    LPCMData data = Describe(path, settings.rate, settings.channels);
    return data.file.IsOpen() ? codec.open(std::move(data)) : LSoundSource(lseCannotOpen);
  }
  return LSoundSource(lseNoSource);
}

LSoundSource LRawFile::OpenSourceADPCM(const std::string& path, int rate, int channels) {
  return OpenSource(path, {rate, channels, kDialogicCodec});
}
