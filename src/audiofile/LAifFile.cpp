#include "audiofile/LAifFile.h"

#include "audiofile/LPCMLimits.h"

namespace {

template <class Storage>
LSoundSource OpenData(LPCMData&& data) {
  return LSoundSource::Make<LRawFileDataSoundSource<Storage>>(std::move(data));
}

struct SourceRow {
  const char* compression;
  int maxBits;
  LSoundSource (*open)(LPCMData&& data);
};
constexpr int kAnyBits = 0xffff;
constexpr SourceRow kSources[] = {
    {"NONE", 8, OpenData<LSFS8>},           {"NONE", 16, OpenData<LSFBE16>},
    {"NONE", 24, OpenData<LSFBE24>},        {"NONE", kAnyBits, OpenData<LSFBE32>},
    {"twos", 8, OpenData<LSFS8>},           {"twos", 16, OpenData<LSFBE16>},
    {"twos", 24, OpenData<LSFBE24>},        {"twos", kAnyBits, OpenData<LSFBE32>},
    {"sowt", 8, OpenData<LSFS8>},           {"sowt", 16, OpenData<LSF16>},
    {"sowt", 24, OpenData<LSFLE24>},        {"sowt", kAnyBits, OpenData<LSF32>},
    {"fl32", kAnyBits, OpenData<LSFFRE32>}, {"FL32", kAnyBits, OpenData<LSFFRE32>},
    {"alaw", kAnyBits, OpenData<LSFALAW>},  {"ALAW", kAnyBits, OpenData<LSFALAW>},
    {"ulaw", kAnyBits, OpenData<LSFULAW>},  {"ULAW", kAnyBits, OpenData<LSFULAW>},
};

LHeaderBytes WriteHeaderAIFF_8PCM(const LSinkHeader& about) { return WriteHeaderAIFF(about, 8); }
LHeaderBytes WriteHeaderAIFF_16PCM(const LSinkHeader& about) { return WriteHeaderAIFF(about, 16); }
LHeaderBytes WriteHeaderAIFF_24PCM(const LSinkHeader& about) { return WriteHeaderAIFF(about, 24); }
LHeaderBytes WriteHeaderAIFF_32PCM(const LSinkHeader& about) { return WriteHeaderAIFF(about, 32); }
LHeaderBytes WriteHeaderAIFC_16PCM_LE(const LSinkHeader& about) { return WriteHeaderAIFC(about, afftSowt); }
LHeaderBytes WriteHeaderAIFC_ALAW(const LSinkHeader& about) { return WriteHeaderAIFC(about, afftALaw); }
LHeaderBytes WriteHeaderAIFC_ULAW(const LSinkHeader& about) { return WriteHeaderAIFC(about, afftMuLaw); }

using Header = LHeaderBytes (*)(const LSinkHeader& about);

template <class Storage, Header kHeader, bool kAifc>
LSoundSink OpenSinkAs(const std::string& path, int rate, unsigned char channels) {
  if (!IsPlayableFormat(rate, channels)) return {};
  LSoundSink sink = LSoundSink::Make<LRawFileDataSoundSink<Storage>>(
      LFileHandle::OpenReadWriteShared(path, true), LSinkContainer{kHeader, kMaxAiffDataBytes, !kAifc, kAifc}, rate,
      channels);
  return sink.HasError() ? LSoundSink() : sink;
}

struct SinkRow {
  AIFFFormatType type;
  int maxBits;
  LSoundSink (*open)(const std::string& path, int rate, unsigned char channels);
};
constexpr SinkRow kSinks[] = {
    {afftPcm, 8, OpenSinkAs<LSFBE8, WriteHeaderAIFF_8PCM, false>},
    {afftPcm, 16, OpenSinkAs<LSFBE16, WriteHeaderAIFF_16PCM, false>},
    {afftPcm, 24, OpenSinkAs<LSFBE24, WriteHeaderAIFF_24PCM, false>},
    {afftPcm, kAnyBits, OpenSinkAs<LSFBE32, WriteHeaderAIFF_32PCM, false>},
    {afftSowt, kAnyBits, OpenSinkAs<LSF16, WriteHeaderAIFC_16PCM_LE, true>},
    {afftALaw, 8, OpenSinkAs<LSFALAW, WriteHeaderAIFC_ALAW, true>},
    {afftMuLaw, 8, OpenSinkAs<LSFULAW, WriteHeaderAIFC_ULAW, true>},
};

}  // namespace

LSoundSource LAifFile::OpenSource(const std::string& path) {
  LPCMData data;
  data.file = LFileHandle::OpenRead(path);
  if (!data.file.IsOpen()) return LSoundSource(lseCannotOpen);
  LAifFormat format;
  const LSoundError error = AIFFOpenHeader(data, format);
  if (error != lseNone) return LSoundSource(error);
  for (const SourceRow& row : kSources)
    if (std::strcmp(row.compression, format.compression) == 0 && format.bits <= row.maxBits)
      return row.open(std::move(data));
  return LSoundSource(lseLaterStage);
}

LSoundSink LAifFile::OpenAIFFSink(const std::string& path, int rate, unsigned char channels, int bits,
                                  AIFFFormatType type) {
  for (const SinkRow& row : kSinks)
    if (row.type == type && bits <= row.maxBits) return row.open(path, rate, channels);
  return {};
}

LSoundSink LAifFile::OpenSinkAIFFC(const std::string& path, int rate, unsigned char channels, int bits,
                                   AIFFFormatType type) {
  return type == afftPcm ? LSoundSink() : OpenAIFFSink(path, rate, channels, bits, type);
}
