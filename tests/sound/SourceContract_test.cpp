// What holds for every source: the size of blocks does not matter, the position counts frames, past the end there is
// silence, and Read allocates nothing.
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "sound/LAudioMixer.h"
#include "sound/LCrossFadeSource.h"
#include "sound/LSPConvChannels.h"
#include "sound/LSPConvertRate.h"
#include "sound/LSPGain.h"
#include "sound/LSPPeakLimit.h"
#include "sound/LSoundSourceCat.h"
#include "sound/LSplitterSource.h"
#include "support/AllocationGuard.h"
#include "support/TestSource.h"

namespace {

LSoundSource Noise(int frames, int channels, long long amplitude = kPeak16, int rate = 44100) {
  return LSoundSource(new TestSource(Engine::Noise(77, amplitude, std::size_t(frames) * std::size_t(channels)), rate,
                                     static_cast<unsigned char>(channels), int(amplitude)));
}

// Keeps what a source needs beside it.
struct Rig {
  LAudioMixer mixer{false};
  LCrossFadeSource fade;
  LSplitterRing main, phones;
  LMutex mutex;
  LSoundSource source;
};

void Wrap(Rig& rig, LSoundProcess&& process, LSoundSource input) { rig.source = process.OpenSource(input); }

struct Maker {
  const char* name;
  std::function<void(Rig&)> make;
  int tailFrames;  // that a filter rings on past the end
};

const Maker kMakers[] = {
    {"silence", [](Rig& r) { r.source = LSoundSource::Make<LSilenceSourceBase>(44100, 2, 20000); }, 0},
    {"gain", [](Rig& r) { Wrap(r, LSPGain(0x700000), Noise(20000, 2)); }, 0},
    {"up", [](Rig& r) { Wrap(r, LSPConvertRate(48000), Noise(20000, 2)); }, 40},
    {"down", [](Rig& r) { Wrap(r, LSPConvertRate(32000), Noise(20000, 3, 0x1fffff)); }, 40},
    {"two stages", [](Rig& r) { Wrap(r, LSPConvertRate(8000), Noise(90000, 1)); }, 40},
    {"stereo to mono", [](Rig& r) { Wrap(r, LSPConvChannels(1), Noise(20000, 2)); }, 0},
    {"mono to stereo", [](Rig& r) { Wrap(r, LSPConvChannels(2), Noise(20000, 1)); }, 0},
    {"four to three", [](Rig& r) { Wrap(r, LSPConvChannels(3), Noise(20000, 4)); }, 0},
    {"limiter", [](Rig& r) { Wrap(r, LSPPeakLimit(kPeak16), Noise(20000, 2, 0x1fffff)); }, 0},
    {"crossfade",
     [](Rig& r) {
       LSoundSource input = Noise(20000, 2);
       r.source = r.fade.OpenSource(input);
     },
     0},
    {"list",
     [](Rig& r) {
       LSoundSourceCat list;
       list.AddSource(Noise(3000, 2));
       list.AddSource(LSoundSource(lseCannotOpen), 100);
       list.AddSource(Noise(9000, 1, kPeak16, 22050));
       r.source = list.OpenSource(44100, 2);
     },
     0},
    {"splitter",
     [](Rig& r) {
       r.source = LSoundSource::Make<LSplitterPrimarySource>(Noise(20000, 4), r.main, r.phones,
                                                             std::array<int, 4>{0, 1, 0, 1}, r.mutex);
     },
     0},
    {"mixer",
     [](Rig& r) {
       LSoundSource a = Noise(20000, 2), b = Noise(15000, 2, kPeak16, 48000);
       r.mixer.AddSource(a, 0);
       r.mixer.AddSource(b, 1);
       for (const int id : {0, 1})
         for (const int channel : {0, 1}) r.mixer.AddChannelDesignation(id, channel, channel);
       r.mixer.SetChannelDesignationVolume(0, 0, 0, -7);
       r.source = r.mixer.OpenSource();
     },
     40},
};

}  // namespace

TEST(SourceContract, BlockSizesPositionSilenceAndNoAllocation) {
  constexpr int kFrames = 16000;
  for (const Maker& maker : kMakers) {
    SCOPED_TRACE(maker.name);
    std::vector<int> wanted;
    for (const int block : {8192, 1, 7, 1000, 4096}) {
      const auto rig = std::make_unique<Rig>();
      maker.make(*rig);
      ASSERT_TRUE(rig->source.IsOk());
      const int channels = rig->source.GetChannels();
      std::vector<int> samples(std::size_t(kFrames * channels), 0x5a5a5a);
      rig->source.Seek(0);
      const AllocationGuard guard;
      for (int done = 0; done < kFrames; done += block)
        rig->source.Read(samples.data() + done * channels, std::min(block, kFrames - done));
      EXPECT_EQ(guard.Count(), 0) << "block " << block;
      EXPECT_EQ(rig->source.GetPositionSample(), kFrames);
      if (wanted.empty()) wanted = samples;
      ASSERT_TRUE(samples == wanted) << "block " << block;

      rig->source.Seek(0);
      std::vector<int> again;
      ReadInto(again, rig->source, 500);
      EXPECT_TRUE(std::equal(again.begin(), again.end(), wanted.begin())) << "after a seek to 0";

      rig->source.Seek(rig->source.GetEndSample());
      std::vector<int> tail, past;
      ReadInto(tail, rig->source, maker.tailFrames);
      ReadInto(past, rig->source, 300);
      EXPECT_EQ(past, std::vector<int>(std::size_t(300 * channels), 0));
    }
  }
}

TEST(LSoundSourceCat, SeeksIntoItemsAndReadsSilenceBefore) {
  LSoundSourceCat list;
  list.AddSource(LSoundSource(new TestSource({1, 2, 3}, 1000, 1)));
  list.AddSource(LSoundSource(lseDamaged), 2);  // 2 ms: two frames
  list.AddSource(LSoundSource(new TestSource({7, 8}, 1000, 1, kPeakHeadroom)));
  LSoundSource source = list.OpenSource(1000, 1);
  EXPECT_EQ(source.GetEndSample(), 7);
  EXPECT_EQ(source.GetPeak(), kPeakHeadroom);
  const auto read = [&](int from) {
    std::vector<int> samples;
    source.Seek(from);
    ReadInto(samples, source, 5);
    return samples;
  };
  EXPECT_EQ(read(-2), (std::vector<int>{0, 0, 1, 2, 3}));
  EXPECT_EQ(read(2), (std::vector<int>{3, 0, 0, 7, 8}));
  EXPECT_EQ(read(6), (std::vector<int>{8, 0, 0, 0, 0}));
}
