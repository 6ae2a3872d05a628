#include "audiofile/LExternalDecode.h"

#include <array>
#include <vector>

#include "audiofile/LGenSourceErrors.h"
#include "audiofile/LGenSourceTables.h"
#include "audiofile/LTempWave.h"
#include "foundation/LChildProcess.h"
#include "foundation/LComponentFinder.h"
#include "foundation/LText.h"

namespace {

constexpr const char* kShortNames[] = {".aac", ".m4a", ".m4r", ".mp4"};

bool NeedsShortName(const std::string& path) {
  if (path.size() <= LCmdLineConvertToWav::kMaxAacPath) return false;
  for (const char* extension : kShortNames)
    if (LText::EqualsNoCase(extension, LFile::ExtensionFromPath(path))) return true;
  return false;
}

// A copy that goes with the object.
class TempCopy {
 public:
  TempCopy(LProcessInterface& process, const std::string& path, const std::string& extension)
      : path_(LMakeTempName(extension)), result_(path_.empty() ? lprFailed : Copy(process, path)) {}
  ~TempCopy() {
    if (!path_.empty()) LFile::Remove(path_);
  }
  TempCopy(const TempCopy&) = delete;
  TempCopy& operator=(const TempCopy&) = delete;
  LProcessResult Result() const { return result_; }
  const std::string& Path() const { return path_; }

 private:
  LProcessResult Copy(LProcessInterface& process, const std::string& from) const {
    LFileHandle in = LFileHandle::OpenRead(from), out = LFileHandle::OpenReadWriteShared(path_, true);
    std::array<char, 0x8000> block;
    for (std::int64_t got = 1; in.IsOpen() && out.IsOpen();) {
      if (process.IsToStop()) return lprStopped;
      got = in.Read(block.data(), block.size());
      if (got == 0) return lprDone;
      if (got < 0 || !out.Write(block.data(), std::size_t(got))) break;
    }
    return lprFailed;
  }

  std::string path_;
  LProcessResult result_;
};

LProcessResult RunAndShow(LProcessInterface& process, const std::vector<std::string>& arguments) {
  process.SetProgressIndeterminateOn();
  const LProcessResult result = RunProgram(process, arguments);
  process.SetProgressIndeterminateOff();
  return result;
}

LProcessResult FailWithoutComponent(LProcessInterface& process, const std::string& extension) {
  process.SetError(GenSourceComponentText(extension).c_str());
  return lprFailed;
}

}  // namespace

LProcessResult Process(LProcessInterface& process, LCmdLineConvertToWav& job) {
  const std::string extension = LFile::ExtensionFromPath(job.input);
  process.SetStatusF(0, "%s Datei wird decodiert", extension.c_str());
  process.SetStatus(LFile::NameFromPath(job.input).c_str(), 1);
  const LCommandLineDecode* row = LGetCommandLineDecode(extension);
  const std::string program = LComponentGetPath(LGenSourceGetComponentName(extension));
  if (!row || program.empty()) return FailWithoutComponent(process, extension);
  if (NeedsShortName(job.input)) {
    const TempCopy copy(process, job.input, extension);
    if (copy.Result() != lprDone) return copy.Result();
    LCmdLineConvertToWav shorter{copy.Path(), job.output};
    return Process(process, shorter);
  }
  std::vector<std::string> arguments{program};
  for (const char* argument : row->arguments) {
    if (!argument) break;
    const std::string_view part = argument;
    arguments.emplace_back(part == "<" ? job.input : part == ">" ? job.output : part);
  }
  return RunAndShow(process, arguments);
}

LProcessResult Process(LProcessInterface& process, LCopiedDecode& job) {
  process.SetStatus(job.status, 0);
  process.SetStatus(LFile::NameFromPath(job.input).c_str(), 1);
  const std::string extension = LFile::ExtensionFromPath(job.input), program = LComponentGetPath(job.component);
  if (program.empty()) return FailWithoutComponent(process, extension);
  const TempCopy copy(process, job.input, *job.copyExtension ? job.copyExtension : extension);
  if (copy.Result() != lprDone) return copy.Result();
  std::vector<std::string> arguments{program};
  if (*job.option) arguments.emplace_back(job.option);
  arguments.push_back(copy.Path());
  job.output = LFile::MakePath(LFile::FolderFromPath(copy.Path()), LFile::TitleFromPath(copy.Path()) + ".wav");
  const LProcessResult result = RunAndShow(process, arguments);
  if (result != lprDone) LFile::Remove(job.output);
  return result;
}

LProcessResult Process(LProcessInterface& process, LAmrDecode& job) {
  process.SetStatus("AMR-Datei wird decodiert", 0);
  process.SetStatus(LFile::NameFromPath(job.input).c_str(), 1);
  const std::string program = LComponentGetPath("amrdec2");
  if (program.empty()) return FailWithoutComponent(process, LFile::ExtensionFromPath(job.input));
  const LProcessResult result = RunAndShow(process, {program, job.input, job.output});
  if (result != lprDone) LFile::Remove(job.output);
  return result == lprDone && LFile::Size(job.output).value_or(0) == 0 ? lprFailed : result;
}
