// Recording as the user knows it: on and off, the connection to the streaming server, and the word when it goes wrong.
// Threads  [main]
#pragma once
#include <string>

#include "foundation/LTimerHandler.h"
#include "shell/TStreamConnection.h"

class TRecordCommandsHost {
 public:
  virtual void ShowRecordState(bool recording) = 0;
  virtual void ShowRecordAlert(const std::string& text) = 0;
  virtual void ShowInfoLine(const std::string& text) = 0;

 protected:
  ~TRecordCommandsHost() = default;
};

class TRecordCommands final : private LTimerHandler {
 public:
  TRecordCommands(DJConsole& console, TRecordCommandsHost& host)
      : console_(console), host_(host), connection_(console) {}

  void
  PrepareFolder();  // the default folder, made if it is missing; unfinished recordings in it get their final header
  void CmRecord();  // on or off
  bool StartTo(const std::string& path);
  void Shutdown();

 private:
  void EvTimer(int id) override;
  void Started(bool started);
  void CheckFailure();

  DJConsole& console_;
  TRecordCommandsHost& host_;
  TStreamConnection connection_;
};
