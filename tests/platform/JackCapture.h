// A JACK client that keeps what arrives at its input ports, as 20-bit samples.
#pragma once
#include <jack/jack.h>

#include <atomic>
#include <cmath>
#include <string>
#include <vector>

class JackCapture {
 public:
  static constexpr const char* kName = "Aufnehmer";

  JackCapture(int channels, int maxFrames) : samples_(std::size_t(channels) * std::size_t(maxFrames)) {
    client_ = jack_client_open(kName, JackNoStartServer, nullptr);
    if (!client_) return;
    for (int channel = 0; channel < channels; ++channel)
      ports_.push_back(jack_port_register(client_, ("in" + std::to_string(channel)).c_str(), JACK_DEFAULT_AUDIO_TYPE,
                                          JackPortIsInput, 0));
    jack_set_process_callback(
        client_, [](jack_nframes_t frames, void* self) { return static_cast<JackCapture*>(self)->Take(frames), 0; },
        this);
    jack_activate(client_);
  }
  ~JackCapture() { Close(); }

  bool IsOpen() const { return client_ != nullptr; }
  void Close() {
    if (client_) jack_client_close(client_);
    client_ = nullptr;
  }
  // Closes first. The library scales 32-bit samples by 1 / 2147483647.5; floats hold 24 bits, so 20 come back exactly.
  std::vector<int> Samples() {
    Close();
    std::vector<int> result;
    for (std::size_t i = 0; i < taken_; ++i) result.push_back(int(std::lround(samples_[i] * 2147483647.5 / 4096)));
    return result;
  }

 private:
  void Take(jack_nframes_t frames) {
    for (jack_nframes_t frame = 0; frame < frames && taken_ + ports_.size() <= samples_.size(); ++frame)
      for (jack_port_t* port : ports_) {
        samples_[taken_] = static_cast<const float*>(jack_port_get_buffer(port, frames))[frame];
        taken_ = taken_ + 1;
      }
  }

  jack_client_t* client_ = nullptr;
  std::vector<jack_port_t*> ports_;
  std::vector<float> samples_;
  std::atomic<std::size_t> taken_{0};
};
