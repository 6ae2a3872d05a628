#include "shell/TDeckLoader.h"

#include "audiofile/LGenSourceErrors.h"
#include "audiofile/TSourceOpen.h"
#include "console/DJConsole.h"
#include "foundation/LFile.h"

TDeckLoader::~TDeckLoader() {
  StopConverting();
  QueuedNotifyDataHandlerDestroy();
}

bool TDeckLoader::LoadFileToDeck(DJDeckPosition position, const std::string& path) {
  if (!console_.GetDeck(position)) return false;
  const std::string absolute = LFile::Absolute(path);
  if (!LFile::IsReadableFile(absolute)) {
    host_.ShowLoadError(GenSourceErrorText(lseCannotOpen, absolute));
    return false;
  }
  EvDeckEmptied(position);
  return FileConversion::NeedConvert(absolute) ? StartConverting(position, absolute)
                                               : LoadPlayable(position, absolute, absolute);
}

bool TDeckLoader::LoadPlayable(DJDeckPosition position, const std::string& path, const std::string& original) {
  LSoundSource source;
  if (!TSourceOpenWithConvert(source, path)) {
    host_.ShowLoadError(GenSourceErrorText(source.GetError(), original));
    return false;
  }
  ClearDeck(position);
  DJDeck& deck = *console_.GetDeck(position);
  deck.Load(path, source, 0, 0);
  deck.SetOriginalPath(original);
  lastLoaded_ = position;
  host_.EvDeckLoaded(position);
  return true;
}

void TDeckLoader::ClearDeck(DJDeckPosition position) {
  host_.EvDeckToBeCleared(position);
  console_.CmDeckClear(*console_.GetDeck(position));
  host_.EvDeckCleared(position);
}

// Conversion

bool TDeckLoader::StartConverting(DJDeckPosition position, const std::string& path) {
  Expected& expected = expected_[position];
  expected.path = path;
  expected.ticket = ++lastTicket_;
  expected.cleared = false;
  if (!expected.converter) expected.converter = std::make_unique<FileConverter>();
  return expected.converter->ConvertFileForDeck(path, *this, position, expected.ticket, this);
}

void TDeckLoader::EvDeckEmptied(DJDeckPosition position) {
  Expected& expected = expected_[position];
  expected.ticket = 0;
  if (!expected.converter || !expected.converter->IsConverting()) return;
  expected.converter->StopConverting();
  stopping_.push_back(std::move(expected.converter));
}

bool TDeckLoader::IsConverting(DJDeckPosition deck) const { return expected_[deck].ticket != 0; }

void TDeckLoader::StopConverting() {
  for (const DJDeckPosition deck : {kDeckA, kDeckB}) EvDeckEmptied(deck);
  stopping_.clear();
}

void TDeckLoader::EvQueuedNotifyData(unsigned id, const void* data, unsigned long /*size*/) {
  if (id == FileConverter::kComplete) return EvConverted(*static_cast<const FileConversionDone*>(data));
  const auto& progress = *static_cast<const FileConversionProgress*>(data);
  if (progress.deck >= kDeckCount || !IsConverting(progress.deck)) return;
  Expected& expected = expected_[progress.deck];
  if (!expected.cleared) ClearDeck(progress.deck);
  expected.cleared = true;
  host_.ShowConverting(progress.deck, expected.path, progress.percent);
}

void TDeckLoader::EvConverted(const FileConversionDone& done) {
  std::erase_if(stopping_, [](const auto& converter) { return !converter->IsConverting(); });
  if (done.deck >= kDeckCount || expected_[done.deck].ticket != done.value) return;
  expected_[done.deck].ticket = 0;
  if (done.result == lprDone) {
    LoadPlayable(done.deck, done.cached, done.source);
    return;
  }
  if (expected_[done.deck].cleared) host_.EvDeckCleared(done.deck);
  if (done.result != lprFailed) return;
  const std::string reason = done.reason;
  host_.ShowConvertError(std::string("Kann Datei nicht konvertieren: ") + done.source +
                         (reason.empty() ? "" : "\n" + reason));
}
