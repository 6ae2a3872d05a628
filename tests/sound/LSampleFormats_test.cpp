#include "sound/LSampleFormats.h"

#include <gtest/gtest.h>

#include "sound/LSoundSource.h"
#include "support/EngineData.h"

namespace {

using Bytes = std::vector<unsigned char>;

template <class Storage>
std::vector<int> In(const Bytes& bytes) {
  std::vector<int> samples(bytes.size() / Storage::kBytes);
  ConvertSamplesIn<Storage>(samples.data(), bytes.data(), int(samples.size()));
  return samples;
}

template <class Storage>
Bytes Out(const std::vector<int>& samples) {
  Bytes bytes(samples.size() * Storage::kBytes);
  ConvertSamplesOut<Storage>(bytes.data(), samples.data(), int(samples.size()));
  return bytes;
}

template <class Storage>
void ExpectStoredIn(const std::string& id) {
  const EngineCase& data = Engine::Case(id);
  EXPECT_EQ(In<Storage>(data.In<unsigned char>("bytes")), data.Out("samples")) << id;
}

template <class Storage>
void ExpectStoredOut(const std::string& id) {
  const EngineCase& data = Engine::Case(id);
  EXPECT_EQ(Out<Storage>(data.In("samples")), data.Out<unsigned char>("bytes")) << id;
}

}  // namespace

TEST(LSampleFormats, GivesTheComputedSamplesAndBytes) {
  ExpectStoredIn<LSF16>("samples/in/LSF16");
  ExpectStoredIn<LSFS8>("samples/in/LSFS8");
  ExpectStoredIn<LSFFRE32>("samples/in/LSFFRE32");
  const EngineCase& packed = Engine::Case("samples/in/LSFLE24");
  std::vector<int> wanted = packed.Out("samples");
  wanted[1] = 524288;  // 0x7fffff: the data lets the rounding wrap to -524288
  EXPECT_EQ(In<LSFLE24>(packed.In<unsigned char>("bytes")), wanted);
  ExpectStoredOut<LSF16>("samples/out/LSF16");
  ExpectStoredOut<LSFBE8>("samples/out/LSFBE8");
  ExpectStoredOut<LSFLE24>("samples/out/LSFLE24");
}

TEST(LSampleFormats, TheOtherFormsAreTheSameValuesInOtherBytes) {
  const std::vector<int> samples = {0, 1, 7, 8, -8, -9, 0x7fff0, -0x80000, 0x12340, -0x12340};
  const auto swapped = [](Bytes bytes, std::size_t size) {
    for (std::size_t at = 0; at < bytes.size(); at += size)
      std::reverse(bytes.begin() + long(at), bytes.begin() + long(at + size));
    return bytes;
  };
  EXPECT_EQ(Out<LSFBE16>(samples), swapped(Out<LSF16>(samples), 2));
  EXPECT_EQ(Out<LSFBE32>(samples), swapped(Out<LSF32>(samples), 4));
  EXPECT_EQ(Out<LSFBE24>(samples), swapped(Out<LSFLE24>(samples), 3));
  EXPECT_EQ(In<LSFBE16>(swapped(Out<LSF16>(samples), 2)), In<LSF16>(Out<LSF16>(samples)));
  EXPECT_EQ(In<LSFBE24>(Out<LSFBE24>(samples)), samples);
  EXPECT_EQ(In<LSFBE32>(Out<LSFBE32>(samples)), samples);
  EXPECT_EQ(In<LSFF32>(Out<LSFF32>(samples)), samples);
}

TEST(LSampleFormats, EdgesOfTheRange) {
  EXPECT_EQ(Out<LSF16>({524288}), (Bytes{0x00, 0x80}));                        // wraps to -32768
  EXPECT_EQ(In<LSF32>({0xff, 0xff, 0xff, 0x7f}), (std::vector<int>{524288}));  // rounds up, no click
  EXPECT_EQ(In<LSFU8>({0, 128, 255}), (std::vector<int>{-524288, 0, 520192}));
  EXPECT_EQ(Out<LSFU8>({-524288, 2047, 2048, 520192}), (Bytes{0, 128, 129, 255}));
  // 1.0 and 1e30 as double, and no number: 524272, the greatest int, 0
  EXPECT_EQ(In<LSFF64>({0,    0,    0,    0,    0, 0, 0xf0, 0x3f, 0xea, 0x8c, 0xa0, 0x39,
                        0x59, 0x3e, 0x29, 0x46, 0, 0, 0,    0,    0,    0,    0xf8, 0x7f}),
            (std::vector<int>{524272, 2147483647, 0}));
}

TEST(LSampleFormats, CompandedCodes) {
  const EngineCase& data = Engine::Case("samples/roundtrip/LSFULAW");
  EXPECT_EQ(Out<LSFULAW>(In<LSFULAW>(data.In<unsigned char>("bytes"))), data.Out<unsigned char>("bytes"));
  // ITU-T G.711 on the 16-bit scale: mu-law 0x80 is 32124, 0xff is 0; A-law 0xaa is 32256, 0xd5 is 8, 0x55 is -8.
  EXPECT_EQ(In<LSFULAW>({0x80, 0x00, 0xff}), (std::vector<int>{32124 * 16, -32124 * 16, 0}));
  EXPECT_EQ(In<LSFALAW>({0xaa, 0x2a, 0xd5, 0x55}), (std::vector<int>{32256 * 16, -32256 * 16, 8 * 16, -8 * 16}));
  Bytes codes(256);
  for (std::size_t code = 0; code < codes.size(); ++code) codes[code] = static_cast<unsigned char>(code);
  EXPECT_EQ(Out<LSFALAW>(In<LSFALAW>(codes)), codes);
  EXPECT_EQ(Out<LSFULAW>({2147483647, -2147483647}), (Bytes{0x80, 0x00}));  // clipped, not wrapped
}

TEST(LSampleFormats, TheDeviceConversionSaturates) {
  const std::vector<int> samples = {0, 1, -1, 524287, 524288, 0x200000, -524288, -524289, 2147483647, -2147483647 - 1};
  std::vector<int> device(samples.size());
  ConvertSamplesToDevice(device.data(), samples.data(), int(samples.size()));
  EXPECT_EQ(device, (std::vector<int>{0, 4096, -4096, 0x7ffff000, 0x7ffff000, 0x7ffff000, -2147483647 - 1,
                                      -2147483647 - 1, 0x7ffff000, -2147483647 - 1}));
}
