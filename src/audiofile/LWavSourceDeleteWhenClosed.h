// A source that owns its file: closed first, then deleted, when the last handle goes.
// Threads  as the source inside.
// Failure  has the error of the source inside; the file goes all the same.
#pragma once
#include <string>
#include <utility>

#include "foundation/LFile.h"
#include "sound/LSoundSource.h"

class LWavSourceDeleteWhenClosed final : public LSoundSourceBase {
 public:
  LWavSourceDeleteWhenClosed(const LSoundSource& source, std::string path)
      : LSoundSourceBase(source.GetSampleRate(), source.GetChannels(), source.GetPeak(), source.GetError()),
        source_(source),
        path_(std::move(path)) {}
  ~LWavSourceDeleteWhenClosed() override {
    source_.Close();
    LFile::Remove(path_);
  }

  void Read(int* out, int frames) override { source_.Read(out, frames); }
  int GetPositionSample() const override { return source_.GetPositionSample(); }
  int GetEndSample() const override { return source_.GetEndSample(); }
  void Seek(int frame) override { source_.Seek(frame); }
  bool IsStreaming() const override { return source_.IsStreaming(); }
  void WaitForStreamingData(int ms) override { source_.WaitForStreamingData(ms); }

 private:
  LSoundSource source_;
  std::string path_;
};
