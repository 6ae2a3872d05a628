// The pull contract of all sound: a source fills a caller's buffer, tells and changes its position, may wrap another.
// Signal   interleaved signed 32-bit samples, channel 0 first. Full scale is 20 bits: a 16-bit sample s is s * 16, so a
//          16-bit source peaks at 0x7fff0. The 12 bits above are headroom; only the limiter before the device clips.
// Units    every count of "samples" in these operations is frames; rates in Hz.
// Threads  a chain belongs to the thread that reads it; [main] touches it only under the player's lock. Read may reach a
//          file, allocates nothing and is bounded. Handles are copied where no other thread touches them.
// Failure  an error is a byte in the source, never an exception or null: a failed open gives a source that reads silence.
#pragma once
#include <atomic>
#include <utility>

#include "sound/LSoundTime.h"

enum LSoundError : unsigned char {
  lseNone = 0,
  lseNoSource = 1,      // an empty or closed handle; also "generic failure" of the opener
  lseInputError = 2,    // a process was opened on a source with an error
  lseDamaged = 3,       // invalid format or damaged file
  lseCannotOpen = 4,    // missing or not readable
  lseCodecMissing = 5,  //
  lseEncrypted = 6,
  lseLaterStage = 7,  // the opener takes this file by another road
};

inline constexpr int kFullScale = 524288;       // 20 bits
inline constexpr int kPeak16 = 0x7fff0;         // the largest sample of a 16-bit source
inline constexpr int kPeakHeadroom = 0x200000;  // declared by what may exceed full scale: four times full scale
inline constexpr int kEndless = 0x7fffffff;     // an end that is never reached
inline constexpr int kDeckRate = 44100;         // Hz, of decks, mixer and recorder
inline constexpr int kMaxBlockFrames = 8192;    // the largest request on the audio path

// Messages that travel down a chain; each stage handles or forwards. `value` is in and out.
enum LControlCode {
  lccPullBack = 1,        // position in and out: stages add what they hold in front of it
  lccInputPosition = 2,   // out: position of a rate converter's input
  lccSeekInput = 3,       // in: seek a rate converter's input
  lccLookAhead = 4,       // out: frames of look-ahead of a limiter
  lccWrapPosition = 5,    // in and out: a position before a loop is wrapped into it
  lccRelativeOffset = 6,  // in and out: relative offset, rewritten by stages that change time
};

class LSoundSourceBase {
 public:
  LSoundSourceBase(int sampleRate, unsigned char channels, int peak, LSoundError error = lseNone);
  virtual ~LSoundSourceBase() = default;
  LSoundSourceBase(const LSoundSourceBase&) = delete;
  LSoundSourceBase& operator=(const LSoundSourceBase&) = delete;

  virtual void Read(int* out, int frames) = 0;  // always the whole request: silence past the end
  virtual int GetPositionSample() const = 0;    // next frame to be read; may be negative
  virtual int GetEndSample() const = 0;
  virtual void Seek(int /*frame*/) {}
  virtual bool ControlMessage(int /*code*/, long* /*value*/) { return false; }
  // If the output is `offset` frames from `position`, what offset is that in this source's own time?
  virtual int AdjustRelativeOffset(int offset, int /*position*/) { return offset; }
  virtual bool IsStreaming() const { return false; }
  virtual void WaitForStreamingData(int ms);

  int GetSampleRate() const { return sampleRate_; }
  unsigned char GetChannels() const { return channels_; }
  int GetPeak() const { return peak_; }
  LSoundError GetError() const { return error_; }

 protected:
  void SetError(LSoundError error) { error_ = error; }
  void SetPeak(int peak) { peak_ = peak; }
  void SetSampleRate(int rate) { sampleRate_ = rate; }
  void SetChannels(unsigned char channels) { channels_ = channels; }

 private:
  friend class LSoundSource;
  int sampleRate_;          // Hz, at least 1
  unsigned char channels_;  // at least 1
  int peak_;                // largest magnitude of a sample
  LSoundError error_;
  std::atomic<unsigned> references_{0};  // owned by LSoundSource handles
};

// The counted handle. Never null: an empty one holds an LSoundSourceError.
class LSoundSource {
 public:
  LSoundSource() : LSoundSource(lseNoSource) {}
  explicit LSoundSource(LSoundError error);
  explicit LSoundSource(LSoundSourceBase* source) : source_(source) { ++source_->references_; }  // takes ownership
  LSoundSource(const LSoundSource& other) : LSoundSource(other.source_) {}
  LSoundSource& operator=(const LSoundSource& other);
  ~LSoundSource() { Drop(); }

  template <class Source, class... Arguments>
  static LSoundSource Make(Arguments&&... arguments) {
    return LSoundSource(new Source(std::forward<Arguments>(arguments)...));
  }

  void Close() { *this = LSoundSource(); }
  LSoundSourceBase& operator*() const { return *source_; }
  LSoundSourceBase* operator->() const { return source_; }

  void Read(int* out, int frames) const { source_->Read(out, frames); }
  int GetPositionSample() const { return source_->GetPositionSample(); }
  int GetEndSample() const { return source_->GetEndSample(); }
  void Seek(int frame) const { source_->Seek(frame); }
  bool ControlMessage(int code, long* value) const { return source_->ControlMessage(code, value); }
  int AdjustRelativeOffset(int offset, int position) const { return source_->AdjustRelativeOffset(offset, position); }
  bool IsStreaming() const { return source_->IsStreaming(); }
  void WaitForStreamingData(int ms) const { source_->WaitForStreamingData(ms); }
  int GetSampleRate() const { return source_->sampleRate_; }
  unsigned char GetChannels() const { return source_->channels_; }
  int GetPeak() const { return source_->peak_; }
  LSoundError GetError() const { return source_->error_; }
  bool IsOk() const { return source_->error_ == lseNone; }

 private:
  void Drop() {
    if (--source_->references_ == 0) delete source_;
  }
  LSoundSourceBase* source_;
};

class LSoundSourceError final : public LSoundSourceBase {
 public:
  explicit LSoundSourceError(LSoundError error) : LSoundSourceBase(11025, 1, kPeakHeadroom, error) {}
  void Read(int* out, int frames) override;  // one channel
  int GetPositionSample() const override { return 0; }
  int GetEndSample() const override { return 0; }
};

// Silence of a given length.
class LSilenceSourceBase final : public LSoundSourceBase {
 public:
  LSilenceSourceBase(int sampleRate, unsigned char channels, int endFrames)
      : LSoundSourceBase(sampleRate, channels, kPeak16), endFrames_(endFrames) {}
  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return endFrames_; }
  void Seek(int frame) override { position_ = frame; }

 private:
  int endFrames_;
  int position_ = 0;  // frames
};

// The frame at which the music starts after leading silence, 0 if it cannot be told: the first doubling of level over
// windows of 2048 frames, 1024 apart. The position is left as it was. [main, worker]
int FindFirstSound(LSoundSource& source);
