#include "console/TBeatGrid.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr int kBeatsPerBar = 4;
}

int TBeatGrid::GetPreviousBeatPos(int frame) const {
  if (interval <= 0) return 0;
  const int first = FirstBeat();
  if (frame < first) return first;
  return first + int(Step() * std::trunc((frame - first) / Step()));
}

int TBeatGrid::GetClosestBeatPos(int frame) const {
  if (!HasBeats()) return 0;
  const int previous = GetPreviousBeatPos(frame);
  const float next = float(previous) + float(Step());
  if (next >= float(trackEnd)) return previous;
  return std::fabs(next - float(frame)) < std::fabs(float(frame) - float(previous)) ? int(next) : previous;
}

int TBeatGrid::GetBarPosition(int frame) const {
  if (!HasBeats() || interval <= 0 || frame < FirstBeat()) return 0;
  return int((frame - FirstBeat()) / (Step() * kBeatsPerBar));
}

double TBeatGrid::GetRelativeBarPosition(int frame) const {
  const double bar = Step() * kBeatsPerBar;
  if (bar < 1) return 0;
  return (FromFirstBeat(frame) % int(bar)) / bar;
}

double TBeatGrid::GetRelativeBeatPosition(double frame) const {
  if (!HasBeats() || interval <= 0 || frame < 0) return 0;
  return std::fmod(frame < FirstBeat() ? frame : frame - FirstBeat(), Step()) / Step();
}

int TBeatGrid::GetPhaseKeepingPos(int target, int running) const {
  return target - int((1 - GetRelativeBeatPosition(running)) * interval / pitch);
}

int EquivalentBarPosition(const TBeatGrid& master, int masterFrame, const TBeatGrid& slave, int slaveFrame) {
  const int frame = std::max(slaveFrame, slave.FirstBeat());
  const double away = master.GetRelativeBarPosition(masterFrame) - slave.GetRelativeBarPosition(frame);
  return frame + int(slave.Step() * kBeatsPerBar * away);
}
