// Files of every type that other programs can write here, opened and compared with what another decoder makes of them.
#include <cmath>
#include <cstdio>

#include "audiofile/AudioFileTest.h"
#include "audiofile/TSourceOpen.h"
#include "support/LTestPlatform.h"

namespace {

// What the other decoder's samples may differ by, as a part of full scale.
constexpr double kExact = 0.6 / 32768;  // what a temporary wave of 16 bits rounds
constexpr double kBit = 1.6 / 32768;    // one more, where both round
constexpr double kSame = 1e-6;          // read by our own reader without loss

struct Row {
  const char *name, *command;  // writes NAME from in.wav (3 s, stereo, 44100 Hz), mono.wav, low.wav (mono, 8000 Hz)
  double tolerance;
  int otherSkips = 0;               // frames that the other plays before this one's first
  const char* reference = nullptr;  // instead of ffmpeg reading NAME
};

constexpr const char* kAsSox = "";  // for what the other decoder rounds in a way of its own

#define FF "ffmpeg -v error -y -i "
constexpr Row kRows[] = {
    {"u8.wav", FF "in.wav -c:a pcm_u8 u8.wav", kSame},
    {"s16.wav", "cp in.wav s16.wav", kSame},
    {"s24.wav", FF "in.wav -c:a pcm_s24le s24.wav", kSame},
    {"s32.wav", FF "in.wav -c:a pcm_s32le s32.wav", kSame},
    {"f32.wav", FF "in.wav -c:a pcm_f32le f32.wav", kSame},
    {"alaw.wav", FF "in.wav -c:a pcm_alaw alaw.wav", kSame},
    {"mulaw.wav", FF "in.wav -c:a pcm_mulaw mulaw.wav", kSame},
    {"ima.wav", FF "in.wav -c:a adpcm_ima_wav ima.wav", kSame, 0, kAsSox},
    {"imamono.wav", "sox mono.wav -e ima-adpcm imamono.wav", kSame, 0,
     "sox imamono.wav -e signed -b 16 x.wav trim 0 132300s && ffmpeg -v error -y -i x.wav"},
    {"ms.wav", FF "in.wav -c:a adpcm_ms ms.wav", kExact},
    {"gsm.wav", "sox low.wav -e gsm-full-rate gsm.wav", kSame},
    {"layer3.wav", FF "in.wav -c:a libmp3lame -b:a 128k layer3.wav", 2e-5, 529},  // the decoder's delay
    {"really.wav", "lame --quiet in.wav really.mp3 && mv really.mp3 really.wav", 2e-5},
    {"g726.wav", FF "low.wav -c:a g726 -b:a 32k g726.wav", kExact},
    {"many.wav", FF "in.wav -af pan=5.1\\|FL=FL\\|FR=FR\\|LFE=FL many.wav", kSame},
    {"s8.aif", "sox in.wav -b 8 s8.aif", kSame},
    {"s16.aiff", FF "in.wav s16.aiff", kSame},
    {"s24.aiff", FF "in.wav -c:a pcm_s24be s24.aiff", kSame},
    {"s32.aif", "sox in.wav -b 32 s32.aif", kSame},
    {"sowt.aifc", FF "in.wav -c:a pcm_s16le -f aiff sowt.aifc", kSame},
    {"f32.aifc", FF "in.wav -c:a pcm_f32be -f aiff f32.aifc", 4e-5},
    {"alaw.aifc", FF "in.wav -c:a pcm_alaw -f aiff alaw.aifc", kSame},
    {"mulaw.aifc", FF "in.wav -c:a pcm_mulaw -f aiff mulaw.aifc", kSame},
    {"s16.au",
     "{ printf '.snd\\0\\0\\0\\030\\377\\377\\377\\377\\0\\0\\0\\3\\0\\0\\254\\104\\0\\0\\0\\2'; sox in.wav -t raw -B "
     "-; } >s16.au",
     kSame},
    {"mulaw.au",
     "{ printf '.snd\\0\\0\\0\\030\\377\\377\\377\\377\\0\\0\\0\\1\\0\\0\\254\\104\\0\\0\\0\\1'; sox mono.wav -t ul -; "
     "} >mulaw.au",
     kSame},
    {"vbr.mp3", "lame --quiet -V2 in.wav vbr.mp3", 2e-5},
    {"cbr.mp3", "lame --quiet -b 160 in.wav cbr.mp3", 2e-5},
    {"abr.mp3", "lame --quiet --abr 130 in.wav abr.mp3", 2e-5},
    {"mono.mp3", "lame --quiet -m m in.wav mono.mp3", 2e-5},
    {"stereo.mp3", "lame --quiet -m s -b 320 in.wav stereo.mp3", 2e-5},
    {"low.mp3", "lame --quiet -b 24 low.wav low.mp3", 2e-5},
    {"mpeg2.mp3", "lame --quiet --resample 22.05 -b 64 in.wav mpeg2.mp3", 2e-5},
    {"s8.voc", "sox mono.wav -b 8 s8.voc", kSame},
    {"s16.voc", "sox in.wav -b 16 s16.voc", kSame},
    {"dialogic.vox", "sox low.wav -t vox dialogic.vox", 1.0 / 2048, 0,
     "sox -t vox -r 8000 dialogic.vox x.wav && ffmpeg -v error -y -i x.wav"},
    {"bare.raw", "sox mono.wav -t raw -e signed -b 16 bare.raw", kSame, 0, "ffmpeg -v error -y -i mono.wav"},
    {"full.gsm", "sox low.wav full.gsm", kSame},
    {"s16.flac", "flac --silent -f in.wav -o s16.flac", kExact},
    {"s24.flac", FF "s24.wav s24.flac", kExact},
    {"q5.ogg", "oggenc -Q -q 5 in.wav -o q5.ogg", kBit},
    {"q1.oga", "oggenc -Q -q 1 mono.wav -o q1.oga", kBit},
    {"opus.oga", "opusenc --quiet in.wav opus.oga", kBit},
    {"flac.oga", FF "in.wav -c:a flac flac.oga", kExact},
    {"aac.m4a", FF "in.wav -c:a aac aac.m4a", kBit},
    {"alac.m4a", FF "in.wav -c:a alac alac.m4a", kExact},
    {"ring.m4r", FF "in.wav -c:a aac -f ipod ring.m4r", kBit},
    {"adts.aac", FF "in.wav -c:a aac adts.aac", kBit},
    {"mp4.mp4", FF "in.wav -c:a aac mp4.mp4", kBit},
    {"phone.3gp", FF "low.wav -c:a aac phone.3gp", kBit},
    {"phone.3g2", FF "low.wav -c:a aac phone.3g2", kBit},
    {"phone.3gpp", FF "low.wav -c:a aac -f 3gp phone.3gpp", kBit},
    {"v1.wma", FF "in.wav -c:a wmav1 v1.wma", kBit},
    {"v2.wma", FF "in.wav -c:a wmav2 v2.wma", kBit},
    {"v2.asf", FF "in.wav -c:a wmav2 v2.asf", kBit},
    {"film.wmv", FF "film.mkv -c:v wmv2 -c:a wmav2 film.wmv", kBit},
    {"pack.wv", "wavpack -q -y in.wav -o pack.wv", kExact},
    {"muse.mpc", "mpcenc --silent --overwrite in.wav muse.mpc", kBit},
    {"speech.spx", "speexenc low.wav speech.spx", kBit},
    {"pcm.caf", FF "in.wav -c:a pcm_s16le pcm.caf", kExact},
    {"alac.caf", FF "in.wav -c:a alac alac.caf", kExact},
    {"layer2.mp2", FF "in.wav -c:a mp2 layer2.mp2", kBit},
    {"layer2.mpga", FF "in.wav -c:a mp2 -f mp2 layer2.mpga", kBit},
    {"film.mkv", FF "in.wav -f lavfi -i testsrc=d=3:s=64x48 -map 0:a -map 1:v -c:v mpeg4 -c:a libvorbis film.mkv",
     kBit},
    {"film.avi", FF "film.mkv -c:v mpeg4 -c:a libmp3lame film.avi", kBit},
    {"film.mov", FF "film.mkv -c:v mpeg4 -c:a pcm_s16le film.mov", kExact},
    {"film.mpg", FF "film.mkv -c:v mpeg2video -r 25 -c:a mp2 film.mpg", kBit},
    {"film.mpeg", FF "film.mkv -c:v mpeg1video -r 25 -c:a mp2 film.mpeg", kBit},
    {"film.flv", FF "film.mkv -c:v flv -c:a libmp3lame film.flv", kBit},
    {"film.mod", FF "film.mkv -c:v mpeg2video -r 25 -c:a ac3 -f mpeg film.mod", kBit},
    {"ac3.rm", FF "in.wav -c:a ac3 -f rm ac3.rm", kBit},
};
#undef FF

class FileTypes : public AudioFileTest {
 protected:
  bool MakeInputs() const {
    return Run("sox -n -r 44100 -b 16 in.wav synth 3 sine 220 sine 331 pinknoise vol 0.3 channels 2") &&
           Run("sox in.wav -b 16 mono.wav remix 1,2") && Run("sox in.wav -r 8000 -b 16 low.wav remix 1") &&
           Run("ffmpeg -v error -y -i in.wav -f lavfi -i testsrc=d=3:s=64x48 -map 0:a -map 1:v -c:v mpeg4 -c:a "
               "libvorbis "
               "film.mkv") &&
           Run("ffmpeg -v error -y -i in.wav -c:a pcm_s24le s24.wav");
  }
  // Writes what the other decoder gives as bare samples of 32 bits.
  static std::string Reference(const Row& row) {
    const std::string name = row.name;
    if (row.reference == kAsSox) return "sox " + name + " -t raw -e signed -b 32 other.raw";
    const std::string first = row.reference ? row.reference : "ffmpeg -v error -y -i " + name;
    return first + " -vn -f s32le other.raw";
  }
  LTestPlatform platform_;
};

// Root mean square and largest difference, as parts of full scale.
struct Difference {
  double rms = 0, largest = 0;
};
Difference Compare(const std::vector<int>& a, const std::vector<int>& b) {
  Difference result;
  const std::size_t count = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < count; ++i) {
    const double difference = std::abs(double(a[i]) - b[i]) / kFullScale;
    result.largest = std::max(result.largest, difference);
    result.rms += difference * difference;
  }
  result.rms = std::sqrt(result.rms / double(std::max<std::size_t>(count, 1)));
  return result;
}

TEST_F(FileTypes, SoundLikeAnotherDecoderMakesThem) {
  if (!HasTools() || !Run("lame --version && flac --version && oggenc --version && opusenc --version && which speexenc "
                          "wavpack mpcenc"))
    GTEST_SKIP() << "sox, ffmpeg, lame, flac, vorbis-tools, opus-tools, speex, wavpack or musepack-tools is missing";
  ASSERT_TRUE(MakeInputs()) << Bytes("log");
  std::printf("%-14s %6s %2s %8s %6s %10s %10s\n", "file", "rate", "ch", "frames", "other", "rms", "largest");
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    if (!LFile::Exists(Path(row.name))) {
      EXPECT_TRUE(Run(row.command)) << Bytes("log");
    }
    LSoundSource source;
    EXPECT_EQ(TGenSourceOpen(source, Path(row.name)), lprDone);
    EXPECT_TRUE(Run(Reference(row))) << Bytes("log");
    const auto samples = ReadWhole(source);
    auto other = Samples32("other.raw");
    const int otherFrames = int(other.size()) / source.GetChannels();
    other.erase(other.begin(), other.begin() + std::min(int(other.size()), row.otherSkips * source.GetChannels()));
    const Difference difference = Compare(samples, other);
    std::printf("%-14s %6d %2d %8d %+6d %10.2e %10.2e\n", row.name, source.GetSampleRate(), source.GetChannels(),
                source.GetEndSample(), source.GetEndSample() - otherFrames, difference.rms, difference.largest);
    EXPECT_EQ(source.GetEndSample(), otherFrames);
    EXPECT_LE(difference.largest, row.tolerance);
    EXPECT_GT(samples.size(), 8000u);
  }
}

}  // namespace
