// The machine's sound devices, as the players and the recorder need them. Implemented in platform/: libpulse, RtAudio,
// null (always there) and offline.
// Signal   an output stream asks its renderer for signed 32-bit interleaved samples; an input stream hands 32-bit floats
//          (-1..1) to its receiver.
// Units    frames; rates in Hz. A device index counts the list from 0; kDefaultDevice is the system's default.
// Threads  everything [main], but an input, which the recorder's thread opens, stops and frees. LSoundRenderer and
//          LSoundInputReceiver are called on [device] (offline: on the main loop, in that role). The render callback
//          copies, writes one pipe byte, takes no lock but the render lock, allocates and posts nothing.
// Failure  a failure is false or a null stream; nothing throws. A device that vanishes stops calling back; the backend
//          looks for it and then for the default device every 2 s, and says so through TakeMessage.
#pragma once
#include <memory>
#include <string>
#include <vector>

inline constexpr int kDefaultDevice = -1;
inline constexpr int kWantedSliceFrames = 512;

struct LSoundDeviceInfo {
  std::string name;  // as shown; unique in its list (a second equal name gets " (2)")
  int channels = 0;
  int preferredRate = 0;                  // 0: unknown
  std::vector<std::string> channelNames;  // one per channel; empty: only the count is known
  bool isDefault = false;
};

class LSoundRenderer {
 public:
  // Fills `frames` frames of `channels` interleaved samples; the whole block, zeros where there is nothing.
  virtual void RenderData(int* out, int frames, int channels) = 0;  // [device]

 protected:
  ~LSoundRenderer() = default;
};

class LSoundInputReceiver {
 public:
  virtual void InputData(const float* in, int frames, int channels) = 0;  // [device]

 protected:
  ~LSoundInputReceiver() = default;
};

// One open output. Closed and freed by the destructor; after Stop or destruction no callback runs any more.
class LSoundOutputStream {
 public:
  virtual ~LSoundOutputStream() = default;
  virtual bool Start() = 0;
  virtual void Stop() = 0;                              // pending samples of the device are dropped
  virtual void Reset() = 0;                             // drops what waits in the device; nothing else
  virtual int MaxSliceFrames() const = 0;               // granted; the largest single request
  virtual int ExtraLatencyFrames() const { return 0; }  // a resampler's delay, in source frames
  virtual int DeviceChannels() const = 0;
};

class LSoundInputStream {
 public:
  virtual ~LSoundInputStream() = default;
  virtual bool Start() = 0;
  virtual void Stop() = 0;
  virtual int SampleRate() const = 0;  // of the hardware: what InputData delivers
};

struct LSoundStreamFormat {
  int sampleRate = 44100;
  int channels = 2;
  int sliceFrames = kWantedSliceFrames;
};

class LSoundBackend {
 public:
  virtual ~LSoundBackend() = default;
  virtual std::string Name() const = 0;  // "pulse", "alsa", "jack", "null", "offline"
  virtual std::vector<LSoundDeviceInfo> OutputDevices() = 0;
  virtual std::vector<LSoundDeviceInfo> InputDevices() = 0;

  // Opens a stream of format.channels channels: stream channel c plays on device channel c. A device with fewer channels
  // drops the rest. null: it cannot be opened.
  virtual std::unique_ptr<LSoundOutputStream> OpenOutput(int device, const LSoundStreamFormat& format,
                                                         LSoundRenderer& renderer) = 0;
  // Opens an input at the hardware's own rate. null: it cannot be opened.
  virtual std::unique_ptr<LSoundInputStream> OpenInput(int device, const LSoundStreamFormat& format,
                                                       LSoundInputReceiver& receiver) = 0;
  // A text for the user about a lost or regained device, once; empty if there is none.
  virtual std::string TakeMessage() { return ""; }
};
