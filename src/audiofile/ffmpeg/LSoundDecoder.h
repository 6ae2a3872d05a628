// Decoder programs for sound that the library cannot decode: packets go to a child's input, samples come from its
// output.
// Signal   a packet: its length as 32 bits, big-endian, then its bytes; the answer likewise, 16-bit samples of this
//          machine's order. AMR differs: "#!AMR\n" once, then bare frames; 160 samples of 16 bits come back for each.
// Units    samples are single values, rates in Hz.
// Threads  one thread at a time.
// Failure  `failed` of the constructor: the program cannot be started. A pipe that breaks, or an answer that takes
//          longer than kAnswerMs, ends the child; afterwards nothing more is read.
#pragma once
#include <string>

#include "foundation/LChildProcess.h"

class LSoundDecoder {
 public:
  static constexpr unsigned kAnswerMs = 5000;
  static constexpr int kMaxAnswerBytes = 0x460000;

  virtual ~LSoundDecoder() = default;
  void Restart();  // after a seek
  virtual bool WriteSoundPacket(const unsigned char* packet, unsigned long length);
  virtual int ReadSound(short* out, int capacity);  // samples; 0: nothing more for the packets so far
  int GetSampleRate() const { return rate_; }
  unsigned char GetChannels() const { return channels_; }

 protected:
  LSoundDecoder(std::vector<std::string> command, int rate, unsigned char channels, bool& failed);
  virtual void Restarted() {}
  bool ReadAnswer(void* bytes, std::size_t count);  // waits for it; false: the child is gone

  LChildProcess child_;
  int answersDue_ = 0;

 private:
  std::vector<std::string> command_;
  int rate_;
  unsigned char channels_;
};

class LAACDecoder final : public LSoundDecoder {
 public:
  LAACDecoder(const std::string& program, int rate, unsigned char channels, bool& failed)
      : LSoundDecoder({program, "-s", std::to_string(rate), "-d", "-w", "-"}, rate, channels, failed) {}
  // Of the two bytes that lead a stream's extra data (ISO/IEC 14496-3, samplingFrequencyIndex); 0: none of the 13.
  static int RateOfExtraData(const unsigned char* data, int length);
};

class LAC3Decoder final : public LSoundDecoder {
 public:
  LAC3Decoder(const std::string& program, int rate, unsigned char channels, bool& failed)
      : LSoundDecoder({program, "-o", "raw"}, rate, channels, failed) {}
};

class LAMRDecoder final : public LSoundDecoder {
 public:
  static constexpr int kFrameSamples = 160;  // 20 ms at 8000 Hz
  LAMRDecoder(const std::string& program, bool& failed) : LSoundDecoder({program, "-x", "-", "-"}, 8000, 1, failed) {}
  bool WriteSoundPacket(const unsigned char* packet, unsigned long length) override;
  int ReadSound(short* out, int capacity) override;

 private:
  void Restarted() override { started_ = false; }
  bool started_ = false;
};
