#include "audiofile/TSourceOpen.h"

#include <sys/stat.h>

#include "audiofile/LAifFile.h"
#include "audiofile/LWaveFile.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "sound/LSPConvertSourceRateChannels.h"

namespace {

constexpr unsigned char kDeckChannels = 2;

struct ReaderRow {
  const char* extension;
  LSoundSource (*open)(const std::string& path);
};
constexpr ReaderRow kReaders[] = {
    {".wav", LWaveFile::OpenSource},
    {".aif", LAifFile::OpenSource},
    {".aiff", LAifFile::OpenSource},
    {".aifc", LAifFile::OpenSource},
};

// A pipe or a device would keep the one who opens it waiting.
bool IsReadableFile(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && LFileHandle::OpenRead(path).IsOpen();
}

LSoundSource OpenByExtension(const std::string& path) {
  if (path.empty()) return LSoundSource(lseNoSource);
  if (!IsReadableFile(path)) return LSoundSource(lseCannotOpen);
  const std::string extension = LFile::ExtensionFromPath(path);
  for (const ReaderRow& row : kReaders)
    if (LText::EqualsNoCase(row.extension, extension)) return row.open(path);
  return LSoundSource(lseLaterStage);
}

struct ErrorRow {
  LSoundError error;
  const char* text;
};
constexpr ErrorRow kErrors[] = {
    {lseDamaged, "Die Datei \"%s\" kann nicht geöffnet werden, da sie beschädigt ist."},
    {lseCannotOpen,
     "Die Datei \"%s\" kann nicht geöffnet werden. Überprüfen Sie, ob diese existiert und Sie Lesezugriff haben."},
};
constexpr const char* kOtherError =
    "Datei \"%s\" kann nicht geöffnet werden. Es ist möglich, dass das Dateiformat nicht von diesem Programm "
    "unterstützt wird.";

std::string WithPath(std::string_view text, const std::string& path) {
  const auto place = text.find("%s");
  return std::string(text.substr(0, place)) + path + std::string(text.substr(place + 2));
}

}  // namespace

LProcessResult TGenSourceOpen(LSoundSource& out, const std::string& path) {
  out = OpenByExtension(path);
  return out.IsOk() ? lprDone : lprFailed;
}

bool TSourceOpenWithConvert(LSoundSource& out, const std::string& path) {
  if (TGenSourceOpen(out, path) != lprDone) return false;
  if (out.GetSampleRate() != kDeckRate || out.GetChannels() != kDeckChannels)
    LSPConvertSourceRateChannels(kDeckRate, kDeckChannels, out);
  return out.IsOk();
}

std::string GenSourceErrorText(const LSoundSource& source, const std::string& path) {
  for (const ErrorRow& row : kErrors)
    if (row.error == source.GetError()) return WithPath(row.text, path);
  return WithPath(kOtherError, path);
}
