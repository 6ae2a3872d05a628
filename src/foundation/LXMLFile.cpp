#include "foundation/LXMLFile.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "foundation/LFile.h"
#include "foundation/LText.h"
#include "foundation/LXMLLoader.h"
#include "foundation/LXMLText.h"

namespace {

constexpr std::uint64_t kMemoryOfFileSize = 20;

// A second name of the old file where the file system can do that, else a copy.
void KeepAsBackup(const std::string& path) {
  if (LFile::Size(path).value_or(0) == 0) return;
  const std::string backup = path + ".bak", beside = path + ".bak.new";
  ::unlink(beside.c_str());
  if (::link(path.c_str(), beside.c_str()) != 0) {
    if (const auto content = LFile::ReadAll(path)) LFile::WriteReplacing(backup, *content);
  } else if (std::rename(beside.c_str(), backup.c_str()) != 0) {
    ::unlink(beside.c_str());
  }
}

}  // namespace

std::uint64_t LMemoryGetFreeHeapSize() {
  // Pages that cache files count as free.
  std::ifstream system("/proc/meminfo");
  for (std::string name, unit; system >> name;) {
    std::uint64_t kilobytes = 0;
    if (name == "MemAvailable:" && system >> kilobytes) return kilobytes * 1024;
    std::getline(system, unit);
  }
  const long pages = ::sysconf(_SC_PHYS_PAGES), size = ::sysconf(_SC_PAGESIZE);
  return pages > 0 && size > 0 ? std::uint64_t(pages) * std::uint64_t(size) : 0;
}

LXMLFileResult LXMLLoadFile(const std::string& path, LXMLDocument& document, std::string& message,
                            LProcessInterface* process) {
  const auto fail = [&](LXMLFileResult result, const char* format) {
    message = LText::Format(format, path.c_str());
    return result;
  };
  message.clear();
  const auto size = LFile::Size(path);
  if (!size) return fail(lxfMissing, "Datei nicht vorhanden: %s");
  if (*size >= LMemoryGetFreeHeapSize() / kMemoryOfFileSize)
    return fail(lxfNoMemory, "Nicht genügend Speicher verfügbar, um %s zu laden");
  std::string text;
  if (!LLoadTextAutoChar(path, text)) return fail(lxfUnreadable, "Kann XML-Datei nicht öffnen: %s");
  LXMLLoader loader(document, std::move(text), process);
  document.LoadData(loader);
  message = loader.GetError();
  return message.empty() ? lxfLoaded : lxfDamaged;
}

bool LXMLSaveFile(const std::string& path, const LXMLDocument& document) {
  std::string text;
  document.SaveToBuffer(text);
  char* resolved = ::realpath(path.c_str(), nullptr);
  const std::string target = resolved ? resolved : path;
  std::free(resolved);
  KeepAsBackup(target);
  return LFile::WriteReplacing(target, text);
}
