// Files of other programs read by us, and ours by them.
#include "audiofile/AudioFileTest.h"
#include "audiofile/LAifFile.h"
#include "audiofile/LWaveFile.h"
#include "audiofile/TSourceOpen.h"

namespace {

class ForeignFiles : public AudioFileTest {};

// Who makes the file, and who says what its samples are: the other one, but for what sox does not know.
const char* const kSox = "sox -D -t s32 -r %d -c %d in.raw %s %s && ffmpeg -y -v error -i %s -f s32le out.raw";
const char* const kFfmpeg = "ffmpeg -y -v error -f s32le -ar %d -ac %d -i in.raw %s %s && sox -D %s -t s32 out.raw";
const char* const kFfmpegAlone =
    "ffmpeg -y -v error -f s32le -ar %d -ac %d -i in.raw %s %s && ffmpeg -y -v error -i %s -f s32le out.raw";

struct Row {
  const char* name;
  const char* command;
  const char* options;
  int rate, channels;
  int tolerance;  // of sound path samples; floats swapped have 16 steps less at full scale
};

const Row kRows[] = {
    {"a.wav", kFfmpeg, "-c:a pcm_u8", 8000, 1, 0},
    {"a.wav", kSox, "-e signed -b 16", 44100, 2, 0},
    {"a.wav", kFfmpeg, "-c:a pcm_s16le", 192000, 6, 0},  // extensible
    {"a.wav", kSox, "-e signed -b 24", 48000, 2, 0},     // extensible
    {"a.wav", kFfmpeg, "-c:a pcm_s24le", 96000, 1, 0},
    {"a.wav", kSox, "-e signed -b 32", 22050, 3, 0},
    {"a.wav", kFfmpeg, "-c:a pcm_f32le", 44100, 2, 1},
    {"a.wav", kSox, "-e floating-point -b 32", 11025, 1, 1},
    {"a.wav", kSox, "-e mu-law", 8000, 2, 0},
    {"a.wav", kFfmpeg, "-c:a pcm_alaw", 44100, 1, 0},
    {"a.aiff", kSox, "-e signed -b 8", 11025, 1, 0},
    {"a.aif", kFfmpeg, "-c:a pcm_s16be", 44100, 2, 0},
    {"a.aiff", kSox, "-e signed -b 24", 96000, 3, 0},
    {"a.aiff", kFfmpeg, "-c:a pcm_s32be", 32000, 2, 0},
    {"a.aiff", kFfmpeg, "-c:a pcm_s16le", 48000, 2, 0},  // AIFC, sowt
    {"a.aifc", kSox, "-e signed -b 16", 44100, 1, 0},
    {"a.aiff", kFfmpeg, "-c:a pcm_f32be", 44100, 2, 17},
    {"a.aiff", kFfmpegAlone, "-c:a pcm_mulaw", 8000, 1, 0},
    {"a.aiff", kFfmpegAlone, "-c:a pcm_alaw", 8000, 2, 0},
    {"a.voc", kFfmpeg, "-c:a pcm_s16le", 32000, 1, 0},
    {"a.voc", kSox, "-e unsigned -b 8", 10000, 1, 0},
};

TEST_F(ForeignFiles, ReadAsAnotherProgramReadsThem) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  for (const Row& row : kRows) {
    SCOPED_TRACE(std::string(row.name) + " " + row.options);
    const int frames = 10007;  // more than a block
    std::string noise;
    for (const int s : Engine::Noise(5, 0x7ffff000, std::size_t(frames) * std::size_t(row.channels)))
      noise += Le(unsigned(s), 4);
    Put("in.raw", noise);
    char command[400];
    std::snprintf(command, sizeof command, row.command, row.rate, row.channels, row.options, row.name, row.name);
    ASSERT_TRUE(Run(command)) << Bytes("log");
    LSoundSource source;
    ASSERT_EQ(TGenSourceOpen(source, Path(row.name)), lprDone);
    EXPECT_EQ(source.GetSampleRate(), row.rate);
    EXPECT_EQ(source.GetChannels(), row.channels);
    EXPECT_EQ(source.GetEndSample(), frames);
    EXPECT_FALSE(source.IsStreaming());
    EXPECT_LE(LargestDifference(ReadWhole(source), Samples32("out.raw")), row.tolerance);
  }
}

struct SinkRow {
  const char* name;
  LSoundSink (*open)(const std::string& path);
  int rate, channels;
  int tolerance;  // half a step of the stored form, in sound path samples; 8 bits of AIFF are cut, not rounded
};

constexpr int kLaw = 8200;  // half the largest step of G.711, and of the 16 bits before it

const SinkRow kSinks[] = {
    {"a.wav", [](const std::string& p) { return LWaveFile::OpenSinkPCM(p, 8000, 1, 8, 0); }, 8000, 1, 2048},
    {"a.wav", [](const std::string& p) { return LWaveFile::OpenSinkPCM(p, 44100, 2, 16, 0); }, 44100, 2, 8},
    {"a.wav", [](const std::string& p) { return LWaveFile::OpenSinkPCM(p, 96000, 6, 24, 0); }, 96000, 6, 1},
    {"a.wav", [](const std::string& p) { return LWaveFile::OpenSinkPCM(p, 48000, 2, 32, 0); }, 48000, 2, 1},
    {"a.wav",
     [](const std::string& p) {
       return LWaveFile::OpenSink(p, {3, 2, 44100, 32});
     },
     44100, 2, 1},
    {"a.wav", [](const std::string& p) { return LWaveFile::OpenSinkG711(p, 8000, 1, 6, 0); }, 8000, 1, kLaw},
    {"a.wav", [](const std::string& p) { return LWaveFile::OpenSinkG711(p, 8000, 1, 7, 0); }, 8000, 1, kLaw},
    {"a.aiff", [](const std::string& p) { return LAifFile::OpenAIFFSink(p, 11025, 1, 8, afftPcm); }, 11025, 1, 4095},
    {"a.aiff", [](const std::string& p) { return LAifFile::OpenAIFFSink(p, 44100, 2, 16, afftPcm); }, 44100, 2, 8},
    {"a.aiff", [](const std::string& p) { return LAifFile::OpenAIFFSink(p, 192000, 3, 24, afftPcm); }, 192000, 3, 1},
    {"a.aiff", [](const std::string& p) { return LAifFile::OpenAIFFSink(p, 32000, 2, 32, afftPcm); }, 32000, 2, 1},
    {"a.aiff", [](const std::string& p) { return LAifFile::OpenAIFFSink(p, 44100, 2, 16, afftSowt); }, 44100, 2, 8},
    {"a.aiff", [](const std::string& p) { return LAifFile::OpenAIFFSink(p, 8000, 1, 8, afftALaw); }, 8000, 1, kLaw},
    {"a.aiff", [](const std::string& p) { return LAifFile::OpenAIFFSink(p, 8000, 2, 8, afftMuLaw); }, 8000, 2, kLaw},
};

TEST_F(ForeignFiles, OursAreReadByOtherProgramsAndByUs) {
  if (!HasTools()) GTEST_SKIP() << "sox or ffmpeg is missing";
  for (const SinkRow& row : kSinks) {
    const int frames = 8192 + 1001;
    SCOPED_TRACE(std::string(row.name) + " row " + std::to_string(&row - kSinks));
    const auto samples = Engine::Noise(9, 0x70000, std::size_t(frames) * std::size_t(row.channels));
    row.open(Path(row.name)).Write(samples.data(), frames);
    const std::string probe = Output(
        "ffprobe -v error -show_entries stream=sample_rate,channels,duration_ts -of csv=p=0 " + std::string(row.name));
    EXPECT_EQ(probe.substr(0, probe.rfind(',')), LText::Format("%d,%d", row.rate, row.channels));
    EXPECT_NEAR(std::atoi(probe.c_str() + probe.rfind(',') + 1), frames, 1);  // ffprobe counts a pad byte
    ASSERT_TRUE(Run(LText::Format("ffmpeg -y -v error -i %s -f s32le out.raw", row.name)));
    std::filesystem::resize_file(Path("out.raw"), std::uintmax_t(frames) * unsigned(row.channels) * 4);
    const std::string soxFrames = Output(std::string("soxi -s ") + row.name);
    EXPECT_TRUE(soxFrames == std::to_string(frames) || row.tolerance == kLaw) << soxFrames;  // G.711 in AIFC: not read
    EXPECT_LE(LargestDifference(Samples32("out.raw"), samples), row.tolerance);
    LSoundSource source;
    ASSERT_EQ(TGenSourceOpen(source, Path(row.name)), lprDone);
    EXPECT_LE(LargestDifference(ReadFrames(source, frames), Samples32("out.raw")), 1);
  }
}

}  // namespace
