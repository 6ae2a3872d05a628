// Where the beats of a track lie: equal steps from the first one on; four beats are a bar.
// Units    frames at the deck's present pitch, but interval and offset, which are frames at pitch 1.
// Threads  [any]: a value.
// Failure  without beats (BPM of 1 or less, or interval 0) every answer is 0.
#pragma once

struct TBeatGrid {
  double bpm = 0;
  int interval = 0;    // frames from beat to beat at pitch 1
  int offset = 0;      // of the first beat, at pitch 1
  double pitch = 1.0;  // above 0
  int trackEnd = 0;    // at the present pitch

  bool HasBeats() const { return bpm > 1.0; }
  double Step() const { return interval / pitch; }
  int FirstBeat() const { return int(offset / pitch); }

  int GetPreviousBeatPos(int frame) const;  // at or before the frame, but not before the first beat
  int GetClosestBeatPos(int frame) const;   // the previous one of two as close; never at or past the end of the track
  int GetBarPosition(int frame) const;      // bars since the first beat
  // How far into its bar or beat a frame is, 0..1. In front of the first beat the grid counts from frame 0.
  double GetRelativeBarPosition(int frame) const;
  double GetRelativeBeatPosition(double frame) const;

  // Where to jump now, so that `target` is reached when the next beat after `running` would be; may be below 0.
  int GetPhaseKeepingPos(int target, int running) const;

 private:
  int FromFirstBeat(int frame) const { return frame < FirstBeat() ? frame : frame - FirstBeat(); }
};

// Where the slave would have to be to stand at the master's place in the bar: at most a bar away, and maybe below 0.
int EquivalentBarPosition(const TBeatGrid& master, int masterFrame, const TBeatGrid& slave, int slaveFrame);
