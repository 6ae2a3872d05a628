#include "audiofile/mp3/LMP3File.h"

#include "audiofile/mp3/LMP3Source.h"

namespace LMP3File {

LSoundSource OpenSource(const std::string& path, bool fullScan) {
  constexpr bool kGapless = true;
  return LSoundSource::Make<LMP3Source>(path, fullScan, kGapless);
}

}  // namespace LMP3File
