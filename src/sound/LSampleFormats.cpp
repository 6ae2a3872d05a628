#include "sound/LSampleFormats.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "sound/LWrap.h"
#include "sound/kernels/LSoundKernels.h"

namespace {

constexpr double kRealScale = 524288.0;         // native float in
constexpr float kRealScaleOut = 1.9073486e-6F;  // 1 / 524288
constexpr double kForeignRealScale = 524272.0;  // swapped float and double in

template <class Value>
Value LoadNative(const unsigned char* at) {
  Value value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

template <class Value>
Value LoadSwapped(const unsigned char* at) {
  unsigned char bytes[sizeof(Value)];
  std::reverse_copy(at, at + sizeof bytes, bytes);
  return LoadNative<Value>(bytes);
}

template <class Value>
void StoreNative(unsigned char* at, Value value) {
  std::memcpy(at, &value, sizeof value);
}

template <class Value>
void StoreSwapped(unsigned char* at, Value value) {
  unsigned char bytes[sizeof(Value)];
  StoreNative(bytes, value);
  std::reverse_copy(std::begin(bytes), std::end(bytes), at);
}

int From32(std::int32_t stored) { return int((std::int64_t{stored} + 2048) >> 12); }
std::int32_t To32(int x) { return WrapMul32(x, 4096); }
std::int16_t To16(int x) { return static_cast<std::int16_t>(WrapAdd32(x, 8) >> 4); }
std::int32_t HighBytes(unsigned char high, unsigned char middle, unsigned char low) {
  return std::int32_t(unsigned(high) << 24 | unsigned(middle) << 16 | unsigned(low) << 8);
}

// What G.711 compresses: 16 bits, clipped.
int To16Clipped(int x) { return int(std::clamp<std::int64_t>((std::int64_t{x} + 8) >> 4, -32768, 32767)); }

// The segment of a magnitude: how far its highest bit lies above the lowest segment's, 0..7.
int Segment(int magnitude, int lowestBit) {
  int segment = 0;
  while (segment < 7 && magnitude >> (lowestBit + segment + 1) != 0) ++segment;
  return segment;
}

// ITU-T G.711, mu-law: 8 segments over a magnitude biased by 33 of 14 bits (132 of 16), all bits inverted.
constexpr int kMuBias = 132, kMuClip = 32635;

int ExpandMu(unsigned char code) {
  const unsigned bits = ~unsigned(code);
  const int magnitude = (int((bits & 15) << 3) + kMuBias) << (bits >> 4 & 7);
  return bits & 0x80 ? kMuBias - magnitude : magnitude - kMuBias;
}

unsigned char CompressMu(int s) {
  const unsigned sign = s < 0 ? 0x80 : 0;
  const int magnitude = std::min(s < 0 ? -s : s, kMuClip) + kMuBias;
  const int segment = Segment(magnitude, 7);
  return static_cast<unsigned char>(~(sign | unsigned(segment) << 4 | (unsigned(magnitude) >> (segment + 3) & 15)));
}

// ITU-T G.711, A-law: 8 segments over 13 bits, the two lowest alike; even bits inverted, the sign bit set for s >= 0.
constexpr unsigned kAMask = 0x55;

int ExpandA(unsigned char code) {
  const unsigned bits = code ^ kAMask;
  const int segment = int(bits >> 4 & 7);
  int magnitude = int((bits & 15) << 4) + 8;
  if (segment > 0) magnitude = (magnitude + 256) << (segment - 1);
  return bits & 0x80 ? magnitude : -magnitude;
}

unsigned char CompressA(int s) {
  const unsigned sign = s < 0 ? 0 : 0x80;
  const int magnitude = s < 0 ? -s - 1 : s;
  const int segment = Segment(magnitude, 7);
  const unsigned step = unsigned(magnitude) >> (segment == 0 ? 4 : segment + 3) & 15;
  return static_cast<unsigned char>((sign | unsigned(segment) << 4 | step) ^ kAMask);
}

}  // namespace

int LSF16::Get(const unsigned char* at) { return LoadNative<std::int16_t>(at) * 16; }
void LSF16::Set(unsigned char* at, int x) { StoreNative(at, To16(x)); }

int LSFBE16::Get(const unsigned char* at) { return LoadSwapped<std::int16_t>(at) * 16; }
void LSFBE16::Set(unsigned char* at, int x) { StoreSwapped(at, To16(x)); }

int LSFU8::Get(const unsigned char* at) { return (*at - 128) * 4096; }
void LSFU8::Set(unsigned char* at, int x) { *at = static_cast<unsigned char>((WrapAdd32(x, 2048) >> 12) - 128); }

int LSFS8::Get(const unsigned char* at) { return static_cast<signed char>(*at) * 4096; }
void LSFBE8::Set(unsigned char* at, int x) { *at = static_cast<unsigned char>(WrapAdd32(x, 8) >> 12); }

int LSF32::Get(const unsigned char* at) { return From32(LoadNative<std::int32_t>(at)); }
void LSF32::Set(unsigned char* at, int x) { StoreNative(at, To32(x)); }

int LSFBE32::Get(const unsigned char* at) { return From32(LoadSwapped<std::int32_t>(at)); }
void LSFBE32::Set(unsigned char* at, int x) { StoreSwapped(at, To32(x)); }

int LSFLE24::Get(const unsigned char* at) { return From32(HighBytes(at[2], at[1], at[0])); }
void LSFLE24::Set(unsigned char* at, int x) {
  const auto bits = unsigned(To32(x));
  at[0] = static_cast<unsigned char>(bits >> 8);
  at[1] = static_cast<unsigned char>(bits >> 16);
  at[2] = static_cast<unsigned char>(bits >> 24);
}

int LSFBE24::Get(const unsigned char* at) { return From32(HighBytes(at[0], at[1], at[2])); }
void LSFBE24::Set(unsigned char* at, int x) {
  LSFLE24::Set(at, x);
  std::swap(at[0], at[2]);
}

int LSFF32::Get(const unsigned char* at) { return SaturateToInt(LoadNative<float>(at) * kRealScale); }
void LSFF32::Set(unsigned char* at, int x) { StoreNative(at, float(x) * kRealScaleOut); }

int LSFFRE32::Get(const unsigned char* at) { return SaturateToInt(LoadSwapped<float>(at) * kForeignRealScale); }
int LSFF64::Get(const unsigned char* at) { return SaturateToInt(LoadNative<double>(at) * kForeignRealScale); }

int LSFULAW::Get(const unsigned char* at) { return ExpandMu(*at) * 16; }
void LSFULAW::Set(unsigned char* at, int x) { *at = CompressMu(To16Clipped(x)); }

int LSFALAW::Get(const unsigned char* at) { return ExpandA(*at) * 16; }
void LSFALAW::Set(unsigned char* at, int x) { *at = CompressA(To16Clipped(x)); }

template <class Storage>
void ConvertSamplesIn(int* out, const unsigned char* in, int samples) {
  for (int i = 0; i < samples; ++i, in += Storage::kBytes) out[i] = Storage::Get(in);
}

template <class Storage>
void ConvertSamplesOut(unsigned char* out, const int* in, int samples) {
  for (int i = 0; i < samples; ++i, out += Storage::kBytes) Storage::Set(out, in[i]);
}

void ConvertSamplesToDevice(int* out, const int* in, int samples) { Kernels().toDevice(out, in, samples); }

template void ConvertSamplesIn<LSF16>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFBE16>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFU8>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFS8>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSF32>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFBE32>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFLE24>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFBE24>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFF32>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFFRE32>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFF64>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFULAW>(int*, const unsigned char*, int);
template void ConvertSamplesIn<LSFALAW>(int*, const unsigned char*, int);
template void ConvertSamplesOut<LSF16>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSFBE16>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSFU8>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSFBE8>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSF32>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSFBE32>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSFLE24>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSFBE24>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSFF32>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSFULAW>(unsigned char*, const int*, int);
template void ConvertSamplesOut<LSFALAW>(unsigned char*, const int*, int);
