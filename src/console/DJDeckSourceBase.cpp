#include "console/DJDeckSourceBase.h"

#include <algorithm>

#include "sound/LSoundLevel.h"
#include "sound/LSoundTime.h"

namespace {

constexpr int kMeterLow = -48, kMeterHigh = 0;  // dB

LLevel Shown(signed char level) { return std::clamp<int>(level, kMeterLow, kMeterHigh); }

}  // namespace

void DJDeckSourceBaseInfo::AddLevels(LSoundTime start, LSoundTime end, LLevel left, LLevel right) {
  if (scratching_ && start == lastStart_) return;
  lastStart_ = start;
  const LLevel volume(volume_.load());
  const int at = write_.load(std::memory_order_relaxed);
  Record& record = records_[std::size_t(at)];
  record.start = start;
  record.end = end;
  record.left = static_cast<signed char>((left + volume).Get());
  record.right = static_cast<signed char>((right + volume).Get());
  const int next = (at + 1) % kRecords;
  if (next == read_) read_ = (next + 1) % kRecords;
  write_ = next;
}

LLevels DJDeckSourceBaseInfo::GetLevelsFromSoundTime(LSoundTime time) const {
  LLevels levels = LLevels::Silent();
  const int write = write_;
  int at = read_;
  if (at == write) return levels;
  levels.levels[0] = levels.levels[1] = LLevel(0);
  for (; at != write; at = (at + 1) % kRecords) {
    const Record& record = records_[std::size_t(at)];
    if (record.start > time || time > record.end) continue;
    levels.levels[0] = Shown(record.left);
    levels.levels[1] = Shown(record.right);
  }
  return levels;
}

LLevels DJDeckSourceBaseInfo::GetScratchLevel() {
  LLevels levels = LLevels::Silent();
  const int write = write_;
  if (read_ == write) return levels;
  const Record& record = records_[std::size_t((write + kRecords - 1) % kRecords)];
  levels.levels[0] = LLevel(record.left.load());
  levels.levels[1] = LLevel(record.right.load());
  read_ = write;
  return levels;
}

DJDeckSourceBase::DJDeckSourceBase(const LSoundSource& input, DJDeckSourceBaseInfo* info)
    : LSoundProcessBase(input), info_(info) {
  SetPeak(kPeakHeadroom);
}

void DJDeckSourceBase::Read(int* out, int frames) {
  const int rate = GetSampleRate();
  const LSoundTime start = LSoundTimeFromFrames(input_.GetPositionSample(), rate);
  input_.Read(out, frames);
  if (!info_) return;
  const unsigned char channels = GetChannels();
  const LLevel left = LevelFromMeanSquare(GetBufferMeanSquareChan(0, out, frames, channels));
  const LLevel right = channels > 1 ? LevelFromMeanSquare(GetBufferMeanSquareChan(1, out, frames, channels)) : left;
  info_->AddLevels(start, LSoundTimeFromFrames(input_.GetPositionSample(), rate), left, right);
}

void DJDeckSourceBase::Seek(int frame) {
  if (info_ && !info_->IsScratching()) info_->Clear();
  input_.Seek(frame);
}
