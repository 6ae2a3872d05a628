#include "foundation/LSharedSettings.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

#include "foundation/LFile.h"
#include "foundation/LFolders.h"
#include "foundation/LMutex.h"
#include "foundation/LPlatform.h"
#include "foundation/LXMLFile.h"

namespace {

constexpr unsigned kFolderMode = 0700;
constexpr int kLockTries = 200;
constexpr unsigned kLockPauseUs = 5000;
constexpr const char* kValue = "value";

LMutex& SetMutex() {
  static LMutex mutex;
  return mutex;
}

// The file's own lock, made with the file. A save puts a new file in its place: the lock of the old one is none.
LFileHandle Locked(const std::string& path) {
  for (int tries = 0; tries < kLockTries; ++tries) {
    if (tries) ::usleep(kLockPauseUs);
    LFileHandle file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666));
    if (!file.IsOpen()) return file;
    if (::flock(file.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) continue;
    struct stat opened {
    }, named{};
    if (::fstat(file.Get(), &opened) == 0 && ::stat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino)
      return file;
  }
  return {};
}

// A damaged file counts as empty, so as not to serve half of it.
LXMLFileResult Load(const std::string& file, LXMLDocument& document) {
  std::string message;
  const LXMLFileResult result = LXMLLoadFile(file, document, message);
  if (result != lxfLoaded) document.Clear();
  return result;
}

LXMLElement& Child(LXMLDocument& document, LXMLElement& parent, const char* name) {
  LXMLElement* child = parent.GetElement(name);
  return child ? *child : document.AddElement(parent, name);
}

std::string HiddenSettingsPath() {
  return LFile::MakePath(LFile::MakePath(LPlatform::Folders().GetUserFolder(), ".drelmsoftware"), "tavi.xml");
}

}  // namespace

void LXMLSettingGetString(const std::string& file, const char* section, const char* key, const char* fallback,
                          std::string& out) {
  LXMLDocument document;
  out = fallback;
  Load(file, document);
  const LXMLElement* element = document.GetElement(section);
  if (element) element = element->GetElement(key);
  if (element) element->Attributes().GetString(kValue, fallback, out);
}

bool LXMLSettingSetString(const std::string& file, const char* section, const char* key, const std::string& value) {
  const std::lock_guard lock(SetMutex());
  LFile::CreateFolder(LFile::FolderFromPath(file), kFolderMode);
  const LFileHandle locked = Locked(file);
  if (!locked.IsOpen()) return false;
  LXMLDocument document;
  const LXMLFileResult loaded = Load(file, document);
  if (loaded == lxfNoMemory || loaded == lxfUnreadable) return false;  // what stands there is not lost for one value
  document.SetAttribute(Child(document, Child(document, document, section), key), kValue, value);
  return LXMLSaveFile(file, document);
}

std::string LSharedSettingsPath() {
  return LFile::MakePath(LPlatform::Folders().GetSharedDataFolderApp(), "SharedSettings.xml");
}

bool LSharedSettingsLoad(LXMLDocument& document) { return Load(LSharedSettingsPath(), document) == lxfLoaded; }

bool LSharedSettingsSave(const LXMLDocument& document) {
  const std::lock_guard lock(SetMutex());
  const std::string path = LSharedSettingsPath();
  const LFileHandle locked = Locked(path);
  return locked.IsOpen() && LXMLSaveFile(path, document);
}

void LSharedSettingGetString(const char* section, const char* key, const char* fallback, std::string& out) {
  LXMLSettingGetString(LSharedSettingsPath(), section, key, fallback, out);
}

bool LSharedSettingSetString(const char* section, const char* key, const std::string& value) {
  return LXMLSettingSetString(LSharedSettingsPath(), section, key, value);
}

void LUserHiddenSettingGetString(const char* section, const char* key, const char* fallback, std::string& out) {
  LXMLSettingGetString(HiddenSettingsPath(), section, key, fallback, out);
}

bool LUserHiddenSettingSetString(const char* section, const char* key, const std::string& value) {
  return LXMLSettingSetString(HiddenSettingsPath(), section, key, value);
}
