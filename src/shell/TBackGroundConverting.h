// Restores cached waves that have gone, one after the other, while the program runs.
// Law      an entry is converted if its wave is missing and its source is there; it counts as not playable until that has
//          ended. A busy converter is asked again in kBusyMs, the whole list in kAgainMs.
// Units    ms
// Threads  [main]
#pragma once
#include <string>

#include "audiofile/convert/FileConverter.h"
#include "foundation/LTimerHandler.h"

// The tracks whose waves are kept; the list may change between two calls.
class TCachedTracks {
 public:
  struct Track {
    std::string path, originalPath;
    bool playable = true;
  };
  virtual int Count() const = 0;
  virtual Track Get(int index) const = 0;
  virtual void SetPlayable(int index, bool playable) = 0;
  virtual void EvRestored(const FileConversionDone& done) = 0;

 protected:
  ~TCachedTracks() = default;
};

class TBackGroundConverting final : private LTimerHandler, private LQueuedNotifyDataHandler {
 public:
  static constexpr int kBusyMs = 10000, kAgainMs = 30000;
  explicit TBackGroundConverting(TCachedTracks& tracks) : tracks_(tracks) {}
  ~TBackGroundConverting() override;

  void StartBackGroundConverting();
  FileConverter& Converter() { return converter_; }

 private:
  void EvTimer(int id) override;
  void EvQueuedNotifyData(unsigned id, const void* data, unsigned long size) override;
  bool IsToRestore(const TCachedTracks::Track& track) const;

  TCachedTracks& tracks_;
  FileConverter converter_;
};
