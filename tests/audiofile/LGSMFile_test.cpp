#include "audiofile/LGSMFile.h"

#include <gsm.h>

#include "audiofile/LGSMDecoder.h"
#include "audiofile/LWaveFile.h"
#include "audiofile/SeekCheck.h"

namespace {

class LGSMFileTest : public AudioFileTest {
 protected:
  // Something like speech: tones, noise and swells, three seconds and a piece of a block.
  bool MakeSpeech() const {
    return HasTools() && Run("sox -n -r 8000 -c 1 -b 16 a1.wav synth 1.013 sin 300-1200 tremolo 6 90 && "
                             "sox -n -r 8000 -c 1 -b 16 a2.wav synth 2 pinknoise synth sin amod 3 gain -3 && "
                             "sox a1.wav a2.wav in.wav");
  }
};

// A wave of two blocks of nothing in particular.
std::string Wave(int channels, unsigned dataBytes, unsigned fact, const std::string& data) {
  return "RIFF" + Le(0, 4) + "WAVEfmt " + Le(20, 4) + Le(49, 2) + Le(unsigned(channels), 2) + Le(8000, 4) +
         Le(1625, 4) + Le(65, 2) + Le(0, 2) + Le(2, 2) + Le(320, 2) + "fact" + Le(4, 4) + Le(fact, 4) + "data" +
         Le(dataBytes, 4) + data;
}

TEST_F(LGSMFileTest, LengthsComeFromTheBlocksAndTheFact) {
  const std::string blocks(130, '\x55'), frame = "\xD2" + std::string(32, '\x11');
  const struct {
    const char* name;
    std::string bytes;
    LSoundError error;
    int frames;
  } rows[] = {
      {"a.wav", Wave(1, 130, 0, blocks), lseNone, 640},
      {"a.wav", Wave(1, 130, 500, blocks), lseNone, 500},
      {"a.wav", Wave(1, 130, 700, blocks), lseNone, 640},
      {"a.wav", Wave(1, 129, 640, blocks), lseNone, 320},
      {"a.wav", Wave(1, 0xFFFFFFFF, 0, blocks), lseNone, 640},
      {"a.wav", Wave(1, 6500, 0, blocks), lseNone, 32000},  // cut off
      {"a.wav", Wave(2, 130, 0, blocks), lseDamaged, 0},
      {"a.gsm", frame + frame + "\xD2", lseNone, 320},
      {"a.gsm", frame + std::string(33, '\0') + frame, lseNone, 480},  // no frame is silence
      {"a.gsm", std::string(33, '\0'), lseDamaged, 0},
      {"a.gsm", "", lseDamaged, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const std::string path = Put(row.name, row.bytes);
    const LSoundSource source = row.name[2] == 'g' ? LGSMFile::OpenSource(path) : LWaveFile::OpenSource(path);
    ASSERT_EQ(source.GetError(), row.error);
    EXPECT_EQ(source.GetEndSample(), row.frames);
    ReadWhole(source);
  }
  EXPECT_EQ(LGSMFile::OpenSource(Path("missing.gsm")).GetError(), lseCannotOpen);
}

// Bits at random reach every table and every limit; libgsm says what comes out.
TEST_F(LGSMFileTest, TheDecoderIsThatOfTheLibraryToTheBit) {
  for (const LGSMPacking& packing : {kGsmBare, kGsmWave}) {
    const gsm library = ::gsm_create();
    int wave = packing.wave;
    ::gsm_option(library, GSM_OPT_WAV49, &wave);
    LGSMDecoder decoder;
    const std::vector<int> noise = Engine::Noise(7, 255, 3000 * 66);
    for (std::size_t block = 0; block < 3000; ++block) {
      unsigned char bytes[66];
      for (std::size_t i = 0; i < 66; ++i) bytes[i] = static_cast<unsigned char>(noise[block * 66 + i]);
      if (!packing.wave) bytes[0] = static_cast<unsigned char>(0xD0 | (bytes[0] & 15));
      gsm_signal expected[320];
      for (int at = 0; at < packing.blockFrames; at += 160) ::gsm_decode(library, bytes + (at ? 33 : 0), expected + at);
      int samples[320];
      decoder.Decode(packing, bytes, samples);
      for (int i = 0; i < packing.blockFrames; ++i) ASSERT_EQ(samples[i], expected[i] * 16) << block << ' ' << i;
    }
    ::gsm_destroy(library);
  }
}

// A tone lives on in the decoder for ever; only a jump over more than a minute may lose it.
TEST_F(LGSMFileTest, ReadsTheSameFromAnywhere) {
  if (!HasTools() || !Run("sox -n -r 8000 a.gsm synth 90 sin 200")) GTEST_SKIP() << "sox is missing";
  const LSoundSource source = LGSMFile::OpenSource(Path("a.gsm"));
  const std::vector<int> end = (source.Seek(50 * 8000), ReadFrames(source, 40 * 8000));
  source.Seek(0);
  const std::vector<int> whole = ReadWhole(source);
  EXPECT_TRUE(std::equal(end.begin(), end.end(), whole.begin() + 50 * 8000));
  CheckSeeks(source, whole);
  const LSoundSource another = LGSMFile::OpenSource(Path("a.gsm"));
  another.Seek(80 * 8000);
  EXPECT_LE(LargestDifference(ReadFrames(another, 8000), {whole.begin() + 80 * 8000, whole.begin() + 81 * 8000}),
            0x80000);
  another.Seek(0);
  EXPECT_EQ(ReadWhole(another), whole);
}

TEST_F(LGSMFileTest, DecodesAsOtherProgramsDo) {
  if (!MakeSpeech()) GTEST_SKIP() << "sox or ffmpeg is missing";
  for (const std::string name : {"a.gsm", "a.wav"}) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(Run("sox in.wav -e gsm-full-rate " + name + " && sox -D " + name + " -t s32 sox.raw && " +
                    "ffmpeg -y -v error -i " + name + " -f s32le ffmpeg.raw"))
        << Bytes("log");
    const LSoundSource source = name == "a.gsm" ? LGSMFile::OpenSource(Path(name)) : LWaveFile::OpenSource(Path(name));
    EXPECT_EQ(source.GetSampleRate(), 8000);
    const std::vector<int> whole = ReadWhole(source);
    EXPECT_EQ(source.GetEndSample(), name == "a.wav" ? 24104 : 24160);  // bare frames are all full
    std::vector<int> sox = Samples32("sox.raw"), ffmpeg = Samples32("ffmpeg.raw");
    sox.resize(whole.size());
    ffmpeg.resize(whole.size());
    EXPECT_EQ(LargestDifference(whole, sox), 0);
    EXPECT_EQ(LargestDifference(whole, ffmpeg), 0);
    source.Seek(0);
    EXPECT_EQ(ReadWhole(source), whole);
    CheckSeeks(source, whole);
  }
}

TEST_F(LGSMFileTest, TheSinkWritesWhatOtherProgramsWrite) {
  if (!MakeSpeech()) GTEST_SKIP() << "sox or ffmpeg is missing";
  ASSERT_TRUE(Run("sox in.wav -e gsm-full-rate sox.wav"));
  const std::vector<int> speech = ReadWhole(LWaveFile::OpenSource(Path("in.wav")));
  LSoundSink sink = LWaveFile::OpenSink(Path("a.wav"), {49, 1, 8000, 0});
  for (std::size_t at = 0; at < speech.size(); at += 777)
    sink.Write(&speech[at], int(std::min<std::size_t>(777, speech.size() - at)));
  EXPECT_EQ(sink.GetPositionSample(), 24104);

  // As it lies there before it is closed, it plays to its last full block.
  const std::string open = Bytes("a.wav");
  EXPECT_EQ(open, Wave(1, 75 * 65, 24000, open.substr(60)).replace(4, 4, Le(60 + 75 * 65 + 1 - 8, 4)));
  EXPECT_EQ(LWaveFile::OpenSource(Path("a.wav")).GetEndSample(), 24000);

  sink.Close();
  const std::string closed = Bytes("a.wav");
  EXPECT_EQ(closed, Wave(1, 76 * 65, 24104, closed.substr(60)).replace(4, 4, Le(60 + 76 * 65 - 8, 4)));
  EXPECT_EQ(closed, Bytes("sox.wav"));
  EXPECT_EQ(Output("ffprobe -v error -show_entries stream=codec_name,sample_rate,channels -of csv=p=0 a.wav"),
            "gsm_ms,8000,1");
}

TEST_F(LGSMFileTest, TheSinkIsARewindableTape) {
  std::vector<int> tone(2000);
  for (int i = 0; i < 2000; ++i) tone[std::size_t(i)] = (i / 10 % 2 ? 1 : -1) * 0x20000;
  LWaveFile::OpenSink(Path("whole.wav"), {49, 1, 8000, 0}).Write(tone.data(), 2000);
  LSoundSink sink = LGSMWaveOpenSink(Path("a.wav"), 8000, 1);
  sink.Write(tone.data(), 1500);
  sink.Seek(1600);
  EXPECT_EQ(sink.GetPositionSample(), 1500);
  sink.Seek(1400);  // within the block that is being filled
  sink.Write(&tone[1400], 500);
  sink.Seek(1000);  // within one that has been written
  EXPECT_EQ(LFile::Size(Path("a.wav")), 60u + 3 * 65u);
  sink.Write(&tone[1000], 800);
  sink.Seek(-3);
  EXPECT_EQ(LFile::Size(Path("a.wav")), 60u);
  sink.Write(tone.data(), 900);
  sink.Seek(700);
  sink.Write(&tone[700], 1300);
  sink.Close();
  const std::vector<int> whole = ReadWhole(LWaveFile::OpenSource(Path("whole.wav")));
  const std::vector<int> samples = ReadWhole(LWaveFile::OpenSource(Path("a.wav")));
  ASSERT_EQ(samples.size(), 2000u);
  EXPECT_TRUE(std::equal(samples.begin(), samples.begin() + 640, whole.begin()));  // blocks that were kept
  EXPECT_LE(LargestDifference(samples, whole), 0x10000);  // a half of the tone where it was coded twice
  for (const unsigned char channels : {0, 2}) EXPECT_TRUE(LGSMWaveOpenSink(Path("b.wav"), 8000, channels).HasError());
  EXPECT_TRUE(LGSMWaveOpenSink(Path("no/such.wav"), 8000, 1).HasError());
  EXPECT_TRUE(LGSMWaveOpenSink(Path("b.wav"), 0, 1).HasError());
}

}  // namespace
