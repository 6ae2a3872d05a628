// Our decoder against the reference output of the conformance streams, and against another decoder over streams that use
// everything the format has.
#include "audiofile/AudioFileTest.h"
#include "audiofile/LMP3OtherDecoder.h"
#include "audiofile/LMP3StreamWriter.h"
#include "audiofile/mp3/LMP3Source.h"

namespace {

constexpr int kDelay = LMP3Source::kDecoderDelay;

// Sample 0 is that of position 0: number 529 of the decoder's output.
std::vector<int> Decode(const std::string& path, const LMP3Kernels& kernels, int& channels) {
  LMP3Source source(path, true, false, kernels);
  channels = source.GetChannels();
  std::vector<int> samples(std::size_t(source.GetEndSample()) * std::size_t(channels));
  source.Read(samples.data(), source.GetEndSample());
  return samples;
}

struct Difference {
  double rms = 0, largest = 0;
  std::size_t count = 0;
};
template <class Reference, class Skip>
Difference Compare(const std::vector<int>& samples, int channels, const std::vector<Reference>& reference,
                   double fullScale, Skip skip) {
  Difference difference;
  const std::size_t lead = std::size_t(kDelay) * std::size_t(channels);
  for (std::size_t i = lead; i < std::min(reference.size(), samples.size()); ++i) {
    if (skip(reference[i])) continue;
    const double error = std::fabs(samples[i - lead] / double(kFullScale) - double(reference[i]) / fullScale);
    difference.rms += error * error;
    difference.largest = std::max(difference.largest, error);
    ++difference.count;
  }
  difference.rms = std::sqrt(difference.rms / double(std::max<std::size_t>(1, difference.count)));
  return difference;
}

template <class Sample>
std::vector<Sample> FromBytes(const std::string& bytes) {
  std::vector<Sample> samples(bytes.size() / sizeof(Sample));
  std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(Sample));
  return samples;
}

class LMP3Decoder : public AudioFileTest {};

// Full accuracy, with what the rounding of the reference to 16 bits adds: 2^-15 / sqrt(12) twice, and 2^-14 + 2^-16.
TEST_F(LMP3Decoder, HasFullAccuracyOnTheConformanceStreamsInEveryForm) {
  struct Stream {
    const char* name;
    int rate, channels, referenceFrames;
  };
  constexpr Stream kStreams[] = {
      {"M2L3_bitrate_22_all", 22050, 1, 274176},
      {"M2L3_compl24", 24000, 1, 122112},
      {"l3-compl", 48000, 1, 248832},
      {"l3-he_32khz", 32000, 1, 171648},
      {"l3-he_48khz", 48000, 1, 171648},
      {"l3-hecommon", 44100, 2, 33408},
      {"l3-si", 44100, 1, 134784},
      {"l3-si_block", 44100, 1, 72576},
      {"l3-si_huff", 44100, 1, 85248},
  };
  constexpr double kRmsLimit = 1.25e-5, kLargestLimit = 7.6e-5;
  const std::string folder = TestDataPath("mp3/");
  for (const Stream& stream : kStreams) {
    const auto reference = FromBytes<short>(LFile::ReadAll(folder + stream.name + ".pcm").value_or(""));
    ASSERT_EQ(reference.size(), std::size_t(stream.referenceFrames * stream.channels)) << stream.name;
    std::vector<int> plain;
    for (const LMP3Kernels* const kernels : LMP3UsableKernels()) {
      int channels = 0;
      const std::vector<int> samples = Decode(folder + stream.name + ".bit", *kernels, channels);
      EXPECT_EQ(channels, stream.channels) << stream.name;
      // Where the reference is clipped it says nothing.
      const Difference difference =
          Compare(samples, channels, reference, 32768, [](short s) { return std::abs(int{s}) >= 32767; });
      EXPECT_GT(difference.count, reference.size() * 9 / 10 - 1000) << stream.name;
      EXPECT_LT(difference.rms, kRmsLimit) << stream.name << ' ' << kernels->name;
      EXPECT_LT(difference.largest, kLargestLimit) << stream.name << ' ' << kernels->name;
      if (plain.empty()) plain = samples;
      EXPECT_TRUE(plain == samples) << stream.name << ' ' << kernels->name << ": the forms differ";
    }
  }
}

TEST_F(LMP3Decoder, AgreesWithAnotherDecoderOnEverythingTheFormatHas) {
  const LMP3OtherDecoder other;
  if (!other.IsThere()) GTEST_SKIP() << "libmpg123 is missing";
  std::vector<LMP3StreamKind> kinds;
  for (int version = 0; version < 3; ++version)
    for (int rate = 0; rate < 3; ++rate)
      for (const auto& [mode, extension] : {std::pair{3, 0}, {0, 0}, {2, 0}, {1, 0}, {1, 1}, {1, 2}, {1, 3}})
        kinds.push_back({version, rate, mode, extension, (rate + extension) % 2 == 1});
  unsigned seed = 1;
  for (const LMP3StreamKind& kind : kinds) {
    const std::string path = Put("random.mp3", LMP3StreamWriter(kind, ++seed).Make());
    const std::vector<float> reference = other.Decode(path, false);
    for (const LMP3Kernels* const kernels : LMP3UsableKernels()) {
      int channels = 0;
      const std::vector<int> samples = Decode(path, *kernels, channels);
      const Difference difference = Compare(samples, channels, reference, 1, [](float) { return false; });
      float peak = 1;
      for (const float s : reference) peak = std::max(peak, std::fabs(s));
      const auto name = ::testing::Message() << kernels->name << ": version " << kind.version << " rate "
                                             << kind.rateIndex << " mode " << kind.mode << '/' << kind.modeExtension;
      EXPECT_EQ(reference.size(), samples.size()) << name;
      EXPECT_LT(difference.largest, 5e-6 * double(peak)) << name;
    }
  }
}

}  // namespace
