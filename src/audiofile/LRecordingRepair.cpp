#include "audiofile/LRecordingRepair.h"

#include <algorithm>
#include <optional>

#include "audiofile/LAifHeader.h"
#include "audiofile/LPCMLimits.h"
#include "audiofile/LWaveHeader.h"
#include "foundation/LFile.h"
#include "foundation/LText.h"

namespace {

// The header that a growing file has, told from its bytes; nothing if they are not what the recorder writes.
struct Unfinished {
  LSinkHeader about;
  LHeaderBytes (*header)(const LSinkHeader& about);
  std::int64_t maxDataBytes;
};

LHeaderBytes HeaderPcm(const LSinkHeader& about) { return WriteHeaderWave(about, lwtPcm); }
LHeaderBytes HeaderAiff(const LSinkHeader& about) { return WriteHeaderAIFF(about, about.SampleBits()); }

std::optional<LSinkHeader> Describe(std::int64_t rate, int channels, int bits) {
  if (!IsPlayableFormat(rate, channels) || bits < 8 || bits > 32 || bits % 8 != 0) return std::nullopt;
  return LSinkHeader{int(rate), static_cast<unsigned char>(channels), channels * bits / 8, 0, false};
}

std::optional<Unfinished> ReadWave(const unsigned char* bytes) {
  const auto about = Describe(GetLe32(bytes + 24), GetLe16(bytes + 22), GetLe16(bytes + 34));
  if (!about) return std::nullopt;
  return Unfinished{*about, HeaderPcm, kMaxWaveDataBytes};
}

std::optional<Unfinished> ReadAiff(const unsigned char* bytes) {
  auto about = Describe(RateFromExtended(bytes + 28), GetBe16(bytes + 20), GetBe16(bytes + 26));
  if (!about) return std::nullopt;
  about->frames = GetBe32(bytes + 22);  // what it held when it was opened
  return Unfinished{*about, HeaderAiff, kMaxAiffDataBytes};
}

struct Form {
  const char* extension;
  int headerBytes;
  std::optional<Unfinished> (*read)(const unsigned char* bytes);
};
constexpr Form kForms[] = {
    {".wav", kWaveHeaderBytes, ReadWave},
    {".aif", kAiffHeaderBytes, ReadAiff},
    {".aiff", kAiffHeaderBytes, ReadAiff},
};

const Form* FormOf(const std::string& name) {
  const std::string extension = LFile::ExtensionFromPath(name);
  for (const Form& form : kForms)
    if (LText::EqualsNoCase(form.extension, extension)) return &form;
  return nullptr;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool Finish(const std::string& path, const Form& form) {
  LFileHandle reading = LFileHandle::OpenRead(path);
  unsigned char bytes[LHeaderBytes::kCapacity];
  if (!reading.IsOpen() || reading.ReadAt(bytes, std::size_t(form.headerBytes), 0) != form.headerBytes) return false;
  reading.Close();  // before the lock is tried
  auto found = form.read(bytes);
  if (!found) return false;
  const LHeaderBytes expected = found->header(found->about);
  if (expected.Size() != form.headerBytes || std::memcmp(expected.Data(), bytes, std::size_t(form.headerBytes)) != 0)
    return false;
  if (LFile::IsLockedByOther(path)) return false;

  LFileHandle file = LFileHandle::OpenReadWriteShared(path, false);
  if (!file.IsOpen()) return false;
  const std::int64_t dataBytes = std::clamp<std::int64_t>(file.Size() - form.headerBytes, 0, found->maxDataBytes);
  found->about.frames = dataBytes / found->about.frameBytes;
  found->about.final = true;
  const LHeaderBytes final = found->header(found->about);
  return file.WriteAt(final.Data(), std::size_t(final.Size()), 0);
}

}  // namespace

bool IsRecordingName(const std::string& name) {
  constexpr std::string_view kPattern = "0000-00-00 00-00-00";  // 0: any digit
  const std::string title = LFile::TitleFromPath(name);
  if (!FormOf(name) || title.size() < kPattern.size()) return false;
  for (std::size_t i = 0; i < kPattern.size(); ++i)
    if (kPattern[i] == '0' ? !IsDigit(title[i]) : title[i] != kPattern[i]) return false;
  const std::string_view number = std::string_view(title).substr(kPattern.size());
  return number.empty() ||
         (number.size() > 1 && number[0] == '-' && std::all_of(number.begin() + 1, number.end(), IsDigit));
}

std::vector<std::string> RepairUnfinishedRecordings(const std::string& folder) {
  std::vector<std::string> finished;
  for (const std::string& name : LFile::NamesInFolder(folder))
    if (IsRecordingName(name) && Finish(LFile::MakePath(folder, name), *FormOf(name))) finished.push_back(name);
  return finished;
}
