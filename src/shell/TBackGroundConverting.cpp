#include "shell/TBackGroundConverting.h"

#include "foundation/LFile.h"

namespace {

constexpr int kTimer = 49;

}  // namespace

TBackGroundConverting::~TBackGroundConverting() {
  TimerDestroy();
  converter_.StopConverting();
  QueuedNotifyDataHandlerDestroy();
}

void TBackGroundConverting::StartBackGroundConverting() { TimerSet(kTimer, 0); }

bool TBackGroundConverting::IsToRestore(const TCachedTracks::Track& track) const {
  if (track.playable && LFile::Exists(track.path) && !FileConversion::NeedConvert(track.path)) return false;
  return !track.originalPath.empty() && LFile::Exists(track.originalPath);
}

void TBackGroundConverting::EvTimer(int) {
  for (int i = 0; i < tracks_.Count(); ++i) {
    if (converter_.IsConverting()) return TimerSet(kTimer, kBusyMs);
    const TCachedTracks::Track track = tracks_.Get(i);
    if (!IsToRestore(track)) continue;
    if (converter_.ConvertFileForDeck(track.originalPath, *this, FileConverter::kNoDeck, i, nullptr))
      tracks_.SetPlayable(i, false);
  }
  TimerSet(kTimer, converter_.IsConverting() ? kBusyMs : kAgainMs);
}

void TBackGroundConverting::EvQueuedNotifyData(unsigned id, const void* data, unsigned long /*size*/) {
  if (id == FileConverter::kComplete) tracks_.EvRestored(*static_cast<const FileConversionDone*>(data));
}
