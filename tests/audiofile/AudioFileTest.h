// A temporary folder, files made of bytes, and other programs to compare with.
#pragma once
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "sound/LSoundSink.h"
#include "sound/LSoundSource.h"
#include "support/EngineData.h"

class AudioFileTest : public ::testing::Test {
 protected:
  AudioFileTest() {
    char pattern[] = "/tmp/tavi-audiofile-XXXXXX";
    folder_ = ::mkdtemp(pattern);
  }
  ~AudioFileTest() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return LFile::MakePath(folder_, name); }
  std::string Put(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }
  std::string Bytes(const std::string& name) const { return LFile::ReadAll(Path(name)).value_or(""); }
  // In the folder; true if it ended with status 0.
  bool Run(const std::string& command) const {
    return std::system(("cd " + folder_ + " && (" + command + ") >log 2>&1 </dev/null").c_str()) == 0;
  }
  std::string Output(const std::string& command) const {
    Run(command);
    return std::string(LText::Trim(Bytes("log")));
  }
  bool HasTools() const { return Run("sox --version && ffmpeg -version && ffprobe -version"); }

  // Raw signed 32-bit samples as another program gives them, on the scale of the sound path.
  std::vector<int> Samples32(const std::string& name) const {
    const std::string bytes = Bytes(name);
    std::vector<int> samples(bytes.size() / 4);
    std::memcpy(samples.data(), bytes.data(), samples.size() * 4);
    for (int& s : samples) s = int((std::int64_t{s} + 2048) >> 12);
    return samples;
  }

  std::string folder_;
};

inline std::vector<int> ReadFrames(const LSoundSource& source, int frames) {
  std::vector<int> samples(std::size_t(frames) * source.GetChannels(), 99);
  source.Read(samples.data(), frames);
  return samples;
}
inline std::vector<int> ReadWhole(const LSoundSource& source) { return ReadFrames(source, source.GetEndSample()); }

inline int LargestDifference(const std::vector<int>& a, const std::vector<int>& b) {
  if (a.size() != b.size()) return 0x7fffffff;
  int largest = 0;
  for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::abs(a[i] - b[i]));
  return largest;
}

inline std::string Le(unsigned long long value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += char(value >> (8 * i));
  return text;
}
inline std::string Be(unsigned long long value, int bytes) {
  const std::string text = Le(value, bytes);
  return {text.rbegin(), text.rend()};
}
