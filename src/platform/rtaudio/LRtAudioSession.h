// The one place that speaks to RtAudio, of both generations: 5 throws and counts devices, 6 returns codes and gives
// ids. Every exception ends here. A session is one RtAudio object with one open stream.
// Units    frames, Hz
// Threads  [any], one at a time; every call may hang in the library, so callers go through RunBounded.
// Failure  false or an empty list
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "sound/LSoundBackend.h"

// What a stream calls back. Output: `out` has signed 32-bit samples; input: `in` has 32-bit floats; the other is null.
class LRtAudioClient {
 public:
  virtual ~LRtAudioClient() = default;
  virtual void Process(void* out, const void* in, int frames) = 0;  // [device]
  virtual void Failed() = 0;                                        // [any] the library reported an error
};

struct LRtAudioRequest {
  std::string api;         // "alsa", "jack", "coreaudio"
  std::string deviceName;  // as listed; empty: the default one
  bool input = false;
  int channels = 2;    // at most; see LRtAudioGrant
  int sampleRate = 0;  // 0: the device's own
  int sliceFrames = kWantedSliceFrames;
};

struct LRtAudioGrant {
  std::string deviceName;
  int channels = 0;  // of the stream: not more than the device has
  int deviceChannels = 0;
  int sampleRate = 0;
  int sliceFrames = 0;
};

class LRtAudioSession {
 public:
  static std::vector<LSoundDeviceInfo> List(const std::string& api, bool input);

  LRtAudioSession();
  ~LRtAudioSession();  // closes
  LRtAudioSession(const LRtAudioSession&) = delete;
  LRtAudioSession& operator=(const LRtAudioSession&) = delete;

  bool Open(const LRtAudioRequest& request, std::shared_ptr<LRtAudioClient> client);
  const LRtAudioGrant& Grant() const { return grant_; }
  bool Start();
  void Abort();

 private:
  struct Library;
  std::shared_ptr<LRtAudioClient> client_;  // freed after the library
  std::unique_ptr<Library> library_;
  LRtAudioGrant grant_;
};
