// Chooses the sound stream of a file and makes a source of it.
// Units    streams by their number among the sound streams, -1: the best one.
// Threads  one thread at a time; Read and the counts may be called beside it (see the subclass).
// Failure  no stream: -1; a source that cannot be made has error 1.
#pragma once
#include <memory>
#include <string>

#include "audiofile/ffmpeg/LFFMPEGSourceManagerVideoBase.h"
#include "sound/LSoundSource.h"

class LFFMPEGSourceManagerBase : public LFFMPEGSourceManagerVideoBase {
 public:
  // With `preferDecodable` only streams count that have a rate, channels and a known codec; if there are fewer than
  // asked for, the first of them is taken, and else the first sound stream at all.
  int GetSoundStreamIndex(int stream, bool preferDecodable) const;
  // `name` is the decoder program that the stream needs, empty if the library decodes it; false: nothing can.
  bool GetSoundStreamComponent(int stream, std::string& name, bool preferDecodable) const;
  static LSoundSource GetSoundSource(const std::shared_ptr<LFFMPEGSourceManagerBase>& manager, int stream,
                                     bool preferDecodable);

  virtual void Read(int* out, int frames) = 0;
  virtual int GetSamplesAvailable() = 0;  // single values; decodes more if there is little
  virtual bool IsEnd() = 0;               // of the file; what is available may still be read
  bool IsStreaming() { return !IsEnd(); }
  virtual int GetSampleRate() const = 0;
  virtual unsigned char GetChannels() const = 0;

 protected:
  virtual bool OpenSound(int streamIndex) = 0;
  static const char* ProgramFor(AVCodecID codec);  // null: none

 private:
  bool IsSound(int index) const;
  bool IsDecodable(int index) const;
};

// The thin view of a manager: one pass from the start.
class LFFMPEGSoundSourceBase final : public LSoundSourceBase {
 public:
  explicit LFFMPEGSoundSourceBase(std::shared_ptr<LFFMPEGSourceManagerBase> manager)
      : LSoundSourceBase(manager->GetSampleRate(), manager->GetChannels(), kPeakHeadroom),
        manager_(std::move(manager)) {}
  void Read(int* out, int frames) override;
  int GetPositionSample() const override { return position_; }
  int GetEndSample() const override { return position_ + manager_->GetSamplesAvailable() / GetChannels(); }
  void Seek(int /*frame*/) override { position_ = 0; }
  bool IsStreaming() const override { return manager_->IsStreaming(); }

 private:
  std::shared_ptr<LFFMPEGSourceManagerBase> manager_;
  int position_ = 0;  // frames since the last Seek
};
