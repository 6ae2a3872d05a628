#include "platform/offline/LOfflineRun.h"

void LOfflineRun::RunSlice() {
  loop_.DispatchPending();
  steps_.RunAll();
  backend_.RenderSlice(kWantedSliceFrames);
  frames_ += kWantedSliceFrames;
  const std::uint64_t nowUs = std::uint64_t(frames_) * 1000000 / kDeckRate;
  clock_.AdvanceUs(nowUs - timeUs_);
  timeUs_ = nowUs;
}

void LOfflineRun::RunFrames(long frames) {
  for (const long end = frames_ + frames; frames_ < end;) RunSlice();
}

void LOfflineRun::RunUntilQuit() {
  while (!loop_.HasEnded()) RunSlice();
}
