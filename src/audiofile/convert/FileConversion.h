// Decodes one file into the cache: 16-bit stereo at 44100 Hz, the form in which a deck seeks fast and exactly.
// Law      the wave is complete or not there: a stop, an error and a full disk remove it. What only waits for another
//          conversion of the same file takes that one's result.
// Units    progress in percent
// Threads  CheckCache [main]; Convert [worker].
// Failure  lprFailed; Error() then has the reason in the user's words.
#pragma once
#include <string>

#include "audiofile/convert/LFileCache.h"
#include "audiofile/convert/LPRSourceToSink.h"
#include "foundation/LMutex.h"

// What to do when the disk runs low. [main]
class FileConversionAsker {
 public:
  virtual ~FileConversionAsker() = default;
  virtual bool ContinueWithLowDisk() = 0;
};

class FileConversion {
 public:
  explicit FileConversion(std::string source);
  virtual ~FileConversion() = default;
  FileConversion(const FileConversion&) = delete;
  FileConversion& operator=(const FileConversion&) = delete;

  // Whether a file has to be converted before a deck plays it: all but waves and MP3 files that open.
  static bool NeedConvert(const std::string& path);

  // True: it is there already and ConversionComplete has been called. `asker` null: the disk's state is not asked.
  bool CheckCache(FileConversionAsker* asker, bool& cancelled);
  void Convert();

  const std::string& Source() const { return source_; }
  std::string CachedPath() const;  // [any]

 protected:
  virtual void ConversionComplete(LProcessResult result) = 0;
  virtual LProcessResult PrepareSoundSource(LSoundSource& source) = 0;
  virtual LProcessResult ProcessSourceToSink(LPRSourceToSink& copy) = 0;
  virtual LProcessInterface& WaitingProcess() = 0;

 private:
  LProcessResult ConvertToCache();
  LProcessResult WriteWave(const std::string& cached);

  std::string source_;
  mutable LMutex mutex_;  // guards cached_
  std::string cached_;
};
