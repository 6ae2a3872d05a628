#include "audiofile/LWaveFile.h"

#include "audiofile/LGSMFile.h"
#include "audiofile/LIMAFile.h"
#include "audiofile/LPCMLimits.h"
#include "audiofile/LSNKPCMFile.h"
#include "audiofile/LSRCPCMFile.h"
#include "audiofile/LWavSourceDeleteWhenClosed.h"
#include "audiofile/mp3/LMP3File.h"

namespace {

// A wave file whose header has been read.
struct Opening {
  const std::string& path;
  LPCMData data;
  LWaveFormatEx format;
  bool growing;
};

using SourceOpener = LSoundSource (*)(Opening&& file);
using SinkOpener = LSoundSink (*)(const std::string& path, int rate, unsigned char channels, int startFrame);

template <class Storage>
LSoundSource OpenPcm(Opening&& file) {
  return LSoundSource::Make<LSRCPCMFile<Storage>>(std::move(file.data), file.growing);
}

template <class Storage>
LSoundSource OpenG711(Opening&& file) {
  return LSoundSource::Make<LRawFileDataSoundSource<Storage>>(std::move(file.data));
}

LSoundSource OpenIma(Opening&& file) { return LIMAWaveOpenSource(std::move(file.data), file.format.blockAlign); }
LSoundSource OpenGsm(Opening&& file) { return LGSMWaveOpenSource(std::move(file.data)); }
LSoundSource OpenMpeg(Opening&& file) { return LMP3File::OpenSource(file.path, false); }

template <LSoundError kError>
LSoundSource Refuse(Opening&& /*file*/) {
  return LSoundSource(kError);
}

struct SourceRow {
  std::uint16_t tag;
  int minBits, maxBits;
  SourceOpener open;
};
constexpr int kAnyBits = 0xffff;
constexpr SourceRow kSources[] = {
    {lwtPcm, 0, 8, OpenPcm<LSFU8>},  // 0 bits: damaged, but known to be played as 8
    {lwtPcm, 9, 16, OpenPcm<LSF16>},
    {lwtPcm, 17, 24, OpenPcm<LSFLE24>},
    {lwtPcm, 25, kAnyBits, OpenPcm<LSF32>},
    {lwtFloat, 32, 32, OpenPcm<LSFF32>},
    {lwtFloat, 64, 64, OpenPcm<LSFF64>},
    {lwtFloat, 0, kAnyBits, Refuse<lseDamaged>},
    {lwtALaw, 0, kAnyBits, OpenG711<LSFALAW>},
    {lwtMuLaw, 0, kAnyBits, OpenG711<LSFULAW>},
    {lwtImaAdpcm, 0, kAnyBits, OpenIma},
    {lwtDart, 0, kAnyBits, Refuse<lseLaterStage>},
    {lwtGsm, 0, kAnyBits, OpenGsm},
    {lwtG726, 0, kAnyBits, Refuse<lseLaterStage>},
    {lwtMpeg3, 0, kAnyBits, OpenMpeg},
};

SourceOpener FindOpener(const LWaveFormatEx& format) {
  for (const SourceRow& row : kSources)
    if (row.tag == format.tag && format.bits >= row.minBits && format.bits <= row.maxBits) return row.open;
  return Refuse<lseCodecMissing>;
}

template <class Storage>
LSoundSink OpenPcmSink(const std::string& path, int rate, unsigned char channels, int startFrame) {
  if (!IsPlayableFormat(rate, channels)) return {};
  LSoundSink sink = LSoundSink::Make<LSNKPCMFile<Storage>>(path, rate, channels, startFrame);
  return sink.HasError() ? LSoundSink() : sink;
}

struct SinkRow {
  int maxBits;
  SinkOpener open;
};
constexpr SinkRow kPcmSinks[] = {{8, OpenPcmSink<LSFU8>}, {16, OpenPcmSink<LSF16>}, {24, OpenPcmSink<LSFLE24>}};

template <LWaveTag kTag, class Storage>
LSoundSink OpenG711Sink(const std::string& path, int rate, unsigned char channels) {
  const LSinkContainer container{[](const LSinkHeader& about) { return WriteHeaderWaveG711(about, kTag); },
                                 kMaxWaveDataBytes, false, false};
  LSoundSink sink = LSoundSink::Make<LRawFileDataSoundSink<Storage>>(LFileHandle::OpenReadWriteShared(path, true),
                                                                     container, rate, channels);
  return sink.HasError() ? LSoundSink() : sink;
}

}  // namespace

LSoundSource LWaveFile::OpenSource(const std::string& path) {
  Opening file{path, {}, {}, false};
  file.data.file = LFileHandle::OpenRead(path);
  if (!file.data.file.IsOpen()) return LSoundSource(lseCannotOpen);
  const LSoundError error = ReadWaveHeader(file.data, file.format);
  if (error != lseNone) return LSoundSource(error);
  // Without a writer the file has all the samples it will ever have.
  file.growing = file.data.HasUnknownLength() && LFile::IsLockedByOther(path);
  return FindOpener(file.format)(std::move(file));
}

LSoundSource LWaveFile::OpenSourceDeletingFileWhenClosed(const std::string& path) {
  return LSoundSource::Make<LWavSourceDeleteWhenClosed>(OpenSource(path), path);
}

LSoundSink LWaveFile::OpenSink(const std::string& path, const LWaveFileFormat& format) {
  if (format.tag == lwtPcm) return OpenSinkPCM(path, format.rate, format.channels, format.bits, 0);
  if (format.tag == lwtFloat && format.bits == 32) return OpenPcmSink<LSFF32>(path, format.rate, format.channels, 0);
  if (format.tag == lwtGsm) return LGSMWaveOpenSink(path, format.rate, format.channels);
  return OpenSinkG711(path, format.rate, format.channels, format.tag, 0);
}

LSoundSink LWaveFile::OpenSinkPCM(const std::string& path, int rate, unsigned char channels, int bits, int startFrame) {
  for (const SinkRow& row : kPcmSinks)
    if (bits <= row.maxBits) return row.open(path, rate, channels, startFrame);
  return OpenPcmSink<LSF32>(path, rate, channels, startFrame);
}

LSoundSink LWaveFile::OpenSinkG711(const std::string& path, int rate, unsigned char channels, std::uint16_t tag,
                                   int /*startFrame*/) {
  if (!IsPlayableFormat(rate, channels)) return {};
  if (tag == lwtALaw) return OpenG711Sink<lwtALaw, LSFALAW>(path, rate, channels);
  if (tag == lwtMuLaw) return OpenG711Sink<lwtMuLaw, LSFULAW>(path, rate, channels);
  return {};
}
