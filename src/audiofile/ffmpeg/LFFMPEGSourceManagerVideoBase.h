// Opens a file of any kind and reads its packets.
// Law      only the file itself is read: a file that names others (a play list, a stream) does not reach them.
// Units    packets in decoding order; times in microseconds.
// Threads  one thread at a time.
// Failure  false; the file is then closed again.
#pragma once
#include <string>

#include "audiofile/ffmpeg/LFFMPEG.h"
#include "foundation/LProcessInterface.h"

class LFFMPEGSourceManagerVideoBase {
 public:
  static constexpr int kProbeBytes = 8 << 20;  // looked at to tell the format and its streams

  virtual ~LFFMPEGSourceManagerVideoBase() = default;
  LFFMPEGSourceManagerVideoBase() = default;
  LFFMPEGSourceManagerVideoBase(const LFFMPEGSourceManagerVideoBase&) = delete;
  LFFMPEGSourceManagerVideoBase& operator=(const LFFMPEGSourceManagerVideoBase&) = delete;

  bool Open(const std::string& path);
  double ReadShare() const;  // of the file's bytes, 0.0 to 1.0
  bool Init();               // after the streams are chosen; no other stream's packets are read
  void SetProcess(LProcessInterface* process) { process_ = process; }  // may stop a long read; outlives this or null

  static int GetMainVideoStream(const AVFormatContext* format);  // -1: none; pictures of a cover do not count

 protected:
  bool ReadFrame(AVPacket* packet);  // the next packet of a chosen stream; false: the end
  bool IsAtEnd() const { return atEnd_; }
  void ChooseStream(int stream) { chosen_ = stream; }
  const AVFormatContext* Format() const { return format_.get(); }
  std::int64_t FileBytes() const { return format_->pb ? avio_size(format_->pb) : 0; }
  AVStream* Stream(int index) const { return format_->streams[index]; }

 private:
  static int IsToStop(void* self);

  LFFMPEGPtr<AVFormatContext> format_;
  LProcessInterface* process_ = nullptr;
  int chosen_ = -1;
  bool atEnd_ = false;
};
