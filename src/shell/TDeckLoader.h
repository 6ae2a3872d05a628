// Brings a file into a deck, or says why not and leaves the deck as it was.
// Law      a wave or MP3 file is played as it is; any other is decoded into the cache first. Once that has begun the deck
//          is empty and shows how far it has come. Another track for the deck stops it.
// Threads  [main]
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "audiofile/convert/FileConverter.h"
#include "console/DJDeckPosition.h"

class DJConsole;

class TDeckLoaderHost {
 public:
  virtual void ShowLoadError(const std::string& text) = 0;
  virtual void ShowConvertError(const std::string& text) = 0;
  virtual void ShowConverting(DJDeckPosition deck, const std::string& path, int percent) = 0;
  virtual void EvDeckToBeCleared(DJDeckPosition deck) = 0;
  virtual void EvDeckCleared(DJDeckPosition deck) = 0;
  virtual void EvDeckLoaded(DJDeckPosition deck) = 0;
  virtual bool AskContinueWithLowDisk() = 0;

 protected:
  ~TDeckLoaderHost() = default;
};

class TDeckLoader final : private LQueuedNotifyDataHandler, private FileConversionAsker {
 public:
  TDeckLoader(DJConsole& console, TDeckLoaderHost& host) : console_(console), host_(host) {}
  ~TDeckLoader() override;

  // False: it did not open. True: it is loaded, or will be when it is decoded.
  bool LoadFileToDeck(DJDeckPosition deck, const std::string& path);
  void EvDeckEmptied(DJDeckPosition deck);  // by hand: what was to be loaded is not wanted any more
  bool IsConverting(DJDeckPosition deck) const;
  bool IsAnyConverting() const { return IsConverting(kDeckA) || IsConverting(kDeckB); }
  void StopConverting();  // and wait for it
  DJDeckPosition LastDeckLoaded() const { return lastLoaded_; }

 private:
  // What a deck waits for.
  struct Expected {
    std::string path;
    long ticket = 0;       // of the conversion; 0: nothing is wanted
    bool cleared = false;  // the deck shows how far it has come
    std::unique_ptr<FileConverter> converter;
  };

  void EvQueuedNotifyData(unsigned id, const void* data, unsigned long size) override;
  void EvConverted(const FileConversionDone& done);
  bool ContinueWithLowDisk() override { return host_.AskContinueWithLowDisk(); }
  bool LoadPlayable(DJDeckPosition deck, const std::string& path, const std::string& original);
  bool StartConverting(DJDeckPosition deck, const std::string& path);
  void ClearDeck(DJDeckPosition deck);

  DJConsole& console_;
  TDeckLoaderHost& host_;
  DJDeckPosition lastLoaded_ = kDeckA;
  Expected expected_[kDeckCount];
  std::vector<std::unique_ptr<FileConverter>> stopping_;  // told to stop, their end not yet heard
  long lastTicket_ = 0;
};
