#include "audiofile/convert/FileConversion.h"

#include <mutex>

#include "audiofile/LWaveFile.h"
#include "audiofile/mp3/LMP3File.h"
#include "foundation/LFile.h"
#include "foundation/LLockFile.h"
#include "foundation/LText.h"
#include "foundation/TSettings.h"
#include "sound/LSPPeakLimit.h"

namespace {

constexpr unsigned kPollMs = 20;
constexpr LWaveFileFormat kCacheFormat{lwtPcm, 2, kDeckRate, 16};

bool IsDiskLow() {
  const std::string folder = LFileCache::GetCacheFolder();
  const auto free = LFile::FreeMegabytes(LFile::IsFolder(folder) ? folder : "/");
  return free < std::uint64_t(TSettings::kRemainMB.Get());
}

}  // namespace

FileConversion::FileConversion(std::string source)
    : source_(std::move(source)), cached_(LFileCache::MakeCachedPath(source_)) {}

bool FileConversion::NeedConvert(const std::string& path) {
  const std::string extension = LFile::ExtensionFromPath(path);
  if (LText::EqualsNoCase(extension, ".wav")) return !LWaveFile::OpenSource(path).IsOk();
  if (LText::EqualsNoCase(extension, ".mp3")) return !LMP3File::OpenSource(path, true).IsOk();
  return true;
}

bool FileConversion::CheckCache(FileConversionAsker* asker, bool& cancelled) {
  cancelled = false;
  if (LFileCache::GetState(CachedPath(), source_) == LFileCache::Complete) {
    ConversionComplete(lprDone);
    return true;
  }
  if (TSettings::kCacheYesNo.Get() && asker && TSettings::kWarnWhenDiskLow.Get() && IsDiskLow())
    cancelled = !asker->ContinueWithLowDisk();
  return false;
}

void FileConversion::Convert() { ConversionComplete(ConvertToCache()); }

std::string FileConversion::CachedPath() const {
  const std::lock_guard lock(mutex_);
  return cached_;
}

LProcessResult FileConversion::ConvertToCache() {
  const std::string cached = LFileCache::ClaimCachedPath(source_);
  if (cached.empty()) return lprFailed;
  {
    const std::lock_guard lock(mutex_);
    cached_ = cached;
  }
  LLockFile writer;
  while (!writer.Lock(cached + ".lock"))
    if (WaitingProcess().ProcessWait(kPollMs) == lpwStopped) return lprStopped;
  if (LFileCache::GetState(cached, source_) == LFileCache::Complete) return lprDone;
  const LProcessResult result = WriteWave(cached);
  if (result != lprDone) LFileCache::Remove(cached);
  return result;
}

LProcessResult FileConversion::WriteWave(const std::string& cached) {
  LSoundSource source;
  if (const LProcessResult opened = PrepareSoundSource(source); opened != lprDone) return opened;
  if (source.GetPeak() != kPeak16) source = LSPPeakLimit(kPeak16).OpenSource(source);
  LPRSourceToSink copy{LFile::NameFromPath(source_), source, LWaveFile::OpenSink(cached, kCacheFormat)};
  return ProcessSourceToSink(copy);
}
