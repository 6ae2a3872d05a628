// Decodes the sound stream of a file into a bucket, from which it is read in one pass.
// Signal   samples stand at the time their packets say: a gap becomes silence, what overlaps is dropped. Differences up
//          to kToleranceMs are the rounding of a container's clock and ignored; a jump further than the limits is a
//          clock that was set anew, and the sound goes on.
// Units    rate in Hz; counts of samples are single values; times in frames of the output.
// Threads  all but Read: one thread; Read: may be another one.
// Failure  a damaged packet is dropped. A file that would give more than kMaxFramesPerByte ends there: no codec packs
//          silence tighter, and a lie must not fill the disk. A stream without rate or channels, or without a decoder, does not open.
#pragma once
#include <cstdint>
#include <memory>
#include <vector>

#include "audiofile/ffmpeg/LFFMPEGSourceManagerBase.h"
#include "audiofile/ffmpeg/LSoundBucket.h"
#include "audiofile/ffmpeg/LSoundDecoder.h"

class LFFMPEGSourceManager final : public LFFMPEGSourceManagerBase {
 public:
  static constexpr int kToleranceMs = 100;
  static constexpr int kMaxGapSeconds = 60, kMaxOverlapSeconds = 10;
  static constexpr int kMaxFramesPerByte = 2048;  // beside kMaxGapSeconds
  static constexpr int kRefillSamples = 48000;    // the bucket is filled again below this

  void Read(int* out, int frames) override { bucket_->Read(out, frames * GetChannels()); }
  int GetSamplesAvailable() override;
  bool IsEnd() override { return decoded_ && PendingSamples() == 0 && gapSamples_ == 0; }
  int GetSampleRate() const override { return rate_; }
  unsigned char GetChannels() const override { return channels_; }

 private:
  bool OpenSound(int streamIndex) override;
  bool OpenDecoder(const AVStream& stream);
  bool OpenProgram(const AVStream& stream);

  void Refill();
  bool DecodeMore();  // false: the end
  bool PutSoundDataIntoBucket();
  bool SendPacket();
  bool ReadProgram();
  void ProcessSoundData(const AVFrame& frame);
  bool PrepareResampler(const AVFrame& frame);
  void Convert(const unsigned char* bytes, int frames);
  void SetAudioTimePosition(std::int64_t timestamp);
  int PendingSamples() const { return int(pending_.size()) - pendingRead_; }

  LFFMPEGPtr<AVCodecContext> decoder_;
  std::unique_ptr<LSoundDecoder> program_;  // where the library cannot decode the stream
  LFFMPEGPtr<SwrContext> resampler_;
  AVChannelLayout inputLayout_{};  // of the resampler; holds no memory of its own (native or unspecified order)
  int inputRate_ = 0, inputFormat_ = AV_SAMPLE_FMT_NONE;
  AVSampleFormat outputFormat_ = AV_SAMPLE_FMT_FLT;
  LFFMPEGPtr<AVPacket> packet_;
  LFFMPEGPtr<AVFrame> frame_;
  std::unique_ptr<LSoundBucket> bucket_;
  std::vector<unsigned char> resampled_;
  std::vector<int> pending_;  // decoded and not yet in the bucket
  int pendingRead_ = 0;
  std::vector<short> answer_;  // of a decoder program
  AVRational timeBase_{1, 1};
  std::int64_t base_ = 0;        // frames: time stamp of the output's frame 0
  std::int64_t positioned_ = 0;  // frames put so far, silence included
  std::int64_t maxFrames_ = 0;
  std::int64_t gapSamples_ = 0;  // silence still to be put before what is pending
  std::int64_t skipFrames_ = 0;  // of what comes next
  int rate_ = 0;
  unsigned char channels_ = 0;
  bool draining_ = false, decoded_ = false;
};
