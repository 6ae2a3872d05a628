// Pan of a track: a line over its time that leads it from one side to the other.
// Law      between two points the pan is straight; before the first and behind the last it is theirs. A channel is at
//          unity while the sound is in the middle or on its own side and falls to 0 toward the other; the gain is
//          min(100 -+ pan, 100) / 100.
// Units    positions in ms of the track; pan -100 (left) to 100 (right); gains with 24 fraction bits.
// Threads  LSPPan [main]; LSRCPan [player], Read allocates nothing.
// Failure  no points, or one channel: the signal passes. Beyond the second, channels pass as they are.
#pragma once
#include <vector>

#include "sound/LSoundProcess.h"

struct LPanPoint {
  LSoundTime position;
  int pan;
  friend bool operator==(const LPanPoint&, const LPanPoint&) = default;
};

class LSPPan final : public LSoundProcess {
 public:
  static constexpr int kFarthest = 100;

  LSPPan() = default;
  explicit LSPPan(std::vector<LPanPoint> points) { SetPoints(std::move(points)); }
  void SetPoints(std::vector<LPanPoint> points);  // sorts them by time, and clamps their pans
  const std::vector<LPanPoint>& GetPoints() const { return points_; }

  LSoundSource OpenSource(LSoundSource& input) override;
  LSoundProcess* GetNewCopy() const override { return new LSPPan(*this); }
  int GetNumPresets() const override;
  std::string GetPresetsName(int index) const override;
  void SetPreset(int index) override;
  int GetIndexInPreset() const override;

 private:
  std::vector<LPanPoint> points_;
};

class LSRCPan final : public LSoundProcessBase {
 public:
  struct Point {
    int frame, pan;
  };
  LSRCPan(const LSoundSource& input, const std::vector<LPanPoint>& points);  // sorted, at least one
  void Read(int* out, int frames) override;

 private:
  double PanAt(long long frame, std::size_t& upper) const;  // upper goes on to the first point behind the frame

  std::vector<Point> points_;
};
