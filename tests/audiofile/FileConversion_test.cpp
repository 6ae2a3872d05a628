#include <sys/resource.h>

#include "audiofile/AudioFileTest.h"
#include "audiofile/LAifFile.h"
#include "audiofile/LWaveFile.h"
#include "audiofile/convert/FileConverter.h"
#include "foundation/TSettings.h"
#include "support/LTestPlatform.h"

namespace {

// Hears a converter's notifications.
class Listener final : public LQueuedNotifyDataHandler {
 public:
  ~Listener() override { QueuedNotifyDataHandlerDestroy(); }
  void EvQueuedNotifyData(unsigned id, const void* data, unsigned long /*size*/) override {
    if (id == FileConverter::kComplete) ends.push_back(*static_cast<const FileConversionDone*>(data));
    if (id == FileConverter::kProgress) percents.push_back(static_cast<const FileConversionProgress*>(data)->percent);
    if (onEvent) onEvent();
  }
  std::vector<FileConversionDone> ends;
  std::vector<int> percents;
  std::function<void()> onEvent;
};

class FileConversionTest : public AudioFileTest {
 protected:
  explicit FileConversionTest(LTestPlatform::Threads threads = LTestPlatform::Threads::Offline) : platform_(threads) {
    TSettings::kCachePath.Set(Path("cache"));
    std::filesystem::create_directory(Path("cache"));
  }

  // A tone on one channel at 22050 Hz.
  std::string Source(const std::string& name, int seconds = 2) const {
    std::filesystem::create_directories(LFile::FolderFromPath(Path(name)));
    LSoundSink sink = LAifFile::OpenAIFFSink(Path(name), 22050, 1, 16, afftPcm);
    std::vector<int> second(22050);
    for (int i = 0; i < 22050; ++i) second[std::size_t(i)] = i % 50 < 25 ? 200000 : -200000;
    for (int i = 0; i < seconds; ++i)
      for (int at = 0; at < 22050; at += 7350) sink.Write(second.data() + at, 7350);
    return Path(name);
  }
  const FileConversionDone& Convert(const std::string& path) {
    const std::size_t before = heard_.ends.size();
    EXPECT_TRUE(converter_.ConvertFileForDeck(path, heard_, 1, 7, nullptr));
    while (heard_.ends.size() == before) platform_.run.RunSlice();
    return heard_.ends.back();
  }
  std::size_t FilesIn(const std::string& folder) const { return LFile::NamesInFolder(Path(folder)).size(); }

  LTestPlatform platform_;
  Listener heard_;
  FileConverter converter_;
};

TEST_F(FileConversionTest, MakesADeckWaveOnceForEachStateOfASource) {
  const std::string source = Source("a b.aif");
  const FileConversionDone done = Convert(source);
  EXPECT_EQ(done.result, lprDone);
  EXPECT_EQ(done.value, 7);
  EXPECT_EQ(done.deck, 1);
  EXPECT_EQ(heard_.percents.front(), 0);
  EXPECT_EQ(heard_.percents.back(), 100);
  EXPECT_TRUE(LFileCache::IsCachePath(done.cached, source));
  LSoundSource wave = LWaveFile::OpenSource(done.cached);
  EXPECT_EQ(wave.GetSampleRate(), 44100);
  EXPECT_EQ(wave.GetChannels(), 2);
  EXPECT_NEAR(wave.GetEndSample(), 2 * 44100, 2);
  EXPECT_EQ(FilesIn("cache"), 2u);  // and its side file

  const auto written = LFile::ModificationTime(done.cached);
  std::filesystem::last_write_time(done.cached, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  EXPECT_STREQ(Convert(source).cached, done.cached);
  EXPECT_LT(LFile::ModificationTime(done.cached), written);  // not made again

  std::filesystem::last_write_time(source, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  const std::string again = Convert(source).cached;
  EXPECT_NE(again, done.cached);
  EXPECT_TRUE(LFile::Exists(again));
}

TEST_F(FileConversionTest, SourcesOfOneNameAndSecondKeepApart) {
  const std::string one = Source("x/a.aif", 1), two = Source("y/a.aif", 2);
  std::filesystem::last_write_time(two, std::filesystem::last_write_time(one));
  const std::string first = Convert(one).cached, second = Convert(two).cached;
  EXPECT_NE(first, second);
  EXPECT_TRUE(LFileCache::IsCachePath(first, one));
  EXPECT_TRUE(LFileCache::IsCachePath(second, two));
  EXPECT_NEAR(LWaveFile::OpenSource(first).GetEndSample(), 44100, 2);
  EXPECT_NEAR(LWaveFile::OpenSource(second).GetEndSample(), 88200, 2);
  TSettings::kCacheYesNo.Set(false);
  EXPECT_NE(std::string(Convert(one).cached), Convert(two).cached);
}

TEST_F(FileConversionTest, WhatADeadConversionLeftIsMadeAnew) {
  const std::string source = Source("a.aif"), cached = LFileCache::ClaimCachedPath(source);
  std::string growing;
  {
    LSoundSink sink = LWaveFile::OpenSinkPCM(cached, 44100, 2, 16, 0);
    const std::vector<int> silence(2000);
    sink.Write(silence.data(), 1000);
    EXPECT_EQ(LFileCache::GetState(cached, source), LFileCache::Growing);
    growing = LFile::ReadAll(cached).value_or("");
  }
  LFile::WriteReplacing(cached, growing);
  EXPECT_EQ(Convert(source).result, lprDone);
  EXPECT_NEAR(LWaveFile::OpenSource(cached).GetEndSample(), 88200, 2);
  LFile::WriteReplacing(cached, LFile::ReadAll(cached).value_or("").substr(0, 5000));  // cut, with a final header
  EXPECT_EQ(LFileCache::GetState(cached, source), LFileCache::Missing);
}

TEST_F(FileConversionTest, FailuresLeaveNothingBehind) {
  const FileConversionDone damaged = Convert(Put("bad.flac", std::string(3000, 'x')));
  EXPECT_EQ(damaged.result, lprFailed);
  EXPECT_NE(std::string(damaged.reason).find("bad.flac"), std::string::npos);
  EXPECT_EQ(FilesIn("cache"), 0u);

  const std::string source = Source("long.aif", 20);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  rlimit full = before;
  full.rlim_cur = 1000000;
  ::setrlimit(RLIMIT_FSIZE, &full);
  const LProcessResult result = Convert(source).result;
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(result, lprFailed);
  EXPECT_EQ(FilesIn("cache"), 0u);

  TSettings::kCachePath.Set(Path("missing"));
  EXPECT_EQ(Convert(source).result, lprFailed);
}

TEST_F(FileConversionTest, ClearingKeepsWhatIsNotOurs) {
  const std::string one = Convert(Source("one.aif")).cached, two = Convert(Source("two.aif")).cached;
  Put("cache/mine.wav", "RIFF");
  Put("cache/mine.txt", "text");
  std::filesystem::create_directory(Path("cache/folder.wav"));
  std::filesystem::create_symlink(Path("one.aif"), Path("cache/link.wav"));
  Put("cache/link.wav.src", "x");
  EXPECT_EQ(LFileCache::ClearFolder(Path("cache"), [&](const std::string& path) { return path == two; }), 1);
  EXPECT_FALSE(LFile::Exists(one));
  for (const std::string& kept : {two, Path("cache/mine.wav"), Path("cache/mine.txt"), Path("cache/folder.wav"),
                                  Path("cache/link.wav"), Path("one.aif")})
    EXPECT_TRUE(LFile::Exists(kept)) << kept;

  TSettings::kCacheYesNo.Set(false);
  const std::string temporary = Convert(Source("three.aif")).cached;
  EXPECT_EQ(LFile::NameFromPath(temporary), "three.aif.wav");
  EXPECT_EQ(LFileCache::ClearFolder(LFileCache::GetTempFolder(), [](const std::string&) { return false; }), 1);
  EXPECT_FALSE(LFile::Exists(temporary));
}

TEST_F(FileConversionTest, SweepsOldTemporaryFilesOnly) {
  const std::string folder = platform_.folders.GetTempFolder();
  const struct {
    const char* name;
    bool old, goes;
  } rows[] = {{"0aB3dEf.jpg", true, true},     {"0aB3dEf.png", false, false}, {"Temp12.wav", true, true},
              {"Temp12.wav.lock", true, true}, {"list.part", true, true},     {"Temperament.wav", true, false},
              {"notes.txt", true, false}};
  for (const auto& row : rows) {
    const std::string path = LFile::MakePath(folder, row.name);
    LFile::WriteReplacing(path, "x");
    if (row.old)
      std::filesystem::last_write_time(path,
                                       std::filesystem::file_time_type::clock::now() - std::chrono::hours(24 * 8));
  }
  EXPECT_EQ(LFileCache::SweepTempFolder(), 4);
  for (const auto& row : rows) EXPECT_EQ(LFile::Exists(LFile::MakePath(folder, row.name)), !row.goes) << row.name;
}

class FileConverterThread : public FileConversionTest {
 protected:
  FileConverterThread() : FileConversionTest(LTestPlatform::Threads::Real) {}
};

TEST_F(FileConverterThread, AStopHalfWayLeavesNothing) {
  const std::string source = Source("long.aif", 120);
  bool stopped = false;
  heard_.onEvent = [&] {
    if (stopped || heard_.percents.empty() || heard_.percents.back() < 5) return;
    EXPECT_TRUE(converter_.IsConverting());
    EXPECT_EQ(converter_.GetSource(), source);
    EXPECT_FALSE(converter_.ConvertFileForDeck(Path("other.aif"), heard_, 0, 8, nullptr));
    converter_.SetDeck(0);
    converter_.StopConverting();
    stopped = true;
  };
  ASSERT_TRUE(converter_.ConvertFileForDeck(source, heard_, 1, 7, nullptr));
  ASSERT_TRUE(platform_.WaitUntil([&] { return !heard_.ends.empty(); }, 60000));
  EXPECT_EQ(heard_.ends[0].result, lprStopped);
  EXPECT_EQ(heard_.ends[0].deck, 0);
  EXPECT_LT(heard_.percents.back(), 100);
  EXPECT_TRUE(platform_.WaitUntil([&] { return FilesIn("cache") == 0; }));
  heard_.onEvent = nullptr;
  // The converter is free as soon as its end was told.
  ASSERT_TRUE(converter_.ConvertFileForDeck(Source("short.aif"), heard_, 1, 9, nullptr));
  ASSERT_TRUE(platform_.WaitUntil([&] { return heard_.ends.size() == 2; }, 60000));
  EXPECT_EQ(heard_.ends[1].result, lprDone);
}

TEST_F(FileConverterThread, TwoConvertersOfOneFileShareItsWave) {
  const std::string source = Source("a.aif", 30);
  FileConverter second;
  ASSERT_TRUE(converter_.ConvertFileForDeck(source, heard_, 0, 1, nullptr));
  ASSERT_TRUE(second.ConvertFileForDeck(source, heard_, 1, 2, nullptr));
  ASSERT_TRUE(platform_.WaitUntil([&] { return heard_.ends.size() == 2; }, 60000));
  EXPECT_EQ(heard_.ends[0].result, lprDone);
  EXPECT_EQ(heard_.ends[1].result, lprDone);
  EXPECT_STREQ(heard_.ends[0].cached, heard_.ends[1].cached);
  LSoundSource wave = LWaveFile::OpenSource(heard_.ends[0].cached);
  ASSERT_NEAR(wave.GetEndSample(), 30 * 44100, 2);
  const auto samples = ReadWhole(wave);
  int silent = 0;
  for (std::size_t i = 2; i < samples.size(); i += 2) silent = samples[i] == 0 ? silent + 1 : 0;
  EXPECT_LT(silent, 100);
}

}  // namespace
