#include "audiofile/LSNKPCMFile.h"

namespace {

LHeaderBytes HeaderPcm(const LSinkHeader& about) { return WriteHeaderWave(about, lwtPcm); }
LHeaderBytes HeaderFloat(const LSinkHeader& about) { return WriteHeaderWave(about, lwtFloat); }

}  // namespace

LSNKPCMFileBase::LSNKPCMFileBase(const std::string& path, LWaveTag tag, int rate, unsigned char channels,
                                 int sampleBytes, Converter convert, int startFrame)
    : LRawFileDataSoundSinkBase(LFileHandle::OpenReadWriteShared(path, false),
                                {tag == lwtFloat ? HeaderFloat : HeaderPcm, kMaxWaveDataBytes, true, false}, rate,
                                channels, sampleBytes, convert, startFrame) {}
