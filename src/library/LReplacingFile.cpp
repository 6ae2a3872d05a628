#include "library/LReplacingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr std::size_t kPendingBytes = 256 * 1024;
constexpr int kLinksFollowed = 16;

// Also where the link's target is not there yet.
std::string TargetOf(std::string path) {
  for (int i = 0; i < kLinksFollowed; ++i) {
    char link[PATH_MAX];
    const auto length = ::readlink(path.c_str(), link, sizeof link);
    if (length <= 0 || length == ssize_t(sizeof link)) return path;
    const std::string to(link, std::size_t(length));
    path = to[0] == '/' ? to : LFile::MakePath(LFile::FolderFromPath(path), to);
  }
  return path;
}

// The old file under a second name, without a moment in which the first one is missing.
void KeepBeside(const std::string& path) {
  const std::string kept = path + ".bak", fresh = path + ".bak.new";
  ::unlink(fresh.c_str());
  if (::link(path.c_str(), fresh.c_str()) != 0) {  // a file system without hard links
    const auto content = LFile::ReadAll(path);
    if (content) LFile::WriteReplacing(kept, *content);
    return;
  }
  if (std::rename(fresh.c_str(), kept.c_str()) != 0) ::unlink(fresh.c_str());
}

// A renaming is on the disk when its folder is.
void FlushFolder(const std::string& path) {
  const std::string folder = LFile::FolderFromPath(path);
  const LFileHandle open(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (open.IsOpen()) ::fsync(open.Get());
}

}  // namespace

LReplacingFile::LReplacingFile(const std::string& path)
    : target_(TargetOf(path)),
      beside_(target_ + ".new"),
      file_(::open(beside_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666)),
      failed_(!file_.IsOpen()) {
  pending_.reserve(kPendingBytes);
}

LReplacingFile::~LReplacingFile() {
  if (!file_.IsOpen()) return;
  file_.Close();
  LFile::Remove(beside_);
}

void LReplacingFile::Append(std::string_view text) {
  pending_ += text;
  if (pending_.size() >= kPendingBytes) Flush();
}

void LReplacingFile::Flush() {
  if (!failed_) failed_ = !file_.Write(pending_.data(), pending_.size());
  pending_.clear();
}

bool LReplacingFile::Commit(Old old) {
  Flush();
  if (failed_ || ::fsync(file_.Get()) != 0) return false;
  if (old == KeepOld && LFile::Exists(target_)) KeepBeside(target_);
  if (std::rename(beside_.c_str(), target_.c_str()) != 0) return false;
  file_.Close();
  FlushFolder(target_);
  return true;
}
