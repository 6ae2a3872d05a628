// How fast a track is decoded into the cache, and what memory that takes: FLAC, AAC and Ogg files of four minutes.
//   conversion [SECONDS]
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "audiofile/TGenSourceLadder.h"
#include "audiofile/convert/FileConversion.h"
#include "foundation/LClock.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"
#include "foundation/LPreferences.h"

namespace {

class Conversion final : public FileConversion {
 public:
  using FileConversion::FileConversion;
  LProcessResult result = lprFailed;

 private:
  void ConversionComplete(LProcessResult ended) override { result = ended; }
  LProcessResult PrepareSoundSource(LSoundSource& source) override {
    LGenSourceOpenInterfaceProcess interface(process_);
    return ProcessGenSourceOpenSource(source, Source(), interface, true, "");
  }
  LProcessResult ProcessSourceToSink(LPRSourceToSink& copy) override { return Process(process_, copy); }
  LProcessInterface& WaitingProcess() override { return process_; }
  LProcessInterfaceVoid process_;
};

// Kilobytes of the most memory this process ever had.
long HighestMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("VmHWM:")) return std::atol(line.c_str() + 6);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 240;
  char pattern[] = "/tmp/tavi-conversion-XXXXXX";
  const std::string folder = ::mkdtemp(pattern);
  LFolders folders(folder);
  LMemoryPreferences preferences;
  LPlatformServices services;
  services.folders = &folders;
  services.preferences = &preferences;
  LPlatform::Fill(services);
  const std::string make = "cd " + folder + " && sox -n -r 44100 -c 2 -b 16 in.wav synth " + std::to_string(seconds) +
                           " pluck E2 sine 220 pinknoise gain -6 remix 1,3 2,3 && for e in flac m4a ogg; do ffmpeg -v "
                           "error -i in.wav a.$e || exit 1; done";
  if (std::system(make.c_str()) != 0) return 1;
  for (const std::string name : {"a.flac", "a.m4a", "a.ogg"}) {
    const LRealClock clock;
    const auto start = clock.NowUs();
    Conversion conversion(folder + "/" + name);
    conversion.Convert();
    const double took = double(clock.NowUs() - start) / 1e6;
    std::printf("%-7s result %d, %d s of sound in %.2f s: %.0f times real time; at most %ld MB so far\n", name.c_str(),
                conversion.result, seconds, took, seconds / took, HighestMemory() / 1024);
  }
  std::filesystem::remove_all(folder);
}
