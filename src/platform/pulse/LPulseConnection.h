// The connection to a PulseAudio or PipeWire server on an event thread of our own. It comes back by itself after the
// server went away, and lets the streams look after themselves several times a second.
// Order    the event thread calls LPulseUser::Tick every kTickMs, and ConnectionLost before the context goes.
// Units    milliseconds
// Threads  construction, WaitUntil and the lists [main]; LPulseUser on the event thread, where audio is rendered too.
//          Everything that touches libpulse objects holds an LPulseLock, but for the event thread, which has it always.
// Failure  without a server the constructor returns within kConnectLimitMs and the lists are empty.
#pragma once
#include <pulse/pulseaudio.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/LDeviceMessages.h"
#include "sound/LSoundBackend.h"

class LPulseUser {
 public:
  virtual void Tick(std::uint32_t nowMs) = 0;
  virtual void ConnectionLost() = 0;

 protected:
  ~LPulseUser() = default;
};

struct LPulseDevice {
  LSoundDeviceInfo info;
  std::string id;  // the server's name of it
  pa_channel_map map{};
};

class LPulseConnection {
 public:
  static constexpr unsigned kConnectLimitMs = 800, kListLimitMs = 1000, kTickMs = 250;

  LPulseConnection();
  ~LPulseConnection();
  LPulseConnection(const LPulseConnection&) = delete;
  LPulseConnection& operator=(const LPulseConnection&) = delete;

  bool IsRunning() const { return running_; }     // false: the machine gave no event thread
  std::vector<LPulseDevice> Devices(bool input);  // an empty list: no server, or it does not answer

  // [main, lock] Waits on the event thread's signals; false: not in time.
  bool WaitUntil(const std::function<bool()>& condition, unsigned limitMs);

  // [lock]
  bool IsReady() const;
  pa_context* Context() const { return context_; }
  pa_mainloop_api* Api() const { return pa_threaded_mainloop_get_api(loop_); }
  pa_threaded_mainloop* Loop() const { return loop_; }
  void Signal() { pa_threaded_mainloop_signal(loop_, 0); }
  void Add(LPulseUser& user) { users_.push_back(&user); }
  void Remove(LPulseUser& user) { std::erase(users_, &user); }

  static std::uint32_t NowMs();
  LDeviceMessages messages;

 private:
  void Connect();
  void Disconnect();
  void OnState();
  void OnTick();
  void ScheduleTick();

  pa_threaded_mainloop* loop_ = nullptr;
  pa_context* context_ = nullptr;
  pa_time_event* tick_ = nullptr;
  std::vector<LPulseUser*> users_;
  std::uint32_t lastConnectMs_ = 0;
  bool running_ = false;
};

class LPulseLock {
 public:
  explicit LPulseLock(const LPulseConnection& connection) : loop_(connection.Loop()) {
    pa_threaded_mainloop_lock(loop_);
  }
  ~LPulseLock() { pa_threaded_mainloop_unlock(loop_); }
  LPulseLock(const LPulseLock&) = delete;
  LPulseLock& operator=(const LPulseLock&) = delete;

 private:
  pa_threaded_mainloop* loop_;
};

// What the callbacks of libpulse for sinks and for sources have in common.
LPulseDevice MakePulseDevice(const char* name, const char* description, const pa_sample_spec& spec,
                             const pa_channel_map& map);
