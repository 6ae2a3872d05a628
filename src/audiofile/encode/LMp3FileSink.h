// Encodes with the encoder's library and writes its frames.
// Units    frames; bytes in the file
// Threads  as LMp3Sink.h
// Failure  settings that the library refuses, or a file that cannot be made, give a sink with an error.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "audiofile/encode/LMp3EncodeSettings.h"
#include "foundation/LFile.h"
#include "sound/LSoundSink.h"

#if __has_include(<lame/lame.h>)
inline constexpr bool kHasMp3Library = true;
#else
inline constexpr bool kHasMp3Library = false;
#endif

struct lame_global_struct;

class LMp3FileSink final : public LSoundSinkBase {
 public:
  LMp3FileSink(const std::string& path, const LMp3EncodeSettings& settings, int rate, unsigned char channels);
  ~LMp3FileSink() override;
  void Write(const int* samples, int frames) override;

 private:
  bool Configure(const LMp3EncodeSettings& settings);
  void Encode(const int* samples, int frames);
  void Append(int bytes);  // what the encoder left in bytes_; negative: it failed
  void Finish();

  lame_global_struct* encoder_;
  LFileHandle file_;
  std::int64_t fileBytes_ = 0;
  std::vector<int> samples_;          // one block, full scale in 32 bits
  std::vector<unsigned char> bytes_;  // what one block can give at most
};

// An error sink in a build without the library.
LSoundSink OpenMp3FileSink(const std::string& path, const LMp3EncodeSettings& settings, int rate,
                           unsigned char channels);
