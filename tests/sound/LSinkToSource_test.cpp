#include "sound/LSinkToSource.h"

#include <gtest/gtest.h>

#include <numeric>
#include <thread>

#include "support/TestSource.h"

namespace {

std::vector<int> Counting(int frames, int from) {
  std::vector<int> samples(std::size_t(frames) * 2);
  std::iota(samples.begin(), samples.end(), from);
  return samples;
}

}  // namespace

TEST(LSinkToSource, CarriesEveryFrameFromOneThreadToAnother) {
  constexpr int kBlocks = 400, kFrames = 1000;  // more than twice the ring
  LSinkToSourceBase joint;
  LSoundSource source = joint.OpenSource();
  LSoundSink sink = joint.OpenSink();
  std::thread writer([sink]() mutable {
    for (int block = 0; block < kBlocks; ++block) sink.Write(Counting(kFrames, block * kFrames * 2).data(), kFrames);
    sink.Close();
  });
  sink.Close();
  std::vector<int> got;
  for (int block = 0; block < 250; ++block) ReadInto(got, source, 1601);
  writer.join();
  // Read while the writer lived or the ring held frames, then silence.
  const std::size_t whole = std::size_t(kBlocks) * kFrames * 2;
  ASSERT_GT(got.size(), whole);
  for (std::size_t i = 0; i < got.size(); ++i) ASSERT_EQ(got[i], i < whole ? int(i) : 0) << i;
  EXPECT_FALSE(source.IsStreaming());
}

TEST(LSinkToSource, AFullRingWithoutAReaderDropsAndAStopSignalEndsTheWait) {
  constexpr int kCapacity = 154350;
  LSinkToSourceBase joint;
  LSoundSink sink = joint.OpenSink();
  const std::vector<int> samples = Counting(kCapacity + 10, 0);
  sink.Write(samples.data(), kCapacity + 10);  // returns: nobody reads
  LSoundSource source = joint.OpenSource();
  EXPECT_EQ(source.GetEndSample(), kCapacity);
  EXPECT_TRUE(source.IsStreaming());

  LSignalObject stop;
  joint.SetStopSignals(stop, stop);
  stop.Signal();
  sink.Write(samples.data(), 10);  // full, with a reader, but stopped
  joint.Reset();
  EXPECT_EQ(source.GetEndSample(), 0);
  std::vector<int> silence;
  ReadInto(silence, source, 4);  // empty, with a writer, but stopped
  EXPECT_EQ(silence, std::vector<int>(8, 0));
}
