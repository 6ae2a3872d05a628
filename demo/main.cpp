// Writes the demo tracks into the folder given: tavi_demo_tracks FOLDER
#include <cstdint>
#include <cstdio>
#include <string>

#include "TDemoSong.h"

namespace {

std::string Le(std::uint32_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 255);
  return text;
}

// The plain header of 44 bytes, and the samples.
std::string Wave(const std::vector<short>& samples) {
  const std::uint32_t dataBytes = std::uint32_t(samples.size() * 2);
  std::string bytes = "RIFF" + Le(dataBytes + 36, 4) + "WAVEfmt " + Le(16, 4) + Le(1, 2) + Le(2, 2) + Le(44100, 4) +
                      Le(44100 * 4, 4) + Le(4, 2) + Le(16, 2) + "data" + Le(dataBytes, 4);
  bytes.reserve(bytes.size() + dataBytes);
  for (const short sample : samples) bytes += Le(static_cast<std::uint16_t>(sample), 2);
  return bytes;
}

bool WriteFile(const std::string& path, const std::string& bytes) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (!file) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "Aufruf: %s ORDNER\n", argv[0]);
    return 2;
  }
  for (const TDemoSong& song : DemoSongs()) {
    const std::string path = std::string(argv[1]) + "/" + song.name + ".wav";
    if (!WriteFile(path, Wave(RenderDemoSong(song)))) {
      std::fprintf(stderr, "Die Datei \"%s\" kann nicht geschrieben werden.\n", path.c_str());
      return 1;
    }
  }
  return 0;
}
