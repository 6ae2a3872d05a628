#include "console/TScratch.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kFramesPerMs = kDeckRate / 1000.0;
constexpr double kMsPerFrame = 0.022675736961451247;  // 1 / 44.1

// The walk goes on by this many samples, one frame, and by the hand's own step on top of it: a hand at speed s sounds
// like s + 1.
constexpr int kWalkAdvanceSamples = TSRCScratch::kChannels;

}  // namespace

LSoundSource TScratch::OpenSource(LSoundSource& input) {
  return LSoundSource::Make<TSRCScratch>(input, startFrame_, transitions_);
}

TSRCScratch::TSRCScratch(const LSoundSource& input, int startFrame, LTransitionManager& transitions)
    : LSoundProcessBase(input), transitions_(transitions), current_(startFrame) {
  if (GetChannels() != kChannels) SetError(lseInputError);
  if (GetError() != lseNone) return;
  window_.resize(std::size_t(kWindowFrames) * kChannels);
  FillWindow(startFrame);
}

void TSRCScratch::FillWindow(int centre) {
  const int start = std::max(centre, kReachFrames) - kReachFrames;
  const auto reach = int(std::min<long long>((long long)centre + kReachFrames, input_.GetEndSample()));
  const int end = std::max(start, reach);
  if (start != windowStart_ || end != windowEnd_) {  // at an end of the track the window stays where it is
    input_.Seek(start);
    const int length = end - start;
    for (int at = 0; at < length; at += kMaxBlockFrames)
      input_.Read(window_.data() + std::ptrdiff_t(at) * kChannels, std::min(kMaxBlockFrames, length - at));
    windowStart_ = start;
    windowEnd_ = end;
  }
  input_.Seek(centre);
  current_ = centre;
}

void TSRCScratch::Read(int* out, int frames) {
  std::fill_n(out, std::ptrdiff_t(frames) * GetChannels(), 0);
  if (GetError() != lseNone) return;
  while (frames > 0) {
    LTransition* transition = transitions_.PeekNextTransition();
    if (!transition) return;
    const int done = FollowTransition(*transition, out, frames);
    out += std::ptrdiff_t(done) * kChannels;
    frames -= done;
  }
}

// Writes as many of the frames as the transition has left; the number written. A finished one is deleted.
int TSRCScratch::FollowTransition(LTransition& transition, int* out, int frames) {
  if (!IsInWindow(transition.target)) FillWindow(transition.target);
  long long way = (long long)transition.target - current_;
  const double durationFrames = std::max(transition.durationMs, 0) * kFramesPerMs;
  const bool finishes = way == 0 || double(frames) >= std::trunc(durationFrames);
  int count = frames;
  if (way == 0) {
    count = 0;
  } else if (!finishes) {
    const int partMs = int(frames * kMsPerFrame);
    way = (long long)(float(way) * float(partMs) / float(transition.durationMs));
    transition.durationMs -= partMs;
  } else if (transitions_.Count() > 1) {
    count = int(durationFrames);  // the only one fills the block instead
  }
  Walk(out, count, way);
  current_ = int(current_ + way);
  if (finishes) transitions_.DeleteTransition();
  return count;
}

void TSRCScratch::Walk(int* out, int frames, long long way) const {
  if (frames <= 0) return;
  const float twice = 2 * (float(way) / float(frames));
  const int whole = int(twice);
  const float fraction = twice - float(whole);
  const long long last = (long long)(windowEnd_ - windowStart_) * kChannels - kChannels;
  long long at = ((long long)current_ - windowStart_) * kChannels;
  float carried = 0;
  for (int frame = 0; frame < frames; ++frame, out += kChannels) {
    if (0 <= at && at <= last) {
      out[0] = window_[std::size_t(at)];
      out[1] = window_[std::size_t(at) + 1];
    }
    at += whole + kWalkAdvanceSamples;
    carried += fraction;
    if (carried >= 2) {
      at += kChannels;
      carried -= 2;
    } else if (carried <= -2) {
      at -= kChannels;
      carried += 2;
    }
  }
}
