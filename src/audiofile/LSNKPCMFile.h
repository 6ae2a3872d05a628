// Writes the samples of a wave file. While it grows its lengths are marks by which a reader knows that it is to follow.
// Units    frames
// Threads  one thread at a time. The file's lock is a shared one, so that readers see a writer at work.
// Failure  as its base.
#pragma once
#include <type_traits>

#include "audiofile/LRawFileDataSoundSink.h"
#include "audiofile/LWaveHeader.h"

class LSNKPCMFileBase : public LRawFileDataSoundSinkBase {
 protected:
  LSNKPCMFileBase(const std::string& path, LWaveTag tag, int rate, unsigned char channels, int sampleBytes,
                  Converter convert, int startFrame);
};

template <class Storage>
class LSNKPCMFile final : public LSNKPCMFileBase {
 public:
  LSNKPCMFile(const std::string& path, int rate, unsigned char channels, int startFrame)
      : LSNKPCMFileBase(path, std::is_same_v<Storage, LSFF32> ? lwtFloat : lwtPcm, rate, channels, Storage::kBytes,
                        ConvertSamplesOut<Storage>, startFrame) {}
};
