// Our Layer III decoder on the conformance streams, in every form: deviation from the reference output, which is rounded to
// 16 bits (that alone has an RMS of 8.8e-6 and reaches 1.5e-5). Full accuracy is an RMS below 8.81e-6 without this rounding
// and a largest difference below 6.1e-5. Prints a table.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "audiofile/mp3/LMP3Source.h"
#include "foundation/LFile.h"

namespace {

constexpr const char* kStreams[] = {"M2L3_bitrate_22_all", "M2L3_compl24", "l3-compl",    "l3-he_32khz", "l3-he_48khz",
                                    "l3-hecommon",         "l3-si",        "l3-si_block", "l3-si_huff"};
constexpr int kReferenceScale = 32768, kClipped = 32767;

void Measure(const std::string& folder, const char* name, const LMP3Kernels& kernels) {
  const std::string bytes = LFile::ReadAll(folder + "/" + name + ".pcm").value_or("");
  std::vector<short> reference(bytes.size() / sizeof(short));
  std::memcpy(reference.data(), bytes.data(), reference.size() * sizeof(short));

  LMP3Source source(folder + "/" + name + ".bit", true, false, kernels);
  const int channels = source.GetChannels(), frames = source.GetEndSample();
  std::vector<int> samples(std::size_t(frames) * std::size_t(channels));
  source.Read(samples.data(), frames);

  const std::size_t lead = std::size_t(LMP3Source::kDecoderDelay) * std::size_t(channels);
  double squares = 0, largest = 0;
  long long compared = 0;
  for (std::size_t i = lead; i < std::min(reference.size(), samples.size()); ++i) {
    if (std::abs(int{reference[i]}) >= kClipped) continue;
    const double error = std::fabs(samples[i - lead] / double(kFullScale) - reference[i] / double(kReferenceScale));
    squares += error * error;
    largest = std::max(largest, error);
    ++compared;
  }
  std::printf("%-20s %-7s %6d %2d %8d %8lld   %.2e   %.2e\n", name, kernels.name, source.GetSampleRate(), channels,
              frames, compared / channels, std::sqrt(squares / double(std::max(1LL, compared))), largest);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: mp3_conformance FOLDER\n");
    return 2;
  }
  std::printf("%-20s %-7s %6s %2s %8s %8s   %-8s   %-8s\n", "stream", "form", "Hz", "ch", "frames", "compared", "RMS",
              "largest");
  for (const char* const name : kStreams)
    for (const LMP3Kernels* const kernels : LMP3UsableKernels()) Measure(arguments[1], name, *kernels);
}
