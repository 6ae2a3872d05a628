// How an attempt to sync a deck ended. The panel has a text for each but success.
// Threads  [any]
#pragma once

enum DJSyncResult {
  syncNoTitle = 0,
  syncNoOtherTitle = 1,
  syncOtherIsSynced = 2,
  syncMasterWithoutBpm = 3,
  syncNoBpm = 4,
  syncOutOfRange = 5,  // the pitch would leave the limits
  syncIsMaster = 6,
  syncOtherNotPlaying = 7,
  syncUnknown = 8,
  syncDone = 9,
};
