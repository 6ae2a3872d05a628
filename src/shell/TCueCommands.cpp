#include "shell/TCueCommands.h"

#include <vector>

#include "audiofile/LWaveFile.h"
#include "console/DJConsole.h"
#include "foundation/LFile.h"
#include "foundation/TSettings.h"
#include "toolkit/LFileDialog.h"
#include "toolkit/LProcessDialog.h"

namespace {

constexpr const char* kSaveLoopTitle = "Loop in Sample speichern";
constexpr int kSampleBits = 16;
constexpr unsigned char kSampleChannels = 2;

struct LoopToSave {
  LSoundSource source;
  LSoundSink sink;
};

// Writes the loop, block by block.
LProcessResult Process(LProcessInterface& process, LoopToSave& job) {
  std::vector<int> block(std::size_t(kMaxBlockFrames) * job.source.GetChannels());
  const int end = job.source.GetEndSample();
  for (int done = 0; done < end && !job.sink.HasError();) {
    if (process.IsToStop()) return lprStopped;
    const int frames = std::min(end - done, kMaxBlockFrames);
    job.source.Read(block.data(), frames);
    job.sink.Write(block.data(), frames);
    done += frames;
    process.SetProgress(double(done) / end);
  }
  return job.sink.HasError() ? lprFailed : lprDone;
}

}  // namespace

DJDeck* TCueCommands::LoadedDeck(DJDeckPosition position) const {
  DJDeck* deck = console_.GetDeck(position);
  return deck && deck->IsLoaded() ? deck : nullptr;
}

void TCueCommands::EvDeckEmptied(DJDeckPosition deck) { Of(deck).applied = kNoSlot; }

// Cue points

void TCueCommands::CmDeckCue(DJDeckPosition position, int slot) {
  DJDeck* deck = LoadedDeck(position);
  if (!deck || !TCuePoints::IsIndex(slot)) return;
  const int cue = deck->GetCuePosition(slot);
  if (cue == kNoCue) {
    if (!deck->IsCueLocked()) console_.CmDeckSetCuePoint(*deck, slot);
  } else if (host_.RefuseDeckAction(position)) {
    return;
  } else if (deck->IsPlaying()) {
    deck->CuePlay(cue);
  } else {
    host_.SeekDeck(position, cue);
    host_.PlayDeck(position);
  }
  host_.ShowDeck(position);
}

void TCueCommands::CmDeckCuePause(DJDeckPosition position, int slot) {
  DJDeck* deck = LoadedDeck(position);
  if (!deck || host_.RefuseDeckAction(position)) return;
  console_.CmDeckCuePause(*deck, slot);
  host_.ShowDeck(position);
}

void TCueCommands::CmDeckCueClear(DJDeckPosition position, int slot) {
  DJDeck* deck = LoadedDeck(position);
  if (!deck || host_.RefuseDeckAction(position)) return;
  deck->Cues().Clear(slot);
  host_.ShowDeck(position);
}

void TCueCommands::CmDeckCueBeatSetToggleLock(DJDeckPosition position) {
  if (DJDeck* deck = console_.GetDeck(position)) deck->ToggleCueLock();
  host_.ShowDeck(position);
}

// Loops

void TCueCommands::CmDeckCueBeatLoop(DJDeckPosition position, int slot) {
  DJDeck* deck = LoadedDeck(position);
  if (!deck || deck->GetBPM() <= 1.0 || !TCuePoints::IsIndex(slot)) return;
  if (Of(position).applied == slot) return CmDeckCueBeatLoopRemoveApplied(position);
  if (host_.RefuseDeckAction(position)) return;
  if (deck->Cues().LoopLength(slot) == kNoLoopLength) deck->Cues().SetLoopLength(slot, Of(position).length);
  ApplySlot(*deck, slot);
}

void TCueCommands::ApplySlot(DJDeck& deck, int slot) {
  console_.CmDeckApplyCueBeatLoop(deck, slot);
  Of(deck.GetPosition()).applied = deck.GetLoop().on ? slot : kNoSlot;
  host_.ShowDeck(deck.GetPosition());
}

void TCueCommands::CmDeckCueBeatLoopRemoveApplied(DJDeckPosition position) {
  if (host_.RefuseDeckAction(position)) return;
  console_.CmDeckRemoveCueBeatLoop(*LoadedDeck(position));
  Of(position).applied = kNoSlot;
  host_.ShowDeck(position);
}

void TCueCommands::CmDeckCueBeatLoopClear(DJDeckPosition position, int slot) {
  DJDeck* deck = LoadedDeck(position);
  if (!deck || host_.RefuseDeckAction(position)) return;
  deck->Cues().SetLoopLength(slot, kNoLoopLength);
  if (Of(position).applied == slot) CmDeckCueBeatLoopRemoveApplied(position);
  host_.ShowDeck(position);
}

void TCueCommands::CmUpdateDeckCueBeatLoop(DJDeckPosition position) {
  DJDeck* deck = LoadedDeck(position);
  const int slot = Of(position).applied;
  if (!deck || deck->GetBPM() <= 1.0 || slot == kNoSlot || host_.RefuseDeckAction(position)) return;
  deck->Cues().SetLoopLength(slot, Of(position).length);
  ApplySlot(*deck, slot);
}

void TCueCommands::SetDeckCueBeatLoopLength(DJDeckPosition position, int lengthIndex) {
  if (lengthIndex < 0 || lengthIndex >= kLoopLengths) return;
  Of(position).length = lengthIndex;
  CmUpdateDeckCueBeatLoop(position);
}

void TCueCommands::StepBeatLoop(DJDeckPosition position, int step) {
  DJDeck* deck = LoadedDeck(position);
  if (!deck || !deck->GetLoop().on) return;
  const int index = LoopLengthIndex(deck->GetLoop().beats) + step;
  if (deck->GetLoop().beats <= 0 || index < 0 || index >= kLoopLengths) return;
  deck->SetBeatLoop(arLoopLengths[std::size_t(index)]);
  if (Of(position).applied != kNoSlot) deck->Cues().SetLoopLength(Of(position).applied, index);
  host_.ShowDeck(position);
}

void TCueCommands::CmDeckWholeTrackLoopToggle(DJDeckPosition position) {
  DJDeck* deck = LoadedDeck(position);
  if (!deck) return;
  if (deck->GetLoop().IsWholeTrack())
    console_.CmDeckRemoveCueBeatLoop(*deck);
  else
    console_.CmDeckLoopTrack(*deck);
  Of(position).applied = kNoSlot;
  host_.ShowDeck(position);
}

void TCueCommands::CmDeckBeatLoop(DJDeckPosition position, double beats) {
  DJDeck* deck = LoadedDeck(position);
  if (!deck || (beats != 0 && host_.RefuseDeckAction(position))) return;
  Of(position).applied = kNoSlot;
  if (beats == 0)
    console_.CmDeckRemoveCueBeatLoop(*deck);
  else if (beats < 0)
    console_.CmDeckLoopTrack(*deck);
  else
    deck->SetBeatLoop(beats);
  host_.ShowDeck(position);
}

// Saving

void TCueCommands::CmSaveDeckLoop(DJDeckPosition position) {
  const DJDeck* deck = LoadedDeck(position);
  if (!deck || !deck->GetLoop().IsActive()) return;
  LFileDialog dialog(LFileDialog::Kind::Save, kSaveLoopTitle);
  dialog.folder = TSettings::kLoadSamplesFromFolder.Get();
  dialog.extension = ".wav";
  if (!dialog.Run(host_.DialogParent())) return;
  TSettings::kLoadSamplesFromFolder.Set(LFile::FolderFromPath(dialog.Path()));
  SaveLoop(position, dialog.Path());
}

bool TCueCommands::SaveLoop(DJDeckPosition position, const std::string& path) {
  const DJDeck* deck = LoadedDeck(position);
  if (!deck) return false;
  LoopToSave job;
  job.source = deck->OpenSaveLoopSource();
  if (job.source.IsOk()) job.sink = LWaveFile::OpenSinkPCM(path, kDeckRate, kSampleChannels, kSampleBits, 0);
  if (!job.source.IsOk() || job.sink.HasError()) {
    host_.ShowSaveError(kSaveLoopTitle, "Die Datei konnte nicht geschrieben werden.");
    return false;
  }
  LProcessDialog<LoopToSave> dialog(kSaveLoopTitle, job);
  dialog.Open(host_.DialogParent());
  const bool saved = dialog.Result() == lprDone;
  job.sink.Close();
  if (dialog.Result() == lprFailed) host_.ShowSaveError(kSaveLoopTitle, "Die Datei konnte nicht geschrieben werden.");
  if (!saved) LFile::Remove(path);
  return saved;
}
