#include "shell/TRecordCommands.h"

#include "audiofile/LRecordingRepair.h"
#include "console/DJConsole.h"
#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LPlatform.h"
#include "foundation/LText.h"
#include "foundation/TSettings.h"

namespace {

constexpr int kStreamTimer = 13, kWatchTimer = 14;
constexpr int kWatchMs = 250;
constexpr std::uint64_t kAlmostLargest = 0x7ff00000;  // bytes; the formats end at 2 or 4 GiB

}  // namespace

void TRecordCommands::PrepareFolder() {
  if (TSettings::kDefaultRecordFolder.Get().empty())
    TSettings::kDefaultRecordFolder.Set(LFile::MakePath(LPlatform::Folders().GetMusicFolder(), "Tavi"));
  const std::string folder = TSettings::kDefaultRecordFolder.Get();
  LFile::CreateFolder(folder, 0777);
  std::string names;
  for (const std::string& name : RepairUnfinishedRecordings(folder)) names += (names.empty() ? "" : ", ") + name;
  if (!names.empty()) host_.ShowInfoLine(LText::Format("Unterbrochene Aufnahme abgeschlossen: %s", names.c_str()));
}

void TRecordCommands::CmRecord() {
  if (!console_.IsRecording()) {
    LFile::CreateFolder(TSettings::kDefaultRecordFolder.Get(), 0777);
    Started(console_.StartRecording());
    return;
  }
  console_.StopRecording();
  TimerReset(kStreamTimer);
  TimerReset(kWatchTimer);
  connection_.Close();
  host_.ShowRecordState(false);
}

bool TRecordCommands::StartTo(const std::string& path) {
  const bool started = console_.StartRecordingTo(path);
  Started(started);
  return started;
}

void TRecordCommands::Started(bool started) {
  host_.ShowRecordState(started);
  if (!started) {
    host_.ShowRecordAlert(LText::Format("Aufnahme fehlgeschlagen: %s", console_.GetRecordingPath().c_str()));
    return;
  }
  TimerSet(kStreamTimer, 0);
  TimerSet(kWatchTimer, kWatchMs);
}

void TRecordCommands::EvTimer(int id) {
  if (id == kStreamTimer && connection_.Tick()) TimerSet(kStreamTimer, TStreamConnection::kRetryMs);
  if (id == kWatchTimer) CheckFailure();
}

void TRecordCommands::CheckFailure() {
  if (!console_.IsRecording()) return;
  if (!console_.HasRecordingFailed()) {
    TimerSet(kWatchTimer, kWatchMs);
    return;
  }
  const std::string path = console_.GetRecordingPath();
  const bool full = LFile::Size(path).value_or(0) >= kAlmostLargest;
  CmRecord();  // off; what was written stays
  host_.ShowRecordAlert(full ? "Aufnahme beendet: Die Datei hat ihre größte Länge erreicht."
                             : LText::Format("Aufnahme fehlgeschlagen: %s", path.c_str()));
}

void TRecordCommands::Shutdown() {
  TimerDestroy();
  connection_.Close();
}
