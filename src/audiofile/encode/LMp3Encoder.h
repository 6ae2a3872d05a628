// MP3 by a program of its own, for a build without the encoder's library: it reads samples from its standard input.
// Signal   samples of 16 bits, little-endian, at the sink's rate
// Units    frames; rates in Hz
// Threads  one thread at a time. Dropping the sink waits until the program has finished its file.
// Failure  a program that cannot be started, or that ends before its input does, sets the error bit.
#pragma once
#include <string>
#include <vector>

#include "audiofile/encode/LMp3EncodeSettings.h"
#include "foundation/LChildProcess.h"
#include "sound/LSoundSink.h"

class LMp3Encoder {
 public:
  LMp3Encoder(std::string path, const LMp3EncodeSettings& settings) : path_(std::move(path)), settings_(&settings) {}
  // Program and arguments; empty if the program is not installed.
  std::vector<std::string> CreateCommand(int rate, int channels) const;

 private:
  std::string path_;
  std::string input_ = "-";             // standard input
  const LMp3EncodeSettings* settings_;  // outlives this
};

class LPipe16Sink final : public LSoundSinkBase {
 public:
  LPipe16Sink(const std::vector<std::string>& command, int rate, unsigned char channels);
  ~LPipe16Sink() override;
  void Write(const int* samples, int frames) override;

 private:
  LChildProcess program_;
  std::vector<unsigned char> buffer_;  // one block
};

class LMp3EncodeSinkPipe final : public LSoundSinkBase {
 public:
  LMp3EncodeSinkPipe(const std::string& path, const LMp3EncodeSettings& settings, int rate, unsigned char channels);
  void Write(const int* samples, int frames) override;

 private:
  LPipe16Sink sink_;
};
