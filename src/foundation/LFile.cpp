#include "foundation/LFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <utility>

#include "foundation/LText.h"

namespace {

constexpr int kLockTries = 5;
constexpr unsigned kLockPauseUs = 1000;

}  // namespace

bool LFile::Exists(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0;
}

bool LFile::IsFolder(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool LFile::IsReadableFile(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && LFileHandle::OpenRead(path).IsOpen();
}

std::optional<std::uint64_t> LFile::Size(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return std::nullopt;
  return std::uint64_t(info.st_size);
}

std::int64_t LFile::ModificationTime(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 ? std::int64_t(info.st_mtime) : 0;
}

std::uint64_t LFile::FreeMegabytes(const std::string& folder) {
  struct statvfs info {};
  if (::statvfs(folder.c_str(), &info) != 0) return 0;
  return (std::uint64_t(info.f_bavail) * info.f_frsize) >> 20;
}

std::string LFile::FolderFromPath(std::string_view path) {
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos) return "";
  return std::string(path.substr(0, slash == 0 ? 1 : slash));
}

std::string LFile::NameFromPath(std::string_view path) {
  const auto slash = path.rfind('/');
  return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string LFile::TitleFromPath(std::string_view path) {
  std::string name = NameFromPath(path);
  name.resize(name.size() - ExtensionFromPath(path).size());
  return name;
}

std::string LFile::ExtensionFromPath(std::string_view path) {
  const std::string name = NameFromPath(path);
  const auto dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 ? "" : name.substr(dot);
}

std::string LFile::MakePath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && path.back() != '/') path += '/';
  return path.append(name);
}

std::string LFile::Absolute(const std::string& path) {
  if (!path.empty() && path[0] == '/') return path;
  char folder[PATH_MAX];
  return ::getcwd(folder, sizeof folder) ? MakePath(folder, path) : path;
}

std::string LFile::PreprocessName(std::string_view name) {
  constexpr std::string_view kRefused = "/\\:*?\"<>|";
  std::string clean;
  for (const char c : name)
    if (static_cast<unsigned char>(c) >= 32 && kRefused.find(c) == std::string_view::npos) clean += c;
  clean = LText::CutUtf8(clean, 200);
  return clean.empty() || clean == "." || clean == ".." ? "_" : clean;
}

bool LFile::CreateFolder(const std::string& path, unsigned mode) {
  if (path.empty() || IsFolder(path)) return !path.empty();
  const std::string parent = FolderFromPath(path);
  if (!parent.empty() && parent != path && !CreateFolder(parent, mode)) return false;
  return ::mkdir(path.c_str(), mode_t(mode)) == 0 || (errno == EEXIST && IsFolder(path));
}

bool LFile::Remove(const std::string& path) { return ::unlink(path.c_str()) == 0; }

std::vector<std::string> LFile::NamesInFolder(const std::string& folder) {
  std::vector<std::string> names;
  DIR* open = ::opendir(folder.c_str());
  if (!open) return names;
  while (const dirent* entry = ::readdir(open)) {
    struct stat info {};
    if (::stat(MakePath(folder, entry->d_name).c_str(), &info) == 0 && S_ISREG(info.st_mode))
      names.emplace_back(entry->d_name);
  }
  ::closedir(open);
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::string> LFile::ReadAll(const std::string& path) {
  LFileHandle file = LFileHandle::OpenRead(path);
  const std::int64_t size = file.Size();
  if (size < 0) return std::nullopt;
  std::string content(std::size_t(size), '\0');
  const std::int64_t got = file.Read(content.data(), content.size());
  if (got < 0) return std::nullopt;
  content.resize(std::size_t(got));
  return content;
}

bool LFile::WriteReplacing(const std::string& path, std::string_view content) {
  // Through a symbolic link the target is replaced, not the link.
  char resolved[PATH_MAX];
  const std::string target = ::realpath(path.c_str(), resolved) ? resolved : path;
  const std::string beside = target + ".new";
  LFileHandle file(::open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  const bool written = file.IsOpen() && file.Write(content.data(), content.size()) && ::fsync(file.Get()) == 0;
  file.Close();
  if (written && ::rename(beside.c_str(), target.c_str()) == 0) return true;
  ::unlink(beside.c_str());
  return false;
}

bool LFile::IsLockedByOther(const std::string& path) {
  const LFileHandle file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.IsOpen()) return false;
  return ::flock(file.Get(), LOCK_EX | LOCK_NB) != 0;  // a file system without locks counts as locked
}

LFileHandle& LFileHandle::operator=(LFileHandle&& other) noexcept {
  if (this == &other) return *this;
  Close();
  descriptor_ = other.Release();
  return *this;
}

LFileHandle LFileHandle::OpenRead(const std::string& path) {
  // Without O_NONBLOCK a pipe in the file system would wait for its writer.
  LFileHandle file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat info {};
  // A folder opens, but cannot be read.
  if (file.IsOpen() && (::fstat(file.Get(), &info) != 0 || S_ISDIR(info.st_mode))) file.Close();
  return file;
}

LFileHandle LFileHandle::OpenReadWriteShared(const std::string& path, bool truncate) {
  LFileHandle file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
  if (!file.IsOpen()) return file;
  // Whoever asks for a moment whether the file is locked holds it for that moment.
  for (int tries = 1; ::flock(file.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK; ++tries) {
    if (tries == kLockTries) {
      file.Close();
      return file;
    }
    ::usleep(kLockPauseUs);
  }
  if (truncate && file.IsOpen() && !file.Truncate(0)) file.Close();
  return file;
}

int LFileHandle::Release() { return std::exchange(descriptor_, -1); }

void LFileHandle::Close() {
  if (descriptor_ >= 0) ::close(Release());
}

std::int64_t LFileHandle::Read(void* bytes, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const auto got = ::read(descriptor_, static_cast<char*>(bytes) + done, count - done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return done ? std::int64_t(done) : -1;
    if (got == 0) break;
    done += std::size_t(got);
  }
  return std::int64_t(done);
}

bool LFileHandle::Write(const void* bytes, std::size_t count) {
  std::size_t done = 0;
  while (done < count) {
    const auto put = ::write(descriptor_, static_cast<const char*>(bytes) + done, count - done);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    done += std::size_t(put);
  }
  return true;
}

std::int64_t LFileHandle::ReadAt(void* bytes, std::size_t count, std::int64_t offset) {
  std::size_t done = 0;
  while (done < count) {
    const auto got = ::pread(descriptor_, static_cast<char*>(bytes) + done, count - done, off_t(offset) + off_t(done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return done ? std::int64_t(done) : -1;
    if (got == 0) break;
    done += std::size_t(got);
  }
  return std::int64_t(done);
}

bool LFileHandle::WriteAt(const void* bytes, std::size_t count, std::int64_t offset) {
  std::size_t done = 0;
  while (done < count) {
    const auto put =
        ::pwrite(descriptor_, static_cast<const char*>(bytes) + done, count - done, off_t(offset) + off_t(done));
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    done += std::size_t(put);
  }
  return true;
}

bool LFileHandle::Seek(std::int64_t offset) { return ::lseek(descriptor_, off_t(offset), SEEK_SET) >= 0; }

std::int64_t LFileHandle::Tell() const { return std::int64_t(::lseek(descriptor_, 0, SEEK_CUR)); }

std::int64_t LFileHandle::Size() const {
  struct stat info {};
  return ::fstat(descriptor_, &info) == 0 ? std::int64_t(info.st_size) : -1;
}

bool LFileHandle::Truncate(std::int64_t size) { return ::ftruncate(descriptor_, off_t(size)) == 0; }
