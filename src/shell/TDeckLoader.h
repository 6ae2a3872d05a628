// Brings a file into a deck, or says why not and leaves the deck as it was.
// Threads  [main]
#pragma once
#include <string>

#include "console/DJDeckPosition.h"

class DJConsole;

class TDeckLoaderHost {
 public:
  virtual void ShowLoadError(const std::string& text) = 0;
  virtual void EvDeckToBeCleared(DJDeckPosition deck) = 0;
  virtual void EvDeckCleared(DJDeckPosition deck) = 0;
  virtual void EvDeckLoaded(DJDeckPosition deck) = 0;

 protected:
  ~TDeckLoaderHost() = default;
};

class TDeckLoader {
 public:
  TDeckLoader(DJConsole& console, TDeckLoaderHost& host) : console_(console), host_(host) {}
  bool LoadFileToDeck(DJDeckPosition deck, const std::string& path);
  DJDeckPosition LastDeckLoaded() const { return lastLoaded_; }

 private:
  DJConsole& console_;
  TDeckLoaderHost& host_;
  DJDeckPosition lastLoaded_ = kDeckA;
};
