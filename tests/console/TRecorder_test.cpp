#include "console/TRecorder.h"

#include <gtest/gtest.h>

#include "Rig.h"
#include "audiofile/LWaveFile.h"
#include "console/TRecordingFile.h"
#include "foundation/LFile.h"
#include "foundation/TSettings.h"

namespace {

std::vector<int> ReadWave(const std::string& path) {
  LSoundSource source = LWaveFile::OpenSource(path);
  std::vector<int> samples(std::size_t(std::max(source.GetEndSample(), 0)) * 2);
  source.Read(samples.data(), source.GetEndSample());
  return samples;
}

TEST(Recording, HoldsExactlyWhatWasHeardFromStartToStop) {
  ConsoleRig rig;
  const std::string path = rig.platform.TempPath("mix.wav");
  const auto track = Engine::Noise(3, 400000, 2 * 20 * kDeckRate);
  rig.Load(kDeckA, track);
  ASSERT_TRUE(rig.console->StartRecordingTo(path));
  rig.Deck(kDeckA).Play();
  rig.RunMs(5000);
  rig.console->SetCrossFadePosition(20);  // a change that alters nothing for this deck: the tape runs on without a seam
  rig.RunMs(5000);
  const auto heardFrames = rig.Heard().size();
  rig.console->StopRecording();
  const auto recorded = ReadWave(path);
  // Up to what the device is about to take: four slices.
  EXPECT_NEAR(double(recorded.size() / 2), double(heardFrames), 4 * 512 + 512);
  // At the seam two fades between equal signals may lose their last bit.
  for (std::size_t i = 0; i < recorded.size(); ++i) ASSERT_NEAR(recorded[i], track[i], 16) << i;
}

TEST(Recording, OtherRateAndChannelsHaveTheRightLengthAndNoGap) {
  ConsoleRig rig;
  TSettings::kAiffSampleRate.Set(22050);
  TSettings::kAiffChannels.Set(1);
  const std::string path = rig.platform.TempPath("mix.aiff");
  std::vector<int> constant(std::size_t(12 * kDeckRate) * 2, 160000);
  rig.Load(kDeckA, constant);
  ASSERT_TRUE(rig.console->StartRecordingTo(path));
  rig.Deck(kDeckA).Play();
  rig.RunMs(10000);
  rig.console->StopRecording();
  const std::string content = LFile::ReadAll(path).value_or("");
  const double seconds = double(content.size() - 54) / 2 / 22050;
  EXPECT_NEAR(seconds, 10, 0.1);
  for (std::size_t i = 54 + 2 * 100; i + 200 < content.size(); i += 2) {
    const int sample = static_cast<signed char>(content[i]) * 256 + static_cast<unsigned char>(content[i + 1]);
    ASSERT_NEAR(sample, 10000, 20) << (i - 54) / 2;
  }
}

TEST(Recording, AsMp3HoldsTheMixAtTheRateOfItsSettings) {
  if (std::system("ffmpeg -version >/dev/null 2>&1") != 0) GTEST_SKIP() << "ffmpeg is missing";
  const struct { int kbit, rate, channels; } rows[] = {{160, kDeckRate, 2}, {16, 22050, 1}};
  for (const auto& row : rows) {
    ConsoleRig rig;
    TSettings::kMp3CbrBitRate.Set(row.kbit);
    const std::string path = rig.platform.TempPath("mix.mp3"), raw = rig.platform.TempPath("mix.raw");
    std::vector<int> track = Tone(441, 200000, 12 * kDeckRate);
    for (std::size_t i = 1; i < track.size(); i += 2) track[i] = track[i - 1];  // in phase, for the mono mix
    rig.Load(kDeckA, track);
    ASSERT_TRUE(rig.console->StartRecordingTo(path));
    rig.Deck(kDeckA).Play();
    rig.RunMs(10000);
    rig.console->StopRecording();
    ASSERT_EQ(std::system(("ffmpeg -v error -y -i " + path + " -f s16le " + raw).c_str()), 0);
    const std::string bytes = LFile::ReadAll(raw).value_or("");
    const auto frames = bytes.size() / 2 / std::size_t(row.channels);
    EXPECT_NEAR(double(frames) / row.rate, 10, 0.2);
    // 200000 of 524288 is 12500 of 32768: its mean square gives back the amplitude.
    std::vector<int> left;
    for (std::size_t i = 0; i < frames; ++i) {
      const auto* at = reinterpret_cast<const unsigned char*>(bytes.data()) + 2 * i * std::size_t(row.channels);
      left.push_back(static_cast<short>(at[0] | at[1] << 8));
    }
    EXPECT_NEAR(Rms(left, frames / 4, frames / 2) * std::sqrt(2), 12200, 400) << row.kbit;
  }
}

TEST(Recording, AFailingDiskSetsTheErrorAndTheMixPlaysOn) {
  ConsoleRig rig;
  rig.Load(kDeckA, Tone(300, 300000, 60 * kDeckRate));
  EXPECT_FALSE(rig.console->StartRecordingTo(rig.platform.TempPath("no/such/folder/mix.wav")));
  EXPECT_FALSE(rig.console->StartRecordingTo(rig.platform.TempPath("mix.xyz")));
  rig.Deck(kDeckA).Play();
  rig.RunMs(500);
  EXPECT_TRUE(rig.Deck(kDeckA).IsPlaying());
}

TEST(Recording, NamesNeverOverwriteAnEarlierRecording) {
  ConsoleRig rig;
  TSettings::kDefaultRecordFolder.Set(rig.platform.folder);
  TSettings::kAutoRecordFileName.Set(false);
  TSettings::kRecordingFileName.Set("Abend: 1/2");
  TSettings::kRecordingExtension.Set(".wav");
  std::vector<std::string> names;
  for (int i = 0; i < 3; ++i) {
    names.push_back(LFile::NameFromPath(TRecordingFile::NewPath()));
    ASSERT_TRUE(rig.console->StartRecording());
    rig.console->StopRecording();
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Abend 12.wav", "Abend 12-1.wav", "Abend 12-2.wav"}));
}

TEST(TRecorder, AResyncFadesTheOldTailUnderTheNewMixAndNeverGoesBackBehindWhatWasTaken) {
  LTestPlatform platform;
  const std::string path = platform.TempPath("tail.wav");
  TRecorder recorder;
  recorder.SetRecordingSink(LWaveFile::OpenSinkPCM(path, kDeckRate, 2, 16, 0));
  recorder.Enable(true);
  std::vector<int> ones(2 * 4096, 16000), twos(2 * 4096, 32000);
  recorder.Write(ones.data(), 4096, 2);
  recorder.Resync(1024);
  recorder.Write(twos.data(), 4096, 2);
  recorder.Resync(1 << 20);  // longer than all: empties the ring
  recorder.Write(ones.data(), 100, 2);
  recorder.Stop();
  EXPECT_EQ(ReadWave(path).size(), 200u);

  recorder.SetRecordingSink(LWaveFile::OpenSinkPCM(path, kDeckRate, 2, 16, 0));
  recorder.Enable(true);
  recorder.Write(ones.data(), 4096, 2);
  recorder.Resync(1024);
  recorder.Write(twos.data(), 4096, 2);
  recorder.Stop();
  const auto tape = ReadWave(path);
  ASSERT_EQ(tape.size(), 2u * (4096 - 1024 + 4096));
  EXPECT_EQ(tape[2 * 3071], 16000);
  EXPECT_NEAR(tape[2 * 3072], 16000, 32);  // the fade starts at the old signal
  EXPECT_NEAR(tape[2 * (3072 + 512)], 32000 / 8 + 16000 * 7 / 8, 64);
  EXPECT_NEAR(tape.back(), 32000, 32);
}

}  // namespace
