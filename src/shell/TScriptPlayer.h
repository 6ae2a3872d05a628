// Runs a script against the application: each event at its time, the way a user's action goes.
// Units    seconds since Start.
// Threads  [main]
#pragma once
#include "foundation/LTimerHandler.h"
#include "shell/TScript.h"

class TScriptHost {
 public:
  virtual bool IsScriptToWait() = 0;  // for a track that is still being decoded
  virtual void ScriptLoad(DJDeckPosition deck, const std::string& path) = 0;
  virtual void ScriptCommand(int id) = 0;
  virtual void ScriptCrossfade(int position) = 0;
  virtual void ScriptVolume(const TScriptEvent& event) = 0;
  virtual void ScriptSeek(DJDeckPosition deck, double seconds) = 0;
  virtual void ScriptPitch(DJDeckPosition deck, int slider) = 0;
  virtual void ScriptLoop(DJDeckPosition deck, double beats) = 0;
  virtual void ScriptBpm(DJDeckPosition deck, double bpm, int firstBeatFrame) = 0;
  virtual void ScriptScratch(const TScriptEvent& event) = 0;
  virtual void ScriptEffect(const TEffectAction& action) = 0;
  virtual void ScriptEqualizer(DJDeckPosition deck, int band, int position) = 0;
  virtual void ScriptState(const std::string& path) = 0;
  virtual void ScriptEnded(bool quit) = 0;  // by its own quit, or because nothing is left

 protected:
  ~TScriptHost() = default;
};

class TScriptPlayer final : private LTimerHandler {
 public:
  TScriptPlayer(TScript script, TScriptHost& host) : script_(std::move(script)), host_(host) {}
  void Start();

 private:
  void EvTimer(int id) override;
  void Run(const TScriptEvent& event);

  TScript script_;
  TScriptHost& host_;  // outlives this
  std::size_t next_ = 0;
  std::uint64_t startUs_ = 0;
};
