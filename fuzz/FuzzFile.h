// Bytes as a file in memory, opened by its path the way the program does, then read here and there.
#pragma once
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "sound/LSoundSource.h"

inline std::string FuzzFile(const std::uint8_t* bytes, std::size_t size) {
  static const int file = ::memfd_create("fuzz", 0);
  if (::ftruncate(file, 0) != 0 || ::pwrite(file, bytes, size, 0) != ssize_t(size)) return "";
  return "/proc/self/fd/" + std::to_string(file);
}

inline void FuzzRead(LSoundSource source) {
  constexpr int kFrames = 1000;
  std::vector<int> block(std::size_t(kFrames) * source.GetChannels());
  const int end = source.GetEndSample();
  for (const int at : {0, -300, end / 2, end - 10, end, kEndless - 5}) {
    source.Seek(at);
    source.Read(block.data(), kFrames);
  }
}
