// The push counterpart of a source: takes samples, remembers how much, and may be rewound.
// Units    frames; rates in Hz.
// Threads  one thread at a time.
// Failure  an error is a bit in the sink; writing to a sink with an error goes on and loses the samples.
#pragma once
#include <atomic>
#include <utility>

class LSoundSinkBase {
 public:
  LSoundSinkBase(int sampleRate, unsigned char channels, bool error = false)
      : sampleRate_(sampleRate),
        channels_(channels ? channels : static_cast<unsigned char>(1)),
        error_(error || channels == 0) {}
  virtual ~LSoundSinkBase() = default;
  LSoundSinkBase(const LSoundSinkBase&) = delete;
  LSoundSinkBase& operator=(const LSoundSinkBase&) = delete;

  virtual void Write(const int* samples, int frames) = 0;
  virtual void Seek(int /*frame*/) {}       // backwards only: what lies behind the head is gone
  virtual void Truncate(int /*frames*/) {}  // cuts to a length
  virtual void Flush() {}                   // writes out what is held back

  int GetPositionSample() const { return position_; }
  int GetSampleRate() const { return sampleRate_; }
  unsigned char GetChannels() const { return channels_; }
  bool HasError() const { return error_.load(std::memory_order_relaxed); }

 protected:
  void SetError() { error_.store(true, std::memory_order_relaxed); }
  int position_ = 0;  // frames written

 private:
  friend class LSoundSink;
  int sampleRate_;
  unsigned char channels_;
  std::atomic<bool> error_;  // read by [main] while the recorder writes
  std::atomic<unsigned> references_{0};
};

class LSoundSinkError final : public LSoundSinkBase {
 public:
  LSoundSinkError() : LSoundSinkBase(44100, 1, true) {}
  void Write(const int*, int) override {}
};

// The counted handle; never null.
class LSoundSink {
 public:
  LSoundSink() : LSoundSink(new LSoundSinkError) {}
  explicit LSoundSink(LSoundSinkBase* sink) : sink_(sink) { ++sink_->references_; }  // takes ownership
  LSoundSink(const LSoundSink& other) : LSoundSink(other.sink_) {}
  LSoundSink& operator=(const LSoundSink& other) {  // NOLINT(bugprone-unhandled-self-assignment)
    ++other.sink_->references_;                     // first, so that self-assignment is safe
    Drop();
    sink_ = other.sink_;
    return *this;
  }
  ~LSoundSink() { Drop(); }

  template <class Sink, class... Arguments>
  static LSoundSink Make(Arguments&&... arguments) {
    return LSoundSink(new Sink(std::forward<Arguments>(arguments)...));
  }

  void Close() { *this = LSoundSink(); }
  LSoundSinkBase& operator*() const { return *sink_; }
  LSoundSinkBase* operator->() const { return sink_; }
  void Write(const int* samples, int frames) const { sink_->Write(samples, frames); }
  void Seek(int frame) const { sink_->Seek(frame); }
  int GetPositionSample() const { return sink_->GetPositionSample(); }
  int GetSampleRate() const { return sink_->GetSampleRate(); }
  unsigned char GetChannels() const { return sink_->GetChannels(); }
  bool HasError() const { return sink_->HasError(); }

 private:
  void Drop() {
    if (--sink_->references_ == 0) delete sink_;
  }
  LSoundSinkBase* sink_;
};
