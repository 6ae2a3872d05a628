#include "audiofile/convert/LPRSourceToSink.h"

#include <algorithm>
#include <vector>

#include "sound/LSPConvertSourceRateChannels.h"
#include "sound/LSPCrossMix.h"
#include "sound/LSPPeakLimit.h"

namespace {

constexpr int kBlocksAtOnce = 10;
constexpr unsigned kStreamWaitMs = 100;

// Reads and writes up to ten blocks, asking in between whether to stop.
class BlockCopy {
 public:
  BlockCopy(LProcessInterface& process, const LSoundSource& source, const LSoundSink& sink)
      : process_(process),
        source_(source),
        sink_(sink),
        samples_(std::size_t(kBlocksAtOnce) * kMaxBlockFrames * sink.GetChannels()) {}

  LProcessResult Copy(int frames) {
    const LProcessResult read = ForBlocks(frames, [this](int* at, int count) { source_.Read(at, count); });
    if (read != lprDone) return read;
    const LProcessResult written = ForBlocks(frames, [this](int* at, int count) { sink_.Write(at, count); });
    if (written != lprDone) return written;
    return sink_.HasError() ? lprFailed : lprDone;
  }

 private:
  template <class Block>
  LProcessResult ForBlocks(int frames, const Block& block) {
    for (int done = 0; done < frames; done += kMaxBlockFrames) {
      if (process_.IsToStop()) return lprStopped;
      block(samples_.data() + std::ptrdiff_t{done} * sink_.GetChannels(), std::min(kMaxBlockFrames, frames - done));
    }
    return lprDone;
  }

  LProcessInterface& process_;
  const LSoundSource& source_;
  const LSoundSink& sink_;
  std::vector<int> samples_;
};

constexpr int kFramesAtOnce = kBlocksAtOnce * kMaxBlockFrames;

LProcessResult Begin(LProcessInterface& process, const std::string& title, const LSoundSource& source,
                     const LSoundSink& sink) {
  process.SetStatus(title.c_str(), 0);
  process.SetStatus("Bitte warten...", 1);
  process.SetProgress(0);
  process.SetProgressIndeterminateOn();
  if (process.IsToStop()) return lprStopped;
  return source.IsOk() && !sink.HasError() ? lprDone : lprFailed;
}

void ShowProgress(LProcessInterface& process, const std::function<double()>& progress) {
  if (!progress) return;
  process.SetProgressIndeterminateOff();
  process.SetProgress(std::clamp(progress(), 0.0, 1.0));
}

LSoundSource FitForSink(const LPRSourceToSink& copy) {
  LSoundSource source = copy.source;
  LSPConvertSourceRateChannels(copy.sink.GetSampleRate(), copy.sink.GetChannels(), source);
  return LSPPeakLimit(kPeak16).OpenSource(source);
}

}  // namespace

LProcessResult Process(LProcessInterface& process, LPRSourceToSink& copy) {
  if (const LProcessResult result = Begin(process, copy.title, copy.source, copy.sink); result != lprDone)
    return result;
  LSoundSource source = FitForSink(copy);
  const int total = source.GetEndSample() - source.GetPositionSample();
  if (copy.useCrossMix)
    source = LSPCrossMix(LSPCrossMix::FadeFrames(total, source.GetSampleRate()), copy.crossMix).OpenSource(source);
  if (!source.IsOk()) return lprFailed;
  BlockCopy blocks(process, source, copy.sink);
  for (std::int64_t done = 0; done < total; done += kFramesAtOnce) {
    const LProcessResult result = blocks.Copy(int(std::min<std::int64_t>(kFramesAtOnce, total - done)));
    if (result != lprDone) return result;
    process.SetProgressIndeterminateOff();
    process.SetProgress(std::min(1.0, double(done + kFramesAtOnce) / total));
  }
  return process.IsToStop() ? lprStopped : lprDone;
}

LProcessResult Process(LProcessInterface& process, LPRSourceToSinkStreaming& copy) {
  if (const LProcessResult result = Begin(process, copy.title, copy.source, copy.sink); result != lprDone)
    return result;
  BlockCopy blocks(process, copy.source, copy.sink);
  while (true) {
    if (process.IsToStop()) return lprStopped;
    const bool streaming = copy.source.IsStreaming();  // before the count, which may be the last
    const int there = copy.source.GetEndSample() - copy.source.GetPositionSample();
    if (there > 0) {
      const LProcessResult result = blocks.Copy(std::min(there, kFramesAtOnce));
      if (result != lprDone) return result;
      ShowProgress(process, copy.progress);
    } else if (!streaming) {
      return lprDone;
    } else {
      copy.source.WaitForStreamingData(kStreamWaitMs);
    }
  }
}
