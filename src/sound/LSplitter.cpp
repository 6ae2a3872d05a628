#include "sound/LSplitter.h"

#include <algorithm>
#include <mutex>

void LSplitter::Open(LSoundSource& mix, const std::array<int, 4>& map, LSoundSource& main, LSoundSource& headphone) {
  mainRing_.Clear();
  headphoneRing_.Clear();
  width_ = std::max(*std::max_element(map.begin(), map.end()) + 1, 1);
  main_ = new LSplitterPrimarySource(mix, mainRing_, headphoneRing_, map, mutex_, width_);
  headphone_ = new LSplitterSecondarySource(mix, mainRing_, headphoneRing_, map, mutex_, width_);
  main = LSoundSource(main_);
  headphone = LSoundSource(headphone_);
}

int LSplitter::MainFillFrames() const {
  std::lock_guard lock(mutex_);
  return mainRing_.Filled() / width_;
}

void LSplitter::BeginSharedSeek() {
  main_->DeferSeek();
  headphone_->DeferSeek();
}

void LSplitter::EndSharedSeek() {
  const int mainWants = main_->EndDeferredSeek(), headphoneWants = headphone_->EndDeferredSeek();
  const int target = std::min(mainWants, headphoneWants);
  main_->Seek(target);
  headphone_->ForgetSkip();  // counted in what it wanted
  main_->SkipFrames(mainWants - target);
  headphone_->SkipFrames(headphoneWants - target);
}

void LSplitter::EndSharedSkip() {
  for (LSplitterPrimarySource* half : {main_, static_cast<LSplitterPrimarySource*>(headphone_)})
    half->SkipFrames(half->EndDeferredSeek() - half->GetPositionSample());
}
