// A picture in memory, painted column by column by wave displays or filled once.
// Units    device pixels, rows from the top; a pixel is 0xAARRGGBB with colours multiplied by alpha.
// Threads  [any], one at a time.
// Failure  a size that is not positive, or beyond kMaxSide, gives an empty image.
#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

#include "toolkit/LGuiColor.h"

class LGuiImage {
 public:
  static constexpr int kMaxSide = 16384;
  LGuiImage() = default;
  LGuiImage(int width, int height) {
    if (width <= 0 || height <= 0 || width > kMaxSide || height > kMaxSide) return;
    width_ = width, height_ = height;
    pixels_.assign(std::size_t(width) * std::size_t(height), 0);
  }
  int Width() const { return width_; }
  int Height() const { return height_; }
  bool IsEmpty() const { return pixels_.empty(); }
  std::uint32_t* Row(int y) { return pixels_.data() + std::size_t(y) * std::size_t(width_); }
  const std::uint32_t* Row(int y) const { return pixels_.data() + std::size_t(y) * std::size_t(width_); }

  static constexpr std::uint32_t Pixel(LGuiColor c) {
    const auto times = [&c](unsigned part) { return (part * c.alpha + 127) / 255; };
    return std::uint32_t(c.alpha) << 24 | times(c.red) << 16 | times(c.green) << 8 | times(c.blue);
  }

 private:
  int width_ = 0, height_ = 0;
  std::vector<std::uint32_t> pixels_;
};
