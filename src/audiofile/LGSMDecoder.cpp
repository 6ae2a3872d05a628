#include "audiofile/LGSMDecoder.h"

#include <algorithm>

namespace {

// The standard's operations on 16 bits.
int Saturate(int x) { return std::clamp(x, -32768, 32767); }
int Add(int a, int b) { return Saturate(a + b); }
int Sub(int a, int b) { return Saturate(a - b); }
int MultR(int a, int b) { return Saturate((a * b + 0x4000) >> 15); }

constexpr int kRatioBits[8] = {6, 6, 5, 5, 4, 4, 3, 3};
constexpr int kRatioLowest[8] = {-32, -32, -16, -16, -8, -8, -4, -4};
constexpr int kRatioOffset[8] = {0, 0, 2048, -2560, 94, -1792, -341, -1144};
constexpr int kRatioScale[8] = {13107, 13107, 13107, 13107, 19223, 17476, 31454, 29708};
constexpr int kGain[4] = {3277, 11469, 21299, 32767};  // 0.1, 0.35, 0.65, 1.0
constexpr int kFactor[8] = {18431, 20479, 22527, 24575, 26623, 28671, 30719, 32767};
constexpr int kEmphasis = 28180;  // 0.86
constexpr int kPulses = 13;       // of a subframe, three samples apart

class HighFirst {
 public:
  explicit HighFirst(const unsigned char* bytes) : bytes_(bytes) {}
  int Get(int count) {
    int value = 0;
    for (; count > 0; --count, ++at_) value = value << 1 | (bytes_[at_ / 8] >> (7 - at_ % 8) & 1);
    return value;
  }

 private:
  const unsigned char* bytes_;
  int at_ = 0;  // bits
};

class LowFirst {
 public:
  explicit LowFirst(const unsigned char* bytes) : bytes_(bytes) {}
  int Get(int count) {
    int value = 0;
    for (int i = 0; i < count; ++i, ++at_) value |= (bytes_[at_ / 8] >> at_ % 8 & 1) << i;
    return value;
  }

 private:
  const unsigned char* bytes_;
  int at_ = 0;  // bits
};

// Of a log area ratio.
int ReflectionCoefficient(int ratio) {
  const int magnitude = std::min(std::abs(ratio), 32767);
  const int coefficient = magnitude < 11059   ? magnitude << 1
                          : magnitude < 20070 ? magnitude + 11059
                                              : Add(magnitude >> 2, 26112);
  return ratio < 0 ? -coefficient : coefficient;
}

// The size of a block of pulses is a number with a short mantissa.
struct BlockSize {
  int exponent, mantissa;

  explicit BlockSize(int code) : exponent(code > 15 ? (code >> 3) - 1 : 0), mantissa(code - exponent * 8) {
    if (mantissa == 0) {
      exponent = -4;
      mantissa = 7;
      return;
    }
    for (; mantissa <= 7; --exponent) mantissa = mantissa << 1 | 1;
    mantissa -= 8;
  }
  int Pulse(int code) const {
    const int shift = 6 - exponent;  // 0..10
    const int half = shift > 0 ? 1 << (shift - 1) : 0;
    return Add(MultR(kFactor[mantissa], (2 * code - 7) * 4096), half) >> shift;
  }
};

// A frame moves from the ratios before to its own in three steps, and keeps them then.
struct Section {
  int samples;
  int old, fresh;  // quarters
};
constexpr Section kSections[] = {{13, 3, 1}, {14, 2, 2}, {13, 1, 3}, {120, 0, 4}};

int Quarters(int value, int quarters) {
  constexpr int kShifts[5][2] = {{16, 16}, {2, 16}, {1, 16}, {2, 1}, {0, 16}};  // each part is cut by itself
  const int(&shifts)[2] = kShifts[quarters];
  return (shifts[0] < 16 ? value >> shifts[0] : 0) + (shifts[1] < 16 ? value >> shifts[1] : 0);
}

}  // namespace

template <class Bits>
void LGSMDecoder::DecodeResidual(Bits& bits, int* residual) {
  const int lag = bits.Get(7), gain = kGain[bits.Get(2)], grid = bits.Get(2);
  const BlockSize size(bits.Get(6));
  if (lag >= kMinLag && lag <= kMaxLag) lag_ = short(lag);
  std::fill_n(residual, kSubframe, 0);
  for (int i = 0; i < kPulses; ++i) residual[grid + 3 * i] = size.Pulse(bits.Get(3));
  for (int i = 0; i < kSubframe; ++i) residual[i] = Add(residual[i], MultR(gain, past_[kMaxLag - lag_ + i]));
  std::copy(past_ + kSubframe, past_ + kMaxLag, past_);
  std::transform(residual, residual + kSubframe, past_ + kMaxLag - kSubframe, [](int x) { return short(x); });
}

void LGSMDecoder::Synthesize(const int* residual, const int* ratios, int count, int* out) {
  int coefficients[kOrder];
  std::transform(ratios, ratios + kOrder, coefficients, ReflectionCoefficient);
  for (int n = 0; n < count; ++n) {
    int sample = residual[n];
    for (int i = kOrder - 1; i >= 0; --i) {
      sample = Sub(sample, MultR(coefficients[i], lattice_[i]));
      lattice_[i + 1] = short(Add(lattice_[i], MultR(coefficients[i], sample)));
    }
    lattice_[0] = short(sample);
    emphasis_ = short(Add(sample, MultR(emphasis_, kEmphasis)));
    out[n] = (Add(emphasis_, emphasis_) & ~7) * 16;  // 13 bits
  }
}

template <class Bits>
void LGSMDecoder::DecodeFrame(Bits& bits, int* out) {
  int fresh[kOrder];
  for (int i = 0; i < kOrder; ++i) {
    const int code = bits.Get(kRatioBits[i]) + kRatioLowest[i];
    const int scaled = MultR(kRatioScale[i], Sub(code * 1024, kRatioOffset[i] * 2));
    fresh[i] = Add(scaled, scaled);
  }
  int residual[4 * kSubframe];
  for (int subframe = 0; subframe < 4; ++subframe) DecodeResidual(bits, residual + subframe * kSubframe);
  const int* from = residual;
  for (const Section& section : kSections) {
    int ratios[kOrder];
    for (int i = 0; i < kOrder; ++i)
      ratios[i] = Add(Quarters(ratios_[i], section.old), Quarters(fresh[i], section.fresh));
    Synthesize(from, ratios, section.samples, out);
    from += section.samples;
    out += section.samples;
  }
  std::transform(fresh, fresh + kOrder, ratios_, [](int x) { return short(x); });
}

void LGSMDecoder::Decode(const LGSMPacking& packing, const unsigned char* block, int* out) {
  if (packing.wave) {
    LowFirst bits(block);
    DecodeFrame(bits, out);
    DecodeFrame(bits, out + kGsmBare.blockFrames);
    return;
  }
  HighFirst bits(block);
  if (bits.Get(4) == int(kGsmMark))
    DecodeFrame(bits, out);
  else
    std::fill_n(out, packing.blockFrames, 0);
}
