#include "tempo/LFFTWindow.h"

#include <cmath>
#include <numbers>

namespace {

// cos(2 pi i / N), from i on.
double CosineOf(std::size_t i, std::size_t size) { return std::cos(2 * std::numbers::pi * double(i) / double(size)); }

}  // namespace

LHanningWindow::LHanningWindow(std::size_t size) : LFFTWindow(size) {
  for (std::size_t i = 0; i < size; ++i) table_[i] = (1 - CosineOf(i, size)) * 0.5;
}

LHammingWindow::LHammingWindow(std::size_t size) : LFFTWindow(size) {
  for (std::size_t i = 0; i < size; ++i) table_[i] = 0.54 - 0.46 * CosineOf(i, size);
}

LCosineWindow::LCosineWindow(std::size_t size) : LFFTWindow(size) {
  const double last = std::max(double(size) - 1, 1.0);
  for (std::size_t i = 0; i < size; ++i)
    table_[i] = std::cos(std::numbers::pi * double(i) / last - std::numbers::pi / 2);
}
