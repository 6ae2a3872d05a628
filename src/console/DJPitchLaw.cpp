#include "console/DJPitchLaw.h"

DJSyncResult FindSyncPitch(const TBeatGrid& master, const TBeatGrid& slave, double& pitch) {
  if (slave.interval <= 0) return syncNoBpm;
  const int masterBeat = int(master.Step());
  if (masterBeat <= 0) return syncMasterWithoutBpm;
  const double ratio = double(slave.interval) / masterBeat;
  if (!IsPitchAllowed(ratio)) return syncOutOfRange;
  pitch = ratio;
  return syncDone;
}
