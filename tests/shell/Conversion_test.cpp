// Tracks that are decoded before they play: on a deck, in a dialog, in the background.
#include <gtest/gtest.h>

#include <filesystem>

#include "audiofile/LAifFile.h"
#include "foundation/LFile.h"
#include "shell/FileConversionWithProgressDialog.h"
#include "shell/ShellRig.h"
#include "shell/TBackGroundConverting.h"

namespace {

// An AIFF file of a tone at 22050 Hz, one channel.
std::string Aiff(const LTestPlatform& platform, const std::string& name, int seconds) {
  const std::string path = platform.TempPath(name);
  LSoundSink sink = LAifFile::OpenAIFFSink(path, 22050, 1, 16, afftPcm);
  std::vector<int> tenth(2205);
  for (int i = 0; i < 2205; ++i) tenth[std::size_t(i)] = int(200000 * std::sin(2 * M_PI * 440 * i / 22050));
  for (int i = 0; i < seconds * 10; ++i) sink.Write(tenth.data(), 2205);
  return path;
}

double Peak(const std::vector<int>& heard, double from, double seconds) {
  int peak = 0;
  for (auto i = std::size_t(from * kDeckRate); i < std::size_t((from + seconds) * kDeckRate) && i < heard.size(); ++i)
    peak = std::max(peak, std::abs(heard[i]));
  return peak;
}

TEST(Conversion, ADeckPlaysWhatItHadToDecodeFirst) {
  ShellRig rig;
  const std::string track = Aiff(rig.platform, "track.aif", 5), other = rig.Track("other.wav", 880, 5);
  const std::string state = rig.platform.TempPath("state.json");
  EXPECT_TRUE(rig.Run("0 load A " + track + "\n0 command Play/Pause A\n2 state " + state + "\n2.5 load A " + other +
                      "\n3 quit\n"));
  EXPECT_NEAR(Peak(rig.heard, 1, 0.5), 200000, 8000);
  const std::string text = LFile::ReadAll(state).value_or("");
  EXPECT_NE(text.find("track.aif"), std::string::npos);
  EXPECT_NE(text.find("\"playing\": true"), std::string::npos);
}

TEST(Conversion, ADialogConvertsOrSaysWhyNot) {
  ShellRig rig;
  std::string cached;
  EXPECT_EQ(ConvertWithProgressDialog({Aiff(rig.platform, "a.aif", 1)}, cached), lprDone);
  EXPECT_NEAR(LWaveFile::OpenSource(cached).GetEndSample(), kDeckRate, 2);
  LFile::WriteReplacing(rig.platform.TempPath("bad.ogg"), "nothing");
  EXPECT_EQ(ConvertWithProgressDialog({rig.platform.TempPath("bad.ogg")}, cached), lprFailed);
  EXPECT_TRUE(rig.Logged("Die Decodierung ist während der Komprimierung der Datei \"" +
                         rig.platform.TempPath("bad.ogg") + "\" ins Wave-Format fehlgeschlagen."));

  class Refuses final : public LRawSettingsAsker {
    bool AskRawSettings(const LRawSection& section) override {
      return std::string(section.name) != kVoxAudioSection.name;
    }
  } refuses;
  LFile::WriteReplacing(rig.platform.TempPath("a.vox"), std::string(4000, '\x37'));
  LFile::WriteReplacing(rig.platform.TempPath("a.raw"), std::string(4000, '\x37'));
  LProcessInterfaceVoid process;
  for (LProcessInterface* in : {static_cast<LProcessInterface*>(nullptr), static_cast<LProcessInterface*>(&process)}) {
    EXPECT_EQ(ConvertWithProgressDialog({rig.platform.TempPath("a.vox"), nullptr, in, &refuses}, cached), lprStopped);
    EXPECT_EQ(ConvertWithProgressDialog({rig.platform.TempPath("a.raw"), nullptr, in, &refuses}, cached), lprDone);
  }
}

TEST(Conversion, TheBackgroundRestoresWavesThatHaveGone) {
  LTestPlatform platform;
  class Tracks final : public TCachedTracks {
   public:
    int Count() const override { return int(list.size()); }
    Track Get(int index) const override { return list[std::size_t(index)]; }
    void SetPlayable(int index, bool playable) override { list[std::size_t(index)].playable = playable; }
    void EvRestored(const FileConversionDone& done) override {
      list[std::size_t(done.value)].playable = done.result == lprDone;
      list[std::size_t(done.value)].path = done.cached;
    }
    std::vector<Track> list;
  } tracks;
  const std::string one = Aiff(platform, "one.aif", 1), two = Aiff(platform, "two.aif", 1);
  tracks.list = {{"/gone/1.wav", one}, {"/gone/x.wav", ""}, {"/gone/y.wav", "/gone/too"}, {"/gone/2.wav", two}};
  TBackGroundConverting background(tracks);
  background.StartBackGroundConverting();
  platform.run.RunFrames(kDeckRate);
  EXPECT_TRUE(LFile::Exists(tracks.list[0].path));
  EXPECT_FALSE(LFile::Exists(tracks.list[3].path));  // the converter was busy
  platform.run.RunFrames(11 * kDeckRate);
  EXPECT_TRUE(tracks.list[3].playable && LFile::Exists(tracks.list[3].path));
  EXPECT_EQ(tracks.list[1].path, "/gone/x.wav");
  LFile::Remove(tracks.list[0].path);
  platform.run.RunFrames(31 * kDeckRate);
  EXPECT_TRUE(tracks.list[0].playable && LFile::Exists(tracks.list[0].path));
}

}  // namespace
