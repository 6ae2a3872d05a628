#include "tempo/LBeatDetection.h"

#include <algorithm>

#include "audiofile/TGenSourceLadder.h"
#include "sound/LSPConvChannels.h"
#include "tempo/LBeatGrid.h"
#include "tempo/LBeatOnsets.h"
#include "tempo/LBeatSpectrum.h"

namespace {

// Progress behind the parts of the work.
constexpr double kBandsRead = 0.5, kBandsDone = 0.55, kCandidatesKnown = 0.7, kScored = 0.99;
constexpr int kClipSeconds = 2;

bool FindBeats(LProcessInterface& process, LBeatDetection& detection) {
  if (!detection.ReadBands(process)) return false;
  for (int band = 0; band < kBeatBands; ++band)
    if (!detection.ProcessBand(process, band)) return false;
  process.SetStatus("Takte werden kombiniert...", 0);
  return detection.CombineBeats(process);
}

}  // namespace

LBeatDetection::LBeatDetection(LProcessSoundSourceBPMDetectionData& data, const LSoundSource& mono)
    : beats_(data.beats),
      bpm_(data.bpm),
      offset_(data.offset),
      progress_(data.progress),
      geometry_(mono.GetSampleRate(), mono.GetEndSample()),
      mono_(mono),
      envelopes_(geometry_) {}

void LBeatDetection::SetProgress(LProcessInterface& process, double progress) {
  progress_ = progress;
  process.SetProgress(progress);
}

bool LBeatDetection::ReadBands(LProcessInterface& process) {
  return envelopes_.Read(mono_, [&](int done) {
    SetProgress(process, kBandsRead * done / std::max(geometry_.Frames(), 1));
    return !process.IsToStop();
  });
}

bool LBeatDetection::ProcessBand(LProcessInterface& process, int band) {
  if (process.IsToStop()) return false;
  const LBeatList found = FindBeatOnsets(envelopes_.Band(band), geometry_.Lag(band), geometry_.hop, band);
  beats_.insert(beats_.end(), found.begin(), found.end());
  SetProgress(process, kBandsRead + (kBandsDone - kBandsRead) * (band + 1) / kBeatBands);
  return true;
}

bool LBeatDetection::CombineBeats(LProcessInterface& process) {
  std::stable_sort(beats_.begin(), beats_.end(),
                   [](const LBeat& a, const LBeat& b) { return a.position < b.position; });
  const std::vector<double> candidates = FindBeatCandidates(beats_, geometry_);
  SetProgress(process, kCandidatesKnown);
  LBeatGrid grid(beats_, geometry_.rate);
  bool goesOn = true;
  double done = 0;
  for (const double candidate : candidates) {
    if (goesOn) goesOn = grid.Search(candidate, [&] { return !process.IsToStop(); });
    SetProgress(process, kCandidatesKnown + (kScored - kCandidatesKnown) * ++done / double(candidates.size()));
  }
  bpm_ = grid.bpm;
  offset_ = grid.offset;
  return goesOn;
}

LProcessResult Process(LProcessInterface& process, LProcessSoundSourceBPMDetectionData& data) {
  data.beats.clear();
  data.bpm = 1.0;
  data.offset = 0;
  data.progress = 0;
  process.SetStatus("Takte werden ermittelt...", 0);
  data.sampleRate = data.source.GetSampleRate();
  const LSoundSource mono = LSPConvChannels(1).OpenSource(data.source);
  LBeatDetection detection(data, mono);
  if (!FindBeats(process, detection)) return lprStopped;
  if (!data.beats.empty()) return lprDone;
  data.offset = 0;
  const int length = mono.GetEndSample();
  if (length > 0 && length < kClipSeconds * double(data.sampleRate)) data.bpm = data.sampleRate * 60.0 / length;
  return lprDone;
}

LProcessResult Process(LProcessInterface& process, LProcessBPMDetectionData& data) {
  LGenSourceOpenInterfaceProcess opening(process);
  LSoundSource source;
  const LProcessResult opened = ProcessGenSourceOpenSource(source, data.path, opening, true, "");
  data.bpm = 1.0;
  data.offset = 0;
  data.beats.clear();
  if (opened == lprStopped) return lprStopped;
  if (opened != lprDone) return lprFailed;
  data.source = source;
  const LProcessResult result = Process(process, static_cast<LProcessSoundSourceBPMDetectionData&>(data));
  data.source.Close();
  return result;
}
