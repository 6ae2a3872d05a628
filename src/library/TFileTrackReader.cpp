#include "audiofile/LGenSourceTables.h"
#include "audiofile/TGenSourceLadder.h"
#include "audiofile/convert/FileConversion.h"
#include "audiofile/convert/LFileCache.h"
#include "audiofile/tags/LAudioTagData.h"
#include "foundation/LFile.h"
#include "library/TLibraryHost.h"

bool TFileTrackReader::IsSupported(const std::string& path) {
  return LGenSourceIsSupported(LFile::ExtensionFromPath(path));
}

bool TFileTrackReader::NeedConvert(const std::string& path) { return FileConversion::NeedConvert(path); }

std::string TFileTrackReader::CachedPath(const std::string& path) { return LFileCache::MakeCachedPath(path); }

bool TFileTrackReader::Open(LProcessInterface& process, const std::string& path, TTrackFacts& facts) {
  LSoundSource source;
  LGenSourceOpenInterfaceProcess interface(process);
  if (ProcessGenSourceOpenSource(source, path, interface, true, "") != lprDone) return false;
  facts.endSample = source.GetEndSample();
  facts.sampleRate = source.GetSampleRate();
  return true;
}

void TFileTrackReader::ReadTags(const std::string& path, TTrackFacts& facts) {
  LAudioTagData tags;
  tags.ReadTags(path, LAudioTagData::ltkAll);
  tags.GetString("TITLE", "", facts.title);
  tags.GetString("ARTIST", "", facts.artist);
  tags.GetString("ALBUM", "", facts.album);
  tags.GetString("COMMENT", "", facts.comment);
}
