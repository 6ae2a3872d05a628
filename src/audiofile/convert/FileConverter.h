// Converts one file at a time for a deck, on a thread of its own.
// Law      progress and the end reach the main thread as notifications: kProgress with FileConversionProgress, the first
//          one with 0 when the file has been understood; kComplete with FileConversionDone. A stop is no failure:
//          lprStopped.
// Units    progress in percent
// Threads  [main]; the conversion runs on its thread, in an offline run between two slices.
// Failure  as FileConversion
#pragma once
#include <climits>
#include <memory>

#include "audiofile/convert/FileConversion.h"
#include "foundation/LStepThread.h"
#include "foundation/LThreadRunOnMainThread.h"

struct FileConversionProgress {
  int percent, deck;
};
struct FileConversionDone {
  LProcessResult result;
  int deck;
  long value;  // of the caller
  char source[PATH_MAX], cached[PATH_MAX];
  char reason[2 * PATH_MAX];  // why it failed, in the user's words; may be empty
};

class FileConversionForDeck;

class FileConverter final : private LStepThread {
 public:
  enum Notification : unsigned { kComplete = 1, kProgress = 2 };
  static constexpr int kNoDeck = 9;

  FileConverter();
  ~FileConverter() override;

  // False: one is running. If the file is in the cache already, the notification of its end is posted at once.
  bool ConvertFileForDeck(const std::string& path, LQueuedNotifyDataHandler& handler, int deck, long value,
                          FileConversionAsker* asker);
  bool IsConverting() const;
  void StopConverting();          // the notification tells when it has stopped
  void SetDeck(int deck);         // of the running conversion's notifications
  std::string GetSource() const;  // of the running conversion; empty: none
  std::string GetCachePath() const;

 private:
  LStepResult Step() override;

  mutable LMutex mutex_;
  std::unique_ptr<FileConversionForDeck> conversion_;
};
