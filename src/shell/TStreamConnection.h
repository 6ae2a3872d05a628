// Keeps the connection to the streaming server: while recording with streaming configured it is looked for every two
// seconds, so that a server that starts later, or again, is picked up.
// Threads  [main]
#pragma once
#include "console/LNamedPipe.h"

class DJConsole;

class TStreamConnection {
 public:
  static constexpr int kRetryMs = 2000;
  explicit TStreamConnection(DJConsole& console) : console_(console) {}
  bool Tick();  // true: call again after kRetryMs
  void Close();

 private:
  DJConsole& console_;
  LNamedPipe npTaviStream_;
};
