#include "shell/TDeckLoader.h"

#include "audiofile/TSourceOpen.h"
#include "console/DJConsole.h"
#include "foundation/LFile.h"

bool TDeckLoader::LoadFileToDeck(DJDeckPosition position, const std::string& path) {
  DJDeck* deck = console_.GetDeck(position);
  if (!deck) return false;
  const std::string absolute = LFile::Absolute(path);
  LSoundSource source;
  if (!TSourceOpenWithConvert(source, absolute)) {
    host_.ShowLoadError(GenSourceErrorText(source, absolute));
    return false;
  }
  host_.EvDeckToBeCleared(position);
  console_.CmDeckClear(*deck);
  host_.EvDeckCleared(position);
  deck->Load(absolute, source, 0, 0);
  lastLoaded_ = position;
  host_.EvDeckLoaded(position);
  return true;
}
