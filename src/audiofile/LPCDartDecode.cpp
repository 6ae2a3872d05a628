#include "audiofile/LPCDartDecode.h"

#include <sys/file.h>

#include <cerrno>
#include <vector>

#include "audiofile/LHeaderBytes.h"
#include "audiofile/LWaveHeader.h"
#include "foundation/LFile.h"

namespace {

constexpr unsigned kLockMs = 1000, kLockStepMs = 20;
constexpr int kDartHeaderBytes = 1024;
constexpr int kWaveHeaderBytesOfDart = 78;
constexpr std::size_t kCopyBytes = 32768;
constexpr double kProgressOfHeader = 0.1;

// Opened for reading once nobody writes it any more.
LFileHandle OpenLocked(LProcessInterface& process, const std::string& path) {
  LFileHandle file = LFileHandle::OpenRead(path);
  if (!file.IsOpen()) return file;
  for (unsigned waited = 0; ::flock(file.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
       waited += kLockStepMs) {
    if (waited >= kLockMs || process.ProcessWait(kLockStepMs) == lpwStopped) {
      file.Close();
      break;
    }
  }
  return file;
}

LHeaderBytes MakeHeader(std::int64_t fileBytes) {
  const std::uint32_t size = fileBytes < 0 || fileBytes > 0xFFFFFFFF ? 0 : std::uint32_t(fileBytes);
  LHeaderBytes header;
  header.Text("RIFF").Le32(size).Text("WAVE").Text("fmt ").Le32(50);
  header.Le16(lwtDart).Le16(1).Le32(8000).Le32(1067).Le16(32).Le16(1).Le16(32);
  header.Le16(1).Le16(240).Text(std::string_view("\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 28));
  header.Text("data").Le32(size - kWaveHeaderBytesOfDart);
  return header;
}

LProcessResult CopySound(LProcessInterface& process, LFileHandle& from, LFileHandle& to, std::int64_t fileBytes) {
  std::vector<unsigned char> block(kCopyBytes);
  std::int64_t at = kDartHeaderBytes;
  double progress = kProgressOfHeader;
  for (;;) {
    if (process.IsToStop()) return lprStopped;
    const std::int64_t got = from.ReadAt(block.data(), block.size(), at);
    if (got <= 0 || !to.Write(block.data(), std::size_t(got))) return lprDone;
    at += got;
    progress += double(kCopyBytes) / double(fileBytes);
    process.SetProgress(progress);
  }
}

}  // namespace

LProcessResult Process(LProcessInterface& process, LPCDartDecode& decode) {
  process.SetStatus("Dart-Datei wird geladen", 0);
  process.SetProgress(0);
  LFileHandle from = OpenLocked(process, decode.source);
  if (process.IsToStop()) return lprStopped;
  if (!from.IsOpen()) return lprFailed;
  LFileHandle to = LFileHandle::OpenReadWriteShared(decode.wave, true);
  const std::int64_t fileBytes = from.Size();
  const LHeaderBytes header = MakeHeader(fileBytes);
  if (!to.Write(header.Data(), std::size_t(header.Size()))) return lprDone;
  process.SetProgress(kProgressOfHeader);
  return CopySound(process, from, to, fileBytes);
}
